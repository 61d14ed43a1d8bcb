// Fields found by their delimiters: the Unicode database, 15 fields a line, and CSV with a tenth of its
// fields in quotation marks. The parser stands beside a loop by hand that looks at byte after byte, converts
// each field with ICU and makes the same calls, and beside libcsv, which delivers bytes and makes one call a
// field.
#include <csv.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>

#include "parserbench.h"
#include "support/grammarbuilder.h"

namespace {

constexpr const char* DATABASE = "/usr/share/unicode/UnicodeData.txt";
constexpr int32_t DATABASE_FIELDS = 15;
constexpr int32_t CSV_FIELDS = 8;

// Mebibytes of data; DFDL_BENCH_MIB for a profiler, under which everything takes fifty times as long.
size_t wantedBytes() {
    const char* mebibytes = std::getenv("DFDL_BENCH_MIB");
    return static_cast<size_t>(mebibytes == nullptr ? 64 : std::max(1, std::atoi(mebibytes))) << 20;
}

struct Data {
    std::string bytes;
    int64_t fields = 0;
};

Data repeat(const std::string& bytes, int32_t fieldsPerLine) {
    Data data;
    while (data.bytes.size() < wantedBytes()) data.bytes += bytes;
    data.fields = std::count(data.bytes.begin(), data.bytes.end(), '\n') * fieldsPerLine;
    return data;
}

std::string readDatabase() {
    std::ifstream file(DATABASE, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (bytes.empty()) std::abort();
    return bytes;
}

const Data& database() {
    static const Data data = repeat(readDatabase(), DATABASE_FIELDS);
    return data;
}

class Random {
  public:
    uint32_t below(uint32_t bound) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 16) % bound;
    }

  private:
    uint32_t state_ = 12345;
};

// One to twelve letters; a tenth in quotation marks, of which half hold a comma and half a doubled mark.
std::string csvField(Random* random) {
    std::string field(1 + random->below(12), 'a');
    for (char& letter : field) letter = static_cast<char>('a' + random->below(26));
    if (random->below(10) != 0) return field;
    const char* inside = random->below(2) == 0 ? "," : "\"\"";
    return '"' + field.insert(field.size() / 2, inside) + '"';
}

std::string makeCsv() {
    Random random;
    std::string bytes;
    while (bytes.size() < 1 << 20) {
        for (int32_t i = 0; i < CSV_FIELDS; ++i) {
            bytes += csvField(&random);
            bytes += i + 1 < CSV_FIELDS ? ',' : '\n';
        }
    }
    return bytes;
}

const Data& csv() {
    static const Data data = repeat(makeCsv(), CSV_FIELDS);
    return data;
}

// ---- The parser ----------------------------------------------------------------------------------------

GrammarHandle lines(GrammarBuilder* builder, const char* terminator) {
    return builder->complexElement("file").complexElement("line").occurs(0, -1).occursImplicit().terminator(
        terminator);
}

DFDLGrammar* databaseGrammar() {
    GrammarBuilder builder;
    auto line = lines(&builder, "%LF;");
    line.content().separator(";");
    for (int32_t i = 0; i < DATABASE_FIELDS; ++i) {
        line.text("field" + std::to_string(i)).delimited().nilLiteral("%ES;");
    }
    return builder.load();
}

GrammarHandle quoted(GrammarHandle field) {
    return field.delimited().nilLiteral("%ES;").escapeBlock("\"", "\"", "\"");
}

// A name for each column.
DFDLGrammar* columnsGrammar() {
    GrammarBuilder builder;
    auto line = lines(&builder, "%NL;");
    line.content().separator(",");
    for (int32_t i = 0; i < CSV_FIELDS; ++i) quoted(line.text("field" + std::to_string(i)));
    return builder.load();
}

// Any number of fields, all of one name.
DFDLGrammar* listGrammar() {
    GrammarBuilder builder;
    auto line = lines(&builder, "%NL;");
    line.content().separator(",", PIF::MPIFEnums::INFIX, PIF::MPIFEnums::SUPPRESS_AT_END);
    quoted(line.text("field")).occurs(1, -1).occursImplicit();
    return builder.load();
}

void databaseParse(benchmark::State& state, bool inBuffers) {
    benchParser(state, databaseGrammar(), database().bytes, database().fields, inBuffers);
}

void csvParse(benchmark::State& state, DFDLGrammar* (*grammar)(), bool inBuffers) {
    benchParser(state, grammar(), csv().bytes, csv().fields, inBuffers);
}

// ---- By hand -------------------------------------------------------------------------------------------

void databaseByHand(benchmark::State& state) {
    HandEvents events;
    for (auto step : state) {
        const char* const data = database().bytes.data();
        const char* const end = data + database().bytes.size();
        for (const char* at = data; at < end;) {
            events.start(u"line", at - data);
            for (bool more = true; more; ++at) {
                const char* field = at;
                while (*at != ';' && *at != '\n') ++at;
                if (at > field) {
                    events.field(u"field", field, at, field - data);
                } else {
                    events.nilField(u"field", field - data);
                }
                more = *at == ';';
            }
            events.end(at - data);
        }
    }
    reportFields(state, database().fields, database().bytes.size());
    keep(events.sink());
}

// Copies what is between quotation marks, doubled ones once; behind the closing one.
const char* unquote(const char* at, std::string* text) {
    text->clear();
    for (++at;; ++at) {
        if (*at == '"' && *++at != '"') return at;
        text->push_back(*at);
    }
}

void csvByHand(benchmark::State& state) {
    HandEvents events;
    std::string text;
    for (auto step : state) {
        const char* const data = csv().bytes.data();
        const char* const end = data + csv().bytes.size();
        for (const char* at = data; at < end;) {
            events.start(u"line", at - data);
            for (bool more = true; more; ++at) {
                const char* field = at;
                if (*at == '"') {
                    at = unquote(at, &text);
                    events.field(u"field", text.data(), text.data() + text.size(), field - data);
                } else {
                    while (*at != ',' && *at != '\n') ++at;
                    events.field(u"field", field, at, field - data);
                }
                more = *at == ',';
            }
            events.end(at - data);
        }
    }
    reportFields(state, csv().fields, csv().bytes.size());
    keep(events.sink());
}

// ---- libcsv --------------------------------------------------------------------------------------------

struct CsvSink {
    size_t bytes = 0;
    size_t fields = 0;
    size_t lines = 0;
};

void onCsvField(void* text, size_t length, void* sink) {
    static_cast<CsvSink*>(sink)->bytes += length + (length == 0 ? 0U : *static_cast<unsigned char*>(text));
    ++static_cast<CsvSink*>(sink)->fields;
}
void onCsvLine(int, void* sink) { ++static_cast<CsvSink*>(sink)->lines; }

void byLibcsv(benchmark::State& state, const Data& (*source)(), unsigned char delimiter) {
    const Data& data = source();
    CsvSink sink;
    csv_parser parser;
    if (csv_init(&parser, 0) != 0) std::abort();
    csv_set_delim(&parser, delimiter);
    for (auto step : state) {
        const size_t taken =
            csv_parse(&parser, data.bytes.data(), data.bytes.size(), onCsvField, onCsvLine, &sink);
        if (taken != data.bytes.size()) std::abort();
    }
    csv_free(&parser);
    reportFields(state, data.fields, data.bytes.size());
    benchmark::DoNotOptimize(sink);
}

BENCHMARK(databaseByHand)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(byLibcsv, database, database, static_cast<unsigned char>(';'))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(databaseParse, inPlace, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(databaseParse, inBuffers, true)->Unit(benchmark::kMillisecond);
BENCHMARK(csvByHand)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(byLibcsv, csv, csv, static_cast<unsigned char>(','))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(csvParse, columnsInPlace, columnsGrammar, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(csvParse, columnsInBuffers, columnsGrammar, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(csvParse, listInPlace, listGrammar, false)->Unit(benchmark::kMillisecond);

}  // namespace
