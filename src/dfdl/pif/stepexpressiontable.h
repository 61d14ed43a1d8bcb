#ifndef DFDL_PIF_STEPEXPRESSIONTABLE_H
#define DFDL_PIF_STEPEXPRESSIONTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// One step of a path; the steps of one path are adjacent.
struct StepExpressionTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iStepExpression = nullptr;
    int32_t iPathExprTableIndex = -1;
    int32_t iPredicateLiteral = -1;  // position from 1
    int32_t iPredicateLiteralExprIndex = -1;
    StepExpressionEnum iStepExpressionEnum = STEP_NONE;

    StepExpressionTableRow* nextStep = nullptr;  // of the same path
    DFDLUString* predicateText = nullptr;        // iPredicateLiteral in decimal; owned, pooled
};

using StepExpressionTable = Table<StepExpressionTableRow>;

StepExpressionTable* new_StepExpressionTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_StepExpressionTable(StepExpressionTable* this_);  // null is ignored
void StepExpressionTable_finalizeTable(StepExpressionTable* this_);

#endif
