// Optional members and arrays without delimiters: occurrences are tried, and undone where they fail.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/spif.h"
#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Values = std::vector<std::string>;
using Describe = std::function<void(GrammarHandle)>;

Grammar grammarOf(const Describe& describe) {
    GrammarBuilder builder;
    describe(builder.complexElement("r"));
    return {builder.load(), delete_DFDLGrammar};
}

// A text of ASCII characters alone, so that another byte ends its occurrences.
GrammarHandle ascii(GrammarHandle group, const char* name) {
    return group.text(name).bytes(1).encoding("US-ASCII");
}
GrammarHandle latin(GrammarHandle group, const char* name) {
    return group.text(name).bytes(1).encoding("ISO-8859-1");
}

struct Case {
    const char* fault;
    Describe describe;
    std::string data;
    Values values;
};

const Case CASES[] = {
    {"records do not go on to the end of the data",
     [](GrammarHandle r) { r.complexElement("g").occurs(0, -1).occursParsed().text("a").bytes(2); },
     "aabbcc",
     {"a=aa", "a=bb", "a=cc"}},
    {"no record at all is an error",
     [](GrammarHandle r) { ascii(r, "a").occurs(0, -1).occursParsed(); },
     "",
     {}},
    {"an array does not end where an occurrence fails",
     [](GrammarHandle r) {
         ascii(r, "a").occurs(0, -1).occursParsed();
         latin(r, "b");
     },
     "xy\xE9",
     {"a=x", "a=y", "b=\xC3\xA9"}},
    {"an array goes beyond its bound",
     [](GrammarHandle r) {
         ascii(r, "a").occurs(1, 2).occursImplicit();
         ascii(r, "b");
     },
     "xyz",
     {"a=x", "a=y", "b=z"}},
    {"an optional member that is absent leaves something behind",
     [](GrammarHandle r) {
         auto group = r.complexElement("g").occurs(0, 1).occursImplicit();
         ascii(group, "a");
         ascii(group, "b");
         latin(r, "c");
         latin(r, "d");
     },
     "x\xE9",
     {"c=x", "d=\xC3\xA9"}},
    {"what an inner level has committed is lost when an outer one fails, or stays",
     [](GrammarHandle r) {
         auto outer = r.complexElement("o").occurs(0, -1).occursImplicit();
         ascii(outer, "a");
         auto inner = outer.complexElement("i").occurs(0, 1).occursImplicit();
         ascii(inner, "b");
         ascii(outer, "c");
         latin(r, "d").occurs(0, -1).occursImplicit();
     },
     "xyzpq\xE9",
     {"a=x", "b=y", "c=z", "d=p", "d=q", "d=\xC3\xA9"}},
    {"an array of the length around it reads on",
     [](GrammarHandle r) {
         ascii(r.complexElement("g").explicitBytes(3), "a").occurs(0, -1).occursParsed();
         ascii(r, "b");
     },
     "xyzw",
     {"a=x", "a=y", "a=z", "b=w"}},
    {"occurrences that take nothing from the data go on for ever",
     [](GrammarHandle r) {
         auto group = r.complexElement("g").occurs(0, -1).occursParsed();
         ascii(group, "a").occurs(0, 1).occursImplicit();
         latin(r, "b");
     },
     "\xE9",
     {"b=\xC3\xA9"}},
};

TEST(Occurrences, AreTriedAndUndone) {
    for (const Case& entry : CASES) {
        const Grammar grammar = grammarOf(entry.describe);
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
        EXPECT_TRUE(run.parsed) << entry.fault << "\n" << run;
        EXPECT_EQ(entry.values, run.values()) << entry.fault << "\n" << run;
    }
}

TEST(Occurrences, TakeAnEmptyOptionalElementBack) {
    const Grammar grammar = grammarOf([](GrammarHandle r) {
        ascii(r.complexElement("g").occurs(0, 1).occursImplicit(), "a").occurs(0, 1).occursImplicit();
        latin(r, "b");
    });
    const ParserRun run = runEverywhere(grammar.get(), u"r", "\xE9");
    EXPECT_EQ(std::string::npos, run.text().find(R"("name":"g")")) << run;
}

// No file says that a group is hidden, so the row is told here.
TEST(Occurrences, HideNothingOnceAHiddenGroupHasFailedOrClosed) {
    const Grammar grammar = grammarOf([](GrammarHandle r) {
        auto outer = r.complexElement("o").occurs(0, -1).occursParsed();
        ascii(outer.sequence(), "hidden");
        ascii(outer, "a");
        latin(r, "b");
    });
    for (int32_t index = 0; index < Table_size(grammar->groupMemberTable); ++index) {
        GroupMemberTableRow* row = Table_at(grammar->groupMemberTable, index);
        const GroupTableRow* content = row->elementRow == nullptr ? row->groupRow : nullptr;
        if (content == nullptr || content->firstMember == nullptr) continue;
        const DFDLUString* member = GroupMemberTableRow_getElementName(content->firstMember);
        GroupMemberTableRow_setIsHidden(row, member != nullptr && DFDLUString_view(member) == u"hidden");
    }
    EXPECT_EQ((Values{"a=y", "b=\xC3\xA9"}), runEverywhere(grammar.get(), u"r", "xy\xE9").values());
}

TEST(Occurrences, AreRequiredUpToTheirMinimum) {
    const Grammar grammar = grammarOf([](GrammarHandle r) {
        ascii(r, "a").occurs(2, 3).occursImplicit();
        latin(r, "b");
    });
    EXPECT_EQ((Values{"a=x", "a=y", "b=\xC3\xA9"}), runEverywhere(grammar.get(), u"r", "xy\xE9").values());
    EXPECT_EQ(Values{"CTDP3011E"}, runEverywhere(grammar.get(), u"r", "x\xE9\xE9").codes());
}

TEST(Occurrences, AreCountedWhenValidating) {
    const Grammar grammar = grammarOf([](GrammarHandle r) {
        ascii(r, "a").occurs(2, 3).occursParsed();
        latin(r, "b").occurs(0, 1).occursImplicit();
    });
    ParserOptions options;
    options.validate = true;
    const std::pair<const char*, Values> cases[] = {
        {"xy", {}}, {"x\xE9", {"CTDN3088E"}}, {"wxyz", {"CTDN3087E"}}, {"", {"CTDN3088E"}}};
    for (const auto& [data, codes] : cases) {
        const ParserRun run = runEverywhere(grammar.get(), u"r", data, options);
        EXPECT_TRUE(run.parsed) << data;
        EXPECT_EQ(codes, run.codes()) << data << "\n" << run;
    }
}

}  // namespace
