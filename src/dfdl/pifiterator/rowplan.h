#ifndef DFDL_PIFITERATOR_ROWPLAN_H
#define DFDL_PIFITERATOR_ROWPLAN_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/converters/plainnumber.h"
#include "dfdl/parsers/plaintextvalue.h"
#include "dfdl/processor/plainelement.h"

struct DFDLHeapAdapter;
struct CompiledMarkupSet;
struct GroupMemberTableRow;
struct UnorderedMembers;
struct sPIF;

// How the text of an element is trimmed.
enum TrimKind : uint8_t { TRIM_NONE, TRIM_CHARACTER, TRIM_BYTE };

// What the walk has to know of a member at each occurrence, worked out once per parser and grammar, so that
// the hot loop looks at a few adjacent words instead of half a dozen property rows.
// Units of the longest text that the short road takes.
inline constexpr int32_t MOST_PLAIN_TEXT = 1000;
// Bytes that are decoded at once; what is written behind a text, its zero included, stays below this.
inline constexpr int32_t PLAIN_BLOCK = 16;

// A delimited text that the short road may take.
enum PlainFieldKind : uint8_t { PLAIN_NONE, PLAIN_SINGLE, PLAIN_ARRAY };

// What the short road of members without separators takes: one occurrence of a text, a number, a truth value
// or opaque bytes.
enum PlainContent : uint8_t { PLAIN_NO_CONTENT, PLAIN_TEXT, PLAIN_WORD, PLAIN_OPAQUE };

struct PlainMember {
    PlainContent content;
    bool prefixIncludesItself;
    PlainNumber number;  // of a word
    PlainNumber prefix;  // gives the length, in bytes; without form: the length is constant
};

// What a plain field without characters is.
enum EmptyField : uint8_t { EMPTY_IS_GENERAL, EMPTY_IS_ABSENT, EMPTY_IS_NIL };

struct RowPlan {
    const char* unsupported;  // what of the member this parser cannot do; null: all well
    int64_t length;           // constant length in `units`
    int32_t units;            // MLengthUnitsEnum
    int32_t encodingIndex;
    int32_t lengthKind;
    PlainFieldKind isPlainField;
    EmptyField emptyField;   // of a plain field
    uint8_t needsAlignment;  // an alignment row that has something to do
    TrimKind trim;
    uint8_t trimLeading;
    uint8_t trimTrailing;
    uint8_t padByte;
    UChar padCharacter[2];      // the second unit is 0 unless it is a pair
    int32_t kind;               // ContextItemKind; -1: no item can be made of the row
    int32_t nilKind;            // NilKindEnum
    int32_t separatorPosition;  // SeparatorPositionEnum; POSITION_NONE: no separator
    int32_t separatorPolicy;    // SeparatorPolicyEnum, one of the first four
    // The last answer to which markup set the member is in below a parent's set, which seldom changes.
    int32_t memoParentSetId;
    int32_t memoMarkupSetId;
    // The compiled set that the last scan of the member used, if it holds for all documents.
    const CompiledMarkupSet* compiledSet;
    int32_t compiledSetId;
    UnorderedMembers* spareMembers;  // of closed unordered groups
    PlainMember plainMember;
    PlainElement plainElement;  // of a plain member, field or record
    PlainTextValue textValue;   // of one that is a number or calendar
    // Of a complex element that is a sequence of plain members and nothing else, or one of plain fields with
    // a terminator: the first of them.
    const GroupMemberTableRow* recordMembers;
    const GroupMemberTableRow* recordModel;  // the sequence of the fields
    int32_t sparedRecords;                   // how many are not to be tried on the short road
};

// Says what the short roads may take of the member, from what else is planned of it.
void RowPlan_planShortRoads(RowPlan* this_, const GroupMemberTableRow& row);
// The same of a complex element, once all members are planned.
void RowPlan_planRecord(RowPlan* this_, const GroupMemberTableRow& row, const RowPlan* plans);

RowPlan* new_RowPlans(DFDLHeapAdapter* heap, const sPIF* pif, int32_t* count);  // one per group member row
void delete_RowPlans(DFDLHeapAdapter* heap, RowPlan* plans, int32_t count);     // null is ignored

#endif
