#ifndef DFDL_PROCESSOR_DFDLPARSERIMPL_H
#define DFDL_PROCESSOR_DFDLPARSERIMPL_H

#include <dfdl/dfdl.h>
#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct BacktrackingManager;
struct BufferManager;
struct CharsetManager;
struct Context;
struct DFDLConstants;
struct DFDLUString;
struct DFDLValue;
struct DelimitedScannerBytes;
struct DocHandlerAdapter;
struct DocHandlerEventBuffer;
struct ErrorHandlerEventBuffer;
struct ParserRegionHandler;
struct PIFIteratorForParser;
struct ResourceCatalog;
struct StringLiteralCache;
struct TraceHandlerAdapter;
struct VariableManager;

// What a parse function leaves in its result argument.
enum ParseResult : int { PARSE_SUCCESS = 0, PARSE_FAILURE = 1, PARSE_REFUSED = 2 };

// How much preparation the next parse needs: one of the functions below.
using HasNextStage = int (*)(DFDLParserImpl* this_, int* result);

// The parser that a caller holds. It owns everything that reads for it but the caller's handlers, the grammar
// and the input. One thread at a time drives it.
struct DFDLParserImpl {
    DFDLHeapAdapter* heap;                       // what lives as long as the parser
    DFDLHeapAdapterForMessageHeap* messageHeap;  // what lives for one message
    uint32_t hasCustomMessageHeap;
    Context* context;
    ParserRegionHandler* regionHandler;
    DFDLDocHandlerImpl* docHandler;
    uint32_t ownsDocHandler;  // the built-in one that does nothing
    DFDLErrorHandlerImpl* errorHandler;
    DFDLBufferHandlerImpl* bufferHandler;
    BufferManager* bufferManager;
    CharsetManager* charsetManager;
    const sPIF* grammar;
    PIFIteratorForParser* iterator;
    BacktrackingManager* backtrackingManager;
    DocHandlerEventBuffer* docEventBuffer;
    ErrorHandlerEventBuffer* errorEventBuffer;
    VariableManager* variableManager;
    uint32_t parseInProgress;  // from the document start to the reset
    uint32_t streamInput;      // through a buffer handler
    DocHandlerAdapter* docHandlerAdapter;
    DFDLRegionHandlerImpl* userRegionHandler;
    DFDLConstants* constants;
    DFDLUString* rootElementName;
    DFDLUString* rootElementNamespace;
    uint32_t validationEnabled;
    uint32_t ignoreTrailingData;
    uint32_t fastSmallIntegers;
    ResourceCatalog* resourceCatalog;
    StringLiteralCache* stringLiteralCache;
    DelimitedScannerBytes* delimitedScanner;
    TraceHandlerAdapter* traceAdapter;
    DFDLServiceTraceHandlerImpl* serviceTraceHandler;
    DFDLUserTraceHandlerImpl* userTraceHandler;
    UChar* messageBuffer;  // DIAGNOSTIC_CAPACITY units
    const uint8_t* inputDocument;
    int64_t inputDocumentLength;  // bytes
    HasNextStage hasNextStage;
};

// Null for a null heap means the process's allocator. Throws AllocationFailure.
DFDLParserImpl* new_DFDLParserImpl(const DFDLHeapImpl* heap);
void delete_DFDLParserImpl(DFDLParserImpl* this_);

int DFDLParserImpl_hasNextWithSetup(DFDLParserImpl* this_, int* result);  // a setter has changed something
int DFDLParserImpl_hasNextWithInit(DFDLParserImpl* this_, int* result);   // wired; the last parse was reset
int DFDLParserImpl_hasNextNormal(DFDLParserImpl* this_, int* result);     // a parse can be stepped
int DFDLParserImpl_hasNextComplete(DFDLParserImpl* this_, int* result);   // the last event is out
int DFDLParserImpl_hasNext(DFDLParserImpl* this_, int* result);

int DFDLParserImpl_parseAll(DFDLParserImpl* this_, int* result);
int DFDLParserImpl_parseNext(DFDLParserImpl* this_, int* result);
int DFDLParserImpl_parseRemaining(DFDLParserImpl* this_, int* result);
int DFDLParserImpl_resetParser(DFDLParserImpl* this_);

// Preparation, a ParseResult. Setup wires everything anew and then initialises.
int DFDLParserImpl_parseSetup(DFDLParserImpl* this_);
int DFDLParserImpl_parseInitialize(DFDLParserImpl* this_);

// Delivers the error in the current record, if there is one. An internal error ends the process.
void DFDLParserImpl_processError(DFDLParserImpl* this_);
// A diagnostic without a record, for when messages themselves cannot be had.
void DFDLParserImpl_reportFatal(DFDLParserImpl* this_, const char* text);

int DFDLParserImpl_setGrammar(DFDLParserImpl* this_, const sPIF* grammar);
int DFDLParserImpl_setDocumentHandler(DFDLParserImpl* this_, DFDLDocHandlerImpl* handler);
int DFDLParserImpl_setErrorHandler(DFDLParserImpl* this_, DFDLErrorHandlerImpl* handler);
int DFDLParserImpl_setRegionHandler(DFDLParserImpl* this_, DFDLRegionHandlerImpl* handler);
int DFDLParserImpl_setServiceTraceHandler(DFDLParserImpl* this_, DFDLServiceTraceHandlerImpl* handler);
int DFDLParserImpl_setUserTraceHandler(DFDLParserImpl* this_, DFDLUserTraceHandlerImpl* handler);
int DFDLParserImpl_setMessageHeap(DFDLParserImpl* this_, const DFDLHeapImpl* heap);
int DFDLParserImpl_setBufferHandler(DFDLParserImpl* this_, DFDLBufferHandlerImpl* handler);
int DFDLParserImpl_setInputDocument(DFDLParserImpl* this_, const uint8_t* bytes, int64_t length);
int DFDLParserImpl_setRootElement(DFDLParserImpl* this_, const UChar* name, const UChar* namespaceUri);
int DFDLParserImpl_setFeature(DFDLParserImpl* this_, const char* feature, bool value);
int DFDLParserImpl_getFeature(DFDLParserImpl* this_, const char* feature, DFDLBoolean* value);
int DFDLParserImpl_setTraceAndErrorLanguage(DFDLParserImpl* this_, const char* language);

// Adopts the value. 1 set, 0 not set and the error told.
int DFDLParserImpl_setVariable(DFDLParserImpl* this_, const UChar* name, const UChar* namespaceUri,
                               DFDLValue* value);
// 2 unless variables can be set now: a grammar, and no parse in progress.
bool DFDLParserImpl_canSetVariables(const DFDLParserImpl* this_);

#endif
