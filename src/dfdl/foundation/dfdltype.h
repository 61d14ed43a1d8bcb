#ifndef DFDL_FOUNDATION_DFDLTYPE_H
#define DFDL_FOUNDATION_DFDLTYPE_H

#include <cstdint>

// The kind of a value.
enum DFDLType : uint32_t {
    TYPE_NONE = 1,
    TYPE_STRING = 2,
    TYPE_BOOLEAN = 3,
    TYPE_DECIMAL = 4,
    TYPE_FLOAT = 5,
    TYPE_DOUBLE = 6,
    TYPE_DATETIME = 7,
    TYPE_TIME = 8,
    TYPE_DATE = 9,
    TYPE_HEXBINARY = 10,
    TYPE_INTEGER = 11,
    TYPE_LONG = 12,
    TYPE_INT = 13,
    TYPE_SHORT = 14,
    TYPE_BYTE = 15,
    TYPE_UNSIGNED_LONG = 16,
    TYPE_UNSIGNED_INT = 17,
    TYPE_UNSIGNED_SHORT = 18,
    TYPE_UNSIGNED_BYTE = 19,
    TYPE_NON_NEGATIVE_INTEGER = 20
};

// The same types as the compiled grammar numbers them.
enum DFDLSimpleTypeEnum : int32_t {
    SIMPLE_STRING = 0,
    SIMPLE_BOOLEAN = 1,
    SIMPLE_HEXBINARY = 2,
    SIMPLE_DATE = 3,
    SIMPLE_TIME = 4,
    SIMPLE_DATETIME = 5,
    SIMPLE_FLOAT = 6,
    SIMPLE_DOUBLE = 7,
    SIMPLE_DECIMAL = 8,
    SIMPLE_INTEGER = 9,
    SIMPLE_LONG = 10,
    SIMPLE_INT = 11,
    SIMPLE_SHORT = 12,
    SIMPLE_BYTE = 13,
    SIMPLE_UNSIGNED_LONG = 14,
    SIMPLE_UNSIGNED_INT = 15,
    SIMPLE_UNSIGNED_SHORT = 16,
    SIMPLE_UNSIGNED_BYTE = 17,
    SIMPLE_NON_NEGATIVE_INTEGER = 18,
    SIMPLE_UNKNOWN = 19
};

const char* DFDLType_getTypeName(uint32_t type);
const char* DFDLType_getDFDLSimpleTypeName(int32_t simpleType);
int32_t DFDLType_getDFDLSimpleTypeFromType(uint32_t type);
uint32_t DFDLType_getTypeFromDFDLSimpleType(int32_t simpleType);

// Whether a binary representation of the type may have this length.
bool DFDLType_isValidByteLength(int32_t simpleType, int64_t bytes);
bool DFDLType_isValidBitLength(int32_t simpleType, int64_t bits);

#endif
