// The middle steps of the conversion pipelines (convert_lanes.hpp): floating
// values to 32-bit integer lanes, integer lanes scaled by the fixed-point
// rule, and integer lanes to floating values.
#pragma once

#include <bit>
#include <cstdint>

#include "data/convert_lanes.hpp"

namespace zet::conv {

// How a float-to-integer conversion rounds: the ZetRoundMode values, where
// every mode but 0 and 1 counts as 2.
enum Round { kTrunc = 0, kNearest = 1, kAway = 2 };
inline Round roundOf(int mode) { return mode == 0 ? kTrunc : mode == 1 ? kNearest : kAway; }

// The control word a float-to-integer kernel runs under. Converting a NaN or
// an out-of-range value raises the invalid-operation exception, so its mask
// is set in every mode; mode 1 converts under nearest rounding, and mode 2
// adds its half under rounding toward zero (to nearest, 0.49999997 + 0.5
// would round up to 1).
inline unsigned roundingField(Round r) { return r == kTrunc ? kInvalidMask : kInvalidMask | kRoundingField; }
inline unsigned roundingValue(Round r) { return r == kAway ? kInvalidMask | kRoundTowardZero : kInvalidMask; }

// The factor 2^-scale of the float-to-integer conversions, built as a bit
// pattern: the bits of 1.0 with scale taken off the exponent field. The
// field is not limited, so a scale beyond its range borrows into the sign
// and wraps into another factor (at binary32, 128 gives -infinity and 256
// gives -1).
inline float wrappedFactor32(int scale) {
    return std::bit_cast<float>(0x3F800000u - (static_cast<std::uint32_t>(scale) << 23));
}
inline double wrappedFactor64(int scale) {
    return std::bit_cast<double>(0x3FF0000000000000ull - (static_cast<std::uint64_t>(static_cast<std::int64_t>(scale)) << 52));
}

// 2^e for an exponent of a normal number, built in the exponent field (the
// library call would also mix legacy SSE code into the AVX kernels' caller).
inline float pow2f(int e) { return std::bit_cast<float>(static_cast<std::uint32_t>(127 + e) << 23); }
inline double pow2d(int e) { return std::bit_cast<double>(static_cast<std::uint64_t>(1023 + e) << 52); }

// ---- floating registers to 32-bit lanes ----------------------------------------
template <class R> struct FloatRegs;
#define ZET_CONV_FLOATS(R, W, P, S, I, FIT)                                           \
    template <> struct FloatRegs<R> {                                                      \
        using Int = I;                                                                     \
        static R fit(W c) { return FIT; }                                                  \
        static R mul(R a, R b) { return P##mul_##S(a, b); }                               \
        /* the second operand when either is a NaN */                                      \
        static R min(R a, R b) { return P##min_##S(a, b); }                                \
        /* x plus one half with the sign of x */                                           \
        static R addHalfAway(R x) {                                                        \
            const R half = P##or_##S(P##and_##S(x, P##set1_##S(-0.0)), P##set1_##S(0.5)); \
            return P##add_##S(x, half);                                                    \
        }                                                                                  \
        static I cvt(R x) { return P##cvt##S##_epi32(x); }                                \
        static I cvtt(R x) { return P##cvtt##S##_epi32(x); }                              \
    };
ZET_CONV_FLOATS(__m256, __m256, _mm256_, ps, __m256i, c)
ZET_CONV_FLOATS(__m128, __m256, _mm_, ps, __m128i, _mm256_castps256_ps128(c))
ZET_CONV_FLOATS(__m256d, __m256d, _mm256_, pd, __m128i, c)
#undef ZET_CONV_FLOATS
// All ones in the lanes where a equals b.
inline __m256i eqLanes(__m256 a, __m256 b) { return _mm256_castps_si256(_mm256_cmp_ps(a, b, _CMP_EQ_OQ)); }
inline __m128i eqLanes(__m128 a, __m128 b) { return _mm_castps_si128(_mm_cmp_ps(a, b, _CMP_EQ_OQ)); }

// Float (S = float, double) to 32-bit lanes: times the factor where scale is
// not 0, limited from above (a NaN stays NaN), rounded, converted. The
// conversion gives the integer indefinite value, the lowest 32-bit integer,
// for NaN, -infinity and anything below the 32-bit range; the writer then
// saturates. With a 32-bit destination from binary32 the top, 2^31, is not
// a 32-bit integer either (FixTop): a lane that reached it is turned into
// the largest one.
template <class S, Round R, bool FixTop = false>
struct ToInt32 {
    using W = std::conditional_t<sizeof(S) == 4, __m256, __m256d>;
    W factor, top;
    bool scaled;

    ToInt32(S factorValue, bool isScaled, double topValue) : scaled(isScaled) {
        if constexpr (sizeof(S) == 4) {
            factor = _mm256_set1_ps(factorValue);
            top = _mm256_set1_ps(static_cast<float>(topValue));
        } else {
            factor = _mm256_set1_pd(factorValue);
            top = _mm256_set1_pd(topValue);
        }
    }

    template <class Reg>
    typename FloatRegs<Reg>::Int operator()(Reg x) const {
        using F = FloatRegs<Reg>;
        if (scaled) x = F::mul(x, F::fit(factor));
        x = F::min(F::fit(top), x);
        typename F::Int r;
        if constexpr (R == kTrunc) r = F::cvtt(x);
        else if constexpr (R == kNearest) r = F::cvt(x);
        else r = F::cvtt(F::addHalfAway(x));
        if constexpr (FixTop) r = xor32(r, eqLanes(x, F::fit(top)));
        return r;
    }
    __m256i operator()(Pd8 x) const { return _mm256_setr_m128i((*this)(x.lo), (*this)(x.hi)); }
};

// ---- the fixed-point rule on 32-bit lanes ------------------------------------------
// s times 2^-scale for a destination range [dmin, dmax] (the writer
// saturates to it). Dividing rounds by `round` (the rule itself is kNearest:
// ties to even); an exact s of at most 32 bits divided by 2^33 or more is 0
// in every mode. Multiplying clamps s just outside the range that shifts
// exactly, so that the shifted value still fits 32 bits and saturates in the
// writer; shifts from 30 on only keep the sign. Unsigned s (Unsigned) is
// capped at 2^31 - 1 on the way out, above every destination's top.
template <bool Unsigned>
struct ScaleRule {
    enum Kind { kKeep, kDown, kUp, kZero } kind = kKeep;
    Round round;
    __m128i count = _mm_setzero_si128();
    __m256i mask{}, half{}, upper{}, lower{};

    ScaleRule(int scale, Round r, long long dmin, long long dmax) : round(r) {
        if (scale > 32) {
            kind = kZero;
        } else if (scale > 0) {
            kind = kDown;
            count = _mm_cvtsi32_si128(scale);
            mask = _mm256_set1_epi32(static_cast<int>(scale == 32 ? 0xFFFFFFFFu : (1u << scale) - 1));
            half = _mm256_set1_epi32(static_cast<int>(1u << (scale - 1)));
        } else if (scale < 0) {
            kind = kUp;
            const int k = scale < -30 ? 30 : -scale;
            count = _mm_cvtsi32_si128(k);
            upper = _mm256_set1_epi32(static_cast<int>((dmax >> k) + 1));
            lower = _mm256_set1_epi32(static_cast<int>(-((-dmin) >> k) - 1));
        }
    }

    template <class V>
    V operator()(V s) const {
        V r = s;
        if (kind == kZero) {
            r = xor32(s, s);
        } else if (kind == kDown) {
            const V q = Unsigned ? srl32(s, count) : sra32(s, count);
            const V rem = and32(s, fitI<V>(mask)), h = fitI<V>(half), zero = xor32(s, s);
            V up;  // all ones where the quotient moves up by one
            if (round == kTrunc) {
                up = and32(gt32(zero, s), xor32(eq32(rem, zero), eq32(zero, zero)));
            } else {
                const V tieUp = round == kNearest ? eq32(and32(q, fitI<V>(_mm256_set1_epi32(1))), fitI<V>(_mm256_set1_epi32(1)))
                                                  : gt32(s, fitI<V>(_mm256_set1_epi32(-1)));
                up = or32(gtU32(rem, h), and32(eq32(rem, h), tieUp));
            }
            r = sub32(q, up);
        } else if (kind == kUp) {
            const V c = Unsigned ? minU32(s, fitI<V>(upper)) : max32(min32(s, fitI<V>(upper)), fitI<V>(lower));
            r = sll32(c, count);
        }
        if constexpr (Unsigned) r = minU32(r, fitI<V>(_mm256_set1_epi32(INT32_MAX)));
        return r;
    }
};

// ---- 32-bit lanes to floating values -------------------------------------------------
// Under the caller's rounding. Sources of up to 24 bits convert exactly.
struct IntToF32 {
    __m256 operator()(__m256i v) const { return _mm256_cvtepi32_ps(v); }
    __m128 operator()(__m128i v) const { return _mm_cvtepi32_ps(v); }
};

// Writers of binary32 with a factor 2^-scale. The lane is converted, then
// multiplied by the factor: for scales in [kLowF32, kHighF32] the product of
// a rounded 32-bit lane (or an exact narrower one) and the factor stays a
// normal number, so it is rounded once. Other scales go through binary64,
// where the scaled value is exact and only the narrowing rounds.
constexpr int kLowF32 = -96, kHighF32 = 126;

struct F32Scaled {
    static constexpr int kBytes = 4;
    __m256 factor;
    bool scaled;
    // scale in [kLowF32, kHighF32]
    explicit F32Scaled(int scale) : factor(_mm256_set1_ps(pow2f(-scale))), scaled(scale != 0) {}
    void wide(u8* p, __m256i v) const {
        __m256 x = _mm256_cvtepi32_ps(v);
        if (scaled) x = _mm256_mul_ps(x, factor);
        _mm256_storeu_ps(reinterpret_cast<float*>(p), x);
    }
    void part(u8* p, __m128i v) const {
        __m128 x = _mm_cvtepi32_ps(v);
        if (scaled) x = _mm_mul_ps(x, _mm256_castps256_ps128(factor));
        _mm_storeu_ps(reinterpret_cast<float*>(p), x);
    }
};

// Binary64 writer with the factor 2^-scale applied as two powers of two of
// at most 600 each: the first product is exact for any 32-bit lane, the
// second rounds once. Scales beyond +-1200 move no result and are clamped.
struct F64Scaled {
    static constexpr int kBytes = 8;
    __m256d first, second;
    bool scaled;
    explicit F64Scaled(int scale) : scaled(scale != 0) {
        const int s = scale < -1200 ? -1200 : scale > 1200 ? 1200 : scale;
        first = _mm256_set1_pd(pow2d(-(s / 2)));
        second = _mm256_set1_pd(pow2d(-(s - s / 2)));
    }
    __m256d value(__m128i v) const {
        __m256d x = _mm256_cvtepi32_pd(v);
        if (scaled) x = _mm256_mul_pd(_mm256_mul_pd(x, first), second);
        return x;
    }
    void wide(u8* p, __m256i v) const {
        part(p, lo(v));
        part(p + 32, hi(v));
    }
    void part(u8* p, __m128i v) const { _mm256_storeu_pd(reinterpret_cast<double*>(p), value(v)); }
};

// Binary32 through binary64 (scales outside [kLowF32, kHighF32]): clamped to
// +-400, where every result is already 0 or beyond the binary32 range, the
// scaled value is an exact binary64 and the narrowing rounds once.
struct F32ViaF64 {
    static constexpr int kBytes = 4;
    F64Scaled wider;
    explicit F32ViaF64(int scale) : wider(scale < -400 ? -400 : scale > 400 ? 400 : scale) {}
    void wide(u8* p, __m256i v) const {
        store16B(p, _mm_castps_si128(_mm256_cvtpd_ps(wider.value(lo(v)))));
        store16B(p + 16, _mm_castps_si128(_mm256_cvtpd_ps(wider.value(hi(v)))));
    }
    void part(u8* p, __m128i v) const { store16B(p, _mm_castps_si128(_mm256_cvtpd_ps(wider.value(v)))); }
};

}  // namespace zet::conv
