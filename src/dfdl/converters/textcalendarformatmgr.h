#ifndef DFDL_CONVERTERS_TEXTCALENDARFORMATMGR_H
#define DFDL_CONVERTERS_TEXTCALENDARFORMATMGR_H

#include <unicode/udat.h>

#include <cstdint>
#include <string_view>

#include "dfdl/converters/plaincalendar.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct CalendarFormatTableRow;
struct DFDLCalendarImpl;
struct DFDLUString;
struct TextCalendarFormatMgr;

// A calendar of an entry and the zone that was set on it; null while it is free to be claimed.
struct ICUCalendarTimezonePair {
    DFDLHeapAdapter* heap;
    UCalendar* calendar;
    DFDLUString* timeZone;
};

// What ICU needs to read and write by one row of the calendar formats. Its calendars are used anew for each
// value: nobody may keep one.
struct TextCalendarFormatEntry {
    DFDLHeapAdapter* heap;
    TextCalendarFormatMgr* manager;
    UDateFormat* format;
    ArrayList* calendars;  // ICUCalendarTimezonePair*, one for each zone that was met
    DFDLUString* zone;     // that texts without one are in
    uint32_t isIso;        // stamps of ISO 8601, not what ICU's patterns describe
    uint32_t readsZone;    // the pattern has a field for it
    uint32_t namesZone;    // the row does
    uint32_t hasOffset;    // `zone` is an offset and not a place
    int32_t zoneOffset;    // the offset, in minutes
    PlainCalendar plain;   // for reading without ICU
};

// The entries of one grammar, by row of its calendar formats, made when they are first asked for. Belongs to
// a region handler and lives as long; emptied when the year or the grammar changes.
struct TextCalendarFormatMgr {
    DFDLHeapAdapter* heap;
    ArrayList* entries;  // TextCalendarFormatEntry*, null where nothing was made
    int32_t currentYear;
};

TextCalendarFormatMgr* new_TextCalendarFormatMgr(DFDLHeapAdapter* heap);
void delete_TextCalendarFormatMgr(TextCalendarFormatMgr* this_);  // null is ignored
void TextCalendarFormatMgr_ctor(TextCalendarFormatMgr* this_, DFDLHeapAdapter* heap);
void TextCalendarFormatMgr_dtor(TextCalendarFormatMgr* this_);
void TextCalendarFormatMgr_reset(TextCalendarFormatMgr* this_);
// Null if nothing was made.
inline TextCalendarFormatEntry* TextCalendarFormatMgr_getEntry(const TextCalendarFormatMgr* this_,
                                                               int32_t rowIndex) {
    if (rowIndex >= ArrayList_size(this_->entries)) return nullptr;
    return ArrayList_getPointer<TextCalendarFormatEntry>(this_->entries, rowIndex);
}
// Makes and keeps the entry of a row. `pattern` may be null: ICU's default. Sets the default time zone of the
// process. Null if ICU refuses.
TextCalendarFormatEntry* TextCalendarFormatMgr_createCalendarFormatEntry(TextCalendarFormatMgr* this_,
                                                                         int32_t rowIndex,
                                                                         const DFDLUString* pattern,
                                                                         const CalendarFormatTableRow* row);

// Without a format and a calendar, which whoever makes it adds.
TextCalendarFormatEntry* new_TextCalendarFormatEntry(TextCalendarFormatMgr* manager);
void delete_TextCalendarFormatEntry(TextCalendarFormatEntry* this_);  // null is ignored
// The entry's calendar in a zone. Null if ICU refuses.
UCalendar* TextCalendarFormatEntry_findCalendar(TextCalendarFormatEntry* this_, const DFDLUString* zone);
// A calendar of the entry's with what the record has, in the record's zone. Null if ICU refuses.
UCalendar* TextCalendarFormatEntry_getUCalendar(TextCalendarFormatEntry* this_,
                                                const DFDLCalendarImpl* record);

// Adopts the calendar.
ICUCalendarTimezonePair* new_ICUCalendarTimezonePair(DFDLHeapAdapter* heap, UCalendar* calendar);
void delete_ICUCalendarTimezonePair(ICUCalendarTimezonePair* this_);  // null is ignored

// Exactly "I", or starting with "IU".
bool CalendarPattern_isIso(std::u16string_view pattern);

#endif
