// Magnitude, phase, power and polar forms: rows against long-double references at the documented bounds.
#include <algorithm>

#include "conform.hpp"

namespace {

using conform::op;
using conform::ulps;
using LD = long double;

template <class... A> std::pair<LD, LD> parts(A... a) {
    if constexpr (sizeof...(A) == 1) return {LD(a.re)..., LD(a.im)...};
    else return {LD(a)...};
}
template <class... A> using Part = conform::PartOf<std::tuple_element_t<0, std::tuple<A...>>>;
// Results in the sources' precision; binary32 from 16-bit sources, whose squares and sums are exact.
template <class... A> using Out = std::conditional_t<std::is_integral_v<Part<A...>>, float, Part<A...>>;
template <class... F> struct Over : F... { using F::operator()...; };

const auto magnitude = [](auto... a) { auto [x, y] = parts(a...); return Out<decltype(a)...>(std::hypot(x, y)); };
const auto phase = [](auto... a) { auto [x, y] = parts(a...); return Out<decltype(a)...>(std::atan2(y, x)); };
const auto power = [](auto... a) {
    using T = Out<decltype(a)...>;
    const auto [x, y] = parts(a...);
    if constexpr (std::is_integral_v<Part<decltype(a)...>>) return T(x * x + y * y);
    else return std::fma(T(x), T(x), T(y) * T(y));
};
// _Sfs: f(re, im) times 2^-scale, nearest even, saturated; for the magnitude, f is binary64's root.
Zet16s scale16(LD v, int sf) {
    const LD r = std::nearbyint(std::ldexp(v, -std::clamp(sf, -99, 99)));
    return static_cast<Zet16s>(std::clamp(r, -0x1p15L, 0x1p15L - 1));
}
template <class F> auto scaled(F f) {
    return Over{[f](Zet16sc z, int sf) { return scale16(f(z.re, z.im), sf); },
                [f](Zet16s x, Zet16s y, int sf) { return scale16(f(x, y), sf); }};
}
const auto magnitudeSfs = scaled([](LD x, LD y) { return LD(std::sqrt(double(x * x + y * y))); });
const auto phaseSfs = scaled([](LD x, LD y) { return std::atan2(y, x); });
const auto powerSfs = scaled([](LD x, LD y) { return x * x + y * y; });

CONFORM(magnitude, op(magnitude).cmp(ulps(1)), Z(zetsMagnitude_32fc, "sdn"), Z(zetsMagnitude_64fc, "sdn"),
        Z(zetsMagnitude_32f, "ssdn"), Z(zetsMagnitude_64f, "ssdn"), Z(zetsMagnitude_16sc32f, "sdn"),
        Z(zetsMagnitude_16s32f, "ssdn"));
CONFORM(phase, op(phase).cmp(ulps(2)), Z(zetsPhase_32fc, "sdn"), Z(zetsPhase_64fc, "sdn"), Z(zetsPhase_32f, "ssdn"),
        Z(zetsPhase_64f, "ssdn"), Z(zetsPhase_16sc32f, "sdn"), Z(zetsPhase_16s32f, "ssdn"));
CONFORM(power, op(power), Z(zetsPowerSpectr_32fc, "sdn"), Z(zetsPowerSpectr_64fc, "sdn"),
        Z(zetsPowerSpectr_32f, "ssdn"), Z(zetsPowerSpectr_64f, "ssdn"), Z(zetsPowerSpectr_16sc32f, "sdn"),
        Z(zetsPowerSpectr_16s32f, "ssdn"));
CONFORM(magnitudeSfs, op(magnitudeSfs), Z(zetsMagnitude_16sc_Sfs, "sdnf"), Z(zetsMagnitude_16s_Sfs, "ssdnf"));
CONFORM(phaseSfs, op(phaseSfs), Z(zetsPhase_16sc_Sfs, "sdnf"), Z(zetsPhase_16s_Sfs, "ssdnf"));
CONFORM(powerSfs, op(powerSfs), Z(zetsPowerSpectr_16sc_Sfs, "sdnf"), Z(zetsPowerSpectr_16s_Sfs, "ssdnf"));

// CartToPolar: bit for bit what Magnitude and Phase give, which their rows hold to their bounds.
void magPhase(Zet32fc z, float& m, float& p) { zetsMagnitude_32fc(&z, &m, 1), zetsPhase_32fc(&z, &p, 1); }
void magPhase(Zet64fc z, double& m, double& p) { zetsMagnitude_64fc(&z, &m, 1), zetsPhase_64fc(&z, &p, 1); }
void magPhase(float x, float y, float& m, float& p) { zetsMagnitude_32f(&x, &y, &m, 1), zetsPhase_32f(&x, &y, &p, 1); }
void magPhase(double x, double y, double& m, double& p) {
    zetsMagnitude_64f(&x, &y, &m, 1), zetsPhase_64f(&x, &y, &p, 1);
}
const auto cartToPolar = [](auto... a) { Part<decltype(a)...> m, p; return magPhase(a..., m, p), std::tuple(m, p); };
CONFORM(cartToPolar, op(cartToPolar), Z(zetsCartToPolar_32fc, "sddn"), Z(zetsCartToPolar_64fc, "sddn"),
        Z(zetsCartToPolar_32f, "ssddn"), Z(zetsCartToPolar_64f, "ssddn"));

// PolarToCart within 1 ulp; binary64 past 2^20 pi takes the C library's sine and cosine.
const auto polarToCart = [](auto m, auto p) {
    using T = decltype(m);
    if (sizeof(T) == 8 && std::isfinite(p) && std::fabs(p) > 0x1p20 * M_PI)
        return std::tuple(m * std::cos(p), m * std::sin(p));
    return std::tuple(T(m * std::cos(LD(p))), T(m * std::sin(LD(p))));
};
const auto polarToCartC = [](auto m, auto p) {
    return std::make_from_tuple<std::conditional_t<sizeof m == 4, Zet32fc, Zet64fc>>(polarToCart(m, p));
};
CONFORM(polarToCart, op(polarToCart).cmp(ulps(1)), Z(zetsPolarToCart_32f, "ssddn"), Z(zetsPolarToCart_64f, "ssddn"));
CONFORM(polarToCartC, op(polarToCartC).cmp(ulps(1)), Z(zetsPolarToCart_32fc, "ssdn"), Z(zetsPolarToCart_64fc, "ssdn"));

// C's atan2 conventions, bit for bit: signed zeros, infinite parts, the two sides of the negative axis.
TEST(Polar, PhaseKeepsTheAtan2Conventions) {
    auto check = [](auto phase, auto inf) {
        using T = decltype(inf);
        const T z = 0, re[] = {z, -z, z, -z, -1, -1, inf, -inf, inf, -inf, inf, -inf, 1, 1, z, -z},
                im[] = {z, z, -z, -z, z, -z, inf, inf, -inf, -inf, z, -z, inf, -inf, 1, -1};
        T got[16];
        ASSERT_EQ(phase(re, im, got, 16), zetStsOk);
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(zettest::bitsOf(got[i]), zettest::bitsOf(T(std::atan2(LD(im[i]), LD(re[i]))))) << i;
    };
    check(zetsPhase_32f, float(INFINITY)), check(zetsPhase_64f, double(INFINITY));
}

}  // namespace
