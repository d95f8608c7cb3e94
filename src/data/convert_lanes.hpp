// Format conversion as a pipeline of three small parts: a reader that loads
// source elements into registers (8 at a time, or 4), a middle step, and a
// writer that stores registers as destination elements. Integer elements
// travel in 32-bit lanes: readers sign- or zero-extend to them, writers
// saturate from them, so any integer reader meets any integer writer, and
// the float-to-integer and integer-to-float steps meet the same lanes.
//
// The step loop runs 32 elements a round, then 8, then 4, then one at a time
// with no alignment peel. A single element goes through the 4-element step
// on four copies of itself, so the tail computes with exactly the
// instructions of the body and raises no flag its own value would not.
#pragma once

#include <immintrin.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/checks.hpp"
#include "zetsp.h"

namespace zet::conv {

using u8 = unsigned char;

// ---- the step loop ------------------------------------------------------------
// Kept out of line: conversions that set the control word run their
// arithmetic inside this call, which the compiler cannot move across the
// control-word writes around it. The parts come by value: as locals whose
// address never escapes, their constants stay in registers, where the byte
// stores to dst could otherwise alias them and force reloads.
template <class In, class Mid, class Out>
[[gnu::noinline]] void run(const In in, const Mid mid, const Out out, const void* src, void* dst, i64 n) {
    constexpr i64 kS = In::kBytes, kD = Out::kBytes;
    auto s = static_cast<const u8*>(src);
    auto d = static_cast<u8*>(dst);
    for (; n >= 32; n -= 32, s += 32 * kS, d += 32 * kD) {
        const auto a = mid(in.wide(s)), b = mid(in.wide(s + 8 * kS));
        const auto c = mid(in.wide(s + 16 * kS)), e = mid(in.wide(s + 24 * kS));
        if constexpr (requires { out.pair(d, a, b); }) {
            out.pair(d, a, b);
            out.pair(d + 16 * kD, c, e);
        } else {
            out.wide(d, a);
            out.wide(d + 8 * kD, b);
            out.wide(d + 16 * kD, c);
            out.wide(d + 24 * kD, e);
        }
    }
    for (; n >= 8; n -= 8, s += 8 * kS, d += 8 * kD) out.wide(d, mid(in.wide(s)));
    for (; n >= 4; n -= 4, s += 4 * kS, d += 4 * kD) out.part(d, mid(in.part(s)));
    for (; n > 0; --n, s += kS, d += kD) {
        alignas(32) u8 copies[4 * kS];
        alignas(32) u8 result[4 * kD];
        for (int k = 0; k < 4; ++k) std::memcpy(copies + k * kS, s, kS);
        out.part(result, mid(in.part(copies)));
        std::memcpy(d, result, kD);
    }
}

struct Same {
    template <class V> V operator()(V v) const { return v; }
};

// ---- raw loads and stores at any byte address -----------------------------------
inline __m128i load4B(const u8* p) {
    int v;
    std::memcpy(&v, p, 4);
    return _mm_cvtsi32_si128(v);
}
inline __m128i load8B(const u8* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); }
inline __m128i load16B(const u8* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline __m256i load32B(const u8* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void store4B(u8* p, __m128i v) {
    const int w = _mm_cvtsi128_si32(v);
    std::memcpy(p, &w, 4);
}
inline void store8B(u8* p, __m128i v) { _mm_storel_epi64(reinterpret_cast<__m128i*>(p), v); }
inline void store12B(u8* p, __m128i v) {
    store8B(p, v);
    store4B(p + 8, _mm_srli_si128(v, 8));
}
inline void store16B(u8* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
inline void store32B(u8* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
inline __m128i lo(__m256i v) { return _mm256_castsi256_si128(v); }
inline __m128i hi(__m256i v) { return _mm256_extracti128_si256(v, 1); }

// ---- 32-bit lane arithmetic at both widths --------------------------------------
#define ZET_CONV_LANES(R, P, B)                                                                  \
    inline R add32(R a, R b) { return P##add_epi32(a, b); }                                      \
    inline R sub32(R a, R b) { return P##sub_epi32(a, b); }                                      \
    inline R and32(R a, R b) { return P##and_##B(a, b); }                                        \
    inline R or32(R a, R b) { return P##or_##B(a, b); }                                          \
    inline R xor32(R a, R b) { return P##xor_##B(a, b); }                                        \
    inline R eq32(R a, R b) { return P##cmpeq_epi32(a, b); }                                     \
    inline R gt32(R a, R b) { return P##cmpgt_epi32(a, b); }                                     \
    inline R min32(R a, R b) { return P##min_epi32(a, b); }                                      \
    inline R max32(R a, R b) { return P##max_epi32(a, b); }                                      \
    inline R minU32(R a, R b) { return P##min_epu32(a, b); }                                     \
    inline R sra32(R a, __m128i k) { return P##sra_epi32(a, k); }                                \
    inline R srl32(R a, __m128i k) { return P##srl_epi32(a, k); }                                \
    inline R sll32(R a, __m128i k) { return P##sll_epi32(a, k); }                                \
    /* unsigned a > b */                                                                         \
    inline R gtU32(R a, R b) {                                                                   \
        const R bias = P##set1_epi32(INT32_MIN);                                                 \
        return P##cmpgt_epi32(P##xor_##B(a, bias), P##xor_##B(b, bias));                        \
    }
ZET_CONV_LANES(__m256i, _mm256_, si256)
ZET_CONV_LANES(__m128i, _mm_, si128)
#undef ZET_CONV_LANES

// A constant prepared as a wide register, narrowed to the register at hand.
template <class V> inline V fitI(__m256i c) {
    if constexpr (std::is_same_v<V, __m256i>) return c;
    else return _mm256_castsi256_si128(c);
}

// ---- integer readers: elements to 32-bit lanes ----------------------------------
// Packed 24-bit elements: three bytes, low byte first.
struct Packed24s {};
struct Packed24u {};

template <class T>
struct IntIn {
    static constexpr int kBytes = sizeof(T);
    static constexpr bool kSigned = std::is_signed_v<T>;
    __m256i wide(const u8* p) const {
        if constexpr (kBytes == 1) return kSigned ? _mm256_cvtepi8_epi32(load8B(p)) : _mm256_cvtepu8_epi32(load8B(p));
        else if constexpr (kBytes == 2) return kSigned ? _mm256_cvtepi16_epi32(load16B(p)) : _mm256_cvtepu16_epi32(load16B(p));
        else return load32B(p);
    }
    __m128i part(const u8* p) const {
        if constexpr (kBytes == 1) return kSigned ? _mm_cvtepi8_epi32(load4B(p)) : _mm_cvtepu8_epi32(load4B(p));
        else if constexpr (kBytes == 2) return kSigned ? _mm_cvtepi16_epi32(load8B(p)) : _mm_cvtepu16_epi32(load8B(p));
        else return load16B(p);
    }
};

// Each element's three bytes go to the top of its lane; the shift right
// then extends with the sign or with zeros.
template <bool Signed>
struct In24 {
    static constexpr int kBytes = 3;
    template <class V> static V extend(V v) {
        if constexpr (std::is_same_v<V, __m256i>) return Signed ? _mm256_srai_epi32(v, 8) : _mm256_srli_epi32(v, 8);
        else return Signed ? _mm_srai_epi32(v, 8) : _mm_srli_epi32(v, 8);
    }
    __m256i wide(const u8* p) const {
        // Lane 0 holds bytes 0..15 (elements 0..3 at 0..11), lane 1 bytes 8..23 (elements 4..7 at 4..15).
        const __m256i v = _mm256_setr_m128i(load16B(p), load16B(p + 8));
        const __m256i m = _mm256_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11,  //
                                           -1, 4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15);
        return extend(_mm256_shuffle_epi8(v, m));
    }
    __m128i part(const u8* p) const {
        int last;
        std::memcpy(&last, p + 8, 4);
        const __m128i v = _mm_insert_epi32(load8B(p), last, 2);
        return extend(_mm_shuffle_epi8(v, _mm_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11)));
    }
};
template <> struct IntIn<Packed24s> : In24<true> {};
template <> struct IntIn<Packed24u> : In24<false> {};

// ---- integer writers: 32-bit lanes to elements, saturating ------------------------
template <class T>
struct IntOut {
    static constexpr int kBytes = sizeof(T);
    static constexpr bool kSigned = std::is_signed_v<T>;
    static constexpr long long kMin = kSigned ? -(1LL << (8 * kBytes - 1)) : 0;
    static constexpr long long kMax = kSigned ? (1LL << (8 * kBytes - 1)) - 1 : (1LL << (8 * kBytes)) - 1;

    // Four lanes to 16-bit elements (low 8 bytes), or 8-bit (low 4 bytes).
    static __m128i pack16(__m128i a, __m128i b) { return kSigned ? _mm_packs_epi32(a, b) : _mm_packus_epi32(a, b); }
    static __m128i pack8(__m128i a, __m128i b) {
        const __m128i w = _mm_packs_epi32(a, b);
        return kSigned ? _mm_packs_epi16(w, w) : _mm_packus_epi16(w, w);
    }
    void wide(u8* p, __m256i v) const {
        if constexpr (kBytes == 1) store8B(p, pack8(lo(v), hi(v)));
        else if constexpr (kBytes == 2) store16B(p, pack16(lo(v), hi(v)));
        else store32B(p, v);
    }
    void part(u8* p, __m128i v) const {
        if constexpr (kBytes == 1) store4B(p, pack8(v, v));
        else if constexpr (kBytes == 2) store8B(p, pack16(v, v));
        else store16B(p, v);
    }
    // 16 elements from two registers with one store (narrow types only).
    void pair(u8* p, __m256i a, __m256i b) const
        requires(kBytes < 4)
    {
        const __m256i w = _mm256_permute4x64_epi64(kBytes == 2 && !kSigned ? _mm256_packus_epi32(a, b) : _mm256_packs_epi32(a, b), 0xD8);
        if constexpr (kBytes == 2) store32B(p, w);
        else store16B(p, kSigned ? _mm_packs_epi16(lo(w), hi(w)) : _mm_packus_epi16(lo(w), hi(w)));
    }
};

template <bool Signed>
struct Out24 {
    static constexpr int kBytes = 3;
    static constexpr long long kMin = Signed ? -(1LL << 23) : 0;
    static constexpr long long kMax = Signed ? (1LL << 23) - 1 : (1LL << 24) - 1;
    template <class V> static V clamp(V v) {
        return max32(min32(v, fitI<V>(_mm256_set1_epi32(kMax))), fitI<V>(_mm256_set1_epi32(kMin)));
    }
    // The low three bytes of each lane, gathered at the front of its 128-bit half.
    static __m128i gather(__m128i v) {
        return _mm_shuffle_epi8(v, _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
    }
    void wide(u8* p, __m256i v) const {
        const __m256i c = clamp(v);
        store12B(p, gather(lo(c)));
        store12B(p + 12, gather(hi(c)));
    }
    void part(u8* p, __m128i v) const { store12B(p, gather(clamp(v))); }
};
template <> struct IntOut<Packed24s> : Out24<true> {};
template <> struct IntOut<Packed24u> : Out24<false> {};

// ---- floating readers and writers ------------------------------------------------
// Eight doubles, the wide register of a binary64 reader.
struct Pd8 {
    __m256d lo, hi;
};

struct F32In {
    static constexpr int kBytes = 4;
    __m256 wide(const u8* p) const { return _mm256_loadu_ps(reinterpret_cast<const float*>(p)); }
    __m128 part(const u8* p) const { return _mm_loadu_ps(reinterpret_cast<const float*>(p)); }
};
struct F64In {
    static constexpr int kBytes = 8;
    Pd8 wide(const u8* p) const { return {part(p), part(p + 32)}; }
    __m256d part(const u8* p) const { return _mm256_loadu_pd(reinterpret_cast<const double*>(p)); }
};
struct F32Out {
    static constexpr int kBytes = 4;
    void wide(u8* p, __m256 v) const { _mm256_storeu_ps(reinterpret_cast<float*>(p), v); }
    void part(u8* p, __m128 v) const { _mm_storeu_ps(reinterpret_cast<float*>(p), v); }
};
struct F64Out {
    static constexpr int kBytes = 8;
    void wide(u8* p, Pd8 v) const {
        part(p, v.lo);
        part(p + 32, v.hi);
    }
    void part(u8* p, __m256d v) const { _mm256_storeu_pd(reinterpret_cast<double*>(p), v); }
};

// ---- the control word --------------------------------------------------------------
// MXCSR fields this library sets for the length of a kernel.
constexpr unsigned kInvalidMask = 0x0080, kZeroDivideMask = 0x0200, kRoundingField = 0x6000,
                   kRoundTowardZero = 0x6000, kFlushToZero = 0x8000;

// Gives the `field` bits of the control word the value `value` while it
// lives, and then puts those bits back as they were. Nothing is written when
// the word already holds them. The exception flags raised on the way are
// left as the hardware set them.
class ControlScope {
public:
    ControlScope(unsigned field, unsigned value) : saved_(_mm_getcsr()), field_(field) {
        const unsigned want = (saved_ & ~field) | value;
        changed_ = want != saved_;
        if (changed_) _mm_setcsr(want);
    }
    ~ControlScope() {
        if (changed_) _mm_setcsr((_mm_getcsr() & ~field_) | (saved_ & field_));
    }
    ControlScope(const ControlScope&) = delete;
    ControlScope& operator=(const ControlScope&) = delete;

private:
    unsigned saved_, field_;
    bool changed_;
};

}  // namespace zet::conv
