#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using String = Owned<DFDLUString, delete_DFDLUString>;

struct NumbersTest : ::testing::Test {
    TestAdapter test;
    DFDLHeapAdapter* heap = test.adapter;

    template <class Read>
    auto read(Read function, const std::u16string& text, UErrorCode* status) {
        const String s(new_DFDLUStringFromUChars(heap, text.data(), static_cast<int32_t>(text.size())));
        *status = U_PARSE_ERROR;
        return function(s.get(), status);
    }
    std::u16string written(DFDLUString* string) {
        const String owned(string);
        return std::u16string(DFDLUString_view(string));
    }
    template <class Read, class Value>
    void expectRead(Read function, const std::u16string& text, Value value, bool wellFormed) {
        UErrorCode status;
        EXPECT_EQ(read(function, text, &status), value) << testing::PrintToString(text);
        EXPECT_EQ(status, wellFormed ? U_ZERO_ERROR : U_INVALID_FORMAT_ERROR) << testing::PrintToString(text);
    }
};

TEST_F(NumbersTest, integersAtTheirBounds) {
    struct Case {
        const char16_t* text;
        bool fitsShort, fitsUnsignedShort, fitsSigned, fitsUnsigned;
        int64_t value;
    };
    for (const Case& c : {Case{u"0", true, true, true, true, 0},
                          Case{u"-0", true, true, true, true, 0},
                          Case{u" +7\n", true, true, true, true, 7},
                          Case{u"00000000000000000000012", true, true, true, true, 12},
                          Case{u"-1", true, false, true, false, -1},
                          Case{u"32767", true, true, true, true, 32767},
                          Case{u"32768", false, true, true, true, 32768},
                          Case{u"-32768", true, false, true, false, -32768},
                          Case{u"-32769", false, false, true, false, -32769},
                          Case{u"65536", false, false, true, true, 65536},
                          Case{u"9223372036854775807", false, false, true, true, INT64_MAX},
                          Case{u"9223372036854775808", false, false, false, true, INT64_MIN},
                          Case{u"-9223372036854775808", false, false, true, false, INT64_MIN},
                          Case{u"-9223372036854775809", false, false, false, false, 0},
                          Case{u"18446744073709551615", false, false, false, true, -1},
                          Case{u"18446744073709551616", false, false, false, false, 0},
                          Case{u"", false, false, false, false, 0},
                          Case{u"+", false, false, false, false, 0},
                          Case{u"--1", false, false, false, false, 0},
                          Case{u"1 2", false, false, false, false, 0},
                          Case{u"1.0", false, false, false, false, 0},
                          Case{u"\u0661", false, false, false, false, 0}}) {
        const auto unsignedValue = static_cast<uint64_t>(c.value);
        expectRead(DFDLUString_toShort, c.text, c.fitsShort ? c.value : 0, c.fitsShort);
        expectRead(DFDLUString_toUnsignedShort, c.text, c.fitsUnsignedShort ? c.value : 0,
                   c.fitsUnsignedShort);
        expectRead(DFDLUString_toSignedQValue, c.text, c.fitsSigned ? c.value : 0, c.fitsSigned);
        expectRead(DFDLUString_toUnsignedQValue, c.text, c.fitsUnsigned ? unsignedValue : 0U, c.fitsUnsigned);
    }
    expectRead(DFDLUString_toInt, u"2147483648", 0, false);
    expectRead(DFDLUString_toUnsignedInt, u"4294967295", UINT32_MAX, true);
    UErrorCode status;
    EXPECT_EQ(DFDLUString_toInt(nullptr, &status), 0);
    EXPECT_EQ(status, U_INVALID_FORMAT_ERROR);
}

TEST_F(NumbersTest, booleans) {
    expectRead(DFDLUString_toBoolean, u"true", true, true);
    expectRead(DFDLUString_toBoolean, u" 1 ", true, true);
    expectRead(DFDLUString_toBoolean, u"false", false, true);
    expectRead(DFDLUString_toBoolean, u"0", false, true);
    expectRead(DFDLUString_toBoolean, u"TRUE", false, false);
    expectRead(DFDLUString_toBoolean, u"", false, false);
}

TEST_F(NumbersTest, doublesRead) {
    const std::u16string zeros(2000, u'0');
    struct Case {
        std::u16string text;
        double value;
    };
    for (const Case& c : {Case{u"1", 1}, Case{u"-1.5E2", -150}, Case{u".5", 0.5}, Case{u"5.", 5},
                          Case{u"+12e-1", 1.2}, Case{u" 1\t", 1}, Case{u"-INF", -HUGE_VAL},
                          Case{u"INF", HUGE_VAL}, Case{u"1.7976931348623157e308", 1.7976931348623157e308},
                          Case{u"5e-324", 5e-324}, Case{u"1e-400", 0}, Case{u"1e-99999999999999999999", 0},
                          Case{u"0e99999999999999999999", 0}, Case{u"0." + zeros + u"1e2001", 1},
                          Case{u"1" + zeros + u"e-2000", 1}, Case{u"9007199254740993", 9007199254740992.0},
                          // Halfway between two doubles but for a digit far behind.
                          Case{u"9007199254740993." + zeros + u"1", 9007199254740994.0}}) {
        expectRead(DFDLUString_toDouble, c.text, c.value, true);
    }
    for (const char16_t* text : {u"", u".", u"e5", u"1e", u"1e+", u"1x", u"0x10", u"1,5", u"1e309", u"-1e309",
                                 u"1e99999999999999999999", u"inf", u"nan", u"--1", u"1 1", u"+NaN"}) {
        expectRead(DFDLUString_toDouble, text, 0.0, false);
    }
    expectRead(DFDLUString_toFloat, u"16777217", 16777216.0F, true);
    expectRead(DFDLUString_toFloat, u"1e39", 0.0F, false);
    expectRead(DFDLUString_toFloat, u"1e-60", 0.0F, true);
    UErrorCode status;
    EXPECT_TRUE(std::isnan(read(DFDLUString_toDouble, u"NaN", &status)));
    EXPECT_TRUE(std::signbit(read(DFDLUString_toDouble, u"-0", &status)));
}

TEST_F(NumbersTest, realsWritten) {
    struct Case {
        double value;
        const char16_t* text;
    };
    for (const Case& c :
         {Case{0, u"0"}, Case{-0.0, u"-0"}, Case{1, u"1"}, Case{-1.5, u"-1.5"}, Case{100, u"100"},
          Case{0.000001, u"0.000001"}, Case{0.00000099, u"9.9E-7"}, Case{999999.5, u"999999.5"},
          Case{1000000, u"1.0E6"}, Case{123456789, u"1.23456789E8"}, Case{1e300, u"1.0E300"},
          Case{0.1, u"0.1"}, Case{5e-324, u"5.0E-324"}, Case{HUGE_VAL, u"INF"}, Case{-HUGE_VAL, u"-INF"},
          Case{std::numeric_limits<double>::quiet_NaN(), u"NaN"}}) {
        EXPECT_EQ(written(new_DFDLUString_fromDouble(heap, c.value)), c.text);
    }
    EXPECT_EQ(written(new_DFDLUString_fromFloat(heap, 0.1F)), u"0.1") << "digits of a float, not of a double";
    EXPECT_EQ(written(new_DFDLUString_fromFloat(heap, 3.4028235e38F)), u"3.4028235E38");
}

TEST_F(NumbersTest, whatIsWrittenReadsBackTheSame) {
    std::mt19937_64 random(20240229);
    for (int i = 0; i < 20000; ++i) {
        const uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isnan(value)) continue;
        const auto narrow = static_cast<float>(random()) / 3.0F;
        expectRead(DFDLUString_toDouble, written(new_DFDLUString_fromDouble(heap, value)), value, true);
        expectRead(DFDLUString_toFloat, written(new_DFDLUString_fromFloat(heap, narrow)), narrow, true);
        if (HasFailure()) break;
    }
}

TEST_F(NumbersTest, otherValuesWritten) {
    const uint8_t bytes[] = {0x0F, 0xA5};
    EXPECT_EQ(written(new_DFDLUString_fromSignedQValue(heap, INT64_MIN)), u"-9223372036854775808");
    EXPECT_EQ(written(new_DFDLUString_fromUnsignedQValue(heap, UINT64_MAX)), u"18446744073709551615");
    EXPECT_EQ(written(new_DFDLUString_fromBoolean(heap, true)), u"true");
    EXPECT_EQ(written(new_DFDLUString_fromHexBinary(heap, bytes, 2)), u"0FA5");
    EXPECT_EQ(written(new_DFDLUString_fromHexBinary(heap, nullptr, 0)), u"");
    EXPECT_EQ(written(new_DFDLUString_fromBinaryBits(heap, bytes, 7, 5)), u"1111010");
}

TEST_F(NumbersTest, calendarsWritten) {
    struct Case {
        DFDLCalendarImpl calendar;
        bool zone;
        const char16_t *date, *time, *whole;
    };
    for (const Case& c : {Case{{nullptr, 2024, 1, 29, 7, 5, 9, 0, 0, 1, 1, 1, 0},
                               false,
                               u"2024-02-29",
                               u"07:05:09",
                               u"2024-02-29T07:05:09"},
                          Case{{nullptr, -44, 2, 15, 23, 59, 59, 120000, 330, 1, 1, 1, 1},
                               true,
                               u"-0044-03-15+05:30",
                               u"23:59:59.12+05:30",
                               u"-0044-03-15T23:59:59.12+05:30"},
                          Case{{nullptr, 12345, 11, 31, 0, 0, 0, 1, -90, 1, 1, 1, 1},
                               true,
                               u"12345-12-31-01:30",
                               u"00:00:00.000001-01:30",
                               u"12345-12-31T00:00:00.000001-01:30"},
                          Case{{nullptr, 1, 0, 1, 0, 0, 0, 999, 0, 1, 1, 0, 1},
                               true,
                               u"0001-01-01Z",
                               u"00:00:00Z",
                               u"0001-01-01T00:00:00Z"}}) {
        EXPECT_EQ(written(new_DFDLUString_fromDate(heap, &c.calendar, c.zone)), c.date);
        EXPECT_EQ(written(new_DFDLUString_fromTime(heap, &c.calendar, c.zone)), c.time);
        EXPECT_EQ(written(new_DFDLUString_fromDateTime(heap, &c.calendar, c.zone)), c.whole);
        EXPECT_EQ(written(new_DFDLUString_fromCalendar(heap, &c.calendar, c.zone)), c.whole);
    }
    const DFDLCalendarImpl timeOnly = {nullptr, 0, 0, 0, 1, 2, 3, 0, 0, 0, 1, 0, 0};
    EXPECT_EQ(written(new_DFDLUString_fromCalendar(heap, &timeOnly, false)), u"01:02:03");
}

}  // namespace
