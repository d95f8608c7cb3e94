// Reordering on raw element bits: reversal, conjugation (a sign flip, or a
// saturating negation for integer pairs), byte swaps, NaN replacement, and
// bit-string copies in either bit order.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "data/elem_loops.hpp"
#include "frame/checks.hpp"
#include "zetsp.h"

namespace zet::data {
namespace {

using elems::u8;

template <class T> const u8* bytes(const T* p) { return reinterpret_cast<const u8*>(p); }
template <class T> u8* bytes(T* p) { return reinterpret_cast<u8*>(p); }

// ---- reversal ---------------------------------------------------------------

template <std::size_t S, class Len, class Op = elems::Identity>
ZetStatus flip(const void* src, void* dst, Len len, Op op = {}) {
    if (auto s = checkArgs(len, src, dst)) return s;
    elems::reverse<S>(src, dst, static_cast<std::size_t>(len), op);
    return zetStsOk;
}

// ---- conjugation ------------------------------------------------------------

// Floating pairs: the sign bit of the imaginary part flipped, so NaNs and
// zeros keep their payloads and -0 becomes +0 exactly.
struct Conj32fc {
    __m256i operator()(__m256i v) const { return _mm256_xor_si256(v, _mm256_set1_epi64x(INT64_MIN)); }
    __m128i operator()(__m128i v) const { return _mm_xor_si128(v, _mm_set1_epi64x(INT64_MIN)); }
};
struct Conj64fc {
    __m256i operator()(__m256i v) const { return _mm256_xor_si256(v, _mm256_set_epi64x(INT64_MIN, 0, INT64_MIN, 0)); }
    __m128i operator()(__m128i v) const { return _mm_xor_si128(v, _mm_set_epi64x(INT64_MIN, 0)); }
};
// Integer pairs: 0 - im with saturation, so -32768 becomes 32767.
struct Conj16sc {
    __m256i operator()(__m256i v) const { return _mm256_blend_epi16(v, _mm256_subs_epi16(_mm256_setzero_si256(), v), 0xAA); }
    __m128i operator()(__m128i v) const { return _mm_blend_epi16(v, _mm_subs_epi16(_mm_setzero_si128(), v), 0xAA); }
};

template <std::size_t S, class Op>
ZetStatus conj(const void* src, void* dst, int len) {
    if (auto s = checkArgs(len, src, dst)) return s;
    elems::map<S>(static_cast<const u8*>(src), static_cast<u8*>(dst), static_cast<std::size_t>(len), Op{});
    return zetStsOk;
}

// ---- byte order -------------------------------------------------------------

template <std::size_t S>
struct SwapOp {
    static __m128i pattern() {
        if constexpr (S == 2) return _mm_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14);
        else if constexpr (S == 4) return _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12);
        else return _mm_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8);
    }
    __m256i operator()(__m256i v) const { return _mm256_shuffle_epi8(v, _mm256_broadcastsi128_si256(pattern())); }
    __m128i operator()(__m128i v) const { return _mm_shuffle_epi8(v, pattern()); }
};

template <std::size_t S>
ZetStatus swapBytes(const void* src, void* dst, int len) {
    if (auto s = checkArgs(len, src, dst)) return s;
    elems::map<S>(static_cast<const u8*>(src), static_cast<u8*>(dst), static_cast<std::size_t>(len), SwapOp<S>{});
    return zetStsOk;
}

// Packed 3-byte elements: eight per step, as two 12-byte groups placed in
// the two halves of a register. The second half is stored 12 bytes after the
// first and carries 4 source bytes unchanged past the group; the next step
// (or the scalar tail) rewrites them, so only whole steps that stay inside
// the vectors run wide.
ZetStatus swapBytes24(const Zet8u* src, Zet8u* dst, int len) {
    if (auto s = checkArgs(len, src, dst)) return s;
    const __m256i order = _mm256_broadcastsi128_si256(_mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 12, 13, 14, 15));
    std::size_t n = static_cast<std::size_t>(len);
    for (; n >= 10; n -= 8, src += 24, dst += 24) {  // 28 bytes readable and writable
        const __m256i v = _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(src + 12), reinterpret_cast<const __m128i*>(src));
        const __m256i w = _mm256_shuffle_epi8(v, order);
        // Low half first: the high half overwrites its 4 unswapped bytes.
        elems::st16(dst, _mm256_castsi256_si128(w));
        elems::st16(dst + 12, _mm256_extracti128_si256(w, 1));
    }
    for (; n > 0; --n, src += 3, dst += 3) {
        const Zet8u a = src[0], b = src[1], c = src[2];
        dst[0] = c, dst[1] = b, dst[2] = a;
    }
    return zetStsOk;
}

// ---- NaN replacement -----------------------------------------------------------

template <class T>
struct ReplaceNan {
    T value;
    __m256i operator()(__m256i v) const {
        if constexpr (sizeof(T) == 4) {
            const __m256 x = _mm256_castsi256_ps(v);
            return _mm256_castps_si256(_mm256_blendv_ps(x, _mm256_set1_ps(value), _mm256_cmp_ps(x, x, _CMP_UNORD_Q)));
        } else {
            const __m256d x = _mm256_castsi256_pd(v);
            return _mm256_castpd_si256(_mm256_blendv_pd(x, _mm256_set1_pd(value), _mm256_cmp_pd(x, x, _CMP_UNORD_Q)));
        }
    }
    __m128i operator()(__m128i v) const {
        if constexpr (sizeof(T) == 4) {
            const __m128 x = _mm_castsi128_ps(v);
            return _mm_castps_si128(_mm_blendv_ps(x, _mm_set1_ps(value), _mm_cmp_ps(x, x, _CMP_UNORD_Q)));
        } else {
            const __m128d x = _mm_castsi128_pd(v);
            return _mm_castpd_si128(_mm_blendv_pd(x, _mm_set1_pd(value), _mm_cmp_pd(x, x, _CMP_UNORD_Q)));
        }
    }
};

template <class T>
ZetStatus replaceNan(T* srcDst, int len, T value) {
    if (auto s = checkArgs(len, srcDst)) return s;
    elems::map<sizeof(T)>(bytes(srcDst), bytes(srcDst), static_cast<std::size_t>(len), ReplaceNan<T>{value});
    return zetStsOk;
}

// ---- bit strings ---------------------------------------------------------------
// Bit i of a string lives in byte i / 8; in the big-endian order it is the
// bit of weight 2^(7 - i % 8), in the little-endian order 2^(i % 8). A copy
// writes destination bytes whole, taking each from two source bytes, and
// keeps the destination bits outside the string.

template <bool BigEndian>
struct BitOrder {
    // 8 string bits starting r bits into byte pair (a, b).
    static unsigned take8(unsigned a, unsigned b, unsigned r) {
        if constexpr (BigEndian) return (((a << 8) | b) << r >> 8) & 0xFFu;
        else return ((a | (b << 8)) >> r) & 0xFFu;
    }
    // 64 string bits starting r bits into 8 bytes at p, followed by byte b.
    static std::uint64_t take64(const u8* p, unsigned b, unsigned r) {
        std::uint64_t w;
        std::memcpy(&w, p, 8);
        if constexpr (BigEndian) {
            w = __builtin_bswap64(w);
            return r ? (w << r) | (std::uint64_t{b} >> (8 - r)) : w;
        } else {
            return r ? (w >> r) | (std::uint64_t{b} << (64 - r)) : w;
        }
    }
    static void put64(u8* p, std::uint64_t w) {
        if constexpr (BigEndian) w = __builtin_bswap64(w);
        std::memcpy(p, &w, 8);
    }
    // Mask of the bits of byte j that hold string positions [from, to).
    static unsigned mask(long long j, long long from, long long to) {
        unsigned m = 0;
        for (int b = 0; b < 8; ++b) {
            const long long pos = 8 * j + b;
            if (pos >= from && pos < to) m |= BigEndian ? 0x80u >> b : 1u << b;
        }
        return m;
    }
};

template <bool BigEndian>
ZetStatus copyBits(const Zet8u* src, int srcBitOffset, Zet8u* dst, int dstBitOffset, int len) {
    if (auto s = checkArgs(len, src, dst)) return s;
    if (srcBitOffset < 0 || dstBitOffset < 0) return zetStsBadArgErr;
    using O = BitOrder<BigEndian>;
    src += srcBitOffset / 8, dst += dstBitOffset / 8;
    const long long so = srcBitOffset % 8, doff = dstBitOffset % 8;
    const long long srcBytes = (so + len + 7) / 8, dstBytes = (doff + len + 7) / 8;
    const long long delta = so - doff;  // source position of destination bit 0
    const long long kd = delta >> 3;
    const unsigned r = static_cast<unsigned>(delta & 7);
    auto at = [&](long long k) -> unsigned { return k >= 0 && k < srcBytes ? src[k] : 0u; };
    auto byteAt = [&](long long j) {
        const unsigned m = O::mask(j, doff, doff + len);
        const unsigned v = O::take8(at(j + kd), at(j + kd + 1), r);
        dst[j] = static_cast<Zet8u>((dst[j] & ~m) | (v & m));
    };
    // Whole destination bytes from j0 on, read in 8-byte words while the 9
    // source bytes of a word are inside the source.
    const long long fullEnd = (doff + len) / 8;
    long long j = 0;
    const long long j0 = std::max(doff > 0 ? 1LL : 0LL, -kd);
    for (; j < j0 && j < dstBytes; ++j) byteAt(j);
    for (; j + 8 <= fullEnd && j + kd + 9 <= srcBytes; j += 8) O::put64(dst + j, O::take64(src + j + kd, src[j + kd + 8], r));
    for (; j < dstBytes; ++j) byteAt(j);
    return zetStsOk;
}

}  // namespace
}  // namespace zet::data

using namespace zet::data;

extern "C" {

ZetStatus zetsFlip_8u(const Zet8u* s, Zet8u* d, int len) { return flip<1>(s, d, len); }
ZetStatus zetsFlip_8u_I(Zet8u* sd, int len) { return flip<1>(sd, sd, len); }
ZetStatus zetsFlip_16u(const Zet16u* s, Zet16u* d, int len) { return flip<2>(s, d, len); }
ZetStatus zetsFlip_16u_I(Zet16u* sd, int len) { return flip<2>(sd, sd, len); }
ZetStatus zetsFlip_32f(const Zet32f* s, Zet32f* d, int len) { return flip<4>(s, d, len); }
ZetStatus zetsFlip_32f_I(Zet32f* sd, int len) { return flip<4>(sd, sd, len); }
ZetStatus zetsFlip_64f(const Zet64f* s, Zet64f* d, int len) { return flip<8>(s, d, len); }
ZetStatus zetsFlip_64f_I(Zet64f* sd, int len) { return flip<8>(sd, sd, len); }
ZetStatus zetsFlip_32fc(const Zet32fc* s, Zet32fc* d, int len) { return flip<8>(s, d, len); }
ZetStatus zetsFlip_32fc_I(Zet32fc* sd, int len) { return flip<8>(sd, sd, len); }
ZetStatus zetsFlip_64fc(const Zet64fc* s, Zet64fc* d, int len) { return flip<16>(s, d, len); }
ZetStatus zetsFlip_64fc_I(Zet64fc* sd, int len) { return flip<16>(sd, sd, len); }
ZetStatus zetsFlip_32f_L(const Zet32f* s, Zet32f* d, long long len) { return flip<4>(s, d, len); }
ZetStatus zetsFlip_32f_I_L(Zet32f* sd, long long len) { return flip<4>(sd, sd, len); }
ZetStatus zetsFlip_64f_L(const Zet64f* s, Zet64f* d, long long len) { return flip<8>(s, d, len); }
ZetStatus zetsFlip_64f_I_L(Zet64f* sd, long long len) { return flip<8>(sd, sd, len); }
ZetStatus zetsFlip_32fc_L(const Zet32fc* s, Zet32fc* d, long long len) { return flip<8>(s, d, len); }
ZetStatus zetsFlip_32fc_I_L(Zet32fc* sd, long long len) { return flip<8>(sd, sd, len); }
ZetStatus zetsFlip_64fc_L(const Zet64fc* s, Zet64fc* d, long long len) { return flip<16>(s, d, len); }
ZetStatus zetsFlip_64fc_I_L(Zet64fc* sd, long long len) { return flip<16>(sd, sd, len); }

ZetStatus zetsConj_16sc(const Zet16sc* s, Zet16sc* d, int len) { return conj<4, Conj16sc>(s, d, len); }
ZetStatus zetsConj_16sc_I(Zet16sc* sd, int len) { return conj<4, Conj16sc>(sd, sd, len); }
ZetStatus zetsConj_32fc(const Zet32fc* s, Zet32fc* d, int len) { return conj<8, Conj32fc>(s, d, len); }
ZetStatus zetsConj_32fc_I(Zet32fc* sd, int len) { return conj<8, Conj32fc>(sd, sd, len); }
ZetStatus zetsConj_64fc(const Zet64fc* s, Zet64fc* d, int len) { return conj<16, Conj64fc>(s, d, len); }
ZetStatus zetsConj_64fc_I(Zet64fc* sd, int len) { return conj<16, Conj64fc>(sd, sd, len); }
ZetStatus zetsConjFlip_16sc(const Zet16sc* s, Zet16sc* d, int len) { return flip<4>(s, d, len, Conj16sc{}); }
ZetStatus zetsConjFlip_32fc(const Zet32fc* s, Zet32fc* d, int len) { return flip<8>(s, d, len, Conj32fc{}); }
ZetStatus zetsConjFlip_64fc(const Zet64fc* s, Zet64fc* d, int len) { return flip<16>(s, d, len, Conj64fc{}); }

ZetStatus zetsSwapBytes_16u(const Zet16u* s, Zet16u* d, int len) { return swapBytes<2>(s, d, len); }
ZetStatus zetsSwapBytes_16u_I(Zet16u* sd, int len) { return swapBytes<2>(sd, sd, len); }
ZetStatus zetsSwapBytes_24u(const Zet8u* s, Zet8u* d, int len) { return swapBytes24(s, d, len); }
ZetStatus zetsSwapBytes_32u(const Zet32u* s, Zet32u* d, int len) { return swapBytes<4>(s, d, len); }
ZetStatus zetsSwapBytes_32u_I(Zet32u* sd, int len) { return swapBytes<4>(sd, sd, len); }
ZetStatus zetsSwapBytes_64u(const Zet64u* s, Zet64u* d, int len) { return swapBytes<8>(s, d, len); }
ZetStatus zetsSwapBytes_64u_I(Zet64u* sd, int len) { return swapBytes<8>(sd, sd, len); }

ZetStatus zetsReplaceNAN_32f_I(Zet32f* sd, int len, Zet32f value) { return replaceNan(sd, len, value); }
ZetStatus zetsReplaceNAN_64f_I(Zet64f* sd, int len, Zet64f value) { return replaceNan(sd, len, value); }

ZetStatus zetsCopyBE_1u(const Zet8u* s, int so, Zet8u* d, int dof, int len) { return copyBits<true>(s, so, d, dof, len); }
ZetStatus zetsCopyLE_1u(const Zet8u* s, int so, Zet8u* d, int dof, int len) { return copyBits<false>(s, so, d, dof, len); }

}  // extern "C"
