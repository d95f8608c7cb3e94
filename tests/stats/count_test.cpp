// Range counts and zero crossings against scalar definitions over every
// length and placement, with the values that decide a count planted often:
// the bounds themselves and their neighbours, zeros of both signs, NaNs.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using zettest::Placement;

template <class T> constexpr bool kFloat = std::is_floating_point_v<T>;

// Values that sit on or next to lo, hi and zero, plus the extremes.
// The neighbour of x in the direction of `to`.
template <class T> T next(T x, T to) {
    if constexpr (kFloat<T>) return std::nextafter(x, to);
    else return static_cast<T>(to > x ? x + 1 : x - 1);
}

template <class T> std::vector<T> inputs(std::size_t n, T lo, T hi, std::mt19937_64& rng) {
    std::vector<T> v(n);
    if constexpr (kFloat<T>) zettest::fillFloats(v.data(), n, rng, 6);
    else for (auto& x : v) x = static_cast<T>(rng() % 7 ? rng() % 41 - 20 : rng());
    for (std::size_t i = 0; i < n; ++i) {
        if (rng() % 3) continue;
        const T near[] = {lo, hi, T(0), static_cast<T>(-T(0)), std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(),
                          next(lo, hi), next(hi, lo), next(lo, std::numeric_limits<T>::lowest())};
        v[i] = near[rng() % 9];
    }
    return v;
}

template <class T> long long countRef(const std::vector<T>& v, T lo, T hi) {
    long long c = 0;
    for (T x : v) c += (lo <= x && x <= hi);
    return c;
}

template <class T> int sgn(T x) { return x > 0 ? 1 : x < 0 ? -1 : 0; }
template <class T> bool signBit(T x) {
    if constexpr (kFloat<T>) return std::signbit(x);
    else return x < 0;
}
template <class T> double crossingsRef(const std::vector<T>& v, int mode) {
    long long halves = 0;
    for (std::size_t i = 1; i < v.size(); ++i) {
        if (mode == zetZCR) halves += 2 * ((v[i] < 0) != (v[i - 1] < 0));
        else if (mode == zetZCXor) halves += 2 * (signBit(v[i]) != signBit(v[i - 1]));
        else halves += std::abs(sgn(v[i]) - sgn(v[i - 1]));
    }
    return halves * 0.5;
}

template <class T, class Count>
void checkCount(Count count, T lo, T hi) {
    std::mt19937_64 rng(sizeof(T) * 31 + 1);
    GuardedRegion r(40000);
    for (const Placement& pl : zettest::placementsFor(sizeof(T))) {
        for (int n : zettest::kernelLengths()) {
            const std::vector<T> in = inputs<T>(n, lo, hi, rng);
            T* p = zettest::place<T>(r, pl, n);
            std::memcpy(p, in.data(), n * sizeof(T));
            int got = -1;
            ASSERT_EQ(count(p, n, &got, lo, hi), zetStsOk);
            ASSERT_EQ(got, countRef(in, lo, hi)) << "n=" << n << " " << pl.name();
        }
    }
    T x[1] = {};
    int c = 0;
    EXPECT_EQ(count(nullptr, 0, &c, hi, lo), zetStsNullPtrErr);
    EXPECT_EQ(count(x, 1, nullptr, lo, hi), zetStsNullPtrErr);
    EXPECT_EQ(count(x, 0, &c, hi, lo), zetStsSizeErr);
    if (lo < hi) {
        EXPECT_EQ(count(x, 1, &c, hi, lo), zetStsRangeErr);
    }
    EXPECT_EQ(count(x, 1, &c, lo, lo), zetStsOk);  // a one-point range is valid
}

TEST(CountInRange, MatchesScalarCountAtTheBounds) {
    checkCount<Zet16s>(zetsCountInRange_16s, -7, 12);
    checkCount<Zet16s>(zetsCountInRange_16s, INT16_MIN, 0);
    checkCount<Zet32s>(zetsCountInRange_32s, -3, 3);
    checkCount<Zet32s>(zetsCountInRange_32s, 0, INT32_MAX);
    checkCount<Zet32f>(zetsCountInRange_32f, -0.5f, 2.0f);
    checkCount<Zet32f>(zetsCountInRange_32f, -INFINITY, 0.0f);
    checkCount<Zet64f>(zetsCountInRange_64f, 1e-300, 1e300);
}

template <class T, class Zc>
void checkCrossings(Zc zc) {
    std::mt19937_64 rng(sizeof(T) * 7 + 3);
    GuardedRegion r(40000);
    for (const Placement& pl : zettest::placementsFor(sizeof(T))) {
        for (int n : zettest::kernelLengths()) {
            const std::vector<T> in = inputs<T>(n, T(1), T(-1), rng);
            T* p = zettest::place<T>(r, pl, n);
            std::memcpy(p, in.data(), n * sizeof(T));
            for (int mode : {zetZCR, zetZCXor, zetZCC}) {
                Zet32f got = -1;
                ASSERT_EQ(zc(p, n, &got, mode), zetStsOk);
                ASSERT_EQ(got, static_cast<Zet32f>(crossingsRef(in, mode))) << "mode " << mode << " n=" << n << " " << pl.name();
            }
        }
    }
    T x[2] = {};
    Zet32f v;
    EXPECT_EQ(zc(nullptr, 0, &v, 9), zetStsNullPtrErr);
    EXPECT_EQ(zc(x, 1, nullptr, 9), zetStsNullPtrErr);
    EXPECT_EQ(zc(x, 0, &v, 9), zetStsSizeErr);
    for (int bad : {-1, 3, 1 << 16}) EXPECT_EQ(zc(x, 2, &v, bad), zetStsBadModeErr) << bad;
}

TEST(ZeroCrossing, MatchesScalarDefinitionInEveryMode) {
    checkCrossings<Zet16s>(zetsZeroCrossing_16s32f);
    checkCrossings<Zet32f>(zetsZeroCrossing_32f);
}

// The three modes tell -0, +0 and NaN apart as documented.
TEST(ZeroCrossing, ModesDifferOnZerosAndNans) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct Case { std::vector<float> x; float zcr, xr, zcc; };
    const Case cases[] = {
        {{1, -1, 1}, 2, 2, 2},
        {{1, 0, -1}, 1, 1, 1},        // +0 is not below zero; its sign bit is clear
        {{1, -0.0f, -1}, 1, 1, 1},    // -0: not below zero, but its sign bit is set
        {{-1, -0.0f, -1}, 2, 0, 1},
        {{-1, nan, 1}, 1, 1, 1},
        {{-1, -nan, -1}, 2, 0, 1},
        {{0, 0, 0}, 0, 0, 0},
    };
    for (const Case& c : cases) {
        Zet32f v[3];
        const int n = static_cast<int>(c.x.size());
        ASSERT_EQ(zetsZeroCrossing_32f(c.x.data(), n, &v[0], zetZCR), zetStsOk);
        ASSERT_EQ(zetsZeroCrossing_32f(c.x.data(), n, &v[1], zetZCXor), zetStsOk);
        ASSERT_EQ(zetsZeroCrossing_32f(c.x.data(), n, &v[2], zetZCC), zetStsOk);
        EXPECT_EQ(v[0], c.zcr) << c.x[1];
        EXPECT_EQ(v[1], c.xr) << c.x[1];
        EXPECT_EQ(v[2], c.zcc) << c.x[1];
    }
}

}  // namespace
