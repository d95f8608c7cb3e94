// Copy and Move against memcpy/memmove: every element size, every length up
// to 70 and beyond, every placement (against guard pages and at each byte
// offset), the size boundaries of the large copy, and overlap in Move.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "data_ops.hpp"
#include "zetcore.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using zettest::Placement;

constexpr unsigned char kCanary = 0xA5;

// The window of the region around [p, p + n): up to 256 bytes on each side.
struct Window { unsigned char* lo; unsigned char* hi; };
Window around(const GuardedRegion& r, const void* p, std::size_t n) {
    auto* b = static_cast<unsigned char*>(const_cast<void*>(p));
    return {std::max(r.begin(), b - std::min<std::ptrdiff_t>(256, b - r.begin())),
            std::min(r.end(), b + n + 256 <= r.end() ? b + n + 256 : r.end())};
}
void paint(const GuardedRegion& r, const void* p, std::size_t n) {
    const Window w = around(r, p, n);
    std::memset(w.lo, kCanary, w.hi - w.lo);
}
// Bytes around [p, p + n) still hold the canary.
::testing::AssertionResult untouchedAround(const GuardedRegion& r, const void* p, std::size_t n) {
    const auto* b = static_cast<const unsigned char*>(p);
    const Window w = around(r, p, n);
    for (const unsigned char* q = w.lo; q < w.hi; ++q) {
        if (q >= b && q < b + n) continue;
        if (*q != kCanary)
            return ::testing::AssertionFailure() << "byte written at offset " << (q - b) << " from the vector";
    }
    return ::testing::AssertionSuccess();
}

TEST(Copy, MatchesMemcpyAtEveryLengthAndPlacement) {
    std::mt19937_64 rng(1);
    GuardedRegion srcR(8192 * 16 + 64), dstR(8192 * 16 + 64);
    for (const auto& op : dataops::kCopy) {
        for (int len : zettest::kernelLengths()) {
            const std::size_t bytes = len * op.elem;
            for (const Placement& sp : zettest::placementsFor(op.elem)) {
                // Source placements against a destination at the guard, and
                // destination placements against a source at the guard.
                for (int pass = 0; pass < 2; ++pass) {
                    const Placement dp = pass == 0 ? Placement{Placement::Tail, 0} : sp;
                    const Placement srcP = pass == 0 ? sp : Placement{Placement::Head, 0};
                    auto* s = zettest::place<unsigned char>(srcR, srcP, bytes);
                    auto* d = zettest::place<unsigned char>(dstR, dp, bytes);
                    zettest::fillBytes(s, bytes, rng);
                    paint(dstR, d, bytes);
                    ASSERT_EQ(op.fn(s, d, len), zetStsOk) << op.name;
                    ASSERT_EQ(std::memcmp(s, d, bytes), 0) << op.name << " len " << len << " src " << srcP.name()
                                                          << " dst " << dp.name();
                    ASSERT_TRUE(untouchedAround(dstR, d, bytes)) << op.name << " len " << len << " dst " << dp.name();
                }
            }
        }
    }
}

// The large copy picks its route by size (32,767 / 4 MiB / half the cache)
// and by the distance of the pointers within a page (backward below 160).
TEST(Copy, LargeRoutesBySizeAndPageDistance) {
    int cache = 0;
    ASSERT_EQ(zetGetMaxCacheSizeB(&cache), 0);
    const std::size_t streamed = std::max<std::size_t>(4194305, static_cast<std::size_t>(cache) / 2 + 4097);
    const std::size_t sizes[] = {32766, 32767, 32768, 32769, 65536 + 77, 4194304, 4194305, streamed};
    // dst page offset minus src page offset (as unsigned 32-bit: negatives are huge).
    const int distances[] = {0, 1, 63, 64, 159, 160, 161, 2048, 4095, -1, -64, -160};
    std::mt19937_64 rng(2);
    for (std::size_t n : sizes) {
        GuardedRegion srcR(n + 8192), dstR(n + 8192);
        zettest::fillBytes(srcR.begin(), srcR.capacity(), rng);
        for (int dist : distances) {
            if (n > 4194305 && dist % 64 != 1 && dist != -1) continue;  // keep the huge case short
            const std::size_t srcOff = 200 + (rng() % 7);
            const std::size_t dstOff = srcOff + 4096 + dist;
            const unsigned char* s = srcR.begin() + srcOff;
            unsigned char* d = dstR.begin() + dstOff;
            ASSERT_LE(dstOff + n, dstR.capacity());
            paint(dstR, d, n);
            ASSERT_EQ(zetsCopy_8u(s, d, static_cast<int>(n)), zetStsOk);
            ASSERT_EQ(std::memcmp(s, d, n), 0) << "size " << n << " distance " << dist;
            ASSERT_TRUE(untouchedAround(dstR, d, n)) << "size " << n << " distance " << dist;
        }
        // The same sizes ending exactly at the guard pages.
        const unsigned char* s = srcR.tail<unsigned char>(n);
        unsigned char* d = dstR.tail<unsigned char>(n);
        ASSERT_EQ(zetsCopy_8u(s, d, static_cast<int>(n)), zetStsOk);
        ASSERT_EQ(std::memcmp(s, d, n), 0) << "size " << n << " at guard";
    }
}

TEST(Move, MatchesMemmoveForEveryOverlap) {
    std::mt19937_64 rng(3);
    const int lengths[] = {1, 2, 3, 7, 31, 32, 33, 63, 64, 65, 127, 128, 129, 300, 1000, 5003, 70000};
    for (const auto& op : dataops::kMove) {
        for (int len : lengths) {
            const std::size_t bytes = len * op.elem;
            if (bytes > 300000) continue;
            for (int shift : {-67, -33, -17, -9, -5, -3, -2, -1, 0, 1, 2, 3, 5, 9, 17, 33, 67}) {
                const long long shiftBytes = static_cast<long long>(shift) * static_cast<long long>(op.elem);
                const std::size_t margin = 67 * 16 + 64;
                GuardedRegion r(bytes + 2 * margin);
                zettest::fillBytes(r.begin(), r.capacity(), rng);
                for (std::size_t misalign : {0u, 1u, 13u}) {
                    unsigned char* s = r.begin() + margin + misalign;
                    unsigned char* d = s + shiftBytes;
                    std::vector<unsigned char> want(r.begin(), r.end());
                    std::memmove(want.data() + (d - r.begin()), want.data() + (s - r.begin()), bytes);
                    ASSERT_EQ(op.fn(s, d, len), zetStsOk) << op.name;
                    ASSERT_EQ(std::memcmp(want.data(), r.begin(), r.capacity()), 0)
                        << op.name << " len " << len << " shift " << shift << " misalign " << misalign;
                }
            }
        }
    }
}

TEST(Move, ShiftsUpByOneElementAtTheGuard) {
    for (int len : zettest::kernelLengths()) {
        GuardedRegion r((len + 1) * sizeof(float));
        float* v = r.tail<float>(len + 1);
        for (int i = 0; i <= len; ++i) v[i] = static_cast<float>(i);
        ASSERT_EQ(zetsMove_32f(v, v + 1, len), zetStsOk);
        EXPECT_EQ(v[0], 0.0f);
        for (int i = 1; i <= len; ++i) ASSERT_EQ(v[i], static_cast<float>(i - 1)) << "len " << len << " at " << i;
    }
}

TEST(CopyMove, StatusOrderAndNothingWrittenOnError) {
    alignas(16) unsigned char src[64] = {1}, dst[64];
    struct Case { bool srcNull, dstNull; int len; ZetStatus want; };
    const Case cases[] = {
        {false, false, 0, zetStsSizeErr}, {false, false, -1, zetStsSizeErr}, {false, false, -2147483647 - 1, zetStsSizeErr},
        {true, false, 3, zetStsNullPtrErr}, {false, true, 3, zetStsNullPtrErr}, {true, true, 0, zetStsNullPtrErr},
        {true, false, -1, zetStsNullPtrErr}, {false, false, 1, zetStsOk},
    };
    auto run = [&](const char* name, auto fn) {
        for (const Case& c : cases) {
            std::memset(dst, kCanary, sizeof dst);
            EXPECT_EQ(fn(c.srcNull ? nullptr : src, c.dstNull ? nullptr : dst, c.len), c.want) << name << " len " << c.len;
            if (c.want != zetStsOk) {
                EXPECT_TRUE(std::all_of(dst, dst + 64, [](unsigned char b) { return b == kCanary; })) << name;
            }
        }
    };
    for (const auto& op : dataops::kCopy) run(op.name, op.fn);
    for (const auto& op : dataops::kMove) run(op.name, op.fn);
}

// Move forms its byte count in 32 bits: a count that wraps to 0 or below is a
// size error, any other wrap moves only the wrapped number of bytes.
TEST(Move, ByteCountWrapsIn32Bits) {
    struct Case { int elem; int len; ZetStatus want; std::size_t bytesMoved; };
    const Case cases[] = {
        {4, 0x40000000, zetStsSizeErr, 0},   // 2^32 bytes wrap to 0
        {4, 0x20000000, zetStsSizeErr, 0},   // 2^31 bytes read as negative
        {4, 0x40000001, zetStsOk, 4},        // wraps to 4 bytes
        {8, 0x20000000, zetStsSizeErr, 0},
        {8, 0x20000003, zetStsOk, 24},
        {16, 0x10000002, zetStsOk, 32},
        {2, 0x7FFFFFFF, zetStsSizeErr, 0},   // 0xFFFFFFFE bytes: negative
    };
    for (const Case& c : cases) {
        unsigned char src[64], dst[64];
        for (int i = 0; i < 64; ++i) src[i] = static_cast<unsigned char>(i + 1);
        std::memset(dst, kCanary, sizeof dst);
        const dataops::Unary* op = nullptr;
        for (const auto& m : dataops::kMove)
            if (static_cast<int>(m.elem) == c.elem && !op) op = &m;
        ASSERT_NE(op, nullptr);
        EXPECT_EQ(op->fn(src, dst, c.len), c.want) << op->name << " len " << std::hex << c.len;
        for (std::size_t i = 0; i < 64; ++i)
            EXPECT_EQ(dst[i], i < c.bytesMoved ? src[i] : kCanary) << op->name << " byte " << i;
    }
}

TEST(CopyL, ChunkDriverChecksLengthFirst) {
    alignas(16) unsigned char src[256], dst[256];
    std::mt19937_64 rng(4);
    for (const auto& op : dataops::kCopyL) {
        EXPECT_EQ(op.fn(nullptr, nullptr, 0), zetStsSizeErr) << op.name;
        EXPECT_EQ(op.fn(src, dst, -5), zetStsSizeErr) << op.name;
        EXPECT_EQ(op.fn(nullptr, dst, 1), zetStsNullPtrErr) << op.name;
        EXPECT_EQ(op.fn(src, nullptr, 1), zetStsNullPtrErr) << op.name;
        for (long long len = 1; len * static_cast<long long>(op.elem) <= 256; ++len) {
            zettest::fillBytes(src, sizeof src, rng);
            std::memset(dst, kCanary, sizeof dst);
            ASSERT_EQ(op.fn(src, dst, len), zetStsOk);
            ASSERT_EQ(std::memcmp(src, dst, len * op.elem), 0) << op.name << " len " << len;
            ASSERT_TRUE(std::all_of(dst + len * op.elem, dst + 256, [](unsigned char b) { return b == kCanary; }));
        }
    }
}

}  // namespace
