#ifndef DFDL_TOOLS_PARSECOMMAND_H
#define DFDL_TOOLS_PARSECOMMAND_H

#include <string>
#include <vector>

#include "status.h"

// What the command line of `dfdl parse` asks for.
struct ParseOptions {
    std::string grammar;
    std::string root;
    std::string namespaceUri;
    std::string input;
    std::string output;
    std::string format = "xml";
    std::vector<std::string> assignments;  // of external variables
    size_t chunk = 0;                      // bytes; 0: not asked for
    std::string trace;                     // "user", "service" or empty
    std::string language;
    bool validate = false;
    bool ignoreTrailingData = false;
    bool fastSmallIntegers = false;
    bool repeat = false;
    bool step = false;
    bool regions = false;
};

Status parseCommand(const ParseOptions& options);

#endif
