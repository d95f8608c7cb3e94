// Float-to-short and short-to-float conversion with a scale against VOLK.
//
// VOLK's scalar is a multiplier (float to short) or a divisor (short to
// float); a power of two on its side matches our scale factor exactly, so
// both sides produce the same values, which is checked before timing. Each
// runs against VOLK's dispatcher and against its 256-bit kernel called
// directly (the buffers are 64-byte aligned, as the aligned kernels need).
// Sizes: 1 Ki elements sit in L1, 64 Ki in L2, 4 Mi stream from memory.
#include "volk_util.hpp"

#define LV_HAVE_AVX 1
#define LV_HAVE_AVX2 1
#include <volk/volk_16i_s32f_convert_32f.h>
#include <volk/volk_32f_s32f_convert_16i.h>

#include <cstring>
#include <random>

namespace {

using namespace zetbench;

// n elements of S converted to D by ours and by the peer, compared, then timed.
template <class S, class D, class Draw, class Ours, class Peer>
void convertVersus(benchmark::State& state, Draw draw, Ours ours, Peer peer) {
    const int n = static_cast<int>(state.range(0));
    Buffer bs(n * sizeof(S)), bd(n * sizeof(D)), bref(n * sizeof(D));
    if (!bs || !bd || !bref) return state.SkipWithError("out of memory");
    S* s = bs.as<S>();
    D *d = bd.as<D>(), *ref = bref.as<D>();
    std::mt19937 rng(5);
    for (int i = 0; i < n; ++i) s[i] = draw(rng);
    ours(s, ref, n);
    peer(s, d, n);
    if (std::memcmp(d, ref, n * sizeof(D)) != 0) return state.SkipWithError("ours and the peer disagree");
    zetbench::compare(
        state, (sizeof(S) + sizeof(D)) * static_cast<double>(n), [&] { ours(s, d, n); }, [&] { peer(s, d, n); });
}

// Floats in [-9, 9] times 2^12, rounded to nearest even (the processor's
// default, which VOLK relies on): some beyond the 16-bit range, so both sides saturate.
auto floats = [](std::mt19937& r) { return std::uniform_real_distribution<float>(-9.0f, 9.0f)(r); };
auto ourToShort = [](const float* s, short* d, int n) { zetsConvert_32f16s_Sfs(s, d, n, zetRoundNearestEven, -12); };
// Shorts times 2^-15.
auto shorts = [](std::mt19937& r) { return static_cast<short>(r()); };
auto ourToFloat = [](const short* s, float* d, int n) { zetsConvert_16s32f_Sfs(s, d, n, 15); };

#define CONVERT_VS(NAME, S, D, DRAW, OURS, PEER)                                       \
    void NAME(benchmark::State& state) {                                               \
        convertVersus<S, D>(state, DRAW, OURS, [](const S* s, D* d, int n) { PEER; }); \
    }                                                                                  \
    BENCHMARK(NAME)->Apply(elementCounts);

CONVERT_VS(Convert_32f16s_Sfs_vs_volk, float, short, floats, ourToShort,
           volk_32f_s32f_convert_16i(d, s, 4096.0f, unsigned(n)))
CONVERT_VS(Convert_32f16s_Sfs_vs_volk_avx2, float, short, floats, ourToShort,
           volk_32f_s32f_convert_16i_a_avx2(d, s, 4096.0f, unsigned(n)))
CONVERT_VS(Convert_16s32f_Sfs_vs_volk, short, float, shorts, ourToFloat,
           volk_16i_s32f_convert_32f(d, s, 32768.0f, unsigned(n)))
CONVERT_VS(Convert_16s32f_Sfs_vs_volk_avx2, short, float, shorts, ourToFloat,
           volk_16i_s32f_convert_32f_a_avx2(d, s, 32768.0f, unsigned(n)))

}  // namespace
