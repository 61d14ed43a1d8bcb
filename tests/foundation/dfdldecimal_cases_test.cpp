// Decimals against what Python's decimal makes of them: dfdldecimal.py.
#include <gtest/gtest.h>

#include <bit>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using OwnedDecimal = Owned<DFDLDecimal, delete_DFDLDecimal>;
using Write = char* (*)(const DFDLDecimal*, int32_t*, DFDLHeapAdapter*);

std::string write(const DFDLDecimal* decimal, Write writer = DFDLDecimal_getDecimal) {
    DFDLHeapAdapter* heap = decimal->heap;
    int32_t length = 0;
    char* text = writer(decimal, &length, heap);
    const std::string copy(text, static_cast<size_t>(length));
    DFDLBufferFactory_FreeBuffer(heap->bufferFactory, reinterpret_cast<uint8_t*>(text));
    return copy;
}

std::string string(DFDLDecimal* decimal) {
    UErrorCode status = U_ZERO_ERROR;
    const Owned<DFDLUString, delete_DFDLUString> text(
        DFDLDecimal_getDecimalInUString(decimal, &status, decimal->heap));
    const std::u16string_view units = DFDLUString_view(text.get());
    return {units.begin(), units.end()};
}

std::string bitsOfDouble(DFDLDecimal* decimal) {
    char text[17];
    const double value = DFDLDecimal_getDouble(decimal, decimal->heap);
    std::snprintf(text, sizeof text, "%016llx",
                  static_cast<unsigned long long>(std::bit_cast<uint64_t>(value)));
    return text;
}

template <auto Operation>
std::string combined(DFDLDecimal* a, const DFDLDecimal* b) {
    Operation(a, b);
    return write(a);
}

template <auto Operation>
std::string changed(DFDLDecimal* decimal, const std::string& operand) {
    if constexpr (std::is_invocable_v<decltype(Operation), DFDLDecimal*>) {
        Operation(decimal);
    } else {
        Operation(decimal, std::stoi(operand));
    }
    return write(decimal);
}

template <auto Getter>
std::string number(DFDLDecimal* decimal, const std::string&) {
    return std::to_string(Getter(decimal));
}

using Binary = std::string (*)(DFDLDecimal*, const DFDLDecimal*);
using Unary = std::function<std::string(DFDLDecimal*, const std::string& operand)>;

const std::map<std::string, Binary> BINARY = {{"add", combined<DFDLDecimal_add>},
                                              {"subtract", combined<DFDLDecimal_subtract>},
                                              {"multiply", combined<DFDLDecimal_multi>},
                                              {"divide", combined<DFDLDecimal_div>}};

const std::map<std::string, Unary> UNARY = {
    {"negate", changed<DFDLDecimal_negate>},
    {"abs", changed<DFDLDecimal_Abs>},
    {"reduce", changed<DFDLDecimal_reduce>},
    {"integral", changed<DFDLDecimal_toIntegralValue>},
    {"round", changed<DFDLDecimal_round>},
    {"fixed", changed<DFDLDecimal_roundFixedPoint>},
    {"signed", number<DFDLDecimal_getSignedQValue>},
    {"unsigned", number<DFDLDecimal_getUnsignedQValue>},
    {"int", number<DFDLDecimal_getSignedInt>},
    {"unsignedint", number<DFDLDecimal_getUnsignedInt>},
    {"fitssigned", number<DFDLDecimal_fitsInSignedQValue>},
    {"fitsunsigned", number<DFDLDecimal_fitsInUnsignedQValue>},
    {"signum", number<DFDLDecimal_signum>},
    {"decimalat", number<DFDLDecimal_getDecimalAt>},
    {"string", [](DFDLDecimal* d, const std::string&) { return string(d); }},
    {"plain",
     [](DFDLDecimal* d, const std::string&) { return write(d, DFDLDecimal_getDecimalWithoutExponent); }},
    {"double", [](DFDLDecimal* d, const std::string&) { return bitsOfDouble(d); }},
    {"setdouble", [](DFDLDecimal* d, const std::string& operand) {
         DFDLDecimal_setDouble(d, std::stod(operand));
         return write(d);
     }}};

TEST(DecimalCases, AsPythonWorksThemOut) {
    TestAdapter heap;
    const Owned<DFDLConstants, delete_DFDLConstants> constants(new_DFDLConstants(heap.adapter));
    const auto read = [&](const std::string& text) {
        return OwnedDecimal(new_DFDLDecimalFromChar(heap.adapter, constants.get(), text.c_str(), 0));
    };
    std::ifstream file(DFDL_SOURCE_DIR "/tests/foundation/dfdldecimal.txt");
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        std::istringstream words(line);
        std::string operation, operand, second, expected;
        int32_t mode = 0;
        words >> operation >> mode >> operand >> second >> expected;
        if (second != "=") words >> expected;
        const OwnedDecimal decimal = read(operand);
        ASSERT_NE(decimal.get(), nullptr) << line;
        DFDLDecimal_setRoundingMode(decimal.get(), mode);
        const auto binary = BINARY.find(operation);
        const bool isBinary = binary != BINARY.end();
        EXPECT_EQ(expected, isBinary ? binary->second(decimal.get(), read(second).get())
                                     : UNARY.at(operation)(decimal.get(), second == "=" ? operand : second))
            << line;
    }
    EXPECT_GT(count, 1000);
}

}  // namespace
