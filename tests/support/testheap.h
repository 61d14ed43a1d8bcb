#ifndef DFDL_TESTS_SUPPORT_TESTHEAP_H
#define DFDL_TESTS_SUPPORT_TESTHEAP_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "dfdl/foundation/dfdlheapadapter.h"

// A caller's heap that counts what it gives out and can refuse one allocation. It must outlive what uses it.
struct TestHeap {
    long live = 0;         // blocks given out and not given back
    long allocations = 0;  // calls that asked for memory
    long grown = 0;        // those among them that asked for more of it in one block
    long failAt = -1;      // index of the call that is refused; -1 none
    size_t largest = 0;    // bytes of the largest block asked for

    DFDLHeapImpl callbacks() { return {this, onMalloc, onCalloc, onRealloc, onFree}; }

  private:
    static TestHeap* self(void* userData) { return static_cast<TestHeap*>(userData); }
    bool refuses(size_t size) {
        largest = std::max(largest, size);
        return allocations++ == failAt;
    }
    void* count(void* block) {
        if (block != nullptr) ++live;
        return block;
    }
    static void* onMalloc(void* userData, size_t size) {
        return self(userData)->refuses(size) ? nullptr : self(userData)->count(std::malloc(size));
    }
    static void* onCalloc(void* userData, size_t count, size_t size) {
        return self(userData)->refuses(count * size) ? nullptr
                                                     : self(userData)->count(std::calloc(count, size));
    }
    static void* onRealloc(void* userData, void* block, size_t size) {
        ++self(userData)->grown;
        return self(userData)->refuses(size) ? nullptr : std::realloc(block, size);
    }
    static void onFree(void* userData, void* block) {
        --self(userData)->live;
        std::free(block);
    }
};

// A heap adapter over a TestHeap; expects that nothing is left of it.
struct TestAdapter {
    TestHeap heap;
    DFDLHeapAdapter* adapter;

    TestAdapter() {
        const DFDLHeapImpl callbacks = heap.callbacks();
        adapter = new_DFDLHeapAdapterFromHeap(&callbacks);
    }
    ~TestAdapter() {
        delete_DFDLHeapAdapter(adapter);
        EXPECT_EQ(heap.live, 0);
    }
    TestAdapter(const TestAdapter&) = delete;
    TestAdapter& operator=(const TestAdapter&) = delete;
};

// Runs `body(DFDLHeapImpl)` with the first allocation failing, then the second and so on, until it runs
// through; whichever fails, every block must have come back. Returns the number of failing runs.
template <class Body>
int sweepFailingAllocations(Body body) {
    for (int failAt = 0;; ++failAt) {
        TestHeap heap;
        heap.failAt = failAt;
        bool failed = false;
        try {
            body(heap.callbacks());
        } catch (const AllocationFailure&) {
            failed = true;
        }
        EXPECT_EQ(heap.live, 0) << "after refusing allocation " << failAt;
        if (!failed || heap.live != 0) return failAt;
    }
}

#endif
