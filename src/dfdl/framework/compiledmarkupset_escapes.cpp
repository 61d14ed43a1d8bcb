// The escape scheme of a compiled set.
#include <algorithm>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/pif/escapeschemetable.h"

namespace {

// How the strings of one scheme are encoded.
struct Encoding {
    Context* context;
    UConverter* converter;
    const DFDLUString* name;
};

bool encode(CompiledMarkupSet* set, EscapeString* target, const DFDLUString* text, const Encoding& encoding) {
    target->text = text;
    if (DFDLUString_length(text) == 0) return true;
    target->bytes =
        CharsetManager_convertTo(set->heap, text->chars, text->length, &target->length, encoding.converter);
    if (target->length > 0) return true;
    ProcessingError_setValues(encoding.context->currentError, __FILE__, __LINE__,
                              DFDLParser_characterEncodingError, ERROR_PROCESSING, SUBKIND_NONE, "%Z%Z", text,
                              encoding.name);
    return false;
}

void flagFirst(uint8_t* flags, const EscapeString& escape) {
    if (escape.length > 0) flags[escape.bytes[0]] = 1;
}

bool isSame(const EscapeString& a, const EscapeString& b) {
    return a.length > 0 && DFDLUString_equals(a.text, b.text);
}

bool configureBlock(CompiledMarkupSet* set, const EscapeSchemeTableRow* row, const Encoding& encoding) {
    set->usesEscapeBlock = true;
    if (!encode(set, &set->blockStart, row->iEscapeBlockStart, encoding) ||
        !encode(set, &set->blockEnd, row->iEscapeBlockEnd, encoding) ||
        !encode(set, &set->escapeEscapeCharacter, row->iEscapeEscapeCharacter, encoding)) {
        return false;
    }
    set->escapeEscapeIsBlockStart = isSame(set->escapeEscapeCharacter, set->blockStart);
    set->escapeEscapeIsBlockEnd = isSame(set->escapeEscapeCharacter, set->blockEnd);
    set->escapeEscapeSame = set->escapeEscapeIsBlockStart || set->escapeEscapeIsBlockEnd;
    flagFirst(set->blockBytes, set->blockEnd);
    flagFirst(set->blockBytes, set->escapeEscapeCharacter);
    if (set->blockStart.length == 0) return true;
    flagFirst(set->firstBytes, set->blockStart);
    flagFirst(set->firstBytes, set->escapeEscapeCharacter);
    return true;
}

bool configureCharacter(CompiledMarkupSet* set, const EscapeSchemeTableRow* row, const Encoding& encoding) {
    set->usesEscapeCharacter = true;
    if (!encode(set, &set->escapeCharacter, row->iEscapeCharacter, encoding) ||
        !encode(set, &set->escapeEscapeCharacter, row->iEscapeEscapeCharacter, encoding)) {
        return false;
    }
    set->escapeEscapeSame = isSame(set->escapeEscapeCharacter, set->escapeCharacter);
    flagFirst(set->firstBytes, set->escapeCharacter);
    flagFirst(set->firstBytes, set->escapeEscapeCharacter);
    return true;
}

void clear(CompiledMarkupSet* set, EscapeString* escape) {
    if (escape->bytes != nullptr) DFDLHeapAdapter_arrayDeallocate(set->heap, escape->bytes);
    *escape = {};
}

}  // namespace

bool CompiledMarkupSet_configureScannerDataForEscapeScheme(CompiledMarkupSet* this_, Context* context,
                                                           const EscapeSchemeTableRow* row,
                                                           UConverter* converter,
                                                           const DFDLUString* encodingName) {
    CompiledMarkupSet_setupEmptyEscapeScheme(this_);
    if (row == nullptr) return true;
    this_->escapeSchemeRow = row;
    const Encoding encoding{context, converter, encodingName};
    return row->iEscapeKind == ESCAPE_BLOCK ? configureBlock(this_, row, encoding)
                                            : configureCharacter(this_, row, encoding);
}

void CompiledMarkupSet_setupEmptyEscapeScheme(CompiledMarkupSet* this_) {
    for (EscapeString* escape :
         {&this_->escapeCharacter, &this_->escapeEscapeCharacter, &this_->blockStart, &this_->blockEnd}) {
        clear(this_, escape);
    }
    this_->usesEscapeCharacter = false;
    this_->usesEscapeBlock = false;
    this_->escapeEscapeSame = false;
    this_->escapeEscapeIsBlockStart = false;
    this_->escapeEscapeIsBlockEnd = false;
    this_->escapeSchemeRow = nullptr;
    std::fill(std::begin(this_->blockBytes), std::end(this_->blockBytes), uint8_t{0});
    for (int32_t byte = 0; byte < 256; ++byte) this_->firstBytes[byte] = this_->lists[byte] != nullptr;
}
