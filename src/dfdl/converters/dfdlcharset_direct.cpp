#include <emmintrin.h>

#include <cstring>

#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/guard.h"

// The roads past ICU. What they give is what ICU would give: the tables are filled by the converter itself.

namespace {

constexpr int32_t BYTES = 256;
constexpr int32_t ASCII = 128;

// What one byte alone decodes to; NOT_IN_TABLE if that is not exactly one unit that stands for itself.
UChar decodeByte(UConverter* converter, int32_t byte) {
    const auto source = static_cast<char>(byte);
    UChar units[4];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = ucnv_toUChars(converter, units, 4, &source, 1, &status);
    ucnv_reset(converter);
    return U_SUCCESS(status) && count == 1 ? units[0] : NOT_IN_TABLE;
}

bool keepsASCII(UConverter* converter) {
    for (int32_t byte = 0; byte < ASCII; ++byte) {
        if (decodeByte(converter, byte) != byte) return false;
    }
    return true;
}

bool isStateless(UConverterType type) {
    switch (type) {
        case UCNV_SBCS:
        case UCNV_MBCS:
        case UCNV_LATIN_1:
        case UCNV_US_ASCII:
        case UCNV_UTF8:
            return true;
        default:
            return false;
    }
}

bool isSingleByte(UConverter* converter) {
    const UConverterType type = ucnv_getType(converter);
    return ucnv_getMaxCharSize(converter) == 1 &&
           (type == UCNV_SBCS || type == UCNV_LATIN_1 || type == UCNV_US_ASCII);
}

void fillTable(DFDLCharset* charset, UConverter* converter) {
    auto* table = DFDLHeapAdapter_newArray<UChar>(charset->heap, BYTES);
    for (int32_t byte = 0; byte < BYTES; ++byte) table[byte] = decodeByte(converter, byte);
    charset->table = table;
}

// The converter at hand has callbacks of its user; a fresh one is asked.
int32_t findRoad(DFDLCharset* charset) {
    UConverter* shared = DFDLCharset_getConverter(charset);
    if (shared == nullptr || !isStateless(ucnv_getType(shared))) return ROAD_ICU;
    UErrorCode status = U_ZERO_ERROR;
    const Owned<UConverter, ucnv_close> converter(ucnv_open(ucnv_getName(shared, &status), &status));
    if (U_FAILURE(status)) return ROAD_ICU;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    if (isSingleByte(converter.get())) {
        fillTable(charset, converter.get());
        return ROAD_TABLE;
    }
    return keepsASCII(converter.get()) ? ROAD_ASCII : ROAD_ICU;
}

// Widens 16 bytes; false if one of them is not ASCII.
bool widen16(const uint8_t* bytes, UChar* target) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + 8), _mm_unpackhi_epi8(block, zero));
    return _mm_movemask_epi8(block) == 0;
}

bool widen8(const uint8_t* bytes, UChar* target) {
    const __m128i block = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_unpacklo_epi8(block, _mm_setzero_si128()));
    return _mm_movemask_epi8(block) == 0;
}

bool widenFew(const uint8_t* bytes, int64_t count, UChar* target) {
    uint32_t all = 0;
    for (int64_t at = 0; at < count; ++at) {
        all |= bytes[at];
        target[at] = bytes[at];
    }
    return all < ASCII;
}

// The last block overlaps the one before it, so that only texts shorter than a block go byte by byte.
bool widenASCII(const uint8_t* bytes, int64_t count, UChar* target) {
    if (count < 8) return widenFew(bytes, count, target);
    if (count < 16) return widen8(bytes, target) && widen8(bytes + count - 8, target + count - 8);
    for (int64_t at = 0; at + 16 <= count; at += 16) {
        if (!widen16(bytes + at, target + at)) return false;
    }
    return widen16(bytes + count - 16, target + count - 16);
}

bool lookUp(const UChar* table, const uint8_t* bytes, int64_t count, UChar* target) {
    for (int64_t at = 0; at < count; ++at) {
        const UChar unit = table[bytes[at]];
        if (unit == NOT_IN_TABLE) return false;
        target[at] = unit;
    }
    return true;
}

}  // namespace

void DFDLCharset_findRoad(DFDLCharset* this_) { this_->road = findRoad(this_); }

bool DFDLCharset_decodeDirectly(DFDLCharset* this_, const uint8_t* bytes, int64_t count, UChar* target) {
    if (this_->road == ROAD_UNKNOWN) DFDLCharset_findRoad(this_);
    switch (this_->road) {
        case ROAD_ASCII:
            return widenASCII(bytes, count, target);
        case ROAD_TABLE:
            return lookUp(this_->table, bytes, count, target);
        default:
            return false;
    }
}
