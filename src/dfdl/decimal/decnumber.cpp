#include "dfdl/decimal/decnumber.h"

#include "dfdl/decimal/decwork.h"

namespace {

// The exponent of the first significant digit.
int64_t adjusted(const dfdl_decNumber* number) {
    return static_cast<int64_t>(number->exponent) + dfdl_decNumberSignificantDigits(number) - 1;
}

int32_t compareInt(int64_t a, int64_t b) { return a < b ? -1 : (a > b ? 1 : 0); }

// 0 zero, 1 finite, 2 infinite.
int32_t rank(const dfdl_decNumber* number) {
    if (dec_isInfinite(number)) return 2;
    return dfdl_decNumberIsZero(number) ? 0 : 1;
}

int32_t compareMagnitudes(const dfdl_decNumber* a, const dfdl_decNumber* b) {
    const int32_t order = compareInt(rank(a), rank(b));
    if (order != 0 || rank(a) != 1) return order;
    const int32_t sizes = compareInt(adjusted(a), adjusted(b));
    if (sizes != 0) return sizes;
    const DecUnits ofA = dfdl_decNumberUnits(a);
    const DecUnits ofB = dfdl_decNumberUnits(b);
    return decUnits_compareFromTop(ofA, decUnits_digits(ofA), ofB, decUnits_digits(ofB));
}

}  // namespace

void dfdl_decNumberInit(dfdl_decNumber* number, DFDLHeapAdapter* heap) {
    number->heap = heap;
    number->large = nullptr;
    number->capacity = DEC_SMALL_UNITS;
    dfdl_decNumberZero(number);
}

void dfdl_decNumberRelease(dfdl_decNumber* number) {
    if (number->large != nullptr) DFDLHeapAdapter_arrayDeallocate(number->heap, number->large);
    dfdl_decNumberInit(number, number->heap);
}

void dfdl_decNumberZero(dfdl_decNumber* number) { dec_setZero(number, 0, false); }

void dfdl_decNumberCopy(dfdl_decNumber* target, const dfdl_decNumber* source) {
    if (target == source) return;
    uint32_t* units = dec_prepare(target, source->digits);
    const DecUnits from = dfdl_decNumberUnits(source);
    std::copy_n(from.at, from.count, units);
    target->exponent = source->exponent;
    target->bits = source->bits;
}

void dfdl_decNumberFromUInt64(dfdl_decNumber* number, uint64_t magnitude) {
    constexpr int64_t MOST_DIGITS = 20;
    uint32_t* units = dec_prepare(number, MOST_DIGITS);
    for (int64_t i = 0; i < decUnits_for(MOST_DIGITS); ++i) {
        units[i] = static_cast<uint32_t>(magnitude % DEC_UNIT_BASE);
        magnitude /= DEC_UNIT_BASE;
    }
    number->exponent = 0;
    number->bits = 0;
    dec_dropLeadingZeros(number);
}

void dfdl_decNumberSetCount(dfdl_decNumber* number, int32_t digits) {
    if (digits <= 0) return dfdl_decNumberZero(number);
    std::fill_n(dec_prepare(number, digits), decUnits_for(digits), 0U);
}

void dfdl_decNumberSetDigit(dfdl_decNumber* number, int32_t index, uint32_t digit) {
    if (index < 0 || index >= number->digits) return;
    const int32_t position = number->digits - 1 - index;
    const uint32_t power = DEC_POWERS[position % DEC_UNIT_DIGITS];
    uint32_t* unit = (number->large != nullptr ? number->large : number->small) + position / DEC_UNIT_DIGITS;
    *unit = *unit - *unit / power % 10 * power + digit % 10 * power;
}

uint64_t dfdl_decNumberCoefficient(const dfdl_decNumber* number) {
    const DecUnits units = dfdl_decNumberUnits(number);
    uint64_t value = 0;
    for (int64_t i = units.count - 1; i >= 0; --i) value = value * DEC_UNIT_BASE + units.at[i];
    return value;
}

bool dfdl_decNumberIsZero(const dfdl_decNumber* number) {
    return dfdl_decNumberIsFinite(number) && decUnits_digits(dfdl_decNumberUnits(number)) == 0;
}

int64_t dfdl_decNumberSignificantDigits(const dfdl_decNumber* number) {
    return std::max<int64_t>(decUnits_digits(dfdl_decNumberUnits(number)), 1);
}

int32_t dfdl_decNumberCompare(const dfdl_decNumber* a, const dfdl_decNumber* b) {
    if (dec_isNaN(a) || dec_isNaN(b)) return -2;
    const bool aNegative = dec_isNegative(a) && !dfdl_decNumberIsZero(a);
    const bool bNegative = dec_isNegative(b) && !dfdl_decNumberIsZero(b);
    if (aNegative != bNegative) return aNegative ? -1 : 1;
    const int32_t order = compareMagnitudes(a, b);
    return aNegative ? -order : order;
}

void dfdl_decNumberTrim(dfdl_decNumber* number) {
    if (!dfdl_decNumberIsFinite(number)) return;
    dec_dropLeadingZeros(number);
    if (dfdl_decNumberIsZero(number)) return dec_setZero(number, 0, dec_isNegative(number));
    if (number->exponent >= 0) return;
    const DecUnits units = dfdl_decNumberUnits(number);
    const int64_t zeros = decUnits_trailingZeros(units, -static_cast<int64_t>(number->exponent));
    if (zeros > 0) dec_dropZeros(number, zeros);
}

uint32_t* dec_prepare(dfdl_decNumber* number, int64_t digits) {
    if (digits > DEC_MOST_DIGITS) DFDLHeapAdapter_refuse(number->heap);
    const int64_t units = decUnits_for(digits);
    if (units > number->capacity) {
        number->large = static_cast<uint32_t*>(DFDLHeapAdapter_arrayReplace(
            number->heap, number->large, sizeof(uint32_t), static_cast<size_t>(units)));
        number->capacity = static_cast<int32_t>(units);
    }
    number->digits = static_cast<int32_t>(digits);
    return number->large != nullptr ? number->large : number->small;
}

void dec_dropLeadingZeros(dfdl_decNumber* number) {
    number->digits = static_cast<int32_t>(dfdl_decNumberSignificantDigits(number));
}

void dec_dropZeros(dfdl_decNumber* number, int64_t zeros) {
    const DecUnits units = dfdl_decNumberUnits(number);
    uint32_t* target = dec_prepare(number, number->digits - zeros);
    decUnits_shift(units, -zeros, target, decUnits_for(number->digits));
    number->exponent += static_cast<int32_t>(zeros);
}

void dec_passSpecial(dfdl_decNumber* result, const dfdl_decNumber* special, const dfdl_decContext* context) {
    dfdl_decNumberCopy(result, special);
    if (!dec_isNaN(special)) return;
    result->bits = static_cast<uint8_t>((special->bits & DEC_NEGATIVE) | DEC_NAN);
    if (result->digits <= context->precision) return;
    uint32_t* units = dec_prepare(result, context->precision);
    units[decUnits_for(context->precision) - 1] %= DEC_POWERS[(context->precision - 1) % DEC_UNIT_DIGITS + 1];
    dec_dropLeadingZeros(result);
}

void dec_setSpecial(dfdl_decNumber* number, uint8_t bits) {
    *dec_prepare(number, 1) = 0;
    number->exponent = 0;
    number->bits = bits;
}

void dec_setZero(dfdl_decNumber* number, int64_t exponent, bool negative) {
    dec_setSpecial(number, negative ? DEC_NEGATIVE : 0);
    number->exponent = static_cast<int32_t>(exponent);
}
