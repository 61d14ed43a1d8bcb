#ifndef DFDL_CONVERTERS_BINARYFIELD_H
#define DFDL_CONVERTERS_BINARYFIELD_H

#include <cstdint>

#include "dfdl/pif/pifenums.h"

struct BinaryNumberTableRow;
struct GroupMemberTableRow;

// The bytes of a binary number and what they mean. Borrows everything, for the time of one conversion.
struct BinaryField {
    const uint8_t* bytes;
    int64_t length;
    ByteOrderEnum byteOrder;  // all but BYTEOR_BIG_ENDIAN reads as little-endian
    int32_t simpleType;       // DFDLSimpleTypeEnum
    const BinaryNumberTableRow* row;
    const GroupMemberTableRow* element;  // named in messages; may be null
};

inline bool BinaryField_isBigEndian(const BinaryField* this_) {
    return this_->byteOrder == BYTEOR_BIG_ENDIAN;
}
// Where the byte lies that has so many before it in the order of their weight, the heaviest being 0.
inline int64_t BinaryField_indexOf(const BinaryField* this_, int64_t rank) {
    return BinaryField_isBigEndian(this_) ? rank : this_->length - 1 - rank;
}

#endif
