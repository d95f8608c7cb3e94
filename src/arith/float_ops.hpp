// Element operations of the floating-point arithmetic family, written once
// for every register width. For complex types a register holds interleaved
// {re, im} pairs. Where a product is rounded before it is added, or fused
// with the addition, is part of each operation's contract and is spelled out
// beside it.
#pragma once

#include "frame/simd.hpp"

namespace zet::arith {

using namespace zet::simd;

// ---- two vectors: a from src1, b from src2 (the left operand) -------------
struct AddOp {
    template <class V> V operator()(V a, V b) const { return add(b, a); }
};
struct SubOp {
    template <class V> V operator()(V a, V b) const { return sub(b, a); }
};
struct MulOp {
    template <class V> V operator()(V a, V b) const { return mul(b, a); }
};
// re = fma(a.re, b.re, -round(a.im b.im)), im = fma(a.re, b.im, round(a.im b.re))
struct CMulOp {
    template <class V> V operator()(V a, V b) const { return fmaddsub(dupRe(a), b, mul(dupIm(a), swap(b))); }
};

// ---- one vector --------------------------------------------------------------
struct AbsOp {
    template <class V> V operator()(V a) const { return max(neg(a), a); }
};
struct SqrOp {
    template <class V> V operator()(V a) const { return mul(a, a); }
};
// re = fma(a.re, a.re, -round(a.im a.im)), im = a.re (a.im + a.im)
struct CSqrOp {
    template <class V> V operator()(V a) const {
        const V r = dupRe(a), i = dupIm(a);
        return oddFrom(fmaddsub(r, r, mul(i, i)), mul(r, add(i, i)));
    }
};

// ---- a vector and a constant c, held as a wide register ({re, im} pairs for
// complex types) and narrowed to the register at hand --------------------------
template <class C> struct AddCOp {
    C c;
    template <class V> V operator()(V a) const { return add(a, fit<V>(c)); }
};
template <class C> struct SubCOp {
    C c;
    template <class V> V operator()(V a) const { return sub(a, fit<V>(c)); }
};
template <class C> struct SubCRevOp {
    C c;
    template <class V> V operator()(V a) const { return sub(fit<V>(c), a); }
};
template <class C> struct MulCOp {
    C c;
    template <class V> V operator()(V a) const { return mul(fit<V>(c), a); }
};
// re = fma(c.re, a.re, -round(a.im c.im)), im = fma(c.re, a.im, round(a.re c.im)):
// here the fused product of the imaginary part is the one with c.re.
template <class C> struct CMulCOp {
    C re, im;  // c.re and c.im, each in every lane
    template <class V> V operator()(V a) const { return fmaddsub(fit<V>(re), a, mul(swap(a), fit<V>(im))); }
};

// ---- multiply-accumulate into d ---------------------------------------------
// A product of two vectors is fused with the addition: fma(b, a, d).
struct AddProductOp {
    template <class V> V operator()(V a, V b, V d) const { return fma(b, a, d); }
};
// re = fma(a.re, b.re, d.re) - round(a.im b.im), im = fma(a.re, b.im, d.im) + round(a.im b.re)
struct CAddProductOp {
    template <class V> V operator()(V a, V b, V d) const { return addsub(fma(dupRe(a), b, d), mul(dupIm(a), swap(b))); }
};
// A product with a constant is rounded first: round(c a) + d.
template <class C> struct AddProductCOp {
    C c;
    template <class V> V operator()(V a, V d) const { return add(mul(fit<V>(c), a), d); }
};
// re = (round(a.re c.re) - round(a.im c.im)) + d.re,
// im = (round(a.re c.im) + round(a.im c.re)) + d.im: every step rounded.
template <class C> struct CAddProductCOp {
    C re, im;
    template <class V> V operator()(V a, V d) const {
        return add(addsub(mul(a, fit<V>(re)), mul(swap(a), fit<V>(im))), d);
    }
};

}  // namespace zet::arith
