#ifndef DFDL_PARSERS_PARSERREGIONHANDLER_H
#define DFDL_PARSERS_PARSERREGIONHANDLER_H

#include <cstdint>
#include <string_view>

#include "dfdl/converters/calendarepoch.h"
#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/pif/pifenums.h"

struct BooleanRepTableRow;
struct BufferManager;
struct CalendarFormatTableRow;
struct CalendarRepTableRow;
struct CharsetManager;
struct Context;
struct ContextItemForParser;
struct DFDLCalendarImpl;
struct DFDLConstants;
struct DFDLDecimal;
struct DFDLUString;
struct DFDLValue;
struct DelimitedScannerBytes;
struct GroupMemberTableRow;
struct NumberFormatCacheEntry;
struct PIFIteratorForParser;
struct StringLiteralCache;
struct TextCalendarFormatMgr;
struct TextNumberFormatMgr;
struct TextStringTableRow;
struct TraceHandlerAdapter;
struct sPIF;

// Carries out the regions of an element's representation: moves over alignment and skips, and turns extracted
// text into a value. Which region comes next is the walk's decision, as is what a failure means. It keeps
// nothing of an element. Belongs to its parser and lives as long.
struct ParserRegionHandler {
    DFDLHeapAdapter* heap;
    Context* context;
    DFDLConstants* constants;
    CharsetManager* charsetManager;
    BufferManager* bufferManager;
    DelimitedScannerBytes* scanner;
    StringLiteralCache* stringLiteralCache;
    const sPIF* pif;
    uint32_t validationEnabled;
    PIFIteratorForParser* pifIterator;
    TraceHandlerAdapter* trace;
    DFDLDecimal* scratchDecimal;  // of the conversion at hand
    TextNumberFormatMgr* textNumberFormatMgr;
    TextCalendarFormatMgr* textCalendarFormatMgr;
    // The epoch that was read last and its text, which is the grammar's; null before.
    const DFDLUString* epochText;
    CalendarEpoch epoch;
};

ParserRegionHandler* new_ParserRegionHandler(DFDLHeapAdapter* heap, DFDLConstants* constants,
                                             Context* context, BufferManager* bufferManager,
                                             CharsetManager* charsetManager, TraceHandlerAdapter* trace);
void delete_ParserRegionHandler(ParserRegionHandler* this_);
void ParserRegionHandler_setPIF(ParserRegionHandler* this_, const sPIF* pif);
// What held for the last document is forgotten.
void ParserRegionHandler_reset(ParserRegionHandler* this_);
inline bool ParserRegionHandler_isEnabledValidation(const ParserRegionHandler* this_) {
    return this_->validationEnabled != 0;
}

// False if the data end first, with the error in the context.
bool ParserRegionHandler_handleLeadingAlignment(ParserRegionHandler* this_, ContextItemForParser* item);
bool ParserRegionHandler_handleTrailingAlignment(ParserRegionHandler* this_, ContextItemForParser* item);

// Whether one of the row's delimiters stands at the position, which stays. The scanner knows which and how
// long; a terminator is reported to the iterator. False with an error.
bool ParserRegionHandler_handleInitiatorRegion(ParserRegionHandler* this_, const GroupMemberTableRow* row);
bool ParserRegionHandler_handleTerminatorRegion(ParserRegionHandler* this_, const GroupMemberTableRow* row);
// Whether a delimiter of the set stands at the position; it, or the end of the data, is reported to the
// iterator. False also with an error.
bool ParserRegionHandler_checkForMarkup(ParserRegionHandler* this_, int32_t markupSetId,
                                        ContextItemForParser* item);

// The text of a field whose length, in the row's units, is known, without its escapes. Only pad bytes are
// trimmed; pad characters stay. Moves over the field. Pooled, the caller's; null with an error, or, where the
// row's kind of length has no length of its own, without one.
DFDLUString* ParserRegionHandler_extractTextRepresentation(ParserRegionHandler* this_,
                                                           const GroupMemberTableRow* row, int64_t length);
DFDLUString* ParserRegionHandler_extractFixedLengthText(ParserRegionHandler* this_, int32_t encodingIndex,
                                                        int32_t units, int64_t length,
                                                        const GroupMemberTableRow* row);
// Trims the row's pad bytes before decoding. The end that the text is justified to is not looked at, and a
// text that ends at the first byte counts as none.
DFDLUString* ParserRegionHandler_extractFixedLengthTextAndTrim(ParserRegionHandler* this_,
                                                               int32_t encodingIndex, int64_t byteLength,
                                                               int32_t maxBytes,
                                                               const TextStringTableRow* stringRow,
                                                               const GroupMemberTableRow* row);

// Each adopts the text. Null with an error.
DFDLValue* ParserRegionHandler_handleSimpleContent_TextString(ParserRegionHandler* this_,
                                                              const GroupMemberTableRow* row,
                                                              DFDLUString* text);
DFDLValue* ParserRegionHandler_handleSimpleContent_TextBoolean(ParserRegionHandler* this_,
                                                               const GroupMemberTableRow* row,
                                                               DFDLUString* text);
DFDLValue* ParserRegionHandler_handleSimpleContent_TextCalendar(ParserRegionHandler* this_,
                                                                const GroupMemberTableRow* row,
                                                                DFDLUString* text);
// The row's calendars with a format that is ready for use. Null with an error.
const CalendarRepTableRow* ParserRegionHandler_findCalendarFormat(ParserRegionHandler* this_,
                                                                  const GroupMemberTableRow* row);
// Makes a format ready if it is not. False with an error.
bool ParserRegionHandler_updateCalendarMgr(ParserRegionHandler* this_, const CalendarFormatTableRow* format,
                                           int32_t rowIndex, const GroupMemberTableRow* row);
// By a format that is ready; of a type that is none of calendars too. The caller's; null with an error.
DFDLCalendarImpl* ParserRegionHandler_createCalendarFromText(ParserRegionHandler* this_,
                                                             const CalendarRepTableRow* rep,
                                                             const GroupMemberTableRow* row,
                                                             const DFDLUString* text);
// Adopts the calendar. Null without an error if it is null or if the type is none of calendars.
DFDLValue* ParserRegionHandler_makeCalendarValue(ParserRegionHandler* this_, int32_t type,
                                                 DFDLCalendarImpl* calendar);
// The list of the texts for true, or for false; null if the row has none.
const DFDLUString* ParserRegionHandler_getTextBooleanTrueRepresentation(const BooleanRepTableRow* row);
const DFDLUString* ParserRegionHandler_getTextBooleanFalseRepresentation(const BooleanRepTableRow* row);

// The byte order of a binary number, boolean or calendar. False with an error.
bool ParserRegionHandler_findNumberOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                         ByteOrderEnum* order);
bool ParserRegionHandler_findBooleanOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                          ByteOrderEnum* order);
bool ParserRegionHandler_findCalendarOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                           ByteOrderEnum* order);
// That of the digits that a binary calendar is written in.
bool ParserRegionHandler_findDigitsOrder(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                         ByteOrderEnum* order);
// The bytes of a field whose length, in the row's units, is known. Moves over the field. Fields of whole
// bytes at a byte boundary come as they are; bits are made whole bytes. Null with an error; else a block of
// the buffer manager, which the caller hands on or frees.
uint8_t* ParserRegionHandler_extractBinaryRepresentation(ParserRegionHandler* this_,
                                                         const GroupMemberTableRow* row, int64_t length,
                                                         int64_t* count);
// Each adopts such a block. Null with an error, but for a number of a type that is none.
DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryNumber(ParserRegionHandler* this_,
                                                                const GroupMemberTableRow* row,
                                                                uint8_t* block, int64_t count);
DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryBoolean(ParserRegionHandler* this_,
                                                                 const GroupMemberTableRow* row,
                                                                 uint8_t* block, int64_t count);
DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryCalendar(ParserRegionHandler* this_,
                                                                  const GroupMemberTableRow* row,
                                                                  uint8_t* block, int64_t count);
DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryOpaque(ParserRegionHandler* this_,
                                                                const GroupMemberTableRow* row,
                                                                uint8_t* block, int64_t count);
// The first two for bytes that stay the caller's, such as those that lie together in the current buffer, and
// without validation. Whole bytes in stream order, or what extraction has made of bits.
DFDLValue* ParserRegionHandler_convertBinaryNumber(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                                   const uint8_t* bytes, int64_t count);
DFDLValue* ParserRegionHandler_convertBinaryBoolean(ParserRegionHandler* this_,
                                                    const GroupMemberTableRow* row, const uint8_t* bytes,
                                                    int64_t count);

// A number that has been read from text.
enum ParsedNumberForm : int32_t { PARSED_WORD, PARSED_DECIMAL, PARSED_DOUBLE };
struct ParsedNumber {
    ParsedNumberForm form;
    int64_t word;
    double real;
    DFDLDecimal* decimal;  // the handler's scratch
};
// Adopts the text. Null with an error, but for a type that is none of numbers.
DFDLValue* ParserRegionHandler_handleSimpleContent_TextNumber(ParserRegionHandler* this_,
                                                              const GroupMemberTableRow* row,
                                                              DFDLUString* text);
// Each reads the whole text, or raises the error of where it stopped and returns false. A zero that the text
// may have been padded with is left out at first.
bool ParserRegionHandler_createNumberFromText(ParserRegionHandler* this_, const DFDLUString* text,
                                              const NumberFormatCacheEntry* entry, NumberBaseEnum base,
                                              ParsedNumber* number, const GroupMemberTableRow* row);
// `parsed` is what has been taken for the number.
bool ParserRegionHandler_createDoubleFromText(ParserRegionHandler* this_, const DFDLUString* text,
                                              const NumberFormatCacheEntry* entry, NumberBaseEnum base,
                                              double* value, const GroupMemberTableRow* row,
                                              std::u16string_view* parsed);
bool ParserRegionHandler_createDecimalFromText(ParserRegionHandler* this_, const DFDLUString* text,
                                               const NumberFormatCacheEntry* entry, NumberBaseEnum base,
                                               DFDLDecimal* decimal, const GroupMemberTableRow* row);
// Digits of a radix behind an optional "-". A number that no signed word holds comes in the decimal.
bool ParserRegionHandler_parseLong(ParserRegionHandler* this_, const DFDLUString* text, int32_t radix,
                                   ParsedNumber* number, const GroupMemberTableRow* row);
// The value of the row's type; null with an error if the type has none for the number, and without one if it
// is no type of numbers.
DFDLValue* ParserRegionHandler_buildDFDLValueFromNumber(ParserRegionHandler* this_,
                                                        const ParsedNumber& number, const DFDLUString* text,
                                                        const GroupMemberTableRow* row);
// A value that an expression has made becomes one of the row's type. Null with an error if it is of another
// kind; the value is the caller's then.
DFDLValue* ParserRegionHandler_setSchemaType(ParserRegionHandler* this_, DFDLValue* value,
                                             const GroupMemberTableRow* row);

// Integers of the row's type, from a word, which of unsigned types holds the bits, and from the scratch
// decimal. Null with an error if it is out of range.
DFDLValue* ParserRegionHandler_integerFromWord(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                               int64_t word);
DFDLValue* ParserRegionHandler_integerFromDecimal(ParserRegionHandler* this_, const GroupMemberTableRow* row);
DFDLValue* ParserRegionHandler_decimalValue(ParserRegionHandler* this_,
                                            const GroupMemberTableRow* row);  // of the scratch decimal
void ParserRegionHandler_raiseOutOfRange(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                         const DFDLUString* number);

// The value, if it may be one of the row's: where values are validated, one that fails goes and null comes,
// with the error. Null stays null.
DFDLValue* ParserRegionHandler_keepIfValid(ParserRegionHandler* this_, DFDLValue* value,
                                           const GroupMemberTableRow* row);
// False if the value cannot be judged, with the error in the context.
bool ParserRegionHandler_validateFacets(ParserRegionHandler* this_, const DFDLValue* value,
                                        const GroupMemberTableRow* row);

// An error of which nothing but the element's name is to be said.
void ParserRegionHandler_raise(ParserRegionHandler* this_, const GroupMemberTableRow* row, const char* key);
// The caller has no text to convert: its mistake, not one of the data.
void ParserRegionHandler_raiseNullText(ParserRegionHandler* this_, const GroupMemberTableRow* row);

#endif
