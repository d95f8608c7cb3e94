// Where the polar kernels get their registers and where their results go.
//
// A source reader yields (re, im) registers of the computing type T from an
// interleaved complex vector or from two planes, widening 16-bit integers
// and (for the binary32 polar-to-Cartesian forms) binary32 to binary64 on
// the way; a writer stores one register, or a pair, into a real vector, two
// planes, an interleaved vector, or 16-bit integers under a scale factor.
// So one kernel per operation and precision serves every layout, and
// sweep() is the one loop: whole registers, then the tail through a padded
// copy, so that the last elements go through the same instructions as the
// rest and nothing is read or written past either end.
#pragma once

#include <immintrin.h>

#include <algorithm>
#include <cstring>
#include <tuple>
#include <type_traits>

#include "data/polar_math.hpp"
#include "frame/checks.hpp"
#include "zetsp.h"

namespace zet::polar {

template <class T> using Reg = std::conditional_t<sizeof(T) == 4, __m256, __m256d>;
template <class T> constexpr int kLanes = 32 / static_cast<int>(sizeof(T));

// kLanes<T> elements of E as one register of T, and back.
template <class T, class E>
inline Reg<T> loadAs(const E* p) {
    if constexpr (std::is_same_v<E, float> && std::is_same_v<T, float>) return _mm256_loadu_ps(p);
    else if constexpr (std::is_same_v<E, double>) return _mm256_loadu_pd(p);
    else if constexpr (std::is_same_v<E, float>) return _mm256_cvtps_pd(_mm_loadu_ps(p));
    else return _mm256_cvtepi32_pd(_mm_cvtepi16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}
template <class T, class E>
inline void storeAs(E* p, Reg<T> v) {
    if constexpr (std::is_same_v<E, float> && std::is_same_v<T, float>) _mm256_storeu_ps(p, v);
    else if constexpr (std::is_same_v<E, double>) _mm256_storeu_pd(p, v);
    else _mm_storeu_ps(p, _mm256_cvtpd_ps(v));
}

// Two registers of interleaved pairs into the parts, in the element order
// 0 1 4 5 2 3 6 7 (binary32) or 0 2 1 3 (binary64); inOrder() exchanges the
// middle 64-bit quarters back. joined() interleaves parts held in order.
inline Pair<__m256> parts(__m256 a, __m256 b) { return {_mm256_shuffle_ps(a, b, 0x88), _mm256_shuffle_ps(a, b, 0xDD)}; }
inline Pair<__m256d> parts(__m256d a, __m256d b) { return {_mm256_unpacklo_pd(a, b), _mm256_unpackhi_pd(a, b)}; }
inline __m256 inOrder(__m256 v) { return _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(v), 0xD8)); }
inline __m256d inOrder(__m256d v) { return _mm256_permute4x64_pd(v, 0xD8); }
inline Pair<__m256> joined(Pair<__m256> z) {
    const __m256 lo = _mm256_unpacklo_ps(z.re, z.im), hi = _mm256_unpackhi_ps(z.re, z.im);
    return {_mm256_permute2f128_ps(lo, hi, 0x20), _mm256_permute2f128_ps(lo, hi, 0x31)};
}
inline Pair<__m256d> joined(Pair<__m256d> z) {
    const __m256d lo = _mm256_unpacklo_pd(z.re, z.im), hi = _mm256_unpackhi_pd(z.re, z.im);
    return {_mm256_permute2f128_pd(lo, hi, 0x20), _mm256_permute2f128_pd(lo, hi, 0x31)};
}

// Padding of a partial register: 1 is harmless to every kernel (no fallback, no NaN).
template <class E, std::size_t K>
inline void padded(E (&buf)[K], const E* p, int count) {
    std::fill(buf, buf + K, E(1));
    std::memcpy(buf, p, static_cast<std::size_t>(count) * sizeof(E));
}

// ---- sources ---------------------------------------------------------------------------------
template <class T, class E>
struct Interleaved {
    using V = Reg<T>;
    static constexpr int N = kLanes<T>;
    struct Buffer {
        E parts[2 * N];
    };
    const E* p;
    auto pointers() const { return std::tuple{p}; }
    Pair<V> load(i64 i) const { return parts(loadAs<T>(p + 2 * i), loadAs<T>(p + 2 * i + N)); }
    Interleaved tail(i64 i, int count, Buffer& b) const {
        padded(b.parts, p + 2 * i, 2 * count);
        return {b.parts};
    }
    static V restore(V v) { return inOrder(v); }
};

template <class T, class E>
struct Planes {
    using V = Reg<T>;
    static constexpr int N = kLanes<T>;
    struct Buffer {
        E re[N], im[N];
    };
    const E *re, *im;
    auto pointers() const { return std::tuple{re, im}; }
    Pair<V> load(i64 i) const { return {loadAs<T>(re + i), loadAs<T>(im + i)}; }
    Planes tail(i64 i, int count, Buffer& b) const {
        padded(b.re, re + i, count), padded(b.im, im + i, count);
        return {b.re, b.im};
    }
    static V restore(V v) { return v; }
};

// ---- destinations ----------------------------------------------------------------------------
template <class T, class E>
struct RealOut {
    static constexpr int N = kLanes<T>;
    using Buffer = E[N];
    E* p;
    auto pointers() const { return std::tuple{p}; }
    void store(i64 i, Reg<T> v) const { storeAs<T>(p + i, v); }
    RealOut staged(Buffer& b) const { return {b}; }
    void flush(i64 i, int count, const Buffer& b) const { std::memcpy(p + i, b, static_cast<std::size_t>(count) * sizeof(E)); }
};

template <class T, class E>
struct PlanesOut {
    static constexpr int N = kLanes<T>;
    struct Buffer {
        E a[N], b[N];
    };
    E *a, *b;
    auto pointers() const { return std::tuple{a, b}; }
    void store(i64 i, Pair<Reg<T>> v) const { storeAs<T>(a + i, v.re), storeAs<T>(b + i, v.im); }
    PlanesOut staged(Buffer& s) const { return {s.a, s.b}; }
    void flush(i64 i, int count, const Buffer& s) const {
        std::memcpy(a + i, s.a, static_cast<std::size_t>(count) * sizeof(E));
        std::memcpy(b + i, s.b, static_cast<std::size_t>(count) * sizeof(E));
    }
};

template <class T, class E>
struct InterleavedOut {
    static constexpr int N = kLanes<T>;
    using Buffer = E[2 * N];
    E* p;
    auto pointers() const { return std::tuple{p}; }
    void store(i64 i, Pair<Reg<T>> v) const {
        const Pair<Reg<T>> j = joined(v);
        storeAs<T>(p + 2 * i, j.re), storeAs<T>(p + 2 * i + N, j.im);
    }
    InterleavedOut staged(Buffer& b) const { return {b}; }
    void flush(i64 i, int count, const Buffer& b) const { std::memcpy(p + 2 * i, b, 2 * static_cast<std::size_t>(count) * sizeof(E)); }
};

// Binary64 results to 16-bit integers by the scale rule: times 2^-scale
// (exact: the scale is held to -64..64, beyond which every nonzero result
// here saturates or rounds to 0 alike), rounded to nearest even, saturated.
struct Scaled16Out {
    static constexpr int N = 4;
    using Buffer = Zet16s[N];
    Zet16s* p;
    __m256d factor;
    static __m256d factorOf(int scale) { return _mm256_set1_pd(std::ldexp(1.0, -std::clamp(scale, -64, 64))); }
    auto pointers() const { return std::tuple{p}; }
    void store(i64 i, __m256d v) const {
        v = _mm256_round_pd(mul(v, factor), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
        const __m128i w = _mm256_cvtpd_epi32(least(max(v, splat<__m256d>(-32768.0)), splat<__m256d>(32767.0)));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(p + i), _mm_packs_epi32(w, w));
    }
    Scaled16Out staged(Buffer& b) const { return {b, factor}; }
    void flush(i64 i, int count, const Buffer& b) const { std::memcpy(p + i, b, static_cast<std::size_t>(count) * sizeof(Zet16s)); }
};

// ---- the loop --------------------------------------------------------------------------------
template <class Src, class V> V restored(V v) { return Src::restore(v); }
template <class Src, class V> Pair<V> restored(Pair<V> v) { return {Src::restore(v.re), Src::restore(v.im)}; }

// What a kernel reads from: the registers of elements i... of a source.
template <class Src>
struct At {
    const Src* src;
    i64 i;
    auto load() const { return src->load(i); }
};

template <class Src, class Op, class Dst>
void sweep(i64 n, const Src& src, Op op, const Dst& dst) {
    constexpr int N = Src::N;
    i64 i = 0;
    for (; i + N <= n; i += N) dst.store(i, restored<Src>(op(At<Src>{&src, i})));
    if (i == n) return;
    const int count = static_cast<int>(n - i);
    typename Src::Buffer in;
    typename Dst::Buffer out;
    const Src last = src.tail(i, count, in);
    dst.staged(out).store(0, restored<Src>(op(At<Src>{&last, 0})));
    dst.flush(i, count, out);
}

// The checks (every pointer, sources first, then the length), then the work.
template <class Op, class Src, class Dst>
ZetStatus run(int len, Op op, const Src& src, const Dst& dst) {
    const auto check = [len](const auto*... p) { return checkArgs(len, p...); };
    if (const ZetStatus s = std::apply(check, std::tuple_cat(src.pointers(), dst.pointers()))) return s;
    sweep(len, src, op, dst);
    return zetStsOk;
}

}  // namespace zet::polar
