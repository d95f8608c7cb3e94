// Norms, norms of a difference, and dot products.
//
// Floating forms reuse the reduction shapes: binary64 totals in the order of
// fold16, binary32 totals in two 4-lane accumulators (fold8), the value
// extremes of the extrema family. Each element's term is the element or the
// difference of two, so a Norm and its NormDiff are one implementation.
// Integer forms are exact (in 64 bits, or 128 where 64 could overflow) and
// are scaled at the end.
#include <cmath>
#include <limits>

#include "arith/fixed_rule.hpp"
#include "frame/checks.hpp"
#include "stats/extreme.hpp"
#include "stats/reduce.hpp"

namespace zet::stats {
namespace {

// ---- binary32 totals -----------------------------------------------------------------------
// L1 and L2 of binary32 data in binary32: fold8, the four lanes folded in
// pairs, then the last elements one at a time.
template <class Step, class... T>
float total32(i64 n, Step step, const T*... p) {
    i64 done;
    const __m128 s = fold8(n, done, step, p...);
    float r = foldPairs(s);
    for (i64 i = done; i < n; ++i) r = step(r, ld(p, i)...);
    return r;
}
// The same sum of squares, but the partial sums are widened to binary64 and
// folded there, the last squares added there too.
template <class... T>
double squares32in64(i64 n, const T*... p) {
    i64 done;
    const __m128 s = fold8(n, done, SquareStep{}, p...);
    double r = foldPairs(_mm256_cvtps_pd(s));
    for (i64 i = done; i < n; ++i) r = SquareStep{}(r, static_cast<double>(ld(p, i))...);
    return r;
}

// ---- complex magnitudes --------------------------------------------------------------------
inline __m256 pairSums(__m256 a, __m256 b) { return _mm256_hadd_ps(a, b); }
inline __m256d pairSums(__m256d a, __m256d b) { return _mm256_hadd_pd(a, b); }

// Sum of |z| = sqrt(re*re + im*im) over n complex elements in binary64, four
// a round in one accumulator; p point to the parts.
template <class... T>
double magnitudeTotal(i64 n, const T*... p) {
    __m256d acc = _mm256_setzero_pd();
    i64 i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m256d v = termOf(wide4(p + 2 * i)...), w = termOf(wide4(p + 2 * i + 4)...);
        acc = add(acc, _mm256_sqrt_pd(pairSums(mul(v, v), mul(w, w))));
    }
    double s = foldPairs(acc);
    for (; i < n; ++i) {
        const double re = termOf(wide1(p + 2 * i)...), im = termOf(wide1(p + 2 * i + 1)...);
        s += std::sqrt(re * re + im * im);
    }
    return s;
}
// The largest re*re + im*im in the parts' own precision (the caller takes
// the root once).
template <class R, class... T>
R largestSquare(i64 n, const T*... p) {
    using G = Reg<R>;
    constexpr int N = G::N;  // parts a register: N complex elements in two
    auto acc = G::set1(R(0));
    i64 i = 0;
    for (; i + N <= n; i += N) {
        const auto v = termOf(G::load(p + 2 * i)...), w = termOf(G::load(p + 2 * i + N)...);
        acc = G::max(acc, pairSums(mul(v, v), mul(w, w)));
    }
    R m = foldLanes<Greatest, R>(acc);
    for (; i < n; ++i) {
        const R re = termOf(ld(p, 2 * i)...), im = termOf(ld(p, 2 * i + 1)...);
        m = Greatest::pick(m, re * re + im * im);
    }
    return m;
}

template <class C> auto parts(const C* p) {
    if constexpr (std::is_same_v<C, Zet32fc>) return reinterpret_cast<const float*>(p);
    else return reinterpret_cast<const double*>(p);
}

// ---- norms: one implementation serves Norm (one source) and NormDiff (two) --------------------
enum class Kind { Inf, L1, L2, L2Sqr };

template <class C> constexpr bool kComplex = std::is_same_v<C, Zet32fc> || std::is_same_v<C, Zet64fc>;

// L2 of binary32 data: Norm takes the root of the binary64 fold in binary64,
// NormDiff the root of its binary32 total in binary32. The two can differ in
// the last bit on the same differences; that is kept.
template <Kind K, class R, class... T>
auto realNorm(i64 n, const T*... p) {
    constexpr bool kOne = sizeof...(T) == 1;
    if constexpr (K == Kind::Inf) {
        if constexpr (kOne) return extreme<Greatest>(Magnitude<R>{p...}, n);
        else return extreme<Greatest>(DiffMagnitude<R>{p...}, n);
    } else if constexpr (K == Kind::L1) {
        if constexpr (sizeof(R) == 4) return total32(n, AbsStep{}, p...);
        else return total64(n, AbsStep{}, p...);
    } else if constexpr (sizeof(R) == 8) {
        return std::sqrt(total64(n, SquareStep{}, p...));
    } else if constexpr (kOne) {
        return static_cast<float>(std::sqrt(squares32in64(n, p...)));
    } else {
        return std::sqrt(total32(n, SquareStep{}, p...));
    }
}
// Complex data: Inf in the parts' precision, L1 and L2 in binary64.
template <Kind K, class... T>
auto complexNorm(i64 n, const T*... p) {
    using R = std::remove_cv_t<std::remove_pointer_t<decltype((parts(p), ...))>>;
    if constexpr (K == Kind::Inf) return std::sqrt(largestSquare<R>(n, parts(p)...));
    else if constexpr (K == Kind::L1) return magnitudeTotal(n, parts(p)...);
    else return std::sqrt(total64(2 * n, SquareStep{}, parts(p)...));
}
template <Kind K, class Out, class... E>
ZetStatus norm(i64 len, Out* out, const E*... p) {
    if (auto s = checkArgs(len, p..., out)) return s;
    if constexpr ((kComplex<E> && ...)) *out = complexNorm<K>(len, p...);
    else *out = realNorm<K, Out>(len, p...);
    return zetStsOk;
}

// ---- integer norms ---------------------------------------------------------------------------
struct IntNorms {
    std::uint64_t inf, l1, l2sqr;  // the differences of 16-bit data: at most 65535, 2^47, 2^63
};
template <class... T>
IntNorms intNorms(i64 n, const T*... p) {
    std::uint64_t inf = 0, l1 = 0, l2 = 0;
    for (i64 i = 0; i < n; ++i) {
        const i64 d = termOf(static_cast<i64>(ld(p, i))...);
        const std::uint64_t m = static_cast<std::uint64_t>(d < 0 ? -d : d);
        inf = std::max(inf, m);
        l1 += m;
        l2 += m * m;
    }
    return {inf, l1, l2};
}
// The integer root: divided (scale above 0) or multiplied by 1 << (scale & 31)
// read as a signed 32-bit number, held at -2^31 from below, above 2^31 - 1
// saturated, and otherwise truncated toward zero, not rounded. A scale of 31
// makes the divisor, and so the result, negative.
Zet32s truncatedRoot(double root, int scale) {
    const std::uint32_t k = static_cast<std::uint32_t>(scale > 0 ? scale : -static_cast<i64>(scale)) & 31;
    const double f = static_cast<std::int32_t>(1u << k);
    double v = scale > 0 ? root / f : root * f;
    if (v < -2147483648.0) v = -2147483648.0;
    if (v > 2147483647.0) return std::numeric_limits<Zet32s>::max();
    return static_cast<Zet32s>(v);
}
template <Kind K, class Out>
Out finish(IntNorms t, int scale) {
    const std::uint64_t v = K == Kind::Inf ? t.inf : K == Kind::L1 ? t.l1 : t.l2sqr;
    if constexpr (std::is_floating_point_v<Out>) return static_cast<Out>(K == Kind::L2 ? std::sqrt(static_cast<double>(v)) : v);
    else if constexpr (K == Kind::L2) return truncatedRoot(std::sqrt(static_cast<double>(v)), scale);
    else return fixed::rule<Out>(static_cast<fixed::i128>(v), scale);
}
template <Kind K, class Out, class... T>
ZetStatus intNorm(int len, Out* out, int scale, const T*... p) {
    if (auto s = checkArgs(len, p..., out)) return s;
    *out = finish<K, Out>(intNorms(len, p...), scale);
    return zetStsOk;
}

// ---- dot products ----------------------------------------------------------------------------
// Binary32: blocks of 32 through eight 4-lane accumulators a0..a7 (held in
// pairs, [a0|a1] to [a6|a7]), fused; folded as
// (a0 + a2 + (a4 + a6)) + (a1 + a3 + (a5 + a7)); then groups of 4 with a
// separate multiply and add; the four lanes folded in pairs; then single
// elements by a separate multiply and add.
float dot32(const float* a, const float* b, i64 n) {
    __m256 q0 = _mm256_setzero_ps(), q1 = q0, q2 = q0, q3 = q0;
    i64 i = 0;
    for (; i + 32 <= n; i += 32) {
        q0 = fma(_mm256_loadu_ps(a + i), _mm256_loadu_ps(b + i), q0);
        q1 = fma(_mm256_loadu_ps(a + i + 8), _mm256_loadu_ps(b + i + 8), q1);
        q2 = fma(_mm256_loadu_ps(a + i + 16), _mm256_loadu_ps(b + i + 16), q2);
        q3 = fma(_mm256_loadu_ps(a + i + 24), _mm256_loadu_ps(b + i + 24), q3);
    }
    __m128 s = foldHalves(add(add(q0, q1), add(q2, q3)));
    for (; i + 4 <= n; i += 4) s = add(s, mul(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i)));
    float r = foldPairs(s);
    for (; i < n; ++i) r = r + ld(a, i) * ld(b, i);
    return r;
}

// Complex results: a register of interleaved {re, im} from B, and from A the
// same (complex A) or each real element twice (real A). P collects a.re b.re
// (even lanes) and a.im b.im (odd), Q a.re b.im and a.im b.re; four
// registers a round, fused. The real part is the difference of the two
// sums of P, so binary32 lanes are moved into binary64 every 1024 elements,
// before they grow large enough to make that difference lose its digits.
// The lanes are added up in binary64, then the last elements one at a time.
template <class V> struct Wide64;
template <> struct Wide64<__m256> {
    static __m256d lanes(__m256 v) { return _mm256_add_pd(_mm256_cvtps_pd(lowHalf(v)), _mm256_cvtps_pd(highHalf(v))); }
};
template <> struct Wide64<__m256d> {
    static __m256d lanes(__m256d v) { return v; }
};
// Loads: complex data of binary32 in binary32 (F32), widened to binary64
// (W64), or binary64 (D64); K complex elements a register.
struct F32 {
    using V = __m256;
    static constexpr int K = 4;
    static V pairs(const float* p) { return _mm256_loadu_ps(p); }
    static V twice(const float* p) {
        const __m128 x = _mm_loadu_ps(p);
        return _mm256_set_m128(_mm_unpackhi_ps(x, x), _mm_unpacklo_ps(x, x));
    }
};
struct W64 {
    using V = __m256d;
    static constexpr int K = 2;
    static V pairs(const float* p) { return wide4(p); }
    static V twice(const float* p) {
        const __m128 x = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
        return _mm256_cvtps_pd(_mm_unpacklo_ps(x, x));
    }
};
struct D64 {
    using V = __m256d;
    static constexpr int K = 2;
    static V pairs(const double* p) { return _mm256_loadu_pd(p); }
    static V twice(const double* p) { return _mm256_permute4x64_pd(_mm256_castpd128_pd256(_mm_loadu_pd(p)), 0x50); }
};

template <class L, class A, class B>
Parts64 complexDot(const A* a, const B* b, i64 n) {
    using V = typename L::V;
    constexpr int K = L::K;
    constexpr bool kCplxA = kComplex<A>;
    const auto* pa = [&] { if constexpr (kCplxA) return parts(a); else return a; }();
    const auto* pb = parts(b);
    auto loadA = [&](i64 i) { if constexpr (kCplxA) return L::pairs(pa + 2 * i); else return L::twice(pa + i); };
    constexpr i64 kFlush = std::is_same_v<V, __m256> ? 1024 : std::numeric_limits<i64>::max();
    V p[4], q[4];
    __m256d pd = _mm256_setzero_pd(), qd = pd;
    auto step = [&](int k, i64 at) {
        const V x = loadA(at), y = L::pairs(pb + 2 * at);
        p[k] = fma(x, y, p[k]);
        if constexpr (kCplxA) q[k] = fma(x, swap(y), q[k]);
    };
    i64 i = 0;
    while (i + K <= n) {
        for (int k = 0; k < 4; ++k) p[k] = q[k] = V{};
        const i64 end = n - i > kFlush ? i + kFlush : n;
        for (; i + 4 * K <= end; i += 4 * K)
            for (int k = 0; k < 4; ++k) step(k, i + k * K);
        if (end == n)
            for (; i + K <= n; i += K) step(0, i);
        pd = add(pd, Wide64<V>::lanes(add(add(p[0], p[1]), add(p[2], p[3]))));
        qd = add(qd, Wide64<V>::lanes(add(add(q[0], q[1]), add(q[2], q[3]))));
    }
    const __m128d ps = foldHalves(pd), qs = foldHalves(qd);
    double pe = lane0(ps), po = lane1(ps), qe = lane0(qs), qo = lane1(qs);
    for (; i < n; ++i) {
        const double ar = kCplxA ? static_cast<double>(ld(pa, 2 * i)) : static_cast<double>(ld(pa, i));
        const double ai = kCplxA ? static_cast<double>(ld(pa, 2 * i + 1)) : 0.0;
        const double br = ld(pb, 2 * i), bi = ld(pb, 2 * i + 1);
        pe = std::fma(ar, br, pe), po = std::fma(kCplxA ? ai : ar, bi, po);
        qe = std::fma(ar, bi, qe), qo = std::fma(ai, br, qo);
    }
    if constexpr (kCplxA) return {pe - po, qe + qo};
    else return {pe, po};
}

// Real results: binary32 in its fixed tree, the others in binary64 by fold16.
template <class Out, class A, class B>
ZetStatus dot(const A* a, const B* b, i64 len, Out* out) {
    if (auto s = checkArgs(len, a, b, out)) return s;
    if constexpr (kComplex<Out>) {
        using R = decltype(Out{}.re);
        Parts64 r;
        if constexpr (std::is_same_v<A, Zet64f> || std::is_same_v<A, Zet64fc>) r = complexDot<D64>(a, b, len);
        else if constexpr (std::is_same_v<Out, Zet64fc>) r = complexDot<W64>(a, b, len);
        else r = complexDot<F32>(a, b, len);
        *out = {static_cast<R>(r.re), static_cast<R>(r.im)};
    } else if constexpr (std::is_same_v<Out, float>) {
        *out = dot32(a, b, len);
    } else {
        *out = total64(len, ProductStep{}, a, b);
    }
    return zetStsOk;
}

// Integer dot products, exact: 64 bits hold any sum of 16-bit products, 128
// bits the sums with a 32-bit factor.
template <class Acc, class A, class B>
Acc exactDot(const A* a, const B* b, i64 n) {
    Acc s = 0;
    for (i64 i = 0; i < n; ++i) s += static_cast<Acc>(static_cast<i64>(ld(a, i)) * ld(b, i));
    return s;
}
// Complex 16-bit: re = sum(a.re b.re - a.im b.im), im = sum(a.re b.im + a.im b.re);
// a real A has no imaginary part.
template <class A>
Zet64sc exactDotComplex(const A* a, const Zet16sc* b, i64 n) {
    i64 re = 0, im = 0;
    for (i64 i = 0; i < n; ++i) {
        const Zet16sc y = ld(b, i);
        if constexpr (std::is_same_v<A, Zet16sc>) {
            const Zet16sc x = ld(a, i);
            re += i64{x.re} * y.re - i64{x.im} * y.im;
            im += i64{x.re} * y.im + i64{x.im} * y.re;
        } else {
            const i64 x = ld(a, i);
            re += x * y.re;
            im += x * y.im;
        }
    }
    return {re, im};
}
// The exact sum delivered as Out: rounded once to binary32, as it is in 64
// bits, or by the scale rule. LimitScale: the 16-bit form holds its scale to
// -31..31 first, so a scale of 40 shifts by 31.
template <class Acc, bool LimitScale = false, class Out, class A, class B>
ZetStatus intDot(const A* a, const B* b, int len, Out* out, int scale = 0) {
    if (auto s = checkArgs(len, a, b, out)) return s;
    if constexpr (std::is_same_v<Out, Zet64sc>) {
        *out = exactDotComplex(a, b, len);
    } else {
        const Acc s = exactDot<Acc>(a, b, len);
        if constexpr (std::is_same_v<Out, Zet32s>) *out = fixed::rule<Zet32s>(s, LimitScale ? std::clamp(scale, -31, 31) : scale);
        else *out = static_cast<Out>(s);
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zet::stats

using namespace zet::stats;
using zet::i64;
namespace fixed = zet::fixed;

// ---- exports ---------------------------------------------------------------------------------
#define ZET_NORM(K, SUFFIX, E, OUT)                                                                                     ZetStatus zetsNorm_##SUFFIX(const E* s, int n, OUT* r) { return norm<Kind::K>(n, r, s); }                         ZetStatus zetsNormDiff_##SUFFIX(const E* a, const E* b, int n, OUT* r) { return norm<Kind::K>(n, r, a, b); }
#define ZET_NORM_L(K, SUFFIX, E, OUT)     ZetStatus zetsNorm_##SUFFIX##_L(const E* s, long long n, OUT* r) { return norm<Kind::K>(n, r, s); }
#define ZET_INT_NORM(K, SUFFIX, OUT)                                                                                             ZetStatus zetsNorm_##SUFFIX(const Zet16s* s, int n, OUT* r) { return intNorm<Kind::K>(n, r, 0, s); }                      ZetStatus zetsNormDiff_##SUFFIX(const Zet16s* a, const Zet16s* b, int n, OUT* r) { return intNorm<Kind::K>(n, r, 0, a, b); }
#define ZET_INT_NORM_SFS(K, SUFFIX, OUT)                                                                                                      ZetStatus zetsNorm_##SUFFIX##_Sfs(const Zet16s* s, int n, OUT* r, int sc) { return intNorm<Kind::K>(n, r, sc, s); }                    ZetStatus zetsNormDiff_##SUFFIX##_Sfs(const Zet16s* a, const Zet16s* b, int n, OUT* r, int sc) { return intNorm<Kind::K>(n, r, sc, a, b); }

ZET_NORM(Inf, Inf_32f, Zet32f, Zet32f)
ZET_NORM(Inf, Inf_64f, Zet64f, Zet64f)
ZET_NORM(Inf, Inf_32fc32f, Zet32fc, Zet32f)
ZET_NORM(Inf, Inf_64fc64f, Zet64fc, Zet64f)
ZET_NORM(L1, L1_32f, Zet32f, Zet32f)
ZET_NORM(L1, L1_64f, Zet64f, Zet64f)
ZET_NORM(L1, L1_32fc64f, Zet32fc, Zet64f)
ZET_NORM(L1, L1_64fc64f, Zet64fc, Zet64f)
ZET_NORM(L2, L2_32f, Zet32f, Zet32f)
ZET_NORM(L2, L2_64f, Zet64f, Zet64f)
ZET_NORM(L2, L2_32fc64f, Zet32fc, Zet64f)
ZET_NORM(L2, L2_64fc64f, Zet64fc, Zet64f)
ZET_NORM_L(L2, L2_32f, Zet32f, Zet32f)
ZET_NORM_L(L2, L2_64f, Zet64f, Zet64f)
ZET_NORM_L(L2, L2_32fc64f, Zet32fc, Zet64f)
ZET_NORM_L(L2, L2_64fc64f, Zet64fc, Zet64f)
ZET_INT_NORM(Inf, Inf_16s32f, Zet32f)
ZET_INT_NORM(L1, L1_16s32f, Zet32f)
ZET_INT_NORM(L2, L2_16s32f, Zet32f)
ZET_INT_NORM_SFS(Inf, Inf_16s32s, Zet32s)
ZET_INT_NORM_SFS(L1, L1_16s32s, Zet32s)
ZET_INT_NORM_SFS(L1, L1_16s64s, Zet64s)
ZET_INT_NORM_SFS(L2, L2_16s32s, Zet32s)
ZET_INT_NORM_SFS(L2Sqr, L2Sqr_16s64s, Zet64s)

#define ZET_DOT(SUFFIX, A, B, OUT)                                                                                       ZetStatus zetsDotProd_##SUFFIX(const A* a, const B* b, int n, OUT* r) { return dot(a, b, i64{n}, r); }
#define ZET_DOT_L(SUFFIX, A, B, OUT)                                                                                      ZET_DOT(SUFFIX, A, B, OUT)                                                                                            ZetStatus zetsDotProd_##SUFFIX##_L(const A* a, const B* b, long long n, OUT* r) { return dot(a, b, n, r); }
ZET_DOT(32f, Zet32f, Zet32f, Zet32f)
ZET_DOT_L(32f64f, Zet32f, Zet32f, Zet64f)
ZET_DOT_L(64f, Zet64f, Zet64f, Zet64f)
ZET_DOT(32fc, Zet32fc, Zet32fc, Zet32fc)
ZET_DOT_L(32fc64fc, Zet32fc, Zet32fc, Zet64fc)
ZET_DOT_L(64fc, Zet64fc, Zet64fc, Zet64fc)
ZET_DOT(32f32fc, Zet32f, Zet32fc, Zet32fc)
ZET_DOT_L(32f32fc64fc, Zet32f, Zet32fc, Zet64fc)
ZET_DOT_L(64f64fc, Zet64f, Zet64fc, Zet64fc)

ZetStatus zetsDotProd_16s32f(const Zet16s* a, const Zet16s* b, int n, Zet32f* r) { return intDot<i64>(a, b, n, r); }
ZetStatus zetsDotProd_16s64s(const Zet16s* a, const Zet16s* b, int n, Zet64s* r) { return intDot<i64>(a, b, n, r); }
ZetStatus zetsDotProd_16s32s_Sfs(const Zet16s* a, const Zet16s* b, int n, Zet32s* r, int sc) { return intDot<i64, true>(a, b, n, r, sc); }
ZetStatus zetsDotProd_32s_Sfs(const Zet32s* a, const Zet32s* b, int n, Zet32s* r, int sc) { return intDot<fixed::i128>(a, b, n, r, sc); }
ZetStatus zetsDotProd_16s32s32s_Sfs(const Zet16s* a, const Zet32s* b, int n, Zet32s* r, int sc) { return intDot<fixed::i128>(a, b, n, r, sc); }
ZetStatus zetsDotProd_16sc64sc(const Zet16sc* a, const Zet16sc* b, int n, Zet64sc* r) { return intDot<i64>(a, b, n, r); }
ZetStatus zetsDotProd_16s16sc64sc(const Zet16s* a, const Zet16sc* b, int n, Zet64sc* r) { return intDot<i64>(a, b, n, r); }
