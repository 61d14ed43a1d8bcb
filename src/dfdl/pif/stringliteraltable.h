#ifndef DFDL_PIF_STRINGLITERALTABLE_H
#define DFDL_PIF_STRINGLITERALTABLE_H

#include "dfdl/pif/table.h"

struct DFDLUString;
struct StringPartTableRow;
struct sPIF;

// A string literal of the schema, entities as they were written.
struct StringLiteralTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iStringPartIndex = -1;

    StringPartTableRow* partRow = nullptr;
};

using StringLiteralTable = Table<StringLiteralTableRow>;

StringLiteralTable* new_StringLiteralTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_StringLiteralTable(StringLiteralTable* this_);  // null is ignored
void StringLiteralTable_finalizeTable(StringLiteralTable* this_);
DFDLUString* StringLiteralTable_getStringLiteralForRowIndex(const StringLiteralTable* this_,
                                                            int32_t rowIndex);

#endif
