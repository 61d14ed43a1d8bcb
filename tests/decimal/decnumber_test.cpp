#include "dfdl/decimal/decnumber.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/testheap.h"

namespace {

class Number {
  public:
    explicit Number(DFDLHeapAdapter* heap, const std::string& text = "0") {
        dfdl_decNumberInit(&number_, heap);
        dfdl_decContext context = dfdl_decContextDefault();
        dfdl_decNumberFromString(&number_, text.c_str(), &context);
        status_ = context.status;
    }
    ~Number() { dfdl_decNumberRelease(&number_); }
    Number(const Number&) = delete;
    Number& operator=(const Number&) = delete;

    dfdl_decNumber* get() { return &number_; }
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

struct Case {
    std::string operation;
    int32_t rounding = 0;
    int32_t precision = 0;
    std::vector<std::string> operands;
    std::string result;
};

std::vector<Case> readCases() {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/decimal/cases.txt");
    std::vector<Case> cases;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        Case entry;
        words >> entry.operation >> entry.rounding >> entry.precision;
        for (std::string word; words >> word && word != "=";) entry.operands.push_back(word);
        words >> entry.result;
        cases.push_back(entry);
    }
    return cases;
}

using Context = dfdl_decContext;
using Value = dfdl_decNumber;
using Unary = std::function<void(Value*, const Value*, const Context*)>;
using Binary = std::function<void(Value*, const Value*, const Value*, const Context*)>;

const std::map<std::string, Unary> UNARY = {
    {"plus", dfdl_decNumberPlus},
    {"abs", dfdl_decNumberAbs},
    {"reduce", dfdl_decNumberReduce},
    {"integral", dfdl_decNumberToIntegralValue},
    {"text", [](Value* result, const Value* a, const Context*) { dfdl_decNumberCopy(result, a); }},
    {"trim", [](Value* result, const Value* a, const Context*) {
         dfdl_decNumberCopy(result, a);
         dfdl_decNumberTrim(result);
     }}};

const std::map<std::string, Binary> BINARY = {
    {"add", dfdl_decNumberAdd},
    {"subtract", dfdl_decNumberSubtract},
    {"multiply", dfdl_decNumberMultiply},
    {"divide", dfdl_decNumberDivide},
    {"quantize", dfdl_decNumberQuantize},
    {"compare", [](Value* result, const Value* a, const Value* b, const Context*) {
         const int32_t order = dfdl_decNumberCompare(a, b);
         dfdl_decNumberFromUInt64(result, static_cast<uint64_t>(order < 0 ? -order : order));
         if (order < 0) result->bits = DEC_NEGATIVE;
     }}};

// Into `result`, which may be one of the operands.
void work(const Case& entry, Value* result, Value* a, Value* b) {
    const Context context = dfdl_decContextDefault(entry.precision, static_cast<DecRounding>(entry.rounding));
    if (entry.operation == "rescale") {
        dfdl_decNumberRescale(result, a, std::stoll(entry.operands[1]), &context);
    } else if (UNARY.count(entry.operation) != 0) {
        UNARY.at(entry.operation)(result, a, &context);
    } else {
        BINARY.at(entry.operation)(result, a, b, &context);
    }
}

TEST(DecNumber, WorksOutWhatThePublishedArithmeticSays) {
    TestAdapter heap;
    const std::vector<Case> cases = readCases();
    ASSERT_GT(cases.size(), 500U);
    for (const Case& entry : cases) {
        std::string said =
            entry.operation + ' ' + std::to_string(entry.rounding) + ' ' + std::to_string(entry.precision);
        for (const std::string& operand : entry.operands) said += ' ' + operand;
        // The result goes to a number of its own, then in place of each operand.
        for (int target = 0; target <= static_cast<int>(entry.operands.size()); ++target) {
            Number fresh(heap.adapter, "123456789012345678901234567890123456789012345678901234567890");
            Number a(heap.adapter, entry.operands[0]);
            Number b(heap.adapter, entry.operands.back());
            Number& result = target == 0 ? fresh : (target == 1 ? a : b);
            if (&result == &b && BINARY.count(entry.operation) == 0) continue;
            work(entry, result.get(), a.get(), b.get());
            EXPECT_EQ(entry.result, result.text()) << said << ", into " << target;
        }
    }
}

TEST(DecNumber, RefusesWhatIsNoNumber) {
    TestAdapter heap;
    for (const char* text :
         {"", "-", ".", "1e", "1e+", "1.2.3", "12a", "--1", "in", "infinit", "nanx", "sinf", " 1", "1 "}) {
        EXPECT_EQ(DEC_CONVERSION_SYNTAX, Number(heap.adapter, text).status()) << '\'' << text << '\'';
    }
}

TEST(DecNumber, ReadsEveryFormOfText) {
    TestAdapter heap;
    const std::pair<const char*, const char*> cases[] = {{"+7", "7"},
                                                         {".5", "0.5"},
                                                         {"5.", "5"},
                                                         {"00012.3400", "12.3400"},
                                                         {"000", "0"},
                                                         {".000", "0.000"},
                                                         {"0.0001", "0.0001"},
                                                         {"1e-3", "0.001"},
                                                         {"-inf", "-Infinity"},
                                                         {"nan012", "NaN12"},
                                                         {"NaN0", "NaN"},
                                                         {"1E1000000000", "Infinity"},
                                                         {"-10E999999999", "-Infinity"},
                                                         {"0E1000000005", "0E+999999999"},
                                                         {"1E-99999999999999999999", "0E-1000000032"},
                                                         {"1E99999999999999999999", "Infinity"}};
    for (const auto& [text, canonical] : cases) {
        const Number number(heap.adapter, text);
        EXPECT_EQ(0U, number.status()) << text;
        EXPECT_EQ(canonical, number.text()) << text;
    }
}

TEST(DecNumber, IsPutTogetherFromDigits) {
    TestAdapter heap;
    Number number(heap.adapter, "-7.5");
    dfdl_decNumberSetCount(number.get(), 61);
    for (int32_t i = 0; i < 61; ++i)
        dfdl_decNumberSetDigit(number.get(), i, i < 2 ? 0U : static_cast<uint32_t>(i % 10));
    dfdl_decNumberSetDigit(number.get(), 60, 8);
    dfdl_decNumberSetDigit(number.get(), 61, 9);
    dfdl_decNumberSetDigit(number.get(), -1, 9);
    EXPECT_EQ(
        "-23456789012345678901234567890123456789012345678901234567"
        "89.8",
        number.text());
    Number same(heap.adapter, number.text());
    EXPECT_EQ(0, dfdl_decNumberCompare(same.get(), number.get()));
    dfdl_decNumberSetCount(number.get(), 0);
    EXPECT_EQ("0", number.text());
}

// A product and a quotient of numbers so long that a product of all pairs of digits would take minutes.
TEST(DecNumber, TakesNoAgesForVeryLongNumbers) {
    TestAdapter heap;
    constexpr int32_t DIGITS = 300000;
    Number nines(heap.adapter, std::string(DIGITS, '9'));
    Number product(heap.adapter);
    const Context all = dfdl_decContextDefault(2 * DIGITS);
    dfdl_decNumberMultiply(product.get(), nines.get(), nines.get(), &all);
    EXPECT_EQ(std::string(DIGITS - 1, '9') + '8' + std::string(DIGITS - 1, '0') + '1', [&] {
        dfdl_decNumber* n = product.get();
        std::string t(static_cast<size_t>(n->digits), ' ');
        dfdl_decNumberDigitsToString(n, t.data(), n->digits);
        return t;
    }());
    const Context context = dfdl_decContextDefault();
    dfdl_decNumberDivide(product.get(), product.get(), nines.get(), &context);
    EXPECT_EQ("1.000000000000000000000000000000000E+300000", product.text());
    dfdl_decNumberAdd(product.get(), nines.get(), Number(heap.adapter, "-1E-999999999").get(), &context);
    EXPECT_EQ("1.000000000000000000000000000000000E+300000", product.text());
}

// Every digit of long products, of factors of all pairs of sizes, is held against the remainders of both
// factors by a prime: a wrong unit changes the product's remainder.
TEST(DecNumber, MultipliesLongFactorsOfUnequalSizes) {
    TestAdapter heap;
    constexpr uint64_t PRIME = 2147483647;
    const auto remainder = [](dfdl_decNumber* number) {
        const DecUnits units = dfdl_decNumberUnits(number);
        uint64_t value = 0;
        for (int64_t i = units.count - 1; i >= 0; --i) value = (value * DEC_UNIT_BASE + units.at[i]) % PRIME;
        return value;
    };
    const auto digits = [](int32_t count, uint32_t seed) {
        std::string text = "9";
        while (static_cast<int32_t>(text.size()) < count) {
            seed = seed * 1664525U + 1013904223U;
            text += static_cast<char>('0' + (seed >> 24) % 10);
        }
        return text;
    };
    const Context all = dfdl_decContextDefault(100000);
    for (const int32_t a : {1, 350, 361, 369, 720, 1000, 3331, 9999}) {
        for (const int32_t b : {8, 360, 370, 725, 1667, 5000, 9998}) {
            Number x(heap.adapter, digits(a, 1));
            Number y(heap.adapter, digits(b, 2));
            const uint64_t expected = remainder(x.get()) * remainder(y.get()) % PRIME;
            dfdl_decNumberMultiply(x.get(), x.get(), y.get(), &all);
            EXPECT_EQ(expected, remainder(x.get())) << a << " and " << b << " digits";
        }
    }
}

}  // namespace
