#include "dfdl/foundation/hashtable.h"

#include <algorithm>

namespace {

using Entry = HashtableEntry;

uint32_t bucketOf(const Hashtable* table, const void* key) {
    return table->hash(key) % static_cast<uint32_t>(table->chains.bucketCount);
}

Entry* find(const Hashtable* table, const void* key) {
    return HashChains_find(&table->chains, bucketOf(table, key),
                           [&](const Entry* entry) { return table->equals(entry->key, key); });
}

}  // namespace

Hashtable* new_Hashtable(DFDLHeapAdapter* heap, int32_t bucketCount, HashtableHash hash,
                         HashtableEquals equals, HashMapValueDelete deleteValue) {
    auto* this_ = DFDLHeapAdapter_new<Hashtable>(heap);
    HashChains_allocate(&this_->chains, heap, std::max(bucketCount, 1));
    this_->hash = hash;
    this_->equals = equals;
    this_->deleteValue = deleteValue;
    return this_;
}

void delete_Hashtable(Hashtable* this_) {
    if (this_ == nullptr) return;
    Hashtable_clear(this_);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->chains.buckets);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void Hashtable_put(Hashtable* this_, const void* key, void* value) {
    Entry* entry = find(this_, key);
    if (entry == nullptr) {
        entry = DFDLHeapAdapter_newArray<Entry>(this_->heap, 1);
        entry->key = key;
        HashChains_link(&this_->chains, bucketOf(this_, key), entry);
    }
    HashEntry_setValue(entry, this_->heap, this_->deleteValue, value);
}

void* Hashtable_get(const Hashtable* this_, const void* key) {
    const Entry* entry = find(this_, key);
    return entry == nullptr ? nullptr : entry->value;
}

bool Hashtable_containsKey(const Hashtable* this_, const void* key) { return find(this_, key) != nullptr; }

void Hashtable_clear(Hashtable* this_) {
    HashChains_forEach(&this_->chains, [&](Entry* entry) {
        HashEntry_setValue(entry, this_->heap, this_->deleteValue, nullptr);
        DFDLHeapAdapter_arrayDeallocate(this_->heap, entry);
    });
    HashChains_forget(&this_->chains);
}
