// The arbitrary-length transforms: the way each length takes, its tables and
// byte counts, and the compute entries of the complex and real forms.
#include "transform/dft_core.hpp"

#include <cmath>
#include <cstring>
#include <utility>

#include "transform/dft_kernels.hpp"
#include "transform/dft_ways.hpp"
#include "transform/fft_core.hpp"
#include "transform/plan.hpp"
#include "transform/real_fft.hpp"

namespace zet::dft {

namespace {

using fft::Inter;
using fft::Split;

constexpr std::int64_t a64(std::int64_t x) { return (x + 63) & ~std::int64_t{63}; }
template <class P> P* alignUp(void* p) {
    return reinterpret_cast<P*>((reinterpret_cast<std::uintptr_t>(p) + 63) & ~std::uintptr_t{63});
}
constexpr bool isPow2(std::int64_t n) { return n > 0 && (n & (n - 1)) == 0; }
int orderOf(std::int64_t n) {
    int o = 0;
    while ((std::int64_t{1} << o) < n) ++o;
    return o;
}
// Highest power-of-two order of the FFT cores: single, double.
int fftLimit(bool dbl) { return dbl ? 27 : 28; }

template <class T> constexpr bool kDbl = sizeof(T) == 8;
// Bytes of one complex value.
template <class T> constexpr std::int64_t kElem = 2 * sizeof(T);

// ----------------------------------------------------------- factorisation

// The radices after preparation: records 0..last, then the leaf radix.
struct Factors {
    int last = -1;
    int radix[kMaxStages + 1] = {};
    std::int64_t rest[kMaxStages] = {}, stride[kMaxStages] = {}, count[kMaxStages] = {};
    int leaf() const { return radix[last + 1]; }
};

// Splits n into radices: 4s first, a lone 2 in front (merged with a 3 into
// 6), then odd trial factors below 49; the rest must stay small. Then a
// leading 2 or 4 takes a following 4 (8, 16) and a leading radix with a
// leaf kernel trades places with the last, which runs first.
bool factorLength(std::int64_t n, Factors& f) {
    int r[40] = {};
    int k = 0;
    std::int64_t m = n;
    while (m % 4 == 0) { r[k++] = 4; m /= 4; }
    if (m % 2 == 0) { r[k++] = 4; r[0] = 2; m /= 2; }
    if (m >= 9) {
        for (std::int64_t p = 3; p * p <= m;) {
            if (m % p == 0) {
                if (p == 3 && r[0] == 2 && r[1] != 4) r[0] = 6;
                else r[k++] = static_cast<int>(p);
                m /= p;
            } else {
                if (p > 48) return false;
                p += 2;
            }
        }
    }
    if (k == 0) return false;
    if (m > (n % 4 ? 50 : 150)) return false;
    int last = k - 1;
    r[k] = static_cast<int>(m);
    if (m == 3 && r[0] == 2 && r[1] != 4) { r[0] = 6; --last; }
    if (last < 0) return false;
    if (r[1] == 4 && r[0] != 6) {
        r[0] *= 4;
        for (int i = 1; i <= last; ++i) r[i] = r[i + 1];
        --last;
    }
    if (r[0] == 2 || r[0] == 4 || r[0] == 6 || r[0] == 8 || r[0] == 16) std::swap(r[0], r[last + 1]);
    if (last + 1 >= kMaxStages) return false;
    f.last = last;
    std::int64_t stride = 1, rest = n;
    for (int i = 0; i <= last + 1; ++i) f.radix[i] = r[i];
    for (int i = 0; i <= last; ++i) {
        f.stride[i] = stride;
        rest /= r[i];
        f.rest[i] = rest;
        stride *= r[i];
        f.count[i] = i == 0 ? 1 : (r[i - 1] * f.rest[i - 1] >= kSweep ? 1 : f.count[i - 1] * r[i - 1]);
    }
    return true;
}

// Twiddle and root tables of the mixed way; the same sum sizes the core.
std::int64_t mixedTableBytes(const Factors& f, std::int64_t e) {
    std::int64_t s = 0;
    for (int i = 0; i <= f.last; ++i) {
        const int p = f.radix[i];
        s += a64(p * f.rest[i] * e);
        if (!hasLevelKernel(p) && p % 2 == 1 && p >= 14 && (i == 0 || f.radix[i - 1] != p)) s += a64(2 * e * p);
    }
    return s + a64(4 * f.count[f.last]);
}

// The greatest generic radix in use, four times a wide first level's.
std::int64_t mixedGeneric(const Factors& f) {
    std::int64_t g = hasLeafKernel(f.leaf()) ? 0 : f.leaf();
    for (int i = 0; i <= f.last; ++i) {
        const std::int64_t p = f.radix[i];
        if (hasLevelKernel(static_cast<int>(p))) continue;
        const std::int64_t v = (i == 0 && p >= 14 && f.rest[0] % 4 == 0) ? 4 * p : p;
        if (v > g) g = v;
    }
    return g;
}

// Convolution length of the chirp way.
std::int64_t chirpLength(std::int64_t n) {
    static constexpr std::int32_t kSizes[31] = {128,  144,  160,  192,  200,  256,  288,  320,  384,  400,  512,
                                                576,  640,  768,  800,  1024, 1152, 1280, 1536, 1600, 2048, 2304,
                                                2560, 3072, 3200, 4096, 4608, 5120, 6144, 6400, 8192};
    if (n <= 4096) {
        for (std::int32_t m : kSizes)
            if (m >= 2 * n - 1) return m;
    }
    std::int64_t m = 1;
    while (m < 2 * n - 1) m <<= 1;
    return m;
}

// The way of a complex transform of n points; 0 when none takes it.
Way complexWay(std::int64_t n, bool tryMixed, Factors* f) {
    if (n <= 16) return Way::Codelet;
    if (isPow2(n)) return Way::Pow2;
    if (tryMixed && factorLength(n, *f)) return Way::Mixed;
    if (n <= 50) return Way::Direct;
    if (n <= kChirpLimit) return Way::Chirp;
    return Way{0};
}

ZetStatus complexSizes(bool dbl, std::int64_t n, bool tryMixed, Sizes* out) {
    const std::int64_t e = dbl ? 16 : 8;
    Factors f;
    switch (complexWay(n, tryMixed, &f)) {
        case Way::Codelet: *out = {kCoreBytes, 0, 0}; return zetStsOk;
        case Way::Pow2: {
            const int o = orderOf(n);
            if (o > fftLimit(dbl)) return zetStsFFTOrderErr;
            const fft::CoreSizes s = fft::coreSizes(dbl, o);
            *out = {a64(s.spec) + kCoreBytes, s.init > 0 ? a64(s.init) + 64 : 0, s.work > 0 ? a64(s.work) + 64 : 0};
            return zetStsOk;
        }
        case Way::Mixed:
            *out = {a64(mixedTableBytes(f, e)) + kCoreBytes, a64(e * n) + 64, a64((mixedGeneric(f) + n) * e + 128) + 64};
            return zetStsOk;
        case Way::Direct: *out = {a64(2 * e * n) + kCoreBytes, a64(e * n) + 64, a64(e * n) + 64}; return zetStsOk;
        case Way::Chirp: {
            const std::int64_t m = chirpLength(n);
            Sizes in;
            if (const ZetStatus st = complexSizes(dbl, m, true, &in)) return st;
            const std::int64_t w = e * m + a64(in.work);
            *out = {a64(a64(e * m) + a64(e * n) + a64(in.spec)) + kCoreBytes,
                    a64(e * n) + a64(2 * n) + a64(in.init) + a64(w + 64) + 64, a64(in.work) + a64(w + 64) + 64};
            return zetStsOk;
        }
        default: return zetStsSizeErr;
    }
}

// Real lengths: up to 16 and powers of two on their own; even lengths as
// the complex transform of the sample pairs with a recombination table of
// the length; odd lengths as the complex transform of the samples.
std::int64_t recombineTableBytes(bool dbl, std::int64_t n) {
    return a64(fft::recombineEntries(n) * 2 * (dbl ? 8 : 4));
}

ZetStatus realSizes(bool dbl, std::int64_t n, Sizes* out) {
    if (n <= 16) { *out = {kCoreBytes, 0, 0}; return zetStsOk; }
    if (isPow2(n)) {
        const int o = orderOf(n);
        if (o > fftLimit(dbl)) return zetStsFFTOrderErr;
        const fft::CoreSizes s = fft::realCoreSizes(dbl, o);
        *out = {a64(s.spec) + kCoreBytes, s.init > 0 ? a64(s.init) + 64 : 0, s.work > 0 ? a64(s.work) + 64 : 0};
        return zetStsOk;
    }
    const bool even = n % 2 == 0;
    const std::int64_t len = even ? n / 2 : n;
    Factors f;
    const Way w = complexWay(len, even || n > 33, &f);
    if (w == Way::Chirp && n > kChirpLimit) return zetStsSizeErr;
    Sizes in;
    if (const ZetStatus st = complexSizes(dbl, len, even || n > 33, &in)) return st;
    if (even) *out = {kCoreBytes + a64(in.spec) + 2 * recombineTableBytes(dbl, n), in.init, in.work};
    else *out = {kCoreBytes + a64(in.spec), in.init, a64((dbl ? 16 : 8) * n) + in.work};
    return zetStsOk;
}

// ------------------------------------------------------------- root tables

// exp(-2 pi i k/n) as (cos, -sin) in double. Symmetry by halves, quarters
// and eighths brings every index into the first range that the length
// allows, so that mirrored entries are exact mirrors.
void rootOf(std::int64_t k, std::int64_t n, double& c, double& s) {
    if (2 * k > n) { rootOf(n - k, n, c, s); s = -s; return; }
    if (n % 4 == 0 && 4 * k > n) { rootOf(n / 2 - k, n, c, s); c = -c; return; }
    if (n % 8 == 0 && 8 * k > n) {
        double c1, s1;
        rootOf(n / 4 - k, n, c1, s1);
        c = -s1;
        s = -c1;
        return;
    }
    const double a = static_cast<double>(k) * (2.0 * 3.14159265358979323846 / static_cast<double>(n));
    c = std::cos(a);
    s = -std::sin(a);
}

// T[k] for k < n, interleaved, with one evaluation per first-range index.
template <class T> void buildRoots(T* t, std::int64_t n) {
    for (std::int64_t k = 0; k < n; ++k) {
        T c, s;
        if (2 * k > n) { c = t[2 * (n - k)]; s = -t[2 * (n - k) + 1]; }
        else if (n % 4 == 0 && 4 * k > n) { c = -t[2 * (n / 2 - k)]; s = t[2 * (n / 2 - k) + 1]; }
        else if (n % 8 == 0 && 8 * k > n) { c = -t[2 * (n / 4 - k) + 1]; s = -t[2 * (n / 4 - k)]; }
        else {
            double cd, sd;
            rootOf(k, n, cd, sd);
            c = static_cast<T>(cd);
            s = static_cast<T>(sd);
        }
        t[2 * k] = c;
        t[2 * k + 1] = s;
    }
}

// ------------------------------------------------------------------- core


// The fixed part: identifier, length, and the factors of `flag` for a
// transform of `scaleLen` points.
ZetStatus header(DFTCore* c, std::int32_t id, std::int64_t n, int flag, std::int64_t scaleLen) {
    std::memset(c, 0, sizeof(DFTCore));
    c->id = id;
    c->length = static_cast<std::int32_t>(n);
    if (plan::setCoreScale(c, flag, scaleLen)) return zetStsOk;
    c->id = 0;
    return zetStsFFTFlagErr;
}

template <class T> std::int32_t complexId(bool split) {
    if (kDbl<T>) return split ? kCore64f : kCore64fc;
    return split ? kCore32f : kCore32fc;
}


// Mixed way: records, the level twiddles in the order the kernels load
// them (per chunk of W columns, per input i: W cosines, W sines), and the
// roots of generic radices; the leaf's record follows the last.
template <class T> void layMixed(DFTCore* c, const Factors& f, const T* t, Zet8u* mem) {
    constexpr int W = Lanes<T>::W;
    const std::int64_t n = c->length;
    c->mixed = 1;
    c->lastStage = f.last;
    for (int i = 0; i <= f.last; ++i) {
        FactorStage& s = c->stages[i];
        s.radix = f.radix[i];
        s.rest = static_cast<std::int32_t>(f.rest[i]);
        s.stride = static_cast<std::int32_t>(f.stride[i]);
        s.count = static_cast<std::int32_t>(f.count[i]);
        T* q = reinterpret_cast<T*>(mem);
        s.twiddles = q;
        const std::int64_t p = s.radix, m = s.rest, st = s.stride;
        for (std::int64_t j0 = 0; j0 < m; j0 += W) {
            const std::int64_t w = m - j0 < W ? m - j0 : W;
            for (std::int64_t r = 1; r < p; ++r, q += 2 * w)
                for (std::int64_t l = 0; l < w; ++l) {
                    const std::int64_t k = r * (j0 + l) * st;
                    q[l] = t[2 * k];
                    q[w + l] = t[2 * k + 1];
                }
        }
        mem += a64((p - 1) * m * kElem<T>);
    }
    FactorStage& leaf = c->stages[f.last + 1];
    leaf.radix = f.leaf();
    leaf.rest = 1;
    leaf.stride = static_cast<std::int32_t>(n / f.leaf());
    // Roots exp(-2 pi i t/p), t < p, as p cosines then p sines, one table per radix.
    for (int i = 0; i <= f.last + 1; ++i) {
        FactorStage& s = c->stages[i];
        if (i <= f.last ? hasLevelKernel(s.radix) : hasLeafKernel(s.radix)) continue;
        for (int j = 0; j < i && !s.table; ++j)
            if (c->stages[j].radix == s.radix) s.table = c->stages[j].table;
        if (s.table) continue;
        T* q = reinterpret_cast<T*>(mem);
        const std::int64_t p = s.radix;
        for (std::int64_t u = 0; u < p; ++u) {
            q[u] = t[2 * (u * (n / p))];
            q[p + u] = t[2 * (u * (n / p)) + 1];
        }
        s.table = q;
        mem += a64(p * kElem<T>);
    }
}

template <class T, bool Inv, class F> ZetStatus runComplex(const DFTCore* c, F src, F dst, Zet8u* work);

template <class T>
ZetStatus buildComplex(DFTCore* c, int flag, bool split, bool tryMixed, Zet8u* initBuf) {
    const std::int64_t n = c->length, e = kElem<T>;
    Zet8u* tables = reinterpret_cast<Zet8u*>(c) + kCoreBytes;
    Factors f;
    c->way = complexWay(n, tryMixed, &f);
    Sizes sz;
    if (const ZetStatus st = complexSizes(kDbl<T>, n, tryMixed, &sz)) return st;
    switch (c->way) {
        case Way::Codelet: return zetStsOk;
        case Way::Pow2: {
            auto* fc = reinterpret_cast<fft::FFTCore*>(tables);
            const int o = orderOf(n);
            const ZetStatus st = kDbl<T> ? fft::coreInit64(fc, o, flag, initBuf) : fft::coreInit32(fc, o, flag, initBuf);
            if (st != zetStsOk) return st;
            if (split) fc->id = kDbl<T> ? fft::kCore64f : fft::kCore32f;
            c->fftCore = fc;
            c->isPowerOfTwo = 1;
            c->workBytes = fc->workBytes;
            return zetStsOk;
        }
        case Way::Mixed:
        case Way::Direct: {
            if (!initBuf) return zetStsNullPtrErr;
            T* t = alignUp<T>(initBuf);
            buildRoots(t, n);
            if (c->way == Way::Mixed) layMixed(c, f, t, tables);
            else std::memcpy(tables, t, static_cast<std::size_t>(e * n));
            if (c->way == Way::Direct) c->directTable = tables;
            c->workBytes = static_cast<std::int32_t>(sz.work);
            return zetStsOk;
        }
        case Way::Chirp: {
            if (!initBuf) return zetStsNullPtrErr;
            const std::int64_t m = chirpLength(n);
            Sizes in;
            complexSizes(kDbl<T>, m, true, &in);
            T* spectrum = reinterpret_cast<T*>(tables);
            T* chirp = reinterpret_cast<T*>(tables + a64(e * m));
            auto* inner = reinterpret_cast<DFTCore*>(tables + a64(e * m) + a64(e * n));
            Zet8u* scratch = alignUp<Zet8u>(initBuf);
            header(inner, complexId<T>(false), m, ZET_SCALE_NONE, m);
            if (const ZetStatus st = buildComplex<T>(inner, ZET_SCALE_NONE, false, true, scratch)) return st;
            // c[k] = exp(-pi i k^2/n), k^2 walked modulo 2n.
            for (std::int64_t k = 0, sq = 0; k < n; ++k) {
                double cd, sd;
                rootOf(sq, 2 * n, cd, sd);
                chirp[2 * k] = static_cast<T>(cd);
                chirp[2 * k + 1] = static_cast<T>(sd);
                sq += 2 * k + 1;
                if (sq >= 2 * n) sq -= 2 * n;
            }
            // The kernel: conj(c), mirrored around 0 modulo m, transformed and divided by m.
            std::memset(spectrum, 0, static_cast<std::size_t>(e * m));
            for (std::int64_t k = 0; k < n; ++k) {
                spectrum[2 * k] = chirp[2 * k];
                spectrum[2 * k + 1] = -chirp[2 * k + 1];
                if (k) { spectrum[2 * (m - k)] = spectrum[2 * k]; spectrum[2 * (m - k) + 1] = spectrum[2 * k + 1]; }
            }
            Zet8u* innerWork = in.work > 0 ? alignUp<Zet8u>(scratch + a64(in.init)) : nullptr;
            if (const ZetStatus st = runComplex<T, false>(inner, Inter<T>{spectrum}, Inter<T>{spectrum}, innerWork)) return st;
            const T inv = kDbl<T> ? static_cast<T>(1.0 / static_cast<double>(m)) : static_cast<T>(1.0f / static_cast<float>(m));
            for (std::int64_t k = 0; k < 2 * m; ++k) spectrum[k] *= inv;
            c->inner = inner;
            c->chirp = chirp;
            c->chirpSpectrum = spectrum;
            c->chirpLength = static_cast<std::int32_t>(m);
            c->workBytes = static_cast<std::int32_t>(sz.work);
            return zetStsOk;
        }
        default: return zetStsSizeErr;
    }
}

template <class T>
ZetStatus buildReal(DFTCore* c, int flag, Zet8u* initBuf) {
    const std::int64_t n = c->length;
    Zet8u* tables = reinterpret_cast<Zet8u*>(c) + kCoreBytes;
    if (n <= 16) {
        c->way = Way::Codelet;
        return zetStsOk;
    }
    if (isPow2(n)) {
        auto* fc = reinterpret_cast<fft::FFTCore*>(tables);
        const int o = orderOf(n);
        if (o > fftLimit(kDbl<T>)) return zetStsFFTOrderErr;
        const ZetStatus st = kDbl<T> ? fft::realCoreInit64(fc, o, flag, initBuf) : fft::realCoreInit32(fc, o, flag, initBuf);
        if (st != zetStsOk) return st;
        c->way = Way::Pow2;
        c->fftCore = fc;
        c->isPowerOfTwo = 1;
        c->workBytes = fc->workBytes;
        return zetStsOk;
    }
    Sizes sz;
    if (const ZetStatus st = realSizes(kDbl<T>, n, &sz)) return st;
    const bool even = n % 2 == 0;
    const std::int64_t len = even ? n / 2 : n;
    auto* inner = reinterpret_cast<DFTCore*>(tables);
    // The inner transform carries the factor of the real length.
    header(inner, complexId<T>(false), len, flag, n);
    if (const ZetStatus st = buildComplex<T>(inner, flag, false, even || n > 33, initBuf)) return st;
    c->inner = inner;
    c->mixed = inner->mixed;
    c->way = even ? Way::RealHalf : Way::RealFull;
    c->workBytes = static_cast<std::int32_t>(sz.work);
    if (even) {
        Sizes in;
        complexSizes(kDbl<T>, len, true, &in);
        T* fwd = reinterpret_cast<T*>(tables + a64(in.spec));
        T* inv = reinterpret_cast<T*>(tables + a64(in.spec) + recombineTableBytes(kDbl<T>, n));
        fft::buildRecombineAny(fwd, inv, n);
        c->recombine[0] = fwd;
        c->recombine[1] = inv;
    }
    return zetStsOk;
}

// ------------------------------------------------------------------ direct

// Symmetric pairs: the folded input s_j = x_j + x_{n-j}, d_j = x_j - x_{n-j}
// goes to the work area first (so that the source may be the destination),
// then X_k and X_{n-k} come out together, the table index walking by k.
template <class T, bool Inv, class Src, class Dst>
void direct(const DFTCore* c, Src src, Dst dst, T* work) {
    const std::int64_t n = c->length, h = (n - 1) / 2;
    const T* tab = static_cast<const T*>(c->directTable);
    const bool sc = scaled(c, Inv);
    const T scale = scaleOf<T>(c);
    const CV<T> x0 = src.loadOne(0);
    CV<T> sum = x0;
    for (std::int64_t j = 1; j <= h; ++j) {
        const CV<T> a = src.loadOne(j), b = src.loadOne(n - j);
        T* f = work + 4 * (j - 1);
        f[0] = a.re + b.re; f[1] = a.im + b.im;
        f[2] = a.re - b.re; f[3] = a.im - b.im;
        sum = cadd(sum, CV<T>{f[0], f[1]});
    }
    dst.storeOne(0, sc ? cscale(sum, scale) : sum);
    for (std::int64_t k = 1; k <= h; ++k) {
        // Two accumulators over alternating j.
        T ar[2] = {x0.re, 0}, ai[2] = {x0.im, 0}, br[2] = {0, 0}, bi[2] = {0, 0};
        std::int64_t idx = 0;
        for (std::int64_t j = 1; j <= h; ++j) {
            idx += k;
            if (idx >= n) idx -= n;
            const T cv = tab[2 * idx], sv = tab[2 * idx + 1];
            const T* f = work + 4 * (j - 1);
            const int u = static_cast<int>(j & 1);
            ar[u] = std::fma(f[0], cv, ar[u]);
            ai[u] = std::fma(f[1], cv, ai[u]);
            br[u] = std::fma(f[2], sv, br[u]);
            bi[u] = std::fma(f[3], sv, bi[u]);
        }
        const CV<T> a{ar[0] + ar[1], ai[0] + ai[1]}, b{br[0] + br[1], bi[0] + bi[1]};
        const CV<T> plus{a.re - b.im, a.im + b.re}, minus{a.re + b.im, a.im - b.re};
        const CV<T> xk = Inv ? minus : plus, xnk = Inv ? plus : minus;
        dst.storeOne(k, sc ? cscale(xk, scale) : xk);
        dst.storeOne(n - k, sc ? cscale(xnk, scale) : xnk);
    }
}

// ------------------------------------------------------------------- chirp

// d[k] = a[k] * b[k] for k < n, a from any form, b and d interleaved.
template <class T, class A>
void multiply(A a, const T* b, T* d, std::int64_t n) {
    using V = typename Lanes<T>::V;
    constexpr int W = Lanes<T>::W;
    const Inter<T> bv{const_cast<T*>(b)}, dv{d};
    std::int64_t k = 0;
    for (; k + W <= n; k += W) {
        const CV<V> y = bv.loadNat(k);
        dv.storeNat(k, cmulw<false>(a.loadNat(k), y.re, y.im));
    }
    for (; k < n; ++k) {
        const CV<T> y = bv.loadOne(k);
        dv.storeOne(k, cmulw<false>(a.loadOne(k), y.re, y.im));
    }
}

// Bluestein: X_k = c_k sum_j (x_j c_j) conj(c_{k-j}), the sum a circular
// convolution of length m through the inner transform. The inverse runs the
// same forward path and reverses the output.
template <class T, bool Inv, class Src, class Dst>
ZetStatus chirp(const DFTCore* c, Src src, Dst dst, Zet8u* work) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    const std::int64_t n = c->length, m = c->chirpLength;
    const T* ch = static_cast<const T*>(c->chirp);
    T* buf = reinterpret_cast<T*>(work);
    Zet8u* innerWork = work + a64(kElem<T> * m);
    multiply(src, ch, buf, n);
    std::memset(buf + 2 * n, 0, static_cast<std::size_t>(kElem<T> * (m - n)));
    if (const ZetStatus st = runComplex<T, false>(c->inner, Inter<T>{buf}, Inter<T>{buf}, innerWork)) return st;
    multiply(Inter<T>{buf}, static_cast<const T*>(c->chirpSpectrum), buf, m);
    if (const ZetStatus st = runComplex<T, true>(c->inner, Inter<T>{buf}, Inter<T>{buf}, innerWork)) return st;
    const bool sc = scaled(c, Inv);
    const T scale = scaleOf<T>(c);
    const V sv = L::set1(scale);
    const Inter<T> bv{buf}, cv{const_cast<T*>(ch)};
    auto at = [n](std::int64_t k) { return Inv ? (n - k) % n : k; };
    std::int64_t k = 0;
    for (; k + W <= n; k += W) {
        const CV<V> y = cv.loadNat(k);
        CV<V> x = cmulw<false>(bv.loadNat(k), y.re, y.im);
        if (sc) x = cscale(x, sv);
        if (!Inv) {
            dst.storeNat(k, x);
        } else {
            alignas(32) T re[W], im[W];
            L::store(re, x.re);
            L::store(im, x.im);
            for (int l = 0; l < W; ++l) dst.storeOne(at(k + l), CV<T>{re[l], im[l]});
        }
    }
    for (; k < n; ++k) {
        const CV<T> y = cv.loadOne(k);
        CV<T> x = cmulw<false>(bv.loadOne(k), y.re, y.im);
        dst.storeOne(at(k), sc ? cscale(x, scale) : x);
    }
    return zetStsOk;
}

// ---------------------------------------------------------------- dispatch

template <class T, bool Inv> ZetStatus runPow2(const DFTCore* c, Inter<T> s, Inter<T> d, Zet8u* work) {
    const auto* fc = static_cast<const fft::FFTCore*>(c->fftCore);
    if constexpr (kDbl<T>) {
        const auto* src = reinterpret_cast<const Zet64fc*>(s.p);
        auto* dst = reinterpret_cast<Zet64fc*>(d.p);
        return Inv ? fft::inv64fc(src, dst, fc, work) : fft::fwd64fc(src, dst, fc, work);
    } else {
        const auto* src = reinterpret_cast<const Zet32fc*>(s.p);
        auto* dst = reinterpret_cast<Zet32fc*>(d.p);
        return Inv ? fft::inv32fc(src, dst, fc, work) : fft::fwd32fc(src, dst, fc, work);
    }
}
template <class T, bool Inv> ZetStatus runPow2(const DFTCore* c, Split<T> s, Split<T> d, Zet8u* work) {
    const auto* fc = static_cast<const fft::FFTCore*>(c->fftCore);
    if constexpr (kDbl<T>) return Inv ? fft::inv64f(s.re, s.im, d.re, d.im, fc, work) : fft::fwd64f(s.re, s.im, d.re, d.im, fc, work);
    else return Inv ? fft::inv32f(s.re, s.im, d.re, d.im, fc, work) : fft::fwd32f(s.re, s.im, d.re, d.im, fc, work);
}

// The transform of a checked call or of an inner core; `work` is aligned.
template <class T, bool Inv, class F> ZetStatus runComplex(const DFTCore* c, F src, F dst, Zet8u* work) {
    switch (c->way) {
        case Way::Codelet: runCodelet<T, Inv>(c, src, dst); return zetStsOk;
        case Way::Pow2: return runPow2<T, Inv>(c, src, dst, work);
        case Way::Mixed: runMixed<T, Inv>(c, src, dst, reinterpret_cast<T*>(work)); return zetStsOk;
        case Way::Direct: direct<T, Inv>(c, src, dst, reinterpret_cast<T*>(work)); return zetStsOk;
        case Way::Chirp: return chirp<T, Inv>(c, src, dst, work);
        default: return zetStsUnsupportedErr;
    }
}

// ----------------------------------------------------------------- entries

ZetStatus checks(const DFTCore* c, std::int32_t id, bool dataNull, Zet8u*& work) {
    if (!c) return zetStsNullPtrErr;
    if (c->id != id) return zetStsSpecMismatchErr;
    const bool needsWork = c->mixed || c->length > 50;
    if (c->length > 16 && !c->isPowerOfTwo && needsWork && c->workBytes <= 0) return zetStsMemErr;
    if (dataNull) return zetStsNullPtrErr;
    return plan::coreWork(c->workBytes, work);
}

template <class T, bool Inv>
ZetStatus interleavedEntry(const void* src, void* dst, const void* core, Zet8u* work) {
    const auto* c = static_cast<const DFTCore*>(core);
    if (const ZetStatus st = checks(c, complexId<T>(false), !src || !dst, work)) return st;
    return runComplex<T, Inv>(c, Inter<T>{static_cast<T*>(const_cast<void*>(src))}, Inter<T>{static_cast<T*>(dst)}, work);
}

template <class T, bool Inv>
ZetStatus splitEntry(const T* sr, const T* si, T* dr, T* di, const void* core, Zet8u* work) {
    const auto* c = static_cast<const DFTCore*>(core);
    if (const ZetStatus st = checks(c, complexId<T>(true), !sr || !si || !dr || !di, work)) return st;
    return runComplex<T, Inv>(c, Split<T>{const_cast<T*>(sr), const_cast<T*>(si)}, Split<T>{dr, di}, work);
}

// Real spectra. Half-spectrum value k (0 <= k <= n/2) of layout f.
template <class T> CV<T> halfValue(fft::Layout f, const T* s, std::int64_t n, std::int64_t k) {
    if (k == 0) return {s[0], 0};
    if (2 * k == n) return {f == fft::Layout::Perm ? s[1] : (f == fft::Layout::CCS ? s[n] : s[n - 1]), 0};
    const std::int64_t at = (f == fft::Layout::CCS || (f == fft::Layout::Perm && n % 2 == 0)) ? 2 * k : 2 * k - 1;
    return {s[at], s[at + 1]};
}
// Writes X[0..n/2] of z (interleaved) as Perm, then converts in place.
template <class T> void storeHalf(fft::Layout f, const T* z, T* d, std::int64_t n) {
    const T r0 = z[0];
    const T rh = n % 2 == 0 ? z[n] : 0;
    const std::int64_t off = n % 2 == 0 ? 0 : 1;
    for (std::int64_t k = 1; 2 * k < n; ++k) {
        d[2 * k - off] = z[2 * k];
        d[2 * k + 1 - off] = z[2 * k + 1];
    }
    d[0] = r0;
    if (n % 2 == 0 && n > 1) d[1] = rh;
    fft::permTo(f, d, n);
}

template <class T> std::int32_t realId() { return kDbl<T> ? kCoreR64f : kCoreR32f; }

template <class T, fft::Layout F>
void realForward(const DFTCore* c, const T* src, T* dst, Zet8u* work) {
    const std::int64_t n = c->length;
    switch (c->way) {
        case Way::Codelet: {
            CV<T> z[16];
            for (std::int64_t k = 0; k < n; ++k) z[k] = {src[k], 0};
            runCodelet<T, false>(c, Inter<T>{&z[0].re}, Inter<T>{&z[0].re});
            storeHalf(F, &z[0].re, dst, n);
            return;
        }
        case Way::RealHalf:
            runComplex<T, false>(c->inner, Inter<T>{const_cast<T*>(src)}, Inter<T>{dst}, work);
            fft::recombine<T, false>(dst, n / 2, static_cast<const T*>(c->recombine[0]));
            fft::permTo(F, dst, n);
            return;
        default: {
            T* z = reinterpret_cast<T*>(work);
            for (std::int64_t k = 0; k < n; ++k) { z[2 * k] = src[k]; z[2 * k + 1] = 0; }
            runComplex<T, false>(c->inner, Inter<T>{z}, Inter<T>{z}, work + a64(kElem<T> * n));
            storeHalf(F, z, dst, n);
            return;
        }
    }
}

template <class T, fft::Layout F>
void realInverse(const DFTCore* c, const T* src, T* dst, Zet8u* work) {
    const std::int64_t n = c->length;
    // The full conjugate-symmetric spectrum from the half in the source.
    auto expand = [&](T* z) {
        for (std::int64_t k = 0; 2 * k <= n; ++k) {
            const CV<T> v = halfValue(F, src, n, k);
            z[2 * k] = v.re;
            z[2 * k + 1] = v.im;
            if (k && 2 * k != n) { z[2 * (n - k)] = v.re; z[2 * (n - k) + 1] = -v.im; }
        }
    };
    switch (c->way) {
        case Way::Codelet: {
            CV<T> z[16];
            expand(&z[0].re);
            runCodelet<T, true>(c, Inter<T>{&z[0].re}, Inter<T>{&z[0].re});
            for (std::int64_t k = 0; k < n; ++k) dst[k] = z[k].re;
            return;
        }
        case Way::RealHalf:
            fft::toPerm(F, src, dst, n);
            fft::recombine<T, true>(dst, n / 2, static_cast<const T*>(c->recombine[1]));
            runComplex<T, true>(c->inner, Inter<T>{dst}, Inter<T>{dst}, work);
            return;
        default: {
            T* z = reinterpret_cast<T*>(work);
            expand(z);
            runComplex<T, true>(c->inner, Inter<T>{z}, Inter<T>{z}, work + a64(kElem<T> * n));
            for (std::int64_t k = 0; k < n; ++k) dst[k] = z[2 * k];
            return;
        }
    }
}

// A power of two goes to the real FFT core's entry of the layout; the inner
// complex transforms of the other ways cannot fail.
template <class T, fft::Layout F, bool Inv>
ZetStatus realEntry(const void* srcV, void* dstV, const void* core, Zet8u* work) {
    const T* src = static_cast<const T*>(srcV);
    T* dst = static_cast<T*>(dstV);
    const auto* c = static_cast<const DFTCore*>(core);
    if (const ZetStatus st = checks(c, realId<T>(), !src || !dst, work)) return st;
    if (c->way == Way::Pow2) {
        using Fn = ZetStatus (*)(const void*, void*, const void*, Zet8u*);
        const int at = 2 * (F == fft::Layout::CCS ? 0 : (F == fft::Layout::Pack ? 1 : 2)) + (Inv ? 1 : 0);
        return reinterpret_cast<Fn>(fft::realEntries(kDbl<T>).entry[at])(src, dst, c->fftCore, work);
    }
    if constexpr (Inv) realInverse<T, F>(c, src, dst, work);
    else realForward<T, F>(c, src, dst, work);
    return zetStsOk;
}

template <class T>
const Entries kComplexEntries{{reinterpret_cast<void*>(&interleavedEntry<T, false>), reinterpret_cast<void*>(&interleavedEntry<T, true>)}};
template <class T>
const Entries kSplitEntries{{reinterpret_cast<void*>(&splitEntry<T, false>), reinterpret_cast<void*>(&splitEntry<T, true>)}};
template <class T>
const Entries kRealEntries{{
    reinterpret_cast<void*>(&realEntry<T, fft::Layout::CCS, false>), reinterpret_cast<void*>(&realEntry<T, fft::Layout::CCS, true>),
    reinterpret_cast<void*>(&realEntry<T, fft::Layout::Pack, false>), reinterpret_cast<void*>(&realEntry<T, fft::Layout::Pack, true>),
    reinterpret_cast<void*>(&realEntry<T, fft::Layout::Perm, false>), reinterpret_cast<void*>(&realEntry<T, fft::Layout::Perm, true>),
}};

template <class T> ZetStatus init(DFTCore* c, bool real, bool split, int n, int flag, Zet8u* initBuf) {
    const std::int32_t id = real ? realId<T>() : complexId<T>(split);
    if (const ZetStatus st = header(c, id, n, flag, n)) return st;
    return real ? buildReal<T>(c, flag, initBuf) : buildComplex<T>(c, flag, split, true, initBuf);
}

}  // namespace

ZetStatus coreSizes(bool dbl, bool real, std::int64_t n, Sizes* out) {
    *out = {0, 0, 0};
    if (n < 1) return zetStsSizeErr;
    return real ? realSizes(dbl, n, out) : complexSizes(dbl, n, true, out);
}

ZetStatus coreInit(DFTCore* c, bool dbl, bool real, bool split, int n, int flag, Zet8u* initBuf) {
    return dbl ? init<double>(c, real, split, n, flag, initBuf) : init<float>(c, real, split, n, flag, initBuf);
}

const Entries& complexEntries(bool dbl, bool split) {
    if (dbl) return split ? kSplitEntries<double> : kComplexEntries<double>;
    return split ? kSplitEntries<float> : kComplexEntries<float>;
}
const Entries& realEntries(bool dbl) { return dbl ? kRealEntries<double> : kRealEntries<float>; }

}  // namespace zet::dft
