#include "transform/fft_tables.hpp"

#include <cmath>

#include "transform/fft_kernels.hpp"

namespace zet::fft {

namespace {

template <class T> struct Sine257 {
    T v[257];
    Sine257() {
        // Long double so that each entry is the correctly rounded value; the
        // quarter point is exactly 1 and the origin exactly 0.
        const long double step = 2.0L * 3.141592653589793238462643383279502884L / 1024.0L;
        for (int k = 0; k <= 256; ++k) v[k] = static_cast<T>(std::sin(step * k));
        v[0] = 0;
        v[256] = 1;
    }
};
const Sine257<float> s257f;
const Sine257<double> s257d;

template <class T> UnitRoots<T> makeRoots() {
    UnitRoots<T> r;
    const long double step = 2.0L * 3.141592653589793238462643383279502884L / 256.0L;
    for (int k = 0; k < 256; ++k) {
        r.c[k] = static_cast<T>(std::cos(step * k));
        r.s[k] = static_cast<T>(-std::sin(step * k));
    }
    // Exact values where the circle crosses the axes.
    for (int k = 0; k < 256; k += 64) {
        r.c[k] = (k == 0) ? 1 : (k == 128 ? -1 : 0);
        r.s[k] = (k == 64) ? -1 : (k == 192 ? 1 : 0);
    }
    return r;
}

}  // namespace

const UnitRoots<float> kRoots32 = makeRoots<float>();
const UnitRoots<double> kRoots64 = makeRoots<double>();
const float* sineTable1024(float) { return s257f.v; }
const double* sineTable1024(double) { return s257d.v; }

void buildSine(float* dst, int order) {
    const std::int64_t n = std::int64_t{1} << order;
    const double step = 2.0 * 3.141592653589793 / static_cast<double>(n);
    // Arguments stay within pi/4: sines below N/8, cosines of the mirrored
    // angle above. Each angle is rounded to single first.
    for (std::int64_t k = 0; k <= n / 8; ++k)
        dst[k] = static_cast<float>(std::sin(static_cast<double>(static_cast<float>(step * static_cast<double>(k)))));
    for (std::int64_t k = n / 8 + 1; k <= n / 4; ++k)
        dst[k] = static_cast<float>(std::cos(static_cast<double>(static_cast<float>(step * static_cast<double>(n / 4 - k)))));
}

void buildSine(double* dst, int order) {
    const std::int64_t n = std::int64_t{1} << order;
    const double step = 2.0 * 3.141592653589793 / static_cast<double>(n);
    for (std::int64_t k = 0; k <= n / 8; ++k) dst[k] = std::sin(step * static_cast<double>(k));
    for (std::int64_t k = n / 8 + 1; k <= n / 4; ++k) dst[k] = std::cos(step * static_cast<double>(n / 4 - k));
}

void buildBitReverse(std::int32_t* dst, int order) {
    if (order < 2) return;
    const std::int32_t m = std::int32_t{1} << (order - 2);
    // Carry walk in reverse: from the previous value clear the leading ones
    // and set the next bit below them.
    std::int32_t r = 0;
    dst[0] = 0;
    for (std::int32_t j = 1; j < m; ++j) {
        std::int32_t bit = m >> 1;
        while (r & bit) {
            r ^= bit;
            bit >>= 1;
        }
        r |= bit;
        dst[j] = 2 * r;
    }
    dst[m] = 0;
}

int radixAt(bool dbl, int order, int done) {
    const int rem = order - done;
    if (!dbl) {
        if (rem == 3) return 8;
        if (rem >= 5 && done >= 3 && order < 12) return 8;
        if (done == 4 && (order & 1)) return 8;
        return 4;
    }
    if (rem == 2 || rem == 4) return 4;
    if (order >= 11 && ((order % 2 == 0) || (order == 11 && done >= 5) || (order >= 15 && done == 8))) return 4;
    return 8;
}

template <class T> void buildPassTable(T* dst, int order, const Sine<T>& sine, int lanes) {
    const bool dbl = sizeof(T) == 8;
    // Header: the twiddles of a 16-point group, 16 cosines and 16 imaginary
    // parts of exp(-2*pi*i*k/16). The fused first pass takes its constants
    // from the unit-root table; the header keeps the layout's origin.
    for (int k = 0; k < 16; ++k) sine.root(k, 4, dst[k], dst[16 + k]);
    T* p = dst + 32;
    for (int done = 4; done < order;) {
        const int r = radixAt(dbl, order, done);
        const int bits = r == 8 ? 3 : 2;
        const std::int64_t q = std::int64_t{1} << done;
        for (std::int64_t j0 = 0; j0 < q; j0 += lanes)
            for (int t = 1; t < r; ++t) {
                for (int l = 0; l < lanes; ++l) sine.root(t * (j0 + l), done + bits, p[l], p[lanes + l]);
                p += 2 * lanes;
            }
        done += bits;
    }
}
template void buildPassTable<float>(float*, int, const Sine<float>&, int);
template void buildPassTable<double>(double*, int, const Sine<double>&, int);

}  // namespace zet::fft
