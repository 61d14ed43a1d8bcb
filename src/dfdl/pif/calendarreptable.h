#ifndef DFDL_PIF_CALENDARREPTABLE_H
#define DFDL_PIF_CALENDARREPTABLE_H

#include "dfdl/pif/fixedstate.h"
#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct BinaryNumberTableRow;
struct CalendarFormatTableRow;
struct DFDLUString;
struct sPIF;

// How a calendar value is represented.
struct CalendarRepTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iCalendarFormatId = -1;
    int32_t iTextStringTableIndex = -1;
    int32_t iBinaryNumberTableIndex = -1;
    DFDLUString* iBinaryCalendarEpoch = nullptr;
    ByteOrderEnum iByteOrder = BYTEOR_LITTLE_ENDIAN;
    int32_t iByteOrderExprIndex = -1;

    CalendarFormatTableRow* calendarFormatRow = nullptr;
    int32_t calendarFormatRowIndex = -1;
    BinaryNumberTableRow* binaryNumberRow = nullptr;
    FixedState fixedByteOrder = FIXED_CONSTANT;
};

using CalendarRepTable = Table<CalendarRepTableRow>;

CalendarRepTable* new_CalendarRepTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_CalendarRepTable(CalendarRepTable* this_);  // null is ignored
void CalendarRepTable_finalizeTable(CalendarRepTable* this_);
BinaryNumberRepEnum CalendarRepTableRow_getBinaryCalendarRepresentation(const CalendarRepTableRow* this_);

#endif
