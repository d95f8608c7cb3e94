// Thin SIMD layer: keeps intrinsics out of family code so kernels read as
// arithmetic. Functions are overloaded on the register type: 256-bit "wide"
// and 128-bit "half" registers of float or double. A single element is
// carried in a half register (duplicated into every lane or pair of lanes),
// so a tail element goes through exactly the same instruction as the main
// loop and raises no flag that its own value would not raise.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace zet::simd {

// ---- arithmetic with a fixed left operand ---------------------------------
// The compiler treats + and * as commutative and may swap operands; the
// hardware delivers the NaN of its first source. Where the contract names
// the left operand's NaN, the instruction is written out so it cannot move.
#define ZET_SIMD_ORDERED(name, insn, R)                                   \
    inline R name(R left, R right) {                                      \
        R out;                                                            \
        __asm__(insn " %2, %1, %0" : "=x"(out) : "x"(left), "xm"(right)); \
        return out;                                                       \
    }
ZET_SIMD_ORDERED(add, "vaddps", __m256)
ZET_SIMD_ORDERED(add, "vaddps", __m128)
ZET_SIMD_ORDERED(add, "vaddpd", __m256d)
ZET_SIMD_ORDERED(add, "vaddpd", __m128d)
ZET_SIMD_ORDERED(mul, "vmulps", __m256)
ZET_SIMD_ORDERED(mul, "vmulps", __m128)
ZET_SIMD_ORDERED(mul, "vmulpd", __m256d)
ZET_SIMD_ORDERED(mul, "vmulpd", __m128d)
#undef ZET_SIMD_ORDERED

// ---- the rest of the arithmetic, one line per register type ---------------
#define ZET_SIMD_EACH(X)           \
    X(__m256, _mm256_, ps, __m256i) \
    X(__m128, _mm_, ps, __m128i)    \
    X(__m256d, _mm256_, pd, __m256i) \
    X(__m128d, _mm_, pd, __m128i)

#define ZET_SIMD_ARITH(R, P, S, I)                                                          \
    inline R sub(R a, R b) { return P##sub_##S(a, b); }                                     \
    inline R div(R a, R b) { return P##div_##S(a, b); }                                     \
    /* a * b + c with one rounding */                                                       \
    inline R fma(R a, R b, R c) { return P##fmadd_##S(a, b, c); }                           \
    /* even lanes a * b - c, odd lanes a * b + c, each with one rounding */                 \
    inline R fmaddsub(R a, R b, R c) { return P##fmaddsub_##S(a, b, c); }                   \
    /* even lanes a - b, odd lanes a + b */                                                 \
    inline R addsub(R a, R b) { return P##addsub_##S(a, b); }                               \
    /* processor maximum: the second operand unless the first compares greater */           \
    inline R max(R a, R b) { return P##max_##S(a, b); }                                     \
    /* sign-bit flip (not 0 - x, which would turn -0 into +0 and touch NaNs) */             \
    inline R neg(R a) { return P##xor_##S(a, P##set1_##S(-0.0)); }                          \
    inline R zero(R) { return P##setzero_##S(); }
ZET_SIMD_EACH(ZET_SIMD_ARITH)
#undef ZET_SIMD_ARITH

// Bit mask of the lanes equal to zero (-0 included, NaN not).
inline int zeroLanes(__m256 a) { return _mm256_movemask_ps(_mm256_cmp_ps(a, _mm256_setzero_ps(), _CMP_EQ_OQ)); }
inline int zeroLanes(__m128 a) { return _mm_movemask_ps(_mm_cmp_ps(a, _mm_setzero_ps(), _CMP_EQ_OQ)); }
inline int zeroLanes(__m256d a) { return _mm256_movemask_pd(_mm256_cmp_pd(a, _mm256_setzero_pd(), _CMP_EQ_OQ)); }
inline int zeroLanes(__m128d a) { return _mm_movemask_pd(_mm_cmp_pd(a, _mm_setzero_pd(), _CMP_EQ_OQ)); }

// ---- interleaved complex pairs {re, im} -------------------------------------
// dupRe: {re, re}, dupIm: {im, im}, swap: {im, re}, oddFrom(a, b): the real
// lanes of a with the imaginary lanes of b.
inline __m256 dupRe(__m256 a) { return _mm256_moveldup_ps(a); }
inline __m128 dupRe(__m128 a) { return _mm_moveldup_ps(a); }
inline __m256d dupRe(__m256d a) { return _mm256_movedup_pd(a); }
inline __m128d dupRe(__m128d a) { return _mm_movedup_pd(a); }
inline __m256 dupIm(__m256 a) { return _mm256_movehdup_ps(a); }
inline __m128 dupIm(__m128 a) { return _mm_movehdup_ps(a); }
inline __m256d dupIm(__m256d a) { return _mm256_permute_pd(a, 0xF); }
inline __m128d dupIm(__m128d a) { return _mm_permute_pd(a, 0x3); }
inline __m256 swap(__m256 a) { return _mm256_permute_ps(a, 0xB1); }
inline __m128 swap(__m128 a) { return _mm_permute_ps(a, 0xB1); }
inline __m256d swap(__m256d a) { return _mm256_permute_pd(a, 0x5); }
inline __m128d swap(__m128d a) { return _mm_permute_pd(a, 0x1); }
inline __m256 oddFrom(__m256 a, __m256 b) { return _mm256_blend_ps(a, b, 0xAA); }
inline __m128 oddFrom(__m128 a, __m128 b) { return _mm_blend_ps(a, b, 0xA); }
inline __m256d oddFrom(__m256d a, __m256d b) { return _mm256_blend_pd(a, b, 0xA); }
inline __m128d oddFrom(__m128d a, __m128d b) { return _mm_blend_pd(a, b, 0x2); }

// A constant prepared as a wide register, narrowed to the register type at hand.
template <class V> inline V fit(__m256 c) {
    if constexpr (std::is_same_v<V, __m256>) return c;
    else return _mm256_castps256_ps128(c);
}
template <class V> inline V fit(__m256d c) {
    if constexpr (std::is_same_v<V, __m256d>) return c;
    else return _mm256_castpd256_pd128(c);
}

// ---- raw bytes --------------------------------------------------------------
inline __m256i loadBytes32(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
inline void storeBytes32(void* p, __m256i v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
inline void storeBytes32Aligned(void* p, __m256i v) { _mm256_store_si256(static_cast<__m256i*>(p), v); }
inline void streamBytes32(void* p, __m256i v) { _mm256_stream_si256(static_cast<__m256i*>(p), v); }

inline std::uintptr_t addr(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

}  // namespace zet::simd
