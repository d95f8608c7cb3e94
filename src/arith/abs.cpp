// Abs: max(-a, a) with the processor's maximum, a the second operand, so a
// NaN is delivered as it came (sign bit included) and -0 stays -0.
#include "frame/checks.hpp"
#include "frame/loops.hpp"

namespace zet::arith {

template <class T>
ZetStatus abs(const T* src, T* dst, int len) {
    if (auto st = checkArgs(len, src, dst)) return st;
    loops::map1(src, dst, len, [](auto a) { return simd::max(simd::neg(a), a); });
    return zetStsOk;
}

}  // namespace zet::arith

ZetStatus zetsAbs_32f(const Zet32f* s, Zet32f* d, int len) { return zet::arith::abs(s, d, len); }
