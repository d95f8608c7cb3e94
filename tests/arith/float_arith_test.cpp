// Floating-point arithmetic: every export as a row against the formula written once
// below, then the special constants that turn arithmetic into copies or zeroings.
#include "conform.hpp"

// The references: each formula stated once, literally, with std::fma where the contract fuses.
namespace fref {

template <class R> R quiet(R x) {
    return zettest::fromBits<R>(zettest::bitsOf(x) | (sizeof(R) == 4 ? 1u << 22 : 1ull << 51));
}
// The processor's rule for two operands: the left NaN (quieted), else the right one, else the result.
template <class R> R ordered(R left, R right, R result) {
    return std::isnan(left) ? quiet(left) : std::isnan(right) ? quiet(right) : result;
}
template <class R> R add(R l, R r) { return ordered(l, r, l + r); }
template <class R> R sub(R l, R r) { return ordered(l, r, l - r); }
template <class R> R mul(R l, R r) { return ordered(l, r, l * r); }
template <class R> R absMax(R a) {
    const R n = zettest::fromBits<R>(zettest::bitsOf(a) ^ (sizeof(R) == 4 ? 0x80000000ull : 0x8000000000000000ull));
    return n > a ? n : a;
}

inline constexpr auto addOp = [](auto l, auto r) { return add(l, r); };
inline constexpr auto subOp = [](auto l, auto r) { return sub(l, r); };
// A real operation applied part by part to complex values.
template <class E, class F> E lift(E a, E b, F f) {
    if constexpr (requires { a.re; }) return {f(a.re, b.re), f(a.im, b.im)};
    else return f(a, b);
}

template <class C> using RealOf = std::conditional_t<std::is_same_v<C, Zet32fc>, float, double>;

// ---- complex formulas (a from src1/src, b from src2, c the constant, d srcDst) ----
template <class C> C cmul(C a, C b) {
    return {std::fma(a.re, b.re, -(a.im * b.im)), std::fma(a.re, b.im, a.im * b.re)};
}
template <class C> C cmulC(C a, C c) {
    return {std::fma(c.re, a.re, -(a.im * c.im)), std::fma(c.re, a.im, a.re * c.im)};
}
template <class C> C csqr(C a) { return {std::fma(a.re, a.re, -(a.im * a.im)), a.re * (a.im + a.im)}; }
template <class C> C caddProduct(C a, C b, C d) {
    return {std::fma(a.re, b.re, d.re) - a.im * b.im, std::fma(a.re, b.im, d.im) + a.im * b.re};
}
template <class C> C caddProductC(C a, C c, C d) {
    return {(a.re * c.re - a.im * c.im) + d.re, (a.re * c.im + a.im * c.re) + d.im};
}

}  // namespace fref


namespace {

using conform::anyNaN;
using conform::op;

// A constant that takes no shortcut (0 and 1 have behaviour of their own, tested apart).
const std::vector<conform::K> kConst = {conform::K(1.375, -0.625)};

const auto isZero = [](auto a, auto...) { if constexpr (requires { a.re; }) return !a.re && !a.im; else return !a; };

// Plain, in place, and their 64-bit-length drivers (length checked first), by the plain form's shape.
#define V2(p, i, l, il) Z(p, "ssdn"), Z(i, "sbn"), Z(l, "ssdN"), Z(il, "sbN")
#define V2N(p, i, l, il) Z(p, "ssdN"), Z(i, "sbN"), Z(l, "ssdN"), Z(il, "sbN")
#define VC(p, i, l, il) Z(p, "skdn"), Z(i, "kbn"), Z(l, "skdN"), Z(il, "kbN")
#define VCn(p, i, l, il) Z(p, "skdn"), Z(i, "kbn"), Z(l, "skdn"), Z(il, "kbn")
#define V1(p, i, l, il) Z(p, "sdn"), Z(i, "bn"), Z(l, "sdN"), Z(il, "bN")

CONFORM(add, op([](auto a, auto b) { return fref::lift(b, a, fref::addOp); }),
        V2(zetsAdd_32f, zetsAdd_32f_I, zetsAdd_32f_L, zetsAdd_32f_I_L),
        V2(zetsAdd_64f, zetsAdd_64f_I, zetsAdd_64f_L, zetsAdd_64f_I_L),
        V2N(zetsAdd_32fc, zetsAdd_32fc_I, zetsAdd_32fc_L, zetsAdd_32fc_I_L),
        V2N(zetsAdd_64fc, zetsAdd_64fc_I, zetsAdd_64fc_L, zetsAdd_64fc_I_L));
CONFORM(sub, op([](auto a, auto b) { return fref::lift(b, a, fref::subOp); }),
        V2(zetsSub_32f, zetsSub_32f_I, zetsSub_32f_L, zetsSub_32f_I_L),
        V2(zetsSub_64f, zetsSub_64f_I, zetsSub_64f_L, zetsSub_64f_I_L),
        V2N(zetsSub_32fc, zetsSub_32fc_I, zetsSub_32fc_L, zetsSub_32fc_I_L),
        V2N(zetsSub_64fc, zetsSub_64fc_I, zetsSub_64fc_L, zetsSub_64fc_I_L));
CONFORM(mul, op([](auto a, auto b) { return fref::mul(b, a); }),
        V2(zetsMul_32f, zetsMul_32f_I, zetsMul_32f_L, zetsMul_32f_I_L),
        V2(zetsMul_64f, zetsMul_64f_I, zetsMul_64f_L, zetsMul_64f_I_L));
// Complex products: the NaN a lane delivers depends on the fused order, so any NaN stands for a NaN.
CONFORM(cmul, op([](auto a, auto b) { return fref::cmul(a, b); }).cmp(anyNaN()),
        V2(zetsMul_32fc, zetsMul_32fc_I, zetsMul_32fc_L, zetsMul_32fc_I_L),
        V2(zetsMul_64fc, zetsMul_64fc_I, zetsMul_64fc_L, zetsMul_64fc_I_L));
CONFORM(mul32f32fc, op([](float a, Zet32fc b) { return Zet32fc{fref::mul(a, b.re), fref::mul(a, b.im)}; }),
        Z(zetsMul_32f32fc, "ssdn"), Z(zetsMul_32f32fc_I, "sbn"));
CONFORM(addC, op([](auto a, auto c) { return fref::lift(a, c, fref::addOp); }).k(kConst),
        VC(zetsAddC_32f, zetsAddC_32f_I, zetsAddC_32f_L, zetsAddC_32f_I_L),
        VC(zetsAddC_64f, zetsAddC_64f_I, zetsAddC_64f_L, zetsAddC_64f_I_L),
        VC(zetsAddC_32fc, zetsAddC_32fc_I, zetsAddC_32fc_L, zetsAddC_32fc_I_L),
        VC(zetsAddC_64fc, zetsAddC_64fc_I, zetsAddC_64fc_L, zetsAddC_64fc_I_L));
CONFORM(subC, op([](auto a, auto c) { return fref::lift(a, c, fref::subOp); }).k(kConst),
        VC(zetsSubC_32f, zetsSubC_32f_I, zetsSubC_32f_L, zetsSubC_32f_I_L),
        VC(zetsSubC_64f, zetsSubC_64f_I, zetsSubC_64f_L, zetsSubC_64f_I_L),
        VC(zetsSubC_32fc, zetsSubC_32fc_I, zetsSubC_32fc_L, zetsSubC_32fc_I_L),
        VC(zetsSubC_64fc, zetsSubC_64fc_I, zetsSubC_64fc_L, zetsSubC_64fc_I_L));
CONFORM(subCRev, op([](auto a, auto c) { return fref::lift(c, a, fref::subOp); }).k(kConst),
        VC(zetsSubCRev_32f, zetsSubCRev_32f_I, zetsSubCRev_32f_L, zetsSubCRev_32f_I_L),
        VC(zetsSubCRev_64f, zetsSubCRev_64f_I, zetsSubCRev_64f_L, zetsSubCRev_64f_I_L),
        VC(zetsSubCRev_32fc, zetsSubCRev_32fc_I, zetsSubCRev_32fc_L, zetsSubCRev_32fc_I_L),
        VC(zetsSubCRev_64fc, zetsSubCRev_64fc_I, zetsSubCRev_64fc_L, zetsSubCRev_64fc_I_L));
CONFORM(mulC, op([](auto a, auto c) { return fref::mul(c, a); }).k(kConst),
        VCn(zetsMulC_32f, zetsMulC_32f_I, zetsMulC_32f_L, zetsMulC_32f_I_L),
        VCn(zetsMulC_64f, zetsMulC_64f_I, zetsMulC_64f_L, zetsMulC_64f_I_L));
CONFORM(cmulC, op([](auto a, auto c) { return fref::cmulC(a, c); }).k(kConst).cmp(anyNaN()),
        VCn(zetsMulC_32fc, zetsMulC_32fc_I, zetsMulC_32fc_L, zetsMulC_32fc_I_L),
        VCn(zetsMulC_64fc, zetsMulC_64fc_I, zetsMulC_64fc_L, zetsMulC_64fc_I_L));
CONFORM(sqr, op([](auto a) { return fref::mul(a, a); }), V1(zetsSqr_32f, zetsSqr_32f_I, zetsSqr_32f_L, zetsSqr_32f_I_L),
        V1(zetsSqr_64f, zetsSqr_64f_I, zetsSqr_64f_L, zetsSqr_64f_I_L));
CONFORM(csqr, op([](auto a) { return fref::csqr(a); }).cmp(anyNaN()),
        V1(zetsSqr_32fc, zetsSqr_32fc_I, zetsSqr_32fc_L, zetsSqr_32fc_I_L),
        V1(zetsSqr_64fc, zetsSqr_64fc_I, zetsSqr_64fc_L, zetsSqr_64fc_I_L));
// -0 stays -0 and a NaN keeps its sign and payload: the larger of a and -a.
CONFORM(abs, op([](auto a) { return fref::absMax(a); }), V1(zetsAbs_32f, zetsAbs_32f_I, zetsAbs_32f_L, zetsAbs_32f_I_L),
        V1(zetsAbs_64f, zetsAbs_64f_I, zetsAbs_64f_L, zetsAbs_64f_I_L));
CONFORM(addProduct, op([](auto a, auto b, auto d) {
            if constexpr (requires { a.re; }) return fref::caddProduct(a, b, d);
            else return std::fma(b, a, d);
        }).cmp(anyNaN()),
        Z(zetsAddProduct_32f, "ssbn"), Z(zetsAddProduct_64f, "ssbn"), Z(zetsAddProduct_32fc, "ssbn"),
        Z(zetsAddProduct_64fc, "ssbn"));
CONFORM(addProductC, op([](auto a, auto d, auto c) { return fref::add(fref::mul(c, a), d); }).k(kConst),
        Z(zetsAddProductC_32f, "skbn"), Z(zetsAddProductC_64f, "skbn"));
CONFORM(caddProductC, op([](auto a, auto d, auto c) { return fref::caddProductC(a, c, d); }).k(kConst).cmp(anyNaN()),
        Z(zetsAddProductC_32fc, "skbn"), Z(zetsAddProductC_64fc, "skbn"));

// src2 / src1, correctly rounded; a zero divisor (-0 too) warns once everything is written.
CONFORM(div, op([](auto a, auto b) { return fref::ordered(b, a, b / a); }).warnIf(zetStsDivByZeroWarn, isZero),
        V2(zetsDiv_32f, zetsDiv_32f_I, zetsDiv_32f_L, zetsDiv_32f_I_L),
        V2(zetsDiv_64f, zetsDiv_64f_I, zetsDiv_64f_L, zetsDiv_64f_I_L));
// Complex b / a = (b conj(a)) / |a|^2; a zero divisor gives each part of b over 0.
template <class C> C cdiv(C a, C b) {
    using R = fref::RealOf<C>;
    if (a.re == 0 && a.im == 0) return {b.re / a.re, b.im / a.re};
    const long double ar = a.re, ai = a.im, br = b.re, bi = b.im, den = ar * ar + ai * ai;
    return {R((br * ar + bi * ai) / den), R((bi * ar - br * ai) / den)};
}
// 32fc works in double: within one rounding of the exact value, special values included.
CONFORM(div32fc,
        op([](Zet32fc a, Zet32fc b) { return cdiv(a, b); }).cmp(conform::ulps(1)).warnIf(zetStsDivByZeroWarn, isZero),
        V2(zetsDiv_32fc, zetsDiv_32fc_I, zetsDiv_32fc_L, zetsDiv_32fc_I_L));
// 64fc has no wider type to work in: close to the formula on ordinary values.
CONFORM(div64fc, op([](Zet64fc a, Zet64fc b) { return cdiv(a, b); }).cmp(conform::rel(1e-9)).dom(conform::Dom::Plain),
        V2(zetsDiv_64fc, zetsDiv_64fc_I, zetsDiv_64fc_L, zetsDiv_64fc_I_L));
// By a constant: times the reciprocal rounded once, which is not the quotient.
CONFORM(divC, op([](auto a, auto c) { return fref::mul(decltype(c)(1) / c, a); }).k(kConst),
        VC(zetsDivC_32f, zetsDivC_32f_I, zetsDivC_32f_L, zetsDivC_32f_I_L),
        VC(zetsDivC_64f, zetsDivC_64f_I, zetsDivC_64f_L, zetsDivC_64f_I_L));
// 2 - 2i has the exact reciprocal (1 + i) / 4 by any method.
CONFORM(cdivC, op([](auto a, auto c) { return fref::cmulC(a, decltype(c){0.25, 0.25}); }).k({conform::K(2, -2)})
                   .cmp(anyNaN()),
        VC(zetsDivC_32fc, zetsDivC_32fc_I, zetsDivC_32fc_L, zetsDivC_32fc_I_L),
        VC(zetsDivC_64fc, zetsDivC_64fc_I, zetsDivC_64fc_L, zetsDivC_64fc_I_L));
CONFORM(divCRev,
        op([](float a, float c) { return fref::ordered(c, a, c / a); }).k(kConst) .warnIf(zetStsDivByZeroWarn, isZero),
        VC(zetsDivCRev_32f, zetsDivCRev_32f_I, zetsDivCRev_32f_L, zetsDivCRev_32f_I_L));

// -0 survives only a copy (x + 0 gives +0), a signalling NaN only a copy
// (arithmetic quiets it), and x * 0 is +0 for every x only through a zeroing.
template <class R, class F> void shortcut(const char* what, F call, bool inPlace, bool zeroes) {
    const R snan = zettest::fromBits<R>(sizeof(R) == 4 ? 0x7F800123ull : 0x7FF0000000000123ull);
    const std::vector<R> s = {R(-0.0), snan, R(-2.5), R(INFINITY), R(3), R(0), -snan, R(-1e-30), R(1)}, zero(s.size());
    std::vector<R> d = inPlace ? s : std::vector<R>(s.size(), R(42));
    ASSERT_EQ(call(s.data(), d.data(), static_cast<int>(s.size())), zetStsOk) << what;
    EXPECT_EQ(zettest::firstBitMismatch(d.data(), (zeroes ? zero : s).data(), s.size()), -1) << what;
}

TEST(FloatConstants, ZeroAndOneBecomeCopiesOrZeroings) {
    shortcut<float>("AddC -0", [](auto s, auto d, int n) { return zetsAddC_32f(s, -0.0f, d, n); }, false, false);
    shortcut<float>("AddC_I 0", [](auto, auto d, int n) { return zetsAddC_32f_I(0.0f, d, n); }, true, false);
    shortcut<float>("MulC 1", [](auto s, auto d, int n) { return zetsMulC_32f(s, 1.0f, d, n); }, false, false);
    shortcut<float>("MulC -0", [](auto s, auto d, int n) { return zetsMulC_32f(s, -0.0f, d, n); }, false, true);
    shortcut<float>("DivC 1", [](auto s, auto d, int n) { return zetsDivC_32f(s, 1.0f, d, n); }, false, false);
    shortcut<float>("DivC inf", [](auto s, auto d, int n) { return zetsDivC_32f(s, 1 / 0.0f, d, n); }, false, true);
    shortcut<double>("AddC 0", [](auto s, auto d, int n) { return zetsAddC_64f(s, 0.0, d, n); }, false, false);
    shortcut<double>("MulC_L 0", [](auto s, auto d, int n) { return zetsMulC_64f_L(s, 0.0, d, n); }, false, true);
    // The 32f _L MulC zeroes, then multiplies: 0 * src, so -0 for negatives and NaN for inf and NaN.
    const float in[4] = {-2.5f, INFINITY, 3, 0};
    float out[4];
    ASSERT_EQ(zetsMulC_32f_L(in, 0.0f, out, 4), zetStsOk);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(zettest::bitsOf(out[i]), zettest::bitsOf(fref::mul(0.0f, in[i]))) << i;
}

// AddC of 64f copies through the byte copy with a 32-bit byte count: from
// 2^28 elements it wraps to a size error or a shorter copy; MulC by 0 zeroes
// through Zero, whose byte count wraps the same way.
TEST(FloatConstants, ShortcutsKeepTheirByteCountWidth) {
    alignas(64) double src[4] = {1, 2, 3, 4}, dst[4] = {9, 9, 9, 9};
    EXPECT_EQ(zetsAddC_64f(src, 0.0, dst, 0x20000000), zetStsSizeErr);  // 2^32 bytes wrap to 0
    EXPECT_EQ(zetsAddC_64f(src, 0.0, dst, 0x10000000), zetStsSizeErr);  // 2^31 bytes read as negative
    EXPECT_EQ(zetsAddC_64f(src, 0.0, dst, 0x20000001), zetStsOk);       // wraps to 8 bytes
    EXPECT_TRUE(dst[0] == 1.0 && dst[1] == 9.0);
    alignas(64) float f[4] = {5, 5, 5, 5};
    EXPECT_EQ(zetsMulC_32f(f, 0.0f, f, 0x40000000), zetStsOk);  // Zero of 2^32 bytes clears one byte
    EXPECT_TRUE(zettest::bitsOf(f[0]) == (zettest::bitsOf(5.0f) & 0xFFFFFF00u) && f[1] == 5.0f);
}

// a*a = 1 + 2^-11 + 2^-24 exactly: the fused sum keeps the last term, the rounded product loses it.
TEST(FloatArith, AddProductFusesAndAddProductCDoesNot) {
    const float a = 1.0f + 0x1p-12f;
    float d[2] = {-1.0f, -1.0f};
    ASSERT_EQ(zetsAddProduct_32f(&a, &a, &d[0], 1), zetStsOk);
    ASSERT_EQ(zetsAddProductC_32f(&a, a, &d[1], 1), zetStsOk);
    EXPECT_EQ(d[0], 0x1p-11f + 0x1p-24f);
    EXPECT_EQ(d[1], 0x1p-11f);
}

}  // namespace
