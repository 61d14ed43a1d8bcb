#ifndef DFDL_PIF_PIFGLOBALSTABLE_H
#define DFDL_PIF_PIFGLOBALSTABLE_H

#include "dfdl/pif/table.h"

struct sPIF;

// What holds for the whole file. The table has one row, or none if the file had more than one.
struct PIFGlobalsTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t PIFVersion = -1;  // -1: a file of the oldest form, without a globals row
    int32_t PIFTraitsFlags = 0;
};

using PIFGlobalsTable = Table<PIFGlobalsTableRow>;

PIFGlobalsTable* new_PIFGlobalsTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_PIFGlobalsTable(PIFGlobalsTable* this_);  // null is ignored

#endif
