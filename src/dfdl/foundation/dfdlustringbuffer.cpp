#include "dfdl/foundation/dfdlustringbuffer.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "dfdl/foundation/dfdlustringunits.h"

namespace {

constexpr int64_t MARGIN = 100;

// Makes a gap of `length` units at `index`; returns where it is. What is put there may not be a part of the
// buffer itself: it may have moved.
UChar* open(DFDLUStringBuffer* buffer, int32_t index, int32_t length) {
    DFDLUStringBuffer_ensureCapacity(buffer, length);
    UChar* gap = buffer->chars + index;
    std::copy_backward(gap, buffer->chars + buffer->length, buffer->chars + buffer->length + length);
    buffer->length += length;
    return gap;
}

void insert(DFDLUStringBuffer* buffer, int32_t index, const UChar* chars, int32_t length) {
    if (length > 0) std::copy_n(chars, length, open(buffer, index, length));
}

}  // namespace

DFDLUStringBuffer* new_DFDLUStringBuffer(DFDLHeapAdapter* heap) {
    return DFDLHeapAdapter_new<DFDLUStringBuffer>(heap);
}

void delete_DFDLUStringBuffer(DFDLUStringBuffer* this_) {
    if (this_ == nullptr) return;
    DFDLBufferFactory_FreeUBuffer(this_->heap->bufferFactory, this_->chars);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

// Beyond the margin the capacity also grows by its half, so that a long text is not copied for every hundred
// units.
void DFDLUStringBuffer_ensureCapacity(DFDLUStringBuffer* this_, int32_t extra) {
    const int64_t needed = static_cast<int64_t>(this_->length) + std::max(extra, 0);
    if (this_->capacity > needed) return;
    if (needed >= INT32_MAX) DFDLHeapAdapter_refuse(this_->heap);
    const int64_t grown = this_->capacity + std::max<int64_t>(extra + MARGIN, this_->capacity / 2);
    const auto capacity = static_cast<int32_t>(std::min<int64_t>(grown, INT32_MAX));
    UChar* chars = DFDLBufferFactory_GetUBuffer(this_->heap->bufferFactory, capacity);
    std::copy_n(this_->chars, this_->length, chars);
    DFDLBufferFactory_FreeUBuffer(this_->heap->bufferFactory, this_->chars);
    this_->chars = chars;
    this_->capacity = capacity;
}

void DFDLUStringBuffer_appendUChar(DFDLUStringBuffer* this_, UChar unit) {
    DFDLUStringBuffer_ensureCapacity(this_, 1);
    this_->chars[this_->length++] = unit;
}

void DFDLUStringBuffer_appendUChars(DFDLUStringBuffer* this_, const UChar* chars, int32_t length) {
    insert(this_, this_->length, chars, length);
}

void DFDLUStringBuffer_appendDFDLUString(DFDLUStringBuffer* this_, const DFDLUString* string) {
    if (string != nullptr) insert(this_, this_->length, string->chars, string->length);
}

void DFDLUStringBuffer_appendDFDLStringBuffer(DFDLUStringBuffer* this_, const DFDLUStringBuffer* other) {
    const int32_t length = other->length;
    UChar* gap = open(this_, this_->length, length);
    std::copy_n(other->chars, length, gap);  // read after the move, for a buffer that is appended to itself
}

void DFDLUStringBuffer_appendInt(DFDLUStringBuffer* this_, int64_t value) {
    char digits[24];
    const char* end = std::to_chars(digits, std::end(digits), value).ptr;
    UChar* gap = open(this_, this_->length, static_cast<int32_t>(end - digits));
    std::copy(static_cast<const char*>(digits), end, gap);
}

void DFDLUStringBuffer_prependUChar(DFDLUStringBuffer* this_, UChar unit) { *open(this_, 0, 1) = unit; }

void DFDLUStringBuffer_prependUChars(DFDLUStringBuffer* this_, const UChar* chars, int32_t length) {
    insert(this_, 0, chars, length);
}

void DFDLUStringBuffer_prependDFDLUString(DFDLUStringBuffer* this_, const DFDLUString* string) {
    if (string != nullptr) insert(this_, 0, string->chars, string->length);
}

UChar DFDLUStringBuffer_getUCharAt(const DFDLUStringBuffer* this_, int32_t index) {
    return index < 0 || index >= this_->length ? u'\0' : this_->chars[index];
}

void DFDLUStringBuffer_delete(DFDLUStringBuffer* this_, int32_t from, int32_t to) {
    const int32_t first = std::clamp(from, 0, this_->length);
    const int32_t behind = std::clamp(to, first, this_->length);
    UChar* chars = this_->chars;
    std::copy(chars + behind, chars + this_->length, chars + first);
    this_->length -= behind - first;
}

int32_t DFDLUStringBuffer_lastIndexOfWithStart(const DFDLUStringBuffer* this_, const DFDLUString* part,
                                               int32_t start) {
    if (start < 0) return -1;
    const size_t at = DFDLUStringBuffer_view(this_).rfind(DFDLUString_view(part), static_cast<size_t>(start));
    return at == std::u16string_view::npos ? -1 : static_cast<int32_t>(at);
}

void DFDLUStringBuffer_reset(DFDLUStringBuffer* this_) { this_->length = 0; }

UChar* DFDLUStringBuffer_toString(const DFDLUStringBuffer* this_) {
    return DFDLUStringUnits_copy(this_->heap, this_->chars, this_->length);
}

DFDLUString* DFDLUStringBuffer_toDFDLUString(const DFDLUStringBuffer* this_) {
    return new_DFDLUStringFromUChars(this_->heap, this_->chars, this_->length);
}

DFDLUString* DFDLUStringBuffer_convertToDFDLUString(DFDLUStringBuffer* this_) {
    DFDLUString* string = DFDLUStringBuffer_toDFDLUString(this_);
    delete_DFDLUStringBuffer(this_);
    return string;
}

DFDLUString* DFDLUStringBuffer_convertToPooledDFDLUString(DFDLUStringBuffer* this_) {
    DFDLUStringBuffer_ensureCapacity(this_, 0);  // for the terminator
    DFDLUString* string = DFDLUStringPooler_getDFDLUStringUseUChars(this_->heap, this_->chars, this_->length);
    this_->chars = nullptr;
    delete_DFDLUStringBuffer(this_);
    return string;
}
