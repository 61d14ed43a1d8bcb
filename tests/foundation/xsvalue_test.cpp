#include "dfdl/foundation/xsvalue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

using OwnedValue = Owned<DFDLValue, delete_DFDLValue>;

struct XSValue : ::testing::Test {
    TestAdapter test;
    DFDLHeapAdapter* heap = test.adapter;
    Owned<DFDLConstants, delete_DFDLConstants> constants{new_DFDLConstants(heap)};
    UErrorCode status = U_ZERO_ERROR;

    OwnedValue text(std::u16string_view chars) {
        return OwnedValue(StringDV_createDFDLValue(
            heap, new_DFDLUStringFromUChars(heap, chars.data(), static_cast<int32_t>(chars.size()))));
    }
    OwnedValue decimal(const char* digits) {
        return OwnedValue(
            DecimalDV_createDFDLValue(heap, new_DFDLDecimalFromChar(heap, constants.get(), digits, 0)));
    }
    OwnedValue bytes(const std::string& content) {
        const auto length = static_cast<int64_t>(content.size());
        uint8_t* data = DFDLBufferFactory_GetBuffer(heap->bufferFactory, length);
        std::copy(content.begin(), content.end(), data);
        return OwnedValue(HexBinaryDV_createDFDLValue(heap, data, length, true));
    }
    using CreateCalendar = DFDLValue* (*)(DFDLHeapAdapter*, DFDLCalendarImpl*, bool, bool);
    OwnedValue calendar(CreateCalendar create, int32_t hour, int32_t offset) {
        DFDLCalendarImpl* record = new_DFDLCalendarImpl(heap);
        DfdlCalendarImpl_setDate(record, 2024, 1, 29);
        DfdlCalendarImpl_setTime(record, hour, 30, 0);
        record->timeZoneOffset = offset;
        record->hasTimeZone = 1;
        return OwnedValue(create(heap, record, true, true));
    }
    // One of every kind, by number.
    OwnedValue sample(uint32_t kind) {
        switch (kind) {
            case TYPE_STRING:
                return text(u"abc");
            case TYPE_DECIMAL:
                return decimal("12.5");
            case TYPE_HEXBINARY:
                return bytes("xyz");
            case TYPE_DATETIME:
                return calendar(DateTimeDV_createDFDLValue, 5, 60);
            case TYPE_TIME:
                return calendar(TimeDV_createDFDLValue, 5, 60);
            case TYPE_DATE:
                return calendar(DateDV_createDFDLValue, 5, 60);
            case TYPE_BOOLEAN:
                return OwnedValue(BooleanDV_createDFDLValue(heap, 1));
            case TYPE_FLOAT:
                return OwnedValue(FloatDV_createDFDLValue(heap, 0.5F));
            case TYPE_DOUBLE:
                return OwnedValue(DoubleDV_createDFDLValue(heap, 0.25));
            default:
                return plainSample(kind);
        }
    }
    OwnedValue plainSample(uint32_t kind) {
        using Create = DFDLValue* (*)(DFDLHeapAdapter*);
        static constexpr Create CREATE[] = {
            DFDLValue_createValue,
            [](DFDLHeapAdapter* h) { return LongLongDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return LongDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return IntDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return ShortDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return ByteDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return UnsignedLongDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return UnsignedIntDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return UnsignedShortDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return UnsignedByteDV_createDFDLValue(h, 100); },
            [](DFDLHeapAdapter* h) { return NonNegativeIntegerDV_createDFDLValue(h, 100); }};
        return OwnedValue(CREATE[kind == TYPE_NONE ? 0 : kind - TYPE_INTEGER + 1](heap));
    }
};

using Kinds = std::set<uint32_t>;

struct KindTest {
    const char* name;
    bool (*test)(const DFDLValue*);
    Kinds kinds;
};

const KindTest KIND_TESTS[] = {
    {"Binary", DFDLValue_IsBinaryValue, {10}},
    {"Boolean", DFDLValue_IsBooleanValue, {3}},
    {"Calendar", DFDLValue_IsCalendarValue, {7, 8, 9}},
    {"Decimal", DFDLValue_IsDecimalValue, {4}},
    {"Float", DFDLValue_IsFloatValue, {5}},
    {"Double", DFDLValue_IsDoubleValue, {6}},
    {"Long", DFDLValue_IsLongValue, {12}},
    {"String", DFDLValue_IsStringValue, {2}},
    {"Int", DFDLValue_IsIntValue, {13}},
    {"LongLong", DFDLValue_IsLongLongValue, {11, 20}},
    {"Byte", DFDLValue_IsByteValue, {15}},
    {"Short", DFDLValue_IsShortValue, {14}},
    {"UInt", DFDLValue_IsUIntValue, {17}},
    {"UShort", DFDLValue_IsUShortValue, {18}},
    {"ULong", DFDLValue_IsULongValue, {16}},
    {"UByte", DFDLValue_IsUByteValue, {19}},
    {"NonNegative", DFDLValue_IsNonNegativeValue, {20}},
    {"Number", DFDLValue_IsNumberValue, {4, 5, 6, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}},
    // In place of the getters: who answers something else than the neutral value.
    {"getString", [](const DFDLValue* v) { return v && DFDLValue_getStringValue(v) != nullptr; }, {2}},
    {"getBoolean", [](const DFDLValue* v) { return v && DFDLValue_getBooleanValue(v) == 1; }, {3}},
    {"getDecimal", [](const DFDLValue* v) { return v && DFDLValue_getDecimalValue(v) != nullptr; }, {4}},
    {"getFloat", [](const DFDLValue* v) { return v && DFDLValue_getFloatValue(v) != 0.0F; }, {5, 6}},
    {"getDouble", [](const DFDLValue* v) { return v && DFDLValue_getDoubleValue(v) != 0.0; }, {5, 6}},
    {"getCalendar", [](const DFDLValue* v) { return DFDLValue_getCalendarValue(v) != nullptr; }, {7, 8, 9}},
    {"getBinary", [](const DFDLValue* v) { return v && DFDLValue_getBinaryValue(v) != nullptr; }, {10}},
    {"getLength", [](const DFDLValue* v) { return v && DFDLValue_getBinaryValueLength(v) == 3; }, {10}},
    {"getLongLong", [](const DFDLValue* v) { return v && DFDLValue_getLongLongValue(v) == 100; }, {11}},
    {"getLong", [](const DFDLValue* v) { return v && DFDLValue_getLongValue(v) == 100; }, {12}},
    {"getInt", [](const DFDLValue* v) { return v && DFDLValue_getIntValue(v) == 100; }, {13}},
    {"getShort", [](const DFDLValue* v) { return v && DFDLValue_getShortValue(v) == 100; }, {14}},
    {"getByte", [](const DFDLValue* v) { return v && DFDLValue_getByteValue(v) == 100; }, {15}},
    {"getULong", [](const DFDLValue* v) { return v && DFDLValue_getULongValue(v) == 100; }, {16}},
    {"getUInt", [](const DFDLValue* v) { return v && DFDLValue_getUIntValue(v) == 100; }, {17}},
    {"getUShort", [](const DFDLValue* v) { return v && DFDLValue_getUShortValue(v) == 100; }, {18}},
    {"getUByte", [](const DFDLValue* v) { return v && DFDLValue_getUByteValue(v) == 100; }, {19}},
    {"getULongLong", [](const DFDLValue* v) { return v && DFDLValue_getULongLongValue(v) == 100; }, {20}}};

TEST_F(XSValue, testsAndGettersAnswerForTheirKindsOnly) {
    for (uint32_t kind = 1; kind <= 20; ++kind) {
        const OwnedValue value = sample(kind);
        ASSERT_EQ(value->schemaType, kind);
        ASSERT_EQ(value->pooled, 0U);
        for (const KindTest& one : KIND_TESTS) {
            EXPECT_EQ(one.test(value.get()), one.kinds.count(kind) == 1) << one.name << " of kind " << kind;
        }
        EXPECT_EQ(DFDLValue_IsSignedQValue(value.get()), kind >= 11 && kind <= 15);
        EXPECT_EQ(DFDLValue_IsUnsignedQValue(value.get()), kind >= 16);
    }
    for (const KindTest& one : KIND_TESTS) EXPECT_FALSE(one.test(nullptr)) << one.name;
}

TEST_F(XSValue, clonesAreDeepAndKeepNil) {
    TestAdapter other;
    for (uint32_t kind = 1; kind <= 20; ++kind) {
        OwnedValue value = sample(kind);
        DFDLValue_setNil(value.get(), true);
        value->pooled = 1;
        const OwnedValue clone(DFDLValue_clone(value.get(), other.adapter));
        ASSERT_NE(clone, nullptr) << kind;
        EXPECT_EQ(clone->heap, other.adapter);
        EXPECT_EQ(clone->schemaType, kind);
        EXPECT_TRUE(DFDLValue_isNil(clone.get())) << kind;
        EXPECT_EQ(clone->pooled, 0U) << kind;
        const int32_t same = kind == TYPE_NONE || kind == TYPE_DECIMAL ? 0 : 1;
        EXPECT_EQ(DFDLValue_compare(value.get(), clone.get(), &status), same) << kind;
        value.reset();  // what the clone holds must not have gone with it
        const OwnedValue again(DFDLValue_clone(clone.get(), heap));
        EXPECT_EQ(DFDLValue_compare(again.get(), clone.get(), &status), same) << kind;
    }
}

TEST_F(XSValue, clonesOfWhatIsMissing) {
    EXPECT_EQ(DFDLValue_clone(nullptr, heap), nullptr);
    const OwnedValue noString(StringDV_createDFDLValue(heap, nullptr));
    const OwnedValue clone(DFDLValue_clone(noString.get(), heap));
    ASSERT_NE(DFDLValue_getStringValue(clone.get()), nullptr);
    EXPECT_EQ(DFDLUString_length(DFDLValue_getStringValue(clone.get())), 0);
    const OwnedValue noCalendar(TimeDV_createDFDLValue(heap, nullptr, true, false));
    EXPECT_EQ(DFDLValue_clone(noCalendar.get(), heap), nullptr);
    EXPECT_FALSE(DateTimeDV_hasDate(noCalendar.get()) || DateTimeDV_hasTime(noCalendar.get()));
    for (const uint32_t noKind : {0U, 21U, UINT32_MAX}) {
        const OwnedValue value(DFDLValue_createValue(heap));
        value->schemaType = noKind;
        EXPECT_EQ(DFDLValue_clone(value.get(), heap), nullptr) << noKind;
    }
}

TEST_F(XSValue, borrowedPayloadStays) {
    uint8_t data[2] = {1, 2};
    DFDLCalendarImpl* record = new_DFDLCalendarImpl(heap);
    { const OwnedValue value(HexBinaryDV_createDFDLValue(heap, data, 2, false)); }
    { const OwnedValue value(DateDV_createDFDLValue(heap, record, false, false)); }
    EXPECT_EQ(record->heap, heap);
    delete_DFDLCalendarImplFromUCalendar(record);
}

struct RangeCase {
    DFDLType kind;
    uint64_t payload;
    bool inRange;
};

constexpr uint64_t negative(int64_t number) { return static_cast<uint64_t>(number); }

constexpr RangeCase RANGES[] = {{TYPE_BYTE, 127, true},
                                {TYPE_BYTE, 128, false},
                                {TYPE_BYTE, negative(-128), true},
                                {TYPE_BYTE, negative(-129), false},
                                {TYPE_SHORT, 32767, true},
                                {TYPE_SHORT, 32768, false},
                                {TYPE_SHORT, negative(-32768), true},
                                {TYPE_SHORT, negative(-32769), false},
                                {TYPE_INT, 2147483647, true},
                                {TYPE_INT, 2147483648, false},
                                {TYPE_INT, negative(-2147483648), true},
                                {TYPE_INT, negative(-2147483649), false},
                                {TYPE_UNSIGNED_BYTE, 255, true},
                                {TYPE_UNSIGNED_BYTE, 256, false},
                                {TYPE_UNSIGNED_BYTE, negative(-1), false},
                                {TYPE_UNSIGNED_SHORT, 65535, true},
                                {TYPE_UNSIGNED_SHORT, 65536, false},
                                {TYPE_UNSIGNED_INT, 4294967295, true},
                                {TYPE_UNSIGNED_INT, 4294967296, false},
                                {TYPE_LONG, negative(INT64_MIN), true},
                                {TYPE_UNSIGNED_LONG, UINT64_MAX, true},
                                {TYPE_INTEGER, UINT64_MAX, true},
                                {TYPE_NON_NEGATIVE_INTEGER, UINT64_MAX, true},
                                {TYPE_BOOLEAN, 12345, true},
                                {TYPE_NONE, UINT64_MAX, true}};

TEST_F(XSValue, ranges) {
    const OwnedValue value(DFDLValue_createValue(heap));
    for (const RangeCase& one : RANGES) {
        DFDLValue_setDFDLSchemaType(value.get(), one.kind);
        value->u.unsignedQ = one.payload;
        EXPECT_EQ(DFDLValue_inRangeForSchemaType(value.get()), one.inRange) << one.kind << ' ' << one.payload;
    }
}

TEST_F(XSValue, narrowSettersExtendAndNarrowGettersCut) {
    const OwnedValue value(UnsignedByteDV_createDFDLValue(heap, 0));
    DFDLValue_setULongValue(value.get(), 300);
    EXPECT_EQ(DFDLValue_getUByteValue(value.get()), 44);
    DFDLValue_setByteValue(value.get(), -2);
    EXPECT_EQ(value->u.signedQ, -2);
    DFDLValue_setShortValue(value.get(), -3);
    EXPECT_EQ(value->u.signedQ, -3);
    DFDLValue_setIntValue(value.get(), -4);
    EXPECT_EQ(value->u.signedQ, -4);
    DFDLValue_setUByteValue(value.get(), 0xFE);
    EXPECT_EQ(value->u.unsignedQ, 0xFEU);
    DFDLValue_setUShortValue(value.get(), 0xFEFE);
    EXPECT_EQ(value->u.unsignedQ, 0xFEFEU);
    DFDLValue_setUIntValue(value.get(), 0xFEFEFEFE);
    EXPECT_EQ(value->u.unsignedQ, 0xFEFEFEFEU);
    DFDLValue_setDFDLSchemaType(value.get(), TYPE_SHORT);
    DFDLValue_setLongLongValue(value.get(), 0x18000);
    EXPECT_EQ(DFDLValue_getShortValue(value.get()), -32768);
}

TEST_F(XSValue, floatingGettersConvert) {
    const OwnedValue large(DoubleDV_createDFDLValue(heap, 1e300));
    EXPECT_TRUE(std::isinf(DFDLValue_getFloatValue(large.get())));
    const OwnedValue tenth(FloatDV_createDFDLValue(heap, 0.1F));
    EXPECT_EQ(DFDLValue_getDoubleValue(tenth.get()), 0.10000000149011612);
}

TEST_F(XSValue, wordsOfOtherKindsAbort) {
    const OwnedValue value(UnsignedIntDV_createDFDLValue(heap, 9));
    EXPECT_EQ(DFDLValue_getUnsignedQValue(value.get()), 9U);
    EXPECT_DEATH(static_cast<void>(DFDLValue_getSignedQValue(value.get())), "");
    EXPECT_DEATH(DFDLValue_setSignedQValue(value.get(), 1), "");
    DFDLValue_setDFDLSchemaType(value.get(), TYPE_DOUBLE);
    EXPECT_DEATH(static_cast<void>(DFDLValue_getUnsignedQValue(value.get())), "");
    EXPECT_DEATH(DFDLValue_setUnsignedQValue(value.get(), 1), "");
}

TEST_F(XSValue, decimalValueKeepsItsNumberAndModelType) {
    const OwnedValue value = decimal("5");
    DFDLDecimal* number = DFDLValue_getDecimalValue(value.get());
    EXPECT_EQ(DecimalDV_getModelSchemaType(value.get()), static_cast<uint32_t>(SIMPLE_DECIMAL));
    DecimalDV_setModelSchemaType(value.get(), SIMPLE_LONG);
    const OwnedValue clone(DecimalDV_clone(value.get(), heap));
    EXPECT_EQ(DecimalDV_getModelSchemaType(clone.get()), static_cast<uint32_t>(SIMPLE_LONG));
    DFDLValue_setDecimalValue(value.get(), nullptr);
    EXPECT_EQ(DFDLValue_getDecimalValue(value.get()), number);
}

TEST_F(XSValue, comparison) {
    struct Case {
        const char* what;
        OwnedValue a;
        OwnedValue b;
        int32_t result;
    };
    Case cases[] = {
        {"equal strings", text(u"ab"), text(u"ab"), 1},
        {"different strings", text(u"ab"), text(u"aB"), 0},
        {"different kinds, same word", plainSample(TYPE_INT), plainSample(TYPE_LONG), 0},
        {"carriers of a nil", plainSample(TYPE_NONE), plainSample(TYPE_NONE), 0},
        {"equal decimals answer the other way round", decimal("1.50"), decimal("1.5"), 0},
        {"different decimals", decimal("1"), decimal("2"), -1},
        {"NaN", OwnedValue(DoubleDV_createDFDLValue(heap, NOT_A_NUMBER)),
         OwnedValue(DoubleDV_createDFDLValue(heap, NOT_A_NUMBER)), 0},
        {"both zeros", OwnedValue(FloatDV_createDFDLValue(heap, 0.0F)),
         OwnedValue(FloatDV_createDFDLValue(heap, -0.0F)), 1},
        {"true is a word", OwnedValue(BooleanDV_createDFDLValue(heap, 1)),
         OwnedValue(BooleanDV_createDFDLValue(heap, 2)), 0},
        {"empty bytes", bytes(""), OwnedValue(HexBinaryDV_createDFDLValue(heap, nullptr, 0, false)), 1},
        {"equal bytes", bytes("qq"), bytes("qq"), 1},
        {"a prefix", bytes("qq"), bytes("q"), 0},
        {"same instant, other zone", calendar(DateTimeDV_createDFDLValue, 5, 60),
         calendar(DateTimeDV_createDFDLValue, 4, 0), 1},
        {"same clock, other zone", calendar(DateTimeDV_createDFDLValue, 5, 60),
         calendar(DateTimeDV_createDFDLValue, 5, 0), 0},
        {"date and date-time", calendar(DateDV_createDFDLValue, 5, 60),
         calendar(DateTimeDV_createDFDLValue, 5, 60), 0},
        {"no calendar", OwnedValue(DateDV_createDFDLValue(heap, nullptr, false, false)),
         OwnedValue(DateDV_createDFDLValue(heap, nullptr, false, false)), 0}};
    for (const Case& one : cases) {
        EXPECT_EQ(DFDLValue_compare(one.a.get(), one.b.get(), &status), one.result) << one.what;
        EXPECT_EQ(DFDLValue_equal(one.a.get(), one.b.get(), &status), one.result != 0) << one.what;
        EXPECT_TRUE(DFDLValue_equal(one.a.get(), one.a.get(), &status)) << one.what;
    }
}

TEST_F(XSValue, toStringIsTheStringItselfOrNew) {
    const OwnedValue string = text(u"abc");
    EXPECT_EQ(DFDLValue_toString(string.get(), &status, heap), DFDLValue_getStringValue(string.get()));
    struct Case {
        OwnedValue value;
        std::u16string_view text;
    };
    Case cases[] = {{OwnedValue(BooleanDV_createDFDLValue(heap, 7)), u"true"},
                    {OwnedValue(BooleanDV_createDFDLValue(heap, 0)), u"false"},
                    {OwnedValue(LongLongDV_createDFDLValue(heap, INT64_MIN)), u"-9223372036854775808"},
                    {OwnedValue(UnsignedLongDV_createDFDLValue(heap, UINT64_MAX)), u"18446744073709551615"},
                    {decimal("-12.5"), u"-12.5"},
                    {bytes("\x0F\xA0"), u"0FA0"},
                    {plainSample(TYPE_NONE), u"0"}};
    for (const Case& one : cases) {
        const Owned<DFDLUString, delete_DFDLUString> got(DFDLValue_toString(one.value.get(), &status, heap));
        EXPECT_EQ(DFDLUString_view(got.get()), one.text);
    }
}

// The kind would say something else in every one of these.
TEST_F(XSValue, calendarsShowWhatIsPresent) {
    struct Case {
        CreateCalendar create;
        bool hasDate;
        bool hasTime;
        std::u16string_view text;
    };
    for (const Case& one : {Case{TimeDV_createDFDLValue, true, true, u"2024-02-29T05:30:00+01:00"},
                            Case{DateTimeDV_createDFDLValue, true, false, u"2024-02-29+01:00"},
                            Case{DateDV_createDFDLValue, false, true, u"05:30:00+01:00"}}) {
        const OwnedValue value = calendar(one.create, 5, 60);
        DFDLCalendarImpl* record = DFDLValue_getCalendarValue(value.get());
        record->hasDate = one.hasDate ? 1 : 0;
        record->hasTime = one.hasTime ? 1 : 0;
        const Owned<DFDLUString, delete_DFDLUString> got(DFDLValue_toString(value.get(), &status, heap));
        EXPECT_EQ(DFDLUString_view(got.get()), one.text);
    }
    const OwnedValue none(DateDV_createDFDLValue(heap, nullptr, false, false));
    const Owned<DFDLUString, delete_DFDLUString> got(DFDLValue_toString(none.get(), &status, heap));
    EXPECT_EQ(DFDLUString_length(got.get()), 0);
}

TEST_F(XSValue, toIntegers) {
    struct Case {
        const char* what;
        OwnedValue value;
        int64_t asSigned;
        uint64_t asUnsigned;
    };
    constexpr uint64_t TOP = 1ULL << 63;
    Case cases[] = {
        {"text", text(u"42"), 42, 42},
        {"decimal", decimal("17"), 17, 17},
        {"towards zero", OwnedValue(DoubleDV_createDFDLValue(heap, -2.9)), -2, negative(-2)},
        {"float", OwnedValue(FloatDV_createDFDLValue(heap, 2.9F)), 2, 2},
        {"2^63", OwnedValue(DoubleDV_createDFDLValue(heap, 0x1p63)), INT64_MIN, TOP},
        {"2^63 + 4096", OwnedValue(DoubleDV_createDFDLValue(heap, 0x1p63 + 4096)), INT64_MIN, TOP + 4096},
        {"beyond 64 bits", OwnedValue(DoubleDV_createDFDLValue(heap, INFINITE)), INT64_MIN, 0},
        {"word of the other sign", OwnedValue(ShortDV_createDFDLValue(heap, -1)), -1, UINT64_MAX},
        {"unsigned word", OwnedValue(UnsignedLongDV_createDFDLValue(heap, UINT64_MAX)), -1, UINT64_MAX},
        {"no number", OwnedValue(BooleanDV_createDFDLValue(heap, 1)), 0, 0}};
    for (const Case& one : cases) {
        EXPECT_EQ(DFDLValue_toSignedInt(one.value.get(), &status), one.asSigned) << one.what;
        EXPECT_EQ(DFDLValue_toUnsignedInt(one.value.get(), &status), one.asUnsigned) << one.what;
    }
}

}  // namespace
