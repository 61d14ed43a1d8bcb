// The symbols of number formats that separate: groups, the fraction, the exponent.
#include "dfdl/converters/simplevalueconverter.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/helpers/dfdlnmbrcharacter.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

using Literal = Owned<DFDLStringLiteral, delete_DFDLStringLiteral>;

// A character of numbers. What is read as one is a literal but for the exponent's.
struct Character {
    UChar sign;  // of it in the pattern
    DFDLUString* TextNumberTableRow::*constant;
    DFDLNmbrCharacterOf valueOf;
    void (*set)(UNumberFormat*, const DFDLUString*);
    const char* property;
    const char* notRead;     // one of a wrong length, by a parser
    const char* notWritten;  // by a serializer
};

using Row = TextNumberTableRow;

constexpr Character GROUPING = {u',',
                                &Row::iNumberGroupingSeparator,
                                DFDLNmbrGrpSeparator_valueOf,
                                TextNumberFormatMgr_setGroupingSeparator,
                                "textStandardGroupingSeparator",
                                TEXTNUMBER_FORMAT_GROUPINGSEPARATOR_LENGTH,
                                DFDLUnParser_invalidGroupSeparator};
constexpr Character POINT = {u'.',
                             &Row::iNumberDecimalSeparator,
                             DFDLNmbrDecimalSeparator_valueOf,
                             TextNumberFormatMgr_setDecimalSeparator,
                             "textStandardDecimalSeparator",
                             TEXTNUMBER_FORMAT_DECIMALSEPARATOR_LENGTH,
                             DFDLUnParser_invalidDecimalSeparator};
constexpr Character EXPONENT = {u'E',
                                &Row::iNumberExponentCharacter,
                                DFDLNmbrExponentCharacter_valueOf,
                                TextNumberFormatMgr_setExponentSeparator,
                                "textStandardExponentSeparator",
                                DFDLParser_invalidExponentCharacter,
                                DFDLUnParser_invalidExponentCharacter};

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

void refuseLiteral(ProcessingError* error, const DFDLUString* literal, const GroupMemberTableRow* element,
                   const char* property) {
    ProcessingError_setValues(error, __FILE__, __LINE__, TEXT_INVALID_MNEMONIC, ERROR_SCHEMA_DEFINITION,
                              SUBKIND_NONE, "%Z%Z%s", literal, GroupMemberTableRow_getElementName(element),
                              property);
}

// A constant goes before an expression.
DFDLNmbrCharacter toBeRead(const Resolution& resolution, const Character& character) {
    const DFDLUString* constant = resolution.row->*character.constant;
    if (DFDLUString_length(constant) > 0) return {constant, false};
    return character.valueOf(resolution.element, resolution.error, DFDLParser_unsupportedConstruct);
}

// The text of a separator; null with an error.
Literal resolve(const Resolution& resolution, const Character& character) {
    const DFDLNmbrCharacter found = toBeRead(resolution, character);
    if (found.failed) return nullptr;
    if (!DFDLNmbrCharacter_exist(found)) {
        refuse(resolution, character.notRead);
        return nullptr;
    }
    Literal literal(new_DFDLStringLiteral(resolution.manager->literalHeap, found.value));
    if (!DFDLStringLiteral_parse(literal.get())) {
        refuseLiteral(resolution.error, found.value, resolution.element, character.property);
        return nullptr;
    }
    if (DFDLUString_length(DFDLStringLiteral_getUnicodeString(literal.get())) == 1) return literal;
    refuse(resolution, character.notRead);
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
        return true;
    }
    const DFDLNmbrCharacter found = toBeRead(resolution, EXPONENT);
    if (DFDLNmbrCharacter_exist(found)) TextNumberFormatMgr_setExponentSeparator(format, found.value);
    return !found.failed;
}

bool setWritten(const Resolution& resolution, const Character& character) {
    const DFDLNmbrCharacter found =
        character.valueOf(resolution.element, resolution.error, DFDLUnParser_unsupportedConstruct);
    if (!DFDLNmbrCharacter_exist(found)) return !found.failed;
    const DFDLUString* text = TextNumberFormatMgr_getWrittenLiteral(
        resolution.manager, resolution.error, resolution.element, found.value, character.property);
    if (text == nullptr) return false;
    if (text->length != 1) return refuse(resolution, character.notWritten);
    character.set(resolution.entry->format, text);
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
        grouping = resolve(resolution, GROUPING);
        if (grouping == nullptr) return false;
    }
    TextNumberFormatMgr_setGroupingSeparator(entry->format, textOf(grouping));
    if (wantsPoint(resolution)) {
        const Literal point = resolve(resolution, POINT);
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

bool TextNumberFormatMgr_processSeparatorsForUnparser(TextNumberFormatMgr* this_, ProcessingError* error,
                                                      NumberFormatCacheEntry* entry,
                                                      const TextNumberTableRow* row,
                                                      const GroupMemberTableRow* element) {
    const Resolution resolution{this_, error, entry, row, element};
    for (const Character* character : {&GROUPING, &POINT, &EXPONENT}) {
        const bool isHidden = character == &POINT && row->iVirtualDecimalIndex >= 0;
        if (has(row, character->sign) && !isHidden && !setWritten(resolution, *character)) return false;
    }
    entry->separatorsResolved = 1;
    return true;
}

const DFDLUString* TextNumberFormatMgr_getWrittenLiteral(const TextNumberFormatMgr* this_,
                                                         ProcessingError* error,
                                                         const GroupMemberTableRow* element,
                                                         const DFDLUString* literal, const char* property) {
    const DFDLUString* text =
        SimpleValueConverter_formatCharBasedDFDLStringLiteral(this_->converter, literal, nullptr);
    if (text == nullptr) {
        ProcessingError_reset(error);  // the converter does not know where the literal is from
        refuseLiteral(error, literal, element, property);
    }
    return text;
}
