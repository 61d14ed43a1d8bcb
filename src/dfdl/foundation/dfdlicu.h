#ifndef DFDL_FOUNDATION_DFDLICU_H
#define DFDL_FOUNDATION_DFDLICU_H

#include <unicode/fmtable.h>
#include <unicode/ucal.h>
#include <unicode/unum.h>
#include <unicode/ures.h>

#include <cstdint>

struct DFDLDecimal;

// What ICU's flat interface does not offer, or not in one call.

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
// Both by parseDFDLRes. The first: the number in decimal, cut to the capacity and without a terminator;
// returns its bytes, 0 on failure.
int32_t dfdl_parseDecimal(const UNumberFormat* format, const UChar* characters, int32_t length,
                          int32_t* position, char* buffer, int32_t capacity, UErrorCode* status);
// The second: the integer; 0 for a number that ICU holds as a double, which is then in the target, and on
// failure.
int64_t dfdl_parseInt64(const UNumberFormat* format, const UChar* characters, int32_t length,
                        int32_t* position, DFDLDecimal* target, UErrorCode* status, int32_t* type);
// Writes a number given in decimal by the format, as a decimal number of ICU's or as a value of its own
// choice. Returns the units, 0 on failure.
int32_t dfdl_formatDecimal(const UNumberFormat* format, bool asDecimal, const char* text, int32_t length,
                           UChar* characters, int32_t capacity, UErrorCode* status);
double dfdl_getTimeInMillis(const UCalendar* calendar, UErrorCode* status);  // 0 on failure

// Special values of double, told by their bits.
double dfdl_getNaN();
double dfdl_getInfinity();
bool dfdl_isNaN(double value);
bool dfdl_isInfinity(double value);
bool dfdl_isPosInfinity(double value);
bool dfdl_isNegInfinity(double value);

#endif
