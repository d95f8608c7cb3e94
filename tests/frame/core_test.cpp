// The companion core services.
#include <gtest/gtest.h>

#include <cstdint>
#include <future>
#include <thread>
#include <xmmintrin.h>

#include "zetcore.h"

namespace {

std::uintptr_t addr(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

TEST(Core, AllocationIsAlignedAndRefusesNonPositive) {
    for (int bytes : {1, 3, 64, 65, 4096, 1 << 20}) {
        void* p = zetMalloc(bytes);
        ASSERT_NE(p, nullptr) << bytes;
        EXPECT_EQ(addr(p) % 64, 0u) << bytes;
        static_cast<unsigned char*>(p)[bytes - 1] = 1;  // the whole block is usable
        zetFree(p);
        void* q = zetMalloc_L(bytes);
        ASSERT_NE(q, nullptr);
        EXPECT_EQ(addr(q) % 64, 0u);
        zetFree(q);
    }
    EXPECT_EQ(zetMalloc(0), nullptr);
    EXPECT_EQ(zetMalloc(-1), nullptr);
    EXPECT_EQ(zetMalloc_L(0), nullptr);
    EXPECT_EQ(zetMalloc_L(-5), nullptr);
    zetFree(nullptr);
}

TEST(Core, AlignPtrRoundsUp) {
    struct Case { std::uintptr_t p; int align; std::uintptr_t want; };
    const Case cases[] = {
        {0x1000, 64, 0x1000}, {0x1001, 64, 0x1040}, {0x103F, 64, 0x1040}, {0x1040, 32, 0x1040},
        {0x1041, 32, 0x1060}, {0x7, 8, 0x8}, {0x9, 1, 0x9}, {0x1FF, 256, 0x200},
    };
    for (const Case& c : cases)
        EXPECT_EQ(addr(zetAlignPtr(reinterpret_cast<void*>(c.p), c.align)), c.want) << std::hex << c.p;
}

TEST(Core, CacheSizeIsKnownAndPlausible) {
    int size = -1;
    ASSERT_EQ(zetGetMaxCacheSizeB(&size), 0);
    EXPECT_GE(size, 64 * 1024);
    EXPECT_LE(size, 2048 * 1024 * 1024U - 1);
    int again = 0;
    EXPECT_EQ(zetGetMaxCacheSizeB(&again), 0);
    EXPECT_EQ(again, size);
    EXPECT_NE(zetGetMaxCacheSizeB(nullptr), 0);
}

TEST(Core, ModeBitsAreSetPerThread) {
    const unsigned saved = _mm_getcsr();
    // A thread that exists before the change keeps its own control word
    // (threads created later inherit the creator's, as the OS copies it).
    std::promise<void> changed;
    unsigned other = 0;
    std::thread peer([&, go = changed.get_future()]() mutable {
        go.wait();
        other = _mm_getcsr();
    });

    unsigned mask = 0;
    EXPECT_EQ(zetSetFlushToZero(1, &mask), 0);
    EXPECT_EQ(mask, saved & 0x1F80u);
    EXPECT_EQ(zetSetDenormAreZeros(1), 0);
    EXPECT_EQ(_mm_getcsr() & 0x8040u, 0x8040u);
    // Flush-to-zero is visible in arithmetic: the smallest normal halved becomes 0.
    volatile float tiny = 1.17549435e-38f;
    EXPECT_EQ(tiny * 0.5f, 0.0f);

    changed.set_value();
    peer.join();
    EXPECT_EQ(other & 0x8040u, saved & 0x8040u) << "another thread must not see this thread's modes";

    zetSetFlushToZero(0, nullptr);
    zetSetDenormAreZeros(0);
    EXPECT_EQ(_mm_getcsr() & 0x8040u, 0u);
    _mm_setcsr(saved);
}

TEST(Core, HalfPrecisionFeatureMatchesTheProcessor) {
    const bool f16c = __builtin_cpu_supports("f16c");
    EXPECT_EQ(ownGetFeature(ZET_FEATURE_F16C) != 0, f16c);
    EXPECT_EQ(ownGetFeature(16384) != 0, f16c);
    // An unknown feature is never claimed.
    EXPECT_EQ(ownGetFeature(0x1000000000ULL), 0);
}

}  // namespace
