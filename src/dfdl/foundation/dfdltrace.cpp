#include "dfdl/foundation/dfdltrace.h"

#include <sys/time.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "dfdl/foundation/dfdlustring.h"

namespace {

// Widens ASCII, cut to what the field holds; null gives an empty text.
template <size_t Capacity>
void widen(UChar (&field)[Capacity], const char* text) {
    const size_t length = text == nullptr ? 0 : strnlen(text, Capacity - 1);
    std::copy_n(text, length, field);
    field[length] = 0;
}

void give(const UChar* text, int32_t textLength, const DFDLChar** characters, int32_t* length) {
    if (characters != nullptr) *characters = text;
    if (length != nullptr) *length = textLength;
}

}  // namespace

DFDLTraceImpl* new_DFDLTraceImpl(DFDLHeapAdapter* heap) { return DFDLHeapAdapter_new<DFDLTraceImpl>(heap); }

void delete_DFDLTraceImpl(DFDLTraceImpl* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DFDLTraceImpl_setStatement(DFDLTraceImpl* this_, const UChar* text, int32_t length, const char* key) {
    DFDLTraceImpl_setStatementWithSCDAndXPath(this_, text, length, key, nullptr, nullptr);
}

void DFDLTraceImpl_setStatementWithSCDAndXPath(DFDLTraceImpl* this_, const UChar* text, int32_t length,
                                               const char* key, const UChar* designator, const UChar* path) {
    this_->statement = text;
    this_->statementLength = length;
    widen(this_->messageKey, key);
    this_->designator = designator;
    this_->path = path;
    widen(this_->methodName, nullptr);
    DFDLTraceImpl_createTimestamp(this_);
}

void DFDLTraceImpl_setMethodName(DFDLTraceImpl* this_, const char* method) {
    widen(this_->methodName, method);
}

void DFDLTraceImpl_createTimestamp(DFDLTraceImpl* this_) {
    timeval now = {};
    gettimeofday(&now, nullptr);
    tm local = {};
    localtime_r(&now.tv_sec, &local);
    char text[96];
    snprintf(text, sizeof text, "%d-%d-%d %02d:%02d:%02d.%06ld", local.tm_year + 1900, local.tm_mon + 1,
             local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, static_cast<long>(now.tv_usec));
    widen(this_->timestamp, text);
}

void DFDLTraceImpl_addObject(DFDLTraceImpl* this_, const DFDLUString* text) {
    if (text != nullptr && this_->objectCount < TRACE_OBJECT_LIMIT)
        this_->objects[this_->objectCount++] = text;
}

void DFDLTraceImpl_clearObjects(DFDLTraceImpl* this_) {
    std::fill_n(this_->objects, TRACE_OBJECT_LIMIT, nullptr);
    this_->objectCount = 0;
}

void DFDLTrace_getStatement(const DFDLTrace* trace, const DFDLChar** characters, int32_t* length) {
    if (trace == nullptr) return give(nullptr, 0, characters, length);
    give(trace->statement, trace->statementLength, characters, length);
}

const DFDLChar* DFDLTrace_getMessageKey(const DFDLTrace* trace) {
    return trace == nullptr ? nullptr : trace->messageKey;
}

const DFDLChar* DFDLTrace_getMethodName(const DFDLTrace* trace) {
    return trace == nullptr ? nullptr : trace->methodName;
}

const DFDLChar* DFDLTrace_getTimestamp(const DFDLTrace* trace) {
    return trace == nullptr ? nullptr : trace->timestamp;
}

const DFDLChar* DFDLTrace_getSCD(const DFDLTrace* trace) {
    return trace == nullptr ? nullptr : trace->designator;
}

const DFDLChar* DFDLTrace_getXPath(const DFDLTrace* trace) {
    return trace == nullptr ? nullptr : trace->path;
}

int32_t DFDLTrace_getNumberOfObjects(const DFDLTrace* trace) {
    return trace == nullptr ? 0 : trace->objectCount;
}

void DFDLTrace_getObject(const DFDLTrace* trace, int32_t index, const DFDLChar** characters,
                         int32_t* length) {
    const bool exists = trace != nullptr && index >= 0 && index < trace->objectCount;
    const DFDLUString* object = exists ? trace->objects[index] : nullptr;
    give(object == nullptr ? nullptr : object->chars, DFDLUString_length(object), characters, length);
}
