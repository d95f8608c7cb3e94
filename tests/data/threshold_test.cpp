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

// One form with its constants bound: out of place, in place, and the reference.
template <class T> struct Form {
    std::string name;
    std::function<ZetStatus(const T*, T*, int)> out;
    std::function<ZetStatus(T*, int)> in;
    std::function<T(T)> ref;
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
    if constexpr (kFloat<T>) return std::to_string(v) + " " + zettest::hexBits(v);
    else return std::to_string(v);
}

template <class T>
::testing::AssertionResult sameAsReference(const Form<T>& f, const T* src, const T* got, int len) {
    for (int i = 0; i < len; ++i) {
        T x, g;
        std::memcpy(&x, src + i, sizeof x);
        std::memcpy(&g, got + i, sizeof g);
        const T want = f.ref(x);
        if (std::memcmp(&want, &g, sizeof g) != 0)
            return ::testing::AssertionFailure() << f.name << " len " << len << " at " << i << " x " << show(x) << " got "
                                                 << show(g) << " want " << show(want);
    }
    return ::testing::AssertionSuccess();
}

template <class T>
void sweepReal(std::initializer_list<T> levels, T value, T lowValue) {
    std::mt19937_64 rng(sizeof(T) * 31 + kFloat<T>);
    const Placement places[] = {{Placement::Tail, 0}, {Placement::Head, 0}, {Placement::Offset, 1}, {Placement::Offset, 3 * sizeof(T) + 2}};
    for (T level : levels) {
        for (const Form<T>& f : forms(level, value, static_cast<T>(-level / 2 - 1), lowValue)) {
            for (int len : zettest::kernelLengths()) {
                const std::size_t n = static_cast<std::size_t>(len);
                GuardedRegion sr(n * sizeof(T) + 128), dr(n * sizeof(T) + 128);
                std::vector<T> data(n);
                fillAround(data.data(), n, level, rng);
                for (const Placement& pl : places) {
                    T* s = zettest::place<T>(sr, pl, n);
                    T* d = zettest::place<T>(dr, pl, n);
                    std::memcpy(static_cast<void*>(s), data.data(), n * sizeof(T));
                    ASSERT_GE(f.out(s, d, len), 0) << f.name;
                    ASSERT_TRUE(sameAsReference(f, s, d, len)) << pl.name() << " level " << show(level);
                    std::memcpy(static_cast<void*>(d), data.data(), n * sizeof(T));
                    ASSERT_GE(f.in(d, len), 0) << f.name;
                    ASSERT_TRUE(sameAsReference(f, data.data(), d, len)) << "in place " << pl.name() << " level " << show(level);
                }
            }
        }
    }
}

TEST(ThresholdReal, EveryFormLengthAndPlacementMatchesTheReference) {
    sweepReal<Zet16s>({1000, 0, 32767}, -7, 99);
    sweepReal<Zet32s>({100000, 0, INT32_MAX}, -7, 99);
    sweepReal<Zet32f>({2.5f, 0.0f, 1e-40f, INFINITY}, -7.0f, 99.0f);
    sweepReal<Zet64f>({2.5, 0.0, 1e-310, 1e300}, -7.0, 99.0);
}

// ---- named points -----------------------------------------------------------------------

TEST(ThresholdReal, NamedPoints) {
    const float nan = std::nanf("0x123"), negNan = -std::nanf("0x45");
    float d[4];
    const float a[] = {1, 5};
    ASSERT_EQ(zetsThreshold_LT_32f(a, d, 2, 3), zetStsOk);
    EXPECT_EQ(d[0], 3);
    EXPECT_EQ(d[1], 5);
    ASSERT_EQ(zetsThreshold_LT_32f(&nan, d, 1, 3), zetStsOk);  // a NaN element gives the level
    EXPECT_EQ(d[0], 3);
    ASSERT_EQ(zetsThreshold_GT_32f(&nan, d, 1, 3), zetStsOk);
    EXPECT_EQ(d[0], 3);
    ASSERT_EQ(zetsThreshold_32f(a, d, 2, 3, 4), zetStsOk);  // relOp 4 acts as GT
    EXPECT_EQ(d[0], 1);
    EXPECT_EQ(d[1], 3);
    ASSERT_EQ(zetsThreshold_GTVal_32f(&nan, d, 1, 3, -9), zetStsOk);  // a NaN is replaced
    EXPECT_EQ(d[0], -9);
    ASSERT_EQ(zetsThreshold_LTVal_32f(&nan, d, 1, 3, -9), zetStsOk);
    EXPECT_EQ(d[0], -9);

    const float b[] = {-1, 1, -5, 0.0f};
    ASSERT_EQ(zetsThreshold_LTAbs_32f(b, d, 4, 3), zetStsOk);
    EXPECT_EQ(d[0], -3);
    EXPECT_EQ(d[1], 3);
    EXPECT_EQ(d[2], -5);
    EXPECT_EQ(d[3], 3);
    const float nans[] = {nan, negNan};
    ASSERT_EQ(zetsThreshold_LTAbs_32f(nans, d, 2, 3), zetStsOk);  // NaNs keep their bits
    EXPECT_EQ(bitsOf(d[0]), bitsOf(nan));
    EXPECT_EQ(bitsOf(d[1]), bitsOf(negNan));
    ASSERT_EQ(zetsThreshold_LTAbsVal_32f(nans, d, 2, 3, 7), zetStsOk);
    EXPECT_EQ(bitsOf(d[0]), bitsOf(nan));
    EXPECT_EQ(bitsOf(d[1]), bitsOf(negNan));
    ASSERT_EQ(zetsThreshold_GTAbs_32f(b, d, 4, 2), zetStsOk);
    EXPECT_EQ(d[2], -2);
    EXPECT_EQ(d[0], -1);

    const Zet16s s[] = {-32768, -3, 3, 0, 32767};
    Zet16s o[5];
    ASSERT_EQ(zetsThreshold_LTAbs_16s(s, o, 5, 5), zetStsOk);
    const Zet16s ltAbs[] = {-32768, -5, 5, 5, 32767};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(o[i], ltAbs[i]) << i;
    ASSERT_EQ(zetsThreshold_GTAbs_16s(s, o, 5, 5), zetStsOk);
    const Zet16s gtAbs[] = {-5, -3, 3, 0, 5};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(o[i], gtAbs[i]) << i;
    ASSERT_EQ(zetsThreshold_LTValGTVal_16s(s, o, 5, -3, -100, 3, 100), zetStsOk);  // the levels themselves are kept
    const Zet16s band[] = {-100, -3, 3, 0, 100};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(o[i], band[i]) << i;
    ASSERT_EQ(zetsThreshold_LTValGTVal_16s(s, o, 5, 2, -100, 2, 100), zetStsOk);  // equal levels are accepted
    EXPECT_EQ(o[3], -100);
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

template <class C> using CFn = std::function<ZetStatus(const C*, C*, int)>;
template <class C> using CFnI = std::function<ZetStatus(C*, int)>;
template <class C> struct CForm {
    const char* name;
    CRule rule;
    CFn<C> out;
    CFnI<C> in;
};

#define CFORM(NAME, RULE, ARGS)                                                                          \
    CForm<C>{#NAME, RULE, [=](const C* s, C* d, int n) { return zetsThreshold_##NAME(s, d, n, ARGS); },  \
             [=](C* sd, int n) { return zetsThreshold_##NAME##_I(sd, n, ARGS); }}
#define CFORMS(T)                                                                                        \
    CFORM(T, cLT, l COMMA 0), CFORM(T, cGT, l COMMA 4), CFORM(LT_##T, cLT, l), CFORM(GT_##T, cGT, l),    \
        CFORM(GTVal_##T, cGTVal, l COMMA v), CFORM(LTVal_##T, cLTVal, l COMMA v)

std::vector<CForm<Zet16sc>> cforms(Zet16s l, Zet16sc v) {
    using C = Zet16sc;
    return {CFORMS(16sc)};
}
std::vector<CForm<Zet32fc>> cforms(Zet32f l, Zet32fc v) {
    using C = Zet32fc;
    return {CFORMS(32fc), CFORM(LTInv_32fc, cInv, l)};
}
std::vector<CForm<Zet64fc>> cforms(Zet64f l, Zet64fc v) {
    using C = Zet64fc;
    return {CFORMS(64fc), CFORM(LTInv_64fc, cInv, l)};
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

template <class C>
void sweepComplex(std::initializer_list<typename CxT<C>::P> levels, C value) {
    using P = typename CxT<C>::P;
    std::mt19937_64 rng(sizeof(C));
    for (P level : levels) {
        for (const CForm<C>& f : cforms(level, value)) {
            if (f.rule == cInv && level == 0) continue;  // the zero case has its own test
            for (int len : zettest::kernelLengths()) {
                const std::size_t n = static_cast<std::size_t>(len);
                GuardedRegion sr(n * sizeof(C) + 128), dr(n * sizeof(C) + 128);
                std::vector<C> data(n);
                fillComplex(data.data(), n, level, rng);
                for (const Placement& pl : {Placement{Placement::Tail, 0}, Placement{Placement::Offset, 3}}) {
                    C* s = zettest::place<C>(sr, pl, n);
                    C* d = zettest::place<C>(dr, pl, n);
                    std::memcpy(static_cast<void*>(s), data.data(), n * sizeof(C));
                    for (bool inPlace : {false, true}) {
                        if (inPlace) std::memcpy(static_cast<void*>(d), data.data(), n * sizeof(C));
                        ASSERT_EQ(inPlace ? f.in(d, len) : f.out(s, d, len), zetStsOk) << f.name;
                        for (std::size_t i = 0; i < n; ++i) {
                            C got;
                            std::memcpy(static_cast<void*>(&got), d + i, sizeof got);
                            const CWant<C> want = complexRef(f.rule, data[i], static_cast<long double>(level), value);
                            ASSERT_TRUE(nearPart(got.re, want.z.re, want.exact) && nearPart(got.im, want.z.im, want.exact))
                                << f.name << (inPlace ? "_I" : "") << " level " << level << " len " << len << " at " << i << " z ("
                                << data[i].re << ", " << data[i].im << ") got (" << got.re << ", " << got.im << ") want ("
                                << want.z.re << ", " << want.z.im << ")";
                        }
                    }
                }
            }
        }
    }
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
