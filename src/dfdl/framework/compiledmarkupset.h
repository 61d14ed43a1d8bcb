#ifndef DFDL_FRAMEWORK_COMPILEDMARKUPSET_H
#define DFDL_FRAMEWORK_COMPILEDMARKUPSET_H

#include <unicode/ucnv.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/framework/bytefinder.h"

struct ArrayList;
struct CompiledDFDLStringLiteral;
struct Context;
struct DFDLUString;
struct EscapeSchemeTableRow;
struct LinkedListCompiledDFDLStringLiteral;

// The delimiters that one set can hold, enclosing sets included. Adding one sorts its list anew.
inline constexpr int32_t MOST_LITERALS = 4096;

// Whose delimiters a set is for: an escape scheme is looked for in simple elements alone, and so one id of
// the grammar can have two forms.
enum MarkupSetAudience : int32_t { AUDIENCE_ALL = 0, AUDIENCE_SIMPLE_ELEMENTS = 1, AUDIENCE_OTHERS = 2 };

// A string of an escape scheme in the set's encoding.
struct EscapeString {
    const DFDLUString* text;  // of the grammar
    uint8_t* bytes;           // owned
    int32_t length;           // 0: there is no such string
};

// The delimiters that are looked for at one place of the grammar, by the byte that they start with, and the
// escape scheme that hides them. Compiled once; only read from then on. Belongs to the cache it stands in.
struct CompiledMarkupSet {
    DFDLHeapAdapter* heap;
    int32_t id;  // -1: a set of one list
    MarkupSetAudience audience;
    LinkedListCompiledDFDLStringLiteral* lists[256];
    uint8_t firstBytes[256];  // the byte can start a delimiter or an escape
    // Where a byte starts one delimiter and nothing else, escapes included, and that delimiter is a fixed run
    // of bytes: the delimiter, whose exactBytes are these. Null otherwise.
    const CompiledDFDLStringLiteral* sole[256];
    ByteFinder finder;  // of firstBytes
    EscapeString escapeCharacter;
    EscapeString escapeEscapeCharacter;
    EscapeString blockStart;
    EscapeString blockEnd;
    uint8_t blockBytes[256];  // the byte can start what ends a block, or what hides its end
    ByteFinder blockFinder;   // of blockBytes
    bool usesEscapeCharacter;
    bool usesEscapeBlock;
    bool escapeEscapeSame;  // as the escape character; of a block: as its start or its end
    bool escapeEscapeIsBlockStart;
    bool escapeEscapeIsBlockEnd;
    bool ownsZeroLengthLiteral;  // it starts with no byte and so is not in allLiterals
    bool hasVariableLength;      // a first match need not be the longest
    bool isVolatile;             // holds for one document
    const EscapeSchemeTableRow* escapeSchemeRow;
    ArrayList* allLiterals;                        // each once; owned
    CompiledDFDLStringLiteral* zeroLengthLiteral;  // matches where nothing stands; null: none
};

CompiledMarkupSet* new_CompiledMarkupSet(DFDLHeapAdapter* heap);
void delete_CompiledMarkupSet(CompiledMarkupSet* this_);  // null is ignored
// For the map of a StringLiteralCache.
void CompiledMarkupSetDeleteFunction(DFDLHeapAdapter* heap, void* set);

// What an enclosing set is to a set within it: the same delimiters one level further out, no escape scheme.
CompiledMarkupSet* CompiledMarkupSet_createDeepCopyAndIncrementLevels(const CompiledMarkupSet* this_);

// Adopts the literal, which may be entered under several bytes.
void CompiledMarkupSet_addCompiledDFDLStringLiteral(CompiledMarkupSet* this_, uint8_t firstByte,
                                                    CompiledDFDLStringLiteral* literal);
// After it has been entered under the bytes that it can start with, if there are any; adopts it if not.
void CompiledMarkupSet_setZeroLengthLiteral(CompiledMarkupSet* this_, CompiledDFDLStringLiteral* literal);
// Readies the set for scans, when all is in it.
void CompiledMarkupSet_finish(CompiledMarkupSet* this_);

// The same text and encoding in an enclosing set, the nearest one; null if there is none.
const CompiledDFDLStringLiteral* CompiledMarkupSet_findSameDelimiterInEnclosingLevel(
    const CompiledMarkupSet* this_, const CompiledDFDLStringLiteral* literal);

// Takes the scheme's strings in the encoding; a null row is no scheme. False with an error if the encoding
// lacks a character.
bool CompiledMarkupSet_configureScannerDataForEscapeScheme(CompiledMarkupSet* this_, Context* context,
                                                           const EscapeSchemeTableRow* row,
                                                           UConverter* converter,
                                                           const DFDLUString* encodingName);
void CompiledMarkupSet_setupEmptyEscapeScheme(CompiledMarkupSet* this_);

#endif
