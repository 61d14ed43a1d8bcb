#include <dfdl/dfdl.h>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/processor/dfdlparserimpl.h"

namespace {

constexpr int SETTER_FAILED = 1;

// A setter that runs out of memory has failed.
template <class Setter>
int runSetter(Setter setter) {
    try {
        return setter();
    } catch (const AllocationFailure&) {
        return SETTER_FAILED;
    }
}

}  // namespace

DFDLParser* new_DFDLParser(DFDLHeap* heap) {
    try {
        return new_DFDLParserImpl(heap);
    } catch (const AllocationFailure&) {
        return nullptr;
    }
}

void delete_DFDLParser(DFDLParser* parser) { delete_DFDLParserImpl(parser); }

int DFDLParser_setGrammar(DFDLParser* parser, DFDLGrammar* grammar) {
    return runSetter([&] { return DFDLParserImpl_setGrammar(parser, grammar); });
}

int DFDLParser_setDocumentHandler(DFDLParser* parser, DFDLDocHandler* handler) {
    return DFDLParserImpl_setDocumentHandler(parser, handler);
}

int DFDLParser_setErrorHandler(DFDLParser* parser, DFDLErrorHandler* handler) {
    return DFDLParserImpl_setErrorHandler(parser, handler);
}

int DFDLParser_setRegionHandler(DFDLParser* parser, DFDLRegionHandler* handler) {
    return DFDLParserImpl_setRegionHandler(parser, handler);
}

int DFDLParser_setServiceTraceHandler(DFDLParser* parser, DFDLServiceTraceHandler* handler) {
    return runSetter([&] { return DFDLParserImpl_setServiceTraceHandler(parser, handler); });
}

int DFDLParser_setUserTraceHandler(DFDLParser* parser, DFDLUserTraceHandler* handler) {
    return runSetter([&] { return DFDLParserImpl_setUserTraceHandler(parser, handler); });
}

int DFDLParser_setMessageHeap(DFDLParser* parser, DFDLHeap* heap) {
    return runSetter([&] { return DFDLParserImpl_setMessageHeap(parser, heap); });
}

int DFDLParser_setBufferHandler(DFDLParser* parser, DFDLBufferHandler* handler) {
    return runSetter([&] { return DFDLParserImpl_setBufferHandler(parser, handler); });
}

int DFDLParser_setInputDocument(DFDLParser* parser, const uint8_t* bytes, DFDLWORD length) {
    return runSetter([&] { return DFDLParserImpl_setInputDocument(parser, bytes, length); });
}

int DFDLParser_setRootElement(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri) {
    return runSetter([&] { return DFDLParserImpl_setRootElement(parser, name, namespaceUri); });
}

int DFDLParser_setFeature(DFDLParser* parser, const char* feature, DFDLBoolean value) {
    return DFDLParserImpl_setFeature(parser, feature, value != 0);
}

int DFDLParser_getFeature(DFDLParser* parser, const char* feature, DFDLBoolean* value) {
    return DFDLParserImpl_getFeature(parser, feature, value);
}

int DFDLParser_setTraceAndErrorLanguage(DFDLParser* parser, const char* language) {
    return runSetter([&] { return DFDLParserImpl_setTraceAndErrorLanguage(parser, language); });
}

int DFDLParser_parseAll(DFDLParser* parser, int* result) { return DFDLParserImpl_parseAll(parser, result); }

int DFDLParser_hasNext(DFDLParser* parser, int* result) { return DFDLParserImpl_hasNext(parser, result); }

int DFDLParser_parseNext(DFDLParser* parser, int* result) { return DFDLParserImpl_parseNext(parser, result); }

int DFDLParser_parseRemaining(DFDLParser* parser, int* result) {
    return DFDLParserImpl_parseRemaining(parser, result);
}

int DFDLParser_resetParser(DFDLParser* parser) { return DFDLParserImpl_resetParser(parser); }
