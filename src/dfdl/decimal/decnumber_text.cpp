#include <strings.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "dfdl/decimal/decnumber.h"

// Numeric strings: sign, digits with at most one point, exponent; or a special value.

namespace {

constexpr int64_t FARTHEST_EXPONENT = 4LL * DEC_LARGEST_EXPONENT;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

int64_t countDigits(const char* text) {
    int64_t count = 0;
    while (isDigit(text[count])) ++count;
    return count;
}

// The parts of a numeric string; `end` is where reading stopped.
struct Parts {
    const char* whole;
    int64_t wholeDigits;
    const char* fraction;
    int64_t fractionDigits;
    int64_t exponent;
    const char* end;
};

// Capped: what is beyond any number's exponent stays beyond.
const char* readExponent(const char* text, int64_t* exponent) {
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    if (!isDigit(*text)) return nullptr;
    int64_t value = 0;
    for (; isDigit(*text); ++text) value = std::min(value * 10 + (*text - '0'), FARTHEST_EXPONENT);
    *exponent = negative ? -value : value;
    return text;
}

bool readParts(const char* text, Parts* parts) {
    parts->whole = text;
    parts->wholeDigits = countDigits(text);
    text += parts->wholeDigits;
    parts->fraction = text;
    if (*text == '.') {
        parts->fraction = ++text;
        parts->fractionDigits = countDigits(text);
        text += parts->fractionDigits;
    }
    if (parts->wholeDigits + parts->fractionDigits == 0) return false;
    if (*text == 'e' || *text == 'E') text = readExponent(text + 1, &parts->exponent);
    parts->end = text;
    return text != nullptr && *text == 0;
}

void setDigits(dfdl_decNumber* number, const char* first, int64_t firstCount, const char* second,
               int64_t secondCount) {
    while (firstCount > 0 && *first == '0') {
        ++first;
        --firstCount;
    }
    while (firstCount == 0 && secondCount > 0 && *second == '0') {
        ++second;
        --secondCount;
    }
    const int64_t count = firstCount + secondCount;
    if (count > std::numeric_limits<int32_t>::max() / 2) DFDLHeapAdapter_refuse(number->heap);
    number->count = count == 0 ? 1 : static_cast<int32_t>(count);
    number->digits = DFDLHeapAdapter_newArray<uint8_t>(number->heap, static_cast<size_t>(number->count));
    for (int64_t i = 0; i < firstCount; ++i) number->digits[i] = static_cast<uint8_t>(first[i] - '0');
    for (int64_t i = 0; i < secondCount; ++i)
        number->digits[firstCount + i] = static_cast<uint8_t>(second[i] - '0');
}

// Beyond the largest exponent a number is infinite, below the smallest it is zero.
void setExponent(dfdl_decNumber* number, int64_t exponent) {
    const bool zero = number->digits[0] == 0;
    const int64_t adjusted = exponent + number->count - 1;
    if (adjusted > DEC_LARGEST_EXPONENT && !zero) {
        number->bits |= DEC_INFINITE;
        exponent = 0;
    } else if (adjusted < -DEC_LARGEST_EXPONENT && !zero) {
        number->digits[0] = 0;
        number->count = 1;
    }
    const int64_t limit = DEC_LARGEST_EXPONENT;
    number->exponent = static_cast<int32_t>(std::clamp(exponent, -limit - number->count, limit));
}

bool readSpecial(dfdl_decNumber* number, const char* text) {
    if (strcasecmp(text, "inf") == 0 || strcasecmp(text, "infinity") == 0) {
        number->bits |= DEC_INFINITE;
        return true;
    }
    const bool signalling = *text == 's' || *text == 'S';
    if (signalling) ++text;
    if (strncasecmp(text, "nan", 3) != 0) return false;
    text += 3;
    const int64_t payload = countDigits(text);
    if (text[payload] != 0) return false;
    if (payload > 0) setDigits(number, text, payload, text, 0);
    number->bits |= signalling ? DEC_SIGNALLING : DEC_NAN;
    return true;
}

}  // namespace

void dfdl_decNumberFromString(dfdl_decNumber* number, const char* text, uint32_t* status) {
    dfdl_decNumberRelease(number);
    if (*text == '-') number->bits = DEC_NEGATIVE;
    if (*text == '-' || *text == '+') ++text;
    Parts parts{};
    if (readParts(text, &parts)) {
        setDigits(number, parts.whole, parts.wholeDigits, parts.fraction, parts.fractionDigits);
        setExponent(number, parts.exponent - parts.fractionDigits);
    } else if (!readSpecial(number, text)) {
        number->bits = DEC_NAN;
        *status |= DEC_CONVERSION_SYNTAX;
    }
}
