#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dfdldochandler.h"
#include "dfdl/processor/dfdlparserimpl.h"
#include "dfdl/processor/dochandleradapter.h"
#include "dfdl/processor/dochandlereventbuffer.h"
#include "dfdl/processor/errorhandlereventbuffer.h"
#include "dfdl/variables/variablemanager.h"

namespace {

void raise(DFDLParserImpl* parser, const char* key, int32_t kind) {
    ProcessingError_setValues(parser->context->currentError, __FILE__, __LINE__, key, kind, SUBKIND_NONE,
                              nullptr);
    DFDLParserImpl_processError(parser);
}

void useBuiltInDocHandler(DFDLParserImpl* parser) {
    parser->docHandler = new_DoNothingDocHandler(parser->heap);
    parser->ownsDocHandler = 1;
    if (parser->errorHandler == nullptr) return;
    raise(parser, DFDLParser_NoDocHandlerSupplied, ERROR_WARNING);
    ProcessingError_reset(parser->context->currentError);
}

// What the caller must have set; a ParseResult.
int checkSettings(DFDLParserImpl* parser) {
    if (parser->docHandler == nullptr) useBuiltInDocHandler(parser);
    if (parser->grammar == nullptr) {
        raise(parser, DFDLParser_NoGrammarSupplied, ERROR_PROCESSING);
        return PARSE_REFUSED;
    }
    if (parser->rootElementName == nullptr) {
        raise(parser, DFDLParser_RootElementNotSpecified, ERROR_PROCESSING);
        return PARSE_REFUSED;
    }
    return PARSE_SUCCESS;
}

// The flag of small integers is read here alone, when the adapter is made.
void wireEvents(DFDLParserImpl* parser) {
    if (parser->docHandlerAdapter == nullptr) {
        parser->docHandlerAdapter = new_DocHandlerAdapter(
            parser->heap, parser->context, parser->resourceCatalog, parser->fastSmallIntegers != 0);
    }
    DocHandlerAdapter* adapter = parser->docHandlerAdapter;
    adapter->docHandler = parser->docHandler;
    adapter->errorHandler = parser->errorHandler;
    adapter->regionHandler = parser->userRegionHandler;
    adapter->messageHeap = parser->messageHeap;
    parser->docEventBuffer->chainedBuffer = nullptr;
    parser->docEventBuffer->adapter = adapter;
    parser->errorEventBuffer->errorHandler = parser->errorHandler;
    parser->errorEventBuffer->messageHeap = parser->messageHeap;
}

void wireRegionHandler(DFDLParserImpl* parser) {
    if (parser->regionHandler == nullptr) {
        parser->regionHandler =
            new_ParserRegionHandler(parser->heap, parser->constants, parser->context, parser->bufferManager,
                                    parser->charsetManager, parser->traceAdapter);
    }
    parser->regionHandler->validationEnabled = parser->validationEnabled;
    parser->regionHandler->scanner = parser->delimitedScanner;
    parser->regionHandler->stringLiteralCache = parser->stringLiteralCache;
}

void wireScanner(DFDLParserImpl* parser) {
    DelimitedScannerBytes* scanner = parser->delimitedScanner;
    scanner->buffer = parser->bufferManager;
    scanner->charsetManager = parser->charsetManager;
    scanner->literalCache = parser->stringLiteralCache;
}

void wireIterator(DFDLParserImpl* parser) {
    if (parser->iterator == nullptr) parser->iterator = new_PIFIteratorForParser(parser, parser->constants);
    PIFIteratorForParser* iterator = parser->iterator;
    iterator->messageHeap = parser->messageHeap;
    iterator->traceAdapter = parser->traceAdapter;
    iterator->delimitedScanner = parser->delimitedScanner;
    parser->delimitedScanner->iterator = iterator;
    iterator->eventBuffer = parser->docEventBuffer;
    iterator->parserRegionHandler = parser->regionHandler;
    iterator->userRegionHandler = parser->userRegionHandler;
    parser->regionHandler->pifIterator = iterator;
    iterator->validationEnabled = parser->validationEnabled;
    parser->backtrackingManager->eventBuffer = parser->docEventBuffer;
    parser->backtrackingManager->bufferManager = parser->bufferManager;
    parser->backtrackingManager->iterator = iterator;
    parser->backtrackingManager->errorEventBuffer = parser->errorEventBuffer;
    if (PIFIteratorForParser_getPIF(iterator) == parser->grammar) return;
    CharsetManager_setPif(parser->charsetManager, parser->grammar);
    ParserRegionHandler_setPIF(parser->regionHandler, parser->grammar);
    DelimitedScannerBytes_setPIF(parser->delimitedScanner, parser->grammar);
    PIFIteratorForParser_setPIF(iterator, parser->grammar);
}

void loadInput(DFDLParserImpl* parser) {
    if (parser->inputDocument != nullptr) {
        BufferManager_setInputDocument(parser->bufferManager, parser->inputDocument,
                                       parser->inputDocumentLength);
    } else if (parser->streamInput != 0) {
        BufferManager_loadFirstBuffer(parser->bufferManager);
    }
}

}  // namespace

int DFDLParserImpl_parseSetup(DFDLParserImpl* this_) {
    if (!ResourceCatalog_openResource(this_->resourceCatalog)) {
        DFDLParserImpl_reportFatal(this_, "Fatal error: DFDL resources could not be loaded");
        return PARSE_FAILURE;
    }
    ProcessingError_reset(this_->context->currentError);
    this_->context->trace = this_->traceAdapter;
    const int checked = checkSettings(this_);
    if (checked != PARSE_SUCCESS) return checked;
    wireEvents(this_);
    wireRegionHandler(this_);
    wireScanner(this_);
    wireIterator(this_);
    if (DFDLParserImpl_parseInitialize(this_) != PARSE_SUCCESS) return PARSE_FAILURE;
    this_->hasNextStage = DFDLParserImpl_hasNextNormal;
    return PARSE_SUCCESS;
}

int DFDLParserImpl_parseInitialize(DFDLParserImpl* this_) {
    Context* context = this_->context;
    ProcessingError_reset(context->currentError);
    const bool rootFound = PIFIteratorForParser_setRootElement(this_->iterator, this_->rootElementName,
                                                               this_->rootElementNamespace);
    if (!rootFound) {
        ProcessingError_setValues(context->currentError, __FILE__, __LINE__, DFDLParser_nullRootElement,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%Z", this_->rootElementName);
        DFDLParserImpl_processError(this_);
        return PARSE_FAILURE;
    }
    ParserRegionHandler_reset(this_->regionHandler);
    loadInput(this_);
    VariableManager_calculateDefaultValues(this_->variableManager);
    if (ProcessingError_isSet(context->currentError)) {
        DFDLParserImpl_processError(this_);
        BufferManager_clear(this_->bufferManager);
        DFDLBufferFactory_reset(this_->messageHeap->bufferFactory);
        return PARSE_FAILURE;
    }
    this_->hasNextStage = DFDLParserImpl_hasNextNormal;
    return PARSE_SUCCESS;
}
