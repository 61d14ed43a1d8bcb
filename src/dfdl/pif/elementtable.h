#ifndef DFDL_PIF_ELEMENTTABLE_H
#define DFDL_PIF_ELEMENTTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct ArrayList;
struct DFDLStringHashMap;
struct DFDLUString;
struct DFDLValue;
struct GroupMemberTableRow;
struct GroupTableRow;
struct RowIndex;
struct SimpleTypeTableRow;
struct sPIF;

// One element declaration or reference, global or local.
struct ElementTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t element_id = -1;
    DFDLUString* name = nullptr;
    DFDLUString* namespace_ = nullptr;
    int32_t simple_type_id = -1;
    int32_t group_id = -1;
    int32_t defaultValueIndex = -1;
    ValueConstraintKindEnum valueConstraintKind = VC_NONE;
    int32_t scd_id = -1;

    SimpleTypeTableRow* simpleType = nullptr;  // null: a complex element, or nothing found
    GroupTableRow* contentGroup = nullptr;     // null: a simple element, or nothing found
    int32_t nameId = -1;                       // in the grammar's set of names
    int32_t namespaceId = -1;
    GroupMemberTableRow* globalMember = nullptr;  // null: a local element
    DFDLValue* defaultValue = nullptr;            // belongs to the values table
};

// Elements by id, and by name and namespace.
struct ElementTable {
    using Row = ElementTableRow;
    DFDLHeapAdapter* heap;
    sPIF* pif;
    Array* rows;
    DFDLStringHashMap* byName;  // to DFDLStringHashMap by namespace, to ArrayList of rows in their order
    RowIndex* byId;
};

ElementTable* new_ElementTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_ElementTable(ElementTable* this_);     // null is ignored
void ElementTable_indexRows(ElementTable* this_);  // before anything is found
void ElementTable_finalizeTable(ElementTable* this_);
ElementTableRow* ElementTable_findRow(const ElementTable* this_, int32_t elementId);  // -1: null
// A global element of this name if there is one, else the first element of this name.
ElementTableRow* ElementTable_findElementWithNamespace(const ElementTable* this_, const DFDLUString* name,
                                                       const DFDLUString* namespaceUri);
ElementTableRow* ElementTable_findGlobalElementWithNamespace(const ElementTable* this_,
                                                             const DFDLUString* name,
                                                             const DFDLUString* namespaceUri);

#endif
