#include "dfdl/foundation/dfdldiagnostic.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"

namespace {

DFDLDiagnosticImpl* newDiagnostic(DFDLHeapAdapter* heap, UConverter* converter, const char* code,
                                  int32_t type) {
    auto* diagnostic = DFDLHeapAdapter_new<DFDLDiagnosticImpl>(heap);
    diagnostic->code = new_DFDLUString_fromCString(heap, heap, converter, code, -1);
    diagnostic->type = type;
    return diagnostic;
}

void give(const DFDLUString* string, const DFDLChar** characters, int32_t* length) {
    if (characters != nullptr) *characters = string == nullptr ? nullptr : string->chars;
    if (length != nullptr) *length = DFDLUString_length(string);
}

}  // namespace

DFDLDiagnosticImpl* new_DFDLDiagnosticImplFromProsError(DFDLHeapAdapter* heap, UConverter* converter,
                                                        const ProcessingError* record,
                                                        ResourceCatalog* catalog, UChar* buffer,
                                                        int32_t type) {
    const char* code = record->key == nullptr ? "" : record->key;
    DFDLDiagnosticImpl* this_ = newDiagnostic(heap, converter, code, type);
    const UChar* text = ResourceCatalog_GetStringFromResource(catalog, code, nullptr);
    const int32_t length = ProcessingError_formatMessage(record, text, DIAGNOSTIC_CAPACITY, buffer);
    this_->summary = new_DFDLUStringFromUChars(heap, buffer, length);
    return this_;
}

DFDLDiagnosticImpl* new_DFDLDiagnosticImplFromString(DFDLHeapAdapter* heap, UConverter* converter,
                                                     const char* text) {
    DFDLDiagnosticImpl* this_ =
        newDiagnostic(heap, converter, DFDLParser_resourcesNotLoaded, DIAGNOSTIC_PROCESSING_ERROR);
    this_->summary = new_DFDLUString_fromCString(heap, heap, converter, text, -1);
    return this_;
}

void delete_DFDLDiagnosticImpl(DFDLDiagnosticImpl* this_) {
    if (this_ == nullptr) return;
    delete_DFDLUString(this_->code);
    delete_DFDLUString(this_->summary);
    delete_DFDLUString(this_->codeAndSummary);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

const DFDLUString* DFDLDiagnosticImpl_getCodeAndSummary(DFDLDiagnosticImpl* this_) {
    if (this_->codeAndSummary == nullptr) {
        DFDLUString* start = DFDLUString_concatWithUChars(this_->code, u": ", 2, this_->heap);
        this_->codeAndSummary = DFDLUString_concat(start, this_->summary, this_->heap);
        delete_DFDLUString(start);
    }
    return this_->codeAndSummary;
}

int32_t DFDLDiagnostic_getType(const DFDLDiagnostic* diagnostic) {
    return diagnostic == nullptr ? DIAGNOSTIC_WARNING : diagnostic->type;
}

const DFDLChar* DFDLDiagnostic_getCode(const DFDLDiagnostic* diagnostic) {
    return diagnostic == nullptr || diagnostic->code == nullptr ? nullptr : diagnostic->code->chars;
}

void DFDLDiagnostic_getSummary(const DFDLDiagnostic* diagnostic, const DFDLChar** characters,
                               int32_t* length) {
    give(diagnostic == nullptr ? nullptr : diagnostic->summary, characters, length);
}

// The text is put together for the first caller who asks: callbacks see the diagnostic as constant all the
// same.
void DFDLDiagnostic_getCodeAndSummary(const DFDLDiagnostic* diagnostic, const DFDLChar** characters,
                                      int32_t* length) {
    const DFDLUString* text = nullptr;
    try {
        if (diagnostic != nullptr) {
            text = DFDLDiagnosticImpl_getCodeAndSummary(const_cast<DFDLDiagnostic*>(diagnostic));
        }
    } catch (const AllocationFailure&) {
        text = nullptr;
    }
    give(text, characters, length);
}

const DFDLChar* DFDLDiagnostic_getSchemaLocation(const DFDLDiagnostic* diagnostic) {
    if (diagnostic == nullptr || diagnostic->schemaLocation == nullptr) return nullptr;
    return diagnostic->schemaLocation->chars;
}
