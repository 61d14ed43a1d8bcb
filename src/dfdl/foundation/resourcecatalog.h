#ifndef DFDL_FOUNDATION_RESOURCECATALOG_H
#define DFDL_FOUNDATION_RESOURCECATALOG_H

#include <unicode/ures.h>

#include "dfdl/foundation/dfdlheapadapter.h"

// Finds message texts in the bundle library "libdfdlparserres.so". One per engine; opened at the first need.
// Whoever owns it deletes it on every road: it holds a handle of ICU.
struct ResourceCatalog {
    DFDLHeapAdapter* heap;
    Context* context;
    UResourceBundle* bundle;  // null until opened
};

ResourceCatalog* new_ResourceCatalog(DFDLHeapAdapter* heap, Context* context);
void delete_ResourceCatalog(ResourceCatalog* this_);
bool ResourceCatalog_openResource(ResourceCatalog* this_);  // in the default locale, if not open yet
// Closes what is open. A language without texts shows the English ones.
bool ResourceCatalog_setLanguage(ResourceCatalog* this_, const char* language);
// The text of a message id, terminated and valid as long as the bundle stays open; null if there is none, or
// no catalog. `length` may be null.
const UChar* ResourceCatalog_GetStringFromResource(ResourceCatalog* this_, const char* key, int32_t* length);

#endif
