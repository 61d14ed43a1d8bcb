#include <unicode/uchar.h>

#include "dfdl/converters/textconverter.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textnumbertable.h"

namespace {

constexpr int32_t MOST_EXPONENT_UNITS = 512;

bool hasExponent(const TextNumberTableRow* row) {
    return row->iNumberBase == NUMBER_BASE_10 && row->iNumberPattern != nullptr &&
           DFDLUString_containsUChar(row->iNumberPattern, u'E');
}

// The first unit of what stands before an exponent; 0 if there is nothing.
UChar exponentOf(const TextNumberTableRow* row, const UNumberFormat* format) {
    if (DFDLUString_length(row->iNumberExponentCharacter) > 0) return row->iNumberExponentCharacter->chars[0];
    if (row->iNumberExponentCharExprIndex == -1) return 0;
    UChar units[MOST_EXPONENT_UNITS];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length =
        unum_getSymbol(format, UNUM_EXPONENTIAL_SYMBOL, units, MOST_EXPONENT_UNITS, &status);
    return U_SUCCESS(status) && length > 0 ? units[0] : UChar{0};
}

DFDLUString* trimmed(DFDLUString* text, DFDLHeapAdapter* heap) {
    if (text->length == 0) return text;
    if (!u_isUWhiteSpace(text->chars[0]) && !u_isUWhiteSpace(text->chars[text->length - 1])) return text;
    DFDLUString* rest = DFDLUString_trim(text, 0, heap);
    delete_DFDLUString(text);
    return rest;
}

bool isOtherCase(UChar unit, UChar exponent) {
    return unit != exponent && (unit == u_tolower(exponent) || unit == u_toupper(exponent));
}

}  // namespace

DFDLUString* TextConverter_preprocessCheckPolicy(DFDLUString* text, const TextNumberTableRow* row,
                                                 const UNumberFormat* format, bool ignoreCase,
                                                 ProcessingError* error, const GroupMemberTableRow* element,
                                                 DFDLHeapAdapter* heap) {
    if (row->iNumberCheckPolicy == NUMBER_CHECKPOLICY_LAX) text = trimmed(text, heap);
    const UChar exponent = hasExponent(row) ? exponentOf(row, format) : UChar{0};
    if (exponent == 0) return text;
    for (int32_t at = 1; at < text->length; ++at) {
        if (!u_isdigit(text->chars[at - 1]) || !isOtherCase(text->chars[at], exponent)) continue;
        if (ignoreCase) {
            DFDLUString_setAt(text, at, exponent);
            continue;
        }
        TextConverter_raiseParseIncomplete(error, element, text, at);
        delete_DFDLUString(text);
        return nullptr;
    }
    return text;
}

void TextConverter_raiseParseIncomplete(ProcessingError* error, const GroupMemberTableRow* element,
                                        const DFDLUString* text, int32_t position) {
    const TextNumberTableRow* row = GroupMemberTableRow_getTextNumberRow(element);
    const bool isInside = position >= 0 && position < text->length;
    ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_numberParseIncomplete, ERROR_PROCESSING,
                              SUBKIND_NONE, "%Z%C%d%Z%Z%d", text,
                              static_cast<int>(isInside ? text->chars[position] : UChar{0}), position,
                              GroupMemberTableRow_getElementName(element), row->iNumberPattern,
                              static_cast<int>(TextNumberTableRow_radix(row->iNumberBase)));
}
