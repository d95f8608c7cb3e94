// Magnitude, phase, power and the polar forms against scalar references in
// long double. Every export runs once over a long vector, each result held
// to its bound; then shifted by one element (other neighbours, other lanes)
// and at every length and placement, each result bit for bit as in the long
// run, so that neither the tail, alignment nor a neighbour's fallback can
// change it. Then the special values, the scale rule at ties and
// saturation, and the order of the checks.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "arith/fixed_rule.hpp"
#include "zetsp.h"
#include "zettest.hpp"

namespace {

using LD = long double;
using AR = ::testing::AssertionResult;

// ---- references ------------------------------------------------------------------------------
LD refMagnitude(LD re, LD im) { return std::isinf(re) || std::isinf(im) ? INFINITY : std::sqrt(re * re + im * im); }
LD refPhase(LD re, LD im) { return std::atan2(im, re); }
LD power16(Zet16s x, Zet16s y) { return LD(x) * x + LD(y) * y; }
// The scale rule on a long-double result: times 2^-scale, nearest even, saturated.
Zet16s scaled(LD v, int scale) { return static_cast<Zet16s>(std::fmin(std::fmax(std::nearbyint(std::ldexp(v, -scale)), -32768.0L), 32767.0L)); }

// |got - want| within `bound` units of T's last place at want; NaN,
// infinities and exact zeros (with their signs) must match exactly.
template <class T> AR near(T got, LD want, double bound) {
    const T w = static_cast<T>(want);
    bool ok;
    if (std::isnan(want)) ok = std::isnan(got);
    else if (std::isinf(w) || want == 0) ok = zettest::bitsOf(got) == zettest::bitsOf(w);
    else ok = std::fabs(got - want) <= bound * (std::nextafter(std::fabs(w), T(INFINITY)) - std::fabs(w));
    return ok ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "got " << std::hexfloat << got << " want " << double(want);
}
template <class T> AR same(T got, T want) {
    if (std::memcmp(&got, &want, sizeof got) == 0 || (want != want && got != got)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << std::hexfloat << +got << " want " << +want;
}
AR both(AR a, AR b) { return a ? b : a; }

// ---- the exports: two source parts of P, one or two results of O ---------------------------------
int gScale = 0;  // the scale factor of the _Sfs forms in the current run
template <class P, class O> struct Form {
    using Part = P;
    using Out = O;
    std::string name;
    bool pairIn, pairOut;  // one interleaved source / destination instead of two planes
    int outs;
    std::function<ZetStatus(const P*, const P*, O*, O*, int)> call;
    std::function<AR(P, P, O, O)> check;
};
#define IN1(C) (const C*)a, d
#define IN2 a, b, d
#define CARTESIAN(OP, SUFFIX, P, O, PAIR, ARGS, CHECK, ...) \
    Form<P, O>{#OP "_" #SUFFIX, PAIR, false, 1, [](auto a, auto b, auto d, auto, int n) { (void)b; return zets##OP##_##SUFFIX(ARGS, n __VA_ARGS__); }, CHECK}
#define EIGHT(OP, MAG32, MAG64, M16, S16)                                                                                   \
    std::make_tuple(std::vector<Form<float, float>>{CARTESIAN(OP, 32fc, float, float, true, IN1(Zet32fc), MAG32),           \
                                                    CARTESIAN(OP, 32f, float, float, false, IN2, MAG32)},                   \
                    std::vector<Form<double, double>>{CARTESIAN(OP, 64fc, double, double, true, IN1(Zet64fc), MAG64),       \
                                                      CARTESIAN(OP, 64f, double, double, false, IN2, MAG64)},               \
                    std::vector<Form<Zet16s, float>>{CARTESIAN(OP, 16sc32f, Zet16s, float, true, IN1(Zet16sc), M16),        \
                                                     CARTESIAN(OP, 16s32f, Zet16s, float, false, IN2, M16)},                \
                    std::vector<Form<Zet16s, Zet16s>>{CARTESIAN(OP, 16sc_Sfs, Zet16s, Zet16s, true, IN1(Zet16sc), S16, , gScale), \
                                                      CARTESIAN(OP, 16s_Sfs, Zet16s, Zet16s, false, IN2, S16, , gScale)})
// Magnitude below 1.5 ulp from |z| (so at most one from the correctly rounded
// value), phase within 2, power as fma(re, re, im * im); 16-bit: binary32
// rounded once from the exact value (the phase from binary64: half an ulp
// and a little), _Sfs by the scale rule.
template <class T> AR magnitudeOk(T x, T y, T m, T = 0) { return near(m, refMagnitude(x, y), 1.5); }
template <class T> AR phaseOk(T x, T y, T p, T = 0) { return near(p, refPhase(x, y), 2); }
using S = Zet16s;
const auto kMagnitude = EIGHT(Magnitude, magnitudeOk<float>, magnitudeOk<double>, [](S x, S y, float r, float) { return same(r, float(std::sqrt(power16(x, y)))); },
                              [](S x, S y, S r, S) { return same(r, scaled(std::sqrt(power16(x, y)), gScale)); });
const auto kPhase = EIGHT(Phase, phaseOk<float>, phaseOk<double>, [](S x, S y, float r, float) { return near(r, refPhase(x, y), 0.501); },
                          [](S x, S y, S r, S) { return same(r, scaled(refPhase(x, y), gScale)); });
const auto kPower = EIGHT(PowerSpectr, [](float x, float y, float p, float) { return same(p, std::fma(x, x, y * y)); },
                          [](double x, double y, double p, double) { return same(p, std::fma(x, x, y * y)); },
                          [](S x, S y, float r, float) { return same(r, float(power16(x, y))); },
                          [](S x, S y, S r, S) { return same(r, zet::fixed::rule<S>(zet::fixed::i128{x} * x + zet::fixed::i128{y} * y, gScale)); });

// CartToPolar: bit for bit what Magnitude and Phase give (held to their
// bounds above). PolarToCart: within 1 ulp of magn cos(phase) and magn
// sin(phase), 2 past 2^20 pi (the C library's).
template <class T> AR cartToPolarOk(T x, T y, T m, T p) {
    constexpr int kAt = sizeof(T) == 4 ? 0 : 1;
    T m1, p1;
    std::get<kAt>(kMagnitude)[1].call(&x, &y, &m1, nullptr, 1), std::get<kAt>(kPhase)[1].call(&x, &y, &p1, nullptr, 1);
    return both(same(m, m1), same(p, p1));
}
template <class T> AR polarOk(T m, T p, T re, T im) {
    const double bound = std::fabs(p) <= 0x1p20 * M_PI ? 1 : 2;
    return both(near(re, m * std::cos(LD(p)), bound), near(im, m * std::sin(LD(p)), bound));
}
#define POLAR_FORMS(T, C)                                                                                                      \
    std::vector<Form<Zet##T, Zet##T>>{                                                                                         \
        {"CartToPolar_" #C, true, false, 2, [](auto a, auto, auto m, auto p, int n) { return zetsCartToPolar_##C((const Zet##C*)a, m, p, n); }, cartToPolarOk<Zet##T>}, \
        {"CartToPolar_" #T, false, false, 2, [](auto a, auto b, auto m, auto p, int n) { return zetsCartToPolar_##T(a, b, m, p, n); }, cartToPolarOk<Zet##T>}}, \
    std::vector<Form<Zet##T, Zet##T>>{                                                                                         \
        {"PolarToCart_" #C, false, true, 2, [](auto m, auto p, auto d, auto, int n) { return zetsPolarToCart_##C(m, p, (Zet##C*)d, n); }, polarOk<Zet##T>}, \
        {"PolarToCart_" #T, false, false, 2, [](auto m, auto p, auto re, auto im, int n) { return zetsPolarToCart_##T(m, p, re, im, n); }, polarOk<Zet##T>}}
const auto kPolar32 = std::make_tuple(POLAR_FORMS(32f, 32fc));
const auto kPolar64 = std::make_tuple(POLAR_FORMS(64f, 64fc));

// ---- inputs ------------------------------------------------------------------------------------
// Cartesian pairs: ordinary values, any exponent (subnormals, near overflow),
// ratios near the octant edges 1/2, 1 and 2, specials and signed zeros.
template <class T> void cartesian(std::vector<T>& x, std::vector<T>& y, std::mt19937_64& rng) {
    const std::vector<T> sp = [] { if constexpr (sizeof(T) == 4) return zettest::specialFloats(); else return zettest::specialDoubles(); }();
    constexpr int kMaxExp = std::numeric_limits<T>::max_exponent, kBits = std::numeric_limits<T>::digits;
    std::uniform_real_distribution<double> unit(-1, 1);
    auto any = [&] { return static_cast<T>(std::ldexp(unit(rng), int(rng() % (2 * kMaxExp + kBits)) - kMaxExp - kBits + 1)); };
    zettest::fillFloats(x.data(), x.size(), rng, 0), zettest::fillFloats(y.data(), y.size(), rng, 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        const T edge[] = {T(0.5), T(1), T(2)};
        switch (rng() % 8) {
            case 0: x[i] = any(), y[i] = any(); break;
            case 1: y[i] = x[i] * edge[rng() % 3] * (1 + (T(rng() % 5) - 2) * std::numeric_limits<T>::epsilon()) * (rng() % 2 ? 1 : -1); break;
            case 2: (rng() % 2 ? x[i] : y[i]) = sp[rng() % sp.size()]; break;
            case 3: (rng() % 2 ? x[i] : y[i]) = rng() % 2 ? T(0) : -T(0); break;
            default: break;
        }
    }
}
// Polar pairs: magnitudes as above; phases small, up to 2^20 pi, near
// multiples of pi/2, and one in 64 past 2^20 pi or not finite.
template <class T> void polar(std::vector<T>& m, std::vector<T>& p, std::mt19937_64& rng) {
    cartesian(m, p, rng);
    std::uniform_real_distribution<double> small(-8, 8), large(-0x1p20 * M_PI, 0x1p20 * M_PI);
    const T past[] = {T(0x1p21 * M_PI), T(-1e30), std::numeric_limits<T>::max(), INFINITY, NAN};
    for (T& v : p) {
        const int k = static_cast<int>(rng() % 2000001) - 1000000;
        v = rng() % 64 == 0 ? past[rng() % 5] : static_cast<T>(rng() % 3 == 0 ? large(rng) : rng() % 2 ? small(rng) : k * (M_PI / 2));
    }
}
void shorts(std::vector<Zet16s>& x, std::vector<Zet16s>& y, std::mt19937_64& rng) {
    const Zet16s edge[] = {-32768, 32767, 0, 1, -1};
    for (auto* v : {&x, &y})
        for (Zet16s& e : *v) e = rng() % 4 ? static_cast<Zet16s>(rng()) : edge[rng() % 5];
}

// ---- the sweep -----------------------------------------------------------------------------------
// Each form (each _Sfs form at several scales) on kLong elements, every
// result checked; then from the second element on, and at every length and
// placement, bit for bit the same results.
constexpr int kLong = 1 << 18;
template <class P, class O, class Gen>
void sweep(const std::vector<Form<P, O>>& forms, Gen gen) {
    std::mt19937_64 rng(sizeof(P) * 10 + sizeof(O));
    std::vector<P> x(kLong), y(kLong), pairs(2 * kLong);
    gen(x, y, rng);
    for (int i = 0; i < kLong; ++i) pairs[2 * i] = x[i], pairs[2 * i + 1] = y[i];
    const std::size_t bytes = 4099 * 2 * (sizeof(O) + sizeof(P)) + 128;
    zettest::GuardedRegion rx(bytes), ry(bytes), r0(bytes), r1(bytes);
    for (const auto& f : forms)
        for (int scale : f.name.find("Sfs") != std::string::npos ? std::vector<int>{0, 1, 3, -13, 18} : std::vector<int>{0}) {
            gScale = scale;
            const P* in = f.pairIn ? pairs.data() : x.data();
            const int ip = f.pairIn ? 2 : 1, op = f.pairOut ? 2 : 1;
            std::vector<O> o0(2 * kLong), o1(kLong), s0(2 * kLong), s1(kLong);
            ASSERT_EQ(f.call(in, y.data(), o0.data(), o1.data(), kLong), zetStsOk) << f.name;
            for (int i = 0; i < kLong; ++i)
                ASSERT_TRUE(f.check(x[i], y[i], o0[op * i], f.pairOut ? o0[2 * i + 1] : o1[i])) << f.name << " scale " << scale << " at " << i << ": " << +x[i] << ", " << +y[i];
            ASSERT_EQ(f.call(in + ip, y.data() + 1, s0.data(), s1.data(), kLong - 1), zetStsOk);
            ASSERT_EQ(zettest::firstBitMismatch(s0.data(), o0.data() + op, op * (kLong - 1)), -1) << f.name << " shifted";
            ASSERT_EQ(zettest::firstBitMismatch(s1.data(), o1.data() + 1, f.outs == 2 && op == 1 ? kLong - 1 : 0), -1) << f.name << " shifted";
            for (int n : zettest::kernelLengths())
                for (const auto& pl : zettest::allPlacements()) {
                    P *a = zettest::place<P>(rx, pl, ip * n), *b = zettest::place<P>(ry, pl, n);
                    O *d0 = zettest::place<O>(r0, pl, op * n), *d1 = zettest::place<O>(r1, pl, n);
                    std::memcpy(a, in, ip * n * sizeof(P)), std::memcpy(b, y.data(), n * sizeof(P));
                    ASSERT_EQ(f.call(a, b, d0, d1, n), zetStsOk);
                    ASSERT_EQ(zettest::firstBitMismatch(d0, o0.data(), op * n), -1) << f.name << " len " << n << " " << pl.name();
                    ASSERT_EQ(zettest::firstBitMismatch(d1, o1.data(), f.outs == 2 && op == 1 ? n : 0), -1) << f.name << " len " << n << " " << pl.name();
                }
        }
}
template <class Tuple> void eachTable(const Tuple& t, auto fn) { std::apply([&](const auto&... v) { (fn(v), ...); }, t); }

TEST(Polar, EveryExportAgainstItsReferenceAtEveryLengthAndPlacement) {
    auto run = [](const auto& forms) {
        using P = typename std::decay_t<decltype(forms)>::value_type::Part;
        if constexpr (std::is_same_v<P, Zet16s>) sweep(forms, shorts);
        else sweep(forms, cartesian<P>);
    };
    for (const auto* t : {&kMagnitude, &kPhase, &kPower}) eachTable(*t, run);
    sweep(std::get<0>(kPolar32), cartesian<float>), sweep(std::get<1>(kPolar32), polar<float>);
    sweep(std::get<0>(kPolar64), cartesian<double>), sweep(std::get<1>(kPolar64), polar<double>);
}

// Each pointer null in turn (with length 0 too), then lengths 0 and -1; nothing is written on an error.
TEST(Polar, PointersThenLength) {
    int count = 0;
    auto statuses = [&](const auto& forms) {
        for (const auto& f : forms) {
            ++count;
            alignas(16) unsigned char in[2][64] = {}, out[2][64];
            const int sources = f.pairIn ? 1 : 2, results = f.outs == 2 && !f.pairOut ? 2 : 1;
            for (int nullAt = -1; nullAt < sources + results; ++nullAt)
                for (int len : {0, -1, 3}) {
                    if (nullAt < 0 && len > 0) continue;
                    std::memset(out, 0xA5, sizeof out);
                    using P = typename std::decay_t<decltype(f)>::Part;
                    using O = typename std::decay_t<decltype(f)>::Out;
                    auto ptr = [&](int i, void* p) { return i == nullAt ? nullptr : p; };
                    const ZetStatus st = f.call(static_cast<const P*>(ptr(0, in[0])), static_cast<const P*>(sources == 2 ? ptr(1, in[1]) : in[1]),
                                                static_cast<O*>(ptr(sources, out[0])), static_cast<O*>(results == 2 ? ptr(sources + 1, out[1]) : out[1]), len);
                    EXPECT_EQ(st, nullAt >= 0 ? zetStsNullPtrErr : zetStsSizeErr) << f.name << " null at " << nullAt << " len " << len;
                    for (unsigned char c : out[0]) ASSERT_EQ(c, 0xA5) << f.name << " wrote on an error";
                    for (unsigned char c : out[1]) ASSERT_EQ(c, 0xA5) << f.name << " wrote on an error";
                }
        }
    };
    for (const auto* t : {&kMagnitude, &kPhase, &kPower}) eachTable(*t, statuses);
    eachTable(kPolar32, statuses), eachTable(kPolar64, statuses);
    EXPECT_EQ(count, 32);
}

// ---- named points ------------------------------------------------------------------------------
// The conventions in both precisions: hypot's infinity beside a NaN, atan2's
// signed zeros and infinite angles, no overflow or underflow short of the
// result's own, and the polar products of specials (a row's parts serve as
// magnitude and phase there).
template <class T> void specialRows(const Form<T, T>& magnitude, const Form<T, T>& phase, const Form<T, T>& toCart) {
    const T inf = INFINITY, nan = NAN, big = std::numeric_limits<T>::max() / 2, tiny = std::numeric_limits<T>::denorm_min();
    const T rows[][2] = {{inf, nan}, {nan, -inf}, {nan, 1}, {1, nan}, {0, 0}, {-T(0), 0}, {0, -T(0)}, {-T(0), -T(0)}, {inf, inf},
                         {-inf, inf}, {inf, -inf}, {-inf, -inf}, {inf, 1}, {-inf, -1}, {1, inf}, {-1, -inf}, {-1, 0}, {-1, -T(0)},
                         {big, big}, {-big, big / 3}, {2 * big, 2 * big}, {3 * tiny, 4 * tiny}, {tiny, -tiny}, {big, tiny}, {-tiny, big}};
    for (const auto& r : rows) {
        T m, p, xy[2];
        ASSERT_EQ(magnitude.call(&r[0], &r[1], &m, nullptr, 1), zetStsOk);
        ASSERT_EQ(phase.call(&r[0], &r[1], &p, nullptr, 1), zetStsOk);
        ASSERT_EQ(toCart.call(&r[0], &r[1], &xy[0], &xy[1], 1), zetStsOk);
        EXPECT_TRUE(magnitudeOk(r[0], r[1], m)) << r[0] << ", " << r[1];
        EXPECT_TRUE(phaseOk(r[0], r[1], p)) << r[0] << ", " << r[1];
        EXPECT_TRUE(polarOk(r[0], r[1], xy[0], xy[1])) << r[0] << ", " << r[1];
    }
}
TEST(Polar, SpecialValues) {
    specialRows(std::get<0>(kMagnitude)[1], std::get<0>(kPhase)[1], std::get<1>(kPolar32)[1]);
    specialRows(std::get<1>(kMagnitude)[1], std::get<1>(kPhase)[1], std::get<1>(kPolar64)[1]);
    float f;
    const Zet32fc over{3e38f, 3e38f}, justBelow{2e38f, 2e38f}, infNan{-INFINITY, NAN};
    EXPECT_EQ((zetsMagnitude_32fc(&over, &f, 1), f), INFINITY);  // 4.2e38 overflows binary32
    EXPECT_EQ((zetsMagnitude_32fc(&justBelow, &f, 1), f), 2.828427125e38f);
    EXPECT_EQ((zetsMagnitude_32fc(&infNan, &f, 1), f), INFINITY);
}

// The scale rule where it bites: ties go to even, both ends saturate.
TEST(Polar, ScaledFormsAtTiesAndSaturation) {
    struct Row {
        const std::vector<Form<S, S>>* forms;
        S re, im;
        int scale;
        S want;
    };
    const auto *m = &std::get<3>(kMagnitude), *p = &std::get<3>(kPhase), *w = &std::get<3>(kPower);
    const Row rows[] = {{m, 3, 0, 1, 2},          {m, 5, 0, 1, 2},          {m, 7, 0, 1, 4},           {m, -32768, -32768, 0, 32767},
                        {m, -32768, -32768, 1, 23170}, {m, 3, 4, -13, 32767}, {m, 0, -3, 2, 1},        {w, 1, 1, 2, 0},
                        {w, 3, 0, 1, 4},          {w, 5, 0, 1, 12},         {w, 1, -1, 1, 1},          {w, -32768, -32768, 16, 32767},
                        {w, -32768, -32768, 17, 16384}, {w, 1, 0, -15, 32767}, {w, 181, 181, 40, 0},   {p, -1, 0, -13, 25736},
                        {p, 0, -1, -13, -12868},  {p, -1, -1, -14, -32768}, {p, -5, 0, 0, 3},          {p, 1, 1, 0, 1},
                        {p, 0, 0, -20, 0},        {p, -1, 0, 2, 1},         {p, -1, 0, 3, 0}};
    for (const Row& r : rows)
        for (const auto& f : *r.forms) {
            const S z[2] = {r.re, r.im};
            S got = 0;
            gScale = r.scale;
            ASSERT_EQ(f.call(z, &z[1], &got, nullptr, 1), zetStsOk);
            EXPECT_EQ(got, r.want) << f.name << " (" << r.re << ", " << r.im << ") scale " << r.scale;
        }
}

}  // namespace
