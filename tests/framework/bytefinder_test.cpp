#include "dfdl/framework/bytefinder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

// The last byte of the block is the last that may be read: the sanitizers see what goes beyond.
int64_t findIn(const ByteFinder& finder, const std::vector<uint8_t>& bytes, size_t from) {
    const std::vector<uint8_t> exact(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end());
    return ByteFinder_find(&finder, exact.data(), static_cast<int64_t>(exact.size()));
}

TEST(ByteFinder, findsTheFirstOfAnySetAtAnyPlace) {
    const uint32_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 chance(seed);
    for (const int distinct : {0, 1, 2, 3, 4, 5, 8, 9, 40}) {
        uint8_t flags[256] = {};
        for (int i = 0; i < distinct; ++i) flags[(37 * i + 200) & 0xFF] = 1;
        ByteFinder finder;
        ByteFinder_init(&finder, flags);
        for (int round = 0; round < 300; ++round) {
            std::vector<uint8_t> bytes(chance() % 140);
            for (uint8_t& byte : bytes) {
                do byte = static_cast<uint8_t>(chance());
                while (flags[byte] != 0 && chance() % 40 != 0);
            }
            int64_t expected = 0;
            const size_t from = bytes.empty() ? 0 : chance() % bytes.size();
            while (from + static_cast<size_t>(expected) < bytes.size() &&
                   flags[bytes[from + static_cast<size_t>(expected)]] == 0) {
                ++expected;
            }
            ASSERT_EQ(findIn(finder, bytes, from), expected) << distinct << " bytes, round " << round;
        }
    }
}

}  // namespace
