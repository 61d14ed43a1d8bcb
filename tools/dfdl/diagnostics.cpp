#include "diagnostics.h"

#include <cstdio>
#include <string>

#include "text.h"

namespace {

void writeLine(std::string line) {
    for (char& c : line) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    line += '\n';
    fwrite(line.data(), 1, line.size(), stderr);
}

Diagnostics* report(DFDLErrorHandler* handler, const char* event, const DFDLDiagnostic* diagnostic) {
    auto* diagnostics = static_cast<Diagnostics*>(DFDLErrorHandler_getContextObject(handler));
    diagnostics->count++;
    if (diagnostics->events != nullptr) EventWriter_diagnostic(diagnostics->events, event, diagnostic);
    Output_flush(diagnostics->out);
    const DFDLChar* summary = nullptr;
    int32_t length = 0;
    DFDLDiagnostic_getSummary(diagnostic, &summary, &length);
    std::string line;
    appendUtf8(line, viewOf(DFDLDiagnostic_getCode(diagnostic)));
    line += ": ";
    appendUtf8(line, viewOf(summary, length));
    writeLine(std::move(line));
    return diagnostics;
}

// A message of user trace bears its code, a record of service trace the function that it comes from.
template <class Handler>
void writeTrace(Handler*, const DFDLTrace* trace) {
    std::string line;
    appendUtf8(line, viewOf(DFDLTrace_getMessageKey(trace)));
    if (line.empty()) appendUtf8(line, viewOf(DFDLTrace_getMethodName(trace)));
    if (!line.empty()) line += ": ";
    const DFDLChar* statement = nullptr;
    int32_t length = 0;
    DFDLTrace_getStatement(trace, &statement, &length);
    appendUtf8(line, viewOf(statement, length));
    writeLine(std::move(line));
}

}  // namespace

Diagnostics* new_Diagnostics(Output* out) {
    DFDLErrorHandler* handler = new_DFDLErrorHandler();
    if (handler == nullptr) return nullptr;
    auto* diagnostics = new Diagnostics{out, nullptr, handler, 0, 0};
    DFDLErrorHandler_setContextObject(handler, diagnostics);
    DFDLErrorHandler_setProcessingErrorCallback(handler,
                                                [](auto* h, auto* d) { report(h, "processingError", d); });
    DFDLErrorHandler_setWarningCallback(handler, [](auto* h, auto* d) { report(h, "warning", d); });
    DFDLErrorHandler_setValidationErrorCallback(
        handler, [](auto* h, auto* d) { report(h, "validationError", d)->validationErrors++; });
    DFDLErrorHandler_setSchemaDefinitionErrorCallback(
        handler, [](auto* h, auto* d) { report(h, "schemaDefinitionError", d); });
    return diagnostics;
}

void delete_Diagnostics(Diagnostics* this_) {
    if (this_ == nullptr) return;
    delete_DFDLErrorHandler(this_->errors);
    delete this_;
}

DFDLUserTraceHandler* newUserTrace() {
    DFDLUserTraceHandler* h = new_DFDLUserTraceHandler();
    if (h == nullptr) return nullptr;
    for (const auto set :
         {DFDLUserTraceHandler_setUserInfoCallback, DFDLUserTraceHandler_setUserWarningCallback,
          DFDLUserTraceHandler_setUserErrorCallback, DFDLUserTraceHandler_setUserFatalCallback}) {
        set(h, writeTrace<DFDLUserTraceHandler>);
    }
    return h;
}

DFDLServiceTraceHandler* newServiceTrace() {
    DFDLServiceTraceHandler* h = new_DFDLServiceTraceHandler();
    if (h == nullptr) return nullptr;
    for (const auto set :
         {DFDLServiceTraceHandler_setServiceInfoCallback, DFDLServiceTraceHandler_setServiceWarningCallback,
          DFDLServiceTraceHandler_setServiceErrorCallback, DFDLServiceTraceHandler_setServiceFatalCallback,
          DFDLServiceTraceHandler_setServiceEntryCallback, DFDLServiceTraceHandler_setServiceExitCallback,
          DFDLServiceTraceHandler_setServiceDetailCallback}) {
        set(h, writeTrace<DFDLServiceTraceHandler>);
    }
    return h;
}
