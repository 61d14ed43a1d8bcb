// What names tell of encodings, what their converters tell, and the way out of the system's text to bytes.
#include <gtest/gtest.h>

#include <string>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/converters/dfdlcharsetutils.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"
#include "support/bufferrig.h"

namespace {

using namespace std::string_view_literals;

// A charset of a rig of its own, found by name.
struct NamedCharset {
    BufferRig rig;
    DFDLCharset* charset;

    explicit NamedCharset(const char* name, bool utf16Fixed = false, bool ascii = false, bool ebcdic = false)
        : charset(
              CharsetManager_getDFDLEncoding(rig.charsets, rig.encoding(name, utf16Fixed, ascii, ebcdic))) {}
};

std::string narrow(const DFDLUString* text) {
    std::string result;
    for (const UChar unit : DFDLUString_view(text)) result += static_cast<char>(unit);
    return result;
}

TEST(CharsetNames, TheTablesHaveAllTheirNames) {
    EXPECT_EQ(DFDLCharsetUtils_countNames(CHARSET_NAMES_UTF16), 30);
    EXPECT_EQ(DFDLCharsetUtils_countNames(CHARSET_NAMES_ASCII), 354);
    EXPECT_EQ(DFDLCharsetUtils_countNames(CHARSET_NAMES_EBCDIC), 226);
}

TEST(CharsetNames, BelongToTheirFamily) {
    struct Case {
        const char* name;
        bool utf16, ascii, ebcdic;
    };
    const Case cases[] = {
        {"utf-16", true, false, false},
        {"Utf16", true, false, false},
        {"1204", true, false, false},
        {"ZOV-1200", true, false, false},
        {"61956", true, false, false},
        {"UTF-16BE", false, false, false},
        {"utf-8", false, true, false},
        {"l10", false, true, false},
        {"437", false, true, false},
        {"0437", false, true, false},
        {"ZOV-437", false, true, false},
        {"zov437", false, true, false},
        {"CSZOV855", false, true, false},
        {"CSZOV437", false, false, false},
        {"ZOV-65025", false, true, false},
        {"ZOV00858", false, true, false},
        {"ZOV858", false, false, false},
        {"ZOV-0437", false, false, false},
        {"65025", false, true, false},
        {"65026", false, false, false},
        {"", false, false, false},
        {"ebcdic-cp-us", false, false, true},
        {"ZOV-37", false, false, true},
        {"zov-037", false, false, true},
        {"ZOV037", false, false, true},
        {"CSZOV037", false, false, true},
        {"ZOV37", false, false, false},
        {"037", false, false, true},
        {"ZOV-1122", false, false, true},
        {"1122", false, false, false},
        {"ZOV-Thai", false, false, true},
        {"csZOVThai", false, false, true},
        {"CSZOV1026", false, false, true},
        {"ZOV01140", false, false, true},
        {"ibm-37", false, false, false},
        {"utf-8 ", false, false, false},
        {"99999999999999999999999", false, false, false},
        {"ZOV-", false, false, false},
        {"ZOV", false, false, false},
        {"CSZOV", false, false, false},
        {"+437", false, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(DFDLCharsetUtils_isEncodingUTF16(c.name), c.utf16);
        EXPECT_EQ(DFDLCharsetUtils_isEncodingASCIICompatible(c.name), c.ascii);
        EXPECT_EQ(DFDLCharsetUtils_isEncodingEBCDIC(c.name), c.ebcdic);
    }
    EXPECT_TRUE(DFDLCharsetUtils_isEncodingUTF32("utf-32"));
    EXPECT_FALSE(DFDLCharsetUtils_isEncodingUTF32("1236"));
    EXPECT_TRUE(DFDLCharsetUtils_isEncodingUCS2("iso-10646-ucs-2"));
    EXPECT_FALSE(DFDLCharsetUtils_isEncodingUCS2("UCS-4"));
    EXPECT_TRUE(DFDLCharsetUtils_encodingIsNumeric("037"));
    EXPECT_FALSE(DFDLCharsetUtils_encodingIsNumeric(""));
    EXPECT_FALSE(DFDLCharsetUtils_encodingIsNumeric("37a"));
}

TEST(CharsetNames, NamesWithoutAByteOrderGetOne) {
    struct Case {
        const char* name;
        const char* big;
        const char* little;
    };
    const Case cases[] = {
        {"utf-16", "UTF-16BE", "UTF-16LE"},
        {"1205", "UTF-16BE", "UTF-16LE"},
        {"csUnicode", "UTF-16BE", "UTF-16LE"},
        {"UTF32", "UTF-32BE", "UTF-32LE"},
        {"1237", "UTF-32BE", "UTF-32LE"},
        {"UTF-16LE", "UTF-16LE", "UTF-16LE"},
        {"1200", "1200", "1200"},
        {"utf-16x", "utf-16x", "utf-16x"},
    };
    for (const Case& c : cases) {
        const NamedCharset named(c.name);
        EXPECT_EQ(narrow(named.charset->standardName), c.big);
        EXPECT_EQ(narrow(named.charset->name), c.name);
        DFDLUString* little =
            DFDLCharsetUtils_u_getStandardEncoding(named.rig.heap, named.charset->name, true);
        EXPECT_EQ(narrow(little), c.little);
        delete_DFDLUString(little);
    }
}

TEST(Charsets, TellTheirKindAndWidth) {
    struct Case {
        const char* name;
        bool utf16Fixed;
        bool fixedWidth;
        int32_t least, most;
        bool mark;
        int32_t byteOrder;
    };
    const Case cases[] = {
        {"UTF-8", false, false, 1, 3, true, 1},    {"utf-8", false, false, 1, 3, false, 1},
        {"UTF-16", false, false, 2, 2, true, 2},   {"UTF-16", true, true, 2, 2, true, 2},
        {"UTF-16LE", false, true, 2, 2, true, 1},  {"UCS-2", false, true, 2, 2, false, 2},
        {"UTF-32", false, true, 4, 4, true, 2},    {"UTF-32LE", false, true, 4, 4, true, 1},
        {"US-ASCII", false, true, 1, 1, false, 1}, {"Shift_JIS", false, false, 1, 2, false, 1},
        {"1208", false, false, 1, 3, false, 1},    {"037", false, true, 1, 1, false, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const NamedCharset named(c.name, c.utf16Fixed);
        EXPECT_EQ(named.charset->byteOrderState, 0);
        ASSERT_NE(DFDLCharset_getConverter(named.charset), nullptr);
        EXPECT_EQ(DFDLCharset_isFixedWidth(named.charset), c.fixedWidth);
        EXPECT_EQ(DFDLCharset_minBytesPerChar(named.charset), c.least);
        EXPECT_EQ(DFDLCharset_maxBytesPerChar(named.charset), c.most);
        EXPECT_EQ(DFDLCharset_canHaveBOM(named.charset), c.mark);
        EXPECT_EQ(named.charset->byteOrderState, c.byteOrder);
    }
}

TEST(Charsets, OfNoConverterSayNoAndWhy) {
    for (const char* name : {"NO-SUCH-CODE", "99999", "12345678901234567890", "x-\xE9"}) {
        SCOPED_TRACE(name);
        NamedCharset named(name);
        EXPECT_EQ(DFDLCharset_getConverter(named.charset), nullptr);
        EXPECT_EQ(named.rig.takeError().substr(0, 19), "CTDV1110E (unknown)");
        EXPECT_FALSE(DFDLCharset_isFixedWidth(named.charset));
        EXPECT_EQ(DFDLCharset_maxBytesPerChar(named.charset), -1);
        EXPECT_FALSE(DFDLCharset_hasDirectRoad(named.charset));
        EXPECT_FALSE(DFDLCharset_isASCIIStandardZonedCompatible(named.charset));
        named.rig.takeError();
    }
}

TEST(Charsets, TheFlagsOfTheGrammarStand) {
    const NamedCharset named("UTF-8", false, false, true);
    EXPECT_FALSE(DFDLCharset_isASCIICompatible(named.charset));
    EXPECT_TRUE(DFDLCharset_isEBCDIC(named.charset));
}

TEST(Charsets, TellWhetherTheyHaveZonedDigits) {
    struct Case {
        const char* name;
        bool ebcdic, asciiStandard, translated, realia, ebcdicStandard;
        char16_t positiveZero;
    };
    const Case cases[] = {
        {"US-ASCII", false, true, true, true, true, 0},
        {"ibm-37", true, false, false, false, true, 0},
        {"ibm-1026", true, false, false, false, false, u'\u00E7'},
        {"UTF-16", false, false, false, false, true, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const NamedCharset named(c.name, false, false, c.ebcdic);
        EXPECT_EQ(DFDLCharset_isASCIIStandardZonedCompatible(named.charset), c.asciiStandard);
        EXPECT_EQ(DFDLCharset_isASCIITranslatedEBCDICZonedCompatible(named.charset), c.translated);
        EXPECT_EQ(DFDLCharset_isASCIICARealiaModifiedZonedCompatible(named.charset), c.realia);
        EXPECT_TRUE(DFDLCharset_isASCIITandemModifiedZonedCompatible(named.charset));
        EXPECT_EQ(DFDLCharset_isEBCDICStandardZonedCompatible(named.charset), c.ebcdicStandard);
        // The first answer for what is no EBCDIC code is given once only.
        EXPECT_EQ(DFDLCharset_isEBCDICStandardZonedCompatible(named.charset), c.ebcdicStandard && c.ebcdic);
        EXPECT_EQ(named.charset->ebcdicPositiveZero, c.positiveZero);
    }
}

TEST(CharsetManagers, KeepConstantCharsetsBetweenDocuments) {
    BufferRig rig;
    const int32_t row = rig.encoding("UTF-8");
    DFDLCharset* charset = CharsetManager_getDFDLEncoding(rig.charsets, row);
    UConverter* converter = DFDLCharset_getConverter(charset);
    CharsetManager_reset(rig.charsets, false);
    EXPECT_EQ(CharsetManager_getDFDLEncoding(rig.charsets, row), charset);
    EXPECT_EQ(DFDLCharset_getConverter(charset), converter);
    EXPECT_EQ(CharsetManager_getDFDLEncoding(rig.charsets, -1), nullptr);
    EXPECT_EQ(CharsetManager_getDFDLEncoding(rig.charsets, row + 1), nullptr);
    CharsetManager_reset(rig.charsets, true);
    EXPECT_EQ(CharsetManager_getDFDLEncoding(rig.charsets, row), nullptr);
}

TEST(CharsetManagers, AnEncodingFromAnExpressionIsRefusedByName) {
    BufferRig rig;
    const int32_t row = rig.encoding("{$x}");
    Table_at(rig.pif->textEncodingTable, row)->iEncodingExprIndex = 0;
    EXPECT_EQ(CharsetManager_getDFDLEncoding(rig.charsets, row), nullptr);
    EXPECT_NE(rig.takeError().find("{$x} an encoding given by an expression"), std::string::npos);
}

struct EncodeCase {
    const char* encoding;
    const char16_t* text;
    bool rejectSurrogates;
    std::string_view bytes;
    const char* error;
};

const EncodeCase ENCODE_CASES[] = {
    {"UTF-8", u"a\u00E9\U0001F600", false, "a\xC3\xA9\xF0\x9F\x98\x80"sv, ""},
    {"UTF-16", u"a", false, "\0a"sv, ""},
    {"UTF-8", u"", false, ""sv, ""},
    {"US-ASCII", u"a\u00E9z", false, ""sv, "CTDU4011E item US-ASCII \xE9"},
    {"UTF-8", u"a\xD800", false, ""sv, "CTDU4149E item UTF-8"},
    {"UCS-2", u"a\U0001F600", true, ""sv, "CTDU4011E item UCS-2 =\xD8\0"},
    {"UCS-2", u"\xD800\xD801", true, ""sv, "CTDU4149E item UCS-2"},
    {"ISO-2022-JP", u"\u3042", false, "\x1B$B$\"\x1B(B"sv, ""},
};

TEST(Encode, TextBecomesBytesOrAnError) {
    for (const EncodeCase& c : ENCODE_CASES) {
        SCOPED_TRACE(std::string(c.encoding) + " " + c.error);
        NamedCharset named(c.encoding);
        UConverter* converter = DFDLCharset_getConverter(named.charset);
        const auto length = static_cast<int32_t>(std::u16string_view(c.text).size());
        int32_t count = -1;
        const char* bytes = CharsetManager_encodeValue_UChar(named.rig.charsets, converter, c.text, length,
                                                             c.rejectSurrogates, &count, &named.rig.item,
                                                             named.charset->name);
        const std::string error = named.rig.takeError();
        EXPECT_EQ(error.substr(0, 22), std::string(c.error).substr(0, 22));
        ASSERT_EQ(bytes != nullptr, *c.error == 0);
        ASSERT_EQ(count, static_cast<int32_t>(c.bytes.size()));
        int32_t converted = -1;
        uint8_t* own = CharsetManager_convertTo(named.rig.heap, c.text, length, &converted, converter);
        if (bytes != nullptr) {
            EXPECT_EQ(std::string_view(bytes, static_cast<size_t>(count)), c.bytes);
            EXPECT_EQ(bytes[count], 0);
            EXPECT_EQ(std::string_view(reinterpret_cast<char*>(own), static_cast<size_t>(converted)),
                      c.bytes);
        } else if (!c.rejectSurrogates) {
            EXPECT_EQ(own, nullptr);
            EXPECT_EQ(converted, 0);
        }
        if (own != nullptr) DFDLHeapAdapter_arrayDeallocate(named.rig.heap, own);
    }
}

TEST(Encode, OneUnitBecomesBytesOfItsOwn) {
    NamedCharset named("UTF-16LE");
    UConverter* converter = DFDLCharset_getConverter(named.charset);
    int32_t count = 0;
    const UChar unit = u'\u20AC';
    uint8_t* bytes = CharsetManager_convertUCharTo(named.rig.heap, &unit, &count, converter);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(bytes[0], 0xAC);
    DFDLHeapAdapter_arrayDeallocate(named.rig.heap, bytes);
    const UChar half = 0xD800;
    EXPECT_EQ(CharsetManager_convertUCharTo(named.rig.heap, &half, &count, converter), nullptr);
    EXPECT_EQ(count, 0);
}

struct DecodeCase {
    const char* fault;
    std::string_view bytes;
    int32_t maxUnits;
    bool allowTrunc, strict;
    const char16_t* text;
    int64_t consumed;
    UErrorCode status;
};

const DecodeCase DECODE_CASES[] = {
    {"nothing", ""sv, 9, true, true, u"", 0, U_ZERO_ERROR},
    {"the text does not stop at the wanted units", "abc"sv, 2, true, true, u"ab", 2, U_BUFFER_OVERFLOW_ERROR},
    {"a cut character is an error", "ab\xE2\x82"sv, 9, true, true, u"ab", 2, U_TRUNCATED_CHAR_FOUND},
    {"a cut character is none", "ab\xE2\x82"sv, 9, false, true, u"null", 2, U_TRUNCATED_CHAR_FOUND},
    {"what may be a cut character is bad",
     "ab\xFF"
     "c"sv,
     9, true, true, u"ab", 2, U_ILLEGAL_CHAR_FOUND},
    {"bad data pass as cut",
     "ab\xFF"
     "cd"sv,
     9, true, true, u"null", 2, U_ILLEGAL_CHAR_FOUND},
    {"lenient reads fail",
     "ab\xFF"
     "cd"sv,
     9, false, false, u"ab", 2, U_ILLEGAL_CHAR_FOUND},
};

TEST(Decode, StopsAtTheFirstProblemAndTellsWhere) {
    for (const DecodeCase& c : DECODE_CASES) {
        SCOPED_TRACE(c.fault);
        NamedCharset named("UTF-8");
        BufferManager_initializeEncoderDecoders(named.rig.buffer, named.rig.item.iTextEncodingIndex, nullptr);
        int64_t consumed = -1;
        UErrorCode status = U_INTERNAL_PROGRAM_ERROR;
        DFDLUString* text = CharsetManager_decodeWithIgnoreTruncIgnoreMalformed(
            named.rig.charsets, reinterpret_cast<const uint8_t*>(c.bytes.data()),
            static_cast<int64_t>(c.bytes.size()), c.maxUnits, &consumed, named.rig.buffer->decoder, &status,
            c.allowTrunc, 3, c.strict, true);
        EXPECT_EQ(text == nullptr ? u"null" : std::u16string(DFDLUString_view(text)), c.text);
        EXPECT_EQ(consumed, c.consumed);
        EXPECT_EQ(status, c.status);
        delete_DFDLUString(text);
    }
}

}  // namespace
