#ifndef DFDL_TESTS_SUPPORT_ROWAT_H
#define DFDL_TESTS_SUPPORT_ROWAT_H

#include <cstdint>

// A row that a member refers to by its index: made when the member has none.
template <class Table, class Row>
Row* rowAt(Table* table, int32_t index, Row* (*make)(Table*)) {
    return index >= 0 ? table->mutable_row(index) : make(table);
}

#endif
