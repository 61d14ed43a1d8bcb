// What a handle says of delimiters, escapes and nil values.
#include "support/grammarbuilder.h"
#include "support/rowat.h"

namespace {

using Enums = PIF::MPIFEnums;

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
    row->set_iemptyvaluedelimiterpolicy(Enums::DP_NONE);
    return row;
}

PIF::MNilSchemeTableRow* newNil(PIF::MNilSchemeTable* table) {
    PIF::MNilSchemeTableRow* row = table->add_row();
    row->set_inilkind(Enums::NK_NONE);
    row->set_inilliteralindex(-1);
    row->set_inillogicalindex(-1);
    row->set_iusenilfordefault(false);
    row->set_inilvaluedelimiterpolicy(Enums::DP_NONE);
    return row;
}

}  // namespace

PIF::MTextMarkupTableRow* GrammarHandle::markupRow() {
    PIF::MTextMarkupTable* table = builder_->pif_.mutable_text_markup_table();
    PIF::MTextMarkupTableRow* markup = rowAt(table, row().itextmarkupid() - 1, newMarkup);
    if (row().itextmarkupid() == -1) row().set_itextmarkupid(table->row_size());
    if (row().itextencodingindex() == -1) row().set_itextencodingindex(builder_->encoding("UTF-8"));
    markup->set_itextencodingindex(row().itextencodingindex());
    return markup;
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

// The case of an element's delimiters and of its text.
GrammarHandle GrammarHandle::ignoreCase() {
    markupRow()->set_iignorecase(true);
    if (row().itextstringindex() != -1) textStringRow()->set_iignorecase(true);
    return *this;
}

GrammarHandle GrammarHandle::initiatedContent() {
    markupRow()->set_iinitiatedcontent(true);
    return *this;
}

GrammarHandle GrammarHandle::finalTerminatorCanBeMissing() {
    markupRow()->set_ifinalterminatorcanbemissing(true);
    return *this;
}

GrammarHandle GrammarHandle::emptyValueDelimiterPolicy(DelimiterPolicy policy) {
    markupRow()->set_iemptyvaluedelimiterpolicy(policy);
    return *this;
}

GrammarHandle GrammarHandle::escape(const PIF::MEscapeSchemeTableRow& scheme) {
    const int32_t index = builder_->escapeScheme(scheme);
    markupRow()->set_iescapeschemeindex(index);
    textStringRow()->set_iescapeschemeindex(index);
    return *this;
}

GrammarHandle GrammarHandle::escapeCharacter(const std::string& escapeText, const std::string& escapeEscape) {
    PIF::MEscapeSchemeTableRow scheme;
    scheme.set_iescapekind(Enums::ESCAPE_CHARACTER);
    scheme.set_iescapecharacter(escapeText);
    scheme.set_iescapeescapecharacter(escapeEscape);
    return escape(scheme);
}

GrammarHandle GrammarHandle::escapeBlock(const std::string& start, const std::string& end,
                                         const std::string& escapeEscape) {
    PIF::MEscapeSchemeTableRow scheme;
    scheme.set_iescapekind(Enums::ESCAPE_BLOCK);
    scheme.set_iescapeblockstart(start);
    scheme.set_iescapeblockend(end);
    scheme.set_iescapeescapecharacter(escapeEscape);
    return escape(scheme);
}

PIF::MNilSchemeTableRow* GrammarHandle::nilRow() {
    PIF::MNilSchemeTable* table = builder_->pif_.mutable_nil_scheme_table();
    PIF::MNilSchemeTableRow* scheme = rowAt(table, row().inilschemeindex(), newNil);
    if (row().inilschemeindex() == -1) row().set_inilschemeindex(table->row_size() - 1);
    return scheme;
}

GrammarHandle GrammarHandle::nil(Enums::MNilKindEnum kind, const std::string& literals,
                                 DelimiterPolicy policy) {
    PIF::MNilSchemeTableRow* scheme = nilRow();
    scheme->set_inilkind(kind);
    scheme->set_inilliteralindex(builder_->literal(literals));
    scheme->set_inilvaluedelimiterpolicy(policy);
    return *this;
}

GrammarHandle GrammarHandle::nilLiteral(const std::string& literals, DelimiterPolicy policy) {
    return nil(Enums::NK_LITERAL_VALUE, literals, policy);
}

GrammarHandle GrammarHandle::nilCharacter(const std::string& literal, DelimiterPolicy policy) {
    return nil(Enums::NK_LITERAL_CHAR, literal, policy);
}

GrammarHandle GrammarHandle::nilLogical(const std::vector<std::string>& values) {
    nilRow()->set_inilkind(Enums::NK_LOGICAL_VALUE);
    for (const std::string& value : values) {
        node_->nilValues.push_back(builder_->value(node_->kindName, value));
    }
    return *this;
}

GrammarHandle GrammarHandle::useNilForDefault() {
    nilRow()->set_iusenilfordefault(true);
    return *this;
}
