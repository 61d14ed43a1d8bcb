#ifndef DFDL_CONVERTERS_PLAINNUMBER_H
#define DFDL_CONVERTERS_PLAINNUMBER_H

#include <cstdint>

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/pifenums.h"

struct BinaryNumberTableRow;
struct BooleanRepTableRow;
struct GroupMemberTableRow;

enum PlainNumberForm : uint8_t {
    PLAIN_FORM_NONE,
    PLAIN_FORM_SIGNED,
    PLAIN_FORM_UNSIGNED,
    PLAIN_FORM_FLOATING,
    PLAIN_FORM_TRUTH,
    PLAIN_FORM_PACKED
};

// How a binary number or boolean of a constant count of bytes is read without a value of its own. Worked out
// once per grammar; borrows its rows.
struct PlainNumber {
    PlainNumberForm form;
    uint8_t bytes;
    ByteOrderEnum order;
    DFDLType type;   // of the value
    int32_t places;  // of a decimal, behind the point
    int32_t simpleType;
    const BinaryNumberTableRow* row;  // null for truth
    const BooleanRepTableRow* truth;  // null for numbers
};

// The form is PLAIN_FORM_NONE if the member needs the general road.
PlainNumber PlainNumber_of(const GroupMemberTableRow* row, int64_t bytes);

// The value as DocHandlerAdapter_plainWord takes it. False, without an error, if it is one that the general
// road refuses, or may refuse.
bool PlainNumber_read(const PlainNumber* this_, const uint8_t* bytes, int64_t* word);

#endif
