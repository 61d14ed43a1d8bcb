#include "dfdl/pif/escapeschemetable.h"

#include "dfdl/foundation/dfdlustring.h"

namespace {

void deleteRow(EscapeSchemeTableRow* row) {
    delete_DFDLUString(row->iEscapeSchemeName);
    delete_DFDLUString(row->iEscapeCharacter);
    delete_DFDLUString(row->iEscapeBlockStart);
    delete_DFDLUString(row->iEscapeBlockEnd);
    delete_DFDLUString(row->iEscapeEscapeCharacter);
    delete_DFDLUString(row->iExtraEscapedCharacters);
}

}  // namespace

EscapeSchemeTable* new_EscapeSchemeTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<EscapeSchemeTable, deleteRow>(heap, pif);
}

void delete_EscapeSchemeTable(EscapeSchemeTable* this_) { Table_delete(this_); }
