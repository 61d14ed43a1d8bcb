#include "dfdl/pif/pifwrapperaccess.h"

#include "dfdl/pif/cpifloader.h"
#include "dfdl/pif/dfdlgrammar.h"
#include "dfdl/pifwrapper.h"

namespace {

// What consumers of traces know this function by.
constexpr char ENTRY_NAME[] =
    "new_DFDLGrammarFromPIFGenerator(DFDLHeap*, void*, size_t, DFDLServiceTraceHandler*, int*)";
constexpr char EXIT_NAME[] =
    "new_DFDLGrammarFromPIFGenerator(DFDLHeap*, PIFGenerator::MPIF*, size_t, DFDLServiceTraceHandler*, int*)";

bool loadWrapper(sPIF* pif, const GrammarSource& source, int* resultCode) {
    return LoadPIFFromWrappedPIF(pif, static_cast<const PIFWrapper::MPIF*>(source.place), resultCode);
}

}  // namespace

const PIF::MPIF* PIFWrapper_message(const PIFWrapper::MPIF* wrapper) {
    return wrapper == nullptr ? nullptr : wrapper->pPIF();
}

DFDLGrammar* new_DFDLGrammarFromPIFWrapper(DFDLHeap* heap, PIFWrapper::MPIF* wrapper,
                                           DFDLServiceTraceHandler* handler, int* resultCode) {
    if (wrapper == nullptr) {
        *resultCode = DFDL_GRAMMAR_NO_MEMORY;
        return nullptr;
    }
    return DFDLGrammar_make(heap, {ENTRY_NAME, EXIT_NAME, loadWrapper, wrapper, 0, "%p%p%p%p"}, handler,
                            resultCode);
}
