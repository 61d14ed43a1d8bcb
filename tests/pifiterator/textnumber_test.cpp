// Numbers that are written as text, on the walk.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Row = PIF::MTextNumberTableRow;

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
     [](Row& row) { row.set_inumberbase(PIF::MPIFEnums::_16); }},
    {"INT", "#0", "zero", "0", [](Row& row) { row.set_inumberzerorep("zero nil"); }},
};

TEST(TextNumber, IsReadByItsPattern) {
    for (const Case& entry : CASES) {
        GrammarBuilder builder;
        auto field = builder.complexElement("r").textNumber("n", entry.kind, entry.pattern).endOfParent();
        entry.change(field.numberRow());
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(nullptr, grammar);
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.text);
        const std::string outcome = run.parsed && !run.values().empty() ? run.values()[0].substr(2)
                                    : run.codes().empty()               ? "nothing"
                                                                        : run.codes()[0];
        EXPECT_EQ(entry.value, outcome) << entry.kind << " " << entry.pattern << " " << entry.text << "\n"
                                        << run;
    }
}

}  // namespace
