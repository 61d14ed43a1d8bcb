#include "support/grammarbuilder.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/pif/spif.h"
#include "support/markupsets.h"
#include "support/memberrow.h"
#include "support/testheap.h"

namespace {

using Grammar = Owned<DFDLGrammar, delete_DFDLGrammar>;

void describe(GrammarBuilder* builder) {
    auto file = builder->complexElement("file");
    auto record = file.complexElement("record").occurs(3, 3).occursFixed();
    record.text("name").bytes(10).encoding("UTF-8").trimRight("%SP;");
    file.sequence().text("last").implicitBytes(4).encoding("UTF-16BE").align(2).skip(1, 0);
    record.text("note").characters(5);
    builder->variable("n", "UNSIGNEDBYTE", true, "7");
}

const GroupMemberTableRow* rowOf(const DFDLGrammar* grammar, std::u16string_view element) {
    for (int32_t i = 0; i < Table_size(grammar->groupMemberTable); ++i) {
        const GroupMemberTableRow* row = Table_at(grammar->groupMemberTable, i);
        if (DFDLUString_view(GroupMemberTableRow_getElementName(row)) == element) return row;
    }
    return nullptr;
}

TEST(GrammarBuilder, membersStandTogetherWhateverTheOrderOfWords) {
    GrammarBuilder builder;
    describe(&builder);
    const Grammar grammar(builder.load());
    ASSERT_NE(grammar, nullptr);
    const GroupMemberTableRow* file = rowOf(grammar.get(), u"file");
    const GroupMemberTableRow* record = rowOf(grammar.get(), u"record");
    const GroupMemberTableRow* name = rowOf(grammar.get(), u"name");
    const GroupMemberTableRow* note = rowOf(grammar.get(), u"note");
    ASSERT_TRUE(file != nullptr && record != nullptr && name != nullptr && note != nullptr);
    EXPECT_EQ(file->parent_group_id, -1);
    EXPECT_EQ(file->groupRow->iGroupKind, COMPLEX_TYPE);
    EXPECT_EQ(name->nextSibling, note);
    EXPECT_EQ(note->sequence_number, 2);
    ASSERT_NE(record->nextSibling, nullptr);
    EXPECT_EQ(record->nextSibling->iPhysicalType, GROUP_SEQUENCE);
    EXPECT_EQ(record->min_occurs, 3);
    EXPECT_TRUE(GroupMemberTableRow_has(record, GM_OCCURS_FIXED));
    EXPECT_EQ(std::u16string(DFDLUString_view(name->scdText)), u"/file/record/name");
}

TEST(GrammarBuilder, propertiesReachTheirMember) {
    GrammarBuilder builder;
    describe(&builder);
    const Grammar grammar(builder.load());
    ASSERT_NE(grammar, nullptr);
    const GroupMemberTableRow* name = rowOf(grammar.get(), u"name");
    const GroupMemberTableRow* last = rowOf(grammar.get(), u"last");
    ASSERT_TRUE(name != nullptr && last != nullptr);
    EXPECT_EQ(name->lengthRow->iLength, 10);
    EXPECT_EQ(name->lengthRow->iLengthUnits, BYTES);
    EXPECT_TRUE(GroupMemberTableRow_has(name, GM_TRIM));
    EXPECT_EQ(name->textStringRow->iTextJustification, LEFT);
    EXPECT_EQ(name->simpleTypeKind, SIMPLE_STRING);
    EXPECT_FALSE(GroupMemberTableRow_has(name, GM_LEADING_ALIGNMENT));
    EXPECT_EQ(last->lengthRow->iLengthKind, IMPLICIT);
    EXPECT_FALSE(last->encodingRow->iEncodingASCIICompatible);
    EXPECT_TRUE(GroupMemberTableRow_has(last, GM_LEADING_ALIGNMENT));
    EXPECT_FALSE(GroupMemberTableRow_has(last, GM_TRAILING_ALIGNMENT));
}

TEST(GrammarBuilder, whatAHandleSaysLaterIsInTheNextMessage) {
    GrammarBuilder builder;
    auto root = builder.complexElement("root");
    const int before = builder.pif().element_table().row_size();
    builder.pif().mutable_element_table()->mutable_row(0)->set_name("odd");
    EXPECT_EQ(builder.pif().element_table().row(0).name(), "odd");
    root.text("more");
    EXPECT_EQ(builder.pif().element_table().row_size(), before + 1);
    EXPECT_EQ(builder.pif().element_table().row(0).name(), "root");
}

// The id of the context that a member stands in under an enclosing one, as the walk finds it.
int32_t contextOf(const DFDLGrammar* grammar, int32_t parentId, const GroupMemberTableRow* row) {
    const int32_t ending = row->markupRow == nullptr ? -1 : row->markupRow->terminatingMarkupId;
    return MarkupSetTable_getMarkupSetId(grammar->markupSetTable, parentId, ending);
}

TEST(GrammarBuilder, everyPlaceInANestedGrammarHasItsMarkupSet) {
    GrammarBuilder builder;
    auto file = builder.complexElement("file");
    file.text("plain").bytes(1);
    auto lines = file.sequence().separator("%NL;");
    auto line = lines.complexElement("line");
    auto fields = line.content().separator(";");
    fields.text("first").delimited();
    fields.text("second").delimited();
    fields.text("third").delimited().terminator(".");
    lines.text("like").delimited().terminator(".");
    const Grammar grammar(builder.load());
    ASSERT_NE(grammar, nullptr);

    const GroupMemberTableRow* lineRow = rowOf(grammar.get(), u"line");
    const GroupMemberTableRow* first = rowOf(grammar.get(), u"first");
    const GroupMemberTableRow* linesRow = rowOf(grammar.get(), u"plain")->nextSibling;
    const int32_t inLines = contextOf(grammar.get(), -1, linesRow);
    const int32_t inLine = contextOf(grammar.get(), inLines, lineRow);
    const int32_t inFields = contextOf(grammar.get(), inLine, lineRow->groupRow->firstMember);
    const int32_t inFirst = contextOf(grammar.get(), inFields, first);
    EXPECT_EQ(contextOf(grammar.get(), -1, rowOf(grammar.get(), u"plain")), -1) << "nothing is in scope";
    EXPECT_TRUE(inLines >= 0 && inLine >= 0 && inFields >= 0 && inFirst >= 0);
    EXPECT_EQ(contextOf(grammar.get(), inFields, rowOf(grammar.get(), u"second")), inFirst);
    const int32_t inThird = contextOf(grammar.get(), inFields, rowOf(grammar.get(), u"third"));
    const int32_t inLike = contextOf(grammar.get(), inLines, rowOf(grammar.get(), u"like"));
    EXPECT_EQ(std::set<int32_t>({inLines, inLine, inFields, inFirst, inThird, inLike}).size(), 6U);
    EXPECT_EQ(Table_size(grammar->markupSetTable), 6) << "no set but those that a walk comes to";
    EXPECT_EQ(MarkupSetTable_findRowByID(grammar->markupSetTable, inFields)->markupRow,
              lineRow->groupRow->firstMember->markupRow);
    EXPECT_EQ(MarkupSetTable_findRowByID(grammar->markupSetTable, inFirst)->markupRow, nullptr);
}

TEST(GrammarBuilder, aGroupWithinItselfEndsTheSearchForMarkupSets) {
    GrammarBuilder builder;
    builder.complexElement("loop").terminator("!").complexElement("inner").terminator("?");
    PIF::MPIF pif = builder.pif();
    const int32_t loop = pif.element_table().row(0).group_id();
    for (PIF::MGroupMemberTableRow& row : *pif.mutable_group_member_table()->mutable_row()) {
        if (row.child_element_id() == 1) row.set_child_group_id(loop);
    }
    fillMarkupSets(&pif);
    EXPECT_EQ(pif.markupset_table().row_size(), 3) << "the loop, its sequence, and the inner element";
}

TEST(GrammarLoading, givesBackAllMemoryWhicheverAllocationFails) {
    GrammarBuilder builder;
    describe(&builder);
    const std::string bytes = builder.serialize();
    const int failures = sweepFailingAllocations([&](DFDLHeapImpl heap) {
        int resultCode = -1;
        DFDLGrammar* grammar =
            new_DFDLGrammarFromByteArray(&heap, bytes.data(), bytes.size(), nullptr, &resultCode);
        if (grammar == nullptr) {
            EXPECT_EQ(resultCode, DFDL_GRAMMAR_NO_MEMORY);
            throw AllocationFailure{1};
        }
        delete_DFDLGrammar(grammar);
    });
    EXPECT_GT(failures, 20);
}

// Whatever the bytes say, they load or are refused.
TEST(GrammarLoading, survivesDamagedFiles) {
    GrammarBuilder builder;
    describe(&builder);
    const std::string good = builder.serialize();
    uint32_t random = 12345;
    const auto next = [&random] { return (random = random * 1664525U + 1013904223U) >> 8; };
    int loaded = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = good;
        for (uint32_t change = next() % 4 + 1; change > 0; --change) {
            bytes[next() % bytes.size()] = static_cast<char>(next() % 256);
        }
        int resultCode = -1;
        DFDLGrammar* grammar =
            new_DFDLGrammarFromByteArray(nullptr, bytes.data(), bytes.size(), nullptr, &resultCode);
        EXPECT_EQ(grammar != nullptr, resultCode == DFDL_GRAMMAR_LOADED);
        if (grammar != nullptr) ++loaded;
        delete_DFDLGrammar(grammar);
    }
    EXPECT_GT(loaded, 0);
    EXPECT_LT(loaded, 2000);
}

TEST(GrammarLoading, judgesTheVersionOfASingleRow) {
    const struct {
        int32_t version;
        int rows;
        int resultCode;
    } cases[] = {{40, 1, 0}, {41, 1, DFDL_GRAMMAR_VERSION}, {-5, 1, 0}, {41, 0, 0}, {41, 2, 0}};
    for (const auto& c : cases) {
        GrammarBuilder builder;
        describe(&builder);
        builder.pif().clear_pif_globals_table();
        for (int i = 0; i < c.rows; ++i) {
            builder.pif().mutable_pif_globals_table()->add_row()->set_pifversion(c.version);
        }
        const std::string bytes = builder.serialize();
        int resultCode = -1;
        const Grammar grammar(
            new_DFDLGrammarFromByteArray(nullptr, bytes.data(), bytes.size(), nullptr, &resultCode));
        EXPECT_EQ(resultCode, c.resultCode) << c.version << " in " << c.rows;
        EXPECT_EQ(grammar != nullptr, c.resultCode == 0);
    }
}

// Rows that share one large group must not each walk its members: this takes minutes if they do.
TEST(Loading, JudgesASharedGroupOnce) {
    constexpr int32_t ROWS = 60000;
    GrammarBuilder builder;
    builder.complexElement("r").text("a").bytes(1);
    PIF::MPIF& pif = builder.pif();
    constexpr int32_t SHARED = 1000001;
    constexpr int32_t HOLDER = 1000002;
    for (const int32_t group : {SHARED, HOLDER}) {
        pif.mutable_group_table()->add_row()->set_group_id(group);
        for (int32_t number = 1; number <= ROWS; ++number) {
            auto* row = pif.mutable_group_member_table()->add_row();
            MemberRow_clear(row);
            row->set_parent_group_id(group);
            row->set_sequence_number(number);
            row->set_iphysicaltype(PIF::MPIFEnums::GROUP_SEQUENCE);
            if (group == HOLDER) row->set_child_group_id(SHARED);
        }
    }
    const std::string bytes = pif.SerializeAsString();
    int code = -1;
    DFDLGrammar* grammar = new_DFDLGrammarFromByteArray(nullptr, bytes.data(), bytes.size(), nullptr, &code);
    EXPECT_EQ(0, code);
    ASSERT_NE(nullptr, grammar);
    const auto* last = static_cast<const GroupMemberTableRow*>(
        Array_at(grammar->groupMemberTable->rows, grammar->groupMemberTable->rows->count - 1));
    EXPECT_TRUE(GroupMemberTableRow_has(last, GM_SUPPRESSABLE));
    delete_DFDLGrammar(grammar);
}

}  // namespace
