// Copy, Move, Set and Zero as rows, then what rows cannot reach: overlapping
// moves, byte counts formed in 32 bits, and the routes of large sizes.
#include <algorithm>

#include "conform.hpp"
#include "zetcore.h"

namespace {

using conform::op;
using u8 = unsigned char;

const auto same = [](auto a) { return a; };
struct Zeros { template <class T> operator T() const { return T{}; } };  // zero of any output type
// Distinct bytes in every part, so a pattern laid at the wrong phase shows.
const std::vector<conform::K> kValue = {conform::K(-12345.678, 23456.5)};

CONFORM(copy, op(same), Z(zetsCopy_8u, "sdn"), Z(zetsCopy_16s, "sdn"), Z(zetsCopy_16sc, "sdn"),
        Z(zetsCopy_32s, "sdn"), Z(zetsCopy_32f, "sdn"), Z(zetsCopy_32sc, "sdn"), Z(zetsCopy_32fc, "sdn"),
        Z(zetsCopy_64s, "sdn"), Z(zetsCopy_64f, "sdn"), Z(zetsCopy_64sc, "sdn"), Z(zetsCopy_64fc, "sdn"),
        Z(zetsCopy_32f_L, "sdN"), Z(zetsCopy_32fc_L, "sdN"), Z(zetsCopy_64f_L, "sdN"), Z(zetsCopy_64fc_L, "sdN"));
CONFORM(move, op(same), Z(zetsMove_8u, "sdn"), Z(zetsMove_16s, "sdn"), Z(zetsMove_16sc, "sdn"),
        Z(zetsMove_32s, "sdn"), Z(zetsMove_32f, "sdn"), Z(zetsMove_32sc, "sdn"), Z(zetsMove_32fc, "sdn"),
        Z(zetsMove_64s, "sdn"), Z(zetsMove_64f, "sdn"), Z(zetsMove_64sc, "sdn"), Z(zetsMove_64fc, "sdn"));
CONFORM(set, op(same).k(kValue), Z(zetsSet_8u, "kdn"), Z(zetsSet_16s, "kdn"), Z(zetsSet_16sc, "kdn"),
        Z(zetsSet_32s, "kdn"), Z(zetsSet_32f, "kdn"), Z(zetsSet_32sc, "kdn"), Z(zetsSet_32fc, "kdn"),
        Z(zetsSet_64s, "kdn"), Z(zetsSet_64f, "kdn"), Z(zetsSet_64sc, "kdn"), Z(zetsSet_64fc, "kdn"));
CONFORM(zero, op([] { return Zeros{}; }), Z(zetsZero_8u, "dn"), Z(zetsZero_16s, "dn"), Z(zetsZero_16sc, "dn"),
        Z(zetsZero_32s, "dn"), Z(zetsZero_32f, "dn"), Z(zetsZero_32sc, "dn"), Z(zetsZero_32fc, "dn"),
        Z(zetsZero_64s, "dn"), Z(zetsZero_64f, "dn"), Z(zetsZero_64sc, "dn"), Z(zetsZero_64fc, "dn"),
        Z(zetsZero_32f_L, "dN"), Z(zetsZero_32fc_L, "dN"), Z(zetsZero_64f_L, "dN"), Z(zetsZero_64fc_L, "dN"));

// Byte views of Move and Zero for 1-, 4-, 8- and 16-byte elements.
ZetStatus moveBytes(int e, const u8* s, u8* d, int n) {
    auto as = [&]<class T>(ZetStatus (*f)(const T*, T*, int)) { return f((const T*)s, (T*)d, n); };
    return e == 1 ? as(zetsMove_8u) : e == 4 ? as(zetsMove_32f) : e == 8 ? as(zetsMove_64f) : as(zetsMove_64fc);
}
ZetStatus zeroBytes(int e, u8* d, int n) {
    return e == 4 ? zetsZero_32f((Zet32f*)d, n) : e == 8 ? zetsZero_64f((Zet64f*)d, n) : zetsZero_64fc((Zet64fc*)d, n);
}

// Overlap either way, within and beyond the short moves, at the byte and element level.
TEST(Move, MatchesMemmoveForEveryOverlap) {
    std::mt19937_64 rng(3);
    for (int len : {1, 7, 33, 255, 256, 257, 1000, 5003})
        for (int e : {1, 4, 16}) {
            const std::size_t margin = 67 * 16 + 64, bytes = static_cast<std::size_t>(len) * e;
            zettest::GuardedRegion r(bytes + 2 * margin);
            for (int shift : {-67, -17, -3, -1, 1, 3, 17, 67})
                for (std::size_t mis : {0u, 13u}) {
                    zettest::fillBytes(r.begin(), r.capacity(), rng);
                    std::vector<u8> want(r.begin(), r.end());
                    std::memmove(want.data() + margin + mis + shift * e, want.data() + margin + mis, bytes);
                    u8* s = r.begin() + margin + mis;
                    ASSERT_EQ(moveBytes(e, s, s + shift * e, len), zetStsOk);
                    ASSERT_EQ(std::memcmp(want.data(), r.begin(), r.capacity()), 0)
                        << e << "-byte len " << len << " shift " << shift << " misaligned " << mis;
                }
        }
}

// Move and Zero form their byte count in 32 bits. Move refuses a count that
// wraps to 0 or below, Zero clears a single byte for a wrapped 0; any other
// wrap moves or clears just the wrapped count (the _L forms are for such sizes).
TEST(MoveZero, ByteCountWrapsIn32Bits) {
    struct Case { int e; bool zero; int len; std::size_t bytes; };  // nothing moved: a size error
    const Case cases[] = {{4, false, 0x40000000, 0}, {4, false, 0x20000000, 0}, {4, false, 0x40000001, 4},
                          {16, false, 0x10000002, 32}, {8, false, 0x20000003, 24}, {4, true, 0x40000000, 1},
                          {4, true, 0x40000001, 4}, {16, true, 0x10000000, 1}, {16, true, 0x10000003, 48},
                          {8, true, 0x20000000, 1}};
    alignas(64) u8 src[128], dst[128];
    for (int i = 0; i < 128; ++i) src[i] = static_cast<u8>(i + 1);
    for (const Case& c : cases) {
        std::memset(dst, 0xA5, sizeof dst);
        const ZetStatus st = c.zero ? zeroBytes(c.e, dst, c.len) : moveBytes(c.e, src, dst, c.len);
        EXPECT_EQ(st, c.bytes ? zetStsOk : zetStsSizeErr) << c.len;
        for (std::size_t i = 0; i < sizeof dst; ++i)
            ASSERT_EQ(dst[i], i >= c.bytes ? 0xA5 : c.zero ? 0 : src[i]) << c.len << (c.zero ? " zero" : " move") << i;
    }
}

// [d, d + n) repeats `want` every `period` bytes, and the 64 bytes on each side still hold 0xA5.
::testing::AssertionResult holds(const u8* d, std::size_t n, const u8* want, std::size_t period) {
    for (std::size_t i = 0; i < 64; ++i)
        if (d[-1 - static_cast<std::ptrdiff_t>(i)] != 0xA5 || d[n + i] != 0xA5) return ::testing::AssertionFailure();
    for (std::size_t at = 0; at < n; at += period)
        if (std::memcmp(d + at, want, std::min(period, n - at)) != 0) return ::testing::AssertionFailure() << at;
    return ::testing::AssertionSuccess();
}

// Beyond the rows' lengths: the large copy routes by size (32 KiB, 4 MiB,
// half the cache) and by the pointers' distance within a page (backward
// below 160 bytes, 8-byte string moves when both are aligned); Zero takes the
// string store above 2 MiB (32 KiB for bytes); Set streams past the cache,
// 16-byte patterns then landing on 8-byte boundaries.
TEST(CopySetZero, LargeRoutes) {
    int cache = 0;
    ASSERT_EQ(zetGetMaxCacheSizeB(&cache), 0);
    std::mt19937_64 rng(2);
    const std::size_t streamed = std::max<std::size_t>(4194305, cache / 2 + 4097), beyond = cache + 4096 + 48;
    for (std::size_t n : {std::size_t{300}, std::size_t{32767}, std::size_t{32845}, std::size_t{4194305}, streamed}) {
        zettest::GuardedRegion sr(n + 8192), dr(n + 8192);
        zettest::fillBytes(sr.begin(), n + 4096, rng);
        for (int dist : {1, -1, 0, 159, 160, 2048, -64}) {
            if (n == streamed && dist == 0) break;  // keep the largest short
            u8 *s = sr.begin() + 203, *d = dr.begin() + 4299 + dist;
            std::memset(d - 64, 0xA5, 64), std::memset(d + n, 0xA5, 64);
            ASSERT_EQ(zetsCopy_8u(s, d, static_cast<int>(n)), zetStsOk);
            ASSERT_TRUE(holds(d, n, s, n)) << "size " << n << " distance " << dist;
        }
    }
    auto fill = [&]<class T>(ZetStatus (*set)(T, T*, int), ZetStatus (*zero)(T*, int), std::size_t bytes, int at) {
        zettest::GuardedRegion r(bytes + 256);
        u8* d = r.at<u8>(at);
        std::memset(d - 64, 0xA5, 64), std::memset(d + bytes, 0xA5, 64);
        std::vector<u8> block(4096);
        T v;
        zettest::fillBytes(&v, sizeof v, rng);
        for (std::size_t i = 0; i < block.size(); ++i) block[i] = reinterpret_cast<const u8*>(&v)[i % sizeof v];
        ASSERT_EQ(set(v, reinterpret_cast<T*>(d), static_cast<int>(bytes / sizeof v)), zetStsOk);
        ASSERT_TRUE(holds(d, bytes, block.data(), block.size())) << "set " << sizeof v << " " << bytes << " at " << at;
        if (bytes > beyond / 2) return;
        std::fill(block.begin(), block.end(), 0);
        ASSERT_EQ(zero(reinterpret_cast<T*>(d), static_cast<int>(bytes / sizeof v)), zetStsOk);
        ASSERT_TRUE(holds(d, bytes, block.data(), block.size())) << "zero " << sizeof v << " " << bytes << " at " << at;
    };
    for (int at : {0, 8, 1}) {
        fill(zetsSet_8u, zetsZero_8u, 32769 + at, at);
        fill(zetsSet_16s, zetsZero_16s, 2097152 + 2 * 64, at);
        fill(zetsSet_32s, zetsZero_32s, 2097152 + 4 * 3, at);
        fill(zetsSet_64s, zetsZero_64s, 2097152 + 8, at);
        fill(zetsSet_64sc, zetsZero_64sc, 2097152 + 16 * 3, at);
    }
    fill(zetsSet_8u, zetsZero_8u, beyond + 1, 8);
    fill(zetsSet_32s, zetsZero_32s, beyond, 8);
    fill(zetsSet_64sc, zetsZero_64sc, beyond, 8);
}

}  // namespace
