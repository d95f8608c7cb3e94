// The value extremes shared by the extrema and the norms: a view says what
// is compared (the elements, their magnitudes, the magnitudes of a
// difference), an end says which way, and one kernel serves every pairing.
#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

#include "frame/checks.hpp"
#include "frame/simd.hpp"
#include "frame/unaligned.hpp"
#include "stats/lanes.hpp"

namespace zet::stats {

// ---- what is compared ----------------------------------------------------------------------
template <class T>
struct AsIs {
    using U = T;
    const T* p;
    typename Reg<T>::Vec load(i64 i) const { return Reg<T>::load(p + i); }
    U one(i64 i) const { return ld(p, i); }
};
// Magnitudes: floating ones by clearing the sign bit (a NaN stays a NaN),
// integer ones as unsigned numbers, so that the lowest value has one.
template <class T> struct MagnitudeOf { using type = T; };
template <> struct MagnitudeOf<Zet16s> { using type = Zet16u; };
template <> struct MagnitudeOf<Zet32s> { using type = Zet32u; };
template <class T>
struct Magnitude {
    using U = typename MagnitudeOf<T>::type;
    const T* p;
    typename Reg<T>::Vec load(i64 i) const { return Reg<T>::abs(Reg<T>::load(p + i)); }
    U one(i64 i) const {
        const T x = ld(p, i);
        if constexpr (std::is_floating_point_v<T>) return std::fabs(x);
        else return x < 0 ? static_cast<U>(U(0) - static_cast<U>(x)) : static_cast<U>(x);
    }
};
// |a[i] - b[i]| of floating vectors, the difference rounded first.
template <class T>
struct DiffMagnitude {
    using U = T;
    const T* a;
    const T* b;
    typename Reg<T>::Vec load(i64 i) const { return Reg<T>::abs(simd::sub(Reg<T>::load(a + i), Reg<T>::load(b + i))); }
    U one(i64 i) const { return std::fabs(ld(a, i) - ld(b, i)); }
};

// ---- which end -------------------------------------------------------------------------------
// pick(a, b) is the processor's operation: b unless a is strictly better.
struct Greatest {
    template <class R, class V> static V pick(V a, V b) { return R::max(a, b); }
    template <class R, class V> static int better(V a, V b) { return R::gt(a, b); }
    template <class U> static bool better(U a, U b) { return a > b; }
    template <class U> static U pick(U a, U b) { return a > b ? a : b; }
    template <class U> static U worst() { return std::numeric_limits<U>::lowest(); }
};
struct Least {
    template <class R, class V> static V pick(V a, V b) { return R::min(a, b); }
    template <class R, class V> static int better(V a, V b) { return R::lt(a, b); }
    template <class U> static bool better(U a, U b) { return a < b; }
    template <class U> static U pick(U a, U b) { return a < b ? a : b; }
    template <class U> static U worst() { return std::numeric_limits<U>::max(); }
};

// The lanes of a register folded in order with the scalar pick.
template <class Op, class U>
U foldLanes(typename Reg<U>::Vec v) {
    alignas(32) U lane[Reg<U>::N];
    Reg<U>::store(lane, v);
    U r = lane[0];
    for (int k = 1; k < Reg<U>::N; ++k) r = Op::pick(r, lane[k]);
    return r;
}

// Four accumulators starting from the first element, each taking the
// processor's operation with the accumulator first and the new elements
// second; folded pairwise, then lane by lane, then the last elements.
template <class Op, class View>
typename View::U extreme(const View& v, i64 n) {
    using U = typename View::U;
    using R = Reg<U>;
    constexpr int N = R::N;
    auto a0 = R::set1(v.one(0)), a1 = a0, a2 = a0, a3 = a0;
    i64 i = 0;
    for (; i + 4 * N <= n; i += 4 * N) {
        a0 = Op::template pick<R>(a0, v.load(i));
        a1 = Op::template pick<R>(a1, v.load(i + N));
        a2 = Op::template pick<R>(a2, v.load(i + 2 * N));
        a3 = Op::template pick<R>(a3, v.load(i + 3 * N));
    }
    for (; i + N <= n; i += N) a0 = Op::template pick<R>(a0, v.load(i));
    U r = foldLanes<Op, U>(Op::template pick<R>(Op::template pick<R>(a0, a1), Op::template pick<R>(a2, a3)));
    for (; i < n; ++i) r = Op::pick(r, v.one(i));
    return r;
}

}  // namespace zet::stats
