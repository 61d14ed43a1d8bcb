#include "dfdl/pif/stringliteraltable.h"

#include "dfdl/pif/spif.h"

StringLiteralTable* new_StringLiteralTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<StringLiteralTable>(heap, pif);
}

void delete_StringLiteralTable(StringLiteralTable* this_) { Table_delete(this_); }

void StringLiteralTable_finalizeTable(StringLiteralTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        StringLiteralTableRow* row = Table_at(this_, index);
        row->partRow = Table_row(this_->pif->stringPartTable, row->iStringPartIndex);
    }
}

DFDLUString* StringLiteralTable_getStringLiteralForRowIndex(const StringLiteralTable* this_,
                                                            int32_t rowIndex) {
    const StringLiteralTableRow* row = Table_row(this_, rowIndex);
    return row == nullptr || row->partRow == nullptr ? nullptr : row->partRow->iStringPart;
}
