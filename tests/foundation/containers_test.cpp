#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlbytehashmap.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustringbuffer.h"
#include "dfdl/foundation/dfdlustringset.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/hashtable.h"
#include "dfdl/foundation/intarraystore.h"
#include "dfdl/foundation/integerhashmap.h"
#include "dfdl/foundation/integerhashtable.h"
#include "dfdl/foundation/stack.h"
#include "dfdl/foundation/stringidmap.h"
#include "support/testheap.h"

namespace {

using String = Owned<DFDLUString, delete_DFDLUString>;

String make(DFDLHeapAdapter* heap, std::u16string_view text) {
    return String(new_DFDLUStringFromUChars(heap, text.data(), static_cast<int32_t>(text.size())));
}

std::vector<int> deleted;  // values that a map has let go of

void countDelete(DFDLHeapAdapter* /*heap*/, void* value) { deleted.push_back(*static_cast<int*>(value)); }

struct ContainersTest : ::testing::Test {
    TestAdapter test;
    DFDLHeapAdapter* heap = test.adapter;
    int one = 1, two = 2, three = 3;

    void SetUp() override { deleted.clear(); }
};

TEST_F(ContainersTest, stringMapGrowsWhenEntriesReachItsBuckets) {
    DFDLStringHashMap* map = new_DFDLStringHashMap(heap, 2);
    std::vector<String> keys;
    for (int i = 0; i < 40; ++i) {
        keys.push_back(make(heap, std::u16string(1, static_cast<char16_t>(u'a' + i))));
        DFDLStringHashMap_put(map, keys.back().get(), keys.back().get(), true);
        const int32_t expected = i == 0 ? 2 : i == 1 ? 4 : map->chains.bucketCount;
        EXPECT_EQ(map->chains.bucketCount, expected) << i;
    }
    EXPECT_EQ(map->chains.bucketCount, 64);
    EXPECT_EQ(map->chains.buckets[63], nullptr) << "the last bucket stays empty";
    for (const String& key : keys) EXPECT_EQ(DFDLStringHashMap_get(map, key.get()), key.get());
    delete_DFDLStringHashMap(map);
}

TEST_F(ContainersTest, stringMapLetsGoOfValues) {
    DFDLStringHashMap* map = new_DFDLStringHashMap(heap, 4, countDelete);
    const String a = make(heap, u"a");
    const String b = make(heap, u"b");
    const String c = make(heap, u"c");
    DFDLStringHashMap_put(map, a.get(), &one, false);
    DFDLStringHashMap_put(map, a.get(), &one, false);
    EXPECT_EQ(deleted, (std::vector<int>{})) << "the same value again is not let go of";
    DFDLStringHashMap_put(map, a.get(), &two, false);
    EXPECT_EQ(deleted, (std::vector<int>{1}));
    DFDLStringHashMap_put(map, b.get(), &three, true);
    DFDLStringHashMap_reset(map);
    std::sort(deleted.begin(), deleted.end());
    EXPECT_EQ(deleted, (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(DFDLStringHashMap_containsKey(map, a.get()));
    EXPECT_EQ(DFDLStringHashMap_get(map, a.get()), nullptr);
    DFDLStringHashMap_removeDirect(map, DFDLStringHashMap_put(map, c.get(), &one, false));
    EXPECT_EQ(deleted.size(), 4U);
    EXPECT_FALSE(DFDLStringHashMap_remove(map, c.get()));
    EXPECT_TRUE(DFDLStringHashMap_remove(map, a.get()));
    EXPECT_EQ(DFDLStringHashMap_size(map), 1);
    delete_DFDLStringHashMap(map);
}

// Required as it stands: maps are sized by it.
TEST_F(ContainersTest, stringHash) {
    EXPECT_EQ(DFDLStringHashMap_hash(u""), 0U);
    EXPECT_EQ(DFDLStringHashMap_hash(u"ab"), 97U * 38 + 98);
    uint32_t hash = 0;
    for (int i = 0; i < 12; ++i) hash = hash + u'\uFFFF' + (hash >> 24) + hash * 37;
    EXPECT_EQ(DFDLStringHashMap_hash(std::u16string(12, u'\uFFFF')), hash);
}

TEST_F(ContainersTest, integerMapTellsSignsApart) {
    IntegerHashMap* map = new_IntegerHashMap(heap, 4, countDelete);
    IntegerHashMap_put(map, 5, &one);
    IntegerHashMap_put(map, -5, &two);
    IntegerHashMap_put(map, INT32_MIN, &three);
    EXPECT_NE(map->chains.buckets[2], nullptr);
    EXPECT_EQ(IntegerHashMap_find(map, 5), IntegerHashMap_find(map, -5)->next);
    EXPECT_EQ(IntegerHashMap_get(map, 5), &one);
    EXPECT_EQ(IntegerHashMap_get(map, -5), &two);
    EXPECT_EQ(IntegerHashMap_get(map, INT32_MIN), &three);
    EXPECT_TRUE(IntegerHashMap_remove(map, 5));
    EXPECT_FALSE(IntegerHashMap_containsKey(map, 5));
    EXPECT_TRUE(IntegerHashMap_containsKey(map, -5));
    IntegerHashMap_reset(map);
    EXPECT_TRUE(IntegerHashMap_containsKey(map, -5));
    EXPECT_EQ(deleted.size(), 3U);
    IntegerHashMap_clear(map);
    EXPECT_EQ(IntegerHashMap_size(map), 0);
    delete_IntegerHashMap(map);
}

TEST_F(ContainersTest, mapsOfOneBucketWork) {
    DFDLByteHashMap* bytes = new_DFDLByteHashMap(heap, 0);
    for (const int key : {7, 255, 7, 0}) DFDLByteHashMap_put(bytes, static_cast<uint8_t>(key), &one);
    DFDLByteHashMap_put(bytes, 7, &two);
    uint8_t keys[BYTE_HASH_MAP_KEYS];
    ASSERT_EQ(DFDLByteHashMap_getKeys(bytes, keys), 3);
    EXPECT_EQ(std::set<uint8_t>(keys, keys + 3), (std::set<uint8_t>{0, 7, 255}));
    EXPECT_EQ(DFDLByteHashMap_get(bytes, 7), &two);
    EXPECT_EQ(DFDLByteHashMap_get(bytes, 8), nullptr);
    delete_DFDLByteHashMap(bytes);

    Hashtable* table = new_Hashtable(
        heap, 0, [](const void* key) { return *static_cast<const uint32_t*>(key); },
        [](const void* a, const void* b) {
            return *static_cast<const uint32_t*>(a) == *static_cast<const uint32_t*>(b);
        },
        countDelete);
    const uint32_t key = 9, equal = 9, other = 10;
    Hashtable_put(table, &key, &one);
    Hashtable_put(table, &equal, &two);
    EXPECT_EQ(Hashtable_get(table, &key), &two);
    EXPECT_FALSE(Hashtable_containsKey(table, &other));
    EXPECT_EQ(Hashtable_size(table), 1);
    delete_Hashtable(table);
    EXPECT_EQ(deleted, (std::vector<int>{1, 2}));
}

TEST_F(ContainersTest, integerTable) {
    IntegerHashtable* table = new_IntegerHashtable(heap);
    for (int32_t key = 0; key < 95; ++key) IntegerHashtable_put(table, -1000 * key, key);
    EXPECT_EQ(table->mask, 127);
    IntegerHashtable_put(table, 1, 1000);
    EXPECT_EQ(table->mask, 255) << "more than three quarters of the mask";
    IntegerHashtable_put(table, 1, 1001);
    for (int32_t key = 0; key < 95; ++key) EXPECT_EQ(IntegerHashtable_get(table, -1000 * key), key);
    EXPECT_EQ(IntegerHashtable_get(table, 1), 1001);
    EXPECT_EQ(IntegerHashtable_get(table, 2), -1);
    EXPECT_EQ(IntegerHashtable_getKey(table, 94), -94000);
    std::vector<int32_t> keys(96);
    ASSERT_EQ(IntegerHashtable_size(table), 96);
    IntegerHashtable_getKeys(table, keys.data());
    EXPECT_EQ(std::set<int32_t>(keys.begin(), keys.end()).size(), 96U);
    delete_IntegerHashtable(table);
}

TEST_F(ContainersTest, stringIdsAreLookedUpOnce) {
    StringIDMap* map = new_StringIDMap(heap);
    DFDLString* name = new_DFDLString_fromCString(heap, "symbols");
    int calls = 0;
    EXPECT_EQ(StringIDMap_getStringIDForSymbol(map, 4), 0);
    StringIDMap_setSymbolTable(map, name);
    StringIDMap_setStringIDLookup(
        map,
        [](void* context, const DFDLString* table, int32_t symbol) {
            ++*static_cast<int*>(context);
            return table->length + symbol;
        },
        &calls);
    EXPECT_EQ(StringIDMap_getStringIDForSymbol(map, 4), 11);
    EXPECT_EQ(StringIDMap_getStringIDForSymbol(map, 4), 11);
    EXPECT_EQ(calls, 1);
    StringIDMap_setSymbolTable(map, name);
    EXPECT_EQ(StringIDMap_getStringIDForSymbol(map, 4), 11);
    EXPECT_EQ(calls, 2);
    delete_DFDLString(name);
    delete_StringIDMap(map);
}

TEST_F(ContainersTest, stringSetKeepsIndices) {
    DFDLUStringSet* set = new_DFDLUStringSet(heap);
    for (char16_t c = u'a'; c < u'l'; ++c) EXPECT_TRUE(DFDLUStringSet_add(set, make(heap, {&c, 1}).get()));
    EXPECT_FALSE(DFDLUStringSet_add(set, make(heap, u"c").get()));
    EXPECT_EQ(set->capacity, 20);
    EXPECT_EQ(DFDLUStringSet_indexOf(set, make(heap, u"k").get()), 10);
    EXPECT_TRUE(DFDLUStringSet_remove(set, make(heap, u"b").get()));
    EXPECT_EQ(DFDLUStringSet_indexOf(set, make(heap, u"").get()), -1) << "a free slot is no empty string";
    EXPECT_EQ(DFDLUStringSet_addAndIndex(set, make(heap, u"").get()), 1);
    EXPECT_EQ(DFDLUString_view(DFDLUStringSet_get(set, 10)), u"k");
    EXPECT_EQ(DFDLUStringSet_get(set, 20), nullptr);
    delete_DFDLUStringSet(set);
}

struct Row {
    int32_t* constructed;
    int32_t value;
};

void constructRow(void* row, DFDLHeapAdapter* heap, void* contextWord) {
    auto* live = static_cast<int32_t*>(contextWord);
    if (*live == 6) DFDLHeapAdapter_refuse(heap);
    static_cast<Row*>(row)->constructed = live;
    ++*live;
}

void destroyRow(void* row, DFDLHeapAdapter* /*heap*/, void* /*contextWord*/) {
    --*static_cast<Row*>(row)->constructed;
}

TEST_F(ContainersTest, arrayDestroysWhatItConstructed) {
    int32_t live = 0;
    Array* array = new_Array(heap, 2, sizeof(Row), constructRow, destroyRow, nullptr, &live);
    EXPECT_EQ(live, 2);
    Array_ensureSize_private(array, 4);
    EXPECT_EQ(live, 4);
    EXPECT_THROW(Array_ensureSize_private(array, 9), AllocationFailure);
    EXPECT_EQ(array->capacity, 6);
    array->count = 3;
    EXPECT_EQ(Array_indexOf(array, Array_at(array, 2)), 2);
    EXPECT_EQ(Array_indexOf(array, array->rows + 1), -1) << "inside a row";
    EXPECT_EQ(Array_indexOf(array, Array_at(array, 3)), -1) << "not in use";
    EXPECT_EQ(Array_row<Row>(array, 3), nullptr);
    delete_Array(array);
    EXPECT_EQ(live, 0);
    EXPECT_THROW(new_Array(heap, 9, sizeof(Row), constructRow, destroyRow, nullptr, &live),
                 AllocationFailure);
    EXPECT_EQ(live, 0);
}

TEST_F(ContainersTest, stack) {
    Stack* stack = new_Stack(heap, 0, sizeof(Row), nullptr, nullptr, nullptr);
    EXPECT_EQ(Stack_peek(stack), nullptr);
    for (int32_t i = 0; i < 5; ++i) static_cast<Row*>(Stack_push(stack))->value = i;
    EXPECT_EQ(stack->top, 4);
    Stack_pop(stack);
    EXPECT_EQ(static_cast<Row*>(Stack_peek(stack))->value, 3);
    Stack_reset(stack);
    Stack_pop(stack);
    EXPECT_TRUE(Stack_isEmpty(stack));
    delete_Stack(stack);
}

TEST_F(ContainersTest, lists) {
    ArrayList* list = new_ArrayListOfPointers(heap, 0);
    EXPECT_EQ(list->capacity, 10);
    delete_ArrayList(list);
    IntArrayStore* store = new_IntArrayStore(heap, 1);
    for (int64_t i = 0; i < 12; ++i) IntArrayStore_add(store, i << 32);
    IntArrayStore_set(store, 14, 7);
    EXPECT_EQ(IntArrayStore_size(store), 15);
    EXPECT_EQ(IntArrayStore_get(store, 13), 0);
    EXPECT_EQ(IntArrayStore_indexOf(store, int64_t{11} << 32), 11);
    EXPECT_TRUE(IntArrayStore_remove(store, 0));
    EXPECT_EQ(IntArrayStore_get(store, 0), int64_t{1} << 32);
    IntArrayStore_delete(store, 0);
    EXPECT_FALSE(IntArrayStore_contains(store, int64_t{1} << 32));
    EXPECT_EQ(IntArrayStore_get(store, 12), 7);
    delete_IntArrayStore(store);
}

TEST_F(ContainersTest, stringBuffer) {
    DFDLUStringBuffer* buffer = new_DFDLUStringBuffer(heap);
    EXPECT_EQ(buffer->chars, nullptr);
    DFDLUStringBuffer_appendUChars(buffer, u"bc", 2);
    EXPECT_EQ(buffer->capacity, 102);
    DFDLUStringBuffer_prependUChar(buffer, u'a');
    DFDLUStringBuffer_appendDFDLStringBuffer(buffer, buffer);
    DFDLUStringBuffer_appendInt(buffer, INT64_MIN);
    DFDLUStringBuffer_prependDFDLUString(buffer, make(heap, u"<>").get());
    EXPECT_EQ(DFDLUStringBuffer_view(buffer), u"<>abcabc-9223372036854775808");
    EXPECT_EQ(DFDLUStringBuffer_lastIndexOfWithStart(buffer, make(heap, u"abc").get(), 4), 2);
    EXPECT_EQ(DFDLUStringBuffer_lastIndexOfWithStart(buffer, make(heap, u"abc").get(), 5), 5);
    EXPECT_EQ(DFDLUStringBuffer_getUCharAt(buffer, 99), 0);
    DFDLUStringBuffer_delete(buffer, 8, 99);
    DFDLUStringBuffer_delete(buffer, -1, 2);
    for (int i = 0; i < 1000; ++i) DFDLUStringBuffer_appendUChar(buffer, u'x');
    const std::u16string expected = u"abcabc" + std::u16string(1000, u'x');
    UChar* copy = DFDLUStringBuffer_toString(buffer);
    EXPECT_EQ(std::u16string(copy), expected);
    DFDLBufferFactory_FreeUBuffer(heap->bufferFactory, copy);
    const String pooled(DFDLUStringBuffer_convertToPooledDFDLUString(buffer));
    EXPECT_EQ(DFDLUString_view(pooled.get()), expected);
    EXPECT_EQ(pooled->chars[pooled->length], 0);
    const String empty(DFDLUStringBuffer_convertToPooledDFDLUString(new_DFDLUStringBuffer(heap)));
    EXPECT_EQ(empty->length, 0);
    const String plain(DFDLUStringBuffer_convertToDFDLUString(new_DFDLUStringBuffer(heap)));
    EXPECT_EQ(plain->length, 0);
}

// Whatever is refused, every container is still fit to be deleted and holds what it held.
TEST(ContainersSweep, refusedMemoryLeavesContainersWhole) {
    const int failing = sweepFailingAllocations([](const DFDLHeapImpl& callbacks) {
        Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> heap(new_DFDLHeapAdapterFromHeap(&callbacks));
        const String text = make(heap.get(), std::u16string(300, u't'));
        Owned<DFDLStringHashMap, delete_DFDLStringHashMap> map(new_DFDLStringHashMap(heap.get(), 2));
        Owned<DFDLUStringSet, delete_DFDLUStringSet> set(new_DFDLUStringSet(heap.get()));
        Owned<IntegerHashtable, delete_IntegerHashtable> table(new_IntegerHashtable(heap.get()));
        Owned<DFDLUStringBuffer, delete_DFDLUStringBuffer> buffer(new_DFDLUStringBuffer(heap.get()));
        for (int32_t i = 0; i < 12; ++i) {
            const String key(DFDLUString_substring(text.get(), i, heap.get()));
            DFDLStringHashMap_put(map.get(), key.get(), key.get(), false);
            DFDLUStringSet_add(set.get(), key.get());
            for (int32_t k = 0; k < 9; ++k) IntegerHashtable_put(table.get(), 9 * i + k, i);
            DFDLUStringBuffer_appendDFDLUString(buffer.get(), key.get());
        }
        DFDLUString_replaceValue(text.get(), text->chars, 290);
        EXPECT_EQ(DFDLStringHashMap_size(map.get()), 12);
    });
    EXPECT_GT(failing, 30);
}

}  // namespace
