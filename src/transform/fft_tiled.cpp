// The tiled single-precision transform for 128..2048 points without scaling:
// N = n1*n2; n2-point transforms down eight columns at a time into a tile on
// the stack, the roots, a transpose, then n1-point transforms that write the
// destination in natural order. No work memory.
#include <cmath>
#include <cstdint>

#include "transform/fft_core.hpp"
#include "transform/fft_passes.hpp"

namespace zet::fft {

struct TiledPlan {
    std::int64_t inOffset, outOffset;
    std::int64_t n, stride, n1, n2;
    ZetStatus (*fwd)(const TiledPlan*, const Zet32fc*, Zet32fc*);
    ZetStatus (*inv)(const TiledPlan*, const Zet32fc*, Zet32fc*);
    const float* twiddles;
};
static_assert(sizeof(TiledPlan) <= 104, "the binding word and the object fit before the table");

namespace {

using L = Lanes<float>;
using V = L::V;

void split(int order, int& n1, int& n2) {
    static constexpr int k1[5] = {8, 16, 32, 32, 64};
    n1 = k1[order - 7];
    n2 = (1 << order) / n1;
}

template <bool Inv, int N1, int N2>
void run(const float* tw, const float* src, float* dst) {
    alignas(64) CV<V> tile[N1][N2 / 8];
    const Inter<float> in{const_cast<float*>(src)};
    for (int jg = 0; jg < N1 / 8; ++jg) {
        CV<V> x[N2];
#pragma GCC unroll 32
        for (int r = 0; r < N2; ++r) x[r] = in.loadPerm(jg * 8 + N1 * r);
        dft<N2, Inv>(x);
#pragma GCC unroll 32
        for (int k2 = 1; k2 < N2; ++k2) {
            const float* t = tw + ((k2 - 1) * (N1 / 8) + jg) * 16;
            x[k2] = cmulw<Inv>(x[k2], L::load(t), L::load(t + 8));
        }
#pragma GCC unroll 4
        for (int b = 0; b < N2 / 8; ++b) {
            V re[8], im[8];
#pragma GCC unroll 8
            for (int i = 0; i < 8; ++i) { re[i] = x[8 * b + i].re; im[i] = x[8 * b + i].im; }
            L::transpose(re);
            L::transpose(im);
#pragma GCC unroll 8
            for (int l = 0; l < 8; ++l) tile[jg * 8 + Inter<float>::perm(l)][b] = {re[l], im[l]};
        }
    }
    const Inter<float> out{dst};
    for (int b = 0; b < N2 / 8; ++b) {
        CV<V> y[N1];
#pragma GCC unroll 64
        for (int j = 0; j < N1; ++j) y[j] = tile[j][b];
        dft<N1, Inv>(y);
#pragma GCC unroll 64
        for (int k1 = 0; k1 < N1; ++k1) out.storeNat(8 * b + N2 * k1, y[k1]);
    }
}

template <bool Inv>
ZetStatus entry(const TiledPlan* p, const Zet32fc* s, Zet32fc* d) {
    const float* src = reinterpret_cast<const float*>(s);
    float* dst = reinterpret_cast<float*>(d);
    switch (p->n) {
        case 128: run<Inv, 8, 16>(p->twiddles, src, dst); break;
        case 256: run<Inv, 16, 16>(p->twiddles, src, dst); break;
        case 512: run<Inv, 32, 16>(p->twiddles, src, dst); break;
        case 1024: run<Inv, 32, 32>(p->twiddles, src, dst); break;
        default: run<Inv, 64, 32>(p->twiddles, src, dst); break;
    }
    return zetStsOk;
}

}  // namespace

std::int64_t tiledSpecBytes(int order) {
    int n1, n2;
    split(order, n1, n2);
    return 128 + align64(std::int64_t{n2 * 16 - 16} * n1);
}

void tiledBuild(TiledPlan* p, int order, float* table) {
    int n1, n2;
    split(order, n1, n2);
    const std::int64_t n = std::int64_t{1} << order;
    *p = TiledPlan{0, 0, n, 1, n1, n2, &entry<false>, &entry<true>, nullptr};
    float* t = table;
    p->twiddles = t;
    // Per row r and group of eight columns: eight cosines then eight sines of
    // pi*f, f = -2*r*j/N taken in single precision first, lanes in the order
    // of the interleaved load.
    for (int r = 1; r < n2; ++r)
        for (int jg = 0; jg < n1 / 8; ++jg, t += 16)
            for (int l = 0; l < 8; ++l) {
                const int j = jg * 8 + Inter<float>::perm(l);
                const float f = static_cast<float>(-2.0 * r * j / static_cast<double>(n));
                const double a = 3.141592653589793 * static_cast<double>(f);
                t[l] = static_cast<float>(std::cos(a));
                t[8 + l] = static_cast<float>(std::sin(a));
            }
}

ZetStatus tiledFwd(const TiledPlan* p, const Zet32fc* s, Zet32fc* d) { return p->fwd(p, s, d); }
ZetStatus tiledInv(const TiledPlan* p, const Zet32fc* s, Zet32fc* d) { return p->inv(p, s, d); }

}  // namespace zet::fft
