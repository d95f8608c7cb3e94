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

}  // namespace
