// References shared by the statistics tests: the binary64 accumulation order,
// the two integer scale steps, and one-or-two-vector references.
#pragma once

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <utility>

#include "conform.hpp"

namespace sref {

// Sixteen a round into four 4-lane sums A..D, (A + B) + (C + D), four a
// round, lanes (l0 + l2, l1 + l3). step(acc, i) adds the term of element i.
struct Pair {
    double even, odd;
    long long done;
};
template <class Step> Pair fold16(long long n, Step step) {
    double a[4] = {}, b[4] = {}, c[4] = {}, d[4] = {}, s[4];
    long long i = 0;
    for (; i + 16 <= n; i += 16)
        for (int l = 0; l < 4; ++l) {
            a[l] = step(a[l], i + l), b[l] = step(b[l], i + 4 + l);
            c[l] = step(c[l], i + 8 + l), d[l] = step(d[l], i + 12 + l);
        }
    for (int l = 0; l < 4; ++l) s[l] = (a[l] + b[l]) + (c[l] + d[l]);
    for (; i + 4 <= n; i += 4)
        for (int l = 0; l < 4; ++l) s[l] = step(s[l], i + l);
    return {s[0] + s[2], s[1] + s[3], i};
}
// A real total: the two lanes added, then the last elements in order.
template <class Step> double total(long long n, Step step) {
    const Pair p = fold16(n, step);
    double t = p.even + p.odd;
    for (long long i = p.done; i < n; ++i) t = step(t, i);
    return t;
}
// Interleaved complex data of n2 = 2n parts: {re, im}.
template <class Step> std::pair<double, double> parts(long long n2, Step step) {
    const Pair p = fold16(n2, step);
    if (p.done < n2) return {step(p.even, p.done), step(p.odd, p.done + 1)};
    return {p.even, p.odd};
}

// The sums' step: v * 2^-scale with the factor built from the exponent field
// (0 from scale 1023 on, infinity from -1024 down), held to D's range and
// rounded ties to even; zero stays zero.
template <class D> D scaleStep(double v, int scale) {
    if (v == 0) return 0;
    const double f = scale >= 1023 ? 0.0 : scale <= -1024 ? INFINITY : std::ldexp(1.0, -scale);
    const double lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    return static_cast<D>(std::nearbyint(std::min(std::max(v * f, lo), hi)));
}
// The exact rule of norms and dot products: s * 2^-scale on the exact value,
// ties to even, saturated.
template <class D> D rule(__int128 s, int scale) {
    const auto sat = [](__int128 v) {
        return static_cast<D>(std::clamp<__int128>(v, std::numeric_limits<D>::min(), std::numeric_limits<D>::max()));
    };
    if (scale <= 0) {
        const int k = scale == INT_MIN ? 64 : std::min(-scale, 64);
        const __int128 big = (__int128)1 << (126 - k);
        return s >= big ? sat(big << k) : s <= -big ? sat(-(big << k)) : sat(s * ((__int128)1 << k));
    }
    if (scale > 120) return 0;
    __int128 q = s >> scale;
    const __int128 r = s - q * ((__int128)1 << scale), half = (__int128)1 << (scale - 1);
    return sat(q + (r > half || (r == half && (q & 1))));
}

// A reference of (x, y or null, n, ...) that also serves the one-vector forms.
template <class F> struct Opt2 {
    F f;
    template <class T, class... A>
    auto operator()(const T* x, long long n, A... a) const {
        return f(x, (const T*)nullptr, n, a...);
    }
    template <class T, class... A>
    auto operator()(const T* x, const T* y, long long n, A... a) const {
        return f(x, y, n, a...);
    }
};
template <class F> Opt2<F> opt2(F f) { return {f}; }

}  // namespace sref
