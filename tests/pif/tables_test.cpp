#include <gtest/gtest.h>

#include <cmath>

#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/xsvalue.h"
#include "pif/pifrows.h"

namespace {

using Enums = PIF::MPIFEnums;

std::string narrow(const DFDLUString* text) {
    std::string result;
    for (const UChar unit : DFDLUString_view(text)) result += static_cast<char>(unit);
    return result;
}

TEST(TextNumberTable, PatternsLoseTheirScalingDigits) {
    const struct {
        const char* pattern;
        const char* clean;
        int32_t position;
        bool rounds;
    } cases[] = {
        {"PP###", "###", 5, false},   {"###PP", "###", -2, false}, {"-PP0#", "-0#", 4, false},
        {"#0PP+", "#0+", -2, false},  {"", "", 0, false},          {"+", "+", 0, false},
        {"#,##5", "#,##5", 0, true},  {"'5'0", "'5'0", 0, false},  {"##P;-##PPP", "##;-##", -1, false},
        {"PP#;PP#", "#;#", 3, false}, {"0;5", "0;5", 0, false},    {"P", "", 1, false},
        {"#';'P", "#';'", -1, false}};
    PIFRows rows;
    for (const auto& test : cases) {
        rows.message.mutable_text_number_table()->add_row()->set_inumberpattern(test.pattern);
    }
    LoadedGrammar grammar(rows);
    for (int32_t index = 0; const auto& test : cases) {
        const TextNumberTableRow* row = TextNumberTable_findRow(grammar.pif->textNumberTable, ++index);
        EXPECT_EQ(narrow(row->cleanPattern), test.clean) << test.pattern;
        EXPECT_EQ(row->decimalScalingPosition, test.position) << test.pattern;
        EXPECT_EQ(row->patternHasRoundingDigit, test.rounds) << test.pattern;
    }
}

TEST(TextMarkupTable, RowsThatEndAlikeShareTheirNumber) {
    PIFRows rows;
    for (const int32_t terminator : {3, 1, 3, -1, 1}) rows.markup()->set_iterminatorindex(terminator);
    rows.message.mutable_text_markup_table()->mutable_row(2)->set_iinitiatorindex(5);
    LoadedGrammar grammar(rows);
    for (int32_t index = 0; const int32_t expected : {0, 1, 0, 2, 1}) {
        EXPECT_EQ(Table_row(grammar.pif->textMarkupTable, index)->terminatingMarkupId, expected) << index;
        ++index;
    }
}

TEST(MarkupSetTable, TheLastRowOfAPairHolds) {
    PIFRows rows;
    const int32_t sets[][3] = {{1, -1, 0}, {2, -1, 0}, {3, 0, -1}, {4, -1, -1}};
    for (const auto& set : sets) {
        auto* row = rows.message.mutable_markupset_table()->add_row();
        row->set_imarkupsetid(set[0]);
        row->set_iparentmarkupsetid(set[1]);
        row->set_iterminatingmarkupsetid(set[2]);
        row->set_itextmarkuptableid(-1);
    }
    LoadedGrammar grammar(rows);
    const MarkupSetTable* table = grammar.pif->markupSetTable;
    EXPECT_EQ(MarkupSetTable_getMarkupSetId(table, -1, 0), 2);
    EXPECT_EQ(MarkupSetTable_getMarkupSetId(table, 0, -1), 3);
    EXPECT_EQ(MarkupSetTable_getMarkupSetId(table, -1, -1), -1);
    EXPECT_EQ(MarkupSetTable_getMarkupSetId(table, 7, 7), -1);
}

TEST(ElementTable, NamesAreOnePerNamespaceAndGlobalOnesComeFirst) {
    PIFRows rows;
    rows.element("a", "x");
    rows.element("a", "y");
    const int32_t global = rows.element("a", "y")->element_id();
    rows.member(-1, 1)->set_child_element_id(global);
    LoadedGrammar grammar(rows);
    DFDLHeapAdapter* heap = grammar.pif->heap;
    const ElementTable* table = grammar.pif->elementTable;
    DFDLUString* name = new_DFDLUStringUseUChars(heap, u"a", 1);
    DFDLUString* x = new_DFDLUStringUseUChars(heap, u"x", 1);
    DFDLUString* y = new_DFDLUStringUseUChars(heap, u"y", 1);
    EXPECT_EQ(ElementTable_findElementWithNamespace(table, name, x), Table_row(table, 0));
    EXPECT_EQ(ElementTable_findElementWithNamespace(table, name, y), Table_row(table, 2));
    EXPECT_EQ(ElementTable_findGlobalElementWithNamespace(table, name, x), nullptr);
    EXPECT_EQ(GroupMemberTable_findElement(grammar.pif->groupMemberTable, name, y), grammar.member(0));
    EXPECT_EQ(Table_row(table, 0)->nameId, Table_row(table, 2)->nameId);
    EXPECT_NE(Table_row(table, 0)->namespaceId, Table_row(table, 1)->namespaceId);
    for (DFDLUString* text : {name, x, y}) delete_DFDLUString(text);
}

TEST(ValuesTable, TextsBecomeValuesOfTheirKind) {
    PIFRows rows;
    for (const auto& [kind, text] :
         std::initializer_list<std::pair<const char*, const char*>>{{"HEXBINARY", "0aFzB"},
                                                                    {"BYTE", "+12"},
                                                                    {"UNSIGNEDINT", "0x10"},
                                                                    {"UNSIGNEDINT", "010"},
                                                                    {"BOOLEAN", "7"},
                                                                    {"BOOLEAN", "no"},
                                                                    {"FLOAT", "0.1"},
                                                                    {"DOUBLE", "-Infinity"},
                                                                    {"FLOAT", "Infinity"},
                                                                    {"INTEGER", "x"},
                                                                    {"STRING", "s"},
                                                                    {"ELSE", "s"},
                                                                    {"DOUBLE", "1.5x"}}) {
        rows.value(kind, text);
    }
    LoadedGrammar grammar(rows);
    const auto valueAt = [&](int32_t row) { return ValuesTable_getDFDLValue(grammar.pif->valuesTable, row); };
    const ValuesTableRow* hex = Table_row(grammar.pif->valuesTable, 0);
    ASSERT_EQ(hex->hexLength, 2);
    EXPECT_EQ(hex->hexBytes[0], 0x0A);
    EXPECT_EQ(hex->hexBytes[1], 0xF0);
    EXPECT_EQ(valueAt(1)->u.signedQ, 12);
    EXPECT_EQ(valueAt(2)->u.unsignedQ, 16U);
    EXPECT_EQ(valueAt(3)->u.unsignedQ, 8U);
    EXPECT_EQ(valueAt(4)->u.boolean, 1);
    EXPECT_EQ(valueAt(5)->u.boolean, 0);
    EXPECT_EQ(valueAt(6)->u.doubleValue, static_cast<double>(0.1F));
    EXPECT_EQ(valueAt(7)->u.doubleValue, -HUGE_VAL);
    EXPECT_EQ(valueAt(8), nullptr);
    EXPECT_EQ(valueAt(9), nullptr);
    EXPECT_EQ(narrow(valueAt(10)->u.string), "s");
    EXPECT_EQ(valueAt(11), nullptr);
    EXPECT_EQ(valueAt(12), nullptr);
    EXPECT_EQ(valueAt(13), nullptr) << "no such row";
}

// A choice with one branch for each initiator list.
struct ChoiceCase {
    const char* name;
    std::initializer_list<const char*> initiators;
    bool ignoreCase;
    int32_t resolution, tagLength;
};

TEST(GroupTable, ChoicesAreResolvedByTagsOfOneLength) {
    const ChoiceCase cases[] = {{"one length", {"AA BB", "CC"}, false, CHOICE_BY_TAG, 2},
                                {"two lengths", {"AA", "B"}, false, CHOICE_BY_TRIAL, -1},
                                {"one tag twice", {"AA", "AA"}, false, CHOICE_BY_TRIAL, -1},
                                {"one tag in two cases", {"AA", "aa"}, false, CHOICE_BY_TAG, 2},
                                {"cases that do not count", {"AA", "aa"}, true, CHOICE_BY_TRIAL, -1},
                                {"a class of characters", {"A%NL;", "BB"}, false, CHOICE_BY_TRIAL, -1},
                                {"no branches", {}, false, CHOICE_BY_TAG, -1}};
    for (const ChoiceCase& test : cases) {
        PIFRows rows;
        const int32_t choice = rows.group(Enums::CHOICE);
        for (int32_t index = 0; const char* initiator : test.initiators) {
            auto* branch = rows.member(choice, ++index);
            branch->set_child_element_id(rows.element("e")->element_id());
            branch->set_itextmarkupid(index);
            auto* markup = rows.markup();
            markup->set_iinitiatorindex(rows.literal(initiator));
            markup->set_iignorecase(test.ignoreCase);
        }
        LoadedGrammar grammar(rows);
        const GroupTableRow* group = Table_row(grammar.pif->groupTable, 0);
        EXPECT_EQ(group->choiceResolution, test.resolution) << test.name;
        EXPECT_EQ(group->tagLength, test.tagLength) << test.name;
        EXPECT_EQ(group->memberCount, static_cast<int32_t>(test.initiators.size())) << test.name;
    }
}

TEST(GroupTable, ADispatchKeyNeedsAKeyOfEveryBranch) {
    for (const bool complete : {true, false}) {
        PIFRows rows;
        const int32_t choice = rows.group(Enums::CHOICE);
        auto* owner = rows.member(-1, 1);
        owner->set_child_group_id(choice);
        owner->set_ichoicedispatchkeyindex(0);
        rows.member(choice, 1)->set_ichoicebranchkeyindex(rows.literal("a"));
        auto* second = rows.member(choice, 2);
        if (complete) second->set_ichoicebranchkeyindex(rows.literal("a"));
        LoadedGrammar grammar(rows);
        const GroupTableRow* group = Table_row(grammar.pif->groupTable, 0);
        EXPECT_EQ(group->useDispatchKey, complete);
        if (!complete) continue;
        DFDLUString* key = new_DFDLUStringUseUChars(grammar.pif->heap, u"a", 1);
        EXPECT_EQ(DFDLStringHashMap_get(group->dispatchMap, key), grammar.member(1))
            << "the first branch wins";
        delete_DFDLUString(key);
    }
}

TEST(VariableActionsTable, OldFilesHaveRowsWhereNewOnesHaveIds) {
    for (const bool old : {true, false}) {
        PIFRows rows;
        for (const int32_t id : {10, 0}) rows.message.mutable_variables_table()->add_row()->set_iid(id);
        rows.member(-1, 1);
        for (int index = 0; index < 2; ++index) {
            auto* action = rows.message.mutable_variable_actions_table()->add_row();
            action->set_ivariableid(0);
            action->set_igroupmembertableid(0);
        }
        if (!old) rows.message.mutable_pif_globals_table()->add_row()->set_pifversion(40);
        LoadedGrammar grammar(rows);
        const VariableActionsTableRow* first = grammar.member(0)->firstVariableAction;
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(first->variableRowIndex, old ? 0 : 1);
        EXPECT_EQ(first->nextAction, Table_row(grammar.pif->variableActionsTable, 1));
        EXPECT_EQ(grammar.member(0)->firstVariableActionIndex, 0);
    }
}

}  // namespace
