#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"

// What a decimal number is as an integer, a double or a text, and how it compares.

namespace {

bool isNegative(const DFDLDecimal* decimal) { return (decimal->number.bits & DEC_NEGATIVE) != 0; }

// A number for a while.
class Temporary {
  public:
    explicit Temporary(DFDLHeapAdapter* heap) { dfdl_decNumberInit(&number_, heap); }
    ~Temporary() { dfdl_decNumberRelease(&number_); }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    dfdl_decNumber* get() { return &number_; }

  private:
    dfdl_decNumber number_{};
};

// The integer part, rounded; modulo 2^64. 0 where as many digits as the limit stand before the point.
uint64_t magnitude(const DFDLDecimal* decimal, int64_t limit) {
    const dfdl_decNumber* number = &decimal->number;
    if (!dfdl_decNumberIsFinite(number) ||
        number->exponent + dfdl_decNumberSignificantDigits(number) >= limit)
        return 0;
    if (number->exponent == 0) return dfdl_decNumberCoefficient(number);
    const dfdl_decContext context = dfdl_decContextDefault(DEC_PRECISION_128, decimal->roundingMode);
    Temporary whole(decimal->heap);
    dfdl_decNumberRescale(whole.get(), number, 0, &context);
    return dfdl_decNumberCoefficient(whole.get());
}

// 0 where it does not fit.
template <class Word>
Word signedValue(const DFDLDecimal* decimal, int64_t limit) {
    const uint64_t value = magnitude(decimal, limit);
    constexpr auto MOST = static_cast<uint64_t>(std::numeric_limits<Word>::max());
    if (isNegative(decimal)) return value > MOST + 1 ? 0 : static_cast<Word>(0 - value);
    return value > MOST ? 0 : static_cast<Word>(value);
}

constexpr int64_t LIMIT_SIGNED_64 = 20;
constexpr int64_t LIMIT_UNSIGNED_64 = 21;
constexpr int64_t LIMIT_32 = 11;

// What lies beyond the doubles is infinite or zero.
double readDouble(const dfdl_decNumber* number) {
    char text[64];
    const int32_t length = dfdl_decNumberToString(number, text);
    double value = 0;
    const auto [end, error] = std::from_chars(text, text + length, value);
    if (error != std::errc::result_out_of_range) return value;
    const double size = number->exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return (number->bits & DEC_NEGATIVE) != 0 ? -size : size;
}

double finiteToDouble(const DFDLDecimal* decimal, DFDLHeapAdapter* heap) {
    constexpr int32_t MOST_DIGITS = 18;
    if (dfdl_decNumberSignificantDigits(&decimal->number) <= MOST_DIGITS) return readDouble(&decimal->number);
    const dfdl_decContext context = dfdl_decContextDefault(MOST_DIGITS, decimal->roundingMode);
    Temporary cut(heap);
    dfdl_decNumberPlus(cut.get(), &decimal->number, &context);
    return readDouble(cut.get());
}

double toDouble(const DFDLDecimal* decimal, DFDLHeapAdapter* heap) {
    if (DFDLDecimal_isFinite(decimal)) return finiteToDouble(decimal, heap);
    const bool infinite = (decimal->number.bits & DEC_INFINITE) != 0;
    const double value =
        infinite ? std::numeric_limits<double>::max() : std::numeric_limits<double>::quiet_NaN();
    return isNegative(decimal) ? -value : value;
}

const DFDLDecimal* bound(const DFDLDecimal* decimal, DFDLDecimal* DFDLConstants::*field) {
    return decimal->constants == nullptr ? nullptr : decimal->constants->*field;
}

// A comparison with a NaN says nothing, and so does not rule a number out.
bool isBetween(const DFDLDecimal* decimal, const DFDLDecimal* lowest, const DFDLDecimal* highest) {
    if (highest != nullptr && DFDLDecimal_compare(decimal, highest) == 1) return false;
    return lowest != nullptr && DFDLDecimal_compare(decimal, lowest) != -1;
}

char* newBuffer(DFDLHeapAdapter* heap, int64_t size) {
    return reinterpret_cast<char*>(DFDLBufferFactory_GetBuffer(heap->bufferFactory, size));
}

char* toText(const dfdl_decNumber* number, int32_t* length, DFDLHeapAdapter* heap) {
    char* text = newBuffer(heap, dfdl_decNumberTextSize(number));
    *length = dfdl_decNumberToString(number, text);
    return text;
}

// An integer with zeros behind its digits, straight to text: the zeros would fill a number in vain.
char* withZeros(const DFDLDecimal* decimal, int32_t* length, DFDLHeapAdapter* heap) {
    const dfdl_decNumber* number = &decimal->number;
    const int64_t digits = dfdl_decNumberSignificantDigits(number);
    const int64_t zeros = dfdl_decNumberIsZero(number) ? 0 : number->exponent;
    const int64_t size = digits + zeros + 2;
    if (size > INT32_MAX) DFDLHeapAdapter_refuse(heap);
    char* text = newBuffer(heap, size);
    char* at = text;
    if (isNegative(decimal)) *at++ = '-';
    at = dfdl_decNumberDigitsToString(number, at, digits);
    std::memset(at, '0', static_cast<size_t>(zeros));
    at += zeros;
    *at = 0;
    *length = static_cast<int32_t>(at - text);
    return text;
}

template <class Unit>
int32_t stripTrailingZeros(Unit* text) {
    const std::basic_string_view<Unit> chars(text);
    size_t length = chars.size();
    if (chars.find(Unit{'.'}) != chars.npos && chars.find(Unit{'E'}) == chars.npos) {
        while (length > 0 && text[length - 1] == Unit{'0'}) --length;
        if (length > 0 && text[length - 1] == Unit{'.'}) --length;
        text[length] = 0;
    }
    return static_cast<int32_t>(length);
}

}  // namespace

int64_t DFDLDecimal_getSignedQValue(DFDLDecimal* this_) {
    if (this_->signedValid == 0) {
        this_->cachedSigned = signedValue<int64_t>(this_, LIMIT_SIGNED_64);
        this_->signedValid = 1;
    }
    return this_->cachedSigned;
}

uint64_t DFDLDecimal_getUnsignedQValue(DFDLDecimal* this_) {
    if (this_->unsignedValid == 0) {
        this_->cachedUnsigned = magnitude(this_, LIMIT_UNSIGNED_64);
        this_->unsignedValid = 1;
    }
    return this_->cachedUnsigned;
}

int32_t DFDLDecimal_getSignedInt(const DFDLDecimal* this_) { return signedValue<int32_t>(this_, LIMIT_32); }

uint32_t DFDLDecimal_getUnsignedInt(const DFDLDecimal* this_) {
    return static_cast<uint32_t>(magnitude(this_, LIMIT_32));
}

double DFDLDecimal_getDouble(DFDLDecimal* this_, DFDLHeapAdapter* heap) {
    if (this_->doubleValid == 0) {
        this_->cachedDouble = toDouble(this_, heap);
        this_->doubleValid = 1;
    }
    return this_->cachedDouble;
}

bool DFDLDecimal_fitsInSignedQValue(const DFDLDecimal* this_) {
    return isBetween(this_, bound(this_, &DFDLConstants::minSignedQ),
                     bound(this_, &DFDLConstants::maxSignedQ));
}

bool DFDLDecimal_fitsInUnsignedQValue(const DFDLDecimal* this_) {
    return isBetween(this_, bound(this_, &DFDLConstants::zero), bound(this_, &DFDLConstants::maxUnsignedQ));
}

int32_t DFDLDecimal_signum(const DFDLDecimal* this_) {
    if (isNegative(this_)) return -1;
    return dfdl_decNumberIsZero(&this_->number) ? 0 : 1;
}

int64_t DFDLDecimal_getDecimalAt(const DFDLDecimal* this_) {
    const dfdl_decNumber* number = &this_->number;
    const bool counted = dfdl_decNumberIsFinite(number) && !dfdl_decNumberIsZero(number);
    return static_cast<int64_t>(number->exponent) + (counted ? number->digits : 0);
}

int32_t DFDLDecimal_getCount(const DFDLDecimal* this_) {
    const bool plainZero = this_->number.exponent == 0 && dfdl_decNumberIsZero(&this_->number);
    return plainZero ? 1 : this_->number.digits;
}

char* DFDLDecimal_getDecimal(const DFDLDecimal* this_, int32_t* length, DFDLHeapAdapter* heap) {
    return toText(&this_->number, length, heap);
}

char* DFDLDecimal_getDecimalWithoutExponent(const DFDLDecimal* this_, int32_t* length,
                                            DFDLHeapAdapter* heap) {
    const dfdl_decNumber* number = &this_->number;
    if (!dfdl_decNumberIsFinite(number)) return toText(number, length, heap);
    if (number->exponent >= 0) return withZeros(this_, length, heap);
    const int32_t precision = std::max(DEC_PRECISION_128, number->digits);
    const dfdl_decContext context = dfdl_decContextDefault(precision, this_->roundingMode);
    Temporary whole(heap);
    dfdl_decNumberRescale(whole.get(), number, 0, &context);
    return toText(whole.get(), length, heap);
}

int32_t stripTrailingZerosFromDecimal(char* text) { return stripTrailingZeros(text); }

int32_t stripTrailingZerosAfterDecimal(char16_t* text) { return stripTrailingZeros(text); }

DFDLUString* DFDLDecimal_getDecimalInUString(const DFDLDecimal* this_, UErrorCode* status,
                                             DFDLHeapAdapter* heap) {
    *status = U_ZERO_ERROR;
    int32_t length = 0;
    char* text = DFDLDecimal_getDecimal(this_, &length, heap);
    length = stripTrailingZerosFromDecimal(text);
    UChar* chars = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, static_cast<int64_t>(length) + 1);
    for (int32_t i = 0; i <= length; ++i) chars[i] = static_cast<UChar>(text[i]);
    DFDLBufferFactory_FreeBuffer(heap->bufferFactory, reinterpret_cast<uint8_t*>(text));
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, length);
}

int32_t DFDLDecimal_compare(const DFDLDecimal* a, const DFDLDecimal* b) {
    if (a == nullptr || b == nullptr) return -1;
    return dfdl_decNumberCompare(&a->number, &b->number);
}

bool DFDLDecimal_isDecimalEqual(const DFDLDecimal* a, const DFDLDecimal* b) {
    return a == b || DFDLDecimal_compare(a, b) == 0;
}
