#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

bool failed(const PIFIteratorForParser* iterator) {
    return ProcessingError_isSet(iterator->context->currentError);
}

void raise(PIFIteratorForParser* iterator, const char* key, int32_t kind, const GroupMemberTableRow* row) {
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__, key, kind, SUBKIND_NONE,
                              "%Z", GroupMemberTableRow_getElementName(row));
}

// Imposes the length of the content as the scope of everything inside.
bool imposeLength(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    int64_t length = 0;
    if (PIFIteratorForParser_calculateElementLength(iterator, item->row, item, &length) != 1) return false;
    if (!BufferManager_imposeScopedBufferLength(iterator->bufferManager, length, item->plan->units,
                                                item->row)) {
        return false;
    }
    item->imposedLength = length;
    return true;
}

bool reportsRegions(const PIFIteratorForParser* iterator) { return iterator->userRegionHandler != nullptr; }

using RegionEvent = void (*)(DocHandlerEventBuffer*, const DFDLUString*, int64_t, int64_t);

void reportRegion(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t start,
                  RegionEvent event) {
    if (!reportsRegions(iterator)) return;
    event(iterator->eventBuffer, item->row->scdText, start,
          BufferManager_bytePosition(iterator->bufferManager) - start);
}

bool usesNilForDefault(const GroupMemberTableRow* row) {
    return row->nilRow != nullptr && row->nilRow->iUseNilForDefault;
}

DFDLValue* newNil(PIFIteratorForParser* iterator) {
    DFDLValue* nil = DFDLValue_createValue(iterator->heap);
    DFDLValue_setNil(nil, true);
    return nil;
}

bool countIsGiven(const GroupMemberTableRow* row) {
    if (row->occursRow == nullptr) return true;
    return row->occursRow->iOccursCountKind == OCK_FIXED || row->occursRow->iOccursCountKind == OCK_IMPLICIT;
}

// A required occurrence without content.
bool adjustMissing(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    const GroupMemberTableRow* row = item->row;
    if (usesNilForDefault(row)) {
        item->value = newNil(iterator);
        return true;
    }
    if (row->elementRow->defaultValueIndex != -1) {
        raise(iterator, DFDLParser_defaultValueUnsupported, ERROR_SCHEMA_DEFINITION, row);
        return false;
    }
    if (countIsGiven(row)) {
        ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                                  DFDLParser_minOccursViolation_ProcessingError, ERROR_PROCESSING,
                                  SUBKIND_NONE, "%Z%d%d", row->scdText, item->occurrences - 1,
                                  row->min_occurs);
        return false;
    }
    return true;
}

}  // namespace

bool PIFIteratorForParser_applyLeadingAlignment(PIFIteratorForParser* this_, ContextItemForParser* item) {
    const bool onBoundary = (BufferManager_bitPosition(this_->bufferManager) & 7) == 0;
    if (item->plan->needsAlignment == 0 && onBoundary) return true;
    const int64_t start = BufferManager_bytePosition(this_->bufferManager);
    if (!ParserRegionHandler_handleLeadingAlignment(this_->parserRegionHandler, item)) return false;
    reportRegion(this_, item, start, DocHandlerEventBuffer_parsedLeadingAlignmentRegion);
    return !failed(this_);
}

bool PIFIteratorForParser_applyTrailingAlignment(PIFIteratorForParser* this_, ContextItemForParser* item) {
    if ((item->row->flags & GM_TRAILING_ALIGNMENT) == 0) return true;
    const int64_t start = BufferManager_bytePosition(this_->bufferManager);
    if (!ParserRegionHandler_handleTrailingAlignment(this_->parserRegionHandler, item)) return false;
    reportRegion(this_, item, start, DocHandlerEventBuffer_parsedTrailingAlignmentRegion);
    return !failed(this_);
}

bool PIFIteratorForParser_processSimpleElementRepresentation(PIFIteratorForParser* this_,
                                                             ContextItemForParser* item) {
    if (!PIFIteratorForParser_applyLeadingAlignment(this_, item)) return false;
    item->possibleContent &= ~static_cast<uint32_t>(CONTENT_NIL);
    int64_t length = 0;
    if (PIFIteratorForParser_calculateElementLength(this_, item->row, item, &length) != 1) return false;
    if (!PIFIteratorForParser_extractTextRepresentation(this_, item, length)) {
        PIFIteratorForParser_releaseExtractedText(this_);
        return false;
    }
    if ((item->possibleContent & CONTENT_VALUE) != 0 && length >= 1) {
        DFDLUString* text = this_->extractedText;
        this_->extractedText = nullptr;
        item->value =
            ParserRegionHandler_handleSimpleContent_TextString(this_->parserRegionHandler, item->row, text);
    } else {
        PIFIteratorForParser_releaseExtractedText(this_);
    }
    return !failed(this_) && PIFIteratorForParser_applyTrailingAlignment(this_, item);
}

int32_t PIFIteratorForParser_calculateElementLength(PIFIteratorForParser* this_,
                                                    const GroupMemberTableRow* row,
                                                    ContextItemForParser* item, int64_t* length) {
    const RowPlan* plan = item->plan;
    if (row->lengthRow == nullptr) {
        raise(this_, DFDLParser_nullBinaryNumberRow, ERROR_PROCESSING, row);
        return -1;
    }
    if (plan->lengthKind == UNDEFINED_LKIND) {
        raise(this_, DFDLParser_missingLengthKind, ERROR_SCHEMA_DEFINITION, row);
        return -1;
    }
    *length = plan->lengthKind == IMPLICIT && ContextItem_isComplexElement(item) ? -1 : plan->length;
    return 1;
}

bool PIFIteratorForParser_ComplexElement_precalculateLength(PIFIteratorForParser* this_,
                                                            ContextItemForParser* item) {
    return item->plan->lengthKind != EXPLICIT || imposeLength(this_, item);
}

bool PIFIteratorForParser_STATE_SET_LENGTH_FROM_EXPLICIT_LENGTH(PIFIteratorForParser* this_,
                                                                ContextItemForParser* group) {
    if (!imposeLength(this_, group)) return false;
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(
            this_, group, ut_DFDLParser_explicitLengthSet, "%lld%S",
            static_cast<long long>(group->imposedLength),
            TracehandlerAdapter_getLengthUnitsAsString(this_->traceAdapter, group->plan->units));
    }
    return true;
}

bool PIFIteratorForParser_processZeroLengthSimpleContent(PIFIteratorForParser* this_,
                                                         ContextItemForParser* item) {
    item->possibleContent = CONTENT_EMPTY;
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(this_, item, ut_DFDLParser_elementMissing_emptyContent, "");
    }
    return true;
}

bool PIFIteratorForParser_adjustSimpleElementValue(PIFIteratorForParser* this_, ContextItemForParser* item) {
    const GroupMemberTableRow* row = item->row;
    if ((item->possibleContent & CONTENT_EMPTY) == 0) return true;
    if (item->occurrences <= row->min_occurs) return adjustMissing(this_, item);
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(this_, item, ut_DFDLParser_elementMissing_Optional, "");
    }
    return true;
}
