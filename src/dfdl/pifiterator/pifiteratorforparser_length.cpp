#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

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

void trace(PIFIteratorForParser* iterator, ContextItemForParser* item, const char* key) {
    if (iterator->context->userTraceOn != 0) PIFIteratorForParser_userTrace(iterator, item, key, "");
}

void releaseValue(ContextItemForParser* item) {
    if (item->value == nullptr) return;
    DFDLPoolingFactory_releaseDFDLValue(item->heap->poolingFactory, item->value);
    item->value = nullptr;
}

// Whether the content has been found to be nil, by its literals or by its value.
bool isNil(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    if ((item->possibleContent & CONTENT_NIL) == 0) return false;
    return item->plan->nilKind == NK_LOGICAL_VALUE ? PIFIteratorForParser_checkNilLogicalValue(iterator, item)
                                                   : item->plan->nilKind != NK_NONE;
}

// The bytes up to the next delimiter in scope, which stays the scanned one; -1 with an error.
int64_t scanForLength(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    DelimitedScannerBytes* scanner = iterator->delimitedScanner;
    const CompiledMarkupSet* set = DelimitedScannerBytes_setMarkupSet(scanner, item->markupSetId, item);
    if (PIFIteratorForParser_hasFailed(iterator)) return -1;
    item->plan->compiledSet = set != nullptr && !set->isVolatile ? set : nullptr;
    item->plan->compiledSetId = item->markupSetId;
    return DelimitedScannerBytes_scanForMarkup(scanner, false, item->row->iTextEncodingIndex, true,
                                               item->row);
}

// Content where the initiator's absence has left only the empty reading means that the initiator was required
// after all.
bool confirmAbsence(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    if ((item->row->flags & GM_LENGTH_NOT_CONSTANT) == 0) return true;
    int64_t length = 0;
    if (PIFIteratorForParser_calculateElementLength(iterator, item->row, item, &length) != 1) return false;
    if (length < 1 || item->initiatorMissing == 0) return true;
    trace(iterator, item, ut_DFDLParser_initiatorNotFound);
    PIFIteratorForParser_raiseMissingInitiator(iterator, item);
    return false;
}

using ConvertText = DFDLValue* (*)(ParserRegionHandler*, const GroupMemberTableRow*, DFDLUString*);

ConvertText textConverter(int32_t physicalType) {
    switch (physicalType) {
        case TEXT_NUMBER:
            return ParserRegionHandler_handleSimpleContent_TextNumber;
        case TEXT_BOOLEAN:
            return ParserRegionHandler_handleSimpleContent_TextBoolean;
        case TEXT_CALENDAR:
            return ParserRegionHandler_handleSimpleContent_TextCalendar;
        default:
            return ParserRegionHandler_handleSimpleContent_TextString;
    }
}

DFDLValue* convertText(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    DFDLUString* text = iterator->extractedText;
    iterator->extractedText = nullptr;
    const ConvertText convert = textConverter(item->row->iPhysicalType);
    return convert(iterator->parserRegionHandler, item->row, text);
}

using ConvertBlock = DFDLValue* (*)(ParserRegionHandler*, const GroupMemberTableRow*, uint8_t*, int64_t);

ConvertBlock blockConverter(int32_t physicalType) {
    switch (physicalType) {
        case BINARY_BOOLEAN:
            return ParserRegionHandler_handleSimpleContent_BinaryBoolean;
        case BINARY_CALENDAR:
            return ParserRegionHandler_handleSimpleContent_BinaryCalendar;
        case BINARY_OPAQUE:
            return ParserRegionHandler_handleSimpleContent_BinaryOpaque;
        default:
            return ParserRegionHandler_handleSimpleContent_BinaryNumber;
    }
}

DFDLValue* convertBytes(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    uint8_t* bytes = iterator->extractedBytes;
    iterator->extractedBytes = nullptr;
    const ConvertBlock convert = blockConverter(item->row->iPhysicalType);
    return convert(iterator->parserRegionHandler, item->row, bytes, iterator->extractedByteCount);
}

bool isText(const ContextItemForParser* item) { return (item->row->flags & GM_TEXT) != 0; }

// Length, extraction and conversion. False with an error.
bool parseContent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    int64_t length = 0;
    if (PIFIteratorForParser_calculateElementLength(iterator, item->row, item, &length) != 1) return false;
    const bool extracted = isText(item)
                               ? PIFIteratorForParser_extractTextRepresentation(iterator, item, length)
                               : PIFIteratorForParser_extractBinaryRepresentation(iterator, item, length);
    if (extracted && (item->possibleContent & CONTENT_VALUE) != 0 && length >= 1)
        item->value = isText(item) ? convertText(iterator, item) : convertBytes(iterator, item);
    PIFIteratorForParser_releaseExtractedText(iterator);
    PIFIteratorForParser_releaseExtractedBytes(iterator);
    return extracted;
}

// A required occurrence without content.
bool adjustMissing(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    const GroupMemberTableRow* row = item->row;
    if (usesNilForDefault(row)) {
        trace(iterator, item, ut_DFDLParser_usingNilForDefault);
        item->value = newNil(iterator);
        return true;
    }
    if (row->elementRow->defaultValueIndex != -1) {
        raise(iterator, DFDLParser_defaultValueUnsupported, ERROR_SCHEMA_DEFINITION, row);
        return false;
    }
    if (item->initiatorMissing != 0) {
        PIFIteratorForParser_raiseMissingInitiator(iterator, item);
        return false;
    }
    if (countIsGiven(row)) {
        ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                                  DFDLParser_minOccursViolation_ProcessingError, ERROR_PROCESSING,
                                  SUBKIND_NONE, "%Z%d%d", row->scdText, item->occurrences - 1,
                                  row->min_occurs);
        return false;
    }
    if (iterator->validationEnabled != 0) {
        PIFIteratorForParser_reportValidationError(iterator, DFDLParser_minOccursViolation_ValidationError,
                                                   row, row->min_occurs, item->occurrences - 1);
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
    return !PIFIteratorForParser_hasFailed(this_);
}

bool PIFIteratorForParser_applyTrailingAlignment(PIFIteratorForParser* this_, ContextItemForParser* item) {
    if ((item->row->flags & GM_TRAILING_ALIGNMENT) == 0) return true;
    const int64_t start = BufferManager_bytePosition(this_->bufferManager);
    if (!ParserRegionHandler_handleTrailingAlignment(this_->parserRegionHandler, item)) return false;
    reportRegion(this_, item, start, DocHandlerEventBuffer_parsedTrailingAlignmentRegion);
    return !PIFIteratorForParser_hasFailed(this_);
}

bool PIFIteratorForParser_processSimpleElementRepresentation(PIFIteratorForParser* this_,
                                                             ContextItemForParser* item) {
    const GroupMemberTableRow* row = item->row;
    if (!PIFIteratorForParser_applyLeadingAlignment(this_, item)) return false;
    if (item->plan->nilKind == NK_NONE) item->possibleContent &= ~static_cast<uint32_t>(CONTENT_NIL);
    if ((row->flags & GM_INITIATOR) != 0 &&
        !PIFIteratorForParser_processElementInitiatorRegion(this_, item)) {
        return false;
    }
    const bool parsed =
        item->possibleContent == CONTENT_EMPTY ? confirmAbsence(this_, item) : parseContent(this_, item);
    if (!parsed || PIFIteratorForParser_hasFailed(this_)) return false;
    if (item->value != nullptr && row->iPhysicalType != TEXT_STRING && this_->context->userTraceOn != 0)
        PIFIteratorForParser_userTrace(this_, item, ut_DFDLParser_reportElementValue, "%V", item->value);
    if ((row->flags & GM_TERMINATOR) != 0 && !PIFIteratorForParser_processTerminatorRegion(this_, item))
        return false;
    return PIFIteratorForParser_applyTrailingAlignment(this_, item);
}

int32_t PIFIteratorForParser_calculateElementLength(PIFIteratorForParser* this_,
                                                    const GroupMemberTableRow* row,
                                                    ContextItemForParser* item, int64_t* length) {
    const RowPlan* plan = &this_->plans[row->rowIndex];
    if (row->lengthRow == nullptr) {
        raise(this_, DFDLParser_nullBinaryNumberRow, ERROR_PROCESSING, row);
        return -1;
    }
    if (plan->lengthKind == UNDEFINED_LKIND) {
        raise(this_, DFDLParser_missingLengthKind, ERROR_SCHEMA_DEFINITION, row);
        return -1;
    }
    if (plan->lengthKind == DELIMITED || plan->lengthKind == END_OF_PARENT) {
        *length = scanForLength(this_, item);
        return *length < 0 ? 0 : 1;
    }
    if (plan->lengthKind == PREFIXED)
        return PIFIteratorForParser_calculatePrefixedLength(this_, row, item, length) ? 1 : 0;
    *length = plan->lengthKind == IMPLICIT && plan->kind == ITEM_COMPLEX_ELEMENT ? -1 : plan->length;
    return 1;
}

bool PIFIteratorForParser_ComplexElement_precalculateLength(PIFIteratorForParser* this_,
                                                            ContextItemForParser* item) {
    const int32_t kind = item->plan->lengthKind;
    return (kind != EXPLICIT && kind != PREFIXED) || imposeLength(this_, item);
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
    if (PIFIteratorForParser_isEmptyStringNil(item->row) && (item->possibleContent & CONTENT_NIL) != 0) {
        item->possibleContent = CONTENT_NIL;
        trace(this_, item, ut_DFDLParser_nilLiteralValueFound);
        return true;
    }
    if ((item->possibleContent & CONTENT_EMPTY) != 0) {
        item->possibleContent = CONTENT_EMPTY;
        trace(this_, item, ut_DFDLParser_elementMissing_emptyContent);
        return true;
    }
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_unexpectedInitiatorForMissingElement, ERROR_PROCESSING, SUBKIND_NONE,
                              "%lld%Z",
                              static_cast<long long>(BufferManager_bytePosition(this_->bufferManager)),
                              GroupMemberTableRow_getElementName(item->row));
    return false;
}

bool PIFIteratorForParser_adjustSimpleElementValue(PIFIteratorForParser* this_, ContextItemForParser* item) {
    const GroupMemberTableRow* row = item->row;
    if (isNil(this_, item)) {
        releaseValue(item);
        PIFIteratorForParser_releaseExtractedText(this_);
        item->value = newNil(this_);
        return true;
    }
    if ((item->possibleContent & CONTENT_EMPTY) == 0) return true;
    if (item->occurrences <= row->min_occurs) return adjustMissing(this_, item);
    releaseValue(item);
    trace(this_, item, ut_DFDLParser_elementMissing_Optional);
    return true;
}
