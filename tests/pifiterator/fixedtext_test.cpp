// Ordered sequences of text strings of known length: what comes out for which grammar and which bytes, by
// every road that the input can take.
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

// A grammar whose root element is "r" and holds what `describe` puts there.
Grammar grammarOf(const Describe& describe) {
    GrammarBuilder builder;
    describe(builder.complexElement("r"));
    return {builder.load(), delete_DFDLGrammar};
}

std::string bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values) result.push_back(static_cast<char>(value));
    return result;
}

struct ValueCase {
    const char* fault;  // what would be wrong
    Describe describe;
    std::string data;
    Values values;
};

const ValueCase VALUE_CASES[] = {
    {"bytes are cut at the wrong place",
     [](GrammarHandle r) {
         r.text("a").bytes(2);
         r.text("b").bytes(3);
     },
     "xyabc",
     {"a=xy", "b=abc"}},
    {"an implied length is not the type's",
     [](GrammarHandle r) { r.text("a").implicitCharacters(3); },
     "abc",
     {"a=abc"}},
    {"characters are taken for bytes",
     [](GrammarHandle r) {
         r.text("a").characters(3);
         r.text("b").bytes(1);
     },
     "\xC3\xA9\xE2\x82\xACzq",
     {"a=\xC3\xA9\xE2\x82\xACz", "b=q"}},
    {"a surrogate pair is cut or counted twice",
     [](GrammarHandle r) {
         r.text("a").characters(2);
         r.text("b").characters(1);
     },
     "x\xF0\x9F\x98\x80y",
     {"a=x\xF0\x9F\x98\x80", "b=y"}},
    {"two-byte characters are not two bytes",
     [](GrammarHandle r) {
         r.text("a").characters(2).encoding("UCS-2");
         r.text("b").characters(1).encoding("UTF-16LE");
     },
     bytes({0, 'h', 0, 'i', 'x', 0}),
     {"a=hi", "b=x"}},
    {"the mark of the byte order is lost, or looked for twice",
     [](GrammarHandle r) {
         r.text("a").bytes(4);
         r.text("b").bytes(3);
     },
     "\xEF\xBB\xBFz\xEF\xBB\xBF",
     {"a=\xEF\xBB\xBFz", "b=\xEF\xBB\xBF"}},
    {"EBCDIC is not decoded",
     [](GrammarHandle r) { r.text("a").bytes(3).encoding("ibm-037"); },
     "\x81\xC2\xF1",
     {"a=aB1"}},
    {"a double-byte character is cut",
     [](GrammarHandle r) {
         r.text("a").characters(2).encoding("Shift_JIS");
         r.text("b").bytes(1).encoding("Shift_JIS");
     },
     "\x83\x41x!",
     {"a=\xE3\x82\xA2x", "b=!"}},
    {"padding is trimmed at the wrong end",
     [](GrammarHandle r) {
         r.text("a").bytes(5).trimRight("%SP;");
         r.text("b").bytes(5).trimLeft("*");
         r.text("c").bytes(5).trimBoth("0");
         r.text("d").bytes(3).trimRight("%SP;");
     },
     " x   **y**00z00   ",
     {"a= x", "b=y**", "c=z", "d="}},
    {"padding with a byte is not trimmed",
     [](GrammarHandle r) {
         r.text("a").bytes(4).trimRight("%#r00;").encoding("US-ASCII");
         r.text("b").bytes(4).trimBoth("%#r40;").encoding("ibm-037");
         r.text("c").bytes(2).trimLeft("%#r00;").encoding("ISO-8859-1");
     },
     bytes({'a', 'b', 0, 0, 0x40, 0x81, 0x40, 0x40, 0, 0}),
     {"a=ab", "b=a", "c="}},
    {"the end of a character that the length cuts off is an error",
     [](GrammarHandle r) {
         r.text("a").bytes(3);
         r.text("b").bytes(1);
     },
     "ab\xE2|",
     {"a=ab", "b=|"}},
    {"members are aligned from the wrong place",
     [](GrammarHandle r) {
         r.text("a").bytes(1);
         r.text("b").bytes(1).align(4);
         r.text("c").bytes(1).skip(2, 1);
         r.text("d").bytes(1);
     },
     "a...b..c.d",
     {"a=a", "b=b", "c=c", "d=d"}},
    {"a member that starts inside a byte does not move to the next byte",
     [](GrammarHandle r) {
         r.text("a").bytes(1);
         r.sequence().alignBits(1).skip(3, 0).text("b").bytes(1);
     },
     "a\x1Eq",
     {"a=a", "b=q"}},
    {"the number of occurrences is not kept",
     [](GrammarHandle r) {
         r.text("a").bytes(1).occurs(3, 3).occursFixed();
         auto inner = r.complexElement("g").occurs(2, 2).occursFixed();
         inner.text("b").bytes(1);
         r.text("n").bytes(1).occurs(0, 0).occursFixed();
         r.text("z").bytes(1);
     },
     "123xyZ",
     {"a=1", "a=2", "a=3", "b=x", "b=y", "z=Z"}},
    {"what is left of an imposed length is not skipped",
     [](GrammarHandle r) {
         r.complexElement("g").explicitBytes(4).text("a").bytes(1);
         r.sequence().explicitBytes(3).text("b").bytes(1);
         auto chars = r.complexElement("h").explicitCharacters(3);
         chars.text("c").characters(1);
         r.text("d").bytes(1);
     },
     "a...b..\xC3\xA9\xC3\xA9zd",
     {"a=a", "b=b", "c=\xC3\xA9", "d=d"}},
};

TEST(FixedText, GivesItsValues) {
    for (const ValueCase& entry : VALUE_CASES) {
        const Grammar grammar = grammarOf(entry.describe);
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
        EXPECT_TRUE(run.parsed) << entry.fault << "\n" << run;
        EXPECT_EQ(entry.values, run.values()) << entry.fault;
    }
}

struct ErrorCase {
    const char* fault;
    Describe describe;
    std::string data;
    std::string code;
    std::string inText;  // what the message must tell
};

const ErrorCase ERROR_CASES[] = {
    {"the end of the data passes",
     [](GrammarHandle r) {
         r.text("a").bytes(2);
         r.text("last").bytes(5);
     },
     "xyabc", "CTDP3000E", "last"},
    {"missing characters pass", [](GrammarHandle r) { r.text("a").characters(3); }, "\xC3\xA9y", "CTDP3000E",
     "a"},
    {"a field goes beyond the length around it",
     [](GrammarHandle r) { r.complexElement("g").explicitBytes(2).text("a").bytes(3); }, "abcdef",
     "CTDP3000E", "a"},
    {"characters go beyond the length around them",
     [](GrammarHandle r) { r.complexElement("g").explicitBytes(2).text("a").characters(3); }, "abcdef",
     "CTDP3057E", "a"},
    {"malformed data pass", [](GrammarHandle r) { r.text("a").bytes(4); }, "a\xFFzz", "CTDP3011E", "byte 1"},
    {"malformed characters pass", [](GrammarHandle r) { r.text("a").characters(6); }, "ab\xFFzzzzz",
     "CTDP3011E", "byte 2"},
    {"a skip goes beyond the data", [](GrammarHandle r) { r.text("a").bytes(1).skip(9, 0); }, "abc",
     "CTDP3000E", "a"},
    {"data behind the message pass", [](GrammarHandle r) { r.text("a").bytes(1); }, "aZ", "CTDP3002E", "5A"},
    {"an empty required element passes", [](GrammarHandle r) { r.text("a").bytes(0); }, "", "CTDP3059E", "a"},
    {"an unknown encoding passes", [](GrammarHandle r) { r.text("a").bytes(1).encoding("no-such-page"); },
     "a", "CTDV1110E", "no-such-page"},
    {"bits are taken for a length of text", [](GrammarHandle r) { r.text("a").bits(8); }, "a", "CTDP3012E",
     "a"},
    {"an implied length in bytes of a multi-byte text passes",
     [](GrammarHandle r) { r.text("a").implicitBytes(2); }, "ab", "CTDV1492E", "a"},
    {"pad bytes are trimmed off characters of varying width",
     [](GrammarHandle r) { r.text("a").characters(2).trimRight("%#r00;"); }, "a\0", "CTDP3139E", "a"},
    {"a default value is made up", [](GrammarHandle r) { r.text("a").bytes(0).defaultValue("x"); }, "",
     "CTDP3108E", "a"},
};

TEST(FixedText, TellsWhatIsWrong) {
    for (const ErrorCase& entry : ERROR_CASES) {
        const Grammar grammar = grammarOf(entry.describe);
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
        EXPECT_FALSE(run.parsed) << entry.fault;
        EXPECT_EQ(Values{entry.code}, run.codes()) << entry.fault << "\n" << run;
        ASSERT_EQ(1U, run.diagnostics.size()) << entry.fault;
        EXPECT_NE(std::string::npos, run.diagnostics[0].find(entry.inText)) << run.diagnostics[0];
    }
}

const std::pair<const char*, Describe> UNSUPPORTED[] = {
    {"pattern", [](GrammarHandle r) { r.text("a").pattern("a+"); }},
    {"choice", [](GrammarHandle r) { r.choice().text("a").bytes(1); }},
};

TEST(FixedText, NamesWhatItCannotParse) {
    for (const auto& [what, describe] : UNSUPPORTED) {
        const Grammar grammar = grammarOf(describe);
        const ParserRun run = runEverywhere(grammar.get(), u"r", "aaaa");
        EXPECT_FALSE(run.parsed) << what;
        ASSERT_EQ(Values{"CTDP3900E"}, run.codes()) << what << run;
        EXPECT_NE(std::string::npos, run.diagnostics[0].find(what)) << run.diagnostics[0];
    }
}

TEST(FixedText, DoesNotLetUnjudgedValuesLookValid) {
    const Grammar grammar = grammarOf([](GrammarHandle r) { r.text("a").bytes(1).facetMaxLength(1); });
    ParserOptions options;
    options.validate = true;
    EXPECT_EQ(Values{"CTDP3900E"}, runEverywhere(grammar.get(), u"r", "a", options).codes());
    EXPECT_TRUE(runEverywhere(grammar.get(), u"r", "a").parsed);
}

TEST(FixedText, StartsAtASimpleElementAndInANamespace) {
    GrammarBuilder builder;
    builder.text("only").bytes(2);
    builder.text("only").bytes(3).namespaceUri("urn:x");
    const Grammar grammar(builder.load(), delete_DFDLGrammar);
    ParserOptions options;
    EXPECT_EQ(Values{"only=ab"}, runEverywhere(grammar.get(), u"only", "ab", options).values());
    options.namespaceUri = u"urn:x";
    EXPECT_EQ(Values{"only=abc"}, runEverywhere(grammar.get(), u"only", "abc", options).values());
    options.namespaceUri = u"urn:y";
    EXPECT_EQ(Values{"CTDP3001E"}, runEverywhere(grammar.get(), u"only", "abc", options).codes());
}

// A grammar that refers to itself without end: the walk ends with an error, not with the process.
TEST(FixedText, EndsWhereAGrammarNestsForEver) {
    GrammarBuilder builder;
    builder.complexElement("r").complexElement("inner").text("a").bytes(1);
    PIF::MPIF& pif = builder.pif();
    const int32_t outer = pif.element_table().row(0).group_id();
    for (int32_t i = 1; i < pif.element_table().row_size(); ++i) {
        if (pif.element_table().row(i).name() == "inner")
            pif.mutable_element_table()->mutable_row(i)->set_group_id(outer);
    }
    const Grammar grammar(builder.load(), delete_DFDLGrammar);
    const ParserRun run = runParser(grammar.get(), u"r", "aaaa");
    EXPECT_FALSE(run.parsed);
    EXPECT_EQ(Values{"CTDP3148E"}, run.codes());
}

TEST(FixedText, ReportsRegionsAndPlaces) {
    const Grammar grammar =
        grammarOf([](GrammarHandle r) { r.text("a").bytes(3).trimRight("%SP;").skip(1, 2); });
    ParserOptions options;
    options.regions = true;
    const ParserRun run = runEverywhere(grammar.get(), u"r", ".x  ..", options);
    const std::string text = run.text();
    for (const char* line : {R"("event":"leadingAlignmentRegion","scd":"/r/a","start":0,"length":1)",
                             R"("event":"simpleContentRegion","scd":"/r/a","start":1,"length":3)",
                             R"("event":"trailingAlignmentRegion","scd":"/r/a","start":4,"length":2)",
                             R"("event":"startElement","name":"a","namespace":"",)", R"("start":0})",
                             R"("event":"endElement","end":48)", R"("event":"endDocument","bytes":6)"}) {
        EXPECT_NE(std::string::npos, text.find(line)) << line << "\n" << text;
    }
}

}  // namespace
