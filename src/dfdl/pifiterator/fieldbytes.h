#ifndef DFDL_PIFITERATOR_FIELDBYTES_H
#define DFDL_PIFITERATOR_FIELDBYTES_H

#include "dfdl/buffer/buffermanager.h"

// The bytes of a field that begins here, before it is read: in place where they lie together, else a copy
// that lives as long as this object.
class FieldBytes {
  public:
    FieldBytes(BufferManager* buffer, int64_t length)
        : buffer_(buffer), bytes_(BufferManager_peekBytes(buffer, length)) {
        if (bytes_ == nullptr) copyBytes(length);
    }
    ~FieldBytes() {
        if (copy_ != nullptr) BufferManager_deAllocateBytes(buffer_, copy_);
    }
    FieldBytes(const FieldBytes&) = delete;
    FieldBytes& operator=(const FieldBytes&) = delete;

    const uint8_t* bytes() const { return bytes_; }  // null: fewer bytes than asked for

  private:
    // A length may come from the data: a large one is not believed before the bytes are there.
    void copyBytes(int64_t length) {
        constexpr int64_t TRUSTED_BYTES = 1 << 16;
        if (length > TRUSTED_BYTES &&
            !BufferManager_loadBytes(buffer_, BufferManager_bytePosition(buffer_) + length)) {
            return;
        }
        copy_ = BufferManager_allocateBytes(buffer_, length);
        const int64_t got =
            BufferManager_read(buffer_, copy_, length, BufferManager_bytePosition(buffer_), false);
        if (got == length) bytes_ = copy_;
    }

    BufferManager* buffer_;
    const uint8_t* bytes_;
    uint8_t* copy_ = nullptr;
};

#endif
