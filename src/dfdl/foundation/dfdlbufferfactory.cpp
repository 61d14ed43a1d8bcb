#include "dfdl/foundation/dfdlbufferfactory.h"

#include <algorithm>

namespace {

void setUp(DFDLBlockPool* pool, DFDLHeapAdapter* heap, uint32_t unitSize) {
    pool->heap = heap;
    pool->unitSize = unitSize;
    pool->inUse = 0;
    pool->freeBlocks = nullptr;
    pool->newest = &pool->end;
}

void clear(DFDLBlockPool* pool) {
    while (pool->newest != &pool->end) {
        DFDLBufferBlock* block = pool->newest;
        pool->newest = block->older;
        DFDLBlockPool_guard(pool, block, BUFFER_BLOCK_UNITS);
        DFDLHeapAdapter_arrayDeallocate(pool->heap, block);
    }
    setUp(pool, pool->heap, pool->unitSize);
}

DFDLBufferBlock* allocate(DFDLBlockPool* pool, uint64_t units) {
    const size_t headerUnits = sizeof(DFDLBufferBlock) / pool->unitSize;
    void* block = DFDLHeapAdapter_bufferAllocate(pool->heap, pool->unitSize, units + headerUnits);
    return static_cast<DFDLBufferBlock*>(block);
}

}  // namespace

DFDLBufferFactory* new_DFDLBufferFactory(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<DFDLBufferFactory>(heap);
    setUp(&this_->bytes, heap, sizeof(uint8_t));
    setUp(&this_->units, heap, sizeof(UChar));
    return this_;
}

void delete_DFDLBufferFactory(DFDLBufferFactory* this_) {
    if (this_ == nullptr) return;
    DFDLBufferFactory_reset(this_);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DFDLBufferFactory_reset(DFDLBufferFactory* this_) {
    clear(&this_->bytes);
    clear(&this_->units);
}

bool DFDLBufferFactory_isIdle(const DFDLBufferFactory* this_) {
    return this_ == nullptr || (this_->bytes.inUse == 0 && this_->units.inUse == 0);
}

void* DFDLBlockPool_getNew(DFDLBlockPool* this_, int64_t units) {
    const auto wanted = static_cast<uint64_t>(units);
    if (wanted <= BUFFER_BLOCK_UNITS) {
        DFDLBufferBlock* block = allocate(this_, BUFFER_BLOCK_UNITS);
        block->older = this_->newest;
        this_->newest = block;
        return DFDLBlockPool_use(this_, block, wanted);
    }
    // A negative size has become a huge one. It is cut to what the header cannot make wrap round and the heap
    // adapter still refuses.
    DFDLBufferBlock* block = allocate(this_, std::min<uint64_t>(wanted, PTRDIFF_MAX));
    block->older = nullptr;
    return block + 1;
}

void DFDLBlockPool_freeLarge(DFDLBlockPool* this_, DFDLBufferBlock* block) {
    DFDLHeapAdapter_arrayDeallocate(this_->heap, block);
}
