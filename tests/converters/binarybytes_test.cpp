// Bytes to be written against what Python makes of the same numbers: binarybytes.py.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/bufferrig.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes fromHex(const std::string& text) {
    Bytes bytes;
    if (text == "-") return bytes;
    for (size_t i = 0; i < text.size(); i += 2) {
        bytes.push_back(static_cast<uint8_t>(std::stoi(text.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

// One line of the table.
struct Case {
    std::string what, kind, order, text, equals, expected;

    bool read(const std::string& line) {
        std::istringstream words(line);
        words >> what;
        if (what == "word") words >> kind >> order;
        if (what == "bits") words >> kind;
        return (words >> text >> equals >> expected) && equals == "=";
    }
    ByteOrderEnum byteOrder() const { return order == "big" ? BYTEOR_BIG_ENDIAN : BYTEOR_LITTLE_ENDIAN; }
};

// Integers as they are, others by their bits, so that a sign of zero tells.
template <class Word>
uint64_t bitsOf(Word word) {
    if constexpr (std::is_same_v<Word, float>) return std::bit_cast<uint32_t>(word);
    if constexpr (std::is_same_v<Word, double>) return std::bit_cast<uint64_t>(word);
    return static_cast<uint64_t>(word);
}

template <auto Get, auto GetB, auto GetL>
void expectRead(const Case& c, uint64_t expected) {
    const Bytes bytes = fromHex(c.expected);
    const bool isBig = c.byteOrder() == BYTEOR_BIG_ENDIAN;
    EXPECT_EQ(bitsOf(Get(bytes.data(), c.byteOrder())), expected) << c.kind << ' ' << c.text;
    EXPECT_EQ(bitsOf(isBig ? GetB(bytes.data()) : GetL(bytes.data())), expected) << c.kind << ' ' << c.text;
}

template <auto Put, class Word>
void expectWritten(const Case& c, Word word) {
    Bytes bytes(sizeof word, 0x55);
    Put(bytes.data(), word, c.byteOrder());
    EXPECT_EQ(bytes, fromHex(c.expected)) << c.kind << ' ' << c.text;
}

template <class Word, auto Put, auto Get, auto GetB, auto GetL>
void expectBoth(const Case& c, Word word) {
    expectWritten<Put>(c, word);
    expectRead<Get, GetB, GetL>(c, bitsOf(word));
}

void expectReal(const Case& c) {
    if (c.kind == "float") {
        return expectBoth<float, BinaryNumberConverter_putFloat, BinaryNumberConverter_getFloat,
                          BinaryNumberConverter_getFloatB, BinaryNumberConverter_getFloatL>(
            c, std::strtof(c.text.c_str(), nullptr));
    }
    expectBoth<double, BinaryNumberConverter_putDouble, BinaryNumberConverter_getDouble,
               BinaryNumberConverter_getDoubleB, BinaryNumberConverter_getDoubleL>(
        c, std::strtod(c.text.c_str(), nullptr));
}

void expectOdd(const Case& c, uint64_t word) {
    const Bytes expected = fromHex(c.expected);
    Bytes bytes(expected.size(), 0x55);
    BinaryNumberConverter_putOddLengthInteger(bytes.data(), word, static_cast<int64_t>(bytes.size()),
                                              c.byteOrder());
    EXPECT_EQ(bytes, expected) << c.text;
}

void expectWord(const Case& c) {
    if (c.kind == "float" || c.kind == "double") return expectReal(c);
    const uint64_t word = std::stoull(c.text);
    if (c.kind == "short") {
        expectBoth<uint16_t, BinaryNumberConverter_putShort, BinaryNumberConverter_getShort,
                   BinaryNumberConverter_getShortB, BinaryNumberConverter_getShortL>(
            c, static_cast<uint16_t>(word));
    } else if (c.kind == "int3") {
        expectRead<BinaryNumberConverter_getInt3Byte, BinaryNumberConverter_getInt3ByteB,
                   BinaryNumberConverter_getInt3ByteL>(c, word);
    } else if (c.kind == "int") {
        expectBoth<uint32_t, BinaryNumberConverter_putInt, BinaryNumberConverter_getInt,
                   BinaryNumberConverter_getIntB, BinaryNumberConverter_getIntL>(c,
                                                                                 static_cast<uint32_t>(word));
    } else if (c.kind == "long") {
        expectBoth<uint64_t, BinaryNumberConverter_putLong, BinaryNumberConverter_getLong,
                   BinaryNumberConverter_getLongB, BinaryNumberConverter_getLongL>(c, word);
    } else {
        expectOdd(c, word);
    }
}

void expectBits(const Case& c) {
    Bytes bytes = fromHex(c.text);
    const auto count = static_cast<int64_t>(bytes.size());
    const int64_t bits = std::stoll(c.kind);
    const auto transform = BinaryNumberConverter_transformToBinaryRep;
    EXPECT_EQ(transform(bytes.data(), count, bits, BYTEOR_BIG_ENDIAN), bytes.data());
    EXPECT_EQ(transform(bytes.data(), count, bits, BYTEOR_UNDEFINED), nullptr);
    EXPECT_EQ(bytes, fromHex(c.text)) << c.kind;
    EXPECT_EQ(transform(bytes.data(), count, bits, BYTEOR_LITTLE_ENDIAN), bytes.data());
    EXPECT_EQ(bytes, fromHex(c.expected)) << c.kind << ' ' << c.text;
}

void expectHex(BufferRig& rig, const Case& c) {
    constexpr int64_t UNTOUCHED = 777;
    const std::u16string units(c.text.begin(), c.text.end());
    const Owned<DFDLUString, delete_DFDLUString> text(
        DFDLUStringPooler_getDFDLUStringFromView(rig.heap, units));
    int64_t count = UNTOUCHED;
    uint8_t* bytes = BinaryNumberConverter_hexToBytes(text.get(), &count, rig.heap);
    if (c.expected == "none" || c.expected == "odd") {
        EXPECT_EQ(bytes, nullptr) << c.text;
        EXPECT_EQ(count, c.expected == "odd" ? UNTOUCHED : 0) << c.text;
        return;
    }
    ASSERT_NE(bytes, nullptr) << c.text;
    EXPECT_EQ(Bytes(bytes, bytes + count), fromHex(c.expected)) << c.text;
    DFDLBufferFactory_FreeBuffer(rig.heap->bufferFactory, bytes);
}

TEST(BinaryBytes, AsPythonWritesThem) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/converters/binarybytes.txt");
    BufferRig rig;
    std::string line;
    int count = 0;
    for (; std::getline(file, line); ++count) {
        Case c;
        ASSERT_TRUE(c.read(line)) << line;
        if (c.what == "word") expectWord(c);
        if (c.what == "bits") expectBits(c);
        if (c.what == "hex") expectHex(rig, c);
    }
    EXPECT_GT(count, 250);
}

TEST(BinaryBytes, HexadecimalDigitsOfNoTextAndOfAnEmptyOne) {
    BufferRig rig;
    int64_t count = 777;
    EXPECT_EQ(BinaryNumberConverter_hexToBytes(nullptr, &count, rig.heap), nullptr);
    EXPECT_EQ(count, 777);
    // U+0130 has the low byte of a zero.
    const Owned<DFDLUString, delete_DFDLUString> wide(
        DFDLUStringPooler_getDFDLUStringFromView(rig.heap, u"0\u0130"));
    EXPECT_EQ(BinaryNumberConverter_hexToBytes(wide.get(), &count, rig.heap), nullptr);
    EXPECT_EQ(count, 0);
    count = 777;
    const Owned<DFDLUString, delete_DFDLUString> empty(
        DFDLUStringPooler_getDFDLUStringFromView(rig.heap, u""));
    uint8_t* bytes = BinaryNumberConverter_hexToBytes(empty.get(), &count, rig.heap);
    EXPECT_NE(bytes, nullptr);
    EXPECT_EQ(count, 0);
    DFDLBufferFactory_FreeBuffer(rig.heap->bufferFactory, bytes);
}

TEST(BinaryBytes, WordsTheOtherWayRound) {
    const uint8_t bytes[] = {0x81, 2, 3, 4, 0xF5, 6, 7, 8};
    EXPECT_EQ(BinaryNumberConverter_makeLong(0x81, 2, 3, 4, 0xF5, 6, 7, 8), 0x81020304F5060708U);
    EXPECT_EQ(BinaryNumberConverter_swapByte(0x81), 0x81);
    EXPECT_EQ(BinaryNumberConverter_swapShort(BinaryNumberConverter_getShortB(bytes)), 0x0281);
    EXPECT_EQ(BinaryNumberConverter_swapInt(BinaryNumberConverter_getIntB(bytes)), 0x04030281U);
    EXPECT_EQ(BinaryNumberConverter_swapLong(BinaryNumberConverter_getLongB(bytes)), 0x080706F504030281U);
}

// The low `bits` bits of the array, put behind `offset` bits that are all set.
std::string placed(const Bytes& bytes, int bits, int offset) {
    std::string stream(static_cast<size_t>(offset + bits + 7) / 8, '\xFF');
    for (int i = 0; i < bits; ++i) {
        const auto from = 8 * bytes.size() - static_cast<size_t>(bits - i);
        const auto to = static_cast<size_t>(offset + i);
        const int mask = 0x80 >> to % 8;
        if ((bytes[from / 8] >> (7 - from % 8) & 1) == 0) {
            stream[to / 8] = static_cast<char>(stream[to / 8] & ~mask);
        }
    }
    return stream;
}

uint64_t readBack(BufferRig& rig, const std::string& stream, int offset, int bits, ByteOrderEnum order,
                  bool isSigned) {
    rig.document(stream);
    EXPECT_EQ(BufferManager_skipBits(rig.buffer, offset, nullptr), offset);
    Bytes block((static_cast<size_t>(offset + bits) + 7) / 8);
    EXPECT_EQ(BufferManager_readBits(rig.buffer, block.data(), bits, nullptr), bits);
    int64_t count = 0;
    uint8_t* whole = BinaryNumberConverter_transformBinaryRepToByteArray(rig.heap, block.data(), bits, order,
                                                                         &count, isSigned);
    const uint64_t word =
        isSigned ? static_cast<uint64_t>(BinaryNumberConverter_getBinaryInteger(whole, order, count))
                 : BinaryNumberConverter_getBinaryUnsignedInteger(whole, order, count);
    DFDLBufferFactory_FreeBuffer(rig.heap->bufferFactory, whole);
    return word;
}

// Little-endian numbers of more than 16 bits that are no whole bytes are drawn with zero bytes in between.
uint64_t draw(std::mt19937_64& random, int bits, ByteOrderEnum order) {
    const uint64_t mask = ~uint64_t{0} >> (64 - bits);
    const bool isHollow = order == BYTEOR_LITTLE_ENDIAN && bits > 16 && bits % 8 != 0;
    if (!isHollow) return random() & mask;
    return random() & mask & (0xFF | ~uint64_t{0} << (bits - bits % 8));
}

TEST(BinaryBytes, BitsComeBackAtEveryOffsetAndLength) {
    std::mt19937_64 random(6);
    BufferRig rig;
    for (int round = 0; round < 8 * 64 * 2 * 2; ++round) {
        const int offset = round % 8, bits = round / 8 % 64 + 1;
        const ByteOrderEnum order = (round / 512 & 1) != 0 ? BYTEOR_BIG_ENDIAN : BYTEOR_LITTLE_ENDIAN;
        const bool isSigned = (round / 1024 & 1) != 0;
        const uint64_t number = draw(random, bits, order);
        Bytes bytes(static_cast<size_t>(bits + 7) / 8);
        const auto count = static_cast<int64_t>(bytes.size());
        BinaryNumberConverter_putOddLengthInteger(bytes.data(), number, count, order);
        BinaryNumberConverter_transformToBinaryRep(bytes.data(), count, bits, order);
        const auto unused = static_cast<uint32_t>(64 - bits);
        const uint64_t expected =
            isSigned ? static_cast<uint64_t>(static_cast<int64_t>(number << unused) >> unused) : number;
        ASSERT_EQ(readBack(rig, placed(bytes, bits, offset), offset, bits, order, isSigned), expected)
            << offset << ' ' << bits << ' ' << order << ' ' << isSigned;
    }
}

TEST(BinaryBytes, AreAlignedToAnOffsetOfBits) {
    for (int32_t length = 1; length <= 8; ++length) {
        for (int32_t places = 0; places < 8; ++places) {
            const uint64_t word = 0x8142FF7E6F93A501U >> (64 - 8 * length);
            Bytes bytes(static_cast<size_t>(length)), expected(static_cast<size_t>(length));
            BinaryNumberConverter_putOddLengthInteger(bytes.data(), word, length, BYTEOR_BIG_ENDIAN);
            BinaryNumberConverter_putOddLengthInteger(expected.data(), word << places, length,
                                                      BYTEOR_BIG_ENDIAN);
            BinaryNumberConverter_alignByteArrayToBitOffset(bytes.data(), length, places);
            EXPECT_EQ(bytes, expected) << length << ' ' << places;
        }
    }
}

}  // namespace
