#ifndef DFDL_PIF_TEXTENCODINGTABLE_H
#define DFDL_PIF_TEXTENCODINGTABLE_H

#include "dfdl/pif/fixedstate.h"
#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLString;
struct DFDLUString;
struct sPIF;

// An encoding and a byte order, either of which may be an expression.
struct TextEncodingTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    ByteOrderEnum iByteOrder = BYTEOR_LITTLE_ENDIAN;
    DFDLUString* iEncoding = nullptr;
    int32_t iEncodingExprIndex = -1;   // -1 fixed
    int32_t iByteOrderExprIndex = -1;  // -1 fixed
    bool iEncodingEBCDIC = false;
    bool iEncodingASCIICompatible = false;
    bool isUTF16WidthFixed = false;

    DFDLString* encodingName = nullptr;  // owned; iEncoding in bytes
    FixedState fixedEncoding = FIXED_CONSTANT;
    FixedState fixedByteOrder = FIXED_CONSTANT;
};

using TextEncodingTable = Table<TextEncodingTableRow>;

TextEncodingTable* new_TextEncodingTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_TextEncodingTable(TextEncodingTable* this_);  // null is ignored
void TextEncodingTable_finalizeTable(TextEncodingTable* this_);

#endif
