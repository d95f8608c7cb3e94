// Shared pieces of the statistics tests: the binary64 accumulation order
// stated once in scalar form, vectors placed against guard pages, and
// comparisons that accept any NaN for a NaN.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace sref {

// Sixteen a round into four 4-lane sums A..D, (A + B) + (C + D), four a
// round, lanes (l0 + l2, l1 + l3); then `finish` takes the pair and the
// count done. step(acc, i) adds the term of element i to acc.
struct Pair {
    double even, odd;
    long long done;
};
template <class Step>
Pair fold16(long long n, Step step) {
    double a[4] = {}, b[4] = {}, c[4] = {}, d[4] = {}, s[4];
    long long i = 0;
    for (; i + 16 <= n; i += 16)
        for (int l = 0; l < 4; ++l) {
            a[l] = step(a[l], i + l);
            b[l] = step(b[l], i + 4 + l);
            c[l] = step(c[l], i + 8 + l);
            d[l] = step(d[l], i + 12 + l);
        }
    for (int l = 0; l < 4; ++l) s[l] = (a[l] + b[l]) + (c[l] + d[l]);
    for (; i + 4 <= n; i += 4)
        for (int l = 0; l < 4; ++l) s[l] = step(s[l], i + l);
    return {s[0] + s[2], s[1] + s[3], i};
}
// A real total: the pair's two lanes added, then the last elements in order.
template <class Step>
double total(long long n, Step step) {
    const Pair p = fold16(n, step);
    double t = p.even + p.odd;
    for (long long i = p.done; i < n; ++i) t = step(t, i);
    return t;
}
// Interleaved complex data of 2n parts: {re, im}.
template <class Step>
std::pair<double, double> parts(long long n2, Step step) {
    const Pair p = fold16(n2, step);
    double re = p.even, im = p.odd;
    if (p.done < n2) re = step(re, p.done), im = step(im, p.done + 1);
    return {re, im};
}

// Bits equal, or both NaN.
template <class T>
bool same(T a, T b) {
    return zettest::bitsOf(a) == zettest::bitsOf(b) || (std::isnan(a) && std::isnan(b));
}

// Vectors copied into guarded regions at a placement, one region per slot.
class Arena {
public:
    Arena(int slots, std::size_t bytes) {
        for (int i = 0; i < slots; ++i) regions_.push_back(std::make_unique<zettest::GuardedRegion>(bytes));
    }
    template <class T>
    T* put(int slot, const std::vector<T>& v, const zettest::Placement& p) {
        T* q = zettest::place<T>(*regions_[slot], p, v.size());
        std::memcpy(static_cast<void*>(q), v.data(), v.size() * sizeof(T));
        return q;
    }

private:
    std::vector<std::unique_ptr<zettest::GuardedRegion>> regions_;
};

}  // namespace sref
