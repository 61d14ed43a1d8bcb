#include "dfdl/pif/pathexpressiontable.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(PathExpressionTableRow* row) { delete_DFDLUString(row->iPathExpression); }

}  // namespace

PathExpressionTable* new_PathExpressionTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<PathExpressionTable, deleteRow>(heap, pif);
}

void delete_PathExpressionTable(PathExpressionTable* this_) { Table_delete(this_); }

void PathExpressionTable_finalizeTable(PathExpressionTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        PathExpressionTableRow* row = Table_at(this_, index);
        row->firstStep = Table_row(this_->pif->stepExpressionTable, row->iFirstStepExpressionIndex);
    }
}
