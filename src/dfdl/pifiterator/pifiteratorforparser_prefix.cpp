// Lengths that stand before the content, in a field of a type of their own.
#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

// No position is as far away as this; below, a length can be counted in bits.
constexpr int64_t FARTHEST = INT64_MAX >> 6;

long long bytePosition(const PIFIteratorForParser* iterator) {
    return static_cast<long long>(BufferManager_bytePosition(iterator->bufferManager));
}

bool takeInitiator(PIFIteratorForParser* iterator, ContextItemForParser* item,
                   const GroupMemberTableRow* prefix) {
    ProcessingError* error = iterator->context->currentError;
    if ((prefix->flags & GM_INITIATOR) == 0) return true;
    if (!ParserRegionHandler_handleInitiatorRegion(iterator->parserRegionHandler, prefix)) {
        // The handler knows neither list nor path.
        if (ProcessingError_hasKey(error, DFDLParser_missingInitiator)) {
            ProcessingError_reset(error);
            PIFIteratorForParser_raiseMissingInitiatorOf(iterator, item, prefix);
        }
        return false;
    }
    const DelimitedScannerBytes* scanner = iterator->delimitedScanner;
    return PIFIteratorForParser_consumeMarkup(iterator, prefix, scanner->matchedLiteral,
                                              scanner->matchedLength);
}

DFDLValue* readTextPrefix(PIFIteratorForParser* iterator, const GroupMemberTableRow* prefix, int64_t length) {
    ParserRegionHandler* handler = iterator->parserRegionHandler;
    Owned<DFDLUString, delete_DFDLUString> text(
        ParserRegionHandler_extractTextRepresentation(handler, prefix, length));
    if (text == nullptr || PIFIteratorForParser_hasFailed(iterator)) return nullptr;
    return ParserRegionHandler_handleSimpleContent_TextNumber(handler, prefix, text.release());
}

DFDLValue* readBinaryPrefix(PIFIteratorForParser* iterator, const GroupMemberTableRow* prefix,
                            int64_t length) {
    ParserRegionHandler* handler = iterator->parserRegionHandler;
    int64_t count = 0;
    uint8_t* bytes = ParserRegionHandler_extractBinaryRepresentation(handler, prefix, length, &count);
    if (bytes == nullptr || PIFIteratorForParser_hasFailed(iterator)) {
        if (bytes != nullptr) BufferManager_deAllocateBytes(iterator->bufferManager, bytes);
        return nullptr;
    }
    return ParserRegionHandler_handleSimpleContent_BinaryNumber(handler, prefix, bytes, count);
}

// The value of the field; null with an error.
DFDLValue* readPrefix(PIFIteratorForParser* iterator, const GroupMemberTableRow* prefix, int64_t length) {
    return (prefix->flags & GM_TEXT) != 0 ? readTextPrefix(iterator, prefix, length)
                                          : readBinaryPrefix(iterator, prefix, length);
}

// Says that the length cannot be told, unless the grammar is at fault.
void raiseUnreadable(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    ProcessingError* error = iterator->context->currentError;
    if (ProcessingError_hasKey(error, DFDLParser_unsupportedConstruct)) return;
    const bool cutOff = ProcessingError_hasKey(error, DFDLParser_bufferOverflow) ||
                        ProcessingError_hasKey(error, DFDLParser_endOfDataForParentStructure);
    if (!cutOff && iterator->context->userTraceOn != 0 && ProcessingError_isSet(error))
        TraceHandlerAdapter_userTraceError(iterator->traceAdapter, error);
    ProcessingError_reset(error);
    if (cutOff) {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_bufferOverflow, ERROR_PROCESSING,
                                  SUBKIND_NONE, "%lld%Z", bytePosition(iterator), item->row->scdText);
    } else {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_invalidPrefixedLength,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld",
                                  GroupMemberTableRow_getElementName(item->row), bytePosition(iterator));
    }
}

// A value beyond all positions is as good as the farthest: the data end before it.
int64_t lengthOf(const DFDLValue* value) {
    if (value->schemaType == TYPE_DECIMAL && !DFDLDecimal_fitsInSignedQValue(value->u.decimal.number))
        return DFDLDecimal_signum(value->u.decimal.number) > 0 ? FARTHEST : INT64_MIN;
    UErrorCode status = U_ZERO_ERROR;
    const bool isUnsigned = value->schemaType >= TYPE_UNSIGNED_LONG;
    const int64_t length = DFDLValue_toSignedInt(value, &status);
    if (isUnsigned && length < 0) return FARTHEST;
    return length > FARTHEST ? FARTHEST : length;
}

// Of a length that counts its prefix; the least number stays what it is.
int64_t lengthBehind(int64_t length, int64_t prefix) {
    int64_t rest;
    return __builtin_sub_overflow(length, prefix, &rest) ? INT64_MIN : rest;
}

bool checkLength(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t length) {
    if (length >= 0) return true;
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                              DFDLParser_negativePrefixedLength, ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld",
                              item->row->scdText, static_cast<long long>(length));
    return false;
}

}  // namespace

bool PIFIteratorForParser_calculatePrefixedLength(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                                  ContextItemForParser* item, int64_t* length) {
    const GroupMemberTableRow* prefix = row->lengthRow->prefixElement->globalMember;
    int64_t own = 0;
    if (!takeInitiator(this_, item, prefix)) return false;
    if (PIFIteratorForParser_calculateElementLength(this_, prefix, item, &own) != 1) return false;
    DFDLValue* value = readPrefix(this_, prefix, own);
    if (value == nullptr) {
        raiseUnreadable(this_, item);
        return false;
    }
    int64_t result = lengthOf(value);
    DFDLPoolingFactory_releaseDFDLValue(this_->heap->poolingFactory, value);
    if (row->lengthRow->iPrefixIncludesPrefixLength) result = lengthBehind(result, own);
    if (!checkLength(this_, item, result)) return false;
    if ((prefix->flags & GM_TERMINATOR) != 0) {
        // A prefix with a terminator has never given a length, whether the terminator is there or not.
        ParserRegionHandler_handleTerminatorRegion(this_->parserRegionHandler, prefix);
        return false;
    }
    *length = result;
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(
            this_, item, ut_DFDLParser_prefixLengthSet, "%lld%S", static_cast<long long>(result),
            TracehandlerAdapter_getLengthUnitsAsString(this_->traceAdapter, item->plan->units));
    }
    return true;
}
