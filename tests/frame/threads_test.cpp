// Threads and stacks: the library keeps no global state, so concurrent
// GetSize, Init and calls on one shared object give exactly what one thread
// gets; and every family runs on a thread with a small stack.
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <functional>
#include <thread>
#include <vector>

#include "zetsp.h"

namespace {

// Size query, Init into a fresh buffer and a forward call, for one transform
// form; returns the output bytes (empty on any error).
using Form = std::function<std::vector<Zet8u>(int size)>;

template <class C> std::vector<Zet8u> bytesOf(const std::vector<C>& v) {
    std::vector<Zet8u> b(v.size() * sizeof(C));
    std::memcpy(b.data(), v.data(), b.size());
    return b;
}
// n elements of C whose parts (of type R) run through small integers.
template <class C, class R = float> std::vector<C> ramp(int n) {
    std::vector<C> v(n);
    auto* r = reinterpret_cast<R*>(v.data());
    for (std::size_t i = 0; i < v.size() * sizeof(C) / sizeof(R); ++i) r[i] = static_cast<R>(i % 7) - 3;
    return v;
}

const std::vector<std::pair<const char*, Form>> kForms = {
    {"fft", [](int order) {
         int s, i, w;
         if (zetsFFTGetSize_C_32fc(order, ZET_SCALE_INV, zetHintAccurate, &s, &i, &w)) return std::vector<Zet8u>{};
         std::vector<Zet8u> spec(s), init(i + 1), work(w + 1);
         ZetsFFTSpec_C_32fc* p;
         if (zetsFFTInit_C_32fc(&p, order, ZET_SCALE_INV, zetHintAccurate, spec.data(), init.data()))
             return std::vector<Zet8u>{};
         auto x = ramp<Zet32fc>(1 << order), y = x;
         if (zetsFFTFwd_CToC_32fc(x.data(), y.data(), p, work.data())) return std::vector<Zet8u>{};
         return bytesOf(y);
     }},
    {"dft", [](int order) {
         const int n = 3 * (1 << order) + 1;
         int s, i, w;
         if (zetsDFTGetSize_C_64fc(n, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w)) return std::vector<Zet8u>{};
         std::vector<Zet8u> spec(s), init(i + 1), work(w + 1);
         auto* p = reinterpret_cast<ZetsDFTSpec_C_64fc*>(spec.data());
         if (zetsDFTInit_C_64fc(n, ZET_SCALE_NONE, zetHintAccurate, p, init.data())) return std::vector<Zet8u>{};
         auto x = ramp<Zet64fc, double>(n), y = x;
         if (zetsDFTFwd_CToC_64fc(x.data(), y.data(), p, work.data())) return std::vector<Zet8u>{};
         return bytesOf(y);
     }},
    {"half direct", [](int) {
         const int n = 4096;  // the longest direct length, whose scratch once lived on the stack
         auto x = ramp<Zet16fc, Zet16u>(n);  // small halves
         std::vector<Zet16fc> y(n);
         std::vector<Zet8u> work(16 * n + 32);
         if (zetsDFTFwd_Direct_CToC_16fc(x.data(), y.data(), n, work.data())) return std::vector<Zet8u>{};
         return bytesOf(y);
     }},
    {"vector families", [](int order) {
         const int n = 1 << order;
         auto a = ramp<float>(n), b = ramp<float>(n);
         std::vector<float> d(n);
         float sum = 0, mx = 0;
         int at = 0;
         if (zetsAdd_32f(a.data(), b.data(), d.data(), n) || zetsSum_32f(d.data(), n, &sum, zetHintAccurate) ||
             zetsMaxIndx_32f(d.data(), n, &mx, &at) || zetsPhase_32f(a.data(), b.data(), d.data(), n))
             return std::vector<Zet8u>{};
         d.push_back(sum);
         d.push_back(mx);
         return bytesOf(d);
     }},
};

TEST(Threads, ConcurrentSizesInitsAndCallsMatchOneThread) {
    // The threads go first: the first calls into a family are the ones that would race on lazy state.
    for (const auto& [name, run] : kForms) {
        std::vector<std::vector<Zet8u>> got(4);
        std::vector<std::thread> pool;
        for (int t = 0; t < 4; ++t) pool.emplace_back([&, t] { for (int r = 0; r < 3; ++r) got[t] = run(10); });
        for (auto& t : pool) t.join();
        const auto want = run(10);
        ASSERT_FALSE(want.empty()) << name;
        for (const auto& g : got) EXPECT_EQ(g, want) << name;
    }
}

// Every call's stack stays within a small thread's: 64 KiB, or more under the
// sanitizers, whose frames are larger by design.
TEST(Threads, EveryFamilyRunsOnASmallStack) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t kStack = 1 << 20;
#else
    constexpr std::size_t kStack = 64 << 10;
#endif
    for (const auto& form : kForms) {
        struct Job { const Form* run; bool ok; } job{&form.second, false};
        pthread_attr_t attr;
        pthread_attr_init(&attr);
        pthread_attr_setstacksize(&attr, kStack);
        pthread_t th;
        ASSERT_EQ(pthread_create(&th, &attr, [](void* p) -> void* {
            auto* j = static_cast<Job*>(p);
            j->ok = !(*j->run)(12).empty();
            return nullptr;
        }, &job), 0);
        pthread_join(th, nullptr);
        pthread_attr_destroy(&attr);
        EXPECT_TRUE(job.ok) << form.first;
    }
}

}  // namespace
