#ifndef DFDL_FRAMEWORK_DFDLSTRINGLITERAL_H
#define DFDL_FRAMEWORK_DFDLSTRINGLITERAL_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/framework/stringpart.h"

struct ArrayList;
struct DFDLUString;

// A string literal of the schema, taken apart into text and entities. Parsed once, then read-only. Belongs to
// its maker, in engines the StringLiteralCache.
struct DFDLStringLiteral {
    DFDLHeapAdapter* heap;
    DFDLUString* source;        // owned; may be null
    ArrayList* parts;           // of StringPart
    DFDLUString* unicodeValue;  // owned; the text if there is nothing but text
    bool hasEmptyString;        // has %ES;
};

// Takes a copy of the source, which may be null.
DFDLStringLiteral* new_DFDLStringLiteral(DFDLHeapAdapter* heap, const DFDLUString* source);
void delete_DFDLStringLiteral(DFDLStringLiteral* this_);  // null is ignored

// Once. False if some entity is malformed; the caller says so.
bool DFDLStringLiteral_parse(DFDLStringLiteral* this_);

// Null if some part is not plain text. The literal keeps it.
const DFDLUString* DFDLStringLiteral_getUnicodeString(const DFDLStringLiteral* this_);
UChar DFDLStringLiteral_getCharacterValue(
    const DFDLStringLiteral* this_);                                     // of the first part of one unit; 0
int32_t DFDLStringLiteral_getByteValue(const DFDLStringLiteral* this_);  // of the first part; -1
// The number that up to *length digits give, which stops growing where no code point is; *length becomes the
// count of digits.
uint32_t DFDLStringLiteral_format(const UChar* digits, int32_t* length, int32_t radix);

int32_t DFDLStringLiteral_partCount(const DFDLStringLiteral* this_);
const StringPart* DFDLStringLiteral_part(const DFDLStringLiteral* this_, int32_t index);

#endif
