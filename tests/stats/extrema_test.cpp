// Extrema against a strict scalar scan (a later element replaces the
// candidate only if strictly better, so the first occurrence stays, and a NaN
// first element too), the order, the element-wise forms, and the family's
// departures from the usual argument checks.
#include <gtest/gtest.h>

#include <cfenv>
#include <random>
#include <vector>

#include "stats_ref.hpp"

namespace {

using conform::op;

// The compared key: the element, or its magnitude (wide, so the lowest integer has one).
template <bool Abs, class T> auto key(T x) {
    if constexpr (!Abs) return x;
    else if constexpr (std::is_floating_point_v<T>) return std::fabs(x);
    else return std::llabs(x);
}
template <bool Great, bool Abs, class T> long long scan(const T* x, long long n) {
    long long at = 0;
    for (long long i = 1; i < n; ++i)
        if (Great ? key<Abs>(x[i]) > key<Abs>(x[at]) : key<Abs>(x[i]) < key<Abs>(x[at])) at = i;
    return at;
}
// The best value (a magnitude saturates in its type); with Index its position too.
template <bool Great, bool Abs, bool Index = false> struct Best {
    template <class T> auto operator()(const T* x, long long n) const {
        const long long at = scan<Great, Abs>(x, n);
        T v = T(key<Abs>(x[at]));
        if constexpr (std::is_integral_v<T>) v = T(std::min<long long>(key<Abs>(x[at]), std::numeric_limits<T>::max()));
        if constexpr (Index) return std::make_tuple(v, at);
        else return v;
    }
};
// With NaN elements the value forms' result depends on the lanes, and which zero comes out does too.
const auto finite = [](auto ref) { return op(ref).dom(conform::Dom::Finite).cmp(conform::rel(0)); };
CONFORM(max, finite(Best<true, false>{}), Z(zetsMax_16s, "snr"), Z(zetsMax_32s, "snr"), Z(zetsMax_32f, "snr"),
        Z(zetsMax_64f, "snr"), Z(zetsMax_32f_L, "snr"), Z(zetsMax_64f_L, "snr"));
CONFORM(min, finite(Best<false, false>{}), Z(zetsMin_16s, "snr"), Z(zetsMin_32s, "snr"), Z(zetsMin_32f, "snr"),
        Z(zetsMin_64f, "snr"), Z(zetsMin_32f_L, "snr"), Z(zetsMin_64f_L, "snr"));
CONFORM(maxAbs, finite(Best<true, true>{}), Z(zetsMaxAbs_16s, "snr"), Z(zetsMaxAbs_32s, "snr"),
        Z(zetsMaxAbs_32f, "snr"), Z(zetsMaxAbs_64f, "snr"), Z(zetsMaxAbs_32f_L, "snr"), Z(zetsMaxAbs_64f_L, "snr"));
CONFORM(minAbs, finite(Best<false, true>{}), Z(zetsMinAbs_16s, "snr"), Z(zetsMinAbs_32s, "snr"),
        Z(zetsMinAbs_32f, "snr"), Z(zetsMinAbs_64f, "snr"), Z(zetsMinAbs_32f_L, "snr"), Z(zetsMinAbs_64f_L, "snr"));
// The position forms follow the strict scan, special values included.
CONFORM(maxAbsIndx, op(Best<true, true, true>{}), Z(zetsMaxAbsIndx_16s, "snrr"), Z(zetsMaxAbsIndx_32s, "snrr"),
        Z(zetsMaxAbsIndx_32f, "snrr"), Z(zetsMaxAbsIndx_64f, "snrr"), Z(zetsMaxAbsIndx_32f_L, "snrr"),
        Z(zetsMaxAbsIndx_64f_L, "snrr"));
CONFORM(minAbsIndx, op(Best<false, true, true>{}), Z(zetsMinAbsIndx_16s, "snrr"), Z(zetsMinAbsIndx_32s, "snrr"),
        Z(zetsMinAbsIndx_32f, "snrr"), Z(zetsMinAbsIndx_64f, "snrr"), Z(zetsMinAbsIndx_32f_L, "snrr"),
        Z(zetsMinAbsIndx_64f_L, "snrr"));
// Both ends; the positions are the first elements equal to each.
const auto ends = [](auto x, long long n) {
    const auto lo = Best<false, false>{}(x, n), hi = Best<true, false>{}(x, n);
    const auto at = [=](auto v) {
        return std::find(x, x + n, v) == x + n ? 0 : std::find(x, x + n, v) - x;
    };  // 0 for a NaN
    return std::make_tuple(lo, at(lo), hi, at(hi));
};
CONFORM(minMax, finite([](auto x, long long n) {
            const auto e = ends(x, n);
            return std::tuple(std::get<0>(e), std::get<2>(e));
        }),
        Z(zetsMinMax_8u, "snrr"), Z(zetsMinMax_16u, "snrr"), Z(zetsMinMax_16s, "snrr"), Z(zetsMinMax_32u, "snrr"),
        Z(zetsMinMax_32s, "snrr"), Z(zetsMinMax_32f, "snrr"), Z(zetsMinMax_64f, "snrr"), Z(zetsMinMax_32f_L, "snrr"),
        Z(zetsMinMax_64f_L, "snrr"));
CONFORM(minMaxIndx, finite(ends), Z(zetsMinMaxIndx_8u, "snrrrr"), Z(zetsMinMaxIndx_16u, "snrrrr"),
        Z(zetsMinMaxIndx_16s, "snrrrr"), Z(zetsMinMaxIndx_32u, "snrrrr"), Z(zetsMinMaxIndx_32s, "snrrrr"),
        Z(zetsMinMaxIndx_32f, "snrrrr"), Z(zetsMinMaxIndx_64f, "snrrrr"), Z(zetsMinMaxIndx_32f_L, "snrrrr"),
        Z(zetsMinMaxIndx_64f_L, "snrrrr"));

// Floating: the exponent of the largest finite magnitude less 126 (1022),
// 0 for zeros, a warning for a NaN or an infinity. Integers: its significant bits.
const auto order = [](auto x, long long n) {
    using T = std::remove_cvref_t<decltype(*x)>;
    double m = 0;
    for (long long i = 0; i < n; ++i) m = std::isfinite(double(x[i])) ? std::max(m, std::fabs(double(x[i]))) : m;
    if constexpr (std::is_integral_v<T>) return m == 0 ? 0 : std::ilogb(m) + 1;
    else return m == 0 ? 0 : int(zettest::bitsOf(T(m)) >> (sizeof(T) == 4 ? 23 : 52)) - (sizeof(T) == 4 ? 126 : 1022);
};
CONFORM(maxOrder, op(order).warnIf(zetStsNonFiniteWarn, [](auto x, long long n) {
            return std::any_of(x, x + n, [](auto v) { return !std::isfinite(double(v)); });
        }),
        Z(zetsMaxOrder_16s, "sNr"), Z(zetsMaxOrder_32s, "sNr"), Z(zetsMaxOrder_32f, "sNr"), Z(zetsMaxOrder_64f, "sNr"));

// The second unless the first is strictly better: a NaN in either gives the second.
const auto maxEvery = [](auto a, auto b) { return a > b ? a : b; };
const auto minEvery = [](auto a, auto b) { return a < b ? a : b; };
CONFORM(maxEvery, op(maxEvery), Z(zetsMaxEvery_8u_I, "sbn"), Z(zetsMaxEvery_16u_I, "sbn"), Z(zetsMaxEvery_16s_I, "sbn"),
        Z(zetsMaxEvery_32s_I, "sbn"), Z(zetsMaxEvery_32f_I, "sbn"));
CONFORM(minEvery, op(minEvery), Z(zetsMinEvery_8u_I, "sbn"), Z(zetsMinEvery_16u_I, "sbn"), Z(zetsMinEvery_16s_I, "sbn"),
        Z(zetsMinEvery_32s_I, "sbn"), Z(zetsMinEvery_32f_I, "sbn"));

// MaxIndx and MinIndx take an optional position, which rows cannot place as
// an int: here with many ties and a NaN first, positions starting at -1 so
// that a 64-bit one written in 32 bits only shows.
template <bool Great, class T, class N, class I> void firstOf(ZetStatus (*f)(const T*, N, T*, I*)) {
    std::mt19937_64 rng(61);
    zettest::GuardedRegion reg(4200 * sizeof(T));
    for (int n : zettest::kernelLengths())
        for (int nan = 0; nan < 1 + std::is_floating_point_v<T>; ++nan)
            for (std::size_t off : {std::size_t(0), sizeof(T)}) {
                T* q = zettest::place<T>(reg, {off ? zettest::Placement::Offset : zettest::Placement::Tail, off}, n);
                for (int i = 0; i < n; ++i) q[i] = T(int(rng() % 41) - 20);
                if (nan) q[0] = -std::numeric_limits<T>::quiet_NaN();
                T v;
                I at = -1;
                ASSERT_EQ(f(q, n, &v, &at), zetStsOk);
                ASSERT_EQ(at, (scan<Great, false>(q, n))) << "len " << n << " offset " << off;
                ASSERT_EQ(std::memcmp(&v, q + at, sizeof v), 0) << "len " << n;
            }
}
TEST(Extrema, FirstOccurrenceOfMaxIndxAndMinIndx) {
    firstOf<true>(zetsMaxIndx_16s), firstOf<false>(zetsMinIndx_16s), firstOf<true>(zetsMaxIndx_32s);
    firstOf<false>(zetsMinIndx_32s), firstOf<true>(zetsMaxIndx_32f), firstOf<false>(zetsMinIndx_32f);
    firstOf<true>(zetsMaxIndx_64f), firstOf<false>(zetsMinIndx_64f), firstOf<true>(zetsMaxIndx_32f_L);
    firstOf<false>(zetsMinIndx_32f_L), firstOf<true>(zetsMaxIndx_64f_L), firstOf<false>(zetsMinIndx_64f_L);
}

// The invalid-operation flag a NaN raises is cleared, set on entry or not; other flags stay.
TEST(Extrema, MaxOrderClearsOnlyTheInvalidFlag) {
    std::vector<float> x(50, 3.0f);
    for (float bad : {NAN, 3.0f}) {
        int order = 0;
        x[17] = bad;
        std::feclearexcept(FE_ALL_EXCEPT);
        std::feraiseexcept(FE_OVERFLOW | (std::isnan(bad) ? 0 : FE_INVALID));
        EXPECT_EQ(zetsMaxOrder_32f(x.data(), 50, &order), std::isnan(bad) ? zetStsNonFiniteWarn : zetStsOk);
        EXPECT_TRUE(order == 2 && !std::fetestexcept(FE_INVALID) && std::fetestexcept(FE_OVERFLOW)) << bad;
    }
    std::feclearexcept(FE_ALL_EXCEPT);
}

}  // namespace
