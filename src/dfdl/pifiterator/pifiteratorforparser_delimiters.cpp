// Initiators and terminators of elements and groups, and what their presence or absence says of the content.
#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/textmarkuptable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

long long bytePosition(const PIFIteratorForParser* iterator) {
    return static_cast<long long>(BufferManager_bytePosition(iterator->bufferManager));
}

void trace(PIFIteratorForParser* iterator, ContextItemForParser* item, const char* key) {
    if (iterator->context->userTraceOn != 0) PIFIteratorForParser_userTrace(iterator, item, key, "");
}

void traceMarkup(PIFIteratorForParser* iterator, ContextItemForParser* item, const char* key,
                 const CompiledDFDLStringLiteral* literal) {
    if (iterator->context->userTraceOn == 0) return;
    PIFIteratorForParser_userTrace(iterator, item, key, "%Z", literal->text);
}

DelimiterPolicyEnum emptyPolicy(const ContextItemForParser* item) {
    return PIFPhysicalPropertyHelper_getEmptyValueDelimiterPolicy(item->row);
}

DelimiterPolicyEnum nilPolicy(const ContextItemForParser* item) {
    return PIFPhysicalPropertyHelper_getNilValueDelimiterPolicy(item->row);
}

bool wantsInitiator(DelimiterPolicyEnum policy) { return policy == DP_INITIATOR_ONLY || policy == DP_BOTH; }
bool wantsTerminator(DelimiterPolicyEnum policy) { return policy == DP_TERMINATOR_ONLY || policy == DP_BOTH; }

void ruleOut(ContextItemForParser* item, PossibleContent content) {
    item->possibleContent &= ~static_cast<uint32_t>(content);
}

bool canBe(const ContextItemForParser* item, PossibleContent content) {
    return (item->possibleContent & content) != 0;
}

bool isGroup(const ContextItemForParser* item) { return item->row->elementRow == nullptr; }

void raiseMissingTerminator(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    ProcessingError_setValues(
        iterator->context->currentError, __FILE__, __LINE__,
        isGroup(item) ? DFDLParser_missingTerminatorGroup : DFDLParser_missingTerminator, ERROR_PROCESSING,
        SUBKIND_NONE, "%Z%lld%Z", PIFPhysicalPropertyHelper_getTerminatorProperty(item->row),
        bytePosition(iterator), PIFIteratorForParser_getPathForError(iterator, item));
}

void raiseForElement(PIFIteratorForParser* iterator, const ContextItemForParser* item, const char* key) {
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__, key, ERROR_PROCESSING,
                              SUBKIND_NONE, "%Z%lld", item->row->scdText, bytePosition(iterator));
}

using RegionReport = void (*)(DocHandlerEventBuffer*, const DFDLUString*, int64_t, int64_t);

bool consume(PIFIteratorForParser* iterator, const ContextItemForParser* item,
             const CompiledDFDLStringLiteral* literal, int64_t length, RegionReport report) {
    const int64_t start = bytePosition(iterator);
    if (!PIFIteratorForParser_consumeMarkup(iterator, item->row, literal, length)) return false;
    if (iterator->userRegionHandler != nullptr)
        report(iterator->eventBuffer, item->row->scdText, start, bytePosition(iterator) - start);
    return true;
}

bool acceptInitiator(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    const DelimitedScannerBytes* scanner = iterator->delimitedScanner;
    item->initiatorMissing = 0;
    traceMarkup(iterator, item, ut_DFDLParser_initiatorFound, scanner->matchedLiteral);
    if (!consume(iterator, item, scanner->matchedLiteral, scanner->matchedLength,
                 DocHandlerEventBuffer_parsedInitiatorRegion)) {
        return false;
    }
    if (item->plan->nilKind != NK_NONE && !wantsInitiator(nilPolicy(item))) ruleOut(item, CONTENT_NIL);
    if (!wantsInitiator(emptyPolicy(item))) ruleOut(item, CONTENT_EMPTY);
    PIFIteratorForParser_resolveInitiatedPOI(iterator, item);
    return true;
}

// What the element can still be without its initiator. False with an error.
bool goWithoutInitiator(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    item->initiatorMissing = 1;
    trace(iterator, item, ut_DFDLParser_initiatorNotFound);
    if (item->plan->nilKind != NK_NONE && wantsInitiator(nilPolicy(item))) ruleOut(item, CONTENT_NIL);
    if (wantsInitiator(emptyPolicy(item))) {
        ruleOut(item, CONTENT_EMPTY);
    } else if (!canBe(item, CONTENT_NIL) && item->kind == ITEM_SIMPLE_ELEMENT) {
        trace(iterator, item, ut_DFDLParser_elementMissing_initiator);
        item->possibleContent = CONTENT_EMPTY;
    } else if (!canBe(item, CONTENT_NIL) && item->kind == ITEM_COMPLEX_ELEMENT) {
        trace(iterator, item, ut_DFDLParser_elementMissing_initiator);
        PIFIteratorForParser_raiseMissingInitiator(iterator, item);
        return false;
    }
    if (canBe(item, CONTENT_EMPTY) || canBe(item, CONTENT_NIL)) return true;
    trace(iterator, item, ut_DFDLParser_elementMissing_initiator);
    if (!PIFIteratorForParser_raiseEndOfScope(iterator, item->row))
        PIFIteratorForParser_raiseMissingInitiator(iterator, item);
    return false;
}

// Defects of the grammar, which are not to be taken for an absent initiator.
bool isGrammarsFault(const ProcessingError* error) {
    for (const char* key : {DFDLParser_invalidPropertyExpression, DFDLParser_characterEncodingError,
                            TEXT_INVALID_MNEMONIC, DFDLParser_unsupportedConstruct}) {
        if (ProcessingError_hasKey(error, key)) return true;
    }
    return false;
}

// The nil reading ends at its delimiters, which a logical nil has in common with a value.
bool canBeLiteralNil(const ContextItemForParser* item) {
    return canBe(item, CONTENT_NIL) && item->plan->nilKind != NK_LOGICAL_VALUE;
}

bool acceptTerminator(PIFIteratorForParser* iterator, ContextItemForParser* item, const MarkupInfo& markup) {
    traceMarkup(iterator, item, ut_DFDLParser_terminatorParsed, markup.literal);
    if (!consume(iterator, item, markup.literal, markup.length, DocHandlerEventBuffer_parsedTerminatorRegion))
        return false;
    PIFIteratorForParser_forgetScannedMarkup(iterator);
    if (item->possibleContent == CONTENT_NIL) {
        if (!wantsTerminator(nilPolicy(item)))
            raiseForElement(iterator, item, DFDLParser_unexpectedTerminatorForNilElement);
    } else if (item->possibleContent == CONTENT_EMPTY) {
        if (item->kind == ITEM_SIMPLE_ELEMENT && !wantsTerminator(emptyPolicy(item)))
            raiseForElement(iterator, item, DFDLParser_unexpectedTerminatorForMissingElement);
    } else if ((item->row->flags & GM_INITIATOR) != 0 && item->initiatorMissing != 0) {
        PIFIteratorForParser_raiseMissingInitiator(iterator, item);
    }
    return !PIFIteratorForParser_hasFailed(iterator);
}

// A reading that its delimiter policy settles: an error, or no terminator is wanted.
bool endWithoutTerminator(PIFIteratorForParser* iterator, const ContextItemForParser* item,
                          DelimiterPolicyEnum policy, const char* key) {
    if (!wantsTerminator(policy)) return true;
    if (!PIFIteratorForParser_raiseEndOfScope(iterator, item->row)) raiseForElement(iterator, item, key);
    return false;
}

bool goWithoutTerminator(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    trace(iterator, item, ut_DFDLParser_terminatorMissing);
    if (canBeLiteralNil(item))
        return endWithoutTerminator(iterator, item, nilPolicy(item), DFDLParser_noTerminatorForNilElement);
    if (item->possibleContent == CONTENT_EMPTY)
        return endWithoutTerminator(iterator, item, emptyPolicy(item),
                                    DFDLParser_noTerminatorForMissingElement);
    if ((item->row->flags & GM_TERMINATOR) == 0) return true;
    if (item->row->markupRow->iFinalTerminatorCanBeMissing &&
        PIFIteratorForParser_isDataExhausted(iterator)) {
        trace(iterator, item, ut_DFDLParser_documentFinalTerminatorCanBeMissing);
        return true;
    }
    if (!PIFIteratorForParser_raiseEndOfScope(iterator, item->row)) raiseMissingTerminator(iterator, item);
    return false;
}

}  // namespace

void PIFIteratorForParser_raiseMissingInitiator(PIFIteratorForParser* this_, ContextItemForParser* item) {
    PIFIteratorForParser_raiseMissingInitiatorOf(this_, item, item->row);
}

void PIFIteratorForParser_raiseMissingInitiatorOf(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                  const GroupMemberTableRow* row) {
    ProcessingError_setValues(
        this_->context->currentError, __FILE__, __LINE__,
        row->elementRow == nullptr ? DFDLParser_missingInitiatorGroup : DFDLParser_missingInitiator,
        ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld%Z", PIFPhysicalPropertyHelper_getInitiatorProperty(row),
        bytePosition(this_), PIFIteratorForParser_getPathForError(this_, item));
}

void PIFIteratorForParser_resolveInitiatedPOI(PIFIteratorForParser* this_, ContextItemForParser* item) {
    static_cast<void>(this_);
    auto* parent = static_cast<ContextItemForParser*>(item->parent);
    if (parent != nullptr && PIFPhysicalPropertyHelper_getInitiatedContentProperty(parent->row))
        ContextItemForParser_releaseCheckPoint(parent);
}

bool PIFIteratorForParser_processElementInitiatorRegion(PIFIteratorForParser* this_,
                                                        ContextItemForParser* item) {
    ProcessingError* error = this_->context->currentError;
    if (ParserRegionHandler_handleInitiatorRegion(this_->parserRegionHandler, item->row))
        return acceptInitiator(this_, item);
    if (isGrammarsFault(error)) return false;
    const bool absent = ProcessingError_hasKey(error, DFDLParser_missingInitiator);
    ProcessingError_reset(error);
    if (absent) return goWithoutInitiator(this_, item);
    PIFIteratorForParser_raiseMissingInitiator(this_, item);
    return false;
}

bool PIFIteratorForParser_processTerminatorRegion(PIFIteratorForParser* this_, ContextItemForParser* item) {
    if (PIFIteratorForParser_getScannedMarkup(this_) == nullptr) {
        ParserRegionHandler_checkForMarkup(this_->parserRegionHandler, item->markupSetId, item);
        if (PIFIteratorForParser_hasFailed(this_)) return false;
    }
    const MarkupInfo* markup = PIFIteratorForParser_getScannedMarkup(this_);
    if (markup != nullptr && markup->row == item->row && markup->literal->kind == MARKUP_TERMINATOR)
        return acceptTerminator(this_, item, *markup);
    return goWithoutTerminator(this_, item);
}
