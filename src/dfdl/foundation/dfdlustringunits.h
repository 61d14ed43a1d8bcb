#ifndef DFDL_FOUNDATION_DFDLUSTRINGUNITS_H
#define DFDL_FOUNDATION_DFDLUSTRINGUNITS_H

#include <cstring>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"

// What the files of DFDLUString share about the units behind a string.

// What empty strings point at. Never written to.
inline UChar* DFDLUStringUnits_empty() {
    static constexpr UChar TERMINATOR = 0;
    return const_cast<UChar*>(&TERMINATOR);
}

// A buffer for `length` units and the terminator, which is written. Refuses a negative length.
inline UChar* DFDLUStringUnits_new(DFDLHeapAdapter* heap, int32_t length) {
    if (length < 0) DFDLHeapAdapter_refuse(heap);
    UChar* units = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, static_cast<int64_t>(length) + 1);
    units[length] = 0;
    return units;
}

// Two copies of `Count` units that may overlap.
template <int32_t Count>
void DFDLUStringUnits_copyEnds(UChar* target, const UChar* source, int32_t length) {
    std::memcpy(target, source, Count * sizeof(UChar));
    std::memcpy(target + length - Count, source + length - Count, Count * sizeof(UChar));
}

// Most texts are the content of short fields, where the call of a general copy would cost most of it.
inline void DFDLUStringUnits_fill(UChar* target, const UChar* source, int32_t length) {
    if (length > 16) {
        std::memcpy(target, source, static_cast<size_t>(length) * sizeof(UChar));
    } else if (length >= 8) {
        DFDLUStringUnits_copyEnds<8>(target, source, length);
    } else if (length >= 4) {
        DFDLUStringUnits_copyEnds<4>(target, source, length);
    } else if (length >= 2) {
        DFDLUStringUnits_copyEnds<2>(target, source, length);
    } else if (length == 1) {
        *target = *source;
    }
}

inline UChar* DFDLUStringUnits_copy(DFDLHeapAdapter* heap, const UChar* chars, int32_t length) {
    UChar* units = DFDLUStringUnits_new(heap, length);
    DFDLUStringUnits_fill(units, chars, length);
    return units;
}

// A length that 32 bits count, or an allocation failure.
inline int32_t DFDLUStringUnits_length(DFDLHeapAdapter* heap, uint64_t length) {
    if (length >= INT32_MAX) DFDLHeapAdapter_refuse(heap);
    return static_cast<int32_t>(length);
}

// Gives the units back if they are the string's own; the fields still point at them.
inline void DFDLUStringUnits_free(DFDLUString* string) {
    if (string->external == 0) {
        DFDLBufferFactory_FreeUBuffer(string->bufferHeap->bufferFactory, string->chars);
    }
}

// The string gives up its units for others.
inline void DFDLUStringUnits_set(DFDLUString* string, UChar* chars, int32_t length, bool external) {
    DFDLUStringUnits_free(string);
    string->chars = chars;
    string->length = length;
    string->external = external ? 1U : 0U;
}

// Converted units in a buffer of `heap`; null if the converter refuses. A length of -1: up to the terminator.
UChar* DFDLUStringUnits_convert(DFDLHeapAdapter* heap, UConverter* converter, const char* bytes,
                                int32_t length, int32_t* units);

#endif
