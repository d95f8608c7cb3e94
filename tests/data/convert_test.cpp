// Conversions between integer and floating types against one reference: the
// exact value (128-bit integer or long double), rounded once by the mode, saturated.
#include <immintrin.h>

#include <algorithm>
#include <cfenv>

#include "conform.hpp"

// Packed 24-bit elements (three bytes, little endian), which the rows see as three byte parts.
template <bool Signed> struct P24 { unsigned char b[3]; };
template <bool S> struct conform::Parts<P24<S>> { using P = Zet8u; static constexpr int n = 3; };

namespace {

using conform::op;
using i128 = __int128;

// An export with its packed side (Zet8u) typed as P, so a row counts elements, not bytes.
template <auto F, class P> struct Packed;
template <class S, class D, class... A, ZetStatus (*F)(const S*, D*, int, A...), class P> struct Packed<F, P> {
    template <class T> using As = std::conditional_t<std::is_same_v<T, Zet8u>, P, T>;
    static ZetStatus call(const As<S>* s, As<D>* d, int n, A... a) { return F((const S*)s, (D*)d, n, a...); }
};

// Modes: 0 toward zero, 1 nearest even, anything else nearest with ties away from zero.
i128 roundScaled(i128 s, int scale, int mode) {  // s times 2^-scale
    if (scale <= 0) return s * (i128{1} << std::min(-(long long)scale, 64LL));  // past 64 only the sign counts
    if (scale > 100) return 0;
    const i128 den = i128{1} << scale, q = s / den, r = s % den < 0 ? -(s % den) : s % den;
    if (mode == 0 || 2 * r < den) return q;
    return 2 * r > den || mode != 1 || q % 2 != 0 ? q + (s < 0 ? -1 : 1) : q;
}
long double roundValue(long double x, int mode) {
    const long double f = std::floor(x), frac = x - f;
    if (mode == 0 || frac != 0.5L) return mode == 0 ? std::trunc(x) : frac < 0.5L ? f : f + 1;
    return mode == 1 ? (std::fmod(f, 2.0L) == 0 ? f : f + 1) : (x > 0 ? f + 1 : f);
}

// A source value with its mode and scale; converting it to a type applies the rule.
struct Exact {
    i128 n = 0;
    double x = 0;  // a floating source, binary32 when `single`
    bool isInt = true, single = false;
    int mode, scale;
    template <class S> Exact(S v, int m, int s) : mode(m), scale(s) {
        if constexpr (std::is_integral_v<S>) n = v;
        else if constexpr (std::is_floating_point_v<S>) x = v, isInt = false, single = sizeof(S) == 4;
        else n = (v.b[0] | v.b[1] << 8 | v.b[2] << 16) - (std::is_same_v<S, P24<true>> && v.b[2] > 127 ? 1 << 24 : 0);
    }
    i128 toInt(i128 lo, i128 hi) const {
        if (isInt) return std::clamp(roundScaled(n, scale, mode), lo, hi);
        // The factor: 1 - scale in the exponent field, borrowing into the sign and wrapping as bits do.
        long double v = x;
        if (single && scale) v *= zettest::fromBits<float>(0x3F800000u - (std::uint32_t(scale) << 23));
        if (!single && scale) v *= zettest::fromBits<double>(0x3FF0000000000000u - (std::uint64_t(scale) << 52));
        if (std::isnan(v)) return lo;
        if (v >= static_cast<long double>(hi) || v <= static_cast<long double>(lo)) return v > 0 ? hi : lo;
        return std::clamp(static_cast<i128>(roundValue(v, mode)), lo, hi);
    }
    template <class T> operator T() const {
        using L = std::numeric_limits<T>;
        if constexpr (std::is_same_v<T, P24<true>> || std::is_same_v<T, P24<false>>) {
            const i128 sign = std::is_same_v<T, P24<true>>, v = toInt(-sign << 23, (i128{1} << (24 - sign)) - 1);
            return T{{Zet8u(v), Zet8u(v >> 8), Zet8u(v >> 16)}};
        } else if constexpr (!std::is_floating_point_v<T>) return static_cast<T>(toInt(L::min(), L::max()));
        else if (!isInt) return static_cast<T>(x);  // one rounding, in the caller's direction
        else return static_cast<T>(std::ldexp(static_cast<long double>(n), -std::clamp(scale, -20000, 20000)));
    }
};
const auto rounded = [](auto x, int mode, int sf) { return Exact(x, mode, sf); };

#define ZP(fn, sign, shape) ::conform::entry<shape>(&Packed<fn, P24<sign>>::call, #fn)
CONFORM(plain, op([](auto x) { return Exact(x, 1, 0); }), Z(zetsConvert_8s16s, "sdn"), Z(zetsConvert_16s32s, "sdn"),
        Z(zetsConvert_8s8u, "sdn"), Z(zetsConvert_32s16s, "sdn"), Z(zetsConvert_8s32f, "sdn"),
        Z(zetsConvert_8u32f, "sdn"), Z(zetsConvert_16s32f, "sdn"), Z(zetsConvert_16u32f, "sdn"),
        Z(zetsConvert_32s32f, "sdn"), Z(zetsConvert_32s64f, "sdn"), Z(zetsConvert_64s64f, "sdn"),
        Z(zetsConvert_32f64f, "sdn"), Z(zetsConvert_64f32f, "sdn"), ZP(zetsConvert_24s32s, 1, "sdn"),
        ZP(zetsConvert_24u32u, 0, "sdn"), ZP(zetsConvert_24s32f, 1, "sdn"), ZP(zetsConvert_24u32f, 0, "sdn"));
CONFORM(scaled, op([](auto x, int sf) { return Exact(x, 1, sf); }), Z(zetsConvert_8u8s_Sfs, "sdnf"),
        Z(zetsConvert_16s8s_Sfs, "sdnf"), Z(zetsConvert_16s32f_Sfs, "sdnf"), Z(zetsConvert_32s32f_Sfs, "sdnf"),
        Z(zetsConvert_16s64f_Sfs, "sdnf"), Z(zetsConvert_32s64f_Sfs, "sdnf"),
        ZP(zetsConvert_32s24s_Sfs, 1, "sdnf"), ZP(zetsConvert_32u24u_Sfs, 0, "sdnf"));
// A negative length converts nothing and succeeds here (checked below), so the row sees it refused.
ZetStatus convert64f64s(const Zet64f* s, Zet64s* d, int len, int mode, int sf) {
    return len < 0 ? zetStsSizeErr : zetsConvert_64f64s_Sfs(s, d, len, mode, sf);
}
#define ZM(fn, m) ::conform::entry<"sdnkf">(&fn, #fn "_mode" #m)
#define ZPM(fn, sign, m) ::conform::entry<"sdnkf">(&Packed<fn, P24<sign>>::call, #fn "_mode" #m)
#define MODE_FORMS(m)                                                                                           \
    ZM(zetsConvert_32s16s_Sfs, m), ZM(zetsConvert_64s32s_Sfs, m), ZM(zetsConvert_32f8s_Sfs, m),                 \
        ZM(zetsConvert_32f8u_Sfs, m), ZM(zetsConvert_32f16s_Sfs, m), ZM(zetsConvert_32f16u_Sfs, m),             \
        ZM(zetsConvert_32f32s_Sfs, m), ZM(zetsConvert_64f8s_Sfs, m), ZM(zetsConvert_64f8u_Sfs, m),              \
        ZM(zetsConvert_64f16s_Sfs, m), ZM(zetsConvert_64f16u_Sfs, m), ZM(zetsConvert_64f32s_Sfs, m),         \
        ZPM(zetsConvert_32f24s_Sfs, 1, m), ZPM(zetsConvert_32f24u_Sfs, 0, m)
CONFORM(toward, op(rounded).k({conform::K(0)}), MODE_FORMS(0));
CONFORM(even, op(rounded).k({conform::K(1)}), MODE_FORMS(1));
CONFORM(away, op(rounded).k({conform::K(2)}), MODE_FORMS(2), ZM(convert64f64s, 2));

// Random sources seldom hold ties: halves and each side of the limits, at scales
// that move them by whole steps, in every mode (5 and -1 act as 2).
template <class S, class D>
void checkTies(ZetStatus (*fn)(const S*, D*, int, int, int), std::vector<int> modes = {0, 1, 2, 5, -1}) {
    using L = std::numeric_limits<D>;
    for (int sf : {0, 1, -3}) {
        std::vector<S> in;
        for (long double base : {0.0L, 1.0L * L::min(), 1.0L * L::max(), 1e30L, -1e30L})
            for (int h = -6; h <= 6; ++h) {
                const S v = static_cast<S>(std::ldexp(base + h * 0.5L, sf));
                in.insert(in.end(), {v, std::nextafter(v, S(0)), std::nextafter(v, S(1e300))});
            }
        std::vector<D> out(in.size());
        for (int mode : modes) {
            ASSERT_EQ(fn(in.data(), out.data(), static_cast<int>(in.size()), mode, sf), zetStsOk);
            for (std::size_t i = 0; i < in.size(); ++i)
                ASSERT_EQ(out[i], D(Exact(in[i], mode, sf))) << zettest::hexBits(in[i]) << " " << mode << " " << sf;
        }
    }
}
TEST(Convert, TiesAndLimitsInEveryMode) {
    checkTies(zetsConvert_32f8s_Sfs), checkTies(zetsConvert_32f8u_Sfs), checkTies(zetsConvert_32f16s_Sfs);
    checkTies(zetsConvert_32f16u_Sfs), checkTies(zetsConvert_32f32s_Sfs), checkTies(zetsConvert_64f8s_Sfs);
    checkTies(zetsConvert_64f8u_Sfs), checkTies(zetsConvert_64f16s_Sfs), checkTies(zetsConvert_64f16u_Sfs);
    checkTies(zetsConvert_64f32s_Sfs), checkTies(zetsConvert_64f64s_Sfs, {2});
    // 64f64s takes mode 2 only, checked after the length; a negative length converts nothing.
    const double g = 1.5;
    Zet64s o = 7;
    EXPECT_EQ(zetsConvert_64f64s_Sfs(&g, &o, 1, 1, 0), zetStsRoundModeErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(&g, &o, 0, 0, 0), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(&g, &o, -1, 0, 0), zetStsRoundModeErr);
    EXPECT_TRUE(zetsConvert_64f64s_Sfs(&g, &o, -1, 2, 0) == zetStsOk && o == 7);
}

// Float-to-integer results follow the mode alone, integer-to-float ones the caller's direction: every row again,
// rounding upward. The caller's control bits come back, unmasked invalid operation and raised flags too.
TEST(Convert, ControlWordIsTheCallersAndComesBack) {
    std::fesetround(FE_UPWARD);
    for (conform::RowBase* r : conform::registry())
        if (r->name.rfind("zetsConvert_", 0) == 0) r->run();
    std::fesetround(FE_TONEAREST);
    const unsigned saved = _mm_getcsr();
    _mm_setcsr((saved & ~0xBFu) | 0x6000u);
    const unsigned before = _mm_getcsr();
    const float f[3] = {NAN, 1e10f, -2.5f};
    const double g[3] = {NAN, -1e300, 2.5};
    Zet16s a[3];
    Zet32s b[3];
    Zet64s c[3];
    const bool ok = zetsConvert_32f16s_Sfs(f, a, 3, 1, 0) == zetStsOk &&
                    zetsConvert_64f32s_Sfs(g, b, 3, 0, 0) == zetStsOk &&
                    zetsConvert_64f64s_Sfs(g, c, 3, 2, 0) == zetStsOk;
    const unsigned after = _mm_getcsr();
    _mm_setcsr(saved);
    ASSERT_TRUE(ok);
    EXPECT_EQ(after & ~0x3Fu, before & ~0x3Fu);
    EXPECT_TRUE(after & 1) << "the invalid flag stays raised";
    EXPECT_TRUE(a[0] == -32768 && a[1] == 32767 && a[2] == -2 && b[0] == INT32_MIN && b[1] == INT32_MIN && b[2] == 2);
    EXPECT_TRUE(c[0] == INT64_MIN && c[1] == INT64_MIN && c[2] == 3);
}

}  // namespace
