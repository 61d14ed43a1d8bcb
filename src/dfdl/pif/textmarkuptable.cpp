#include "dfdl/pif/textmarkuptable.h"

#include <algorithm>
#include <tuple>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/helpers/listvaluedproperty.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(TextMarkupTableRow* row) {
    delete_DFDLUString(row->iOutputNewLine);
    ListValuedProperty_deleteSplit(row->initiators);
    ListValuedProperty_deleteSplit(row->terminators);
    ListValuedProperty_deleteSplit(row->separators);
}

ArrayList* entriesOf(DFDLHeapAdapter* heap, const StringLiteralTableRow* literal) {
    if (literal == nullptr || literal->partRow == nullptr) return nullptr;
    return ListValuedProperty_split(literal->partRow->iStringPart, heap);
}

void populate(TextMarkupTableRow* row, int32_t index) {
    const sPIF* pif = row->pif;
    row->id = index + 1;
    row->initiatorRow = Table_row(pif->stringLiteralTable, row->iInitiatorIndex);
    row->terminatorRow = Table_row(pif->stringLiteralTable, row->iTerminatorIndex);
    row->separatorRow = Table_row(pif->stringLiteralTable, row->iSeparatorIndex);
    row->initiators = entriesOf(row->heap, row->initiatorRow);
    row->terminators = entriesOf(row->heap, row->terminatorRow);
    row->separators = entriesOf(row->heap, row->separatorRow);
    row->escapeRow = Table_row(pif->escapeSchemeTable, row->iEscapeSchemeIndex);
}

auto endingOf(const TextMarkupTableRow* row) {
    return std::make_tuple(row->iTerminatorIndex, row->iTerminatorExprIndex, row->iSeparatorIndex,
                           row->iSeparatorExprIndex, row->iIgnoreCase, row->iEscapeSchemeIndex,
                           DFDLUString_view(row->iOutputNewLine), row->iOutputNewLineExprIndex,
                           row->iTextEncodingIndex);
}

// Rows that end a component alike get one number; numbers rise in the order of the rows that are the first of
// their kind. Sorting brings the alike together, the first of them in front.
void numberEndings(TextMarkupTable* table) {
    const int32_t count = Table_size(table);
    auto** sorted = DFDLHeapAdapter_newArray<TextMarkupTableRow*>(table->heap, static_cast<size_t>(count));
    for (int32_t index = 0; index < count; ++index) sorted[index] = Table_at(table, index);
    std::sort(sorted, sorted + count, [](const TextMarkupTableRow* a, const TextMarkupTableRow* b) {
        const int32_t order = TextMarkupTable_compare(a, b);
        return order != 0 ? order < 0 : a->id < b->id;
    });
    const TextMarkupTableRow* leader = nullptr;
    for (int32_t index = 0; index < count; ++index) {
        if (leader == nullptr || TextMarkupTable_compare(leader, sorted[index]) != 0) leader = sorted[index];
        sorted[index]->terminatingMarkupId = Table_indexOf(table, leader);
    }
    int32_t next = 0;
    for (int32_t index = 0; index < count; ++index) {
        TextMarkupTableRow* row = Table_at(table, index);
        const bool leads = row->terminatingMarkupId == index;
        row->terminatingMarkupId =
            leads ? next++ : Table_at(table, row->terminatingMarkupId)->terminatingMarkupId;
    }
    DFDLHeapAdapter_arrayDeallocate(table->heap, sorted);
}

}  // namespace

TextMarkupTable* new_TextMarkupTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<TextMarkupTable, deleteRow>(heap, pif);
}

void delete_TextMarkupTable(TextMarkupTable* this_) { Table_delete(this_); }

void TextMarkupTable_finalizeTable(TextMarkupTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) populate(Table_at(this_, index), index);
    numberEndings(this_);
}

int32_t TextMarkupTable_findRowIndex(const TextMarkupTable* this_, int32_t id) {
    return Table_findPosition(this_, id);
}

TextMarkupTableRow* TextMarkupTable_findRow(const TextMarkupTable* this_, int32_t id) {
    return Table_row(this_, TextMarkupTable_findRowIndex(this_, id));
}

int32_t TextMarkupTable_compare(const TextMarkupTableRow* a, const TextMarkupTableRow* b) {
    const auto order = endingOf(a) <=> endingOf(b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}
