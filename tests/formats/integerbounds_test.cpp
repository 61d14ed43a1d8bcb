// Integers as texts about the bounds of their types: from both sides, of any size, in every base.
#include <gtest/gtest.h>

#include "support/examples.h"
#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Enums = PIF::MPIFEnums;

// One number of the given pattern and base; `texts` and codes of errors alike come back as a line.
struct Reader {
    std::string kind;
    std::string pattern = "#0";
    Enums::MNumberBaseEnum base = Enums::_10;

    std::string read(const std::string& text) const {
        GrammarBuilder builder;
        auto number = builder.complexElement("file").textNumber("n", kind, pattern).delimited();
        number.numberRow().set_inumberbase(base);
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        const ParserRun run = runParser(grammar.get(), u"file", text);
        if (!run.parsed) return run.codes().empty() ? "no error" : run.codes().front();
        return run.values().empty() ? "no value" : run.values().front().substr(2);
    }
};

struct Bounds {
    const char* kind;
    const char* below;  // the first number that is out of range; null: there is none
    const char* least;
    const char* greatest;
    const char* above;
};

constexpr Bounds BOUNDS[] = {
    {"BYTE", "-129", "-128", "127", "128"},
    {"SHORT", "-32769", "-32768", "32767", "32768"},
    {"INT", "-2147483649", "-2147483648", "2147483647", "2147483648"},
    {"LONG", "-9223372036854775809", "-9223372036854775808", "9223372036854775807", "9223372036854775808"},
    {"UNSIGNEDBYTE", "-1", "0", "255", "256"},
    {"UNSIGNEDSHORT", "-1", "0", "65535", "65536"},
    {"UNSIGNEDINT", "-1", "0", "4294967295", "4294967296"},
    {"UNSIGNEDLONG", "-1", "0", "18446744073709551615", "18446744073709551616"},
    {"NONNEGATIVEINTEGER", "-1", "0", "18446744073709551616", nullptr},
    {"NONNEGATIVEINTEGER", "-18446744073709551617", "0",
     "123456789012345678901234567890123456789012345678901234567890", nullptr},
    {"INTEGER", nullptr, "-9223372036854775809", "9223372036854775808", nullptr},
    {"INTEGER", nullptr, "-123456789012345678901234567890123456789012345678901234567890",
     "123456789012345678901234567890123456789012345678901234567890", nullptr},
};

constexpr char OUT_OF_RANGE[] = "CTDP3038E";

TEST(IntegerBounds, EveryTypeReadsToItsBoundsAndNoFurther) {
    for (const Bounds& bounds : BOUNDS) {
        const Reader reader{bounds.kind};
        for (const char* inside : {bounds.least, bounds.greatest})
            EXPECT_EQ(reader.read(inside), inside) << bounds.kind;
        for (const char* outside : {bounds.below, bounds.above}) {
            if (outside != nullptr) {
                EXPECT_EQ(reader.read(outside), OUT_OF_RANGE) << bounds.kind << ' ' << outside;
            }
        }
    }
}

// A pattern with words in it goes another way than plain digits.
TEST(IntegerBounds, WhateverThePattern) {
    for (const Bounds& bounds : BOUNDS) {
        const Reader reader{bounds.kind, "'above '0;'below '0"};
        const auto worded = [](std::string number) {
            return number[0] == '-' ? number.replace(0, 1, "below ") : "above " + number;
        };
        for (const char* inside : {bounds.least, bounds.greatest})
            EXPECT_EQ(reader.read(worded(inside)), inside) << bounds.kind;
        for (const char* outside : {bounds.below, bounds.above}) {
            if (outside != nullptr) {
                EXPECT_EQ(reader.read(worded(outside)), OUT_OF_RANGE) << bounds.kind << ' ' << outside;
            }
        }
    }
}

TEST(IntegerBounds, InEveryBase) {
    const struct {
        const char* kind;
        Enums::MNumberBaseEnum base;
        const char* text;
        const char* outcome;
    } cases[] = {
        {"UNSIGNEDBYTE", Enums::_2, "11111111", "255"},
        {"UNSIGNEDBYTE", Enums::_2, "100000000", OUT_OF_RANGE},
        {"BYTE", Enums::_2, "-10000000", "-128"},
        {"BYTE", Enums::_2, "-10000001", OUT_OF_RANGE},
        {"UNSIGNEDSHORT", Enums::_8, "177777", "65535"},
        {"UNSIGNEDSHORT", Enums::_8, "200000", OUT_OF_RANGE},
        {"INT", Enums::_16, "7fffFFFF", "2147483647"},
        {"INT", Enums::_16, "-80000001", OUT_OF_RANGE},
        {"LONG", Enums::_16, "7FFFFFFFFFFFFFFF", "9223372036854775807"},
        {"LONG", Enums::_16, "8000000000000000", OUT_OF_RANGE},
        {"LONG", Enums::_16, "-8000000000000000", "-9223372036854775808"},
        {"LONG", Enums::_16, "-8000000000000001", OUT_OF_RANGE},
        {"UNSIGNEDLONG", Enums::_16, "FFFFFFFFFFFFFFFF", "18446744073709551615"},
        {"UNSIGNEDLONG", Enums::_16, "10000000000000000", OUT_OF_RANGE},
        {"UNSIGNEDLONG", Enums::_8, "1777777777777777777777", "18446744073709551615"},
        {"UNSIGNEDLONG", Enums::_8, "2000000000000000000000", OUT_OF_RANGE},
    };
    for (const auto& c : cases) {
        const Reader reader{c.kind, "#0", c.base};
        EXPECT_EQ(reader.read(c.text), c.outcome) << c.kind << ' ' << c.text;
    }
}

}  // namespace
