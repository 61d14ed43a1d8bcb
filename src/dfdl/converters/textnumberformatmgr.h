#ifndef DFDL_CONVERTERS_TEXTNUMBERFORMATMGR_H
#define DFDL_CONVERTERS_TEXTNUMBERFORMATMGR_H

#include <unicode/unum.h>

#include <cstdint>

#include "dfdl/converters/plaintextnumber.h"
#include "dfdl/pif/textnumbertable.h"

struct ArrayList;
struct DFDLUString;
struct GroupMemberTableRow;
struct ProcessingError;
struct SimpleValueConverter;

// A row's number format, ready for use. Belongs to the manager that made it.
struct NumberFormatCacheEntry {
    DFDLHeapAdapter* heap;
    UNumberFormat* format;          // closed with the entry
    int32_t virtualDecimalDigits;   // a number read is divided by ten to this power
    uint32_t hasRuntimeSeparators;  // any of them is an expression
    uint32_t separatorsResolved;    // they stand for the document at hand
    uint32_t spare;                 // 0
    PlainTextNumber plain;          // how the common texts are read without the format
};

// The number formats of a parser or a serializer, each made when it is first wanted: opening one takes ICU
// several microseconds. A row that serves integers and numbers with a point has one for each of the two.
// Belongs to its engine.
struct TextNumberFormatMgr {
    DFDLHeapAdapter* heap;
    DFDLHeapAdapter* literalHeap;  // of the string literals that are parsed on the way
    ArrayList* cache;              // of NumberFormatCacheEntry; null before the first reset
    uint32_t spare;
    const TextNumberTable* table;
    SimpleValueConverter* converter;  // of a serializer, whose it is; null in a parser
    bool isSerializer;                // whose errors are raised
};

TextNumberFormatMgr* new_TextNumberFormatMgr(DFDLHeapAdapter* heap, bool isSerializer);
void delete_TextNumberFormatMgr(TextNumberFormatMgr* this_);  // null is ignored
void TextNumberFormatMgr_ctor(TextNumberFormatMgr* this_, DFDLHeapAdapter* heap, bool isSerializer);
void TextNumberFormatMgr_dtor(TextNumberFormatMgr* this_);

// Before a document: with `keepEntries` separators from expressions are asked for anew, without it all
// formats go, as when another grammar's table has been set.
void TextNumberFormatMgr_reset(TextNumberFormatMgr* this_, bool keepEntries);

// The format of the element's row; null with an error, or without one if the pattern cannot be split where
// the row says. With separators that are expressions the entry may come with an error set.
NumberFormatCacheEntry* TextNumberFormatMgr_getCachedNumberFormat(TextNumberFormatMgr* this_,
                                                                  ProcessingError* error,
                                                                  const GroupMemberTableRow* element,
                                                                  bool forParser);
// Where the format of the element's row, which must have one, is kept, in every manager of its table.
int32_t TextNumberFormatMgr_slotOf(const GroupMemberTableRow* element);
// The format there, if it is made and needs nothing that a document has to give; else null.
NumberFormatCacheEntry* TextNumberFormatMgr_entryInSlot(const TextNumberFormatMgr* this_, int32_t slot);
NumberFormatCacheEntry* TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForParser(
    TextNumberFormatMgr* this_, ProcessingError* error, const GroupMemberTableRow* element);
// A number with a V in its pattern is formatted as one with a point that is written as nothing.
NumberFormatCacheEntry* TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForUnparser(
    TextNumberFormatMgr* this_, ProcessingError* error, const GroupMemberTableRow* element);
void delete_NumberFormatCacheEntry(NumberFormatCacheEntry* this_);  // null is ignored

// What a format is made from.
struct NumberFormatProperties {
    const DFDLUString* pattern;  // may be null
    NumberRoundingModeEnum roundingMode;
    bool explicitRounding;
    bool strict;
    int32_t virtualIndex;  // of the V; -1 none
    int32_t boundary;      // of the ";"; -1 none
    int32_t negativeVirtualIndex;
    int32_t scalingPosition;
    double increment;
};
// Where the Vs of a pattern stand, counted from its start.
struct VirtualPoints {
    int32_t positive;
    int32_t negative;  // -1 none
};
// False if the row tells places that the pattern has not.
bool NumberFormatProperties_findVirtualPoints(const NumberFormatProperties* this_, VirtualPoints* points);
// The format with the symbols of the root locale. Null as above.
NumberFormatCacheEntry* TextNumberFormatMgr_createNumberFormatCacheEntry(
    TextNumberFormatMgr* this_, ProcessingError* error, const NumberFormatProperties& properties,
    const TextNumberTableRow* row, const GroupMemberTableRow* element);
// The pattern without its Vs, and what they mean. Pooled, the caller's; null if it cannot be split.
DFDLUString* TextNumberFormatMgr_processPattern(TextNumberFormatMgr* this_, NumberFormatCacheEntry* entry,
                                                const NumberFormatProperties& properties);
// False with an error.
bool TextNumberFormatMgr_processSeparatorsForParser(TextNumberFormatMgr* this_, ProcessingError* error,
                                                    NumberFormatCacheEntry* entry,
                                                    const TextNumberTableRow* row,
                                                    const GroupMemberTableRow* element);

// For output: neither base nor type matters, and what the pattern has no sign for stays as it is. False with
// an error.
bool TextNumberFormatMgr_processSeparatorsForUnparser(TextNumberFormatMgr* this_, ProcessingError* error,
                                                      NumberFormatCacheEntry* entry,
                                                      const TextNumberTableRow* row,
                                                      const GroupMemberTableRow* element);

// What a serializer writes for a literal; the converter keeps it. Null with an error that names the property.
const DFDLUString* TextNumberFormatMgr_getWrittenLiteral(const TextNumberFormatMgr* this_,
                                                         ProcessingError* error,
                                                         const GroupMemberTableRow* element,
                                                         const DFDLUString* literal, const char* property);

// A character of no meaning that goes to ICU with length 0 where a symbol is to be empty.
inline constexpr UChar NULL_PATTERN_SYMBOL = 0x00FF;

// Each sets one symbol; null makes it empty.
void TextNumberFormatMgr_setZeroDigit(UNumberFormat* format, const DFDLUString* symbol);
void TextNumberFormatMgr_setNaN(UNumberFormat* format, const DFDLUString* symbol);
void TextNumberFormatMgr_setInfinity(UNumberFormat* format, const DFDLUString* symbol);
void TextNumberFormatMgr_setExponentSeparator(UNumberFormat* format, const DFDLUString* symbol);
void TextNumberFormatMgr_setDecimalSeparator(UNumberFormat* format, const DFDLUString* symbol);
void TextNumberFormatMgr_setGroupingSeparator(UNumberFormat* format, const DFDLUString* symbol);

#endif
