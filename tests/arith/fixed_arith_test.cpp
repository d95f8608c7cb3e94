// Integer arithmetic, division, logic and shifts: every export as a row against
// the exact result and the rules stated once below; exhaustive 8-bit sweeps of
// the scale rule and the rounding modes; the constant shortcuts; the family checks.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>

#include "conform.hpp"

// The references: the exact result in 128 bits, then the scale rule or the quotient rule, each stated once.
namespace iref {

using i128 = __int128;

template <class D> D saturate(i128 r) {
    const i128 lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    return static_cast<D>(r < lo ? lo : r > hi ? hi : r);
}

// s * 2^-scale rounded to nearest, ties to even, saturated; |s| <= 2^126.
template <class D> D rule(i128 s, int scale) {
    if (scale >= 127) return 0;  // at most a tie at one half, which goes to the even 0
    if (scale > 0) return saturate<D>((s + (i128{1} << (scale - 1)) - 1 + ((s >> scale) & 1)) >> scale);
    const i128 big = i128{1} << 64;  // beyond every destination once shifted
    if (scale < -63 || s >= big || s <= -big) return saturate<D>(s > 0 ? big : s < 0 ? -big : 0);
    return saturate<D>(s * (i128{1} << -scale));
}

// n / (m 2^scale) rounded by mode (0 toward zero, 1 half to even, 2 half away)
// and saturated; a zero divisor gives the maximum, the minimum or 0 by the
// sign of n. |n| < 2^64, |m| < 2^61.
template <class D> D quotient(i128 n, i128 m, int scale, int mode = 1) {
    if (m == 0) return saturate<D>(n > 0 ? i128{1} << 64 : n < 0 ? -(i128{1} << 64) : 0);
    if (scale > 65 || n == 0) return 0;  // below one half
    if (scale < 0 && (scale <= -125 || (n < 0 ? -n : n) >= (i128{1} << (125 + scale))))
        return saturate<D>((n > 0) == (m > 0) ? i128{1} << 64 : -(i128{1} << 64));  // at least 2^125 / 2^61
    i128 num = scale < 0 ? n << -scale : n, den = scale > 0 ? m << scale : m;
    if (den < 0) num = -num, den = -den;
    const i128 a = num < 0 ? -num : num, r2 = 2 * (a % den);
    const i128 q = a / den + ((mode == 1 && (r2 > den || (r2 == den && (a / den & 1)))) || (mode == 2 && r2 >= den));
    return saturate<D>(num < 0 ? -q : q);
}

inline int sf(int f = 0) { return f; }  // the unscaled forms: scale 0

// Complex values part by part (op on exact parts; product exact), or the whole real value, then the rule.
template <class T, class F> T parts(T a, T b, int f, F op) {
    if constexpr (requires { a.re; }) return {parts(a.re, b.re, f, op), parts(a.im, b.im, f, op)};
    else return rule<T>(op(i128(a), i128(b)), f);
}
template <class T> T product(T a, T b, int f) {
    if constexpr (!requires { a.re; }) return rule<T>(i128(a) * b, f);
    else return {rule<decltype(a.re)>(i128(a.re) * b.re - i128(a.im) * b.im, f),
                 rule<decltype(a.re)>(i128(a.re) * b.im + i128(a.im) * b.re, f)};
}

}  // namespace iref

namespace {

using conform::op;
using iref::i128;

// Scaled pairs: the out-of-place form and the in-place one.
#define S2(p, i) Z(p, "ssdnf"), Z(i, "sbnf")
#define SC(p, i) Z(p, "skdnf"), Z(i, "kbnf")
#define B2(p, i) Z(p, "ssdn"), Z(i, "sbn")
#define BC(p, i) Z(p, "skdn"), Z(i, "kbn")

// Away from the shortcut constants 0 and 1; -3 reads as 2^w - 3 unsigned.
const std::vector<conform::K> kC = {conform::K(-3, 5)};
const auto add = [](auto a, auto b, auto... f) { return iref::parts(a, b, iref::sf(f...), std::plus<i128>()); };
const auto sub = [](auto a, auto b, auto... f) { return iref::parts(b, a, iref::sf(f...), std::minus<i128>()); };
const auto mul = [](auto a, auto b, auto... f) { return iref::product(a, b, iref::sf(f...)); };

CONFORM(add, op(add).k(kC), S2(zetsAdd_8u_Sfs, zetsAdd_8u_ISfs), S2(zetsAdd_16u_Sfs, zetsAdd_16u_ISfs),
        S2(zetsAdd_16s_Sfs, zetsAdd_16s_ISfs), S2(zetsAdd_32s_Sfs, zetsAdd_32s_ISfs), Z(zetsAdd_16sc_Sfs, "ssdNf"),
        Z(zetsAdd_16sc_ISfs, "sbNf"), Z(zetsAdd_32sc_Sfs, "ssdNf"), Z(zetsAdd_32sc_ISfs, "sbNf"),
        Z(zetsAdd_64s_Sfs, "ssdnf"), B2(zetsAdd_16s, zetsAdd_16s_I), Z(zetsAdd_16u, "ssdn"),
        B2(zetsAdd_32u, zetsAdd_32u_I), SC(zetsAddC_8u_Sfs, zetsAddC_8u_ISfs), SC(zetsAddC_16u_Sfs, zetsAddC_16u_ISfs),
        Z(zetsAddC_16s_I, "kbn"), SC(zetsAddC_16s_Sfs, zetsAddC_16s_ISfs), SC(zetsAddC_32s_Sfs, zetsAddC_32s_ISfs),
        Z(zetsAddC_64u_Sfs, "skdnf"), SC(zetsAddC_16sc_Sfs, zetsAddC_16sc_ISfs),
        SC(zetsAddC_32sc_Sfs, zetsAddC_32sc_ISfs), Z(zetsAddC_64s_Sfs, "skdnf"));
// Sub is src2 - src1, SubCRev val - src: the same reference.
CONFORM(sub, op(sub).k(kC), S2(zetsSub_8u_Sfs, zetsSub_8u_ISfs), S2(zetsSub_16u_Sfs, zetsSub_16u_ISfs),
        S2(zetsSub_16s_Sfs, zetsSub_16s_ISfs), S2(zetsSub_32s_Sfs, zetsSub_32s_ISfs), Z(zetsSub_16sc_Sfs, "ssdNf"),
        Z(zetsSub_16sc_ISfs, "sbNf"), Z(zetsSub_32sc_Sfs, "ssdNf"), Z(zetsSub_32sc_ISfs, "sbNf"),
        B2(zetsSub_16s, zetsSub_16s_I), SC(zetsSubCRev_8u_Sfs, zetsSubCRev_8u_ISfs),
        SC(zetsSubCRev_16u_Sfs, zetsSubCRev_16u_ISfs), SC(zetsSubCRev_16s_Sfs, zetsSubCRev_16s_ISfs),
        SC(zetsSubCRev_32s_Sfs, zetsSubCRev_32s_ISfs), SC(zetsSubCRev_16sc_Sfs, zetsSubCRev_16sc_ISfs),
        SC(zetsSubCRev_32sc_Sfs, zetsSubCRev_32sc_ISfs));
CONFORM(subC, op([](auto a, auto c, auto... f) { return sub(c, a, f...); }).k(kC),
        SC(zetsSubC_8u_Sfs, zetsSubC_8u_ISfs), SC(zetsSubC_16u_Sfs, zetsSubC_16u_ISfs),
        SC(zetsSubC_16s_Sfs, zetsSubC_16s_ISfs), Z(zetsSubC_16s_I, "kbn"), SC(zetsSubC_32s_Sfs, zetsSubC_32s_ISfs),
        SC(zetsSubC_16sc_Sfs, zetsSubC_16sc_ISfs), SC(zetsSubC_32sc_Sfs, zetsSubC_32sc_ISfs));
CONFORM(mul, op(mul).k(kC), S2(zetsMul_8u_Sfs, zetsMul_8u_ISfs), S2(zetsMul_16u_Sfs, zetsMul_16u_ISfs),
        S2(zetsMul_16s_Sfs, zetsMul_16s_ISfs), S2(zetsMul_32s_Sfs, zetsMul_32s_ISfs),
        S2(zetsMul_16sc_Sfs, zetsMul_16sc_ISfs), S2(zetsMul_32sc_Sfs, zetsMul_32sc_ISfs),
        B2(zetsMul_16s, zetsMul_16s_I), SC(zetsMulC_8u_Sfs, zetsMulC_8u_ISfs), SC(zetsMulC_16u_Sfs, zetsMulC_16u_ISfs),
        SC(zetsMulC_16s_Sfs, zetsMulC_16s_ISfs), SC(zetsMulC_32s_Sfs, zetsMulC_32s_ISfs),
        SC(zetsMulC_16sc_Sfs, zetsMulC_16sc_ISfs), SC(zetsMulC_32sc_Sfs, zetsMulC_32sc_ISfs),
        Z(zetsMulC_64s_ISfs, "kbnf"), SC(zetsMulC_32s_Sfs_L, zetsMulC_32s_ISfs_L), Z(zetsMulC_16s_I, "kbn"));
CONFORM(sqr, op([](auto a, int f) { return iref::product(a, a, f); }), Z(zetsSqr_8u_Sfs, "sdnf"),
        Z(zetsSqr_8u_ISfs, "bnf"), Z(zetsSqr_16u_Sfs, "sdnf"), Z(zetsSqr_16u_ISfs, "bnf"), Z(zetsSqr_16s_Sfs, "sdnf"),
        Z(zetsSqr_16s_ISfs, "bnf"), Z(zetsSqr_16sc_Sfs, "sdnf"), Z(zetsSqr_16sc_ISfs, "bnf"));
CONFORM(addProduct, op([](auto a, auto b, auto d, int f) { return iref::rule<decltype(d)>(d + i128(a) * b, f); }),
        Z(zetsAddProduct_16s_Sfs, "ssbnf"), Z(zetsAddProduct_32s_Sfs, "ssbnf"), Z(zetsAddProduct_16s32s_Sfs, "ssbnf"));
CONFORM(abs, op([](auto a) { return iref::saturate<decltype(a)>(a < 0 ? -i128(a) : i128(a)); }), Z(zetsAbs_16s, "sdn"),
        Z(zetsAbs_16s_I, "bn"), Z(zetsAbs_32s, "sdn"), Z(zetsAbs_32s_I, "bn"));

// Widening and mixed forms: exact sums and products, saturated, or converted to nearest even.
CONFORM(add8u16u, op([](Zet8u a, Zet8u b) { return Zet16u(a + b); }), Z(zetsAdd_8u16u, "ssdn"));
CONFORM(mul8u16u, op([](Zet8u a, Zet8u b) { return Zet16u(a * b); }), Z(zetsMul_8u16u, "ssdn"));
CONFORM(add16s32f, op([](Zet16s a, Zet16s b) { return float(b + a); }), Z(zetsAdd_16s32f, "ssdn"));
CONFORM(sub16s32f, op([](Zet16s a, Zet16s b) { return float(b - a); }), Z(zetsSub_16s32f, "ssdn"));
CONFORM(mul16s32f, op([](Zet16s a, Zet16s b) { return float(b * a); }), Z(zetsMul_16s32f, "ssdn"));
CONFORM(add16s32s, op([](Zet16s a, Zet32s d) { return iref::saturate<Zet32s>(i128(d) + a); }),
        Z(zetsAdd_16s32s_I, "sbn"));
CONFORM(mul16s32s, op([](Zet16s a, Zet16s b, int f) { return iref::rule<Zet32s>(i128(a) * b, f); }),
        Z(zetsMul_16s32s_Sfs, "ssdnf"));
CONFORM(mul16u16s, op([](Zet16u a, Zet16s b, int f) { return iref::rule<Zet16s>(i128(a) * b, f); }),
        Z(zetsMul_16u16s_Sfs, "ssdnf"));
// Floating products to integers: the product times 2^-scale, to nearest even, saturated, NaN to the minimum.
template <class D> D toInt(double x) {
    if (std::isnan(x) || x <= double(std::numeric_limits<D>::min())) return std::numeric_limits<D>::min();
    return x >= std::ldexp(1.0, 8 * sizeof(D) - 1) ? std::numeric_limits<D>::max() : D(std::nearbyint(x));
}
const std::vector<int> kFloatScales = {-40, -16, -15, -1, 0, 1, 2, 15, 16, 40};
CONFORM(mulC32f16s, op([](float a, float c, auto... f) { return toInt<Zet16s>(std::ldexp(a * c, -iref::sf(f...))); })
                        .k({conform::K(-1.375)}).scales(kFloatScales),
        Z(zetsMulC_32f16s_Sfs, "skdnf"), Z(zetsMulC_Low_32f16s, "skdn"));
CONFORM(mulC64f64s, op([](Zet64s d, double c, int f) { return toInt<Zet64s>(std::ldexp(double(d) * c, -f)); })
                        .k({conform::K(0.75)}).scales(kFloatScales),
        Z(zetsMulC_64f64s_ISfs, "kbnf"));

// ---- division: src2 / src1; a zero divisor warns after every element is written ----
const auto div = [](auto a, auto b, auto... f) { return iref::quotient<decltype(b)>(b, a, iref::sf(f...)); };
const auto divRound = [](auto a, auto b, int mode, int f) { return iref::quotient<decltype(b)>(b, a, f, mode); };
const auto zeroFirst = [](auto a, auto...) { return a == 0; };
// Complex b / a as the exact rationals (b conj(a)) / |a|^2; a zero divisor takes each part's sign.
Zet16sc cdiv(Zet16sc a, Zet16sc b, int f) {
    const i128 ar = a.re, ai = a.im, br = b.re, bi = b.im, den = ar * ar + ai * ai;
    return {iref::quotient<Zet16s>(den ? br * ar + bi * ai : br, den, f),
            iref::quotient<Zet16s>(den ? bi * ar - br * ai : bi, den, f)};
}

CONFORM(div, op(div).warnIf(zetStsDivByZeroWarn, zeroFirst), S2(zetsDiv_8u_Sfs, zetsDiv_8u_ISfs),
        S2(zetsDiv_16u_Sfs, zetsDiv_16u_ISfs), S2(zetsDiv_16s_Sfs, zetsDiv_16s_ISfs),
        S2(zetsDiv_32s_Sfs, zetsDiv_32s_ISfs));
CONFORM(div32s16s, op([](Zet16s a, Zet32s b, int f) { return iref::quotient<Zet16s>(b, a, f); })
                       .warnIf(zetStsDivByZeroWarn, zeroFirst), Z(zetsDiv_32s16s_Sfs, "ssdnf"));
CONFORM(divRound, op(divRound).k({0}).warnIf(zetStsDivByZeroWarn, zeroFirst), Z(zetsDiv_Round_8u_Sfs, "ssdnkf"),
        Z(zetsDiv_Round_8u_ISfs, "sbnkf"), Z(zetsDiv_Round_16u_Sfs, "ssdnkf"), Z(zetsDiv_Round_16u_ISfs, "sbnkf"),
        Z(zetsDiv_Round_16s_Sfs, "ssdnkf"), Z(zetsDiv_Round_16s_ISfs, "sbnkf"));
CONFORM(divRoundAway, op(divRound).k({2}).warnIf(zetStsDivByZeroWarn, zeroFirst),
        conform::entry<"ssdnkf">(&zetsDiv_Round_16u_Sfs, "zetsDiv_Round_16u_Sfs_away"),
        conform::entry<"sbnkf">(&zetsDiv_Round_16s_ISfs, "zetsDiv_Round_16s_ISfs_away"));
CONFORM(divC, op([](auto a, auto c, int f) { return iref::quotient<decltype(a)>(a, c, f); }).k({conform::K(-7)}),
        SC(zetsDivC_8u_Sfs, zetsDivC_8u_ISfs), SC(zetsDivC_16u_Sfs, zetsDivC_16u_ISfs),
        SC(zetsDivC_16s_Sfs, zetsDivC_16s_ISfs), Z(zetsDivC_64s_ISfs, "kbnf"));
CONFORM(divCRev, op([](Zet16u a, Zet16u c) { return iref::quotient<Zet16u>(c, a, 0); }).k({60000})
                     .warnIf(zetStsDivByZeroWarn, zeroFirst),
        BC(zetsDivCRev_16u, zetsDivCRev_16u_I));
CONFORM(div16sc, op(cdiv).warnIf(zetStsDivByZeroWarn, [](Zet16sc a, auto...) { return a.re == 0 && a.im == 0; }),
        S2(zetsDiv_16sc_Sfs, zetsDiv_16sc_ISfs));
CONFORM(divC16sc, op([](Zet16sc b, Zet16sc c, int f) { return cdiv(c, b, f); }).k({conform::K(-3, 4)}),
        SC(zetsDivC_16sc_Sfs, zetsDivC_16sc_ISfs));

const std::vector<conform::K> kBits = {conform::K(0x5AC3A5E7)};  // neither 0 nor all ones in any width
CONFORM(bitAnd, op([](auto a, auto b) { return decltype(a)(a & b); }).k(kBits), B2(zetsAnd_8u, zetsAnd_8u_I),
        B2(zetsAnd_16u, zetsAnd_16u_I), B2(zetsAnd_32u, zetsAnd_32u_I), BC(zetsAndC_8u, zetsAndC_8u_I),
        BC(zetsAndC_16u, zetsAndC_16u_I), BC(zetsAndC_32u, zetsAndC_32u_I));
CONFORM(bitOr, op([](auto a, auto b) { return decltype(a)(a | b); }).k(kBits), B2(zetsOr_8u, zetsOr_8u_I),
        B2(zetsOr_16u, zetsOr_16u_I), B2(zetsOr_32u, zetsOr_32u_I), BC(zetsOrC_8u, zetsOrC_8u_I),
        BC(zetsOrC_16u, zetsOrC_16u_I), BC(zetsOrC_32u, zetsOrC_32u_I));
CONFORM(bitXor, op([](auto a, auto b) { return decltype(a)(a ^ b); }).k(kBits), B2(zetsXor_8u, zetsXor_8u_I),
        B2(zetsXor_16u, zetsXor_16u_I), B2(zetsXor_32u, zetsXor_32u_I), BC(zetsXorC_8u, zetsXorC_8u_I),
        BC(zetsXorC_16u, zetsXorC_16u_I), BC(zetsXorC_32u, zetsXorC_32u_I));
CONFORM(bitNot, op([](auto a) { return decltype(a)(~a); }), Z(zetsNot_8u, "sdn"), Z(zetsNot_8u_I, "bn"),
        Z(zetsNot_16u, "sdn"), Z(zetsNot_16u_I, "bn"), Z(zetsNot_32u, "sdn"), Z(zetsNot_32u_I, "bn"));

// Shifts by c bits (at or above the width: 0, or the sign). The counts: 0 copies, each
// width's last (8-bit lanes shift in 16 bits and mask what spills), and beyond.
template <class T> constexpr int kWidth = 8 * sizeof(T);
const auto shl = [](auto a, int c) { return decltype(a)(c >= kWidth<decltype(a)> ? 0 : std::uint64_t(a) << c); };
const auto shr = [](auto a, int c) {
    using T = decltype(a);
    return T(std::is_signed_v<T> ? a >> std::min(c, kWidth<T> - 1) : c >= kWidth<T> ? 0 : a >> c);
};
// One row per count; each export's name carries the count so the names stay unique.
#define ZC(fn, shape, c) ::conform::entry<shape>(&fn, #fn "_by" #c)
#define SHIFT_ROWS(c)                                                                                             \
    CONFORM(shl##c, op(shl).k({c}), ZC(zetsLShiftC_8u, "skdn", c), ZC(zetsLShiftC_8u_I, "kbn", c),                 \
            ZC(zetsLShiftC_16u, "skdn", c), ZC(zetsLShiftC_16u_I, "kbn", c), ZC(zetsLShiftC_16s, "skdn", c),        \
            ZC(zetsLShiftC_16s_I, "kbn", c), ZC(zetsLShiftC_32s, "skdn", c), ZC(zetsLShiftC_32s_I, "kbn", c));      \
    CONFORM(shr##c, op(shr).k({c}), ZC(zetsRShiftC_8u, "skdn", c), ZC(zetsRShiftC_8u_I, "kbn", c),                 \
            ZC(zetsRShiftC_16u, "skdn", c), ZC(zetsRShiftC_16u_I, "kbn", c), ZC(zetsRShiftC_16s, "skdn", c),        \
            ZC(zetsRShiftC_16s_I, "kbn", c), ZC(zetsRShiftC_32s, "skdn", c), ZC(zetsRShiftC_32s_I, "kbn", c))
SHIFT_ROWS(0); SHIFT_ROWS(3); SHIFT_ROWS(7); SHIFT_ROWS(15); SHIFT_ROWS(31); SHIFT_ROWS(40);

// Every pair of 8-bit operands, element 256 b + a, one call per scale: every tie and saturation.
template <class Call, class Want> void sweep8u(const char* name, int lo, int hi, ZetStatus st, Call call, Want want) {
    std::vector<Zet8u> a(65536), b(65536), d(65536);
    for (int i = 0; i < 65536; ++i) a[i] = static_cast<Zet8u>(i), b[i] = static_cast<Zet8u>(i >> 8);
    for (int scale = lo; scale <= hi; ++scale) {
        ASSERT_EQ(call(a.data(), b.data(), d.data(), scale), st) << name;
        for (int i = 0; i < 65536; ++i)
            ASSERT_EQ(d[i], want(a[i], b[i], scale)) << name << ':' << +a[i] << ' ' << +b[i] << ' ' << scale;
    }
}
// A constant form over every constant b, on the 256 elements of its block.
template <class F> auto eachConst(F fn) {
    return [fn](const Zet8u* a, const Zet8u*, Zet8u* d, int f) -> ZetStatus {
        for (int v = 0; v < 256; ++v)
            if (ZetStatus st = fn(a, static_cast<Zet8u>(v), d + 256 * v, 256, f)) return st;
        return zetStsOk;
    };
}

TEST(FixedRule, EightBitOperandsExhaustively) {
    const auto two = [](auto fn) { return [fn](auto a, auto b, auto d, int f) { return fn(a, b, d, 65536, f); }; };
    const auto sum = [](i128 a, i128 b, int f) { return iref::rule<Zet8u>(a + b, f); };
    const auto diff = [](i128 a, i128 b, int f) { return iref::rule<Zet8u>(b - a, f); };
    const auto prod = [](i128 a, i128 b, int f) { return iref::rule<Zet8u>(a * b, f); };
    sweep8u("Add", -9, 10, zetStsOk, two(zetsAdd_8u_Sfs), sum);
    sweep8u("Sub", -9, 10, zetStsOk, two(zetsSub_8u_Sfs), diff);
    sweep8u("Mul", -9, 18, zetStsOk, two(zetsMul_8u_Sfs), prod);
    sweep8u("AddC", -9, 10, zetStsOk, eachConst(zetsAddC_8u_Sfs), sum);
    sweep8u("SubC", -9, 10, zetStsOk, eachConst(zetsSubC_8u_Sfs), [&](i128 a, i128 b, int f) { return diff(b, a, f); });
    sweep8u("SubCRev", -9, 10, zetStsOk, eachConst(zetsSubCRev_8u_Sfs), diff);
    sweep8u("MulC", -9, 18, zetStsOk, eachConst(zetsMulC_8u_Sfs), prod);
}

// Division b / a in every mode (Div: half to even), with a zero divisor in every call.
TEST(IntDivision, EightBitExhaustivelyInEveryMode) {
    for (int mode = 0; mode <= 2; ++mode)
        sweep8u("Div_Round", -9, 10, zetStsDivByZeroWarn,
                [mode](auto a, auto b, auto d, int f) { return zetsDiv_Round_8u_Sfs(a, b, d, 65536, mode, f); },
                [mode](i128 a, i128 b, int f) { return iref::quotient<Zet8u>(b, a, f, mode); });
    sweep8u("Div", -9, 10, zetStsDivByZeroWarn,
            [](auto a, auto b, auto d, int f) { return zetsDiv_8u_Sfs(a, b, d, 65536, f); },
            [](i128 a, i128 b, int f) { return iref::quotient<Zet8u>(b, a, f); });
}

// A constant of 0 (scale 0) copies, MulC by 0 clears whatever the scale: shortcuts with the rule's values.
TEST(FixedConstants, ZeroCopiesOrClears) {
    const std::vector<Zet16s> a = {-32768, -1, 0, 1, 32767, 1234}, zero(6);
    std::vector<Zet16s> d(6, 99), e(6, 99);
    std::vector<Zet32s> z = {5, 6, 7};
    ASSERT_EQ(zetsAddC_16s_Sfs(a.data(), 0, d.data(), 6, 0), zetStsOk);
    ASSERT_EQ(zetsMulC_16s_Sfs(a.data(), 0, e.data(), 6, -5), zetStsOk);
    ASSERT_EQ(zetsMulC_32s_Sfs_L(z.data(), 0, z.data(), 3, -3), zetStsOk);
    EXPECT_TRUE(d == a && e == zero && z == std::vector<Zet32s>(3)) << d[0] << " " << e[0] << " " << z[0];
}

// The checks each family adds, in their order: zero constants (an error that
// writes nothing, or a warning), rounding modes, shift counts, AndC's null source.
TEST(ArithStatus, FamilyChecksInOrder) {
    float f[3] = {1, 2, 3}, fe[3] = {7, 7, 7};
    Zet16s s[2] = {5, -5}, sd[2] = {9, 9};
    Zet64s big[3] = {5, -5, 0};
    Zet8u z[4] = {5, 6, 7, 8};
    Zet16sc c[2] = {};
    const ZetStatus got[] = {
        zetsDivC_32f(f, -0.0f, fe, 3), zetsDivC_32fc_I(Zet32fc{0, 0}, reinterpret_cast<Zet32fc*>(fe), 1),
        zetsDivC_32f(nullptr, 0.0f, fe, 3), zetsDivC_32f(f, 0.0f, fe, 0), zetsDivC_16s_Sfs(s, 0, sd, 2, 0),
        zetsDivC_16sc_Sfs(c, Zet16sc{0, 0}, c, 1, 0), zetsDivC_64s_ISfs(0, big, 3, 0),
        zetsDiv_Round_16s_Sfs(s, s, sd, 2, 3, 0), zetsDiv_Round_16s_Sfs(s, s, sd, 2, -1, 0),
        zetsDiv_Round_16s_Sfs(nullptr, s, sd, 2, 3, 0), zetsDiv_Round_8u_ISfs(z, z, 0, 7, 0),
        zetsRShiftC_16s(s, -1, sd, 2), zetsRShiftC_16s(nullptr, -1, sd, 2), zetsLShiftC_8u_I(-1, z, 0),
        zetsLShiftC_8u_I(-1, z, 3), zetsRShiftC_16u(nullptr, 16, nullptr, 0), zetsAndC_8u(nullptr, 0, z, 4),
        zetsAndC_8u(nullptr, 0, z, 0), zetsAndC_8u(nullptr, 1, z, 4), zetsAdd_16sc_Sfs(c, c, c, 0x40000000, 0)};
    const ZetStatus want[] = {
        zetStsDivByZeroErr, zetStsDivByZeroErr, zetStsNullPtrErr, zetStsSizeErr, zetStsDivByZeroErr,
        zetStsDivByZeroErr, zetStsDivByZeroWarn, zetStsRoundModeValueErr, zetStsRoundModeValueErr, zetStsNullPtrErr,
        zetStsSizeErr, zetStsShiftErr, zetStsNullPtrErr, zetStsSizeErr, zetStsShiftErr, zetStsNullPtrErr, zetStsOk,
        zetStsSizeErr, zetStsNullPtrErr, zetStsSizeErr};  // the last: the doubled length is formed in 32 bits
    for (std::size_t i = 0; i < std::size(want); ++i) EXPECT_EQ(got[i], want[i]) << "call " << i;
    EXPECT_EQ(fe[0], 7.0f);
    EXPECT_EQ(sd[0], 9);
    EXPECT_EQ(z[0], 0);
    EXPECT_EQ(std::vector<Zet64s>(big, big + 3), (std::vector<Zet64s>{LLONG_MAX, LLONG_MIN, 0}));
}

}  // namespace
