// Integer arithmetic with scale factors: every _Sfs result is the exact
// result scaled by 2^-scale, rounded half to even and saturated.
//
// 8- and 16-bit real forms (and the 16sc forms that work part by part) run
// the vector kernels of fixed_simd.hpp; the 32- and 64-bit members and the
// complex products compute the exact value in 128 bits and apply the scalar
// rule. Unscaled forms are the scaled ones with a scale of 0.
#include <algorithm>
#include <cmath>
#include <type_traits>

#include "arith/fixed_rule.hpp"
#include "arith/fixed_simd.hpp"
#include "data/bytes.hpp"
#include "frame/checks.hpp"
#include "frame/chunk.hpp"
#include "frame/loops.hpp"
#include "frame/unaligned.hpp"

namespace zet::fixed {
namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;
using s16 = std::int16_t;
using s32 = std::int32_t;

// ---- the exact results, on 32-bit lanes and on scalars ----------------------
struct Plus {
    __m256i operator()(__m256i a, __m256i b) const { return _mm256_add_epi32(a, b); }
    template <class S> S operator()(S a, S b) const { return a + b; }
};
struct MinusBA {  // b - a: Sub (second minus first), SubCRev (constant minus element)
    __m256i operator()(__m256i a, __m256i b) const { return _mm256_sub_epi32(b, a); }
    template <class S> S operator()(S a, S b) const { return b - a; }
};
struct MinusAB {  // a - b: SubC (element minus constant)
    __m256i operator()(__m256i a, __m256i b) const { return _mm256_sub_epi32(a, b); }
    template <class S> S operator()(S a, S b) const { return a - b; }
};
struct Times {
    __m256i operator()(__m256i a, __m256i b) const { return _mm256_mullo_epi32(a, b); }
    template <class S> S operator()(S a, S b) const { return a * b; }
};

template <class T> constexpr bool kNarrow = sizeof(T) <= 2;  // runs on 32-bit lanes

// Results of 8- and 16-bit operands fit 32-bit lanes as signed values, except
// products of two unsigned 16-bit values, which need the unsigned reading.
template <class Op, class A, class B = A>
constexpr bool kUnsignedS = std::is_same_v<A, u16> && std::is_same_v<B, u16> && std::is_same_v<Op, Times>;

// The scale above which no result but 0 remains: where the rule's boundaries
// are fixed for a family they are these; elsewhere the width of s decides.
template <class Op, class A, bool Constant, class B = A>
constexpr int zeroAbove() {
    if constexpr (std::is_same_v<A, s16> && std::is_same_v<Op, Plus>) return 16;
    if constexpr (std::is_same_v<A, u16> && std::is_same_v<Op, Plus> && !Constant) return 17;
    if constexpr (std::is_same_v<A, s16> && std::is_same_v<Op, Times>) return 30;
    if constexpr (std::is_same_v<A, s32> && !std::is_same_v<Op, Times>) return 32;
    // 16u times 16s reaches -2^31 + 2^15: scale 32 leaves only zeros but scale 31 does not.
    return kUnsignedS<Op, A, B> ? 32 : (kNarrow<A> ? 31 : 1 << 30);
}

// ---- scale 0 on 8- and 16-bit sums: the processor's saturating add -----------
#define FX_SAT(name, T, op)                                                                   \
    inline __m256i name(__m256i a, __m256i b, T) { return _mm256_##op(a, b); } \
    inline __m128i name(__m128i a, __m128i b, T) { return _mm_##op(a, b); }
FX_SAT(satAdd, u8, adds_epu8)
FX_SAT(satAdd, u16, adds_epu16)
FX_SAT(satAdd, s16, adds_epi16)
FX_SAT(satSub, u8, subs_epu8)
FX_SAT(satSub, u16, subs_epu16)
FX_SAT(satSub, s16, subs_epi16)
#undef FX_SAT

// The exact result of Op saturated, with b a vector or a broadcast constant.
template <class Op, class T>
struct Saturating {
    template <class V> V operator()(V a, V b) const {
        if constexpr (std::is_same_v<Op, Plus>) return satAdd(a, b, T{});
        else if constexpr (std::is_same_v<Op, MinusBA>) return satSub(b, a, T{});
        else return satSub(a, b, T{});
    }
};
template <class Op, class T>
struct SaturatingWith {
    __m256i c;
    template <class V> V operator()(V a) const {
        if constexpr (std::is_same_v<V, __m256i>) return Saturating<Op, T>{}(a, c);
        else return Saturating<Op, T>{}(a, _mm256_castsi256_si128(c));
    }
};
template <class Op, class T>
constexpr bool kSaturatingAtZero = (std::is_same_v<T, u8> || std::is_same_v<T, u16> || std::is_same_v<T, s16>) &&
                                   !std::is_same_v<Op, Times>;

// ---- 16s sums and differences at scales 1..15, in 16-bit lanes -----------------
// With t = floor(s / 2) (which fits 16 bits) and c0 = s & 1, the rounded
// value of s / 2^k is q + ((t mod 2^k' + (c0 + 2^k' - 1 + (q & 1)) / 2) >> k')
// for k' = k - 1 and q = t >> k': the rule without widening.
template <class Op>
struct HalvedRule {
    __m128i count;  // k'
    int kp;
    template <class V> V operator()(V a, V b) const {
        constexpr bool W = std::is_same_v<V, __m256i>;
        auto and_ = [](V x, V y) { if constexpr (W) return _mm256_and_si256(x, y); else return _mm_and_si128(x, y); };
        auto xor_ = [](V x, V y) { if constexpr (W) return _mm256_xor_si256(x, y); else return _mm_xor_si128(x, y); };
        auto andnot = [](V x, V y) { if constexpr (W) return _mm256_andnot_si256(x, y); else return _mm_andnot_si128(x, y); };
        auto add = [](V x, V y) { if constexpr (W) return _mm256_add_epi16(x, y); else return _mm_add_epi16(x, y); };
        auto sub = [](V x, V y) { if constexpr (W) return _mm256_sub_epi16(x, y); else return _mm_sub_epi16(x, y); };
        auto adds = [](V x, V y) { if constexpr (W) return _mm256_adds_epi16(x, y); else return _mm_adds_epi16(x, y); };
        auto sra = [](V x, __m128i c) { if constexpr (W) return _mm256_sra_epi16(x, c); else return _mm_sra_epi16(x, c); };
        auto srl = [](V x, __m128i c) { if constexpr (W) return _mm256_srl_epi16(x, c); else return _mm_srl_epi16(x, c); };
        auto set1 = [](int v) { if constexpr (W) return _mm256_set1_epi16(static_cast<short>(v)); else return _mm_set1_epi16(static_cast<short>(v)); };
        const __m128i one = _mm_cvtsi32_si128(1);
        const V bit = set1(1);
        V t, c0;
        if constexpr (std::is_same_v<Op, Plus>) {  // floor((a + b) / 2)
            const V x = xor_(a, b);
            t = add(and_(a, b), sra(x, one));
            c0 = and_(x, bit);
        } else {  // floor((b - a) / 2) = (b >> 1) - (a >> 1) - (~b & a & 1)
            t = sub(sub(sra(b, one), sra(a, one)), and_(andnot(b, a), bit));
            c0 = and_(xor_(a, b), bit);
        }
        const V q = sra(t, count);
        const V m = set1((1 << kp) - 1);
        const V addend = srl(add(add(c0, m), and_(q, bit)), one);
        return adds(q, srl(add(and_(t, m), addend), count));
    }
};

// ---- two vectors --------------------------------------------------------------
template <class Op, class A, class B, class D>
ZetStatus twoVectors(const A* a, const B* b, D* d, int len, int scale) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    if (scale > zeroAbove<Op, A, false, B>()) return data::zeroElems<sizeof(D)>(d, len);
    if constexpr (std::is_same_v<A, B> && std::is_same_v<A, D> && kSaturatingAtZero<Op, A>) {
        if (scale == 0) {
            loops::map(d, len, Saturating<Op, A>{}, a, b);
            return zetStsOk;
        }
        if constexpr (std::is_same_v<A, s16> && !std::is_same_v<Op, MinusAB>) {
            if (scale >= 1 && scale <= 15) {
                loops::map(d, len, HalvedRule<Op>{_mm_cvtsi32_si128(scale - 1), scale - 1}, a, b);
                return zetStsOk;
            }
        }
    }
    if constexpr (kNarrow<A> && kNarrow<B> && kNarrow<D>) {
        constexpr bool kFullRange = std::is_same_v<Op, Times> && !std::is_same_v<A, B>;  // 16u times 16s
        ruleMap<kUnsignedS<Op, A, B>, kFullRange>(a, b, __m256i{}, nullptr, d, len, scale, Op{});
    } else {
        const Op op;
        for (long long i = 0; i < len; ++i) st(d, i, rule<D>(op(static_cast<i128>(ld(a, i)), static_cast<i128>(ld(b, i))), scale));
    }
    return zetStsOk;
}

// ---- a vector and a constant (a pattern of one value, or {re, im}) ----------
template <class Op, class T>
void withPattern(const T* a, const T pattern[2], T* d, long long n, int scale) {
    if constexpr (kNarrow<T>) {
        const long long sp[2] = {pattern[0], pattern[1]};
        const __m256i lanes = _mm256_setr_epi32(pattern[0], pattern[1], pattern[0], pattern[1], pattern[0], pattern[1],
                                                pattern[0], pattern[1]);
        ruleMap<kUnsignedS<Op, T>, false>(a, static_cast<const T*>(nullptr), lanes, sp, d, n, scale, Op{});
    } else {
        const Op op;
        for (long long i = 0; i < n; ++i) st(d, i, rule<T>(op(static_cast<i128>(ld(a, i)), static_cast<i128>(pattern[i & 1])), scale));
    }
}

// AddC, SubC and MulC of real types take a copy or a zeroing where the
// constant leaves nothing to compute; the in-place forms then return.
template <class Op, bool InPlace, class T>
ZetStatus constant(const T* a, T val, T* d, int len, int scale) {
    if (auto st = checkArgs(len, a, d)) return st;
    constexpr bool kAddSub = std::is_same_v<Op, Plus> || std::is_same_v<Op, MinusAB>;
    if (kAddSub && val == 0 && scale == 0) return InPlace ? zetStsOk : data::copyElems<sizeof(T)>(a, d, len);
    if constexpr (std::is_same_v<Op, Times> && std::is_same_v<T, s16>) {
        if (val == 1 && scale == 0) return InPlace ? zetStsOk : data::copyElems<2>(a, d, len);
        if (val == 0) return data::zeroElems<2>(d, len);
    }
    if (scale > zeroAbove<Op, T, true>()) return data::zeroElems<sizeof(T)>(d, len);
    if constexpr (kSaturatingAtZero<Op, T>) {
        if (scale == 0) {
            const __m256i c = sizeof(T) == 1 ? _mm256_set1_epi8(static_cast<char>(val)) : _mm256_set1_epi16(static_cast<short>(val));
            loops::map(d, len, SaturatingWith<Op, T>{c}, a);
            return zetStsOk;
        }
    }
    const T pattern[2] = {val, val};
    withPattern<Op>(a, pattern, d, len, scale);
    return zetStsOk;
}

// Complex constants work part by part on the interleaved parts.
template <class Op, class P, class C>
ZetStatus constantComplex(const C* a, C val, C* d, int len, int scale) {
    if (auto st = checkArgs(len, a, d)) return st;
    if (scale > zeroAbove<Op, P, true>()) return data::zeroElems<sizeof(C)>(d, len);
    const P pattern[2] = {val.re, val.im};
    withPattern<Op>(reinterpret_cast<const P*>(a), pattern, reinterpret_cast<P*>(d), 2LL * len, scale);
    return zetStsOk;
}

// Complex Add and Sub are the real forms at twice the length (length first).
template <class Op, class P, class C>
ZetStatus twoComplexParts(const C* a, const C* b, C* d, int len, int scale) {
    return forwardDoubled(len, [&](int n) {
        return twoVectors<Op>(reinterpret_cast<const P*>(a), reinterpret_cast<const P*>(b), reinterpret_cast<P*>(d), n, scale);
    });
}

// ---- complex products: exact in 128 bits, the rule once per part ------------
template <class C> using PartOf = std::remove_reference_t<decltype(C::re)>;

template <class C>
C complexProduct(C a, C b, int scale) {
    using P = PartOf<C>;
    const i128 ar = a.re, ai = a.im, br = b.re, bi = b.im;
    return {rule<P>(ar * br - ai * bi, scale), rule<P>(ar * bi + ai * br, scale)};
}

template <class C>
ZetStatus mulComplex(const C* a, const C* b, C* d, int len, int scale) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    for (long long i = 0; i < len; ++i) st(d, i, complexProduct(ld(a, i), ld(b, i), scale));
    return zetStsOk;
}
template <class C>
ZetStatus mulCComplex(const C* a, C val, C* d, int len, int scale) {
    if (auto st = checkArgs(len, a, d)) return st;
    for (long long i = 0; i < len; ++i) st(d, i, complexProduct(ld(a, i), val, scale));
    return zetStsOk;
}
template <class C>
ZetStatus sqrComplex(const C* a, C* d, int len, int scale) {
    if (auto st = checkArgs(len, a, d)) return st;
    for (long long i = 0; i < len; ++i) st(d, i, complexProduct(ld(a, i), ld(a, i), scale));
    return zetStsOk;
}

template <class T>
ZetStatus sqr(const T* a, T* d, int len, int scale) {
    return twoVectors<Times>(a, a, d, len, scale);
}

// ---- multiply-accumulate: s = d + a b, then the rule ---------------------------
template <class A, class D>
ZetStatus addProduct(const A* a, const A* b, D* d, int len, int scale) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    for (long long i = 0; i < len; ++i)
        st(d, i, rule<D>(static_cast<i128>(ld(d, i)) + static_cast<i128>(ld(a, i)) * static_cast<i128>(ld(b, i)), scale));
    return zetStsOk;
}

// ---- 32s MulC with a 64-bit length: a kernel of its own that zeroes in
// large blocks (0x7FFFFFE0 bytes) for a constant of 0 --------------------------
ZetStatus mulC32sL(const s32* a, s32 val, s32* d, long long len, int scale) {
    if (auto st = checkArgs(len, a, d)) return st;
    if (val == 0) {
        constexpr long long kBlock = 0x1FFFFFF8;
        for (long long off = 0; off < len; off += kBlock)
            data::zero8u(d + off, static_cast<int>(std::min(len - off, kBlock) * 4));
        return zetStsOk;
    }
    const s32 pattern[2] = {val, val};
    withPattern<Times>(a, pattern, d, len, scale);
    return zetStsOk;
}

// ---- floating constants to integers ---------------------------------------------
// The product (and the scaling by 2^-scale, exact in double) is rounded by
// the current rounding mode and saturated; a NaN gives the type's minimum,
// as the processor's conversion does.
template <class D>
D roundSaturate(double x) {
    constexpr double lo = static_cast<double>(std::numeric_limits<D>::min());
    constexpr double hi = static_cast<double>(std::numeric_limits<D>::max());
    if (std::isnan(x) || x <= lo) return std::numeric_limits<D>::min();
    if (x >= hi) return std::numeric_limits<D>::max();
    return static_cast<D>(std::nearbyint(x));
}

ZetStatus mulC32f16s(const float* a, float val, s16* d, int len, int scale) {
    if (auto st = checkArgs(len, a, d)) return st;
    const double factor = std::ldexp(1.0, -std::max(-2000, std::min(scale, 2000)));
    for (long long i = 0; i < len; ++i) st(d, i, roundSaturate<s16>(static_cast<double>(ld(a, i) * val) * factor));
    return zetStsOk;
}

ZetStatus mulC64f64s(double val, Zet64s* d, int len, int scale) {
    if (auto st = checkArgs(len, d)) return st;
    const double factor = std::ldexp(1.0, -std::max(-4000, std::min(scale, 4000)));
    for (long long i = 0; i < len; ++i) {
        const double x = static_cast<double>(ld(d, i)) * val * factor;
        // 2^63 is the first double beyond the range; the conversion below is exact-safe.
        st<Zet64s>(d, i, std::isnan(x) || x < -0x1p63 ? INT64_MIN : x >= 0x1p63 ? INT64_MAX : static_cast<Zet64s>(std::nearbyint(x)));
    }
    return zetStsOk;
}

// ---- unscaled and mixed forms --------------------------------------------------
template <class A, class D, class F>
ZetStatus elementwise(const A* a, const A* b, D* d, int len, F f) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    for (long long i = 0; i < len; ++i) st<D>(d, i, f(ld(a, i), ld(b, i)));
    return zetStsOk;
}

ZetStatus add32u(const std::uint32_t* a, const std::uint32_t* b, std::uint32_t* d, int len) {
    // a + min(NOT a, b): the sum saturates at the maximum without a wider type.
    return elementwise(a, b, d, len, [](std::uint32_t x, std::uint32_t y) { return x + std::min(~x, y); });
}

ZetStatus add16s32sI(const s16* a, s32* d, int len) {
    if (auto st = checkArgs(len, a, d)) return st;
    for (long long i = 0; i < len; ++i) st(d, i, saturate<s32>(static_cast<i128>(ld(d, i)) + ld(a, i)));
    return zetStsOk;
}

// Saturating absolute values: -32768 is first raised to -32767; in 32 bits an
// absolute value that stays negative becomes the maximum.
ZetStatus abs16s(const s16* a, s16* d, int len) {
    if (auto st = checkArgs(len, a, d)) return st;
    for (long long i = 0; i < len; ++i) {
        const int v = std::max<int>(ld(a, i), -32767);
        st(d, i, static_cast<s16>(v < 0 ? -v : v));
    }
    return zetStsOk;
}
ZetStatus abs32s(const s32* a, s32* d, int len) {
    if (auto st = checkArgs(len, a, d)) return st;
    for (long long i = 0; i < len; ++i) {
        const s32 x = ld(a, i);
        const std::uint32_t m = x < 0 ? 0u - static_cast<std::uint32_t>(x) : static_cast<std::uint32_t>(x);
        st(d, i, static_cast<s32>(std::min<std::uint32_t>(m, 0x7FFFFFFFu)));
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zet::fixed

using namespace zet::fixed;

// ---- exports ---------------------------------------------------------------------
#define FX_TWO(OP, T, OPTAG)                                                                                   \
    ZetStatus zets##OP##_##T##_Sfs(const Zet##T* a, const Zet##T* b, Zet##T* d, int len, int scale) {          \
        return twoVectors<OPTAG>(a, b, d, len, scale);                                                          \
    }                                                                                                           \
    ZetStatus zets##OP##_##T##_ISfs(const Zet##T* a, Zet##T* sd, int len, int scale) {                         \
        return twoVectors<OPTAG>(a, static_cast<const Zet##T*>(sd), sd, len, scale);                             \
    }
#define FX_TWO_CPLX(OP, T, P, OPTAG)                                                                           \
    ZetStatus zets##OP##_##T##_Sfs(const Zet##T* a, const Zet##T* b, Zet##T* d, int len, int scale) {          \
        return twoComplexParts<OPTAG, P>(a, b, d, len, scale);                                                  \
    }                                                                                                           \
    ZetStatus zets##OP##_##T##_ISfs(const Zet##T* a, Zet##T* sd, int len, int scale) {                         \
        return twoComplexParts<OPTAG, P>(a, static_cast<const Zet##T*>(sd), sd, len, scale);                     \
    }
#define FX_CONST(OP, T, OPTAG)                                                                                 \
    ZetStatus zets##OP##_##T##_Sfs(const Zet##T* a, Zet##T v, Zet##T* d, int len, int scale) {                 \
        return constant<OPTAG, false>(a, v, d, len, scale);                                                     \
    }                                                                                                           \
    ZetStatus zets##OP##_##T##_ISfs(Zet##T v, Zet##T* sd, int len, int scale) {                                \
        return constant<OPTAG, true>(static_cast<const Zet##T*>(sd), v, sd, len, scale);                         \
    }
#define FX_CONST_CPLX(OP, T, P, OPTAG)                                                                         \
    ZetStatus zets##OP##_##T##_Sfs(const Zet##T* a, Zet##T v, Zet##T* d, int len, int scale) {                 \
        return constantComplex<OPTAG, P>(a, v, d, len, scale);                                                  \
    }                                                                                                           \
    ZetStatus zets##OP##_##T##_ISfs(Zet##T v, Zet##T* sd, int len, int scale) {                                \
        return constantComplex<OPTAG, P>(static_cast<const Zet##T*>(sd), v, sd, len, scale);                     \
    }
#define FX_CPLX_PRODUCTS(T)                                                                                    \
    ZetStatus zetsMul_##T##_Sfs(const Zet##T* a, const Zet##T* b, Zet##T* d, int len, int scale) {             \
        return mulComplex(a, b, d, len, scale);                                                                 \
    }                                                                                                           \
    ZetStatus zetsMul_##T##_ISfs(const Zet##T* a, Zet##T* sd, int len, int scale) {                            \
        return mulComplex(a, static_cast<const Zet##T*>(sd), sd, len, scale);                                    \
    }                                                                                                           \
    ZetStatus zetsMulC_##T##_Sfs(const Zet##T* a, Zet##T v, Zet##T* d, int len, int scale) {                   \
        return mulCComplex(a, v, d, len, scale);                                                                \
    }                                                                                                           \
    ZetStatus zetsMulC_##T##_ISfs(Zet##T v, Zet##T* sd, int len, int scale) {                                  \
        return mulCComplex(static_cast<const Zet##T*>(sd), v, sd, len, scale);                                   \
    }
#define FX_SQR(T)                                                                                              \
    ZetStatus zetsSqr_##T##_Sfs(const Zet##T* a, Zet##T* d, int len, int scale) { return sqr(a, d, len, scale); } \
    ZetStatus zetsSqr_##T##_ISfs(Zet##T* sd, int len, int scale) { return sqr(static_cast<const Zet##T*>(sd), sd, len, scale); }

#define FX_REAL_FAMILY(T)        \
    FX_TWO(Add, T, Plus)         \
    FX_TWO(Sub, T, MinusBA)      \
    FX_TWO(Mul, T, Times)        \
    FX_CONST(AddC, T, Plus)      \
    FX_CONST(SubC, T, MinusAB)   \
    FX_CONST(SubCRev, T, MinusBA) \
    FX_CONST(MulC, T, Times)

FX_REAL_FAMILY(8u)
FX_REAL_FAMILY(16u)
FX_REAL_FAMILY(16s)
FX_REAL_FAMILY(32s)
FX_SQR(8u)
FX_SQR(16u)
FX_SQR(16s)

FX_TWO_CPLX(Add, 16sc, s16, Plus)
FX_TWO_CPLX(Sub, 16sc, s16, MinusBA)
FX_TWO_CPLX(Add, 32sc, s32, Plus)
FX_TWO_CPLX(Sub, 32sc, s32, MinusBA)
FX_CONST_CPLX(AddC, 16sc, s16, Plus)
FX_CONST_CPLX(SubC, 16sc, s16, MinusAB)
FX_CONST_CPLX(SubCRev, 16sc, s16, MinusBA)
FX_CONST_CPLX(AddC, 32sc, s32, Plus)
FX_CONST_CPLX(SubC, 32sc, s32, MinusAB)
FX_CONST_CPLX(SubCRev, 32sc, s32, MinusBA)
FX_CPLX_PRODUCTS(16sc)
FX_CPLX_PRODUCTS(32sc)
ZetStatus zetsSqr_16sc_Sfs(const Zet16sc* a, Zet16sc* d, int len, int scale) { return sqrComplex(a, d, len, scale); }
ZetStatus zetsSqr_16sc_ISfs(Zet16sc* sd, int len, int scale) { return sqrComplex(static_cast<const Zet16sc*>(sd), sd, len, scale); }

// Unscaled 16s forms: the scaled form with a scale of 0, and its checks.
ZetStatus zetsAdd_16s(const Zet16s* a, const Zet16s* b, Zet16s* d, int len) { return zetsAdd_16s_Sfs(a, b, d, len, 0); }
ZetStatus zetsAdd_16s_I(const Zet16s* a, Zet16s* sd, int len) { return zetsAdd_16s_ISfs(a, sd, len, 0); }
ZetStatus zetsSub_16s(const Zet16s* a, const Zet16s* b, Zet16s* d, int len) { return zetsSub_16s_Sfs(a, b, d, len, 0); }
ZetStatus zetsSub_16s_I(const Zet16s* a, Zet16s* sd, int len) { return zetsSub_16s_ISfs(a, sd, len, 0); }
ZetStatus zetsMul_16s(const Zet16s* a, const Zet16s* b, Zet16s* d, int len) { return zetsMul_16s_Sfs(a, b, d, len, 0); }
ZetStatus zetsMul_16s_I(const Zet16s* a, Zet16s* sd, int len) { return zetsMul_16s_ISfs(a, sd, len, 0); }
ZetStatus zetsAddC_16s_I(Zet16s v, Zet16s* sd, int len) { return zetsAddC_16s_ISfs(v, sd, len, 0); }
ZetStatus zetsSubC_16s_I(Zet16s v, Zet16s* sd, int len) { return zetsSubC_16s_ISfs(v, sd, len, 0); }
ZetStatus zetsMulC_16s_I(Zet16s v, Zet16s* sd, int len) { return zetsMulC_16s_ISfs(v, sd, len, 0); }
ZetStatus zetsAdd_16u(const Zet16u* a, const Zet16u* b, Zet16u* d, int len) { return twoVectors<Plus>(a, b, d, len, 0); }

// Unsigned and mixed forms.
ZetStatus zetsAdd_32u(const Zet32u* a, const Zet32u* b, Zet32u* d, int len) { return add32u(a, b, d, len); }
ZetStatus zetsAdd_32u_I(const Zet32u* a, Zet32u* sd, int len) { return add32u(a, sd, sd, len); }
ZetStatus zetsAdd_8u16u(const Zet8u* a, const Zet8u* b, Zet16u* d, int len) {
    return elementwise(a, b, d, len, [](Zet8u x, Zet8u y) { return static_cast<Zet16u>(x + y); });
}
ZetStatus zetsMul_8u16u(const Zet8u* a, const Zet8u* b, Zet16u* d, int len) {
    return elementwise(a, b, d, len, [](Zet8u x, Zet8u y) { return static_cast<Zet16u>(x * y); });
}
// Exact 32-bit results converted by the current rounding mode.
ZetStatus zetsAdd_16s32f(const Zet16s* a, const Zet16s* b, Zet32f* d, int len) {
    return elementwise(a, b, d, len, [](Zet16s x, Zet16s y) { return static_cast<float>(y + x); });
}
ZetStatus zetsSub_16s32f(const Zet16s* a, const Zet16s* b, Zet32f* d, int len) {
    return elementwise(a, b, d, len, [](Zet16s x, Zet16s y) { return static_cast<float>(y - x); });
}
ZetStatus zetsMul_16s32f(const Zet16s* a, const Zet16s* b, Zet32f* d, int len) {
    return elementwise(a, b, d, len, [](Zet16s x, Zet16s y) { return static_cast<float>(y * x); });
}
ZetStatus zetsAdd_16s32s_I(const Zet16s* a, Zet32s* sd, int len) { return add16s32sI(a, sd, len); }
ZetStatus zetsMul_16s32s_Sfs(const Zet16s* a, const Zet16s* b, Zet32s* d, int len, int scale) {
    return twoVectors<Times>(a, b, d, len, scale);
}
ZetStatus zetsMul_16u16s_Sfs(const Zet16u* a, const Zet16s* b, Zet16s* d, int len, int scale) {
    return twoVectors<Times>(a, b, d, len, scale);
}
ZetStatus zetsMulC_32f16s_Sfs(const Zet32f* a, Zet32f v, Zet16s* d, int len, int scale) { return mulC32f16s(a, v, d, len, scale); }
ZetStatus zetsMulC_Low_32f16s(const Zet32f* a, Zet32f v, Zet16s* d, int len) { return mulC32f16s(a, v, d, len, 0); }
ZetStatus zetsMulC_64f64s_ISfs(Zet64f v, Zet64s* sd, int len, int scale) { return mulC64f64s(v, sd, len, scale); }

// 64-bit members: exact in 128 bits.
ZetStatus zetsAdd_64s_Sfs(const Zet64s* a, const Zet64s* b, Zet64s* d, int len, int scale) {
    return twoVectors<Plus>(a, b, d, len, scale);
}
ZetStatus zetsAddC_64s_Sfs(const Zet64s* a, Zet64s v, Zet64s* d, int len, int scale) { return constant<Plus, false>(a, v, d, len, scale); }
ZetStatus zetsAddC_64u_Sfs(const Zet64u* a, Zet64u v, Zet64u* d, int len, int scale) { return constant<Plus, false>(a, v, d, len, scale); }
ZetStatus zetsMulC_64s_ISfs(Zet64s v, Zet64s* sd, int len, int scale) {
    return constant<Times, true>(static_cast<const Zet64s*>(sd), v, sd, len, scale);
}
ZetStatus zetsMulC_32s_Sfs_L(const Zet32s* a, Zet32s v, Zet32s* d, long long len, int scale) { return mulC32sL(a, v, d, len, scale); }
ZetStatus zetsMulC_32s_ISfs_L(Zet32s v, Zet32s* sd, long long len, int scale) { return mulC32sL(sd, v, sd, len, scale); }

ZetStatus zetsAddProduct_16s_Sfs(const Zet16s* a, const Zet16s* b, Zet16s* sd, int len, int scale) { return addProduct(a, b, sd, len, scale); }
ZetStatus zetsAddProduct_32s_Sfs(const Zet32s* a, const Zet32s* b, Zet32s* sd, int len, int scale) { return addProduct(a, b, sd, len, scale); }
ZetStatus zetsAddProduct_16s32s_Sfs(const Zet16s* a, const Zet16s* b, Zet32s* sd, int len, int scale) { return addProduct(a, b, sd, len, scale); }

ZetStatus zetsAbs_16s(const Zet16s* a, Zet16s* d, int len) { return abs16s(a, d, len); }
ZetStatus zetsAbs_16s_I(Zet16s* sd, int len) { return abs16s(sd, sd, len); }
ZetStatus zetsAbs_32s(const Zet32s* a, Zet32s* d, int len) { return abs32s(a, d, len); }
ZetStatus zetsAbs_32s_I(Zet32s* sd, int len) { return abs32s(sd, sd, len); }
