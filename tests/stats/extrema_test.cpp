// Extrema against a strict scalar scan: first occurrences with equal best
// values planted in different lanes at every length 1..100 and placement,
// value forms, both ends, element-wise forms, the order with its flag and
// warning, and the check-order departures of the family.
#include <gtest/gtest.h>

#include <cfenv>
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

// What a form compares: the element or its magnitude (as a wide number, so
// that the lowest integer has one).
template <class T> auto magnitude(T x) {
    if constexpr (std::is_floating_point_v<T>) return std::fabs(x);
    else return x < 0 ? -static_cast<long long>(x) : static_cast<long long>(x);
}
// A magnitude delivered in the element type saturates.
template <class T, class K> T delivered(K k) {
    if constexpr (std::is_integral_v<T>) return static_cast<T>(std::min<long long>(k, std::numeric_limits<T>::max()));
    else return static_cast<T>(k);
}

struct Found {
    double value;
    long long index;
};
// The strict scan: a later element replaces the candidate only if strictly
// better, so the first occurrence stays (and a NaN first element too).
template <class T>
Found refScan(const std::vector<T>& x, long long n, bool abs, bool greatest) {
    auto key = [&](long long i) { return abs ? static_cast<double>(magnitude(x[i])) : static_cast<double>(x[i]); };
    double best = key(0);
    long long at = 0;
    for (long long i = 1; i < n; ++i)
        if (greatest ? key(i) > best : key(i) < best) best = key(i), at = i;
    return {abs ? static_cast<double>(delivered<T>(magnitude(x[at]))) : static_cast<double>(x[at]), at};
}

template <class T>
struct IndexForm {
    std::string name;
    bool abs, greatest, isLong;
    std::function<ZetStatus(const T*, long long, T*, long long*)> call;
};
#define IF_PLAIN(B, T, ABS, GREAT)                                                                    \
    IndexForm<Zet##T>{#B "_" #T, ABS, GREAT, false, [](const Zet##T* s, long long n, Zet##T* v, long long* i) { \
        int k = -1;                                                                                   \
        const ZetStatus st = zets##B##_##T(s, static_cast<int>(n), v, i ? &k : nullptr);             \
        if (i) *i = k;                                                                                \
        return st;                                                                                    \
    }}
#define IF_LONG(B, T, ABS, GREAT) \
    IndexForm<Zet##T>{#B "_" #T "_L", ABS, GREAT, true, [](const Zet##T* s, long long n, Zet##T* v, long long* i) { return zets##B##_##T##_L(s, n, v, i); }}
#define IF_ALL(T, L)                                                                                          \
    L(MaxIndx, T, false, true), L(MinIndx, T, false, false), L(MaxAbsIndx, T, true, true), L(MinAbsIndx, T, true, false)

template <class T> std::vector<IndexForm<T>> indexForms();
template <> std::vector<IndexForm<Zet16s>> indexForms() { return {IF_ALL(16s, IF_PLAIN)}; }
template <> std::vector<IndexForm<Zet32s>> indexForms() { return {IF_ALL(32s, IF_PLAIN)}; }
template <> std::vector<IndexForm<float>> indexForms() { return {IF_ALL(32f, IF_PLAIN), IF_ALL(32f, IF_LONG)}; }
template <> std::vector<IndexForm<double>> indexForms() { return {IF_ALL(64f, IF_PLAIN), IF_ALL(64f, IF_LONG)}; }

template <class T> struct Values {
    std::function<ZetStatus(const T*, int, T*)> max, min, maxAbs, minAbs;
};
#define VALUES(T) Values<Zet##T>{zetsMax_##T, zetsMin_##T, zetsMaxAbs_##T, zetsMinAbs_##T}
template <class T> Values<T> values();
template <> Values<Zet16s> values() { return VALUES(16s); }
template <> Values<Zet32s> values() { return VALUES(32s); }
template <> Values<float> values() { return VALUES(32f); }
template <> Values<double> values() { return VALUES(64f); }

template <class T> class Positions : public ::testing::Test {};
using PositionTypes = ::testing::Types<Zet16s, Zet32s, float, double>;
TYPED_TEST_SUITE(Positions, PositionTypes);

// Data of each kind, per form: values in [-1000, 1000] with the best value
// planted at two positions a random distance apart (so in different lanes),
// with equal signs and, for magnitudes, opposite ones; many ties in [-20, 20]
// with NaNs among floats (a NaN never becomes the candidate unless it is the
// first element); and values up to 30000 with the lowest planted (its
// magnitude saturates in 16s and 32s). The value forms on all but the NaNs.
enum Data { kPlanted, kFlipped, kTies, kNaNFirst, kLowest };
template <class T> void fill(std::vector<T>& x, Data kind, bool abs, bool greatest, std::mt19937_64& rng) {
    const long long n = static_cast<long long>(x.size());
    const int span = kind == kLowest ? 30000 : kind == kTies || kind == kNaNFirst ? 20 : 1000;
    for (T& v : x) v = static_cast<T>(static_cast<long long>(rng() % (2 * span + 1)) - span);
    if (kind == kLowest && n > 3) x[rng() % n] = std::numeric_limits<T>::lowest();
    if constexpr (std::is_floating_point_v<T>) {
        if (kind == kTies || kind == kNaNFirst)
            for (long long k = 0; k < n / 7; ++k) x[rng() % n] = std::numeric_limits<T>::quiet_NaN();
        if (kind == kNaNFirst) x[0] = -std::numeric_limits<T>::quiet_NaN();
    }
    if ((kind != kPlanted && kind != kFlipped) || n < 2) return;
    const T best = static_cast<T>(abs ? (greatest ? 5000 : 0) : (greatest ? 5000 : -5000));
    const long long i = static_cast<long long>(rng() % n), j = static_cast<long long>(rng() % n);
    x[std::min(i, j)] = best;
    x[std::max(i, j)] = kind == kFlipped && abs ? static_cast<T>(-best) : best;
    if (abs && !greatest)  // no other zero
        for (long long k = 0; k < n; ++k)
            if (k != i && k != j && x[k] == 0) x[k] = 1;
}

TYPED_TEST(Positions, FirstOccurrenceWinsAtEveryLengthAndPlacement) {
    using T = TypeParam;
    std::mt19937_64 rng(61);
    sref::Arena arena(1, 5000 * sizeof(T));
    const Values<T> vf = values<T>();
    std::vector<int> lengths;
    for (int n = 1; n <= 100; ++n) lengths.push_back(n);
    for (int n : zettest::kernelLengths())
        if (n > 100) lengths.push_back(n);
    for (int n : lengths)
        for (Data kind : {kPlanted, kFlipped, kTies, kNaNFirst, kLowest}) {
            if (kind == kNaNFirst && !std::is_floating_point_v<T>) continue;
            std::vector<T> x(n);
            for (const auto& f : indexForms<T>()) {
                fill(x, kind, f.abs, f.greatest, rng);
                const Found want = refScan(x, n, f.abs, f.greatest);
                for (const Placement& p : zettest::placementsFor(sizeof(T))) {
                    const T* src = arena.put(0, x, p);
                    T v;
                    long long at = -1;
                    ASSERT_EQ(f.call(src, n, &v, &at), zetStsOk) << f.name;
                    ASSERT_EQ(at, want.index) << f.name << " len " << n << " " << p.name() << " data " << kind;
                    ASSERT_TRUE(sref::same(static_cast<double>(v), want.value)) << f.name << " len " << n << " " << p.name() << " data " << kind;
                }
            }
            if (kind == kTies || kind == kNaNFirst) continue;
            for (const Placement& p : zettest::placementsFor(sizeof(T))) {
                const T* src = arena.put(0, x, p);
                T got[4];
                ASSERT_EQ(vf.max(src, n, &got[0]), zetStsOk);
                ASSERT_EQ(vf.min(src, n, &got[1]), zetStsOk);
                ASSERT_EQ(vf.maxAbs(src, n, &got[2]), zetStsOk);
                ASSERT_EQ(vf.minAbs(src, n, &got[3]), zetStsOk);
                for (int k = 0; k < 4; ++k)
                    ASSERT_EQ(got[k], static_cast<T>(refScan(x, n, k >= 2, k % 2 == 0).value)) << "value form " << k << " len " << n << " " << p.name();
            }
        }
}

// ---- both ends ----------------------------------------------------------------------------------
template <class T>
struct EndsForm {
    std::string name;
    std::function<ZetStatus(const T*, long long, T*, T*)> minMax;
    std::function<ZetStatus(const T*, long long, T*, long long*, T*, long long*)> minMaxIndx;
};
#define ENDS(T)                                                                                                     \
    EndsForm<Zet##T>{#T, [](const Zet##T* s, long long n, Zet##T* a, Zet##T* b) { return zetsMinMax_##T(s, int(n), a, b); }, \
                     [](const Zet##T* s, long long n, Zet##T* a, long long* ai, Zet##T* b, long long* bi) {        \
                         int x = -1, y = -1;                                                                        \
                         const ZetStatus st = zetsMinMaxIndx_##T(s, int(n), a, &x, b, &y);                          \
                         *ai = x, *bi = y;                                                                          \
                         return st;                                                                                 \
                     }}
#define ENDS_L(T) EndsForm<Zet##T>{#T "_L", zetsMinMax_##T##_L, zetsMinMaxIndx_##T##_L}

template <class T> std::vector<EndsForm<T>> endsForms();
template <> std::vector<EndsForm<Zet8u>> endsForms() { return {ENDS(8u)}; }
template <> std::vector<EndsForm<Zet16u>> endsForms() { return {ENDS(16u)}; }
template <> std::vector<EndsForm<Zet16s>> endsForms() { return {ENDS(16s)}; }
template <> std::vector<EndsForm<Zet32u>> endsForms() { return {ENDS(32u)}; }
template <> std::vector<EndsForm<Zet32s>> endsForms() { return {ENDS(32s)}; }
template <> std::vector<EndsForm<float>> endsForms() { return {ENDS(32f), ENDS_L(32f)}; }
template <> std::vector<EndsForm<double>> endsForms() { return {ENDS(64f), ENDS_L(64f)}; }

template <class T> class BothEnds : public ::testing::Test {};
using EndsTypes = ::testing::Types<Zet8u, Zet16u, Zet16s, Zet32u, Zet32s, float, double>;
TYPED_TEST_SUITE(BothEnds, EndsTypes);

// Ties of both ends planted in different lanes; the positions are the first
// elements equal to each end.
TYPED_TEST(BothEnds, FirstOccurrenceOfEachEnd) {
    using T = TypeParam;
    std::mt19937_64 rng(64);
    sref::Arena arena(1, 300 * sizeof(T));
    const T lo = std::numeric_limits<T>::lowest(), hi = std::numeric_limits<T>::max();
    for (long long n = 1; n <= 100; ++n) {
        std::vector<T> x(n);
        for (T& v : x) v = static_cast<T>(rng() % 100 + 10);
        for (int k = 0; k < 2; ++k) x[rng() % n] = lo, x[rng() % n] = hi;
        const Found wantLo = refScan(x, n, false, false), wantHi = refScan(x, n, false, true);
        for (const auto& f : endsForms<T>()) {
            for (const Placement& p : zettest::placementsFor(sizeof(T))) {
                const T* src = arena.put(0, x, p);
                T a, b, c, d;
                long long ai = -1, bi = -1;
                ASSERT_EQ(f.minMax(src, n, &a, &b), zetStsOk);
                ASSERT_EQ(f.minMaxIndx(src, n, &c, &ai, &d, &bi), zetStsOk);
                ASSERT_EQ(a, static_cast<T>(wantLo.value)) << f.name << " " << n << " " << p.name();
                ASSERT_EQ(b, static_cast<T>(wantHi.value)) << f.name << " " << n << " " << p.name();
                ASSERT_EQ(c, a);
                ASSERT_EQ(d, b);
                ASSERT_EQ(ai, wantLo.index) << f.name << " " << n << " " << p.name();
                ASSERT_EQ(bi, wantHi.index) << f.name << " " << n << " " << p.name();
            }
        }
    }
}

// ---- element-wise -------------------------------------------------------------------------------
template <class T>
struct EveryForm {
    std::string name;
    bool greatest, inPlace;
    std::function<ZetStatus(const T*, const T*, T*, int)> call;  // in place: b is dst
};
#define EV(T) EveryForm<Zet##T>{"MaxEvery_" #T, true, false, zetsMaxEvery_##T}, EveryForm<Zet##T>{"MinEvery_" #T, false, false, zetsMinEvery_##T}
#define EVI(T)                                                                                                             \
    EveryForm<Zet##T>{"MaxEvery_" #T "_I", true, true, [](const Zet##T* a, const Zet##T*, Zet##T* d, int n) { return zetsMaxEvery_##T##_I(a, d, n); }}, \
    EveryForm<Zet##T>{"MinEvery_" #T "_I", false, true, [](const Zet##T* a, const Zet##T*, Zet##T* d, int n) { return zetsMinEvery_##T##_I(a, d, n); }}
template <class T> std::vector<EveryForm<T>> everyForms();
template <> std::vector<EveryForm<Zet8u>> everyForms() { return {EV(8u), EVI(8u)}; }
template <> std::vector<EveryForm<Zet16u>> everyForms() { return {EV(16u), EVI(16u)}; }
template <> std::vector<EveryForm<Zet16s>> everyForms() { return {EVI(16s)}; }
template <> std::vector<EveryForm<Zet32s>> everyForms() { return {EVI(32s)}; }
template <> std::vector<EveryForm<float>> everyForms() { return {EV(32f), EVI(32f)}; }
template <> std::vector<EveryForm<double>> everyForms() { return {EV(64f), EVI(64f)}; }

template <class T> class Every : public ::testing::Test {};
using EveryTypes = ::testing::Types<Zet8u, Zet16u, Zet16s, Zet32s, float, double>;
TYPED_TEST_SUITE(Every, EveryTypes);

// b unless a is strictly better: a NaN in either place gives b.
TYPED_TEST(Every, EachElementIsTheSecondUnlessTheFirstIsStrictlyBetter) {
    using T = TypeParam;
    std::mt19937_64 rng(65);
    sref::Arena arena(3, 4200 * sizeof(T));
    for (int n : zettest::kernelLengths()) {
        std::vector<T> a(n), b(n);
        if constexpr (std::is_floating_point_v<T>) {
            zettest::fillFloats(a.data(), n, rng, 6);
            zettest::fillFloats(b.data(), n, rng, 6);
            for (int i = 0; i < n; i += 5) b[i] = a[i];
        } else {
            zettest::fillBytes(a.data(), n * sizeof(T), rng);
            zettest::fillBytes(b.data(), n * sizeof(T), rng);
        }
        for (const auto& f : everyForms<T>()) {
            for (const Placement& p : zettest::placementsFor(sizeof(T))) {
                const T* sa = arena.put(0, a, p);
                T* sb = arena.put(1, b, {Placement::Tail, 0});
                T* d = f.inPlace ? sb : arena.put(2, std::vector<T>(n), {Placement::Head, 0});
                ASSERT_EQ(f.call(sa, sb, d, n), zetStsOk);
                for (int i = 0; i < n; ++i) {
                    const T want = (f.greatest ? a[i] > b[i] : a[i] < b[i]) ? a[i] : b[i];
                    ASSERT_EQ(zettest::firstBitMismatch(&d[i], &want, 1), -1) << f.name << " len " << n << " at " << i << " " << p.name();
                }
            }
        }
    }
}

// ---- order ------------------------------------------------------------------------------------------
bool invalidRaised() { return std::fetestexcept(FE_INVALID) != 0; }

// The exponent of the largest finite magnitude, with the warning for a NaN
// or an infinity and the invalid-operation flag cleared; alone, and among
// elements of 0.25 that fill the wide loops.
template <class T> void expectOrder(std::vector<T> x0, int order, ZetStatus status) {
    T largestFinite = 0;
    for (T v : x0)
        if (std::isfinite(v)) largestFinite = std::max(largestFinite, std::fabs(v));
    for (int n : {1, 40}) {
        std::vector<T> x(x0);
        int want = order, got = 99;
        if (n > 1) {
            x.assign(n, T(0.25));
            for (std::size_t k = 0; k < x0.size(); ++k) x[17 + 9 * k] = x0[k];
            if (largestFinite <= T(0.25)) want = -1;
        }
        std::feclearexcept(FE_ALL_EXCEPT);
        ZetStatus st;
        if constexpr (sizeof(T) == 4) st = zetsMaxOrder_32f(x.data(), static_cast<int>(x.size()), &got);
        else st = zetsMaxOrder_64f(x.data(), static_cast<int>(x.size()), &got);
        EXPECT_EQ(st, status) << x0[0] << " " << n;
        EXPECT_EQ(got, want) << x0[0] << " " << n;
        EXPECT_FALSE(invalidRaised()) << "the invalid-operation flag is cleared";
    }
}

TEST(MaxOrder, ExponentOfTheLargestMagnitude) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = INFINITY, den = std::numeric_limits<float>::denorm_min();
    const double dn = std::numeric_limits<double>::quiet_NaN();
    const ZetStatus ok = zetStsOk, warn = zetStsNonFiniteWarn;
    expectOrder<float>({0.0f}, 0, ok);  expectOrder<float>({1.0f}, 1, ok);  expectOrder<float>({-1.0f, 0.5f}, 1, ok);
    expectOrder<float>({0.5f}, 0, ok);  expectOrder<float>({nan, 1.0f}, 1, warn);  expectOrder<float>({1.0f, nan}, 1, warn);
    expectOrder<float>({-inf, 3.0f}, 2, warn);  expectOrder<float>({den}, -126, ok);  expectOrder<float>({-0.0f, 0.0f}, 0, ok);
    expectOrder<float>({nan}, 0, warn);  expectOrder<float>({std::numeric_limits<float>::max()}, 128, ok);
    expectOrder<double>({1.0}, 1, ok);  expectOrder<double>({0.5, -0.25}, 0, ok);  expectOrder<double>({dn, 4.0}, 3, warn);
    expectOrder<double>({std::numeric_limits<double>::denorm_min()}, -1022, ok);  expectOrder<double>({0.0}, 0, ok);
}

// A flag already set on entry takes the second pass (no warning for finite
// data) and is cleared; other flags are left as they were.
TEST(MaxOrder, InvalidFlagOnEntry) {
    const std::vector<float> x(50, 3.0f);
    std::feclearexcept(FE_ALL_EXCEPT);
    std::feraiseexcept(FE_INVALID | FE_OVERFLOW);
    int order = 0;
    EXPECT_EQ(zetsMaxOrder_32f(x.data(), 50, &order), zetStsOk);
    EXPECT_EQ(order, 2);
    EXPECT_FALSE(invalidRaised());
    EXPECT_TRUE(std::fetestexcept(FE_OVERFLOW));
    std::feclearexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(zetsMaxOrder_32f(x.data(), 50, &order), zetStsOk);
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
}

TEST(MaxOrder, IntegerVectorsCountSignificantBits) {
    struct Case { std::vector<Zet16s> x; int order; };
    const Case cases[] = {{{0}, 0}, {{1}, 1}, {{-1, 0}, 1}, {{3, -2}, 2}, {{0x4000}, 15}, {{-32768}, 16}, {{32767}, 15}};
    for (const Case& c : cases) {
        std::vector<Zet16s> x(37, 0);
        for (std::size_t k = 0; k < c.x.size(); ++k) x[5 + 11 * k] = c.x[k];
        int order = 99;
        EXPECT_EQ(zetsMaxOrder_16s(x.data(), 37, &order), zetStsOk);
        EXPECT_EQ(order, c.order);
        std::vector<Zet32s> y(x.begin(), x.end());
        EXPECT_EQ(zetsMaxOrder_32s(y.data(), 37, &order), zetStsOk);
        EXPECT_EQ(order, c.order);
    }
    const Zet32s lowest = INT_MIN;
    int order = 0;
    EXPECT_EQ(zetsMaxOrder_32s(&lowest, 1, &order), zetStsOk);
    EXPECT_EQ(order, 32);
}

// ---- statuses ------------------------------------------------------------------------------------------
// The family's departures from the usual order, each asserted with nothing
// written on an error.
TEST(ExtremaStatuses, DeparturesFromTheUsualOrder) {
    const float src[4] = {1, 7, 3, 7};
    float v = 0, w = 0;
    int i = -1;
    long long li = -1;
    // A null position pointer turns MaxIndx and MinIndx into the value forms.
    EXPECT_EQ(zetsMaxIndx_32f(src, 4, &v, nullptr), zetStsOk);
    EXPECT_EQ(v, 7.0f);
    EXPECT_EQ(zetsMinIndx_32f(src, 4, &v, nullptr), zetStsOk);
    EXPECT_EQ(v, 1.0f);
    EXPECT_EQ(zetsMaxIndx_32f_L(src, 4, &v, nullptr), zetStsOk);
    EXPECT_EQ(v, 7.0f);
    EXPECT_EQ(zetsMaxIndx_32f(src, 0, &v, nullptr), zetStsSizeErr);
    EXPECT_EQ(zetsMaxIndx_32f(nullptr, 0, &v, &i), zetStsNullPtrErr);
    EXPECT_EQ(zetsMaxIndx_32f(src, 4, nullptr, &i), zetStsNullPtrErr);
    // ... but not the magnitude forms.
    EXPECT_EQ(zetsMaxAbsIndx_32f(src, 4, &v, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsMinAbsIndx_64f_L(nullptr, 4, nullptr, nullptr), zetStsNullPtrErr);
    // The _L forms check pointers before the length.
    EXPECT_EQ(zetsMax_32f_L(nullptr, 0, &v), zetStsNullPtrErr);
    EXPECT_EQ(zetsMinMaxIndx_32f_L(src, 4, &v, &li, &w, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsMinMaxIndx_32f_L(src, 0, &v, &li, &w, &li), zetStsSizeErr);
    // MinMaxIndx: any null pointer, even with a zero length.
    for (int k = 0; k < 5; ++k) {
        const float* s = k == 0 ? nullptr : src;
        float* a = k == 1 ? nullptr : &v;
        int* ai = k == 2 ? nullptr : &i;
        float* b = k == 3 ? nullptr : &w;
        int* bi = k == 4 ? nullptr : &i;
        v = w = -9, i = -9;
        EXPECT_EQ(zetsMinMaxIndx_32f(s, 0, a, ai, b, bi), zetStsNullPtrErr) << k;
        EXPECT_TRUE(v == -9 && w == -9 && i == -9) << "written on error";
    }
    // MaxOrder checks the length first.
    int order = 5;
    EXPECT_EQ(zetsMaxOrder_32f(nullptr, 0, &order), zetStsSizeErr);
    EXPECT_EQ(zetsMaxOrder_16s(nullptr, -3, nullptr), zetStsSizeErr);
    EXPECT_EQ(zetsMaxOrder_64f(nullptr, 1, &order), zetStsNullPtrErr);
    EXPECT_EQ(order, 5);
    // Every: out-of-place forms and 64f_I refuse only 0; a negative length runs nothing.
    float d[4] = {-1, -1, -1, -1};
    const double dd[2] = {1, 2};
    double dsd[2] = {3, 4};
    EXPECT_EQ(zetsMaxEvery_32f(src, src, d, 0), zetStsSizeErr);
    EXPECT_EQ(zetsMaxEvery_32f(src, src, d, -1), zetStsOk);
    EXPECT_EQ(d[0], -1.0f);
    EXPECT_EQ(zetsMinEvery_64f_I(dd, dsd, -1), zetStsOk);
    EXPECT_EQ(zetsMinEvery_64f_I(dd, dsd, 0), zetStsSizeErr);
    EXPECT_EQ(zetsMaxEvery_32f_I(src, d, -1), zetStsSizeErr);
    EXPECT_EQ(zetsMaxEvery_16s_I(nullptr, nullptr, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsMaxEvery_8u(nullptr, nullptr, nullptr, -1), zetStsNullPtrErr);
    EXPECT_EQ(d[0], -1.0f);
}

}  // namespace
