#include "dfdl/processor/dochandleradapter.h"

#include <bit>
#include <charconv>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/converters/packedcalendar.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/xsvalue.h"

namespace {

constexpr size_t DIGITS_CAPACITY = 21;  // the longest 64-bit number with sign or without, and a terminator
// Of an integer. A few characters of a field can be an exponent of many millions, whose zeros would fill the
// memory.
constexpr int32_t MOST_ZEROS = 65536;

template <class Handler, class... Arguments, class... Values>
void call(Handler* handler, void (*slot)(Handler*, Arguments...), Values... values) {
    if (slot != nullptr) slot(handler, static_cast<Arguments>(values)...);
}

void giveString(DFDLDocHandlerImpl* handler, const DFDLUString* string) {
    call(handler, handler->elementStringValue, DocHandlerAdapter_chars(string), DFDLUString_length(string),
         DFDL_VALUE_STRING);
}

// The value may hold an integer that is too large for a number of 64 bits.
uint32_t decimalTypeOf(const DFDLValue* value) {
    switch (DecimalDV_getModelSchemaType(value)) {
        case SIMPLE_UNSIGNED_LONG:
            return DFDL_VALUE_UNSIGNED_LONG;
        case SIMPLE_NON_NEGATIVE_INTEGER:
            return DFDL_VALUE_NON_NEGATIVE_INTEGER;
        case SIMPLE_INTEGER:
            return DFDL_VALUE_INTEGER;
        default:
            return DFDL_VALUE_DECIMAL;
    }
}

// Integers have no exponent where they are read again as integers.
bool hasZerosForExponent(const DFDLDecimal* number, uint32_t type) {
    const int32_t exponent = number->number.exponent;
    return type != DFDL_VALUE_DECIMAL && exponent > 0 && exponent <= MOST_ZEROS;
}

void giveDecimal(DocHandlerAdapter* adapter, const DFDLValue* value) {
    DFDLDocHandlerImpl* handler = adapter->docHandler;
    if (handler->elementDecimalValue == nullptr) return;
    const uint32_t type = decimalTypeOf(value);
    const DFDLDecimal* number = value->u.decimal.number;
    const auto write =
        hasZerosForExponent(number, type) ? DFDLDecimal_getDecimalWithoutExponent : DFDLDecimal_getDecimal;
    int32_t length = 0;
    char* digits = write(number, &length, adapter->messageHeap);
    handler->elementDecimalValue(handler, digits, length, type);
    DFDLBufferFactory_FreeBuffer(adapter->messageHeap->bufferFactory, reinterpret_cast<uint8_t*>(digits));
}

void giveCalendar(DFDLDocHandlerImpl* handler, const DFDLValue* value, uint32_t type) {
    call(handler, handler->elementCalendarValue, value->u.calendar.calendar, type);
}

// A word with a point, as a decimal is written; from the last digit to the first.
void giveDigits(DFDLDocHandlerImpl* handler, int64_t word, int32_t places) {
    if (handler->elementDecimalValue == nullptr) return;
    uint64_t rest = word < 0 ? 0 - static_cast<uint64_t>(word) : static_cast<uint64_t>(word);
    char text[DIGITS_CAPACITY + MOST_PLACES + 2];
    char* const end = text + sizeof text - 1;
    char* first = end;
    const auto writeDigit = [&] {
        *--first = static_cast<char>('0' + rest % 10);
        rest /= 10;
    };
    *end = '\0';
    for (int32_t place = 0; place < places; ++place) writeDigit();
    if (places > 0) *--first = '.';
    do writeDigit();
    while (rest != 0);
    if (word < 0) *--first = '-';
    handler->elementDecimalValue(handler, first, static_cast<int32_t>(end - first), DFDL_VALUE_DECIMAL);
}

// ---- Values in words, by their type ---------------------------------------------------------------------

using GivePlain = void (*)(const DocHandlerAdapter* adapter, PlainValue value);

// Integers are narrowed to what the slot takes.
template <auto Slot, uint32_t TYPE>
void giveInteger(const DocHandlerAdapter* adapter, PlainValue value) {
    call(adapter->docHandler, adapter->docHandler->*Slot, value.word, TYPE);
}

// One of unlimited size that fits 64 bits: as the number that it is, or as digits.
template <class Number, auto Slot, uint32_t TYPE>
void giveWideInteger(const DocHandlerAdapter* adapter, PlainValue value) {
    DFDLDocHandlerImpl* handler = adapter->docHandler;
    if (adapter->fastSmallIntegers != 0) return giveInteger<Slot, TYPE>(adapter, value);
    if (handler->elementDecimalValue == nullptr) return;
    char digits[DIGITS_CAPACITY];
    char* end = std::to_chars(digits, digits + DIGITS_CAPACITY - 1, static_cast<Number>(value.word)).ptr;
    *end = '\0';
    handler->elementDecimalValue(handler, digits, static_cast<int32_t>(end - digits), TYPE);
}

void givePlainFloat(const DocHandlerAdapter* adapter, PlainValue value) {
    call(adapter->docHandler, adapter->docHandler->elementFloatValue,
         std::bit_cast<float>(static_cast<uint32_t>(value.word)), DFDL_VALUE_FLOAT);
}

void givePlainDouble(const DocHandlerAdapter* adapter, PlainValue value) {
    call(adapter->docHandler, adapter->docHandler->elementDoubleValue, std::bit_cast<double>(value.word),
         DFDL_VALUE_DOUBLE);
}

void givePlainDecimal(const DocHandlerAdapter* adapter, PlainValue value) {
    giveDigits(adapter->docHandler, value.word, value.places);
}

template <uint32_t TYPE>
void givePlainCalendar(const DocHandlerAdapter* adapter, PlainValue value) {
    DFDLDocHandlerImpl* handler = adapter->docHandler;
    if (handler->elementCalendarValue == nullptr) return;
    const CalendarFields fields = PackedCalendar_fields(value.word);
    DFDLCalendarImpl calendar{};
    CalendarFields_fillCalendar(&fields, &calendar);
    handler->elementCalendarValue(handler, &calendar, TYPE);
}

void giveNothing(const DocHandlerAdapter* /*adapter*/, PlainValue /*value*/) {}

using Slots = DFDLDocHandlerImpl;
// By DFDLType.
constexpr GivePlain GIVE_PLAIN[] = {
    giveNothing,
    giveNothing,  // TYPE_NONE
    giveNothing,  // TYPE_STRING
    giveInteger<&Slots::elementBooleanValue, DFDL_VALUE_BOOLEAN>,
    givePlainDecimal,
    givePlainFloat,
    givePlainDouble,
    givePlainCalendar<DFDL_VALUE_DATETIME>,
    givePlainCalendar<DFDL_VALUE_TIME>,
    givePlainCalendar<DFDL_VALUE_DATE>,
    giveNothing,  // TYPE_HEXBINARY
    giveWideInteger<int64_t, &Slots::elementLongValue, DFDL_VALUE_INTEGER>,
    giveInteger<&Slots::elementLongValue, DFDL_VALUE_LONG>,
    giveInteger<&Slots::elementIntValue, DFDL_VALUE_INT>,
    giveInteger<&Slots::elementShortValue, DFDL_VALUE_SHORT>,
    giveInteger<&Slots::elementByteValue, DFDL_VALUE_BYTE>,
    giveInteger<&Slots::elementULongValue, DFDL_VALUE_UNSIGNED_LONG>,
    giveInteger<&Slots::elementUIntValue, DFDL_VALUE_UNSIGNED_INT>,
    giveInteger<&Slots::elementUShortValue, DFDL_VALUE_UNSIGNED_SHORT>,
    giveInteger<&Slots::elementUByteValue, DFDL_VALUE_UNSIGNED_BYTE>,
    giveWideInteger<uint64_t, &Slots::elementULongValue, DFDL_VALUE_NON_NEGATIVE_INTEGER>,
};
static_assert(std::size(GIVE_PLAIN) == TYPE_NON_NEGATIVE_INTEGER + 1);

// ---- Values of any type ----------------------------------------------------------------------------------

void give(DocHandlerAdapter* adapter, const DFDLValue* value) {
    DFDLDocHandlerImpl* handler = adapter->docHandler;
    const auto& payload = value->u;
    switch (value->schemaType) {
        case TYPE_STRING:
            return giveString(handler, payload.string);
        case TYPE_BOOLEAN:
            return call(handler, handler->elementBooleanValue, payload.boolean, DFDL_VALUE_BOOLEAN);
        case TYPE_DECIMAL:
            return giveDecimal(adapter, value);
        case TYPE_FLOAT:
            return call(handler, handler->elementFloatValue, payload.floatValue, DFDL_VALUE_FLOAT);
        case TYPE_DOUBLE:
            return call(handler, handler->elementDoubleValue, payload.doubleValue, DFDL_VALUE_DOUBLE);
        case TYPE_DATETIME:
            return giveCalendar(handler, value, DFDL_VALUE_DATETIME);
        case TYPE_TIME:
            return giveCalendar(handler, value, DFDL_VALUE_TIME);
        case TYPE_DATE:
            return giveCalendar(handler, value, DFDL_VALUE_DATE);
        case TYPE_HEXBINARY:
            return call(handler, handler->elementBinaryValue, payload.binary.data, payload.binary.length,
                        DFDL_VALUE_HEXBINARY);
        default:  // integers, of which those without a sign have the same bits
            return DocHandlerAdapter_plainValue(adapter, static_cast<DFDLType>(value->schemaType),
                                                {payload.signedQ, 0});
    }
}

}  // namespace

DocHandlerAdapter* new_DocHandlerAdapter(DFDLHeapAdapter* heap, Context* context, ResourceCatalog* catalog,
                                         bool fastSmallIntegers) {
    auto* this_ = DFDLHeapAdapter_new<DocHandlerAdapter>(heap);
    this_->messageHeap = heap;
    this_->context = context;
    this_->resourceCatalog = catalog;
    this_->fastSmallIntegers = fastSmallIntegers ? 1U : 0U;
    return this_;
}

void delete_DocHandlerAdapter(DocHandlerAdapter* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DocHandlerAdapter_startDocument(DocHandlerAdapter* this_) {
    call(this_->docHandler, this_->docHandler->startDocument, "1.0", u"", 0);
}

void DocHandlerAdapter_endDocument(DocHandlerAdapter* this_, int64_t bytes) {
    call(this_->docHandler, this_->docHandler->endDocument, bytes);
}

void DocHandlerAdapter_plainValue(const DocHandlerAdapter* this_, DFDLType type, PlainValue value) {
    if (type < std::size(GIVE_PLAIN)) GIVE_PLAIN[type](this_, value);
}

void DocHandlerAdapter_plainBytes(DocHandlerAdapter* this_, const PlainElement* plan, const uint8_t* bytes,
                                  int64_t count, int64_t startBit, int64_t endBit) {
    DFDLDocHandlerImpl* handler = this_->docHandler;
    DocHandlerAdapter_startPlain(this_, plan, startBit);
    call(handler, handler->elementBinaryValue, bytes, count, DFDL_VALUE_HEXBINARY);
    DocHandlerAdapter_endElement(this_, endBit);
}

void DocHandlerAdapter_elementValue(DocHandlerAdapter* this_, DFDLValue* value) {
    const ScopeExit release(
        [this_, value] { DFDLPoolingFactory_releaseDFDLValue(this_->heap->poolingFactory, value); });
    give(this_, value);
}

void DocHandlerAdapter_recoverableError(DocHandlerAdapter* this_, const ProcessingError* record) {
    DFDLErrorHandlerImpl_deliver(this_->errorHandler, &DFDLErrorHandlerImpl::validationError,
                                 DIAGNOSTIC_RECOVERABLE_ERROR, record, this_->messageHeap,
                                 this_->resourceCatalog, this_->scratch);
}
