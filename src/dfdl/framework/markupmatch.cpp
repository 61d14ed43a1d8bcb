#include "dfdl/framework/markupmatch.h"

#include <cstring>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/framework/compileddfdlstringliteral.h"

namespace {

// A place in the data that moves on with what matches.
struct Matcher {
    ScanWindow* window;
    int64_t limit;
    int64_t position;
};

bool exact(Matcher* matcher, const uint8_t* bytes, int32_t count) {
    if (!MarkupMatch_bytes(matcher->window, matcher->limit, matcher->position, bytes, count)) return false;
    matcher->position += count;
    return true;
}

bool eitherCase(Matcher* matcher, const CompiledStringPart* part) {
    if (part->byteCount > matcher->limit - matcher->position) return false;
    for (int32_t i = 0; i < part->byteCount; ++i) {
        if (!ScanWindow_reach(matcher->window, matcher->position + i)) return false;
        const uint8_t byte = *ScanWindow_pointer(matcher->window, matcher->position + i);
        if (byte != part->lowerBytes[i] && byte != part->upperBytes[i]) return false;
    }
    matcher->position += part->byteCount;
    return true;
}

bool someAlternative(Matcher* matcher, const ArrayList* alternatives) {
    for (int32_t i = 0; i < ArrayList_size(alternatives); ++i) {
        const auto* mnemonic = ArrayList_getPointer<MnemonicPart>(alternatives, i);
        if (exact(matcher, mnemonic->bytes, mnemonic->length)) return true;
    }
    return false;
}

// Takes all that there is and gives nothing back to what follows.
bool characterClass(Matcher* matcher, const CompiledStringPart* part) {
    const bool any = someAlternative(matcher, part->alternatives);
    if (any && part->repeating) {
        while (someAlternative(matcher, part->alternatives)) {
        }
    }
    return any || part->optional;
}

bool matches(Matcher* matcher, const CompiledStringPart* part) {
    switch (part->kind) {
        case COMPILED_EXACT:
            return exact(matcher, part->exactBytes, part->byteCount);
        case COMPILED_CASE_INSENSITIVE:
            return eitherCase(matcher, part);
        case COMPILED_CLASS:
            return characterClass(matcher, part);
    }
    return false;
}

}  // namespace

bool MarkupMatch_bytes(ScanWindow* window, int64_t limit, int64_t position, const uint8_t* bytes,
                       int32_t count) {
    if (count > limit - position) return false;
    if (ScanWindow_holds(window, position) && count <= window->start + window->size - position) {
        return std::memcmp(ScanWindow_pointer(window, position), bytes, static_cast<size_t>(count)) == 0;
    }
    for (int32_t i = 0; i < count; ++i) {
        if (!ScanWindow_reach(window, position + i)) return false;
        if (*ScanWindow_pointer(window, position + i) != bytes[i]) return false;
    }
    return true;
}

int64_t MarkupMatch_literal(ScanWindow* window, int64_t limit, int64_t position,
                            const CompiledDFDLStringLiteral* literal) {
    Matcher matcher{window, limit, position};
    for (int32_t i = 0; i < ArrayList_size(literal->parts); ++i) {
        if (!matches(&matcher, ArrayList_getPointer<CompiledStringPart>(literal->parts, i))) return -1;
    }
    return matcher.position;
}
