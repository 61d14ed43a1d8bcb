#include "dfdl/framework/bytefinder.h"

#include <cstddef>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

int64_t findByTable(const ByteFinder* finder, const uint8_t* bytes, int64_t count) {
    for (int64_t i = 0; i < count; ++i) {
        if (finder->flags[bytes[i]] != 0) return i;
    }
    return count;
}

int64_t findNone(const ByteFinder*, const uint8_t*, int64_t count) { return count; }

#if defined(__x86_64__)

// The kernels compare a block with each of N bytes and leave what is shorter than a block to the table.
template <size_t N>
int64_t findBy16(const ByteFinder* finder, const uint8_t* bytes, int64_t count) {
    __m128i wanted[N];
    for (size_t i = 0; i < N; ++i) wanted[i] = _mm_set1_epi8(static_cast<char>(finder->wanted[i]));
    int64_t at = 0;
    for (; count - at >= 16; at += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
        __m128i hits = _mm_cmpeq_epi8(block, wanted[0]);
        for (size_t i = 1; i < N; ++i) hits = _mm_or_si128(hits, _mm_cmpeq_epi8(block, wanted[i]));
        const auto mask = static_cast<uint32_t>(_mm_movemask_epi8(hits));
        if (mask != 0) return at + __builtin_ctz(mask);
    }
    return at + findByTable(finder, bytes + at, count - at);
}

template <size_t N>
__attribute__((target("avx2"))) int64_t findBy32(const ByteFinder* finder, const uint8_t* bytes,
                                                 int64_t count) {
    __m256i wanted[N];
    for (size_t i = 0; i < N; ++i) wanted[i] = _mm256_set1_epi8(static_cast<char>(finder->wanted[i]));
    int64_t at = 0;
    for (; count - at >= 32; at += 32) {
        const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + at));
        __m256i hits = _mm256_cmpeq_epi8(block, wanted[0]);
        for (size_t i = 1; i < N; ++i) hits = _mm256_or_si256(hits, _mm256_cmpeq_epi8(block, wanted[i]));
        const auto mask = static_cast<uint32_t>(_mm256_movemask_epi8(hits));
        if (mask != 0) return at + __builtin_ctz(mask);
    }
    return at + findBy16<N>(finder, bytes + at, count - at);
}

// A kernel for each count of bytes: a compare that is not needed would cost as much as one that is.
template <size_t... N>
ByteFinderKernel pick(int32_t distinct, std::index_sequence<N...>) {
    static constexpr ByteFinderKernel BY_16[] = {findBy16<N + 1>...};
    static constexpr ByteFinderKernel BY_32[] = {findBy32<N + 1>...};
    return __builtin_cpu_supports("avx2") ? BY_32[distinct - 1] : BY_16[distinct - 1];
}

ByteFinderKernel kernelFor(int32_t distinct) {
    return pick(distinct, std::make_index_sequence<MOST_VECTOR_BYTES>());
}

#else

ByteFinderKernel kernelFor(int32_t) { return findByTable; }

#endif

}  // namespace

void ByteFinder_init(ByteFinder* this_, const uint8_t* flags) {
    this_->flags = flags;
    int32_t distinct = 0;
    for (int32_t byte = 0; byte < 256; ++byte) {
        if (flags[byte] == 0) continue;
        if (distinct < MOST_VECTOR_BYTES) this_->wanted[distinct] = static_cast<uint8_t>(byte);
        ++distinct;
    }
    this_->distinct = distinct;
    for (int32_t i = distinct; i > 0 && i < MOST_VECTOR_BYTES; ++i) this_->wanted[i] = this_->wanted[i - 1];
    this_->kernel = distinct == 0                  ? findNone
                    : distinct > MOST_VECTOR_BYTES ? findByTable
                                                   : kernelFor(distinct);
}
