// The arbitrary-length transforms: their core method, and the GetSize, Init
// and compute exports. The caller passes its unaligned spec buffer on every
// call; the transform object sits at the buffer's first 64-byte boundary.
#include "transform/dft_core.hpp"
#include "transform/plan.hpp"

namespace zet::plan {

namespace {

bool isReal(Elem e) { return e == Elem::R32f || e == Elem::R64f; }
// The identifying word of a type's transform object.
std::uint32_t wordOf(Elem e) { return static_cast<std::uint32_t>(e) + 10; }
bool isPow2(std::int64_t n) { return n > 0 && (n & (n - 1)) == 0; }

ZetStatus dftCount(const Plan* p, int flag, CoreBytes* out) {
    if (flag == 0) return zetStsFFTFlagErr;
    dft::Sizes s;
    if (const ZetStatus st = dft::coreSizes(isDouble(p->elem), isReal(p->elem), p->length, &s)) return st;
    *out = CoreBytes{s.spec, s.init, s.work};
    return zetStsOk;
}

ZetStatus dftBuild(const Plan* p, int flag, void* mem, Zet8u* init, Binding* b) {
    auto* core = static_cast<dft::DFTCore*>(mem);
    const bool dbl = isDouble(p->elem), real = isReal(p->elem);
    const ZetStatus st = dft::coreInit(core, dbl, real, isSplit(p->elem), static_cast<int>(p->length), flag, init);
    if (st != zetStsOk) return st;
    b->anyCore = core;
    // Complex bindings take the arbitrary-length pair at 2 and 3, real ones
    // their six format entries from 6.
    const dft::Entries& e = real ? dft::realEntries(dbl) : dft::complexEntries(dbl, isSplit(p->elem));
    for (int i = 0; i < (real ? 6 : 2); ++i) b->entries[(real ? 6 : 2) + i] = e.entry[i];
    return zetStsOk;
}

const CoreOps kDFTOps{&dftCount, &dftBuild};
const Method* const kMethods[] = {&kCoreMethod, nullptr};

PlanSetup setupOf(Elem e, int length, ZetHint hint) {
    int order = 0;
    while (isPow2(length) && (1 << order) < length) ++order;
    return PlanSetup{e, length, order, hint, kMethods, &kDFTOps};
}

// Lengths that are not powers of two stop at the type's limit.
bool lengthValid(Elem e, int length) {
    return length >= 1 && (isPow2(length) || length <= (isDouble(e) ? dft::kLimit64 : dft::kLimit32));
}

// Beyond the chirp way or the 2^31-byte sizes no way serves a length. Powers
// of two beyond the FFT are left to its core, whose refusal the plan
// translates.
ZetStatus served(Elem e, int length) {
    dft::Sizes s;
    const ZetStatus st = dft::coreSizes(isDouble(e), isReal(e), length, &s);
    if (st == zetStsFFTOrderErr) return zetStsOk;
    if (st != zetStsOk) return st;
    // Plan records, binding and alignment slack on top of the core.
    const std::int64_t spec = s.spec + (isReal(e) ? 1344 : 1280);
    if (spec >= (std::int64_t{1} << 31) || s.init >= (std::int64_t{1} << 31) || s.work >= (std::int64_t{1} << 31))
        return zetStsSizeErr;
    return zetStsOk;
}

ZetStatus getSize(Elem e, int length, int flag, ZetHint hint, int* pSpec, int* pInit, int* pWork) {
    if (!pSpec || !pInit || !pWork) return zetStsNullPtrErr;
    if (!lengthValid(e, length)) return zetStsSizeErr;
    if (const ZetStatus st = served(e, length)) {
        *pSpec = *pInit = *pWork = 0;
        return st;
    }
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    CoreBytes b;
    const std::int32_t code = countPlan(setupOf(e, length, hint), flag, &b);
    *pSpec = static_cast<int>(b.spec + 64);
    *pInit = static_cast<int>(b.init);
    *pWork = static_cast<int>(b.work);
    return statusFromCode(code);
}

ZetStatus init(Elem e, int length, int flag, ZetHint hint, void* pSpec, Zet8u* initBuf) {
    if (!pSpec) return zetStsNullPtrErr;
    if (!lengthValid(e, length)) return zetStsSizeErr;
    if (const ZetStatus st = served(e, length)) return st;
    SpecObject* obj = objectAt(pSpec);
    obj->word = wordOf(e);
    obj->plan = nullptr;
    Plan* p = createInObject(reinterpret_cast<Zet8u*>(obj), initBuf, setupOf(e, length, hint));
    if (!p) return statusFromCode(kNoMemory);
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    if (isSplit(e)) p->storage = kSplit;
    p->placement = kInPlace;
    realScales(p, flag, length);
    return statusFromCode(commit(p));
}

// The object's word is read at the caller's buffer raised to 64 bytes.
template <bool Inv, class T>
ZetStatus complexCall(Elem e, const T* src, T* dst, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    const SpecObject* obj = objectAt(spec);
    if (obj->word != wordOf(e)) return zetStsSpecMismatchErr;
    if (!src || !dst) return zetStsNullPtrErr;
    return callEntry<Inv>(obj, bindingKind(e), 2 + Inv, 0, work, src, dst);
}

template <bool Inv, class T>
ZetStatus splitCall(Elem e, const T* sr, const T* si, T* dr, T* di, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    const SpecObject* obj = objectAt(spec);
    if (obj->word != wordOf(e)) return zetStsSpecMismatchErr;
    if (!sr || !si || !dr || !di) return zetStsNullPtrErr;
    return callEntry<Inv>(obj, bindingKind(e), 2 + Inv, 0, work, nullptr, nullptr, sr, si, dr, di);
}

template <bool Inv, class T>
ZetStatus realCall(Elem e, std::int32_t fmt, const T* src, T* dst, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    const SpecObject* obj = objectAt(spec);
    if (obj->word != wordOf(e)) return zetStsSpecMismatchErr;
    if (!src || !dst) return zetStsNullPtrErr;
    return callEntry<Inv>(obj, bindingKind(e), 6 + 2 * (fmt - kCCS) + Inv, fmt, work, src, dst);
}

}  // namespace
}  // namespace zet::plan

using zet::plan::Elem;
namespace zp = zet::plan;

extern "C" {

ZetStatus zetsDFTGetSize_C_32fc(int n, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C32fc, n, f, h, s, i, w); }
ZetStatus zetsDFTGetSize_C_32f(int n, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C32f, n, f, h, s, i, w); }
ZetStatus zetsDFTGetSize_C_64fc(int n, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C64fc, n, f, h, s, i, w); }
ZetStatus zetsDFTGetSize_C_64f(int n, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C64f, n, f, h, s, i, w); }
ZetStatus zetsDFTGetSize_R_32f(int n, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::R32f, n, f, h, s, i, w); }
ZetStatus zetsDFTGetSize_R_64f(int n, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::R64f, n, f, h, s, i, w); }

ZetStatus zetsDFTInit_C_32fc(int n, int f, ZetHint h, ZetsDFTSpec_C_32fc* p, Zet8u* i) { return zp::init(Elem::C32fc, n, f, h, p, i); }
ZetStatus zetsDFTInit_C_32f(int n, int f, ZetHint h, ZetsDFTSpec_C_32f* p, Zet8u* i) { return zp::init(Elem::C32f, n, f, h, p, i); }
ZetStatus zetsDFTInit_C_64fc(int n, int f, ZetHint h, ZetsDFTSpec_C_64fc* p, Zet8u* i) { return zp::init(Elem::C64fc, n, f, h, p, i); }
ZetStatus zetsDFTInit_C_64f(int n, int f, ZetHint h, ZetsDFTSpec_C_64f* p, Zet8u* i) { return zp::init(Elem::C64f, n, f, h, p, i); }
ZetStatus zetsDFTInit_R_32f(int n, int f, ZetHint h, ZetsDFTSpec_R_32f* p, Zet8u* i) { return zp::init(Elem::R32f, n, f, h, p, i); }
ZetStatus zetsDFTInit_R_64f(int n, int f, ZetHint h, ZetsDFTSpec_R_64f* p, Zet8u* i) { return zp::init(Elem::R64f, n, f, h, p, i); }

ZetStatus zetsDFTFwd_CToC_32fc(const Zet32fc* s, Zet32fc* d, const ZetsDFTSpec_C_32fc* p, Zet8u* w) { return zp::complexCall<false>(Elem::C32fc, s, d, p, w); }
ZetStatus zetsDFTInv_CToC_32fc(const Zet32fc* s, Zet32fc* d, const ZetsDFTSpec_C_32fc* p, Zet8u* w) { return zp::complexCall<true>(Elem::C32fc, s, d, p, w); }
ZetStatus zetsDFTFwd_CToC_64fc(const Zet64fc* s, Zet64fc* d, const ZetsDFTSpec_C_64fc* p, Zet8u* w) { return zp::complexCall<false>(Elem::C64fc, s, d, p, w); }
ZetStatus zetsDFTInv_CToC_64fc(const Zet64fc* s, Zet64fc* d, const ZetsDFTSpec_C_64fc* p, Zet8u* w) { return zp::complexCall<true>(Elem::C64fc, s, d, p, w); }

ZetStatus zetsDFTFwd_CToC_32f(const Zet32f* sr, const Zet32f* si, Zet32f* dr, Zet32f* di, const ZetsDFTSpec_C_32f* p, Zet8u* w) { return zp::splitCall<false>(Elem::C32f, sr, si, dr, di, p, w); }
ZetStatus zetsDFTInv_CToC_32f(const Zet32f* sr, const Zet32f* si, Zet32f* dr, Zet32f* di, const ZetsDFTSpec_C_32f* p, Zet8u* w) { return zp::splitCall<true>(Elem::C32f, sr, si, dr, di, p, w); }
ZetStatus zetsDFTFwd_CToC_64f(const Zet64f* sr, const Zet64f* si, Zet64f* dr, Zet64f* di, const ZetsDFTSpec_C_64f* p, Zet8u* w) { return zp::splitCall<false>(Elem::C64f, sr, si, dr, di, p, w); }
ZetStatus zetsDFTInv_CToC_64f(const Zet64f* sr, const Zet64f* si, Zet64f* dr, Zet64f* di, const ZetsDFTSpec_C_64f* p, Zet8u* w) { return zp::splitCall<true>(Elem::C64f, sr, si, dr, di, p, w); }

ZetStatus zetsDFTFwd_RToCCS_32f(const Zet32f* s, Zet32f* d, const ZetsDFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kCCS, s, d, p, w); }
ZetStatus zetsDFTFwd_RToPack_32f(const Zet32f* s, Zet32f* d, const ZetsDFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kPack, s, d, p, w); }
ZetStatus zetsDFTFwd_RToPerm_32f(const Zet32f* s, Zet32f* d, const ZetsDFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kPerm, s, d, p, w); }
ZetStatus zetsDFTInv_CCSToR_32f(const Zet32f* s, Zet32f* d, const ZetsDFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kCCS, s, d, p, w); }
ZetStatus zetsDFTInv_PackToR_32f(const Zet32f* s, Zet32f* d, const ZetsDFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kPack, s, d, p, w); }
ZetStatus zetsDFTInv_PermToR_32f(const Zet32f* s, Zet32f* d, const ZetsDFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kPerm, s, d, p, w); }
ZetStatus zetsDFTFwd_RToCCS_64f(const Zet64f* s, Zet64f* d, const ZetsDFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kCCS, s, d, p, w); }
ZetStatus zetsDFTFwd_RToPack_64f(const Zet64f* s, Zet64f* d, const ZetsDFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kPack, s, d, p, w); }
ZetStatus zetsDFTFwd_RToPerm_64f(const Zet64f* s, Zet64f* d, const ZetsDFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kPerm, s, d, p, w); }
ZetStatus zetsDFTInv_CCSToR_64f(const Zet64f* s, Zet64f* d, const ZetsDFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kCCS, s, d, p, w); }
ZetStatus zetsDFTInv_PackToR_64f(const Zet64f* s, Zet64f* d, const ZetsDFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kPack, s, d, p, w); }
ZetStatus zetsDFTInv_PermToR_64f(const Zet64f* s, Zet64f* d, const ZetsDFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kPerm, s, d, p, w); }

}  // extern "C"
