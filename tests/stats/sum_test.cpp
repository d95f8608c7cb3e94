// Sums, means, deviations and window sums against scalar references that
// state each formula once: the binary64 order bit for bit over every length
// and placement, nearness to the correctly rounded sum, the fast route's
// error bound, the integer scale step, and the status order of every form.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "stats_ref.hpp"
#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::Placement;

template <class E> constexpr bool kComplex = std::is_same_v<E, Zet32fc> || std::is_same_v<E, Zet64fc>;
template <class E> using Real = std::conditional_t<std::is_same_v<E, Zet32fc>, float, std::conditional_t<std::is_same_v<E, Zet64fc>, double, E>>;
template <class E> constexpr int kParts = kComplex<E> ? 2 : 1;

// ---- floating sums and means -------------------------------------------------------------
enum class Kind { Sum, Mean, MeanL };
template <class E> struct FloatForm {
    std::string name;
    Kind kind;
    bool hinted;
    std::function<ZetStatus(const E*, long long, E*, int)> call;
};

#define FF(T, HINT)                                                                                                       \
    {"Sum_" #T, Kind::Sum, HINT, [](const E* s, long long n, E* r, [[maybe_unused]] int h) { return zetsSum_##T(s, static_cast<int>(n), r ARG_##HINT); }}, \
    {"Sum_" #T "_L", Kind::Sum, HINT, [](const E* s, long long n, E* r, [[maybe_unused]] int h) { return zetsSum_##T##_L(s, n, r ARG_##HINT); }},        \
    {"Mean_" #T, Kind::Mean, HINT, [](const E* s, long long n, E* r, [[maybe_unused]] int h) { return zetsMean_##T(s, static_cast<int>(n), r ARG_##HINT); }}, \
    {"Mean_" #T "_L", Kind::MeanL, HINT, [](const E* s, long long n, E* r, [[maybe_unused]] int h) { return zetsMean_##T##_L(s, n, r ARG_##HINT); }}
#define ARG_true , h
#define ARG_false

template <class E> std::vector<FloatForm<E>> floatForms();
template <> std::vector<FloatForm<float>> floatForms() { using E = float; return {FF(32f, true)}; }
template <> std::vector<FloatForm<double>> floatForms() { using E = double; return {FF(64f, false)}; }
template <> std::vector<FloatForm<Zet32fc>> floatForms() { using E = Zet32fc; return {FF(32fc, true)}; }
template <> std::vector<FloatForm<Zet64fc>> floatForms() { using E = Zet64fc; return {FF(64fc, false)}; }

// The accurate route: the binary64 total in the fixed order, then one rounding
// (the plain mean divides the unrounded total, the _L mean the rounded sum).
template <class E> std::vector<Real<E>> accurate(const std::vector<Real<E>>& x, long long n, Kind kind) {
    using R = Real<E>;
    auto add = [&](double a, long long i) { return a + static_cast<double>(x[i]); };
    std::vector<double> t;
    if constexpr (kComplex<E>) {
        const auto p = sref::parts(2 * n, add);
        t = {p.first, p.second};
    } else {
        t = {sref::total(n, add)};
    }
    std::vector<R> r;
    for (double v : t) r.push_back(kind == Kind::Sum ? R(v) : kind == Kind::Mean ? R(v / double(n)) : R(R(v) / R(n)));
    return r;
}

template <class E> std::vector<Real<E>> partsOf(const E& v) {
    const auto* p = reinterpret_cast<const Real<E>*>(&v);
    return std::vector<Real<E>>(p, p + kParts<E>);
}

template <class E> class FloatSums : public ::testing::Test {};
using FloatTypes = ::testing::Types<float, double, Zet32fc, Zet64fc>;
TYPED_TEST_SUITE(FloatSums, FloatTypes);

// Hints other than 1 take the accurate route: 0, 2 and -1 give the same bits.
// On small integers every order is exact, so there the fast route (hint 1)
// must give them too: it reads nothing past the vector at any placement and
// its peel keeps real and imaginary parts apart.
TYPED_TEST(FloatSums, AccurateRouteKeepsItsAdditionOrderAtEveryPlacement) {
    using E = TypeParam;
    using R = Real<E>;
    std::mt19937_64 rng(41);
    sref::Arena arena(1, 4200 * sizeof(E));
    const auto forms = floatForms<E>();
    int meansDiffer = 0;
    for (int len : zettest::kernelLengths())
        for (bool integral : {false, true}) {
            std::vector<R> x(static_cast<std::size_t>(len) * kParts<E>);
            zettest::fillFloats(x.data(), x.size(), rng, len % 3 == 0 ? 40 : 0);
            if (integral)
                for (R& a : x) a = static_cast<R>(rng() % 1024);
            std::vector<E> v(len);
            std::memcpy(v.data(), x.data(), x.size() * sizeof(R));
            const auto mean = accurate<E>(x, len, Kind::Mean), meanL = accurate<E>(x, len, Kind::MeanL);
            for (int k = 0; k < kParts<E>; ++k) meansDiffer += !sref::same(mean[k], meanL[k]);
            for (const Placement& p : zettest::placementsFor(sizeof(R))) {
                const E* src = arena.put(0, v, p);
                for (const auto& f : forms) {
                    const auto want = accurate<E>(x, len, f.kind);
                    for (int hint : {0, 2, -1, 1}) {
                        if (hint == 1 && !(integral && f.hinted)) continue;
                        E got;
                        ASSERT_EQ(f.call(src, len, &got, hint), zetStsOk) << f.name;
                        const auto g = partsOf(got);
                        for (int k = 0; k < kParts<E>; ++k)
                            ASSERT_TRUE(sref::same(g[k], want[k]))
                                << f.name << " len " << len << " " << p.name() << " hint " << hint << " part " << k << ": "
                                << zettest::hexBits(g[k]) << " want " << zettest::hexBits(want[k]);
                    }
                }
            }
        }
    // In binary32 the two means must differ somewhere, or the data could not tell them apart.
    if (sizeof(R) == 4) {
        EXPECT_GT(meansDiffer, 0);
    }
}

// The binary64 total stays near the exact sum (computed with compensation in
// extended precision); the fast route stays within the binary32 bound.
TYPED_TEST(FloatSums, TotalsStayNearTheCorrectlyRoundedSum) {
    using E = TypeParam;
    using R = Real<E>;
    std::mt19937_64 rng(42);
    sref::Arena arena(1, 70000 * sizeof(E));
    for (int len : {1, 7, 100, 1000, 4099, 65536})
        for (bool positive : {true, false}) {
            std::vector<R> x(static_cast<std::size_t>(len) * kParts<E>);
            zettest::fillFloats(x.data(), x.size(), rng, 0);
            if (positive)
                for (R& a : x) a = std::fabs(a);
            std::vector<E> v(len);
            std::memcpy(v.data(), x.data(), x.size() * sizeof(R));
            const E* src = arena.put(0, v, {Placement::Offset, 4});
            for (int part = 0; part < kParts<E>; ++part) {
                long double exact = 0, comp = 0, mag = 0;  // Neumaier's compensated sum
                for (int i = 0; i < len; ++i) {
                    const long double a = x[static_cast<std::size_t>(i) * kParts<E> + part], t = exact + a;
                    comp += std::fabs(exact) >= std::fabs(a) ? (exact - t) + a : (a - t) + exact;
                    exact = t;
                    mag += std::fabs(a);
                }
                exact += comp;
                const long double halfUlp = std::ldexp(std::fabs(static_cast<long double>(static_cast<R>(exact))),
                                                       -std::numeric_limits<R>::digits);
                for (const auto& f : floatForms<E>()) {
                    if (f.kind != Kind::Sum) continue;
                    for (int hint : f.hinted ? std::vector<int>{0, 1} : std::vector<int>{0}) {
                        E got;
                        ASSERT_EQ(f.call(src, len, &got, hint), zetStsOk);
                        const long double g = partsOf(got)[part];
                        const long double bound = len * std::ldexp(1.0L, hint == 1 ? -23 : -52) * mag + halfUlp;
                        EXPECT_LE(std::fabs(g - exact), bound) << f.name << " len " << len << " hint " << hint;
                        if (hint == 0 && positive && sizeof(R) == 4) {
                            EXPECT_LE(zettest::ulpDistance(static_cast<float>(g), static_cast<float>(exact)), 1u) << f.name << " len " << len;
                        }
                    }
                }
            }
        }
}

// ---- integer sums and means ------------------------------------------------------------------
// The floating step: v * 2^-scale with the factor from the exponent field
// (0 from scale 1023 on, infinity from -1024 down), held to [lo, hi] and
// rounded ties to even; zero stays zero.
template <class D> D scaleStep(double v, int scale) {
    if (v == 0) return 0;
    const double f = scale >= 1023 ? 0.0 : scale <= -1024 ? INFINITY : std::ldexp(1.0, -scale);
    const double lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    return static_cast<D>(std::nearbyint(std::min(std::max(v * f, lo), hi)));
}

TEST(IntegerSums, EdgesOfTheScaleStep) {
    // Pairs {a, b}: saturation, ties to even, the factor's 0 and infinity, a zero total at any scale.
    struct Case { bool mean, wide; int a, b, scale; long long want; };
    const Case cases[] = {
        {false, true, INT_MAX, INT_MAX, 0, INT_MAX}, {false, true, INT_MAX, INT_MAX, 1, INT_MAX},
        {false, true, INT_MAX, INT_MAX, 2, 1073741824}, {true, true, INT_MAX, INT_MAX, 0, INT_MAX},
        {true, true, INT_MAX, INT_MAX, 31, 1}, {false, false, 32767, 1, 2000, 0}, {false, false, 32767, 1, 1022, 0},
        {false, false, 32767, 1, 0, 32767}, {false, false, 1, 2, -2000, 32767}, {false, false, -5, 2, -2000, -32768},
        {false, false, 3, -3, -2000, 0}, {false, false, -5, 2, -3, -24}, {false, false, 1, 2, 1, 2},
        {false, false, 2, 3, 1, 2}, {false, false, -1, -2, 1, -2}, {false, false, -2, -3, 1, -2},
        {true, false, 1, 2, 0, 2}, {true, false, 2, 3, 0, 2}, {true, false, 2, 3, -1, 5},
    };
    for (const Case& c : cases) {
        long long got;
        if (c.wide) {
            const Zet32s x[] = {c.a, c.b};
            Zet32s r = 99;
            ASSERT_EQ((c.mean ? zetsMean_32s_Sfs : zetsSum_32s_Sfs)(x, 2, &r, c.scale), zetStsOk);
            got = r;
        } else {
            const Zet16s x[] = {static_cast<Zet16s>(c.a), static_cast<Zet16s>(c.b)};
            Zet16s r = 99;
            ASSERT_EQ((c.mean ? zetsMean_16s_Sfs : zetsSum_16s_Sfs)(x, 2, &r, c.scale), zetStsOk);
            got = r;
        }
        EXPECT_EQ(got, c.want) << (c.mean ? "mean" : "sum") << (c.wide ? " 32s " : " 16s ") << c.a << ", " << c.b << " scale " << c.scale;
    }
}

// Exact totals of long vectors: 32-bit lane sums must move to 64 bits in time.
TEST(IntegerSums, LongVectorsStayExact) {
    const int n = 300000;
    std::vector<Zet16s> lo(n, -32768);
    std::vector<Zet32s> w(n, INT_MIN);
    Zet32s r, r10, r20;
    Zet32sc c;
    ASSERT_EQ(zetsSum_16s32s_Sfs(lo.data(), n, &r, 0), zetStsOk);
    ASSERT_EQ(zetsSum_16s32s_Sfs(lo.data(), n, &r10, 10), zetStsOk);
    ASSERT_EQ(zetsSum_16sc32sc_Sfs(reinterpret_cast<const Zet16sc*>(lo.data()), n / 2, &c, 12), zetStsOk);
    ASSERT_EQ(zetsSum_32s_Sfs(w.data(), n, &r20, 20), zetStsOk);
    EXPECT_EQ(r, INT_MIN);
    EXPECT_EQ(r10, -9600000);
    EXPECT_TRUE(c.re == -1200000 && c.im == -1200000);
    EXPECT_EQ(r20, scaleStep<Zet32s>(-644245094400000.0, 20));
}

// Every integer form over every length and placement, at several scales.
TEST(IntegerSums, EveryFormMatchesTheExactTotal) {
    std::mt19937_64 rng(45);
    sref::Arena arena(2, 4200 * 8);
    for (int len : zettest::kernelLengths()) {
        std::vector<Zet16s> a(2 * len);
        std::vector<Zet32s> b(len);
        for (auto& v : a) v = static_cast<Zet16s>(rng());
        for (auto& v : b) v = static_cast<Zet32s>(rng());
        long long t = 0, re = 0, im = 0, t32 = 0;
        for (int i = 0; i < len; ++i) t += a[i], re += a[2 * i], im += a[2 * i + 1], t32 += b[i];
        const double n = len;
        for (const Placement& p : zettest::placementsFor(2)) {
            SCOPED_TRACE("len " + std::to_string(len) + " " + p.name());
            const Zet16s* s = arena.put(0, std::vector<Zet16s>(a.begin(), a.begin() + len), p);
            const auto* cs = reinterpret_cast<const Zet16sc*>(arena.put(1, a, p));
            for (int sc : {-3, 0, 1, 5, 17}) {
                SCOPED_TRACE("scale " + std::to_string(sc));
                Zet16s r16, m16;
                Zet32s r32;
                Zet16sc c16, cm16;
                Zet32sc c32;
                ASSERT_EQ(zetsSum_16s_Sfs(s, len, &r16, sc), zetStsOk);
                ASSERT_EQ(zetsSum_16s32s_Sfs(s, len, &r32, sc), zetStsOk);
                ASSERT_EQ(zetsMean_16s_Sfs(s, len, &m16, sc), zetStsOk);
                ASSERT_EQ(zetsSum_16sc_Sfs(cs, len, &c16, sc), zetStsOk);
                ASSERT_EQ(zetsSum_16sc32sc_Sfs(cs, len, &c32, sc), zetStsOk);
                ASSERT_EQ(zetsMean_16sc_Sfs(cs, len, &cm16, sc), zetStsOk);
                ASSERT_EQ(r16, scaleStep<Zet16s>(t, sc));
                ASSERT_EQ(r32, scaleStep<Zet32s>(t, sc));
                ASSERT_EQ(m16, scaleStep<Zet16s>(t / n, sc));
                ASSERT_TRUE(c16.re == scaleStep<Zet16s>(re, sc) && c16.im == scaleStep<Zet16s>(im, sc));
                ASSERT_TRUE(c32.re == scaleStep<Zet32s>(re, sc) && c32.im == scaleStep<Zet32s>(im, sc));
                ASSERT_TRUE(cm16.re == scaleStep<Zet16s>(re / n, sc) && cm16.im == scaleStep<Zet16s>(im / n, sc));
            }
            const Zet32s* s32 = arena.put(1, b, p);
            for (int sc : {0, 1, 9}) {
                Zet32s r, m;
                ASSERT_EQ(zetsSum_32s_Sfs(s32, len, &r, sc), zetStsOk);
                ASSERT_EQ(zetsMean_32s_Sfs(s32, len, &m, sc), zetStsOk);
                const long long sat = std::min<long long>(std::max<long long>(t32, INT_MIN), INT_MAX);
                ASSERT_EQ(r, sc == 0 ? sat : scaleStep<Zet32s>(static_cast<double>(t32), sc)) << "scale " << sc;
                ASSERT_EQ(m, scaleStep<Zet32s>(t32 / n, sc)) << "scale " << sc;
            }
        }
    }
}

// ---- standard deviation -------------------------------------------------------------------------
struct Dev {
    double mean, dev, v;  // v before it is held at 0
};
// s1, s2 in binary64: the first element alone when a binary32 vector sits
// off an 8-byte boundary, rounds of four in two pairs of lanes, the pairs
// added, the lanes added, the last elements in order; v held at 0 from below.
// `at` is where the vector sits.
template <class T> Dev refDeviation(const std::vector<T>& p, long long n, const void* at) {
    double h1 = 0, h2 = 0;
    long long i = 0;
    if (sizeof(T) == 4 && reinterpret_cast<std::uintptr_t>(at) % 8) h1 = p[0], h2 = h1 * h1, i = 1;
    double a1[4] = {}, a2[4] = {};
    for (; i + 4 <= n; i += 4)
        for (int l = 0; l < 4; ++l) a1[l] += p[i + l], a2[l] = std::fma(double(p[i + l]), double(p[i + l]), a2[l]);
    double s1 = h1 + ((a1[0] + a1[2]) + (a1[1] + a1[3])), s2 = h2 + ((a2[0] + a2[2]) + (a2[1] + a2[3]));
    for (; i < n; ++i) s1 += p[i], s2 = std::fma(double(p[i]), double(p[i]), s2);
    const double dn = static_cast<double>(n), raw = s2 * dn - s1 * s1;
    return {s1 / dn, std::sqrt((raw > 0 ? raw : 0) / (dn * (dn - 1))), raw};
}

template <class T> class Deviations : public ::testing::Test {};
using RealTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Deviations, RealTypes);

// Both deviation exports, hint 0 or 2 (ignored in binary64).
template <class T> ZetStatus devOf(const T* s, int n, T* m, T* d, int hint) {
    if constexpr (sizeof(T) == 4) return m ? zetsMeanStdDev_32f(s, n, m, d, hint) : zetsStdDev_32f(s, n, d, hint);
    else return m ? zetsMeanStdDev_64f(s, n, m, d) : zetsStdDev_64f(s, n, d);
}

TYPED_TEST(Deviations, AccurateRouteFollowsItsOrderAtEveryPlacement) {
    using T = TypeParam;
    std::mt19937_64 rng(46);
    sref::Arena arena(1, 4200 * sizeof(T));
    for (int len : zettest::kernelLengths()) {
        if (len < 2) continue;
        std::vector<T> x(len);
        zettest::fillFloats(x.data(), len, rng, len % 4 == 0 ? 50 : 0);
        for (T& a : x) a = a * T(3) + T(100);  // a mean far from 0
        for (const Placement& p : zettest::placementsFor(sizeof(T))) {
            const T* src = arena.put(0, x, p);
            const Dev want = refDeviation(x, len, src);
            T d, m, d2;
            ASSERT_EQ(devOf<T>(src, len, nullptr, &d, 0), zetStsOk);
            ASSERT_EQ(devOf<T>(src, len, &m, &d2, 2), zetStsOk);
            ASSERT_TRUE(sref::same(d, static_cast<T>(want.dev))) << len << " " << p.name() << " " << d << " " << want.dev;
            ASSERT_TRUE(sref::same(d2, static_cast<T>(want.dev))) << len << " " << p.name();
            ASSERT_TRUE(sref::same(m, static_cast<T>(want.mean))) << len << " " << p.name();
        }
    }
}

// Equal elements whose sums are exact give exactly 0. Where rounding takes
// the numerator below 0 (found by the reference) the result is 0 and not a
// NaN; a NaN or an infinity among the elements gives 0 through the same test.
TYPED_TEST(Deviations, HeldAtZeroFromBelow) {
    using T = TypeParam;
    for (T v : {T(0.5), T(-3), T(7), T(0)})
        for (int len : {2, 3, 17, 1000, 4097}) {
            const std::vector<T> x(len, v);
            for (int hint : {0, 1}) {
                T d = -1, d2 = -1, m = 0;
                ASSERT_EQ(devOf<T>(x.data(), len, nullptr, &d, hint), zetStsOk);
                ASSERT_EQ(devOf<T>(x.data(), len, &m, &d2, hint), zetStsOk);
                EXPECT_TRUE(zettest::bitsOf(d) == 0 && zettest::bitsOf(d2) == 0 && m == v) << v << " len " << len << " hint " << hint;
            }
        }
    int negative = 0;
    for (T v : {T(0.1), T(-3.3e7), T(1e-3), T(2.2)})
        for (int len = 2; len < 300; ++len) {
            const std::vector<T> x(len, v);
            const Dev want = refDeviation(x, len, x.data());
            T d = -1;
            ASSERT_EQ(devOf<T>(x.data(), len, nullptr, &d, 0), zetStsOk);
            ASSERT_TRUE(sref::same(d, static_cast<T>(want.dev))) << v << " len " << len;
            EXPECT_LE(d, std::fabs(v) * T(1e-6));
            if (want.v < 0) {
                ++negative;
                EXPECT_EQ(zettest::bitsOf(d), 0u) << v << " len " << len;
            }
        }
    EXPECT_GT(negative, 0);
    for (T bad : {std::numeric_limits<T>::quiet_NaN(), std::numeric_limits<T>::infinity()}) {
        const T x[] = {1, bad, 2, 5};
        T d = -1;
        ASSERT_EQ(devOf<T>(x, 4, nullptr, &d, 0), zetStsOk);
        EXPECT_EQ(d, T(0)) << bad;
    }
}

// The fast route keeps close to the accurate one, even for a mean far from 0.
TEST(FastDeviation, CloseToTheAccurateRoute) {
    std::mt19937_64 rng(47);
    std::normal_distribution<float> g(0.0f, 1.0f);
    sref::Arena arena(1, 70000 * 4);
    for (int len : {2, 3, 31, 32, 33, 100, 1023, 1024, 1025, 5000, 65536}) {
        std::vector<float> x(len);
        for (float& a : x) a = 1000.0f + g(rng);
        for (const Placement& p : {Placement{Placement::Tail, 0}, Placement{Placement::Offset, 4}, Placement{Placement::Offset, 3}}) {
            const float* src = arena.put(0, x, p);
            float m0, d0, m1, d1, d2;
            ASSERT_EQ(zetsMeanStdDev_32f(src, len, &m0, &d0, 0), zetStsOk);
            ASSERT_EQ(zetsMeanStdDev_32f(src, len, &m1, &d1, 1), zetStsOk);
            ASSERT_EQ(zetsStdDev_32f(src, len, &d2, 1), zetStsOk);
            EXPECT_NEAR(d1, d0, 2e-5 * d0 + 1e-6) << len;
            EXPECT_EQ(d1, d2) << len;
            EXPECT_NEAR(m1, m0, 2e-6 * std::fabs(m0)) << len;
        }
    }
}

// Integer deviation: s1, s2 and s2 n - s1^2 exact, then the root and the step.
TEST(IntegerDeviation, MatchesTheExactFormula) {
    std::mt19937_64 rng(48);
    for (int len : zettest::kernelLengths()) {
        if (len < 2) continue;
        std::vector<Zet16s> x(len);
        for (auto& v : x) v = static_cast<Zet16s>(rng() % 2 ? rng() : rng() % 64);
        long long s1 = 0;
        __int128 s2 = 0;
        for (auto v : x) s1 += v, s2 += v * v;
        const double n = len, dev = std::sqrt(static_cast<double>(s2 * len - static_cast<__int128>(s1) * s1) / (n * (n - 1)));
        for (int sc : {-2, 0, 3}) {
            SCOPED_TRACE("len " + std::to_string(len) + " scale " + std::to_string(sc));
            Zet16s m16, d16, e16;
            Zet32s m32, d32, e32;
            ASSERT_EQ(zetsMeanStdDev_16s_Sfs(x.data(), len, &m16, &d16, sc), zetStsOk);
            ASSERT_EQ(zetsMeanStdDev_16s32s_Sfs(x.data(), len, &m32, &d32, sc), zetStsOk);
            ASSERT_EQ(zetsStdDev_16s_Sfs(x.data(), len, &e16, sc), zetStsOk);
            ASSERT_EQ(zetsStdDev_16s32s_Sfs(x.data(), len, &e32, sc), zetStsOk);
            EXPECT_EQ(m16, scaleStep<Zet16s>(s1 / n, sc));
            EXPECT_EQ(m32, scaleStep<Zet32s>(s1 / n, sc));
            EXPECT_TRUE(d16 == scaleStep<Zet16s>(dev, sc) && e16 == d16) << d16 << " " << e16;
            EXPECT_TRUE(d32 == scaleStep<Zet32s>(dev, sc) && e32 == d32) << d32 << " " << e32;
        }
    }
}

// ---- window sums ------------------------------------------------------------------------------
TEST(SumWindow, EveryWindowIsRoundedOnce) {
    std::mt19937_64 rng(49);
    sref::Arena arena(2, 4300 * 4);
    for (int len : zettest::kernelLengths())
        for (int mask : {1, 2, 3, 8, 33}) {
            std::vector<Zet8u> a(len + mask - 1);
            std::vector<Zet16s> b(len + mask - 1);
            for (auto& v : a) v = static_cast<Zet8u>(rng());
            for (auto& v : b) v = static_cast<Zet16s>(rng());
            for (const Placement& p : {Placement{Placement::Tail, 0}, Placement{Placement::Offset, 1}}) {
                std::vector<float> da(len), db(len);
                ASSERT_EQ(zetsSumWindow_8u32f(arena.put(0, a, p), da.data(), len, mask), zetStsOk);
                ASSERT_EQ(zetsSumWindow_16s32f(arena.put(1, b, p), db.data(), len, mask), zetStsOk);
                for (int i = 0; i < len; ++i) {
                    long long ta = 0, tb = 0;
                    for (int k = 0; k < mask; ++k) ta += a[i + k], tb += b[i + k];
                    ASSERT_TRUE(da[i] == static_cast<float>(ta) && db[i] == static_cast<float>(tb)) << len << " mask " << mask << " at " << i;
                }
            }
        }
}

// ---- statuses --------------------------------------------------------------------------------
// Every form: each pointer null in turn, lengths 0 and -1 (1 where a single
// element is refused), and a null pointer with length 0. Pointers come first
// everywhere here, the _L forms included. Nothing is written on an error.
struct StatusForm {
    std::string name;
    int pointers, minLen, window;  // window: the valid window length of the family, or 0
    std::function<ZetStatus(void* const* p, long long len, int window)> call;
};
// One source and one result, then the hint or scale `x...` as given.
template <class S, class N, class R, class... X>
StatusForm one(const char* name, int minLen, ZetStatus (*fn)(const S*, N, R*, X...), X... x) {
    return {name, 2, minLen, 0, [=](void* const* p, long long n, int) { return fn(static_cast<const S*>(p[0]), static_cast<N>(n), static_cast<R*>(p[1]), x...); }};
}
template <class S, class R, class... X> StatusForm meanDev(const char* name, ZetStatus (*fn)(const S*, int, R*, R*, X...), X... x) {
    return {name, 3, 2, 0, [=](void* const* p, long long n, int) { return fn(static_cast<const S*>(p[0]), int(n), static_cast<R*>(p[1]), static_cast<R*>(p[2]), x...); }};
}
template <class S> StatusForm window(const char* name, ZetStatus (*fn)(const S*, Zet32f*, int, int)) {
    return {name, 2, 1, 3, [=](void* const* p, long long n, int m) { return fn(static_cast<const S*>(p[0]), static_cast<Zet32f*>(p[1]), int(n), m); }};
}
#define ONE(NAME, ...) one(#NAME, 1, zets##NAME, ##__VA_ARGS__)

std::vector<StatusForm> statusForms() {
    return {
        ONE(Sum_32f, 0), ONE(Sum_32f_L, 1), ONE(Sum_32fc, 0), ONE(Sum_32fc_L, 0), ONE(Sum_64f), ONE(Sum_64f_L),
        ONE(Sum_64fc), ONE(Sum_64fc_L), ONE(Sum_16s_Sfs, 0), ONE(Sum_16sc_Sfs, 0), ONE(Sum_32s_Sfs, 0),
        ONE(Sum_16s32s_Sfs, 0), ONE(Sum_16sc32sc_Sfs, 0), ONE(Mean_32f, 1), ONE(Mean_32f_L, 0), ONE(Mean_32fc, 0),
        ONE(Mean_32fc_L, 1), ONE(Mean_64f), ONE(Mean_64f_L), ONE(Mean_64fc), ONE(Mean_64fc_L), ONE(Mean_16s_Sfs, 0),
        ONE(Mean_16sc_Sfs, 0), ONE(Mean_32s_Sfs, 0),
        one("StdDev_32f", 2, zetsStdDev_32f, 0), one("StdDev_32f fast", 2, zetsStdDev_32f, 1), one("StdDev_64f", 2, zetsStdDev_64f),
        one("StdDev_16s_Sfs", 2, zetsStdDev_16s_Sfs, 0), one("StdDev_16s32s_Sfs", 2, zetsStdDev_16s32s_Sfs, 0),
        meanDev("MeanStdDev_32f", zetsMeanStdDev_32f, 1), meanDev("MeanStdDev_64f", zetsMeanStdDev_64f),
        meanDev("MeanStdDev_16s_Sfs", zetsMeanStdDev_16s_Sfs, 1), meanDev("MeanStdDev_16s32s_Sfs", zetsMeanStdDev_16s32s_Sfs, 1),
        window("SumWindow_8u32f", zetsSumWindow_8u32f), window("SumWindow_16s32f", zetsSumWindow_16s32f),
    };
}

TEST(SumStatuses, PointersThenLengthThenWindow) {
    alignas(16) unsigned char in[256] = {}, out[3][64];
    for (const auto& f : statusForms()) {
        for (int nullAt = -1; nullAt < f.pointers; ++nullAt)
            for (long long len : {0LL, -1LL, static_cast<long long>(f.minLen - 1), 4LL}) {
                if (nullAt < 0 && len >= f.minLen) continue;
                std::memset(out, 0xA5, sizeof out);
                void* p[3] = {in, out[0], f.pointers == 3 ? out[2] : out[1]};
                if (nullAt >= 0) p[nullAt] = nullptr;
                EXPECT_EQ(f.call(p, len, f.window), nullAt >= 0 ? zetStsNullPtrErr : zetStsSizeErr) << f.name << " null at " << nullAt << " len " << len;
                for (auto& o : out)
                    for (unsigned char b : o) ASSERT_EQ(b, 0xA5) << f.name << " wrote on error";
            }
        if (f.window) {
            void* p[3] = {in, out[0], out[1]};
            EXPECT_EQ(f.call(p, 4, 0), zetStsWindowLenErr) << f.name;
            EXPECT_EQ(f.call(p, 0, 0), zetStsSizeErr) << f.name;
            p[1] = nullptr;
            EXPECT_EQ(f.call(p, 0, -1), zetStsNullPtrErr) << f.name;
        }
    }
}

}  // namespace
