// Taking escapes out of text.
#include <unicode/utf16.h>

#include <algorithm>

#include "dfdl/converters/textconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/pif/escapeschemetable.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

using View = std::u16string_view;

// Reads a text and writes what is kept of it over its beginning. It never writes further than it has read.
class Compactor {
  public:
    explicit Compactor(DFDLUString* text) : text_(text) {
        if (text->external != 0) DFDLUString_replaceValue(text, text->chars, text->length);
        to_ = text->chars;
        from_ = text->chars;
        end_ = text->chars + text->length;
    }
    bool atEnd() const { return from_ == end_; }
    bool standsHere(View mark) const {
        return !mark.empty() && View(from_, static_cast<size_t>(end_ - from_)).starts_with(mark);
    }
    void drop(size_t units) { from_ += units; }
    void keep(size_t units) {
        to_ = std::copy(from_, from_ + units, to_);
        from_ += units;
    }
    void keepCharacter() {
        if (atEnd()) return;
        const bool pair = U16_IS_LEAD(*from_) && end_ - from_ > 1 && U16_IS_TRAIL(from_[1]);
        keep(pair ? 2 : 1);
    }
    // What was dropped before and is kept after all.
    void put(View mark) { to_ = std::copy(mark.begin(), mark.end(), to_); }
    void finish() {
        keep(static_cast<size_t>(end_ - from_));
        *to_ = 0;
        text_->length = static_cast<int32_t>(to_ - text_->chars);
    }

  private:
    DFDLUString* text_;
    UChar* to_;
    UChar* from_;
    UChar* end_;
};

// The end of a block that comes next, `at` units from the start of the text; -1 none. A hidden one is part of
// the block, and what hides it stands before it.
struct BlockEnd {
    int64_t at;
    bool hidden;
};

// Most units are passed over with two comparisons.
BlockEnd nextBlockEnd(View text, size_t at, View end, View escapeEscape) {
    const char16_t firstOfEnd = end.front();
    const char16_t firstOfEscape = escapeEscape.empty() ? firstOfEnd : escapeEscape.front();
    for (; at + end.size() <= text.size(); ++at) {
        if (text[at] != firstOfEnd && text[at] != firstOfEscape) continue;
        const View rest = text.substr(at);
        const bool escaped = !escapeEscape.empty() && rest.starts_with(escapeEscape) &&
                             rest.substr(escapeEscape.size()).starts_with(end);
        if (escaped) return {static_cast<int64_t>(at + escapeEscape.size()), true};
        if (rest.starts_with(end)) return {static_cast<int64_t>(at), false};
    }
    return {-1, false};
}

bool hasBlock(View text, View start, View end, View escapeEscape) {
    if (start.empty() || end.empty() || !text.starts_with(start)) return false;
    BlockEnd found = nextBlockEnd(text, start.size(), end, escapeEscape);
    while (found.hidden) {
        found = nextBlockEnd(text, static_cast<size_t>(found.at) + end.size(), end, escapeEscape);
    }
    return found.at >= 0;
}

bool isUnresolved(const DFDLUString* literal, int32_t expression) {
    return DFDLUString_length(literal) == 0 && expression >= 0;
}

bool checkStrings(DFDLHeapAdapter* heap, const GroupMemberTableRow* row, const EscapeSchemeTableRow* scheme) {
    if (!isUnresolved(scheme->iEscapeCharacter, scheme->iEscapeCharacterExpr) &&
        !isUnresolved(scheme->iEscapeEscapeCharacter, scheme->iEscapeEscapeCharacterExpr)) {
        return true;
    }
    ProcessingError_setValues(heap->context->currentError, __FILE__, __LINE__,
                              DFDLParser_unsupportedConstruct, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%s",
                              row->scdText, "an escape character given by an expression");
    return false;
}

// Null: there is none.
struct EscapeTexts {
    const DFDLUString* escape;
    const DFDLUString* blockStart;
    const DFDLUString* blockEnd;
    const DFDLUString* escapeEscape;
};

void apply(DFDLUString* text, bool isBlock, const EscapeTexts& texts) {
    const View escapeEscape = DFDLUString_view(texts.escapeEscape);
    if (isBlock) {
        TextConverter_applyEscapesUsingEscapeBlocks(text, DFDLUString_view(texts.blockStart),
                                                    DFDLUString_view(texts.blockEnd), escapeEscape);
    } else {
        TextConverter_applyEscapesUsingEscapeChars(text, DFDLUString_view(texts.escape), escapeEscape);
    }
}

}  // namespace

// An escape-escape is one only right before an escape; both are read here in the order in which the scanner
// reads them, so that the two never differ on what is escaped. Behind an escape-escape that is none, the next
// character is plain, even if it could be an escape-escape.
void TextConverter_applyEscapesUsingEscapeChars(DFDLUString* text, View escape, View escapeEscape) {
    if (escape.empty() || DFDLUString_view(text).find(escape) == View::npos) return;
    const bool same = escape == escapeEscape;
    Compactor compactor(text);
    while (!compactor.atEnd()) {
        const bool escaped = compactor.standsHere(escapeEscape);
        if (escaped) compactor.drop(escapeEscape.size());
        if (compactor.standsHere(escape)) {
            compactor.drop(escape.size());
            if (escaped) {
                compactor.put(escape);
                continue;
            }
        } else if (escaped && !same) {
            compactor.put(escapeEscape);
        }
        compactor.keepCharacter();
    }
    compactor.finish();
}

void TextConverter_applyEscapesUsingEscapeBlocks(DFDLUString* text, View start, View end, View escapeEscape) {
    if (!hasBlock(DFDLUString_view(text), start, end, escapeEscape)) return;
    Compactor compactor(text);
    compactor.drop(start.size());
    // The compactor writes behind what is still looked at.
    const View whole = DFDLUString_view(text);
    size_t at = start.size();
    BlockEnd found{};
    do {
        found = nextBlockEnd(whole, at, end, escapeEscape);
        const auto next = static_cast<size_t>(found.at);
        const size_t hider = found.hidden ? escapeEscape.size() : 0;
        compactor.keep(next - hider - at);
        compactor.drop(found.hidden ? hider : end.size());
        if (found.hidden) compactor.keep(end.size());
        at = next + end.size();
    } while (found.hidden);
    compactor.finish();
}

DFDLUString* TextConverter_applyEscapeScheme(DFDLHeapAdapter* heap, DFDLUString* text,
                                             const GroupMemberTableRow* row) {
    const EscapeSchemeTableRow* scheme = GroupMemberTableRow_getEscapeSchemeTableRow(row);
    if (scheme == nullptr || DFDLUString_length(text) == 0) return text;
    if (!checkStrings(heap, row, scheme)) return nullptr;
    apply(text, scheme->iEscapeKind == ESCAPE_BLOCK,
          {scheme->iEscapeCharacter, scheme->iEscapeBlockStart, scheme->iEscapeBlockEnd,
           scheme->iEscapeEscapeCharacter});
    return text;
}

DFDLUString* TextConverter_applyEscapeSchemeUsingCompiledMarkupSetData(DFDLHeapAdapter* heap,
                                                                       DFDLUString* text,
                                                                       const GroupMemberTableRow* row,
                                                                       const CompiledMarkupSet* set) {
    if (set == nullptr || set->escapeSchemeRow == nullptr) {
        return TextConverter_applyEscapeScheme(heap, text, row);
    }
    if (DFDLUString_length(text) > 0) {
        apply(text, set->usesEscapeBlock,
              {set->escapeCharacter.text, set->blockStart.text, set->blockEnd.text,
               set->escapeEscapeCharacter.text});
    }
    return text;
}
