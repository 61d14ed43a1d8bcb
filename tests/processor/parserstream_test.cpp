// Input that comes in pieces, without end in sight, and a grammar that several threads read at once.
#include <dfdl/dfdl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/grammarbuilder.h"
#include "support/manyrecords.h"
#include "support/parserrun.h"
#include "support/testheap.h"

namespace {

constexpr int64_t PIECE = 64;

// Gives out the same record again and again, cut into pieces, and counts what the library has not given back.
struct Source {
    std::string record;
    int64_t records;
    int64_t given = 0;  // bytes
    int64_t held = 0;   // buffers
    int64_t mostHeld = 0;
};

void nextPiece(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* source = static_cast<Source*>(DFDLBufferHandler_getContextObject(handler));
    const auto size = static_cast<int64_t>(source->record.size());
    const int64_t left = size * source->records - source->given;
    const int64_t at = source->given % size;
    const int64_t count = std::min({PIECE, size - at, left});
    DFDLByteBuffer_setData(buffer, reinterpret_cast<const uint8_t*>(source->record.data()) + at, count,
                           count == left);
    source->given += count;
    source->mostHeld = std::max(source->mostHeld, ++source->held);
}

void pieceBack(DFDLBufferHandler* handler, DFDLByteBuffer*) {
    --static_cast<Source*>(DFDLBufferHandler_getContextObject(handler))->held;
}

DFDLBufferHandler* handlerOf(Source* source) {
    DFDLBufferHandler* input = new_DFDLBufferHandler();
    DFDLBufferHandler_setContextObject(input, source);
    DFDLBufferHandler_setGetNextBufferHandlerCallback(input, nextPiece);
    DFDLBufferHandler_setReleaseBufferHandlerCallback(input, pieceBack);
    return input;
}

struct LiveBytes {
    int64_t now = 0;
    int64_t most = 0;
    int64_t calls = 0;
};

constexpr size_t HEADER = 16;

void* sizedBlock(LiveBytes* live, void* block, size_t size) {
    *static_cast<size_t*>(block) = size;
    live->now += static_cast<int64_t>(size);
    live->most = std::max(live->most, live->now);
    ++live->calls;
    return static_cast<char*>(block) + HEADER;
}
size_t forget(LiveBytes* live, void* pointer) {
    const size_t size = *reinterpret_cast<size_t*>(static_cast<char*>(pointer) - HEADER);
    live->now -= static_cast<int64_t>(size);
    return size;
}
void* liveMalloc(void* live, size_t size) {
    return sizedBlock(static_cast<LiveBytes*>(live), std::malloc(size + HEADER), size);
}
void* liveCalloc(void* live, size_t count, size_t size) {
    return sizedBlock(static_cast<LiveBytes*>(live), std::calloc(1, count * size + HEADER), count * size);
}
void liveFree(void* live, void* pointer) {
    if (pointer == nullptr) return;
    forget(static_cast<LiveBytes*>(live), pointer);
    std::free(static_cast<char*>(pointer) - HEADER);
}
void* liveRealloc(void* live, void* pointer, size_t size) {
    if (pointer == nullptr) return liveMalloc(live, size);
    forget(static_cast<LiveBytes*>(live), pointer);
    return sizedBlock(static_cast<LiveBytes*>(live),
                      std::realloc(static_cast<char*>(pointer) - HEADER, size + HEADER), size);
}

DFDLGrammar* streamGrammar(int32_t records) {
    GrammarBuilder builder;
    auto record =
        builder.complexElement("file").complexElement("record").occurs(records, records).occursFixed();
    record.text("a").bytes(40).encoding("US-ASCII").trimRight("%SP;");
    record.text("b").characters(50).encoding("UTF-8");
    return builder.load();
}

std::string fixedRecord() {
    std::string record(40, 'a');
    for (int i = 0; i < 25; ++i) record += "\xC3\xA9z";
    return record;
}

// Lines to the end of the data, the second member of which is an attempt each time.
DFDLGrammar* linesGrammar(int32_t) {
    GrammarBuilder builder;
    auto line = builder.complexElement("file").complexElement("line").occurs(0, -1).occursParsed();
    line.terminator("%NL;");
    line.content().separator(",", PIF::MPIFEnums::INFIX, PIF::MPIFEnums::SUPPRESS);
    line.text("a").delimited().escapeBlock("\"", "\"", "\"");
    line.text("b").delimited().occurs(0, 1).occursImplicit().initiator("b:");
    line.text("c").delimited().occurs(0, 1).occursImplicit().initiator("c:");
    return builder.load();
}

std::string twoLines() { return "\"a \"\"long\"\", field\",b:\xC3\xA9,c:z\r\nshort,c:y\n"; }

struct Format {
    const char* name;
    std::function<DFDLGrammar*(int32_t records)> grammar;
    std::function<std::string()> record;
};

LiveBytes stream(const Format& format, int32_t records) {
    LiveBytes live;
    Source source{format.record(), records};
    DFDLHeap* heap = new_DFDLHeap(&live, liveMalloc, liveCalloc, liveRealloc, liveFree);
    DFDLGrammar* grammar = format.grammar(records);
    DFDLBufferHandler* input = handlerOf(&source);
    DFDLParser* parser = new_DFDLParser(heap);
    DFDLParser_setGrammar(parser, grammar);
    DFDLParser_setRootElement(parser, u"file", nullptr);
    DFDLParser_setMessageHeap(parser, heap);
    DFDLParser_setBufferHandler(parser, input);
    EXPECT_EQ(1, DFDLParser_parseAll(parser, nullptr));
    EXPECT_EQ(0, source.held) << "every buffer has come back";
    EXPECT_LE(source.mostHeld, 4);
    delete_DFDLParser(parser);
    delete_DFDLBufferHandler(input);
    delete_DFDLGrammar(grammar);
    delete_DFDLHeap(heap);
    EXPECT_EQ(0, live.now);
    return live;
}

TEST(ParserStream, KeepsItsMemoryHoweverLongTheInput) {
    std::vector<Format> formats = {{"fixed", streamGrammar, fixedRecord}, {"lines", linesGrammar, twoLines}};
    for (const ManyRecords& typed : manyRecords())
        formats.push_back({typed.name, [&typed](int32_t) { return typed.grammar(nullptr); },
                           [&typed] { return typed.record; }});
    for (const Format& format : formats) {
        const LiveBytes few = stream(format, 100);
        const LiveBytes many = stream(format, 20000);
        EXPECT_EQ(few.most, many.most) << format.name;
        EXPECT_EQ(few.calls, many.calls) << format.name;
    }
}

void countUnits(DFDLDocHandler* handler, const DFDLChar*, int32_t length, uint32_t) {
    *static_cast<int64_t*>(DFDLDocHandler_getContextObject(handler)) += length;
}

void parse(DFDLGrammar* grammar, const std::string& data, int times, int64_t* units) {
    DFDLParser* parser = new_DFDLParser(nullptr);
    DFDLDocHandler* handler = new_DFDLDocHandler();
    DFDLDocHandler_setContextObject(handler, units);
    DFDLDocHandler_setElementStringValueCallback(handler, countUnits);
    DFDLParser_setGrammar(parser, grammar);
    DFDLParser_setDocumentHandler(parser, handler);
    DFDLParser_setRootElement(parser, u"file", nullptr);
    for (int i = 0; i < times; ++i) {
        DFDLParser_setInputDocument(parser, reinterpret_cast<const uint8_t*>(data.data()),
                                    static_cast<DFDLWORD>(data.size()));
        DFDLParser_parseAll(parser, nullptr);
    }
    delete_DFDLParser(parser);
    delete_DFDLDocHandler(handler);
}

// With 300,000 pieces a search of the chain for each of them would take minutes, as would a list that grows
// by one.
TEST(ParserStream, FindsItsWayAlongAFieldOfVeryManyPieces) {
    Source source{"x", 300000};
    GrammarBuilder builder;
    builder.complexElement("file").text("a").delimited().encoding("US-ASCII");
    DFDLGrammar* grammar = builder.load();
    DFDLBufferHandler* input = handlerOf(&source);
    TestHeap heap;
    DFDLHeapImpl callbacks = heap.callbacks();
    DFDLParser* parser = new_DFDLParser(&callbacks);
    DFDLParser_setGrammar(parser, grammar);
    DFDLParser_setRootElement(parser, u"file", nullptr);
    DFDLParser_setBufferHandler(parser, input);
    EXPECT_EQ(1, DFDLParser_parseAll(parser, nullptr));
    EXPECT_EQ(0, source.held);
    EXPECT_LT(heap.grown, 1000);
    delete_DFDLParser(parser);
    delete_DFDLBufferHandler(input);
    delete_DFDLGrammar(grammar);
}

TEST(ParserStream, DoesNotTakeManyOccurrencesForEndlessOnes) {
    constexpr int64_t OCCURRENCES = 1000100;
    GrammarBuilder builder;
    builder.complexElement("file").text("a").bytes(1).encoding("US-ASCII").occurs(0, -1).occursParsed();
    DFDLGrammar* grammar = builder.load();
    int64_t units = 0;
    parse(grammar, std::string(OCCURRENCES, 'x'), 1, &units);
    EXPECT_EQ(OCCURRENCES, units);
    delete_DFDLGrammar(grammar);
}

// Several threads read with one grammar what one has read before.
void shareBetweenThreads(DFDLGrammar* grammar, const std::string& data) {
    const std::string expected = runParser(grammar, u"file", data).outline();
    EXPECT_GT(expected.size(), data.size() / 4) << "the data are read";
    std::vector<std::string> outlines(4);
    std::vector<std::thread> threads;
    for (std::string& outline : outlines) {
        threads.emplace_back([&] { outline = runParser(grammar, u"file", data).outline(); });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::string& outline : outlines) EXPECT_EQ(outline, expected);
    delete_DFDLGrammar(grammar);
}

TEST(ParserStream, SharesAGrammarBetweenThreads) {
    constexpr int32_t RECORDS = 5;
    const auto repeated = [](const std::string& record) {
        std::string data;
        for (int32_t i = 0; i < RECORDS; ++i) data += record;
        return data;
    };
    shareBetweenThreads(streamGrammar(RECORDS), repeated(std::string(90, 'x')));
    for (const ManyRecords& format : manyRecords()) {
        SCOPED_TRACE(format.name);
        shareBetweenThreads(format.grammar(nullptr), repeated(format.record));
    }
}

}  // namespace
