// Thresholds of real vectors (16s, 32s, 32f, 64f): plain vector blocks with
// a scalar tail through the same register operation (frame/loops.hpp).
//
// Three details are part of the contract. LT and GT are the processor's
// maximum and minimum with the element as first operand, so a NaN element
// gives the level. GTVal keeps an element that is at or below the level and
// replaces the rest, so a NaN is replaced (LTVal mirrors it). LTAbs and
// GTAbs work on the bits of floats: the magnitude's bit pattern against the
// level's as signed integers, then the sign put back, so a NaN keeps its
// bits under LTAbs; LTAbsVal compares as floating point and keeps a NaN too.
#include <cstdint>
#include <type_traits>

#include "data/convert_lanes.hpp"
#include "data/threshold.hpp"
#include "frame/loops.hpp"
#include "frame/unaligned.hpp"

namespace zet::thresh {
namespace {

// ---- register operations per element type, at both widths ---------------------
template <class T> struct Th;

#define ZT_FLOATS(R, P, S, B, E)                                                                \
    static R max(R a, R b) { return P##max_##S(a, b); }                                         \
    static R min(R a, R b) { return P##min_##S(a, b); }                                         \
    static R lt(R a, R b) { return P##cmp_##S(a, b, _CMP_LT_OQ); }                              \
    static R le(R a, R b) { return P##cmp_##S(a, b, _CMP_LE_OQ); }                              \
    static R gt(R a, R b) { return P##cmp_##S(a, b, _CMP_GT_OQ); }                              \
    static R ge(R a, R b) { return P##cmp_##S(a, b, _CMP_GE_OQ); }                              \
    static R bitAnd(R a, R b) { return P##and_##S(a, b); }                                      \
    /* a where m is set, else b */                                                              \
    static R select(R m, R a, R b) { return P##blendv_##S(b, a, m); }                           \
    static R magnitude(R a) { return P##andnot_##S(P##set1_##S(-0.0), a); }                    \
    static R withSignOf(R mag, R x) { return P##or_##S(mag, P##and_##S(P##set1_##S(-0.0), x)); } \
    static R div(R a, R b) { return P##div_##S(a, b); }                                         \
    /* the bit patterns compared, and their maximum and minimum, as signed integers */          \
    static R bitsGreater(R a, R b) { return P##castsi##B##_##S(P##cmpgt_##E(P##cast##S##_si##B(a), P##cast##S##_si##B(b))); } \
    static R bitsMax(R a, R b) { return select(bitsGreater(b, a), b, a); }                      \
    static R bitsMin(R a, R b) { return select(bitsGreater(a, b), b, a); }

#define ZT_INTS(R, P, E, B)                                                                  \
    static R max(R a, R b) { return P##max_##E(a, b); }                                      \
    static R min(R a, R b) { return P##min_##E(a, b); }                                      \
    static R lt(R a, R b) { return P##cmpgt_##E(b, a); }                                     \
    static R gt(R a, R b) { return P##cmpgt_##E(a, b); }                                     \
    static R le(R a, R b) { return P##xor_##B(gt(a, b), P##cmpeq_##E(a, a)); }              \
    static R ge(R a, R b) { return P##xor_##B(lt(a, b), P##cmpeq_##E(a, a)); }              \
    static R bitAnd(R a, R b) { return P##and_##B(a, b); }                                   \
    static R select(R m, R a, R b) { return P##blendv_epi8(b, a, m); }                        \
    static R negative(R a) { return P##cmpgt_##E(P##setzero_##B(), a); }

// The wide register of a constant, and how it is made and narrowed.
template <class T>
struct ThBase {
    using Wide = std::conditional_t<std::is_same_v<T, float>, __m256, std::conditional_t<std::is_same_v<T, double>, __m256d, __m256i>>;
    static Wide splat(T v) {
        if constexpr (std::is_same_v<T, float>) return _mm256_set1_ps(v);
        else if constexpr (std::is_same_v<T, double>) return _mm256_set1_pd(v);
        else if constexpr (sizeof(T) == 2) return _mm256_set1_epi16(v);
        else return _mm256_set1_epi32(v);
    }
    template <class V> static V fit(Wide c) {
        if constexpr (std::is_floating_point_v<T>) return simd::fit<V>(c);
        else return conv::fitI<V>(c);
    }
};
template <> struct Th<float> : ThBase<float> {
    ZT_FLOATS(__m256, _mm256_, ps, 256, epi32)
    ZT_FLOATS(__m128, _mm_, ps, 128, epi32)
};
template <> struct Th<double> : ThBase<double> {
    ZT_FLOATS(__m256d, _mm256_, pd, 256, epi64)
    ZT_FLOATS(__m128d, _mm_, pd, 128, epi64)
};
template <> struct Th<Zet16s> : ThBase<Zet16s> {
    ZT_INTS(__m256i, _mm256_, epi16, si256)
    ZT_INTS(__m128i, _mm_, epi16, si128)
};
template <> struct Th<Zet32s> : ThBase<Zet32s> {
    ZT_INTS(__m256i, _mm256_, epi32, si256)
    ZT_INTS(__m128i, _mm_, epi32, si128)
};
#undef ZT_FLOATS
#undef ZT_INTS

template <class T> constexpr bool kFloat = std::is_floating_point_v<T>;

// -level of an integer level, wrapping at the lowest value (whose magnitude
// no element can be below).
template <class T> T negated(T v) {
    if constexpr (kFloat<T>) return -v;
    else return static_cast<T>(0u - static_cast<std::make_unsigned_t<T>>(v));
}

// ---- the rules ----------------------------------------------------------------------
// Each holds its constants as wide registers; H::fit narrows them to the
// register at hand.
template <class T> struct Rule {
    using H = Th<T>;
    using W = typename H::Wide;
    template <class V> static V c(W w) { return H::template fit<V>(w); }
};

template <class T> struct LT : Rule<T> {
    typename Th<T>::Wide level;
    template <class V> V operator()(V x) const { return Th<T>::max(x, this->template c<V>(level)); }
};
template <class T> struct GT : Rule<T> {
    typename Th<T>::Wide level;
    template <class V> V operator()(V x) const { return Th<T>::min(x, this->template c<V>(level)); }
};
// Kept where the comparison holds, else value: a NaN fails it.
template <class T, bool kAtOrBelow> struct KeepIf : Rule<T> {
    typename Th<T>::Wide level, value;
    template <class V> V operator()(V x) const {
        const V l = this->template c<V>(level);
        return Th<T>::select(kAtOrBelow ? Th<T>::le(x, l) : Th<T>::ge(x, l), x, this->template c<V>(value));
    }
};
// The magnitude pushed up to (kUp, LTAbs) or down to (GTAbs) the level, the sign kept.
template <class T, bool kUp> struct AbsLimit : Rule<T> {
    typename Th<T>::Wide level, negLevel;
    template <class V> V operator()(V x) const {
        using H = Th<T>;
        const V l = this->template c<V>(level);
        if constexpr (kFloat<T>) {
            const V m = H::magnitude(x);
            return H::withSignOf(kUp ? H::bitsMax(m, l) : H::bitsMin(m, l), x);
        } else {
            const V nl = this->template c<V>(negLevel);
            const V negative = H::negative(x);
            return kUp ? H::select(negative, H::min(x, nl), H::max(x, l)) : H::select(negative, H::max(x, nl), H::min(x, l));
        }
    }
};
// value where the magnitude is below the level, compared as numbers.
template <class T> struct LTAbsVal : Rule<T> {
    typename Th<T>::Wide level, negLevel, value;
    template <class V> V operator()(V x) const {
        using H = Th<T>;
        const V l = this->template c<V>(level), v = this->template c<V>(value);
        if constexpr (kFloat<T>) return H::select(H::lt(H::magnitude(x), l), v, x);
        else return H::select(H::bitAnd(H::gt(x, this->template c<V>(negLevel)), H::lt(x, l)), v, x);
    }
};
template <class T> struct LTValGTVal : Rule<T> {
    typename Th<T>::Wide levelLT, valueLT, levelGT, valueGT;
    template <class V> V operator()(V x) const {
        using H = Th<T>;
        const V r = H::select(H::lt(x, this->template c<V>(levelLT)), this->template c<V>(valueLT), x);
        return H::select(H::gt(x, this->template c<V>(levelGT)), this->template c<V>(valueGT), r);
    }
};
// 1 / x, with a magnitude below the level first raised to it (sign kept).
template <class T> struct LTInv : Rule<T> {
    typename Th<T>::Wide level, one;
    template <class V> V operator()(V x) const {
        using H = Th<T>;
        const V l = this->template c<V>(level);
        const V raised = H::select(H::lt(H::magnitude(x), l), H::withSignOf(l, x), x);
        return H::div(this->template c<V>(one), raised);
    }
};

// ---- running them ----------------------------------------------------------------------
template <class T, class Op>
[[gnu::noinline]] void kernel(const T* s, T* d, i64 n, Op op) {
    loops::map(d, n, op, s);
}

// Pointers, then the length, then `family` (the family's own checks).
template <class T, class Op>
ZetStatus run(const T* s, T* d, i64 len, ZetStatus family, Op op) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (family != zetStsOk) return family;
    kernel(s, d, len, op);
    return zetStsOk;
}

template <class T> ZetStatus negativeLevel(T level) { return level < 0 ? zetStsNegThreshErr : zetStsOk; }
template <class T> typename Th<T>::Wide w(T v) { return Th<T>::splat(v); }

template <class T> ZetStatus lt(const T* s, T* d, int len, T level) { return run(s, d, len, zetStsOk, LT<T>{{}, w(level)}); }
template <class T> ZetStatus gt(const T* s, T* d, int len, T level) { return run(s, d, len, zetStsOk, GT<T>{{}, w(level)}); }
template <class T> ZetStatus relation(const T* s, T* d, int len, T level, int relOp) {
    if (relOp == kLess) return lt(s, d, len, level);
    return run(s, d, len, checkRelation(relOp), GT<T>{{}, w(level)});
}
template <class T> ZetStatus gtVal(const T* s, T* d, int len, T level, T value) {
    return run(s, d, len, zetStsOk, KeepIf<T, true>{{}, w(level), w(value)});
}
template <class T> ZetStatus ltVal(const T* s, T* d, int len, T level, T value) {
    return run(s, d, len, zetStsOk, KeepIf<T, false>{{}, w(level), w(value)});
}
template <class T, bool kUp> ZetStatus absLimit(const T* s, T* d, i64 len, T level) {
    return run(s, d, len, negativeLevel(level), AbsLimit<T, kUp>{{}, w(level), w(negated(level))});
}
template <class T> ZetStatus ltAbsVal(const T* s, T* d, int len, T level, T value) {
    return run(s, d, len, zetStsOk, LTAbsVal<T>{{}, w(level), w(negated(level)), w(value)});
}
template <class T> ZetStatus ltValGtVal(const T* s, T* d, int len, T levelLT, T valueLT, T levelGT, T valueGT) {
    return run(s, d, len, levelLT > levelGT ? zetStsThreshRangeErr : zetStsOk,
               LTValGTVal<T>{{}, w(levelLT), w(valueLT), w(levelGT), w(valueGT)});
}

// A level of 0 leaves zeros as they are: their inverse is an infinity, and
// the call reports zetStsDivByZeroWarn. The zero-divide exception is masked
// for the kernel and its mask put back afterwards.
template <class T> ZetStatus ltInv(const T* s, T* d, int len, T level) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (auto st = negativeLevel(level)) return st;
    bool zero = false;
    if (level == 0)
        for (int i = 0; i < len && !zero; ++i) zero = ld(s, i) == 0;
    const conv::ControlScope cw(conv::kZeroDivideMask, conv::kZeroDivideMask);
    kernel(s, d, len, LTInv<T>{{}, w(level), w(T{1})});
    return zero ? zetStsDivByZeroWarn : zetStsOk;
}

}  // namespace
}  // namespace zet::thresh

using namespace zet::thresh;

// T: element type code, E: element type.
#define ZT_LT_GT(T, E)                                                                                          \
    ZetStatus zetsThreshold_LT_##T(const E* s, E* d, int len, E level) { return lt(s, d, len, level); }         \
    ZetStatus zetsThreshold_LT_##T##_I(E* sd, int len, E level) { return lt<E>(sd, sd, len, level); }           \
    ZetStatus zetsThreshold_GT_##T(const E* s, E* d, int len, E level) { return gt(s, d, len, level); }         \
    ZetStatus zetsThreshold_GT_##T##_I(E* sd, int len, E level) { return gt<E>(sd, sd, len, level); }
#define ZT_REL_VAL(T, E)                                                                                        \
    ZetStatus zetsThreshold_##T(const E* s, E* d, int len, E level, int relOp) { return relation(s, d, len, level, relOp); } \
    ZetStatus zetsThreshold_##T##_I(E* sd, int len, E level, int relOp) { return relation<E>(sd, sd, len, level, relOp); } \
    ZetStatus zetsThreshold_GTVal_##T(const E* s, E* d, int len, E level, E value) { return gtVal(s, d, len, level, value); } \
    ZetStatus zetsThreshold_GTVal_##T##_I(E* sd, int len, E level, E value) { return gtVal<E>(sd, sd, len, level, value); } \
    ZetStatus zetsThreshold_LTVal_##T(const E* s, E* d, int len, E level, E value) { return ltVal(s, d, len, level, value); } \
    ZetStatus zetsThreshold_LTVal_##T##_I(E* sd, int len, E level, E value) { return ltVal<E>(sd, sd, len, level, value); }
#define ZT_ABS(T, E)                                                                                            \
    ZetStatus zetsThreshold_LTAbs_##T(const E* s, E* d, int len, E level) { return absLimit<E, true>(s, d, len, level); } \
    ZetStatus zetsThreshold_LTAbs_##T##_I(E* sd, int len, E level) { return absLimit<E, true>(sd, sd, len, level); } \
    ZetStatus zetsThreshold_GTAbs_##T(const E* s, E* d, int len, E level) { return absLimit<E, false>(s, d, len, level); } \
    ZetStatus zetsThreshold_GTAbs_##T##_I(E* sd, int len, E level) { return absLimit<E, false>(sd, sd, len, level); } \
    ZetStatus zetsThreshold_LTAbsVal_##T(const E* s, E* d, int len, E level, E value) { return ltAbsVal(s, d, len, level, value); } \
    ZetStatus zetsThreshold_LTAbsVal_##T##_I(E* sd, int len, E level, E value) { return ltAbsVal<E>(sd, sd, len, level, value); } \
    ZetStatus zetsThreshold_LTValGTVal_##T(const E* s, E* d, int len, E levelLT, E valueLT, E levelGT, E valueGT) { \
        return ltValGtVal(s, d, len, levelLT, valueLT, levelGT, valueGT);                                       \
    }                                                                                                           \
    ZetStatus zetsThreshold_LTValGTVal_##T##_I(E* sd, int len, E levelLT, E valueLT, E levelGT, E valueGT) {    \
        return ltValGtVal<E>(sd, sd, len, levelLT, valueLT, levelGT, valueGT);                                  \
    }

ZT_LT_GT(16s, Zet16s)
ZT_LT_GT(32s, Zet32s)
ZT_LT_GT(32f, Zet32f)
ZT_LT_GT(64f, Zet64f)
ZT_REL_VAL(16s, Zet16s)
ZT_REL_VAL(32f, Zet32f)
ZT_REL_VAL(64f, Zet64f)
ZT_ABS(16s, Zet16s)
ZT_ABS(32s, Zet32s)
ZT_ABS(32f, Zet32f)
ZT_ABS(64f, Zet64f)

// The 64-bit-length forms run the same kernel with a 64-bit count.
ZetStatus zetsThreshold_LTAbs_32f_L(const Zet32f* s, Zet32f* d, long long len, Zet32f level) { return absLimit<Zet32f, true>(s, d, len, level); }
ZetStatus zetsThreshold_LTAbs_32f_I_L(Zet32f* sd, long long len, Zet32f level) { return absLimit<Zet32f, true>(sd, sd, len, level); }
ZetStatus zetsThreshold_LTAbs_64f_L(const Zet64f* s, Zet64f* d, long long len, Zet64f level) { return absLimit<Zet64f, true>(s, d, len, level); }
ZetStatus zetsThreshold_LTAbs_64f_I_L(Zet64f* sd, long long len, Zet64f level) { return absLimit<Zet64f, true>(sd, sd, len, level); }

ZetStatus zetsThreshold_LTInv_32f(const Zet32f* s, Zet32f* d, int len, Zet32f level) { return ltInv(s, d, len, level); }
ZetStatus zetsThreshold_LTInv_32f_I(Zet32f* sd, int len, Zet32f level) { return ltInv<Zet32f>(sd, sd, len, level); }
ZetStatus zetsThreshold_LTInv_64f(const Zet64f* s, Zet64f* d, int len, Zet64f level) { return ltInv(s, d, len, level); }
ZetStatus zetsThreshold_LTInv_64f_I(Zet64f* sd, int len, Zet64f level) { return ltInv<Zet64f>(sd, sd, len, level); }
