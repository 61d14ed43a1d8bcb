#ifndef DFDL_PIF_SIMPLETYPEUNIONTABLE_H
#define DFDL_PIF_SIMPLETYPEUNIONTABLE_H

#include "dfdl/pif/table.h"

struct sPIF;

// One member of a union; the members of one union are adjacent.
struct SimpleTypeUnionTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iSimpleTypeId = -1;
    int32_t iMemberSimpleTypeIndex = -1;
};

using SimpleTypeUnionTable = Table<SimpleTypeUnionTableRow>;

SimpleTypeUnionTable* new_SimpleTypeUnionTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_SimpleTypeUnionTable(SimpleTypeUnionTable* this_);  // null is ignored

#endif
