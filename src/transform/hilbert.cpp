// The analytic signal of a real sequence by the frequency-domain method: a
// real DFT, the positive frequencies doubled and the negative ones zeroed,
// then an inverse complex DFT. Both DFT objects live in the Hilbert object.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "zetsp.h"

namespace zet::hilbert {
namespace {

template <class T> struct Types;
template <> struct Types<float> {
    using Spec = ZetsHilbertSpec_32f32fc;
    using C = Zet32fc;
    using CSpec = ZetsDFTSpec_C_32fc;
    using RSpec = ZetsDFTSpec_R_32f;
    static constexpr char kWord[4] = {'F', 'A', 'M', 'C'};
    static ZetStatus cSize(int n, int f, ZetHint h, int* s, int* i, int* w) { return zetsDFTGetSize_C_32fc(n, f, h, s, i, w); }
    static ZetStatus rSize(int n, int f, ZetHint h, int* s, int* i, int* w) { return zetsDFTGetSize_R_32f(n, f, h, s, i, w); }
    static ZetStatus cInit(int n, int f, ZetHint h, CSpec* s, Zet8u* i) { return zetsDFTInit_C_32fc(n, f, h, s, i); }
    static ZetStatus rInit(int n, int f, ZetHint h, RSpec* s, Zet8u* i) { return zetsDFTInit_R_32f(n, f, h, s, i); }
    static ZetStatus fwd(const float* s, float* d, const RSpec* p, Zet8u* w) { return zetsDFTFwd_RToCCS_32f(s, d, p, w); }
    static ZetStatus inv(const C* s, C* d, const CSpec* p, Zet8u* w) { return zetsDFTInv_CToC_32fc(s, d, p, w); }
};
template <> struct Types<double> {
    using Spec = ZetsHilbertSpec_64f64fc;
    using C = Zet64fc;
    using CSpec = ZetsDFTSpec_C_64fc;
    using RSpec = ZetsDFTSpec_R_64f;
    static constexpr char kWord[4] = {'E', 'A', 'M', 'C'};
    static ZetStatus cSize(int n, int f, ZetHint h, int* s, int* i, int* w) { return zetsDFTGetSize_C_64fc(n, f, h, s, i, w); }
    static ZetStatus rSize(int n, int f, ZetHint h, int* s, int* i, int* w) { return zetsDFTGetSize_R_64f(n, f, h, s, i, w); }
    static ZetStatus cInit(int n, int f, ZetHint h, CSpec* s, Zet8u* i) { return zetsDFTInit_C_64fc(n, f, h, s, i); }
    static ZetStatus rInit(int n, int f, ZetHint h, RSpec* s, Zet8u* i) { return zetsDFTInit_R_64f(n, f, h, s, i); }
    static ZetStatus fwd(const double* s, double* d, const RSpec* p, Zet8u* w) { return zetsDFTFwd_RToCCS_64f(s, d, p, w); }
    static ZetStatus inv(const C* s, C* d, const CSpec* p, Zet8u* w) { return zetsDFTInv_CToC_64fc(s, d, p, w); }
};

template <class T> struct Object {
    char word[4];
    std::int32_t length;
    std::int32_t workBytes;
    std::int32_t hint;
    typename Types<T>::CSpec* complexSpec;
    typename Types<T>::RSpec* realSpec;
};
static_assert(sizeof(Object<float>) <= 32, "the inner objects start 32 bytes in");

template <class P> P* align16(P* p) {
    return reinterpret_cast<P*>((reinterpret_cast<std::uintptr_t>(p) + 15) & ~std::uintptr_t{15});
}

// Both inner transforms divide by N on the way back only.
constexpr int kFlag = ZET_SCALE_INV;

struct Inner { int cs, ci, cw, rs, ri, rw; };

template <class T> ZetStatus innerSizes(int length, ZetHint hint, Inner& s) {
    if (auto st = Types<T>::cSize(length, kFlag, hint, &s.cs, &s.ci, &s.cw)) return st;
    return Types<T>::rSize(length, kFlag, hint, &s.rs, &s.ri, &s.rw);
}

template <class T> ZetStatus getSize(int length, ZetHint hint, int* pSpecSize, int* pWorkSize) {
    if (!pSpecSize || !pWorkSize) return zetStsNullPtrErr;
    if (length < 1) return zetStsSizeErr;
    Inner s{};
    if (auto st = innerSizes<T>(length, hint, s)) return st;
    // The two inner objects together may pass what an int holds.
    const std::int64_t spec = std::int64_t{s.cs} + s.rs + 48, work = std::int64_t{std::max({s.ci, s.cw, s.ri, s.rw})} + 16;
    if (spec > INT32_MAX || work > INT32_MAX) return zetStsSizeErr;
    *pSpecSize = static_cast<int>(spec);
    *pWorkSize = static_cast<int>(work);
    return zetStsOk;
}

template <class T> ZetStatus init(int length, ZetHint hint, typename Types<T>::Spec* pSpec, Zet8u* pBuffer) {
    if (!pSpec || !pBuffer) return zetStsNullPtrErr;
    if (length < 1) return zetStsSizeErr;
    // Sizes first: a length GetSize refuses is refused with nothing written.
    int specBytes = 0, workBytes = 0;
    if (auto st = getSize<T>(length, hint, &specBytes, &workBytes)) return st;
    Inner s{};
    innerSizes<T>(length, hint, s);
    auto* obj = reinterpret_cast<Object<T>*>(align16(reinterpret_cast<Zet8u*>(pSpec)));
    std::memcpy(obj->word, Types<T>::kWord, 4);
    obj->length = length;
    obj->hint = hint;
    Zet8u* inner = reinterpret_cast<Zet8u*>(obj) + 32;
    obj->complexSpec = reinterpret_cast<typename Types<T>::CSpec*>(inner);
    obj->realSpec = reinterpret_cast<typename Types<T>::RSpec*>(inner + s.cs);
    obj->workBytes = std::max({s.ci, s.cw, s.ri, s.rw});
    // Whatever the inner objects report, the first call finds out.
    Zet8u* scratch = align16(pBuffer);
    Types<T>::cInit(length, kFlag, hint, obj->complexSpec, scratch);
    Types<T>::rInit(length, kFlag, hint, obj->realSpec, scratch);
    return zetStsOk;
}

template <class T>
ZetStatus run(const T* pSrc, typename Types<T>::C* pDst, const typename Types<T>::Spec* pSpec, Zet8u* pWork) {
    if (!pSrc || !pDst || !pSpec || !pWork) return zetStsNullPtrErr;
    const auto* obj = reinterpret_cast<const Object<T>*>(align16(reinterpret_cast<const Zet8u*>(pSpec)));
    if (std::memcmp(obj->word, Types<T>::kWord, 4) != 0) return zetStsSpecMismatchErr;
    const int n = obj->length;
    if (n <= 2) {
        // Too short to have negative frequencies: the signal is its own
        // analytic form.
        for (int i = 0; i < n; ++i) { pDst[i].re = pSrc[i]; pDst[i].im = 0; }
        return zetStsOk;
    }
    Zet8u* work = align16(pWork);
    if (auto st = Types<T>::fwd(pSrc, reinterpret_cast<T*>(pDst), obj->realSpec, work)) return st;
    const int c = (n & 1) + (n >> 1) - 1;
    for (int k = 1; k <= c; ++k) {
        pDst[k].re = pDst[k].re + pDst[k].re;
        pDst[k].im = pDst[k].im + pDst[k].im;
    }
    std::memset(static_cast<void*>(pDst + (n >> 1) + 1), 0, sizeof(pDst[0]) * static_cast<std::size_t>(c));
    return Types<T>::inv(pDst, pDst, obj->complexSpec, work);
}

}  // namespace
}  // namespace zet::hilbert

namespace zh = zet::hilbert;

extern "C" {
ZetStatus zetsHilbertGetSize_32f32fc(int n, ZetHint h, int* s, int* w) { return zh::getSize<float>(n, h, s, w); }
ZetStatus zetsHilbertGetSize_64f64fc(int n, ZetHint h, int* s, int* w) { return zh::getSize<double>(n, h, s, w); }
ZetStatus zetsHilbertInit_32f32fc(int n, ZetHint h, ZetsHilbertSpec_32f32fc* p, Zet8u* b) { return zh::init<float>(n, h, p, b); }
ZetStatus zetsHilbertInit_64f64fc(int n, ZetHint h, ZetsHilbertSpec_64f64fc* p, Zet8u* b) { return zh::init<double>(n, h, p, b); }
ZetStatus zetsHilbert_32f32fc(const Zet32f* s, Zet32fc* d, const ZetsHilbertSpec_32f32fc* p, Zet8u* w) { return zh::run<float>(s, d, p, w); }
ZetStatus zetsHilbert_64f64fc(const Zet64f* s, Zet64fc* d, const ZetsHilbertSpec_64f64fc* p, Zet8u* w) { return zh::run<double>(s, d, p, w); }
}
