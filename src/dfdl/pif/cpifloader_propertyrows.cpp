// Rows of physical properties.

#include <string>

#include "dfdl/pif/cpifloader_enums.h"
#include "dfdl/pif/cpifloader_rows.h"
#include "dfdl/pif/tabletext.h"

namespace {

DFDLUString* text(DFDLHeapAdapter* heap, const std::string& value) { return TableText_fromUTF8(heap, value); }

}  // namespace

LengthSchemeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MLengthSchemeTableRow& row) {
    return {.iLengthKind = CPIFLoader_getEnum<LengthKindEnum>(row.ilengthkind()),
            .iLengthUnits = CPIFLoader_getEnum<LengthUnitsEnum>(row.ilengthunits()),
            .iLength = row.ilength(),
            .iLengthReferenceIndex = row.ilengthreferenceindex(),
            .iPrefixLengthTypeIndex = row.iprefixlengthtypeindex(),
            .iPrefixIncludesPrefixLength = row.iprefixincludesprefixlength(),
            .iLengthPattern = text(heap, row.ilengthpattern()),
            .iLengthExprIndex = row.ilengthexprindex()};
}

TextEncodingTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextEncodingTableRow& row) {
    return {.iByteOrder = CPIFLoader_getEnum<ByteOrderEnum>(row.ibyteorder()),
            .iEncoding = text(heap, row.iencoding()),
            .iEncodingExprIndex = row.iencodingexprindex(),
            .iByteOrderExprIndex = row.ibyteorderexprindex(),
            .iEncodingEBCDIC = row.iencodingebcdic(),
            .iEncodingASCIICompatible = row.iencodingasciicompatible(),
            .isUTF16WidthFixed = row.isutf16widthfixed()};
}

TextStringTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextStringTableRow& row) {
    return {.iTextPadKind = CPIFLoader_getEnum<TextPadKindEnum>(row.itextpadkind()),
            .iTextPadCharacter = text(heap, row.itextpadcharacter()),
            .iTextTrimKind = CPIFLoader_getEnum<TextTrimKindEnum>(row.itexttrimkind()),
            .iEscapeSchemeIndex = row.iescapeschemeindex(),
            .iTextJustification = CPIFLoader_getEnum<TextJustificationEnum>(row.itextjustification()),
            .iTextEncodingIndex = row.itextencodingindex(),
            .iIgnoreCase = row.iignorecase(),
            .iTruncateLenString = row.itruncatelenstring(),
            .iTextOutputMinLength = row.itextoutputminlength()};
}

TextNumberTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextNumberTableRow& row) {
    return {
        .iTextNumberRepresentation =
            CPIFLoader_getEnum<TextNumberRepresentationEnum>(row.itextnumberrepresentation()),
        .iNumberPattern = text(heap, row.inumberpattern()),
        .iNumberGroupingSeparator = text(heap, row.inumbergroupingseparator()),
        .iNumberDecimalSeparator = text(heap, row.inumberdecimalseparator()),
        .iNumberExponentCharacter = text(heap, row.inumberexponentcharacter()),
        .iNumberCheckPolicy = CPIFLoader_getEnum<NumberCheckPolicyEnum>(row.inumbercheckpolicy()),
        .iNumberInfinityRep = text(heap, row.inumberinfinityrep()),
        .iNumberNaNRep = text(heap, row.inumbernanrep()),
        .iNumberBase = CPIFLoader_getEnum<NumberBaseEnum>(row.inumberbase()),
        .iNumberRoundingMode = CPIFLoader_getEnum<NumberRoundingModeEnum>(row.inumberroundingmode()),
        .iNumberZonedSignStyle = CPIFLoader_getEnum<NumberZonedSignStyleEnum>(row.inumberzonedsignstyle()),
        .iNumberZeroRep = text(heap, row.inumberzerorep()),
        .iNumberGroupingSepExprIndex = row.inumbergroupingsepexprindex(),
        .iNumberDecimalSepExprIndex = row.inumberdecimalsepexprindex(),
        .iNumberExponentCharExprIndex = row.inumberexponentcharexprindex(),
        .iDecimalSigned = row.idecimalsigned(),
        .iVirtualDecimalIndex = row.ivirtualdecimalindex(),
        .iSubPatternBoudaryIndex = row.isubpatternboudaryindex(),
        .iNegativeVirtualDecimalIndex = row.inegativevirtualdecimalindex(),
        .iTextNumberRoundingIncrement = row.itextnumberroundingincrement(),
        .iTextNumberRounding = CPIFLoader_getEnum<TextNumberRoundingEnum>(row.itextnumberrounding())};
}

CalendarFormatTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MCalendarFormatTableRow& row) {
    return {.iCalendarFormatName = text(heap, row.icalendarformatname()),
            .iCalendarPattern = text(heap, row.icalendarpattern()),
            .iCalendarPatternKind = CPIFLoader_getEnum<CalendarPatternKindEnum>(row.icalendarpatternkind()),
            .iCalendarStrictChecking = row.icalendarstrictchecking(),
            .iCalendarTimeZone = text(heap, row.icalendartimezone()),
            .iCalendarObserveDST = row.icalendarobservedst(),
            .iCalendarUseZForUTC = CPIFLoader_getEnum<CalendarUseZForUTCEnum>(row.icalendarusezforutc()),
            .iCalendarFirstDayOfWeek =
                CPIFLoader_getEnum<CalendarFirstDayOfWeekEnum>(row.icalendarfirstdayofweek()),
            .iCalendarDaysInFirstWeek = row.icalendardaysinfirstweek(),
            .iCalendarCenturyStart = row.icalendarcenturystart(),
            .iCalendarLanguage = text(heap, row.icalendarlanguage())};
}

CalendarRepTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MCalendarRepTableRow& row) {
    return {.iCalendarFormatId = row.icalendarformatid(),
            .iTextStringTableIndex = row.itextstringtableindex(),
            .iBinaryNumberTableIndex = row.ibinarynumbertableindex(),
            .iBinaryCalendarEpoch = text(heap, row.ibinarycalendarepoch()),
            .iByteOrder = CPIFLoader_getEnum<ByteOrderEnum>(row.ibyteorder()),
            .iByteOrderExprIndex = row.ibyteorderexprindex()};
}

BooleanRepTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MBooleanRepTableRow& row) {
    return {.iTextBooleanTrueRep = text(heap, row.itextbooleantruerep()),
            .iTextBooleanFalseRep = text(heap, row.itextbooleanfalserep()),
            .iIntegerBooleanTrueRep = row.iintegerbooleantruerep(),
            .iIntegerBooleanFalseRep = row.iintegerbooleanfalserep(),
            .iByteOrder = CPIFLoader_getEnum<ByteOrderEnum>(row.ibyteorder()),
            .iTextBooleanTrueRepExpIndex = row.itextbooleantruerepexpindex(),
            .iTextBooleanFalseRepExpIndex = row.itextbooleanfalserepexpindex(),
            .iByteOrderExprIndex = row.ibyteorderexprindex()};
}

BinaryNumberTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MBinaryNumberTableRow& row) {
    return {.iByteOrder = CPIFLoader_getEnum<ByteOrderEnum>(row.ibyteorder()),
            .iBinaryNumberRepresentation =
                CPIFLoader_getEnum<BinaryNumberRepEnum>(row.ibinarynumberrepresentation()),
            .iBinaryDecimalVirtualPoint = row.ibinarydecimalvirtualpoint(),
            .iBinaryNumberCheckPolicy =
                CPIFLoader_getEnum<BinaryNumberCheckPolicyEnum>(row.ibinarynumbercheckpolicy()),
            .iBinaryFloatRepresentation =
                CPIFLoader_getEnum<BinaryFloatRepresentationEnum>(row.ibinaryfloatrepresentation()),
            .iPackedSignCodes = row.ipackedsigncodes(),
            .iBinaryFloatRepExprIndex = row.ibinaryfloatrepexprindex(),
            .iByteOrderExprIndex = row.ibyteorderexprindex(),
            .iDecimalSigned = row.idecimalsigned()};
}

AlignmentTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MAlignmentTableRow& row) {
    return {.iAlignment = row.ialignment(),
            .iFillByteIndex = row.ifillbyteindex(),
            .iLeadingSkipBytes = row.ileadingskipbytes(),
            .iTrailingSkipBytes = row.itrailingskipbytes(),
            .iAlignmentUnits = CPIFLoader_getEnum<AlignmentUnitsEnum>(row.ialignmentunits())};
}

StringPartTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MStringPartTableRow& row) {
    return {.iStringPart = text(heap, row.istringpart()),
            .iTextEncodingIndex = row.itextencodingindex(),
            .iStringPartKind = CPIFLoader_getEnum<StringPartKindEnum>(row.istringpartkind())};
}

StringLiteralTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MStringLiteralTableRow& row) {
    return {.iStringPartIndex = row.istringpartindex()};
}

TextMarkupTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextMarkupTableRow& row) {
    return {.iInitiatorIndex = row.iinitiatorindex(),
            .iTerminatorIndex = row.iterminatorindex(),
            .iFinalTerminatorCanBeMissing = row.ifinalterminatorcanbemissing(),
            .iSeparatorIndex = row.iseparatorindex(),
            .iSeparatorPosition = CPIFLoader_getEnum<SeparatorPositionEnum>(row.iseparatorposition()),
            .iSeparatorPolicy = CPIFLoader_getEnum<SeparatorPolicyEnum>(row.iseparatorpolicy()),
            .iIgnoreCase = row.iignorecase(),
            .iEscapeSchemeIndex = row.iescapeschemeindex(),
            .iOutputNewLine = text(heap, row.ioutputnewline()),
            .iInitiatorExprIndex = row.iinitiatorexprindex(),
            .iTerminatorExprIndex = row.iterminatorexprindex(),
            .iSeparatorExprIndex = row.iseparatorexprindex(),
            .iOutputNewLineExprIndex = row.ioutputnewlineexprindex(),
            .iInitiatedContent = row.iinitiatedcontent(),
            .iTextEncodingIndex = row.itextencodingindex(),
            .iEmptyValueDelimiterPolicy =
                CPIFLoader_getEnum<DelimiterPolicyEnum>(row.iemptyvaluedelimiterpolicy())};
}

EscapeSchemeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MEscapeSchemeTableRow& row) {
    return {.iEscapeSchemeName = text(heap, row.iescapeschemename()),
            .iEscapeKind = CPIFLoader_getEnum<EscapeKindEnum>(row.iescapekind()),
            .iEscapeCharacter = text(heap, row.iescapecharacter()),
            .iEscapeBlockStart = text(heap, row.iescapeblockstart()),
            .iEscapeBlockEnd = text(heap, row.iescapeblockend()),
            .iEscapeEscapeCharacter = text(heap, row.iescapeescapecharacter()),
            .iExtraEscapedCharacters = text(heap, row.iextraescapedcharacters()),
            .iGenerateEscape = CPIFLoader_getEnum<GenerateEscapeEnum>(row.igenerateescape()),
            .iEscapeCharacterExpr = row.iescapecharacterexpr(),
            .iEscapeEscapeCharacterExpr = row.iescapeescapecharacterexpr()};
}

MarkupSetTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MMarkupSetTableRow& row) {
    return {.iMarkupSetId = row.imarkupsetid(),
            .iParentMarkupSetId = row.iparentmarkupsetid(),
            .iTextMarkupTableId = row.itextmarkuptableid(),
            .iTerminatingMarkupSetId = row.iterminatingmarkupsetid()};
}

NilSchemeTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MNilSchemeTableRow& row) {
    return {
        .iNilKind = CPIFLoader_getEnum<NilKindEnum>(row.inilkind()),
        .iNilLiteralIndex = row.inilliteralindex(),
        .iNilLogicalIndex = row.inillogicalindex(),
        .iUseNilForDefault = row.iusenilfordefault(),
        .iNilValueDelimiterPolicy = CPIFLoader_getEnum<DelimiterPolicyEnum>(row.inilvaluedelimiterpolicy())};
}

OccursSchemeTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MOccursSchemeTableRow& row) {
    return {.iOccursCountKind = CPIFLoader_getEnum<OccursCountKindEnum>(row.ioccurscountkind()),
            .iOccursCount = row.ioccurscount(),
            .iOccursCountExprIndex = row.ioccurscountexprindex(),
            .iStopValuesIndex = row.istopvaluesindex()};
}
