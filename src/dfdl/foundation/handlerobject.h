#ifndef DFDL_FOUNDATION_HANDLEROBJECT_H
#define DFDL_FOUNDATION_HANDLEROBJECT_H

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/foundation/guard.h"

// What all handler objects of the caller have in common: a record of callbacks, made before any parser is,
// and so with a heap adapter of its own on the process's allocator. T has the fields `heap` and
// `contextObject`.

// Null if there is no memory: callable straight from an exported function.
template <class T>
T* HandlerObject_new() {
    try {
        Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> heap(new_DFDLHeapAdapterFromHeap(nullptr));
        T* handler = DFDLHeapAdapter_new<T>(heap.get());
        heap.release();
        return handler;
    } catch (const AllocationFailure&) {
        return nullptr;
    }
}

template <class T>
void HandlerObject_delete(T* handler) {
    if (handler == nullptr) return;
    DFDLHeapAdapter* heap = handler->heap;
    DFDLHeapAdapter_objectDeallocate(heap, handler);
    delete_DFDLHeapAdapter(heap);
}

template <class T, class Field>
void HandlerObject_set(T* handler, Field T::*field, Field value) {
    if (handler != nullptr) handler->*field = value;
}

template <class T>
void* HandlerObject_getContextObject(const T* handler) {
    return handler == nullptr ? nullptr : handler->contextObject;
}

#endif
