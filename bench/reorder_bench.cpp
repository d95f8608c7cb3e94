// Data-movement utilities against VOLK on the same 64-byte aligned vectors:
// the real parts of a complex vector, the conjugate, and the in-place byte
// swap of 32-bit words. Each runs against VOLK's dispatcher and against its
// 256-bit kernel called directly.
#include "volk_util.hpp"

#define LV_HAVE_GENERIC 1
#define LV_HAVE_AVX 1
#define LV_HAVE_AVX2 1
#include <volk/volk_32fc_conjugate_32fc.h>
#include <volk/volk_32fc_deinterleave_real_32f.h>
#include <volk/volk_32u_byteswap.h>

#include <cstdint>
#include <cstring>

namespace {

using namespace zetbench;

// src: n complex values; ours and peer: the two destinations (n complex each).
struct Vectors {
    Buffer src, ours, peer;
    explicit Vectors(int n) : src(8u * n), ours(8u * n), peer(8u * n) {
        fillUniform(src.as<float>(), 2u * n, 4242, -2.0f, 2.0f);
    }
    explicit operator bool() const { return src && ours && peer; }
};

// Runs ours(src, dst, n) and peer(src, dst, n) once each, requires the first
// `bytes(n)` destination bytes to agree, then times them side by side. An
// in-place pair works on destinations that start as copies of the source.
template <class Ours, class Peer, class Bytes>
void versus(benchmark::State& state, double trafficPerElement, Bytes bytes, Ours ours, Peer peer,
            bool inPlace = false) {
    const int n = static_cast<int>(state.range(0));
    Vectors v(n);
    if (!v) return state.SkipWithError("out of memory");
    const float* s = v.src.as<float>();
    float *a = v.ours.as<float>(), *b = v.peer.as<float>();
    if (inPlace) std::memcpy(a, s, bytes(n)), std::memcpy(b, s, bytes(n));
    ours(s, a, n);
    peer(s, b, n);
    if (std::memcmp(a, b, bytes(n)) != 0) return state.SkipWithError("ours and the peer disagree");
    zetbench::compare(
        state, trafficPerElement * n, [&] { ours(s, a, n); }, [&] { peer(s, b, n); });
}

auto floats(int k) {
    return [k](int n) { return std::size_t(4) * k * n; };
}

const auto ourReal = [](const float* s, float* d, int n) { zetsReal_32fc(zc(s), d, n); };
void Real_32fc_vs_volk(benchmark::State& st) {
    versus(st, 12.0, floats(1), ourReal,
           [](const float* s, float* d, int n) { volk_32fc_deinterleave_real_32f(d, cx(s), unsigned(n)); });
}
void Real_32fc_vs_volk_avx(benchmark::State& st) {
    versus(st, 12.0, floats(1), ourReal,
           [](const float* s, float* d, int n) { volk_32fc_deinterleave_real_32f_a_avx2(d, cx(s), unsigned(n)); });
}

const auto ourConj = [](const float* s, float* d, int n) { zetsConj_32fc(zc(s), zc(d), n); };
void Conj_32fc_vs_volk(benchmark::State& st) {
    versus(st, 16.0, floats(2), ourConj,
           [](const float* s, float* d, int n) { volk_32fc_conjugate_32fc(cx(d), cx(s), unsigned(n)); });
}
void Conj_32fc_vs_volk_avx(benchmark::State& st) {
    versus(st, 16.0, floats(2), ourConj,
           [](const float* s, float* d, int n) { volk_32fc_conjugate_32fc_a_avx(cx(d), cx(s), unsigned(n)); });
}

// In place: each timed call swaps back what the previous one swapped.
std::uint32_t* words(float* d) { return reinterpret_cast<std::uint32_t*>(d); }
template <bool Direct>
void swap(benchmark::State& st) {
    versus(
        st, 8.0, floats(1), [](const float*, float* d, int n) { zetsSwapBytes_32u_I(words(d), n); },
        [](const float*, float* d, int n) {
            if (Direct) volk_32u_byteswap_a_avx2(words(d), unsigned(n));
            else volk_32u_byteswap(words(d), unsigned(n));
        },
        true);
}
void SwapBytes_32u_I_vs_volk(benchmark::State& st) { swap<false>(st); }
void SwapBytes_32u_I_vs_volk_avx(benchmark::State& st) { swap<true>(st); }

#define REORDER_BENCH(name) BENCHMARK(name)->Apply(elementCounts)
REORDER_BENCH(Real_32fc_vs_volk);
REORDER_BENCH(Real_32fc_vs_volk_avx);
REORDER_BENCH(Conj_32fc_vs_volk);
REORDER_BENCH(Conj_32fc_vs_volk_avx);
REORDER_BENCH(SwapBytes_32u_I_vs_volk);
REORDER_BENCH(SwapBytes_32u_I_vs_volk_avx);

}  // namespace
