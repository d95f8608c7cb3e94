// Reordering, complex parts, byte order, NaN replacement, normalisation; then what rows cannot say.
#include <algorithm>

#include "conform.hpp"

namespace {

using conform::K;
using conform::op;
using u8 = std::uint8_t;

// Flip and ConjFlip rows see the destination reversed back, so the reference stays element-wise.
template <auto F> struct Rev;
template <class... A, ZetStatus (*F)(A...)> struct Rev<F> {
    static ZetStatus call(A... a) {
        const ZetStatus st = F(a...);
        const auto t = std::tuple(a...);
        auto* p = reinterpret_cast<u8*>(std::get<sizeof...(A) - 2>(t));
        const long long e = sizeof(*std::get<sizeof...(A) - 2>(t)), n = std::get<sizeof...(A) - 1>(t);
        for (long long i = 0, j = st == zetStsOk ? n - 1 : 0; i < j; ++i, --j)
            std::swap_ranges(p + i * e, p + i * e + e, p + j * e);
        return st;
    }
};
#define ZR(fn, shape) ::conform::entry<shape>(&Rev<fn>::call, #fn)

const auto same = [](auto x) { return x; };
// The floating forms flip the sign bit (NaN payloads kept); 16sc negates with saturation.
const auto conj = [](auto z) {
    if constexpr (sizeof(z.im) == 2) return decltype(z){z.re, static_cast<Zet16s>(z.im == -32768 ? 32767 : -z.im)};
    else return decltype(z){z.re, -z.im};
};
const auto swapBytes = [](auto x) {
    auto* b = reinterpret_cast<u8*>(&x);
    std::reverse(b, b + sizeof x);
    return x;
};
const auto replaceNan = [](auto x, auto v) { return std::isnan(x) ? v : x; };
const auto realPart = [](auto z) { return z.re; };
const auto imagPart = [](auto z) { return z.im; };
const auto split = [](auto z) { return std::tuple(z.re, z.im); };
const auto join = [](auto re, auto im) {
    return std::conditional_t<sizeof re == 2, Zet16sc, std::conditional_t<sizeof re == 4, Zet32fc, Zet64fc>>{re, im};
};

CONFORM(flip, op(same), ZR(zetsFlip_8u, "sdn"), ZR(zetsFlip_8u_I, "bn"), ZR(zetsFlip_16u, "sdn"),
        ZR(zetsFlip_16u_I, "bn"), ZR(zetsFlip_32f, "sdn"), ZR(zetsFlip_32f_I, "bn"), ZR(zetsFlip_64f, "sdn"),
        ZR(zetsFlip_64f_I, "bn"), ZR(zetsFlip_32fc, "sdn"), ZR(zetsFlip_32fc_I, "bn"), ZR(zetsFlip_64fc, "sdn"),
        ZR(zetsFlip_64fc_I, "bn"), ZR(zetsFlip_32f_L, "sdn"), ZR(zetsFlip_32f_I_L, "bn"), ZR(zetsFlip_64f_L, "sdn"),
        ZR(zetsFlip_64f_I_L, "bn"), ZR(zetsFlip_32fc_L, "sdn"), ZR(zetsFlip_32fc_I_L, "bn"), ZR(zetsFlip_64fc_L, "sdn"),
        ZR(zetsFlip_64fc_I_L, "bn"));
CONFORM(conj, op(conj), Z(zetsConj_16sc, "sdn"), Z(zetsConj_16sc_I, "bn"), Z(zetsConj_32fc, "sdn"),
        Z(zetsConj_32fc_I, "bn"), Z(zetsConj_64fc, "sdn"), Z(zetsConj_64fc_I, "bn"), ZR(zetsConjFlip_16sc, "sdn"),
        ZR(zetsConjFlip_32fc, "sdn"), ZR(zetsConjFlip_64fc, "sdn"));
CONFORM(swapBytes, op(swapBytes), Z(zetsSwapBytes_16u, "sdn"), Z(zetsSwapBytes_16u_I, "bn"),
        Z(zetsSwapBytes_32u, "sdn"), Z(zetsSwapBytes_32u_I, "bn"), Z(zetsSwapBytes_64u, "sdn"),
        Z(zetsSwapBytes_64u_I, "bn"));
CONFORM(replaceNan, op(replaceNan).k({K(-7.5)}), Z(zetsReplaceNAN_32f_I, "bnk"), Z(zetsReplaceNAN_64f_I, "bnk"));
CONFORM(real, op(realPart), Z(zetsReal_16sc, "sdn"), Z(zetsReal_32fc, "sdn"), Z(zetsReal_64fc, "sdn"));
CONFORM(imag, op(imagPart), Z(zetsImag_16sc, "sdn"), Z(zetsImag_32fc, "sdn"), Z(zetsImag_64fc, "sdn"));
CONFORM(split, op(split), Z(zetsCplxToReal_16sc, "sddn"), Z(zetsCplxToReal_32fc, "sddn"),
        Z(zetsCplxToReal_64fc, "sddn"));
CONFORM(join, op(join), Z(zetsRealToCplx_16s, "oodn"), Z(zetsRealToCplx_32f, "oodn"), Z(zetsRealToCplx_64f, "oodn"));

const auto normalize = [](auto x, auto sub, auto div) {
    if constexpr (requires { x.re; }) return decltype(x){(x.re - sub.re) / div, (x.im - sub.im) / div};
    else return (x - sub) / div;
};
// 16-bit: round((x - sub) 2^-sf / div), ties to even, saturated; exact in 128 bits.
Zet16s normalize16(int x, int sub, int div, int sf) {
    __int128 num = x - sub, den = div;
    if (num == 0 || sf > 60) return 0;  // |quotient| below 2^-43
    if (sf < -60) return (num > 0) == (den > 0) ? INT16_MAX : INT16_MIN;
    sf < 0 ? num <<= -sf : den <<= sf;
    if (den < 0) num = -num, den = -den;
    __int128 q = num / den, r = num % den;
    if (r < 0) q -= 1, r += den;  // floor
    q += 2 * r > den || (2 * r == den && (q & 1));
    return static_cast<Zet16s>(std::clamp<__int128>(q, INT16_MIN, INT16_MAX));
}
const auto normalizeSfs = [](auto x, auto sub, int div, int sf) {
    if constexpr (requires { x.re; })
        return Zet16sc{normalize16(x.re, sub.re, div, sf), normalize16(x.im, sub.im, div, sf)};
    else return normalize16(x, sub, div, sf);
};
CONFORM(normalize, op(normalize).k({K(0.3, -1.7), K(-1.7)}), Z(zetsNormalize_32f, "sdnkk"),
        Z(zetsNormalize_32f_I, "bnkk"), Z(zetsNormalize_64f, "sdnkk"), Z(zetsNormalize_64f_I, "bnkk"),
        Z(zetsNormalize_32fc, "sdnkk"), Z(zetsNormalize_32fc_I, "bnkk"), Z(zetsNormalize_64fc, "sdnkk"),
        Z(zetsNormalize_64fc_I, "bnkk"));
// A divisor of 6 puts ties within reach of random inputs.
CONFORM(normalizeSfs, op(normalizeSfs).k({K(3, -4), K(-6)}), Z(zetsNormalize_16s_Sfs, "sdnkkf"),
        Z(zetsNormalize_16s_ISfs, "bnkkf"), Z(zetsNormalize_16sc_Sfs, "sdnkkf"), Z(zetsNormalize_16sc_ISfs, "bnkkf"));

// Every 16-bit input against exact arithmetic; then the checks: pointers, length, a zero divisor of either sign.
TEST(Normalize, SixteenBitFormsAreExactForEveryValue) {
    const int cases[][3] = {{0, 2, 0}, {1, 2, 0}, {-5, -3, -1}, {100, 7, 2}, {-32768, 196608, -20}, {32767, -1, 0},
                            {12, INT32_MIN, -30}, {7, -65535, 17}};
    std::vector<Zet16s> all(65536), got(65536);
    for (int i = 0; i < 65536; ++i) all[i] = static_cast<Zet16s>(i - 32768);
    for (const auto& [sub, div, sf] : cases) {
        ASSERT_EQ(zetsNormalize_16s_Sfs(all.data(), got.data(), 65536, static_cast<Zet16s>(sub), div, sf), zetStsOk);
        for (int i = 0; i < 65536; ++i) ASSERT_EQ(got[i], normalize16(all[i], sub, div, sf)) << all[i] << " " << sub;
    }
    float f[2] = {1, 2}, fd[2] = {-1, -1};
    EXPECT_EQ(zetsNormalize_32f(nullptr, fd, 2, 0, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsNormalize_32f(f, fd, 0, 0, 0), zetStsSizeErr);
    EXPECT_EQ(zetsNormalize_32f(f, fd, 2, 0, -0.0f), zetStsDivByZeroErr);
    EXPECT_EQ(zetsNormalize_64fc_I(reinterpret_cast<Zet64fc*>(fd), 1, {}, 0), zetStsDivByZeroErr);
    EXPECT_EQ(zetsNormalize_16sc_ISfs(reinterpret_cast<Zet16sc*>(got.data()), 1, {}, 0, 0), zetStsDivByZeroErr);
    EXPECT_TRUE(fd[0] == -1 && fd[1] == -1 && got[0] == normalize16(-32768, 7, -65535, 17));
}

// RealToCplx reads a missing part as zeros (the same as a vector of zeros); both missing is an error.
template <class P, class C> void expectMissingPartsReadAsZeros(ZetStatus (*join)(const P*, const P*, C*, int)) {
    for (int n : {1, 3, 8, 17, 67}) {
        std::vector<P> re(n, P(-3)), im(n, P(5)), zero(n);
        std::vector<C> d(n), want(n);
        for (bool reMissing : {true, false}) {
            ASSERT_EQ(join(reMissing ? nullptr : re.data(), reMissing ? im.data() : nullptr, d.data(), n), zetStsOk);
            join(reMissing ? zero.data() : re.data(), reMissing ? im.data() : zero.data(), want.data(), n);
            ASSERT_EQ(std::memcmp(d.data(), want.data(), n * sizeof(C)), 0) << reMissing << " " << n;
        }
        EXPECT_EQ(join(nullptr, nullptr, d.data(), n), zetStsNullPtrErr);
    }
}
TEST(ComplexParts, MissingPartsReadAsZeros) {
    expectMissingPartsReadAsZeros(zetsRealToCplx_16s), expectMissingPartsReadAsZeros(zetsRealToCplx_32f);
    expectMissingPartsReadAsZeros(zetsRealToCplx_64f);
}

// Packed 3-byte elements against the guard page, and with pSrc == pDst, which the 24u form allows.
TEST(Reorder, PackedTriplets) {
    std::mt19937_64 rng(24);
    zettest::GuardedRegion sr(3 * 4099 + 64), dr(3 * 4099 + 64);
    for (int n : zettest::kernelLengths()) {
        u8 *s = sr.at<u8>(n % 7), *d = dr.tail<u8>(3 * n);
        zettest::fillBytes(s, 3 * n, rng);
        std::vector<u8> want(s, s + 3 * n);
        for (int i = 0; i < n; ++i) std::reverse(want.begin() + 3 * i, want.begin() + 3 * i + 3);
        ASSERT_TRUE(zetsSwapBytes_24u(s, d, n) == zetStsOk && std::memcmp(d, want.data(), 3 * n) == 0) << n;
        ASSERT_TRUE(zetsSwapBytes_24u(s, s, n) == zetStsOk && std::memcmp(s, want.data(), 3 * n) == 0) << n;
    }
}

// Bit strings ending at a guard page: every offset in and across the first bytes, the bits around kept.
TEST(BitCopy, MatchesBitByBitReference) {
    std::mt19937_64 rng(99);
    zettest::GuardedRegion sR(4096), dR(4096);
    for (bool be : {true, false}) {
        auto copy = be ? zetsCopyBE_1u : zetsCopyLE_1u;
        auto bit = [be](long long i) { return static_cast<u8>(1u << (be ? 7 - i % 8 : i % 8)); };
        for (int len = 1; len <= 300; len += (len < 80 ? 1 : 37))
            for (int so = 0; so < 20; so += (so < 9 ? 1 : 5))
                for (int to = 0; to < 20; to += (to < 9 ? 1 : 5)) {
                    const std::size_t sb = (so + len + 7) / 8, db = (to + len + 7) / 8;
                    u8 *s = sR.tail<u8>(sb), *d = dR.tail<u8>(db);
                    zettest::fillBytes(s, sb, rng), zettest::fillBytes(d, db, rng);
                    std::vector<u8> want(d, d + db);
                    for (long long i = so, k = to; i < so + len; ++i, ++k)
                        want[k / 8] = (s[i / 8] & bit(i)) ? want[k / 8] | bit(k) : want[k / 8] & ~bit(k);
                    ASSERT_EQ(copy(s, so, d, to, len), zetStsOk);
                    ASSERT_EQ(std::memcmp(d, want.data(), db), 0) << be << " " << len << " " << so << " " << to;
                }
        u8 a[4] = {}, b[4] = {};  // pointers, the length, then negative offsets
        EXPECT_TRUE(copy(nullptr, -1, b, 0, 0) == zetStsNullPtrErr && copy(a, -1, nullptr, 0, 1) == zetStsNullPtrErr);
        EXPECT_TRUE(copy(a, -1, b, 0, 0) == zetStsSizeErr && copy(a, -1, b, 0, 1) == zetStsBadArgErr);
        EXPECT_EQ(copy(a, 0, b, -1, 1), zetStsBadArgErr);
    }
}

}  // namespace
