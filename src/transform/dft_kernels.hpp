// Building blocks of the arbitrary-length transforms: unit roots of any small
// length as compile-time constants, transforms of any small length unrolled
// over complex vectors (odd lengths by symmetric pairs, composite ones by one
// Cooley-Tukey split, powers of two by the FFT's own), a symmetric-pair
// transform for radices known only at run time, and the split planes with
// masked tails that the mixed-radix levels work in.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "transform/fft_kernels.hpp"
#include "transform/fft_passes.hpp"

namespace zet::dft {

using fft::CV;
using fft::Lanes;
using fft::ScalarOf;
using fft::cadd;
using fft::csub;
using fft::cscale;
using fft::cmulw;
using fft::splat;
using fft::add;
using fft::sub;
using fft::mul;
using fft::fmadd;
using fft::fmsub;
using fft::neg;

// ------------------------------------------------------------ unit roots

namespace detail {
constexpr long double kPi = 3.141592653589793238462643383279502884L;
// Series for |x| <= pi/4: twelve terms reach the long double epsilon.
constexpr long double sinSeries(long double x) {
    long double t = x, s = x;
    for (int n = 1; n < 12; ++n) {
        t *= -x * x / static_cast<long double>((2 * n) * (2 * n + 1));
        s += t;
    }
    return s;
}
constexpr long double cosSeries(long double x) {
    long double t = 1, s = 1;
    for (int n = 1; n < 12; ++n) {
        t *= -x * x / static_cast<long double>((2 * n - 1) * (2 * n));
        s += t;
    }
    return s;
}
}  // namespace detail

// exp(-2*pi*i*k/n) as (cos, -sin). The angle is taken from the nearest axis,
// so the series never sees more than pi/4 and the axes come out exact.
constexpr void unitRoot(long k, long n, long double& c, long double& s) {
    k %= n;
    if (k < 0) k += n;
    const long q = (8 * k + n) / (2 * n);
    const long double x = detail::kPi * static_cast<long double>(4 * k - q * n) / (2.0L * static_cast<long double>(n));
    const long double cx = detail::cosSeries(x), sx = detail::sinSeries(x);
    long double cv, sv;
    switch (q & 3) {
        case 0: cv = cx; sv = sx; break;
        case 1: cv = -sx; sv = cx; break;
        case 2: cv = -cx; sv = -sx; break;
        default: cv = sx; sv = -cx; break;
    }
    c = cv + 0.0L;  // no negative zeros
    s = -sv + 0.0L;
}

template <class T, int N> struct RootTable {
    T c[N];
    T s[N];
    constexpr RootTable() : c{}, s{} {
        for (int k = 0; k < N; ++k) {
            long double cc = 0, ss = 0;
            unitRoot(k, N, cc, ss);
            c[k] = static_cast<T>(cc);
            s[k] = static_cast<T>(ss);
        }
    }
};
template <class T, int N> inline constexpr RootTable<T, N> kRootTable{};

// x * exp(-/+2*pi*i*k/N); the axes cost no multiply.
template <int N, bool Inv, class V> [[gnu::always_inline]] inline CV<V> rootMul(CV<V> x, int k) {
    using T = typename ScalarOf<V>::type;
    k %= N;
    if (k == 0) return x;
    if (2 * k == N) return {neg(x.re), neg(x.im)};
    if (4 * k == N || 4 * k == 3 * N) {
        const bool minusI = (4 * k == N) != Inv;  // forward quarter turn is -i
        if (minusI) return {x.im, neg(x.re)};
        return {neg(x.im), x.re};
    }
    const auto& t = kRootTable<T, N>;
    return cmulw<Inv>(x, splat<V>(&t.c[k]), splat<V>(&t.s[k]));
}

// ------------------------------------------------------ small transforms

template <int R, bool Inv, class V> [[gnu::always_inline]] inline void smallDft(CV<V>* x);

// Odd R by symmetric pairs: with s_r = x_r + x_{R-r}, d_r = x_r - x_{R-r},
// X_k = x_0 + sum s_r cos(2 pi rk/R) -/+ i sum d_r sin(2 pi rk/R), and
// X_{R-k} the same with the other sign.
template <int R, bool Inv, class V> [[gnu::always_inline]] inline void oddDft(CV<V>* x) {
    using T = typename ScalarOf<V>::type;
    constexpr int H = (R - 1) / 2;
    const auto& t = kRootTable<T, R>;
    CV<V> s[H + 1], d[H + 1];
    CV<V> sum = x[0];
#pragma GCC unroll 16
    for (int r = 1; r <= H; ++r) {
        s[r] = cadd(x[r], x[R - r]);
        d[r] = csub(x[r], x[R - r]);
        sum = cadd(sum, s[r]);
    }
    const CV<V> x0 = x[0];
    x[0] = sum;
#pragma GCC unroll 16
    for (int k = 1; k <= H; ++k) {
        CV<V> a = x0, b;
#pragma GCC unroll 16
        for (int r = 1; r <= H; ++r) {
            const int i = r * k % R;
            const V c = splat<V>(&t.c[i]), sn = splat<V>(&t.s[i]);  // sn = -sin
            a = {fmadd(s[r].re, c, a.re), fmadd(s[r].im, c, a.im)};
            if (r == 1) b = {mul(d[r].re, sn), mul(d[r].im, sn)};
            else b = {fmadd(d[r].re, sn, b.re), fmadd(d[r].im, sn, b.im)};
        }
        // b = sum d_r*(-sin): forward X_k = a + i*b, inverse X_k = a - i*b.
        const CV<V> plus = {sub(a.re, b.im), add(a.im, b.re)}, minus = {add(a.re, b.im), sub(a.im, b.re)};
        x[k] = Inv ? minus : plus;
        x[R - k] = Inv ? plus : minus;
    }
}

// N = A*B by one split: B-point transforms of the A decimated sequences, the
// roots exp(-2 pi i a k2/N), then A-point transforms across.
template <int N, int A, bool Inv, class V> [[gnu::always_inline]] inline void splitDft(CV<V>* x) {
    constexpr int B = N / A;
    CV<V> y[N];
#pragma GCC unroll 16
    for (int a = 0; a < A; ++a) {
        CV<V> t[B];
#pragma GCC unroll 16
        for (int b = 0; b < B; ++b) t[b] = x[a + A * b];
        smallDft<B, Inv>(t);
#pragma GCC unroll 16
        for (int k = 0; k < B; ++k) y[a * B + k] = rootMul<N, Inv>(t[k], a * k);
    }
#pragma GCC unroll 16
    for (int k = 0; k < B; ++k) {
        CV<V> t[A];
#pragma GCC unroll 16
        for (int a = 0; a < A; ++a) t[a] = y[a * B + k];
        smallDft<A, Inv>(t);
#pragma GCC unroll 16
        for (int j = 0; j < A; ++j) x[k + B * j] = t[j];
    }
}

constexpr int smallestFactor(int n) {
    for (int p = 2; p * p <= n; ++p)
        if (n % p == 0) return p;
    return n;
}

// In-place transform of R complex vectors (1 <= R <= 16), natural order.
template <int R, bool Inv, class V> [[gnu::always_inline]] inline void smallDft(CV<V>* x) {
    if constexpr (R == 1) {
    } else if constexpr ((R & (R - 1)) == 0) {
        fft::dft<R, Inv>(x);
    } else if constexpr (R % 2 == 1 && smallestFactor(R) == R) {
        oddDft<R, Inv>(x);
    } else {
        splitDft<R, R % 4 == 0 ? 4 : smallestFactor(R), Inv>(x);
    }
}

// Radix known only at run time, any p >= 2, by symmetric pairs. Reads and
// destroys x[0..p); the outputs go to store(k, value). `c`, `s` hold the
// roots exp(-2 pi i t/p) = c[t] + i*s[t], t < p.
template <bool Inv, class V, class T, class Store>
inline void genericDft(CV<V>* x, int p, const T* c, const T* s, Store store) {
    const int h = (p - 1) / 2;
    const bool even = p % 2 == 0;
    CV<V> sum = x[0];
    for (int r = 1; r <= h; ++r) {
        const CV<V> a = x[r], b = x[p - r];
        x[r] = cadd(a, b);
        x[p - r] = csub(a, b);
        sum = cadd(sum, x[r]);
    }
    const CV<V> x0 = x[0];
    const CV<V> xm = even ? x[p / 2] : x0;
    if (even) {
        CV<V> alt = cadd(x0, ((p / 2) % 2) ? CV<V>{neg(xm.re), neg(xm.im)} : xm);
        for (int r = 1; r <= h; ++r) alt = (r % 2) ? csub(alt, x[r]) : cadd(alt, x[r]);
        store(p / 2, alt);
        sum = cadd(sum, xm);
    }
    store(0, sum);
    for (int k = 1; k <= h; ++k) {
        CV<V> a = even ? ((k % 2) ? csub(x0, xm) : cadd(x0, xm)) : x0;
        CV<V> b{};
        int t = 0;
        for (int r = 1; r <= h; ++r) {
            t += k;
            if (t >= p) t -= p;
            const V cv = splat<V>(c + t), sv = splat<V>(s + t);
            a = {fmadd(x[r].re, cv, a.re), fmadd(x[r].im, cv, a.im)};
            const CV<V>& d = x[p - r];
            b = r == 1 ? CV<V>{mul(d.re, sv), mul(d.im, sv)} : CV<V>{fmadd(d.re, sv, b.re), fmadd(d.im, sv, b.im)};
        }
        const CV<V> plus = {sub(a.re, b.im), add(a.im, b.re)}, minus = {add(a.re, b.im), sub(a.im, b.re)};
        store(k, Inv ? minus : plus);
        store(p - k, Inv ? plus : minus);
    }
}

// ------------------------------------------------------- planes and tails

// The first n lanes of a vector, for the loads and stores of a ragged end.
template <class T> struct Mask;
template <> struct Mask<float> {
    __m256i m;
    explicit Mask(int n) : m(_mm256_cmpgt_epi32(_mm256_set1_epi32(n), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7))) {}
    __m256 load(const float* p) const { return _mm256_maskload_ps(p, m); }
    void store(float* p, __m256 v) const { _mm256_maskstore_ps(p, m, v); }
};
template <> struct Mask<double> {
    __m256i m;
    explicit Mask(int n) : m(_mm256_cmpgt_epi64(_mm256_set1_epi64x(n), _mm256_setr_epi64x(0, 1, 2, 3))) {}
    __m256d load(const double* p) const { return _mm256_maskload_pd(p, m); }
    void store(double* p, __m256d v) const { _mm256_maskstore_pd(p, m, v); }
};

// Working storage of the mixed-radix levels: real parts in one plane,
// imaginary parts in another, so that a level loads and stores whole vectors
// without shuffles.
template <class T> struct Planes {
    using L = Lanes<T>;
    using V = typename L::V;
    T* re;
    T* im;
    CV<V> ld(std::ptrdiff_t i) const { return {L::load(re + i), L::load(im + i)}; }
    void st(std::ptrdiff_t i, CV<V> v) const { L::store(re + i, v.re); L::store(im + i, v.im); }
    CV<V> ld(std::ptrdiff_t i, const Mask<T>& m) const { return {m.load(re + i), m.load(im + i)}; }
    void st(std::ptrdiff_t i, CV<V> v, const Mask<T>& m) const { m.store(re + i, v.re); m.store(im + i, v.im); }
    // Half a vector from each of two places: lanes below W/2 from lo.
    CV<V> ld(std::ptrdiff_t lo, std::ptrdiff_t hi) const { return {joinHalves(re + lo, re + hi), joinHalves(im + lo, im + hi)}; }
    void st(std::ptrdiff_t lo, std::ptrdiff_t hi, CV<V> v) const {
        splitHalves(re + lo, re + hi, v.re);
        splitHalves(im + lo, im + hi, v.im);
    }
    static __m256 joinHalves(const float* lo, const float* hi) {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(lo)), _mm_loadu_ps(hi), 1);
    }
    static __m256d joinHalves(const double* lo, const double* hi) {
        return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(lo)), _mm_loadu_pd(hi), 1);
    }
    static void splitHalves(float* lo, float* hi, __m256 v) {
        _mm_storeu_ps(lo, _mm256_castps256_ps128(v));
        _mm_storeu_ps(hi, _mm256_extractf128_ps(v, 1));
    }
    static void splitHalves(double* lo, double* hi, __m256d v) {
        _mm_storeu_pd(lo, _mm256_castpd256_pd128(v));
        _mm_storeu_pd(hi, _mm256_extractf128_pd(v, 1));
    }
    // One half vector of the same W/2 values in both halves.
    static V twice(const T* p) {
        if constexpr (sizeof(T) == 4) return _mm256_broadcast_ps(reinterpret_cast<const __m128*>(p));
        else return _mm256_broadcast_pd(reinterpret_cast<const __m128d*>(p));
    }
};

// The first `n` values of v at d[i..] in the destination forms.
template <class T> inline void storeFirst(fft::Split<T> d, std::ptrdiff_t i, CV<typename Lanes<T>::V> v, int n) {
    const Mask<T> m(n);
    m.store(d.re + i, v.re);
    m.store(d.im + i, v.im);
}
template <class T> inline void storeFirst(fft::Inter<T> d, std::ptrdiff_t i, CV<typename Lanes<T>::V> v, int n) {
    constexpr int W = Lanes<T>::W;
    T* p = d.p + 2 * i;
    if constexpr (sizeof(T) == 4) {
        const __m256 lo = _mm256_unpacklo_ps(v.re, v.im), hi = _mm256_unpackhi_ps(v.re, v.im);
        Mask<T>(2 * n).store(p, _mm256_permute2f128_ps(lo, hi, 0x20));
        if (n > W / 2) Mask<T>(2 * n - W).store(p + W, _mm256_permute2f128_ps(lo, hi, 0x31));
    } else {
        const __m256d lo = _mm256_unpacklo_pd(v.re, v.im), hi = _mm256_unpackhi_pd(v.re, v.im);
        Mask<T>(2 * n).store(p, _mm256_permute2f128_pd(lo, hi, 0x20));
        if (n > W / 2) Mask<T>(2 * n - W).store(p + W, _mm256_permute2f128_pd(lo, hi, 0x31));
    }
}

// Stores the outputs y[0..R) of W transforms across lanes so that lane l's R
// values lie consecutively from plane offset at[l], through a tile.
template <class T> inline void storeRowsTile(const CV<typename Lanes<T>::V>* y, int R, Planes<T> w, const std::ptrdiff_t* at) {
    using L = Lanes<T>;
    constexpr int W = L::W;
    alignas(32) T re[W], im[W];
    for (int t = 0; t < R; ++t) {
        L::store(re, y[t].re);
        L::store(im, y[t].im);
        for (int l = 0; l < W; ++l) {
            w.re[at[l] + t] = re[l];
            w.im[at[l] + t] = im[l];
        }
    }
}

// The same for a radix known at compile time: W x W transposes where R is a
// multiple of W, one half transpose where R is W/2, else the tile.
template <class T, int R> inline void storeRows(const CV<typename Lanes<T>::V>* y, Planes<T> w, const std::ptrdiff_t* at) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    if constexpr (R % W == 0) {
#pragma GCC unroll 2
        for (int b = 0; b < R; b += W) {
            V re[W], im[W];
#pragma GCC unroll 8
            for (int i = 0; i < W; ++i) { re[i] = y[b + i].re; im[i] = y[b + i].im; }
            L::transposeStore(re, [&](int l) { return w.re + at[l] + b; });
            L::transposeStore(im, [&](int l) { return w.im + at[l] + b; });
        }
    } else if constexpr (2 * R == W) {
        auto half = [&](T* plane, auto part) {
            if constexpr (sizeof(T) == 4) {
                const __m256 a0 = part(y[0]), a1 = part(y[1]), a2 = part(y[2]), a3 = part(y[3]);
                const __m256 t0 = _mm256_unpacklo_ps(a0, a1), t1 = _mm256_unpackhi_ps(a0, a1);
                const __m256 t2 = _mm256_unpacklo_ps(a2, a3), t3 = _mm256_unpackhi_ps(a2, a3);
                const __m256 u[4] = {_mm256_shuffle_ps(t0, t2, 0x44), _mm256_shuffle_ps(t0, t2, 0xEE),
                                     _mm256_shuffle_ps(t1, t3, 0x44), _mm256_shuffle_ps(t1, t3, 0xEE)};
#pragma GCC unroll 4
                for (int l = 0; l < 4; ++l) {
                    _mm_storeu_ps(plane + at[l], _mm256_castps256_ps128(u[l]));
                    _mm_storeu_ps(plane + at[l + 4], _mm256_extractf128_ps(u[l], 1));
                }
            } else {
                const __m256d a0 = part(y[0]), a1 = part(y[1]);
                const __m256d lo = _mm256_unpacklo_pd(a0, a1), hi = _mm256_unpackhi_pd(a0, a1);
                _mm_storeu_pd(plane + at[0], _mm256_castpd256_pd128(lo));
                _mm_storeu_pd(plane + at[2], _mm256_extractf128_pd(lo, 1));
                _mm_storeu_pd(plane + at[1], _mm256_castpd256_pd128(hi));
                _mm_storeu_pd(plane + at[3], _mm256_extractf128_pd(hi, 1));
            }
        };
        half(w.re, [](const CV<V>& v) { return v.re; });
        half(w.im, [](const CV<V>& v) { return v.im; });
    } else {
        storeRowsTile<T>(y, R, w, at);
    }
}

}  // namespace zet::dft
