// The orthonormal DCT-II and DCT-III against their definitions in long
// double, round trips, in place, guard pages and the argument checks.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using LD = long double;

template <class T> struct Tr;
template <> struct Tr<float> {
    using Fwd = ZetsDCTFwdSpec_32f;
    using Inv = ZetsDCTInvSpec_32f;
    static constexpr double eps = 1.2e-7;
    static constexpr auto fwdSize = &zetsDCTFwdGetSize_32f;
    static constexpr auto invSize = &zetsDCTInvGetSize_32f;
    static constexpr auto fwdInit = &zetsDCTFwdInit_32f;
    static constexpr auto invInit = &zetsDCTInvInit_32f;
    static constexpr auto fwd = &zetsDCTFwd_32f;
    static constexpr auto inv = &zetsDCTInv_32f;
    static constexpr auto fwdI = &zetsDCTFwd_32f_I;
    static constexpr auto invI = &zetsDCTInv_32f_I;
};
template <> struct Tr<double> {
    using Fwd = ZetsDCTFwdSpec_64f;
    using Inv = ZetsDCTInvSpec_64f;
    static constexpr double eps = 2.3e-16;
    static constexpr auto fwdSize = &zetsDCTFwdGetSize_64f;
    static constexpr auto invSize = &zetsDCTInvGetSize_64f;
    static constexpr auto fwdInit = &zetsDCTFwdInit_64f;
    static constexpr auto invInit = &zetsDCTInvInit_64f;
    static constexpr auto fwd = &zetsDCTFwd_64f;
    static constexpr auto inv = &zetsDCTInv_64f;
    static constexpr auto fwdI = &zetsDCTFwd_64f_I;
    static constexpr auto invI = &zetsDCTInv_64f_I;
};

// An object built in exactly the bytes GetSize asked for, ending at a guard
// page, from a buffer at an odd offset.
struct Object {
    std::unique_ptr<GuardedRegion> spec, init, work;
    Zet8u* specBuf = nullptr;
    Zet8u* workBuf = nullptr;
    template <class S>
    ZetStatus build(ZetStatus (*size)(int, ZetHint, int*, int*, int*), ZetStatus (*initFn)(int, ZetHint, S*, Zet8u*),
                    int n) {
        int s = 0, i = 0, w = 0;
        if (ZetStatus st = size(n, zetHintAccurate, &s, &i, &w)) return st;
        spec = std::make_unique<GuardedRegion>(s);
        init = std::make_unique<GuardedRegion>(i + 1);
        work = std::make_unique<GuardedRegion>(w);
        specBuf = spec->tail<Zet8u>(s);
        workBuf = work->tail<Zet8u>(w);
        return initFn(n, zetHintAccurate, reinterpret_cast<S*>(specBuf), init->tail<Zet8u>(i > 0 ? i : 1));
    }
};

// y[k] = s_k sum x[n] cos(pi k (2n + 1) / 2N), s_0 = sqrt(1/N), s_k = sqrt(2/N).
std::vector<LD> dct2(const std::vector<LD>& x) {
    const std::size_t n = x.size();
    const LD pi = 3.141592653589793238462643383279502884L;
    std::vector<LD> y(n);
    for (std::size_t k = 0; k < n; ++k) {
        LD acc = 0;
        for (std::size_t j = 0; j < n; ++j) acc += x[j] * std::cos(pi * static_cast<LD>((k * (2 * j + 1)) % (4 * n)) / (2 * n));
        y[k] = acc * std::sqrt((k ? 2.0L : 1.0L) / n);
    }
    return y;
}
// Its transpose, the inverse.
std::vector<LD> dct3(const std::vector<LD>& y) {
    const std::size_t n = y.size();
    const LD pi = 3.141592653589793238462643383279502884L;
    std::vector<LD> x(n, 0);
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t k = 0; k < n; ++k)
            x[j] += y[k] * std::sqrt((k ? 2.0L : 1.0L) / n) * std::cos(pi * static_cast<LD>((k * (2 * j + 1)) % (4 * n)) / (2 * n));
    return x;
}

template <class T> double relRms(const T* got, const std::vector<LD>& ref) {
    LD e = 0, r = 0;
    for (std::size_t i = 0; i < ref.size(); ++i) {
        e += (got[i] - ref[i]) * (got[i] - ref[i]);
        r += ref[i] * ref[i];
    }
    return static_cast<double>(std::sqrt(e / r));
}

template <class T> void checkLength(int n) {
    SCOPED_TRACE(testing::Message() << (sizeof(T) == 4 ? "32f" : "64f") << " N = " << n);
    Object f, iv;
    ASSERT_EQ(f.build(Tr<T>::fwdSize, Tr<T>::fwdInit, n), zetStsOk);
    ASSERT_EQ(iv.build(Tr<T>::invSize, Tr<T>::invInit, n), zetStsOk);
    const auto* fs = reinterpret_cast<const typename Tr<T>::Fwd*>(f.specBuf);
    const auto* is = reinterpret_cast<const typename Tr<T>::Inv*>(iv.specBuf);
    std::mt19937_64 rng(n);
    std::uniform_real_distribution<double> u(-1, 1);
    GuardedRegion a(n * sizeof(T)), b(n * sizeof(T));
    T* x = a.tail<T>(n);
    T* y = b.tail<T>(n);
    std::vector<LD> xl(n);
    for (int i = 0; i < n; ++i) xl[i] = x[i] = static_cast<T>(u(rng));
    const double tol = 8 * Tr<T>::eps * std::max(1.0, std::log2(static_cast<double>(n)));
    ASSERT_EQ(Tr<T>::fwd(x, y, fs, f.workBuf), zetStsOk);
    EXPECT_LE(relRms(y, dct2(xl)), tol);
    const std::vector<T> spectrum(y, y + n);
    std::vector<LD> yl(spectrum.begin(), spectrum.end());
    ASSERT_EQ(Tr<T>::inv(y, x, is, iv.workBuf), zetStsOk);
    EXPECT_LE(relRms(x, dct3(yl)), tol);
    EXPECT_LE(relRms(x, xl), 2 * tol);  // the round trip
    // In place: the same bits.
    std::memcpy(y, spectrum.data(), n * sizeof(T));
    const std::vector<T> back(x, x + n);
    ASSERT_EQ(Tr<T>::invI(y, is, iv.workBuf), zetStsOk);
    EXPECT_EQ(zettest::firstBitMismatch(y, back.data(), n), -1);
    ASSERT_EQ(Tr<T>::fwdI(y, fs, f.workBuf), zetStsOk);
    ASSERT_EQ(Tr<T>::fwd(back.data(), x, fs, f.workBuf), zetStsOk);
    EXPECT_EQ(zettest::firstBitMismatch(y, x, n), -1);
}

TEST(DCT, MatchesTheDefinitionAndInvertsAtEveryLength) {
    std::vector<int> lengths;
    for (int n = 1; n <= 70; ++n) lengths.push_back(n);
    for (int n : {97, 100, 128, 255, 256, 360, 1000, 1024}) lengths.push_back(n);
    for (int n : lengths) {
        checkLength<float>(n);
        checkLength<double>(n);
    }
}

TEST(DCT, OneSampleIsItselfAndAConstantHasOneCoefficient) {
    Object f;
    ASSERT_EQ(f.build(Tr<float>::fwdSize, Tr<float>::fwdInit, 1), zetStsOk);
    float x = -2.75f, y = 0;
    ASSERT_EQ(zetsDCTFwd_32f(&x, &y, reinterpret_cast<const ZetsDCTFwdSpec_32f*>(f.specBuf), f.workBuf), zetStsOk);
    EXPECT_EQ(y, -2.75f);
    Object g;
    ASSERT_EQ(g.build(Tr<double>::fwdSize, Tr<double>::fwdInit, 16), zetStsOk);
    std::vector<double> c(16, 0.5), out(16);
    ASSERT_EQ(zetsDCTFwd_64f(c.data(), out.data(), reinterpret_cast<const ZetsDCTFwdSpec_64f*>(g.specBuf), g.workBuf), zetStsOk);
    EXPECT_NEAR(out[0], 2.0, 1e-15);  // 0.5 * 16 / sqrt(16)
    for (int k = 1; k < 16; ++k) EXPECT_NEAR(out[k], 0.0, 1e-15) << k;
}

TEST(DCT, ChecksPointersLengthAndWord) {
    int s = 0, i = 0, w = 0;
    EXPECT_EQ(zetsDCTFwdGetSize_32f(8, zetHintAccurate, nullptr, &i, &w), zetStsNullPtrErr);
    EXPECT_EQ(zetsDCTInvGetSize_64f(0, zetHintAccurate, &s, &i, &w), zetStsSizeErr);
    EXPECT_EQ(zetsDCTFwdInit_32f(8, zetHintAccurate, nullptr, nullptr), zetStsNullPtrErr);
    alignas(64) static Zet8u buf[8192];
    EXPECT_EQ(zetsDCTInvInit_32f(-1, zetHintAccurate, reinterpret_cast<ZetsDCTInvSpec_32f*>(buf), nullptr), zetStsSizeErr);
    Object f;
    ASSERT_EQ(f.build(Tr<float>::fwdSize, Tr<float>::fwdInit, 8), zetStsOk);
    const auto* fs = reinterpret_cast<const ZetsDCTFwdSpec_32f*>(f.specBuf);
    float x[8] = {}, y[8];
    EXPECT_EQ(zetsDCTFwd_32f(x, y, nullptr, f.workBuf), zetStsNullPtrErr);
    EXPECT_EQ(zetsDCTFwd_32f(nullptr, y, fs, f.workBuf), zetStsNullPtrErr);
    EXPECT_EQ(zetsDCTFwd_32f(x, y, fs, nullptr), zetStsNullPtrErr);
    // A forward object is not an inverse one, nor of the other precision.
    EXPECT_EQ(zetsDCTInv_32f(x, y, reinterpret_cast<const ZetsDCTInvSpec_32f*>(f.specBuf), f.workBuf), zetStsSpecMismatchErr);
    double xd[8] = {}, yd[8];
    EXPECT_EQ(zetsDCTFwd_64f(xd, yd, reinterpret_cast<const ZetsDCTFwdSpec_64f*>(f.specBuf), f.workBuf), zetStsSpecMismatchErr);
}

}  // namespace
