// Sums, means, standard deviations and sliding window sums.
//
// Floating sums accumulate in binary64 in the fixed order of fold16 unless
// the caller asks for speed (hint 1); the plain forms widen their length and
// share the 64-bit core. Integer sums are exact in 64 bits and reach their
// result type through the floating scale step.
#include <cmath>

#include "frame/checks.hpp"
#include "stats/reduce.hpp"

namespace zet::stats {
namespace {

constexpr bool isFast(ZetHint h) { return h == 1; }

// ---- floating totals in binary64 -----------------------------------------------------
double realTotal(const float* p, i64 n, ZetHint hint) {
    if (isFast(hint)) {
        const Parts64 s = fastSum32(p, n, false);
        return s.re + s.im;
    }
    return total64(n, AddStep{}, p);
}
double realTotal(const double* p, i64 n, ZetHint) { return total64(n, AddStep{}, p); }
Parts64 complexTotal(const Zet32fc* p, i64 n, ZetHint hint) {
    const float* f = reinterpret_cast<const float*>(p);
    return isFast(hint) ? fastSum32(f, 2 * n, true) : parts64(2 * n, AddStep{}, f);
}
Parts64 complexTotal(const Zet64fc* p, i64 n, ZetHint) {
    return parts64(2 * n, AddStep{}, reinterpret_cast<const double*>(p));
}

template <class E> constexpr bool kComplex = std::is_same_v<E, Zet32fc> || std::is_same_v<E, Zet64fc>;

// The total of n elements divided by `by` (1 for a sum), each part rounded
// once to the element's precision.
template <class E>
E quotient(const E* p, i64 n, double by, ZetHint hint) {
    if constexpr (kComplex<E>) {
        using R = decltype(E{}.re);
        const Parts64 s = complexTotal(p, n, hint);
        return {static_cast<R>(s.re / by), static_cast<R>(s.im / by)};
    } else {
        return static_cast<E>(realTotal(p, n, hint) / by);
    }
}

template <class E>
ZetStatus sum(const E* src, i64 len, E* out, ZetHint hint) {
    if (auto s = checkArgs(len, src, out)) return s;
    *out = quotient(src, len, 1.0, hint);
    return zetStsOk;
}
// The plain mean divides the unrounded binary64 total.
template <class E>
ZetStatus mean(const E* src, int len, E* out, ZetHint hint) {
    if (auto s = checkArgs(len, src, out)) return s;
    *out = quotient(src, len, static_cast<double>(len), hint);
    return zetStsOk;
}
// The 64-bit mean divides the rounded sum in the element's precision, so it
// can differ from the plain mean in the last bit.
template <class E>
ZetStatus meanL(const E* src, i64 len, E* out, ZetHint hint) {
    if (auto s = checkArgs(len, src, out)) return s;
    E total;
    if (auto s = sum(src, len, &total, hint)) return s;
    if constexpr (kComplex<E>) {
        using R = decltype(E{}.re);
        const R by = static_cast<R>(len);
        *out = {total.re / by, total.im / by};
    } else {
        *out = total / static_cast<E>(len);
    }
    return zetStsOk;
}

// ---- integer sums and means ---------------------------------------------------------
Lanes8 lanes(const Zet16s* p, i64 n) { return laneTotals16(p, n); }
i64 total(const Zet32s* p, i64 n) {
    __m256i acc = _mm256_setzero_si256();
    i64 i = 0;
    for (; i + 4 <= n; i += 4)
        acc = _mm256_add_epi64(acc, _mm256_cvtepi32_epi64(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i))));
    alignas(32) i64 t[4];
    _mm256_store_si256(reinterpret_cast<__m256i*>(t), acc);
    i64 s = t[0] + t[1] + t[2] + t[3];
    for (; i < n; ++i) s += ld(p, i);
    return s;
}

// Sum (by 1) or mean (by len) of 16-bit data through the floating step.
template <class D>
ZetStatus intReal(const Zet16s* src, int len, D* out, int scale, bool isMean) {
    if (auto s = checkArgs(len, src, out)) return s;
    const double t = static_cast<double>(lanes(src, len).all());
    *out = floatScale<D>(isMean ? t / len : t, scale);
    return zetStsOk;
}
template <class D, class C>
ZetStatus intComplex(const Zet16sc* src, int len, C* out, int scale, bool isMean) {
    if (auto s = checkArgs(len, src, out)) return s;
    const Lanes8 l = lanes(reinterpret_cast<const Zet16s*>(src), 2 * static_cast<i64>(len));
    const double by = isMean ? len : 1.0;
    *out = {floatScale<D>(static_cast<double>(l.even()) / by, scale), floatScale<D>(static_cast<double>(l.odd()) / by, scale)};
    return zetStsOk;
}
// A 32-bit total saturates at scale 0; otherwise it takes the floating step.
ZetStatus int32(const Zet32s* src, int len, Zet32s* out, int scale, bool isMean) {
    if (auto s = checkArgs(len, src, out)) return s;
    const i64 t = total(src, len);
    if (isMean) *out = floatScale<Zet32s>(static_cast<double>(t) / len, scale);
    else if (scale == 0) *out = static_cast<Zet32s>(std::clamp<i64>(t, INT32_MIN, INT32_MAX));
    else *out = floatScale<Zet32s>(static_cast<double>(t), scale);
    return zetStsOk;
}

// ---- standard deviation ---------------------------------------------------------------
struct Moments {
    double s1, s2;
};
// One pass in binary64: a binary32 vector that sits 4 bytes past an 8-byte
// boundary gives its first element alone, then rounds of four elements run in
// two pairs of lanes (elements 0-1 and 2-3 of the round), the second pair is
// added to the first and the two lanes to each other, and the last elements
// follow one at a time.
template <class T>
Moments moments(const T* p, i64 n) {
    Moments m{0.0, 0.0};
    i64 i = 0;
    if (sizeof(T) == 4 && (addr(p) & 7) != 0) {
        m.s1 = wide1(p);
        m.s2 = m.s1 * m.s1;
        i = 1;
    }
    __m256d a1 = _mm256_setzero_pd(), a2 = a1;
    for (; i + 4 <= n; i += 4) {
        const __m256d x = wide4(p + i);
        a1 = add(a1, x);
        a2 = fma(x, x, a2);
    }
    const __m128d p1 = foldHalves(a1), p2 = foldHalves(a2);
    m.s1 += lane0(p1) + lane1(p1);
    m.s2 += lane0(p2) + lane1(p2);
    for (; i < n; ++i) {
        const double x = wide1(p + i);
        m.s1 += x;
        m.s2 = std::fma(x, x, m.s2);
    }
    return m;
}

// The fast route of binary32 data: sums of y = x - src[0] (which keeps the
// subtraction below from cancelling) in 32 binary32 lanes, moved into
// binary64 every 1024 elements so that no lane's sum grows long.
Moments shiftedMoments(const float* p, i64 n, float& shift) {
    shift = ld(p, 0);
    const __m256 k = _mm256_set1_ps(shift);
    __m256d d1 = _mm256_setzero_pd(), d2 = d1;
    auto flush = [&](__m256 v, __m256d& d) {
        d = _mm256_add_pd(d, _mm256_add_pd(_mm256_cvtps_pd(lowHalf(v)), _mm256_cvtps_pd(highHalf(v))));
    };
    i64 i = 0;
    while (i + 32 <= n) {
        __m256 s1[4], s2[4];
        for (int j = 0; j < 4; ++j) s1[j] = s2[j] = _mm256_setzero_ps();
        const i64 end = std::min(n - 31, i + 1024);
        for (; i < end; i += 32) {
            for (int j = 0; j < 4; ++j) {
                const __m256 y = _mm256_sub_ps(_mm256_loadu_ps(p + i + 8 * j), k);
                s1[j] = _mm256_add_ps(s1[j], y);
                s2[j] = _mm256_fmadd_ps(y, y, s2[j]);
            }
        }
        for (int j = 0; j < 4; ++j) flush(s1[j], d1), flush(s2[j], d2);
    }
    Moments m{foldPairs(d1), foldPairs(d2)};
    for (; i < n; ++i) {
        const double y = ld(p, i) - shift;
        m.s1 += y;
        m.s2 = std::fma(y, y, m.s2);
    }
    return m;
}

struct Deviation {
    double mean, dev;
};
// v = s2 n - s1 s1, held at 0 from below (rounding can take it under, and a
// NaN ends there too), then the sample deviation with n - 1.
Deviation fromMoments(Moments m, i64 len, double shift) {
    const double n = static_cast<double>(len);
    double v = m.s2 * n - m.s1 * m.s1;
    if (!(v > 0)) v = 0;
    return {shift + m.s1 / n, std::sqrt(v / (n * (n - 1)))};
}

template <class T>
Deviation deviation(const T* p, int len, ZetHint hint) {
    if constexpr (sizeof(T) == 4) {
        if (isFast(hint)) {
            float shift;
            const Moments m = shiftedMoments(p, len, shift);
            return fromMoments(m, len, shift);
        }
    }
    return fromMoments(moments(p, len), len, 0.0);
}

// StdDev passes no mean pointer; MeanStdDev checks its mean pointer before
// the deviation's. One element has no sample deviation.
template <class T>
ZetStatus devChecks(const T* src, int len, bool withMean, const void* pMean, const void* pDev) {
    if (!src || (withMean && !pMean) || !pDev) return zetStsNullPtrErr;
    return len < 2 ? zetStsSizeErr : zetStsOk;
}

template <class T>
ZetStatus stdDev(const T* src, int len, bool withMean, T* pMean, T* pDev, ZetHint hint) {
    if (auto s = devChecks(src, len, withMean, pMean, pDev)) return s;
    const Deviation d = deviation(src, len, hint);
    if (withMean) *pMean = static_cast<T>(d.mean);
    *pDev = static_cast<T>(d.dev);
    return zetStsOk;
}

// Integer data: s1, s2 and s2 n - s1 s1 are exact, so the deviation has no
// rounding before the square root.
template <class D>
ZetStatus intStdDev(const Zet16s* src, int len, bool withMean, D* pMean, D* pDev, int scale) {
    if (auto s = devChecks(src, len, withMean, pMean, pDev)) return s;
    const i64 s1 = lanes(src, len).all(), s2 = squareTotal16(src, len);
    const __int128 v = static_cast<__int128>(s2) * len - static_cast<__int128>(s1) * s1;
    const double n = len;
    if (withMean) *pMean = floatScale<D>(static_cast<double>(s1) / n, scale);
    *pDev = floatScale<D>(std::sqrt(static_cast<double>(v) / (n * (n - 1))), scale);
    return zetStsOk;
}

// ---- sliding window sums ----------------------------------------------------------------
// dst[i] = src[i] + ... + src[i + mask - 1]: the window's total is kept
// exact in 64 bits and rounded once per output.
template <class T>
ZetStatus sumWindow(const T* src, Zet32f* dst, int len, int mask) {
    if (auto s = checkArgs(len, src, dst)) return s;
    if (mask < 1) return zetStsWindowLenErr;
    i64 s = 0;
    for (i64 k = 0; k < mask; ++k) s += ld(src, k);
    st(dst, 0, static_cast<float>(s));
    for (i64 i = 1; i < len; ++i) {
        s += static_cast<i64>(ld(src, i + mask - 1)) - ld(src, i - 1);
        st(dst, i, static_cast<float>(s));
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zet::stats

using namespace zet::stats;
using zet::i64;

// ---- exports ------------------------------------------------------------------------------
ZetStatus zetsSum_32f(const Zet32f* s, int len, Zet32f* r, ZetHint h) { return sum(s, i64{len}, r, h); }
ZetStatus zetsSum_32f_L(const Zet32f* s, long long len, Zet32f* r, ZetHint h) { return sum(s, len, r, h); }
ZetStatus zetsSum_32fc(const Zet32fc* s, int len, Zet32fc* r, ZetHint h) { return sum(s, i64{len}, r, h); }
ZetStatus zetsSum_32fc_L(const Zet32fc* s, long long len, Zet32fc* r, ZetHint h) { return sum(s, len, r, h); }
ZetStatus zetsSum_64f(const Zet64f* s, int len, Zet64f* r) { return sum(s, i64{len}, r, 0); }
ZetStatus zetsSum_64f_L(const Zet64f* s, long long len, Zet64f* r) { return sum(s, len, r, 0); }
ZetStatus zetsSum_64fc(const Zet64fc* s, int len, Zet64fc* r) { return sum(s, i64{len}, r, 0); }
ZetStatus zetsSum_64fc_L(const Zet64fc* s, long long len, Zet64fc* r) { return sum(s, len, r, 0); }

ZetStatus zetsMean_32f(const Zet32f* s, int len, Zet32f* r, ZetHint h) { return mean(s, len, r, h); }
ZetStatus zetsMean_32f_L(const Zet32f* s, long long len, Zet32f* r, ZetHint h) { return meanL(s, len, r, h); }
ZetStatus zetsMean_32fc(const Zet32fc* s, int len, Zet32fc* r, ZetHint h) { return mean(s, len, r, h); }
ZetStatus zetsMean_32fc_L(const Zet32fc* s, long long len, Zet32fc* r, ZetHint h) { return meanL(s, len, r, h); }
ZetStatus zetsMean_64f(const Zet64f* s, int len, Zet64f* r) { return mean(s, len, r, 0); }
ZetStatus zetsMean_64f_L(const Zet64f* s, long long len, Zet64f* r) { return meanL(s, len, r, 0); }
ZetStatus zetsMean_64fc(const Zet64fc* s, int len, Zet64fc* r) { return mean(s, len, r, 0); }
ZetStatus zetsMean_64fc_L(const Zet64fc* s, long long len, Zet64fc* r) { return meanL(s, len, r, 0); }

ZetStatus zetsSum_16s_Sfs(const Zet16s* s, int len, Zet16s* r, int sc) { return intReal(s, len, r, sc, false); }
ZetStatus zetsSum_16s32s_Sfs(const Zet16s* s, int len, Zet32s* r, int sc) { return intReal(s, len, r, sc, false); }
ZetStatus zetsSum_16sc_Sfs(const Zet16sc* s, int len, Zet16sc* r, int sc) { return intComplex<Zet16s>(s, len, r, sc, false); }
ZetStatus zetsSum_16sc32sc_Sfs(const Zet16sc* s, int len, Zet32sc* r, int sc) { return intComplex<Zet32s>(s, len, r, sc, false); }
ZetStatus zetsSum_32s_Sfs(const Zet32s* s, int len, Zet32s* r, int sc) { return int32(s, len, r, sc, false); }
ZetStatus zetsMean_16s_Sfs(const Zet16s* s, int len, Zet16s* r, int sc) { return intReal(s, len, r, sc, true); }
ZetStatus zetsMean_16sc_Sfs(const Zet16sc* s, int len, Zet16sc* r, int sc) { return intComplex<Zet16s>(s, len, r, sc, true); }
ZetStatus zetsMean_32s_Sfs(const Zet32s* s, int len, Zet32s* r, int sc) { return int32(s, len, r, sc, true); }

ZetStatus zetsStdDev_32f(const Zet32f* s, int len, Zet32f* d, ZetHint h) { return stdDev<Zet32f>(s, len, false, nullptr, d, h); }
ZetStatus zetsStdDev_64f(const Zet64f* s, int len, Zet64f* d) { return stdDev<Zet64f>(s, len, false, nullptr, d, 0); }
ZetStatus zetsMeanStdDev_32f(const Zet32f* s, int len, Zet32f* m, Zet32f* d, ZetHint h) { return stdDev(s, len, true, m, d, h); }
ZetStatus zetsMeanStdDev_64f(const Zet64f* s, int len, Zet64f* m, Zet64f* d) { return stdDev(s, len, true, m, d, 0); }
ZetStatus zetsStdDev_16s_Sfs(const Zet16s* s, int len, Zet16s* d, int sc) { return intStdDev<Zet16s>(s, len, false, nullptr, d, sc); }
ZetStatus zetsStdDev_16s32s_Sfs(const Zet16s* s, int len, Zet32s* d, int sc) { return intStdDev<Zet32s>(s, len, false, nullptr, d, sc); }
ZetStatus zetsMeanStdDev_16s_Sfs(const Zet16s* s, int len, Zet16s* m, Zet16s* d, int sc) { return intStdDev(s, len, true, m, d, sc); }
ZetStatus zetsMeanStdDev_16s32s_Sfs(const Zet16s* s, int len, Zet32s* m, Zet32s* d, int sc) { return intStdDev(s, len, true, m, d, sc); }

ZetStatus zetsSumWindow_8u32f(const Zet8u* s, Zet32f* d, int len, int mask) { return sumWindow(s, d, len, mask); }
ZetStatus zetsSumWindow_16s32f(const Zet16s* s, Zet32f* d, int len, int mask) { return sumWindow(s, d, len, mask); }
