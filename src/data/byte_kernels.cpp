// Byte kernels of copy, move, fill and zero. The size boundaries here decide
// the memory strategy (register ladder, aligned blocks, string instructions,
// non-temporal streaming) and are kept exactly as documented in bytes.hpp's
// callers: they are part of how the library behaves on a given machine.
#include <immintrin.h>

#include "bytes.hpp"
#include "frame/simd.hpp"
#include "zetcore.h"

namespace zet::data {
namespace {

using u8 = std::uint8_t;
using simd::addr;

// ---- fixed-size unaligned moves: all loads of a piece before its stores ----
template <std::size_t N>
inline void piece(const u8* s, u8* d) {
    if constexpr (N >= 32) {
        __m256i v[N / 32];
        for (std::size_t i = 0; i < N / 32; ++i) v[i] = simd::loadBytes32(s + 32 * i);
        for (std::size_t i = 0; i < N / 32; ++i) simd::storeBytes32(d + 32 * i, v[i]);
    } else if constexpr (N == 16) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm_loadu_si128(reinterpret_cast<const __m128i*>(s)));
    } else {
        unsigned char tmp[N];
        __builtin_memcpy(tmp, s, N);
        __builtin_memcpy(d, tmp, N);
    }
}

// Copy below 256 bytes: one unaligned move per set bit of the count, widest first.
inline void ladderForward(const u8* s, u8* d, std::size_t n) {
    if (n & 128) { piece<128>(s, d); s += 128; d += 128; }
    if (n & 64) { piece<64>(s, d); s += 64; d += 64; }
    if (n & 32) { piece<32>(s, d); s += 32; d += 32; }
    if (n & 16) { piece<16>(s, d); s += 16; d += 16; }
    if (n & 8) { piece<8>(s, d); s += 8; d += 8; }
    if (n & 4) { piece<4>(s, d); s += 4; d += 4; }
    if (n & 2) { piece<2>(s, d); s += 2; d += 2; }
    if (n & 1) piece<1>(s, d);
}

// The same ladder from the top end down, for a move whose destination lies above its source.
inline void ladderBackward(const u8* s, u8* d, std::size_t n) {
    if (n & 128) { n -= 128; piece<128>(s + n, d + n); }
    if (n & 64) { n -= 64; piece<64>(s + n, d + n); }
    if (n & 32) { n -= 32; piece<32>(s + n, d + n); }
    if (n & 16) { n -= 16; piece<16>(s + n, d + n); }
    if (n & 8) { n -= 8; piece<8>(s + n, d + n); }
    if (n & 4) { n -= 4; piece<4>(s + n, d + n); }
    if (n & 2) { n -= 2; piece<2>(s + n, d + n); }
    if (n & 1) piece<1>(s, d);
}

// ---- string instructions. The direction flag is saved, cleared and put back;
// the stack pointer steps over the red zone first because pushf writes below it.
inline void repMovsb(const u8* s, u8* d, std::size_t n) {
    __asm__ volatile(
        "lea -128(%%rsp), %%rsp\n\t"
        "pushfq\n\t"
        "cld\n\t"
        "rep movsb\n\t"
        "popfq\n\t"
        "lea 128(%%rsp), %%rsp"
        : "+D"(d), "+S"(s), "+c"(n)
        :
        : "memory", "cc");
}
inline void repMovsq(const u8* s, u8* d, std::size_t words) {
    __asm__ volatile(
        "lea -128(%%rsp), %%rsp\n\t"
        "pushfq\n\t"
        "cld\n\t"
        "rep movsq\n\t"
        "popfq\n\t"
        "lea 128(%%rsp), %%rsp"
        : "+D"(d), "+S"(s), "+c"(words)
        :
        : "memory", "cc");
}
inline void repStosb(u8* d, std::size_t n) {
    __asm__ volatile(
        "lea -128(%%rsp), %%rsp\n\t"
        "pushfq\n\t"
        "cld\n\t"
        "rep stosb\n\t"
        "popfq\n\t"
        "lea 128(%%rsp), %%rsp"
        : "+D"(d), "+c"(n)
        : "a"(0)
        : "memory", "cc");
}

bool cacheSize(int* bytes) { return zetGetMaxCacheSizeB(bytes) == 0; }

void copyStreaming(const u8* s, u8* d, std::size_t n) {
    if (const std::size_t mis = addr(d) & 63) {
        const std::size_t head = 64 - mis;
        copySmall(s, d, head);
        s += head; d += head; n -= head;
    }
    for (; n >= 64; n -= 64, s += 64, d += 64) {
        const __m256i a = simd::loadBytes32(s), b = simd::loadBytes32(s + 32);
        simd::streamBytes32(d, a);
        simd::streamBytes32(d + 32, b);
    }
    if (n) copySmall(s, d, n);
    _mm_sfence();
}

// Destination behind the source by less than 160 bytes within a page: the
// forward streams would alias, so copy from the end with aligned stores.
void copyBackward(const u8* s, u8* d, std::size_t n) {
    const std::size_t tail = addr(d + n) & 63;
    n -= tail;
    if (tail) copySmall(s + n, d + n, tail);
    for (; n >= 64;) {
        n -= 64;
        const __m256i a = simd::loadBytes32(s + n), b = simd::loadBytes32(s + n + 32);
        simd::storeBytes32Aligned(d + n, a);
        simd::storeBytes32Aligned(d + n + 32, b);
    }
    if (n) copySmall(s, d, n);
}

// ---- fill patterns -------------------------------------------------------
// A 32-byte register holding the E-byte pattern repeated, starting at byte
// `phase` of the pattern (only 16-byte patterns on 8-byte boundaries need a
// phase other than 0).
template <std::size_t E>
inline __m256i patternAt(const u8* pattern, std::size_t phase) {
    alignas(32) u8 bytes[32];
    for (std::size_t i = 0; i < 32; ++i) bytes[i] = pattern[(phase + i) % E];
    return _mm256_load_si256(reinterpret_cast<const __m256i*>(bytes));
}

// Ladder store of n bytes (a multiple of E, or of E/2 for 16-byte patterns)
// from register v, whose byte 0 corresponds to d.
inline void fillLadder(u8* d, __m256i v, std::size_t n) {
    const __m128i h = _mm256_castsi256_si128(v);
    if (n & 128) { for (int i = 0; i < 4; ++i) simd::storeBytes32(d + 32 * i, v); d += 128; }
    if (n & 64) { simd::storeBytes32(d, v); simd::storeBytes32(d + 32, v); d += 64; }
    if (n & 32) { simd::storeBytes32(d, v); d += 32; }
    if (n & 16) { _mm_storeu_si128(reinterpret_cast<__m128i*>(d), h); d += 16; }
    if (n & 8) { _mm_storel_epi64(reinterpret_cast<__m128i*>(d), h); d += 8; }
    if (n & 4) { const int w = _mm_cvtsi128_si32(h); __builtin_memcpy(d, &w, 4); d += 4; }
    if (n & 2) { const int w = _mm_cvtsi128_si32(h); __builtin_memcpy(d, &w, 2); d += 2; }
    if (n & 1) { const int w = _mm_cvtsi128_si32(h); __builtin_memcpy(d, &w, 1); }
}

}  // namespace

void copySmall(const u8* s, u8* d, std::size_t n) {
    if (n >= 256) {
        piece<32>(s, d);
        const std::size_t adv = 32 - (addr(d) & 31);
        s += adv; d += adv; n -= adv;
        for (; n >= 256; n -= 256, s += 256, d += 256) {
            __m256i v[8];
            for (int i = 0; i < 8; ++i) v[i] = simd::loadBytes32(s + 32 * i);
            for (int i = 0; i < 8; ++i) simd::storeBytes32Aligned(d + 32 * i, v[i]);
        }
    }
    ladderForward(s, d, n);
}

void copyLarge(const u8* s, u8* d, std::size_t n) {
    if (n > 4194304) {
        int cache = 0;
        if (cacheSize(&cache) && n >= static_cast<std::size_t>(cache) / 2) {
            copyStreaming(s, d, n);
            return;
        }
    }
    const std::uint32_t distance = static_cast<std::uint32_t>((addr(d) & 4095) - (addr(s) & 4095));
    if (distance < 160) {
        copyBackward(s, d, n);
        return;
    }
    if (((addr(s) | addr(d)) & 7) == 0) {
        repMovsq(s, d, n >> 3);
        if (n & 7) ladderForward(s + (n & ~std::size_t{7}), d + (n & ~std::size_t{7}), n & 7);
    } else {
        repMovsb(s, d, n);
    }
}

void moveBytes(const u8* s, u8* d, std::size_t n) {
    if (s == d) return;
    if (s > d) {
        if (n > 127) {
            const std::size_t a = (0 - addr(d)) & 31;
            if (a & 1) { piece<1>(s, d); s += 1; d += 1; }
            if (a & 2) { piece<2>(s, d); s += 2; d += 2; }
            if (a & 4) { piece<4>(s, d); s += 4; d += 4; }
            if (a & 8) { piece<8>(s, d); s += 8; d += 8; }
            if (a & 16) { piece<16>(s, d); s += 16; d += 16; }
            n -= a;
            for (; n >= 128; n -= 128, s += 128, d += 128) {
                __m256i v[4];
                for (int i = 0; i < 4; ++i) v[i] = simd::loadBytes32(s + 32 * i);
                for (int i = 0; i < 4; ++i) simd::storeBytes32Aligned(d + 32 * i, v[i]);
            }
        }
        ladderForward(s, d, n);
    } else {
        if (n > 127) {
            const std::size_t a = addr(d + n) & 31;
            if (a & 1) { n -= 1; piece<1>(s + n, d + n); }
            if (a & 2) { n -= 2; piece<2>(s + n, d + n); }
            if (a & 4) { n -= 4; piece<4>(s + n, d + n); }
            if (a & 8) { n -= 8; piece<8>(s + n, d + n); }
            if (a & 16) { n -= 16; piece<16>(s + n, d + n); }
            for (; n >= 128;) {
                n -= 128;
                __m256i v[4];
                for (int i = 0; i < 4; ++i) v[i] = simd::loadBytes32(s + n + 32 * i);
                for (int i = 0; i < 4; ++i) simd::storeBytes32Aligned(d + n + 32 * i, v[i]);
            }
        }
        ladderBackward(s, d, n);
    }
}

void zeroWide(u8* d, std::uint32_t n) {
    const __m256i z = _mm256_setzero_si256();
    if (n >= 256) {
        simd::storeBytes32(d, z);
        const std::size_t adv = 32 - (addr(d) & 31);
        d += adv; n -= static_cast<std::uint32_t>(adv);
        for (; n >= 256; n -= 256, d += 256)
            for (int i = 0; i < 8; ++i) simd::storeBytes32Aligned(d + 32 * i, z);
        fillLadder(d, z, n);
        return;
    }
    // Below 256 bytes: the ladder; its last rung also runs for a count of 0.
    fillLadder(d, z, n & ~1u);
    if ((n & 1) || n == 0) d[n & ~1u] = 0;
}

void zeroLarge(u8* d, std::uint32_t n) {
    if (n <= 32768) {
        zeroWide(d, n);
        return;
    }
    repStosb(d, n);
}

template <std::size_t E>
void fillPlain(u8* d, const u8* pattern, std::size_t len) {
    constexpr std::size_t kAlign = E < 8 ? E : 8;
    if (addr(d) % kAlign != 0) {
        for (std::size_t i = 0; i < len; ++i, d += E) __builtin_memcpy(d, pattern, E);
        return;
    }
    std::size_t n = len * E;
    const __m256i v = patternAt<E>(pattern, 0);
    if (n < 256) {
        fillLadder(d, v, n);
        return;
    }
    simd::storeBytes32(d, v);
    const std::size_t adv = 32 - (addr(d) & 31);
    d += adv; n -= adv;
    const __m256i va = (adv % E) ? patternAt<E>(pattern, adv % E) : v;
    for (; n >= 256; n -= 256, d += 256)
        for (int i = 0; i < 8; ++i) simd::storeBytes32Aligned(d + 32 * i, va);
    fillLadder(d, va, n);
}

template <std::size_t E>
void fillStream(u8* d, const u8* pattern, std::size_t len) {
    std::size_t n = len * E;  // callers pass sizes of 2 MiB and more
    const __m256i v = patternAt<E>(pattern, 0);
    u8* const end = d + n;
    // Head: ordinary stores over the first 64 bytes; they overlap the first
    // block, which is harmless since every store carries the same pattern.
    simd::storeBytes32(d, v);
    simd::storeBytes32(d + 32, v);
    const std::size_t adv = 64 - (addr(d) & 63);
    u8* p = d + adv;
    const __m256i va = (adv % E) ? patternAt<E>(pattern, adv % E) : v;
    for (; end - p >= 64; p += 64) {
        simd::streamBytes32(p, va);
        simd::streamBytes32(p + 32, va);
    }
    // Tail: the last 64 bytes end on an element boundary, so the pattern of phase 0 fits.
    simd::storeBytes32(end - 64, v);
    simd::storeBytes32(end - 32, v);
    _mm_sfence();
}

template void fillPlain<1>(u8*, const u8*, std::size_t);
template void fillPlain<2>(u8*, const u8*, std::size_t);
template void fillPlain<4>(u8*, const u8*, std::size_t);
template void fillPlain<8>(u8*, const u8*, std::size_t);
template void fillPlain<16>(u8*, const u8*, std::size_t);
template void fillStream<1>(u8*, const u8*, std::size_t);
template void fillStream<2>(u8*, const u8*, std::size_t);
template void fillStream<4>(u8*, const u8*, std::size_t);
template void fillStream<8>(u8*, const u8*, std::size_t);
template void fillStream<16>(u8*, const u8*, std::size_t);

}  // namespace zet::data
