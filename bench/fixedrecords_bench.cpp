// Records of 100 bytes with twelve text fields, padded with blanks: what the parser takes for a field, beside
// a loop written by hand that cuts, trims and converts the same fields and makes the same three calls.
#include <benchmark/benchmark.h>
#include <dfdl/dfdl.h>
#include <unicode/ucnv.h>

#include <array>
#include <cstdlib>
#include <string>

#include "support/grammarbuilder.h"

namespace {

constexpr std::array<int32_t, 12> WIDTHS = {8, 10, 6, 12, 4, 9, 7, 11, 5, 10, 8, 10};
constexpr int32_t RECORD_BYTES = 100;
constexpr int32_t RECORDS = 20000;
constexpr int64_t BUFFER_BYTES = 64 * 1024;

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

// What the events add up to, so that none of them can be left out.
struct Sink {
    int64_t starts = 0;
    int64_t units = 0;
    int64_t lastEnd = 0;
};

Sink* sinkOf(DFDLDocHandler* handler) { return static_cast<Sink*>(DFDLDocHandler_getContextObject(handler)); }

void onStart(DFDLDocHandler* handler, int32_t, const DFDLChar*, int32_t, const DFDLChar*, const DFDLChar*,
             DFDLWORD) {
    ++sinkOf(handler)->starts;
}
void onString(DFDLDocHandler* handler, const DFDLChar* characters, int32_t length, uint32_t) {
    sinkOf(handler)->units += length + characters[0];
}
void onEnd(DFDLDocHandler* handler, DFDLWORD endBit) { sinkOf(handler)->lastEnd = endBit; }

DFDLGrammar* makeGrammar() {
    GrammarBuilder builder;
    auto file = builder.complexElement("file");
    auto record = file.complexElement("record").occurs(RECORDS, RECORDS).occursFixed();
    for (size_t i = 0; i < WIDTHS.size(); ++i) {
        record.text("field" + std::to_string(i)).bytes(WIDTHS[i]).encoding("UTF-8").trimRight("%SP;");
    }
    return builder.load();
}

// Hands the records over in buffers, as a program that reads a file does.
struct Feed {
    const uint8_t* data;
    int64_t size;
    int64_t given;
};

void nextBuffer(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* feed = static_cast<Feed*>(DFDLBufferHandler_getContextObject(handler));
    const int64_t count = std::min(BUFFER_BYTES, feed->size - feed->given);
    DFDLByteBuffer_setData(buffer, feed->data + feed->given, count, feed->given + count == feed->size);
    feed->given += count;
}
void releaseBuffer(DFDLBufferHandler*, DFDLByteBuffer*) {}

class Bench {
  public:
    Bench() : grammar_(makeGrammar()), parser_(new_DFDLParser(nullptr)), handler_(new_DFDLDocHandler()) {
        DFDLDocHandler_setContextObject(handler_, &sink_);
        DFDLDocHandler_setStartElementCallback(handler_, onStart);
        DFDLDocHandler_setElementStringValueCallback(handler_, onString);
        DFDLDocHandler_setEndElementCallback(handler_, onEnd);
        DFDLParser_setGrammar(parser_, grammar_);
        DFDLParser_setDocumentHandler(parser_, handler_);
        DFDLParser_setRootElement(parser_, u"file", nullptr);
    }
    ~Bench() {
        delete_DFDLParser(parser_);
        delete_DFDLDocHandler(handler_);
        delete_DFDLGrammar(grammar_);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    void parse() {
        int result = 0;
        if (DFDLParser_parseAll(parser_, &result) != 1) std::abort();
    }
    DFDLParser* parser() { return parser_; }
    const Sink& sink() const { return sink_; }

  private:
    DFDLGrammar* grammar_;
    DFDLParser* parser_;
    DFDLDocHandler* handler_;
    Sink sink_;
};

const uint8_t* bytesOf(const std::string& data) { return reinterpret_cast<const uint8_t*>(data.data()); }

void report(benchmark::State& state, const Sink& sink) {
    const auto fields =
        static_cast<double>(state.iterations()) * RECORDS * static_cast<double>(WIDTHS.size());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * RECORDS * RECORD_BYTES);
    state.counters["field"] =
        benchmark::Counter(fields, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    benchmark::DoNotOptimize(sink.units + sink.starts + sink.lastEnd);
}

void parseInPlace(benchmark::State& state) {
    Bench bench;
    DFDLParser_setInputDocument(bench.parser(), bytesOf(records()), static_cast<int64_t>(records().size()));
    for (auto step : state) bench.parse();
    report(state, bench.sink());
}

void parseBuffers(benchmark::State& state) {
    Bench bench;
    Feed feed{bytesOf(records()), static_cast<int64_t>(records().size()), 0};
    DFDLBufferHandler* input = new_DFDLBufferHandler();
    DFDLBufferHandler_setContextObject(input, &feed);
    DFDLBufferHandler_setGetNextBufferHandlerCallback(input, nextBuffer);
    DFDLBufferHandler_setReleaseBufferHandlerCallback(input, releaseBuffer);
    DFDLParser_setBufferHandler(bench.parser(), input);
    for (auto step : state) {
        feed.given = 0;
        bench.parse();
    }
    report(state, bench.sink());
    DFDLParser_setInputDocument(bench.parser(), nullptr, 0);
    delete_DFDLBufferHandler(input);
}

// The loop by hand: the same three calls for a field and for the record.
struct HandEvents {
    void (*start)(DFDLDocHandler*, int32_t, const DFDLChar*, int32_t, const DFDLChar*, const DFDLChar*,
                  DFDLWORD);
    void (*value)(DFDLDocHandler*, const DFDLChar*, int32_t, uint32_t);
    void (*end)(DFDLDocHandler*, DFDLWORD);
};

void cutField(const HandEvents& events, DFDLDocHandler* handler, UConverter* converter, const char* field,
              int32_t width, int64_t startBit) {
    UChar text[16];
    UChar* target = text;
    UErrorCode status = U_ZERO_ERROR;
    const char* source = field;
    ucnv_toUnicode(converter, &target, text + 15, &source, field + width, nullptr, true, &status);
    while (target > text && target[-1] == u' ') --target;
    *target = 0;
    events.start(handler, 1, u"field", 0, u"", u"", startBit);
    events.value(handler, text, static_cast<int32_t>(target - text), 0);
    events.end(handler, startBit + width * 8);
}

void cutByHand(benchmark::State& state) {
    Sink sink;
    DFDLDocHandler* handler = new_DFDLDocHandler();
    DFDLDocHandler_setContextObject(handler, &sink);
    HandEvents events{onStart, onString, onEnd};
    benchmark::DoNotOptimize(events);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open("UTF-8", &status);
    for (auto step : state) {
        int64_t at = 0;
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(handler, 0, u"record", 0, u"", u"", at * 8);
            for (const int32_t width : WIDTHS) {
                cutField(events, handler, converter, records().data() + at, width, at * 8);
                at += width;
            }
            events.end(handler, at * 8);
        }
    }
    report(state, sink);
    ucnv_close(converter);
    delete_DFDLDocHandler(handler);
}

BENCHMARK(cutByHand)->Unit(benchmark::kMillisecond);
BENCHMARK(parseInPlace)->Unit(benchmark::kMillisecond);
BENCHMARK(parseBuffers)->Unit(benchmark::kMillisecond);

}  // namespace
