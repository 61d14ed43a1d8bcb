#include "eventwriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/processor/dfdldochandler.h"
#include "dfdl/processor/dfdlregionhandler.h"

namespace {

struct EventWriterTest : testing::Test {
    ~EventWriterTest() override { delete_EventWriter(writer); }

    // What was written since the last call, without the line feed; it must be one line of well-formed JSON.
    std::string line() {
        std::string text = std::move(out.text);
        out.text.clear();
        EXPECT_TRUE(text.ends_with('\n')) << text;
        text.pop_back();
        EXPECT_EQ(text.find('\n'), text.npos) << text;
        EXPECT_TRUE(nlohmann::json::accept(text) || text.find("\\ud") != text.npos) << text;
        return text;
    }

    Output out;
    EventWriter* writer = new_EventWriter(&out);
    DFDLDocHandlerImpl* document = writer->document;
    DFDLRegionHandlerImpl* regions = writer->regions;
};

TEST_F(EventWriterTest, StructureShowsEveryArgument) {
    document->startDocument(document, "1.0", u"", 0);
    EXPECT_EQ(line(), R"({"event":"startDocument"})");
    EXPECT_EQ(writer->bytes, -1);
    document->startElement(document, 3, u"a", 1, u"urn:x", u"/a", 1LL << 40);
    EXPECT_EQ(line(), R"({"event":"startElement","name":"a","namespace":"urn:x","id":3,"namespaceId":1,)"
                      R"("scd":"/a","start":1099511627776})");
    document->startElement(document, -1, u"b", -1, nullptr, nullptr, 0);
    EXPECT_EQ(line(), R"({"event":"startElement","name":"b","namespace":"","id":-1,"namespaceId":-1,)"
                      R"("scd":"","start":0})");
    document->elementNilValue(document);
    EXPECT_EQ(line(), R"({"event":"nil"})");
    document->endElement(document, 32);
    EXPECT_EQ(line(), R"({"event":"endElement","end":32})");
    document->endDocument(document, 4);
    EXPECT_EQ(line(), R"({"event":"endDocument","bytes":4})");
    EXPECT_EQ(writer->bytes, 4);
}

TEST_F(EventWriterTest, NumbersKeepTheirKindAndTheirLimits) {
    struct Case {
        std::function<void(DFDLDocHandlerImpl*)> call;
        const char* expected;  // behind {"event":"value","call":
    };
    using Float = std::numeric_limits<float>;
    using Double = std::numeric_limits<double>;
    const Case cases[] = {
        {[](auto* d) { d->elementIntValue(d, INT32_MIN, 6); },
         R"("elementIntValue","type":6,"value":-2147483648})"},
        {[](auto* d) { d->elementLongValue(d, INT64_MIN, 4); },
         R"("elementLongValue","type":4,"value":-9223372036854775808})"},
        {[](auto* d) { d->elementShortValue(d, INT16_MIN, 8); },
         R"("elementShortValue","type":8,"value":-32768})"},
        {[](auto* d) { d->elementByteValue(d, INT8_MIN, 10); },
         R"("elementByteValue","type":10,"value":-128})"},
        {[](auto* d) { d->elementULongValue(d, UINT64_MAX, 5); },
         R"("elementULongValue","type":5,"value":18446744073709551615})"},
        {[](auto* d) { d->elementUIntValue(d, UINT32_MAX, 7); },
         R"("elementUIntValue","type":7,"value":4294967295})"},
        {[](auto* d) { d->elementUShortValue(d, UINT16_MAX, 9); },
         R"("elementUShortValue","type":9,"value":65535})"},
        {[](auto* d) { d->elementUByteValue(d, UINT8_MAX, 11); },
         R"("elementUByteValue","type":11,"value":255})"},
        {[](auto* d) { d->elementFloatValue(d, 0.1F, 12); }, R"("elementFloatValue","type":12,"value":0.1})"},
        {[](auto* d) { d->elementFloatValue(d, -Float::infinity(), 12); },
         R"("elementFloatValue","type":12,"value":"-INF"})"},
        {[](auto* d) { d->elementDoubleValue(d, 0.1, 13); },
         R"("elementDoubleValue","type":13,"value":0.1})"},
        {[](auto* d) { d->elementDoubleValue(d, Double::denorm_min(), 13); },
         R"("elementDoubleValue","type":13,"value":5e-324})"},
        {[](auto* d) { d->elementDoubleValue(d, Double::infinity(), 13); },
         R"("elementDoubleValue","type":13,"value":"INF"})"},
        {[](auto* d) { d->elementDoubleValue(d, Double::quiet_NaN(), 13); },
         R"("elementDoubleValue","type":13,"value":"NaN"})"},
        {[](auto* d) { d->elementDecimalValue(d, "-12.50", 6, 1); },
         R"("elementDecimalValue","type":1,"value":"-12.50"})"},
        {[](auto* d) { d->elementDecimalValue(d, "42", 2, 2); },
         R"("elementDecimalValue","type":2,"value":"42"})"},
        {[](auto* d) { d->elementBooleanValue(d, 2, 18); },
         R"("elementBooleanValue","type":18,"value":true})"},
        {[](auto* d) { d->elementBooleanValue(d, 0, 18); },
         R"("elementBooleanValue","type":18,"value":false})"},
    };
    for (const Case& c : cases) {
        c.call(document);
        EXPECT_EQ(line(), std::string(R"({"event":"value","call":)") + c.expected);
    }
}

TEST_F(EventWriterTest, StringsSurviveWhateverTheyHold) {
    const struct {
        std::u16string value;
        std::string expected;
    } cases[] = {
        {u"plain", "plain"},
        {u"", ""},
        {u"\"\\/", R"(\"\\/)"},
        {u"\b\f\n\r\t", R"(\b\f\n\r\t)"},
        {std::u16string(u"\0\x1f\x7f", 3), "\\u0000\\u001f\x7f"},
        {u"ä€", "ä€"},
        {u"\U0001F600", "\U0001F600"},
        {u"x\xD83D", R"(x\ud83d)"},
        {u"\xDE00\xD83D", R"(\ude00\ud83d)"},
    };
    for (const auto& c : cases) {
        document->elementStringValue(document, c.value.data(), static_cast<int32_t>(c.value.size()), 0);
        EXPECT_EQ(line(),
                  R"({"event":"value","call":"elementStringValue","type":0,"value":")" + c.expected + "\"}");
    }
}

TEST_F(EventWriterTest, BinaryIsHexadecimalInCapitals) {
    const uint8_t bytes[] = {0x00, 0x9F, 0xAB};
    document->elementBinaryValue(document, bytes, 3, 17);
    EXPECT_EQ(line(), R"({"event":"value","call":"elementBinaryValue","type":17,"value":"009FAB"})");
    document->elementBinaryValue(document, nullptr, 0, 17);
    EXPECT_EQ(line(), R"({"event":"value","call":"elementBinaryValue","type":17,"value":""})");
}

TEST_F(EventWriterTest, CalendarsShowWhatIsPresent) {
    DFDLCalendar* calendar = new_DFDLCalendar();
    DfdlCalendar_setDate(calendar, 0, 1, 29);
    DfdlCalendar_setTime(calendar, 23, 59, 58);
    const std::string start = R"({"event":"value","call":"elementCalendarValue","type":14,"value":)"
                              R"({"year":-1,"month":1,"day":29,"hour":23,"minute":59,"second":58)";
    document->elementCalendarValue(document, calendar, 14);
    EXPECT_EQ(line(), start + "}}");
    DfdlCalendar_setMicroSec(calendar, 250000);
    DfdlCalendar_setTimeZoneOffset(calendar, -330);
    document->elementCalendarValue(document, calendar, 14);
    EXPECT_EQ(line(), start + R"(,"microSecond":250000,"timeZoneOffset":-330}})");
    delete_DFDLCalendar(calendar);
}

TEST_F(EventWriterTest, EachRegionGoesUnderItsOwnName) {
    regions->elementStart(regions, u"a", u"", u"/a", 7, "UTF-8");
    EXPECT_EQ(line(), R"({"event":"elementStart","name":"a","namespace":"","scd":"/a","position":7,)"
                      R"("encoding":"UTF-8"})");
    regions->elementStart(regions, u"a", u"", u"/a", 7, nullptr);
    EXPECT_EQ(line(), R"({"event":"elementStart","name":"a","namespace":"","scd":"/a","position":7,)"
                      R"("encoding":null})");
    regions->elementEnd(regions, u"/a", 8);
    EXPECT_EQ(line(), R"({"event":"elementEnd","scd":"/a","position":8})");
    regions->groupStart(regions, u"/a", 1);
    EXPECT_EQ(line(), R"({"event":"groupStart","scd":"/a","position":1})");
    regions->groupEnd(regions, u"/a", 2);
    EXPECT_EQ(line(), R"({"event":"groupEnd","scd":"/a","position":2})");
    const std::pair<DFDLRegionCallback, const char*> slots[] = {
        {regions->leadingAlignmentRegion, "leadingAlignmentRegion"},
        {regions->initiatorRegion, "initiatorRegion"},
        {regions->simpleContentRegion, "simpleContentRegion"},
        {regions->terminatorRegion, "terminatorRegion"},
        {regions->trailingAlignmentRegion, "trailingAlignmentRegion"},
        {regions->prefixSeparatorRegion, "prefixSeparatorRegion"},
        {regions->infixSeparatorRegion, "infixSeparatorRegion"},
        {regions->postfixSeparatorRegion, "postfixSeparatorRegion"},
    };
    for (const auto& [slot, name] : slots) {
        slot(regions, u"/a", 3, 5);
        EXPECT_EQ(line(), std::string(R"({"event":")") + name + R"(","scd":"/a","start":3,"length":5})");
    }
}

}  // namespace
