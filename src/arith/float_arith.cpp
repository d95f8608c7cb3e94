// Floating-point element-wise arithmetic and division on 32f, 64f, 32fc and
// 64fc vectors.
//
// One implementation per operation, templated on the element type; complex
// Add and Sub are the real forms at twice the length. The special constants
// (0 and 1 turning into a copy, a zeroing or an immediate return) go through
// the Copy and Zero implementations so that their statuses and limits apply.
#include <algorithm>
#include <cmath>
#include <type_traits>

#include "arith/float_ops.hpp"
#include "data/bytes.hpp"
#include "frame/checks.hpp"
#include "frame/chunk.hpp"
#include "frame/loops.hpp"
#include "frame/unaligned.hpp"

namespace zet::arith {
namespace {

template <class E> constexpr bool kComplex = std::is_same_v<E, Zet32fc> || std::is_same_v<E, Zet64fc>;
template <class E> struct RealOf { using type = E; };
template <> struct RealOf<Zet32fc> { using type = float; };
template <> struct RealOf<Zet64fc> { using type = double; };
template <class E> using Real = typename RealOf<E>::type;
template <class E> using Wide = typename loops::Lanes<E>::Wide;

template <class E> const Real<E>* parts(const E* p) { return reinterpret_cast<const Real<E>*>(p); }
template <class E> Real<E>* parts(E* p) { return reinterpret_cast<Real<E>*>(p); }

// The constant in every lane, or {re, im} in every pair of lanes.
inline __m256 wide(float v) { return _mm256_set1_ps(v); }
inline __m256d wide(double v) { return _mm256_set1_pd(v); }
inline __m256 wide(Zet32fc v) { return _mm256_setr_ps(v.re, v.im, v.re, v.im, v.re, v.im, v.re, v.im); }
inline __m256d wide(Zet64fc v) { return _mm256_setr_pd(v.re, v.im, v.re, v.im); }
template <class E> Wide<E> wideRe(E v) { return wide(static_cast<Real<E>>(v.re)); }
template <class E> Wide<E> wideIm(E v) { return wide(static_cast<Real<E>>(v.im)); }

// ---- shapes ------------------------------------------------------------------
template <class E, class Op>
ZetStatus run2(const E* a, const E* b, E* d, int len, Op op) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    loops::map(d, len, op, a, b);
    return zetStsOk;
}
template <class E, class Op>
ZetStatus run1(const E* a, E* d, int len, Op op) {
    if (auto st = checkArgs(len, a, d)) return st;
    loops::map(d, len, op, a);
    return zetStsOk;
}

// _L chunk drivers: plain(p + offset..., n) on each piece.
template <class E, class Plain, class... P>
ZetStatus overChunks(long long len, Plain plain, P*... p) {
    return chunked<sizeof(E)>(len, [&](long long off, int n) { return plain(p + off..., n); });
}

// ---- Add, Sub, Mul -------------------------------------------------------------
template <class E>
ZetStatus add(const E* a, const E* b, E* d, int len) {
    if constexpr (kComplex<E>) return forwardDoubled(len, [&](int n) { return add(parts(a), parts(b), parts(d), n); });
    else return run2(a, b, d, len, AddOp{});
}
template <class E>
ZetStatus sub(const E* a, const E* b, E* d, int len) {
    if constexpr (kComplex<E>) return forwardDoubled(len, [&](int n) { return sub(parts(a), parts(b), parts(d), n); });
    else return run2(a, b, d, len, SubOp{});
}
template <class E>
ZetStatus mul(const E* a, const E* b, E* d, int len) {
    if constexpr (kComplex<E>) return run2(a, b, d, len, CMulOp{});
    else return run2(a, b, d, len, MulOp{});
}

// ---- Abs, Sqr --------------------------------------------------------------------
template <class E> ZetStatus abs(const E* a, E* d, int len) { return run1(a, d, len, AbsOp{}); }
template <class E>
ZetStatus sqr(const E* a, E* d, int len) {
    if constexpr (kComplex<E>) return run1(a, d, len, CSqrOp{});
    else return run1(a, d, len, SqrOp{});
}

// ---- constants -------------------------------------------------------------------
// A copy for a constant that leaves the value as it is. The 64f AddC forms
// its byte count in 32 bits and calls the byte copy, so from 2^28 elements
// the count wraps: a size error if it wraps to 0 or below, a shorter copy
// otherwise.
template <class E>
ZetStatus copyFor(const E* s, E* d, int len, bool byteCountIn32Bits) {
    if (byteCountIn32Bits)
        return data::copy8u(s, d, static_cast<int>(static_cast<std::uint32_t>(len) * std::uint32_t{sizeof(E)}));
    return data::copyElems<sizeof(E)>(s, d, len);
}

// in place: s == d and the immediate returns apply instead of the copy.
template <bool InPlace, class E>
ZetStatus addC(const E* s, E val, E* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    if constexpr (!kComplex<E>) {
        if (val == 0) return InPlace ? zetStsOk : copyFor(s, d, len, std::is_same_v<E, double>);
    }
    loops::map(d, len, AddCOp<Wide<E>>{wide(val)}, s);
    return zetStsOk;
}
template <bool InPlace, class E>
ZetStatus subC(const E* s, E val, E* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    if constexpr (!kComplex<E>) {
        if (val == 0) return InPlace ? zetStsOk : copyFor(s, d, len, false);
    }
    loops::map(d, len, SubCOp<Wide<E>>{wide(val)}, s);
    return zetStsOk;
}
template <class E>
ZetStatus subCRev(const E* s, E val, E* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    loops::map(d, len, SubCRevOp<Wide<E>>{wide(val)}, s);
    return zetStsOk;
}

template <class E, class N>
void mulCKernel(const E* s, E val, E* d, N n) {
    if constexpr (kComplex<E>) loops::map(d, n, CMulCOp<Wide<E>>{wideRe(val), wideIm(val)}, s);
    else loops::map(d, n, MulCOp<Wide<E>>{wide(val)}, s);
}

// 1 copies (or returns in place); 0 zeroes through Zero, which gives +0 even
// for negative, infinite and NaN elements: not the same as multiplying.
template <bool InPlace, class E>
ZetStatus mulC(const E* s, E val, E* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    if constexpr (!kComplex<E>) {
        if (val == 1) return InPlace ? zetStsOk : copyFor(s, d, len, false);
        if (val == 0) return data::zeroElems<sizeof(E)>(d, len);
    }
    mulCKernel(s, val, d, len);
    return zetStsOk;
}

// The 64-bit MulC forms are kernels of their own with their own constants:
// 1 copies and 0 zeroes in blocks of 0x7FFFFFE0 bytes (32f) or 0x7FFFFFC0
// bytes (64f), one call if the length fits a plain chunk. After zeroing,
// 32f out of place and both in-place forms fall into the multiplying loop
// for the part the last block call covered, with the source still at its
// start: for lengths up to a chunk, 32f ends as val * src (so -0 for
// negative elements, NaN for infinities and NaNs), unlike the plain form.
template <class E>
struct LastBlock {
    long long offset;  // elements
    long long count;
};
template <class E, class Block>
LastBlock<E> inBlocks(long long len, Block block) {
    constexpr long long kBlock = 0x7FFFFFE0 / static_cast<long long>(sizeof(E)) / 8 * 8;  // 0x1FFFFFF8 or 0x0FFFFFF8
    if (len <= kChunkElems<sizeof(E)>) {
        block(0, len);
        return {0, len};
    }
    long long off = 0, n = 0;
    for (; off < len; off += n) {
        n = std::min(len - off, kBlock);
        block(off, n);
    }
    return {off - n, n};
}

template <bool InPlace, class E>
ZetStatus mulCL(const E* s, E val, E* d, long long len) {
    if (auto st = checkArgs(len, s, d)) return st;
    if constexpr (!kComplex<E>) {
        if (val == 1) {
            if (InPlace) return zetStsOk;
            inBlocks<E>(len, [&](long long off, long long n) {
                data::copy8u(s + off, d + off, static_cast<int>(n * static_cast<long long>(sizeof(E))));
            });
            return zetStsOk;
        }
        if (val == 0) {
            const LastBlock<E> last = inBlocks<E>(len, [&](long long off, long long n) {
                data::zero8u(d + off, static_cast<int>(n * static_cast<long long>(sizeof(E))));
            });
            if (!InPlace && std::is_same_v<E, double>) return zetStsOk;
            mulCKernel(InPlace ? d + last.offset : s, val, d + last.offset, last.count);
            return zetStsOk;
        }
    }
    mulCKernel(s, val, d, len);
    return zetStsOk;
}

// ---- multiply-accumulate -----------------------------------------------------

// Complex AddProduct streams three vectors: it peels to a 64-byte boundary of
// srcDst with full and masked vectors (the masks cover exactly the remaining
// elements, so no byte past the vectors is touched), runs 8 elements a round
// with prefetch 256 bytes ahead once the three streams pass 32 KiB, and ends
// with the masked step again.
template <class E>
struct Masked {
    using W = Wide<E>;
    static W load(const E* p, __m256i m) {
        if constexpr (std::is_same_v<E, Zet32fc>) return _mm256_maskload_ps(loops::re(p), m);
        else return _mm256_maskload_pd(loops::re(p), m);
    }
    static void store(E* p, __m256i m, W v) {
        if constexpr (std::is_same_v<E, Zet32fc>) _mm256_maskstore_ps(loops::re(p), m, v);
        else _mm256_maskstore_pd(loops::re(p), m, v);
    }
    // Lanes of the first k elements.
    static __m256i mask(long long k) {
        if constexpr (std::is_same_v<E, Zet32fc>)
            return _mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(2 * k)), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
        else return _mm256_cmpgt_epi64(_mm256_set1_epi64x(2 * k), _mm256_setr_epi64x(0, 1, 2, 3));
    }
};

template <class E>
void addProductComplex(const E* a, const E* b, E* d, long long n) {
    using L = loops::Lanes<E>;
    constexpr int W = L::kWide;
    const CAddProductOp op;
    auto part = [&](long long k) {  // k elements: full vectors, then one masked
        for (; k >= W; k -= W, a += W, b += W, d += W) L::store(d, op(L::loadWide(a), L::loadWide(b), L::loadWide(d)));
        if (k > 0) {
            const __m256i m = Masked<E>::mask(k);
            Masked<E>::store(d, m, op(Masked<E>::load(a, m), Masked<E>::load(b, m), Masked<E>::load(d, m)));
            a += k, b += k, d += k;
        }
    };
    const bool prefetch = n * 3 * static_cast<long long>(sizeof(E)) >= 32769;
    const long long peel = std::min<long long>(n, ((64 - (simd::addr(d) & 63)) & 63) / sizeof(E));
    part(peel);
    n -= peel;
    for (; n >= 8; n -= 8, a += 8, b += 8, d += 8) {
        if (prefetch) {
            constexpr int kAhead = 256 / sizeof(E);
            _mm_prefetch(reinterpret_cast<const char*>(a + kAhead), _MM_HINT_T0);
            _mm_prefetch(reinterpret_cast<const char*>(b + kAhead), _MM_HINT_T0);
            _mm_prefetch(reinterpret_cast<const char*>(d + kAhead), _MM_HINT_T0);
        }
        typename L::Wide r[8 / W];
        for (int i = 0; i < 8 / W; ++i) r[i] = op(L::loadWide(a + i * W), L::loadWide(b + i * W), L::loadWide(d + i * W));
        for (int i = 0; i < 8 / W; ++i) L::store(d + i * W, r[i]);
    }
    part(n);
}

template <class E>
ZetStatus addProduct(const E* a, const E* b, E* d, int len) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    if constexpr (kComplex<E>) addProductComplex(a, b, d, len);
    else loops::map(d, len, AddProductOp{}, a, b, d);
    return zetStsOk;
}
template <class E>
ZetStatus addProductC(const E* a, E val, E* d, int len) {
    if (auto st = checkArgs(len, a, d)) return st;
    if constexpr (kComplex<E>) loops::map(d, len, CAddProductCOp<Wide<E>>{wideRe(val), wideIm(val)}, a, d);
    else loops::map(d, len, AddProductCOp<Wide<E>>{wide(val)}, a, d);
    return zetStsOk;
}

// ---- real times complex: re = a b.re, im = a b.im -----------------------------
// Each real element is spread over the pair it scales.
ZetStatus mulRealComplex(const float* a, const Zet32fc* b, Zet32fc* d, int len) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    using L = loops::Lanes<Zet32fc>;
    long long n = len;
    for (; n >= 4; n -= 4, a += 4, b += 4, d += 4) {
        const __m128 x = _mm_loadu_ps(a);
        const __m256 spread = _mm256_set_m128(_mm_unpackhi_ps(x, x), _mm_unpacklo_ps(x, x));
        L::store(d, simd::mul(spread, L::loadWide(b)));
    }
    for (; n > 0; --n, ++a, ++b, ++d) L::storeOne(d, simd::mul(loops::Lanes<float>::loadOne(a), L::loadOne(b)));
    return zetStsOk;
}

// ---- division -------------------------------------------------------------------
// Vector division is the processor's correctly rounded division; a zero
// divisor gives the IEEE result (an infinity, or NaN for 0/0) and turns the
// status into zetStsDivByZeroWarn once every element is written.
template <class C>
C complexQuotient(C a, C b, bool& zero) {  // b / a
    if (a.re == 0 && a.im == 0) {
        zero = true;
        return {b.re / a.re, b.im / a.re};  // part by part over a zero: +-inf or NaN
    }
    if constexpr (std::is_same_v<C, Zet32fc>) {
        // In double, where neither |a|^2 nor the numerators can overflow or lose bits.
        const double ar = a.re, ai = a.im, br = b.re, bi = b.im, den = ar * ar + ai * ai;
        return {static_cast<float>((br * ar + bi * ai) / den), static_cast<float>((bi * ar - br * ai) / den)};
    } else {
        // Smith's ordering keeps the intermediate values in range.
        if (std::fabs(a.re) >= std::fabs(a.im)) {
            const double t = a.im / a.re, den = a.re + a.im * t;
            return {(b.re + b.im * t) / den, (b.im - b.re * t) / den};
        }
        const double t = a.re / a.im, den = a.re * t + a.im;
        return {(b.re * t + b.im) / den, (b.im * t - b.re) / den};
    }
}

template <class E>
ZetStatus divide(const E* a, const E* b, E* d, int len) {
    if (auto st = checkArgs(len, a, b, d)) return st;
    bool zero = false;
    if constexpr (kComplex<E>) {
        for (long long i = 0; i < len; ++i) st(d, i, complexQuotient(ld(a, i), ld(b, i), zero));
    } else {
        int lanes = 0;
        loops::map(d, len, [&lanes](auto x, auto y) { lanes |= zeroLanes(x); return simd::div(y, x); }, a, b);
        zero = lanes != 0;
    }
    return zero ? zetStsDivByZeroWarn : zetStsOk;
}

// val / src[i], with the same warning for zero elements.
template <bool, class E>
ZetStatus divCRev(const E* s, E val, E* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    int lanes = 0;
    const Wide<E> c = wide(val);
    loops::map(d, len, [&lanes, c](auto x) { lanes |= zeroLanes(x); return simd::div(fit<decltype(x)>(c), x); }, s);
    return lanes ? zetStsDivByZeroWarn : zetStsOk;
}

// Division by a constant multiplies by its reciprocal, rounded once in the
// element's precision, through MulC: the result is not the correctly rounded
// quotient, and MulC's special constants apply to the reciprocal.
template <class E> E reciprocal(E v) {
    if constexpr (kComplex<E>) {
        bool unused = false;
        return complexQuotient(v, E{1, 0}, unused);
    } else {
        return E(1) / v;
    }
}
template <bool InPlace, class E>
ZetStatus divC(const E* s, E val, E* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    if constexpr (kComplex<E>) {
        if (val.re == 0 && val.im == 0) return zetStsDivByZeroErr;
    } else {
        if (val == 0) return zetStsDivByZeroErr;
    }
    return mulC<InPlace>(s, reciprocal(val), d, len);
}

}  // namespace
}  // namespace zet::arith

using namespace zet::arith;

// ---- exports -------------------------------------------------------------------
#define ZET_TWO_VECTORS(OP, T, IMPL)                                                                                \
    ZetStatus zets##OP##_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int len) { return IMPL(a, b, d, len); } \
    ZetStatus zets##OP##_##T##_I(const Zet##T* a, Zet##T* sd, int len) { return IMPL(a, sd, sd, len); }           \
    ZetStatus zets##OP##_##T##_L(const Zet##T* a, const Zet##T* b, Zet##T* d, long long len) {                   \
        return overChunks<Zet##T>(len, IMPL<Zet##T>, a, b, d);                                                     \
    }                                                                                                              \
    ZetStatus zets##OP##_##T##_I_L(const Zet##T* a, Zet##T* sd, long long len) {                                  \
        return overChunks<Zet##T>(len, [](const Zet##T* x, Zet##T* y, int n) { return IMPL(x, y, y, n); }, a, sd); \
    }

#define ZET_ONE_VECTOR(OP, T, IMPL)                                                                            \
    ZetStatus zets##OP##_##T(const Zet##T* a, Zet##T* d, int len) { return IMPL(a, d, len); }                \
    ZetStatus zets##OP##_##T##_I(Zet##T* sd, int len) { return IMPL<Zet##T>(sd, sd, len); }                   \
    ZetStatus zets##OP##_##T##_L(const Zet##T* a, Zet##T* d, long long len) {                                 \
        return overChunks<Zet##T>(len, IMPL<Zet##T>, a, d);                                                   \
    }                                                                                                         \
    ZetStatus zets##OP##_##T##_I_L(Zet##T* sd, long long len) {                                               \
        return overChunks<Zet##T>(len, [](Zet##T* y, int n) { return IMPL<Zet##T>(y, y, n); }, sd);           \
    }

// IMPL<InPlace, E>(src, val, dst, len)
#define ZET_CONSTANT(OP, T, IMPL)                                                                                    \
    ZetStatus zets##OP##_##T(const Zet##T* s, Zet##T v, Zet##T* d, int len) { return IMPL<false>(s, v, d, len); }   \
    ZetStatus zets##OP##_##T##_I(Zet##T v, Zet##T* sd, int len) { return IMPL<true>(sd, v, sd, len); }               \
    ZetStatus zets##OP##_##T##_L(const Zet##T* s, Zet##T v, Zet##T* d, long long len) {                             \
        return overChunks<Zet##T>(len, [v](const Zet##T* x, Zet##T* y, int n) { return IMPL<false>(x, v, y, n); }, s, d); \
    }                                                                                                                \
    ZetStatus zets##OP##_##T##_I_L(Zet##T v, Zet##T* sd, long long len) {                                            \
        return overChunks<Zet##T>(len, [v](Zet##T* y, int n) { return IMPL<true>(y, v, y, n); }, sd);                \
    }

#define ZET_MULC(T)                                                                                                \
    ZetStatus zetsMulC_##T(const Zet##T* s, Zet##T v, Zet##T* d, int len) { return mulC<false>(s, v, d, len); }   \
    ZetStatus zetsMulC_##T##_I(Zet##T v, Zet##T* sd, int len) { return mulC<true>(sd, v, sd, len); }               \
    ZetStatus zetsMulC_##T##_L(const Zet##T* s, Zet##T v, Zet##T* d, long long len) { return mulCL<false>(s, v, d, len); } \
    ZetStatus zetsMulC_##T##_I_L(Zet##T v, Zet##T* sd, long long len) { return mulCL<true>(sd, v, sd, len); }

template <bool, class E> ZetStatus subCRevForm(const E* s, E v, E* d, int len) { return subCRev(s, v, d, len); }

#define ZET_FLOAT_FAMILY(T)                 \
    ZET_TWO_VECTORS(Add, T, add)            \
    ZET_TWO_VECTORS(Sub, T, sub)            \
    ZET_TWO_VECTORS(Mul, T, mul)            \
    ZET_ONE_VECTOR(Sqr, T, sqr)             \
    ZET_CONSTANT(AddC, T, addC)             \
    ZET_CONSTANT(SubC, T, subC)             \
    ZET_CONSTANT(SubCRev, T, subCRevForm)   \
    ZET_MULC(T)                             \
    ZetStatus zetsAddProduct_##T(const Zet##T* a, const Zet##T* b, Zet##T* sd, int len) { return addProduct(a, b, sd, len); } \
    ZetStatus zetsAddProductC_##T(const Zet##T* a, Zet##T v, Zet##T* sd, int len) { return addProductC(a, v, sd, len); }

#define ZET_DIVISION(T)          \
    ZET_TWO_VECTORS(Div, T, divide) \
    ZET_CONSTANT(DivC, T, divC)

ZET_FLOAT_FAMILY(32f)
ZET_FLOAT_FAMILY(64f)
ZET_FLOAT_FAMILY(32fc)
ZET_FLOAT_FAMILY(64fc)
ZET_DIVISION(32f)
ZET_DIVISION(64f)
ZET_DIVISION(32fc)
ZET_DIVISION(64fc)
ZET_CONSTANT(DivCRev, 32f, divCRev)
ZET_ONE_VECTOR(Abs, 32f, abs)
ZET_ONE_VECTOR(Abs, 64f, abs)

ZetStatus zetsMul_32f32fc(const Zet32f* a, const Zet32fc* b, Zet32fc* d, int len) { return mulRealComplex(a, b, d, len); }
ZetStatus zetsMul_32f32fc_I(const Zet32f* a, Zet32fc* sd, int len) { return mulRealComplex(a, sd, sd, len); }
