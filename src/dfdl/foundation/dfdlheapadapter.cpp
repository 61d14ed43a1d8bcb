#include "dfdl/foundation/dfdlheapadapter.h"

#include <cassert>
#include <cstring>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr int ALLOCATING = 1;
constexpr int REALLOCATING = 3;

[[noreturn]] void fail(DFDLHeapAdapter* adapter, int origin) {
    if (adapter->context != nullptr) {
        ++adapter->context->allocationFailures;
        adapter->context->jumpState = origin;
    }
    throw AllocationFailure{origin};
}

// Size of a block with its header; one that no object can have is refused without asking the callback.
size_t blockSize(DFDLHeapAdapter* adapter, size_t elementSize, size_t count, int origin) {
    size_t bytes;
    if (__builtin_mul_overflow(elementSize, count, &bytes) ||
        __builtin_add_overflow(bytes, sizeof(DFDLHeapBlock), &bytes) || bytes > PTRDIFF_MAX) {
        fail(adapter, origin);
    }
    return bytes;
}

DFDLHeapBlock* blockOf(void* memory) { return static_cast<DFDLHeapBlock*>(memory) - 1; }

void* link(DFDLHeapAdapter* adapter, DFDLHeapBlock* block) {
    block->older = adapter->blocks;
    block->newer = nullptr;
    if (block->older != nullptr) block->older->newer = block;
    adapter->blocks = block;
    return block + 1;
}

// Changes what the neighbours of a block (or the adapter, if it is the newest) point to in its place.
void relink(DFDLHeapAdapter* adapter, const DFDLHeapBlock& place, DFDLHeapBlock* fromNewer,
            DFDLHeapBlock* fromOlder) {
    (place.newer == nullptr ? adapter->blocks : place.newer->older) = fromNewer;
    if (place.older != nullptr) place.older->newer = fromOlder;
}

void* allocateZeroed(DFDLHeapAdapter* adapter, size_t elementSize, size_t count, int origin) {
    const size_t bytes = blockSize(adapter, elementSize, count, origin);
    void* memory = adapter->callocCallback(adapter->userData, 1, bytes);
    if (memory == nullptr) fail(adapter, origin);
    return link(adapter, static_cast<DFDLHeapBlock*>(memory));
}

void release(DFDLHeapAdapter* adapter, void* memory) {
    if (memory == nullptr) return;
    DFDLHeapBlock* block = blockOf(memory);
    relink(adapter, *block, block->older, block->newer);
    adapter->freeCallback(adapter->userData, block);
}

// What an allocation failure has left behind.
void releaseBlocks(DFDLHeapAdapter* adapter) {
    while (adapter->blocks != nullptr) release(adapter, adapter->blocks + 1);
}

// `expectLeft`: an allocation failure has happened, so blocks may legally be left.
void deleteBufferFactory(DFDLHeapAdapter* adapter, [[maybe_unused]] bool expectLeft) {
    assert(expectLeft || DFDLBufferFactory_isIdle(adapter->bufferFactory));
    delete_DFDLBufferFactory(adapter->bufferFactory);
    adapter->bufferFactory = nullptr;
    assert(expectLeft || adapter->blocks == nullptr);
    releaseBlocks(adapter);
}

void tearDown(DFDLHeapAdapter* adapter, bool expectLeft) {
    delete_Context(adapter->context);
    adapter->context = nullptr;
    delete_DFDLPoolingFactory(adapter->poolingFactory);
    adapter->poolingFactory = nullptr;
    deleteBufferFactory(adapter, expectLeft);
    adapter->owner->freeCallback(adapter->owner->userData, adapter);
}

bool hasFailed(const DFDLHeapAdapter* adapter) {
    return adapter->context != nullptr && adapter->context->allocationFailures > 0;
}

void tearDownHalfBuilt(DFDLHeapAdapter* adapter) { tearDown(adapter, true); }

void setCallbacks(DFDLHeapAdapter* adapter, const DFDLHeapImpl& heap) {
    adapter->userData = heap.userData;
    adapter->mallocCallback = heap.mallocCallback;
    adapter->callocCallback = heap.callocCallback;
    adapter->reallocCallback = heap.reallocCallback;
    adapter->freeCallback = heap.freeCallback;
}

}  // namespace

DFDLHeapAdapter* new_DFDLHeapAdapter(void* userData, DFDLHeapMallocCallback mallocCallback,
                                     DFDLHeapCallocCallback callocCallback,
                                     DFDLHeapReallocCallback reallocCallback,
                                     DFDLHeapFreeCallback freeCallback) {
    const DFDLHeapImpl heap = {userData, mallocCallback, callocCallback, reallocCallback, freeCallback};
    return new_DFDLHeapAdapterFromHeap(&heap);
}

DFDLHeapAdapter* new_DFDLHeapAdapterFromHeap(const DFDLHeapImpl* heap) {
    const DFDLHeapImpl callbacks = DFDLHeap_orDefault(heap);
    auto* record = static_cast<DFDLHeapAdapter*>(
        callbacks.callocCallback(callbacks.userData, 1, sizeof(DFDLHeapAdapter)));
    if (record == nullptr) throw AllocationFailure{ALLOCATING};
    record->owner = record;
    setCallbacks(record, callbacks);
    Owned<DFDLHeapAdapter, tearDownHalfBuilt> adapter(record);
    record->bufferFactory = new_DFDLBufferFactory(record);
    record->poolingFactory = new_DFDLPoolingFactory(record);
    record->context = new_Context(record);
    return adapter.release();
}

void delete_DFDLHeapAdapter(DFDLHeapAdapter* this_) {
    if (this_ != nullptr) tearDown(this_, hasFailed(this_));
}

DFDLHeapAdapterForMessageHeap* new_DFDLHeapAdapterForMessageHeap(
    void* userData, DFDLHeapMallocCallback mallocCallback, DFDLHeapCallocCallback callocCallback,
    DFDLHeapReallocCallback reallocCallback, DFDLHeapFreeCallback freeCallback, DFDLHeapAdapter* parent) {
    Owned<DFDLHeapAdapter, delete_DFDLHeapAdapterForMessageHeap> adapter(
        DFDLHeapAdapter_new<DFDLHeapAdapter>(parent));
    setCallbacks(adapter.get(), {userData, mallocCallback, callocCallback, reallocCallback, freeCallback});
    adapter->context = parent->context;
    adapter->poolingFactory = parent->poolingFactory;
    adapter->bufferFactory = new_DFDLBufferFactory(adapter.get());
    return adapter.release();
}

void delete_DFDLHeapAdapterForMessageHeap(DFDLHeapAdapterForMessageHeap* this_) {
    if (this_ == nullptr) return;
    deleteBufferFactory(this_, hasFailed(this_));
    DFDLHeapAdapter_objectDeallocate(this_->owner, this_);
}

void* DFDLHeapAdapter_objectAllocate(DFDLHeapAdapter* this_, size_t size) {
    void* object = allocateZeroed(this_, 1, size, ALLOCATING);
    *static_cast<DFDLHeapAdapter**>(object) = this_;
    return object;
}

void DFDLHeapAdapter_objectDeallocate(DFDLHeapAdapter* this_, void* object) { release(this_, object); }

void* DFDLHeapAdapter_arrayAllocate(DFDLHeapAdapter* this_, size_t elementSize, size_t count) {
    return allocateZeroed(this_, elementSize, count, ALLOCATING);
}

void* DFDLHeapAdapter_bufferAllocate(DFDLHeapAdapter* this_, size_t elementSize, size_t count) {
    const size_t bytes = blockSize(this_, elementSize, count, ALLOCATING);
    void* memory = this_->mallocCallback(this_->userData, bytes);
    if (memory == nullptr) fail(this_, ALLOCATING);
    return link(this_, static_cast<DFDLHeapBlock*>(memory));
}

void* DFDLHeapAdapter_arrayReallocate(DFDLHeapAdapter* this_, void* array, size_t elementSize,
                                      size_t oldCount, size_t newCount) {
    if (array == nullptr) return allocateZeroed(this_, elementSize, newCount, REALLOCATING);
    const size_t bytes = blockSize(this_, elementSize, newCount, REALLOCATING);
    const DFDLHeapBlock place = *blockOf(array);
    void* memory = this_->reallocCallback(this_->userData, blockOf(array), bytes);
    if (memory == nullptr) fail(this_, REALLOCATING);  // the old block stays as it was
    auto* block = static_cast<DFDLHeapBlock*>(memory);
    relink(this_, place, block, block);
    auto* elements = reinterpret_cast<uint8_t*>(block + 1);
    if (newCount > oldCount) {
        std::memset(elements + elementSize * oldCount, 0, elementSize * (newCount - oldCount));
    }
    return elements;
}

void DFDLHeapAdapter_arrayDeallocate(DFDLHeapAdapter* this_, void* array) { release(this_, array); }

void DFDLHeapAdapter_arrayClear(DFDLHeapAdapter* /*this_*/, void* array, size_t elementSize, size_t count) {
    if (count > 0) std::memset(array, 0, elementSize * count);
}

void DFDLHeapAdapter_arrayCopy(DFDLHeapAdapter* /*this_*/, const void* source, void* target,
                               size_t elementSize, size_t count) {
    if (count > 0) std::memmove(target, source, elementSize * count);
}

void* DFDLHeapAdapter_arrayDuplicate(DFDLHeapAdapter* this_, const void* source, size_t elementSize,
                                     size_t count) {
    void* copy = DFDLHeapAdapter_bufferAllocate(this_, elementSize, count);
    DFDLHeapAdapter_arrayCopy(this_, source, copy, elementSize, count);
    return copy;
}

void* DFDLHeapAdapter_arrayReplace(DFDLHeapAdapter* this_, void* array, size_t elementSize, size_t count) {
    void* replacement = allocateZeroed(this_, elementSize, count, REALLOCATING);
    release(this_, array);
    return replacement;
}

void DFDLHeapAdapter_refuse(DFDLHeapAdapter* this_) { fail(this_, ALLOCATING); }

size_t DFDLHeapAdapter_countBlocks(const DFDLHeapAdapter* this_) {
    size_t count = 0;
    for (const DFDLHeapBlock* block = this_->blocks; block != nullptr; block = block->older) ++count;
    return count;
}
