#ifndef DFDL_PROCESSOR_PLAINELEMENT_H
#define DFDL_PROCESSOR_PLAINELEMENT_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdltype.h"

// What the events of a simple element need of the grammar, in one place. The characters are the grammar's.
struct PlainElement {
    const UChar* name;
    const UChar* namespaceUri;
    const UChar* designator;
    int32_t elementId;
    int32_t namespaceId;
    DFDLType valueType;  // of a value that is no text
};

// A value that fits a word: integers as they are, truth as 1 or 0, the bits of a float in the low half, of a
// decimal the digits without the point, the packed fields of a calendar.
struct PlainValue {
    int64_t word;
    int32_t places;  // behind the point, of a decimal: 0 to MOST_PLACES
};

inline constexpr int32_t MOST_PLACES = 6;  // a decimal with more is written with an exponent

// One such element that waits.
struct HeldPlainElement {
    const PlainElement* plan;
    int64_t startBit;
    int64_t endBit;
    int64_t textStart;  // units; in the buffer's store of texts
    int64_t word;       // of a value that is no text
    int32_t length;     // units, or one of those below
    int32_t places;
};

// In place of the length.
inline constexpr int32_t NIL_ELEMENT = -1;
inline constexpr int32_t WORD_ELEMENT = -2;  // the value is in the word
inline constexpr int32_t RECORD_START = -3;  // of a complex element: no value, and one position
inline constexpr int32_t RECORD_END = -4;

#endif
