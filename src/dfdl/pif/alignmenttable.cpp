#include "dfdl/pif/alignmenttable.h"

#include "dfdl/pif/spif.h"

AlignmentTable* new_AlignmentTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<AlignmentTable>(heap, pif);
}

void delete_AlignmentTable(AlignmentTable* this_) { Table_delete(this_); }

void AlignmentTable_finalizeTable(AlignmentTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        AlignmentTableRow* row = Table_at(this_, index);
        row->fillLiteralRow = Table_row(this_->pif->stringLiteralTable, row->iFillByteIndex);
    }
}
