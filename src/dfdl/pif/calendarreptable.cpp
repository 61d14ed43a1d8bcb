#include "dfdl/pif/calendarreptable.h"

#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(CalendarRepTableRow* row) { delete_DFDLUString(row->iBinaryCalendarEpoch); }

}  // namespace

CalendarRepTable* new_CalendarRepTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<CalendarRepTable, deleteRow>(heap, pif);
}

void delete_CalendarRepTable(CalendarRepTable* this_) { Table_delete(this_); }

void CalendarRepTable_finalizeTable(CalendarRepTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        CalendarRepTableRow* row = Table_at(this_, index);
        const sPIF* pif = this_->pif;
        row->calendarFormatRowIndex =
            CalendarFormatTable_findRowIndex(pif->calendarFormatTable, row->iCalendarFormatId);
        row->calendarFormatRow = Table_row(pif->calendarFormatTable, row->calendarFormatRowIndex);
        row->binaryNumberRow = Table_row(pif->binaryNumberTable, row->iBinaryNumberTableIndex);
        row->fixedByteOrder =
            FixedState_ofExpression(pif, row->iByteOrderExprIndex, DFDLConstants::VARIABLE_BYTE_ORDER);
    }
}

BinaryNumberRepEnum CalendarRepTableRow_getBinaryCalendarRepresentation(const CalendarRepTableRow* this_) {
    const BinaryNumberTableRow* row = this_ == nullptr ? nullptr : this_->binaryNumberRow;
    return row == nullptr ? BINARY : row->iBinaryNumberRepresentation;
}
