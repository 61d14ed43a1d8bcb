#ifndef DFDL_HELPERS_DFDLNMBRCHARACTER_H
#define DFDL_HELPERS_DFDLNMBRCHARACTER_H

#include "dfdl/foundation/dfdlustring.h"

struct GroupMemberTableRow;
struct ProcessingError;

// A character that an element's numbers are written with, as a literal that its row lends.
struct DFDLNmbrCharacter {
    const DFDLUString* value;  // null or empty: the row has none
    bool failed;               // an expression was to give it, with an error
};

// Each without value where the element is no number that is written as text. Errors are raised under the key
// that the reader or the writer of the element has for what it does not support.
using DFDLNmbrCharacterOf = DFDLNmbrCharacter (*)(const GroupMemberTableRow* element, ProcessingError* error,
                                                  const char* unsupportedKey);
DFDLNmbrCharacter DFDLNmbrGrpSeparator_valueOf(const GroupMemberTableRow* element, ProcessingError* error,
                                               const char* unsupportedKey);
DFDLNmbrCharacter DFDLNmbrDecimalSeparator_valueOf(const GroupMemberTableRow* element, ProcessingError* error,
                                                   const char* unsupportedKey);
DFDLNmbrCharacter DFDLNmbrExponentCharacter_valueOf(const GroupMemberTableRow* element,
                                                    ProcessingError* error, const char* unsupportedKey);

inline bool DFDLNmbrCharacter_exist(const DFDLNmbrCharacter& this_) {
    return DFDLUString_length(this_.value) > 0;
}

#endif
