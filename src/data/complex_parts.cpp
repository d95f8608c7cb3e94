// Complex vectors split into, and built from, their real and imaginary parts.
// Pure data movement: two registers of interleaved pairs become one register
// of each part and back, for 16-bit, single and double parts alike.
#include <immintrin.h>

#include "frame/checks.hpp"
#include "frame/unaligned.hpp"
#include "zetsp.h"

namespace zet::data {
namespace {

template <class R> struct Parts;

template <> struct Parts<float> {
    using V = __m256;
    static constexpr int kWide = 8;
    static V load(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, V v) { _mm256_storeu_ps(p, v); }
    static V zero() { return _mm256_setzero_ps(); }
    // a, b: pairs 0-3 and 4-7. The in-lane shuffle leaves 64-bit units in the order 0 2 1 3.
    static void split(V a, V b, V& re, V& im) {
        re = _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(_mm256_shuffle_ps(a, b, 0x88)), 0xD8));
        im = _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(_mm256_shuffle_ps(a, b, 0xDD)), 0xD8));
    }
    static void join(V re, V im, V& a, V& b) {
        const V lo = _mm256_unpacklo_ps(re, im), hi = _mm256_unpackhi_ps(re, im);
        a = _mm256_permute2f128_ps(lo, hi, 0x20);
        b = _mm256_permute2f128_ps(lo, hi, 0x31);
    }
};

template <> struct Parts<double> {
    using V = __m256d;
    static constexpr int kWide = 4;
    static V load(const double* p) { return _mm256_loadu_pd(p); }
    static void store(double* p, V v) { _mm256_storeu_pd(p, v); }
    static V zero() { return _mm256_setzero_pd(); }
    static void split(V a, V b, V& re, V& im) {
        re = _mm256_permute4x64_pd(_mm256_unpacklo_pd(a, b), 0xD8);
        im = _mm256_permute4x64_pd(_mm256_unpackhi_pd(a, b), 0xD8);
    }
    static void join(V re, V im, V& a, V& b) {
        const V lo = _mm256_unpacklo_pd(re, im), hi = _mm256_unpackhi_pd(re, im);
        a = _mm256_permute2f128_pd(lo, hi, 0x20);
        b = _mm256_permute2f128_pd(lo, hi, 0x31);
    }
};

template <> struct Parts<Zet16s> {
    using V = __m256i;
    static constexpr int kWide = 16;
    static V load(const Zet16s* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static void store(Zet16s* p, V v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
    static V zero() { return _mm256_setzero_si256(); }
    // Each pair as a 32-bit lane: the real part sign-extended from the low
    // half, the imaginary part from the high half; the pack is exact.
    static void split(V a, V b, V& re, V& im) {
        const V ra = _mm256_srai_epi32(_mm256_slli_epi32(a, 16), 16), rb = _mm256_srai_epi32(_mm256_slli_epi32(b, 16), 16);
        re = _mm256_permute4x64_epi64(_mm256_packs_epi32(ra, rb), 0xD8);
        im = _mm256_permute4x64_epi64(_mm256_packs_epi32(_mm256_srai_epi32(a, 16), _mm256_srai_epi32(b, 16)), 0xD8);
    }
    static void join(V re, V im, V& a, V& b) {
        const V lo = _mm256_unpacklo_epi16(re, im), hi = _mm256_unpackhi_epi16(re, im);
        a = _mm256_permute2x128_si256(lo, hi, 0x20);
        b = _mm256_permute2x128_si256(lo, hi, 0x31);
    }
};

// re[i], im[i] = parts of src[i]; a part whose flag is off is not written.
template <class R, bool WantRe, bool WantIm>
void deinterleave(const R* src, R* re, R* im, long long n) {
    using P = Parts<R>;
    constexpr int W = P::kWide;
    auto step = [&](long long i) {
        typename P::V r, m;
        P::split(P::load(src + 2 * i), P::load(src + 2 * i + W), r, m);
        if constexpr (WantRe) P::store(re + i, r);
        if constexpr (WantIm) P::store(im + i, m);
    };
    long long i = 0;
    for (; i + 2 * W <= n; i += 2 * W) step(i), step(i + W);  // two in flight keep both load ports busy
    for (; i + W <= n; i += W) step(i);
    for (; i < n; ++i) {
        if constexpr (WantRe) st(re, i, ld(src, 2 * i));
        if constexpr (WantIm) st(im, i, ld(src, 2 * i + 1));
    }
}

// dst[i] = (re[i], im[i]); a missing part reads as zero.
template <class R, bool HasRe, bool HasIm>
void interleave(const R* re, const R* im, R* dst, long long n) {
    using P = Parts<R>;
    constexpr int W = P::kWide;
    long long i = 0;
    for (; i + W <= n; i += W) {
        typename P::V a, b;
        P::join(HasRe ? P::load(re + i) : P::zero(), HasIm ? P::load(im + i) : P::zero(), a, b);
        P::store(dst + 2 * i, a);
        P::store(dst + 2 * i + W, b);
    }
    for (; i < n; ++i) {
        st(dst, 2 * i, HasRe ? ld(re, i) : R{});
        st(dst, 2 * i + 1, HasIm ? ld(im, i) : R{});
    }
}

template <class R, class C>
const R* parts(const C* p) { return reinterpret_cast<const R*>(p); }
template <class R, class C>
R* parts(C* p) { return reinterpret_cast<R*>(p); }

template <class R, bool WantRe, bool WantIm, class C>
ZetStatus split(const C* src, R* re, R* im, int len) {
    if constexpr (WantRe && WantIm) {
        if (auto s = checkArgs(len, src, re, im)) return s;
    } else {
        if (auto s = checkArgs(len, src, WantRe ? re : im)) return s;
    }
    deinterleave<R, WantRe, WantIm>(parts<R>(src), re, im, len);
    return zetStsOk;
}

// Either part may be null and then reads as zero; both null is an error.
template <class R, class C>
ZetStatus join(const R* re, const R* im, C* dst, int len) {
    if (dst == nullptr || (re == nullptr && im == nullptr)) return zetStsNullPtrErr;
    if (len < 1) return zetStsSizeErr;
    if (re && im) interleave<R, true, true>(re, im, parts<R>(dst), len);
    else if (re) interleave<R, true, false>(re, im, parts<R>(dst), len);
    else interleave<R, false, true>(re, im, parts<R>(dst), len);
    return zetStsOk;
}

}  // namespace
}  // namespace zet::data

using namespace zet::data;

extern "C" {

ZetStatus zetsReal_16sc(const Zet16sc* s, Zet16s* re, int len) { return split<Zet16s, true, false>(s, re, nullptr, len); }
ZetStatus zetsReal_32fc(const Zet32fc* s, Zet32f* re, int len) { return split<Zet32f, true, false>(s, re, nullptr, len); }
ZetStatus zetsReal_64fc(const Zet64fc* s, Zet64f* re, int len) { return split<Zet64f, true, false>(s, re, nullptr, len); }
ZetStatus zetsImag_16sc(const Zet16sc* s, Zet16s* im, int len) { return split<Zet16s, false, true>(s, nullptr, im, len); }
ZetStatus zetsImag_32fc(const Zet32fc* s, Zet32f* im, int len) { return split<Zet32f, false, true>(s, nullptr, im, len); }
ZetStatus zetsImag_64fc(const Zet64fc* s, Zet64f* im, int len) { return split<Zet64f, false, true>(s, nullptr, im, len); }
ZetStatus zetsCplxToReal_16sc(const Zet16sc* s, Zet16s* re, Zet16s* im, int len) { return split<Zet16s, true, true>(s, re, im, len); }
ZetStatus zetsCplxToReal_32fc(const Zet32fc* s, Zet32f* re, Zet32f* im, int len) { return split<Zet32f, true, true>(s, re, im, len); }
ZetStatus zetsCplxToReal_64fc(const Zet64fc* s, Zet64f* re, Zet64f* im, int len) { return split<Zet64f, true, true>(s, re, im, len); }
ZetStatus zetsRealToCplx_16s(const Zet16s* re, const Zet16s* im, Zet16sc* d, int len) { return join(re, im, d, len); }
ZetStatus zetsRealToCplx_32f(const Zet32f* re, const Zet32f* im, Zet32fc* d, int len) { return join(re, im, d, len); }
ZetStatus zetsRealToCplx_64f(const Zet64f* re, const Zet64f* im, Zet64fc* d, int len) { return join(re, im, d, len); }

}  // extern "C"
