#ifndef DFDL_PIF_FIXEDSTATE_H
#define DFDL_PIF_FIXEDSTATE_H

#include <cstdint>

struct sPIF;

// How long the value of a property that may be an expression holds.
enum FixedState : int32_t {
    FIXED_NOT = 0,          // computed anew at every use
    FIXED_BY_VARIABLE = 1,  // reads the variable that stands for the property, so it can be kept
    FIXED_CONSTANT = 2      // no expression
};

// Of the property with this expression, which may be -1 for none; `variable` is the source text of the one
// expression that is fixed.
FixedState FixedState_ofExpression(const sPIF* pif, int32_t expressionIndex, const char16_t* variable);

#endif
