#include "dfdl/pif/simpletypeuniontable.h"

SimpleTypeUnionTable* new_SimpleTypeUnionTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<SimpleTypeUnionTable>(heap, pif);
}

void delete_SimpleTypeUnionTable(SimpleTypeUnionTable* this_) { Table_delete(this_); }
