#include "dfdl/pif/pifglobalstable.h"

PIFGlobalsTable* new_PIFGlobalsTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<PIFGlobalsTable>(heap, pif);
}

void delete_PIFGlobalsTable(PIFGlobalsTable* this_) { Table_delete(this_); }
