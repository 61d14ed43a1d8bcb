#include "dfdl/framework/compileddfdlstringliteral.h"

#include <algorithm>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

constexpr int32_t PARTS_CAPACITY = 10;

void addPart(CompiledDFDLStringLiteral* literal, CompiledStringPart* part, int32_t longest) {
    ArrayList_addPointer(literal->parts, part);
    // Past what can be counted a literal is only ever compared as a very long one.
    literal->byteLength =
        longest > INT32_MAX - literal->byteLength ? INT32_MAX : literal->byteLength + longest;
    const bool isOnly = ArrayList_size(literal->parts) == 1;
    literal->exactBytes = isOnly && part->kind == COMPILED_EXACT ? part->exactBytes : nullptr;
}

int32_t longestOf(const ArrayList* alternatives) {
    int32_t longest = 0;
    for (int32_t i = 0; i < ArrayList_size(alternatives); ++i) {
        longest = std::max(longest, ArrayList_getPointer<MnemonicPart>(alternatives, i)->length);
    }
    return longest;
}

}  // namespace

CompiledDFDLStringLiteral* new_CompiledDFDLStringLiteral(DFDLHeapAdapter* heap, DFDLUString* text,
                                                         int32_t encodingIndex, bool ownsText) {
    auto* this_ = DFDLHeapAdapter_new<CompiledDFDLStringLiteral>(heap);
    this_->parts = new_ArrayListOfPointers(heap, PARTS_CAPACITY);
    this_->text = ownsText && text != nullptr ? new_DFDLUStringFromDFDLUString(text, heap) : text;
    this_->ownsText = ownsText;
    this_->encodingIndex = encodingIndex;
    this_->isCharacterText = true;
    return this_;
}

void delete_CompiledDFDLStringLiteral(CompiledDFDLStringLiteral* this_) {
    if (this_ == nullptr) return;
    CompiledDFDLStringLiteral_reset(this_);
    delete_ArrayList(this_->parts);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void CompiledDFDLStringLiteral_addByteMarkupPart(CompiledDFDLStringLiteral* this_, uint8_t* bytes,
                                                 int32_t count) {
    CompiledStringPart* part = new_CompiledStringPart(this_->heap, COMPILED_EXACT);
    part->exactBytes = bytes;
    part->byteCount = count;
    addPart(this_, part, count);
}

void CompiledDFDLStringLiteral_addCharMarkupPart(CompiledDFDLStringLiteral* this_, uint8_t* lower,
                                                 uint8_t* upper, int32_t count) {
    CompiledStringPart* part = new_CompiledStringPart(this_->heap, COMPILED_CASE_INSENSITIVE);
    part->lowerBytes = lower;
    part->upperBytes = upper;
    part->byteCount = count;
    addPart(this_, part, count);
}

void CompiledDFDLStringLiteral_addMarkupPart(CompiledDFDLStringLiteral* this_, ArrayList* alternatives,
                                             bool optional, bool repeating) {
    CompiledStringPart* part = new_CompiledStringPart(this_->heap, COMPILED_CLASS);
    part->alternatives = alternatives;
    part->optional = optional;
    part->repeating = repeating;
    addPart(this_, part, longestOf(alternatives));
}

int32_t CompiledDFDLStringLiteral_compareTo(const CompiledDFDLStringLiteral* a,
                                            const CompiledDFDLStringLiteral* b) {
    if (a->byteLength != b->byteLength) return a->byteLength > b->byteLength ? -1 : 1;
    if (a->level != b->level) return a->level < b->level ? -1 : 1;
    if (a->kind == MARKUP_TERMINATOR && b->kind == MARKUP_SEPARATOR) return -1;
    return a->kind == MARKUP_SEPARATOR && b->kind == MARKUP_TERMINATOR ? 1 : 0;
}

bool CompiledDFDLStringLiteral_isSameStringLiteral(const CompiledDFDLStringLiteral* a,
                                                   const CompiledDFDLStringLiteral* b) {
    return a->encodingIndex == b->encodingIndex && DFDLUString_equals(a->text, b->text);
}

CompiledDFDLStringLiteral* CompiledDFDLStringLiteral_createDeepCopyAndIncrementLevel(
    const CompiledDFDLStringLiteral* this_, DFDLHeapAdapter* heap) {
    CompiledDFDLStringLiteral* copy =
        new_CompiledDFDLStringLiteral(heap, this_->text, this_->encodingIndex, this_->ownsText);
    for (int32_t i = 0; i < ArrayList_size(this_->parts); ++i) {
        addPart(copy,
                CompiledStringPart_clone(ArrayList_getPointer<CompiledStringPart>(this_->parts, i), heap), 0);
    }
    copy->byteLength = this_->byteLength;
    copy->kind = this_->kind;
    copy->level = this_->level + 1;
    copy->isCharacterText = this_->isCharacterText;
    copy->hasRuntimeEncoding = this_->hasRuntimeEncoding;
    return copy;
}

void CompiledDFDLStringLiteral_reset(CompiledDFDLStringLiteral* this_) {
    while (!ArrayList_isEmpty(this_->parts)) {
        delete_CompiledStringPart(ArrayList_popPointer<CompiledStringPart>(this_->parts));
    }
    if (this_->ownsText) delete_DFDLUString(this_->text);
    this_->text = nullptr;
    this_->exactBytes = nullptr;
    this_->byteLength = 0;
}
