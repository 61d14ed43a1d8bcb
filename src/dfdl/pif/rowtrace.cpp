#include "dfdl/pif/rowtrace.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

const UChar* charsOf(const DFDLUString* string) { return string == nullptr ? nullptr : string->chars; }

}  // namespace

const UChar* TraceHandlerAdapter_getNameForRow(TraceHandlerAdapter* this_, const GroupMemberTableRow* row) {
    if (row == nullptr) return u"";
    const bool isElement = GroupMemberTableRow_isElement(row);
    const DFDLUString* name =
        isElement ? GroupMemberTableRow_getElementName(row) : GroupMemberTableRow_getGroupName(row);
    if (DFDLUString_length(name) > 0) return name->chars;
    return isElement ? u"" : TracehandlerAdapter_getPhysicalTypeAsString(this_, row->iPhysicalType);
}

TraceSubject TraceSubject_ofRow(const GroupMemberTableRow* row, const DFDLUString* path) {
    TraceSubject subject;
    subject.designator = row == nullptr ? nullptr : charsOf(row->scdText);
    subject.path = charsOf(path);
    return subject;
}

TraceSubject TraceSubject_ofPlace(TraceHandlerAdapter* adapter, const GroupMemberTableRow* row,
                                  const DFDLUString* path, int64_t bytePosition) {
    TraceSubject subject = TraceSubject_ofRow(row, path);
    subject.placed = true;
    subject.bytePosition = bytePosition;
    subject.name = TraceHandlerAdapter_getNameForRow(adapter, row);
    return subject;
}

void TraceHandlerAdapter_userTraceInfo(TraceHandlerAdapter* this_, const GroupMemberTableRow* row,
                                       const DFDLUString* path, const char* key, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const ScopeExit end([&arguments] { va_end(arguments); });
    TraceHandlerAdapter_userTraceInfoList(this_, TraceSubject_ofRow(row, path), key, format, arguments);
}
