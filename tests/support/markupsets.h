#ifndef DFDL_TESTS_SUPPORT_MARKUPSETS_H
#define DFDL_TESTS_SUPPORT_MARKUPSETS_H

#include "pif.pb.h"

// Fills the table of markup sets anew from the rest of the message: one row for every context of delimiters
// that a walk from a global element can come to. A group within itself is not entered again, as its contexts
// would have no end.
void fillMarkupSets(PIF::MPIF* pif);

#endif
