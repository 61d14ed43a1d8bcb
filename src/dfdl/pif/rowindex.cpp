#include "dfdl/pif/rowindex.h"

#include <algorithm>

RowIndex* new_RowIndex(DFDLHeapAdapter* heap, int32_t capacity) {
    auto* this_ = DFDLHeapAdapter_new<RowIndex>(heap);
    this_->capacity = capacity;
    this_->entries = DFDLHeapAdapter_newArray<RowIndex::Entry>(heap, static_cast<size_t>(capacity));
    return this_;
}

void delete_RowIndex(RowIndex* this_) {
    if (this_ == nullptr) return;
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->entries);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void RowIndex_add(RowIndex* this_, int64_t key, int32_t row) { this_->entries[this_->count++] = {key, row}; }

void RowIndex_sort(RowIndex* this_) {
    std::sort(this_->entries, this_->entries + this_->count,
              [](const auto& a, const auto& b) { return a.key != b.key ? a.key < b.key : a.row < b.row; });
}

int32_t RowIndex_find(const RowIndex* this_, int64_t key) {
    if (this_ == nullptr) return -1;
    const RowIndex::Entry* begin = this_->entries;
    const RowIndex::Entry* end = begin + this_->count;
    const RowIndex::Entry* found = std::lower_bound(
        begin, end, key, [](const RowIndex::Entry& entry, int64_t wanted) { return entry.key < wanted; });
    return found != end && found->key == key ? found->row : -1;
}

int32_t RowIndex_findLast(const RowIndex* this_, int64_t key) {
    if (this_ == nullptr) return -1;
    const RowIndex::Entry* begin = this_->entries;
    const RowIndex::Entry* end = begin + this_->count;
    const RowIndex::Entry* behind = std::upper_bound(
        begin, end, key, [](int64_t wanted, const RowIndex::Entry& entry) { return wanted < entry.key; });
    return behind != this_->entries && behind[-1].key == key ? behind[-1].row : -1;
}
