#include "dfdl/helpers/dfdlnmbrcharacter.h"

#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textnumbertable.h"

namespace {

using Row = TextNumberTableRow;

struct Property {
    DFDLUString* Row::*constant;
    int32_t Row::*expression;
    const char* construct;  // what an error calls it
};

constexpr Property GROUPING = {&Row::iNumberGroupingSeparator, &Row::iNumberGroupingSepExprIndex,
                               "grouping separators given by an expression"};
constexpr Property POINT = {&Row::iNumberDecimalSeparator, &Row::iNumberDecimalSepExprIndex,
                            "decimal separators given by an expression"};
constexpr Property EXPONENT = {&Row::iNumberExponentCharacter, &Row::iNumberExponentCharExprIndex,
                               "exponent characters given by an expression"};

DFDLNmbrCharacter valueOf(const Property& property, const GroupMemberTableRow* element,
                          ProcessingError* error, const char* unsupportedKey) {
    const Row* row = GroupMemberTableRow_getTextNumberRow(element);
    if (row == nullptr) return {};
    if (row->*property.expression == -1) return {row->*property.constant, false};
    // Here the evaluator of expressions is to be asked.
    ProcessingError_setValues(error, __FILE__, __LINE__, unsupportedKey, ERROR_SCHEMA_DEFINITION,
                              SUBKIND_NONE, "%Z%s", element->scdText, property.construct);
    return {nullptr, true};
}

}  // namespace

DFDLNmbrCharacter DFDLNmbrGrpSeparator_valueOf(const GroupMemberTableRow* element, ProcessingError* error,
                                               const char* unsupportedKey) {
    return valueOf(GROUPING, element, error, unsupportedKey);
}

DFDLNmbrCharacter DFDLNmbrDecimalSeparator_valueOf(const GroupMemberTableRow* element, ProcessingError* error,
                                                   const char* unsupportedKey) {
    return valueOf(POINT, element, error, unsupportedKey);
}

DFDLNmbrCharacter DFDLNmbrExponentCharacter_valueOf(const GroupMemberTableRow* element,
                                                    ProcessingError* error, const char* unsupportedKey) {
    return valueOf(EXPONENT, element, error, unsupportedKey);
}
