#include "dfdl/pifiterator/plaintextrun.h"

#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

struct Text {
    UChar* chars;
    int32_t length;
};

// No limit lies within the bytes, and no character limit is open.
bool isOpenGround(const BufferManager* buffer, int64_t bytes) {
    if (buffer->charTrackerCount != 0) return false;
    return buffer->bitLimit < 1 || buffer->bitPosition + 8 * bytes <= buffer->bitLimit;
}

Text trim(const RowPlan& plan, UChar* chars, int32_t length) {
    UChar* start = chars;
    UChar* end = chars + length;
    const UChar pad = plan.padCharacter[0];
    if (plan.trim == TRIM_CHARACTER) {
        if (plan.trimLeading != 0)
            start = std::find_if(start, end, [pad](UChar unit) { return unit != pad; });
        if (plan.trimTrailing != 0) {
            while (end > start && end[-1] == pad) --end;
        }
    }
    *end = 0;
    return {start, static_cast<int32_t>(end - start)};
}

// A byte order mark may stand here.
bool mayHaveMark(const BufferManager* buffer, DFDLCharset* charset) {
    return buffer->bomChecked == 0 && DFDLCharset_canHaveBOM(charset);
}

// False, with nothing moved, if the text needs the general road.
bool parsePlainText(PIFIteratorForParser* iterator, const RowPlan* plan) {
    BufferManager* buffer = iterator->bufferManager;
    const int64_t length = plan->length;
    const uint8_t* bytes = BufferManager_peekBytes(buffer, length);
    if (bytes == nullptr || !isOpenGround(buffer, length)) return false;
    DFDLCharset* charset = PlainTextRun_useEncoding(buffer, *plan);
    if (charset == nullptr ||
        !PlainTextRun_deliver(iterator, *plan, charset, bytes, length, buffer->bitPosition)) {
        return false;
    }
    buffer->currentBuffer->position += length;
    buffer->bitPosition += 8 * length;
    buffer->charPosition += length;
    return true;
}

}  // namespace

DFDLCharset* PlainTextRun_useEncoding(BufferManager* buffer, const RowPlan& plan) {
    if (buffer->currentEncodingIndex != plan.encodingIndex &&
        (!BufferManager_initializeEncoderDecoders(buffer, plan.encodingIndex, nullptr) ||
         buffer->currentEncodingIndex != plan.encodingIndex)) {
        return nullptr;
    }
    return mayHaveMark(buffer, buffer->currentCharset) ? nullptr : buffer->currentCharset;
}

UChar* PlainTextRun_target(PIFIteratorForParser* iterator, int64_t units) {
    return DocHandlerEventBuffer_holds(iterator->eventBuffer)
               ? DocHandlerEventBuffer_roomForText(iterator->eventBuffer, units + PLAIN_BLOCK)
               : iterator->plainText;
}

void PlainTextRun_deliverDecoded(PIFIteratorForParser* iterator, const RowPlan& plan, UChar* target,
                                 int64_t length, int64_t startBit) {
    const Text text = trim(plan, target, static_cast<int32_t>(length));
    DocHandlerEventBuffer_plainText(iterator->eventBuffer, &plan.plainText, text.chars, text.length, startBit,
                                    startBit + 8 * length);
}

bool PlainTextRun_deliver(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
                          const uint8_t* bytes, int64_t length, int64_t startBit) {
    if (length > MOST_PLAIN_TEXT) return false;
    UChar* target = PlainTextRun_target(iterator, length);
    if (!DFDLCharset_decodeDirectly(charset, bytes, length, target)) return false;
    PlainTextRun_deliverDecoded(iterator, plan, target, length, startBit);
    return true;
}

void PlainTextRun_resumeAt(PIFIteratorForParser* iterator, ContextItemForParser* group,
                           const GroupMemberTableRow* row, bool moved) {
    // What a converter that cannot be opened has left is raised again, in its own words, by the general road.
    ProcessingError_reset(iterator->context->currentError);
    // The question for the next member changes what it looks at, so its answer is kept.
    group->resumeRow = row;
    group->hasResumeRow = 1;
    if (moved) ContextItemForParser_setOrderedChild(group, nullptr);
}

void PIFIteratorForParser_runPlainTexts(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (this_->hiddenDepth != 0 || this_->eventBuffer->adapter == nullptr) return;
    const GroupMemberTableRow* first = PIFIteratorForParser_nextCandidate(this_, group);
    const GroupMemberTableRow* row = first;
    while (row != nullptr) {
        const RowPlan* plan = &this_->plans[row->rowIndex];
        if (plan->isPlainText == 0 || !parsePlainText(this_, plan)) break;
        row = row->nextSibling;
    }
    PlainTextRun_resumeAt(this_, group, row, row != first);
}
