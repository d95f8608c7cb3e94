// Power-of-two complex transforms: straight-line codelets up to 64 points,
// the in-cache pass driver, and the large-order decomposition.
#include "transform/fft_core.hpp"

#include <cmath>
#include <cstring>

#include "transform/fft_passes.hpp"

namespace zet::fft {

namespace {

template <class T> constexpr bool kDbl = sizeof(T) == 8;
// Highest order of the in-cache pass driver.
template <class T> constexpr int kMidMax = kDbl<T> ? 17 : 18;
// Bytes per complex element.
template <class T> constexpr std::int64_t kElem = 2 * sizeof(T);

template <class T> T* alignUp(void* p) {
    return reinterpret_cast<T*>((reinterpret_cast<std::uintptr_t>(p) + 63) & ~std::uintptr_t{63});
}

// ---------------------------------------------------------------- codelets

// Roots for the vector codelets: row k2, lane l gets exp(-2*pi*i*n1*k2/N)
// with n1 the element that lane l holds after the load (perm order).
template <class T, int N, bool Perm> struct CodeletRoots {
    static constexpr int W = Lanes<T>::W, R = N / W;
    alignas(64) T c[R][W];
    alignas(64) T s[R][W];
    CodeletRoots() {
        for (int k2 = 0; k2 < R; ++k2)
            for (int l = 0; l < W; ++l) {
                const int n1 = Perm ? Lanes<T>::kPerm[l] : l;
                const long double a = -2.0L * 3.141592653589793238462643383279502884L * (n1 * k2 % N) / N;
                c[k2][l] = static_cast<T>(std::cos(a));
                s[k2][l] = static_cast<T>(std::sin(a));
            }
    }
};
template <class T, int N, bool Perm> const CodeletRoots<T, N, Perm> kCodeletRoots{};

template <class T, int N, bool Inv, bool Scaled, class Src, class Dst>
void codeletScalar(Src src, Dst dst, T scale) {
    CV<T> x[N];
#pragma GCC unroll 64
    for (int i = 0; i < N; ++i) x[i] = src.loadOne(i);
    dft<N, Inv>(x);
#pragma GCC unroll 64
    for (int i = 0; i < N; ++i) dst.storeOne(i, Scaled ? cscale(x[i], scale) : x[i]);
}

// N = R*W with R >= W: R-point transforms across vectors (lane = residue
// n1), the roots, W×W transposes, W-point transforms; outputs land in
// natural order.
template <class T, int N, bool Inv, bool Scaled, class Src, class Dst>
void codeletVector(Src src, Dst dst, T scale) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W, R = N / W;
    constexpr bool perm = Src::kPermuted;
    const auto& tw = kCodeletRoots<T, N, perm>;
    CV<V> x[R];
#pragma GCC unroll 16
    for (int n2 = 0; n2 < R; ++n2) x[n2] = src.loadPerm(n2 * W);
    dft<R, Inv>(x);
#pragma GCC unroll 16
    for (int k2 = 1; k2 < R; ++k2) x[k2] = cmulw<Inv>(x[k2], L::load(tw.c[k2]), L::load(tw.s[k2]));
    const V s = L::set1(scale);
#pragma GCC unroll 4
    for (int b = 0; b < R / W; ++b) {
        V re[W], im[W];
#pragma GCC unroll 8
        for (int i = 0; i < W; ++i) { re[i] = x[b * W + i].re; im[i] = x[b * W + i].im; }
        L::transpose(re);
        L::transpose(im);
        CV<V> y[W];
#pragma GCC unroll 8
        for (int l = 0; l < W; ++l) y[Src::perm(l)] = {re[l], im[l]};
        dft<W, Inv>(y);
#pragma GCC unroll 8
        for (int k1 = 0; k1 < W; ++k1) dst.storeNat(R * k1 + b * W, Scaled ? cscale(y[k1], s) : y[k1]);
    }
}

template <class T, int N, bool Inv, bool Scaled, class Src, class Dst>
void codelet(Src src, Dst dst, T scale) {
    if constexpr (N / Lanes<T>::W >= Lanes<T>::W)
        codeletVector<T, N, Inv, Scaled>(src, dst, scale);
    else
        codeletScalar<T, N, Inv, Scaled>(src, dst, scale);
}

template <class T, bool Inv, bool Scaled, class Src, class Dst>
void runCodelet(int order, Src src, Dst dst, T scale) {
    switch (order) {
        case 0: codelet<T, 1, Inv, Scaled>(src, dst, scale); break;
        case 1: codelet<T, 2, Inv, Scaled>(src, dst, scale); break;
        case 2: codelet<T, 4, Inv, Scaled>(src, dst, scale); break;
        case 3: codelet<T, 8, Inv, Scaled>(src, dst, scale); break;
        case 4: codelet<T, 16, Inv, Scaled>(src, dst, scale); break;
        case 5: codelet<T, 32, Inv, Scaled>(src, dst, scale); break;
        default: codelet<T, 64, Inv, Scaled>(src, dst, scale); break;
    }
}

// ------------------------------------------------------------- large form

// log2 N1 and the log size of a column block, by order.
template <class T> void levelParams(int order, int& k, int& b) {
    if (!kDbl<T>) { k = order <= 22 ? 4 : 8; b = order <= 22 ? 10 : 14; }
    else { k = order <= 21 ? 4 : 8; b = order <= 21 ? 9 : 13; }
}
// Leaves at or above this order split again.
constexpr int kLeafSplit = 19;
// Tile side (log2) of the bit-reversal permutation: 64 single, 32 double.
template <class T> constexpr int kTileLog = kDbl<T> ? 5 : 6;

// Bit reversal of all `order` bits, src to dst, tile by tile: tile m of the
// destination is tile rev(m) of the source, transposed with both in-tile
// indices reversed. Tiles go through the work buffer so that every strided
// access moves whole rows. In place, tile pairs are swapped.
template <class E>
void permuteTiles(const E* src, E* dst, int order, int tlog, const std::int32_t* rev, E* work) {
    const std::ptrdiff_t tn = std::ptrdiff_t{1} << tlog, rowStride = std::ptrdiff_t{1} << (order - tlog);
    const std::ptrdiff_t tiles = std::ptrdiff_t{1} << (order - 2 * tlog);
    int rt[64];
    for (int i = 0; i < tn; ++i) rt[i] = revBits(i, tlog);
    E* b0 = work;
    E* b1 = work + tn * tn;
    auto gather = [&](const E* base, std::ptrdiff_t m, E* buf) {
        for (std::ptrdiff_t r = 0; r < tn; ++r) std::memcpy(buf + r * tn, base + r * rowStride + (m << tlog), tn * sizeof(E));
    };
    auto emit = [&](const E* buf, std::ptrdiff_t m) {
        for (std::ptrdiff_t a = 0; a < tn; ++a) {
            E* row = dst + a * rowStride + (m << tlog);
            const E* col = buf + rt[a];
            for (std::ptrdiff_t c = 0; c < tn; ++c) row[c] = col[rt[c] * tn];
        }
    };
    for (std::ptrdiff_t m = 0; m < tiles; ++m) {
        const std::ptrdiff_t mr = rev[m] >> tlog;
        if (src != dst) {
            gather(src, mr, b0);
            emit(b0, m);
        } else if (m == mr) {
            gather(dst, m, b0);
            emit(b0, m);
        } else if (m < mr) {
            gather(dst, m, b0);
            gather(dst, mr, b1);
            emit(b1, m);
            emit(b0, mr);
        }
    }
}

template <class E> struct Pair { E a, b; };

template <class T> void permute(Inter<T> src, Inter<T> dst, int order, const std::int32_t* rev, T* work) {
    using E = Pair<T>;
    permuteTiles(reinterpret_cast<const E*>(src.p), reinterpret_cast<E*>(dst.p), order, kTileLog<T>, rev,
                 reinterpret_cast<E*>(work));
}
template <class T> void permute(Split<T> src, Split<T> dst, int order, const std::int32_t* rev, T* work) {
    permuteTiles<T>(src.re, dst.re, order, kTileLog<T>, rev, work);
    permuteTiles<T>(src.im, dst.im, order, kTileLog<T>, rev, work);
}

// A leaf: the in-cache passes over a contiguous run that already holds its
// input in bit-reversed order, in place, with the work buffer as area.
template <class T, bool Inv, class D>
void leaf(const FFTCore* c, D sub, int m, T* work) {
    const Area<T> a = Area<T>::blocked(work);
    firstPassReversed<T, Inv>(sub, a, m);
    runPasses<T, Inv, false>(a, sub, m, static_cast<const T*>(c->leafTwiddles), T(1));
}

// The N1-point transforms down the rows of a gathered block (W lanes per
// vector, `wv` vectors per row): 16 directly, 256 as 16 by 16 whose outputs
// are left nibble-swapped for the scatter to undo.
template <class T, bool Inv>
void rowTransforms(Area<T> blk, int k, std::ptrdiff_t wv) {
    using V = typename Lanes<T>::V;
    CV<V> x[16];
    if (k == 4) {
        for (std::ptrdiff_t v = 0; v < wv; ++v) {
            for (int r = 0; r < 16; ++r) x[r] = blk.ld(r * wv + v);
            dft<16, Inv>(x);
            for (int r = 0; r < 16; ++r) blk.st(r * wv + v, x[r]);
        }
        return;
    }
    const UnitRoots<T>& u = roots<T>();
    for (std::ptrdiff_t v = 0; v < wv; ++v) {
        for (int a = 0; a < 16; ++a) {
            for (int r = 0; r < 16; ++r) x[r] = blk.ld((a + 16 * r) * wv + v);
            dft<16, Inv>(x);
            for (int r = 0; r < 16; ++r) {
                CV<V> y = x[r];
                if (a && r) y = cmulw<Inv>(y, splat<V>(&u.c[a * r]), splat<V>(&u.s[a * r]));
                blk.st((a + 16 * r) * wv + v, y);
            }
        }
        for (int k2 = 0; k2 < 16; ++k2) {
            for (int a = 0; a < 16; ++a) x[a] = blk.ld((a + 16 * k2) * wv + v);
            dft<16, Inv>(x);
            for (int k1 = 0; k1 < 16; ++k1) blk.st((16 * k2 + k1) * wv + v, x[k1]);
        }
    }
}

template <class T, bool Inv, class D>
void columnPass(const FFTCore* c, D data, int order, int depth, T* work, bool scaled, T scale) {
    using L = Lanes<T>;
    using V = typename L::V;
    constexpr int W = L::W;
    int k, b;
    levelParams<T>(order, k, b);
    const int m = order - k;
    const std::ptrdiff_t n1 = std::ptrdiff_t{1} << k, n2 = std::ptrdiff_t{1} << m;
    for (std::ptrdiff_t s = 0; s < n1; ++s) {
        if (m >= kLeafSplit)
            columnPass<T, Inv>(c, data.at(s * n2), m, depth + 1, work, false, T(1));
        else
            leaf<T, Inv>(c, data.at(s * n2), m, work);
    }
    const std::ptrdiff_t w = std::ptrdiff_t{1} << (b - k), wv = w / W;
    const T* A = static_cast<const T*>(c->levelTwiddles[depth]);
    const T* B = static_cast<const T*>(c->levelCoarse[depth]);
    const Area<T> blk = Area<T>::blocked(work);
    const V sv = L::set1(scale);
    for (std::ptrdiff_t c0 = 0; c0 < n2; c0 += w, B += 2 * n1) {
        // Gather with the roots exp(-2*pi*i*n1*c/N): row n1 of the block is
        // sub-array rev(n1), whose transform belongs to input residue n1.
        for (std::ptrdiff_t r = 0; r < n1; ++r) {
            const std::ptrdiff_t row = revBits(static_cast<int>(r), k);
            const V bc = L::set1(B[2 * r]), bs = L::set1(B[2 * r + 1]);
            for (std::ptrdiff_t v = 0; v < wv; ++v) {
                CV<V> x = data.loadNat(row * n2 + c0 + v * W);
                if (r) {
                    const T* a = A + r * 2 * w + v * W;
                    // Product of two forward roots is the forward root of the sum.
                    const CV<V> t = cmulw<false>(CV<V>{L::load(a), L::load(a + w)}, bc, bs);
                    x = cmulw<Inv>(x, t.re, t.im);
                }
                blk.st(r * wv + v, x);
            }
        }
        rowTransforms<T, Inv>(blk, k, wv);
        for (std::ptrdiff_t r = 0; r < n1; ++r) {
            const std::ptrdiff_t out = k == 4 ? r : ((r & 15) << 4) | (r >> 4);
            for (std::ptrdiff_t v = 0; v < wv; ++v) {
                CV<V> x = blk.ld(r * wv + v);
                if (scaled) x = cscale(x, sv);
                data.storeNat(out * n2 + c0 + v * W, x);
            }
        }
    }
}

template <class T, bool Inv, class Src, class Dst>
void large(const FFTCore* c, int order, Src src, Dst dst, T* work, bool scaled, T scale) {
    permute(src, dst, order, c->bitReverse, work);
    columnPass<T, Inv>(c, dst, order, 0, work, scaled, scale);
}

// ---------------------------------------------------------------- dispatch

// The transform of `order` on the core's tables; a real core runs its
// half-length transform through here with the real length's factor.
template <class T, bool Inv, class Src, class Dst>
void execute(const FFTCore* c, int order, bool scaled, T scale, Src src, Dst dst, bool shared, bool dstAligned,
             T* work) {
    if (order <= 6) {
        if (scaled) runCodelet<T, Inv, true>(order, src, dst, scale);
        else runCodelet<T, Inv, false>(order, src, dst, scale);
        return;
    }
    if (order <= kMidMax<T>) {
        // Intermediate passes in the destination when it is separate and
        // aligned; otherwise in the work buffer.
        const Area<T> a = (!shared && dstAligned) ? areaOf(dst) : Area<T>::blocked(work);
        firstPassGather<T, Inv>(src, a, order, c->bitReverse);
        const T* table = static_cast<const T*>(c->twiddles);
        if (scaled) runPasses<T, Inv, true>(a, dst, order, table, scale);
        else runPasses<T, Inv, false>(a, dst, order, table, scale);
        return;
    }
    large<T, Inv>(c, order, src, dst, work, scaled, scale);
}

template <class T, bool Inv, class Src, class Dst>
void execute(const FFTCore* c, Src src, Dst dst, bool shared, bool dstAligned, T* work) {
    const T scale = kDbl<T> ? static_cast<T>(c->scale64) : static_cast<T>(c->scale32);
    execute<T, Inv>(c, c->order, Inv ? c->scaleInverse != 0 : c->scaleForward != 0, scale, src, dst, shared,
                    dstAligned, work);
}

bool aligned32(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 31) == 0; }

template <class T, bool Inv>
ZetStatus interleaved(const T* src, T* dst, const FFTCore* c, Zet8u* work, std::int32_t id) {
    if (auto s = coreChecks(c, id, 6, !src || !dst, work)) return s;
    execute<T, Inv>(c, Inter<T>{const_cast<T*>(src)}, Inter<T>{dst}, src == dst, aligned32(dst),
                    reinterpret_cast<T*>(work));
    return zetStsOk;
}

template <class T, bool Inv>
ZetStatus split(const T* sre, const T* sim, T* dre, T* dim, const FFTCore* c, Zet8u* work, std::int32_t id) {
    if (auto s = coreChecks(c, id, 6, !sre || !sim || !dre || !dim, work)) return s;
    const bool shared = sre == dre || sim == dim || sre == dim || sim == dre;
    execute<T, Inv>(c, Split<T>{const_cast<T*>(sre), const_cast<T*>(sim)}, Split<T>{dre, dim}, shared,
                    aligned32(dre) && aligned32(dim), reinterpret_cast<T*>(work));
    return zetStsOk;
}

// -------------------------------------------------------------------- init

// Sizes of the large form's recursion below the core: transform object, work.
void largeSizes(bool dbl, int order, std::int64_t& spec, std::int64_t& work) {
    const std::int64_t e = dbl ? 16 : 8;
    int k, b;
    if (dbl) levelParams<double>(order, k, b); else levelParams<float>(order, k, b);
    const int r = order - k;
    if (r < kLeafSplit) {
        spec = (e * (std::int64_t{1} << r) + 71) & ~std::int64_t{63};
        work = align64(e * (std::int64_t{1} << r));
    } else {
        largeSizes(dbl, r, spec, work);
    }
    spec += e * (std::int64_t{1} << (order - 1));
    if (work < (e << b)) work = e << b;
}

}  // namespace

ZetStatus coreChecks(const FFTCore* c, std::int32_t id, int noWorkTo, bool dataNull, Zet8u*& work) {
    if (!c) return zetStsNullPtrErr;
    if (c->id != id) return zetStsSpecMismatchErr;
    if (c->workBytes <= 0 && c->order > noWorkTo) return zetStsMemErr;
    if (dataNull) return zetStsNullPtrErr;
    if (c->workBytes > 0) {
        if (!work) return zetStsNullPtrErr;
        work = alignUp<Zet8u>(work);
    } else {
        work = nullptr;
    }
    return zetStsOk;
}

ZetStatus coreHeader(FFTCore* c, int order, int flag, std::int64_t n, std::int32_t id) {
    std::memset(c, 0, sizeof(FFTCore));
    c->id = id;
    c->order = order;
    switch (flag) {
        case ZET_SCALE_FWD: c->scaleForward = 1; break;
        case ZET_SCALE_INV: c->scaleInverse = 1; break;
        case ZET_SCALE_SYM: c->scaleForward = c->scaleInverse = 1; break;
        case ZET_SCALE_NONE: break;
        default: c->id = 0; return zetStsFFTFlagErr;
    }
    if (flag == ZET_SCALE_SYM) {
        c->scale64 = 1.0 / std::sqrt(static_cast<double>(static_cast<std::int32_t>(n)));
        c->scale32 = static_cast<float>(c->scale64);
    } else if (flag != ZET_SCALE_NONE) {
        c->scale64 = 1.0 / static_cast<double>(n);
        c->scale32 = 1.0f / static_cast<float>(n);
    }
    return zetStsOk;
}

template <class T>
ZetStatus sineFor(int order, Zet8u* initBuf, Sine<T>& sine) {
    sine = {sineTable1024(T()), 10};
    if (order <= 10) return zetStsOk;
    if (!initBuf) return zetStsNullPtrErr;
    T* s = alignUp<T>(initBuf);
    buildSine(s, order);
    sine = {s, order};
    return zetStsOk;
}
template ZetStatus sineFor(int, Zet8u*, Sine<float>&);
template ZetStatus sineFor(int, Zet8u*, Sine<double>&);

template <class T>
void coreTables(FFTCore* c, int order, const Sine<T>& sine) {
    const std::int64_t n = std::int64_t{1} << order;
    constexpr int W = Lanes<T>::W;
    Zet8u* mem = reinterpret_cast<Zet8u*>(c) + 256;
    if (order <= kMidMax<T>) {
        c->bitReverse = reinterpret_cast<std::int32_t*>(mem);
        buildBitReverse(c->bitReverse, order);
        T* tw = alignUp<T>(mem + 4 * (n / 4) + 4);
        c->twiddles = tw;
        buildPassTable(tw, order, sine, W);
        c->workBytes = static_cast<std::int32_t>(align64(kElem<T> * n));
        return;
    }
    // Large form: middle-bit reversal of the tiles, the leaf's pass table,
    // then per level the lane roots (A) and the column-group roots (B).
    const int tl = kTileLog<T>;
    const std::int64_t tiles = std::int64_t{1} << (order - 2 * tl);
    c->bitReverse = reinterpret_cast<std::int32_t*>(mem);
    for (std::int64_t i = 0; i < tiles; ++i) c->bitReverse[i] = revBits(static_cast<int>(i), order - 2 * tl) << tl;
    mem = reinterpret_cast<Zet8u*>(alignUp<T>(mem + 4 * tiles));
    int lo = order, depth = 0;
    std::int64_t work = 0;
    for (;;) {
        int k, b;
        levelParams<T>(lo, k, b);
        const std::int64_t n1 = std::int64_t{1} << k, w = std::int64_t{1} << (b - k);
        const std::int64_t n2 = std::int64_t{1} << (lo - k);
        T* A = reinterpret_cast<T*>(mem);
        for (std::int64_t r = 0; r < n1; ++r)
            for (std::int64_t l = 0; l < w; ++l) sine.root(r * l, lo, A[r * 2 * w + l], A[r * 2 * w + w + l]);
        T* B = alignUp<T>(A + n1 * 2 * w);
        for (std::int64_t c0 = 0, i = 0; c0 < n2; c0 += w)
            for (std::int64_t r = 0; r < n1; ++r, i += 2) sine.root(r * c0, lo, B[i], B[i + 1]);
        c->levelTwiddles[depth] = A;
        c->levelCoarse[depth] = B;
        mem = reinterpret_cast<Zet8u*>(alignUp<T>(B + 2 * (n2 / w) * n1));
        if (work < (kElem<T> << b)) work = kElem<T> << b;
        ++depth;
        lo -= k;
        if (lo < kLeafSplit) break;
    }
    T* leafTw = reinterpret_cast<T*>(mem);
    buildPassTable(leafTw, lo, Sine<T>{sine.S, sine.log}, W);
    c->leafTwiddles = leafTw;
    if (work < kElem<T> << lo) work = kElem<T> << lo;
    const std::int64_t floor = kDbl<T> ? 32768 : 65536;
    if (work < floor) work = floor;
    c->workBytes = static_cast<std::int32_t>(work);
}
template void coreTables(FFTCore*, int, const Sine<float>&);
template void coreTables(FFTCore*, int, const Sine<double>&);

template <class T, bool Inv>
void complexPass(const FFTCore* c, int order, const T* src, T* dst, T* work, bool scaled, T scale) {
    execute<T, Inv>(c, order, scaled, scale, Inter<T>{const_cast<T*>(src)}, Inter<T>{dst}, src == dst,
                    aligned32(dst), work);
}
template void complexPass<float, false>(const FFTCore*, int, const float*, float*, float*, bool, float);
template void complexPass<float, true>(const FFTCore*, int, const float*, float*, float*, bool, float);
template void complexPass<double, false>(const FFTCore*, int, const double*, double*, double*, bool, double);
template void complexPass<double, true>(const FFTCore*, int, const double*, double*, double*, bool, double);

namespace {

template <class T>
ZetStatus coreInit(FFTCore* c, int order, int flag, Zet8u* initBuf, std::int32_t id) {
    const std::int64_t n = std::int64_t{1} << order;
    if (auto s = coreHeader(c, order, flag, n, id)) return s;
    if (order < 7) return zetStsOk;
    Sine<T> sine;
    if (auto s = sineFor(order, initBuf, sine)) return s;
    coreTables<T>(c, order, sine);
    return zetStsOk;
}

}  // namespace

CoreSizes coreSizes(bool dbl, int order) {
    const std::int64_t n = std::int64_t{1} << order;
    const std::int64_t q = ((n & ~std::int64_t{3}) + 67) & ~std::int64_t{63};
    const std::int64_t sineInit = dbl ? ((((2 * n) & ~std::int64_t{7}) + 71) & ~std::int64_t{63}) : q;
    if (order <= 6) return {208, 0, 0};
    const int midMax = dbl ? 17 : 18;
    if (order <= midMax) {
        const std::int64_t e = dbl ? 16 : 8;
        const std::int64_t spec = ((e * n + (dbl ? 79 : 71)) & ~std::int64_t{63}) + q + 256;
        return {spec, order > 10 ? sineInit + 64 : 0, align64(e * n) + 64};
    }
    std::int64_t spec, work;
    largeSizes(dbl, order, spec, work);
    spec += dbl ? (std::int64_t{4} << (order - 10)) + 1088 : (std::int64_t{4} << (order - 12)) + 4160;
    const std::int64_t floor = dbl ? 32768 : 65536;
    if (work < floor) work = floor;
    spec += q;
    return {spec + 256, sineInit + 64, work + 64};
}

ZetStatus coreInit32(FFTCore* c, int order, int flag, Zet8u* initBuf) { return coreInit<float>(c, order, flag, initBuf, kCore32fc); }
ZetStatus coreInit64(FFTCore* c, int order, int flag, Zet8u* initBuf) { return coreInit<double>(c, order, flag, initBuf, kCore64fc); }

ZetStatus fwd32fc(const Zet32fc* s, Zet32fc* d, const FFTCore* c, Zet8u* w) {
    return interleaved<float, false>(reinterpret_cast<const float*>(s), reinterpret_cast<float*>(d), c, w, kCore32fc);
}
ZetStatus inv32fc(const Zet32fc* s, Zet32fc* d, const FFTCore* c, Zet8u* w) {
    return interleaved<float, true>(reinterpret_cast<const float*>(s), reinterpret_cast<float*>(d), c, w, kCore32fc);
}
ZetStatus fwd64fc(const Zet64fc* s, Zet64fc* d, const FFTCore* c, Zet8u* w) {
    return interleaved<double, false>(reinterpret_cast<const double*>(s), reinterpret_cast<double*>(d), c, w, kCore64fc);
}
ZetStatus inv64fc(const Zet64fc* s, Zet64fc* d, const FFTCore* c, Zet8u* w) {
    return interleaved<double, true>(reinterpret_cast<const double*>(s), reinterpret_cast<double*>(d), c, w, kCore64fc);
}
ZetStatus fwd32f(const Zet32f* sr, const Zet32f* si, Zet32f* dr, Zet32f* di, const FFTCore* c, Zet8u* w) {
    return split<float, false>(sr, si, dr, di, c, w, kCore32f);
}
ZetStatus inv32f(const Zet32f* sr, const Zet32f* si, Zet32f* dr, Zet32f* di, const FFTCore* c, Zet8u* w) {
    return split<float, true>(sr, si, dr, di, c, w, kCore32f);
}
ZetStatus fwd64f(const Zet64f* sr, const Zet64f* si, Zet64f* dr, Zet64f* di, const FFTCore* c, Zet8u* w) {
    return split<double, false>(sr, si, dr, di, c, w, kCore64f);
}
ZetStatus inv64f(const Zet64f* sr, const Zet64f* si, Zet64f* dr, Zet64f* di, const FFTCore* c, Zet8u* w) {
    return split<double, true>(sr, si, dr, di, c, w, kCore64f);
}

}  // namespace zet::fft
