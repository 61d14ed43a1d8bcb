#include "dfdl/foundation/dfdlheap.h"

#include <cstdlib>

namespace {

constexpr DFDLHeapImpl PROCESS_HEAP = {nullptr, defaultDFDLHeap_mallocCallback,
                                       defaultDFDLHeap_callocCallback, defaultDFDLHeap_reallocCallback,
                                       defaultDFDLHeap_freeCallback};

}  // namespace

DFDLHeapImpl DFDLHeap_orDefault(const DFDLHeapImpl* heap) { return heap == nullptr ? PROCESS_HEAP : *heap; }

// The record comes from the process and not from the callbacks in it: it is the caller's, who may delete it
// while engines built on the callbacks live on.
DFDLHeap* new_DFDLHeap(void* userData, DFDLHeapMallocCallback mallocCallback,
                       DFDLHeapCallocCallback callocCallback, DFDLHeapReallocCallback reallocCallback,
                       DFDLHeapFreeCallback freeCallback) {
    if (mallocCallback == nullptr || callocCallback == nullptr || reallocCallback == nullptr ||
        freeCallback == nullptr) {
        return nullptr;
    }
    auto* heap = static_cast<DFDLHeapImpl*>(std::calloc(1, sizeof(DFDLHeapImpl)));
    if (heap != nullptr) {
        *heap = {userData, mallocCallback, callocCallback, reallocCallback, freeCallback};
    }
    return heap;
}

void delete_DFDLHeap(DFDLHeap* heap) { std::free(heap); }

void* defaultDFDLHeap_mallocCallback(void* /*userData*/, size_t size) { return std::malloc(size); }

void* defaultDFDLHeap_callocCallback(void* /*userData*/, size_t count, size_t size) {
    return std::calloc(count, size);
}

void* defaultDFDLHeap_reallocCallback(void* /*userData*/, void* pointer, size_t size) {
    return std::realloc(pointer, size);
}

void defaultDFDLHeap_freeCallback(void* /*userData*/, void* pointer) { std::free(pointer); }
