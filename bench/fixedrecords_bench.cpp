// Records of 100 bytes with twelve text fields, padded with blanks: what the parser takes for a field, beside
// a loop written by hand that cuts, trims and converts the same fields and makes the same three calls.
#include <array>

#include "parserbench.h"
#include "support/grammarbuilder.h"

namespace {

constexpr std::array<int32_t, 12> WIDTHS = {8, 10, 6, 12, 4, 9, 7, 11, 5, 10, 8, 10};
constexpr int32_t RECORDS = 20000;
constexpr int64_t FIELDS = static_cast<int64_t>(RECORDS) * WIDTHS.size();

std::string makeRecords() {
    std::string data;
    uint32_t state = 12345;
    for (int32_t record = 0; record < RECORDS; ++record) {
        for (const int32_t width : WIDTHS) {
            state = state * 1664525U + 1013904223U;
            const auto used = 1 + static_cast<int32_t>((state >> 16) % static_cast<uint32_t>(width));
            for (int32_t i = 0; i < width; ++i) {
                data.push_back(i < used ? static_cast<char>('A' + (state >> (i % 24)) % 26) : ' ');
            }
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
    for (size_t i = 0; i < WIDTHS.size(); ++i) {
        record.text("field" + std::to_string(i)).bytes(WIDTHS[i]).encoding("UTF-8").trimRight("%SP;");
    }
    return builder.load();
}

void fixedByHand(benchmark::State& state) {
    HandEvents events;
    for (auto step : state) {
        int64_t at = 0;
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(u"record", at);
            for (const int32_t width : WIDTHS) {
                const char* field = records().data() + at;
                events.field(u"field", field, field + width, at, u' ');
                at += width;
            }
            events.end(at);
        }
    }
    reportFields(state, FIELDS, records().size());
    keep(events.sink());
}

void fixedParse(benchmark::State& state, bool inBuffers) {
    benchParser(state, makeGrammar(), records(), FIELDS, inBuffers);
}

BENCHMARK(fixedByHand)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fixedParse, inPlace, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fixedParse, inBuffers, true)->Unit(benchmark::kMillisecond);

}  // namespace
