// Bits, bytes, marks and ends, against a plain model of a run of bits.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "dfdl/buffer/bytearrayutils.h"
#include "support/bufferrig.h"

namespace {

constexpr std::array<size_t, 7> PIECES = {0, 1, 2, 3, 5, 8, 64};  // 0: a document in memory

std::string randomBytes(std::mt19937& random, size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

bool bitAt(std::string_view bytes, int64_t position) {
    return ((static_cast<uint8_t>(bytes[static_cast<size_t>(position >> 3)]) >> (7 - (position & 7))) & 1) !=
           0;
}

// Runs `body(rig)` on the bytes, in memory and in pieces, and with both ways of telling the end.
template <class Body>
void onEveryRoad(std::string_view bytes, Body body) {
    for (const size_t piece : PIECES) {
        for (const bool emptyLast : {false, true}) {
            SCOPED_TRACE("pieces of " + std::to_string(piece) + (emptyLast ? ", empty last buffer" : ""));
            if (piece == 0) {
                BufferRig rig;
                rig.document(bytes);
                body(rig);
            } else {
                Feed feed(bytes, piece, emptyLast);
                BufferRig rig;
                rig.feed(feed);
                body(rig);
            }
        }
    }
}

void expectBits(BufferRig& rig, std::string_view bytes, int64_t count) {
    const int64_t start = rig.buffer->bitPosition;
    std::vector<uint8_t> target(static_cast<size_t>(count / 8 + 2));
    const bool there = start + count <= static_cast<int64_t>(bytes.size()) * 8;
    ASSERT_EQ(BufferManager_readBits(rig.buffer, target.data(), count, &rig.item), there ? count : -1)
        << count << " bits at " << start;
    EXPECT_EQ(rig.takeError(), "");
    if (!there) return;
    for (int64_t i = 0; i < count; ++i) {
        const bool bit = ((target[static_cast<size_t>(i / 8)] >> (7 - i % 8)) & 1) != 0;
        ASSERT_EQ(bit, bitAt(bytes, start + i)) << "bit " << i << " of " << count << " at " << start;
    }
    ASSERT_EQ(rig.buffer->bitPosition, start + count);
}

TEST(BufferBits, EveryOffsetAndLengthReadsWhatTheBitsSay) {
    std::mt19937 random(1);
    const std::string bytes = randomBytes(random, 12);
    for (int64_t offset = 0; offset < 17; ++offset) {
        for (int64_t count = 0; count <= 40; ++count) {
            for (const size_t piece : {size_t{0}, size_t{1}, size_t{3}}) {
                Feed feed(bytes, piece == 0 ? 64 : piece);
                BufferRig rig;
                rig.feed(feed);
                expectBits(rig, bytes, offset);
                expectBits(rig, bytes, count);
                expectBits(rig, bytes, 11);
            }
        }
    }
}

// What the buffer manager should be like, without any buffer.
struct Model {
    std::string_view bytes;
    int64_t position = 0;
    std::vector<std::pair<DFDLBufferMarker*, int64_t>> marks;

    int64_t bits() const { return static_cast<int64_t>(bytes.size()) * 8; }
};

// One random operation that the data allow.
void step(BufferRig& rig, Model& model, std::mt19937& random) {
    const int64_t left = model.bits() - model.position;
    switch (random() % 9) {
        case 0:
            model.marks.emplace_back(BufferManager_mark(rig.buffer), model.position);
            break;
        case 1:
        case 2:
            if (model.marks.empty()) break;
            {
                const auto& mark = model.marks[random() % model.marks.size()];
                BufferManager_reset(rig.buffer, mark.first);
                model.position = mark.second;
            }
            break;
        case 3:
            if (model.marks.empty()) break;
            BufferManager_release(rig.buffer, model.marks.back().first);
            model.marks.pop_back();
            break;
        case 4: {
            const int64_t count = static_cast<int64_t>(random() % 40);
            if (count > left) break;
            EXPECT_EQ(BufferManager_skipBits(rig.buffer, count, &rig.item), count);
            model.position += count;
            break;
        }
        case 5: {
            const int64_t count = static_cast<int64_t>(random() % 4);
            if (count * 8 > left) break;
            EXPECT_EQ(BufferManager_skipBytes(rig.buffer, count, &rig.item), count);
            model.position += count * 8;
            break;
        }
        case 6: {
            const int64_t offset = (model.position >> 3) + static_cast<int64_t>(random() % 7);
            if (offset * 8 >= model.bits()) break;
            EXPECT_EQ(BufferManager_peekByte(rig.buffer, offset, &rig.item),
                      static_cast<int8_t>(model.bytes[static_cast<size_t>(offset)]));
            break;
        }
        default: {
            const int64_t count = static_cast<int64_t>(random() % 30);
            if (count > left) break;
            expectBits(rig, model.bytes, count);
            model.position += count;
        }
    }
    ASSERT_EQ(rig.buffer->bitPosition, model.position);
}

TEST(BufferMarks, RandomWalksKeepThePositionOnEveryRoad) {
    for (uint32_t seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 data(seed);
        const std::string bytes = randomBytes(data, 40);
        onEveryRoad(bytes, [&](BufferRig& rig) {
            std::mt19937 random(seed);
            Model model{bytes, 0, {}};
            for (int i = 0; i < 120 && !testing::Test::HasFailure(); ++i) step(rig, model, random);
            for (const auto& mark : model.marks) BufferManager_release(rig.buffer, mark.first);
        });
    }
}

TEST(BufferChain, WithoutMarksBuffersGoBackAsSoonAsTheyAreRead) {
    Feed feed(std::string(300, 'x'), 1);
    BufferRig rig;
    rig.feed(feed);
    int64_t most = 0;
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(BufferManager_readByte(rig.buffer, &rig.item), 'x');
        most = std::max(most, feed.held);
    }
    EXPECT_LE(most, 2);
}

TEST(BufferChain, AMarkKeepsEveryNewerBuffer) {
    Feed feed("abcdef", 1);
    BufferRig rig;
    rig.feed(feed);
    DFDLBufferMarker* marker = BufferManager_mark(rig.buffer);
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 5, &rig.item), 5);
    EXPECT_GE(feed.held, 5);
    BufferManager_reset(rig.buffer, marker);
    EXPECT_EQ(BufferManager_readByte(rig.buffer, &rig.item), 'a');
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 4, &rig.item), 4);
    BufferManager_release(rig.buffer, marker);
    EXPECT_LE(feed.held, 2);
    EXPECT_EQ(BufferManager_readByte(rig.buffer, &rig.item), 'f');
}

TEST(BufferEnds, AByteOnlyEnteredMustBeThere) {
    onEveryRoad("abc", [](BufferRig& rig) {
        EXPECT_EQ(BufferManager_skipBits(rig.buffer, 25, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 3 item");
    });
}

TEST(BufferBits, ThreeBitsAtOffsetSixStayAtTheSecondByte) {
    BufferRig rig;
    rig.document("\x01\x80\xAA");
    uint8_t target[2];
    ASSERT_EQ(BufferManager_skipBits(rig.buffer, 6, nullptr), 6);
    ASSERT_EQ(BufferManager_readBits(rig.buffer, target, 3, nullptr), 3);
    EXPECT_EQ(target[0] & 0xE0, 0x60);
    EXPECT_EQ(rig.buffer->currentBuffer->position, 1);
    EXPECT_EQ(rig.buffer->bitPosition, 9);
}

TEST(BufferEnds, WhatLiesBeyondTheDataIsRefusedAlikeOnEveryRoad) {
    onEveryRoad("abc", [](BufferRig& rig) {
        DFDLBufferMarker* start = BufferManager_mark(rig.buffer);
        EXPECT_EQ(BufferManager_peekByte(rig.buffer, 3, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 0 item");
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 4, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 0 item");
        BufferManager_reset(rig.buffer, start);
        EXPECT_EQ(BufferManager_skipBits(rig.buffer, 25, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 3 item");
        BufferManager_reset(rig.buffer, start);
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, INT64_MAX, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 0 item");
        BufferManager_reset(rig.buffer, start);
        EXPECT_EQ(BufferManager_skipBits(rig.buffer, INT64_MAX, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 0 item");
        BufferManager_reset(rig.buffer, start);
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 3, &rig.item), 3);
        EXPECT_EQ(BufferManager_readByte(rig.buffer, &rig.item), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 3 item");
        BufferManager_release(rig.buffer, start);
    });
}

TEST(BufferEnds, AReadBeyondTheDataDeliversWhatThereIs) {
    onEveryRoad("abc", [](BufferRig& rig) {
        uint8_t target[8] = {};
        EXPECT_EQ(BufferManager_read(rig.buffer, target, 8, 1, false), 2);
        EXPECT_EQ(target[1], 'c');
        EXPECT_EQ(BufferManager_read(rig.buffer, target, 8, 3, false), 0);
        EXPECT_EQ(BufferManager_getBytes(rig.buffer, target, 8, 0, true, &rig.item), 3);
        EXPECT_EQ(rig.buffer->bitPosition, 24);
    });
}

TEST(BufferBytes, APeekedFFIsNoFailureAndAnOffsetBehindUsIsOne) {
    onEveryRoad("\xFF\x7F\x80", [](BufferRig& rig) {
        EXPECT_EQ(BufferManager_peekByte(rig.buffer, 0, nullptr), -1);
        EXPECT_EQ(rig.takeError(), "");
        EXPECT_EQ(BufferManager_peekByte(rig.buffer, 2, nullptr), -128);
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 3, nullptr), 3);
        if (rig.buffer->currentBuffer->streamStart == 0) return;
        EXPECT_EQ(BufferManager_peekByte(rig.buffer, 0, nullptr), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 3 ");
    });
}

TEST(BufferBytes, BytesInPlaceAreGivenOnlyWhereTheyLieTogether) {
    Feed feed("abcdef", 4);
    BufferRig rig;
    rig.feed(feed);
    BufferManager_loadFirstBuffer(rig.buffer);
    ASSERT_NE(BufferManager_peekBytes(rig.buffer, 4), nullptr);
    EXPECT_EQ(BufferManager_peekBytes(rig.buffer, 4)[3], 'd');
    EXPECT_EQ(BufferManager_peekBytes(rig.buffer, 5), nullptr);
    EXPECT_EQ(BufferManager_skipBits(rig.buffer, 1, nullptr), 1);
    EXPECT_EQ(BufferManager_peekBytes(rig.buffer, 1), nullptr);
}

TEST(BufferEnds, TheEndIsKnownOnceItHasBeenLookedFor) {
    for (const bool emptyLast : {false, true}) {
        Feed feed("ab", 1, emptyLast);
        BufferRig rig;
        rig.feed(feed);
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 1, nullptr), 1);
        // At the edge of what is loaded nothing more is asked for.
        EXPECT_FALSE(BufferManager_hasNoRemainingBits(rig.buffer));
        EXPECT_FALSE(BufferManager_endOfDataStream(rig.buffer));
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 1, nullptr), 1);
        EXPECT_EQ(BufferManager_hasNoRemainingBits(rig.buffer), !emptyLast);
        BufferManager_loadAhead(rig.buffer);
        EXPECT_TRUE(BufferManager_hasNoRemainingBits(rig.buffer));
        EXPECT_TRUE(BufferManager_endOfScopedDataStream(rig.buffer));
        EXPECT_TRUE(BufferManager_endOfDataStream(rig.buffer));
        EXPECT_EQ(rig.buffer->documentBitLength, 16);
    }
}

TEST(BufferEnds, NoDataAtAllIsAnEnd) {
    onEveryRoad("", [](BufferRig& rig) {
        BufferManager_loadAhead(rig.buffer);
        EXPECT_TRUE(BufferManager_hasNoRemainingBits(rig.buffer));
        EXPECT_TRUE(BufferManager_endOfScopedDataStream(rig.buffer));
        EXPECT_TRUE(BufferManager_endOfDataStream(rig.buffer));
        DFDLBufferMarker* marker = BufferManager_mark(rig.buffer);
        BufferManager_reset(rig.buffer, marker);
        BufferManager_release(rig.buffer, marker);
        EXPECT_EQ(BufferManager_readByte(rig.buffer, nullptr), -1);
        EXPECT_EQ(rig.takeError(), "CTDP3000E 0 ");
    });
}

TEST(BufferEnds, InsideAByteTheRestOfItCountsAsReadWhileTheEndIsUnknown) {
    Feed feed("abc", 2, true);
    BufferRig rig;
    rig.feed(feed);
    EXPECT_EQ(BufferManager_skipBits(rig.buffer, 17, nullptr), 17);
    EXPECT_TRUE(BufferManager_endOfDataStream(rig.buffer));
    EXPECT_EQ(rig.buffer->bitPosition, 24);
    BufferRig whole;
    whole.document("abc");
    EXPECT_EQ(BufferManager_skipBits(whole.buffer, 17, nullptr), 17);
    EXPECT_TRUE(BufferManager_endOfDataStream(whole.buffer));
    EXPECT_EQ(whole.buffer->bitPosition, 17);
}

TEST(ByteArrayUtils, ShiftsMoveBitsAcrossBytes) {
    for (int32_t places = 0; places < 8; ++places) {
        uint8_t left[] = {0x81, 0x42, 0xFF};
        uint8_t right[] = {0x81, 0x42, 0xFF};
        ByteArrayUtils_shiftLeft(left, 3, places);
        ByteArrayUtils_shiftRight(right, 3, places);
        const uint32_t expectedLeft = (0x8142FFU << places) & 0xFFFFFFU;
        const uint32_t expectedRight = 0x8142FFU >> places;
        EXPECT_EQ(static_cast<uint32_t>(left[0] << 16 | left[1] << 8 | left[2]), expectedLeft) << places;
        EXPECT_EQ(static_cast<uint32_t>(right[0] << 16 | right[1] << 8 | right[2]), expectedRight) << places;
    }
    uint8_t bytes[] = {1, 2, 3};
    ByteArrayUtils_reverseBytes(bytes, 3);
    EXPECT_EQ(bytes[0], 3);
    EXPECT_EQ(bytes[2], 1);
}

}  // namespace
