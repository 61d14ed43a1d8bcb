#ifndef DFDL_FOUNDATION_XSVALUE_H
#define DFDL_FOUNDATION_XSVALUE_H

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

// The families (create, clone, delete, range checks, getters, setters, kind tests) follow below.
DFDLValue* DFDLValue_createValue(DFDLHeapAdapter* heap);  // kind 1, carries a nil
void delete_DFDLValue(DFDLValue* value);                  // null is ignored
DFDLValue* DFDLValue_clone(const DFDLValue* value, DFDLHeapAdapter* heap);
inline bool DFDLValue_isNil(const DFDLValue* value) { return value->nil != 0; }
inline void DFDLValue_setNil(DFDLValue* value, bool nil) { value->nil = nil ? 1U : 0U; }

#endif
