// The short road of binary members against the plain one, on random grammars and data.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"
#include "support/randomnumbers.h"

namespace {

using Enums = PIF::MPIFEnums;

constexpr uint32_t SEED = 20261123;
constexpr int ROUNDS = 600;

class RandomRecord {
  public:
    explicit RandomRecord(uint32_t seed) : random_(seed) {}

    void fill(GrammarBuilder* builder, GrammarHandle group, int depth) {
        for (int members = 1 + below(8); members > 0; --members) {
            const int kind = below(17);
            if (kind == 0 && depth < 2) {
                auto inner = group.complexElement("g");
                const int occurs = below(4);
                if (occurs == 0) inner.occurs(0, 2).occursImplicit();
                if (occurs == 1) inner.occurs(3, 3).occursFixed();
                if (occurs == 2) inner.occurs(0, -1).occursParsed();
                const size_t start = data_.size();
                fill(builder, inner, depth + 1);
                const std::string once = data_.substr(start);
                for (int more = occurs == 1 ? 2 : below(3); more > 0; --more) append(once);
            } else if (kind == 1) {
                group.truth(name(), below(3), below(3)).bytes(1 + below(4));
                append(std::string(static_cast<size_t>(below(2)), '\0') + "\1\0\1");
            } else if (kind < 4) {
                counted(group);
            } else if (kind == 4) {
                bits(group);
            } else if (kind < 7) {
                prefixed(builder, group);
            } else if (kind == 7) {
                textNumber(group);
            } else {
                number(builder, group);
            }
        }
    }

    std::string data() {
        if (below(10) == 0) data_.resize(data_.size() * static_cast<size_t>(below(100)) / 100);
        if (below(4) == 0 && !data_.empty())
            data_[static_cast<size_t>(below(static_cast<int>(data_.size())))] = static_cast<char>(below(256));
        return data_;
    }

  private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<uint32_t>(bound)); }
    std::string name() { return "f" + std::to_string(count_++); }
    void append(const std::string& bytes) { data_ += bytes; }
    bool often() { return below(8) != 0; }

    void textNumber(GrammarHandle group) {
        const std::string digits = randomDigits(&random_);
        const auto width = digits.size() + static_cast<size_t>(below(20));
        auto field = addRandomNumber(group, name(), &random_).bytes(static_cast<int32_t>(width));
        const bool zeros = below(3) == 0;
        field = below(2) == 0 ? field.trimLeft(zeros ? "0" : "%SP;") : field.trimRight(zeros ? "0" : "%SP;");
        const std::string padding(width - digits.size(), zeros ? '0' : ' ');
        append(below(2) == 0 ? padding + digits : digits + padding);
    }

    void number(GrammarBuilder* builder, GrammarHandle group) {
        static constexpr const char* KINDS[] = {"FLOAT",
                                                "DOUBLE",
                                                "DECIMAL",
                                                "INTEGER",
                                                "LONG",
                                                "INT",
                                                "SHORT",
                                                "BYTE",
                                                "UNSIGNEDLONG",
                                                "UNSIGNEDINT",
                                                "UNSIGNEDSHORT",
                                                "UNSIGNEDBYTE",
                                                "NONNEGATIVEINTEGER"};
        static constexpr int LENGTHS[] = {4, 8, 5, 6, 8, 4, 2, 1, 8, 4, 2, 1, 7};
        const int kind = below(13);
        const bool packed = kind > 1 && below(3) == 0;
        const int length = often() ? LENGTHS[kind] : 1 + below(10);
        auto field = group.number(name(), KINDS[kind]).bytes(length);
        auto* row =
            builder->pif().mutable_binary_number_table()->mutable_row(field.row().iphysicaltypeindex());
        row->set_ibinarydecimalvirtualpoint(below(9) - 1);
        row->set_idecimalsigned(below(2) == 0);
        row->set_ibinaryfloatrepresentation(below(2) == 0 ? Enums::IEEE : Enums::ZOV390_HEX);
        row->set_ipackedsigncodes(0xCDFC);
        if (below(2) == 0) row->set_ibinarynumbercheckpolicy(Enums::BINARY_CHECK_POLICY_LAX);
        if (below(3) == 0) field.littleEndian();
        if (!packed) return append(randomBytes(length));
        const int form = below(3);
        static constexpr Enums::MBinaryNumberRepEnum FORMS[] = {Enums::BCD, Enums::PACKED,
                                                                Enums::ZOV4690_PACKED};
        row->set_ibinarynumberrepresentation(FORMS[form]);
        append(digits(length, form, row->ibyteorder() == Enums::BYTEOR_LITTLE_ENDIAN));
    }

    // Some bytes of which a field may leave some bits to none.
    void bits(GrammarHandle group) {
        const int bytes = 1 + below(4);
        int left = 8 * bytes;
        while (left > 0 && often()) {
            const int count = 1 + below(left);
            if (count <= 16 && below(4) == 0) {
                group.truth(name(), 1, 0).bits(1).alignBits(1);
                left -= 1;
            } else {
                group.number(name(), below(2) == 0 ? "INT" : "UNSIGNEDINT").bits(count).alignBits(1);
                left -= count;
            }
        }
        append(randomBytes(bytes));
    }

    void counted(GrammarHandle group) {
        const int length = 1 + below(often() ? 9 : 300);
        switch (below(4)) {
            case 0:
                group.text(name()).bytes(length).encoding("ISO-8859-1").trimRight("%SP;");
                break;
            case 1:
                group.opaque(name()).bytes(length).encoding("US-ASCII").nilCharacter("%#r00;");
                break;
            case 2:
                group.number(name(), "SHORT").bytes(1).nilLogical({"0", "7"});
                return append(randomBytes(1));
            default:
                group.opaque(name()).bytes(length);
        }
        append(below(6) == 0 ? std::string(static_cast<size_t>(length), '\0') : randomBytes(length));
    }

    void prefixed(GrammarBuilder* builder, GrammarHandle group) {
        static constexpr const char* KINDS[] = {"BYTE", "UNSIGNEDSHORT", "INT", "UNSIGNEDBYTE"};
        static constexpr int SIZES[] = {1, 2, 4, 1};
        const int kind = below(4);
        const bool included = below(3) == 0;
        const int length = often() ? below(20) : below(300);
        const auto prefix =
            often() ? builder->number(name(), KINDS[kind]).bytes(SIZES[kind]) : oddPrefix(builder);
        if (below(2) == 0) {
            group.text(name()).encoding("ISO-8859-1").trimRight("%SP;").prefixed(prefix, included);
        } else {
            group.opaque(name()).prefixed(prefix, included);
        }
        const int value = length + (included ? SIZES[kind] : 0);
        for (int byte = SIZES[kind] - 1; byte >= 0; --byte) append({static_cast<char>(value >> (8 * byte))});
        append(randomBytes(length));
    }

    // A prefix that seldom makes sense.
    GrammarHandle oddPrefix(GrammarBuilder* builder) {
        static constexpr const char* KINDS[] = {"FLOAT",   "DOUBLE",       "DECIMAL",
                                                "INTEGER", "UNSIGNEDLONG", "DATE"};
        auto prefix = builder->number(name(), KINDS[below(6)]);
        below(3) == 0 ? prefix.bits(below(70)) : prefix.bytes(below(20));
        builder->pif()
            .mutable_binary_number_table()
            ->mutable_row(prefix.row().iphysicaltypeindex())
            ->set_ibinarynumberrepresentation(static_cast<Enums::MBinaryNumberRepEnum>(below(6)));
        return prefix;
    }

    std::string randomBytes(int count) {
        std::string bytes;
        for (int i = 0; i < count; ++i) bytes += static_cast<char>(below(3) == 0 ? 0 : below(256));
        return bytes;
    }

    std::string digits(int count, int form, bool littleEndian) {
        std::string bytes;
        for (int i = 0; i < count; ++i) bytes += static_cast<char>(below(10) << 4 | below(often() ? 10 : 16));
        static constexpr char SIGNS[] = "\xC\xD\xF\xB\xA\x3";
        if (form == 1)
            bytes.back() = static_cast<char>((bytes.back() & 0xF0) | SIGNS[below(6) % (1 + below(6))]);
        if (form == 2 && below(2) == 0) bytes[0] = static_cast<char>(0xD0 | (bytes[0] & 15));
        return littleEndian ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
    }

    std::mt19937 random_;
    std::string data_;
    int count_ = 0;
};

TEST(BinaryRoads, DeliverTheSame) {
    int parsed = 0;
    for (uint32_t round = 0; round < ROUNDS; ++round) {
        RandomRecord record(SEED + round);
        GrammarBuilder builder;
        record.fill(&builder, builder.complexElement("r"), 0);
        const std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)> grammar(builder.load(),
                                                                                  delete_DFDLGrammar);
        const std::string data = record.data();
        ParserOptions options;
        options.ignoreTrailingData = true;
        options.fastSmallIntegers = round % 2 == 0;
        const ParserRun ahead = runParser(grammar.get(), u"r", data, options);
        parsed += ahead.parsed ? 1 : 0;
        for (const ParserRoad road :
             {ParserRoad{0, true}, ParserRoad{3, false}, ParserRoad{17, false}, ParserRoad{1, true}}) {
            EXPECT_EQ(ahead, runParser(grammar.get(), u"r", data, options, road))
                << "seed " << SEED + round << ", pieces of " << road.piece << ", stepped " << road.step;
        }
        options.regions = true;
        const ParserRun slow = runParser(grammar.get(), u"r", data, options);
        EXPECT_EQ(ahead.outline(), slow.outline()) << "seed " << SEED + round;
        EXPECT_EQ(ahead.diagnostics, slow.diagnostics) << "seed " << SEED + round;
    }
    EXPECT_GT(parsed, ROUNDS / 4) << "the data should fit often enough to test what is delivered";
}

}  // namespace
