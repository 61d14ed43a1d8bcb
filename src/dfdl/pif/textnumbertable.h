#ifndef DFDL_PIF_TEXTNUMBERTABLE_H
#define DFDL_PIF_TEXTNUMBERTABLE_H

#include <unicode/utypes.h>

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// How a number is written as text.
struct TextNumberTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    TextNumberRepresentationEnum iTextNumberRepresentation = TEXT;
    DFDLUString* iNumberPattern = nullptr;
    DFDLUString* iNumberGroupingSeparator = nullptr;
    DFDLUString* iNumberDecimalSeparator = nullptr;
    DFDLUString* iNumberExponentCharacter = nullptr;
    NumberCheckPolicyEnum iNumberCheckPolicy = NUMBER_CHECKPOLICY_STRICT;
    DFDLUString* iNumberInfinityRep = nullptr;
    DFDLUString* iNumberNaNRep = nullptr;
    NumberBaseEnum iNumberBase = NUMBER_BASE_2;
    NumberRoundingModeEnum iNumberRoundingMode = ROUND_NONE;
    NumberZonedSignStyleEnum iNumberZonedSignStyle = ASCII_STANDARD;
    DFDLUString* iNumberZeroRep = nullptr;
    int32_t iNumberGroupingSepExprIndex = -1;
    int32_t iNumberDecimalSepExprIndex = -1;
    int32_t iNumberExponentCharExprIndex = -1;
    bool iDecimalSigned = false;
    int32_t iVirtualDecimalIndex = -1;
    int32_t iSubPatternBoudaryIndex = -1;
    int32_t iNegativeVirtualDecimalIndex = -1;
    double iTextNumberRoundingIncrement = 0;
    TextNumberRoundingEnum iTextNumberRounding = ROUNDING_PATTERN;

    int32_t id = -1;                       // row index + 1
    bool patternHasRoundingDigit = false;  // a digit 1 to 9 in the positive part
    int32_t decimalScalingPosition = 0;    // digits by which the `P`s of the pattern shift the point
    DFDLUString* cleanPattern = nullptr;   // owned; iNumberPattern without its `P`s
};

// How many digits the base has; a base of no name is the last one's.
inline int32_t TextNumberTableRow_radix(NumberBaseEnum base) {
    switch (base) {
        case NUMBER_BASE_2:
            return 2;
        case NUMBER_BASE_8:
            return 8;
        case NUMBER_BASE_10:
            return 10;
        default:
            return 16;
    }
}

using TextNumberTable = Table<TextNumberTableRow>;

TextNumberTable* new_TextNumberTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_TextNumberTable(TextNumberTable* this_);  // null is ignored
void TextNumberTable_finalizeTable(TextNumberTable* this_);
TextNumberTableRow* TextNumberTable_findRow(const TextNumberTable* this_, int32_t id);  // -1: null
int32_t TextNumberTable_findRowIndex(const TextNumberTable* this_, int32_t id);         // -1 none
// Removes the `P`s of one subpattern in place; returns the scaling position.
int32_t TextNumberTableRow_calculateDecimalScalingPosition(UChar* part, int32_t* length);

#endif
