// Format conversion between integer and floating element types.
//
// Every conversion is a reader, a middle step and a writer run by one step
// loop (convert_lanes.hpp, convert_steps.hpp); the exports below only pick
// the three. The 64-bit integer forms have no vector conversion on this
// processor and run element by element.
#include <algorithm>

#include "data/convert_steps.hpp"
#include "frame/unaligned.hpp"

namespace zet::conv {
namespace {

using P24s = Packed24s;
using P24u = Packed24u;

// Binary64 lanes narrowed to binary32, and the reverse.
struct Narrow {
    __m256 operator()(Pd8 v) const { return _mm256_setr_m128(_mm256_cvtpd_ps(v.lo), _mm256_cvtpd_ps(v.hi)); }
    __m128 operator()(__m256d v) const { return _mm256_cvtpd_ps(v); }
};
struct Widen {
    Pd8 operator()(__m256 v) const {
        return {_mm256_cvtps_pd(_mm256_castps256_ps128(v)), _mm256_cvtps_pd(_mm256_extractf128_ps(v, 1))};
    }
    __m256d operator()(__m128 v) const { return _mm256_cvtps_pd(v); }
};

template <class In, class Mid, class Out>
ZetStatus checkedRun(const void* src, void* dst, int len, const In& in, const Mid& mid, const Out& out) {
    if (auto st = checkArgs(len, src, static_cast<const void*>(dst))) return st;
    run(in, mid, out, src, dst, len);
    return zetStsOk;
}

// ---- integer to integer --------------------------------------------------------
// Widening extends, narrowing saturates (a negative 8s to 8u gives 0).
template <class S, class D>
ZetStatus intToInt(const void* src, void* dst, int len) {
    return checkedRun(src, dst, len, IntIn<S>{}, Same{}, IntOut<D>{});
}

template <class S, class D>
ZetStatus intScaled(const void* src, void* dst, int len, int scale, Round round = kNearest) {
    const ScaleRule<!IntIn<S>::kSigned> rule(scale, round, IntOut<D>::kMin, IntOut<D>::kMax);
    return checkedRun(src, dst, len, IntIn<S>{}, rule, IntOut<D>{});
}

// ---- integer to floating ---------------------------------------------------------
template <class S>
ZetStatus intToF32(const void* src, float* dst, int len, int scale = 0) {
    if (scale >= kLowF32 && scale <= kHighF32) return checkedRun(src, dst, len, IntIn<S>{}, Same{}, F32Scaled(scale));
    return checkedRun(src, dst, len, IntIn<S>{}, Same{}, F32ViaF64(scale));
}
template <class S>
ZetStatus intToF64(const void* src, double* dst, int len, int scale = 0) {
    return checkedRun(src, dst, len, IntIn<S>{}, Same{}, F64Scaled(scale));
}

// ---- floating to integer ------------------------------------------------------------
template <class S, class D, Round R>
void toIntKernel(const S* src, void* dst, i64 n, int scale) {
    using In = std::conditional_t<sizeof(S) == 4, F32In, F64In>;
    constexpr bool kFixTop = sizeof(S) == 4 && IntOut<D>::kMax == INT32_MAX;
    const S factor = sizeof(S) == 4 ? static_cast<S>(wrappedFactor32(scale)) : static_cast<S>(wrappedFactor64(scale));
    const ToInt32<S, R, kFixTop> step(factor, scale != 0, static_cast<double>(IntOut<D>::kMax));
    run(In{}, step, IntOut<D>{}, src, dst, n);
}

// Mode 0 and 1 share the invalid mask, mode 1 adds nearest rounding; any
// other mode is 2. The control word goes back as it was on leaving.
template <class S, class D>
ZetStatus floatToInt(const S* src, void* dst, int len, int mode, int scale) {
    if (auto st = checkArgs(len, src, static_cast<const void*>(dst))) return st;
    const Round r = roundOf(mode);
    const ControlScope cw(roundingField(r), roundingValue(r));
    if (r == kTrunc) toIntKernel<S, D, kTrunc>(src, dst, len, scale);
    else if (r == kNearest) toIntKernel<S, D, kNearest>(src, dst, len, scale);
    else toIntKernel<S, D, kAway>(src, dst, len, scale);
    return zetStsOk;
}

// ---- 64-bit integers, element by element ----------------------------------------------
using i128 = __int128;

// s times 2^-scale rounded by `round`, saturated to 32 bits.
std::int32_t scaleTo32(std::int64_t s, int scale, Round round) {
    i128 v = s;
    if (scale > 0) {
        if (scale > 65) return 0;  // |s| / 2^66 is at most 1/4
        const i128 q = v >> scale, rem = v - (q << scale), half = i128{1} << (scale - 1);
        bool up;
        if (round == kTrunc) up = rem != 0 && s < 0;
        else up = rem > half || (rem == half && (round == kNearest ? (q & 1) != 0 : s >= 0));
        v = q + (up ? 1 : 0);
    } else if (scale < 0) {
        v <<= std::min(-static_cast<long long>(scale), 40LL);  // from 32 on only the sign is left
    }
    return static_cast<std::int32_t>(std::clamp<i128>(v, INT32_MIN, INT32_MAX));
}

[[gnu::noinline]] void scale64s32s(const Zet64s* s, Zet32s* d, int len, Round round, int scale) {
    for (int i = 0; i < len; ++i) st(d, i, scaleTo32(ld(s, i), scale, round));
}

// Under the caller's rounding.
[[gnu::noinline]] void widen64s64f(const Zet64s* s, Zet64f* d, int len) {
    for (int i = 0; i < len; ++i) st(d, i, static_cast<double>(ld(s, i)));
}

// The steps of the float-to-integer kernels at one element, under
// rounding toward zero: times the wrapped factor, limited by 2^63 (a NaN
// stays), one half added with the sign, truncated. The conversion gives the
// lowest 64-bit integer for NaN and below the range; a value that reached
// 2^63 becomes the largest.
[[gnu::noinline]] void convert64f64sAway(const Zet64f* s, Zet64s* d, int len, int scale) {
    const __m128d factor = _mm_set_sd(wrappedFactor64(scale)), top = _mm_set_sd(0x1p63);
    const __m128d signBit = _mm_set_sd(-0.0), half = _mm_set_sd(0.5);
    for (int i = 0; i < len; ++i) {
        __m128d x = _mm_set_sd(ld(s, i));
        if (scale != 0) x = _mm_mul_sd(x, factor);
        x = _mm_min_sd(top, x);
        const bool atTop = _mm_cvtsd_f64(x) == 0x1p63;
        x = _mm_add_sd(x, _mm_or_pd(_mm_and_pd(x, signBit), half));
        const long long r = _mm_cvttsd_si64(x);
        st(d, i, atTop ? INT64_MAX : r);
    }
}

}  // namespace

// Only mode 2 is taken, and only a length of exactly 0 is refused: a
// negative one converts nothing.
ZetStatus convert64f64s(const Zet64f* s, Zet64s* d, int len, int mode, int scale) {
    if (auto st = checkPtrs(s, d)) return st;
    if (len == 0) return zetStsSizeErr;
    if (mode != kAway) return zetStsRoundModeErr;
    const ControlScope cw(roundingField(kAway), roundingValue(kAway));
    convert64f64sAway(s, d, len, scale);
    return zetStsOk;
}

ZetStatus convert64s32s(const Zet64s* s, Zet32s* d, int len, int mode, int scale) {
    if (auto st = checkArgs(len, s, d)) return st;
    scale64s32s(s, d, len, roundOf(mode), scale);
    return zetStsOk;
}

ZetStatus convert64s64f(const Zet64s* s, Zet64f* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    widen64s64f(s, d, len);
    return zetStsOk;
}

}  // namespace zet::conv

using namespace zet::conv;

#define ZC_INT(S, D, SRC, DST) \
    ZetStatus zetsConvert_##S##D(const SRC* s, DST* d, int len) { return intToInt<SRC, DST>(s, d, len); }
ZC_INT(8s, 16s, Zet8s, Zet16s)
ZC_INT(16s, 32s, Zet16s, Zet32s)
ZC_INT(8s, 8u, Zet8s, Zet8u)
ZC_INT(32s, 16s, Zet32s, Zet16s)
ZetStatus zetsConvert_24s32s(const Zet8u* s, Zet32s* d, int len) { return intToInt<P24s, Zet32s>(s, d, len); }
ZetStatus zetsConvert_24u32u(const Zet8u* s, Zet32u* d, int len) { return intToInt<P24u, Zet32u>(s, d, len); }

ZetStatus zetsConvert_8u8s_Sfs(const Zet8u* s, Zet8s* d, int len, int scale) { return intScaled<Zet8u, Zet8s>(s, d, len, scale); }
ZetStatus zetsConvert_16s8s_Sfs(const Zet16s* s, Zet8s* d, int len, int scale) { return intScaled<Zet16s, Zet8s>(s, d, len, scale); }
ZetStatus zetsConvert_32s24s_Sfs(const Zet32s* s, Zet8u* d, int len, int scale) { return intScaled<Zet32s, P24s>(s, d, len, scale); }
ZetStatus zetsConvert_32u24u_Sfs(const Zet32u* s, Zet8u* d, int len, int scale) { return intScaled<Zet32u, P24u>(s, d, len, scale); }
ZetStatus zetsConvert_32s16s_Sfs(const Zet32s* s, Zet16s* d, int len, ZetRoundMode mode, int scale) {
    return intScaled<Zet32s, Zet16s>(s, d, len, scale, roundOf(mode));
}
ZetStatus zetsConvert_64s32s_Sfs(const Zet64s* s, Zet32s* d, int len, ZetRoundMode mode, int scale) {
    return convert64s32s(s, d, len, mode, scale);
}

#define ZC_TO_F32(S, SRC) \
    ZetStatus zetsConvert_##S##32f(const SRC* s, Zet32f* d, int len) { return intToF32<SRC>(s, d, len); }
ZC_TO_F32(8s, Zet8s)
ZC_TO_F32(8u, Zet8u)
ZC_TO_F32(16s, Zet16s)
ZC_TO_F32(16u, Zet16u)
ZC_TO_F32(32s, Zet32s)
ZetStatus zetsConvert_24s32f(const Zet8u* s, Zet32f* d, int len) { return intToF32<P24s>(s, d, len); }
ZetStatus zetsConvert_24u32f(const Zet8u* s, Zet32f* d, int len) { return intToF32<P24u>(s, d, len); }
ZetStatus zetsConvert_32s64f(const Zet32s* s, Zet64f* d, int len) { return intToF64<Zet32s>(s, d, len); }
ZetStatus zetsConvert_64s64f(const Zet64s* s, Zet64f* d, int len) { return convert64s64f(s, d, len); }
ZetStatus zetsConvert_16s32f_Sfs(const Zet16s* s, Zet32f* d, int len, int scale) { return intToF32<Zet16s>(s, d, len, scale); }
ZetStatus zetsConvert_32s32f_Sfs(const Zet32s* s, Zet32f* d, int len, int scale) { return intToF32<Zet32s>(s, d, len, scale); }
ZetStatus zetsConvert_16s64f_Sfs(const Zet16s* s, Zet64f* d, int len, int scale) { return intToF64<Zet16s>(s, d, len, scale); }
ZetStatus zetsConvert_32s64f_Sfs(const Zet32s* s, Zet64f* d, int len, int scale) { return intToF64<Zet32s>(s, d, len, scale); }

ZetStatus zetsConvert_32f64f(const Zet32f* s, Zet64f* d, int len) { return checkedRun(s, d, len, F32In{}, Widen{}, F64Out{}); }
ZetStatus zetsConvert_64f32f(const Zet64f* s, Zet32f* d, int len) { return checkedRun(s, d, len, F64In{}, Narrow{}, F32Out{}); }

#define ZC_FROM_FLOAT(F, SRC, D, DST, T)                                                       \
    ZetStatus zetsConvert_##F##D##_Sfs(const SRC* s, DST* d, int len, ZetRoundMode mode, int scale) { \
        return floatToInt<SRC, T>(s, d, len, mode, scale);                                     \
    }
#define ZC_FROM_FLOATS(F, SRC)                       \
    ZC_FROM_FLOAT(F, SRC, 8s, Zet8s, Zet8s)          \
    ZC_FROM_FLOAT(F, SRC, 8u, Zet8u, Zet8u)          \
    ZC_FROM_FLOAT(F, SRC, 16s, Zet16s, Zet16s)       \
    ZC_FROM_FLOAT(F, SRC, 16u, Zet16u, Zet16u)       \
    ZC_FROM_FLOAT(F, SRC, 32s, Zet32s, Zet32s)
ZC_FROM_FLOATS(32f, Zet32f)
ZC_FROM_FLOATS(64f, Zet64f)
ZC_FROM_FLOAT(32f, Zet32f, 24s, Zet8u, P24s)
ZC_FROM_FLOAT(32f, Zet32f, 24u, Zet8u, P24u)
ZetStatus zetsConvert_64f64s_Sfs(const Zet64f* s, Zet64s* d, int len, ZetRoundMode mode, int scale) {
    return convert64f64s(s, d, len, mode, scale);
}
