// Points in time that are counted in seconds or milliseconds.
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

DFDLValue* wrap(ParserRegionHandler* handler, DFDLSimpleTypeEnum type, DFDLCalendarImpl* calendar) {
    switch (type) {
        case SIMPLE_DATE:
            return DateDV_createDFDLValue(handler->heap, calendar, true, true);
        case SIMPLE_TIME:
            return TimeDV_createDFDLValue(handler->heap, calendar, true, true);
        case SIMPLE_DATETIME:
            return DateTimeDV_createDFDLValue(handler->heap, calendar, true, true);
        default:
            delete_DFDLCalendarImplFromUCalendar(calendar);
            return nullptr;
    }
}

double readCount(const uint8_t* bytes, int64_t count, ByteOrderEnum order) {
    return static_cast<double>(BinaryNumberConverter_getBinaryInteger(bytes, order, count));
}

DFDLValue* convert(ParserRegionHandler* handler, const GroupMemberTableRow* row, const uint8_t* bytes,
                   int64_t count) {
    ByteOrderEnum order = BYTEOR_LITTLE_ENDIAN;
    if (!ParserRegionHandler_findCalendarOrder(handler, row, &order)) return nullptr;
    const CalendarRepTableRow* rep = GroupMemberTableRow_getCalendarRepRow(row);
    const Count* counted = countOf(rep);
    if (counted == nullptr) {
        PIFIteratorForParser_raiseUnsupported(handler->pifIterator, row,
                                              "binary calendars written in digits");
        return nullptr;
    }
    if (count != counted->bytes) {
        ParserRegionHandler_raise(handler, row, counted->wrongLength);
        return nullptr;
    }
    const CalendarEpoch* epoch = findEpoch(handler, row, rep->iBinaryCalendarEpoch);
    if (epoch == nullptr) return nullptr;
    const double milliseconds = counted->milliseconds * readCount(bytes, count, order);
    return wrap(handler, row->simpleTypeKind,
                CalendarConverter_createCalendarFromMillis(handler->heap, *epoch, milliseconds));
}

}  // namespace

DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryCalendar(ParserRegionHandler* this_,
                                                                  const GroupMemberTableRow* row,
                                                                  uint8_t* block, int64_t count) {
    const ScopeExit end([&] { BufferManager_deAllocateBytes(this_->bufferManager, block); });
    return ParserRegionHandler_keepIfValid(this_, convert(this_, row, block, count), row);
}
