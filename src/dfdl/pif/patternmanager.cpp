#include "dfdl/pif/patternmanager.h"

#include <unicode/uregex.h>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/messagekeys.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/spif.h"

namespace {

using Pattern = Owned<URegularExpression, uregex_close>;

// What user trace says of one kind of patterns.
struct Messages {
    const char* compilationError;
    const char* preparationError;
    const char* timeLimitWarning;
    const char* stackLimitWarning;
};

constexpr Messages LENGTH_MESSAGES = {
    ut_DFDLParser_patternCompilationError, ut_DFDLParser_patternPreparationError,
    ut_DFDLParser_patternTimeLimitWarning, ut_DFDLParser_patternStackLimitWarning};
constexpr Messages FACET_MESSAGES = {
    ut_DFDLParser_facetPatternCompilationError, ut_DFDLParser_facetPatternPreparationError,
    ut_DFDLParser_facetPatternTimeLimitWarning, ut_DFDLParser_facetPatternStackLimitWarning};

void trace(const Context* context, const char* key, const DFDLUString* pattern, UErrorCode cause) {
    if (context == nullptr || context->userTraceOn == 0) return;
    TraceHandlerAdapter_userTraceInfo(context->trace, TraceSubject{}, key, "%Z%s", pattern,
                                      u_errorName(cause));
}

void compile(PatternManager* manager, ArrayList* patterns, int32_t rowIndex, const DFDLUString* text,
             const Messages& messages) {
    if (DFDLUString_length(text) == 0) return;
    UErrorCode status = U_ZERO_ERROR;
    Pattern pattern(uregex_open(text->chars, text->length, 0, nullptr, &status));
    if (U_FAILURE(status)) return trace(manager->context, messages.compilationError, text, status);
    ArrayList_setPointer(patterns, rowIndex, pattern.get());
    pattern.release();
}

const DFDLUString* lengthText(const sPIF* pif, int32_t rowIndex) {
    const LengthSchemeTableRow* row = Table_row(pif->lengthSchemeTable, rowIndex);
    return row != nullptr && row->iLengthKind == PATTERN ? row->iLengthPattern : nullptr;
}

const DFDLUString* facetText(const sPIF* pif, int32_t rowIndex) {
    const FacetTableRow* row = Table_row(pif->facetTable, rowIndex);
    if (row == nullptr || row->iFacetKind != FACET_PATTERN) return nullptr;
    const ValuesTableRow* value = Table_row(pif->valuesTable, row->iValueId);
    return value == nullptr ? nullptr : value->iValue;
}

URegularExpression* cloneOf(const ArrayList* patterns, int32_t rowIndex, const DFDLHeapAdapter* heap,
                            const DFDLUString* text, const Messages& messages) {
    if (rowIndex < 0 || rowIndex >= ArrayList_size(patterns)) return nullptr;
    const auto* shared = ArrayList_getPointer<URegularExpression>(patterns, rowIndex);
    if (shared == nullptr) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    Pattern clone(uregex_clone(shared, &status));
    if (U_FAILURE(status)) {
        trace(heap->context, messages.preparationError, text, status);
        return nullptr;
    }
    uregex_setTimeLimit(clone.get(), PATTERN_TIME_LIMIT, &status);
    if (U_FAILURE(status)) trace(heap->context, messages.timeLimitWarning, text, status);
    status = U_ZERO_ERROR;
    uregex_setStackLimit(clone.get(), PATTERN_STACK_LIMIT, &status);
    if (U_FAILURE(status)) trace(heap->context, messages.stackLimitWarning, text, status);
    return clone.release();
}

void deletePatterns(ArrayList* patterns) {
    for (int32_t index = 0; patterns != nullptr && index < ArrayList_size(patterns); ++index) {
        uregex_close(ArrayList_getPointer<URegularExpression>(patterns, index));
    }
    delete_ArrayList(patterns);
}

}  // namespace

PatternManager* new_PatternManager(DFDLHeapAdapter* heap, sPIF* pif, Context* context) {
    auto* this_ = DFDLHeapAdapter_new<PatternManager>(heap);
    this_->pif = pif;
    this_->context = context;
    this_->lengthPatterns = new_ArrayListOfPointers(heap, 0);
    this_->facetPatterns = new_ArrayListOfPointers(heap, 0);
    return this_;
}

void delete_PatternManager(PatternManager* this_) {
    if (this_ == nullptr) return;
    deletePatterns(this_->lengthPatterns);
    deletePatterns(this_->facetPatterns);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool PatternManager_compilePatterns(PatternManager* this_) {
    const bool lengths = PatternManager_compileLengthPatterns(this_);
    return PatternManager_compileFacetPatterns(this_) && lengths;
}

bool PatternManager_compileLengthPatterns(PatternManager* this_) {
    for (int32_t row = 0; row < Table_size(this_->pif->lengthSchemeTable); ++row) {
        compile(this_, this_->lengthPatterns, row, lengthText(this_->pif, row), LENGTH_MESSAGES);
    }
    return true;
}

bool PatternManager_compileFacetPatterns(PatternManager* this_) {
    for (int32_t row = 0; row < Table_size(this_->pif->facetTable); ++row) {
        compile(this_, this_->facetPatterns, row, facetText(this_->pif, row), FACET_MESSAGES);
    }
    return true;
}

URegularExpression* PatternManager_getLengthKindPattern(const PatternManager* this_, int32_t rowIndex,
                                                        DFDLHeapAdapter* heap) {
    return cloneOf(this_->lengthPatterns, rowIndex, heap, lengthText(this_->pif, rowIndex), LENGTH_MESSAGES);
}

URegularExpression* PatternManager_getFacetValidationPattern(const PatternManager* this_,
                                                             int32_t facetRowIndex, DFDLHeapAdapter* heap) {
    return cloneOf(this_->facetPatterns, facetRowIndex, heap, facetText(this_->pif, facetRowIndex),
                   FACET_MESSAGES);
}
