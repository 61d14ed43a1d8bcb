#include "dfdl/pif/elementtable.h"

#include <algorithm>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/rowindex.h"
#include "dfdl/pif/spif.h"

namespace {

constexpr int32_t FEWEST_BUCKETS = 4;
constexpr int32_t MOST_BUCKETS = 100000;

void deleteRow(ElementTableRow* row) {
    delete_DFDLUString(row->name);
    delete_DFDLUString(row->namespace_);
}

void deleteRows(DFDLHeapAdapter* /*heap*/, void* list) { delete_ArrayList(static_cast<ArrayList*>(list)); }

void deleteNamespaces(DFDLHeapAdapter* /*heap*/, void* map) {
    delete_DFDLStringHashMap(static_cast<DFDLStringHashMap*>(map));
}

DFDLStringHashMap* namespacesOf(ElementTable* table, ElementTableRow* row) {
    auto* found = static_cast<DFDLStringHashMap*>(DFDLStringHashMap_get(table->byName, row->name));
    if (found == nullptr) {
        found = new_DFDLStringHashMap(table->heap, FEWEST_BUCKETS, deleteRows);
        DFDLStringHashMap_put(table->byName, row->name, found, true);
    }
    return found;
}

void addToMap(ElementTable* table, ElementTableRow* row) {
    DFDLStringHashMap* byNamespace = namespacesOf(table, row);
    auto* rows = static_cast<ArrayList*>(DFDLStringHashMap_get(byNamespace, row->namespace_));
    if (rows == nullptr) {
        rows = new_ArrayListOfPointers(table->heap, 2);
        DFDLStringHashMap_put(byNamespace, row->namespace_, rows, true);
    }
    ArrayList_addPointer(rows, row);
}

const ArrayList* rowsOf(const ElementTable* table, const DFDLUString* name, const DFDLUString* namespaceUri) {
    const auto* byNamespace =
        static_cast<const DFDLStringHashMap*>(DFDLStringHashMap_get(table->byName, name));
    if (byNamespace == nullptr) return nullptr;
    return static_cast<const ArrayList*>(DFDLStringHashMap_get(byNamespace, namespaceUri));
}

ElementTableRow* firstGlobal(const ArrayList* rows) {
    for (int32_t index = 0; rows != nullptr && index < ArrayList_size(rows); ++index) {
        auto* row = ArrayList_getPointer<ElementTableRow>(rows, index);
        if (row->globalMember != nullptr) return row;
    }
    return nullptr;
}

// The number of a text among the names, which it joins if it is new. `numbers` holds each number + 1.
int32_t numberOf(DFDLStringHashMap* numbers, ArrayList* names, DFDLUString* text) {
    if (text == nullptr) return -1;
    const auto known = reinterpret_cast<intptr_t>(DFDLStringHashMap_get(numbers, text));
    if (known != 0) return static_cast<int32_t>(known - 1);
    const int32_t number = ArrayList_size(names);
    ArrayList_addPointer(names, text);
    DFDLStringHashMap_put(numbers, text, reinterpret_cast<void*>(static_cast<intptr_t>(number) + 1), true);
    return number;
}

void populate(ElementTableRow* row) {
    const sPIF* pif = row->pif;
    row->simpleType = SimpleTypeTable_findRow(pif->simpleTypeTable, row->simple_type_id);
    row->contentGroup = GroupTable_findRow(pif->groupTable, row->group_id);
    row->globalMember = GroupMemberTable_findRowForGlobalElement(pif->groupMemberTable, row->element_id);
    row->defaultValue = ValuesTable_getDFDLValue(pif->valuesTable, row->defaultValueIndex);
}

}  // namespace

ElementTable* new_ElementTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<ElementTable, deleteRow>(heap, pif);
}

void delete_ElementTable(ElementTable* this_) {
    if (this_ == nullptr) return;
    delete_DFDLStringHashMap(this_->byName);
    delete_RowIndex(this_->byId);
    Table_delete(this_);
}

void ElementTable_indexRows(ElementTable* this_) {
    this_->byId = RowIndex_ofTable(this_, [](const ElementTableRow* row, int64_t* key) {
        *key = row->element_id;
        return true;
    });
}

void ElementTable_finalizeTable(ElementTable* this_) {
    const int32_t buckets = std::clamp(Table_size(this_) / 2, FEWEST_BUCKETS, MOST_BUCKETS);
    this_->byName = new_DFDLStringHashMap(this_->heap, buckets, deleteNamespaces);
    DFDLStringHashMap* numbers = new_DFDLStringHashMap(this_->heap, buckets);
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        ElementTableRow* row = Table_at(this_, index);
        populate(row);
        row->nameId = numberOf(numbers, this_->pif->names, row->name);
        row->namespaceId = numberOf(numbers, this_->pif->names, row->namespace_);
        addToMap(this_, row);
    }
    delete_DFDLStringHashMap(numbers);
}

ElementTableRow* ElementTable_findRow(const ElementTable* this_, int32_t elementId) {
    return elementId == -1 ? nullptr : Table_row(this_, RowIndex_find(this_->byId, elementId));
}

ElementTableRow* ElementTable_findElementWithNamespace(const ElementTable* this_, const DFDLUString* name,
                                                       const DFDLUString* namespaceUri) {
    const ArrayList* rows = rowsOf(this_, name, namespaceUri);
    ElementTableRow* global = firstGlobal(rows);
    if (global != nullptr || rows == nullptr) return global;
    return ArrayList_getPointer<ElementTableRow>(rows, 0);
}

ElementTableRow* ElementTable_findGlobalElementWithNamespace(const ElementTable* this_,
                                                             const DFDLUString* name,
                                                             const DFDLUString* namespaceUri) {
    return firstGlobal(rowsOf(this_, name, namespaceUri));
}
