// Copy, Set and Zero against the C library's memcpy / memset.
#include "bench_util.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace {

using zetbench::Buffer;

// From L1-resident up to far beyond the last-level cache.
void byteSizes(benchmark::internal::Benchmark* b) {
    for (long bytes : {256L, 4L << 10, 64L << 10, 1L << 20, 64L << 20}) b->Arg(bytes);
    b->UseManualTime();
}

bool allBytes(const Buffer& buf, Zet8u value) {
    const Zet8u* p = buf.as();
    return std::all_of(p, p + buf.bytes(), [value](Zet8u x) { return x == value; });
}

void Copy_8u_vs_memcpy(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    Buffer src(n), dst(n);
    if (!src || !dst) return state.SkipWithError("out of memory");
    Zet8u* s = src.as();
    Zet8u* d = dst.as();
    for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<Zet8u>(i * 131 + (i >> 8));

    if (zetsCopy_8u(s, d, static_cast<int>(n)) != zetStsOk || std::memcmp(s, d, n) != 0)
        return state.SkipWithError("zetsCopy_8u gave a wrong result");

    zetbench::compare(
        state, 2.0 * static_cast<double>(n), [&] { zetsCopy_8u(s, d, static_cast<int>(n)); },
        [&] { std::memcpy(d, s, n); });
}

// memset can only store a repeated byte, so the float value is one whose four
// bytes are equal: both sides then write identical data.
void Set_32f_vs_memset(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    const int len = static_cast<int>(n / sizeof(Zet32f));
    const Zet32f val = std::bit_cast<Zet32f>(std::uint32_t{0x01010101});
    Buffer dst(n);
    if (!dst) return state.SkipWithError("out of memory");
    Zet32f* d = dst.as<Zet32f>();

    if (zetsSet_32f(val, d, len) != zetStsOk || !allBytes(dst, 0x01))
        return state.SkipWithError("zetsSet_32f gave a wrong result");

    zetbench::compare(
        state, static_cast<double>(n), [&] { zetsSet_32f(val, d, len); }, [&] { std::memset(d, 0x01, n); });
}

void Zero_32f_vs_memset(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    const int len = static_cast<int>(n / sizeof(Zet32f));
    Buffer dst(n);
    if (!dst) return state.SkipWithError("out of memory");
    Zet32f* d = dst.as<Zet32f>();

    if (zetsZero_32f(d, len) != zetStsOk || !allBytes(dst, 0))
        return state.SkipWithError("zetsZero_32f gave a wrong result");

    zetbench::compare(
        state, static_cast<double>(n), [&] { zetsZero_32f(d, len); }, [&] { std::memset(d, 0, n); });
}

}  // namespace

BENCHMARK(Copy_8u_vs_memcpy)->Apply(byteSizes);
BENCHMARK(Set_32f_vs_memset)->Apply(byteSizes);
BENCHMARK(Zero_32f_vs_memset)->Apply(byteSizes);
