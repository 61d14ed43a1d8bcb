// Years of two digits, patterns of times, order of calendars, and the calendars that a format lends.
#include "dfdl/converters/calendarconverter.h"

#include <gtest/gtest.h>

#include <string>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlicu.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/pif/calendarformattable.h"
#include "support/testheap.h"

namespace {

using OwnedText = Owned<DFDLUString, delete_DFDLUString>;
using OwnedUCalendar = Owned<UCalendar, ucal_close>;
using OwnedRecord = Owned<DFDLCalendarImpl, delete_DFDLCalendarImplFromUCalendar>;

std::string narrow(std::u16string_view text) { return {text.begin(), text.end()}; }

TEST(TruncatedYear, LiesInTheCenturyThatItsStartTells) {
    struct Case {
        int32_t year, start, current, result;
    };
    for (const Case& one : {Case{52, 53, 2026, 2052}, Case{53, 53, 2026, 1953}, Case{54, 53, 2026, 1954},
                            Case{0, 0, 2026, 1900}, Case{0, 1, 2026, 2000}, Case{99, 99, 2026, 1999},
                            Case{99, 100, 2026, 2099}, Case{26, 53, 1999, 1926}, Case{60, 53, 2100, 2060}}) {
        EXPECT_EQ(CalendarConverter_getYearFromTruncatedFormat(one.year, one.start, one.current), one.result)
            << one.year << " from " << one.start << " on in " << one.current;
    }
}

struct LentCalendars : ::testing::Test {
    TestAdapter test;

    OwnedText text(std::u16string_view chars) {
        return OwnedText(DFDLUStringPooler_getDFDLUStringFromView(test.adapter, chars));
    }
    OwnedRecord record(int32_t day, int32_t hour, int32_t zone) {
        OwnedRecord made(new_DFDLCalendarImpl(test.adapter));
        DfdlCalendarImpl_setDate(made.get(), 2026, 10, day);
        DfdlCalendarImpl_setTime(made.get(), hour, 30, 0);
        made->timeZoneOffset = zone;
        made->hasTimeZone = 1;
        return made;
    }
};

TEST_F(LentCalendars, aTimeHasAPatternWithItsFractionAndZone) {
    struct Case {
        std::u16string_view text, pattern;
    };
    for (const Case& one : {Case{u"12:34:56", u"HH:mm:ss"}, Case{u"12:34:56.5", u"HH:mm:ss.S"},
                            Case{u"12:34:56.000125", u"HH:mm:ss.SSSSSS"}, Case{u"12:34:56.", u"HH:mm:ss"},
                            Case{u"12:34:56Z", u"HH:mm:ssZ"}, Case{u"12:34:56-01:30", u"HH:mm:ssZ"},
                            Case{u"12:34:56.25+01:00", u"HH:mm:ss.SSZ"}, Case{u"", u"HH:mm:ss"}}) {
        const OwnedText source = text(one.text);
        const OwnedText pattern(CalendarConverter_calculateICUTimePattern(source.get(), test.adapter));
        EXPECT_EQ(narrow(DFDLUString_view(pattern.get())), narrow(one.pattern)) << narrow(one.text);
    }
}

TEST_F(LentCalendars, areInTheOrderOfTheirMoments) {
    struct Case {
        OwnedRecord a, b;
        int32_t order;
    };
    const Case cases[] = {{record(23, 12, 0), record(23, 12, 0), 0},
                          {record(23, 12, 0), record(23, 14, 120), 0},
                          {record(23, 12, 0), record(23, 13, 120), 1},
                          {record(23, 23, -120), record(24, 0, 0), 1},
                          {record(22, 23, 0), record(23, 0, 0), -1}};
    UErrorCode status = U_ZERO_ERROR;
    for (const Case& one : cases) {
        const OwnedUCalendar a(DfdlCalendarImpl_getUCalendar(one.a.get(), &status));
        const OwnedUCalendar b(DfdlCalendarImpl_getUCalendar(one.b.get(), &status));
        EXPECT_EQ(CalendarConverter_CompareTo(a.get(), b.get()), one.order) << &one - cases;
        EXPECT_EQ(CalendarConverter_CompareTo(b.get(), a.get()), -one.order) << &one - cases;
    }
    const OwnedUCalendar good(DfdlCalendarImpl_getUCalendar(cases[0].a.get(), &status));
    EXPECT_EQ(dfdl_getTimeInMillis(good.get(), &status), 1795437000000.0) << "2026-11-23T12:30Z";
    const OwnedUCalendar wrong(ucal_clone(good.get(), &status));
    ucal_setAttribute(wrong.get(), UCAL_LENIENT, 0);
    ucal_set(wrong.get(), UCAL_MONTH, 13);
    EXPECT_EQ(CalendarConverter_CompareTo(good.get(), wrong.get()), CALENDARS_INCOMPARABLE);
    EXPECT_EQ(CalendarConverter_CompareTo(wrong.get(), good.get()), CALENDARS_INCOMPARABLE);
    EXPECT_EQ(dfdl_getTimeInMillis(wrong.get(), &status), 0.0);
    EXPECT_TRUE(U_FAILURE(status));
}

struct FormatCase {
    std::u16string_view pattern;
    int32_t day, hour, zone;
    std::u16string_view text;
};

// Zones that come, go and come again, by one format, which keeps the calendar of each.
constexpr FormatCase FORMATTED[] = {{u"yyyy-MM-dd'T'HH:mmxxx", 23, 7, 0, u"2026-11-23T07:30+00:00"},
                                    {u"yyyy-MM-dd'T'HH:mmxxx", 23, 7, 330, u"2026-11-23T07:30+05:30"},
                                    {u"yyyy-MM-dd'T'HH:mmxxx", 1, 0, -600, u"2026-11-01T00:30-10:00"},
                                    {u"yyyy-MM-dd'T'HH:mmxxx", 24, 23, 330, u"2026-11-24T23:30+05:30"},
                                    {u"yyyy-MM-dd'T'HH:mmxxx", 30, 12, 0, u"2026-11-30T12:30+00:00"}};

TEST_F(LentCalendars, areLentByAFormatForEachZone) {
    const Owned<TextCalendarFormatMgr, delete_TextCalendarFormatMgr> manager(
        new_TextCalendarFormatMgr(test.adapter));
    manager->currentYear = 2026;
    CalendarFormatTableRow row;
    const OwnedText zone = text(u"UTC");
    row.iCalendarTimeZone = zone.get();
    const OwnedText pattern = text(FORMATTED[0].pattern);
    TextCalendarFormatEntry* entry =
        TextCalendarFormatMgr_createCalendarFormatEntry(manager.get(), 0, pattern.get(), &row);
    ASSERT_NE(entry, nullptr);
    for (const FormatCase& one : FORMATTED) {
        UErrorCode status = U_ZERO_ERROR;
        const OwnedRecord value = record(one.day, one.hour, one.zone);
        UCalendar* calendar = TextCalendarFormatEntry_getUCalendar(entry, value.get());
        ASSERT_NE(calendar, nullptr);
        UChar written[64];
        const int32_t length = udat_formatCalendar(entry->format, calendar, written, 64, nullptr, &status);
        ASSERT_TRUE(U_SUCCESS(status));
        EXPECT_EQ(narrow({written, static_cast<size_t>(length)}), narrow(one.text));
        EXPECT_EQ(TextCalendarFormatEntry_getUCalendar(entry, value.get()), calendar) << "not kept";
    }
    EXPECT_EQ(ArrayList_size(entry->calendars), 3);
}

}  // namespace
