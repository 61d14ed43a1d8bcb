// Floating point numbers against what Python makes of their bytes: binaryfloats.py.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/floatconverter.h"
#include "dfdl/foundation/dfdltype.h"

namespace {

std::vector<uint8_t> bytesOf(const std::string& hex) {
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(static_cast<uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

uint64_t toHexFloat(const std::string& type, uint64_t bits) {
    return type == "double" ? FloatConverter_doubleIEEEToZOVHex(bits)
                            : FloatConverter_floatIEEEToZOVHex(static_cast<uint32_t>(bits));
}

// The sign of a zero tells too.
void expectSame(double actual, double expected, const std::string& line) {
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(actual)) << line;
    } else {
        EXPECT_EQ(std::bit_cast<uint64_t>(actual), std::bit_cast<uint64_t>(expected))
            << line << ' ' << actual;
    }
}

double readFloating(const std::string& type, BinaryFloatRepresentationEnum form, const BinaryField& field) {
    if (type == "double") {
        double value = 777;
        EXPECT_TRUE(BinaryNumberConverter_createDoubleFromBinary(form, &field, &value));
        return value;
    }
    float value = 777;
    EXPECT_TRUE(BinaryNumberConverter_createFloatFromBinary(form, &field, &value));
    return static_cast<double>(value);
}

TEST(BinaryFloats, AsPythonReadsThem) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/converters/binaryfloats.txt");
    std::string line;
    int count = 0;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string type, form, order, hex, equals, expected;
        ASSERT_TRUE(words >> type >> form >> order >> hex >> equals >> expected) << line;
        ++count;
        if (type == "pattern") {
            const uint64_t bits = std::stoull(hex, nullptr, 16);
            EXPECT_EQ(toHexFloat(form, bits), std::stoull(expected, nullptr, 16)) << line;
            continue;
        }
        const std::vector<uint8_t> bytes = bytesOf(hex);
        const BinaryField field{bytes.data(),
                                static_cast<int64_t>(bytes.size()),
                                order == "big" ? BYTEOR_BIG_ENDIAN : BYTEOR_LITTLE_ENDIAN,
                                type == "double" ? SIMPLE_DOUBLE : SIMPLE_FLOAT,
                                nullptr,
                                nullptr};
        const double value = readFloating(type, form == "ieee" ? IEEE : ZOV390_HEX, field);
        expectSame(value, std::strtod(expected.c_str(), nullptr), line);
    }
    EXPECT_GT(count, 500);
}

TEST(BinaryFloats, RefusesOtherTypesAndTooFewBytes) {
    const uint8_t bytes[8] = {};
    float single = 777;
    double twice = 777;
    BinaryField field{bytes, 8, BYTEOR_BIG_ENDIAN, SIMPLE_DOUBLE, nullptr, nullptr};
    EXPECT_FALSE(BinaryNumberConverter_createFloatFromBinary(IEEE, &field, &single));
    field.length = 7;
    EXPECT_FALSE(BinaryNumberConverter_createDoubleFromBinary(IEEE, &field, &twice));
    field.simpleType = SIMPLE_FLOAT;
    EXPECT_FALSE(BinaryNumberConverter_createDoubleFromBinary(IEEE, &field, &twice));
    EXPECT_TRUE(BinaryNumberConverter_createFloatFromBinary(IEEE, &field, &single));
    field.length = 3;
    EXPECT_FALSE(BinaryNumberConverter_createFloatFromBinary(ZOV390_HEX, &field, &single));
}

}  // namespace
