// Text fields of a known length, and truth values written as text.
#include <gtest/gtest.h>

#include <string>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/escapeschemetable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/textstringtable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "support/bufferrig.h"
#include "support/testheap.h"

namespace {

// A handler, and one element named "item" that the tests give its properties.
struct RegionRig {
    BufferRig rig;
    ParserRegionHandler* handler;
    PIFIteratorForParser iterator{};
    LengthSchemeTableRow length;
    TextStringTableRow string;
    BooleanRepTableRow boolean;

    explicit RegionRig(const char* encoding = "UTF-8", const DFDLHeapImpl* heap = nullptr) : rig(heap) {
        handler =
            new_ParserRegionHandler(rig.heap, rig.constants, rig.context, rig.buffer, rig.charsets, nullptr);
        handler->stringLiteralCache = new_StringLiteralCache(rig.heap, nullptr);
        iterator.context = rig.context;
        handler->pifIterator = &iterator;
        rig.encoding(encoding);
        rig.item.lengthRow = &length;
        rig.item.textStringRow = &string;
        rig.item.iPhysicalType = TEXT_BOOLEAN;
        rig.item.physicalRow = &boolean;
    }
    ~RegionRig() {
        delete_DFDLUString(boolean.iTextBooleanTrueRep);
        delete_DFDLUString(boolean.iTextBooleanFalseRep);
        delete_StringLiteralCache(handler->stringLiteralCache);
        delete_ParserRegionHandler(handler);
    }
    RegionRig(const RegionRig&) = delete;
    RegionRig& operator=(const RegionRig&) = delete;

    DFDLUString* text(std::u16string_view units) {
        return DFDLUStringPooler_getDFDLUStringFromView(rig.heap, units);
    }
    void padByte(int32_t byte, TextJustificationEnum justification) {
        string.iTextTrimKind = TRIM_KIND_PAD_CHAR;
        string.padIsByte = true;
        string.padByte = byte;
        string.iTextJustification = justification;
    }
    // The text in one-byte units, or the error; "null" for neither.
    std::string take(DFDLUString* text) {
        if (text == nullptr) {
            const std::string error = rig.takeError();
            return error.empty() ? "null" : error;
        }
        std::string result;
        for (const UChar unit : DFDLUString_view(text)) result += static_cast<char>(unit);
        delete_DFDLUString(text);
        return result;
    }
    std::string extract(std::string_view document, int64_t fieldLength) {
        rig.document(document);
        return take(ParserRegionHandler_extractTextRepresentation(handler, &rig.item, fieldLength));
    }
    std::string truth(std::u16string_view units) {
        DFDLValue* value =
            ParserRegionHandler_handleSimpleContent_TextBoolean(handler, &rig.item, text(units));
        if (value == nullptr) return rig.takeError();
        const bool result = value->u.boolean != 0;
        DFDLPoolingFactory_releaseDFDLValue(rig.heap->poolingFactory, value);
        return result ? "true" : "false";
    }
};

TEST(TextExtraction, ByKindAndUnitsOfLength) {
    struct Case {
        LengthKindEnum kind;
        LengthUnitsEnum units;
        int64_t length;
        const char* expected;
        int64_t bytes;  // moved over
    };
    const Case cases[] = {
        {EXPLICIT, BYTES, 3, "a\xE4", 3},
        {EXPLICIT, CHARACTERS, 3,
         "a\xE4"
         "b",
         4},
        {IMPLICIT, CHARACTERS, 2, "a\xE4", 3},
        {PREFIXED, BYTES, 4,
         "a\xE4"
         "b",
         4},
        {DELIMITED, CHARACTERS, 3, "a\xE4", 3},  // as the scanner counts: bytes
        {EXPLICIT, BYTES, 0, "", 0},
        {EXPLICIT, BYTES, -1, "null", 0},
        {PATTERN, CHARACTERS, 2, "null", 0},
        {END_OF_PARENT, BYTES, 2, "null", 0},
        {UNDEFINED_LKIND, BYTES, 2, "CTDP3129E item", 0},
        {EXPLICIT, BITS, 8, "CTDP3012E item 0", 0},
    };
    for (const Case& c : cases) {
        RegionRig region;
        region.length.iLengthKind = c.kind;
        region.length.iLengthUnits = c.units;
        EXPECT_EQ(region.extract("a\xC3\xA4"
                                 "bc",
                                 c.length),
                  c.expected)
            << c.kind << ' ' << c.units;
        EXPECT_EQ(BufferManager_bytePosition(region.rig.buffer), c.bytes) << c.kind << ' ' << c.units;
    }
}

TEST(TextExtraction, TellsShortageAndBadCharacters) {
    RegionRig region;
    region.length.iLengthKind = EXPLICIT;
    region.length.iLengthUnits = CHARACTERS;
    EXPECT_EQ(region.extract("ab", 3).substr(0, 9), "CTDP3000E");
    EXPECT_EQ(region.extract("", 1).substr(0, 9), "CTDP3000E");
    EXPECT_EQ(region.extract("a\xFFz", 3).substr(0, 9), "CTDP3011E");
    region.length.iLengthUnits = BYTES;
    EXPECT_EQ(region.extract("ab", 3).substr(0, 9), "CTDP3000E");
    region.padByte('*', RIGHT);
    EXPECT_EQ(region.extract("ab", 3).substr(0, 9), "CTDP3000E");
    EXPECT_EQ(region.extract("ab", INT64_MAX).substr(0, 9), "CTDP3000E");
    EXPECT_EQ(region.extract("*\xFFz", 3).substr(0, 9), "CTDP3011E");
    region.rig.encoding("UTF-16BE");
    region.length.iLengthUnits = CHARACTERS;
    EXPECT_EQ(region.extract("ab", INT64_MAX / 2).substr(0, 9), "CTDP3000E");
}

TEST(TextExtraction, TrimsPadBytesButNotAtTheEndTheTextIsAt) {
    struct Case {
        TextJustificationEnum justification;
        const char* field;
        const char* expected;
    };
    const Case cases[] = {
        {RIGHT, "**ab", "ab"},  {RIGHT, "ab**", "ab**"}, {RIGHT, "****", "*"}, {RIGHT, "***a", "a"},
        {LEFT, "ab**", "ab"},   {LEFT, "**ab", "**ab"},  {LEFT, "****", ""},   {LEFT, "a***", ""},
        {CENTER, "*ab*", "ab"}, {CENTER, "****", ""},    {CENTER, "ab", "ab"}, {CENTER, "*a**", "a"},
        {RIGHT, "7", ""},       {LEFT, "7", ""},
    };
    for (const LengthKindEnum kind : {EXPLICIT, DELIMITED}) {
        for (const Case& c : cases) {
            RegionRig region;
            region.length.iLengthKind = kind;
            region.length.iLengthUnits = BYTES;
            region.padByte('*', c.justification);
            const std::string_view field = c.field;
            EXPECT_EQ(region.extract(field, static_cast<int64_t>(field.size())), c.expected) << field;
            EXPECT_EQ(BufferManager_bytePosition(region.rig.buffer), static_cast<int64_t>(field.size()));
        }
    }
}

TEST(TextExtraction, PadBytesNeedAKnownWidth) {
    struct Case {
        const char* encoding;
        LengthUnitsEnum units;
        const char* expected;
    };
    const Case cases[] = {{"UTF-8", CHARACTERS, "CTDP3139E item"},
                          {"UTF-8", BYTES, "aab"},
                          {"ISO-8859-1", CHARACTERS, "aab"},
                          {"UCS-2", CHARACTERS, "CTDP3000E 0 item"}};  // twice the bytes, which are not there
    for (const Case& c : cases) {
        RegionRig region(c.encoding);
        region.length.iLengthKind = EXPLICIT;
        region.length.iLengthUnits = c.units;
        region.padByte('*', RIGHT);
        EXPECT_EQ(region.extract("*aab", 4), c.expected) << c.encoding;
    }
}

TEST(TextExtraction, TakesEscapesOutAndLeavesPadCharacters) {
    RegionRig region;
    EscapeSchemeTableRow scheme;
    scheme.iEscapeCharacter = region.text(u"?");
    region.rig.item.escapeRow = &scheme;
    region.length.iLengthKind = DELIMITED;
    region.string.iTextTrimKind = TRIM_KIND_PAD_CHAR;
    region.string.padString = region.text(u"*");
    EXPECT_EQ(region.extract("*a?,b*", 6), "*a,b*");
    delete_DFDLUString(scheme.iEscapeCharacter);
    scheme.iEscapeCharacter = nullptr;
    scheme.iEscapeCharacterExpr = 0;
    EXPECT_EQ(region.extract("a?,b", 4).substr(0, 9), "CTDP3900E");
    delete_DFDLUString(region.string.padString);
}

// Trimmed bytes need a block, an escape may need a copy, the lists are cached.
TEST(TextExtraction, SurvivesTheRefusalOfAnyAllocation) {
    const int refused = sweepFailingAllocations([](const DFDLHeapImpl& heap) {
        RegionRig region("UTF-8", &heap);
        EscapeSchemeTableRow scheme;
        scheme.iEscapeCharacter = region.text(u"?");
        region.rig.item.escapeRow = &scheme;
        region.length.iLengthKind = DELIMITED;
        region.padByte('*', RIGHT);
        EXPECT_EQ(region.extract("*a?,b", 5), "a,b");
        region.boolean.iTextBooleanTrueRep = region.text(u"yes");
        EXPECT_EQ(region.truth(u"yes"), "true");
        delete_DFDLUString(scheme.iEscapeCharacter);
    });
    EXPECT_GT(refused, 10);
}

TEST(TextBooleans, AreLookedUpInBothLists) {
    RegionRig region;
    region.boolean.iTextBooleanTrueRep = region.text(u"yes %#x31; on");
    region.boolean.iTextBooleanFalseRep = region.text(u"no 0 on %NL;");
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"yes", "true"},          {u"1", "true"},      {u"no", "false"},        {u"0", "false"},
        {u"on", "true"},  // what is in both is true
        {u"YES", "CTDP3024E YES"}, {u"", "CTDP3024E "}, {u"\n", "CTDP3024E \n"}, {u"yes ", "CTDP3024E yes "}};
    for (const auto& [text, expected] : cases) EXPECT_EQ(region.truth(text), expected);
    region.string.iIgnoreCase = true;
    EXPECT_EQ(region.truth(u"YES"), "true");
    EXPECT_EQ(region.truth(u"nO"), "false");
    EXPECT_EQ(region.take(nullptr), "null");
}

TEST(TextBooleans, NameTheListThatIsWrong) {
    RegionRig region;
    region.boolean.iTextBooleanTrueRep = region.text(u"yes");
    region.boolean.iTextBooleanFalseRep = region.text(u"no %FOO;");
    EXPECT_EQ(region.truth(u"yes"), "true");
    EXPECT_EQ(region.truth(u"maybe"), "CTDV1438E no %FOO; item textBooleanFalseRep");
    region.rig.item.physicalRow = nullptr;
    EXPECT_EQ(region.truth(u"yes"), "CTDP3024E yes");
}

TEST(TextBooleans, FromExpressionsAreRefused) {
    RegionRig region;
    region.boolean.iTextBooleanTrueRep = region.text(u"yes");
    region.boolean.iTextBooleanFalseRepExpIndex = 0;
    EXPECT_EQ(region.truth(u"yes"), "true");
    EXPECT_EQ(region.truth(u"no").substr(0, 9), "CTDP3900E");
    region.boolean.iTextBooleanTrueRepExpIndex = 0;  // a text in the row goes before it
    EXPECT_EQ(region.truth(u"yes"), "true");
}

TEST(TextContent, WithoutATextIsAMistakeOfTheCaller) {
    RegionRig region;
    for (const auto handle : {ParserRegionHandler_handleSimpleContent_TextString,
                              ParserRegionHandler_handleSimpleContent_TextBoolean,
                              ParserRegionHandler_handleSimpleContent_TextNumber,
                              ParserRegionHandler_handleSimpleContent_TextCalendar}) {
        EXPECT_EQ(handle(region.handler, &region.rig.item, nullptr), nullptr);
        EXPECT_EQ(region.rig.context->currentError->kind, ERROR_INTERNAL);
        EXPECT_EQ(region.rig.takeError(), "CTDP3117E item");
    }
}

}  // namespace
