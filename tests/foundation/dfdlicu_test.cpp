// The ways to ICU's numbers that its flat interface has not.
#include "dfdl/foundation/dfdlicu.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <string>

#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

TEST(SpecialDoubles, AreToldByTheirBits) {
    using Limits = std::numeric_limits<double>;
    struct Case {
        double value;
        bool isNaN, isInfinity, isPositive, isNegative;
    };
    for (const Case& one :
         {Case{dfdl_getNaN(), true, false, false, false}, Case{-dfdl_getNaN(), true, false, false, false},
          Case{Limits::signaling_NaN(), true, false, false, false},
          Case{std::bit_cast<double>(~uint64_t{0}), true, false, false, false},
          Case{dfdl_getInfinity(), false, true, true, false},
          Case{-dfdl_getInfinity(), false, true, false, true},
          Case{Limits::max(), false, false, false, false}, Case{-Limits::max(), false, false, false, false},
          Case{-0.0, false, false, false, false}}) {
        EXPECT_EQ(dfdl_isNaN(one.value), one.isNaN) << one.value;
        EXPECT_EQ(dfdl_isInfinity(one.value), one.isInfinity) << one.value;
        EXPECT_EQ(dfdl_isPosInfinity(one.value), one.isPositive) << one.value;
        EXPECT_EQ(dfdl_isNegInfinity(one.value), one.isNegative) << one.value;
    }
}

struct Case {
    const char16_t* text;
    int32_t start, capacity;
    const char* decimal;  // as dfdl_parseDecimal gives it
    int64_t integer;      // as dfdl_parseInt64 gives it
    int32_t type;
    int32_t end;
    const char* left;  // in the decimal that takes what is no integer
};

constexpr int32_t LONG = icu::Formattable::kLong;
constexpr int32_t INT64 = icu::Formattable::kInt64;
constexpr int32_t DOUBLE = icu::Formattable::kDouble;

constexpr Case CASES[] = {
    {u"12", 0, 40, "12", 12, LONG, 2, "7"},
    {u"-12x", 0, 40, "-12", -12, LONG, 3, "7"},
    {u"xx12", 2, 40, "12", 12, LONG, 4, "7"},
    {u"4294967296", 0, 40, "4294967296", 4294967296, INT64, 10, "7"},
    {u"-9223372036854775808", 0, 40, "-9223372036854775808", INT64_MIN, INT64, 20, "7"},
    {u"9223372036854775808", 0, 40, "9.223372036854775808E+18", 0, DOUBLE, 19, "9223372036854775808"},
    {u"1.5", 0, 40, "1.5", 0, DOUBLE, 3, "1.5"},
    {u"123456", 0, 3, "123", 123456, LONG, 6, "7"},
    {u"x", 0, 40, "", 0, -1, 0, "7"},
};

TEST(ParsedNumbers, ComeWithTheirKindAndEnd) {
    TestAdapter test;
    const Owned<DFDLConstants, delete_DFDLConstants> constants(new_DFDLConstants(test.adapter));
    const Owned<DFDLDecimal, delete_DFDLDecimal> decimal(new_DFDLDecimal(test.adapter, constants.get()));
    UErrorCode status = U_ZERO_ERROR;
    const Owned<UNumberFormat, unum_close> format(
        unum_open(UNUM_PATTERN_DECIMAL, u"0.#", -1, "", nullptr, &status));
    for (const Case& one : CASES) {
        SCOPED_TRACE(&one - CASES);
        char number[40];
        int32_t position = one.start;
        status = U_ZERO_ERROR;
        const int32_t length =
            dfdl_parseDecimal(format.get(), one.text, -1, &position, number, one.capacity, &status);
        EXPECT_EQ(std::string(number, static_cast<size_t>(length)), one.decimal);
        EXPECT_EQ(position, one.end);
        EXPECT_EQ(status, one.type == -1 ? U_PARSE_ERROR : U_ZERO_ERROR);
        DFDLDecimal_setSignedQValue(decimal.get(), 7);
        position = one.start;
        status = U_ZERO_ERROR;
        int32_t type = -1;
        EXPECT_EQ(dfdl_parseInt64(format.get(), one.text, -1, &position, decimal.get(), &status, &type),
                  one.integer);
        EXPECT_EQ(position, one.end);
        EXPECT_EQ(U_SUCCESS(status) ? type : -1, one.type);
        const std::string left = one.left;
        const Owned<DFDLDecimal, delete_DFDLDecimal> expected(
            new_DFDLDecimalFromChar(test.adapter, constants.get(), left.c_str(), 0));
        EXPECT_TRUE(DFDLDecimal_isDecimalEqual(decimal.get(), expected.get()));
    }
}

}  // namespace
