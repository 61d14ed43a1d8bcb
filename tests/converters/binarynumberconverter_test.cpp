// Binary numbers against what Python makes of them: binarynumbers.py.
#include "dfdl/converters/binarynumberconverter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/pif/binarynumbertable.h"
#include "support/bufferrig.h"

namespace {

const std::map<std::string, BinaryNumberRepEnum> REPRESENTATIONS = {
    {"binary", BINARY}, {"signed", BINARY}, {"unsigned", BINARY},
    {"bcd", BCD},       {"packed", PACKED}, {"zov4690", ZOV4690_PACKED}};

std::vector<uint8_t> fromHex(const std::string& text) {
    std::vector<uint8_t> bytes;
    if (text == "-") return bytes;
    for (size_t i = 0; i < text.size(); i += 2) {
        bytes.push_back(static_cast<uint8_t>(std::stoi(text.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

// One line of the table.
struct Case {
    std::string representation, order, policy, codes, hex, equals, expected;
    int32_t point = 0;
    int32_t simpleType = 0;

    bool read(const std::string& line) {
        std::istringstream words(line);
        words >> representation >> order >> policy >> codes >> point >> simpleType >> hex >> equals >>
            std::ws;
        return std::getline(words, expected) && equals == "=";
    }
};

struct NumberRig {
    BufferRig rig;
    BinaryNumberTableRow row;
    DFDLDecimal* number = new_DFDLDecimal(rig.heap, rig.constants);
    std::vector<uint8_t> bytes;

    NumberRig() = default;
    ~NumberRig() { delete_DFDLDecimal(number); }
    NumberRig(const NumberRig&) = delete;
    NumberRig& operator=(const NumberRig&) = delete;

    BinaryField field(const Case& c) {
        bytes = fromHex(c.hex);
        row.iBinaryNumberRepresentation = REPRESENTATIONS.at(c.representation);
        row.iDecimalSigned = c.representation == "signed";
        row.iBinaryNumberCheckPolicy =
            c.policy == "strict" ? BINARY_CHECK_POLICY_STRICT : BINARY_CHECK_POLICY_LAX;
        row.iPackedSignCodes = std::stoi(c.codes, nullptr, 16);
        row.iBinaryDecimalVirtualPoint = c.point;
        return {bytes.data(),
                static_cast<int64_t>(bytes.size()),
                c.order == "big" ? BYTEOR_BIG_ENDIAN : BYTEOR_LITTLE_ENDIAN,
                c.simpleType,
                &row,
                &rig.item};
    }
    std::string decimalText() {
        int32_t length = 0;
        char* text = DFDLDecimal_getDecimal(number, &length, rig.heap);
        std::string result(text, static_cast<size_t>(length));
        DFDLBufferFactory_FreeBuffer(rig.heap->bufferFactory, reinterpret_cast<uint8_t*>(text));
        return result;
    }
    static std::string wordText(int64_t word, int32_t simpleType) {
        return simpleType >= SIMPLE_UNSIGNED_LONG ? std::to_string(static_cast<uint64_t>(word))
                                                  : std::to_string(word);
    }
    std::string readDecimal(const BinaryField& field) {
        DFDLDecimal_setSignedQValue(number, 777);
        return BinaryNumberConverter_createDecimalFromBinary(&field, number) ? decimalText()
                                                                             : rig.takeError();
    }
    std::string readText(const BinaryField& field) {
        using Text = Owned<DFDLUString, delete_DFDLUString>;
        const Text text(BinaryNumberConverter_createStringIntegerFromBinary(&field, rig.heap));
        const std::string error = rig.takeError();
        if (!error.empty()) return error;
        if (text.get() == nullptr) return "none";
        const std::u16string_view units = DFDLUString_view(text.get());
        return units.empty() ? "empty" : std::string(units.begin(), units.end());
    }
    std::string readBig(const BinaryField& field) {
        DFDLDecimal_setSignedQValue(number, 777);
        int64_t word = 0;
        bool inDecimal = false;
        if (!BinaryNumberConverter_createBigIntegerFromBinary(&field, number, &word, &inDecimal)) {
            return rig.takeError();
        }
        return inDecimal ? decimalText() : wordText(word, field.simpleType);
    }
    std::string readLong(const BinaryField& field) {
        DFDLDecimal_setSignedQValue(number, 777);
        int64_t word = 0;
        if (!BinaryNumberConverter_createLongFromBinary(&field, number, &word)) return rig.takeError();
        return wordText(word, field.simpleType);
    }
    std::string readWide(const BinaryField& field) {
        constexpr int64_t MORE = PACKED_WORD_BYTES + 1;
        const PackedReader read = SimpleTypeConverter_packedReader(row.iBinaryNumberRepresentation, MORE);
        return read(&field, false, number) ? decimalText() : rig.takeError();
    }
};

TEST(BinaryNumbers, AsPythonReadsThem) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/converters/binarynumbers.txt");
    NumberRig rig;
    std::string line;
    int count = 0;
    while (std::getline(file, line)) {
        Case c;
        ASSERT_TRUE(c.read(line)) << line;
        const BinaryField field = rig.field(c);
        ++count;
        if (c.simpleType == SIMPLE_DATETIME) {
            EXPECT_EQ(rig.readText(field), c.expected) << line;
            continue;
        }
        if (c.simpleType == SIMPLE_DECIMAL) {
            EXPECT_EQ(rig.readDecimal(field), c.expected) << line;
            continue;
        }
        EXPECT_EQ(rig.readBig(field), c.expected) << line;
        const bool isMinusZero = c.expected == "-0";  // which no word can tell from zero
        if (field.length <= 8 && !isMinusZero) {
            EXPECT_EQ(rig.readLong(field), c.expected) << line;
        }
        if (c.representation != "binary") {
            EXPECT_EQ(rig.readWide(field), c.expected) << line;
        }
    }
    EXPECT_GT(count, 1000);
}

TEST(BinaryNumbers, RoundToThirtyFourDigits) {
    NumberRig rig;
    Case c;
    ASSERT_TRUE(
        c.read("bcd big strict CDFC 0 9 123456789012345678901234567890123456 = "
               "1.234567890123456789012345678901235E+35"));
    EXPECT_EQ(rig.readBig(rig.field(c)), c.expected);
}

TEST(BinaryNumbers, WithoutBytes) {
    for (const char* representation : {"packed", "zov4690"}) {
        NumberRig rig;
        Case c;
        ASSERT_TRUE(c.read(std::string(representation) + " big strict CDFC 0 9 - = nothing"));
        const BinaryField field = rig.field(c);
        EXPECT_EQ(rig.readLong(field), "") << representation;
        EXPECT_EQ(rig.readWide(field), "") << representation;
    }
}

// A word of a type with bounds is checked against them, and no virtual point is set. Without messages the
// words for a range are empty.
TEST(BinaryNumbers, WordsForADecimal) {
    const std::pair<const char*, const char*> CASES[] = {
        {"signed big strict CDFC 2 8 FF85", "-123"},
        {"unsigned big strict CDFC 2 8 FF85", "65413"},
        {"signed little strict CDFC 0 8 0000000000000080", "-9223372036854775808"},
        {"unsigned little strict CDFC 0 8 FFFFFFFFFFFFFF", "72057594037927935"},
        {"binary big strict CDFC 0 10 8000000001", "-549755813887"},
        {"binary big strict CDFC 0 11 80000000", "-2147483648"},
        {"binary big strict CDFC 0 11 0080000000", "CTDP3038E 2147483648 item "},
        {"binary little strict CDFC 0 12 FF7F", "32767"},
        {"binary little strict CDFC 0 12 FF7FFF", "CTDP3038E -32769 item "},
        {"binary big strict CDFC 0 13 FF7F", "CTDP3038E -129 item "},
        {"binary big strict CDFC 0 14 FFFFFFFFFFFFFFFF", "18446744073709551615"},
        {"binary big strict CDFC 0 15 0100000000", "CTDP3038E 4294967296 item "},
        {"binary big strict CDFC 0 16 FFFF", "65535"},
        {"binary big strict CDFC 0 17 0100", "CTDP3038E 256 item "}};
    for (const auto& [line, expected] : CASES) {
        NumberRig rig;
        Case c;
        ASSERT_TRUE(c.read(std::string(line) + " = " + expected)) << line;
        const BinaryField field = rig.field(c);
        const bool good = BinaryNumberConverter_createLongFromBinaryBinary(&field, rig.number);
        EXPECT_EQ(good ? rig.decimalText() : rig.rig.takeError(), expected) << line;
    }
}

}  // namespace
