// Side-by-side timing of one of our functions and a peer doing the same work
// on the same buffers in the same run, so that the ratio is not skewed by
// machine state (clock speed, other load) drifting between separate runs.
#pragma once

#include <benchmark/benchmark.h>
#include <zetsp.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace zetbench {

// 64-byte aligned buffer from the library allocator. It is written once at
// construction so that first-touch page faults never land in a timed region,
// and so that a function which writes nothing cannot pass a result check.
class Buffer {
public:
    explicit Buffer(std::size_t bytes) : bytes_(bytes), p_(zetsMalloc_8u_L(static_cast<long long>(bytes))) {
        if (p_) std::memset(p_, 0x5a, bytes);
    }
    ~Buffer() { zetsFree(p_); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    explicit operator bool() const { return p_ != nullptr; }
    std::size_t bytes() const { return bytes_; }
    template <class T = Zet8u>
    T* as() const {
        return reinterpret_cast<T*>(p_);
    }

private:
    std::size_t bytes_;
    Zet8u* p_;
};

// Nanoseconds for `reps` back-to-back calls. The clobber after each call keeps
// the compiler from merging or dropping repeated calls of an inlined peer.
template <class Fn>
double timeBatch(Fn& fn, std::int64_t reps) {
    using clock = std::chrono::steady_clock;
    const auto t0 = clock::now();
    for (std::int64_t i = 0; i < reps; ++i) {
        fn();
        benchmark::ClobberMemory();
    }
    const auto t1 = clock::now();
    return std::chrono::duration<double, std::nano>(t1 - t0).count();
}

inline double median(std::vector<double>& v) {
    if (v.empty()) return 0.0;
    auto mid = v.begin() + static_cast<std::ptrdiff_t>(v.size() / 2);
    std::nth_element(v.begin(), mid, v.end());
    return *mid;
}

// Times `ours` and `peer` alternately (the order flips every round, so neither
// always finds the caches warmed by the other) and reports per-call medians.
// Register with UseManualTime(): the Time column is then ours per call.
// `bytesPerCall` is the memory traffic of one call (bytes read + written).
//
// Counters: ours_ns, peer_ns (median per call), speedup = peer_ns / ours_ns
// (above 1 means we are faster), ours_bytes/s (traffic rate of ours).
template <class Ours, class Peer>
void compare(benchmark::State& state, double bytesPerCall, Ours ours, Peer peer) {
    // A batch must span well above the clock's resolution and call overhead;
    // the faster of the two decides, and both get the same batch size.
    constexpr double kBatchNs = 20e3;
    std::int64_t reps = 1;
    while (reps < (std::int64_t{1} << 24) && std::min(timeBatch(ours, reps), timeBatch(peer, reps)) < kBatchNs)
        reps *= 2;

    std::vector<double> oursNs, peerNs;
    bool oursFirst = true;
    while (state.KeepRunningBatch(reps)) {
        double tOurs, tPeer;
        if (oursFirst) {
            tOurs = timeBatch(ours, reps);
            tPeer = timeBatch(peer, reps);
        } else {
            tPeer = timeBatch(peer, reps);
            tOurs = timeBatch(ours, reps);
        }
        oursFirst = !oursFirst;
        state.SetIterationTime(tOurs * 1e-9);
        oursNs.push_back(tOurs / static_cast<double>(reps));
        peerNs.push_back(tPeer / static_cast<double>(reps));
    }

    const double o = median(oursNs);
    const double p = median(peerNs);
    state.counters["ours_ns"] = o;
    state.counters["peer_ns"] = p;
    state.counters["speedup"] = o > 0.0 ? p / o : 0.0;
    state.counters["ours_bytes/s"] = o > 0.0 ? bytesPerCall / (o * 1e-9) : 0.0;
}

// 1 Ki elements sit in L1, 64 Ki in L2, 4 Mi stream from memory.
inline void elementCounts(benchmark::internal::Benchmark* b) {
    for (long n : {1L << 10, 64L << 10, 4L << 20}) b->Arg(n);
    b->UseManualTime();
}

// `count` values drawn uniformly from [lo, hi), the same for the same seed.
template <class T>
void fillUniform(T* p, std::size_t count, unsigned seed, T lo, T hi) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<T> dist(lo, hi);
    for (std::size_t i = 0; i < count; ++i) p[i] = dist(rng);
}

}  // namespace zetbench
