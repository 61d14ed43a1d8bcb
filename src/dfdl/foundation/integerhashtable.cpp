#include "dfdl/foundation/integerhashtable.h"

#include <span>

namespace {

using Entry = IntegerHashtableEntry;
using Bucket = IntegerHashtableBucket;

constexpr int32_t FIRST_BUCKETS = 128;
constexpr int32_t FIRST_ENTRIES = 2;

Bucket* bucketOf(Bucket* buckets, int32_t mask, int32_t key) {
    return &buckets[static_cast<uint32_t>(key) & static_cast<uint32_t>(mask)];
}

std::span<Bucket> bucketsOf(const IntegerHashtable* table) {
    return {table->buckets, static_cast<size_t>(table->mask) + 1};
}

std::span<Entry> entriesOf(const Bucket& bucket) {
    return {bucket.entries, static_cast<size_t>(bucket.count)};
}

Entry* find(const IntegerHashtable* table, int32_t key) {
    for (Entry& entry : entriesOf(*bucketOf(table->buckets, table->mask, key))) {
        if (entry.key == key) return &entry;
    }
    return nullptr;
}

void add(DFDLHeapAdapter* heap, Bucket* bucket, const Entry& entry) {
    if (bucket->count == bucket->capacity) {
        const int32_t grown = bucket->capacity == 0 ? FIRST_ENTRIES : 2 * bucket->capacity;
        bucket->entries = static_cast<Entry*>(DFDLHeapAdapter_arrayReallocate(
            heap, bucket->entries, sizeof(Entry), static_cast<size_t>(bucket->capacity),
            static_cast<size_t>(grown)));
        bucket->capacity = grown;
    }
    bucket->entries[bucket->count++] = entry;
}

void freeBuckets(DFDLHeapAdapter* heap, std::span<Bucket> buckets) {
    for (const Bucket& bucket : buckets) DFDLHeapAdapter_arrayDeallocate(heap, bucket.entries);
    DFDLHeapAdapter_arrayDeallocate(heap, buckets.data());
}

// For one entry more.
bool isFull(const IntegerHashtable* table) {
    return 4 * (static_cast<int64_t>(table->count) + 1) > 3 * static_cast<int64_t>(table->mask);
}

void grow(IntegerHashtable* table) {
    const int32_t mask = 2 * table->mask + 1;
    auto* buckets = DFDLHeapAdapter_newArray<Bucket>(table->heap, static_cast<size_t>(mask) + 1);
    for (const Bucket& bucket : bucketsOf(table)) {
        for (const Entry& entry : entriesOf(bucket)) {
            add(table->heap, bucketOf(buckets, mask, entry.key), entry);
        }
    }
    freeBuckets(table->heap, bucketsOf(table));
    table->buckets = buckets;
    table->mask = mask;
}

}  // namespace

IntegerHashtable* new_IntegerHashtable(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<IntegerHashtable>(heap);
    this_->buckets = DFDLHeapAdapter_newArray<Bucket>(heap, FIRST_BUCKETS);
    this_->mask = FIRST_BUCKETS - 1;
    return this_;
}

void delete_IntegerHashtable(IntegerHashtable* this_) {
    if (this_ == nullptr) return;
    freeBuckets(this_->heap, bucketsOf(this_));
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void IntegerHashtable_put(IntegerHashtable* this_, int32_t key, int32_t value) {
    Entry* entry = find(this_, key);
    if (entry != nullptr) {
        entry->value = value;
        return;
    }
    if (isFull(this_) && this_->mask < INT32_MAX / 2) grow(this_);
    add(this_->heap, bucketOf(this_->buckets, this_->mask, key), {key, value});
    ++this_->count;
}

int32_t IntegerHashtable_get(const IntegerHashtable* this_, int32_t key) {
    const Entry* entry = find(this_, key);
    return entry == nullptr ? -1 : entry->value;
}

bool IntegerHashtable_containsKey(const IntegerHashtable* this_, int32_t key) {
    return find(this_, key) != nullptr;
}

int32_t IntegerHashtable_getKey(const IntegerHashtable* this_, int32_t value) {
    for (const Bucket& bucket : bucketsOf(this_)) {
        for (const Entry& entry : entriesOf(bucket)) {
            if (entry.value == value) return entry.key;
        }
    }
    return -1;
}

void IntegerHashtable_getKeys(const IntegerHashtable* this_, int32_t* keys) {
    for (const Bucket& bucket : bucketsOf(this_)) {
        for (const Entry& entry : entriesOf(bucket)) *keys++ = entry.key;
    }
}

void IntegerHashtable_clear(IntegerHashtable* this_) {
    for (Bucket& bucket : bucketsOf(this_)) bucket.count = 0;
    this_->count = 0;
}
