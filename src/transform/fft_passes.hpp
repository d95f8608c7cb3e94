// The pass driver of the power-of-two transform and the storage forms it
// reads and writes. Intermediate passes work on a split-form area: blocks of
// W complex values, the W real parts at re + b*S and the W imaginary parts at
// im + b*S. For interleaved data the area is one buffer of blocks [re | im],
// which occupy exactly the bytes of the same W interleaved values, so that
// the last pass can write the destination in place of the area.
#pragma once

#include <cstddef>
#include <cstdint>

#include "transform/fft_kernels.hpp"
#include "transform/fft_tables.hpp"

namespace zet::fft {

template <class T> struct Area {
    using L = Lanes<T>;
    using V = typename L::V;
    T* re;
    T* im;
    std::ptrdiff_t S;
    CV<V> ld(std::ptrdiff_t b) const { return {L::load(re + b * S), L::load(im + b * S)}; }
    void st(std::ptrdiff_t b, CV<V> v) const { L::store(re + b * S, v.re); L::store(im + b * S, v.im); }
    static Area blocked(T* base) { return {base, base + L::W, 2 * L::W}; }
};

// Interleaved data: element i at p[2i], p[2i+1].
template <class T> struct Inter {
    using L = Lanes<T>;
    using V = typename L::V;
    T* p;
    static constexpr bool kPermuted = true;
    static constexpr int perm(int l) { return L::kPerm[l]; }
    // W elements from i, lanes in perm() order.
    CV<V> loadPerm(std::ptrdiff_t i) const { CV<V> v; L::deinterleave(p + 2 * i, v.re, v.im); return v; }
    CV<V> loadNat(std::ptrdiff_t i) const { CV<V> v = loadPerm(i); return {L::natural(v.re), L::natural(v.im)}; }
    void storeNat(std::ptrdiff_t i, CV<V> v) const { L::interleave(p + 2 * i, v.re, v.im); }
    CV<T> loadOne(std::ptrdiff_t i) const { return {p[2 * i], p[2 * i + 1]}; }
    void storeOne(std::ptrdiff_t i, CV<T> v) const { p[2 * i] = v.re; p[2 * i + 1] = v.im; }
    Inter at(std::ptrdiff_t i) const { return {p + 2 * i}; }
};

// Split data: real parts in re[], imaginary parts in im[].
template <class T> struct Split {
    using L = Lanes<T>;
    using V = typename L::V;
    T* re;
    T* im;
    static constexpr bool kPermuted = false;
    static constexpr int perm(int l) { return l; }
    CV<V> loadPerm(std::ptrdiff_t i) const { return {L::load(re + i), L::load(im + i)}; }
    CV<V> loadNat(std::ptrdiff_t i) const { return loadPerm(i); }
    void storeNat(std::ptrdiff_t i, CV<V> v) const { L::store(re + i, v.re); L::store(im + i, v.im); }
    CV<T> loadOne(std::ptrdiff_t i) const { return {re[i], im[i]}; }
    void storeOne(std::ptrdiff_t i, CV<T> v) const { re[i] = v.re; im[i] = v.im; }
    Split at(std::ptrdiff_t i) const { return {re + i, im + i}; }
};

// Area view of a destination, for when the destination itself can hold the
// intermediate passes.
template <class T> inline Area<T> areaOf(Inter<T> d) { return Area<T>::blocked(d.p); }
template <class T> inline Area<T> areaOf(Split<T> d) { return {d.re, d.im, Lanes<T>::W}; }

// Keeps the array behind `p` in memory at this point, so that the phases of
// a 16-point transform run one after another through an L1 tile rather than
// as one block of 32 live registers that spills at random.
template <class P> [[gnu::always_inline]] inline void inMemory(P* p) { asm volatile("" : : "r"(p) : "memory"); }

template <bool Inv, int T, class V, class Load>
[[gnu::always_inline]] inline void sixteenA(Load& load, CV<V>* y) {
    CV<V> u0 = load(T), u1 = load(T + 4), u2 = load(T + 8), u3 = load(T + 12);
    bfly4<Inv>(u0, u1, u2, u3);
    y[4 * T] = u0;
    y[4 * T + 1] = rootMul<16, T, Inv>(u1);
    y[4 * T + 2] = rootMul<16, 2 * T, Inv>(u2);
    y[4 * T + 3] = rootMul<16, 3 * T, Inv>(u3);
}
template <bool Inv, int K, class V>
[[gnu::always_inline]] inline void sixteenB(const CV<V>* y, CV<V>* x) {
    CV<V> a0 = y[K], a1 = y[4 + K], a2 = y[8 + K], a3 = y[12 + K];
    bfly4<Inv>(a0, a1, a2, a3);
    x[K] = a0; x[K + 4] = a1; x[K + 8] = a2; x[K + 12] = a3;
}
// 16-point transforms across lanes, input f from load(f), natural order out
// into x: four 4-point transforms over the residues mod 4, the roots, four
// more.
template <bool Inv, class V, class Load>
[[gnu::always_inline]] inline void sixteen(Load load, CV<V>* x) {
    alignas(64) CV<V> y[16];
    sixteenA<Inv, 0>(load, y); sixteenA<Inv, 1>(load, y); sixteenA<Inv, 2>(load, y); sixteenA<Inv, 3>(load, y);
    inMemory(y);
    sixteenB<Inv, 0>(y, x); sixteenB<Inv, 1>(y, x); sixteenB<Inv, 2>(y, x); sixteenB<Inv, 3>(y, x);
    inMemory(x);
}

// Stores the W×(16/W) transposed outputs of a 16-point first pass: x[e] holds
// element e of W groups (lane l for group group(l)); group g occupies blocks
// 16g/W .. 16g/W + 16/W - 1 of the area.
template <class T, class GroupOf>
inline void storeGroups(Area<T> a, CV<typename Lanes<T>::V>* x, GroupOf group) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W, H = 16 / W;
    std::ptrdiff_t at[W];
#pragma GCC unroll 8
    for (int l = 0; l < W; ++l) at[l] = std::ptrdiff_t{group(l)} * H * a.S;
#pragma GCC unroll 4
    for (int h = 0; h < H; ++h) {
        V re[W], im[W];
#pragma GCC unroll 8
        for (int i = 0; i < W; ++i) { re[i] = x[h * W + i].re; im[i] = x[h * W + i].im; }
        L::transposeStore(re, [&](int l) { return a.re + at[l] + h * a.S; });
        L::transposeStore(im, [&](int l) { return a.im + at[l] + h * a.S; });
    }
}

// First pass with the bit-reversed read: the first four bits as 16-point
// transforms across lanes, one lane per group, W groups whose sources are
// consecutive, then transposed into the groups' blocks.
template <class T, bool Inv, class Src>
void firstPassGather(Src src, Area<T> a, int order, const std::int32_t* rev) {
    using V = typename Lanes<T>::V;
    constexpr int W = Lanes<T>::W;
    const std::ptrdiff_t stride = std::ptrdiff_t{1} << (order - 4);
    for (std::ptrdiff_t r0 = 0; r0 < stride; r0 += W) {
        alignas(64) CV<V> x[16];
        sixteen<Inv, V>([&](int f) { return src.loadPerm(r0 + f * stride); }, x);
        storeGroups<T>(a, x, [&](int l) { return rev[4 * (r0 + Src::perm(l))] >> 1; });
    }
}

// First pass over data already in bit-reversed order (the large form's
// leaves): groups of 16 are contiguous, so W of them are loaded and turned
// into lanes before the same 16-point transforms.
template <class T, bool Inv, class Src>
void firstPassReversed(Src src, Area<T> a, int order) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W, H = 16 / W;
    const std::ptrdiff_t groups = std::ptrdiff_t{1} << (order - 4);
    for (std::ptrdiff_t g0 = 0; g0 < groups; g0 += W) {
        alignas(64) CV<V> x[16];
#pragma GCC unroll 4
        for (int h = 0; h < H; ++h) {
            V re[W], im[W];
#pragma GCC unroll 8
            for (int l = 0; l < W; ++l) {
                CV<V> v = src.loadNat((g0 + l) * 16 + h * W);
                re[l] = v.re;
                im[l] = v.im;
            }
            L::transpose(re);
            L::transpose(im);
            // Position e holds input rev4(e): place it at its natural index.
#pragma GCC unroll 8
            for (int i = 0; i < W; ++i) x[revBits(h * W + i, 4)] = {re[i], im[i]};
        }
        // The first phase reads all of x before the second writes it back.
        sixteen<Inv, V>([&](int f) { return x[f]; }, x);
        storeGroups<T>(a, x, [&](int l) { return g0 + l; });
    }
}

// The R inputs of a butterfly. Consecutive groups of a bit-reversed array
// hold the sub-transforms of bit-reversed residues, so position p feeds
// input rev(p), which takes the root of that residue.
template <class T, int R, bool Inv, class Load>
inline void loadTwiddled(CV<typename Lanes<T>::V>* x, Load load, const T* tw) {
    using L = Lanes<T>;
    constexpr int W = L::W, lg = R == 8 ? 3 : 2;
    x[0] = load(0);
#pragma GCC unroll 8
    for (int p = 1; p < R; ++p) {
        const int s = revBits(p, lg);
        x[s] = cmulw<Inv>(load(p), L::load(tw + 2 * W * (s - 1)), L::load(tw + 2 * W * (s - 1) + W));
    }
}

// a + w*b with w = c + i*s (conjugated for the inverse), as fused
// multiply-adds.
template <bool Inv, class V> [[gnu::always_inline]] inline CV<V> addMul(CV<V> a, CV<V> b, V c, V s) {
    if constexpr (!Inv) return {fmsub(b.re, c, fmsub(b.im, s, a.re)), fmadd(b.re, s, fmadd(b.im, c, a.im))};
    else return {fmadd(b.re, c, fmadd(b.im, s, a.re)), fmsub(b.im, c, fmsub(b.re, s, a.im))};
}
// 2a - y, the other output of a butterfly whose first output is y = a + t.
template <class V> [[gnu::always_inline]] inline CV<V> mirror(CV<V> a, CV<V> y, V two) {
    return {fmsub(a.re, two, y.re), fmsub(a.im, two, y.im)};
}

// Radix-4 butterfly with its roots, built from fused multiply-adds: inputs at
// positions 0..3 hold residues 0, 2, 1, 3, so position 1 and 3 take w^2 and
// the pair sum of positions 2 and 3 takes w. 24 operations per four vectors
// where a multiply-then-butterfly takes 28.
template <class T, bool Inv>
[[gnu::always_inline]] inline void fusedRadix4(CV<typename Lanes<T>::V>* x, const T* tw) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    const V c1 = L::load(tw), s1 = L::load(tw + W);
    const V c2 = L::load(tw + 2 * W), s2 = L::load(tw + 3 * W);
    const V two = L::set1(T(2));
    const CV<V> t0 = addMul<Inv>(x[0], x[1], c2, s2), t1 = mirror(x[0], t0, two);
    const CV<V> u0 = addMul<Inv>(x[2], x[3], c2, s2), u1 = mirror(x[2], u0, two);
    x[0] = addMul<Inv>(t0, u0, c1, s1);
    x[2] = mirror(t0, x[0], two);
    // t1 -/+ i*w*u1: the root -i*w has the parts (s, -c), and so does the
    // conjugate of +i*conj(w) that the inverse form applies.
    x[1] = addMul<Inv>(t1, u1, s1, neg(c1));
    x[3] = mirror(t1, x[1], two);
}

// One butterfly of a pass: the R inputs from load(position), the roots of
// this run at tw, the outputs in x in natural order.
template <class T, int R, bool Inv, class Load>
[[gnu::always_inline]] inline void butterfly(CV<typename Lanes<T>::V>* x, Load load, const T* tw) {
    if constexpr (R == 4) {
#pragma GCC unroll 4
        for (int t = 0; t < R; ++t) x[t] = load(t);
        fusedRadix4<T, Inv>(x, tw);
    } else {
        loadTwiddled<T, R, Inv>(x, load, tw);
        dft<R, Inv>(x);
    }
}

// One radix-R decimation-in-time pass over the area's blocks [lo, hi), groups
// of 2^done elements combined R at a time. Returns the table position after
// this pass's twiddles.
template <class T, int R, bool Inv>
const T* radixPass(Area<T> a, std::ptrdiff_t lo, std::ptrdiff_t hi, int done, const T* tw) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    const std::ptrdiff_t qb = (std::ptrdiff_t{1} << done) / W, span = R * qb;
    for (std::ptrdiff_t jb = 0; jb < qb; ++jb, tw += 2 * W * (R - 1)) {
        for (std::ptrdiff_t base = lo + jb; base < hi; base += span) {
            CV<V> x[R];
            butterfly<T, R, Inv>(x, [&](int p) { return a.ld(base + p * qb); }, tw);
#pragma GCC unroll 8
            for (int t = 0; t < R; ++t) a.st(base + t * qb, x[t]);
        }
    }
    return tw;
}

// The last pass: one group, written to the destination, scaled if asked.
template <class T, int R, bool Inv, bool Scaled, class Dst>
void lastPass(Area<T> a, Dst dst, int done, const T* tw, T scale) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    const std::ptrdiff_t qb = (std::ptrdiff_t{1} << done) / W;
    const V s = L::set1(scale);
    for (std::ptrdiff_t jb = 0; jb < qb; ++jb, tw += 2 * W * (R - 1)) {
        CV<V> x[R];
        butterfly<T, R, Inv>(x, [&](int p) { return a.ld(jb + p * qb); }, tw);
#pragma GCC unroll 8
        for (int t = 0; t < R; ++t) {
            CV<V> y = x[t];
            if constexpr (Scaled) y = cscale(y, s);
            dst.storeNat((jb + t * qb) * W, y);
        }
    }
}

// Passes after the first, from 4 bits to `order`: depth-first inside blocks
// of 2^blockLog elements where the order exceeds a block, then across the
// array, then the last pass into `dst`.
template <class T, bool Inv, bool Scaled, class Dst>
void runPasses(Area<T> a, Dst dst, int order, const T* table, T scale) {
    constexpr bool dbl = sizeof(T) == 8;
    constexpr int W = Lanes<T>::W;
    const std::ptrdiff_t blocks = (std::ptrdiff_t{1} << order) / W;
    const T* tw = table + 32;
    int done = 4;
    const int bl = blockLog(dbl);
    if (order > bl) {
        const std::ptrdiff_t span = (std::ptrdiff_t{1} << bl) / W;
        int d = done;
        const T* end = tw;
        for (std::ptrdiff_t lo = 0; lo < blocks; lo += span) {
            d = done;
            const T* p = tw;
            for (;;) {
                const int r = radixAt(dbl, order, d), bits = r == 8 ? 3 : 2;
                if (d + bits > bl || d + bits >= order) break;
                p = r == 8 ? radixPass<T, 8, Inv>(a, lo, lo + span, d, p) : radixPass<T, 4, Inv>(a, lo, lo + span, d, p);
                d += bits;
            }
            end = p;
        }
        tw = end;
        done = d;
    }
    for (;;) {
        const int r = radixAt(dbl, order, done), bits = r == 8 ? 3 : 2;
        if (done + bits >= order) break;
        tw = r == 8 ? radixPass<T, 8, Inv>(a, 0, blocks, done, tw) : radixPass<T, 4, Inv>(a, 0, blocks, done, tw);
        done += bits;
    }
    if (radixAt(dbl, order, done) == 8)
        lastPass<T, 8, Inv, Scaled>(a, dst, done, tw, scale);
    else
        lastPass<T, 4, Inv, Scaled>(a, dst, done, tw, scale);
}

}  // namespace zet::fft
