#include <unicode/utf16.h>

#include <cstring>
#include <limits>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

// The most bytes that so many units can take, terminator included.
int32_t worstCase(DFDLHeapAdapter* heap, UConverter* converter, int32_t units) {
    const int64_t bytes =
        static_cast<int64_t>(ucnv_getMaxCharSize(converter)) * (static_cast<int64_t>(units) + 1);
    if (bytes >= std::numeric_limits<int32_t>::max()) DFDLHeapAdapter_refuse(heap);
    return static_cast<int32_t>(bytes);
}

char* scratchOf(CharsetManager* manager, int32_t size) {
    if (manager->encodeScratchSize < size) {
        char* larger = DFDLHeapAdapter_newArray<char>(manager->heap, static_cast<size_t>(size));
        if (manager->encodeScratch != nullptr) {
            DFDLHeapAdapter_arrayDeallocate(manager->heap, manager->encodeScratch);
        }
        manager->encodeScratch = larger;
        manager->encodeScratchSize = size;
    }
    return manager->encodeScratch;
}

const UChar* nameOf(const GroupMemberTableRow* element) {
    const DFDLUString* name = element == nullptr ? nullptr : GroupMemberTableRow_getElementName(element);
    return name == nullptr ? u"" : name->chars;
}

void raiseEncodingFailure(CharsetManager* manager, UErrorCode status, const GroupMemberTableRow* element,
                          const DFDLUString* encoding, UChar last) {
    ProcessingError* error = manager->context->currentError;
    if (status == U_INVALID_CHAR_FOUND) {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLUnParser_characterMappingException,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%S%Z%C", nameOf(element), encoding, last);
    } else {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLUnParser_characterCodingException,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%S%Z", nameOf(element), encoding);
    }
}

// The first pair of surrogates; -1 if there is none.
int32_t findSurrogatePair(const UChar* units, int32_t length) {
    for (int32_t i = 0; i + 1 < length; ++i) {
        if (U16_IS_LEAD(units[i]) && U16_IS_TRAIL(units[i + 1])) return i;
    }
    return -1;
}

// Encodes into `target`; the bytes, or -1 with the status.
int32_t encodeInto(UConverter* converter, const UChar* units, int32_t length, char* target, int32_t capacity,
                   UErrorCode* status) {
    const UChar* source = units;
    char* at = target;
    ucnv_fromUnicode(converter, &at, target + capacity, &source, units + length, nullptr, true, status);
    const bool good = U_SUCCESS(*status);
    ucnv_resetFromUnicode(converter);
    return good ? static_cast<int32_t>(at - target) : -1;
}

uint8_t* exactCopy(DFDLHeapAdapter* heap, const char* bytes, int32_t count) {
    auto* copy = DFDLHeapAdapter_newArray<uint8_t>(heap, count == 0 ? 1U : static_cast<size_t>(count));
    if (count > 0) std::memcpy(copy, bytes, static_cast<size_t>(count));
    return copy;
}

}  // namespace

const char* CharsetManager_encode_UChar(CharsetManager* this_, const UChar* units, int32_t length,
                                        int32_t* bytes, UConverter* converter,
                                        const GroupMemberTableRow* element, const DFDLUString* encoding) {
    *bytes = 0;
    if (length < 1) return "";
    const int32_t size = worstCase(this_->heap, converter, length);
    char* scratch = scratchOf(this_, size);
    UErrorCode status = U_ZERO_ERROR;
    const UChar* source = units;
    char* target = scratch;
    ucnv_fromUnicode(converter, &target, scratch + size - 1, &source, units + length, nullptr, true, &status);
    ucnv_resetFromUnicode(converter);
    if (U_FAILURE(status)) {
        raiseEncodingFailure(this_, status, element, encoding, source > units ? source[-1] : units[0]);
        return nullptr;
    }
    *target = 0;
    *bytes = static_cast<int32_t>(target - scratch);
    return scratch;
}

const char* CharsetManager_encode(CharsetManager* this_, const DFDLUString* text, int32_t* bytes,
                                  UConverter* converter, const GroupMemberTableRow* element,
                                  const DFDLUString* encoding) {
    const std::u16string_view view = DFDLUString_view(text);
    return CharsetManager_encode_UChar(this_, view.data(), static_cast<int32_t>(view.size()), bytes,
                                       converter, element, encoding);
}

const char* CharsetManager_encodeValue_UChar(CharsetManager* this_, UConverter* converter, const UChar* units,
                                             int32_t length, bool rejectSurrogates, int32_t* bytes,
                                             const GroupMemberTableRow* element,
                                             const DFDLUString* encoding) {
    const int32_t pair = rejectSurrogates ? findSurrogatePair(units, length) : -1;
    if (pair < 0)
        return CharsetManager_encode_UChar(this_, units, length, bytes, converter, element, encoding);
    const UChar text[] = {units[pair], units[pair + 1], 0};
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLUnParser_characterMappingException, ERROR_PROCESSING, SUBKIND_NONE,
                              "%S%s%S", nameOf(element), "UCS-2", text);
    *bytes = 0;
    return nullptr;
}

const char* CharsetManager_encodeValue(CharsetManager* this_, UConverter* converter, const DFDLUString* text,
                                       bool rejectSurrogates, int32_t* bytes,
                                       const GroupMemberTableRow* element, const DFDLUString* encoding) {
    const std::u16string_view view = DFDLUString_view(text);
    return CharsetManager_encodeValue_UChar(this_, converter, view.data(), static_cast<int32_t>(view.size()),
                                            rejectSurrogates, bytes, element, encoding);
}

uint8_t* CharsetManager_convertTo(DFDLHeapAdapter* heap, const UChar* units, int32_t length, int32_t* bytes,
                                  UConverter* converter) {
    *bytes = 0;
    if (length == 0) return exactCopy(heap, nullptr, 0);
    for (int32_t capacity = worstCase(heap, converter, length);; capacity *= 2) {
        char* scratch = DFDLHeapAdapter_newArray<char>(heap, static_cast<size_t>(capacity));
        UErrorCode status = U_ZERO_ERROR;
        const int32_t count = encodeInto(converter, units, length, scratch, capacity, &status);
        uint8_t* result = count < 0 ? nullptr : exactCopy(heap, scratch, count);
        DFDLHeapAdapter_arrayDeallocate(heap, scratch);
        if (result != nullptr) *bytes = count;
        const bool tooSmall =
            status == U_BUFFER_OVERFLOW_ERROR && capacity < std::numeric_limits<int32_t>::max() / 2;
        if (!tooSmall) return result;
    }
}

uint8_t* CharsetManager_convertUCharTo(DFDLHeapAdapter* heap, const UChar* unit, int32_t* bytes,
                                       UConverter* converter) {
    char target[16];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count =
        encodeInto(converter, unit, 1, target, static_cast<int32_t>(sizeof target), &status);
    *bytes = count < 0 ? 0 : count;
    return count < 0 ? nullptr : exactCopy(heap, target, count);
}
