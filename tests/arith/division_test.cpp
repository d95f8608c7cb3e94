// Division: warnings and errors for zero divisors, division by a constant
// through the reciprocal, and the integer quotient rounded by mode and scale
// against a reference that rounds the exact rational directly.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using i128 = __int128;

// n / (m 2^scale) rounded by mode (0 toward zero, 1 half even, 2 half away),
// saturated to D; a zero divisor gives max, min or 0 by the sign of n.
template <class D>
D refQuotient(i128 n, i128 m, int scale, int mode = 1) {
    const i128 lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    if (m == 0) return static_cast<D>(n > 0 ? hi : n < 0 ? lo : 0);
    // The value as num / den with den > 0.
    i128 num = n, den = m;
    if (scale >= 0) den *= i128{1} << scale;
    else num *= i128{1} << -scale;
    if (den < 0) num = -num, den = -den;
    const bool neg = num < 0;
    const i128 a = neg ? -num : num;  // |value| = a / den
    i128 q = a / den;
    const i128 r2 = 2 * (a % den);
    if (mode == 1 && (r2 > den || (r2 == den && (q & 1)))) ++q;
    if (mode == 2 && r2 >= den) ++q;
    const i128 v = neg ? -q : q;
    return static_cast<D>(v < lo ? lo : v > hi ? hi : v);
}

TEST(IntDivision, EightBitExhaustivelyInEveryMode) {
    std::vector<Zet8u> a(65536), b(65536), d(65536);
    for (int i = 0; i < 65536; ++i) a[i] = static_cast<Zet8u>(i), b[i] = static_cast<Zet8u>(i >> 8);
    for (int scale = -9; scale <= 10; ++scale) {
        ASSERT_EQ(zetsDiv_8u_Sfs(a.data(), b.data(), d.data(), 65536, scale), zetStsDivByZeroWarn);
        for (int i = 0; i < 65536; ++i) ASSERT_EQ(d[i], refQuotient<Zet8u>(b[i], a[i], scale)) << b[i] << "/" << a[i] << " scale " << scale;
        for (int mode = 0; mode <= 2; ++mode) {
            ASSERT_EQ(zetsDiv_Round_8u_Sfs(a.data(), b.data(), d.data(), 65536, mode, scale), zetStsDivByZeroWarn);
            for (int i = 0; i < 65536; ++i)
                ASSERT_EQ(d[i], refQuotient<Zet8u>(b[i], a[i], scale, mode)) << b[i] << "/" << a[i] << " mode " << mode;
        }
    }
}

template <class T>
std::vector<T> withExtremes(std::size_t n, std::mt19937_64& rng) {
    using L = std::numeric_limits<T>;
    const T sp[] = {L::min(), L::max(), T(0), T(1), T(2), T(3), T(L::max() - 1), T(L::min() + 1), T(-1), T(-2)};
    std::vector<T> v(n);
    for (auto& x : v) x = rng() % 3 == 0 ? sp[rng() % 10] : static_cast<T>(static_cast<T>(rng()) >> (rng() % (8 * sizeof(T))));
    return v;
}

TEST(IntDivision, WiderTypesRandomWithExtremes) {
    std::mt19937_64 rng(40);
    for (int len : {1, 5, 16, 17, 64, 257}) {
        const auto a16 = withExtremes<Zet16s>(len, rng), b16 = withExtremes<Zet16s>(len, rng);
        const auto a16u = withExtremes<Zet16u>(len, rng), b16u = withExtremes<Zet16u>(len, rng);
        const auto a32 = withExtremes<Zet32s>(len, rng), b32 = withExtremes<Zet32s>(len, rng);
        std::vector<Zet16s> d16(len);
        std::vector<Zet16u> d16u(len);
        std::vector<Zet32s> d32(len);
        for (int scale : {-40, -17, -16, -3, 0, 1, 2, 15, 16, 17, 33, 70}) {
            auto anyZero = [](const auto& v) {
                for (auto x : v) if (x == 0) return true;
                return false;
            };
            ASSERT_EQ(zetsDiv_16s_Sfs(a16.data(), b16.data(), d16.data(), len, scale), anyZero(a16) ? zetStsDivByZeroWarn : zetStsOk);
            for (int i = 0; i < len; ++i) ASSERT_EQ(d16[i], refQuotient<Zet16s>(b16[i], a16[i], scale)) << scale;
            for (int mode = 0; mode <= 2; ++mode) {
                d16u = b16u;
                zetsDiv_Round_16u_ISfs(a16u.data(), d16u.data(), len, mode, scale);
                for (int i = 0; i < len; ++i) ASSERT_EQ(d16u[i], refQuotient<Zet16u>(b16u[i], a16u[i], scale, mode)) << mode;
                zetsDiv_Round_16s_Sfs(a16.data(), b16.data(), d16.data(), len, mode, scale);
                for (int i = 0; i < len; ++i) ASSERT_EQ(d16[i], refQuotient<Zet16s>(b16[i], a16[i], scale, mode)) << mode;
            }
            d32 = b32;
            zetsDiv_32s_ISfs(a32.data(), d32.data(), len, scale);
            for (int i = 0; i < len; ++i) ASSERT_EQ(d32[i], refQuotient<Zet32s>(b32[i], a32[i], scale)) << scale;
            zetsDiv_32s16s_Sfs(a16.data(), b32.data(), d16.data(), len, scale);
            for (int i = 0; i < len; ++i) ASSERT_EQ(d16[i], refQuotient<Zet16s>(b32[i], a16[i], scale)) << scale;
            if (a16[0] != 0) {
                ASSERT_EQ(zetsDivC_16s_Sfs(b16.data(), a16[0], d16.data(), len, scale), zetStsOk);
                for (int i = 0; i < len; ++i) ASSERT_EQ(d16[i], refQuotient<Zet16s>(b16[i], a16[0], scale)) << scale;
            }
            std::vector<Zet64s> d64(len);
            for (int i = 0; i < len; ++i) d64[i] = static_cast<Zet64s>(b32[i]) * 4097 * (i % 2 ? -1 : 1);
            const std::vector<Zet64s> n64 = d64;
            ASSERT_EQ(zetsDivC_64s_ISfs(-7, d64.data(), len, scale), zetStsOk);
            for (int i = 0; i < len; ++i) ASSERT_EQ(d64[i], refQuotient<Zet64s>(n64[i], -7, scale)) << scale;
        }
    }
}

TEST(IntDivision, ComplexQuotientsExact) {
    std::mt19937_64 rng(41);
    const int len = 300;
    auto a = withExtremes<Zet16s>(2 * len, rng), b = withExtremes<Zet16s>(2 * len, rng);
    a[0] = a[1] = 0;  // one zero divisor
    std::vector<Zet16sc> d(len);
    for (int scale : {-20, -1, 0, 1, 8, 31}) {
        const auto* ca = reinterpret_cast<const Zet16sc*>(a.data());
        const auto* cb = reinterpret_cast<const Zet16sc*>(b.data());
        ASSERT_EQ(zetsDiv_16sc_Sfs(ca, cb, d.data(), len, scale), zetStsDivByZeroWarn);
        for (int i = 0; i < len; ++i) {
            const i128 ar = ca[i].re, ai = ca[i].im, br = cb[i].re, bi = cb[i].im, den = ar * ar + ai * ai;
            const Zet16s re = den ? refQuotient<Zet16s>(br * ar + bi * ai, den, scale) : refQuotient<Zet16s>(br, 0, 0);
            const Zet16s im = den ? refQuotient<Zet16s>(bi * ar - br * ai, den, scale) : refQuotient<Zet16s>(bi, 0, 0);
            ASSERT_EQ(d[i].re, re) << i << " scale " << scale;
            ASSERT_EQ(d[i].im, im) << i << " scale " << scale;
        }
    }
}

// Zero divisors: a constant of 0 is an error with nothing written, a vector
// element of 0 a warning after everything is written.
TEST(DivisionStatus, ZeroDivisorsAndModes) {
    float f[3] = {1, 2, 3}, fd[3] = {7, 7, 7};
    const float fz[3] = {1, -0.0f, std::nanf("")};
    EXPECT_EQ(zetsDivC_32f(f, 0.0f, fd, 3), zetStsDivByZeroErr);
    EXPECT_EQ(zetsDivC_32f(f, -0.0f, fd, 3), zetStsDivByZeroErr);
    EXPECT_EQ(fd[0], 7.0f);
    EXPECT_EQ(zetsDivC_32fc_I(Zet32fc{0, 0}, reinterpret_cast<Zet32fc*>(fd), 1), zetStsDivByZeroErr);
    EXPECT_EQ(zetsDiv_32f(fz, f, fd, 3), zetStsDivByZeroWarn);  // -0 counts, NaN does not
    EXPECT_EQ(fd[1], -INFINITY);
    EXPECT_EQ(zetsDiv_32f(f, fz, fd, 3), zetStsOk);
    EXPECT_EQ(zetsDivCRev_32f(fz, 1.0f, fd, 3), zetStsDivByZeroWarn);
    EXPECT_EQ(zetsDivC_32f(nullptr, 0.0f, fd, 3), zetStsNullPtrErr);  // checks before the constant
    EXPECT_EQ(zetsDivC_32f(f, 0.0f, fd, 0), zetStsSizeErr);

    Zet16s s[2] = {5, -5}, sd[2] = {9, 9};
    EXPECT_EQ(zetsDivC_16s_Sfs(s, 0, sd, 2, 0), zetStsDivByZeroErr);
    EXPECT_EQ(sd[0], 9);
    Zet64s big[3] = {5, -5, 0};
    EXPECT_EQ(zetsDivC_64s_ISfs(0, big, 3, 0), zetStsDivByZeroWarn);
    EXPECT_EQ(big[0], LLONG_MAX);
    EXPECT_EQ(big[1], LLONG_MIN);
    EXPECT_EQ(big[2], 0);
    Zet16u u[3] = {0, 3, 2}, ud[3];
    EXPECT_EQ(zetsDivCRev_16u(u, 7, ud, 3), zetStsDivByZeroWarn);
    EXPECT_EQ(ud[0], 65535);
    EXPECT_EQ(ud[1], 2);  // 7/3
    EXPECT_EQ(ud[2], 4);  // 3.5 to even
    Zet8u n8[2] = {200, 0}, z8[2] = {0, 0}, d8[2];
    EXPECT_EQ(zetsDiv_8u_Sfs(z8, n8, d8, 2, 0), zetStsDivByZeroWarn);
    EXPECT_EQ(d8[0], 255);
    EXPECT_EQ(d8[1], 0);

    // The rounding mode is checked after the pointers and the length.
    Zet16s x[2] = {1, 2};
    EXPECT_EQ(zetsDiv_Round_16s_Sfs(x, x, x, 2, 3, 0), zetStsRoundModeValueErr);
    EXPECT_EQ(zetsDiv_Round_16s_Sfs(x, x, x, 2, -1, 0), zetStsRoundModeValueErr);
    EXPECT_EQ(zetsDiv_Round_16s_Sfs(nullptr, x, x, 2, 3, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsDiv_Round_8u_ISfs(reinterpret_cast<Zet8u*>(x), reinterpret_cast<Zet8u*>(x), 0, 7, 0), zetStsSizeErr);
}

// The constant forms multiply by the rounded reciprocal, and MulC's special
// constants apply to it.
TEST(DivisionByConstant, UsesTheRoundedReciprocal) {
    std::mt19937 rng(42);
    std::vector<float> v(1000), byC(1000), byV(1000), three(1000, 3.0f);
    for (auto& x : v) x = std::ldexp(static_cast<float>(rng() % 1000000 + 1), -10);
    ASSERT_EQ(zetsDivC_32f(v.data(), 3.0f, byC.data(), 1000), zetStsOk);
    ASSERT_EQ(zetsDiv_32f(three.data(), v.data(), byV.data(), 1000), zetStsOk);
    int differ = 0;
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(byC[i], v[i] * (1.0f / 3.0f));
        EXPECT_EQ(byV[i], v[i] / 3.0f);
        differ += byC[i] != byV[i];
    }
    EXPECT_GT(differ, 0) << "a product with the reciprocal is not the quotient";
    // A reciprocal of exactly 1 copies (a signalling NaN stays signalling);
    // an infinite constant has the reciprocal 0, which zeroes.
    const float snan = zettest::fromBits<float>(0x7F800001u);
    float s[2] = {snan, -4.0f}, d[2];
    ASSERT_EQ(zetsDivC_32f(s, 1.0f, d, 2), zetStsOk);
    EXPECT_EQ(zettest::bitsOf(d[0]), 0x7F800001u);
    ASSERT_EQ(zetsDivC_32f(s, INFINITY, d, 2), zetStsOk);
    EXPECT_EQ(zettest::bitsOf(d[0]), 0u);
    EXPECT_EQ(zettest::bitsOf(d[1]), 0u);
}

}  // namespace

namespace {

// Integer forms with vectors at odd byte addresses give the results of the
// same call on aligned vectors (the scalar paths read through byte copies).
TEST(IntegerAlignment, ResultsDoNotDependOnTheAddress) {
    std::mt19937_64 rng(43);
    struct Form {
        const char* name;
        std::size_t elem;
        std::function<ZetStatus(const void*, const void*, void*, int)> call;
    };
    const Form forms[] = {
        {"Add_32s_Sfs", 4, [](const void* a, const void* b, void* d, int n) { return zetsAdd_32s_Sfs((const Zet32s*)a, (const Zet32s*)b, (Zet32s*)d, n, 3); }},
        {"Add_16s_Sfs", 2, [](const void* a, const void* b, void* d, int n) { return zetsAdd_16s_Sfs((const Zet16s*)a, (const Zet16s*)b, (Zet16s*)d, n, 1); }},
        {"Mul_16sc_Sfs", 4, [](const void* a, const void* b, void* d, int n) { return zetsMul_16sc_Sfs((const Zet16sc*)a, (const Zet16sc*)b, (Zet16sc*)d, n, 2); }},
        {"Div_16s_Sfs", 2, [](const void* a, const void* b, void* d, int n) { return zetsDiv_16s_Sfs((const Zet16s*)a, (const Zet16s*)b, (Zet16s*)d, n, -1); }},
        {"Div_16sc_Sfs", 4, [](const void* a, const void* b, void* d, int n) { return zetsDiv_16sc_Sfs((const Zet16sc*)a, (const Zet16sc*)b, (Zet16sc*)d, n, 0); }},
        {"Abs_32s", 4, [](const void* a, const void*, void* d, int n) { return zetsAbs_32s((const Zet32s*)a, (Zet32s*)d, n); }},
        {"MulC_64f64s_ISfs", 8, [](const void* a, const void*, void* d, int n) { std::memcpy(d, a, 8 * n); return zetsMulC_64f64s_ISfs(0.75, (Zet64s*)d, n, 0); }},
        {"Div_64fc", 16, [](const void* a, const void* b, void* d, int n) { return zetsDiv_64fc((const Zet64fc*)a, (const Zet64fc*)b, (Zet64fc*)d, n); }},
        {"Div_32fc", 8, [](const void* a, const void* b, void* d, int n) { return zetsDiv_32fc((const Zet32fc*)a, (const Zet32fc*)b, (Zet32fc*)d, n); }},
    };
    for (const Form& f : forms) {
        for (int len : {1, 3, 17, 40}) {
            const std::size_t bytes = len * f.elem;
            std::vector<unsigned char> a(bytes + 8), b(bytes + 8), d1(bytes + 8), d2(bytes + 8);
            zettest::fillBytes(a.data(), a.size(), rng);
            zettest::fillBytes(b.data(), b.size(), rng);
            alignas(64) static unsigned char A[1024], B[1024], D[1024];
            std::memcpy(A, a.data(), bytes);
            std::memcpy(B, b.data(), bytes);
            const ZetStatus aligned = f.call(A, B, D, len);
            std::memcpy(d1.data(), D, bytes);
            for (std::size_t off : {1u, 3u, 7u}) {
                std::memcpy(A + off, a.data(), bytes);
                std::memcpy(B + off, b.data(), bytes);
                ASSERT_EQ(f.call(A + off, B + off, D + off, len), aligned) << f.name;
                std::memcpy(d2.data(), D + off, bytes);
                ASSERT_EQ(std::memcmp(d1.data(), d2.data(), bytes), 0) << f.name << " len " << len << " offset " << off;
            }
        }
    }
}

}  // namespace

namespace {

// The forms not reached by the tables above, each against its formula.
TEST(RemainingForms, AgainstTheirFormulas) {
    std::mt19937_64 rng(44);
    const int n = 300;
    auto a16u = withExtremes<Zet16u>(n, rng), b16u = withExtremes<Zet16u>(n, rng);
    auto a8 = withExtremes<Zet8u>(n, rng);
    auto a16 = withExtremes<Zet16s>(n, rng), b16 = withExtremes<Zet16s>(n, rng);
    std::vector<Zet16u> d16u(n);
    std::vector<Zet8u> d8(n);
    std::vector<Zet16s> d16(n);
    std::vector<Zet32s> d32(n);
    std::vector<Zet32f> f(n);
    for (int scale : {-5, 0, 3}) {
        zetsDiv_16u_Sfs(a16u.data(), b16u.data(), d16u.data(), n, scale);
        for (int i = 0; i < n; ++i) ASSERT_EQ(d16u[i], refQuotient<Zet16u>(b16u[i], a16u[i], scale));
        ASSERT_EQ(zetsDivC_8u_Sfs(a8.data(), 7, d8.data(), n, scale), zetStsOk);
        for (int i = 0; i < n; ++i) ASSERT_EQ(d8[i], refQuotient<Zet8u>(a8[i], 7, scale));
        ASSERT_EQ(zetsDivC_16u_Sfs(a16u.data(), 300, d16u.data(), n, scale), zetStsOk);
        for (int i = 0; i < n; ++i) ASSERT_EQ(d16u[i], refQuotient<Zet16u>(a16u[i], 300, scale));
        std::vector<Zet16sc> c(n / 2);
        const auto* ca = reinterpret_cast<const Zet16sc*>(a16.data());
        ASSERT_EQ(zetsDivC_16sc_Sfs(ca, Zet16sc{-3, 4}, c.data(), n / 2, scale), zetStsOk);
        for (int i = 0; i < n / 2; ++i) {
            const i128 br = ca[i].re, bi = ca[i].im;  // (b.re + i b.im) / (-3 + 4i)
            ASSERT_EQ(c[i].re, refQuotient<Zet16s>(br * -3 + bi * 4, 25, scale));
            ASSERT_EQ(c[i].im, refQuotient<Zet16s>(bi * -3 - br * 4, 25, scale));
        }
        std::vector<Zet32s> acc(n);
        for (int i = 0; i < n; ++i) acc[i] = d32[i] = static_cast<Zet32s>(rng());
        ASSERT_EQ(zetsAddProduct_16s32s_Sfs(a16.data(), b16.data(), acc.data(), n, scale), zetStsOk);
        for (int i = 0; i < n; ++i) ASSERT_EQ(acc[i], refQuotient<Zet32s>(i128(d32[i]) + i128(a16[i]) * b16[i], 1, scale));
    }
    ASSERT_EQ(zetsMul_16s(a16.data(), b16.data(), d16.data(), n), zetStsOk);
    for (int i = 0; i < n; ++i) ASSERT_EQ(d16[i], refQuotient<Zet16s>(i128(a16[i]) * b16[i], 1, 0));
    ASSERT_EQ(zetsAdd_16u(a16u.data(), b16u.data(), d16u.data(), n), zetStsOk);
    for (int i = 0; i < n; ++i) ASSERT_EQ(d16u[i], std::min(a16u[i] + b16u[i], 65535));
    ASSERT_EQ(zetsAdd_16s32f(a16.data(), b16.data(), f.data(), n), zetStsOk);
    for (int i = 0; i < n; ++i) ASSERT_EQ(f[i], static_cast<float>(a16[i] + b16[i]));
    std::vector<Zet32s> s32 = {INT_MIN, -5, 5, INT_MAX};
    ASSERT_EQ(zetsAbs_32s(s32.data(), d32.data(), 4), zetStsOk);
    EXPECT_EQ(d32[0], INT_MAX);
    EXPECT_EQ(d32[1], 5);
}

}  // namespace
