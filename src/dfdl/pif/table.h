#ifndef DFDL_PIF_TABLE_H
#define DFDL_PIF_TABLE_H

#include <cstdint>

#include "dfdl/foundation/array.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct sPIF;

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

#endif
