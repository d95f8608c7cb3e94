// The orthonormal DCT-II and its inverse, the DCT-III, of any length, on the
// real DFT of the same length. The samples are reordered (evens ascending,
// odds descending) so that one real transform of N points gives the DCT
// after one complex factor per pair of outputs; the inverse runs the same
// steps backwards.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "zetsp.h"

namespace zet::dct {
namespace {

template <class T> struct Dft;
template <> struct Dft<float> {
    using Spec = ZetsDFTSpec_R_32f;
    static ZetStatus size(int n, int f, ZetHint h, int* s, int* i, int* w) { return zetsDFTGetSize_R_32f(n, f, h, s, i, w); }
    static ZetStatus init(int n, int f, ZetHint h, Spec* s, Zet8u* i) { return zetsDFTInit_R_32f(n, f, h, s, i); }
    static ZetStatus fwd(const float* s, float* d, const Spec* p, Zet8u* w) { return zetsDFTFwd_RToCCS_32f(s, d, p, w); }
    static ZetStatus inv(const float* s, float* d, const Spec* p, Zet8u* w) { return zetsDFTInv_CCSToR_32f(s, d, p, w); }
};
template <> struct Dft<double> {
    using Spec = ZetsDFTSpec_R_64f;
    static ZetStatus size(int n, int f, ZetHint h, int* s, int* i, int* w) { return zetsDFTGetSize_R_64f(n, f, h, s, i, w); }
    static ZetStatus init(int n, int f, ZetHint h, Spec* s, Zet8u* i) { return zetsDFTInit_R_64f(n, f, h, s, i); }
    static ZetStatus fwd(const double* s, double* d, const Spec* p, Zet8u* w) { return zetsDFTFwd_RToCCS_64f(s, d, p, w); }
    static ZetStatus inv(const double* s, double* d, const Spec* p, Zet8u* w) { return zetsDFTInv_CCSToR_64f(s, d, p, w); }
};

// Identifying words: "DCF4", "DCI4", "DCF8", "DCI8".
template <class T, bool Inv> constexpr std::uint32_t kWord =
    0x44u | (0x43u << 8) | ((Inv ? 0x49u : 0x46u) << 16) | ((sizeof(T) == 4 ? 0x34u : 0x38u) << 24);

template <class T> struct Object {
    std::uint32_t word;
    std::int32_t length;
    std::int32_t hint;
    std::int32_t pad;
    const T* factors;            // (N/2 + 1) complex values
    typename Dft<T>::Spec* dft;  // the real DFT's buffer, as its Init had it
};
constexpr std::int64_t kHeader = 64;
static_assert(sizeof(Object<double>) <= kHeader, "the factors follow the object's first 64 bytes");

constexpr std::int64_t a64(std::int64_t x) { return (x + 63) & ~std::int64_t{63}; }
template <class P> P* align64(P* p) {
    return reinterpret_cast<P*>((reinterpret_cast<std::uintptr_t>(p) + 63) & ~std::uintptr_t{63});
}

template <class T> std::int64_t factorBytes(int n) { return a64((n / 2 + 1) * 2 * std::int64_t{sizeof(T)}); }
template <class T> std::int64_t dataBytes(int n) { return a64((n + 2) * std::int64_t{sizeof(T)}); }

// Sizes: the object, its factors and the DFT object; the DFT's scratch; the
// reordered data and the DFT's work. Each with 64 bytes of alignment slack.
template <class T> ZetStatus getSize(int n, ZetHint hint, int* pSpec, int* pInit, int* pWork) {
    if (!pSpec || !pInit || !pWork) return zetStsNullPtrErr;
    if (n < 1) return zetStsSizeErr;
    int s = 0, i = 0, w = 0;
    if (auto st = Dft<T>::size(n, ZET_SCALE_NONE, hint, &s, &i, &w)) return st;
    const std::int64_t spec = 64 + kHeader + factorBytes<T>(n) + s, work = 64 + dataBytes<T>(n) + w;
    if (spec > INT32_MAX || work > INT32_MAX) return zetStsSizeErr;
    *pSpec = static_cast<int>(spec);
    *pInit = i;
    *pWork = static_cast<int>(work);
    return zetStsOk;
}

// Forward factors s_k exp(-i pi k / 2N), with s_0 = sqrt(1/N) and
// s_k = sqrt(2/N): the orthonormal weights. Inverse factors
// exp(+i pi k / 2N) / (s_k N), which also undo the DFT's growth by N.
template <class T, bool Inv> void buildFactors(T* f, int n) {
    const long double pi = 3.141592653589793238462643383279502884L, nl = n;
    for (int k = 0; k <= n / 2; ++k) {
        const long double s = std::sqrt((k == 0 ? 1.0L : 2.0L) / nl);
        const long double a = pi * k / (2 * nl), m = Inv ? 1 / (s * nl) : s;
        f[2 * k] = static_cast<T>(m * std::cos(a));
        f[2 * k + 1] = static_cast<T>((Inv ? m : -m) * std::sin(a));
    }
}

template <class T, bool Inv, class S> ZetStatus init(int n, ZetHint hint, S* pSpec, Zet8u* pInit) {
    if (!pSpec) return zetStsNullPtrErr;
    // Refuse what GetSize refuses before anything is written.
    int specBytes = 0, initBytes = 0, workBytes = 0;
    if (auto st = getSize<T>(n, hint, &specBytes, &initBytes, &workBytes)) return st;
    auto* base = align64(reinterpret_cast<Zet8u*>(pSpec));
    auto* obj = reinterpret_cast<Object<T>*>(base);
    obj->word = kWord<T, Inv>;
    obj->length = n;
    obj->hint = hint;
    T* f = reinterpret_cast<T*>(base + kHeader);
    buildFactors<T, Inv>(f, n);
    obj->factors = f;
    obj->dft = reinterpret_cast<typename Dft<T>::Spec*>(base + kHeader + factorBytes<T>(n));
    return Dft<T>::init(n, ZET_SCALE_NONE, hint, obj->dft, pInit);
}

template <class T, bool Inv, class S>
const Object<T>* checked(const S* pSpec, ZetStatus& st) {
    st = zetStsNullPtrErr;
    if (!pSpec) return nullptr;
    const auto* obj = reinterpret_cast<const Object<T>*>(align64(reinterpret_cast<const Zet8u*>(pSpec)));
    st = obj->word == kWord<T, Inv> ? zetStsOk : zetStsSpecMismatchErr;
    return obj;
}

template <class T, class S> ZetStatus forward(const T* src, T* dst, const S* pSpec, Zet8u* pWork) {
    ZetStatus st;
    const Object<T>* obj = checked<T, false>(pSpec, st);
    if (st) return st;
    if (!src || !dst || !pWork) return zetStsNullPtrErr;
    const int n = obj->length;
    T* v = reinterpret_cast<T*>(align64(pWork));
    for (int i = 0; 2 * i < n; ++i) v[i] = src[2 * i];
    for (int i = 0; 2 * i + 1 < n; ++i) v[n - 1 - i] = src[2 * i + 1];
    Zet8u* work = reinterpret_cast<Zet8u*>(v) + dataBytes<T>(n);
    if ((st = Dft<T>::fwd(v, v, obj->dft, work))) return st;
    const T* f = obj->factors;
    dst[0] = v[0] * f[0];
    for (int k = 1; 2 * k <= n; ++k) {
        const T vr = v[2 * k], vi = v[2 * k + 1], fr = f[2 * k], fi = f[2 * k + 1];
        dst[k] = std::fma(vr, fr, -(vi * fi));
        if (2 * k != n) dst[n - k] = -std::fma(vr, fi, vi * fr);
    }
    return zetStsOk;
}

template <class T, class S> ZetStatus inverse(const T* src, T* dst, const S* pSpec, Zet8u* pWork) {
    ZetStatus st;
    const Object<T>* obj = checked<T, true>(pSpec, st);
    if (st) return st;
    if (!src || !dst || !pWork) return zetStsNullPtrErr;
    const int n = obj->length;
    T* v = reinterpret_cast<T*>(align64(pWork));
    const T* f = obj->factors;
    v[0] = src[0] * f[0];
    v[1] = 0;
    for (int k = 1; 2 * k <= n; ++k) {
        // (y[k] - i y[N-k]) times the factor.
        const T a = src[k], b = src[n - k], fr = f[2 * k], fi = f[2 * k + 1];
        v[2 * k] = std::fma(a, fr, b * fi);
        v[2 * k + 1] = std::fma(a, fi, -(b * fr));
    }
    Zet8u* work = reinterpret_cast<Zet8u*>(v) + dataBytes<T>(n);
    if ((st = Dft<T>::inv(v, v, obj->dft, work))) return st;
    for (int i = 0; 2 * i < n; ++i) dst[2 * i] = v[i];
    for (int i = 0; 2 * i + 1 < n; ++i) dst[2 * i + 1] = v[n - 1 - i];
    return zetStsOk;
}

}  // namespace
}  // namespace zet::dct

namespace zd = zet::dct;

extern "C" {
ZetStatus zetsDCTFwdGetSize_32f(int n, ZetHint h, int* s, int* i, int* w) { return zd::getSize<float>(n, h, s, i, w); }
ZetStatus zetsDCTInvGetSize_32f(int n, ZetHint h, int* s, int* i, int* w) { return zd::getSize<float>(n, h, s, i, w); }
ZetStatus zetsDCTFwdGetSize_64f(int n, ZetHint h, int* s, int* i, int* w) { return zd::getSize<double>(n, h, s, i, w); }
ZetStatus zetsDCTInvGetSize_64f(int n, ZetHint h, int* s, int* i, int* w) { return zd::getSize<double>(n, h, s, i, w); }
ZetStatus zetsDCTFwdInit_32f(int n, ZetHint h, ZetsDCTFwdSpec_32f* p, Zet8u* i) { return zd::init<float, false>(n, h, p, i); }
ZetStatus zetsDCTInvInit_32f(int n, ZetHint h, ZetsDCTInvSpec_32f* p, Zet8u* i) { return zd::init<float, true>(n, h, p, i); }
ZetStatus zetsDCTFwdInit_64f(int n, ZetHint h, ZetsDCTFwdSpec_64f* p, Zet8u* i) { return zd::init<double, false>(n, h, p, i); }
ZetStatus zetsDCTInvInit_64f(int n, ZetHint h, ZetsDCTInvSpec_64f* p, Zet8u* i) { return zd::init<double, true>(n, h, p, i); }
ZetStatus zetsDCTFwd_32f(const Zet32f* s, Zet32f* d, const ZetsDCTFwdSpec_32f* p, Zet8u* w) { return zd::forward(s, d, p, w); }
ZetStatus zetsDCTFwd_32f_I(Zet32f* sd, const ZetsDCTFwdSpec_32f* p, Zet8u* w) { return zd::forward(sd, sd, p, w); }
ZetStatus zetsDCTFwd_64f(const Zet64f* s, Zet64f* d, const ZetsDCTFwdSpec_64f* p, Zet8u* w) { return zd::forward(s, d, p, w); }
ZetStatus zetsDCTFwd_64f_I(Zet64f* sd, const ZetsDCTFwdSpec_64f* p, Zet8u* w) { return zd::forward(sd, sd, p, w); }
ZetStatus zetsDCTInv_32f(const Zet32f* s, Zet32f* d, const ZetsDCTInvSpec_32f* p, Zet8u* w) { return zd::inverse(s, d, p, w); }
ZetStatus zetsDCTInv_32f_I(Zet32f* sd, const ZetsDCTInvSpec_32f* p, Zet8u* w) { return zd::inverse(sd, sd, p, w); }
ZetStatus zetsDCTInv_64f(const Zet64f* s, Zet64f* d, const ZetsDCTInvSpec_64f* p, Zet8u* w) { return zd::inverse(s, d, p, w); }
ZetStatus zetsDCTInv_64f_I(Zet64f* sd, const ZetsDCTInvSpec_64f* p, Zet8u* w) { return zd::inverse(sd, sd, p, w); }
}
