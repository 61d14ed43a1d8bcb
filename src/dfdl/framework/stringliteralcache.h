#ifndef DFDL_FRAMEWORK_STRINGLITERALCACHE_H
#define DFDL_FRAMEWORK_STRINGLITERALCACHE_H

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct DFDLStringHashMap;
struct DFDLStringLiteral;
struct DFDLUString;
struct ListValuedProperty;

// Keeps what has been made of string literals: the literals themselves, lists of them, and compiled markup
// sets. One per engine, which owns it and outlives nobody who holds one of its results.
struct StringLiteralCache {
    DFDLHeapAdapter* heap;
    DFDLStringHashMap* compiledSets;  // of CompiledMarkupSet; null until the first
    DFDLStringHashMap* literals;      // of DFDLStringLiteral
    DFDLStringHashMap* lists;         // of ListValuedProperty
    ArrayList* volatileSets;          // entries of compiledSets that hold for one document
};

StringLiteralCache* new_StringLiteralCache(DFDLHeapAdapter* heap,
                                           void (*deleteCompiledSet)(DFDLHeapAdapter*, void*));
void delete_StringLiteralCache(StringLiteralCache* this_);  // null is ignored

// Null with TEXT_INVALID_MNEMONIC raised if the text is no literal.
DFDLStringLiteral* StringLiteralCache_getDFDLStringLiteral(StringLiteralCache* this_,
                                                           const DFDLUString* text);
// Its entries are read in reverse.
ListValuedProperty* StringLiteralCache_getDFDLStringLiteralList(StringLiteralCache* this_,
                                                                const DFDLUString* text);
// Drops the compiled sets that hold for one document.
void StringLiteralCache_reset(StringLiteralCache* this_);

// Whether a decoded text is one of the literals. A malformed one ends the search with an error.
bool matchStringLiteralList(StringLiteralCache* cache, const ListValuedProperty* list, bool ignoreCase,
                            const DFDLUString* text);

#endif
