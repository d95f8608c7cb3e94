// Real power-of-two transforms: the three spectrum layouts against a
// long-double DFT and against each other bit for bit, inverse transforms and
// round trips under every scale flag, in place and out of place at guard
// pages and odd addresses, the sizes GetSize reports, and the check orders.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "fft_sizes.hpp"
#include "zetsp.h"
#include "zettest.hpp"

namespace {

using fftsizes::Sizes;
using fftsizes::up64;
using zettest::GuardedRegion;
using LD = long double;

enum Fmt { kCCS, kPack, kPerm };
constexpr Fmt kFormats[] = {kCCS, kPack, kPerm};
const char* fmtName(Fmt f) { return f == kCCS ? "CCS" : f == kPack ? "Pack" : "Perm"; }

template <class T> struct Tr;
#define REAL_FFT(T, S, LIMIT)                                                                                         \
    template <> struct Tr<T> {                                                                                        \
        using Spec = ZetsFFTSpec_R_##S;                                                                               \
        using Fn = ZetStatus (*)(const T*, T*, const Spec*, Zet8u*);                                                  \
        using FnI = ZetStatus (*)(T*, const Spec*, Zet8u*);                                                           \
        static constexpr bool dbl = sizeof(T) == 8;                                                                   \
        static constexpr int initLimit = LIMIT;                                                                       \
        static constexpr auto getSize = &zetsFFTGetSize_R_##S;                                                        \
        static constexpr auto init = &zetsFFTInit_R_##S;                                                              \
        static constexpr Fn fwd[3] = {&zetsFFTFwd_RToCCS_##S, &zetsFFTFwd_RToPack_##S, &zetsFFTFwd_RToPerm_##S};      \
        static constexpr Fn inv[3] = {&zetsFFTInv_CCSToR_##S, &zetsFFTInv_PackToR_##S, &zetsFFTInv_PermToR_##S};      \
        static constexpr FnI fwdI[3] = {&zetsFFTFwd_RToCCS_##S##_I, &zetsFFTFwd_RToPack_##S##_I, &zetsFFTFwd_RToPerm_##S##_I}; \
        static constexpr FnI invI[3] = {&zetsFFTInv_CCSToR_##S##_I, &zetsFFTInv_PackToR_##S##_I, &zetsFFTInv_PermToR_##S##_I}; \
    };
REAL_FFT(float, 32f, 28)
REAL_FFT(double, 64f, 27)

// ---- the sizes: the half-length complex core plus two recombination tables
Sizes expectedSizes(bool dbl, int order) {
    const long long n = 1LL << order;
    if (order <= 10) return {(dbl ? 18 : 9) * n + 2048, 0, order < 6 ? 0 : (dbl ? 8 : 4) * n + 128};
    const Sizes half = fftsizes::fftCore(order - 1, dbl);
    long long t;
    if (order >= 19) t = dbl ? (16LL << (order - 12)) + 16447 : (8LL << (order - 12)) + 8255;
    else t = dbl ? up64(4 * n) : up64(2 * n);
    const long long sine = dbl ? ((((2 * n) & ~7LL) + 71) & ~63LL) : (((n & ~3LL) + 67) & ~63LL);
    return {1344 + up64(half.spec + 2 * t), up64(sine + 64), up64(half.work + 64) + 64};
}

// ---- one transform object in guarded memory
template <class T> struct Spec {
    std::unique_ptr<GuardedRegion> specMem, initMem, workMem;
    typename Tr<T>::Spec* spec = nullptr;
    Zet8u* work = nullptr;
    Spec(int order, int flag, std::size_t specOffset = 0) {
        int s = 0, i = 0, w = 0;
        EXPECT_EQ(Tr<T>::getSize(order, flag, zetHintAccurate, &s, &i, &w), zetStsOk);
        specMem = std::make_unique<GuardedRegion>(s + specOffset);
        initMem = std::make_unique<GuardedRegion>(i + 1);
        workMem = std::make_unique<GuardedRegion>(w + 1);
        // Every byte a caller may need lies within the sizes reported.
        Zet8u* sb = specMem->tail<Zet8u>(s);
        std::memset(initMem->begin(), 0xA5, initMem->capacity());
        EXPECT_EQ(Tr<T>::init(&spec, order, flag, zetHintAccurate, sb, i ? initMem->tail<Zet8u>(i) : nullptr), zetStsOk);
        work = w ? workMem->tail<Zet8u>(w) : nullptr;
    }
};

// ---- references
std::vector<std::complex<LD>> dftOf(const std::vector<LD>& x) {
    const std::size_t n = x.size();
    std::vector<std::complex<LD>> X(n / 2 + 1);
    const LD w = -2 * 3.141592653589793238462643383279502884L / static_cast<LD>(n);
    for (std::size_t k = 0; k <= n / 2; ++k) {
        std::complex<LD> acc = 0;
        for (std::size_t j = 0; j < n; ++j) {
            const LD a = w * static_cast<LD>((j * k) % n);
            acc += x[j] * std::complex<LD>(std::cos(a), std::sin(a));
        }
        X[k] = acc;
    }
    return X;
}

// The layout of a half spectrum, in reals.
std::vector<LD> layout(Fmt f, const std::vector<std::complex<LD>>& X, std::size_t n) {
    std::vector<LD> out;
    if (n == 1) {
        out = {X[0].real()};
        if (f == kCCS) out.push_back(0);
        return out;
    }
    out.push_back(X[0].real());
    if (f == kCCS) out.push_back(0);
    if (f == kPerm) out.push_back(X[n / 2].real());
    for (std::size_t k = 1; k < n / 2; ++k) { out.push_back(X[k].real()); out.push_back(X[k].imag()); }
    if (f != kPerm) out.push_back(X[n / 2].real());
    if (f == kCCS) out.push_back(0);
    return out;
}

std::size_t layoutLen(Fmt f, std::size_t n) { return f == kCCS ? n + 2 - n % 2 : n; }

template <class Got> double relRms(const Got* got, const std::vector<LD>& ref, LD s) {
    LD e = 0, r = 0;
    for (std::size_t i = 0; i < ref.size(); ++i) {
        const LD d = static_cast<LD>(got[i]) - s * ref[i];
        e += d * d;
        r += s * s * ref[i] * ref[i];
    }
    return r == 0 ? static_cast<double>(std::sqrt(e)) : static_cast<double>(std::sqrt(e / r));
}

double bound(bool dbl, int order) { return 4.0 * (dbl ? 1e-16 : 1e-7) * std::max(1, order); }

LD factor(int flag, bool inverse, int order) {
    const LD n = static_cast<LD>(1LL << order);
    if (flag == ZET_SCALE_SYM) return 1 / std::sqrt(n);
    if ((flag == ZET_SCALE_FWD && !inverse) || (flag == ZET_SCALE_INV && inverse)) return 1 / n;
    return 1;
}

// Input of order `order` and its half spectrum: naive up to 4096 points;
// above, a sum of tones at whole bins whose spectrum is known exactly.
template <class T> void makeSignal(int order, std::vector<T>& x, std::vector<std::complex<LD>>& X) {
    const std::size_t n = std::size_t{1} << order;
    std::mt19937_64 rng(order * 7919u + sizeof(T));
    std::uniform_real_distribution<double> u(-1, 1);
    x.assign(n, 0);
    if (order <= 12) {
        std::vector<LD> xl(n);
        for (std::size_t i = 0; i < n; ++i) xl[i] = x[i] = static_cast<T>(u(rng));
        X = dftOf(xl);
        return;
    }
    X.assign(n / 2 + 1, 0);
    const LD tau = 2 * 3.141592653589793238462643383279502884L;
    std::vector<LD> acc(n, 0);
    for (int tone = 0; tone < 8; ++tone) {
        const std::size_t bin = tone == 0 ? 0 : tone == 1 ? n / 2 : (rng() % (n / 2 - 1)) + 1;
        const LD a = static_cast<LD>(u(rng)), b = bin == 0 || bin == n / 2 ? 0 : static_cast<LD>(u(rng));
        for (std::size_t j = 0; j < n; ++j) {
            const LD ph = tau * static_cast<LD>((j * bin) % n) / static_cast<LD>(n);
            acc[j] += a * std::cos(ph) - b * std::sin(ph);
        }
        const LD m = (bin == 0 || bin == n / 2) ? static_cast<LD>(n) : static_cast<LD>(n) / 2;
        X[bin] += std::complex<LD>(a * m, b * m);
    }
    // Rounding the samples to T perturbs the spectrum by about one unit of
    // T, which the bound of the large orders allows for.
    for (std::size_t j = 0; j < n; ++j) x[j] = static_cast<T>(acc[j]);
}

// ---- forward and inverse at one order, every layout, flag and placement
template <class T> void checkOrder(int order) {
    const std::size_t n = std::size_t{1} << order;
    std::vector<T> x;
    std::vector<std::complex<LD>> X;
    makeSignal<T>(order, x, X);
    const double tol = bound(Tr<T>::dbl, order) + (order > 12 ? (Tr<T>::dbl ? 1e-16 : 1e-7) : 0);
    GuardedRegion srcMem((n + 2) * sizeof(T) + 128), dstMem((n + 2) * sizeof(T) + 128);
    for (int flag : {ZET_SCALE_NONE, ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM}) {
        Spec<T> s(order, flag, 24);
        std::vector<T> ccs;
        for (Fmt f : kFormats) {
            SCOPED_TRACE(testing::Message() << (Tr<T>::dbl ? "64f" : "32f") << " order " << order << " flag "
                                            << flag << ' ' << fmtName(f));
            const std::size_t len = layoutLen(f, n);
            const std::vector<LD> ref = layout(f, X, n);
            // Out of place: destination against the guard page, then at an
            // odd address; in place in an array of the layout's length.
            T* src = srcMem.tail<T>(n);
            std::memcpy(src, x.data(), n * sizeof(T));
            T* dst = dstMem.tail<T>(len);
            ASSERT_EQ(Tr<T>::fwd[f](src, dst, s.spec, s.work), zetStsOk);
            EXPECT_LE(relRms(dst, ref, factor(flag, false, order)), tol);
            std::vector<T> out(dst, dst + len);
            if (f == kCCS) {
                EXPECT_EQ(zettest::bitsOf(out[1]), 0u);
                EXPECT_EQ(zettest::bitsOf(out[len - 1]), 0u);
            }
            T* odd = dstMem.at<T>(sizeof(T) == 4 ? 4 : 8);
            ASSERT_EQ(Tr<T>::fwd[f](src, odd, s.spec, s.work), zetStsOk);
            EXPECT_EQ(zettest::firstBitMismatch(odd, out.data(), len), -1);
            T* io = srcMem.tail<T>(len);
            std::memcpy(io, x.data(), n * sizeof(T));
            ASSERT_EQ(Tr<T>::fwdI[f](io, s.spec, s.work), zetStsOk);
            EXPECT_EQ(zettest::firstBitMismatch(io, out.data(), len), -1);
            // The layouts hold the same numbers as CCS, moved.
            if (f == kCCS) ccs = out;
            if (f == kPack && n > 1) {
                EXPECT_EQ(zettest::bitsOf(out[n - 1]), zettest::bitsOf(ccs[n]));
                for (std::size_t i = 1; i + 1 < n; ++i) ASSERT_EQ(zettest::bitsOf(out[i]), zettest::bitsOf(ccs[i + 1]));
            }
            if (f == kPerm && n > 1) {
                EXPECT_EQ(zettest::bitsOf(out[1]), zettest::bitsOf(ccs[n]));
                for (std::size_t i = 2; i < n; ++i) ASSERT_EQ(zettest::bitsOf(out[i]), zettest::bitsOf(ccs[i]));
            }

            // Inverse of the exact spectrum, out of place and in place.
            T* spec = srcMem.tail<T>(len);
            for (std::size_t i = 0; i < len; ++i) spec[i] = static_cast<T>(ref[i]);
            std::vector<LD> xl(x.begin(), x.end());
            T* back = dstMem.tail<T>(n);
            ASSERT_EQ(Tr<T>::inv[f](spec, back, s.spec, s.work), zetStsOk);
            EXPECT_LE(relRms(back, xl, static_cast<LD>(n) * factor(flag, true, order)), tol);
            std::vector<T> inverse(back, back + n);
            ASSERT_EQ(Tr<T>::invI[f](spec, s.spec, s.work), zetStsOk);
            EXPECT_EQ(zettest::firstBitMismatch(spec, inverse.data(), n), -1);

            // Round trip of our own spectrum.
            ASSERT_EQ(Tr<T>::inv[f](out.data(), back, s.spec, s.work), zetStsOk);
            const LD rt = factor(flag, false, order) * factor(flag, true, order) * static_cast<LD>(n);
            EXPECT_LE(relRms(back, xl, rt), tol);
        }
    }
}

class RealOrder : public testing::TestWithParam<int> {};
TEST_P(RealOrder, LayoutsInversesAndRoundTripsMatchTheDft) {
    checkOrder<float>(GetParam());
    checkOrder<double>(GetParam());
}
INSTANTIATE_TEST_SUITE_P(RealFFT, RealOrder, testing::Range(0, 15));
// Two-level recombination tables from 2^19, the large half transform above.
INSTANTIATE_TEST_SUITE_P(RealFFTLarge, RealOrder, testing::Values(18, 19, 20));

// Lengths 1 and 2 exactly, without work, writing nothing past the layout.
TEST(RealFFT, LengthsOneAndTwoAreExact) {
    Spec<float> one(0, ZET_SCALE_NONE), two(1, ZET_SCALE_NONE);
    for (Fmt f : kFormats) {
        float x1[1] = {3.5f}, y[4] = {9, 9, 9, 9}, x2[2] = {3.0f, -1.25f}, z[5] = {9, 9, 9, 9, 9}, back[3] = {0, 0, 9};
        ASSERT_EQ(Tr<float>::fwd[f](x1, y, one.spec, nullptr), zetStsOk);
        ASSERT_EQ(Tr<float>::fwd[f](x2, z, two.spec, nullptr), zetStsOk);
        const std::vector<float> e1 = f == kCCS ? std::vector<float>{3.5f, 0, 9} : std::vector<float>{3.5f, 9};
        const std::vector<float> e2 = f == kCCS ? std::vector<float>{1.75f, 0, 4.25f, 0, 9} : std::vector<float>{1.75f, 4.25f, 9};
        EXPECT_EQ(std::vector<float>(y, y + e1.size()), e1) << fmtName(f);
        EXPECT_EQ(std::vector<float>(z, z + e2.size()), e2) << fmtName(f);
        ASSERT_EQ(Tr<float>::inv[f](z, back, two.spec, nullptr), zetStsOk);
        EXPECT_EQ(std::vector<float>(back, back + 3), (std::vector<float>{6.0f, -2.5f, 9})) << fmtName(f);
    }
}

// Every order and flag: the half-length complex core plus two recombination tables.
TEST(RealFFTGetSize, MatchesTheHalfCoreAndTablesRule) {
    for (bool dbl : {false, true})
        for (int order = 0; order <= (dbl ? Tr<double>::initLimit : Tr<float>::initLimit); ++order)
            for (int flag : {ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM, ZET_SCALE_NONE}) {
                int s = -1, i = -1, w = -1;
                ASSERT_EQ((dbl ? zetsFFTGetSize_R_64f : zetsFFTGetSize_R_32f)(order, flag, zetHintFast, &s, &i, &w), zetStsOk) << order;
                const Sizes e = expectedSizes(dbl, order);
                EXPECT_TRUE(s == e.spec && i == e.init && w == e.work) << (dbl ? "64f" : "32f") << " order " << order << " flag " << flag
                                                                        << ": " << s << " " << i << " " << w;
            }
}

TEST(RealFFTGetSize, LimitsDifferFromInitAsStated) {
    int s = -1, i = -1, w = -1;
    // Single: no GetSize limit below 30; order 30 fails inside the count.
    EXPECT_EQ(zetsFFTGetSize_R_32f(29, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w), zetStsOk);
    EXPECT_GT(s, 0);
    EXPECT_EQ(zetsFFTGetSize_R_32f(30, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w), zetStsUnsupportedErr);
    EXPECT_EQ(s, 64); EXPECT_EQ(i, 0); EXPECT_EQ(w, 64);
    EXPECT_EQ(zetsFFTGetSize_R_32f(31, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w), zetStsFFTOrderErr);
    EXPECT_EQ(zetsFFTGetSize_R_64f(28, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w), zetStsOk);
    EXPECT_EQ(zetsFFTGetSize_R_64f(29, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w), zetStsFFTOrderErr);
    EXPECT_EQ(zetsFFTGetSize_R_32f(5, ZET_SCALE_NONE, zetHintAccurate, nullptr, &i, &w), zetStsNullPtrErr);
    EXPECT_EQ(zetsFFTGetSize_R_32f(31, ZET_SCALE_NONE, zetHintAccurate, nullptr, &i, &w), zetStsFFTOrderErr);
    EXPECT_EQ(zetsFFTGetSize_R_64f(5, 3, zetHintAccurate, &s, &i, &w), zetStsFFTFlagErr);
    alignas(64) static Zet8u buf[4096];
    ZetsFFTSpec_R_32f* p32 = nullptr;
    ZetsFFTSpec_R_64f* p64 = nullptr;
    EXPECT_EQ(zetsFFTInit_R_32f(&p32, 29, ZET_SCALE_NONE, zetHintAccurate, buf, buf), zetStsFFTOrderErr);
    EXPECT_EQ(zetsFFTInit_R_64f(&p64, 28, ZET_SCALE_NONE, zetHintAccurate, buf, buf), zetStsFFTOrderErr);
    EXPECT_EQ(zetsFFTInit_R_32f(nullptr, 3, ZET_SCALE_NONE, zetHintAccurate, buf, buf), zetStsNullPtrErr);
    EXPECT_EQ(zetsFFTInit_R_32f(&p32, 3, ZET_SCALE_NONE, zetHintAccurate, nullptr, buf), zetStsNullPtrErr);
    // A bad flag is found after the object is laid: the pointer stays unset.
    EXPECT_EQ(zetsFFTInit_R_32f(&p32, 3, 0, zetHintAccurate, buf, nullptr), zetStsFFTFlagErr);
    EXPECT_EQ(p32, nullptr);
    EXPECT_EQ(*reinterpret_cast<std::uint32_t*>(buf), 7u);
    // Order 11 is the first that needs the init scratch.
    std::vector<Zet8u> big(1 << 20);
    EXPECT_EQ(zetsFFTInit_R_32f(&p32, 10, ZET_SCALE_NONE, zetHintAccurate, big.data(), nullptr), zetStsOk);
    EXPECT_EQ(zetsFFTInit_R_32f(&p32, 11, ZET_SCALE_NONE, zetHintAccurate, big.data(), nullptr), zetStsNullPtrErr);
}

TEST(RealFFTCompute, ChecksSpecWordDataThenWork) {
    Spec<float> small(7, ZET_SCALE_NONE), mid(8, ZET_SCALE_NONE);
    Spec<double> other(7, ZET_SCALE_NONE);
    std::vector<float> a(260), b(260);
    const auto* wrong = reinterpret_cast<const ZetsFFTSpec_R_32f*>(other.spec);
    for (Fmt f : kFormats) {
        SCOPED_TRACE(fmtName(f));
        EXPECT_EQ(Tr<float>::fwd[f](a.data(), b.data(), nullptr, small.work), zetStsNullPtrErr);
        EXPECT_EQ(Tr<float>::fwd[f](nullptr, b.data(), wrong, small.work), zetStsSpecMismatchErr);
        EXPECT_EQ(Tr<float>::inv[f](a.data(), nullptr, small.spec, small.work), zetStsNullPtrErr);
        EXPECT_EQ(Tr<float>::fwdI[f](nullptr, wrong, small.work), zetStsSpecMismatchErr);
        EXPECT_EQ(Tr<float>::invI[f](nullptr, small.spec, small.work), zetStsNullPtrErr);
        // Up to order 7 the transform needs no work memory; above it does.
        EXPECT_EQ(Tr<float>::fwd[f](a.data(), b.data(), small.spec, nullptr), zetStsOk);
        EXPECT_EQ(Tr<float>::inv[f](a.data(), b.data(), small.spec, nullptr), zetStsOk);
        EXPECT_EQ(Tr<float>::fwd[f](a.data(), b.data(), mid.spec, nullptr), zetStsNullPtrErr);
        EXPECT_EQ(Tr<float>::invI[f](a.data(), mid.spec, nullptr), zetStsNullPtrErr);
    }
    // A complex object is not a real one.
    int s = 0, i = 0, w = 0;
    zetsFFTGetSize_C_32fc(4, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w);
    std::vector<Zet8u> cbuf(s);
    ZetsFFTSpec_C_32fc* c = nullptr;
    ASSERT_EQ(zetsFFTInit_C_32fc(&c, 4, ZET_SCALE_NONE, zetHintAccurate, cbuf.data(), nullptr), zetStsOk);
    EXPECT_EQ(zetsFFTFwd_RToPerm_32f(a.data(), b.data(), reinterpret_cast<const ZetsFFTSpec_R_32f*>(c), nullptr),
              zetStsSpecMismatchErr);
}

}  // namespace
