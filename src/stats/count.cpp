// Counting reductions: elements inside a closed range, and sign changes
// between neighbours. Both reduce lane masks to bit masks and count bits, so
// the result is exact whatever the length, and a partial last register is
// read by count and masked to its valid lanes.
#include <immintrin.h>

#include <bit>
#include <cstdint>
#include <cstring>

#include "frame/checks.hpp"
#include "zetsp.h"

namespace zet::stats {
namespace {

// Per element type: a register of W elements, its partial load, comparisons
// giving lane masks, and the bit mask of a lane mask (kBits bits per lane).
template <class T> struct Cmp;

template <> struct Cmp<float> {
    using V = __m256;
    static constexpr int kWide = 8, kBits = 1;
    static V load(const float* p) { return _mm256_loadu_ps(p); }
    static V splat(float v) { return _mm256_set1_ps(v); }
    static V zero() { return _mm256_setzero_ps(); }
    static unsigned bits(V m) { return static_cast<unsigned>(_mm256_movemask_ps(m)); }
    static V inRange(V x, V lo, V hi) { return _mm256_and_ps(_mm256_cmp_ps(x, lo, _CMP_GE_OQ), _mm256_cmp_ps(x, hi, _CMP_LE_OQ)); }
    static V less(V a, V b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }
    static V signs(V x) { return x; }  // the sign bits, as bits() reads them
};
template <> struct Cmp<double> {
    using V = __m256d;
    static constexpr int kWide = 4, kBits = 1;
    static V load(const double* p) { return _mm256_loadu_pd(p); }
    static V splat(double v) { return _mm256_set1_pd(v); }
    static V zero() { return _mm256_setzero_pd(); }
    static unsigned bits(V m) { return static_cast<unsigned>(_mm256_movemask_pd(m)); }
    static V inRange(V x, V lo, V hi) { return _mm256_and_pd(_mm256_cmp_pd(x, lo, _CMP_GE_OQ), _mm256_cmp_pd(x, hi, _CMP_LE_OQ)); }
    static V less(V a, V b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
    static V signs(V x) { return x; }
};
template <class T, int W>
struct CmpInt {
    using V = __m256i;
    static constexpr int kWide = W, kBits = 32 / W;
    static V load(const T* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static V gt(V a, V b) {
        if constexpr (W == 16) return _mm256_cmpgt_epi16(a, b);
        else return _mm256_cmpgt_epi32(a, b);
    }
    static V splat(T v) {
        if constexpr (W == 16) return _mm256_set1_epi16(v);
        else return _mm256_set1_epi32(v);
    }
    static V zero() { return _mm256_setzero_si256(); }
    static unsigned bits(V m) { return static_cast<unsigned>(_mm256_movemask_epi8(m)); }
    static V inRange(V x, V lo, V hi) { return _mm256_andnot_si256(_mm256_or_si256(gt(lo, x), gt(x, hi)), _mm256_set1_epi8(-1)); }
    static V less(V a, V b) { return gt(b, a); }
    static V signs(V x) { return less(x, zero()); }
};
template <> struct Cmp<Zet16s> : CmpInt<Zet16s, 16> {};
template <> struct Cmp<Zet32s> : CmpInt<Zet32s, 8> {};

// The first m < W elements at p in a register, the rest zero, and the bit
// mask of those m lanes.
template <class T>
typename Cmp<T>::V loadPart(const T* p, long long m) {
    typename Cmp<T>::V v = Cmp<T>::zero();
    std::memcpy(&v, p, static_cast<std::size_t>(m) * sizeof(T));
    return v;
}
template <class T>
unsigned lanes(long long m) {
    return (1u << (m * Cmp<T>::kBits)) - 1u;
}

// f(load(i), mask) over every register starting at i, the last one partial.
template <class T, class F>
void blocks(const T* p, long long n, F f) {
    using C = Cmp<T>;
    constexpr long long W = C::kWide;
    long long i = 0;
    for (; i + W <= n; i += W) f(C::load(p + i), ~0u, i);
    if (i < n) f(loadPart(p + i, n - i), lanes<T>(n - i), i);
}

template <class T>
ZetStatus countInRange(const T* src, int len, int* counts, T lower, T upper) {
    if (auto s = checkArgs(len, src, counts)) return s;
    if (lower > upper) return zetStsRangeErr;
    using C = Cmp<T>;
    const auto lo = C::splat(lower), hi = C::splat(upper);
    long long bits = 0;
    blocks(src, len, [&](auto x, unsigned valid, long long) { bits += std::popcount(C::bits(C::inRange(x, lo, hi)) & valid); });
    *counts = static_cast<int>(bits / C::kBits);
    return zetStsOk;
}

// Crossings between x[i-1] and x[i]. Each register of x[i] is compared with
// the register of x[i-1] one element back.
//  zetZCR:   a change between "below zero" and "not below zero";
//  zetZCXor: a change of the sign bit (-0 counts as negative);
//  zetZCC:   half of |sgn x[i] - sgn x[i-1]|, sgn in {-1, 0, +1}, so a
//            passage through an exact zero counts as two halves.
template <class T>
ZetStatus zeroCrossing(const T* src, int len, Zet32f* result, int type) {
    if (auto s = checkArgs(len, src, result)) return s;
    if (type != zetZCR && type != zetZCXor && type != zetZCC) return zetStsBadModeErr;
    using C = Cmp<T>;
    const auto z = C::zero();
    long long halves = 0;  // changes counted twice, so a zetZCC half is one
    blocks(src + 1, len - 1, [&](auto cur, unsigned valid, long long i) {
        const auto prev = i + C::kWide <= len - 1 ? C::load(src + i) : loadPart(src + i, len - 1 - i);
        unsigned a, b;
        if (type == zetZCC) {
            a = C::bits(C::less(z, cur)) ^ C::bits(C::less(z, prev));
            b = C::bits(C::less(cur, z)) ^ C::bits(C::less(prev, z));
        } else {
            a = b = type == zetZCR ? C::bits(C::less(cur, z)) ^ C::bits(C::less(prev, z))
                                   : C::bits(C::signs(cur)) ^ C::bits(C::signs(prev));
        }
        halves += std::popcount(a & valid) + std::popcount(b & valid);
    });
    *result = static_cast<Zet32f>(static_cast<double>(halves / C::kBits) * 0.5);
    return zetStsOk;
}

}  // namespace
}  // namespace zet::stats

using namespace zet::stats;

extern "C" {

ZetStatus zetsCountInRange_16s(const Zet16s* s, int len, int* c, Zet16s lo, Zet16s hi) { return countInRange(s, len, c, lo, hi); }
ZetStatus zetsCountInRange_32s(const Zet32s* s, int len, int* c, Zet32s lo, Zet32s hi) { return countInRange(s, len, c, lo, hi); }
ZetStatus zetsCountInRange_32f(const Zet32f* s, int len, int* c, Zet32f lo, Zet32f hi) { return countInRange(s, len, c, lo, hi); }
ZetStatus zetsCountInRange_64f(const Zet64f* s, int len, int* c, Zet64f lo, Zet64f hi) { return countInRange(s, len, c, lo, hi); }
ZetStatus zetsZeroCrossing_16s32f(const Zet16s* s, int len, Zet32f* r, int type) { return zeroCrossing(s, len, r, type); }
ZetStatus zetsZeroCrossing_32f(const Zet32f* s, int len, Zet32f* r, int type) { return zeroCrossing(s, len, r, type); }

}  // extern "C"
