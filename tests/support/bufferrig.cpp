#include "support/bufferrig.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <algorithm>

#include "dfdl/buffer/dfdlbufferhandler.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/spif.h"

namespace {

DFDLUString* stringOf(DFDLHeapAdapter* heap, std::string_view ascii) {
    const std::u16string units(ascii.begin(), ascii.end());
    return new_DFDLUStringFromUChars(heap, units.data(), static_cast<int32_t>(units.size()));
}

}  // namespace

Feed::Feed(std::string_view bytes, size_t piece, bool emptyLast)
    : handler(new_DFDLBufferHandler()), bytes_(bytes), piece_(piece), emptyLast_(emptyLast) {
    DFDLBufferHandler_setContextObject(handler, this);
    DFDLBufferHandler_setGetNextBufferHandlerCallback(handler, next);
    DFDLBufferHandler_setReleaseBufferHandlerCallback(handler, back);
}

Feed::~Feed() {
    EXPECT_EQ(held, 0);
    for (const auto* piece : given_) delete piece;
    delete_DFDLBufferHandler(handler);
}

void Feed::next(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* feed = static_cast<Feed*>(DFDLBufferHandler_getContextObject(handler));
    EXPECT_FALSE(feed->ended_) << "asked for more behind the last buffer";
    const size_t count = std::min(feed->piece_, feed->bytes_.size() - feed->at_);
    const auto start = feed->bytes_.begin() + static_cast<std::ptrdiff_t>(feed->at_);
    auto* piece =
        count == 0 ? nullptr : new std::vector<uint8_t>(start, start + static_cast<std::ptrdiff_t>(count));
    feed->at_ += count;
    feed->ended_ = feed->at_ == feed->bytes_.size() && (!feed->emptyLast_ || count == 0);
    feed->given_.push_back(piece);
    ++feed->held;
    DFDLByteBuffer_setData(buffer, piece == nullptr ? nullptr : piece->data(), static_cast<DFDLWORD>(count),
                           feed->ended_ ? 1 : 0);
}

void Feed::back(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* feed = static_cast<Feed*>(DFDLBufferHandler_getContextObject(handler));
    ASSERT_FALSE(feed->given_.empty()) << "a buffer came back twice";
    const std::vector<uint8_t>* oldest = feed->given_.front();
    EXPECT_EQ(DFDLByteBuffer_getData(buffer), oldest == nullptr ? nullptr : oldest->data()) << "out of order";
    feed->given_.pop_front();
    --feed->held;
    delete oldest;
}

BufferRig::BufferRig(const DFDLHeapImpl* heapCallbacks) : heap(new_DFDLHeapAdapterFromHeap(heapCallbacks)) {
    try {
        context = heap->context;
        constants = new_DFDLConstants(heap);
        pif = new_PIF(heap, context);
        charsets = new_CharsetManager(heap, constants, context);
        CharsetManager_setPif(charsets, pif);
        buffer = new_BufferManager(heap, constants, context, nullptr, charsets, nullptr);
        name_ = stringOf(heap, "item");
    } catch (const AllocationFailure&) {
        close();
        throw;
    }
    element_.name = name_;
    item.elementRow = &element_;
    item.child_element_id = 0;
}

BufferRig::~BufferRig() {
    EXPECT_EQ(takeError(), "") << "an error that nobody looked at";
    close();
}

void BufferRig::close() {
    delete_BufferManager(buffer);
    delete_CharsetManager(charsets);
    delete_DFDLUString(name_);
    delete_PIF(pif);
    delete_DFDLConstants(constants);
    delete_DFDLHeapAdapter(heap);
}

int32_t BufferRig::encoding(const char* name, bool utf16Fixed, bool ascii, bool ebcdic) {
    TextEncodingTableRow row;
    row.isUTF16WidthFixed = utf16Fixed;
    row.iEncodingASCIICompatible = ascii;
    row.iEncodingEBCDIC = ebcdic;
    row.iEncoding = stringOf(heap, name);
    Table_loadRow(pif->textEncodingTable, row);
    item.iTextEncodingIndex = Table_size(pif->textEncodingTable) - 1;
    return item.iTextEncodingIndex;
}

void BufferRig::document(std::string_view bytes) {
    BufferManager_setInputDocument(buffer, reinterpret_cast<const uint8_t*>(bytes.data()),
                                   static_cast<int64_t>(bytes.size()));
}

void BufferRig::feed(Feed& feed) { BufferManager_setBufferHandler(buffer, feed.handler); }

std::string BufferRig::takeError() {
    ProcessingError* error = context->currentError;
    if (!ProcessingError_isSet(error)) return "";
    std::string text = error->key;
    ArrayList* inserts = ProcessingError_argumentsAsText(error, nullptr);
    for (int32_t i = 0; i < inserts->count; ++i) {
        auto* insert = ArrayList_getPointer<DFDLUString>(inserts, i);
        text += ' ';
        for (const UChar unit : DFDLUString_view(insert)) text += static_cast<char>(unit);
        delete_DFDLUString(insert);
    }
    delete_ArrayList(inserts);
    ProcessingError_reset(error);
    return text;
}

std::u16string BufferRig::take(DFDLUString* text) {
    if (text == nullptr) return u"null";
    std::u16string units(DFDLUString_view(text));
    EXPECT_EQ(text->chars[text->length], 0);
    delete_DFDLUString(text);
    return units;
}

std::u16string BufferRig::readBytes(int64_t count) {
    return take(BufferManager_readBytesAsString(buffer, item.iTextEncodingIndex, count, &item));
}

std::u16string BufferRig::readCharacters(int64_t count, bool strict) {
    return take(
        BufferManager_readCharacterData(buffer, item.iTextEncodingIndex, count, &charsRead, &item, strict));
}
