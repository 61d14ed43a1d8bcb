// Records of fixed fields, by every road into the parser.
#include <gtest/gtest.h>

#include <memory>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;

// Two records of a number in three bytes and a name in two characters, each field padded.
Grammar records() {
    GrammarBuilder builder;
    auto record = builder.complexElement("file").complexElement("record").occurs(2, 2).occursFixed();
    record.text("number").bytes(3).encoding("US-ASCII").trimLeft("0");
    record.text("name").characters(2).encoding("UTF-8").trimRight("%SP;").skip(0, 1);
    return {builder.load(), delete_DFDLGrammar};
}

struct Case {
    const char* bytes;
    bool parsed;
    std::vector<std::string> values;
    std::vector<std::string> codes;
};

TEST(FixedRecords, EveryRoadDeliversTheSame) {
    const Grammar grammar = records();
    ASSERT_NE(grammar, nullptr);
    const Case cases[] = {
        {"007ab;042c ;", true, {"number=7", "name=ab", "number=42", "name=c"}, {}},
        {"000  ;123\xC3\xA4\xE2\x82\xAC;", true, {"number=", "name=", "number=123", "name=ä€"}, {}},
        {"007ab;042c ;x", false, {"number=7", "name=ab", "number=42", "name=c"}, {"CTDP3002E"}},
    };
    for (const Case& c : cases) {
        const ParserRun run = runEverywhere(grammar.get(), u"file", c.bytes);
        EXPECT_EQ(run.parsed, c.parsed) << c.bytes << '\n' << run;
        EXPECT_EQ(run.values(), c.values) << c.bytes << '\n' << run;
        EXPECT_EQ(run.codes(), c.codes) << c.bytes << '\n' << run;
    }
}

TEST(FixedRecords, ShortDataFailWhereverTheyEnd) {
    const Grammar grammar = records();
    const std::string whole = "007ab;042c ;";
    for (size_t length = 0; length < whole.size(); length++) {
        const ParserRun run = runEverywhere(grammar.get(), u"file", whole.substr(0, length));
        EXPECT_FALSE(run.parsed) << length << '\n' << run;
        EXPECT_EQ(run.diagnostics.size(), 1U) << length << '\n' << run;
    }
}

TEST(FixedRecords, RegionsAreTheSameByEveryRoad) {
    const Grammar grammar = records();
    ParserOptions options;
    options.regions = true;
    const ParserRun run = runEverywhere(grammar.get(), u"file", "007ab;042c ;", options);
    EXPECT_TRUE(run.parsed) << run;
    const std::string text = run.text();
    EXPECT_NE(text.find("\"event\":\"simpleContentRegion\""), text.npos) << run;
    EXPECT_NE(text.find("\"event\":\"trailingAlignmentRegion\""), text.npos) << run;
}

}  // namespace
