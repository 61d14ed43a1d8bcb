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
                                 int64_t length, BitRange place) {
    const Text text = trim(plan, target, static_cast<int32_t>(length));
    DocHandlerEventBuffer_plainText(iterator->eventBuffer, &plan.plainElement, text.chars, text.length,
                                    place.start, place.end);
}

bool PlainTextRun_deliver(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
                          const uint8_t* bytes, int64_t length, BitRange place) {
    if (length > MOST_PLAIN_TEXT) return false;
    UChar* target = PlainTextRun_target(iterator, length);
    if (!DFDLCharset_decodeDirectly(charset, bytes, length, target)) return false;
    PlainTextRun_deliverDecoded(iterator, plan, target, length, place);
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
