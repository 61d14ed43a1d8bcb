#include "dfdl/foundation/dfdldecimal.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "dfdl/foundation/recycledrecord.h"

namespace {

void clearCaches(DFDLDecimal* decimal) {
    decimal->signedValid = 0;
    decimal->unsignedValid = 0;
    decimal->doubleValid = 0;
}

void setDoubleCache(DFDLDecimal* decimal, double value) {
    decimal->cachedDouble = value;
    decimal->doubleValid = 1;
}

// Every digit of the number is kept, where the operation itself does not take some away.
dfdl_decContext losslessContext(const DFDLDecimal* decimal) {
    const int32_t precision = std::max(DEC_PRECISION_128, decimal->number.digits);
    return dfdl_decContextDefault(precision, decimal->roundingMode);
}

template <auto Operation>
void combine(DFDLDecimal* decimal, const DFDLDecimal* other) {
    const dfdl_decContext context = dfdl_decContextDefault(DEC_PRECISION_128, decimal->roundingMode);
    Operation(&decimal->number, &decimal->number, &other->number, &context);
    clearCaches(decimal);
}

template <auto Operation>
void change(DFDLDecimal* decimal, const dfdl_decContext& context) {
    Operation(&decimal->number, &decimal->number, &context);
    clearCaches(decimal);
}

bool readText(DFDLDecimal* decimal, const char* text) {
    dfdl_decContext context = dfdl_decContextDefault();
    dfdl_decNumber number;
    dfdl_decNumberInit(&number, decimal->heap);
    dfdl_decNumberFromString(&number, text, &context);
    const bool valid = (context.status & DEC_CONVERSION_SYNTAX) == 0;
    if (valid) std::swap(decimal->number, number);
    dfdl_decNumberRelease(&number);
    if (valid) clearCaches(decimal);
    return valid;
}

void copyCaches(DFDLDecimal* target, const DFDLDecimal* source) {
    target->cachedSigned = source->cachedSigned;
    target->signedValid = source->signedValid;
    target->cachedUnsigned = source->cachedUnsigned;
    target->unsignedValid = source->unsignedValid;
    target->cachedDouble = source->cachedDouble;
    target->doubleValid = source->doubleValid;
}

}  // namespace

DFDLDecimal* new_DFDLDecimal(DFDLHeapAdapter* heap, const DFDLConstants* constants) {
    auto* this_ = RecycledRecord_take<DFDLDecimal>(heap, POOL_DECIMAL_RECORD);
    this_->constants = constants;
    this_->roundingMode = DEC_ROUND_HALF_EVEN;
    dfdl_decNumberInit(&this_->number, heap);
    DFDLDecimal_clear(this_);
    return this_;
}

DFDLDecimal* new_DFDLDecimalFromChar(DFDLHeapAdapter* heap, const DFDLConstants* constants, const char* text,
                                     int32_t length) {
    DFDLDecimal* this_ = new_DFDLDecimal(heap, constants);
    if (DFDLDecimal_setString(this_, text, length)) return this_;
    delete_DFDLDecimal(this_);
    return nullptr;
}

void delete_DFDLDecimal(DFDLDecimal* this_) {
    if (this_ == nullptr) return;
    dfdl_decNumberRelease(&this_->number);
    RecycledRecord_giveBack(this_, POOL_DECIMAL_RECORD);
}

DFDLDecimal* DFDLDecimal_copy(const DFDLDecimal* this_, DFDLHeapAdapter* heap) {
    DFDLDecimal* copy = new_DFDLDecimal(heap, this_->constants);
    copy->roundingMode = this_->roundingMode;
    DFDLDecimal_setDecimalValue(copy, this_);
    return copy;
}

void DFDLDecimal_clear(DFDLDecimal* this_) {
    dfdl_decNumberRelease(&this_->number);
    this_->cachedSigned = 0;
    this_->cachedUnsigned = 0;
    this_->signedValid = 1;
    this_->unsignedValid = 1;
    setDoubleCache(this_, 0);
}

void DFDLDecimal_setSignedQValue(DFDLDecimal* this_, int64_t value) {
    const auto bits = static_cast<uint64_t>(value);
    dfdl_decNumberFromUInt64(&this_->number, value < 0 ? 0 - bits : bits);
    if (value < 0) this_->number.bits = DEC_NEGATIVE;
    clearCaches(this_);
    this_->cachedSigned = value;
    this_->signedValid = 1;
    setDoubleCache(this_, static_cast<double>(value));
}

void DFDLDecimal_setUnsignedQValue(DFDLDecimal* this_, uint64_t value) {
    dfdl_decNumberFromUInt64(&this_->number, value);
    clearCaches(this_);
    this_->cachedUnsigned = value;
    this_->unsignedValid = 1;
    setDoubleCache(this_, static_cast<double>(value));
}

void DFDLDecimal_setDouble(DFDLDecimal* this_, double value) {
    constexpr int FRACTION_DIGITS = 14;
    char text[32];
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific, FRACTION_DIGITS).ptr =
        0;
    readText(this_, text);
    dfdl_decNumberTrim(&this_->number);
    setDoubleCache(this_, value);
}

bool DFDLDecimal_setString(DFDLDecimal* this_, const char* text, int32_t /*length*/) {
    return readText(this_, text);
}

// A conversion that was rounded in another mode does not count here.
void DFDLDecimal_setDecimalValue(DFDLDecimal* this_, const DFDLDecimal* other) {
    dfdl_decNumberCopy(&this_->number, &other->number);
    if (this_->roundingMode == other->roundingMode) return copyCaches(this_, other);
    clearCaches(this_);
}

void DFDLDecimal_setPositive(DFDLDecimal* this_, bool positive) {
    if (!positive) return DFDLDecimal_negate(this_);
    this_->number.bits = static_cast<uint8_t>(this_->number.bits & ~DEC_NEGATIVE);
    clearCaches(this_);
}

// The least count has no opposite; the exponent next to it lies as far beyond all others.
void DFDLDecimal_setDecimalAt(DFDLDecimal* this_, int32_t count) {
    this_->number.exponent = count == INT32_MIN ? INT32_MAX : -count;
    clearCaches(this_);
}

void DFDLDecimal_setCount(DFDLDecimal* this_, int32_t digits) {
    dfdl_decNumberSetCount(&this_->number, digits);
    clearCaches(this_);
}

void DFDLDecimal_setDigit(DFDLDecimal* this_, int32_t index, uint8_t digit) {
    dfdl_decNumberSetDigit(&this_->number, index, digit & 0x0F);
    clearCaches(this_);
}

void DFDLDecimal_setRoundingMode(DFDLDecimal* this_, int32_t mode) {
    static constexpr DecRounding MODES[] = {DEC_ROUND_HALF_EVEN, DEC_ROUND_CEILING, DEC_ROUND_FLOOR,
                                            DEC_ROUND_DOWN,      DEC_ROUND_UP,      DEC_ROUND_HALF_EVEN,
                                            DEC_ROUND_HALF_DOWN, DEC_ROUND_HALF_UP};
    const bool known = mode >= 0 && mode < static_cast<int32_t>(std::size(MODES));
    this_->roundingMode = known ? MODES[mode] : DEC_ROUND_HALF_EVEN;
    clearCaches(this_);
}

void DFDLDecimal_add(DFDLDecimal* this_, const DFDLDecimal* other) {
    combine<dfdl_decNumberAdd>(this_, other);
}

void DFDLDecimal_subtract(DFDLDecimal* this_, const DFDLDecimal* other) {
    combine<dfdl_decNumberSubtract>(this_, other);
}

void DFDLDecimal_multi(DFDLDecimal* this_, const DFDLDecimal* other) {
    combine<dfdl_decNumberMultiply>(this_, other);
}

void DFDLDecimal_div(DFDLDecimal* this_, const DFDLDecimal* other) {
    combine<dfdl_decNumberDivide>(this_, other);
}

void DFDLDecimal_negate(DFDLDecimal* this_) {
    this_->number.bits |= DEC_NEGATIVE;
    clearCaches(this_);
}

void DFDLDecimal_Abs(DFDLDecimal* this_) {
    change<dfdl_decNumberAbs>(this_, losslessContext(this_));
    dfdl_decNumberTrim(&this_->number);
}

void DFDLDecimal_round(DFDLDecimal* this_, int32_t digits) {
    change<dfdl_decNumberPlus>(this_, dfdl_decContextDefault(std::max(digits, 1), this_->roundingMode));
    dfdl_decNumberTrim(&this_->number);
}

void DFDLDecimal_roundFixedPoint(DFDLDecimal* this_, int32_t fractionalDigits) {
    dfdl_decNumber* number = &this_->number;
    const int64_t exponent = -static_cast<int64_t>(fractionalDigits);
    dfdl_decNumberTrim(number);
    clearCaches(this_);
    if (!dfdl_decNumberIsFinite(number) || number->exponent >= exponent) return;
    const dfdl_decContext context = losslessContext(this_);
    dfdl_decNumberRescale(number, number, exponent, &context);
    dfdl_decNumberTrim(number);
}

void DFDLDecimal_reduce(DFDLDecimal* this_) { change<dfdl_decNumberReduce>(this_, losslessContext(this_)); }

void DFDLDecimal_toIntegralValue(DFDLDecimal* this_) {
    change<dfdl_decNumberToIntegralValue>(this_, losslessContext(this_));
}
