// Reordering and complex-part utilities against scalar references over every
// length and placement (guard pages on both sides, every misalignment), out
// of place and in place; bit strings bit by bit; normalisation against exact
// rational arithmetic; and the check orders.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using zettest::Placement;
using u8 = std::uint8_t;

// ---- same-size maps on raw element bytes -------------------------------------------

// ref writes the expected destination of n elements of `elem` bytes from the source.
using Ref = std::function<void(const u8* src, u8* dst, std::size_t n)>;
struct MapForm {
    std::string name;
    std::size_t elem;
    std::function<ZetStatus(const void*, void*, int)> out;  // may be empty
    std::function<ZetStatus(void*, int)> in;               // may be empty
    Ref ref;
    int nanEvery;  // plant NaNs of this element size in every nanEvery-th element (0: none)
};

template <class Op> Ref perElement(std::size_t elem, bool reversed, Op op) {
    return [=](const u8* s, u8* d, std::size_t n) {
        for (std::size_t i = 0; i < n; ++i) {
            u8 e[16];
            std::memcpy(e, s + i * elem, elem);
            op(e);
            std::memcpy(d + (reversed ? n - 1 - i : i) * elem, e, elem);
        }
    };
}
auto keep = [](u8*) {};
auto flipSignAt(std::size_t byte) { return [=](u8* e) { e[byte] ^= 0x80; }; }
auto conj16 = [](u8* e) {
    std::int16_t im;
    std::memcpy(&im, e + 2, 2);
    im = im == INT16_MIN ? INT16_MAX : static_cast<std::int16_t>(-im);
    std::memcpy(e + 2, &im, 2);
};
auto reverseBytes(std::size_t elem) { return [=](u8* e) { std::reverse(e, e + elem); }; }
template <class T> auto replaceNan(T value) {
    return [=](u8* e) {
        T x;
        std::memcpy(&x, e, sizeof x);
        if (std::isnan(x)) std::memcpy(e, &value, sizeof x);
    };
}

template <class E> auto outOf(ZetStatus (*f)(const E*, E*, int)) {
    return [f](const void* s, void* d, int n) { return f(static_cast<const E*>(s), static_cast<E*>(d), n); };
}
template <class E> auto outOfL(ZetStatus (*f)(const E*, E*, long long)) {
    return [f](const void* s, void* d, int n) { return f(static_cast<const E*>(s), static_cast<E*>(d), n); };
}
template <class E> auto inOf(ZetStatus (*f)(E*, int)) {
    return [f](void* p, int n) { return f(static_cast<E*>(p), n); };
}
template <class E> auto inOfL(ZetStatus (*f)(E*, long long)) {
    return [f](void* p, int n) { return f(static_cast<E*>(p), n); };
}
// A form without an _I variant that allows pSrc == pDst.
template <class E> auto sameOf(ZetStatus (*f)(const E*, E*, int)) {
    return [f](void* p, int n) { return f(static_cast<E*>(p), static_cast<E*>(p), n); };
}

std::vector<MapForm> mapForms() {
    std::vector<MapForm> v = {
        {"Flip_8u", 1, outOf(zetsFlip_8u), inOf(zetsFlip_8u_I), perElement(1, true, keep), 0},
        {"Flip_16u", 2, outOf(zetsFlip_16u), inOf(zetsFlip_16u_I), perElement(2, true, keep), 0},
        {"Flip_32f", 4, outOf(zetsFlip_32f), inOf(zetsFlip_32f_I), perElement(4, true, keep), 0},
        {"Flip_64f", 8, outOf(zetsFlip_64f), inOf(zetsFlip_64f_I), perElement(8, true, keep), 0},
        {"Flip_32fc", 8, outOf(zetsFlip_32fc), inOf(zetsFlip_32fc_I), perElement(8, true, keep), 0},
        {"Flip_64fc", 16, outOf(zetsFlip_64fc), inOf(zetsFlip_64fc_I), perElement(16, true, keep), 0},
        {"Flip_32f_L", 4, outOfL(zetsFlip_32f_L), inOfL(zetsFlip_32f_I_L), perElement(4, true, keep), 0},
        {"Flip_64f_L", 8, outOfL(zetsFlip_64f_L), inOfL(zetsFlip_64f_I_L), perElement(8, true, keep), 0},
        {"Flip_32fc_L", 8, outOfL(zetsFlip_32fc_L), inOfL(zetsFlip_32fc_I_L), perElement(8, true, keep), 0},
        {"Flip_64fc_L", 16, outOfL(zetsFlip_64fc_L), inOfL(zetsFlip_64fc_I_L), perElement(16, true, keep), 0},
        {"Conj_16sc", 4, outOf(zetsConj_16sc), inOf(zetsConj_16sc_I), perElement(4, false, conj16), 0},
        {"Conj_32fc", 8, outOf(zetsConj_32fc), inOf(zetsConj_32fc_I), perElement(8, false, flipSignAt(7)), 0},
        {"Conj_64fc", 16, outOf(zetsConj_64fc), inOf(zetsConj_64fc_I), perElement(16, false, flipSignAt(15)), 0},
        {"ConjFlip_16sc", 4, outOf(zetsConjFlip_16sc), sameOf(zetsConjFlip_16sc), perElement(4, true, conj16), 0},
        {"ConjFlip_32fc", 8, outOf(zetsConjFlip_32fc), sameOf(zetsConjFlip_32fc), perElement(8, true, flipSignAt(7)), 0},
        {"ConjFlip_64fc", 16, outOf(zetsConjFlip_64fc), sameOf(zetsConjFlip_64fc), perElement(16, true, flipSignAt(15)), 0},
        {"SwapBytes_16u", 2, outOf(zetsSwapBytes_16u), inOf(zetsSwapBytes_16u_I), perElement(2, false, reverseBytes(2)), 0},
        {"SwapBytes_24u", 3, outOf(zetsSwapBytes_24u), sameOf(zetsSwapBytes_24u), perElement(3, false, reverseBytes(3)), 0},
        {"SwapBytes_32u", 4, outOf(zetsSwapBytes_32u), inOf(zetsSwapBytes_32u_I), perElement(4, false, reverseBytes(4)), 0},
        {"SwapBytes_64u", 8, outOf(zetsSwapBytes_64u), inOf(zetsSwapBytes_64u_I), perElement(8, false, reverseBytes(8)), 0},
        {"ReplaceNAN_32f", 4, {}, [](void* p, int n) { return zetsReplaceNAN_32f_I(static_cast<Zet32f*>(p), n, -7.5f); },
         perElement(4, false, replaceNan(-7.5f)), 3},
        {"ReplaceNAN_64f", 8, {}, [](void* p, int n) { return zetsReplaceNAN_64f_I(static_cast<Zet64f*>(p), n, 1e300); },
         perElement(8, false, replaceNan(1e300)), 3},
    };
    return v;
}

void fillElems(u8* p, std::size_t n, std::size_t elem, int nanEvery, std::mt19937_64& rng) {
    zettest::fillBytes(p, n * elem, rng);
    for (std::size_t i = 0; i < n; ++i) {
        u8* e = p + i * elem;
        if (elem == 4 && rng() % 7 == 0) std::memcpy(e + 2, "\x00\x80", 2);  // imaginary -32768 for 16sc
        if (nanEvery && i % nanEvery == 0) {  // NaNs of either sign, quiet and signalling
            const std::uint64_t r = rng();
            if (elem == 4) { std::uint32_t b = 0x7F800001u | (r & 0x807FFFFFu); std::memcpy(e, &b, 4); }
            else { std::uint64_t b = 0x7FF0000000000001ull | (r & 0x800FFFFFFFFFFFFFull); std::memcpy(e, &b, 8); }
        }
    }
}

TEST(Reorder, MapsMatchReferenceOverLengthsAndPlacements) {
    std::mt19937_64 rng(2026);
    GuardedRegion srcR(80000), dstR(80000);
    for (const MapForm& f : mapForms()) {
        for (const Placement& pl : zettest::placementsFor(f.elem)) {
            for (int n : zettest::kernelLengths()) {
                const std::size_t bytes = n * f.elem;
                std::vector<u8> in(bytes), want(bytes);
                fillElems(in.data(), n, f.elem, f.nanEvery, rng);
                f.ref(in.data(), want.data(), n);
                u8* src = zettest::place<u8>(srcR, pl, bytes);
                if (f.out) {
                    // The destination at the opposite guard: a stray write past either end faults.
                    u8* dst = pl.kind == Placement::Tail ? dstR.head<u8>() : dstR.tail<u8>(bytes);
                    std::memcpy(src, in.data(), bytes);
                    ASSERT_EQ(f.out(src, dst, n), zetStsOk) << f.name;
                    ASSERT_EQ(std::memcmp(dst, want.data(), bytes), 0) << f.name << " n=" << n << " " << pl.name();
                    ASSERT_EQ(std::memcmp(src, in.data(), bytes), 0) << f.name << " wrote its source";
                }
                if (f.in) {
                    std::memcpy(src, in.data(), bytes);
                    ASSERT_EQ(f.in(src, n), zetStsOk) << f.name;
                    ASSERT_EQ(std::memcmp(src, want.data(), bytes), 0) << f.name << " in place n=" << n << " " << pl.name();
                }
            }
        }
    }
}

TEST(Reorder, MapChecks) {
    alignas(16) u8 buf[64] = {};
    for (const MapForm& f : mapForms()) {
        if (f.out) {
            EXPECT_EQ(f.out(nullptr, buf, 0), zetStsNullPtrErr) << f.name;
            EXPECT_EQ(f.out(buf, nullptr, 1), zetStsNullPtrErr) << f.name;
            EXPECT_EQ(f.out(buf, buf + 32, 0), zetStsSizeErr) << f.name;
            EXPECT_EQ(f.out(buf, buf + 32, -1), zetStsSizeErr) << f.name;
        }
        EXPECT_EQ(f.in(nullptr, 0), zetStsNullPtrErr) << f.name;
        EXPECT_EQ(f.in(buf, 0), zetStsSizeErr) << f.name;
    }
}

// ---- complex parts ---------------------------------------------------------------------

template <class R, class C>
struct PartForms {
    ZetStatus (*real)(const C*, R*, int);
    ZetStatus (*imag)(const C*, R*, int);
    ZetStatus (*split)(const C*, R*, R*, int);
    ZetStatus (*join)(const R*, const R*, C*, int);
};

template <class R, class C>
void checkParts(PartForms<R, C> f) {
    std::mt19937_64 rng(sizeof(R));
    GuardedRegion cR(80000), reR(40000), imR(40000);
    for (const Placement& pl : zettest::placementsFor(sizeof(R))) {
        for (int n : zettest::kernelLengths()) {
            std::vector<R> in(2 * n);
            zettest::fillBytes(in.data(), in.size() * sizeof(R), rng);
            R* c = zettest::place<R>(cR, pl, 2 * n);
            R* re = reR.tail<R>(n);
            R* im = imR.tail<R>(n);
            std::memcpy(c, in.data(), 2 * n * sizeof(R));
            auto part = [&](const R* got, int which) {
                for (int i = 0; i < n; ++i)
                    if (std::memcmp(&got[i], &in[2 * i + which], sizeof(R)) != 0) return i;
                return -1;
            };
            ASSERT_EQ(f.real(reinterpret_cast<C*>(c), re, n), zetStsOk);
            ASSERT_EQ(part(re, 0), -1) << "Real n=" << n << " " << pl.name();
            ASSERT_EQ(f.imag(reinterpret_cast<C*>(c), im, n), zetStsOk);
            ASSERT_EQ(part(im, 1), -1) << "Imag n=" << n << " " << pl.name();
            std::memset(re, 0, n * sizeof(R)), std::memset(im, 0, n * sizeof(R));
            ASSERT_EQ(f.split(reinterpret_cast<C*>(c), re, im, n), zetStsOk);
            ASSERT_EQ(part(re, 0), -1) << "CplxToReal n=" << n;
            ASSERT_EQ(part(im, 1), -1) << "CplxToReal n=" << n;
            // Joining the parts back, and with either part missing (read as zeros).
            std::memset(c, 0x5A, 2 * n * sizeof(R));
            ASSERT_EQ(f.join(re, im, reinterpret_cast<C*>(c), n), zetStsOk);
            ASSERT_EQ(std::memcmp(c, in.data(), 2 * n * sizeof(R)), 0) << "RealToCplx n=" << n << " " << pl.name();
            for (int missing = 0; missing < 2; ++missing) {
                ASSERT_EQ(f.join(missing == 0 ? nullptr : re, missing == 1 ? nullptr : im, reinterpret_cast<C*>(c), n), zetStsOk);
                std::vector<R> want = in;
                for (int i = 0; i < n; ++i) want[2 * i + missing] = R{};
                ASSERT_EQ(std::memcmp(c, want.data(), 2 * n * sizeof(R)), 0) << "RealToCplx missing " << missing << " n=" << n;
            }
        }
    }
    R r[2] = {};
    C z[2] = {};
    EXPECT_EQ(f.real(nullptr, r, 0), zetStsNullPtrErr);
    EXPECT_EQ(f.imag(z, nullptr, 1), zetStsNullPtrErr);
    EXPECT_EQ(f.split(z, r, nullptr, 1), zetStsNullPtrErr);
    EXPECT_EQ(f.split(z, r, r, 0), zetStsSizeErr);
    EXPECT_EQ(f.join(nullptr, nullptr, z, 1), zetStsNullPtrErr);
    EXPECT_EQ(f.join(r, r, nullptr, 1), zetStsNullPtrErr);
    EXPECT_EQ(f.join(nullptr, r, z, 0), zetStsSizeErr);
}

TEST(ComplexParts, SplitAndJoinMatchReference) {
    checkParts(PartForms<Zet16s, Zet16sc>{zetsReal_16sc, zetsImag_16sc, zetsCplxToReal_16sc, zetsRealToCplx_16s});
    checkParts(PartForms<Zet32f, Zet32fc>{zetsReal_32fc, zetsImag_32fc, zetsCplxToReal_32fc, zetsRealToCplx_32f});
    checkParts(PartForms<Zet64f, Zet64fc>{zetsReal_64fc, zetsImag_64fc, zetsCplxToReal_64fc, zetsRealToCplx_64f});
}

// ---- bit strings --------------------------------------------------------------------------

bool bitAt(const u8* p, long long i, bool be) { return (p[i / 8] >> (be ? 7 - i % 8 : i % 8)) & 1; }
void setBit(u8* p, long long i, bool be, bool v) {
    const u8 m = static_cast<u8>(1u << (be ? 7 - i % 8 : i % 8));
    p[i / 8] = static_cast<u8>(v ? p[i / 8] | m : p[i / 8] & ~m);
}

TEST(BitCopy, MatchesBitByBitReference) {
    std::mt19937_64 rng(99);
    GuardedRegion sR(4096), dR(4096);
    for (bool be : {true, false}) {
        auto copy = be ? zetsCopyBE_1u : zetsCopyLE_1u;
        for (int len = 1; len <= 300; len += (len < 80 ? 1 : 37)) {
            for (int so = 0; so < 20; so += (so < 9 ? 1 : 5)) {
                for (int dof = 0; dof < 20; dof += (dof < 9 ? 1 : 5)) {
                    // Each string ends at a guard page: its last byte is the last readable one.
                    const std::size_t sb = (so + len + 7) / 8, db = (dof + len + 7) / 8;
                    u8* s = sR.tail<u8>(sb);
                    u8* d = dR.tail<u8>(db);
                    zettest::fillBytes(s, sb, rng);
                    zettest::fillBytes(d, db, rng);
                    std::vector<u8> want(d, d + db);
                    for (int i = 0; i < len; ++i) setBit(want.data(), dof + i, be, bitAt(s, so + i, be));
                    ASSERT_EQ(copy(s, so, d, dof, len), zetStsOk);
                    ASSERT_EQ(std::memcmp(d, want.data(), db), 0) << (be ? "BE" : "LE") << " len=" << len << " so=" << so << " do=" << dof;
                }
            }
        }
        u8 a[4] = {}, b[4] = {};
        EXPECT_EQ(copy(nullptr, -1, b, 0, 0), zetStsNullPtrErr);
        EXPECT_EQ(copy(a, -1, nullptr, 0, 1), zetStsNullPtrErr);
        EXPECT_EQ(copy(a, -1, b, 0, 0), zetStsSizeErr);
        EXPECT_EQ(copy(a, -1, b, 0, 1), zetStsBadArgErr);
        EXPECT_EQ(copy(a, 0, b, -1, 1), zetStsBadArgErr);
    }
}

// ---- normalisation ---------------------------------------------------------------------------

template <class T> T quotient(T x, T sub, T div) {
    const volatile T d = x - sub;  // rounded once, then divided
    return d / div;
}

TEST(Normalize, FloatFormsAreRoundedDifferenceOverDivisor) {
    std::mt19937_64 rng(5);
    GuardedRegion sR(80000), dR(80000);
    const float fs = 0.3f, fd = -1.7f;
    const double ds = -2.5e-3, dd = 3.3;
    for (const Placement& pl : zettest::placementsFor(4)) {
        for (int n : zettest::kernelLengths()) {
            std::vector<float> f(2 * n);
            std::vector<double> g(2 * n);
            zettest::fillFloats(f.data(), f.size(), rng);
            zettest::fillFloats(g.data(), g.size(), rng);
            // Single: real (sub fs) and complex (sub (fs, fd)); double likewise.
            auto check = [&](auto* src, auto* dst, const auto& in, std::size_t count, auto run, auto ref, const char* name) {
                std::memcpy(src, in.data(), count * sizeof in[0]);
                ASSERT_EQ(run(src, dst), zetStsOk) << name;
                auto out = in;  // read back by bytes: dst may be misaligned
                std::memcpy(out.data(), dst, count * sizeof in[0]);
                for (std::size_t i = 0; i < count; ++i)
                    ASSERT_EQ(zettest::bitsOf(out[i]), zettest::bitsOf(ref(in[i], i))) << name << " n=" << n << " i=" << i << " " << pl.name();
            };
            float* fsrc = zettest::place<float>(sR, pl, 2 * n);
            float* fdst = dR.tail<float>(2 * n);
            check(fsrc, fdst, f, n, [&](float* s, float* d) { return zetsNormalize_32f(s, d, n, fs, fd); },
                  [&](float x, std::size_t) { return quotient(x, fs, fd); }, "32f");
            check(fsrc, fsrc, f, n, [&](float* s, float*) { return zetsNormalize_32f_I(s, n, fs, fd); },
                  [&](float x, std::size_t) { return quotient(x, fs, fd); }, "32f_I");
            check(fsrc, fdst, f, 2 * n, [&](float* s, float* d) {
                return zetsNormalize_32fc(reinterpret_cast<Zet32fc*>(s), reinterpret_cast<Zet32fc*>(d), n, Zet32fc{fs, fd}, fd); },
                  [&](float x, std::size_t i) { return quotient(x, i % 2 ? fd : fs, fd); }, "32fc");
            check(fsrc, fsrc, f, 2 * n, [&](float* s, float*) {
                return zetsNormalize_32fc_I(reinterpret_cast<Zet32fc*>(s), n, Zet32fc{fs, fd}, fd); },
                  [&](float x, std::size_t i) { return quotient(x, i % 2 ? fd : fs, fd); }, "32fc_I");
            if (pl.kind == Placement::Offset && pl.offset % 8 != 0 && pl.offset != 1) continue;
            double* dsrc = zettest::place<double>(sR, pl, 2 * n);
            double* ddst = dR.tail<double>(2 * n);
            check(dsrc, ddst, g, n, [&](double* s, double* d) { return zetsNormalize_64f(s, d, n, ds, dd); },
                  [&](double x, std::size_t) { return quotient(x, ds, dd); }, "64f");
            check(dsrc, dsrc, g, n, [&](double* s, double*) { return zetsNormalize_64f_I(s, n, ds, dd); },
                  [&](double x, std::size_t) { return quotient(x, ds, dd); }, "64f_I");
            check(dsrc, ddst, g, 2 * n, [&](double* s, double* d) {
                return zetsNormalize_64fc(reinterpret_cast<Zet64fc*>(s), reinterpret_cast<Zet64fc*>(d), n, Zet64fc{ds, dd}, dd); },
                  [&](double x, std::size_t i) { return quotient(x, i % 2 ? dd : ds, dd); }, "64fc");
            check(dsrc, dsrc, g, 2 * n, [&](double* s, double*) {
                return zetsNormalize_64fc_I(reinterpret_cast<Zet64fc*>(s), n, Zet64fc{ds, dd}, dd); },
                  [&](double x, std::size_t i) { return quotient(x, i % 2 ? dd : ds, dd); }, "64fc_I");
        }
    }
}

// round((x - sub) * 2^-sf / div), ties to even, saturated: exact in 128 bits.
Zet16s normalizeRef(int x, int sub, int div, int sf) {
    using i128 = __int128;
    i128 num = x - sub, den = div;
    if (num == 0) return 0;
    if (sf < 0) {
        if (-sf > 60) return num * den > 0 ? INT16_MAX : INT16_MIN;
        num <<= -sf;
    } else {
        if (sf > 60) return 0;  // |quotient| below 2^-43
        den <<= sf;
    }
    if (den < 0) num = -num, den = -den;
    i128 q = num / den, r = num % den;
    if (r < 0) q -= 1, r += den;  // floor
    if (2 * r > den || (2 * r == den && (q & 1))) q += 1;
    return static_cast<Zet16s>(q < INT16_MIN ? INT16_MIN : q > INT16_MAX ? INT16_MAX : q);
}

TEST(Normalize, FixedFormsAreExactForEverySixteenBitValue) {
    struct Case { int sub, div, sf; };
    const Case cases[] = {{0, 2, 0}, {1, 2, 0}, {-5, -3, -1}, {100, 7, 2}, {0, 1, -1}, {-32768, 65536 * 3, -20},
                          {32767, -1, 0}, {12, INT32_MIN, -30}, {0, 3, 1000}, {1, 1, -1000}, {7, -65535, 17}};
    std::vector<Zet16s> all(65536), got(65536);
    for (int i = 0; i < 65536; ++i) all[i] = static_cast<Zet16s>(i - 32768);
    for (const Case& c : cases) {
        ASSERT_EQ(zetsNormalize_16s_Sfs(all.data(), got.data(), 65536, static_cast<Zet16s>(c.sub), c.div, c.sf), zetStsOk);
        for (int i = 0; i < 65536; ++i)
            ASSERT_EQ(got[i], normalizeRef(all[i], c.sub, c.div, c.sf)) << "x=" << all[i] << " sub=" << c.sub << " div=" << c.div << " sf=" << c.sf;
        // Complex: the same values as pairs, odd parts against the imaginary subtrahend.
        const Zet16sc sub{static_cast<Zet16s>(c.sub), static_cast<Zet16s>(-c.sub / 2)};
        std::vector<Zet16s> inPlace = all;
        ASSERT_EQ(zetsNormalize_16sc_ISfs(reinterpret_cast<Zet16sc*>(inPlace.data()), 32768, sub, c.div, c.sf), zetStsOk);
        for (int i = 0; i < 65536; ++i)
            ASSERT_EQ(inPlace[i], normalizeRef(all[i], i % 2 ? sub.im : sub.re, c.div, c.sf)) << "16sc i=" << i;
    }
    // Short vectors and every placement reach the partial last register.
    GuardedRegion sR(4096), dR(4096);
    for (const Placement& pl : zettest::placementsFor(2)) {
        for (int n = 1; n <= 40; ++n) {
            std::vector<Zet16s> in(2 * n), out(2 * n);
            for (int i = 0; i < 2 * n; ++i) in[i] = static_cast<Zet16s>(i * 2731 - 30000);
            Zet16s* s = zettest::place<Zet16s>(sR, pl, 2 * n);  // may be misaligned: bytes in and out
            Zet16s* d = dR.tail<Zet16s>(2 * n);
            std::memcpy(s, in.data(), 4 * n);
            ASSERT_EQ(zetsNormalize_16sc_Sfs(reinterpret_cast<Zet16sc*>(s), reinterpret_cast<Zet16sc*>(d), n, Zet16sc{3, -4}, -6, 1), zetStsOk);
            std::memcpy(out.data(), d, 4 * n);
            for (int i = 0; i < 2 * n; ++i) ASSERT_EQ(out[i], normalizeRef(in[i], i % 2 ? -4 : 3, -6, 1)) << n << " " << pl.name();
            ASSERT_EQ(zetsNormalize_16s_ISfs(s, n, 9, 5, -2), zetStsOk);
            std::memcpy(out.data(), s, 2 * n);
            for (int i = 0; i < n; ++i) ASSERT_EQ(out[i], normalizeRef(in[i], 9, 5, -2));
        }
    }
}

TEST(Normalize, ChecksPointersThenLengthThenDivisor) {
    float f[2] = {};
    Zet16s s[2] = {};
    EXPECT_EQ(zetsNormalize_32f(nullptr, f, 0, 0, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsNormalize_32f(f, f, 0, 0, 0), zetStsSizeErr);
    EXPECT_EQ(zetsNormalize_32f(f, f, 1, 0, -0.0f), zetStsDivByZeroErr);
    EXPECT_EQ(zetsNormalize_64fc_I(nullptr, 0, Zet64fc{}, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsNormalize_64fc_I(reinterpret_cast<Zet64fc*>(f), 1, Zet64fc{}, 0), zetStsDivByZeroErr);
    EXPECT_EQ(zetsNormalize_16s_Sfs(s, nullptr, 0, 0, 0, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsNormalize_16sc_Sfs(reinterpret_cast<Zet16sc*>(s), reinterpret_cast<Zet16sc*>(s), -3, {}, 0, 0), zetStsSizeErr);
    EXPECT_EQ(zetsNormalize_16sc_ISfs(reinterpret_cast<Zet16sc*>(s), 1, {}, 0, 0), zetStsDivByZeroErr);
}

}  // namespace
