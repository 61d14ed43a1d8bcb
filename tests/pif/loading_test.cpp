#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <random>

#include "dfdl/pif/patternmanager.h"
#include "dfdl/pifwrapper.h"
#include "pif/pifrows.h"
#include "support/testheap.h"

namespace {

using Enums = PIF::MPIFEnums;

// Something in every table that finalizing looks at.
void fill(PIFRows& rows) {
    rows.message.mutable_pif_globals_table()->add_row()->set_pifversion(40);
    const int32_t content = rows.group(Enums::COMPLEX_TYPE);
    const int32_t choice = rows.group(Enums::CHOICE);
    auto* root = rows.member(-1, 1);
    root->set_child_element_id(rows.element("root", "urn:x")->element_id());
    root->set_child_group_id(content);
    auto* holder = rows.member(content, 1);
    holder->set_child_group_id(choice);
    holder->set_iphysicaltype(Enums::GROUP_CHOICE);
    for (int32_t index = 1; index <= 2; ++index) {
        auto* branch = rows.member(choice, index);
        branch->set_child_element_id(rows.element("branch")->element_id());
        branch->set_itextmarkupid(index);
        branch->set_ilengthschemeid(1);
        branch->set_inilschemeindex(0);
        branch->set_iphysicaltype(Enums::TEXT_NUMBER);
        branch->set_iphysicaltypetablerowid(1);
        rows.markup()->set_iinitiatorindex(rows.literal(index == 1 ? "A%SP; B%#x42;" : "CC"));
    }
    auto* length = rows.message.mutable_length_scheme_table()->add_row();
    length->set_ilengthkind(Enums::PATTERN);
    length->set_ilengthpattern("[a-z]+");
    auto* type = rows.message.mutable_simple_type_table()->add_row();
    type->set_simple_type_id(1);
    type->set_pifsimpletypename("INT");
    auto* facet = rows.message.mutable_facet_table()->add_row();
    facet->set_ifacetkind(Enums::FACET_PATTERN);
    rows.value("STRING", "[0-9]*");
    rows.value("HEXBINARY", "00ff");
    rows.value("DOUBLE", "1.5e3");
    auto* nil = rows.message.mutable_nil_scheme_table()->add_row();
    nil->set_inilkind(Enums::NK_LITERAL_VALUE);
    nil->set_inilliteralindex(rows.literal("nil %ES;"));
    rows.message.mutable_text_number_table()->add_row()->set_inumberpattern("PP#0;-#P");
    rows.message.mutable_text_string_table()->add_row()->set_itextpadcharacter("%#r20;");
    rows.message.mutable_text_encoding_table()->add_row()->set_iencoding("UTF-8");
    rows.message.mutable_calendar_format_table()->add_row()->set_icalendarlanguage("en");
    rows.message.mutable_expressions_table()->add_row()->set_iinstructionset("\x01\x02");
    rows.message.mutable_step_expression_table()->add_row()->set_ipredicateliteral(-7);
    rows.message.mutable_variable_actions_table()->add_row();
    rows.message.mutable_markupset_table()->add_row();
    rows.message.mutable_scd_table()->add_row()->set_iscd("/root");
}

int resultOf(const std::string& bytes) {
    int result = -1;
    DFDLGrammar* grammar =
        new_DFDLGrammarFromByteArray(nullptr, bytes.data(), bytes.size(), nullptr, &result);
    EXPECT_EQ(grammar != nullptr, result == DFDL_GRAMMAR_LOADED);
    delete_DFDLGrammar(grammar);
    return result;
}

TEST(Loading, VersionsUpToTheNewestAreTaken) {
    const struct {
        std::initializer_list<int32_t> versions;
        int result;
        int32_t version;
    } cases[] = {{{}, DFDL_GRAMMAR_LOADED, -1},
                 {{40}, DFDL_GRAMMAR_LOADED, 40},
                 {{-5}, DFDL_GRAMMAR_LOADED, -5},
                 {{41}, DFDL_GRAMMAR_VERSION, 0},
                 {{41, 41}, DFDL_GRAMMAR_LOADED, 0}};
    for (const auto& test : cases) {
        PIFRows rows;
        for (const int32_t version : test.versions) {
            rows.message.mutable_pif_globals_table()->add_row()->set_pifversion(version);
        }
        LoadedGrammar grammar(rows);
        EXPECT_EQ(rows.result, test.result);
        ASSERT_EQ(grammar.pif != nullptr, test.result == DFDL_GRAMMAR_LOADED);
        if (grammar.pif == nullptr || test.versions.size() > 1) continue;
        EXPECT_EQ(Table_row(grammar.pif->pifGlobalsTable, 0)->PIFVersion, test.version);
    }
}

TEST(Loading, WhatIsNoGrammarIsRefused) {
    PIFRows rows;
    fill(rows);
    std::string bytes = rows.message.SerializeAsString();
    EXPECT_EQ(resultOf(bytes), DFDL_GRAMMAR_LOADED);
    bytes.pop_back();
    EXPECT_EQ(resultOf(bytes), DFDL_GRAMMAR_NOT_A_PIF);
    EXPECT_EQ(resultOf(""), DFDL_GRAMMAR_LOADED) << "a message without fields has no elements, but is one";
    int result = -1;
    for (const char* path : {"/nonexistent/grammar.pif", "/"}) {
        EXPECT_EQ(new_DFDLGrammarFromFile(nullptr, path, nullptr, &result), nullptr);
        EXPECT_EQ(result, DFDL_GRAMMAR_CANNOT_OPEN) << path;
    }
    EXPECT_EQ(new_DFDLGrammarFromByteArray(nullptr, nullptr, 3, nullptr, &result), nullptr);
    EXPECT_EQ(result, DFDL_GRAMMAR_NOT_A_PIF);
    EXPECT_EQ(new_DFDLGrammarFromPIFWrapper(nullptr, nullptr, nullptr, &result), nullptr);
    EXPECT_EQ(result, DFDL_GRAMMAR_NO_MEMORY);
}

TEST(Loading, APatternThatDoesNotCompileFailsWhereItIsUsed) {
    PIFRows rows;
    for (const char* pattern : {"[a-z", "[a-z]+", ""}) {
        auto* row = rows.message.mutable_length_scheme_table()->add_row();
        row->set_ilengthkind(Enums::PATTERN);
        row->set_ilengthpattern(pattern);
    }
    LoadedGrammar grammar(rows);
    ASSERT_NE(grammar.pif, nullptr);
    for (const int32_t row : {-1, 0, 1, 2, 3}) {
        URegularExpression* clone =
            PatternManager_getLengthKindPattern(grammar.pif->patternManager, row, grammar.pif->heap);
        EXPECT_EQ(clone != nullptr, row == 1) << row;
        uregex_close(clone);
    }
}

// Bytes at random places become random ones, are taken out or stand twice. The grammar is refused or loads;
// the sanitizers watch over the rest.
TEST(Loading, DamagedGrammarsDoNoHarm) {
    PIFRows rows;
    fill(rows);
    const std::string good = rows.message.SerializeAsString();
    std::mt19937 random(20240611);
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = good;
        for (unsigned change = random() % 4 + 1; change > 0; --change) {
            const size_t place = random() % bytes.size();
            switch (random() % 3) {
                case 0:
                    bytes[place] = static_cast<char>(random());
                    break;
                case 1:
                    bytes.erase(place, 1);
                    break;
                default:
                    bytes.insert(place, 1, bytes[place]);
                    break;
            }
        }
        if (resultOf(bytes) != DFDL_GRAMMAR_LOADED) ++refused;
    }
    EXPECT_GT(refused, 0);
    EXPECT_LT(refused, 3000);
}

TEST(Loading, EveryRefusedAllocationGivesEverythingBack) {
    PIFRows rows;
    fill(rows);
    const std::string bytes = rows.message.SerializeAsString();
    const int refusals = sweepFailingAllocations([&](DFDLHeapImpl heap) {
        int result = -1;
        DFDLGrammar* grammar =
            new_DFDLGrammarFromByteArray(&heap, bytes.data(), bytes.size(), nullptr, &result);
        if (grammar == nullptr) {
            EXPECT_EQ(result, DFDL_GRAMMAR_NO_MEMORY);
            throw AllocationFailure{0};
        }
        delete_DFDLGrammar(grammar);
    });
    EXPECT_GT(refusals, 100);
}

TEST(PIFWrapper, WhatIsBuiltIsWrittenReadAndLoaded) {
    PIFWrapper::MPIF built;
    auto element = built.mutable_element_table()->add_row();
    EXPECT_FALSE(element.has_name());
    element.set_name("a\0b", 3);
    element.set_namespace("urn:x");
    element.set_element_id(7);
    auto length = built.mutable_length_scheme_table()->add_row();
    length->set_ilengthkind(4);
    length->set_ilengthkind(99);
    EXPECT_EQ(length->get_ilengthkind(), 4) << "a number that is none is not taken";

    const std::string path = testing::TempDir() + "wrapper_test.pif";
    ASSERT_TRUE(built.serialize(path.c_str()));
    PIFWrapper::MPIF read;
    ASSERT_TRUE(read.parse(path.c_str()));
    ASSERT_EQ(read.mutable_element_table()->row_size(), 1);
    EXPECT_EQ(read.mutable_element_table()->mutable_row(0)->get_name(), std::string("a\0b", 3));
    int result = -1;
    DFDLGrammar* grammar = new_DFDLGrammarFromPIFWrapper(nullptr, &read, nullptr, &result);
    ASSERT_NE(grammar, nullptr);
    EXPECT_EQ(Table_row(grammar->elementTable, 0)->element_id, 7);
    delete_DFDLGrammar(grammar);
    DFDLGrammar* fromFile = new_DFDLGrammarFromFile(nullptr, path.c_str(), nullptr, &result);
    EXPECT_NE(fromFile, nullptr);
    delete_DFDLGrammar(fromFile);
    std::remove(path.c_str());
    EXPECT_FALSE(read.parse(path.c_str()));
    EXPECT_EQ(read.mutable_element_table()->row_size(), 0);
}

}  // namespace
