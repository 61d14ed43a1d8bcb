#ifndef DFDL_FOUNDATION_DFDLDECIMAL_H
#define DFDL_FOUNDATION_DFDLDECIMAL_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/decimal/decnumber.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLConstants;
struct DFDLUString;

// A decimal number of any precision, used for xs:decimal and for integers beyond 64 bits. Most of them are
// small integers, so the last conversions are kept: a getter may write to the object, and one that several
// threads read must have been asked before. Belongs to its heap.
struct DFDLDecimal {
    DFDLHeapAdapter* heap;
    const DFDLConstants* constants;  // the bounds that `fits` compares with; may be null
    int64_t cachedSigned;
    uint32_t signedValid;
    uint64_t cachedUnsigned;
    uint32_t unsignedValid;
    double cachedDouble;
    uint32_t doubleValid;
    dfdl_decNumber number;
    DecRounding roundingMode;
};

DFDLDecimal* new_DFDLDecimal(DFDLHeapAdapter* heap, const DFDLConstants* constants);  // zero
// Null if the text is no number. The text is read up to its terminator, whatever the length says.
DFDLDecimal* new_DFDLDecimalFromChar(DFDLHeapAdapter* heap, const DFDLConstants* constants, const char* text,
                                     int32_t length);
void delete_DFDLDecimal(DFDLDecimal* this_);  // null is ignored
DFDLDecimal* DFDLDecimal_copy(const DFDLDecimal* this_, DFDLHeapAdapter* heap);
void DFDLDecimal_clear(DFDLDecimal* this_);  // zero again; the rounding mode stays

void DFDLDecimal_setSignedQValue(DFDLDecimal* this_, int64_t value);
void DFDLDecimal_setUnsignedQValue(DFDLDecimal* this_, uint64_t value);
// Keeps 15 significant digits of the value, but getDouble gives it back as it is.
void DFDLDecimal_setDouble(DFDLDecimal* this_, double value);
// False, and nothing is changed, if the text up to its terminator is no number.
bool DFDLDecimal_setString(DFDLDecimal* this_, const char* text, int32_t length);
void DFDLDecimal_setDecimalValue(DFDLDecimal* this_, const DFDLDecimal* other);
void DFDLDecimal_setPositive(DFDLDecimal* this_, bool positive);
void DFDLDecimal_setDecimalAt(DFDLDecimal* this_, int32_t count);  // the exponent becomes -count
// A number from single digits: their count first, then each, counted from the first; of a digit's byte the
// low half is taken.
void DFDLDecimal_setCount(DFDLDecimal* this_, int32_t digits);
void DFDLDecimal_setDigit(DFDLDecimal* this_, int32_t index, uint8_t digit);
// By the numbers of text number formats: 1 ceiling, 2 floor, 3 down, 4 up, 6 half down, 7 half up; any other
// is half even.
void DFDLDecimal_setRoundingMode(DFDLDecimal* this_, int32_t mode);

// Rounded by the rounding mode. 0 for what has 20 digits before the point or more (10 of 32 bits: 11), and
// for a signed value beyond its bounds; unsigned values are taken without sign, and modulo what they hold.
int64_t DFDLDecimal_getSignedQValue(DFDLDecimal* this_);
uint64_t DFDLDecimal_getUnsignedQValue(DFDLDecimal* this_);
int32_t DFDLDecimal_getSignedInt(const DFDLDecimal* this_);
uint32_t DFDLDecimal_getUnsignedInt(const DFDLDecimal* this_);
// The nearest double, of 18 significant digits at most; the largest finite one for an infinity. `heap` gives
// working memory.
double DFDLDecimal_getDouble(DFDLDecimal* this_, DFDLHeapAdapter* heap);

// Without the constants' bound above, that side passes; without the one below, nothing fits.
bool DFDLDecimal_fitsInSignedQValue(const DFDLDecimal* this_);
bool DFDLDecimal_fitsInUnsignedQValue(const DFDLDecimal* this_);
// -1 for a set sign, otherwise 0 for a zero and 1.
int32_t DFDLDecimal_signum(const DFDLDecimal* this_);
inline bool DFDLDecimal_isFinite(const DFDLDecimal* this_) { return dfdl_decNumberIsFinite(&this_->number); }
// Digits before the point; of a zero or a special value the exponent.
int64_t DFDLDecimal_getDecimalAt(const DFDLDecimal* this_);
int32_t DFDLDecimal_getCount(const DFDLDecimal* this_);  // digits

// Terminated text in a buffer of heap->bufferFactory that is the caller's to free; possibly with an exponent.
char* DFDLDecimal_getDecimal(const DFDLDecimal* this_, int32_t* length, DFDLHeapAdapter* heap);
// The same of the number rounded to an integer, in plain digits.
char* DFDLDecimal_getDecimalWithoutExponent(const DFDLDecimal* this_, int32_t* length, DFDLHeapAdapter* heap);
// A new string of the given heap's pool, without zeros behind the last digit of a fraction.
DFDLUString* DFDLDecimal_getDecimalInUString(const DFDLDecimal* this_, UErrorCode* status,
                                             DFDLHeapAdapter* heap);
// Where a terminated text has a point and no exponent, takes off the zeros at its end, and the point if it is
// last then; the length.
int32_t stripTrailingZerosFromDecimal(char* text);
int32_t stripTrailingZerosAfterDecimal(char16_t* text);

// -1, 0 or 1; -1 too if either is null, -2 if the two cannot be compared.
int32_t DFDLDecimal_compare(const DFDLDecimal* a, const DFDLDecimal* b);
bool DFDLDecimal_isDecimalEqual(const DFDLDecimal* a, const DFDLDecimal* b);

// In place, to 34 digits, in the rounding mode.
void DFDLDecimal_add(DFDLDecimal* this_, const DFDLDecimal* other);
void DFDLDecimal_subtract(DFDLDecimal* this_, const DFDLDecimal* other);
void DFDLDecimal_multi(DFDLDecimal* this_, const DFDLDecimal* other);
void DFDLDecimal_div(DFDLDecimal* this_, const DFDLDecimal* other);
// In place; of a number of more than 34 digits none is lost unless this says so.
void DFDLDecimal_negate(DFDLDecimal* this_);  // sets the sign: what is negative stays so
void DFDLDecimal_Abs(DFDLDecimal* this_);
void DFDLDecimal_round(DFDLDecimal* this_, int32_t digits);  // significant digits, 1 at least
void DFDLDecimal_roundFixedPoint(DFDLDecimal* this_, int32_t fractionalDigits);
void DFDLDecimal_reduce(DFDLDecimal* this_);  // without zeros at the end, also those of an integer
void DFDLDecimal_toIntegralValue(DFDLDecimal* this_);

#endif
