#include "dfdl/foundation/dfdltype.h"

#include <gtest/gtest.h>

namespace {

struct TypeCase {
    DFDLType type;
    DFDLSimpleTypeEnum simpleType;
    const char* name;
};

constexpr TypeCase TYPES[] = {
    {TYPE_STRING, SIMPLE_STRING, "xs:string"},
    {TYPE_BOOLEAN, SIMPLE_BOOLEAN, "xs:boolean"},
    {TYPE_DECIMAL, SIMPLE_DECIMAL, "xs:decimal"},
    {TYPE_FLOAT, SIMPLE_FLOAT, "xs:float"},
    {TYPE_DOUBLE, SIMPLE_DOUBLE, "xs:double"},
    {TYPE_DATETIME, SIMPLE_DATETIME, "xs:datetime"},
    {TYPE_TIME, SIMPLE_TIME, "xs:time"},
    {TYPE_DATE, SIMPLE_DATE, "xs:date"},
    {TYPE_HEXBINARY, SIMPLE_HEXBINARY, "xs:hexBinary"},
    {TYPE_INTEGER, SIMPLE_INTEGER, "xs:integer"},
    {TYPE_LONG, SIMPLE_LONG, "xs:long"},
    {TYPE_INT, SIMPLE_INT, "xs:int"},
    {TYPE_SHORT, SIMPLE_SHORT, "xs:short"},
    {TYPE_BYTE, SIMPLE_BYTE, "xs:byte"},
    {TYPE_UNSIGNED_LONG, SIMPLE_UNSIGNED_LONG, "xs:unsignedLong"},
    {TYPE_UNSIGNED_INT, SIMPLE_UNSIGNED_INT, "xs:unsignedInt"},
    {TYPE_UNSIGNED_SHORT, SIMPLE_UNSIGNED_SHORT, "xs:unsignedShort"},
    {TYPE_UNSIGNED_BYTE, SIMPLE_UNSIGNED_BYTE, "xs:unsignedByte"},
    {TYPE_NON_NEGATIVE_INTEGER, SIMPLE_NON_NEGATIVE_INTEGER, "xs:nonNegativeInteger"}};

TEST(DFDLType, numberingsMapIntoOneAnother) {
    for (const TypeCase& one : TYPES) {
        EXPECT_EQ(DFDLType_getDFDLSimpleTypeFromType(one.type), one.simpleType) << one.name;
        EXPECT_EQ(DFDLType_getTypeFromDFDLSimpleType(one.simpleType), static_cast<uint32_t>(one.type));
        EXPECT_STREQ(DFDLType_getTypeName(one.type), one.name);
        EXPECT_STREQ(DFDLType_getDFDLSimpleTypeName(one.simpleType), one.name);
    }
    for (const uint32_t type : {0U, 1U, 21U, UINT32_MAX}) {
        EXPECT_EQ(DFDLType_getDFDLSimpleTypeFromType(type), 19) << type;
        EXPECT_STREQ(DFDLType_getTypeName(type), "unknown") << type;
    }
    for (const int32_t simpleType : {-1, 19, 20, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(DFDLType_getTypeFromDFDLSimpleType(simpleType), 1U) << simpleType;
        EXPECT_STREQ(DFDLType_getDFDLSimpleTypeName(simpleType), "unknown") << simpleType;
    }
}

// First and last valid length; 0 for none, -1 for no upper bound.
struct LengthCase {
    int32_t simpleType;
    int64_t bytes[2];
    int64_t bits[2];
};

constexpr LengthCase LENGTHS[] = {{SIMPLE_DECIMAL, {1, -1}, {2, -1}},
                                  {SIMPLE_INTEGER, {1, -1}, {2, -1}},
                                  {SIMPLE_NON_NEGATIVE_INTEGER, {1, -1}, {1, -1}},
                                  {SIMPLE_LONG, {1, 8}, {2, 64}},
                                  {SIMPLE_INT, {1, 4}, {2, 32}},
                                  {SIMPLE_SHORT, {1, 2}, {2, 16}},
                                  {SIMPLE_BYTE, {1, 1}, {2, 8}},
                                  {SIMPLE_UNSIGNED_LONG, {1, 8}, {1, 64}},
                                  {SIMPLE_UNSIGNED_INT, {1, 4}, {1, 32}},
                                  {SIMPLE_UNSIGNED_SHORT, {1, 2}, {1, 16}},
                                  {SIMPLE_UNSIGNED_BYTE, {1, 1}, {1, 8}}};

void expectBounds(bool (*isValid)(int32_t, int64_t), int32_t simpleType, const int64_t (&bounds)[2]) {
    const int64_t last = bounds[1] < 0 ? INT64_MAX : bounds[1];
    EXPECT_FALSE(isValid(simpleType, bounds[0] - 1)) << simpleType;
    EXPECT_TRUE(isValid(simpleType, bounds[0])) << simpleType;
    EXPECT_TRUE(isValid(simpleType, last)) << simpleType;
    if (last < INT64_MAX) {
        EXPECT_FALSE(isValid(simpleType, last + 1)) << simpleType;
    }
    EXPECT_FALSE(isValid(simpleType, INT64_MIN)) << simpleType;
}

TEST(DFDLType, lengthsOfBinaryRepresentations) {
    for (const LengthCase& one : LENGTHS) {
        expectBounds(DFDLType_isValidByteLength, one.simpleType, one.bytes);
        expectBounds(DFDLType_isValidBitLength, one.simpleType, one.bits);
    }
    for (const int32_t floating : {SIMPLE_FLOAT, SIMPLE_DOUBLE}) {
        for (int64_t length = -1; length < 70; ++length) {
            EXPECT_EQ(DFDLType_isValidByteLength(floating, length), length == 4 || length == 8) << length;
            EXPECT_FALSE(DFDLType_isValidBitLength(floating, length)) << length;
        }
    }
    for (const int32_t other : {-1, +SIMPLE_STRING, +SIMPLE_DATETIME, +SIMPLE_UNKNOWN, INT32_MAX}) {
        EXPECT_TRUE(DFDLType_isValidByteLength(other, -5)) << other;
        EXPECT_TRUE(DFDLType_isValidBitLength(other, 0)) << other;
    }
}

}  // namespace
