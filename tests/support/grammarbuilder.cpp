#include "support/grammarbuilder.h"

#include <cstdio>
#include <string_view>

#include "support/markupsets.h"
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

}  // namespace

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
    GrammarHandle(this, node).length(Enums::IMPLICIT, Enums::BYTES, -1);
    node->children.push_back(newGroup(Enums::SEQUENCE_ORDERED, Enums::GROUP_SEQUENCE));
    return node;
}

GrammarNode* GrammarBuilder::newText(const std::string& name, const std::string& kindName) {
    GrammarNode* node = newElement(name);
    node->kindName = kindName;
    node->row.set_iphysicaltype(Enums::TEXT_STRING);
    GrammarHandle handle(this, node);
    handle.textStringRow();
    handle.encoding("UTF-8");
    return node;
}

GrammarHandle GrammarBuilder::complexElement(const std::string& name) {
    emitted_ = false;
    return {this, globals_.emplace_back(newComplexElement(name))};
}

GrammarHandle GrammarBuilder::text(const std::string& name) {
    emitted_ = false;
    return {this, globals_.emplace_back(newText(name, "STRING"))};
}

int32_t GrammarBuilder::value(const std::string& kindName, const std::string& text) {
    PIF::MValuesTableRow* row = pif_.mutable_values_table()->add_row();
    row->set_isimpletype(kindName);
    row->set_ivalue(text);
    return pif_.values_table().row_size() - 1;
}

int32_t GrammarBuilder::literal(const std::string& text) {
    PIF::MStringPartTable* parts = pif_.mutable_string_part_table();
    for (int32_t index = 0; index < parts->row_size(); ++index) {
        if (parts->row(index).istringpart() == text) return index;
    }
    PIF::MStringPartTableRow* part = parts->add_row();
    part->set_istringpart(text);
    part->set_itextencodingindex(-1);
    part->set_istringpartkind(Enums::STRING_LITERAL);
    const int32_t index = parts->row_size() - 1;  // the two tables grow together
    pif_.mutable_string_literal_table()->add_row()->set_istringpartindex(index);
    return index;
}

int32_t GrammarBuilder::escapeScheme(const PIF::MEscapeSchemeTableRow& scheme) {
    PIF::MEscapeSchemeTableRow row = scheme;
    row.set_iescapeschemename("escapes");
    row.set_igenerateescape(Enums::ESCAPE_WHEN_NEEDED);
    row.set_iescapecharacterexpr(-1);
    row.set_iescapeescapecharacterexpr(-1);
    PIF::MEscapeSchemeTable* table = pif_.mutable_escape_scheme_table();
    for (int32_t index = 0; index < table->row_size(); ++index) {
        if (table->row(index).SerializeAsString() == row.SerializeAsString()) return index;
    }
    *table->add_row() = row;
    return table->row_size() - 1;
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

// A type of its own for each element with facets or values for nil; the plain ones share one by kind.
int32_t GrammarBuilder::emitSimpleType(const GrammarNode* node) {
    PIF::MSimpleTypeTable* table = pif_.mutable_simple_type_table();
    const bool plain = node->facets.empty() && node->nilValues.empty();
    for (int32_t id = 0; plain && id < table->row_size(); ++id) {
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
    for (const auto& [kind, valueIndex] : node->facets) emitFacet(id, kind, valueIndex);
    return id;
}

void GrammarBuilder::emitFacet(int32_t typeId, int32_t kind, int32_t valueIndex) {
    PIF::MFacetTableRow* facet = pif_.mutable_facet_table()->add_row();
    facet->set_isimpletypeid(typeId);
    facet->set_ifacetkind(static_cast<Enums::MFacetKindEnum>(kind));
    facet->set_ivalueid(valueIndex);
    facet->set_iimplicit(false);
}

// The values that mean nil stand among the facets, and the nil scheme points at the first.
void GrammarBuilder::emitNilValues(const GrammarNode* node, int32_t typeId) {
    if (node->nilValues.empty()) return;
    pif_.mutable_nil_scheme_table()
        ->mutable_row(node->row.inilschemeindex())
        ->set_inillogicalindex(pif_.facet_table().row_size());
    for (const int32_t valueIndex : node->nilValues) emitFacet(typeId, Enums::NIL_LOGICAL_VALUE, valueIndex);
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
    node->elementId = id;
    element->set_scd_id(emitScd(own));
    row->set_child_element_id(id);
    if (node->children.empty()) {
        element->set_simple_type_id(emitSimpleType(node));
        emitNilValues(node, element->simple_type_id());
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
    for (const GrammarNode& node : nodes_) {
        if (node.prefix == nullptr) continue;
        pif_.mutable_length_scheme_table()
            ->mutable_row(node.row.ilengthschemeid() - 1)
            ->set_iprefixlengthtypeindex(node.prefix->elementId);
    }
    fillMarkupSets(&pif_);
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
