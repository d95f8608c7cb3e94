// Vector elementary kernels of the polar family, one definition for binary32
// (__m256, 8 lanes) and binary64 (__m256d, 4 lanes): the magnitude, the
// phase, the power, and (binary64 only) magnitude and phase back to
// Cartesian form. Every lane is computed on its own: a lane's result never
// depends on its neighbours, so a fallback taken for one lane leaves the
// others as the fast path made them, and a vector's tail, run through the
// same code, matches what the element would have got anywhere else.
#pragma once

#include <immintrin.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "frame/simd.hpp"

namespace zet::polar {

using simd::div;
using simd::fma;
using simd::max;
using simd::sub;

template <class V> struct Pair {
    V re, im;
};
template <class V> Pair(V, V) -> Pair<V>;  // spelled out for compilers without aggregate deduction

template <class V> using Elem = std::conditional_t<std::is_same_v<V, __m256>, float, double>;
template <class V> inline V splat(double c) {
    if constexpr (std::is_same_v<V, __m256>) return _mm256_set1_ps(static_cast<float>(c));
    else return _mm256_set1_pd(c);
}

// ---- the lane operations simd.hpp leaves out ----------------------------------------
// Masks are all-ones lanes; blend(a, b, m) takes b where the sign bit of m is
// set; least() is the processor's minimum, b unless a compares smaller, so
// a NaN in b goes through. add and mul are the plain instructions (no NaN
// of either operand is promised here).
#define ZET_POLAR_LANES(R, P, S, I)                                                  \
    inline R add(R a, R b) { return P##add_##S(a, b); }                              \
    inline R mul(R a, R b) { return P##mul_##S(a, b); }                              \
    inline R root(R a) { return P##sqrt_##S(a); }                                    \
    inline R least(R a, R b) { return P##min_##S(a, b); }                            \
    inline R both(R a, R b) { return P##and_##S(a, b); }                             \
    inline R either(R a, R b) { return P##or_##S(a, b); }                            \
    inline R flipBy(R a, R b) { return P##xor_##S(a, b); }                           \
    inline R without(R a, R b) { return P##andnot_##S(b, a); }                       \
    inline R fnmadd(R a, R b, R c) { return P##fnmadd_##S(a, b, c); }                \
    inline R blend(R a, R b, R m) { return P##blendv_##S(a, b, m); }
ZET_SIMD_EACH(ZET_POLAR_LANES)
#undef ZET_POLAR_LANES
template <int P> inline __m256 test(__m256 a, __m256 b) { return _mm256_cmp_ps(a, b, P); }
template <int P> inline __m256d test(__m256d a, __m256d b) { return _mm256_cmp_pd(a, b, P); }
inline bool all(__m256 m) { return _mm256_movemask_ps(m) == 0xFF; }
inline bool all(__m256d m) { return _mm256_movemask_pd(m) == 0xF; }

template <class V> inline V signOf(V a) { return both(a, splat<V>(-0.0)); }
template <class V> inline V magnitudeOf(V a) { return without(a, splat<V>(-0.0)); }
template <class V> inline V isInfinite(V a) { return test<_CMP_EQ_OQ>(magnitudeOf(a), splat<V>(INFINITY)); }

// ---- constants of each precision -------------------------------------------------------
template <class T> struct Consts;
template <> struct Consts<float> {
    // Magnitude: re^2 + im^2 from 2^-102 up is computed in full; the scaled
    // path moves a larger part below kTinyPart up by kUp, one above
    // kHugePart down by kDown, into [2^-59, 2^58].
    static constexpr double kNormalSquares = 0x1p-102;
    static constexpr double kTinyPart = 0x1p-50, kHugePart = 0x1p60, kUp = 0x1p90, kDown = 0x1p-70;
    // Phase: |re| + |im| below this cannot overflow in the octant sums.
    static constexpr double kPhaseTop = 0x1p126, kTinyDen = 0x1p-149, kSmallestNormal = 0x1p-126;
    // pi/4 in two parts.
    static constexpr double kPi4Hi = 0x1.921fb6p-1, kPi4Lo = -0x1.777a5cp-26;
    // atan(t) = t + t^3 P(t^2) for |t| <= 1/2, relative error below 2^-27.4
    // (a weighted minimax fit of P, degree 4).
    static constexpr float kAtan[] = {-0x1.555512p-2f, 0x1.997b54p-3f, -0x1.224de2p-3f, 0x1.a0277ep-4f, -0x1.a47668p-5f};
};
template <> struct Consts<double> {
    static constexpr double kNormalSquares = 0x1p-960;
    static constexpr double kTinyPart = 0x1p-470, kHugePart = 0x1p500, kUp = 0x1p600, kDown = 0x1p-600;
    static constexpr double kPhaseTop = 0x1p1022, kTinyDen = 0x1p-1074, kSmallestNormal = 0x1p-1022;
    static constexpr double kPi4Hi = 0x1.921fb54442d18p-1, kPi4Lo = 0x1.1a62633145c07p-55;
    // The same fit at degree 11: relative error below 2^-57.7.
    static constexpr double kAtan[] = {-0x1.5555555555516p-2, 0x1.9999999991150p-3, -0x1.249249215e1d7p-3, 0x1.c71c7090f878cp-4,
                                       -0x1.745cf4cc7b916p-4, 0x1.3b113dd215c45p-4, -0x1.10f31fb2ae3f4p-4, 0x1.dfe97ebd87e3ep-5,
                                       -0x1.a398809ea5c32p-5, 0x1.56f606943a524p-5, -0x1.c18085430be20p-6, 0x1.4b84e6f7011e9p-7};
};

// c[0] + z c[1] + ... + z^n c[n] by Horner's rule, each step fused.
template <class V, class C, std::size_t N>
inline V horner(V z, const C (&c)[N]) {
    V p = splat<V>(c[N - 1]);
    for (std::size_t i = N - 1; i-- > 0;) p = fma(p, z, splat<V>(c[i]));
    return p;
}

// ---- power and magnitude -----------------------------------------------------------------
// re^2 + im^2 with one fused step: fma(re, re, im * im).
template <class V> inline V power(Pair<V> z) { return fma(z.re, z.re, mul(z.im, z.im)); }

// Lanes whose power s lies outside [lo, inf), NaN included: one integer
// comparison on the bits, the range moved (with wrap-around) to the bottom
// of the signed line.
inline __m256 outside(__m256 s, double lo) {
    const std::uint32_t bottom = std::bit_cast<std::uint32_t>(static_cast<float>(lo)), top = 0x7F800000u;
    const __m256i t = _mm256_add_epi32(_mm256_castps_si256(s), _mm256_set1_epi32(static_cast<std::int32_t>(0x80000000u - bottom)));
    return _mm256_castsi256_ps(_mm256_cmpgt_epi32(t, _mm256_set1_epi32(static_cast<std::int32_t>(0x80000000u + (top - bottom) - 1))));
}
inline __m256d outside(__m256d s, double lo) {
    const std::uint64_t bottom = std::bit_cast<std::uint64_t>(lo), top = 0x7FF0000000000000u, base = 0x8000000000000000u;
    const __m256i t = _mm256_add_epi64(_mm256_castpd_si256(s), _mm256_set1_epi64x(static_cast<std::int64_t>(base - bottom)));
    return _mm256_castsi256_pd(_mm256_cmpgt_epi64(t, _mm256_set1_epi64x(static_cast<std::int64_t>(base + (top - bottom) - 1))));
}
inline bool none(__m256 m) { return _mm256_testz_ps(m, m); }
inline bool none(__m256d m) { return _mm256_testz_pd(m, m); }

// Lanes whose squares would overflow or lose bits to underflow, and the
// special ones. Exact zeros keep the root; for the others the larger part is
// scaled by a power of two into the safe range, the smaller with it, and the
// root scaled back (one more rounding only where the result is subnormal).
// An infinite part gives +inf even beside a NaN.
template <class At, class V>
[[gnu::noinline]] V magnitudeOdd(At at, V fast, V odd) {
    using K = Consts<Elem<V>>;
    const Pair<V> z = at.load();
    odd = without(odd, test<_CMP_EQ_OQ>(either(z.re, z.im), splat<V>(0.0)));
    if (none(odd)) return fast;
    const V a = magnitudeOf(z.re), b = magnitudeOf(z.im), x = max(a, b), y = least(b, a);
    const V one = splat<V>(1.0), up = test<_CMP_LT_OQ>(x, splat<V>(K::kTinyPart)), down = test<_CMP_GT_OQ>(x, splat<V>(K::kHugePart));
    const V scale = blend(blend(one, splat<V>(K::kDown), down), splat<V>(K::kUp), up);
    const V back = blend(blend(one, splat<V>(1 / K::kDown), down), splat<V>(1 / K::kUp), up);
    const V xs = mul(x, scale), ys = mul(y, scale);
    const V r = blend(mul(root(fma(xs, xs, mul(ys, ys))), back), splat<V>(INFINITY), either(isInfinite(a), isInfinite(b)));
    return blend(fast, r, odd);
}

// The kernels read their pair through at.load(). A lane fallback reads it
// again in its own out-of-line function, so that the fast path keeps
// nothing alive across the call.
template <class At> using RegOf = decltype(std::declval<At>().load().re);

// sqrt(fma(re, re, im * im)): the sum is within two units of its last place
// of re^2 + im^2, so the root is less than 1.5 ulp from |z| and at most one
// ulp from the correctly rounded result, as long as the sum is a normal
// number with room below it for the rounding of im * im. The other lanes go
// through magnitudeOdd().
template <class At>
inline auto magnitude(const At& at) {
    using V = RegOf<At>;
    const V s = power(at.load()), r = root(s);
    const V odd = outside(s, Consts<Elem<V>>::kNormalSquares);
    return none(odd) ? r : magnitudeOdd(at, r, odd);
}

// ---- phase ---------------------------------------------------------------------------------
// An approximate 1/d for a correction term: 12 bits are plenty in binary32;
// binary64 has no such instruction and divides.
inline __m256 inverse(__m256 d) { return _mm256_rcp_ps(d); }
inline __m256d inverse(__m256d d) { return div(splat<__m256d>(1.0), d); }

// The angle of (x, y) from the magnitudes a = |x|, b = |y| and the sign bits.
// With lo/hi the smaller/larger magnitude, atan(lo/hi) is taken directly up
// to lo/hi = 1/2 and as pi/4 + atan((lo - hi)/(lo + hi)) above (the
// difference is exact there), so the polynomial sees |t| <= 1/2 and one
// division serves every case. The quotient's own rounding and that of
// lo + hi are recovered exactly (a fused remainder, a two-term sum) and
// carried as tLo, which enters as atan(t + tLo) = atan(t) + tLo (1 - t^2).
// Mirroring about pi/4 (b > a) and about pi/2 (x negative, -0 included)
// turns the angle into k pi/4 +- atan(t); the sign goes into t, and k pi/4
// (k = 0..4) is added in two parts, the high part last with a fused step,
// so k = 0 leaves t + tail rounded once. y's sign bit is copied last.
template <class V>
inline V octantAngle(V a, V b, V xSign, V ySign) {
    using K = Consts<Elem<V>>;
    const V lo = least(a, b), hi = max(a, b);
    const V swap = test<_CMP_GT_OQ>(b, a), mid = test<_CMP_GT_OQ>(lo, mul(hi, splat<V>(0.5)));
    const V num = sub(lo, both(mid, hi)), midLo = both(mid, lo);
    const V den = max(splat<V>(K::kTinyDen), add(hi, midLo));  // 0/0 becomes 0/tiny
    const V denErr = sub(midLo, sub(den, hi));
    const V q = div(num, den);
    // num / (den + denErr) - q to first order; the inverse is held to normal
    // numbers, which only weakens the correction where den is subnormal.
    const V qErr = mul(fnmadd(q, denErr, fnmadd(q, den, num)), inverse(max(den, splat<V>(K::kSmallestNormal))));
    const V minus = flipBy(both(swap, splat<V>(-0.0)), xSign);
    const V t = flipBy(q, minus), tLo = flipBy(qErr, minus);
    const V z = mul(t, t);
    const V tail = fma(mul(t, z), horner(z, K::kAtan), fnmadd(z, tLo, tLo));
    const V base = blend(blend(splat<V>(0.0), splat<V>(4.0), xSign), splat<V>(2.0), swap);
    const V k = add(base, both(mid, flipBy(splat<V>(1.0), minus)));
    const V angle = fma(k, splat<V>(K::kPi4Hi), add(t, fma(k, splat<V>(K::kPi4Lo), tail)));
    return flipBy(angle, ySign);
}

// The magnitudes and sign bits of the parts, and |re| + |im|.
template <class V>
struct Octant {
    V a, b, xSign, ySign, sum;
    explicit Octant(Pair<V> z) : xSign(signOf(z.re)), ySign(signOf(z.im)) {
        a = flipBy(z.re, xSign), b = flipBy(z.im, ySign), sum = add(a, b);
    }
};

// Lanes with |re| + |im| at or above the safe top: large finite parts are
// scaled by 1/4, infinite ones become 1 and the finite part beside them 0,
// which yields the +-pi/4, +-3pi/4 and axis angles; NaN lanes give NaN.
template <class At, class V>
[[gnu::noinline]] V phaseOdd(At at, V fast, V fine) {
    const Octant<V> o(at.load());
    const V one = splat<V>(1.0), quarter = splat<V>(0.25);
    const V infA = isInfinite(o.a), infB = isInfinite(o.b), inf = either(infA, infB);
    const V a = blend(mul(o.a, quarter), both(infA, one), inf), b = blend(mul(o.b, quarter), both(infB, one), inf);
    const V r = blend(octantAngle(a, b, o.xSign, o.ySign), o.sum, test<_CMP_UNORD_Q>(o.sum, o.sum));
    return blend(r, fast, fine);
}

// atan2(im, re) in [-pi, pi], with the signed zeros and infinities of C's atan2.
template <class At>
inline auto phase(const At& at) {
    using V = RegOf<At>;
    const Octant<V> o(at.load());
    const V fine = test<_CMP_LT_OQ>(o.sum, splat<V>(Consts<Elem<V>>::kPhaseTop));
    const V r = octantAngle(o.a, o.b, o.xSign, o.ySign);
    return all(fine) ? r : phaseOdd(at, r, fine);
}

// ---- polar to Cartesian (binary64) ------------------------------------------------------------
// The vector path covers |phase| <= 2^20 pi; beyond it, and for phases that
// are not finite, the lanes go through the C library.
constexpr double kPolarBound = 0x1.921fb54442d18p+21;

// A value in two parts, hi + lo, |lo| <= ulp(hi).
struct Split2 {
    __m256d hi, lo;
};
inline Split2 quickSum(__m256d big, __m256d small) {
    const __m256d hi = add(big, small);
    return {hi, add(sub(big, hi), small)};
}

// sin and cos of r = s + lo (|r| <= pi/4 and a bit) in two parts each:
// sin r = s + s z S(z) + lo cos s, cos r = 1 - z/2 + z^2 C(z) - lo s, with
// z = s^2 and its rounding error carried, both fits weighted minimax (degree
// 5 in z, relative errors below 2^-57.9 and 2^-63.9).
struct SinCos {
    Split2 sin, cos;
};
inline SinCos sinCosReduced(__m256d s, __m256d lo) {
    static constexpr double kSin[] = {-0x1.5555555555548p-3, 0x1.111111110f7d0p-7, -0x1.a01a019bfdee3p-13,
                                      0x1.71de3567d2b92p-19, -0x1.ae5e5a91192eep-26, 0x1.5d8fd18c64f3ep-33};
    static constexpr double kCos[] = {0x1.555555555554bp-5, -0x1.6c16c16c14f91p-10, 0x1.a01a019c844d7p-16,
                                      -0x1.27e4f7eac35c1p-22, 0x1.1ee9d7b3ef0ffp-29, -0x1.8fa49986d7ee3p-37};
    const __m256d half = splat<__m256d>(0.5), one = splat<__m256d>(1.0);
    const __m256d z = mul(s, s), zErr = _mm256_fmsub_pd(s, s, z);
    const __m256d hz = mul(half, z), w = sub(one, hz), wErr = sub(sub(one, w), hz);
    // s^3 S(z) with the rounding errors of z and of s z carried: at |r| near
    // pi/4 they would otherwise cost a third of an ulp.
    const __m256d sz = mul(s, z), szErr = fma(s, zErr, _mm256_fmsub_pd(s, z, sz)), poly = horner(z, kSin);
    const __m256d sinTail = fma(sz, poly, fma(szErr, poly, mul(lo, w)));
    const __m256d cosTail = fma(mul(z, z), horner(z, kCos), sub(sub(wErr, mul(half, zErr)), mul(s, lo)));
    return {quickSum(s, sinTail), quickSum(w, cosTail)};
}

// magn * (hi + lo) rounded once. An infinite or NaN low product (from an
// infinite magnitude) is dropped, so the result is what magn * hi gives; a
// zero result takes the sign of magn * hi, as a plain product would.
inline __m256d scaleBy(__m256d magn, Split2 v) {
    const __m256d zero = splat<__m256d>(0.0), low = mul(magn, v.lo);
    const __m256d r = fma(magn, v.hi, both(low, test<_CMP_EQ_OQ>(sub(low, low), zero)));
    return blend(r, mul(magn, v.hi), test<_CMP_EQ_OQ>(r, zero));
}

// Lanes the vector path does not cover: magn * cos and magn * sin of the
// C library (two roundings each), NaN for a phase that is not finite.
template <class At>
[[gnu::noinline]] Pair<__m256d> polarToCartLibm(At at, Pair<__m256d> fast, __m256d fine) {
    const Pair<__m256d> mp = at.load();
    alignas(32) double m[4], p[4], re[4], im[4], ok[4];
    _mm256_store_pd(m, mp.re), _mm256_store_pd(p, mp.im), _mm256_store_pd(re, fast.re), _mm256_store_pd(im, fast.im), _mm256_store_pd(ok, fine);
    for (int l = 0; l < 4; ++l) {
        if (std::signbit(ok[l])) continue;
        if (!std::isfinite(p[l])) re[l] = im[l] = p[l] - p[l];
        else re[l] = m[l] * std::cos(p[l]), im[l] = m[l] * std::sin(p[l]);
    }
    return {_mm256_load_pd(re), _mm256_load_pd(im)};
}

// magn cos(phase), magn sin(phase). The phase is reduced by k pi/2 with pi/2
// in three parts: x - k c1 is exact under a fused step, k c2 is split
// exactly, and the reduced argument is kept in two parts. The quadrant picks
// and signs the sine and cosine; each product with the magnitude is rounded once.
template <class At>
inline Pair<__m256d> polarToCart(const At& at) {
    const auto [magn, phase] = at.load();
    const __m256d k = _mm256_round_pd(mul(phase, splat<__m256d>(0x1.45f306dc9c883p-1)), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    const __m256d c1 = splat<__m256d>(0x1.921fb54442d18p+0), c2 = splat<__m256d>(0x1.1a62633145c07p-54), c3 = splat<__m256d>(-0x1.f1976b7ed8fbcp-110);
    const __m256d r1 = _mm256_fnmadd_pd(k, c1, phase);
    const __m256d p = mul(k, c2), pErr = _mm256_fmsub_pd(k, c2, p);
    const __m256d s = sub(r1, p), back = sub(s, r1);
    const __m256d sErr = sub(sub(r1, sub(s, back)), add(p, back));  // r1 - p - s, exactly
    SinCos sc = sinCosReduced(s, _mm256_fnmadd_pd(k, c3, sub(sErr, pErr)));
    sc.sin.hi = blend(sc.sin.hi, phase, test<_CMP_EQ_OQ>(phase, splat<__m256d>(0.0)));  // sin(-0) = -0
    // Quadrant q = k mod 4 from the low bits of k: odd q exchanges sine and
    // cosine; the cosine is negated for q = 1, 2, the sine for q = 2, 3.
    const __m256i q = _mm256_castpd_si256(add(k, splat<__m256d>(0x1.8p52)));
    const __m256d odd = _mm256_castsi256_pd(_mm256_slli_epi64(q, 63)), signBit = splat<__m256d>(-0.0);
    const __m256d sinSign = both(_mm256_castsi256_pd(_mm256_slli_epi64(q, 62)), signBit);
    const __m256d cosSign = both(_mm256_castsi256_pd(_mm256_slli_epi64(_mm256_add_epi64(q, _mm256_set1_epi64x(1)), 62)), signBit);
    const Split2 c{flipBy(blend(sc.cos.hi, sc.sin.hi, odd), cosSign), flipBy(blend(sc.cos.lo, sc.sin.lo, odd), cosSign)};
    const Split2 sn{flipBy(blend(sc.sin.hi, sc.cos.hi, odd), sinSign), flipBy(blend(sc.sin.lo, sc.cos.lo, odd), sinSign)};
    const Pair<__m256d> r{scaleBy(magn, c), scaleBy(magn, sn)};
    const __m256d fine = test<_CMP_LE_OQ>(magnitudeOf(phase), splat<__m256d>(kPolarBound));
    return all(fine) ? r : polarToCartLibm(at, r, fine);
}

}  // namespace zet::polar
