// Scoped lengths: what they let through, how they nest, and lengths that are not to be believed.
#include <gtest/gtest.h>

#include <array>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/objectpool.h"
#include "support/bufferrig.h"

namespace {

struct Scopes : testing::Test {
    BufferRig rig;
    uint8_t target[64] = {};

    void SetUp() override {
        rig.encoding("UTF-8");
        rig.document("0123456789\xC3\xA9\xC3\xA9\xF0\x9F\x98\x80xyz");
    }
    bool impose(int64_t length, int32_t units, const GroupMemberTableRow* element = nullptr) {
        return BufferManager_imposeScopedBufferLength(rig.buffer, length, units,
                                                      element == nullptr ? &rig.item : element);
    }
    bool remove(bool consume = false, const GroupMemberTableRow* element = nullptr) {
        return BufferManager_removeScopedBufferLengthUnparser(
            rig.buffer, element == nullptr ? &rig.item : element, consume, 0);
    }
    int64_t remaining() {
        return BufferManager_getRemainingLengthInContainingStructure(rig.buffer, &rig.item);
    }
    bool ended() { return BufferManager_endOfScopedDataStream(rig.buffer); }
};

TEST_F(Scopes, AReadBeyondALimitFailsEachInItsWay) {
    struct Case {
        const char* name;
        int64_t (*run)(Scopes&);
        int64_t failure;
        const char* error;
    };
    const std::array<Case, 5> cases{{
        {"getBytes",
         [](Scopes& t) { return BufferManager_getBytes(t.rig.buffer, t.target, 4, 0, true, &t.rig.item); }, 0,
         "CTDP3000E 4 item"},
        {"readBits",
         [](Scopes& t) { return BufferManager_readBits(t.rig.buffer, t.target, 25, &t.rig.item); }, -1,
         "CTDP3000E 3 item"},
        {"skipBytes", [](Scopes& t) { return BufferManager_skipBytes(t.rig.buffer, 4, &t.rig.item); }, -1,
         "CTDP3000E 4 item"},
        {"skipBits", [](Scopes& t) { return BufferManager_skipBits(t.rig.buffer, 30, &t.rig.item); }, -1,
         "CTDP3000E 3 item"},
        {"skipData", [](Scopes& t) { return BufferManager_skipData(t.rig.buffer, &t.rig.item, BYTES, 4); }, 0,
         "CTDP3000E 4 item"},
    }};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DFDLBufferMarker* start = BufferManager_mark(rig.buffer);
        ASSERT_TRUE(impose(3, BYTES));
        EXPECT_EQ(c.run(*this), c.failure);
        EXPECT_EQ(rig.takeError(), c.error);
        EXPECT_TRUE(remove());
        BufferManager_reset(rig.buffer, start);
        BufferManager_release(rig.buffer, start);
    }
}

TEST_F(Scopes, AnInnerScopeOnlyNarrowsAndTheOuterOneComesBack) {
    EXPECT_EQ(rig.buffer->bitLimit, 21 * 8);
    ASSERT_TRUE(impose(5, BYTES));
    ASSERT_TRUE(impose(100, BITS));
    EXPECT_EQ(rig.buffer->bitLimit, 40);
    ASSERT_TRUE(impose(9, BITS));
    EXPECT_EQ(rig.buffer->bitLimit, 9);
    EXPECT_TRUE(remove());
    // What a scope was given itself comes back, not what had narrowed it.
    EXPECT_EQ(rig.buffer->bitLimit, 100);
    EXPECT_TRUE(remove());
    EXPECT_EQ(rig.buffer->bitLimit, 40);
    EXPECT_TRUE(remove());
    EXPECT_EQ(rig.buffer->bitLimit, 21 * 8);
    EXPECT_EQ(rig.buffer->limitingElement, nullptr);
    EXPECT_TRUE(remove());
}

TEST_F(Scopes, ALimitAtPositionZeroIsNone) {
    ASSERT_TRUE(impose(0, BYTES));
    EXPECT_EQ(rig.buffer->bitLimit, 0);
    EXPECT_FALSE(ended());
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 2, &rig.item), 2);
    EXPECT_TRUE(remove());
}

TEST_F(Scopes, LengthsThatNoDataCanHaveReachToTheEndOfTheData) {
    for (const int32_t units : {BITS, BYTES}) {
        EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 1, nullptr), 1);
        ASSERT_TRUE(impose(INT64_MAX, units));
        EXPECT_EQ(rig.buffer->bitLimit, 21 * 8);
        ASSERT_TRUE(impose(INT64_MIN, units));
        EXPECT_EQ(rig.buffer->bitLimit, rig.buffer->bitPosition);
        EXPECT_TRUE(ended());
        EXPECT_TRUE(remove());
        EXPECT_TRUE(remove());
    }
    EXPECT_FALSE(impose(INT64_MAX, CHARACTERS));
    EXPECT_EQ(rig.takeError(), "CTDP3000E 2 item");
    EXPECT_EQ(rig.buffer->charTrackerCount, 0);
}

TEST_F(Scopes, CharactersOfVaryingWidthAreMeasured) {
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 9, nullptr), 9);
    const int64_t chars = rig.buffer->charPosition;
    ASSERT_TRUE(impose(4, CHARACTERS));  // 9, two of two bytes, one of four
    EXPECT_EQ(rig.buffer->bitPosition, 72);
    EXPECT_EQ(rig.buffer->charPosition, chars);
    EXPECT_EQ(rig.buffer->bitLimit, (9 + 1 + 4 + 4) * 8);
    EXPECT_EQ(rig.buffer->charLimit, chars + 4);
    EXPECT_EQ(remaining(), 4);
    EXPECT_EQ(rig.readCharacters(3), u"9\u00E9\u00E9");
    EXPECT_EQ(remaining(), 1);
    EXPECT_FALSE(ended());
    EXPECT_EQ(rig.readCharacters(2), u"null");
    EXPECT_EQ(rig.takeError(), "CTDP3057E item");
    EXPECT_TRUE(ended());
    EXPECT_TRUE(remove());
    EXPECT_EQ(rig.buffer->charTrackerCount, 0);
    EXPECT_EQ(rig.buffer->charLimit, -1);
}

TEST_F(Scopes, FewerCharactersThanTheScopeWantsLeaveEverythingAsItWas) {
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 14, nullptr), 14);
    EXPECT_FALSE(impose(5, CHARACTERS));
    EXPECT_EQ(rig.takeError(), "CTDP3000E 14 item");
    EXPECT_EQ(rig.buffer->bitPosition, 14 * 8);
    EXPECT_EQ(rig.buffer->lengthTrackers->count, 0);
    EXPECT_EQ(rig.readCharacters(1), u"\U0001F600");
}

TEST_F(Scopes, CharactersOfOneWidthAreBytes) {
    rig.encoding("UTF-32BE");
    ASSERT_TRUE(impose(2, CHARACTERS));
    EXPECT_EQ(rig.buffer->bitLimit, 64);
    EXPECT_EQ(rig.buffer->charLimit, -1);
    EXPECT_EQ(remaining(), 8);
    EXPECT_TRUE(remove());
}

TEST_F(Scopes, InsideAByteTheRemainderIsCountedInBitsFromThenOn) {
    ASSERT_TRUE(impose(4, BYTES));
    EXPECT_EQ(remaining(), 4);
    EXPECT_EQ(BufferManager_skipBits(rig.buffer, 3, nullptr), 3);
    EXPECT_EQ(remaining(), 29);
    EXPECT_EQ(BufferManager_skipBits(rig.buffer, 5, nullptr), 5);
    EXPECT_EQ(remaining(), 24);
    const GroupMemberTableRow other{};
    EXPECT_EQ(BufferManager_getRemainingLengthInContainingStructure(rig.buffer, &other), 0);
    EXPECT_TRUE(remove(true));
    EXPECT_EQ(rig.buffer->bitPosition, 32);
}

TEST_F(Scopes, OnlyItsOwnElementConsumesWhatIsLeft) {
    const GroupMemberTableRow other{};
    ASSERT_TRUE(impose(4, BYTES));
    ASSERT_TRUE(impose(3, BYTES));
    EXPECT_TRUE(remove(true, &other));
    EXPECT_EQ(rig.buffer->bitPosition, 0);
    EXPECT_TRUE(remove(true));
    EXPECT_EQ(rig.buffer->bitPosition, 32);
    ASSERT_TRUE(impose(2, CHARACTERS));
    EXPECT_TRUE(remove(true));
    EXPECT_EQ(rig.buffer->bitPosition, 48);
}

TEST_F(Scopes, ARestThatTheDataDoNotHoldFailsByKindOfElement) {
    rig.item.iPhysicalType = GROUP_SEQUENCE;
    EXPECT_EQ(BufferManager_skipData(rig.buffer, &rig.item, BYTES, 30), 0);
    EXPECT_EQ(rig.takeError().substr(0, 17), "CTDP3144E 21 item");
    rig.item.iPhysicalType = TEXT_STRING;
    EXPECT_EQ(BufferManager_skipData(rig.buffer, &rig.item, BITS, 30), 0);
    EXPECT_EQ(rig.takeError(), "CTDP3000E 21 item");
    EXPECT_EQ(BufferManager_skipData(rig.buffer, &rig.item, BITS, 0), 0);
}

TEST_F(Scopes, ACheckPointTakesScopesBackAsWell) {
    ASSERT_TRUE(impose(5, BYTES));
    BufferManagerCheckPoint* point = BufferManager_getCheckPoint(rig.buffer);
    EXPECT_EQ(BufferManager_refreshCheckPoint(rig.buffer, point), point);
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 1, nullptr), 1);
    ASSERT_TRUE(impose(2, CHARACTERS));
    ASSERT_TRUE(impose(1, BYTES));
    BufferManager_restoreToCheckPoint(rig.buffer, point);
    EXPECT_EQ(rig.buffer->bitPosition, 0);
    EXPECT_EQ(rig.buffer->bitLimit, 40);
    EXPECT_EQ(rig.buffer->charTrackerCount, 0);
    EXPECT_EQ(rig.buffer->charLimit, -1);
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 1, nullptr), 1);
    point = BufferManager_refreshCheckPoint(rig.buffer, point);
    EXPECT_EQ(point->marker->bitPosition, 8);
    BufferManager_releaseCheckPoint(rig.buffer, point);
    EXPECT_TRUE(remove());
}

TEST(ScopesInPieces, AScopeIsCutWhereTheDataTurnOutToEnd) {
    Feed feed("abcd", 2);
    BufferRig rig;
    rig.feed(feed);
    ASSERT_TRUE(BufferManager_imposeScopedBufferLength(rig.buffer, 100, BYTES, &rig.item));
    EXPECT_EQ(rig.buffer->bitLimit, 800);
    EXPECT_EQ(BufferManager_skipBytes(rig.buffer, 4, nullptr), 4);
    EXPECT_EQ(rig.buffer->bitLimit, 32);
    EXPECT_TRUE(BufferManager_endOfScopedDataStream(rig.buffer));
    EXPECT_TRUE(BufferManager_removeScopedBufferLengthUnparser(rig.buffer, &rig.item, false, 0));
    EXPECT_EQ(rig.buffer->bitLimit, 32);
}

}  // namespace
