#include <algorithm>
#include <utility>

#include "dfdl/decimal/decunits.h"
#include "dfdl/decimal/decwork.h"

namespace {

// Below this number of units the plain product is the faster one.
constexpr int64_t LONG_UNITS = 40;

void multiplyPlain(DecUnits a, DecUnits b, uint32_t* target) {
    std::fill_n(target, a.count + b.count, 0U);
    for (int64_t i = 0; i < a.count; ++i) {
        uint64_t carry = 0;
        for (int64_t k = 0; k < b.count; ++k) {
            carry += static_cast<uint64_t>(a.at[i]) * b.at[k] + target[i + k];
            target[i + k] = static_cast<uint32_t>(carry % DEC_UNIT_BASE);
            carry /= DEC_UNIT_BASE;
        }
        target[i + b.count] = static_cast<uint32_t>(carry);
    }
}

// In place; what is carried out of `units` goes on above them.
void accumulate(uint32_t* target, DecUnits units) {
    uint32_t carry = 0;
    for (int64_t i = 0; i < units.count || carry != 0; ++i) {
        const uint32_t sum = target[i] + (i < units.count ? units.at[i] : 0) + carry;
        carry = sum >= DEC_UNIT_BASE ? 1 : 0;
        target[i] = sum - (carry != 0 ? DEC_UNIT_BASE : 0);
    }
}

// In place; `target` is not less than the units.
void reduce(uint32_t* target, DecUnits units) {
    uint32_t borrow = 0;
    for (int64_t i = 0; i < units.count || borrow != 0; ++i) {
        const uint32_t taken = (i < units.count ? units.at[i] : 0) + borrow;
        borrow = target[i] < taken ? 1 : 0;
        target[i] = target[i] + (borrow != 0 ? DEC_UNIT_BASE : 0) - taken;
    }
}

DecUnits lowPart(DecUnits units, int64_t count) { return {units.at, count}; }
DecUnits highPart(DecUnits units, int64_t from) { return {units.at + from, units.count - from}; }

// A long factor in pieces as long as the short one, so that halves of both can be paired.
void multiplyInPieces(DecUnits a, DecUnits b, uint32_t* target, DFDLHeapAdapter* heap) {
    std::fill_n(target, a.count + b.count, 0U);
    DecWork product(heap, 2 * b.count);
    for (int64_t from = 0; from < a.count; from += b.count) {
        const DecUnits piece = lowPart(highPart(a, from), std::min(b.count, a.count - from));
        decUnits_multiply(piece, b, product.get(), heap);
        accumulate(target + from, {product.get(), piece.count + b.count});
    }
}

// Three products of halves instead of four (Karatsuba): of the low halves, of the high ones, and of the sums,
// from which the first two are taken to leave both mixed products together.
void multiplyHalves(DecUnits a, DecUnits b, uint32_t* target, DFDLHeapAdapter* heap) {
    const int64_t half = (a.count + 1) / 2;
    const int64_t sumUnits = half + 1;
    DecWork work(heap, 4 * sumUnits);
    uint32_t* sumA = work.get();
    uint32_t* sumB = sumA + sumUnits;
    uint32_t* mixed = sumB + sumUnits;
    decUnits_add(lowPart(a, half), 0, highPart(a, half), 0, sumA, sumUnits);
    decUnits_add(lowPart(b, half), 0, highPart(b, half), 0, sumB, sumUnits);
    decUnits_multiply({sumA, sumUnits}, {sumB, sumUnits}, mixed, heap);
    decUnits_multiply(lowPart(a, half), lowPart(b, half), target, heap);
    decUnits_multiply(highPart(a, half), highPart(b, half), target + 2 * half, heap);
    reduce(mixed, {target, 2 * half});
    reduce(mixed, {target + 2 * half, a.count + b.count - 2 * half});
    // Above the end of the product the mixed one has but zeros.
    accumulate(target + half, {mixed, std::min(2 * sumUnits, a.count + b.count - half)});
}

}  // namespace

void decUnits_multiply(DecUnits a, DecUnits b, uint32_t* target, DFDLHeapAdapter* heap) {
    if (a.count < b.count) std::swap(a, b);
    if (b.count < LONG_UNITS) {
        multiplyPlain(a, b, target);
    } else if (b.count <= (a.count + 1) / 2) {
        multiplyInPieces(a, b, target, heap);
    } else {
        multiplyHalves(a, b, target, heap);
    }
}
