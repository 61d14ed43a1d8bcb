#include <unicode/ustdio.h>

#include <algorithm>
#include <cstdio>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/insertformat.h"

namespace {

constexpr int32_t NUMBER_CAPACITY = 512;  // holds "%f" of the largest double
constexpr int32_t PIECE_CAPACITY = 24;

// A piece as a conversion that printf can be trusted with, the width of the argument set to `modifier`. False
// for one that is more than flags, width, precision and letter.
bool toConversion(const InsertPiece& piece, const char* modifier, char* conversion) {
    const std::string_view middle(piece.text + 1, static_cast<size_t>(std::max(piece.length - 2, 0)));
    if (piece.length < 2 || middle.size() > PIECE_CAPACITY - 8) return false;
    if (middle.find_first_not_of("-+ #0123456789.lh") != std::string_view::npos) return false;
    *conversion++ = '%';
    conversion = std::copy_if(middle.begin(), middle.end(), conversion,
                              [](char character) { return character != 'l' && character != 'h'; });
    while (*modifier != '\0') *conversion++ = *modifier++;
    *conversion++ = InsertPiece_letter(piece);
    *conversion = '\0';
    return true;
}

int32_t formatInteger(const CapturedInsert& insert, UChar* target) {
    char conversion[PIECE_CAPACITY] = "%lld";
    const char letter = InsertPiece_letter(insert.piece);
    if (letter == 'p') {
        snprintf(conversion, sizeof conversion, "0x%%016llx");
    } else if (letter != 'D' && !toConversion(insert.piece, "ll", conversion)) {
        return -1;
    }
    char digits[NUMBER_CAPACITY];
    const int written =
        snprintf(digits, sizeof digits, conversion, static_cast<long long>(insert.value.integer));
    const int32_t length = std::clamp(written, 0, NUMBER_CAPACITY - 1);
    std::copy_n(digits, length, target);
    return length;
}

// ICU's own printf: its exponents have three digits, as in everything else that shows numbers to people here.
int32_t formatReal(const CapturedInsert& insert, UChar* target) {
    char conversion[PIECE_CAPACITY];
    if (!toConversion(insert.piece, "", conversion)) return -1;
    return std::min(u_snprintf(target, NUMBER_CAPACITY, conversion, insert.value.real), NUMBER_CAPACITY);
}

// "<MISSING INSERT 5>" and its like.
int32_t formatComplaint(const char* what, int32_t number, UChar* target) {
    char text[64];
    const int length = snprintf(text, sizeof text, "<%s INSERT %d>", what, number);
    std::copy_n(text, length, target);
    return length;
}

// Fills a text of limited room and remembers whether something had to stay out.
class Writer {
  public:
    Writer(UChar* target, int32_t room) : target_(target), room_(static_cast<size_t>(room)) {}

    void put(std::u16string_view text) {
        const size_t fits = std::min(text.size(), room_ - length_);
        std::copy_n(text.begin(), fits, target_ + length_);
        length_ += fits;
        cut_ = cut_ || fits < text.size();
    }

    // The target has five units behind the room.
    int32_t finish() {
        if (cut_) {
            if (length_ > 0 && U16_IS_LEAD(target_[length_ - 1])) --length_;
            room_ = length_ + 4;
            put(u" ...");
        }
        target_[length_] = 0;
        return static_cast<int32_t>(length_);
    }

  private:
    UChar* target_;
    size_t room_;
    size_t length_ = 0;
    bool cut_ = false;
};

void putInsert(Writer* writer, const ArrayList* texts, int32_t number) {
    if (texts != nullptr && number < texts->count) {
        writer->put(DFDLUString_view(ArrayList_getPointer<DFDLUString>(texts, number)));
        return;
    }
    UChar complaint[64];
    const int32_t length = formatComplaint("MISSING", number, complaint);
    writer->put({complaint, static_cast<size_t>(length)});
}

// The number that the digits between the braces make; one that is too large stays so.
int32_t numberOf(std::u16string_view between) {
    int32_t number = 0;
    for (const UChar unit : between) {
        if (unit < u'0' || unit > u'9') continue;
        number = number > INT32_MAX / 10 - 1 ? INT32_MAX / 10 : number * 10 + (unit - u'0');
    }
    return number;
}

}  // namespace

DFDLUString* CapturedInsert_toText(const CapturedInsert* this_, DFDLHeapAdapter* heap,
                                   const InsertStyle& style, int32_t number) {
    if (this_->kind == INSERT_TEXT) return InsertText_new(heap, DFDLUString_view(this_->value.text), style);
    UChar text[NUMBER_CAPACITY];
    int32_t length = -1;
    if (this_->kind == INSERT_INTEGER) length = formatInteger(*this_, text);
    if (this_->kind == INSERT_REAL) length = formatReal(*this_, text);
    if (length < 0) length = style.trace ? 0 : formatComplaint("UNKNOWN", number, text);
    return InsertText_new(heap, {text, static_cast<size_t>(length)}, style);
}

int32_t InsertText_format(std::u16string_view messageTemplate, const ArrayList* texts, int32_t capacity,
                          UChar* target) {
    if (capacity < 5) {
        if (capacity > 0) target[0] = 0;
        return 0;
    }
    Writer writer(target, capacity - 5);
    while (!messageTemplate.empty()) {
        const size_t open = messageTemplate.find(u'{');
        writer.put(messageTemplate.substr(0, open));
        if (open == std::u16string_view::npos) break;
        const size_t close = messageTemplate.find(u'}', open);
        if (close == std::u16string_view::npos) break;
        putInsert(&writer, texts, numberOf(messageTemplate.substr(open, close - open)));
        messageTemplate.remove_prefix(close + 1);
    }
    return writer.finish();
}

void InsertText_release(ArrayList* texts) {
    while (texts->count > 0) {
        DFDLPoolingFactory_releaseDFDLUString(texts->heap->poolingFactory,
                                              ArrayList_popPointer<DFDLUString>(texts));
    }
}
