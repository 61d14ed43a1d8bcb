#include "inputs.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <utility>

namespace {

constexpr size_t BLOCK_SIZE = 64 * 1024;
constexpr size_t LARGEST_PIECE = size_t{1} << 30;
constexpr uint8_t NO_BYTES[1] = {0};

// A block holds a whole number of pieces, so that none is cut at its end.
size_t capacityFor(size_t pieceSize) {
    if (pieceSize == 0) return BLOCK_SIZE;
    return std::max(pieceSize, BLOCK_SIZE / pieceSize * pieceSize);
}

ssize_t readSome(Input* input, uint8_t* target, size_t size) {
    if (input->flushFirst != nullptr) Output_flush(input->flushFirst);
    ssize_t count = -1;
    do {
        count = read(input->descriptor, target, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) input->error = errno;
    return count;
}

// Appends a block with at least one whole piece, less only at the end of the input.
void readBlock(Input* input) {
    const size_t capacity = capacityFor(input->pieceSize);
    std::unique_ptr<uint8_t[]> bytes(new uint8_t[capacity]);
    size_t filled = 0;
    const size_t wanted = std::max<size_t>(input->pieceSize, 1);
    while (filled == 0 || filled % wanted != 0) {
        const ssize_t count = readSome(input, bytes.get() + filled, capacity - filled);
        if (count <= 0) {
            input->ended = true;
            break;
        }
        filled += static_cast<size_t>(count);
    }
    if (filled == 0) return;
    const uint8_t* data = bytes.get();
    input->blocks.push_back({data, filled, std::move(bytes)});
}

// Moves `next` to a byte that is not handed over yet, if there is one.
bool findNext(Input* input) {
    while (true) {
        if (input->current < input->blocks.size()) {
            if (input->next < input->blocks[input->current].size) return true;
            input->current++;
            input->next = 0;
        } else if (input->descriptor < 0 || input->ended) {
            return false;
        } else {
            readBlock(input);
        }
    }
}

bool isLastByte(const Input* input) {
    return (input->descriptor < 0 || input->ended) && input->current + 1 == input->blocks.size() &&
           input->next == input->blocks.back().size;
}

void getNextBuffer(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* input = static_cast<Input*>(DFDLBufferHandler_getContextObject(handler));
    input->takenBack = false;
    if (!findNext(input)) {
        DFDLByteBuffer_setData(buffer, NO_BYTES, 0, 1);
        return;
    }
    const Input::Block& block = input->blocks[input->current];
    const size_t rest = block.size - input->next;
    const size_t size = input->pieceSize == 0 ? rest : std::min(rest, input->pieceSize);
    const uint8_t* data = block.data + input->next;
    input->next += size;
    DFDLByteBuffer_setData(buffer, data, static_cast<DFDLWORD>(size), isLastByte(input) ? 1 : 0);
}

bool contains(const Input::Block& block, const uint8_t* data) {
    return std::less_equal<>()(block.data, data) && std::less<>()(data, block.data + block.size);
}

void dropBlocksBefore(Input* input, size_t index) {
    if (input->descriptor < 0) return;
    input->blocks.erase(input->blocks.begin(), input->blocks.begin() + static_cast<ptrdiff_t>(index));
    input->current -= index;
}

// Buffers come back in order. The first one with unread bytes tells where the next message begins; all that
// follow come back unread and will be handed over once more.
void releaseBuffer(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    auto* input = static_cast<Input*>(DFDLBufferHandler_getContextObject(handler));
    const DFDLWORD size = DFDLByteBuffer_getSize(buffer);
    const DFDLWORD position = std::clamp<DFDLWORD>(DFDLByteBuffer_getPosition(buffer), 0, size);
    if (size <= 0 || input->takenBack) return;
    const uint8_t* data = DFDLByteBuffer_getData(buffer);
    const auto found = std::find_if(input->blocks.begin(), input->blocks.end(),
                                    [data](const Input::Block& block) { return contains(block, data); });
    if (found == input->blocks.end()) return;
    const auto index = static_cast<size_t>(found - input->blocks.begin());
    const size_t end = static_cast<size_t>(data - found->data) + static_cast<size_t>(position);
    if (position < size) {
        input->current = index;
        input->next = end;
        input->takenBack = true;
    }
    // A finished block that `next` stands behind stays until findNext has left it.
    dropBlocksBefore(input, std::min(end == found->size ? index + 1 : index, input->current));
}

bool makeHandler(Input* input) {
    input->handler = new_DFDLBufferHandler();
    if (input->handler == nullptr) {
        errno = ENOMEM;
        return false;
    }
    DFDLBufferHandler_setContextObject(input->handler, input);
    DFDLBufferHandler_setGetNextBufferHandlerCallback(input->handler, getNextBuffer);
    DFDLBufferHandler_setReleaseBufferHandlerCallback(input->handler, releaseBuffer);
    return true;
}

bool isFolder(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

// False for what is no file of a known size: some systems' files tell 0 and have bytes to read all the same.
bool mapFile(Input* input, int descriptor) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) return false;
    const auto size = static_cast<size_t>(status.st_size);
    void* mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (mapping == MAP_FAILED) return false;
    madvise(mapping, size, MADV_SEQUENTIAL);
    input->mapping = mapping;
    input->document = static_cast<const uint8_t*>(mapping);
    input->documentSize = size;
    return true;
}

}  // namespace

bool Input_open(Input* this_, const std::string& path, size_t pieceSize) {
    this_->pieceSize = std::min(pieceSize, LARGEST_PIECE);
    if (path.empty() || path == "-") {
        this_->descriptor = STDIN_FILENO;
        return makeHandler(this_);
    }
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    if (isFolder(descriptor)) {
        close(descriptor);
        errno = EISDIR;
        return false;
    }
    if (!mapFile(this_, descriptor)) {
        this_->descriptor = descriptor;
        return makeHandler(this_);
    }
    close(descriptor);
    return Input_set(this_, this_->document, this_->documentSize, pieceSize);
}

bool Input_set(Input* this_, const uint8_t* bytes, size_t size, size_t pieceSize) {
    this_->pieceSize = pieceSize;
    this_->document = bytes;
    this_->documentSize = size;
    if (pieceSize == 0) return true;
    if (size > 0) this_->blocks.push_back({bytes, size, nullptr});
    return makeHandler(this_);
}

void Input_close(Input* this_) {
    delete_DFDLBufferHandler(this_->handler);
    if (this_->mapping != nullptr) munmap(this_->mapping, this_->documentSize);
    if (this_->descriptor > STDIN_FILENO) close(this_->descriptor);
    *this_ = Input();
}

void Input_attach(Input* this_, DFDLParser* parser) {
    if (this_->handler != nullptr) {
        DFDLParser_setBufferHandler(parser, this_->handler);
    } else {
        DFDLParser_setInputDocument(parser, this_->document, static_cast<DFDLWORD>(this_->documentSize));
    }
}

bool Input_isUsedUp(Input* this_) { return !findNext(this_); }
