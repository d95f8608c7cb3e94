// One wide register of any element type of the extrema family, with the
// operations the reductions need: loads, broadcasts, the processor's
// minimum and maximum, strict comparisons returned as lane bit masks, and
// the magnitude. Kernels written against Reg<T> serve every type at once.
#pragma once

#include <immintrin.h>

#include <bit>
#include <cstring>

#include "zetsp.h"

namespace zet::stats {

// Float lanes: max(a, b) and min(a, b) are the processor's operations, which
// deliver b unless a compares greater (smaller); masks have one bit a lane.
template <class T, class V, int Lanes>
struct FloatReg {
    using Vec = V;
    static constexpr int N = Lanes;
    static constexpr int kBitsPerLane = 1;
    static V load(const T* p) {
        if constexpr (sizeof(T) == 4) return _mm256_loadu_ps(p);
        else return _mm256_loadu_pd(p);
    }
    static V set1(T v) {
        if constexpr (sizeof(T) == 4) return _mm256_set1_ps(v);
        else return _mm256_set1_pd(v);
    }
    static V max(V a, V b) {
        if constexpr (sizeof(T) == 4) return _mm256_max_ps(a, b);
        else return _mm256_max_pd(a, b);
    }
    static V min(V a, V b) {
        if constexpr (sizeof(T) == 4) return _mm256_min_ps(a, b);
        else return _mm256_min_pd(a, b);
    }
    template <int Pred>
    static int cmp(V a, V b) {
        if constexpr (sizeof(T) == 4) return _mm256_movemask_ps(_mm256_cmp_ps(a, b, Pred));
        else return _mm256_movemask_pd(_mm256_cmp_pd(a, b, Pred));
    }
    static int gt(V a, V b) { return cmp<_CMP_GT_OQ>(a, b); }
    static int lt(V a, V b) { return cmp<_CMP_LT_OQ>(a, b); }
    static int eq(V a, V b) { return cmp<_CMP_EQ_OQ>(a, b); }
    static V abs(V a) {
        if constexpr (sizeof(T) == 4) return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), a);
        else return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a);
    }
    static void store(T* p, V v) {
        if constexpr (sizeof(T) == 4) _mm256_storeu_ps(p, v);
        else _mm256_storeu_pd(p, v);
    }
};

// Integer lanes of 8, 16 or 32 bits, signed or not; masks have one bit a byte.
template <class T>
struct IntReg {
    using Vec = __m256i;
    using V = __m256i;
    static constexpr int N = 32 / static_cast<int>(sizeof(T));
    static constexpr int kBitsPerLane = sizeof(T);
    static constexpr bool kSigned = T(-1) < T(0);
    static V load(const T* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static V set1(T v) {
        if constexpr (sizeof(T) == 1) return _mm256_set1_epi8(static_cast<char>(v));
        else if constexpr (sizeof(T) == 2) return _mm256_set1_epi16(static_cast<short>(v));
        else return _mm256_set1_epi32(static_cast<int>(v));
    }
#define ZET_INT_PICK(name, op)                                                     \
    static V name(V a, V b) {                                                      \
        if constexpr (sizeof(T) == 1) return kSigned ? op##_epi8(a, b) : op##_epu8(a, b);   \
        else if constexpr (sizeof(T) == 2) return kSigned ? op##_epi16(a, b) : op##_epu16(a, b); \
        else return kSigned ? op##_epi32(a, b) : op##_epu32(a, b);                 \
    }
    ZET_INT_PICK(max, _mm256_max)
    ZET_INT_PICK(min, _mm256_min)
#undef ZET_INT_PICK
    static int eq(V a, V b) {
        if constexpr (sizeof(T) == 1) return _mm256_movemask_epi8(_mm256_cmpeq_epi8(a, b));
        else if constexpr (sizeof(T) == 2) return _mm256_movemask_epi8(_mm256_cmpeq_epi16(a, b));
        else return _mm256_movemask_epi8(_mm256_cmpeq_epi32(a, b));
    }
    // a > b: not (max(a, b) == b), which holds for either signedness.
    static int gt(V a, V b) { return ~eq(max(a, b), b); }
    static int lt(V a, V b) { return ~eq(min(a, b), b); }
    // Magnitudes of signed lanes, read as unsigned (the lowest value's is
    // its own bit pattern, which is right as an unsigned number).
    static V abs(V a) {
        if constexpr (sizeof(T) == 2) return _mm256_abs_epi16(a);
        else return _mm256_abs_epi32(a);
    }
    static void store(T* p, V v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
};

template <class T> struct Reg : IntReg<T> {};
template <> struct Reg<float> : FloatReg<float, __m256, 8> {};
template <> struct Reg<double> : FloatReg<double, __m256d, 4> {};

// The lane of the lowest set bit of a mask.
template <class T>
inline int firstLane(int mask) {
    return std::countr_zero(static_cast<unsigned>(mask)) / Reg<T>::kBitsPerLane;
}

}  // namespace zet::stats
