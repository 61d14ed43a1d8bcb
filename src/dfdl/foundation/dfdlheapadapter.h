#ifndef DFDL_FOUNDATION_DFDLHEAPADAPTER_H
#define DFDL_FOUNDATION_DFDLHEAPADAPTER_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "dfdl/foundation/dfdlheap.h"

struct Context;
struct DFDLBufferFactory;
struct DFDLPoolingFactory;

// Thrown when a callback of the caller's heap has no memory left. Only the exported entry functions catch
// it; they answer with their documented result for a failure.
struct AllocationFailure {
    int origin;  // 1 allocating, 3 reallocating
};

// Stands before every block that an adapter gives out and links the adapter's blocks.
struct alignas(16) DFDLHeapBlock {
    DFDLHeapBlock* older;
    DFDLHeapBlock* newer;
};

// The one door to memory: everything that a parser, serializer or grammar allocates comes from its adapter,
// whose address is the first word of every object, so that `delete_X` finds the way back.
//
// The adapter links the blocks that it has given out. An allocation failure may leave half-built objects
// behind; their memory goes back to the caller's heap when the adapter is deleted, at the latest.
// An adapter belongs to one engine and is used by one thread at a time.
struct DFDLHeapAdapter {
    DFDLHeapAdapter* owner;  // the adapter that the record itself comes from; itself for a main adapter
    Context* context;
    void* userData;
    DFDLBufferFactory* bufferFactory;
    DFDLPoolingFactory* poolingFactory;
    DFDLHeapMallocCallback mallocCallback;
    DFDLHeapCallocCallback callocCallback;
    DFDLHeapReallocCallback reallocCallback;
    DFDLHeapFreeCallback freeCallback;
    DFDLHeapBlock* blocks;  // newest block that has not come back
};

// A second adapter for what lives for one message: it shares pools and context with its parent.
using DFDLHeapAdapterForMessageHeap = DFDLHeapAdapter;

// All allocating functions throw AllocationFailure rather than return null.
DFDLHeapAdapter* new_DFDLHeapAdapter(void* userData, DFDLHeapMallocCallback mallocCallback,
                                     DFDLHeapCallocCallback callocCallback,
                                     DFDLHeapReallocCallback reallocCallback,
                                     DFDLHeapFreeCallback freeCallback);
DFDLHeapAdapter* new_DFDLHeapAdapterFromHeap(const DFDLHeapImpl* heap);  // null: the process's allocator
void delete_DFDLHeapAdapter(DFDLHeapAdapter* this_);

DFDLHeapAdapterForMessageHeap* new_DFDLHeapAdapterForMessageHeap(
    void* userData, DFDLHeapMallocCallback mallocCallback, DFDLHeapCallocCallback callocCallback,
    DFDLHeapReallocCallback reallocCallback, DFDLHeapFreeCallback freeCallback, DFDLHeapAdapter* parent);
void delete_DFDLHeapAdapterForMessageHeap(DFDLHeapAdapterForMessageHeap* this_);

// Zeroed, with the adapter's address in the first word.
void* DFDLHeapAdapter_objectAllocate(DFDLHeapAdapter* this_, size_t size);
void DFDLHeapAdapter_objectDeallocate(DFDLHeapAdapter* this_, void* object);

// Zeroed. Sizes and counts are checked for overflow; one that overflows is an allocation failure.
void* DFDLHeapAdapter_arrayAllocate(DFDLHeapAdapter* this_, size_t elementSize, size_t count);
// New elements are zeroed. A null array is allocated. When it fails the array stays as it was.
void* DFDLHeapAdapter_arrayReallocate(DFDLHeapAdapter* this_, void* array, size_t elementSize,
                                      size_t oldCount, size_t newCount);
void DFDLHeapAdapter_arrayDeallocate(DFDLHeapAdapter* this_, void* array);
void DFDLHeapAdapter_arrayClear(DFDLHeapAdapter* this_, void* array, size_t elementSize, size_t count);
void DFDLHeapAdapter_arrayCopy(DFDLHeapAdapter* this_, const void* source, void* target, size_t elementSize,
                               size_t count);
void* DFDLHeapAdapter_arrayDuplicate(DFDLHeapAdapter* this_, const void* source, size_t elementSize,
                                     size_t count);
// A new, zeroed array for an old one, which is freed only once there is the new one: a caller whose memory
// has run out still has what it had.
void* DFDLHeapAdapter_arrayReplace(DFDLHeapAdapter* this_, void* array, size_t elementSize, size_t count);
// Not zeroed: for contents that are written at once. Goes back like an array.
void* DFDLHeapAdapter_bufferAllocate(DFDLHeapAdapter* this_, size_t elementSize, size_t count);

// Throws: for an amount that no memory can hold or no counter can count.
[[noreturn]] void DFDLHeapAdapter_refuse(DFDLHeapAdapter* this_);

// Number of blocks given out and not yet given back; walks the list.
size_t DFDLHeapAdapter_countBlocks(const DFDLHeapAdapter* this_);

template <class T>
T* DFDLHeapAdapter_new(DFDLHeapAdapter* heap) {
    static_assert(std::is_trivially_default_constructible_v<T> && std::is_trivially_copyable_v<T>);
    return static_cast<T*>(DFDLHeapAdapter_objectAllocate(heap, sizeof(T)));
}

template <class T>
T* DFDLHeapAdapter_newArray(DFDLHeapAdapter* heap, size_t count) {
    return static_cast<T*>(DFDLHeapAdapter_arrayAllocate(heap, sizeof(T), count));
}

#endif
