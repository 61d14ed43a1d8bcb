#include "dfdl/foundation/context.h"

#include <utility>

#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"

Context* new_Context(DFDLHeapAdapter* heap) {
    Owned<Context, delete_Context> this_(DFDLHeapAdapter_new<Context>(heap));
    this_->jumpState = -1;
    this_->activeError = this_->currentError = new_ProcessingError(heap);
    this_->standbyError = new_ProcessingError(heap);
    // ICU always has a default converter; it can only be out of memory for it.
    UErrorCode status = U_ZERO_ERROR;
    this_->defaultConverter = ucnv_open(nullptr, &status);
    if (this_->defaultConverter == nullptr) DFDLHeapAdapter_refuse(heap);
    return this_.release();
}

void delete_Context(Context* this_) {
    if (this_ == nullptr) return;
    delete_ProcessingError(this_->activeError);
    delete_ProcessingError(this_->standbyError);
    ucnv_close(this_->defaultConverter);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void Context_swapErrors(Context* this_) {
    std::swap(this_->activeError, this_->standbyError);
    this_->currentError = this_->activeError;
}
