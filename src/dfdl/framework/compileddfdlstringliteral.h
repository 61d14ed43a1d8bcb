#ifndef DFDL_FRAMEWORK_COMPILEDDFDLSTRINGLITERAL_H
#define DFDL_FRAMEWORK_COMPILEDDFDLSTRINGLITERAL_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/framework/compiledstringpart.h"

struct ArrayList;
struct DFDLUString;

enum MarkupKind : uint32_t {
    MARKUP_OTHER = 0,  // an initiator, a nil literal
    MARKUP_TERMINATOR = 2,
    MARKUP_SEPARATOR = 3,
    MARKUP_END_OF_DATA = 4
};

// A delimiter as the bytes of one encoding. Belongs to the compiled set that lists it.
struct CompiledDFDLStringLiteral {
    DFDLHeapAdapter* heap;
    DFDLUString* text;      // as the schema has it, or for display
    int32_t encodingIndex;  // -1: the scanner's own literal for the end of the data
    MarkupKind kind;
    int32_t byteLength;  // longest
    int32_t level;       // how many sets out it belongs
    bool ownsText;
    ArrayList* parts;  // of CompiledStringPart
    // byteLength bytes where the literal is these and nothing else, borrowed from its only part; null
    // otherwise.
    const uint8_t* exactBytes;
    bool isCharacterText;
    bool hasRuntimeEncoding;
};

// Takes a copy of the text where it is to own it; otherwise the text outlives the literal.
CompiledDFDLStringLiteral* new_CompiledDFDLStringLiteral(DFDLHeapAdapter* heap, DFDLUString* text,
                                                         int32_t encodingIndex, bool ownsText);
void delete_CompiledDFDLStringLiteral(CompiledDFDLStringLiteral* this_);  // null is ignored

// Each adds its longest form to byteLength. The bytes are adopted.
void CompiledDFDLStringLiteral_addByteMarkupPart(CompiledDFDLStringLiteral* this_, uint8_t* bytes,
                                                 int32_t count);
void CompiledDFDLStringLiteral_addCharMarkupPart(CompiledDFDLStringLiteral* this_, uint8_t* lower,
                                                 uint8_t* upper, int32_t count);
// The alternatives, a list of MnemonicPart, are adopted.
void CompiledDFDLStringLiteral_addMarkupPart(CompiledDFDLStringLiteral* this_, ArrayList* alternatives,
                                             bool optional, bool repeating);

// Negative: a is tried first. Longer before shorter, inner before outer, terminator before separator.
int32_t CompiledDFDLStringLiteral_compareTo(const CompiledDFDLStringLiteral* a,
                                            const CompiledDFDLStringLiteral* b);
bool CompiledDFDLStringLiteral_isSameStringLiteral(const CompiledDFDLStringLiteral* a,
                                                   const CompiledDFDLStringLiteral* b);
CompiledDFDLStringLiteral* CompiledDFDLStringLiteral_createDeepCopyAndIncrementLevel(
    const CompiledDFDLStringLiteral* this_, DFDLHeapAdapter* heap);
void CompiledDFDLStringLiteral_reset(CompiledDFDLStringLiteral* this_);  // no text, no parts

#endif
