#include "dfdl/decimal/decnumber.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dfdl/foundation/dfdldecimal.h"
#include "support/testheap.h"

namespace {

struct TextCase {
    const char* text;
    const char* canonical;
};
struct CompareCase {
    const char* a;
    const char* b;
    int32_t order;
};
struct RoundCase {
    const char* text;
    uint64_t magnitudes[7];  // by DecRounding
};

#include "decimal/decnumber_cases.inc"

class Number {
  public:
    Number(DFDLHeapAdapter* heap, const char* text) {
        dfdl_decNumberInit(&number_, heap);
        dfdl_decNumberFromString(&number_, text, &status_);
    }
    ~Number() { dfdl_decNumberRelease(&number_); }
    Number(const Number&) = delete;
    Number& operator=(const Number&) = delete;

    const dfdl_decNumber* get() const { return &number_; }
    uint32_t status() const { return status_; }
    std::string text() const {
        std::vector<char> buffer(static_cast<size_t>(dfdl_decNumberTextSize(&number_)));
        const int32_t length = dfdl_decNumberToString(&number_, buffer.data());
        return {buffer.data(), static_cast<size_t>(length)};
    }

  private:
    dfdl_decNumber number_{};
    uint32_t status_ = 0;
};

TEST(DecNumber, ReadsAndWritesEveryDigit) {
    TestAdapter heap;
    for (const TextCase& entry : TEXT_CASES) {
        const Number number(heap.adapter, entry.text);
        EXPECT_EQ(0U, number.status()) << entry.text;
        EXPECT_EQ(entry.canonical, number.text());
    }
}

TEST(DecNumber, RefusesWhatIsNoNumber) {
    TestAdapter heap;
    for (const char* text : {"", "-", ".", "1e", "1e+", "1.2.3", "12a", "--1", "in", "nanx", " 1", "1 "}) {
        const Number number(heap.adapter, text);
        EXPECT_EQ(DEC_CONVERSION_SYNTAX, number.status()) << '\'' << text << '\'';
    }
}

TEST(DecNumber, GoesToInfinityAndZeroBeyondItsExponents) {
    TestAdapter heap;
    EXPECT_EQ("Infinity", Number(heap.adapter, "1E1000000000").text());
    EXPECT_EQ("-Infinity", Number(heap.adapter, "-10E999999999").text());
    EXPECT_TRUE(dfdl_decNumberIsZero(Number(heap.adapter, "1E-99999999999999999999").get()));
    EXPECT_EQ("NaN12", Number(heap.adapter, "nan012").text());
}

TEST(DecNumber, ComparesByValue) {
    TestAdapter heap;
    for (const CompareCase& entry : COMPARE_CASES) {
        const Number a(heap.adapter, entry.a);
        const Number b(heap.adapter, entry.b);
        EXPECT_EQ(entry.order, dfdl_decNumberCompare(a.get(), b.get())) << entry.a << " and " << entry.b;
    }
    const Number nan(heap.adapter, "NaN");
    EXPECT_EQ(-2, dfdl_decNumberCompare(nan.get(), nan.get()));
}

TEST(DecNumber, RoundsToIntegersInEveryMode) {
    TestAdapter heap;
    for (const RoundCase& entry : ROUND_CASES) {
        const Number number(heap.adapter, entry.text);
        for (int32_t mode = 0; mode < 7; ++mode) {
            uint64_t magnitude = 99;
            EXPECT_TRUE(dfdl_decNumberToInteger(number.get(), static_cast<DecRounding>(mode), &magnitude));
            EXPECT_EQ(entry.magnitudes[mode], magnitude) << entry.text << " in mode " << mode;
        }
    }
    uint64_t magnitude = 99;
    EXPECT_FALSE(
        dfdl_decNumberToInteger(Number(heap.adapter, "1E999999999").get(), DEC_ROUND_DOWN, &magnitude));
    EXPECT_FALSE(dfdl_decNumberToInteger(Number(heap.adapter, "18446744073709551616").get(), DEC_ROUND_DOWN,
                                         &magnitude));
}

TEST(DFDLDecimal, StripsZerosBehindAPointOnly) {
    const std::pair<const char*, const char*> cases[] = {
        {"1.500", "1.5"}, {"2.000", "2"}, {"100", "100"}, {"1E+3", "1E+3"}};
    for (const auto& [text, expected] : cases) {
        std::string copy = text;
        const int32_t length = stripTrailingZerosFromDecimal(copy.data());
        EXPECT_EQ(expected, copy.substr(0, static_cast<size_t>(length)));
    }
}

}  // namespace
