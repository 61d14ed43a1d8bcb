#ifndef DFDL_FOUNDATION_DFDLHEAP_H
#define DFDL_FOUNDATION_DFDLHEAP_H

#include <dfdl/dfdl.h>

// The caller's four allocation functions with the word that is handed to each of them.
// Made and deleted by the caller; parsers and grammars copy the five fields and keep no pointer to it.
struct DFDLHeapImpl {
    void* userData;
    DFDLHeapMallocCallback mallocCallback;
    DFDLHeapCallocCallback callocCallback;
    DFDLHeapReallocCallback reallocCallback;
    DFDLHeapFreeCallback freeCallback;
};

// The fields of a heap, or the process's own allocator for null.
DFDLHeapImpl DFDLHeap_orDefault(const DFDLHeapImpl* heap);

#endif
