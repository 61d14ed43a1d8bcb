#ifndef DFDL_FOUNDATION_STRINGIDMAP_H
#define DFDL_FOUNDATION_STRINGIDMAP_H

#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/integerhashtable.h"

// Finds the string id of a symbol of a named symbol table.
using StringIDLookup = int32_t (*)(void* context, const DFDLString* symbolTable, int32_t symbol);

// The string ids of a symbol table's symbols, as far as they have been asked for.
struct StringIDMap {
    DFDLHeapAdapter* heap;
    IntegerHashtable* ids;    // by symbol
    DFDLString* symbolTable;  // its name, a copy; null until set
    StringIDLookup lookup;    // may be null
    void* lookupContext;
};

StringIDMap* new_StringIDMap(DFDLHeapAdapter* heap);
void delete_StringIDMap(StringIDMap* this_);  // null is ignored
void StringIDMap_setStringIDLookup(StringIDMap* this_, StringIDLookup lookup, void* context);
// Forgets the ids of the symbol table before. Null is none.
void StringIDMap_setSymbolTable(StringIDMap* this_, const DFDLString* symbolTable);
// A symbol that is not known yet is looked up; 0 without a lookup.
int32_t StringIDMap_getStringIDForSymbol(StringIDMap* this_, int32_t symbol);

#endif
