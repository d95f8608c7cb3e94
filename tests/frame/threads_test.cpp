// Threads and stacks: the library keeps no global state, so concurrent
// GetSize, Init and calls, on objects of their own or one shared object, give
// exactly what one thread gets; and every family runs on a thread with a small
// stack.
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "zetsp.h"

namespace {

// A form's size query and Init into fresh buffers give a call (empty on an
// error) that keeps the object alive and takes a work buffer of its own each
// time, so threads may share it; the call returns the output bytes (empty on
// an error).
using Out = std::vector<Zet8u>;
using Call = std::function<Out()>;
using Form = std::function<Call(int size)>;

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
    {"fft", [](int order) -> Call {
         int s, i, w;
         if (zetsFFTGetSize_C_32fc(order, ZET_SCALE_INV, zetHintAccurate, &s, &i, &w)) return {};
         auto spec = std::make_shared<Out>(s);
         Out init(i + 1);
         ZetsFFTSpec_C_32fc* p;
         if (zetsFFTInit_C_32fc(&p, order, ZET_SCALE_INV, zetHintAccurate, spec->data(), init.data())) return {};
         return [spec, p, w, order] {  // spec named: the object lives in it
             Out work(w + 1);
             auto x = ramp<Zet32fc>(1 << order), y = x;
             return zetsFFTFwd_CToC_32fc(x.data(), y.data(), p, work.data()) ? Out{} : bytesOf(y);
         };
     }},
    {"dft", [](int order) -> Call {
         const int n = 3 * (1 << order) + 1;
         int s, i, w;
         if (zetsDFTGetSize_C_64fc(n, ZET_SCALE_NONE, zetHintAccurate, &s, &i, &w)) return {};
         auto spec = std::make_shared<Out>(s);
         Out init(i + 1);
         auto* p = reinterpret_cast<ZetsDFTSpec_C_64fc*>(spec->data());
         if (zetsDFTInit_C_64fc(n, ZET_SCALE_NONE, zetHintAccurate, p, init.data())) return {};
         return [spec, p, w, n] {
             Out work(w + 1);
             auto x = ramp<Zet64fc, double>(n), y = x;
             return zetsDFTFwd_CToC_64fc(x.data(), y.data(), p, work.data()) ? Out{} : bytesOf(y);
         };
     }},
    {"half direct", [](int) -> Call {
         return [] {
             const int n = 4096;  // the longest direct length, whose scratch once lived on the stack
             auto x = ramp<Zet16fc, Zet16u>(n);
             std::vector<Zet16fc> y(n);
             Out work(16 * n + 32);
             return zetsDFTFwd_Direct_CToC_16fc(x.data(), y.data(), n, work.data()) ? Out{} : bytesOf(y);
         };
     }},
    {"vector families", [](int order) -> Call {
         return [n = 1 << order] {
             auto a = ramp<float>(n), b = ramp<float>(n);
             std::vector<float> d(n);
             float sum = 0, mx = 0;
             int at = 0;
             if (zetsAdd_32f(a.data(), b.data(), d.data(), n) || zetsSum_32f(d.data(), n, &sum, zetHintAccurate) ||
                 zetsMaxIndx_32f(d.data(), n, &mx, &at) || zetsPhase_32f(a.data(), b.data(), d.data(), n))
                 return Out{};
             d.push_back(sum);
             d.push_back(mx);
             return bytesOf(d);
         };
     }},
};

// Four threads each size, build and run their own object, then four share one.
// The threads go first: the first calls into a family are the ones that would
// race on lazy state.
TEST(Threads, ConcurrentSizesInitsAndCallsMatchOneThread) {
    const auto inThreads = [](const std::function<void(int)>& body) {
        std::vector<std::thread> pool;
        for (int t = 0; t < 4; ++t) pool.emplace_back(body, t);
        for (auto& t : pool) t.join();
    };
    for (const auto& [name, prepare] : kForms) {
        std::vector<Out> own(4), common(4);
        inThreads([&, &prepare = prepare](int t) { for (int r = 0; r < 3; ++r) own[t] = prepare(10)(); });
        const Call shared = prepare(10);
        ASSERT_TRUE(shared) << name;
        inThreads([&](int t) { for (int r = 0; r < 3; ++r) common[t] = shared(); });
        const Out want = prepare(10)();
        ASSERT_FALSE(want.empty()) << name;
        for (int t = 0; t < 4; ++t) EXPECT_TRUE(own[t] == want && common[t] == want) << name;
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
            const Call call = (*j->run)(12);
            j->ok = call && !call().empty();
            return nullptr;
        }, &job), 0);
        pthread_join(th, nullptr);
        pthread_attr_destroy(&attr);
        EXPECT_TRUE(job.ok) << form.first;
    }
}

}  // namespace
