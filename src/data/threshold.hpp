// Thresholds: shared pieces of the real (threshold.cpp) and complex
// (threshold_complex.cpp) forms.
#pragma once

#include "frame/checks.hpp"
#include "zetsp.h"

namespace zet::thresh {

// The relation word of the comparison forms: 0 less, 4 greater; a bit
// outside the value 4 is refused.
constexpr int kLess = 0, kGreater = 4;
inline ZetStatus checkRelation(int relOp) { return (relOp & ~kGreater) != 0 ? zetStsBadArgErr : zetStsOk; }

}  // namespace zet::thresh
