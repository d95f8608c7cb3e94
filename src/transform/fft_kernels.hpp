// Building blocks of the power-of-two transforms: vector operations over one
// lane type per precision, complex vectors in split form (real parts in one
// register, imaginary parts in another), small DFTs unrolled at compile time
// across such vectors, transposes and the loads and stores of the two
// storage forms. Everything is written once over the vector type V, which may
// be a scalar (float, double) for the straight-line codelets.
#pragma once

#include <immintrin.h>

#include <cstddef>

namespace zet::fft {

// ---- lane operations, overloaded for scalars and 256-bit vectors ----
inline float add(float a, float b) { return a + b; }
inline float sub(float a, float b) { return a - b; }
inline float mul(float a, float b) { return a * b; }
inline float fmadd(float a, float b, float c) { return __builtin_fmaf(a, b, c); }
inline float fmsub(float a, float b, float c) { return __builtin_fmaf(a, b, -c); }
inline double add(double a, double b) { return a + b; }
inline double sub(double a, double b) { return a - b; }
inline double mul(double a, double b) { return a * b; }
inline double fmadd(double a, double b, double c) { return __builtin_fma(a, b, c); }
inline double fmsub(double a, double b, double c) { return __builtin_fma(a, b, -c); }
inline float neg(float a) { return -a; }
inline double neg(double a) { return -a; }
inline __m256 neg(__m256 a) { return _mm256_xor_ps(a, _mm256_set1_ps(-0.0f)); }
inline __m256d neg(__m256d a) { return _mm256_xor_pd(a, _mm256_set1_pd(-0.0)); }
inline __m256 add(__m256 a, __m256 b) { return _mm256_add_ps(a, b); }
inline __m256 sub(__m256 a, __m256 b) { return _mm256_sub_ps(a, b); }
inline __m256 mul(__m256 a, __m256 b) { return _mm256_mul_ps(a, b); }
inline __m256 fmadd(__m256 a, __m256 b, __m256 c) { return _mm256_fmadd_ps(a, b, c); }
inline __m256 fmsub(__m256 a, __m256 b, __m256 c) { return _mm256_fmsub_ps(a, b, c); }
inline __m256d add(__m256d a, __m256d b) { return _mm256_add_pd(a, b); }
inline __m256d sub(__m256d a, __m256d b) { return _mm256_sub_pd(a, b); }
inline __m256d mul(__m256d a, __m256d b) { return _mm256_mul_pd(a, b); }
inline __m256d fmadd(__m256d a, __m256d b, __m256d c) { return _mm256_fmadd_pd(a, b, c); }
inline __m256d fmsub(__m256d a, __m256d b, __m256d c) { return _mm256_fmsub_pd(a, b, c); }

// Lane description per element type: V the register, W complex values per
// register, load/store of W reals, broadcast.
template <class T> struct Lanes;
template <> struct Lanes<float> {
    using V = __m256;
    static constexpr int W = 8;
    static V load(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, V v) { _mm256_storeu_ps(p, v); }
    static V set1(float x) { return _mm256_set1_ps(x); }
    static V bcast(const float* p) { return _mm256_broadcast_ss(p); }
    // W interleaved complex values to split form. The lanes come out in the
    // order kPerm (the cheapest shuffle); callers that need natural order use
    // loadNatural.
    static constexpr int kPerm[8] = {0, 1, 4, 5, 2, 3, 6, 7};
    static void deinterleave(const float* p, V& re, V& im) {
        V a = load(p), b = load(p + 8);
        re = _mm256_shuffle_ps(a, b, 0x88);
        im = _mm256_shuffle_ps(a, b, 0xDD);
    }
    static V natural(V v) { return _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(v), 0xD8)); }
    // The cross-lane step of interleaving and transposing is done by the
    // 128-bit stores: they use the store port, not the shuffle port.
    static void interleave(float* p, V re, V im) {
        V lo = _mm256_unpacklo_ps(re, im), hi = _mm256_unpackhi_ps(re, im);
        _mm_storeu_ps(p, _mm256_castps256_ps128(lo));
        _mm_storeu_ps(p + 4, _mm256_castps256_ps128(hi));
        _mm_storeu_ps(p + 8, _mm256_extractf128_ps(lo, 1));
        _mm_storeu_ps(p + 12, _mm256_extractf128_ps(hi, 1));
    }
    // Transposes the 8×8 block r and stores row l at dst(l).
    template <class Dst> static void transposeStore(const V* r, Dst dst) {
        V t0 = _mm256_unpacklo_ps(r[0], r[1]), t1 = _mm256_unpackhi_ps(r[0], r[1]);
        V t2 = _mm256_unpacklo_ps(r[2], r[3]), t3 = _mm256_unpackhi_ps(r[2], r[3]);
        V t4 = _mm256_unpacklo_ps(r[4], r[5]), t5 = _mm256_unpackhi_ps(r[4], r[5]);
        V t6 = _mm256_unpacklo_ps(r[6], r[7]), t7 = _mm256_unpackhi_ps(r[6], r[7]);
        V u[8] = {_mm256_shuffle_ps(t0, t2, 0x44), _mm256_shuffle_ps(t0, t2, 0xEE),
                  _mm256_shuffle_ps(t1, t3, 0x44), _mm256_shuffle_ps(t1, t3, 0xEE),
                  _mm256_shuffle_ps(t4, t6, 0x44), _mm256_shuffle_ps(t4, t6, 0xEE),
                  _mm256_shuffle_ps(t5, t7, 0x44), _mm256_shuffle_ps(t5, t7, 0xEE)};
#pragma GCC unroll 4
        for (int i = 0; i < 4; ++i) {
            _mm_storeu_ps(dst(i), _mm256_castps256_ps128(u[i]));
            _mm_storeu_ps(dst(i) + 4, _mm256_castps256_ps128(u[i + 4]));
            _mm_storeu_ps(dst(i + 4), _mm256_extractf128_ps(u[i], 1));
            _mm_storeu_ps(dst(i + 4) + 4, _mm256_extractf128_ps(u[i + 4], 1));
        }
    }
    static void transpose(V* r) {
        V t0 = _mm256_unpacklo_ps(r[0], r[1]), t1 = _mm256_unpackhi_ps(r[0], r[1]);
        V t2 = _mm256_unpacklo_ps(r[2], r[3]), t3 = _mm256_unpackhi_ps(r[2], r[3]);
        V t4 = _mm256_unpacklo_ps(r[4], r[5]), t5 = _mm256_unpackhi_ps(r[4], r[5]);
        V t6 = _mm256_unpacklo_ps(r[6], r[7]), t7 = _mm256_unpackhi_ps(r[6], r[7]);
        V u0 = _mm256_shuffle_ps(t0, t2, 0x44), u1 = _mm256_shuffle_ps(t0, t2, 0xEE);
        V u2 = _mm256_shuffle_ps(t1, t3, 0x44), u3 = _mm256_shuffle_ps(t1, t3, 0xEE);
        V u4 = _mm256_shuffle_ps(t4, t6, 0x44), u5 = _mm256_shuffle_ps(t4, t6, 0xEE);
        V u6 = _mm256_shuffle_ps(t5, t7, 0x44), u7 = _mm256_shuffle_ps(t5, t7, 0xEE);
        r[0] = _mm256_permute2f128_ps(u0, u4, 0x20); r[1] = _mm256_permute2f128_ps(u1, u5, 0x20);
        r[2] = _mm256_permute2f128_ps(u2, u6, 0x20); r[3] = _mm256_permute2f128_ps(u3, u7, 0x20);
        r[4] = _mm256_permute2f128_ps(u0, u4, 0x31); r[5] = _mm256_permute2f128_ps(u1, u5, 0x31);
        r[6] = _mm256_permute2f128_ps(u2, u6, 0x31); r[7] = _mm256_permute2f128_ps(u3, u7, 0x31);
    }
};
template <> struct Lanes<double> {
    using V = __m256d;
    static constexpr int W = 4;
    static V load(const double* p) { return _mm256_loadu_pd(p); }
    static void store(double* p, V v) { _mm256_storeu_pd(p, v); }
    static V set1(double x) { return _mm256_set1_pd(x); }
    static V bcast(const double* p) { return _mm256_broadcast_sd(p); }
    static constexpr int kPerm[4] = {0, 2, 1, 3};
    static void deinterleave(const double* p, V& re, V& im) {
        V a = load(p), b = load(p + 4);
        re = _mm256_unpacklo_pd(a, b);
        im = _mm256_unpackhi_pd(a, b);
    }
    static V natural(V v) { return _mm256_permute4x64_pd(v, 0xD8); }
    static void interleave(double* p, V re, V im) {
        V lo = _mm256_unpacklo_pd(re, im), hi = _mm256_unpackhi_pd(re, im);
        _mm_storeu_pd(p, _mm256_castpd256_pd128(lo));
        _mm_storeu_pd(p + 2, _mm256_castpd256_pd128(hi));
        _mm_storeu_pd(p + 4, _mm256_extractf128_pd(lo, 1));
        _mm_storeu_pd(p + 6, _mm256_extractf128_pd(hi, 1));
    }
    template <class Dst> static void transposeStore(const V* r, Dst dst) {
        V t0 = _mm256_unpacklo_pd(r[0], r[1]), t1 = _mm256_unpackhi_pd(r[0], r[1]);
        V t2 = _mm256_unpacklo_pd(r[2], r[3]), t3 = _mm256_unpackhi_pd(r[2], r[3]);
        _mm_storeu_pd(dst(0), _mm256_castpd256_pd128(t0)); _mm_storeu_pd(dst(0) + 2, _mm256_castpd256_pd128(t2));
        _mm_storeu_pd(dst(1), _mm256_castpd256_pd128(t1)); _mm_storeu_pd(dst(1) + 2, _mm256_castpd256_pd128(t3));
        _mm_storeu_pd(dst(2), _mm256_extractf128_pd(t0, 1)); _mm_storeu_pd(dst(2) + 2, _mm256_extractf128_pd(t2, 1));
        _mm_storeu_pd(dst(3), _mm256_extractf128_pd(t1, 1)); _mm_storeu_pd(dst(3) + 2, _mm256_extractf128_pd(t3, 1));
    }
    static void transpose(V* r) {
        V t0 = _mm256_unpacklo_pd(r[0], r[1]), t1 = _mm256_unpackhi_pd(r[0], r[1]);
        V t2 = _mm256_unpacklo_pd(r[2], r[3]), t3 = _mm256_unpackhi_pd(r[2], r[3]);
        r[0] = _mm256_permute2f128_pd(t0, t2, 0x20); r[1] = _mm256_permute2f128_pd(t1, t3, 0x20);
        r[2] = _mm256_permute2f128_pd(t0, t2, 0x31); r[3] = _mm256_permute2f128_pd(t1, t3, 0x31);
    }
};

template <class V> struct CV { V re, im; };

template <class V> inline CV<V> cadd(CV<V> a, CV<V> b) { return {add(a.re, b.re), add(a.im, b.im)}; }
template <class V> inline CV<V> csub(CV<V> a, CV<V> b) { return {sub(a.re, b.re), sub(a.im, b.im)}; }
template <class V, class S> inline CV<V> cscale(CV<V> a, S s) { return {mul(a.re, s), mul(a.im, s)}; }

// a·w with w = c + i·s holding the forward twiddle; the inverse multiplies by
// its conjugate.
template <bool Inv, class V> inline CV<V> cmulw(CV<V> a, V c, V s) {
    if constexpr (!Inv) return {fmsub(a.re, c, mul(a.im, s)), fmadd(a.re, s, mul(a.im, c))};
    else return {fmadd(a.re, c, mul(a.im, s)), fmsub(a.im, c, mul(a.re, s))};
}
// Unit roots exp(-2*pi*i*k/256) for the unrolled DFTs, k = 0..255: c holds
// the cosine, s the (negative) sine, so c + i*s is the forward root.
template <class T> struct UnitRoots { T c[256]; T s[256]; };
extern const UnitRoots<float> kRoots32;
extern const UnitRoots<double> kRoots64;
template <class T> inline const UnitRoots<T>& roots() {
    if constexpr (sizeof(T) == 4) return kRoots32; else return kRoots64;
}

template <class V, class T> inline V splat(const T* p) {
    if constexpr (sizeof(V) == sizeof(T)) return *p; else return Lanes<T>::bcast(p);
}
template <class V> struct ScalarOf { using type = V; };
template <> struct ScalarOf<__m256> { using type = float; };
template <> struct ScalarOf<__m256d> { using type = double; };

// Radix-4 butterfly on natural-order inputs, in place.
template <bool Inv, class V> [[gnu::always_inline]] inline void bfly4(CV<V>& a0, CV<V>& a1, CV<V>& a2, CV<V>& a3) {
    CV<V> t0 = cadd(a0, a2), t1 = csub(a0, a2), t2 = cadd(a1, a3), t3 = csub(a1, a3);
    a0 = cadd(t0, t2);
    a2 = csub(t0, t2);
    if constexpr (!Inv) {  // t1 -/+ i*t3
        a1 = {add(t1.re, t3.im), sub(t1.im, t3.re)};
        a3 = {sub(t1.re, t3.im), add(t1.im, t3.re)};
    } else {
        a1 = {sub(t1.re, t3.im), add(t1.im, t3.re)};
        a3 = {add(t1.re, t3.im), sub(t1.im, t3.re)};
    }
}

// x * exp(-/+ 2*pi*i*k/R) for a compile-time root; the trivial ones cost no multiply.
template <int R, int K, bool Inv, class V> [[gnu::always_inline]] inline CV<V> rootMul(CV<V> x) {
    using T = typename ScalarOf<V>::type;
    constexpr int k = K % R;
    if constexpr (k == 0) return x;
    else if constexpr (4 * k == R) {  // -i forward, +i inverse
        if constexpr (!Inv) return {x.im, neg(x.re)};
        else return {neg(x.im), x.re};
    } else {
        const UnitRoots<T>& r = roots<T>();
        constexpr int idx = k * (256 / R);
        return cmulw<Inv>(x, splat<V>(&r.c[idx]), splat<V>(&r.s[idx]));
    }
}

template <int R, bool Inv, class V, int K = 0>
[[gnu::always_inline]] inline void combine4(CV<V>* y, CV<V>* x) {
    // y holds four sub-DFTs of length R/4 back to back; x receives the result.
    constexpr int M = R / 4;
    if constexpr (K < M) {
        CV<V> a0 = y[K], a1 = rootMul<R, K, Inv>(y[M + K]);
        CV<V> a2 = rootMul<R, 2 * K, Inv>(y[2 * M + K]), a3 = rootMul<R, 3 * K, Inv>(y[3 * M + K]);
        bfly4<Inv>(a0, a1, a2, a3);
        x[K] = a0; x[M + K] = a1; x[2 * M + K] = a2; x[3 * M + K] = a3;
        combine4<R, Inv, V, K + 1>(y, x);
    }
}

// In-place DFT of R complex vectors, natural order in and out; each lane is
// an independent transform. Radix 4 recursively, radix 2 or 8 at the bottom.
template <int R, bool Inv, class V>
[[gnu::always_inline]] inline void dft(CV<V>* x) {
    if constexpr (R == 1) {
    } else if constexpr (R == 2) {
        CV<V> a = x[0], b = x[1];
        x[0] = cadd(a, b); x[1] = csub(a, b);
    } else if constexpr (R == 4) {
        bfly4<Inv>(x[0], x[1], x[2], x[3]);
    } else if constexpr (R == 8) {
        CV<V> e0 = x[0], e1 = x[2], e2 = x[4], e3 = x[6];
        CV<V> o0 = x[1], o1 = x[3], o2 = x[5], o3 = x[7];
        bfly4<Inv>(e0, e1, e2, e3);
        bfly4<Inv>(o0, o1, o2, o3);
        o1 = rootMul<8, 1, Inv>(o1); o2 = rootMul<8, 2, Inv>(o2); o3 = rootMul<8, 3, Inv>(o3);
        x[0] = cadd(e0, o0); x[4] = csub(e0, o0);
        x[1] = cadd(e1, o1); x[5] = csub(e1, o1);
        x[2] = cadd(e2, o2); x[6] = csub(e2, o2);
        x[3] = cadd(e3, o3); x[7] = csub(e3, o3);
    } else {
        constexpr int M = R / 4;
        CV<V> y[R];
#pragma GCC unroll 64
        for (int t = 0; t < 4; ++t) {
#pragma GCC unroll 64
            for (int m = 0; m < M; ++m) y[t * M + m] = x[4 * m + t];
            dft<M, Inv>(y + t * M);
        }
        combine4<R, Inv>(y, x);
    }
}

// Natural-order index of a bit-reversed position, for compile-time tables.
constexpr int revBits(int v, int bits) {
    int r = 0;
    for (int i = 0; i < bits; ++i) r |= ((v >> i) & 1) << (bits - 1 - i);
    return r;
}

}  // namespace zet::fft
