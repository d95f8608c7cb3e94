// The scale-factor rule of every integer _Sfs operation: the exact result s
// is multiplied by 2^-scale, rounded to nearest with ties to even, and
// saturated to the destination's range. Stated here once for scalars; the
// vector kernels in fixed_simd.hpp compute the same values lane by lane.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

namespace zet::fixed {

using i128 = __int128;

template <class D>
constexpr D saturate(i128 s) {
    constexpr i128 lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    return static_cast<D>(s < lo ? lo : s > hi ? hi : s);
}

// floor(s / 2^k) rounded up when the remainder passes half, or equals half
// with an odd quotient: (s + 2^(k-1) - 1 + ((s >> k) & 1)) >> k without the
// overflow of the additions.
inline i128 roundShift(i128 s, int k) {
    using u128 = unsigned __int128;
    if (k >= 128) return 0;  // every exact result here is at most 2^126 in size
    const i128 q = s >> k;
    const u128 rem = static_cast<u128>(s) & ((u128{1} << k) - 1);
    const u128 half = u128{1} << (k - 1);
    return q + ((rem + static_cast<u128>(q & 1)) > half ? 1 : 0);
}

// s shifted left by k, saturated to D. The bounds are D's limits shifted
// right (rounded toward zero), so the shift happens only when it fits.
template <class D>
constexpr D shiftLeftSaturate(i128 s, int k) {
    constexpr i128 lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    if (s == 0) return 0;
    if (k > 64) return s > 0 ? static_cast<D>(hi) : static_cast<D>(lo);
    if (s > (hi >> k)) return static_cast<D>(hi);
    if (s < -((-lo) >> k)) return static_cast<D>(lo);
    return static_cast<D>(s * (i128{1} << k));
}

template <class D>
constexpr D rule(i128 s, int scale) {
    if (scale > 0) return saturate<D>(roundShift(s, scale));
    if (scale < 0) return shiftLeftSaturate<D>(s, scale == std::numeric_limits<int>::min() ? 64 : -scale);
    return saturate<D>(s);
}

}  // namespace zet::fixed
