#include "dfdl/foundation/dfdldecimal.h"

#include <cstring>
#include <limits>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

DecRounding rounding(const DFDLDecimal* decimal) { return static_cast<DecRounding>(decimal->roundingMode); }

bool isNegative(const DFDLDecimal* decimal) { return (decimal->number.bits & DEC_NEGATIVE) != 0; }

int64_t toSigned(const DFDLDecimal* decimal) {
    uint64_t magnitude = 0;
    if (!dfdl_decNumberToInteger(&decimal->number, rounding(decimal), &magnitude)) return 0;
    constexpr auto MOST = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    if (isNegative(decimal)) return magnitude > MOST + 1 ? 0 : static_cast<int64_t>(0 - magnitude);
    return magnitude > MOST ? 0 : static_cast<int64_t>(magnitude);
}

// A comparison with a NaN says nothing, and so does not rule a number out.
bool isBetween(const DFDLDecimal* decimal, const DFDLDecimal* lowest, const DFDLDecimal* highest) {
    if (highest != nullptr && DFDLDecimal_compare(decimal, highest) == 1) return false;
    return lowest != nullptr && DFDLDecimal_compare(decimal, lowest) != -1;
}

}  // namespace

DFDLDecimal* new_DFDLDecimal(DFDLHeapAdapter* heap, const DFDLConstants* constants) {
    auto* this_ = DFDLHeapAdapter_new<DFDLDecimal>(heap);
    this_->constants = constants;
    this_->signedValid = 1;
    this_->unsignedValid = 1;
    this_->roundingMode = DEC_ROUND_HALF_EVEN;
    dfdl_decNumberInit(&this_->number, heap);
    return this_;
}

DFDLDecimal* new_DFDLDecimalFromChar(DFDLHeapAdapter* heap, const DFDLConstants* constants, const char* text,
                                     int32_t length) {
    static_cast<void>(length);
    DFDLDecimal* this_ = new_DFDLDecimal(heap, constants);
    uint32_t status = 0;
    dfdl_decNumberFromString(&this_->number, text, &status);
    this_->signedValid = 0;
    this_->unsignedValid = 0;
    if ((status & DEC_CONVERSION_SYNTAX) == 0) return this_;
    delete_DFDLDecimal(this_);
    return nullptr;
}

void delete_DFDLDecimal(DFDLDecimal* this_) {
    if (this_ == nullptr) return;
    dfdl_decNumberRelease(&this_->number);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

DFDLDecimal* DFDLDecimal_copy(const DFDLDecimal* this_, DFDLHeapAdapter* heap) {
    DFDLDecimal* copy = new_DFDLDecimal(heap, this_->constants);
    dfdl_decNumberCopy(&copy->number, &this_->number);
    copy->signedValid = 0;
    copy->unsignedValid = 0;
    copy->roundingMode = this_->roundingMode;
    return copy;
}

int64_t DFDLDecimal_getSignedQValue(DFDLDecimal* this_) {
    if (this_->signedValid == 0) {
        this_->cachedSigned = toSigned(this_);
        this_->signedValid = 1;
    }
    return this_->cachedSigned;
}

uint64_t DFDLDecimal_getUnsignedQValue(DFDLDecimal* this_) {
    if (this_->unsignedValid == 0) {
        uint64_t magnitude = 0;
        const bool fits = dfdl_decNumberToInteger(&this_->number, rounding(this_), &magnitude);
        this_->cachedUnsigned = fits ? magnitude : 0;
        this_->unsignedValid = 1;
    }
    return this_->cachedUnsigned;
}

bool DFDLDecimal_fitsInSignedQValue(const DFDLDecimal* this_) {
    return isBetween(this_, this_->constants->minSignedQ, this_->constants->maxSignedQ);
}

bool DFDLDecimal_fitsInUnsignedQValue(const DFDLDecimal* this_) {
    return isBetween(this_, this_->constants->zero, this_->constants->maxUnsignedQ);
}

int32_t DFDLDecimal_signum(const DFDLDecimal* this_) {
    if (isNegative(this_)) return -1;
    return dfdl_decNumberIsZero(&this_->number) ? 0 : 1;
}

char* DFDLDecimal_getDecimal(const DFDLDecimal* this_, int32_t* length, DFDLHeapAdapter* heap) {
    const int64_t size = dfdl_decNumberTextSize(&this_->number);
    auto* text = reinterpret_cast<char*>(DFDLBufferFactory_GetBuffer(heap->bufferFactory, size));
    *length = dfdl_decNumberToString(&this_->number, text);
    return text;
}

int32_t stripTrailingZerosFromDecimal(char* text) {
    size_t length = std::strlen(text);
    if (std::memchr(text, '.', length) != nullptr) {
        while (length > 0 && text[length - 1] == '0') --length;
        if (length > 0 && text[length - 1] == '.') --length;
        text[length] = 0;
    }
    return static_cast<int32_t>(length);
}

DFDLUString* DFDLDecimal_getDecimalInUString(const DFDLDecimal* this_, UErrorCode* status,
                                             DFDLHeapAdapter* heap) {
    *status = U_ZERO_ERROR;
    int32_t length = 0;
    char* text = DFDLDecimal_getDecimal(this_, &length, heap);
    length = stripTrailingZerosFromDecimal(text);
    UChar* chars = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, length + 1);
    for (int32_t i = 0; i <= length; ++i) chars[i] = static_cast<UChar>(text[i]);
    DFDLBufferFactory_FreeBuffer(heap->bufferFactory, reinterpret_cast<uint8_t*>(text));
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, length);
}

int32_t DFDLDecimal_compare(const DFDLDecimal* a, const DFDLDecimal* b) {
    if (a == nullptr || b == nullptr) return -1;
    return dfdl_decNumberCompare(&a->number, &b->number);
}
