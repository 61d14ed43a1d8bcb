#ifndef DFDL_PIF_VALUESTABLE_H
#define DFDL_PIF_VALUESTABLE_H

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/table.h"

struct DFDLDecimal;
struct DFDLUString;
struct DFDLValue;
struct sPIF;

// A constant of the schema: default, facet bound, initial value of a variable.
struct ValuesTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iValue = nullptr;

    DFDLSimpleTypeEnum iSimpleType = SIMPLE_UNKNOWN;
    DFDLValue* value = nullptr;           // owned; null: a kind without values, or text that is none of it
    DFDLDecimal* decimalValue = nullptr;  // owned; of numeric kinds
    uint8_t* hexBytes = nullptr;          // owned; of hexadecimal binary
    int32_t hexLength = 0;                // bytes
};

using ValuesTable = Table<ValuesTableRow>;

ValuesTable* new_ValuesTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_ValuesTable(ValuesTable* this_);  // null is ignored
void ValuesTable_loadRow(ValuesTable* this_, const ValuesTableRow& row);
void ValuesTable_finalizeTable(ValuesTable* this_);
// By row index; null outside the table.
DFDLValue* ValuesTable_getDFDLValue(const ValuesTable* this_, int32_t rowIndex);
DFDLDecimal* ValuesTable_getDecimalValue(const ValuesTable* this_, int32_t rowIndex);
void ValuesTableRow_buildDFDLValue(ValuesTableRow* this_);
DFDLUString* ValuesTableRow_getHexBinaryLexicalValue(const ValuesTableRow* this_);  // null for another kind

#endif
