// What the parser asks of its caller's allocator: nothing in steady state, and to survive its refusals.
#include <dfdl/dfdl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "support/grammarbuilder.h"
#include "support/manyrecords.h"

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

// A file of records, how to make it and what it holds.
struct Format {
    const char* name;
    std::function<DFDLGrammar*(DFDLHeap* heap, int32_t count)> grammar;
    std::function<std::string(int32_t count)> data;
    std::function<int64_t(int32_t count)> fields;
};

// Texts in three encodings, short and long, aligned and trimmed.
DFDLGrammar* fixedGrammar(DFDLHeap* heap, int32_t least, int32_t most) {
    GrammarBuilder builder;
    auto record = builder.complexElement("file").complexElement("record").occurs(least, most);
    most == -1 ? record.occursParsed() : record.occursFixed();
    record.text("id").bytes(8).encoding("US-ASCII").trimRight("%SP;");
    record.text("name").characters(10).encoding("UTF-8");
    record.text("note").bytes(200).encoding("ISO-8859-1").trimRight("%SP;").align(2);
    return builder.load(heap);
}
DFDLGrammar* countedGrammar(DFDLHeap* heap, int32_t count) { return fixedGrammar(heap, count, count); }
// To the end of the data, each record an attempt that may fail.
DFDLGrammar* uncountedGrammar(DFDLHeap* heap, int32_t) { return fixedGrammar(heap, 0, -1); }

std::string fixedData(int32_t count) {
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
int64_t fixedFields(int32_t count) { return 3 * count; }

// Lines whose fields may be quoted or escaped; a tag that only some begin with, and a note that not all have.
DFDLGrammar* delimitedGrammar(DFDLHeap* heap, int32_t) {
    GrammarBuilder builder;
    auto record = builder.complexElement("file").complexElement("record").occurs(0, -1).occursImplicit();
    record.terminator("%NL;").finalTerminatorCanBeMissing();
    auto fields = record.content().separator(";", PIF::MPIFEnums::INFIX, PIF::MPIFEnums::SUPPRESS_AT_END);
    auto tagged = fields.sequence();
    tagged.text("tag").delimited().initiator("#").terminator(":%WSP*;").occurs(0, 1).occursImplicit();
    tagged.text("id").delimited().escapeCharacter("?", "?");
    fields.text("name").delimited().escapeBlock("\"", "\"", "\"").nilLiteral("none%WSP+;at%WSP+;all");
    fields.text("note").delimited().trimRight("%SP;").occurs(0, 1).occursImplicit();
    return builder.load(heap);
}
std::string delimitedData(int32_t count) {
    std::string data;
    for (int32_t i = 0; i < count; ++i) {
        if (i % 3 == 0) data += "#tag:  ";
        data += std::to_string(i) + (i % 2 == 0 ? "?;" : "?\xC3\xA4") + ";\"N\xC3\xA4m\"\"chen; 12\"";
        if (i % 3 == 1) data += ";note    ";
        data += i % 2 == 0 ? "\r\n" : "\n";
    }
    return data;
}
int64_t delimitedFields(int32_t count) { return 2 * count + (count + 2) / 3 + (count + 1) / 3; }

Format counted() { return {"counted", countedGrammar, fixedData, fixedFields}; }
Format uncounted() { return {"uncounted", uncountedGrammar, fixedData, fixedFields}; }
Format delimited() { return {"delimited", delimitedGrammar, delimitedData, delimitedFields}; }

Format typed(const ManyRecords& format) {
    const auto data = [&format](int32_t count) {
        std::string all;
        for (int32_t i = 0; i < count; ++i) all += format.record;
        return all;
    };
    return {format.name, [&format](DFDLHeap* heap, int32_t) { return format.grammar(heap); }, data,
            [&format](int32_t count) { return int64_t{count} * format.fields; }};
}

std::vector<Format> withTyped(std::vector<Format> formats) {
    for (const ManyRecords& format : manyRecords()) formats.push_back(typed(format));
    return formats;
}

struct Run {
    int parsed;
    int result;
    int64_t fields;
};

template <class... Value>
void countField(DFDLDocHandler* handler, Value...) {
    ++*static_cast<int64_t*>(DFDLDocHandler_getContextObject(handler));
}

void countFields(DFDLDocHandler* handler) {
    DFDLDocHandler_setElementStringValueCallback(handler, countField);
    DFDLDocHandler_setElementIntValueCallback(handler, countField);
    DFDLDocHandler_setElementLongValueCallback(handler, countField);
    DFDLDocHandler_setElementShortValueCallback(handler, countField);
    DFDLDocHandler_setElementByteValueCallback(handler, countField);
    DFDLDocHandler_setElementULongValueCallback(handler, countField);
    DFDLDocHandler_setElementUIntValueCallback(handler, countField);
    DFDLDocHandler_setElementUShortValueCallback(handler, countField);
    DFDLDocHandler_setElementUByteValueCallback(handler, countField);
    DFDLDocHandler_setElementFloatValueCallback(handler, countField);
    DFDLDocHandler_setElementDoubleValueCallback(handler, countField);
    DFDLDocHandler_setElementDecimalValueCallback(handler, countField);
    DFDLDocHandler_setElementBooleanValueCallback(handler, countField);
    DFDLDocHandler_setElementCalendarValueCallback(handler, countField);
    DFDLDocHandler_setElementBinaryValueCallback(handler, countField);
    DFDLDocHandler_setElementNilValueCallback(handler, countField);
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
        countFields(documents);
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

int64_t callsToParse(const Format& format, int32_t count) {
    Allocator allocator;
    DFDLHeap* heap = heapOf(&allocator);
    DFDLGrammar* grammar = format.grammar(nullptr, count);
    DFDLParser* parser = new_DFDLParser(heap);
    const std::string data = format.data(count);
    DFDLParser_setMessageHeap(parser, heap);
    const Run run = parse(parser, grammar, data);
    EXPECT_EQ(1, run.parsed);
    EXPECT_EQ(format.fields(count), run.fields);
    delete_DFDLParser(parser);
    delete_DFDLGrammar(grammar);
    delete_DFDLHeap(heap);
    EXPECT_EQ(0, allocator.live);
    return allocator.calls;
}

TEST(ParserMemory, AsksForNothingMoreForMoreRecords) {
    for (const Format& format : withTyped({counted(), uncounted(), delimited()})) {
        EXPECT_EQ(callsToParse(format, 100), callsToParse(format, 110)) << format.name;
    }
}

// Loads and parses with the given call refused. Returns whether a call was refused at all.
bool parseWithRefusal(const Format& format, int64_t refused, bool inPieces) {
    constexpr int32_t RECORDS = 4;
    const std::string data = format.data(RECORDS);
    Allocator allocator;
    allocator.refuse = refused;
    DFDLHeap* heap = heapOf(&allocator);
    DFDLGrammar* grammar = format.grammar(heap, RECORDS);
    DFDLParser* parser = grammar == nullptr ? nullptr : new_DFDLParser(heap);
    if (parser != nullptr) {
        const Run first = parse(parser, grammar, data, inPieces);
        const bool wasRefused = allocator.refused;
        EXPECT_EQ(wasRefused && first.parsed == 0, first.parsed == 0) << "call " << refused;
        allocator.refuse = -1;  // the second parse makes calls of its own
        const Run second = parse(parser, grammar, data, inPieces);
        EXPECT_EQ(1, second.parsed) << "after call " << refused << " was refused";
        EXPECT_EQ(format.fields(RECORDS), second.fields) << refused;
    }
    delete_DFDLParser(parser);
    delete_DFDLGrammar(grammar);
    delete_DFDLHeap(heap);
    EXPECT_EQ(0, allocator.live) << "blocks are left after call " << refused << " was refused";
    return allocator.refused;
}

void sweepRefusals(const Format& format, bool inPieces) {
    SCOPED_TRACE(format.name);
    int64_t refused = 0;
    while (refused < ANY_COUNT && parseWithRefusal(format, refused, inPieces)) ++refused;
    EXPECT_GT(refused, 100) << "the sweep has met the allocations of load and parse";
    EXPECT_LT(refused, ANY_COUNT);
}

TEST(ParserMemory, SurvivesTheRefusalOfAnyAllocation) {
    for (const Format& format : withTyped({counted(), delimited()})) sweepRefusals(format, false);
}

TEST(ParserMemory, SurvivesItWithEverythingSet) {
    for (const Format& format : withTyped({uncounted(), delimited()})) sweepRefusals(format, true);
}

}  // namespace
