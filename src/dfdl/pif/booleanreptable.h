#ifndef DFDL_PIF_BOOLEANREPTABLE_H
#define DFDL_PIF_BOOLEANREPTABLE_H

#include "dfdl/pif/fixedstate.h"
#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// How true and false are represented.
struct BooleanRepTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iTextBooleanTrueRep = nullptr;
    DFDLUString* iTextBooleanFalseRep = nullptr;
    int32_t iIntegerBooleanTrueRep = -1;
    int32_t iIntegerBooleanFalseRep = -1;
    ByteOrderEnum iByteOrder = BYTEOR_LITTLE_ENDIAN;
    int32_t iTextBooleanTrueRepExpIndex = -1;
    int32_t iTextBooleanFalseRepExpIndex = -1;
    int32_t iByteOrderExprIndex = -1;

    FixedState fixedByteOrder = FIXED_CONSTANT;
};

using BooleanRepTable = Table<BooleanRepTableRow>;

BooleanRepTable* new_BooleanRepTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_BooleanRepTable(BooleanRepTable* this_);  // null is ignored
void BooleanRepTable_finalizeTable(BooleanRepTable* this_);

#endif
