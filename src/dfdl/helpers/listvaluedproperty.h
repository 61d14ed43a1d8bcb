#ifndef DFDL_HELPERS_LISTVALUEDPROPERTY_H
#define DFDL_HELPERS_LISTVALUEDPROPERTY_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct DFDLUString;

// The entries of a property that lists literals with white space between them. Belongs to its maker.
//
// A sorted list is in ascending order and read from its end, so that a text which begins with another comes
// before it.
struct ListValuedProperty {
    DFDLHeapAdapter* heap;
    DFDLUString* source;  // owned
    ArrayList* values;    // of pooled DFDLUString
    bool sorted;
};

// Takes a copy of the source, which may be null.
ListValuedProperty* new_ListValuedProperty(DFDLHeapAdapter* heap, const DFDLUString* source, bool sorted);
void delete_ListValuedProperty(ListValuedProperty* this_);  // null is ignored

void ListValuedProperty_buildProperties(ListValuedProperty* this_);
void ListValuedProperty_reset(ListValuedProperty* this_);
void ListValuedProperty_sortArray(ListValuedProperty* this_);

int32_t ListValuedProperty_size(const ListValuedProperty* this_);
// In reading order: from the end if sorted. The index must be below the size.
DFDLUString* ListValuedProperty_get(const ListValuedProperty* this_, int32_t index);

// The entries of a text in their order, as owned strings in an owned list; null for a null text.
ArrayList* ListValuedProperty_split(const DFDLUString* text, DFDLHeapAdapter* heap);
void ListValuedProperty_deleteSplit(ArrayList* entries);  // null is ignored

#endif
