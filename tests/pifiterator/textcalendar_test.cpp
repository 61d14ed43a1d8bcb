// Calendars that are texts or packed digits, on the walk.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using namespace std::string_literals;
using Enums = PIF::MPIFEnums;
using Format = PIF::MCalendarFormatTableRow;
using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Strings = std::vector<std::string>;

void asItIs(Format&) {}
void lax(Format& format) { format.set_icalendarstrictchecking(false); }
void zForUtc(Format& format) { format.set_icalendarusezforutc(Enums::ALWAYS); }
void laxInIndia(Format& format) {
    lax(format);
    format.set_icalendartimezone("UTC+05:30");
}
void newYork(Format& format) { format.set_icalendartimezone("America/New_York"); }
void newYorkInSummer(Format& format) {
    newYork(format);
    format.set_icalendarobservedst(true);
}
void farEast(Format& format) { format.set_icalendartimezone("GMT+15:00"); }
void german(Format& format) { format.set_icalendarlanguage("de"); }
void noLanguage(Format& format) { format.set_icalendarlanguage("!!"); }
void weeksFromSunday(Format& format) {
    format.set_icalendarfirstdayofweek(Enums::SUNDAY);
    format.set_icalendardaysinfirstweek(1);
}

struct Case {
    const char* fault;
    const char* kind;
    const char* pattern;
    void (*tune)(Format&);
    const char* text;
    const char* outcome;  // a stamp, or the code of an error
};

constexpr char STAMP[] = "yyyy-MM-dd'T'HH:mm:ss";
constexpr char REFUSED[] = "CTDP3029E";
constexpr char OUT_OF_ZONES[] = "CTDP3032E";

const Case CASES[] = {
    {"digits alone", "DATETIME", "yyyyMMddHHmmss", asItIs, "20261123051500", "2026-11-23T05:15:00"},
    {"dates", "DATE", "yyyy-MM-dd", asItIs, "2026-11-23", "2026-11-23T00:00:00"},
    {"times", "TIME", "HH:mm:ss.SSS", asItIs, "23:59:58.125", "1970-01-01T23:59:58.125000"},
    {"a zone of the text", "DATETIME", "yyyy-MM-dd'T'HH:mm:ssXXX", asItIs, "2026-11-23T12:00:00+05:30",
     "2026-11-23T12:00:00+05:30"},
    {"names of months", "DATETIME", "dd/MMM/yyyy:HH:mm:ss Z", asItIs, "10/Oct/2000:13:55:36 -0700",
     "2000-10-10T13:55:36-07:00"},
    {"a zone beside the row's", "DATETIME", "dd/MMM/yyyy:HH:mm:ss Z", newYork, "10/Oct/2000:13:55:36 -0700",
     "2000-10-10T13:55:36-07:00"},
    {"names of another language", "DATE", "d. MMMM yyyy", german, "3. Oktober 1990", "1990-10-03T00:00:00"},
    {"a language that is none", "DATE", "yyyy", noLanguage, "1990", "CTDP3027E"},
    {"a letter that means nothing", "DATE", "yyyy-II", asItIs, "1990-10", REFUSED},
    {"the row's zone, in winter", "DATETIME", STAMP, newYork, "2026-01-15T12:00:00",
     "2026-01-15T12:00:00-05:00"},
    {"the row's zone, in summer", "DATETIME", STAMP, newYork, "2026-07-15T12:00:00",
     "2026-07-15T12:00:00-05:00"},
    {"an hour that summer time skips, without it", "DATETIME", STAMP, newYork, "2026-03-08T02:30:00",
     "2026-03-08T02:30:00-05:00"},
    {"an hour that summer time skips", "DATETIME", STAMP, newYorkInSummer, "2026-03-08T02:30:00", REFUSED},
    {"the row's offset", "DATETIME", STAMP, laxInIndia, "2026-11-23T12:00:00", "2026-11-23T12:00:00+05:30"},
    {"Z for an offset", "DATETIME", "yyyy-MM-dd'T'HH:mm:ssU", zForUtc, "2026-11-23T12:00:00Z",
     "2026-11-23T12:00:00+00:00"},
    {"an offset where Z may stand", "DATETIME", "yyyy-MM-dd'T'HH:mm:ssU", zForUtc,
     "2026-11-23T12:00:00-08:00", "2026-11-23T12:00:00-08:00"},
    {"winter time in summer", "DATETIME", "yyyyMMddHHmmss z", asItIs, "20260715120000 PST",
     "2026-07-15T12:00:00-08:00"},
    {"summer time by its name", "DATETIME", "yyyyMMddHHmmss z", asItIs, "20260715120000 PDT",
     "2026-07-15T12:00:00-07:00"},
    // Years.
    {"a year before 1000", "DATE", "yyyy-MM-dd", asItIs, "0476-09-04", "0476-09-04T00:00:00"},
    {"a year after 9999", "DATE", "yyyyy-MM-dd", asItIs, "12026-09-04", "12026-09-04T00:00:00"},
    {"the year 0, strictly", "DATE", "yyyy-MM-dd", asItIs, "0000-09-04", REFUSED},
    {"the year 0", "DATE", "yyyy-MM-dd", lax, "0000-09-04", "-001-09-04T00:00:00"},
    {"a leap day", "DATE", "yyyyMMdd", asItIs, "20240229", "2024-02-29T00:00:00"},
    {"a leap day of no leap year, strictly", "DATE", "yyyyMMdd", asItIs, "20230229", REFUSED},
    {"a leap day of no leap year", "DATE", "yyyyMMdd", lax, "20230229", "2023-03-01T00:00:00"},
    {"a leap day of 1900, strictly", "DATE", "yyyyMMdd", asItIs, "19000229", REFUSED},
    {"a leap day of 2000", "DATE", "yyyyMMdd", asItIs, "20000229", "2000-02-29T00:00:00"},
    {"a leap day of the Julian calendar", "DATE", "yyyyMMdd", asItIs, "15000229", "1500-02-29T00:00:00"},
    {"month 13, strictly", "DATE", "yyyyMMdd", asItIs, "20231301", REFUSED},
    {"month 13", "DATE", "yyyyMMdd", lax, "20231301", "2024-01-01T00:00:00"},
    {"hour 24, strictly", "DATETIME", STAMP, asItIs, "2023-12-31T24:00:00", REFUSED},
    {"hour 24", "DATETIME", STAMP, lax, "2023-12-31T24:00:00", "2024-01-01T00:00:00"},
    {"second 60", "TIME", "HHmmss", lax, "235960", "1970-01-02T00:00:00"},
    {"days of a week of the year", "DATE", "YYYY-'W'ww-e", weeksFromSunday, "2026-W01-1",
     "2025-12-28T00:00:00"},
    // Zones.
    {"14 hours", "TIME", "HHmmssXXX", asItIs, "120000+14:00", "1970-01-01T12:00:00+14:00"},
    {"14 hours and a minute", "TIME", "HHmmssXXX", asItIs, "120000+14:01", OUT_OF_ZONES},
    {"14 hours to the west", "TIME", "HHmmssXXX", asItIs, "120000-14:00", "1970-01-01T12:00:00-14:00"},
    {"a row's zone beyond 14 hours", "TIME", "HHmmss", farEast, "120000", OUT_OF_ZONES},
    {"more to the west", "TIME", "HHmmssXXX", asItIs, "120000-14:01", OUT_OF_ZONES},
    // Stamps of ISO 8601.
    {"a stamp", "DATETIME", "I", asItIs, "2026-11-23T12:34:56", "2026-11-23T12:34:56"},
    {"a stamp in UTC", "DATETIME", "IU", zForUtc, "2026-11-23T12:34:56Z", "2026-11-23T12:34:56+00:00"},
    {"a stamp's fraction", "DATETIME", "IU", asItIs, "2026-11-23T12:34:56,5Z",
     "2026-11-23T12:34:56.500000+00:00"},
    {"the minutes of a stamp's offset", "DATETIME", "IU", asItIs, "2026-11-23T12:34:56+05:30",
     "2026-11-23T12:34:56+05:00"},
    {"the minutes of a time's offset", "TIME", "IU", asItIs, "12:34:56+05:30", "1970-01-01T12:34:56+05:30"},
    {"half an hour", "DATETIME", "I", asItIs, "2026-11-23T12.5", "2026-11-23T12:30:00"},
    {"a stamp without colons", "DATETIME", "I", asItIs, "2026-11-23T123456Z", "2026-11-23T12:34:56+00:00"},
    {"an hour and Z", "DATETIME", "I", asItIs, "2026-11-23T12Z", REFUSED},
    {"a time without colons", "TIME", "I", asItIs, "123456", REFUSED},
    {"a time behind T in a date", "DATE", "I", asItIs, "2026-11-23T12:34:56", REFUSED},
    {"a date alone", "DATE", "I", asItIs, "2026-11-23", "2026-11-23T00:00:00"},
    {"a month alone", "DATE", "I", asItIs, "2026-11", "2026-11-01T00:00:00"},
    {"a week", "DATE", "I", asItIs, "2026-W48", REFUSED},
    {"February 30, strictly", "DATE", "I", asItIs, "2023-02-30", REFUSED},
    {"February 30", "DATE", "I", lax, "2023-02-30", "2023-03-02T00:00:00"},
    {"something behind a zone", "DATETIME", "I", asItIs, "2026-11-23T12:34:56Z0", REFUSED},
    {"an offset of a stamp beyond 14 hours", "DATETIME", "I", asItIs, "2026-11-23T12:34:56+15:00",
     OUT_OF_ZONES},
    {"the row's zone on a stamp without one", "DATETIME", "I", newYork, "2026-07-15T12:00:00",
     "2026-07-15T12:00:00-05:00"},
    {"the row's offset on a time without one", "TIME", "I", laxInIndia, "12:00:00",
     "1970-01-01T12:00:00+05:30"},
};

Grammar load(const Case& entry) {
    GrammarBuilder builder;
    GrammarHandle root = builder.complexElement("r");
    GrammarHandle element = root.sequence().textCalendar("t", entry.kind, entry.pattern).endOfParent();
    entry.tune(element.calendarRow());
    return {builder.load(), delete_DFDLGrammar};
}

std::string outcomeOf(const ParserRun& run) {
    const Strings codes = run.codes();
    if (!codes.empty()) return codes.front();
    const Strings values = run.values();
    return values.size() == 1 ? values[0].substr(2) : std::to_string(values.size()) + " values";
}

TEST(TextCalendar, TextsAreReadAsTheirPatternSays) {
    for (const Case& entry : CASES) {
        SCOPED_TRACE(entry.fault);
        const Grammar grammar = load(entry);
        ASSERT_NE(grammar, nullptr);
        EXPECT_EQ(outcomeOf(runEverywhere(grammar.get(), u"r", entry.text)), entry.outcome);
    }
}

// Of the hundred years of two digits, the first is the youngest that ends in the century's start and is not
// yet to come.
TEST(TextCalendar, YearsOfTwoDigitsLieAroundTheCenturyStart) {
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    const int now = static_cast<int>(std::chrono::year_month_day(today).year());
    const int first = now - ((now - 53) % 100);
    for (const char* pattern : {"yyMMdd", "yy-M-d"}) {
        const Case entry{"", "DATE", pattern, asItIs, "", ""};
        const Grammar grammar = load(entry);
        for (const int year : {first, first + 1, first + 46, first + 47, first + 99}) {
            char text[16];
            const bool isDigits = pattern[2] == 'M';
            std::snprintf(text, sizeof text, isDigits ? "%02d0704" : "%02d-7-4", year % 100);
            EXPECT_EQ(outcomeOf(runEverywhere(grammar.get(), u"r", text)),
                      std::to_string(year) + "-07-04T00:00:00")
                << pattern << ' ' << text;
        }
    }
}

TEST(TextCalendar, ARefusedTextTellsWhatAndWhere) {
    const struct {
        const char* pattern;
        void (*tune)(Format&);
        const char* text;
        const char* place;
    } REFUSALS[] = {
        {"dd/MMM/yyyy", asItIs, "10/Okt/2000", "4"},  {"yyyy-MM-dd", asItIs, "2000-1o-10", "7"},
        {"yyyy-MM-dd", asItIs, "2000-10-10 ", "11"},  {"XXX'Z'yyyy-MM", zForUtc, "Z2000-10x", "2"},
        {"XXX yyyy-MM", zForUtc, "Z 2000-10x", "10"},
    };
    for (const auto& refusal : REFUSALS) {
        const Case entry{"", "DATE", refusal.pattern, refusal.tune, "", ""};
        const Grammar grammar = load(entry);
        const ParserRun run = runEverywhere(grammar.get(), u"r", refusal.text);
        ASSERT_FALSE(run.diagnostics.empty()) << refusal.text;
        EXPECT_EQ(run.diagnostics[0], "CTDP3029E: Element t: '"s + refusal.text +
                                          "' does not fit the calendar pattern '" + refusal.pattern +
                                          "'; reading stopped at character " + refusal.place + ".");
    }
}

TEST(TextCalendar, ARefusedZoneIsNamed) {
    const struct {
        const char* kind;
        const char* pattern;
        void (*tune)(Format&);
        const char* text;
        const char* zone;
    } REFUSALS[] = {
        {"TIME", "HHmmssXXX", asItIs, "120000+14:01", "GMT+14:01"},
        {"TIME", "HHmmssXXX", newYork, "120000-23:59", "GMT-23:59"},
        {"TIME", "HHmmssXXXXX", asItIs, "120000+01:00:30", "GMT+01:00:30"},
        {"DATE", "yyyy", farEast, "2026", "GMT+15:00"},
        {"DATETIME", "I", asItIs, "2026-11-23T12:34:56-15:00", "GMT-15:00"},
    };
    for (const auto& refusal : REFUSALS) {
        const Case entry{"", refusal.kind, refusal.pattern, refusal.tune, "", ""};
        const Grammar grammar = load(entry);
        const ParserRun run = runEverywhere(grammar.get(), u"r", refusal.text);
        EXPECT_EQ(run.diagnostics,
                  Strings{"CTDP3032E: Element t: the time zone "s + refusal.zone +
                          " is out of range; an offset of whole minutes, at most 14 hours either way, was "
                          "expected."})
            << refusal.text;
    }
}

// Making a format sets the default zone of the process, under which nobody's texts are read, and asks for the
// year that all share. Each grammar serves two parsers at once.
TEST(TextCalendar, ZonesOfOtherThreadsAreTheirOwn) {
    const Case entries[] = {
        {"", "DATETIME", STAMP, newYorkInSummer, "2026-07-15T12:00:00", "2026-07-15T12:00:00-05:00"},
        {"", "DATETIME", STAMP, asItIs, "2026-07-15T12:00:00", "2026-07-15T12:00:00"},
        {"", "DATE", "yy-MM-dd", newYork, "99-12-31", "1999-12-31T00:00:00-05:00"},
        {"", "DATETIME", "yyyyMMddHHmmss z", asItIs, "20260715120000 PST", "2026-07-15T12:00:00-08:00"},
        {"", "TIME", "I", laxInIndia, "12:00:00", "1970-01-01T12:00:00+05:30"}};
    std::vector<Grammar> grammars;
    for (const Case& entry : entries) grammars.push_back(load(entry));
    std::vector<std::thread> threads;
    for (size_t i = 0; i < 2 * grammars.size(); ++i) {
        threads.emplace_back([&entry = entries[i / 2], grammar = grammars[i / 2].get()] {
            for (int round = 0; round < 20; ++round) {
                EXPECT_EQ(outcomeOf(runParser(grammar, u"r", entry.text)), entry.outcome);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

struct DigitCase {
    const char* fault;
    Enums::MBinaryNumberRepEnum representation;
    bool isLittle;
    const char* pattern;
    std::string bytes;
    const char* outcome;
};

const DigitCase DIGITS[] = {
    {"BCD", Enums::BCD, false, "yyyyMMdd", "\x20\x26\x11\x23"s, "2026-11-23T00:00:00"},
    {"BCD from its end", Enums::BCD, true, "yyyyMMdd", "\x23\x11\x26\x20"s, "2026-11-23T00:00:00"},
    {"BCD of other digits", Enums::BCD, false, "yyyyMMdd", "\x20\x26\x1A\x23"s, "CTDP3083E"},
    {"a filler takes no place", Enums::ZOV4690_PACKED, false, "yMMdd", "\xF2\x02\x61\x12\x33"s, "CTDP3029E"},
    {"the 4690's digits", Enums::ZOV4690_PACKED, false, "yyyyDDD", "\xF2\x02\x63\x27"s,
     "2026-11-23T00:00:00"},
    {"the 4690's sign", Enums::ZOV4690_PACKED, false, "'-'yyyyDDD", "\xD2\x02\x63\x27"s,
     "2026-11-23T00:00:00"},
    {"a sign behind a filler", Enums::ZOV4690_PACKED, true, "'-'yyyyMMdd", "\x23\x11\x26\x20\xFD"s,
     "2026-11-23T00:00:00"},
    {"a digit that is none in front", Enums::ZOV4690_PACKED, false, "yyyyDDD", "\xA2\x02\x63\x27"s,
     "CTDP3083E"},
    {"IBM's packed digits have no text", Enums::PACKED, false, "yyyyDDD", "\x20\x26\x32\x7C"s, "CTDP3115E"},
};

TEST(BinaryCalendar, PackedDigitsAreReadAsTheirTextIs) {
    for (const DigitCase& entry : DIGITS) {
        SCOPED_TRACE(entry.fault);
        GrammarBuilder builder;
        const GrammarHandle root = builder.complexElement("r");
        const auto length = static_cast<int32_t>(entry.bytes.size());
        GrammarHandle(root)
            .sequence()
            .packedCalendar("t", "DATE", entry.pattern, entry.representation, entry.isLittle)
            .bytes(length);
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(grammar, nullptr);
        EXPECT_EQ(outcomeOf(runEverywhere(grammar.get(), u"r", entry.bytes)), entry.outcome);
    }
}

}  // namespace
