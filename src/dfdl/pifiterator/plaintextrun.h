#ifndef DFDL_PIFITERATOR_PLAINTEXTRUN_H
#define DFDL_PIFITERATOR_PLAINTEXTRUN_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/pifiterator/rowplan.h"

struct ContextItemForParser;
struct DFDLCharset;
struct GroupMemberTableRow;
struct PIFIteratorForParser;

// What the short roads share.

// Occurrences are counted in 32 bits; whoever has more takes the general road.
inline constexpr int32_t MAX_PLAIN_OCCURRENCES = 1000000000;

// Where an element lies, in bits of the document.
struct BitRange {
    int64_t start;
    int64_t end;
};

// The bytes of a text, as they lie in the current buffer.
struct PlainBytes {
    const uint8_t* start;
    int64_t count;
    int64_t loaded;  // from the start on: those behind the text too
};

// Makes the text's encoding the buffer's current one, as the general road does: groups without an encoding of
// their own count characters in the one that was used last. Null if it cannot be had, or if a byte order mark
// may still stand here.
DFDLCharset* PlainTextRun_changeEncoding(BufferManager* buffer, const RowPlan& plan);
inline DFDLCharset* PlainTextRun_useEncoding(BufferManager* buffer, const RowPlan& plan) {
    if (buffer->currentEncodingIndex != plan.encodingIndex) return PlainTextRun_changeEncoding(buffer, plan);
    return buffer->canHaveBOM != 0 && buffer->bomChecked == 0 ? nullptr : buffer->currentCharset;
}

// Where a text of so many units is to be decoded to. There is room for a block of bytes beyond it.
UChar* PlainTextRun_target(PIFIteratorForParser* iterator, int64_t units);

// Decodes the bytes, trims the text and delivers the element. False, with nothing done, if they need a
// converter or are more than the short roads take.
bool PlainTextRun_deliver(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
                          const PlainBytes& bytes, const BitRange& place);

// Leaves the walk before a member. `moved`: the short road has taken others before it.
void PlainTextRun_resumeAt(PIFIteratorForParser* iterator, ContextItemForParser* group,
                           const GroupMemberTableRow* row, bool moved);

#endif
