// zetsMalloc_* and zetsFree over zetcore. This executable defines its own
// zetMalloc and zetMalloc_L, which take precedence over zetcore's for the
// library's calls, so the test sees exactly which byte counts are passed on
// and which counts never reach zetcore.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cstdint>
#include <functional>
#include <string>

#include "zetsp.h"

namespace {
struct Record {
    int calls = 0;
    long long bytes = 0;
    bool wide = false;
};
Record g_record;
bool g_forward = false;  // hand the request to zetcore instead of returning the marker
char g_marker;

template <class F>
F real(const char* name) {
    return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}
}  // namespace

extern "C" void* zetMalloc(int bytes) {
    g_record = {g_record.calls + 1, bytes, false};
    if (g_forward) return real<void* (*)(int)>("zetMalloc")(bytes);
    return &g_marker;
}

extern "C" void* zetMalloc_L(long long bytes) {
    g_record = {g_record.calls + 1, bytes, true};
    if (g_forward) return real<void* (*)(long long)>("zetMalloc_L")(bytes);
    return &g_marker;
}

namespace {

struct Case {
    std::string name;
    std::function<void*(long long)> fn;
    bool wide;
    long long count;
    long long bytes;  // -1: refused without a call to zetcore
};

#define PLAIN(T) #T, [](long long n) { return static_cast<void*>(zetsMalloc_##T(static_cast<int>(n))); }, false
#define WIDE(T) #T "_L", [](long long n) { return static_cast<void*>(zetsMalloc_##T##_L(n)); }, true

TEST(Malloc, CountLimitsAndBytesPassedOn) {
    const long long kMax = 0x7FFFFFFFFFFFFFFFLL;
    const Case cases[] = {
        {PLAIN(8u), 1, 1}, {PLAIN(8u), 0x7FFFFFFF, 0x7FFFFFFF}, {PLAIN(8u), 0, -1}, {PLAIN(8u), -1, -1},
        {PLAIN(8s), 17, 17},
        {PLAIN(16s), 1073741823, 2147483646}, {PLAIN(16s), 1073741824, -1}, {PLAIN(16u), 3, 6},
        {PLAIN(8sc), 1073741824, -1}, {PLAIN(8sc), 5, 10},
        {PLAIN(32f), 536870911, 2147483644}, {PLAIN(32f), 536870912, -1}, {PLAIN(32f), 0, -1},
        {PLAIN(32f), -1, -1}, {PLAIN(32s), 2, 8}, {PLAIN(32u), 2, 8}, {PLAIN(16sc), 536870911, 2147483644},
        {PLAIN(64f), 268435455, 2147483640}, {PLAIN(64f), 268435456, -1}, {PLAIN(64s), 1, 8},
        {PLAIN(32fc), 268435456, -1}, {PLAIN(32sc), 268435455, 2147483640},
        {PLAIN(64fc), 134217727, 2147483632}, {PLAIN(64fc), 134217728, -1}, {PLAIN(64sc), 2, 32},
        {WIDE(8u), kMax, kMax}, {WIDE(8u), 0, -1}, {WIDE(8s), -3, -1},
        {WIDE(16s), 0x3FFFFFFFFFFFFFFFLL, 0x7FFFFFFFFFFFFFFELL},
        {WIDE(16u), kMax, -2},  // passes on; the doubled count is negative and zetcore refuses it
        {WIDE(8sc), 4, 8},
        {WIDE(32f), 0x3FFFFFFFFFFFFFFFLL, -4}, {WIDE(32f), 0x4000000000000000LL, -1}, {WIDE(32f), 0, -1},
        {WIDE(32s), 1LL << 31, 1LL << 33}, {WIDE(32u), 9, 36}, {WIDE(16sc), 9, 36},
        {WIDE(64f), 0x1FFFFFFFFFFFFFFFLL, -8}, {WIDE(64f), 0x2000000000000000LL, -1},
        {WIDE(64s), 3, 24}, {WIDE(32fc), 3, 24}, {WIDE(32sc), 0x2000000000000000LL, -1},
        {WIDE(64fc), 0x0FFFFFFFFFFFFFFFLL, -16}, {WIDE(64fc), 0x1000000000000000LL, -1}, {WIDE(64sc), 1, 16},
    };
    for (const Case& c : cases) {
        g_record = {};
        void* p = c.fn(c.count);
        if (c.bytes == -1) {
            EXPECT_EQ(p, nullptr) << c.name << " count " << c.count;
            EXPECT_EQ(g_record.calls, 0) << c.name << " count " << c.count << " must not reach zetcore";
            continue;
        }
        EXPECT_EQ(p, &g_marker) << c.name << ": zetcore's pointer is returned as it is";
        EXPECT_EQ(g_record.calls, 1) << c.name;
        EXPECT_EQ(g_record.wide, c.wide) << c.name;
        EXPECT_EQ(g_record.bytes, c.bytes) << c.name << " count " << c.count;
    }
}

TEST(Malloc, RealBlocksAreAlignedAndFreed) {
    g_forward = true;
    Zet32f* f = zetsMalloc_32f(1000);
    Zet64fc* z = zetsMalloc_64fc_L(77);
    ASSERT_NE(f, nullptr);
    ASSERT_NE(z, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(f) % 64, 0u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(z) % 64, 0u);
    f[999] = 1.0f;
    z[76].im = 2.0;
    zetsFree(f);
    zetsFree(z);
    zetsFree(nullptr);
    // A byte count beyond what zetcore accepts comes back as NULL.
    EXPECT_EQ(zetsMalloc_16u_L(0x7FFFFFFFFFFFFFFFLL), nullptr);
    g_forward = false;
}

}  // namespace
