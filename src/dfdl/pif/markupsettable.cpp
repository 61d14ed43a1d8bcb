#include "dfdl/pif/markupsettable.h"

#include "dfdl/pif/rowindex.h"
#include "dfdl/pif/spif.h"

namespace {

int64_t pairOf(int32_t parentId, int32_t terminatingId) {
    return static_cast<int64_t>(parentId) * (INT64_C(1) << 32) + terminatingId;
}

}  // namespace

MarkupSetTable* new_MarkupSetTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<MarkupSetTable>(heap, pif);
}

void delete_MarkupSetTable(MarkupSetTable* this_) {
    if (this_ == nullptr) return;
    delete_RowIndex(this_->byPair);
    delete_RowIndex(this_->byId);
    Table_delete(this_);
}

void MarkupSetTable_finalizeTable(MarkupSetTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        MarkupSetTableRow* row = Table_at(this_, index);
        row->markupRow = Table_row(this_->pif->textMarkupTable, row->iTextMarkupTableId);
    }
    this_->byPair = RowIndex_ofTable(this_, [](const MarkupSetTableRow* row, int64_t* key) {
        *key = pairOf(row->iParentMarkupSetId, row->iTerminatingMarkupSetId);
        return true;
    });
    this_->byId = RowIndex_ofTable(this_, [](const MarkupSetTableRow* row, int64_t* key) {
        *key = row->iMarkupSetId;
        return true;
    });
}

// Of rows with one pair the last holds.
MarkupSetTableRow* MarkupSetTable_findRow(const MarkupSetTable* this_, int32_t parentId,
                                          int32_t terminatingId) {
    if (parentId == -1 && terminatingId == -1) return nullptr;
    return Table_row(this_, RowIndex_findLast(this_->byPair, pairOf(parentId, terminatingId)));
}

int32_t MarkupSetTable_getMarkupSetId(const MarkupSetTable* this_, int32_t parentId, int32_t terminatingId) {
    const MarkupSetTableRow* row = MarkupSetTable_findRow(this_, parentId, terminatingId);
    return row == nullptr ? -1 : row->iMarkupSetId;
}

MarkupSetTableRow* MarkupSetTable_findRowByID(const MarkupSetTable* this_, int32_t markupSetId) {
    return Table_row(this_, RowIndex_find(this_->byId, markupSetId));
}
