#ifndef DFDL_FOUNDATION_ARRAYLIST_H
#define DFDL_FOUNDATION_ARRAYLIST_H

#include <cstddef>
#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// A list of elements that are copied by value, pointers in nearly all uses. It owns its storage, never what
// an element points at. Grows by ten elements, a long list by half of its length.
struct ArrayList {
    DFDLHeapAdapter* heap;
    int32_t capacity;
    int32_t count;
    int32_t elementSize;  // bytes
    uint8_t* storage;
};

// A capacity below 1 is taken as 10.
ArrayList* new_ArrayList(DFDLHeapAdapter* heap, int32_t capacity, int32_t elementSize);
inline ArrayList* new_ArrayListOfPointers(DFDLHeapAdapter* heap, int32_t capacity) {
    return new_ArrayList(heap, capacity, static_cast<int32_t>(sizeof(void*)));
}
void delete_ArrayList(ArrayList* this_);  // null is ignored

void ArrayList_add(ArrayList* this_, const void* element);
void ArrayList_set(ArrayList* this_, int32_t index, const void* element);  // beyond the end: extends, zeroed
void ArrayList_removeAt(ArrayList* this_, int32_t index);                  // closes the gap
void ArrayList_removeFirst(ArrayList* this_, int32_t count);               // no more than there are
void ArrayList_ensureCapacity(ArrayList* this_, int32_t capacity);         // exactly
// Capacity for an element behind `count` others, in the list's own steps: for who adds one element after the
// other, but must have the room for it beforehand.
void ArrayList_makeRoomAfter(ArrayList* this_, int32_t count);

inline void ArrayList_clear(ArrayList* this_) { this_->count = 0; }
inline int32_t ArrayList_size(const ArrayList* this_) { return this_->count; }
inline bool ArrayList_isEmpty(const ArrayList* this_) { return this_->count == 0; }
inline void* ArrayList_get(const ArrayList* this_, int32_t index) {
    return this_->storage + static_cast<size_t>(index) * static_cast<size_t>(this_->elementSize);
}

// For lists of pointers.
inline void** ArrayList_pointers(const ArrayList* this_) { return reinterpret_cast<void**>(this_->storage); }
inline void ArrayList_addPointer(ArrayList* this_, void* pointer) {
    if (this_->count == this_->capacity) return ArrayList_add(this_, &pointer);
    ArrayList_pointers(this_)[this_->count++] = pointer;
}
inline void ArrayList_setPointer(ArrayList* this_, int32_t index, void* pointer) {
    ArrayList_set(this_, index, &pointer);
}
template <class T>
T* ArrayList_getPointer(const ArrayList* this_, int32_t index) {
    return static_cast<T*>(ArrayList_pointers(this_)[index]);
}
template <class T>
T* ArrayList_popPointer(ArrayList* this_) {  // the list must not be empty
    return ArrayList_getPointer<T>(this_, --this_->count);
}
int32_t ArrayList_indexOfPointer(const ArrayList* this_, const void* pointer);  // -1 none

#endif
