// The two shapes of a 64-bit-length (_L) operation.
//
// A chunk driver cuts the vector into the largest pieces whose byte size fits
// a signed 32-bit count and calls the plain implementation on each, in order.
// It checks the length first; the pointers are checked by the first plain
// call. An error stops the loop; a warning does not, and only the last
// chunk's status is returned (an early warning is lost if the last chunk is
// clean -- callers rely on exactly this).
//
// A true 64-bit kernel checks pointers, then the length, and runs its kernel
// with a 64-bit count; it needs no helper beyond checkArgs.
#pragma once

#include <algorithm>

#include "checks.hpp"

namespace zet {

template <std::size_t ElemBytes>
inline constexpr i64 kChunkElems = 0x7FFFFFFF / static_cast<i64>(ElemBytes);

// plain(offsetInElements, count) -> ZetStatus of the plain form on that piece.
template <std::size_t ElemBytes, class Plain>
inline ZetStatus chunked(i64 len, Plain&& plain) {
    if (len <= 0) return zetStsSizeErr;
    constexpr i64 chunk = kChunkElems<ElemBytes>;
    ZetStatus st = zetStsOk;
    for (i64 off = 0; off < len; off += chunk) {
        st = plain(off, static_cast<int>(std::min(len - off, chunk)));
        if (st < 0) return st;
    }
    return st;
}

}  // namespace zet
