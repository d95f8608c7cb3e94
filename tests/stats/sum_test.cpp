// Sums, means, deviations and window sums; named tests for what rows cannot
// reach: hints, long totals, deviations (len 1 is an error), wide windows.
#include <numeric>

#include "stats_ref.hpp"

namespace {

using conform::K;
using conform::op;
using zettest::Placement;

// The binary64 total of each part rounded once; Kind 1 divides it by n
// (plain mean), Kind 2 divides the rounded sum by n in the element's precision.
template <int Kind> struct FloatSum {
    template <class E, class... Hint> E operator()(const E* s, long long n, Hint...) const {
        using R = conform::PartOf<E>;
        const auto* p = reinterpret_cast<const R*>(s);
        const auto add = [p](double a, long long i) { return a + double(p[i]); };
        const auto fin = [n](double t) { return Kind == 0 ? R(t) : Kind == 1 ? R(t / double(n)) : R(R(t) / R(n)); };
        if constexpr (conform::kComplex<E>) {
            const auto [re, im] = sref::parts(2 * n, add);
            return E{fin(re), fin(im)};
        } else {
            return fin(sref::total(n, add));
        }
    }
};
CONFORM(sum, op(FloatSum<0>{}).k({K(0)}).cmp(conform::anyNaN()), Z(zetsSum_32f, "snrk"), Z(zetsSum_32f_L, "snrk"),
        Z(zetsSum_32fc, "snrk"), Z(zetsSum_32fc_L, "snrk"), Z(zetsSum_64f, "snr"), Z(zetsSum_64f_L, "snr"),
        Z(zetsSum_64fc, "snr"), Z(zetsSum_64fc_L, "snr"));
CONFORM(mean, op(FloatSum<1>{}).k({K(0)}).cmp(conform::anyNaN()), Z(zetsMean_32f, "snrk"), Z(zetsMean_32fc, "snrk"),
        Z(zetsMean_64f, "snr"), Z(zetsMean_64fc, "snr"));
CONFORM(meanL, op(FloatSum<2>{}).k({K(0)}).cmp(conform::anyNaN()), Z(zetsMean_32f_L, "snrk"),
        Z(zetsMean_32fc_L, "snrk"), Z(zetsMean_64f_L, "snr"), Z(zetsMean_64fc_L, "snr"));

// Integer totals are exact; the mean divides the total by n in binary64.
template <class D, bool Mean> struct IntSum {
    template <class S> auto operator()(const S* s, long long n, int scale) const {
        using P = conform::PartOf<S>;
        const auto* p = reinterpret_cast<const P*>(s);
        long long t[2] = {};
        for (long long i = 0; i < n * conform::Parts<S>::n; ++i) t[i % conform::Parts<S>::n] += p[i];
        const auto step = [&](long long v) {
            return sref::scaleStep<D>(Mean ? double(v) / double(n) : double(v), scale);
        };
        if constexpr (conform::kComplex<S>)
            return std::conditional_t<sizeof(D) == 2, Zet16sc, Zet32sc>{step(t[0]), step(t[1])};
        else return step(t[0]);
    }
};
CONFORM(isum16, op(IntSum<Zet16s, false>{}), Z(zetsSum_16s_Sfs, "snrf"), Z(zetsSum_16sc_Sfs, "snrf"));
CONFORM(isum32, op(IntSum<Zet32s, false>{}), Z(zetsSum_32s_Sfs, "snrf"), Z(zetsSum_16s32s_Sfs, "snrf"),
        Z(zetsSum_16sc32sc_Sfs, "snrf"));
CONFORM(imean16, op(IntSum<Zet16s, true>{}), Z(zetsMean_16s_Sfs, "snrf"), Z(zetsMean_16sc_Sfs, "snrf"));
CONFORM(imean32, op(IntSum<Zet32s, true>{}), Z(zetsMean_32s_Sfs, "snrf"));
// A window of one element reads exactly len elements; wider masks are a named test.
CONFORM(window1, op([](auto x, int) { return Zet32f(x); }).k({K(1)}), Z(zetsSumWindow_8u32f, "sdnk"),
        Z(zetsSumWindow_16s32f, "sdnk"));

// Hints other than 1 take the accurate route; the fast one (1) is exact on
// small integers, whatever its order, and within the binary32 bound otherwise.
TEST(Sums, Hints) {
    std::mt19937_64 rng(41);
    std::vector<float> x(2002), ints(2002);
    zettest::fillFloats(x.data(), x.size(), rng, 0);
    for (float& v : ints) v = float(rng() % 1024);
    const auto* c = reinterpret_cast<const Zet32fc*>(x.data());
    for (int n : {5, 1001})
        for (int hint : {0, 2, -1, 1}) {
            float s, m, e;
            Zet32fc z;
            const Zet32fc wz = FloatSum<2>{}(c, n);
            ASSERT_FALSE(zetsSum_32f(x.data(), n, &s, hint) || zetsMean_32f(x.data(), n, &m, hint) ||
                         zetsMean_32fc_L(c, n, &z, hint) || zetsSum_32f_L(ints.data() + 1, n, &e, hint));
            EXPECT_EQ(e, FloatSum<0>{}(ints.data() + 1, n)) << hint;
            if (hint == 1) EXPECT_NEAR(s, FloatSum<0>{}(x.data(), n), n * 0x1p-23 * 2e6 * n);
            else
                EXPECT_TRUE(s == FloatSum<0>{}(x.data(), n) && m == FloatSum<1>{}(x.data(), n) && z.re == wz.re &&
                            z.im == wz.im);
        }
}

// Lane sums of 32 bits must widen in time; a zero total stays zero where the factor is infinite.
TEST(Sums, IntegerLaneSumsWiden) {
    const int n = 300000;
    const std::vector<Zet16s> lo(n, -32768);
    const std::vector<Zet32s> w(n, INT_MIN);
    const Zet32s pair[] = {3, -3};
    Zet32s r, r10, r20, zero = 7;
    Zet32sc c;
    ASSERT_FALSE(zetsSum_16s32s_Sfs(lo.data(), n, &r, 0) || zetsSum_16s32s_Sfs(lo.data(), n, &r10, 10) ||
                 zetsSum_16sc32sc_Sfs(reinterpret_cast<const Zet16sc*>(lo.data()), n / 2, &c, 12) ||
                 zetsSum_32s_Sfs(w.data(), n, &r20, 20) || zetsSum_32s_Sfs(pair, 2, &zero, -2000));
    EXPECT_TRUE(r == INT_MIN && r10 == -9600000 && c.re == -1200000 && c.im == -1200000 && zero == 0);
    EXPECT_EQ(r20, sref::scaleStep<Zet32s>(-644245094400000.0, 20));
}

// The deviation's order is open: near the formula in long double (integers
// exact up to the root), the numerator held at 0 from below; len 1 is an error.
template <class T> double deviation(const T* x, long long n) {
    long double s1 = 0, s2 = 0;
    for (long long i = 0; i < n; ++i) s1 += x[i], s2 += (long double)x[i] * x[i];
    if constexpr (std::is_integral_v<T>)
        return std::sqrt(double((__int128)(long long)s2 * n - (__int128)(long long)s1 * (long long)s1) /
                         (double(n) * (n - 1)));
    return double(std::sqrt(std::max(s2 * n - s1 * s1, 0.0L) / ((long double)n * (n - 1))));
}
template <class T> double average(const T* x, long long n) { return std::accumulate(x, x + n, 0.0L) / n; }
const auto sdev = [](auto* x, long long n, auto...) { return std::remove_cvref_t<decltype(*x)>(deviation(x, n)); };
const auto msdev = [](auto* x, long long n, auto...) {
    using T = std::remove_cvref_t<decltype(*x)>;
    return std::tuple{T(FloatSum<1>{}(x, n)), T(deviation(x, n))};
};
template <class D> auto scaled(bool mean) {
    return [mean](const Zet16s* x, long long n, int sc) {
        const D dev = sref::scaleStep<D>(deviation(x, n), sc);
        return mean ? std::tuple{sref::scaleStep<D>(average(x, n), sc), dev} : std::tuple{dev, dev};
    };
}
CONFORM(sdev32, op(sdev).cmp(conform::ulps(2)).dom(conform::Dom::Plain).minLen(2).k({K(0)}),
        Z(zetsStdDev_32f, "snrk"));
CONFORM(msdev32, op(msdev).cmp(conform::ulps(2)).dom(conform::Dom::Plain).minLen(2).k({K(2)}),
        Z(zetsMeanStdDev_32f, "snrrk"));
CONFORM(sdev64, op(sdev).cmp(conform::rel(1e-12)).dom(conform::Dom::Plain).minLen(2), Z(zetsStdDev_64f, "snr"));
CONFORM(msdev64, op(msdev).cmp(conform::rel(1e-12)).dom(conform::Dom::Plain).minLen(2),
        Z(zetsMeanStdDev_64f, "snrr"));
CONFORM(sdev16, op(scaled<Zet16s>(false)).minLen(2).scales({-2, 0, 3}), Z(zetsStdDev_16s_Sfs, "snrf"));
CONFORM(sdev16w, op(scaled<Zet32s>(false)).minLen(2).scales({-2, 0, 3}), Z(zetsStdDev_16s32s_Sfs, "snrf"));
CONFORM(msdev16, op(scaled<Zet16s>(true)).minLen(2).scales({-2, 0, 3}), Z(zetsMeanStdDev_16s_Sfs, "snrrf"));
CONFORM(msdev16w, op(scaled<Zet32s>(true)).minLen(2).scales({-2, 0, 3}), Z(zetsMeanStdDev_16s32s_Sfs, "snrrf"));

// Equal elements give exactly 0 where the sums are exact, and never a NaN
// where rounding takes the numerator below 0; a NaN or an infinity gives 0.
TEST(StdDev, HeldAtZeroFromBelow) {
    for (float v : {0.5f, -3.0f, 0.1f, -3.3e7f, 2.2f})
        for (int n : {2, 3, 17, 1000, 4097}) {
            const std::vector<float> x(n, v);
            const std::vector<double> y(n, v);
            float f = -1, f1 = -1;
            double d = -1;
            ASSERT_FALSE(zetsStdDev_32f(x.data(), n, &f, 0) || zetsStdDev_32f(x.data(), n, &f1, 1) ||
                         zetsStdDev_64f(y.data(), n, &d));
            const bool exact = v == std::trunc(v * 2) / 2;
            EXPECT_TRUE(exact ? zettest::bitsOf(f) == 0 && zettest::bitsOf(d) == 0
                              : f >= 0 && d >= 0 && f <= std::fabs(v) * 1e-3f);
            EXPECT_TRUE(f1 >= 0 && f1 <= std::fabs(v) * 1e-3f) << v << " len " << n;
        }
    const float x[] = {1, NAN, 2, 5, 1, INFINITY, 2, 5};
    float f[2] = {-1, -1};
    ASSERT_FALSE(zetsStdDev_32f(x, 4, &f[0], 0) || zetsStdDev_32f(x + 4, 4, &f[1], 0));
    EXPECT_TRUE(zettest::bitsOf(f[0]) == 0 && zettest::bitsOf(f[1]) == 0);
}

// Wider masks read len + mask - 1 elements.
TEST(SumWindow, EveryWindowIsRoundedOnce) {
    std::mt19937_64 rng(49);
    zettest::GuardedRegion ra(4300), rb(4300 * 2);
    for (int len : zettest::kernelLengths())
        for (int mask : {2, 3, 8, 33}) {
            const Placement p{len % 2 ? Placement::Tail : Placement::Offset, 1};
            auto* a = zettest::place<Zet8u>(ra, p, len + mask - 1);
            auto* b = reinterpret_cast<Zet16s*>(zettest::place<unsigned char>(rb, p, 2 * (len + mask - 1)));
            zettest::fillBytes(a, len + mask - 1, rng);
            zettest::fillBytes(b, 2 * (len + mask - 1), rng);
            std::vector<float> da(len + 1, -1), db(len + 1, -1);
            ASSERT_FALSE(zetsSumWindow_8u32f(a, da.data(), len, mask) || zetsSumWindow_16s32f(b, db.data(), len, mask));
            for (int i = 0; i <= len; ++i) {
                long long ta = 0, tb = 0;
                for (int k = 0; k < mask && i < len; ++k)
                    ta += a[i + k], tb += conform::detail::load<Zet16s>(b + i + k);
                ASSERT_TRUE(da[i] == (i < len ? ta : -1) && db[i] == (i < len ? tb : -1))
                    << len << " mask " << mask << " at " << i;
            }
        }
}

}  // namespace
