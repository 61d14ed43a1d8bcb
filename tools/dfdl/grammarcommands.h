#ifndef DFDL_TOOLS_GRAMMARCOMMANDS_H
#define DFDL_TOOLS_GRAMMARCOMMANDS_H

#include <string>

#include "status.h"

// Between a compiled grammar and its text form, Protocol Buffers text format of the message MPIF.
//
// In the text a reference (a field that holds an index or an id) is left out where there is none; in the
// compiled form it is -1, since there an absent one would be row 0. So encode writes the -1, and decode
// leaves it out and writes a reference that is absent in the compiled form as 0. What decode writes, encode
// turns into a grammar with the same meaning.

Status encodeGrammar(const std::string& textPath, const std::string& pifPath);
Status decodeGrammar(const std::string& pifPath, const std::string& textPath);
Status showGrammar(const std::string& pifPath, const std::string& outputPath);

#endif
