// Magnitude, power spectrum and phase of interleaved binary32 complex
// vectors against VOLK, on the same 64-byte aligned vectors in the same run.
// Each runs against VOLK's dispatcher and against its widest kernel called
// directly: the 256-bit one for the magnitudes, the 128-bit SSE4.1 one for
// atan2 (VOLK has none wider), with a normalisation factor of 1. Both
// results are held to a long-double value before timing: ours to its
// documented bound, VOLK's to a looser one (its atan2 is a shorter fit).
// Sizes: 1 Ki elements sit in L1, 64 Ki in L2, 4 Mi stream from memory.
#include "volk_util.hpp"

#define LV_HAVE_AVX 1
#define LV_HAVE_SSE4_1 1
#include <volk/volk_32fc_magnitude_32f.h>
#include <volk/volk_32fc_magnitude_squared_32f.h>
#include <volk/volk_32fc_s32f_atan2_32f.h>

#include <cmath>

namespace {

using namespace zetbench;
using C = lv_32fc_t;

// n complex elements in every quadrant, parts in [-1, 1]; ours writes to
// `ours`, the peer to `peer`, and each is held to exact(re, im) within
// oursTol and peerTol (relative, or absolute below 1).
template <class Ours, class Peer, class Exact>
void versus(benchmark::State& state, Ours ours, Peer peer, Exact exact, double oursTol, double peerTol) {
    const int n = static_cast<int>(state.range(0));
    Buffer src(8u * n), a(4u * n), b(4u * n);
    if (!src || !a || !b) return state.SkipWithError("out of memory");
    float* z = src.as<float>();
    fillUniform(z, 2u * n, 99, -1.0f, 1.0f);
    const Zet32fc* ourZ = zc(z);
    const C* peerZ = cx(z);
    float *o = a.as<float>(), *p = b.as<float>();
    ours(ourZ, o, n);
    peer(peerZ, p, n);
    for (int i = 0; i < n; ++i) {
        const long double want = exact(z[2 * i], z[2 * i + 1]);
        const long double scale = std::fmax(1.0L, std::fabs(want));
        if (std::fabs(o[i] - want) > oursTol * scale) return state.SkipWithError("ours is far from the exact value");
        if (std::fabs(p[i] - want) > peerTol * scale)
            return state.SkipWithError("the peer is far from the exact value");
    }
    zetbench::compare(
        state, 12.0 * n, [&] { ours(ourZ, o, n); }, [&] { peer(peerZ, p, n); });
}

const auto magnitude = [](long double re, long double im) { return std::sqrt(re * re + im * im); };
const auto power = [](long double re, long double im) { return re * re + im * im; };
const auto angle = [](long double re, long double im) { return std::atan2(im, re); };

#define POLAR_VS(NAME, OURS, PEER, EXACT, OURS_TOL, PEER_TOL)                      \
    void NAME(benchmark::State& state) {                                           \
        versus(                                                                    \
            state, [](const Zet32fc* s, float* d, int n) { OURS(s, d, n); },       \
            [](const C* s, float* d, int n) { PEER; }, EXACT, OURS_TOL, PEER_TOL); \
    }                                                                              \
    BENCHMARK(NAME)->Apply(elementCounts);

POLAR_VS(Magnitude_32fc_vs_volk, zetsMagnitude_32fc, volk_32fc_magnitude_32f(d, s, unsigned(n)), magnitude, 2e-7, 1e-6)
POLAR_VS(Magnitude_32fc_vs_volk_avx, zetsMagnitude_32fc, volk_32fc_magnitude_32f_a_avx(d, s, unsigned(n)), magnitude,
         2e-7, 1e-6)
POLAR_VS(PowerSpectr_32fc_vs_volk, zetsPowerSpectr_32fc, volk_32fc_magnitude_squared_32f(d, s, unsigned(n)), power,
         2e-7, 1e-6)
POLAR_VS(PowerSpectr_32fc_vs_volk_avx, zetsPowerSpectr_32fc, volk_32fc_magnitude_squared_32f_a_avx(d, s, unsigned(n)),
         power, 2e-7, 1e-6)
POLAR_VS(Phase_32fc_vs_volk, zetsPhase_32fc, volk_32fc_s32f_atan2_32f(d, s, 1.0f, unsigned(n)), angle, 3e-7, 1e-5)
POLAR_VS(Phase_32fc_vs_volk_sse4_1, zetsPhase_32fc, volk_32fc_s32f_atan2_32f_a_sse4_1(d, s, 1.0f, unsigned(n)), angle,
         3e-7, 1e-5)

}  // namespace
