#ifndef DFDL_CONVERTERS_DFDLCHARSET_H
#define DFDL_CONVERTERS_DFDLCHARSET_H

#include <unicode/ucnv.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct Context;
struct DFDLConstants;
struct DFDLUString;

// A question that is answered at most once.
enum TriState : int32_t { TRI_UNKNOWN = 0, TRI_NO = 1, TRI_YES = 2 };

// How bytes can be decoded without entering ICU. Worked out from the converter itself.
enum DecodeRoad : int32_t {
    ROAD_UNKNOWN = 0,
    ROAD_ICU = 1,    // no other way
    ROAD_ASCII = 2,  // bytes below 0x80 are themselves; others need ICU
    ROAD_TABLE = 3   // one byte, one unit
};

// In a decode table: a byte that ICU has to judge.
inline constexpr UChar NOT_IN_TABLE = 0xFFFF;

// One encoding: its converter, opened at the first need, and what kind of encoding it is. Belongs to the
// charset manager.
struct DFDLCharset {
    DFDLHeapAdapter* heap;
    Context* context;
    DFDLConstants* constants;
    UConverter* converter;
    DFDLUString* standardName;  // given to ICU
    DFDLUString* name;          // as the schema has it; for messages and for tests of the name
    int32_t fixity;             // FixedState of the row
    int32_t ucs2State;
    int32_t asciiCompatibleState;
    int32_t asciiStandardZonedState;
    int32_t asciiTranslatedEBCDICZonedState;
    int32_t asciiCARealiaZonedState;
    int32_t ebcdicStandardZonedState;
    int32_t ebcdicPositiveZero;  // what C0 and D0 are where the standard zoned digits are not to be had
    int32_t ebcdicNegativeZero;
    int32_t utf16CompatibleState;
    int32_t utf32CompatibleState;
    int32_t byteOrderState;  // 0 converter not open, 1 little-endian or none, 2 big-endian
    int32_t ebcdicState;
    int32_t fixedWidthState;
    int32_t utf16FixedState;
    int32_t bomState;
    int32_t maxBytesPerChar;  // -1 unknown
    int32_t minBytesPerChar;
    int32_t road;  // DecodeRoad
    UChar* table;  // 256 units, for ROAD_TABLE
};

// The constructors adopt both strings.
DFDLCharset* new_DFDLCharsetForFixedEncoding(DFDLHeapAdapter* heap, Context* context,
                                             DFDLConstants* constants, DFDLUString* standardName,
                                             DFDLUString* name, bool asciiCompatible, bool ebcdic,
                                             bool utf16Fixed);
DFDLCharset* new_DFDLCharsetForVariableEncoding1(DFDLHeapAdapter* heap, Context* context,
                                                 DFDLConstants* constants, DFDLUString* standardName,
                                                 DFDLUString* name, bool utf16Fixed);
DFDLCharset* new_DFDLCharsetForVariableEncoding2(DFDLHeapAdapter* heap, Context* context,
                                                 DFDLConstants* constants, DFDLUString* standardName,
                                                 DFDLUString* name);
void delete_DFDLCharset(DFDLCharset* this_);  // null is ignored

// Null with an error if ICU has none by that name or number.
UConverter* DFDLCharset_getConverter(DFDLCharset* this_);

// Without a converter the answers are no, and -1.
bool DFDLCharset_isFixedWidth(DFDLCharset* this_);
int32_t DFDLCharset_maxBytesPerChar(DFDLCharset* this_);
int32_t DFDLCharset_minBytesPerChar(DFDLCharset* this_);
bool DFDLCharset_canHaveBOM(DFDLCharset* this_);
bool DFDLCharset_isUCS2(DFDLCharset* this_);
bool DFDLCharset_isUTF16Compatible(DFDLCharset* this_);
bool DFDLCharset_isUTF32Compatible(DFDLCharset* this_);
bool DFDLCharset_isASCIICompatible(DFDLCharset* this_);
bool DFDLCharset_isEBCDIC(DFDLCharset* this_);

// Whether zoned digits in a sign style are to be had in the encoding.
bool DFDLCharset_isASCIIStandardZonedCompatible(DFDLCharset* this_);
bool DFDLCharset_isASCIITranslatedEBCDICZonedCompatible(DFDLCharset* this_);
bool DFDLCharset_isASCIICARealiaModifiedZonedCompatible(DFDLCharset* this_);
bool DFDLCharset_isASCIITandemModifiedZonedCompatible(DFDLCharset* this_);
// For an encoding that is no EBCDIC one: yes at the first call, no at all later ones.
bool DFDLCharset_isEBCDICStandardZonedCompatible(DFDLCharset* this_);

// Works out the road.
void DFDLCharset_findRoad(DFDLCharset* this_);
// Whether some bytes at least can be decoded without ICU.
inline bool DFDLCharset_hasDirectRoad(DFDLCharset* this_) {
    if (this_->road == ROAD_UNKNOWN) DFDLCharset_findRoad(this_);
    return this_->road != ROAD_ICU;
}
// Decodes without ICU into `target`, which has room for `count` units; false, with nothing of use written,
// if these bytes need ICU. One unit for each byte, each a character of its own.
bool DFDLCharset_decodeDirectly(DFDLCharset* this_, const uint8_t* bytes, int64_t count, UChar* target);

#endif
