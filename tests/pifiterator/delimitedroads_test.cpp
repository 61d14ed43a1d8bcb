// The short road of fields between separators against the general one, on random grammars and data.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <random>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"
#include "support/randomnumbers.h"

namespace {

constexpr uint32_t SEED = 20260923;
constexpr int ROUNDS = 600;
using Enums = PIF::MPIFEnums;

// A grammar and data that it often fits: the data are written while the grammar is described.
class RandomMessage {
  public:
    explicit RandomMessage(uint32_t seed) : random_(seed) {}

    int below(int bound) { return static_cast<int>(random_() % static_cast<uint32_t>(bound)); }

    void describe(GrammarHandle root) {
        encoding_ = std::array{"UTF-8", "UTF-8", "ISO-8859-1", "US-ASCII",
                               "Shift_JIS"}[static_cast<size_t>(below(5))];
        const bool lines = below(2) == 0;
        auto record = root.complexElement("g").encoding(encoding_).terminator(lines ? "%NL;" : "|");
        const std::string end = !lines ? "|" : below(2) == 0 ? "\n" : "\r\n";
        record.occurs(below(2), -1);
        below(2) == 0 ? record.occursImplicit() : record.occursParsed();
        // Lines of nothing but single fields, and many of them, have a short road of their own.
        simple_ = below(2) == 0;
        const std::string template_ = group(record, 0);
        for (int records = below(simple_ ? 40 : 12); records >= 0; --records) {
            data_ += expand(template_) + end;
        }
        if (below(6) == 0) data_.resize(static_cast<size_t>(below(static_cast<int>(data_.size()) + 1)));
        if (below(6) == 0 && !data_.empty())
            data_[static_cast<size_t>(below(static_cast<int>(data_.size())))] = ';';
    }
    const std::string& data() const { return data_; }

  private:
    // What the group's data look like, with a star for each field.
    std::string group(GrammarHandle parent, int depth) {
        static constexpr Enums::MSeparatorPolicyEnum POLICIES[] = {Enums::REQUIRE, Enums::SUPPRESS,
                                                                   Enums::SUPPRESS_AT_END};
        const std::string separator = depth == 0 ? ";" : below(3) == 0 ? ";;" : ",";
        auto members = simple_ ? parent.content() : parent.sequence();
        members.encoding(encoding_).separator(separator, Enums::INFIX, POLICIES[below(3)]);
        std::string result;
        for (int member = 0, count = 1 + below(7); member < count; ++member) {
            if (member > 0) result += separator;
            if (depth == 0 && !simple_ && below(6) == 0) {
                result += group(members, 1);
            } else {
                const bool array = !simple_ && below(4) == 0;
                field(members, array);
                result += '*';
                for (int more = array ? below(5) : 0; more > 0; --more) result += separator + "*";
            }
        }
        return result;
    }

    void field(GrammarHandle parent, bool array) {
        const std::string name = "f" + std::to_string(fields_++);
        numbers_ = numbers_ || below(6) == 0;
        const int kind = numbers_ ? below(6) : 5;
        auto text = kind < 3    ? addRandomNumber(parent, name, &random_)
                    : kind == 3 ? addRandomCalendar(parent, name, &random_)
                                : parent.text(name);
        text.delimited().encoding(encoding_);
        if (below(4) == 0) text.trimBoth("%SP;");
        if (below(5) == 0) text.escapeBlock("\"", "\"", below(2) == 0 ? "\"" : "");
        if (below(simple_ ? 20 : 7) == 0) text.escapeCharacter("?", below(2) == 0 ? "?" : "");
        if (below(simple_ ? 2 : 8) == 0) text.nilLiteral(below(2) == 0 ? "x %ES;" : "%ES;");
        if (below(3) != 0) text.occurs(0, 1).occursImplicit();
        if (array) {
            text.occurs(below(3), below(2) == 0 ? -1 : 4);
            below(2) == 0 ? text.occursImplicit() : text.occursParsed();
        }
    }

    std::string expand(const std::string& pattern) {
        std::string result;
        for (const char c : pattern) result += c == '*' ? content() : std::string(1, c);
        return result;
    }

    std::string content() {
        static constexpr const char* PIECES[] = {"a",
                                                 "bc",
                                                 " ",
                                                 "?",
                                                 "\"",
                                                 "\"\"",
                                                 "x",
                                                 "\xC3\xA9",
                                                 "\xE9",
                                                 "\x83\x5C",
                                                 "a longer stretch of plain text",
                                                 "\r"};
        std::string result;
        if (numbers_ && below(10) != 0) return below(4) == 0 ? randomStamp(&random_) : randomDigits(&random_);
        if (below(12) == 0) return "\"" + std::string(1, ";,|\n"[below(4)]) + "\"";
        for (int pieces = below(4); pieces > 0; --pieces) result += PIECES[below(below(3) == 0 ? 12 : 3)];
        return result;
    }

    std::mt19937 random_;
    std::string encoding_;
    std::string data_;
    bool simple_ = false;
    bool numbers_ = false;  // most contents are numbers
    int fields_ = 0;
};

TEST(DelimitedRoads, DeliverTheSame) {
    int parsed = 0;
    for (uint32_t round = 0; round < ROUNDS; ++round) {
        RandomMessage message(SEED + round);
        GrammarBuilder builder;
        message.describe(builder.complexElement("r"));
        const std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)> grammar(builder.load(),
                                                                                  delete_DFDLGrammar);
        ParserOptions options;
        options.ignoreTrailingData = true;
        const ParserRun ahead = runParser(grammar.get(), u"r", message.data(), options);
        parsed += ahead.parsed ? 1 : 0;
        for (const ParserRoad road :
             {ParserRoad{0, true}, ParserRoad{1, false}, ParserRoad{3, true}, ParserRoad{40, false}}) {
            EXPECT_EQ(ahead, runParser(grammar.get(), u"r", message.data(), options, road))
                << "seed " << SEED + round << ", pieces of " << road.piece << ", stepped " << road.step
                << "\n"
                << message.data();
        }
    }
    EXPECT_GT(parsed, ROUNDS / 4) << "the data should fit often enough to test what is delivered";
}

}  // namespace
