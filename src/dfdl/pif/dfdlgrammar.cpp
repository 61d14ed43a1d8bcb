#include "dfdl/pif/dfdlgrammar.h"

#include <new>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlheap.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/cpifloader.h"
#include "dfdl/pif/patternmanager.h"
#include "dfdl/pif/spif.h"

namespace {

using Heap = Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter>;
using Grammar = Owned<sPIF, delete_PIF>;

// Service trace for one load. The grammar outlives it, so it leaves nothing in the context.
class LoadTrace {
  public:
    LoadTrace(DFDLHeapAdapter* heap, DFDLServiceTraceHandler* handler) : context_(heap->context) {
        if (handler == nullptr) return;
        catalog_.reset(new_ResourceCatalog(heap, context_));
        adapter_.reset(new_TraceHandlerAdapter(heap, context_, catalog_.get()));
        context_->trace = adapter_.get();
        TraceHandlerAdapter_setServiceTraceHandler(adapter_.get(), handler);
    }
    ~LoadTrace() {
        context_->serviceTraceOn = 0;
        context_->userTraceOn = 0;
        context_->trace = nullptr;
    }
    LoadTrace(const LoadTrace&) = delete;
    LoadTrace& operator=(const LoadTrace&) = delete;

    void entry(const GrammarSource& source, const void* heap, const void* handler, const void* resultCode) {
        if (adapter_ == nullptr) return;
        TraceHandlerAdapter_entryData(adapter_.get(), source.entryName, source.entryFormat, heap,
                                      source.place, handler, resultCode);
    }
    void exit(const GrammarSource& source, bool loaded) {
        if (adapter_ == nullptr) return;
        TraceHandlerAdapter_exitData(adapter_.get(), source.exitName, "%s", loaded ? "true" : "false");
    }

  private:
    Context* context_;
    Owned<ResourceCatalog, delete_ResourceCatalog> catalog_;
    Owned<TraceHandlerAdapter, delete_TraceHandlerAdapter> adapter_;
};

sPIF* make(DFDLHeap* heap, const GrammarSource& source, DFDLServiceTraceHandler* handler, int* resultCode) {
    Heap adapter(new_DFDLHeapAdapterFromHeap(heap));
    Grammar grammar(new_PIF(adapter.get(), adapter->context));
    LoadTrace trace(adapter.get(), handler);
    trace.entry(source, heap, handler, resultCode);
    const bool loaded = source.load(grammar.get(), source, resultCode);
    grammar->patternManager->context = nullptr;
    trace.exit(source, loaded);
    if (!loaded) return nullptr;
    adapter.release();  // the grammar's own from here on
    return grammar.release();
}

bool loadFile(sPIF* pif, const GrammarSource& source, int* resultCode) {
    return LoadPIF(pif, static_cast<const char*>(source.place), resultCode);
}

bool loadBytes(sPIF* pif, const GrammarSource& source, int* resultCode) {
    return LoadPIFFromStream(pif, static_cast<const char*>(source.place), source.length, resultCode);
}

constexpr char FILE_NAME[] =
    "new_DFDLGrammarFromFile(DFDLHeap*, const char*, DFDLServiceTraceHandler*, int*)";
constexpr char BYTES_NAME[] =
    "new_DFDLGrammarFromByteArray(DFDLHeap*, const char*, size_t, DFDLServiceTraceHandler*, int*)";

}  // namespace

// Protocol Buffers take their memory from the process, whose failure is one of memory too.
sPIF* DFDLGrammar_make(DFDLHeap* heap, const GrammarSource& source, DFDLServiceTraceHandler* handler,
                       int* resultCode) noexcept {
    try {
        return make(heap, source, handler, resultCode);
    } catch (const AllocationFailure&) {
        *resultCode = DFDL_GRAMMAR_NO_MEMORY;
    } catch (const std::bad_alloc&) {
        *resultCode = DFDL_GRAMMAR_NO_MEMORY;
    }
    return nullptr;
}

DFDLGrammar* new_DFDLGrammarFromFile(DFDLHeap* heap, const char* path, DFDLServiceTraceHandler* handler,
                                     int* resultCode) {
    return DFDLGrammar_make(heap, {FILE_NAME, FILE_NAME, loadFile, path, 0, "%p%s%p%p"}, handler, resultCode);
}

DFDLGrammar* new_DFDLGrammarFromByteArray(DFDLHeap* heap, const char* bytes, size_t length,
                                          DFDLServiceTraceHandler* handler, int* resultCode) {
    return DFDLGrammar_make(heap, {BYTES_NAME, BYTES_NAME, loadBytes, bytes, length, "%p%p%p%p"}, handler,
                            resultCode);
}

void delete_DFDLGrammar(DFDLGrammar* grammar) {
    if (grammar == nullptr) return;
    DFDLHeapAdapter* heap = grammar->heap;
    DFDLPoolingFactory_setDestructing(heap->poolingFactory);
    delete_PIF(grammar);
    delete_DFDLHeapAdapter(heap);
}
