// Extrema: values, magnitudes and their first positions, both ends at once,
// element-wise extremes of two vectors, and the binary order of a vector.
//
// A position is always that of the first occurrence: a later element takes
// over only if it is strictly better. The kernels are written once against
// Reg<T> and a view (the elements, or their magnitudes), for every type.
#include <cmath>
#include <limits>

#include "frame/checks.hpp"
#include "frame/chunk.hpp"
#include "frame/loops.hpp"
#include "frame/unaligned.hpp"
#include "stats/extreme.hpp"

namespace zet::stats {
namespace {

// ---- first position --------------------------------------------------------------------------
template <class U>
struct Found {
    U value;
    i64 index;
};
// The best so far is a broadcast register B. Each block of four registers is
// reduced against B with the new elements first, so that a NaN element gives
// way to B and is never chosen; only a block that holds something strictly
// better than B is remembered, and its first element equal to the new best
// is the position. Equal values in later blocks do not compare better, so
// the first occurrence stays. A NaN first element is never bettered.
template <class Op, class View>
Found<typename View::U> firstBest(const View& v, i64 n) {
    using U = typename View::U;
    using R = Reg<U>;
    constexpr int N = R::N;
    U best = v.one(0);
    if (best != best) return {best, 0};
    auto b = R::set1(best);
    i64 i = 0, block = -1;
    for (; i + 4 * N <= n; i += 4 * N) {
        const auto m01 = Op::template pick<R>(v.load(i + N), Op::template pick<R>(v.load(i), b));
        const auto m23 = Op::template pick<R>(v.load(i + 3 * N), Op::template pick<R>(v.load(i + 2 * N), b));
        const auto m = Op::template pick<R>(m01, m23);
        if (Op::template better<R>(m, b)) {
            best = foldLanes<Op, U>(m);
            b = R::set1(best);
            block = i;
        }
    }
    i64 index = 0;
    if (block >= 0)
        for (index = block; v.one(index) != best; ++index) {}
    for (; i < n; ++i) {
        const U x = v.one(i);
        if (Op::better(x, best)) best = x, index = i;
    }
    return {v.one(index), index};
}

// ---- both ends -----------------------------------------------------------------------------------
template <class T>
struct Ends {
    T min, max;
};
// Lanes of the first element, then minimum and maximum over whole
// registers, folded lane by lane, then the last elements.
template <class T>
Ends<T> minMax(const T* p, i64 n) {
    using R = Reg<T>;
    constexpr int N = R::N;
    auto lo0 = R::set1(ld(p, 0)), hi0 = lo0, lo1 = lo0, hi1 = lo0;
    i64 i = 0;
    for (; i + 2 * N <= n; i += 2 * N) {
        const auto x = R::load(p + i), y = R::load(p + i + N);
        lo0 = R::min(lo0, x), hi0 = R::max(hi0, x);
        lo1 = R::min(lo1, y), hi1 = R::max(hi1, y);
    }
    for (; i + N <= n; i += N) {
        const auto x = R::load(p + i);
        lo0 = R::min(lo0, x), hi0 = R::max(hi0, x);
    }
    Ends<T> e{foldLanes<Least, T>(R::min(lo0, lo1)), foldLanes<Greatest, T>(R::max(hi0, hi1))};
    for (; i < n; ++i) e.min = Least::pick(e.min, ld(p, i)), e.max = Greatest::pick(e.max, ld(p, i));
    return e;
}

// The first element equal to v; 0 when none is (v a NaN).
template <class T>
i64 firstEqual(const T* p, i64 n, T v) {
    using R = Reg<T>;
    const auto w = R::set1(v);
    i64 i = 0;
    for (; i + R::N <= n; i += R::N)
        if (const int m = R::eq(R::load(p + i), w)) return i + firstLane<T>(m);
    for (; i < n; ++i)
        if (ld(p, i) == v) return i;
    return 0;
}

// ---- results as the exports deliver them ------------------------------------------------------------
// A magnitude of a signed integer type that does not fit it saturates.
template <class T, class U>
T deliver(U v) {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, U>)
        return static_cast<T>(std::min<U>(v, static_cast<U>(std::numeric_limits<T>::max())));
    else return v;
}

template <class View, class Op, class T>
ZetStatus value(const T* src, int len, T* out) {
    if (auto s = checkArgs(len, src, out)) return s;
    *out = deliver<T>(extreme<Op>(View{src}, len));
    return zetStsOk;
}
// MaxIndx and MinIndx need only the value pointer: without a position
// pointer they are the value forms.
template <class View, class Op, bool IndexOptional, class T, class I>
ZetStatus position(const T* src, int len, T* out, I* index) {
    if (auto s = checkPtrs(src, out)) return s;
    if (IndexOptional && index == nullptr) return value<View, Op>(src, len, out);
    if (auto s = checkArgs(len, index)) return s;
    const auto f = firstBest<Op>(View{src}, len);
    *out = deliver<T>(f.value);
    *index = static_cast<I>(f.index);
    return zetStsOk;
}
template <class T>
ZetStatus ends(const T* src, int len, T* pMin, T* pMax) {
    if (auto s = checkArgs(len, src, pMin, pMax)) return s;
    const Ends<T> e = minMax(src, len);
    *pMin = e.min, *pMax = e.max;
    return zetStsOk;
}
// Values first, then a forward scan for each; pointers in the order src,
// pMin, pMax, pMinIndx, pMaxIndx, whatever the argument order.
template <class T, class I>
ZetStatus endsAt(const T* src, int len, T* pMin, I* pMinIndx, T* pMax, I* pMaxIndx) {
    if (auto s = checkArgs(len, src, pMin, pMax, pMinIndx, pMaxIndx)) return s;
    const Ends<T> e = minMax(src, len);
    *pMin = e.min, *pMax = e.max;
    *pMinIndx = static_cast<I>(firstEqual(src, len, e.min));
    *pMaxIndx = static_cast<I>(firstEqual(src, len, e.max));
    return zetStsOk;
}

// ---- 64-bit lengths ------------------------------------------------------------------------------------
// Pointers, then the length; the first element is stored, then each chunk's
// result (in a local that starts at the worst finite value) replaces it only
// if strictly better. The position of a chunk's result is moved by the chunk's offset.
template <class View, class Op, class T>
ZetStatus valueL(const T* src, i64 len, T* out) {
    if (auto s = checkArgs(len, src, out)) return s;
    *out = View{src}.one(0);
    return chunked<sizeof(T)>(len, [&](i64 off, int n) {
        T local = Op::template worst<T>();
        const ZetStatus s = value<View, Op>(src + off, n, &local);
        if (Op::better(local, *out)) *out = local;
        return s;
    });
}
template <class View, class Op, bool IndexOptional, class T>
ZetStatus positionL(const T* src, i64 len, T* out, i64* index) {
    if (auto s = checkPtrs(src, out)) return s;
    if (IndexOptional && index == nullptr) return valueL<View, Op>(src, len, out);
    if (auto s = checkArgs(len, index)) return s;
    *out = View{src}.one(0), *index = 0;
    return chunked<sizeof(T)>(len, [&](i64 off, int n) {
        T local = Op::template worst<T>();
        int at = 0;
        const ZetStatus s = position<View, Op, false>(src + off, n, &local, &at);
        if (Op::better(local, *out)) *out = local, *index = off + at;
        return s;
    });
}
template <class T>
ZetStatus endsL(const T* src, i64 len, T* pMin, T* pMax) {
    if (auto s = checkArgs(len, src, pMin, pMax)) return s;
    *pMin = *pMax = ld(src, 0);
    return chunked<sizeof(T)>(len, [&](i64 off, int n) {
        T lo = Least::worst<T>(), hi = Greatest::worst<T>();
        const ZetStatus s = ends(src + off, n, &lo, &hi);
        if (lo < *pMin) *pMin = lo;
        if (hi > *pMax) *pMax = hi;
        return s;
    });
}
template <class T>
ZetStatus endsAtL(const T* src, i64 len, T* pMin, i64* pMinIndx, T* pMax, i64* pMaxIndx) {
    if (auto s = checkArgs(len, src, pMin, pMax, pMinIndx, pMaxIndx)) return s;
    *pMin = *pMax = ld(src, 0);
    *pMinIndx = *pMaxIndx = 0;
    return chunked<sizeof(T)>(len, [&](i64 off, int n) {
        T lo = Least::worst<T>(), hi = Greatest::worst<T>();
        int loAt = 0, hiAt = 0;
        const ZetStatus s = endsAt(src + off, n, &lo, &loAt, &hi, &hiAt);
        if (lo < *pMin) *pMin = lo, *pMinIndx = off + loAt;
        if (hi > *pMax) *pMax = hi, *pMaxIndx = off + hiAt;
        return s;
    });
}

// ---- element-wise ------------------------------------------------------------------------------------
// dst[i] = the processor's operation on (src1[i], src2[i]): src2[i] unless
// src1[i] is strictly better, so a NaN in either gives src2[i]. The in-place
// forms pass srcDst as the second source and the destination.
#define ZET_EVERY_PICK(NAME, F)                                                            \
    struct NAME {                                                                            \
        __m256 operator()(__m256 a, __m256 b) const { return _mm256_##F##_ps(a, b); }         \
        __m128 operator()(__m128 a, __m128 b) const { return _mm_##F##_ps(a, b); }           \
        __m256d operator()(__m256d a, __m256d b) const { return _mm256_##F##_pd(a, b); }      \
        __m128d operator()(__m128d a, __m128d b) const { return _mm_##F##_pd(a, b); }         \
    };                                                                                       \
    template <class T>                                                                       \
    struct NAME##Int {                                                                       \
        __m256i operator()(__m256i a, __m256i b) const { return Reg<T>::F(a, b); }            \
        __m128i operator()(__m128i a, __m128i b) const {                                      \
            return _mm256_castsi256_si128(Reg<T>::F(_mm256_castsi128_si256(a), _mm256_castsi128_si256(b))); \
        }                                                                                    \
    };
ZET_EVERY_PICK(MaxPick, max)
ZET_EVERY_PICK(MinPick, min)
#undef ZET_EVERY_PICK

template <class T, class Pick>
using EveryPick = std::conditional_t<std::is_floating_point_v<T>, Pick, std::conditional_t<std::is_same_v<Pick, MaxPick>, MaxPickInt<T>, MinPickInt<T>>>;

// ZeroOnly: the forms that refuse a length of exactly 0 and let a negative
// one through to the kernel, which then does nothing.
template <class Pick, bool ZeroOnly, class T>
ZetStatus every(const T* a, const T* b, T* d, int len) {
    if (auto s = checkPtrs(a, b, d)) return s;
    if (ZeroOnly ? len == 0 : len < 1) return zetStsSizeErr;
    loops::map(d, len, EveryPick<T, Pick>{}, a, b);
    return zetStsOk;
}

// ---- order -------------------------------------------------------------------------------------------
inline unsigned readCsr() {
    unsigned c;
    __asm__ volatile("vstmxcsr %0" : "=m"(c));
    return c;
}
inline void writeCsr(unsigned c) { __asm__ volatile("vldmxcsr %0" : : "m"(c)); }
constexpr unsigned kInvalidFlag = 1;

template <class T> struct FloatBits;
template <> struct FloatBits<float> {
    using B = std::uint32_t;
    static constexpr B kMaxFinite = 0x7F7FFFFF;
    static constexpr int kMantissa = 23, kBias = 126;
};
template <> struct FloatBits<double> {
    using B = std::uint64_t;
    static constexpr B kMaxFinite = 0x7FEFFFFFFFFFFFFF;
    static constexpr int kMantissa = 52, kBias = 1022;
};

// The largest magnitude by the processor's maximum, four accumulators
// starting at 0; the invalid-operation flag is read once it is known.
template <class T>
T largestMagnitude(const T* p, i64 n, unsigned& csr) {
    using R = Reg<T>;
    constexpr int N = R::N;
    auto a0 = R::set1(T(0)), a1 = a0, a2 = a0, a3 = a0;
    i64 i = 0;
    for (; i + 4 * N <= n; i += 4 * N) {
        a0 = R::max(a0, R::abs(R::load(p + i)));
        a1 = R::max(a1, R::abs(R::load(p + i + N)));
        a2 = R::max(a2, R::abs(R::load(p + i + 2 * N)));
        a3 = R::max(a3, R::abs(R::load(p + i + 3 * N)));
    }
    for (; i + N <= n; i += N) a0 = R::max(a0, R::abs(R::load(p + i)));
    T m = foldLanes<Greatest, T>(R::max(R::max(a0, a1), R::max(a2, a3)));
    for (; i < n; ++i) {  // the scalar maximum raises the same flag as the vector one
        if constexpr (sizeof(T) == 4) m = _mm_cvtss_f32(_mm_max_ss(_mm_set_ss(m), _mm_set_ss(std::fabs(ld(p, i)))));
        else m = _mm_cvtsd_f64(_mm_max_sd(_mm_set_sd(m), _mm_set_sd(std::fabs(ld(p, i)))));
    }
    __asm__ volatile("" : : "x"(m));  // m is complete before the flag is read
    csr = readCsr();
    return m;
}
// The second pass: the same maximum with every NaN and infinity taken as 0,
// on the bit patterns of the magnitudes (which order as the values do).
template <class T>
T largestFinite(const T* p, i64 n, bool& metNonFinite) {
    using B = typename FloatBits<T>::B;
    B m = 0;
    for (i64 i = 0; i < n; ++i) {
        const B b = std::bit_cast<B>(std::fabs(ld(p, i)));
        if (b > FloatBits<T>::kMaxFinite) metNonFinite = true;
        else m = std::max(m, b);
    }
    return std::bit_cast<T>(m);
}

template <class T>
ZetStatus maxOrder(const T* src, int len, int* pOrder) {
    if (len < 1) return zetStsSizeErr;
    if (auto s = checkPtrs(src, pOrder)) return s;
    using F = FloatBits<T>;
    unsigned csr;
    T m = largestMagnitude(src, len, csr);
    bool nonFinite = false;
    const bool invalid = csr & kInvalidFlag;
    if (invalid || std::bit_cast<typename F::B>(m) > F::kMaxFinite) m = largestFinite(src, len, nonFinite);
    const int exponent = static_cast<int>(std::bit_cast<typename F::B>(m) >> F::kMantissa);
    *pOrder = m == 0 ? 0 : exponent - F::kBias;
    if (invalid) writeCsr(readCsr() & ~kInvalidFlag);
    return nonFinite ? zetStsNonFiniteWarn : zetStsOk;
}
// The order of an integer vector: the number of significant bits of its
// largest magnitude, 0 for a vector of zeros (1 gives 1, 0x4000 gives 15,
// -32768 gives 16).
template <class T>
ZetStatus maxOrderInt(const T* src, int len, int* pOrder) {
    if (len < 1) return zetStsSizeErr;
    if (auto s = checkPtrs(src, pOrder)) return s;
    const auto m = extreme<Greatest>(Magnitude<T>{src}, len);
    *pOrder = std::bit_width(m);
    return zetStsOk;
}

}  // namespace
}  // namespace zet::stats

using namespace zet::stats;
using zet::i64;

// ---- exports -------------------------------------------------------------------------------------------
#define ZET_EXTREMA(T)                                                                                                    \
    ZetStatus zetsMax_##T(const Zet##T* s, int n, Zet##T* r) { return value<AsIs<Zet##T>, Greatest>(s, n, r); }          \
    ZetStatus zetsMin_##T(const Zet##T* s, int n, Zet##T* r) { return value<AsIs<Zet##T>, Least>(s, n, r); }             \
    ZetStatus zetsMaxAbs_##T(const Zet##T* s, int n, Zet##T* r) { return value<Magnitude<Zet##T>, Greatest>(s, n, r); }  \
    ZetStatus zetsMinAbs_##T(const Zet##T* s, int n, Zet##T* r) { return value<Magnitude<Zet##T>, Least>(s, n, r); }     \
    ZetStatus zetsMaxIndx_##T(const Zet##T* s, int n, Zet##T* r, int* i) { return position<AsIs<Zet##T>, Greatest, true>(s, n, r, i); } \
    ZetStatus zetsMinIndx_##T(const Zet##T* s, int n, Zet##T* r, int* i) { return position<AsIs<Zet##T>, Least, true>(s, n, r, i); }    \
    ZetStatus zetsMaxAbsIndx_##T(const Zet##T* s, int n, Zet##T* r, int* i) { return position<Magnitude<Zet##T>, Greatest, false>(s, n, r, i); } \
    ZetStatus zetsMinAbsIndx_##T(const Zet##T* s, int n, Zet##T* r, int* i) { return position<Magnitude<Zet##T>, Least, false>(s, n, r, i); }

#define ZET_EXTREMA_L(T)                                                                                                         \
    ZetStatus zetsMax_##T##_L(const Zet##T* s, long long n, Zet##T* r) { return valueL<AsIs<Zet##T>, Greatest>(s, n, r); }      \
    ZetStatus zetsMin_##T##_L(const Zet##T* s, long long n, Zet##T* r) { return valueL<AsIs<Zet##T>, Least>(s, n, r); }         \
    ZetStatus zetsMaxAbs_##T##_L(const Zet##T* s, long long n, Zet##T* r) { return valueL<Magnitude<Zet##T>, Greatest>(s, n, r); } \
    ZetStatus zetsMinAbs_##T##_L(const Zet##T* s, long long n, Zet##T* r) { return valueL<Magnitude<Zet##T>, Least>(s, n, r); }    \
    ZetStatus zetsMaxIndx_##T##_L(const Zet##T* s, long long n, Zet##T* r, long long* i) { return positionL<AsIs<Zet##T>, Greatest, true>(s, n, r, i); } \
    ZetStatus zetsMinIndx_##T##_L(const Zet##T* s, long long n, Zet##T* r, long long* i) { return positionL<AsIs<Zet##T>, Least, true>(s, n, r, i); }    \
    ZetStatus zetsMaxAbsIndx_##T##_L(const Zet##T* s, long long n, Zet##T* r, long long* i) { return positionL<Magnitude<Zet##T>, Greatest, false>(s, n, r, i); } \
    ZetStatus zetsMinAbsIndx_##T##_L(const Zet##T* s, long long n, Zet##T* r, long long* i) { return positionL<Magnitude<Zet##T>, Least, false>(s, n, r, i); } \
    ZetStatus zetsMinMax_##T##_L(const Zet##T* s, long long n, Zet##T* lo, Zet##T* hi) { return endsL(s, n, lo, hi); }          \
    ZetStatus zetsMinMaxIndx_##T##_L(const Zet##T* s, long long n, Zet##T* lo, long long* li, Zet##T* hi, long long* hx) {      \
        return endsAtL(s, n, lo, li, hi, hx);                                                                                  \
    }

#define ZET_ENDS(T)                                                                                              \
    ZetStatus zetsMinMax_##T(const Zet##T* s, int n, Zet##T* lo, Zet##T* hi) { return ends(s, n, lo, hi); }     \
    ZetStatus zetsMinMaxIndx_##T(const Zet##T* s, int n, Zet##T* lo, int* li, Zet##T* hi, int* hx) { return endsAt(s, n, lo, li, hi, hx); }

ZET_EXTREMA(16s)
ZET_EXTREMA(32s)
ZET_EXTREMA(32f)
ZET_EXTREMA(64f)
ZET_EXTREMA_L(32f)
ZET_EXTREMA_L(64f)
ZET_ENDS(8u)
ZET_ENDS(16u)
ZET_ENDS(16s)
ZET_ENDS(32u)
ZET_ENDS(32s)
ZET_ENDS(32f)
ZET_ENDS(64f)

#define ZET_EVERY(T, ZERO_ONLY)                                                                                             \
    ZetStatus zetsMaxEvery_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int n) { return every<MaxPick, ZERO_ONLY>(a, b, d, n); } \
    ZetStatus zetsMinEvery_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int n) { return every<MinPick, ZERO_ONLY>(a, b, d, n); }
#define ZET_EVERY_I(T, ZERO_ONLY)                                                                                           \
    ZetStatus zetsMaxEvery_##T##_I(const Zet##T* a, Zet##T* sd, int n) { return every<MaxPick, ZERO_ONLY>(a, sd, sd, n); }  \
    ZetStatus zetsMinEvery_##T##_I(const Zet##T* a, Zet##T* sd, int n) { return every<MinPick, ZERO_ONLY>(a, sd, sd, n); }
ZET_EVERY(8u, true)
ZET_EVERY(16u, true)
ZET_EVERY(32f, true)
ZET_EVERY(64f, true)
ZET_EVERY_I(8u, false)
ZET_EVERY_I(16u, false)
ZET_EVERY_I(16s, false)
ZET_EVERY_I(32s, false)
ZET_EVERY_I(32f, false)
ZET_EVERY_I(64f, true)

ZetStatus zetsMaxOrder_32f(const Zet32f* s, int n, int* o) { return maxOrder(s, n, o); }
ZetStatus zetsMaxOrder_64f(const Zet64f* s, int n, int* o) { return maxOrder(s, n, o); }
ZetStatus zetsMaxOrder_16s(const Zet16s* s, int n, int* o) { return maxOrderInt(s, n, o); }
ZetStatus zetsMaxOrder_32s(const Zet32s* s, int n, int* o) { return maxOrderInt(s, n, o); }
