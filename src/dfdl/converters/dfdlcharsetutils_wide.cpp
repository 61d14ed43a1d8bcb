#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <string_view>

#include "dfdl/converters/dfdlcharsetutils.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

bool isOneOf(const DFDLUString* name, std::initializer_list<std::u16string_view> names) {
    const std::u16string_view view = DFDLUString_view(name);
    for (const std::u16string_view entry : names) {
        if (entry.size() == view.size() &&
            u_strncasecmp(entry.data(), view.data(), static_cast<int32_t>(view.size()),
                          U_FOLD_CASE_DEFAULT) == 0) {
            return true;
        }
    }
    return false;
}

DFDLUString* pooled(DFDLHeapAdapter* heap, std::u16string_view text) {
    return DFDLUStringPooler_getDFDLUStringFromUChars(heap, text.data(), static_cast<int32_t>(text.size()));
}

}  // namespace

bool DFDLCharsetUtils_u_isEncodingUTF16(const DFDLUString* name) {
    return isOneOf(name, {u"UTF-16", u"UTF16", u"1204", u"1205"});
}

bool DFDLCharsetUtils_u_isEncodingUTF32(const DFDLUString* name) {
    return isOneOf(name, {u"UTF32", u"UTF-32", u"1236", u"1237"});
}

bool DFDLCharsetUtils_u_isEncodingUCS2(const DFDLUString* name) {
    return isOneOf(name, {u"UCS2", u"UCS-2", u"CSUNICODE", u"ISO-10646-UCS-2"});
}

DFDLUString* DFDLCharsetUtils_u_getStandardEncoding(DFDLHeapAdapter* heap, const DFDLUString* name,
                                                    bool littleEndian) {
    if (DFDLCharsetUtils_u_isEncodingUTF16(name) || DFDLCharsetUtils_u_isEncodingUCS2(name)) {
        return pooled(heap, littleEndian ? u"UTF-16LE" : u"UTF-16BE");
    }
    if (DFDLCharsetUtils_u_isEncodingUTF32(name))
        return pooled(heap, littleEndian ? u"UTF-32LE" : u"UTF-32BE");
    return pooled(heap, DFDLUString_view(name));
}
