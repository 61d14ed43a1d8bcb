#ifndef DFDL_PIF_CPIFLOADER_ENUMS_H
#define DFDL_PIF_CPIFLOADER_ENUMS_H

#include <cstdint>

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/pifenums.h"

// How a number of the file becomes one of an internal enumeration: numbers from 0 to `last` stand, any other
// is `fallback`. Two-valued enumerations count everything but 0 as their second value.
struct PIFEnumRule {
    int32_t last;
    int32_t fallback;
};

template <class E>
inline constexpr PIFEnumRule PIF_ENUM_RULE = {1, 1};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<ByteOrderEnum> = {1, BYTEOR_UNDEFINED};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<LengthKindEnum> = {UNDEFINED_LKIND, END_OF_PARENT};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<LengthUnitsEnum> = {2, UNDEFINED_LUNITS};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<BinaryNumberRepEnum> = {ZOV4690_PACKED, BINARY_MILLISECONDS};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<PhysicalTypeEnum> = {12, UNDEFINED};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<FacetKindEnum> = {11, OCCURS_STOP_VALUE};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<DFDLVariableActionEnum> = {24, ACTION_PROP_PROPERTY};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<DFDLGroupTypeEnum> = {3, COMPLEX_TYPE};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<CalendarUseZForUTCEnum> = {2, ON_OUTPUT};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<CalendarFirstDayOfWeekEnum> = {5, SUNDAY};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<NumberRoundingModeEnum> = {6, ROUND_HALF_UP};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<NumberBaseEnum> = {2, NUMBER_BASE_16};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<NumberZonedSignStyleEnum> = {1, ASCII_CA_REALIA_MODIFIED};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<TextJustificationEnum> = {1, CENTER};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<StringPartKindEnum> = {6, WSP_STAR};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<SeparatorPositionEnum> = {2, POSITION_NONE};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<SeparatorPolicyEnum> = {5, SUPPRESS_PARSED};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<ValueConstraintKindEnum> = {1, VC_FIXED_VALUE};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<DelimiterPolicyEnum> = {DP_BOTH, DP_NONE};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<NilKindEnum> = {NK_LOGICAL_VALUE, NK_NONE};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<OccursCountKindEnum> = {3, OCK_IMPLICIT};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<StepExpressionEnum> = {5, STEP_ROOT};
template <>
inline constexpr PIFEnumRule PIF_ENUM_RULE<FailureTypeEnum> = {1, FT_PROCESSING_ERROR};

template <class E>
constexpr E CPIFLoader_getEnum(int32_t number) {
    constexpr PIFEnumRule RULE = PIF_ENUM_RULE<E>;
    return static_cast<E>(number >= 0 && number <= RULE.last ? number : RULE.fallback);
}

DFDLSimpleTypeEnum CPIFLoader_getDFDLSimpleTypeEnum(const char* name);

#endif
