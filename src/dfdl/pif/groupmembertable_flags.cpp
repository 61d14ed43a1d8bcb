// What can be said of a member from its rows alone.

#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/spif.h"

namespace {

struct Occurs {
    int32_t least;
    int32_t most;  // -1 unbounded
};

constexpr int32_t UNBOUNDED = -1;

bool isSingle(const GroupMemberTableRow* row) { return row->min_occurs == 1 && row->max_occurs == 1; }

bool countsByExpression(const GroupMemberTableRow* row) {
    if (row->occursRow == nullptr || isSingle(row)) return false;
    const int32_t expression = row->occursRow->iOccursCountExprIndex;
    return row->occursRow->iOccursCountKind == OCK_EXPRESSION && expression != -1 &&
           expression != OCCURS_COUNT_OPEN;
}

Occurs byExpression(const GroupMemberTableRow* row) {
    switch (row->occursRow->iOccursCountExprIndex) {
        case OCCURS_COUNT_OPEN:
            return {0, row->max_occurs};
        case -1:
            return {0, 0};
        default:
            return {0, UNBOUNDED};
    }
}

Occurs effectiveOccurs(const GroupMemberTableRow* row) {
    if (isSingle(row) || row->occursRow == nullptr) return {1, 1};
    switch (row->occursRow->iOccursCountKind) {
        case OCK_FIXED:
            return {row->max_occurs, row->max_occurs};
        case OCK_PARSED:
        case OCK_STOPVALUE:
            return {0, UNBOUNDED};
        case OCK_EXPRESSION:
            return byExpression(row);
        case OCK_IMPLICIT:
            break;
    }
    return {row->min_occurs, row->max_occurs};
}

uint32_t flagIf(bool condition, uint32_t flag) { return condition ? flag : 0; }

uint32_t framingFlags(const GroupMemberTableRow* row) {
    const AlignmentTableRow* alignment = row->alignmentRow;
    if (alignment == nullptr) return 0;
    const bool anywhere = alignment->iAlignment < 2 && alignment->iAlignmentUnits == ALUNITS_BYTES;
    return flagIf(!anywhere || alignment->iLeadingSkipBytes > 0, GM_LEADING_ALIGNMENT) |
           flagIf(alignment->iTrailingSkipBytes > 0, GM_TRAILING_ALIGNMENT);
}

// Whether empty or nil content, or an occurrence that ends the data, comes without a delimiter that stands
// under `without` and no other policy but DP_NONE lacks.
bool delimiterIsOptional(const GroupMemberTableRow* row, DelimiterPolicyEnum without) {
    const DelimiterPolicyEnum empty = row->markupRow->iEmptyValueDelimiterPolicy;
    if (empty == DP_NONE || empty == without) return true;
    if (row->nilRow != nullptr) {
        const DelimiterPolicyEnum nil = row->nilRow->iNilValueDelimiterPolicy;
        if (nil == DP_NONE || nil == without) return true;
    }
    if (row->occursRow == nullptr) return false;
    const OccursCountKindEnum kind = row->occursRow->iOccursCountKind;
    return kind == OCK_PARSED || kind == OCK_EXPRESSION || kind == OCK_STOPVALUE;
}

uint32_t separatorFlags(const GroupMemberTableRow* row) {
    if (GroupMemberTableRow_isElement(row) || !PIFPhysicalPropertyHelper_hasSeparator(row)) return 0;
    switch (row->markupRow->iSeparatorPosition) {
        case INFIX:
            return GM_SEPARATOR | GM_SEPARATOR_INFIX;
        case PREFIX:
            return GM_SEPARATOR | GM_SEPARATOR_PREFIX;
        case POSTFIX:
            return GM_SEPARATOR | GM_SEPARATOR_POSTFIX;
        case POSITION_NONE:
            break;
    }
    return GM_SEPARATOR;
}

uint32_t delimiterFlags(const GroupMemberTableRow* row) {
    uint32_t flags = separatorFlags(row) | flagIf(row->escapeRow != nullptr, GM_ESCAPE_SCHEME);
    if (PIFPhysicalPropertyHelper_hasInitiator(row)) {
        flags |= GM_INITIATOR | flagIf(delimiterIsOptional(row, DP_TERMINATOR_ONLY), GM_INITIATOR_OPTIONAL);
    }
    if (PIFPhysicalPropertyHelper_hasTerminator(row)) {
        flags |= GM_TERMINATOR | flagIf(delimiterIsOptional(row, DP_INITIATOR_ONLY), GM_TERMINATOR_OPTIONAL);
    }
    return flags;
}

uint32_t lengthFlags(const GroupMemberTableRow* row) {
    const LengthSchemeTableRow* length = row->lengthRow;
    if (length == nullptr) return 0;
    const bool fixed = length->iLengthKind == EXPLICIT && length->iLengthExprIndex == -1;
    switch (length->iLengthKind) {
        case IMPLICIT:
            return 0;
        case PREFIXED:
            return GM_PREFIXED_LENGTH;
        case EXPLICIT:
            return flagIf(fixed, GM_EXPLICIT_CONSTANT_LENGTH) |
                   flagIf(!fixed || length->iLength == 0, GM_LENGTH_NOT_CONSTANT);
        case DELIMITED:
        case END_OF_PARENT:
            return GM_LENGTH_NOT_CONSTANT | flagIf(GroupMemberTableRow_isElement(row), GM_DELIMITED_LENGTH);
        case PATTERN:
        case UNDEFINED_LKIND:
            break;
    }
    return GM_LENGTH_NOT_CONSTANT;
}

uint32_t contentFlags(const GroupMemberTableRow* row) {
    return flagIf(row->iDfdlRepresentation == REPRESENTATION_TEXT, GM_TEXT) |
           flagIf(row->textStringRow != nullptr && row->textStringRow->iTextTrimKind == TRIM_KIND_PAD_CHAR,
                  GM_TRIM) |
           flagIf(row->iInputValueCalcExprIndex != -1, GM_INPUT_VALUE_CALC);
}

uint32_t occursFlags(const GroupMemberTableRow* row) {
    const OccursSchemeTableRow* occurs = row->occursRow;
    const bool fixedKind = occurs != nullptr && (occurs->iOccursCountKind == OCK_FIXED ||
                                                 occurs->iOccursCountKind == OCK_IMPLICIT);
    return flagIf(!isSingle(row), GM_NOT_SINGLE) |
           flagIf(GroupMemberTableRow_isElement(row) && (fixedKind || isSingle(row)), GM_OCCURS_FIXED) |
           flagIf(countsByExpression(row), GM_OCCURS_EXPRESSION);
}

}  // namespace

void GroupMemberTableRow_setFlags(GroupMemberTableRow* this_) {
    const Occurs occurs = effectiveOccurs(this_);
    this_->effectiveMinOccurs = occurs.least;
    this_->effectiveMaxOccurs = occurs.most;
    this_->flags = framingFlags(this_) | delimiterFlags(this_) | lengthFlags(this_) | contentFlags(this_) |
                   occursFlags(this_);
}

void GroupMemberTable_setFlags(GroupMemberTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupMemberTableRow_setFlags(Table_at(this_, index));
    }
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupMemberTableRow_calcHasDefault(Table_at(this_, index));
    }
}
