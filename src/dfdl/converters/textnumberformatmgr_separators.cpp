// The symbols of number formats that separate: groups, the fraction, the exponent.
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

using Literal = Owned<DFDLStringLiteral, delete_DFDLStringLiteral>;

// One of the two that are literals of one character.
struct Separator {
    const DFDLUString* source;
    int32_t expression;
    const char* property;
    const char* unsupported;
    const char* wrongLength;
};

struct Resolution {
    TextNumberFormatMgr* manager;
    ProcessingError* error;
    NumberFormatCacheEntry* entry;
    const TextNumberTableRow* row;
    const GroupMemberTableRow* element;
};

bool has(const TextNumberTableRow* row, UChar unit) {
    return row->iNumberPattern != nullptr && DFDLUString_containsUChar(row->iNumberPattern, unit);
}

bool isDecimalText(const TextNumberTableRow* row) {
    return row->iNumberBase == NUMBER_BASE_10 && row->iTextNumberRepresentation != ZONED;
}

bool refuse(const Resolution& resolution, const char* key) {
    ProcessingError_setValues(resolution.error, __FILE__, __LINE__, key, ERROR_SCHEMA_DEFINITION,
                              SUBKIND_NONE, "%Z", GroupMemberTableRow_getElementName(resolution.element));
    return false;
}

// Here the evaluator of expressions is to be asked.
bool refuseExpression(const Resolution& resolution, const char* construct) {
    ProcessingError_setValues(resolution.error, __FILE__, __LINE__, DFDLParser_unsupportedConstruct,
                              ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%s", resolution.element->scdText,
                              construct);
    return false;
}

// The character of a separator; null with an error.
Literal resolve(const Resolution& resolution, const Separator& separator) {
    if (DFDLUString_length(separator.source) == 0 && separator.expression != -1) {
        refuseExpression(resolution, separator.unsupported);
        return nullptr;
    }
    if (DFDLUString_length(separator.source) == 0) {
        refuse(resolution, separator.wrongLength);
        return nullptr;
    }
    Literal literal(new_DFDLStringLiteral(resolution.manager->literalHeap, separator.source));
    if (!DFDLStringLiteral_parse(literal.get())) {
        ProcessingError_setValues(resolution.error, __FILE__, __LINE__, TEXT_INVALID_MNEMONIC,
                                  ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%Z%s", separator.source,
                                  GroupMemberTableRow_getElementName(resolution.element), separator.property);
        return nullptr;
    }
    if (DFDLUString_length(DFDLStringLiteral_getUnicodeString(literal.get())) == 1) return literal;
    refuse(resolution, separator.wrongLength);
    return nullptr;
}

const DFDLUString* textOf(const Literal& literal) {
    return literal == nullptr ? nullptr : DFDLStringLiteral_getUnicodeString(literal.get());
}

bool wantsGrouping(const Resolution& resolution) {
    return has(resolution.row, u',') && isDecimalText(resolution.row);
}

bool wantsPoint(const Resolution& resolution) {
    const int32_t type = resolution.element->simpleTypeKind;
    return has(resolution.row, u'.') && isDecimalText(resolution.row) && type >= SIMPLE_FLOAT &&
           type <= SIMPLE_DECIMAL;
}

// ICU needs a point where it reads significant digits or exponents.
bool pointMayBeEmpty(const TextNumberTableRow* row) { return !has(row, u'E') && !has(row, u'@'); }

bool setExponent(const Resolution& resolution) {
    const TextNumberTableRow* row = resolution.row;
    UNumberFormat* format = resolution.entry->format;
    if (!has(row, u'E')) {
        TextNumberFormatMgr_setExponentSeparator(format, nullptr);
    } else if (DFDLUString_length(row->iNumberExponentCharacter) > 0) {
        TextNumberFormatMgr_setExponentSeparator(format, row->iNumberExponentCharacter);
    } else if (row->iNumberExponentCharExprIndex != -1) {
        return refuseExpression(resolution, "exponent characters given by an expression");
    }
    return true;
}

}  // namespace

bool TextNumberFormatMgr_processSeparatorsForParser(TextNumberFormatMgr* this_, ProcessingError* error,
                                                    NumberFormatCacheEntry* entry,
                                                    const TextNumberTableRow* row,
                                                    const GroupMemberTableRow* element) {
    const Resolution resolution{this_, error, entry, row, element};
    Literal grouping;
    if (wantsGrouping(resolution)) {
        grouping = resolve(
            resolution,
            {row->iNumberGroupingSeparator, row->iNumberGroupingSepExprIndex, "textStandardGroupingSeparator",
             "grouping separators given by an expression", TEXTNUMBER_FORMAT_GROUPINGSEPARATOR_LENGTH});
        if (grouping == nullptr) return false;
    }
    TextNumberFormatMgr_setGroupingSeparator(entry->format, textOf(grouping));
    if (wantsPoint(resolution)) {
        const Literal point =
            resolve(resolution, {row->iNumberDecimalSeparator, row->iNumberDecimalSepExprIndex,
                                 "textStandardDecimalSeparator", "decimal separators given by an expression",
                                 TEXTNUMBER_FORMAT_DECIMALSEPARATOR_LENGTH});
        if (point == nullptr) return false;
        TextNumberFormatMgr_setDecimalSeparator(entry->format, textOf(point));
        if (grouping != nullptr && DFDLUString_equalsIgnoreCase(textOf(grouping), textOf(point)))
            return refuse(resolution, NUMBERGROUPSEPARATOR_NOEQUAL_NUMBERDECIMALSEPARATOR);
    } else if (pointMayBeEmpty(row)) {
        TextNumberFormatMgr_setDecimalSeparator(entry->format, nullptr);
    }
    if (!setExponent(resolution)) return false;
    entry->separatorsResolved = 1;
    return true;
}
