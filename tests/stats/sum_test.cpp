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
template <class E>
struct FloatForm {
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
template <class E>
std::vector<Real<E>> accurate(const std::vector<Real<E>>& x, long long n, Kind kind) {
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
    for (double v : t) {
        if (kind == Kind::Sum) r.push_back(static_cast<R>(v));
        if (kind == Kind::Mean) r.push_back(static_cast<R>(v / static_cast<double>(n)));
        if (kind == Kind::MeanL) r.push_back(static_cast<R>(v) / static_cast<R>(n));
    }
    return r;
}

template <class E>
std::vector<Real<E>> partsOf(const E& v) {
    const auto* p = reinterpret_cast<const Real<E>*>(&v);
    return std::vector<Real<E>>(p, p + kParts<E>);
}

template <class E> class FloatSums : public ::testing::Test {};
using FloatTypes = ::testing::Types<float, double, Zet32fc, Zet64fc>;
TYPED_TEST_SUITE(FloatSums, FloatTypes);

// Hints other than 1 take the accurate route: 0, 2 and -1 give the same bits.
TYPED_TEST(FloatSums, AccurateRouteKeepsItsAdditionOrderAtEveryPlacement) {
    using E = TypeParam;
    using R = Real<E>;
    std::mt19937_64 rng(41);
    sref::Arena arena(1, 4200 * sizeof(E));
    for (int len : zettest::kernelLengths()) {
        std::vector<R> x(static_cast<std::size_t>(len) * kParts<E>);
        zettest::fillFloats(x.data(), x.size(), rng, len % 3 == 0 ? 40 : 0);
        std::vector<E> v(len);
        std::memcpy(v.data(), x.data(), x.size() * sizeof(R));
        for (const Placement& p : zettest::placementsFor(sizeof(R))) {
            const E* src = arena.put(0, v, p);
            for (const auto& f : floatForms<E>()) {
                const auto want = accurate<E>(x, len, f.kind);
                for (int hint : {0, 2, -1}) {
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
}

// The binary64 total stays near the exact sum (computed with compensation in
// extended precision); the fast route stays within the binary32 bound.
TYPED_TEST(FloatSums, TotalsStayNearTheCorrectlyRoundedSum) {
    using E = TypeParam;
    using R = Real<E>;
    std::mt19937_64 rng(42);
    sref::Arena arena(1, 70000 * sizeof(E));
    for (int len : {1, 7, 100, 1000, 4099, 65536}) {
        for (bool positive : {true, false}) {
            std::vector<R> x(static_cast<std::size_t>(len) * kParts<E>);
            zettest::fillFloats(x.data(), x.size(), rng, 0);
            if (positive) {
                for (R& a : x) a = std::fabs(a);
            }
            std::vector<E> v(len);
            std::memcpy(v.data(), x.data(), x.size() * sizeof(R));
            const E* src = arena.put(0, v, {Placement::Offset, 4});
            for (int part = 0; part < kParts<E>; ++part) {
                long double exact = 0, comp = 0, mag = 0;  // Neumaier's compensated sum
                for (int i = 0; i < len; ++i) {
                    const long double a = x[static_cast<std::size_t>(i) * kParts<E> + part];
                    const long double t = exact + a;
                    comp += std::fabs(exact) >= std::fabs(a) ? (exact - t) + a : (a - t) + exact;
                    exact = t;
                    mag += std::fabs(a);
                }
                exact += comp;
                const long double bound64 = len * std::ldexp(1.0L, -52) * mag;
                const long double halfUlp = std::ldexp(std::fabs(static_cast<long double>(static_cast<R>(exact))),
                                                       -std::numeric_limits<R>::digits);
                for (const auto& f : floatForms<E>()) {
                    if (f.kind != Kind::Sum) continue;
                    for (int hint : f.hinted ? std::vector<int>{0, 1} : std::vector<int>{0}) {
                        E got;
                        ASSERT_EQ(f.call(src, len, &got, hint), zetStsOk);
                        const long double g = partsOf(got)[part];
                        const long double bound = hint == 1 ? len * std::ldexp(1.0L, -23) * mag + halfUlp : bound64 + halfUlp;
                        EXPECT_LE(std::fabs(g - exact), bound) << f.name << " len " << len << " hint " << hint;
                        if (hint == 0 && positive && sizeof(R) == 4) {
                            EXPECT_LE(zettest::ulpDistance(static_cast<float>(g), static_cast<float>(exact)), 1u) << f.name << " len " << len;
                        }
                    }
                }
            }
        }
    }
}

// The fast route reads nothing past the vector at any placement and its peel
// keeps real and imaginary parts apart.
TEST(FastSums, EveryPlacementAndLength) {
    std::mt19937_64 rng(43);
    sref::Arena arena(1, 4200 * sizeof(Zet32fc));
    for (int len : zettest::kernelLengths()) {
        std::vector<float> x(2 * static_cast<std::size_t>(len));
        for (float& a : x) a = static_cast<float>(rng() % 1024);  // integers: every order is exact
        std::vector<Zet32fc> c(len);
        std::memcpy(c.data(), x.data(), x.size() * 4);
        double re = 0, im = 0, all = 0;
        for (int i = 0; i < len; ++i) re += x[2 * i], im += x[2 * i + 1], all += x[i];
        for (const Placement& p : zettest::placementsFor(4)) {
            const float* rsrc = arena.put(0, std::vector<float>(x.begin(), x.begin() + len), p);
            float s;
            ASSERT_EQ(zetsSum_32f(rsrc, len, &s, 1), zetStsOk);
            ASSERT_EQ(s, static_cast<float>(all)) << "len " << len << " " << p.name();
            ASSERT_EQ(zetsMean_32f(rsrc, len, &s, 1), zetStsOk);
            ASSERT_EQ(s, static_cast<float>(all / len)) << "len " << len << " " << p.name();
            const Zet32fc* csrc = arena.put(0, c, p);
            Zet32fc z;
            ASSERT_EQ(zetsSum_32fc(csrc, len, &z, 1), zetStsOk);
            ASSERT_EQ(z.re, static_cast<float>(re)) << "len " << len << " " << p.name();
            ASSERT_EQ(z.im, static_cast<float>(im)) << "len " << len << " " << p.name();
        }
    }
}

// The plain mean rounds once; the _L mean rounds the sum first. Find data on
// which they differ, so that the distinction is known to be real.
TEST(FloatMeans, PlainAndLongFormsCanDifferInTheLastBit) {
    std::mt19937_64 rng(44);
    bool differed = false;
    for (int trial = 0; trial < 2000 && !differed; ++trial) {
        const int len = 3 + trial % 7;
        std::vector<float> x(len);
        for (float& a : x) a = std::ldexp(static_cast<float>(rng() % 100000 + 1), -static_cast<int>(rng() % 8));
        const double t = sref::total(len, [&](double a, long long i) { return a + x[i]; });
        float plain, longer;
        ASSERT_EQ(zetsMean_32f(x.data(), len, &plain, 0), zetStsOk);
        ASSERT_EQ(zetsMean_32f_L(x.data(), len, &longer, 0), zetStsOk);
        ASSERT_EQ(plain, static_cast<float>(t / len));
        ASSERT_EQ(longer, static_cast<float>(t) / static_cast<float>(len));
        differed = plain != longer;
    }
    EXPECT_TRUE(differed);
    float one = 2.5f, m;
    EXPECT_EQ(zetsMean_32f(&one, 1, &m, 0), zetStsOk);
    EXPECT_EQ(m, 2.5f);
}

// ---- integer sums and means ------------------------------------------------------------------
// The floating step: v * 2^-scale with the factor from the exponent field
// (0 from scale 1023 on, infinity from -1024 down), held to [lo, hi] and
// rounded ties to even; zero stays zero.
template <class D>
D scaleStep(double v, int scale) {
    if (v == 0) return 0;
    const double f = scale >= 1023 ? 0.0 : scale <= -1024 ? INFINITY : std::ldexp(1.0, -scale);
    const double lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    return static_cast<D>(std::nearbyint(std::min(std::max(v * f, lo), hi)));
}

TEST(IntegerSums, EdgesOfTheScaleStep) {
    const Zet32s big[] = {INT_MAX, INT_MAX};
    const Zet16s s12[] = {1, 2}, s23[] = {2, 3}, m12[] = {-1, -2}, m23[] = {-2, -3}, sat[] = {32767, 1}, neg[] = {-5, 2};
    const Zet16s zero[] = {3, -3};
    struct Case { const char* name; std::function<long long()> got; long long want; };
    auto s16 = [](const Zet16s* p, int n, int sc) { Zet16s r = 99; EXPECT_EQ(zetsSum_16s_Sfs(p, n, &r, sc), zetStsOk); return (long long)r; };
    auto s32 = [](const Zet32s* p, int n, int sc) { Zet32s r = 99; EXPECT_EQ(zetsSum_32s_Sfs(p, n, &r, sc), zetStsOk); return (long long)r; };
    auto m16 = [](const Zet16s* p, int n, int sc) { Zet16s r = 99; EXPECT_EQ(zetsMean_16s_Sfs(p, n, &r, sc), zetStsOk); return (long long)r; };
    auto m32 = [](const Zet32s* p, int n, int sc) { Zet32s r = 99; EXPECT_EQ(zetsMean_32s_Sfs(p, n, &r, sc), zetStsOk); return (long long)r; };
    const Case cases[] = {
        {"32s two INT_MAX scale 0 saturates", [&] { return s32(big, 2, 0); }, INT_MAX},
        {"32s two INT_MAX scale 1", [&] { return s32(big, 2, 1); }, INT_MAX},
        {"32s two INT_MAX scale 2 ties to even", [&] { return s32(big, 2, 2); }, 1073741824},
        {"16s scale 2000 gives 0", [&] { return s16(sat, 2, 2000); }, 0},
        {"16s scale 1022", [&] { return s16(sat, 2, 1022); }, 0},
        {"16s scale -2000 saturates up", [&] { return s16(s12, 2, -2000); }, 32767},
        {"16s scale -2000 saturates down", [&] { return s16(neg, 2, -2000); }, -32768},
        {"16s zero total with scale -2000", [&] { return s16(zero, 2, -2000); }, 0},
        {"16s 1.5 to 2", [&] { return s16(s12, 2, 1); }, 2},
        {"16s 2.5 to 2", [&] { return s16(s23, 2, 1); }, 2},
        {"16s -1.5 to -2", [&] { return s16(m12, 2, 1); }, -2},
        {"16s -2.5 to -2", [&] { return s16(m23, 2, 1); }, -2},
        {"16s scale 0 saturates", [&] { return s16(sat, 2, 0); }, 32767},
        {"16s scale -3", [&] { return s16(neg, 2, -3); }, -24},
        {"mean 16s 1.5 to 2", [&] { return m16(s12, 2, 0); }, 2},
        {"mean 16s 2.5 to 2", [&] { return m16(s23, 2, 0); }, 2},
        {"mean 16s scale -1", [&] { return m16(s23, 2, -1); }, 5},
        {"mean 32s", [&] { return m32(big, 2, 0); }, INT_MAX},
        {"mean 32s scale 31", [&] { return m32(big, 2, 31); }, 1},
    };
    for (const Case& c : cases) EXPECT_EQ(c.got(), c.want) << c.name;
}

// Exact totals of long vectors: 32-bit lane sums must move to 64 bits in time.
TEST(IntegerSums, LongVectorsStayExact) {
    const int n = 300000;
    std::vector<Zet16s> lo(n, -32768);
    Zet32s r;
    ASSERT_EQ(zetsSum_16s32s_Sfs(lo.data(), n, &r, 0), zetStsOk);
    EXPECT_EQ(r, INT_MIN);
    ASSERT_EQ(zetsSum_16s32s_Sfs(lo.data(), n, &r, 10), zetStsOk);
    EXPECT_EQ(r, -9600000);
    Zet32sc c;
    ASSERT_EQ(zetsSum_16sc32sc_Sfs(reinterpret_cast<const Zet16sc*>(lo.data()), n / 2, &c, 12), zetStsOk);
    EXPECT_EQ(c.re, -1200000);
    EXPECT_EQ(c.im, -1200000);
    std::vector<Zet32s> w(n, INT_MIN);
    ASSERT_EQ(zetsSum_32s_Sfs(w.data(), n, &r, 20), zetStsOk);
    EXPECT_EQ(r, scaleStep<Zet32s>(-644245094400000.0, 20));
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
        for (const Placement& p : zettest::placementsFor(2)) {
            const Zet16s* s = arena.put(0, std::vector<Zet16s>(a.begin(), a.begin() + len), p);
            for (int sc : {-3, 0, 1, 5, 17}) {
                Zet16s r16;
                Zet32s r32;
                Zet16sc c16;
                Zet32sc c32;
                ASSERT_EQ(zetsSum_16s_Sfs(s, len, &r16, sc), zetStsOk);
                ASSERT_EQ(r16, scaleStep<Zet16s>(t, sc)) << len << " " << p.name() << " scale " << sc;
                ASSERT_EQ(zetsSum_16s32s_Sfs(s, len, &r32, sc), zetStsOk);
                ASSERT_EQ(r32, scaleStep<Zet32s>(t, sc)) << len << " " << p.name() << " scale " << sc;
                ASSERT_EQ(zetsMean_16s_Sfs(s, len, &r16, sc), zetStsOk);
                ASSERT_EQ(r16, scaleStep<Zet16s>(static_cast<double>(t) / len, sc)) << len << " " << p.name();
                const auto* cs = reinterpret_cast<const Zet16sc*>(arena.put(1, a, p));
                ASSERT_EQ(zetsSum_16sc_Sfs(cs, len, &c16, sc), zetStsOk);
                ASSERT_EQ(c16.re, scaleStep<Zet16s>(re, sc));
                ASSERT_EQ(c16.im, scaleStep<Zet16s>(im, sc));
                ASSERT_EQ(zetsSum_16sc32sc_Sfs(cs, len, &c32, sc), zetStsOk);
                ASSERT_EQ(c32.re, scaleStep<Zet32s>(re, sc));
                ASSERT_EQ(c32.im, scaleStep<Zet32s>(im, sc));
                ASSERT_EQ(zetsMean_16sc_Sfs(cs, len, &c16, sc), zetStsOk);
                ASSERT_EQ(c16.re, scaleStep<Zet16s>(static_cast<double>(re) / len, sc));
                ASSERT_EQ(c16.im, scaleStep<Zet16s>(static_cast<double>(im) / len, sc));
            }
            const Zet32s* s32 = arena.put(1, b, p);
            for (int sc : {0, 1, 9}) {
                Zet32s r;
                ASSERT_EQ(zetsSum_32s_Sfs(s32, len, &r, sc), zetStsOk);
                const long long sat = std::min<long long>(std::max<long long>(t32, INT_MIN), INT_MAX);
                ASSERT_EQ(r, sc == 0 ? sat : scaleStep<Zet32s>(static_cast<double>(t32), sc)) << len << " scale " << sc;
                ASSERT_EQ(zetsMean_32s_Sfs(s32, len, &r, sc), zetStsOk);
                ASSERT_EQ(r, scaleStep<Zet32s>(static_cast<double>(t32) / len, sc));
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
template <class T>
Dev refDeviation(const std::vector<T>& p, long long n, const void* at) {
    double h1 = 0, h2 = 0;
    long long i = 0;
    if (sizeof(T) == 4 && reinterpret_cast<std::uintptr_t>(at) % 8) h1 = p[0], h2 = h1 * h1, i = 1;
    double a1[4] = {}, a2[4] = {};
    for (; i + 4 <= n; i += 4)
        for (int l = 0; l < 4; ++l) a1[l] += p[i + l], a2[l] = std::fma(double(p[i + l]), double(p[i + l]), a2[l]);
    double s1 = h1 + ((a1[0] + a1[2]) + (a1[1] + a1[3])), s2 = h2 + ((a2[0] + a2[2]) + (a2[1] + a2[3]));
    for (; i < n; ++i) s1 += p[i], s2 = std::fma(double(p[i]), double(p[i]), s2);
    const double dn = static_cast<double>(n);
    const double raw = s2 * dn - s1 * s1;
    const double v = raw > 0 ? raw : 0;
    return {s1 / dn, std::sqrt(v / (dn * (dn - 1))), raw};
}

template <class T> class Deviations : public ::testing::Test {};
using RealTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Deviations, RealTypes);

template <class T> ZetStatus devOf(const T* s, int n, T* d, int hint);
template <> ZetStatus devOf(const float* s, int n, float* d, int hint) { return zetsStdDev_32f(s, n, d, hint); }
template <> ZetStatus devOf(const double* s, int n, double* d, int) { return zetsStdDev_64f(s, n, d); }
template <class T> ZetStatus meanDevOf(const T* s, int n, T* m, T* d, int hint);
template <> ZetStatus meanDevOf(const float* s, int n, float* m, float* d, int hint) { return zetsMeanStdDev_32f(s, n, m, d, hint); }
template <> ZetStatus meanDevOf(const double* s, int n, double* m, double* d, int) { return zetsMeanStdDev_64f(s, n, m, d); }

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
            ASSERT_EQ(devOf<T>(src, len, &d, 0), zetStsOk);
            ASSERT_EQ(meanDevOf<T>(src, len, &m, &d2, 2), zetStsOk);
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
    for (T v : {T(0.5), T(-3), T(7), T(0)}) {
        for (int len : {2, 3, 17, 1000, 4097}) {
            const std::vector<T> x(len, v);
            for (int hint : {0, 1}) {
                T d = -1, m = 0;
                ASSERT_EQ(devOf<T>(x.data(), len, &d, hint), zetStsOk);
                EXPECT_EQ(zettest::bitsOf(d), 0u) << v << " len " << len << " hint " << hint;
                ASSERT_EQ(meanDevOf<T>(x.data(), len, &m, &d, hint), zetStsOk);
                EXPECT_EQ(zettest::bitsOf(d), 0u) << v << " len " << len << " hint " << hint;
                EXPECT_EQ(m, v);
            }
        }
    }
    int negative = 0;
    for (T v : {T(0.1), T(-3.3e7), T(1e-3), T(2.2)}) {
        for (int len = 2; len < 300; ++len) {
            const std::vector<T> x(len, v);
            const Dev want = refDeviation(x, len, x.data());
            T d = -1;
            ASSERT_EQ(devOf<T>(x.data(), len, &d, 0), zetStsOk);
            ASSERT_TRUE(sref::same(d, static_cast<T>(want.dev))) << v << " len " << len;
            EXPECT_LE(d, std::fabs(v) * T(1e-6));
            if (want.v < 0) {
                ++negative;
                EXPECT_EQ(zettest::bitsOf(d), 0u) << v << " len " << len;
            }
        }
    }
    EXPECT_GT(negative, 0);
    for (T bad : {std::numeric_limits<T>::quiet_NaN(), std::numeric_limits<T>::infinity()}) {
        const T x[] = {1, bad, 2, 5};
        T d = -1;
        ASSERT_EQ(devOf<T>(x, 4, &d, 0), zetStsOk);
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
        const double n = len;
        const double dev = std::sqrt(static_cast<double>(s2 * len - static_cast<__int128>(s1) * s1) / (n * (n - 1)));
        for (int sc : {-2, 0, 3}) {
            Zet16s m16, d16;
            Zet32s m32, d32;
            ASSERT_EQ(zetsMeanStdDev_16s_Sfs(x.data(), len, &m16, &d16, sc), zetStsOk);
            ASSERT_EQ(zetsMeanStdDev_16s32s_Sfs(x.data(), len, &m32, &d32, sc), zetStsOk);
            EXPECT_EQ(m16, scaleStep<Zet16s>(s1 / n, sc));
            EXPECT_EQ(d16, scaleStep<Zet16s>(dev, sc)) << len;
            EXPECT_EQ(m32, scaleStep<Zet32s>(s1 / n, sc));
            EXPECT_EQ(d32, scaleStep<Zet32s>(dev, sc)) << len;
            ASSERT_EQ(zetsStdDev_16s_Sfs(x.data(), len, &d16, sc), zetStsOk);
            ASSERT_EQ(zetsStdDev_16s32s_Sfs(x.data(), len, &d32, sc), zetStsOk);
            EXPECT_EQ(d16, scaleStep<Zet16s>(dev, sc));
            EXPECT_EQ(d32, scaleStep<Zet32s>(dev, sc));
        }
    }
}

// ---- window sums ------------------------------------------------------------------------------
TEST(SumWindow, EveryWindowIsRoundedOnce) {
    std::mt19937_64 rng(49);
    sref::Arena arena(2, 4300 * 4);
    for (int len : zettest::kernelLengths()) {
        for (int mask : {1, 2, 3, 8, 33}) {
            std::vector<Zet8u> a(len + mask - 1);
            std::vector<Zet16s> b(len + mask - 1);
            for (auto& v : a) v = static_cast<Zet8u>(rng());
            for (auto& v : b) v = static_cast<Zet16s>(rng());
            for (const Placement& p : {Placement{Placement::Tail, 0}, Placement{Placement::Offset, 1}}) {
                const Zet8u* sa = arena.put(0, a, p);
                const Zet16s* sb = arena.put(1, b, p);
                std::vector<float> da(len), db(len);
                ASSERT_EQ(zetsSumWindow_8u32f(sa, da.data(), len, mask), zetStsOk);
                ASSERT_EQ(zetsSumWindow_16s32f(sb, db.data(), len, mask), zetStsOk);
                for (int i = 0; i < len; ++i) {
                    long long ta = 0, tb = 0;
                    for (int k = 0; k < mask; ++k) ta += a[i + k], tb += b[i + k];
                    ASSERT_EQ(da[i], static_cast<float>(ta)) << len << " mask " << mask << " at " << i;
                    ASSERT_EQ(db[i], static_cast<float>(tb)) << len << " mask " << mask << " at " << i;
                }
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
    int pointers;
    int minLen;
    int extra = 0;  // a family argument that must be valid: the window length
    std::function<ZetStatus(void* const* p, long long len, int extra)> call;
};

#define P(i, T) static_cast<T>(p[i])
#define S1(NAME, TS, TR, ...)                                                                              \
    StatusForm{#NAME, 2, 1, 0, [](void* const* p, long long n, int) { return zets##NAME(P(0, const TS*), static_cast<int>(n), P(1, TR*) __VA_ARGS__); }}
#define S1L(NAME, TS, TR, ...)                                                                              \
    StatusForm{#NAME, 2, 1, 0, [](void* const* p, long long n, int) { return zets##NAME(P(0, const TS*), n, P(1, TR*) __VA_ARGS__); }}

std::vector<StatusForm> statusForms() {
    return {
        S1(Sum_32f, Zet32f, Zet32f, , 0), S1L(Sum_32f_L, Zet32f, Zet32f, , 1), S1(Sum_32fc, Zet32fc, Zet32fc, , 0),
        S1L(Sum_32fc_L, Zet32fc, Zet32fc, , 0), S1(Sum_64f, Zet64f, Zet64f), S1L(Sum_64f_L, Zet64f, Zet64f),
        S1(Sum_64fc, Zet64fc, Zet64fc), S1L(Sum_64fc_L, Zet64fc, Zet64fc), S1(Sum_16s_Sfs, Zet16s, Zet16s, , 0),
        S1(Sum_16sc_Sfs, Zet16sc, Zet16sc, , 0), S1(Sum_32s_Sfs, Zet32s, Zet32s, , 0), S1(Sum_16s32s_Sfs, Zet16s, Zet32s, , 0),
        S1(Sum_16sc32sc_Sfs, Zet16sc, Zet32sc, , 0), S1(Mean_32f, Zet32f, Zet32f, , 1), S1L(Mean_32f_L, Zet32f, Zet32f, , 0),
        S1(Mean_32fc, Zet32fc, Zet32fc, , 0), S1L(Mean_32fc_L, Zet32fc, Zet32fc, , 1), S1(Mean_64f, Zet64f, Zet64f),
        S1L(Mean_64f_L, Zet64f, Zet64f), S1(Mean_64fc, Zet64fc, Zet64fc), S1L(Mean_64fc_L, Zet64fc, Zet64fc),
        S1(Mean_16s_Sfs, Zet16s, Zet16s, , 0), S1(Mean_16sc_Sfs, Zet16sc, Zet16sc, , 0), S1(Mean_32s_Sfs, Zet32s, Zet32s, , 0),
        StatusForm{"StdDev_32f", 2, 2, 0, [](void* const* p, long long n, int) { return zetsStdDev_32f(P(0, const Zet32f*), int(n), P(1, Zet32f*), 0); }},
        StatusForm{"StdDev_32f fast", 2, 2, 0, [](void* const* p, long long n, int) { return zetsStdDev_32f(P(0, const Zet32f*), int(n), P(1, Zet32f*), 1); }},
        StatusForm{"StdDev_64f", 2, 2, 0, [](void* const* p, long long n, int) { return zetsStdDev_64f(P(0, const Zet64f*), int(n), P(1, Zet64f*)); }},
        StatusForm{"StdDev_16s_Sfs", 2, 2, 0, [](void* const* p, long long n, int) { return zetsStdDev_16s_Sfs(P(0, const Zet16s*), int(n), P(1, Zet16s*), 0); }},
        StatusForm{"StdDev_16s32s_Sfs", 2, 2, 0, [](void* const* p, long long n, int) { return zetsStdDev_16s32s_Sfs(P(0, const Zet16s*), int(n), P(1, Zet32s*), 0); }},
        StatusForm{"MeanStdDev_32f", 3, 2, 0, [](void* const* p, long long n, int) { return zetsMeanStdDev_32f(P(0, const Zet32f*), int(n), P(1, Zet32f*), P(2, Zet32f*), 1); }},
        StatusForm{"MeanStdDev_64f", 3, 2, 0, [](void* const* p, long long n, int) { return zetsMeanStdDev_64f(P(0, const Zet64f*), int(n), P(1, Zet64f*), P(2, Zet64f*)); }},
        StatusForm{"MeanStdDev_16s_Sfs", 3, 2, 0, [](void* const* p, long long n, int) { return zetsMeanStdDev_16s_Sfs(P(0, const Zet16s*), int(n), P(1, Zet16s*), P(2, Zet16s*), 1); }},
        StatusForm{"MeanStdDev_16s32s_Sfs", 3, 2, 0, [](void* const* p, long long n, int) { return zetsMeanStdDev_16s32s_Sfs(P(0, const Zet16s*), int(n), P(1, Zet32s*), P(2, Zet32s*), 1); }},
        StatusForm{"SumWindow_8u32f", 2, 1, 3, [](void* const* p, long long n, int m) { return zetsSumWindow_8u32f(P(0, const Zet8u*), P(1, Zet32f*), int(n), m); }},
        StatusForm{"SumWindow_16s32f", 2, 1, 3, [](void* const* p, long long n, int m) { return zetsSumWindow_16s32f(P(0, const Zet16s*), P(1, Zet32f*), int(n), m); }},
    };
}

TEST(SumStatuses, PointersThenLengthThenWindow) {
    alignas(16) unsigned char in[256] = {}, out[3][64];
    for (const auto& f : statusForms()) {
        for (int nullAt = -1; nullAt < f.pointers; ++nullAt) {
            for (long long len : {0LL, -1LL, static_cast<long long>(f.minLen - 1), 4LL}) {
                if (nullAt < 0 && len >= f.minLen) continue;
                std::memset(out, 0xA5, sizeof out);
                void* p[3] = {in, out[0], out[1]};
                if (f.pointers == 3) p[2] = out[2];
                if (nullAt >= 0) p[nullAt] = nullptr;
                const ZetStatus want = nullAt >= 0 ? zetStsNullPtrErr : zetStsSizeErr;
                EXPECT_EQ(f.call(p, len, f.extra), want) << f.name << " null at " << nullAt << " len " << len;
                for (auto& o : out)
                    for (unsigned char b : o) ASSERT_EQ(b, 0xA5) << f.name << " wrote on error";
            }
        }
        if (f.extra) {
            void* p[3] = {in, out[0], out[1]};
            EXPECT_EQ(f.call(p, 4, 0), zetStsWindowLenErr) << f.name;
            EXPECT_EQ(f.call(p, 0, 0), zetStsSizeErr) << f.name;
            p[1] = nullptr;
            EXPECT_EQ(f.call(p, 0, -1), zetStsNullPtrErr) << f.name;
        }
    }
}

}  // namespace
