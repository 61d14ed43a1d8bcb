#include "dfdl/pif/pifphysicalpropertyhelper.h"

#include "dfdl/pif/spif.h"

namespace {

using Member = GroupMemberTableRow;
using Markup = TextMarkupTableRow;

const Markup* markupOf(const Member* row) { return row == nullptr ? nullptr : row->markupRow; }

// A field of a row that may be missing.
template <class Row, class Field>
Field read(const Row* row, Field Row::*field, Field otherwise) {
    return row == nullptr ? otherwise : row->*field;
}

bool hasDelimiter(const Markup* markup, StringLiteralTableRow* Markup::*literal,
                  int32_t Markup::*expression) {
    return markup != nullptr && (markup->*literal != nullptr || markup->*expression != -1);
}

DFDLUString* textOf(const Markup* markup, StringLiteralTableRow* Markup::*literal) {
    if (markup == nullptr || markup->*literal == nullptr) return nullptr;
    const StringPartTableRow* part = (markup->*literal)->partRow;
    return part == nullptr ? nullptr : part->iStringPart;
}

const AlignmentTableRow* alignmentOf(const Member* row) {
    return row == nullptr ? nullptr : row->alignmentRow;
}

bool isKnownBefore(const Member* row, bool complexByPattern) {
    if (row == nullptr || row->lengthRow == nullptr || !GroupMemberTableRow_isElement(row)) return false;
    const LengthKindEnum kind = row->lengthRow->iLengthKind;
    if (kind == EXPLICIT || kind == PREFIXED) return true;
    const bool isComplex = row->child_group_id != -1;
    return (kind == PATTERN && complexByPattern) || (kind == IMPLICIT && !isComplex);
}

}  // namespace

bool PIFPhysicalPropertyHelper_hasInitiator(const GroupMemberTableRow* row) {
    return hasDelimiter(markupOf(row), &Markup::initiatorRow, &Markup::iInitiatorExprIndex);
}

bool PIFPhysicalPropertyHelper_hasTerminator(const GroupMemberTableRow* row) {
    return hasDelimiter(markupOf(row), &Markup::terminatorRow, &Markup::iTerminatorExprIndex);
}

bool PIFPhysicalPropertyHelper_hasSeparator(const GroupMemberTableRow* row) {
    return hasDelimiter(markupOf(row), &Markup::separatorRow, &Markup::iSeparatorExprIndex);
}

DFDLUString* PIFPhysicalPropertyHelper_getInitiatorProperty(const GroupMemberTableRow* row) {
    return textOf(markupOf(row), &Markup::initiatorRow);
}

DFDLUString* PIFPhysicalPropertyHelper_getTerminatorProperty(const GroupMemberTableRow* row) {
    return textOf(markupOf(row), &Markup::terminatorRow);
}

DFDLUString* PIFPhysicalPropertyHelper_getSeparatorProperty(const GroupMemberTableRow* row) {
    return textOf(markupOf(row), &Markup::separatorRow);
}

DFDLUString* PIFPhysicalPropertyHelper_getInitiatorPropertyWithTextMarkup(const TextMarkupTableRow* markup) {
    return textOf(markup, &Markup::initiatorRow);
}

DFDLUString* PIFPhysicalPropertyHelper_getTerminatorPropertyWithTextMarkup(const TextMarkupTableRow* markup) {
    return textOf(markup, &Markup::terminatorRow);
}

DFDLUString* PIFPhysicalPropertyHelper_getSeparatorPropertyWithTextMarkup(const TextMarkupTableRow* markup) {
    return textOf(markup, &Markup::separatorRow);
}

DFDLUString* PIFPhysicalPropertyHelper_getStaticInitiatorProperty(const GroupMemberTableRow* row) {
    const Markup* markup = markupOf(row);
    return markup == nullptr || markup->iInitiatorExprIndex != -1 ? nullptr
                                                                  : textOf(markup, &Markup::initiatorRow);
}

int32_t PIFPhysicalPropertyHelper_getLeadingSkipBytes(const GroupMemberTableRow* row) {
    return read(alignmentOf(row), &AlignmentTableRow::iLeadingSkipBytes, 0);
}

int32_t PIFPhysicalPropertyHelper_getTrailingSkipBytes(const GroupMemberTableRow* row) {
    return read(alignmentOf(row), &AlignmentTableRow::iTrailingSkipBytes, 0);
}

int32_t PIFPhysicalPropertyHelper_getAlignment(const GroupMemberTableRow* row) {
    return read(alignmentOf(row), &AlignmentTableRow::iAlignment, 1);
}

bool PIFPhysicalPropertyHelper_hasLeadingAlignment(const GroupMemberTableRow* row) {
    return PIFPhysicalPropertyHelper_getLeadingSkipBytes(row) != 0 ||
           PIFPhysicalPropertyHelper_getAlignment(row) != 1;
}

bool PIFPhysicalPropertyHelper_hasTrailingAlignment(const GroupMemberTableRow* row) {
    return PIFPhysicalPropertyHelper_getTrailingSkipBytes(row) != 0;
}

DelimiterPolicyEnum PIFPhysicalPropertyHelper_getNilValueDelimiterPolicy(const GroupMemberTableRow* row) {
    const NilSchemeTableRow* nil = row == nullptr ? nullptr : row->nilRow;
    return read(nil, &NilSchemeTableRow::iNilValueDelimiterPolicy, DP_NONE);
}

DelimiterPolicyEnum PIFPhysicalPropertyHelper_getEmptyValueDelimiterPolicy(const GroupMemberTableRow* row) {
    return read(markupOf(row), &Markup::iEmptyValueDelimiterPolicy, DP_NONE);
}

SeparatorPositionEnum PIFPhysicalPropertyHelper_getSeparatorPosition(const GroupMemberTableRow* row) {
    return read(markupOf(row), &Markup::iSeparatorPosition, POSITION_NONE);
}

SeparatorPolicyEnum PIFPhysicalPropertyHelper_getSeparatorPolicy(const GroupMemberTableRow* row) {
    return read(markupOf(row), &Markup::iSeparatorPolicy, POLICY_NONE);
}

bool PIFPhysicalPropertyHelper_getInitiatedContentProperty(const GroupMemberTableRow* row) {
    return read(markupOf(row), &Markup::iInitiatedContent, false);
}

LengthUnitsEnum PIFPhysicalPropertyHelper_getLengthUnits(const GroupMemberTableRow* row) {
    const LengthSchemeTableRow* length = row == nullptr ? nullptr : row->lengthRow;
    return read(length, &LengthSchemeTableRow::iLengthUnits, BITS);
}

LengthKindEnum PIFPhysicalPropertyHelper_getLengthKind(const GroupMemberTableRow* row) {
    const LengthSchemeTableRow* length = row == nullptr ? nullptr : row->lengthRow;
    return read(length, &LengthSchemeTableRow::iLengthKind, IMPLICIT);
}

bool PIFPhysicalPropertyHelper_hasPrecalculatedLength(const GroupMemberTableRow* row) {
    return isKnownBefore(row, true);
}

bool PIFPhysicalPropertyHelper_hasSpecifiedLength(const GroupMemberTableRow* row) {
    return isKnownBefore(row, false);
}
