#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/processor/dochandlereventbuffer.h"
#include "dfdl/processor/errorhandlereventbuffer.h"
#include "support/testheap.h"

namespace {

std::string narrow(const DFDLChar* text, size_t length) {
    std::string result;
    for (size_t index = 0; index < length; ++index) result += static_cast<char>(text[index]);
    return result;
}
std::string narrow(const DFDLChar* text) { return narrow(text, std::char_traits<DFDLChar>::length(text)); }

// The handlers of a parser that write what they are given into one line of text.
struct Log {
    std::string text;
    DFDLDocHandler* document = new_DFDLDocHandler();
    DFDLRegionHandler* regions = new_DFDLRegionHandler();
    DFDLErrorHandler* errors = new_DFDLErrorHandler();

    Log() {
        DFDLDocHandler_setContextObject(document, this);
        DFDLRegionHandler_setContextObject(regions, this);
        DFDLErrorHandler_setContextObject(errors, this);
        setDocumentCallbacks();
        setValueCallbacks();
        setRegionCallbacks();
        DFDLErrorHandler_setProcessingErrorCallback(errors, onError<'p'>);
        DFDLErrorHandler_setValidationErrorCallback(errors, onError<'v'>);
        DFDLErrorHandler_setSchemaDefinitionErrorCallback(errors, onError<'s'>);
    }
    ~Log() {
        delete_DFDLDocHandler(document);
        delete_DFDLRegionHandler(regions);
        delete_DFDLErrorHandler(errors);
    }
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

  private:
    static Log& of(DFDLDocHandler* handler) {
        return *static_cast<Log*>(DFDLDocHandler_getContextObject(handler));
    }
    static std::string& of(DFDLRegionHandler* handler) {
        return static_cast<Log*>(DFDLRegionHandler_getContextObject(handler))->text;
    }
    template <class Number>
    static void onNumber(DFDLDocHandler* handler, Number number, uint32_t type) {
        const char* size = std::is_floating_point_v<Number> ? "f" : std::is_signed_v<Number> ? "i" : "u";
        of(handler).text += size + std::to_string(8 * sizeof(Number)) + ":" + std::to_string(number) + "/" +
                            std::to_string(type) + " ";
    }
    template <char Kind>
    static void onError(DFDLErrorHandler* handler, const DFDLDiagnostic* diagnostic) {
        static_cast<Log*>(DFDLErrorHandler_getContextObject(handler))->text +=
            std::string(1, Kind) + std::to_string(DFDLDiagnostic_getType(diagnostic)) + ":" +
            narrow(DFDLDiagnostic_getCode(diagnostic)) + " ";
    }
    template <char Kind>
    static void onRegion(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD start,
                         DFDLWORD length) {
        of(handler) += std::string(1, Kind) + narrow(designator) + std::to_string(start) + "+" +
                       std::to_string(length) + " ";
    }
    template <char Kind>
    static void onBoundary(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD position) {
        of(handler) += std::string(1, Kind) + narrow(designator) + std::to_string(position) + " ";
    }
    void setDocumentCallbacks();
    void setValueCallbacks();
    void setRegionCallbacks();
};

void Log::setDocumentCallbacks() {
    DFDLDocHandler_setStartDocumentCallback(
        document, [](DFDLDocHandler* handler, const char* version, const DFDLChar* encoding, int32_t flags) {
            of(handler).text += std::string(version) + narrow(encoding) + std::to_string(flags) + " ";
        });
    DFDLDocHandler_setEndDocumentCallback(document, [](DFDLDocHandler* handler, DFDLWORD bytes) {
        of(handler).text += "end" + std::to_string(bytes) + " ";
    });
    DFDLDocHandler_setStartElementCallback(
        document, [](DFDLDocHandler* handler, int32_t elementId, const DFDLChar* name, int32_t namespaceId,
                     const DFDLChar* namespaceUri, const DFDLChar* designator, DFDLWORD startBit) {
            of(handler).text += "<" + narrow(name) + std::to_string(elementId) + narrow(namespaceUri) +
                                std::to_string(namespaceId) + narrow(designator) + "@" +
                                std::to_string(startBit) + " ";
        });
    DFDLDocHandler_setEndElementCallback(document, [](DFDLDocHandler* handler, DFDLWORD endBit) {
        of(handler).text += ">" + std::to_string(endBit) + " ";
    });
    DFDLDocHandler_setElementNilValueCallback(document,
                                              [](DFDLDocHandler* handler) { of(handler).text += "nil "; });
}

void Log::setValueCallbacks() {
    DFDLDocHandler_setElementStringValueCallback(
        document, [](DFDLDocHandler* handler, const DFDLChar* characters, int32_t length, uint32_t type) {
            of(handler).text +=
                "'" + narrow(characters, static_cast<size_t>(length)) + "'/" + std::to_string(type) + " ";
        });
    DFDLDocHandler_setElementDecimalValueCallback(
        document, [](DFDLDocHandler* handler, const char* digits, int32_t length, uint32_t type) {
            EXPECT_EQ(std::char_traits<char>::length(digits), static_cast<size_t>(length));
            of(handler).text += "d" + std::string(digits) + "/" + std::to_string(type) + " ";
        });
    DFDLDocHandler_setElementBinaryValueCallback(
        document, [](DFDLDocHandler* handler, const uint8_t* bytes, DFDLWORD length, uint32_t type) {
            of(handler).text += "b" + std::to_string(length) + ":" + std::to_string(bytes[0]) + "/" +
                                std::to_string(type) + " ";
        });
    DFDLDocHandler_setElementCalendarValueCallback(
        document, [](DFDLDocHandler* handler, const DFDLCalendar* calendar, uint32_t type) {
            of(handler).text += (calendar == nullptr ? "c/" : "C/") + std::to_string(type) + " ";
        });
    DFDLDocHandler_setElementIntValueCallback(document, onNumber<int32_t>);
    DFDLDocHandler_setElementLongValueCallback(document, onNumber<int64_t>);
    DFDLDocHandler_setElementShortValueCallback(document, onNumber<int16_t>);
    DFDLDocHandler_setElementByteValueCallback(document, onNumber<int8_t>);
    DFDLDocHandler_setElementUIntValueCallback(document, onNumber<uint32_t>);
    DFDLDocHandler_setElementULongValueCallback(document, onNumber<uint64_t>);
    DFDLDocHandler_setElementUShortValueCallback(document, onNumber<uint16_t>);
    DFDLDocHandler_setElementUByteValueCallback(document, onNumber<uint8_t>);
    DFDLDocHandler_setElementFloatValueCallback(document, onNumber<float>);
    DFDLDocHandler_setElementDoubleValueCallback(document, onNumber<double>);
    DFDLDocHandler_setElementBooleanValueCallback(
        document, [](DFDLDocHandler* handler, DFDLBoolean value, uint32_t type) {
            of(handler).text += (value != 0 ? "true/" : "false/") + std::to_string(type) + " ";
        });
}

void Log::setRegionCallbacks() {
    DFDLRegionHandler_setElementStartCallback(
        regions, [](DFDLRegionHandler* handler, const DFDLChar* name, const DFDLChar* namespaceUri,
                    const DFDLChar* designator, DFDLWORD position, const char* encoding) {
            of(handler) += "(" + narrow(name) + narrow(namespaceUri) + narrow(designator) + "@" +
                           std::to_string(position) + (encoding == nullptr ? "" : encoding) + " ";
        });
    DFDLRegionHandler_setElementEndCallback(regions, onBoundary<')'>);
    DFDLRegionHandler_setGroupStartCallback(regions, onBoundary<'['>);
    DFDLRegionHandler_setGroupEndCallback(regions, onBoundary<']'>);
    DFDLRegionHandler_setLeadingAlignmentRegionCallback(regions, onRegion<'l'>);
    DFDLRegionHandler_setInitiatorRegionCallback(regions, onRegion<'i'>);
    DFDLRegionHandler_setSimpleContentRegionCallback(regions, onRegion<'s'>);
    DFDLRegionHandler_setTerminatorRegionCallback(regions, onRegion<'t'>);
    DFDLRegionHandler_setTrailingAlignmentRegionCallback(regions, onRegion<'a'>);
    DFDLRegionHandler_setPrefixSeparatorRegionCallback(regions, onRegion<'1'>);
    DFDLRegionHandler_setInfixSeparatorRegionCallback(regions, onRegion<'2'>);
    DFDLRegionHandler_setPostfixSeparatorRegionCallback(regions, onRegion<'3'>);
}

struct Engine : TestAdapter {
    Log log;
    ResourceCatalog* catalog = new_ResourceCatalog(adapter, adapter->context);
    DocHandlerAdapter* handlers = new_DocHandlerAdapter(adapter, adapter->context, catalog, false);
    DocHandlerEventBuffer* buffer = new_DocHandlerEventBuffer(adapter);
    ErrorHandlerEventBuffer* errors = new_ErrorHandlerEventBuffer(adapter, adapter->context, catalog);
    DFDLUString* name = new_DFDLUStringFromUChars(adapter, u"n", 1);
    DFDLUString* designator = new_DFDLUStringFromUChars(adapter, u"~", 1);

    Engine() {
        handlers->docHandler = log.document;
        handlers->errorHandler = errors->errorHandler = log.errors;
        buffer->adapter = handlers;
    }
    ~Engine() {
        delete_DocHandlerEventBuffer(buffer);
        delete_DocHandlerAdapter(handlers);
        delete_ErrorHandlerEventBuffer(errors);
        delete_ResourceCatalog(catalog);
        delete_DFDLUString(name);
        delete_DFDLUString(designator);
    }
    DFDLPoolingFactory* pools() { return adapter->poolingFactory; }
    DFDLValue* integer(int64_t number) { return DFDLPoolingFactory_getIntDFDLValue(pools(), number); }
    void start(DocHandlerEventBuffer* to, int64_t bit) {
        DocHandlerEventBuffer_startElement(to, 7, name, 8, nullptr, designator, bit);
    }
    // One element with a value, from its start to its end.
    void element(DocHandlerEventBuffer* to, int64_t number) {
        start(to, number);
        DocHandlerEventBuffer_elementValue(to, integer(number));
        DocHandlerEventBuffer_endElement(to, number + 1);
    }
    void allKinds(DocHandlerEventBuffer* to);
    // A record of a text and a number.
    DHRecordMark startRecord(int64_t bit);
    void record(int64_t bit);
    std::string said() { return std::exchange(log.text, std::string()); }
};

void Engine::allKinds(DocHandlerEventBuffer* to) {
    DocHandlerEventBuffer_elementStart(to, 7, name, 8, name, designator, 1, "ASCII");
    start(to, 8);
    DocHandlerEventBuffer_groupStart(to, designator, 2);
    int64_t position = 10;
    for (const auto region :
         {DocHandlerEventBuffer_parsedLeadingAlignmentRegion, DocHandlerEventBuffer_parsedInitiatorRegion,
          DocHandlerEventBuffer_parsedSimpleContentRegion, DocHandlerEventBuffer_parsedTerminatorRegion,
          DocHandlerEventBuffer_parsedTrailingAlignmentRegion,
          DocHandlerEventBuffer_parsedPrefixSeparatorRegion, DocHandlerEventBuffer_parsedInfixSeparatorRegion,
          DocHandlerEventBuffer_parsedPostfixSeparatorRegion}) {
        region(to, designator, position++, 5);
        region(to, designator, position, 0);
    }
    DocHandlerEventBuffer_elementValue(to, integer(3));
    DocHandlerEventBuffer_elementNilValue(to);
    const Owned<ProcessingError, delete_ProcessingError> error(new_ProcessingError(adapter));
    ProcessingError_setValues(error.get(), "", 0, "CTDP3107E", ERROR_RECOVERABLE, SUBKIND_ASSERT, "%S", u"x");
    DocHandlerEventBuffer_recoverableError(to, error.get());
    DocHandlerEventBuffer_groupEnd(to, designator, 3);
    DocHandlerEventBuffer_endElement(to, 9);
    DocHandlerEventBuffer_elementEnd(to, designator, 4);
}

constexpr PlainElement PLAIN_RECORD = {u"r", u"", u"~", 5, 6, TYPE_STRING};
constexpr PlainElement PLAIN_TEXT_ELEMENT = {u"t", u"", u"~", 1, 2, TYPE_STRING};
constexpr PlainElement PLAIN_NUMBER_ELEMENT = {u"i", u"", u"~", 3, 4, TYPE_INT};

DHRecordMark Engine::startRecord(int64_t bit) {
    const DHRecordMark mark = DocHandlerEventBuffer_startRecord(buffer, &PLAIN_RECORD, bit);
    UChar* text = DocHandlerEventBuffer_roomForText(buffer, 2);
    text[0] = u'x';
    text[1] = 0;
    DocHandlerEventBuffer_plainText(buffer, &PLAIN_TEXT_ELEMENT, text, 1, bit, bit + 1);
    DocHandlerEventBuffer_plainWord(buffer, &PLAIN_NUMBER_ELEMENT, {bit, 0}, bit + 1, bit + 2);
    return mark;
}

void Engine::record(int64_t bit) {
    startRecord(bit);
    DocHandlerEventBuffer_endRecord(buffer, &PLAIN_RECORD, bit + 2);
}

const char ALL_HELD[] =
    "(nn~@1 <n78~@8 [~2 l~10+5 i~11+5 s~12+5 t~13+5 a~14+5 1~15+5 2~16+5 3~17+5 i32:3/6 nil v4:CTDP3107E ]~3 "
    ">9 )~4 ";

TEST(EventBuffer, everyKindDirectHeldAndChained) {
    Engine engine;
    engine.handlers->regionHandler = engine.log.regions;
    engine.allKinds(engine.buffer);
    std::string direct = ALL_HELD;
    EXPECT_EQ(engine.said(), direct.replace(direct.find("@1 "), 3, "@1ASCII "));

    DHCheckPoint* checkPoint = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
    engine.allKinds(engine.buffer);
    EXPECT_EQ(engine.said(), "");
    DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, checkPoint);
    EXPECT_EQ(engine.said(), ALL_HELD);

    DocHandlerEventBuffer* proxy = new_DocHandlerEventBuffer(engine.adapter);
    DocHandlerEventBuffer_chainTo(proxy, engine.buffer);
    engine.allKinds(proxy);
    EXPECT_EQ(engine.said(), "");
    DocHandlerEventBuffer_flush(proxy);
    std::string chained = ALL_HELD;
    EXPECT_EQ(engine.said(), chained.replace(chained.find("<n78~"), 5, "<n00~")) << "a proxy drops the ids";
    delete_DocHandlerEventBuffer(proxy);
}

TEST(EventBuffer, regionsAreNotHeldWhereNobodyWantsThem) {
    Engine engine;
    DHCheckPoint* checkPoint = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
    engine.allKinds(engine.buffer);
    EXPECT_EQ(DocHandlerEventBuffer_eventCount(engine.buffer), 5);
    DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, checkPoint);
    EXPECT_EQ(engine.said(), "<n78~@8 i32:3/6 nil v4:CTDP3107E >9 ");
}

TEST(EventBuffer, documentEvents) {
    Engine engine;
    DocHandlerEventBuffer_startDocument(engine.buffer);
    DocHandlerAdapter_endDocument(engine.handlers, 5);
    EXPECT_EQ(engine.said(), "1.00 end5 ");
}

TEST(EventBuffer, onlyTheLastReleaseDelivers) {
    Engine engine;
    DHCheckPoint* outer = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
    engine.element(engine.buffer, 1);
    DHCheckPoint* inner = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
    engine.element(engine.buffer, 2);
    DocHandlerEventBuffer_restoreToCheckPoint(engine.buffer, inner);
    engine.element(engine.buffer, 3);
    DocHandlerEventBuffer_restoreToCheckPoint(engine.buffer, inner);
    EXPECT_EQ(DocHandlerEventBuffer_eventCount(engine.buffer), 3) << "restored twice to the same place";
    engine.element(engine.buffer, 4);
    DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, inner);
    EXPECT_EQ(engine.said(), "");
    DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, outer);
    EXPECT_EQ(engine.said(), "<n78~@1 i32:1/6 >2 <n78~@4 i32:4/6 >5 ");
    engine.element(engine.buffer, 5);
    EXPECT_EQ(engine.said(), "<n78~@5 i32:5/6 >6 ");
}

TEST(EventBuffer, refreshHoldsOnceMore) {
    Engine engine;
    DHCheckPoint* first = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
    DocHandlerEventBuffer_refreshCheckPoint(engine.buffer, first);
    EXPECT_EQ(engine.buffer->holdLevel, 2);
    engine.element(engine.buffer, 1);
    DocHandlerEventBuffer_flush(engine.buffer);
    EXPECT_EQ(engine.buffer->holdLevel, 0);
    EXPECT_EQ(engine.said(), "<n78~@1 i32:1/6 >2 ");
}

const char RECORD_AT_4[] = "<r56~@4 <t12~@4 'x'/0 >5 <i34~@5 i32:4/6 >6 >6 ";
const char RECORD_AT_8[] = "<r56~@8 <t12~@8 'x'/0 >9 <i34~@9 i32:8/6 >10 >10 ";

TEST(EventBuffer, recordsWaitForTheirEnd) {
    Engine engine;
    const DHRecordMark dropped = engine.startRecord(4);
    EXPECT_EQ(engine.said(), "");
    DocHandlerEventBuffer_dropRecord(engine.buffer, dropped);
    EXPECT_EQ(engine.buffer->holdLevel, 0);
    engine.record(4);
    EXPECT_EQ(engine.said(), RECORD_AT_4) << "nothing else waits";
    engine.record(8);
    EXPECT_EQ(engine.said(), RECORD_AT_8) << "once";
    EXPECT_EQ(DocHandlerEventBuffer_eventCount(engine.buffer), 0);
}

// A record may begin a run of held elements or go on with one, and be dropped in either.
TEST(EventBuffer, recordsInAnAttemptWaitForItsEnd) {
    for (const bool runIsOpen : {false, true}) {
        Engine engine;
        DHCheckPoint* attempt = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
        engine.start(engine.buffer, 0);
        if (runIsOpen) engine.record(4);
        const int32_t before = DocHandlerEventBuffer_eventCount(engine.buffer);
        DocHandlerEventBuffer_dropRecord(engine.buffer, engine.startRecord(1000));
        EXPECT_EQ(DocHandlerEventBuffer_eventCount(engine.buffer), before);
        engine.record(8);
        DocHandlerEventBuffer_endElement(engine.buffer, 20);
        EXPECT_EQ(engine.said(), "");
        DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, attempt);
        EXPECT_EQ(engine.said(),
                  "<n78~@0 " + std::string(runIsOpen ? RECORD_AT_4 : "") + RECORD_AT_8 + ">20 ");

        attempt = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
        engine.record(1000);
        DocHandlerEventBuffer_restoreToCheckPoint(engine.buffer, attempt);
        DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, attempt);
        EXPECT_EQ(engine.said(), "");
    }
}

TEST(EventBuffer, proxyHandsOnToABufferThatHolds) {
    Engine engine;
    DHCheckPoint* checkPoint = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
    DocHandlerEventBuffer* proxy = new_DocHandlerEventBuffer(engine.adapter);
    DocHandlerEventBuffer_chainTo(proxy, engine.buffer);
    engine.element(proxy, 1);
    DocHandlerEventBuffer_flush(proxy);
    engine.element(proxy, 2);
    delete_DocHandlerEventBuffer(proxy);
    EXPECT_EQ(engine.said(), "");
    DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, checkPoint);
    EXPECT_EQ(engine.said(), "<n00~@1 i32:1/6 >2 <n00~@2 i32:2/6 >3 ");
}

struct EmptyCase {
    const char* name;
    const char* events;  // ( start region, < start, v value, > end, ) end region, [ ] group, i region
    const char* left;
};

const EmptyCase EMPTY_ELEMENTS[] = {
    {"no event at all", "", ""},
    {"nothing ended", "<", "<"},
    {"an empty element goes", "<v><>", "<v>"},
    {"an element with a value stays", "<v>", "<v>"},
    {"what is nested and empty goes too", "<v><<><>>", "<v>"},
    {"a nested value keeps it", "<<v>>", "<<v>>"},
    {"its region start goes with it, its end not", "<v>(<[]>)", "<v>)"},
    {"a region keeps it", "(<[i]>)", "(<[i]>)"},
    {"one without a start goes from the beginning", "[>v", "v"},
    {"an end at the beginning stays", ">", ">"},
};

void play(Engine& engine, char event) {
    DocHandlerEventBuffer* to = engine.buffer;
    switch (event) {
        case '(':
            return DocHandlerEventBuffer_elementStart(to, 0, nullptr, 0, nullptr, nullptr, 0, nullptr);
        case '<':
            return DocHandlerEventBuffer_startElement(to, 0, nullptr, 0, nullptr, nullptr, 0);
        case 'v':
            return DocHandlerEventBuffer_elementNilValue(to);
        case '>':
            return DocHandlerEventBuffer_endElement(to, 0);
        case ')':
            return DocHandlerEventBuffer_elementEnd(to, nullptr, 0);
        case '[':
            return DocHandlerEventBuffer_groupStart(to, nullptr, 0);
        case ']':
            return DocHandlerEventBuffer_groupEnd(to, nullptr, 0);
        default:
            return DocHandlerEventBuffer_parsedInitiatorRegion(to, nullptr, 0, 1);
    }
}

TEST(EventBuffer, discardsEmptyComplexElements) {
    static const std::pair<int32_t, char> LETTERS[] = {{EVENT_ELEMENT_START, '('}, {EVENT_START_ELEMENT, '<'},
                                                       {EVENT_NIL, 'v'},           {EVENT_END_ELEMENT, '>'},
                                                       {EVENT_ELEMENT_END, ')'},   {EVENT_GROUP_START, '['},
                                                       {EVENT_GROUP_END, ']'},     {EVENT_INITIATOR, 'i'}};
    Engine engine;
    engine.handlers->regionHandler = engine.log.regions;
    engine.buffer->holdLevel = 1;
    for (const EmptyCase& one : EMPTY_ELEMENTS) {
        for (const char* event = one.events; *event != '\0'; ++event) play(engine, *event);
        DocHandlerEventBuffer_discardEmptyComplexElement(engine.buffer);
        std::string left;
        for (int32_t index = 0; index < DocHandlerEventBuffer_eventCount(engine.buffer); ++index) {
            const auto* event = ArrayList_getPointer<CachedEvent>(engine.buffer->events, index);
            for (const auto& [kind, letter] : LETTERS) {
                if (kind == event->kind) left += letter;
            }
        }
        EXPECT_EQ(left, one.left) << one.name;
        DocHandlerEventBuffer_discardEventsAfterIndex(engine.buffer, 0);
    }
}

struct ValueCase {
    DFDLValue* (*make)(DFDLHeapAdapter* heap);
    const char* plain;
    const char* fast;  // with fast small integers
};

template <int64_t Number, auto Create>
DFDLValue* make(DFDLHeapAdapter* heap) {
    return Create(heap, Number);
}
template <uint32_t ModelType, int32_t Exponent = 0>
DFDLValue* makeDecimal(DFDLHeapAdapter* heap) {
    DFDLDecimal* number = new_DFDLDecimalFromChar(heap, nullptr, "36893488147419103232", 20);
    if (Exponent != 0) DFDLDecimal_setDecimalAt(number, -Exponent);
    DFDLValue* value = DecimalDV_createDFDLValue(heap, number);
    DecimalDV_setModelSchemaType(value, ModelType);
    return value;
}
uint8_t binary[] = {200, 1};

const ValueCase VALUES[] = {
    {make<-1, LongLongDV_createDFDLValue>, "d-1/2 ", "i64:-1/2 "},
    {make<INT64_MIN, LongLongDV_createDFDLValue>, "d-9223372036854775808/2 ", "i64:-9223372036854775808/2 "},
    {[](DFDLHeapAdapter* heap) { return NonNegativeIntegerDV_createDFDLValue(heap, UINT64_MAX); },
     "d18446744073709551615/3 ", "u64:18446744073709551615/3 "},
    {make<-2, LongDV_createDFDLValue>, "i64:-2/4 ", nullptr},
    {make<-3, IntDV_createDFDLValue>, "i32:-3/6 ", nullptr},
    {make<-4, ShortDV_createDFDLValue>, "i16:-4/8 ", nullptr},
    {make<-5, ByteDV_createDFDLValue>, "i8:-5/10 ", nullptr},
    {make<6, UnsignedLongDV_createDFDLValue>, "u64:6/5 ", nullptr},
    {make<7, UnsignedIntDV_createDFDLValue>, "u32:7/7 ", nullptr},
    {make<8, UnsignedShortDV_createDFDLValue>, "u16:8/9 ", nullptr},
    {make<255, UnsignedByteDV_createDFDLValue>, "u8:255/11 ", nullptr},
    {make<1, BooleanDV_createDFDLValue>, "true/18 ", nullptr},
    {[](DFDLHeapAdapter* heap) { return FloatDV_createDFDLValue(heap, 1.5F); }, "f32:1.500000/12 ", nullptr},
    {[](DFDLHeapAdapter* heap) { return DoubleDV_createDFDLValue(heap, -2.5); }, "f64:-2.500000/13 ",
     nullptr},
    {[](DFDLHeapAdapter* heap) {
         return DFDLPoolingFactory_getStringDFDLValue(
             heap->poolingFactory, DFDLUStringPooler_getDFDLUStringFromUChars(heap, u"ab", 2));
     },
     "'ab'/0 ", nullptr},
    {[](DFDLHeapAdapter* heap) { return HexBinaryDV_createDFDLValue(heap, binary, 2, false); }, "b2:200/17 ",
     nullptr},
    {[](DFDLHeapAdapter* heap) { return DateTimeDV_createDFDLValue(heap, nullptr, false, false); }, "c/14 ",
     nullptr},
    {[](DFDLHeapAdapter* heap) { return DateDV_createDFDLValue(heap, nullptr, false, false); }, "c/15 ",
     nullptr},
    {[](DFDLHeapAdapter* heap) { return TimeDV_createDFDLValue(heap, nullptr, false, false); }, "c/16 ",
     nullptr},
    {makeDecimal<SIMPLE_DECIMAL>, "d36893488147419103232/1 ", nullptr},
    {makeDecimal<SIMPLE_INTEGER>, "d36893488147419103232/2 ", nullptr},
    {makeDecimal<SIMPLE_NON_NEGATIVE_INTEGER>, "d36893488147419103232/3 ", nullptr},
    {makeDecimal<SIMPLE_UNSIGNED_LONG>, "d36893488147419103232/5 ", nullptr},
    {makeDecimal<SIMPLE_BYTE>, "d36893488147419103232/1 ", nullptr},
    {makeDecimal<SIMPLE_DECIMAL, 2>, "d3.6893488147419103232E+21/1 ", nullptr},
    {makeDecimal<SIMPLE_INTEGER, 2>, "d3689348814741910323200/2 ", nullptr},
    {makeDecimal<SIMPLE_INTEGER, -2>, "d368934881474191032.32/2 ", nullptr},
    {makeDecimal<SIMPLE_NON_NEGATIVE_INTEGER, 1>, "d368934881474191032320/3 ", nullptr},
    {makeDecimal<SIMPLE_INTEGER, 99999999>, "d3.6893488147419103232E+100000018/2 ", nullptr},
    {DFDLValue_createValue, "", nullptr},
};

TEST(DocHandlerAdapter, valuesReachTheSlotOfTheirKind) {
    Engine engine;
    for (const bool fast : {false, true}) {
        engine.handlers->fastSmallIntegers = fast ? 1 : 0;
        for (const ValueCase& one : VALUES) {
            DocHandlerEventBuffer_elementValue(engine.buffer, one.make(engine.adapter));
            EXPECT_EQ(engine.said(), fast && one.fast != nullptr ? one.fast : one.plain);
        }
    }
}

// The built-in handler, and slots that the caller has left empty.
TEST(DocHandlerAdapter, nobodyListens) {
    Engine engine;
    engine.handlers->docHandler = new_DoNothingDocHandler(engine.adapter);
    engine.handlers->errorHandler = nullptr;
    for (const bool fast : {false, true}) {
        engine.handlers->fastSmallIntegers = fast ? 1 : 0;
        for (const ValueCase& one : VALUES) {
            DocHandlerEventBuffer_elementValue(engine.buffer, one.make(engine.adapter));
        }
    }
    DocHandlerEventBuffer_startDocument(engine.buffer);
    engine.allKinds(engine.buffer);
    EXPECT_EQ(engine.said(), "");
    delete_DoNothingDocHandler(engine.handlers->docHandler);
    for (DFDLRegionHandler* regions = new_DFDLRegionHandler(); regions != nullptr;
         delete_DFDLRegionHandler(std::exchange(regions, nullptr))) {
        engine.handlers->docHandler = engine.log.document;
        engine.handlers->regionHandler = regions;
        engine.allKinds(engine.buffer);
    }
}

TEST(EventBuffer, costsNoHeapOncePoolsAreFilled) {
    Engine engine;
    const auto speculate = [&engine] {
        DHCheckPoint* checkPoint = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
        for (int64_t number = 0; number < 30; ++number) engine.element(engine.buffer, number);
        DocHandlerEventBuffer_restoreToCheckPoint(engine.buffer, checkPoint);
        for (int64_t number = 0; number < 20; ++number) engine.element(engine.buffer, number);
        DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, checkPoint);
    };
    speculate();
    const long before = engine.heap.allocations;
    for (int round = 0; round < 10; ++round) speculate();
    EXPECT_EQ(engine.heap.allocations, before);
}

TEST(EventBuffer, leavesNothingBehind) {
    Engine engine;
    engine.handlers->regionHandler = engine.log.regions;
    const auto speculate = [&engine] {
        DHCheckPoint* checkPoint = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
        engine.allKinds(engine.buffer);
        DocHandlerEventBuffer_restoreToCheckPoint(engine.buffer, checkPoint);
        engine.allKinds(engine.buffer);
        DocHandlerEventBuffer_elementValue(engine.buffer, makeDecimal<SIMPLE_INTEGER>(engine.adapter));
        DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, checkPoint);
        return DFDLHeapAdapter_countBlocks(engine.adapter);
    };
    const size_t before = speculate();
    EXPECT_EQ(speculate(), before);
}

void raise(ProcessingError* record, int32_t kind) {
    ProcessingError_reset(record);
    ProcessingError_setValues(record, "", 0, "CTDP3059E", kind, SUBKIND_NONE, "%S", u"x");
}

TEST(ErrorEventBuffer, deliversByKind) {
    Engine engine;
    const Owned<ProcessingError, delete_ProcessingError> record(new_ProcessingError(engine.adapter));
    const char* expected[] = {"p1:CTDP3059E ", "", "", "v3:CTDP3059E ", "s2:CTDP3059E ", "", "", ""};
    for (int32_t kind = 0; kind < 8; ++kind) {
        raise(record.get(), kind);
        ErrorHandlerEventBuffer_handleError(engine.errors, record.get());
        EXPECT_EQ(engine.said(), expected[kind]) << kind;
    }
    engine.errors->errorHandler = nullptr;
    raise(record.get(), ERROR_VALIDATION);
    ErrorHandlerEventBuffer_handleError(engine.errors, record.get());
}

TEST(ErrorEventBuffer, holdsUntilTheLastRelease) {
    Engine engine;
    const Owned<ProcessingError, delete_ProcessingError> record(new_ProcessingError(engine.adapter));
    const auto handle = [&](int32_t kind) {
        raise(record.get(), kind);
        ErrorHandlerEventBuffer_handleError(engine.errors, record.get());
    };
    EHCheckPoint* outer = ErrorHandlerEventBuffer_getCheckPoint(engine.errors);
    handle(ERROR_VALIDATION);
    EHCheckPoint* inner = ErrorHandlerEventBuffer_getCheckPoint(engine.errors);
    for (int count = 0; count < 12; ++count) handle(ERROR_PROCESSING);
    ErrorHandlerEventBuffer_restoreToCheckPoint(engine.errors, inner);
    handle(ERROR_SCHEMA_DEFINITION);
    ErrorHandlerEventBuffer_releaseCheckPoint(engine.errors, inner);
    EXPECT_EQ(engine.said(), "");
    ErrorHandlerEventBuffer_releaseCheckPoint(engine.errors, outer);
    EXPECT_EQ(engine.said(), "v3:CTDP3059E s2:CTDP3059E ");

    outer = ErrorHandlerEventBuffer_getCheckPoint(engine.errors);
    handle(ERROR_VALIDATION);
    ErrorHandlerEventBuffer_flushErrorBuffer(engine.errors);
    EXPECT_EQ(engine.said(), "v3:CTDP3059E ");
    EXPECT_EQ(engine.errors->holdLevel, 0);
    ErrorHandlerEventBuffer_releaseCheckPoint(engine.errors, outer);
    EXPECT_EQ(engine.said(), "");
}

// Whatever runs out of memory while events are held or delivered, nothing is given out twice and the buffer
// works again.
TEST(EventBuffer, survivesWhenMemoryRunsOut) {
    for (long failAt = 0;; ++failAt) {
        Engine engine;
        engine.heap.failAt = engine.heap.allocations + failAt;
        bool failed = false;
        try {
            DHCheckPoint* checkPoint = DocHandlerEventBuffer_getCheckPoint(engine.buffer);
            for (int64_t number = 0; number < 12; ++number) {
                DocHandlerEventBuffer_elementValue(engine.buffer,
                                                   makeDecimal<SIMPLE_INTEGER>(engine.adapter));
            }
            engine.allKinds(engine.buffer);
            engine.record(4);
            DocHandlerEventBuffer_releaseCheckPoint(engine.buffer, checkPoint);
            for (int64_t number = 0; number < 300; ++number) engine.record(number);
            engine.startRecord(1000);
            for (int64_t number = 0; number < 600; ++number)
                DocHandlerEventBuffer_plainWord(engine.buffer, &PLAIN_NUMBER_ELEMENT, {number, 0}, 0, 0);
        } catch (const AllocationFailure&) {
            failed = true;
        }
        engine.heap.failAt = -1;
        engine.said();
        engine.buffer->holdLevel = 0;
        DocHandlerEventBuffer_discardEventsAfterIndex(engine.buffer, 0);
        engine.element(engine.buffer, 1);
        EXPECT_EQ(engine.said(), "<n78~@1 i32:1/6 >2 ");
        if (!failed) break;
    }
}

}  // namespace
