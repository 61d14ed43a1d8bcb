#include "support/grammarbuilder.h"

#include <cstdio>
#include <string_view>

#include "support/memberrow.h"

namespace {

using Enums = PIF::MPIFEnums;

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> beginnings) {
    for (const std::string_view beginning : beginnings) {
        if (text.starts_with(beginning)) return true;
    }
    return false;
}

bool isEbcdic(std::string_view encoding) {
    return startsWithAny(encoding, {"IBM", "ibm-", "cp037", "CP037", "EBCDIC", "ebcdic"});
}

bool isAsciiCompatible(std::string_view encoding) {
    return !isEbcdic(encoding) && !startsWithAny(encoding, {"UTF-16", "UTF-32", "UCS", "UTF16", "UTF32"});
}

// A row that a member refers to by its index: made when the member has none.
template <class Table, class Row>
Row* rowAt(Table* table, int32_t index, Row* (*make)(Table*)) {
    return index >= 0 ? table->mutable_row(index) : make(table);
}

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

PIF::MTextMarkupTableRow* newMarkup(PIF::MTextMarkupTable* table) {
    PIF::MTextMarkupTableRow* row = table->add_row();
    row->set_iinitiatorindex(-1);
    row->set_iterminatorindex(-1);
    row->set_iseparatorindex(-1);
    row->set_iseparatorposition(Enums::POSITION_NONE);
    row->set_iseparatorpolicy(Enums::POLICY_NONE);
    row->set_iescapeschemeindex(-1);
    row->set_iinitiatorexprindex(-1);
    row->set_iterminatorexprindex(-1);
    row->set_iseparatorexprindex(-1);
    row->set_ioutputnewlineexprindex(-1);
    row->set_itextencodingindex(-1);
    row->set_iemptyvaluedelimiterpolicy(Enums::DP_BOTH);
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

// ---- Handles -------------------------------------------------------------------------------------------

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
    return {builder_, addChild(builder_->newText(name))};
}

GrammarHandle GrammarHandle::group(Enums::MDFDLGroupTypeEnum kind, Enums::MPhysicalTypeEnum type) {
    return {builder_, addChild(builder_->newGroup(kind, type))};
}

GrammarHandle GrammarHandle::sequence() { return group(Enums::SEQUENCE_ORDERED, Enums::GROUP_SEQUENCE); }

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

PIF::MTextMarkupTableRow* GrammarHandle::markupRow() {
    PIF::MTextMarkupTable* table = builder_->pif_.mutable_text_markup_table();
    PIF::MTextMarkupTableRow* markup = rowAt(table, row().itextmarkupid() - 1, newMarkup);
    if (row().itextmarkupid() == -1) row().set_itextmarkupid(table->row_size());
    if (row().itextencodingindex() == -1) row().set_itextencodingindex(builder_->encoding("UTF-8"));
    markup->set_itextencodingindex(row().itextencodingindex());
    return markup;
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

GrammarHandle GrammarHandle::initiator(const std::string& literal) {
    markupRow()->set_iinitiatorindex(builder_->literal(literal));
    return *this;
}

GrammarHandle GrammarHandle::terminator(const std::string& literal) {
    markupRow()->set_iterminatorindex(builder_->literal(literal));
    return *this;
}

GrammarHandle GrammarHandle::separator(const std::string& literal, Enums::MSeparatorPositionEnum position,
                                       Enums::MSeparatorPolicyEnum policy) {
    PIF::MTextMarkupTableRow* markup = markupRow();
    markup->set_iseparatorindex(builder_->literal(literal));
    markup->set_iseparatorposition(position);
    markup->set_iseparatorpolicy(policy);
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

GrammarHandle GrammarHandle::nilLiteral(const std::string& literals) {
    PIF::MNilSchemeTable* table = builder_->pif_.mutable_nil_scheme_table();
    PIF::MNilSchemeTableRow* nil = table->add_row();
    nil->set_inilkind(Enums::NK_LITERAL_VALUE);
    nil->set_inilliteralindex(builder_->literal(literals));
    nil->set_inillogicalindex(-1);
    nil->set_iusenilfordefault(false);
    nil->set_inilvaluedelimiterpolicy(Enums::DP_BOTH);
    row().set_inilschemeindex(table->row_size() - 1);
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

// ---- Builder -------------------------------------------------------------------------------------------

GrammarBuilder::GrammarBuilder() {
    PIF::MPIFGlobalsTableRow* globals = pif_.mutable_pif_globals_table()->add_row();
    globals->set_pifversion(40);
    globals->set_piftraitsflags(0);
}

GrammarNode* GrammarBuilder::newNode() {
    GrammarNode& node = nodes_.emplace_back();
    MemberRow_clear(&node.row);
    node.row.set_idfdlrepresentation(Enums::REPRESENTATION_TEXT);
    node.row.set_ipathexprtypevalue(0);
    return &node;
}

GrammarNode* GrammarBuilder::newElement(const std::string& name) {
    GrammarNode* node = newNode();
    node->element.set_name(name);
    node->element.set_namespace_("");
    node->element.set_simple_type_id(-1);
    node->element.set_group_id(-1);
    node->element.set_defaultvalueindex(-1);
    node->element.set_valueconstraintkind(Enums::VC_NONE);
    return node;
}

GrammarNode* GrammarBuilder::newGroup(Enums::MDFDLGroupTypeEnum kind, Enums::MPhysicalTypeEnum type) {
    GrammarNode* node = newNode();
    node->isElement = false;
    node->groupKind = kind;
    node->row.set_iphysicaltype(type);
    return node;
}

GrammarNode* GrammarBuilder::newComplexElement(const std::string& name) {
    GrammarNode* node = newElement(name);
    node->row.set_iphysicaltype(Enums::COMPLEX_ELEMENT);
    lengthRow(&pif_, &node->row)->set_ilengthkind(Enums::IMPLICIT);
    node->children.push_back(newGroup(Enums::SEQUENCE_ORDERED, Enums::GROUP_SEQUENCE));
    return node;
}

GrammarNode* GrammarBuilder::newText(const std::string& name) {
    GrammarNode* node = newElement(name);
    node->kindName = "STRING";
    node->row.set_iphysicaltype(Enums::TEXT_STRING);
    newTextString(pif_.mutable_text_string_table());
    node->row.set_itextstringindex(pif_.text_string_table().row_size() - 1);
    GrammarHandle(this, node).encoding("UTF-8");
    return node;
}

GrammarHandle GrammarBuilder::complexElement(const std::string& name) {
    emitted_ = false;
    return {this, globals_.emplace_back(newComplexElement(name))};
}

GrammarHandle GrammarBuilder::text(const std::string& name) {
    emitted_ = false;
    return {this, globals_.emplace_back(newText(name))};
}

int32_t GrammarBuilder::value(const std::string& kindName, const std::string& text) {
    PIF::MValuesTableRow* row = pif_.mutable_values_table()->add_row();
    row->set_isimpletype(kindName);
    row->set_ivalue(text);
    return pif_.values_table().row_size() - 1;
}

int32_t GrammarBuilder::literal(const std::string& text) {
    PIF::MStringPartTableRow* part = pif_.mutable_string_part_table()->add_row();
    part->set_istringpart(text);
    part->set_itextencodingindex(-1);
    part->set_istringpartkind(Enums::STRING_LITERAL);
    pif_.mutable_string_literal_table()->add_row()->set_istringpartindex(pif_.string_part_table().row_size() -
                                                                         1);
    return pif_.string_literal_table().row_size() - 1;
}

int32_t GrammarBuilder::encoding(const std::string& name) {
    PIF::MTextEncodingTable* table = pif_.mutable_text_encoding_table();
    for (int32_t index = 0; index < table->row_size(); ++index) {
        if (table->row(index).iencoding() == name) return index;
    }
    PIF::MTextEncodingTableRow* row = table->add_row();
    row->set_ibyteorder(Enums::BYTEOR_BIG_ENDIAN);
    row->set_iencoding(name);
    row->set_iencodingexprindex(-1);
    row->set_ibyteorderexprindex(-1);
    row->set_iencodingebcdic(isEbcdic(name));
    row->set_iencodingasciicompatible(isAsciiCompatible(name));
    row->set_isutf16widthfixed(false);
    return table->row_size() - 1;
}

PIF::MVariableActionsTableRow* GrammarBuilder::define(const std::string& name, const std::string& kindName,
                                                      bool external) {
    PIF::MVariablesTableRow* variable = pif_.mutable_variables_table()->add_row();
    variable->set_iname(name);
    variable->set_inamespace("");
    variable->set_isimpletype(kindName);
    variable->set_iisexternal(external);
    variable->set_iid(pif_.variables_table().row_size() - 1);
    PIF::MVariableActionsTableRow* action = pif_.mutable_variable_actions_table()->add_row();
    action->set_ivariableid(variable->iid());
    action->set_igroupmembertableid(-1);
    action->set_iaction(Enums::ACTION_DEFINE);
    action->set_ivalueindex(-1);
    action->set_ivalueexpressionindex(-1);
    return action;
}

void GrammarBuilder::variable(const std::string& name, const std::string& kindName, bool external) {
    define(name, kindName, external);
}

void GrammarBuilder::variable(const std::string& name, const std::string& kindName, bool external,
                              const std::string& defaultValue) {
    define(name, kindName, external)->set_ivalueindex(value(kindName, defaultValue));
}

// ---- The tables of the structure -----------------------------------------------------------------------

int32_t GrammarBuilder::emitScd(const std::string& path) {
    pif_.mutable_scd_table()->add_row()->set_iscd(path);
    return pif_.scd_table().row_size() - 1;
}

// A type of its own for each element with facets; the plain ones share one by kind.
int32_t GrammarBuilder::emitSimpleType(const GrammarNode* node) {
    PIF::MSimpleTypeTable* table = pif_.mutable_simple_type_table();
    for (int32_t id = 0; node->facets.empty() && id < table->row_size(); ++id) {
        const PIF::MSimpleTypeTableRow& row = table->row(id);
        if (row.pifsimpletypename() == node->kindName && row.ifacettableid() == -1) return id;
    }
    const int32_t id = table->row_size();
    PIF::MSimpleTypeTableRow* row = table->add_row();
    row->set_simple_type_id(id);
    row->set_pifsimpletypename(node->kindName);
    row->set_builtintypeid(-1);
    row->set_iuniontableid(-1);
    row->set_ifacettableid(node->facets.empty() ? -1 : pif_.facet_table().row_size());
    for (const auto& [kind, valueIndex] : node->facets) {
        PIF::MFacetTableRow* facet = pif_.mutable_facet_table()->add_row();
        facet->set_isimpletypeid(id);
        facet->set_ifacetkind(static_cast<Enums::MFacetKindEnum>(kind));
        facet->set_ivalueid(valueIndex);
        facet->set_iimplicit(false);
    }
    return id;
}

int32_t GrammarBuilder::emitGroupRow(Enums::MDFDLGroupTypeEnum kind, const std::string& path) {
    PIF::MGroupTableRow* group = pif_.mutable_group_table()->add_row();
    group->set_group_id(pif_.group_table().row_size() - 1);
    group->set_name("");
    group->set_namespace_("");
    group->set_igroupkind(kind);
    group->set_scd_id(emitScd(path));
    return group->group_id();
}

// The members' rows first, together, and then what hangs on each of them.
void GrammarBuilder::emitMembers(const GrammarNode* node, int32_t groupId, const std::string& path) {
    PIF::MGroupMemberTable* table = pif_.mutable_group_member_table();
    const int32_t first = table->row_size();
    for (const GrammarNode* child : node->children) {
        PIF::MGroupMemberTableRow* row = table->add_row();
        *row = child->row;
        row->set_parent_group_id(groupId);
        row->set_sequence_number(table->row_size() - first);
    }
    for (int32_t i = 0; GrammarNode * child : node->children) {
        PIF::MGroupMemberTableRow* row = table->mutable_row(first + i++);
        if (child->isElement) {
            emitElement(child, row, path);
        } else {
            emitGroup(child, row, path);
        }
    }
}

void GrammarBuilder::emitGroup(GrammarNode* node, PIF::MGroupMemberTableRow* row, const std::string& path) {
    const bool choice = node->groupKind == Enums::CHOICE;
    const int32_t id = emitGroupRow(node->groupKind, path + (choice ? "/model::choice" : "/model::sequence"));
    row->set_child_group_id(id);
    emitMembers(node, id, path);
}

void GrammarBuilder::emitElement(GrammarNode* node, PIF::MGroupMemberTableRow* row, const std::string& path) {
    const std::string own = path + "/" + node->element.name();
    const int32_t id = pif_.element_table().row_size();
    PIF::MElementTableRow* element = pif_.mutable_element_table()->add_row();
    *element = node->element;
    element->set_element_id(id);
    element->set_scd_id(emitScd(own));
    row->set_child_element_id(id);
    if (node->children.empty()) {
        element->set_simple_type_id(emitSimpleType(node));
        return;
    }
    const int32_t groupId = emitGroupRow(Enums::COMPLEX_TYPE, own + "/~0");
    element->set_group_id(groupId);
    row->set_child_group_id(groupId);
    emitMembers(node, groupId, own);
}

void GrammarBuilder::emit() {
    pif_.clear_element_table();
    pif_.clear_group_table();
    pif_.clear_group_member_table();
    pif_.clear_simple_type_table();
    pif_.clear_facet_table();
    pif_.clear_scd_table();
    PIF::MGroupMemberTable* table = pif_.mutable_group_member_table();
    for (GrammarNode* node : globals_) {
        PIF::MGroupMemberTableRow* row = table->add_row();
        *row = node->row;
        emitElement(node, row, "");
    }
    emitted_ = true;
}

PIF::MPIF& GrammarBuilder::pif() {
    if (!emitted_) emit();
    return pif_;
}

std::string GrammarBuilder::serialize() { return pif().SerializeAsString(); }

DFDLGrammar* GrammarBuilder::load(DFDLHeap* heap) {
    const std::string bytes = serialize();
    int resultCode = -1;
    DFDLGrammar* grammar =
        new_DFDLGrammarFromByteArray(heap, bytes.data(), bytes.size(), nullptr, &resultCode);
    if (grammar == nullptr) std::fprintf(stderr, "the grammar does not load: %d\n", resultCode);
    return grammar;
}
