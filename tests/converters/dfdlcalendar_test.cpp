#include "dfdl/converters/dfdlcalendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using OwnedText = Owned<DFDLUString, delete_DFDLUString>;
using OwnedUCalendar = Owned<UCalendar, ucal_close>;
using OwnedRecord = Owned<DFDLCalendarImpl, delete_DFDLCalendarImplFromUCalendar>;

struct Calendars : ::testing::Test {
    TestAdapter test;
    Owned<DFDLConstants, delete_DFDLConstants> constants{new_DFDLConstants(test.adapter)};

    OwnedText text(std::u16string_view chars) {
        return OwnedText(
            new_DFDLUStringFromUChars(test.adapter, chars.data(), static_cast<int32_t>(chars.size())));
    }
};

using Convert = UCalendar* (*)(const DFDLUString*, DFDLConstants*);

struct LexicalCase {
    Convert convert;
    std::u16string_view text;
    bool hasZone;
    bool isRead;
    int32_t fields[8];  // year, month, day, hour, minute, second, microseconds, minutes of offset
};

constexpr Convert DATE = CalendarConverter_createCalendarFromSchemaLexicalDate;
constexpr Convert TIME = CalendarConverter_createCalendarFromSchemaLexicalTime;
constexpr Convert DATE_TIME = CalendarConverter_createCalendarFromSchemaLexicalDateTime;

constexpr LexicalCase LEXICAL[] = {
    {DATE, u"2024-02-29", false, true, {2024, 1, 29, 0, 0, 0, 0, 0}},
    {DATE, u"2024-02-29Z", true, true, {2024, 1, 29, 0, 0, 0, 0, 0}},
    {DATE, u"2024-02-29-05:30", true, true, {2024, 1, 29, 0, 0, 0, 0, -330}},
    {DATE, u"-0001-06-15", false, true, {-1, 5, 15, 0, 0, 0, 0, 0}},
    {DATE, u"-0044-03-15", false, true, {-44, 2, 15, 0, 0, 0, 0, 0}},
    {DATE, u"2024-02-29x", false, false, {}},
    {DATE, u"tomorrow", false, false, {}},
    {DATE, u"", false, false, {}},
    {TIME, u"13:14:15", false, true, {1970, 0, 1, 13, 14, 15, 0, 0}},
    {TIME, u"13:14:15+01:00", true, true, {1970, 0, 1, 13, 14, 15, 0, 60}},
    {TIME, u"13:14:15.250000", false, true, {1970, 0, 1, 13, 14, 15, 250000, 0}},
    {TIME, u"13:14:15.5Z", true, true, {1970, 0, 1, 13, 14, 15, 500000, 0}},
    {TIME, u"13:14", false, false, {}},
    {DATE_TIME, u"1999-12-31T23:59:58", false, true, {1999, 11, 31, 23, 59, 58, 0, 0}},
    {DATE_TIME, u"1999-12-31T23:59:58.123+14:00", true, true, {1999, 11, 31, 23, 59, 58, 123000, 840}},
    {DATE_TIME, u"1999-12-31T23:59:58.123", false, true, {1999, 11, 31, 23, 59, 58, 123000, 0}},
    {DATE_TIME, u"1999-12-31 23:59:58", false, false, {}}};

TEST_F(Calendars, schemaTextsBecomeRecords) {
    for (const LexicalCase& one : LEXICAL) {
        const OwnedText source = text(one.text);
        SCOPED_TRACE(std::string(one.text.begin(), one.text.end()));
        EXPECT_EQ(CalendarConverter_hasTimezone(source.get()), one.hasZone);
        const OwnedUCalendar calendar(one.convert(source.get(), constants.get()));
        ASSERT_EQ(calendar != nullptr, one.isRead);
        if (!one.isRead) continue;
        const OwnedRecord record(new_DFDLCalendarImplFromUCalendar(test.adapter, calendar.get()));
        ASSERT_NE(record, nullptr);
        EXPECT_TRUE(record->hasDate && record->hasTime && record->hasMicroSec && record->hasTimeZone);
        const int32_t fields[8] = {record->year,        record->month,         record->day,
                                   record->hour,        record->minute,        record->second,
                                   record->microSecond, record->timeZoneOffset};
        for (int i = 0; i < 8; ++i) EXPECT_EQ(fields[i], one.fields[i]) << "field " << i;
    }
}

TEST_F(Calendars, aGivenZoneServesTextsWithoutOne) {
    const OwnedText zone = text(u"GMT+03:00");
    for (const auto& [chars, offset] : {std::pair{u"12:00:00", 180}, std::pair{u"12:00:00Z", 0}}) {
        const OwnedText source = text(chars);
        const OwnedUCalendar calendar(CalendarConverter_createCalendarFromSchemaLexicalTimeWithTimezone(
            source.get(), zone.get(), constants.get(), true));
        ASSERT_NE(calendar, nullptr);
        const OwnedRecord record(new_DFDLCalendarImplFromUCalendar(test.adapter, calendar.get()));
        EXPECT_EQ(record->timeZoneOffset, offset);
        EXPECT_GT(record->year, 1970) << "the present day is kept";
    }
}

TEST_F(Calendars, zoneAndFractionOfTexts) {
    struct Case {
        std::u16string_view text;
        bool hasZone;
        bool hasFraction;
    };
    for (const Case& one :
         {Case{u"Z", true, false}, Case{u"+00:00", true, false}, Case{u"00:00", false, false},
          Case{u"x-1a:00", false, false}, Case{u"*00:00", false, false}, Case{u"1.", false, false},
          Case{u"1.x.5", false, true}}) {
        const OwnedText source = text(one.text);
        EXPECT_EQ(CalendarConverter_hasTimezone(source.get()), one.hasZone) << one.text.size();
        EXPECT_EQ(CalendarConverter_hasFractionalSeconds(source.get()), one.hasFraction) << one.text.size();
    }
    EXPECT_FALSE(CalendarConverter_hasTimezone(nullptr));
}

TEST_F(Calendars, zoneNames) {
    struct Case {
        bool hasZone;
        int32_t offset;
        std::u16string_view name;
    };
    for (const Case& one :
         {Case{false, 90, u"Etc/Unknown"}, Case{true, 0, u"GMT+00:00"}, Case{true, -330, u"GMT-05:30"},
          Case{true, 840, u"GMT+14:00"}, Case{true, INT32_MIN, u"GMT-35791394:08"}}) {
        const OwnedRecord record(new_DFDLCalendarImpl(test.adapter));
        record->hasTimeZone = one.hasZone ? 1 : 0;
        record->timeZoneOffset = one.offset;
        UChar name[CALENDAR_ZONE_NAME];
        const int32_t length = DfdlCalendarImpl_zoneName(record.get(), name);
        EXPECT_EQ(std::u16string_view(name, static_cast<size_t>(length)), one.name) << one.offset;
    }
}

TEST_F(Calendars, recordsSurviveTheWayThroughICU) {
    const OwnedRecord record(new_DFDLCalendarImpl(test.adapter));
    DfdlCalendarImpl_setDate(record.get(), 0, 11, 30);
    DfdlCalendarImpl_setTime(record.get(), 21, 5, 59);
    record->microSecond = 7999;
    record->hasMicroSec = 1;
    record->timeZoneOffset = -600;
    record->hasTimeZone = 1;
    EXPECT_EQ(record->year, -1) << "there is no year 0";
    UErrorCode status = U_ZERO_ERROR;
    const OwnedUCalendar calendar(DfdlCalendarImpl_getUCalendar(record.get(), &status));
    ASSERT_NE(calendar, nullptr);
    const OwnedRecord back(new_DFDLCalendarImplFromUCalendar(test.adapter, calendar.get()));
    EXPECT_EQ(back->year, -1);
    EXPECT_EQ(back->month, 11);
    EXPECT_EQ(back->day, 30);
    EXPECT_EQ(back->hour, 21);
    EXPECT_EQ(back->minute, 5);
    EXPECT_EQ(back->second, 59);
    EXPECT_EQ(back->microSecond, 7000) << "ICU counts milliseconds";
    EXPECT_EQ(back->timeZoneOffset, -600);
}

// What ICU makes of so many milliseconds in a calendar of the epoch.
OwnedRecord countedByICU(DFDLHeapAdapter* heap, UCalendar* epoch, double milliseconds) {
    UErrorCode status = U_ZERO_ERROR;
    const OwnedUCalendar calendar(ucal_clone(epoch, &status));
    ucal_setMillis(calendar.get(), ucal_getMillis(epoch, &status) + milliseconds, &status);
    EXPECT_TRUE(U_SUCCESS(status));
    return OwnedRecord(new_DFDLCalendarImplFromUCalendar(heap, calendar.get()));
}

std::string shown(const OwnedRecord& record) {
    std::string text;
    for (const int32_t field : {record->year, record->month, record->day, record->hour, record->minute,
                                record->second, record->microSecond, record->timeZoneOffset}) {
        text += std::to_string(field) + ' ';
    }
    return text + std::to_string(record->hasDate + 2 * record->hasTime + 4 * record->hasMicroSec +
                                 8 * record->hasTimeZone);
}

// The edges of days, months and years, of the Gregorian calendar, of what ICU counts, and of words.
std::vector<double> moments() {
    constexpr double DAY = 86400000;
    std::vector<double> all = {9223372036854775807.0, -9223372036854775808.0, 1e18, -1e18};
    const auto around = [&all](double moment) {
        for (const double near : {-60000.0, -1.0, 0.0, 1.0, 60000.0}) all.push_back(moment + near);
    };
    for (const double edge : {0.0, -141427 * DAY, -719162 * DAY, -719164 * DAY, 183882168921600000.0,
                              -184303902528000000.0, 9007199254740992.0}) {
        around(edge);
    }
    for (int day = -400; day < 1200; ++day) around(day * DAY);
    for (int year = -4000; year < 4000; year += 7) around(std::floor(year * 365.2425) * DAY);
    std::mt19937_64 random(63);
    for (int i = 0; i < 4000; ++i) {
        const auto word = static_cast<int64_t>(random()) >> random() % 40;
        all.push_back(static_cast<double>(word));
    }
    return all;
}

TEST_F(Calendars, countedMillisecondsAreThoseOfICU) {
    const std::vector<double> all = moments();
    UErrorCode status = U_ZERO_ERROR;
    UChar zone[64];  // of the process, which must not show
    ucal_getDefaultTimeZone(zone, 64, &status);
    const ScopeExit restore([&] { ucal_setDefaultTimeZone(zone, &status); });
    ucal_setDefaultTimeZone(u"America/New_York", &status);
    for (const std::u16string_view chars :
         {u"1970-01-01T00:00:00", u"2000-02-29T12:34:56.789Z", u"1582-10-15T00:00:00-13:45",
          u"1400-03-01T23:59:59+05:30", u"-0044-03-15T12:00:00+00:01"}) {
        const OwnedText source = text(chars);
        const OwnedUCalendar icu(DATE_TIME(source.get(), constants.get()));
        CalendarEpoch epoch{};
        ASSERT_TRUE(CalendarConverter_readEpoch(source.get(), constants.get(), &epoch));
        for (const double moment : all) {
            const OwnedRecord record(CalendarConverter_createCalendarFromMillis(test.adapter, epoch, moment));
            ASSERT_EQ(shown(record), shown(countedByICU(test.adapter, icu.get(), moment)))
                << std::string(chars.begin(), chars.end()) << " and " << moment;
        }
    }
}

TEST_F(Calendars, clonesCopyWhatIsPresent) {
    const OwnedRecord record(new_DFDLCalendarImpl(test.adapter));
    record->day = 5;  // no date is present
    DfdlCalendarImpl_setTime(record.get(), 1, 2, 3);
    record->timeZoneOffset = 60;
    const OwnedRecord copy(DfdlCalendarImpl_clone(test.adapter, record.get()));
    EXPECT_EQ(copy->hasDate | copy->hasMicroSec | copy->hasTimeZone, 0U);
    EXPECT_EQ(copy->day, 0);
    EXPECT_EQ(copy->timeZoneOffset, 0);
    EXPECT_EQ(copy->second, 3);
    record->hasDate = 1;
    DFDLCalendarImpl* own = DfdlCalendarImpl_clone(nullptr, record.get());
    EXPECT_NE(own->heap, test.adapter);
    EXPECT_EQ(own->year, -1) << "a year 0 that was written into the record";
    delete_DFDLCalendarImpl(own);
}

}  // namespace
