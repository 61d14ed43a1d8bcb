#include "dfdl/pifiterator/rowplan.h"

#include <unicode/utf16.h>

#include "dfdl/foundation/array.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/textmarkuptable.h"
#include "dfdl/pif/textstringtable.h"
#include "dfdl/pif/variableactionstable.h"
#include "dfdl/pifiterator/contextitemforparser.h"
#include "dfdl/pifiterator/unorderedmembers.h"

namespace {

constexpr int32_t NO_MEMO = -2;  // no set has this id

bool isElement(const GroupMemberTableRow& row) { return row.elementRow != nullptr; }

int32_t itemKind(const GroupMemberTableRow& row) {
    if (isElement(row))
        return row.elementRow->contentGroup != nullptr ? ITEM_COMPLEX_ELEMENT : ITEM_SIMPLE_ELEMENT;
    switch (row.iPhysicalType) {
        case GROUP_SEQUENCE:
            return ITEM_SEQUENCE;
        case GROUP_CHOICE:
            return ITEM_CHOICE;
        case GROUP_UNORDERED:
            return ITEM_UNORDERED;
        default:
            return -1;
    }
}

const char* unsupportedContent(int32_t physicalType) {
    switch (physicalType) {
        case TEXT_STRING:
        case TEXT_NUMBER:
        case TEXT_BOOLEAN:
        case TEXT_CALENDAR:
        case BINARY_NUMBER:
        case BINARY_BOOLEAN:
        case BINARY_CALENDAR:
        case BINARY_OPAQUE:
            return nullptr;
        default:
            return "a simple element without a physical type";
    }
}

bool isTextType(int32_t physicalType) {
    return physicalType == TEXT_STRING || physicalType == TEXT_NUMBER || physicalType == TEXT_CALENDAR ||
           physicalType == TEXT_BOOLEAN;
}

const char* unsupportedKind(const GroupMemberTableRow& row) {
    switch (itemKind(row)) {
        case ITEM_SIMPLE_ELEMENT:
            if (isTextType(row.iPhysicalType) != ((row.flags & GM_TEXT) != 0))
                return "a representation that the kind of content cannot have";
            return unsupportedContent(row.iPhysicalType);
        case ITEM_CHOICE:
            return "a choice";
        case -1:
            return "a group that is neither a sequence nor a choice";
        default:
            return nullptr;
    }
}

// The field that gives a length must be one that this parser reads, with a length of its own.
const char* unsupportedPrefix(const LengthSchemeTableRow& length) {
    const GroupMemberTableRow* prefix =
        length.prefixElement == nullptr ? nullptr : length.prefixElement->globalMember;
    if (prefix == nullptr || prefix->lengthRow == nullptr)
        return "a prefixed length without a type of its prefix";
    const int32_t wanted = (prefix->flags & GM_TEXT) != 0 ? TEXT_NUMBER : BINARY_NUMBER;
    if (prefix->iPhysicalType != wanted) return "a prefixed length whose prefix is no number";
    if (prefix->lengthRow->iLengthKind != EXPLICIT && prefix->lengthRow->iLengthKind != IMPLICIT)
        return "a prefixed length whose prefix has no constant length";
    return prefix->lengthRow->iLengthExprIndex != -1 ? "a length that comes from an expression" : nullptr;
}

const char* unsupportedLength(const GroupMemberTableRow& row) {
    if (row.lengthRow == nullptr) return nullptr;
    if (row.lengthRow->iLengthKind == EXPLICIT && row.lengthRow->iLengthExprIndex != -1) {
        return "a length that comes from an expression";
    }
    switch (row.lengthRow->iLengthKind) {
        case PREFIXED:
            return unsupportedPrefix(*row.lengthRow);
        case PATTERN:
            return "a length given by a pattern";
        default:
            return nullptr;
    }
}

const char* unsupportedDelimiters(const GroupMemberTableRow& row) {
    const TextMarkupTableRow* markup = row.markupRow;
    if (markup == nullptr) return nullptr;
    if (markup->iInitiatorExprIndex != -1) return "an initiator from an expression";
    if (markup->iTerminatorExprIndex != -1) return "a terminator from an expression";
    if (markup->iSeparatorExprIndex != -1) return "a separator from an expression";
    return nullptr;
}

const char* unsupportedOccurrences(const GroupMemberTableRow& row) {
    if (row.occursRow == nullptr || (row.flags & GM_NOT_SINGLE) == 0) return nullptr;
    switch (row.occursRow->iOccursCountKind) {
        case OCK_EXPRESSION:
            return "a number of occurrences that an expression may give";
        case OCK_STOPVALUE:
            return "occurrences up to a stop value";
        default:
            return nullptr;
    }
}

const char* unsupportedExtras(const GroupMemberTableRow& row) {
    if ((row.flags & GM_INPUT_VALUE_CALC) != 0) return "a calculated value";
    if (row.firstAssert != nullptr) return "an assert or discriminator";
    if (row.firstVariableAction != nullptr) return "a variable action";
    return nullptr;
}

// The first thing of the member that this parser cannot do.
const char* findUnsupported(const GroupMemberTableRow& row) {
    constexpr const char* (*CHECKS[])(const GroupMemberTableRow&) = {
        unsupportedKind, unsupportedOccurrences, unsupportedLength, unsupportedDelimiters, unsupportedExtras};
    for (const auto check : CHECKS) {
        if (const char* what = check(row); what != nullptr) return what;
    }
    return nullptr;
}

void planLength(RowPlan* plan, const GroupMemberTableRow& row) {
    plan->lengthKind = UNDEFINED_LKIND;
    if (row.lengthRow == nullptr) return;
    plan->lengthKind = row.lengthRow->iLengthKind;
    plan->units = row.lengthRow->iLengthUnits;
    plan->length = row.lengthRow->iLength;
}

void planTrim(RowPlan* plan, const GroupMemberTableRow& row) {
    const TextStringTableRow* text = row.textStringRow;
    if ((row.flags & GM_TRIM) == 0 || (row.flags & GM_TEXT) == 0 || text == nullptr) return;
    const int32_t justification = text->iTextJustification;
    plan->trimLeading = justification == RIGHT || justification == CENTER;
    plan->trimTrailing = justification == LEFT || justification == CENTER;
    if (text->padIsByte) {
        plan->trim = TRIM_BYTE;
        plan->padByte = static_cast<uint8_t>(text->padByte);
    } else if (DFDLUString_length(text->padString) > 0) {
        plan->trim = TRIM_CHARACTER;
        plan->padCharacter[0] = text->padString->chars[0];
        if (U16_IS_LEAD(plan->padCharacter[0])) plan->padCharacter[1] = text->padString->chars[1];
    }
}

void planSeparator(RowPlan* plan, const GroupMemberTableRow& row) {
    plan->separatorPosition = (row.flags & GM_SEPARATOR_INFIX) != 0     ? INFIX
                              : (row.flags & GM_SEPARATOR_PREFIX) != 0  ? PREFIX
                              : (row.flags & GM_SEPARATOR_POSTFIX) != 0 ? POSTFIX
                                                                        : POSITION_NONE;
    plan->separatorPolicy = PIFPhysicalPropertyHelper_getSeparatorPolicy(&row);
}

RowPlan planRow(const GroupMemberTableRow& row) {
    RowPlan plan{};
    plan.kind = itemKind(row);
    plan.unsupported = findUnsupported(row);
    plan.encodingIndex = row.iTextEncodingIndex;
    plan.needsAlignment = (row.flags & GM_LEADING_ALIGNMENT) != 0;
    planLength(&plan, row);
    planTrim(&plan, row);
    planSeparator(&plan, row);
    plan.memoParentSetId = NO_MEMO;
    plan.nilKind = row.nilRow == nullptr ? NK_NONE : row.nilRow->iNilKind;
    RowPlan_planShortRoads(&plan, row);
    return plan;
}

}  // namespace

RowPlan* new_RowPlans(DFDLHeapAdapter* heap, const sPIF* pif, int32_t* count) {
    const Array* rows = pif->groupMemberTable->rows;
    auto* plans = DFDLHeapAdapter_newArray<RowPlan>(heap, static_cast<size_t>(rows->count) + 1);
    for (int32_t i = 0; i < rows->count; ++i) plans[i] = planRow(*Array_row<GroupMemberTableRow>(rows, i));
    for (int32_t i = 0; i < rows->count; ++i)
        RowPlan_planRecord(&plans[i], *Array_row<GroupMemberTableRow>(rows, i), plans);
    *count = rows->count;
    return plans;
}

void delete_RowPlans(DFDLHeapAdapter* heap, RowPlan* plans, int32_t count) {
    if (plans == nullptr) return;
    for (int32_t i = 0; i < count; ++i) {
        while (UnorderedMembers* members = plans[i].spareMembers) {
            plans[i].spareMembers = members->next;
            delete_UnorderedMembers(members);
        }
    }
    DFDLHeapAdapter_arrayDeallocate(heap, plans);
}
