#ifndef DFDL_DECIMAL_DECNUMBER_H
#define DFDL_DECIMAL_DECNUMBER_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// Decimal numbers as General Decimal Arithmetic defines them, as far as values read from
// text need: exact conversion from and to text, comparison, and the integer part.

inline constexpr int32_t DEC_LARGEST_EXPONENT = 999999999;  // of the adjusted exponent, either sign

enum DecNumberBits : uint8_t {
    DEC_NEGATIVE = 0x80,
    DEC_INFINITE = 0x40,
    DEC_NAN = 0x20,
    DEC_SIGNALLING = 0x10
};

// The coefficient is one digit a byte, most significant first, without leading zeros but for a zero's one.
// The record is its owner's; the digits belong to the heap.
struct dfdl_decNumber {
    DFDLHeapAdapter* heap;
    uint8_t* digits;
    int32_t count;     // digits; of a NaN those of its payload
    int32_t exponent;  // of the last digit
    uint8_t bits;
};

inline constexpr uint32_t DEC_CONVERSION_SYNTAX = 1;

// Rounding to an integer, in the numbers of DFDLDecimal_setRoundingMode's table.
enum DecRounding : int32_t {
    DEC_ROUND_CEILING = 0,
    DEC_ROUND_UP = 1,
    DEC_ROUND_HALF_UP = 2,
    DEC_ROUND_HALF_EVEN = 3,
    DEC_ROUND_HALF_DOWN = 4,
    DEC_ROUND_DOWN = 5,
    DEC_ROUND_FLOOR = 6
};

void dfdl_decNumberInit(dfdl_decNumber* number, DFDLHeapAdapter* heap);  // zero, without digits of its own
void dfdl_decNumberRelease(dfdl_decNumber* number);
void dfdl_decNumberCopy(dfdl_decNumber* target, const dfdl_decNumber* source);  // a released or fresh target

// Every digit is kept. Text that is no number adds DEC_CONVERSION_SYNTAX to the status and leaves a NaN.
void dfdl_decNumberFromString(dfdl_decNumber* number, const char* text, uint32_t* status);
// Bytes that the text needs, terminator included.
int64_t dfdl_decNumberTextSize(const dfdl_decNumber* number);
int32_t dfdl_decNumberToString(const dfdl_decNumber* number, char* text);  // the length

inline bool dfdl_decNumberIsFinite(const dfdl_decNumber* number) {
    return (number->bits & (DEC_INFINITE | DEC_NAN | DEC_SIGNALLING)) == 0;
}
bool dfdl_decNumberIsZero(const dfdl_decNumber* number);
// -1, 0 or 1; -2 if one of them is a NaN.
int32_t dfdl_decNumberCompare(const dfdl_decNumber* a, const dfdl_decNumber* b);
// The magnitude rounded to an integer; false if it is no finite number or beyond 64 bits.
bool dfdl_decNumberToInteger(const dfdl_decNumber* number, DecRounding rounding, uint64_t* magnitude);

#endif
