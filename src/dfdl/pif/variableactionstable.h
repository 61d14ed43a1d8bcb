#ifndef DFDL_PIF_VARIABLEACTIONSTABLE_H
#define DFDL_PIF_VARIABLEACTIONSTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct sPIF;

// What a member does to a variable; the actions of one member are adjacent.
struct VariableActionsTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iVariableId = -1;
    int32_t iGroupMemberTableId = -1;  // row index; -1: defines a global variable
    DFDLVariableActionEnum iAction = ACTION_DEFINE;
    int32_t iValueIndex = -1;
    int32_t iValueExpressionIndex = -1;

    int32_t variableRowIndex = -1;
    VariableActionsTableRow* nextAction = nullptr;  // of the same member
};

using VariableActionsTable = Table<VariableActionsTableRow>;

VariableActionsTable* new_VariableActionsTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_VariableActionsTable(VariableActionsTable* this_);  // null is ignored
void VariableActionsTable_finalizeTable(VariableActionsTable* this_);

#endif
