// What the units of the arbitrary-length core share: the factor of a call,
// the sweep threshold, and the two ways whose kernels live in a unit of
// their own (lengths to 16, mixed radix), instantiated for both precisions,
// both directions and the interleaved and split forms.
#pragma once

#include <cstddef>
#include <cstdint>

#include "transform/dft_core.hpp"
#include "transform/fft_passes.hpp"

namespace zet::dft {

template <class T> inline T scaleOf(const DFTCore* c) {
    if constexpr (sizeof(T) == 8) return static_cast<T>(c->scale64);
    else return static_cast<T>(c->scale32);
}
inline bool scaled(const DFTCore* c, bool inv) { return inv ? c->scaleInverse != 0 : c->scaleForward != 0; }

// Sub-transforms from this many points up run block by block, so that the
// levels of one sweep stay inside the level-one cache.
constexpr std::int64_t kSweep = 2001;

// Radix kernels of the mixed way; any other radix takes the generic one.
inline bool hasLevelKernel(int p) { return p == 2 || p == 3 || p == 4 || p == 5 || p == 7 || p == 11 || p == 13; }
inline bool hasLeafKernel(int p) { return hasLevelKernel(p) || p == 6 || p == 8 || p == 16; }

// Offset of the imaginary plane in the mixed way's work area, in elements.
template <class T> std::ptrdiff_t planeStride(std::int64_t n) {
    return ((n * static_cast<std::int64_t>(sizeof(T)) + 63) & ~std::int64_t{63}) / static_cast<std::int64_t>(sizeof(T));
}

// The length's codelet, with its factor; src may be dst.
template <class T, bool Inv, class F> void runCodelet(const DFTCore* c, F src, F dst);
// The mixed-radix way over the core's records; `work` is 64-byte aligned
// and holds the two planes.
template <class T, bool Inv, class F> void runMixed(const DFTCore* c, F src, F dst, T* work);

}  // namespace zet::dft
