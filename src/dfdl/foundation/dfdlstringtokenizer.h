#ifndef DFDL_FOUNDATION_DFDLSTRINGTOKENIZER_H
#define DFDL_FOUNDATION_DFDLSTRINGTOKENIZER_H

#include "dfdl/foundation/dfdlustring.h"

// What separates the entries of properties that are lists.
inline constexpr UChar whitespaceDelimList[] = {0x20, 0x09, 0x0A, 0x0D, 0x85, 0x0C, 0};

// Splits a text at delimiters, each of one unit. The text outlives its being read.
struct DFDLStringTokenizer {
    DFDLHeapAdapter* heap;
    const UChar* text;
    uint32_t singleDelimiter;  // 1: `delimiter` counts, 0: `delimiterList`
    UChar delimiter;
    const UChar* delimiterList;  // terminated
    int32_t position;            // units
    int32_t end;
    uint32_t returnDelimiters;  // each delimiter is a token itself, instead of being skipped
};

DFDLStringTokenizer* new_DFDLStringTokenizer(DFDLHeapAdapter* heap, bool returnDelimiters);
void delete_DFDLStringTokenizer(DFDLStringTokenizer* this_);  // null is ignored
void DFDLStringTokenizer_setString(DFDLStringTokenizer* this_, const DFDLUString* text, UChar delimiter);
void DFDLStringTokenizer_setString_delimList(DFDLStringTokenizer* this_, const DFDLUString* text,
                                             const UChar* delimiterList);

// The next token where it stands in the text; empty at the end, as no token is.
std::u16string_view DFDLStringTokenizer_next(DFDLStringTokenizer* this_);
// A terminated copy that goes back with DFDLStringTokenizer_releaseToken. Null, and a length of 0, at the
// end.
UChar* DFDLStringTokenizer_getNextToken(DFDLStringTokenizer* this_, int32_t* length);
void DFDLStringTokenizer_releaseToken(DFDLStringTokenizer* this_, UChar* token);  // null is ignored
// A pooled string; null at the end.
DFDLUString* DFDLStringTokenizer_getNextTokenAsDFDLUString(DFDLStringTokenizer* this_);
bool DFDLStringTokenizer_hasMoreTokens(const DFDLStringTokenizer* this_);
int32_t DFDLStringTokenizer_numberOfTokens(const DFDLStringTokenizer* this_);  // still to come

#endif
