// Arbitrary-length DFT: accuracy of every type against an exact reference,
// the lengths at which the way changes, round trips and scale factors, the
// chirp inverse as the reversed forward, in place against out of place,
// the byte counts of GetSize against their formulas, the status order of
// every export kind, and all buffers against guard pages.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using LD = long double;
using Cx = std::complex<double>;
using Vec = std::vector<Cx>;

enum class Form { Inter, Split, Real };
enum Fmt { CCS, Pack, Perm };
constexpr int kFlags[] = {ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM, ZET_SCALE_NONE};

// ---- the six types behind one interface ---------------------------------------
// Complex data travel as Vec; real forward results come back as the raw
// layout, real inverse inputs go in as the raw layout.
#define DFT_TYPE(TAG, SUF, REAL, FORM)                                                                  \
    struct TAG {                                                                                        \
        using R = REAL;                                                                                 \
        using Spec = ZetsDFTSpec_##SUF;                                                                 \
        static constexpr const char* name = #SUF;                                                       \
        static constexpr Form form = FORM;                                                              \
        static constexpr bool dbl = sizeof(REAL) == 8;                                                  \
        static ZetStatus getSize(int n, int f, int* s, int* i, int* w) {                                \
            return zetsDFTGetSize_##SUF(n, f, zetHintAccurate, s, i, w);                                \
        }                                                                                               \
        static ZetStatus init(int n, int f, void* s, Zet8u* i) {                                        \
            return zetsDFTInit_##SUF(n, f, zetHintFast, static_cast<Spec*>(s), i);                      \
        }                                                                                               \
        static ZetStatus run(bool inv, int fmt, const R* sr, const R* si, R* dr, R* di, const void* sp, \
                             Zet8u* w);                                                                 \
    };

DFT_TYPE(C32fc, C_32fc, Zet32f, Form::Inter)
DFT_TYPE(C32f, C_32f, Zet32f, Form::Split)
DFT_TYPE(R32f, R_32f, Zet32f, Form::Real)
DFT_TYPE(C64fc, C_64fc, Zet64f, Form::Inter)
DFT_TYPE(C64f, C_64f, Zet64f, Form::Split)
DFT_TYPE(R64f, R_64f, Zet64f, Form::Real)

#define DFT_RUN_INTER(TAG, SUF, ELEM)                                                                         \
    ZetStatus TAG::run(bool inv, int, const R* sr, const R*, R* dr, R*, const void* sp, Zet8u* w) {           \
        const auto* s = reinterpret_cast<const ELEM*>(sr);                                                    \
        auto* d = reinterpret_cast<ELEM*>(dr);                                                                \
        const auto* p = static_cast<const Spec*>(sp);                                                         \
        return inv ? zetsDFTInv_CToC_##SUF(s, d, p, w) : zetsDFTFwd_CToC_##SUF(s, d, p, w);                   \
    }
#define DFT_RUN_SPLIT(TAG, SUF)                                                                               \
    ZetStatus TAG::run(bool inv, int, const R* sr, const R* si, R* dr, R* di, const void* sp, Zet8u* w) {     \
        const auto* p = static_cast<const Spec*>(sp);                                                         \
        return inv ? zetsDFTInv_CToC_##SUF(sr, si, dr, di, p, w) : zetsDFTFwd_CToC_##SUF(sr, si, dr, di, p, w); \
    }
#define DFT_RUN_REAL(TAG, SUF)                                                                                \
    ZetStatus TAG::run(bool inv, int fmt, const R* s, const R*, R* d, R*, const void* sp, Zet8u* w) {         \
        const auto* p = static_cast<const Spec*>(sp);                                                         \
        if (!inv)                                                                                             \
            return fmt == CCS ? zetsDFTFwd_RToCCS_##SUF(s, d, p, w)                                           \
                              : (fmt == Pack ? zetsDFTFwd_RToPack_##SUF(s, d, p, w) : zetsDFTFwd_RToPerm_##SUF(s, d, p, w)); \
        return fmt == CCS ? zetsDFTInv_CCSToR_##SUF(s, d, p, w)                                               \
                          : (fmt == Pack ? zetsDFTInv_PackToR_##SUF(s, d, p, w) : zetsDFTInv_PermToR_##SUF(s, d, p, w)); \
    }
DFT_RUN_INTER(C32fc, 32fc, Zet32fc)
DFT_RUN_INTER(C64fc, 64fc, Zet64fc)
DFT_RUN_SPLIT(C32f, 32f)
DFT_RUN_SPLIT(C64f, 64f)
DFT_RUN_REAL(R32f, 32f)
DFT_RUN_REAL(R64f, 64f)

template <class F> void forEachType(F&& f) { f(C32fc{}); f(C32f{}); f(R32f{}); f(C64fc{}); f(C64f{}); f(R64f{}); }
template <class F> void forEachComplex(F&& f) { f(C32fc{}); f(C32f{}); f(C64fc{}); f(C64f{}); }

// ---- an initialised object, with its buffers off 64-byte alignment ------------
template <class Ty> struct Object {
    std::vector<Zet8u> spec, work;
    ZetStatus status = zetStsOk;
    Object(int n, int flag, std::size_t specOffset = 7) {
        int s = 0, i = 0, w = 0;
        status = Ty::getSize(n, flag, &s, &i, &w);
        if (status != zetStsOk) return;
        spec.assign(s + specOffset, 0);
        std::vector<Zet8u> initBuf(i + 3);
        work.assign(w + 5, 0);
        status = Ty::init(n, flag, spec.data() + specOffset, initBuf.data() + 3);
        specAt = spec.data() + specOffset;
        workAt = w ? work.data() + 5 : nullptr;
    }
    Zet8u* specAt = nullptr;
    Zet8u* workAt = nullptr;
};

// ---- layouts of a real spectrum, from the table of the layouts ---------------------
std::size_t layoutReals(int fmt, int n) { return fmt == CCS ? (n % 2 ? n + 1 : n + 2) : n; }

// Where R_k lies in a layout (I_k follows it), 0 < k <= n/2.
int slot(int fmt, int n, int k) {
    if (2 * k == n) return fmt == Perm ? 1 : (fmt == CCS ? n : n - 1);
    return (fmt == CCS || (fmt == Perm && n % 2 == 0)) ? 2 * k : 2 * k - 1;
}
// X[0..n/2] from the raw layout; the fixed zeros of CCS must be exact.
Vec decode(int fmt, const std::vector<double>& d, int n) {
    Vec x(n / 2 + 1, Cx(d[0], 0));
    for (int k = 1; 2 * k <= n; ++k) x[k] = {d[slot(fmt, n, k)], 2 * k == n ? 0 : d[slot(fmt, n, k) + 1]};
    EXPECT_TRUE(fmt != CCS || (d[1] == 0 && (n % 2 || d[n + 1] == 0))) << "the zeros of CCS";
    return x;
}
std::vector<double> encode(int fmt, const Vec& x, int n) {
    std::vector<double> d(layoutReals(fmt, n), 0.0);
    d[0] = x[0].real();
    for (int k = 1; 2 * k <= n; ++k) {
        d[slot(fmt, n, k)] = x[k].real();
        if (2 * k != n) d[slot(fmt, n, k) + 1] = x[k].imag();
    }
    return d;
}

// ---- one call through the form's buffers ----------------------------------------
// Complex: x -> X. Real forward: x (real parts) -> X[0..n/2]; real inverse:
// X[0..n/2] -> x. In place runs in the source buffer.
template <class Ty>
ZetStatus transform(Ty, bool inv, int fmt, int n, const Vec& in, Vec& out, const void* spec, Zet8u* work,
                    bool inPlace = false) {
    using R = typename Ty::R;
    std::vector<R> a, b, c, d;
    if constexpr (Ty::form == Form::Real) {
        const std::size_t reals = inv ? layoutReals(fmt, n) : static_cast<std::size_t>(n);
        std::vector<double> raw = inv ? encode(fmt, in, n) : std::vector<double>(n);
        for (int k = 0; !inv && k < n; ++k) raw[k] = in[k].real();
        a.assign(raw.begin(), raw.end());
        a.resize(std::max<std::size_t>(reals, layoutReals(CCS, n)));
        c.assign(std::max<std::size_t>(reals, layoutReals(CCS, n)), R(7));
        R* dst = inPlace ? a.data() : c.data();
        const ZetStatus st = Ty::run(inv, fmt, a.data(), nullptr, dst, nullptr, spec, work);
        std::vector<double> res(dst, dst + (inv ? n : layoutReals(fmt, n)));
        if (inv) { out.assign(n, 0); for (int k = 0; k < n; ++k) out[k] = {res[k], 0}; }
        else out = decode(fmt, res, n);
        return st;
    } else {
        const bool split = Ty::form == Form::Split;
        a.resize(split ? n : 2 * n);
        b.resize(split ? n : 0);
        for (int k = 0; k < n; ++k) {
            (split ? a[k] : a[2 * k]) = static_cast<R>(in[k].real());
            (split ? b[k] : a[2 * k + 1]) = static_cast<R>(in[k].imag());
        }
        c.assign(a.size(), R(7));
        d.assign(b.size(), R(7));
        R* dr = inPlace ? a.data() : c.data();
        R* di = inPlace ? b.data() : d.data();
        const ZetStatus st = Ty::run(inv, fmt, a.data(), b.data(), dr, di, spec, work);
        out.assign(n, 0);
        for (int k = 0; k < n; ++k) out[k] = split ? Cx(dr[k], di[k]) : Cx(dr[2 * k], dr[2 * k + 1]);
        return st;
    }
}

// ---- reference ---------------------------------------------------------------------
// The exact transform in long double over a table of the n roots.
Vec reference(const Vec& x, bool inv, std::size_t only = SIZE_MAX) {
    const std::size_t n = x.size();
    std::vector<LD> c(n), s(n);
    const LD tau = 6.283185307179586476925286766559005768L;
    for (std::size_t k = 0; k < n; ++k) { c[k] = std::cos(tau * k / n); s[k] = (inv ? 1 : -1) * std::sin(tau * k / n); }
    Vec out(std::min(n, only));
    for (std::size_t k = 0; k < out.size(); ++k) {
        LD re = 0, im = 0;
        for (std::size_t j = 0, t = 0; j < n; ++j, t = (t + k) % n) {
            re += x[j].real() * c[t] - x[j].imag() * s[t];
            im += x[j].real() * s[t] + x[j].imag() * c[t];
        }
        out[k] = {static_cast<double>(re), static_cast<double>(im)};
    }
    return out;
}

Vec randomSignal(int n, bool real, unsigned seed) {
    std::mt19937 rng(seed * 7919u + static_cast<unsigned>(n));
    std::uniform_real_distribution<float> d(-1, 1);  // exact in every precision
    Vec x(n);
    for (auto& v : x) v = {d(rng), real ? 0.0f : d(rng)};
    return x;
}

// Relative RMS error over the first got.size() values.
double relError(const Vec& got, const Vec& want) {
    double e = 0, m = 0;
    for (std::size_t k = 0; k < got.size(); ++k) { e += std::norm(got[k] - want[k]); m += std::norm(want[k]); }
    return std::sqrt(e / (m > 0 ? m : 1));
}
template <class Ty> double tolerance(Ty) { return Ty::dbl ? 4e-15 : 2e-6; }

bool sameBits(const Vec& a, const Vec& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Cx)) == 0;
}

// Forward and inverse of one length against the reference; real types in
// every layout.
template <class Ty> void expectAccurate(Ty ty, int n, unsigned seed = 1) {
    SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n));
    Object<Ty> o(n, ZET_SCALE_NONE);
    ASSERT_EQ(o.status, zetStsOk);
    const bool real = Ty::form == Form::Real;
    // The types of one kind share signals: their references are worked once.
    static std::map<std::tuple<int, bool, unsigned, bool>, Vec> cache;
    auto exact = [&](const Vec& v, unsigned sd, bool inv) -> const Vec& {
        Vec& r = cache[{n, real, sd, inv}];
        if (r.empty()) r = reference(v, inv);
        return r;
    };
    const Vec x = randomSignal(n, real, seed);
    const Vec& fwd = exact(x, seed, false);
    Vec got;
    for (int fmt : {CCS, Pack, Perm}) {
        ASSERT_EQ(transform(ty, false, fmt, n, x, got, o.specAt, o.workAt), zetStsOk);
        EXPECT_LE(relError(got, fwd), tolerance(ty)) << "forward, layout " << fmt;
        if (!real) break;
    }
    // Inverse: of the spectrum of a real signal for the real types.
    const Vec y = real ? fwd : randomSignal(n, false, seed + 1);
    const Vec& inv = exact(y, seed + 1, true);
    for (int fmt : {CCS, Pack, Perm}) {
        const Vec half(y.begin(), y.begin() + (real ? n / 2 + 1 : n));
        ASSERT_EQ(transform(ty, true, fmt, n, half, got, o.specAt, o.workAt), zetStsOk);
        EXPECT_LE(relError(got, inv), tolerance(ty)) << "inverse, layout " << fmt;
        if (!real) break;
    }
}

// ---- accuracy --------------------------------------------------------------------------

TEST(DFT, EveryLengthTo64AgainstExactReference) {
    forEachType([](auto ty) {
        for (int n = 1; n <= 64; ++n) expectAccurate(ty, n);
    });
}

// Each way and each threshold between them: direct at 17 and 47 (50 = 2*25
// takes mixed), 51 = 3*17 mixed with a generic leaf, 53 the first chirp (M = 128),
// 98 = 2*7*7, 4*149 mixed with a generic first radix but 4*151 chirp, 2*47
// mixed but 2*151 chirp, 2001 the first sweep in blocks, 2025 = 3^4*5^2,
// 4096, and 4099 beyond the convolution size table (a power of two).
TEST(DFT, LengthsAtEachWayAndThreshold) {
    for (int n : {17, 47, 50, 51, 53, 98, 94, 302, 596, 604, 1000, 2001, 2025, 4096, 4099})
        forEachType([n](auto ty) { expectAccurate(ty, n); });
}

// Lengths beyond the reach of the O(n^2) reference: a few outputs, each an
// O(n) sum, and the inverse back to the input.
TEST(DFT, LargeLengthsBySpotChecks) {
    for (int n : {8209, 3 * 5 * 7 * 11 * 13 * 2, 46080, 1 << 15}) {
        forEachComplex([n](auto ty) {
            SCOPED_TRACE(std::string(decltype(ty)::name) + " n=" + std::to_string(n));
            Object<decltype(ty)> o(n, ZET_SCALE_INV);
            ASSERT_EQ(o.status, zetStsOk);
            const Vec x = randomSignal(n, false, 3);
            Vec X, back;
            ASSERT_EQ(transform(ty, false, 0, n, x, X, o.specAt, o.workAt), zetStsOk);
            std::mt19937 rng(n);
            const LD tau = 6.283185307179586476925286766559005768L;
            for (int t = 0; t < 6; ++t) {
                const long long k = rng() % n;
                LD re = 0, im = 0;
                for (long long j = 0; j < n; ++j) {
                    const LD a = -tau * static_cast<LD>(j * k % n) / n, c = std::cos(a), sn = std::sin(a);
                    re += x[j].real() * c - x[j].imag() * sn;
                    im += x[j].real() * sn + x[j].imag() * c;
                }
                const Cx want(static_cast<double>(re), static_cast<double>(im));
                EXPECT_LE(std::abs(X[k] - want), tolerance(ty) * 4 * std::sqrt(double(n))) << "k=" << k;
            }
            ASSERT_EQ(transform(ty, true, 0, n, X, back, o.specAt, o.workAt), zetStsOk);
            EXPECT_LE(relError(back, x), 2 * tolerance(ty));
        });
    }
}

// ---- round trips and scale factors ------------------------------------------------------

// Inverse after forward gives the input under flags 1, 2, 4 and n times it
// under flag 8, for every way.
TEST(DFT, RoundTripsUnderEveryFlag) {
    for (int n : {7, 12, 17, 53, 60, 64, 98, 1000, 1009, 2048})
        forEachType([n](auto ty) {
            using Ty = decltype(ty);
            const bool real = Ty::form == Form::Real;
            for (int flag : kFlags) {
                SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n) + " flag=" + std::to_string(flag));
                Object<Ty> o(n, flag);
                ASSERT_EQ(o.status, zetStsOk);
                const Vec x = randomSignal(n, real, 5);
                Vec X, back;
                ASSERT_EQ(transform(ty, false, Pack, n, x, X, o.specAt, o.workAt), zetStsOk);
                ASSERT_EQ(transform(ty, true, Pack, n, X, back, o.specAt, o.workAt), zetStsOk);
                Vec want(x);
                if (flag == ZET_SCALE_NONE) for (Cx& v : want) v *= n;
                EXPECT_LE(relError(back, want), 3 * tolerance(ty));
            }
        });
}

// The factor is one multiply of each unscaled output by 1/N (single: the
// float quotient) or by 1/sqrt(N) rounded once: bit for bit in every
// complex way. Real types scale before their recombination: within rounding.
TEST(DFT, ScaleFactorsExactly) {
    for (int n : {12, 16, 17, 53, 60, 64, 1000, 4099})
        forEachType([n](auto ty) {
            using Ty = decltype(ty);
            using R = typename Ty::R;
            const bool real = Ty::form == Form::Real;
            const Vec x = randomSignal(n, real, 9);
            Object<Ty> none(n, ZET_SCALE_NONE);
            Vec plain[2];
            for (int dir = 0; dir < 2; ++dir) ASSERT_EQ(transform(ty, dir, CCS, n, x, plain[dir], none.specAt, none.workAt), zetStsOk);
            for (int flag : {ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM}) {
                SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n) + " flag=" + std::to_string(flag));
                const R inv = Ty::dbl ? R(1.0 / n) : R(1.0f / static_cast<float>(n));
                const R s = flag == ZET_SCALE_SYM ? static_cast<R>(1.0 / std::sqrt(static_cast<double>(n))) : inv;
                Object<Ty> o(n, flag);
                for (int dir = 0; dir < 2; ++dir) {
                    const bool applies = flag == ZET_SCALE_SYM || (flag == ZET_SCALE_FWD) == (dir == 0);
                    Vec got, want(plain[dir]);
                    ASSERT_EQ(transform(ty, dir, CCS, n, x, got, o.specAt, o.workAt), zetStsOk);
                    for (Cx& v : want)
                        if (applies) v = {double(R(v.real()) * s), double(R(v.imag()) * s)};
                    if (real && applies) EXPECT_LE(relError(got, want), tolerance(ty)) << "direction " << dir;
                    else EXPECT_TRUE(sameBits(got, want)) << "direction " << dir;
                }
            }
        });
}

// The chirp way computes the inverse by its forward path: the inverse of x is
// the forward transform of x read backwards from index 0, bit for bit.
TEST(DFT, ChirpInverseIsReversedForward) {
    for (int n : {53, 101, 4099, 8209})
        forEachComplex([n](auto ty) {
            for (int flag : {ZET_SCALE_NONE, ZET_SCALE_SYM}) {
                SCOPED_TRACE(std::string(decltype(ty)::name) + " n=" + std::to_string(n));
                Object<decltype(ty)> o(n, flag);
                const Vec x = randomSignal(n, false, 11);
                Vec f, i;
                ASSERT_EQ(transform(ty, false, 0, n, x, f, o.specAt, o.workAt), zetStsOk);
                ASSERT_EQ(transform(ty, true, 0, n, x, i, o.specAt, o.workAt), zetStsOk);
                Vec reversed(n);
                for (int k = 0; k < n; ++k) reversed[k] = f[(n - k) % n];
                EXPECT_TRUE(sameBits(i, reversed));
            }
        });
}

// pSrc == pDst gives the out-of-place result bit for bit in every way.
TEST(DFT, InPlaceEqualsOutOfPlace) {
    for (int n : {1, 2, 5, 12, 16, 17, 32, 47, 53, 60, 64, 98, 100, 127, 1000, 1024, 2001, 4099})
        forEachType([n](auto ty) {
            using Ty = decltype(ty);
            SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n));
            Object<Ty> o(n, ZET_SCALE_SYM);
            const Vec x = randomSignal(n, Ty::form == Form::Real, 13);
            for (int fmt : {CCS, Pack, Perm})
                for (bool inv : {false, true}) {
                    const Vec in = inv && Ty::form == Form::Real ? reference(x, false, n / 2 + 1) : x;
                    Vec a, b;
                    ASSERT_EQ(transform(ty, inv, fmt, n, in, a, o.specAt, o.workAt, false), zetStsOk);
                    ASSERT_EQ(transform(ty, inv, fmt, n, in, b, o.specAt, o.workAt, true), zetStsOk);
                    EXPECT_TRUE(sameBits(a, b)) << (inv ? "inverse" : "forward") << " layout " << fmt;
                }
        });
}

// A power of two goes through the FFT core: the same numbers as the FFT of
// that order (flags that keep the FFT off its unscaled tiled method).
TEST(DFT, PowersOfTwoEqualTheFFT) {
    for (int order = 5; order <= 13; order += 2)
        for (int flag : {ZET_SCALE_FWD, ZET_SCALE_SYM}) {
            const int n = 1 << order;
            SCOPED_TRACE("n=" + std::to_string(n) + " flag=" + std::to_string(flag));
            int s, i, w;
            ASSERT_EQ(zetsFFTGetSize_C_32fc(order, flag, zetHintAccurate, &s, &i, &w), zetStsOk);
            std::vector<Zet8u> fs(s), fi(i + 1), fw(w + 1);
            ZetsFFTSpec_C_32fc* fft = nullptr;
            ASSERT_EQ(zetsFFTInit_C_32fc(&fft, order, flag, zetHintAccurate, fs.data(), fi.data()), zetStsOk);
            ASSERT_EQ(zetsFFTGetSize_R_64f(order, flag, zetHintAccurate, &s, &i, &w), zetStsOk);
            std::vector<Zet8u> rs(s), ri(i + 1), rw(w + 1);
            ZetsFFTSpec_R_64f* rfft = nullptr;
            ASSERT_EQ(zetsFFTInit_R_64f(&rfft, order, flag, zetHintAccurate, rs.data(), ri.data()), zetStsOk);

            const Vec x = randomSignal(n, false, 17);
            std::vector<float> in(2 * n), want(2 * n);
            std::vector<double> rin(n), rwant(n + 2);
            for (int k = 0; k < n; ++k) { in[2 * k] = x[k].real(); in[2 * k + 1] = x[k].imag(); rin[k] = x[k].real(); }
            ASSERT_EQ(zetsFFTFwd_CToC_32fc(reinterpret_cast<const Zet32fc*>(in.data()), reinterpret_cast<Zet32fc*>(want.data()), fft, fw.data()), zetStsOk);
            ASSERT_EQ(zetsFFTFwd_RToCCS_64f(rin.data(), rwant.data(), rfft, rw.data()), zetStsOk);

            Object<C32fc> c(n, flag);
            Object<R64f> r(n, flag);
            Vec got, rgot;
            ASSERT_EQ(transform(C32fc{}, false, 0, n, x, got, c.specAt, c.workAt), zetStsOk);
            ASSERT_EQ(transform(R64f{}, false, CCS, n, x, rgot, r.specAt, r.workAt), zetStsOk);
            Vec wantC(n);
            for (int k = 0; k < n; ++k) wantC[k] = {want[2 * k], want[2 * k + 1]};
            EXPECT_TRUE(sameBits(got, wantC));
            EXPECT_TRUE(sameBits(rgot, decode(CCS, rwant, n)));
        }
}

// ---- byte counts -------------------------------------------------------------------------
// Derived from the size rules alone: the plan's records (1216 bytes, 1280
// for a real binding) and 64 of slack around the core; per way the core's
// own counts.
namespace sizes {

long long up(long long x) { return (x + 63) & ~63LL; }
struct Bytes { long long spec, init, work; };

// The power-of-two cores: the complex one to order 18 (single) or 17
// (double) by its formula; beyond, from the FFT's own GetSize.
Bytes fftCore(int order, bool dbl) {
    const long long n = 1LL << order, q = ((n & ~3LL) + 67) & ~63LL;
    if (order <= 6) return {208, 0, 0};
    if (order <= (dbl ? 17 : 18)) {
        const long long sine = dbl ? ((((2 * n) & ~7LL) + 71) & ~63LL) : q;
        return {(dbl ? (16 * n + 79) & ~63LL : (8 * n + 71) & ~63LL) + q + 256, order > 10 ? sine + 64 : 0,
                up((dbl ? 16 : 8) * n) + 64};
    }
    int s, i, w;
    EXPECT_EQ(dbl ? zetsFFTGetSize_C_64fc(order, ZET_SCALE_INV, zetHintAccurate, &s, &i, &w)
                  : zetsFFTGetSize_C_32fc(order, ZET_SCALE_INV, zetHintAccurate, &s, &i, &w), zetStsOk);
    return {s - 1280, i, w - 64};  // GetSize adds the plan records and 64 of slack to the core
}
Bytes realFftCore(int order, bool dbl) {
    const long long n = 1LL << order;
    const long long t = dbl ? (((4 * n) & ~15LL) + 63) & ~63LL : (((2 * n) & ~7LL) + 63) & ~63LL;
    if (order <= 4) return {208, 0, 0};
    if (order <= 7) return {2 * t + 256, 0, 0};
    if (order > 16) {  // two-level tables: from the real FFT's own GetSize
        int s, i, w;
        EXPECT_EQ(dbl ? zetsFFTGetSize_R_64f(order, ZET_SCALE_INV, zetHintAccurate, &s, &i, &w)
                      : zetsFFTGetSize_R_32f(order, ZET_SCALE_INV, zetHintAccurate, &s, &i, &w), zetStsOk);
        return {s - 1344, i, w - 64};
    }
    const Bytes half = fftCore(order - 1, dbl);
    const long long sine = dbl ? ((((2 * n) & ~7LL) + 71) & ~63LL) : (((n & ~3LL) + 67) & ~63LL);
    return {half.spec + 2 * t, order >= 11 ? sine + 64 : 0, half.work + 64};
}

// The factor search and stage preparation as stated, written out on a list.
struct Records { std::vector<long long> radix, rest, count; long long leaf = 0; };
bool factor(long long n, Records& r) {
    std::vector<long long> pos;
    long long m = n;
    while (m % 4 == 0) { pos.push_back(4); m /= 4; }
    if (m % 2 == 0) { pos.push_back(4); pos[0] = 2; m /= 2; }
    auto at = [&](std::size_t i) { return i < pos.size() ? pos[i] : 0; };  // unset positions hold no radix
    for (long long p = 3; m >= 9 && p * p <= m;) {
        if (m % p) { if (p > 48) return false; p += 2; continue; }
        if (p == 3 && at(0) == 2 && at(1) != 4) pos[0] = 6; else pos.push_back(p);
        m /= p;
    }
    if (pos.empty() || m > (n % 4 == 0 ? 150 : 50)) return false;
    if (m == 3 && at(0) == 2 && at(1) != 4) pos[0] = 6; else pos.push_back(m);
    if (pos.size() > 2 && pos[1] == 4 && pos[0] != 6) { pos[0] *= 4; pos.erase(pos.begin() + 1); }
    for (long long v : {2, 4, 6, 8, 16}) if (pos[0] == v) { std::swap(pos.front(), pos.back()); break; }
    r.leaf = pos.back();
    pos.pop_back();
    long long rest = n, count = 1;
    for (std::size_t i = 0; i < pos.size(); ++i) {
        if (i) count = r.radix[i - 1] * r.rest[i - 1] >= 2001 ? 1 : count * r.radix[i - 1];
        rest /= pos[i];
        r.radix.push_back(pos[i]);
        r.rest.push_back(rest);
        r.count.push_back(count);
    }
    return true;
}

bool kernelAbove(long long p) { return p != 2 && p != 3 && p != 4 && p != 5 && p != 7 && p != 11 && p != 13; }

// 0 sizes and false when no way serves n.
bool complexCore(long long n, bool dbl, bool tryMixed, Bytes& b) {
    const long long e = dbl ? 16 : 8;
    Records r;
    if (n <= 16) { b = {896, 0, 0}; return true; }
    if ((n & (n - 1)) == 0) {
        int o = 0;
        while ((1LL << o) < n) ++o;
        const Bytes f = fftCore(o, dbl);
        b = {up(f.spec) + 896, f.init ? up(f.init) + 64 : 0, f.work ? up(f.work) + 64 : 0};
        return true;
    }
    if (tryMixed && factor(n, r)) {
        long long s = 0, g = 0;
        if (kernelAbove(r.leaf) && r.leaf != 6 && r.leaf != 8 && r.leaf != 16) g = r.leaf;  // a generic leaf
        for (std::size_t i = 0; i < r.radix.size(); ++i) {
            const long long p = r.radix[i];
            s += up(p * r.rest[i] * e);
            if (kernelAbove(p) && p % 2 && p >= 14 && (i == 0 || r.radix[i - 1] != p)) s += up(2 * e * p);
            if (kernelAbove(p)) g = std::max(g, i == 0 && p >= 14 && r.rest[0] % 4 == 0 ? 4 * p : p);
        }
        s += up(4 * r.count.back());
        b = {up(s) + 896, up(e * n) + 64, up((g + n) * e + 128) + 64};
        return true;
    }
    if (n <= 50) { b = {up(2 * e * n) + 896, up(e * n) + 64, up(e * n) + 64}; return true; }
    if (n > 0x3FFFFFF) return false;
    long long m = 1;
    for (long long t : {128, 144, 160, 192, 200, 256, 288, 320, 384, 400, 512, 576, 640, 768, 800, 1024, 1152, 1280,
                        1536, 1600, 2048, 2304, 2560, 3072, 3200, 4096, 4608, 5120, 6144, 6400, 8192})
        if (n <= 4096 && m == 1 && t >= 2 * n - 1) m = t;
    if (m == 1) while (m < 2 * n - 1) m *= 2;
    Bytes in;
    complexCore(m, dbl, true, in);
    const long long w = e * m + up(in.work);
    b = {up(up(e * m) + up(e * n) + up(in.spec)) + 896, up(e * n) + up(2 * n) + up(in.init) + up(w + 64) + 64,
         up(in.work) + up(w + 64) + 64};
    return true;
}

// Real lengths: powers of two through the real FFT core; even lengths as
// the complex core of n/2 with two recombination tables of (n/2 + 1)/2
// pairs; odd lengths as the complex core of n (mixed from 35 on) with a
// complex copy of the signal in the work buffer.
bool realCore(long long n, bool dbl, Bytes& b) {
    if (n <= 16) { b = {896, 0, 0}; return true; }
    if ((n & (n - 1)) == 0) {
        int o = 0;
        while ((1LL << o) < n) ++o;
        const Bytes f = realFftCore(o, dbl);
        b = {up(f.spec) + 896, f.init ? up(f.init) + 64 : 0, f.work ? up(f.work) + 64 : 0};
        return true;
    }
    Bytes in;
    if (n % 2 == 0) {
        if (!complexCore(n / 2, dbl, true, in)) return false;
        b = {896 + up(in.spec) + 2 * up((n / 2 + 1) / 2 * 2 * (dbl ? 8 : 4)), in.init, in.work};
    } else {
        if (!complexCore(n, dbl, n > 33, in)) return false;
        b = {896 + up(in.spec), in.init, up((dbl ? 16 : 8) * n) + in.work};
    }
    return true;
}

}  // namespace sizes

template <class Ty> void expectSizes(Ty, int n) {
    sizes::Bytes core;
    const bool served = Ty::form == Form::Real ? sizes::realCore(n, Ty::dbl, core) : sizes::complexCore(n, Ty::dbl, true, core);
    ASSERT_TRUE(served) << n;
    int s = -1, i = -1, w = -1;
    for (int flag : kFlags) {
        ASSERT_EQ(Ty::getSize(n, flag, &s, &i, &w), zetStsOk) << Ty::name << " n=" << n;
        EXPECT_EQ(s, (Ty::form == Form::Real ? 1344 : 1280) + sizes::up(core.spec)) << Ty::name << " n=" << n;
        EXPECT_EQ(i, sizes::up(core.init)) << Ty::name << " n=" << n;
        EXPECT_EQ(w, sizes::up(core.work)) << Ty::name << " n=" << n;
    }
}

TEST(DFTGetSize, SizesFollowTheSizeRules) {
    // Worked by hand for single complex: a codelet, the direct way, mixed
    // radix 5*3*4 and the chirp of 53 over the FFT of 128.
    const int hand[][4] = {{12, 2176, 0, 0}, {17, 2496, 256, 256}, {60, 2880, 576, 704}, {53, 6080, 2880, 3456}};
    for (const auto& h : hand) {
        int s, i, w;
        ASSERT_EQ(zetsDFTGetSize_C_32fc(h[0], ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w), zetStsOk);
        EXPECT_EQ((std::vector<int>{s, i, w}), (std::vector<int>{h[1], h[2], h[3]})) << "n=" << h[0];
    }
    std::vector<int> lengths;
    for (int n = 1; n <= 2100; ++n) lengths.push_back(n);
    for (int n : {2187, 3000, 4096, 4099, 4111, 6400, 8192, 8209, 12288, 46080, 65536, 1 << 18, 1 << 20, 3 * (1 << 20),
                  1000003, 4 * 149 * 625, 2 * 3 * 5 * 7 * 11 * 13 * 17})
        lengths.push_back(n);
    for (int n : lengths) forEachType([n](auto ty) { expectSizes(ty, n); });
}

// ---- status order ------------------------------------------------------------------------

int primeFrom(int n) {
    for (;; ++n) {
        bool prime = n > 1;
        for (int d = 2; prime && d * d <= n; ++d) prime = n % d != 0;
        if (prime) return n;
    }
}

TEST(DFTGetSize, CheckOrder) {
    int s = 5, i = 5, w = 5;
    struct Case { int n, flag; bool nulls; ZetStatus want; const char* what; };
    const Case single[] = {
        {0, 3, true, zetStsNullPtrErr, "null outputs before the length and the flag"},
        {0, 3, false, zetStsSizeErr, "length 0 before the flag"},
        {-7, 8, false, zetStsSizeErr, "negative length"},
        {0x7FFFFFF + 2, 3, false, zetStsSizeErr, "above the single limit, before the flag"},
        {primeFrom(0x3FFFFFF + 1), 8, false, zetStsSizeErr, "no way beyond the chirp limit"},
        {60, 0, false, zetStsFFTFlagErr, "flag 0"},
        {60, 3, false, zetStsFFTFlagErr, "flag 3"},
        {60, 16, false, zetStsFFTFlagErr, "flag 16"},
        {1 << 29, 8, false, zetStsUnsupportedErr, "power of two beyond the FFT: the core's refusal translated"},
    };
    for (const Case& c : single) {
        const ZetStatus st = zetsDFTGetSize_C_32fc(c.n, c.flag, zetHintAccurate, c.nulls ? nullptr : &s, &i, &w);
        EXPECT_EQ(st, c.want) << c.what;
    }
    EXPECT_EQ(zetsDFTGetSize_R_32f(64, 8, zetHintAccurate, &s, nullptr, &w), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTGetSize_C_64f(64, 8, zetHintAccurate, &s, &i, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTGetSize_C_64fc(0x3FFFFFF + 2, 8, zetHintAccurate, &s, &i, &w), zetStsSizeErr);
    // A double chirp whose sizes pass 2^31: zero sizes with the status.
    EXPECT_EQ(zetsDFTGetSize_C_64fc(primeFrom(0x2000000), 8, zetHintAccurate, &s, &i, &w), zetStsSizeErr);
    EXPECT_EQ((std::vector<int>{s, i, w}), (std::vector<int>{0, 0, 0}));
    // The core's refusal of a power of two leaves only the slack.
    EXPECT_EQ(zetsDFTGetSize_R_64f(1 << 28, 1, zetHintAccurate, &s, &i, &w), zetStsUnsupportedErr);
    EXPECT_EQ((std::vector<int>{s, i, w}), (std::vector<int>{64, 0, 0}));
    // Largest lengths that are served.
    EXPECT_EQ(zetsDFTGetSize_C_32f(1 << 20, 2, zetHintAccurate, &s, &i, &w), zetStsOk);
    EXPECT_EQ(zetsDFTGetSize_C_32fc(3 << 20, 2, zetHintAccurate, &s, &i, &w), zetStsOk);
}

TEST(DFTInit, CheckOrder) {
    std::vector<Zet8u> spec(8192, 0xAB), init(8192);
    Zet8u* buf = spec.data() + 3;
    auto* obj = reinterpret_cast<std::uint32_t*>((reinterpret_cast<std::uintptr_t>(buf) + 63) & ~std::uintptr_t{63});
    EXPECT_EQ(zetsDFTInit_C_32fc(0, 3, zetHintAccurate, nullptr, init.data()), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTInit_C_32fc(0, 3, zetHintAccurate, reinterpret_cast<ZetsDFTSpec_C_32fc*>(buf), init.data()), zetStsSizeErr);
    EXPECT_EQ(zetsDFTInit_C_64f(0x3FFFFFF + 2, 8, zetHintAccurate, reinterpret_cast<ZetsDFTSpec_C_64f*>(buf), init.data()), zetStsSizeErr);
    EXPECT_EQ(*obj, 0xABABABABu) << "a bad length writes nothing";
    EXPECT_EQ(zetsDFTInit_R_64f(60, 3, zetHintAccurate, reinterpret_cast<ZetsDFTSpec_R_64f*>(buf), init.data()), zetStsFFTFlagErr);
    EXPECT_EQ(*obj, 20u) << "the flag is checked after the object's word is written";
    // The init scratch is needed by the tables of the direct, mixed and chirp
    // ways and by a power of two from order 11; not by codelets or small powers.
    struct Case { int n; bool real; ZetStatus want; };
    for (const Case& c : {Case{17, false, zetStsNullPtrErr}, Case{60, false, zetStsNullPtrErr}, Case{53, false, zetStsNullPtrErr},
                          Case{2048, false, zetStsNullPtrErr}, Case{34, true, zetStsNullPtrErr}, Case{12, false, zetStsOk},
                          Case{1024, false, zetStsOk}, Case{15, true, zetStsOk}, Case{64, true, zetStsOk}}) {
        std::vector<Zet8u> big(1 << 16);
        const ZetStatus st = c.real ? zetsDFTInit_R_32f(c.n, 2, zetHintAccurate, reinterpret_cast<ZetsDFTSpec_R_32f*>(big.data()), nullptr)
                                    : zetsDFTInit_C_32fc(c.n, 2, zetHintAccurate, reinterpret_cast<ZetsDFTSpec_C_32fc*>(big.data()), nullptr);
        EXPECT_EQ(st, c.want) << "n=" << c.n << (c.real ? " real" : "");
    }
}

// Object layer first (spec, word, data), then the core (work); the word is
// read at the buffer raised to 64 bytes.
TEST(DFTCompute, CheckOrder) {
    Object<C32fc> mixed(60, 8), direct(17, 8), chirp(53, 8), small(12, 8), pow2(32, 8);
    Object<C64fc> other(60, 8);
    Object<R32f> real(94, 8);
    std::vector<Zet32fc> a(64), b(64);
    std::vector<Zet32f> r(96), q(96);
    auto spec = [](const Object<C32fc>& o) { return reinterpret_cast<const ZetsDFTSpec_C_32fc*>(o.specAt); };
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(nullptr, nullptr, nullptr, mixed.workAt), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(nullptr, b.data(), reinterpret_cast<const ZetsDFTSpec_C_32fc*>(other.specAt), mixed.workAt),
              zetStsSpecMismatchErr);
    EXPECT_EQ(zetsDFTInv_CToC_32fc(nullptr, b.data(), spec(mixed), mixed.workAt), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTInv_CToC_32fc(a.data(), nullptr, spec(mixed), mixed.workAt), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(a.data(), b.data(), spec(mixed), nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(a.data(), b.data(), spec(direct), nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(a.data(), b.data(), spec(chirp), nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(a.data(), b.data(), spec(small), nullptr), zetStsOk);
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(a.data(), b.data(), spec(pow2), nullptr), zetStsOk);
    // Any pointer into the object's first 64-byte block finds it.
    const Zet8u* aligned = reinterpret_cast<const Zet8u*>((reinterpret_cast<std::uintptr_t>(mixed.specAt) + 63) & ~std::uintptr_t{63});
    EXPECT_EQ(zetsDFTFwd_CToC_32fc(a.data(), b.data(), reinterpret_cast<const ZetsDFTSpec_C_32fc*>(aligned - 1), mixed.workAt), zetStsOk);

    const auto* rs = reinterpret_cast<const ZetsDFTSpec_R_32f*>(real.specAt);
    EXPECT_EQ(zetsDFTFwd_RToPerm_32f(r.data(), q.data(), nullptr, real.workAt), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTInv_PackToR_32f(nullptr, q.data(), reinterpret_cast<const ZetsDFTSpec_R_32f*>(mixed.specAt), real.workAt),
              zetStsSpecMismatchErr);
    EXPECT_EQ(zetsDFTInv_CCSToR_32f(r.data(), nullptr, rs, real.workAt), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_RToCCS_32f(r.data(), q.data(), rs, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_RToCCS_32f(r.data(), q.data(), rs, real.workAt), zetStsOk);

    Object<C64f> split(60, 1);
    std::vector<Zet64f> re(60), im(60);
    const auto* ss = reinterpret_cast<const ZetsDFTSpec_C_64f*>(split.specAt);
    for (int bad = 0; bad < 4; ++bad) {
        Zet64f* p[4] = {re.data(), im.data(), re.data(), im.data()};
        p[bad] = nullptr;
        EXPECT_EQ(zetsDFTFwd_CToC_64f(p[0], p[1], p[2], p[3], ss, split.workAt), zetStsNullPtrErr) << "pointer " << bad;
    }
    EXPECT_EQ(zetsDFTInv_CToC_64f(re.data(), im.data(), re.data(), im.data(), ss, split.workAt), zetStsOk);
}

// ---- buffers at guard pages --------------------------------------------------------------
// The object, the init scratch and the work area each begin at the 64-byte
// boundary that is 1 byte past their buffer, with what GetSize promised minus
// that slack ending at a guard page; the data end at guard pages too. Any
// access beyond faults.
template <class Ty> void atGuards(Ty ty, int n) {
    using R = typename Ty::R;
    SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n));
    int s, i, w;
    ASSERT_EQ(Ty::getSize(n, ZET_SCALE_FWD, &s, &i, &w), zetStsOk);
    auto tight = [](GuardedRegion& g, int bytes) { return bytes ? g.end() - (bytes - 64) - 1 : nullptr; };
    GuardedRegion gs(s), gi(i + 64), gw(w + 64);
    ASSERT_EQ(Ty::init(n, ZET_SCALE_FWD, tight(gs, s), tight(gi, i)), zetStsOk);
    const bool real = Ty::form == Form::Real;
    const bool split = Ty::form == Form::Split;
    const Vec x = randomSignal(n, real, 21);
    const Vec X = reference(x, false, real ? n / 2 + 1 : n);
    for (int fmt : {CCS, Pack, Perm}) {
        const std::size_t inCount = real ? n : (split ? n : 2 * n);
        const std::size_t outCount = real ? layoutReals(fmt, n) : inCount;
        GuardedRegion g1(inCount * sizeof(R)), g2(inCount * sizeof(R)), g3(outCount * sizeof(R)), g4(outCount * sizeof(R));
        R* s1 = g1.tail<R>(inCount);
        R* s2 = g2.tail<R>(inCount);
        R* d1 = g3.tail<R>(outCount);
        R* d2 = g4.tail<R>(outCount);
        for (int k = 0; k < n; ++k) {
            if (real) s1[k] = static_cast<R>(x[k].real());
            else if (split) { s1[k] = static_cast<R>(x[k].real()); s2[k] = static_cast<R>(x[k].imag()); }
            else { s1[2 * k] = static_cast<R>(x[k].real()); s1[2 * k + 1] = static_cast<R>(x[k].imag()); }
        }
        ASSERT_EQ(Ty::run(false, fmt, s1, s2, d1, d2, tight(gs, s), tight(gw, w)), zetStsOk);
        Vec got(real ? n / 2 + 1 : n);
        if (real) got = decode(fmt, std::vector<double>(d1, d1 + outCount), n);
        else for (int k = 0; k < n; ++k) got[k] = split ? Cx(d1[k], d2[k]) : Cx(d1[2 * k], d1[2 * k + 1]);
        for (Cx& v : got) v *= n;
        EXPECT_LE(relError(got, X), 2 * tolerance(ty)) << "layout " << fmt;
        // And back: the inverse reads the same buffers at their guards.
        ASSERT_EQ(Ty::run(true, fmt, d1, d2, s1, s2, tight(gs, s), tight(gw, w)), zetStsOk);
        if (!real) break;
    }
}

// Init alone over every length to 3000: the tables of each way stay inside
// the promised object and scratch.
TEST(DFT, ObjectsFitTheirSizes) {
    auto fit = [](auto ty, int n) {
        using Ty = decltype(ty);
        int s, i, w;
        ASSERT_EQ(Ty::getSize(n, ZET_SCALE_SYM, &s, &i, &w), zetStsOk);
        GuardedRegion gs(s), gi(i + 64);
        Zet8u* spec = gs.end() - (s - 64) - 1;
        ASSERT_EQ(Ty::init(n, ZET_SCALE_SYM, spec, i ? gi.end() - (i - 64) - 1 : nullptr), zetStsOk) << Ty::name << " n=" << n;
    };
    for (int n = 1; n <= 3000; ++n) {
        fit(C32fc{}, n);
        fit(R64f{}, n);
        fit(C64f{}, n);
        fit(R32f{}, n);
    }
}

TEST(DFT, BuffersAtGuardPages) {
    std::vector<int> lengths;
    for (int n = 1; n <= 70; ++n) lengths.push_back(n);
    for (int n : {94, 98, 100, 128, 302, 596, 604, 1000, 1009, 2001, 2048, 3000, 4099}) lengths.push_back(n);
    for (int n : lengths) forEachType([n](auto ty) { atGuards(ty, n); });
}

}  // namespace
