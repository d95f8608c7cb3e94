// Add_32f against VOLK's kernel and against the loop a user would write.
#include "bench_util.hpp"

#include <volk/volk.h>
// VOLK's kernels are header code; this brings in its 256-bit kernel to call
// directly, without the dispatcher.
#define LV_HAVE_AVX
#include <volk/volk_32f_x2_add_32f.h>

#include <cstring>
#include <random>

namespace {

using zetbench::Buffer;

// The plain loop, built with the project's flags. Kept out of line so it is
// compiled for an unknown length, as it would be in user code.
[[gnu::noinline, gnu::noclone]] void plain_add(const float* a, const float* b, float* c, int n) {
  for (int i = 0; i < n; ++i) c[i] = a[i] + b[i];
}

// 1 Ki elements sits in L1, 64 Ki in L2, 4 Mi streams from memory.
void element_counts(benchmark::internal::Benchmark* b) {
  for (long n : {1L << 10, 64L << 10, 4L << 20}) b->Arg(n);
  b->UseManualTime();
}

// Peer is called as peer(c, a, b, n) and must compute c = a + b.
template <class Peer>
void add_vs(benchmark::State& state, const char* peer_name, Peer peer) {
  const int n = static_cast<int>(state.range(0));
  const std::size_t bytes = static_cast<std::size_t>(n) * sizeof(float);
  Buffer ba(bytes), bb(bytes), bc(bytes), bref(bytes);
  if (!ba || !bb || !bc || !bref) return state.SkipWithError("out of memory");
  float* a = ba.as<float>();
  float* b = bb.as<float>();
  float* c = bc.as<float>();
  float* ref = bref.as<float>();

  std::mt19937 rng(12345);
  std::uniform_real_distribution<float> dist(-1.0f, 1.0f);
  for (int i = 0; i < n; ++i) {
    a[i] = dist(rng);
    b[i] = dist(rng);
  }
  plain_add(a, b, ref, n);

  // A single rounded add per element: every correct implementation agrees bit for bit.
  if (zetsAdd_32f(a, b, c, n) != zetStsOk || std::memcmp(c, ref, bytes) != 0)
    return state.SkipWithError("zetsAdd_32f gave a wrong result");
  std::memset(c, 0, bytes);
  peer(c, a, b, n);
  if (std::memcmp(c, ref, bytes) != 0) return state.SkipWithError(peer_name);

  zetbench::compare(
      state, 3.0 * static_cast<double>(bytes),
      [&] { zetsAdd_32f(a, b, c, n); },
      [&] { peer(c, a, b, n); });
}

void Add_32f_vs_volk(benchmark::State& state) {
  add_vs(state, "volk_32f_x2_add_32f gave a wrong result",
         [](float* c, const float* a, const float* b, int n) {
           volk_32f_x2_add_32f(c, a, b, static_cast<unsigned>(n));
         });
}

// On a machine with wider vectors than this build targets, VOLK's dispatcher
// picks an AVX-512 kernel; this calls VOLK's 256-bit kernel for a
// like-for-like comparison (the buffers are 64-byte aligned, as it needs).
void Add_32f_vs_volk_avx(benchmark::State& state) {
  add_vs(state, "volk_32f_x2_add_32f a_avx gave a wrong result",
         [](float* c, const float* a, const float* b, int n) {
           volk_32f_x2_add_32f_a_avx(c, a, b, static_cast<unsigned>(n));
         });
}

void Add_32f_vs_loop(benchmark::State& state) {
  add_vs(state, "the plain loop gave a wrong result",
         [](float* c, const float* a, const float* b, int n) { plain_add(a, b, c, n); });
}

}  // namespace

BENCHMARK(Add_32f_vs_volk)->Apply(element_counts);
BENCHMARK(Add_32f_vs_volk_avx)->Apply(element_counts);
BENCHMARK(Add_32f_vs_loop)->Apply(element_counts);
