// What a handle says of members, lengths, texts, alignment, occurrences and values.
#include "support/grammarbuilder.h"
#include "support/rowat.h"

namespace {

using Enums = PIF::MPIFEnums;

PIF::MAlignmentTableRow* newAlignment(PIF::MAlignmentTable* table) {
    PIF::MAlignmentTableRow* row = table->add_row();
    row->set_ialignment(1);
    row->set_ifillbyteindex(-1);
    row->set_ileadingskipbytes(0);
    row->set_itrailingskipbytes(0);
    row->set_ialignmentunits(Enums::ALUNITS_BYTES);
    return row;
}

PIF::MTextStringTableRow* newTextString(PIF::MTextStringTable* table) {
    PIF::MTextStringTableRow* row = table->add_row();
    row->set_itextpadkind(Enums::PAD_KIND_NONE);
    row->set_itextpadcharacter("");
    row->set_itexttrimkind(Enums::TRIM_KIND_NONE);
    row->set_iescapeschemeindex(-1);
    row->set_itextjustification(Enums::LEFT);
    row->set_itextencodingindex(-1);
    return row;
}

PIF::MLengthSchemeTableRow* newLength(PIF::MLengthSchemeTable* table) {
    PIF::MLengthSchemeTableRow* row = table->add_row();
    row->set_ilengthschemeid(table->row_size());
    row->set_ilengthkind(Enums::IMPLICIT);
    row->set_ilengthunits(Enums::BYTES);
    row->set_ilength(-1);
    row->set_ilengthreferenceindex(-1);
    row->set_iprefixlengthtypeindex(-1);
    row->set_ilengthexprindex(-1);
    return row;
}

// Members' ids in this table are positions from 1 on.
PIF::MLengthSchemeTableRow* lengthRow(PIF::MPIF* pif, PIF::MGroupMemberTableRow* member) {
    PIF::MLengthSchemeTable* table = pif->mutable_length_scheme_table();
    PIF::MLengthSchemeTableRow* row = rowAt(table, member->ilengthschemeid() - 1, newLength);
    if (member->ilengthschemeid() == -1) member->set_ilengthschemeid(table->row_size());
    return row;
}

}  // namespace

GrammarNode* GrammarHandle::addChild(GrammarNode* child) {
    builder_->emitted_ = false;
    content().node_->children.push_back(child);
    return child;
}

GrammarHandle GrammarHandle::content() {
    return {builder_, node_->isElement ? node_->children.at(0) : node_};
}

GrammarHandle GrammarHandle::complexElement(const std::string& name) {
    return {builder_, addChild(builder_->newComplexElement(name))};
}

GrammarHandle GrammarHandle::text(const std::string& name) {
    return {builder_, addChild(builder_->newText(name, "STRING"))};
}

GrammarHandle GrammarHandle::boolean(const std::string& name, const std::string& trueReps,
                                     const std::string& falseReps) {
    GrammarHandle element(builder_, addChild(builder_->newText(name, "BOOLEAN")));
    PIF::MBooleanRepTable* table = builder_->pif_.mutable_boolean_rep_table();
    PIF::MBooleanRepTableRow* reps = table->add_row();
    reps->set_itextbooleantruerep(trueReps);
    reps->set_itextbooleanfalserep(falseReps);
    reps->set_itextbooleantruerepexpindex(-1);
    reps->set_itextbooleanfalserepexpindex(-1);
    reps->set_ibyteorderexprindex(-1);
    element.row().set_iphysicaltype(Enums::TEXT_BOOLEAN);
    element.row().set_iphysicaltypeindex(table->row_size() - 1);
    return element;
}

GrammarHandle GrammarHandle::group(Enums::MDFDLGroupTypeEnum kind, Enums::MPhysicalTypeEnum type) {
    return {builder_, addChild(builder_->newGroup(kind, type))};
}

GrammarHandle GrammarHandle::sequence() { return group(Enums::SEQUENCE_ORDERED, Enums::GROUP_SEQUENCE); }

GrammarHandle GrammarHandle::unordered() { return group(Enums::SEQUENCE_UNORDERED, Enums::GROUP_UNORDERED); }

GrammarHandle GrammarHandle::choice() { return group(Enums::CHOICE, Enums::GROUP_CHOICE); }

PIF::MGroupMemberTableRow& GrammarHandle::row() {
    builder_->emitted_ = false;
    return node_->row;
}

PIF::MElementTableRow& GrammarHandle::element() {
    builder_->emitted_ = false;
    return node_->element;
}

GrammarHandle GrammarHandle::length(Enums::MLengthKindEnum kind, Enums::MLengthUnitsEnum units,
                                    int32_t count) {
    PIF::MLengthSchemeTableRow* length = lengthRow(&builder_->pif_, &row());
    length->set_ilengthkind(kind);
    length->set_ilengthunits(units);
    length->set_ilength(count);
    if (units == CHARACTERS && row().itextencodingindex() == -1) encoding("UTF-8");
    return *this;
}

GrammarHandle GrammarHandle::implicitBytes(int32_t count) {
    return length(Enums::IMPLICIT, BYTES, count).facetMaxLength(count);
}

GrammarHandle GrammarHandle::implicitCharacters(int32_t count) {
    return length(Enums::IMPLICIT, CHARACTERS, count).facetMaxLength(count);
}

GrammarHandle GrammarHandle::pattern(const std::string& expression) {
    length(Enums::PATTERN, CHARACTERS, -1);
    lengthRow(&builder_->pif_, &row())->set_ilengthpattern(expression);
    return *this;
}

GrammarHandle GrammarHandle::encoding(const std::string& name) {
    const int32_t index = builder_->encoding(name);
    row().set_itextencodingindex(index);
    if (row().itextstringindex() != -1) textStringRow()->set_itextencodingindex(index);
    if (row().itextmarkupid() != -1) markupRow()->set_itextencodingindex(index);
    return *this;
}

GrammarHandle GrammarHandle::trim(const std::string& pad, Enums::MTextJustificationEnum justification) {
    PIF::MTextStringTableRow* text = textStringRow();
    text->set_itextpadkind(Enums::PAD_KIND_PAD_CHAR);
    text->set_itextpadcharacter(pad);
    text->set_itexttrimkind(Enums::TRIM_KIND_PAD_CHAR);
    text->set_itextjustification(justification);
    return *this;
}

PIF::MTextStringTableRow* GrammarHandle::textStringRow() {
    PIF::MTextStringTable* table = builder_->pif_.mutable_text_string_table();
    PIF::MTextStringTableRow* text = rowAt(table, row().itextstringindex(), newTextString);
    if (row().itextstringindex() == -1) row().set_itextstringindex(table->row_size() - 1);
    text->set_itextencodingindex(row().itextencodingindex());
    return text;
}

PIF::MAlignmentTableRow* GrammarHandle::alignmentRow() {
    PIF::MAlignmentTable* table = builder_->pif_.mutable_alignment_table();
    PIF::MAlignmentTableRow* alignment = rowAt(table, row().ialignmentid(), newAlignment);
    if (row().ialignmentid() == -1) row().set_ialignmentid(table->row_size() - 1);
    return alignment;
}

GrammarHandle GrammarHandle::align(int32_t bytes) {
    alignmentRow()->set_ialignment(bytes);
    alignmentRow()->set_ialignmentunits(Enums::ALUNITS_BYTES);
    return *this;
}

GrammarHandle GrammarHandle::alignBits(int32_t bits) {
    alignmentRow()->set_ialignment(bits);
    alignmentRow()->set_ialignmentunits(Enums::ALUNITS_BITS);
    return *this;
}

GrammarHandle GrammarHandle::skip(int32_t leading, int32_t trailing) {
    alignmentRow()->set_ileadingskipbytes(leading);
    alignmentRow()->set_itrailingskipbytes(trailing);
    return *this;
}

GrammarHandle GrammarHandle::occurs(int32_t least, int32_t most) {
    row().set_min_occurs(least);
    row().set_max_occurs(most);
    return *this;
}

GrammarHandle GrammarHandle::occursKind(Enums::MOccursCountKindEnum kind) {
    PIF::MOccursSchemeTable* table = builder_->pif_.mutable_occurs_scheme_table();
    PIF::MOccursSchemeTableRow* occurs = table->add_row();
    occurs->set_ioccurscountkind(kind);
    occurs->set_ioccurscount(row().max_occurs());
    occurs->set_ioccurscountexprindex(-1);
    occurs->set_istopvaluesindex(-1);
    row().set_ioccursschemetableindex(table->row_size() - 1);
    return *this;
}

GrammarHandle GrammarHandle::namespaceUri(const std::string& uri) {
    element().set_namespace_(uri);
    return *this;
}

GrammarHandle GrammarHandle::defaultValue(const std::string& value) {
    element().set_defaultvalueindex(builder_->value(node_->kindName, value));
    element().set_valueconstraintkind(Enums::VC_DEFAULT_VALUE);
    return *this;
}

GrammarHandle GrammarHandle::facet(Enums::MFacetKindEnum kind, const std::string& kindName,
                                   const std::string& value) {
    builder_->emitted_ = false;
    node_->facets.emplace_back(kind, builder_->value(kindName, value));
    return *this;
}

GrammarHandle GrammarHandle::facetMaxLength(int32_t count) {
    return facet(Enums::FACET_MAXLENGTH, "UNSIGNEDLONG", std::to_string(count));
}
