#include "dfdl/foundation/dfdlustring.h"

#include <utility>

#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustringunits.h"

namespace {

DFDLUString* newOver(DFDLHeapAdapter* heap, DFDLHeapAdapter* bufferHeap, UChar* chars, int32_t length,
                     bool external) {
    auto* this_ = DFDLHeapAdapter_new<DFDLUString>(heap);
    this_->bufferHeap = bufferHeap;
    this_->chars = chars;
    this_->length = length;
    this_->external = external ? 1U : 0U;
    return this_;
}

}  // namespace

DFDLUString* new_DFDLUString(DFDLHeapAdapter* heap) {
    return newOver(heap, heap, DFDLUStringUnits_empty(), 0, true);
}

DFDLUString* new_DFDLUStringFromUChars(DFDLHeapAdapter* heap, const UChar* chars, int32_t length) {
    return newOver(heap, heap, DFDLUStringUnits_copy(heap, chars, length), length, false);
}

DFDLUString* new_DFDLUStringFromDFDLUString(const DFDLUString* source, DFDLHeapAdapter* heap) {
    return new_DFDLUStringFromDFDLUStringWithEnd(source, DFDLUString_length(source), heap);
}

DFDLUString* new_DFDLUStringFromDFDLUStringWithEnd(const DFDLUString* source, int32_t end,
                                                   DFDLHeapAdapter* heap) {
    const std::u16string_view text = DFDLUString_view(source);
    const int32_t length = end < DFDLUString_length(source) ? end : DFDLUString_length(source);
    return new_DFDLUStringFromUChars(heap, text.data(), length);
}

DFDLUString* new_DFDLUString_fromCString(DFDLHeapAdapter* heap, DFDLHeapAdapter* bufferHeap,
                                         UConverter* converter, const char* bytes, int32_t length) {
    int32_t units = 0;
    UChar* chars = DFDLUStringUnits_convert(bufferHeap, converter, bytes, length, &units);
    return chars == nullptr ? nullptr : newOver(heap, bufferHeap, chars, units, false);
}

DFDLUString* new_DFDLUStringUseUChars(DFDLHeapAdapter* heap, const UChar* chars, int32_t length) {
    if (length < 0) DFDLHeapAdapter_refuse(heap);
    return newOver(heap, heap, const_cast<UChar*>(chars), length, true);
}

void delete_DFDLUString(DFDLUString* this_) {
    if (this_ == nullptr) return;
    // As the pooling factory does it, without the way through it: this runs for each element of a parse.
    if (this_->pooled != 0 && this_->heap->poolingFactory->destructing == 0) {
        return DFDLUStringPooler_releaseDFDLUString(this_);
    }
    DFDLUStringUnits_free(this_);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void delete_DFDLUString_externalUChars(DFDLUString* this_) {
    if (this_ != nullptr) this_->external = 1;
    delete_DFDLUString(this_);
}

// Most texts have a unit for each byte; where they have more, the converter tells how many.
UChar* DFDLUStringUnits_convert(DFDLHeapAdapter* heap, UConverter* converter, const char* bytes,
                                int32_t length, int32_t* units) {
    const int32_t size = length >= 0 ? length : DFDLUStringUnits_length(heap, std::strlen(bytes));
    int32_t capacity = size;
    for (;;) {
        UChar* chars = DFDLUStringUnits_new(heap, capacity);
        UErrorCode status = U_ZERO_ERROR;
        *units = ucnv_toUChars(converter, chars, capacity, bytes, size, &status);
        if (U_SUCCESS(status)) {
            chars[*units] = 0;
            return chars;
        }
        DFDLBufferFactory_FreeUBuffer(heap->bufferFactory, chars);
        if (status != U_BUFFER_OVERFLOW_ERROR || *units <= capacity) return nullptr;
        capacity = DFDLUStringUnits_length(heap, static_cast<uint64_t>(*units));
    }
}
