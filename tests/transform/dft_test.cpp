// Arbitrary-length DFT: accuracy of every type against an exact reference,
// the lengths at which the way changes, round trips and scale factors, the
// chirp inverse as the reversed forward, in place against out of place,
// the byte counts of GetSize, the status order of every export kind, and all
// buffers against guard pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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
// The body of run() per form: s, d the data, p the object, w the work.
#define RUN_INTER(T, E) return inv ? zetsDFTInv_CToC_##T((const E*)sr, (E*)dr, p, w) : zetsDFTFwd_CToC_##T((const E*)sr, (E*)dr, p, w);
#define RUN_SPLIT(T) return inv ? zetsDFTInv_CToC_##T(sr, si, dr, di, p, w) : zetsDFTFwd_CToC_##T(sr, si, dr, di, p, w);
#define RUN_REAL(T)                                                                                                      \
    if (!inv) return fmt == CCS ? zetsDFTFwd_RToCCS_##T(sr, dr, p, w) : fmt == Pack ? zetsDFTFwd_RToPack_##T(sr, dr, p, w) \
                                                                      : zetsDFTFwd_RToPerm_##T(sr, dr, p, w);          \
    return fmt == CCS ? zetsDFTInv_CCSToR_##T(sr, dr, p, w) : fmt == Pack ? zetsDFTInv_PackToR_##T(sr, dr, p, w)         \
                                                            : zetsDFTInv_PermToR_##T(sr, dr, p, w);
#define DFT_TYPE(TAG, SUF, REAL, FORM, RUN)                                                                              \
    struct TAG {                                                                                                         \
        using R = REAL;                                                                                                  \
        using Spec = ZetsDFTSpec_##SUF;                                                                                  \
        static constexpr const char* name = #SUF;                                                                        \
        static constexpr Form form = FORM;                                                                               \
        static constexpr bool dbl = sizeof(REAL) == 8;                                                                   \
        static ZetStatus getSize(int n, int f, int* s, int* i, int* w) { return zetsDFTGetSize_##SUF(n, f, zetHintAccurate, s, i, w); } \
        static ZetStatus init(int n, int f, void* s, Zet8u* i) { return zetsDFTInit_##SUF(n, f, zetHintFast, static_cast<Spec*>(s), i); } \
        static ZetStatus run(bool inv, [[maybe_unused]] int fmt, const R* sr, [[maybe_unused]] const R* si, R* dr,      \
                             [[maybe_unused]] R* di, const void* sp, Zet8u* w) {                                         \
            const auto* p = static_cast<const Spec*>(sp);                                                                \
            RUN                                                                                                          \
        }                                                                                                                \
    };
DFT_TYPE(C32fc, C_32fc, Zet32f, Form::Inter, RUN_INTER(32fc, Zet32fc))
DFT_TYPE(C32f, C_32f, Zet32f, Form::Split, RUN_SPLIT(32f))
DFT_TYPE(R32f, R_32f, Zet32f, Form::Real, RUN_REAL(32f))
DFT_TYPE(C64fc, C_64fc, Zet64f, Form::Inter, RUN_INTER(64fc, Zet64fc))
DFT_TYPE(C64f, C_64f, Zet64f, Form::Split, RUN_SPLIT(64f))
DFT_TYPE(R64f, R_64f, Zet64f, Form::Real, RUN_REAL(64f))

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
// Every length to 64, then each way and each threshold between them: direct
// at 17 and 47 (50 = 2*25 takes mixed), 51 = 3*17 mixed with a generic leaf,
// 53 the first chirp (M = 128), 98 = 2*7*7, 4*149 mixed with a generic first
// radix but 4*151 chirp, 2*47 mixed but 2*151 chirp, 2001 the first sweep in
// blocks, 2025 = 3^4*5^2, 4096, and 4099 beyond the convolution size table.
TEST(DFT, EveryLengthTo64AndEachWayAgainstExactReference) {
    std::vector<int> lengths;
    for (int n = 1; n <= 64; ++n) lengths.push_back(n);
    for (int n : {98, 94, 302, 596, 604, 1000, 2001, 2025, 4096, 4099}) lengths.push_back(n);
    for (int n : lengths) forEachType([n](auto ty) { expectAccurate(ty, n); });
}

// Lengths beyond the reach of the O(n^2) reference: a few outputs, each an
// O(n) sum, and the inverse back to the input.
TEST(DFT, LargeLengthsBySpotChecks) {
    for (int n : {8209, 3 * 5 * 7 * 11 * 13 * 2, 46080, 1 << 15})
        forEachComplex([n](auto ty) {
            SCOPED_TRACE(std::string(decltype(ty)::name) + " n=" + std::to_string(n));
            Object<decltype(ty)> o(n, ZET_SCALE_INV);
            ASSERT_EQ(o.status, zetStsOk);
            const Vec x = randomSignal(n, false, 3);
            Vec X, back;
            ASSERT_EQ(transform(ty, false, 0, n, x, X, o.specAt, o.workAt), zetStsOk);
            std::mt19937 rng(n);
            for (int t = 0; t < 6; ++t) {
                const long long k = rng() % n;
                std::complex<LD> want = 0;
                for (long long j = 0; j < n; ++j)
                    want += std::complex<LD>(x[j]) * std::polar(1.0L, -6.283185307179586476925286766559005768L * LD(j * k % n) / n);
                EXPECT_LE(std::abs(X[k] - Cx(want)), tolerance(ty) * 4 * std::sqrt(double(n))) << "k=" << k;
            }
            ASSERT_EQ(transform(ty, true, 0, n, X, back, o.specAt, o.workAt), zetStsOk);
            EXPECT_LE(relError(back, x), 2 * tolerance(ty));
        });
}

// ---- round trips and scale factors ------------------------------------------------------
// The factor is one multiply of each unscaled output by 1/N (single: the
// float quotient) or by 1/sqrt(N) rounded once: bit for bit in every complex
// way; real types scale before their recombination: within rounding. Inverse
// after forward gives the input under flags 1, 2, 4 and n times it under 8.
TEST(DFT, ScaleFactorsAndRoundTripsUnderEveryFlag) {
    for (int n : {7, 12, 16, 17, 53, 60, 64, 98, 1000, 1009, 2048, 4099})
        forEachType([n](auto ty) {
            using Ty = decltype(ty);
            using R = typename Ty::R;
            const Vec x = randomSignal(n, Ty::form == Form::Real, 9);
            Object<Ty> none(n, ZET_SCALE_NONE);
            Vec plain[2];
            for (int dir = 0; dir < 2; ++dir) ASSERT_EQ(transform(ty, dir, CCS, n, x, plain[dir], none.specAt, none.workAt), zetStsOk);
            for (int flag : kFlags) {
                SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n) + " flag=" + std::to_string(flag));
                const R inv = Ty::dbl ? R(1.0 / n) : R(1.0f / static_cast<float>(n));
                const R s = flag == ZET_SCALE_SYM ? static_cast<R>(1.0 / std::sqrt(static_cast<double>(n))) : inv;
                Object<Ty> o(n, flag);
                ASSERT_EQ(o.status, zetStsOk);
                for (int dir = 0; dir < 2; ++dir) {
                    const bool applies = flag == ZET_SCALE_SYM || (flag == ZET_SCALE_FWD && dir == 0) || (flag == ZET_SCALE_INV && dir == 1);
                    Vec got, want(plain[dir]);
                    ASSERT_EQ(transform(ty, dir, CCS, n, x, got, o.specAt, o.workAt), zetStsOk);
                    for (Cx& v : want)
                        if (applies) v = {double(R(v.real()) * s), double(R(v.imag()) * s)};
                    if (Ty::form == Form::Real && applies) EXPECT_LE(relError(got, want), tolerance(ty)) << "direction " << dir;
                    else EXPECT_TRUE(sameBits(got, want)) << "direction " << dir;
                }
                Vec X, back, want(x);
                ASSERT_EQ(transform(ty, false, Pack, n, x, X, o.specAt, o.workAt), zetStsOk);
                ASSERT_EQ(transform(ty, true, Pack, n, X, back, o.specAt, o.workAt), zetStsOk);
                if (flag == ZET_SCALE_NONE)
                    for (Cx& v : want) v *= n;
                EXPECT_LE(relError(back, want), 3 * tolerance(ty)) << "round trip";
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
bool isPrime(int n) {
    for (int d = 2; d * d <= n; ++d)
        if (n % d == 0) return false;
    return n > 1;
}
long long up(long long x) { return (x + 63) & ~63LL; }
template <class Ty> std::array<int, 3> sizesOf(Ty, int n, int flag) {
    std::array<int, 3> v{-1, -1, -1};
    EXPECT_EQ(Ty::getSize(n, flag, &v[0], &v[1], &v[2]), zetStsOk) << Ty::name << " n=" << n;
    return v;
}

// Every length to 2100 and beyond: the flag changes nothing and a split type
// counts as its interleaved one. The plan's records (1280 bytes, 1344 for a
// real binding) sit on top of the core's counts, which have closed forms for
// the codelets (896, up to 16) and the direct way (primes 17 to 47); the
// other ways by one length each at and around their thresholds.
TEST(DFTGetSize, SizesFollowTheSizeRules) {
    std::vector<int> lengths;
    for (int n = 1; n <= 2100; ++n) lengths.push_back(n);
    for (int n : {2187, 3000, 4096, 4099, 4111, 6400, 8192, 8209, 12288, 46080, 65536, 1 << 18, 1 << 20, 3 * (1 << 20),
                  1000003, 4 * 149 * 625, 2 * 3 * 5 * 7 * 11 * 13 * 17})
        lengths.push_back(n);
    for (int n : lengths)
        forEachType([n](auto ty) {
            using Ty = decltype(ty);
            const auto s = sizesOf(ty, n, ZET_SCALE_NONE);
            for (int flag : kFlags) EXPECT_EQ(sizesOf(ty, n, flag), s) << Ty::name << " n=" << n << " flag " << flag;
            if constexpr (Ty::form == Form::Split) {
                EXPECT_EQ(s, sizesOf(std::conditional_t<Ty::dbl, C64fc, C32fc>{}, n, ZET_SCALE_NONE)) << Ty::name << " n=" << n;
            }
            const long long e = Ty::dbl ? 16 : 8;
            if (n <= 16) {
                EXPECT_EQ(s, (std::array<int, 3>{Ty::form == Form::Real ? 2240 : 2176, 0, 0})) << Ty::name << " n=" << n;
            } else if (Ty::form != Form::Real && n <= 50 && isPrime(n)) {
                const std::array<int, 3> want{int(1280 + up(2 * e * n) + 896), int(up(e * n) + 64), int(up(e * n) + 64)};
                EXPECT_EQ(s, want) << Ty::name << " n=" << n;
            }
        });
    // {spec, init, work} of C_32fc, C_64fc, R_32f, R_64f: a codelet, the direct way, mixed (real: on n/2),
    // the chirp, powers of two (the FFT core), the first sweep in blocks, long mixed and chirp lengths.
    struct Spot { int n; std::array<int, 3> c32, c64, r32, r64; };
    const Spot spots[] = {
        {12, {2176, 0, 0}, {2176, 0, 0}, {2240, 0, 0}, {2240, 0, 0}},
        {17, {2496, 256, 256}, {2752, 384, 384}, {3456, 256, 448}, {3712, 384, 704}},
        {34, {2880, 384, 640}, {3392, 640, 1024}, {3712, 256, 256}, {4096, 384, 384}},
        {51, {2688, 512, 768}, {3072, 896, 1280}, {3648, 512, 1216}, {4032, 896, 2112}},
        {53, {6080, 2880, 3456}, {8576, 5376, 6528}, {7040, 2880, 3904}, {9536, 5376, 7424}},
        {60, {2880, 576, 704}, {3392, 1024, 1152}, {3712, 320, 448}, {4224, 576, 704}},
        {64, {2432, 0, 0}, {2432, 0, 0}, {2752, 0, 0}, {3008, 0, 0}},
        {94, {3776, 832, 1344}, {5312, 1600, 2496}, {4288, 448, 448}, {5440, 832, 832}},
        {98, {3200, 896, 1024}, {4096, 1664, 1792}, {4160, 512, 640}, {4928, 896, 1024}},
        {302, {17152, 18816, 15872}, {31104, 36608, 31232}, {12224, 9600, 8192}, {20224, 18496, 15872}},
        {596, {9472, 4864, 9728}, {16576, 9600, 19264}, {20544, 18816, 15872}, {36864, 36544, 31232}},
        {604, {31104, 37184, 31232}, {58944, 72704, 61952}, {20544, 18816, 15872}, {36928, 36608, 31232}},
        {1000, {12224, 8064, 8192}, {22144, 16064, 16192}, {12416, 4096, 4224}, {21248, 8064, 8192}},
        {2001, {24064, 16128, 16448}, {45760, 32128, 32704}, {25024, 16128, 32512}, {46720, 32128, 64768}},
        {2025, {26752, 16320, 16448}, {50880, 32512, 32640}, {27712, 16320, 32704}, {51840, 32512, 65088}},
        {2048, {20992, 2240, 16512}, {37376, 4288, 32896}, {20032, 2240, 8384}, {36416, 4288, 16576}},
        {4099, {314816, 320064, 393600}, {609728, 631360, 786816}, {315776, 320064, 426432}, {610688, 631360, 852416}},
        {46080, {469184, 368704, 368832}, {936128, 737344, 737472}, {421120, 184384, 184512}, {838912, 368704, 368832}},
        {65536, {592384, 65728, 524416}, {1116672, 131264, 1048704}, {559680, 65728, 262336}, {1083968, 131264, 524480}},
        {372500, {3009856, 2980096, 2984960}, {6017024, 5960064, 5969728}, {10067072, 6843776, 4718976}, {19599168, 13314496, 9437568}},
        {510510, {4382528, 4084160, 4084416}, {8762688, 8168256, 8168640}, {4925504, 2042112, 2042368}, {9847616, 4084160, 4084544}},
        {1 << 20, {5774912, 1048768, 524416}, {10493504, 2097344, 1048704}, {2911488, 1048768, 262336}, {5289728, 2097344, 524480}},
        {1000003, {36321280, 29923520, 18874752}, {70538752, 57846464, 37749120}, {36322240, 29923520, 26874816}, {70539712, 57846464, 53749184}},
    };
    for (const Spot& p : spots) {
        EXPECT_EQ(sizesOf(C32fc{}, p.n, ZET_SCALE_FWD), p.c32) << "C_32fc n=" << p.n;
        EXPECT_EQ(sizesOf(C64fc{}, p.n, ZET_SCALE_INV), p.c64) << "C_64fc n=" << p.n;
        EXPECT_EQ(sizesOf(R32f{}, p.n, ZET_SCALE_SYM), p.r32) << "R_32f n=" << p.n;
        EXPECT_EQ(sizesOf(R64f{}, p.n, ZET_SCALE_NONE), p.r64) << "R_64f n=" << p.n;
    }
}

// ---- status order ------------------------------------------------------------------------

int primeFrom(int n) {
    while (!isPrime(n)) ++n;
    return n;
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
// access beyond faults. Init alone over every length to 3000 (the tables of
// each way stay inside the promised object and scratch); at the lengths
// given, both directions too.
template <class Ty> void atGuards(Ty ty, int n, bool run) {
    using R = typename Ty::R;
    SCOPED_TRACE(std::string(Ty::name) + " n=" + std::to_string(n));
    const int flag = run ? ZET_SCALE_FWD : ZET_SCALE_SYM;
    int s, i, w;
    ASSERT_EQ(Ty::getSize(n, flag, &s, &i, &w), zetStsOk);
    auto tight = [](GuardedRegion& g, int bytes) { return bytes ? g.end() - (bytes - 64) - 1 : nullptr; };
    GuardedRegion gs(s), gi(i + 64), gw(w + 64);
    ASSERT_EQ(Ty::init(n, flag, tight(gs, s), tight(gi, i)), zetStsOk);
    if (!run) return;
    const bool real = Ty::form == Form::Real, split = Ty::form == Form::Split;
    const Vec x = randomSignal(n, real, 21);
    const Vec X = reference(x, false, real ? n / 2 + 1 : n);
    for (int fmt : {CCS, Pack, Perm}) {
        const std::size_t inCount = real ? n : (split ? n : 2 * n), outCount = real ? layoutReals(fmt, n) : inCount;
        GuardedRegion g1(inCount * sizeof(R)), g2(inCount * sizeof(R)), g3(outCount * sizeof(R)), g4(outCount * sizeof(R));
        R *s1 = g1.tail<R>(inCount), *s2 = g2.tail<R>(inCount), *d1 = g3.tail<R>(outCount), *d2 = g4.tail<R>(outCount);
        for (int k = 0; k < n; ++k) {
            if (real) s1[k] = static_cast<R>(x[k].real());
            else if (split) s1[k] = static_cast<R>(x[k].real()), s2[k] = static_cast<R>(x[k].imag());
            else s1[2 * k] = static_cast<R>(x[k].real()), s1[2 * k + 1] = static_cast<R>(x[k].imag());
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

TEST(DFT, BuffersAtGuardPages) {
    const std::vector<int> more{94, 98, 100, 128, 302, 596, 604, 1000, 1009, 2001, 2048, 3000, 4099};
    for (int n = 1; n <= 4099; ++n) {
        const bool run = n <= 70 || std::find(more.begin(), more.end(), n) != more.end();
        if (run) forEachType([n](auto ty) { atGuards(ty, n, true); });
        else if (n <= 3000) forEachType([n](auto ty) { atGuards(ty, n, false); });
    }
}

}  // namespace
