#ifndef DFDL_PIF_ALIGNMENTTABLE_H
#define DFDL_PIF_ALIGNMENTTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct StringLiteralTableRow;
struct sPIF;

// Where a representation starts, and what is skipped around it.
struct AlignmentTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iAlignment = 0;  // in iAlignmentUnits
    int32_t iFillByteIndex = -1;
    int32_t iLeadingSkipBytes = 0;   // in iAlignmentUnits
    int32_t iTrailingSkipBytes = 0;  // in iAlignmentUnits
    AlignmentUnitsEnum iAlignmentUnits = ALUNITS_BITS;

    StringLiteralTableRow* fillLiteralRow = nullptr;
};

using AlignmentTable = Table<AlignmentTableRow>;

AlignmentTable* new_AlignmentTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_AlignmentTable(AlignmentTable* this_);  // null is ignored
void AlignmentTable_finalizeTable(AlignmentTable* this_);

#endif
