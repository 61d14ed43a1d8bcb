#ifndef DFDL_BENCH_PARSERBENCH_H
#define DFDL_BENCH_PARSERBENCH_H

#include <benchmark/benchmark.h>
#include <dfdl/dfdl.h>
#include <unicode/ucnv.h>

#include <cstdint>
#include <string>
#include <tuple>

// What the events add up to, so that none of them can be left out.
struct Sink {
    int64_t starts = 0;
    int64_t values = 0;  // nil ones are none
    int64_t units = 0;
    int64_t lastEnd = 0;
};

// A handler whose callbacks fill a sink.
class SinkHandler {
  public:
    SinkHandler();
    ~SinkHandler() { delete_DFDLDocHandler(handler_); }
    SinkHandler(const SinkHandler&) = delete;
    SinkHandler& operator=(const SinkHandler&) = delete;

    DFDLDocHandler* handler() { return handler_; }
    const Sink& sink() const { return sink_; }

  private:
    DFDLDocHandler* handler_;
    Sink sink_;
};

// A parser for one grammar and root; adopts the grammar.
class ParserBench {
  public:
    ParserBench(DFDLGrammar* grammar, const DFDLChar* root);
    ~ParserBench();
    ParserBench(const ParserBench&) = delete;
    ParserBench& operator=(const ParserBench&) = delete;

    void parse();  // ends the program if the parse fails
    DFDLParser* parser() { return parser_; }
    const Sink& sink() const { return events_.sink(); }

  private:
    SinkHandler events_;
    DFDLGrammar* grammar_;
    DFDLParser* parser_;
};

// Hands data over in buffers of 64 KiB, as a program that reads a file does.
class BufferFeed {
  public:
    explicit BufferFeed(const std::string& data);
    ~BufferFeed() { delete_DFDLBufferHandler(handler_); }
    BufferFeed(const BufferFeed&) = delete;
    BufferFeed& operator=(const BufferFeed&) = delete;

    void rewind() { given_ = 0; }
    DFDLBufferHandler* handler() { return handler_; }

  private:
    static void next(DFDLBufferHandler* handler, DFDLByteBuffer* buffer);

    const std::string& data_;
    int64_t given_ = 0;
    DFDLBufferHandler* handler_;
};

// What a loop by hand does for its user: the same calls through pointers, and ICU for the text.
class HandEvents {
  public:
    static constexpr int32_t MOST_UNITS = 1000;  // of a field

    HandEvents();
    ~HandEvents() { ucnv_close(converter_); }
    HandEvents(const HandEvents&) = delete;
    HandEvents& operator=(const HandEvents&) = delete;

    void start(const DFDLChar* name, int64_t byte) {
        start_(sink_.handler(), 0, name, 0, u"", u"", byte * 8);
    }
    void end(int64_t byte) { end_(sink_.handler(), byte * 8); }
    // A field with its three calls. `pad` is trimmed from the end, 0 none.
    void field(const DFDLChar* name, const char* bytes, const char* bytesEnd, int64_t at, UChar pad = 0);
    void nilField(const DFDLChar* name, int64_t at);
    // Values only; start and end are the caller's.
    template <class Number>
    void number(Number value) {
        std::get<NumberCallback<Number>>(numbers_)(sink_.handler(), value, 0);
    }
    void decimal(const char* digits, int32_t length) { decimal_(sink_.handler(), digits, length, 0); }
    void calendar(const DFDLCalendar* value) { calendar_(sink_.handler(), value, 0); }
    const Sink& sink() const { return sink_.sink(); }

  private:
    template <class Number>
    using NumberCallback = void (*)(DFDLDocHandler*, Number, uint32_t);

    SinkHandler sink_;
    UConverter* converter_;
    UChar text_[MOST_UNITS + 1];
    DFDLStartElementCallback start_;
    DFDLElementStringValueCallback value_;
    std::tuple<NumberCallback<int8_t>, NumberCallback<int16_t>, NumberCallback<int32_t>,
               NumberCallback<int64_t>, NumberCallback<uint8_t>, NumberCallback<uint16_t>,
               NumberCallback<uint32_t>, NumberCallback<uint64_t>, NumberCallback<float>,
               NumberCallback<double>>
        numbers_;
    DFDLElementDecimalValueCallback decimal_;
    DFDLElementCalendarValueCallback calendar_;
    DFDLElementNilValueCallback nil_;
    DFDLEndElementCallback end_;
};

// The parser over the data, in place or in buffers.
void benchParser(benchmark::State& state, DFDLGrammar* grammar, const std::string& data, int64_t fields,
                 bool inBuffers);
// Time per field, and the rate of bytes, of what an iteration went through.
void reportFields(benchmark::State& state, int64_t fields, size_t bytes);
void keep(const Sink& sink);

#endif
