// Byte kernels of copy, move, fill and zero. Their size boundaries (256-byte
// blocks, 32,767 / 32,768, 2 MiB, 4 MiB, half the largest cache, a page
// distance of 160) choose the memory strategy: register moves, aligned
// blocks, string instructions or non-temporal streaming. They are fixed
// values, not tuning knobs: callers see the same behaviour on every machine
// with the same cache.
#include <immintrin.h>

#include "bytes.hpp"
#include "frame/simd.hpp"
#include "short_moves.hpp"
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

// Stores of the phase-0 pattern ending exactly at `end`, back to `from`:
// end lies on an element boundary, so every 32-byte piece does too.
inline void fillTailToEnd(u8* from, u8* end, __m256i v) {
    for (u8* q = end - 32;; q -= 32) {
        simd::storeBytes32(q, v);
        if (q <= from) break;
    }
}

}  // namespace

void copySmall(const u8* s, u8* d, std::size_t n) {
    if (n <= 256) {
        copyShort(s, d, n);
        return;
    }
    piece<32>(s, d);
    const std::size_t adv = 32 - (addr(d) & 31);
    s += adv; d += adv; n -= adv;
    for (; n >= 256; n -= 256, s += 256, d += 256) {
        __m256i v[8];
        for (int i = 0; i < 8; ++i) v[i] = simd::loadBytes32(s + 32 * i);
        for (int i = 0; i < 8; ++i) simd::storeBytes32Aligned(d + 32 * i, v[i]);
    }
    if (n) copyShort(s, d, n);
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
        if (n & 7) copyShort(s + (n & ~std::size_t{7}), d + (n & ~std::size_t{7}), n & 7);
    } else {
        repMovsb(s, d, n);
    }
}

void moveBytes(const u8* s, u8* d, std::size_t n) {
    if (s == d) return;
    if (n <= 256) {
        copyShort(s, d, n);  // loads everything before it stores: any overlap is fine
        return;
    }
    if (s > d) {
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
        if (n) copyShort(s, d, n);
    } else {
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
        if (n) copyShort(s, d, n);
    }
}

void zeroWide(u8* d, std::uint32_t n) {
    if (n <= 256) {
        zeroShort(d, n);
        return;
    }
    const __m256i z = _mm256_setzero_si256();
    u8* const end = d + n;
    simd::storeBytes32(d, z);
    u8* p = d + (32 - (addr(d) & 31));
    for (; end - p >= 256; p += 256)
        for (int i = 0; i < 8; ++i) simd::storeBytes32Aligned(p + 32 * i, z);
    if (p < end) fillTailToEnd(p, end, z);
}

void zeroLarge(u8* d, std::uint32_t n) {
    if (n <= 32768) {
        zeroWide(d, n);
        return;
    }
    repStosb(d, n);
}

template <std::size_t E>
void fillPlain(u8* d, __m256i v, std::size_t len) {
    constexpr std::size_t kAlign = E < 8 ? E : 8;
    if (addr(d) % kAlign != 0) {
        for (std::size_t i = 0; i < len; ++i, d += E) storeElement<E>(d, v);
        return;
    }
    const std::size_t n = len * E;
    if (n <= 256) {
        fillShort(d, v, n);
        return;
    }
    u8* const end = d + n;
    simd::storeBytes32(d, v);
    const std::size_t adv = 32 - (addr(d) & 31);
    u8* p = d + adv;
    const __m256i va = atPhase<E>(v, adv % E);
    for (; end - p >= 256; p += 256)
        for (int i = 0; i < 8; ++i) simd::storeBytes32Aligned(p + 32 * i, va);
    if (p < end) fillTailToEnd(p, end, v);
}

template <std::size_t E>
void fillStream(u8* d, __m256i v, std::size_t len) {
    std::size_t n = len * E;  // callers pass sizes of 2 MiB and more
    u8* const end = d + n;
    // Head: ordinary stores over the first 64 bytes; they overlap the first
    // block, which is harmless since every store carries the same pattern.
    simd::storeBytes32(d, v);
    simd::storeBytes32(d + 32, v);
    const std::size_t adv = 64 - (addr(d) & 63);
    u8* p = d + adv;
    const __m256i va = atPhase<E>(v, adv % E);
    for (; end - p >= 64; p += 64) {
        simd::streamBytes32(p, va);
        simd::streamBytes32(p + 32, va);
    }
    // Tail: the last 64 bytes end on an element boundary, so the pattern of phase 0 fits.
    simd::storeBytes32(end - 64, v);
    simd::storeBytes32(end - 32, v);
    _mm_sfence();
}

template void fillPlain<1>(u8*, __m256i, std::size_t);
template void fillPlain<2>(u8*, __m256i, std::size_t);
template void fillPlain<4>(u8*, __m256i, std::size_t);
template void fillPlain<8>(u8*, __m256i, std::size_t);
template void fillPlain<16>(u8*, __m256i, std::size_t);
template void fillStream<1>(u8*, __m256i, std::size_t);
template void fillStream<2>(u8*, __m256i, std::size_t);
template void fillStream<4>(u8*, __m256i, std::size_t);
template void fillStream<8>(u8*, __m256i, std::size_t);
template void fillStream<16>(u8*, __m256i, std::size_t);

}  // namespace zet::data
