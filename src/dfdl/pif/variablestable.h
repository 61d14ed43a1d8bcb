#ifndef DFDL_PIF_VARIABLESTABLE_H
#define DFDL_PIF_VARIABLESTABLE_H

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct RowIndex;
struct sPIF;

// A variable of the schema.
struct VariablesTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iName = nullptr;
    DFDLUString* iNamespace = nullptr;
    bool iIsExternal = false;
    int32_t iID = -1;

    DFDLSimpleTypeEnum iSimpleType = SIMPLE_UNKNOWN;
};

struct VariablesTable {
    using Row = VariablesTableRow;
    DFDLHeapAdapter* heap;
    sPIF* pif;
    Array* rows;
    RowIndex* byId;
};

VariablesTable* new_VariablesTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_VariablesTable(VariablesTable* this_);                             // null is ignored
void VariablesTable_indexRows(VariablesTable* this_);                          // before anything is found
int32_t VariablesTable_findRowIndex(const VariablesTable* this_, int32_t id);  // by iID; -1 none
// -1 none. Without a namespace only a variable without one is found.
int32_t VariablesTable_getGlobalVariableIndex(const VariablesTable* this_, const DFDLUString* name,
                                              const DFDLUString* namespaceUri);

#endif
