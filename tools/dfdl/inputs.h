#ifndef DFDL_TOOLS_INPUTS_H
#define DFDL_TOOLS_INPUTS_H

#include <dfdl/dfdl.h>

#include <deque>
#include <memory>
#include <string>

#include "output.h"

// The bytes of one run, in place or piece by piece through a buffer handler. Lives as long as the run.
struct Input {
    struct Block {
        const uint8_t* data;
        size_t size;
        std::unique_ptr<uint8_t[]> owned;  // null: mapped or the caller's
    };

    const uint8_t* document = nullptr;  // the whole, where it is at hand; also of an empty one
    size_t documentSize = 0;
    void* mapping = nullptr;  // what munmap wants back

    DFDLBufferHandler* handler = nullptr;  // null: to be read in place
    size_t pieceSize = 0;                  // 0: as they come
    int descriptor = -1;                   // -1: everything there is stands in `blocks`
    bool ended = false;                    // nothing more will come from `descriptor`
    std::deque<Block> blocks;              // what has been read and may be wanted again, in order
    size_t current = 0;                    // index of the block that `next` is in
    size_t next = 0;                       // the first byte of that block that is not handed over
    bool takenBack = false;                // unread bytes came back, `next` is the first of them
    Output* flushFirst = nullptr;          // before waiting for more: what it holds may be waited for
    int error = 0;                         // errno of a read that failed
};

// "-" or an empty path is standard input. A file is mapped; what cannot be mapped is read piece by piece, and
// so is everything with a `pieceSize` other than 0. False if it cannot be opened; errno tells why.
bool Input_open(Input* this_, const std::string& path, size_t pieceSize);
// For bytes in memory, which stay the caller's; null is no document. A `pieceSize` of 0 reads them in place.
bool Input_set(Input* this_, const uint8_t* bytes, size_t size, size_t pieceSize);
void Input_close(Input* this_);

// Gives the input to the parser.
void Input_attach(Input* this_, DFDLParser* parser);
// Only with a handler: whether all bytes have been read. May wait for more to come.
bool Input_isUsedUp(Input* this_);

#endif
