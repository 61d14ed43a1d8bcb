#ifndef DFDL_TESTS_PIF_PIFROWS_H
#define DFDL_TESTS_PIF_PIFROWS_H

#include <dfdl/dfdl.h>

#include <string>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"
#include "pif.pb.h"
#include "support/memberrow.h"

// A message under test, with rows that refer to nothing, and the grammar made of it.
struct PIFRows {
    PIF::MPIF message;
    int result = -1;

    PIF::MGroupMemberTableRow* member(int32_t parent, int32_t sequence) {
        auto* row = message.mutable_group_member_table()->add_row();
        MemberRow_clear(row);
        row->set_parent_group_id(parent);
        row->set_sequence_number(sequence);
        return row;
    }
    PIF::MElementTableRow* element(const std::string& name, const std::string& namespaceUri = "") {
        auto* row = message.mutable_element_table()->add_row();
        row->set_element_id(message.element_table().row_size());
        row->set_name(name);
        row->set_namespace_(namespaceUri);
        row->set_simple_type_id(-1);
        row->set_group_id(-1);
        row->set_defaultvalueindex(-1);
        row->set_scd_id(-1);
        return row;
    }
    int32_t group(PIF::MPIFEnums::MDFDLGroupTypeEnum kind) {
        auto* row = message.mutable_group_table()->add_row();
        row->set_group_id(message.group_table().row_size());
        row->set_igroupkind(kind);
        row->set_scd_id(-1);
        return row->group_id();
    }
    // Row index of a new literal.
    int32_t literal(const std::string& text) {
        message.mutable_string_part_table()->add_row()->set_istringpart(text);
        auto* row = message.mutable_string_literal_table()->add_row();
        row->set_istringpartindex(message.string_literal_table().row_size() - 1);
        return row->istringpartindex();
    }
    // Its position id is the number of markup rows so far.
    PIF::MTextMarkupTableRow* markup() {
        auto* row = message.mutable_text_markup_table()->add_row();
        row->set_iinitiatorindex(-1);
        row->set_iterminatorindex(-1);
        row->set_iseparatorindex(-1);
        row->set_iescapeschemeindex(-1);
        row->set_iinitiatorexprindex(-1);
        row->set_iterminatorexprindex(-1);
        row->set_iseparatorexprindex(-1);
        row->set_ioutputnewlineexprindex(-1);
        row->set_itextencodingindex(-1);
        row->set_iseparatorposition(PIF::MPIFEnums::POSITION_NONE);
        row->set_iemptyvaluedelimiterpolicy(PIF::MPIFEnums::DP_BOTH);
        return row;
    }
    void value(const std::string& kind, const std::string& text) {
        auto* row = message.mutable_values_table()->add_row();
        row->set_isimpletype(kind);
        row->set_ivalue(text);
    }

    DFDLGrammar* load(DFDLHeap* heap = nullptr) {
        const std::string bytes = message.SerializeAsString();
        return new_DFDLGrammarFromByteArray(heap, bytes.data(), bytes.size(), nullptr, &result);
    }
};

// A grammar that goes with its test.
struct LoadedGrammar {
    DFDLGrammar* pif;
    explicit LoadedGrammar(PIFRows& rows) : pif(rows.load()) {}
    ~LoadedGrammar() { delete_DFDLGrammar(pif); }
    LoadedGrammar(const LoadedGrammar&) = delete;
    LoadedGrammar& operator=(const LoadedGrammar&) = delete;
    GroupMemberTableRow* member(int32_t index) const { return Table_row(pif->groupMemberTable, index); }
};

#endif
