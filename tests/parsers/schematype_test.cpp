// Which computed values an element's type takes, and of which kind they are then.
#include <gtest/gtest.h>

#include <string>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "support/bufferrig.h"

namespace {

// One value of each family, as an expression gives it.
using Make = DFDLValue* (*)(BufferRig&);

DFDLValue* none(BufferRig&) { return nullptr; }
DFDLValue* string(BufferRig& rig) {
    return StringDV_createDFDLValue(rig.heap, DFDLUStringPooler_getDFDLUStringFromView(rig.heap, u"7"));
}
DFDLValue* boolean(BufferRig& rig) { return BooleanDV_createDFDLValue(rig.heap, 1); }
DFDLValue* bytes(BufferRig& rig) { return HexBinaryDV_createDFDLValue(rig.heap, nullptr, 0, false); }
DFDLValue* calendar(BufferRig& rig) {
    return DateTimeDV_createDFDLValue(rig.heap, new_DFDLCalendarImpl(rig.heap), true, false);
}
DFDLValue* single(BufferRig& rig) { return FloatDV_createDFDLValue(rig.heap, 7); }
DFDLValue* real(BufferRig& rig) { return DoubleDV_createDFDLValue(rig.heap, 7); }
DFDLValue* decimal(BufferRig& rig) {
    return DecimalDV_createDFDLValue(rig.heap, new_DFDLDecimal(rig.heap, rig.constants));
}
DFDLValue* word(BufferRig& rig) { return LongLongDV_createDFDLValue(rig.heap, 7); }
DFDLValue* unsignedWord(BufferRig& rig) { return NonNegativeIntegerDV_createDFDLValue(rig.heap, 7); }

constexpr Make FAMILIES[] = {none,   string, boolean, bytes, calendar,
                             single, real,   decimal, word,  unsignedWord};

struct Case {
    DFDLSimpleTypeEnum type;
    Make family;  // the only one that it takes
    DFDLType kind;
};

constexpr Case CASES[] = {
    {SIMPLE_STRING, string, TYPE_STRING},
    {SIMPLE_BOOLEAN, boolean, TYPE_BOOLEAN},
    {SIMPLE_HEXBINARY, bytes, TYPE_HEXBINARY},
    {SIMPLE_DATE, calendar, TYPE_DATE},
    {SIMPLE_TIME, calendar, TYPE_TIME},
    {SIMPLE_DATETIME, calendar, TYPE_DATETIME},
    {SIMPLE_FLOAT, single, TYPE_FLOAT},
    {SIMPLE_DOUBLE, real, TYPE_DOUBLE},
    {SIMPLE_DECIMAL, decimal, TYPE_DECIMAL},
    {SIMPLE_INTEGER, word, TYPE_INTEGER},
    {SIMPLE_LONG, word, TYPE_LONG},
    {SIMPLE_INT, word, TYPE_INT},
    {SIMPLE_SHORT, word, TYPE_SHORT},
    {SIMPLE_BYTE, word, TYPE_BYTE},
    {SIMPLE_UNSIGNED_LONG, unsignedWord, TYPE_UNSIGNED_LONG},
    {SIMPLE_UNSIGNED_INT, unsignedWord, TYPE_UNSIGNED_INT},
    {SIMPLE_UNSIGNED_SHORT, unsignedWord, TYPE_UNSIGNED_SHORT},
    {SIMPLE_UNSIGNED_BYTE, unsignedWord, TYPE_UNSIGNED_BYTE},
    {SIMPLE_NON_NEGATIVE_INTEGER, unsignedWord, TYPE_NON_NEGATIVE_INTEGER},
};

TEST(SchemaType, TakesItsOwnFamilyAlone) {
    BufferRig rig;
    ParserRegionHandler* handler =
        new_ParserRegionHandler(rig.heap, rig.constants, rig.context, rig.buffer, rig.charsets, nullptr);
    for (const Case& one : CASES) {
        rig.item.simpleTypeKind = one.type;
        for (const Make& make : FAMILIES) {
            SCOPED_TRACE("type " + std::to_string(one.type) + ", family " + std::to_string(&make - FAMILIES));
            DFDLValue* value = make(rig);
            const uint32_t before = value == nullptr ? TYPE_NONE : value->schemaType;
            const DFDLValue* typed = ParserRegionHandler_setSchemaType(handler, value, &rig.item);
            EXPECT_EQ(typed, make == one.family ? value : nullptr);
            EXPECT_EQ(rig.takeError(), make == one.family ? "" : "CTDP3125E item");
            if (value == nullptr) continue;
            EXPECT_EQ(value->schemaType, make == one.family ? one.kind : before);
            DFDLPoolingFactory_releaseDFDLValue(rig.heap->poolingFactory, value);
        }
    }
    delete_ParserRegionHandler(handler);
}

}  // namespace
