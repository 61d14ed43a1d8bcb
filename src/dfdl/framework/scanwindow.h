#ifndef DFDL_FRAMEWORK_SCANWINDOW_H
#define DFDL_FRAMEWORK_SCANWINDOW_H

#include <cstdint>

struct BufferManager;
struct DFDLByteBufferImpl;

// A look at the bytes of the stream from the buffer's position on, without moving it: one buffer of the chain
// at a time, where its bytes lie. Buffers that are fetched on the way stay in the chain. A value for the time
// of one scan, since a move of the buffer may take away what it refers to.
struct ScanWindow {
    BufferManager* buffer;
    DFDLByteBufferImpl* at;  // null: none yet
    const uint8_t* data;     // of at
    int64_t start;           // byte of the stream where data begins
    int64_t size;
};

// At the buffer that is current.
ScanWindow ScanWindow_open(BufferManager* buffer);
// Moves to the buffer that holds a byte, which does not lie before the buffer manager's position; false if
// the data end before it.
bool ScanWindow_moveTo(ScanWindow* this_, int64_t position);

inline bool ScanWindow_holds(const ScanWindow* this_, int64_t position) {
    return position >= this_->start && position - this_->start < this_->size;
}
// Whether there is such a byte, which then can be had.
inline bool ScanWindow_reach(ScanWindow* this_, int64_t position) {
    return ScanWindow_holds(this_, position) || ScanWindow_moveTo(this_, position);
}
inline const uint8_t* ScanWindow_pointer(const ScanWindow* this_, int64_t position) {  // of a byte it holds
    return this_->data + (position - this_->start);
}

#endif
