#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

TEST(Heap, needsAllFourCallbacks) {
    for (int missing = -1; missing < 4; ++missing) {
        DFDLHeap* heap = new_DFDLHeap(nullptr, missing == 0 ? nullptr : defaultDFDLHeap_mallocCallback,
                                      missing == 1 ? nullptr : defaultDFDLHeap_callocCallback,
                                      missing == 2 ? nullptr : defaultDFDLHeap_reallocCallback,
                                      missing == 3 ? nullptr : defaultDFDLHeap_freeCallback);
        EXPECT_EQ(heap == nullptr, missing >= 0) << "callback " << missing;
        delete_DFDLHeap(heap);
    }
}

TEST(HeapAdapter, recordIsOneAllocationOf80Bytes) { EXPECT_EQ(sizeof(DFDLHeapAdapter), 80U); }

TEST(HeapAdapter, objectsAreZeroedAndKnowTheirAdapter) {
    TestAdapter test;
    auto* words = static_cast<uint64_t*>(DFDLHeapAdapter_objectAllocate(test.adapter, 24));
    DFDLHeapAdapter* first;
    std::memcpy(&first, words, sizeof first);
    EXPECT_EQ(first, test.adapter);
    EXPECT_EQ(words[1] | words[2], 0U);
    DFDLHeapAdapter_objectDeallocate(test.adapter, words);
}

// The list of blocks must survive any order of taking, moving and giving back.
TEST(HeapAdapter, blocksStayLinkedInAnyOrder) {
    TestAdapter test;
    const size_t before = DFDLHeapAdapter_countBlocks(test.adapter);
    struct Taken {
        uint8_t* bytes;
        size_t size;
        uint8_t mark;
    };
    std::vector<Taken> taken;
    std::mt19937 random(20240611);
    for (int step = 0; step < 3000; ++step) {
        const size_t size = 1 + random() % 300;
        if (taken.size() < 3 || random() % 3 == 0) {
            auto* bytes = static_cast<uint8_t*>(DFDLHeapAdapter_arrayAllocate(test.adapter, 1, size));
            const auto mark = static_cast<uint8_t>(1 + step % 255);
            std::memset(bytes, mark, size);
            taken.push_back({bytes, size, mark});
            continue;
        }
        const size_t index = random() % taken.size();
        Taken& one = taken[index];
        if (random() % 2 == 0) {
            one.bytes = static_cast<uint8_t*>(
                DFDLHeapAdapter_arrayReallocate(test.adapter, one.bytes, 1, one.size, size));
            for (size_t i = 0; i < size; ++i) ASSERT_EQ(one.bytes[i], i < one.size ? one.mark : 0);
            std::memset(one.bytes, one.mark, size);
            one.size = size;
        } else {
            DFDLHeapAdapter_arrayDeallocate(test.adapter, one.bytes);
            one = taken.back();
            taken.pop_back();
        }
        ASSERT_EQ(DFDLHeapAdapter_countBlocks(test.adapter), before + taken.size());
    }
    for (const Taken& one : taken) DFDLHeapAdapter_arrayDeallocate(test.adapter, one.bytes);
}

TEST(HeapAdapter, sizesThatNoMemoryCanHoldAreRefusedUnasked) {
    TestAdapter test;
    const std::array<std::pair<size_t, size_t>, 5> sizes = {
        {{SIZE_MAX, 2}, {2, SIZE_MAX}, {1, SIZE_MAX}, {1, SIZE_MAX - 15}, {8, PTRDIFF_MAX / 8}}};
    void* array = DFDLHeapAdapter_arrayAllocate(test.adapter, 1, 1);
    const long asked = test.heap.allocations;
    uint32_t failures = 0;
    for (const auto& [elementSize, count] : sizes) {
        try {
            DFDLHeapAdapter_arrayAllocate(test.adapter, elementSize, count);
            ADD_FAILURE() << elementSize << " times " << count;
        } catch (const AllocationFailure& failure) {
            EXPECT_EQ(failure.origin, 1);
        }
        EXPECT_EQ(test.adapter->context->jumpState, 1);
        try {
            DFDLHeapAdapter_arrayReallocate(test.adapter, array, elementSize, 1, count);
            ADD_FAILURE() << elementSize << " times " << count;
        } catch (const AllocationFailure& failure) {
            EXPECT_EQ(failure.origin, 3);
        }
        EXPECT_EQ(test.adapter->context->jumpState, 3);
        failures += 2;
        EXPECT_EQ(test.adapter->context->allocationFailures, failures);
    }
    EXPECT_EQ(test.heap.allocations, asked);
    DFDLHeapAdapter_arrayDeallocate(test.adapter, array);
}

TEST(HeapAdapter, aFailureLeavesTheOldArrayAndTheAdapterFreesIt) {
    TestHeap heap;
    const DFDLHeapImpl callbacks = heap.callbacks();
    DFDLHeapAdapter* adapter = new_DFDLHeapAdapterFromHeap(&callbacks);
    auto* array = static_cast<uint8_t*>(DFDLHeapAdapter_arrayAllocate(adapter, 1, 4));
    array[3] = 7;
    heap.failAt = heap.allocations;
    EXPECT_THROW(DFDLHeapAdapter_arrayReplace(adapter, array, 1, 8), AllocationFailure);
    heap.failAt = heap.allocations;
    EXPECT_THROW(DFDLHeapAdapter_arrayReallocate(adapter, array, 1, 4, 8), AllocationFailure);
    EXPECT_EQ(array[3], 7);
    delete_DFDLHeapAdapter(adapter);
    EXPECT_EQ(heap.live, 0);
}

TEST(HeapAdapter, buildsAllOrNothing) {
    const int refused = sweepFailingAllocations([](DFDLHeapImpl callbacks) {
        Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> adapter(new_DFDLHeapAdapterFromHeap(&callbacks));
        Owned<DFDLHeapAdapter, delete_DFDLHeapAdapterForMessageHeap> message(
            new_DFDLHeapAdapterForMessageHeap(callbacks.userData, callbacks.mallocCallback,
                                              callbacks.callocCallback, callbacks.reallocCallback,
                                              callbacks.freeCallback, adapter.get()));
        EXPECT_EQ(message->poolingFactory, adapter->poolingFactory);
        EXPECT_NE(message->bufferFactory, adapter->bufferFactory);
        Owned<DFDLConstants, delete_DFDLConstants> constants(new_DFDLConstants(adapter.get()));
        EXPECT_NE(DFDLConstants_getDateFormat(constants.get(), CALENDAR_TIME_ZONE), nullptr);
    });
    EXPECT_GT(refused, 30);
}

TEST(Context, swapMakesTheOtherRecordCurrent) {
    TestAdapter test;
    Context* context = test.adapter->context;
    ProcessingError* first = context->activeError;
    EXPECT_EQ(context->jumpState, -1);
    EXPECT_NE(context->defaultConverter, nullptr);
    Context_swapErrors(context);
    EXPECT_EQ(context->standbyError, first);
    EXPECT_EQ(context->currentError, context->activeError);
    EXPECT_NE(context->currentError, first);
}

struct ByteKind {
    static uint8_t* get(DFDLBufferFactory* factory, int64_t size) {
        return DFDLBufferFactory_GetBuffer(factory, size);
    }
    static void free(DFDLBufferFactory* factory, uint8_t* buffer) {
        DFDLBufferFactory_FreeBuffer(factory, buffer);
    }
};
struct UnitKind {
    static UChar* get(DFDLBufferFactory* factory, int64_t size) {
        return DFDLBufferFactory_GetUBuffer(factory, size);
    }
    static void free(DFDLBufferFactory* factory, UChar* buffer) {
        DFDLBufferFactory_FreeUBuffer(factory, buffer);
    }
};

template <class Kind>
class BufferFactory : public ::testing::Test {};
using Kinds = ::testing::Types<ByteKind, UnitKind>;
TYPED_TEST_SUITE(BufferFactory, Kinds);

TYPED_TEST(BufferFactory, recyclesSmallBlocksAndReturnsLargeOnes) {
    TestAdapter test;
    DFDLBufferFactory* factory = test.adapter->bufferFactory;
    struct Case {
        int64_t size;
        long allocationsAgain;  // when the same size is asked for once more
    };
    for (const Case& one : {Case{0, 0}, Case{1, 0}, Case{256, 0}, Case{257, 1}, Case{100000, 1}}) {
        auto* buffer = TypeParam::get(factory, one.size);
        for (int64_t i = 0; i < one.size; ++i) buffer[i] = 0x5A;
        const long live = test.heap.live;
        TypeParam::free(factory, buffer);
        EXPECT_EQ(test.heap.live, live - one.allocationsAgain) << one.size;
        const long before = test.heap.allocations;
        buffer = TypeParam::get(factory, one.size);
        EXPECT_EQ(test.heap.allocations, before + one.allocationsAgain) << one.size;
        TypeParam::free(factory, buffer);
    }
    EXPECT_THROW(TypeParam::get(factory, -1), AllocationFailure);
    EXPECT_THROW(TypeParam::get(factory, INT64_MIN), AllocationFailure);
    EXPECT_THROW(TypeParam::get(factory, INT64_MAX), AllocationFailure);
}

TYPED_TEST(BufferFactory, resetTakesBlocksInUseToo) {
    TestAdapter test;
    DFDLBufferFactory* factory = test.adapter->bufferFactory;
    const long live = test.heap.live;
    std::array<decltype(TypeParam::get(factory, 1)), 7> buffers;
    for (auto& buffer : buffers) buffer = TypeParam::get(factory, 9);
    for (size_t index : {3U, 0U, 6U}) TypeParam::free(factory, buffers[index]);
    EXPECT_FALSE(DFDLBufferFactory_isIdle(factory));
    DFDLBufferFactory_reset(factory);
    EXPECT_TRUE(DFDLBufferFactory_isIdle(factory));
    EXPECT_EQ(test.heap.live, live);
    TypeParam::free(factory, TypeParam::get(factory, 9));
}

TEST(ArrayListOfNumbers, growsExtendsAndCloses) {
    TestAdapter test;
    ArrayList* list = new_ArrayList(test.adapter, 0, sizeof(int32_t));
    EXPECT_EQ(list->capacity, 10);
    std::vector<int32_t> expected(2500);
    std::iota(expected.begin(), expected.end(), 5);
    for (const int32_t& number : expected) {
        ArrayList_add(list, &number);
        if (list->count == 11) {
            EXPECT_EQ(list->capacity, 20);
        }
    }
    for (int32_t index : {2499, 0, 1200}) {
        ArrayList_removeAt(list, index);
        expected.erase(expected.begin() + index);
    }
    const int32_t last = 77;
    ArrayList_set(list, 4000, &last);
    expected.resize(4000, 0);
    expected.push_back(last);
    ASSERT_EQ(static_cast<size_t>(list->count), expected.size());
    EXPECT_EQ(std::memcmp(list->storage, expected.data(), expected.size() * sizeof(int32_t)), 0);
    delete_ArrayList(list);
}

TEST(ArrayListOfPointers, findsByAddress) {
    TestAdapter test;
    ArrayList* list = new_ArrayListOfPointers(test.adapter, -3);
    int things[3];
    for (int& thing : things) ArrayList_addPointer(list, &thing);
    EXPECT_EQ(ArrayList_indexOfPointer(list, &things[2]), 2);
    EXPECT_EQ(ArrayList_popPointer<int>(list), &things[2]);
    EXPECT_EQ(ArrayList_indexOfPointer(list, &things[2]), -1);
    delete_ArrayList(list);
}

}  // namespace
