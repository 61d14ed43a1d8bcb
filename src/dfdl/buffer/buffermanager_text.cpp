#include <unicode/utf16.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/rowtrace.h"

namespace {

// A text has at most this many units.
constexpr int64_t MOST_UNITS = std::numeric_limits<int32_t>::max() - 16;

constexpr UChar BYTE_ORDER_MARK = 0xFEFF;

const DFDLUString* encodingName(const BufferManager* manager) {
    return manager->currentCharset == nullptr ? nullptr : manager->currentCharset->name;
}

void raiseCoding(BufferManager* manager, int64_t byteOffset) {
    ProcessingError_setValues(manager->context->currentError, __FILE__, __LINE__,
                              DFDLParser_characterCodingException, ERROR_PROCESSING, SUBKIND_LACK_OF_DATA,
                              "%lld%Z", static_cast<long long>(byteOffset), encodingName(manager));
}

// Puts the mark that was moved over in front of the text, which is given back.
DFDLUString* withMark(BufferManager* manager, DFDLUString* text) {
    UChar* chars = DFDLBufferFactory_GetUBuffer(manager->heap->bufferFactory, text->length + 2);
    chars[0] = BYTE_ORDER_MARK;
    std::copy_n(text->chars, text->length + 1, chars + 1);
    const int32_t length = text->length + 1;
    delete_DFDLUString(text);
    return DFDLUStringPooler_getDFDLUStringUseUChars(manager->heap, chars, length);
}

bool mayHaveMark(const BufferManager* manager) {
    return manager->canHaveBOM != 0 && manager->bomChecked == 0;
}

// Up to this many bytes memory is taken before it is known that they are there.
constexpr int64_t TRUSTED_BYTES = 65536;

// The next bytes, in place or in a copy; moves over them. Null with an error.
class TakenBytes {
  public:
    TakenBytes(BufferManager* manager, int64_t count, const GroupMemberTableRow* element)
        : manager_(manager) {
        bytes_ = BufferManager_peekBytes(manager, count);
        if (bytes_ != nullptr) {
            manager->currentBuffer->position += count;
            manager->bitPosition += count * 8;
        } else {
            copyBytes(count, element);
        }
        if (bytes_ != nullptr && BufferManager_crossesLimit(manager)) {
            BufferManager_raise(manager, DFDLParser_bufferOverflow, element);
            bytes_ = nullptr;
        }
    }
    ~TakenBytes() {
        if (copy_ != nullptr) BufferManager_deAllocateBytes(manager_, copy_);
    }
    TakenBytes(const TakenBytes&) = delete;
    TakenBytes& operator=(const TakenBytes&) = delete;

    const uint8_t* get() const { return bytes_; }

  private:
    // The count may be hostile: a large one is not believed before the bytes are there.
    void copyBytes(int64_t count, const GroupMemberTableRow* element) {
        const int64_t start = BufferManager_bytePosition(manager_);
        if (count <= TRUSTED_BYTES || BufferManager_loadBytes(manager_, start + count)) {
            copy_ = BufferManager_allocateBytes(manager_, count);
            if (BufferManager_read(manager_, copy_, count, start, true) == count) bytes_ = copy_;
        }
        if (bytes_ == nullptr) BufferManager_raiseAt(manager_, DFDLParser_bufferOverflow, start, element);
    }

    BufferManager* manager_;
    const uint8_t* bytes_;
    uint8_t* copy_ = nullptr;
};

DFDLUString* decodeDirectly(BufferManager* manager, const uint8_t* bytes, int64_t count) {
    if (!DFDLCharset_hasDirectRoad(manager->currentCharset)) return nullptr;
    UChar* units = DFDLBufferFactory_GetUBuffer(manager->heap->bufferFactory, count + 1);
    if (!DFDLCharset_decodeDirectly(manager->currentCharset, bytes, count, units)) {
        DFDLBufferFactory_FreeUBuffer(manager->heap->bufferFactory, units);
        return nullptr;
    }
    units[count] = 0;
    return DFDLUStringPooler_getDFDLUStringUseUChars(manager->heap, units, static_cast<int32_t>(count));
}

void traceDroppedTail(BufferManager* manager, const GroupMemberTableRow* element, int64_t tail,
                      int64_t count) {
    if (tail == 0 || manager->context->userTraceOn == 0) return;
    TraceHandlerAdapter_userTraceInfo(manager->trace, element, nullptr, ut_DFDLParser_SkippedRemainingBytes,
                                      "%lld%Z%lld%lld",
                                      static_cast<long long>(BufferManager_bytePosition(manager) - tail),
                                      GroupMemberTableRow_getElementName(element),
                                      static_cast<long long>(tail), static_cast<long long>(count));
}

DFDLUString* decodeThroughICU(BufferManager* manager, const uint8_t* bytes, int64_t count,
                              const GroupMemberTableRow* element) {
    int64_t consumed = 0;
    UErrorCode status = U_ZERO_ERROR;
    const bool allowTrunc = element != nullptr && PIFPhysicalPropertyHelper_hasSpecifiedLength(element);
    DFDLUString* text = CharsetManager_decodeWithIgnoreTruncIgnoreMalformed(
        manager->charsetManager, bytes, count, static_cast<int32_t>(count), &consumed, manager->decoder,
        &status, allowTrunc, manager->maxBytesPerChar, true, true);
    if (text == nullptr) {
        ucnv_resetToUnicode(manager->decoder);
        raiseCoding(manager, BufferManager_bytePosition(manager) - count + consumed);
        return nullptr;
    }
    traceDroppedTail(manager, element, count - consumed, count);
    return text;
}

DFDLUString* decodeBytes(BufferManager* manager, int64_t count, const GroupMemberTableRow* element) {
    const TakenBytes bytes(manager, count, element);
    if (bytes.get() == nullptr) return nullptr;
    DFDLUString* text = decodeDirectly(manager, bytes.get(), count);
    return text != nullptr ? text : decodeThroughICU(manager, bytes.get(), count, element);
}

struct Mark {
    uint8_t bytes[4];
    int32_t length;
    std::u16string_view names[2];
};

// In running, a converter is open by the time a mark is looked for, and the big-endian forms are the ones
// that are known.
constexpr Mark MARKS[] = {
    {{0xFE, 0xFF, 0, 0}, 2, {u"UTF16", u"UTF-16"}},
    {{0xEF, 0xBB, 0xBF, 0}, 3, {u"UTF8", u"UTF-8"}},
    {{0x00, 0x00, 0xFE, 0xFF}, 4, {u"UTF32", u"UTF-32"}},
};
constexpr Mark MARKS_BEFORE_OPENING[] = {
    {{0xFF, 0xFE, 0, 0}, 2, {u"UTF16", u"UTF-16"}},
    {{0xEF, 0xBB, 0xBF, 0}, 3, {u"UTF8", u"UTF-8"}},
    {{0xFF, 0xFE, 0x00, 0x00}, 4, {u"UTF32", u"UTF-32"}},
};

bool startsWith(std::u16string_view name, std::u16string_view upperPrefix) {
    if (name.size() < upperPrefix.size()) return false;
    for (size_t i = 0; i < upperPrefix.size(); ++i) {
        const UChar unit = name[i] >= u'a' && name[i] <= u'z' ? static_cast<UChar>(name[i] - 32) : name[i];
        if (unit != upperPrefix[i]) return false;
    }
    return true;
}

const Mark* markOf(const BufferManager* manager) {
    const std::u16string_view name = DFDLUString_view(encodingName(manager));
    const auto& marks = manager->encodingByteOrder == 0 ? MARKS_BEFORE_OPENING : MARKS;
    for (const Mark& mark : marks) {
        if (startsWith(name, mark.names[0]) || startsWith(name, mark.names[1])) return &mark;
    }
    return nullptr;
}

bool isAtMark(BufferManager* manager, const Mark& mark, const GroupMemberTableRow* element) {
    const int64_t start = BufferManager_bytePosition(manager);
    for (int32_t i = 0; i < mark.length; ++i) {
        const int32_t byte = BufferManager_peekByte(manager, start + i, element);
        if (ProcessingError_isSet(manager->context->currentError)) {
            ProcessingError_reset(manager->context->currentError);
            return false;
        }
        if (static_cast<uint8_t>(byte) != mark.bytes[i]) return false;
    }
    return true;
}

}  // namespace

bool BufferManager_initializeEncoderDecoders(BufferManager* this_, int32_t encodingIndex,
                                             const GroupMemberTableRow* element) {
    if (encodingIndex == this_->currentEncodingIndex) return true;
    DFDLCharset* charset = CharsetManager_getDFDLEncoding(this_->charsetManager, encodingIndex);
    if (charset == nullptr) return !ProcessingError_isSet(this_->context->currentError);
    UConverter* converter = DFDLCharset_getConverter(charset);
    if (converter == nullptr) {
        ProcessingError_reset(this_->context->currentError);
        ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__, INVALID_ENCODING,
                                  ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%Z",
                                  GroupMemberTableRow_getElementName(element), charset->name);
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter, dfdlToUCallback, this_->charsetManager, nullptr, nullptr, &status);
    this_->currentEncodingIndex = encodingIndex;
    this_->currentCharset = charset;
    this_->encoder = converter;
    this_->decoder = converter;
    this_->encodingFixedWidth = DFDLCharset_isFixedWidth(charset) ? 1U : 0U;
    this_->maxBytesPerChar = DFDLCharset_maxBytesPerChar(charset);
    this_->canHaveBOM = DFDLCharset_canHaveBOM(charset) ? 1U : 0U;
    this_->encodingByteOrder = charset->byteOrderState;
    return true;
}

int32_t BufferManager_decodeBOM(BufferManager* this_, const GroupMemberTableRow* element) {
    const Mark* mark = markOf(this_);
    if (mark == nullptr) return -1;
    if (this_->bomChecked != 0) return 0;
    this_->bomChecked = 1;
    if (!isAtMark(this_, *mark, element)) return 0;
    return static_cast<int32_t>(BufferManager_skipBytes(this_, mark->length, element));
}

DFDLUString* BufferManager_readBytesAsString(BufferManager* this_, int32_t encodingIndex, int64_t byteCount,
                                             const GroupMemberTableRow* element) {
    if (!BufferManager_initializeEncoderDecoders(this_, encodingIndex, element)) return nullptr;
    if (byteCount < 0 || byteCount > MOST_UNITS || this_->decoder == nullptr) {
        BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
        return nullptr;
    }
    const int32_t mark = mayHaveMark(this_) ? BufferManager_decodeBOM(this_, element) : 0;
    if (mark > 0) byteCount = std::max<int64_t>(byteCount - mark, 0);
    DFDLUString* text = decodeBytes(this_, byteCount, element);
    if (text == nullptr) return nullptr;
    this_->charPosition += text->length;
    if (this_->charLimit >= 1 && this_->charPosition > this_->charLimit) {
        BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
        delete_DFDLUString(text);
        return nullptr;
    }
    return mark > 0 ? withMark(this_, text) : text;
}
