#include "dfdl/parsers/parserregionhandler.h"

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/alignmenttable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/contextitemforparser.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

void trace(ParserRegionHandler* handler, ContextItemForParser* item, const char* key, int64_t amount) {
    if (handler->context->userTraceOn == 0) return;
    PIFIteratorForParser_userTrace(handler->pifIterator, item, key, "%lld", static_cast<long long>(amount));
}

int32_t skipUnits(const AlignmentTableRow* row) {
    return row->iAlignmentUnits == ALUNITS_BITS ? BITS : BYTES;
}

const char* keyByUnits(const AlignmentTableRow* row, const char* forBits, const char* forBytes) {
    return row->iAlignmentUnits == ALUNITS_BITS ? forBits : forBytes;
}

bool skipLeading(ParserRegionHandler* handler, ContextItemForParser* item, const AlignmentTableRow* row) {
    const int64_t amount = row->iLeadingSkipBytes;
    if (amount <= 0) return true;
    trace(handler, item,
          keyByUnits(row, ut_DFDLParser_reportLeadingSkipBits, ut_DFDLParser_reportLeadingSkipBytes), amount);
    return BufferManager_skipData(handler->bufferManager, item->row, skipUnits(row), amount) == amount;
}

bool alignToBits(ParserRegionHandler* handler, ContextItemForParser* item, int64_t alignment) {
    const int64_t position = BufferManager_bitPosition(handler->bufferManager);
    if (position < 1 || alignment < 2) return true;
    const int64_t rest = position % alignment;
    if (rest == 0) return true;
    trace(handler, item, ut_DFDLParser_reportLeadingAlignmentBits, alignment - rest);
    return BufferManager_skipBits(handler->bufferManager, alignment - rest, item->row) == alignment - rest;
}

bool alignToByteBoundary(ParserRegionHandler* handler, const GroupMemberTableRow* row) {
    const int64_t offset = BufferManager_bitPosition(handler->bufferManager) & 7;
    return offset == 0 || BufferManager_skipBits(handler->bufferManager, 8 - offset, row) == 8 - offset;
}

bool alignToBytes(ParserRegionHandler* handler, ContextItemForParser* item, int64_t alignment) {
    if (!alignToByteBoundary(handler, item->row)) return false;
    const int64_t rest = BufferManager_bytePosition(handler->bufferManager) % alignment;
    if (rest == 0) return true;
    trace(handler, item, ut_DFDLParser_reportLeadingAlignmentBytes, alignment - rest);
    return BufferManager_skipBytes(handler->bufferManager, alignment - rest, item->row) == alignment - rest;
}

}  // namespace

ParserRegionHandler* new_ParserRegionHandler(DFDLHeapAdapter* heap, DFDLConstants* constants,
                                             Context* context, BufferManager* bufferManager,
                                             CharsetManager* charsetManager, TraceHandlerAdapter* trace) {
    auto* this_ = DFDLHeapAdapter_new<ParserRegionHandler>(heap);
    this_->context = context;
    this_->constants = constants;
    this_->bufferManager = bufferManager;
    this_->charsetManager = charsetManager;
    this_->trace = trace;
    this_->scratchDecimal = new_DFDLDecimal(heap, constants);
    this_->textNumberFormatMgr = new_TextNumberFormatMgr(heap, false);
    this_->textCalendarFormatMgr = new_TextCalendarFormatMgr(heap);
    return this_;
}

void delete_ParserRegionHandler(ParserRegionHandler* this_) {
    if (this_ == nullptr) return;
    delete_TextNumberFormatMgr(this_->textNumberFormatMgr);
    delete_TextCalendarFormatMgr(this_->textCalendarFormatMgr);
    delete_DFDLDecimal(this_->scratchDecimal);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ParserRegionHandler_setPIF(ParserRegionHandler* this_, const sPIF* pif) {
    this_->pif = pif;
    this_->epochText = nullptr;
    TextCalendarFormatMgr_reset(this_->textCalendarFormatMgr);  // it goes by the rows of the grammar
    this_->textNumberFormatMgr->table = pif == nullptr ? nullptr : pif->textNumberTable;
    TextNumberFormatMgr_reset(this_->textNumberFormatMgr, false);
}

void ParserRegionHandler_reset(ParserRegionHandler* this_) {
    TextNumberFormatMgr_reset(this_->textNumberFormatMgr, true);
}

bool ParserRegionHandler_handleLeadingAlignment(ParserRegionHandler* this_, ContextItemForParser* item) {
    const AlignmentTableRow* row = item->row->alignmentRow;
    if (row == nullptr) return alignToByteBoundary(this_, item->row);
    if (!skipLeading(this_, item, row)) return false;
    if (row->iAlignment <= 0) return true;
    return row->iAlignmentUnits == ALUNITS_BITS ? alignToBits(this_, item, row->iAlignment)
                                                : alignToBytes(this_, item, row->iAlignment);
}

bool ParserRegionHandler_handleTrailingAlignment(ParserRegionHandler* this_, ContextItemForParser* item) {
    const AlignmentTableRow* row = item->row->alignmentRow;
    if (row == nullptr) return true;
    const int64_t amount = row->iTrailingSkipBytes;
    trace(this_, item,
          keyByUnits(row, ut_DFDLParser_reportTrailingAlignmentBits,
                     ut_DFDLParser_reportTrailingAlignmentBytes),
          amount);
    return amount <= 0 ||
           BufferManager_skipData(this_->bufferManager, item->row, skipUnits(row), amount) == amount;
}

void ParserRegionHandler_raise(ParserRegionHandler* this_, const GroupMemberTableRow* row, const char* key) {
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__, key, ERROR_PROCESSING,
                              SUBKIND_NONE, "%Z", GroupMemberTableRow_getElementName(row));
}

void ParserRegionHandler_raiseNullText(ParserRegionHandler* this_, const GroupMemberTableRow* row) {
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_nullConversionString, ERROR_INTERNAL, SUBKIND_NONE, "%Z",
                              GroupMemberTableRow_getElementName(row));
}
