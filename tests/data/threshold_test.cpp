// Thresholds: every export a row against the rule written once below; then the family's own checks.
#include <algorithm>

#include "conform.hpp"

namespace {

using conform::K;
using conform::op;
using LD = long double;
#define ZN(fn, shape, tag) ::conform::entry<shape>(&fn, #fn "_" tag)  // a second row needs a name of its own

// LT and GT are the processor's max and min with x first, so a NaN element gives the level. The
// relation forms go with GT: code 4 takes the branch the relation word is checked on.
const auto lt = [](auto x, auto l, auto...) { return x > l ? x : l; };
const auto gt = [](auto x, auto l, auto...) { return x < l ? x : l; };
const auto gtVal = [](auto x, auto l, auto v) { return x <= l ? x : v; };
const auto ltVal = [](auto x, auto l, auto v) { return x >= l ? x : v; };
const auto ltValGtVal = [](auto x, auto lo, auto vlo, auto hi, auto vhi) { return x > hi ? vhi : x < lo ? vlo : x; };
const auto ltAbsVal = [](auto x, auto l, auto v) { return std::fabs(LD(x)) < l ? v : x; };
// The magnitude raised to (Up) or lowered to the level, sign kept. Floats compare bit patterns,
// so a NaN ranks above every level: LTAbs keeps it, GTAbs lowers it.
template <bool Up> const auto absLimit = [](auto x, auto l) {
    const LD m = std::fabs(LD(x)), r = std::isnan(m) ? (Up ? m : LD(l)) : Up ? std::max(m, LD(l)) : std::min(m, LD(l));
    return std::isnan(r) ? x : decltype(x)(std::copysign(r, LD(x)));
};
const auto ltInv = [](auto x, auto l) { return decltype(x)(1) / (std::fabs(x) < l ? std::copysign(l, x) : x); };
const auto zeroAtLevel0 = [](auto x, auto l) { return l == 0 && x == 0; };
const auto cZeroAtLevel0 = [](auto z, auto l) { return l == 0 && z.re == 0 && z.im == 0; };

// Complex: |z|^2 rounded once in binary64 (extended for 64fc), as the library forms it; the direction
// ((1, 0) for 0; only the infinite parts of an infinite z); results from long double.
template <class C> C make(LD re, LD im) { return {Zet16s(std::nearbyint(re)), Zet16s(std::nearbyint(im))}; }
template <> Zet32fc make(LD re, LD im) { return {float(re), float(im)}; }
template <> Zet64fc make(LD re, LD im) { return {double(re), double(im)}; }
template <class C> std::tuple<LD, LD, LD> polar(C z) {
    using W = std::conditional_t<sizeof(z.re) == 8, LD, double>;
    LD a = z.re, b = z.im;
    if (std::isinf(a) || std::isinf(b))
        a = std::isinf(a) ? std::copysign(1.0L, a) : 0, b = std::isinf(b) ? std::copysign(1.0L, b) : 0;
    const LD m = std::sqrt(a * a + b * b);
    return {W(z.re) * z.re + W(z.im) * z.im, m == 0 ? 1 : a / m, m == 0 ? 0 : b / m};
}
// LT (S = -1) and GT (S = 1) move an element whose magnitude lies on the S side of the level onto the circle.
template <int S> const auto cMove = [](auto z, auto l, auto...) {
    const auto [m2, ure, uim] = polar(z);
    return S * (m2 - LD(l) * l) > 0 ? make<decltype(z)>(ure * l, uim * l) : z;
};
// GTVal (S = -1) keeps an element at or below the level, LTVal (S = 1) at or above; a NaN is replaced.
template <int S> const auto cKeep = [](auto z, auto l, auto v) {
    return S * (std::get<0>(polar(z)) - LD(l) * l) >= 0 ? z : v;
};
const auto cLtInv = [](auto z, auto l) {
    using C = decltype(z);
    const auto [m2, ure, uim] = polar(z);
    const LD a = z.re, b = z.im;
    if (std::isnan(m2)) return make<C>(a + b, a + b);
    if (m2 < LD(l) * l) return make<C>(ure / l, -uim / l);
    if (std::isinf(m2)) return make<C>(std::copysign(0.0L, a), -std::copysign(0.0L, b));
    return m2 == 0 ? make<C>(1 / a, -b) : make<C>(a / m2, -b / m2);  // level 0: an infinity with the zero's sign
};

// Levels that real inputs hit exactly (the harness mixes in +-1 and +-2), and values that stand out.
CONFORM(lt, op(lt).k({K(1.0)}), Z(zetsThreshold_LT_16s, "sdnk"), Z(zetsThreshold_LT_16s_I, "bnk"),
        Z(zetsThreshold_LT_32s, "sdnk"), Z(zetsThreshold_LT_32s_I, "bnk"), Z(zetsThreshold_LT_32f, "sdnk"),
        Z(zetsThreshold_LT_32f_I, "bnk"), Z(zetsThreshold_LT_64f, "sdnk"), Z(zetsThreshold_LT_64f_I, "bnk"));
CONFORM(gt, op(gt).k({K(1.0), K(4)}), Z(zetsThreshold_GT_16s, "sdnk"), Z(zetsThreshold_GT_16s_I, "bnk"),
        Z(zetsThreshold_GT_32s, "sdnk"), Z(zetsThreshold_GT_32s_I, "bnk"), Z(zetsThreshold_GT_32f, "sdnk"),
        Z(zetsThreshold_GT_32f_I, "bnk"), Z(zetsThreshold_GT_64f, "sdnk"), Z(zetsThreshold_GT_64f_I, "bnk"),
        Z(zetsThreshold_16s, "sdnkk"), Z(zetsThreshold_16s_I, "bnkk"), Z(zetsThreshold_32f, "sdnkk"),
        Z(zetsThreshold_32f_I, "bnkk"), Z(zetsThreshold_64f, "sdnkk"), Z(zetsThreshold_64f_I, "bnkk"));
CONFORM(gtVal, op(gtVal).k({K(1.0), K(-7.0)}), Z(zetsThreshold_GTVal_16s, "sdnkk"),
        Z(zetsThreshold_GTVal_16s_I, "bnkk"), Z(zetsThreshold_GTVal_32f, "sdnkk"), Z(zetsThreshold_GTVal_32f_I, "bnkk"),
        Z(zetsThreshold_GTVal_64f, "sdnkk"), Z(zetsThreshold_GTVal_64f_I, "bnkk"));
CONFORM(ltVal, op(ltVal).k({K(1.0), K(-7.0)}), Z(zetsThreshold_LTVal_16s, "sdnkk"),
        Z(zetsThreshold_LTVal_16s_I, "bnkk"), Z(zetsThreshold_LTVal_32f, "sdnkk"), Z(zetsThreshold_LTVal_32f_I, "bnkk"),
        Z(zetsThreshold_LTVal_64f, "sdnkk"), Z(zetsThreshold_LTVal_64f_I, "bnkk"));
CONFORM(band, op(ltValGtVal).k({K(-2.0), K(-7.0), K(2.0), K(99.0)}), Z(zetsThreshold_LTValGTVal_16s, "sdnkkkk"),
        Z(zetsThreshold_LTValGTVal_16s_I, "bnkkkk"), Z(zetsThreshold_LTValGTVal_32s, "sdnkkkk"),
        Z(zetsThreshold_LTValGTVal_32s_I, "bnkkkk"), Z(zetsThreshold_LTValGTVal_32f, "sdnkkkk"),
        Z(zetsThreshold_LTValGTVal_32f_I, "bnkkkk"), Z(zetsThreshold_LTValGTVal_64f, "sdnkkkk"),
        Z(zetsThreshold_LTValGTVal_64f_I, "bnkkkk"));
CONFORM(ltAbs, op(absLimit<true>).k({K(2.0)}), Z(zetsThreshold_LTAbs_16s, "sdnk"), Z(zetsThreshold_LTAbs_16s_I, "bnk"),
        Z(zetsThreshold_LTAbs_32s, "sdnk"), Z(zetsThreshold_LTAbs_32s_I, "bnk"), Z(zetsThreshold_LTAbs_32f, "sdnk"),
        Z(zetsThreshold_LTAbs_32f_I, "bnk"), Z(zetsThreshold_LTAbs_64f, "sdnk"), Z(zetsThreshold_LTAbs_64f_I, "bnk"),
        Z(zetsThreshold_LTAbs_32f_L, "sdnk"), Z(zetsThreshold_LTAbs_32f_I_L, "bnk"),
        Z(zetsThreshold_LTAbs_64f_L, "sdnk"), Z(zetsThreshold_LTAbs_64f_I_L, "bnk"));
CONFORM(gtAbs, op(absLimit<false>).k({K(2.0)}), Z(zetsThreshold_GTAbs_16s, "sdnk"), Z(zetsThreshold_GTAbs_16s_I, "bnk"),
        Z(zetsThreshold_GTAbs_32s, "sdnk"), Z(zetsThreshold_GTAbs_32s_I, "bnk"), Z(zetsThreshold_GTAbs_32f, "sdnk"),
        Z(zetsThreshold_GTAbs_32f_I, "bnk"), Z(zetsThreshold_GTAbs_64f, "sdnk"), Z(zetsThreshold_GTAbs_64f_I, "bnk"));
CONFORM(ltAbsVal, op(ltAbsVal).k({K(2.0), K(-7.0)}), Z(zetsThreshold_LTAbsVal_16s, "sdnkk"),
        Z(zetsThreshold_LTAbsVal_16s_I, "bnkk"), Z(zetsThreshold_LTAbsVal_32s, "sdnkk"),
        Z(zetsThreshold_LTAbsVal_32s_I, "bnkk"), Z(zetsThreshold_LTAbsVal_32f, "sdnkk"),
        Z(zetsThreshold_LTAbsVal_32f_I, "bnkk"), Z(zetsThreshold_LTAbsVal_64f, "sdnkk"),
        Z(zetsThreshold_LTAbsVal_64f_I, "bnkk"));
// LTInv at level 1, and at level 0 where a zero element inverts to an infinity with a warning.
CONFORM(ltInv, op(ltInv).k({K(1.0)}), Z(zetsThreshold_LTInv_32f, "sdnk"), Z(zetsThreshold_LTInv_32f_I, "bnk"),
        Z(zetsThreshold_LTInv_64f, "sdnk"), Z(zetsThreshold_LTInv_64f_I, "bnk"));
CONFORM(ltInv0, op(ltInv).k({K(0.0)}).warnIf(zetStsDivByZeroWarn, zeroAtLevel0),
        ZN(zetsThreshold_LTInv_32f, "sdnk", "0"), ZN(zetsThreshold_LTInv_32f_I, "bnk", "0"),
        ZN(zetsThreshold_LTInv_64f, "sdnk", "0"), ZN(zetsThreshold_LTInv_64f_I, "bnk", "0"));

// Complex: LT and GT at a level random parts of every type straddle; GTVal, LTVal at 1, hit exactly.
CONFORM(cLt, op(cMove<-1>).cmp(conform::ulps(1)).k({K(20000.0)}), Z(zetsThreshold_LT_16sc, "sdnk"),
        Z(zetsThreshold_LT_16sc_I, "bnk"), Z(zetsThreshold_LT_32fc, "sdnk"), Z(zetsThreshold_LT_32fc_I, "bnk"),
        Z(zetsThreshold_LT_64fc, "sdnk"), Z(zetsThreshold_LT_64fc_I, "bnk"));
CONFORM(cGt, op(cMove<1>).cmp(conform::ulps(1)).k({K(20000.0), K(4)}), Z(zetsThreshold_GT_16sc, "sdnk"),
        Z(zetsThreshold_GT_16sc_I, "bnk"), Z(zetsThreshold_GT_32fc, "sdnk"), Z(zetsThreshold_GT_32fc_I, "bnk"),
        Z(zetsThreshold_GT_64fc, "sdnk"), Z(zetsThreshold_GT_64fc_I, "bnk"), Z(zetsThreshold_16sc, "sdnkk"),
        Z(zetsThreshold_16sc_I, "bnkk"), Z(zetsThreshold_32fc, "sdnkk"), Z(zetsThreshold_32fc_I, "bnkk"),
        Z(zetsThreshold_64fc, "sdnkk"), Z(zetsThreshold_64fc_I, "bnkk"));
CONFORM(cGtVal, op(cKeep<-1>).k({K(1.0), K(-7.0, 9.0)}), Z(zetsThreshold_GTVal_16sc, "sdnkk"),
        Z(zetsThreshold_GTVal_16sc_I, "bnkk"), Z(zetsThreshold_GTVal_32fc, "sdnkk"),
        Z(zetsThreshold_GTVal_32fc_I, "bnkk"), Z(zetsThreshold_GTVal_64fc, "sdnkk"),
        Z(zetsThreshold_GTVal_64fc_I, "bnkk"));
CONFORM(cLtVal, op(cKeep<1>).k({K(1.0), K(-7.0, 9.0)}), Z(zetsThreshold_LTVal_16sc, "sdnkk"),
        Z(zetsThreshold_LTVal_16sc_I, "bnkk"), Z(zetsThreshold_LTVal_32fc, "sdnkk"),
        Z(zetsThreshold_LTVal_32fc_I, "bnkk"), Z(zetsThreshold_LTVal_64fc, "sdnkk"),
        Z(zetsThreshold_LTVal_64fc_I, "bnkk"));
CONFORM(cLtInv, op(cLtInv).cmp(conform::ulps(2)).k({K(1.0)}), Z(zetsThreshold_LTInv_32fc, "sdnk"),
        Z(zetsThreshold_LTInv_32fc_I, "bnk"), Z(zetsThreshold_LTInv_64fc, "sdnk"),
        Z(zetsThreshold_LTInv_64fc_I, "bnk"));
CONFORM(cLtInv0, op(cLtInv).cmp(conform::ulps(2)).k({K(0.0)}).warnIf(zetStsDivByZeroWarn, cZeroAtLevel0),
        ZN(zetsThreshold_LTInv_32fc, "sdnk", "0"), ZN(zetsThreshold_LTInv_32fc_I, "bnk", "0"),
        ZN(zetsThreshold_LTInv_64fc, "sdnk", "0"), ZN(zetsThreshold_LTInv_64fc_I, "bnk", "0"));

// After the pointers and length: the relation word (before the level), negative levels (-0 is not;
// LTAbsVal takes any, replacing nothing), levels out of order.
TEST(Threshold, ArgumentChecksInOrder) {
    float f[4] = {1, 2, 3, 4}, fd[4] = {-1, -1, -1, -1};
    Zet16s s[4] = {1, 2, 3, 4}, sd[4] = {-1, -1, -1, -1};
    Zet32fc c[4] = {}, cd[4] = {{-1, -1}, {-1, -1}, {-1, -1}, {-1, -1}};
    const ZetStatus got[] = {zetsThreshold_32f(f, fd, 4, 1, 1), zetsThreshold_16s_I(sd, 4, 1, 2),
        zetsThreshold_32f(f, fd, 4, 1, 8), zetsThreshold_32fc(c, cd, 4, -1, -4), zetsThreshold_64f(0, 0, 4, 1, 5),
        zetsThreshold_16sc_I(0, 0, 1, 0x10000), zetsThreshold_LTAbs_32f(f, fd, 4, -1),
        zetsThreshold_LTAbs_16s_I(sd, 4, -1), zetsThreshold_GTAbs_32f(f, fd, 4, -0.5f),
        zetsThreshold_LTInv_32f(f, fd, 4, -1), zetsThreshold_LT_32fc(c, cd, 4, -1),
        zetsThreshold_16sc_I((Zet16sc*)s, 2, -1, 4), zetsThreshold_LTInv_32fc(c, cd, 4, -1),
        zetsThreshold_GTAbs_64f(0, 0, 4, -1), zetsThreshold_LTAbs_32f_L(f, fd, 0, -1),
        zetsThreshold_LTValGTVal_32f(f, fd, 4, 2, 0, 1, 0), zetsThreshold_LTValGTVal_16s_I(sd, 0, 2, 0, 1, 0),
        zetsThreshold_LTAbs_32f(f, f, 4, -0.0f), zetsThreshold_LTAbsVal_16s_I(s, 4, -32768, 9)};
    const ZetStatus B = zetStsBadArgErr, N = zetStsNullPtrErr, T = zetStsNegThreshErr, S = zetStsSizeErr, O = zetStsOk;
    const ZetStatus want[] = {B, B, B, B, N, N, T, T, T, T, T, T, T, N, S, zetStsThreshRangeErr, S, O, O};
    EXPECT_EQ(std::vector(std::begin(got), std::end(got)), std::vector(std::begin(want), std::end(want)));
    EXPECT_TRUE(std::count(fd, fd + 4, -1.0f) == 4 && sd[0] == -1 && sd[3] == -1 && cd[3].re == -1 && s[3] == 4);
}

}  // namespace
