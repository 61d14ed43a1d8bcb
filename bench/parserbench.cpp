#include "parserbench.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int64_t BUFFER_BYTES = 64 * 1024;

Sink* sinkOf(DFDLDocHandler* handler) { return static_cast<Sink*>(DFDLDocHandler_getContextObject(handler)); }

void onStart(DFDLDocHandler* handler, int32_t, const DFDLChar*, int32_t, const DFDLChar*, const DFDLChar*,
             DFDLWORD) {
    ++sinkOf(handler)->starts;
}
void onString(DFDLDocHandler* handler, const DFDLChar* characters, int32_t length, uint32_t) {
    ++sinkOf(handler)->values;
    sinkOf(handler)->units += length + characters[0];
}
template <class Number>
void onNumber(DFDLDocHandler* handler, Number number, uint32_t) {
    ++sinkOf(handler)->values;
    sinkOf(handler)->units += number < 0 ? 1 : 2;
}
void onDecimal(DFDLDocHandler* handler, const char* digits, int32_t length, uint32_t) {
    ++sinkOf(handler)->values;
    sinkOf(handler)->units += length + digits[0];
}
void onCalendar(DFDLDocHandler* handler, const DFDLCalendar* calendar, uint32_t) {
    ++sinkOf(handler)->values;
    sinkOf(handler)->units += calendar != nullptr ? 1 : 2;
}
void onNil(DFDLDocHandler* handler) { sinkOf(handler)->units += 1; }
void onEnd(DFDLDocHandler* handler, DFDLWORD endBit) { sinkOf(handler)->lastEnd = endBit; }
void onRelease(DFDLBufferHandler*, DFDLByteBuffer*) {}

const uint8_t* bytesOf(const std::string& data) { return reinterpret_cast<const uint8_t*>(data.data()); }

}  // namespace

SinkHandler::SinkHandler() : handler_(new_DFDLDocHandler()) {
    DFDLDocHandler_setContextObject(handler_, &sink_);
    DFDLDocHandler_setStartElementCallback(handler_, onStart);
    DFDLDocHandler_setElementStringValueCallback(handler_, onString);
    DFDLDocHandler_setElementByteValueCallback(handler_, onNumber<int8_t>);
    DFDLDocHandler_setElementShortValueCallback(handler_, onNumber<int16_t>);
    DFDLDocHandler_setElementIntValueCallback(handler_, onNumber<int32_t>);
    DFDLDocHandler_setElementLongValueCallback(handler_, onNumber<int64_t>);
    DFDLDocHandler_setElementUByteValueCallback(handler_, onNumber<uint8_t>);
    DFDLDocHandler_setElementUShortValueCallback(handler_, onNumber<uint16_t>);
    DFDLDocHandler_setElementUIntValueCallback(handler_, onNumber<uint32_t>);
    DFDLDocHandler_setElementULongValueCallback(handler_, onNumber<uint64_t>);
    DFDLDocHandler_setElementFloatValueCallback(handler_, onNumber<float>);
    DFDLDocHandler_setElementDoubleValueCallback(handler_, onNumber<double>);
    DFDLDocHandler_setElementDecimalValueCallback(handler_, onDecimal);
    DFDLDocHandler_setElementCalendarValueCallback(handler_, onCalendar);
    DFDLDocHandler_setElementNilValueCallback(handler_, onNil);
    DFDLDocHandler_setEndElementCallback(handler_, onEnd);
}

ParserBench::ParserBench(DFDLGrammar* grammar, const DFDLChar* root)
    : grammar_(grammar), parser_(new_DFDLParser(nullptr)) {
    DFDLParser_setGrammar(parser_, grammar_);
    DFDLParser_setDocumentHandler(parser_, events_.handler());
    DFDLParser_setRootElement(parser_, root, nullptr);
}

ParserBench::~ParserBench() {
    delete_DFDLParser(parser_);
    delete_DFDLGrammar(grammar_);
}

void ParserBench::parse() {
    int result = 0;
    if (DFDLParser_parseAll(parser_, &result) != 1) std::abort();
}

BufferFeed::BufferFeed(const std::string& data) : data_(data), handler_(new_DFDLBufferHandler()) {
    DFDLBufferHandler_setContextObject(handler_, this);
    DFDLBufferHandler_setGetNextBufferHandlerCallback(handler_, next);
    DFDLBufferHandler_setReleaseBufferHandlerCallback(handler_, onRelease);
}

void BufferFeed::next(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* feed = static_cast<BufferFeed*>(DFDLBufferHandler_getContextObject(handler));
    const auto size = static_cast<int64_t>(feed->data_.size());
    const int64_t count = std::min(BUFFER_BYTES, size - feed->given_);
    DFDLByteBuffer_setData(buffer, bytesOf(feed->data_) + feed->given_, count, feed->given_ + count == size);
    feed->given_ += count;
}

// The compiler must not see what the pointers point at.
HandEvents::HandEvents()
    : start_(onStart),
      value_(onString),
      numbers_{onNumber<int8_t>,  onNumber<int16_t>,  onNumber<int32_t>,  onNumber<int64_t>,
               onNumber<uint8_t>, onNumber<uint16_t>, onNumber<uint32_t>, onNumber<uint64_t>,
               onNumber<float>,   onNumber<double>},
      decimal_(onDecimal),
      calendar_(onCalendar),
      nil_(onNil),
      end_(onEnd) {
    UErrorCode status = U_ZERO_ERROR;
    converter_ = ucnv_open("UTF-8", &status);
    benchmark::DoNotOptimize(start_);
    benchmark::DoNotOptimize(value_);
    benchmark::DoNotOptimize(numbers_);
    benchmark::DoNotOptimize(decimal_);
    benchmark::DoNotOptimize(calendar_);
    benchmark::DoNotOptimize(nil_);
    benchmark::DoNotOptimize(end_);
}

void HandEvents::field(const DFDLChar* name, const char* bytes, const char* bytesEnd, int64_t at, UChar pad) {
    UChar* target = text_;
    const char* source = bytes;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(converter_, &target, text_ + MOST_UNITS, &source, bytesEnd, nullptr, true, &status);
    if (pad != 0) {
        while (target > text_ && target[-1] == pad) --target;
    }
    *target = 0;
    start(name, at);
    value_(sink_.handler(), text_, static_cast<int32_t>(target - text_), 0);
    end(at + (bytesEnd - bytes));
}

void HandEvents::nilField(const DFDLChar* name, int64_t at) {
    start(name, at);
    nil_(sink_.handler());
    end(at);
}

void benchParser(benchmark::State& state, DFDLGrammar* grammar, const std::string& data, int64_t fields,
                 bool inBuffers) {
    ParserBench bench(grammar, u"file");
    BufferFeed feed(data);
    if (inBuffers) {
        DFDLParser_setBufferHandler(bench.parser(), feed.handler());
    } else {
        DFDLParser_setInputDocument(bench.parser(), bytesOf(data), static_cast<int64_t>(data.size()));
    }
    for (auto step : state) {
        feed.rewind();
        bench.parse();
    }
    DFDLParser_setInputDocument(bench.parser(), nullptr, 0);
    reportFields(state, fields, data.size());
    keep(bench.sink());
}

void reportFields(benchmark::State& state, int64_t fields, size_t bytes) {
    const auto all = static_cast<double>(state.iterations()) * static_cast<double>(fields);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes));
    state.counters["field"] =
        benchmark::Counter(all, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void keep(const Sink& sink) {
    benchmark::DoNotOptimize(sink.units + sink.starts + sink.values + sink.lastEnd);
}
