#include "dfdl/framework/dfdlstringliteral.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/helpers/listvaluedproperty.h"
#include "support/testheap.h"

namespace {

using String = Owned<DFDLUString, delete_DFDLUString>;
using Literal = Owned<DFDLStringLiteral, delete_DFDLStringLiteral>;
using Cache = Owned<StringLiteralCache, delete_StringLiteralCache>;

String makeString(DFDLHeapAdapter* heap, std::u16string_view text) {
    return String(new_DFDLUStringFromUChars(heap, text.data(), static_cast<int32_t>(text.size())));
}

Literal makeLiteral(DFDLHeapAdapter* heap, std::u16string_view text) {
    return Literal(new_DFDLStringLiteral(heap, makeString(heap, text).get()));
}

struct TextCase {
    std::u16string source;
    std::u16string text;
};

TEST(DFDLStringLiteral, plainTextAndCharacters) {
    const TextCase cases[] = {
        {u"", u""},
        {u"abc", u"abc"},
        {u"{{abc", u"{abc"},
        {u"{abc", u"{abc"},
        {u"%%", u"%"},
        {u"%%%%", u"%%"},
        {u"%%SP;", u"%SP;"},
        {u"a%SP;b;c%%d", u"a b;c%d"},
        {u"%#x0A;", u"\n"},
        {u"%#10;", u"\n"},
        {u"%#xZZ;", std::u16string(1, 0)},
        {u"%#x4g1;", u"\u0004"},
        {u"%#;", std::u16string(1, 0)},
        {u"%#x1F600;", u"\U0001F600"},
        {u"%NUL;", std::u16string(1, 0)},
        {u"%NUX;", std::u16string(1, 0)},
        {u"%SOH;%STX;%ETX;%EOT;%ENQ;%ACK;%BEL;%BS;", u"\u0001\u0002\u0003\u0004\u0005\u0006\u0007\b"},
        {u"%HT;%LF;%VT;%FF;%CR;%SO;%SI;%DLE;", u"\t\n\v\f\r\u000E\u000F\u0010"},
        {u"%DC1;%DC2;%DC3;%DC4;%NAK;%SYN;%ETB;%CAN;", u"\u0011\u0012\u0013\u0014\u0015\u0016\u0017\u0018"},
        {u"%EM;%SUB;%ESC;%FS;%GS;%RS;%US;%SP;", u"\u0019\u001A\u001B\u001C\u001D\u001E\u001F "},
        {u"%DEL;%NBSP;%NEL;%LS;", u"\u007F\u00A0\u0085\u2028"},
    };
    TestAdapter heap;
    for (const TextCase& c : cases) {
        const Literal literal = makeLiteral(heap.adapter, c.source);
        ASSERT_TRUE(DFDLStringLiteral_parse(literal.get())) << c.source.size();
        const DFDLUString* text = DFDLStringLiteral_getUnicodeString(literal.get());
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(std::u16string(DFDLUString_view(text)), c.text);
        EXPECT_LE(DFDLStringLiteral_partCount(literal.get()), 1);
    }
}

TEST(DFDLStringLiteral, malformedEntitiesAreRefused) {
    TestAdapter heap;
    for (const char16_t* source : {u"%", u"a%", u"%SP", u"%a%;", u"%;", u"%XY;", u"%sp;", u"%#r0D1;", u"%S;",
                                   u"%#x110000;", u"%#99999999999999999999;"}) {
        const Literal literal = makeLiteral(heap.adapter, source);
        EXPECT_FALSE(DFDLStringLiteral_parse(literal.get())) << std::u16string(source).size();
    }
}

struct PartsCase {
    std::u16string source;
    std::vector<int32_t> kinds;
    int32_t byteValue;
    UChar character;
};

TEST(DFDLStringLiteral, bytesAndClassesArePartsOfTheirOwn) {
    const PartsCase cases[] = {
        {u"ab%NL;c", {PART_TEXT, PART_NEW_LINE, PART_TEXT}, -1, u'c'},
        {u"%WSP;", {PART_WHITE_SPACE}, -1, 0},
        {u"%WSP+;", {PART_WHITE_SPACE_PLUS}, -1, 0},
        {u"%WSP*;", {PART_WHITE_SPACE_STAR}, -1, 0},
        {u"%WSPx;", {PART_WHITE_SPACE_PLUS}, -1, 0},
        {u"a%WS;b", {PART_TEXT, PART_TEXT}, -1, u'a'},
        {u"%ES;", {PART_EMPTY_STRING}, -1, 0},
        {u"%#r0D;", {PART_BYTE}, 0x0D, 0},
        {u"%#rfF;%#r;", {PART_BYTE, PART_BYTE}, 0xFF, 0},
        {u"x%#r41;", {PART_TEXT, PART_BYTE}, -1, u'x'},
    };
    TestAdapter heap;
    for (const PartsCase& c : cases) {
        const Literal literal = makeLiteral(heap.adapter, c.source);
        ASSERT_TRUE(DFDLStringLiteral_parse(literal.get()));
        std::vector<int32_t> kinds;
        bool plain = true;
        for (int32_t i = 0; i < DFDLStringLiteral_partCount(literal.get()); ++i) {
            kinds.push_back(DFDLStringLiteral_part(literal.get(), i)->kind);
            plain = plain && kinds.back() == PART_TEXT;
        }
        EXPECT_EQ(kinds, c.kinds);
        EXPECT_EQ(DFDLStringLiteral_getUnicodeString(literal.get()) != nullptr, plain);
        EXPECT_EQ(DFDLStringLiteral_getByteValue(literal.get()), c.byteValue);
        EXPECT_EQ(DFDLStringLiteral_getCharacterValue(literal.get()), c.character);
        EXPECT_EQ(literal->hasEmptyString, c.kinds[0] == PART_EMPTY_STRING);
    }
}

TEST(DFDLStringLiteral, aMissingSourceHasNoParts) {
    TestAdapter heap;
    const Literal literal(new_DFDLStringLiteral(heap.adapter, nullptr));
    EXPECT_TRUE(DFDLStringLiteral_parse(literal.get()));
    EXPECT_EQ(DFDLStringLiteral_partCount(literal.get()), 0);
    EXPECT_EQ(DFDLStringLiteral_getByteValue(literal.get()), -1);
}

TEST(StringLiteralCache, keepsLiteralsAndListsAndReportsMalformedOnes) {
    TestAdapter heap;
    const Cache cache(new_StringLiteralCache(heap.adapter, nullptr));
    const String text = makeString(heap.adapter, u"yes %#x59;");
    const auto* list = StringLiteralCache_getDFDLStringLiteralList(cache.get(), text.get());
    EXPECT_EQ(StringLiteralCache_getDFDLStringLiteralList(cache.get(), text.get()), list);
    ASSERT_EQ(ListValuedProperty_size(list), 2);
    const auto* literal =
        StringLiteralCache_getDFDLStringLiteral(cache.get(), ListValuedProperty_get(list, 1));
    ASSERT_NE(literal, nullptr);
    EXPECT_EQ(StringLiteralCache_getDFDLStringLiteral(cache.get(), ListValuedProperty_get(list, 1)), literal);

    EXPECT_TRUE(matchStringLiteralList(cache.get(), list, false, makeString(heap.adapter, u"Y").get()));
    EXPECT_FALSE(matchStringLiteralList(cache.get(), list, false, makeString(heap.adapter, u"YES").get()));
    EXPECT_TRUE(matchStringLiteralList(cache.get(), list, true, makeString(heap.adapter, u"YES").get()));
    EXPECT_FALSE(matchStringLiteralList(cache.get(), nullptr, true, text.get()));

    ProcessingError* error = heap.adapter->context->currentError;
    EXPECT_FALSE(ProcessingError_isSet(error));
    const String malformed = makeString(heap.adapter, u"%X;");
    EXPECT_EQ(StringLiteralCache_getDFDLStringLiteral(cache.get(), malformed.get()), nullptr);
    EXPECT_TRUE(ProcessingError_hasKey(error, TEXT_INVALID_MNEMONIC));
    EXPECT_FALSE(DFDLStringHashMap_containsKey(cache->literals, malformed.get()));
}

int deletedSets = 0;

TEST(StringLiteralCache, resetDropsOnlyTheSetsOfOneDocument) {
    TestAdapter heap;
    deletedSets = 0;
    const Cache cache(new_StringLiteralCache(heap.adapter, [](DFDLHeapAdapter*, void*) { ++deletedSets; }));
    int set = 0;
    const String kept = makeString(heap.adapter, u"kept");
    const String dropped = makeString(heap.adapter, u"dropped");
    DFDLStringHashMap_put(cache->compiledSets, kept.get(), &set, false);
    ArrayList_addPointer(cache->volatileSets,
                         DFDLStringHashMap_put(cache->compiledSets, dropped.get(), &set, false));
    StringLiteralCache_reset(cache.get());
    StringLiteralCache_reset(cache.get());
    EXPECT_EQ(deletedSets, 1);
    EXPECT_TRUE(DFDLStringHashMap_containsKey(cache->compiledSets, kept.get()));
    EXPECT_FALSE(DFDLStringHashMap_containsKey(cache->compiledSets, dropped.get()));
}

}  // namespace
