#ifndef DFDL_CONVERTERS_SIMPLEVALUECONVERTER_H
#define DFDL_CONVERTERS_SIMPLEVALUECONVERTER_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLStringHashMap;
struct DFDLStringLiteral;
struct DFDLUString;
struct StringLiteralCache;

// What a serializer needs to write values: the literals of its grammar as the text that they are written as.
// Belongs to its serializer.
struct SimpleValueConverter {
    DFDLHeapAdapter* heap;
    StringLiteralCache* literals;
    DFDLStringHashMap* literalStrings;  // from literals to DFDLUString
};

SimpleValueConverter* new_SimpleValueConverter(DFDLHeapAdapter* heap);
void delete_SimpleValueConverter(SimpleValueConverter* this_);  // null is ignored

// The converter keeps it. Null with TEXT_INVALID_MNEMONIC raised if the text is no literal.
const DFDLStringLiteral* SimpleValueConverter_getDFDLStringLiteral(SimpleValueConverter* this_,
                                                                   const DFDLUString* literal);
// What is written for a literal: a blank for white space that must be, nothing for what may be left out, and
// for %NL; what `newLine` stands for, which may be null. Pooled, the caller's; null with an error as above.
DFDLUString* SimpleValueConverter_resolveDFDLStringLiteral(SimpleValueConverter* this_,
                                                           const DFDLUString* literal,
                                                           const DFDLUString* newLine, DFDLHeapAdapter* heap);
// The same, worked out once and kept by the converter.
const DFDLUString* SimpleValueConverter_formatCharBasedDFDLStringLiteral(SimpleValueConverter* this_,
                                                                         const DFDLUString* literal,
                                                                         const DFDLUString* newLine);

struct NumberFormatProperties;
// The pattern with points in place of its Vs. Pooled, the caller's; null if it has none there.
DFDLUString* SimpleValueConverter_reformatPattern(DFDLHeapAdapter* heap,
                                                  const NumberFormatProperties& properties);

#endif
