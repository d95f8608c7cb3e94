// Thresholds of complex vectors (16sc, 32fc, 64fc): the level is compared
// with the magnitude of each element, element by element.
//
// LT moves an element whose magnitude is below the level onto the circle of
// radius level along its own direction (0 goes to level + 0i); GT moves an
// element above the level onto it. GTVal keeps an element whose magnitude is
// at or below the level and puts value in place of the others, a NaN
// included; LTVal mirrors it. LTInv inverts each element after the LT rule.
// An element with a NaN part is kept by LT and GT.
//
// The squared magnitude is formed in a type whose range holds the square of
// any part: binary64 for 16-bit and binary32 parts, the x87 extended type
// for binary64 parts (whose squares would leave the binary64 range).
#include <cmath>
#include <type_traits>

#include "data/convert_lanes.hpp"
#include "data/threshold.hpp"
#include "frame/unaligned.hpp"

namespace zet::thresh {
namespace {

template <class C> struct Cx;
// Ties to even whatever the caller's rounding mode.
inline double roundEven(double v) {
#if __has_builtin(__builtin_roundeven)
    return __builtin_roundeven(v);
#else
    const double r = std::round(v);
    return std::fabs(v - std::trunc(v)) == 0.5 ? 2 * std::round(v / 2) : r;
#endif
}

template <class P> struct CxOf {
    using Part = P;
    using Work = std::conditional_t<sizeof(P) == 8, long double, double>;
};
template <> struct Cx<Zet16sc> : CxOf<Zet16s> {
    // Rounded to nearest even, saturated.
    static Zet16sc make(double re, double im) {
        auto part = [](double v) { return static_cast<Zet16s>(std::fmin(std::fmax(roundEven(v), -32768.0), 32767.0)); };
        return {part(re), part(im)};
    }
};
template <> struct Cx<Zet32fc> : CxOf<Zet32f> {
    static Zet32fc make(double re, double im) { return {static_cast<float>(re), static_cast<float>(im)}; }
};
template <> struct Cx<Zet64fc> : CxOf<Zet64f> {
    static Zet64fc make(long double re, long double im) { return {static_cast<double>(re), static_cast<double>(im)}; }
};

constexpr int kUnordered = 2;

// One element against the level. For an infinite element, (re, im) keeps
// only the direction of its infinite parts.
template <class W>
struct Polar {
    W re, im, m2 = 0;
    int order = 0;  // the sign of |z| - level, or kUnordered
    bool zero = false, infinite = false;

    // z / |z|, and (1, 0) for z = 0.
    W unitRe() const { return zero ? W(1) : re / std::sqrt(m2); }
    W unitIm() const { return zero ? W(0) : im / std::sqrt(m2); }
};

template <class W>
Polar<W> polar(W a, W b, W level) {
    Polar<W> p{a, b};
    if (std::isnan(a) || std::isnan(b) || std::isnan(level)) {
        p.order = kUnordered;
        return p;
    }
    if (std::isinf(a) || std::isinf(b)) {
        p.infinite = true;
        p.re = std::isinf(a) ? std::copysign(W(1), a) : std::copysign(W(0), a);
        p.im = std::isinf(b) ? std::copysign(W(1), b) : std::copysign(W(0), b);
        p.m2 = p.re * p.re + p.im * p.im;
        p.order = std::isinf(level) ? 0 : 1;
        return p;
    }
    p.zero = a == 0 && b == 0;
    p.m2 = a * a + b * b;
    const W l2 = level * level;
    p.order = p.m2 < l2 ? -1 : p.m2 > l2 ? 1 : 0;
    return p;
}

// ---- the rules, on one element -------------------------------------------------------
// Each gets the element, its polar view and the level; LTInv also notes a
// zero element it had to invert.
template <class C, class W> C onCircle(const Polar<W>& p, W level) { return Cx<C>::make(p.unitRe() * level, p.unitIm() * level); }

template <class C> struct LT {
    template <class W> C operator()(C z, const Polar<W>& p, W level, bool&) const { return p.order == -1 ? onCircle<C>(p, level) : z; }
};
template <class C> struct GT {
    template <class W> C operator()(C z, const Polar<W>& p, W level, bool&) const { return p.order == 1 ? onCircle<C>(p, level) : z; }
};
template <class C, bool kAtOrBelow> struct KeepIf {
    C value;
    template <class W> C operator()(C z, const Polar<W>& p, W, bool&) const {
        const bool keep = kAtOrBelow ? p.order == -1 || p.order == 0 : p.order == 0 || p.order == 1;
        return keep ? z : value;
    }
};
template <class C> struct LTInv {
    template <class W> C operator()(C z, const Polar<W>& p, W level, bool& zeroSeen) const {
        if (p.order == -1) return Cx<C>::make(p.unitRe() / level, -p.unitIm() / level);
        const W a = z.re, b = z.im;
        if (p.order == kUnordered) return Cx<C>::make(a + b, a + b);  // NaN parts
        if (p.infinite) return Cx<C>::make(std::copysign(W(0), a), -std::copysign(W(0), b));
        if (p.zero) {  // level 0: 1 / a is an infinity with the zero's sign
            zeroSeen = true;
            return Cx<C>::make(W(1) / a, -b);
        }
        return Cx<C>::make(a / p.m2, -b / p.m2);
    }
};

// ---- running them ---------------------------------------------------------------------
// True when the rule noted a zero element.
template <class C, class Rule, class W = typename Cx<C>::Work>
[[gnu::noinline]] bool kernel(const C* s, C* d, int n, W level, Rule rule) {
    bool zeroSeen = false;
    for (int i = 0; i < n; ++i) {
        const C z = ld(s, i);
        st(d, i, rule(z, polar<W>(z.re, z.im, level), level, zeroSeen));
    }
    return zeroSeen;
}

// Pointers, the length, the relation word (comparison forms), then the level.
template <class C, class Rule>
ZetStatus run(const C* s, C* d, int len, typename Cx<C>::Part level, Rule rule, ZetStatus relation = zetStsOk) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (relation != zetStsOk) return relation;
    if (level < 0) return zetStsNegThreshErr;
    return kernel(s, d, len, static_cast<typename Cx<C>::Work>(level), rule) ? zetStsDivByZeroWarn : zetStsOk;
}

template <class C> using P = typename Cx<C>::Part;

template <class C> ZetStatus relation(const C* s, C* d, int len, P<C> level, int relOp) {
    if (relOp == kLess) return run(s, d, len, level, LT<C>{});
    return run(s, d, len, level, GT<C>{}, checkRelation(relOp));
}

// A level of 0 leaves a zero element to be inverted: its real part becomes
// an infinity, and the call reports zetStsDivByZeroWarn. The zero-divide
// exception is masked for the kernel.
template <class C> ZetStatus ltInv(const C* s, C* d, int len, P<C> level) {
    const conv::ControlScope cw(conv::kZeroDivideMask, conv::kZeroDivideMask);
    return run(s, d, len, level, LTInv<C>{});
}

}  // namespace
}  // namespace zet::thresh

using namespace zet::thresh;

#define ZT_COMPLEX(T, C, P)                                                                                           \
    ZetStatus zetsThreshold_##T(const C* s, C* d, int len, P level, int relOp) { return relation(s, d, len, level, relOp); } \
    ZetStatus zetsThreshold_##T##_I(C* sd, int len, P level, int relOp) { return relation<C>(sd, sd, len, level, relOp); } \
    ZetStatus zetsThreshold_LT_##T(const C* s, C* d, int len, P level) { return run(s, d, len, level, LT<C>{}); }      \
    ZetStatus zetsThreshold_LT_##T##_I(C* sd, int len, P level) { return run<C>(sd, sd, len, level, LT<C>{}); }        \
    ZetStatus zetsThreshold_GT_##T(const C* s, C* d, int len, P level) { return run(s, d, len, level, GT<C>{}); }      \
    ZetStatus zetsThreshold_GT_##T##_I(C* sd, int len, P level) { return run<C>(sd, sd, len, level, GT<C>{}); }        \
    ZetStatus zetsThreshold_GTVal_##T(const C* s, C* d, int len, P level, C value) {                                 \
        return run(s, d, len, level, KeepIf<C, true>{value});                                                         \
    }                                                                                                                 \
    ZetStatus zetsThreshold_GTVal_##T##_I(C* sd, int len, P level, C value) { return run<C>(sd, sd, len, level, KeepIf<C, true>{value}); } \
    ZetStatus zetsThreshold_LTVal_##T(const C* s, C* d, int len, P level, C value) {                                 \
        return run(s, d, len, level, KeepIf<C, false>{value});                                                        \
    }                                                                                                                 \
    ZetStatus zetsThreshold_LTVal_##T##_I(C* sd, int len, P level, C value) { return run<C>(sd, sd, len, level, KeepIf<C, false>{value}); }

ZT_COMPLEX(16sc, Zet16sc, Zet16s)
ZT_COMPLEX(32fc, Zet32fc, Zet32f)
ZT_COMPLEX(64fc, Zet64fc, Zet64f)

ZetStatus zetsThreshold_LTInv_32fc(const Zet32fc* s, Zet32fc* d, int len, Zet32f level) { return ltInv(s, d, len, level); }
ZetStatus zetsThreshold_LTInv_32fc_I(Zet32fc* sd, int len, Zet32f level) { return ltInv<Zet32fc>(sd, sd, len, level); }
ZetStatus zetsThreshold_LTInv_64fc(const Zet64fc* s, Zet64fc* d, int len, Zet64f level) { return ltInv(s, d, len, level); }
ZetStatus zetsThreshold_LTInv_64fc_I(Zet64fc* sd, int len, Zet64f level) { return ltInv<Zet64fc>(sd, sd, len, level); }
