// The transform kit: one table of every transform form (sizes, Init, compute exports, element type, layouts), objects
// and data in buffers of exactly the reported sizes against guard pages, a long-double reference DFT, the checks every
// form runs (exact results at small sizes, properties at large ones) and one walker over the argument checks of all
// forms.
#pragma once

#include <gtest/gtest.h>
#include <immintrin.h>
#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace tkit {

using LD = long double;
using CL = std::complex<LD>;
using CD = std::complex<double>;
using Vec = std::vector<LD>;  // flat values: complex data as re, im pairs
using zettest::GuardedRegion;
using zettest::Placement;

// Inter, Split: complex to complex; Real: real to a layout and back; the DCTs and Hilbert go one way each.
enum Kind { Inter, Split, Real, DctFwd, DctInv, Hilbert };
enum Fmt { CCS, Pack, Perm };
constexpr int kFlags[] = {ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM, ZET_SCALE_NONE};
constexpr LD kTau = 6.283185307179586476925286766559005768L;
constexpr Placement kTail{Placement::Tail, 0};

// ---- any export through untyped arguments -------------------------------------------
template <class F> struct Sig;
template <class... A> struct Sig<ZetStatus (*)(A...)> { static constexpr int arity = sizeof...(A); };
template <auto F> constexpr int kArity = Sig<decltype(F)>::arity;
template <class... A, class... P> ZetStatus call(ZetStatus (*f)(A...), P... p) { return f(((A)p)...); }

// Export `which` of F...: a plain one takes the planes of s and d, an in-place one (s null) those of d.
template <auto... F> ZetStatus runner(int which, const void* const* s, void* const* d, const void* o, Zet8u* w) {
    ZetStatus st = zetStsGeneralErr;
    int i = 0;
    ([&] {
        if (i++ != which) return;
        if constexpr (kArity<F> == 3) st = call(F, d[0], o, w);
        else if constexpr (kArity<F> == 6) st = call(F, s[0], s[1], d[0], d[1], o, w);
        else st = s ? call(F, s[0], d[0], o, w) : call(F, d[0], d[1], o, w);
    }(), ...);
    return st;
}
// FFT Init hands the object back (obj null: a null ppSpec); the others lay it into the buffer, which every call takes
// again.
template <auto F> ZetStatus initPP(int n, int flag, ZetHint h, Zet8u* b, Zet8u* i, const void** obj) {
    void* p = nullptr;
    const ZetStatus st = call(F, obj ? &p : nullptr, n, flag, h, b, i);
    return obj ? (*obj = p, st) : st;
}
template <auto F> ZetStatus initAt(int n, int flag, ZetHint h, Zet8u* b, Zet8u* i, const void** obj) {
    if (obj) *obj = b;
    if constexpr (kArity<F> == 5) return call(F, n, flag, h, b, i);
    else return call(F, n, h, b, i);
}
// No flag; Hilbert reports no init size, its Init taking a buffer of the work size.
template <auto F> ZetStatus sizes(int n, int, ZetHint h, int* s, int* i, int* w) {
    if constexpr (kArity<F> == 5) return F(n, h, s, i, w);
    else {
        const ZetStatus st = F(n, h, s, w);
        if (!st && i) *i = *w;
        return st;
    }
}

// ---- layouts of a real spectrum --------------------------------------------------------
inline std::size_t layoutReals(int fmt, std::size_t n) { return fmt == CCS ? n + 2 - n % 2 : n; }
// Where R_k lies (I_k follows it unless 2k = n), 0 < k <= n/2.
inline std::size_t slot(int fmt, std::size_t n, std::size_t k) {
    if (2 * k == n) return fmt == Perm ? 1 : fmt == CCS ? n : n - 1;
    return (fmt == CCS || (fmt == Perm && n % 2 == 0)) ? 2 * k : 2 * k - 1;
}
template <class G> CL bin(int fmt, std::size_t n, std::size_t k, G get) {
    return k ? CL{get(slot(fmt, n, k)), 2 * k == n ? 0 : get(slot(fmt, n, k) + 1)} : CL{get(0), 0};
}
inline Vec encode(int fmt, const std::vector<CL>& x, std::size_t n) {
    Vec d(layoutReals(fmt, n), 0);
    d[0] = x[0].real();
    for (std::size_t k = 1; 2 * k <= n; ++k) {
        d[slot(fmt, n, k)] = x[k].real();
        if (2 * k != n) d[slot(fmt, n, k) + 1] = x[k].imag();
    }
    return d;
}

// ---- the table of forms -------------------------------------------------------------------
struct Form {
    const char* name;
    Kind kind;
    int elem;      // bytes of one real: 2, 4 or 8
    bool byOrder;  // the size is log2 of the length
    int align;     // the object starts at the buffer's first multiple of this (0: at its start)
    ZetStatus (*getSize)(int, int, ZetHint, int*, int*, int*);
    ZetStatus (*init)(int, int, ZetHint, Zet8u*, Zet8u*, const void**);
    ZetStatus (*run)(int, const void* const*, void* const*, const void*, Zet8u*);
    bool inPlaceForms;  // _I exports follow the plain ones; without, in place passes the source as destination
    int fmts() const { return kind == Real ? 3 : 1; }
    int dirs() const { return kind <= Real ? 2 : 1; }
    bool flags() const { return kind <= Real; }
    bool dbl() const { return elem == 8; }
    std::size_t length(int size) const { return byOrder ? std::size_t{1} << size : static_cast<std::size_t>(size); }
    // Flat values of a call's source or destination.
    std::size_t reals(std::size_t n, bool out, bool inv, int fmt) const {
        if (kind == Inter || kind == Split || (kind == Hilbert && out)) return 2 * n;
        return kind == Real && out != inv ? layoutReals(fmt, n) : n;
    }
    int which(bool inPlace, int dir, int fmt) const {
        return ((inPlace && inPlaceForms) * dirs() + dir) * fmts() + fmt;
    }
};

inline const std::vector<Form>& forms() {
    static const std::vector<Form> v = {
        {"FFT_C_32fc", Inter, 4, true, 64, zetsFFTGetSize_C_32fc, initPP<zetsFFTInit_C_32fc>,
         runner<zetsFFTFwd_CToC_32fc, zetsFFTInv_CToC_32fc, zetsFFTFwd_CToC_32fc_I, zetsFFTInv_CToC_32fc_I>, true},
        {"FFT_C_32f", Split, 4, true, 64, zetsFFTGetSize_C_32f, initPP<zetsFFTInit_C_32f>,
         runner<zetsFFTFwd_CToC_32f, zetsFFTInv_CToC_32f, zetsFFTFwd_CToC_32f_I, zetsFFTInv_CToC_32f_I>, true},
        {"FFT_C_64fc", Inter, 8, true, 64, zetsFFTGetSize_C_64fc, initPP<zetsFFTInit_C_64fc>,
         runner<zetsFFTFwd_CToC_64fc, zetsFFTInv_CToC_64fc, zetsFFTFwd_CToC_64fc_I, zetsFFTInv_CToC_64fc_I>, true},
        {"FFT_C_64f", Split, 8, true, 64, zetsFFTGetSize_C_64f, initPP<zetsFFTInit_C_64f>,
         runner<zetsFFTFwd_CToC_64f, zetsFFTInv_CToC_64f, zetsFFTFwd_CToC_64f_I, zetsFFTInv_CToC_64f_I>, true},
        {"FFT_R_32f", Real, 4, true, 64, zetsFFTGetSize_R_32f, initPP<zetsFFTInit_R_32f>,
         runner<zetsFFTFwd_RToCCS_32f, zetsFFTFwd_RToPack_32f, zetsFFTFwd_RToPerm_32f, zetsFFTInv_CCSToR_32f,
                zetsFFTInv_PackToR_32f, zetsFFTInv_PermToR_32f, zetsFFTFwd_RToCCS_32f_I, zetsFFTFwd_RToPack_32f_I,
                zetsFFTFwd_RToPerm_32f_I, zetsFFTInv_CCSToR_32f_I, zetsFFTInv_PackToR_32f_I, zetsFFTInv_PermToR_32f_I>,
         true},
        {"FFT_R_64f", Real, 8, true, 64, zetsFFTGetSize_R_64f, initPP<zetsFFTInit_R_64f>,
         runner<zetsFFTFwd_RToCCS_64f, zetsFFTFwd_RToPack_64f, zetsFFTFwd_RToPerm_64f, zetsFFTInv_CCSToR_64f,
                zetsFFTInv_PackToR_64f, zetsFFTInv_PermToR_64f, zetsFFTFwd_RToCCS_64f_I, zetsFFTFwd_RToPack_64f_I,
                zetsFFTFwd_RToPerm_64f_I, zetsFFTInv_CCSToR_64f_I, zetsFFTInv_PackToR_64f_I, zetsFFTInv_PermToR_64f_I>,
         true},
        {"DFT_C_32fc", Inter, 4, false, 64, zetsDFTGetSize_C_32fc, initAt<zetsDFTInit_C_32fc>,
         runner<zetsDFTFwd_CToC_32fc, zetsDFTInv_CToC_32fc>, false},
        {"DFT_C_32f", Split, 4, false, 64, zetsDFTGetSize_C_32f, initAt<zetsDFTInit_C_32f>,
         runner<zetsDFTFwd_CToC_32f, zetsDFTInv_CToC_32f>, false},
        {"DFT_C_64fc", Inter, 8, false, 64, zetsDFTGetSize_C_64fc, initAt<zetsDFTInit_C_64fc>,
         runner<zetsDFTFwd_CToC_64fc, zetsDFTInv_CToC_64fc>, false},
        {"DFT_C_64f", Split, 8, false, 64, zetsDFTGetSize_C_64f, initAt<zetsDFTInit_C_64f>,
         runner<zetsDFTFwd_CToC_64f, zetsDFTInv_CToC_64f>, false},
        {"DFT_R_32f", Real, 4, false, 64, zetsDFTGetSize_R_32f, initAt<zetsDFTInit_R_32f>,
         runner<zetsDFTFwd_RToCCS_32f, zetsDFTFwd_RToPack_32f, zetsDFTFwd_RToPerm_32f, zetsDFTInv_CCSToR_32f,
                zetsDFTInv_PackToR_32f, zetsDFTInv_PermToR_32f>, false},
        {"DFT_R_64f", Real, 8, false, 64, zetsDFTGetSize_R_64f, initAt<zetsDFTInit_R_64f>,
         runner<zetsDFTFwd_RToCCS_64f, zetsDFTFwd_RToPack_64f, zetsDFTFwd_RToPerm_64f, zetsDFTInv_CCSToR_64f,
                zetsDFTInv_PackToR_64f, zetsDFTInv_PermToR_64f>, false},
        {"DCTFwd_32f", DctFwd, 4, false, 64, sizes<zetsDCTFwdGetSize_32f>, initAt<zetsDCTFwdInit_32f>,
         runner<zetsDCTFwd_32f, zetsDCTFwd_32f_I>, true},
        {"DCTInv_32f", DctInv, 4, false, 64, sizes<zetsDCTInvGetSize_32f>, initAt<zetsDCTInvInit_32f>,
         runner<zetsDCTInv_32f, zetsDCTInv_32f_I>, true},
        {"DCTFwd_64f", DctFwd, 8, false, 64, sizes<zetsDCTFwdGetSize_64f>, initAt<zetsDCTFwdInit_64f>,
         runner<zetsDCTFwd_64f, zetsDCTFwd_64f_I>, true},
        {"DCTInv_64f", DctInv, 8, false, 64, sizes<zetsDCTInvGetSize_64f>, initAt<zetsDCTInvInit_64f>,
         runner<zetsDCTInv_64f, zetsDCTInv_64f_I>, true},
        {"Hilbert_32f32fc", Hilbert, 4, false, 16, sizes<zetsHilbertGetSize_32f32fc>,
         initAt<zetsHilbertInit_32f32fc>, runner<zetsHilbert_32f32fc>, false},
        {"Hilbert_64f64fc", Hilbert, 8, false, 16, sizes<zetsHilbertGetSize_64f64fc>,
         initAt<zetsHilbertInit_64f64fc>, runner<zetsHilbert_64f64fc>, false},
    };
    return v;
}
inline const Form& form(const std::string& name) {
    for (const Form& f : forms())
        if (name == f.name) return f;
    std::abort();
}

// ---- objects and data in guarded memory ----------------------------------------------
// A buffer of `bytes` ends at the guard page; with an alignment it moves by `shift` from a multiple of it, so that what
// the library aligns up to, less one alignment of slack, ends at the guard.
inline Zet8u* tight(const GuardedRegion& r, int bytes, int align, int shift) {
    if (!align) return r.end() - bytes;
    const auto top = reinterpret_cast<std::uintptr_t>(r.end()) - bytes + align;
    return reinterpret_cast<Zet8u*>((top & ~std::uintptr_t(align - 1)) - align + shift);
}
inline Zet8u* alignUp(const void* p, int align) {
    const auto a = static_cast<std::uintptr_t>(std::max(align, 1));
    return reinterpret_cast<Zet8u*>((reinterpret_cast<std::uintptr_t>(p) + a - 1) / a * a);
}

// GetSize, then Init into an object buffer, init scratch and work buffer of exactly the sizes given, full of NaN bytes
// so that no result may depend on them; the scratch is made inaccessible once Init returns.
struct Object {
    int bytes[3] = {};  // object, init scratch, work
    ZetStatus status;
    std::unique_ptr<GuardedRegion> mem[3];
    Zet8u* buf[3] = {};
    const void* obj = nullptr;
    Object(const Form& f, int size, int flag, int shift = 1, ZetHint hint = 0) {
        status = f.getSize(size, flag, hint, &bytes[0], &bytes[1], &bytes[2]);
        for (int k = 0; k < 3 && !status; ++k)
            if (bytes[k] > 0) {
                mem[k] = std::make_unique<GuardedRegion>(bytes[k]);
                std::memset(mem[k]->begin(), 0xFF, mem[k]->capacity());
                buf[k] = tight(*mem[k], bytes[k], f.align, k ? 1 : shift);
            }
        if (status) return;
        status = f.init(size, flag, hint, buf[0], buf[1], &obj);
        if (mem[1]) mprotect(mem[1]->begin(), mem[1]->capacity(), PROT_NONE);
    }
    Zet8u* work() const { return buf[2]; }
};

// One call's data: a plane (two for the split forms, the second against its guard) in a guarded region at a placement,
// the bytes around it patterned and watched, its own bytes NaN until written. Indexed by flat value.
struct Data {
    int elem;
    bool split;
    std::size_t count;
    std::unique_ptr<GuardedRegion> r[2];
    void* p[2] = {};
    Data(const Form& f, std::size_t values, Placement at = kTail)
        : elem(f.elem), split(f.kind == Split), count(values) {
        for (int k = 0; k < 1 + split; ++k) {
            r[k] = std::make_unique<GuardedRegion>(bytes());
            std::memset(r[k]->begin(), 0xA5, r[k]->capacity());
            p[k] = zettest::place<unsigned char>(*r[k], k ? kTail : at, bytes());
            std::memset(p[k], 0xFF, bytes());
        }
    }
    std::size_t bytes() const { return (split ? count / 2 : count) * elem; }
    unsigned char* at(std::size_t i) const {
        return static_cast<unsigned char*>(p[split ? i % 2 : 0]) + (split ? i / 2 : i) * elem;
    }
    LD get(std::size_t i) const {
        double d;
        float s;
        Zet16f h;
        if (elem == 8) return std::memcpy(&d, at(i), 8), d;
        return elem == 4 ? (std::memcpy(&s, at(i), 4), s) : (std::memcpy(&h, at(i), 2), _cvtsh_ss(h));
    }
    void set(std::size_t i, LD v) {
        const double d = static_cast<double>(v);
        const float s = static_cast<float>(v);
        const Zet16f h = static_cast<Zet16f>(_cvtss_sh(s, 0));  // to nearest even
        const void* from[] = {&h, &s, &d};  // by element size 2, 4, 8
        std::memcpy(at(i), from[elem / 4], elem);
    }
    void load(const Vec& v) { for (std::size_t i = 0; i < v.size(); ++i) set(i, v[i]); }
    Vec values() const {
        Vec v(count);
        for (std::size_t i = 0; i < count; ++i) v[i] = get(i);
        return v;
    }
    // The first `values` flat values of both, bit for bit.
    bool same(const Data& o, std::size_t values) const {
        const std::size_t b = (split ? values / 2 : values) * elem;
        return !std::memcmp(p[0], o.p[0], b) && (!split || !std::memcmp(p[1], o.p[1], b));
    }
    bool intact() const {
        for (int k = 0; k < 1 + split; ++k) {
            const unsigned char *lo = r[k]->begin(), *hi = r[k]->end(), *b = static_cast<unsigned char*>(p[k]);
            const unsigned char* e = b + bytes();
            if (std::count(lo, b, 0xA5) != b - lo || std::count(e, hi, 0xA5) != hi - e) return false;
        }
        return true;
    }
};

// One call of form f in direction dir (0 forward); s null runs in place on d.
inline ZetStatus apply(const Form& f, const Object& o, int dir, int fmt, const Data* s, Data& d) {
    const void* src[2] = {s ? s->p[0] : d.p[0], s ? s->p[1] : d.p[1]};
    return f.run(f.which(!s, dir, fmt), s || !f.inPlaceForms ? src : nullptr, d.p, o.obj, o.work());
}

// ---- references ----------------------------------------------------------------------------
// Values in [-1, 1) with 24 significant bits, exact in single and double, by index.
inline double gen(std::uint64_t seed, std::uint64_t i) {
    std::uint64_t z = seed * 0x9E3779B97F4A7C15ULL + (i + 1) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return (static_cast<std::int32_t>((z ^ (z >> 31)) >> 32) >> 8) * 0x1p-23;
}
template <class C> C cmul(C a, C b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// X[k] = sum x[j] w^(jk), w = exp(-+2 pi i / n), for the first `rows` k.
inline std::vector<CL> dft(const std::vector<CL>& x, bool inv, std::size_t rows = SIZE_MAX) {
    const std::size_t n = x.size();
    std::vector<CL> w(n), out(std::min(n, rows));
    for (std::size_t k = 0; k < n; ++k) w[k] = std::polar(1.0L, (inv ? kTau : -kTau) * k / n);
    for (std::size_t k = 0; k < out.size(); ++k) {
        LD re = 0, im = 0;
        for (std::size_t j = 0, t = 0; j < n; ++j, t = t + k >= n ? t + k - n : t + k) {
            re += x[j].real() * w[t].real() - x[j].imag() * w[t].imag();
            im += x[j].real() * w[t].imag() + x[j].imag() * w[t].real();
        }
        out[k] = {re, im};
    }
    return out;
}

// Any values made a layout: bins 0 and n/2 real, CCS with its zeros.
inline Vec toLayout(int fmt, std::size_t n, const Vec& v) {
    std::vector<CL> x(n / 2 + 1);
    for (std::size_t k = 0; k < x.size(); ++k) x[k] = bin(fmt, n, k, [&](std::size_t i) { return v[i]; });
    return encode(fmt, x, n);
}
// A call's source: random values; for a real inverse, a layout with real bins 0 and n/2 (and the zeros of CCS).
inline Vec input(const Form& f, std::size_t n, bool inv, int fmt, std::uint64_t seed) {
    Vec v(f.reals(n, false, inv, fmt));
    for (std::size_t i = 0; i < v.size(); ++i) v[i] = gen(seed, i);
    return f.kind == Real && inv ? toLayout(fmt, n, v) : v;
}

// The unscaled result of form f on `in`, as flat values.
inline Vec reference(const Form& f, std::size_t n, bool inv, int fmt, const Vec& in) {
    const bool dct = f.kind == DctFwd || f.kind == DctInv;
    std::vector<CL> x(dct ? 4 * n : n);
    Vec out;
    auto flat = [&](const std::vector<CL>& z) {
        for (const CL& v : z) out.push_back(v.real()), out.push_back(v.imag());
        return out;
    };
    auto s = [n](std::size_t k) { return std::sqrt((k ? 2.0L : 1.0L) / n); };
    switch (f.kind) {
        case Inter:
        case Split:
            for (std::size_t k = 0; k < n; ++k) x[k] = {in[2 * k], in[2 * k + 1]};
            return flat(dft(x, inv));
        case Real:
            if (!inv) {
                for (std::size_t k = 0; k < n; ++k) x[k] = in[k];
                return encode(fmt, dft(x, false, n / 2 + 1), n);
            }
            for (std::size_t k = 0; 2 * k <= n; ++k)
                x[(n - k) % n] = std::conj(x[k] = bin(fmt, n, k, [&](std::size_t i) { return in[i]; }));
            for (const CL& v : dft(x, true)) out.push_back(v.real());
            return out;
        case DctFwd:  // s_k Re sum x[j] exp(-i pi k (2j + 1) / 2n): x at the odd points of a 4n-point DFT
            for (std::size_t j = 0; j < n; ++j) x[2 * j + 1] = in[j];
            x = dft(x, false, n);
            for (std::size_t k = 0; k < n; ++k) out.push_back(s(k) * x[k].real());
            return out;
        case DctInv:
            for (std::size_t k = 0; k < n; ++k) x[k] = s(k) * in[k];
            x = dft(x, false, 2 * n);
            for (std::size_t j = 0; j < n; ++j) out.push_back(x[2 * j + 1].real());
            return out;
        default: {  // the analytic signal: positive frequencies doubled, negative ones zeroed
            for (std::size_t k = 0; k < n; ++k) x[k] = in[k];
            x = dft(x, false);
            for (std::size_t k = 1; k < n; ++k) x[k] *= 2 * k < n ? 2.0L : 2 * k == n ? 1.0L : 0.0L;
            x = dft(x, true);
            for (CL& v : x) v /= static_cast<LD>(n);
            return flat(x);
        }
    }
}

inline LD factor(const Form& f, int flag, bool inv, std::size_t n) {
    if (!f.flags() || flag == ZET_SCALE_NONE) return 1;
    if (flag == ZET_SCALE_SYM) return 1 / std::sqrt(static_cast<LD>(n));
    return (flag == ZET_SCALE_FWD) != inv ? 1 / static_cast<LD>(n) : 1;
}
// A few roundings per level of log2 n: far below what a wrong twiddle or bin gives.
inline double bound(const Form& f, std::size_t n) {
    return 4 * (f.dbl() ? 1e-16 : 1e-7) * std::max(1.0, std::log2(static_cast<double>(n)));
}
// ||got - s want|| / ||s want||.
inline double relErr(const Vec& got, const Vec& want, LD s = 1) {
    LD e = 0, r = 0;
    for (std::size_t i = 0; i < want.size(); ++i) {
        const LD d = got[i] - s * want[i];
        e += d * d, r += s * s * want[i] * want[i];
    }
    return static_cast<double>(std::sqrt(e / (r > 0 ? r : 1)));
}

// ---- the checks of every form ------------------------------------------------------------
// Form f at one size under every flag, direction and layout against the reference; the same call in place, from the
// lower guard and between unaligned buffers gives the same bits and writes nothing around them; the source is kept; the
// real layouts hold the same bins, CCS its zeros as +0. FFTs of up to 4 points are exact on eighths: every twiddle is
// 1, -i, -1 or i, every factor a power of two, but for the symmetric one of 2 points, which may round once more. A
// complex DFT scales by one multiply of the unscaled output by 1/N (single: the float quotient) or by 1/sqrt(N),
// rounded once.
inline void checkExact(const Form& f, int size) {
    static std::map<std::tuple<int, std::size_t, bool, int>, Vec> refs;  // the precisions share their inputs
    const std::size_t n = f.length(size);
    const Placement others[] = {{Placement::Head, 0}, {Placement::Offset, 8}, {Placement::Offset, f.dbl() ? 16u : 4u}};
    const int cls = f.kind == Split ? Inter : f.kind;
    const bool dftScale = !f.byOrder && (f.kind == Inter || f.kind == Split);
    Vec plain[2];
    for (int flag : {ZET_SCALE_NONE, ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM}) {
        if (!f.flags() && flag != ZET_SCALE_NONE) continue;
        Object o(f, size, flag);
        ASSERT_EQ(o.status, zetStsOk) << f.name << " size " << size;
        for (int dir = 0; dir < f.dirs(); ++dir) {
            std::vector<CL> ccs;
            for (int fmt = 0; fmt < f.fmts(); ++fmt) {
                const bool inv = dir || f.kind == DctInv;
                SCOPED_TRACE(std::string(f.name) + " size " + std::to_string(size) + " flag " + std::to_string(flag) +
                             " dir " + std::to_string(dir) + " layout " + std::to_string(fmt));
                Vec in = input(f, n, inv, fmt, cls * 1000003 + n);
                if (n <= 4) for (LD& v : in) v = std::round(v * 8) / 8;
                Vec& want = refs[{cls, n, inv, fmt}];
                if (want.empty()) want = reference(f, n, inv, fmt, in);
                const std::size_t outN = f.reals(n, true, inv, fmt);
                const LD scale = factor(f, flag, inv, n);
                Data src(f, in.size()), dst(f, outN);
                src.load(in);
                ASSERT_EQ(apply(f, o, dir, fmt, &src, dst), zetStsOk);
                EXPECT_LE(relErr(dst.values(), want, scale), bound(f, n));
                EXPECT_EQ(src.values(), in) << "source changed";
                const double q = f.dbl() ? 1.0 / n : 1.0f / float(n), r = 1 / std::sqrt(n), rr = f.dbl() ? r : float(r);
                const double sc = flag == ZET_SCALE_SYM ? rr : scale == 1 ? 1 : q;
                for (std::size_t i = 0; i < outN && ((f.byOrder && n <= 4) || (dftScale && plain[dir].size())); ++i) {
                    const LD w = f.byOrder ? std::round(want[i] * 8) / 8 * scale : plain[dir][i];  // eighths, exactly
                    const LD exact = f.byOrder ? (f.dbl() ? LD(double(w)) : float(w))
                                               : f.dbl() ? double(w) * sc : float(w) * float(sc);
                    const bool once = f.byOrder && flag == ZET_SCALE_SYM && n == 2;
                    EXPECT_NEAR(dst.get(i), exact, once ? std::fabs(w) * 1.2e-7 : 0) << "value " << i;
                }
                if (flag == ZET_SCALE_NONE) plain[dir] = dst.values();
                for (const Placement& p : others) {
                    Data s2(f, in.size(), p), d2(f, outN, p);
                    s2.load(in);
                    ASSERT_EQ(apply(f, o, dir, fmt, &s2, d2), zetStsOk);
                    EXPECT_TRUE(d2.same(dst, outN) && d2.intact()) << "at " << p.name();
                }
                if (f.kind != Hilbert) {
                    Data io(f, std::max(in.size(), outN));
                    io.load(in);
                    ASSERT_EQ(apply(f, o, dir, fmt, nullptr, io), zetStsOk);
                    EXPECT_TRUE(io.same(dst, outN)) << "in place";
                }
                for (std::size_t i = 0; f.kind == Hilbert && n <= 2 && i < n; ++i)  // no negative frequencies: a copy
                    EXPECT_TRUE(dst.get(2 * i) == in[i] && !std::signbit(dst.get(2 * i + 1)) && !dst.get(2 * i + 1));
                if (f.kind != Real || inv) continue;
                for (std::size_t k = 0; 2 * k <= n; ++k) {
                    const CL b = bin(fmt, n, k, [&](std::size_t i) { return dst.get(i); });
                    if (fmt == CCS) ccs.push_back(b);
                    else { EXPECT_EQ(b, ccs[k]) << "bin " << k << " moved with a change"; }
                }
                for (std::size_t i : {std::size_t{1}, n % 2 ? 1 : n + 1})
                    EXPECT_TRUE(fmt != CCS || (dst.get(i) == 0 && !std::signbit(dst.get(i)))) << "CCS zero at " << i;
            }
        }
    }
}

// w^p, w = exp(-2 pi i / n), from two tables of about sqrt(n) roots.
struct Roots {
    std::size_t n;
    int bits;
    std::vector<CD> lo, hi;
    explicit Roots(std::size_t len) : n(len), bits(static_cast<int>(std::log2(double(len))) / 2 + 1) {
        for (std::size_t j = 0; j < std::size_t{1} << bits; ++j) lo.push_back(CD(std::polar(1.0L, -kTau * j / n)));
        for (std::size_t j = 0; j << bits < n; ++j) hi.push_back(CD(std::polar(1.0L, -kTau * (j << bits) / n)));
    }
    CD operator()(std::size_t p) const { return cmul(lo[p & ((std::size_t{1} << bits) - 1)], hi[p >> bits]); }
};

// The forward transform past the reach of the reference, by O(n) sums over two buffers: in place against out of place;
// a shift by one sample multiplies bin k by w^k; Parseval's energy; adding an impulse at m adds w^(mk) times it
// (linearity and the impulse's spectrum); the inverse, out of place and in place, brings the input back. Terms in
// double, sums in long double.
inline void checkProperties(const Form& f, int size, int flag, Placement at = kTail) {
    const std::size_t n = f.length(size), bins = f.kind == Real ? n / 2 + 1 : n;
    const bool cx = f.kind != Real;
    const int fmt = size % f.fmts();
    const double tol = bound(f, n), s = static_cast<double>(factor(f, flag, false, n));
    SCOPED_TRACE(std::string(f.name) + " size " + std::to_string(size) + " flag " + std::to_string(flag));
    Object o(f, size, flag);
    ASSERT_EQ(o.status, zetStsOk);
    const std::size_t inN = f.reals(n, false, false, fmt), outN = f.reals(n, true, false, fmt);
    Data a(f, std::max(inN, outN)), b(f, outN, at);
    const std::uint64_t seed = 77 + size;
    auto x = [&](std::size_t i) { return gen(seed, i); };
    LD ex = 0;
    auto fill = [&](std::size_t shift) {
        ex = 0;
        for (std::size_t i = 0, j = (inN - shift) % inN; i < inN; ++i, j = j + 1 == inN ? 0 : j + 1)
            a.set(i, x(j)), ex += x(j) * x(j);
    };
    auto X = [&](const Data& d, std::size_t k) {
        return cx ? CD(d.get(2 * k), d.get(2 * k + 1)) : CD(bin(fmt, n, k, [&](std::size_t i) { return d.get(i); }));
    };
    LD r = 0;  // the energy of the wanted bins
    auto dist = [&](auto got, auto want) {
        LD e = 0;
        r = 0;
        for (std::size_t k = 0; k < bins; ++k) {
            const double weight = cx || k == 0 || 2 * k == n ? 1 : 2;  // the mirrored bins of a real signal
            const CD g = got(k), w = want(k);
            e += weight * std::norm(g - w), r += weight * std::norm(w);
        }
        return static_cast<double>(std::sqrt(e / r));
    };
    fill(0);
    ASSERT_EQ(apply(f, o, 0, fmt, &a, b), zetStsOk);
    EXPECT_TRUE(b.intact()) << "written around the destination";
    ASSERT_EQ(apply(f, o, 0, fmt, nullptr, a), zetStsOk);
    EXPECT_TRUE(a.same(b, outN)) << "in place, or the source changed";
    const Roots w(n);
    fill(cx ? 2 : 1);
    ASSERT_EQ(apply(f, o, 0, fmt, nullptr, a), zetStsOk);
    EXPECT_LE(dist([&](std::size_t k) { return X(a, k); }, [&](std::size_t k) { return cmul(w(k), X(b, k)); }), 2 * tol)
        << "shift";
    // The energy drifts by a few roundings per level, and past 2^24 points with the length; a wrong factor, further.
    const double drift = 8 * tol * std::max(1.0, std::ldexp(double(n), -24));
    EXPECT_NEAR(static_cast<double>(std::sqrt(r / (ex * n * s * s))), 1.0, drift) << "Parseval";
    const std::size_t m = (seed * 7919) % n, at0 = cx ? 2 * m : m;
    const double big = std::ldexp(1.0, static_cast<int>(std::log2(double(n))) / 2);
    fill(0);
    a.set(at0, x(at0) + 0.75 * big);
    if (cx) a.set(at0 + 1, x(at0 + 1) - 0.5 * big);
    const CD d(a.get(at0) - x(at0), cx ? a.get(at0 + 1) - x(at0 + 1) : 0);  // the impulse as stored
    ASSERT_EQ(apply(f, o, 0, fmt, nullptr, a), zetStsOk);
    std::size_t p = 0;
    auto want = [&](std::size_t) {
        const CD v = s * cmul(d, w(p));
        return p = p + m >= n ? p + m - n : p + m, v;
    };
    EXPECT_LE(dist([&](std::size_t k) { return X(a, k) - X(b, k); }, want), 4 * tol) << "impulse";
    ASSERT_EQ(apply(f, o, 1, fmt, &b, a), zetStsOk);
    const double rt = n * s * static_cast<double>(factor(f, flag, true, n));
    LD e = 0;
    for (std::size_t i = 0; i < inN; ++i) e += (static_cast<double>(a.get(i)) - rt * x(i)) * (a.get(i) - rt * x(i));
    EXPECT_LE(static_cast<double>(std::sqrt(e / (rt * rt * ex))), 2 * tol) << "round trip";
    ASSERT_EQ(apply(f, o, 1, fmt, nullptr, b), zetStsOk);
    EXPECT_TRUE(a.same(b, inN)) << "inverse in place";
}

// ---- the argument checks -------------------------------------------------------------------
// A fault puts one argument wrong: a size or flag value, or (value 0) a null pointer or a changed object word. `lays`:
// Init writes the word before this check.
struct Fault { int arg, value; ZetStatus st; bool lays = false; };
enum { kSize, kFlag, kOut0, kOut1, kOut2 };           // GetSize
enum { kPP = 2, kBuf, kScratch };                     // Init
enum { kObj, kWord, kSrc0, kSrc1, kDst0, kDst1, kWork };  // compute
struct Walk {
    int size;                                            // valid, with scratch and work needed
    std::vector<Fault> getSize, init, run, runInPlace;  // in the order the checks run
};

// Every fault alone and every pair on two arguments gives the status of the one listed first; nothing is written on an
// error, but the object's word where Init lays it before the failing check.
inline void walk(const Form& f, const Walk& w, int flag = ZET_SCALE_INV) {
    Object ok(f, w.size, flag);
    ASSERT_EQ(ok.status, zetStsOk) << f.name;
    std::uint32_t word;
    std::memcpy(&word, alignUp(ok.obj, f.align), 4);
    GuardedRegion buf(ok.bytes[0]), scratch(ok.bytes[1]);
    Zet8u *bp = tight(buf, ok.bytes[0], f.align, 1), *sp = tight(scratch, ok.bytes[1], f.align, 1);
    const std::size_t n = f.length(w.size);
    Data s(f, f.reals(n, false, false, 0)), d(f, std::max(s.count, f.reals(n, true, false, 0)));
    for (std::size_t i = 0; i < d.count; ++i) d.set(i, gen(6, i)), s.set(i % s.count, gen(5, i));
    auto probe = [&](int call, const Fault& x, const Fault& y) {
        int a[7] = {w.size, flag, 1, 1, 1, 1, 1};  // nonzero: as given
        a[x.arg] = x.value, a[y.arg] = y.value;
        int out[3] = {-7, -7, -7}, *o[3] = {a[2] ? out : nullptr, a[3] ? out + 1 : nullptr, a[4] ? out + 2 : nullptr};
        const void *obj = nullptr, *object = a[kObj] ? ok.obj : nullptr;
        const void* src[2] = {a[kSrc0] ? s.p[0] : nullptr, a[kSrc1] ? s.p[1] : nullptr};
        void* dst[2] = {a[kDst0] ? d.p[0] : nullptr, a[kDst1] ? d.p[1] : nullptr};
        Zet8u* wp = !a[kWord] && object && call > 1 ? alignUp(object, f.align) : nullptr;
        Zet8u *work = a[kWork] ? ok.work() : nullptr, *b = a[kBuf] ? bp : nullptr, *sc = a[kScratch] ? sp : nullptr;
        const Vec before = d.values(), sBefore = s.values();
        std::memset(buf.begin(), 0xFF, buf.capacity());
        if (wp) *wp ^= 1;
        ZetStatus st;
        if (call == 0) st = f.getSize(a[0], a[1], 0, o[0], o[1], o[2]);
        else if (call == 1) st = f.init(a[0], a[1], 0, b, sc, a[kPP] ? &obj : nullptr);
        else st = f.run(f.which(call == 3, 0, 0), call == 3 ? nullptr : src, dst, object, work);
        if (wp) *wp ^= 1;
        EXPECT_EQ(st, x.st);
        std::uint32_t now;
        std::memcpy(&now, alignUp(bp, f.align), 4);
        EXPECT_TRUE(call != 1 || now == (x.lays ? word : 0xFFFFFFFFu)) << "the object's word";
        EXPECT_TRUE(out[0] == -7 && out[1] == -7 && out[2] == -7 && d.values() == before && s.values() == sBefore);
    };
    // Any other form's object is refused (a Hilbert object carries complex DFT objects, which a DFT may find at its
    // 64-byte boundary).
    const void* src[2] = {s.p[0], s.p[1]};
    for (const Form& g : forms()) {
        if (!std::strcmp(g.name, f.name) || (g.kind == Hilbert && f.kind == Inter && !f.byOrder)) continue;
        const Object other(g, g.byOrder ? 3 : 8, ZET_SCALE_INV, 0);
        EXPECT_EQ(f.run(0, src, d.p, other.obj, ok.work()), zetStsSpecMismatchErr) << f.name << " given " << g.name;
    }
    for (int call = 0; call < 4; ++call) {
        const std::vector<Fault>& v = call == 0 ? w.getSize : call == 1 ? w.init : call == 2 ? w.run : w.runInPlace;
        for (std::size_t i = 0; i < v.size(); ++i)
            for (std::size_t j = i; j < v.size(); ++j) {
                SCOPED_TRACE(std::string(f.name) + " call " + std::to_string(call) + ": argument " +
                             std::to_string(v[i].arg) + " = " + std::to_string(v[i].value) + ", " +
                             std::to_string(v[j].arg) + " = " + std::to_string(v[j].value));
                if (j == i || v[i].arg != v[j].arg) probe(call, v[i], v[j]);
            }
    }
}

}  // namespace tkit
