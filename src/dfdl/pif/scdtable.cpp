#include "dfdl/pif/scdtable.h"

#include "dfdl/foundation/dfdlustring.h"

namespace {

void deleteRow(SCDTableRow* row) { delete_DFDLUString(row->iSCD); }

}  // namespace

SCDTable* new_SCDTable(DFDLHeapAdapter* heap, sPIF* pif) { return Table_new<SCDTable, deleteRow>(heap, pif); }

void delete_SCDTable(SCDTable* this_) { Table_delete(this_); }
