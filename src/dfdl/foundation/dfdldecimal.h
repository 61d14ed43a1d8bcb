#ifndef DFDL_FOUNDATION_DFDLDECIMAL_H
#define DFDL_FOUNDATION_DFDLDECIMAL_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLConstants;
struct DFDLUString;

// An arbitrary-precision decimal number.
struct DFDLDecimal;

DFDLDecimal* new_DFDLDecimal(DFDLHeapAdapter* heap, const DFDLConstants* constants);
// Null if the text, read up to its terminator, is no number.
DFDLDecimal* new_DFDLDecimalFromChar(DFDLHeapAdapter* heap, const DFDLConstants* constants, const char* text,
                                     int32_t length);
void delete_DFDLDecimal(DFDLDecimal* this_);  // null is ignored
DFDLDecimal* DFDLDecimal_copy(const DFDLDecimal* this_, DFDLHeapAdapter* heap);

int64_t DFDLDecimal_getSignedQValue(DFDLDecimal* this_);
uint64_t DFDLDecimal_getUnsignedQValue(DFDLDecimal* this_);
// Terminated text, possibly with an exponent, in a buffer of heap->bufferFactory that is the caller's to
// free.
char* DFDLDecimal_getDecimal(const DFDLDecimal* this_, int32_t* length, DFDLHeapAdapter* heap);
// A new string of the given heap's pool.
DFDLUString* DFDLDecimal_getDecimalInUString(const DFDLDecimal* this_, UErrorCode* status,
                                             DFDLHeapAdapter* heap);
// -1, 0 or 1; -1 too if either is null, -2 if the two cannot be compared.
int32_t DFDLDecimal_compare(const DFDLDecimal* a, const DFDLDecimal* b);

#endif
