// What the parser asks of its caller's allocator: nothing in steady state, and to survive its refusals.
#include <dfdl/dfdl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "support/grammarbuilder.h"

namespace {

constexpr int32_t ANY_COUNT = 1000000;

// An allocator that counts, and that refuses one call.
struct Allocator {
    int64_t calls = 0;    // to malloc, calloc and realloc
    int64_t refuse = -1;  // number of the call that gets nothing; -1 none
    int64_t live = 0;     // blocks

    bool refused = false;

    bool refusesNow() {
        const bool now = calls++ == refuse;
        refused = refused || now;
        return now;
    }
};

void* countedMalloc(void* self, size_t size) {
    auto* allocator = static_cast<Allocator*>(self);
    if (allocator->refusesNow()) return nullptr;
    ++allocator->live;
    return std::malloc(size);
}
void* countedCalloc(void* self, size_t count, size_t size) {
    auto* allocator = static_cast<Allocator*>(self);
    if (allocator->refusesNow()) return nullptr;
    ++allocator->live;
    return std::calloc(count, size);
}
void* countedRealloc(void* self, void* pointer, size_t size) {
    auto* allocator = static_cast<Allocator*>(self);
    if (allocator->refusesNow()) return nullptr;
    if (pointer == nullptr) ++allocator->live;
    return std::realloc(pointer, size);
}
void countedFree(void* self, void* pointer) {
    if (pointer != nullptr) --static_cast<Allocator*>(self)->live;
    std::free(pointer);
}

DFDLHeap* heapOf(Allocator* allocator) {
    return new_DFDLHeap(allocator, countedMalloc, countedCalloc, countedRealloc, countedFree);
}

// A file of records with texts in three encodings, short and long, aligned and trimmed.
// With `counted` off they go on to the end of the data, each of them an attempt that may fail.
DFDLGrammar* recordsGrammar(DFDLHeap* heap, int32_t count, bool counted) {
    GrammarBuilder builder;
    auto record = builder.complexElement("file").complexElement("record");
    counted ? record.occurs(count, count).occursFixed() : record.occurs(0, -1).occursParsed();
    record.text("id").bytes(8).encoding("US-ASCII").trimRight("%SP;");
    record.text("name").characters(10).encoding("UTF-8");
    record.text("note").bytes(200).encoding("ISO-8859-1").trimRight("%SP;").align(2);
    return builder.load(heap);
}

std::string recordsData(int32_t count) {
    std::string data;
    for (int32_t i = 0; i < count; ++i) {
        std::string id = std::to_string(i);
        id.resize(8, ' ');
        data += id + "N\xC3\xA4mchen 12";
        if (data.size() % 2 != 0) data.push_back('?');
        std::string note = "note " + std::to_string(i);
        note.resize(200, ' ');
        data += note;
    }
    return data;
}

struct Run {
    int parsed;
    int result;
    int64_t fields;
};

void countField(DFDLDocHandler* handler, const DFDLChar*, int32_t, uint32_t) {
    ++*static_cast<int64_t*>(DFDLDocHandler_getContextObject(handler));
}

// Everything that a parser may be given, in the hands of one owner.
struct Setting {
    bool inPieces;  // through a buffer handler, step by step, with regions and trace
    DFDLDocHandler* documents = new_DFDLDocHandler();
    DFDLBufferHandler* input = new_DFDLBufferHandler();
    DFDLRegionHandler* regions = new_DFDLRegionHandler();
    DFDLUserTraceHandler* trace = new_DFDLUserTraceHandler();
    DFDLErrorHandler* errors = new_DFDLErrorHandler();
    const std::string* data;
    size_t given = 0;
    int64_t fields = 0;

    Setting(bool pieces, const std::string* bytes) : inPieces(pieces), data(bytes) {
        DFDLDocHandler_setContextObject(documents, &fields);
        DFDLDocHandler_setElementStringValueCallback(documents, countField);
        DFDLBufferHandler_setContextObject(input, this);
        DFDLBufferHandler_setGetNextBufferHandlerCallback(input, nextPiece);
        DFDLErrorHandler_setProcessingErrorCallback(errors, [](DFDLErrorHandler*, const DFDLDiagnostic*) {});
        DFDLUserTraceHandler_setUserInfoCallback(trace, [](DFDLUserTraceHandler*, const DFDLTrace*) {});
        const auto ignore = [](DFDLRegionHandler*, const DFDLChar*, DFDLWORD, DFDLWORD) {};
        DFDLRegionHandler_setLeadingAlignmentRegionCallback(regions, ignore);
        DFDLRegionHandler_setSimpleContentRegionCallback(regions, ignore);
        DFDLRegionHandler_setTrailingAlignmentRegionCallback(regions, ignore);
    }
    ~Setting() {
        delete_DFDLDocHandler(documents);
        delete_DFDLBufferHandler(input);
        delete_DFDLRegionHandler(regions);
        delete_DFDLUserTraceHandler(trace);
        delete_DFDLErrorHandler(errors);
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    static void nextPiece(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
        auto* self = static_cast<Setting*>(DFDLBufferHandler_getContextObject(handler));
        const size_t count = std::min<size_t>(self->data->size() - self->given, 7);
        DFDLByteBuffer_setData(buffer, reinterpret_cast<const uint8_t*>(self->data->data()) + self->given,
                               static_cast<DFDLWORD>(count), self->given + count == self->data->size());
        self->given += count;
    }

    bool apply(DFDLParser* parser, DFDLGrammar* grammar) {
        given = 0;
        fields = 0;
        bool ready = DFDLParser_setGrammar(parser, grammar) == 0 &&
                     DFDLParser_setRootElement(parser, u"file", nullptr) == 0 &&
                     DFDLParser_setErrorHandler(parser, errors) == 0 &&
                     DFDLParser_setDocumentHandler(parser, documents) == 0;
        if (!inPieces) {
            return ready &&
                   DFDLParser_setInputDocument(parser, reinterpret_cast<const uint8_t*>(data->data()),
                                               static_cast<DFDLWORD>(data->size())) == 0;
        }
        return ready && DFDLParser_setRegionHandler(parser, regions) == 0 &&
               DFDLParser_setUserTraceHandler(parser, trace) == 0 &&
               DFDLParser_setBufferHandler(parser, input) == 0;
    }

    // Whether the message was parsed.
    bool run(DFDLParser* parser) {
        int result = 0;
        if (!inPieces) return DFDLParser_parseAll(parser, &result) == 1;
        bool parsed = true;
        int ended = 0;
        DFDLWORD steps = 0;
        while (parsed && (ended = DFDLParser_hasNext(parser, &result)) == 1 && steps++ < ANY_COUNT) {
            parsed = DFDLParser_parseNext(parser, &result) == 1;
        }
        return parsed && steps > 0;
    }
};

Run parse(DFDLParser* parser, DFDLGrammar* grammar, const std::string& data, bool inPieces = false) {
    Setting setting(inPieces, &data);
    Run run{0, -1, 0};
    if (setting.apply(parser, grammar)) run.parsed = setting.run(parser) ? 1 : 0;
    run.fields = setting.fields;
    DFDLParser_resetParser(parser);
    DFDLParser_setDocumentHandler(parser, nullptr);
    DFDLParser_setErrorHandler(parser, nullptr);
    DFDLParser_setRegionHandler(parser, nullptr);
    DFDLParser_setUserTraceHandler(parser, nullptr);
    DFDLParser_setInputDocument(parser, nullptr, 0);
    return run;
}

int64_t callsToParse(int32_t count, bool counted) {
    Allocator allocator;
    DFDLHeap* heap = heapOf(&allocator);
    DFDLGrammar* grammar = recordsGrammar(nullptr, count, counted);
    DFDLParser* parser = new_DFDLParser(heap);
    const std::string data = recordsData(count);
    DFDLParser_setMessageHeap(parser, heap);
    const Run run = parse(parser, grammar, data);
    EXPECT_EQ(1, run.parsed);
    EXPECT_EQ(3 * count, run.fields);
    delete_DFDLParser(parser);
    delete_DFDLGrammar(grammar);
    delete_DFDLHeap(heap);
    EXPECT_EQ(0, allocator.live);
    return allocator.calls;
}

TEST(ParserMemory, AsksForNothingMoreForMoreRecords) {
    EXPECT_EQ(callsToParse(100, true), callsToParse(10000, true));
    EXPECT_EQ(callsToParse(100, false), callsToParse(10000, false));
}

// Loads and parses with the given call refused. Returns whether a call was refused at all.
bool parseWithRefusal(int64_t refused, const std::string& data, bool inPieces) {
    Allocator allocator;
    allocator.refuse = refused;
    DFDLHeap* heap = heapOf(&allocator);
    DFDLGrammar* grammar = recordsGrammar(heap, 3, !inPieces);
    DFDLParser* parser = grammar == nullptr ? nullptr : new_DFDLParser(heap);
    if (parser != nullptr) {
        const Run first = parse(parser, grammar, data, inPieces);
        const bool wasRefused = allocator.refused;
        EXPECT_EQ(wasRefused && first.parsed == 0, first.parsed == 0) << "call " << refused;
        allocator.refuse = -1;  // the second parse makes calls of its own
        const Run second = parse(parser, grammar, data, inPieces);
        EXPECT_EQ(1, second.parsed) << "after call " << refused << " was refused";
        EXPECT_EQ(9, second.fields) << refused;
    }
    delete_DFDLParser(parser);
    delete_DFDLGrammar(grammar);
    delete_DFDLHeap(heap);
    EXPECT_EQ(0, allocator.live) << "blocks are left after call " << refused << " was refused";
    return allocator.refused;
}

void sweepRefusals(bool inPieces) {
    const std::string data = recordsData(3);
    int64_t refused = 0;
    while (refused < ANY_COUNT && parseWithRefusal(refused, data, inPieces)) ++refused;
    EXPECT_GT(refused, 100) << "the sweep has met the allocations of load and parse";
    EXPECT_LT(refused, ANY_COUNT);
}

TEST(ParserMemory, SurvivesTheRefusalOfAnyAllocation) { sweepRefusals(false); }

TEST(ParserMemory, SurvivesItWithEverythingSet) { sweepRefusals(true); }

}  // namespace
