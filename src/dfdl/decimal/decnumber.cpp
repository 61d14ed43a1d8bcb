#include "dfdl/decimal/decnumber.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace {

bool isNegative(const dfdl_decNumber* number) { return (number->bits & DEC_NEGATIVE) != 0; }
bool isNaN(const dfdl_decNumber* number) { return (number->bits & (DEC_NAN | DEC_SIGNALLING)) != 0; }
bool isInfinite(const dfdl_decNumber* number) { return (number->bits & DEC_INFINITE) != 0; }

// The exponent of the first digit.
int64_t adjusted(const dfdl_decNumber* number) {
    return static_cast<int64_t>(number->exponent) + number->count - 1;
}

int32_t compareInt(int64_t a, int64_t b) { return a < b ? -1 : (a > b ? 1 : 0); }

// Both are finite, not zero and of equal adjusted exponent: digits count from the first; missing ones are 0.
int32_t compareDigits(const dfdl_decNumber* a, const dfdl_decNumber* b) {
    const int32_t common = std::min(a->count, b->count);
    const int order = std::memcmp(a->digits, b->digits, static_cast<size_t>(common));
    if (order != 0) return order < 0 ? -1 : 1;
    const dfdl_decNumber* longer = a->count > b->count ? a : b;
    for (int32_t i = common; i < longer->count; ++i) {
        if (longer->digits[i] != 0) return longer == a ? 1 : -1;
    }
    return 0;
}

int32_t compareMagnitudes(const dfdl_decNumber* a, const dfdl_decNumber* b) {
    if (isInfinite(a) || isInfinite(b)) return compareInt(isInfinite(a), isInfinite(b));
    if (dfdl_decNumberIsZero(a) || dfdl_decNumberIsZero(b)) {
        return compareInt(!dfdl_decNumberIsZero(a), !dfdl_decNumberIsZero(b));
    }
    const int32_t order = compareInt(adjusted(a), adjusted(b));
    return order != 0 ? order : compareDigits(a, b);
}

// What rounding has to know of the digits that are cut off, compared with half a unit: -1, 0 or 1.
int32_t compareWithHalf(const uint8_t* cut, int32_t count, int64_t leadingZeros) {
    if (leadingZeros > 0 || count == 0) return -1;
    if (cut[0] != 5) return cut[0] < 5 ? -1 : 1;
    return std::any_of(cut + 1, cut + count, [](uint8_t digit) { return digit != 0; }) ? 1 : 0;
}

bool roundsUp(DecRounding rounding, int32_t againstHalf, bool odd, bool negative) {
    switch (rounding) {
        case DEC_ROUND_CEILING:
            return !negative;
        case DEC_ROUND_FLOOR:
            return negative;
        case DEC_ROUND_UP:
            return true;
        case DEC_ROUND_DOWN:
            return false;
        case DEC_ROUND_HALF_UP:
            return againstHalf >= 0;
        case DEC_ROUND_HALF_DOWN:
            return againstHalf > 0;
        default:
            return againstHalf > 0 || (againstHalf == 0 && odd);
    }
}

bool addDigit(uint64_t* value, uint32_t digit) {
    constexpr uint64_t MOST = std::numeric_limits<uint64_t>::max();
    if (*value > (MOST - digit) / 10) return false;
    *value = *value * 10 + digit;
    return true;
}

bool foldInteger(const dfdl_decNumber* number, int32_t kept, uint64_t* value) {
    *value = 0;
    for (int32_t i = 0; i < kept; ++i) {
        if (!addDigit(value, number->digits[i])) return false;
    }
    if (*value == 0) return true;
    for (int32_t i = 0; i < number->exponent; ++i) {
        if (!addDigit(value, 0)) return false;
    }
    return true;
}

char* put(char* at, const char* text) {
    const size_t length = std::strlen(text);
    std::memcpy(at, text, length);
    return at + length;
}

char* putDigits(char* at, const uint8_t* digits, int64_t count) {
    for (int64_t i = 0; i < count; ++i) *at++ = static_cast<char>('0' + digits[i]);
    return at;
}

char* putZeros(char* at, int64_t count) {
    std::memset(at, '0', static_cast<size_t>(count));
    return at + count;
}

char* putPlain(char* at, const dfdl_decNumber* number) {
    const int64_t whole = static_cast<int64_t>(number->count) + number->exponent;  // digits before the point
    if (number->exponent == 0) return putDigits(at, number->digits, number->count);
    if (whole > 0) {
        at = putDigits(at, number->digits, whole);
        *at++ = '.';
        return putDigits(at, number->digits + whole, number->count - whole);
    }
    at = put(at, "0.");
    return putDigits(putZeros(at, -whole), number->digits, number->count);
}

char* putScientific(char* at, const dfdl_decNumber* number) {
    at = putDigits(at, number->digits, 1);
    if (number->count > 1) {
        *at++ = '.';
        at = putDigits(at, number->digits + 1, number->count - 1);
    }
    *at++ = 'E';
    const int64_t exponent = adjusted(number);
    *at++ = exponent < 0 ? '-' : '+';
    return std::to_chars(at, at + 20, exponent < 0 ? -exponent : exponent).ptr;
}

char* putSpecial(char* at, const dfdl_decNumber* number) {
    if (isInfinite(number)) return put(at, "Infinity");
    at = put(at, (number->bits & DEC_SIGNALLING) != 0 ? "sNaN" : "NaN");
    return putDigits(at, number->digits, number->count);
}

}  // namespace

void dfdl_decNumberInit(dfdl_decNumber* number, DFDLHeapAdapter* heap) {
    number->heap = heap;
    number->digits = nullptr;
    number->count = 0;
    number->exponent = 0;
    number->bits = 0;
}

void dfdl_decNumberRelease(dfdl_decNumber* number) {
    if (number->digits != nullptr) DFDLHeapAdapter_arrayDeallocate(number->heap, number->digits);
    dfdl_decNumberInit(number, number->heap);
}

void dfdl_decNumberCopy(dfdl_decNumber* target, const dfdl_decNumber* source) {
    uint8_t* digits = nullptr;
    if (source->count > 0) {
        digits = DFDLHeapAdapter_newArray<uint8_t>(target->heap, static_cast<size_t>(source->count));
        std::memcpy(digits, source->digits, static_cast<size_t>(source->count));
    }
    target->digits = digits;
    target->count = source->count;
    target->exponent = source->exponent;
    target->bits = source->bits;
}

bool dfdl_decNumberIsZero(const dfdl_decNumber* number) {
    return dfdl_decNumberIsFinite(number) && (number->count == 0 || number->digits[0] == 0);
}

int32_t dfdl_decNumberCompare(const dfdl_decNumber* a, const dfdl_decNumber* b) {
    if (isNaN(a) || isNaN(b)) return -2;
    const bool aNegative = isNegative(a) && !dfdl_decNumberIsZero(a);
    const bool bNegative = isNegative(b) && !dfdl_decNumberIsZero(b);
    if (aNegative != bNegative) return aNegative ? -1 : 1;
    const int32_t order = compareMagnitudes(a, b);
    return aNegative ? -order : order;
}

bool dfdl_decNumberToInteger(const dfdl_decNumber* number, DecRounding rounding, uint64_t* magnitude) {
    *magnitude = 0;
    if (!dfdl_decNumberIsFinite(number)) return false;
    if (dfdl_decNumberIsZero(number)) return true;
    const int64_t whole = static_cast<int64_t>(number->count) + number->exponent;
    const auto kept = static_cast<int32_t>(std::clamp<int64_t>(whole, 0, number->count));
    if (!foldInteger(number, kept, magnitude)) return false;
    const bool exact = std::all_of(number->digits + kept, number->digits + number->count,
                                   [](uint8_t digit) { return digit == 0; });
    if (exact) return true;
    const int32_t againstHalf =
        compareWithHalf(number->digits + kept, number->count - kept, whole < 0 ? -whole : 0);
    if (!roundsUp(rounding, againstHalf, (*magnitude & 1) != 0, isNegative(number))) return true;
    if (*magnitude == std::numeric_limits<uint64_t>::max()) return false;
    ++*magnitude;
    return true;
}

int64_t dfdl_decNumberTextSize(const dfdl_decNumber* number) {
    constexpr int64_t SIGN_POINT_EXPONENT = 24;  // and the zeros that a plain number may begin with
    return static_cast<int64_t>(number->count) + SIGN_POINT_EXPONENT;
}

int32_t dfdl_decNumberToString(const dfdl_decNumber* number, char* text) {
    constexpr int64_t SMALLEST_PLAIN = -6;
    char* at = text;
    if (isNegative(number)) *at++ = '-';
    if (!dfdl_decNumberIsFinite(number)) {
        at = putSpecial(at, number);
    } else if (number->count == 0) {
        at = put(at, "0");
    } else if (number->exponent <= 0 && adjusted(number) >= SMALLEST_PLAIN) {
        at = putPlain(at, number);
    } else {
        at = putScientific(at, number);
    }
    *at = 0;
    return static_cast<int32_t>(at - text);
}
