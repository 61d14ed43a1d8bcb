#ifndef DFDL_PIF_PATHEXPRESSIONTABLE_H
#define DFDL_PIF_PATHEXPRESSIONTABLE_H

#include "dfdl/pif/table.h"

struct DFDLUString;
struct StepExpressionTableRow;
struct sPIF;

// A path that expressions use.
struct PathExpressionTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iPathExpression = nullptr;
    int32_t iExpressionTableIndex = -1;
    int32_t iFirstStepExpressionIndex = -1;

    StepExpressionTableRow* firstStep = nullptr;
};

using PathExpressionTable = Table<PathExpressionTableRow>;

PathExpressionTable* new_PathExpressionTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_PathExpressionTable(PathExpressionTable* this_);  // null is ignored
void PathExpressionTable_finalizeTable(PathExpressionTable* this_);

#endif
