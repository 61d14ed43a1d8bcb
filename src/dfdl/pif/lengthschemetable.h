#ifndef DFDL_PIF_LENGTHSCHEMETABLE_H
#define DFDL_PIF_LENGTHSCHEMETABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct ElementTableRow;
struct sPIF;

// How long a representation is.
struct LengthSchemeTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    LengthKindEnum iLengthKind = IMPLICIT;
    LengthUnitsEnum iLengthUnits = BITS;
    int32_t iLength = 0;  // in iLengthUnits
    int32_t iLengthReferenceIndex = -1;
    int32_t iPrefixLengthTypeIndex = -1;  // element id; -1 none
    bool iPrefixIncludesPrefixLength = false;
    DFDLUString* iLengthPattern = nullptr;
    int32_t iLengthExprIndex = -1;  // -1 constant

    int32_t id = -1;  // row index + 1
    ElementTableRow* prefixElement = nullptr;
};

using LengthSchemeTable = Table<LengthSchemeTableRow>;

LengthSchemeTable* new_LengthSchemeTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_LengthSchemeTable(LengthSchemeTable* this_);  // null is ignored
void LengthSchemeTable_finalizeTable(LengthSchemeTable* this_);
LengthSchemeTableRow* LengthSchemeTable_findRow(const LengthSchemeTable* this_, int32_t id);  // -1: null
int32_t LengthSchemeTable_findRowIndex(const LengthSchemeTable* this_, int32_t id);           // -1 none

#endif
