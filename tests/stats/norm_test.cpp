// Norms and dot products against scalar references: the fixed fold tree of
// DotProd_32f and the binary32 and binary64 norm orders bit for bit at every
// length and placement, exact integer forms with their scaling (the
// truncating L2), the open complex kernels against exact data and error
// bounds, and the status order of every form.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
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

// ---- references ------------------------------------------------------------------------------
// DotProd_32f: eight fused 4-lane sums over blocks of 32, the tree
// (a0 + a2 + (a4 + a6)) + (a1 + a3 + (a5 + a7)), groups of 4 by separate
// multiply and add, lanes (l0 + l2) + (l1 + l3), singles by multiply and add.
float refDot32(const float* x, const float* y, long long n) {
    float a[8][4] = {}, s[4];
    long long i = 0;
    for (; i + 32 <= n; i += 32)
        for (int k = 0; k < 8; ++k)
            for (int l = 0; l < 4; ++l) a[k][l] = std::fma(x[i + 4 * k + l], y[i + 4 * k + l], a[k][l]);
    for (int l = 0; l < 4; ++l) s[l] = ((a[0][l] + a[2][l]) + (a[4][l] + a[6][l])) + ((a[1][l] + a[3][l]) + (a[5][l] + a[7][l]));
    for (; i + 4 <= n; i += 4)
        for (int l = 0; l < 4; ++l) s[l] = s[l] + x[i + l] * y[i + l];
    float r = (s[0] + s[2]) + (s[1] + s[3]);
    for (; i < n; ++i) r = r + x[i] * y[i];
    return r;
}

// Binary32 norms: two 4-lane sums over blocks of 8 (added together), then
// either the lanes and the last terms in binary32, or (Norm_L2_32f) the
// lanes widened and the last squares in binary64.
template <class Step>
float refTotal32(long long n, Step step) {
    float a[8] = {};
    long long i = 0;
    for (; i + 8 <= n; i += 8)
        for (int l = 0; l < 8; ++l) a[l] = step(a[l], i + l);
    const float s[4] = {a[0] + a[4], a[1] + a[5], a[2] + a[6], a[3] + a[7]};
    float r = (s[0] + s[2]) + (s[1] + s[3]);
    for (; i < n; ++i) r = step(r, i);
    return r;
}
float refNormL2_32f(const float* x, long long n) {
    float a[8] = {};
    long long i = 0;
    for (; i + 8 <= n; i += 8)
        for (int l = 0; l < 8; ++l) a[l] = std::fma(x[i + l], x[i + l], a[l]);
    const double s[4] = {a[0] + a[4], a[1] + a[5], a[2] + a[6], a[3] + a[7]};  // added in binary32, then widened
    double r = (s[0] + s[2]) + (s[1] + s[3]);
    for (; i < n; ++i) r = std::fma(double(x[i]), double(x[i]), r);
    return static_cast<float>(std::sqrt(r));
}
// Sum of |z| in binary64: four a round into one 4-lane sum whose lanes take
// z0, z2, z1, z3 of the round; lanes (l0 + l2) + (l1 + l3); then the rest.
template <class Z>
double refMagnitudeTotal(long long n, Z z) {
    auto mag = [&](long long i) { const auto [re, im] = z(i); return std::sqrt(re * re + im * im); };
    double a[4] = {};
    long long i = 0;
    for (; i + 4 <= n; i += 4) a[0] += mag(i), a[1] += mag(i + 2), a[2] += mag(i + 1), a[3] += mag(i + 3);
    double r = (a[0] + a[2]) + (a[1] + a[3]);
    for (; i < n; ++i) r += mag(i);
    return r;
}

// ---- binary32 and binary64 forms with a fixed order, every length and placement ---------------
struct FloatCase {
    std::string name;
    int vectors;  // 1 or 2 sources
    std::function<double(const void* const*, long long)> call;
    std::function<double(const std::vector<float>&, const std::vector<float>&, long long)> ref32;
    std::function<double(const std::vector<double>&, const std::vector<double>&, long long)> ref64;
    bool specials = true;  // NaN among the elements (what Inf gives for them is not fixed)
};
template <class V> double largestMagnitude(const V& x, const V* y, long long n) {
    double m = 0;
    for (long long i = 0; i < n; ++i) m = std::max(m, double(std::fabs(y ? x[i] - (*y)[i] : x[i])));
    return m;
}

template <class T> void fillSome(std::vector<T>& v, std::mt19937_64& rng, bool specials) {
    zettest::fillFloats(v.data(), v.size(), rng, specials ? 30 : 0);
}

TEST(FixedOrders, EveryLengthAndPlacement) {
    using VF = std::vector<float>;
    using VD = std::vector<double>;
    auto f1 = [](auto fn) { return [fn](const void* const* p, long long n) { float r; EXPECT_EQ(fn(static_cast<const float*>(p[0]), n, &r), zetStsOk); return double(r); }; };
    auto f2 = [](auto fn) { return [fn](const void* const* p, long long n) { float r; EXPECT_EQ(fn(static_cast<const float*>(p[0]), static_cast<const float*>(p[1]), n, &r), zetStsOk); return double(r); }; };
    auto d1 = [](auto fn) { return [fn](const void* const* p, long long n) { double r; EXPECT_EQ(fn(static_cast<const double*>(p[0]), n, &r), zetStsOk); return r; }; };
    auto d2 = [](auto fn) { return [fn](const void* const* p, long long n) { double r; EXPECT_EQ(fn(static_cast<const double*>(p[0]), static_cast<const double*>(p[1]), n, &r), zetStsOk); return r; }; };
    auto plain = [](auto f) { return [f](auto s, long long n, auto r) { return f(s, static_cast<int>(n), r); }; };
    auto plain2 = [](auto f) { return [f](auto a, auto b, long long n, auto r) { return f(a, b, static_cast<int>(n), r); }; };
    const std::vector<FloatCase> cases = {
        {"DotProd_32f", 2, f2(plain2(zetsDotProd_32f)), [](const VF& x, const VF& y, long long n) { return double(refDot32(x.data(), y.data(), n)); }, nullptr},
        {"Norm_L1_32f", 1, f1(plain(zetsNorm_L1_32f)),
         [](const VF& x, const VF&, long long n) { return double(refTotal32(n, [&](float a, long long i) { return a + std::fabs(x[i]); })); }, nullptr},
        {"NormDiff_L1_32f", 2, f2(plain2(zetsNormDiff_L1_32f)),
         [](const VF& x, const VF& y, long long n) { return double(refTotal32(n, [&](float a, long long i) { return a + std::fabs(x[i] - y[i]); })); }, nullptr},
        {"NormDiff_L2_32f", 2, f2(plain2(zetsNormDiff_L2_32f)),
         [](const VF& x, const VF& y, long long n) {
             return double(std::sqrt(refTotal32(n, [&](float a, long long i) { const float d = x[i] - y[i]; return std::fma(d, d, a); })));
         }, nullptr},
        {"Norm_L2_32f", 1, f1(plain(zetsNorm_L2_32f)), [](const VF& x, const VF&, long long n) { return double(refNormL2_32f(x.data(), n)); }, nullptr},
        {"Norm_L2_32f_L", 1, f1(zetsNorm_L2_32f_L), [](const VF& x, const VF&, long long n) { return double(refNormL2_32f(x.data(), n)); }, nullptr},
        {"DotProd_32f64f", 2, [](const void* const* p, long long n) { double r; EXPECT_EQ(zetsDotProd_32f64f(static_cast<const float*>(p[0]), static_cast<const float*>(p[1]), int(n), &r), zetStsOk); return r; },
         [](const VF& x, const VF& y, long long n) { return sref::total(n, [&](double a, long long i) { return std::fma(double(x[i]), double(y[i]), a); }); }, nullptr},
        {"DotProd_32f64f_L", 2, [](const void* const* p, long long n) { double r; EXPECT_EQ(zetsDotProd_32f64f_L(static_cast<const float*>(p[0]), static_cast<const float*>(p[1]), n, &r), zetStsOk); return r; },
         [](const VF& x, const VF& y, long long n) { return sref::total(n, [&](double a, long long i) { return std::fma(double(x[i]), double(y[i]), a); }); }, nullptr},
        {"Norm_Inf_32f", 1, f1(plain(zetsNorm_Inf_32f)), [](const VF& x, const VF&, long long n) { return largestMagnitude<VF>(x, nullptr, n); }, nullptr, false},
        {"NormDiff_Inf_32f", 2, f2(plain2(zetsNormDiff_Inf_32f)), [](const VF& x, const VF& y, long long n) { return largestMagnitude(x, &y, n); }, nullptr, false},
        {"Norm_Inf_64f", 1, d1(plain(zetsNorm_Inf_64f)), nullptr, [](const VD& x, const VD&, long long n) { return largestMagnitude<VD>(x, nullptr, n); }, false},
        {"NormDiff_Inf_64f", 2, d2(plain2(zetsNormDiff_Inf_64f)), nullptr, [](const VD& x, const VD& y, long long n) { return largestMagnitude(x, &y, n); }, false},
        {"DotProd_64f", 2, d2(plain2(zetsDotProd_64f)), nullptr,
         [](const VD& x, const VD& y, long long n) { return sref::total(n, [&](double a, long long i) { return std::fma(x[i], y[i], a); }); }},
        {"DotProd_64f_L", 2, d2(zetsDotProd_64f_L), nullptr,
         [](const VD& x, const VD& y, long long n) { return sref::total(n, [&](double a, long long i) { return std::fma(x[i], y[i], a); }); }},
        {"Norm_L1_64f", 1, d1(plain(zetsNorm_L1_64f)), nullptr,
         [](const VD& x, const VD&, long long n) { return sref::total(n, [&](double a, long long i) { return a + std::fabs(x[i]); }); }},
        {"NormDiff_L1_64f", 2, d2(plain2(zetsNormDiff_L1_64f)), nullptr,
         [](const VD& x, const VD& y, long long n) { return sref::total(n, [&](double a, long long i) { return a + std::fabs(x[i] - y[i]); }); }},
        {"Norm_L2_64f", 1, d1(plain(zetsNorm_L2_64f)), nullptr,
         [](const VD& x, const VD&, long long n) { return std::sqrt(sref::total(n, [&](double a, long long i) { return std::fma(x[i], x[i], a); })); }},
        {"Norm_L2_64f_L", 1, d1(zetsNorm_L2_64f_L), nullptr,
         [](const VD& x, const VD&, long long n) { return std::sqrt(sref::total(n, [&](double a, long long i) { return std::fma(x[i], x[i], a); })); }},
        {"NormDiff_L2_64f", 2, d2(plain2(zetsNormDiff_L2_64f)), nullptr,
         [](const VD& x, const VD& y, long long n) { return std::sqrt(sref::total(n, [&](double a, long long i) { const double d = x[i] - y[i]; return std::fma(d, d, a); })); }},
    };
    std::mt19937_64 rng(81);
    sref::Arena arena(2, 4200 * 8);
    for (const auto& c : cases) {
        const bool single = static_cast<bool>(c.ref32);
        const std::size_t bytes = single ? 4 : 8;
        for (int n : zettest::kernelLengths()) {
            VF x32(n), y32(n);
            VD x64(n), y64(n);
            const bool specials = c.specials && n % 5 == 0;
            fillSome(x32, rng, specials), fillSome(y32, rng, specials), fillSome(x64, rng, specials), fillSome(y64, rng, specials);
            const double want = single ? c.ref32(x32, y32, n) : c.ref64(x64, y64, n);
            for (const Placement& p : zettest::placementsFor(bytes)) {
                for (int moved = 0; moved < c.vectors; ++moved) {
                    const Placement q0 = moved == 0 ? p : Placement{Placement::Tail, 0};
                    const Placement q1 = moved == 1 ? p : Placement{Placement::Head, 0};
                    const void* ptr[2] = {single ? (const void*)arena.put(0, x32, q0) : (const void*)arena.put(0, x64, q0),
                                          single ? (const void*)arena.put(1, y32, q1) : (const void*)arena.put(1, y64, q1)};
                    const double got = c.call(ptr, n);
                    ASSERT_TRUE(sref::same(got, want)) << c.name << " len " << n << " " << p.name() << " vector " << moved << ": " << got << " want " << want;
                }
            }
        }
    }
}

// DotProd_32f of 33 elements is one block and one single product; of 36, one
// block and one group: the same products in another order give another sum.
TEST(FixedOrders, DotProdBlockStructure) {
    std::vector<float> x(36, 1.0f), y(36, 1.0f);
    x[0] = 1e8f;  // lane 0 of the first block absorbs the small terms of its lane
    float r;
    ASSERT_EQ(zetsDotProd_32f(x.data(), y.data(), 33, &r), zetStsOk);
    EXPECT_EQ(r, refDot32(x.data(), y.data(), 33));
    ASSERT_EQ(zetsDotProd_32f(x.data(), y.data(), 36, &r), zetStsOk);
    EXPECT_EQ(r, refDot32(x.data(), y.data(), 36));
    float seq = 0;
    for (int i = 0; i < 36; ++i) seq += x[i] * y[i];
    EXPECT_EQ(seq, 1e8f);  // a left-to-right sum loses every 1
    // The tree keeps most of them in lanes of their own: lane 0 loses its
    // ones against 1e8, the other lanes bring 8 + 8 + 8 (+ 1 + 1 + 1 for 36).
    EXPECT_EQ(r, 100000024.0f);
    ASSERT_EQ(zetsDotProd_32f(x.data(), y.data(), 33, &r), zetStsOk);
    EXPECT_EQ(r, 100000024.0f);
}

// Norm_L2_32f of a difference vector and NormDiff_L2_32f of its operands take
// their roots in different precisions; find data on which they differ.
TEST(FixedOrders, NormAndNormDiffRootsDiffer) {
    std::mt19937_64 rng(82);
    bool differed = false;
    for (int trial = 0; trial < 3000 && !differed; ++trial) {
        const int n = 9 + trial % 23;
        std::vector<float> a(n), b(n, 0.0f);
        for (float& v : a) v = std::ldexp(static_cast<float>(rng() % 10000 + 1), -static_cast<int>(rng() % 12));
        float norm, diff;
        ASSERT_EQ(zetsNorm_L2_32f(a.data(), n, &norm), zetStsOk);
        ASSERT_EQ(zetsNormDiff_L2_32f(a.data(), b.data(), n, &diff), zetStsOk);
        differed = norm != diff;
    }
    EXPECT_TRUE(differed);
}

// ---- complex norms --------------------------------------------------------------------------------
template <class C> using PartOf = std::conditional_t<std::is_same_v<C, Zet32fc>, float, double>;

template <class C>
struct ComplexNorms {
    std::function<ZetStatus(const C*, int, void*)> inf, l1, l2, l2L;
    std::function<ZetStatus(const C*, const C*, int, void*)> dInf, dL1, dL2;
};
#define CN(T, INF)                                                                                                          \
    ComplexNorms<Zet##T>{[](const Zet##T* s, int n, void* r) { return zetsNorm_Inf_##T##INF(s, n, static_cast<PartOf<Zet##T>*>(r)); }, \
                         [](const Zet##T* s, int n, void* r) { return zetsNorm_L1_##T##64f(s, n, static_cast<double*>(r)); },      \
                         [](const Zet##T* s, int n, void* r) { return zetsNorm_L2_##T##64f(s, n, static_cast<double*>(r)); },      \
                         [](const Zet##T* s, int n, void* r) { return zetsNorm_L2_##T##64f_L(s, n, static_cast<double*>(r)); },    \
                         [](const Zet##T* a, const Zet##T* b, int n, void* r) { return zetsNormDiff_Inf_##T##INF(a, b, n, static_cast<PartOf<Zet##T>*>(r)); }, \
                         [](const Zet##T* a, const Zet##T* b, int n, void* r) { return zetsNormDiff_L1_##T##64f(a, b, n, static_cast<double*>(r)); }, \
                         [](const Zet##T* a, const Zet##T* b, int n, void* r) { return zetsNormDiff_L2_##T##64f(a, b, n, static_cast<double*>(r)); }}
template <class C> ComplexNorms<C> complexNorms();
template <> ComplexNorms<Zet32fc> complexNorms() { return CN(32fc, 32f); }
template <> ComplexNorms<Zet64fc> complexNorms() { return CN(64fc, 64f); }

template <class C> class ComplexNormTest : public ::testing::Test {};
using ComplexTypes = ::testing::Types<Zet32fc, Zet64fc>;
TYPED_TEST_SUITE(ComplexNormTest, ComplexTypes);

TYPED_TEST(ComplexNormTest, MagnitudesInTheirStatedOrder) {
    using C = TypeParam;
    using R = PartOf<C>;
    std::mt19937_64 rng(83);
    sref::Arena arena(2, 4200 * sizeof(C));
    const auto f = complexNorms<C>();
    for (int n : zettest::kernelLengths()) {
        std::vector<C> a(n), b(n);
        zettest::fillFloats(reinterpret_cast<R*>(a.data()), 2 * n, rng, 0);
        zettest::fillFloats(reinterpret_cast<R*>(b.data()), 2 * n, rng, 0);
        for (bool diff : {false, true}) {
            auto z = [&](long long i) {
                const double re = diff ? double(R(a[i].re - b[i].re)) : double(a[i].re), im = diff ? double(R(a[i].im - b[i].im)) : double(a[i].im);
                return std::pair<double, double>{re, im};
            };
            auto zw = [&](long long i) {  // the binary64 forms subtract after widening
                const double re = diff ? double(a[i].re) - double(b[i].re) : double(a[i].re), im = diff ? double(a[i].im) - double(b[i].im) : double(a[i].im);
                return std::pair<double, double>{re, im};
            };
            R largest = 0;
            for (int i = 0; i < n; ++i) {
                const auto [re, im] = z(i);
                largest = std::max(largest, R(R(re) * R(re)) + R(R(im) * R(im)));
            }
            const double l1 = refMagnitudeTotal(n, zw);
            const double l2 = std::sqrt(sref::total(2 * n, [&](double s, long long k) {
                const auto [re, im] = zw(k / 2);
                const double t = k % 2 ? im : re;
                return std::fma(t, t, s);
            }));
            for (const Placement& p : zettest::placementsFor(sizeof(R))) {
                const C* sa = arena.put(0, a, p);
                const C* sb = arena.put(1, b, {Placement::Tail, 0});
                R inf;
                double r1, r2, r2L = 0;
                if (diff) {
                    ASSERT_EQ(f.dInf(sa, sb, n, &inf), zetStsOk);
                    ASSERT_EQ(f.dL1(sa, sb, n, &r1), zetStsOk);
                    ASSERT_EQ(f.dL2(sa, sb, n, &r2), zetStsOk);
                    r2L = r2;
                } else {
                    ASSERT_EQ(f.inf(sa, n, &inf), zetStsOk);
                    ASSERT_EQ(f.l1(sa, n, &r1), zetStsOk);
                    ASSERT_EQ(f.l2(sa, n, &r2), zetStsOk);
                    ASSERT_EQ(f.l2L(sa, n, &r2L), zetStsOk);
                }
                ASSERT_EQ(inf, std::sqrt(largest)) << n << " " << p.name() << " diff " << diff;
                ASSERT_EQ(r1, l1) << n << " " << p.name() << " diff " << diff;
                ASSERT_EQ(r2, l2) << n << " " << p.name() << " diff " << diff;
                ASSERT_EQ(r2L, l2) << n << " " << p.name();
            }
        }
    }
}

// ---- complex and mixed dot products (open kernels) ---------------------------------------------------
// Integer-valued data make every order exact, so a wrong pairing of parts or
// a lost tail shows; random data must stay within the bound of the
// accumulation's precision and must not depend on alignment.
struct CDot {
    std::string name;
    bool realA, single;  // A is real; the result is single precision
    std::function<std::pair<double, double>(const void*, const void*, long long)> call;
};
template <class Out>
std::pair<double, double> cd(ZetStatus st, Out r) {
    EXPECT_EQ(st, zetStsOk);
    return {r.re, r.im};
}
#define CDOT(S, A, B, OUT, REALA, SINGLE)                                                                        \
    CDot{#S, REALA, SINGLE, [](const void* a, const void* b, long long n) {                                      \
             OUT r;                                                                                             \
             return cd(zetsDotProd_##S(static_cast<const A*>(a), static_cast<const B*>(b), int(n), &r), r);    \
         }}
#define CDOT_L(S, A, B, OUT, REALA)                                                                              \
    CDot{#S "_L", REALA, false, [](const void* a, const void* b, long long n) {                                  \
             OUT r;                                                                                             \
             return cd(zetsDotProd_##S##_L(static_cast<const A*>(a), static_cast<const B*>(b), n, &r), r);     \
         }}

TEST(ComplexDots, ExactOnIntegersBoundedOtherwiseAlignmentFree) {
    const std::vector<CDot> forms = {
        CDOT(32fc, Zet32fc, Zet32fc, Zet32fc, false, true), CDOT(32fc64fc, Zet32fc, Zet32fc, Zet64fc, false, false),
        CDOT_L(32fc64fc, Zet32fc, Zet32fc, Zet64fc, false), CDOT(64fc, Zet64fc, Zet64fc, Zet64fc, false, false),
        CDOT_L(64fc, Zet64fc, Zet64fc, Zet64fc, false), CDOT(32f32fc, Zet32f, Zet32fc, Zet32fc, true, true),
        CDOT(32f32fc64fc, Zet32f, Zet32fc, Zet64fc, true, false), CDOT_L(32f32fc64fc, Zet32f, Zet32fc, Zet64fc, true),
        CDOT(64f64fc, Zet64f, Zet64fc, Zet64fc, true, false), CDOT_L(64f64fc, Zet64f, Zet64fc, Zet64fc, true),
    };
    std::mt19937_64 rng(84);
    sref::Arena arena(2, 4200 * 16);
    for (const auto& f : forms) {
        const bool dbl = f.name.find("64f64fc") == 0 || f.name.find("64fc") == 0;
        const std::size_t part = dbl ? 8 : 4;
        for (int n : zettest::kernelLengths()) {
            for (bool integral : {true, false}) {
                const std::size_t na = f.realA ? n : 2 * n, nb = 2 * n;
                std::vector<double> a(na), b(nb);
                for (double& v : a) v = integral ? double(int(rng() % 201) - 100) : std::ldexp(double(int(rng() % 2000001) - 1000000), -20);
                for (double& v : b) v = integral ? double(int(rng() % 201) - 100) : std::ldexp(double(int(rng() % 2000001) - 1000000), -20);
                long double re = 0, im = 0, mag = 0;
                for (int i = 0; i < n; ++i) {
                    const long double ar = f.realA ? a[i] : a[2 * i], ai = f.realA ? 0 : a[2 * i + 1];
                    re += ar * b[2 * i] - ai * b[2 * i + 1];
                    im += ar * b[2 * i + 1] + ai * b[2 * i];
                    mag += std::fabs(ar) * (std::fabs(b[2 * i]) + std::fabs(b[2 * i + 1])) + std::fabs(ai) * (std::fabs(b[2 * i]) + std::fabs(b[2 * i + 1]));
                }
                const long double bound = integral ? 0 : n * std::ldexp(1.0L, f.single ? -22 : -51) * mag;
                std::pair<double, double> first{};
                const auto places = zettest::placementsFor(part);
                for (std::size_t k = 0; k < places.size(); ++k) {
                    const void* pa = dbl ? (const void*)arena.put(0, a, places[k])
                                         : (const void*)arena.put(0, std::vector<float>(a.begin(), a.end()), places[k]);
                    const void* pb = dbl ? (const void*)arena.put(1, b, {Placement::Tail, 0})
                                         : (const void*)arena.put(1, std::vector<float>(b.begin(), b.end()), {Placement::Tail, 0});
                    const auto got = f.call(pa, pb, n);
                    ASSERT_LE(std::fabs(got.first - re), bound) << f.name << " len " << n << " integral " << integral;
                    ASSERT_LE(std::fabs(got.second - im), bound) << f.name << " len " << n << " integral " << integral;
                    if (k == 0) first = got;
                    ASSERT_EQ(got, first) << f.name << " depends on alignment at len " << n << " " << places[k].name();
                }
            }
        }
    }
}

// ---- integer forms --------------------------------------------------------------------------------
// The scale rule on an exact value: s * 2^-scale rounded half to even, saturated.
template <class D> D rule(__int128 s, int scale) {
    long double v = std::ldexp(static_cast<long double>(s), -scale);
    v = std::nearbyint(v);
    if (v > std::numeric_limits<D>::max()) return std::numeric_limits<D>::max();
    if (v < std::numeric_limits<D>::min()) return std::numeric_limits<D>::min();
    return static_cast<D>(v);
}

TEST(IntegerNorms, ExactThenScaled) {
    std::mt19937_64 rng(85);
    sref::Arena arena(2, 4200 * 2);
    for (int n : zettest::kernelLengths()) {
        std::vector<Zet16s> a(n), b(n);
        for (auto& v : a) v = static_cast<Zet16s>(rng());
        for (auto& v : b) v = static_cast<Zet16s>(rng());
        a[rng() % n] = -32768;
        for (bool diff : {false, true}) {
            long long inf = 0, l1 = 0;
            unsigned long long l2 = 0;
            for (int i = 0; i < n; ++i) {
                const long long d = diff ? (long long)a[i] - b[i] : a[i];
                inf = std::max(inf, std::llabs(d)), l1 += std::llabs(d), l2 += static_cast<unsigned long long>(d * d);
            }
            const Zet16s* sa = arena.put(0, a, {Placement::Offset, static_cast<std::size_t>(n % 31)});
            const Zet16s* sb = arena.put(1, b, {Placement::Tail, 0});
            for (int sc : {0, 3, -2, 17}) {
                float f;
                Zet32s i32;
                Zet64s i64;
                auto run = [&](auto one, auto two, auto* r, auto... s) { return diff ? two(sa, sb, n, r, s...) : one(sa, n, r, s...); };
                ASSERT_EQ(run(zetsNorm_Inf_16s32f, zetsNormDiff_Inf_16s32f, &f), zetStsOk);
                ASSERT_EQ(f, float(inf));
                ASSERT_EQ(run(zetsNorm_L1_16s32f, zetsNormDiff_L1_16s32f, &f), zetStsOk);
                ASSERT_EQ(f, float(l1));
                ASSERT_EQ(run(zetsNorm_L2_16s32f, zetsNormDiff_L2_16s32f, &f), zetStsOk);
                ASSERT_EQ(f, float(std::sqrt(double(l2))));
                ASSERT_EQ(run(zetsNorm_Inf_16s32s_Sfs, zetsNormDiff_Inf_16s32s_Sfs, &i32, sc), zetStsOk);
                ASSERT_EQ(i32, rule<Zet32s>(inf, sc));
                ASSERT_EQ(run(zetsNorm_L1_16s32s_Sfs, zetsNormDiff_L1_16s32s_Sfs, &i32, sc), zetStsOk);
                ASSERT_EQ(i32, rule<Zet32s>(l1, sc));
                ASSERT_EQ(run(zetsNorm_L1_16s64s_Sfs, zetsNormDiff_L1_16s64s_Sfs, &i64, sc), zetStsOk);
                ASSERT_EQ(i64, rule<Zet64s>(l1, sc));
                ASSERT_EQ(run(zetsNorm_L2Sqr_16s64s_Sfs, zetsNormDiff_L2Sqr_16s64s_Sfs, &i64, sc), zetStsOk);
                ASSERT_EQ(i64, rule<Zet64s>(l2, sc)) << n << " diff " << diff << " scale " << sc;
            }
        }
    }
}

// The L2 root of 16-bit data is divided or multiplied by (int)(1 << (|scale| & 31))
// and truncated, not rounded.
TEST(IntegerNorms, TruncatingRoot) {
    const Zet16s v[] = {3, 4}, zero[] = {0, 0};
    struct Case { int scale; Zet32s want; };
    const Case cases[] = {{0, 5}, {1, 2}, {2, 1}, {3, 0}, {-1, 10}, {-28, 5 << 28}, {-29, INT_MAX}, {-31, INT_MIN}, {31, 0}, {32, 5}, {33, 2}};
    for (const Case& c : cases) {
        Zet32s r = 77, d = 77;
        ASSERT_EQ(zetsNorm_L2_16s32s_Sfs(v, 2, &r, c.scale), zetStsOk);
        ASSERT_EQ(zetsNormDiff_L2_16s32s_Sfs(v, zero, 2, &d, c.scale), zetStsOk);
        EXPECT_EQ(r, c.want) << "scale " << c.scale;
        EXPECT_EQ(d, c.want) << "scale " << c.scale;
    }
    const Zet16s w[] = {2, 3};  // sqrt(13) = 3.6: truncated to 3, not rounded to 4
    Zet32s r;
    ASSERT_EQ(zetsNorm_L2_16s32s_Sfs(w, 2, &r, 0), zetStsOk);
    EXPECT_EQ(r, 3);
}

TEST(IntegerDots, ExactThenScaled) {
    std::mt19937_64 rng(86);
    sref::Arena arena(4, 4200 * 8);
    for (int n : zettest::kernelLengths()) {
        std::vector<Zet16s> a(2 * n), b(2 * n);
        std::vector<Zet32s> c(n), d(n);
        for (auto& v : a) v = static_cast<Zet16s>(rng());
        for (auto& v : b) v = static_cast<Zet16s>(rng());
        for (auto& v : c) v = static_cast<Zet32s>(rng());
        for (auto& v : d) v = static_cast<Zet32s>(rng());
        __int128 s16 = 0, s32 = 0, s1632 = 0;
        long long cre = 0, cim = 0, rre = 0, rim = 0;
        for (int i = 0; i < n; ++i) {
            s16 += a[i] * b[i], s32 += (__int128)c[i] * d[i], s1632 += (__int128)a[i] * d[i];
            cre += (long long)a[2 * i] * b[2 * i] - (long long)a[2 * i + 1] * b[2 * i + 1];
            cim += (long long)a[2 * i] * b[2 * i + 1] + (long long)a[2 * i + 1] * b[2 * i];
            rre += (long long)a[i] * b[2 * i], rim += (long long)a[i] * b[2 * i + 1];
        }
        const Placement p{Placement::Offset, static_cast<std::size_t>(n % 29)};
        const Zet16s* sa = arena.put(0, a, p);
        const Zet16s* sb = arena.put(1, b, {Placement::Tail, 0});
        float f;
        Zet64s l;
        Zet64sc z;
        ASSERT_EQ(zetsDotProd_16s32f(sa, sb, n, &f), zetStsOk);
        ASSERT_EQ(f, float((long long)s16));
        ASSERT_EQ(zetsDotProd_16s64s(sa, sb, n, &l), zetStsOk);
        ASSERT_EQ(l, (long long)s16);
        ASSERT_EQ(zetsDotProd_16sc64sc(reinterpret_cast<const Zet16sc*>(sa), reinterpret_cast<const Zet16sc*>(sb), n, &z), zetStsOk);
        ASSERT_EQ(z.re, cre);
        ASSERT_EQ(z.im, cim);
        ASSERT_EQ(zetsDotProd_16s16sc64sc(sa, reinterpret_cast<const Zet16sc*>(sb), n, &z), zetStsOk);
        ASSERT_EQ(z.re, rre);
        ASSERT_EQ(z.im, rim);
        const Zet32s* sc32 = arena.put(2, c, p);
        const Zet32s* sd32 = arena.put(3, d, {Placement::Tail, 0});
        for (int sc : {0, 1, 20, 40, -3, -40}) {
            Zet32s r;
            ASSERT_EQ(zetsDotProd_16s32s_Sfs(sa, sb, n, &r, sc), zetStsOk);
            ASSERT_EQ(r, rule<Zet32s>(s16, std::clamp(sc, -31, 31))) << n << " scale " << sc;
            ASSERT_EQ(zetsDotProd_32s_Sfs(sc32, sd32, n, &r, sc), zetStsOk);
            ASSERT_EQ(r, rule<Zet32s>(s32, sc)) << n << " scale " << sc;
        }
        const Zet16s* sa2 = arena.put(0, std::vector<Zet16s>(a.begin(), a.begin() + n), p);
        for (int sc : {0, 5, 33}) {
            Zet32s r;
            ASSERT_EQ(zetsDotProd_16s32s32s_Sfs(sa2, sd32, n, &r, sc), zetStsOk);
            ASSERT_EQ(r, rule<Zet32s>(s1632, sc)) << n << " scale " << sc;
        }
    }
    // 256 and 257 elements with a last product of 0 give the same value.
    std::vector<Zet16s> x(257, -32768), y(257, -32768);
    y[256] = 0;
    Zet32s r256, r257;
    ASSERT_EQ(zetsDotProd_16s32s_Sfs(x.data(), y.data(), 256, &r256, 10), zetStsOk);
    ASSERT_EQ(zetsDotProd_16s32s_Sfs(x.data(), y.data(), 257, &r257, 10), zetStsOk);
    EXPECT_EQ(r256, 268435456);
    EXPECT_EQ(r257, r256);
}

// ---- statuses ------------------------------------------------------------------------------------------
// Every form: each pointer null in turn, lengths 0 and -1, and a null
// pointer with length 0 (the _L forms check pointers first too).
struct StatusForm {
    std::string name;
    int pointers;
    std::function<ZetStatus(void* const*, long long)> call;
};
template <class F>
StatusForm form(std::string name, int pointers, F f) {
    return {std::move(name), pointers, f};
}

std::vector<StatusForm> statusForms() {
    std::vector<StatusForm> v;
#define ONE(NAME, E, O, ...) v.push_back(form(#NAME, 2, [](void* const* p, long long n) { return zets##NAME((const E*)p[0], (int)n, (O*)p[1] __VA_ARGS__); }))
#define ONE_L(NAME, E, O) v.push_back(form(#NAME, 2, [](void* const* p, long long n) { return zets##NAME((const E*)p[0], n, (O*)p[1]); }))
#define TWO(NAME, A, B, O, ...) v.push_back(form(#NAME, 3, [](void* const* p, long long n) { return zets##NAME((const A*)p[0], (const B*)p[1], (int)n, (O*)p[2] __VA_ARGS__); }))
#define TWO_L(NAME, A, B, O) v.push_back(form(#NAME, 3, [](void* const* p, long long n) { return zets##NAME((const A*)p[0], (const B*)p[1], n, (O*)p[2]); }))
#define NORM(S, E, O, ...) ONE(Norm_##S, E, O, __VA_ARGS__); TWO(NormDiff_##S, E, E, O, __VA_ARGS__)
    NORM(Inf_16s32f, Zet16s, Zet32f); NORM(Inf_16s32s_Sfs, Zet16s, Zet32s, , 0); NORM(Inf_32f, Zet32f, Zet32f);
    NORM(Inf_32fc32f, Zet32fc, Zet32f); NORM(Inf_64f, Zet64f, Zet64f); NORM(Inf_64fc64f, Zet64fc, Zet64f);
    NORM(L1_16s32f, Zet16s, Zet32f); NORM(L1_16s32s_Sfs, Zet16s, Zet32s, , 0); NORM(L1_16s64s_Sfs, Zet16s, Zet64s, , 0);
    NORM(L1_32f, Zet32f, Zet32f); NORM(L1_32fc64f, Zet32fc, Zet64f); NORM(L1_64f, Zet64f, Zet64f); NORM(L1_64fc64f, Zet64fc, Zet64f);
    NORM(L2_16s32f, Zet16s, Zet32f); NORM(L2_16s32s_Sfs, Zet16s, Zet32s, , 1); NORM(L2_32f, Zet32f, Zet32f);
    NORM(L2_32fc64f, Zet32fc, Zet64f); NORM(L2_64f, Zet64f, Zet64f); NORM(L2_64fc64f, Zet64fc, Zet64f);
    NORM(L2Sqr_16s64s_Sfs, Zet16s, Zet64s, , 0);
    ONE_L(Norm_L2_32f_L, Zet32f, Zet32f); ONE_L(Norm_L2_32fc64f_L, Zet32fc, Zet64f);
    ONE_L(Norm_L2_64f_L, Zet64f, Zet64f); ONE_L(Norm_L2_64fc64f_L, Zet64fc, Zet64f);
    TWO(DotProd_16s32f, Zet16s, Zet16s, Zet32f); TWO(DotProd_16s64s, Zet16s, Zet16s, Zet64s);
    TWO(DotProd_16s32s_Sfs, Zet16s, Zet16s, Zet32s, , 0); TWO(DotProd_32s_Sfs, Zet32s, Zet32s, Zet32s, , 0);
    TWO(DotProd_16s32s32s_Sfs, Zet16s, Zet32s, Zet32s, , 0); TWO(DotProd_16sc64sc, Zet16sc, Zet16sc, Zet64sc);
    TWO(DotProd_16s16sc64sc, Zet16s, Zet16sc, Zet64sc); TWO(DotProd_32f, Zet32f, Zet32f, Zet32f);
    TWO(DotProd_32f64f, Zet32f, Zet32f, Zet64f); TWO(DotProd_32fc, Zet32fc, Zet32fc, Zet32fc);
    TWO(DotProd_32fc64fc, Zet32fc, Zet32fc, Zet64fc); TWO(DotProd_32f32fc, Zet32f, Zet32fc, Zet32fc);
    TWO(DotProd_32f32fc64fc, Zet32f, Zet32fc, Zet64fc); TWO(DotProd_64f, Zet64f, Zet64f, Zet64f);
    TWO(DotProd_64fc, Zet64fc, Zet64fc, Zet64fc); TWO(DotProd_64f64fc, Zet64f, Zet64fc, Zet64fc);
    TWO_L(DotProd_32f64f_L, Zet32f, Zet32f, Zet64f); TWO_L(DotProd_32fc64fc_L, Zet32fc, Zet32fc, Zet64fc);
    TWO_L(DotProd_32f32fc64fc_L, Zet32f, Zet32fc, Zet64fc); TWO_L(DotProd_64f_L, Zet64f, Zet64f, Zet64f);
    TWO_L(DotProd_64fc_L, Zet64fc, Zet64fc, Zet64fc); TWO_L(DotProd_64f64fc_L, Zet64f, Zet64fc, Zet64fc);
    return v;
}

TEST(NormStatuses, PointersThenLength) {
    alignas(16) unsigned char in[2][256] = {}, out[64];
    const auto forms = statusForms();
    EXPECT_EQ(forms.size(), 66u);
    for (const auto& f : forms) {
        for (int nullAt = -1; nullAt < f.pointers; ++nullAt) {
            for (long long len : {0LL, -1LL, 4LL}) {
                if (nullAt < 0 && len > 0) continue;
                std::memset(out, 0xA5, sizeof out);
                void* p[3] = {in[0], in[1], out};
                if (f.pointers == 2) p[1] = out;
                if (nullAt >= 0) p[nullAt] = nullptr;
                EXPECT_EQ(f.call(p, len), nullAt >= 0 ? zetStsNullPtrErr : zetStsSizeErr) << f.name << " null at " << nullAt << " len " << len;
                for (unsigned char b : out) ASSERT_EQ(b, 0xA5) << f.name << " wrote on error";
            }
        }
    }
}

}  // namespace
