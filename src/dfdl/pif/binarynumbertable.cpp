#include "dfdl/pif/binarynumbertable.h"

#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/pif/spif.h"

BinaryNumberTable* new_BinaryNumberTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<BinaryNumberTable>(heap, pif);
}

void delete_BinaryNumberTable(BinaryNumberTable* this_) { Table_delete(this_); }

void BinaryNumberTable_finalizeTable(BinaryNumberTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        BinaryNumberTableRow* row = Table_at(this_, index);
        row->fixedByteOrder =
            FixedState_ofExpression(this_->pif, row->iByteOrderExprIndex, DFDLConstants::VARIABLE_BYTE_ORDER);
    }
}
