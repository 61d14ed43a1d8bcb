#ifndef DFDL_FOUNDATION_DFDLICU_H
#define DFDL_FOUNDATION_DFDLICU_H

#include <unicode/fmtable.h>
#include <unicode/unum.h>
#include <unicode/ures.h>

// The two things of ICU that its flat interface does not offer in one call.

// What dfdlICU_openResource leaves in *status.
enum OpenResourceStatus : int32_t {
    OPEN_RESOURCE_DONE = 0,
    OPEN_RESOURCE_NO_LIBRARY = 2,
    OPEN_RESOURCE_NO_SYMBOL = 3,
    OPEN_RESOURCE_NOT_REGISTERED = 4,
    OPEN_RESOURCE_NOT_OPENED = 5
};

// Loads the library "lib<bundle>.so", registers its data with ICU for the whole process and opens the bundle
// in a language, null being the default locale. The caller closes the handle. Null on failure. Any number of
// threads may call it.
UResourceBundle* dfdlICU_openResource(const char* bundle, const char* symbol, const char* language,
                                      int32_t* status);

// Parses from *position, by a format opened as a UNumberFormat; a length of -1 means up to the terminator. On
// failure *status is U_PARSE_ERROR and *position where the text went wrong, otherwise *position is the end
// and *type the kind of the result.
void parseDFDLRes(icu::Formattable* result, const UNumberFormat* format, const UChar* characters,
                  int32_t length, int32_t* position, UErrorCode* status, int32_t* type);

#endif
