#include <dfdl/pifwrapper.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "pif.pb.h"

namespace {

void fillSample(PIFWrapper::MPIF* pif) {
    auto element = pif->mutable_element_table()->add_row();
    element.set_element_id(-1);
    element.set_name(std::string("a"));
    element.set_namespace("urn:b");
    auto expression = pif->mutable_expressions_table()->add_row();
    expression.set_iinstructionset("x\0y", 3);
    pif->mutable_alignment_table()->add_row().set_ialignmentunits(1);
    pif->mutable_text_number_table()->add_row().set_itextnumberroundingincrement(0.5);
}

TEST(PIFWrapper, everyTableIsThereFromTheBeginning) {
    const PIFWrapper::MPIF pif;
    EXPECT_TRUE(pif.pPIF()->has_pif_globals_table());
    EXPECT_TRUE(pif.pPIF()->has_element_table());
    EXPECT_TRUE(pif.pPIF()->has_occurs_scheme_table());
}

TEST(PIFWrapper, fieldsOfEachTypeReachTheMessage) {
    PIFWrapper::MPIF pif;
    fillSample(&pif);
    const PIF::MElementTableRow& element = pif.pPIF()->element_table().row(0);
    EXPECT_EQ(element.element_id(), -1);
    EXPECT_EQ(element.name(), "a");
    EXPECT_EQ(element.namespace_(), "urn:b");
    EXPECT_FALSE(element.has_group_id());
    EXPECT_EQ(pif.pPIF()->expressions_table().row(0).iinstructionset(), std::string("x\0y", 3));
    EXPECT_EQ(pif.pPIF()->alignment_table().row(0).ialignmentunits(), PIF::MPIFEnums::ALUNITS_BYTES);
    EXPECT_EQ(pif.pPIF()->text_number_table().row(0).itextnumberroundingincrement(), 0.5);
}

TEST(PIFWrapper, anEmptyHandGivesNoTextAndNoGrammar) {
    PIFWrapper::MPIF pif;
    auto element = pif.mutable_element_table()->add_row();
    element.set_name(static_cast<const char*>(nullptr));
    element.set_namespace(nullptr, 5);
    EXPECT_TRUE(element.has_name());
    EXPECT_EQ(element.get_name() + element.get_namespace(), "");
    const PIFWrapper::MPIF taken(std::move(pif));
    EXPECT_EQ(taken.pPIF()->element_table().row_size(), 1);
    int code = -1;
    EXPECT_EQ(new_DFDLGrammarFromPIFWrapper(nullptr, &pif, nullptr, &code), nullptr);
    EXPECT_EQ(code, 5) << "the message has gone";
    EXPECT_FALSE(pif.serialize("/dev/null"));
}

TEST(PIFWrapper, rowsAreReadBackThroughTheirTable) {
    PIFWrapper::MPIF pif;
    fillSample(&pif);
    ASSERT_EQ(pif.mutable_element_table()->row_size(), 1);
    auto row = pif.mutable_element_table()->mutable_row(0);
    EXPECT_EQ(row.get_name(), "a");
    EXPECT_TRUE(row.has_namespace());
    EXPECT_FALSE(row.has_scd_id());
}

TEST(PIFWrapper, aNumberOutsideAnEnumerationIsNotStored) {
    PIFWrapper::MPIF pif;
    fillSample(&pif);
    auto row = pif.mutable_alignment_table()->mutable_row(0);
    row.set_ialignmentunits(99);
    EXPECT_EQ(row.get_ialignmentunits(), 1);
}

TEST(PIFWrapper, writesAndReadsFiles) {
    const std::string path = (std::filesystem::temp_directory_path() / "dfdl_pifwrapper_test.pif").string();
    PIFWrapper::MPIF written;
    fillSample(&written);
    ASSERT_TRUE(written.serialize(path.c_str()));
    PIFWrapper::MPIF read;
    EXPECT_TRUE(read.parse(path.c_str()));
    EXPECT_EQ(read.pPIF()->SerializeAsString(), written.pPIF()->SerializeAsString());
    std::filesystem::remove(path);
    EXPECT_FALSE(read.parse(path.c_str()));
    EXPECT_FALSE(read.serialize("/"));
}

}  // namespace
