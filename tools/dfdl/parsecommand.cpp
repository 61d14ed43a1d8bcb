#include "parsecommand.h"

#include <dfdl/dfdl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "diagnostics.h"
#include "eventwriter.h"
#include "inputs.h"
#include "output.h"
#include "text.h"
#include "variables.h"
#include "xmlwriter.h"

namespace {

// An object of the library, ended by its own function.
template <auto Delete>
struct Deleter {
    void operator()(auto* object) const { Delete(object); }
};
template <class T, auto Delete>
using Handle = std::unique_ptr<T, Deleter<Delete>>;

// Everything one run works with, in the order in which it is made: what is used stands before its users.
struct Run {
    const ParseOptions& options;
    Output output;
    Input input;
    Handle<EventWriter, delete_EventWriter> events;
    Handle<XmlWriter, delete_XmlWriter> xml;
    Handle<Diagnostics, delete_Diagnostics> diagnostics;
    Handle<DFDLUserTraceHandler, delete_DFDLUserTraceHandler> userTrace;
    Handle<DFDLServiceTraceHandler, delete_DFDLServiceTraceHandler> serviceTrace;
    Handle<DFDLGrammar, delete_DFDLGrammar> grammar;
    Handle<DFDLParser, delete_DFDLParser> parser;

    ~Run() {
        parser.reset();
        Input_close(&input);
    }
};

Status complain(Status status, const std::string& message) {
    fprintf(stderr, "dfdl: %s\n", message.c_str());
    return status;
}

Status outOfMemory() { return complain(STATUS_PARSE_FAILED, "out of memory"); }

const char* grammarFailure(int code) {
    switch (code) {
        case DFDL_GRAMMAR_NO_MEMORY:
            return "out of memory";
        case DFDL_GRAMMAR_VERSION:
            return "its format is newer than this version understands";
        case DFDL_GRAMMAR_NOT_A_PIF:
            return "it is not a compiled grammar";
        case DFDL_GRAMMAR_CANNOT_OPEN:
            return "it cannot be opened";
        default:
            return "it cannot be loaded";
    }
}

Status loadGrammar(Run& run) {
    int code = 0;
    const std::string& path = run.options.grammar;
    run.grammar.reset(new_DFDLGrammarFromFile(nullptr, path.c_str(), run.serviceTrace.get(), &code));
    if (run.grammar != nullptr) return STATUS_PARSED;
    return complain(STATUS_GRAMMAR,
                    path + ": " + grammarFailure(code) + " (code " + std::to_string(code) + ")");
}

bool makeHandlers(Run& run) {
    const ParseOptions& options = run.options;
    run.diagnostics.reset(new_Diagnostics(&run.output));
    if (run.diagnostics == nullptr) return false;
    if (options.format == "events") {
        run.events.reset(new_EventWriter(&run.output));
        if (run.events == nullptr) return false;
        run.diagnostics->events = run.events.get();
    } else {
        run.xml.reset(new_XmlWriter(&run.output));
        if (run.xml == nullptr) return false;
    }
    if (options.trace == "user") run.userTrace.reset(newUserTrace());
    if (options.trace == "service") run.serviceTrace.reset(newServiceTrace());
    return (options.trace != "user" || run.userTrace != nullptr) &&
           (options.trace != "service" || run.serviceTrace != nullptr);
}

void attachHandlers(Run& run) {
    DFDLParser* parser = run.parser.get();
    DFDLParser_setErrorHandler(parser, run.diagnostics->errors);
    DFDLParser_setDocumentHandler(parser, run.events != nullptr ? run.events->document : run.xml->document);
    if (run.options.regions && run.events != nullptr) {
        DFDLParser_setRegionHandler(parser, run.events->regions);
    }
    if (run.serviceTrace != nullptr) DFDLParser_setServiceTraceHandler(parser, run.serviceTrace.get());
    if (run.userTrace != nullptr) DFDLParser_setUserTraceHandler(parser, run.userTrace.get());
}

void setFeatures(Run& run) {
    const ParseOptions& options = run.options;
    // What follows a message is the next one.
    const bool ignoreTrailingData = options.ignoreTrailingData || options.repeat;
    DFDLParser* parser = run.parser.get();
    DFDLParser_setFeature(parser, DFDL_FEATURE_VALIDATION, options.validate ? 1 : 0);
    DFDLParser_setFeature(parser, DFDL_FEATURE_IGNORE_TRAILING_DATA, ignoreTrailingData ? 1 : 0);
    DFDLParser_setFeature(parser, DFDL_FEATURE_FAST_SMALL_INTEGERS, options.fastSmallIntegers ? 1 : 0);
}

Status setRoot(Run& run) {
    const auto name = toUtf16(run.options.root);
    const auto namespaceUri = toUtf16(run.options.namespaceUri);
    if (!name || !namespaceUri) return complain(STATUS_USAGE, "the root element's name is not UTF-8");
    DFDLParser_setRootElement(run.parser.get(), name->c_str(), namespaceUri->c_str());
    return STATUS_PARSED;
}

Status configure(Run& run) {
    const ParseOptions& options = run.options;
    run.parser.reset(new_DFDLParser(nullptr));
    if (run.parser == nullptr) return outOfMemory();
    attachHandlers(run);
    if (!options.language.empty()) {
        const int result = DFDLParser_setTraceAndErrorLanguage(run.parser.get(), options.language.c_str());
        if (result != 0)
            return complain(STATUS_USAGE, "--language " + options.language + ": no such language");
    }
    if (DFDLParser_setGrammar(run.parser.get(), run.grammar.get()) != 0) return STATUS_GRAMMAR;
    setFeatures(run);
    std::string message;
    const int told = run.diagnostics->count;
    const bool set = setVariables(run.parser.get(), options.grammar, options.assignments, message);
    if (!message.empty()) return complain(STATUS_USAGE, message);
    if (!set || run.diagnostics->count != told) return STATUS_USAGE;
    return setRoot(run);
}

Status openFiles(Run& run) {
    const ParseOptions& options = run.options;
    if (!Input_open(&run.input, options.input, options.chunk)) {
        return complain(STATUS_USAGE, options.input + ": " + strerror(errno));
    }
    if (!Output_open(&run.output, options.output)) {
        return complain(STATUS_USAGE, options.output + ": " + strerror(errno));
    }
    run.input.flushFirst = &run.output;
    Input_attach(&run.input, run.parser.get());
    return STATUS_PARSED;
}

bool parseByStep(DFDLParser* parser) {
    int result = 1;
    bool good = true;
    while (good && DFDLParser_hasNext(parser, &result) == 1)
        good = DFDLParser_parseNext(parser, &result) == 1;
    DFDLParser_resetParser(parser);
    return good && result == 0;
}

bool parseOne(Run& run) {
    int result = 1;
    return run.options.step ? parseByStep(run.parser.get())
                            : DFDLParser_parseAll(run.parser.get(), &result) == 1;
}

DFDLWORD bytesOfMessage(const Run& run) { return run.events != nullptr ? run.events->bytes : run.xml->bytes; }

bool isUsedUp(Run& run, size_t done) {
    return run.input.handler != nullptr ? Input_isUsedUp(&run.input) : done >= run.input.documentSize;
}

Status parseMessages(Run& run) {
    if (!run.options.repeat) return parseOne(run) ? STATUS_PARSED : STATUS_PARSE_FAILED;
    for (size_t done = 0; !isUsedUp(run, done);) {
        if (!parseOne(run)) return STATUS_PARSE_FAILED;
        const DFDLWORD bytes = bytesOfMessage(run);
        if (bytes <= 0) {
            return complain(STATUS_PARSE_FAILED,
                            "a message took no byte of the input: it would repeat for ever");
        }
        done += static_cast<size_t>(bytes);
    }
    return STATUS_PARSED;
}

Status finish(Run& run, Status status) {
    Output_close(&run.output);
    if (run.input.error != 0) {
        return complain(STATUS_USAGE, "cannot read the input: " + std::string(strerror(run.input.error)));
    }
    return status == STATUS_PARSED && run.diagnostics->validationErrors > 0 ? STATUS_INVALID : status;
}

}  // namespace

Status parseCommand(const ParseOptions& options) {
    Run run{options, {}, {}, {}, {}, {}, {}, {}, {}, {}};
    if (!makeHandlers(run)) return outOfMemory();
    for (const auto prepare : {loadGrammar, configure, openFiles}) {
        const Status status = prepare(run);
        if (status != STATUS_PARSED) return status;
    }
    return finish(run, parseMessages(run));
}
