// Where the bytes come from: handlers that misbehave, streams, one document after another, lack of memory.
#include <gtest/gtest.h>

#include "dfdl/buffer/inputstream.h"
#include "dfdl/foundation/context.h"
#include "support/bufferrig.h"
#include "support/testheap.h"

namespace {

struct Bad {
    int calls = 0;
    void (*fill)(int call, DFDLByteBuffer* buffer);
};

void fillBad(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* bad = static_cast<Bad*>(DFDLBufferHandler_getContextObject(handler));
    bad->fill(bad->calls++, buffer);
}

constexpr uint8_t LETTERS[] = {'a', 'b', 'c'};

// The bytes that come of a handler, up to ten.
std::string drain(BufferRig& rig) {
    std::string bytes;
    for (int i = 0; i < 10; ++i) {
        const int32_t byte = BufferManager_readByte(rig.buffer, nullptr);
        if (byte < 0) break;
        bytes += static_cast<char>(byte);
    }
    rig.takeError();
    return bytes;
}

TEST(BadHandlers, WhateverTheyGiveTheReadsStayInside) {
    struct Case {
        const char* name;
        void (*fill)(int call, DFDLByteBuffer* buffer);
        const char* bytes;
    };
    const Case cases[] = {
        {"negative size is none", [](int, DFDLByteBuffer* b) { DFDLByteBuffer_setData(b, LETTERS, -5, 1); },
         ""},
        {"size without data is none",
         [](int, DFDLByteBuffer* b) { DFDLByteBuffer_setData(b, nullptr, 5, 1); }, ""},
        {"a buffer left as it was is asked for again",
         [](int call, DFDLByteBuffer* b) {
             if (call == 2) DFDLByteBuffer_setData(b, LETTERS, 2, 1);
         },
         "ab"},
        {"empty buffers between others are passed over",
         [](int call, DFDLByteBuffer* b) {
             if (call % 2 == 1) DFDLByteBuffer_setData(b, LETTERS + call / 2, 1, call == 5);
         },
         "abc"},
        {"a stream without end goes on",
         [](int call, DFDLByteBuffer* b) { DFDLByteBuffer_setData(b, LETTERS + call % 3, 1, 0); },
         "abcabcabca"},
        {"the last word counts",
         [](int, DFDLByteBuffer* b) {
             DFDLByteBuffer_setData(b, LETTERS, 3, 0);
             DFDLByteBuffer_setData(b, LETTERS, 1, 1);
         },
         "a"},
    };
    for (const Case& c : cases) {
        Bad bad{0, c.fill};
        DFDLBufferHandler* handler = new_DFDLBufferHandler();
        DFDLBufferHandler_setContextObject(handler, &bad);
        DFDLBufferHandler_setGetNextBufferHandlerCallback(handler, fillBad);
        {
            BufferRig rig;
            BufferManager_setBufferHandler(rig.buffer, handler);
            EXPECT_EQ(drain(rig), c.bytes) << c.name;
        }
        delete_DFDLBufferHandler(handler);
    }
}

TEST(BadHandlers, WithoutACallbackThereAreNoData) {
    DFDLBufferHandler* handler = new_DFDLBufferHandler();
    {
        BufferRig rig;
        BufferManager_setBufferHandler(rig.buffer, handler);
        BufferManager_loadFirstBuffer(rig.buffer);
        EXPECT_EQ(drain(rig), "");
        EXPECT_TRUE(BufferManager_endOfDataStream(rig.buffer));
    }
    delete_DFDLBufferHandler(handler);
}

// Two buffers that together have more bytes than positions can count bits of; none is touched.
TEST(BadHandlers, SizesThatCannotBeCountedEndTheStream) {
    Bad bad{0, [](int, DFDLByteBuffer* b) { DFDLByteBuffer_setData(b, LETTERS, INT64_MAX - 1, 0); }};
    DFDLBufferHandler* handler = new_DFDLBufferHandler();
    DFDLBufferHandler_setContextObject(handler, &bad);
    DFDLBufferHandler_setGetNextBufferHandlerCallback(handler, fillBad);
    {
        BufferRig rig;
        BufferManager_setBufferHandler(rig.buffer, handler);
        BufferManager_loadFirstBuffer(rig.buffer);
        EXPECT_EQ(bad.calls, 1);
        EXPECT_GT(rig.buffer->documentBitLength, 0);
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, INT64_MAX, nullptr), -1);
        EXPECT_GT(rig.buffer->bitPosition, 0);
        rig.takeError();
        EXPECT_TRUE(BufferManager_endOfDataStream(rig.buffer));
    }
    delete_DFDLBufferHandler(handler);
}

TEST(Documents, AClearForgetsAllButTheCharactersAndTheMark) {
    BufferRig rig;
    rig.encoding("UTF-8");
    rig.document("abc");
    EXPECT_EQ(rig.readCharacters(2), u"ab");
    ASSERT_TRUE(BufferManager_imposeScopedBufferLength(rig.buffer, 1, BYTES, &rig.item));
    BufferManager_mark(rig.buffer);
    Feed feed("de", 1);
    rig.feed(feed);
    EXPECT_EQ(rig.buffer->bitPosition, 0);
    EXPECT_EQ(rig.buffer->bitLimit, -1);
    EXPECT_EQ(rig.buffer->documentBitLength, -1);
    EXPECT_EQ(rig.buffer->charPosition, 2);
    EXPECT_EQ(rig.buffer->bomChecked, 1U);
    EXPECT_EQ(rig.readCharacters(2), u"de");
    rig.document("");
    EXPECT_TRUE(BufferManager_hasNoRemainingBits(rig.buffer));
    BufferManager_setInputDocument(rig.buffer, nullptr, 9);
    EXPECT_TRUE(BufferManager_hasNoRemainingBits(rig.buffer));
}

TEST(Streams, AnArrayIsReadToItsEnd) {
    BufferRig rig;
    ByteArrayInputStream* stream = new_ByteArrayInputStream(rig.heap, LETTERS, 3);
    uint8_t target[4] = {};
    EXPECT_EQ(stream->available(stream), 3);
    EXPECT_EQ(stream->readByte(stream), 'a');
    stream->mark(stream, 9);
    EXPECT_EQ(stream->read(stream, target, 1, 9), 2);
    EXPECT_EQ(target[2], 'c');
    EXPECT_EQ(stream->read(stream, target, 0, 1), -1);
    EXPECT_EQ(stream->readByte(stream), -1);
    stream->reset(stream);
    EXPECT_EQ(stream->skip(stream, 9), 2);
    EXPECT_EQ(stream->skip(stream, 9), 0);
    EXPECT_EQ(stream->markSupported(stream), 1);
    delete_InputStream(stream);
}

// A stream that does not know what it has, in portions of two bytes.
int64_t readTwo(InputStream* stream, uint8_t* buffer, int64_t offset, int64_t length) {
    auto* array = static_cast<ByteArrayInputStream*>(stream);
    if (array->position == array->count) return -1;
    buffer[offset] = array->data[array->position++];
    if (length < 2 || array->position == array->count) return 1;
    buffer[offset + 1] = array->data[array->position++];
    return 2;
}

TEST(Streams, EachKindFeedsTheManager) {
    for (const bool whole : {false, true}) {
        for (const bool blind : {false, true}) {
            if (whole && blind) continue;
            BufferRig rig;
            ByteArrayInputStream* stream = new_ByteArrayInputStream(rig.heap, LETTERS, 3);
            if (blind) {
                stream->available = [](InputStream*) -> int64_t { return 0; };
                stream->read = readTwo;
            }
            for (int again = 0; again < 2; ++again) {
                stream->position = 0;
                BufferManager_setInputStream(rig.buffer, stream, whole);
                EXPECT_EQ(rig.buffer->currentBuffer != nullptr, whole);
                EXPECT_EQ(rig.buffer->documentBitLength, whole ? 24 : -1);
                BufferManager_loadFirstBuffer(rig.buffer);
                EXPECT_EQ(drain(rig), "abc");
            }
            delete_InputStream(stream);
        }
    }
}

TEST(Memory, EveryRefusedAllocationLeavesNothingBehind) {
    const int failures = sweepFailingAllocations([](DFDLHeapImpl heap) {
        Feed feed("\xC3\xA9 text in pieces \xF0\x9F\x98\x80", 3);
        BufferRig rig(&heap);
        try {
            rig.encoding("UTF-8");
            rig.feed(feed);
            BufferManagerCheckPoint* point = BufferManager_getCheckPoint(rig.buffer);
            EXPECT_TRUE(BufferManager_imposeScopedBufferLength(rig.buffer, 18, CHARACTERS, &rig.item));
            EXPECT_EQ(rig.readCharacters(18).size(), 19U);
            BufferManager_restoreToCheckPoint(rig.buffer, point);
            EXPECT_EQ(rig.readBytes(10).size(), 9U);
            BufferManager_releaseCheckPoint(rig.buffer, point);
        } catch (const AllocationFailure&) {
            ++rig.context->allocationFailures;
            throw;
        }
    });
    EXPECT_GT(failures, 10);
}

}  // namespace
