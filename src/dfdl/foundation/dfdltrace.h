#ifndef DFDL_FOUNDATION_DFDLTRACE_H
#define DFDL_FOUNDATION_DFDLTRACE_H

#include <dfdl/dfdl.h>
#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;

inline constexpr int32_t TRACE_OBJECT_LIMIT = 16;
inline constexpr int32_t TRACE_METHOD_CAPACITY = 1024;  // units, terminator included
inline constexpr int32_t TRACE_KEY_CAPACITY = 10;
inline constexpr int32_t TRACE_TIMESTAMP_CAPACITY = 27;

// One trace record on its way to the callbacks. There is one per TraceHandlerAdapter, filled anew for every
// record. Statement, objects, designator and path are borrowed and valid while the record is delivered.
struct DFDLTraceImpl {
    DFDLHeapAdapter* heap;
    const UChar* statement;  // null: none
    UChar methodName[TRACE_METHOD_CAPACITY];
    UChar messageKey[TRACE_KEY_CAPACITY];
    const DFDLUString* objects[TRACE_OBJECT_LIMIT];
    int32_t objectCount;
    int32_t statementLength;  // units
    const UChar* designator;
    const UChar* path;
    UChar timestamp[TRACE_TIMESTAMP_CAPACITY];  // local time
};

DFDLTraceImpl* new_DFDLTraceImpl(DFDLHeapAdapter* heap);
void delete_DFDLTraceImpl(DFDLTraceImpl* this_);

// Begins a record: everything but the objects is set or cleared. `key` may be null.
void DFDLTraceImpl_setStatement(DFDLTraceImpl* this_, const UChar* text, int32_t length, const char* key);
void DFDLTraceImpl_setStatementWithSCDAndXPath(DFDLTraceImpl* this_, const UChar* text, int32_t length,
                                               const char* key, const UChar* designator, const UChar* path);
void DFDLTraceImpl_setMethodName(DFDLTraceImpl* this_, const char* method);
void DFDLTraceImpl_createTimestamp(DFDLTraceImpl* this_);
void DFDLTraceImpl_addObject(DFDLTraceImpl* this_, const DFDLUString* text);  // null or one too many: dropped
void DFDLTraceImpl_clearObjects(DFDLTraceImpl* this_);

#endif
