#ifndef DFDL_FRAMEWORK_LINKEDLISTCOMPILEDDFDLSTRINGLITERAL_H
#define DFDL_FRAMEWORK_LINKEDLISTCOMPILEDDFDLSTRINGLITERAL_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct CompiledDFDLStringLiteral;

// The literals of a compiled set that can start with one byte, in the order in which they are tried. A null
// list is an empty one. The nodes belong to the set; so do the literals, through its list of all of them.
struct LinkedListCompiledDFDLStringLiteral {
    DFDLHeapAdapter* heap;
    CompiledDFDLStringLiteral* literal;
    int32_t tag;  // index of the literal in its set
    LinkedListCompiledDFDLStringLiteral* next;
};

using LinkedListOfLiterals = LinkedListCompiledDFDLStringLiteral;

// Each returns the head.
LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_addToList(LinkedListOfLiterals* head,
                                                                    DFDLHeapAdapter* heap,
                                                                    CompiledDFDLStringLiteral* literal,
                                                                    int32_t tag);  // at the end
// Equals come out in reverse.
LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_sortList(LinkedListOfLiterals* head);
// Of equals, those of b come first.
LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_merge(LinkedListOfLiterals* a,
                                                                LinkedListOfLiterals* b);
// `literals` has, at each tag, what stands in the copy for the literal.
LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_clone(const LinkedListOfLiterals* head,
                                                                DFDLHeapAdapter* heap,
                                                                const ArrayList* literals);
void delete_LinkedListCompiledDFDLStringLiteral(LinkedListOfLiterals* head);

#endif
