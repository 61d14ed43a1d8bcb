#include "dfdl/framework/compiledmarkupset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/framework/linkedlistcompileddfdlstringliteral.h"
#include "dfdl/framework/markupitem.h"
#include "support/scanrig.h"
#include "support/testheap.h"

namespace {

std::string textOf(const CompiledDFDLStringLiteral* literal) {
    const std::u16string_view text = DFDLUString_view(literal->text);
    return {text.begin(), text.end()};
}

std::string listOf(const CompiledMarkupSet* set, uint8_t byte) {
    std::string texts;
    for (const auto* node = set->lists[byte]; node != nullptr; node = node->next) {
        texts += (texts.empty() ? "" : " ") + textOf(node->literal) + std::to_string(node->literal->level);
    }
    return texts;
}

TEST(CompiledMarkupSet, triesLongerThenInnerThenTerminators) {
    ScanRig rig;
    rig.within({.separator = u", ,,"});
    const int32_t id = rig.within({.terminator = u",b", .separator = u",a ,,,"});
    const CompiledMarkupSet* set = rig.use(id);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(listOf(set, ','), ",,,0 ,b0 ,a0 ,,1 ,1");
    EXPECT_FALSE(set->hasVariableLength);
    EXPECT_EQ(set->zeroLengthLiteral, nullptr);
}

TEST(LinkedListCompiledDFDLStringLiteral, equalsComeOutInReverse) {
    TestAdapter heap;
    std::vector<CompiledDFDLStringLiteral*> literals;
    LinkedListOfLiterals* list = nullptr;
    for (int32_t i = 0; i < 7; ++i) {
        literals.push_back(new_CompiledDFDLStringLiteral(heap.adapter, nullptr, 0, false));
        literals.back()->level = i % 2;
        list = LinkedListCompiledDFDLStringLiteral_addToList(list, heap.adapter, literals.back(), i);
    }
    list = LinkedListCompiledDFDLStringLiteral_sortList(list);
    std::string order;
    for (const auto* node = list; node != nullptr; node = node->next) order += std::to_string(node->tag);
    EXPECT_EQ(order, "6420531");
    delete_LinkedListCompiledDFDLStringLiteral(list);
    for (CompiledDFDLStringLiteral* literal : literals) delete_CompiledDFDLStringLiteral(literal);
}

TEST(MarkupItem, longerTextsComeFirstAndWhatWasOwnedGoes) {
    TestAdapter heap;
    const auto newText = [&](std::u16string_view text) {
        return new_DFDLUStringUseUChars(heap.adapter, text.data(), static_cast<int32_t>(text.size()));
    };
    MarkupItem items[4] = {};
    int32_t next = 0;
    for (const char16_t* text : {u",", u"", u"||"}) {
        MarkupItem_setValues(&items[next++], newText(text), 1, nullptr, 0, MARKUP_SEPARATOR, true, 0);
    }
    std::sort(std::begin(items), std::end(items),
              [](const MarkupItem& a, const MarkupItem& b) { return MarkupItem_compareTo(&a, &b) < 0; });
    const int32_t lengths[] = {2, 1, 0};
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(DFDLUString_length(items[i].text), lengths[i]) << i;
    EXPECT_EQ(items[3].text, nullptr);
    EXPECT_EQ(MarkupItem_compareTo(&items[3], &items[3]), 0);
    DFDLUString* kept = newText(u"!");
    MarkupItem_setValues(&items[0], kept, 1, nullptr, 0, MARKUP_TERMINATOR, false, 0);
    for (MarkupItem& item : items) MarkupItem_reset(&item);
    EXPECT_EQ(DFDLUString_length(kept), 1) << "it was lent";
    delete_DFDLUString(kept);
}

TEST(CompiledMarkupSet, tellsWhereOneByteMeansOneDelimiter) {
    ScanRig rig;
    rig.within({.terminator = u"%NL;", .separator = u"ab"});
    const int32_t id = rig.within({.separator = u", ; ;; ?x", .escape = u"?"});
    const CompiledMarkupSet* set = rig.use(id);
    ASSERT_NE(set, nullptr);
    ASSERT_NE(set->sole[','], nullptr);
    EXPECT_EQ(set->sole[',']->exactBytes[0], ',');
    ASSERT_NE(set->sole['a'], nullptr);
    EXPECT_EQ(set->sole['a']->level, 1);
    EXPECT_EQ(set->sole['a']->byteLength, 2);
    EXPECT_EQ(set->sole[';'], nullptr) << "two start with it";
    EXPECT_EQ(set->sole['?'], nullptr) << "an escape starts with it";
    EXPECT_EQ(set->sole['\n'], nullptr) << "a class is not a fixed run of bytes";
    EXPECT_NE(set->firstBytes['?'], 0);
    EXPECT_TRUE(set->hasVariableLength);
}

TEST(CompiledMarkupSet, onlySimpleElementsHaveTheEscapeScheme) {
    ScanRig rig;
    const int32_t outer = rig.within({.separator = u",", .escape = u"\\"});
    const int32_t inner = rig.within({.separator = u";"});
    const CompiledMarkupSet* simple = rig.use(outer, true);
    const CompiledMarkupSet* others = rig.use(outer, false);
    ASSERT_NE(simple, nullptr);
    ASSERT_NE(others, nullptr);
    EXPECT_TRUE(simple->usesEscapeCharacter);
    EXPECT_FALSE(others->usesEscapeCharacter);
    EXPECT_EQ(others->firstBytes['\\'], 0);
    EXPECT_EQ(rig.use(outer, true), simple);
    EXPECT_EQ(rig.scanner->markupSetId, outer);
    EXPECT_EQ(rig.use(inner, true), rig.use(inner, false)) << "no scheme, one form";
    EXPECT_FALSE(rig.use(inner)->usesEscapeCharacter);
}

TEST(CompiledMarkupSet, ofAListDependsOnEncodingAndCaseToo) {
    ScanRig rig;
    const CompiledMarkupSet* set = rig.useList(u"ab");
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(rig.scanner->markupSetId, -1);
    EXPECT_EQ(rig.useList(u"ab"), set);
    const auto again = [&rig] {
        return DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(rig.scanner, rig.lists.front(),
                                                                    &rig.rig.item, true, "initiator");
    };
    EXPECT_EQ(again(), set);
    EXPECT_EQ(rig.scanner->markupSet, set);
    EXPECT_NE(rig.useList(u"abc"), set);
    rig.rig.encoding("UTF-16BE");
    const CompiledMarkupSet* wide = rig.useList(u"ab");
    ASSERT_NE(wide, nullptr);
    EXPECT_NE(wide->sole[0], nullptr);
    EXPECT_EQ(again(), wide) << "the same text at the same place, in another encoding";
    TextMarkupTableRow markup;
    markup.iTextEncodingIndex = rig.rig.item.iTextEncodingIndex;
    markup.iIgnoreCase = true;
    rig.rig.item.markupRow = &markup;
    const CompiledMarkupSet* anyCase = rig.useList(u"ab");
    ASSERT_NE(anyCase, nullptr);
    EXPECT_NE(anyCase, wide);
    EXPECT_EQ(anyCase->sole[0], nullptr);
}

TEST(CompiledMarkupSet, listsThatWereWorkedOutHoldForOneDocument) {
    ScanRig rig;
    rig.useList(u"a");
    rig.useList(u"b", false);
    EXPECT_EQ(DFDLStringHashMap_size(rig.cache->compiledSets), 2);
    DelimitedScannerBytes_reset(rig.scanner);
    StringLiteralCache_reset(rig.cache);
    EXPECT_EQ(DFDLStringHashMap_size(rig.cache->compiledSets), 1);
    EXPECT_EQ(rig.scanner->markupSet, nullptr);
    DelimitedScannerBytes_setPIF(rig.scanner, nullptr);
    EXPECT_EQ(DFDLStringHashMap_size(rig.cache->compiledSets), 0);
}

struct BadCase {
    const char* what;
    const char* encoding;
    MarkupWords words;
    std::string error;
};

TEST(CompiledMarkupSet, whatCannotBeCompiledIsRefused) {
    const BadCase cases[] = {
        {"an entity that is none", "UTF-8", {.terminator = u"; %XX;"}, "CTDV1438E %XX; item terminator"},
        {"a separator's", "UTF-8", {.separator = u"%#x;x %"}, "CTDV1438E % item separator"},
        {"a character that is missing", "ISO-8859-1", {.separator = u"\u20AC"}, "CTDP3156E \xAC ISO-8859-1"},
        {"a character that becomes nothing",
         "Shift_JIS",
         {.separator = u"\u180E"},
         "CTDP3156E \x0E Shift_JIS"},
        {"an escape that is missing",
         "ISO-8859-1",
         {.separator = u",", .escape = u"\u2041"},
         "CTDP3156E A ISO-8859-1"},
    };
    for (const BadCase& c : cases) {
        ScanRig rig(c.encoding);
        const int32_t id = rig.within(c.words);
        EXPECT_EQ(rig.use(id), nullptr) << c.what;
        EXPECT_EQ(rig.rig.takeError(), c.error) << c.what;
        EXPECT_EQ(rig.scanner->markupSetId, -1);
    }
}

TEST(CompiledMarkupSet, hostileSetsEndInAnError) {
    ScanRig circle;
    circle.addSet(0, 1, -1);
    circle.addSet(1, 0, -1);
    EXPECT_EQ(circle.use(0), nullptr);
    EXPECT_EQ(circle.rig.takeError().substr(0, 9), "CTDP3900E");

    ScanRig numbers;
    numbers.addSet(INT32_MAX, -7, -1);
    numbers.addSet(-5, INT32_MAX, -1);
    EXPECT_NE(numbers.use(INT32_MAX), nullptr);
    EXPECT_NE(numbers.use(-5), nullptr);
    EXPECT_EQ(numbers.use(3), nullptr);
    EXPECT_EQ(numbers.use(-1), nullptr);

    std::u16string many;
    for (int i = 0; i <= MOST_LITERALS; ++i) many += u"a ";
    ScanRig crowd;
    EXPECT_EQ(crowd.useList(many), nullptr);
    EXPECT_EQ(crowd.rig.takeError().substr(0, 9), "CTDP3900E");
}

void compileAndScan(DFDLHeapImpl heap) {
    ScanRig rig("UTF-8", &heap);
    rig.within({.terminator = u"%WSP*; %NL;", .separator = u"End", .ignoreCase = true});
    const int32_t id = rig.within({.separator = u",", .blockStart = u"\"", .blockEnd = u"\""});
    rig.rig.document("\"a\"b,c");
    rig.use(id);
    rig.useList(u"x%WSP+;");
    rig.use(id);
    EXPECT_EQ(rig.find(), "4,1,separator0");
}

TEST(CompiledMarkupSet, survivesEveryRefusedAllocation) {
    EXPECT_GT(sweepFailingAllocations(compileAndScan), 50);
}

TEST(CompiledMarkupSet, isFoundAndScannedWithoutAllocating) {
    TestHeap heap;
    const DFDLHeapImpl callbacks = heap.callbacks();
    ScanRig rig("UTF-8", &callbacks);
    rig.within({.separator = u","});
    const int32_t id = rig.within({.separator = u";", .escape = u"?"});
    rig.rig.document("a?\xE2\x82\xAC,b");
    const auto pass = [&rig, id] {
        rig.use(id);
        rig.scan();
        rig.use(0, false);
        rig.scan(true, true);
        DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(rig.scanner, rig.rig.item.elementRow->name,
                                                             &rig.rig.item, true, "initiator");
        rig.scan(false, true);
    };
    pass();
    pass();
    const long before = heap.allocations;
    pass();
    EXPECT_EQ(heap.allocations, before);
}

}  // namespace
