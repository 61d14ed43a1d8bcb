#ifndef DFDL_BUFFER_INPUTSTREAM_H
#define DFDL_BUFFER_INPUTSTREAM_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// A source of bytes as a table of functions.
struct InputStream {
    DFDLHeapAdapter* heap;
    int32_t (*readByte)(InputStream* stream);  // -1 at the end
    // At most `length` bytes to buffer + offset; -1 at the end.
    int64_t (*read)(InputStream* stream, uint8_t* buffer, int64_t offset, int64_t length);
    int64_t (*skip)(InputStream* stream, int64_t count);
    int64_t (*available)(InputStream* stream);
    void (*close)(InputStream* stream);
    void (*mark)(InputStream* stream, int64_t readLimit);
    void (*reset)(InputStream* stream);
    void (*reserved)(InputStream* stream);
    int32_t (*markSupported)(InputStream* stream);
};

InputStream* new_InputStream(DFDLHeapAdapter* heap);  // all slots empty
void delete_InputStream(InputStream* this_);          // null is ignored

// Reads a caller's array, which must outlive it.
struct ByteArrayInputStream : InputStream {
    const uint8_t* data;
    uint32_t position;
    uint32_t count;
    uint32_t marked;
};

ByteArrayInputStream* new_ByteArrayInputStream(DFDLHeapAdapter* heap, const uint8_t* data, uint32_t count);

#endif
