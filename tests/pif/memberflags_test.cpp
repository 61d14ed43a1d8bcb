#include <gtest/gtest.h>

#include <functional>

#include "pif/pifrows.h"

namespace {

using Enums = PIF::MPIFEnums;
using Member = PIF::MGroupMemberTableRow;

// A member under `change`, an element unless told otherwise.
struct FlagCase {
    const char* name;
    std::function<void(PIFRows&, Member*)> change;
    uint32_t set;
    uint32_t clear;
};

void setAlignment(PIFRows& rows, Member* member, int32_t alignment, Enums::MAlignmentUnitsEnum units,
                  int32_t leading, int32_t trailing) {
    auto* row = rows.message.mutable_alignment_table()->add_row();
    row->set_ialignment(alignment);
    row->set_ialignmentunits(units);
    row->set_ileadingskipbytes(leading);
    row->set_itrailingskipbytes(trailing);
    row->set_ifillbyteindex(-1);
    member->set_ialignmentid(0);
}

void setLength(PIFRows& rows, Member* member, Enums::MLengthKindEnum kind, int32_t length,
               int32_t expression) {
    auto* row = rows.message.mutable_length_scheme_table()->add_row();
    row->set_ilengthkind(kind);
    row->set_ilength(length);
    row->set_ilengthexprindex(expression);
    row->set_ilengthschemeid(77);  // the position counts
    member->set_ilengthschemeid(1);
}

PIF::MTextMarkupTableRow* setMarkup(PIFRows& rows, Member* member) {
    member->set_itextmarkupid(1);
    return rows.markup();
}

void setOccurs(PIFRows& rows, Member* member, int32_t least, int32_t most, Enums::MOccursCountKindEnum kind,
               int32_t expression = -1) {
    auto* row = rows.message.mutable_occurs_scheme_table()->add_row();
    row->set_ioccurscountkind(kind);
    row->set_ioccurscountexprindex(expression);
    member->set_ioccursschemetableindex(0);
    member->set_min_occurs(least);
    member->set_max_occurs(most);
}

void makeGroup(PIFRows& rows, Member* member) {
    member->set_child_element_id(-1);
    member->set_child_group_id(rows.group(Enums::SEQUENCE_ORDERED));
}

constexpr uint32_t ALL_SEPARATORS =
    GM_SEPARATOR | GM_SEPARATOR_INFIX | GM_SEPARATOR_PREFIX | GM_SEPARATOR_POSTFIX;

const FlagCase FLAG_CASES[] = {
    {"no property sets no flag but the single occurrence", [](PIFRows&, Member*) {}, GM_OCCURS_FIXED,
     ~GM_OCCURS_FIXED},
    {"one byte is no alignment",
     [](PIFRows& rows, Member* member) { setAlignment(rows, member, 1, Enums::ALUNITS_BYTES, 0, 0); }, 0,
     GM_LEADING_ALIGNMENT | GM_TRAILING_ALIGNMENT},
    {"one bit is an alignment",
     [](PIFRows& rows, Member* member) { setAlignment(rows, member, 1, Enums::ALUNITS_BITS, 0, 0); },
     GM_LEADING_ALIGNMENT, GM_TRAILING_ALIGNMENT},
    {"a leading skip counts as alignment",
     [](PIFRows& rows, Member* member) { setAlignment(rows, member, 1, Enums::ALUNITS_BYTES, 3, 0); },
     GM_LEADING_ALIGNMENT, GM_TRAILING_ALIGNMENT},
    {"a trailing skip",
     [](PIFRows& rows, Member* member) { setAlignment(rows, member, 1, Enums::ALUNITS_BYTES, 0, 2); },
     GM_TRAILING_ALIGNMENT, GM_LEADING_ALIGNMENT},
    {"an explicit constant length is constant",
     [](PIFRows& rows, Member* member) { setLength(rows, member, Enums::EXPLICIT, 4, -1); },
     GM_EXPLICIT_CONSTANT_LENGTH, GM_LENGTH_NOT_CONSTANT | GM_DELIMITED_LENGTH},
    {"an explicit length of zero is not",
     [](PIFRows& rows, Member* member) { setLength(rows, member, Enums::EXPLICIT, 0, -1); },
     GM_EXPLICIT_CONSTANT_LENGTH | GM_LENGTH_NOT_CONSTANT, 0},
    {"nor is a length by expression",
     [](PIFRows& rows, Member* member) { setLength(rows, member, Enums::EXPLICIT, 4, 0); },
     GM_LENGTH_NOT_CONSTANT, GM_EXPLICIT_CONSTANT_LENGTH},
    {"a prefixed length",
     [](PIFRows& rows, Member* member) { setLength(rows, member, Enums::PREFIXED, 0, -1); },
     GM_PREFIXED_LENGTH, GM_LENGTH_NOT_CONSTANT},
    {"up to the parent's end is delimited",
     [](PIFRows& rows, Member* member) { setLength(rows, member, Enums::END_OF_PARENT, 0, -1); },
     GM_DELIMITED_LENGTH | GM_LENGTH_NOT_CONSTANT, 0},
    {"a delimited group has no delimited length of its own",
     [](PIFRows& rows, Member* member) {
         makeGroup(rows, member);
         setLength(rows, member, Enums::DELIMITED, 0, -1);
     },
     GM_LENGTH_NOT_CONSTANT, GM_DELIMITED_LENGTH},
    {"an initiator that is always there",
     [](PIFRows& rows, Member* member) { setMarkup(rows, member)->set_iinitiatorindex(rows.literal("[")); },
     GM_INITIATOR, GM_INITIATOR_OPTIONAL | GM_TERMINATOR},
    {"an initiator that an empty value lacks",
     [](PIFRows& rows, Member* member) {
         auto* markup = setMarkup(rows, member);
         markup->set_iinitiatorindex(rows.literal("["));
         markup->set_iemptyvaluedelimiterpolicy(Enums::DP_TERMINATOR_ONLY);
     },
     GM_INITIATOR | GM_INITIATOR_OPTIONAL, 0},
    {"a terminator that a nil value lacks",
     [](PIFRows& rows, Member* member) {
         setMarkup(rows, member)->set_iterminatorexprindex(0);
         auto* nil = rows.message.mutable_nil_scheme_table()->add_row();
         nil->set_inilvaluedelimiterpolicy(Enums::DP_INITIATOR_ONLY);
         member->set_inilschemeindex(0);
     },
     GM_TERMINATOR | GM_TERMINATOR_OPTIONAL, GM_INITIATOR},
    {"an element has no separator",
     [](PIFRows& rows, Member* member) { setMarkup(rows, member)->set_iseparatorindex(rows.literal(",")); },
     0, ALL_SEPARATORS},
    {"a group with a postfix separator",
     [](PIFRows& rows, Member* member) {
         makeGroup(rows, member);
         auto* markup = setMarkup(rows, member);
         markup->set_iseparatorindex(rows.literal(","));
         markup->set_iseparatorposition(Enums::POSTFIX);
     },
     GM_SEPARATOR | GM_SEPARATOR_POSTFIX, GM_SEPARATOR_INFIX | GM_SEPARATOR_PREFIX | GM_OCCURS_FIXED},
    {"a literal beyond the table is none",
     [](PIFRows& rows, Member* member) { setMarkup(rows, member)->set_iinitiatorindex(9); }, 0, GM_INITIATOR},
    {"occurrences by expression",
     [](PIFRows& rows, Member* member) { setOccurs(rows, member, 0, 5, Enums::OCK_EXPRESSION, 0); },
     GM_OCCURS_EXPRESSION | GM_NOT_SINGLE, GM_OCCURS_FIXED},
    {"an open count is no expression",
     [](PIFRows& rows, Member* member) { setOccurs(rows, member, 0, 5, Enums::OCK_EXPRESSION, -2); },
     GM_NOT_SINGLE, GM_OCCURS_EXPRESSION},
};

TEST(MemberFlags, EachFollowsFromItsRows) {
    for (const FlagCase& test : FLAG_CASES) {
        PIFRows rows;
        Member* member = rows.member(-1, 1);
        member->set_child_element_id(rows.element("e")->element_id());
        test.change(rows, member);
        LoadedGrammar grammar(rows);
        ASSERT_NE(grammar.pif, nullptr) << test.name;
        const uint32_t flags = grammar.member(0)->flags & ~(GM_SUPPRESSABLE | GM_SUPPRESSABLE_KNOWN);
        EXPECT_EQ(flags & test.set, test.set) << test.name;
        EXPECT_EQ(flags & test.clear, 0U) << test.name;
    }
}

TEST(MemberFlags, EffectiveOccursFollowTheKindOfCount) {
    const struct {
        int32_t least, most;
        Enums::MOccursCountKindEnum kind;
        int32_t expression, effectiveLeast, effectiveMost;
    } cases[] = {{1, 1, Enums::OCK_PARSED, -1, 1, 1},     {2, 4, Enums::OCK_FIXED, -1, 4, 4},
                 {2, 4, Enums::OCK_PARSED, -1, 0, -1},    {2, 4, Enums::OCK_STOPVALUE, -1, 0, -1},
                 {2, 4, Enums::OCK_IMPLICIT, -1, 2, 4},   {2, 4, Enums::OCK_EXPRESSION, -2, 0, 4},
                 {2, 4, Enums::OCK_EXPRESSION, -1, 0, 0}, {2, 4, Enums::OCK_EXPRESSION, 0, 0, -1}};
    for (const auto& test : cases) {
        PIFRows rows;
        setOccurs(rows, rows.member(-1, 1), test.least, test.most, test.kind, test.expression);
        LoadedGrammar grammar(rows);
        EXPECT_EQ(grammar.member(0)->effectiveMinOccurs, test.effectiveLeast) << test.kind << test.expression;
        EXPECT_EQ(grammar.member(0)->effectiveMaxOccurs, test.effectiveMost) << test.kind << test.expression;
    }
}

TEST(MemberFlags, OnlyMembersThatCanMissAtTheEndAreTrailingOptional) {
    const struct {
        int32_t lastMost, lastLeast;
        bool last, first;
    } cases[] = {{3, 1, true, false}, {1, 1, false, false}, {1, 0, true, true}, {-1, 1, true, false}};
    for (const auto& test : cases) {
        PIFRows rows;
        const int32_t group = rows.group(Enums::SEQUENCE_ORDERED);
        rows.member(group, 1)->set_child_element_id(1);
        rows.member(group, 2)->set_child_element_id(2);
        rows.message.mutable_group_member_table()->mutable_row(0)->set_min_occurs(0);
        auto* last = rows.message.mutable_group_member_table()->mutable_row(1);
        last->set_min_occurs(test.lastLeast);
        last->set_max_occurs(test.lastMost);
        LoadedGrammar grammar(rows);
        EXPECT_EQ(GroupMemberTableRow_has(grammar.member(1), GM_TRAILING_OPTIONAL), test.last)
            << test.lastMost;
        EXPECT_EQ(GroupMemberTableRow_has(grammar.member(0), GM_TRAILING_OPTIONAL), test.first)
            << test.lastMost;
    }
}

// An element of content `kind` with two members, of which `defaults` have one.
bool complexHasDefault(Enums::MPhysicalTypeEnum kind, int defaults) {
    PIFRows rows;
    const int32_t content = rows.group(Enums::COMPLEX_TYPE);
    const int32_t model = rows.group(Enums::SEQUENCE_ORDERED);
    Member* root = rows.member(-1, 1);
    root->set_child_element_id(rows.element("root")->element_id());
    root->set_child_group_id(content);
    Member* holder = rows.member(content, 1);
    holder->set_child_group_id(model);
    holder->set_iphysicaltype(kind);
    for (int index = 0; index < 2; ++index) {
        auto* element = rows.element("e");
        element->set_defaultvalueindex(index < defaults ? 0 : -1);
        rows.member(model, index + 1)->set_child_element_id(element->element_id());
    }
    LoadedGrammar grammar(rows);
    return GroupMemberTableRow_has(grammar.member(0), GM_HAS_DEFAULT);
}

TEST(MemberFlags, SequencesNeedAllDefaultsAndChoicesOne) {
    EXPECT_FALSE(complexHasDefault(Enums::GROUP_SEQUENCE, 1));
    EXPECT_TRUE(complexHasDefault(Enums::GROUP_SEQUENCE, 2));
    EXPECT_FALSE(complexHasDefault(Enums::GROUP_CHOICE, 0));
    EXPECT_TRUE(complexHasDefault(Enums::GROUP_CHOICE, 1));
    EXPECT_FALSE(complexHasDefault(Enums::GROUP_FLOATING, 2));
}

// Nests a group in a group `depth` times; the last one is empty or, in a circle, the first again.
void nestGroups(PIFRows& rows, int depth, bool circle) {
    for (int index = 0; index < depth; ++index) rows.group(Enums::SEQUENCE_ORDERED);
    for (int index = 1; index < depth; ++index) rows.member(index, 1)->set_child_group_id(index + 1);
    if (circle) rows.member(depth, 1)->set_child_group_id(1);
}

TEST(MemberFlags, DeepNestingAndCirclesEnd) {
    PIFRows deep;
    nestGroups(deep, 200000, false);
    LoadedGrammar grammar(deep);
    EXPECT_TRUE(GroupMemberTableRow_has(grammar.member(0), GM_SUPPRESSABLE));
    PIFRows round;
    nestGroups(round, 3, true);
    LoadedGrammar circle(round);
    EXPECT_FALSE(GroupMemberTableRow_has(circle.member(0), GM_SUPPRESSABLE));
}

}  // namespace
