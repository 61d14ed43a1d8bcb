#include "dfdl/processor/dfdlparserimpl.h"

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdldiagnostic.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dfdldochandler.h"
#include "dfdl/processor/dochandleradapter.h"
#include "dfdl/processor/dochandlereventbuffer.h"
#include "dfdl/processor/errorhandlereventbuffer.h"
#include "dfdl/variables/variablemanager.h"

namespace {

// Fields are filled one by one, so that a parser whose construction fails half-way can be deleted.
void construct(DFDLParserImpl* parser) {
    DFDLHeapAdapter* heap = parser->heap;
    const DFDLHeapImpl process = DFDLHeap_orDefault(nullptr);
    parser->context = heap->context;
    parser->messageHeap =
        new_DFDLHeapAdapterForMessageHeap(process.userData, process.mallocCallback, process.callocCallback,
                                          process.reallocCallback, process.freeCallback, heap);
    parser->resourceCatalog = new_ResourceCatalog(heap, parser->context);
    DFDLPoolingFactory_setOriginatingComponent(heap->poolingFactory, 0);
    parser->constants = new_DFDLConstants(heap);
    parser->charsetManager = new_CharsetManager(heap, parser->constants, parser->context);
    parser->bufferManager = new_BufferManager(heap, parser->constants, parser->context, nullptr,
                                              parser->charsetManager, parser->resourceCatalog);
    parser->variableManager = new_VariableManager(heap, parser->context);
    parser->docEventBuffer = new_DocHandlerEventBuffer(heap);
    parser->errorEventBuffer = new_ErrorHandlerEventBuffer(heap, parser->context, parser->resourceCatalog);
    parser->backtrackingManager = new_BacktrackingManager(heap);
    parser->stringLiteralCache = new_StringLiteralCache(heap, CompiledMarkupSetDeleteFunction);
    parser->delimitedScanner = new_DelimitedScannerBytes(heap, parser->context);
    parser->traceAdapter = new_TraceHandlerAdapter(heap, parser->context, parser->resourceCatalog);
    parser->bufferManager->trace = parser->traceAdapter;
    parser->variableManager->trace = parser->traceAdapter;
    parser->hasNextStage = DFDLParserImpl_hasNextWithSetup;
    parser->messageBuffer = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, DIAGNOSTIC_CAPACITY);
}

void deleteHandlersAndBuffers(DFDLParserImpl* parser) {
    delete_ParserRegionHandler(parser->regionHandler);
    delete_PIFIteratorForParser(parser->iterator);
    delete_VariableManager(parser->variableManager);
    delete_BacktrackingManager(parser->backtrackingManager);
    delete_DocHandlerEventBuffer(parser->docEventBuffer);
    delete_ErrorHandlerEventBuffer(parser->errorEventBuffer);
    delete_DocHandlerAdapter(parser->docHandlerAdapter);
    delete_ResourceCatalog(parser->resourceCatalog);
    delete_DFDLUString(parser->rootElementName);
    delete_DFDLUString(parser->rootElementNamespace);
    delete_BufferManager(parser->bufferManager);
    delete_CharsetManager(parser->charsetManager);
    if (parser->ownsDocHandler != 0) delete_DoNothingDocHandler(parser->docHandler);
    delete_DelimitedScannerBytes(parser->delimitedScanner);
    delete_StringLiteralCache(parser->stringLiteralCache);
    delete_TraceHandlerAdapter(parser->traceAdapter);
    delete_DFDLConstants(parser->constants);
    if (parser->messageHeap != nullptr) delete_DFDLHeapAdapterForMessageHeap(parser->messageHeap);
}

// A parse that was given up leaves points of uncertainty open. What they hold is dropped before the walk ends
// them, since that would deliver it, and their marks are released while the buffers still stand.
void discardHeldEvents(DFDLParserImpl* parser) {
    DocHandlerEventBuffer_discardEventsAfterIndex(parser->docEventBuffer, 0);
    parser->docEventBuffer->holdLevel = 0;
    ErrorHandlerEventBuffer_discard(parser->errorEventBuffer);
}

void destruct(DFDLParserImpl* parser) {
    DFDLPoolingFactory_setDestructing(parser->heap->poolingFactory);
    ProcessingError_reset(parser->heap->context->currentError);
    DFDLBufferFactory_FreeUBuffer(parser->heap->bufferFactory, parser->messageBuffer);
    deleteHandlersAndBuffers(parser);
}

}  // namespace

DFDLParserImpl* new_DFDLParserImpl(const DFDLHeapImpl* heap) {
    Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> adapter(new_DFDLHeapAdapterFromHeap(heap));
    auto* parser = DFDLHeapAdapter_new<DFDLParserImpl>(adapter.get());
    adapter.release();
    Owned<DFDLParserImpl, delete_DFDLParserImpl> guard(parser);
    construct(parser);
    return guard.release();
}

void delete_DFDLParserImpl(DFDLParserImpl* this_) {
    if (this_ == nullptr) return;
    DFDLHeapAdapter* heap = this_->heap;
    destruct(this_);
    DFDLHeapAdapter_objectDeallocate(heap, this_);
    delete_DFDLHeapAdapter(heap);
}

int DFDLParserImpl_resetParser(DFDLParserImpl* this_) {
    this_->parseInProgress = 0;
    discardHeldEvents(this_);
    if (this_->iterator != nullptr) PIFIteratorForParser_reset(this_->iterator);
    discardHeldEvents(this_);
    BufferManager_clear(this_->bufferManager);
    DFDLPoolingFactory_reset(this_->heap->poolingFactory);
    CharsetManager_reset(this_->charsetManager, false);
    DelimitedScannerBytes_reset(this_->delimitedScanner);
    StringLiteralCache_reset(this_->stringLiteralCache);
    VariableManager_reset(this_->variableManager);
    if (this_->hasCustomMessageHeap != 0) DFDLBufferFactory_reset(this_->messageHeap->bufferFactory);
    if (this_->hasNextStage != DFDLParserImpl_hasNextWithSetup) {
        this_->hasNextStage = DFDLParserImpl_hasNextWithInit;
    }
    ProcessingError_reset(this_->context->currentError);
    return 0;
}
