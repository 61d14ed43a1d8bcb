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
    std::string code;
    std::vector<std::string> words;  // of the text
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

const std::vector<Case>& cases() {
    static const std::vector<Case> all = {
        {"no separator", twoFields, "ab", "CTDP3058E", {"byte 2", ","}},
        {"no separator before the end of a line", lines, "a,b\nc\n", "CTDP3058E", {"byte 5", ","}},
        {"no separator before a required member", suppressedAtEnd, "ab", "CTDP3058E", {"byte 2", ","}},
        {"no separator in front", prefixedFields, "a,b", "CTDP3058E", {"byte 0", ","}},
        {"no separator behind", postfixedFields, "a,b", "CTDP3058E", {"byte 3", ","}},
        {"a separator too many", twoFields, "a,b,", "CTDP3062E", {"byte 3", ",", "b"}},
        {"a separator too many in a line", lines, "a,b\nc,d,\n", "CTDP3062E", {"byte 7", ",", "b"}},
        {"a separator too many behind an optional member",
         suppressedAtEnd,
         "a,b,c,",
         "CTDP3062E",
         {"byte 5"}},
        {"no terminator", bracketed, "[abc", "CTDP3042E", {"byte 4", "] )", "/a"}},
        {"no terminator of a complex element", bracketedComplex, "[abc", "CTDP3042E", {"byte 4", "]", "/c"}},
        {"no terminator of a group", bracketedGroup, "[abc", "CTDP3061E", {"byte 4", "]"}},
        {"no line end", lines, "a,b\nc,d", "CTDP3042E", {"byte 7", "%LF;", "/line"}},
        {"no initiator", bracketed, "abc]", "CTDP3041E", {"byte 0", "[ (", "/a"}},
        {"no initiator of a complex element", bracketedComplex, "abc]", "CTDP3041E", {"byte 0", "[", "/c"}},
        {"no initiator of a group", bracketedGroup, "abc]", "CTDP3060E", {"byte 0", "["}},
        {"nothing in quotes that end", quoted, "a,<<b", "CTDP3146E", {"b"}},
        {"an end of quotes that is escaped", quoted, "a,<<b\\>>", "CTDP3146E", {"b"}},
        {"quotes that end behind the data", quoted, "a,<<b>", "CTDP3146E", {"b"}},
        {"an initiator and nothing behind it", emptyForbidden, "a,b", "CTDP3138E", {"byte 3"}},
        {"more than the grammar says", bracketed, "[a]b", "CTDP3002E", {"3"}},
    };
    return all;
}

TEST(DelimiterErrors, TellTheFaultAndItsPlace) {
    for (const Case& c : cases()) {
        SCOPED_TRACE(c.name);
        GrammarBuilder builder;
        c.describe(builder.complexElement("root"));
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(grammar, nullptr);
        const ParserRun run = runEverywhere(grammar.get(), u"root", c.bytes);
        EXPECT_FALSE(run.parsed) << run;
        ASSERT_EQ(run.codes(), std::vector<std::string>{c.code}) << run;
        for (const std::string& word : c.words) {
            EXPECT_NE(run.diagnostics[0].find(word, c.code.size()), std::string::npos) << word << '\n' << run;
        }
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
