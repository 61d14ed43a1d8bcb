#include "dfdl/pif/facettable.h"

FacetTable* new_FacetTable(DFDLHeapAdapter* heap, sPIF* pif) { return Table_new<FacetTable>(heap, pif); }

void delete_FacetTable(FacetTable* this_) { Table_delete(this_); }
