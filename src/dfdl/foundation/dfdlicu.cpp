#include "dfdl/foundation/dfdlicu.h"

#include <dlfcn.h>
#include <unicode/numfmt.h>
#include <unicode/udata.h>
#include <unicode/uloc.h>

#include <climits>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t LIBRARY_NAME_CAPACITY = 261;
constexpr size_t LOCALE_CAPACITY = 6;  // language and country
constexpr char ROOT[] = "root";

// The file `name` in the folder that this code was loaded from.
void* openBesideUs(const char* name) {
    Dl_info self = {};
    if (dladdr(ROOT, &self) == 0 || self.dli_fname == nullptr) return nullptr;
    const char* slash = strrchr(self.dli_fname, '/');
    if (slash == nullptr) return nullptr;
    char path[PATH_MAX];
    const int length = snprintf(path, sizeof path, "%.*s/%s", static_cast<int>(slash - self.dli_fname),
                                self.dli_fname, name);
    if (length < 0 || static_cast<size_t>(length) >= sizeof path) return nullptr;
    return dlopen(path, RTLD_LAZY);
}

// By the loader's own search, which knows our folder from the run path; but not if that was stripped, nor if
// a sanitizer calls the loader in our place.
void* openLibrary(const char* bundle) {
    char name[LIBRARY_NAME_CAPACITY];
    const int length = snprintf(name, sizeof name, "lib%s.so", bundle);
    if (length < 0 || static_cast<size_t>(length) >= sizeof name) return nullptr;
    void* library = dlopen(name, RTLD_LAZY);
    return library == nullptr ? openBesideUs(name) : library;
}

// ICU keeps the pointer to the data, and the first registration of a name stays: the library remains loaded
// for it. Later ones count no further use.
int32_t registerData(const char* bundle, const char* symbol) {
    void* library = openLibrary(bundle);
    if (library == nullptr) return OPEN_RESOURCE_NO_LIBRARY;
    UErrorCode status = U_ZERO_ERROR;
    const void* data = dlsym(library, symbol);
    if (data != nullptr) udata_setAppData(bundle, data, &status);
    if (data == nullptr || status != U_ZERO_ERROR) dlclose(library);
    if (data == nullptr) return OPEN_RESOURCE_NO_SYMBOL;
    return U_FAILURE(status) ? OPEN_RESOURCE_NOT_REGISTERED : OPEN_RESOURCE_DONE;
}

// The root bundle is the English one.
void chooseLocale(const char* language, char (&locale)[LOCALE_CAPACITY]) {
    snprintf(locale, sizeof locale, "%s", language == nullptr ? uloc_getDefault() : language);
    if (strstr(locale, "en") != nullptr) memcpy(locale, ROOT, sizeof ROOT);
}

// ICU takes the texts of the default locale for those of a language that has none: whoever asked for another
// language gets the root's instead.
UResourceBundle* openBundle(const char* bundle, const char* locale) {
    UErrorCode status = U_ZERO_ERROR;
    UResourceBundle* opened = ures_open(bundle, locale, &status);
    if (U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING) return opened;
    ures_close(opened);
    status = U_ZERO_ERROR;
    opened = ures_openDirect(bundle, ROOT, &status);
    if (U_SUCCESS(status)) return opened;
    ures_close(opened);
    return nullptr;
}

}  // namespace

UResourceBundle* dfdlICU_openResource(const char* bundle, const char* symbol, const char* language,
                                      int32_t* status) {
    char locale[LOCALE_CAPACITY];
    chooseLocale(language, locale);
    *status = registerData(bundle, symbol);
    if (*status != OPEN_RESOURCE_DONE) return nullptr;
    UResourceBundle* opened = openBundle(bundle, locale);
    if (opened == nullptr) *status = OPEN_RESOURCE_NOT_OPENED;
    return opened;
}

void parseDFDLRes(icu::Formattable* result, const UNumberFormat* format, const UChar* characters,
                  int32_t length, int32_t* position, UErrorCode* status, int32_t* type) {
    const icu::UnicodeString text(length == -1, characters, length);
    icu::ParsePosition place(position == nullptr ? 0 : *position);
    reinterpret_cast<const icu::NumberFormat*>(format)->parse(text, *result, place);
    const bool failed = place.getErrorIndex() != -1;
    if (failed) *status = U_PARSE_ERROR;
    if (position != nullptr) *position = failed ? place.getErrorIndex() : place.getIndex();
    if (type != nullptr) *type = result->getType();
}
