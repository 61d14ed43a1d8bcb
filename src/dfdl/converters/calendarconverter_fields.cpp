// Fields of calendars: their bounds, their record, what one calendar is beside another.
#include <atomic>
#include <string_view>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/calendarfields.h"
#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr int32_t MILLISECONDS_OF_MINUTE = 60000;

bool isLeapYear(int32_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int32_t daysOfMonth(int32_t year, int32_t month) {
    static constexpr int8_t DAYS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return DAYS[month] + (month == UCAL_FEBRUARY && isLeapYear(year) ? 1 : 0);
}

bool isBelow(int32_t value, int32_t bound) { return value >= 0 && value < bound; }

int32_t askCurrentYear() {
    UErrorCode status = U_ZERO_ERROR;
    const Owned<UCalendar, ucal_close> calendar(ucal_open(nullptr, 0, nullptr, UCAL_GREGORIAN, &status));
    ucal_setMillis(calendar.get(), ucal_getNow(), &status);
    const int32_t year = ucal_get(calendar.get(), UCAL_YEAR, &status);
    return U_SUCCESS(status) ? year : 0;
}

}  // namespace

bool CalendarFields_arePlain(const CalendarFields* this_) {
    return this_->year >= FIRST_PLAIN_YEAR && this_->year <= LAST_PLAIN_YEAR &&
           CalendarConverter_validateDateFields(this_->year, this_->month, this_->day) &&
           isBelow(this_->hour, 24) && isBelow(this_->minute, 60) && isBelow(this_->second, 60) &&
           isBelow(this_->millisecond, 1000) && this_->zoneOffset >= -CALENDAR_MOST_ZONE_MINUTES &&
           this_->zoneOffset <= CALENDAR_MOST_ZONE_MINUTES;
}

DFDLCalendarImpl* CalendarFields_toCalendar(const CalendarFields* this_, DFDLHeapAdapter* heap) {
    DFDLCalendarImpl* calendar = new_DFDLCalendarImpl(heap);
    CalendarFields_fillCalendar(this_, calendar);
    return calendar;
}

void CalendarFields_fillUCalendar(const CalendarFields* this_, UCalendar* target, UErrorCode* status) {
    ucal_setMillis(target, 0, status);
    ucal_setDateTime(target, this_->year, this_->month, this_->day, this_->hour, this_->minute, this_->second,
                     status);
    ucal_set(target, UCAL_MILLISECOND, this_->millisecond);
}

int32_t CalendarConverter_getCurrentYear(bool force) {
    static std::atomic<int32_t> cached = 0;
    int32_t year = cached.load(std::memory_order_relaxed);
    if (year != 0 && !force) return year;
    year = askCurrentYear();
    cached.store(year, std::memory_order_relaxed);
    return year;
}

bool CalendarConverter_validateDateFields(int32_t year, int32_t month, int32_t day) {
    return isBelow(month, 12) && day >= 1 && day <= daysOfMonth(year, month);
}

int32_t CalendarConverter_getYearFromTruncatedFormat(int32_t year, int32_t start, int32_t current) {
    return current / 100 * 100 + year - (year < start ? 0 : 100);
}

bool CalendarConverter_isIcuTimezoneInRange(const UCalendar* calendar) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t offset = ucal_get(calendar, UCAL_ZONE_OFFSET, &status);
    constexpr int32_t MOST = CALENDAR_MOST_ZONE_MINUTES * MILLISECONDS_OF_MINUTE;
    return U_SUCCESS(status) && offset >= -MOST && offset <= MOST && offset % MILLISECONDS_OF_MINUTE == 0;
}

int32_t CalendarConverter_CompareTo(const UCalendar* a, const UCalendar* b) {
    UErrorCode status = U_ZERO_ERROR;
    const double difference = ucal_getMillis(a, &status) - ucal_getMillis(b, &status);
    if (U_FAILURE(status)) return CALENDARS_INCOMPARABLE;
    if (difference == 0) return 0;
    return difference < 0 ? -1 : 1;
}

DFDLUString* CalendarConverter_calculateICUTimePattern(const DFDLUString* text, DFDLHeapAdapter* heap) {
    const std::u16string_view chars = DFDLUString_view(text);
    size_t point = chars.find(u'.');
    if (point == chars.npos) point = chars.size();
    size_t end = point;
    while (end + 1 < chars.size() && chars[end + 1] >= u'0' && chars[end + 1] <= u'9') ++end;
    using Text = Owned<DFDLUString, delete_DFDLUString>;
    Text pattern(DFDLUStringPooler_getDFDLUStringFromView(heap, DFDLConstants::PATTERN_TIME));
    if (end > point) pattern.reset(DFDLUString_concatWithUChar(pattern.get(), u'.', heap));
    for (; end > point; --end) pattern.reset(DFDLUString_concatWithUChar(pattern.get(), u'S', heap));
    if (CalendarConverter_hasTimezone(text))
        pattern.reset(DFDLUString_concatWithUChar(pattern.get(), u'Z', heap));
    return pattern.release();
}
