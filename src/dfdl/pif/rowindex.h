#ifndef DFDL_PIF_ROWINDEX_H
#define DFDL_PIF_ROWINDEX_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// Finds the first row of a table that holds a key, in logarithmic time whatever the keys are: a grammar may
// be large or made to hurt. Filled while its table is being finalized and belongs to it.
struct RowIndex {
    struct Entry {
        int64_t key;
        int32_t row;
    };
    DFDLHeapAdapter* heap;
    Entry* entries;
    int32_t count;
    int32_t capacity;
};

RowIndex* new_RowIndex(DFDLHeapAdapter* heap, int32_t capacity);  // takes at most that many rows
void delete_RowIndex(RowIndex* this_);                            // null is ignored
void RowIndex_add(RowIndex* this_, int64_t key, int32_t row);
void RowIndex_sort(RowIndex* this_);  // once, between adding and finding
// The first or the last row with a key; -1 none, also of a null index.
int32_t RowIndex_find(const RowIndex* this_, int64_t key);
int32_t RowIndex_findLast(const RowIndex* this_, int64_t key);

// Over all rows of a table that `keyOf` takes; it answers by writing the key.
template <class T, class KeyOf>
RowIndex* RowIndex_ofTable(const T* table, KeyOf keyOf) {
    RowIndex* index = new_RowIndex(table->heap, table->rows->count);
    for (int32_t row = 0; row < table->rows->count; ++row) {
        int64_t key = -1;
        if (keyOf(static_cast<const typename T::Row*>(Array_at(table->rows, row)), &key)) {
            RowIndex_add(index, key, row);
        }
    }
    RowIndex_sort(index);
    return index;
}

#endif
