// Format conversions between integer and floating types, each against a
// scalar reference stated from the rules themselves: exact values held in
// 128-bit integers and long doubles, rounded once by the mode.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <immintrin.h>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using i128 = __int128;
using u8 = unsigned char;
using zettest::GuardedRegion;
using zettest::Placement;

// ---- element kinds ---------------------------------------------------------------
enum Kind { k8s, k8u, k16s, k16u, k24s, k24u, k32s, k32u, k64s, k32f, k64f };

int bytesOf(Kind k) {
    static const int b[] = {1, 1, 2, 2, 3, 3, 4, 4, 8, 4, 8};
    return b[k];
}
bool isFloat(Kind k) { return k == k32f || k == k64f; }
bool isSigned(Kind k) { return k == k8s || k == k16s || k == k24s || k == k32s || k == k64s; }
i128 minOf(Kind k) { return isSigned(k) ? -(i128{1} << (8 * bytesOf(k) - 1)) : 0; }
i128 maxOf(Kind k) { return isSigned(k) ? (i128{1} << (8 * bytesOf(k) - 1)) - 1 : (i128{1} << (8 * bytesOf(k))) - 1; }

i128 readInt(Kind k, const u8* p) {
    std::uint64_t u = 0;
    std::memcpy(&u, p, bytesOf(k));  // little endian: low bytes first
    const int bits = 8 * bytesOf(k);
    if (isSigned(k) && bits < 64 && (u >> (bits - 1)) & 1) return static_cast<i128>(u) - (i128{1} << bits);
    if (isSigned(k) && bits == 64) return static_cast<std::int64_t>(u);
    return u;
}
void writeInt(Kind k, u8* p, i128 v) {
    const std::uint64_t u = static_cast<std::uint64_t>(v);
    std::memcpy(p, &u, bytesOf(k));
}
long double readFloat(Kind k, const u8* p) {
    if (k == k32f) { float f; std::memcpy(&f, p, 4); return f; }
    double d;
    std::memcpy(&d, p, 8);
    return d;
}

i128 saturate(Kind k, i128 v) { return v < minOf(k) ? minOf(k) : v > maxOf(k) ? maxOf(k) : v; }

// ---- the reference ---------------------------------------------------------------------
// Modes: 0 toward zero, 1 nearest even, anything else nearest with ties away.

// An integer value times 2^-scale, rounded by the mode.
i128 roundScaled(i128 s, int scale, int mode) {
    if (scale <= 0) return s * (i128{1} << std::min<long long>(-static_cast<long long>(scale), 64));  // beyond 64 only the sign matters
    if (scale > 100) return 0;
    const i128 den = i128{1} << scale;
    i128 q = s / den, r = s % den;  // toward zero
    if (r < 0) r = -r;
    if (mode == 0 || 2 * r < den) return q;
    const bool away = 2 * r > den || mode != 1 || (q % 2 != 0);
    return away ? q + (s < 0 ? -1 : 1) : q;
}

// A floating value rounded by the mode to an integer-valued long double.
long double roundValue(long double x, int mode) {
    if (mode == 0) return std::trunc(x);
    const long double f = std::floor(x), frac = x - f;
    if (frac > 0.5L) return f + 1;
    if (frac < 0.5L) return f;
    if (mode == 1) return std::fmod(f, 2.0L) == 0 ? f : f + 1;
    return x > 0 ? f + 1 : f;
}

// The factor of the float-to-integer forms: 1 - scale in the exponent field,
// borrowing into the sign and wrapping as the bits do.
long double wrappedFactor(Kind from, int scale) {
    if (from == k32f) {
        const std::uint32_t b = 0x3F800000u - (static_cast<std::uint32_t>(scale) << 23);
        return zettest::fromBits<float>(b);
    }
    const std::uint64_t b = 0x3FF0000000000000ull - (static_cast<std::uint64_t>(static_cast<std::int64_t>(scale)) << 52);
    return zettest::fromBits<double>(b);
}

// One element: src bytes of `from` to dst bytes of `to`.
void reference(Kind from, Kind to, const u8* src, u8* dst, int mode, int scale) {
    if (!isFloat(from) && !isFloat(to)) {
        writeInt(to, dst, saturate(to, roundScaled(readInt(from, src), scale, mode)));
    } else if (!isFloat(from)) {  // exact value times 2^-scale, rounded once under the thread's rounding
        // Beyond +-20000 every result is 0 or infinite already.
        const long double v = std::ldexp(static_cast<long double>(readInt(from, src)), -std::clamp(scale, -20000, 20000));
        if (to == k32f) { const float f = static_cast<float>(v); std::memcpy(dst, &f, 4); }
        else { const double d = static_cast<double>(v); std::memcpy(dst, &d, 8); }
    } else if (isFloat(to)) {
        const long double v = readFloat(from, src);
        if (to == k32f) { const float f = static_cast<float>(static_cast<double>(v)); std::memcpy(dst, &f, 4); }
        else { const double d = static_cast<double>(v); std::memcpy(dst, &d, 8); }
    } else {
        long double x = readFloat(from, src);
        if (scale != 0) x *= wrappedFactor(from, scale);  // 0 times infinity is a NaN, as in the machine
        i128 r;
        if (std::isnan(x)) r = minOf(to);
        else if (x >= static_cast<long double>(maxOf(to))) r = maxOf(to);
        else if (x <= static_cast<long double>(minOf(to))) r = minOf(to);
        else r = saturate(to, static_cast<i128>(roundValue(x, mode)));
        writeInt(to, dst, r);
    }
}

// ---- the exports, type-erased ----------------------------------------------------------
using Fn = ZetStatus (*)(const void*, void*, int, int, int);
struct Case {
    const char* name;
    Kind from, to;
    bool mode, scale;  // which of the two arguments the export takes
    Fn fn;
};

#define PLAIN(S, D, ST, DT)                                                                              \
    Case{"zetsConvert_" #S #D, k##S, k##D, false, false,                                                 \
         [](const void* s, void* d, int n, int, int) { return zetsConvert_##S##D(static_cast<const ST*>(s), static_cast<DT*>(d), n); }}
#define SFS(S, D, ST, DT)                                                                                \
    Case{"zetsConvert_" #S #D "_Sfs", k##S, k##D, false, true, [](const void* s, void* d, int n, int, int sc) { \
             return zetsConvert_##S##D##_Sfs(static_cast<const ST*>(s), static_cast<DT*>(d), n, sc);      \
         }}
#define MODE_SFS(S, D, ST, DT)                                                                           \
    Case{"zetsConvert_" #S #D "_Sfs", k##S, k##D, true, true, [](const void* s, void* d, int n, int m, int sc) { \
             return zetsConvert_##S##D##_Sfs(static_cast<const ST*>(s), static_cast<DT*>(d), n, m, sc);   \
         }}

const Case kCases[] = {
    PLAIN(8s, 16s, Zet8s, Zet16s), PLAIN(16s, 32s, Zet16s, Zet32s), PLAIN(24s, 32s, Zet8u, Zet32s),
    PLAIN(24u, 32u, Zet8u, Zet32u), PLAIN(8s, 8u, Zet8s, Zet8u), PLAIN(32s, 16s, Zet32s, Zet16s),
    SFS(8u, 8s, Zet8u, Zet8s), SFS(16s, 8s, Zet16s, Zet8s), SFS(32s, 24s, Zet32s, Zet8u), SFS(32u, 24u, Zet32u, Zet8u),
    MODE_SFS(32s, 16s, Zet32s, Zet16s), MODE_SFS(64s, 32s, Zet64s, Zet32s),
    PLAIN(8s, 32f, Zet8s, Zet32f), PLAIN(8u, 32f, Zet8u, Zet32f), PLAIN(16s, 32f, Zet16s, Zet32f),
    PLAIN(16u, 32f, Zet16u, Zet32f), PLAIN(24s, 32f, Zet8u, Zet32f), PLAIN(24u, 32f, Zet8u, Zet32f),
    PLAIN(32s, 32f, Zet32s, Zet32f), PLAIN(32s, 64f, Zet32s, Zet64f), PLAIN(64s, 64f, Zet64s, Zet64f),
    SFS(16s, 32f, Zet16s, Zet32f), SFS(32s, 32f, Zet32s, Zet32f), SFS(16s, 64f, Zet16s, Zet64f), SFS(32s, 64f, Zet32s, Zet64f),
    PLAIN(32f, 64f, Zet32f, Zet64f), PLAIN(64f, 32f, Zet64f, Zet32f),
    MODE_SFS(32f, 8s, Zet32f, Zet8s), MODE_SFS(32f, 8u, Zet32f, Zet8u), MODE_SFS(32f, 16s, Zet32f, Zet16s),
    MODE_SFS(32f, 16u, Zet32f, Zet16u), MODE_SFS(32f, 24s, Zet32f, Zet8u), MODE_SFS(32f, 24u, Zet32f, Zet8u),
    MODE_SFS(32f, 32s, Zet32f, Zet32s), MODE_SFS(64f, 8s, Zet64f, Zet8s), MODE_SFS(64f, 8u, Zet64f, Zet8u),
    MODE_SFS(64f, 16s, Zet64f, Zet16s), MODE_SFS(64f, 16u, Zet64f, Zet16u), MODE_SFS(64f, 32s, Zet64f, Zet32s),
};

// Mode and scale as the export sees them, and as the reference applies them:
// integer rules without a mode round to nearest even.
struct Args {
    int mode, scale;
};
int refMode(const Case& c, int mode) { return c.mode ? mode : 1; }
int refScale(const Case& c, int scale) { return c.scale ? scale : 0; }

// Sources that reach every branch: for floats, specials and values spread
// over and beyond the destination range, with ties, pre-scaled by 2^scale
// where the scale is small; for integers, random bits and the extremes.
void fillSource(const Case& c, u8* p, std::size_t n, int scale, std::mt19937_64& rng) {
    const int b = bytesOf(c.from);
    if (!isFloat(c.from)) {
        zettest::fillBytes(p, n * b, rng);
        for (std::size_t i = 0; i < n; i += 7) writeInt(c.from, p + i * b, (i / 7) % 2 ? minOf(c.from) : maxOf(c.from));
        return;
    }
    const double range = isFloat(c.to) ? 1e6 : static_cast<double>(maxOf(c.to));
    std::uniform_real_distribution<double> spread(-1.5 * range - 3, 1.5 * range + 3);
    for (std::size_t i = 0; i < n; ++i) {
        double v = spread(rng);
        switch (rng() % 4) {
            case 0: v = std::floor(v) + 0.5; break;   // a tie
            case 1: v = std::nextafter(std::floor(v) + 0.5, 0.0); break;
            default: break;
        }
        if (std::abs(scale) < 60) v = std::ldexp(v, scale);
        if (c.from == k32f) { const float f = static_cast<float>(v); std::memcpy(p + i * 4, &f, 4); }
        else std::memcpy(p + i * 8, &v, 8);
    }
    // Specials in every fifth element.
    std::vector<double> sp(n);
    std::vector<float> spf(n);
    zettest::fillFloats(sp.data(), n, rng, 1);
    zettest::fillFloats(spf.data(), n, rng, 1);
    for (std::size_t i = 0; i < n; i += 5) {
        if (c.from == k32f) std::memcpy(p + i * 4, &spf[i], 4);
        else std::memcpy(p + i * 8, &sp[i], 8);
    }
}

std::string hexOf(const u8* p, int bytes) {
    std::string s = "0x";
    char buf[4];
    for (int i = bytes - 1; i >= 0; --i) { std::snprintf(buf, sizeof buf, "%02x", p[i]); s += buf; }
    return s;
}

// Runs the export on src and compares every element with the reference.
::testing::AssertionResult matches(const Case& c, const u8* src, u8* dst, int len, Args a) {
    const ZetStatus st = c.fn(src, dst, len, a.mode, a.scale);
    if (st != zetStsOk) return ::testing::AssertionFailure() << "status " << st;
    const int sb = bytesOf(c.from), db = bytesOf(c.to);
    for (int i = 0; i < len; ++i) {
        u8 want[8] = {};
        reference(c.from, c.to, src + i * sb, want, refMode(c, a.mode), refScale(c, a.scale));
        if (std::memcmp(want, dst + i * db, db) != 0)
            return ::testing::AssertionFailure() << "len " << len << " element " << i << " source " << hexOf(src + i * sb, sb)
                                                 << " got " << hexOf(dst + i * db, db) << " want " << hexOf(want, db);
    }
    return ::testing::AssertionSuccess();
}

std::vector<Args> argsFor(const Case& c, std::initializer_list<int> scales) {
    std::vector<Args> v;
    for (int m : c.mode ? std::vector<int>{0, 1, 2} : std::vector<int>{1})
        for (int s : c.scale ? std::vector<int>(scales) : std::vector<int>{0}) v.push_back({m, s});
    return v;
}

// ---- every export over every length, against the guard pages ------------------------------
// Every export at every length and placement against the guard pages at a
// few scales; then at one length, scales across the whole range, where the
// kernels change strategy: small shifts, the 32-bit edges of the integer
// rule, the binary32 exponent range of the integer-to-float factor, and the
// wrapping float-to-integer factor.
TEST(Convert, EveryLengthPlacementAndScaleMatchesTheReference) {
    std::mt19937_64 rng(32);
    const Placement places[] = {{Placement::Tail, 0}, {Placement::Head, 0}, {Placement::Offset, 1}, {Placement::Offset, 6}};
    for (const Case& c : kCases) {
        const int sb = bytesOf(c.from), db = bytesOf(c.to);
        for (Args a : argsFor(c, {0, 3, -2}))
            for (int len : zettest::kernelLengths()) {
                const std::size_t n = static_cast<std::size_t>(len);
                GuardedRegion sr(n * sb + 128), dr(n * db + 128);
                for (const Placement& pl : places) {
                    u8* src = zettest::place<u8>(sr, pl, n * sb);
                    u8* dst = zettest::place<u8>(dr, pl, n * db);
                    fillSource(c, src, n, a.scale, rng);
                    ASSERT_TRUE(matches(c, src, dst, len, a)) << c.name << " mode " << a.mode << " scale " << a.scale << " " << pl.name();
                }
            }
        if (!c.scale) continue;
        std::vector<u8> src(203 * 8), dst(203 * 8);
        for (Args a : argsFor(c, {1, 2, 7, 8, 15, 16, 17, 23, 24, 29, 30, 31, 32, 33, 34, 40, 63, 64, 65, 66, 96, 97,
                                  126, 127, 128, 129, 150, 255, 256, 257, 400, 401, 1023, 1024, 1100, 1300, 100000,
                                  INT32_MAX, -1, -7, -8, -15, -16, -24, -29, -30, -31, -32, -33, -40, -95, -96, -97,
                                  -127, -128, -129, -256, -400, -401, -1023, -1100, -1300, INT32_MIN})) {
            fillSource(c, src.data(), 203, a.scale, rng);
            ASSERT_TRUE(matches(c, src.data(), dst.data(), 203, a)) << c.name << " mode " << a.mode << " scale " << a.scale;
        }
    }
}

// ---- named points ---------------------------------------------------------------------------
// Each export by name on one element; kEach stands for each of the modes 0, 1 and 2.
constexpr int kEach = 1000;
struct Point { const char* fn; long double x; int mode, scale; long double want; };
const Case k64f64s = MODE_SFS(64f, 64s, Zet64f, Zet64s);  // mode 2 only: kept out of the sweeps

TEST(Convert, NamedPoints) {
    const long double nan = NAN, inf = INFINITY, i32max = INT32_MAX, i32min = INT32_MIN, i64max = INT64_MAX, i64min = INT64_MIN;
    const Point pts[] = {
        // Float to 16 bits. Every mode other than 0 and 1 is mode 2, which adds the half toward zero.
        {"32f16s_Sfs", 2.5, 0, 0, 2}, {"32f16s_Sfs", 2.5, 1, 0, 2}, {"32f16s_Sfs", 2.5, 2, 0, 3}, {"32f16s_Sfs", -2.5, 0, 0, -2},
        {"32f16s_Sfs", -2.5, 1, 0, -2}, {"32f16s_Sfs", -2.5, 2, 0, -3}, {"32f16s_Sfs", 3.5, 1, 0, 4}, {"32f16s_Sfs", 2.5, 7, 0, 3},
        {"32f16s_Sfs", 2.5, 5, 0, 3}, {"32f16s_Sfs", -2.5, -1, 0, -3}, {"32f16s_Sfs", 0.49999997f, 2, 0, 0}, {"32f16s_Sfs", -0.49999997f, 2, 0, 0},
        {"32f16s_Sfs", 0.5, 2, 0, 1}, {"32f16s_Sfs", nan, 0, 0, -32768}, {"32f16s_Sfs", nan, 1, 0, -32768}, {"32f16s_Sfs", nan, 2, 0, -32768},
        {"32f16s_Sfs", -nan, 1, 3, -32768}, {"32f16s_Sfs", inf, 0, 0, 32767}, {"32f16s_Sfs", inf, 2, 0, 32767}, {"32f16s_Sfs", -inf, 0, 0, -32768},
        {"32f16s_Sfs", -inf, 2, 0, -32768}, {"32f16s_Sfs", 32767.4f, 1, 0, 32767}, {"32f16s_Sfs", 32767.5f, 1, 0, 32767},
        {"32f16s_Sfs", -32768.5f, 2, 0, -32768}, {"32f16s_Sfs", 1e10f, 1, 0, 32767}, {"32f16s_Sfs", -3e9f, 1, 0, -32768},
        {"32f16s_Sfs", 10, 1, 1, 5}, {"32f16s_Sfs", 10, 1, 2, 2}, {"32f16s_Sfs", 10, 2, 2, 3}, {"32f16s_Sfs", 3, 1, -3, 24}, {"32f16s_Sfs", 5000, 1, -3, 32767},
        // The factor 1 - scale in the exponent field: at 127 its bits are all zero (0); at 128 the borrow
        // reaches the sign (times -infinity); 1 - 256 wraps to the bits of -1; 0 times infinity is a NaN.
        {"32f16s_Sfs", 5, 1, 127, 0}, {"32f16s_Sfs", 5, 1, 128, -32768}, {"32f16s_Sfs", -5, 1, 128, 32767}, {"32f16s_Sfs", 5, 1, 256, -5},
        {"32f16s_Sfs", 5, 1, -128, 32767}, {"32f16s_Sfs", 0, 1, 128, -32768},
        // From binary32 the top is 2^31, which is no 32-bit integer: it gives the largest.
        {"32f32s_Sfs", 2147483520.0f, kEach, 0, 2147483520}, {"32f32s_Sfs", 2147483648.0f, kEach, 0, i32max}, {"32f32s_Sfs", 3e9f, kEach, 0, i32max},
        {"32f32s_Sfs", inf, kEach, 0, i32max}, {"32f32s_Sfs", -2147483648.0f, kEach, 0, i32min}, {"32f32s_Sfs", -3e9f, kEach, 0, i32min},
        {"32f32s_Sfs", -inf, kEach, 0, i32min}, {"32f32s_Sfs", nan, kEach, 0, i32min},
        {"64f32s_Sfs", 2147483646.5, 0, 0, 2147483646}, {"64f32s_Sfs", 2147483646.5, 1, 0, 2147483646}, {"64f32s_Sfs", 2147483646.5, 2, 0, i32max},
        {"64f32s_Sfs", 2147483647.0, kEach, 0, i32max}, {"64f32s_Sfs", 2147483647.4, kEach, 0, i32max}, {"64f32s_Sfs", 2147483647.5, kEach, 0, i32max},
        {"64f32s_Sfs", -2147483648.5, kEach, 0, i32min}, {"64f32s_Sfs", -2147483648.4, kEach, 0, i32min},
        {"64f64s_Sfs", 2.5, 2, 0, 3}, {"64f64s_Sfs", -2.5, 2, 0, -3}, {"64f64s_Sfs", 0.49999999999999994, 2, 0, 0}, {"64f64s_Sfs", 9.3e18, 2, 0, i64max},
        {"64f64s_Sfs", -9.3e18, 2, 0, i64min}, {"64f64s_Sfs", 9223372036854775807.0, 2, 0, i64max}, {"64f64s_Sfs", nan, 2, 0, i64min},
        {"64f64s_Sfs", -inf, 2, 0, i64min}, {"64f64s_Sfs", 1e300, 2, 0, i64max}, {"64f64s_Sfs", 12, 2, 3, 2} /* 1.5 away from zero */,
        {"64f64s_Sfs", -12, 2, 3, -2}, {"64f64s_Sfs", 12, 2, 1024, i64min} /* the factor's bits wrap to -infinity */,
        // Packed 24 bits: three bytes an element, little endian; narrowing saturates to 24 bits.
        {"24u32u", 0x030201, kEach, 0, 0x030201}, {"24u32u", 0xFFFFFF, kEach, 0, 0xFFFFFF}, {"24u32u", 0x800000, kEach, 0, 0x800000},
        {"24s32s", 0x030201, kEach, 0, 0x030201}, {"24s32s", -1, kEach, 0, -1}, {"24s32s", -8388608, kEach, 0, -8388608},
        {"32s24s_Sfs", 0x030201, kEach, 0, 0x030201}, {"32s24s_Sfs", -1, kEach, 0, -1}, {"32s24s_Sfs", i32max, kEach, 0, 0x7FFFFF}, {"32s24s_Sfs", i32min, kEach, 0, -0x800000},
        // The integer rule: 2^-scale rounded by the mode (ties to even, away, toward zero), then saturated.
        {"32s16s_Sfs", 1, 1, 1, 0}, {"32s16s_Sfs", 3, 1, 1, 2}, {"32s16s_Sfs", -1, 1, 1, 0}, {"32s16s_Sfs", -3, 1, 1, -2}, {"32s16s_Sfs", 1, 2, 1, 1},
        {"32s16s_Sfs", -1, 2, 1, -1}, {"32s16s_Sfs", 3, 0, 1, 1}, {"32s16s_Sfs", -3, 0, 1, -1}, {"32s16s_Sfs", 70000, 1, 1, 32767},
        {"32s16s_Sfs", 70000, 1, 2, 17500}, {"32s16s_Sfs", -70000, 1, 0, -32768}, {"32s16s_Sfs", 1, 1, -15, 32767}, {"32s16s_Sfs", -1, 1, -15, -32768},
        {"32s16s_Sfs", 1, 1, -14, 16384}, {"32s16s_Sfs", 0, 1, -40, 0}, {"32s16s_Sfs", i32min, 1, 32, 0}, {"32s16s_Sfs", i32min, 2, 32, -1},
        {"32s16s_Sfs", i32min, 0, 32, 0}, {"32s16s_Sfs", i32max, 2, 32, 0}, {"32s16s_Sfs", i32min, 2, 33, 0},
        {"64s32s_Sfs", 5, kEach, 2, 1}, {"64s32s_Sfs", -5, kEach, 2, -1}, {"64s32s_Sfs", 6, 0, 2, 1}, {"64s32s_Sfs", -6, 0, 2, -1}, {"64s32s_Sfs", 7, 0, 2, 1},
        {"64s32s_Sfs", 6, 1, 2, 2}, {"64s32s_Sfs", -6, 1, 2, -2}, {"64s32s_Sfs", 7, 1, 2, 2}, {"64s32s_Sfs", 6, 2, 2, 2}, {"64s32s_Sfs", -6, 2, 2, -2},
        {"64s32s_Sfs", 7, 2, 2, 2}, {"64s32s_Sfs", i64max, kEach, 2, i32max}, {"64s32s_Sfs", i64min, kEach, 2, i32min},
        // 0xFFFFFFFF and 2^31 are above 2^24 - 1 but halved; over 2^32 the first rounds to 1 and 2^31 ties to 0.
        {"32u24u_Sfs", 0xFFFFFFFFu, kEach, 1, 0xFFFFFF}, {"32u24u_Sfs", 0x80000000u, kEach, 1, 0xFFFFFF}, {"32u24u_Sfs", 0x01000000u, kEach, 1, 0x800000},
        {"32u24u_Sfs", 0xFFFFFFFFu, kEach, 32, 1}, {"32u24u_Sfs", 0x80000000u, kEach, 32, 0},
    };
    for (const Point& p : pts) {
        const std::string name = std::string("zetsConvert_") + p.fn;
        const Case* c = name == k64f64s.name ? &k64f64s : nullptr;
        for (const Case& k : kCases) c = name == k.name ? &k : c;
        ASSERT_NE(c, nullptr) << name;
        u8 src[8] = {}, dst[8];
        if (c->from == k32f) { const float f = static_cast<float>(p.x); std::memcpy(src, &f, 4); }
        else if (c->from == k64f) { const double d = static_cast<double>(p.x); std::memcpy(src, &d, 8); }
        else writeInt(c->from, src, static_cast<i128>(p.x));
        for (int mode : p.mode == kEach ? std::vector<int>{0, 1, 2} : std::vector<int>{p.mode}) {
            std::memset(dst, 0xA5, sizeof dst);
            ASSERT_EQ(c->fn(src, dst, 1, mode, p.scale), zetStsOk) << name;
            EXPECT_EQ(static_cast<long double>(readInt(c->to, dst)), p.want) << name << " " << p.x << " mode " << mode << " scale " << p.scale;
        }
    }
}

// ---- checks --------------------------------------------------------------------------------

TEST(Convert, StatusOrderAndNothingWrittenOnError) {
    u8 src[64] = {}, dst[64];
    for (const Case& c : kCases) {
        std::memset(dst, 0xA5, sizeof dst);
        EXPECT_EQ(c.fn(nullptr, dst, 4, 1, 0), zetStsNullPtrErr) << c.name;
        EXPECT_EQ(c.fn(src, nullptr, 4, 1, 0), zetStsNullPtrErr) << c.name;
        EXPECT_EQ(c.fn(nullptr, nullptr, 0, 1, 0), zetStsNullPtrErr) << c.name;
        EXPECT_EQ(c.fn(src, dst, 0, 1, 0), zetStsSizeErr) << c.name;
        EXPECT_EQ(c.fn(src, dst, -3, 2, 0), std::string(c.name) == "zetsConvert_64f64s_Sfs" ? zetStsOk : zetStsSizeErr) << c.name;
        for (u8 b : dst) ASSERT_EQ(b, 0xA5) << c.name;
        // No mode is refused: 5 and -1 act as mode 2.
        if (c.mode) {
            EXPECT_EQ(c.fn(src, dst, 4, 5, 0), zetStsOk) << c.name;
        }
    }
    // The 64-bit float form: mode 2 only, with its own error; a length of exactly 0 is the only size error.
    double d[2] = {1.5, 2.5};
    Zet64s o[2] = {7, 7};
    EXPECT_EQ(zetsConvert_64f64s_Sfs(d, o, 2, 1, 0), zetStsRoundModeErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(d, o, 2, 0, 0), zetStsRoundModeErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(d, o, 0, 1, 0), zetStsSizeErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(nullptr, o, 0, 1, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(d, o, -1, 1, 0), zetStsRoundModeErr);
    EXPECT_EQ(zetsConvert_64f64s_Sfs(d, o, -1, 2, 0), zetStsOk);
    EXPECT_EQ(o[0], 7);
}

// ---- the control word -------------------------------------------------------------------------

struct ControlWordScope {
    unsigned saved = _mm_getcsr();
    ~ControlWordScope() { _mm_setcsr(saved); }
};

// Float-to-integer results follow the mode alone, whatever the caller's
// rounding direction; the caller's control bits come back, even with the
// invalid-operation exception unmasked (a NaN converts without a trap), and
// the flags the conversion raised stay raised. Integer-to-float results
// follow the caller's direction.
TEST(Convert, ControlWordIsTheCallersAndComesBack) {
    std::mt19937_64 rng(34);
    const int len = 77;
    std::vector<u8> src(len * 8), dst(len * 8);
    for (int direction : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (const Case& c : kCases) {
            const bool toInt = isFloat(c.from) && !isFloat(c.to);
            for (Args a : argsFor(c, {0, 5})) {
                fillSource(c, src.data(), len, a.scale, rng);
                std::memset(src.data(), 0xFF, bytesOf(c.from));  // a NaN first in every float source
                ControlWordScope cw;
                std::fesetround(direction);  // for the reference's rounding too
                _mm_setcsr(_mm_getcsr() & ~0x3Fu & (toInt ? ~0x80u : ~0u));  // flags clear; invalid unmasked where the library masks it
                const unsigned before = _mm_getcsr();
                const auto ok = matches(c, src.data(), dst.data(), len, a);
                const unsigned after = _mm_getcsr();
                std::fesetround(FE_TONEAREST);
                _mm_setcsr(cw.saved);
                ASSERT_TRUE(ok) << c.name << " direction " << direction;
                EXPECT_EQ(after & ~0x3Fu, before & ~0x3Fu) << c.name << " direction " << direction;
                if (toInt) {
                    EXPECT_TRUE(after & 0x1) << c.name << ": the invalid flag stays raised";
                }
            }
        }
    }
}

}  // namespace
