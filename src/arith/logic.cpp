// Bitwise operations on unsigned vectors and shifts by a constant count.
//
// What is particular here is the handling of constants and counts: AndC with
// 0 accepts a null source and only clears the destination; Not is XorC with
// all ones (and has its checks); a shift count of 0 is a copy, a count at or
// above the element width clears (or, for arithmetic right shifts, fills
// with the sign), and a negative count is reported only after the pointers
// and the length.
#include <type_traits>

#include "data/bytes.hpp"
#include "frame/checks.hpp"
#include "frame/loops.hpp"

namespace zet::logic {
namespace {

// ---- bitwise operations on raw bits, both register widths ------------------
inline __m256i bitAnd(__m256i a, __m256i b) { return _mm256_and_si256(a, b); }
inline __m128i bitAnd(__m128i a, __m128i b) { return _mm_and_si128(a, b); }
inline __m256i bitOr(__m256i a, __m256i b) { return _mm256_or_si256(a, b); }
inline __m128i bitOr(__m128i a, __m128i b) { return _mm_or_si128(a, b); }
inline __m256i bitXor(__m256i a, __m256i b) { return _mm256_xor_si256(a, b); }
inline __m128i bitXor(__m128i a, __m128i b) { return _mm_xor_si128(a, b); }
template <class V> V narrow(__m256i c) {
    if constexpr (std::is_same_v<V, __m256i>) return c;
    else return _mm256_castsi256_si128(c);
}

struct And { template <class V> V operator()(V a, V b) const { return bitAnd(a, b); } };
struct Or { template <class V> V operator()(V a, V b) const { return bitOr(a, b); } };
struct Xor { template <class V> V operator()(V a, V b) const { return bitXor(a, b); } };
template <class Op> struct WithConstant {
    __m256i c;
    template <class V> V operator()(V a) const { return Op{}(a, narrow<V>(c)); }
};

template <class T> __m256i broadcast(T v) {
    if constexpr (sizeof(T) == 1) return _mm256_set1_epi8(static_cast<char>(v));
    else if constexpr (sizeof(T) == 2) return _mm256_set1_epi16(static_cast<short>(v));
    else return _mm256_set1_epi32(static_cast<int>(v));
}

template <class Op, class T>
ZetStatus twoVectors(const T* a, const T* b, T* d, int len) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    loops::map(d, len, Op{}, a, b);
    return zetStsOk;
}

template <class Op, class T>
ZetStatus withConstant(const T* a, T val, T* d, int len) {
    if (auto st = checkArgs(len, a, d)) return st;
    loops::map(d, len, WithConstant<Op>{broadcast(val)}, a);
    return zetStsOk;
}

// AndC tests the constant first: with 0 the result is zero whatever the
// source, so only dst and len are checked (a null src is accepted) and dst is
// cleared. With all ones the source is copied, in place nothing is done.
template <bool InPlace, class T>
ZetStatus andC(const T* a, T val, T* d, int len) {
    if (val == 0) return data::zeroElems<sizeof(T)>(d, len);
    if (val == static_cast<T>(~T(0))) {
        if (auto st = checkArgs(len, a, d)) return st;
        return InPlace ? zetStsOk : data::copyElems<sizeof(T)>(a, d, len);
    }
    return withConstant<And>(a, val, d, len);
}

// OrC and XorC with 0 leave the source as it is: a copy, or nothing in place.
template <bool InPlace, class Op, class T>
ZetStatus orXorC(const T* a, T val, T* d, int len) {
    if (auto st = checkArgs(len, a, d)) return st;
    if (val == 0) return InPlace ? zetStsOk : data::copyElems<sizeof(T)>(a, d, len);
    return withConstant<Op>(a, val, d, len);
}

// Not is XorC with all ones, and so has its checks.
template <bool InPlace, class T>
ZetStatus bitNot(const T* a, T* d, int len) {
    return orXorC<InPlace, Xor>(a, static_cast<T>(~T(0)), d, len);
}

// ---- shifts ---------------------------------------------------------------------
enum class Shift { Left, RightLogical, RightArithmetic };

#define ZL_SHIFT_BY_REGISTER(name, op)                                                  \
    inline __m256i name(__m256i a, __m128i c) { return _mm256_##op(a, c); } \
    inline __m128i name(__m128i a, __m128i c) { return _mm_##op(a, c); }
ZL_SHIFT_BY_REGISTER(sll16, sll_epi16)
ZL_SHIFT_BY_REGISTER(srl16, srl_epi16)
ZL_SHIFT_BY_REGISTER(sra16, sra_epi16)
ZL_SHIFT_BY_REGISTER(sll32, sll_epi32)
ZL_SHIFT_BY_REGISTER(srl32, srl_epi32)
ZL_SHIFT_BY_REGISTER(sra32, sra_epi32)
#undef ZL_SHIFT_BY_REGISTER

template <Shift S, class T>
struct ShiftBy {
    __m128i count;
    int k;
    template <class V> V operator()(V a) const {
        if constexpr (sizeof(T) == 1) {
            // No byte shifts: shift 16-bit lanes and drop the bits that crossed a byte.
            const V shifted = S == Shift::Left ? sll16(a, count) : srl16(a, count);
            const int keep = S == Shift::Left ? (0xFF << k) & 0xFF : 0xFF >> k;
            return bitAnd(shifted, narrow<V>(_mm256_set1_epi8(static_cast<char>(keep))));
        } else if constexpr (sizeof(T) == 2) {
            return S == Shift::Left ? sll16(a, count) : S == Shift::RightLogical ? srl16(a, count) : sra16(a, count);
        } else {
            return S == Shift::Left ? sll32(a, count) : S == Shift::RightLogical ? srl32(a, count) : sra32(a, count);
        }
    }
};

template <Shift S, class T>
ZetStatus shiftKernel(const T* a, T* d, int len, int count) {
    loops::map(d, len, ShiftBy<S, T>{_mm_cvtsi32_si128(count), count}, a);
    return zetStsOk;
}

template <Shift S, bool InPlace, class T>
ZetStatus shiftC(const T* a, int val, T* d, int len) {
    constexpr int kWidth = 8 * sizeof(T);
    if (val == 0) {
        if (InPlace) return checkArgs(len, d);
        return data::copyElems<sizeof(T)>(a, d, len);
    }
    if (val >= kWidth) {
        if constexpr (S == Shift::RightArithmetic) {
            // Every element becomes its sign: 0 or -1.
            if (auto st = checkArgs(len, a, d)) return st;
            return shiftKernel<S>(a, d, len, kWidth - 1);
        } else {
            if (a == nullptr) return zetStsNullPtrErr;
            return data::zeroElems<sizeof(T)>(d, len);
        }
    }
    if (auto st = checkArgs(len, a, d)) return st;
    if (val < 0) return zetStsShiftErr;
    return shiftKernel<S>(a, d, len, val);
}

}  // namespace
}  // namespace zet::logic

using namespace zet::logic;

#define ZL_BITWISE(T)                                                                                           \
    ZetStatus zetsAnd_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int len) { return twoVectors<And>(a, b, d, len); } \
    ZetStatus zetsAnd_##T##_I(const Zet##T* a, Zet##T* sd, int len) { return twoVectors<And>(a, static_cast<const Zet##T*>(sd), sd, len); } \
    ZetStatus zetsOr_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int len) { return twoVectors<Or>(a, b, d, len); } \
    ZetStatus zetsOr_##T##_I(const Zet##T* a, Zet##T* sd, int len) { return twoVectors<Or>(a, static_cast<const Zet##T*>(sd), sd, len); } \
    ZetStatus zetsXor_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int len) { return twoVectors<Xor>(a, b, d, len); } \
    ZetStatus zetsXor_##T##_I(const Zet##T* a, Zet##T* sd, int len) { return twoVectors<Xor>(a, static_cast<const Zet##T*>(sd), sd, len); } \
    ZetStatus zetsAndC_##T(const Zet##T* a, Zet##T v, Zet##T* d, int len) { return andC<false>(a, v, d, len); } \
    ZetStatus zetsAndC_##T##_I(Zet##T v, Zet##T* sd, int len) { return andC<true>(static_cast<const Zet##T*>(sd), v, sd, len); } \
    ZetStatus zetsOrC_##T(const Zet##T* a, Zet##T v, Zet##T* d, int len) { return orXorC<false, Or>(a, v, d, len); } \
    ZetStatus zetsOrC_##T##_I(Zet##T v, Zet##T* sd, int len) { return orXorC<true, Or>(static_cast<const Zet##T*>(sd), v, sd, len); } \
    ZetStatus zetsXorC_##T(const Zet##T* a, Zet##T v, Zet##T* d, int len) { return orXorC<false, Xor>(a, v, d, len); } \
    ZetStatus zetsXorC_##T##_I(Zet##T v, Zet##T* sd, int len) { return orXorC<true, Xor>(static_cast<const Zet##T*>(sd), v, sd, len); } \
    ZetStatus zetsNot_##T(const Zet##T* a, Zet##T* d, int len) { return bitNot<false>(a, d, len); }          \
    ZetStatus zetsNot_##T##_I(Zet##T* sd, int len) { return bitNot<true>(static_cast<const Zet##T*>(sd), sd, len); }

#define ZL_SHIFT(OP, T, KIND)                                                                                    \
    ZetStatus zets##OP##_##T(const Zet##T* a, int v, Zet##T* d, int len) { return shiftC<KIND, false>(a, v, d, len); } \
    ZetStatus zets##OP##_##T##_I(int v, Zet##T* sd, int len) { return shiftC<KIND, true>(static_cast<const Zet##T*>(sd), v, sd, len); }

ZL_BITWISE(8u)
ZL_BITWISE(16u)
ZL_BITWISE(32u)
ZL_SHIFT(LShiftC, 8u, Shift::Left)
ZL_SHIFT(LShiftC, 16u, Shift::Left)
ZL_SHIFT(LShiftC, 32s, Shift::Left)
ZL_SHIFT(RShiftC, 8u, Shift::RightLogical)
ZL_SHIFT(RShiftC, 16u, Shift::RightLogical)
ZL_SHIFT(RShiftC, 16s, Shift::RightArithmetic)
ZL_SHIFT(RShiftC, 32s, Shift::RightArithmetic)

// A left shift is the same on the bits of a signed vector.
ZetStatus zetsLShiftC_16s(const Zet16s* a, int v, Zet16s* d, int len) {
    return shiftC<Shift::Left, false>(reinterpret_cast<const Zet16u*>(a), v, reinterpret_cast<Zet16u*>(d), len);
}
ZetStatus zetsLShiftC_16s_I(int v, Zet16s* sd, int len) {
    return shiftC<Shift::Left, true>(reinterpret_cast<const Zet16u*>(sd), v, reinterpret_cast<Zet16u*>(sd), len);
}
