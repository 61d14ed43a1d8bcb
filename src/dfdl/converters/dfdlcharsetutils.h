#ifndef DFDL_CONVERTERS_DFDLCHARSETUTILS_H
#define DFDL_CONVERTERS_DFDLCHARSETUTILS_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;

// What names tell of encodings, without regard to case. A name of digits is a page number.
bool DFDLCharsetUtils_isEncodingUTF16(const char* name);
bool DFDLCharsetUtils_isEncodingASCIICompatible(const char* name);
bool DFDLCharsetUtils_isEncodingEBCDIC(const char* name);
bool DFDLCharsetUtils_isEncodingUTF32(const char* name);
bool DFDLCharsetUtils_isEncodingUCS2(const char* name);
bool DFDLCharsetUtils_encodingIsNumeric(const char* name);  // digits only, and not empty

// Short fixed lists, for names as the schema has them.
bool DFDLCharsetUtils_u_isEncodingUTF16(const DFDLUString* name);
bool DFDLCharsetUtils_u_isEncodingUTF32(const DFDLUString* name);
bool DFDLCharsetUtils_u_isEncodingUCS2(const DFDLUString* name);

// The name to give to ICU: names that leave the byte order open get one. Pooled, the caller's.
DFDLUString* DFDLCharsetUtils_u_getStandardEncoding(DFDLHeapAdapter* heap, const DFDLUString* name,
                                                    bool littleEndian);

enum CharsetNameTable : int32_t { CHARSET_NAMES_UTF16, CHARSET_NAMES_ASCII, CHARSET_NAMES_EBCDIC };
int32_t DFDLCharsetUtils_countNames(CharsetNameTable table);  // names and page names it knows

#endif
