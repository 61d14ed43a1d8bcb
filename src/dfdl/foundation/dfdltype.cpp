#include "dfdl/foundation/dfdltype.h"

#include <iterator>

namespace {

// By simple type. "xs:datetime" is spelt so wherever it shows.
constexpr const char* NAMES[] = {"xs:string",
                                 "xs:boolean",
                                 "xs:hexBinary",
                                 "xs:date",
                                 "xs:time",
                                 "xs:datetime",
                                 "xs:float",
                                 "xs:double",
                                 "xs:decimal",
                                 "xs:integer",
                                 "xs:long",
                                 "xs:int",
                                 "xs:short",
                                 "xs:byte",
                                 "xs:unsignedLong",
                                 "xs:unsignedInt",
                                 "xs:unsignedShort",
                                 "xs:unsignedByte",
                                 "xs:nonNegativeInteger"};

constexpr DFDLType TYPES[] = {TYPE_STRING,
                              TYPE_BOOLEAN,
                              TYPE_HEXBINARY,
                              TYPE_DATE,
                              TYPE_TIME,
                              TYPE_DATETIME,
                              TYPE_FLOAT,
                              TYPE_DOUBLE,
                              TYPE_DECIMAL,
                              TYPE_INTEGER,
                              TYPE_LONG,
                              TYPE_INT,
                              TYPE_SHORT,
                              TYPE_BYTE,
                              TYPE_UNSIGNED_LONG,
                              TYPE_UNSIGNED_INT,
                              TYPE_UNSIGNED_SHORT,
                              TYPE_UNSIGNED_BYTE,
                              TYPE_NON_NEGATIVE_INTEGER};

static_assert(std::size(NAMES) == SIMPLE_UNKNOWN && std::size(TYPES) == SIMPLE_UNKNOWN);

bool isKnown(int32_t simpleType) { return simpleType >= 0 && simpleType < SIMPLE_UNKNOWN; }

struct Range {
    int64_t least;
    int64_t most;
};
struct LengthRule {
    Range bytes;
    Range bits;
};

constexpr int64_t ANY = INT64_MAX;
constexpr Range NEVER = {1, 0};

// From float on, by simple type. A signed number has a bit for its sign and one more at least.
constexpr LengthRule LENGTH_RULES[] = {
    {{4, 8}, NEVER},   {{4, 8}, NEVER},   {{1, ANY}, {2, ANY}}, {{1, ANY}, {2, ANY}}, {{1, 8}, {2, 64}},
    {{1, 4}, {2, 32}}, {{1, 2}, {2, 16}}, {{1, 1}, {2, 8}},     {{1, 8}, {1, 64}},    {{1, 4}, {1, 32}},
    {{1, 2}, {1, 16}}, {{1, 1}, {1, 8}},  {{1, ANY}, {1, ANY}}};

static_assert(std::size(LENGTH_RULES) == SIMPLE_NON_NEGATIVE_INTEGER - SIMPLE_FLOAT + 1);

// Null for types of any length.
const LengthRule* ruleOf(int32_t simpleType) {
    return isKnown(simpleType) && simpleType >= SIMPLE_FLOAT ? &LENGTH_RULES[simpleType - SIMPLE_FLOAT]
                                                             : nullptr;
}

bool contains(const Range& range, int64_t length) { return length >= range.least && length <= range.most; }

}  // namespace

const char* DFDLType_getTypeName(uint32_t type) {
    return DFDLType_getDFDLSimpleTypeName(DFDLType_getDFDLSimpleTypeFromType(type));
}

const char* DFDLType_getDFDLSimpleTypeName(int32_t simpleType) {
    return isKnown(simpleType) ? NAMES[simpleType] : "unknown";
}

int32_t DFDLType_getDFDLSimpleTypeFromType(uint32_t type) {
    int32_t simpleType = 0;
    while (simpleType < SIMPLE_UNKNOWN && TYPES[simpleType] != type) ++simpleType;
    return simpleType;
}

uint32_t DFDLType_getTypeFromDFDLSimpleType(int32_t simpleType) {
    return isKnown(simpleType) ? TYPES[simpleType] : TYPE_NONE;
}

bool DFDLType_isValidByteLength(int32_t simpleType, int64_t bytes) {
    const LengthRule* rule = ruleOf(simpleType);
    if (rule == nullptr) return true;
    const bool isFloating = simpleType == SIMPLE_FLOAT || simpleType == SIMPLE_DOUBLE;
    return contains(rule->bytes, bytes) && (!isFloating || bytes == 4 || bytes == 8);
}

bool DFDLType_isValidBitLength(int32_t simpleType, int64_t bits) {
    const LengthRule* rule = ruleOf(simpleType);
    return rule == nullptr || contains(rule->bits, bits);
}
