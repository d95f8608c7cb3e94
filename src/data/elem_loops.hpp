// Loops over elements of S bytes (1, 2, 4, 8 or 16) seen as raw bits: a
// forward map, a reversing copy and an in-place reversal. The operation is a
// functor taking and returning __m256i and __m128i; a single element goes
// through the 16-byte form in the low bytes of a register, so a tail element
// takes the same instruction as the body and no access leaves the vectors.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zet::data::elems {

using u8 = std::uint8_t;

inline __m256i ld32(const u8* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void st32(u8* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
inline __m128i ld16(const u8* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void st16(u8* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
template <std::size_t S>
inline __m128i ldOne(const u8* p) {
    __m128i v = _mm_setzero_si128();
    std::memcpy(&v, p, S);
    return v;
}
template <std::size_t S>
inline void stOne(u8* p, __m128i v) {
    std::memcpy(p, &v, S);
}

struct Identity {
    __m256i operator()(__m256i v) const { return v; }
    __m128i operator()(__m128i v) const { return v; }
};

// Element order reversed inside a register.
template <std::size_t S>
inline __m128i rev(__m128i v) {
    if constexpr (S == 1) return _mm_shuffle_epi8(v, _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
    else if constexpr (S == 2) return _mm_shuffle_epi8(v, _mm_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1));
    else if constexpr (S == 4) return _mm_shuffle_epi32(v, 0x1B);
    else if constexpr (S == 8) return _mm_shuffle_epi32(v, 0x4E);
    else return v;
}
template <std::size_t S>
inline __m256i rev(__m256i v) {
    if constexpr (S <= 2) {
        const __m256i idx = S == 1 ? _mm256_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13,
                                                      12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0)
                                   : _mm256_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1, 14, 15, 12,
                                                      13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1);
        return _mm256_permute4x64_epi64(_mm256_shuffle_epi8(v, idx), 0x4E);
    } else if constexpr (S == 4) {
        return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0));
    } else if constexpr (S == 8) {
        return _mm256_permute4x64_epi64(v, 0x1B);
    } else {
        return _mm256_permute4x64_epi64(v, 0x4E);
    }
}

// dst[i] = op(src[i]) for n elements; src may equal dst.
template <std::size_t S, class Op>
inline void map(const u8* src, u8* dst, std::size_t n, Op op) {
    std::size_t bytes = n * S;
    for (; bytes >= 128; bytes -= 128, src += 128, dst += 128) {
        const __m256i a = ld32(src), b = ld32(src + 32), c = ld32(src + 64), d = ld32(src + 96);
        st32(dst, op(a));
        st32(dst + 32, op(b));
        st32(dst + 64, op(c));
        st32(dst + 96, op(d));
    }
    for (; bytes >= 32; bytes -= 32, src += 32, dst += 32) st32(dst, op(ld32(src)));
    for (; bytes >= 16; bytes -= 16, src += 16, dst += 16) st16(dst, op(ld16(src)));
    for (; bytes > 0; bytes -= S, src += S, dst += S) stOne<S>(dst, op(ldOne<S>(src)));
}

// dst[n-1-i] = op(src[i]); src and dst must not overlap.
template <std::size_t S, class Op>
inline void reverseCopy(const u8* src, u8* dst, std::size_t n, Op op) {
    std::size_t bytes = n * S;
    u8* d = dst + bytes;
    for (; bytes >= 64; bytes -= 64, src += 64, d -= 64) {
        const __m256i a = ld32(src), b = ld32(src + 32);
        st32(d - 32, op(rev<S>(a)));
        st32(d - 64, op(rev<S>(b)));
    }
    for (; bytes >= 32; bytes -= 32, src += 32, d -= 32) st32(d - 32, op(rev<S>(ld32(src))));
    for (; bytes >= 16; bytes -= 16, src += 16, d -= 16) st16(d - 16, op(rev<S>(ld16(src))));
    for (; bytes > 0; bytes -= S, src += S, d -= S) stOne<S>(d - S, op(ldOne<S>(src)));
}

// p[i] and p[n-1-i] exchanged (each through op) for n elements in place.
template <std::size_t S, class Op>
inline void reverseInPlace(u8* p, std::size_t n, Op op) {
    u8 *lo = p, *hi = p + n * S;
    for (; hi - lo >= 64; lo += 32, hi -= 32) {
        const __m256i a = ld32(lo), b = ld32(hi - 32);
        st32(lo, op(rev<S>(b)));
        st32(hi - 32, op(rev<S>(a)));
    }
    for (; hi - lo >= 32; lo += 16, hi -= 16) {
        const __m128i a = ld16(lo), b = ld16(hi - 16);
        st16(lo, op(rev<S>(b)));
        st16(hi - 16, op(rev<S>(a)));
    }
    for (; hi - lo >= static_cast<std::ptrdiff_t>(2 * S); lo += S, hi -= S) {
        const __m128i a = ldOne<S>(lo), b = ldOne<S>(hi - S);
        stOne<S>(lo, op(b));
        stOne<S>(hi - S, op(a));
    }
    if (hi - lo == static_cast<std::ptrdiff_t>(S)) stOne<S>(lo, op(ldOne<S>(lo)));
}

// Reversal that also serves a destination equal to the source.
template <std::size_t S, class Op>
inline void reverse(const void* src, void* dst, std::size_t n, Op op) {
    if (src == dst) reverseInPlace<S>(static_cast<u8*>(dst), n, op);
    else reverseCopy<S>(static_cast<const u8*>(src), static_cast<u8*>(dst), n, op);
}

}  // namespace zet::data::elems
