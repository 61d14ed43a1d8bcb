#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/messagekeys.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/foundation/xsvalue.h"
#include "support/testheap.h"

namespace {

struct Line {
    std::string slot;
    std::u16string statement;
    std::u16string key;
    std::u16string method;
    std::u16string designator;
    std::u16string path;
    std::vector<std::u16string> objects;
};

std::u16string copy(const DFDLChar* text) { return text == nullptr ? u"null" : text; }

Line lineOf(const char* slot, const DFDLTrace* trace) {
    const DFDLChar* characters = nullptr;
    int32_t length = 0;
    DFDLTrace_getStatement(trace, &characters, &length);
    Line line = {slot,
                 characters == nullptr ? u"null" : std::u16string(characters, static_cast<size_t>(length)),
                 copy(DFDLTrace_getMessageKey(trace)),
                 copy(DFDLTrace_getMethodName(trace)),
                 copy(DFDLTrace_getSCD(trace)),
                 copy(DFDLTrace_getXPath(trace)),
                 {}};
    for (int32_t index = 0; index < DFDLTrace_getNumberOfObjects(trace); ++index) {
        DFDLTrace_getObject(trace, index, &characters, &length);
        line.objects.emplace_back(characters, static_cast<size_t>(length));
    }
    return line;
}

// An engine's trace with both handlers; what they receive is kept line by line.
struct Listener : TestAdapter {
    std::vector<Line> lines;
    ResourceCatalog* catalog = new_ResourceCatalog(adapter, adapter->context);
    TraceHandlerAdapter* trace = new_TraceHandlerAdapter(adapter, adapter->context, catalog);
    DFDLServiceTraceHandler* service = new_DFDLServiceTraceHandler();
    DFDLUserTraceHandler* user = new_DFDLUserTraceHandler();

    Listener() {
        EXPECT_TRUE(ResourceCatalog_openResource(catalog));
        DFDLServiceTraceHandler_setContextObject(service, this);
        DFDLUserTraceHandler_setContextObject(user, this);
        DFDLServiceTraceHandler_setServiceInfoCallback(service, onService<0>);
        DFDLServiceTraceHandler_setServiceErrorCallback(service, onService<1>);
        DFDLServiceTraceHandler_setServiceFatalCallback(service, onService<2>);
        DFDLServiceTraceHandler_setServiceEntryCallback(service, onService<3>);
        DFDLServiceTraceHandler_setServiceExitCallback(service, onService<4>);
        DFDLServiceTraceHandler_setServiceDetailCallback(service, onService<5>);
        DFDLUserTraceHandler_setUserInfoCallback(user, onUser<0>);
        DFDLUserTraceHandler_setUserErrorCallback(user, onUser<1>);
        DFDLUserTraceHandler_setUserFatalCallback(user, onUser<2>);
        TraceHandlerAdapter_setServiceTraceHandler(trace, service);
        TraceHandlerAdapter_setUserTraceHandler(trace, user);
    }
    ~Listener() {
        delete_TraceHandlerAdapter(trace);
        delete_ResourceCatalog(catalog);
        delete_DFDLServiceTraceHandler(service);
        delete_DFDLUserTraceHandler(user);
    }
    std::string slots() {
        std::string all;
        for (const Line& line : lines) all += line.slot + " ";
        lines.clear();
        return all;
    }

  private:
    template <int Slot>
    static void onService(DFDLServiceTraceHandler* handler, const DFDLTrace* record) {
        static constexpr const char* NAMES[] = {"info", "error", "fatal", "entry", "exit", "detail"};
        auto* self = static_cast<Listener*>(DFDLServiceTraceHandler_getContextObject(handler));
        self->lines.push_back(lineOf(NAMES[Slot], record));
    }
    template <int Slot>
    static void onUser(DFDLUserTraceHandler* handler, const DFDLTrace* record) {
        static constexpr const char* NAMES[] = {"userInfo", "userError", "userFatal"};
        auto* self = static_cast<Listener*>(DFDLUserTraceHandler_getContextObject(handler));
        self->lines.push_back(lineOf(NAMES[Slot], record));
    }
};

TEST(Trace, entryAndExit) {
    Listener listener;
    TraceHandlerAdapter_entry(listener.trace, "X_go");
    TraceHandlerAdapter_entryData(listener.trace, "X_go", "%s%d%D%Z", "a", 5, int64_t{-6}, nullptr);
    TraceHandlerAdapter_service(listener.trace, "X_go", "PS_STATE");
    TraceHandlerAdapter_exitData(listener.trace, "X_go", "%q%c", 'c');
    ASSERT_EQ(listener.lines.size(), 4U);
    const Line& plain = listener.lines[0];
    EXPECT_EQ(plain.statement, u"null");
    EXPECT_EQ(plain.method, u"X_go");
    EXPECT_TRUE(plain.objects.empty());
    const Line& data = listener.lines[1];
    EXPECT_EQ(data.statement, u"a 5 -6 (null)");
    EXPECT_EQ(data.objects, (std::vector<std::u16string>{u"a", u"5", u"-6", u"(null)"}));
    EXPECT_EQ(listener.lines[2].statement, u"PS_STATE");
    EXPECT_EQ(listener.lines[3].statement, u" c") << "an unknown letter is an empty insert";
    EXPECT_EQ(listener.slots(), "entry entry detail exit ");
}

TEST(Trace, flagsFollowTheHandlers) {
    Listener listener;
    const auto say = [&listener] {
        TraceHandlerAdapter_entry(listener.trace, "m");
        TraceHandlerAdapter_userTraceInfo(listener.trace, {}, ut_DFDLParser_rootElementIdentified, nullptr);
        return listener.slots();
    };
    EXPECT_EQ(say(), "entry userInfo info ");
    TraceHandlerAdapter_setUserTraceHandler(listener.trace, nullptr);
    EXPECT_EQ(say(), "entry ");
    TraceHandlerAdapter_setServiceTraceHandler(listener.trace, listener.service);
    EXPECT_EQ(say(), "entry info ");
    TraceHandlerAdapter_setUserTraceHandler(listener.trace, listener.user);
    TraceHandlerAdapter_setServiceTraceHandler(listener.trace, nullptr);
    EXPECT_EQ(say(), "") << "taking the service handler away silences user trace";
    TraceHandlerAdapter_setUserTraceHandler(listener.trace, listener.user);
    EXPECT_EQ(say(), "userInfo ");
    TraceHandlerAdapter_entry(nullptr, "m");
    EXPECT_EQ(listener.slots(), "");
}

TEST(Trace, placedMessageHasFourFixedInserts) {
    Listener listener;
    const std::u16string path(600, u'p');
    const TraceSubject subject = {u"scd", path.c_str(), true, 12, u"name"};
    TraceHandlerAdapter_userTraceInfo(listener.trace, subject, ut_DFDLParser_attemptOptionalElement, "%d", 3);
    const Line& line = listener.lines.at(0);
    EXPECT_TRUE(line.statement.starts_with(u"name at byte 12: ")) << "0 is the position, 1 the name";
    EXPECT_NE(line.statement.find(u" 3"), std::u16string::npos) << "the format's own count from 4";
    EXPECT_EQ(line.key, u"CTDP5012");
    EXPECT_EQ(line.designator, u"scd");
    EXPECT_EQ(line.path, path) << "the path of the record itself is whole";
    EXPECT_EQ(line.method, u"");

    TraceHandlerAdapter_userTraceInfo(listener.trace, subject, ut_DFDLParser_startElement, nullptr);
    EXPECT_EQ(listener.lines.back().statement,
              u"Element name starts at byte 12; path " + path.substr(0, 511) + u".");
}

struct CutCase {
    size_t length;
    size_t shown;
};

TEST(Trace, cutsLongInserts) {
    Listener listener;
    for (const CutCase& one : {CutCase{507, 507}, CutCase{508, 511}, CutCase{600, 511}}) {
        const std::string text(one.length, 'x');
        listener.lines.clear();
        TraceHandlerAdapter_serviceData(listener.trace, "m", "%s", text.c_str());
        const std::u16string shown = listener.lines.at(0).statement;
        EXPECT_EQ(shown.size(), one.shown);
        EXPECT_EQ(shown.ends_with(u"x ..."), one.length > 507);
    }
    const std::u16string faces = u"x" + std::u16string(506, u'y') + u"\U0001F600";
    TraceHandlerAdapter_serviceData(listener.trace, "m", "%S%S%S", faces.c_str() + 1, faces.c_str(),
                                    faces.c_str());
    EXPECT_EQ(listener.lines.back().objects[0], faces.substr(1, 506) + u" ...") << "half a pair goes too";
    EXPECT_EQ(listener.lines.back().statement.size(), 1023U);
}

TEST(Trace, seventeenthObjectIsDropped) {
    Listener listener;
    TraceHandlerAdapter_serviceData(listener.trace, "m", "%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5,
                                    6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17);
    EXPECT_EQ(listener.lines.at(0).objects.size(), 16U);
    EXPECT_TRUE(listener.lines.at(0).statement.ends_with(u" 16 17"));
}

TEST(Trace, valuesShowControlCharacters) {
    Listener listener;
    DFDLUString* text = new_DFDLUStringFromUChars(listener.adapter, u"a\nb c", 5);
    DFDLValue* value = StringDV_createDFDLValue(listener.adapter, text);
    TraceHandlerAdapter_serviceData(listener.trace, "m", "%V%p", value, nullptr);
    delete_DFDLValue(value);
    EXPECT_EQ(listener.lines.at(0).statement, u"a%LF;b c 0x0000000000000000");
}

TEST(Trace, entitiesOfUnprintableCharacters) {
    Listener listener;
    const struct {
        std::u16string_view text;
        bool space;
        const char16_t* expected;
    } cases[] = {{std::u16string_view(u"\0\x1F", 2), false, u"%NUL;%US;"},
                 {u"a b", false, u"a b"},
                 {u"a b", true, u"a%SP;b"},
                 {u"\x7F\x85\xA0\u2028\u2029~", false, u"%DEL;%NEL;%NBSP;%LS;\u2029~"},
                 {u"", true, u""}};
    for (const auto& one : cases) {
        DFDLUString* text = new_DFDLUStringFromUChars(listener.adapter, one.text.data(),
                                                      static_cast<int32_t>(one.text.size()));
        DFDLUString* shown =
            TraceHandlerAdapter_replaceUnprintableCharacters(listener.trace, text, one.space);
        EXPECT_EQ(DFDLUString_view(shown), one.expected);
        delete_DFDLUString(shown);
        delete_DFDLUString(text);
    }
}

TEST(Trace, errorsOnceAndFatalErrorsAlways) {
    Listener listener;
    const Owned<ProcessingError, delete_ProcessingError> record(new_ProcessingError(listener.adapter));
    TraceHandlerAdapter_userTraceError(listener.trace, record.get());
    EXPECT_EQ(listener.slots(), "") << "nothing to tell without a key";
    ProcessingError_setValues(record.get(), "", 0, DFDLParser_unknownData, ERROR_PROCESSING, SUBKIND_NONE,
                              "%lld%02hX", int64_t{3}, 0x41);
    for (int round = 0; round < 2; ++round) TraceHandlerAdapter_userTraceError(listener.trace, record.get());
    EXPECT_EQ(listener.lines.at(0).key, u"CTDP3002E");
    EXPECT_EQ(listener.slots(), "userError error ");
    for (int round = 0; round < 2; ++round) TraceHandlerAdapter_userTraceFatal(listener.trace, record.get());
    EXPECT_EQ(listener.slots(), "userFatal fatal userFatal fatal ");
}

TEST(Trace, leavesNothingBehind) {
    Listener listener;
    const Owned<ProcessingError, delete_ProcessingError> record(new_ProcessingError(listener.adapter));
    ProcessingError_setValues(record.get(), "", 0, DFDLParser_unknownData, ERROR_PROCESSING, SUBKIND_NONE,
                              "%lld%02hX", int64_t{3}, 0x41);
    const std::string large(2000, 'x');
    const TraceSubject subject = {u"scd", u"path", true, 12, u"name"};
    const auto say = [&] {
        TraceHandlerAdapter_exitData(listener.trace, "m", "%s%d%s%q", large.c_str(), 1, "x");
        TraceHandlerAdapter_userTraceInfo(listener.trace, subject, ut_DFDLParser_startElement, "%E", 1.0);
        TraceHandlerAdapter_userTraceFatal(listener.trace, record.get());
        return DFDLHeapAdapter_countBlocks(listener.adapter);
    };
    const size_t before = say();
    EXPECT_EQ(say(), before);
}

TEST(Trace, timestampIsLocalTime) {
    TestAdapter engine;
    DFDLTraceImpl* trace = new_DFDLTraceImpl(engine.adapter);
    DFDLTraceImpl_createTimestamp(trace);
    std::string text;
    for (const DFDLChar* unit = DFDLTrace_getTimestamp(trace); *unit != 0; ++unit) {
        text += static_cast<char>(*unit);
    }
    EXPECT_TRUE(std::regex_match(text, std::regex(R"(\d{4}-\d{1,2}-\d{1,2} \d\d:\d\d:\d\d\.\d{6})"))) << text;
    delete_DFDLTraceImpl(trace);
}

TEST(Trace, nullTraceGivesNothing) {
    const DFDLChar* characters = u"";
    int32_t length = 7;
    DFDLTrace_getObject(nullptr, 0, &characters, &length);
    EXPECT_EQ(characters, nullptr);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(DFDLTrace_getNumberOfObjects(nullptr), 0);
    EXPECT_EQ(DFDLTrace_getMessageKey(nullptr), nullptr);
}

TEST(Trace, wordsOfTheGrammarsNumbers) {
    Listener listener;
    const struct {
        const UChar* (*word)(TraceHandlerAdapter*, int32_t);
        int32_t number;
        const char16_t* expected;
    } cases[] = {{TracehandlerAdapter_getLengthUnitsAsString, 1, u"bytes"},
                 {TracehandlerAdapter_getLengthUnitsAsString, 3, u"{Unknown length units}"},
                 {TracehandlerAdapter_getAlignmentUnitsAsString, -1, u"{Unknown alignment units}"},
                 {TracehandlerAdapter_getPhysicalTypeAsString, 13, u"{Unknown physical type}"},
                 {TracehandlerAdapter_returnRangeAsString, SIMPLE_STRING, u""},
                 {TracehandlerAdapter_returnRangeAsString, INT32_MIN, u""},
                 {TracehandlerAdapter_returnRangeAsString, SIMPLE_DECIMAL, u""}};
    for (const auto& one : cases) EXPECT_EQ(copy(one.word(listener.trace, one.number)), one.expected);
    const std::u16string range =
        TracehandlerAdapter_returnRangeAsString(listener.trace, SIMPLE_UNSIGNED_BYTE);
    EXPECT_NE(range.find(u"255"), std::u16string::npos);
}

}  // namespace
