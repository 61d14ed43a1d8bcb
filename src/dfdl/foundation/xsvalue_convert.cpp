#include <cstring>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/xsvalue.h"

namespace {

constexpr double TWO_TO_63 = 9223372036854775808.0;
constexpr uint64_t TOP_BIT = 1ULL << 63;

// Towards zero. What has no place in 64 bits, NaN included, becomes the least integer, as the processor's own
// conversion has it.
int64_t truncate(double number) {
    return number >= -TWO_TO_63 && number < TWO_TO_63 ? static_cast<int64_t>(number) : INT64_MIN;
}

uint64_t truncateUnsigned(double number) {
    if (number < TWO_TO_63) return static_cast<uint64_t>(truncate(number));
    return static_cast<uint64_t>(truncate(number - TWO_TO_63)) ^ TOP_BIT;
}

// What is present decides, not the kind.
DFDLUString* calendarToString(const DFDLValue* value, DFDLHeapAdapter* heap) {
    const bool hasZone = DateTimeDV_hasTimeZone(value);
    const DFDLCalendarImpl* calendar = value->u.calendar.calendar;
    if (calendar == nullptr) return new_DFDLUString(heap);
    if (!DateTimeDV_hasTime(value)) return new_DFDLUString_fromDate(heap, calendar, hasZone);
    if (!DateTimeDV_hasDate(value)) return new_DFDLUString_fromTime(heap, calendar, hasZone);
    return new_DFDLUString_fromDateTime(heap, calendar, hasZone);
}

bool instant(const DFDLCalendarImpl* calendar, UDate* milliseconds) {
    UErrorCode status = U_ZERO_ERROR;
    Owned<UCalendar, ucal_close> open(DfdlCalendarImpl_getUCalendar(calendar, &status));
    if (open == nullptr) return false;
    *milliseconds = ucal_getMillis(open.get(), &status);
    return U_SUCCESS(status);
}

bool sameInstant(const DFDLCalendarImpl* a, const DFDLCalendarImpl* b) {
    UDate millisecondsOfA;
    UDate millisecondsOfB;
    return a != nullptr && b != nullptr && instant(a, &millisecondsOfA) && instant(b, &millisecondsOfB) &&
           millisecondsOfA == millisecondsOfB;
}

bool sameBytes(const DFDLValue* a, const DFDLValue* b) {
    const int64_t length = a->u.binary.length;
    return length == b->u.binary.length &&
           (length <= 0 || std::memcmp(a->u.binary.data, b->u.binary.data, static_cast<size_t>(length)) == 0);
}

bool sameText(const DFDLValue* a, const DFDLValue* b, UErrorCode* status) {
    return DFDLUString_equals(DFDLValue_toString(a, status, a->heap), DFDLValue_toString(b, status, b->heap));
}

// Of two values of one kind.
int32_t comparePayload(const DFDLValue* a, const DFDLValue* b, UErrorCode* status) {
    if (DFDLValue_IsSignedQValue(a)) return a->u.signedQ == b->u.signedQ;
    if (DFDLValue_IsUnsignedQValue(a)) return a->u.unsignedQ == b->u.unsignedQ;
    switch (a->schemaType) {
        case TYPE_STRING:
            return sameText(a, b, status);
        case TYPE_BOOLEAN:
            return a->u.boolean == b->u.boolean;
        case TYPE_DECIMAL:
            return DFDLDecimal_compare(a->u.decimal.number, b->u.decimal.number);
        case TYPE_FLOAT:
            return a->u.floatValue == b->u.floatValue;
        case TYPE_DOUBLE:
            return a->u.doubleValue == b->u.doubleValue;
        case TYPE_DATETIME:
        case TYPE_TIME:
        case TYPE_DATE:
            return sameInstant(a->u.calendar.calendar, b->u.calendar.calendar);
        case TYPE_HEXBINARY:
            return sameBytes(a, b);
        default:
            return 0;
    }
}

// How the two signednesses differ in reading a number.
struct SignedReading {
    using Word = int64_t;
    static constexpr auto fromString = DFDLUString_toSignedQValue;
    static constexpr auto fromDecimal = DFDLDecimal_getSignedQValue;
    static constexpr auto fromDouble = truncate;
};
struct UnsignedReading {
    using Word = uint64_t;
    static constexpr auto fromString = DFDLUString_toUnsignedQValue;
    static constexpr auto fromDecimal = DFDLDecimal_getUnsignedQValue;
    static constexpr auto fromDouble = truncateUnsigned;
};

template <class Reading>
typename Reading::Word toInteger(const DFDLValue* value, UErrorCode* status) {
    if (DFDLValue_isOfKinds(value, TYPE_INTEGER, TYPE_NON_NEGATIVE_INTEGER)) {
        return static_cast<typename Reading::Word>(value->u.unsignedQ);
    }
    switch (value->schemaType) {
        case TYPE_STRING:
            return Reading::fromString(value->u.string, status);
        case TYPE_DECIMAL:
            return Reading::fromDecimal(value->u.decimal.number);
        case TYPE_FLOAT:
        case TYPE_DOUBLE:
            return Reading::fromDouble(DFDLValue_getDoubleValue(value));
        default:
            return 0;
    }
}

}  // namespace

DFDLUString* DFDLValue_toString(const DFDLValue* value, UErrorCode* status, DFDLHeapAdapter* heap) {
    if (DFDLValue_IsSignedQValue(value)) return new_DFDLUString_fromSignedQValue(heap, value->u.signedQ);
    if (DFDLValue_IsUnsignedQValue(value))
        return new_DFDLUString_fromUnsignedQValue(heap, value->u.unsignedQ);
    switch (value->schemaType) {
        case TYPE_STRING:
            return value->u.string;
        case TYPE_BOOLEAN:
            return new_DFDLUString_fromBoolean(heap, value->u.boolean != 0);
        case TYPE_DECIMAL:
            return DFDLDecimal_getDecimalInUString(value->u.decimal.number, status, heap);
        case TYPE_FLOAT:
            return new_DFDLUString_fromFloat(heap, value->u.floatValue);
        case TYPE_DOUBLE:
            return new_DFDLUString_fromDouble(heap, value->u.doubleValue);
        case TYPE_DATETIME:
        case TYPE_TIME:
        case TYPE_DATE:
            return calendarToString(value, heap);
        case TYPE_HEXBINARY:
            return new_DFDLUString_fromHexBinary(heap, value->u.binary.data, value->u.binary.length);
        default:
            return new_DFDLUString_fromSignedQValue(heap, 0);
    }
}

int32_t DFDLValue_compare(const DFDLValue* a, const DFDLValue* b, UErrorCode* status) {
    return a->schemaType == b->schemaType ? comparePayload(a, b, status) : 0;
}

bool DFDLValue_equal(const DFDLValue* a, const DFDLValue* b, UErrorCode* status) {
    return a == b || DFDLValue_compare(a, b, status) != 0;
}

int64_t DFDLValue_toSignedInt(const DFDLValue* value, UErrorCode* status) {
    return toInteger<SignedReading>(value, status);
}

uint64_t DFDLValue_toUnsignedInt(const DFDLValue* value, UErrorCode* status) {
    return toInteger<UnsignedReading>(value, status);
}
