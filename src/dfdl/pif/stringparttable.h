#ifndef DFDL_PIF_STRINGPARTTABLE_H
#define DFDL_PIF_STRINGPARTTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// The text of a string literal.
struct StringPartTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iStringPart = nullptr;
    int32_t iTextEncodingIndex = -1;
    StringPartKindEnum iStringPartKind = STRING_LITERAL;

    int32_t id = -1;  // row index + 1
};

using StringPartTable = Table<StringPartTableRow>;

StringPartTable* new_StringPartTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_StringPartTable(StringPartTable* this_);  // null is ignored
void StringPartTable_finalizeTable(StringPartTable* this_);
StringPartTableRow* StringPartTable_findRow(const StringPartTable* this_, int32_t id);  // -1: null
int32_t StringPartTable_findRowIndex(const StringPartTable* this_, int32_t id);         // -1 none

#endif
