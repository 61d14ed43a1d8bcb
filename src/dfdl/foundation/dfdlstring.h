#ifndef DFDL_FOUNDATION_DFDLSTRING_H
#define DFDL_FOUNDATION_DFDLSTRING_H

#include <unicode/ucnv.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;

// A narrow, terminated string: names on their way to ICU or to the system library.
struct DFDLString {
    DFDLHeapAdapter* heap;
    char* chars;
    int32_t length;  // bytes
};

DFDLString* new_DFDLString_fromCString(DFDLHeapAdapter* heap, const char* text);
DFDLString* new_DFDLStringFromDFDLString(const DFDLString* source, DFDLHeapAdapter* heap);
DFDLString* new_DFDLStringFromDFDLUString(DFDLHeapAdapter* heap, UConverter* converter,
                                          const DFDLUString* source);
void delete_DFDLString(DFDLString* this_);  // null is ignored

#endif
