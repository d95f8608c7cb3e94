// Reductions against VOLK: dot products, the index of the maximum, the sum
// and the mean with standard deviation, on the same 64-byte aligned vectors
// in the same run. Each runs against VOLK's dispatcher (which may pick an
// AVX-512 kernel on this machine) and against VOLK's 256-bit kernel called
// directly, the like-for-like comparison. Sums run on both of our routes:
// the accurate one (binary64 accumulation, more work than VOLK's binary32
// sum) and the fast one (hint 1).
#include "volk_util.hpp"

#define LV_HAVE_GENERIC 1  // the 256-bit kernels fall back to it on short vectors
#define LV_HAVE_AVX 1
#define LV_HAVE_FMA 1
#define LV_HAVE_AVX2 1
#include <volk/volk_32f_accumulator_s32f.h>
#include <volk/volk_32f_index_max_32u.h>
#include <volk/volk_32f_stddev_and_mean_32f_x2.h>
#include <volk/volk_32f_x2_dot_prod_32f.h>
#include <volk/volk_32fc_x2_dot_prod_32fc.h>

#include <cmath>
#include <cstdint>
#include <random>

namespace {

using namespace zetbench;

// n elements (complex: 2n floats) of values in [0.5, 2) plus an offset, so
// that a deviation is not swamped by the mean.
struct Vectors {
    Buffer a, b;
    Vectors(int n, int parts, float offset) : a(4u * n * parts), b(4u * n * parts) {
        std::mt19937 rng(777);
        std::uniform_real_distribution<float> dist(0.5f, 2.0f);
        for (int i = 0; i < n * parts; ++i) a.as<float>()[i] = offset + dist(rng), b.as<float>()[i] = dist(rng);
    }
};

bool near(double got, double want, double rel) { return std::fabs(got - want) <= rel * std::fabs(want) + 1e-30; }

// Runs ours(a, b, n) and peer(a, b, n) on the same vectors after valid(a, b, n)
// has accepted both results (each against an exact value, or against the other).
template <class Ours, class Peer, class Valid>
void versus(benchmark::State& state, int parts, float offset, double bytesPerElement, Ours ours, Peer peer,
            Valid valid) {
    const int n = static_cast<int>(state.range(0));
    Vectors v(n, parts, offset);
    if (!v.a || !v.b) return state.SkipWithError("out of memory");
    const float *a = v.a.as<float>(), *b = v.b.as<float>();
    ours(a, b, n);
    peer(a, b, n);
    if (const char* why = valid(a, b, n)) return state.SkipWithError(why);
    zetbench::compare(
        state, bytesPerElement * n, [&] { ours(a, b, n); }, [&] { peer(a, b, n); });
}

// Results land here, where the checks read them.
struct Results {
    float f[4];
    std::uint32_t u;
    int i;
    Zet32fc z;
    lv_32fc_t c;
} r;

// ---- dot products ----------------------------------------------------------------------------
const auto ourDot = [](const float* a, const float* b, int n) { zetsDotProd_32f(a, b, n, &r.f[0]); };
const auto dotAgree = [](const float*, const float*, int) {
    return near(r.f[0], r.f[1], 1e-4) ? nullptr : "ours and the peer disagree";
};
void DotProd_32f_vs_volk(benchmark::State& s) {
    versus(
        s, 1, 0.0f, 8.0, ourDot,
        [](const float* a, const float* b, int n) { volk_32f_x2_dot_prod_32f(&r.f[1], a, b, unsigned(n)); }, dotAgree);
}
void DotProd_32f_vs_volk_avx(benchmark::State& s) {
    versus(
        s, 1, 0.0f, 8.0, ourDot,
        [](const float* a, const float* b, int n) { volk_32f_x2_dot_prod_32f_a_avx2_fma(&r.f[1], a, b, unsigned(n)); },
        dotAgree);
}

const auto ourCDot = [](const float* a, const float* b, int n) { zetsDotProd_32fc(zc(a), zc(b), n, &r.z); };
// The real part is a difference of two large sums on this data: each result
// is held to the exact value within the error of binary32 sums, not to the other.
const auto cdotExact = [](const float* a, const float* b, int n) -> const char* {
    double re = 0, im = 0;
    for (int i = 0; i < n; ++i) {
        re += double(a[2 * i]) * b[2 * i] - double(a[2 * i + 1]) * b[2 * i + 1];
        im += double(a[2 * i]) * b[2 * i + 1] + double(a[2 * i + 1]) * b[2 * i];
    }
    const double bound = 1e-4 * 16.0 * n;  // each term is below 2 * 2 * 2 * 2 in size
    for (double d : {r.z.re - re, r.z.im - im, r.c.real() - re, r.c.imag() - im})
        if (std::fabs(d) > bound) return "ours or the peer is far from the exact value";
    return nullptr;
};
void DotProd_32fc_vs_volk(benchmark::State& s) {
    versus(
        s, 2, 0.0f, 16.0, ourCDot,
        [](const float* a, const float* b, int n) { volk_32fc_x2_dot_prod_32fc(&r.c, cx(a), cx(b), unsigned(n)); },
        cdotExact);
}
void DotProd_32fc_vs_volk_avx(benchmark::State& s) {
    versus(
        s, 2, 0.0f, 16.0, ourCDot,
        [](const float* a, const float* b, int n) {
            volk_32fc_x2_dot_prod_32fc_a_avx_fma(&r.c, cx(a), cx(b), unsigned(n));
        },
        cdotExact);
}

// ---- index of the maximum ----------------------------------------------------------------------
const auto ourIndx = [](const float* a, const float*, int n) { zetsMaxIndx_32f(a, n, &r.f[0], &r.i); };
const auto sameIndex = [](const float*, const float*, int) {
    return std::uint32_t(r.i) == r.u ? nullptr : "ours and the peer disagree";
};
void MaxIndx_32f_vs_volk(benchmark::State& s) {
    versus(
        s, 1, 0.0f, 4.0, ourIndx,
        [](const float* a, const float*, int n) { volk_32f_index_max_32u(&r.u, a, unsigned(n)); }, sameIndex);
}
void MaxIndx_32f_vs_volk_avx(benchmark::State& s) {
    versus(
        s, 1, 0.0f, 4.0, ourIndx,
        [](const float* a, const float*, int n) { volk_32f_index_max_32u_a_avx(&r.u, a, unsigned(n)); }, sameIndex);
}

// ---- sums: the accurate route (binary64, more work than VOLK's binary32 sum) and the fast one ----
template <int Hint>
void sum(benchmark::State& s, bool direct) {
    versus(
        s, 1, 0.0f, 4.0, [](const float* a, const float*, int n) { zetsSum_32f(a, n, &r.f[0], Hint); },
        [direct](const float* a, const float*, int n) {
            if (direct) volk_32f_accumulator_s32f_a_avx(&r.f[1], a, unsigned(n));
            else volk_32f_accumulator_s32f(&r.f[1], a, unsigned(n));
        },
        dotAgree);
}
void Sum_32f_accurate_vs_volk(benchmark::State& s) { sum<0>(s, false); }
void Sum_32f_accurate_vs_volk_avx(benchmark::State& s) { sum<0>(s, true); }
void Sum_32f_fast_vs_volk(benchmark::State& s) { sum<1>(s, false); }
void Sum_32f_fast_vs_volk_avx(benchmark::State& s) { sum<1>(s, true); }

// ---- mean and standard deviation ---------------------------------------------------------------------
// VOLK gives the population deviation (divided by n), we the sample one (by
// n - 1): both are held to the two-pass value in binary64, ours scaled back.
const auto twoPass = [](const float* a, const float*, int n) -> const char* {
    double mean = 0, var = 0;
    for (int i = 0; i < n; ++i) mean += a[i];
    mean /= n;
    for (int i = 0; i < n; ++i) var += (a[i] - mean) * (a[i] - mean);
    const double dev = std::sqrt(var / n);
    if (!near(r.f[0], mean, 1e-6) || !near(r.f[1] * std::sqrt((n - 1.0) / n), dev, 1e-5))
        return "ours is far from the two-pass value";
    if (!near(r.f[2], mean, 1e-2) || !near(r.f[3], dev, 1e-2)) return "the peer is far from the two-pass value";
    return nullptr;
};
template <int Hint>
void meanStd(benchmark::State& s, bool direct) {
    versus(
        s, 1, 100.0f, 4.0,
        [](const float* a, const float*, int n) { zetsMeanStdDev_32f(a, n, &r.f[0], &r.f[1], Hint); },
        [direct](const float* a, const float*, int n) {
            if (direct) volk_32f_stddev_and_mean_32f_x2_a_avx(&r.f[3], &r.f[2], a, unsigned(n));
            else volk_32f_stddev_and_mean_32f_x2(&r.f[3], &r.f[2], a, unsigned(n));
        },
        twoPass);
}
void MeanStdDev_32f_fast_vs_volk(benchmark::State& s) { meanStd<1>(s, false); }
void MeanStdDev_32f_fast_vs_volk_avx(benchmark::State& s) { meanStd<1>(s, true); }
void MeanStdDev_32f_accurate_vs_volk(benchmark::State& s) { meanStd<0>(s, false); }
void MeanStdDev_32f_accurate_vs_volk_avx(benchmark::State& s) { meanStd<0>(s, true); }

#define STATS_BENCH(name) BENCHMARK(name)->Apply(elementCounts)
STATS_BENCH(DotProd_32f_vs_volk);
STATS_BENCH(DotProd_32f_vs_volk_avx);
STATS_BENCH(DotProd_32fc_vs_volk);
STATS_BENCH(DotProd_32fc_vs_volk_avx);
STATS_BENCH(MaxIndx_32f_vs_volk);
STATS_BENCH(MaxIndx_32f_vs_volk_avx);
STATS_BENCH(Sum_32f_accurate_vs_volk);
STATS_BENCH(Sum_32f_accurate_vs_volk_avx);
STATS_BENCH(Sum_32f_fast_vs_volk);
STATS_BENCH(Sum_32f_fast_vs_volk_avx);
STATS_BENCH(MeanStdDev_32f_fast_vs_volk);
STATS_BENCH(MeanStdDev_32f_fast_vs_volk_avx);
STATS_BENCH(MeanStdDev_32f_accurate_vs_volk);
STATS_BENCH(MeanStdDev_32f_accurate_vs_volk_avx);

}  // namespace
