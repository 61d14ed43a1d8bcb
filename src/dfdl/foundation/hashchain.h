#ifndef DFDL_FOUNDATION_HASHCHAIN_H
#define DFDL_FOUNDATION_HASHCHAIN_H

#include <cstdint>
#include <utility>

#include "dfdl/foundation/dfdlheapadapter.h"

// What is done with a value that a map lets go of: cleared, replaced or removed. Null values are not
// reported.
using HashMapValueDelete = void (*)(DFDLHeapAdapter* heap, void* value);

// What the hash maps share: an array of buckets, each a chain of entries that have a `next` and, where Entry
// has it, a `previous`. A part of its map, which says where an entry belongs.
template <class Entry>
struct HashChains {
    Entry** buckets;
    int32_t bucketCount;
    int32_t count;  // entries
};

template <class Entry>
void HashChains_allocate(HashChains<Entry>* this_, DFDLHeapAdapter* heap, int32_t bucketCount) {
    this_->buckets = DFDLHeapAdapter_newArray<Entry*>(heap, static_cast<size_t>(bucketCount));
    this_->bucketCount = bucketCount;
}

template <class Entry, class Matches>
Entry* HashChains_find(const HashChains<Entry>* this_, uint32_t bucket, Matches matches) {
    Entry* entry = this_->buckets[bucket];
    while (entry != nullptr && !matches(entry)) entry = entry->next;
    return entry;
}

template <class Entry>
void HashChains_link(HashChains<Entry>* this_, uint32_t bucket, Entry* entry) {
    Entry*& head = this_->buckets[bucket];
    entry->next = head;
    if constexpr (requires { entry->previous; }) {
        entry->previous = nullptr;
        if (head != nullptr) head->previous = entry;
    }
    head = entry;
    ++this_->count;
}

template <class Entry>
void HashChains_unlink(HashChains<Entry>* this_, uint32_t bucket, Entry* entry) {
    (entry->previous == nullptr ? this_->buckets[bucket] : entry->previous->next) = entry->next;
    if (entry->next != nullptr) entry->next->previous = entry->previous;
    --this_->count;
}

// The action may free the entry.
template <class Entry, class Action>
void HashChains_forEach(const HashChains<Entry>* this_, Action action) {
    for (int32_t bucket = 0; bucket < this_->bucketCount; ++bucket) {
        for (Entry* entry = this_->buckets[bucket]; entry != nullptr;) {
            Entry* next = entry->next;
            action(entry);
            entry = next;
        }
    }
}

template <class Entry>
void HashChains_forget(HashChains<Entry>* this_) {
    for (int32_t bucket = 0; bucket < this_->bucketCount; ++bucket) this_->buckets[bucket] = nullptr;
    this_->count = 0;
}

// An entry's new value; the old one is let go of unless it is the same.
template <class Entry>
void HashEntry_setValue(Entry* entry, DFDLHeapAdapter* heap, HashMapValueDelete deleteValue, void* value) {
    void* old = std::exchange(entry->value, value);
    if (old != nullptr && old != value && deleteValue != nullptr) deleteValue(heap, old);
}

#endif
