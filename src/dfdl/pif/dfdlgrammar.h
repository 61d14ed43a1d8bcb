#ifndef DFDL_PIF_DFDLGRAMMAR_H
#define DFDL_PIF_DFDLGRAMMAR_H

#include <dfdl/dfdl.h>

struct sPIF;

// The three ways to make a grammar differ in where the message comes from and in how they are traced.
struct GrammarSource {
    const char* entryName;
    const char* exitName;
    bool (*load)(sPIF* pif, const GrammarSource& source, int* resultCode);
    const void* place;        // path, bytes or wrapper
    size_t length;            // of bytes
    const char* entryFormat;  // of heap, place, handler and result code; the place is text (%s) or an address
};

// Null on failure, with a result code in any case. Nothing thrown inside leaves it.
sPIF* DFDLGrammar_make(DFDLHeap* heap, const GrammarSource& source, DFDLServiceTraceHandler* handler,
                       int* resultCode) noexcept;

#endif
