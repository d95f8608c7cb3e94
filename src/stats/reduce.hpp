// Reduction shapes shared by sums, moments, norms and dot products.
//
// The accumulation order of a floating reduction is part of its result, so
// each shape here fixes one order and every caller that names it gets the
// same bits whatever the alignment of its vectors. Terms are combined by a
// step(acc, x...) that the caller supplies (an addition, a fused square, a
// fused product), so one shape serves sums, norms and dot products alike.
#pragma once

#include <immintrin.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/checks.hpp"
#include "frame/simd.hpp"
#include "frame/unaligned.hpp"

namespace zet::stats {

using namespace zet::simd;

// ---- loads ---------------------------------------------------------------------
// Four elements as four binary64 lanes; binary32 elements are widened exactly.
inline __m256d wide4(const float* p) { return _mm256_cvtps_pd(_mm_loadu_ps(p)); }
inline __m256d wide4(const double* p) { return _mm256_loadu_pd(p); }
inline double wide1(const float* p) { return ld(p, 0); }
inline double wide1(const double* p) { return ld(p, 0); }

inline __m128d lowHalf(__m256d v) { return _mm256_castpd256_pd128(v); }
inline __m128d highHalf(__m256d v) { return _mm256_extractf128_pd(v, 1); }
inline __m128 lowHalf(__m256 v) { return _mm256_castps256_ps128(v); }
inline __m128 highHalf(__m256 v) { return _mm256_extractf128_ps(v, 1); }
inline double lane0(__m128d v) { return _mm_cvtsd_f64(v); }
inline double lane1(__m128d v) { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }

// The upper half added to the lower: {l0 + l2, l1 + l3}.
inline __m128d foldHalves(__m256d v) { return add(lowHalf(v), highHalf(v)); }
inline __m128 foldHalves(__m256 v) { return add(lowHalf(v), highHalf(v)); }
// Four lanes in pairs: (l0 + l2) + (l1 + l3).
inline double foldPairs(__m256d v) {
    const __m128d p = foldHalves(v);
    return lane0(p) + lane1(p);
}
inline float foldPairs(__m128 v) {
    const __m128 p = add(v, _mm_movehl_ps(v, v));
    return _mm_cvtss_f32(p) + _mm_cvtss_f32(_mm_movehdup_ps(p));
}

// ---- binary64: sixteen a round ----------------------------------------------------
// Sixteen elements a round into four 4-lane sums A..D (elements 0-3, 4-7,
// 8-11, 12-15 of the round), combined as (A + B) + (C + D); then four
// elements a round into the combined sum; then the upper two lanes added to
// the lower two. What is left, {even lanes, odd lanes} and the count done (a
// multiple of 4), goes to the caller, which adds the last elements in order:
// one lane pair per real total, or the real and imaginary totals of an
// interleaved complex vector.
struct Pair {
    __m128d lanes;
    i64 done;
};
template <class Step, class... T>
inline Pair fold16(i64 n, Step step, const T*... p) {
    __m256d a = _mm256_setzero_pd(), b = a, c = a, d = a;
    i64 i = 0;
    for (; i + 16 <= n; i += 16) {
        a = step(a, wide4(p + i)...);
        b = step(b, wide4(p + i + 4)...);
        c = step(c, wide4(p + i + 8)...);
        d = step(d, wide4(p + i + 12)...);
    }
    __m256d s = add(add(a, b), add(c, d));
    for (; i + 4 <= n; i += 4) s = step(s, wide4(p + i)...);
    return {foldHalves(s), i};
}

// ---- steps: acc combined with the term of one element, or of the difference
// of two, on registers and scalars alike ------------------------------------------
inline float plus(float a, float b) { return a + b; }
inline double plus(double a, double b) { return a + b; }
template <class V> V plus(V a, V b) { return add(a, b); }
inline i64 minus(i64 a, i64 b) { return a - b; }
inline float minus(float a, float b) { return a - b; }
inline double minus(double a, double b) { return a - b; }
template <class V> V minus(V a, V b) { return sub(a, b); }
inline float fused(float a, float b, float c) { return std::fma(a, b, c); }
inline double fused(double a, double b, double c) { return std::fma(a, b, c); }
template <class V> V fused(V a, V b, V c) { return fma(a, b, c); }
inline float absOf(float a) { return std::fabs(a); }
inline double absOf(double a) { return std::fabs(a); }
inline __m256 absOf(__m256 a) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), a); }
inline __m256d absOf(__m256d a) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a); }

// x, or x - y (rounded) for a difference of two vectors.
template <class V> V termOf(V x) { return x; }
template <class V> V termOf(V x, V y) { return minus(x, y); }

struct AddStep {
    template <class A, class... V> A operator()(A acc, V... x) const { return plus(acc, termOf(x...)); }
};
struct AbsStep {
    template <class A, class... V> A operator()(A acc, V... x) const { return plus(acc, absOf(termOf(x...))); }
};
struct SquareStep {  // acc + t*t, fused
    template <class A, class... V> A operator()(A acc, V... x) const {
        const A t = termOf(x...);
        return fused(t, t, acc);
    }
};
struct ProductStep {  // acc + x*y, fused (exact products of widened binary32)
    template <class A> A operator()(A acc, A x, A y) const { return fused(x, y, acc); }
};

// A real total: the shape above, its lanes, then each last element in order.
template <class Step, class... T>
inline double total64(i64 n, Step step, const T*... p) {
    const Pair r = fold16(n, step, p...);
    double s = lane0(r.lanes) + lane1(r.lanes);
    for (i64 i = r.done; i < n; ++i) s = step(s, wide1(p + i)...);
    return s;
}
// An interleaved complex total over 2n parts: {re, im}.
struct Parts64 {
    double re, im;
};
template <class Step, class... T>
inline Parts64 parts64(i64 n2, Step step, const T*... p) {
    const Pair r = fold16(n2, step, p...);
    Parts64 s{lane0(r.lanes), lane1(r.lanes)};
    if (r.done < n2) {  // at most one pair is left
        s.re = step(s.re, wide1(p + r.done)...);
        s.im = step(s.im, wide1(p + r.done + 1)...);
    }
    return s;
}

// ---- binary32: eight lanes a round ----------------------------------------------------
// Two 4-lane accumulators over blocks of 8 (elements 0-3 and 4-7, one wide
// register), then the second added to the first. The caller folds the four
// lanes and adds the last elements.
template <class Step, class... T>
inline __m128 fold8(i64 n, i64& done, Step step, const T*... p) {
    __m256 acc = _mm256_setzero_ps();
    i64 i = 0;
    for (; i + 8 <= n; i += 8) acc = step(acc, _mm256_loadu_ps(p + i)...);
    done = i;
    return foldHalves(acc);
}

// ---- the fast route: binary32 partial sums over aligned blocks -------------------
// Used where a caller asks for speed (hint 1): a 4-byte aligned vector (an
// 8-byte aligned one for complex data, so that parts keep their lanes) is
// brought to a 32-byte boundary by single elements, then summed in 32 lanes
// of binary32; the partial sums are added in binary64 at the end.
// Returns {sum of even, sum of odd positions}.
inline Parts64 fastSum32(const float* p, i64 n, bool complex) {
    float head[2] = {0.0f, 0.0f}, tail[2] = {0.0f, 0.0f};
    i64 i = 0;
    if ((addr(p) & (complex ? 7u : 3u)) == 0) {
        const i64 peel = std::min<i64>(n, static_cast<i64>((32 - (addr(p) & 31)) & 31) / 4);
        for (; i < peel; ++i) head[i & 1] += ld(p, i);
    }
    __m256 a = _mm256_setzero_ps(), b = a, c = a, d = a;
    for (; i + 32 <= n; i += 32) {
        a = _mm256_add_ps(a, _mm256_loadu_ps(p + i));
        b = _mm256_add_ps(b, _mm256_loadu_ps(p + i + 8));
        c = _mm256_add_ps(c, _mm256_loadu_ps(p + i + 16));
        d = _mm256_add_ps(d, _mm256_loadu_ps(p + i + 24));
    }
    for (; i + 8 <= n; i += 8) a = _mm256_add_ps(a, _mm256_loadu_ps(p + i));
    for (; i < n; ++i) tail[i & 1] += ld(p, i);
    __m256d w = _mm256_setzero_pd();
    for (__m256 v : {a, b, c, d}) w = _mm256_add_pd(w, _mm256_add_pd(_mm256_cvtps_pd(lowHalf(v)), _mm256_cvtps_pd(highHalf(v))));
    const __m128d s = foldHalves(w);
    return {lane0(s) + (double(head[0]) + double(tail[0])), lane1(s) + (double(head[1]) + double(tail[1]))};
}

// ---- exact integer totals ---------------------------------------------------------------
// Per-lane 64-bit totals of 16-bit elements: sign-extended into 32-bit lanes
// (lane j holds the elements at positions j mod 8), moved into 64-bit totals
// before a lane can overflow.
struct Lanes8 {
    i64 lane[8];
    i64 even() const { return lane[0] + lane[2] + lane[4] + lane[6]; }
    i64 odd() const { return lane[1] + lane[3] + lane[5] + lane[7]; }
    i64 all() const { return even() + odd(); }
};
inline void spill(__m256i& acc32, __m256i& lo64, __m256i& hi64) {
    lo64 = _mm256_add_epi64(lo64, _mm256_cvtepi32_epi64(_mm256_castsi256_si128(acc32)));
    hi64 = _mm256_add_epi64(hi64, _mm256_cvtepi32_epi64(_mm256_extracti128_si256(acc32, 1)));
    acc32 = _mm256_setzero_si256();
}
inline Lanes8 laneTotals16(const Zet16s* p, i64 n) {
    __m256i acc = _mm256_setzero_si256(), lo = acc, hi = acc;
    i64 i = 0;
    while (i + 8 <= n) {
        const i64 end = std::min(n - 7, i + 8 * 32768);  // 2^15 elements of at most 2^15 a lane
        for (; i < end; i += 8)
            acc = _mm256_add_epi32(acc, _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i))));
        spill(acc, lo, hi);
    }
    Lanes8 r;
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(r.lane), lo);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(r.lane + 4), hi);
    for (; i < n; ++i) r.lane[i & 7] += ld(p, i);
    return r;
}

// Sum of squares of 16-bit elements (each at most 2^30), exact in 64 bits.
inline i64 squareTotal16(const Zet16s* p, i64 n) {
    __m256i lo = _mm256_setzero_si256(), hi = lo;
    i64 i = 0;
    for (; i + 16 <= n; i += 16) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
        const __m256i sq = _mm256_madd_epi16(v, v);  // pairs of squares: at most 2^31, read unsigned
        lo = _mm256_add_epi64(lo, _mm256_unpacklo_epi32(sq, _mm256_setzero_si256()));
        hi = _mm256_add_epi64(hi, _mm256_unpackhi_epi32(sq, _mm256_setzero_si256()));
    }
    alignas(32) i64 t[4];
    _mm256_store_si256(reinterpret_cast<__m256i*>(t), _mm256_add_epi64(lo, hi));
    i64 s = t[0] + t[1] + t[2] + t[3];
    for (; i < n; ++i) s += i64{ld(p, i)} * ld(p, i);
    return s;
}

// ---- the floating scale step of integer reductions --------------------------------------
// v times 2^-scale, the factor built in the exponent field (1023 - scale held
// to 0..2047: zero for very large scales, infinity for very negative ones),
// held to D's range in floating point and rounded by the processor's default
// rounding, ties to even. A zero value stays zero whatever the factor.
template <class D>
inline D floatScale(double v, int scale) {
    const i64 e = std::clamp<i64>(1023 - static_cast<i64>(scale), 0, 2047);
    const double f = std::bit_cast<double>(static_cast<std::uint64_t>(e) << 52);
    if (v == 0) return 0;
    const double lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    const double x = std::min(std::max(v * f, lo), hi);
    return static_cast<D>(_mm_cvtsd_si32(_mm_set_sd(x)));
}

}  // namespace zet::stats
