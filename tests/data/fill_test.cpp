// Set and Zero: every element size, lengths and placements, the routes above
// 2 MiB (string store, streaming past the cache), 16-byte patterns on 8-byte
// boundaries, and the 32-bit byte count of Zero.
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

constexpr unsigned char kCanary = 0x5A;

// Every element of p holds the pattern, and the 64 bytes on either side (where
// inside the region) hold the canary.
::testing::AssertionResult filledWith(const GuardedRegion& r, const unsigned char* p, std::size_t elem, std::size_t len,
                                      const unsigned char* pattern) {
    // Compare against the pattern repeated over a 64 KiB block (a multiple of every element size).
    static std::vector<unsigned char> block(65536);
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = pattern[i % elem];
    for (std::size_t done = 0, total = len * elem; done < total; done += block.size()) {
        const std::size_t n = std::min(block.size(), total - done);
        if (std::memcmp(p + done, block.data(), n) != 0) {
            for (std::size_t i = done / elem;; ++i)
                if (std::memcmp(p + i * elem, pattern, elem) != 0) return ::testing::AssertionFailure() << "element " << i;
        }
    }
    const unsigned char* lo = std::max<const unsigned char*>(r.begin(), p - std::min<std::ptrdiff_t>(64, p - r.begin()));
    const unsigned char* hi = std::min<const unsigned char*>(r.end(), p + len * elem + 64 <= r.end() ? p + len * elem + 64 : r.end());
    for (const unsigned char* q = lo; q < hi; ++q)
        if ((q < p || q >= p + len * elem) && *q != kCanary)
            return ::testing::AssertionFailure() << "byte written at offset " << (q - p);
    return ::testing::AssertionSuccess();
}

TEST(Set, FillsEveryLengthAndPlacement) {
    std::mt19937_64 rng(5);
    GuardedRegion r(4200 * 16 + 64);
    for (const auto& op : dataops::kSet) {
        for (int len : zettest::kernelLengths()) {
            for (const Placement& p : zettest::allPlacements()) {
                unsigned char pattern[16];
                zettest::fillBytes(pattern, sizeof pattern, rng);
                auto* d = zettest::place<unsigned char>(r, p, len * op.elem);
                std::memset(std::max(r.begin(), d - 64), kCanary, std::min<std::size_t>(len * op.elem + 128, r.end() - std::max(r.begin(), d - 64)));
                ASSERT_EQ(op.fn(pattern, d, len), zetStsOk);
                ASSERT_TRUE(filledWith(r, d, op.elem, len, pattern)) << op.name << " len " << len << " " << p.name();
            }
        }
    }
}

TEST(Zero, ClearsEveryLengthAndPlacement) {
    GuardedRegion r(4200 * 16 + 64);
    const unsigned char zeros[16] = {};
    for (const auto& op : dataops::kZero) {
        for (int len : zettest::kernelLengths()) {
            for (const Placement& p : zettest::allPlacements()) {
                auto* d = zettest::place<unsigned char>(r, p, len * op.elem);
                std::memset(std::max(r.begin(), d - 64), kCanary, std::min<std::size_t>(len * op.elem + 128, r.end() - std::max(r.begin(), d - 64)));
                ASSERT_EQ(op.fn(d, len), zetStsOk);
                ASSERT_TRUE(filledWith(r, d, op.elem, len, zeros)) << op.name << " len " << len << " " << p.name();
            }
        }
    }
}

// Around the 2 MiB boundary (32 KiB for bytes), past the cache where Set
// streams, at offsets that keep, halve or break the element alignment.
TEST(SetZero, LargeRoutesAtEveryOffset) {
    int cache = 0;
    ASSERT_EQ(zetGetMaxCacheSizeB(&cache), 0);
    const std::size_t beyondCache = static_cast<std::size_t>(cache) + 4096 + 48;
    std::mt19937_64 rng(6);
    for (const auto& op : dataops::kSet) {
        const std::size_t e = op.elem;
        const std::size_t byteSizes[] = {32768, 32768 + e, 2097152, 2097152 + e, 2097152 + 64 * e, beyondCache / e * e};
        for (std::size_t bytes : byteSizes) {
            // Past the cache only one export per element size, at an aligned, a
            // half-aligned (16-byte patterns) and a misaligned offset.
            const bool huge = bytes > 4 * 2097152;
            if (huge && std::strcmp(op.name, "zetsSet_32s") && std::strcmp(op.name, "zetsSet_32sc") &&
                std::strcmp(op.name, "zetsSet_64sc") && std::strcmp(op.name, "zetsSet_8u") && std::strcmp(op.name, "zetsSet_16s"))
                continue;
            GuardedRegion r(bytes + 256);
            std::vector<std::size_t> offsets{0, e, 8, 24, 1, 2};
            if (huge) offsets = {0, 8, 2};
            for (std::size_t off : offsets) {
                unsigned char pattern[16];
                zettest::fillBytes(pattern, sizeof pattern, rng);
                const std::size_t len = bytes / e;
                unsigned char* d = r.at<unsigned char>(off);
                std::memset(r.begin(), kCanary, 256);
                std::memset(d + bytes, kCanary, r.end() - (d + bytes));
                ASSERT_EQ(op.fn(pattern, d, static_cast<int>(len)), zetStsOk);
                ASSERT_TRUE(filledWith(r, d, e, len, pattern)) << op.name << " bytes " << bytes << " offset " << off;
            }
            // Ending at the guard page.
            unsigned char pattern[16];
            zettest::fillBytes(pattern, sizeof pattern, rng);
            ASSERT_EQ(op.fn(pattern, r.tail<unsigned char>(bytes), static_cast<int>(bytes / e)), zetStsOk);
            ASSERT_EQ(std::memcmp(r.tail<unsigned char>(bytes) + bytes - e, pattern, e), 0) << op.name;
        }
    }
    const unsigned char zeros[16] = {};
    for (const auto& op : dataops::kZero) {
        const std::size_t e = op.elem;
        for (std::size_t bytes : {std::size_t{32768}, 32768 + e, std::size_t{2097152}, 2097152 + e, 4 * 2097152 + 3 * e}) {
            GuardedRegion r(bytes + 256);
            for (std::size_t off : {std::size_t{0}, std::size_t{3}, std::size_t{40}}) {
                unsigned char* d = r.at<unsigned char>(off);
                std::memset(r.begin(), kCanary, 256);
                std::memset(d + bytes, kCanary, r.end() - (d + bytes));
                ASSERT_EQ(op.fn(d, static_cast<int>(bytes / e)), zetStsOk);
                ASSERT_TRUE(filledWith(r, d, e, bytes / e, zeros)) << op.name << " bytes " << bytes << " offset " << off;
            }
            std::memset(r.begin(), kCanary, r.capacity());
            ASSERT_EQ(op.fn(r.tail<unsigned char>(bytes), static_cast<int>(bytes / e)), zetStsOk);
            ASSERT_TRUE(filledWith(r, r.tail<unsigned char>(bytes), e, bytes / e, zeros)) << op.name;
        }
    }
}

TEST(SetZero, StatusOrderAndNothingWrittenOnError) {
    unsigned char d[64];
    const unsigned char pattern[16] = {1, 2, 3};
    const int badLengths[] = {0, -1, -2147483647 - 1};
    auto untouched = [&] { return std::all_of(d, d + 64, [](unsigned char b) { return b == kCanary; }); };
    for (const auto& op : dataops::kSet) {
        for (int len : badLengths) {
            std::memset(d, kCanary, sizeof d);
            EXPECT_EQ(op.fn(pattern, d, len), zetStsSizeErr) << op.name;
            EXPECT_TRUE(untouched()) << op.name;
        }
        EXPECT_EQ(op.fn(pattern, nullptr, 0), zetStsNullPtrErr) << op.name;
        EXPECT_EQ(op.fn(pattern, nullptr, 5), zetStsNullPtrErr) << op.name;
    }
    for (const auto& op : dataops::kZero) {
        for (int len : badLengths) {
            std::memset(d, kCanary, sizeof d);
            EXPECT_EQ(op.fn(d, len), zetStsSizeErr) << op.name;
            EXPECT_TRUE(untouched()) << op.name;
        }
        EXPECT_EQ(op.fn(nullptr, 0), zetStsNullPtrErr) << op.name;
    }
    for (const auto& op : dataops::kZeroL) {
        EXPECT_EQ(op.fn(nullptr, 0), zetStsSizeErr) << op.name << ": length before pointers";
        EXPECT_EQ(op.fn(nullptr, -1), zetStsSizeErr) << op.name;
        EXPECT_EQ(op.fn(nullptr, 1), zetStsNullPtrErr) << op.name;
        std::memset(d, kCanary, sizeof d);
        ASSERT_EQ(op.fn(d, static_cast<long long>(48 / op.elem)), zetStsOk);
        for (int i = 0; i < 64; ++i) ASSERT_EQ(d[i], i < 48 ? 0 : kCanary) << op.name << " byte " << i;
    }
}

// Zero forms its byte count in 32 bits. 2^30 floats wrap to a count of 0:
// the kernel clears a single byte and reports success. Other wraps clear the
// wrapped count; the _L forms are for such sizes.
TEST(Zero, ByteCountWrapsIn32Bits) {
    struct Case { ZetStatus (*fn)(unsigned char*, int); int len; std::size_t cleared; };
    const Case cases[] = {
        {[](unsigned char* p, int n) { return zetsZero_32f(reinterpret_cast<Zet32f*>(p), n); }, 0x40000000, 1},
        {[](unsigned char* p, int n) { return zetsZero_32s(reinterpret_cast<Zet32s*>(p), n); }, 0x40000001, 4},
        {[](unsigned char* p, int n) { return zetsZero_64f(reinterpret_cast<Zet64f*>(p), n); }, 0x20000000, 1},
        {[](unsigned char* p, int n) { return zetsZero_32fc(reinterpret_cast<Zet32fc*>(p), n); }, 0x20000002, 16},
        {[](unsigned char* p, int n) { return zetsZero_64fc(reinterpret_cast<Zet64fc*>(p), n); }, 0x10000000, 1},
        {[](unsigned char* p, int n) { return zetsZero_64sc(reinterpret_cast<Zet64sc*>(p), n); }, 0x10000003, 48},
    };
    for (const Case& c : cases) {
        alignas(64) unsigned char buf[128];
        std::memset(buf, kCanary, sizeof buf);
        EXPECT_EQ(c.fn(buf, c.len), zetStsOk) << std::hex << c.len;
        for (std::size_t i = 0; i < sizeof buf; ++i)
            ASSERT_EQ(buf[i], i < c.cleared ? 0 : kCanary) << "len " << std::hex << c.len << " byte " << std::dec << i;
    }
}

}  // namespace
