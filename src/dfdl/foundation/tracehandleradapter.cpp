#include "dfdl/foundation/tracehandleradapter.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <cstdio>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/insertformat.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/foundation/unprintable.h"

namespace {

using Service = DFDLServiceTraceHandlerImpl;
using User = DFDLUserTraceHandlerImpl;
using ServiceSlot = DFDLServiceTraceCallback Service::*;
using UserSlot = DFDLUserTraceCallback User::*;

constexpr int32_t INSERT_CAPACITY = 10;
// What stands in the four inserts that every placed message has is cut without a mark.
constexpr InsertStyle PLACE_INSERTS = {511, u"", u"(null)", true};

bool servesService(const TraceHandlerAdapter* adapter) {
    return adapter != nullptr && adapter->serviceHandler != nullptr && adapter->context->serviceTraceOn != 0;
}

bool servesUser(const TraceHandlerAdapter* adapter) {
    return adapter != nullptr && adapter->context->userTraceOn != 0;
}

void addInsert(TraceHandlerAdapter* adapter, DFDLUString* text) {
    ArrayList_addPointer(adapter->inserts, text);
}

void capture(TraceHandlerAdapter* adapter, const char* format, InsertArguments* arguments) {
    for (InsertPiece piece; InsertPiece_next(&format, &piece);) {
        CapturedInsert insert;
        CapturedInsert_capture(&insert, piece, arguments, adapter->heap, TRACE_INSERTS);
        if (insert.kind == INSERT_TEXT) {
            addInsert(adapter, insert.value.text);
        } else {
            addInsert(adapter,
                      CapturedInsert_toText(&insert, adapter->heap, TRACE_INSERTS, adapter->inserts->count));
        }
    }
}

// Every insert becomes an object of the record, and all of them, with blanks between, its statement.
int32_t formatData(TraceHandlerAdapter* adapter) {
    UChar* end = adapter->statementBuffer;
    const UChar* limit = adapter->statementBuffer + TRACE_STATEMENT_CAPACITY - 1;
    for (int32_t index = 0; index < adapter->inserts->count; ++index) {
        const auto* text = ArrayList_getPointer<DFDLUString>(adapter->inserts, index);
        DFDLTraceImpl_addObject(adapter->trace, text);
        if (index > 0 && end < limit) *end++ = u' ';
        end = std::copy_n(text->chars, std::min<ptrdiff_t>(text->length, limit - end), end);
    }
    *end = 0;
    return static_cast<int32_t>(end - adapter->statementBuffer);
}

void deliverPlain(TraceHandlerAdapter* adapter, const char* method, ServiceSlot slot) {
    if (!servesService(adapter)) return;
    TraceHandlerAdapter_reset(adapter);
    DFDLTraceImpl_setStatement(adapter->trace, nullptr, 0, nullptr);
    DFDLTraceImpl_setMethodName(adapter->trace, method);
    TraceHandlerAdapter_toService(adapter, slot);
}

void deliverData(TraceHandlerAdapter* adapter, const char* method, ServiceSlot slot, const char* format,
                 InsertArguments* arguments) {
    if (!servesService(adapter)) return;
    TraceHandlerAdapter_reset(adapter);
    capture(adapter, format, arguments);
    const int32_t length = formatData(adapter);
    DFDLTraceImpl_setStatement(adapter->trace, adapter->statementBuffer, length, nullptr);
    DFDLTraceImpl_setMethodName(adapter->trace, method);
    TraceHandlerAdapter_toService(adapter, slot);
    TraceHandlerAdapter_reset(adapter);
}

void deliverUser(TraceHandlerAdapter* adapter, UserSlot userSlot, ServiceSlot serviceSlot) {
    TraceHandlerAdapter_toUser(adapter, userSlot);
    TraceHandlerAdapter_toService(adapter, serviceSlot);
    TraceHandlerAdapter_reset(adapter);
}

void deliverRecord(TraceHandlerAdapter* adapter, const ProcessingError* record, UserSlot userSlot,
                   ServiceSlot serviceSlot) {
    TraceHandlerAdapter_reset(adapter);
    const UChar* text = ResourceCatalog_GetStringFromResource(adapter->resourceCatalog, record->key, nullptr);
    const int32_t length =
        ProcessingError_formatMessage(record, text, TRACE_STATEMENT_CAPACITY, adapter->statementBuffer);
    DFDLTraceImpl_setStatement(adapter->trace, adapter->statementBuffer, length, record->key);
    deliverUser(adapter, userSlot, serviceSlot);
}

void addPlace(TraceHandlerAdapter* adapter, const TraceSubject& subject) {
    UChar digits[24];
    char narrow[24];
    const int length = snprintf(narrow, sizeof narrow, "%lld", static_cast<long long>(subject.bytePosition));
    std::copy_n(narrow, length, digits);
    addInsert(adapter, InsertText_new(adapter->heap, {digits, static_cast<size_t>(length)}, PLACE_INSERTS));
    for (const UChar* text : {subject.name, subject.designator, subject.path}) {
        const std::u16string_view shown =
            text == nullptr ? PLACE_INSERTS.nullText : std::u16string_view(text);
        addInsert(adapter, InsertText_new(adapter->heap, shown, PLACE_INSERTS));
    }
}

void deliverInfo(TraceHandlerAdapter* adapter, const TraceSubject& subject, const char* key,
                 const char* format, InsertArguments* arguments) {
    TraceHandlerAdapter_reset(adapter);
    if (subject.placed) addPlace(adapter, subject);
    capture(adapter, format, arguments);
    const UChar* text = ResourceCatalog_GetStringFromResource(adapter->resourceCatalog, key, nullptr);
    const int32_t length = TraceHandlerAdapter_formatMessage(adapter, text);
    DFDLTraceImpl_setStatementWithSCDAndXPath(adapter->trace, adapter->statementBuffer, length, key,
                                              subject.designator, subject.path);
    deliverUser(adapter, &User::userInfo, &Service::serviceInfo);
}

}  // namespace

TraceHandlerAdapter* new_TraceHandlerAdapter(DFDLHeapAdapter* heap, Context* context,
                                             ResourceCatalog* catalog) {
    auto* this_ = DFDLHeapAdapter_new<TraceHandlerAdapter>(heap);
    this_->context = context;
    this_->resourceCatalog = catalog;
    this_->trace = new_DFDLTraceImpl(heap);
    this_->inserts = new_ArrayListOfPointers(heap, INSERT_CAPACITY);
    return this_;
}

void delete_TraceHandlerAdapter(TraceHandlerAdapter* this_) {
    if (this_ == nullptr) return;
    TraceHandlerAdapter_reset(this_);
    delete_ArrayList(this_->inserts);
    delete_DFDLTraceImpl(this_->trace);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void TraceHandlerAdapter_setServiceTraceHandler(TraceHandlerAdapter* this_,
                                                DFDLServiceTraceHandlerImpl* handler) {
    this_->serviceHandler = handler;
    this_->context->serviceTraceOn = this_->context->userTraceOn = handler == nullptr ? 0U : 1U;
}

void TraceHandlerAdapter_setUserTraceHandler(TraceHandlerAdapter* this_, DFDLUserTraceHandlerImpl* handler) {
    this_->userHandler = handler;
    this_->context->userTraceOn = handler == nullptr ? 0U : 1U;
}

void TraceHandlerAdapter_toService(TraceHandlerAdapter* this_,
                                   DFDLServiceTraceCallback DFDLServiceTraceHandlerImpl::*slot) {
    Service* handler = servesService(this_) ? this_->serviceHandler : nullptr;
    if (handler != nullptr && handler->*slot != nullptr) (handler->*slot)(handler, this_->trace);
}

void TraceHandlerAdapter_toUser(TraceHandlerAdapter* this_,
                                DFDLUserTraceCallback DFDLUserTraceHandlerImpl::*slot) {
    User* handler = servesUser(this_) ? this_->userHandler : nullptr;
    if (handler != nullptr && handler->*slot != nullptr) (handler->*slot)(handler, this_->trace);
}

void TraceHandlerAdapter_entry(TraceHandlerAdapter* this_, const char* method) {
    deliverPlain(this_, method, &Service::serviceEntry);
}

void TraceHandlerAdapter_exit(TraceHandlerAdapter* this_, const char* method) {
    deliverPlain(this_, method, &Service::serviceExit);
}

void TraceHandlerAdapter_entryData(TraceHandlerAdapter* this_, const char* method, const char* format, ...) {
    InsertArguments arguments;
    va_start(arguments.list, format);
    const ScopeExit end([&arguments] { va_end(arguments.list); });
    deliverData(this_, method, &Service::serviceEntry, format, &arguments);
}

void TraceHandlerAdapter_exitData(TraceHandlerAdapter* this_, const char* method, const char* format, ...) {
    InsertArguments arguments;
    va_start(arguments.list, format);
    const ScopeExit end([&arguments] { va_end(arguments.list); });
    deliverData(this_, method, &Service::serviceExit, format, &arguments);
}

void TraceHandlerAdapter_service(TraceHandlerAdapter* this_, const char* method, const char* text) {
    TraceHandlerAdapter_serviceData(this_, method, "%s", text);
}

void TraceHandlerAdapter_serviceData(TraceHandlerAdapter* this_, const char* method, const char* format,
                                     ...) {
    InsertArguments arguments;
    va_start(arguments.list, format);
    const ScopeExit end([&arguments] { va_end(arguments.list); });
    deliverData(this_, method, &Service::serviceDetail, format, &arguments);
}

void TraceHandlerAdapter_userTraceInfo(TraceHandlerAdapter* this_, const TraceSubject& subject,
                                       const char* key, const char* format, ...) {
    if (!servesUser(this_)) return;
    InsertArguments arguments;
    va_start(arguments.list, format);
    const ScopeExit end([&arguments] { va_end(arguments.list); });
    deliverInfo(this_, subject, key, format, &arguments);
}

void TraceHandlerAdapter_userTraceInfoList(TraceHandlerAdapter* this_, const TraceSubject& subject,
                                           const char* key, const char* format, va_list arguments) {
    if (!servesUser(this_)) return;
    InsertArguments copy;
    va_copy(copy.list, arguments);
    const ScopeExit end([&copy] { va_end(copy.list); });
    deliverInfo(this_, subject, key, format, &copy);
}

void TraceHandlerAdapter_userTraceError(TraceHandlerAdapter* this_, ProcessingError* record) {
    if (!servesUser(this_) || record->key == nullptr || record->traced != 0) return;
    record->traced = 1;
    deliverRecord(this_, record, &User::userError, &Service::serviceError);
}

void TraceHandlerAdapter_userTraceFatal(TraceHandlerAdapter* this_, ProcessingError* record) {
    if (!servesUser(this_) || record->key == nullptr) return;
    deliverRecord(this_, record, &User::userFatal, &Service::serviceFatal);
}

int32_t TraceHandlerAdapter_formatMessage(TraceHandlerAdapter* this_, const UChar* messageTemplate) {
    if (messageTemplate == nullptr) {
        this_->statementBuffer[0] = 0;
        return 0;
    }
    const UChar* end = std::find(messageTemplate, messageTemplate + TRACE_STATEMENT_CAPACITY, u'\0');
    return InsertText_format({messageTemplate, static_cast<size_t>(end - messageTemplate)}, this_->inserts,
                             TRACE_STATEMENT_CAPACITY, this_->statementBuffer);
}

void TraceHandlerAdapter_setValues(TraceHandlerAdapter* this_, const char* format, va_list arguments) {
    InsertArguments copy;
    va_copy(copy.list, arguments);
    const ScopeExit end([&copy] { va_end(copy.list); });
    capture(this_, format, &copy);
}

void TraceHandlerAdapter_reset(TraceHandlerAdapter* this_) {
    DFDLTraceImpl_clearObjects(this_->trace);
    InsertText_release(this_->inserts);
    this_->statementBuffer[0] = 0;
}

DFDLUString* TraceHandlerAdapter_replaceUnprintableCharacters(TraceHandlerAdapter* this_,
                                                              const DFDLUString* string, bool replaceSpace) {
    return Unprintable_replace(this_->heap, DFDLUString_view(string), replaceSpace);
}
