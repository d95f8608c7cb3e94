// Element-wise arithmetic against VOLK and against the loop a user would write.
//
// Each operation runs twice against VOLK: through VOLK's dispatcher (which
// picks AVX-512 kernels where the machine has them, wider than this AVX2
// build) and against VOLK's 256-bit kernel called directly, the like-for-like
// comparison. The buffers are 64-byte aligned, as VOLK's aligned kernels need.
#include "volk_util.hpp"

#define LV_HAVE_AVX 1
#define LV_HAVE_FMA 1
#define LV_HAVE_AVX2 1
#include <volk/volk_32f_s32f_multiply_32f.h>
#include <volk/volk_32f_x2_add_32f.h>
#include <volk/volk_32f_x2_divide_32f.h>
#include <volk/volk_32f_x2_multiply_32f.h>
#include <volk/volk_32f_x2_subtract_32f.h>
#include <volk/volk_32fc_s32fc_multiply_32fc.h>
#include <volk/volk_32fc_x2_multiply_32fc.h>

#include <cmath>
#include <cstring>
#include <random>

namespace {

using namespace zetbench;

// The plain loop, built with the project's flags and kept out of line so it
// is compiled for an unknown length, as it would be in user code.
[[gnu::noinline, gnu::noclone]] void plainAdd(const float* a, const float* b, float* c, int n) {
    for (int i = 0; i < n; ++i) c[i] = a[i] + b[i];
}

// Runs ours(a, b, c, n) and peer(a, b, c, n) on the same n-element vectors
// (complex: 2n floats each), after checking that both compute the same
// values (to a relative 1e-6: complex products may round differently).
template <int kParts, class Ours, class Peer>
void versus(benchmark::State& state, Ours ours, Peer peer) {
    const int n = static_cast<int>(state.range(0));
    const std::size_t floats = static_cast<std::size_t>(n) * kParts;
    Buffer ba(floats * 4), bb(floats * 4), bc(floats * 4), bref(floats * 4);
    if (!ba || !bb || !bc || !bref) return state.SkipWithError("out of memory");
    float *a = ba.as<float>(), *b = bb.as<float>(), *c = bc.as<float>(), *ref = bref.as<float>();
    std::mt19937 rng(12345);
    std::uniform_real_distribution<float> dist(0.5f, 2.0f);
    for (std::size_t i = 0; i < floats; ++i) a[i] = dist(rng), b[i] = dist(rng);

    ours(a, b, ref, n);
    peer(a, b, c, n);
    for (std::size_t i = 0; i < floats; ++i)
        if (std::fabs(c[i] - ref[i]) > 1e-6f * std::fabs(ref[i]))
            return state.SkipWithError("ours and the peer disagree");

    zetbench::compare(
        state, 3.0 * 4.0 * static_cast<double>(floats), [&] { ours(a, b, c, n); }, [&] { peer(a, b, c, n); });
}

using F = float;
using C = lv_32fc_t;

auto ourAdd = [](F* a, F* b, F* c, int n) { zetsAdd_32f(b, a, c, n); };
auto ourSub = [](F* a, F* b, F* c, int n) { zetsSub_32f(b, a, c, n); };  // a - b, as VOLK computes
auto ourMul = [](F* a, F* b, F* c, int n) { zetsMul_32f(b, a, c, n); };
auto ourMulC = [](F* a, F*, F* c, int n) { zetsMulC_32f(a, 1.5f, c, n); };
auto ourDiv = [](F* a, F* b, F* c, int n) { zetsDiv_32f(b, a, c, n); };  // a / b, as VOLK computes
auto ourCMul = [](F* a, F* b, F* c, int n) { zetsMul_32fc(zc(a), zc(b), zc(c), n); };
auto ourCMulC = [](F* a, F*, F* c, int n) { zetsMulC_32fc(zc(a), Zet32fc{1.5f, -0.5f}, zc(c), n); };

#define VS(NAME, PARTS, OURS, PEER)                                        \
    void NAME(benchmark::State& state) {                                   \
        versus<PARTS>(state, OURS, [](F* a, F* b, F* c, int n) { PEER; }); \
    }                                                                      \
    BENCHMARK(NAME)->Apply(elementCounts);

VS(Add_32f_vs_volk, 1, ourAdd, volk_32f_x2_add_32f(c, a, b, unsigned(n)))
VS(Add_32f_vs_volk_avx, 1, ourAdd, volk_32f_x2_add_32f_a_avx(c, a, b, unsigned(n)))
VS(Add_32f_vs_loop, 1, ourAdd, plainAdd(a, b, c, n))
VS(Sub_32f_vs_volk, 1, ourSub, volk_32f_x2_subtract_32f(c, a, b, unsigned(n)))
VS(Sub_32f_vs_volk_avx, 1, ourSub, volk_32f_x2_subtract_32f_a_avx(c, a, b, unsigned(n)))
VS(Mul_32f_vs_volk, 1, ourMul, volk_32f_x2_multiply_32f(c, a, b, unsigned(n)))
VS(Mul_32f_vs_volk_avx, 1, ourMul, volk_32f_x2_multiply_32f_a_avx(c, a, b, unsigned(n)))
VS(MulC_32f_vs_volk, 1, ourMulC, (void)b; volk_32f_s32f_multiply_32f(c, a, 1.5f, unsigned(n)))
VS(MulC_32f_vs_volk_avx, 1, ourMulC, (void)b; volk_32f_s32f_multiply_32f_a_avx(c, a, 1.5f, unsigned(n)))
VS(Div_32f_vs_volk, 1, ourDiv, volk_32f_x2_divide_32f(c, a, b, unsigned(n)))
VS(Div_32f_vs_volk_avx, 1, ourDiv, volk_32f_x2_divide_32f_a_avx(c, a, b, unsigned(n)))
VS(Mul_32fc_vs_volk, 2, ourCMul, volk_32fc_x2_multiply_32fc(cx(c), cx(a), cx(b), unsigned(n)))
VS(Mul_32fc_vs_volk_avx, 2, ourCMul, volk_32fc_x2_multiply_32fc_a_avx2_fma(cx(c), cx(a), cx(b), unsigned(n)))
VS(MulC_32fc_vs_volk, 2, ourCMulC, (void)b; volk_32fc_s32fc_multiply_32fc(cx(c), cx(a), C(1.5f, -0.5f), unsigned(n)))
VS(MulC_32fc_vs_volk_avx, 2, ourCMulC, (void)b;
   volk_32fc_s32fc_multiply_32fc_a_avx_fma(cx(c), cx(a), C(1.5f, -0.5f), unsigned(n)))

}  // namespace

// ---- fixed point: 16-bit _Sfs forms against a plain scalar loop ----------------
namespace {

// The rule as a user would write it for one element, in a loop the compiler
// is told not to vectorize: the scalar baseline.
inline short scaleRound(int s, int scale) {
    if (scale > 0) s = (s + (1 << (scale - 1)) - 1 + ((s >> scale) & 1)) >> scale;
    else if (scale < 0) s = s << -scale;
    return static_cast<short>(s > 32767 ? 32767 : s < -32768 ? -32768 : s);
}
[[gnu::noinline, gnu::optimize("no-tree-vectorize")]] void scalarAddSfs(const short* a, const short* b, short* d, int n,
                                                                        int scale) {
    for (int i = 0; i < n; ++i) d[i] = scaleRound(a[i] + b[i], scale);
}
[[gnu::noinline, gnu::optimize("no-tree-vectorize")]] void scalarMulSfs(const short* a, const short* b, short* d, int n,
                                                                        int scale) {
    for (int i = 0; i < n; ++i) d[i] = scaleRound(a[i] * b[i], scale);
}

template <class Ours, class Peer>
void fixedVersus(benchmark::State& state, Ours ours, Peer peer) {
    const int n = static_cast<int>(state.range(0));
    Buffer ba(n * 2), bb(n * 2), bc(n * 2), bref(n * 2);
    short *a = ba.as<short>(), *b = bb.as<short>(), *c = bc.as<short>(), *ref = bref.as<short>();
    std::mt19937 rng(7);
    for (int i = 0; i < n; ++i) a[i] = static_cast<short>(rng()), b[i] = static_cast<short>(rng() >> 20);
    ours(a, b, ref, n);
    peer(a, b, c, n);
    if (std::memcmp(c, ref, n * 2) != 0) return state.SkipWithError("ours and the scalar loop disagree");
    zetbench::compare(
        state, 3.0 * 2.0 * n, [&] { ours(a, b, c, n); }, [&] { peer(a, b, c, n); });
}

void fixedCounts(benchmark::internal::Benchmark* b) {
    b->Arg(4096);
    b->UseManualTime();
}

void Add_16s_Sfs_vs_scalar(benchmark::State& state) {
    fixedVersus(
        state, [](short* a, short* b, short* c, int n) { zetsAdd_16s_Sfs(a, b, c, n, 3); },
        [](short* a, short* b, short* c, int n) { scalarAddSfs(a, b, c, n, 3); });
}
void Add_16s_Sfs_scale0_vs_scalar(benchmark::State& state) {
    fixedVersus(
        state, [](short* a, short* b, short* c, int n) { zetsAdd_16s_Sfs(a, b, c, n, 0); },
        [](short* a, short* b, short* c, int n) { scalarAddSfs(a, b, c, n, 0); });
}
void Mul_16s_Sfs_vs_scalar(benchmark::State& state) {
    fixedVersus(
        state, [](short* a, short* b, short* c, int n) { zetsMul_16s_Sfs(a, b, c, n, 9); },
        [](short* a, short* b, short* c, int n) { scalarMulSfs(a, b, c, n, 9); });
}
BENCHMARK(Add_16s_Sfs_vs_scalar)->Apply(fixedCounts);
BENCHMARK(Add_16s_Sfs_scale0_vs_scalar)->Apply(fixedCounts);
BENCHMARK(Mul_16s_Sfs_vs_scalar)->Apply(fixedCounts);

}  // namespace
