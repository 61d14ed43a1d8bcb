#include "xmlwriter.h"

#include <gtest/gtest.h>

#include "dfdl/processor/dfdldochandler.h"

namespace {

struct XmlWriterTest : testing::Test {
    ~XmlWriterTest() override { delete_XmlWriter(writer); }

    void begin() { d->startDocument(d, "1.0", u"", 0); }
    void start(const char16_t* name, const char16_t* uri = u"") {
        d->startElement(d, 0, name, 0, uri, u"", 0);
    }
    void end() { d->endElement(d, 0); }
    void text(std::u16string_view value) {
        d->elementStringValue(d, value.data(), static_cast<int32_t>(value.size()), 0);
    }
    void leaf(const char16_t* name, std::u16string_view value, const char16_t* uri = u"") {
        start(name, uri);
        text(value);
        end();
    }
    // The document behind its declaration.
    std::string finish() {
        d->endDocument(d, 0);
        std::string result = std::move(out.text);
        out.text.clear();
        const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        EXPECT_TRUE(result.starts_with(declaration)) << result;
        return result.substr(declaration.size());
    }

    Output out;
    XmlWriter* writer = new_XmlWriter(&out);
    DFDLDocHandlerImpl* d = writer->document;
};

TEST_F(XmlWriterTest, IndentsBetweenElementsAndNotInsideValues) {
    begin();
    start(u"root");
    leaf(u"a", u" x\n y ");
    leaf(u"empty", u"");
    start(u"inner");
    leaf(u"b", u"1");
    end();
    start(u"nothing");
    end();
    end();
    EXPECT_EQ(finish(),
              "<root>\n  <a> x\n y </a>\n  <empty/>\n  <inner>\n    <b>1</b>\n  </inner>\n  <nothing/>\n"
              "</root>\n");
}

TEST_F(XmlWriterTest, DeclaresANamespaceWhereItsScopeBegins) {
    begin();
    start(u"root", u"urn:a");
    leaf(u"local", u"");
    leaf(u"same", u"", u"urn:a");
    start(u"other", u"urn:b&");
    leaf(u"deep", u"", u"urn:b&");
    end();
    leaf(u"again", u"", u"urn:b&");
    end();
    EXPECT_EQ(finish(),
              "<ns0:root xmlns:ns0=\"urn:a\">\n  <local/>\n  <ns0:same/>\n"
              "  <ns1:other xmlns:ns1=\"urn:b&amp;\">\n    <ns1:deep/>\n  </ns1:other>\n"
              "  <ns1:again xmlns:ns1=\"urn:b&amp;\"/>\n</ns0:root>\n");
}

TEST_F(XmlWriterTest, NilIsAnAttributeAndNotAnEmptyString) {
    begin();
    start(u"a");
    d->elementNilValue(d);
    end();
    EXPECT_EQ(finish(), "<a xsi:nil=\"true\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"/>\n");
}

TEST_F(XmlWriterTest, CharactersThatXmlCannotHoldMoveAndTheOthersStay) {
    const struct {
        std::u16string value;
        std::string expected;
    } cases[] = {
        {u"<&>\"'", "&lt;&amp;&gt;&quot;'"},
        {u"\t\n", "\t\n"},
        {u"\r", "&#xD;"},
        {std::u16string(1, u'\0'), "\uE000"},
        {u"\x0B\x1F", "\uE00B\uE01F"},
        {u"\xD800", "\uE800"},
        {u"\xDFFF", "\uEFFF"},
        {u"\xFFFE\xFFFF", "\uF0FE\uF0FF"},
        {u"\U0001F600ä", "\U0001F600ä"},
    };
    for (const auto& c : cases) {
        begin();
        leaf(u"a", c.value);
        EXPECT_EQ(finish(), "<a>" + c.expected + "</a>\n");
    }
}

TEST_F(XmlWriterTest, ANameOfTheGrammarCannotBreakTheDocument) {
    begin();
    leaf(u"a><b", u"1");
    EXPECT_EQ(finish(), "<a_x003E__x003C_b>1</a_x003E__x003C_b>\n");
    begin();
    leaf(u"1a", u"1");
    EXPECT_EQ(finish(), "<_x0031_a>1</_x0031_a>\n");
}

TEST_F(XmlWriterTest, CalendarsReadAsSchemaTypes) {
    DFDLCalendar* calendar = new_DFDLCalendar();
    DfdlCalendar_setDate(calendar, 987, 0, 2);
    DfdlCalendar_setTime(calendar, 3, 4, 5);
    DfdlCalendar_setMicroSec(calendar, 60);
    DfdlCalendar_setTimeZoneOffset(calendar, -330);
    const std::pair<uint32_t, const char*> cases[] = {
        {DFDL_VALUE_DATETIME, "0987-01-02T03:04:05.000060-05:30"},
        {DFDL_VALUE_DATE, "0987-01-02-05:30"},
        {DFDL_VALUE_TIME, "03:04:05.000060-05:30"},
    };
    for (const auto& [type, expected] : cases) {
        begin();
        start(u"a");
        d->elementCalendarValue(d, calendar, type);
        end();
        EXPECT_EQ(finish(), "<a>" + std::string(expected) + "</a>\n");
    }
    delete_DFDLCalendar(calendar);
}

TEST_F(XmlWriterTest, AnUnfinishedMessageLeavesNothingToTheNext) {
    begin();
    start(u"root", u"urn:a");
    start(u"child");
    out.text.clear();
    begin();
    leaf(u"a", u"1", u"urn:b");
    EXPECT_EQ(finish(), "<ns0:a xmlns:ns0=\"urn:b\">1</ns0:a>\n");
}

}  // namespace
