// Element-wise loop shapes over real and interleaved complex vectors.
//
// The plain vector loop has no alignment peel and only unaligned accesses:
// four, then two wide registers per round while they fill (four keep both
// load ports busy on vectors that sit in L1), then half registers, then
// single elements through the same operation, so a result never depends on
// where its element sits.
#pragma once

#include <cstring>
#include <type_traits>

#include "simd.hpp"
#include "zetsp.h"

namespace zet::loops {

// How an element type maps onto registers: elements per wide and per half
// register, and the loads and stores of each width. A single element is
// loaded duplicated across its half register.
template <class E> struct Lanes;

// The parts of a complex vector as a real array. A cast, not a member access:
// the vector may sit at any byte address.
inline const float* re(const Zet32fc* p) { return reinterpret_cast<const float*>(p); }
inline float* re(Zet32fc* p) { return reinterpret_cast<float*>(p); }
inline const double* re(const Zet64fc* p) { return reinterpret_cast<const double*>(p); }
inline double* re(Zet64fc* p) { return reinterpret_cast<double*>(p); }

// Real elements: one definition for float and double.
template <class T>
struct RealLanes {
    static constexpr bool kSingle = sizeof(T) == 4;
    using Wide = std::conditional_t<kSingle, __m256, __m256d>;
    using Half = std::conditional_t<kSingle, __m128, __m128d>;
    static constexpr int kWide = 32 / static_cast<int>(sizeof(T)), kHalf = 16 / static_cast<int>(sizeof(T));
    static Wide loadWide(const T* p) {
        if constexpr (kSingle) return _mm256_loadu_ps(p);
        else return _mm256_loadu_pd(p);
    }
    static Half loadHalf(const T* p) {
        if constexpr (kSingle) return _mm_loadu_ps(p);
        else return _mm_loadu_pd(p);
    }
    static Half loadOne(const T* p) {
        T v;
        std::memcpy(&v, p, sizeof v);
        if constexpr (kSingle) return _mm_set1_ps(v);
        else return _mm_set1_pd(v);
    }
    static void store(T* p, Wide v) {
        if constexpr (kSingle) _mm256_storeu_ps(p, v);
        else _mm256_storeu_pd(p, v);
    }
    static void store(T* p, Half v) {
        if constexpr (kSingle) _mm_storeu_ps(p, v);
        else _mm_storeu_pd(p, v);
    }
    static void storeOne(T* p, Half v) {
        T s;
        if constexpr (kSingle) s = _mm_cvtss_f32(v);
        else s = _mm_cvtsd_f64(v);
        std::memcpy(p, &s, sizeof s);
    }
};
template <> struct Lanes<float> : RealLanes<float> {};
template <> struct Lanes<double> : RealLanes<double> {};

template <> struct Lanes<Zet32fc> {
    using Wide = __m256;
    using Half = __m128;
    static constexpr int kWide = 4, kHalf = 2;
    static Wide loadWide(const Zet32fc* p) { return _mm256_loadu_ps(re(p)); }
    static Half loadHalf(const Zet32fc* p) { return _mm_loadu_ps(re(p)); }
    static Half loadOne(const Zet32fc* p) {
        double v;  // the pair as one 64-bit unit, duplicated
        std::memcpy(&v, p, sizeof v);
        return _mm_castpd_ps(_mm_set1_pd(v));
    }
    static void store(Zet32fc* p, Wide v) { _mm256_storeu_ps(re(p), v); }
    static void store(Zet32fc* p, Half v) { _mm_storeu_ps(re(p), v); }
    static void storeOne(Zet32fc* p, Half v) {
        const double s = _mm_cvtsd_f64(_mm_castps_pd(v));
        std::memcpy(p, &s, sizeof s);
    }
};

// A double complex fills a half register: the half step is the single step.
template <> struct Lanes<Zet64fc> {
    using Wide = __m256d;
    using Half = __m128d;
    static constexpr int kWide = 2, kHalf = 1;
    static Wide loadWide(const Zet64fc* p) { return _mm256_loadu_pd(re(p)); }
    static Half loadHalf(const Zet64fc* p) { return _mm_loadu_pd(re(p)); }
    static Half loadOne(const Zet64fc* p) { return loadHalf(p); }
    static void store(Zet64fc* p, Wide v) { _mm256_storeu_pd(re(p), v); }
    static void store(Zet64fc* p, Half v) { _mm_storeu_pd(re(p), v); }
    static void storeOne(Zet64fc* p, Half v) { store(p, v); }
};

// Integer elements: wide and half registers of raw bits; a single element is
// broadcast to every lane of its width.
template <class T>
struct IntLanes {
    using Wide = __m256i;
    using Half = __m128i;
    static constexpr int kWide = 32 / static_cast<int>(sizeof(T)), kHalf = 16 / static_cast<int>(sizeof(T));
    static Wide loadWide(const T* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static Half loadHalf(const T* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static Half loadOne(const T* p) {
        T v;
        std::memcpy(&v, p, sizeof v);
        if constexpr (sizeof(T) == 1) return _mm_set1_epi8(static_cast<char>(v));
        else if constexpr (sizeof(T) == 2) return _mm_set1_epi16(static_cast<short>(v));
        else return _mm_set1_epi32(static_cast<int>(v));
    }
    static void store(T* p, Wide v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
    static void store(T* p, Half v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
    static void storeOne(T* p, Half v) {
        const int w = _mm_cvtsi128_si32(v);
        std::memcpy(p, &w, sizeof(T));
    }
};
template <> struct Lanes<Zet8u> : IntLanes<Zet8u> {};
template <> struct Lanes<Zet16u> : IntLanes<Zet16u> {};
template <> struct Lanes<Zet16s> : IntLanes<Zet16s> {};
template <> struct Lanes<Zet32u> : IntLanes<Zet32u> {};
template <> struct Lanes<Zet32s> : IntLanes<Zet32s> {};

// dst[i] = op(in[i]...) over n elements; op is called with wide and half
// registers of every input. Inputs may equal dst (in-place forms): each
// round loads all its inputs before it stores.
template <class E, class Op, class... In>
inline void map(E* dst, long long n, Op op, const In*... in) {
    using L = Lanes<E>;
    constexpr int W = L::kWide, H = L::kHalf;
    for (; n >= 4 * W; n -= 4 * W, dst += 4 * W, ((in += 4 * W), ...)) {
        const auto r0 = op(Lanes<In>::loadWide(in)...);
        const auto r1 = op(Lanes<In>::loadWide(in + W)...);
        const auto r2 = op(Lanes<In>::loadWide(in + 2 * W)...);
        const auto r3 = op(Lanes<In>::loadWide(in + 3 * W)...);
        L::store(dst, r0);
        L::store(dst + W, r1);
        L::store(dst + 2 * W, r2);
        L::store(dst + 3 * W, r3);
    }
    for (; n >= W; n -= W, dst += W, ((in += W), ...)) L::store(dst, op(Lanes<In>::loadWide(in)...));
    for (; n >= H; n -= H, dst += H, ((in += H), ...)) L::store(dst, op(Lanes<In>::loadHalf(in)...));
    for (; n > 0; --n, ++dst, ((++in), ...)) L::storeOne(dst, op(Lanes<In>::loadOne(in)...));
}

}  // namespace zet::loops
