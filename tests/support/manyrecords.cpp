#include "support/manyrecords.h"

#include <vector>

#include "support/examples.h"
#include "support/grammarbuilder.h"

namespace {

using namespace std::string_literals;

ManyRecords ofExample(const char* example, const char* file, int fields) {
    const auto load = [pif = examplePif(example)](DFDLHeap* heap) {
        int result = -1;
        return new_DFDLGrammarFromByteArray(heap, pif.data(), pif.size(), nullptr, &result);
    };
    return {example, load, exampleFile(file), fields};
}

// What the examples have not: numbers that no word holds, and bits next to them.
DFDLGrammar* wide(DFDLHeap* heap) {
    GrammarBuilder builder;
    auto record = builder.complexElement("file").complexElement("record").occurs(0, -1).occursParsed();
    record.number("three", "BYTE").bits(3).alignBits(1);
    record.number("thirteen", "UNSIGNEDSHORT").bits(13).alignBits(1);
    record.truth("bit", 1, 0).bits(1).alignBits(1);
    record.number("nibbles", "DECIMAL").bytes(16).packed();
    record.number("whole", "INTEGER").bytes(12).littleEndian();
    record.number("natural", "UNSIGNEDLONG").bytes(8);
    record.seconds("time", "DATETIME", "2000-01-01T00:00:00");
    record.opaque("block").bytes(100);
    return builder.load(heap);
}
std::string wideRecord() {
    std::string nibbles;
    for (int digits = 0; digits < 15; ++digits) nibbles += "\x12\x34\x56"[digits % 3];
    return "\x5F\xFF\x80"s + nibbles + "\x7D" + std::string(11, '\xEE') + '\x80' + std::string(8, '\xFF') +
           "\1\2\3\4" + std::string(100, '\xAB');
}

}  // namespace

std::span<const ManyRecords> manyRecords() {
    static const std::vector<ManyRecords> FORMATS = {
        ofExample("payroll", "payroll.dat", 2 * 13),  ofExample("prefixed", "prefixed.dat", 2 * 10),
        ofExample("zoned", "zoned.dat", 2 * 11),      ofExample("dump", "bits.dump", 3 * 8 + 6),
        ofExample("accesslog", "access.log", 3 * 9),  ofExample("stamps", "stamps.log", 15),
        ofExample("pricelist", "prices.csv", 3 * 13), {"wide", wide, wideRecord(), 8},
    };
    return FORMATS;
}
