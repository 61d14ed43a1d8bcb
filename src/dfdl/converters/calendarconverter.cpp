#include "dfdl/converters/calendarconverter.h"

#include <string_view>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"

namespace {

using OwnedCalendar = Owned<UCalendar, ucal_close>;

bool isDigit(UChar c) { return c >= u'0' && c <= u'9'; }

struct LexicalForm {
    CalendarPattern first;  // without fraction or zone; those with them follow it
    bool hasTime;
    bool hasDate;
};

constexpr LexicalForm DATE = {CALENDAR_DATE, false, true};
constexpr LexicalForm TIME = {CALENDAR_TIME, true, false};
constexpr LexicalForm DATE_TIME = {CALENDAR_DATE_TIME, true, true};

CalendarPattern patternOf(const LexicalForm& form, const DFDLUString* text, bool hasZone) {
    const int zone = hasZone ? 1 : 0;
    const int fraction = form.hasTime && CalendarConverter_hasFractionalSeconds(text) ? 2 : 0;
    return static_cast<CalendarPattern>(form.first + fraction + zone);
}

// The calendar that a text is read into; null when ICU refuses.
OwnedCalendar openCalendar(std::u16string_view zone, bool keepFields, UErrorCode* status) {
    OwnedCalendar calendar(ucal_open(nullptr, 0, nullptr, UCAL_GREGORIAN, status));
    if (U_FAILURE(*status)) return nullptr;
    if (!zone.empty()) {
        ucal_setTimeZone(calendar.get(), zone.data(), static_cast<int32_t>(zone.size()), status);
    }
    if (!keepFields) ucal_setDateTime(calendar.get(), 1970, UCAL_JANUARY, 1, 0, 0, 0, status);
    ucal_set(calendar.get(), UCAL_MILLISECOND, 0);
    return calendar;
}

// ICU counts a year 0 between 1 and -1, the schema does not: a year before 1 is read one too early.
void closeGapBeforeYearOne(UCalendar* calendar, UErrorCode* status) {
    if (ucal_get(calendar, UCAL_ERA, status) == 0 && U_SUCCESS(*status)) {
        ucal_set(calendar, UCAL_YEAR, ucal_get(calendar, UCAL_YEAR, status) - 1);
    }
}

UCalendar* parse(const LexicalForm& form, const DFDLUString* text, const DFDLUString* zone,
                 DFDLConstants* constants, bool keepFields) {
    const std::u16string_view chars = DFDLUString_view(text);
    const auto length = static_cast<int32_t>(chars.size());
    // ICU would take a blank for the "T".
    if (form.hasDate && form.hasTime && chars.find(u'T') == chars.npos) return nullptr;
    const bool hasZone = CalendarConverter_hasTimezone(text);
    const std::u16string_view assumed = zone == nullptr ? DFDLConstants::GMT : DFDLUString_view(zone);
    UErrorCode status = U_ZERO_ERROR;
    OwnedCalendar calendar = openCalendar(hasZone ? std::u16string_view() : assumed, keepFields, &status);
    const UDateFormat* format = DFDLConstants_getDateFormat(constants, patternOf(form, text, hasZone));
    if (U_FAILURE(status) || format == nullptr) return nullptr;
    int32_t position = 0;
    udat_parseCalendar(format, calendar.get(), chars.data(), length, &position, &status);
    if (form.hasDate) closeGapBeforeYearOne(calendar.get(), &status);
    return U_SUCCESS(status) && position == length ? calendar.release() : nullptr;
}

}  // namespace

UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDateWithTimezone(const DFDLUString* text,
                                                                             const DFDLUString* zone,
                                                                             DFDLConstants* constants,
                                                                             bool keepFields) {
    return parse(DATE, text, zone, constants, keepFields);
}

UCalendar* CalendarConverter_createCalendarFromSchemaLexicalTimeWithTimezone(const DFDLUString* text,
                                                                             const DFDLUString* zone,
                                                                             DFDLConstants* constants,
                                                                             bool keepFields) {
    return parse(TIME, text, zone, constants, keepFields);
}

UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDateTimeWithTimezone(const DFDLUString* text,
                                                                                 const DFDLUString* zone,
                                                                                 DFDLConstants* constants,
                                                                                 bool keepFields) {
    return parse(DATE_TIME, text, zone, constants, keepFields);
}

UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDate(const DFDLUString* text,
                                                                 DFDLConstants* constants) {
    return parse(DATE, text, nullptr, constants, false);
}

UCalendar* CalendarConverter_createCalendarFromSchemaLexicalTime(const DFDLUString* text,
                                                                 DFDLConstants* constants) {
    return parse(TIME, text, nullptr, constants, false);
}

UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDateTime(const DFDLUString* text,
                                                                     DFDLConstants* constants) {
    return parse(DATE_TIME, text, nullptr, constants, false);
}

bool CalendarConverter_hasTimezone(const DFDLUString* text) {
    const std::u16string_view chars = DFDLUString_view(text);
    if (chars.ends_with(u'Z')) return true;
    if (chars.size() < 6) return false;
    const std::u16string_view end = chars.substr(chars.size() - 6);
    return (end[0] == u'+' || end[0] == u'-') && isDigit(end[1]) && isDigit(end[2]) && end[3] == u':' &&
           isDigit(end[4]) && isDigit(end[5]);
}

bool CalendarConverter_hasFractionalSeconds(const DFDLUString* text) {
    const std::u16string_view chars = DFDLUString_view(text);
    for (size_t i = 1; i < chars.size(); ++i) {
        if (chars[i - 1] == u'.' && isDigit(chars[i])) return true;
    }
    return false;
}
