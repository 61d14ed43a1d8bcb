#ifndef DFDL_FRAMEWORK_COMPILEDSTRINGPART_H
#define DFDL_FRAMEWORK_COMPILEDSTRINGPART_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;

enum CompiledStringPartKind : uint32_t {
    COMPILED_EXACT = 1,             // exactBytes
    COMPILED_CASE_INSENSITIVE = 2,  // lowerBytes or upperBytes, byte by byte
    COMPILED_CLASS = 3              // one of the alternatives
};

// One way in which a class of characters can stand in the data. Belongs to its part.
struct MnemonicPart {
    DFDLHeapAdapter* heap;
    int32_t length;  // bytes
    uint8_t* bytes;  // owned
};

// One stretch of a compiled literal. Belongs to its literal.
struct CompiledStringPart {
    DFDLHeapAdapter* heap;
    CompiledStringPartKind kind;
    int32_t byteCount;    // of each of the three forms
    uint8_t* lowerBytes;  // owned, as are the others; null where the kind has no use for them
    uint8_t* upperBytes;
    uint8_t* exactBytes;
    ArrayList* alternatives;  // of MnemonicPart, in the order in which they are tried
    bool optional;
    bool repeating;
};

// Adopts the bytes.
MnemonicPart* new_MnemonicPart(DFDLHeapAdapter* heap, uint8_t* bytes, int32_t length);
void delete_MnemonicPart(MnemonicPart* this_);       // null is ignored
void MnemonicPart_deleteList(ArrayList* mnemonics);  // and what it lists; null is ignored

CompiledStringPart* new_CompiledStringPart(DFDLHeapAdapter* heap, CompiledStringPartKind kind);
void delete_CompiledStringPart(CompiledStringPart* this_);  // null is ignored
CompiledStringPart* CompiledStringPart_clone(const CompiledStringPart* this_, DFDLHeapAdapter* heap);

#endif
