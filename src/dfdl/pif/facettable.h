#ifndef DFDL_PIF_FACETTABLE_H
#define DFDL_PIF_FACETTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct sPIF;

// One facet of a simple type. Those of one type are adjacent, and those of one kind among them.
struct FacetTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iSimpleTypeId = -1;
    FacetKindEnum iFacetKind = FACET_LENGTH;
    int32_t iValueId = -1;
    bool iImplicit = false;  // implied by the built-in type
};

using FacetTable = Table<FacetTableRow>;

FacetTable* new_FacetTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_FacetTable(FacetTable* this_);  // null is ignored

#endif
