// Packed decimals: BCD, IBM's with the sign in the last half byte, and the 4690's with the sign in front.
#include <utility>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/rowtrace.h"

namespace {

constexpr uint32_t NEGATIVE_4690 = 0xD;
constexpr uint32_t FILLER_4690 = 0xF;

uint32_t highOf(uint8_t byte) { return byte >> 4; }
uint32_t lowOf(uint8_t byte) { return byte & 0xFU; }

// Digits from the first to the last, as long as they are few enough for a word.
class WordTotal {
  public:
    explicit WordTotal(DFDLDecimal* target) : target_(target) {}

    void append(uint64_t digits, uint64_t scale) { word_ = word_ * scale + digits; }
    void join() {}
    bool isZero() const { return word_ == 0; }
    void store() { DFDLDecimal_setUnsignedQValue(target_, word_); }

  private:
    DFDLDecimal* target_;
    uint64_t word_ = 0;
};

// Any number of digits: words of nine bytes, joined in the target, which rounds where there are too many.
class DecimalTotal {
  public:
    explicit DecimalTotal(DFDLDecimal* target) : target_(target) { DFDLDecimal_clear(target); }

    void append(uint64_t digits, uint64_t scale) {
        word_ = word_ * scale + digits;
        scale_ *= scale;
        if (scale_ == FULL) join();
    }
    bool isZero() {
        join();
        return dfdl_decNumberIsZero(&target_->number);
    }
    void store() { join(); }
    void join() {
        if (scale_ == 1) return;
        if (part_ == nullptr) part_.reset(new_DFDLDecimal(target_->heap, target_->constants));
        DFDLDecimal_setUnsignedQValue(part_.get(), scale_);
        DFDLDecimal_multi(target_, part_.get());
        DFDLDecimal_setUnsignedQValue(part_.get(), word_);
        DFDLDecimal_add(target_, part_.get());
        word_ = 0;
        scale_ = 1;
    }

  private:
    static constexpr uint64_t FULL = 1'000'000'000'000'000'000;

    DFDLDecimal* target_;
    Owned<DFDLDecimal, delete_DFDLDecimal> part_;
    uint64_t word_ = 0;
    uint64_t scale_ = 1;
};

// A field being read in one of the formats.
struct Packed {
    const BinaryField* field;
    DFDLHeapAdapter* heap;
    const char* format;  // its word in messages
};

bool refuse(const Packed& packed, uint32_t nibble, int64_t index, bool isLow) {
    using Text = Owned<DFDLUString, delete_DFDLUString>;
    DFDLHeapAdapter* heap = packed.heap;
    const BinaryField& field = *packed.field;
    const Text bytes(new_DFDLUString_fromHexBinary(heap, field.bytes, field.length));
    const UChar digit = u"0123456789ABCDEF"[nibble];
    const Text bad(DFDLUStringPooler_getDFDLUStringFromView(heap, {&digit, 1}));
    ProcessingError_setValues(
        heap->context->currentError, __FILE__, __LINE__, DFDLParser_invalidPackedDecimalValue,
        ERROR_PROCESSING, SUBKIND_NONE, "%S%Z%s%Z%lld",
        TraceHandlerAdapter_getNameForRow(heap->context->trace, field.element), bytes.get(), packed.format,
        bad.get(), static_cast<long long>(2 * index + (isLow ? 2 : 1)));
    return false;
}

bool refuseSign(const Packed& packed) {
    const GroupMemberTableRow* element = packed.field->element;
    ProcessingError_setValues(packed.heap->context->currentError, __FILE__, __LINE__, DFDLParser_invalidSign,
                              ERROR_PROCESSING, SUBKIND_NONE, "%Z",
                              element == nullptr ? nullptr : GroupMemberTableRow_getElementName(element));
    return false;
}

// Appends the bytes of these ranks, two digits each.
template <class Total>
bool appendPairs(const Packed& packed, int64_t first, int64_t end, Total* total) {
    for (int64_t rank = first; rank < end; ++rank) {
        const int64_t index = BinaryField_indexOf(packed.field, rank);
        const uint8_t byte = packed.field->bytes[index];
        if (highOf(byte) > 9) return refuse(packed, highOf(byte), index, false);
        if (lowOf(byte) > 9) return refuse(packed, lowOf(byte), index, true);
        total->append(highOf(byte) * 10 + lowOf(byte), 100);
    }
    return true;
}

bool finish(const BinaryField* field, DFDLDecimal* target, bool withVirtualPoint, bool isNegative) {
    const int32_t places = field->row->iBinaryDecimalVirtualPoint;
    if (withVirtualPoint && places != 0) DFDLDecimal_setDecimalAt(target, places);
    if (isNegative) DFDLDecimal_negate(target);
    return true;
}

enum class Sign { Positive, Negative, Refused };

// The codes are four half bytes: positive, negative, unsigned, zero.
Sign strictSign(uint32_t codes, uint32_t code, bool isZero) {
    if (isZero) return code == (codes & 0xF) ? Sign::Positive : Sign::Refused;
    if (code == (codes >> 8 & 0xF)) return Sign::Negative;
    return code == (codes >> 12 & 0xF) || code == (codes >> 4 & 0xF) ? Sign::Positive : Sign::Refused;
}

Sign laxSign(uint32_t code, bool isZero) {
    if (code == 0) return isZero ? Sign::Positive : Sign::Refused;
    if (code < 0xA) return Sign::Refused;
    if (code != 0xB && code != 0xD) return Sign::Positive;
    return isZero ? Sign::Refused : Sign::Negative;
}

Sign signOf(const BinaryNumberTableRow* row, uint32_t code, bool isZero) {
    return row->iBinaryNumberCheckPolicy == BINARY_CHECK_POLICY_STRICT
               ? strictSign(static_cast<uint32_t>(row->iPackedSignCodes), code, isZero)
               : laxSign(code, isZero);
}

template <class Total>
bool readBcd(const BinaryField* field, bool withVirtualPoint, DFDLDecimal* target) {
    const Packed packed{field, target->heap, "bcd"};
    Total total(target);
    if (!appendPairs(packed, 0, field->length, &total)) return false;
    total.store();
    return finish(field, target, withVirtualPoint, false);
}

template <class Total>
bool readPacked(const BinaryField* field, bool withVirtualPoint, DFDLDecimal* target) {
    if (field->length <= 0) return false;
    const Packed packed{field, target->heap, "packed"};
    Total total(target);
    const int64_t last = BinaryField_indexOf(field, field->length - 1);
    const uint8_t signByte = field->bytes[last];
    if (!appendPairs(packed, 0, field->length - 1, &total)) return false;
    if (highOf(signByte) > 9) return refuse(packed, highOf(signByte), last, false);
    total.join();  // the digit beside the sign is added alone
    total.append(highOf(signByte), 10);
    const Sign sign = signOf(field->row, lowOf(signByte), total.isZero());
    if (sign == Sign::Refused) return refuseSign(packed);
    total.store();
    return finish(field, target, withVirtualPoint, sign == Sign::Negative);
}

// The byte in front: up to two digits behind an optional sign and a filler.
struct Leading4690 {
    uint32_t high;
    uint32_t low;
    bool isNegative;
    bool highIsBad;
    bool lowIsBad;
};

Leading4690 split4690(uint8_t byte) {
    const uint32_t high = highOf(byte);
    const uint32_t low = lowOf(byte);
    const bool signInLow = high == FILLER_4690 && low == NEGATIVE_4690;
    return {high, low, signInLow || high == NEGATIVE_4690,
            high > 9 && high != NEGATIVE_4690 && high != FILLER_4690, low > 9 && !signInLow};
}

template <class Total>
bool appendLeading4690(const Packed& packed, Total* total, bool* isNegative) {
    const int64_t index = BinaryField_indexOf(packed.field, 0);
    const auto [high, low, negative, highIsBad, lowIsBad] = split4690(packed.field->bytes[index]);
    if (highIsBad) return refuse(packed, high, index, false);
    if (lowIsBad) return refuse(packed, low, index, true);
    *isNegative = negative;
    total->append((high <= 9 ? high * 10 : 0) + (low <= 9 ? low : 0), 100);
    return true;
}

template <class Total>
bool read4690(const BinaryField* field, bool withVirtualPoint, DFDLDecimal* target) {
    if (field->length <= 0) return false;
    const Packed packed{field, target->heap, "zov4690packed"};
    Total total(target);
    bool isNegative = false;
    if (!appendLeading4690(packed, &total, &isNegative)) return false;
    if (!appendPairs(packed, 1, field->length, &total)) return false;
    total.store();
    return finish(field, target, withVirtualPoint, isNegative);
}

// Digits as text, in a buffer that the heap's factory keeps until they are a string.
class DigitText {
  public:
    DigitText(const BinaryField* field, DFDLHeapAdapter* heap) : heap_(heap) {
        if (field->length > (INT32_MAX - 1) / 2) DFDLHeapAdapter_refuse(heap);
        chars_ = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, 2 * field->length + 1);
    }
    ~DigitText() { DFDLBufferFactory_FreeUBuffer(heap_->bufferFactory, chars_); }
    DigitText(const DigitText&) = delete;
    DigitText& operator=(const DigitText&) = delete;

    void append(uint64_t pair, uint64_t /*scale*/) {
        appendDigit(static_cast<uint32_t>(pair / 10));
        appendDigit(static_cast<uint32_t>(pair % 10));
    }
    void appendDigit(uint32_t digit) { appendUnit(static_cast<UChar>(u'0' + digit)); }
    void appendUnit(UChar unit) { chars_[length_++] = unit; }
    DFDLUString* take() {
        chars_[length_] = 0;
        return DFDLUStringPooler_getDFDLUStringUseUChars(heap_, std::exchange(chars_, nullptr), length_);
    }

  private:
    DFDLHeapAdapter* heap_;
    UChar* chars_;
    int32_t length_ = 0;
};

// A bad high half is shown by the low one.
bool appendLeading4690Text(const Packed& packed, DigitText* text) {
    const int64_t index = BinaryField_indexOf(packed.field, 0);
    const Leading4690 leading = split4690(packed.field->bytes[index]);
    if (leading.highIsBad) return refuse(packed, leading.low, index, false);
    if (leading.lowIsBad) return refuse(packed, leading.low, index, true);
    if (leading.isNegative) text->appendUnit(u'-');
    if (leading.high <= 9) text->appendDigit(leading.high);
    if (leading.low <= 9) text->appendDigit(leading.low);
    return true;
}

// Whether one of the 16 half bytes is more than 9: it has the bit for 8 and one of those for 4 and 2.
bool hasOtherDigits(uint64_t halves) {
    return ((halves >> 3) & ((halves >> 2) | (halves >> 1)) & 0x1111111111111111) != 0;
}

// The number that 16 half bytes write: joined to pairs, fours, eights.
uint64_t joinDigits(uint64_t halves) {
    const uint64_t pairs = (halves & 0x0F0F0F0F0F0F0F0F) + 10 * ((halves >> 4) & 0x0F0F0F0F0F0F0F0F);
    const uint64_t fours = (pairs & 0x00FF00FF00FF00FF) + 100 * ((pairs >> 8) & 0x00FF00FF00FF00FF);
    const uint64_t eights = (fours & 0x0000FFFF0000FFFF) + 10000 * ((fours >> 16) & 0x0000FFFF0000FFFF);
    return (eights & 0xFFFFFFFF) + 100000000 * (eights >> 32);
}

}  // namespace

bool SimpleTypeConverter_packedWord(const BinaryField* field, int64_t* word) {
    if (field->length < 1 || field->length > static_cast<int64_t>(sizeof(uint64_t))) return false;
    const bool isPacked = field->row->iBinaryNumberRepresentation == PACKED;
    if (!isPacked && field->row->iBinaryNumberRepresentation != BCD) return false;
    const uint64_t halves =
        BinaryNumberConverter_getBinaryUnsignedInteger(field->bytes, field->byteOrder, field->length);
    const uint64_t digits = isPacked ? halves >> 4 : halves;
    if (hasOtherDigits(digits)) return false;
    *word = static_cast<int64_t>(joinDigits(digits));
    if (!isPacked) return true;
    const Sign sign = signOf(field->row, static_cast<uint32_t>(halves & 0xF), *word == 0);
    if (sign == Sign::Negative) *word = -*word;
    return sign != Sign::Refused;
}

bool SimpleTypeConverter_bcdToNumber(const BinaryField* field, bool withVirtualPoint, DFDLDecimal* target) {
    return readBcd<WordTotal>(field, withVirtualPoint, target);
}

bool SimpleTypeConverter_bcdToNumberWide(const BinaryField* field, bool withVirtualPoint,
                                         DFDLDecimal* target) {
    return readBcd<DecimalTotal>(field, withVirtualPoint, target);
}

bool SimpleTypeConverter_packedDecimalToNumber(const BinaryField* field, bool withVirtualPoint,
                                               DFDLDecimal* target) {
    return readPacked<WordTotal>(field, withVirtualPoint, target);
}

bool SimpleTypeConverter_packedDecimalToNumberWide(const BinaryField* field, bool withVirtualPoint,
                                                   DFDLDecimal* target) {
    return readPacked<DecimalTotal>(field, withVirtualPoint, target);
}

bool SimpleTypeConverter_zov4690PackedDecimalToNumber(const BinaryField* field, bool withVirtualPoint,
                                                      DFDLDecimal* target) {
    return read4690<WordTotal>(field, withVirtualPoint, target);
}

bool SimpleTypeConverter_zov4690PackedDecimalToNumberWide(const BinaryField* field, bool withVirtualPoint,
                                                          DFDLDecimal* target) {
    return read4690<DecimalTotal>(field, withVirtualPoint, target);
}

DFDLUString* SimpleTypeConverter_bcdToText(const BinaryField* field, DFDLHeapAdapter* heap) {
    const Packed packed{field, heap, "bcd"};
    DigitText text(field, heap);
    return appendPairs(packed, 0, field->length, &text) ? text.take() : nullptr;
}

DFDLUString* SimpleTypeConverter_zov4690PackedDecimalToText(const BinaryField* field, DFDLHeapAdapter* heap) {
    const Packed packed{field, heap, "zov4690packed"};
    DigitText text(field, heap);
    if (field->length > 0 && !appendLeading4690Text(packed, &text)) return nullptr;
    return appendPairs(packed, 1, field->length, &text) ? text.take() : nullptr;
}

DFDLUString* BinaryNumberConverter_createStringIntegerFromBinary(const BinaryField* field,
                                                                 DFDLHeapAdapter* heap) {
    switch (field->row->iBinaryNumberRepresentation) {
        case BCD:
            return SimpleTypeConverter_bcdToText(field, heap);
        case ZOV4690_PACKED:
            return SimpleTypeConverter_zov4690PackedDecimalToText(field, heap);
        default:
            return nullptr;
    }
}

PackedReader SimpleTypeConverter_packedReader(BinaryNumberRepEnum representation, int64_t length) {
    const bool wide = length > PACKED_WORD_BYTES;
    switch (representation) {
        case BCD:
            return wide ? SimpleTypeConverter_bcdToNumberWide : SimpleTypeConverter_bcdToNumber;
        case PACKED:
            return wide ? SimpleTypeConverter_packedDecimalToNumberWide
                        : SimpleTypeConverter_packedDecimalToNumber;
        case ZOV4690_PACKED:
            return wide ? SimpleTypeConverter_zov4690PackedDecimalToNumberWide
                        : SimpleTypeConverter_zov4690PackedDecimalToNumber;
        default:
            return nullptr;
    }
}
