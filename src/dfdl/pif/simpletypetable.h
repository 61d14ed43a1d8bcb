#ifndef DFDL_PIF_SIMPLETYPETABLE_H
#define DFDL_PIF_SIMPLETYPETABLE_H

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct FacetTableRow;
struct SimpleTypeUnionTableRow;
struct sPIF;

// One simple type. Rows stand in ascending order of their ids.
struct SimpleTypeTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t simple_type_id = -1;
    DFDLUString* name = nullptr;
    DFDLUString* namespace_ = nullptr;
    DFDLUString* pifSimpleTypeName = nullptr;
    int32_t builtInTypeId = -1;
    int32_t iFacetTableId = -1;
    int32_t iUnionTableId = -1;

    DFDLSimpleTypeEnum kind = SIMPLE_UNKNOWN;
    SimpleTypeTableRow* baseType = nullptr;
    FacetTableRow* firstFacet = nullptr;
    SimpleTypeUnionTableRow* firstUnionRow = nullptr;  // null: the type is no union
};

using SimpleTypeTable = Table<SimpleTypeTableRow>;

SimpleTypeTable* new_SimpleTypeTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_SimpleTypeTable(SimpleTypeTable* this_);  // null is ignored
void SimpleTypeTable_finalizeTable(SimpleTypeTable* this_);
SimpleTypeTableRow* SimpleTypeTable_findRow(const SimpleTypeTable* this_, int32_t id);  // -1: null
int32_t SimpleTypeTable_findRowIndex(const SimpleTypeTable* this_, int32_t id);         // -1 none
DFDLSimpleTypeEnum SimpleTypeTableRow_valueof(const DFDLUString* name);

#endif
