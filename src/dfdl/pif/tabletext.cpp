#include "dfdl/pif/tabletext.h"

#include <unicode/ustring.h>

#include <algorithm>

#include "dfdl/foundation/dfdlustring.h"

namespace {

constexpr UChar32 REPLACEMENT = 0xFFFD;

DFDLUString* newText(DFDLHeapAdapter* heap, int32_t length) {
    const size_t bytes = sizeof(DFDLUString) + (static_cast<size_t>(length) + 1) * sizeof(UChar);
    auto* text = static_cast<DFDLUString*>(DFDLHeapAdapter_objectAllocate(heap, bytes));
    text->bufferHeap = heap;
    text->chars = reinterpret_cast<UChar*>(text + 1);
    text->length = length;
    text->external = 1;  // the characters go with the block
    return text;
}

}  // namespace

DFDLUString* TableText_fromUTF8(DFDLHeapAdapter* heap, std::string_view text) {
    if (text.size() > INT32_MAX) DFDLHeapAdapter_refuse(heap);
    const auto bytes = static_cast<int32_t>(text.size());
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8WithSub(nullptr, 0, &length, text.data(), bytes, REPLACEMENT, nullptr, &status);
    DFDLUString* result = newText(heap, length);
    status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(result->chars, length + 1, nullptr, text.data(), bytes, REPLACEMENT, nullptr,
                         &status);
    return result;
}

DFDLUString* TableText_fromUnits(DFDLHeapAdapter* heap, std::u16string_view text) {
    DFDLUString* result = newText(heap, static_cast<int32_t>(text.size()));
    std::copy(text.begin(), text.end(), result->chars);
    return result;
}
