#include <algorithm>
#include <limits>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

constexpr int32_t MOST_UNITS = std::numeric_limits<int32_t>::max() - 1;

bool isBadSequence(UErrorCode status) {
    return status == U_TRUNCATED_CHAR_FOUND || status == U_ILLEGAL_CHAR_FOUND;
}

struct Outcome {
    bool good;
    bool resetConverter;
};

// `rest` counts from the start of the bad sequence to the end of the data.
Outcome judge(UErrorCode status, int64_t rest, bool allowTrunc, int32_t maxBytes, bool strict) {
    if (isBadSequence(status)) {
        if (allowTrunc && rest < maxBytes) return {true, strict};
        return {!strict, false};
    }
    if (status == U_BUFFER_OVERFLOW_ERROR) return {true, strict};
    return {U_SUCCESS(status) != 0, false};
}

}  // namespace

DFDLUString* CharsetManager_decodeWithIgnoreTruncIgnoreMalformed(CharsetManager* this_, const uint8_t* source,
                                                                 int64_t length, int32_t maxUnits,
                                                                 int64_t* consumed, UConverter* converter,
                                                                 UErrorCode* status, bool allowTrunc,
                                                                 int32_t maxBytes, bool strict, bool flush) {
    *consumed = 0;
    *status = U_ZERO_ERROR;
    if (length < 0 || source == nullptr) return nullptr;
    if (length == 0) return DFDLUStringPooler_getDFDLUStringFromUChars(this_->heap, u"", 0);
    this_->badByteCount = 0;
    maxUnits = std::clamp(maxUnits, 0, MOST_UNITS);
    UChar* units =
        DFDLBufferFactory_GetUBuffer(this_->heap->bufferFactory, static_cast<int64_t>(maxUnits) + 1);
    const char* bytes = reinterpret_cast<const char*>(source);
    const char* at = bytes;
    UChar* target = units;
    ucnv_toUnicode(converter, &target, units + maxUnits, &at, bytes + length, nullptr, flush, status);
    *consumed = at - bytes - this_->badByteCount;
    const Outcome outcome = judge(*status, length - *consumed, allowTrunc, maxBytes, strict);
    if (outcome.resetConverter) ucnv_resetToUnicode(converter);
    if (!outcome.good) {
        DFDLBufferFactory_FreeUBuffer(this_->heap->bufferFactory, units);
        return nullptr;
    }
    *target = 0;
    return DFDLUStringPooler_getDFDLUStringUseUChars(this_->heap, units,
                                                     static_cast<int32_t>(target - units));
}

void dfdlToUCallback(const void* context, UConverterToUnicodeArgs* args, const char* codeUnits,
                     int32_t length, UConverterCallbackReason reason, UErrorCode* status) {
    static_cast<void>(args);
    static_cast<void>(codeUnits);
    static_cast<void>(reason);
    if (!isBadSequence(*status)) return;
    // ICU hands the context through as it was given.
    auto* manager = static_cast<CharsetManager*>(const_cast<void*>(context));
    manager->badByteCount = length;
}
