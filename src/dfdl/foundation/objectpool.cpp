#include "dfdl/foundation/objectpool.h"

#include <algorithm>

namespace {

constexpr int32_t STEP = 10;

void makeRoom(ObjectPool* pool) {
    if (pool->freeRecords == nullptr) {
        pool->freeRecords = new_ArrayListOfPointers(pool->heap, pool->traits->listCapacity);
    }
    const int32_t wanted = std::min(pool->made + 1, pool->traits->limit);
    const int32_t capacity = pool->freeRecords->capacity;
    if (wanted > capacity) ArrayList_ensureCapacity(pool->freeRecords, capacity + STEP);
}

}  // namespace

void* ObjectPool_create(ObjectPool* this_) {
    makeRoom(this_);
    void* record = this_->traits->create(this_->heap);
    if (this_->made < INT32_MAX) ++this_->made;
    return record;
}

void ObjectPool_destroy(ObjectPool* this_, void* record) {
    if (this_->made > 0) --this_->made;
    this_->traits->destroy(record);
}

void ObjectPool_clear(ObjectPool* this_) {
    while (this_->freeRecords != nullptr && this_->freeRecords->count > 0) {
        ObjectPool_destroy(this_, ArrayList_popPointer<void>(this_->freeRecords));
    }
}

void ObjectPool_close(ObjectPool* this_) {
    ObjectPool_clear(this_);
    delete_ArrayList(this_->freeRecords);
    this_->freeRecords = nullptr;
}

void ObjectPool_reset(ObjectPool* this_) {
    if (this_->freeRecords == nullptr || this_->traits->reset == nullptr) return;
    for (int32_t index = 0; index < this_->freeRecords->count; ++index) {
        this_->traits->reset(ArrayList_getPointer<void>(this_->freeRecords, index));
    }
}
