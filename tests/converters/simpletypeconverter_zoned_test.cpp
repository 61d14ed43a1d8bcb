// Zoned decimals, byte by byte.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <span>
#include <sstream>
#include <string>

#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/textnumbertable.h"
#include "support/bufferrig.h"

namespace {

using Reader = bool (*)(ProcessingError*, const char*, const TextNumberTableRow*, DFDLDecimal*, int32_t,
                        const GroupMemberTableRow*);

struct Style {
    Reader reader;
    NumberZonedSignStyleEnum style;
    std::string plus;  // the positive signed forms of 0 to 9
    const char* plain;
};

const std::map<std::string, Style> STYLES = {
    {"ebcdic",
     {SimpleTypeConverter_zonedDecimalToNumberEBCDIC, ASCII_STANDARD,
      "\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9", "\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8\xF9"}},
    {"standard", {SimpleTypeConverter_zonedDecimalToNumberASCII, ASCII_STANDARD, "0123456789", "0123456789"}},
    {"translated",
     {SimpleTypeConverter_zonedDecimalToNumberASCII, ASCII_TRANSLATED_EBCDIC, "{ABCDEFGHI", "0123456789"}},
    {"realia",
     {SimpleTypeConverter_zonedDecimalToNumberASCII, ASCII_CA_REALIA_MODIFIED, "0123456789", "0123456789"}}};

// Reads fields of one element named "item".
struct ZonedRig {
    BufferRig rig;
    TextNumberTableRow row;
    DFDLDecimal* number = new_DFDLDecimal(rig.heap, rig.constants);

    ~ZonedRig() {
        delete_DFDLDecimal(number);
        delete_DFDLUString(row.iNumberPattern);
    }
    void setPattern(const std::string& pattern) {
        delete_DFDLUString(row.iNumberPattern);
        const std::u16string wide(pattern.begin(), pattern.end());
        row.iNumberPattern = DFDLUStringPooler_getDFDLUStringFromView(rig.heap, wide);
    }
    // The number, or the error.
    std::string read(Reader reader, const std::string& bytes, int32_t simpleType = SIMPLE_LONG) {
        DFDLDecimal_setSignedQValue(number, 777);
        const bool good =
            reader(rig.context->currentError, bytes.c_str(), &row, number, simpleType, &rig.item);
        if (!good) {
            EXPECT_EQ(DFDLDecimal_getSignedQValue(number), 777) << "changed by a field that is refused";
            return rig.takeError();
        }
        int32_t length = 0;
        char* text = DFDLDecimal_getDecimal(number, &length, rig.heap);
        std::string result(text, static_cast<size_t>(length));
        DFDLBufferFactory_FreeBuffer(rig.heap->bufferFactory, reinterpret_cast<uint8_t*>(text));
        return result;
    }
};

// The field 123, with a sign where the pattern has it.
std::string field(const Style& style, const std::string& pattern) {
    std::string bytes;
    for (size_t i = 0; i < 3; ++i) {
        const bool carriesSign = (i == 0 && pattern.front() == '+') || (i == 2 && pattern.back() == '+');
        bytes += carriesSign ? style.plus[i + 1] : style.plain[i + 1];
    }
    return bytes;
}

// Both ways of not wanting a sign, and the one of wanting it.
struct Policy {
    NumberCheckPolicyEnum policy;
    int32_t simpleType;
};
constexpr Policy WANTS[] = {{NUMBER_CHECKPOLICY_STRICT, SIMPLE_LONG}};
constexpr Policy TAKES[] = {{NUMBER_CHECKPOLICY_LAX, SIMPLE_LONG},
                            {NUMBER_CHECKPOLICY_STRICT, SIMPLE_UNSIGNED_INT}};

void expectAllBytes(ZonedRig* zoned, const Style& style, std::string bytes, size_t index,
                    const std::map<int, std::string>& taken, int32_t simpleType) {
    for (int byte = 1; byte < 256; ++byte) {
        bytes[index] = static_cast<char>(byte);
        const std::string result = zoned->read(style.reader, bytes, simpleType);
        const auto expected = taken.find(byte);
        if (expected != taken.end()) {
            EXPECT_EQ(result, expected->second) << "byte " << byte;
        } else {
            EXPECT_EQ(result.substr(0, 10), "CTDP3052E ") << "byte " << byte;
        }
    }
}

TEST(Zoned, EveryByteAtEveryPlace) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/converters/zoned.txt");
    int lines = 0;
    for (std::string line; std::getline(file, line); ++lines) {
        SCOPED_TRACE(line.substr(0, 30));
        std::istringstream words(line);
        std::string name, pattern, wants, cell;
        size_t index = 0;
        words >> name >> pattern >> wants >> index;
        std::map<int, std::string> taken;
        while (words >> cell) taken[std::stoi(cell.substr(0, 2), nullptr, 16)] = cell.substr(3);
        ZonedRig zoned;
        zoned.setPattern(pattern);
        const Style& style = STYLES.at(name);
        zoned.row.iNumberZonedSignStyle = style.style;
        for (const Policy& policy : wants == "wants" ? std::span<const Policy>(WANTS) : TAKES) {
            zoned.row.iNumberCheckPolicy = policy.policy;
            expectAllBytes(&zoned, style, field(style, pattern), index, taken, policy.simpleType);
        }
    }
    EXPECT_EQ(lines, 72);
}

TEST(Zoned, LosesNoDigit) {
    ZonedRig zoned;
    zoned.setPattern("0+");
    struct Case {
        Reader reader;
        std::string bytes;
        const char* expected;
    };
    const std::string ebcdicThree(19, '\xF3');
    const Case cases[] = {
        {SimpleTypeConverter_zonedDecimalToNumberASCII, "99999999999999999y", "-999999999999999999"},
        {SimpleTypeConverter_zonedDecimalToNumberASCIIWide, "123456789012345678y", "-1234567890123456789"},
        {SimpleTypeConverter_zonedDecimalToNumberASCIIWide, "9999999999999999999", "9999999999999999999"},
        {SimpleTypeConverter_zonedDecimalToNumberASCIIWide, "00000000000000000000000123", "123"},
        {SimpleTypeConverter_zonedDecimalToNumberASCIIWide, "123456789012345678901234567890123456789p",
         "-1234567890123456789012345678901234567890"},
        {SimpleTypeConverter_zonedDecimalToNumberEBCDIC, ebcdicThree + "\xD1", "-33333333333333333331"},
        {SimpleTypeConverter_zonedDecimalToNumberEBCDIC, "\xF0\xF0\xC0", "0"},
        // More than a word holds, to the reader for words.
        {SimpleTypeConverter_zonedDecimalToNumberASCII, "99999999999999999999999y",
         "-999999999999999999999999"},
    };
    for (const Case& c : cases) EXPECT_EQ(zoned.read(c.reader, c.bytes), c.expected);
}

TEST(Zoned, NamesWhatItRefuses) {
    ZonedRig zoned;
    zoned.setPattern("0+");
    EXPECT_EQ(zoned.read(SimpleTypeConverter_zonedDecimalToNumberASCII, "1x3"),
              "CTDP3052E x asciiStandard item");
    EXPECT_EQ(zoned.read(SimpleTypeConverter_zonedDecimalToNumberASCII, ""), "");
    EXPECT_EQ(zoned.read(SimpleTypeConverter_zonedDecimalToNumberASCIIWide, ""), "");
    EXPECT_EQ(zoned.read(SimpleTypeConverter_zonedDecimalToNumberEBCDIC, ""), "");
    zoned.row.iNumberZonedSignStyle = ASCII_TRANSLATED_EBCDIC;
    EXPECT_EQ(zoned.read(SimpleTypeConverter_zonedDecimalToNumberASCII, "123"),
              "CTDP3052E 3 asciiTranslatedEBCDIC item");
    EXPECT_EQ(zoned.read(SimpleTypeConverter_zonedDecimalToNumberASCII, "12J"), "-121");
}

TEST(Zoned, SignOfDecimalsIsTheirOwn) {
    for (int32_t type = SIMPLE_STRING; type <= SIMPLE_NON_NEGATIVE_INTEGER; ++type) {
        const bool isUnsigned = type >= SIMPLE_UNSIGNED_LONG && type <= SIMPLE_UNSIGNED_BYTE;
        EXPECT_EQ(SimpleTypeConverter_isSignedSimpleType(type, true), !isUnsigned) << type;
        EXPECT_EQ(SimpleTypeConverter_isSignedSimpleType(type, false), !isUnsigned && type != SIMPLE_DECIMAL)
            << type;
    }
}

TEST(Zoned, RangesOfSingleBytes) {
    using Check = bool (*)(uint8_t);
    struct Case {
        Check check;
        std::string taken;
    };
    const std::string digits = "0123456789";
    const std::string ebcdic = STYLES.at("ebcdic").plain;
    const Case cases[] = {
        {SimpleTypeConverter_checkRangeEBCDICNonPunched, ebcdic},
        {SimpleTypeConverter_checkRangeEBCDICOverPunched,
         ebcdic + STYLES.at("ebcdic").plus +
             "\xB0\xB1\xB2\xB3\xB4\xB5\xB6\xB7\xB8\xB9\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD7\xD8\xD9"},
        {SimpleTypeConverter_checkRangeASCII_STANDARDNonPunched, digits},
        {SimpleTypeConverter_checkRangeASCII_STANDARDOverPunched, digits + "pqrstuvwxy"},
        {SimpleTypeConverter_checkRangeASCII_TRANSLATED_EBCDICNonPunched, digits + "{"},
        {SimpleTypeConverter_checkRangeASCII_TRANSLATED_EBCDICOverPunched, "ABCDEFGHIJKLMNOPQR{}"},
        {SimpleTypeConverter_checkRangeASCII_CA_REALIA_MODIFIEDNonPunched, digits},
        {SimpleTypeConverter_checkRangeASCII_CA_REALIA_MODIFIEDOverPunched, digits + " !\"#$%&'()"},
    };
    int index = 0;
    for (const Case& c : cases) {
        for (int byte = 0; byte < 256; ++byte) {
            EXPECT_EQ(c.check(static_cast<uint8_t>(byte)),
                      c.taken.find(static_cast<char>(byte)) != std::string::npos)
                << "case " << index << ", byte " << byte;
        }
        ++index;
    }
    EXPECT_TRUE(SimpleTypeConverter_checkZonedRange(ASCII_TRANSLATED_EBCDIC, '3', false, true, true, false));
    EXPECT_FALSE(SimpleTypeConverter_checkZonedRange(ASCII_TRANSLATED_EBCDIC, '3', false, true, true, true));
    EXPECT_TRUE(SimpleTypeConverter_checkZonedRange(ASCII_TRANSLATED_EBCDIC, '3', true, false, false, true));
    EXPECT_FALSE(
        SimpleTypeConverter_checkZonedRange(ASCII_TRANSLATED_EBCDIC, 'A', false, false, false, false));
    EXPECT_FALSE(SimpleTypeConverter_checkZonedRangeForEBCDIC(0xC1, false, false));
    EXPECT_TRUE(SimpleTypeConverter_checkZonedRangeForEBCDIC(0xC1, true, false));
}

}  // namespace
