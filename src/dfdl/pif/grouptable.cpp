#include "dfdl/pif/grouptable.h"

#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/rowindex.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(GroupTableRow* row) {
    delete_DFDLUString(row->name);
    delete_DFDLUString(row->namespace_);
    delete_DFDLStringHashMap(row->tagMap);
    delete_DFDLStringHashMap(row->dispatchMap);
}

}  // namespace

GroupTable* new_GroupTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<GroupTable, deleteRow>(heap, pif);
}

void delete_GroupTable(GroupTable* this_) {
    if (this_ != nullptr) delete_RowIndex(this_->byId);
    Table_delete(this_);
}

void GroupTable_indexRows(GroupTable* this_) {
    this_->byId = RowIndex_ofTable(this_, [](const GroupTableRow* row, int64_t* key) {
        *key = row->group_id;
        return true;
    });
}

void GroupTable_finalizeTable(GroupTable* this_) {
    const GroupMemberTable* members = this_->pif->groupMemberTable;
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupTableRow* row = Table_at(this_, index);
        row->firstMember = Table_row(members, GroupMemberTable_findFirstRowIndex(members, row->group_id));
        row->owningRow = GroupMemberTable_findRowByChildGroupID(members, row->group_id);
    }
}

GroupTableRow* GroupTable_findRow(const GroupTable* this_, int32_t groupId) {
    return groupId == -1 ? nullptr : Table_row(this_, RowIndex_find(this_->byId, groupId));
}

// Groups that share an id share their members, which are counted once: a file with very many of both would
// keep the load busy for hours.
void GroupTable_countMembers(GroupTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupTableRow* row = Table_at(this_, index);
        const GroupTableRow* first = GroupTable_findRow(this_, row->group_id);
        if (first != nullptr && first != row) {
            row->memberCount = first->memberCount;
            continue;
        }
        for (const auto* member = row->firstMember; member != nullptr; member = member->nextSibling) {
            ++row->memberCount;
        }
    }
}
