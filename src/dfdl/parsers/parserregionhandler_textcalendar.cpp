// Points in time that are texts, or digits that a text is made of.
#include <algorithm>
#include <string_view>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/converters/packedcalendar.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/calendarformattable.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

using OwnedText = Owned<DFDLUString, delete_DFDLUString>;
using OwnedCalendar = Owned<UCalendar, ucal_close>;
using RecordOfText = Owned<DFDLCalendarImpl, delete_DFDLCalendarImplFromUCalendar>;

constexpr int32_t ZONE_NAME_CAPACITY = 128;
constexpr int32_t ZERO_OFFSET_UNITS = 6;  // "+00:00"
constexpr int32_t DAYS_OF_WEEK = 7;
constexpr double MILLISECONDS_OF_MINUTE = 60000;

// A text that is being read.
struct Reading {
    ParserRegionHandler* handler;
    const GroupMemberTableRow* row;
    const CalendarFormatTableRow* format;
    TextCalendarFormatEntry* entry;
    const DFDLUString* text;
};

DFDLCalendarImpl* refuse(const Reading& reading, int32_t position) {
    ProcessingError_setValues(
        reading.handler->context->currentError, __FILE__, __LINE__, DFDLParser_calendarParsingException,
        ERROR_PROCESSING, SUBKIND_NONE, "%Z%Z%d%Z%Z", GroupMemberTableRow_getElementName(reading.row),
        reading.text, position, reading.format->iCalendarPattern, reading.format->iCalendarFormatName);
    return nullptr;
}

DFDLCalendarImpl* refuseZone(const Reading& reading, const UCalendar* calendar) {
    UErrorCode status = U_ZERO_ERROR;
    UChar name[ZONE_NAME_CAPACITY + 1] = u"";
    ucal_getTimeZoneDisplayName(calendar, UCAL_STANDARD, "en_US", name, ZONE_NAME_CAPACITY, &status);
    ProcessingError_setValues(reading.handler->context->currentError, __FILE__, __LINE__,
                              DFDLParser_invalidTimeZoneOffset, ERROR_PROCESSING, SUBKIND_NONE, "%Z%S",
                              GroupMemberTableRow_getElementName(reading.row), name);
    return nullptr;
}

bool writesZ(const CalendarFormatTableRow* format) {
    return format->iCalendarUseZForUTC == ALWAYS || format->iCalendarUseZForUTC == ON_INPUT;
}

bool isTime(const Reading& reading) { return reading.row->simpleTypeKind == SIMPLE_TIME; }

// What ICU has read, with all of its fields worked out.
DFDLCalendarImpl* finish(const Reading& reading, UCalendar* calendar, bool hasZone) {
    UErrorCode status = U_ZERO_ERROR;
    ucal_getMillis(calendar, &status);
    if (U_FAILURE(status)) return refuse(reading, 0);
    if (!CalendarConverter_isIcuTimezoneInRange(calendar)) return refuseZone(reading, calendar);
    DFDLCalendarImpl* record = new_DFDLCalendarImplFromUCalendar(reading.handler->heap, calendar);
    if (record == nullptr) return refuse(reading, 0);
    if (!hasZone) record->hasTimeZone = 0;
    return record;
}

// Whether the text looks as if it named a zone. Stamps with something else in the place of an offset do not.
bool looksZoned(const Reading& reading) {
    std::u16string_view text = DFDLUString_view(reading.text);
    if (text.find(u'+') != text.npos || text.ends_with(u'Z')) return true;
    if (!isTime(reading)) {
        const size_t mark = text.find(u'T');
        text.remove_prefix(mark == text.npos ? text.size() : mark);
    }
    return text.find(u'-') != text.npos;
}

// Without ICU; null if it has to be asked.
DFDLCalendarImpl* finishPlainStamp(const Reading& reading, IsoStamp* stamp, bool zoned) {
    if (zoned ? !IsoStamp_findOffset(stamp) : stamp->fields.hasZone || reading.entry->hasOffset == 0) {
        return nullptr;
    }
    if (!zoned) {
        stamp->fields.zoneOffset = reading.entry->zoneOffset;
        stamp->fields.hasZone = reading.entry->namesZone != 0;
    }
    if (!CalendarFields_arePlain(&stamp->fields)) return nullptr;
    return CalendarFields_toCalendar(&stamp->fields, reading.handler->heap);
}

DFDLCalendarImpl* finishStamp(const Reading& reading, const IsoStamp& stamp, bool zoned) {
    const OwnedCalendar calendar(IsoStamp_toUCalendar(&stamp));
    if (calendar == nullptr) return refuse(reading, 0);
    const bool takesRowZone = !zoned && reading.entry->namesZone != 0;
    if (takesRowZone) {
        UErrorCode status = U_ZERO_ERROR;
        const DFDLUString* zone = reading.entry->zone;
        ucal_setTimeZone(calendar.get(), zone->chars, zone->length, &status);
        if (U_FAILURE(status)) return refuse(reading, 0);
    }
    return finish(reading, calendar.get(), takesRowZone || stamp.fields.hasZone);
}

DFDLCalendarImpl* readStamp(const Reading& reading) {
    const std::u16string_view text = DFDLUString_view(reading.text);
    const bool forDate = reading.row->simpleTypeKind == SIMPLE_DATE;
    IsoStamp stamp;
    const bool isRead = isTime(reading) ? CalendarConverter_readISO8601Time(text, &stamp)
                                        : CalendarConverter_readISO8601String(
                                              text, forDate, reading.format->iCalendarStrictChecking, &stamp);
    if (!isRead) return refuse(reading, 0);
    const bool zoned = looksZoned(reading);
    DFDLCalendarImpl* plain = finishPlainStamp(reading, &stamp, zoned);
    return plain != nullptr ? plain : finishStamp(reading, stamp, zoned);
}

// The calendar that a text is read into, as it is before every text. Null if ICU refuses.
UCalendar* prepare(const Reading& reading) {
    const TextCalendarFormatEntry* entry = reading.entry;
    UCalendar* calendar = TextCalendarFormatEntry_findCalendar(reading.entry, entry->zone);
    if (calendar == nullptr) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    // The text before may have left its own.
    if (entry->readsZone != 0) {
        ucal_setTimeZone(calendar, entry->zone->chars, entry->zone->length, &status);
    }
    ucal_setAttribute(calendar, UCAL_LENIENT, 1);
    ucal_setMillis(calendar, 0, &status);
    ucal_setDateTime(calendar, 1970, UCAL_JANUARY, 1, 0, 0, 0, &status);
    const int64_t fromMonday = reading.format->iCalendarFirstDayOfWeek;
    ucal_setAttribute(calendar, UCAL_FIRST_DAY_OF_WEEK,
                      static_cast<int32_t>((fromMonday + 1) % DAYS_OF_WEEK) + 1);
    ucal_setAttribute(calendar, UCAL_MINIMAL_DAYS_IN_FIRST_WEEK, reading.format->iCalendarDaysInFirstWeek);
    return U_SUCCESS(status) ? calendar : nullptr;
}

// A place in the text that ICU saw, in the text that was there: "Z" was written out as an offset.
int32_t placeInText(const Reading& reading, int32_t position) {
    const std::u16string_view text = DFDLUString_view(reading.text);
    if (!writesZ(reading.format)) return position;
    int32_t place = 0;
    for (const UChar c : text) {
        position -= c == u'Z' ? ZERO_OFFSET_UNITS : 1;
        if (position < 0) break;
        ++place;
    }
    return place;
}

// A copy that has the clock of the text, whatever a place's own clock would make of it in summer.
UCalendar* copyAsWritten(const UCalendar* calendar, UErrorCode* status) {
    constexpr std::u16string_view GMT = DFDLConstants::GMT;
    OwnedCalendar copy(ucal_clone(calendar, status));
    if (U_FAILURE(*status)) return nullptr;
    ucal_clearField(copy.get(), UCAL_ZONE_OFFSET);
    ucal_clearField(copy.get(), UCAL_DST_OFFSET);
    ucal_setTimeZone(copy.get(), GMT.data(), static_cast<int32_t>(GMT.size()), status);
    return copy.release();
}

// The text's own clock and its distance from Greenwich.
DFDLCalendarImpl* finishAsWritten(const Reading& reading, UCalendar* calendar) {
    UErrorCode status = U_ZERO_ERROR;
    const OwnedCalendar written(copyAsWritten(calendar, &status));
    if (U_FAILURE(status)) return refuse(reading, 0);
    if (reading.format->iCalendarStrictChecking) ucal_setAttribute(calendar, UCAL_LENIENT, 0);
    const RecordOfText checked(finish(reading, calendar, true));
    if (checked == nullptr) return nullptr;
    const double distance = ucal_getMillis(written.get(), &status) - ucal_getMillis(calendar, &status);
    DFDLCalendarImpl* record = finish(reading, written.get(), true);
    if (record != nullptr) record->timeZoneOffset = static_cast<int32_t>(distance / MILLISECONDS_OF_MINUTE);
    return record;
}

DFDLCalendarImpl* readByIcu(const Reading& reading, const DFDLUString* text) {
    UCalendar* calendar = prepare(reading);
    if (calendar == nullptr) return refuse(reading, 0);
    const TextCalendarFormatEntry* entry = reading.entry;
    int32_t position = 0;
    UErrorCode status = U_ZERO_ERROR;
    udat_parseCalendar(entry->format, calendar, text->chars, text->length, &position, &status);
    if (U_FAILURE(status) || position != text->length) {
        return refuse(reading, placeInText(reading, position) + 1);
    }
    if (entry->readsZone != 0 && !reading.format->iCalendarObserveDST) {
        return finishAsWritten(reading, calendar);
    }
    if (reading.format->iCalendarStrictChecking) ucal_setAttribute(calendar, UCAL_LENIENT, 0);
    return finish(reading, calendar, entry->readsZone != 0 || entry->namesZone != 0);
}

DFDLCalendarImpl* readByPattern(const Reading& reading) {
    OwnedText written;
    const DFDLUString* text = reading.text;
    if (writesZ(reading.format) && DFDLUString_containsUChar(text, u'Z')) {
        const DFDLConstants* constants = reading.handler->constants;
        written.reset(
            DFDLUString_replaceAll(text, constants->z, constants->zeroOffset, reading.handler->heap));
        text = written.get();
    }
    int64_t packed = 0;
    if (!PlainCalendar_read(&reading.entry->plain, DFDLUString_view(text), &packed)) {
        return readByIcu(reading, text);
    }
    const CalendarFields fields = PackedCalendar_fields(packed);
    return CalendarFields_toCalendar(&fields, reading.handler->heap);
}

bool isCalendarType(int32_t type) {
    return type == SIMPLE_DATE || type == SIMPLE_TIME || type == SIMPLE_DATETIME;
}

}  // namespace

bool ParserRegionHandler_updateCalendarMgr(ParserRegionHandler* this_, const CalendarFormatTableRow* format,
                                           int32_t rowIndex, const GroupMemberTableRow* row) {
    TextCalendarFormatMgr* manager = this_->textCalendarFormatMgr;
    const int32_t year = CalendarConverter_getCurrentYear(false);
    if (year != manager->currentYear) {
        TextCalendarFormatMgr_reset(manager);
        manager->currentYear = year;
    }
    if (TextCalendarFormatMgr_getEntry(manager, rowIndex) != nullptr) return true;
    const DFDLUString* pattern = format->iCalendarPattern;
    const OwnedText replaced(pattern != nullptr && writesZ(format)
                                 ? DFDLUString_replaceAllUChar(pattern, u'U', u'Z', this_->heap)
                                 : nullptr);
    if (replaced != nullptr) pattern = replaced.get();
    if (TextCalendarFormatMgr_createCalendarFormatEntry(manager, rowIndex, pattern, format) != nullptr) {
        return true;
    }
    ParserRegionHandler_raise(this_, row, DFDLParser_invalidCalendarFormat);
    return false;
}

DFDLValue* ParserRegionHandler_makeCalendarValue(ParserRegionHandler* this_, int32_t type,
                                                 DFDLCalendarImpl* calendar) {
    if (calendar == nullptr) return nullptr;
    const bool hasZone = calendar->hasTimeZone != 0;
    switch (type) {
        case SIMPLE_DATE:
            return DateDV_createDFDLValue(this_->heap, calendar, true, hasZone);
        case SIMPLE_TIME:
            return TimeDV_createDFDLValue(this_->heap, calendar, true, hasZone);
        case SIMPLE_DATETIME:
            return DateTimeDV_createDFDLValue(this_->heap, calendar, true, hasZone);
        default:
            delete_DFDLCalendarImplFromUCalendar(calendar);
            return nullptr;
    }
}

DFDLCalendarImpl* ParserRegionHandler_createCalendarFromText(ParserRegionHandler* this_,
                                                             const CalendarRepTableRow* rep,
                                                             const GroupMemberTableRow* row,
                                                             const DFDLUString* text) {
    TextCalendarFormatEntry* entry =
        TextCalendarFormatMgr_getEntry(this_->textCalendarFormatMgr, rep->calendarFormatRowIndex);
    const Reading reading{this_, row, rep->calendarFormatRow, entry, text};
    return entry->isIso != 0 && isCalendarType(row->simpleTypeKind) ? readStamp(reading)
                                                                    : readByPattern(reading);
}

const CalendarRepTableRow* ParserRegionHandler_findCalendarFormat(ParserRegionHandler* this_,
                                                                  const GroupMemberTableRow* row) {
    const CalendarRepTableRow* rep = GroupMemberTableRow_getCalendarRepRow(row);
    if (rep == nullptr || rep->calendarFormatRow == nullptr || rep->calendarFormatRowIndex < 0) {
        ParserRegionHandler_raise(this_, row, DFDLParser_unresolvedCalendarFormat);
        return nullptr;
    }
    const bool isReady = ParserRegionHandler_updateCalendarMgr(this_, rep->calendarFormatRow,
                                                               rep->calendarFormatRowIndex, row);
    return isReady ? rep : nullptr;
}

DFDLValue* ParserRegionHandler_handleSimpleContent_TextCalendar(ParserRegionHandler* this_,
                                                                const GroupMemberTableRow* row,
                                                                DFDLUString* text) {
    const OwnedText owner(text);
    if (text == nullptr) {
        ParserRegionHandler_raiseNullText(this_, row);
        return nullptr;
    }
    const CalendarRepTableRow* rep = ParserRegionHandler_findCalendarFormat(this_, row);
    if (rep == nullptr) return nullptr;
    if (text->length == 0) {
        ParserRegionHandler_raise(this_, row, DFDLParser_calendarEmptyString);
        return nullptr;
    }
    return ParserRegionHandler_keepIfValid(
        this_,
        ParserRegionHandler_makeCalendarValue(
            this_, row->simpleTypeKind, ParserRegionHandler_createCalendarFromText(this_, rep, row, text)),
        row);
}
