#ifndef DFDL_TOOLS_XMLWRITER_H
#define DFDL_TOOLS_XMLWRITER_H

#include <dfdl/dfdl.h>

#include <string>
#include <vector>

#include "output.h"

// Turns the document callbacks of a parse into an XML document, indented between elements and never inside a
// value. Every message of a run is a document of its own, one behind the other. A message that fails leaves
// its document unfinished, so that nobody takes it for whole.
//
// Characters that XML has no way to hold move into the private use area: controls to U+E000 plus their code,
// lone surrogates to U+E800 to U+EFFF, U+FFFE and U+FFFF to U+F0FE and U+F0FF.
struct XmlWriter {
    struct Open {
        size_t name;        // where the tag's name starts in `names`
        size_t namespaces;  // how many of `namespaces` were in scope before this element
    };
    Output* out;  // the caller's
    DFDLDocHandler* document;
    std::vector<Open> open;
    std::string names;                       // the open elements' tag names, one behind the other
    std::vector<std::u16string> namespaces;  // in scope; the prefix is "ns" and the index
    bool tagOpen;                            // the start tag still wants its ">"
    bool hasValue;                           // the innermost element holds text or nil, no elements
    DFDLWORD bytes;                          // that the last document end told; -1 before it
};

XmlWriter* new_XmlWriter(Output* out);
void delete_XmlWriter(XmlWriter* this_);

#endif
