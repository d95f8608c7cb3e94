// Half precision (IEEE 754 binary16) to and from single precision.
//
// Two routes give the same bits. Hw uses the processor's conversion
// instructions (F16C); Sw is integer bit manipulation for processors without
// them. The route is chosen per call by ownGetFeature(ZET_FEATURE_F16C), the
// library's only run-time choice by processor.
//
// Sw never does floating-point arithmetic on the values, so it does not
// depend on the control word: with denormals-are-zero on (which
// zetsFFTInit_C_16fc leaves behind) a multiply by 2^112 -- the textbook way to
// rebias a widened half -- would turn the half denormals into zeros and part
// from what the instruction gives. Widening a half denormal uses one exact
// integer-to-float conversion instead.
//
// Register level: 8 halves in a __m128i <-> 8 floats in a __m256. Families
// that convert on the way (16s16f, 16f16s, the half transforms) build on
// these; the array loops and the route choice are in convert_half.cpp.
#pragma once

#include <immintrin.h>

#include "zetsp.h"

namespace zet::half {

// Round modes a half conversion accepts: 0 toward zero, 1 nearest even.
constexpr int kTowardZero = 0, kNearestEven = 1;

struct Hw {
    static __m256 widen(__m128i h) { return _mm256_cvtph_ps(h); }
    // The rounding comes from the immediate, not from the control word.
    template <int Mode>
    static __m128i narrow(__m256 x) {
        return _mm256_cvtps_ph(x, Mode == kTowardZero ? _MM_FROUND_TO_ZERO : _MM_FROUND_TO_NEAREST_INT);
    }
};

struct Sw {
    static __m256i k(int v) { return _mm256_set1_epi32(v); }

    static __m256 widen(__m128i h) {
        const __m256i x = _mm256_cvtepu16_epi32(h);
        const __m256i sign = _mm256_slli_epi32(_mm256_and_si256(x, k(0x8000)), 16);
        const __m256i em = _mm256_and_si256(x, k(0x7FFF));  // exponent and mantissa
        // Normal: move the fields into place and rebias the exponent by 127 - 15.
        __m256i bits = _mm256_add_epi32(_mm256_slli_epi32(em, 13), k(0x38000000));
        // Infinity and NaN: exponent 31 becomes 255; a NaN comes out quiet, as the instruction makes it.
        const __m256i infNan = _mm256_cmpgt_epi32(em, k(0x7BFF));
        bits = _mm256_add_epi32(bits, _mm256_and_si256(infNan, k(0x38000000)));
        bits = _mm256_or_si256(bits, _mm256_and_si256(_mm256_cmpgt_epi32(em, k(0x7C00)), k(0x00400000)));
        // Denormal m * 2^-24: m converted exactly, then 24 taken off its exponent. Zero stays zero.
        const __m256i sub = _mm256_sub_epi32(_mm256_castps_si256(_mm256_cvtepi32_ps(em)), k(24 << 23));
        const __m256i tiny = _mm256_cmpgt_epi32(k(0x0400), em);
        bits = _mm256_blendv_epi8(bits, _mm256_andnot_si256(_mm256_cmpeq_epi32(em, _mm256_setzero_si256()), sub), tiny);
        return _mm256_castsi256_ps(_mm256_or_si256(bits, sign));
    }

    template <int Mode>
    static __m128i narrow(__m256 v) {
        const __m256i u = _mm256_castps_si256(v);
        const __m256i sign = _mm256_and_si256(_mm256_srli_epi32(u, 16), k(0x8000));
        const __m256i a = _mm256_and_si256(u, k(0x7FFFFFFF));
        // Normal half range [2^-14, 2^16): rebias, then drop 13 mantissa bits. A
        // carry out of the mantissa moves the exponent on, up to infinity.
        const __m256i t = _mm256_sub_epi32(a, k(0x38000000));
        __m256i normal;
        if constexpr (Mode == kTowardZero) {
            normal = _mm256_srli_epi32(t, 13);
        } else {
            const __m256i odd = _mm256_and_si256(_mm256_srli_epi32(t, 13), k(1));
            normal = _mm256_srli_epi32(_mm256_add_epi32(t, _mm256_add_epi32(k(0xFFF), odd)), 13);
        }
        // Below 2^-14: the significand with its hidden bit, shifted right by
        // 126 - exponent (>= 14). Shifts of 32 and more give 0, as do float
        // denormals and zeros (exponent 0) in either mode.
        const __m256i e = _mm256_srli_epi32(a, 23);
        const __m256i m = _mm256_or_si256(_mm256_and_si256(a, k(0x007FFFFF)), k(0x00800000));
        const __m256i s = _mm256_sub_epi32(k(126), e);
        __m256i tiny;
        if constexpr (Mode == kTowardZero) {
            tiny = _mm256_srlv_epi32(m, s);
        } else {
            // Half of the dropped range minus one, plus the kept lowest bit: ties go to even.
            const __m256i half = _mm256_sub_epi32(_mm256_sllv_epi32(k(1), _mm256_sub_epi32(s, k(1))), k(1));
            const __m256i odd = _mm256_and_si256(_mm256_srlv_epi32(m, s), k(1));
            tiny = _mm256_srlv_epi32(_mm256_add_epi32(m, _mm256_add_epi32(half, odd)), s);
        }
        // From 2^16 on: infinity to nearest; toward zero the largest finite, unless it was infinity.
        const __m256i big = Mode == kTowardZero
                                ? _mm256_blendv_epi8(k(0x7BFF), k(0x7C00), _mm256_cmpeq_epi32(a, k(0x7F800000)))
                                : k(0x7C00);
        // NaN: quiet, with the top ten payload bits.
        const __m256i nan = _mm256_or_si256(k(0x7E00), _mm256_and_si256(_mm256_srli_epi32(a, 13), k(0x3FF)));

        __m256i r = _mm256_blendv_epi8(normal, tiny, _mm256_cmpgt_epi32(k(0x38800000), a));
        r = _mm256_blendv_epi8(r, big, _mm256_cmpgt_epi32(a, k(0x477FFFFF)));
        r = _mm256_blendv_epi8(r, nan, _mm256_cmpgt_epi32(a, k(0x7F800000)));
        r = _mm256_or_si256(r, sign);
        return _mm_packus_epi32(_mm256_castsi256_si128(r), _mm256_extracti128_si256(r, 1));
    }
};

// ---- arrays (convert_half.cpp) ------------------------------------------------
// Unchecked, n >= 0; any alignment; no element past n is read or written.

// True when the processor converts half precision itself: asked on every call.
bool hardware();
// The route hardware() picks.
void widen(const Zet16f* src, float* dst, long long n);
// mode 0 or 1. Without the feature, mode 1 clears flush-to-zero and the
// rounding field of the control word around the kernel and puts those bits
// back afterwards (the instruction route has no need to).
void narrow(const float* src, Zet16f* dst, long long n, int mode);

// One route, for callers that chose it already.
template <class Route> void widenWith(const Zet16f* src, float* dst, long long n);
template <class Route> void narrowWith(const float* src, Zet16f* dst, long long n, int mode);

// The checked implementations behind the half-precision conversions.
ZetStatus convert16f32f(const Zet16f* src, float* dst, int len);
ZetStatus convert32f16f(const float* src, Zet16f* dst, int len, ZetRoundMode mode);
ZetStatus convert16s16f(const Zet16s* src, Zet16f* dst, int len, ZetRoundMode mode);
ZetStatus convert16f16s(const Zet16f* src, Zet16s* dst, int len, ZetRoundMode mode, int scale);

}  // namespace zet::half
