// The making of an entry, which costs as much as reading a hundred texts.
#include <unicode/timezone.h>
#include <unicode/uloc.h>
#include <unicode/unum.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/pif/calendarformattable.h"

namespace {

using OwnedCalendar = Owned<UCalendar, ucal_close>;
using OwnedText = Owned<DFDLUString, delete_DFDLUString>;
using OwnedEntry = Owned<TextCalendarFormatEntry, delete_TextCalendarFormatEntry>;

constexpr std::u16string_view GMT = DFDLConstants::GMT;
constexpr int32_t MILLISECONDS_OF_SECOND = 1000;
constexpr int32_t MILLISECONDS_OF_MINUTE = 60000;
constexpr int32_t MOST_CENTURY_START = 100000;  // years; more says nothing

bool isLetter(UChar c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }
bool isDigit(UChar c) { return c >= u'0' && c <= u'9'; }

// ICU goes astray on what is no name of a language. Letters, then parts of letters and digits.
bool isLanguage(std::u16string_view name) {
    size_t length = 0;
    bool isFirst = true;
    for (const UChar c : name) {
        if (c == u'-' || c == u'_') {
            if (length == 0) return false;
            isFirst = false;
            length = 0;
        } else if (!isLetter(c) && (isFirst || !isDigit(c))) {
            return false;
        } else if (++length > 8) {
            return false;
        }
    }
    return length > 0 && name.size() < ULOC_FULLNAME_CAPACITY;
}

// Only what isLanguage has passed.
void narrow(std::u16string_view name, char (&locale)[ULOC_FULLNAME_CAPACITY]) {
    char* end =
        std::transform(name.begin(), name.end(), locale, [](UChar c) { return static_cast<char>(c); });
    *end = '\0';
}

// "UTC" is not a zone of ICU that offsets can be added to.
DFDLUString* zoneOf(const CalendarFormatTableRow* row, DFDLHeapAdapter* heap) {
    if (DFDLUString_length(row->iCalendarTimeZone) == 0) {
        return DFDLUStringPooler_getDFDLUStringFromView(heap, GMT);
    }
    const OwnedText utc(DFDLUStringPooler_getDFDLUStringFromView(heap, u"UTC"));
    const OwnedText gmt(DFDLUStringPooler_getDFDLUStringFromView(heap, GMT));
    return DFDLUString_replaceAll(row->iCalendarTimeZone, utc.get(), gmt.get(), heap);
}

// ICU looks for the system's zone with a buffer that all threads share: one of them at a time. The first one
// lets ICU have its default zone, lest it looks by itself meanwhile.
icu::TimeZone* findSystemZone() {
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    delete icu::TimeZone::createDefault();
    return icu::TimeZone::detectHostTimeZone();
}

// For the whole process: what is opened without a zone is in this one from now on.
void setDefaultZone(const CalendarFormatTableRow* row, const DFDLUString* zone, UErrorCode* status) {
    if (DFDLUString_length(row->iCalendarTimeZone) == 0) {
        return icu::TimeZone::adoptDefault(findSystemZone());
    }
    ucal_setDefaultTimeZone(zone->chars, status);
}

// Milliseconds east of Greenwich at present, without summer time.
int32_t offsetOf(const UCalendar* calendar, const DFDLUString* zone, UErrorCode* status) {
    const OwnedCalendar probe(ucal_clone(calendar, status));
    if (U_FAILURE(*status)) return 0;
    ucal_setTimeZone(probe.get(), zone->chars, zone->length, status);
    ucal_setMillis(probe.get(), ucal_getNow(), status);
    return ucal_get(probe.get(), UCAL_ZONE_OFFSET, status);
}

// ICU's name of a zone that has this offset all year round.
DFDLUString* nameOffset(int32_t milliseconds, DFDLHeapAdapter* heap) {
    const int32_t seconds = std::abs(milliseconds / MILLISECONDS_OF_SECOND);
    char text[32];
    const int length = std::snprintf(text, sizeof text, "GMT%c%02d:%02d:%02d", milliseconds < 0 ? '-' : '+',
                                     seconds / 3600, seconds / 60 % 60, seconds % 60);
    UChar name[sizeof text];
    std::copy_n(text, length, name);
    return DFDLUStringPooler_getDFDLUStringFromUChars(heap, name, length);
}

// Offsets are what they say, places may have summer time: without it they are taken for the offset that they
// have in winter.
void settleZone(OwnedEntry* made, const CalendarFormatTableRow* row, const UCalendar* calendar,
                UErrorCode* status) {
    TextCalendarFormatEntry* entry = made->get();
    entry->zone = zoneOf(row, entry->heap);
    entry->namesZone = DFDLUString_length(row->iCalendarTimeZone) != 0 ? 1 : 0;
    setDefaultZone(row, entry->zone, status);
    const int32_t offset = offsetOf(calendar, entry->zone, status);
    const bool isPlace = !DFDLUString_view(entry->zone).starts_with(GMT);
    const bool staysInWinter = isPlace && !row->iCalendarObserveDST && entry->isIso == 0;
    if (staysInWinter) {
        const OwnedText place(entry->zone);
        entry->zone = nullptr;
        entry->zone = nameOffset(offset, entry->heap);
    }
    // Any other offset is for ICU to refuse.
    constexpr int32_t MOST = CALENDAR_MOST_ZONE_MINUTES * MILLISECONDS_OF_MINUTE;
    const bool isPlain = offset >= -MOST && offset <= MOST && offset % MILLISECONDS_OF_MINUTE == 0;
    entry->hasOffset = (!isPlace || staysInWinter) && isPlain ? 1 : 0;
    entry->zoneOffset = offset / MILLISECONDS_OF_MINUTE;
}

UDateFormat* openFormat(const TextCalendarFormatEntry* entry, const DFDLUString* pattern,
                        const CalendarFormatTableRow* row, UErrorCode* status) {
    const std::u16string_view language = DFDLUString_view(row->iCalendarLanguage);
    if (!language.empty() && !isLanguage(language)) {
        *status = U_ILLEGAL_ARGUMENT_ERROR;
        return nullptr;
    }
    char locale[ULOC_FULLNAME_CAPACITY];
    narrow(language, locale);
    const bool byPattern = pattern != nullptr;
    const UDateFormatStyle style = byPattern ? UDAT_FULL : UDAT_DEFAULT;
    UDateFormat* format = udat_open(style, style, byPattern && !language.empty() ? locale : nullptr,
                                    entry->zone->chars, entry->zone->length, nullptr, 0, status);
    if (U_FAILURE(*status)) return nullptr;
    if (byPattern) udat_applyPattern(format, false, pattern->chars, pattern->length);
    udat_setLenient(format, !row->iCalendarStrictChecking);
    return format;
}

// Years of two digits lie in the hundred years from here on.
void setCenturyStart(const TextCalendarFormatEntry* entry, UCalendar* calendar,
                     const CalendarFormatTableRow* row, UErrorCode* status) {
    const int32_t year = entry->manager->currentYear;
    const int32_t start = std::clamp(row->iCalendarCenturyStart, -MOST_CENTURY_START, MOST_CENTURY_START);
    const int32_t base = year - year % 100 - (year % 100 < start ? 100 : 0);
    ucal_setMillis(calendar, 0, status);
    ucal_setDateTime(calendar, base + start, UCAL_JANUARY, 1, 0, 0, 0, status);
    udat_set2DigitYearStart(entry->format, ucal_getMillis(calendar, status), status);
    ucal_clear(calendar);
}

// Letters outside quotation marks that stand for a zone.
bool readsZone(std::u16string_view pattern) {
    bool isQuoted = false;
    for (const UChar c : pattern) {
        if (c == u'\'') isQuoted = !isQuoted;
        if (!isQuoted && std::u16string_view(u"zZOvVXx").find(c) != std::u16string_view::npos) return true;
    }
    return false;
}

// The format's own digits are 0 to 9, and its years are those of the schema.
bool isGregorian(const UDateFormat* format) {
    UErrorCode status = U_ZERO_ERROR;
    UChar zero[8];
    const int32_t length =
        unum_getSymbol(udat_getNumberFormat(format), UNUM_ZERO_DIGIT_SYMBOL, zero, 8, &status);
    const char* type = ucal_getType(udat_getCalendar(format), &status);
    return U_SUCCESS(status) && length == 1 && zero[0] == u'0' && std::strcmp(type, "gregorian") == 0;
}

// The first year that the format gives to one of two digits.
int32_t firstYearOfCentury(const UDateFormat* format) {
    UErrorCode status = U_ZERO_ERROR;
    const OwnedCalendar calendar(ucal_clone(udat_getCalendar(format), &status));
    if (U_FAILURE(status)) return 0;
    ucal_setMillis(calendar.get(), udat_get2DigitYearStart(format, &status), &status);
    return ucal_get(calendar.get(), UCAL_YEAR, &status);
}

// Whether its short names of months are those that are read without ICU.
bool namesPlainMonths(const UDateFormat* format) {
    for (int32_t month = 0; month < 12; ++month) {
        UErrorCode status = U_ZERO_ERROR;
        UChar name[8];
        const int32_t length = udat_getSymbols(format, UDAT_SHORT_MONTHS, month, name, 8, &status);
        const auto start = static_cast<size_t>(month) * 3;
        if (U_FAILURE(status) || length != 3 ||
            PLAIN_CALENDAR_MONTHS.substr(start, 3) != std::u16string_view(name, 3)) {
            return false;
        }
    }
    return true;
}

void judge(TextCalendarFormatEntry* entry, const DFDLUString* pattern) {
    if (pattern == nullptr || entry->isIso != 0 || !isGregorian(entry->format)) return;
    if (entry->readsZone == 0 && entry->hasOffset == 0) return;
    entry->plain = PlainCalendar_compile(DFDLUString_view(pattern),
                                         {firstYearOfCentury(entry->format), namesPlainMonths(entry->format),
                                          entry->zoneOffset, entry->namesZone != 0});
}

}  // namespace

TextCalendarFormatEntry* TextCalendarFormatMgr_createCalendarFormatEntry(TextCalendarFormatMgr* this_,
                                                                         int32_t rowIndex,
                                                                         const DFDLUString* pattern,
                                                                         const CalendarFormatTableRow* row) {
    OwnedEntry entry(new_TextCalendarFormatEntry(this_));
    entry->isIso = CalendarPattern_isIso(DFDLUString_view(row->iCalendarPattern)) ? 1 : 0;
    entry->readsZone = readsZone(DFDLUString_view(pattern)) ? 1 : 0;
    UErrorCode status = U_ZERO_ERROR;
    OwnedCalendar calendar(
        ucal_open(GMT.data(), static_cast<int32_t>(GMT.size()), nullptr, UCAL_GREGORIAN, &status));
    if (U_FAILURE(status)) return nullptr;
    settleZone(&entry, row, calendar.get(), &status);
    if (U_SUCCESS(status)) entry->format = openFormat(entry.get(), pattern, row, &status);
    if (U_SUCCESS(status)) setCenturyStart(entry.get(), calendar.get(), row, &status);
    if (U_FAILURE(status)) return nullptr;
    judge(entry.get(), pattern);
    Owned<ICUCalendarTimezonePair, delete_ICUCalendarTimezonePair> pair(
        new_ICUCalendarTimezonePair(this_->heap, calendar.release()));
    ArrayList_addPointer(entry->calendars, pair.get());
    static_cast<void>(pair.release());
    ArrayList_ensureCapacity(this_->entries, rowIndex + 11);
    ArrayList_setPointer(this_->entries, rowIndex, entry.get());
    return entry.release();
}
