// The types whose range takes a number, against what Python says: numericranges.py.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/xsvalue.h"
#include "support/bufferrig.h"

namespace {

DFDLValue* valueOf(BufferRig& rig, const std::string& kind, const std::string& number) {
    DFDLPoolingFactory* pools = rig.heap->poolingFactory;
    const char* text = number.c_str();
    if (kind == "signed") return DFDLPoolingFactory_getSignedValue(pools, TYPE_INTEGER, std::stoll(number));
    if (kind == "unsigned") {
        return DFDLPoolingFactory_getUnsignedValue(pools, TYPE_UNSIGNED_LONG, std::stoull(number));
    }
    if (kind == "float") return DFDLPoolingFactory_getFloatDFDLValue(pools, std::strtof(text, nullptr));
    if (kind == "double") return DFDLPoolingFactory_getDoubleDFDLValue(pools, std::strtod(text, nullptr));
    if (kind == "decimal") {
        return DecimalDV_createDFDLValue(rig.heap, new_DFDLDecimalFromChar(rig.heap, rig.constants, text, 0));
    }
    if (kind == "truth") return BooleanDV_createDFDLValue(rig.heap, 1);
    return StringDV_createDFDLValue(rig.heap, DFDLUStringPooler_getDFDLUStringFromView(rig.heap, u"1"));
}

std::string takenBy(const DFDLValue* value) {
    std::string types;
    for (int32_t type = SIMPLE_FLOAT; type <= SIMPLE_NON_NEGATIVE_INTEGER; ++type) {
        if (BinaryNumberConverter_checkNumericRange(value, type)) types += ' ' + std::to_string(type);
    }
    return types;
}

// The first and the last of the kinds that hold a word of this sort.
void expectWordOfEachKind(DFDLValue* value, DFDLType last, const std::string& expected) {
    const auto first = static_cast<DFDLType>(value->schemaType);
    DFDLValue_setDFDLSchemaType(value, last);
    EXPECT_EQ(takenBy(value), expected) << last;
    DFDLValue_setDFDLSchemaType(value, first);
}

TEST(NumericRanges, AsPythonHasThem) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/converters/numericranges.txt");
    BufferRig rig;
    std::string line;
    int count = 0;
    for (; std::getline(file, line); ++count) {
        SCOPED_TRACE(line);
        const std::string expected = line.substr(line.find('=') + 1);
        std::istringstream words(line);
        std::string kind, number;
        words >> kind >> number;
        DFDLValue* value = valueOf(rig, kind, number);
        EXPECT_EQ(takenBy(value), expected);
        EXPECT_TRUE(BinaryNumberConverter_checkNumericRange(value, SIMPLE_STRING));
        if (kind == "signed") expectWordOfEachKind(value, TYPE_BYTE, expected);
        if (kind == "unsigned") expectWordOfEachKind(value, TYPE_NON_NEGATIVE_INTEGER, expected);
        delete_DFDLValue(value);
    }
    EXPECT_GT(count, 400);
}

}  // namespace
