#ifndef DFDL_PIF_PIFPHYSICALPROPERTYHELPER_H
#define DFDL_PIF_PIFPHYSICALPROPERTYHELPER_H

#include <cstdint>

#include "dfdl/pif/pifenums.h"

struct DFDLUString;
struct GroupMemberTableRow;
struct TextMarkupTableRow;

// Reads of a member's properties that stand a missing row, which then gives the property's neutral value.

// A literal or an expression.
bool PIFPhysicalPropertyHelper_hasInitiator(const GroupMemberTableRow* row);
bool PIFPhysicalPropertyHelper_hasTerminator(const GroupMemberTableRow* row);
bool PIFPhysicalPropertyHelper_hasSeparator(const GroupMemberTableRow* row);

// The text of the literal, which may be a list; null: none.
DFDLUString* PIFPhysicalPropertyHelper_getInitiatorProperty(const GroupMemberTableRow* row);
DFDLUString* PIFPhysicalPropertyHelper_getTerminatorProperty(const GroupMemberTableRow* row);
DFDLUString* PIFPhysicalPropertyHelper_getSeparatorProperty(const GroupMemberTableRow* row);
DFDLUString* PIFPhysicalPropertyHelper_getInitiatorPropertyWithTextMarkup(const TextMarkupTableRow* markup);
DFDLUString* PIFPhysicalPropertyHelper_getTerminatorPropertyWithTextMarkup(const TextMarkupTableRow* markup);
DFDLUString* PIFPhysicalPropertyHelper_getSeparatorPropertyWithTextMarkup(const TextMarkupTableRow* markup);
// Null also when the initiator comes from an expression.
DFDLUString* PIFPhysicalPropertyHelper_getStaticInitiatorProperty(const GroupMemberTableRow* row);

int32_t PIFPhysicalPropertyHelper_getLeadingSkipBytes(const GroupMemberTableRow* row);
int32_t PIFPhysicalPropertyHelper_getTrailingSkipBytes(const GroupMemberTableRow* row);
int32_t PIFPhysicalPropertyHelper_getAlignment(const GroupMemberTableRow* row);  // 1 without a row
bool PIFPhysicalPropertyHelper_hasLeadingAlignment(const GroupMemberTableRow* row);
bool PIFPhysicalPropertyHelper_hasTrailingAlignment(const GroupMemberTableRow* row);

DelimiterPolicyEnum PIFPhysicalPropertyHelper_getNilValueDelimiterPolicy(const GroupMemberTableRow* row);
DelimiterPolicyEnum PIFPhysicalPropertyHelper_getEmptyValueDelimiterPolicy(const GroupMemberTableRow* row);
SeparatorPositionEnum PIFPhysicalPropertyHelper_getSeparatorPosition(const GroupMemberTableRow* row);
SeparatorPolicyEnum PIFPhysicalPropertyHelper_getSeparatorPolicy(const GroupMemberTableRow* row);
bool PIFPhysicalPropertyHelper_getInitiatedContentProperty(const GroupMemberTableRow* row);

LengthUnitsEnum PIFPhysicalPropertyHelper_getLengthUnits(const GroupMemberTableRow* row);
LengthKindEnum PIFPhysicalPropertyHelper_getLengthKind(const GroupMemberTableRow* row);
// Whether the length is known before the content is parsed: precalculated lengths may come from a pattern
// also where the content is complex, specified ones may not.
bool PIFPhysicalPropertyHelper_hasPrecalculatedLength(const GroupMemberTableRow* row);
bool PIFPhysicalPropertyHelper_hasSpecifiedLength(const GroupMemberTableRow* row);

#endif
