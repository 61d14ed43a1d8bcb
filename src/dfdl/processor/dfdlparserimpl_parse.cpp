#include <cstdlib>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/buffer/dfdlbytebuffer.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldiagnostic.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dfdldochandler.h"
#include "dfdl/processor/dfdlerrorhandler.h"
#include "dfdl/processor/dfdlparserimpl.h"

namespace {

bool failed(const DFDLParserImpl* parser) { return ProcessingError_isFailure(parser->context->currentError); }

void store(int* result, int value) {
    if (result != nullptr) *result = value;
}

// Brings the parser to where a parse can start; a ParseResult.
int prepare(DFDLParserImpl* parser) {
    if (parser->hasNextStage == DFDLParserImpl_hasNextWithSetup) return DFDLParserImpl_parseSetup(parser);
    if (parser->hasNextStage == DFDLParserImpl_hasNextWithInit) return DFDLParserImpl_parseInitialize(parser);
    return PARSE_SUCCESS;
}

void startDocument(DFDLParserImpl* parser) {
    DFDLDocHandlerImpl* handler = parser->docHandler;
    if (handler->startDocument != nullptr) handler->startDocument(handler, "1.0", u"", 0);
    parser->parseInProgress = 1;
}

// Unread data behind the message, where they are not to be ignored. The rest of a byte that the message has a
// part of is none.
bool hasUnknownData(DFDLParserImpl* parser) {
    BufferManager* buffer = parser->bufferManager;
    const int64_t position = (BufferManager_bitPosition(buffer) + 7) >> 3;
    if (parser->ignoreTrailingData != 0 || BufferManager_endOfDataStream(buffer)) return false;
    const auto byte = static_cast<uint8_t>(BufferManager_peekByte(buffer, position, nullptr));
    ProcessingError_reset(parser->context->currentError);
    ProcessingError_setValues(parser->context->currentError, __FILE__, __LINE__, DFDLParser_unknownData,
                              ERROR_PROCESSING, SUBKIND_NONE, "%lld%02hX", static_cast<long long>(position),
                              byte);
    return true;
}

// The next parse of an input document starts at the first byte that this one left.
void advanceInputDocument(DFDLParserImpl* parser) {
    if (parser->inputDocument == nullptr || BufferManager_endOfDataStream(parser->bufferManager)) return;
    const DFDLByteBufferImpl* current = parser->bufferManager->currentBuffer;
    if (current == nullptr) return;
    parser->inputDocument = current->data + current->position;
    parser->inputDocumentLength -= current->position;
}

void endDocument(DFDLParserImpl* parser) {
    const int64_t bits = BufferManager_bitPosition(parser->bufferManager);
    DFDLDocHandlerImpl* handler = parser->docHandler;
    if (handler->endDocument != nullptr)
        handler->endDocument(handler, (bits >> 3) + ((bits & 7) != 0 ? 1 : 0));
    advanceInputDocument(parser);
}

void abandonWalk(DFDLParserImpl* parser) {
    PIFIteratorForParser_collapseStack(parser->iterator);
    if (parser->bufferHandler != nullptr) BufferManager_clear(parser->bufferManager);
}

// The walk is over: the end of the document, or what was found in its place.
bool finishMessage(DFDLParserImpl* parser) {
    parser->hasNextStage = DFDLParserImpl_hasNextComplete;
    PIFIteratorForParser_collapseStack(parser->iterator);
    if (hasUnknownData(parser)) return false;
    endDocument(parser);
    return true;
}

// A stepped parse makes one step at a time; who watches a parse sees every part of it.
bool mayRunAhead(const DFDLParserImpl* parser) {
    return parser->context->userTraceOn == 0 && parser->userRegionHandler == nullptr &&
           parser->validationEnabled == 0;
}

bool parseMessage(DFDLParserImpl* parser) {
    startDocument(parser);
    parser->iterator->runsAhead = mayRunAhead(parser) ? 1U : 0U;
    ContextItemForParser* root = parser->iterator->currentItem;
    if (root != nullptr) root->functions->processAll(root);
    if (failed(parser)) {
        abandonWalk(parser);
        return false;
    }
    return finishMessage(parser);
}

int parseAll(DFDLParserImpl* parser, int* result) {
    if (parser->hasNextStage == DFDLParserImpl_hasNextComplete) {
        store(result, PARSE_SUCCESS);
        return 1;
    }
    const int prepared = prepare(parser);
    if (prepared != PARSE_SUCCESS) {
        store(result, prepared);
        return 0;
    }
    const bool parsed = parseMessage(parser);
    DFDLParserImpl_processError(parser);
    DFDLParserImpl_resetParser(parser);
    store(result, parsed ? PARSE_SUCCESS : PARSE_FAILURE);
    return parsed ? 1 : 0;
}

bool step(DFDLParserImpl* parser) {
    parser->iterator->runsAhead = 0;
    const bool over = PIFIteratorForParser_move(parser->iterator);
    if (failed(parser)) {
        abandonWalk(parser);
        return false;
    }
    if (!over) return true;
    const bool finished = finishMessage(parser);
    if (parser->bufferHandler != nullptr) BufferManager_clear(parser->bufferManager);
    return finished;
}

int parseNextState(DFDLParserImpl* parser, int* result) {
    bool parsed = true;
    if (parser->parseInProgress == 0) {
        const int prepared = prepare(parser);
        if (prepared != PARSE_SUCCESS) {
            store(result, prepared);
            return 0;
        }
        startDocument(parser);
    } else if (parser->hasNextStage == DFDLParserImpl_hasNextComplete) {
        return 1;
    } else {
        parsed = step(parser);
    }
    DFDLParserImpl_processError(parser);
    store(result, parsed ? PARSE_SUCCESS : PARSE_FAILURE);
    return parsed ? 1 : 0;
}

int parseRemaining(DFDLParserImpl* parser, int* result) {
    for (;;) {
        const bool more = parser->hasNextStage(parser, result) != 0;
        const bool parsed = !more || parseNextState(parser, result) != 0;
        if (more && parsed) continue;
        DFDLParserImpl_resetParser(parser);
        return parsed ? 1 : 0;
    }
}

// Runs an entry function's work. When memory runs out the parser stays as it stands, to be reset.
template <class Work>
int runEntry(DFDLParserImpl* parser, int onFailure, Work work) {
    parser->context->jumpState = 0;
    try {
        return work();
    } catch (const AllocationFailure& failure) {
        parser->context->jumpState = failure.origin;
        return onFailure;
    }
}

int stepStage(DFDLParserImpl* parser, int* result, int prepared) {
    if (prepared == PARSE_SUCCESS) return DFDLParserImpl_hasNextNormal(parser, result);
    store(result, prepared);
    return 0;
}

struct Delivery {
    int32_t kind;
    DiagnosticType diagnosticType;
    bool fatal;  // in user trace
    bool reset;  // the run goes on
    ErrorSlot slot;
};

constexpr Delivery DELIVERIES[] = {
    {ERROR_PROCESSING, DIAGNOSTIC_PROCESSING_ERROR, true, false, &DFDLErrorHandlerImpl::processingError},
    {ERROR_VALIDATION, DIAGNOSTIC_VALIDATION_ERROR, false, true, &DFDLErrorHandlerImpl::validationError},
    {ERROR_SCHEMA_DEFINITION, DIAGNOSTIC_SCHEMA_DEFINITION_ERROR, true, false,
     &DFDLErrorHandlerImpl::schemaDefinitionError},
    {ERROR_WARNING, DIAGNOSTIC_WARNING, false, false, &DFDLErrorHandlerImpl::warning},
};

// An error of any other kind is a fault of our own; going on would deliver wrong data.
const Delivery& deliveryOf(const ProcessingError* error) {
    for (const Delivery& delivery : DELIVERIES) {
        if (delivery.kind == error->kind) return delivery;
    }
    std::abort();
}

void traceError(DFDLParserImpl* parser, ProcessingError* error, bool fatal) {
    if (parser->context->userTraceOn == 0) return;
    if (fatal) {
        TraceHandlerAdapter_userTraceFatal(parser->traceAdapter, error);
    } else {
        TraceHandlerAdapter_userTraceError(parser->traceAdapter, error);
    }
}

}  // namespace

int DFDLParserImpl_parseAll(DFDLParserImpl* this_, int* result) {
    if (this_->parseInProgress != 0) {
        store(result, PARSE_REFUSED);
        return 0;
    }
    constexpr int OUT_OF_MEMORY = -1;
    const int parsed = runEntry(this_, OUT_OF_MEMORY, [&] { return parseAll(this_, result); });
    if (parsed != OUT_OF_MEMORY) return parsed;
    store(result, PARSE_FAILURE);
    return 0;
}

int DFDLParserImpl_parseNext(DFDLParserImpl* this_, int* result) {
    return runEntry(this_, 0, [&] { return parseNextState(this_, result); });
}

int DFDLParserImpl_parseRemaining(DFDLParserImpl* this_, int* result) {
    return runEntry(this_, 0, [&] { return parseRemaining(this_, result); });
}

int DFDLParserImpl_hasNext(DFDLParserImpl* this_, int* result) { return this_->hasNextStage(this_, result); }

int DFDLParserImpl_hasNextWithSetup(DFDLParserImpl* this_, int* result) {
    return stepStage(this_, result,
                     runEntry(this_, PARSE_FAILURE, [&] { return DFDLParserImpl_parseSetup(this_); }));
}

int DFDLParserImpl_hasNextWithInit(DFDLParserImpl* this_, int* result) {
    return stepStage(this_, result,
                     runEntry(this_, PARSE_FAILURE, [&] { return DFDLParserImpl_parseInitialize(this_); }));
}

int DFDLParserImpl_hasNextNormal(DFDLParserImpl* this_, int* result) {
    const bool more = this_->iterator->currentItem != nullptr;
    store(result, more ? PARSE_SUCCESS : PARSE_FAILURE);
    return more ? 1 : 0;
}

int DFDLParserImpl_hasNextComplete(DFDLParserImpl* this_, int* result) {
    static_cast<void>(this_);
    static_cast<void>(result);
    return 0;
}

void DFDLParserImpl_processError(DFDLParserImpl* this_) {
    ProcessingError* error = this_->context->currentError;
    if (!ProcessingError_isSet(error)) return;
    const Delivery& delivery = deliveryOf(error);
    traceError(this_, error, delivery.fatal);
    DFDLErrorHandlerImpl_deliver(this_->errorHandler, delivery.slot, delivery.diagnosticType, error,
                                 this_->messageHeap, this_->resourceCatalog, this_->messageBuffer);
    if (delivery.reset) ProcessingError_reset(error);
}

void DFDLParserImpl_reportFatal(DFDLParserImpl* this_, const char* text) {
    DFDLErrorHandlerImpl_deliverText(this_->errorHandler, &DFDLErrorHandlerImpl::processingError,
                                     this_->messageHeap, text);
}
