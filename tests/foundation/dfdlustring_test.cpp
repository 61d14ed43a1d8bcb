#include "dfdl/foundation/dfdlustring.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using String = Owned<DFDLUString, delete_DFDLUString>;
using Converter = Owned<UConverter, ucnv_close>;

std::u16string text(const DFDLUString* string) { return std::u16string(DFDLUString_view(string)); }

Converter open(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    return Converter(ucnv_open(name, &status));
}

struct DFDLUStringTest : ::testing::Test {
    TestAdapter test;
    DFDLHeapAdapter* heap = test.adapter;

    String make(std::u16string_view content) {
        return String(new_DFDLUStringFromUChars(heap, content.data(), static_cast<int32_t>(content.size())));
    }
    // Of a new string; it must be terminated.
    std::u16string taken(DFDLUString* string) {
        const String owned(string);
        EXPECT_EQ(string->chars[string->length], 0);
        return text(string);
    }
};

TEST_F(DFDLUStringTest, comparison) {
    const String empty = make(u"");
    const String abc = make(u"abc");
    const String upper = make(u"ABC");
    const String street = make(u"stra\u00DFe");
    const String streetUpper = make(u"STRASSE");
    EXPECT_TRUE(DFDLUString_equals(nullptr, empty.get()));
    EXPECT_TRUE(DFDLUString_equalsIgnoreCase(empty.get(), nullptr));
    EXPECT_FALSE(DFDLUString_equalsIgnoreCase(abc.get(), nullptr));
    EXPECT_FALSE(DFDLUString_equals(abc.get(), upper.get()));
    EXPECT_TRUE(DFDLUString_equalsIgnoreCase(abc.get(), upper.get()));
    EXPECT_TRUE(DFDLUString_equalsIgnoreCase(street.get(), streetUpper.get()));
    EXPECT_EQ(DFDLUString_compare(nullptr, empty.get()), -1);
    EXPECT_EQ(DFDLUString_compare(empty.get(), nullptr), -1);
    EXPECT_GT(DFDLUString_compare(abc.get(), upper.get()), 0);
    EXPECT_FALSE(DFDLUString_equalsString(empty.get(), u"", 0));
    EXPECT_TRUE(DFDLUString_equalsString(abc.get(), u"abcd", 3));
    EXPECT_FALSE(DFDLUString_equalsString(abc.get(), u"abcd", 4));
    EXPECT_TRUE(DFDLUString_equalsStringIgnoreCase(upper.get(), u"abc", 3));
    EXPECT_TRUE(DFDLUString_equalsInLength(abc.get(), make(u"abx").get(), 2));
    EXPECT_FALSE(DFDLUString_equalsInLength(abc.get(), make(u"ab").get(), 3));
    EXPECT_TRUE(DFDLUString_equalsWithUChar(make(u"a").get(), u'a'));
    EXPECT_FALSE(DFDLUString_equalsWithUChar(abc.get(), u'a'));
}

// By units, not by code points: a surrogate is less than U+FF00.
TEST_F(DFDLUStringTest, orderIsThatOfUnits) {
    EXPECT_LT(DFDLUString_compare(make(u"\U0001F600").get(), make(u"\uFF00").get()), 0);
}

TEST_F(DFDLUStringTest, search) {
    struct Case {
        const char16_t *text, *part;
        int32_t first, last, fromOne, count;
    };
    for (const Case& c : {Case{u"abcabc", u"bc", 1, 4, 1, 2}, Case{u"aaaa", u"aa", 0, 2, 1, 2},
                          Case{u"abc", u"abcd", -1, -1, -1, 0}, Case{u"abc", u"a", 0, 0, -1, 1},
                          Case{u"abc", u"", 0, 3, 1, 0}, Case{u"", u"a", -1, -1, -1, 0}}) {
        const String whole = make(c.text);
        const String part = make(c.part);
        EXPECT_EQ(DFDLUString_findFirst(whole.get(), part.get()), c.first);
        EXPECT_EQ(DFDLUString_lastIndexOf(whole.get(), part.get()), c.last);
        EXPECT_EQ(DFDLUString_findFirstWithStartIndex(whole.get(), part.get(), 1), c.fromOne);
        EXPECT_EQ(DFDLUString_countOccurrencesOf(whole.get(), part.get()), c.count);
        EXPECT_EQ(DFDLUString_contains(whole.get(), part.get()), c.first >= 0);
        EXPECT_EQ(DFDLUString_startsWith(whole.get(), part.get()), c.first == 0);
    }
    const String abc = make(u"ab\u00E9");
    EXPECT_TRUE(DFDLUString_startsWithChars(abc.get(), "ab"));
    EXPECT_FALSE(DFDLUString_startsWithChars(abc.get(), "abcd"));
    EXPECT_TRUE(DFDLUString_startsWithUChars(abc.get(), u"abx", 2));
    EXPECT_TRUE(DFDLUString_endsWithUChar(abc.get(), u'\u00E9'));
    EXPECT_EQ(DFDLUString_findFirstUCharWithStartIndex(abc.get(), u'a', 1), -1);
    EXPECT_EQ(DFDLUString_findFirstUCharWithStartIndex(abc.get(), u'b', 9), -1);
    EXPECT_EQ(DFDLUString_findFirstUCharWithStartIndex(abc.get(), u'b', -1), -1);
    EXPECT_EQ(DFDLUString_countCharacters(make(u"a\U0001F600b").get()), 3);
}

TEST_F(DFDLUStringTest, newStrings) {
    const String s = make(u" xaxbx ");
    const String x = make(u"x");
    const String yy = make(u"yy");
    const String none = make(u"");
    EXPECT_EQ(taken(DFDLUString_substring(s.get(), 5, heap)), u"x ");
    EXPECT_EQ(taken(DFDLUString_substringWithEnd(s.get(), -3, 2, heap)), u" x");
    EXPECT_EQ(taken(DFDLUString_substringWithEnd(s.get(), 6, 2, heap)), u"");
    EXPECT_EQ(taken(DFDLUString_concat(x.get(), yy.get(), heap)), u"xyy");
    EXPECT_EQ(taken(DFDLUString_concat(nullptr, yy.get(), heap)), u"yy");
    EXPECT_EQ(taken(DFDLUString_concatWithUChar(x.get(), u'z', heap)), u"xz");
    EXPECT_EQ(taken(DFDLUString_replace(s.get(), x.get(), yy.get(), heap)), u" yyaxbx ");
    EXPECT_EQ(taken(DFDLUString_replaceAll(s.get(), x.get(), yy.get(), heap)), u" yyayybyy ");
    EXPECT_EQ(taken(DFDLUString_replaceAll(s.get(), none.get(), yy.get(), heap)), u" xaxbx ");
    EXPECT_EQ(taken(DFDLUString_replaceAllWithEmpty(s.get(), x.get(), heap)), u" ab ");
    EXPECT_EQ(taken(DFDLUString_replaceAllUChar(s.get(), u'x', u'-', heap)), u" -a-b- ");
    EXPECT_EQ(taken(DFDLUString_trim(s.get(), 0, heap)), u"xaxbx");
    EXPECT_EQ(taken(DFDLUString_trim(make(u"\u00A0 0\t\u2003").get(), 0, heap)), u"0");
    EXPECT_EQ(taken(DFDLUString_trim(make(u"0010").get(), u'0', heap)), u"1");
    EXPECT_EQ(taken(DFDLUString_trim(make(u"   ").get(), 0, heap)), u"");
    EXPECT_EQ(taken(DFDLUString_toUpper(make(u"stra\u00DFe").get(), heap)), u"STRASSE");
    EXPECT_EQ(taken(DFDLUString_toLower(make(u"ABI").get(), heap)), u"abi");
    EXPECT_EQ(taken(DFDLUString_toLower(none.get(), heap)), u"");
}

TEST_F(DFDLUStringTest, justification) {
    struct Case {
        const char16_t* text;
        int32_t width;
        const char16_t *pad, *left, *right, *center;
    };
    for (const Case& c :
         {Case{u"ab", 5, u"*", u"ab***", u"***ab", u"**ab*"}, Case{u"abc", 2, u"*", u"abc", u"abc", u"abc"},
          Case{u"a", 3, u"\U0001F600", u"a\U0001F600\U0001F600", u"\U0001F600\U0001F600a",
               u"\U0001F600a\U0001F600"},
          Case{u"\U0001F600", 2, u"-", u"\U0001F600-", u"-\U0001F600", u"-\U0001F600"},
          Case{u"a", 4, u"", u"a", u"a", u"a"}, Case{u"a", -1, u"*", u"a", u"a", u"a"}}) {
        const String s = make(c.text);
        const String pad = make(c.pad);
        EXPECT_EQ(taken(DFDLUString_leftJustify(s.get(), c.width, pad.get(), heap)), c.left);
        EXPECT_EQ(taken(DFDLUString_rightJustify(s.get(), c.width, pad.get(), heap)), c.right);
        EXPECT_EQ(taken(DFDLUString_centerJustify(s.get(), c.width, pad.get(), heap)), c.center);
    }
}

TEST_F(DFDLUStringTest, changeOfForeignStorageTakesACopy) {
    const char16_t storage[] = u"a-b-c";
    const std::vector<std::pair<std::u16string, std::function<void(DFDLUString*)>>> changes = {
        {u"aXb-c", [](DFDLUString* s) { DFDLUString_setAt(s, 1, u'X'); }},
        {u"a-b-", [](DFDLUString* s) { DFDLUString_deleteCharAt(s, 4); }},
        {u"abc", [](DFDLUString* s) { DFDLUString_stripAll(s, u'-'); }},
        {u"a-b-c", [](DFDLUString* s) { DFDLUString_setAt(s, 5, u'X'); }},
        {u"a-b-c", [](DFDLUString* s) { DFDLUString_deleteCharAt(s, -1); }},
        {u"-b", [](DFDLUString* s) { DFDLUString_replaceValue(s, s->chars + 1, 2); }},
        {u"", [](DFDLUString* s) { DFDLUString_reset(s); }}};
    for (const auto& [expected, change] : changes) {
        const String s(new_DFDLUStringUseUChars(heap, storage, 5));
        change(s.get());
        EXPECT_EQ(text(s.get()), expected);
        EXPECT_EQ(s->chars[s->length], 0);
        EXPECT_EQ(std::u16string(storage), u"a-b-c");
        DFDLUString_setValue(s.get(), storage, 3);
        EXPECT_EQ(s->chars, storage);
    }
}

TEST_F(DFDLUStringTest, conversion) {
    const Converter utf8 = open("UTF-8");
    EXPECT_EQ(taken(new_DFDLUString_fromCString(heap, heap, utf8.get(), "a\xC3\xA9", -1)), u"a\u00E9");
    EXPECT_EQ(taken(new_DFDLUString_fromCStringWithStart(heap, heap, utf8.get(), "abcd", 1, 2)), u"bc");
    EXPECT_EQ(taken(new_DFDLUString_fromCString(heap, heap, utf8.get(), "", -1)), u"");
    // A byte of this encoding may be two units: the first try is too short.
    const Converter scsu = open("SCSU");
    const std::u16string faces = [] {
        std::u16string pairs;
        for (int i = 0; i < 20; ++i) pairs += u"\U0001F600";
        return pairs;
    }();
    Owned<DFDLString, delete_DFDLString> packed(
        new_DFDLStringFromDFDLUString(heap, scsu.get(), make(faces).get()));
    ASSERT_LT(packed->length, 30);
    EXPECT_EQ(
        taken(DFDLUStringPooler_getDFDLUStringFromCString(heap, scsu.get(), packed->chars, packed->length)),
        faces);
    const String s = make(u"old");
    EXPECT_TRUE(DFDLUString_setValueFromCString(s.get(), utf8.get(), "new", 3));
    EXPECT_EQ(text(s.get()), u"new");
    DFDLString* narrow = new_DFDLStringFromDFDLUString(heap, utf8.get(), make(u"\u20AC1").get());
    EXPECT_STREQ(narrow->chars, "\xE2\x82\xAC\x31");
    EXPECT_EQ(narrow->length, 4);
    delete_DFDLString(narrow);
}

TEST_F(DFDLUStringTest, lengthsThatAreNoneAreRefused) {
    EXPECT_THROW(new_DFDLUStringFromUChars(heap, u"a", -1), AllocationFailure);
    EXPECT_THROW(DFDLUStringPooler_getDFDLUStringFromUChars(heap, u"a", -1), AllocationFailure);
    EXPECT_THROW(new_DFDLUString_fromHexBinary(heap, nullptr, INT32_MAX), AllocationFailure);
    EXPECT_THROW(new_DFDLUString_fromBinaryBits(heap, nullptr, -1, 0), AllocationFailure);
    const String x = make(u"x");
    const String pad = make(std::u16string(2000, u'p'));
    EXPECT_THROW(DFDLUString_leftJustify(x.get(), INT32_MAX, pad.get(), heap), AllocationFailure);
}

TEST_F(DFDLUStringTest, copiesOfEveryShortLength) {
    std::u16string whole;
    for (char16_t unit = 0x100; unit < 0x128; ++unit) whole += unit;
    for (size_t length = 0; length <= whole.size(); ++length) {
        const std::u16string part = whole.substr(0, length);
        EXPECT_EQ(taken(DFDLUStringPooler_getDFDLUStringFromView(heap, part)), part);
    }
}

TEST_F(DFDLUStringTest, poolServesWithoutTheHeap) {
    const std::u16string units(255, u'u');
    const auto once = [&] { return DFDLUStringPooler_getDFDLUStringFromView(heap, units); };
    delete_DFDLUString(once());
    const long before = test.heap.allocations;
    DFDLUString* again = once();
    EXPECT_EQ(text(again), units);
    delete_DFDLUString(again);
    EXPECT_EQ(test.heap.allocations, before);
    EXPECT_EQ(text(again), u"") << "a free string holds no text";
    EXPECT_TRUE(DFDLBufferFactory_isIdle(heap->bufferFactory));
}

TEST_F(DFDLUStringTest, poolKeepsAHundred) {
    std::vector<DFDLUString*> strings(101);
    for (DFDLUString*& string : strings) string = DFDLUStringPooler_getDFDLUString(heap);
    const size_t blocks = DFDLHeapAdapter_countBlocks(heap);
    for (DFDLUString* string : strings) delete_DFDLUString(string);
    EXPECT_EQ(DFDLHeapAdapter_countBlocks(heap), blocks - 1);
    DFDLUString* late = DFDLUStringPooler_getDFDLUString(heap);
    DFDLPoolingFactory_setDestructing(heap->poolingFactory);
    delete_DFDLUString(late);
    EXPECT_EQ(DFDLHeapAdapter_countBlocks(heap), blocks - 2);
}

// The record is of the main heap's pool, the text of the message's buffers.
TEST_F(DFDLUStringTest, messageHeapHoldsTheText) {
    TestHeap messages;
    const DFDLHeapImpl callbacks = messages.callbacks();
    DFDLHeapAdapter* message = new_DFDLHeapAdapterForMessageHeap(
        callbacks.userData, callbacks.mallocCallback, callbacks.callocCallback, callbacks.reallocCallback,
        callbacks.freeCallback, heap);
    const long before = messages.live;
    DFDLUString* string = DFDLUStringPooler_getDFDLUStringFromView(message, std::u16string(1000, u'm'));
    EXPECT_EQ(string->heap, heap);
    EXPECT_EQ(messages.live, before + 1) << "the buffer only";
    delete_DFDLUString(string);
    EXPECT_EQ(messages.live, before);
    delete_DFDLHeapAdapterForMessageHeap(message);
}

}  // namespace
