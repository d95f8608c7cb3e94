// The power-of-two transforms: the core and tiled methods, and the GetSize,
// Init and compute exports.
#include <cmath>
#include <cstring>

#include "transform/fft_core.hpp"
#include "transform/plan.hpp"

namespace zet::plan {

namespace {

using fft::FFTCore;

// ------------------------------------------------------------ core method

ZetStatus fftCount(const Plan* p, int flag, CoreBytes* out) {
    if (flag == 0) return zetStsFFTFlagErr;
    const fft::CoreSizes s = fft::coreSizes(isDouble(p->elem), p->order);
    *out = CoreBytes{s.spec, s.init, s.work};
    return zetStsOk;
}

ZetStatus fftBuild(const Plan* p, int flag, void* mem, Zet8u* init, Binding* b) {
    auto* core = static_cast<FFTCore*>(mem);
    const ZetStatus st = isDouble(p->elem) ? fft::coreInit64(core, p->order, flag, init)
                                           : fft::coreInit32(core, p->order, flag, init);
    if (st != zetStsOk) return st;
    // The split forms share every table with the interleaved core.
    if (p->elem == Elem::C32f) core->id = fft::kCore32f;
    if (p->elem == Elem::C64f) core->id = fft::kCore64f;
    b->pow2Core = core;
    switch (p->elem) {
        case Elem::C32fc: b->entries[0] = reinterpret_cast<void*>(&fft::fwd32fc); b->entries[1] = reinterpret_cast<void*>(&fft::inv32fc); break;
        case Elem::C32f: b->entries[0] = reinterpret_cast<void*>(&fft::fwd32f); b->entries[1] = reinterpret_cast<void*>(&fft::inv32f); break;
        case Elem::C64fc: b->entries[0] = reinterpret_cast<void*>(&fft::fwd64fc); b->entries[1] = reinterpret_cast<void*>(&fft::inv64fc); break;
        case Elem::C64f: b->entries[0] = reinterpret_cast<void*>(&fft::fwd64f); b->entries[1] = reinterpret_cast<void*>(&fft::inv64f); break;
        default: break;
    }
    return zetStsOk;
}

const CoreOps kFFTOps{&fftCount, &fftBuild};

// Real cores: the count refuses what no type limit stops (order 30 single).
ZetStatus realCount(const Plan* p, int flag, CoreBytes* out) {
    if (flag == 0) return zetStsFFTFlagErr;
    if (p->order > 29) return zetStsFFTOrderErr;
    const fft::CoreSizes s = fft::realCoreSizes(isDouble(p->elem), p->order);
    *out = CoreBytes{s.spec, s.init, s.work};
    return zetStsOk;
}

ZetStatus realBuild(const Plan* p, int flag, void* mem, Zet8u* init, Binding* b) {
    auto* core = static_cast<FFTCore*>(mem);
    const bool dbl = isDouble(p->elem);
    const ZetStatus st = dbl ? fft::realCoreInit64(core, p->order, flag, init) : fft::realCoreInit32(core, p->order, flag, init);
    if (st != zetStsOk) return st;
    b->pow2Core = core;
    for (int i = 0; i < 6; ++i) b->entries[i] = fft::realEntries(dbl).entry[i];
    return zetStsOk;
}

const CoreOps kRealOps{&realCount, &realBuild};

// The tiled method's binding begins with the word 0 and then its object.
struct TiledBinding {
    std::int32_t kind;  // 0
    std::int32_t pad;
    fft::TiledPlan* tiled;
};

template <bool Inv>
std::int32_t tiledCompute(const Plan* p, const void* src, void* dst, std::int32_t, std::int32_t, Zet8u*) {
    const auto* tb = static_cast<const TiledBinding*>(p->binding);
    const auto* s = static_cast<const Zet32fc*>(src);
    auto* d = static_cast<Zet32fc*>(dst);
    return codeFromStatus(Inv ? fft::tiledInv(tb->tiled, s, d) : fft::tiledFwd(tb->tiled, s, d));
}

std::int32_t tiledCommit(const Method* self, Plan* p) {
    const std::int64_t n = p->commitDims[0];
    if (p->domain != kComplex || p->storage != kInterleaved || p->fwdScale != 1.0 || p->invScale != 1.0 ||
        p->commitRank != 1 || p->commitDims[1] != 1 || p->commitDims[2] != 1 || n < 128 || n > 2048)
        return kDeclined;
    Allocator* al = p->allocator;
    // The binding word leads the object's first 128 bytes; the table follows.
    const std::int64_t bytes = fft::tiledSpecBytes(p->order);
    auto* obj = static_cast<unsigned char*>(al->spec->take(bytes));
    p->placementClass = 2;
    if (al->mode == kCounting) return kOk;
    if (!obj) return kNullArg;
    auto* tb = reinterpret_cast<TiledBinding*>(obj);
    tb->kind = 0;
    tb->tiled = reinterpret_cast<fft::TiledPlan*>(obj + sizeof(TiledBinding));
    fft::tiledBuild(tb->tiled, p->order, reinterpret_cast<float*>(obj + 128));
    p->binding = tb;
    p->method = self;
    p->computeForward = &tiledCompute<false>;
    p->computeInverse = &tiledCompute<true>;
    p->commitState = kCommitted;
    return kOk;
}

void noRelease(const Method*, Plan*) {}

const Method kTiledMethod{&tiledCommit, &noRelease};
const Method* const kMethodsTiledFirst[] = {&kTiledMethod, &kCoreMethod, nullptr};
const Method* const kMethodsCore[] = {&kCoreMethod, nullptr};

PlanSetup setupOf(Elem e, int order, ZetHint hint) {
    const bool real = e == Elem::R32f || e == Elem::R64f;
    return PlanSetup{e, std::int64_t{1} << order, order, hint,
                     e == Elem::C32fc ? kMethodsTiledFirst : kMethodsCore, real ? &kRealOps : &kFFTOps};
}

// ------------------------------------------------------------------ exports

int getSizeLimit(Elem e) {
    switch (e) {
        case Elem::C64fc: case Elem::C64f: return 27;
        case Elem::R32f: return 30;
        default: return 28;
    }
}
int initLimit(Elem e) { return isDouble(e) ? 27 : 28; }

ZetStatus getSize(Elem e, int order, int flag, ZetHint hint, int* pSpec, int* pInit, int* pWork) {
    if (order > 30 || order < 0) return zetStsFFTOrderErr;
    if (!pSpec || !pInit || !pWork) return zetStsNullPtrErr;
    if (order > getSizeLimit(e)) return zetStsFFTOrderErr;
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    const std::int64_t n = std::int64_t{1} << order;
    if (order <= 10) {
        const bool dbl = isDouble(e);
        const bool real = e == Elem::R32f || e == Elem::R64f;
        // A real type holds half the complex tables and half the data.
        const std::int64_t specPer = dbl ? 18 : (real ? 9 : 16);
        const std::int64_t workPer = (dbl ? 16 : 8) / (real ? 2 : 1);
        *pSpec = static_cast<int>(specPer * n + 2048);
        *pInit = 0;
        *pWork = order < (real ? 6 : 7) ? 0 : static_cast<int>(workPer * n + 128);
        return zetStsOk;
    }
    CoreBytes count{};
    if (const std::int32_t code = countPlan(setupOf(e, order, hint), flag, &count)) {
        *pSpec = 64; *pInit = 0; *pWork = 64;
        return statusFromCode(code);
    }
    *pSpec = static_cast<int>(count.spec + 64);
    *pInit = static_cast<int>(count.init);
    *pWork = static_cast<int>(count.work + 64);
    return zetStsOk;
}

template <class SpecT>
ZetStatus init(Elem e, SpecT** ppSpec, int order, int flag, ZetHint hint, Zet8u* specBuf, Zet8u* initBuf) {
    if (!ppSpec) return zetStsNullPtrErr;
    if (order > initLimit(e) || order < 0) return zetStsFFTOrderErr;
    if (!specBuf) return zetStsNullPtrErr;
    SpecObject* obj = objectAt(specBuf);
    obj->word = static_cast<std::uint32_t>(e);
    obj->plan = nullptr;
    Plan* p = createInObject(reinterpret_cast<Zet8u*>(obj), initBuf, setupOf(e, order, hint));
    if (!p) return statusFromCode(kNoMemory);
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    if (isSplit(e)) p->storage = kSplit;
    p->placement = kInPlace;
    realScales(p, flag, std::int64_t{1} << order);
    const std::int32_t code = commit(p);
    *ppSpec = reinterpret_cast<SpecT*>(obj);
    return statusFromCode(code);
}

// Compute routing: the binding's direct entry when its kind matches, else
// the plan's entry, which insists on a work pointer.
const SpecObject* objOf(const void* spec) { return static_cast<const SpecObject*>(spec); }

template <bool Inv, class T>
ZetStatus complexCall(Elem e, const T* src, T* dst, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    if (!src || !dst) return zetStsNullPtrErr;
    return callEntry<Inv>(objOf(spec), bindingKind(e), Inv ? 1 : 0, 0, work, src, dst);
}
template <bool Inv, class T>
ZetStatus complexInPlace(Elem e, T* sd, const void* spec, Zet8u* work) {
    if (!sd || !spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    return callEntry<Inv>(objOf(spec), bindingKind(e), Inv ? 1 : 0, 0, work, sd, sd);
}
template <bool Inv, class T>
ZetStatus splitCall(Elem e, const T* sr, const T* si, T* dr, T* di, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    if (!sr || !si || !dr || !di) return zetStsNullPtrErr;
    return callEntry<Inv>(objOf(spec), bindingKind(e), Inv ? 1 : 0, 0, work, nullptr, nullptr, sr, si, dr, di);
}
template <bool Inv, class T>
ZetStatus splitInPlace(Elem e, T* re, T* im, const void* spec, Zet8u* work) {
    if (!re || !im || !spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    return callEntry<Inv>(objOf(spec), bindingKind(e), Inv ? 1 : 0, 0, work, nullptr, nullptr,
                          static_cast<const T*>(re), static_cast<const T*>(im), re, im);
}

template <bool Inv, class T>
ZetStatus realCall(Elem e, std::int32_t fmt, const T* src, T* dst, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    if (!src || !dst) return zetStsNullPtrErr;
    // Real bindings hold one pair of entries per spectrum format.
    return callEntry<Inv>(objOf(spec), bindingKind(e), 2 * (fmt - kCCS) + (Inv ? 1 : 0), fmt, work, src, dst);
}

}  // namespace
}  // namespace zet::plan

using zet::plan::Elem;
namespace zp = zet::plan;

extern "C" {

ZetStatus zetsFFTGetSize_C_32fc(int o, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C32fc, o, f, h, s, i, w); }
ZetStatus zetsFFTGetSize_C_32f(int o, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C32f, o, f, h, s, i, w); }
ZetStatus zetsFFTGetSize_C_64fc(int o, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C64fc, o, f, h, s, i, w); }
ZetStatus zetsFFTGetSize_C_64f(int o, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::C64f, o, f, h, s, i, w); }

ZetStatus zetsFFTGetSize_R_32f(int o, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::R32f, o, f, h, s, i, w); }
ZetStatus zetsFFTGetSize_R_64f(int o, int f, ZetHint h, int* s, int* i, int* w) { return zp::getSize(Elem::R64f, o, f, h, s, i, w); }

ZetStatus zetsFFTInit_C_32fc(ZetsFFTSpec_C_32fc** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C32fc, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_C_32f(ZetsFFTSpec_C_32f** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C32f, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_C_64fc(ZetsFFTSpec_C_64fc** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C64fc, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_C_64f(ZetsFFTSpec_C_64f** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C64f, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_R_32f(ZetsFFTSpec_R_32f** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::R32f, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_R_64f(ZetsFFTSpec_R_64f** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::R64f, pp, o, f, h, s, i); }

ZetStatus zetsFFTFwd_CToC_32fc(const Zet32fc* s, Zet32fc* d, const ZetsFFTSpec_C_32fc* p, Zet8u* w) { return zp::complexCall<false>(Elem::C32fc, s, d, p, w); }
ZetStatus zetsFFTInv_CToC_32fc(const Zet32fc* s, Zet32fc* d, const ZetsFFTSpec_C_32fc* p, Zet8u* w) { return zp::complexCall<true>(Elem::C32fc, s, d, p, w); }
ZetStatus zetsFFTFwd_CToC_32fc_I(Zet32fc* sd, const ZetsFFTSpec_C_32fc* p, Zet8u* w) { return zp::complexInPlace<false>(Elem::C32fc, sd, p, w); }
ZetStatus zetsFFTInv_CToC_32fc_I(Zet32fc* sd, const ZetsFFTSpec_C_32fc* p, Zet8u* w) { return zp::complexInPlace<true>(Elem::C32fc, sd, p, w); }
ZetStatus zetsFFTFwd_CToC_64fc(const Zet64fc* s, Zet64fc* d, const ZetsFFTSpec_C_64fc* p, Zet8u* w) { return zp::complexCall<false>(Elem::C64fc, s, d, p, w); }
ZetStatus zetsFFTInv_CToC_64fc(const Zet64fc* s, Zet64fc* d, const ZetsFFTSpec_C_64fc* p, Zet8u* w) { return zp::complexCall<true>(Elem::C64fc, s, d, p, w); }
ZetStatus zetsFFTFwd_CToC_64fc_I(Zet64fc* sd, const ZetsFFTSpec_C_64fc* p, Zet8u* w) { return zp::complexInPlace<false>(Elem::C64fc, sd, p, w); }
ZetStatus zetsFFTInv_CToC_64fc_I(Zet64fc* sd, const ZetsFFTSpec_C_64fc* p, Zet8u* w) { return zp::complexInPlace<true>(Elem::C64fc, sd, p, w); }

ZetStatus zetsFFTFwd_CToC_32f(const Zet32f* sr, const Zet32f* si, Zet32f* dr, Zet32f* di, const ZetsFFTSpec_C_32f* p, Zet8u* w) { return zp::splitCall<false>(Elem::C32f, sr, si, dr, di, p, w); }
ZetStatus zetsFFTInv_CToC_32f(const Zet32f* sr, const Zet32f* si, Zet32f* dr, Zet32f* di, const ZetsFFTSpec_C_32f* p, Zet8u* w) { return zp::splitCall<true>(Elem::C32f, sr, si, dr, di, p, w); }
ZetStatus zetsFFTFwd_CToC_32f_I(Zet32f* re, Zet32f* im, const ZetsFFTSpec_C_32f* p, Zet8u* w) { return zp::splitInPlace<false>(Elem::C32f, re, im, p, w); }
ZetStatus zetsFFTInv_CToC_32f_I(Zet32f* re, Zet32f* im, const ZetsFFTSpec_C_32f* p, Zet8u* w) { return zp::splitInPlace<true>(Elem::C32f, re, im, p, w); }
ZetStatus zetsFFTFwd_CToC_64f(const Zet64f* sr, const Zet64f* si, Zet64f* dr, Zet64f* di, const ZetsFFTSpec_C_64f* p, Zet8u* w) { return zp::splitCall<false>(Elem::C64f, sr, si, dr, di, p, w); }
ZetStatus zetsFFTInv_CToC_64f(const Zet64f* sr, const Zet64f* si, Zet64f* dr, Zet64f* di, const ZetsFFTSpec_C_64f* p, Zet8u* w) { return zp::splitCall<true>(Elem::C64f, sr, si, dr, di, p, w); }
ZetStatus zetsFFTFwd_CToC_64f_I(Zet64f* re, Zet64f* im, const ZetsFFTSpec_C_64f* p, Zet8u* w) { return zp::splitInPlace<false>(Elem::C64f, re, im, p, w); }
ZetStatus zetsFFTInv_CToC_64f_I(Zet64f* re, Zet64f* im, const ZetsFFTSpec_C_64f* p, Zet8u* w) { return zp::splitInPlace<true>(Elem::C64f, re, im, p, w); }

ZetStatus zetsFFTFwd_RToCCS_32f(const Zet32f* s, Zet32f* d, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kCCS, s, d, p, w); }
ZetStatus zetsFFTFwd_RToCCS_32f_I(Zet32f* sd, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kCCS, sd, sd, p, w); }
ZetStatus zetsFFTInv_CCSToR_32f(const Zet32f* s, Zet32f* d, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kCCS, s, d, p, w); }
ZetStatus zetsFFTInv_CCSToR_32f_I(Zet32f* sd, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kCCS, sd, sd, p, w); }
ZetStatus zetsFFTFwd_RToCCS_64f(const Zet64f* s, Zet64f* d, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kCCS, s, d, p, w); }
ZetStatus zetsFFTFwd_RToCCS_64f_I(Zet64f* sd, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kCCS, sd, sd, p, w); }
ZetStatus zetsFFTInv_CCSToR_64f(const Zet64f* s, Zet64f* d, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kCCS, s, d, p, w); }
ZetStatus zetsFFTInv_CCSToR_64f_I(Zet64f* sd, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kCCS, sd, sd, p, w); }
ZetStatus zetsFFTFwd_RToPack_32f(const Zet32f* s, Zet32f* d, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kPack, s, d, p, w); }
ZetStatus zetsFFTFwd_RToPack_32f_I(Zet32f* sd, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kPack, sd, sd, p, w); }
ZetStatus zetsFFTInv_PackToR_32f(const Zet32f* s, Zet32f* d, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kPack, s, d, p, w); }
ZetStatus zetsFFTInv_PackToR_32f_I(Zet32f* sd, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kPack, sd, sd, p, w); }
ZetStatus zetsFFTFwd_RToPack_64f(const Zet64f* s, Zet64f* d, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kPack, s, d, p, w); }
ZetStatus zetsFFTFwd_RToPack_64f_I(Zet64f* sd, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kPack, sd, sd, p, w); }
ZetStatus zetsFFTInv_PackToR_64f(const Zet64f* s, Zet64f* d, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kPack, s, d, p, w); }
ZetStatus zetsFFTInv_PackToR_64f_I(Zet64f* sd, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kPack, sd, sd, p, w); }
ZetStatus zetsFFTFwd_RToPerm_32f(const Zet32f* s, Zet32f* d, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kPerm, s, d, p, w); }
ZetStatus zetsFFTFwd_RToPerm_32f_I(Zet32f* sd, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<false>(Elem::R32f, zp::kPerm, sd, sd, p, w); }
ZetStatus zetsFFTInv_PermToR_32f(const Zet32f* s, Zet32f* d, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kPerm, s, d, p, w); }
ZetStatus zetsFFTInv_PermToR_32f_I(Zet32f* sd, const ZetsFFTSpec_R_32f* p, Zet8u* w) { return zp::realCall<true>(Elem::R32f, zp::kPerm, sd, sd, p, w); }
ZetStatus zetsFFTFwd_RToPerm_64f(const Zet64f* s, Zet64f* d, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kPerm, s, d, p, w); }
ZetStatus zetsFFTFwd_RToPerm_64f_I(Zet64f* sd, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<false>(Elem::R64f, zp::kPerm, sd, sd, p, w); }
ZetStatus zetsFFTInv_PermToR_64f(const Zet64f* s, Zet64f* d, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kPerm, s, d, p, w); }
ZetStatus zetsFFTInv_PermToR_64f_I(Zet64f* sd, const ZetsFFTSpec_R_64f* p, Zet8u* w) { return zp::realCall<true>(Elem::R64f, zp::kPerm, sd, sd, p, w); }

}  // extern "C"
