// Zoned decimals.
#include <string_view>

#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textnumbertable.h"

namespace {

// What a byte is to a style: its digit in the low half, and flags.
constexpr uint8_t DIGIT = 0x0F;
constexpr uint8_t PLAIN = 0x10;    // may stand where no sign is
constexpr uint8_t PUNCHED = 0x20;  // may stand where the sign is
constexpr uint8_t NEGATIVE = 0x40;

struct Style {
    const char* word;  // for messages
    uint8_t bytes[256];
};

constexpr void add(Style* style, int32_t first, int32_t count, int32_t digit, int32_t flags) {
    for (int32_t i = 0; i < count; ++i) style->bytes[first + i] = static_cast<uint8_t>((digit + i) | flags);
}

constexpr Style ebcdic() {
    Style style{"ebcdicStandard", {}};
    add(&style, 0xF0, 10, 0, PLAIN | PUNCHED);
    add(&style, 0xC0, 10, 0, PUNCHED);
    add(&style, 0xB0, 10, 0, PUNCHED | NEGATIVE);
    add(&style, 0xD0, 10, 0, PUNCHED | NEGATIVE);
    return style;
}

// Negative digits follow each other from one byte on.
constexpr Style plainAscii(const char* word, int32_t firstNegative) {
    Style style{word, {}};
    add(&style, '0', 10, 0, PLAIN | PUNCHED);
    add(&style, firstNegative, 10, 0, PUNCHED | NEGATIVE);
    return style;
}

// What signed EBCDIC digits are when they are converted as letters.
constexpr Style translatedEbcdic() {
    Style style{"asciiTranslatedEBCDIC", {}};
    add(&style, '0', 10, 0, PLAIN);
    add(&style, '{', 1, 0, PLAIN | PUNCHED);
    add(&style, 'A', 9, 1, PUNCHED);
    add(&style, '}', 1, 0, PUNCHED | NEGATIVE);
    add(&style, 'J', 9, 1, PUNCHED | NEGATIVE);
    return style;
}

constexpr Style EBCDIC = ebcdic();
// By NumberZonedSignStyleEnum.
constexpr Style ASCII[] = {plainAscii("asciiStandard", 0x70), translatedEbcdic(),
                           plainAscii("asciiCARealiaModified", 0x20)};

bool has(const Style& style, uint8_t byte, uint8_t flag) { return (style.bytes[byte] & flag) != 0; }

bool isAllowed(const Style& style, uint8_t byte, bool carriesSign, bool wantsSign) {
    if (!carriesSign) return has(style, byte, PLAIN);
    return has(style, byte, PUNCHED) || (!wantsSign && has(style, byte, PLAIN));
}

// A field, and which of its digits the pattern gives the sign.
class Field {
  public:
    Field(const Style& style, const char* bytes, const TextNumberTableRow* row, bool wantsSign)
        : style_(style),
          bytes_(bytes),
          signFirst_(DFDLUString_startsWithUChar(row->iNumberPattern, u'+')),
          signLast_(DFDLUString_endsWithUChar(row->iNumberPattern, u'+')),
          wantsSign_(wantsSign) {}

    bool isEmpty() const { return bytes_.empty(); }
    std::string_view bytes() const { return bytes_; }
    uint8_t digit(size_t index) const { return style_.bytes[byteAt(index)] & DIGIT; }
    bool isNegative() const { return has(style_, byteAt(signFirst_ ? 0 : bytes_.size() - 1), NEGATIVE); }
    bool check(ProcessingError* error, const GroupMemberTableRow* element) const {
        for (size_t i = 0; i < bytes_.size(); ++i) {
            const bool carriesSign = (signFirst_ && i == 0) || (signLast_ && i + 1 == bytes_.size());
            if (!isAllowed(style_, byteAt(i), carriesSign, wantsSign_)) return raise(error, element, i);
        }
        return true;
    }

  private:
    uint8_t byteAt(size_t index) const { return static_cast<uint8_t>(bytes_[index]); }
    bool raise(ProcessingError* error, const GroupMemberTableRow* element, size_t index) const {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_invalidZonedByteValue,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%c%s%Z", int{byteAt(index)}, style_.word,
                                  GroupMemberTableRow_getElementName(element));
        return false;
    }

    const Style& style_;
    std::string_view bytes_;
    bool signFirst_;
    bool signLast_;
    bool wantsSign_;
};

// Zeros in front would count as digits of the number.
void storeDigits(const Field& field, DFDLDecimal* target) {
    const size_t count = field.bytes().size();
    size_t first = 0;
    while (first + 1 < count && field.digit(first) == 0) ++first;
    DFDLDecimal_clear(target);
    DFDLDecimal_setCount(target, static_cast<int32_t>(count - first));
    for (size_t i = first; i < count; ++i) {
        DFDLDecimal_setDigit(target, static_cast<int32_t>(i - first), field.digit(i));
    }
    if (field.isNegative()) DFDLDecimal_negate(target);
}

void storeWord(const Field& field, DFDLDecimal* target) {
    if (field.bytes().size() > ZONED_WORD_DIGITS) return storeDigits(field, target);
    int64_t value = 0;
    for (size_t i = 0; i < field.bytes().size(); ++i) value = value * 10 + field.digit(i);
    DFDLDecimal_setSignedQValue(target, field.isNegative() ? -value : value);
}

template <auto Store>
bool read(const Field& field, ProcessingError* error, DFDLDecimal* target,
          const GroupMemberTableRow* element) {
    if (field.isEmpty() || !field.check(error, element)) return false;
    Store(field, target);
    return true;
}

Field asciiField(const char* bytes, const TextNumberTableRow* row, int32_t simpleType) {
    const bool isSigned = SimpleTypeConverter_isSignedSimpleType(simpleType, row->iDecimalSigned);
    return {ASCII[row->iNumberZonedSignStyle], bytes, row,
            isSigned && row->iNumberCheckPolicy == NUMBER_CHECKPOLICY_STRICT};
}

}  // namespace

bool SimpleTypeConverter_zonedDecimalToNumberEBCDIC(ProcessingError* error, const char* bytes,
                                                    const TextNumberTableRow* row, DFDLDecimal* target,
                                                    int32_t /*simpleType*/,
                                                    const GroupMemberTableRow* element) {
    return read<storeDigits>(Field(EBCDIC, bytes, row, true), error, target, element);
}

bool SimpleTypeConverter_zonedDecimalToNumberASCII(ProcessingError* error, const char* bytes,
                                                   const TextNumberTableRow* row, DFDLDecimal* target,
                                                   int32_t simpleType, const GroupMemberTableRow* element) {
    return read<storeWord>(asciiField(bytes, row, simpleType), error, target, element);
}

bool SimpleTypeConverter_zonedDecimalToNumberASCIIWide(ProcessingError* error, const char* bytes,
                                                       const TextNumberTableRow* row, DFDLDecimal* target,
                                                       int32_t simpleType,
                                                       const GroupMemberTableRow* element) {
    return read<storeDigits>(asciiField(bytes, row, simpleType), error, target, element);
}

bool SimpleTypeConverter_isSignedSimpleType(int32_t simpleType, bool decimalSigned) {
    if (simpleType == SIMPLE_DECIMAL) return decimalSigned;
    return simpleType < SIMPLE_UNSIGNED_LONG || simpleType > SIMPLE_UNSIGNED_BYTE;
}

bool SimpleTypeConverter_checkZonedRange(NumberZonedSignStyleEnum style, uint8_t byte, bool isFirst,
                                         bool isLast, bool isSigned, bool isStrict) {
    return isAllowed(ASCII[style], byte, isFirst || isLast, isSigned && isStrict);
}

bool SimpleTypeConverter_checkZonedRangeForEBCDIC(uint8_t byte, bool isFirst, bool isLast) {
    return isAllowed(EBCDIC, byte, isFirst || isLast, true);
}

bool SimpleTypeConverter_checkRangeEBCDICOverPunched(uint8_t byte) { return has(EBCDIC, byte, PUNCHED); }
bool SimpleTypeConverter_checkRangeEBCDICNonPunched(uint8_t byte) { return has(EBCDIC, byte, PLAIN); }
bool SimpleTypeConverter_checkRangeASCII_STANDARDOverPunched(uint8_t byte) {
    return has(ASCII[ASCII_STANDARD], byte, PUNCHED);
}
bool SimpleTypeConverter_checkRangeASCII_STANDARDNonPunched(uint8_t byte) {
    return has(ASCII[ASCII_STANDARD], byte, PLAIN);
}
bool SimpleTypeConverter_checkRangeASCII_TRANSLATED_EBCDICOverPunched(uint8_t byte) {
    return has(ASCII[ASCII_TRANSLATED_EBCDIC], byte, PUNCHED);
}
bool SimpleTypeConverter_checkRangeASCII_TRANSLATED_EBCDICNonPunched(uint8_t byte) {
    return has(ASCII[ASCII_TRANSLATED_EBCDIC], byte, PLAIN);
}
bool SimpleTypeConverter_checkRangeASCII_CA_REALIA_MODIFIEDOverPunched(uint8_t byte) {
    return has(ASCII[ASCII_CA_REALIA_MODIFIED], byte, PUNCHED);
}
bool SimpleTypeConverter_checkRangeASCII_CA_REALIA_MODIFIEDNonPunched(uint8_t byte) {
    return has(ASCII[ASCII_CA_REALIA_MODIFIED], byte, PLAIN);
}
