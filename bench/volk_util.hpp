// What the benchmarks against VOLK share: the same interleaved floats seen as
// VOLK's complex type and as ours.
#pragma once

#include "bench_util.hpp"

#include <volk/volk.h>

namespace zetbench {

inline lv_32fc_t* cx(float* p) { return reinterpret_cast<lv_32fc_t*>(p); }
inline const lv_32fc_t* cx(const float* p) { return reinterpret_cast<const lv_32fc_t*>(p); }
inline Zet32fc* zc(float* p) { return reinterpret_cast<Zet32fc*>(p); }
inline const Zet32fc* zc(const float* p) { return reinterpret_cast<const Zet32fc*>(p); }

}  // namespace zetbench
