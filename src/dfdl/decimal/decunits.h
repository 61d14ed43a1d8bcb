#ifndef DFDL_DECIMAL_DECUNITS_H
#define DFDL_DECIMAL_DECUNITS_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// Coefficients of decimal numbers: arrays of units of nine digits each, least significant unit first. Powers
// of ten are what decimal arithmetic shifts by and rounds at, so nothing is converted to binary, and text is
// read and written in time that grows with its length only.

inline constexpr uint32_t DEC_UNIT_BASE = 1000000000;
inline constexpr int32_t DEC_UNIT_DIGITS = 9;
inline constexpr uint32_t DEC_POWERS[DEC_UNIT_DIGITS + 1] = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

constexpr int64_t decUnits_for(int64_t digits) { return (digits + DEC_UNIT_DIGITS - 1) / DEC_UNIT_DIGITS; }

// Units that belong to somebody else; the topmost may be zero.
struct DecUnits {
    const uint32_t* at;
    int64_t count;
};

// What is cut off below a digit, compared with half of that digit's value.
enum DecRest : int32_t { DEC_REST_NONE, DEC_REST_BELOW_HALF, DEC_REST_HALF, DEC_REST_ABOVE_HALF };

// Significant digits: 0 of a zero.
int64_t decUnits_digits(DecUnits units);
// The nine digits from that of value 10^lowest upwards. There are zeros on both sides of the units.
uint32_t decUnits_window(DecUnits units, int64_t lowest);
inline uint32_t decUnits_digit(DecUnits units, int64_t position) {
    return decUnits_window(units, position) % 10;
}
// Whether a digit below that of value 10^position is not zero.
bool decUnits_anyBelow(DecUnits units, int64_t position);
DecRest decUnits_rest(DecUnits units, int64_t position);
// Zeros at the low end, at most `most`. The units are no zero.
int64_t decUnits_trailingZeros(DecUnits units, int64_t most);

// -1, 0 or 1, where the first of `aDigits` significant digits of a stands above the first of b's.
int32_t decUnits_compareFromTop(DecUnits a, int64_t aDigits, DecUnits b, int64_t bDigits);

// Writes `count` units of what they are told to. `target` shares no unit with a source, but that shift may
// move units downwards in place.
void decUnits_shift(DecUnits source, int64_t digitsUp, uint32_t* target, int64_t count);
void decUnits_add(DecUnits a, int64_t aDigitsUp, DecUnits b, int64_t bDigitsUp, uint32_t* target,
                  int64_t count);
void decUnits_subtract(DecUnits a, int64_t aDigitsUp, DecUnits b, int64_t bDigitsUp, uint32_t* target,
                       int64_t count);  // a is not less than b
void decUnits_increment(uint32_t* units, int64_t count);
// Fills a.count + b.count units. `heap` gives working memory for long coefficients.
void decUnits_multiply(DecUnits a, DecUnits b, uint32_t* target, DFDLHeapAdapter* heap);
// Fills dividendCount - divisorCount + 1 units, and tells whether something remains. The divisor's top unit
// is not zero, nor is it longer than the dividend, above which there is a spare unit. Both are overwritten.
bool decUnits_divide(uint32_t* dividend, int64_t dividendCount, uint32_t* divisor, int64_t divisorCount,
                     uint32_t* quotient);

#endif
