#include "dfdl/foundation/dfdldecimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using OwnedDecimal = Owned<DFDLDecimal, delete_DFDLDecimal>;
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

class Decimal : public ::testing::Test {
  protected:
    OwnedDecimal read(const std::string& text) {
        return OwnedDecimal(new_DFDLDecimalFromChar(heap_.adapter, constants_.get(), text.c_str(), 0));
    }

    std::string taken(char* text, int32_t length) {
        std::string copy(text, static_cast<size_t>(length));
        EXPECT_EQ(copy.size(), std::string(text).size());
        DFDLBufferFactory_FreeBuffer(heap_.adapter->bufferFactory, reinterpret_cast<uint8_t*>(text));
        return copy;
    }

    std::string text(const DFDLDecimal* decimal) {
        int32_t length = -1;
        char* buffer = DFDLDecimal_getDecimal(decimal, &length, heap_.adapter);
        return taken(buffer, length);
    }
    std::string text(const OwnedDecimal& decimal) { return text(decimal.get()); }

    std::string plainText(const OwnedDecimal& decimal) {
        int32_t length = -1;
        char* buffer = DFDLDecimal_getDecimalWithoutExponent(decimal.get(), &length, heap_.adapter);
        return taken(buffer, length);
    }

    TestAdapter heap_;
    Owned<DFDLConstants, delete_DFDLConstants> constants_{new_DFDLConstants(heap_.adapter)};
};

TEST_F(Decimal, BecomesAnInteger) {
    struct Case {
        const char* text;
        int64_t asSigned;
        uint64_t asUnsigned;
        int32_t asInt;
        uint32_t asUnsignedInt;
    };
    const Case cases[] = {
        {"1.5", 2, 2, 2, 2},
        {"2.5", 2, 2, 2, 2},
        {"-7", -7, 7, -7, 7},
        {"12E2", 1200, 1200, 1200, 1200},
        {"0.4E-30", 0, 0, 0, 0},
        {"NaN12", 0, 0, 0, 0},
        {"Infinity", 0, 0, 0, 0},
        {"2147483647", INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
        {"-2147483648", INT32_MIN, 2147483648U, INT32_MIN, 2147483648U},
        {"2147483648", 2147483648, 2147483648U, 0, 2147483648U},
        {"4294967295", UINT32_MAX, UINT32_MAX, 0, UINT32_MAX},
        {"9223372036854775807", INT64_MAX, INT64_MAX, 0, 0},
        {"-9223372036854775808", INT64_MIN, 1ULL << 63, 0, 0},
        {"9223372036854775808", 0, 1ULL << 63, 0, 0},
        {"-9223372036854775809", 0, (1ULL << 63) + 1, 0, 0},
        {"9999999999999999999.5", 0, 10000000000000000000ULL, 0, 0},
        {"18446744073709551615", 0, UINT64_MAX, 0, 0},
        {"18446744073709551617", 0, 1, 0, 0},
        {"100000000000000000000", 0, 0, 0, 0},
        {"1E999999999", 0, 0, 0, 0},
    };
    for (const Case& entry : cases) {
        const OwnedDecimal decimal = read(entry.text);
        EXPECT_EQ(entry.asInt, DFDLDecimal_getSignedInt(decimal.get())) << entry.text;
        EXPECT_EQ(entry.asUnsignedInt, DFDLDecimal_getUnsignedInt(decimal.get())) << entry.text;
        EXPECT_EQ(entry.asSigned, DFDLDecimal_getSignedQValue(decimal.get())) << entry.text;
        EXPECT_EQ(entry.asUnsigned, DFDLDecimal_getUnsignedQValue(decimal.get())) << entry.text;
    }
}

TEST_F(Decimal, RoundsInTheModeOfItsNumber) {
    const int64_t expected[] = {-2, -1, -2, -1, -2, -2, -1, -2, -2, -2};  // of -1.5, by given number
    for (int32_t mode = 0; mode < 10; ++mode) {
        const OwnedDecimal decimal = read("-1.5");
        EXPECT_EQ(-2, DFDLDecimal_getSignedQValue(decimal.get()));
        DFDLDecimal_setRoundingMode(decimal.get(), mode);
        EXPECT_EQ(expected[mode], DFDLDecimal_getSignedQValue(decimal.get())) << mode;
    }
}

TEST_F(Decimal, TellsWhatFitsIn64Bits) {
    struct Case {
        const char* text;
        bool inSigned;
        bool inUnsigned;
    };
    for (const Case& entry : std::initializer_list<Case>{{"9223372036854775807", true, true},
                                                         {"9223372036854775807.1", false, true},
                                                         {"9223372036854775808", false, true},
                                                         {"-9223372036854775808", true, false},
                                                         {"-9223372036854775809", false, false},
                                                         {"18446744073709551615", false, true},
                                                         {"18446744073709551616", false, false},
                                                         {"-0", true, true},
                                                         {"-1E-9", true, false},
                                                         {"-Infinity", false, false},
                                                         {"NaN", true, true}}) {
        const OwnedDecimal decimal = read(entry.text);
        EXPECT_EQ(entry.inSigned, DFDLDecimal_fitsInSignedQValue(decimal.get())) << entry.text;
        EXPECT_EQ(entry.inUnsigned, DFDLDecimal_fitsInUnsignedQValue(decimal.get())) << entry.text;
    }
    const OwnedDecimal unbound(new_DFDLDecimal(heap_.adapter, nullptr));
    EXPECT_FALSE(DFDLDecimal_fitsInSignedQValue(unbound.get()));
    DFDLConstants lower{};
    lower.minSignedQ = constants_->minSignedQ;
    const OwnedDecimal huge(new_DFDLDecimalFromChar(heap_.adapter, &lower, "1E99", 0));
    EXPECT_TRUE(DFDLDecimal_fitsInSignedQValue(huge.get()));
}

TEST_F(Decimal, BecomesADouble) {
    const std::pair<const char*, double> cases[] = {
        {"0.1", 0.1},
        {"-0.00", -0.0},
        {"1E+20", 1e20},
        {"123456789012345678901234567890", 123456789012345679e12},
        {"0.12345678901234567850", 0.123456789012345678},
        {"4.9E-324", 4.9e-324},
        {"1E-400", 0.0},
        {"-1E-999999999", -0.0},
        {"1E400", INFINITE},
        {"-9.99E999999999", -INFINITE},
        {"Infinity", LARGEST},
        {"-Infinity", -LARGEST},
    };
    for (const auto& [text, expected] : cases) {
        const OwnedDecimal decimal = read(text);
        const double value = DFDLDecimal_getDouble(decimal.get(), heap_.adapter);
        EXPECT_EQ(expected, value) << text;
        EXPECT_EQ(std::signbit(expected), std::signbit(value)) << text;
    }
    EXPECT_TRUE(std::isnan(DFDLDecimal_getDouble(read("NaN").get(), heap_.adapter)));
}

TEST_F(Decimal, KeepsFifteenDigitsOfADouble) {
    const std::pair<double, const char*> cases[] = {{0.1, "0.1"},
                                                    {-2.5, "-2.5"},
                                                    {1.0 / 3, "0.333333333333333"},
                                                    {1e20, "1.00000000000000E+20"},
                                                    {123456789012345678.0, "1.23456789012346E+17"},
                                                    {5e-324, "4.94065645841247E-324"},
                                                    {100, "100"},
                                                    {0, "0"},
                                                    {-0.0, "-0"},
                                                    {INFINITE, "Infinity"},
                                                    {-INFINITE, "-Infinity"}};
    const OwnedDecimal decimal(new_DFDLDecimal(heap_.adapter, constants_.get()));
    for (const auto& [value, expected] : cases) {
        DFDLDecimal_setDouble(decimal.get(), value);
        EXPECT_EQ(expected, text(decimal));
        EXPECT_EQ(value, DFDLDecimal_getDouble(decimal.get(), heap_.adapter)) << expected;
    }
}

TEST_F(Decimal, KeepsNoConversionOfAnEarlierNumber) {
    const OwnedDecimal seven = read("7");
    const auto changes = {+[](DFDLDecimal* d, const DFDLDecimal* o) { DFDLDecimal_add(d, o); },
                          +[](DFDLDecimal* d, const DFDLDecimal* o) { DFDLDecimal_subtract(d, o); },
                          +[](DFDLDecimal* d, const DFDLDecimal* o) { DFDLDecimal_multi(d, o); },
                          +[](DFDLDecimal* d, const DFDLDecimal* o) { DFDLDecimal_div(d, o); },
                          +[](DFDLDecimal* d, const DFDLDecimal* o) { DFDLDecimal_setDecimalValue(d, o); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_negate(d); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setPositive(d, false); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setDecimalAt(d, 1); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setCount(d, 2); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setDigit(d, 0, 0x37); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setSignedQValue(d, -8); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setUnsignedQValue(d, 8); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setDouble(d, 9.5); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_setString(d, "66", 0); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_round(d, 1); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_roundFixedPoint(d, -1); },
                          +[](DFDLDecimal* d, const DFDLDecimal*) { DFDLDecimal_clear(d); }};
    int32_t index = 0;
    for (const auto change : changes) {
        const OwnedDecimal decimal = read("36");
        DFDLDecimal_getSignedQValue(decimal.get());
        DFDLDecimal_getUnsignedQValue(decimal.get());
        DFDLDecimal_getDouble(decimal.get(), heap_.adapter);
        change(decimal.get(), seven.get());
        const OwnedDecimal again = read(text(decimal));
        EXPECT_EQ(DFDLDecimal_getSignedQValue(again.get()), DFDLDecimal_getSignedQValue(decimal.get()))
            << index;
        EXPECT_EQ(DFDLDecimal_getUnsignedQValue(again.get()), DFDLDecimal_getUnsignedQValue(decimal.get()))
            << index;
        EXPECT_EQ(DFDLDecimal_getDouble(again.get(), heap_.adapter),
                  DFDLDecimal_getDouble(decimal.get(), heap_.adapter))
            << index;
        EXPECT_NE("36", text(decimal)) << index;
        ++index;
    }
}

TEST_F(Decimal, KeepsItsNumberWhenATextIsNone) {
    EXPECT_EQ(nullptr, read("1,5").get());
    const OwnedDecimal decimal = read("36");
    EXPECT_FALSE(DFDLDecimal_setString(decimal.get(), "1e", 2));
    EXPECT_EQ("36", text(decimal));
}

TEST_F(Decimal, NegatesByTheSignAlone) {
    const OwnedDecimal decimal = read("5");
    for (int32_t i = 0; i < 2; ++i) {
        DFDLDecimal_negate(decimal.get());
        EXPECT_EQ(-5, DFDLDecimal_getSignedQValue(decimal.get()));
    }
    DFDLDecimal_setPositive(decimal.get(), true);
    EXPECT_EQ("5", text(decimal));
}

TEST_F(Decimal, CountsDigitsAndThoseBeforeThePoint) {
    struct Case {
        const char* text;
        int32_t count;
        int64_t decimalAt;
        int32_t signum;
    };
    for (const Case& entry : std::initializer_list<Case>{{"123.45", 5, 3, 1},
                                                         {"-0.001", 1, -2, -1},
                                                         {"12E3", 2, 5, 1},
                                                         {"0", 1, 0, 0},
                                                         {"-0.00", 1, -2, -1},
                                                         {"NaN", 1, 0, 1},
                                                         {"Infinity", 1, 0, 1}}) {
        const OwnedDecimal decimal = read(entry.text);
        EXPECT_EQ(entry.count, DFDLDecimal_getCount(decimal.get())) << entry.text;
        EXPECT_EQ(entry.decimalAt, DFDLDecimal_getDecimalAt(decimal.get())) << entry.text;
        EXPECT_EQ(entry.signum, DFDLDecimal_signum(decimal.get())) << entry.text;
    }
}

TEST_F(Decimal, IsPutTogetherFromZonedDigits) {
    const OwnedDecimal decimal(new_DFDLDecimal(heap_.adapter, constants_.get()));
    const uint8_t zoned[] = {0xF0, 0xF0, 0x31, 0xF2, 0xD5};
    DFDLDecimal_setCount(decimal.get(), 5);
    for (int32_t i = 0; i < 5; ++i) DFDLDecimal_setDigit(decimal.get(), i, zoned[i]);
    EXPECT_EQ(5, DFDLDecimal_getCount(decimal.get()));
    DFDLDecimal_setDecimalAt(decimal.get(), 1);
    EXPECT_EQ("12.5", text(decimal));
    DFDLDecimal_setDecimalAt(decimal.get(), 0);
    EXPECT_EQ(125, DFDLDecimal_getSignedQValue(decimal.get()));
    DFDLDecimal_setDecimalAt(decimal.get(), INT32_MIN);
    EXPECT_EQ("1.25E+2147483649", text(decimal));
}

TEST_F(Decimal, ShowsAnIntegerInPlainDigits) {
    const std::pair<std::string, std::string> cases[] = {{"12E3", "12000"},
                                                         {"-1E+40", "-1" + std::string(40, '0')},
                                                         {"0E+9", "0"},
                                                         {"1.5", "2"},
                                                         {"-0.3", "-0"},
                                                         {"12.00", "12"},
                                                         {"Infinity", "Infinity"},
                                                         {std::string(60, '9') + ".4", std::string(60, '9')},
                                                         {"1E-999999999", "0"}};
    for (const auto& [from, expected] : cases) EXPECT_EQ(expected, plainText(read(from))) << from;
}

// A number whose plain digits no text can hold is refused like any other amount that is too large.
TEST_F(Decimal, RefusesPlainDigitsBeyondATextsLength) {
    const OwnedDecimal decimal = read("1");
    DFDLDecimal_setDecimalAt(decimal.get(), -INT32_MAX);
    int32_t length = 0;
    EXPECT_THROW(DFDLDecimal_getDecimalWithoutExponent(decimal.get(), &length, heap_.adapter),
                 AllocationFailure);
}

TEST_F(Decimal, StringsEndWithoutZerosOfAFraction) {
    const std::pair<const char*, const char*> cases[] = {
        {"1.500", "1.5"}, {"2.000", "2"}, {"100", "100"}, {"1E+30", "1E+30"}, {"1.5E+20", "1.5E+20"}};
    for (const auto& [from, expected] : cases) {
        UErrorCode status = U_ZERO_ERROR;
        DFDLUString* string = DFDLDecimal_getDecimalInUString(read(from).get(), &status, heap_.adapter);
        std::string narrow;
        for (const char16_t unit : DFDLUString_view(string)) narrow += static_cast<char>(unit);
        EXPECT_EQ(expected, narrow);
        delete_DFDLUString(string);
    }
}

TEST(DecimalText, LosesTheZerosOfItsFractionInPlace) {
    struct Case {
        const char* text;
        const char* left;
    };
    for (const Case& one :
         {Case{"1.500", "1.5"}, Case{"100.00", "100"}, Case{"100", "100"}, Case{"0.0", "0"}, Case{".0", ""},
          Case{"1.5E+100", "1.5E+100"}, Case{"1.0x", "1.0x"}, Case{"", ""}}) {
        std::string narrow = one.text;
        std::u16string wide(narrow.begin(), narrow.end());
        const std::string left = one.left;
        EXPECT_EQ(stripTrailingZerosFromDecimal(narrow.data()), static_cast<int32_t>(left.size()));
        EXPECT_EQ(std::string(narrow.c_str()), left) << one.text;
        EXPECT_EQ(stripTrailingZerosAfterDecimal(wide.data()), static_cast<int32_t>(left.size()));
        EXPECT_EQ(std::u16string(wide.c_str()), std::u16string(left.begin(), left.end())) << one.text;
    }
}

TEST_F(Decimal, ComparesByValue) {
    const OwnedDecimal one = read("1.00");
    const OwnedDecimal nan = read("NaN");
    EXPECT_EQ(-1, DFDLDecimal_compare(one.get(), read("2").get()));
    EXPECT_EQ(1, DFDLDecimal_compare(one.get(), read("-2").get()));
    EXPECT_EQ(-2, DFDLDecimal_compare(one.get(), nan.get()));
    EXPECT_EQ(-1, DFDLDecimal_compare(nullptr, one.get()));
    EXPECT_EQ(-1, DFDLDecimal_compare(one.get(), nullptr));
    EXPECT_TRUE(DFDLDecimal_isDecimalEqual(one.get(), read("1").get()));
    EXPECT_TRUE(DFDLDecimal_isDecimalEqual(nan.get(), nan.get()));
    EXPECT_FALSE(DFDLDecimal_isDecimalEqual(nan.get(), read("NaN").get()));
    EXPECT_FALSE(DFDLDecimal_isDecimalEqual(one.get(), nan.get()));
}

TEST_F(Decimal, RoundsAndTakesZerosOff) {
    struct Case {
        const char* text;
        int32_t digits;
        void (*change)(DFDLDecimal*, int32_t);
        const char* expected;
    };
    const auto round = [](DFDLDecimal* d, int32_t digits) { DFDLDecimal_round(d, digits); };
    const auto fixed = [](DFDLDecimal* d, int32_t digits) { DFDLDecimal_roundFixedPoint(d, digits); };
    const auto absolute = [](DFDLDecimal* d, int32_t) { DFDLDecimal_Abs(d); };
    const auto reduce = [](DFDLDecimal* d, int32_t) { DFDLDecimal_reduce(d); };
    const auto integral = [](DFDLDecimal* d, int32_t) { DFDLDecimal_toIntegralValue(d); };
    const Case cases[] = {
        {"123.456", 4, round, "123.5"},
        {"1.20000001", 4, round, "1.2"},
        {"98", 0, round, "1E+2"},
        {"2.345", 2, fixed, "2.34"},
        {"2.3951", 2, fixed, "2.4"},
        {"2.5", 5, fixed, "2.5"},
        {"1234", -2, fixed, "1.2E+3"},
        {"12345678901234567890123456789012345678.996", 2, fixed, "12345678901234567890123456789012345679"},
        {"-Infinity", 2, fixed, "-Infinity"},
        {"-12345678901234567890123456789012345678.50", 0, absolute,
         "12345678901234567890123456789012345678.5"},
        {"-1200.00", 0, reduce, "-1.2E+3"},
        {"-2.5", 0, integral, "-2"},
        {"12E4", 0, integral, "1.2E+5"},
    };
    for (const Case& entry : cases) {
        const OwnedDecimal decimal = read(entry.text);
        entry.change(decimal.get(), entry.digits);
        EXPECT_EQ(entry.expected, text(decimal)) << entry.text;
    }
}

TEST_F(Decimal, WorksToThirtyFourDigitsAlsoWithItself) {
    const OwnedDecimal third = read("1");
    DFDLDecimal_div(third.get(), read("3").get());
    EXPECT_EQ("0." + std::string(34, '3'), text(third));
    DFDLDecimal_subtract(third.get(), third.get());
    EXPECT_EQ("0E-34", text(third));
    const OwnedDecimal power = read("256");
    for (int32_t i = 0; i < 4; ++i) DFDLDecimal_multi(power.get(), power.get());
    EXPECT_EQ("3.402823669209384634633746074317682E+38", text(power));
    DFDLDecimal_div(power.get(), read("0").get());
    EXPECT_EQ("Infinity", text(power));
}

TEST_F(Decimal, CopyHasTheNumberAndItsMode) {
    const OwnedDecimal decimal = read(std::string(70, '7') + ".5");
    DFDLDecimal_setRoundingMode(decimal.get(), 3);
    const OwnedDecimal copy(DFDLDecimal_copy(decimal.get(), heap_.adapter));
    DFDLDecimal_clear(decimal.get());
    EXPECT_EQ("0", text(decimal));
    DFDLDecimal_toIntegralValue(copy.get());
    EXPECT_EQ(std::string(70, '7'), text(copy));
}

TEST(DecimalMemory, NothingIsLostWhenMemoryRunsOut) {
    const int failing = sweepFailingAllocations([](DFDLHeapImpl callbacks) {
        Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> heap(new_DFDLHeapAdapterFromHeap(&callbacks));
        const std::string digits(200, '7');
        const OwnedDecimal decimal(new_DFDLDecimalFromChar(heap.get(), nullptr, digits.c_str(), 0));
        const OwnedDecimal copy(DFDLDecimal_copy(decimal.get(), heap.get()));
        DFDLDecimal_multi(decimal.get(), copy.get());
        DFDLDecimal_div(decimal.get(), copy.get());
        DFDLDecimal_Abs(copy.get());
    });
    EXPECT_GT(failing, 6);
}

}  // namespace
