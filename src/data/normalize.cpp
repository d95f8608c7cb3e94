// Normalisation: dst = (src - sub) / div, with a true division so each
// floating result is the correctly rounded quotient of the rounded
// difference. Complex forms subtract a complex value and divide both parts by
// one real divisor. The 16-bit forms are exact: see normalize16.
#include <immintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "frame/checks.hpp"
#include "frame/loops.hpp"
#include "frame/simd.hpp"
#include "zetsp.h"

namespace zet::data {
namespace {

template <class E, class R>
ZetStatus normalizeFloat(const E* src, E* dst, int len, const E& subVal, R divVal) {
    if (auto s = checkArgs(len, src, dst)) return s;
    if (divVal == R(0)) return zetStsDivByZeroErr;
    // The subtrahend as one element broadcast: pairs repeat (re, im).
    const auto subs = loops::Lanes<E>::loadOne(&subVal);
    // Named registers rather than a structured binding: lambdas may not capture bindings before clang 16.
    const auto wide = [&] {
        if constexpr (sizeof(R) == 4) return std::pair{_mm256_set_m128(subs, subs), _mm256_set1_ps(divVal)};
        else return std::pair{_mm256_set_m128d(subs, subs), _mm256_set1_pd(divVal)};
    }();
    const auto subW = wide.first, divW = wide.second;
    loops::map(dst, len, [&](auto x) {
        using V = decltype(x);
        return simd::div(simd::sub(x, simd::fit<V>(subW)), simd::fit<V>(divW));
    }, src);
    return zetStsOk;
}

// 16-bit forms. d = x - sub is exact in 32 bits, and the result is
// round(d * 2^-scale / div), ties to even, saturated: the quotient d / div is
// taken in binary64 and then scaled by a power of two. With |d| < 2^17 and
// |div| < 2^31 a quotient that is not a tie lies at least 2^-32 away from
// one, far more than its rounding error of 2^-36, so the one rounding to an
// integer sees the exact quotient's side of every tie.
struct Normalize16 {
    __m256i sub;  // (re, im) or (x, x) repeated, widened to 32 bits
    __m256d div, scale;

    __m256d quotient(__m128i d32) const {
        const __m256d q = _mm256_mul_pd(_mm256_div_pd(_mm256_cvtepi32_pd(d32), div), scale);
        const __m256d r = _mm256_round_pd(q, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
        return _mm256_min_pd(_mm256_max_pd(r, _mm256_set1_pd(-32768.0)), _mm256_set1_pd(32767.0));
    }
    // Eight 16-bit elements, starting on a real part.
    __m128i operator()(__m128i x) const {
        const __m256i d = _mm256_sub_epi32(_mm256_cvtepi16_epi32(x), sub);
        const __m128i lo = _mm256_cvtpd_epi32(quotient(_mm256_castsi256_si128(d)));
        const __m128i hi = _mm256_cvtpd_epi32(quotient(_mm256_extracti128_si256(d, 1)));
        return _mm_packs_epi32(lo, hi);
    }
};

// n 16-bit values (pairs count twice); the checks are the caller's.
void normalize16(const Zet16s* src, Zet16s* dst, std::size_t n, Zet16s subRe, Zet16s subIm, int div, int scale) {
    // Beyond these scales every nonzero quotient saturates or rounds to 0,
    // and the power of two stays a finite number.
    // Negated in 64 bits: INT_MIN has no 32-bit negation.
    const int e = static_cast<int>(std::clamp(-static_cast<long long>(scale), -1100LL, 64LL));
    const Normalize16 op{_mm256_setr_epi32(subRe, subIm, subRe, subIm, subRe, subIm, subRe, subIm),
                         _mm256_set1_pd(static_cast<double>(div)), _mm256_set1_pd(std::ldexp(1.0, e))};
    for (; n >= 8; n -= 8, src += 8, dst += 8)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), op(_mm_loadu_si128(reinterpret_cast<const __m128i*>(src))));
    if (n > 0) {  // the last few through the same register, read and written by count
        __m128i x = _mm_setzero_si128();
        std::memcpy(&x, src, 2 * n);
        const __m128i y = op(x);
        std::memcpy(dst, &y, 2 * n);
    }
}

template <class E>
ZetStatus normalizeFixed(const E* src, E* dst, int len, E sub, int div, int scale) {
    if (auto s = checkArgs(len, src, dst)) return s;
    if (div == 0) return zetStsDivByZeroErr;
    constexpr std::size_t parts = sizeof(E) / sizeof(Zet16s);
    Zet16s sv[2];
    std::memcpy(sv, &sub, sizeof sub);
    normalize16(reinterpret_cast<const Zet16s*>(src), reinterpret_cast<Zet16s*>(dst), parts * static_cast<std::size_t>(len),
                sv[0], sv[parts - 1], div, scale);
    return zetStsOk;
}

}  // namespace
}  // namespace zet::data

using namespace zet::data;

extern "C" {

ZetStatus zetsNormalize_32f(const Zet32f* s, Zet32f* d, int len, Zet32f sub, Zet32f div) { return normalizeFloat(s, d, len, sub, div); }
ZetStatus zetsNormalize_32f_I(Zet32f* sd, int len, Zet32f sub, Zet32f div) { return normalizeFloat<Zet32f>(sd, sd, len, sub, div); }
ZetStatus zetsNormalize_64f(const Zet64f* s, Zet64f* d, int len, Zet64f sub, Zet64f div) { return normalizeFloat(s, d, len, sub, div); }
ZetStatus zetsNormalize_64f_I(Zet64f* sd, int len, Zet64f sub, Zet64f div) { return normalizeFloat<Zet64f>(sd, sd, len, sub, div); }
ZetStatus zetsNormalize_32fc(const Zet32fc* s, Zet32fc* d, int len, Zet32fc sub, Zet32f div) { return normalizeFloat(s, d, len, sub, div); }
ZetStatus zetsNormalize_32fc_I(Zet32fc* sd, int len, Zet32fc sub, Zet32f div) { return normalizeFloat<Zet32fc>(sd, sd, len, sub, div); }
ZetStatus zetsNormalize_64fc(const Zet64fc* s, Zet64fc* d, int len, Zet64fc sub, Zet64f div) { return normalizeFloat(s, d, len, sub, div); }
ZetStatus zetsNormalize_64fc_I(Zet64fc* sd, int len, Zet64fc sub, Zet64f div) { return normalizeFloat<Zet64fc>(sd, sd, len, sub, div); }
ZetStatus zetsNormalize_16s_Sfs(const Zet16s* s, Zet16s* d, int len, Zet16s sub, int div, int sf) { return normalizeFixed(s, d, len, sub, div, sf); }
ZetStatus zetsNormalize_16s_ISfs(Zet16s* sd, int len, Zet16s sub, int div, int sf) { return normalizeFixed<Zet16s>(sd, sd, len, sub, div, sf); }
ZetStatus zetsNormalize_16sc_Sfs(const Zet16sc* s, Zet16sc* d, int len, Zet16sc sub, int div, int sf) { return normalizeFixed(s, d, len, sub, div, sf); }
ZetStatus zetsNormalize_16sc_ISfs(Zet16sc* sd, int len, Zet16sc sub, int div, int sf) { return normalizeFixed<Zet16sc>(sd, sd, len, sub, div, sf); }

}  // extern "C"
