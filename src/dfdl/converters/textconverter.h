#ifndef DFDL_CONVERTERS_TEXTCONVERTER_H
#define DFDL_CONVERTERS_TEXTCONVERTER_H

#include <unicode/unum.h>

#include <cstdint>
#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct CompiledMarkupSet;
struct DFDLCharset;
struct DFDLConstants;
struct DFDLUString;
struct GroupMemberTableRow;
struct ProcessingError;
struct TextNumberTableRow;
struct TextStringTableRow;

// What is done with text around its conversion: counting, taking escapes out, padding. There is no object.

// A surrogate pair is one character; null has none.
int32_t TextConverter_countUnicodeCharacters(const DFDLUString* text);
int32_t TextConverter_countUnicodeCharactersFromBuffer(const UChar* chars, int32_t length);
bool TextConverter_surrogatePairsFound(const DFDLUString* text);
// Whether a literal stands for more than one text: %NL; or one of the classes of white space.
bool TextConverter_containsGenericMnemonics(const DFDLUString* text, const DFDLConstants* constants);
// The text itself if no character has a meaning in a regular expression; otherwise a new pooled one.
DFDLUString* TextConverter_escapeJavaRegex(DFDLUString* text, DFDLHeapAdapter* heap);
// A new pooled text, filled up to the row's least length; the text itself if the row has no pad character.
DFDLUString* TextConverter_doJustification(DFDLUString* text, const TextStringTableRow* row,
                                           DFDLHeapAdapter* heap);
// A new pooled text; null with an error if the bytes are no text of the encoding.
DFDLUString* TextConverter_createStringFromByteArray(DFDLCharset* charset, const uint8_t* bytes,
                                                     int64_t offset, int64_t length, ProcessingError* error,
                                                     DFDLHeapAdapter* heap);

// Readies the text of a number for its format: takes white space off where checks are lax, and gives the
// character of an exponent the case that the format has. Where case counts, another one is an error. Adopts
// the text; null with the error.
DFDLUString* TextConverter_preprocessCheckPolicy(DFDLUString* text, const TextNumberTableRow* row,
                                                 const UNumberFormat* format, bool ignoreCase,
                                                 ProcessingError* error, const GroupMemberTableRow* element,
                                                 DFDLHeapAdapter* heap);
// Says that reading the number of the element stopped at a position of its text.
void TextConverter_raiseParseIncomplete(ProcessingError* error, const GroupMemberTableRow* element,
                                        const DFDLUString* text, int32_t position);

// Takes the escapes out of a field's raw text. Only removal happens, so it is done in place: the result is
// the text. What counts as an escape is what the scanner took for one when it looked for the field's end.
// Without an escape scheme nothing is done. Null with an error if the scheme cannot be told; the text is the
// caller's then too.
DFDLUString* TextConverter_applyEscapeScheme(DFDLHeapAdapter* heap, DFDLUString* text,
                                             const GroupMemberTableRow* row);
// The same with the strings of a compiled set; a null set: those of the row.
DFDLUString* TextConverter_applyEscapeSchemeUsingCompiledMarkupSetData(DFDLHeapAdapter* heap,
                                                                       DFDLUString* text,
                                                                       const GroupMemberTableRow* row,
                                                                       const CompiledMarkupSet* set);

// The two kinds of scheme, in place. Without an escape character, and without a start or an end of a block,
// nothing is done; an escape-escape may be missing.
void TextConverter_applyEscapesUsingEscapeChars(DFDLUString* text, std::u16string_view escape,
                                                std::u16string_view escapeEscape);
// A block starts with the text or not at all. What stands behind its end is kept. A block without an end is
// none.
void TextConverter_applyEscapesUsingEscapeBlocks(DFDLUString* text, std::u16string_view start,
                                                 std::u16string_view end, std::u16string_view escapeEscape);

#endif
