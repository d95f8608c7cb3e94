// Moves of up to 256 bytes, inlined into the checked entry points: the size
// class picks two to eight register-wide moves that may overlap, so a short
// call costs a couple of branches rather than one per bit of the count. Every
// load of a copy happens before its first store, which makes these safe for
// overlapping moves as well.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace zet::data {

namespace shortmv {
using u8 = std::uint8_t;
inline __m256i ld32(const u8* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void st32(u8* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
inline __m128i ld16(const u8* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void st16(u8* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
template <class W>
inline W ldw(const u8* p) {
    W w;
    __builtin_memcpy(&w, p, sizeof w);
    return w;
}
template <class W>
inline void stw(u8* p, W w) {
    __builtin_memcpy(p, &w, sizeof w);
}
}  // namespace shortmv

// ---- fill patterns -------------------------------------------------------
// A 32-byte register holding a value of 1, 2, 4, 8 or 16 bytes repeated.
template <class T>
[[gnu::always_inline]] inline __m256i broadcastValue(const T& val) {
    static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8 || sizeof(T) == 16);
    if constexpr (sizeof(T) == 1) {
        char v;
        __builtin_memcpy(&v, &val, 1);
        return _mm256_set1_epi8(v);
    } else if constexpr (sizeof(T) == 2) {
        short v;
        __builtin_memcpy(&v, &val, 2);
        return _mm256_set1_epi16(v);
    } else if constexpr (sizeof(T) == 4) {
        int v;
        __builtin_memcpy(&v, &val, 4);
        return _mm256_set1_epi32(v);
    } else if constexpr (sizeof(T) == 8) {
        long long v;
        __builtin_memcpy(&v, &val, 8);
        return _mm256_set1_epi64x(v);
    } else {
        __m128i v;
        __builtin_memcpy(&v, &val, 16);
        return _mm256_broadcastsi128_si256(v);
    }
}

// The pattern as seen from `phase` bytes into an element. Only 16-byte
// patterns on 8-byte boundaries have a phase other than 0; both 128-bit lanes
// hold the same pattern, so a rotation within each lane serves.
template <std::size_t E>
inline __m256i atPhase(__m256i v, std::size_t phase) {
    if constexpr (E == 16) return phase ? _mm256_alignr_epi8(v, v, 8) : v;
    else return v;
}

// One element: the low E bytes of the pattern.
template <std::size_t E>
[[gnu::always_inline]] inline void storeElement(std::uint8_t* d, __m256i v) {
    const __m128i h = _mm256_castsi256_si128(v);
    if constexpr (E == 16) _mm_storeu_si128(reinterpret_cast<__m128i*>(d), h);
    else if constexpr (E == 8) _mm_storel_epi64(reinterpret_cast<__m128i*>(d), h);
    else {
        const int w = _mm_cvtsi128_si32(h);
        __builtin_memcpy(d, &w, E);
    }
}

// 1 <= n <= 256.
[[gnu::always_inline]] inline void copyShort(const std::uint8_t* s, std::uint8_t* d, std::size_t n) {
    using namespace shortmv;
    if (n >= 32) {
        if (n <= 64) {
            const __m256i a = ld32(s), b = ld32(s + n - 32);
            st32(d, a);
            st32(d + n - 32, b);
        } else if (n <= 128) {
            const __m256i a = ld32(s), b = ld32(s + 32), c = ld32(s + n - 64), e = ld32(s + n - 32);
            st32(d, a);
            st32(d + 32, b);
            st32(d + n - 64, c);
            st32(d + n - 32, e);
        } else {
            __m256i v[8];
            for (int i = 0; i < 4; ++i) v[i] = ld32(s + 32 * i);
            for (int i = 0; i < 4; ++i) v[4 + i] = ld32(s + n - 128 + 32 * i);
            for (int i = 0; i < 4; ++i) st32(d + 32 * i, v[i]);
            for (int i = 0; i < 4; ++i) st32(d + n - 128 + 32 * i, v[4 + i]);
        }
    } else if (n >= 16) {
        const __m128i a = ld16(s), b = ld16(s + n - 16);
        st16(d, a);
        st16(d + n - 16, b);
    } else if (n >= 8) {
        const auto a = ldw<std::uint64_t>(s), b = ldw<std::uint64_t>(s + n - 8);
        stw(d, a);
        stw(d + n - 8, b);
    } else if (n >= 4) {
        const auto a = ldw<std::uint32_t>(s), b = ldw<std::uint32_t>(s + n - 4);
        stw(d, a);
        stw(d + n - 4, b);
    } else if (n >= 2) {
        const auto a = ldw<std::uint16_t>(s), b = ldw<std::uint16_t>(s + n - 2);
        stw(d, a);
        stw(d + n - 2, b);
    } else {
        *d = *s;
    }
}

// Store n bytes (1 <= n <= 256) of a pattern register whose period divides
// every piece used: n must be a multiple of the pattern's period, so each
// overlapping piece (the largest power of two not above n, at most 32) starts
// on a period boundary.
[[gnu::always_inline]] inline void fillShort(std::uint8_t* d, __m256i v, std::size_t n) {
    using namespace shortmv;
    if (n >= 32) {
        if (n <= 64) {
            st32(d, v);
            st32(d + n - 32, v);
        } else if (n <= 128) {
            st32(d, v);
            st32(d + 32, v);
            st32(d + n - 64, v);
            st32(d + n - 32, v);
        } else {
            for (int i = 0; i < 4; ++i) st32(d + 32 * i, v);
            for (int i = 0; i < 4; ++i) st32(d + n - 128 + 32 * i, v);
        }
        return;
    }
    const __m128i h = _mm256_castsi256_si128(v);
    if (n >= 16) {
        st16(d, h);
        st16(d + n - 16, h);
    } else if (n >= 8) {
        const auto w = static_cast<std::uint64_t>(_mm_cvtsi128_si64(h));
        stw(d, w);
        stw(d + n - 8, w);
    } else if (n >= 4) {
        const auto w = static_cast<std::uint32_t>(_mm_cvtsi128_si32(h));
        stw(d, w);
        stw(d + n - 4, w);
    } else if (n >= 2) {
        const auto w = static_cast<std::uint16_t>(_mm_cvtsi128_si32(h));
        stw(d, w);
        stw(d + n - 2, w);
    } else {
        *d = static_cast<std::uint8_t>(_mm_cvtsi128_si32(h));
    }
}

// The wide zero kernel below 256 bytes. Like the other short kernels it
// assumes a count of at least one: a count of 0 (a wrapped byte count) ends
// in the one-byte store.
[[gnu::always_inline]] inline void zeroShort(std::uint8_t* d, std::size_t n) {
    if (n == 0) {
        *d = 0;
        return;
    }
    fillShort(d, _mm256_setzero_si256(), n);
}

}  // namespace zet::data
