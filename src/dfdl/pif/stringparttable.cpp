#include "dfdl/pif/stringparttable.h"

#include "dfdl/foundation/dfdlustring.h"

namespace {

void deleteRow(StringPartTableRow* row) { delete_DFDLUString(row->iStringPart); }

}  // namespace

StringPartTable* new_StringPartTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<StringPartTable, deleteRow>(heap, pif);
}

void delete_StringPartTable(StringPartTable* this_) { Table_delete(this_); }

void StringPartTable_finalizeTable(StringPartTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        StringPartTableRow* row = Table_at(this_, index);
        row->id = index + 1;
    }
}

int32_t StringPartTable_findRowIndex(const StringPartTable* this_, int32_t id) {
    return Table_findPosition(this_, id);
}

StringPartTableRow* StringPartTable_findRow(const StringPartTable* this_, int32_t id) {
    return Table_row(this_, StringPartTable_findRowIndex(this_, id));
}
