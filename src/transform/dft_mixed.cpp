// The kernels of two ways of the arbitrary-length core: codelets for lengths
// to 16, and the mixed-radix driver (leaf gathers, twiddled levels and their
// sweeps in cache-sized blocks).
#include <array>
#include <type_traits>
#include <utility>

#include "transform/dft_kernels.hpp"
#include "transform/dft_ways.hpp"

namespace zet::dft {

using fft::Inter;
using fft::Split;

// ------------------------------------------------------------------ codelets

namespace {

template <class T, class F> using CodeletFn = void (*)(F, F, T);

template <class T, class F, int N, bool Inv, bool Scaled> void codelet(F src, F dst, T scale) {
    CV<T> x[N];
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) x[i] = src.loadOne(i);
    smallDft<N, Inv>(x);
#pragma GCC unroll 16
    for (int i = 0; i < N; ++i) dst.storeOne(i, Scaled ? cscale(x[i], scale) : x[i]);
}

template <class T, class F, bool Inv, bool Scaled, int... I>
constexpr std::array<CodeletFn<T, F>, 16> codeletRow(std::integer_sequence<int, I...>) {
    return {&codelet<T, F, I + 1, Inv, Scaled>...};
}
// Four blocks by length: inverse scaled, inverse unscaled, forward scaled,
// forward unscaled.
template <class T, class F>
constexpr std::array<std::array<CodeletFn<T, F>, 16>, 4> kCodelets{
    codeletRow<T, F, true, true>(std::make_integer_sequence<int, 16>{}),
    codeletRow<T, F, true, false>(std::make_integer_sequence<int, 16>{}),
    codeletRow<T, F, false, true>(std::make_integer_sequence<int, 16>{}),
    codeletRow<T, F, false, false>(std::make_integer_sequence<int, 16>{})};

}  // namespace

template <class T, bool Inv, class F> void runCodelet(const DFTCore* c, F src, F dst) {
    const bool s = scaled(c, Inv);
    kCodelets<T, F>[(Inv ? 0 : 2) + (s ? 0 : 1)][c->length - 1](src, dst, scaleOf<T>(c));
}

// -------------------------------------------------------------- mixed radix

namespace {

// Stack room of the generic radix: above the largest, 149.
constexpr int kMaxGeneric = 152;

// Radix policies: one known at compile time, one at run time. run() loads
// the p inputs through load(i) and hands each output to store(k, value).
template <int R> struct Fixed {
    static constexpr int kCap = R;
    static constexpr bool kFixed = true;
    int p = R;
    template <bool Inv, class V, class Load, class Store>
    [[gnu::always_inline]] void run(Load load, Store store) const {
        alignas(64) CV<V> x[R];
        if constexpr (R == 16 && !std::is_same_v<V, typename ScalarOf<V>::type>) {
            // In two phases through an L1 tile: 32 live vectors would spill at random.
            fft::sixteen<Inv, V>(load, x);
        } else {
#pragma GCC unroll 16
            for (int i = 0; i < R; ++i) x[i] = load(i);
            smallDft<R, Inv>(x);
        }
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) store(k, x[k]);
    }
};
template <class T> struct Generic {
    static constexpr int kCap = kMaxGeneric;
    static constexpr bool kFixed = false;
    int p;
    const T* roots;  // p cosines, then p sines
    template <bool Inv, class V, class Load, class Store> void run(Load load, Store store) const {
        CV<V> x[kMaxGeneric];
        x[0] = load(0);
        for (int i = 1; i < p; ++i) x[i] = load(i);
        genericDft<Inv>(x, p, roots, roots + p, store);
    }
};

// Position of leaf o's outputs: o's digits (lowest first, radices of the
// records) weighted by the records' rests, counted up from leaf 0.
struct Digits {
    const FactorStage* st;
    int last;
    int q[kMaxStages] = {};
    std::int32_t pos = 0;
    std::int32_t next() {
        const std::int32_t at = pos;
        for (int j = 0; j <= last; ++j) {
            pos += st[j].rest;
            if (++q[j] < st[j].radix) break;
            q[j] = 0;
            pos -= st[j].radix * st[j].rest;
        }
        return at;
    }
};

// The leaf level: n/r transforms of r points at stride n/r, read from the
// source and written consecutively to the planes. W transforms go across
// the lanes of a vector (consecutive sources, so every load is contiguous);
// the last group starts early where it would run past the end.
template <class T, bool Inv, class Rad, class Src>
void leafPass(const DFTCore* c, const Rad& rad, Src src, Planes<T> w) {
    using V = typename Lanes<T>::V;
    constexpr int W = Lanes<T>::W;
    const int r = rad.p;
    const std::ptrdiff_t L = c->length / r;
    Digits dg{c->stages, c->lastStage};
    if (L < W) {
        for (std::ptrdiff_t o = 0; o < L; ++o) {
            const std::ptrdiff_t at = dg.next();
            rad.template run<Inv, T>([&](int t) { return src.loadOne(o + L * t); },
                                     [&](int k, CV<T> y) { w.re[at + k] = y.re; w.im[at + k] = y.im; });
        }
        return;
    }
    std::ptrdiff_t nat[W];
    for (int l = 0; l < W; ++l) nat[l] = dg.next();
    for (std::ptrdiff_t o0 = 0;;) {
        std::ptrdiff_t at[W];
        for (int l = 0; l < W; ++l) at[l] = nat[Src::perm(l)];
        CV<V> y[Rad::kCap];
        rad.template run<Inv, V>([&](int t) { return src.loadPerm(o0 + L * t); }, [&](int k, CV<V> v) { y[k] = v; });
        if constexpr (Rad::kFixed) storeRows<T, Rad::kCap>(y, w, at);
        else storeRowsTile<T>(y, r, w, at);
        o0 += W;
        if (o0 >= L) break;
        // The last group starts early: the leaves it repeats keep their positions.
        const std::ptrdiff_t keep = o0 + W > L ? o0 + W - L : 0;
        for (int l = 0; l < W; ++l) nat[l] = l < keep ? nat[W - keep + l] : dg.next();
        o0 -= keep;
    }
}

template <class T> inline void put(Planes<T> o, std::ptrdiff_t i, CV<typename Lanes<T>::V> v) { o.st(i, v); }
template <class T> inline void put(Inter<T> o, std::ptrdiff_t i, CV<typename Lanes<T>::V> v) { o.storeNat(i, v); }
template <class T> inline void put(Split<T> o, std::ptrdiff_t i, CV<typename Lanes<T>::V> v) { o.storeNat(i, v); }
template <class T> inline void putFirst(Planes<T> o, std::ptrdiff_t i, CV<typename Lanes<T>::V> v, const Mask<T>& m, int) { o.st(i, v, m); }
template <class T> inline void putFirst(Inter<T> o, std::ptrdiff_t i, CV<typename Lanes<T>::V> v, const Mask<T>&, int n) { storeFirst<T>(o, i, v, n); }
template <class T> inline void putFirst(Split<T> o, std::ptrdiff_t i, CV<typename Lanes<T>::V> v, const Mask<T>&, int n) { storeFirst<T>(o, i, v, n); }

// One twiddled level: `count` sub-transforms of p*m points from `base`, each
// m butterflies of radix p on inputs i*m + j, vectorised over the column j;
// a ragged end of columns goes through masks. In place on the planes, or
// from the planes to the destination for the outermost level.
template <class T, bool Inv, bool Scaled, class Rad, class Out>
void levelPass(const Rad& rad, Planes<T> in, Out out, std::ptrdiff_t base, std::ptrdiff_t m, std::ptrdiff_t count,
               const T* tw, T scale) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    const int p = rad.p;
    const std::ptrdiff_t full = m - m % W;
    const int rem = static_cast<int>(m % W);
    const Mask<T> mask(rem);
    const V sv = L::set1(scale);
    std::ptrdiff_t b = 0;
    // Columns of half a vector: two sub-transforms share each vector.
    if constexpr (std::is_same_v<Out, Planes<T>>) {
        if (2 * m == W) {
            for (; b + 2 <= count; b += 2, base += 2 * p * m) {
                rad.template run<Inv, V>(
                    [&](int i) {
                        const CV<V> x = in.ld(base + i * m, base + (p + i) * m);
                        if (i == 0) return x;
                        const T* q = tw + 2 * m * (i - 1);
                        return cmulw<Inv>(x, Planes<T>::twice(q), Planes<T>::twice(q + m));
                    },
                    [&](int k, CV<V> y) { out.st(base + k * m, base + (p + k) * m, y); });
            }
        }
    }
    for (; b < count; ++b, base += p * m) {
        const T* t = tw;
        for (std::ptrdiff_t j = 0; j < full; j += W, t += 2 * W * (p - 1)) {
            rad.template run<Inv, V>(
                [&](int i) {
                    const CV<V> x = in.ld(base + i * m + j);
                    if (i == 0) return x;
                    const T* q = t + 2 * W * (i - 1);
                    return cmulw<Inv>(x, L::load(q), L::load(q + W));
                },
                [&](int k, CV<V> y) { put<T>(out, base + k * m + j, Scaled ? cscale(y, sv) : y); });
        }
        if (rem) {
            rad.template run<Inv, V>(
                [&](int i) {
                    const CV<V> x = in.ld(base + i * m + full, mask);
                    if (i == 0) return x;
                    const T* q = t + 2 * rem * (i - 1);
                    return cmulw<Inv>(x, mask.load(q), mask.load(q + rem));
                },
                [&](int k, CV<V> y) { putFirst<T>(out, base + k * m + full, Scaled ? cscale(y, sv) : y, mask, rem); });
        }
    }
}

template <class T, bool Inv, bool Scaled, class Out>
void level(const DFTCore* c, int i, Planes<T> in, Out out, std::ptrdiff_t base, std::ptrdiff_t count, T scale) {
    const FactorStage& s = c->stages[i];
    const T* tw = static_cast<const T*>(s.twiddles);
    const std::ptrdiff_t m = s.rest;
    switch (s.radix) {
        case 2: levelPass<T, Inv, Scaled>(Fixed<2>{}, in, out, base, m, count, tw, scale); break;
        case 3: levelPass<T, Inv, Scaled>(Fixed<3>{}, in, out, base, m, count, tw, scale); break;
        case 4: levelPass<T, Inv, Scaled>(Fixed<4>{}, in, out, base, m, count, tw, scale); break;
        case 5: levelPass<T, Inv, Scaled>(Fixed<5>{}, in, out, base, m, count, tw, scale); break;
        case 7: levelPass<T, Inv, Scaled>(Fixed<7>{}, in, out, base, m, count, tw, scale); break;
        case 11: levelPass<T, Inv, Scaled>(Fixed<11>{}, in, out, base, m, count, tw, scale); break;
        case 13: levelPass<T, Inv, Scaled>(Fixed<13>{}, in, out, base, m, count, tw, scale); break;
        default:
            levelPass<T, Inv, Scaled>(Generic<T>{s.radix, static_cast<const T*>(s.table)}, in, out, base, m, count, tw, scale);
            break;
    }
}

template <class T, bool Inv, class Src> void leaf(const DFTCore* c, Src src, Planes<T> w) {
    const FactorStage& s = c->stages[c->lastStage + 1];
    switch (s.radix) {
        case 2: leafPass<T, Inv>(c, Fixed<2>{}, src, w); break;
        case 3: leafPass<T, Inv>(c, Fixed<3>{}, src, w); break;
        case 4: leafPass<T, Inv>(c, Fixed<4>{}, src, w); break;
        case 5: leafPass<T, Inv>(c, Fixed<5>{}, src, w); break;
        case 6: leafPass<T, Inv>(c, Fixed<6>{}, src, w); break;
        case 7: leafPass<T, Inv>(c, Fixed<7>{}, src, w); break;
        case 8: leafPass<T, Inv>(c, Fixed<8>{}, src, w); break;
        case 11: leafPass<T, Inv>(c, Fixed<11>{}, src, w); break;
        case 13: leafPass<T, Inv>(c, Fixed<13>{}, src, w); break;
        case 16: leafPass<T, Inv>(c, Fixed<16>{}, src, w); break;
        default: leafPass<T, Inv>(c, Generic<T>{s.radix, static_cast<const T*>(s.table)}, src, w); break;
    }
}

// Levels i..last of the sub-transform at `base`: a sub-transform of 2001
// points or more first completes each of its parts, then runs its own
// level; smaller ones sweep all their levels, deepest first.
template <class T, bool Inv> void levels(const DFTCore* c, Planes<T> w, int i, std::ptrdiff_t base) {
    const FactorStage& s = c->stages[i];
    if (std::ptrdiff_t{s.radix} * s.rest >= kSweep && i < c->lastStage) {
        for (int q = 0; q < s.radix; ++q) levels<T, Inv>(c, w, i + 1, base + std::ptrdiff_t{q} * s.rest);
        level<T, Inv, false>(c, i, w, w, base, 1, T(1));
        return;
    }
    for (int j = c->lastStage; j >= i; --j) level<T, Inv, false>(c, j, w, w, base, c->stages[j].count, T(1));
}

}  // namespace

template <class T, bool Inv, class F> void runMixed(const DFTCore* c, F src, F dst, T* work) {
    const std::int64_t n = c->length;
    const Planes<T> w{work, work + planeStride<T>(n)};
    leaf<T, Inv>(c, src, w);
    if (c->lastStage >= 1) {
        const FactorStage& s = c->stages[0];
        if (n >= kSweep) {
            for (int q = 0; q < s.radix; ++q) levels<T, Inv>(c, w, 1, std::ptrdiff_t{q} * s.rest);
        } else {
            for (int j = c->lastStage; j >= 1; --j) level<T, Inv, false>(c, j, w, w, 0, c->stages[j].count, T(1));
        }
    }
    if (scaled(c, Inv)) level<T, Inv, true>(c, 0, w, dst, 0, 1, scaleOf<T>(c));
    else level<T, Inv, false>(c, 0, w, dst, 0, 1, T(1));
}


// Instances for both precisions, directions and data forms.
#define ZET_DFT_INSTANCES(T)                                                          \
    template void runCodelet<T, false>(const DFTCore*, Inter<T>, Inter<T>);           \
    template void runCodelet<T, true>(const DFTCore*, Inter<T>, Inter<T>);            \
    template void runCodelet<T, false>(const DFTCore*, Split<T>, Split<T>);           \
    template void runCodelet<T, true>(const DFTCore*, Split<T>, Split<T>);            \
    template void runMixed<T, false>(const DFTCore*, Inter<T>, Inter<T>, T*);         \
    template void runMixed<T, true>(const DFTCore*, Inter<T>, Inter<T>, T*);          \
    template void runMixed<T, false>(const DFTCore*, Split<T>, Split<T>, T*);         \
    template void runMixed<T, true>(const DFTCore*, Split<T>, Split<T>, T*);
ZET_DFT_INSTANCES(float)
ZET_DFT_INSTANCES(double)
#undef ZET_DFT_INSTANCES

}  // namespace zet::dft
