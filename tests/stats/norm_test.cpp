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
// Kd, L1, L1d, L2, L2d in the binary64 order (x . y, |x|, |x - y|, and the
// roots of x . x and (x - y) . (x - y)); the 32 ones in the binary32 orders.
enum Ref { kDot32, kL1_32, kL1d32, kL2_32, kL2d32, kInf, kInfD, kDot, kL1, kL1d, kL2, kL2d };
template <class T> double reference(Ref r, const std::vector<T>& x, const std::vector<T>& y, long long n) {
    auto t64 = [&](auto step) { return sref::total(n, [&](double a, long long i) { return step(a, double(x[i]), double(y[i])); }); };
    auto t32 = [&](auto step) { return double(refTotal32(n, [&](float a, long long i) { return step(a, float(x[i]), float(y[i])); })); };
    double m = 0;
    switch (r) {
        case kDot32: if constexpr (sizeof(T) == 4) return refDot32(x.data(), y.data(), n); else return 0;
        case kL1_32: return t32([](float a, float u, float) { return a + std::fabs(u); });
        case kL1d32: return t32([](float a, float u, float v) { return a + std::fabs(u - v); });
        case kL2_32: if constexpr (sizeof(T) == 4) return refNormL2_32f(x.data(), n); else return 0;
        case kL2d32: return std::sqrt(float(t32([](float a, float u, float v) { return std::fma(u - v, u - v, a); })));
        case kInf: case kInfD:
            for (long long i = 0; i < n; ++i) m = std::max(m, double(std::fabs(r == kInfD ? x[i] - y[i] : x[i])));
            return m;
        case kDot: return t64([](double a, double u, double v) { return std::fma(u, v, a); });
        case kL1: return t64([](double a, double u, double) { return a + std::fabs(u); });
        case kL1d: return t64([](double a, double u, double v) { return a + std::fabs(u - v); });
        case kL2: return std::sqrt(t64([](double a, double u, double) { return std::fma(u, u, a); }));
        case kL2d: return std::sqrt(t64([](double a, double u, double v) { return std::fma(u - v, u - v, a); }));
    }
    return 0;
}

struct FloatCase {
    std::string name;
    Ref ref;
    int vectors;  // 1 or 2 sources
    bool single;
    std::function<double(const void* const*, long long)> call;
};
template <class T, class N, class R> FloatCase fixed(const char* name, Ref ref, ZetStatus (*fn)(const T*, N, R*)) {
    return {name, ref, 1, sizeof(T) == 4, [fn](const void* const* p, long long n) { R r; EXPECT_EQ(fn(static_cast<const T*>(p[0]), N(n), &r), zetStsOk); return double(r); }};
}
template <class T, class N, class R> FloatCase fixed(const char* name, Ref ref, ZetStatus (*fn)(const T*, const T*, N, R*)) {
    return {name, ref, 2, sizeof(T) == 4, [fn](const void* const* p, long long n) {
                R r;
                EXPECT_EQ(fn(static_cast<const T*>(p[0]), static_cast<const T*>(p[1]), N(n), &r), zetStsOk);
                return double(r);
            }};
}
#define FIXED(NAME, REF) fixed(#NAME, REF, zets##NAME)

TEST(FixedOrders, EveryLengthAndPlacement) {
    const FloatCase cases[] = {
        FIXED(DotProd_32f, kDot32), FIXED(Norm_L1_32f, kL1_32), FIXED(NormDiff_L1_32f, kL1d32), FIXED(NormDiff_L2_32f, kL2d32),
        FIXED(Norm_L2_32f, kL2_32), FIXED(Norm_L2_32f_L, kL2_32), FIXED(DotProd_32f64f, kDot), FIXED(DotProd_32f64f_L, kDot),
        FIXED(Norm_Inf_32f, kInf), FIXED(NormDiff_Inf_32f, kInfD), FIXED(Norm_Inf_64f, kInf), FIXED(NormDiff_Inf_64f, kInfD),
        FIXED(DotProd_64f, kDot), FIXED(DotProd_64f_L, kDot), FIXED(Norm_L1_64f, kL1), FIXED(NormDiff_L1_64f, kL1d),
        FIXED(Norm_L2_64f, kL2), FIXED(Norm_L2_64f_L, kL2), FIXED(NormDiff_L2_64f, kL2d),
    };
    std::mt19937_64 rng(81);
    sref::Arena arena(2, 4200 * 8);
    int rootsDiffer = 0;
    for (const auto& c : cases) {
        for (int n : zettest::kernelLengths()) {
            std::vector<float> x32(n), y32(n);
            std::vector<double> x64(n), y64(n);
            // NaN among the elements, but no infinity for the largest magnitude (what it gives there is not fixed).
            const int every = n % 5 == 0 && c.ref != kInf && c.ref != kInfD ? 30 : 0;
            for (auto* v : {&x32, &y32}) zettest::fillFloats(v->data(), n, rng, every);
            for (auto* v : {&x64, &y64}) zettest::fillFloats(v->data(), n, rng, every);
            const double want = c.single ? reference(c.ref, x32, y32, n) : reference(c.ref, x64, y64, n);
            // Norm_L2_32f of a difference vector and NormDiff_L2_32f of its operands take their roots in
            // different precisions: the data must tell the two apart somewhere.
            if (c.ref == kL2_32) rootsDiffer += !sref::same(want, reference(kL2d32, x32, std::vector<float>(n, 0.0f), n));
            for (const Placement& p : zettest::placementsFor(c.single ? 4 : 8))
                for (int moved = 0; moved < c.vectors; ++moved) {
                    const Placement q0 = moved == 0 ? p : Placement{Placement::Tail, 0};
                    const Placement q1 = moved == 1 ? p : Placement{Placement::Head, 0};
                    const void* ptr[2] = {c.single ? (const void*)arena.put(0, x32, q0) : (const void*)arena.put(0, x64, q0),
                                          c.single ? (const void*)arena.put(1, y32, q1) : (const void*)arena.put(1, y64, q1)};
                    const double got = c.call(ptr, n);
                    ASSERT_TRUE(sref::same(got, want)) << c.name << " len " << n << " " << p.name() << " vector " << moved << ": " << got << " want " << want;
                }
        }
    }
    EXPECT_GT(rootsDiffer, 0);
}

// DotProd_32f of 33 elements is one block and one single product; of 36, one
// block and one group: the same products in another order give another sum.
// Lane 0 of the first block loses its ones against 1e8, the other lanes bring
// 8 + 8 + 8 (+ 1 + 1 + 1 for 36); a left-to-right sum would lose every 1.
TEST(FixedOrders, DotProdBlockStructure) {
    std::vector<float> x(36, 1.0f), y(36, 1.0f);
    x[0] = 1e8f;
    for (int n : {33, 36}) {
        float r;
        ASSERT_EQ(zetsDotProd_32f(x.data(), y.data(), n, &r), zetStsOk);
        EXPECT_EQ(r, refDot32(x.data(), y.data(), n)) << n;
        EXPECT_EQ(r, 100000024.0f) << n;
    }
}

// ---- complex norms --------------------------------------------------------------------------------
template <class C> using PartOf = std::conditional_t<std::is_same_v<C, Zet32fc>, float, double>;

template <class C> struct ComplexNorms {
    ZetStatus (*inf)(const C*, int, PartOf<C>*), (*l1)(const C*, int, double*), (*l2)(const C*, int, double*);
    ZetStatus (*l2L)(const C*, long long, double*), (*dInf)(const C*, const C*, int, PartOf<C>*);
    ZetStatus (*dL1)(const C*, const C*, int, double*), (*dL2)(const C*, const C*, int, double*);
};
#define CN(T, INF) {zetsNorm_Inf_##T##INF, zetsNorm_L1_##T##64f, zetsNorm_L2_##T##64f, zetsNorm_L2_##T##64f_L, \
                    zetsNormDiff_Inf_##T##INF, zetsNormDiff_L1_##T##64f, zetsNormDiff_L2_##T##64f}
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
            // The largest magnitude subtracts in the element type, the binary64 forms after widening.
            auto zw = [&](long long i) { return std::pair<double, double>{double(a[i].re) - (diff ? double(b[i].re) : 0), double(a[i].im) - (diff ? double(b[i].im) : 0)}; };
            R largest = 0;
            for (int i = 0; i < n; ++i) {
                const R re = diff ? R(a[i].re - b[i].re) : a[i].re, im = diff ? R(a[i].im - b[i].im) : a[i].im;
                largest = std::max(largest, R(re * re) + R(im * im));
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
                ASSERT_EQ(diff ? f.dInf(sa, sb, n, &inf) : f.inf(sa, n, &inf), zetStsOk);
                ASSERT_EQ(diff ? f.dL1(sa, sb, n, &r1) : f.l1(sa, n, &r1), zetStsOk);
                ASSERT_EQ(diff ? f.dL2(sa, sb, n, &r2) : f.l2(sa, n, &r2), zetStsOk);
                ASSERT_EQ(diff ? f.dL2(sa, sb, n, &r2L) : f.l2L(sa, n, &r2L), zetStsOk);
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
    bool realA, single, dbl;  // A is real; the result is single precision; the data are binary64
    std::function<std::pair<double, double>(const void*, const void*, long long)> call;
};
template <class A, class B, class N, class O> CDot cdot(const char* name, ZetStatus (*fn)(const A*, const B*, N, O*)) {
    return {name, sizeof(A) != sizeof(B), sizeof(O) == 8, sizeof(B) == 16, [fn](const void* a, const void* b, long long n) {
                O r;
                EXPECT_EQ(fn(static_cast<const A*>(a), static_cast<const B*>(b), N(n), &r), zetStsOk);
                return std::pair<double, double>{r.re, r.im};
            }};
}
#define CDOT(S) cdot(#S, zetsDotProd_##S)

TEST(ComplexDots, ExactOnIntegersBoundedOtherwiseAlignmentFree) {
    const CDot forms[] = {CDOT(32fc), CDOT(32fc64fc), CDOT(32fc64fc_L), CDOT(64fc), CDOT(64fc_L), CDOT(32f32fc),
                          CDOT(32f32fc64fc), CDOT(32f32fc64fc_L), CDOT(64f64fc), CDOT(64f64fc_L)};
    std::mt19937_64 rng(84);
    sref::Arena arena(2, 4200 * 16);
    for (const auto& f : forms) {
        const bool dbl = f.dbl;
        const std::size_t part = dbl ? 8 : 4;
        for (int n : zettest::kernelLengths()) {
            for (bool integral : {true, false}) {
                const std::size_t na = f.realA ? n : 2 * n, nb = 2 * n;
                std::vector<double> a(na), b(nb);
                for (auto* v : {&a, &b})
                    for (double& x : *v) x = integral ? double(int(rng() % 201) - 100) : std::ldexp(double(int(rng() % 2000001) - 1000000), -20);
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
                SCOPED_TRACE(std::to_string(n) + " diff " + std::to_string(diff) + " scale " + std::to_string(sc));
                // The norm of a, or the norm of a - b, against its exact value.
                auto check = [&](auto one, auto two, auto want, auto... s) {
                    decltype(want) r;
                    ASSERT_EQ(diff ? two(sa, sb, n, &r, s...) : one(sa, n, &r, s...), zetStsOk);
                    ASSERT_EQ(r, want);
                };
                check(zetsNorm_Inf_16s32f, zetsNormDiff_Inf_16s32f, float(inf));
                check(zetsNorm_L1_16s32f, zetsNormDiff_L1_16s32f, float(l1));
                check(zetsNorm_L2_16s32f, zetsNormDiff_L2_16s32f, float(std::sqrt(double(l2))));
                check(zetsNorm_Inf_16s32s_Sfs, zetsNormDiff_Inf_16s32s_Sfs, rule<Zet32s>(inf, sc), sc);
                check(zetsNorm_L1_16s32s_Sfs, zetsNormDiff_L1_16s32s_Sfs, rule<Zet32s>(l1, sc), sc);
                check(zetsNorm_L1_16s64s_Sfs, zetsNormDiff_L1_16s64s_Sfs, rule<Zet64s>(l1, sc), sc);
                check(zetsNorm_L2Sqr_16s64s_Sfs, zetsNormDiff_L2Sqr_16s64s_Sfs, rule<Zet64s>(l2, sc), sc);
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
        SCOPED_TRACE("len " + std::to_string(n));
        const Placement p{Placement::Offset, static_cast<std::size_t>(n % 29)}, tail{Placement::Tail, 0};
        const Zet16s* sa = arena.put(0, a, p);
        const Zet16s* sb = arena.put(1, b, tail);
        const auto* cb = reinterpret_cast<const Zet16sc*>(sb);
        float f;
        Zet64s l;
        Zet64sc z, w;
        ASSERT_EQ(zetsDotProd_16s32f(sa, sb, n, &f), zetStsOk);
        ASSERT_EQ(zetsDotProd_16s64s(sa, sb, n, &l), zetStsOk);
        ASSERT_EQ(zetsDotProd_16sc64sc(reinterpret_cast<const Zet16sc*>(sa), cb, n, &z), zetStsOk);
        ASSERT_EQ(zetsDotProd_16s16sc64sc(sa, cb, n, &w), zetStsOk);
        ASSERT_EQ(f, float((long long)s16));
        ASSERT_EQ(l, (long long)s16);
        ASSERT_TRUE(z.re == cre && z.im == cim && w.re == rre && w.im == rim);
        const Zet32s* sc32 = arena.put(2, c, p);
        const Zet32s* sd32 = arena.put(3, d, tail);
        const Zet16s* sa2 = arena.put(0, std::vector<Zet16s>(a.begin(), a.begin() + n), p);
        for (int sc : {0, 1, 5, 20, 33, 40, -3, -40}) {
            Zet32s r, q, m;
            ASSERT_EQ(zetsDotProd_16s32s_Sfs(sa2, sb, n, &r, sc), zetStsOk);
            ASSERT_EQ(zetsDotProd_32s_Sfs(sc32, sd32, n, &q, sc), zetStsOk);
            ASSERT_EQ(zetsDotProd_16s32s32s_Sfs(sa2, sd32, n, &m, sc), zetStsOk);
            ASSERT_EQ(r, rule<Zet32s>(s16, std::clamp(sc, -31, 31))) << "scale " << sc;
            ASSERT_EQ(q, rule<Zet32s>(s32, sc)) << "scale " << sc;
            ASSERT_EQ(m, rule<Zet32s>(s1632, sc)) << "scale " << sc;
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
// One source or two, then the result; a scale argument gets 0.
template <class S, class N, class R, class... X> StatusForm st(const char* name, ZetStatus (*fn)(const S*, N, R*, X...)) {
    return {name, 2, [fn](void* const* p, long long n) { return fn(static_cast<const S*>(p[0]), N(n), static_cast<R*>(p[1]), X(0)...); }};
}
template <class A, class B, class N, class R, class... X> StatusForm st(const char* name, ZetStatus (*fn)(const A*, const B*, N, R*, X...)) {
    return {name, 3, [fn](void* const* p, long long n) { return fn(static_cast<const A*>(p[0]), static_cast<const B*>(p[1]), N(n), static_cast<R*>(p[2]), X(0)...); }};
}
#define ST(NAME) st(#NAME, zets##NAME)
#define NORM(S) ST(Norm_##S), ST(NormDiff_##S)

std::vector<StatusForm> statusForms() {
    return {NORM(Inf_16s32f), NORM(Inf_16s32s_Sfs), NORM(Inf_32f), NORM(Inf_32fc32f), NORM(Inf_64f), NORM(Inf_64fc64f),
            NORM(L1_16s32f), NORM(L1_16s32s_Sfs), NORM(L1_16s64s_Sfs), NORM(L1_32f), NORM(L1_32fc64f), NORM(L1_64f),
            NORM(L1_64fc64f), NORM(L2_16s32f), NORM(L2_16s32s_Sfs), NORM(L2_32f), NORM(L2_32fc64f), NORM(L2_64f),
            NORM(L2_64fc64f), NORM(L2Sqr_16s64s_Sfs), ST(Norm_L2_32f_L), ST(Norm_L2_32fc64f_L), ST(Norm_L2_64f_L),
            ST(Norm_L2_64fc64f_L), ST(DotProd_16s32f), ST(DotProd_16s64s), ST(DotProd_16s32s_Sfs), ST(DotProd_32s_Sfs),
            ST(DotProd_16s32s32s_Sfs), ST(DotProd_16sc64sc), ST(DotProd_16s16sc64sc), ST(DotProd_32f), ST(DotProd_32f64f),
            ST(DotProd_32fc), ST(DotProd_32fc64fc), ST(DotProd_32f32fc), ST(DotProd_32f32fc64fc), ST(DotProd_64f),
            ST(DotProd_64fc), ST(DotProd_64f64fc), ST(DotProd_32f64f_L), ST(DotProd_32fc64fc_L), ST(DotProd_32f32fc64fc_L),
            ST(DotProd_64f_L), ST(DotProd_64fc_L), ST(DotProd_64f64fc_L)};
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
