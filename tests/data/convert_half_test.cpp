// Half-precision conversions, zetsConvert_16f32f, zetsConvert_32f16f,
// zetsConvert_16s16f and zetsConvert_16f16s_Sfs, against a scalar reference stated from the binary16 format itself, on
// both routes: this executable defines its own ownGetFeature, which takes
// precedence over zetcore's for the library's calls, so a test can send the
// exports down the software route on a processor that has the conversion
// instructions (and count the questions asked).
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <immintrin.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "zetcore.h"
#include "zetsp.h"
#include "zettest.hpp"

namespace {
enum Route { kAsIs, kSoftware, kHardware };
Route g_route = kAsIs;
long g_f16cQuestions = 0;

int realFeature(unsigned long long mask) {
    using Fn = int (*)(unsigned long long);
    static const Fn fn = reinterpret_cast<Fn>(dlsym(RTLD_NEXT, "ownGetFeature"));
    return fn(mask);
}
}  // namespace

extern "C" int ownGetFeature(unsigned long long mask) {
    if (mask == ZET_FEATURE_F16C) {
        ++g_f16cQuestions;
        if (g_route != kAsIs) return g_route == kHardware ? 1 : 0;
    }
    return realFeature(mask);
}

namespace {

using zettest::bitsOf;
using zettest::fromBits;
using zettest::GuardedRegion;

// The routes a test runs: software always, hardware where the processor has it.
std::vector<Route> routes() {
    std::vector<Route> r{kSoftware};
    if (realFeature(ZET_FEATURE_F16C)) r.push_back(kHardware);
    return r;
}
const char* routeName(Route r) { return r == kSoftware ? "software" : "hardware"; }

struct RouteScope {
    explicit RouteScope(Route r) { g_route = r; }
    ~RouteScope() { g_route = kAsIs; }
};

// ---- reference ------------------------------------------------------------------
// binary16: sign, 5 exponent bits (bias 15), 10 mantissa bits.

std::uint32_t refWiden(std::uint16_t h) {
    const std::uint32_t sign = std::uint32_t{h & 0x8000u} << 16;
    const int e = (h >> 10) & 31, m = h & 0x3FF;
    if (e == 31) return sign | 0x7F800000u | (m ? 0x00400000u | (std::uint32_t(m) << 13) : 0u);  // NaNs come out quiet
    // A normal half is (1024 + m) 2^(e - 25), a denormal m 2^-24: exact in float.
    const float v = e ? std::ldexp(float(1024 + m), e - 25) : std::ldexp(float(m), -24);
    return sign | bitsOf(v);
}

// mode 0 toward zero, 1 nearest even.
std::uint16_t refNarrow(float x, int mode) {
    const std::uint32_t b = static_cast<std::uint32_t>(bitsOf(x));
    const std::uint16_t sign = static_cast<std::uint16_t>((b >> 16) & 0x8000);
    if (std::isnan(x)) return sign | 0x7E00 | ((b >> 13) & 0x3FF);
    if (std::isinf(x)) return sign | 0x7C00;
    const double a = std::fabs(static_cast<double>(x));
    if (a == 0) return sign;
    // The half step at a's binade (2^-24 for everything below 2^-14), and a in such steps.
    int e2;
    std::frexp(a, &e2);  // a in [2^(e2-1), 2^e2)
    const int step = std::max(e2 - 1, -14) - 10;
    const double q = std::ldexp(a, -step);  // exact: a has 24 bits
    double r = std::floor(q);
    if (mode == 1) {
        const double frac = q - r;
        if (frac > 0.5 || (frac == 0.5 && std::fmod(r, 2.0) != 0)) r += 1;
    }
    const double v = std::ldexp(r, step);
    if (v >= 65536.0) return sign | (mode == 1 ? 0x7C00 : 0x7BFF);
    if (v < std::ldexp(1.0, -14)) return sign | static_cast<std::uint16_t>(r);  // denormal: r steps of 2^-24
    int ev;
    const double f = std::frexp(v, &ev);  // v = f 2^ev, f in [0.5, 1)
    const int mant = static_cast<int>(std::ldexp(f, 11)) - 1024;
    return sign | static_cast<std::uint16_t>(((ev - 1 + 15) << 10) | mant);
}

// A half times 2^-scale, truncated (mode 0) or rounded to nearest even (1), saturated.
Zet16s refHalfToShort(std::uint16_t h, int scale, int mode) {
    const float x = fromBits<float>(refWiden(h));
    if (std::isnan(x)) return -32768;
    const long double v = std::ldexp(static_cast<long double>(x), -std::clamp(scale, -1000, 1000));
    long double r = std::trunc(v);
    if (mode == 1) {
        const long double f = std::floor(v), frac = v - f;
        r = frac > 0.5L || (frac == 0.5L && std::fmod(f, 2.0L) != 0) ? f + 1 : f;
    }
    return static_cast<Zet16s>(std::clamp(r, -32768.0L, 32767.0L));
}

// Half bits for failure messages (AssertionResult streams each operand into a
// fresh message, so std::hex would not stick).
std::string hex16(unsigned v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "0x%04x", v & 0xFFFFu);
    return buf;
}

// The floats that matter for narrowing: every half value, each midpoint
// between neighbouring halves (the ties) and the floats beside it, the
// binade edges, float denormals, the overflow threshold, huge values,
// infinities and NaNs of every kind, and a sweep over all bit patterns.
std::vector<float> narrowingInputs() {
    std::vector<float> v;
    auto both = [&](std::uint32_t x) { v.push_back(fromBits<float>(x)), v.push_back(fromBits<float>(x | 0x80000000u)); };
    for (std::uint32_t h = 0; h < 0x7C00; ++h) {
        const std::uint32_t lo = refWiden(static_cast<std::uint16_t>(h)), hi = refWiden(static_cast<std::uint16_t>(h + 1));
        const double mid = (static_cast<double>(fromBits<float>(lo)) + fromBits<float>(hi)) / 2;  // exact in float
        const std::uint32_t m = static_cast<std::uint32_t>(bitsOf(static_cast<float>(mid)));
        for (std::uint32_t x : {lo, lo + 1, m - 1, m, m + 1, hi - 1}) both(x);
    }
    for (std::uint32_t x : {0x477FE000u, 0x477FEFFFu, 0x477FF000u, 0x477FF001u, 0x477FFFFFu, 0x47800000u, 0x47800001u,
                            0x4F000000u, 0x7F7FFFFFu, 0x7F800000u, 0x7F800001u, 0x7F802000u, 0x7FA00000u, 0x7FBFFFFFu,
                            0x7FC00000u, 0x7FC01FFFu, 0x7FFFFFFFu, 0x00000001u, 0x007FFFFFu, 0x00800000u, 0x33000000u,
                            0x33000001u, 0x32FFFFFFu, 0x33800000u, 0x337FFFFFu, 0x387FC000u, 0x387FE000u, 0x387FF000u,
                            0x387FFFFFu, 0x38800000u})
        both(x);
    for (std::uint64_t x = 0; x < (std::uint64_t{1} << 32); x += 997) v.push_back(fromBits<float>(static_cast<std::uint32_t>(x)));
    std::mt19937_64 rng(16);
    std::vector<float> r(100000);
    zettest::fillFloats(r.data(), r.size(), rng, 4);
    v.insert(v.end(), r.begin(), r.end());
    return v;
}

std::vector<std::uint16_t> allHalves() {
    std::vector<std::uint16_t> h(65536);
    for (std::uint32_t i = 0; i < h.size(); ++i) h[i] = static_cast<std::uint16_t>(i);
    return h;
}
std::vector<Zet16s> allShorts() {
    std::vector<Zet16s> v(65536);
    for (int i = 0; i < 65536; ++i) v[i] = static_cast<Zet16s>(i - 32768);
    return v;
}

// The caller's control words the conversions run under: as it is, then
// flush-to-zero and denormals-are-zero (as zetsFFTInit_C_16fc leaves them)
// and each rounding direction. `invalid` also unmasks the invalid operation.
// Runs `body` under each on every route and checks the control bits come
// back; the bits follow the mode alone.
template <class Body> void underEveryControlWord(bool invalid, Body body) {
    for (unsigned bits : {~0u, 0x8040u, 0xE040u, 0x6000u, 0x2000u, 0x4000u})
        for (Route r : routes()) {
            RouteScope scope(r);
            const unsigned saved = _mm_getcsr();
            if (bits != ~0u) _mm_setcsr((saved & ~(invalid ? 0xE0C0u : 0xE040u)) | bits);
            const unsigned before = _mm_getcsr() & ~0x3Fu;
            body(std::string(routeName(r)) + " csr bits " + hex16(bits));
            const unsigned after = _mm_getcsr() & ~0x3Fu;
            _mm_setcsr(saved);
            EXPECT_EQ(after, before) << routeName(r) << " csr bits " << hex16(bits);
        }
}

// ---- 16f -> 32f ----------------------------------------------------------------------

// Half denormals widen to their values even with flush-to-zero on.
TEST(Convert16f32f, EveryHalfUnderEveryControlWordOnEveryRoute) {
    const auto h = allHalves();
    underEveryControlWord(false, [&](const std::string& where) {
        std::vector<float> out(h.size());
        ASSERT_EQ(zetsConvert_16f32f(h.data(), out.data(), static_cast<int>(h.size())), zetStsOk);
        for (std::size_t i = 0; i < h.size(); ++i) ASSERT_EQ(bitsOf(out[i]), refWiden(h[i])) << where << " half " << hex16(h[i]);
    });
}

// ---- 32f -> 16f ----------------------------------------------------------------------

// Every input through the export in one call in both modes, against the
// reference worked out once under the default control word; the control bits
// the software route clears for mode 1 are back afterwards.
TEST(Convert32f16f, TiesDenormalsOverflowAndNaNsUnderEveryControlWordOnEveryRoute) {
    const std::vector<float> in = narrowingInputs();
    std::vector<std::uint16_t> want[2];
    for (int mode : {0, 1})
        for (float x : in) want[mode].push_back(refNarrow(x, mode));
    underEveryControlWord(false, [&](const std::string& where) {
        for (int mode : {0, 1}) {
            std::vector<std::uint16_t> out(in.size());
            ASSERT_EQ(zetsConvert_32f16f(in.data(), out.data(), static_cast<int>(in.size()), mode), zetStsOk);
            for (std::size_t i = 0; i < in.size(); ++i)
                ASSERT_EQ(out[i], want[mode][i]) << where << " mode " << mode << " input " << zettest::hexBits(in[i]);
        }
    });
}

TEST(Convert32f16f, ReferencePoints) {
    struct Case { float x; int mode; std::uint16_t want; };
    const Case cases[] = {
        {1.0f, 1, 0x3C00}, {-2.0f, 0, 0xC000}, {65504.0f, 1, 0x7BFF}, {65519.996f, 1, 0x7BFF},
        {65520.0f, 1, 0x7C00}, {65520.0f, 0, 0x7BFF}, {1e30f, 0, 0x7BFF}, {-1e30f, 1, 0xFC00},
        {std::ldexp(1.0f, -24), 1, 0x0001}, {std::ldexp(1.0f, -25), 1, 0x0000},  // a tie to even zero
        {std::ldexp(3.0f, -25), 1, 0x0002},                                      // 1.5 steps: to even 2
        {std::ldexp(1.0f, -25) * 1.0000001f, 1, 0x0001}, {std::ldexp(1023.0f, -24), 0, 0x03FF},
        {std::ldexp(2047.0f, -25), 1, 0x0400},                                   // carry into the first normal
        {1.0f + std::ldexp(1.0f, -11), 1, 0x3C00}, {1.0f + 3 * std::ldexp(1.0f, -11), 1, 0x3C02},
        {1.0f + std::ldexp(1.0f, -11), 0, 0x3C00}, {-0.0f, 1, 0x8000},
    };
    for (Route r : routes()) {
        RouteScope scope(r);
        for (const Case& c : cases) {
            std::uint16_t out = 0xAAAA;
            ASSERT_EQ(zetsConvert_32f16f(&c.x, &out, 1, c.mode), zetStsOk);
            EXPECT_EQ(out, c.want) << routeName(r) << " " << c.x << " mode " << c.mode;
            EXPECT_EQ(refNarrow(c.x, c.mode), c.want) << c.x;
        }
    }
}

// ---- 16s -> 16f and 16f -> 16s ------------------------------------------------------------

// Every 16-bit integer is exact in binary32, so the result is the float's;
// every half at one scale under every control word (invalid unmasked too).
TEST(ConvertShortHalf, EveryShortAndEveryHalfUnderEveryControlWordOnEveryRoute) {
    const auto h = allHalves();
    const auto s = allShorts();
    underEveryControlWord(true, [&](const std::string& where) {
        for (int mode : {0, 1}) {
            std::vector<Zet16s> so(h.size());
            std::vector<std::uint16_t> ho(s.size());
            ASSERT_EQ(zetsConvert_16f16s_Sfs(h.data(), so.data(), static_cast<int>(h.size()), mode, -2), zetStsOk);
            ASSERT_EQ(zetsConvert_16s16f(s.data(), ho.data(), static_cast<int>(s.size()), mode), zetStsOk);
            for (std::size_t i = 0; i < h.size(); ++i) {
                ASSERT_EQ(so[i], refHalfToShort(h[i], -2, mode)) << where << " mode " << mode << " half " << hex16(h[i]);
                ASSERT_EQ(ho[i], refNarrow(static_cast<float>(s[i]), mode)) << where << " mode " << mode << " " << s[i];
            }
        }
    });
}

TEST(ConvertShortHalf, EveryHalfAtEveryKindOfScaleOnEveryRoute) {
    const auto h = allHalves();
    for (Route r : routes())
        for (int mode : {0, 1})
            for (int scale : {0, 1, -1, 3, -3, 10, -10, 14, -14, 15, -15, 16, -16, 24, -24, 25, 39, 40, 41, -39, -40, -41,
                              128, -128, 1000, INT32_MAX, INT32_MIN}) {
                RouteScope scope(r);
                std::vector<Zet16s> out(h.size());
                ASSERT_EQ(zetsConvert_16f16s_Sfs(h.data(), out.data(), static_cast<int>(h.size()), mode, scale), zetStsOk);
                for (std::size_t i = 0; i < h.size(); ++i)
                    ASSERT_EQ(out[i], refHalfToShort(h[i], scale, mode))
                        << routeName(r) << " mode " << mode << " scale " << scale << " half " << hex16(h[i]);
            }
}

TEST(ConvertShortHalf, ReferencePoints) {
    const Zet16f h[] = {0x4100 /* 2.5 */, 0xC100 /* -2.5 */, 0x7C00, 0xFC00, 0x7E00, 0x7BFF /* 65504 */};
    Zet16s out[6];
    ASSERT_EQ(zetsConvert_16f16s_Sfs(h, out, 6, 1, 0), zetStsOk);
    const Zet16s nearest[] = {2, -2, 32767, -32768, -32768, 32767};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(out[i], nearest[i]) << i;
    ASSERT_EQ(zetsConvert_16f16s_Sfs(h, out, 2, 0, -1), zetStsOk);
    EXPECT_TRUE(out[0] == 5 && out[1] == -5);
    const Zet16s s[] = {1, 2049, 2051, -32768};  // 2049 and 2051 lie halfway between halves
    Zet16f o[4];
    ASSERT_EQ(zetsConvert_16s16f(s, o, 4, 1), zetStsOk);
    EXPECT_TRUE(o[0] == 0x3C00 && o[1] == 0x6800 && o[2] == 0x6802 && o[3] == 0xF800);  // 2048 and 2052, the even ones
    ASSERT_EQ(zetsConvert_16s16f(s, o, 3, 0), zetStsOk);
    EXPECT_EQ(o[2], 0x6801);
}

// ---- all four: lengths, placements, checks, the question asked --------------------------

// Each element read back from a possibly unaligned destination.
template <class T, class Ref> ::testing::AssertionResult each(const void* got, std::size_t n, Ref want) {
    for (std::size_t i = 0; i < n; ++i) {
        T v;
        std::memcpy(&v, static_cast<const unsigned char*>(got) + sizeof(T) * i, sizeof(T));
        if (v != want(i)) return ::testing::AssertionFailure() << "element " << i << " got " << +v << " want " << +want(i);
    }
    return ::testing::AssertionSuccess();
}

// Source and destination against the guards in turn, and off alignment.
TEST(ConvertHalf, EveryLengthAgainstTheGuardPages) {
    std::mt19937_64 rng(7);
    for (Route r : routes()) {
        RouteScope scope(r);
        for (int len : zettest::kernelLengths()) {
            const std::size_t n = static_cast<std::size_t>(len);
            GuardedRegion hr(n * 2 + 128), fr(n * 4 + 128);
            std::vector<float> fsrc(n);
            zettest::fillFloats(fsrc.data(), n, rng, 4);
            std::vector<std::uint16_t> hsrc(n);
            for (auto& h : hsrc) h = static_cast<std::uint16_t>(rng());
            for (auto place : {zettest::Placement{zettest::Placement::Tail, 0}, zettest::Placement{zettest::Placement::Head, 0},
                               zettest::Placement{zettest::Placement::Offset, 1}, zettest::Placement{zettest::Placement::Offset, 6}}) {
                SCOPED_TRACE(std::string(routeName(r)) + " len " + std::to_string(len) + " " + place.name());
                auto* hs = zettest::place<Zet16f>(hr, place, n);
                auto* fd = zettest::place<Zet32f>(fr, place, n);
                std::memcpy(hs, hsrc.data(), n * 2);
                ASSERT_EQ(zetsConvert_16f32f(hs, fd, len), zetStsOk);
                ASSERT_TRUE(each<std::uint32_t>(fd, n, [&](std::size_t i) { return refWiden(hsrc[i]); })) << "16f32f";
                auto* sd = zettest::place<Zet16s>(fr, place, n);
                ASSERT_EQ(zetsConvert_16f16s_Sfs(hs, sd, len, 1, -3), zetStsOk);
                ASSERT_TRUE(each<Zet16s>(sd, n, [&](std::size_t i) { return refHalfToShort(hsrc[i], -3, 1); })) << "16f16s";
                auto* ss = zettest::place<Zet16s>(fr, place, n);
                std::memcpy(ss, hsrc.data(), n * 2);
                ASSERT_EQ(zetsConvert_16s16f(ss, hs, len, 0), zetStsOk);
                ASSERT_TRUE(each<std::uint16_t>(hs, n, [&](std::size_t i) { return refNarrow(float(Zet16s(hsrc[i])), 0); })) << "16s16f";
                auto* fs = zettest::place<Zet32f>(fr, place, n);
                std::memcpy(fs, fsrc.data(), n * 4);
                for (int mode : {0, 1}) {
                    ASSERT_EQ(zetsConvert_32f16f(fs, hs, len, mode), zetStsOk);
                    ASSERT_TRUE(each<std::uint16_t>(hs, n, [&](std::size_t i) { return refNarrow(fsrc[i], mode); })) << "32f16f mode " << mode;
                }
            }
        }
    }
}

// Pointers, then the length, then the mode: only 0 and 1 pass; nothing is
// written on an error. The feature is asked once per call that converts, and
// not before the checks pass.
TEST(ConvertHalf, StatusOrderAndTheQuestionAsked) {
    Zet16f h[4] = {0x3C00, 0x3C00, 0x3C00, 0x3C00}, hOut[4] = {0x5555, 0x5555, 0x5555, 0x5555};
    float f[4] = {1, 1, 1, 1}, fOut[4] = {-7, -7, -7, -7};
    const Zet16s s[2] = {1, 2};
    Zet16s sOut[4] = {-7, -7, -7, -7};
    const long before = g_f16cQuestions;
    EXPECT_EQ(zetsConvert_16f32f(nullptr, fOut, 4), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16f32f(h, nullptr, 4), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16f32f(nullptr, nullptr, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16f32f(h, fOut, 0), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_16f32f(h, fOut, -1), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_32f16f(nullptr, hOut, 4, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_32f16f(f, nullptr, 4, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_32f16f(nullptr, hOut, 0, 2), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_32f16f(f, hOut, 0, 1), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_32f16f(f, hOut, -5, 2), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_16s16f(nullptr, hOut, 2, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16s16f(s, nullptr, 0, 2), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16s16f(s, hOut, 0, 2), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_16f16s_Sfs(nullptr, sOut, 2, 1, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16f16s_Sfs(h, nullptr, -1, 2, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_16f16s_Sfs(h, sOut, -1, 2, 0), zetStsSizeErr);
    for (int mode : {2, 3, 7, -1, 0x7FFFFFFF}) {
        EXPECT_EQ(zetsConvert_32f16f(f, hOut, 4, mode), zetStsRoundModeValueErr) << mode;
        EXPECT_EQ(zetsConvert_16s16f(s, hOut, 2, mode), zetStsRoundModeValueErr) << mode;
        EXPECT_EQ(zetsConvert_16f16s_Sfs(h, sOut, 2, mode, 0), zetStsRoundModeValueErr) << mode;
    }
    EXPECT_EQ(g_f16cQuestions - before, 0);
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(fOut[i] == -7.0f && hOut[i] == 0x5555 && sOut[i] == -7) << i;
    ASSERT_EQ(zetsConvert_16f32f(h, f, 3), zetStsOk);
    ASSERT_EQ(zetsConvert_32f16f(f, h, 3, 0), zetStsOk);
    ASSERT_EQ(zetsConvert_32f16f(f, h, 3, 1), zetStsOk);
    ASSERT_EQ(zetsConvert_16s16f(s, hOut, 2, 0), zetStsOk);
    ASSERT_EQ(zetsConvert_16f16s_Sfs(h, sOut, 2, 1, 3), zetStsOk);
    EXPECT_EQ(g_f16cQuestions - before, 5);
}

}  // namespace
