#ifndef DFDL_PIF_TABLE_H
#define DFDL_PIF_TABLE_H

#include <cstdint>
#include <type_traits>

#include "dfdl/foundation/array.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct sPIF;

inline constexpr int32_t TABLE_START_ROWS = 8;
inline constexpr int32_t TABLE_GROWTH = 4;

// Rows of one kind by value. It belongs to its grammar. Rows move while the table is being filled; from
// finalizing on their addresses stand, and everything points at them.
template <class R>
struct Table {
    using Row = R;
    DFDLHeapAdapter* heap;
    sPIF* pif;
    Array* rows;
};

template <class T>
int32_t Table_size(const T* this_) {
    return this_->rows->count;
}
// Null outside the table, so that an index that the file has wrong reads as none.
template <class T>
typename T::Row* Table_row(const T* this_, int32_t index) {
    return Array_row<typename T::Row>(this_->rows, index);
}
// For an index within the table.
template <class T>
typename T::Row* Table_at(const T* this_, int32_t index) {
    return static_cast<typename T::Row*>(Array_at(this_->rows, index));
}
template <class T>
int32_t Table_indexOf(const T* this_, const typename T::Row* row) {  // of a row of this table
    return static_cast<int32_t>(row - Table_at(this_, 0));
}

// ---- For the files of the tables ------------------------------------------------------------------------

template <class Row>
using TableRowDelete = void (*)(Row* row);  // what a row owns; null pointers in it are none

template <class Row, TableRowDelete<Row> Delete>
void Table_destroyRow(void* row, DFDLHeapAdapter* /*heap*/, void* /*contextWord*/) {
    Delete(static_cast<Row*>(row));
}

// Without rows. A table of rows that own nothing needs no function that deletes what they own.
template <class T, TableRowDelete<typename T::Row> Delete = nullptr>
T* Table_new(DFDLHeapAdapter* heap, sPIF* pif) {
    static_assert(std::is_trivially_copyable_v<typename T::Row>);  // rows move
    ArrayRowCallback destroy = nullptr;
    if constexpr (Delete != nullptr) destroy = Table_destroyRow<typename T::Row, Delete>;
    T* table = DFDLHeapAdapter_new<T>(heap);
    table->pif = pif;
    table->rows = new_Array(heap, TABLE_START_ROWS, static_cast<int32_t>(sizeof(typename T::Row)), nullptr,
                            destroy, nullptr);
    return table;
}

template <class T>
void Table_delete(T* table) {  // null is ignored
    if (table == nullptr) return;
    delete_Array(table->rows);
    DFDLHeapAdapter_objectDeallocate(table->heap, table);
}

// Appends a row as the file has it; what it owns passes to the table.
template <class T>
typename T::Row* Table_loadRow(T* this_, const typename T::Row& row) {
    Array* rows = this_->rows;
    if (rows->count == rows->capacity) {
        if (rows->capacity > INT32_MAX / TABLE_GROWTH) DFDLHeapAdapter_refuse(this_->heap);
        Array_ensureSize_private(rows, rows->capacity * TABLE_GROWTH);
    }
    auto* added = static_cast<typename T::Row*>(Array_at(rows, rows->count));
    *added = row;
    added->heap = this_->heap;
    added->pif = this_->pif;
    ++rows->count;
    return added;
}

// Where the ids of a table are positions, counted from 1.
template <class T>
int32_t Table_findPosition(const T* this_, int32_t id) {
    return id >= 1 && id <= this_->rows->count ? id - 1 : -1;
}

#endif
