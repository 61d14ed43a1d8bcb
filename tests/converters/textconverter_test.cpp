// Taking escapes out of text, and the small helpers around conversion.
#include "dfdl/converters/textconverter.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/pif/escapeschemetable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textstringtable.h"
#include "support/bufferrig.h"
#include "support/testheap.h"

namespace {

using Text = std::u16string;

std::string narrow(const Text& text) {
    std::string result;
    for (const char16_t unit : text) result += unit < 0x80 ? static_cast<char>(unit) : '#';
    return result;
}

DFDLUString* pooled(const TestAdapter& heap, const Text& text) {
    return DFDLUStringPooler_getDFDLUStringFromView(heap.adapter, text);
}

Text take(DFDLUString* text) {
    const Text result(DFDLUString_view(text));
    EXPECT_EQ(text->chars[text->length], 0);
    delete_DFDLUString(text);
    return result;
}

// A member with an escape scheme of these strings; an empty one is none.
struct Scheme {
    TestAdapter heap;
    EscapeSchemeTableRow scheme;
    GroupMemberTableRow row;

    Scheme(EscapeKindEnum kind, const Text& first, const Text& end, const Text& escapeEscape) {
        scheme.iEscapeKind = kind;
        (kind == ESCAPE_BLOCK ? scheme.iEscapeBlockStart : scheme.iEscapeCharacter) = literal(first);
        scheme.iEscapeBlockEnd = literal(end);
        scheme.iEscapeEscapeCharacter = literal(escapeEscape);
        row.escapeRow = &scheme;
    }
    ~Scheme() {
        for (DFDLUString* text : {scheme.iEscapeCharacter, scheme.iEscapeBlockStart, scheme.iEscapeBlockEnd,
                                  scheme.iEscapeEscapeCharacter}) {
            delete_DFDLUString(text);
        }
    }
    DFDLUString* literal(const Text& text) { return text.empty() ? nullptr : pooled(heap, text); }
    Text apply(const Text& raw) {
        DFDLUString* text = pooled(heap, raw);
        EXPECT_EQ(TextConverter_applyEscapeScheme(heap.adapter, text, &row), text);
        return take(text);
    }
};

TEST(EscapeCharacters, AreTakenOut) {
    struct Case {
        const char16_t* escape;
        const char16_t* escapeEscape;
        const char16_t* raw;
        const char16_t* expected;
    };
    const Case cases[] = {
        {u"\\", u"", u"plain", u"plain"},
        {u"\\", u"", u"a\\,b", u"a,b"},
        {u"\\", u"", u"\\\\\\,", u"\\,"},
        {u"\\", u"", u"ab\\", u"ab"},
        {u"\\", u"\\", u"a\\,b", u"a,b"},
        {u"\\", u"\\", u"a\\\\,b", u"a\\,b"},
        {u"\\", u"\\", u"\\\\\\\\\\,", u"\\\\,"},
        {u"\\", u"\\", u"ab\\", u"ab"},
        // An escape-escape is one only before an escape.
        {u"?", u"^", u"a^?b", u"a?b"},
        {u"?", u"^", u"a^b^", u"a^b^"},
        {u"?", u"^", u"^x?,", u"^x,"},
        {u"?", u"^", u"?^?,", u"^,"},
        {u"?", u"^", u"??,", u"?,"},
        // Behind one that is none the next character is plain, so the escape stands alone here.
        {u"?", u"^", u"^^?,", u"^^,"},
        {u"?", u"^", u"^^^?,", u"^^?,"},
        {u"?", u"^", u"??^?", u"??"},
        // The escaped character is a whole one.
        {u"?", u"", u"?\xD83D\xDE00?,", u"\xD83D\xDE00,"},
        {u"\xD83D\xDE00", u"", u"a\xD83D\xDE00,b\xD83D\xDE01", u"a,b\xD83D\xDE01"},
        {u"ab", u"abc", u"xab,abcab,abcx", u"x,ab,abcx"},
        {u"", u"^", u"a^?b", u"a^?b"},
    };
    for (const Case& c : cases) {
        Scheme scheme(ESCAPE_CHARACTER, c.escape, u"", c.escapeEscape);
        EXPECT_EQ(scheme.apply(c.raw), c.expected)
            << narrow(c.raw) << " with " << narrow(c.escape) << ' ' << narrow(c.escapeEscape);
    }
}

TEST(EscapeBlocks, AreTakenOut) {
    struct Case {
        const char16_t* start;
        const char16_t* end;
        const char16_t* escapeEscape;
        const char16_t* raw;
        const char16_t* expected;
    };
    const Case cases[] = {
        {u"\"", u"\"", u"\"", u"\"a,b\"", u"a,b"},
        {u"\"", u"\"", u"\"", u"\"\"", u""},
        {u"\"", u"\"", u"\"", u"\"a\"\"b\"\"\"", u"a\"b\""},
        {u"\"", u"\"", u"\"", u"\"\"\"\"\"\"", u"\"\""},
        // A block starts with the field or not at all, and what is behind its end is kept as it stands.
        {u"\"", u"\"", u"\"", u"a\"b\"", u"a\"b\""},
        {u"\"", u"\"", u"\"", u"\"ab\"cd", u"abcd"},
        {u"\"", u"\"", u"\"", u"\"ab\"c\"\"d\"", u"abc\"\"d\""},
        {u"\"", u"\"", u"\\", u"\"a\\\"b\\c\"", u"a\"b\\c"},
        {u"\"", u"\"", u"\\", u"\"\\\\\"\"", u"\\\""},
        {u"\"", u"\"", u"", u"\"a\"\"b\"", u"a\"b\""},
        {u"<!", u"!>", u"\\", u"<!a\\!>b!!>c", u"a!>b!c"},
        {u"(", u")", u"(", u"(a()b)", u"a)b"},
        // Without an end there is no block, and nothing is removed from it.
        {u"\"", u"\"", u"\"", u"\"a\"\"b", u"\"a\"\"b"},
        {u"\"", u"\"", u"\"", u"\"", u"\""},
        {u"\"", u"\"", u"\"", u"\"\"\"", u"\"\"\""},
        {u"\"", u"", u"\"", u"\"a", u"\"a"},
        {u"", u"\"", u"\"", u"a\"", u"a\""},
    };
    for (const Case& c : cases) {
        Scheme scheme(ESCAPE_BLOCK, c.start, c.end, c.escapeEscape);
        EXPECT_EQ(scheme.apply(c.raw), c.expected)
            << narrow(c.raw) << " between " << narrow(c.start) << ' ' << narrow(c.end) << " hidden by "
            << narrow(c.escapeEscape);
    }
}

// Writes a text as a serializer would, every character that could be taken for something else escaped.
Text escapeCharacters(const Text& text, char16_t escape, const Text& escapeEscape) {
    Text raw;
    for (const char16_t unit : text) {
        if (unit == escape && !escapeEscape.empty()) {
            raw += escapeEscape;
        } else if (unit != u'a') {
            raw += escape;
        }
        raw += unit;
    }
    return raw;
}

Text escapeBlock(const Text& text, char16_t end, char16_t escapeEscape) {
    Text raw(1, u'<');
    for (const char16_t unit : text) {
        if (unit == end) raw += escapeEscape;
        raw += unit;
    }
    return raw + end;
}

TEST(EscapeSchemes, GiveBackWhatWasEscaped) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Scheme plain(ESCAPE_CHARACTER, u"?", u"", u"");
    Scheme same(ESCAPE_CHARACTER, u"?", u"", u"?");
    Scheme other(ESCAPE_CHARACTER, u"?", u"", u"^");
    Scheme doubled(ESCAPE_BLOCK, u"<", u"?", u"?");
    Scheme hidden(ESCAPE_BLOCK, u"<", u"?", u"^");
    for (int run = 0; run < 3000; ++run) {
        Text text;
        for (size_t length = random() % 400 / (1 + random() % 60); text.size() < length;) {
            text += u"a?^,<"[random() % 5];
        }
        text += u'a';  // an escape-escape before the end of a block would hide it
        ASSERT_EQ(plain.apply(escapeCharacters(text, u'?', u"")), text);
        ASSERT_EQ(same.apply(escapeCharacters(text, u'?', u"?")), text);
        ASSERT_EQ(other.apply(escapeCharacters(text, u'?', u"^")), text);
        ASSERT_EQ(doubled.apply(escapeBlock(text, u'?', u'?')), text);
        ASSERT_EQ(hidden.apply(escapeBlock(text, u'?', u'^')), text);
    }
}

TEST(EscapeSchemes, LeaveStorageOfOthersAlone) {
    static constexpr UChar RAW[] = u"a?,b";
    Scheme scheme(ESCAPE_CHARACTER, u"?", u"", u"");
    DFDLUString* text = new_DFDLUStringUseUChars(scheme.heap.adapter, RAW, 4);
    TextConverter_applyEscapeScheme(scheme.heap.adapter, text, &scheme.row);
    EXPECT_EQ(take(text), u"a,b");
    EXPECT_EQ(Text(RAW), u"a?,b");
}

TEST(EscapeSchemes, OfACompiledSetAreThoseOfTheRow) {
    Scheme character(ESCAPE_CHARACTER, u"?", u"", u"^");
    Scheme block(ESCAPE_BLOCK, u"<", u"?", u"^");
    UErrorCode status = U_ZERO_ERROR;
    const Owned<UConverter, ucnv_close> converter(ucnv_open("UTF-16BE", &status));
    const std::pair<Scheme*, const char16_t*> cases[] = {{&character, u"<a^?,?,"}, {&block, u"<a^?,?,"}};
    for (const auto& [scheme, raw] : cases) {
        DFDLHeapAdapter* heap = scheme->heap.adapter;
        CompiledMarkupSet* set = new_CompiledMarkupSet(heap);
        DFDLUString* text = pooled(scheme->heap, raw);
        // A set without a scheme leaves it to the row.
        TextConverter_applyEscapeSchemeUsingCompiledMarkupSetData(heap, text, &scheme->row, set);
        EXPECT_EQ(take(text), scheme->apply(raw));
        ASSERT_TRUE(CompiledMarkupSet_configureScannerDataForEscapeScheme(set, heap->context, &scheme->scheme,
                                                                          converter.get(), nullptr));
        text = pooled(scheme->heap, raw);
        const GroupMemberTableRow unread;
        TextConverter_applyEscapeSchemeUsingCompiledMarkupSetData(heap, text, &unread, set);
        EXPECT_EQ(take(text), scheme->apply(raw));
        delete_CompiledMarkupSet(set);
    }
}

TEST(EscapeSchemes, FromAnExpressionAreRefused) {
    Scheme scheme(ESCAPE_CHARACTER, u"", u"", u"");
    scheme.scheme.iEscapeCharacterExpr = 0;
    DFDLUString* text = pooled(scheme.heap, u"a?b");
    EXPECT_EQ(TextConverter_applyEscapeScheme(scheme.heap.adapter, text, &scheme.row), nullptr);
    EXPECT_TRUE(
        ProcessingError_hasKey(scheme.heap.adapter->context->currentError, DFDLParser_unsupportedConstruct));
    EXPECT_EQ(take(text), u"a?b");
}

TEST(TextHelpers, CountCharacters) {
    TestAdapter heap;
    struct Case {
        Text text;
        int32_t count;
        bool pairs;
    };
    const Case cases[] = {{u"", 0, false},
                          {u"abc", 3, false},
                          {u"a\xD83D\xDE00", 2, true},
                          {u"\xDE00\xD83D", 2, false},  // the wrong way round
                          {u"\xD83D\xD83D\xDE00", 2, true},
                          {u"a\xD83D", 2, false}};
    for (const Case& c : cases) {
        DFDLUString* text = pooled(heap, c.text);
        EXPECT_EQ(TextConverter_countUnicodeCharacters(text), c.count);
        EXPECT_EQ(TextConverter_countUnicodeCharactersFromBuffer(text->chars, text->length), c.count);
        EXPECT_EQ(TextConverter_surrogatePairsFound(text), c.pairs);
        delete_DFDLUString(text);
    }
    EXPECT_EQ(TextConverter_countUnicodeCharacters(nullptr), 0);
    EXPECT_FALSE(TextConverter_surrogatePairsFound(nullptr));
}

TEST(TextHelpers, FindClassesOfCharacters) {
    TestAdapter heap;
    DFDLConstants* constants = new_DFDLConstants(heap.adapter);
    const std::pair<const char16_t*, bool> cases[] = {
        {u"a%NL;", true}, {u"%WSP;", true}, {u"%WSP*;b", true}, {u"%WSP+;", true},
        {u"%SP;", false}, {u"%NL", false},  {u"%WSP*", false},  {u"", false},
    };
    for (const auto& [literal, expected] : cases) {
        DFDLUString* text = pooled(heap, literal);
        EXPECT_EQ(TextConverter_containsGenericMnemonics(text, constants), expected) << narrow(literal);
        delete_DFDLUString(text);
    }
    delete_DFDLConstants(constants);
}

TEST(TextHelpers, QuoteForRegularExpressions) {
    TestAdapter heap;
    DFDLUString* plain = pooled(heap, u"a-b\x12E");
    EXPECT_EQ(TextConverter_escapeJavaRegex(plain, heap.adapter), plain);
    delete_DFDLUString(plain);
    DFDLUString* text = pooled(heap, u"a.\\?*+&:{}[]()^$|b");
    EXPECT_EQ(take(TextConverter_escapeJavaRegex(text, heap.adapter)),
              u"a\\.\\\\\\?\\*\\+\\&\\:\\{\\}\\[\\]\\(\\)\\^\\$\\|b");
    delete_DFDLUString(text);
}

TEST(TextHelpers, FillUpToALength) {
    TestAdapter heap;
    TextStringTableRow row;
    row.iTextOutputMinLength = 5;
    DFDLUString* text = pooled(heap, u"ab");
    EXPECT_EQ(TextConverter_doJustification(text, &row, heap.adapter), text);
    row.padString = pooled(heap, u"*");
    const std::pair<TextJustificationEnum, const char16_t*> cases[] = {
        {LEFT, u"ab***"}, {RIGHT, u"***ab"}, {CENTER, u"**ab*"}};
    for (const auto& [justification, expected] : cases) {
        row.iTextJustification = justification;
        EXPECT_EQ(take(TextConverter_doJustification(text, &row, heap.adapter)), expected);
    }
    delete_DFDLUString(text);
    delete_DFDLUString(row.padString);
}

TEST(TextHelpers, DecodeWholeArrays) {
    BufferRig rig;
    DFDLCharset* utf8 = CharsetManager_getDFDLEncoding(rig.charsets, rig.encoding("UTF-8"));
    ProcessingError* error = rig.context->currentError;
    const auto decode = [&](const char* bytes, int64_t offset, int64_t length) {
        return TextConverter_createStringFromByteArray(utf8, reinterpret_cast<const uint8_t*>(bytes), offset,
                                                       length, error, rig.heap);
    };
    EXPECT_EQ(take(decode("xx\xC3\xA4z", 2, 3)), u"\xE4z");
    EXPECT_EQ(take(decode("", 0, 0)), u"");
    EXPECT_EQ(decode("a\xC3", 0, 2), nullptr);  // cut off
    EXPECT_EQ(rig.takeError(), "CTDP3156E Malformed input or unmappable character UTF-8");
    EXPECT_EQ(take(decode("\xC3\xA4", 0, 2)), u"\xE4");  // nothing is left of the cut-off one
}

}  // namespace
