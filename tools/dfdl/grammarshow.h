#ifndef DFDL_TOOLS_GRAMMARSHOW_H
#define DFDL_TOOLS_GRAMMARSHOW_H

#include <string>

namespace PIF {
class MPIF;
}

// The grammar as a person wants to see it: one line for every element and group, indented by its parent. A
// group's content shows where the group first occurs; so a grammar that contains itself has an end.
std::string describeGrammar(const PIF::MPIF& grammar);

#endif
