#include "dfdl/foundation/xsvalue.h"

#include <cstdlib>
#include <cstring>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/recycledrecord.h"

namespace {

constexpr uint32_t KINDS = TYPE_NON_NEGATIVE_INTEGER + 1;

DFDLValue* create(DFDLHeapAdapter* heap, DFDLType kind) {
    auto* value = RecycledRecord_take<DFDLValue>(heap, POOL_VALUE_RECORD);
    value->schemaType = kind;
    return value;
}

DFDLValue* createCalendar(DFDLHeapAdapter* heap, DFDLType kind, DFDLCalendarImpl* calendar, bool ownsCalendar,
                          bool hasTimeZone) {
    DFDLValue* value = create(heap, kind);
    value->u.calendar = {calendar, ownsCalendar ? 1U : 0U, hasTimeZone ? 1U : 0U};
    return value;
}

// The record alone; what it points to still is the original's.
DFDLValue* cloneRecord(const DFDLValue* value, DFDLHeapAdapter* heap) {
    DFDLValue* clone = create(heap, static_cast<DFDLType>(value->schemaType));
    clone->nil = value->nil;
    clone->u = value->u;
    return clone;
}

void deleteRecord(DFDLValue* value) { RecycledRecord_giveBack(value, POOL_VALUE_RECORD); }

struct Family {
    DFDLValue* (*clone)(const DFDLValue*, DFDLHeapAdapter*) = PlainDV_clone;
    void (*destroy)(DFDLValue*) = delete_PlainDV;
    bool (*inRange)(const DFDLValue*) = nullptr;
};

struct FamilyTable {
    Family byKind[KINDS];

    constexpr FamilyTable() : byKind() {
        constexpr Family CALENDAR = {CalendarDV_clone, delete_CalendarDV};
        byKind[TYPE_STRING] = {StringDV_clone, delete_StringDV};
        byKind[TYPE_DECIMAL] = {DecimalDV_clone, delete_DecimalDV};
        byKind[TYPE_HEXBINARY] = {HexBinaryDV_clone, delete_HexBinaryDV};
        byKind[TYPE_DATETIME] = byKind[TYPE_TIME] = byKind[TYPE_DATE] = CALENDAR;
        byKind[TYPE_INT].inRange = IntDV_InRange;
        byKind[TYPE_SHORT].inRange = ShortDV_InRange;
        byKind[TYPE_BYTE].inRange = ByteDV_InRange;
        byKind[TYPE_UNSIGNED_INT].inRange = UnsignedIntDV_InRange;
        byKind[TYPE_UNSIGNED_SHORT].inRange = UnsignedShortDV_InRange;
        byKind[TYPE_UNSIGNED_BYTE].inRange = UnsignedByteDV_InRange;
    }
};

constexpr FamilyTable FAMILIES;

}  // namespace

DFDLValue* DFDLValue_createValue(DFDLHeapAdapter* heap) { return create(heap, TYPE_NONE); }

// A number that is no kind comes with no payload that anybody could know of.
void delete_DFDLValue(DFDLValue* value) {
    if (value == nullptr) return;
    value->schemaType < KINDS ? FAMILIES.byKind[value->schemaType].destroy(value) : deleteRecord(value);
}

DFDLValue* DFDLValue_clone(const DFDLValue* value, DFDLHeapAdapter* heap) {
    const bool isKind = DFDLValue_isOfKinds(value, TYPE_NONE, TYPE_NON_NEGATIVE_INTEGER);
    return isKind ? FAMILIES.byKind[value->schemaType].clone(value, heap) : nullptr;
}

DFDLValue* PlainDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap) { return cloneRecord(value, heap); }

void delete_PlainDV(DFDLValue* value) { deleteRecord(value); }

DFDLValue* SignedDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLType kind, int64_t payload) {
    DFDLValue* value = create(heap, kind);
    value->u.signedQ = payload;
    return value;
}

DFDLValue* UnsignedDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLType kind, uint64_t payload) {
    DFDLValue* value = create(heap, kind);
    value->u.unsignedQ = payload;
    return value;
}

DFDLValue* BooleanDV_createDFDLValue(DFDLHeapAdapter* heap, int32_t payload) {
    DFDLValue* value = create(heap, TYPE_BOOLEAN);
    value->u.boolean = payload;
    return value;
}

DFDLValue* FloatDV_createDFDLValue(DFDLHeapAdapter* heap, float payload) {
    DFDLValue* value = create(heap, TYPE_FLOAT);
    value->u.floatValue = payload;
    return value;
}

DFDLValue* DoubleDV_createDFDLValue(DFDLHeapAdapter* heap, double payload) {
    DFDLValue* value = create(heap, TYPE_DOUBLE);
    value->u.doubleValue = payload;
    return value;
}

DFDLValue* StringDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLUString* adopted) {
    DFDLValue* value = create(heap, TYPE_STRING);
    value->u.string = adopted;
    return value;
}

// Here and below the payload is copied before there is a record: without it, nothing would point to a copy
// when memory runs out in between, and its heap frees it.
DFDLValue* StringDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap) {
    const DFDLUString* text = value->u.string;
    DFDLUString* copy = DFDLUStringPooler_getDFDLUStringFromUChars(heap, text == nullptr ? u"" : text->chars,
                                                                   DFDLUString_length(text));
    DFDLValue* clone = cloneRecord(value, heap);
    clone->u.string = copy;
    return clone;
}

void delete_StringDV(DFDLValue* value) {
    DFDLPoolingFactory_releaseDFDLUString(value->heap->poolingFactory, value->u.string);
    deleteRecord(value);
}

DFDLValue* DecimalDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLDecimal* adopted) {
    DFDLValue* value = create(heap, TYPE_DECIMAL);
    value->u.decimal = {adopted, SIMPLE_DECIMAL};
    return value;
}

DFDLValue* DecimalDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap) {
    const DFDLDecimal* number = value->u.decimal.number;
    DFDLDecimal* copy = number == nullptr ? nullptr : DFDLDecimal_copy(number, heap);
    DFDLValue* clone = cloneRecord(value, heap);
    clone->u.decimal.number = copy;
    return clone;
}

void delete_DecimalDV(DFDLValue* value) {
    delete_DFDLDecimal(value->u.decimal.number);
    deleteRecord(value);
}

DFDLValue* DateTimeDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLCalendarImpl* calendar, bool ownsCalendar,
                                      bool hasTimeZone) {
    return createCalendar(heap, TYPE_DATETIME, calendar, ownsCalendar, hasTimeZone);
}

DFDLValue* TimeDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLCalendarImpl* calendar, bool ownsCalendar,
                                  bool hasTimeZone) {
    return createCalendar(heap, TYPE_TIME, calendar, ownsCalendar, hasTimeZone);
}

DFDLValue* DateDV_createDFDLValue(DFDLHeapAdapter* heap, DFDLCalendarImpl* calendar, bool ownsCalendar,
                                  bool hasTimeZone) {
    return createCalendar(heap, TYPE_DATE, calendar, ownsCalendar, hasTimeZone);
}

DFDLValue* CalendarDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap) {
    if (value->u.calendar.calendar == nullptr) return nullptr;
    DFDLCalendarImpl* copy = DfdlCalendarImpl_clone(heap, value->u.calendar.calendar);
    DFDLValue* clone = cloneRecord(value, heap);
    clone->u.calendar.calendar = copy;
    clone->u.calendar.ownsCalendar = 1;
    return clone;
}

void delete_CalendarDV(DFDLValue* value) {
    if (value->u.calendar.ownsCalendar != 0) {
        delete_DFDLCalendarImplFromUCalendar(value->u.calendar.calendar);
    }
    deleteRecord(value);
}

bool DateTimeDV_hasDate(const DFDLValue* value) {
    const DFDLCalendarImpl* calendar = value->u.calendar.calendar;
    return calendar != nullptr && calendar->hasDate != 0;
}

bool DateTimeDV_hasTime(const DFDLValue* value) {
    const DFDLCalendarImpl* calendar = value->u.calendar.calendar;
    return calendar != nullptr && calendar->hasTime != 0;
}

DFDLValue* HexBinaryDV_createDFDLValue(DFDLHeapAdapter* heap, uint8_t* data, int64_t length, bool ownsData) {
    DFDLValue* value = create(heap, TYPE_HEXBINARY);
    value->u.binary = {data, length, ownsData ? 1U : 0U};
    return value;
}

DFDLValue* HexBinaryDV_clone(const DFDLValue* value, DFDLHeapAdapter* heap) {
    const int64_t length = value->u.binary.length;
    uint8_t* copy = DFDLBufferFactory_GetBuffer(heap->bufferFactory, length);
    if (length > 0) std::memcpy(copy, value->u.binary.data, static_cast<size_t>(length));
    DFDLValue* clone = cloneRecord(value, heap);
    clone->u.binary = {copy, length, 1};
    return clone;
}

void delete_HexBinaryDV(DFDLValue* value) {
    if (value->u.binary.ownsData != 0) {
        DFDLBufferFactory_FreeBuffer(value->heap->bufferFactory, value->u.binary.data);
    }
    deleteRecord(value);
}

bool DFDLValue_inRangeForSchemaType(const DFDLValue* value) {
    const Family* family = value->schemaType < KINDS ? &FAMILIES.byKind[value->schemaType] : nullptr;
    return family == nullptr || family->inRange == nullptr || family->inRange(value);
}

bool DFDLValue_IsNumberValue(const DFDLValue* value) {
    return value != nullptr && !DFDLValue_isOfKinds(value, TYPE_NONE, TYPE_BOOLEAN) &&
           !DFDLValue_isOfKinds(value, TYPE_DATETIME, TYPE_HEXBINARY);
}

float DFDLValue_getFloatValue(const DFDLValue* value) {
    if (value->schemaType == TYPE_FLOAT) return value->u.floatValue;
    return value->schemaType == TYPE_DOUBLE ? static_cast<float>(value->u.doubleValue) : 0.0F;
}

double DFDLValue_getDoubleValue(const DFDLValue* value) {
    if (value->schemaType == TYPE_DOUBLE) return value->u.doubleValue;
    return value->schemaType == TYPE_FLOAT ? static_cast<double>(value->u.floatValue) : 0.0;
}

int64_t DFDLValue_getSignedQValue(const DFDLValue* value) {
    if (!DFDLValue_IsSignedQValue(value)) std::abort();
    return value->u.signedQ;
}

uint64_t DFDLValue_getUnsignedQValue(const DFDLValue* value) {
    if (!DFDLValue_IsUnsignedQValue(value)) std::abort();
    return value->u.unsignedQ;
}

void DFDLValue_setSignedQValue(DFDLValue* value, int64_t payload) {
    if (!DFDLValue_IsSignedQValue(value)) std::abort();
    value->u.signedQ = payload;
}

void DFDLValue_setUnsignedQValue(DFDLValue* value, uint64_t payload) {
    if (!DFDLValue_IsUnsignedQValue(value)) std::abort();
    value->u.unsignedQ = payload;
}

void DFDLValue_setBinaryValue(DFDLValue* value, uint8_t* data, int64_t length) {
    value->u.binary.data = data;
    value->u.binary.length = length;
}

void DFDLValue_setDecimalValue(DFDLValue* /*value*/, const DFDLDecimal* /*number*/) {}
