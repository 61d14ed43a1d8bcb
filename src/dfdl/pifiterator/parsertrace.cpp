#include <cstdarg>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

const UChar* charsOf(const DFDLUString* string) { return string == nullptr ? nullptr : string->chars; }

const UChar* nameOf(PIFIteratorForParser* iterator, const GroupMemberTableRow* row) {
    const DFDLUString* name = row->elementRow != nullptr ? GroupMemberTableRow_getElementName(row)
                                                         : GroupMemberTableRow_getGroupName(row);
    if (DFDLUString_length(name) > 0) return name->chars;
    return TracehandlerAdapter_getPhysicalTypeAsString(iterator->traceAdapter, row->iPhysicalType);
}

}  // namespace

void PIFIteratorForParser_userTrace(PIFIteratorForParser* this_, ContextItemForParser* item, const char* key,
                                    const char* format, ...) {
    TraceSubject subject;
    subject.placed = true;
    subject.bytePosition = BufferManager_bytePosition(this_->bufferManager);
    subject.name = nameOf(this_, item->row);
    subject.designator = charsOf(item->row->scdText);
    subject.path = charsOf(ContextItem_getXPath(item));
    va_list arguments;
    va_start(arguments, format);
    const ScopeExit end([&] { va_end(arguments); });
    TraceHandlerAdapter_userTraceInfoList(this_->traceAdapter, subject, key, format, arguments);
}
