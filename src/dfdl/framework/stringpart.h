#ifndef DFDL_FRAMEWORK_STRINGPART_H
#define DFDL_FRAMEWORK_STRINGPART_H

#include <cstdint>
#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;

enum StringPartKind : int32_t {
    PART_TEXT = 1,
    PART_BYTE = 3,
    PART_NEW_LINE = 4,          // %NL;
    PART_WHITE_SPACE = 5,       // %WSP;
    PART_WHITE_SPACE_PLUS = 6,  // %WSP+;
    PART_WHITE_SPACE_STAR = 7,  // %WSP*;
    PART_EMPTY_STRING = 8       // %ES;
};

// One stretch of a string literal: text, one raw byte, or a class of characters. Belongs to its literal.
struct StringPart {
    DFDLHeapAdapter* heap;
    DFDLUString* value;  // owned; the text, the byte as one unit, or the members of the class
    int32_t byteValue;   // -1 unless a byte
    StringPartKind kind;
};

StringPart* new_StringPart(DFDLHeapAdapter* heap, std::u16string_view value, StringPartKind kind);
StringPart* new_StringPartForByte(DFDLHeapAdapter* heap, uint8_t byte);
void delete_StringPart(StringPart* this_);  // null is ignored

#endif
