// Spectrum layouts of real transforms: the expansion of a CCS, Pack or Perm
// spectrum into all of its complex values (Conj), and products of two spectra
// held in Pack or Perm layout (Mul).
//
// One template per operation over float and double. The layouts differ only
// in where the pairs start and where the lone reals sit:
//   CCS   pairs 0 .. len/2 at reals 0, 2, 4, ...
//   Pack  R0 alone, pair k at reals 2k - 1, 2k; for even len R(len/2) last
//   Perm  even len: R0, R(len/2), then pair k at reals 2k, 2k + 1;
//         odd len: as Pack
// so pairs 1 .. (len - 1)/2 always exist and start at real 2 (CCS, even
// Perm) or real 1 (Pack, odd Perm).
#include "arith/float_ops.hpp"
#include "data/bytes.hpp"
#include "frame/checks.hpp"
#include "frame/loops.hpp"
#include "frame/unaligned.hpp"
#include "transform/real_fft.hpp"

namespace zet::spectrum {
namespace {

using namespace zet::simd;

enum class Layout { CCS, Pack, Perm };

// The complex element type of each precision; wide registers of
// interleaved pairs come from the real transform's layer.
template <class T> struct Pairs;
template <> struct Pairs<float> { using C = Zet32fc; };
template <> struct Pairs<double> { using C = Zet64fc; };
template <class T> using Wide = fft::CIVec<T>;

template <class T> typename Pairs<T>::C* cplx(T* p) { return reinterpret_cast<typename Pairs<T>::C*>(p); }
template <class T> const typename Pairs<T>::C* cplx(const T* p) { return reinterpret_cast<const typename Pairs<T>::C*>(p); }

// Conjugation flips the sign bit of the imaginary part, NaNs and zeros included.
inline __m256 conj(__m256 v) { return Wide<float>::conj(v); }
inline __m128 conj(__m128 v) { return _mm_xor_ps(v, _mm_setr_ps(0.f, -0.f, 0.f, -0.f)); }
inline __m256d conj(__m256d v) { return Wide<double>::conj(v); }
inline __m128d conj(__m128d v) { return _mm_xor_pd(v, _mm_setr_pd(0., -0.)); }

// ---- Conj ----------------------------------------------------------------------

// Real index of pair 1 in the packed input.
template <Layout F> long long firstPair(long long len) {
    if constexpr (F == Layout::CCS) return 2;
    else if constexpr (F == Layout::Pack) return 1;
    else return (len & 1) ? 1 : 2;
}

// dst[len - k] = conj(pair k) for k = 1..m, with pair 1 at `pairs` and
// dst[len - 1] at `last`: runs of pairs are read forwards and written
// backwards, reversed within the register.
template <class T>
void mirror(const T* pairs, T* last, long long m) {
    using P = Wide<T>;
    using L = loops::Lanes<typename Pairs<T>::C>;
    constexpr int W = P::C;
    long long j = 0;
    for (; j + W <= m; j += W) P::store(last - 2 * (j + W - 1), conj(P::reverse(P::load(pairs + 2 * j))));
    for (; j < m; ++j) L::storeOne(cplx(last - 2 * j), conj(L::loadOne(cplx(pairs + 2 * j))));
}

// The vectors may sit at any byte address: single reals go through ld and st.
template <class T>
void setPair(T* d, T re, T im) {
    st(d, 0, re);
    st(d, 1, im);
}

// Expansion of a packed spectrum s of `len` samples into d (len complex
// values as reals). s may be d: every step reads only reals that no earlier
// step wrote. The mirrored half lies above the packed input; the middle value
// of Pack and Perm is placed before the pairs move over its source; the pairs
// of Pack move up by one real, back to front; dst[0] comes last, after the
// move read the real it overwrites.
template <Layout F, class T>
void expand(const T* s, T* d, long long len) {
    const long long m = (len - 1) / 2;  // pairs 1..m and their mirrors
    const T* pair1 = s + firstPair<F>(len);
    mirror(pair1, d + 2 * (len - 1), m);
    if constexpr (F == Layout::CCS) {
        // Pairs 0..len/2 are copied as they are, the stored zeros included.
        if (s != d) data::moveBytes(reinterpret_cast<const std::uint8_t*>(s), reinterpret_cast<std::uint8_t*>(d),
                                    static_cast<std::size_t>(2 * (len / 2 + 1)) * sizeof(T));
        return;
    }
    if ((len & 1) == 0) setPair(d + len, ld(s, F == Layout::Pack ? len - 1 : 1), T(0));
    if (m > 0 && pair1 != d + 2)
        data::moveBytes(reinterpret_cast<const std::uint8_t*>(pair1), reinterpret_cast<std::uint8_t*>(d + 2),
                        static_cast<std::size_t>(2 * m) * sizeof(T));
    setPair(d, ld(s, 0), T(0));
}

template <Layout F, class T, class Len>
ZetStatus conjForm(const T* s, typename Pairs<T>::C* d, Len len) {
    if (auto st = checkArgs(len, s, d)) return st;
    expand<F>(s, reinterpret_cast<T*>(d), static_cast<long long>(len));
    return zetStsOk;
}
template <Layout F, class T, class Len>
ZetStatus conjInPlace(typename Pairs<T>::C* sd, Len len) {
    if (auto st = checkArgs(len, sd)) return st;
    expand<F>(reinterpret_cast<const T*>(sd), reinterpret_cast<T*>(sd), static_cast<long long>(len));
    return zetStsOk;
}

// ---- Mul -----------------------------------------------------------------------

// a * conj(b): the product of zetsMul_32fc with b's imaginary sign flipped, so
// re = fma(a.re, b.re, round(a.im b.im)), im = fma(a.re, -b.im, round(a.im b.re)).
struct CMulConjOp {
    template <class V> V operator()(V a, V b) const { return arith::CMulOp{}(a, conj(b)); }
};

// d = a * b in layout F (Pack or Perm), b being the left operand of the real
// products (as in zetsMul_32f) and a the src1 operand of the complex ones;
// with Conj, d = a * conj(b). d may be b.
template <Layout F, bool Conj, class T>
void product(const T* a, const T* b, T* d, long long len) {
    const long long reals = (F == Layout::Perm && (len & 1) == 0) ? 2 : 1;
    const long long pairs = (len - 1) / 2;
    loops::map(d, reals, arith::MulOp{}, a, b);
    if constexpr (Conj) loops::map(cplx(d + reals), pairs, CMulConjOp{}, cplx(a + reals), cplx(b + reals));
    else loops::map(cplx(d + reals), pairs, arith::CMulOp{}, cplx(a + reals), cplx(b + reals));
    if (F == Layout::Pack && (len & 1) == 0) loops::map(d + len - 1, 1, arith::MulOp{}, a + len - 1, b + len - 1);
}

// _I: srcDst = srcDst * src (Conj: src * conj(srcDst)).
template <Layout F, bool Conj, class T>
ZetStatus mulInPlace(const T* s, T* sd, int len) {
    if (auto st = checkArgs(len, s, sd)) return st;
    product<F, Conj>(s, sd, sd, len);
    return zetStsOk;
}

// A destination that is one of the sources sends the call down the in-place
// path with the other source; for d == a the operands trade roles.
template <Layout F, class T>
ZetStatus mul(const T* a, const T* b, T* d, int len) {
    if (d == a) return mulInPlace<F, false>(b, d, len);
    if (d == b) return mulInPlace<F, false>(a, d, len);
    if (auto st = checkArgs(len, a, b, d)) return st;
    product<F, false>(a, b, d, len);
    return zetStsOk;
}

}  // namespace
}  // namespace zet::spectrum

using zet::spectrum::Layout;
namespace zs = zet::spectrum;

#define ZET_CONJ_PLAIN(NAME, LAYOUT, T, R)                                                                          \
    ZetStatus zets##NAME##_##T(const R* s, Zet##T* d, int len) { return zs::conjForm<LAYOUT>(s, d, len); }         \
    ZetStatus zets##NAME##_##T##_I(Zet##T* sd, int len) { return zs::conjInPlace<LAYOUT, R>(sd, len); }
#define ZET_CONJ_WIDE(NAME, LAYOUT, T, R)                                                                           \
    ZET_CONJ_PLAIN(NAME, LAYOUT, T, R)                                                                              \
    ZetStatus zets##NAME##_##T##_L(const R* s, Zet##T* d, long long len) { return zs::conjForm<LAYOUT>(s, d, len); } \
    ZetStatus zets##NAME##_##T##_I_L(Zet##T* sd, long long len) { return zs::conjInPlace<LAYOUT, R>(sd, len); }

ZET_CONJ_WIDE(ConjCcs, Layout::CCS, 32fc, Zet32f)
ZET_CONJ_WIDE(ConjCcs, Layout::CCS, 64fc, Zet64f)
ZET_CONJ_WIDE(ConjPack, Layout::Pack, 32fc, Zet32f)
ZET_CONJ_WIDE(ConjPack, Layout::Pack, 64fc, Zet64f)
ZET_CONJ_PLAIN(ConjPerm, Layout::Perm, 32fc, Zet32f)
ZET_CONJ_PLAIN(ConjPerm, Layout::Perm, 64fc, Zet64f)

#define ZET_MUL_SPECTRUM(NAME, LAYOUT, T)                                                                                \
    ZetStatus zets##NAME##_##T(const Zet##T* a, const Zet##T* b, Zet##T* d, int len) { return zs::mul<LAYOUT>(a, b, d, len); } \
    ZetStatus zets##NAME##_##T##_I(const Zet##T* s, Zet##T* sd, int len) { return zs::mulInPlace<LAYOUT, false>(s, sd, len); }

ZET_MUL_SPECTRUM(MulPack, Layout::Pack, 32f)
ZET_MUL_SPECTRUM(MulPack, Layout::Pack, 64f)
ZET_MUL_SPECTRUM(MulPerm, Layout::Perm, 32f)
ZET_MUL_SPECTRUM(MulPerm, Layout::Perm, 64f)

ZetStatus zetsMulPackConj_32f_I(const Zet32f* s, Zet32f* sd, int len) { return zs::mulInPlace<Layout::Pack, true>(s, sd, len); }
ZetStatus zetsMulPackConj_64f_I(const Zet64f* s, Zet64f* sd, int len) { return zs::mulInPlace<Layout::Pack, true>(s, sd, len); }
