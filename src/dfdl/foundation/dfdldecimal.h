#ifndef DFDL_FOUNDATION_DFDLDECIMAL_H
#define DFDL_FOUNDATION_DFDLDECIMAL_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/decimal/decnumber.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLConstants;
struct DFDLUString;

// A decimal number of any precision, used for xs:decimal and for integers beyond 64 bits. It keeps the last
// conversion to an integer. Belongs to its heap.
struct DFDLDecimal {
    DFDLHeapAdapter* heap;
    const DFDLConstants* constants;  // the bounds that `fits` compares with
    int64_t cachedSigned;
    uint64_t cachedUnsigned;
    uint32_t signedValid;
    uint32_t unsignedValid;
    dfdl_decNumber number;
    int32_t roundingMode;  // DecRounding
};

DFDLDecimal* new_DFDLDecimal(DFDLHeapAdapter* heap, const DFDLConstants* constants);  // zero
// Null if the text, read up to its terminator, is no number.
DFDLDecimal* new_DFDLDecimalFromChar(DFDLHeapAdapter* heap, const DFDLConstants* constants, const char* text,
                                     int32_t length);
void delete_DFDLDecimal(DFDLDecimal* this_);  // null is ignored
DFDLDecimal* DFDLDecimal_copy(const DFDLDecimal* this_, DFDLHeapAdapter* heap);

// Rounded by the rounding mode; 0 if it does not fit.
int64_t DFDLDecimal_getSignedQValue(DFDLDecimal* this_);
uint64_t DFDLDecimal_getUnsignedQValue(DFDLDecimal* this_);
// Without the constants' bound above, that side passes; without the one below, nothing fits.
bool DFDLDecimal_fitsInSignedQValue(const DFDLDecimal* this_);
bool DFDLDecimal_fitsInUnsignedQValue(const DFDLDecimal* this_);
// -1 for a set sign, otherwise 0 for a zero and 1.
int32_t DFDLDecimal_signum(const DFDLDecimal* this_);
inline bool DFDLDecimal_isFinite(const DFDLDecimal* this_) { return dfdl_decNumberIsFinite(&this_->number); }

// Terminated text, possibly with an exponent, in a buffer of heap->bufferFactory that is the caller's to
// free.
char* DFDLDecimal_getDecimal(const DFDLDecimal* this_, int32_t* length, DFDLHeapAdapter* heap);
// A new string of the given heap's pool, without zeros behind the last digit of a fraction.
DFDLUString* DFDLDecimal_getDecimalInUString(const DFDLDecimal* this_, UErrorCode* status,
                                             DFDLHeapAdapter* heap);
// Where a text has a point, takes off the zeros at its end, and the point if it is last then; the length.
int32_t stripTrailingZerosFromDecimal(char* text);

// -1, 0 or 1; -1 too if either is null, -2 if the two cannot be compared.
int32_t DFDLDecimal_compare(const DFDLDecimal* a, const DFDLDecimal* b);

#endif
