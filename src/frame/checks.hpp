// Argument checks shared by every export, in the library's one order:
// pointers left to right, then the length, then the family's own arguments.
#pragma once

#include <cstdint>

#include "zetsp.h"

namespace zet {

using i64 = long long;

// Null pointers first: `if (auto s = checkPtrs(a, b)) return s;`
template <class... P>
constexpr ZetStatus checkPtrs(const P*... p) noexcept {
    return ((p == nullptr) || ...) ? zetStsNullPtrErr : zetStsOk;
}

// The common prologue of a vector operation: every pointer, then len < 1.
template <class Len, class... P>
constexpr ZetStatus checkArgs(Len len, const P*... p) noexcept {
    if (((p == nullptr) || ...)) return zetStsNullPtrErr;
    return len < 1 ? zetStsSizeErr : zetStsOk;
}

// A complex form that works part by part is the real form at twice the
// length. The length is checked first and doubled in 32 bits: from 2^30
// elements the doubled length is not positive and the real form rejects it.
template <class Real>
inline ZetStatus forwardDoubled(int len, Real&& real) {
    if (len < 1) return zetStsSizeErr;
    return real(static_cast<int>(static_cast<std::uint32_t>(len) * 2u));
}

}  // namespace zet
