#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>

#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringunits.h"

namespace {

using View = std::u16string_view;

// Half a unit of the least double has 767 digits: what follows the 768th digit counts only by being there.
constexpr size_t SIGNIFICANT_DIGITS = 768;
// Beyond every exponent that a double can have, and far from an overflow of the sums below.
constexpr int64_t HUGE_EXPONENT = 1LL << 40;

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isSpace(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r'; }

View withoutSpace(View text) {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

bool take(View* text, char16_t unit) {
    if (!text->starts_with(unit)) return false;
    text->remove_prefix(1);
    return true;
}

// True for "-".
bool takeSign(View* text) {
    const bool negative = take(text, u'-');
    if (!negative) take(text, u'+');
    return negative;
}

template <class Value>
Value malformed(UErrorCode* status) {
    *status = U_INVALID_FORMAT_ERROR;
    return Value();
}

// Digits and nothing else, at least one; false if they exceed the limit.
bool magnitude(View digits, uint64_t limit, uint64_t* value) {
    *value = 0;
    for (const char16_t unit : digits) {
        if (!isDigit(unit)) return false;
        const auto digit = static_cast<uint64_t>(unit - u'0');
        if (digit > limit || *value > (limit - digit) / 10) return false;
        *value = *value * 10 + digit;
    }
    return !digits.empty();
}

template <std::integral Integer>
Integer toInteger(const DFDLUString* string, UErrorCode* status) {
    View text = withoutSpace(DFDLUString_view(string));
    const bool negative = takeSign(&text);
    constexpr auto MAX = static_cast<uint64_t>(std::numeric_limits<Integer>::max());
    const uint64_t limit = negative ? (std::signed_integral<Integer> ? MAX + 1 : 0) : MAX;
    uint64_t value;
    if (!magnitude(text, limit, &value)) return malformed<Integer>(status);
    *status = U_ZERO_ERROR;
    return static_cast<Integer>(negative ? 0 - value : value);
}

// A decimal number as digits without leading zeros, and the power of ten of the last one.
struct Digits {
    char chars[SIGNIFICANT_DIGITS + 32];  // room for the exponent
    size_t count = 0;
    int64_t exponent = 0;
    bool any = false;

    void add(char16_t digit, bool fraction) {
        any = true;
        const bool kept = count < SIGNIFICANT_DIGITS;
        if (!kept && digit != u'0') chars[SIGNIFICANT_DIGITS - 1] |= 1;  // not quite a tie any more
        if (kept && (count > 0 || digit != u'0')) chars[count++] = static_cast<char>(digit);
        exponent += (kept ? 0 : 1) - (fraction ? 1 : 0);
    }
};

void takeDigits(View* text, Digits* digits, bool fraction) {
    for (; !text->empty() && isDigit(text->front()); text->remove_prefix(1)) {
        digits->add(text->front(), fraction);
    }
}

bool takeExponent(View* text, int64_t* exponent) {
    const bool negative = takeSign(text);
    int64_t value = 0;
    if (text->empty()) return false;
    for (const char16_t unit : *text) {
        if (!isDigit(unit)) return false;
        value = std::min(value * 10 + (unit - u'0'), HUGE_EXPONENT);
    }
    *exponent += negative ? -value : value;
    return true;
}

bool takeNumber(View text, Digits* digits) {
    takeDigits(&text, digits, false);
    if (take(&text, u'.')) takeDigits(&text, digits, true);
    if (!digits->any) return false;
    if (take(&text, u'e') || take(&text, u'E')) return takeExponent(&text, &digits->exponent);
    return text.empty();
}

// False for what is too large. What is too small is zero.
template <class Real>
bool value(Digits* digits, Real* result) {
    *result = 0;
    const int64_t leading = digits->exponent + static_cast<int64_t>(digits->count);
    if (digits->count == 0 || leading < -1000) return true;
    if (leading > 1000) return false;
    char* end = digits->chars + digits->count;
    *end++ = 'e';
    end = std::to_chars(end, std::end(digits->chars), digits->exponent).ptr;
    const auto [stop, error] = std::from_chars(digits->chars, end, *result);
    if (error == std::errc()) return !std::isinf(*result);
    *result = 0;
    return leading < 0;
}

template <class Real>
bool special(View text, Real* result) {
    if (text == u"NaN") {
        *result = std::numeric_limits<Real>::quiet_NaN();
    } else if (text == u"INF" || text == u"+INF" || text == u"-INF") {
        *result = std::numeric_limits<Real>::infinity() * static_cast<Real>(text[0] == u'-' ? -1 : 1);
    } else {
        return false;
    }
    return true;
}

template <class Real>
Real toReal(const DFDLUString* string, UErrorCode* status) {
    View text = withoutSpace(DFDLUString_view(string));
    Real result;
    *status = U_ZERO_ERROR;
    if (special(text, &result)) return result;
    const bool negative = takeSign(&text);
    Digits digits;
    if (!takeNumber(text, &digits) || !value(&digits, &result)) return malformed<Real>(status);
    return negative ? -result : result;
}

}  // namespace

double DFDLUString_toDouble(const DFDLUString* this_, UErrorCode* status) {
    return toReal<double>(this_, status);
}

float DFDLUString_toFloat(const DFDLUString* this_, UErrorCode* status) {
    return toReal<float>(this_, status);
}

DFDLDecimal* DFDLUString_toDecimal(const DFDLUString* this_, const DFDLConstants* constants,
                                   UErrorCode* status, DFDLHeapAdapter* heap) {
    const View text = withoutSpace(DFDLUString_view(this_));
    const auto length = static_cast<int32_t>(text.size());
    const auto printable = [](char16_t unit) { return unit > u' ' && unit < 0x7F; };
    if (!std::all_of(text.begin(), text.end(), printable)) return malformed<DFDLDecimal*>(status);
    uint8_t* bytes = DFDLBufferFactory_GetBuffer(heap->bufferFactory, static_cast<int64_t>(length) + 1);
    std::copy(text.begin(), text.end(), bytes);
    bytes[length] = 0;
    DFDLDecimal* decimal = new_DFDLDecimalFromChar(heap, constants, reinterpret_cast<char*>(bytes), length);
    DFDLBufferFactory_FreeBuffer(heap->bufferFactory, bytes);
    *status = decimal == nullptr ? U_INVALID_FORMAT_ERROR : U_ZERO_ERROR;
    return decimal;
}

bool DFDLUString_toBoolean(const DFDLUString* this_, UErrorCode* status) {
    const View text = withoutSpace(DFDLUString_view(this_));
    const bool value = text == u"true" || text == u"1";
    if (!value && text != u"false" && text != u"0") return malformed<bool>(status);
    *status = U_ZERO_ERROR;
    return value;
}

int32_t DFDLUString_toInt(const DFDLUString* this_, UErrorCode* status) {
    return toInteger<int32_t>(this_, status);
}

uint32_t DFDLUString_toUnsignedInt(const DFDLUString* this_, UErrorCode* status) {
    return toInteger<uint32_t>(this_, status);
}

int16_t DFDLUString_toShort(const DFDLUString* this_, UErrorCode* status) {
    return toInteger<int16_t>(this_, status);
}

uint16_t DFDLUString_toUnsignedShort(const DFDLUString* this_, UErrorCode* status) {
    return toInteger<uint16_t>(this_, status);
}

int64_t DFDLUString_toSignedQValue(const DFDLUString* this_, UErrorCode* status) {
    return toInteger<int64_t>(this_, status);
}

uint64_t DFDLUString_toUnsignedQValue(const DFDLUString* this_, UErrorCode* status) {
    return toInteger<uint64_t>(this_, status);
}
