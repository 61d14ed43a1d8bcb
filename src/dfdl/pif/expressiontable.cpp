#include "dfdl/pif/expressiontable.h"

#include "dfdl/foundation/dfdlustring.h"

namespace {

void deleteRow(ExpressionTableRow* row) {
    DFDLHeapAdapter_arrayDeallocate(row->heap, row->iInstructionSet);
    delete_DFDLUString(row->iMessage);
}

}  // namespace

ExpressionTable* new_ExpressionTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<ExpressionTable, deleteRow>(heap, pif);
}

void delete_ExpressionTable(ExpressionTable* this_) { Table_delete(this_); }
