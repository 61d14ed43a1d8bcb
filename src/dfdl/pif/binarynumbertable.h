#ifndef DFDL_PIF_BINARYNUMBERTABLE_H
#define DFDL_PIF_BINARYNUMBERTABLE_H

#include "dfdl/pif/fixedstate.h"
#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct sPIF;

// How a number is represented in binary.
struct BinaryNumberTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    ByteOrderEnum iByteOrder = BYTEOR_LITTLE_ENDIAN;
    BinaryNumberRepEnum iBinaryNumberRepresentation = BINARY;
    int32_t iBinaryDecimalVirtualPoint = -1;
    BinaryNumberCheckPolicyEnum iBinaryNumberCheckPolicy = BINARY_CHECK_POLICY_STRICT;
    BinaryFloatRepresentationEnum iBinaryFloatRepresentation = IEEE;
    int32_t iPackedSignCodes = -1;
    int32_t iBinaryFloatRepExprIndex = -1;
    int32_t iByteOrderExprIndex = -1;
    bool iDecimalSigned = false;

    FixedState fixedByteOrder = FIXED_CONSTANT;
};

using BinaryNumberTable = Table<BinaryNumberTableRow>;

BinaryNumberTable* new_BinaryNumberTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_BinaryNumberTable(BinaryNumberTable* this_);  // null is ignored
void BinaryNumberTable_finalizeTable(BinaryNumberTable* this_);

#endif
