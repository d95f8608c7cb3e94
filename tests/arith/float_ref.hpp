// Scalar references of the floating-point arithmetic family: each formula
// stated once, literally, with std::fma where the contract fuses.
#pragma once

#include <cmath>
#include <type_traits>

#include "zetsp.h"
#include "zettest.hpp"

namespace fref {

template <class R>
R quiet(R x) {
    if constexpr (sizeof(R) == 4) return zettest::fromBits<R>(zettest::bitsOf(x) | 0x00400000u);
    else return zettest::fromBits<R>(zettest::bitsOf(x) | 0x0008000000000000ull);
}
// The processor's rule for an operation with a left and a right operand: the
// left NaN (quieted) if there is one, else the right one, else the result.
template <class R>
R ordered(R left, R right, R result) {
    if (std::isnan(left)) return quiet(left);
    if (std::isnan(right)) return quiet(right);
    return result;
}
template <class R> R add(R l, R r) { return ordered(l, r, l + r); }
template <class R> R sub(R l, R r) { return ordered(l, r, l - r); }
template <class R> R mul(R l, R r) { return ordered(l, r, l * r); }
template <class R> R absMax(R a) {
    const R n = zettest::fromBits<R>(zettest::bitsOf(a) ^ (sizeof(R) == 4 ? 0x80000000ull : 0x8000000000000000ull));
    return n > a ? n : a;
}

template <class C> using RealOf = std::conditional_t<std::is_same_v<C, Zet32fc>, float, double>;

// ---- complex formulas (a from src1/src, b from src2, c the constant, d srcDst) ----
template <class C> C cmul(C a, C b) {
    return {std::fma(a.re, b.re, -(a.im * b.im)), std::fma(a.re, b.im, a.im * b.re)};
}
template <class C> C cmulC(C a, C c) {
    return {std::fma(c.re, a.re, -(a.im * c.im)), std::fma(c.re, a.im, a.re * c.im)};
}
template <class C> C csqr(C a) { return {std::fma(a.re, a.re, -(a.im * a.im)), a.re * (a.im + a.im)}; }
template <class C> C caddProduct(C a, C b, C d) {
    return {std::fma(a.re, b.re, d.re) - a.im * b.im, std::fma(a.re, b.im, d.im) + a.im * b.re};
}
template <class C> C caddProductC(C a, C c, C d) {
    return {(a.re * c.re - a.im * c.im) + d.re, (a.re * c.im + a.im * c.re) + d.im};
}

}  // namespace fref
