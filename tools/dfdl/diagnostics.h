#ifndef DFDL_TOOLS_DIAGNOSTICS_H
#define DFDL_TOOLS_DIAGNOSTICS_H

#include <dfdl/dfdl.h>

#include "eventwriter.h"

// What the library has to say beside the events: diagnostics and trace, on standard error, one line each.
// Lives as long as the run.
struct Diagnostics {
    Output* out;               // flushed first, so that errors show behind the events before them
    EventWriter* events;       // told as well; null: nobody
    DFDLErrorHandler* errors;  // for the parser
    int count;                 // of all diagnostics so far
    int validationErrors;
};

Diagnostics* new_Diagnostics(Output* out);
void delete_Diagnostics(Diagnostics* this_);

// Handlers that write every statement; the caller deletes them.
DFDLUserTraceHandler* newUserTrace();
DFDLServiceTraceHandler* newServiceTrace();

#endif
