#ifndef DFDL_PIF_NILSCHEMETABLE_H
#define DFDL_PIF_NILSCHEMETABLE_H

#include <unicode/utypes.h>

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// Which representation or value is nil.
struct NilSchemeTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    NilKindEnum iNilKind = NK_NONE;
    int32_t iNilLiteralIndex = -1;
    int32_t iNilLogicalIndex = -1;
    bool iUseNilForDefault = false;
    DelimiterPolicyEnum iNilValueDelimiterPolicy = DP_NONE;

    bool hasEmptyStringEntity = false;  // some literal has "%ES;"
    bool nilIsByte = false;             // of a literal character: nilByte counts, not nilChar
    int32_t nilByte = -1;
    UChar nilChar = 0;
    DFDLUString* nilString = nullptr;  // owned
};

using NilSchemeTable = Table<NilSchemeTableRow>;

NilSchemeTable* new_NilSchemeTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_NilSchemeTable(NilSchemeTable* this_);  // null is ignored
void NilSchemeTable_finalizeTable(NilSchemeTable* this_);

#endif
