// Records of binary fields: what the parser takes for a field, beside loops written by hand that read, check
// and deliver the same fields with the same three calls.
#include <charconv>
#include <cstring>
#include <string_view>

#include "parserbench.h"
#include "support/grammarbuilder.h"

namespace {

using Enums = PIF::MPIFEnums;

constexpr int32_t RECORDS = 20000;

class Random {
  public:
    uint32_t next() { return state_ = state_ * 1664525U + 1013904223U; }
    uint32_t below(uint32_t bound) { return (next() >> 8) % bound; }

  private:
    uint32_t state_ = 12345;
};

// ---- 64 bytes: integers of 1, 2, 4 and 8 bytes, a float, a double and a length-prefixed text ------------

constexpr int64_t TEXT_BYTES = 16;
constexpr int64_t NUMBER_FIELDS = 12;

std::string makeNumbers() {
    std::string data;
    Random random;
    const auto append = [&](int bytes) {
        for (int i = 0; i < bytes; ++i) data.push_back(static_cast<char>(random.below(256)));
    };
    for (int32_t record = 0; record < RECORDS; ++record) {
        append(1 + 1 + 2 + 2 + 4 + 4 + 4 + 8 + 8);
        append(3);
        data.push_back(
            static_cast<char>(random.below(128)));  // no NaN: the sign and exponent byte comes last
        append(7);
        data.push_back(static_cast<char>(random.below(127)));
        data.push_back(static_cast<char>(TEXT_BYTES));
        data.push_back('\0');
        for (int64_t i = 0; i < TEXT_BYTES; ++i) data.push_back(static_cast<char>('a' + random.below(26)));
    }
    return data;
}

const std::string& numbers() {
    static const std::string data = makeNumbers();
    return data;
}

DFDLGrammar* makeNumberGrammar() {
    struct Member {
        const char* kind;
        int32_t bytes;
    };
    constexpr Member MEMBERS[] = {{"UNSIGNEDBYTE", 1}, {"BYTE", 1},  {"UNSIGNEDSHORT", 2}, {"SHORT", 2},
                                  {"INT", 4},          {"INT", 4},   {"UNSIGNEDINT", 4},   {"LONG", 8},
                                  {"UNSIGNEDLONG", 8}, {"FLOAT", 4}, {"DOUBLE", 8}};
    GrammarBuilder builder;
    const auto prefix = builder.number("prefix", "UNSIGNEDSHORT").bytes(2).littleEndian();
    auto file = builder.complexElement("file");
    auto record = file.complexElement("record").occurs(RECORDS, RECORDS).occursFixed();
    for (const Member& member : MEMBERS)
        record.number("field", member.kind).bytes(member.bytes).littleEndian();
    record.text("text").encoding("UTF-8").prefixed(prefix);
    return builder.load();
}

// Reads on from field to field.
class Reader {
  public:
    explicit Reader(const std::string& data) : data_(data.data()) {}

    int64_t at() const { return at_; }
    const char* bytes() const { return data_ + at_; }
    void pass(int64_t bytes) { at_ += bytes; }
    template <class Number>
    Number take() {
        Number number;
        std::memcpy(&number, bytes(), sizeof number);
        pass(sizeof number);
        return number;
    }

  private:
    const char* data_;
    int64_t at_ = 0;
};

template <class Number>
void numberByHand(HandEvents* events, Reader* reader) {
    events->start(u"field", reader->at());
    events->number(reader->take<Number>());
    events->end(reader->at());
}

void numbersByHand(benchmark::State& state) {
    HandEvents events;
    for (auto step : state) {
        Reader reader(numbers());
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(u"record", reader.at());
            numberByHand<uint8_t>(&events, &reader);
            numberByHand<int8_t>(&events, &reader);
            numberByHand<uint16_t>(&events, &reader);
            numberByHand<int16_t>(&events, &reader);
            numberByHand<int32_t>(&events, &reader);
            numberByHand<int32_t>(&events, &reader);
            numberByHand<uint32_t>(&events, &reader);
            numberByHand<int64_t>(&events, &reader);
            numberByHand<uint64_t>(&events, &reader);
            numberByHand<float>(&events, &reader);
            numberByHand<double>(&events, &reader);
            const int64_t length = reader.take<uint16_t>();
            events.field(u"text", reader.bytes(), reader.bytes() + length, reader.at());
            reader.pass(length);
            events.end(reader.at());
        }
    }
    reportFields(state, RECORDS * NUMBER_FIELDS, numbers().size());
    keep(events.sink());
}

void numbersParse(benchmark::State& state, bool inBuffers) {
    benchParser(state, makeNumberGrammar(), numbers(), RECORDS * NUMBER_FIELDS, inBuffers);
}

// ---- Packed and BCD ------------------------------------------------------------------------------------

struct PackedField {
    bool isPacked;  // else BCD
    int32_t bytes;
    const char* kind;
    int32_t places;  // of a decimal
};
constexpr PackedField PACKED_FIELDS[] = {
    {true, 3, "INT", 0},  {true, 5, "LONG", 0}, {true, 8, "DECIMAL", 2}, {true, 4, "DECIMAL", 2},
    {false, 2, "INT", 0}, {false, 4, "INT", 0}, {false, 8, "LONG", 0},   {false, 6, "DECIMAL", 2}};

std::string makePacked() {
    std::string data;
    Random random;
    for (int32_t record = 0; record < RECORDS; ++record) {
        for (const PackedField& field : PACKED_FIELDS) {
            for (int32_t i = 0; i < field.bytes; ++i)
                data.push_back(static_cast<char>(random.below(10) << 4 | random.below(10)));
            if (!field.isPacked) continue;
            data.back() = static_cast<char>((data.back() & 0xF0) | (random.below(3) == 0 ? 0xD : 0xC));
            data[data.size() - static_cast<size_t>(field.bytes)] |= 1;  // a negative one is not zero
        }
    }
    return data;
}

const std::string& packedRecords() {
    static const std::string data = makePacked();
    return data;
}

DFDLGrammar* makePackedGrammar() {
    GrammarBuilder builder;
    auto file = builder.complexElement("file");
    auto record = file.complexElement("record").occurs(RECORDS, RECORDS).occursFixed();
    for (const PackedField& field : PACKED_FIELDS) {
        auto member = record.number("field", field.kind).bytes(field.bytes);
        auto* row =
            builder.pif().mutable_binary_number_table()->mutable_row(member.row().iphysicaltypeindex());
        row->set_ibinarynumberrepresentation(field.isPacked ? Enums::PACKED : Enums::BCD);
        row->set_ibinarydecimalvirtualpoint(field.places);
        row->set_ipackedsigncodes(0xCDFC);
    }
    return builder.load();
}

// The digits and the sign of a field, as a careful user reads them; false for what is neither.
bool readDigits(const PackedField& field, const char* bytes, int64_t* value) {
    int64_t total = 0;
    const int32_t nibbles = 2 * field.bytes - (field.isPacked ? 1 : 0);
    for (int32_t i = 0; i < nibbles; ++i) {
        const auto byte = static_cast<uint8_t>(bytes[i / 2]);
        const int digit = i % 2 == 0 ? byte >> 4 : byte & 15;
        if (digit > 9) return false;
        total = total * 10 + digit;
    }
    *value = total;
    if (!field.isPacked) return true;
    const int sign = bytes[field.bytes - 1] & 15;
    if (sign == 0xD) *value = -total;
    return sign == 0xC || sign == 0xD || sign == 0xF;
}

// "-123.45"
std::string_view writeDecimal(int64_t value, int32_t places, char* text) {
    char digits[24];
    char* end = std::to_chars(digits, digits + sizeof digits, value < 0 ? -value : value).ptr;
    char* next = text;
    if (value < 0) *next++ = '-';
    for (const char* digit = digits; digit < end; ++digit) {
        if (digit == end - places) *next++ = '.';
        *next++ = *digit;
    }
    *next = '\0';
    return {text, static_cast<size_t>(next - text)};
}

void deliverPacked(HandEvents* events, const PackedField& field, int64_t value) {
    char text[32];
    if (field.places != 0) {
        const std::string_view decimal = writeDecimal(value, field.places, text);
        events->decimal(decimal.data(), static_cast<int32_t>(decimal.size()));
    } else if (std::strcmp(field.kind, "INT") == 0) {
        events->number(static_cast<int32_t>(value));
    } else {
        events->number(value);
    }
}

void packedByHand(benchmark::State& state) {
    HandEvents events;
    for (auto step : state) {
        int64_t at = 0;
        for (int32_t record = 0; record < RECORDS; ++record) {
            events.start(u"record", at);
            for (const PackedField& field : PACKED_FIELDS) {
                int64_t value = 0;
                events.start(u"field", at);
                if (!readDigits(field, packedRecords().data() + at, &value)) std::abort();
                deliverPacked(&events, field, value);
                at += field.bytes;
                events.end(at);
            }
            events.end(at);
        }
    }
    reportFields(state, RECORDS * std::ssize(PACKED_FIELDS), packedRecords().size());
    keep(events.sink());
}

void packedParse(benchmark::State& state, bool inBuffers) {
    benchParser(state, makePackedGrammar(), packedRecords(), RECORDS * std::ssize(PACKED_FIELDS), inBuffers);
}

BENCHMARK(numbersByHand)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(numbersParse, inPlace, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(numbersParse, inBuffers, true)->Unit(benchmark::kMillisecond);
BENCHMARK(packedByHand)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(packedParse, inPlace, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(packedParse, inBuffers, true)->Unit(benchmark::kMillisecond);

}  // namespace
