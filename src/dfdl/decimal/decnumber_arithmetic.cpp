#include <algorithm>
#include <utility>

#include "dfdl/decimal/decnumber.h"
#include "dfdl/decimal/decwork.h"

// Sum, product and quotient are worked out exactly, or as far as rounding can tell the difference, and then
// rounded once.

namespace {

// A finite operand.
struct Term {
    DecUnits units;
    int64_t digits;  // 0 of a zero
    int64_t exponent;
    bool negative;

    int64_t top() const { return exponent + digits; }  // the exponent above the first digit
};

Term termOf(const dfdl_decNumber* number, bool negative) {
    const DecUnits units = dfdl_decNumberUnits(number);
    return {units, decUnits_digits(units), number->exponent, negative};
}

DecUnits significant(const Term& term) { return {term.units.at, decUnits_for(term.digits)}; }

// The result of a NaN among the operands: the first signalling one, or else the first, made quiet.
bool passNaN(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
             const dfdl_decContext* context) {
    if (!dec_isNaN(a) && !dec_isNaN(b)) return false;
    const bool second = !dec_isNaN(a) || ((a->bits & DEC_SIGNALLING) == 0 && (b->bits & DEC_SIGNALLING) != 0);
    dec_passSpecial(result, second ? b : a, context);
    return true;
}

void setInfinity(dfdl_decNumber* result, bool negative) {
    dec_setSpecial(result, negative ? DEC_INFINITE | DEC_NEGATIVE : DEC_INFINITE);
}

// One summand is zero: the other one, with zeros at its end where the zero has the smaller exponent, as far
// as they are not rounded away again.
void addToZero(dfdl_decNumber* result, const Term& term, int64_t zeroExponent,
               const dfdl_decContext* context) {
    const int64_t exponent =
        std::min(term.exponent, std::max(zeroExponent, term.top() - context->precision - 1));
    const int64_t count = decUnits_for(term.top() - exponent);
    DecWork work(result->heap, count);
    decUnits_shift(term.units, term.exponent - exponent, work.get(), count);
    dec_finish(result, {{work.get(), count}, exponent, term.negative, false}, context);
}

// `a` reaches as high as `b`, and both together over no more digits than rounding can tell.
void addAligned(dfdl_decNumber* result, const Term& a, const Term& b, const dfdl_decContext* context) {
    const int64_t exponent = std::min(a.exponent, b.exponent);
    const int64_t count = decUnits_for(a.top() - exponent + 1);
    const bool same = a.negative == b.negative;
    const int32_t order =
        same || a.top() != b.top() ? 1 : decUnits_compareFromTop(a.units, a.digits, b.units, b.digits);
    const Term& larger = order < 0 ? b : a;
    const Term& smaller = order < 0 ? a : b;
    DecWork work(result->heap, count);
    const auto combine = same ? decUnits_add : decUnits_subtract;
    combine(larger.units, larger.exponent - exponent, smaller.units, smaller.exponent - exponent, work.get(),
            count);
    const bool negative = order == 0 ? context->rounding == DEC_ROUND_FLOOR : larger.negative;
    dec_finish(result, {{work.get(), count}, exponent, negative, false}, context);
}

// A summand far below the other's digits and below all that rounding keeps matters by its sign alone.
void addTerms(dfdl_decNumber* result, Term a, Term b, const dfdl_decContext* context) {
    if (a.top() < b.top()) std::swap(a, b);
    constexpr int64_t GUARD_DIGITS = 3;
    constexpr uint32_t ONE = 1;
    const int64_t lowest = std::min(a.exponent, a.top() - context->precision) - GUARD_DIGITS;
    if (b.top() < lowest) b = {{&ONE, 1}, 1, lowest - 1, b.negative};
    addAligned(result, a, b, context);
}

void addFinite(dfdl_decNumber* result, const Term& a, const Term& b, const dfdl_decContext* context) {
    if (a.digits == 0 && b.digits == 0) {
        const bool differ = a.negative != b.negative;
        const bool negative = differ ? context->rounding == DEC_ROUND_FLOOR : a.negative;
        const DecExact zero = {{nullptr, 0}, std::min(a.exponent, b.exponent), negative, false};
        return dec_finish(result, zero, context);
    }
    if (a.digits == 0) return addToZero(result, b, a.exponent, context);
    if (b.digits == 0) return addToZero(result, a, b.exponent, context);
    addTerms(result, a, b, context);
}

void addSigned(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b, bool bNegative,
               const dfdl_decContext* context) {
    if (passNaN(result, a, b, context)) return;
    const bool bothInfinite = dec_isInfinite(a) && dec_isInfinite(b);
    if (bothInfinite && dec_isNegative(a) != bNegative) return dec_setSpecial(result, DEC_NAN);
    if (dec_isInfinite(a)) return setInfinity(result, dec_isNegative(a));
    if (dec_isInfinite(b)) return setInfinity(result, bNegative);
    addFinite(result, termOf(a, dec_isNegative(a)), termOf(b, bNegative), context);
}

// Digits of a quotient: one more than the precision at least. What is cut off the dividend before, and what
// remains after, only tells whether the quotient goes on.
void divideFinite(dfdl_decNumber* result, const Term& a, const Term& b, bool negative,
                  const dfdl_decContext* context) {
    const int64_t up = b.digits - a.digits + context->precision + 1;
    const int64_t ideal = a.exponent - b.exponent;
    const int64_t count = decUnits_for(a.digits + up);
    const DecUnits divisor = significant(b);
    DecWork dividend(result->heap, count + 1);
    DecWork divisorWork(result->heap, divisor.count);
    DecWork quotient(result->heap, count - divisor.count + 1);
    decUnits_shift(a.units, up, dividend.get(), count);
    std::copy_n(divisor.at, divisor.count, divisorWork.get());
    const bool remains =
        decUnits_divide(dividend.get(), count, divisorWork.get(), divisor.count, quotient.get());
    DecExact exact = {{quotient.get(), count - divisor.count + 1}, ideal - up, negative, false};
    exact.more = remains || decUnits_anyBelow(a.units, -up);
    if (!exact.more && exact.exponent < ideal) {
        const int64_t zeros = decUnits_trailingZeros(exact.units, up);
        decUnits_shift(exact.units, -zeros, quotient.get(), exact.units.count);
        exact.exponent += zeros;
    }
    dec_finish(result, exact, context);
}

// Whether one of the operands is zero or infinite, which settles the quotient.
bool divideSpecial(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b, bool negative,
                   const dfdl_decContext* context) {
    const bool byZero = dfdl_decNumberIsZero(b);
    const bool ofZero = dfdl_decNumberIsZero(a);
    if ((dec_isInfinite(a) && dec_isInfinite(b)) || (ofZero && byZero)) {
        dec_setSpecial(result, DEC_NAN);
    } else if (dec_isInfinite(a) || byZero) {
        setInfinity(result, negative);
    } else if (dec_isInfinite(b)) {
        dec_setZero(result, dec_leastExponent(context), negative);
    } else if (ofZero) {
        const int64_t exponent = static_cast<int64_t>(a->exponent) - b->exponent;
        dec_finish(result, {{nullptr, 0}, exponent, negative, false}, context);
    } else {
        return false;
    }
    return true;
}

}  // namespace

void dfdl_decNumberAdd(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                       const dfdl_decContext* context) {
    addSigned(result, a, b, dec_isNegative(b), context);
}

void dfdl_decNumberSubtract(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                            const dfdl_decContext* context) {
    addSigned(result, a, b, !dec_isNegative(b), context);
}

void dfdl_decNumberMultiply(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                            const dfdl_decContext* context) {
    if (passNaN(result, a, b, context)) return;
    const bool negative = dec_isNegative(a) != dec_isNegative(b);
    if (dec_isInfinite(a) || dec_isInfinite(b)) {
        const bool undefined = dfdl_decNumberIsZero(a) || dfdl_decNumberIsZero(b);
        return undefined ? dec_setSpecial(result, DEC_NAN) : setInfinity(result, negative);
    }
    const DecUnits ofA = significant(termOf(a, false));
    const DecUnits ofB = significant(termOf(b, false));
    const int64_t count = ofA.count + ofB.count;
    const int64_t exponent = static_cast<int64_t>(a->exponent) + b->exponent;
    DecWork product(result->heap, count);
    decUnits_multiply(ofA, ofB, product.get(), result->heap);
    dec_finish(result, {{product.get(), count}, exponent, negative, false}, context);
}

void dfdl_decNumberDivide(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                          const dfdl_decContext* context) {
    if (passNaN(result, a, b, context)) return;
    const bool negative = dec_isNegative(a) != dec_isNegative(b);
    if (divideSpecial(result, a, b, negative, context)) return;
    divideFinite(result, termOf(a, false), termOf(b, false), negative, context);
}
