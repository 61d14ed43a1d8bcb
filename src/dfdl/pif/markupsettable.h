#ifndef DFDL_PIF_MARKUPSETTABLE_H
#define DFDL_PIF_MARKUPSETTABLE_H

#include "dfdl/pif/table.h"

struct RowIndex;
struct TextMarkupTableRow;
struct sPIF;

// One context of delimiters in scope: a markup within an enclosing context.
struct MarkupSetTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iMarkupSetId = -1;
    int32_t iParentMarkupSetId = -1;
    int32_t iTextMarkupTableId = -1;
    int32_t iTerminatingMarkupSetId = -1;

    TextMarkupTableRow* markupRow = nullptr;
};

struct MarkupSetTable {
    using Row = MarkupSetTableRow;
    DFDLHeapAdapter* heap;
    sPIF* pif;
    Array* rows;
    RowIndex* byPair;  // parent id and terminating id
    RowIndex* byId;
};

MarkupSetTable* new_MarkupSetTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_MarkupSetTable(MarkupSetTable* this_);  // null is ignored
void MarkupSetTable_finalizeTable(MarkupSetTable* this_);
MarkupSetTableRow* MarkupSetTable_findRow(const MarkupSetTable* this_, int32_t parentId,
                                          int32_t terminatingId);
int32_t MarkupSetTable_getMarkupSetId(const MarkupSetTable* this_, int32_t parentId, int32_t terminatingId);
MarkupSetTableRow* MarkupSetTable_findRowByID(const MarkupSetTable* this_, int32_t markupSetId);

#endif
