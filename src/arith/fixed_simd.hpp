// Vector kernels of the scale-factor rule for 8- and 16-bit elements. Each
// input is widened to 32-bit lanes, where the exact result s of a sum,
// difference or product of two such elements always fits (as a signed value,
// or unsigned for products of two 16u values), then the rule is applied lane
// by lane and the result narrowed with saturation. The tail runs the scalar
// rule on the same exact s, so every element gets the same value.
#pragma once

#include <immintrin.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>

#include "arith/fixed_rule.hpp"
#include "frame/unaligned.hpp"

namespace zet::fixed {

// How an element type enters and leaves 32-bit lanes, 8 elements at a time.
template <class T> struct Lane32;
template <> struct Lane32<std::int16_t> {
    static __m256i load8(const std::int16_t* p) { return _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))); }
    // 16 clamped lanes (two registers) to 16 elements.
    static void store16(std::int16_t* p, __m256i lo, __m256i hi) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm256_permute4x64_epi64(_mm256_packs_epi32(lo, hi), 0xD8));
    }
};
template <> struct Lane32<std::uint16_t> {
    static __m256i load8(const std::uint16_t* p) { return _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))); }
    static void store16(std::uint16_t* p, __m256i lo, __m256i hi) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm256_permute4x64_epi64(_mm256_packus_epi32(lo, hi), 0xD8));
    }
};
template <> struct Lane32<std::uint8_t> {
    static __m256i load8(const std::uint8_t* p) {
        long long v;
        std::memcpy(&v, p, 8);
        return _mm256_cvtepu8_epi32(_mm_cvtsi64_si128(v));
    }
    static void store16(std::uint8_t* p, __m256i lo, __m256i hi) {
        const __m256i w = _mm256_permute4x64_epi64(_mm256_packus_epi32(lo, hi), 0xD8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p),
                         _mm_packus_epi16(_mm256_castsi256_si128(w), _mm256_extracti128_si256(w, 1)));
    }
};

// Unsigned a > b on 32-bit lanes.
inline __m256i gtU32(__m256i a, __m256i b) {
    const __m256i bias = _mm256_set1_epi32(INT_MIN);
    return _mm256_cmpgt_epi32(_mm256_xor_si256(a, bias), _mm256_xor_si256(b, bias));
}

// The rule on 32-bit lanes for a destination D, with s read as signed or
// (products of two 16u values) unsigned. Valid for scale up to 31 (signed s)
// or 32 (unsigned s); callers clear the destination for larger scales, where
// every result is 0.
// FullRange: s may come close to 2^31 in size (a 16u times a 16s), so the
// rounding must not add to it.
template <class D, bool UnsignedS, bool FullRange = false>
struct LaneRule {
    bool positive;
    __m128i count;
    __m256i mask, half, halfMinus1, hi, lo, dmax, dmin;

    explicit LaneRule(int scale) {
        constexpr long long kMax = std::numeric_limits<D>::max(), kMin = std::numeric_limits<D>::min();
        positive = scale > 0;
        const int k = positive ? scale : static_cast<int>(std::min(-static_cast<long long>(scale), 31LL));
        count = _mm_cvtsi32_si128(k);
        mask = _mm256_set1_epi32(static_cast<int>(positive ? (k >= 32 ? 0xFFFFFFFFu : (1u << k) - 1) : 0));
        half = _mm256_set1_epi32(static_cast<int>(positive ? 1u << (k - 1) : 0));
        halfMinus1 = _mm256_set1_epi32(static_cast<int>(positive ? (1u << (k - 1)) - 1 : 0));
        hi = _mm256_set1_epi32(static_cast<int>(kMax >> k));
        lo = _mm256_set1_epi32(static_cast<int>(-((-kMin) >> k)));
        dmax = _mm256_set1_epi32(static_cast<int>(kMax));
        dmin = _mm256_set1_epi32(static_cast<int>(kMin));
    }

    // The narrowing packs of 16-bit destinations saturate by themselves; an
    // 8-bit destination, or an unsigned s, needs the clamp first.
    static constexpr bool kClamp = UnsignedS || sizeof(D) == 1;

    __m256i operator()(__m256i s) const {
        __m256i r;
        if (positive) {
            const __m256i odd = _mm256_and_si256(UnsignedS ? _mm256_srl_epi32(s, count) : _mm256_sra_epi32(s, count),
                                                 _mm256_set1_epi32(1));
            if (UnsignedS || FullRange) {
                // Compare the remainder with half instead of adding to s.
                const __m256i q = UnsignedS ? _mm256_srl_epi32(s, count) : _mm256_sra_epi32(s, count);
                r = _mm256_sub_epi32(q, gtU32(_mm256_add_epi32(_mm256_and_si256(s, mask), odd), half));
            } else {
                // |s| <= 2^30 and k <= 31 here, so s + h - 1 + odd cannot overflow.
                r = _mm256_sra_epi32(_mm256_add_epi32(_mm256_add_epi32(s, halfMinus1), odd), count);
            }
        } else {
            r = _mm256_sll_epi32(s, count);
            r = _mm256_blendv_epi8(r, dmax, UnsignedS ? gtU32(s, hi) : _mm256_cmpgt_epi32(s, hi));
            if (!UnsignedS) r = _mm256_blendv_epi8(r, dmin, _mm256_cmpgt_epi32(lo, s));
        }
        if constexpr (!kClamp) return r;
        if (UnsignedS) return _mm256_min_epu32(r, dmax);
        return _mm256_max_epi32(_mm256_min_epi32(r, dmax), dmin);
    }
};

// dst[i] = rule(combine(a[i], b[i])) where b is a vector or, for constant
// forms, a repeating pattern (one value, or {re, im} pairs) given as lanes.
// combine works on 32-bit lanes and on scalars (long long) alike.
template <bool UnsignedS, bool FullRange, class A, class B, class D, class Combine>
void ruleMap(const A* a, const B* b, __m256i pattern, const long long* scalarPattern, D* d, long long n, int scale,
             Combine combine) {
    const LaneRule<D, UnsignedS, FullRange> rule(scale);
    long long i = 0;
    for (; i + 16 <= n; i += 16) {
        const __m256i b0 = b ? Lane32<B>::load8(b + i) : pattern;
        const __m256i b1 = b ? Lane32<B>::load8(b + i + 8) : pattern;
        const __m256i s0 = combine(Lane32<A>::load8(a + i), b0);
        const __m256i s1 = combine(Lane32<A>::load8(a + i + 8), b1);
        Lane32<D>::store16(d + i, rule(s0), rule(s1));
    }
    for (; i < n; ++i) {
        const long long bv = b ? static_cast<long long>(ld(b, i)) : scalarPattern[i & 1];
        const long long s = combine(static_cast<long long>(ld(a, i)), bv);
        st(d, i, fixed::rule<D>(s, scale));
    }
}

}  // namespace zet::fixed
