// Delimiters around elements and groups: what they end, what their absence means, and which error says so.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Values = std::vector<std::string>;
using Describe = std::function<void(GrammarHandle)>;
using Enums = PIF::MPIFEnums;

Grammar grammarOf(const Describe& describe) {
    GrammarBuilder builder;
    describe(builder.complexElement("r"));
    return {builder.load(), delete_DFDLGrammar};
}

GrammarHandle field(GrammarHandle group, const char* name) { return group.text(name).delimited(); }
GrammarHandle optional(GrammarHandle group, const char* name) {
    return field(group, name).occurs(0, 1).occursImplicit();
}
GrammarHandle separated(GrammarHandle parent, Enums::MSeparatorPositionEnum position,
                        Enums::MSeparatorPolicyEnum policy) {
    return parent.sequence().separator(",", position, policy);
}
GrammarHandle infix(GrammarHandle parent, Enums::MSeparatorPolicyEnum policy = Enums::REQUIRE) {
    return separated(parent, Enums::INFIX, policy);
}

struct Case {
    const char* fault;
    Describe describe;
    std::string data;
    Values values;
    const char* code = nullptr;  // null: parsed
    const char* inText = "";
};

void threeFields(GrammarHandle group) {
    for (const char* name : {"a", "b", "c"}) field(group, name);
}
void threeOptional(GrammarHandle group) {
    for (const char* name : {"a", "b", "c"}) optional(group, name);
}

const Case SEPARATORS[] = {
    {"infix separators are lost",
     [](GrammarHandle r) { threeFields(infix(r)); },
     "x,yy,z",
     {"a=x", "b=yy", "c=z"}},
    {"prefix separators are lost",
     [](GrammarHandle r) { threeFields(separated(r, Enums::PREFIX, Enums::REQUIRE)); },
     ",x,yy,z",
     {"a=x", "b=yy", "c=z"}},
    {"postfix separators are lost",
     [](GrammarHandle r) { threeFields(separated(r, Enums::POSTFIX, Enums::REQUIRE)); },
     "x,yy,z,",
     {"a=x", "b=yy", "c=z"}},
    {"a required separator may be missing",
     [](GrammarHandle r) { threeFields(infix(r)); },
     "x,y",
     {"a=x", "b=y"},
     "CTDP3058E",
     "3"},
    {"a separator behind the last member passes",
     [](GrammarHandle r) { threeFields(infix(r)); },
     "x,y,z,",
     {"a=x", "b=y", "c=z"},
     "CTDP3062E",
     "5"},
    {"an empty required field passes",
     [](GrammarHandle r) { threeFields(infix(r)); },
     "x,,z",
     {"a=x"},
     "CTDP3059E"},
    {"an empty optional field is an error or a value",
     [](GrammarHandle r) { threeOptional(infix(r)); },
     "x,,z",
     {"a=x", "c=z"}},
    {"optional fields at the end need their separators",
     [](GrammarHandle r) { threeOptional(infix(r, Enums::SUPPRESS_AT_END)); },
     "x",
     {"a=x"}},
    {"a suppressed separator before a required member passes",
     [](GrammarHandle r) {
         auto group = infix(r.sequence().terminator(";"), Enums::SUPPRESS_AT_END);
         optional(group, "a");
         field(group, "b");
     },
     "x;",
     {"a=x"},
     "CTDP3058E",
     "1"},
    {"a trailing optional member in an enclosed group needs its separator",
     [](GrammarHandle r) {
         auto outer = r.sequence().separator(";");
         threeOptional(infix(outer, Enums::SUPPRESS_AT_END));
         field(outer, "d");
     },
     "x,y;z",
     {"a=x", "b=y", "d=z"}},
    {"a required policy lets a group end early",
     [](GrammarHandle r) {
         auto outer = r.sequence().separator(";");
         threeOptional(infix(outer));
         field(outer, "d");
     },
     "x,y;z",
     {"a=x", "b=y"},
     "CTDP3058E",
     "3"},
    {"an inner separator with the text of an outer one belongs outside",
     [](GrammarHandle r) {
         auto outer = infix(r);
         threeOptional(infix(outer, Enums::SUPPRESS_AT_END));
         field(outer, "d");
     },
     "x,y,z,w",
     {"a=x", "b=y", "c=z", "d=w"}},
    {"the longer of two delimiters is not taken",
     [](GrammarHandle r) {
         auto outer = r.sequence().separator(",,");
         auto inner = infix(outer);
         field(inner, "a");
         field(inner, "b");
         field(outer, "c");
     },
     "x,y,,z",
     {"a=x", "b=y", "c=z"}},
    {"an array does not go on to its end",
     [](GrammarHandle r) { field(infix(r, Enums::SUPPRESS_AT_END), "a").occurs(0, -1).occursImplicit(); },
     "x,y,z",
     {"a=x", "a=y", "a=z"}},
    {"empty members end an array in an infix group",
     [](GrammarHandle r) { field(infix(r, Enums::SUPPRESS_AT_END), "a").occurs(0, -1).occursParsed(); },
     "x,,,z",
     {"a=x", "a=z"}},
    {"a stray delimiter of an outer group that was seen is consumed elsewhere",
     [](GrammarHandle r) {
         auto outer = infix(r);
         auto inner = outer.sequence();
         field(inner, "a");
         inner.text("b").bytes(2);
         field(outer, "c");
     },
     "x,yz",
     {"a=x", "b=,y"},
     "CTDP3058E",
     "3"},
};

const Case TERMINATORS[] = {
    {"terminated fields",
     [](GrammarHandle r) {
         field(r, "a").terminator(";");
         field(r, "b").terminator("%NL;");
     },
     "x;yy\r\n",
     {"a=x", "b=yy"}},
    {"a missing terminator passes",
     [](GrammarHandle r) { field(r, "a").terminator(";"); },
     "xy",
     {},
     "CTDP3042E",
     "2"},
    {"the final terminator cannot be left off",
     [](GrammarHandle r) {
         field(r.complexElement("l")
                   .terminator("%NL;")
                   .finalTerminatorCanBeMissing()
                   .occurs(0, -1)
                   .occursImplicit(),
               "a");
     },
     "x\ny",
     {"a=x", "a=y"}},
    {"a fixed field does not look for its terminator",
     [](GrammarHandle r) { r.text("a").bytes(2).terminator(";"); },
     "xy;",
     {"a=xy"}},
    {"the wrong terminator after a fixed field passes",
     [](GrammarHandle r) { r.text("a").bytes(2).terminator(";"); },
     "xyz",
     {},
     "CTDP3042E",
     "2"},
    {"a group's terminator is lost",
     [](GrammarHandle r) { threeFields(infix(r).terminator("]")); },
     "x,y,z]",
     {"a=x", "b=y", "c=z"}},
    {"a group without its terminator passes",
     [](GrammarHandle r) { threeFields(infix(r).terminator("]")); },
     "x,y,z",
     {"a=x", "b=y", "c=z"},
     "CTDP3061E",
     "5"},
    {"case matters where it must not",
     [](GrammarHandle r) { field(r, "a").terminator("end").ignoreCase(); },
     "xEnD",
     {"a=x"}},
};

const Case INITIATORS[] = {
    {"initiators of elements and groups are lost",
     [](GrammarHandle r) {
         auto group = r.sequence().initiator("{").terminator("}");
         field(group, "a").initiator("<").terminator(">");
     },
     "{<x>}",
     {"a=x"}},
    {"a missing initiator passes",
     [](GrammarHandle r) { field(r, "a").initiator("<").terminator(">"); },
     "x>",
     {},
     "CTDP3041E",
     "0"},
    {"a group without its initiator passes",
     [](GrammarHandle r) { field(r.sequence().initiator("{"), "a"); },
     "x",
     {},
     "CTDP3060E",
     "0"},
    {"an absent optional member is an error",
     [](GrammarHandle r) {
         field(r, "a").initiator("A:").terminator(";").occurs(0, 1).occursImplicit();
         field(r, "b").initiator("B:").terminator(";");
     },
     "B:x;",
     {"b=x"}},
    {"a decided member can be undone",
     [](GrammarHandle r) {
         auto group = r.sequence().initiatedContent();
         group.text("a").bytes(3).initiator("A:").encoding("US-ASCII").occurs(0, 1).occursImplicit();
         field(group, "b");
     },
     "A:\xFFzz",
     {},
     "CTDP3011E"},
    {"an initiator alone is an empty element under every policy",
     [](GrammarHandle r) {
         field(r, "a").initiator("A:").terminator(";").emptyValueDelimiterPolicy(Enums::DP_NONE);
     },
     "A:;",
     {},
     "CTDP3138E"},
    {"initiator and terminator are not wanted where empty has both",
     [](GrammarHandle r) {
         field(r, "a")
             .initiator("A:")
             .terminator(";")
             .emptyValueDelimiterPolicy(Enums::DP_BOTH)
             .occurs(0, 1)
             .occursImplicit();
         field(r, "b");
     },
     "A:;x",
     {"b=x"}},
};

const Case NILS[] = {
    {"a nil literal is a value",
     [](GrammarHandle r) {
         auto group = infix(r);
         for (const char* name : {"a", "b", "c"}) field(group, name).nilLiteral("NULL -");
     },
     "NULL,NULLS,-",
     {"a=nil", "b=NULLS", "c=nil"}},
    {"padding hides a nil literal",
     [](GrammarHandle r) {
         auto group = infix(r);
         field(group, "a").trimBoth("%SP;").nilLiteral("-");
         field(group, "b").trimRight("%SP;").nilLiteral("-");
         field(group, "c").trimLeft("0").nilLiteral("%ES;");
     },
     "  - ,ä-,000",
     {"a=nil", "b=ä-", "c=nil"}},
    {"nothing at all is not nil where the empty string is",
     [](GrammarHandle r) {
         auto group = infix(r);
         field(group, "a").nilLiteral("%ES;");
         field(group, "b").nilLiteral("%ES; x");
     },
     ",x",
     {"a=nil", "b=nil"}},
    {"a nil character is not taken for all of the field",
     [](GrammarHandle r) {
         auto group = infix(r);
         for (const char* name : {"a", "b"}) field(group, name).nilCharacter("*");
         r.text("c").characters(2).nilCharacter("*");
         r.text("d").bytes(2).encoding("ISO-8859-1").nilCharacter("%#r2A;");
     },
     "***,*x",
     {"a=nil", "b=*x"},
     "CTDP3000E"},
    {"a nil byte is not compared with the bytes",
     [](GrammarHandle r) {
         r.text("c").characters(2).nilCharacter("*");
         r.text("d").bytes(2).encoding("ISO-8859-1").nilCharacter("%#r2A;");
         r.text("e").bytes(2).encoding("ISO-8859-1").nilCharacter("%#r2A;");
     },
     "*****a",
     {"c=nil", "d=nil", "e=*a"}},
    {"nil bytes must be text",
     [](GrammarHandle r) {
         r.text("a").bytes(2).encoding("US-ASCII").nilCharacter("%#rFF;");
         r.text("b").bytes(1);
     },
     "\xFF\xFFx",
     {"a=nil", "b=x"}},
    {"a logical nil is a value",
     [](GrammarHandle r) {
         auto group = infix(r);
         for (const char* name : {"a", "b"}) field(group, name).nilLogical({"none"});
     },
     "none,nones",
     {"a=nil", "b=nones"}},
    {"a terminator after nil passes where it is not wanted",
     [](GrammarHandle r) { field(r, "a").terminator(";").nilLiteral("-", Enums::DP_NONE); },
     "-;",
     {},
     "CTDP3136E"},
    {"no terminator after nil passes where it is wanted",
     [](GrammarHandle r) { r.text("a").bytes(1).terminator(";").nilLiteral("-", Enums::DP_BOTH); },
     "-",
     {},
     "CTDP3137E"},
    {"a nil complex element is entered",
     [](GrammarHandle r) {
         auto group = infix(r);
         auto complex = group.complexElement("g").nilLiteral("%ES;");
         complex.delimited();
         field(complex, "a");
         field(group, "b");
     },
     ",x",
     {"g=nil", "b=x"}},
};

const Case UNORDERED[] = {
    {"the order of the data is kept",
     [](GrammarHandle r) {
         auto group = r.unordered();
         for (const char* name : {"a", "b", "c"})
             field(group, name)
                 .initiator(std::string(name) + ":")
                 .terminator(";")
                 .occurs(0, -1)
                 .occursImplicit();
     },
     "c:1;a:2;c:3;b:4;a:5;",
     {"a=2", "a=5", "b=4", "c=1", "c=3"}},
    {"a required member may be missing",
     [](GrammarHandle r) {
         auto group = r.unordered();
         for (const char* name : {"a", "b"})
             field(group, name).initiator(std::string(name) + ":").terminator(";");
     },
     "b:1;",
     {},
     "CTDP3059E",
     "a"},
    {"a single member may come twice",
     [](GrammarHandle r) {
         auto group = r.unordered();
         for (const char* name : {"a", "b"})
             field(group, name).initiator(std::string(name) + ":").terminator(";");
     },
     "b:1;a:2;b:3;",
     {},
     "CTDP3084E",
     "b"},
    {"separators between unordered members are lost",
     [](GrammarHandle r) {
         auto group = r.unordered().separator(",", Enums::INFIX, Enums::SUPPRESS);
         for (const char* name : {"a", "b"})
             field(group, name).initiator(std::string(name) + ":").occurs(0, 2).occursImplicit();
     },
     "b:1,a:2,b:3",
     {"a=2", "b=1", "b=3"}},
    {"a group in a group mixes its members up",
     [](GrammarHandle r) {
         auto outer = r.unordered();
         auto g = outer.complexElement("g").initiator("(").terminator(")").occurs(0, -1).occursImplicit();
         auto inner = g.unordered();
         for (const char* name : {"a", "b"})
             field(inner, name)
                 .initiator(std::string(name) + ":")
                 .terminator(";")
                 .occurs(0, 1)
                 .occursImplicit();
         field(outer, "c").initiator("c:").terminator(";").occurs(0, 1).occursImplicit();
     },
     "(b:1;a:2;)c:3;(a:4;)",
     {"a=2", "b=1", "a=4", "c=3"}},
};

const Case BOOLEANS[] = {
    {"truth is not told from the texts",
     [](GrammarHandle r) {
         auto group = infix(r);
         for (const char* name : {"a", "b", "c"})
             group.boolean(name, "yes %#x59;", "no N").delimited().trimRight("%SP;");
     },
     "yes,N ,Y",
     {"a=true", "b=false", "c=true"}},
    {"any text is a truth value",
     [](GrammarHandle r) { r.boolean("a", "yes", "no").delimited(); },
     "maybe",
     {},
     "CTDP3024E",
     "maybe"},
    {"an implied length of bytes is for strings in every text",
     [](GrammarHandle r) { r.boolean("a", "yes", "no").implicitBytes(3); },
     "yes",
     {"a=true"}},
    {"a nil text is taken for a truth value",
     [](GrammarHandle r) { r.boolean("a", "yes", "no").delimited().nilLiteral("no"); },
     "no",
     {"a=nil"}},
    {"a logical nil is not looked for in truth values",
     [](GrammarHandle r) { r.boolean("a", "yes", "no").delimited().nilLogical({"false"}); },
     "no",
     {"a=nil"}},
};

void expectCases(const Case& entry) {
    const Grammar grammar = grammarOf(entry.describe);
    ASSERT_NE(nullptr, grammar) << entry.fault;
    const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
    EXPECT_EQ(entry.values, run.values()) << entry.fault << "\n" << run;
    EXPECT_EQ(entry.code == nullptr, run.parsed) << entry.fault << "\n" << run;
    if (entry.code == nullptr) return;
    EXPECT_EQ(Values{entry.code}, run.codes()) << entry.fault << "\n" << run;
    ASSERT_EQ(1U, run.diagnostics.size()) << entry.fault;
    EXPECT_NE(std::string::npos, run.diagnostics[0].find(entry.inText)) << entry.fault << "\n" << run;
}

TEST(Delimited, SeparatorsStandBetweenMembers) {
    for (const Case& entry : SEPARATORS) expectCases(entry);
}

TEST(Delimited, TerminatorsEndElementsAndGroups) {
    for (const Case& entry : TERMINATORS) expectCases(entry);
}

TEST(Delimited, InitiatorsDecideWhatIsThere) {
    for (const Case& entry : INITIATORS) expectCases(entry);
}

TEST(Delimited, TextsAreTruthValues) {
    for (const Case& entry : BOOLEANS) expectCases(entry);
}

TEST(Delimited, NilIsToldFromValues) {
    for (const Case& entry : NILS) expectCases(entry);
}

TEST(Delimited, UnorderedMembersComeInTheGrammarsOrder) {
    for (const Case& entry : UNORDERED) expectCases(entry);
}

}  // namespace
