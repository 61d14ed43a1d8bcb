#ifndef DFDL_PIF_OCCURSSCHEMETABLE_H
#define DFDL_PIF_OCCURSSCHEMETABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct sPIF;

// How often a component occurs.
struct OccursSchemeTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    OccursCountKindEnum iOccursCountKind = OCK_FIXED;
    int32_t iOccursCount = 0;
    int32_t iOccursCountExprIndex = -1;  // -1 none, OCCURS_COUNT_OPEN: bounded by max_occurs alone
    int32_t iStopValuesIndex = -1;
};

inline constexpr int32_t OCCURS_COUNT_OPEN = -2;

using OccursSchemeTable = Table<OccursSchemeTableRow>;

OccursSchemeTable* new_OccursSchemeTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_OccursSchemeTable(OccursSchemeTable* this_);  // null is ignored

#endif
