#ifndef DFDL_TESTS_SUPPORT_BUFFERRIG_H
#define DFDL_TESTS_SUPPORT_BUFFERRIG_H

#include <dfdl/dfdl.h>

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"

// Input in pieces, each in memory of its own, so that a read of a piece that has been given back is seen.
class Feed {
  public:
    // `emptyLast`: the end is told by an empty buffer, not with the last bytes.
    Feed(std::string_view bytes, size_t piece, bool emptyLast = false);
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;
    ~Feed();  // expects that every piece has come back

    DFDLBufferHandler* handler;
    int64_t held = 0;  // pieces given out and not given back

  private:
    static void next(DFDLBufferHandler* handler, DFDLByteBuffer* buffer);
    static void back(DFDLBufferHandler* handler, DFDLByteBuffer* buffer);

    std::string bytes_;
    size_t piece_;
    bool emptyLast_;
    size_t at_ = 0;
    bool ended_ = false;
    std::deque<std::vector<uint8_t>*> given_;  // oldest first; null for an empty buffer
};

// A buffer manager with what it stands on, and one element named "item".
class BufferRig {
  public:
    explicit BufferRig(const DFDLHeapImpl* heap = nullptr);
    ~BufferRig();  // expects that no block is left
    BufferRig(const BufferRig&) = delete;
    BufferRig& operator=(const BufferRig&) = delete;

    // A row of the encoding table; the element gets this encoding.
    int32_t encoding(const char* name, bool utf16Fixed = false, bool ascii = false, bool ebcdic = false);
    void document(std::string_view bytes);  // which outlive their use
    void feed(Feed& feed);

    // The standing error as its id and its inserts, "CTDP3000E 5 item"; empty for none. Resets it.
    std::string takeError();
    // Bytes, or the text "null".
    std::u16string readBytes(int64_t count);
    std::u16string readCharacters(int64_t count, bool strict = true);  // sets charsRead

    DFDLHeapAdapter* heap;
    Context* context = nullptr;
    DFDLConstants* constants = nullptr;
    sPIF* pif = nullptr;
    CharsetManager* charsets = nullptr;
    BufferManager* buffer = nullptr;
    GroupMemberTableRow item{};
    int64_t charsRead = 0;

  private:
    std::u16string take(DFDLUString* text);
    void close();

    ElementTableRow element_{};
    DFDLUString* name_ = nullptr;
};

#endif
