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

#define PLAIN(F) #F, [](long long n) { return static_cast<void*>(F(static_cast<int>(n))); }, false
#define WIDE(F) #F, [](long long n) { return static_cast<void*>(F(n)); }, true

TEST(Malloc, CountLimitsAndBytesPassedOn) {
    const long long kMax = 0x7FFFFFFFFFFFFFFFLL;
    const Case cases[] = {
        {PLAIN(zetsMalloc_8u), 1, 1}, {PLAIN(zetsMalloc_8u), 0x7FFFFFFF, 0x7FFFFFFF}, {PLAIN(zetsMalloc_8u), 0, -1},
        {PLAIN(zetsMalloc_8u), -1, -1}, {PLAIN(zetsMalloc_8s), 17, 17}, {PLAIN(zetsMalloc_16s), 1073741823, 2147483646},
        {PLAIN(zetsMalloc_16s), 1073741824, -1}, {PLAIN(zetsMalloc_16u), 3, 6}, {PLAIN(zetsMalloc_8sc), 1073741824, -1},
        {PLAIN(zetsMalloc_8sc), 5, 10}, {PLAIN(zetsMalloc_32f), 536870911, 2147483644},
        {PLAIN(zetsMalloc_32f), 536870912, -1}, {PLAIN(zetsMalloc_32f), 0, -1}, {PLAIN(zetsMalloc_32f), -1, -1},
        {PLAIN(zetsMalloc_32s), 2, 8}, {PLAIN(zetsMalloc_32u), 2, 8}, {PLAIN(zetsMalloc_16sc), 536870911, 2147483644},
        {PLAIN(zetsMalloc_64f), 268435455, 2147483640}, {PLAIN(zetsMalloc_64f), 268435456, -1},
        {PLAIN(zetsMalloc_64s), 1, 8}, {PLAIN(zetsMalloc_32fc), 268435456, -1},
        {PLAIN(zetsMalloc_32sc), 268435455, 2147483640}, {PLAIN(zetsMalloc_64fc), 134217727, 2147483632},
        {PLAIN(zetsMalloc_64fc), 134217728, -1}, {PLAIN(zetsMalloc_64sc), 2, 32}, {WIDE(zetsMalloc_8u_L), kMax, kMax},
        {WIDE(zetsMalloc_8u_L), 0, -1}, {WIDE(zetsMalloc_8s_L), -3, -1},
        {WIDE(zetsMalloc_16s_L), 0x3FFFFFFFFFFFFFFFLL, 0x7FFFFFFFFFFFFFFELL},
        {WIDE(zetsMalloc_16u_L), kMax, -2},  // passes on; the doubled count is negative and zetcore refuses it
        {WIDE(zetsMalloc_8sc_L), 4, 8}, {WIDE(zetsMalloc_32f_L), 0x3FFFFFFFFFFFFFFFLL, -4},
        {WIDE(zetsMalloc_32f_L), 0x4000000000000000LL, -1}, {WIDE(zetsMalloc_32f_L), 0, -1},
        {WIDE(zetsMalloc_32s_L), 1LL << 31, 1LL << 33}, {WIDE(zetsMalloc_32u_L), 9, 36},
        {WIDE(zetsMalloc_16sc_L), 9, 36}, {WIDE(zetsMalloc_64f_L), 0x1FFFFFFFFFFFFFFFLL, -8},
        {WIDE(zetsMalloc_64f_L), 0x2000000000000000LL, -1}, {WIDE(zetsMalloc_64s_L), 3, 24},
        {WIDE(zetsMalloc_32fc_L), 3, 24}, {WIDE(zetsMalloc_32sc_L), 0x2000000000000000LL, -1},
        {WIDE(zetsMalloc_64fc_L), 0x0FFFFFFFFFFFFFFFLL, -16}, {WIDE(zetsMalloc_64fc_L), 0x1000000000000000LL, -1},
        {WIDE(zetsMalloc_64sc_L), 1, 16},
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
