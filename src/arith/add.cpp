// Add: dst = src2 + src1, src2 the left operand (its NaN wins).
#include "frame/checks.hpp"
#include "frame/loops.hpp"

namespace zet::arith {

template <class T>
ZetStatus add(const T* src1, const T* src2, T* dst, int len) {
    if (auto st = checkArgs(len, src1, src2, dst)) return st;
    loops::map2(src1, src2, dst, len, [](auto a, auto b) { return simd::add(b, a); });
    return zetStsOk;
}

}  // namespace zet::arith

ZetStatus zetsAdd_32f(const Zet32f* s1, const Zet32f* s2, Zet32f* d, int len) { return zet::arith::add(s1, s2, d, len); }
