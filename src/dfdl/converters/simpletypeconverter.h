#ifndef DFDL_CONVERTERS_SIMPLETYPECONVERTER_H
#define DFDL_CONVERTERS_SIMPLETYPECONVERTER_H

#include <cstdint>

#include "dfdl/converters/binaryfield.h"
#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/pif/pifenums.h"

struct DFDLDecimal;
struct DFDLHeapAdapter;
struct DFDLUString;
struct ProcessingError;
struct TextNumberTableRow;

// The readers of numbers that look at single bytes. There is no object.

// Zoned decimals: one digit a byte, the sign in the high half of the digit where the pattern has its "+". The
// bytes end with a zero. False with an error if a byte is not allowed at its place, and without one if there
// are no bytes; the target is as it was then. `element` is for messages.
bool SimpleTypeConverter_zonedDecimalToNumberEBCDIC(ProcessingError* error, const char* bytes,
                                                    const TextNumberTableRow* row, DFDLDecimal* target,
                                                    int32_t simpleType, const GroupMemberTableRow* element);
bool SimpleTypeConverter_zonedDecimalToNumberASCII(ProcessingError* error, const char* bytes,
                                                   const TextNumberTableRow* row, DFDLDecimal* target,
                                                   int32_t simpleType, const GroupMemberTableRow* element);
// The same, of use for more than ZONED_WORD_DIGITS digits; none is lost.
bool SimpleTypeConverter_zonedDecimalToNumberASCIIWide(ProcessingError* error, const char* bytes,
                                                       const TextNumberTableRow* row, DFDLDecimal* target,
                                                       int32_t simpleType,
                                                       const GroupMemberTableRow* element);
inline constexpr int32_t ZONED_WORD_DIGITS = 18;

bool SimpleTypeConverter_isSignedSimpleType(int32_t simpleType, bool decimalSigned);

// Whether a byte may stand where it does. `isFirst` and `isLast`: it is the first or last digit, and that
// digit carries the sign. A signed number under a strict policy wants a sign there.
bool SimpleTypeConverter_checkZonedRange(NumberZonedSignStyleEnum style, uint8_t byte, bool isFirst,
                                         bool isLast, bool isSigned, bool isStrict);
bool SimpleTypeConverter_checkZonedRangeForEBCDIC(uint8_t byte, bool isFirst, bool isLast);

// The sets of bytes: digits that carry a sign, and all others.
bool SimpleTypeConverter_checkRangeEBCDICOverPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeEBCDICNonPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeASCII_STANDARDOverPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeASCII_STANDARDNonPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeASCII_TRANSLATED_EBCDICOverPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeASCII_TRANSLATED_EBCDICNonPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeASCII_CA_REALIA_MODIFIEDOverPunched(uint8_t byte);
bool SimpleTypeConverter_checkRangeASCII_CA_REALIA_MODIFIEDNonPunched(uint8_t byte);

// Words without sign, in the next larger one.
inline uint16_t SimpleTypeConverter_uByteToShort(const uint8_t* bytes) { return *bytes; }
inline uint32_t SimpleTypeConverter_uShortToInt(const uint8_t* bytes, ByteOrderEnum order) {
    return BinaryNumberConverter_getShort(bytes, order);
}
inline uint64_t SimpleTypeConverter_uIntToLong(const uint8_t* bytes, ByteOrderEnum order) {
    return BinaryNumberConverter_getInt(bytes, order);
}
// Two's complement of a length that no machine word has, up to 8 bytes; 0 of no bytes. Further bytes, which
// have more weight, are not looked at.
int64_t SimpleTypeConverter_oddIntegerToLong(const uint8_t* bytes, ByteOrderEnum order, int64_t length);
uint64_t SimpleTypeConverter_uOddIntegerToLong(const uint8_t* bytes, ByteOrderEnum order, int64_t length);
// Of any length. From 34 digits on every byte that is added rounds.
void SimpleTypeConverter_signedByteArrayToBigInteger(const uint8_t* bytes, int64_t length,
                                                     ByteOrderEnum order, DFDLDecimal* target);
void SimpleTypeConverter_unsignedByteArrayToBigInteger(const uint8_t* bytes, int64_t length,
                                                       ByteOrderEnum order, DFDLDecimal* target);

// Packed decimals: two digits a byte. The plain readers take up to PACKED_WORD_BYTES bytes, the wide ones any
// number, rounding from 34 digits on. False with an error in the context of the target's heap, and without
// one where there are no bytes but must be a sign; the target is undefined then.
bool SimpleTypeConverter_bcdToNumber(const BinaryField* field, bool withVirtualPoint, DFDLDecimal* target);
bool SimpleTypeConverter_bcdToNumberWide(const BinaryField* field, bool withVirtualPoint,
                                         DFDLDecimal* target);
bool SimpleTypeConverter_packedDecimalToNumber(const BinaryField* field, bool withVirtualPoint,
                                               DFDLDecimal* target);
bool SimpleTypeConverter_packedDecimalToNumberWide(const BinaryField* field, bool withVirtualPoint,
                                                   DFDLDecimal* target);
bool SimpleTypeConverter_zov4690PackedDecimalToNumber(const BinaryField* field, bool withVirtualPoint,
                                                      DFDLDecimal* target);
bool SimpleTypeConverter_zov4690PackedDecimalToNumberWide(const BinaryField* field, bool withVirtualPoint,
                                                          DFDLDecimal* target);
inline constexpr int64_t PACKED_WORD_BYTES = 9;
// The digits of such a field of up to PACKED_WORD_BYTES bytes, the point left out. False, without an error,
// if one of the readers above has to say what is wrong with it.
bool SimpleTypeConverter_packedWord(const BinaryField* field, int64_t* word);
// The reader for a length; null if the representation is not one of packed decimals.
using PackedReader = bool (*)(const BinaryField*, bool, DFDLDecimal*);
PackedReader SimpleTypeConverter_packedReader(BinaryNumberRepEnum representation, int64_t length);

// The digits of such a field as text, the heaviest first: of a pool, the caller's. Null with an error.
DFDLUString* SimpleTypeConverter_bcdToText(const BinaryField* field, DFDLHeapAdapter* heap);
DFDLUString* SimpleTypeConverter_zov4690PackedDecimalToText(const BinaryField* field, DFDLHeapAdapter* heap);

#endif
