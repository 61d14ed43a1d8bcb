#include <iterator>

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/messagekeys.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"

namespace {

// Indexed by the numbers that the compiled grammar has for them.
constexpr const char* LENGTH_UNITS[] = {LengthUnits_Bits, LengthUnits_Bytes, LengthUnits_Characters};
constexpr const char* ALIGNMENT_UNITS[] = {AlignmentUnits_Bits, AlignmentUnits_Bytes};
constexpr const char* PHYSICAL_TYPES[] = {
    PhysicalType_TextString,    PhysicalType_TextNumber,     PhysicalType_BinaryNumber,
    PhysicalType_TextCalendar,  PhysicalType_BinaryCalendar, PhysicalType_TextBoolean,
    PhysicalType_BinaryBoolean, PhysicalType_BinaryOpaque,   PhysicalType_ComplexElement,
    PhysicalType_GroupSequence, PhysicalType_GroupUnordered, PhysicalType_GroupFloating,
    PhysicalType_GroupChoice};
// From SIMPLE_FLOAT on.
constexpr const char* RANGES[] = {
    DFDLParser_float_range,      DFDLParser_double_range, nullptr,
    DFDLParser_integer_range,    DFDLParser_long_range,   DFDLParser_int_range,
    DFDLParser_short_range,      DFDLParser_byte_range,   DFDLParser_ulong_range,
    DFDLParser_uint_range,       DFDLParser_ushort_range, DFDLParser_ubyte_range,
    DFDLParser_non_neg_int_range};
static_assert(std::size(RANGES) == SIMPLE_NON_NEGATIVE_INTEGER - SIMPLE_FLOAT + 1);

template <size_t Count>
const UChar* wordOf(const TraceHandlerAdapter* adapter, const char* const (&keys)[Count], int32_t number,
                    const UChar* unknown) {
    const bool known = number >= 0 && static_cast<size_t>(number) < Count && keys[number] != nullptr;
    if (adapter == nullptr || !known) return unknown;
    const UChar* word =
        ResourceCatalog_GetStringFromResource(adapter->resourceCatalog, keys[number], nullptr);
    return word == nullptr ? unknown : word;
}

}  // namespace

const UChar* TracehandlerAdapter_getLengthUnitsAsString(TraceHandlerAdapter* this_, int32_t lengthUnits) {
    return wordOf(this_, LENGTH_UNITS, lengthUnits, u"{Unknown length units}");
}

const UChar* TracehandlerAdapter_getAlignmentUnitsAsString(TraceHandlerAdapter* this_,
                                                           int32_t alignmentUnits) {
    return wordOf(this_, ALIGNMENT_UNITS, alignmentUnits, u"{Unknown alignment units}");
}

const UChar* TracehandlerAdapter_getPhysicalTypeAsString(TraceHandlerAdapter* this_, int32_t physicalType) {
    return wordOf(this_, PHYSICAL_TYPES, physicalType, u"{Unknown physical type}");
}

const UChar* TracehandlerAdapter_returnRangeAsString(TraceHandlerAdapter* this_, int32_t simpleType) {
    return wordOf(this_, RANGES, simpleType < SIMPLE_FLOAT ? -1 : simpleType - SIMPLE_FLOAT, u"");
}
