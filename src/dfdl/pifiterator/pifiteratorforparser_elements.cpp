#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/textencodingtable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

void trace(PIFIteratorForParser* iterator, ContextItemForParser* item, const char* key) {
    if (iterator->context->userTraceOn != 0) PIFIteratorForParser_userTrace(iterator, item, key, "");
}

void reportElementStart(PIFIteratorForParser* iterator, const GroupMemberTableRow* row) {
    if (iterator->userRegionHandler == nullptr) return;
    const ElementTableRow* element = row->elementRow;
    const DFDLString* encoding = row->encodingRow == nullptr ? nullptr : row->encodingRow->encodingName;
    DocHandlerEventBuffer_elementStart(iterator->eventBuffer, element->element_id, element->name,
                                       element->namespaceId, element->namespace_, row->scdText,
                                       BufferManager_bytePosition(iterator->bufferManager),
                                       encoding == nullptr ? nullptr : encoding->chars);
}

void reportElementEnd(PIFIteratorForParser* iterator, const GroupMemberTableRow* row) {
    if (iterator->userRegionHandler == nullptr) return;
    DocHandlerEventBuffer_elementEnd(iterator->eventBuffer, row->scdText,
                                     BufferManager_bytePosition(iterator->bufferManager));
}

void startElement(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    const GroupMemberTableRow* row = item->row;
    const ElementTableRow* element = row->elementRow;
    DocHandlerEventBuffer_startElement(iterator->eventBuffer, element->element_id, element->name,
                                       element->namespaceId, element->namespace_, row->scdText,
                                       item->representationStart);
}

// Hands the value on, which belongs to the event from then on.
void reportSimpleElementValue(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    item->representationEnd = BufferManager_bitPosition(iterator->bufferManager);
    DFDLValue* value = item->value;
    if (value != nullptr && iterator->hiddenDepth == 0) {
        item->value = nullptr;
        startElement(iterator, item);
        if (DFDLValue_isNil(value)) {
            DFDLPoolingFactory_releaseDFDLValue(iterator->heap->poolingFactory, value);
            DocHandlerEventBuffer_elementNilValue(iterator->eventBuffer);
        } else {
            DocHandlerEventBuffer_elementValue(iterator->eventBuffer, value);
        }
        DocHandlerEventBuffer_endElement(iterator->eventBuffer, item->representationEnd);
    }
    reportElementEnd(iterator, item->row);
    trace(iterator, item, ut_DFDLParser_endElement);
}

void parseSimpleElement(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    const bool parsed = PIFIteratorForParser_processSimpleElementRepresentation(iterator, item) &&
                        ((item->possibleContent & (CONTENT_NIL | CONTENT_EMPTY)) == 0 ||
                         PIFIteratorForParser_adjustSimpleElementValue(iterator, item));
    if (parsed) reportSimpleElementValue(iterator, item);
    ContextItemForParser_close(item);
}

// The frame of the complex type's content: its group has one member, the model group. A type without a model
// group has no content, and the element ends with its next step.
void enterContent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    const GroupMemberTableRow* model = item->row->elementRow->contentGroup->firstMember;
    if (model == nullptr) return;
    ContextItemForParser* content = PIFIteratorForParser_createContextItem(iterator, model);
    if (content == nullptr) return;
    ContextItemForParser_setOrderedChild(item, content);
    iterator->currentItem = item;
    PIFIteratorForParser_push(iterator, content);
}

// What the element imposed ends here; what is left of its length is skipped.
bool endScope(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    if (item->imposedLength < 0) return true;
    item->imposedLength = -1;
    if (!BufferManager_removeScopedBufferLengthUnparser(iterator->bufferManager, item->row, true, 0))
        return false;
    PIFIteratorForParser_forgetEndOfData(iterator);
    return true;
}

// An occurrence beyond the required ones that took nothing from the data is as if it were not there. What the
// members of an unordered group have brought so far waits in buffers of their own and stays.
void discardIfAbsent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    if (item->occurrences <= item->effectiveMinOccurs || item->succeeded == 0 ||
        item->representationEnd != item->representationStart) {
        return;
    }
    trace(iterator, item, ut_DFDLParser_elementMissing_Optional);
    if (iterator->eventBuffer->chainedBuffer == nullptr)
        DocHandlerEventBuffer_discardEmptyComplexElement(iterator->eventBuffer);
}

}  // namespace

void PIFIteratorForParser_SimpleElement_open(PIFIteratorForParser* this_, ContextItemForParser* item) {
    ContextItem_incrementOccurrences(item);
    trace(this_, item, ut_DFDLParser_startElement);
    reportElementStart(this_, item->row);
    item->representationStart = BufferManager_bitPosition(this_->bufferManager);
    parseSimpleElement(this_, item);
    // An element whose length could not be told need not have failed: it ends without a value.
    if (!PIFIteratorForParser_hasFailed(this_)) PIFIteratorForParser_pop(this_);
}

void PIFIteratorForParser_ComplexElement_open(PIFIteratorForParser* this_, ContextItemForParser* item) {
    ContextItem_incrementOccurrences(item);
    trace(this_, item, ut_DFDLParser_startElement);
    item->representationStart = BufferManager_bitPosition(this_->bufferManager);
    item->representationEnd = item->representationStart;
    reportElementStart(this_, item->row);
    if (this_->hiddenDepth == 0) startElement(this_, item);
    if (item->plan->nilKind == NK_NONE) item->possibleContent &= ~static_cast<uint32_t>(CONTENT_NIL);
    if (!PIFIteratorForParser_applyLeadingAlignment(this_, item)) return;
    if ((item->row->flags & GM_INITIATOR) != 0 &&
        !PIFIteratorForParser_processElementInitiatorRegion(this_, item)) {
        return;
    }
    if (!PIFIteratorForParser_ComplexElement_precalculateLength(this_, item)) return;
    if ((item->possibleContent & CONTENT_NIL) != 0) PIFIteratorForParser_checkNilComplexContent(this_, item);
    if (item->possibleContent != CONTENT_NIL && !PIFIteratorForParser_hasFailed(this_))
        enterContent(this_, item);
}

void PIFIteratorForParser_ComplexElement_close(PIFIteratorForParser* this_, ContextItemForParser* item) {
    if (!endScope(this_, item)) return;
    if ((item->row->flags & GM_TERMINATOR) != 0 && !PIFIteratorForParser_processTerminatorRegion(this_, item))
        return;
    if (!PIFIteratorForParser_applyTrailingAlignment(this_, item)) return;
    item->representationEnd = BufferManager_bitPosition(this_->bufferManager);
    if (this_->hiddenDepth == 0) {
        if (item->possibleContent == CONTENT_NIL) DocHandlerEventBuffer_elementNilValue(this_->eventBuffer);
        DocHandlerEventBuffer_endElement(this_->eventBuffer, item->representationEnd);
    }
    reportElementEnd(this_, item->row);
    trace(this_, item, ut_DFDLParser_endElement);
    ContextItemForParser_close(item);
    ContextItemForParser_setOrderedChild(item, nullptr);
    discardIfAbsent(this_, item);
    PIFIteratorForParser_pop(this_);
}
