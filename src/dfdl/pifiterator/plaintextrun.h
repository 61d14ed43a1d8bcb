#ifndef DFDL_PIFITERATOR_PLAINTEXTRUN_H
#define DFDL_PIFITERATOR_PLAINTEXTRUN_H

#include <unicode/utypes.h>

#include <cstdint>

struct BufferManager;
struct ContextItemForParser;
struct DFDLCharset;
struct GroupMemberTableRow;
struct PIFIteratorForParser;
struct RowPlan;

// What the short roads share.

// Occurrences are counted in 32 bits; whoever has more takes the general road.
inline constexpr int32_t MAX_PLAIN_OCCURRENCES = 1000000000;

// Where an element lies, in bits of the document.
struct BitRange {
    int64_t start;
    int64_t end;
};

// Makes the text's encoding the buffer's current one, as the general road does: groups without an encoding of
// their own count characters in the one that was used last. Null if it cannot be had, or if a byte order mark
// may still stand here.
DFDLCharset* PlainTextRun_useEncoding(BufferManager* buffer, const RowPlan& plan);

// Where a text of so many units is to be decoded to. There is room for a block of bytes beyond it.
UChar* PlainTextRun_target(PIFIteratorForParser* iterator, int64_t units);

// Trims the text at the target, which has a unit more for its zero, and delivers the element.
void PlainTextRun_deliverDecoded(PIFIteratorForParser* iterator, const RowPlan& plan, UChar* target,
                                 int64_t length, BitRange place);

// Decodes so many bytes and delivers the element. False, with nothing done, if they need a converter or are
// more than the short roads take.
bool PlainTextRun_deliver(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
                          const uint8_t* bytes, int64_t length, BitRange place);

// Leaves the walk before a member. `moved`: the short road has taken others before it.
void PlainTextRun_resumeAt(PIFIteratorForParser* iterator, ContextItemForParser* group,
                           const GroupMemberTableRow* row, bool moved);

#endif
