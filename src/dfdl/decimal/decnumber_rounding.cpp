#include "dfdl/decimal/decnumber.h"
#include "dfdl/decimal/decwork.h"

// Results are rounded once, from what is exact, to the precision and the exponents of their context.

namespace {

bool roundsUp(DecRounding rounding, DecRest rest, bool odd, bool negative) {
    if (rest == DEC_REST_NONE) return false;
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
            return rest >= DEC_REST_HALF;
        case DEC_ROUND_HALF_DOWN:
            return rest > DEC_REST_HALF;
        default:
            return rest > DEC_REST_HALF || (rest == DEC_REST_HALF && odd);
    }
}

DecRest restOf(const DecExact& exact, int64_t dropped) {
    const DecRest rest = decUnits_rest(exact.units, dropped);
    const bool between = exact.more && (rest == DEC_REST_NONE || rest == DEC_REST_HALF);
    return between ? static_cast<DecRest>(rest + 1) : rest;
}

// The coefficient and sign of a number of `digits` without its last `dropped`; a carry may add one digit.
void roundOff(dfdl_decNumber* result, const DecExact& exact, int64_t digits, int64_t dropped,
              DecRounding rounding) {
    const bool odd = decUnits_digit(exact.units, dropped) % 2 != 0;
    const bool up = dropped >= 0 && roundsUp(rounding, restOf(exact, dropped), odd, exact.negative);
    const int64_t kept = std::max<int64_t>(digits - dropped, 0) + (up ? 1 : 0);
    uint32_t* units = dec_prepare(result, std::max<int64_t>(kept, 1));
    decUnits_shift(exact.units, -dropped, units, decUnits_for(result->digits));
    if (up) decUnits_increment(units, decUnits_for(result->digits));
    result->bits = exact.negative ? DEC_NEGATIVE : 0;
    dec_dropLeadingZeros(result);
}

// Too large a number becomes infinite, but the largest finite one where it is rounded towards zero.
void overflow(dfdl_decNumber* number, const dfdl_decContext* context) {
    const uint8_t sign = number->bits & DEC_NEGATIVE;
    if (roundsUp(context->rounding, DEC_REST_ABOVE_HALF, false, sign != 0)) {
        return dec_setSpecial(number, static_cast<uint8_t>(sign | DEC_INFINITE));
    }
    uint32_t* units = dec_prepare(number, context->precision);
    const int64_t count = decUnits_for(context->precision);
    std::fill_n(units, count, DEC_UNIT_BASE - 1);
    units[count - 1] = DEC_POWERS[(context->precision - 1) % DEC_UNIT_DIGITS + 1] - 1;
    number->exponent = context->emax - (context->precision - 1);
}

DecExact exactOf(const dfdl_decNumber* number, bool negative) {
    return {dfdl_decNumberUnits(number), number->exponent, negative, false};
}

bool passSpecial(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context) {
    if (dfdl_decNumberIsFinite(a)) return false;
    dec_passSpecial(result, a, context);
    return true;
}

void finishOrPass(dfdl_decNumber* result, const dfdl_decNumber* a, bool negative,
                  const dfdl_decContext* context) {
    if (!passSpecial(result, a, context)) dec_finish(result, exactOf(a, negative), context);
}

// A finite number with another exponent, within any number of digits.
void moveExponent(dfdl_decNumber* result, const dfdl_decNumber* a, int64_t exponent, DecRounding rounding) {
    const DecUnits units = dfdl_decNumberUnits(a);
    const int64_t digits = decUnits_digits(units);
    const int64_t dropped = exponent - a->exponent;
    if (digits == 0) return dec_setZero(result, exponent, dec_isNegative(a));
    if (dropped >= 0) {
        roundOff(result, exactOf(a, dec_isNegative(a)), digits, dropped, rounding);
    } else {
        DecWork work(a->heap, units.count);
        std::copy_n(units.at, units.count, work.get());
        const DecExact exact = {{work.get(), units.count}, a->exponent, dec_isNegative(a), false};
        roundOff(result, exact, digits, dropped, rounding);
    }
    result->exponent = static_cast<int32_t>(exponent);
}

bool canRescale(const dfdl_decNumber* a, int64_t exponent, const dfdl_decContext* context) {
    if (exponent < dec_leastExponent(context) || exponent > context->emax) return false;
    const int64_t digits = decUnits_digits(dfdl_decNumberUnits(a));
    return digits == 0 || digits + a->exponent - exponent <= context->precision;
}

}  // namespace

void dec_finish(dfdl_decNumber* result, const DecExact& exact, const dfdl_decContext* context) {
    const int64_t digits = decUnits_digits(exact.units);
    const int64_t least = dec_leastExponent(context);
    if (digits == 0) {
        return dec_setZero(result, std::clamp<int64_t>(exact.exponent, least, context->emax), exact.negative);
    }
    const int64_t dropped = std::max({int64_t{0}, digits - context->precision, least - exact.exponent});
    roundOff(result, exact, digits, dropped, context->rounding);
    const int64_t exponent = exact.exponent + dropped;
    if (exponent + result->digits - 1 > context->emax) return overflow(result, context);
    result->exponent = static_cast<int32_t>(exponent);
    // Rounding may have carried into one digit too many, which leaves a zero at the end.
    if (result->digits > context->precision) dec_dropZeros(result, 1);
}

void dfdl_decNumberPlus(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context) {
    const bool keepsSign = !dfdl_decNumberIsZero(a) || context->rounding == DEC_ROUND_FLOOR;
    finishOrPass(result, a, dec_isNegative(a) && keepsSign, context);
}

void dfdl_decNumberAbs(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context) {
    finishOrPass(result, a, false, context);
    if (!dec_isNaN(result)) result->bits = static_cast<uint8_t>(result->bits & ~DEC_NEGATIVE);
}

void dfdl_decNumberRescale(dfdl_decNumber* result, const dfdl_decNumber* a, int64_t exponent,
                           const dfdl_decContext* context) {
    if (dec_isNaN(a)) return dec_passSpecial(result, a, context);
    if (dec_isInfinite(a) || !canRescale(a, exponent, context)) return dec_setSpecial(result, DEC_NAN);
    moveExponent(result, a, exponent, context->rounding);
    const bool tooLong = result->digits > context->precision;
    const bool tooLarge = !dfdl_decNumberIsZero(result) && exponent + result->digits - 1 > context->emax;
    if (tooLong || tooLarge) dec_setSpecial(result, DEC_NAN);
}

void dfdl_decNumberQuantize(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* pattern,
                            const dfdl_decContext* context) {
    const bool fromPattern = (pattern->bits & DEC_SIGNALLING) != 0 ? (a->bits & DEC_SIGNALLING) == 0
                                                                   : dec_isNaN(pattern) && !dec_isNaN(a);
    if (fromPattern || dec_isNaN(a)) {
        dec_passSpecial(result, fromPattern ? pattern : a, context);
    } else if (dec_isInfinite(a) && dec_isInfinite(pattern)) {
        dec_passSpecial(result, a, context);
    } else if (dec_isInfinite(a) || dec_isInfinite(pattern)) {
        dec_setSpecial(result, DEC_NAN);
    } else {
        dfdl_decNumberRescale(result, a, pattern->exponent, context);
    }
}

void dfdl_decNumberReduce(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context) {
    finishOrPass(result, a, dec_isNegative(a), context);
    if (!dfdl_decNumberIsFinite(result)) return;
    if (dfdl_decNumberIsZero(result)) return dec_setZero(result, 0, dec_isNegative(result));
    const DecUnits units = dfdl_decNumberUnits(result);
    const int64_t most = static_cast<int64_t>(context->emax) - result->exponent;
    const int64_t zeros = decUnits_trailingZeros(units, most);
    if (zeros > 0) dec_dropZeros(result, zeros);
}

void dfdl_decNumberToIntegralValue(dfdl_decNumber* result, const dfdl_decNumber* a,
                                   const dfdl_decContext* context) {
    if (passSpecial(result, a, context)) return;
    if (a->exponent >= 0) return dfdl_decNumberCopy(result, a);
    moveExponent(result, a, 0, context->rounding);
}
