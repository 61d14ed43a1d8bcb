#include "dfdl/pif/occursschemetable.h"

OccursSchemeTable* new_OccursSchemeTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<OccursSchemeTable>(heap, pif);
}

void delete_OccursSchemeTable(OccursSchemeTable* this_) { Table_delete(this_); }
