// Numbers that are written as text, on the walk: against what Python makes of them (textnumbers.py), by every
// road, as prefixes of lengths, and what is said of grammars and texts that are wrong.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Enums = PIF::MPIFEnums;
using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Row = PIF::MTextNumberTableRow;
using Setting = std::function<void(GrammarHandle, const std::string&)>;

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

const std::map<std::string, Setting> SETTINGS = {
    {"-", [](GrammarHandle, const std::string&) {}},
    {"grouping",
     [](GrammarHandle n, const std::string& c) { n.numberRow().set_inumbergroupingseparator(c); }},
    {"point", [](GrammarHandle n, const std::string& c) { n.numberRow().set_inumberdecimalseparator(c); }},
    {"exponent",
     [](GrammarHandle n, const std::string& c) { n.numberRow().set_inumberexponentcharacter(c); }},
    {"infinity",
     [](GrammarHandle n, const std::string& word) { n.numberRow().set_inumberinfinityrep(word); }},
    {"nan", [](GrammarHandle n, const std::string& word) { n.numberRow().set_inumbernanrep(word); }},
    {"zero", [](GrammarHandle n, const std::string& words) { n.numberRow().set_inumberzerorep(words); }},
    {"virtual",
     [](GrammarHandle n, const std::string& at) { n.numberRow().set_ivirtualdecimalindex(std::stoi(at)); }},
    {"boundary", [](GrammarHandle n,
                    const std::string& at) { n.numberRow().set_isubpatternboudaryindex(std::stoi(at)); }},
    {"negative",
     [](GrammarHandle n, const std::string& at) {
         n.numberRow().set_inegativevirtualdecimalindex(std::stoi(at));
     }},
    {"lax", [](GrammarHandle n,
               const std::string&) { n.numberRow().set_inumbercheckpolicy(Enums::NUMBER_CHECKPOLICY_LAX); }},
    {"unsigned", [](GrammarHandle n, const std::string&) { n.numberRow().set_idecimalsigned(false); }},
    {"nocase", [](GrammarHandle n, const std::string&) { n.ignoreCase(); }},
    {"trimleft", [](GrammarHandle n, const std::string& pad) { n.trimLeft(pad); }},
    {"trimright", [](GrammarHandle n, const std::string& pad) { n.trimRight(pad); }},
    {"groupingexpression",
     [](GrammarHandle n, const std::string&) { n.numberRow().set_inumbergroupingsepexprindex(0); }},
    {"pointexpression",
     [](GrammarHandle n, const std::string&) { n.numberRow().set_inumberdecimalsepexprindex(0); }},
    {"exponentexpression",
     [](GrammarHandle n, const std::string&) { n.numberRow().set_inumberexponentcharexprindex(0); }},
    {"trimboth", [](GrammarHandle n, const std::string& pad) { n.trimBoth(pad); }},
    {"base",
     [](GrammarHandle n, const std::string& base) {
         n.numberRow().set_inumberbase(base == "2" ? Enums::_2 : base == "8" ? Enums::_8 : Enums::_16);
     }},
};

Grammar numberGrammar(const std::string& kind, const std::string& pattern, const std::string& settings) {
    GrammarBuilder builder;
    GrammarHandle number = builder.complexElement("r").textNumber("n", kind, pattern).delimited();
    for (const std::string& setting : split(settings, '|')) {
        const size_t equals = setting.find('=');
        const auto found = SETTINGS.find(setting.substr(0, equals));
        EXPECT_NE(found, SETTINGS.end()) << setting;
        if (found != SETTINGS.end())
            found->second(number, equals == setting.npos ? "" : setting.substr(equals + 1));
    }
    return {builder.load(), delete_DFDLGrammar};
}

// The value, or the code of the error.
std::string outcomeOf(const ParserRun& run) {
    if (!run.parsed) return run.codes().empty() ? "no error" : run.codes().front();
    return run.values().empty() ? "no value" : run.values().front().substr(2);
}

bool isCode(const std::string& outcome) { return outcome.starts_with("CTD") || outcome.starts_with("no "); }

// A double may be written in more than one way that is as short.
bool isSame(const std::string& kind, const std::string& outcome, const std::string& expected) {
    if (outcome == expected) return true;
    const bool isReal = kind == "DOUBLE" || kind == "FLOAT";
    return isReal && !isCode(outcome) && !isCode(expected) &&
           std::strtod(outcome.c_str(), nullptr) == std::strtod(expected.c_str(), nullptr);
}

struct Case {
    const char* kind;
    const char* pattern;
    const char* text;
    const char* value;  // or the code of the error
    std::function<void(Row&)> change = [](Row&) {};
};

const Case CASES[] = {
    {"INT", "#0", "-17", "-17"},
    {"INT", "#,##0", "1,234", "1234"},
    {"INT", "#0", "1,234", "CTDP3043E"},
    {"INT", "#0", "2147483648", "CTDP3038E"},
    {"INT", "#0", "-0", "0"},
    {"INTEGER", "#0", "123456789012345678901234567890123456789", "123456789012345678901234567890123456789"},
    {"UNSIGNEDBYTE", "#0", "255", "255"},
    {"UNSIGNEDBYTE", "#0", "-1", "CTDP3038E"},
    {"DECIMAL", "#,##0.00", "1,234.50", "1234.5"},
    {"DECIMAL", "000V00", "12345", "123.45", [](Row& row) { row.set_ivirtualdecimalindex(3); }},
    {"DECIMAL", "###PP", "123", "12300"},
    {"DECIMAL", "PP###", "123", "0.00123"},
    {"DOUBLE", "0.###E0", "1.5E3", "1500"},
    {"UNSIGNEDLONG", "#0", "FFFFFFFFFFFFFFFF", "18446744073709551615",
     [](Row& row) { row.set_inumberbase(Enums::_16); }},
    {"INT", "#0", "zero", "0", [](Row& row) { row.set_inumberzerorep("zero nil"); }},
};

TEST(TextNumber, IsTheSameByEveryRoad) {
    for (const Case& entry : CASES) {
        GrammarBuilder builder;
        auto field = builder.complexElement("r").textNumber("n", entry.kind, entry.pattern).endOfParent();
        entry.change(field.numberRow());
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(nullptr, grammar);
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.text);
        EXPECT_EQ(entry.value, outcomeOf(run))
            << entry.kind << " " << entry.pattern << " " << entry.text << "\n"
            << run;
    }
}

TEST(TextNumber, IsWhatPythonReads) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/pifiterator/textnumbers.txt");
    std::string format;  // of the grammar at hand
    Grammar grammar(nullptr, delete_DFDLGrammar);
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        const std::vector<std::string> cells = split(line, '\t');
        ASSERT_EQ(cells.size(), 5U) << line;
        const std::string wanted = cells[0] + '\t' + cells[1] + '\t' + cells[2];
        if (wanted != format) grammar = numberGrammar(cells[0], cells[1], cells[2]);
        format = wanted;
        ASSERT_NE(grammar, nullptr) << line;
        const std::string outcome = outcomeOf(runParser(grammar.get(), u"r", cells[3]));
        EXPECT_TRUE(isSame(cells[0], outcome, cells[4])) << line << ", not " << outcome;
    }
    EXPECT_GT(count, 1000);
}

struct PrefixCase {
    const char* fault;
    void (*describe)(GrammarBuilder&, GrammarHandle);
    const char* data;
    const char* outcome;
};

const PrefixCase PREFIXES[] = {
    {"a text before the content is not its length",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("n").prefixed(b.textNumber("length", "UNSIGNEDINT", "#0").characters(3));
     },
     "004abcd", "abcd"},
    {"a prefix that counts itself is not taken off",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("n").prefixed(b.textNumber("length", "UNSIGNEDINT", "#0").bytes(2), true);
     },
     "06abcd", "abcd"},
    {"a prefix in base 16 is read in base 10",
     [](GrammarBuilder& b, GrammarHandle r) {
         GrammarHandle length = b.textNumber("length", "UNSIGNEDINT", "#0").bytes(2);
         length.numberRow().set_inumberbase(Enums::_16);
         r.text("n").prefixed(length);
     },
     "0Aabcdefghij", "abcdefghij"},
    {"a prefix that is no number is a length",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("n").prefixed(b.textNumber("length", "UNSIGNEDINT", "#0").bytes(2));
     },
     "4xabcd", "CTDP3124E"},
    {"a negative prefix is a length",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("n").prefixed(b.textNumber("length", "INT", "#0").bytes(2));
     },
     "-1abcd", "CTDP3123E"},
    {"half a prefix is one",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("n").prefixed(b.textNumber("length", "UNSIGNEDINT", "#0").bytes(4));
     },
     "00", "CTDP3000E"},
    {"a prefix is believed before the data are there",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("n").prefixed(b.textNumber("length", "UNSIGNEDLONG", "#0").bytes(20));
     },
     "18446744073709551615abc", "CTDP3000E"},
};

TEST(TextNumber, IsALengthBeforeTheContent) {
    for (const PrefixCase& entry : PREFIXES) {
        GrammarBuilder builder;
        entry.describe(builder, builder.complexElement("r"));
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(nullptr, grammar) << entry.fault;
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
        EXPECT_EQ(entry.outcome, outcomeOf(run)) << entry.fault << "\n" << run;
    }
}

struct Complaint {
    const char* kind;
    const char* pattern;
    const char* settings;
    const char* text;
    const char* diagnostic;
};

const Complaint COMPLAINTS[] = {
    {"INT", "#,##0", "-", "12x4",
     "CTDP3043E: Element n: '12x4' is not a number of base 10 and pattern '#,##0': the character 'x' at "
     "index 2 does not fit."},
    {"DECIMAL", "#0.0;(#0.0)", "-", "(1.5",
     "CTDP3043E: Element n: '(1.5' is not a number of base 10 and pattern '#0.0;(#0.0)': the character '' at "
     "index 4 does not fit."},
    {"INT", "#0", "base=16", "0zf",
     "CTDP3043E: Element n: '0zf' is not a number of base 16 and pattern '#0': the character 'z' at index 1 "
     "does not fit."},
    {"DOUBLE", "#0.0E0", "-", "1.5e3",
     "CTDP3043E: Element n: '1.5e3' is not a number of base 10 and pattern '#0.0E0': the character 'e' at "
     "index 3 does not fit."},
    {"INT", "#0", "lax", " ", "CTDP3116E: Element n: its text is empty where a number was expected."},
    {"BYTE", "#0", "-", "128",
     "CTDP3038E: Element n: the value 128 is outside the range of its type: -128 to 127."},
    {"INTEGER", "#0E0", "-", "15E-1",
     "CTDP3038E: Element n: the value 15E-1 is outside the range of its type: whole numbers only."},
    {"UNSIGNEDBYTE", "#0", "-", "-1",
     "CTDP3038E: Element n: the value -1 is outside the range of its type: 0 to 255."},
    {"DECIMAL", "#0.0", "unsigned", "-1.5",
     "CTDP3121E: Element n: the value -1.500000E+000 is negative, but its decimal is unsigned."},
    {"DECIMAL", "#0.0", "infinity=INF", "INF",
     "CTDP3051E: Element n: 'INF' cannot be turned into a number of the element's type; cause: can't convert "
     "infinity."},
    {"INT", "#0;;", "-", "1",
     "CTDP3028E: A number pattern of the grammar cannot be used: U_UNQUOTED_SPECIAL."},
    {"INT", "#,##0", "grouping=", "1",
     "CTDV1518E: Element n: its grouping separator must be exactly one character."},
    {"INT", "#,##0", "grouping=ab", "1",
     "CTDV1518E: Element n: its grouping separator must be exactly one character."},
    {"INT", "#,##0", "grouping=%nonsense;", "1",
     "CTDV1438E: n: the value '%nonsense;' of the property textStandardGroupingSeparator holds a character "
     "entity that is not known or not complete."},
    {"DECIMAL", "#0.0", "point=", "1",
     "CTDV1520E: Element n: its decimal separator must be exactly one character."},
    {"DECIMAL", "#,##0.0", "point=,", "1",
     "CTDV1401E: Element n: its decimal separator and its grouping separator are the same, but must differ."},
    {"INT", "#,##0", "grouping=|groupingexpression", "1",
     "CTDP3900E: /r/n: the grammar uses grouping separators given by an expression, which this version of "
     "the library cannot parse."},
    {"DECIMAL", "#0.0", "point=|pointexpression", "1",
     "CTDP3900E: /r/n: the grammar uses decimal separators given by an expression, which this version of the "
     "library cannot parse."},
    {"DOUBLE", "#0.0E0", "exponent=|exponentexpression", "1",
     "CTDP3900E: /r/n: the grammar uses exponent characters given by an expression, which this version of "
     "the library cannot parse."},
    {"DECIMAL", "0V0", "virtual=3", "1",
     "CTDP3016E: Element n: the grammar has no usable number format for its text."},
    {"DECIMAL", "0V0;(0V0)", "virtual=1|boundary=9|negative=2", "1",
     "CTDP3016E: Element n: the grammar has no usable number format for its text."},
    {"INT", "#0", "zero=%nonsense;", "1",
     "CTDV1438E: n: the value '%nonsense;' of the property textNumberZeroRep holds a character entity that "
     "is not known or not complete."},
};

TEST(TextNumber, IsRefusedInWordsThatHelp) {
    for (const Complaint& entry : COMPLAINTS) {
        const Grammar grammar = numberGrammar(entry.kind, entry.pattern, entry.settings);
        ASSERT_NE(nullptr, grammar) << entry.diagnostic;
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.text);
        EXPECT_EQ(run.diagnostics, std::vector<std::string>{entry.diagnostic}) << entry.text;
    }
}

}  // namespace
