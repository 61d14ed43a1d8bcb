#ifndef DFDL_CONVERTERS_SIMPLETYPECONVERTER_H
#define DFDL_CONVERTERS_SIMPLETYPECONVERTER_H

#include <cstdint>

#include "dfdl/pif/pifenums.h"

struct DFDLDecimal;
struct GroupMemberTableRow;
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

#endif
