// The short road of members without separators between them.
#include "dfdl/buffer/buffermanager.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/plaintextrun.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

// A member's bytes in the current buffer.
struct Field {
    const uint8_t* bytes;  // the content
    int64_t length;        // of the content
    int64_t whole;         // with the prefix
    BitRange place;
};

// Keeps sums of lengths from the data in range.
constexpr int64_t MOST_PLAIN_BYTES = INT64_MAX / 16;

// No limit lies within the bytes, and no character limit is open.
bool isOpenGround(const BufferManager* buffer, int64_t bytes) {
    if (buffer->charTrackerCount != 0) return false;
    return buffer->bitLimit < 1 || buffer->bitPosition + 8 * bytes <= buffer->bitLimit;
}

// The length of content behind a prefix, 0 if the general road has to look at it.
int64_t readLength(const PlainMember& member, const uint8_t* bytes) {
    int64_t length = 0;
    if (bytes == nullptr || !PlainNumber_read(&member.prefix, bytes, &length)) return 0;
    if (member.prefixIncludesItself) length -= member.prefix.bytes;
    return length > MOST_PLAIN_BYTES ? 0 : length;
}

bool findField(const BufferManager* buffer, const RowPlan& plan, Field* field) {
    const PlainMember& member = plan.plainMember;
    const int64_t prefix = member.prefix.form == PLAIN_FORM_NONE ? 0 : member.prefix.bytes;
    field->length = prefix == 0 ? plan.length : readLength(member, BufferManager_peekBytes(buffer, prefix));
    if (field->length < 1) return false;
    field->whole = prefix + field->length;
    const uint8_t* bytes = BufferManager_peekBytes(buffer, field->whole);
    if (bytes == nullptr || !isOpenGround(buffer, field->whole)) return false;
    field->bytes = bytes + prefix;
    field->place = {buffer->bitPosition, buffer->bitPosition + 8 * field->whole};
    return true;
}

// Both: false, with nothing delivered, if the content needs the general road.
bool deliverText(PIFIteratorForParser* iterator, const RowPlan& plan, const Field& field) {
    DFDLCharset* charset = PlainTextRun_useEncoding(iterator->bufferManager, plan);
    if (charset == nullptr ||
        !PlainTextRun_deliver(iterator, plan, charset, field.bytes, field.length, field.place))
        return false;
    iterator->bufferManager->charPosition += field.length;
    return true;
}

bool deliverOpaque(PIFIteratorForParser* iterator, const RowPlan& plan, const Field& field) {
    DocHandlerEventBuffer* events = iterator->eventBuffer;
    if (DocHandlerEventBuffer_holds(events)) return false;
    DocHandlerAdapter_plainBytes(events->adapter, &plan.plainElement, field.bytes, field.length,
                                 field.place.start, field.place.end);
    return true;
}

bool deliver(PIFIteratorForParser* iterator, const RowPlan& plan, const Field& field) {
    if (plan.plainMember.content == PLAIN_TEXT) return deliverText(iterator, plan, field);
    if (plan.plainMember.content == PLAIN_OPAQUE) return deliverOpaque(iterator, plan, field);
    int64_t word = 0;
    if (!PlainNumber_read(&plan.plainMember.number, field.bytes, &word)) return false;
    DocHandlerEventBuffer_plainWord(iterator->eventBuffer, &plan.plainElement, word, field.place.start,
                                    field.place.end);
    return true;
}

// False, with nothing moved, if the member needs the general road.
bool takeMember(PIFIteratorForParser* iterator, const RowPlan& plan) {
    BufferManager* buffer = iterator->bufferManager;
    Field field;
    if (!findField(buffer, plan, &field) || !deliver(iterator, plan, field)) return false;
    buffer->currentBuffer->position += field.whole;
    buffer->bitPosition = field.place.end;
    return true;
}

}  // namespace

void PIFIteratorForParser_runPlainMembers(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (this_->hiddenDepth != 0 || this_->eventBuffer->adapter == nullptr) return;
    const GroupMemberTableRow* first = PIFIteratorForParser_nextCandidate(this_, group);
    const GroupMemberTableRow* row = first;
    while (row != nullptr) {
        const RowPlan& plan = this_->plans[row->rowIndex];
        if (plan.plainMember.content == PLAIN_NO_CONTENT || !takeMember(this_, plan)) break;
        row = row->nextSibling;
    }
    PlainTextRun_resumeAt(this_, group, row, row != first);
}
