#include <gtest/gtest.h>

#include <vector>

#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "support/testheap.h"

namespace {

struct Record {
    DFDLHeapAdapter* heap;
    int32_t resets;
};

int32_t destroyed;

void* createRecord(DFDLHeapAdapter* heap) { return DFDLHeapAdapter_new<Record>(heap); }
void destroyRecord(void* record) {
    ++destroyed;
    DFDLHeapAdapter_objectDeallocate(static_cast<Record*>(record)->heap, record);
}
void resetRecord(void* record) { ++static_cast<Record*>(record)->resets; }

constexpr PoolTraits TRAITS = {10, 100, createRecord, destroyRecord, resetRecord};

std::vector<void*> take(ObjectPool* pool, size_t count) {
    std::vector<void*> records(count);
    for (void*& record : records) record = ObjectPool_get(pool);
    return records;
}

struct ObjectPoolTest : ::testing::Test {
    TestAdapter test;
    ObjectPool* pool =
        DFDLPoolingFactory_pool(test.adapter->poolingFactory, POOL_BACKTRACKING_CHECKPOINT, &TRAITS);

    void SetUp() override { destroyed = 0; }
};

TEST_F(ObjectPoolTest, recordBeyondTheLimitIsDestroyed) {
    const std::vector<void*> records = take(pool, 101);
    for (size_t i = 0; i < 100; ++i) ObjectPool_release(pool, records[i]);
    EXPECT_EQ(destroyed, 0);
    ObjectPool_release(pool, records[100]);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(ObjectPool_get(pool), records[99]) << "the record released last comes first";
    ObjectPool_release(pool, records[99]);
}

// Records go back while an allocation failure is on its way: that must not ask for memory.
TEST_F(ObjectPoolTest, givingBackNeverAllocates) {
    for (const size_t count : {1U, 15U, 60U, 250U}) {
        const std::vector<void*> records = take(pool, count);
        const long before = test.heap.allocations;
        for (void* record : records) ObjectPool_release(pool, record);
        EXPECT_EQ(test.heap.allocations, before) << count;
    }
    EXPECT_EQ(pool->freeRecords->count, 100);
}

TEST_F(ObjectPoolTest, factoryResetReachesFreeRecordsAndDropsMarkers) {
    ObjectPool* markers = DFDLPoolingFactory_pool(test.adapter->poolingFactory, POOL_BUFFER_MARKER, &TRAITS);
    const std::vector<void*> records = take(pool, 3);
    ObjectPool_release(pool, records[1]);
    ObjectPool_release(markers, ObjectPool_get(markers));
    DFDLPoolingFactory_reset(test.adapter->poolingFactory);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(markers->freeRecords->count, 0);
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(static_cast<Record*>(records[i])->resets, i == 1 ? 1 : 0);
        if (i != 1) ObjectPool_release(pool, records[i]);
    }
}

struct ValueCase {
    DFDLType kind;
    PoolId pool;
    DFDLValue* (*get)(DFDLPoolingFactory*);
};

template <auto Get, auto Payload>
DFDLValue* with(DFDLPoolingFactory* factory) {
    return Get(factory, Payload);
}

constexpr int64_t SIGNED = -77;
constexpr uint64_t UNSIGNED = 0xFFFFFFFFFFFFFF00U;
const ValueCase VALUE_CASES[] = {
    {TYPE_INTEGER, POOL_LONG_LONG_VALUE, with<DFDLPoolingFactory_getLongLongDFDLValue, SIGNED>},
    {TYPE_LONG, POOL_LONG_LONG_VALUE, with<DFDLPoolingFactory_getLongDFDLValue, SIGNED>},
    {TYPE_INT, POOL_LONG_LONG_VALUE, with<DFDLPoolingFactory_getIntDFDLValue, SIGNED>},
    {TYPE_SHORT, POOL_LONG_LONG_VALUE, with<DFDLPoolingFactory_getShortDFDLValue, SIGNED>},
    {TYPE_BYTE, POOL_LONG_LONG_VALUE, with<DFDLPoolingFactory_getByteDFDLValue, SIGNED>},
    {TYPE_UNSIGNED_LONG, POOL_ULONG_LONG_VALUE, with<DFDLPoolingFactory_getUnsignedLongDFDLValue, UNSIGNED>},
    {TYPE_UNSIGNED_INT, POOL_ULONG_LONG_VALUE, with<DFDLPoolingFactory_getUnsignedIntDFDLValue, UNSIGNED>},
    {TYPE_UNSIGNED_SHORT, POOL_ULONG_LONG_VALUE,
     with<DFDLPoolingFactory_getUnsignedShortDFDLValue, UNSIGNED>},
    {TYPE_UNSIGNED_BYTE, POOL_ULONG_LONG_VALUE, with<DFDLPoolingFactory_getUnsignedByteDFDLValue, UNSIGNED>},
    {TYPE_NON_NEGATIVE_INTEGER, POOL_ULONG_LONG_VALUE,
     with<DFDLPoolingFactory_getNonNegativeIntDFDLValue, UNSIGNED>},
    {TYPE_FLOAT, POOL_FLOAT_VALUE,
     [](DFDLPoolingFactory* factory) { return DFDLPoolingFactory_getFloatDFDLValue(factory, 1.5F); }},
    {TYPE_DOUBLE, POOL_DOUBLE_VALUE,
     [](DFDLPoolingFactory* factory) { return DFDLPoolingFactory_getDoubleDFDLValue(factory, -2.5); }},
    {TYPE_STRING, POOL_STRING_VALUE, [](DFDLPoolingFactory* factory) {
         return DFDLPoolingFactory_getStringDFDLValue(factory, new_DFDLUString(factory->heap));
     }}};

void expectPayload(const DFDLValue* value) {
    const uint32_t kind = value->schemaType;
    if (DFDLValue_IsSignedQValue(value)) {
        EXPECT_EQ(value->u.signedQ, SIGNED) << kind;
    }
    if (DFDLValue_IsUnsignedQValue(value)) {
        EXPECT_EQ(value->u.unsignedQ, UNSIGNED) << kind;
    }
    if (kind == TYPE_FLOAT) {
        EXPECT_EQ(value->u.floatValue, 1.5F);
    }
    if (kind == TYPE_DOUBLE) {
        EXPECT_EQ(value->u.doubleValue, -2.5);
    }
    if (kind == TYPE_STRING) {
        EXPECT_EQ(DFDLUString_length(value->u.string), 0);
    }
}

TEST(ValuePools, everyKindComesFromItsPoolAndGoesBackToIt) {
    for (const ValueCase& one : VALUE_CASES) {
        TestAdapter test;
        DFDLPoolingFactory* factory = test.adapter->poolingFactory;
        // A record that another kind has used, with a nil left on it.
        DFDLValue* used = one.get(factory);
        used->nil = 1;
        DFDLPoolingFactory_releaseDFDLValue(factory, used);
        ASSERT_EQ(factory->pools[one.pool].freeRecords->count, 1) << one.kind;
        DFDLValue* value = one.get(factory);
        EXPECT_EQ(value, used) << one.kind;
        EXPECT_EQ(value->schemaType, static_cast<uint32_t>(one.kind));
        EXPECT_EQ(value->heap, test.adapter);
        EXPECT_EQ(value->pooled, 1U) << one.kind;
        EXPECT_EQ(value->nil, 0U) << one.kind;
        expectPayload(value);
        DFDLPoolingFactory_releaseDFDLValue(factory, value);
    }
}

TEST(ValuePools, releasedStringValueHoldsNoString) {
    TestAdapter test;
    DFDLPoolingFactory* factory = test.adapter->poolingFactory;
    DFDLUString* text = DFDLUStringPooler_getDFDLUStringFromUChars(test.adapter, u"abc", 3);
    DFDLValue* value = DFDLPoolingFactory_getStringDFDLValue(factory, text);
    DFDLPoolingFactory_releaseDFDLValue(factory, value);
    EXPECT_EQ(value->u.string, nullptr);
    value->u.string = new_DFDLUStringFromUChars(test.adapter, u"left", 4);
    DFDLPoolingFactory_reset(factory);
    EXPECT_EQ(value->u.string, nullptr);
}

TEST(ValuePools, valuesOfNoPoolAreDeleted) {
    TestAdapter test;
    DFDLPoolingFactory* factory = test.adapter->poolingFactory;
    DFDLPoolingFactory_releaseDFDLValue(factory, nullptr);
    DFDLValue* oddities[] = {IntDV_createDFDLValue(test.adapter, 3),
                             BooleanDV_createDFDLValue(test.adapter, 1), DFDLValue_createValue(test.adapter),
                             DFDLValue_createValue(test.adapter)};
    oddities[1]->pooled = 1;
    oddities[3]->pooled = 1;
    oddities[3]->schemaType = 21;
    for (DFDLValue* value : oddities) DFDLPoolingFactory_releaseDFDLValue(factory, value);
    EXPECT_EQ(factory->pools[POOL_LONG_LONG_VALUE].freeRecords, nullptr);
    EXPECT_EQ(factory->pools[POOL_VALUE_RECORD].freeRecords->count, 4) << "only their memory is kept";
}

TEST(ValuePools, deletedValuesLeaveNothingInTheNext) {
    TestAdapter test;
    DFDLValue* old = HexBinaryDV_createDFDLValue(test.adapter, nullptr, 77, true);
    old->nil = 1;
    delete_DFDLValue(old);
    const size_t blocks = DFDLHeapAdapter_countBlocks(test.adapter);
    DFDLValue* value = DFDLValue_createValue(test.adapter);
    EXPECT_EQ(value, old);
    EXPECT_EQ(DFDLHeapAdapter_countBlocks(test.adapter), blocks);
    EXPECT_EQ(value->heap, test.adapter);
    EXPECT_EQ(value->nil, 0U);
    EXPECT_EQ(value->u.binary.length, 0);
    delete_DFDLValue(value);
}

TEST(ValuePools, the5001stFreeRecordIsDeleted) {
    TestAdapter test;
    DFDLPoolingFactory* factory = test.adapter->poolingFactory;
    std::vector<DFDLValue*> values;
    for (int i = 0; i < 5001; ++i) values.push_back(DFDLPoolingFactory_getIntDFDLValue(factory, i));
    for (DFDLValue* value : values) DFDLPoolingFactory_releaseDFDLValue(factory, value);
    EXPECT_EQ(factory->pools[POOL_LONG_LONG_VALUE].freeRecords->count, 5000);
}

TEST(ValuePools, pooledStringsGoAwayWhileDestructing) {
    TestAdapter test;
    DFDLUString* text = DFDLUStringPooler_getDFDLUStringFromUChars(test.adapter, u"x", 1);
    const size_t before = DFDLHeapAdapter_countBlocks(test.adapter);
    DFDLPoolingFactory_setDestructing(test.adapter->poolingFactory);
    delete_DFDLUString(text);
    EXPECT_LT(DFDLHeapAdapter_countBlocks(test.adapter), before);
}

}  // namespace
