#include "varints.h"

#include <iterator>

namespace {

enum WireType : uint64_t { VARINT = 0, FIXED_64 = 1, DELIMITED = 2, FIXED_32 = 5 };

constexpr size_t LONGEST = 10;
constexpr uint8_t GOES_ON = 0x80;

// Goes along the fields of one message.
class Walker {
  public:
    Walker(const uint8_t* bytes, size_t start, size_t end, std::vector<Varint>* found)
        : bytes_(bytes), at_(start), end_(end), found_(found) {}

    // False if the bytes are no message; what was found in them is left out then.
    bool walk() {
        const size_t before = found_->size();
        while (at_ < end_) {
            if (takeField()) continue;
            found_->resize(before);
            return false;
        }
        return true;
    }

  private:
    bool takeVarint(uint64_t* value, Varint* place) {
        *place = {at_, 0};
        *value = 0;
        while (at_ < end_ && place->length < LONGEST) {
            const uint8_t byte = bytes_[at_++];
            *value |= static_cast<uint64_t>(byte & 0x7F) << (7 * place->length++);
            if ((byte & GOES_ON) == 0) return true;
        }
        return false;
    }

    bool skip(uint64_t count) {
        if (count > end_ - at_) return false;
        at_ += count;
        return true;
    }

    bool takeField() {
        uint64_t tag = 0;
        Varint place{};
        if (!takeVarint(&tag, &place) || tag >> 3 == 0) return false;
        switch (tag & 7) {
            case VARINT:
                return takeNumber();
            case FIXED_64:
                return skip(8);
            case FIXED_32:
                return skip(4);
            default:
                return (tag & 7) == DELIMITED && takeDelimited();
        }
    }

    bool takeNumber() {
        uint64_t value = 0;
        Varint place{};
        if (!takeVarint(&value, &place)) return false;
        found_->push_back(place);
        return true;
    }

    bool takeDelimited() {
        uint64_t length = 0;
        Varint place{};
        if (!takeVarint(&length, &place) || length > end_ - at_) return false;
        const size_t start = at_;
        at_ += length;
        Walker(bytes_, start, at_, found_).walk();
        return true;
    }

    const uint8_t* bytes_;
    size_t at_;
    size_t end_;
    std::vector<Varint>* found_;
};

uint64_t another(std::minstd_rand& random) {
    static constexpr int64_t NUMBERS[] = {-2147483647 - 1, -2, -1, 100, 127, 2147483647};
    const auto pick = random();
    return pick % 4 != 0 ? pick / 4 % 16 : static_cast<uint64_t>(NUMBERS[pick / 4 % std::size(NUMBERS)]);
}

}  // namespace

std::vector<Varint> findVarints(const uint8_t* bytes, size_t size) {
    std::vector<Varint> found;
    Walker(bytes, 0, size, &found).walk();
    return found;
}

void replaceVarint(uint8_t* bytes, Varint varint, std::minstd_rand& random) {
    uint64_t value = another(random);
    for (size_t i = 0; i < varint.length; ++i, value >>= 7) {
        const bool isLast = i + 1 == varint.length;
        bytes[varint.at + i] = static_cast<uint8_t>((value & 0x7F) | (isLast ? 0 : GOES_ON));
    }
}
