#ifndef DFDL_PIF_PIFENUMS_H
#define DFDL_PIF_PIFENUMS_H

#include <cstdint>

// What the grammar's rows say, in the numbers of the file but for BYTEOR_UNDEFINED. A row holds no other
// number than one of these: the loader takes an unknown one for the last resort of its kind.

enum ByteOrderEnum : int32_t { BYTEOR_LITTLE_ENDIAN = 0, BYTEOR_BIG_ENDIAN = 1, BYTEOR_UNDEFINED = 2 };

enum BinaryNumberCheckPolicyEnum : int32_t { BINARY_CHECK_POLICY_STRICT = 0, BINARY_CHECK_POLICY_LAX = 1 };

enum BinaryFloatRepresentationEnum : int32_t { IEEE = 0, ZOV390_HEX = 1 };

enum CalendarPatternKindEnum : int32_t {
    CALENDAR_PATTERN_KIND_EXPLICIT = 0,
    CALENDAR_PATTERN_KIND_IMPLICIT = 1
};

enum CalendarUseZForUTCEnum : int32_t { ALWAYS = 0, NEVER = 1, ON_INPUT = 2, ON_OUTPUT = 3 };

enum CalendarFirstDayOfWeekEnum : int32_t {
    MONDAY = 0,
    TUESDAY = 1,
    WEDNESDAY = 2,
    THURSDAY = 3,
    FRIDAY = 4,
    SATURDAY = 5,
    SUNDAY = 6
};

enum LengthKindEnum : int32_t {
    IMPLICIT = 0,
    EXPLICIT = 1,
    PREFIXED = 2,
    DELIMITED = 3,
    PATTERN = 4,
    END_OF_PARENT = 5,
    UNDEFINED_LKIND = 6
};

enum LengthUnitsEnum : int32_t { BITS = 0, BYTES = 1, CHARACTERS = 2, UNDEFINED_LUNITS = 3 };

enum StringPartKindEnum : int32_t {
    STRING_LITERAL = 0,
    STRING_PART = 1,
    CHAR_CLASS = 2,
    BYTE_VALUE = 3,
    NL = 4,
    WSP = 5,
    WSP_PLUS = 6,
    WSP_STAR = 7
};

enum SeparatorPositionEnum : int32_t { INFIX = 0, PREFIX = 1, POSTFIX = 2, POSITION_NONE = 3 };

enum SeparatorPolicyEnum : int32_t {
    REQUIRE = 0,
    SUPPRESS = 1,
    SUPPRESS_AT_END = 2,
    POLICY_NONE = 3,
    SUPPRESS_AT_END_STRICT = 4,
    REQUIRE_EXPR = 5,
    SUPPRESS_PARSED = 6
};

enum NumberCheckPolicyEnum : int32_t { NUMBER_CHECKPOLICY_STRICT = 0, NUMBER_CHECKPOLICY_LAX = 1 };

enum NumberBaseEnum : int32_t {
    NUMBER_BASE_2 = 0,
    NUMBER_BASE_8 = 1,
    NUMBER_BASE_10 = 2,
    NUMBER_BASE_16 = 3
};

enum NumberRoundingModeEnum : int32_t {
    ROUND_NONE = 0,
    ROUND_CEILING = 1,
    ROUND_FLOOR = 2,
    ROUND_DOWN = 3,
    ROUND_UP = 4,
    ROUND_HALF_EVEN = 5,
    ROUND_HALF_DOWN = 6,
    ROUND_HALF_UP = 7
};

enum NumberZonedSignStyleEnum : int32_t {
    ASCII_STANDARD = 0,
    ASCII_TRANSLATED_EBCDIC = 1,
    ASCII_CA_REALIA_MODIFIED = 2
};

enum TextPadKindEnum : int32_t { PAD_KIND_NONE = 0, PAD_KIND_PAD_CHAR = 1 };

enum TextTrimKindEnum : int32_t { TRIM_KIND_NONE = 0, TRIM_KIND_PAD_CHAR = 1 };

enum TextJustificationEnum : int32_t { LEFT = 0, RIGHT = 1, CENTER = 2 };

enum TextNumberRepresentationEnum : int32_t { TEXT = 0, ZONED = 1 };

enum BinaryNumberRepEnum : int32_t {
    BINARY = 0,
    BCD = 1,
    PACKED = 2,
    BINARY_SECONDS = 3,
    BINARY_MILLISECONDS = 4,
    ZOV4690_PACKED = 5
};

enum PhysicalTypeEnum : int32_t {
    TEXT_STRING = 0,
    TEXT_NUMBER = 1,
    BINARY_NUMBER = 2,
    TEXT_CALENDAR = 3,
    BINARY_CALENDAR = 4,
    TEXT_BOOLEAN = 5,
    BINARY_BOOLEAN = 6,
    BINARY_OPAQUE = 7,
    COMPLEX_ELEMENT = 8,
    GROUP_SEQUENCE = 9,
    GROUP_UNORDERED = 10,
    GROUP_FLOATING = 11,
    GROUP_CHOICE = 12,
    UNDEFINED = 13
};

enum RepresentationEnum : int32_t { REPRESENTATION_BINARY = 0, REPRESENTATION_TEXT = 1 };

enum TextBooleanJustificationEnum : int32_t { BOOLEAN_LEFT = 0, BOOLEAN_RIGHT = 1, BOOLEAN_CENTER = 2 };

enum TextNumberJustificationEnum : int32_t { NUMBER_LEFT = 0, NUMBER_RIGHT = 1, NUMBER_CENTER = 2 };

enum TextCalendarJustificationEnum : int32_t { CALENDAR_LEFT = 0, CALENDAR_RIGHT = 1, CALENDAR_CENTER = 2 };

enum TextStringJustificationEnum : int32_t { TEXT_LEFT = 0, TEXT_RIGHT = 1, TEXT_CENTER = 2 };

enum BinaryCalendarRepresentationEnum : int32_t {
    CALENDAR_PACKED = 0,
    CALENDAR_BCD = 1,
    CALENDAR_BINARY_SECONDS = 2,
    CALENDAR_BINARY_MILLI_SECONDS = 3,
    CALENDAR_ZOV4690_PACKED = 4
};

enum EscapeKindEnum : int32_t { ESCAPE_CHARACTER = 0, ESCAPE_BLOCK = 1 };

enum GenerateEscapeEnum : int32_t { ESCAPE_ALWAYS = 0, ESCAPE_WHEN_NEEDED = 1 };

enum DFDLGroupTypeEnum : int32_t {
    SEQUENCE_ORDERED = 0,
    SEQUENCE_UNORDERED = 1,
    CHOICE = 2,
    SEQUENCE_WITH_FLOATING_COMPONENTS = 3,
    COMPLEX_TYPE = 4
};

enum FacetKindEnum : int32_t {
    FACET_LENGTH = 0,
    FACET_MINLENGTH = 1,
    FACET_MAXLENGTH = 2,
    FACET_MININCLUSIVE = 3,
    FACET_MAXINCLUSIVE = 4,
    FACET_MINEXCLUSIVE = 5,
    FACET_MAXEXCLUSIVE = 6,
    FACET_TOTALDIGITS = 7,
    FACET_FRACTIONALDIGITS = 8,
    FACET_PATTERN = 9,
    FACET_ENUMERATION = 10,
    NIL_LOGICAL_VALUE = 11,
    OCCURS_STOP_VALUE = 12
};

enum DFDLVariableActionEnum : int32_t {
    ACTION_DEFINE = 0,
    ACTION_SET = 1,
    ACTION_NEWINSTANCE = 2,
    ACTION_SYNTHETIC = 3,
    ACTION_PROP_INITIATOR = 4,
    ACTION_PROP_TERMINATOR = 5,
    ACTION_PROP_SEPARATOR = 6,
    ACTION_PROP_BYTEORDER = 7,
    ACTION_PROP_ENCODING = 8,
    ACTION_PROP_NUMBERGROUPSEPARATOR = 9,
    ACTION_PROP_NUMBERDECIMALSEPARATOR = 10,
    ACTION_PROP_NUMBEREXPCHARACTER = 11,
    ACTION_PROP_BINARYFLOATREP = 12,
    ACTION_PROP_TEXTBOOLEANTRUEREP = 13,
    ACTION_PROP_TEXTBOOLEANFALSEREP = 14,
    ACTION_PROP_NILINDICATOR = 15,
    ACTION_PROP_NILINDICATORPATH = 16,
    ACTION_PROP_OCCURSCOUNT = 17,
    ACTION_PROP_ESCCHARACTER = 18,
    ACTION_PROP_ESCBLOCKSTART = 19,
    ACTION_PROP_ESCBLOCKEND = 20,
    ACTION_PROP_ESCESCCHARACTER = 21,
    ACTION_PROP_INPUTVALCALC = 22,
    ACTION_PROP_OUTPUTVALCALC = 23,
    ACTION_PROP_LENGTH = 24,
    ACTION_PROP_PROPERTY = 25
};

enum AlignmentUnitsEnum : int32_t { ALUNITS_BITS = 0, ALUNITS_BYTES = 1 };

enum ValueConstraintKindEnum : int32_t { VC_NONE = 0, VC_DEFAULT_VALUE = 1, VC_FIXED_VALUE = 2 };

enum NilKindEnum : int32_t { NK_NONE = 0, NK_LITERAL_VALUE = 1, NK_LITERAL_CHAR = 2, NK_LOGICAL_VALUE = 3 };

enum DelimiterPolicyEnum : int32_t {
    DP_NONE = 0,
    DP_INITIATOR_ONLY = 1,
    DP_TERMINATOR_ONLY = 2,
    DP_BOTH = 3
};

enum StepExpressionEnum : int32_t {
    STEP_NONE = 0,
    STEP_SCHEMAQNAME = 1,
    STEP_FORWARDAXIS = 2,
    STEP_ABBREVREVERSESTEP = 3,
    STEP_REVERSEAXIS = 4,
    STEP_CONTEXTITEMEXPR = 5,
    STEP_ROOT = 6
};

enum PathExpressionTypeEnum : int32_t {
    PATH_NONE = 0,
    PATH_VALUE = 1,
    PATH_REPRESENTATIONLENGTH = 2,
    PATH_UNPADDEDLENGTH = 4,
    PATH_COUNT = 0x10,
    PATH_COUNTWITHDEFAULT = 0x20,
    PATH_POSITION = 0x40
};

enum TextNumberRoundingEnum : int32_t { ROUNDING_PATTERN = 0, ROUNDING_EXPLICIT = 1 };

enum OccursCountKindEnum : int32_t {
    OCK_FIXED = 0,
    OCK_PARSED = 1,
    OCK_EXPRESSION = 2,
    OCK_STOPVALUE = 3,
    OCK_IMPLICIT = 4
};

enum FailureTypeEnum : int32_t { FT_PROCESSING_ERROR = 0, FT_RECOVERABLE_ERROR = 1 };

#endif
