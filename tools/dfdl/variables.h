#ifndef DFDL_TOOLS_VARIABLES_H
#define DFDL_TOOLS_VARIABLES_H

#include <dfdl/dfdl.h>

#include <string>
#include <vector>

// Sets external variables from texts of the form NAME=VALUE or {NAMESPACE}NAME=VALUE; each value is read as
// the type that the grammar in the file `grammarPath` gives its variable. On a mistake `message` says which;
// it stays empty where the library has told its error handler.
bool setVariables(DFDLParser* parser, const std::string& grammarPath,
                  const std::vector<std::string>& assignments, std::string& message);

#endif
