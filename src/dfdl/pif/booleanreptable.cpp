#include "dfdl/pif/booleanreptable.h"

#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(BooleanRepTableRow* row) {
    delete_DFDLUString(row->iTextBooleanTrueRep);
    delete_DFDLUString(row->iTextBooleanFalseRep);
}

}  // namespace

BooleanRepTable* new_BooleanRepTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<BooleanRepTable, deleteRow>(heap, pif);
}

void delete_BooleanRepTable(BooleanRepTable* this_) { Table_delete(this_); }

void BooleanRepTable_finalizeTable(BooleanRepTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        BooleanRepTableRow* row = Table_at(this_, index);
        row->fixedByteOrder =
            FixedState_ofExpression(this_->pif, row->iByteOrderExprIndex, DFDLConstants::VARIABLE_BYTE_ORDER);
    }
}
