#include "dfdl/foundation/integerhashmap.h"

#include <algorithm>

namespace {

using Entry = IntegerHashMapEntry;

// By the absolute value, computed without sign: the least integer has one too.
uint32_t bucketOf(const IntegerHashMap* map, int32_t key) {
    const auto bits = static_cast<uint32_t>(key);
    return (key < 0 ? 0U - bits : bits) % static_cast<uint32_t>(map->chains.bucketCount - 1);
}

void freeEntry(IntegerHashMap* map, Entry* entry) {
    HashEntry_setValue(entry, map->heap, map->deleteValue, nullptr);
    DFDLHeapAdapter_arrayDeallocate(map->heap, entry);
}

}  // namespace

IntegerHashMap* new_IntegerHashMap(DFDLHeapAdapter* heap, int32_t bucketCount,
                                   HashMapValueDelete deleteValue) {
    auto* this_ = DFDLHeapAdapter_new<IntegerHashMap>(heap);
    HashChains_allocate(&this_->chains, heap, std::max(bucketCount, 2));
    this_->deleteValue = deleteValue;
    return this_;
}

void delete_IntegerHashMap(IntegerHashMap* this_) {
    if (this_ == nullptr) return;
    IntegerHashMap_clear(this_);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->chains.buckets);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

IntegerHashMapEntry* IntegerHashMap_put(IntegerHashMap* this_, int32_t key, void* value) {
    Entry* entry = IntegerHashMap_find(this_, key);
    if (entry == nullptr) {
        entry = DFDLHeapAdapter_newArray<Entry>(this_->heap, 1);
        entry->key = key;
        HashChains_link(&this_->chains, bucketOf(this_, key), entry);
    }
    HashEntry_setValue(entry, this_->heap, this_->deleteValue, value);
    return entry;
}

IntegerHashMapEntry* IntegerHashMap_find(const IntegerHashMap* this_, int32_t key) {
    return HashChains_find(&this_->chains, bucketOf(this_, key),
                           [&](const Entry* entry) { return entry->key == key; });
}

void* IntegerHashMap_get(const IntegerHashMap* this_, int32_t key) {
    const Entry* entry = IntegerHashMap_find(this_, key);
    return entry == nullptr ? nullptr : entry->value;
}

bool IntegerHashMap_containsKey(const IntegerHashMap* this_, int32_t key) {
    return IntegerHashMap_find(this_, key) != nullptr;
}

bool IntegerHashMap_remove(IntegerHashMap* this_, int32_t key) {
    Entry* entry = IntegerHashMap_find(this_, key);
    if (entry != nullptr) IntegerHashMap_removeDirect(this_, entry);
    return entry != nullptr;
}

void IntegerHashMap_removeDirect(IntegerHashMap* this_, IntegerHashMapEntry* entry) {
    HashChains_unlink(&this_->chains, bucketOf(this_, entry->key), entry);
    freeEntry(this_, entry);
}

void IntegerHashMap_reset(IntegerHashMap* this_) {
    HashChains_forEach(&this_->chains, [&](Entry* entry) {
        HashEntry_setValue(entry, this_->heap, this_->deleteValue, nullptr);
    });
}

void IntegerHashMap_clear(IntegerHashMap* this_) {
    HashChains_forEach(&this_->chains, [&](Entry* entry) { freeEntry(this_, entry); });
    HashChains_forget(&this_->chains);
}
