// Thin SIMD layer: keeps intrinsics out of family code so kernels read as
// arithmetic. Overloads are by register type (256-bit "wide", 128-bit "half");
// a scalar is carried in a half register with the value in every lane, so a
// tail element sees exactly the same instruction as the main loop and raises
// no flag that its real value would not raise.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zet::simd {

template <class T> struct Reg;
template <> struct Reg<float> {
    using Wide = __m256;
    using Half = __m128;
    static constexpr int kWide = 8;
    static constexpr int kHalf = 4;
};
template <> struct Reg<double> {
    using Wide = __m256d;
    using Half = __m128d;
    static constexpr int kWide = 4;
    static constexpr int kHalf = 2;
};

// ---- loads and stores (never aligned: no caller vector has to be) --------
inline __m256 loadWide(const float* p) { return _mm256_loadu_ps(p); }
inline __m256d loadWide(const double* p) { return _mm256_loadu_pd(p); }
inline __m128 loadHalf(const float* p) { return _mm_loadu_ps(p); }
inline __m128d loadHalf(const double* p) { return _mm_loadu_pd(p); }
inline void store(float* p, __m256 v) { _mm256_storeu_ps(p, v); }
inline void store(double* p, __m256d v) { _mm256_storeu_pd(p, v); }
inline void store(float* p, __m128 v) { _mm_storeu_ps(p, v); }
inline void store(double* p, __m128d v) { _mm_storeu_pd(p, v); }

// One element, broadcast to every lane of a half register. memcpy keeps the
// access legal at any byte address.
inline __m128 loadOne(const float* p) {
    float v;
    std::memcpy(&v, p, sizeof v);
    return _mm_set1_ps(v);
}
inline __m128d loadOne(const double* p) {
    double v;
    std::memcpy(&v, p, sizeof v);
    return _mm_set1_pd(v);
}
inline void storeOne(float* p, __m128 v) {
    const float s = _mm_cvtss_f32(v);
    std::memcpy(p, &s, sizeof s);
}
inline void storeOne(double* p, __m128d v) {
    const double s = _mm_cvtsd_f64(v);
    std::memcpy(p, &s, sizeof s);
}

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

inline __m256 sub(__m256 a, __m256 b) { return _mm256_sub_ps(a, b); }
inline __m128 sub(__m128 a, __m128 b) { return _mm_sub_ps(a, b); }
inline __m256d sub(__m256d a, __m256d b) { return _mm256_sub_pd(a, b); }
inline __m128d sub(__m128d a, __m128d b) { return _mm_sub_pd(a, b); }

// Processor maximum: the second operand unless the first compares greater.
inline __m256 max(__m256 a, __m256 b) { return _mm256_max_ps(a, b); }
inline __m128 max(__m128 a, __m128 b) { return _mm_max_ps(a, b); }
inline __m256d max(__m256d a, __m256d b) { return _mm256_max_pd(a, b); }
inline __m128d max(__m128d a, __m128d b) { return _mm_max_pd(a, b); }

// Sign-bit flip (not 0 - x: that would turn -0 into +0 and touch NaNs).
inline __m256 neg(__m256 a) { return _mm256_xor_ps(a, _mm256_set1_ps(-0.0f)); }
inline __m128 neg(__m128 a) { return _mm_xor_ps(a, _mm_set1_ps(-0.0f)); }
inline __m256d neg(__m256d a) { return _mm256_xor_pd(a, _mm256_set1_pd(-0.0)); }
inline __m128d neg(__m128d a) { return _mm_xor_pd(a, _mm_set1_pd(-0.0)); }

// ---- raw bytes --------------------------------------------------------------
inline __m256i loadBytes32(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
inline void storeBytes32(void* p, __m256i v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
inline void storeBytes32Aligned(void* p, __m256i v) { _mm256_store_si256(static_cast<__m256i*>(p), v); }
inline void streamBytes32(void* p, __m256i v) { _mm256_stream_si256(static_cast<__m256i*>(p), v); }

inline std::uintptr_t addr(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

}  // namespace zet::simd
