#include "dfdl/foundation/dfdlstringhashmap.h"

#include <algorithm>

namespace {

using Entry = DFDLStringHashMapEntry;

uint32_t bucketOf(const HashChains<Entry>& chains, uint32_t hash) {
    return hash % static_cast<uint32_t>(chains.bucketCount - 1);
}

void freeEntry(DFDLStringHashMap* map, Entry* entry) {
    HashEntry_setValue(entry, map->heap, map->deleteValue, nullptr);
    if (entry->ownsKey != 0) delete_DFDLUString(entry->key);
    DFDLHeapAdapter_arrayDeallocate(map->heap, entry);
}

Entry* newEntry(DFDLStringHashMap* map, DFDLUString* key, bool adoptKey) {
    auto* entry = DFDLHeapAdapter_newArray<Entry>(map->heap, 1);
    entry->ownsKey = adoptKey ? 0 : 1;
    entry->key = adoptKey ? key : DFDLUStringPooler_getDFDLUStringFromView(map->heap, DFDLUString_view(key));
    entry->hash = DFDLStringHashMap_hash(DFDLUString_view(key));
    return entry;
}

void growFor(DFDLStringHashMap* map, int32_t count) {
    const int32_t buckets = map->chains.bucketCount;
    if (count >= buckets && buckets <= INT32_MAX / 2) DFDLStringHashMap_resize(map, 2 * buckets);
}

}  // namespace

DFDLStringHashMap* new_DFDLStringHashMap(DFDLHeapAdapter* heap, int32_t bucketCount,
                                         HashMapValueDelete deleteValue) {
    auto* this_ = DFDLHeapAdapter_new<DFDLStringHashMap>(heap);
    HashChains_allocate(&this_->chains, heap, std::max(bucketCount, 2));
    this_->deleteValue = deleteValue;
    return this_;
}

void delete_DFDLStringHashMap(DFDLStringHashMap* this_) {
    if (this_ == nullptr) return;
    DFDLStringHashMap_clear(this_);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->chains.buckets);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

DFDLStringHashMapEntry* DFDLStringHashMap_put(DFDLStringHashMap* this_, DFDLUString* key, void* value,
                                              bool adoptKey) {
    Entry* entry = DFDLStringHashMap_find(this_, key);
    if (entry == nullptr) {
        entry = newEntry(this_, key, adoptKey);
        growFor(this_, this_->chains.count + 1);
        HashChains_link(&this_->chains, bucketOf(this_->chains, entry->hash), entry);
    }
    HashEntry_setValue(entry, this_->heap, this_->deleteValue, value);
    return entry;
}

DFDLStringHashMapEntry* DFDLStringHashMap_find(const DFDLStringHashMap* this_, const DFDLUString* key) {
    const std::u16string_view text = DFDLUString_view(key);
    const uint32_t hash = DFDLStringHashMap_hash(text);
    return HashChains_find(&this_->chains, bucketOf(this_->chains, hash), [&](const Entry* entry) {
        return entry->hash == hash && DFDLUString_view(entry->key) == text;
    });
}

void* DFDLStringHashMap_get(const DFDLStringHashMap* this_, const DFDLUString* key) {
    const Entry* entry = DFDLStringHashMap_find(this_, key);
    return entry == nullptr ? nullptr : entry->value;
}

bool DFDLStringHashMap_containsKey(const DFDLStringHashMap* this_, const DFDLUString* key) {
    return DFDLStringHashMap_find(this_, key) != nullptr;
}

bool DFDLStringHashMap_remove(DFDLStringHashMap* this_, const DFDLUString* key) {
    Entry* entry = DFDLStringHashMap_find(this_, key);
    if (entry != nullptr) DFDLStringHashMap_removeDirect(this_, entry);
    return entry != nullptr;
}

void DFDLStringHashMap_removeDirect(DFDLStringHashMap* this_, DFDLStringHashMapEntry* entry) {
    HashChains_unlink(&this_->chains, bucketOf(this_->chains, entry->hash), entry);
    freeEntry(this_, entry);
}

void DFDLStringHashMap_resize(DFDLStringHashMap* this_, int32_t bucketCount) {
    HashChains<Entry> grown = {};
    HashChains_allocate(&grown, this_->heap, std::max(bucketCount, 2));
    HashChains_forEach(&this_->chains,
                       [&](Entry* entry) { HashChains_link(&grown, bucketOf(grown, entry->hash), entry); });
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->chains.buckets);
    this_->chains = grown;
}

void DFDLStringHashMap_reset(DFDLStringHashMap* this_) {
    HashChains_forEach(&this_->chains, [&](Entry* entry) {
        HashEntry_setValue(entry, this_->heap, this_->deleteValue, nullptr);
    });
}

void DFDLStringHashMap_clear(DFDLStringHashMap* this_) {
    HashChains_forEach(&this_->chains, [&](Entry* entry) { freeEntry(this_, entry); });
    HashChains_forget(&this_->chains);
}

uint32_t DFDLStringHashMap_hash(std::u16string_view key) {
    uint32_t hash = 0;
    for (const char16_t unit : key) hash += unit + (hash >> 24) + hash * 37;
    return hash;
}
