// Calendars that are read without ICU: each must be what ICU makes of the same text, and what ICU refuses
// must be refused.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/calendarformattable.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "support/testheap.h"

namespace {

using Text = Owned<DFDLUString, delete_DFDLUString>;
using OwnedCalendar = Owned<UCalendar, ucal_close>;
using Record = Owned<DFDLCalendarImpl, delete_DFDLCalendarImplFromUCalendar>;

// ICU takes some 20 microseconds for each; the environment asks for more.
int64_t rounds() {
    const char* const more = std::getenv("DFDL_TEST_ROUNDS");
    return more == nullptr ? 30000 : std::max<int64_t>(30000, std::atoll(more));
}

std::string show(const DFDLCalendarImpl* record) {
    if (record == nullptr) return "refused";
    std::string text;
    for (const int32_t field : {record->year, record->month, record->day, record->hour, record->minute,
                                record->second, record->microSecond}) {
        text += std::to_string(field) + ' ';
    }
    return record->hasTimeZone != 0 ? text + 'Z' + std::to_string(record->timeZoneOffset) : text;
}

class Chance {
  public:
    explicit Chance(uint32_t seed) : engine_(seed) {}

    int32_t below(int32_t bound) { return std::uniform_int_distribution<int32_t>(0, bound - 1)(engine_); }
    bool oneIn(int32_t bound) { return below(bound) == 0; }
    template <class T, size_t N>
    const T& of(const std::array<T, N>& choices) {
        return choices[static_cast<size_t>(below(static_cast<int32_t>(N)))];
    }

  private:
    std::mt19937 engine_;
};

std::u16string digits(int32_t value, size_t width) {
    std::string text = std::to_string(value);
    text.insert(0, text.size() < width ? width - text.size() : 0, '0');
    return {text.begin(), text.end()};
}

// A number around the bounds of a field, now and then a digit too few or too many.
std::u16string fieldText(Chance& chance, char16_t letter, size_t width) {
    static constexpr std::array<int32_t, 7> EDGES = {0, 1, 28, 29, 31, 59, 60};
    if (chance.oneIn(60)) width = static_cast<size_t>(1 + chance.below(5));
    switch (letter) {
        case u'y':
            return digits(width == 2        ? chance.below(100)
                          : chance.oneIn(4) ? chance.below(10000)
                                            : 1890 + chance.below(220),
                          width);
        case u'M':
            if (width == 3) {
                static constexpr std::array<std::u16string_view, 8> OTHERS = {
                    u"jan", u"MAR", u"March", u"Okt", u"Sept", u"ma", u"May.", u"1"};
                const auto month = static_cast<size_t>(chance.below(12)) * 3;
                return std::u16string(chance.oneIn(10) ? chance.of(OTHERS)
                                                       : PLAIN_CALENDAR_MONTHS.substr(month, 3));
            }
            return digits(chance.below(13) + (chance.oneIn(20) ? 1 : 0), width);
        case u'd':
            return digits(chance.oneIn(3) ? chance.of(EDGES) : 1 + chance.below(28), width);
        case u'H':
            return digits(chance.below(25), width);
        case u'S': {
            std::u16string text;
            for (size_t i = 0; i < width; ++i) text += static_cast<char16_t>(u'0' + chance.below(10));
            return text;
        }
        default:
            return digits(chance.below(61), width);
    }
}

std::u16string offsetText(Chance& chance) {
    if (chance.oneIn(8)) return u"Z";
    std::u16string text = chance.oneIn(2) ? u"+" : u"-";
    text += digits(chance.below(17), 2);
    if (!chance.oneIn(3)) text += u':';
    return chance.oneIn(10) ? text : text + digits(chance.below(chance.oneIn(10) ? 70 : 60), 2);
}

// One character that is another, missing, or doubled.
void damage(Chance& chance, std::u16string* text) {
    static constexpr std::u16string_view OTHERS = u"0123456789 -+:.,/TZx٣　";
    if (text->empty()) return;
    const auto at = static_cast<size_t>(chance.below(static_cast<int32_t>(text->size())));
    const char16_t other = OTHERS[static_cast<size_t>(chance.below(static_cast<int32_t>(OTHERS.size())))];
    switch (chance.below(3)) {
        case 0:
            (*text)[at] = other;
            break;
        case 1:
            text->erase(at, 1);
            break;
        default:
            text->insert(at, 1, other);
    }
}

std::u16string textOf(Chance& chance, std::u16string_view pattern) {
    std::u16string text;
    while (!pattern.empty()) {
        const char16_t c = pattern[0];
        const size_t width = std::min(pattern.find_first_not_of(c), pattern.size());
        if (c == u'\'') {
            text += pattern[1];
            pattern.remove_prefix(3);
            continue;
        }
        if (std::u16string_view(u"xXZ").find(c) != std::u16string_view::npos) {
            text += offsetText(chance);
        } else if ((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z')) {
            text += fieldText(chance, c == u'u' ? u'y' : c, width);
        } else {
            text.append(pattern.substr(0, width));
        }
        pattern.remove_prefix(width);
    }
    if (chance.oneIn(8)) damage(chance, &text);
    return text;
}

std::u16string patternOf(Chance& chance) {
    static constexpr std::array<std::u16string_view, 13> DATES = {
        u"dd/MMM/yyyy", u"MMM-dd-yy", u"ddMMMyyyy",  u"yyyy-MM-dd", u"yyyyMMdd", u"yyMMdd", u"dd.MM.yyyy",
        u"MM/dd/yy",    u"yyyy-MM",   u"uuuu-MM-dd", u"ddMMyyyy",   u"yyyy",     u""};
    static constexpr std::array<std::u16string_view, 7> MARKS = {u"'T'", u"'T'", u" ",    u":",
                                                                 u"",    u"--",  u",'T':"};
    static constexpr std::array<std::u16string_view, 8> TIMES = {
        u"HH:mm:ss", u"HHmmss", u"HH:mm", u"HH:mm:ss.SSS", u"HHmmssSSS", u"HH.mm.ss,S", u"HH:mm:ss.SS", u""};
    static constexpr std::array<std::u16string_view, 11> ZONES = {u"",    u"",   u"",   u"XXX",   u"XX", u"Z",
                                                                  u"xxx", u"xx", u" Z", u"ZZZZZ", u"XXX"};
    std::u16string pattern(chance.of(DATES));
    pattern += chance.of(MARKS);
    pattern += chance.of(TIMES);
    pattern += chance.of(ZONES);
    return pattern.empty() ? u"yyyy" : pattern;
}

// A region handler with what reading calendars takes.
class Rig {
  public:
    Rig() {
        handler_.heap = heap_.adapter;
        handler_.context = heap_.adapter->context;
        handler_.constants = constants_.get();
        handler_.textCalendarFormatMgr = manager_.get();
        format_.iCalendarUseZForUTC = NEVER;
        format_.iCalendarDaysInFirstWeek = 4;
        format_.iCalendarCenturyStart = 53;
        format_.iCalendarLanguage = language_.get();
        rep_.calendarFormatRow = &format_;
        rep_.calendarFormatRowIndex = 0;
        row_.simpleTypeKind = SIMPLE_DATETIME;
    }

    void useFormat(const std::u16string& pattern, const std::u16string& zone, bool strict, bool writesZ) {
        pattern_.reset(make(pattern));
        zone_.reset(make(zone));
        format_.iCalendarPattern = pattern_.get();
        format_.iCalendarTimeZone = zone_.get();
        format_.iCalendarStrictChecking = strict;
        format_.iCalendarUseZForUTC = writesZ ? ALWAYS : NEVER;
        TextCalendarFormatMgr_reset(manager_.get());
        ASSERT_TRUE(ParserRegionHandler_updateCalendarMgr(&handler_, &format_, 0, &row_));
    }
    TextCalendarFormatEntry* entry() { return TextCalendarFormatMgr_getEntry(manager_.get(), 0); }
    std::string read(const std::u16string& text) {
        const Text string(make(text));
        const Record record(
            ParserRegionHandler_createCalendarFromText(&handler_, &rep_, &row_, string.get()));
        ProcessingError_reset(heap_.adapter->context->currentError);
        return show(record.get());
    }
    DFDLHeapAdapter* heap() { return heap_.adapter; }
    DFDLUString* make(const std::u16string& text) {
        return new_DFDLUStringFromUChars(heap_.adapter, text.data(), static_cast<int32_t>(text.size()));
    }

  private:
    TestAdapter heap_;
    Owned<DFDLConstants, delete_DFDLConstants> constants_{new_DFDLConstants(heap_.adapter)};
    Owned<TextCalendarFormatMgr, delete_TextCalendarFormatMgr> manager_{
        new_TextCalendarFormatMgr(heap_.adapter)};
    ParserRegionHandler handler_{};
    Text language_{make(u"en")};
    Text pattern_;
    Text zone_;
    CalendarFormatTableRow format_;
    CalendarRepTableRow rep_;
    GroupMemberTableRow row_{};
};

// Whether the text is plain. Its bytes must be what its units are; they lie at the end of a block of their
// own, so that the sanitizer sees what is read behind them.
bool readsAlike(const PlainCalendar& road, const std::u16string& text) {
    std::vector<uint8_t> bytes;
    for (const char16_t unit : text) {
        if (unit >= 0x80) bytes.push_back(0xC3);
        bytes.push_back(static_cast<uint8_t>(unit));
    }
    int64_t ofUnits = 0;
    int64_t ofBytes = 0;
    const bool isPlain = PlainCalendar_read(&road, text, &ofUnits);
    EXPECT_EQ(isPlain, PlainCalendar_read(&road, std::span<const uint8_t>(bytes), &ofBytes));
    EXPECT_EQ(ofUnits, ofBytes);
    return isPlain;
}

TEST(PlainCalendar, ItsValuesAreThoseOfIcu) {
    const uint32_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Chance chance(seed);
    static constexpr std::array<std::u16string_view, 5> ROW_ZONES = {u"", u"UTC", u"UTC+05:30",
                                                                     u"America/New_York", u"GMT-03:00"};
    Rig rig;
    int64_t plain = 0;
    for (int64_t round = 0; round < rounds();) {
        const std::u16string pattern = patternOf(chance);
        const std::u16string zone(chance.of(ROW_ZONES));
        rig.useFormat(pattern, zone, chance.oneIn(2), chance.oneIn(3));
        PlainCalendar& road = rig.entry()->plain;
        for (int32_t i = 0; i < 200; ++i, ++round) {
            const std::u16string text = textOf(chance, pattern);
            if (readsAlike(road, text)) ++plain;
            const std::string ahead = rig.read(text);
            const int32_t width = std::exchange(road.width, 0);
            EXPECT_EQ(ahead, rig.read(text)) << std::string(pattern.begin(), pattern.end()) << ": "
                                             << std::string(text.begin(), text.end());
            road.width = width;
        }
        ASSERT_FALSE(::testing::Test::HasFailure());
    }
    EXPECT_GT(plain, rounds() / 4) << "the road is hardly taken";
}

TEST(PlainCalendar, StampsAreThoseOfIcu) {
    const uint32_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Chance chance(seed);
    Rig rig;
    int64_t plain = 0;
    for (int64_t round = 0; round < rounds(); ++round) {
        const bool timeOnly = chance.oneIn(3);
        const std::u16string text = textOf(chance, timeOnly          ? u"HH:mm:ss.SSSXXX"
                                                   : chance.oneIn(4) ? u"yyyy-MM'T'HHmmXXX"
                                                                     : u"yyyy-MM-dd'T'HH:mm:ssXXX");
        IsoStamp stamp;
        const bool isRead = timeOnly
                                ? CalendarConverter_readISO8601Time(text, &stamp)
                                : CalendarConverter_readISO8601String(text, false, chance.oneIn(2), &stamp);
        if (!isRead || !IsoStamp_findOffset(&stamp) || !CalendarFields_arePlain(&stamp.fields)) continue;
        ++plain;
        stamp.fields.hasZone = true;
        const Record ahead(CalendarFields_toCalendar(&stamp.fields, rig.heap()));
        const OwnedCalendar calendar(IsoStamp_toUCalendar(&stamp));
        ASSERT_NE(calendar, nullptr);
        const Record slow(new_DFDLCalendarImplFromUCalendar(rig.heap(), calendar.get()));
        ASSERT_EQ(show(ahead.get()), show(slow.get())) << std::string(text.begin(), text.end());
    }
    EXPECT_GT(plain, rounds() / 4) << "the road is hardly taken";
}

// Lines of "pattern|strict|text|fields".
TEST(TextCalendarFormats, GiveWhatPythonGives) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/parsers/calendars.txt");
    Rig rig;
    int lines = 0;
    for (std::string line; std::getline(file, line); ++lines) {
        std::istringstream cells(line);
        std::string pattern, policy, text, fields;
        std::getline(cells, pattern, '|');
        std::getline(cells, policy, '|');
        std::getline(cells, text, '|');
        std::getline(cells, fields);
        rig.useFormat({pattern.begin(), pattern.end()}, u"", policy == "strict", false);
        EXPECT_EQ(rig.read({text.begin(), text.end()}), fields) << line;
    }
    EXPECT_EQ(lines, 264);
}

}  // namespace
