#include "dfdl/foundation/dfdlstring.h"

#include <cstring>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

DFDLString* newString(DFDLHeapAdapter* heap, const char* bytes, size_t length) {
    if (length >= INT32_MAX) DFDLHeapAdapter_refuse(heap);
    auto* this_ = DFDLHeapAdapter_new<DFDLString>(heap);
    this_->chars = DFDLHeapAdapter_newArray<char>(heap, length + 1);
    this_->length = static_cast<int32_t>(length);
    if (length > 0) std::memcpy(this_->chars, bytes, length);
    return this_;
}

}  // namespace

DFDLString* new_DFDLString_fromCString(DFDLHeapAdapter* heap, const char* text) {
    return newString(heap, text, std::strlen(text));
}

DFDLString* new_DFDLStringFromDFDLString(const DFDLString* source, DFDLHeapAdapter* heap) {
    return newString(heap, source->chars, static_cast<size_t>(source->length));
}

DFDLString* new_DFDLStringFromDFDLUString(DFDLHeapAdapter* heap, UConverter* converter,
                                          const DFDLUString* source) {
    const std::u16string_view text = DFDLUString_view(source);
    // ICU's bound is an int32 that wraps round for long texts: counted here, in 64 bits.
    const int64_t bound = (static_cast<int64_t>(text.size()) + 10) * ucnv_getMaxCharSize(converter);
    if (bound >= INT32_MAX) DFDLHeapAdapter_refuse(heap);
    auto* bytes = reinterpret_cast<char*>(DFDLBufferFactory_GetBuffer(heap->bufferFactory, bound + 1));
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucnv_fromUChars(converter, bytes, static_cast<int32_t>(bound), text.data(),
                                           static_cast<int32_t>(text.size()), &status);
    DFDLString* this_ = U_FAILURE(status) ? nullptr : newString(heap, bytes, static_cast<size_t>(length));
    DFDLBufferFactory_FreeBuffer(heap->bufferFactory, reinterpret_cast<uint8_t*>(bytes));
    return this_;
}

void delete_DFDLString(DFDLString* this_) {
    if (this_ == nullptr) return;
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->chars);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}
