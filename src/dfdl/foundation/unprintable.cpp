#include "dfdl/foundation/unprintable.h"

#include <unicode/utypes.h>

#include <algorithm>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

constexpr std::u16string_view CONTROLS[] = {
    u"%NUL;", u"%SOH;", u"%STX;", u"%ETX;", u"%EOT;", u"%ENQ;", u"%ACK;", u"%BEL;", u"%BS;",
    u"%HT;",  u"%LF;",  u"%VT;",  u"%FF;",  u"%CR;",  u"%SO;",  u"%SI;",  u"%DLE;", u"%DC1;",
    u"%DC2;", u"%DC3;", u"%DC4;", u"%NAK;", u"%SYN;", u"%ETB;", u"%CAN;", u"%EM;",  u"%SUB;",
    u"%ESC;", u"%FS;",  u"%GS;",  u"%RS;",  u"%US;",  u"%SP;"};

// Empty for a character that shows as itself.
std::u16string_view entityOf(UChar unit, bool replaceSpace) {
    if (unit < u' ' || (unit == u' ' && replaceSpace)) return CONTROLS[unit];
    switch (unit) {
        case 0x7F:
            return u"%DEL;";
        case 0x85:
            return u"%NEL;";
        case 0xA0:
            return u"%NBSP;";
        case 0x2028:
            return u"%LS;";
        default:
            return {};
    }
}

}  // namespace

DFDLUString* Unprintable_replace(DFDLHeapAdapter* heap, std::u16string_view text, bool replaceSpace) {
    size_t length = 0;
    for (const UChar unit : text) length += std::max<size_t>(entityOf(unit, replaceSpace).size(), 1);
    if (length == text.size()) {
        return DFDLUStringPooler_getDFDLUStringFromUChars(heap, text.data(), static_cast<int32_t>(length));
    }
    if (length >= INT32_MAX) DFDLHeapAdapter_refuse(heap);
    UChar* buffer = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, static_cast<int64_t>(length) + 1);
    UChar* end = buffer;
    for (const UChar& unit : text) {
        const std::u16string_view entity = entityOf(unit, replaceSpace);
        end = entity.empty() ? std::copy_n(&unit, 1, end) : std::copy(entity.begin(), entity.end(), end);
    }
    *end = 0;
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, buffer, static_cast<int32_t>(length));
}
