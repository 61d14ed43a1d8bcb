#include "dfdl/foundation/dfdlbytehashmap.h"

#include <algorithm>

namespace {

using Entry = DFDLByteHashMapEntry;

uint32_t bucketOf(const DFDLByteHashMap* map, uint8_t key) {
    return key % static_cast<uint32_t>(map->chains.bucketCount);
}

Entry* find(const DFDLByteHashMap* map, uint8_t key) {
    return HashChains_find(&map->chains, bucketOf(map, key),
                           [&](const Entry* entry) { return entry->key == key; });
}

}  // namespace

DFDLByteHashMap* new_DFDLByteHashMap(DFDLHeapAdapter* heap, int32_t bucketCount) {
    auto* this_ = DFDLHeapAdapter_new<DFDLByteHashMap>(heap);
    HashChains_allocate(&this_->chains, heap, std::max(bucketCount, 1));
    return this_;
}

void delete_DFDLByteHashMap(DFDLByteHashMap* this_) {
    if (this_ == nullptr) return;
    DFDLByteHashMap_clear(this_);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->chains.buckets);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DFDLByteHashMap_put(DFDLByteHashMap* this_, uint8_t key, void* value) {
    Entry* entry = find(this_, key);
    if (entry == nullptr) {
        entry = DFDLHeapAdapter_newArray<Entry>(this_->heap, 1);
        entry->key = key;
        HashChains_link(&this_->chains, bucketOf(this_, key), entry);
    }
    entry->value = value;
}

void* DFDLByteHashMap_get(const DFDLByteHashMap* this_, uint8_t key) {
    const Entry* entry = find(this_, key);
    return entry == nullptr ? nullptr : entry->value;
}

bool DFDLByteHashMap_containsKey(const DFDLByteHashMap* this_, uint8_t key) {
    return find(this_, key) != nullptr;
}

int32_t DFDLByteHashMap_getKeys(const DFDLByteHashMap* this_, uint8_t (&keys)[BYTE_HASH_MAP_KEYS]) {
    int32_t count = 0;
    HashChains_forEach(&this_->chains, [&](const Entry* entry) { keys[count++] = entry->key; });
    return count;
}

void DFDLByteHashMap_clear(DFDLByteHashMap* this_) {
    HashChains_forEach(&this_->chains,
                       [&](Entry* entry) { DFDLHeapAdapter_arrayDeallocate(this_->heap, entry); });
    HashChains_forget(&this_->chains);
}
