#ifndef DFDL_PROCESSOR_PLAINTEXT_H
#define DFDL_PROCESSOR_PLAINTEXT_H

#include <unicode/utypes.h>

#include <cstdint>

// What the events of a simple text element need of the grammar, in one place. The characters are the
// grammar's.
struct PlainText {
    const UChar* name;
    const UChar* namespaceUri;
    const UChar* designator;
    int32_t elementId;
    int32_t namespaceId;
};

// One such element that waits.
struct HeldPlainText {
    const PlainText* plan;
    int64_t startBit;
    int64_t endBit;
    int64_t textStart;  // units; in the buffer's store of texts
    int32_t length;     // units, or NIL_TEXT
};

inline constexpr int32_t NIL_TEXT = -1;  // in place of the length: the element is nil

#endif
