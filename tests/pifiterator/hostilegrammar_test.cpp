// Grammars that are wrong in every number: the parse ends, in the same way by every road.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;

constexpr uint32_t SEED = 31337;
constexpr int ROUNDS = 1500;

// Something of everything that parses today.
void describe(GrammarBuilder* builder) {
    auto r = builder->complexElement("r");
    r.text("a").bytes(2).trimRight("%SP;").align(2);
    r.text("b").characters(2).encoding("UTF-16BE").skip(1, 1);
    auto g = r.complexElement("g").occurs(2, 2).occursFixed();
    g.text("c").implicitCharacters(1).trimBoth("0");
    g.sequence().explicitBytes(3).text("d").bytes(1).trimLeft("%#r20;");
    auto h = r.complexElement("h").explicitBytes(4).occurs(0, 2).occursImplicit();
    h.text("e").bytes(1).encoding("US-ASCII").occurs(0, -1).occursParsed();
    r.text("z").bytes(1).occurs(0, 1).occursImplicit();
}

class Mutator {
  public:
    explicit Mutator(uint32_t seed) : random_(seed) {}

    void mutate(PIF::MPIF* pif) {
        for (int changes = 1 + below(3); changes > 0; --changes) change(pif);
    }

  private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<uint32_t>(bound)); }

    int32_t number() {
        static constexpr int32_t NUMBERS[] = {-2147483647 - 1, -2, -1, 0, 1, 2, 3, 7, 12, 100, 2147483647};
        return NUMBERS[below(11)];
    }

    template <class Table>
    auto* anyRow(Table* table) {
        return table->mutable_row(below(table->row_size()));
    }

    void change(PIF::MPIF* pif) {
        switch (below(5)) {
            case 0:
                return changeMember(anyRow(pif->mutable_group_member_table()));
            case 1:
                return changeLength(anyRow(pif->mutable_length_scheme_table()));
            case 2:
                return changeAlignment(anyRow(pif->mutable_alignment_table()));
            case 3:
                return changeText(anyRow(pif->mutable_text_string_table()));
            default:
                return changeRest(pif);
        }
    }

    void changeMember(PIF::MGroupMemberTableRow* row) {
        using Setter = void (PIF::MGroupMemberTableRow::*)(int32_t);
        static constexpr Setter SETTERS[] = {&PIF::MGroupMemberTableRow::set_parent_group_id,
                                             &PIF::MGroupMemberTableRow::set_sequence_number,
                                             &PIF::MGroupMemberTableRow::set_child_element_id,
                                             &PIF::MGroupMemberTableRow::set_child_group_id,
                                             &PIF::MGroupMemberTableRow::set_min_occurs,
                                             &PIF::MGroupMemberTableRow::set_max_occurs,
                                             &PIF::MGroupMemberTableRow::set_ilengthschemeid,
                                             &PIF::MGroupMemberTableRow::set_itextstringindex,
                                             &PIF::MGroupMemberTableRow::set_ialignmentid,
                                             &PIF::MGroupMemberTableRow::set_itextmarkupid,
                                             &PIF::MGroupMemberTableRow::set_iphysicaltypeindex,
                                             &PIF::MGroupMemberTableRow::set_itextencodingindex,
                                             &PIF::MGroupMemberTableRow::set_inilschemeindex,
                                             &PIF::MGroupMemberTableRow::set_ifirstassertindex,
                                             &PIF::MGroupMemberTableRow::set_ioccursschemetableindex};
        const int which = below(17);
        if (which == 15)
            return row->set_iphysicaltype(static_cast<PIF::MPIFEnums::MPhysicalTypeEnum>(below(14)));
        if (which == 16)
            return row->set_idfdlrepresentation(static_cast<PIF::MPIFEnums::MRepresentationEnum>(below(2)));
        (row->*SETTERS[which])(number());
    }

    void changeLength(PIF::MLengthSchemeTableRow* row) {
        switch (below(4)) {
            case 0:
                return row->set_ilength(number());
            case 1:
                return row->set_ilengthexprindex(number());
            case 2:
                return row->set_ilengthkind(static_cast<PIF::MPIFEnums::MLengthKindEnum>(below(7)));
            default:
                return row->set_ilengthunits(static_cast<PIF::MPIFEnums::MLengthUnitsEnum>(below(4)));
        }
    }

    void changeAlignment(PIF::MAlignmentTableRow* row) {
        switch (below(4)) {
            case 0:
                return row->set_ialignment(number());
            case 1:
                return row->set_ileadingskipbytes(number());
            case 2:
                return row->set_itrailingskipbytes(number());
            default:
                return row->set_ialignmentunits(static_cast<PIF::MPIFEnums::MAlignmentUnitsEnum>(below(2)));
        }
    }

    void changeText(PIF::MTextStringTableRow* row) {
        static constexpr const char* PADS[] = {"", "%", "%#r00;", "%#x1F600;", "\xEF\xBF\xBF", "%NL;", "ab"};
        if (below(2) == 0) return row->set_itextpadcharacter(PADS[below(7)]);
        row->set_itextjustification(static_cast<PIF::MPIFEnums::MTextJustificationEnum>(below(3)));
    }

    void changeRest(PIF::MPIF* pif) {
        static constexpr const char* ENCODINGS[] = {"",         "UTF-8",       "UCS-2",   "UTF-32",
                                                    "nonsense", "ISO-2022-JP", "ibm-1399"};
        switch (below(4)) {
            case 0:
                return anyRow(pif->mutable_text_encoding_table())->set_iencoding(ENCODINGS[below(7)]);
            case 1:
                return anyRow(pif->mutable_element_table())->set_group_id(number());
            case 2:
                return anyRow(pif->mutable_element_table())->set_simple_type_id(number());
            default:
                return anyRow(pif->mutable_occurs_scheme_table())
                    ->set_ioccurscountkind(static_cast<PIF::MPIFEnums::MOccursCountKindEnum>(below(5)));
        }
    }

    std::mt19937 random_;
};

TEST(HostileGrammar, EndsTheParseAlikeByEveryRoad) {
    using namespace std::string_literals;
    const std::string data = "ab-\0x\0y-00d..1e..eeeeAA\xE9"s;
    int parsed = 0;
    for (uint32_t round = 0; round < ROUNDS; ++round) {
        GrammarBuilder builder;
        describe(&builder);
        PIF::MPIF pif = builder.pif();
        Mutator(SEED + round).mutate(&pif);
        const std::string bytes = pif.SerializeAsString();
        int code = -1;
        const Grammar grammar(
            new_DFDLGrammarFromByteArray(nullptr, bytes.data(), bytes.size(), nullptr, &code),
            delete_DFDLGrammar);
        ASSERT_NE(nullptr, grammar) << "seed " << SEED + round << " is refused with code " << code;
        ParserOptions options;
        options.ignoreTrailingData = true;
        const ParserRun whole = runParser(grammar.get(), u"r", data, options);
        parsed += whole.parsed ? 1 : 0;
        for (const ParserRoad road : {ParserRoad{0, true}, ParserRoad{1, false}, ParserRoad{5, true}}) {
            EXPECT_EQ(whole, runParser(grammar.get(), u"r", data, options, road))
                << "seed " << SEED + round << ", pieces of " << road.piece;
        }
    }
    EXPECT_GT(parsed, 0) << "some grammars should stay right";
}

TEST(HostileGrammar, EndsOccurrencesThatTakeNothing) {
    GrammarBuilder builder;
    builder.complexElement("r").complexElement("g").occurs(2147483647, 2147483647).occursFixed();
    const Grammar grammar(builder.load(), delete_DFDLGrammar);
    DFDLParser* parser = new_DFDLParser(nullptr);
    DFDLParser_setGrammar(parser, grammar.get());
    DFDLParser_setRootElement(parser, u"r", nullptr);
    int result = -1;
    EXPECT_EQ(0, DFDLParser_parseAll(parser, &result));
    EXPECT_EQ(1, result);
    delete_DFDLParser(parser);
}

}  // namespace
