#include "dfdl/pif/nilschemetable.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/helpers/listvaluedproperty.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/tabletext.h"

namespace {

void deleteRow(NilSchemeTableRow* row) { delete_DFDLUString(row->nilString); }

bool hasEmptyString(DFDLHeapAdapter* heap, const DFDLUString* text) {
    DFDLStringLiteral* literal = new_DFDLStringLiteral(heap, text);
    const bool found = DFDLStringLiteral_parse(literal) && literal->hasEmptyString;
    delete_DFDLStringLiteral(literal);
    return found;
}

void setValues(NilSchemeTableRow* row, const DFDLUString* list) {
    ArrayList* entries = ListValuedProperty_split(list, row->heap);
    for (int32_t index = 0; index < ArrayList_size(entries); ++index) {
        row->hasEmptyStringEntity |=
            hasEmptyString(row->heap, ArrayList_getPointer<DFDLUString>(entries, index));
    }
    ListValuedProperty_deleteSplit(entries);
}

void setCharacter(NilSchemeTableRow* row, const DFDLUString* text) {
    DFDLStringLiteral* literal = new_DFDLStringLiteral(row->heap, text);
    if (DFDLStringLiteral_parse(literal)) {
        row->nilByte = DFDLStringLiteral_getByteValue(literal);
        row->nilIsByte = row->nilByte != -1;
        if (!row->nilIsByte) row->nilChar = DFDLStringLiteral_getCharacterValue(literal);
        row->nilString = TableText_fromUnits(row->heap, DFDLUString_view(text));
    }
    delete_DFDLStringLiteral(literal);
}

}  // namespace

NilSchemeTable* new_NilSchemeTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<NilSchemeTable, deleteRow>(heap, pif);
}

void delete_NilSchemeTable(NilSchemeTable* this_) { Table_delete(this_); }

void NilSchemeTable_finalizeTable(NilSchemeTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        NilSchemeTableRow* row = Table_at(this_, index);
        const DFDLUString* text = StringLiteralTable_getStringLiteralForRowIndex(
            this_->pif->stringLiteralTable, row->iNilLiteralIndex);
        if (text == nullptr) continue;
        if (row->iNilKind == NK_LITERAL_VALUE) setValues(row, text);
        if (row->iNilKind == NK_LITERAL_CHAR) setCharacter(row, text);
    }
}
