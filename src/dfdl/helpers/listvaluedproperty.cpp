#include "dfdl/helpers/listvaluedproperty.h"

#include <algorithm>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstringtokenizer.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/tabletext.h"

namespace {

constexpr int32_t LIST_CAPACITY = 10;

template <class Take>
void splitAtWhitespace(DFDLHeapAdapter* heap, const DFDLUString* text, Take take) {
    DFDLStringTokenizer* tokenizer = new_DFDLStringTokenizer(heap, false);
    DFDLStringTokenizer_setString_delimList(tokenizer, text, whitespaceDelimList);
    for (std::u16string_view token = DFDLStringTokenizer_next(tokenizer); !token.empty();
         token = DFDLStringTokenizer_next(tokenizer)) {
        take(token);
    }
    delete_DFDLStringTokenizer(tokenizer);
}

}  // namespace

ListValuedProperty* new_ListValuedProperty(DFDLHeapAdapter* heap, const DFDLUString* source, bool sorted) {
    auto* this_ = DFDLHeapAdapter_new<ListValuedProperty>(heap);
    this_->sorted = sorted;
    this_->values = new_ArrayListOfPointers(heap, LIST_CAPACITY);
    if (source != nullptr) this_->source = new_DFDLUStringFromDFDLUString(source, heap);
    return this_;
}

void delete_ListValuedProperty(ListValuedProperty* this_) {
    if (this_ == nullptr) return;
    ListValuedProperty_reset(this_);
    delete_ArrayList(this_->values);
    delete_DFDLUString(this_->source);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ListValuedProperty_buildProperties(ListValuedProperty* this_) {
    ListValuedProperty_reset(this_);
    if (this_->source == nullptr) return;
    splitAtWhitespace(this_->heap, this_->source, [this_](std::u16string_view token) {
        ArrayList_addPointer(this_->values,
                             DFDLUStringPooler_getDFDLUStringFromUChars(this_->heap, token.data(),
                                                                        static_cast<int32_t>(token.size())));
    });
    if (this_->sorted) ListValuedProperty_sortArray(this_);
}

void ListValuedProperty_reset(ListValuedProperty* this_) {
    while (!ArrayList_isEmpty(this_->values)) {
        delete_DFDLUString(ArrayList_popPointer<DFDLUString>(this_->values));
    }
}

void ListValuedProperty_sortArray(ListValuedProperty* this_) {
    const int32_t count = ArrayList_size(this_->values);
    if (count < 2) return;
    auto** first = static_cast<DFDLUString**>(ArrayList_get(this_->values, 0));
    std::sort(first, first + count,
              [](const DFDLUString* a, const DFDLUString* b) { return DFDLUString_compare(a, b) < 0; });
}

int32_t ListValuedProperty_size(const ListValuedProperty* this_) { return ArrayList_size(this_->values); }

DFDLUString* ListValuedProperty_get(const ListValuedProperty* this_, int32_t index) {
    const int32_t place = this_->sorted ? ListValuedProperty_size(this_) - 1 - index : index;
    return ArrayList_getPointer<DFDLUString>(this_->values, place);
}

ArrayList* ListValuedProperty_split(const DFDLUString* text, DFDLHeapAdapter* heap) {
    if (text == nullptr) return nullptr;
    ArrayList* entries = new_ArrayListOfPointers(heap, 1);
    splitAtWhitespace(heap, text, [entries, heap](std::u16string_view token) {
        ArrayList_addPointer(entries, TableText_fromUnits(heap, token));
    });
    return entries;
}

void ListValuedProperty_deleteSplit(ArrayList* entries) {
    if (entries == nullptr) return;
    while (!ArrayList_isEmpty(entries)) delete_DFDLUString(ArrayList_popPointer<DFDLUString>(entries));
    delete_ArrayList(entries);
}
