#ifndef DFDL_FOUNDATION_DFDLBUFFERFACTORY_H
#define DFDL_FOUNDATION_DFDLBUFFERFACTORY_H

#include <unicode/utypes.h>

#include <cassert>
#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// Under the address sanitizer a recycled block is closed while it is free, and beyond the size that was asked
// for while it is in use.
#if defined(__SANITIZE_ADDRESS__)
#define DFDL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define DFDL_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(DFDL_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

// Stands before a buffer.
struct DFDLBufferBlock {
    DFDLBufferBlock* older;     // the small block made before this one; null: a large block
    DFDLBufferBlock* nextFree;  // itself while it is in use
};

// Recycled blocks of one size of unit.
struct DFDLBlockPool {
    DFDLHeapAdapter* heap;
    uint32_t unitSize;            // bytes
    uint32_t inUse;               // small blocks given out
    DFDLBufferBlock* freeBlocks;  // the one released last first
    DFDLBufferBlock* newest;      // of all small blocks, linked by `older`, which ends at &end
    DFDLBufferBlock end;
};

// Recycles short-lived blocks of bytes and of 16-bit units. Blocks of up to 256 units are kept and given out
// again; larger ones come from the heap and go straight back to it. Contents of a new block are undefined.
// Belongs to its heap adapter.
struct DFDLBufferFactory {
    DFDLHeapAdapter* heap;
    DFDLBlockPool bytes;
    DFDLBlockPool units;
};

inline constexpr uint64_t BUFFER_BLOCK_UNITS = 256;

DFDLBufferFactory* new_DFDLBufferFactory(DFDLHeapAdapter* heap);
void delete_DFDLBufferFactory(DFDLBufferFactory* this_);  // null is ignored

// Gives every small block back to the heap, those in use included: nobody may hold one any more.
void DFDLBufferFactory_reset(DFDLBufferFactory* this_);
// Whether every small block has come back. Null is idle.
bool DFDLBufferFactory_isIdle(const DFDLBufferFactory* this_);

void* DFDLBlockPool_getNew(DFDLBlockPool* this_, int64_t units);
void DFDLBlockPool_freeLarge(DFDLBlockPool* this_, DFDLBufferBlock* block);

// Opens the first `units` of a small block, closes the others.
inline void DFDLBlockPool_guard([[maybe_unused]] const DFDLBlockPool* this_,
                                [[maybe_unused]] DFDLBufferBlock* block, [[maybe_unused]] uint64_t units) {
#if defined(DFDL_ADDRESS_SANITIZER)
    auto* data = reinterpret_cast<uint8_t*>(block + 1);
    const size_t open = units * this_->unitSize;
    ASAN_UNPOISON_MEMORY_REGION(data, open);
    ASAN_POISON_MEMORY_REGION(data + open, BUFFER_BLOCK_UNITS * this_->unitSize - open);
#endif
}

inline void* DFDLBlockPool_use(DFDLBlockPool* this_, DFDLBufferBlock* block, uint64_t units) {
    block->nextFree = block;
    ++this_->inUse;
    DFDLBlockPool_guard(this_, block, units);
    return block + 1;
}

inline void* DFDLBlockPool_get(DFDLBlockPool* this_, int64_t units) {
    DFDLBufferBlock* block = this_->freeBlocks;
    if (static_cast<uint64_t>(units) > BUFFER_BLOCK_UNITS || block == nullptr) {
        return DFDLBlockPool_getNew(this_, units);
    }
    this_->freeBlocks = block->nextFree;
    return DFDLBlockPool_use(this_, block, static_cast<uint64_t>(units));
}

inline void DFDLBlockPool_free(DFDLBlockPool* this_, void* buffer) {
    if (buffer == nullptr) return;
    DFDLBufferBlock* block = static_cast<DFDLBufferBlock*>(buffer) - 1;
    if (block->older == nullptr) return DFDLBlockPool_freeLarge(this_, block);
    assert(block->nextFree == block);  // else it is freed a second time
    block->nextFree = this_->freeBlocks;
    this_->freeBlocks = block;
    --this_->inUse;
    DFDLBlockPool_guard(this_, block, 0);
}

// A negative size is an allocation failure. A buffer goes back to the factory that it came from.
inline uint8_t* DFDLBufferFactory_GetBuffer(DFDLBufferFactory* this_, int64_t bytes) {
    return static_cast<uint8_t*>(DFDLBlockPool_get(&this_->bytes, bytes));
}
inline void DFDLBufferFactory_FreeBuffer(DFDLBufferFactory* this_, uint8_t* buffer) {  // null is ignored
    DFDLBlockPool_free(&this_->bytes, buffer);
}
inline UChar* DFDLBufferFactory_GetUBuffer(DFDLBufferFactory* this_, int64_t units) {
    return static_cast<UChar*>(DFDLBlockPool_get(&this_->units, units));
}
inline void DFDLBufferFactory_FreeUBuffer(DFDLBufferFactory* this_, UChar* buffer) {  // null is ignored
    DFDLBlockPool_free(&this_->units, buffer);
}

#endif
