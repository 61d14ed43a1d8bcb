// Lists in brackets within lists: data that nest as deeply as they like, by a grammar that refers to itself.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/examples.h"
#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Enums = PIF::MPIFEnums;

// list: "(" then an optional text, unless each list must hold one, then lists, then ")". The inner list is
// the outer one again.
Grammar lists(int32_t least, int32_t most, const std::string& name = "list") {
    GrammarBuilder builder;
    auto list = builder.complexElement(name).initiator("(").terminator(")");
    if (least == 0)
        list.text("text").delimited().initiator("'").terminator("'").occurs(0, 1).occursImplicit();
    auto inner = list.complexElement(name).initiator("(").terminator(")");
    inner.occurs(least, most).occursImplicit().text("gone").delimited();
    PIF::MPIF& pif = builder.pif();
    PIF::MGroupMemberTable* members = pif.mutable_group_member_table();
    const int32_t outer = pif.element_table().row(0).group_id();
    for (PIF::MGroupMemberTableRow& row : *members->mutable_row()) {
        const int32_t element = row.child_element_id();
        if (element == -1 || pif.element_table().row(element).name() != name) continue;
        row.set_child_group_id(outer);
        pif.mutable_element_table()->mutable_row(element)->set_group_id(outer);
    }
    // In an inner list the same is in scope as in the outer: its context is the outer's.
    for (PIF::MMarkupSetTableRow& row : *pif.mutable_markupset_table()->mutable_row()) {
        if (row.iparentmarkupsetid() != -1 && row.iterminatingmarkupsetid() == 0) row.set_imarkupsetid(0);
    }
    return {builder.load(), delete_DFDLGrammar};
}

int64_t startsIn(const std::string& outline) { return std::count(outline.begin(), outline.end(), '\x1E'); }

TEST(NestedLists, AreAsDeepAsTheData) {
    const Grammar grammar = lists(0, -1);
    ASSERT_NE(grammar, nullptr);
    EXPECT_EQ(outlineOf(grammar.get(), u"list", "('a'()('b'(('c')))())"),
              "list\x1Etext=a\x1Elist\x1Elist\x1Etext=b\x1Elist\x1Elist\x1Etext=c\x1Elist\x1E");
    for (const size_t depth : {1U, 2U, 50U, 150U}) {
        const std::string data = std::string(depth, '(') + "'x'" + std::string(depth, ')');
        const ParserRun run = runEverywhere(grammar.get(), u"list", data);
        EXPECT_TRUE(run.parsed) << depth << '\n' << run.diagnostics.size();
        EXPECT_EQ(startsIn(outlineOf(grammar.get(), u"list", data)), static_cast<int64_t>(depth) + 1);
    }
}

TEST(NestedLists, EndInAnErrorWhereTheyAreNotClosed) {
    const Grammar grammar = lists(0, -1);
    ASSERT_NE(grammar, nullptr);
    for (const size_t depth : {50U, 1000U}) {
        const ParserRun run = runParser(grammar.get(), u"list", std::string(depth, '('));
        EXPECT_FALSE(run.parsed) << depth;
        EXPECT_EQ(run.codes(), std::vector<std::string>{"CTDP3042E"}) << depth << '\n' << run;
    }
}

// Each level fails for want of its end and is undone. The path of the innermost alone takes more memory than
// the run may ask for at once.
TEST(NestedLists, MakeNoPathsForFailuresThatAreUndone) {
    const std::u16string name(3000, u'l');
    const Grammar grammar = lists(0, -1, std::string(name.size(), 'l'));
    ASSERT_NE(grammar, nullptr);
    const ParserRun run = runParser(grammar.get(), name, std::string(1000, '('));
    EXPECT_EQ(run.codes(), std::vector<std::string>{"CTDP3042E"}) << run;
    EXPECT_NE(run.diagnostics.at(0).find("/" + std::string(name.size(), 'l') + "[1]"), std::string::npos);
}

TEST(NestedLists, EndInAnErrorWhereTheyNestForEver) {
    const Grammar grammar = lists(1, 1);
    ASSERT_NE(grammar, nullptr);
    const ParserRun run = runParser(grammar.get(), u"list", std::string(1000000, '('));
    EXPECT_FALSE(run.parsed);
    EXPECT_EQ(run.codes(), std::vector<std::string>{"CTDP3148E"});
}

}  // namespace
