// Records of fixed width whose fields are numbers and dates written as text: what the parser takes for a
// field, beside loops written by hand that read the same fields, one by std::from_chars and one by ICU.
#include <charconv>
#include <string_view>

#include "parserbench.h"
#include "support/grammarbuilder.h"

namespace {

constexpr int32_t RECORDS = 20000;

class Random {
  public:
    uint32_t below(uint32_t bound) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 8) % bound;
    }

  private:
    uint32_t state_ = 12345;
};

// ---- The record of texts with its numbers typed --------------------------------------------------------

struct Field {
    int32_t width;
    const char* kind;  // null: a text, padded with blanks behind; numbers are padded in front
};
constexpr Field FIELDS[] = {{8, "INT"},   {10, nullptr}, {6, "INT"},   {12, nullptr},
                            {4, "SHORT"}, {9, "INT"},    {7, nullptr}, {11, "LONG"},
                            {5, "INT"},   {10, nullptr}, {8, "INT"},   {10, "LONG"}};

std::string makeRecords() {
    std::string data;
    Random random;
    for (int32_t record = 0; record < RECORDS; ++record) {
        for (const Field& field : FIELDS) {
            const auto used = 1 + random.below(static_cast<uint32_t>(field.width) - 1);
            std::string text;
            for (uint32_t i = 0; i < used; ++i) {
                const char first = field.kind == nullptr ? 'A' : '1';
                text += static_cast<char>(first +
                                          static_cast<char>(random.below(field.kind == nullptr ? 26 : 9)));
            }
            if (field.kind != nullptr && used > 1 && random.below(5) == 0) text[0] = '-';
            if (std::string_view(field.kind == nullptr ? "" : field.kind) == "SHORT")
                text.resize(std::min<size_t>(text.size(), 3));
            const std::string blanks(static_cast<size_t>(field.width) - text.size(), ' ');
            data += field.kind == nullptr ? text + blanks : blanks + text;
        }
    }
    return data;
}

const std::string& records() {
    static const std::string data = makeRecords();
    return data;
}

DFDLGrammar* makeGrammar() {
    GrammarBuilder builder;
    auto file = builder.complexElement("file");
    auto record = file.complexElement("record").occurs(RECORDS, RECORDS).occursFixed();
    for (const Field& field : FIELDS) {
        if (field.kind == nullptr) {
            record.text("text").bytes(field.width).trimRight("%SP;");
        } else {
            record.textNumber("number", field.kind, "#0").bytes(field.width).trimLeft("%SP;");
        }
    }
    return builder.load();
}

template <class Number>
void numberByHand(HandEvents* events, const char* first, const char* last, int64_t at) {
    const int64_t end = at + (last - first);
    while (first < last && *first == ' ') ++first;
    Number value = 0;
    if (std::from_chars(first, last, value).ptr != last) std::abort();
    events->start(u"number", at);
    events->number(value);
    events->end(end);
}

void typedByHand(benchmark::State& state) {
    HandEvents events;
    for (auto step : state) {
        int64_t at = 0;
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(u"record", at);
            for (const Field& field : FIELDS) {
                const char* bytes = records().data() + at;
                const char* end = bytes + field.width;
                const std::string_view kind = field.kind == nullptr ? "" : field.kind;
                if (kind.empty()) {
                    events.field(u"text", bytes, end, at, u' ');
                } else if (kind == "INT") {
                    numberByHand<int32_t>(&events, bytes, end, at);
                } else if (kind == "LONG") {
                    numberByHand<int64_t>(&events, bytes, end, at);
                } else {
                    numberByHand<int16_t>(&events, bytes, end, at);
                }
                at += field.width;
            }
            events.end(at);
        }
    }
    reportFields(state, RECORDS * std::ssize(FIELDS), records().size());
    keep(events.sink());
}

// The loop that converts all fields to strings, as for records of texts.
void typedByHandAsText(benchmark::State& state) {
    HandEvents events;
    for (auto step : state) {
        int64_t at = 0;
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(u"record", at);
            for (const Field& field : FIELDS) {
                const char* bytes = records().data() + at;
                events.field(u"field", bytes, bytes + field.width, at, u' ');
                at += field.width;
            }
            events.end(at);
        }
    }
    reportFields(state, RECORDS * std::ssize(FIELDS), records().size());
    keep(events.sink());
}

void typedParse(benchmark::State& state, bool inBuffers) {
    benchParser(state, makeGrammar(), records(), RECORDS * std::ssize(FIELDS), inBuffers);
}

// ---- Four dates ----------------------------------------------------------------------------------------

struct DateField {
    const char* pattern;
    int32_t width;
    int32_t year, month, day;  // where their digits begin
};
constexpr DateField DATES[] = {{"yyyyMMdd", 8, 0, 4, 6},
                               {"yyyy-MM-dd", 10, 0, 5, 8},
                               {"dd/MM/yyyy", 10, 6, 3, 0},
                               {"yyyyMMdd", 8, 0, 4, 6}};

void putDigits(std::string* data, size_t at, int32_t count, uint32_t value) {
    for (int32_t i = count - 1; i >= 0; --i, value /= 10)
        (*data)[at + static_cast<size_t>(i)] = static_cast<char>('0' + value % 10);
}

std::string makeDates() {
    std::string data;
    Random random;
    for (int32_t record = 0; record < RECORDS; ++record) {
        for (const DateField& field : DATES) {
            const size_t at = data.size();
            data += field.pattern;
            putDigits(&data, at + static_cast<size_t>(field.year), 4, 1900 + random.below(200));
            putDigits(&data, at + static_cast<size_t>(field.month), 2, 1 + random.below(12));
            putDigits(&data, at + static_cast<size_t>(field.day), 2, 1 + random.below(28));
        }
    }
    return data;
}

const std::string& dates() {
    static const std::string data = makeDates();
    return data;
}

DFDLGrammar* makeDateGrammar() {
    GrammarBuilder builder;
    auto file = builder.complexElement("file");
    auto record = file.complexElement("record").occurs(RECORDS, RECORDS).occursFixed();
    for (const DateField& field : DATES)
        record.textCalendar("date", "DATE", field.pattern).bytes(field.width);
    return builder.load();
}

int32_t takeDigits(const char* first, int32_t count) {
    int32_t value = 0;
    if (std::from_chars(first, first + count, value).ptr != first + count) std::abort();
    return value;
}

void datesByHand(benchmark::State& state) {
    HandEvents events;
    DFDLCalendar* calendar = new_DFDLCalendar();
    for (auto step : state) {
        int64_t at = 0;
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(u"record", at);
            for (const DateField& field : DATES) {
                const char* bytes = dates().data() + at;
                const int32_t month = takeDigits(bytes + field.month, 2);
                const int32_t day = takeDigits(bytes + field.day, 2);
                if (month < 1 || month > 12 || day < 1 || day > 31) std::abort();
                DfdlCalendar_setDate(calendar, takeDigits(bytes + field.year, 4), month - 1, day);
                events.start(u"date", at);
                events.calendar(calendar);
                at += field.width;
                events.end(at);
            }
            events.end(at);
        }
    }
    delete_DFDLCalendar(calendar);
    reportFields(state, RECORDS * std::ssize(DATES), dates().size());
    keep(events.sink());
}

void datesParse(benchmark::State& state, bool inBuffers) {
    benchParser(state, makeDateGrammar(), dates(), RECORDS * std::ssize(DATES), inBuffers);
}

BENCHMARK(datesByHand)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(datesParse, inPlace, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(datesParse, inBuffers, true)->Unit(benchmark::kMillisecond);
BENCHMARK(typedByHand)->Unit(benchmark::kMillisecond);
BENCHMARK(typedByHandAsText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typedParse, inPlace, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typedParse, inBuffers, true)->Unit(benchmark::kMillisecond);

}  // namespace
