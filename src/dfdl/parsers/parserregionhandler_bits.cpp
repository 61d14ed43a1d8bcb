// The bytes and bits of fields that are no text.
#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/parsers/trustedlength.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/rowtrace.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

uint8_t* raiseOverflow(ParserRegionHandler* handler, const GroupMemberTableRow* row) {
    ProcessingError_reset(handler->context->currentError);
    BufferManager_raise(handler->bufferManager, DFDLParser_bufferOverflow, row);
    return nullptr;
}

// The data, which end at the last byte loaded, are too short for a block to be taken for them.
uint8_t* raiseBeyondEnd(ParserRegionHandler* handler, const GroupMemberTableRow* row) {
    BufferManager* buffer = handler->bufferManager;
    ProcessingError_reset(handler->context->currentError);
    BufferManager_raiseAt(buffer, DFDLParser_bufferOverflow, buffer->totalBytesLoaded, row);
    return nullptr;
}

// A scanner has counted bytes, whatever the units.
LengthUnitsEnum unitsOf(const GroupMemberTableRow* row) {
    const LengthSchemeTableRow* scheme = row->lengthRow;
    if (scheme == nullptr) return UNDEFINED_LUNITS;
    return scheme->iLengthKind == DELIMITED ? BYTES : scheme->iLengthUnits;
}

uint8_t* takeBytes(ParserRegionHandler* handler, const GroupMemberTableRow* row, int64_t length,
                   int64_t* count) {
    BufferManager* buffer = handler->bufferManager;
    if (!ParserRegionHandler_mayTakeBlock(buffer, length)) return raiseBeyondEnd(handler, row);
    uint8_t* block = BufferManager_allocateBytes(buffer, length);
    const int64_t start = BufferManager_bytePosition(buffer);
    if (BufferManager_getBytes(buffer, block, length, start, true, row) == length) {
        *count = length;
        return block;
    }
    BufferManager_deAllocateBytes(buffer, block);
    return raiseOverflow(handler, row);
}

template <class Row>
bool findByteOrder(ParserRegionHandler* handler, const GroupMemberTableRow* row, const Row* orderRow,
                   const char* missing, ByteOrderEnum* order) {
    if (orderRow == nullptr) {
        ParserRegionHandler_raise(handler, row, missing);
        return false;
    }
    *order = orderRow->iByteOrder;
    if (orderRow->iByteOrderExprIndex == -1) return true;
    PIFIteratorForParser_raiseUnsupported(handler->pifIterator, row, "byte orders given by an expression");
    return false;
}

// False with an error, also for types that have no bits.
bool findBitOrder(ParserRegionHandler* handler, const GroupMemberTableRow* row, ByteOrderEnum* order) {
    switch (row->iPhysicalType) {
        case BINARY_NUMBER:
            return ParserRegionHandler_findNumberOrder(handler, row, order);
        case BINARY_BOOLEAN:
            return ParserRegionHandler_findBooleanOrder(handler, row, order);
        default:
            ParserRegionHandler_raise(handler, row, DFDLParser_invalidBinaryLengthUnits);
            return false;
    }
}

bool isSigned(DFDLSimpleTypeEnum type) {
    return type != SIMPLE_BOOLEAN && (type < SIMPLE_UNSIGNED_LONG || type > SIMPLE_NON_NEGATIVE_INTEGER);
}

uint8_t* takeBits(ParserRegionHandler* handler, const GroupMemberTableRow* row, int64_t bits,
                  int64_t* count) {
    BufferManager* buffer = handler->bufferManager;
    ByteOrderEnum order = BYTEOR_LITTLE_ENDIAN;
    if (!findBitOrder(handler, row, &order)) return nullptr;
    if (order == BYTEOR_UNDEFINED) {  // a grammar's wrong number; whole bytes read as little-endian then
        PIFIteratorForParser_raiseUnsupported(handler->pifIterator, row, "bits without a byte order");
        return nullptr;
    }
    const int64_t size = ((BufferManager_bitPosition(buffer) & 7) + bits + 7) / 8;
    if (!ParserRegionHandler_mayTakeBlock(buffer, size)) return raiseBeyondEnd(handler, row);
    uint8_t* block = BufferManager_allocateBytes(buffer, size);
    uint8_t* whole = nullptr;
    const ScopeExit end([&] {
        if (whole != block) BufferManager_deAllocateBytes(buffer, block);
    });
    if (BufferManager_readBits(buffer, block, bits, row) != bits) return raiseOverflow(handler, row);
    whole = BinaryNumberConverter_transformBinaryRepToByteArray(handler->heap, block, bits, order, count,
                                                                isSigned(row->simpleTypeKind));
    return whole;
}

uint8_t* take(ParserRegionHandler* handler, const GroupMemberTableRow* row, int64_t length, int64_t* count) {
    constexpr int64_t MOST_BITS = INT64_MAX - 16;  // more than there are data, and still counted in bytes
    const LengthUnitsEnum units = unitsOf(row);
    if (units != BYTES && units != BITS) {
        ParserRegionHandler_raise(handler, row, DFDLParser_invalidBinaryLengthUnits);
        return nullptr;
    }
    if (units == BYTES && (BufferManager_bitPosition(handler->bufferManager) & 7) == 0) {
        return takeBytes(handler, row, length, count);
    }
    const int64_t bitsOfUnit = units == BYTES ? 8 : 1;
    return takeBits(handler, row, bitsOfUnit * std::min(length, MOST_BITS / bitsOfUnit), count);
}

TraceSubject placeOf(ParserRegionHandler* handler, const GroupMemberTableRow* row) {
    ContextItemForParser* item = handler->pifIterator->currentItem;
    return TraceSubject_ofPlace(handler->trace, row, item == nullptr ? nullptr : ContextItem_getXPath(item),
                                BufferManager_bytePosition(handler->bufferManager));
}

void traceMarkup(ParserRegionHandler* handler, const GroupMemberTableRow* row, const DFDLUString* bytes) {
    using Text = Owned<DFDLUString, delete_DFDLUString>;
    TraceHandlerAdapter* trace = handler->trace;
    const DelimitedScannerBytes* scanner = handler->scanner;
    Text delimiter;
    if (scanner != nullptr && scanner->found != 0) {
        delimiter.reset(
            TraceHandlerAdapter_replaceUnprintableCharacters(trace, scanner->matchedLiteral->text, false));
    }
    TraceHandlerAdapter_userTraceInfo(
        trace, row, nullptr, ut_DFDLParser_binaryMarkupLengthRepresentationIdentified, "%lld%S%Z%Z",
        static_cast<long long>(BufferManager_bytePosition(handler->bufferManager)),
        TraceHandlerAdapter_getNameForRow(trace, row), bytes, delimiter.get());
}

void traceBytes(ParserRegionHandler* handler, const GroupMemberTableRow* row, const uint8_t* block,
                int64_t count) {
    const Owned<DFDLUString, delete_DFDLUString> bytes(
        new_DFDLUString_fromHexBinary(handler->heap, block, count));
    switch (row->lengthRow->iLengthKind) {
        case IMPLICIT:
        case EXPLICIT:
        case PREFIXED:
            TraceHandlerAdapter_userTraceInfo(handler->trace, placeOf(handler, row),
                                              ut_DFDLParser_binarySpecifiedLengthRepresentationIdentified,
                                              "%Z", bytes.get());
            break;
        case DELIMITED:
            traceMarkup(handler, row, bytes.get());
            break;
        default:
            break;
    }
}

}  // namespace

bool ParserRegionHandler_findNumberOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                         ByteOrderEnum* order) {
    return findByteOrder(this_, row, GroupMemberTableRow_getBinaryNumberRow(row),
                         DFDLParser_nullBinaryNumberRow, order);
}

bool ParserRegionHandler_findBooleanOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                          ByteOrderEnum* order) {
    return findByteOrder(this_, row, GroupMemberTableRow_getBooleanRepRow(row), DFDLParser_nullBooleanRep,
                         order);
}

bool ParserRegionHandler_findCalendarOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                           ByteOrderEnum* order) {
    return findByteOrder(this_, row, GroupMemberTableRow_getCalendarRepRow(row),
                         DFDLParser_unresolvedCalendarFormat, order);
}

bool ParserRegionHandler_findDigitsOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                         ByteOrderEnum* order) {
    const CalendarRepTableRow* rep = GroupMemberTableRow_getCalendarRepRow(row);
    return findByteOrder(this_, row, rep == nullptr ? nullptr : rep->binaryNumberRow,
                         DFDLParser_nullBinaryNumberRow, order);
}

uint8_t* ParserRegionHandler_extractBinaryRepresentation(ParserRegionHandler* this_,
                                                         const GroupMemberTableRow* row, int64_t length,
                                                         int64_t* count) {
    *count = 0;
    if (length < 0) {
        ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__, DFDLParser_invalidLength,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%lld%Z", static_cast<long long>(length),
                                  GroupMemberTableRow_getElementName(row));
        return nullptr;
    }
    uint8_t* block = take(this_, row, length, count);
    if (block != nullptr && this_->context->userTraceOn != 0) traceBytes(this_, row, block, *count);
    return block;
}
