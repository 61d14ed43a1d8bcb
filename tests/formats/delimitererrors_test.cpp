// What is said of data whose delimiters are wrong: the code, where the fault is, and what was expected there.
#include <gtest/gtest.h>

#include "support/examples.h"
#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Enums = PIF::MPIFEnums;

struct Case {
    const char* name;
    void (*describe)(GrammarHandle root);
    std::string bytes;
    std::string diagnostic;
};

void twoFields(GrammarHandle root) {
    root.content().separator(",");
    root.text("a").delimited();
    root.text("b").delimited();
}

void prefixedFields(GrammarHandle root) {
    root.content().separator(",", Enums::PREFIX);
    root.text("a").delimited();
    root.text("b").delimited();
}

void postfixedFields(GrammarHandle root) {
    root.content().separator(",", Enums::POSTFIX);
    root.text("a").delimited();
    root.text("b").delimited();
}

void suppressedAtEnd(GrammarHandle root) {
    root.content().separator(",", Enums::INFIX, Enums::SUPPRESS_AT_END);
    root.text("a").delimited();
    root.text("b").delimited();
    root.text("c").delimited().occurs(0, 1).occursImplicit();
}

void lines(GrammarHandle root) {
    auto line = root.complexElement("line").occurs(2, 2).occursFixed().terminator("%LF;");
    line.content().separator(",");
    line.text("a").delimited();
    line.text("b").delimited();
}

void bracketed(GrammarHandle root) { root.text("a").delimited().initiator("[ (").terminator("] )"); }

void bracketedComplex(GrammarHandle root) {
    root.complexElement("c").initiator("[").terminator("]").text("a").delimited();
}

void bracketedGroup(GrammarHandle root) {
    root.sequence().initiator("[").terminator("]").text("a").delimited();
}

void quoted(GrammarHandle root) {
    root.content().separator(",");
    root.text("a").delimited();
    root.text("b").delimited().escapeBlock("<<", ">>", "\\");
}

void emptyForbidden(GrammarHandle root) {
    root.content().separator(",");
    root.text("a").delimited();
    root.text("b").delimited().initiator("b").emptyValueDelimiterPolicy(Enums::DP_NONE);
}

const Case CASES[] = {
    {"no separator", twoFields, "ab",
     "CTDP3058E: /root[1]: a separator was expected at byte 2 and not found; it is one of: ,"},
    {"no separator before the end of a line", lines, "a,b\nc\n",
     "CTDP3058E: /root[1]/line[2]: a separator was expected at byte 5 and not found; it is one of: ,"},
    {"no separator before a required member", suppressedAtEnd, "ab",
     "CTDP3058E: /root[1]: a separator was expected at byte 2 and not found; it is one of: ,"},
    {"no separator in front", prefixedFields, "a,b",
     "CTDP3058E: /root[1]: a separator was expected at byte 0 and not found; it is one of: ,"},
    {"no separator behind", postfixedFields, "a,b",
     "CTDP3058E: /root[1]: a separator was expected at byte 3 and not found; it is one of: ,"},
    {"a separator too many", twoFields, "a,b,",
     "CTDP3062E: /root[1]: the separator ',' at byte 3 comes behind the last member of its group, where none "
     "is allowed."},
    {"a separator too many in a line", lines, "a,b\nc,d,\n",
     "CTDP3062E: /root[1]/line[2]: the separator ',' at byte 7 comes behind the last member of its group, "
     "where none is allowed."},
    {"a separator too many behind an optional member", suppressedAtEnd, "a,b,c,",
     "CTDP3062E: /root[1]: the separator ',' at byte 5 comes behind the last member of its group, where none "
     "is allowed."},
    {"no terminator", bracketed, "[abc",
     "CTDP3042E: Element /root[1]/a[1]: its terminator was expected at byte 4 and not found; it is one of: ] "
     ")"},
    {"no terminator of a complex element", bracketedComplex, "[abc",
     "CTDP3042E: Element /root[1]/c[1]: its terminator was expected at byte 4 and not found; it is one of: "
     "]"},
    {"no terminator of a group", bracketedGroup, "[abc",
     "CTDP3061E: Group in /root[1]: its terminator was expected at byte 4 and not found; it is one of: ]"},
    {"no line end", lines, "a,b\nc,d",
     "CTDP3042E: Element /root[1]/line[2]: its terminator was expected at byte 7 and not found; it is one "
     "of: %LF;"},
    {"no initiator", bracketed, "abc]",
     "CTDP3041E: Element /root[1]/a[1]: its initiator was expected at byte 0 and not found; it is one of: [ "
     "("},
    {"no initiator of a complex element", bracketedComplex, "abc]",
     "CTDP3041E: Element /root[1]/c[1]: its initiator was expected at byte 0 and not found; it is one of: ["},
    {"no initiator of a group", bracketedGroup, "abc]",
     "CTDP3060E: Group in /root[1]: its initiator was expected at byte 0 and not found; it is one of: ["},
    {"nothing in quotes that end", quoted, "a,<<b",
     "CTDP3146E: b: an escape block of the scheme escapes is opened but not ended before the data or its "
     "length ends."},
    {"an end of quotes that is escaped", quoted, "a,<<b\\>>",
     "CTDP3146E: b: an escape block of the scheme escapes is opened but not ended before the data or its "
     "length ends."},
    {"quotes that end behind the data", quoted, "a,<<b>",
     "CTDP3146E: b: an escape block of the scheme escapes is opened but not ended before the data or its "
     "length ends."},
    {"an initiator and nothing behind it", emptyForbidden, "a,b",
     "CTDP3138E: Element b: its initiator was found, but no content follows at byte 3."},
    {"more than the grammar says", bracketed, "[a]b",
     "CTDP3002E: The root element ended at byte 3, where the end of the data was expected; the next byte is "
     "X'62'."},
};

TEST(DelimiterErrors, TellTheFaultAndItsPlace) {
    for (const Case& c : CASES) {
        SCOPED_TRACE(c.name);
        GrammarBuilder builder;
        c.describe(builder.complexElement("root"));
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(grammar, nullptr);
        const ParserRun run = runEverywhere(grammar.get(), u"root", c.bytes);
        EXPECT_FALSE(run.parsed) << run;
        EXPECT_EQ(run.diagnostics, std::vector<std::string>{c.diagnostic}) << run;
    }
}

// The real formats, cut at every byte: one diagnostic, or, where the format lets its end be missing, a
// shorter message.
TEST(DelimiterErrors, ARealMessageMayEndAnywhere) {
    const Grammar grammar = exampleGrammar("order");
    ASSERT_NE(grammar, nullptr);
    const std::string whole = exampleFile("order.edi");
    const size_t end = whole.rfind('\'');
    for (size_t length = 0; length <= end; ++length) {
        const ParserRun run = runEverywhere(grammar.get(), u"order", whole.substr(0, length));
        EXPECT_FALSE(run.parsed) << length << '\n' << run;
        EXPECT_EQ(run.diagnostics.size(), 1U) << length << '\n' << run;
    }
}

}  // namespace
