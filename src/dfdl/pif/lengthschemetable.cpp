#include "dfdl/pif/lengthschemetable.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(LengthSchemeTableRow* row) { delete_DFDLUString(row->iLengthPattern); }

}  // namespace

LengthSchemeTable* new_LengthSchemeTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<LengthSchemeTable, deleteRow>(heap, pif);
}

void delete_LengthSchemeTable(LengthSchemeTable* this_) { Table_delete(this_); }

void LengthSchemeTable_finalizeTable(LengthSchemeTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        LengthSchemeTableRow* row = Table_at(this_, index);
        row->id = index + 1;
        row->prefixElement = ElementTable_findRow(this_->pif->elementTable, row->iPrefixLengthTypeIndex);
    }
}

int32_t LengthSchemeTable_findRowIndex(const LengthSchemeTable* this_, int32_t id) {
    return Table_findPosition(this_, id);
}

LengthSchemeTableRow* LengthSchemeTable_findRow(const LengthSchemeTable* this_, int32_t id) {
    return Table_row(this_, LengthSchemeTable_findRowIndex(this_, id));
}
