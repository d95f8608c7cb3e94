// Thresholds against scalar references written from the rules: the real
// forms bit for bit over every length and placement (in place and not), the
// complex forms against magnitudes in long double, and the check order.
#include <gtest/gtest.h>

#include <immintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::bitsOf;
using zettest::fromBits;
using zettest::GuardedRegion;
using zettest::Placement;

template <class T> constexpr bool kFloat = std::is_floating_point_v<T>;
template <class T> using Bits = std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>;

// ---- real references --------------------------------------------------------------
// The processor's maximum and minimum: the second operand unless the first compares greater (less).
template <class T> T procMax(T x, T l) { return x > l ? x : l; }
template <class T> T procMin(T x, T l) { return x < l ? x : l; }

// |x| raised to (Up) or lowered to the level, sign kept. Floats compare
// the magnitude's bits with the level's as signed integers.
template <class T, bool Up> T absLimit(T x, T level) {
    if constexpr (kFloat<T>) {
        const Bits<T> sign = Bits<T>(1) << (sizeof(T) * 8 - 1);
        const Bits<T> m = static_cast<Bits<T>>(bitsOf(x)) & ~sign, l = static_cast<Bits<T>>(bitsOf(level));
        const Bits<T> r = Up ? (m > l ? m : l) : (m < l ? m : l);
        return fromBits<T>(static_cast<std::uint64_t>(r | (static_cast<Bits<T>>(bitsOf(x)) & sign)));
    } else {
        const long long v = x, l = level;
        return static_cast<T>(v >= 0 ? (Up ? std::max(v, l) : std::min(v, l)) : (Up ? std::min(v, -l) : std::max(v, -l)));
    }
}
template <class T> T magnitudeBelow(T x, T level, T value) {
    if constexpr (kFloat<T>) return std::fabs(x) < level ? value : x;
    else return std::llabs(static_cast<long long>(x)) < static_cast<long long>(level) ? value : x;
}
template <class T> T inverse(T x, T level) {
    const T a = std::fabs(x) < level ? std::copysign(level, x) : x;
    return T(1) / a;
}

// One form with its constants bound: out of place, in place, and the
// reference (for the complex forms, a result with how exact it is).
template <class T, class W = T> struct Form {
    std::string name;
    std::function<ZetStatus(const T*, T*, int)> out;
    std::function<ZetStatus(T*, int)> in;
    std::function<W(T)> ref;
};

#define FORM(NAME, ARGS, REF)                                                                          \
    Form<E>{#NAME, [=](const E* s, E* d, int n) { return zetsThreshold_##NAME(s, d, n, ARGS); },      \
            [=](E* sd, int n) { return zetsThreshold_##NAME##_I(sd, n, ARGS); }, [=](E x) { return REF; }}
#define COMMA ,

// The forms every real type has.
#define BASE_FORMS(T)                                                                                         \
    FORM(LT_##T, l, procMax(x, l)), FORM(GT_##T, l, procMin(x, l)), FORM(LTAbs_##T, l, (absLimit<E, true>(x, l))), \
        FORM(GTAbs_##T, l, (absLimit<E, false>(x, l))), FORM(LTAbsVal_##T, l COMMA v, magnitudeBelow(x, l, v)),   \
        FORM(LTValGTVal_##T, lo COMMA vlo COMMA l COMMA v, (x > l ? v : x < lo ? vlo : x))
#define VAL_FORMS(T)                                                                                    \
    FORM(T, l COMMA 0, procMax(x, l)), FORM(T, l COMMA 4, procMin(x, l)),                               \
        FORM(GTVal_##T, l COMMA v, (x <= l ? x : v)), FORM(LTVal_##T, l COMMA v, (x >= l ? x : v))
#define FLOAT_FORMS(T)                                                                                 \
    FORM(LTInv_##T, l, inverse(x, l)),                                                                  \
        Form<E>{"LTAbs_" #T "_L", [=](const E* s, E* d, int n) { return zetsThreshold_LTAbs_##T##_L(s, d, n, l); }, \
                [=](E* sd, int n) { return zetsThreshold_LTAbs_##T##_I_L(sd, n, l); }, [=](E x) { return absLimit<E, true>(x, l); }}

// l: the level (not negative), v: a value; lo, vlo: the lower level and its value.
std::vector<Form<Zet16s>> forms(Zet16s l, Zet16s v, Zet16s lo, Zet16s vlo) {
    using E = Zet16s;
    return {BASE_FORMS(16s), VAL_FORMS(16s)};
}
std::vector<Form<Zet32s>> forms(Zet32s l, Zet32s v, Zet32s lo, Zet32s vlo) {
    using E = Zet32s;
    return {BASE_FORMS(32s)};
}
std::vector<Form<Zet32f>> forms(Zet32f l, Zet32f v, Zet32f lo, Zet32f vlo) {
    using E = Zet32f;
    return {BASE_FORMS(32f), VAL_FORMS(32f), FLOAT_FORMS(32f)};
}
std::vector<Form<Zet64f>> forms(Zet64f l, Zet64f v, Zet64f lo, Zet64f vlo) {
    using E = Zet64f;
    return {BASE_FORMS(64f), VAL_FORMS(64f), FLOAT_FORMS(64f)};
}

// Inputs: specials and values at, beside and mirrored around the level.
template <class T> void fillAround(T* p, std::size_t n, T level, std::mt19937_64& rng) {
    if constexpr (kFloat<T>) {
        zettest::fillFloats(p, n, rng, 4);
        for (std::size_t i = 0; i < n; i += 3) {
            const T near[] = {level, -level, std::nextafter(level, T(0)), std::nextafter(level, T(10)), -std::nextafter(level, T(0)), T(0), -T(0)};
            p[i] = near[rng() % 7];
        }
    } else {
        for (std::size_t i = 0; i < n; ++i) p[i] = static_cast<T>(rng());
        for (std::size_t i = 0; i < n; i += 3) {
            const long long l = level;  // wrapped to T on the way in
            const long long near[] = {l, -l, l - 1, l + 1, 1 - l, -1 - l, 0,
                                      std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
            p[i] = static_cast<T>(near[rng() % 9]);
        }
    }
}

template <class T> std::string show(T v) {
    std::ostringstream o;
    if constexpr (kFloat<T>) o << v << " " << zettest::hexBits(v);
    else if constexpr (std::is_integral_v<T>) o << v;
    else o << "(" << show(v.re) << ", " << show(v.im) << ")";
    return o.str();
}
template <class T> bool matches(T got, T want) { return std::memcmp(&got, &want, sizeof(T)) == 0; }

// Every form at every length, at each placement out of place and in place,
// every element against the reference. `strict`: only zetStsOk may come back.
template <class T, class W, class Fill>
void sweep(const std::vector<Form<T, W>>& forms, const std::string& level, Fill fill, std::initializer_list<Placement> places, bool strict) {
    std::mt19937_64 rng(sizeof(T) * 31 + forms.size());
    for (const auto& f : forms)
        for (int len : zettest::kernelLengths()) {
            const std::size_t n = static_cast<std::size_t>(len);
            GuardedRegion sr(n * sizeof(T) + 128), dr(n * sizeof(T) + 128);
            std::vector<T> data(n);
            fill(data.data(), n, rng);
            for (const Placement& pl : places) {
                T* s = zettest::place<T>(sr, pl, n);
                T* d = zettest::place<T>(dr, pl, n);
                std::memcpy(static_cast<void*>(s), data.data(), n * sizeof(T));
                for (bool inPlace : {false, true}) {
                    if (inPlace) std::memcpy(static_cast<void*>(d), data.data(), n * sizeof(T));
                    const ZetStatus st = inPlace ? f.in(d, len) : f.out(s, d, len);
                    ASSERT_TRUE(strict ? st == zetStsOk : st >= 0) << f.name << " status " << st;
                    for (std::size_t i = 0; i < n; ++i) {
                        T got;
                        std::memcpy(static_cast<void*>(&got), d + i, sizeof got);
                        const W want = f.ref(data[i]);
                        ASSERT_TRUE(matches(got, want)) << f.name << (inPlace ? "_I" : "") << " level " << level << " len " << len << " "
                                                        << pl.name() << " at " << i << ": x " << show(data[i]) << " got " << show(got)
                                                        << " want " << show(want);
                    }
                }
            }
        }
}

template <class T> void sweepReal(std::initializer_list<T> levels, T value, T lowValue) {
    for (T level : levels)
        sweep(forms(level, value, static_cast<T>(-level / 2 - 1), lowValue), show(level),
              [&](T* p, std::size_t n, std::mt19937_64& rng) { fillAround(p, n, level, rng); },
              {{Placement::Tail, 0}, {Placement::Head, 0}, {Placement::Offset, 1}, {Placement::Offset, 3 * sizeof(T) + 2}}, false);
}

TEST(ThresholdReal, EveryFormLengthAndPlacementMatchesTheReference) {
    sweepReal<Zet16s>({1000, 0, 32767}, -7, 99);
    sweepReal<Zet32s>({100000, 0, INT32_MAX}, -7, 99);
    sweepReal<Zet32f>({2.5f, 0.0f, 1e-40f, INFINITY}, -7.0f, 99.0f);
    sweepReal<Zet64f>({2.5, 0.0, 1e-310, 1e300}, -7.0, 99.0);
}

// ---- named points -----------------------------------------------------------------------

// Each element against its result bit for bit.
template <class T> struct Point {
    const char* what;
    std::function<ZetStatus(const T*, T*, int)> fn;
    std::vector<T> x, want;
};
template <class T> void expectPoints(std::initializer_list<Point<T>> points) {
    for (const Point<T>& p : points) {
        std::vector<T> d(p.x.size());
        ASSERT_EQ(p.fn(p.x.data(), d.data(), static_cast<int>(d.size())), zetStsOk) << p.what;
        for (std::size_t i = 0; i < d.size(); ++i) EXPECT_EQ(std::memcmp(&d[i], &p.want[i], sizeof(T)), 0) << p.what << " at " << i << ": " << show(d[i]);
    }
}

TEST(ThresholdReal, NamedPoints) {
    const float nan = std::nanf("0x123"), negNan = -std::nanf("0x45");
    using F = const float*;
    expectPoints<float>({
        {"LT: a NaN element gives the level", [](F s, float* d, int n) { return zetsThreshold_LT_32f(s, d, n, 3); }, {1, 5, nan}, {3, 5, 3}},
        {"GT: the same", [](F s, float* d, int n) { return zetsThreshold_GT_32f(s, d, n, 3); }, {1, 5, nan}, {1, 3, 3}},
        {"relOp 4 acts as GT", [](F s, float* d, int n) { return zetsThreshold_32f(s, d, n, 3, 4); }, {1, 5}, {1, 3}},
        {"GTVal replaces a NaN", [](F s, float* d, int n) { return zetsThreshold_GTVal_32f(s, d, n, 3, -9); }, {nan, 2}, {-9, 2}},
        {"LTVal too", [](F s, float* d, int n) { return zetsThreshold_LTVal_32f(s, d, n, 3, -9); }, {nan, 4}, {-9, 4}},
        {"LTAbs: NaNs keep their bits", [](F s, float* d, int n) { return zetsThreshold_LTAbs_32f(s, d, n, 3); },
         {-1, 1, -5, 0.0f, nan, negNan}, {-3, 3, -5, 3, nan, negNan}},
        {"LTAbsVal", [](F s, float* d, int n) { return zetsThreshold_LTAbsVal_32f(s, d, n, 3, 7); }, {nan, negNan, -2}, {nan, negNan, 7}},
        {"GTAbs", [](F s, float* d, int n) { return zetsThreshold_GTAbs_32f(s, d, n, 2); }, {-1, 1, -5, 0.0f}, {-1, 1, -2, 0.0f}},
    });
    using S = const Zet16s*;
    const std::vector<Zet16s> x{-32768, -3, 3, 0, 32767};
    expectPoints<Zet16s>({
        {"LTAbs 16s", [](S s, Zet16s* d, int n) { return zetsThreshold_LTAbs_16s(s, d, n, 5); }, x, {-32768, -5, 5, 5, 32767}},
        {"GTAbs 16s", [](S s, Zet16s* d, int n) { return zetsThreshold_GTAbs_16s(s, d, n, 5); }, x, {-5, -3, 3, 0, 5}},
        {"LTValGTVal keeps the levels themselves", [](S s, Zet16s* d, int n) { return zetsThreshold_LTValGTVal_16s(s, d, n, -3, -100, 3, 100); },
         x, {-100, -3, 3, 0, 100}},
        {"LTValGTVal accepts equal levels", [](S s, Zet16s* d, int n) { return zetsThreshold_LTValGTVal_16s(s, d, n, 2, -100, 2, 100); },
         x, {-100, -100, 100, -100, 100}},
    });
}

TEST(ThresholdReal, InverseAtLevelZeroWarnsAndMasksTheZeroDivide) {
    const float x[] = {2.0f, 0.0f, -0.0f, 0.25f};
    float d[4];
    const unsigned saved = _mm_getcsr();
    _mm_setcsr(saved & ~0x200u);  // zero-divide unmasked: the kernel must not trap
    const ZetStatus st = zetsThreshold_LTInv_32f(x, d, 4, 0.0f);
    const unsigned after = _mm_getcsr();
    _mm_setcsr(saved);
    EXPECT_EQ(st, zetStsDivByZeroWarn);
    EXPECT_EQ(after & 0x200u, 0u) << "the caller's mask comes back";
    EXPECT_EQ(d[0], 0.5f);
    EXPECT_EQ(d[1], INFINITY);
    EXPECT_EQ(d[2], -INFINITY);
    EXPECT_EQ(d[3], 4.0f);
    EXPECT_EQ(zetsThreshold_LTInv_32f(x, d, 4, 0.5f), zetStsOk);  // zeros are raised to the level first
    EXPECT_EQ(d[1], 2.0f);
    EXPECT_EQ(d[2], -2.0f);
    EXPECT_EQ(d[3], 2.0f);
    const double y[] = {0.0, 4.0};
    double e[2];
    EXPECT_EQ(zetsThreshold_LTInv_64f(y, e, 2, 0.0), zetStsDivByZeroWarn);
    EXPECT_EQ(zetsThreshold_LTInv_64f(y + 1, e, 1, 0.0), zetStsOk);
    EXPECT_EQ(e[0], 0.25);
}

// ---- complex forms ------------------------------------------------------------------------

template <class C> struct CxT;
template <> struct CxT<Zet16sc> { using P = Zet16s; };
template <> struct CxT<Zet32fc> { using P = Zet32f; };
template <> struct CxT<Zet64fc> { using P = Zet64f; };

enum CRule { cLT, cGT, cGTVal, cLTVal, cInv };

// Reference: the magnitude in long double; a result is either an input or
// value (compared bit for bit) or computed (compared within a few units).
template <class C> struct CWant {
    C z;
    bool exact;
};
template <class C> CWant<C> complexRef(CRule r, C z, long double level, C value) {
    const long double a = z.re, b = z.im;
    const bool nan = std::isnan(a) || std::isnan(b);
    const long double m = std::hypot(a, b);
    auto make = [](long double re, long double im) {
        if constexpr (std::is_same_v<C, Zet16sc>) return C{static_cast<Zet16s>(std::nearbyint(re)), static_cast<Zet16s>(std::nearbyint(im))};
        else return C{static_cast<typename CxT<C>::P>(re), static_cast<typename CxT<C>::P>(im)};
    };
    // The direction of z; infinite parts count as 1, the others as 0.
    long double ua = a / m, ub = b / m;
    if (std::isinf(m)) {
        const long double ia = std::isinf(a) ? std::copysign(1.0L, a) : 0, ib = std::isinf(b) ? std::copysign(1.0L, b) : 0;
        const long double k = std::hypot(ia, ib);
        ua = ia / k, ub = ib / k;
    }
    if (m == 0) ua = 1, ub = 0;
    switch (r) {
        case cLT: return !nan && m < level ? CWant<C>{make(ua * level, ub * level), false} : CWant<C>{z, true};
        case cGT: return !nan && m > level ? CWant<C>{make(ua * level, ub * level), false} : CWant<C>{z, true};
        case cGTVal: return {!nan && m <= level ? z : value, true};
        case cLTVal: return {!nan && m >= level ? z : value, true};
        case cInv:
            if (nan) return {make(NAN, NAN), true};
            if (m < level) return {make(ua / level, -ub / level), false};
            if (std::isinf(m)) return {make(std::copysign(0.0L, a), -std::copysign(0.0L, b)), true};
            if (m == 0) return {make(1 / a, -b), true};
            return {make(a / (m * m), -b / (m * m)), false};
    }
    return {z, true};
}

template <class P> bool nearPart(P got, P want, bool exact) {
    if constexpr (std::is_integral_v<P>) return exact ? got == want : std::abs(got - want) <= 1;
    else {
        if (exact) return bitsOf(got) == bitsOf(want) || (std::isnan(got) && std::isnan(want));
        return zettest::ulpDistance(got, want) <= 4 || std::fabs(got - want) <= std::numeric_limits<P>::denorm_min() * 4;
    }
}

template <class C> bool matches(C got, const CWant<C>& w) { return nearPart(got.re, w.z.re, w.exact) && nearPart(got.im, w.z.im, w.exact); }
template <class C> std::string show(const CWant<C>& w) { return show(w.z); }

#define CFORM(NAME, RULE, ARGS)                                                                              \
    Form<C, CWant<C>>{#NAME, [=](const C* s, C* d, int n) { return zetsThreshold_##NAME(s, d, n, ARGS); },   \
                      [=](C* sd, int n) { return zetsThreshold_##NAME##_I(sd, n, ARGS); },                   \
                      [=](C z) { return complexRef(RULE, z, static_cast<long double>(l), v); }}
#define CFORMS(T)                                                                                            \
    CFORM(T, cLT, l COMMA 0), CFORM(T, cGT, l COMMA 4), CFORM(LT_##T, cLT, l), CFORM(GT_##T, cGT, l),        \
        CFORM(GTVal_##T, cGTVal, l COMMA v), CFORM(LTVal_##T, cLTVal, l COMMA v)

// The inverse at level 0 has its own test.
std::vector<Form<Zet16sc, CWant<Zet16sc>>> cforms(Zet16s l, Zet16sc v) {
    using C = Zet16sc;
    return {CFORMS(16sc)};
}
std::vector<Form<Zet32fc, CWant<Zet32fc>>> cforms(Zet32f l, Zet32fc v) {
    using C = Zet32fc;
    std::vector<Form<C, CWant<C>>> f{CFORMS(32fc)};
    if (l != 0) f.push_back(CFORM(LTInv_32fc, cInv, l));
    return f;
}
std::vector<Form<Zet64fc, CWant<Zet64fc>>> cforms(Zet64f l, Zet64fc v) {
    using C = Zet64fc;
    std::vector<Form<C, CWant<C>>> f{CFORMS(64fc)};
    if (l != 0) f.push_back(CFORM(LTInv_64fc, cInv, l));
    return f;
}

template <class C> void fillComplex(C* p, std::size_t n, double level, std::mt19937_64& rng) {
    using P = typename CxT<C>::P;
    if constexpr (std::is_integral_v<P>) {
        for (std::size_t i = 0; i < n; ++i) p[i] = {static_cast<P>(rng() >> (rng() % 16)), static_cast<P>(rng() >> (rng() % 16))};
    } else {
        std::vector<P> parts(2 * n);
        zettest::fillFloats(parts.data(), 2 * n, rng, 6);
        std::memcpy(static_cast<void*>(p), parts.data(), 2 * n * sizeof(P));
    }
    // Magnitudes exactly at the level, at half of it and above it (one nonzero
    // part, so exact at every precision), and zeros.
    const double t[][2] = {{1, 0}, {0, -1}, {-1, 0}, {0, 0}, {0.75, 1}};
    for (std::size_t i = 0; i < n; i += 3) {
        const auto& k = t[rng() % 5];
        const double f = (rng() % 3 == 0) ? 0.5 : 1.0;
        p[i] = {static_cast<P>(k[0] * level * f), static_cast<P>(k[1] * level * f)};
    }
}

template <class C> void sweepComplex(std::initializer_list<typename CxT<C>::P> levels, C value) {
    for (auto level : levels)
        sweep(cforms(level, value), show(level), [&](C* p, std::size_t n, std::mt19937_64& rng) { fillComplex(p, n, level, rng); },
              {{Placement::Tail, 0}, {Placement::Offset, 3}}, true);
}

TEST(ThresholdComplex, EveryFormAndLengthMatchesTheMagnitudeReference) {
    sweepComplex<Zet16sc>({5, 0, 1000, 32767}, Zet16sc{-7, 9});
    sweepComplex<Zet32fc>({5.0f, 0.0f, 1e-30f, 3e38f}, Zet32fc{-7, 9});
    sweepComplex<Zet64fc>({5.0, 0.0, 1e-300, 1e300}, Zet64fc{-7, 9});
}

TEST(ThresholdComplex, NamedPoints) {
    const Zet32fc z[] = {{3, 4}, {0.3f, 0.4f}, {0, 0}, {INFINITY, 1}, {NAN, 1}};
    Zet32fc d[5];
    ASSERT_EQ(zetsThreshold_LT_32fc(z, d, 5, 1), zetStsOk);
    EXPECT_EQ(d[0].re, 3);
    EXPECT_NEAR(d[1].re, 0.6f, 1e-6f);
    EXPECT_NEAR(d[1].im, 0.8f, 1e-6f);
    EXPECT_EQ(d[2].re, 1);  // zero goes to (level, 0)
    EXPECT_EQ(d[2].im, 0);
    EXPECT_TRUE(std::isnan(d[4].re));  // kept
    ASSERT_EQ(zetsThreshold_GT_32fc(z, d, 5, 2), zetStsOk);
    EXPECT_NEAR(d[0].re, 1.2f, 1e-6f);
    EXPECT_NEAR(d[0].im, 1.6f, 1e-6f);
    EXPECT_EQ(d[3].re, 2);
    EXPECT_EQ(d[3].im, 0);
    ASSERT_EQ(zetsThreshold_GTVal_32fc(z, d, 5, 5, Zet32fc{-1, -1}), zetStsOk);  // |3+4i| = 5 is at the level: kept
    EXPECT_EQ(d[0].re, 3);
    EXPECT_EQ(d[3].re, -1);
    EXPECT_EQ(d[4].re, -1);  // a NaN is replaced

    // Inverse: zero at level 0 gives an infinite real part and the warning.
    const Zet64fc w[] = {{0, 4}, {-0.0, 0}};
    Zet64fc e[2];
    EXPECT_EQ(zetsThreshold_LTInv_64fc(w, e, 2, 0), zetStsDivByZeroWarn);
    EXPECT_EQ(e[0].re, 0);
    EXPECT_EQ(e[0].im, -0.25);
    EXPECT_EQ(e[1].re, -INFINITY);
    EXPECT_EQ(zetsThreshold_LTInv_64fc(w, e, 2, 0.5), zetStsOk);
    EXPECT_EQ(e[1].re, 2);
    EXPECT_EQ(e[1].im, 0);

    // Magnitudes far outside the squares' range still compare and invert.
    const Zet64fc big[] = {{3e300, 4e300}, {3e-300, 4e-300}};
    ASSERT_EQ(zetsThreshold_LTInv_64fc(big, e, 2, 0), zetStsOk);
    EXPECT_NEAR(e[0].re / 1.2e-301, 1, 1e-14);
    EXPECT_NEAR(e[0].im / -1.6e-301, 1, 1e-14);
    EXPECT_NEAR(e[1].re / 1.2e299, 1, 1e-14);  // tiny parts: the squares would underflow
    ASSERT_EQ(zetsThreshold_GTVal_64fc(big, e, 2, 5.1e300, Zet64fc{1, 1}), zetStsOk);
    EXPECT_EQ(e[0].re, 3e300);
    ASSERT_EQ(zetsThreshold_GTVal_64fc(big, e, 2, 4.9e300, Zet64fc{1, 1}), zetStsOk);
    EXPECT_EQ(e[0].re, 1);

    const Zet16sc s[] = {{3, 4}, {1, 0}, {0, 0}};
    Zet16sc o[3];
    ASSERT_EQ(zetsThreshold_LT_16sc(s, o, 3, 10), zetStsOk);
    EXPECT_EQ(o[0].re, 6);
    EXPECT_EQ(o[0].im, 8);
    EXPECT_EQ(o[1].re, 10);
    EXPECT_EQ(o[2].re, 10);
}

// ---- checks -------------------------------------------------------------------------------------

TEST(Threshold, StatusOrderAndNothingWrittenOnError) {
    float f[4] = {1, 2, 3, 4}, fd[4] = {-1, -1, -1, -1};
    Zet16s s[4] = {1, 2, 3, 4}, sd[4] = {-1, -1, -1, -1};
    Zet32fc c[4] = {}, cd[4] = {{-1, -1}, {-1, -1}, {-1, -1}, {-1, -1}};
    // Pointers, then the length.
    EXPECT_EQ(zetsThreshold_LT_32f(nullptr, fd, 4, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsThreshold_LT_32f(f, nullptr, 0, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsThreshold_LT_32f_I(nullptr, 0, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsThreshold_LT_32f(f, fd, 0, 1), zetStsSizeErr);
    EXPECT_EQ(zetsThreshold_GTVal_16s(s, sd, -1, 1, 1), zetStsSizeErr);
    // The relation word after the length; any bit outside 4 is refused.
    EXPECT_EQ(zetsThreshold_32f(nullptr, fd, 4, 1, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsThreshold_32f(f, fd, 0, 1, 1), zetStsSizeErr);
    for (int rel : {1, 2, 5, 8, -4, 0x10000}) {
        EXPECT_EQ(zetsThreshold_32f(f, fd, 4, 1, rel), zetStsBadArgErr) << rel;
        EXPECT_EQ(zetsThreshold_16s_I(sd, 4, 1, rel), zetStsBadArgErr) << rel;
        EXPECT_EQ(zetsThreshold_64fc(nullptr, nullptr, 4, -1, rel), zetStsNullPtrErr) << rel;
        EXPECT_EQ(zetsThreshold_32fc(c, cd, 4, -1, rel), zetStsBadArgErr) << rel;  // before the level
    }
    // Negative levels: the magnitude forms, the inverse and the complex forms; not LTAbsVal.
    EXPECT_EQ(zetsThreshold_LTAbs_32f(f, fd, 4, -1), zetStsNegThreshErr);
    EXPECT_EQ(zetsThreshold_LTAbs_16s_I(sd, 4, -1), zetStsNegThreshErr);
    EXPECT_EQ(zetsThreshold_GTAbs_64f(nullptr, nullptr, 4, -1), zetStsNullPtrErr);
    EXPECT_EQ(zetsThreshold_GTAbs_32s_I(reinterpret_cast<Zet32s*>(f), 0, -1), zetStsSizeErr);
    EXPECT_EQ(zetsThreshold_GTAbs_32f(f, fd, 4, -0.5f), zetStsNegThreshErr);
    EXPECT_EQ(zetsThreshold_LTInv_64f_I(reinterpret_cast<double*>(f), 2, -1), zetStsNegThreshErr);
    EXPECT_EQ(zetsThreshold_LT_32fc(c, cd, 4, -1), zetStsNegThreshErr);
    EXPECT_EQ(zetsThreshold_16sc(reinterpret_cast<Zet16sc*>(s), reinterpret_cast<Zet16sc*>(sd), 2, -1, 4), zetStsNegThreshErr);
    EXPECT_EQ(zetsThreshold_LTInv_32fc(c, cd, 4, -1), zetStsNegThreshErr);
    // The 64-bit-length form checks pointers first, then the length.
    EXPECT_EQ(zetsThreshold_LTAbs_64f_L(nullptr, nullptr, 0, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsThreshold_LTAbs_32f_I_L(fd, -5, 1), zetStsSizeErr);
    EXPECT_EQ(zetsThreshold_LTAbs_32f_L(f, fd, 0, -1), zetStsSizeErr);
    // Two levels out of order.
    EXPECT_EQ(zetsThreshold_LTValGTVal_32f(f, fd, 4, 2, 0, 1, 0), zetStsThreshRangeErr);
    EXPECT_EQ(zetsThreshold_LTValGTVal_16s_I(sd, 0, 2, 0, 1, 0), zetStsSizeErr);
    for (float v : fd) EXPECT_EQ(v, -1);
    for (Zet16s v : sd) EXPECT_EQ(v, -1);
    for (const Zet32fc& v : cd) EXPECT_EQ(v.re, -1);
    EXPECT_EQ(zetsThreshold_LTAbs_32f(f, fd, 4, -0.0f), zetStsOk);  // -0 is not negative
    // LTAbsVal takes any level: a negative one replaces nothing.
    EXPECT_EQ(zetsThreshold_LTAbsVal_32f(f, fd, 4, -1, 9), zetStsOk);
    EXPECT_EQ(fd[0], 1);
    EXPECT_EQ(zetsThreshold_LTAbsVal_16s(s, sd, 4, -32768, 9), zetStsOk);
    EXPECT_EQ(sd[0], 1);
}

}  // namespace
