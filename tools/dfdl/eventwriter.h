#ifndef DFDL_TOOLS_EVENTWRITER_H
#define DFDL_TOOLS_EVENTWRITER_H

#include <dfdl/dfdl.h>

#include "output.h"

// Turns the callbacks of a parse into lines of JSON, one object for every callback with its arguments, in
// their order. Made by whoever runs a parse, it outlives the parser that its handlers are given to.
//
// Other programs read these lines: the names of the members and their order do not change.
struct EventWriter {
    Output* out;  // the caller's
    DFDLDocHandler* document;
    DFDLRegionHandler* regions;
    DFDLErrorHandler* errors;
    DFDLWORD bytes;  // that the last document end told; -1 before it
};

EventWriter* new_EventWriter(Output* out);
void delete_EventWriter(EventWriter* this_);

// What the handler in `errors` does, for a caller with an error handler of its own: `event` is "warning",
// "processingError", "validationError" or "schemaDefinitionError".
void EventWriter_diagnostic(EventWriter* this_, const char* event, const DFDLDiagnostic* diagnostic);

// Between quotation marks; a lone surrogate as a \u escape.
void appendJsonString(std::string& out, std::u16string_view text);

#endif
