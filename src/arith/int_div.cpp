// Integer division: the exact quotient, scaled by 2^-scale, rounded (half to
// even, or by the mode of the Div_Round forms) and saturated. A zero divisor
// in a vector form does not stop the loop: the element becomes the maximum
// for a positive dividend, the minimum for a negative one and 0 for 0, and
// the call ends with zetStsDivByZeroWarn.
#include <algorithm>
#include <limits>

#include "arith/fixed_rule.hpp"
#include "frame/checks.hpp"
#include "frame/unaligned.hpp"

namespace zet::fixed {
namespace {

using u128 = unsigned __int128;

int bitsOf(i128 m) {  // m > 0
    int b = 0;
    for (u128 v = static_cast<u128>(m); v; v >>= 1) ++b;
    return b;
}

// q + (1 if the fraction r / den, 0 <= r < den, rounds q up under the mode).
i128 roundQuotient(i128 q, i128 r, i128 den, int mode) {
    if (r == 0) return q;
    const i128 twice = 2 * r;  // r < den <= 2^126, so no overflow
    switch (mode) {
        case 0: return q < 0 ? q + 1 : q;                             // toward zero
        case 2: return q + ((q >= 0 ? twice >= den : twice > den) ? 1 : 0);  // ties away from zero
        default: return q + ((twice > den || (twice == den && (q & 1))) ? 1 : 0);  // ties to even
    }
}

// floor(n / m) and its remainder, m > 0.
void floorDiv(i128 n, i128 m, i128& q, i128& r) {
    q = n / m;
    r = n % m;
    if (r < 0) q -= 1, r += m;
}

constexpr i128 kHuge = i128{1} << 100;  // beyond every destination: saturates

// n / (m 2^scale), m != 0, rounded by the mode; |n| and |m| below 2^65.
i128 divScaled(i128 n, i128 m, int scale, int mode) {
    if (m < 0) n = -n, m = -m;
    i128 q, r;
    if (scale >= 0) {
        if (bitsOf(m) + static_cast<long long>(scale) > 126) {  // |n| / den < 2^-60: only 0 remains
            floorDiv(n, kHuge, q, r);
            return roundQuotient(q, r, kHuge, mode);
        }
        const i128 den = m << scale;
        floorDiv(n, den, q, r);
        return roundQuotient(q, r, den, mode);
    }
    const long long k = -static_cast<long long>(scale);
    if (n == 0) return 0;
    if (k > 125) return n > 0 ? kHuge : -kHuge;
    if (k <= 62) {
        floorDiv(n << k, m, q, r);
        return roundQuotient(q, r, m, mode);
    }
    // Long division in two steps so no intermediate leaves 128 bits.
    const int g = static_cast<int>(k - 62);
    i128 q0, r0, q1, r1;
    floorDiv(n << 62, m, q0, r0);
    if (q0 >= (i128{1} << (120 - g)) || q0 < -(i128{1} << (120 - g))) return q0 > 0 ? kHuge : -kHuge;
    floorDiv(r0 << g, m, q1, r1);
    return roundQuotient((q0 << g) + q1, r1, m, mode);
}

template <class D>
D atZeroDivisor(i128 n) {
    return n > 0 ? std::numeric_limits<D>::max() : n < 0 ? std::numeric_limits<D>::min() : D(0);
}

template <class D>
D quotient(i128 n, i128 m, int scale, int mode, bool& zero) {
    if (m == 0) {
        zero = true;
        return atZeroDivisor<D>(n);
    }
    return saturate<D>(divScaled(n, m, scale, mode));
}

// dst[i] = src2[i] / src1[i]: the first vector is the divisor.
template <class A, class B, class D>
ZetStatus divVectors(const A* divisor, const B* dividend, D* d, int len, int scale, int mode) {
    bool zero = false;
    for (long long i = 0; i < len; ++i) st(d, i, quotient<D>(ld(dividend, i), ld(divisor, i), scale, mode, zero));
    return zero ? zetStsDivByZeroWarn : zetStsOk;
}

template <class A, class B, class D>
ZetStatus div(const A* divisor, const B* dividend, D* d, int len, int scale) {
    if (auto st = checkArgs(len, divisor, dividend, d)) return st;
    return divVectors(divisor, dividend, d, len, scale, 1);
}

template <class T>
ZetStatus divRound(const T* divisor, const T* dividend, T* d, int len, int mode, int scale) {
    if (auto st = checkArgs(len, divisor, dividend, d)) return st;
    if (static_cast<unsigned>(mode) > 2u) return zetStsRoundModeValueErr;
    return divVectors(divisor, dividend, d, len, scale, mode);
}

// Complex: (b / a) = (b.re a.re + b.im a.im, b.im a.re - b.re a.im) / |a|^2,
// exact rationals; a zero divisor takes each part from the sign of b's part.
template <class C>
C complexQuotient(C a, C b, int scale, bool& zero) {
    using P = std::remove_reference_t<decltype(C::re)>;
    const i128 ar = a.re, ai = a.im, br = b.re, bi = b.im;
    const i128 den = ar * ar + ai * ai;
    if (den == 0) {
        zero = true;
        return {atZeroDivisor<P>(br), atZeroDivisor<P>(bi)};
    }
    return {saturate<P>(divScaled(br * ar + bi * ai, den, scale, 1)), saturate<P>(divScaled(bi * ar - br * ai, den, scale, 1))};
}

ZetStatus divComplex(const Zet16sc* a, const Zet16sc* b, Zet16sc* d, int len, int scale) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    bool zero = false;
    for (long long i = 0; i < len; ++i) st(d, i, complexQuotient(ld(a, i), ld(b, i), scale, zero));
    return zero ? zetStsDivByZeroWarn : zetStsOk;
}

// Division by a constant: a zero constant is an error before anything is
// written (the 64s form alone treats it as a warning, like a vector form).
template <class T>
ZetStatus divC(const T* s, T val, T* d, int len, int scale) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (val == 0) return zetStsDivByZeroErr;
    bool zero = false;
    for (long long i = 0; i < len; ++i) st(d, i, quotient<T>(ld(s, i), val, scale, 1, zero));
    return zetStsOk;
}

ZetStatus divCComplex(const Zet16sc* s, Zet16sc val, Zet16sc* d, int len, int scale) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (val.re == 0 && val.im == 0) return zetStsDivByZeroErr;
    bool zero = false;
    for (long long i = 0; i < len; ++i) st(d, i, complexQuotient(val, ld(s, i), scale, zero));
    return zetStsOk;
}

ZetStatus divC64s(Zet64s val, Zet64s* d, int len, int scale) {
    if (auto st = checkArgs(len, d)) return st;
    bool zero = false;
    for (long long i = 0; i < len; ++i) st(d, i, quotient<Zet64s>(ld(d, i), val, scale, 1, zero));
    return zero ? zetStsDivByZeroWarn : zetStsOk;
}

// val / src[i], rounded half to even.
ZetStatus divCRev16u(const Zet16u* s, Zet16u val, Zet16u* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    bool zero = false;
    for (long long i = 0; i < len; ++i) st(d, i, quotient<Zet16u>(val, ld(s, i), 0, 1, zero));
    return zero ? zetStsDivByZeroWarn : zetStsOk;
}

}  // namespace
}  // namespace zet::fixed

using namespace zet::fixed;

#define ID_DIV(T)                                                                                                   \
    ZetStatus zetsDiv_##T##_Sfs(const Zet##T* a, const Zet##T* b, Zet##T* d, int len, int scale) { return div(a, b, d, len, scale); } \
    ZetStatus zetsDiv_##T##_ISfs(const Zet##T* a, Zet##T* sd, int len, int scale) { return div(a, sd, sd, len, scale); }
#define ID_DIVC(T)                                                                                                  \
    ZetStatus zetsDivC_##T##_Sfs(const Zet##T* s, Zet##T v, Zet##T* d, int len, int scale) { return divC(s, v, d, len, scale); } \
    ZetStatus zetsDivC_##T##_ISfs(Zet##T v, Zet##T* sd, int len, int scale) { return divC(static_cast<const Zet##T*>(sd), v, sd, len, scale); }
#define ID_ROUND(T)                                                                                                 \
    ZetStatus zetsDiv_Round_##T##_Sfs(const Zet##T* a, const Zet##T* b, Zet##T* d, int len, int mode, int scale) {   \
        return divRound(a, b, d, len, mode, scale);                                                                 \
    }                                                                                                               \
    ZetStatus zetsDiv_Round_##T##_ISfs(const Zet##T* a, Zet##T* sd, int len, int mode, int scale) {                 \
        return divRound(a, static_cast<const Zet##T*>(sd), sd, len, mode, scale);                                    \
    }

ID_DIV(8u)
ID_DIV(16u)
ID_DIV(16s)
ID_DIV(32s)
ID_DIVC(8u)
ID_DIVC(16u)
ID_DIVC(16s)
ID_ROUND(8u)
ID_ROUND(16u)
ID_ROUND(16s)

ZetStatus zetsDiv_16sc_Sfs(const Zet16sc* a, const Zet16sc* b, Zet16sc* d, int len, int scale) { return divComplex(a, b, d, len, scale); }
ZetStatus zetsDiv_16sc_ISfs(const Zet16sc* a, Zet16sc* sd, int len, int scale) { return divComplex(a, sd, sd, len, scale); }
ZetStatus zetsDivC_16sc_Sfs(const Zet16sc* s, Zet16sc v, Zet16sc* d, int len, int scale) { return divCComplex(s, v, d, len, scale); }
ZetStatus zetsDivC_16sc_ISfs(Zet16sc v, Zet16sc* sd, int len, int scale) { return divCComplex(sd, v, sd, len, scale); }
ZetStatus zetsDiv_32s16s_Sfs(const Zet16s* a, const Zet32s* b, Zet16s* d, int len, int scale) { return div(a, b, d, len, scale); }
ZetStatus zetsDivC_64s_ISfs(Zet64s v, Zet64s* sd, int len, int scale) { return divC64s(v, sd, len, scale); }
ZetStatus zetsDivCRev_16u(const Zet16u* s, Zet16u v, Zet16u* d, int len) { return divCRev16u(s, v, d, len); }
ZetStatus zetsDivCRev_16u_I(Zet16u v, Zet16u* sd, int len) { return divCRev16u(sd, v, sd, len); }
