#ifndef DFDL_CONVERTERS_BINARYNUMBERCONVERTER_H
#define DFDL_CONVERTERS_BINARYNUMBERCONVERTER_H

#include <cstdint>

struct DFDLDecimal;
struct DFDLValue;

// Whether a number lies in the range of a simple type (DFDLSimpleTypeEnum). Types without bounds of their own
// take everything. 64-bit words are taken as signed or unsigned by the type.
bool BinaryNumberConverter_checkIntegerRange(int64_t value, int32_t simpleType);
bool BinaryNumberConverter_checkDecimalRange(DFDLDecimal* value, int32_t simpleType);
// Values that are no numbers pass.
bool BinaryNumberConverter_checkNumericRange(const DFDLValue* value, int32_t simpleType);

#endif
