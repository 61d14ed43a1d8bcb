// Integers of any number of bytes.
#include <algorithm>

#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr int64_t WORD_BYTES = 8;
constexpr int64_t BYTE_VALUES = 256;

// The bytes as a sequence from most to least weight, each as `mask` changes it.
struct Weighted {
    const uint8_t* bytes;
    int64_t length;
    bool bigEndian;
    uint8_t mask;

    uint8_t operator[](int64_t rank) const {
        return static_cast<uint8_t>(bytes[bigEndian ? rank : length - 1 - rank] ^ mask);
    }
};

// What is left of a word above the bytes is as `word` has it.
uint64_t fold(const Weighted& bytes, int64_t count, uint64_t word) {
    for (int64_t i = 0; i < count; ++i) word = (word << 8) | bytes[i];
    return word;
}

Weighted oddBytes(const uint8_t* bytes, ByteOrderEnum order, int64_t length) {
    return {bytes, std::min(length, WORD_BYTES), order == BYTEOR_BIG_ENDIAN, 0};
}

// The first word is exact; the bytes behind it are added one by one.
void foldInto(DFDLDecimal* target, const Weighted& bytes) {
    const int64_t inWord = std::min(bytes.length, WORD_BYTES);
    DFDLDecimal_setUnsignedQValue(target, fold(bytes, inWord, 0));
    if (inWord == bytes.length) return;
    const Owned<DFDLDecimal, delete_DFDLDecimal> scale(new_DFDLDecimal(target->heap, target->constants));
    const Owned<DFDLDecimal, delete_DFDLDecimal> digit(new_DFDLDecimal(target->heap, target->constants));
    DFDLDecimal_setSignedQValue(scale.get(), BYTE_VALUES);
    for (int64_t i = inWord; i < bytes.length; ++i) {
        DFDLDecimal_setSignedQValue(digit.get(), bytes[i]);
        DFDLDecimal_multi(target, scale.get());
        DFDLDecimal_add(target, digit.get());
    }
}

void addOne(DFDLDecimal* target) {
    const Owned<DFDLDecimal, delete_DFDLDecimal> one(new_DFDLDecimal(target->heap, target->constants));
    DFDLDecimal_setSignedQValue(one.get(), 1);
    DFDLDecimal_add(target, one.get());
}

}  // namespace

int64_t SimpleTypeConverter_oddIntegerToLong(const uint8_t* bytes, ByteOrderEnum order, int64_t length) {
    const Weighted weighted = oddBytes(bytes, order, length);
    if (length <= 0) return 0;
    const uint64_t sign = (weighted[0] & 0x80U) != 0 ? ~uint64_t{0} : 0;
    return static_cast<int64_t>(fold(weighted, weighted.length, sign));
}

uint64_t SimpleTypeConverter_uOddIntegerToLong(const uint8_t* bytes, ByteOrderEnum order, int64_t length) {
    const Weighted weighted = oddBytes(bytes, order, length);
    return fold(weighted, weighted.length, 0);
}

void SimpleTypeConverter_unsignedByteArrayToBigInteger(const uint8_t* bytes, int64_t length,
                                                       ByteOrderEnum order, DFDLDecimal* target) {
    foldInto(target, {bytes, length, order == BYTEOR_BIG_ENDIAN, 0});
}

void SimpleTypeConverter_signedByteArrayToBigInteger(const uint8_t* bytes, int64_t length,
                                                     ByteOrderEnum order, DFDLDecimal* target) {
    Weighted weighted{bytes, length, order == BYTEOR_BIG_ENDIAN, 0};
    if (length <= WORD_BYTES) {
        return DFDLDecimal_setSignedQValue(target,
                                           SimpleTypeConverter_oddIntegerToLong(bytes, order, length));
    }
    if ((weighted[0] & 0x80U) == 0) return foldInto(target, weighted);
    weighted.mask = 0xFF;
    foldInto(target, weighted);
    addOne(target);
    DFDLDecimal_negate(target);
}
