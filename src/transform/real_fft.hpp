// A real transform of N samples is a complex transform of N/2 points over
// the samples taken as pairs, followed by a recombination that pairs the two
// ends of the half spectrum. This header holds that recombination, its
// tables, and the conversions between the three spectrum layouts; the
// power-of-two real FFT and the real DFT share them.
#pragma once

#include <immintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "transform/fft_tables.hpp"

namespace zet::fft {

// ------------------------------------------------------------ vector layer

// Complex values kept interleaved (re, im) in a register: 4 single or 2
// double. Reversal is by complex value, not by real.
template <class T> struct CIVec;

template <> struct CIVec<float> {
    using V = __m256;
    static constexpr int C = 4;
    static V load(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, V v) { _mm256_storeu_ps(p, v); }
    static V add(V a, V b) { return _mm256_add_ps(a, b); }
    static V sub(V a, V b) { return _mm256_sub_ps(a, b); }
    static V conj(V a) { return _mm256_xor_ps(a, _mm256_setr_ps(0.f, -0.f, 0.f, -0.f, 0.f, -0.f, 0.f, -0.f)); }
    static V reverse(V a) { return _mm256_permute4x64_pd_ps(a); }
    // a * (e1 - i*e0) for table pairs (e0, e1) in t.
    static V mulEntry(V a, V t) {
        const V e0 = _mm256_moveldup_ps(t), e1 = _mm256_movehdup_ps(t);
        const V sw = _mm256_permute_ps(a, 0xB1);
        return _mm256_fmsubadd_ps(a, e1, _mm256_mul_ps(sw, e0));
    }

private:
    static V _mm256_permute4x64_pd_ps(V a) {
        return _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(a), 0x1B));
    }
};

template <> struct CIVec<double> {
    using V = __m256d;
    static constexpr int C = 2;
    static V load(const double* p) { return _mm256_loadu_pd(p); }
    static void store(double* p, V v) { _mm256_storeu_pd(p, v); }
    static V add(V a, V b) { return _mm256_add_pd(a, b); }
    static V sub(V a, V b) { return _mm256_sub_pd(a, b); }
    static V conj(V a) { return _mm256_xor_pd(a, _mm256_setr_pd(0.0, -0.0, 0.0, -0.0)); }
    static V reverse(V a) { return _mm256_permute4x64_pd(a, 0x4E); }
    static V mulEntry(V a, V t) {
        const V e0 = _mm256_movedup_pd(t), e1 = _mm256_permute_pd(t, 0xF);
        const V sw = _mm256_permute_pd(a, 0x5);
        return _mm256_fmsubadd_pd(a, e1, _mm256_mul_pd(sw, e0));
    }
};

// ----------------------------------------------------------- recombination

// One pair of the recombination. Forward, with A = Z[k], B = conj(Z[h-k])
// and the entry U = (e1 - i*e0) = 1/2 - (i/2)exp(-2*pi*i*k/N):
// T = (A - B)U, X[k] = B + T, X[h-k] = conj(A - T). Inverse, with
// P = X[k], Q = conj(X[h-k]) and the entry (cos, sin):
// M = (Q - P)(sin - i*cos), Z[k] = P + Q + M, Z[h-k] = conj(P + Q - M),
// twice the true values, as the forward direction leaves out its halving.
template <class T, bool Inv> struct PairStep {
    static void scalar(T* lo, T* hi, const T* e) {
        const T ar = lo[0], ai = lo[1], br = hi[0], bi = -hi[1];
        if constexpr (!Inv) {
            const T dr = ar - br, di = ai - bi;
            const T tr = std::fma(dr, e[1], di * e[0]);
            const T ti = std::fma(di, e[1], -(dr * e[0]));
            lo[0] = br + tr; lo[1] = bi + ti;
            hi[0] = ar - tr; hi[1] = -(ai - ti);
        } else {
            const T sr = ar + br, si = ai + bi, dr = br - ar, di = bi - ai;
            const T mr = std::fma(dr, e[1], di * e[0]);
            const T mi = std::fma(di, e[1], -(dr * e[0]));
            lo[0] = sr + mr; lo[1] = si + mi;
            hi[0] = sr - mr; hi[1] = -(si - mi);
        }
    }
    using CV = CIVec<T>;
    using V = typename CV::V;
    // C pairs: lo holds Z[k..k+C-1], hi holds Z[h-k-C+1..h-k].
    static void vector(T* lo, T* hi, const T* e) {
        const V a = CV::load(lo);
        const V b = CV::conj(CV::reverse(CV::load(hi)));
        const V t = CV::load(e);
        if constexpr (!Inv) {
            const V m = CV::mulEntry(CV::sub(a, b), t);
            CV::store(lo, CV::add(b, m));
            CV::store(hi, CV::reverse(CV::conj(CV::sub(a, m))));
        } else {
            const V s = CV::add(a, b);
            const V m = CV::mulEntry(CV::sub(b, a), t);
            CV::store(lo, CV::add(s, m));
            CV::store(hi, CV::reverse(CV::conj(CV::sub(s, m))));
        }
    }
};

// Pairs k in [k0, k1) of the h-point half spectrum z (interleaved), with the
// entry of k at e[2(k - k0)]. k1 stays at most (h + 1)/2, so that the two
// ends of a vector step never overlap.
template <class T, bool Inv>
void recombineRange(T* z, std::int64_t h, std::int64_t k0, std::int64_t k1, const T* e) {
    using P = PairStep<T, Inv>;
    constexpr int C = CIVec<T>::C;
    std::int64_t k = k0;
    for (; k + C <= k1; k += C) P::vector(z + 2 * k, z + 2 * (h - k - C + 1), e + 2 * (k - k0));
    for (; k < k1; ++k) P::scalar(z + 2 * k, z + 2 * (h - k), e + 2 * (k - k0));
}

// The ends that need no table: the first pair becomes (R0, R(N/2)) and, for
// even h, the middle value is conjugated (twice that, inverse).
template <class T, bool Inv> void recombineEnds(T* z, std::int64_t h) {
    const T a = z[0], b = z[1];
    z[0] = a + b;
    z[1] = a - b;
    if (h % 2 == 0 && h >= 2) {
        T* m = z + h;
        if constexpr (Inv) { m[0] = m[0] + m[0]; m[1] = -(m[1] + m[1]); }
        else m[1] = -m[1];
    }
}

// Entries per direction for a length-n table (even n): k = 0..n/4 rounded up.
constexpr std::int64_t recombineEntries(std::int64_t n) { return (n / 2 + 1) / 2; }

// A table with one entry per k, as the real N-point transform and the
// recombination of the even-length real DFT use it.
template <class T, bool Inv>
void recombine(T* z, std::int64_t h, const T* table) {
    recombineEnds<T, Inv>(z, h);
    recombineRange<T, Inv>(z, h, 1, (h + 1) / 2, table + 2);
}

// The two-level table of large lengths: 1024 roots exp(-2*pi*i*k/N) for the
// low ten bits of k, N/4096 for the high bits. Entries of 1024 pairs at a
// time are formed on the stack from one high root and the low table.
template <class T, bool Inv>
void recombineTwoLevel(T* z, std::int64_t h, const T* low, const T* high) {
    recombineEnds<T, Inv>(z, h);
    alignas(64) T e[2 * 1024];
    const std::int64_t end = (h + 1) / 2;
    for (std::int64_t k0 = 0; k0 < end; k0 += 1024) {
        const T hc = high[2 * (k0 >> 10)], hs = high[2 * (k0 >> 10) + 1];
        const std::int64_t count = end - k0 < 1024 ? end - k0 : 1024;
        for (std::int64_t j = 0; j < count; ++j) {
            const T lc = low[2 * j], ls = low[2 * j + 1];
            const T c = std::fma(hc, lc, -(hs * ls));
            const T s = std::fma(hc, ls, hs * lc);  // -sin of the angle
            if constexpr (Inv) { e[2 * j] = c; e[2 * j + 1] = -s; }
            else { e[2 * j] = T(0.5) * c; e[2 * j + 1] = std::fma(T(0.5), s, T(0.5)); }
        }
        const std::int64_t first = k0 == 0 ? 1 : k0;
        recombineRange<T, Inv>(z, h, first, k0 + count, e + 2 * (first - k0));
    }
}

// Tables of a power-of-two length 2^order from its quarter-wave sine table:
// forward (0.5*cos, 0.5 - 0.5*sin), inverse (cos, sin), k = 0..N/4-1.
template <class T>
void buildRecombinePow2(T* fwd, T* inv, int order, const Sine<T>& sine) {
    const std::int64_t q = (std::int64_t{1} << order) / 4;
    const int shift = sine.log - order;
    for (std::int64_t k = 0; k < q; ++k) {
        const T c = sine.S[(q - k) << shift], s = sine.S[k << shift];
        fwd[2 * k] = static_cast<T>(0.5 * static_cast<double>(c));
        fwd[2 * k + 1] = static_cast<T>(std::fma(-0.5, static_cast<double>(s), 0.5));
        inv[2 * k] = c;
        inv[2 * k + 1] = s;
    }
}

// The same for any even length, from double sines and cosines.
template <class T>
void buildRecombineAny(T* fwd, T* inv, std::int64_t n) {
    const double step = 2.0 * 3.14159265358979323846 / static_cast<double>(n);
    for (std::int64_t k = 0; k < recombineEntries(n); ++k) {
        const double c = std::cos(step * static_cast<double>(k)), s = std::sin(step * static_cast<double>(k));
        fwd[2 * k] = static_cast<T>(0.5 * c);
        fwd[2 * k + 1] = static_cast<T>(std::fma(-0.5, s, 0.5));
        inv[2 * k] = static_cast<T>(c);
        inv[2 * k + 1] = static_cast<T>(s);
    }
}

// The two-level tables: low[j] = root(j), high[m] = root(1024*m), as
// (cos, -sin) of 2*pi*k/N.
template <class T>
void buildRecombineTwoLevel(T* low, T* high, int order, const Sine<T>& sine) {
    for (std::int64_t j = 0; j < 1024; ++j) sine.root(j, order, low[2 * j], low[2 * j + 1]);
    const std::int64_t count = (std::int64_t{1} << order) / 4096;
    for (std::int64_t m = 0; m < count; ++m) sine.root(1024 * m, order, high[2 * m], high[2 * m + 1]);
}

// ------------------------------------------------------------------ layouts

// Perm: R0, R(N/2), R1, I1, ... for even N; R0, R1, I1, ... for odd N.
// CCS:  R0, 0, R1, I1, ..., R(N/2), 0 (N + 2 reals; N + 1 for odd N).
// Pack: R0, R1, I1, ..., R(N/2) (N reals; the same as Perm for odd N).
enum class Layout { CCS, Pack, Perm };

// In place: the array holds Perm of n samples and room for the layout.
template <class T> void permTo(Layout f, T* d, std::int64_t n) {
    if (f == Layout::Perm) return;
    if (f == Layout::CCS) {
        if (n % 2 == 0) {
            d[n] = d[1];
            d[n + 1] = 0;
        } else {
            std::memmove(d + 2, d + 1, static_cast<std::size_t>(n - 1) * sizeof(T));
        }
        d[1] = 0;
        return;
    }
    if (n % 2 == 0 && n > 2) {
        const T r = d[1];
        std::memmove(d + 1, d + 2, static_cast<std::size_t>(n - 2) * sizeof(T));
        d[n - 1] = r;
    }
}

// Brings a spectrum of layout f from src into Perm at dst (src may be dst).
template <class T> void toPerm(Layout f, const T* src, T* d, std::int64_t n) {
    if (f == Layout::Perm || (f == Layout::Pack && n % 2 == 1)) {
        if (src != d) std::memcpy(d, src, static_cast<std::size_t>(n) * sizeof(T));
        return;
    }
    if (f == Layout::CCS) {
        const T r0 = src[0];
        if (n % 2 == 0) {
            const T rh = src[n];
            if (src != d && n > 2) std::memcpy(d + 2, src + 2, static_cast<std::size_t>(n - 2) * sizeof(T));
            d[0] = r0;
            if (n > 1) d[1] = rh;
        } else {
            std::memmove(d + 1, src + 2, static_cast<std::size_t>(n - 1) * sizeof(T));
            d[0] = r0;
        }
        return;
    }
    // Pack, even length.
    const T r0 = src[0], rh = src[n - 1];
    if (n > 2) std::memmove(d + 2, src + 1, static_cast<std::size_t>(n - 2) * sizeof(T));
    d[0] = r0;
    d[1] = rh;
}

}  // namespace zet::fft
