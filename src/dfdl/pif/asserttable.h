#ifndef DFDL_PIF_ASSERTTABLE_H
#define DFDL_PIF_ASSERTTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// A condition on a member; the asserts of one member are adjacent.
struct AssertTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iGroupMemberIndex = -1;
    bool iDiscriminatorFlag = false;
    int32_t iExpressionIndex = -1;
    DFDLUString* iMessage = nullptr;  // the schema author's
    FailureTypeEnum iFailureType = FT_PROCESSING_ERROR;

    AssertTableRow* nextAssert = nullptr;  // of the same member
};

using AssertTable = Table<AssertTableRow>;

AssertTable* new_AssertTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_AssertTable(AssertTable* this_);  // null is ignored
void AssertTable_finalizeTable(AssertTable* this_);

#endif
