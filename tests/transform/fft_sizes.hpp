// The byte counts the power-of-two cores must report, derived from their
// table and data sizes, for the FFT tests of every element type.
#pragma once

#include <algorithm>

namespace fftsizes {

struct Sizes { long long spec, init, work; };
constexpr long long up64(long long x) { return (x + 63) & ~63LL; }

// Tables of the column-pass recursion: N = N1 * N2 with N1 = 2^k rows, and
// column blocks of 2^b elements. A sub-length of 2^19 or more recurses (the
// same threshold in both precisions); `e` is the element size.
Sizes largeCore(int order, bool dbl) {
    const bool upper = order >= (dbl ? 22 : 23);
    const int k = upper ? 8 : 4, b = (upper ? 14 : 10) - (dbl ? 1 : 0), r = order - k;
    const long long e = dbl ? 16 : 8;
    Sizes s = r < 19 ? Sizes{((e << r) + 71) & ~63LL, 0, up64(e << r)} : largeCore(r, dbl);
    s.spec += e << (order - 1);
    s.work = std::max(s.work, e << b);
    return s;
}

// The power-of-two core above order 10: twiddles, permutation table and header
// in the transform object; the sine table (N/4 + 1 values) in the init scratch, in both
// the middle and the large range; one copy of the data as work.
Sizes fftCore(int order, bool dbl) {
    const long long n = 1LL << order, q = ((n & ~3LL) + 67) & ~63LL;
    const long long sine = dbl ? ((((2 * n) & ~7LL) + 71) & ~63LL) + 64 : q + 64;
    if (order < (dbl ? 18 : 19)) {
        const long long table = dbl ? (16 * n + 79) & ~63LL : (8 * n + 71) & ~63LL;
        return {table + q + 256, sine, up64((dbl ? 16 : 8) * n) + 64};
    }
    const Sizes l = largeCore(order, dbl);
    const long long perm = dbl ? (4LL << (order - 10)) + 1088 : (4LL << (order - 12)) + 4160;
    return {l.spec + perm + q + 256, sine + l.init, std::max(l.work, dbl ? 32768LL : 65536LL) + 64};
}

}  // namespace fftsizes
