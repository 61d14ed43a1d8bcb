#include <strings.h>

#include <cstring>
#include <iterator>
#include <limits>
#include <string>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dfdldochandler.h"
#include "dfdl/processor/dfdlparserimpl.h"
#include "dfdl/variables/variablemanager.h"

namespace {

enum SetterResult : int {
    SETTER_DONE = 0,
    SETTER_FAILED = 1,
    SETTER_REFUSED = 2,
    SETTER_UNKNOWN_FEATURE = 3,
    SETTER_UNKNOWN_LANGUAGE = 7
};

constexpr const char* FATAL_NO_RESOURCES = "Fatal error: DFDL resources could not be loaded";

bool isRefused(const DFDLParserImpl* parser) { return parser->parseInProgress != 0; }

int changed(DFDLParserImpl* parser) {
    parser->hasNextStage = DFDLParserImpl_hasNextWithSetup;
    return SETTER_DONE;
}

struct Feature {
    const char* identifier;
    uint32_t DFDLParserImpl::*flag;
};

constexpr Feature FEATURES[] = {
    {DFDL_FEATURE_VALIDATION, &DFDLParserImpl::validationEnabled},
    {DFDL_FEATURE_IGNORE_TRAILING_DATA, &DFDLParserImpl::ignoreTrailingData},
    {DFDL_FEATURE_FAST_SMALL_INTEGERS, &DFDLParserImpl::fastSmallIntegers},
};

uint32_t* findFeature(DFDLParserImpl* parser, const char* identifier) {
    for (const Feature& feature : FEATURES) {
        if (identifier != nullptr && std::strcmp(identifier, feature.identifier) == 0) {
            return &(parser->*feature.flag);
        }
    }
    return nullptr;
}

constexpr const char* LANGUAGES[] = {"de", "en",    "es", "fr", "it",    "ja",    "ko",
                                     "pl", "pt_BR", "ru", "tr", "zh_TW", "zh_CN", "zh"};

bool isKnownLanguage(const char* language) {
    for (const char* known : LANGUAGES) {
        if (strcasecmp(language, known) == 0) return true;
    }
    return false;
}

DFDLUString* pooledCopy(DFDLParserImpl* parser, const UChar* text) {
    const size_t length = std::char_traits<UChar>::length(text);
    if (length >= static_cast<size_t>(std::numeric_limits<int32_t>::max()))
        DFDLHeapAdapter_refuse(parser->heap);
    return DFDLUStringPooler_getDFDLUStringFromUChars(parser->heap, text, static_cast<int32_t>(length));
}

void replaceString(DFDLParserImpl* parser, DFDLUString** slot, const UChar* text) {
    delete_DFDLUString(*slot);
    *slot = nullptr;
    if (text != nullptr) *slot = pooledCopy(parser, text);
}

void traceInputDocument(DFDLParserImpl* parser, const uint8_t* bytes, int64_t length) {
    if (parser->context->serviceTraceOn == 0) return;
    constexpr int64_t SHOWN = 10;
    const auto count = static_cast<int32_t>(bytes == nullptr ? 0 : (length < SHOWN ? length : SHOWN));
    TraceHandlerAdapter_entryData(parser->traceAdapter, "DFDLParserImpl_setInputDocument", "%B%lld", bytes,
                                  count, static_cast<long long>(length));
}

// A later grammar may lie at the same address.
void forgetGrammar(DFDLParserImpl* parser) {
    CharsetManager_reset(parser->charsetManager, true);
    if (parser->iterator != nullptr) PIFIteratorForParser_setPIF(parser->iterator, nullptr);
}

}  // namespace

int DFDLParserImpl_setGrammar(DFDLParserImpl* this_, const sPIF* grammar) {
    if (isRefused(this_)) return SETTER_REFUSED;
    if (grammar == nullptr) return SETTER_FAILED;
    ProcessingError_reset(this_->context->currentError);  // of a parse that failed before
    if (grammar != this_->grammar) forgetGrammar(this_);
    this_->grammar = grammar;
    this_->hasNextStage = DFDLParserImpl_hasNextWithSetup;
    VariableManager_setPIF(this_->variableManager, grammar);
    VariableManager_defineGlobalVariables(this_->variableManager);
    if (!ProcessingError_isSet(this_->context->currentError)) return SETTER_DONE;
    DFDLParserImpl_processError(this_);
    return SETTER_FAILED;
}

int DFDLParserImpl_setDocumentHandler(DFDLParserImpl* this_, DFDLDocHandlerImpl* handler) {
    if (isRefused(this_)) return SETTER_REFUSED;
    if (this_->ownsDocHandler != 0) delete_DoNothingDocHandler(this_->docHandler);
    this_->ownsDocHandler = 0;
    this_->docHandler = handler;
    return changed(this_);
}

int DFDLParserImpl_setErrorHandler(DFDLParserImpl* this_, DFDLErrorHandlerImpl* handler) {
    if (isRefused(this_)) return SETTER_REFUSED;
    this_->errorHandler = handler;
    return changed(this_);
}

int DFDLParserImpl_setRegionHandler(DFDLParserImpl* this_, DFDLRegionHandlerImpl* handler) {
    if (isRefused(this_)) return SETTER_REFUSED;
    this_->userRegionHandler = handler;
    return changed(this_);
}

int DFDLParserImpl_setServiceTraceHandler(DFDLParserImpl* this_, DFDLServiceTraceHandlerImpl* handler) {
    if (isRefused(this_)) return SETTER_REFUSED;
    this_->serviceTraceHandler = handler;
    TraceHandlerAdapter_setServiceTraceHandler(this_->traceAdapter, handler);
    return SETTER_DONE;
}

int DFDLParserImpl_setUserTraceHandler(DFDLParserImpl* this_, DFDLUserTraceHandlerImpl* handler) {
    if (isRefused(this_)) return SETTER_REFUSED;
    this_->userTraceHandler = handler;
    TraceHandlerAdapter_setUserTraceHandler(this_->traceAdapter, handler);
    return SETTER_DONE;
}

int DFDLParserImpl_setMessageHeap(DFDLParserImpl* this_, const DFDLHeapImpl* heap) {
    if (isRefused(this_)) return SETTER_REFUSED;
    const DFDLHeapImpl callbacks = DFDLHeap_orDefault(heap);
    DFDLHeapAdapterForMessageHeap* fresh = new_DFDLHeapAdapterForMessageHeap(
        callbacks.userData, callbacks.mallocCallback, callbacks.callocCallback, callbacks.reallocCallback,
        callbacks.freeCallback, this_->heap);
    DFDLHeapAdapterForMessageHeap* old = this_->messageHeap;
    this_->messageHeap = fresh;
    this_->hasCustomMessageHeap = heap != nullptr ? 1U : 0U;
    delete_DFDLHeapAdapterForMessageHeap(old);
    return changed(this_);
}

int DFDLParserImpl_setBufferHandler(DFDLParserImpl* this_, DFDLBufferHandlerImpl* handler) {
    if (isRefused(this_)) return SETTER_REFUSED;
    BufferManager_clear(this_->bufferManager);
    this_->bufferHandler = handler;
    this_->inputDocument = nullptr;
    this_->inputDocumentLength = 0;
    BufferManager_setBufferHandler(this_->bufferManager, handler);
    this_->streamInput = 1;
    return changed(this_);
}

int DFDLParserImpl_setInputDocument(DFDLParserImpl* this_, const uint8_t* bytes, int64_t length) {
    if (isRefused(this_)) return SETTER_REFUSED;
    traceInputDocument(this_, bytes, length);
    this_->bufferHandler = nullptr;
    BufferManager_setBufferHandler(this_->bufferManager, nullptr);
    BufferManager_clear(this_->bufferManager);
    this_->inputDocument = bytes;
    this_->inputDocumentLength = length < 0 ? 0 : length;
    this_->streamInput = 0;
    return changed(this_);
}

int DFDLParserImpl_setRootElement(DFDLParserImpl* this_, const UChar* name, const UChar* namespaceUri) {
    if (isRefused(this_)) return SETTER_REFUSED;
    replaceString(this_, &this_->rootElementName, name);
    replaceString(this_, &this_->rootElementNamespace, namespaceUri == nullptr ? u"" : namespaceUri);
    return changed(this_);
}

int DFDLParserImpl_setFeature(DFDLParserImpl* this_, const char* feature, bool value) {
    if (isRefused(this_)) return SETTER_REFUSED;
    uint32_t* flag = findFeature(this_, feature);
    if (flag == nullptr) return SETTER_UNKNOWN_FEATURE;
    *flag = value ? 1U : 0U;
    return changed(this_);
}

int DFDLParserImpl_getFeature(DFDLParserImpl* this_, const char* feature, DFDLBoolean* value) {
    const uint32_t* flag = findFeature(this_, feature);
    if (flag == nullptr) return SETTER_UNKNOWN_FEATURE;
    *value = static_cast<DFDLBoolean>(*flag);
    return SETTER_DONE;
}

int DFDLParserImpl_setTraceAndErrorLanguage(DFDLParserImpl* this_, const char* language) {
    if (isRefused(this_)) return SETTER_REFUSED;
    if (language == nullptr || !isKnownLanguage(language)) return SETTER_UNKNOWN_LANGUAGE;
    if (ResourceCatalog_setLanguage(this_->resourceCatalog, language)) return SETTER_DONE;
    DFDLParserImpl_reportFatal(this_, FATAL_NO_RESOURCES);
    return SETTER_FAILED;
}
