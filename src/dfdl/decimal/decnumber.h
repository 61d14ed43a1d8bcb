#ifndef DFDL_DECIMAL_DECNUMBER_H
#define DFDL_DECIMAL_DECNUMBER_H

#include <cstdint>

#include "dfdl/decimal/decunits.h"
#include "dfdl/foundation/dfdlheapadapter.h"

// Decimal numbers and their operations as General Decimal Arithmetic defines them. Text of any length is read
// without loss; what operations work out is rounded to the precision of their context.
// Conditions other than bad text are told by the result alone: a NaN, an infinity, a rounded number.

inline constexpr int32_t DEC_LARGEST_EXPONENT = 999999999;  // of the first digit, either sign
inline constexpr int32_t DEC_MOST_DIGITS = 1000000000;      // with which no exponent leaves 32 bits
inline constexpr int32_t DEC_PRECISION_128 = 34;            // digits of a decimal128

enum DecNumberBits : uint8_t {
    DEC_NEGATIVE = 0x80,
    DEC_INFINITE = 0x40,
    DEC_NAN = 0x20,
    DEC_SIGNALLING = 0x10
};

enum DecRounding : int32_t {
    DEC_ROUND_CEILING = 0,
    DEC_ROUND_UP = 1,
    DEC_ROUND_HALF_UP = 2,
    DEC_ROUND_HALF_EVEN = 3,
    DEC_ROUND_HALF_DOWN = 4,
    DEC_ROUND_DOWN = 5,
    DEC_ROUND_FLOOR = 6
};

inline constexpr uint32_t DEC_CONVERSION_SYNTAX = 1;

// What an operation keeps to, and where it reports. Made afresh for each.
struct dfdl_decContext {
    int32_t precision;  // digits, from 1
    int32_t emax;       // bounds of the first digit's exponent
    int32_t emin;
    DecRounding rounding;
    uint32_t status;
};

// Enough for the coefficient that arithmetic of 34 digits gives, so that such numbers are in one piece.
inline constexpr int32_t DEC_SMALL_UNITS = 5;

// A number, its owner's record. It refers to memory of the heap only once it has outgrown its own units.
// The digits of a special value are a NaN's payload.
struct dfdl_decNumber {
    DFDLHeapAdapter* heap;
    uint32_t* large;  // takes the place of `small`; null before
    uint32_t small[DEC_SMALL_UNITS];
    int32_t capacity;  // units
    int32_t digits;    // at least 1; leading zeros are counted only while a number is put together
    int32_t exponent;  // of the last digit
    uint8_t bits;
};

inline dfdl_decContext dfdl_decContextDefault(int32_t precision = DEC_PRECISION_128,
                                              DecRounding rounding = DEC_ROUND_HALF_EVEN) {
    return {precision, DEC_LARGEST_EXPONENT, -DEC_LARGEST_EXPONENT, rounding, 0};
}

void dfdl_decNumberInit(dfdl_decNumber* number, DFDLHeapAdapter* heap);  // zero
void dfdl_decNumberRelease(dfdl_decNumber* number);                      // zero again, without memory
void dfdl_decNumberZero(dfdl_decNumber* number);
void dfdl_decNumberCopy(dfdl_decNumber* target, const dfdl_decNumber* source);
void dfdl_decNumberFromUInt64(dfdl_decNumber* number, uint64_t magnitude);

// Putting a coefficient together: so many digits, all zero, which are then set one by one, counted from the
// first. Exponent and sign stay. A count of 0 is the number zero; digits beyond the count are ignored.
void dfdl_decNumberSetCount(dfdl_decNumber* number, int32_t digits);
void dfdl_decNumberSetDigit(dfdl_decNumber* number, int32_t index, uint32_t digit);
// The coefficient of a finite number, modulo 2^64.
uint64_t dfdl_decNumberCoefficient(const dfdl_decNumber* number);

// Every digit is kept. Text that is no number adds DEC_CONVERSION_SYNTAX to the status and leaves a NaN.
void dfdl_decNumberFromString(dfdl_decNumber* number, const char* text, dfdl_decContext* context);
// Bytes that the text needs, terminator included.
int64_t dfdl_decNumberTextSize(const dfdl_decNumber* number);
int32_t dfdl_decNumberToString(const dfdl_decNumber* number, char* text);  // the length
// The coefficient's digits alone, not terminated, `digits` of them.
char* dfdl_decNumberDigitsToString(const dfdl_decNumber* number, char* text, int64_t digits);

inline DecUnits dfdl_decNumberUnits(const dfdl_decNumber* number) {
    return {number->large != nullptr ? number->large : number->small, decUnits_for(number->digits)};
}
inline bool dfdl_decNumberIsFinite(const dfdl_decNumber* number) {
    return (number->bits & (DEC_INFINITE | DEC_NAN | DEC_SIGNALLING)) == 0;
}
bool dfdl_decNumberIsZero(const dfdl_decNumber* number);
int64_t dfdl_decNumberSignificantDigits(const dfdl_decNumber* number);  // 1 of a zero
// -1, 0 or 1; -2 if one of them is a NaN.
int32_t dfdl_decNumberCompare(const dfdl_decNumber* a, const dfdl_decNumber* b);

// In all operations an operand may be the result.
void dfdl_decNumberAdd(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                       const dfdl_decContext* context);
void dfdl_decNumberSubtract(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                            const dfdl_decContext* context);
void dfdl_decNumberMultiply(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                            const dfdl_decContext* context);
void dfdl_decNumberDivide(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* b,
                          const dfdl_decContext* context);
void dfdl_decNumberPlus(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context);
void dfdl_decNumberAbs(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context);
// a with the exponent of the pattern, or with the one given. A NaN where that takes more digits than the
// precision allows.
void dfdl_decNumberQuantize(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decNumber* pattern,
                            const dfdl_decContext* context);
void dfdl_decNumberRescale(dfdl_decNumber* result, const dfdl_decNumber* a, int64_t exponent,
                           const dfdl_decContext* context);
// Rounded to the precision, then without zeros at the end of the coefficient.
void dfdl_decNumberReduce(dfdl_decNumber* result, const dfdl_decNumber* a, const dfdl_decContext* context);
void dfdl_decNumberToIntegralValue(dfdl_decNumber* result, const dfdl_decNumber* a,
                                   const dfdl_decContext* context);
// Takes off the zeros at the end of a fraction, and those alone.
void dfdl_decNumberTrim(dfdl_decNumber* number);

#endif
