#include "dfdl/pifiterator/pifiteratorforparser.h"

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dfdlparserimpl.h"
#include "dfdl/processor/errorhandlereventbuffer.h"

namespace {

void replaceString(DFDLHeapAdapter* heap, DFDLUString** slot, const DFDLUString* value) {
    delete_DFDLUString(*slot);
    *slot = nullptr;
    if (value != nullptr) *slot = new_DFDLUStringFromDFDLUString(value, heap);
}

void forgetRoot(PIFIteratorForParser* iterator) {
    replaceString(iterator->heap, &iterator->rootName, nullptr);
    replaceString(iterator->heap, &iterator->rootNamespace, nullptr);
    iterator->rootRow = nullptr;
}

bool isSameRoot(const PIFIteratorForParser* iterator, const DFDLUString* name,
                const DFDLUString* namespaceUri) {
    return iterator->rootRow != nullptr && DFDLUString_equals(iterator->rootName, name) &&
           DFDLUString_equals(iterator->rootNamespace, namespaceUri);
}

void releaseRootItem(PIFIteratorForParser* iterator) {
    ContextItemForParserPooler_releaseContextItemForParser(iterator->rootItem);
    iterator->rootItem = nullptr;
    iterator->currentItem = nullptr;
}

}  // namespace

PIFIteratorForParser* new_PIFIteratorForParser(DFDLParserImpl* parser, DFDLConstants* constants) {
    auto* this_ = DFDLHeapAdapter_new<PIFIteratorForParser>(parser->heap);
    this_->parser = parser;
    this_->messageHeap = parser->messageHeap;
    this_->context = parser->context;
    this_->constants = constants;
    this_->eventBuffer = parser->docEventBuffer;
    this_->bufferManager = parser->bufferManager;
    this_->charsetManager = parser->charsetManager;
    this_->variableManager = parser->variableManager;
    this_->backtrackingManager = parser->backtrackingManager;
    return this_;
}

void delete_PIFIteratorForParser(PIFIteratorForParser* this_) {
    if (this_ == nullptr) return;
    PIFIteratorForParser_reset(this_);
    forgetRoot(this_);
    delete_RowPlans(this_->heap, this_->plans, this_->planCount);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void PIFIteratorForParser_setPIF(PIFIteratorForParser* this_, const sPIF* pif) {
    PIFIteratorForParser_reset(this_);
    forgetRoot(this_);
    delete_RowPlans(this_->heap, this_->plans, this_->planCount);
    this_->plans = nullptr;
    this_->pif = nullptr;
    if (pif != nullptr) this_->plans = new_RowPlans(this_->heap, pif, &this_->planCount);
    this_->pif = pif;
}

bool PIFIteratorForParser_setRootElement(PIFIteratorForParser* this_, const DFDLUString* name,
                                         const DFDLUString* namespaceUri) {
    PIFIteratorForParser_reset(this_);
    if (!isSameRoot(this_, name, namespaceUri)) {
        forgetRoot(this_);
        const ElementTableRow* element =
            ElementTable_findGlobalElementWithNamespace(this_->pif->elementTable, name, namespaceUri);
        if (element == nullptr) return false;
        replaceString(this_->heap, &this_->rootName, name);
        replaceString(this_->heap, &this_->rootNamespace, namespaceUri);
        this_->rootRow = element->globalMember;
    }
    this_->rootItem = PIFIteratorForParser_createContextItem(this_, this_->rootRow);
    this_->currentItem = this_->rootItem;
    if (this_->rootItem != nullptr) ContextItemForParser_findMarkupSet(this_->rootItem);
    return true;
}

void PIFIteratorForParser_reset(PIFIteratorForParser* this_) {
    PIFIteratorForParser_collapseStack(this_);
    releaseRootItem(this_);
    PIFIteratorForParser_releaseExtractedText(this_);
    PIFIteratorForParser_releaseExtractedBytes(this_);
    PIFIteratorForParser_forgetScannedMarkup(this_);
    this_->stackDepth = 0;
    this_->hiddenDepth = 0;
}

bool PIFIteratorForParser_move(PIFIteratorForParser* this_) {
    ContextItemForParser* item = this_->currentItem;
    if (item != nullptr) item->functions->processNext(item);
    return this_->currentItem == nullptr;
}

const GroupMemberTableRow* PIFIteratorForParser_getPosition(const PIFIteratorForParser* this_) {
    return this_->currentItem == nullptr ? nullptr : this_->currentItem->row;
}

const DFDLUString* PIFIteratorForParser_getXPath(PIFIteratorForParser* this_) {
    return this_->currentItem == nullptr ? nullptr : ContextItem_getXPath(this_->currentItem);
}

void PIFIteratorForParser_raiseEndless(PIFIteratorForParser* this_, const GroupMemberTableRow* row) {
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_infiniteLoopPrevention, ERROR_PROCESSING, SUBKIND_NONE, "%lld%Z",
                              static_cast<long long>(BufferManager_bytePosition(this_->bufferManager)),
                              row->scdText);
}

void PIFIteratorForParser_setScannedMarkup(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                           const CompiledDFDLStringLiteral* literal, int64_t length) {
    this_->markupInfo = {row, literal, length};
    this_->scannedMarkup = &this_->markupInfo;
    this_->scannedAt =
        BufferManager_bytePosition(this_->bufferManager) + this_->delimitedScanner->contentLength;
}

void PIFIteratorForParser_setScannedMarkupWithLevel(PIFIteratorForParser* this_, int32_t level,
                                                    const CompiledDFDLStringLiteral* literal,
                                                    int64_t length) {
    const ContextItem* owner = this_->currentItem;
    if (literal->kind == MARKUP_END_OF_DATA) {
        owner = this_->rootItem;
    } else {
        for (; level > 0 && owner->parent != nullptr; --level) owner = owner->parent;
    }
    PIFIteratorForParser_setScannedMarkup(this_, owner->row, literal, length);
}

void PIFIteratorForParser_getCheckPoint(const PIFIteratorForParser* this_,
                                        PIForParserCheckPoint* checkPoint) {
    checkPoint->hasScannedMarkup = this_->scannedMarkup != nullptr;
    checkPoint->scannedMarkup = this_->markupInfo;
    checkPoint->scannedAt = this_->scannedAt;
    checkPoint->firstMember = this_->currentItem == nullptr ? 0 : this_->currentItem->firstMember;
}

void PIFIteratorForParser_restoreToCheckPoint(PIFIteratorForParser* this_,
                                              const PIForParserCheckPoint* checkPoint) {
    this_->markupInfo = checkPoint->scannedMarkup;
    this_->scannedMarkup = checkPoint->hasScannedMarkup != 0 ? &this_->markupInfo : nullptr;
    this_->scannedAt = checkPoint->scannedAt;
    if (this_->currentItem != nullptr) this_->currentItem->firstMember = checkPoint->firstMember;
}

void PIFIteratorForParser_push(PIFIteratorForParser* this_, ContextItemForParser* item) {
    if (this_->stackDepth >= MAX_STACK_DEPTH) {
        PIFIteratorForParser_raiseEndless(this_, item->row);
        return;
    }
    ContextItem_setChild(this_->currentItem, item);
    ContextItemForParser_findMarkupSet(item);
    this_->currentItem = item;
    ++this_->stackDepth;
}

void PIFIteratorForParser_pop(PIFIteratorForParser* this_) {
    ContextItemForParser* item = this_->currentItem;
    if (item->parent == nullptr) {
        ContextItemForParser_setOrderedChild(item, nullptr);
        this_->currentItem = nullptr;
        this_->stackDepth = 0;
        return;
    }
    item->parent->child = nullptr;
    this_->currentItem = static_cast<ContextItemForParser*>(item->parent);
    --this_->stackDepth;
}

void PIFIteratorForParser_collapseStack(PIFIteratorForParser* this_) {
    while (this_->currentItem != nullptr) {
        ContextItemForParser* item = this_->currentItem;
        ContextItemForParser_close(item);
        ContextItemForParser_setOrderedChild(item, nullptr);
        PIFIteratorForParser_pop(this_);
    }
}

ContextItemForParser* PIFIteratorForParser_createContextItem(PIFIteratorForParser* this_,
                                                             const GroupMemberTableRow* row) {
    const RowPlan& plan = this_->plans[row->rowIndex];
    if (plan.unsupported != nullptr || plan.kind < 0) {
        PIFIteratorForParser_raiseUnsupported(this_, row, plan.unsupported);
        return nullptr;
    }
    return ContextItemForParserPooler_getContextItemForParser(this_, row, static_cast<uint32_t>(plan.kind));
}

void PIFIteratorForParser_releaseBufferLimits(PIFIteratorForParser* this_, ContextItemForParser* item) {
    if (item->scopeClosed != 0)
        BufferManager_removeScopedBufferLengthUnparser(this_->bufferManager, item->row, false, 0);
    if (item->imposedLength >= 0)
        BufferManager_removeScopedBufferLengthUnparser(this_->bufferManager, item->row, false, 0);
    item->scopeClosed = 0;
    item->imposedLength = -1;
    PIFIteratorForParser_forgetEndOfData(this_);
}

bool PIFIteratorForParser_isScopeExhausted(PIFIteratorForParser* this_) {
    BufferManager_loadAhead(this_->bufferManager);
    return BufferManager_endOfScopedDataStream(this_->bufferManager);
}

bool PIFIteratorForParser_isDataExhausted(PIFIteratorForParser* this_) {
    BufferManager_loadAhead(this_->bufferManager);
    return BufferManager_hasNoRemainingBits(this_->bufferManager);
}

bool PIFIteratorForParser_raiseEndOfScope(PIFIteratorForParser* this_, const GroupMemberTableRow* row) {
    if (PIFIteratorForParser_isDataExhausted(this_) || !PIFIteratorForParser_isScopeExhausted(this_))
        return false;
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_endOfDataForParentStructure, ERROR_PROCESSING, SUBKIND_LACK_OF_DATA,
                              "%Z", row->scdText);
    return true;
}

const DFDLUString* PIFIteratorForParser_getPathForError(PIFIteratorForParser* this_,
                                                        ContextItemForParser* item) {
    const int32_t own = item->checkPoint == nullptr ? 0 : 1;
    const bool attempted = this_->backtrackingManager->errorEventBuffer->holdLevel > own;
    return attempted && this_->context->userTraceOn == 0 ? nullptr : ContextItem_getXPath(item);
}

void PIFIteratorForParser_forgetEndOfData(PIFIteratorForParser* this_) {
    const MarkupInfo* markup = this_->scannedMarkup;
    if (markup == nullptr || markup->literal->kind != MARKUP_END_OF_DATA) return;
    if (!PIFIteratorForParser_isScopeExhausted(this_)) this_->scannedMarkup = nullptr;
}

void PIFIteratorForParser_releaseExtractedText(PIFIteratorForParser* this_) {
    delete_DFDLUString(this_->extractedText);
    this_->extractedText = nullptr;
}

void PIFIteratorForParser_raiseUnsupported(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                           const char* what) {
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_unsupportedConstruct, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%s",
                              row->scdText, what);
}
