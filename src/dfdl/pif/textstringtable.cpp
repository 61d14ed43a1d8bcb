#include "dfdl/pif/textstringtable.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/tabletext.h"

namespace {

void deleteRow(TextStringTableRow* row) {
    delete_DFDLUString(row->iTextPadCharacter);
    delete_DFDLUString(row->padString);
}

void setPad(TextStringTableRow* row) {
    DFDLStringLiteral* literal = new_DFDLStringLiteral(row->heap, row->iTextPadCharacter);
    if (DFDLStringLiteral_parse(literal) && DFDLStringLiteral_partCount(literal) > 0) {
        row->padByte = DFDLStringLiteral_getByteValue(literal);
        row->padIsByte = row->padByte != -1;
        if (!row->padIsByte) {
            row->padString =
                TableText_fromUnits(row->heap, DFDLUString_view(DFDLStringLiteral_part(literal, 0)->value));
        }
    }
    delete_DFDLStringLiteral(literal);
}

}  // namespace

TextStringTable* new_TextStringTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<TextStringTable, deleteRow>(heap, pif);
}

void delete_TextStringTable(TextStringTable* this_) { Table_delete(this_); }

void TextStringTable_finalizeTable(TextStringTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        TextStringTableRow* row = Table_at(this_, index);
        if (DFDLUString_length(row->iTextPadCharacter) > 0) setPad(row);
    }
}
