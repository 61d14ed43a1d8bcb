// What the short roads may take.
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/contextitemforparser.h"
#include "dfdl/pifiterator/rowplan.h"

namespace {

constexpr uint32_t FRAME = GM_LEADING_ALIGNMENT | GM_TRAILING_ALIGNMENT | GM_INITIATOR | GM_TERMINATOR;

// Without any frame: the content is all there is of it.
bool isUnframed(const RowPlan& plan, const GroupMemberTableRow& row, int32_t kind) {
    return plan.unsupported == nullptr && plan.kind == kind && (row.flags & FRAME) == 0;
}

bool occursOnce(const GroupMemberTableRow& row) {
    return row.effectiveMinOccurs == 1 && row.effectiveMaxOccurs == 1;
}

// A text whose decoded characters are the value, or what it is read from, but for padding of one unit.
bool isUnframedText(const RowPlan& plan, const GroupMemberTableRow& row) {
    const bool converts = row.iPhysicalType == TEXT_STRING || plan.textValue.row != nullptr;
    return isUnframed(plan, row, ITEM_SIMPLE_ELEMENT) && converts && plan.trim != TRIM_BYTE &&
           plan.padCharacter[1] == 0;
}

bool isConstant(const RowPlan& plan) { return plan.lengthKind == EXPLICIT || plan.lengthKind == IMPLICIT; }

// Bytes implied by the type are left out, since they need a test of the encoding.
bool isCountedText(const RowPlan& plan) {
    const bool counted = (plan.lengthKind == EXPLICIT && plan.units == BYTES) ||
                         (isConstant(plan) && plan.units == CHARACTERS);
    return counted && plan.length >= 1 && plan.length <= MOST_PLAIN_TEXT;
}

bool isCountedBytes(const RowPlan& plan) {
    return isConstant(plan) && plan.units == BYTES && plan.length >= 1;
}

PlainNumber planPrefix(const RowPlan& plan, const GroupMemberTableRow& row) {
    if (plan.lengthKind != PREFIXED || plan.units != BYTES) return {};
    const GroupMemberTableRow* prefix = row.lengthRow->prefixElement->globalMember;
    const LengthSchemeTableRow* length = prefix->lengthRow;
    const bool isWhole = prefix->simpleTypeKind >= SIMPLE_INTEGER;
    if ((prefix->flags & (GM_INITIATOR | GM_TERMINATOR)) != 0 || length->iLengthUnits != BYTES || !isWhole)
        return {};
    return PlainNumber_of(prefix, length->iLength);
}

PlainContent plainContent(const RowPlan& plan, const GroupMemberTableRow& row) {
    const PlainMember& member = plan.plainMember;
    const bool prefixed = member.prefix.form != PLAIN_FORM_NONE;
    if (member.number.form != PLAIN_FORM_NONE) return PLAIN_WORD;
    if (row.iPhysicalType == BINARY_OPAQUE)
        return prefixed || isCountedBytes(plan) ? PLAIN_OPAQUE : PLAIN_NO_CONTENT;
    return isUnframedText(plan, row) && (prefixed || isCountedText(plan)) ? PLAIN_TEXT : PLAIN_NO_CONTENT;
}

void planMember(RowPlan* plan, const GroupMemberTableRow& row) {
    if (!occursOnce(row) || !isUnframed(*plan, row, ITEM_SIMPLE_ELEMENT) || plan->nilKind != NK_NONE ||
        (row.flags & GM_ESCAPE_SCHEME) != 0)
        return;
    PlainMember* member = &plan->plainMember;
    if (isCountedBytes(*plan)) member->number = PlainNumber_of(&row, plan->length);
    member->prefix = planPrefix(*plan, row);
    member->prefixIncludesItself = row.lengthRow != nullptr && row.lengthRow->iPrefixIncludesPrefixLength;
    member->content = plainContent(*plan, row);
}

// No characters are nil, and nothing else is. With padding to trim, more would be.
bool isNilIfEmpty(const RowPlan& plan, const GroupMemberTableRow& row) {
    if (plan.nilKind != NK_LITERAL_VALUE || plan.trim != TRIM_NONE) return false;
    const DFDLUString* literals = StringLiteralTable_getStringLiteralForRowIndex(
        row.pif->stringLiteralTable, row.nilRow->iNilLiteralIndex);
    return literals != nullptr && DFDLUString_view(literals) == u"%ES;";
}

bool imposesLength(const RowPlan& plan) {
    return plan.lengthKind == EXPLICIT || plan.lengthKind == PREFIXED || plan.lengthKind == PATTERN;
}

// A sequence that is nothing but its members.
bool isBareSequence(const RowPlan& plan, const GroupMemberTableRow& row) {
    return isUnframed(plan, row, ITEM_SEQUENCE) && occursOnce(row) && row.nextSibling == nullptr &&
           (row.flags & GM_HIDDEN) == 0 && !imposesLength(plan);
}

// Opaque bytes of held events would have to be copied.
bool canBeHeld(const RowPlan& plan) {
    return plan.plainMember.content == PLAIN_TEXT || plan.plainMember.content == PLAIN_WORD;
}

bool isPlainField(const RowPlan& plan) { return plan.isPlainField == PLAIN_SINGLE; }

PlainFieldKind plainFieldKind(const RowPlan& plan, const GroupMemberTableRow& row) {
    const bool plain = isUnframedText(plan, row) && (plan.nilKind == NK_NONE || isNilIfEmpty(plan, row)) &&
                       plan.lengthKind == DELIMITED && plan.units != BITS;
    if (!plain || row.effectiveMaxOccurs == 0) return PLAIN_NONE;
    if (row.max_occurs == 1 && row.effectiveMaxOccurs == 1 && row.effectiveMinOccurs == row.min_occurs)
        return PLAIN_SINGLE;
    const bool open =
        row.occursRow != nullptr && (row.flags & GM_NOT_SINGLE) != 0 &&
        (row.occursRow->iOccursCountKind == OCK_PARSED || row.occursRow->iOccursCountKind == OCK_IMPLICIT);
    return open ? PLAIN_ARRAY : PLAIN_NONE;
}

const UChar* charsOf(const DFDLUString* string) { return string == nullptr ? u"" : string->chars; }

PlainElement plainElement(const RowPlan& plan, const GroupMemberTableRow& row) {
    const ElementTableRow* element = row.elementRow;
    const DFDLType type = plan.textValue.row != nullptr
                              ? static_cast<DFDLType>(DFDLType_getTypeFromDFDLSimpleType(row.simpleTypeKind))
                              : plan.plainMember.number.type;
    return {charsOf(element->name), charsOf(element->namespace_), charsOf(row.scdText),
            element->element_id,    element->namespaceId,         type};
}

}  // namespace

void RowPlan_planShortRoads(RowPlan* this_, const GroupMemberTableRow& row) {
    this_->textValue = PlainTextValue_of(row);
    planMember(this_, row);
    this_->isPlainField = plainFieldKind(*this_, row);
    this_->emptyField = isNilIfEmpty(*this_, row) ? EMPTY_IS_NIL
                        : row.effectiveMinOccurs == 0 && this_->isPlainField == PLAIN_SINGLE
                            ? EMPTY_IS_ABSENT
                            : EMPTY_IS_GENERAL;
    if (this_->plainMember.content != PLAIN_NO_CONTENT || this_->isPlainField != PLAIN_NONE)
        this_->plainElement = plainElement(*this_, row);
}

void RowPlan_planRecord(RowPlan* this_, const GroupMemberTableRow& row, const RowPlan* plans) {
    const bool plain = this_->unsupported == nullptr && this_->kind == ITEM_COMPLEX_ELEMENT &&
                       (row.flags & (FRAME & ~GM_TERMINATOR)) == 0 && this_->nilKind == NK_NONE &&
                       !imposesLength(*this_) && row.effectiveMaxOccurs != 0;
    const GroupMemberTableRow* model = plain ? row.elementRow->contentGroup->firstMember : nullptr;
    if (model == nullptr || model->groupRow == nullptr || !isBareSequence(plans[model->rowIndex], *model))
        return;
    const bool terminated = (row.flags & GM_TERMINATOR) != 0;
    const int32_t separators = plans[model->rowIndex].separatorPosition;
    if (separators != (terminated ? INFIX : POSITION_NONE)) return;
    const auto isPlain = terminated ? isPlainField : canBeHeld;
    const GroupMemberTableRow* first = model->groupRow->firstMember;
    const GroupMemberTableRow* member = first;
    while (member != nullptr && isPlain(plans[member->rowIndex])) member = member->nextSibling;
    if (member != nullptr) return;
    this_->plainElement = plainElement(*this_, row);
    this_->recordMembers = first;
    this_->recordModel = terminated ? model : nullptr;
}
