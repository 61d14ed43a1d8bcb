#include <dfdl/dfdl.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdint>

#include "grammarcommands.h"
#include "parsecommand.h"

namespace {

void addParseOptions(CLI::App& command, ParseOptions& o) {
    command.add_option("-g,--grammar", o.grammar, "The compiled grammar")->required();
    command.add_option("-r,--root", o.root, "Name of the root element")->required();
    command.add_option("-n,--namespace", o.namespaceUri, "Namespace of the root element");
    command.add_option("INPUT", o.input, "File to parse; standard input if it is - or left out");
    command.add_option("-o,--output", o.output, "File for the result, in place of standard output");
    command.add_option("-f,--format", o.format, "xml, or events: one JSON object a line for every callback")
        ->check(CLI::IsMember({"xml", "events"}))
        ->capture_default_str();
    command.add_flag("--validate", o.validate, "Check values and occurrences against the schema");
    command.add_flag("--ignore-trailing-data", o.ignoreTrailingData, "Let data follow the message");
    command.add_flag("--fast-small-integers", o.fastSmallIntegers,
                     "Deliver integers of up to 64 bits as numbers, not as digits");
    command.add_flag("--repeat", o.repeat, "Parse message after message until the input is used up");
    command.add_option("--set", o.assignments, "NAME=VALUE or {NAMESPACE}NAME=VALUE: an external variable")
        ->allow_extra_args(false);
    command.add_option("--chunk", o.chunk, "Hand the input over in pieces of so many bytes")
        ->check(CLI::Range(int64_t{1}, INT64_MAX).description(""));
    command.add_flag("--step", o.step, "Parse step by step");
    command.add_flag("--regions", o.regions, "Show the regions of the data too (with -f events)");
    command.add_option("--trace", o.trace, "user or service: trace on standard error")
        ->check(CLI::IsMember({"user", "service"}));
    command.add_option("--language", o.language, "Language of messages and trace");
}

struct GrammarOptions {
    std::string input;
    std::string output;
};

CLI::App* addGrammarCommand(CLI::App& grammar, const char* name, const char* what, const char* inputName,
                            const char* outputName, GrammarOptions& options) {
    CLI::App* command = grammar.add_subcommand(name, what);
    command->add_option(inputName, options.input, "File to read")->required();
    command->add_option("-o,--output", options.output, "File to write, in place of standard output")
        ->option_text(outputName);
    return command;
}

}  // namespace

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);  // a reader that goes away shows when we write

    CLI::App app("Reads data by a compiled DFDL grammar.", "dfdl");
    app.set_version_flag("--version", DFDL_getBuildVersion());
    app.require_subcommand(1);
    ParseOptions options;
    CLI::App* parse = app.add_subcommand("parse", "Parse data and show them as XML or events");
    addParseOptions(*parse, options);

    CLI::App* grammar = app.add_subcommand("grammar", "Make and look at compiled grammars");
    grammar->require_subcommand(1);
    GrammarOptions files;
    CLI::App* encode =
        addGrammarCommand(*grammar, "encode", "From text to a compiled grammar", "TEXT", "PIF", files);
    CLI::App* decode =
        addGrammarCommand(*grammar, "decode", "From a compiled grammar to text", "PIF", "TEXT", files);
    CLI::App* show =
        addGrammarCommand(*grammar, "show", "A grammar as a tree of its elements", "PIF", "TEXT", files);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? STATUS_PARSED : STATUS_USAGE;
    }
    if (*encode) return encodeGrammar(files.input, files.output);
    if (*decode) return decodeGrammar(files.input, files.output);
    if (*show) return showGrammar(files.input, files.output);
    return parseCommand(options);
}
