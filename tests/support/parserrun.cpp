#include "support/parserrun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "eventwriter.h"
#include "inputs.h"
#include "support/testheap.h"
#include "text.h"

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t start = 0; start < text.size();) {
        const size_t end = text.find('\n', start);
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

// A lone surrogate in a line is well-formed JSON that this library refuses; it shows as U+FFFD here.
nlohmann::json parseLine(std::string line) {
    for (size_t at = 0; !nlohmann::json::accept(line) && (at = line.find("\\ud", at)) != line.npos; at += 6) {
        line.replace(at, 6, "\\ufffd");
    }
    return nlohmann::json::parse(line);
}

bool drive(DFDLParser* parser, bool step, int* result) {
    if (!step) return DFDLParser_parseAll(parser, result) == 1;
    bool good = true;
    while (good && DFDLParser_hasNext(parser, result) == 1) good = DFDLParser_parseNext(parser, result) == 1;
    DFDLParser_resetParser(parser);
    return good && *result == 0;
}

void configure(DFDLParser* parser, DFDLGrammar* grammar, std::u16string_view root,
               const ParserOptions& options, const EventWriter* writer) {
    DFDLParser_setErrorHandler(parser, writer->errors);
    DFDLParser_setDocumentHandler(parser, writer->document);
    if (options.regions) DFDLParser_setRegionHandler(parser, writer->regions);
    EXPECT_EQ(DFDLParser_setGrammar(parser, grammar), 0);
    DFDLParser_setFeature(parser, DFDL_FEATURE_VALIDATION, options.validate);
    DFDLParser_setFeature(parser, DFDL_FEATURE_IGNORE_TRAILING_DATA, options.ignoreTrailingData);
    DFDLParser_setFeature(parser, DFDL_FEATURE_FAST_SMALL_INTEGERS, options.fastSmallIntegers);
    EXPECT_EQ(DFDLParser_setRootElement(parser, std::u16string(root).c_str(), options.namespaceUri.c_str()),
              0);
    if (options.prepare) options.prepare(parser);
}

void collectDiagnostics(ParserRun& run) {
    for (const std::string& line : run.events) {
        if (line.find("\"code\":") == line.npos) continue;
        const nlohmann::json event = parseLine(line);
        if (!event.contains("code")) continue;
        run.diagnostics.push_back(event["code"].get<std::string>() + ": " +
                                  event["summary"].get<std::string>());
    }
}

// ISO 8601, whatever the type; the zone as an offset where there is one.
std::string stampOf(const nlohmann::json& fields) {
    const auto at = [&fields](const char* name) { return fields[name].get<int>(); };
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", at("year"), at("month") + 1, at("day"),
                  at("hour"), at("minute"), at("second"));
    std::string stamp = text;
    if (fields.contains("microSecond") && at("microSecond") != 0) {
        std::snprintf(text, sizeof text, ".%06d", at("microSecond"));
        stamp += text;
    }
    if (!fields.contains("timeZoneOffset")) return stamp;
    const int offset = at("timeZoneOffset");
    std::snprintf(text, sizeof text, "%c%02d:%02d", offset < 0 ? '-' : '+', std::abs(offset) / 60,
                  std::abs(offset) % 60);
    return stamp + text;
}

std::string valueOf(const nlohmann::json& value) {
    if (value.is_object() && value.contains("year")) return stampOf(value);
    return value.is_string() ? value.get<std::string>() : value.dump();
}

// The same, with floating point numbers in a form that Python has as well.
std::string plainValueOf(const nlohmann::json& value) {
    if (!value.is_number_float()) return valueOf(value);
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value.get<double>());
    return text;
}

// What no grammar of the tests needs more than in one block, but for the data.
constexpr size_t MODEST_BLOCK = 1U << 21;

}  // namespace

std::string ParserRun::text() const {
    std::string all;
    for (const std::string& line : events) all += line + '\n';
    return all;
}

std::vector<std::string> ParserRun::values() const {
    std::vector<std::string> found;
    std::string name;
    for (const std::string& line : events) {
        const nlohmann::json event = parseLine(line);
        const std::string kind = event["event"];
        if (kind == "startElement") name = event["name"];
        if (kind == "value") found.push_back(name + '=' + valueOf(event["value"]));
        if (kind == "nil") found.push_back(name + "=nil");
    }
    return found;
}

std::string ParserRun::outline() const {
    constexpr char END_OF_ITEM = '\x1E';
    std::string all;
    for (const std::string& line : events) {
        const nlohmann::json event = parseLine(line);
        const std::string kind = event["event"];
        if (kind == "startElement") all += event["name"].get<std::string>() + END_OF_ITEM;
        if (kind != "value" && kind != "nil") continue;
        all.back() = '=';  // the value comes right behind the start
        if (kind == "value") all += plainValueOf(event["value"]);
        all += END_OF_ITEM;
    }
    return all;
}

std::vector<std::string> ParserRun::codes() const {
    std::vector<std::string> found;
    for (const std::string& line : diagnostics) found.push_back(line.substr(0, line.find(':')));
    return found;
}

std::ostream& operator<<(std::ostream& out, const ParserRun& run) {
    return out << "parsed " << run.parsed << ", result " << run.result << '\n' << run.text();
}

ParserRun runParser(DFDLGrammar* grammar, std::u16string_view root, std::string_view bytes,
                    const ParserOptions& options, ParserRoad road) {
    TestHeap heap;
    DFDLHeapImpl callbacks = heap.callbacks();
    // A copy of its own, so that a sanitizer sees a read behind the end.
    const std::vector<uint8_t> data(bytes.begin(), bytes.end());
    const uint8_t nothing = 0;
    Output out;
    Input input;
    EventWriter* writer = new_EventWriter(&out);
    DFDLParser* parser = new_DFDLParser(&callbacks);
    Input_set(&input, data.empty() ? &nothing : data.data(), data.size(), road.piece);
    configure(parser, grammar, root, options, writer);
    Input_attach(&input, parser);
    ParserRun run;
    run.parsed = drive(parser, road.step, &run.result);
    delete_DFDLParser(parser);
    Input_close(&input);
    delete_EventWriter(writer);
    EXPECT_EQ(heap.live, 0) << "blocks that the parser left behind";
    EXPECT_LE(heap.largest, MODEST_BLOCK + 32 * bytes.size()) << "a block for data that are not there";
    run.events = linesOf(out.text);
    collectDiagnostics(run);
    return run;
}

ParserRun runEverywhere(DFDLGrammar* grammar, std::u16string_view root, std::string_view bytes,
                        const ParserOptions& options) {
    const ParserRun whole = runParser(grammar, root, bytes, options);
    for (const bool step : {false, true}) {
        for (const size_t piece :
             {size_t{0}, size_t{1}, size_t{2}, size_t{3}, size_t{4}, size_t{5}, bytes.size()}) {
            const ParserRun other = runParser(grammar, root, bytes, options, {piece, step});
            EXPECT_EQ(whole, other) << (step ? "step by step" : "at once") << " in pieces of " << piece;
        }
    }
    return whole;
}
