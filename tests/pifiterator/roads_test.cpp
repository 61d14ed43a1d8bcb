// The short roads against the plain one, on random grammars and data.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

constexpr uint32_t SEED = 20260811;
constexpr int ROUNDS = 400;

class RandomMessage {
  public:
    explicit RandomMessage(uint32_t seed) : random_(seed) {}

    int below(int bound) { return static_cast<int>(random_() % static_cast<uint32_t>(bound)); }

    void fill(GrammarHandle group, int depth) {
        for (int members = 1 + below(6); members > 0; --members) {
            if (depth < 3 && below(5) == 0) {
                auto inner = below(2) == 0 ? group.sequence() : group.complexElement("g");
                const int occurs = below(6);
                if (occurs == 0) inner.occurs(0, 2).occursImplicit();
                if (occurs == 1) inner.occurs(2, 2).occursFixed();
                if (occurs == 2) inner.occurs(0, -1).occursParsed();
                fill(inner, depth + 1);
            } else {
                text(group);
            }
        }
    }

    // Bytes that mostly fit the members, with characters of several bytes and bad ones strewn in.
    std::string data() {
        std::string result;
        const int cutOff = below(8) == 0 ? below(40) : 0;
        for (const int count : lengths_) {
            for (int i = 0; i < 2 * count + 2; ++i) result += character();
        }
        return result.substr(0, result.size() - std::min(result.size(), static_cast<size_t>(cutOff)));
    }

  private:
    void text(GrammarHandle group) {
        static constexpr const char* ENCODINGS[] = {"UTF-8",     "US-ASCII", "ISO-8859-1", "ibm-037",
                                                    "Shift_JIS", "UTF-16BE", "UTF-8",      "UTF-8"};
        static constexpr const char* PADS[] = {"%SP;", "0", "%#x00;", "x"};
        auto field = group.text("f" + std::to_string(lengths_.size())).encoding(ENCODINGS[below(8)]);
        const int length = 1 + below(below(4) == 0 ? 40 : 12);
        field = below(2) == 0 ? field.bytes(length) : field.characters(length);
        const char* pad = PADS[below(4)];
        switch (below(4)) {
            case 0:
                field.trimLeft(pad);
                break;
            case 1:
                field.trimRight(pad);
                break;
            case 2:
                field.trimBoth(pad);
                break;
            default:
                break;
        }
        if (below(10) == 0) field.align(2);
        if (below(6) == 0) field.occurs(2, 2).occursFixed();
        if (below(6) == 0) field.occurs(0, 1 + below(2)).occursImplicit();
        if (below(12) == 0) field.occurs(0, -1).occursParsed();
        lengths_.push_back(length);
    }

    std::string character() {
        static constexpr const char* RARE[] = {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFF",
                                               "\x83\x41"};
        const int kind = below(dense_ ? 6 : 60);
        if (kind == 0) return RARE[below(5)];
        if (kind < 3) return " ";
        return std::string(1, static_cast<char>("0x aBc"[below(6)]));
    }

    std::mt19937 random_;
    std::vector<int> lengths_;
    bool dense_ = random_() % 4 == 0;
};

// Records of numbers and calendars, which read their values in two ways, and data that mostly fit them.
class RandomValues {
  public:
    explicit RandomValues(uint32_t seed) : random_(seed) {}

    int below(int bound) { return static_cast<int>(random_() % static_cast<uint32_t>(bound)); }

    void fill(GrammarHandle root, int /*depth*/) {
        auto record = root.complexElement("record").occurs(0, -1).occursParsed();
        for (int members = 1 + below(5); members > 0; --members) {
            const size_t kind = static_cast<size_t>(below(static_cast<int>(std::size(KINDS))));
            const int width = KINDS[kind].length() + below(4);
            auto field = KINDS[kind].isNumber
                             ? record.textNumber("n", KINDS[kind].type, KINDS[kind].pattern)
                             : record.textCalendar("c", KINDS[kind].type, KINDS[kind].pattern);
            const bool isLeft = below(2) == 0;
            field.bytes(width).encoding(ENCODINGS[below(4)]);
            if (below(5) != 0) field = isLeft ? field.trimLeft(PADS[pad_]) : field.trimRight(PADS[pad_]);
            members_.push_back({kind, static_cast<size_t>(width), isLeft});
        }
    }

    std::string data() {
        std::string result;
        for (int records = 1 + below(6); records > 0; --records) {
            for (const Member& member : members_) result += text(member);
        }
        if (below(3) == 0)
            result[static_cast<size_t>(below(static_cast<int>(result.size())))] = "0 -Zx\xC3"[below(6)];
        return result.substr(0, result.size() - (below(8) == 0 ? 1 : 0));
    }

  private:
    struct Kind {
        const char* type;
        const char* pattern;
        const char* text;  // each "d" is a digit, seldom 0
        bool isNumber;

        int length() const { return static_cast<int>(std::string_view(text).size()); }
    };
    static constexpr Kind KINDS[] = {
        {"INT", "#0", "dd", true},
        {"SHORT", "#0", "-ddd", true},
        {"UNSIGNEDLONG", "#,##0", "d,ddd", true},
        {"DECIMAL", "#0.00", "ddd.dd", true},
        {"DOUBLE", "#0.###", "dd.d", true},
        {"DATE", "yyyyMMdd", "19dd0d1d", false},
        {"DATE", "yyMMdd", "dd0d1d", false},
        {"DATE", "dd MMM yyyy", "1d Feb 201d", false},
        {"TIME", "HH:mm:ss.SSS", "1d:1d:0d.ddd", false},
        {"DATETIME", "yyyy-MM-dd'T'HH:mm:ssXXX", "201d-0d-1dT1d:0d:5d+0d:3d", false}};
    static constexpr const char* ENCODINGS[] = {"UTF-8", "UTF-8", "US-ASCII", "Shift_JIS"};
    static constexpr const char* PADS[] = {"%SP;", "0"};
    struct Member {
        size_t kind;
        size_t width;
        bool isLeft;
    };

    std::string text(const Member& member) {
        std::string result = KINDS[member.kind].text;
        for (char& c : result) {
            if (c == 'd') c = below(15) == 0 ? '0' : static_cast<char>('1' + below(9));
        }
        const std::string padding(member.width - result.size(), PADS[pad_][0] == '0' ? '0' : ' ');
        return member.isLeft ? padding + result : result + padding;
    }

    std::mt19937 random_;
    int pad_ = below(4) == 0 ? 1 : 0;
    std::vector<Member> members_;
};

// What the message gives, which must be the same by all roads.
template <class Message>
ParserRun parseByAllRoads(uint32_t seed) {
    Message message(seed);
    GrammarBuilder builder;
    message.fill(builder.complexElement("r"), 0);
    const std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)> grammar(builder.load(),
                                                                              delete_DFDLGrammar);
    const std::string data = message.data();
    ParserOptions options;
    options.ignoreTrailingData = true;
    const ParserRun ahead = runParser(grammar.get(), u"r", data, options);
    for (const ParserRoad road : {ParserRoad{0, true}, ParserRoad{3, false}, ParserRoad{17, false}}) {
        EXPECT_EQ(ahead, runParser(grammar.get(), u"r", data, options, road))
            << "seed " << seed << ", pieces of " << road.piece << ", stepped " << road.step;
    }
    return ahead;
}

TEST(Roads, DeliverTheSame) {
    int parsed = 0;
    for (uint32_t round = 0; round < ROUNDS; ++round)
        parsed += parseByAllRoads<RandomMessage>(SEED + round).parsed ? 1 : 0;
    EXPECT_GT(parsed, ROUNDS / 4) << "the data should fit often enough to test what is delivered";
}

TEST(Roads, ReadTheSameValues) {
    size_t values = 0;
    for (uint32_t round = 0; round < ROUNDS; ++round)
        values += parseByAllRoads<RandomValues>(SEED + round).values().size();
    EXPECT_GT(values, size_t{2} * ROUNDS) << "the data should fit often enough to test what is read";
}

}  // namespace
