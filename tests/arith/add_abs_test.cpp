// zetsAdd_32f and zetsAbs_32f against their formulas stated once, bit for bit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>
#include <xmmintrin.h>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::bitsOf;
using zettest::fromBits;
using zettest::GuardedRegion;
using zettest::Placement;

float quiet(float x) { return fromBits<float>(bitsOf(x) | 0x00400000u); }

// dst = src2 + src1 with src2 the left operand: of two NaNs, src2's (quieted) wins.
float refAdd(float a, float b) {
    if (std::isnan(b)) return quiet(b);
    if (std::isnan(a)) return quiet(a);
    return b + a;
}

// max(-a, a) with the processor's rule: the second operand unless the first compares greater.
float refAbs(float a) {
    const float n = fromBits<float>(bitsOf(a) ^ 0x80000000u);
    return n > a ? n : a;
}

// Vectors are placed at any byte address, so the test moves data in and out
// with memcpy and reads values only from aligned copies.
TEST(Add32f, MatchesFormulaAtEveryLengthAndPlacement) {
    std::mt19937_64 rng(10);
    const std::size_t cap = 4200 * sizeof(float);
    GuardedRegion r1(cap), r2(cap), rd(cap);
    std::vector<float> va, vb, got, want;
    for (int len : zettest::kernelLengths()) {
        va.resize(len), vb.resize(len), got.resize(len), want.resize(len);
        const std::size_t bytes = len * sizeof(float);
        for (const Placement& p : zettest::allPlacements()) {
            // Move each vector through the placements while the others sit against a guard.
            for (int which = 0; which < 3; ++which) {
                const Placement tail{Placement::Tail, 0}, head{Placement::Head, 0};
                float* a = zettest::place<float>(r1, which == 0 ? p : tail, len);
                float* b = zettest::place<float>(r2, which == 1 ? p : head, len);
                float* d = zettest::place<float>(rd, which == 2 ? p : tail, len);
                zettest::fillFloats(va.data(), len, rng);
                zettest::fillFloats(vb.data(), len, rng);
                std::memcpy(a, va.data(), bytes);
                std::memcpy(b, vb.data(), bytes);
                for (int i = 0; i < len; ++i) want[i] = refAdd(va[i], vb[i]);
                ASSERT_EQ(zetsAdd_32f(a, b, d, len), zetStsOk);
                std::memcpy(got.data(), d, bytes);
                const long long bad = zettest::firstBitMismatch(got.data(), want.data(), len);
                ASSERT_EQ(bad, -1) << "len " << len << " " << p.name() << " vector " << which << " a="
                                   << zettest::hexBits(va[bad]) << " b=" << zettest::hexBits(vb[bad]) << " got "
                                   << zettest::hexBits(got[bad]) << " want " << zettest::hexBits(want[bad]);
            }
        }
    }
}

TEST(Add32f, InPlaceAndEverySpecialPair) {
    const std::vector<float> sp = zettest::specialFloats();
    std::vector<float> a, b;
    for (float x : sp)
        for (float y : sp) a.push_back(x), b.push_back(y);
    const int len = static_cast<int>(a.size());
    std::vector<float> want(len), d(len);
    for (int i = 0; i < len; ++i) want[i] = refAdd(a[i], b[i]);

    struct Case { const char* name; int dstIs; };  // 0: separate, 1: dst == src1, 2: dst == src2
    for (const Case c : {Case{"separate", 0}, Case{"dst==src1", 1}, Case{"dst==src2", 2}}) {
        std::vector<float> s1 = a, s2 = b;
        float* dst = c.dstIs == 1 ? s1.data() : c.dstIs == 2 ? s2.data() : d.data();
        ASSERT_EQ(zetsAdd_32f(s1.data(), s2.data(), dst, len), zetStsOk);
        const long long bad = zettest::firstBitMismatch(dst, want.data(), len);
        ASSERT_EQ(bad, -1) << c.name << " a=" << zettest::hexBits(a[bad]) << " b=" << zettest::hexBits(b[bad]);
    }
    // Spelled out: of two NaNs the second vector's payload is delivered, quieted.
    const float n1 = fromBits<float>(0x7F800001u), n2 = fromBits<float>(0xFFC00ABCu);
    float out;
    ASSERT_EQ(zetsAdd_32f(&n1, &n2, &out, 1), zetStsOk);
    EXPECT_EQ(bitsOf(out), 0xFFC00ABCu);
    ASSERT_EQ(zetsAdd_32f(&n2, &n1, &out, 1), zetStsOk);
    EXPECT_EQ(bitsOf(out), 0x7FC00001u);
}

TEST(Add32f, FollowsTheThreadRoundingMode) {
    const unsigned saved = _mm_getcsr();
    std::mt19937_64 rng(11);
    std::vector<float> a(67), b(67), d(67);
    zettest::fillFloats(a.data(), a.size(), rng, 0);
    zettest::fillFloats(b.data(), b.size(), rng, 0);
    for (unsigned mode : {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO}) {
        _MM_SET_ROUNDING_MODE(mode);
        ASSERT_EQ(zetsAdd_32f(a.data(), b.data(), d.data(), 67), zetStsOk);
        for (int i = 0; i < 67; ++i) {
            volatile float want = b[i] + a[i];
            ASSERT_EQ(bitsOf(d[i]), bitsOf(static_cast<float>(want))) << "mode " << mode << " at " << i;
        }
    }
    _mm_setcsr(saved);
}

TEST(Abs32f, MatchesFormulaAtEveryLengthAndPlacementAndInPlace) {
    std::mt19937_64 rng(12);
    const std::size_t cap = 4200 * sizeof(float);
    GuardedRegion rs(cap), rd(cap);
    std::vector<float> vs, got, want;
    for (int len : zettest::kernelLengths()) {
        vs.resize(len), got.resize(len), want.resize(len);
        const std::size_t bytes = len * sizeof(float);
        for (const Placement& p : zettest::allPlacements()) {
            for (int which = 0; which < 3; ++which) {  // 2: in place
                float* s = zettest::place<float>(rs, which == 0 ? p : Placement{Placement::Tail, 0}, len);
                float* d = which == 2 ? s : zettest::place<float>(rd, which == 1 ? p : Placement{Placement::Head, 0}, len);
                zettest::fillFloats(vs.data(), len, rng);
                std::memcpy(s, vs.data(), bytes);
                for (int i = 0; i < len; ++i) want[i] = refAbs(vs[i]);
                ASSERT_EQ(zetsAbs_32f(s, d, len), zetStsOk);
                std::memcpy(got.data(), d, bytes);
                const long long bad = zettest::firstBitMismatch(got.data(), want.data(), len);
                ASSERT_EQ(bad, -1) << "len " << len << " " << p.name() << " case " << which << " got "
                                   << zettest::hexBits(got[bad]) << " want " << zettest::hexBits(want[bad]);
            }
        }
    }
}

TEST(Abs32f, NaNAndSignedZeroPassThrough) {
    struct Case { std::uint32_t in, out; };
    const Case cases[] = {
        {0x80000000u, 0x80000000u},  // -0 stays -0: +0 is not greater than -0
        {0x00000000u, 0x00000000u},
        {0xFFC00001u, 0xFFC00001u},  // a negative NaN keeps its sign
        {0xFF800001u, 0xFF800001u},  // and a signalling one stays signalling
        {0x7FC12345u, 0x7FC12345u},
        {0xFF800000u, 0x7F800000u},
        {0xBF800000u, 0x3F800000u},
        {0x80000001u, 0x00000001u},
    };
    for (const Case& c : cases) {
        // At every position of a 19-element vector, so each loop of the kernel sees it.
        for (int pos = 0; pos < 19; ++pos) {
            std::vector<float> v(19, -2.0f), d(19);
            v[pos] = fromBits<float>(c.in);
            ASSERT_EQ(zetsAbs_32f(v.data(), d.data(), 19), zetStsOk);
            EXPECT_EQ(bitsOf(d[pos]), c.out) << std::hex << c.in << " at " << pos;
        }
    }
}

TEST(AddAbs32f, StatusOrderAndNothingWrittenOnError) {
    float a[4] = {1, 2, 3, 4}, b[4] = {1, 1, 1, 1}, d[4];
    const float kMark = -7.0f;
    struct Case { bool n1, n2, nd; int len; ZetStatus want; };
    const Case cases[] = {
        {true, false, false, 4, zetStsNullPtrErr}, {false, true, false, 4, zetStsNullPtrErr},
        {false, false, true, 4, zetStsNullPtrErr}, {true, true, true, 0, zetStsNullPtrErr},
        {false, true, false, -1, zetStsNullPtrErr}, {false, false, false, 0, zetStsSizeErr},
        {false, false, false, -2147483647 - 1, zetStsSizeErr}, {false, false, false, 4, zetStsOk},
    };
    for (const Case& c : cases) {
        std::fill(d, d + 4, kMark);
        EXPECT_EQ(zetsAdd_32f(c.n1 ? nullptr : a, c.n2 ? nullptr : b, c.nd ? nullptr : d, c.len), c.want);
        if (c.want != zetStsOk) {
            EXPECT_EQ(d[0], kMark);
        }
        std::fill(d, d + 4, kMark);
        if (!c.n2) {  // Abs has one source: reuse the src1/dst columns
            EXPECT_EQ(zetsAbs_32f(c.n1 ? nullptr : a, c.nd ? nullptr : d, c.len), c.want);
            if (c.want != zetStsOk) {
            EXPECT_EQ(d[0], kMark);
        }
        }
    }
}

}  // namespace
