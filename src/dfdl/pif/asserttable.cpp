#include "dfdl/pif/asserttable.h"

#include "dfdl/foundation/dfdlustring.h"

namespace {

void deleteRow(AssertTableRow* row) { delete_DFDLUString(row->iMessage); }

}  // namespace

AssertTable* new_AssertTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<AssertTable, deleteRow>(heap, pif);
}

void delete_AssertTable(AssertTable* this_) { Table_delete(this_); }

void AssertTable_finalizeTable(AssertTable* this_) {
    for (int32_t index = 1; index < Table_size(this_); ++index) {
        AssertTableRow* previous = Table_at(this_, index - 1);
        AssertTableRow* row = Table_at(this_, index);
        if (row->iGroupMemberIndex == previous->iGroupMemberIndex) previous->nextAssert = row;
    }
}
