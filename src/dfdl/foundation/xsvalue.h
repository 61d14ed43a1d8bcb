#ifndef DFDL_FOUNDATION_XSVALUE_H
#define DFDL_FOUNDATION_XSVALUE_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/foundation/dfdltype.h"

struct DFDLCalendarImpl;
struct DFDLDecimal;
struct DFDLUString;

// One logical value, tagged by its kind. All integers share one 64-bit word, so that a record moves between
// the kinds of its signedness by its tag alone.
struct DFDLValue {
    DFDLHeapAdapter* heap;
    uint32_t schemaType;  // DFDLType
    uint32_t nil;
    uint32_t pooled;
    union {
        DFDLUString* string;  // owned
        int32_t boolean;
        struct {
            DFDLDecimal* number;       // owned
            uint32_t modelSchemaType;  // DFDLSimpleTypeEnum of the element's real type
        } decimal;
        float floatValue;
        double doubleValue;
        struct {
            DFDLCalendarImpl* calendar;
            uint32_t ownsCalendar;
            uint32_t hasTimeZone;
        } calendar;
        struct {
            uint8_t* data;  // of heap->bufferFactory if owned
            int64_t length;
            uint32_t ownsData;
        } binary;
        int64_t signedQ;
        uint64_t unsignedQ;
    } u;
};

// A record without payload, the carrier of a nil.
DFDLValue* DFDLValue_createValue(DFDLHeapAdapter* heap);
void delete_DFDLValue(DFDLValue* value);  // by its kind; null is ignored
// A deep copy, nil included, that is in no pool. Null for null and for a number that is no kind.
DFDLValue* DFDLValue_clone(const DFDLValue* value, DFDLHeapAdapter* heap);

inline bool DFDLValue_isNil(const DFDLValue* value) { return value->nil != 0; }
inline void DFDLValue_setNil(DFDLValue* value, bool nil) { value->nil = nil ? 1U : 0U; }
inline uint32_t DFDLValue_getDFDLSchemaType(const DFDLValue* value) { return value->schemaType; }
// For another kind of the same family of integers: the payload stays.
inline void DFDLValue_setDFDLSchemaType(DFDLValue* value, DFDLType kind) { value->schemaType = kind; }

// ---- Families: create, clone, delete -------------------------------------------------------------------

// Kinds whose payload is part of the record.
DFDLValue* PlainDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap);
void delete_PlainDV(DFDLValue* value);
DFDLValue* SignedDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLType kind, int64_t payload);
DFDLValue* UnsignedDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLType kind, uint64_t payload);

DFDLValue* StringDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLUString* adopted);
DFDLValue* StringDV_clone(const DFDLValue* value,
                          DFDLHeapAdapter* heap);  // a null string becomes an empty one
void delete_StringDV(DFDLValue* value);

DFDLValue* DecimalDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLDecimal* adopted);  // a model type of decimal
DFDLValue* DecimalDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap);
void delete_DecimalDV(DFDLValue* value);
inline uint32_t DecimalDV_getModelSchemaType(const DFDLValue* value) {
    return value->u.decimal.modelSchemaType;
}
inline void DecimalDV_setModelSchemaType(DFDLValue* value, uint32_t simpleType) {
    value->u.decimal.modelSchemaType = simpleType;
}

DFDLValue* DateTimeDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLCalendarImpl* calendar, bool ownsCalendar,
                                      bool hasTimeZone);
DFDLValue* TimeDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLCalendarImpl* calendar, bool ownsCalendar,
                                  bool hasTimeZone);
DFDLValue* DateDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLCalendarImpl* calendar, bool ownsCalendar,
                                  bool hasTimeZone);
// The three calendar kinds. A value without a calendar has no clone: null.
DFDLValue* CalendarDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap);
void delete_CalendarDV(DFDLValue* value);
inline bool DateTimeDV_hasTimeZone(const DFDLValue* value) { return value->u.calendar.hasTimeZone != 0; }
bool DateTimeDV_hasDate(const DFDLValue* value);  // false without a calendar
bool DateTimeDV_hasTime(const DFDLValue* value);  // false without a calendar

// `data` comes from heap->bufferFactory if the value is to own it.
DFDLValue* HexBinaryDV_createDFDLValue(DFDLHeapAdapter* heap, uint8_t* data, int64_t length, bool ownsData);
DFDLValue* HexBinaryDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap);
void delete_HexBinaryDV(DFDLValue* value);

DFDLValue* BooleanDV_createDFDLValue(DFDLHeapAdapter* heap, int32_t payload);
DFDLValue* FloatDV_createDFDLValue(DFDLHeapAdapter* heap, float payload);
DFDLValue* DoubleDV_createDFDLValue(DFDLHeapAdapter* heap, double payload);

inline DFDLValue* LongLongDV_createDFDLValue(DFDLHeapAdapter* heap, int64_t payload) {
    return SignedDV_createDFDLValue(heap, TYPE_INTEGER, payload);
}
inline DFDLValue* LongDV_createDFDLValue(DFDLHeapAdapter* heap, int64_t payload) {
    return SignedDV_createDFDLValue(heap, TYPE_LONG, payload);
}
inline DFDLValue* IntDV_createDFDLValue(DFDLHeapAdapter* heap, int64_t payload) {
    return SignedDV_createDFDLValue(heap, TYPE_INT, payload);
}
inline DFDLValue* ShortDV_createDFDLValue(DFDLHeapAdapter* heap, int64_t payload) {
    return SignedDV_createDFDLValue(heap, TYPE_SHORT, payload);
}
inline DFDLValue* ByteDV_createDFDLValue(DFDLHeapAdapter* heap, int64_t payload) {
    return SignedDV_createDFDLValue(heap, TYPE_BYTE, payload);
}
inline DFDLValue* UnsignedLongDV_createDFDLValue(DFDLHeapAdapter* heap, uint64_t payload) {
    return UnsignedDV_createDFDLValue(heap, TYPE_UNSIGNED_LONG, payload);
}
inline DFDLValue* UnsignedIntDV_createDFDLValue(DFDLHeapAdapter* heap, uint64_t payload) {
    return UnsignedDV_createDFDLValue(heap, TYPE_UNSIGNED_INT, payload);
}
inline DFDLValue* UnsignedShortDV_createDFDLValue(DFDLHeapAdapter* heap, uint64_t payload) {
    return UnsignedDV_createDFDLValue(heap, TYPE_UNSIGNED_SHORT, payload);
}
inline DFDLValue* UnsignedByteDV_createDFDLValue(DFDLHeapAdapter* heap, uint64_t payload) {
    return UnsignedDV_createDFDLValue(heap, TYPE_UNSIGNED_BYTE, payload);
}
inline DFDLValue* NonNegativeIntegerDV_createDFDLValue(DFDLHeapAdapter* heap, uint64_t payload) {
    return UnsignedDV_createDFDLValue(heap, TYPE_NON_NEGATIVE_INTEGER, payload);
}

// One implementation under the names of the families.
inline constexpr auto& DateTimeDV_clone = CalendarDV_clone;
inline constexpr auto& TimeDV_clone = CalendarDV_clone;
inline constexpr auto& DateDV_clone = CalendarDV_clone;
inline constexpr auto& BooleanDV_clone = PlainDV_clone;
inline constexpr auto& FloatDV_clone = PlainDV_clone;
inline constexpr auto& DoubleDV_clone = PlainDV_clone;
inline constexpr auto& LongLongDV_clone = PlainDV_clone;
inline constexpr auto& LongDV_clone = PlainDV_clone;
inline constexpr auto& IntDV_clone = PlainDV_clone;
inline constexpr auto& ShortDV_clone = PlainDV_clone;
inline constexpr auto& ByteDV_clone = PlainDV_clone;
inline constexpr auto& UnsignedLongDV_clone = PlainDV_clone;
inline constexpr auto& UnsignedIntDV_clone = PlainDV_clone;
inline constexpr auto& UnsignedShortDV_clone = PlainDV_clone;
inline constexpr auto& UnsignedByteDV_clone = PlainDV_clone;
inline constexpr auto& NonNegativeIntegerDV_clone = PlainDV_clone;
inline constexpr auto& delete_BooleanDV = delete_PlainDV;
inline constexpr auto& delete_FloatDV = delete_PlainDV;
inline constexpr auto& delete_DoubleDV = delete_PlainDV;
inline constexpr auto& delete_LongLongDV = delete_PlainDV;
inline constexpr auto& delete_LongDV = delete_PlainDV;
inline constexpr auto& delete_IntDV = delete_PlainDV;
inline constexpr auto& delete_ShortDV = delete_PlainDV;
inline constexpr auto& delete_ByteDV = delete_PlainDV;
inline constexpr auto& delete_UnsignedLongDV = delete_PlainDV;
inline constexpr auto& delete_UnsignedIntDV = delete_PlainDV;
inline constexpr auto& delete_UnsignedShortDV = delete_PlainDV;
inline constexpr auto& delete_UnsignedByteDV = delete_PlainDV;
inline constexpr auto& delete_NonNegativeIntegerDV = delete_PlainDV;

// ---- Range checks --------------------------------------------------------------------------------------

// Whether the payload's 64 bits, signed or unsigned as the kind tells, fit the narrower type.
template <class Narrow>
bool SignedDV_InRange(const DFDLValue* value) {
    return static_cast<Narrow>(value->u.signedQ) == value->u.signedQ;
}
template <class Narrow>
bool UnsignedDV_InRange(const DFDLValue* value) {
    return static_cast<Narrow>(value->u.unsignedQ) == value->u.unsignedQ;
}
inline constexpr auto& ByteDV_InRange = SignedDV_InRange<int8_t>;
inline constexpr auto& ShortDV_InRange = SignedDV_InRange<int16_t>;
inline constexpr auto& IntDV_InRange = SignedDV_InRange<int32_t>;
inline constexpr auto& LongDV_InRange = SignedDV_InRange<int64_t>;
inline constexpr auto& UnsignedByteDV_InRange = UnsignedDV_InRange<uint8_t>;
inline constexpr auto& UnsignedShortDV_InRange = UnsignedDV_InRange<uint16_t>;
inline constexpr auto& UnsignedIntDV_InRange = UnsignedDV_InRange<uint32_t>;
inline constexpr auto& UnsignedLongDV_InRange = UnsignedDV_InRange<uint64_t>;
inline constexpr auto& NonNegativeIntegerDV_InRange = UnsignedDV_InRange<uint64_t>;
bool DFDLValue_inRangeForSchemaType(const DFDLValue* value);  // true for kinds without a range

// ---- Kind tests; null is of no kind --------------------------------------------------------------------

inline bool DFDLValue_isOfKinds(const DFDLValue* value, uint32_t first, uint32_t last) {
    return value != nullptr && value->schemaType >= first && value->schemaType <= last;
}
inline bool DFDLValue_IsBinaryValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_HEXBINARY, TYPE_HEXBINARY);
}
inline bool DFDLValue_IsBooleanValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_BOOLEAN, TYPE_BOOLEAN);
}
inline bool DFDLValue_IsDecimalValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_DECIMAL, TYPE_DECIMAL);
}
inline bool DFDLValue_IsFloatValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_FLOAT, TYPE_FLOAT);
}
inline bool DFDLValue_IsDoubleValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_DOUBLE, TYPE_DOUBLE);
}
inline bool DFDLValue_IsLongValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_LONG, TYPE_LONG);
}
inline bool DFDLValue_IsStringValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_STRING, TYPE_STRING);
}
inline bool DFDLValue_IsIntValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_INT, TYPE_INT);
}
inline bool DFDLValue_IsByteValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_BYTE, TYPE_BYTE);
}
inline bool DFDLValue_IsShortValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_SHORT, TYPE_SHORT);
}
inline bool DFDLValue_IsUIntValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_UNSIGNED_INT, TYPE_UNSIGNED_INT);
}
inline bool DFDLValue_IsUShortValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_UNSIGNED_SHORT, TYPE_UNSIGNED_SHORT);
}
inline bool DFDLValue_IsULongValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_UNSIGNED_LONG, TYPE_UNSIGNED_LONG);
}
inline bool DFDLValue_IsUByteValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_UNSIGNED_BYTE, TYPE_UNSIGNED_BYTE);
}
inline bool DFDLValue_IsNonNegativeValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_NON_NEGATIVE_INTEGER, TYPE_NON_NEGATIVE_INTEGER);
}
inline bool DFDLValue_IsCalendarValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_DATETIME, TYPE_DATE);
}
// Both integers without bounds, though DFDLValue_getLongLongValue serves only the signed one.
inline bool DFDLValue_IsLongLongValue(const DFDLValue* value) {
    return DFDLValue_isOfKinds(value, TYPE_INTEGER, TYPE_INTEGER) || DFDLValue_IsNonNegativeValue(value);
}
bool DFDLValue_IsNumberValue(const DFDLValue* value);
// These two do not take null.
inline bool DFDLValue_IsSignedQValue(const DFDLValue* value) {
    return value->schemaType >= TYPE_INTEGER && value->schemaType <= TYPE_BYTE;
}
inline bool DFDLValue_IsUnsignedQValue(const DFDLValue* value) {
    return value->schemaType >= TYPE_UNSIGNED_LONG && value->schemaType <= TYPE_NON_NEGATIVE_INTEGER;
}

// ---- Getters: neutral on a value of another kind -------------------------------------------------------

inline DFDLUString* DFDLValue_getStringValue(const DFDLValue* value) {
    return value->schemaType == TYPE_STRING ? value->u.string : nullptr;
}
inline int32_t DFDLValue_getBooleanValue(const DFDLValue* value) {
    return value->schemaType == TYPE_BOOLEAN ? value->u.boolean : 0;
}
inline DFDLDecimal* DFDLValue_getDecimalValue(const DFDLValue* value) {
    return value->schemaType == TYPE_DECIMAL ? value->u.decimal.number : nullptr;
}
float DFDLValue_getFloatValue(const DFDLValue* value);    // a double is narrowed, to infinity if need be
double DFDLValue_getDoubleValue(const DFDLValue* value);  // a float is widened
inline DFDLCalendarImpl* DFDLValue_getCalendarValue(const DFDLValue* value) {
    return DFDLValue_IsCalendarValue(value) ? value->u.calendar.calendar : nullptr;
}
inline uint8_t* DFDLValue_getBinaryValue(const DFDLValue* value) {
    return value->schemaType == TYPE_HEXBINARY ? value->u.binary.data : nullptr;
}
inline int64_t DFDLValue_getBinaryValueLength(const DFDLValue* value) {
    return value->schemaType == TYPE_HEXBINARY ? value->u.binary.length : 0;
}

inline int64_t DFDLValue_signedOfKind(const DFDLValue* value, DFDLType kind) {
    return value->schemaType == kind ? value->u.signedQ : 0;
}
inline uint64_t DFDLValue_unsignedOfKind(const DFDLValue* value, DFDLType kind) {
    return value->schemaType == kind ? value->u.unsignedQ : 0;
}
inline int64_t DFDLValue_getLongLongValue(const DFDLValue* value) {
    return DFDLValue_signedOfKind(value, TYPE_INTEGER);
}
inline int64_t DFDLValue_getLongValue(const DFDLValue* value) {
    return DFDLValue_signedOfKind(value, TYPE_LONG);
}
inline int32_t DFDLValue_getIntValue(const DFDLValue* value) {
    return static_cast<int32_t>(DFDLValue_signedOfKind(value, TYPE_INT));
}
inline int16_t DFDLValue_getShortValue(const DFDLValue* value) {
    return static_cast<int16_t>(DFDLValue_signedOfKind(value, TYPE_SHORT));
}
inline int8_t DFDLValue_getByteValue(const DFDLValue* value) {
    return static_cast<int8_t>(DFDLValue_signedOfKind(value, TYPE_BYTE));
}
inline uint64_t DFDLValue_getULongValue(const DFDLValue* value) {
    return DFDLValue_unsignedOfKind(value, TYPE_UNSIGNED_LONG);
}
inline uint32_t DFDLValue_getUIntValue(const DFDLValue* value) {
    return static_cast<uint32_t>(DFDLValue_unsignedOfKind(value, TYPE_UNSIGNED_INT));
}
inline uint16_t DFDLValue_getUShortValue(const DFDLValue* value) {
    return static_cast<uint16_t>(DFDLValue_unsignedOfKind(value, TYPE_UNSIGNED_SHORT));
}
inline uint8_t DFDLValue_getUByteValue(const DFDLValue* value) {
    return static_cast<uint8_t>(DFDLValue_unsignedOfKind(value, TYPE_UNSIGNED_BYTE));
}
inline uint64_t DFDLValue_getULongLongValue(const DFDLValue* value) {
    return DFDLValue_unsignedOfKind(value, TYPE_NON_NEGATIVE_INTEGER);
}

// For those who have tested the kind: any other kind aborts the process.
int64_t DFDLValue_getSignedQValue(const DFDLValue* value);
uint64_t DFDLValue_getUnsignedQValue(const DFDLValue* value);
void DFDLValue_setSignedQValue(DFDLValue* value, int64_t payload);
void DFDLValue_setUnsignedQValue(DFDLValue* value, uint64_t payload);

// ---- Setters: they test no kind; what was there before is not released ---------------------------------

inline void DFDLValue_setStringValue(DFDLValue* value, DFDLUString* adopted) { value->u.string = adopted; }
inline void DFDLValue_setBooleanValue(DFDLValue* value, int32_t payload) { value->u.boolean = payload; }
inline void DFDLValue_setFloatValue(DFDLValue* value, float payload) { value->u.floatValue = payload; }
inline void DFDLValue_setDoubleValue(DFDLValue* value, double payload) { value->u.doubleValue = payload; }
inline void DFDLValue_setCalendarValue(DFDLValue* value, DFDLCalendarImpl* calendar) {
    value->u.calendar.calendar = calendar;
}
inline void DFDLValue_setDateTimeValue(DFDLValue* value, DFDLCalendarImpl* calendar) {
    value->u.calendar.calendar = calendar;
}
void DFDLValue_setBinaryValue(DFDLValue* value, uint8_t* data, int64_t length);
// Changes nothing: the number of a decimal value is changed through the DFDLDecimal itself.
void DFDLValue_setDecimalValue(DFDLValue* value, const DFDLDecimal* number);

// Narrow ones extend to the 64-bit word.
inline void DFDLValue_setLongLongValue(DFDLValue* value, int64_t payload) { value->u.signedQ = payload; }
inline void DFDLValue_setLongValue(DFDLValue* value, int64_t payload) { value->u.signedQ = payload; }
inline void DFDLValue_setIntValue(DFDLValue* value, int32_t payload) { value->u.signedQ = payload; }
inline void DFDLValue_setShortValue(DFDLValue* value, int16_t payload) { value->u.signedQ = payload; }
inline void DFDLValue_setByteValue(DFDLValue* value, int8_t payload) { value->u.signedQ = payload; }
inline void DFDLValue_setULongValue(DFDLValue* value, uint64_t payload) { value->u.unsignedQ = payload; }
inline void DFDLValue_setUIntValue(DFDLValue* value, uint32_t payload) { value->u.unsignedQ = payload; }
inline void DFDLValue_setUShortValue(DFDLValue* value, uint16_t payload) { value->u.unsignedQ = payload; }
inline void DFDLValue_setUByteValue(DFDLValue* value, uint8_t payload) { value->u.unsignedQ = payload; }
inline void DFDLValue_setULongLongValue(DFDLValue* value, uint64_t payload) { value->u.unsignedQ = payload; }

// ---- Conversions ---------------------------------------------------------------------------------------

// A value of kind string gives its own string, every other kind a new one: who asks tests the kind before
// deleting what it got.
DFDLUString* DFDLValue_toString(const DFDLValue* value, UErrorCode* status, DFDLHeapAdapter* heap);
// 1 equal, 0 different; two decimals the other way round: 0 equal, otherwise what DFDLDecimal_compare tells.
// Callers know.
int32_t DFDLValue_compare(const DFDLValue* a, const DFDLValue* b, UErrorCode* status);
// DFDLValue_compare as truth, after one and the same record: so true for two decimals that differ.
bool DFDLValue_equal(const DFDLValue* a, const DFDLValue* b, UErrorCode* status);
// 0 for a kind without a number. Ranges are not checked: a word of the other signedness is taken as it
// stands.
int64_t DFDLValue_toSignedInt(const DFDLValue* value, UErrorCode* status);
uint64_t DFDLValue_toUnsignedInt(const DFDLValue* value, UErrorCode* status);

#endif
