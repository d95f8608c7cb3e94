// Range counts and zero crossings, and the family's own argument checks.
#include <gtest/gtest.h>

#include <vector>

#include "stats_ref.hpp"

namespace {

using conform::K;
using conform::op;

// lo <= x <= hi, so a NaN never counts; the integer data hold -2..2 often,
// the floating data both zeros and infinities.
const auto inRange = [](auto x, long long n, auto lo, auto hi) {
    return int(std::count_if(x, x + n, [=](auto v) { return lo <= v && v <= hi; }));
};
CONFORM(countInt, op(inRange).k({K(-1), K(1)}), Z(zetsCountInRange_16s, "snrkk"), Z(zetsCountInRange_32s, "snrkk"));
CONFORM(countFloat, op(inRange).k({K(0.0), K(INFINITY)}), Z(zetsCountInRange_32f, "snrkk"),
        Z(zetsCountInRange_64f, "snrkk"));

// Half-crossings between neighbours: zetZCR splits at x < 0, zetZCXor at the
// sign bit, zetZCC counts |sgn x[i] - sgn x[i-1]| (a NaN has sgn 0).
const auto crossings = [](auto x, long long n, int mode) {
    const auto sgn = [](auto v) { return (v > 0) - (v < 0); };
    long long halves = 0;
    for (long long i = 1; i < n; ++i) {
        if (mode == zetZCR) halves += 2 * ((x[i] < 0) != (x[i - 1] < 0));
        else if (mode == zetZCXor) halves += 2 * (std::signbit(double(x[i])) != std::signbit(double(x[i - 1])));
        else halves += std::abs(sgn(x[i]) - sgn(x[i - 1]));
    }
    return Zet32f(halves * 0.5);
};
// A row takes one mode per export; every mode of both types is a named test.
CONFORM(zcc, op(crossings).k({K(zetZCC)}), Z(zetsZeroCrossing_16s32f, "snrk"));
CONFORM(zcxor, op(crossings).k({K(zetZCXor)}), Z(zetsZeroCrossing_32f, "snrk"));
TEST(ZeroCrossing, EveryMode) {
    std::vector<Zet16s> s(4100);
    std::vector<float> f(4100);
    conform::detail::fillInput(s.data(), s.size(), conform::Dom::Any);
    conform::detail::fillInput(f.data(), f.size(), conform::Dom::Any);
    for (int n : zettest::kernelLengths())
        for (int mode : {zetZCR, zetZCXor, zetZCC}) {
            Zet32f a = -1, b = -1;
            ASSERT_FALSE(zetsZeroCrossing_16s32f(s.data() + 1, n, &a, mode) ||
                         zetsZeroCrossing_32f(f.data() + 1, n, &b, mode));
            ASSERT_TRUE(a == crossings(s.data() + 1, n, mode) && b == crossings(f.data() + 1, n, mode))
                << n << " mode " << mode;
        }
}

// What the rows' shapes cannot say: bounds, modes, windows and positions
// checked after the pointers and the length, and the optional position.
TEST(StatsStatuses, FamilyChecksInOrder) {
    const float f[4] = {1, 7, 3, 7};
    const Zet16s s[4] = {1, -1, 2, 0};
    float v = 0, w = 0, d[4] = {-1, -1, -1, -1};
    int c = -1, i = -1;
    double g[4] = {1, 2, 3, 4};
    Zet8u u[2] = {5, 6}, u8[2] = {9, 9};
    Zet16u w16[2] = {5, 9};
    const struct {
        ZetStatus got, want;
    } rows[] = {
        {zetsCountInRange_32f(f, 4, &c, 2.0f, 1.0f), zetStsRangeErr},
        {zetsCountInRange_16s(s, 0, &c, 2, 1), zetStsSizeErr},
        {zetsCountInRange_32s(nullptr, 1, &c, 2, 1), zetStsNullPtrErr},
        {zetsZeroCrossing_32f(f, 2, &v, 3), zetStsBadModeErr},
        {zetsZeroCrossing_16s32f(s, 2, &v, -1), zetStsBadModeErr}, {zetsZeroCrossing_32f(f, 0, &v, 3), zetStsSizeErr},
        {zetsZeroCrossing_16s32f(s, 4, nullptr, 9), zetStsNullPtrErr},
        {zetsSumWindow_8u32f(reinterpret_cast<const Zet8u*>(s), d, 4, 0), zetStsWindowLenErr},
        {zetsSumWindow_16s32f(s, d, 0, 0), zetStsSizeErr}, {zetsSumWindow_16s32f(s, nullptr, 0, -1), zetStsNullPtrErr},
        {zetsMaxAbsIndx_32f(f, 4, &v, nullptr), zetStsNullPtrErr},
        {zetsMinMaxIndx_32f(f, 0, &v, &i, &w, nullptr), zetStsNullPtrErr},
        {zetsMinMaxIndx_32f(f, 0, &v, nullptr, &w, &i), zetStsNullPtrErr},
        {zetsMinMaxIndx_32f(f, 0, nullptr, &i, &w, &i), zetStsNullPtrErr},
        {zetsMaxIndx_32f(f, 4, &v, nullptr), zetStsOk}, {zetsMinIndx_16s(s, 4, nullptr, &i), zetStsNullPtrErr},
        {zetsMaxIndx_64f_L(nullptr, 2, g, nullptr), zetStsNullPtrErr},
        {zetsMinIndx_32f_L(f, 0, &w, nullptr), zetStsSizeErr},
        {zetsMaxIndx_32s(nullptr, 0, nullptr, nullptr), zetStsNullPtrErr},
        {zetsMinIndx_64f_L(g, 2, g + 2, nullptr), zetStsOk},
        // The out-of-place and 64f _I element-wise forms refuse only a zero length.
        {zetsMaxEvery_8u(u, u, u8, -1), zetStsOk}, {zetsMinEvery_8u(u, u, u8, 0), zetStsSizeErr},
        {zetsMaxEvery_16u(w16, w16, w16 + 1, -1), zetStsOk}, {zetsMinEvery_16u(w16, w16, w16 + 1, 0), zetStsSizeErr},
        {zetsMaxEvery_32f(f, f, d, -1), zetStsOk}, {zetsMinEvery_32f(f, f, d, 0), zetStsSizeErr},
        {zetsMaxEvery_64f(g, g, g + 2, -1), zetStsOk}, {zetsMinEvery_64f(g, g, g + 2, 0), zetStsSizeErr},
        {zetsMaxEvery_64f_I(g, g + 2, -1), zetStsOk}, {zetsMinEvery_64f_I(g, g + 2, 0), zetStsSizeErr},
        {zetsMaxEvery_32f_I(f, d, -1), zetStsSizeErr},
    };
    for (const auto& r : rows) EXPECT_EQ(r.got, r.want) << &r - rows;
    EXPECT_EQ(v, 7.0f) << "MaxIndx without a position acts as Max";
    EXPECT_TRUE(c == -1 && i == -1 && w == 0 && d[2] == -1 && g[2] == 1 && u8[0] == 9 && w16[1] == 9)
        << "written on an error";
    // A one-point range is a range.
    EXPECT_EQ(zetsCountInRange_32f(f, 4, &c, 7.0f, 7.0f), zetStsOk);
    EXPECT_EQ(c, 2);
}

}  // namespace
