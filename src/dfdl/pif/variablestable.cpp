#include "dfdl/pif/variablestable.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/rowindex.h"

namespace {

void deleteRow(VariablesTableRow* row) {
    delete_DFDLUString(row->iName);
    delete_DFDLUString(row->iNamespace);
}

}  // namespace

VariablesTable* new_VariablesTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<VariablesTable, deleteRow>(heap, pif);
}

void delete_VariablesTable(VariablesTable* this_) {
    if (this_ != nullptr) delete_RowIndex(this_->byId);
    Table_delete(this_);
}

void VariablesTable_indexRows(VariablesTable* this_) {
    this_->byId = RowIndex_ofTable(this_, [](const VariablesTableRow* row, int64_t* key) {
        *key = row->iID;
        return true;
    });
}

int32_t VariablesTable_findRowIndex(const VariablesTable* this_, int32_t id) {
    return RowIndex_find(this_->byId, id);
}

int32_t VariablesTable_getGlobalVariableIndex(const VariablesTable* this_, const DFDLUString* name,
                                              const DFDLUString* namespaceUri) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        const VariablesTableRow* row = Table_at(this_, index);
        if (DFDLUString_equals(row->iName, name) && DFDLUString_equals(row->iNamespace, namespaceUri)) {
            return index;
        }
    }
    return -1;
}
