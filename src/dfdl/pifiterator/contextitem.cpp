#include "dfdl/pifiterator/contextitem.h"

#include <charconv>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

// The steps of a path are written as ASCII digits between brackets.
struct Digits {
    char text[12];
    int32_t length;
};

Digits occurrenceIndex(const ContextItem* item) {
    Digits digits{};
    const int32_t index = item->occurrences < 1 ? 1 : item->occurrences;
    const auto end = std::to_chars(digits.text, digits.text + sizeof digits.text, index).ptr;
    digits.length = static_cast<int32_t>(end - digits.text);
    return digits;
}

std::u16string_view stepName(const ContextItem* item) {
    return DFDLUString_view(GroupMemberTableRow_getElementName(item->row));
}

int32_t stepLength(const ContextItem* item) {
    return static_cast<int32_t>(stepName(item).size()) + occurrenceIndex(item).length + 2;
}

// Writes name[index] so that it ends before `end`; returns where it starts.
UChar* writeStepBefore(UChar* end, const ContextItem* item) {
    const std::u16string_view name = stepName(item);
    const Digits digits = occurrenceIndex(item);
    *--end = u']';
    for (int32_t i = digits.length; i > 0; --i) *--end = static_cast<UChar>(digits.text[i - 1]);
    *--end = u'[';
    end -= name.size();
    name.copy(end, name.size());
    return end;
}

const ContextItem* parentElement(const ContextItem* item) {
    return item->parent == nullptr ? nullptr : ContextItem_getEnclosingElement(item->parent);
}

// Deep nesting must not cost machine stack: the path is measured upwards, then written from its end.
DFDLUString* buildPath(DFDLHeapAdapter* heap, const ContextItem* element) {
    int64_t length = 0;
    for (const ContextItem* item = element; item != nullptr; item = parentElement(item)) {
        length += stepLength(item) + 1;
    }
    UChar* chars = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, length + 1);
    UChar* at = chars + length;
    *at = 0;
    for (const ContextItem* item = element; item != nullptr; item = parentElement(item)) {
        at = writeStepBefore(at, item);
        *--at = u'/';
    }
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, static_cast<int32_t>(length));
}

int64_t lengthBetween(int64_t start, int64_t end) { return start < 0 || end < 0 ? 0 : end - start; }

}  // namespace

void ContextItem_setValues(ContextItem* this_, Context* context, DFDLConstants* constants,
                           const GroupMemberTableRow* row) {
    this_->context = context;
    this_->constants = constants;
    this_->row = row;
    this_->occurrences = 0;
    this_->parent = nullptr;
    this_->child = nullptr;
    this_->occurrenceStart = -1;
    this_->afterMember = -1;
    this_->representationStart = -1;
    this_->representationEnd = -1;
    this_->contentStart = -1;
    this_->contentEnd = -1;
    this_->effectiveMinOccurs = row->effectiveMinOccurs;
    this_->effectiveMaxOccurs = row->effectiveMaxOccurs;
    this_->imposedLength = -1;
}

void ContextItem_setParent(ContextItem* this_, ContextItem* parent) {
    this_->parent = parent;
    ContextItem_dropXPath(this_);
}

void ContextItem_setChild(ContextItem* this_, ContextItem* child) {
    this_->child = child;
    if (child != nullptr) {
        child->parent = this_;
        ContextItem_dropXPath(child);
    }
}

void ContextItem_dropXPath(ContextItem* this_) {
    if (this_->xpath == nullptr) return;
    delete_DFDLUString(this_->xpath);
    this_->xpath = nullptr;
}

void ContextItem_incrementOccurrences(ContextItem* this_) {
    ++this_->occurrences;
    ContextItem_dropXPath(this_);
}

void ContextItem_decrementOccurrences(ContextItem* this_) {
    --this_->occurrences;
    ContextItem_dropXPath(this_);
}

bool ContextItem_isElement(const ContextItem* this_) { return this_->row->elementRow != nullptr; }

bool ContextItem_isGroup(const ContextItem* this_) { return !ContextItem_isElement(this_); }

bool ContextItem_isComplexElement(const ContextItem* this_) {
    return ContextItem_isElement(this_) && this_->row->elementRow->contentGroup != nullptr;
}

bool ContextItem_isSimpleElement(const ContextItem* this_) {
    return ContextItem_isElement(this_) && !ContextItem_isComplexElement(this_);
}

const ContextItem* ContextItem_getEnclosingElement(const ContextItem* this_) {
    const ContextItem* item = this_;
    while (item != nullptr && !ContextItem_isElement(item)) item = item->parent;
    return item;
}

const GroupMemberTableRow* ContextItem_getNextRequiredOccurrence(const ContextItem* this_) {
    return this_->row->min_occurs > this_->occurrences ? this_->row : nullptr;
}

const GroupMemberTableRow* ContextItem_getNextBoundedOccurrence(const ContextItem* this_) {
    const int32_t bound = this_->effectiveMaxOccurs < 0 ? this_->row->min_occurs : this_->effectiveMaxOccurs;
    return bound > this_->occurrences ? this_->row : nullptr;
}

bool ContextItem_checkMaxOccursWithRow(const ContextItem* this_, const GroupMemberTableRow* row,
                                       int32_t count) {
    static_cast<void>(this_);
    if (row->elementRow == nullptr || row->max_occurs == -1) return true;
    return row->max_occurs >= count;
}

int64_t ContextItem_getRepresentationLength(const ContextItem* this_) {
    return lengthBetween(this_->representationStart, this_->representationEnd);
}

int64_t ContextItem_getContentLength(const ContextItem* this_) {
    return lengthBetween(this_->contentStart, this_->contentEnd);
}

const DFDLUString* ContextItem_getXPath(ContextItem* this_) {
    if (this_->xpath == nullptr)
        this_->xpath = buildPath(this_->heap, ContextItem_getEnclosingElement(this_));
    return this_->xpath;
}

DFDLUString* ContextItem_getXPathStepExpression(const ContextItem* this_) {
    const int32_t length = stepLength(this_);
    UChar* chars = DFDLBufferFactory_GetUBuffer(this_->heap->bufferFactory, length + 1);
    chars[length] = 0;
    writeStepBefore(chars + length, this_);
    return DFDLUStringPooler_getDFDLUStringUseUChars(this_->heap, chars, length);
}

DFDLUString* ContextItem_toString(const ContextItem* this_) {
    const std::u16string_view space = DFDLUString_view(GroupMemberTableRow_getNamespace(this_->row));
    const DFDLUString* nameString = ContextItem_isElement(this_)
                                        ? GroupMemberTableRow_getElementName(this_->row)
                                        : GroupMemberTableRow_getGroupName(this_->row);
    const std::u16string_view name = DFDLUString_view(nameString);
    const size_t prefix = space.empty() ? 0 : space.size() + 1;
    UChar* chars = DFDLBufferFactory_GetUBuffer(this_->heap->bufferFactory,
                                                static_cast<int64_t>(prefix + name.size() + 1));
    if (prefix != 0) {
        space.copy(chars, space.size());
        chars[space.size()] = u':';
    }
    name.copy(chars + prefix, name.size());
    chars[prefix + name.size()] = 0;
    return DFDLUStringPooler_getDFDLUStringUseUChars(this_->heap, chars,
                                                     static_cast<int32_t>(prefix + name.size()));
}
