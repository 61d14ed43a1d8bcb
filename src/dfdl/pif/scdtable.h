#ifndef DFDL_PIF_SCDTABLE_H
#define DFDL_PIF_SCDTABLE_H

#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// A schema component designator: how messages name a component.
struct SCDTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iSCD = nullptr;
};

using SCDTable = Table<SCDTableRow>;

SCDTable* new_SCDTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_SCDTable(SCDTable* this_);  // null is ignored

#endif
