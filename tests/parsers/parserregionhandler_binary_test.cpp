// Fields that are no text: how they are cut out, and what they become.
#include <dfdl/dfdl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/parsers/trustedlength.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "support/bufferrig.h"
#include "support/testheap.h"

namespace {

std::string fromHex(const std::string& hex) {
    std::string bytes;
    for (size_t i = 0; i < hex.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

// A handler, and one element named "item" that the tests give its properties.
struct BinaryRig {
    BufferRig rig;
    ParserRegionHandler* handler;
    PIFIteratorForParser iterator{};
    LengthSchemeTableRow length;
    BinaryNumberTableRow number;
    BooleanRepTableRow boolean;
    CalendarRepTableRow calendar;

    explicit BinaryRig(PhysicalTypeEnum type = BINARY_NUMBER, const DFDLHeapImpl* heap = nullptr)
        : rig(heap) {
        handler =
            new_ParserRegionHandler(rig.heap, rig.constants, rig.context, rig.buffer, rig.charsets, nullptr);
        iterator.context = rig.context;
        handler->pifIterator = &iterator;
        length.iLengthKind = EXPLICIT;
        length.iLengthUnits = BYTES;
        number.iBinaryDecimalVirtualPoint = 0;
        number.iPackedSignCodes = 0xCDFC;
        number.iByteOrder = BYTEOR_BIG_ENDIAN;
        boolean.iByteOrder = BYTEOR_BIG_ENDIAN;
        boolean.iIntegerBooleanTrueRep = 1;
        boolean.iIntegerBooleanFalseRep = 0;
        calendar.binaryNumberRow = &number;
        calendar.iByteOrder = BYTEOR_BIG_ENDIAN;
        rig.item.lengthRow = &length;
        setPhysicalType(type);
    }
    ~BinaryRig() {
        delete_DFDLUString(calendar.iBinaryCalendarEpoch);
        delete_ParserRegionHandler(handler);
    }
    BinaryRig(const BinaryRig&) = delete;
    BinaryRig& operator=(const BinaryRig&) = delete;

    void setPhysicalType(PhysicalTypeEnum type) {
        rig.item.iPhysicalType = type;
        rig.item.physicalRow = nullptr;
        if (type == BINARY_NUMBER) rig.item.physicalRow = &number;
        if (type == BINARY_BOOLEAN) rig.item.physicalRow = &boolean;
        if (type == BINARY_CALENDAR) rig.item.physicalRow = &calendar;
    }
    // Kind and text of the value; the error; "null" for neither.
    std::string take(DFDLValue* value) {
        if (value == nullptr) {
            const std::string error = rig.takeError();
            return error.empty() ? "null" : error;
        }
        UErrorCode status = U_ZERO_ERROR;
        DFDLUString* text = DFDLValue_toString(value, &status, rig.heap);
        constexpr size_t PREFIX = 3;  // "xs:"
        std::string result = DFDLType_getTypeName(value->schemaType) + PREFIX;
        if (value->schemaType == TYPE_DECIMAL) {
            const auto model = static_cast<int32_t>(DecimalDV_getModelSchemaType(value));
            result += std::string(" as ") + (DFDLType_getDFDLSimpleTypeName(model) + PREFIX);
        }
        result += ' ';
        for (const UChar unit : DFDLUString_view(text)) result += static_cast<char>(unit);
        delete_DFDLUString(text);
        DFDLPoolingFactory_releaseDFDLValue(rig.heap->poolingFactory, value);
        return result;
    }
    // What stands at the position.
    std::string read(int64_t fieldLength) {
        int64_t count = 0;
        uint8_t* block =
            ParserRegionHandler_extractBinaryRepresentation(handler, &rig.item, fieldLength, &count);
        if (block == nullptr) return take(nullptr);
        switch (rig.item.iPhysicalType) {
            case BINARY_NUMBER:
                return take(
                    ParserRegionHandler_handleSimpleContent_BinaryNumber(handler, &rig.item, block, count));
            case BINARY_BOOLEAN:
                return take(
                    ParserRegionHandler_handleSimpleContent_BinaryBoolean(handler, &rig.item, block, count));
            case BINARY_CALENDAR:
                return take(
                    ParserRegionHandler_handleSimpleContent_BinaryCalendar(handler, &rig.item, block, count));
            default:
                return take(
                    ParserRegionHandler_handleSimpleContent_BinaryOpaque(handler, &rig.item, block, count));
        }
    }
    std::string readAll(const std::string& bytes) {
        rig.document(bytes);
        return read(static_cast<int64_t>(bytes.size()));
    }
};

// A bit field read one bit after the other: in stream order from the top for big-endian, and for
// little-endian by bytes from the bottom, of which only the last may have fewer bits.
uint64_t bitByBit(const std::string& bytes, int offset, int bits, bool bigEndian, bool isSigned) {
    const auto bitAt = [&](int at) {
        return static_cast<uint8_t>(bytes[static_cast<size_t>(at / 8)]) >> (7 - at % 8) & 1;
    };
    uint64_t value = 0;
    int top = 0;
    for (int i = 0; i < bits; ++i) {
        const int size = std::min(8, bits - i / 8 * 8);
        const int weight = bigEndian ? bits - 1 - i : i / 8 * 8 + size - 1 - i % 8;
        const auto bit = static_cast<uint64_t>(bitAt(offset + i));
        value |= bit << weight;
        if (weight == bits - 1) top = static_cast<int>(bit);
    }
    if (isSigned && top != 0 && bits < 64) value |= ~uint64_t{0} << bits;
    return value;
}

// In pieces of one byte too, and without losing the place.
TEST(BinaryFields, EveryOffsetAndLengthOfBits) {
    std::mt19937 random(4);
    for (int round = 0; round < 8 * 64 * 2 * 2 * 2; ++round) {
        const int offset = round % 8, bits = round / 8 % 64 + 1;
        const bool bigEndian = (round / 512 & 1) != 0, isSigned = (round / 1024 & 1) != 0;
        std::string bytes;
        for (int i = 0; i < 10; ++i) bytes += static_cast<char>(random());
        Feed feed(bytes, 1);
        BinaryRig rig;
        rig.length.iLengthUnits = BITS;
        rig.number.iByteOrder = bigEndian ? BYTEOR_BIG_ENDIAN : BYTEOR_LITTLE_ENDIAN;
        rig.rig.item.simpleTypeKind = isSigned ? SIMPLE_LONG : SIMPLE_UNSIGNED_LONG;
        if (round / 2048 != 0) {
            rig.rig.feed(feed);
        } else {
            rig.rig.document(bytes);
        }
        ASSERT_EQ(BufferManager_skipBits(rig.rig.buffer, offset, nullptr), offset);
        const uint64_t expected = bitByBit(bytes, offset, bits, bigEndian, isSigned);
        ASSERT_EQ(rig.read(bits), isSigned ? "long " + std::to_string(static_cast<int64_t>(expected))
                                           : "unsignedLong " + std::to_string(expected))
            << offset << ' ' << bits << ' ' << bigEndian;
        ASSERT_EQ(BufferManager_bitPosition(rig.rig.buffer), offset + bits);
        BufferManager_clear(rig.rig.buffer);
    }
}

struct NumberCase {
    DFDLSimpleTypeEnum type;
    BinaryNumberRepEnum representation;
    const char* hex;
    const char* expected;
};

const NumberCase NUMBERS[] = {
    {SIMPLE_BYTE, BINARY, "80", "byte -128"},
    {SIMPLE_BYTE, BINARY, "0080", "CTDP3038E 128 item "},
    {SIMPLE_BYTE, BINARY, "FF7F", "CTDP3038E -129 item "},
    {SIMPLE_BYTE, BINARY, "00000000000000007F", "byte 127"},
    {SIMPLE_BYTE, BINARY, "000000000000000100", "CTDP3038E 256 item "},
    {SIMPLE_BYTE, BINARY, "01FFFFFFFFFFFFFFFF", "CTDP3038E 36893488147419103231 item "},
    {SIMPLE_LONG, BINARY, "FFFFFFFFFFFFFFFFFF", "long -1"},
    {SIMPLE_UNSIGNED_SHORT, BINARY, "FFFF", "unsignedShort 65535"},
    {SIMPLE_UNSIGNED_SHORT, BINARY, "010000", "CTDP3038E 65536 item "},
    {SIMPLE_UNSIGNED_INT, BINARY, "010000000000000000", "CTDP3038E 18446744073709551616 item "},
    {SIMPLE_UNSIGNED_BYTE, PACKED, "255C", "unsignedByte 255"},
    {SIMPLE_UNSIGNED_BYTE, PACKED, "001D", "CTDP3038E -1 item "},
    {SIMPLE_INTEGER, BINARY, "FFFFFFFFFFFFFFFF", "integer -1"},
    {SIMPLE_INTEGER, BINARY, "7FFFFFFFFFFFFFFFFF", "decimal as integer 2361183241434822606847"},
    {SIMPLE_INTEGER, BINARY, "000000000000000005", "integer 0"},
    {SIMPLE_INTEGER, BCD, "009223372036854775808F", "CTDP3083E item 009223372036854775808F bcd F 22"},
    {SIMPLE_INTEGER, BCD, "0009223372036854775808", "decimal as integer 9223372036854775808"},
    {SIMPLE_INTEGER, BCD, "0009223372036854775807", "integer 9223372036854775807"},
    {SIMPLE_UNSIGNED_LONG, BINARY, "FFFFFFFFFFFFFFFF", "unsignedLong 18446744073709551615"},
    {SIMPLE_UNSIGNED_LONG, BCD, "0018446744073709551616", "CTDP3038E 18446744073709551616 item "},
    {SIMPLE_UNSIGNED_LONG, PACKED, "1D", "CTDP3038E -1 item "},
    {SIMPLE_NON_NEGATIVE_INTEGER, BINARY, "FF", "nonNegativeInteger 255"},
    {SIMPLE_NON_NEGATIVE_INTEGER, PACKED, "1D", "CTDP3038E -1 item "},
    {SIMPLE_NON_NEGATIVE_INTEGER, BCD, "18446744073709551616",
     "decimal as nonNegativeInteger 18446744073709551616"},
    {SIMPLE_INT, PACKED, "1232", "CTDP3031E item"},
    {SIMPLE_INT, BINARY_SECONDS, "01020304", "int 0"},
    {SIMPLE_FLOAT, BINARY, "C0200000", "float -2.5"},
    {SIMPLE_FLOAT, BINARY, "C02000", "CTDP3055E item"},
    {SIMPLE_DOUBLE, BINARY, "C004000000000000", "double -2.5"},
    {SIMPLE_DOUBLE, BINARY, "C0040000", "CTDP3055E item"},
    {SIMPLE_DECIMAL, PACKED, "12345C", "decimal as decimal 12345"},
    {SIMPLE_DECIMAL, BCD, "000000000000000000000000000000000000", "CTDP3150E item 36 34"},
    {SIMPLE_DECIMAL, BINARY_SECONDS, "01", "null"},
    {SIMPLE_STRING, BINARY, "01", "null"},
};

TEST(BinaryFields, NumbersByType) {
    for (const NumberCase& c : NUMBERS) {
        BinaryRig rig;
        rig.rig.item.simpleTypeKind = c.type;
        rig.number.iBinaryNumberRepresentation = c.representation;
        EXPECT_EQ(rig.readAll(fromHex(c.hex)), c.expected) << c.hex;
    }
}

TEST(BinaryFields, VirtualPointOfDecimalsOnly) {
    BinaryRig rig;
    rig.number.iBinaryDecimalVirtualPoint = 2;
    rig.number.iBinaryNumberRepresentation = PACKED;
    rig.rig.item.simpleTypeKind = SIMPLE_DECIMAL;
    EXPECT_EQ(rig.readAll(fromHex("12345D")), "decimal as decimal -123.45");
    rig.rig.item.simpleTypeKind = SIMPLE_INT;
    EXPECT_EQ(rig.readAll(fromHex("12345D")), "int -12345");
}

// The first bit of a type with a sign fills up the byte that it begins in, whether it is a sign or not.
TEST(BinaryFields, BitsInFrontOfWholeBytesHaveTheFirstOne) {
    struct Case {
        DFDLSimpleTypeEnum type;
        BinaryNumberRepEnum representation;
        int64_t bits;
        const char* expected;
    };
    const Case cases[] = {
        {SIMPLE_DECIMAL, BINARY, 12, "decimal as decimal 63880"},  // F988
        {SIMPLE_UNSIGNED_SHORT, BINARY, 12, "unsignedShort 2440"},
        {SIMPLE_UNSIGNED_SHORT, BCD, 12, "unsignedShort 988"},
        {SIMPLE_SHORT, BCD, 12, "CTDP3083E item F988 bcd F 1"},
        {SIMPLE_SHORT, BCD, 16, "short 9880"},
    };
    const std::string bytes = fromHex("9880");
    for (const Case& c : cases) {
        BinaryRig rig;
        rig.length.iLengthUnits = BITS;
        rig.number.iBinaryNumberRepresentation = c.representation;
        rig.rig.item.simpleTypeKind = c.type;
        rig.rig.document(bytes);
        EXPECT_EQ(rig.read(c.bits), c.expected);
    }
}

TEST(BinaryFields, HexadecimalFloats) {
    BinaryRig rig;
    rig.number.iBinaryFloatRepresentation = ZOV390_HEX;
    rig.rig.item.simpleTypeKind = SIMPLE_FLOAT;
    EXPECT_EQ(rig.readAll(fromHex("C276A000")), "float -118.625");
    EXPECT_EQ(rig.readAll(fromHex("00000000")), "float 5.877472E-39");  // there is no zero
    rig.rig.item.simpleTypeKind = SIMPLE_DOUBLE;
    rig.number.iByteOrder = BYTEOR_LITTLE_ENDIAN;
    EXPECT_EQ(rig.readAll(fromHex("0000000000A076C2")), "double -118.625");
    EXPECT_EQ(rig.readAll(fromHex("0000000000000000")), "double 0");
}

TEST(BinaryFields, Booleans) {
    struct Case {
        ByteOrderEnum order;
        int32_t whenTrue, whenFalse;
        const char* hex;
        const char* expected;
    };
    const Case cases[] = {
        {BYTEOR_BIG_ENDIAN, 1, 0, "01", "boolean true"},
        {BYTEOR_BIG_ENDIAN, 1, 0, "00", "boolean false"},
        {BYTEOR_BIG_ENDIAN, 1, 0, "02", "CTDP3030E 2 item"},
        {BYTEOR_BIG_ENDIAN, -1, 0, "FF", "boolean true"},
        {BYTEOR_BIG_ENDIAN, 1, 0, "FF", "CTDP3030E 4294967295 item"},
        {BYTEOR_BIG_ENDIAN, -1, 0xFFFF, "FFFF", "boolean false"},  // two bytes have no sign
        {BYTEOR_BIG_ENDIAN, 1, 2, "0002", "boolean false"},
        {BYTEOR_LITTLE_ENDIAN, 0x200, 2, "0002", "boolean true"},
        {BYTEOR_BIG_ENDIAN, -2, 2, "FFFFFFFE", "boolean true"},
        {BYTEOR_LITTLE_ENDIAN, -2, 2, "FEFFFFFF", "boolean true"},
        {BYTEOR_BIG_ENDIAN, 5, 6, "0123456700000005", "boolean true"},
        {BYTEOR_LITTLE_ENDIAN, 5, 6, "0500000001234567", "boolean true"},
        {BYTEOR_BIG_ENDIAN, 0, 1, "010203", "boolean true"},  // a length of no word: 0
        {BYTEOR_BIG_ENDIAN, 1, 2, "000001", "CTDP3030E 0 item"},
        {BYTEOR_BIG_ENDIAN, 1, 1, "01", "boolean true"},
    };
    for (const Case& c : cases) {
        BinaryRig rig(BINARY_BOOLEAN);
        rig.boolean.iByteOrder = c.order;
        rig.boolean.iIntegerBooleanTrueRep = c.whenTrue;
        rig.boolean.iIntegerBooleanFalseRep = c.whenFalse;
        EXPECT_EQ(rig.readAll(fromHex(c.hex)), c.expected) << c.hex;
    }
}

TEST(BinaryFields, FlagsOfOneBit) {
    BinaryRig rig(BINARY_BOOLEAN);
    rig.rig.item.simpleTypeKind = SIMPLE_BOOLEAN;
    rig.length.iLengthUnits = BITS;
    const std::string bytes = fromHex("A0");
    rig.rig.document(bytes);
    EXPECT_EQ(rig.read(1), "boolean true");
    EXPECT_EQ(rig.read(1), "boolean false");
    EXPECT_EQ(rig.read(3), "CTDP3030E 4 item");
}

TEST(BinaryFields, OpaqueBytes) {
    BinaryRig rig(BINARY_OPAQUE);
    rig.rig.item.simpleTypeKind = SIMPLE_HEXBINARY;
    EXPECT_EQ(rig.readAll(fromHex("00FF10")), "hexBinary 00FF10");
    EXPECT_EQ(rig.readAll(""), "hexBinary ");
}

// Bytes off a byte boundary are bits.
TEST(BinaryFields, BytesOffTheByteBoundary) {
    const std::string bytes = fromHex("1234567890");
    for (const PhysicalTypeEnum type : {BINARY_NUMBER, BINARY_OPAQUE, BINARY_CALENDAR}) {
        BinaryRig rig(type);
        rig.rig.item.simpleTypeKind = SIMPLE_INT;
        rig.rig.document(bytes);
        BufferManager_skipBits(rig.rig.buffer, 4, nullptr);
        EXPECT_EQ(rig.read(2), type == BINARY_NUMBER ? "int 9029" : "CTDP3119E item") << type;
    }
}

TEST(BinaryFields, WhatCannotBeExtracted) {
    struct Case {
        PhysicalTypeEnum type;
        LengthKindEnum kind;
        LengthUnitsEnum units;
        int64_t length;
        const char* expected;
    };
    const Case cases[] = {
        {BINARY_NUMBER, EXPLICIT, BYTES, -1, "CTDP3007E -1 item"},
        {BINARY_NUMBER, EXPLICIT, CHARACTERS, 2, "CTDP3119E item"},
        {BINARY_NUMBER, EXPLICIT, UNDEFINED_LUNITS, 2, "CTDP3119E item"},
        {BINARY_NUMBER, DELIMITED, CHARACTERS, 2, "short 258"},
        {BINARY_NUMBER, DELIMITED, BITS, 2, "short 258"},
        {BINARY_OPAQUE, EXPLICIT, BITS, 8, "CTDP3119E item"},
        {BINARY_NUMBER, EXPLICIT, BYTES, 4, "CTDP3000E 3 item"},
        {BINARY_NUMBER, EXPLICIT, BITS, 25, "CTDP3000E 3 item"},
        {BINARY_NUMBER, EXPLICIT, BYTES, TRUSTED_BYTES + 1, "CTDP3000E 3 item"},
        {BINARY_NUMBER, EXPLICIT, BYTES, INT64_MAX, "CTDP3000E 3 item"},
        {BINARY_NUMBER, EXPLICIT, BITS, INT64_MAX, "CTDP3000E 3 item"},
    };
    const std::string bytes = fromHex("010203");
    for (const Case& c : cases) {
        BinaryRig rig(c.type);
        rig.rig.item.simpleTypeKind = SIMPLE_SHORT;
        rig.length.iLengthKind = c.kind;
        rig.length.iLengthUnits = c.units;
        rig.rig.document(bytes);
        EXPECT_EQ(rig.read(c.length), c.expected) << c.kind << ' ' << c.units << ' ' << c.length;
    }
}

TEST(BinaryFields, RowsThatAreMissingOrAskForMore) {
    const std::string bytes = fromHex("0102");
    for (const LengthUnitsEnum units : {BITS, BYTES}) {
        for (const PhysicalTypeEnum type : {BINARY_NUMBER, BINARY_BOOLEAN}) {
            BinaryRig rig(type);
            rig.length.iLengthUnits = units;
            rig.rig.item.simpleTypeKind = SIMPLE_SHORT;
            rig.rig.document(bytes);
            rig.rig.item.physicalRow = nullptr;
            EXPECT_EQ(rig.read(1), type == BINARY_NUMBER ? "CTDP3044E item" : "CTDP3045E item");
            rig.setPhysicalType(type);
            rig.number.iByteOrderExprIndex = 0;
            rig.boolean.iByteOrderExprIndex = 0;
            EXPECT_EQ(rig.read(1).substr(0, 9), "CTDP3900E");
        }
    }
    BinaryRig rig;
    rig.rig.item.simpleTypeKind = SIMPLE_FLOAT;
    rig.number.iBinaryFloatRepExprIndex = 0;
    EXPECT_EQ(rig.readAll(fromHex("01020304")).substr(0, 9), "CTDP3900E");
    rig.setPhysicalType(BINARY_CALENDAR);
    rig.number.iBinaryNumberRepresentation = BCD;
    EXPECT_EQ(rig.readAll(fromHex("20260101")).substr(0, 9), "CTDP3017E");
}

struct CalendarCase {
    BinaryNumberRepEnum representation;
    DFDLSimpleTypeEnum type;
    ByteOrderEnum order;
    const char16_t* epoch;
    const char* hex;
    const char* expected;
};

// The moments: python3 -c 'from datetime import *; print(datetime(1970, 1, 1) + timedelta(seconds=-2**31))'
const CalendarCase CALENDARS[] = {
    {BINARY_SECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"1970-01-01T00:00:00", "00000000",
     "datetime 1970-01-01T00:00:00Z"},
    {BINARY_SECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"1970-01-01T00:00:00", "80000000",
     "datetime 1901-12-13T20:45:52Z"},
    {BINARY_SECONDS, SIMPLE_DATETIME, BYTEOR_LITTLE_ENDIAN, u"1970-01-01T00:00:00", "FFFFFF7F",
     "datetime 2038-01-19T03:14:07Z"},
    {BINARY_SECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"2000-01-01T12:00:00", "00000001",
     "datetime 2000-01-01T12:00:01Z"},
    {BINARY_MILLISECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"1970-01-01T00:00:00", "000000E8D4A51001",
     "datetime 2001-09-09T01:46:40.001Z"},
    {BINARY_MILLISECONDS, SIMPLE_DATETIME, BYTEOR_LITTLE_ENDIAN, u"1970-01-01T00:00:00", "FFFFFFFFFFFFFFFF",
     "datetime 1969-12-31T23:59:59.999Z"},
    {BINARY_SECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"1970-01-01T00:00:00", "0000", "CTDV1445E item"},
    {BINARY_MILLISECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"1970-01-01T00:00:00", "00000000",
     "CTDV1444E item"},
    {BINARY_SECONDS, SIMPLE_DATETIME, BYTEOR_BIG_ENDIAN, u"1970-01-01 00:00:00", "00000000",
     "CTDP3143E 1970-01-01 00:00:00 item"},
    {BINARY_SECONDS, SIMPLE_INT, BYTEOR_BIG_ENDIAN, u"1970-01-01T00:00:00", "00000000", "null"},
};

TEST(BinaryFields, CalendarsThatAreCounted) {
    for (const CalendarCase& c : CALENDARS) {
        BinaryRig rig(BINARY_CALENDAR);
        rig.rig.item.simpleTypeKind = c.type;
        rig.number.iBinaryNumberRepresentation = c.representation;
        rig.calendar.iByteOrder = c.order;
        rig.calendar.iBinaryCalendarEpoch = DFDLUStringPooler_getDFDLUStringFromView(rig.rig.heap, c.epoch);
        EXPECT_EQ(rig.readAll(fromHex(c.hex)), c.expected) << c.hex;
    }
}

// The kind is the element's, the fields are those of any moment.
TEST(BinaryFields, CountedCalendarsKeepTheirType) {
    for (const auto& [type, kind] : {std::pair{SIMPLE_DATE, TYPE_DATE}, std::pair{SIMPLE_TIME, TYPE_TIME}}) {
        BinaryRig rig(BINARY_CALENDAR);
        rig.rig.item.simpleTypeKind = type;
        rig.number.iBinaryNumberRepresentation = BINARY_SECONDS;
        rig.calendar.iBinaryCalendarEpoch =
            DFDLUStringPooler_getDFDLUStringFromView(rig.rig.heap, u"1970-01-01T00:00:00");
        uint8_t* block = BufferManager_allocateBytes(rig.rig.buffer, 4);
        std::fill(block, block + 4, uint8_t{0});
        DFDLValue* value =
            ParserRegionHandler_handleSimpleContent_BinaryCalendar(rig.handler, &rig.rig.item, block, 4);
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(value->schemaType, static_cast<uint32_t>(kind));
        EXPECT_TRUE(DateTimeDV_hasTimeZone(value) && DateTimeDV_hasDate(value) && DateTimeDV_hasTime(value));
        DFDLPoolingFactory_releaseDFDLValue(rig.rig.heap->poolingFactory, value);
    }
}

// A wrong number in the grammar: whole bytes are little-endian then, and bits are in no order.
TEST(BinaryFields, WithoutByteOrder) {
    BinaryRig rig;
    rig.rig.item.simpleTypeKind = SIMPLE_SHORT;
    rig.number.iByteOrder = BYTEOR_UNDEFINED;
    EXPECT_EQ(rig.readAll(fromHex("0102")), "short 513");
    rig.length.iLengthUnits = BITS;
    const std::string bytes = fromHex("0102");
    rig.rig.document(bytes);
    EXPECT_EQ(rig.read(12).substr(0, 9), "CTDP3900E");
}

TEST(BinaryFields, StopAtTheEndOfTheirScope) {
    BinaryRig rig;
    rig.rig.item.simpleTypeKind = SIMPLE_INT;
    const std::string bytes = fromHex("01020304");
    rig.rig.document(bytes);
    ASSERT_TRUE(BufferManager_imposeScopedBufferLength(rig.rig.buffer, 3, BYTES, &rig.rig.item));
    EXPECT_EQ(rig.read(4).substr(0, 9), "CTDP3000E");
    BufferManager_clear(rig.rig.buffer);
}

TEST(BinaryFields, LoseNothingWhenMemoryEnds) {
    const std::string bytes = fromHex("7FFFFFFFFFFFFFFFFF12345C8001");
    const int failures = sweepFailingAllocations([&](const DFDLHeapImpl& heap) {
        BinaryRig rig(BINARY_NUMBER, &heap);
        // An error may have been on its way.
        const ScopeExit end([&] { ProcessingError_reset(rig.rig.context->currentError); });
        rig.rig.item.simpleTypeKind = SIMPLE_INTEGER;
        rig.rig.document(bytes);
        EXPECT_EQ(rig.read(9).substr(0, 7), "decimal");
        rig.number.iBinaryNumberRepresentation = BCD;
        EXPECT_EQ(rig.read(3).substr(0, 9), "CTDP3083E");
        rig.setPhysicalType(BINARY_OPAQUE);
        EXPECT_EQ(rig.read(2), "hexBinary 8001");
    });
    EXPECT_GT(failures, 5);
}

// What user trace hears last.
struct Listener {
    std::string heard;
    DFDLUserTraceHandler* handler = new_DFDLUserTraceHandler();

    Listener() {
        DFDLUserTraceHandler_setContextObject(handler, this);
        DFDLUserTraceHandler_setUserInfoCallback(handler, hear);
    }
    ~Listener() { delete_DFDLUserTraceHandler(handler); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    static void hear(DFDLUserTraceHandler* source, const DFDLTrace* trace) {
        const DFDLChar* units = nullptr;
        int32_t length = 0;
        DFDLTrace_getStatement(trace, &units, &length);
        const std::u16string_view text(units, static_cast<size_t>(length));
        static_cast<Listener*>(DFDLUserTraceHandler_getContextObject(source))
            ->heard.assign(text.begin(), text.end());
    }
};

TEST(BinaryFields, TraceShowsTheBytes) {
    Listener listener;
    BinaryRig rig;
    ResourceCatalog* catalog = new_ResourceCatalog(rig.rig.heap, rig.rig.context);
    ASSERT_TRUE(ResourceCatalog_openResource(catalog));
    TraceHandlerAdapter* trace = new_TraceHandlerAdapter(rig.rig.heap, rig.rig.context, catalog);
    TraceHandlerAdapter_setUserTraceHandler(trace, listener.handler);
    rig.handler->trace = trace;
    rig.rig.item.simpleTypeKind = SIMPLE_SHORT;
    EXPECT_EQ(rig.readAll(fromHex("01AF")), "short 431");
    EXPECT_NE(listener.heard.find("item"), std::string::npos) << listener.heard;
    EXPECT_NE(listener.heard.find("its length was known; its bytes are X'01AF'"), std::string::npos)
        << listener.heard;
    rig.length.iLengthKind = DELIMITED;
    EXPECT_EQ(rig.readAll(fromHex("01AE")), "short 430");
    EXPECT_NE(listener.heard.find("item"), std::string::npos) << listener.heard;
    EXPECT_NE(listener.heard.find("are X'01AE'"), std::string::npos) << listener.heard;
    delete_TraceHandlerAdapter(trace);
    delete_ResourceCatalog(catalog);
}

}  // namespace
