// Points in time that are counted in seconds or milliseconds, or written in packed digits.
#include <string_view>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

// One way of counting.
struct Count {
    int64_t bytes;
    double milliseconds;  // of one that is counted
    const char* wrongLength;
};
constexpr Count SECONDS = {4, 1000, DATETIME_BINARY_BINARYSECONDS_LENGTH};
constexpr Count MILLISECONDS = {8, 1, DATETIME_BINARY_MILLISECONDS_LENGTH};

const Count* countOf(const CalendarRepTableRow* rep) {
    switch (CalendarRepTableRow_getBinaryCalendarRepresentation(rep)) {
        case BINARY_SECONDS:
            return &SECONDS;
        case BINARY_MILLISECONDS:
            return &MILLISECONDS;
        default:
            return nullptr;
    }
}

bool isUnixEpoch(const DFDLUString* epoch) {
    return DFDLUString_view(epoch) == std::u16string_view(DFDLConstants::EPOCH_DATE_TIME);
}

void raiseBadEpoch(ParserRegionHandler* handler, const GroupMemberTableRow* row, const DFDLUString* epoch) {
    ProcessingError_setValues(handler->context->currentError, __FILE__, __LINE__,
                              DFDLParser_invalidBinaryCalendarEpoch, ERROR_PROCESSING, SUBKIND_NONE, "%Z%Z",
                              epoch, GroupMemberTableRow_getElementName(row));
}

// Rows of a grammar have few epochs, and the text of one takes about ten microseconds to read. Null with an
// error.
const CalendarEpoch* findEpoch(ParserRegionHandler* handler, const GroupMemberTableRow* row,
                               const DFDLUString* text) {
    if (isUnixEpoch(text)) return &CALENDAR_UNIX_EPOCH;
    if (text != nullptr && text == handler->epochText) return &handler->epoch;
    if (text != nullptr && CalendarConverter_readEpoch(text, handler->constants, &handler->epoch)) {
        handler->epochText = text;
        return &handler->epoch;
    }
    handler->epochText = nullptr;
    raiseBadEpoch(handler, row, text);
    return nullptr;
}

double readCount(const uint8_t* bytes, int64_t count, ByteOrderEnum order) {
    return static_cast<double>(BinaryNumberConverter_getBinaryInteger(bytes, order, count));
}

// Null with an error.
DFDLCalendarImpl* convertCount(ParserRegionHandler* handler, const GroupMemberTableRow* row,
                               const CalendarRepTableRow* rep, const Count& counted, const uint8_t* bytes,
                               int64_t count) {
    ByteOrderEnum order = BYTEOR_LITTLE_ENDIAN;
    if (!ParserRegionHandler_findCalendarOrder(handler, row, &order)) return nullptr;
    if (count != counted.bytes) {
        ParserRegionHandler_raise(handler, row, counted.wrongLength);
        return nullptr;
    }
    const CalendarEpoch* epoch = findEpoch(handler, row, rep->iBinaryCalendarEpoch);
    if (epoch == nullptr) return nullptr;
    const double milliseconds = counted.milliseconds * readCount(bytes, count, order);
    return CalendarConverter_createCalendarFromMillis(handler->heap, *epoch, milliseconds);
}

// Null with an error.
DFDLCalendarImpl* convertDigits(ParserRegionHandler* handler, const GroupMemberTableRow* row,
                                const uint8_t* bytes, int64_t count) {
    const CalendarRepTableRow* rep = ParserRegionHandler_findCalendarFormat(handler, row);
    if (rep == nullptr) return nullptr;
    ByteOrderEnum order = BYTEOR_LITTLE_ENDIAN;
    if (!ParserRegionHandler_findDigitsOrder(handler, row, &order)) return nullptr;
    const BinaryField field{bytes, count, order, row->simpleTypeKind, rep->binaryNumberRow, row};
    const Owned<DFDLUString, delete_DFDLUString> digits(
        BinaryNumberConverter_createStringIntegerFromBinary(&field, handler->heap));
    if (ProcessingError_isSet(handler->context->currentError)) return nullptr;
    if (DFDLUString_length(digits.get()) == 0) {
        ParserRegionHandler_raise(handler, row, DFDLParser_calendarEmptyString);
        return nullptr;
    }
    return ParserRegionHandler_createCalendarFromText(handler, rep, row, digits.get());
}

bool isInDigits(const CalendarRepTableRow* rep) {
    const BinaryNumberRepEnum representation = CalendarRepTableRow_getBinaryCalendarRepresentation(rep);
    return representation == BCD || representation == PACKED || representation == ZOV4690_PACKED;
}

DFDLValue* convert(ParserRegionHandler* handler, const GroupMemberTableRow* row, const uint8_t* bytes,
                   int64_t count) {
    const CalendarRepTableRow* rep = GroupMemberTableRow_getCalendarRepRow(row);
    if (rep == nullptr) {
        ParserRegionHandler_raise(handler, row, DFDLParser_unresolvedCalendarFormat);
        return nullptr;
    }
    DFDLCalendarImpl* calendar = nullptr;
    if (const Count* counted = countOf(rep)) {
        calendar = convertCount(handler, row, rep, *counted, bytes, count);
    } else if (isInDigits(rep)) {
        calendar = convertDigits(handler, row, bytes, count);
    } else {
        ParserRegionHandler_raise(handler, row, DFDLParser_nullBinaryNumberRow);
    }
    return ParserRegionHandler_makeCalendarValue(handler, row->simpleTypeKind, calendar);
}

}  // namespace

DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryCalendar(ParserRegionHandler* this_,
                                                                  const GroupMemberTableRow* row,
                                                                  uint8_t* block, int64_t count) {
    const ScopeExit end([&] { BufferManager_deAllocateBytes(this_->bufferManager, block); });
    return ParserRegionHandler_keepIfValid(this_, convert(this_, row, block, count), row);
}
