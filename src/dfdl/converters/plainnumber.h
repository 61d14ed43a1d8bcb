#ifndef DFDL_CONVERTERS_PLAINNUMBER_H
#define DFDL_CONVERTERS_PLAINNUMBER_H

#include <cstdint>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/pifenums.h"

struct BinaryNumberTableRow;
struct BooleanRepTableRow;
struct GroupMemberTableRow;

enum PlainNumberForm : uint8_t {
    PLAIN_FORM_NONE,
    PLAIN_FORM_SIGNED,
    PLAIN_FORM_UNSIGNED,  // also the bits of a float that need no conversion
    PLAIN_FORM_FLOATING,
    PLAIN_FORM_TRUTH,
    PLAIN_FORM_PACKED
};

// How a binary number or boolean of a constant count of bytes is read without a value of its own. Worked out
// once per grammar; borrows its rows.
struct PlainNumber {
    PlainNumberForm form;
    uint8_t bytes;  // 1 to 8
    ByteOrderEnum order;
    DFDLType type;   // of the value
    int32_t places;  // of a decimal, behind the point
    int32_t simpleType;
    const BinaryNumberTableRow* row;  // null for truth
    const BooleanRepTableRow* truth;  // null for numbers
};

// The form is PLAIN_FORM_NONE if the member needs the general road.
PlainNumber PlainNumber_of(const GroupMemberTableRow* row, int64_t bytes);

bool PlainNumber_readSlowly(const PlainNumber* this_, const uint8_t* bytes, int64_t* word);

// The value as DocHandlerAdapter_plainWord takes it. False, without an error, if it is one that the general
// road refuses, or may refuse.
inline bool PlainNumber_read(const PlainNumber* this_, const uint8_t* bytes, int64_t* word) {
    if (this_->form > PLAIN_FORM_UNSIGNED) return PlainNumber_readSlowly(this_, bytes, word);
    uint64_t bits = 0;
    switch (this_->bytes) {
        case 1:
            bits = *bytes;
            break;
        case 2:
            bits = BinaryNumberConverter_getShort(bytes, this_->order);
            break;
        case 4:
            bits = BinaryNumberConverter_getInt(bytes, this_->order);
            break;
        case 8:
            bits = BinaryNumberConverter_getLong(bytes, this_->order);
            break;
        default:
            return PlainNumber_readSlowly(this_, bytes, word);
    }
    const int sign = this_->form == PLAIN_FORM_SIGNED ? 64 - 8 * this_->bytes : 0;
    *word = static_cast<int64_t>(bits << sign) >> sign;
    return true;
}

#endif
