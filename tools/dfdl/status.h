#ifndef DFDL_TOOLS_STATUS_H
#define DFDL_TOOLS_STATUS_H

// What the tool's exit status tells.
enum Status {
    STATUS_PARSED = 0,
    STATUS_PARSE_FAILED = 1,
    STATUS_USAGE = 2,    // also an unreadable input, and a mistake in a grammar's text
    STATUS_GRAMMAR = 3,  // the grammar could not be loaded or opened
    STATUS_INVALID = 4   // parsed, but validation errors were delivered
};

#endif
