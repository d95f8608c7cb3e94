// Tables of the power-of-two transforms: the quarter-wave sine table, the
// bit-reversal table, the pass schedule and the pass twiddle layout.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zet::fft {

// sin(2*pi*k/1024) for k = 0..256, in each precision.
const float* sineTable1024(float);
const double* sineTable1024(double);

// Quarter-wave table S[k] = sin(2*pi*k/2^log), k = 0..2^log/4, and the
// first-quadrant folding that gives any root from it.
template <class T> struct Sine {
    const T* S;
    int log;
    // exp(-2*pi*i*m/2^logM) as (cos, -sin), with logM <= log.
    void root(std::int64_t m, int logM, T& c, T& s) const {
        const std::int64_t n = std::int64_t{1} << log, q = n >> 2;
        std::int64_t idx = (m << (log - logM)) & (n - 1);
        const std::int64_t quad = idx / q, r = idx % q;
        T cv, sv;
        switch (quad) {
            case 0: cv = S[q - r]; sv = S[r]; break;
            case 1: cv = -S[r]; sv = S[q - r]; break;
            case 2: cv = -S[q - r]; sv = -S[r]; break;
            default: cv = S[r]; sv = -S[q - r]; break;
        }
        c = cv;
        s = -sv;
    }
};

// Builds S for `order` above 10 into `dst` (order/4 + 1 entries). Single
// precision rounds each angle to float before taking its sine or cosine.
void buildSine(float* dst, int order);
void buildSine(double* dst, int order);

// dst[j] = 2*rev(j) over log2(N/4) bits for j < N/4, then the 0 sentinel.
void buildBitReverse(std::int32_t* dst, int order);

// Radix (4 or 8) of the pass that starts with `done` bits processed.
int radixAt(bool dbl, int order, int done);
// log2 of the block that the depth-first passes stay inside.
constexpr int blockLog(bool dbl) { return dbl ? 10 : 11; }

// The pass twiddle table of `order`: a header of 32 reals, then every pass in
// order of execution, each run of `lanes` butterflies holding its R-1 roots
// as `lanes` cosines and `lanes` imaginary parts.
template <class T> void buildPassTable(T* dst, int order, const Sine<T>& sine, int lanes);

}  // namespace zet::fft
