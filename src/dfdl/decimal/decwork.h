#ifndef DFDL_DECIMAL_DECWORK_H
#define DFDL_DECIMAL_DECWORK_H

#include <algorithm>
#include <cstdint>

#include "dfdl/decimal/decnumber.h"
#include "dfdl/decimal/decunits.h"

// What the files of the decimal arithmetic share among themselves.

// Units for an intermediate result, zero at first. Those of numbers of 34 digits need no memory of the heap.
class DecWork {
  public:
    DecWork(DFDLHeapAdapter* heap, int64_t units) : heap_(heap) {
        if (units > SMALL_UNITS) {
            large_ = DFDLHeapAdapter_newArray<uint32_t>(heap, static_cast<size_t>(units));
        } else {
            std::fill_n(small_, units, 0U);
        }
    }
    ~DecWork() {
        if (large_ != nullptr) DFDLHeapAdapter_arrayDeallocate(heap_, large_);
    }
    DecWork(const DecWork&) = delete;
    DecWork& operator=(const DecWork&) = delete;

    uint32_t* get() { return large_ != nullptr ? large_ : small_; }

  private:
    static constexpr int64_t SMALL_UNITS = 20;

    DFDLHeapAdapter* heap_;
    uint32_t* large_ = nullptr;
    uint32_t small_[SMALL_UNITS];
};

// A result before it is rounded to its context.
struct DecExact {
    DecUnits units;
    int64_t exponent;
    bool negative;
    bool more;  // the value goes on below the units, which are not zero
};

inline bool dec_isNegative(const dfdl_decNumber* number) { return (number->bits & DEC_NEGATIVE) != 0; }
inline bool dec_isInfinite(const dfdl_decNumber* number) { return (number->bits & DEC_INFINITE) != 0; }
inline bool dec_isNaN(const dfdl_decNumber* number) {
    return (number->bits & (DEC_NAN | DEC_SIGNALLING)) != 0;
}

// The least exponent that a rounded number of the context can have.
inline int64_t dec_leastExponent(const dfdl_decContext* context) {
    return static_cast<int64_t>(context->emin) - (context->precision - 1);
}

// Room for so many digits, whose number is set; the units are the caller's to write. Throws where a number
// cannot have so many.
uint32_t* dec_prepare(dfdl_decNumber* number, int64_t digits);
// Leading zeros are no longer counted, but for the last.
void dec_dropLeadingZeros(dfdl_decNumber* number);
// Takes them off the low end; the value stays.
void dec_dropZeros(dfdl_decNumber* number, int64_t zeros);
// A NaN as the result of an operation: quiet, with no more digits of its payload, from the last, than the
// precision; an infinity as it is.
void dec_passSpecial(dfdl_decNumber* result, const dfdl_decNumber* special, const dfdl_decContext* context);
void dec_setSpecial(dfdl_decNumber* number, uint8_t bits);
void dec_setZero(dfdl_decNumber* number, int64_t exponent, bool negative);
// The units of `exact` may be those of `result`.
void dec_finish(dfdl_decNumber* result, const DecExact& exact, const dfdl_decContext* context);

#endif
