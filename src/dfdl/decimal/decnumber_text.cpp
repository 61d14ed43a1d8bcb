#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "dfdl/decimal/decnumber.h"
#include "dfdl/decimal/decwork.h"

// Numeric strings: sign, digits with at most one point, exponent; or a special value.

namespace {

// An exponent beyond all that digits in front of it could make up for.
constexpr int64_t FARTHEST_EXPONENT = 8LL * DEC_LARGEST_EXPONENT;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

int64_t countDigits(const char* text) {
    int64_t count = 0;
    while (isDigit(text[count])) ++count;
    return count;
}

// The parts of a numeric string: digits with a point behind the whole ones, if any follow it.
struct Parts {
    const char* digits;
    int64_t wholeDigits;
    int64_t fractionDigits;
    int64_t exponent;
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
    parts->digits = text;
    parts->wholeDigits = countDigits(text);
    text += parts->wholeDigits;
    if (*text == '.') {
        parts->fractionDigits = countDigits(++text);
        text += parts->fractionDigits;
    }
    if (parts->wholeDigits + parts->fractionDigits == 0) return false;
    if (*text == 'e' || *text == 'E') text = readExponent(text + 1, &parts->exponent);
    return text != nullptr && *text == 0;
}

void skipLeadingZeros(Parts* parts) {
    while (parts->wholeDigits > 0 && *parts->digits == '0') {
        ++parts->digits;
        --parts->wholeDigits;
    }
    if (parts->wholeDigits > 0 || parts->fractionDigits == 0) return;
    const char* fraction = *parts->digits == '.' ? parts->digits + 1 : parts->digits;
    while (parts->fractionDigits > 0 && *fraction == '0') {
        ++fraction;
        --parts->fractionDigits;
    }
    parts->digits = fraction;
}

// From the last digit to the first, stepping over the point behind those of the whole number.
void setDigits(dfdl_decNumber* number, const Parts& parts) {
    const int64_t digits = parts.wholeDigits + parts.fractionDigits;
    uint32_t* units = dec_prepare(number, std::max<int64_t>(digits, 1));
    std::fill_n(units, decUnits_for(number->digits), 0U);
    const bool pointed = parts.wholeDigits > 0 && parts.fractionDigits > 0;
    const char* end = parts.digits + digits + (pointed ? 1 : 0);
    for (int64_t done = 0; done < digits; ++done) {
        if (pointed && done == parts.fractionDigits) --end;
        const auto digit = static_cast<uint32_t>(*--end - '0');
        units[done / DEC_UNIT_DIGITS] += digit * DEC_POWERS[done % DEC_UNIT_DIGITS];
    }
}

// Beyond the exponents of the context a number is infinite, subnormal or zero; digits are kept.
void setFinite(dfdl_decNumber* number, Parts parts, bool negative, const dfdl_decContext* context) {
    const int64_t exponent = parts.exponent - parts.fractionDigits;
    skipLeadingZeros(&parts);
    setDigits(number, parts);
    dfdl_decContext exact = *context;
    exact.precision = std::max(exact.precision, number->digits);
    dec_finish(number, {dfdl_decNumberUnits(number), exponent, negative, false}, &exact);
}

bool setSpecial(dfdl_decNumber* number, const char* text, uint8_t sign) {
    if (strcasecmp(text, "inf") == 0 || strcasecmp(text, "infinity") == 0) {
        dec_setSpecial(number, sign | DEC_INFINITE);
        return true;
    }
    const bool signalling = *text == 's' || *text == 'S';
    if (signalling) ++text;
    if (strncasecmp(text, "nan", 3) != 0) return false;
    Parts payload = {text + 3, countDigits(text + 3), 0, 0};
    if (payload.digits[payload.wholeDigits] != 0) return false;
    dec_setSpecial(number, sign | (signalling ? DEC_SIGNALLING : DEC_NAN));
    skipLeadingZeros(&payload);
    setDigits(number, payload);
    return true;
}

char* put(char* at, const char* text) {
    const size_t length = std::strlen(text);
    std::memcpy(at, text, length);
    return at + length;
}

// Opens a gap for a point before the last `behind` characters.
char* insertPoint(char* end, int64_t behind) {
    char* place = end - behind;
    std::memmove(place + 1, place, static_cast<size_t>(behind));
    *place = '.';
    return end + 1;
}

// Digits with a point among them or in front, and no exponent.
char* putPlain(char* at, const dfdl_decNumber* number, int64_t digits) {
    const int64_t fraction = -static_cast<int64_t>(number->exponent);
    if (fraction >= digits) {
        at = put(at, "0.");
        std::memset(at, '0', static_cast<size_t>(fraction - digits));
        return dfdl_decNumberDigitsToString(number, at + (fraction - digits), digits);
    }
    at = dfdl_decNumberDigitsToString(number, at, digits);
    return fraction == 0 ? at : insertPoint(at, fraction);
}

char* putScientific(char* at, const dfdl_decNumber* number, int64_t digits) {
    constexpr int64_t MOST_EXPONENT_DIGITS = 10;
    at = dfdl_decNumberDigitsToString(number, at, digits);
    if (digits > 1) at = insertPoint(at, digits - 1);
    const int64_t exponent = number->exponent + digits - 1;
    *at++ = 'E';
    *at++ = exponent < 0 ? '-' : '+';
    return std::to_chars(at, at + MOST_EXPONENT_DIGITS, exponent < 0 ? -exponent : exponent).ptr;
}

char* putSpecial(char* at, const dfdl_decNumber* number) {
    if (dec_isInfinite(number)) return put(at, "Infinity");
    at = put(at, (number->bits & DEC_SIGNALLING) != 0 ? "sNaN" : "NaN");
    return dfdl_decNumberDigitsToString(number, at, decUnits_digits(dfdl_decNumberUnits(number)));
}

}  // namespace

void dfdl_decNumberFromString(dfdl_decNumber* number, const char* text, dfdl_decContext* context) {
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    Parts parts{};
    if (readParts(text, &parts)) return setFinite(number, parts, negative, context);
    if (setSpecial(number, text, negative ? DEC_NEGATIVE : 0)) return;
    dec_setSpecial(number, DEC_NAN);
    context->status |= DEC_CONVERSION_SYNTAX;
}

int64_t dfdl_decNumberTextSize(const dfdl_decNumber* number) {
    constexpr int64_t SIGN_POINT_EXPONENT = 24;  // and the zeros that a plain number may begin with
    return static_cast<int64_t>(number->digits) + SIGN_POINT_EXPONENT;
}

char* dfdl_decNumberDigitsToString(const dfdl_decNumber* number, char* text, int64_t digits) {
    const DecUnits units = dfdl_decNumberUnits(number);
    uint32_t unit = 0;
    for (int64_t done = 0; done < digits; ++done) {
        if (done % DEC_UNIT_DIGITS == 0) unit = units.at[done / DEC_UNIT_DIGITS];
        text[digits - 1 - done] = static_cast<char>('0' + unit % 10);
        unit /= 10;
    }
    return text + digits;
}

int32_t dfdl_decNumberToString(const dfdl_decNumber* number, char* text) {
    constexpr int64_t SMALLEST_PLAIN = -6;
    const int64_t digits = dfdl_decNumberSignificantDigits(number);
    const int64_t first = number->exponent + digits - 1;
    char* at = text;
    if (dec_isNegative(number)) *at++ = '-';
    if (!dfdl_decNumberIsFinite(number)) {
        at = putSpecial(at, number);
    } else if (number->exponent <= 0 && first >= SMALLEST_PLAIN) {
        at = putPlain(at, number, digits);
    } else {
        at = putScientific(at, number, digits);
    }
    *at = 0;
    return static_cast<int32_t>(at - text);
}
