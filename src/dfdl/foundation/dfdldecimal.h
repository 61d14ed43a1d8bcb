#ifndef DFDL_FOUNDATION_DFDLDECIMAL_H
#define DFDL_FOUNDATION_DFDLDECIMAL_H

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

#endif
