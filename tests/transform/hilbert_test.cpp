// The analytic signal against its definition through a long-double DFT,
// the short lengths, the sizes built from the two DFT objects, and the
// argument checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using LD = long double;
using CL = std::complex<LD>;

template <class T> struct Tr;
template <> struct Tr<float> {
    using Spec = ZetsHilbertSpec_32f32fc;
    using C = Zet32fc;
    static constexpr double eps = 1.2e-7;
    static constexpr auto getSize = &zetsHilbertGetSize_32f32fc;
    static constexpr auto init = &zetsHilbertInit_32f32fc;
    static constexpr auto run = &zetsHilbert_32f32fc;
    static constexpr auto cSize = &zetsDFTGetSize_C_32fc;
    static constexpr auto rSize = &zetsDFTGetSize_R_32f;
    static constexpr const char* word = "FAMC";
};
template <> struct Tr<double> {
    using Spec = ZetsHilbertSpec_64f64fc;
    using C = Zet64fc;
    static constexpr double eps = 2.3e-16;
    static constexpr auto getSize = &zetsHilbertGetSize_64f64fc;
    static constexpr auto init = &zetsHilbertInit_64f64fc;
    static constexpr auto run = &zetsHilbert_64f64fc;
    static constexpr auto cSize = &zetsDFTGetSize_C_64fc;
    static constexpr auto rSize = &zetsDFTGetSize_R_64f;
    static constexpr const char* word = "EAMC";
};

// z = IDFT(H X) with H = 1 at DC (and at N/2 for even N), 2 on the positive
// frequencies, 0 on the negative ones.
std::vector<CL> analytic(const std::vector<LD>& x) {
    const std::size_t n = x.size();
    const LD tau = 2 * 3.141592653589793238462643383279502884L;
    std::vector<CL> X(n), z(n);
    for (std::size_t k = 0; k < n; ++k)
        for (std::size_t j = 0; j < n; ++j) X[k] += x[j] * std::polar(1.0L, -tau * static_cast<LD>((j * k) % n) / n);
    for (std::size_t k = 1; k < n; ++k) X[k] *= (2 * k < n) ? 2.0L : (2 * k == n ? 1.0L : 0.0L);
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t k = 0; k < n; ++k) z[j] += X[k] * std::polar(1.0L, tau * static_cast<LD>((j * k) % n) / n);
        z[j] /= static_cast<LD>(n);
    }
    return z;
}

template <class T> struct Built {
    std::unique_ptr<GuardedRegion> specMem, bufMem, workMem;
    typename Tr<T>::Spec* spec = nullptr;
    Zet8u* work = nullptr;
    explicit Built(int n) {
        int s = 0, w = 0;
        EXPECT_EQ(Tr<T>::getSize(n, zetHintAccurate, &s, &w), zetStsOk);
        // The work size covers the init scratch of both DFT objects too.
        int cs, ci, cw, rs, ri, rw;
        Tr<T>::cSize(n, ZET_SCALE_INV, zetHintAccurate, &cs, &ci, &cw);
        Tr<T>::rSize(n, ZET_SCALE_INV, zetHintAccurate, &rs, &ri, &rw);
        EXPECT_EQ(s, cs + rs + 48);
        EXPECT_EQ(w, std::max({ci, cw, ri, rw}) + 16);
        specMem = std::make_unique<GuardedRegion>(s);
        bufMem = std::make_unique<GuardedRegion>(w);
        workMem = std::make_unique<GuardedRegion>(w);
        spec = reinterpret_cast<typename Tr<T>::Spec*>(specMem->tail<Zet8u>(s));
        work = workMem->tail<Zet8u>(w);
        EXPECT_EQ(Tr<T>::init(n, zetHintFast, spec, bufMem->tail<Zet8u>(w)), zetStsOk);
    }
};

template <class T> void checkLength(int n) {
    SCOPED_TRACE(testing::Message() << (sizeof(T) == 4 ? "32f" : "64f") << " N = " << n);
    Built<T> b(n);
    std::mt19937_64 rng(n + 17);
    std::uniform_real_distribution<double> u(-1, 1);
    GuardedRegion in(n * sizeof(T)), out(n * sizeof(typename Tr<T>::C));
    T* x = in.tail<T>(n);
    auto* z = out.tail<typename Tr<T>::C>(n);
    std::vector<LD> xl(n);
    for (int i = 0; i < n; ++i) xl[i] = x[i] = static_cast<T>(u(rng));
    ASSERT_EQ(Tr<T>::run(x, z, b.spec, b.work), zetStsOk);
    const std::vector<CL> ref = analytic(xl);
    LD e = 0, r = 0;
    for (int i = 0; i < n; ++i) {
        e += std::norm(CL(z[i].re, z[i].im) - ref[i]);
        r += std::norm(ref[i]);
    }
    EXPECT_LE(static_cast<double>(std::sqrt(e / r)), 8 * Tr<T>::eps * std::max(1.0, std::log2(double(n))));
    if (n <= 2)
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(z[i].re, x[i]);
            EXPECT_EQ(zettest::bitsOf(z[i].im), 0u);
        }
}

TEST(Hilbert, MatchesTheDefinitionAtEveryShortLengthAndSomeLongOnes) {
    std::vector<int> lengths;
    for (int n = 1; n <= 40; ++n) lengths.push_back(n);
    for (int n : {64, 100, 101, 257, 1000}) lengths.push_back(n);
    for (int n : lengths) {
        checkLength<float>(n);
        checkLength<double>(n);
    }
}

TEST(Hilbert, ObjectWordAndArgumentChecks) {
    Built<float> b(8);
    const auto* raw = reinterpret_cast<const unsigned char*>(b.spec);
    const unsigned char* at = raw + ((16 - reinterpret_cast<std::uintptr_t>(raw) % 16) % 16);
    EXPECT_EQ(std::memcmp(at, "FAMC", 4), 0);
    int s = 0, w = 0;
    EXPECT_EQ(zetsHilbertGetSize_32f32fc(8, zetHintAccurate, nullptr, &w), zetStsNullPtrErr);
    EXPECT_EQ(zetsHilbertGetSize_64f64fc(0, zetHintAccurate, &s, &w), zetStsSizeErr);
    alignas(64) static Zet8u buf[1 << 16];
    EXPECT_EQ(zetsHilbertInit_32f32fc(8, zetHintAccurate, reinterpret_cast<ZetsHilbertSpec_32f32fc*>(buf), nullptr),
              zetStsNullPtrErr);
    EXPECT_EQ(zetsHilbertInit_32f32fc(0, zetHintAccurate, reinterpret_cast<ZetsHilbertSpec_32f32fc*>(buf), buf),
              zetStsSizeErr);
    float x[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    Zet32fc z[8];
    EXPECT_EQ(zetsHilbert_32f32fc(x, z, b.spec, nullptr), zetStsNullPtrErr);
    // Short lengths run no transform but still insist on the work pointer.
    Built<float> two(2);
    EXPECT_EQ(zetsHilbert_32f32fc(x, z, two.spec, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsHilbert_32f32fc(x, z, two.spec, two.work), zetStsOk);
    Built<double> d(8);
    EXPECT_EQ(zetsHilbert_32f32fc(x, z, reinterpret_cast<const ZetsHilbertSpec_32f32fc*>(d.spec), d.work),
              zetStsSpecMismatchErr);
}

}  // namespace
