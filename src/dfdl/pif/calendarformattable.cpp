#include "dfdl/pif/calendarformattable.h"

#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(CalendarFormatTableRow* row) {
    delete_DFDLUString(row->iCalendarFormatName);
    delete_DFDLUString(row->iCalendarPattern);
    delete_DFDLUString(row->iCalendarTimeZone);
    delete_DFDLUString(row->iCalendarLanguage);
    delete_DFDLString(row->languageName);
}

const char* nameOf(CalendarPatternKindEnum kind) {
    switch (kind) {
        case CALENDAR_PATTERN_KIND_EXPLICIT:
            return "explicit";
        case CALENDAR_PATTERN_KIND_IMPLICIT:
            return "implicit";
    }
    return "{Unknown calendar pattern kind}";
}

}  // namespace

CalendarFormatTable* new_CalendarFormatTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<CalendarFormatTable, deleteRow>(heap, pif);
}

void delete_CalendarFormatTable(CalendarFormatTable* this_) { Table_delete(this_); }

void CalendarFormatTable_finalizeTable(CalendarFormatTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        CalendarFormatTableRow* row = Table_at(this_, index);
        row->id = index + 1;
        row->patternKindName = nameOf(row->iCalendarPatternKind);
        row->languageName =
            new_DFDLStringFromDFDLUString(this_->heap, this_->pif->utf8Converter, row->iCalendarLanguage);
    }
}

int32_t CalendarFormatTable_findRowIndex(const CalendarFormatTable* this_, int32_t id) {
    return Table_findPosition(this_, id);
}

CalendarFormatTableRow* CalendarFormatTable_findRow(const CalendarFormatTable* this_, int32_t id) {
    return Table_row(this_, CalendarFormatTable_findRowIndex(this_, id));
}
