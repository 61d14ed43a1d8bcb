#include "dfdl/helpers/listvaluedproperty.h"

#include <algorithm>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstringtokenizer.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"

namespace {

void addEntries(ArrayList* entries, const DFDLUString* text, DFDLHeapAdapter* heap) {
    const Owned<DFDLStringTokenizer, delete_DFDLStringTokenizer> tokenizer(
        new_DFDLStringTokenizer(heap, false));
    DFDLStringTokenizer_setString_delimList(tokenizer.get(), text, whitespaceDelimList);
    while (DFDLUString* entry = DFDLStringTokenizer_getNextTokenAsDFDLUString(tokenizer.get())) {
        ArrayList_addPointer(entries, entry);
    }
}

void clearEntries(ArrayList* entries) {
    while (!ArrayList_isEmpty(entries)) delete_DFDLUString(ArrayList_popPointer<DFDLUString>(entries));
}

}  // namespace

ListValuedProperty* new_ListValuedProperty(DFDLHeapAdapter* heap, const DFDLUString* source, bool sorted) {
    auto* this_ = DFDLHeapAdapter_new<ListValuedProperty>(heap);
    if (source != nullptr) this_->source = new_DFDLUStringFromDFDLUString(source, heap);
    this_->values = new_ArrayListOfPointers(heap, 10);
    this_->sorted = sorted;
    return this_;
}

void delete_ListValuedProperty(ListValuedProperty* this_) {
    if (this_ == nullptr) return;
    ListValuedProperty_deleteSplit(this_->values);
    delete_DFDLUString(this_->source);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ListValuedProperty_buildProperties(ListValuedProperty* this_) {
    ListValuedProperty_reset(this_);
    addEntries(this_->values, this_->source, this_->heap);
    if (this_->sorted) ListValuedProperty_sortArray(this_);
}

void ListValuedProperty_reset(ListValuedProperty* this_) { clearEntries(this_->values); }

void ListValuedProperty_sortArray(ListValuedProperty* this_) {
    void** values = ArrayList_pointers(this_->values);
    std::sort(values, values + ArrayList_size(this_->values), [](const void* a, const void* b) {
        return DFDLUString_compare(static_cast<const DFDLUString*>(a), static_cast<const DFDLUString*>(b)) <
               0;
    });
}

int32_t ListValuedProperty_size(const ListValuedProperty* this_) { return ArrayList_size(this_->values); }

DFDLUString* ListValuedProperty_get(const ListValuedProperty* this_, int32_t index) {
    const int32_t last = ArrayList_size(this_->values) - 1;
    return ArrayList_getPointer<DFDLUString>(this_->values, this_->sorted ? last - index : index);
}

ArrayList* ListValuedProperty_split(const DFDLUString* text, DFDLHeapAdapter* heap) {
    if (text == nullptr) return nullptr;
    ArrayList* entries = new_ArrayListOfPointers(heap, 10);
    addEntries(entries, text, heap);
    return entries;
}

void ListValuedProperty_deleteSplit(ArrayList* entries) {
    if (entries == nullptr) return;
    clearEntries(entries);
    delete_ArrayList(entries);
}
