#include "dfdl/pif/variableactionstable.h"

#include "dfdl/pif/rowindex.h"
#include "dfdl/pif/spif.h"

VariableActionsTable* new_VariableActionsTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<VariableActionsTable>(heap, pif);
}

void delete_VariableActionsTable(VariableActionsTable* this_) { Table_delete(this_); }

namespace {

// A file of the oldest form has a variable's row where later ones have its id.
int32_t variableOf(const sPIF* pif, const VariableActionsTableRow* row) {
    const PIFGlobalsTableRow* globals = Table_row(pif->pifGlobalsTable, 0);
    if (globals != nullptr && globals->PIFVersion == -1) return row->iVariableId;
    return VariablesTable_findRowIndex(pif->variablesTable, row->iVariableId);
}

void setFirst(const VariableActionsTable* table, int32_t actionIndex) {
    VariableActionsTableRow* action = Table_at(table, actionIndex);
    GroupMemberTableRow* member = Table_row(table->pif->groupMemberTable, action->iGroupMemberTableId);
    if (member == nullptr) return;
    member->firstVariableActionIndex = actionIndex;
    member->firstVariableAction = action;
}

}  // namespace

void VariableActionsTable_finalizeTable(VariableActionsTable* this_) {
    RowIndex* byMember = RowIndex_ofTable(this_, [](const VariableActionsTableRow* row, int64_t* key) {
        *key = row->iGroupMemberTableId;
        return true;
    });
    for (int32_t place = 0; place < byMember->count; ++place) {
        const RowIndex::Entry entry = byMember->entries[place];
        VariableActionsTableRow* row = Table_at(this_, entry.row);
        row->variableRowIndex = variableOf(this_->pif, row);
        if (place == 0 || byMember->entries[place - 1].key != entry.key) {
            setFirst(this_, entry.row);
        } else {
            Table_at(this_, byMember->entries[place - 1].row)->nextAction = row;
        }
    }
    delete_RowIndex(byMember);
}
