// The shared frame helpers every export is built from: check order, the
// _L chunk driver, and the doubled length of forwarding complex forms.
#include <gtest/gtest.h>

#include <vector>

#include "frame/checks.hpp"
#include "frame/chunk.hpp"

namespace {

using zet::i64;

TEST(Checks, ForwardDoubledChecksLengthFirstAndDoublesIn32Bits) {
    struct Case { int len; bool reached; int doubled; ZetStatus want; };
    const Case cases[] = {
        {0, false, 0, zetStsSizeErr}, {-3, false, 0, zetStsSizeErr}, {1, true, 2, zetStsOk},
        {0x3FFFFFFF, true, 0x7FFFFFFE, zetStsOk},
        {0x40000000, true, static_cast<int>(0x80000000u), zetStsOk},  // wraps negative: the real form rejects it
        {0x7FFFFFFF, true, -2, zetStsOk},
    };
    for (const Case& c : cases) {
        bool reached = false;
        int seen = 0;
        const ZetStatus st = zet::forwardDoubled(c.len, [&](int n) {
            reached = true;
            seen = n;
            return zetStsOk;
        });
        EXPECT_EQ(st, c.want) << c.len;
        EXPECT_EQ(reached, c.reached) << c.len;
        if (c.reached) {
            EXPECT_EQ(seen, c.doubled) << c.len;
        }
    }
}

struct Call { i64 off; int n; };

template <std::size_t E>
std::vector<Call> chunkCalls(i64 len, std::vector<ZetStatus> statuses, ZetStatus* result) {
    std::vector<Call> calls;
    std::size_t k = 0;
    *result = zet::chunked<E>(len, [&](i64 off, int n) {
        calls.push_back({off, n});
        return k < statuses.size() ? statuses[k++] : zetStsOk;
    });
    return calls;
}

TEST(ChunkDriver, PieceSizesByElementSize) {
    EXPECT_EQ(zet::kChunkElems<4>, 0x1FFFFFFF);
    EXPECT_EQ(zet::kChunkElems<8>, 0x0FFFFFFF);
    EXPECT_EQ(zet::kChunkElems<16>, 0x07FFFFFF);

    ZetStatus st;
    // 536,870,912 floats: one full chunk and one element.
    auto calls = chunkCalls<4>(536870912LL, {}, &st);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].off, 0);
    EXPECT_EQ(calls[0].n, 0x1FFFFFFF);
    EXPECT_EQ(calls[1].off, 0x1FFFFFFF);
    EXPECT_EQ(calls[1].n, 1);
    EXPECT_EQ(st, zetStsOk);

    calls = chunkCalls<16>(3LL * 0x07FFFFFF, {}, &st);
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[2].off, 2LL * 0x07FFFFFF);
    EXPECT_EQ(calls[2].n, 0x07FFFFFF);

    calls = chunkCalls<8>(5, {}, &st);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].n, 5);
}

TEST(ChunkDriver, StatusRules) {
    struct Case { i64 len; std::vector<ZetStatus> statuses; std::size_t calls; ZetStatus want; };
    const i64 three = 3LL * 0x1FFFFFFF;
    const Case cases[] = {
        {0, {}, 0, zetStsSizeErr}, {-1, {}, 0, zetStsSizeErr},
        {three, {zetStsNullPtrErr}, 1, zetStsNullPtrErr},                              // error stops at once
        {three, {zetStsOk, zetStsSizeErr}, 2, zetStsSizeErr},
        {three, {zetStsDivByZeroWarn, zetStsOk, zetStsOk}, 3, zetStsOk},                // early warning is lost
        {three, {zetStsOk, zetStsOk, zetStsDivByZeroWarn}, 3, zetStsDivByZeroWarn},     // last chunk's warning kept
        {three, {zetStsDivByZeroWarn, zetStsOk, zetStsNegSqrtWarn}, 3, zetStsNegSqrtWarn},
    };
    for (const Case& c : cases) {
        ZetStatus st;
        const auto calls = chunkCalls<4>(c.len, c.statuses, &st);
        EXPECT_EQ(calls.size(), c.calls) << c.len;
        EXPECT_EQ(st, c.want) << c.len;
    }
}

}  // namespace
