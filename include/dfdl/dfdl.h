#ifndef DFDL_DFDL_H
#define DFDL_DFDL_H

/*
 * The DFDL runtime library: reads data by a compiled grammar and tells it as typed events.
 *
 * Conventions that hold for everything below:
 *
 *  1. Handles. Every `new_X` gives an object that is the caller's, who ends it with `delete_X`; `delete_X`
 *     takes null. A function that makes an object returns null if there is no memory for it. Where null may
 *     be passed for a handle or a pointer it is said; elsewhere it must not be.
 *  2. Order of life. A grammar outlives the parsers that use it; handlers, the input document and the
 *     callbacks of a `DFDLHeap` outlive the parser they were given to, or stay until another one has been set
 *     in their place. A `DFDLHeap` itself may be deleted as soon as the function that took it has returned.
 *  3. Strings are UTF-16 (`DFDLChar`), terminated by zero; where a length stands beside one it counts units
 *     without the terminator. Digits of numbers and names of features, languages, encodings and files are
 *     bytes, terminated as well. What a function is given it copies, except the input's data.
 *  4. Positions. `DFDLWORD` is a signed 64-bit number. Positions of elements in document events are bits, all
 *     others (the end of the document, region events, diagnostics, buffers) bytes. They count from 0 at the
 *     start of the message.
 *  5. Setters of a parser return 0 for success, 1 for failure (no memory, too), 2 if a parse is in progress
 *     (nothing has changed), 3 for an unknown feature, 7 for an unknown language. Parse functions return 1
 *     for success and 0 for failure. Setters of a handler return nothing and ignore a null handler; a null
 *     callback empties the slot.
 *  6. Errors reach the error handler while the failing function runs. A diagnostic, a trace record, a
 *     calendar and every other pointer that a callback receives are the library's and valid only during that
 *     call: copy what you want to keep. Only the handler itself is the caller's own.
 *  7. Callbacks run on the caller's thread, inside the function that was called. A callback must not call a
 *     function of the parser that runs it, and must not leave by an exception or a jump. What a callback
 *     returns is ignored; a slot without a callback is skipped.
 *  8. Threads. One thread at a time may use a parser and its handlers. Any number of parsers, each in a
 *     thread of its own, may share a grammar.
 *  9. Memory. A parser or grammar takes its memory from the callbacks of the `DFDLHeap` given to it. When
 *     they have none left, the function that runs ends with the result documented for a failure and without a
 *     diagnostic; after DFDLParser_resetParser the parser can be used again.
 */

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#if defined(__GNUC__)
#define DFDL_API __attribute__((visibility("default")))
#else
#define DFDL_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef char16_t DFDLChar;
typedef int64_t DFDLWORD;
typedef int32_t DFDLBoolean; /* 0 false, anything else true */

typedef struct DFDLHeapImpl DFDLHeap;
typedef struct sPIF DFDLGrammar;
typedef struct DFDLParserImpl DFDLParser;
typedef struct DFDLDocHandlerImpl DFDLDocHandler;
typedef struct DFDLRegionHandlerImpl DFDLRegionHandler;
typedef struct DFDLErrorHandlerImpl DFDLErrorHandler;
typedef struct DFDLBufferHandlerImpl DFDLBufferHandler;
typedef struct DFDLByteBufferImpl DFDLByteBuffer;
typedef struct DFDLDiagnosticImpl DFDLDiagnostic;
typedef struct DFDLServiceTraceHandlerImpl DFDLServiceTraceHandler;
typedef struct DFDLUserTraceHandlerImpl DFDLUserTraceHandler;
typedef struct DFDLTraceImpl DFDLTrace;
typedef struct DFDLCalendarImpl DFDLCalendar;

/* ---- Heap: the caller's allocator ------------------------------------------------------------------- */

typedef void* (*DFDLHeapMallocCallback)(void* userData, size_t size);
typedef void* (*DFDLHeapCallocCallback)(void* userData, size_t count, size_t size); /* zeroed */
typedef void* (*DFDLHeapReallocCallback)(void* userData, void* pointer, size_t size);
typedef void (*DFDLHeapFreeCallback)(void* userData, void* pointer);

/* All four callbacks are needed: returns null if one of them is null. They are called by the thread that uses
 * the parser or grammar, and may return null when memory has run out. `userData` is handed to them as it is.
 */
DFDL_API DFDLHeap* new_DFDLHeap(void* userData, DFDLHeapMallocCallback mallocCallback,
                                DFDLHeapCallocCallback callocCallback,
                                DFDLHeapReallocCallback reallocCallback, DFDLHeapFreeCallback freeCallback);
DFDL_API void delete_DFDLHeap(DFDLHeap* heap);

/* The process's own malloc, calloc, realloc and free; `userData` is ignored. */
DFDL_API void* defaultDFDLHeap_mallocCallback(void* userData, size_t size);
DFDL_API void* defaultDFDLHeap_callocCallback(void* userData, size_t count, size_t size);
DFDL_API void* defaultDFDLHeap_reallocCallback(void* userData, void* pointer, size_t size);
DFDL_API void defaultDFDLHeap_freeCallback(void* userData, void* pointer);

/* ---- Grammar: a loaded PIF, read-only ---------------------------------------------------------------- */

/* What the functions below leave in *resultCode (which must not be null). */
enum {
    DFDL_GRAMMAR_LOADED = 0,
    DFDL_GRAMMAR_NO_MEMORY = 1,  /* also: no wrapper given */
    DFDL_GRAMMAR_VERSION = 4,    /* the PIF's format is newer than this library */
    DFDL_GRAMMAR_NOT_A_PIF = 5,  /* not a PIF, or a damaged one */
    DFDL_GRAMMAR_CANNOT_OPEN = 6 /* the file cannot be opened */
};

/* The grammar, or null on failure. A null `heap` means the process's own allocator. `handler` may be null; it
 * receives the service trace of this one load and is not kept. The file is closed and the bytes may go as
 * soon as this returns. A program that builds a PIF in memory finds new_DFDLGrammarFromPIFWrapper in
 * <dfdl/pifwrapper.h>. */
DFDL_API DFDLGrammar* new_DFDLGrammarFromFile(DFDLHeap* heap, const char* path,
                                              DFDLServiceTraceHandler* handler, int* resultCode);
DFDL_API DFDLGrammar* new_DFDLGrammarFromByteArray(DFDLHeap* heap, const char* bytes, size_t length,
                                                   DFDLServiceTraceHandler* handler, int* resultCode);
/* Every parser made for it must be gone. */
DFDL_API void delete_DFDLGrammar(DFDLGrammar* grammar);

/* ---- Document handler: receives the events of a parse ------------------------------------------------- */

/* The last argument of the value callbacks: the type of the element. */
enum {
    DFDL_VALUE_STRING = 0,
    DFDL_VALUE_DECIMAL = 1,
    DFDL_VALUE_INTEGER = 2,
    DFDL_VALUE_NON_NEGATIVE_INTEGER = 3,
    DFDL_VALUE_LONG = 4,
    DFDL_VALUE_UNSIGNED_LONG = 5,
    DFDL_VALUE_INT = 6,
    DFDL_VALUE_UNSIGNED_INT = 7,
    DFDL_VALUE_SHORT = 8,
    DFDL_VALUE_UNSIGNED_SHORT = 9,
    DFDL_VALUE_BYTE = 10,
    DFDL_VALUE_UNSIGNED_BYTE = 11,
    DFDL_VALUE_FLOAT = 12,
    DFDL_VALUE_DOUBLE = 13,
    DFDL_VALUE_DATETIME = 14,
    DFDL_VALUE_DATE = 15,
    DFDL_VALUE_TIME = 16,
    DFDL_VALUE_HEXBINARY = 17,
    DFDL_VALUE_BOOLEAN = 18
};

typedef void (*DFDLStartDocumentCallback)(DFDLDocHandler* handler, const char* version,
                                          const DFDLChar* encoding,
                                          int32_t flags); /* always "1.0", an empty string, 0 */
typedef void (*DFDLEndDocumentCallback)(
    DFDLDocHandler* handler, DFDLWORD bytes); /* bytes consumed, a byte that was begun counted whole */
/* The id and the strings are the grammar's own. An element without a namespace has an empty `namespaceUri`.
 * What a speculative branch found is told once the branch is certain. */
typedef void (*DFDLStartElementCallback)(DFDLDocHandler* handler, int32_t elementId, const DFDLChar* name,
                                         int32_t namespaceId, const DFDLChar* namespaceUri,
                                         const DFDLChar* designator,
                                         DFDLWORD startBit); /* `designator` names the schema component */
typedef void (*DFDLEndElementCallback)(DFDLDocHandler* handler, DFDLWORD endBit);
typedef void (*DFDLElementStringValueCallback)(DFDLDocHandler* handler, const DFDLChar* characters,
                                               int32_t length, uint32_t type);
typedef void (*DFDLElementIntValueCallback)(DFDLDocHandler* handler, int32_t value, uint32_t type);
typedef void (*DFDLElementLongValueCallback)(DFDLDocHandler* handler, int64_t value, uint32_t type);
typedef void (*DFDLElementShortValueCallback)(DFDLDocHandler* handler, int16_t value, uint32_t type);
typedef void (*DFDLElementFloatValueCallback)(DFDLDocHandler* handler, float value, uint32_t type);
typedef void (*DFDLElementDoubleValueCallback)(DFDLDocHandler* handler, double value, uint32_t type);
typedef void (*DFDLElementDecimalValueCallback)(
    DFDLDocHandler* handler, const char* digits, int32_t length,
    uint32_t type); /* ASCII text, of a decimal possibly with an exponent ("1E+2"); also integers beyond the
                     * other callbacks, with an exponent only where it stands for more than 65,536 zeros */
typedef void (*DFDLElementBooleanValueCallback)(DFDLDocHandler* handler, DFDLBoolean value, uint32_t type);
typedef void (*DFDLElementByteValueCallback)(DFDLDocHandler* handler, int8_t value, uint32_t type);
typedef void (*DFDLElementCalendarValueCallback)(DFDLDocHandler* handler, const DFDLCalendar* calendar,
                                                 uint32_t type);
typedef void (*DFDLElementUShortValueCallback)(DFDLDocHandler* handler, uint16_t value, uint32_t type);
typedef void (*DFDLElementUIntValueCallback)(DFDLDocHandler* handler, uint32_t value, uint32_t type);
typedef void (*DFDLElementUByteValueCallback)(DFDLDocHandler* handler, uint8_t value, uint32_t type);
typedef void (*DFDLElementULongValueCallback)(DFDLDocHandler* handler, uint64_t value, uint32_t type);
typedef void (*DFDLElementBinaryValueCallback)(DFDLDocHandler* handler, const uint8_t* bytes, DFDLWORD length,
                                               uint32_t type);
typedef void (*DFDLElementNilValueCallback)(
    DFDLDocHandler* handler); /* the element is nil; in place of a value */

/* With all slots empty. */
DFDL_API DFDLDocHandler* new_DFDLDocHandler(void);
DFDL_API void delete_DFDLDocHandler(DFDLDocHandler* handler);
DFDL_API void DFDLDocHandler_setStartDocumentCallback(DFDLDocHandler* handler,
                                                      DFDLStartDocumentCallback callback);
DFDL_API void DFDLDocHandler_setEndDocumentCallback(DFDLDocHandler* handler,
                                                    DFDLEndDocumentCallback callback);
DFDL_API void DFDLDocHandler_setStartElementCallback(DFDLDocHandler* handler,
                                                     DFDLStartElementCallback callback);
DFDL_API void DFDLDocHandler_setEndElementCallback(DFDLDocHandler* handler, DFDLEndElementCallback callback);
DFDL_API void DFDLDocHandler_setElementStringValueCallback(DFDLDocHandler* handler,
                                                           DFDLElementStringValueCallback callback);
DFDL_API void DFDLDocHandler_setElementIntValueCallback(DFDLDocHandler* handler,
                                                        DFDLElementIntValueCallback callback);
DFDL_API void DFDLDocHandler_setElementLongValueCallback(DFDLDocHandler* handler,
                                                         DFDLElementLongValueCallback callback);
DFDL_API void DFDLDocHandler_setElementShortValueCallback(DFDLDocHandler* handler,
                                                          DFDLElementShortValueCallback callback);
DFDL_API void DFDLDocHandler_setElementFloatValueCallback(DFDLDocHandler* handler,
                                                          DFDLElementFloatValueCallback callback);
DFDL_API void DFDLDocHandler_setElementDoubleValueCallback(DFDLDocHandler* handler,
                                                           DFDLElementDoubleValueCallback callback);
DFDL_API void DFDLDocHandler_setElementDecimalValueCallback(DFDLDocHandler* handler,
                                                            DFDLElementDecimalValueCallback callback);
DFDL_API void DFDLDocHandler_setElementBooleanValueCallback(DFDLDocHandler* handler,
                                                            DFDLElementBooleanValueCallback callback);
DFDL_API void DFDLDocHandler_setElementByteValueCallback(DFDLDocHandler* handler,
                                                         DFDLElementByteValueCallback callback);
DFDL_API void DFDLDocHandler_setElementCalendarValueCallback(DFDLDocHandler* handler,
                                                             DFDLElementCalendarValueCallback callback);
DFDL_API void DFDLDocHandler_setElementUShortValueCallback(DFDLDocHandler* handler,
                                                           DFDLElementUShortValueCallback callback);
DFDL_API void DFDLDocHandler_setElementUIntValueCallback(DFDLDocHandler* handler,
                                                         DFDLElementUIntValueCallback callback);
DFDL_API void DFDLDocHandler_setElementUByteValueCallback(DFDLDocHandler* handler,
                                                          DFDLElementUByteValueCallback callback);
DFDL_API void DFDLDocHandler_setElementULongValueCallback(DFDLDocHandler* handler,
                                                          DFDLElementULongValueCallback callback);
DFDL_API void DFDLDocHandler_setElementBinaryValueCallback(DFDLDocHandler* handler,
                                                           DFDLElementBinaryValueCallback callback);
DFDL_API void DFDLDocHandler_setElementNilValueCallback(DFDLDocHandler* handler,
                                                        DFDLElementNilValueCallback callback);
/* A pointer of the caller's, which the library keeps for the callbacks and does not look at; null until set.
 * So with every handler below. */
DFDL_API void DFDLDocHandler_setContextObject(DFDLDocHandler* handler, void* contextObject);
DFDL_API void* DFDLDocHandler_getContextObject(const DFDLDocHandler* handler);

/* ---- Calendars: dates and times as values ------------------------------------------------------------ */

/* With nothing set. One that a callback receives belongs to the library: it is read, not deleted. No function
 * here but delete_DFDLCalendar takes null, for the calendar or for a place to store to. */
DFDL_API DFDLCalendar* new_DFDLCalendar(void);
DFDL_API void delete_DFDLCalendar(DFDLCalendar* calendar);
/* Months count from 0, days from 1, hours from 0 to 23. There is no year 0: setting it sets -1, the year
 * before 1. Nothing else is checked. The type of a value tells whether it has a date, a time or both; what it
 * does not have reads as 0. */
DFDL_API void DfdlCalendar_getDate(const DFDLCalendar* calendar, int32_t* year, int32_t* month, int32_t* day);
DFDL_API void DfdlCalendar_setDate(DFDLCalendar* calendar, int32_t year, int32_t month, int32_t day);
DFDL_API void DfdlCalendar_getTime(const DFDLCalendar* calendar, int32_t* hour, int32_t* minute,
                                   int32_t* second);
DFDL_API void DfdlCalendar_setTime(DFDLCalendar* calendar, int32_t hour, int32_t minute, int32_t second);
DFDL_API int32_t DfdlCalendar_getMicroSec(const DFDLCalendar* calendar); /* microseconds of the second */
DFDL_API void DfdlCalendar_setMicroSec(DFDLCalendar* calendar, int32_t microSecond);
DFDL_API int32_t DfdlCalendar_getTimeZoneOffset(const DFDLCalendar* calendar); /* minutes east of Greenwich */
DFDL_API void DfdlCalendar_setTimeZoneOffset(DFDLCalendar* calendar, int32_t minutes);
DFDL_API DFDLBoolean DfdlCalendar_hasTimeZone(const DFDLCalendar* calendar);
DFDL_API DFDLBoolean DfdlCalendar_hasMicroSec(const DFDLCalendar* calendar);

/* ---- Region handler: where every part of the representation lies --------------------------------------- */

/* Positions and lengths in bytes; empty regions are not reported. `encoding` is null for an element without
 * one, and for an event that had to wait for a speculative branch to become certain. */
typedef void (*DFDLElementStartCallback)(DFDLRegionHandler* handler, const DFDLChar* name,
                                         const DFDLChar* namespaceUri, const DFDLChar* designator,
                                         DFDLWORD position, const char* encoding);
typedef void (*DFDLElementEndCallback)(DFDLRegionHandler* handler, const DFDLChar* designator,
                                       DFDLWORD position);
typedef void (*DFDLGroupStartCallback)(DFDLRegionHandler* handler, const DFDLChar* designator,
                                       DFDLWORD position);
typedef void (*DFDLGroupEndCallback)(DFDLRegionHandler* handler, const DFDLChar* designator,
                                     DFDLWORD position);
typedef void (*DFDLRegionCallback)(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD start,
                                   DFDLWORD length);

/* With all slots empty. */
DFDL_API DFDLRegionHandler* new_DFDLRegionHandler(void);
DFDL_API void delete_DFDLRegionHandler(DFDLRegionHandler* handler);
DFDL_API void DFDLRegionHandler_setElementStartCallback(DFDLRegionHandler* handler,
                                                        DFDLElementStartCallback callback);
DFDL_API void DFDLRegionHandler_setElementEndCallback(DFDLRegionHandler* handler,
                                                      DFDLElementEndCallback callback);
DFDL_API void DFDLRegionHandler_setGroupStartCallback(DFDLRegionHandler* handler,
                                                      DFDLGroupStartCallback callback);
DFDL_API void DFDLRegionHandler_setGroupEndCallback(DFDLRegionHandler* handler,
                                                    DFDLGroupEndCallback callback);
DFDL_API void DFDLRegionHandler_setLeadingAlignmentRegionCallback(DFDLRegionHandler* handler,
                                                                  DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setInitiatorRegionCallback(DFDLRegionHandler* handler,
                                                           DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setSimpleContentRegionCallback(DFDLRegionHandler* handler,
                                                               DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setTerminatorRegionCallback(DFDLRegionHandler* handler,
                                                            DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setTrailingAlignmentRegionCallback(DFDLRegionHandler* handler,
                                                                   DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setPrefixSeparatorRegionCallback(DFDLRegionHandler* handler,
                                                                 DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setInfixSeparatorRegionCallback(DFDLRegionHandler* handler,
                                                                DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setPostfixSeparatorRegionCallback(DFDLRegionHandler* handler,
                                                                  DFDLRegionCallback callback);
DFDL_API void DFDLRegionHandler_setContextObject(DFDLRegionHandler* handler, void* contextObject);
DFDL_API void* DFDLRegionHandler_getContextObject(const DFDLRegionHandler* handler);

/* ---- Error handler and diagnostics --------------------------------------------------------------------- */

typedef void (*DFDLErrorCallback)(DFDLErrorHandler* handler, const DFDLDiagnostic* diagnostic);

/* With all slots empty. */
DFDL_API DFDLErrorHandler* new_DFDLErrorHandler(void);
DFDL_API void delete_DFDLErrorHandler(DFDLErrorHandler* handler);
/* The data do not fit the grammar, or something is missing that the parse needs: it has failed. */
DFDL_API void DFDLErrorHandler_setProcessingErrorCallback(DFDLErrorHandler* handler,
                                                          DFDLErrorCallback callback);
/* The parse goes on. */
DFDL_API void DFDLErrorHandler_setWarningCallback(DFDLErrorHandler* handler, DFDLErrorCallback callback);
/* Also recoverable errors, which have a type of their own; the parse goes on. */
DFDL_API void DFDLErrorHandler_setValidationErrorCallback(DFDLErrorHandler* handler,
                                                          DFDLErrorCallback callback);
/* The grammar is wrong, or asks for what this library cannot do: the parse has failed. */
DFDL_API void DFDLErrorHandler_setSchemaDefinitionErrorCallback(DFDLErrorHandler* handler,
                                                                DFDLErrorCallback callback);
DFDL_API void DFDLErrorHandler_setContextObject(DFDLErrorHandler* handler, void* contextObject);
DFDL_API void* DFDLErrorHandler_getContextObject(const DFDLErrorHandler* handler);

enum {
    DFDL_DIAGNOSTIC_WARNING = 0,
    DFDL_DIAGNOSTIC_PROCESSING_ERROR = 1,
    DFDL_DIAGNOSTIC_SCHEMA_DEFINITION_ERROR = 2,
    DFDL_DIAGNOSTIC_VALIDATION_ERROR = 3,
    DFDL_DIAGNOSTIC_RECOVERABLE_ERROR = 4
};
/* One of the above. A null diagnostic gives 0 here, and null or length 0 below; a null out parameter is left
 * out. The pointers are the diagnostic's. */
DFDL_API int32_t DFDLDiagnostic_getType(const DFDLDiagnostic* diagnostic);
/* The message's id, such as "CTDP3002E". */
DFDL_API const DFDLChar* DFDLDiagnostic_getCode(const DFDLDiagnostic* diagnostic);
/* Characters and length go to the two out parameters; a diagnostic without text has length 0. */
DFDL_API void DFDLDiagnostic_getSummary(const DFDLDiagnostic* diagnostic, const DFDLChar** characters,
                                        int32_t* length);
/* "code: summary". Made at the first call; null and 0 if there is no memory for it. */
DFDL_API void DFDLDiagnostic_getCodeAndSummary(const DFDLDiagnostic* diagnostic, const DFDLChar** characters,
                                               int32_t* length);
/* Always null in this version. */
DFDL_API const DFDLChar* DFDLDiagnostic_getSchemaLocation(const DFDLDiagnostic* diagnostic);

/* ---- Input: buffers handed over piece by piece ------------------------------------------------------- */

/* Fills `buffer`, which is the library's, by one call of DFDLByteBuffer_setData. It may wait for data; it
 * must not give an empty buffer that is not the last one. After the last one it is not called again for this
 * message. */
typedef void (*DFDLGetNextBufferCallback)(DFDLBufferHandler* handler, DFDLByteBuffer* buffer);
/* The library has done with the buffer's data: free or reuse them. Buffers come back in the order in which
 * they were filled, bytes behind DFDLByteBuffer_getPosition unread. The data of the next message begin with
 * those that are unread: give them again. */
typedef void (*DFDLReleaseBufferCallback)(DFDLBufferHandler* handler, DFDLByteBuffer* buffer);

/* With both slots empty. */
DFDL_API DFDLBufferHandler* new_DFDLBufferHandler(void);
DFDL_API void delete_DFDLBufferHandler(DFDLBufferHandler* handler);
DFDL_API void DFDLBufferHandler_setGetNextBufferHandlerCallback(DFDLBufferHandler* handler,
                                                                DFDLGetNextBufferCallback callback);
DFDL_API void DFDLBufferHandler_setReleaseBufferHandlerCallback(DFDLBufferHandler* handler,
                                                                DFDLReleaseBufferCallback callback);
DFDL_API void DFDLBufferHandler_setContextObject(DFDLBufferHandler* handler, void* contextObject);
DFDL_API void* DFDLBufferHandler_getContextObject(const DFDLBufferHandler* handler);

/* For the callbacks above; `size` in bytes. The data stay the caller's and must stay in place until the
 * buffer is released. Null data or a negative size make an empty buffer. `isLast`: none follows. */
DFDL_API void DFDLByteBuffer_setData(DFDLByteBuffer* buffer, const uint8_t* data, DFDLWORD size,
                                     int32_t isLast);
DFDL_API const uint8_t* DFDLByteBuffer_getData(const DFDLByteBuffer* buffer); /* as they were set */
DFDL_API DFDLWORD DFDLByteBuffer_getSize(const DFDLByteBuffer* buffer);       /* bytes */
DFDL_API DFDLWORD DFDLByteBuffer_getPosition(const DFDLByteBuffer* buffer);   /* bytes read */

/* ---- Trace ------------------------------------------------------------------------------------------- */

/* Service trace tells what the code does, for those who know it; user trace what the parser decides, in
 * messages for authors of schemas. A service trace handler receives the messages of user trace too. */
typedef void (*DFDLServiceTraceCallback)(DFDLServiceTraceHandler* handler, const DFDLTrace* trace);
typedef void (*DFDLUserTraceCallback)(DFDLUserTraceHandler* handler, const DFDLTrace* trace);

DFDL_API DFDLServiceTraceHandler* new_DFDLServiceTraceHandler(void);
DFDL_API void delete_DFDLServiceTraceHandler(DFDLServiceTraceHandler* handler);
DFDL_API void DFDLServiceTraceHandler_setServiceInfoCallback(DFDLServiceTraceHandler* handler,
                                                             DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setServiceWarningCallback(DFDLServiceTraceHandler* handler,
                                                                DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setServiceErrorCallback(DFDLServiceTraceHandler* handler,
                                                              DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setServiceFatalCallback(DFDLServiceTraceHandler* handler,
                                                              DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setServiceEntryCallback(DFDLServiceTraceHandler* handler,
                                                              DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setServiceExitCallback(DFDLServiceTraceHandler* handler,
                                                             DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setServiceDetailCallback(DFDLServiceTraceHandler* handler,
                                                               DFDLServiceTraceCallback callback);
DFDL_API void DFDLServiceTraceHandler_setContextObject(DFDLServiceTraceHandler* handler, void* contextObject);
DFDL_API void* DFDLServiceTraceHandler_getContextObject(const DFDLServiceTraceHandler* handler);

DFDL_API DFDLUserTraceHandler* new_DFDLUserTraceHandler(void);
DFDL_API void delete_DFDLUserTraceHandler(DFDLUserTraceHandler* handler);
DFDL_API void DFDLUserTraceHandler_setUserInfoCallback(DFDLUserTraceHandler* handler,
                                                       DFDLUserTraceCallback callback);
DFDL_API void DFDLUserTraceHandler_setUserWarningCallback(DFDLUserTraceHandler* handler,
                                                          DFDLUserTraceCallback callback);
DFDL_API void DFDLUserTraceHandler_setUserErrorCallback(DFDLUserTraceHandler* handler,
                                                        DFDLUserTraceCallback callback);
DFDL_API void DFDLUserTraceHandler_setUserFatalCallback(DFDLUserTraceHandler* handler,
                                                        DFDLUserTraceCallback callback);
DFDL_API void DFDLUserTraceHandler_setContextObject(DFDLUserTraceHandler* handler, void* contextObject);
DFDL_API void* DFDLUserTraceHandler_getContextObject(const DFDLUserTraceHandler* handler);

/* The pointers are the record's, which is filled anew for every call. A null trace, or an object that does
 * not exist, gives null and 0; a null out parameter is left out. */
/* The message of user trace, or the arguments and results of a function; null if there are none. */
DFDL_API void DFDLTrace_getStatement(const DFDLTrace* trace, const DFDLChar** characters, int32_t* length);
/* Empty in service trace. */
DFDL_API const DFDLChar* DFDLTrace_getMessageKey(const DFDLTrace* trace);
/* Empty in user trace. */
DFDL_API const DFDLChar* DFDLTrace_getMethodName(const DFDLTrace* trace);
/* Local time, in the form "2026-3-9 14:05:07.000123". */
DFDL_API const DFDLChar* DFDLTrace_getTimestamp(const DFDLTrace* trace);
/* Designator of the schema component and path of the element that a message is about; null if there is none.
 */
DFDL_API const DFDLChar* DFDLTrace_getSCD(const DFDLTrace* trace);
DFDL_API const DFDLChar* DFDLTrace_getXPath(const DFDLTrace* trace);
/* The single values of a statement of service trace, 16 at the most, counted from 0. */
DFDL_API int32_t DFDLTrace_getNumberOfObjects(const DFDLTrace* trace);
DFDL_API void DFDLTrace_getObject(const DFDLTrace* trace, int32_t index, const DFDLChar** characters,
                                  int32_t* length);

/* ---- Parser ------------------------------------------------------------------------------------------ */

/* Identifiers of features; all are off at first. Validation tells values and numbers of occurrences that
 * break the schema's rules to the error handler. Without ignoring trailing data, data behind the message are
 * an error. With fast small integers, elements of type integer and nonNegativeInteger that fit 64 bits come
 * through the long and unsigned long callbacks in place of the decimal one; it must be set before a parser's
 * first parse, and stays as it was then. */
#define DFDL_FEATURE_VALIDATION "dfdl://features/dfdl/validation"
#define DFDL_FEATURE_IGNORE_TRAILING_DATA "dfdl://features/dfdl/ignore-trailing-data"
#define DFDL_FEATURE_FAST_SMALL_INTEGERS "dfdl://features/dfdl/dochandler/fast-small-integers"

/* A null `heap` means the process's own allocator. */
DFDL_API DFDLParser* new_DFDLParser(DFDLHeap* heap);
DFDL_API void delete_DFDLParser(DFDLParser* parser);

/* Setters; results by convention 5. Handlers stay the caller's and may be null, which takes one away. A
 * parser without a document handler tells a warning and parses all the same.
 *
 * 1 for a null grammar. Variables that were set are forgotten. */
DFDL_API int DFDLParser_setGrammar(DFDLParser* parser, DFDLGrammar* grammar);
DFDL_API int DFDLParser_setDocumentHandler(DFDLParser* parser, DFDLDocHandler* handler);
DFDL_API int DFDLParser_setErrorHandler(DFDLParser* parser, DFDLErrorHandler* handler);
DFDL_API int DFDLParser_setRegionHandler(DFDLParser* parser, DFDLRegionHandler* handler);
/* Null removes it, and silences user trace as well. */
DFDL_API int DFDLParser_setServiceTraceHandler(DFDLParser* parser, DFDLServiceTraceHandler* handler);
DFDL_API int DFDLParser_setUserTraceHandler(DFDLParser* parser, DFDLUserTraceHandler* handler);
/* The allocator for what lives as long as one message; null goes back to the process's own. */
DFDL_API int DFDLParser_setMessageHeap(DFDLParser* parser, DFDLHeap* heap);
/* The input: either comes in place of the other, and drops what the parser held of it. A document is read in
 * place, not copied; `length` in bytes. */
DFDL_API int DFDLParser_setBufferHandler(DFDLParser* parser, DFDLBufferHandler* handler);
DFDL_API int DFDLParser_setInputDocument(DFDLParser* parser, const uint8_t* bytes, DFDLWORD length);
/* A null or empty namespace means none; a null name, that no root element is set. */
DFDL_API int DFDLParser_setRootElement(DFDLParser* parser, const DFDLChar* name,
                                       const DFDLChar* namespaceUri);
DFDL_API int DFDLParser_setFeature(DFDLParser* parser, const char* feature, DFDLBoolean value);
/* Also while a parse is in progress. On 3 *value is left alone. */
DFDL_API int DFDLParser_getFeature(DFDLParser* parser, const char* feature, DFDLBoolean* value);
/* "de", "en", "es", "fr", "it", "ja", "ko", "pl", "pt_BR", "ru", "tr", "zh_TW", "zh_CN" or "zh", in any case
 * of letters. A language without texts of its own shows the English ones. 1 if no texts could be loaded,
 * which is told to the error handler. */
DFDL_API int DFDLParser_setTraceAndErrorLanguage(DFDLParser* parser, const char* language);

/* External variables of the grammar, which must be set before: 2 also while no grammar is set. A null
 * namespace means none. 1 if there is no such variable, it is not external, or the value does not fit its
 * type, each of which is told to the error handler as a processing error. */
DFDL_API int DFDLParser_setVariableBoolean(DFDLParser* parser, const DFDLChar* name,
                                           const DFDLChar* namespaceUri, DFDLBoolean value);
DFDL_API int DFDLParser_setVariableByte(DFDLParser* parser, const DFDLChar* name,
                                        const DFDLChar* namespaceUri, int8_t value);
/* Returns 1 on success and 0 on failure, unlike all the others, and 2 as they do. */
DFDL_API int DFDLParser_setVariableUByte(DFDLParser* parser, const DFDLChar* name,
                                         const DFDLChar* namespaceUri, uint8_t value);
DFDL_API int DFDLParser_setVariableShort(DFDLParser* parser, const DFDLChar* name,
                                         const DFDLChar* namespaceUri, int16_t value);
DFDL_API int DFDLParser_setVariableUShort(DFDLParser* parser, const DFDLChar* name,
                                          const DFDLChar* namespaceUri, uint16_t value);
DFDL_API int DFDLParser_setVariableInt(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                       int32_t value);
DFDL_API int DFDLParser_setVariableUInt(DFDLParser* parser, const DFDLChar* name,
                                        const DFDLChar* namespaceUri, uint32_t value);
DFDL_API int DFDLParser_setVariableLong(DFDLParser* parser, const DFDLChar* name,
                                        const DFDLChar* namespaceUri, int64_t value);
DFDL_API int DFDLParser_setVariableULong(DFDLParser* parser, const DFDLChar* name,
                                         const DFDLChar* namespaceUri, uint64_t value);
DFDL_API int DFDLParser_setVariableFloat(DFDLParser* parser, const DFDLChar* name,
                                         const DFDLChar* namespaceUri, float value);
DFDL_API int DFDLParser_setVariableDouble(DFDLParser* parser, const DFDLChar* name,
                                          const DFDLChar* namespaceUri, double value);
/* `length` in units here, in bytes below. A null value or a negative length is an empty one. */
DFDL_API int DFDLParser_setVariableString(DFDLParser* parser, const DFDLChar* name,
                                          const DFDLChar* namespaceUri, const DFDLChar* value,
                                          int32_t length);
DFDL_API int DFDLParser_setVariableBinary(DFDLParser* parser, const DFDLChar* name,
                                          const DFDLChar* namespaceUri, const uint8_t* value,
                                          DFDLWORD length);
/* `digits` is read up to its terminator, whatever `length` says. Text that is no number is told to the error
 * handler; the result is 0 all the same, and the variable stays as it was. */
DFDL_API int DFDLParser_setVariableDecimal(DFDLParser* parser, const DFDLChar* name,
                                           const DFDLChar* namespaceUri, const char* digits, int32_t length);
DFDL_API int DFDLParser_setVariableCalendar(DFDLParser* parser, const DFDLChar* name,
                                            const DFDLChar* namespaceUri, const DFDLCalendar* value);

/* Parsing. These return 1 for success or "there is more", 0 otherwise. *result: 0 success, 1 failure, 2
 * refused (no grammar, no root element, DFDLParser_parseAll during a stepped parse); `result` may be null.
 *
 * DFDLParser_parseAll reads one message and readies the parser for the next. In an input document the next
 * call goes on behind the message before it, if data are left there.
 *
 * Step by step: while DFDLParser_hasNext returns 1, DFDLParser_parseNext makes one step; then
 * DFDLParser_resetParser ends the parse, which is in progress until then. DFDLParser_parseRemaining makes all
 * steps that are left, and resets. DFDLParser_hasNext leaves *result alone once the last event has been
 * delivered; DFDLParser_parseNext and DFDLParser_parseRemaining leave it alone if memory has run out. */
DFDL_API int DFDLParser_parseAll(DFDLParser* parser, int* result);
DFDL_API int DFDLParser_hasNext(DFDLParser* parser, int* result);
DFDL_API int DFDLParser_parseNext(DFDLParser* parser, int* result);
DFDL_API int DFDLParser_parseRemaining(DFDLParser* parser, int* result);
/* Drops a parse in progress, the input's unread buffers included. Not from inside a callback. Always 0. */
DFDL_API int DFDLParser_resetParser(DFDLParser* parser);

/* ---- Build identification ---------------------------------------------------------------------------- */

/* Texts and numbers that stay as long as the library is loaded. */
DFDL_API const char* DFDL_getBuildVersion(void);
DFDL_API const char* DFDL_getBuildStream(void);
DFDL_API const char* DFDL_getBuildID(void);
DFDL_API const char* DFDL_getBuildPlatform(void);
DFDL_API const char* DFDL_getBuildType(void);
DFDL_API int DFDL_getBuildBits(void);
/* No place to store to may be null. */
DFDL_API void DFDL_getBuildVRMF(int* version, int* release, int* modification, int* fix);

#ifdef __cplusplus
}
#endif

#endif
