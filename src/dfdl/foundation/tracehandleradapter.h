#ifndef DFDL_FOUNDATION_TRACEHANDLERADAPTER_H
#define DFDL_FOUNDATION_TRACEHANDLERADAPTER_H

#include <cstdarg>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdltrace.h"
#include "dfdl/foundation/dfdltracehandlers.h"

struct ArrayList;
struct ProcessingError;
struct ResourceCatalog;

inline constexpr int32_t TRACE_STATEMENT_CAPACITY = 1024;  // units, terminator included

// What a record of user trace is about. The caller fills it from its own tables, so that trace needs to know
// no grammar: dfdl/pif/rowtrace.h does it for a row. All texts are terminated and may be null.
struct TraceSubject {
    const UChar* designator = nullptr;
    const UChar* path = nullptr;
    // With `placed`, the inserts 0 to 3 of the message are byte position, name, designator and path, and
    // those of the format count from 4.
    bool placed = false;
    int64_t bytePosition = 0;
    const UChar* name = nullptr;
};

// Writes trace records to the caller's two handlers. Everything is built for the case that nobody listens: a
// call site tests context->serviceTraceOn or context->userTraceOn before it prepares an argument. One per
// engine, which owns it; its one record is filled, delivered and reset.
struct TraceHandlerAdapter {
    DFDLHeapAdapter* heap;
    Context* context;
    DFDLServiceTraceHandlerImpl* serviceHandler;
    DFDLUserTraceHandlerImpl* userHandler;
    ResourceCatalog* resourceCatalog;  // may be null: messages are then empty
    DFDLTraceImpl* trace;
    ArrayList* inserts;  // pooled strings of the present record
    UChar statementBuffer[TRACE_STATEMENT_CAPACITY];
};

TraceHandlerAdapter* new_TraceHandlerAdapter(DFDLHeapAdapter* heap, Context* context,
                                             ResourceCatalog* catalog);
void delete_TraceHandlerAdapter(TraceHandlerAdapter* this_);  // null is ignored

// These set the flags of the context too: a service handler turns both on, and taking it away silences user
// trace as well; a user handler decides the user flag alone.
void TraceHandlerAdapter_setServiceTraceHandler(TraceHandlerAdapter* this_,
                                                DFDLServiceTraceHandlerImpl* handler);
void TraceHandlerAdapter_setUserTraceHandler(TraceHandlerAdapter* this_, DFDLUserTraceHandlerImpl* handler);

// Service trace, for those who know this code. All take a null adapter and test the flag again. Letters of
// the formats: those of ProcessingError_setValues and p (pointer), D (64-bit number), V (DFDLValue).
void TraceHandlerAdapter_entry(TraceHandlerAdapter* this_, const char* method);
void TraceHandlerAdapter_entryData(TraceHandlerAdapter* this_, const char* method, const char* format, ...);
void TraceHandlerAdapter_exit(TraceHandlerAdapter* this_, const char* method);
void TraceHandlerAdapter_exitData(TraceHandlerAdapter* this_, const char* method, const char* format, ...);
void TraceHandlerAdapter_service(TraceHandlerAdapter* this_, const char* method, const char* text);
void TraceHandlerAdapter_serviceData(TraceHandlerAdapter* this_, const char* method, const char* format, ...);

// User trace, in translated messages, for authors of schemas. Each goes to the user handler and then to the
// service handler.
void TraceHandlerAdapter_userTraceInfo(TraceHandlerAdapter* this_, const TraceSubject& subject,
                                       const char* key, const char* format, ...);
void TraceHandlerAdapter_userTraceInfoList(TraceHandlerAdapter* this_, const TraceSubject& subject,
                                           const char* key, const char* format, va_list arguments);
void TraceHandlerAdapter_userTraceError(TraceHandlerAdapter* this_,
                                        ProcessingError* record);  // once a record
void TraceHandlerAdapter_userTraceFatal(TraceHandlerAdapter* this_, ProcessingError* record);

// Formats into statementBuffer from the inserts at hand; returns the units.
int32_t TraceHandlerAdapter_formatMessage(TraceHandlerAdapter* this_, const UChar* messageTemplate);
// Renders the pieces of a format as further inserts.
void TraceHandlerAdapter_setValues(TraceHandlerAdapter* this_, const char* format, va_list arguments);
void TraceHandlerAdapter_reset(TraceHandlerAdapter* this_);

// The present record to one slot of a handler.
void TraceHandlerAdapter_toService(TraceHandlerAdapter* this_,
                                   DFDLServiceTraceCallback DFDLServiceTraceHandlerImpl::*slot);
void TraceHandlerAdapter_toUser(TraceHandlerAdapter* this_,
                                DFDLUserTraceCallback DFDLUserTraceHandlerImpl::*slot);

// A pooled copy in which control characters show as the entities that DFDL has for them.
DFDLUString* TraceHandlerAdapter_replaceUnprintableCharacters(TraceHandlerAdapter* this_,
                                                              const DFDLUString* string, bool replaceSpace);

// Words of the bundle for numbers of the grammar's enumerations. They are valid as long as the language
// stays.
const UChar* TracehandlerAdapter_getLengthUnitsAsString(TraceHandlerAdapter* this_, int32_t lengthUnits);
const UChar* TracehandlerAdapter_getAlignmentUnitsAsString(TraceHandlerAdapter* this_,
                                                           int32_t alignmentUnits);
const UChar* TracehandlerAdapter_getPhysicalTypeAsString(TraceHandlerAdapter* this_, int32_t physicalType);
// The range of a numeric simple type (DFDLSimpleTypeEnum); empty for one without a range.
const UChar* TracehandlerAdapter_returnRangeAsString(TraceHandlerAdapter* this_, int32_t simpleType);

#endif
