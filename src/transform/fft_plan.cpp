// Plans of the power-of-two transforms: creation, commit, the core and tiled
// methods, and the GetSize, Init and compute exports.
#include <cmath>
#include <cstring>

#include "transform/fft_core.hpp"
#include "transform/plan.hpp"

namespace zet::plan {

std::int32_t codeFromStatus(ZetStatus s) {
    if (s == zetStsOk) return kOk;
    if (s == zetStsNullPtrErr) return kNullArg;
    if (s == zetStsMemErr) return kNoMemory;
    return kFailed;
}

ZetStatus statusFromCode(std::int32_t code) {
    switch (code) {
        case 0: case 100: case 101: case 102: return zetStsOk;
        case 1: case 3: case 5: return zetStsNullPtrErr;
        case 2: return zetStsSpecMismatchErr;
        default: return zetStsUnsupportedErr;
    }
}

namespace {

using fft::FFTCore;

// The hook record: one slot, filled at the first plan creation, says how many
// elements a thread should take (never consulted: the library runs one).
using ThreadHook = std::int64_t (*)(std::int32_t);
std::int64_t threadGrain(std::int32_t what) { return what == 1 ? 32768 : 1; }
struct ThreadHooks { ThreadHook grain; };
ThreadHooks gHooks{};

void planRelease(Plan* p) {
    p->computeForward = p->computeInverse = nullptr;
    p->flags &= ~1;
}
void planDestroy(Plan* p) { planRelease(p); }

// ----------------------------------------------------------------- methods

bool isDouble(Elem e) { return e == Elem::C64fc || e == Elem::C64f || e == Elem::R64f; }
bool isSplit(Elem e) { return e == Elem::C32f || e == Elem::C64f; }
std::int32_t bindingKind(Elem e) {
    switch (e) {
        case Elem::C32fc: return 1;
        case Elem::C32f: return 2;
        case Elem::R32f: return 3;
        case Elem::C64fc: return 4;
        case Elem::C64f: return 5;
        default: return 6;
    }
}

// The flag that the placeholder or real scale pattern stands for.
int scaleFlag(const Plan* p) {
    if (p->fwdScale == 1.0) return p->invScale == 1.0 ? ZET_SCALE_NONE : ZET_SCALE_INV;
    if (p->invScale == 1.0) return ZET_SCALE_FWD;
    if (p->fwdScale == p->invScale) return ZET_SCALE_SYM;
    return 0;
}

// Plan-path compute entries of the core method: the same as the direct
// route with the result translated to a plan code.
template <bool Inv>
std::int32_t coreCompute(const Plan* p, const void* src, void* dst, std::int32_t, std::int32_t, Zet8u* work) {
    const auto* b = static_cast<const Binding*>(p->binding);
    const auto* core = static_cast<const FFTCore*>(b->pow2Core);
    using Fn = ZetStatus (*)(const void*, void*, const FFTCore*, Zet8u*);
    return codeFromStatus(reinterpret_cast<Fn>(b->entries[Inv ? 1 : 0])(src, dst, core, work));
}

void bindEntries(Binding* b, Elem e) {
    switch (e) {
        case Elem::C32fc: b->entries[0] = reinterpret_cast<void*>(&fft::fwd32fc); b->entries[1] = reinterpret_cast<void*>(&fft::inv32fc); break;
        case Elem::C32f: b->entries[0] = reinterpret_cast<void*>(&fft::fwd32f); b->entries[1] = reinterpret_cast<void*>(&fft::inv32f); break;
        case Elem::C64fc: b->entries[0] = reinterpret_cast<void*>(&fft::fwd64fc); b->entries[1] = reinterpret_cast<void*>(&fft::inv64fc); break;
        case Elem::C64f: b->entries[0] = reinterpret_cast<void*>(&fft::fwd64f); b->entries[1] = reinterpret_cast<void*>(&fft::inv64f); break;
        default: break;
    }
}

std::int32_t coreCommit(const Method* self, Plan* p) {
    Allocator* al = p->allocator;
    const bool dbl = isDouble(p->elem);
    const int flag = scaleFlag(p);
    const std::int64_t bindingBytes = p->domain == kReal ? 128 : 64;
    if (al->mode == kCounting) {
        if (flag == 0) return kFailed;
        const fft::CoreSizes s = fft::coreSizes(dbl, p->order);
        al->spec->take(bindingBytes);
        al->spec->take(s.spec);
        al->init->take(s.init);
        al->work->take(s.work);
        return kOk;
    }
    auto* b = static_cast<Binding*>(al->spec->take(bindingBytes));
    auto* core = static_cast<FFTCore*>(al->spec->next());
    Zet8u* init = reinterpret_cast<Zet8u*>(al->init->base);
    if (!b) return kNullArg;
    std::memset(b, 0, static_cast<std::size_t>(bindingBytes));
    const ZetStatus st = dbl ? fft::coreInit64(core, p->order, flag, init) : fft::coreInit32(core, p->order, flag, init);
    if (const std::int32_t code = codeFromStatus(st)) return code;
    al->spec->take(fft::coreSizes(dbl, p->order).spec);
    // The split forms share every table with the interleaved core.
    if (p->elem == Elem::C32f) core->id = fft::kCore32f;
    if (p->elem == Elem::C64f) core->id = fft::kCore64f;
    b->kind = bindingKind(p->elem);
    b->pow2Core = core;
    bindEntries(b, p->elem);
    p->binding = b;
    p->method = self;
    p->computeForward = &coreCompute<false>;
    p->computeInverse = &coreCompute<true>;
    p->commitState = kCommitted;
    return kOk;
}

void noRelease(const Method*, Plan*) {}

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

const Method kCoreMethod{&coreCommit, &noRelease};
const Method kTiledMethod{&tiledCommit, &noRelease};
const Method* const kMethodsTiledFirst[] = {&kTiledMethod, &kCoreMethod, nullptr};
const Method* const kMethodsCore[] = {&kCoreMethod, nullptr};

// ------------------------------------------------------------ plan create

// Lays the plan (building) or fills the caller's stack copy (counting).
// Returns the plan, or null when the arena cannot hold it.
Plan* create(Plan* stackPlan, SpecObject* obj, Allocator* al, Elem e, int order, ZetHint hint,
             std::int64_t* countStore = nullptr) {
    Plan* p = stackPlan;
    void* block = al->spec->take(kPlanBytes);
    if (al->mode == kBuilding) {
        std::memset(static_cast<unsigned char*>(block) + sizeof(SpecObject), 0, kPlanBytes - sizeof(SpecObject));
        p = reinterpret_cast<Plan*>(static_cast<unsigned char*>(block) + sizeof(SpecObject));
        obj->plan = p;
    } else {
        std::memset(p, 0, sizeof(Plan));
    }
    auto* dims = static_cast<std::int64_t*>(al->spec->take(24));
    auto* batch = static_cast<std::int64_t*>(al->spec->take(24));
    if (al->mode == kBuilding && (!dims || !batch)) {
        planDestroy(p);
        return nullptr;
    }
    // A counting plan keeps its triples in the caller's stack.
    if (al->mode == kCounting) { dims = countStore; batch = countStore + 3; }
    const std::int64_t n = std::int64_t{1} << order;
    dims[0] = n; dims[1] = 1; dims[2] = 1;
    batch[0] = 1; batch[1] = 0; batch[2] = 0;
    p->dims = dims;
    p->batch = batch;
    p->rank = 1;
    p->batchRank = 1;
    p->allocator = al;
    p->precision = isDouble(e) ? kDouble : kSingle;
    p->domain = (e == Elem::R32f || e == Elem::R64f) ? kReal : kComplex;
    p->release = &planRelease;
    p->destroy = &planDestroy;
    p->threadHooks = &gHooks;
    if (!gHooks.grain) gHooks.grain = &threadGrain;
    p->storage = kInterleaved; p->attr1 = kSplit; p->attr2 = 40; p->placement = kInPlace;
    p->attr3[0] = kCCS; p->attr3[1] = 51; p->attr3[2] = 48; p->attr3[3] = 53;
    p->commitState = kUncommitted;
    p->magic = kMagic;
    p->threads = 1;
    p->fwdScale = p->invScale = 1.0;
    p->hint = hint;
    p->elem = e;
    p->order = order;
    p->methods = e == Elem::C32fc ? kMethodsTiledFirst : kMethodsCore;
    // The persistent allocator record sits in the object's own memory.
    auto* rec = static_cast<unsigned char*>(al->spec->take(192));
    if (al->mode == kBuilding) {
        if (!rec) {
            p->allocator = nullptr;
        } else {
            auto* copy = reinterpret_cast<Allocator*>(rec);
            auto* specCopy = reinterpret_cast<Arena*>(rec + 64);
            auto* initCopy = reinterpret_cast<Arena*>(rec + 128);
            *specCopy = *al->spec;
            *initCopy = *al->init;
            *copy = Allocator{specCopy, initCopy, al->work, al->mode};
            p->allocator = copy;
        }
    }
    return p;
}

std::int32_t commit(Plan* p) {
    p->commitRank = p->rank;
    for (int i = 0; i < 3; ++i) { p->commitDims[i] = p->dims[i]; p->commitBatch[i] = p->batch[i]; }
    p->fwdScale32 = static_cast<float>(p->fwdScale);
    p->invScale32 = static_cast<float>(p->invScale);
    p->threads = 1;
    std::int32_t last = kOk;
    for (const Method* const* m = p->methods; *m; ++m) {
        last = (*m)->commit(*m, p);
        if (last == kOk) return kOk;
    }
    return last == kDeclined ? kNullArg : last;
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

bool validFlag(int flag) {
    const unsigned f = static_cast<unsigned>(flag) - 1u;
    return f <= 7u && ((139u >> f) & 1u);
}

void placeholderScales(Plan* p, int flag) {
    p->fwdScale = (flag == ZET_SCALE_FWD || flag == ZET_SCALE_SYM) ? 0.5 : 1.0;
    p->invScale = (flag == ZET_SCALE_INV || flag == ZET_SCALE_SYM) ? 0.5 : 1.0;
}

void realScales(Plan* p, int flag, int order) {
    const double n = static_cast<double>(static_cast<std::int32_t>(std::int64_t{1} << order));
    p->fwdScale = p->invScale = 1.0;
    if (flag == ZET_SCALE_FWD) p->fwdScale = 1.0 / n;
    if (flag == ZET_SCALE_INV) p->invScale = 1.0 / n;
    if (flag == ZET_SCALE_SYM) p->fwdScale = p->invScale = 1.0 / std::sqrt(n);
}

ZetStatus getSize(Elem e, int order, int flag, ZetHint hint, int* pSpec, int* pInit, int* pWork) {
    if (order > 30 || order < 0) return zetStsFFTOrderErr;
    if (!pSpec || !pInit || !pWork) return zetStsNullPtrErr;
    if (order > getSizeLimit(e)) return zetStsFFTOrderErr;
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    const std::int64_t n = std::int64_t{1} << order;
    if (order <= 10) {
        const bool dbl = isDouble(e);
        *pSpec = static_cast<int>((dbl ? 18 : 16) * n + 2048);
        *pInit = 0;
        *pWork = order < 7 ? 0 : static_cast<int>((dbl ? 16 : 8) * n + 128);
        return zetStsOk;
    }
    Arena spec{0, 0}, init{0, 0}, work{0, 0};
    Allocator al{&spec, &init, &work, kCounting};
    Plan stack;
    std::int64_t triples[6];
    Plan* p = create(&stack, nullptr, &al, e, order, hint, triples);
    placeholderScales(p, flag);
    const std::int32_t code = commit(p);
    if (code != kOk) {
        *pSpec = 64; *pInit = 0; *pWork = 64;
        return statusFromCode(code);
    }
    *pSpec = static_cast<int>(spec.cursor + 64);
    *pInit = static_cast<int>(init.cursor);
    *pWork = static_cast<int>(work.cursor + 64);
    return zetStsOk;
}

template <class SpecT>
ZetStatus init(Elem e, SpecT** ppSpec, int order, int flag, ZetHint hint, Zet8u* specBuf, Zet8u* initBuf) {
    if (!ppSpec) return zetStsNullPtrErr;
    if (order > initLimit(e) || order < 0) return zetStsFFTOrderErr;
    if (!specBuf) return zetStsNullPtrErr;
    auto* obj = reinterpret_cast<SpecObject*>((reinterpret_cast<std::uintptr_t>(specBuf) + 63) & ~std::uintptr_t{63});
    obj->word = static_cast<std::uint32_t>(e);
    obj->plan = nullptr;
    Arena spec{0, static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(obj))};
    Arena ini{0, static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(initBuf))};
    Arena work{0, 0};
    Allocator al{&spec, &ini, &work, kBuilding};
    Plan* p = create(nullptr, obj, &al, e, order, hint);
    if (!p) return statusFromCode(kNoMemory);
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    if (isSplit(e)) p->storage = kSplit;
    p->placement = kInPlace;
    realScales(p, flag, order);
    const std::int32_t code = commit(p);
    *ppSpec = reinterpret_cast<SpecT*>(obj);
    return statusFromCode(code);
}

// Compute routing: the binding's direct entry when its kind matches, else
// the plan's entry, which insists on a work pointer.
template <bool Inv, class... Data>
ZetStatus viaBinding(const SpecObject* obj, std::int32_t kind, Zet8u* work, const void* src, void* dst, Data... split) {
    const Plan* p = obj->plan;
    const auto* b = static_cast<const Binding*>(p->binding);
    if (b && b->kind == kind) {
        using Fn = ZetStatus (*)(Data..., const FFTCore*, Zet8u*);
        if constexpr (sizeof...(Data) == 0) {
            using F2 = ZetStatus (*)(const void*, void*, const FFTCore*, Zet8u*);
            return reinterpret_cast<F2>(b->entries[Inv ? 1 : 0])(src, dst, static_cast<const FFTCore*>(b->pow2Core), work);
        } else {
            return reinterpret_cast<Fn>(b->entries[Inv ? 1 : 0])(split..., static_cast<const FFTCore*>(b->pow2Core), work);
        }
    }
    if (!work) return zetStsNullPtrErr;
    const Compute c = Inv ? p->computeInverse : p->computeForward;
    if (!c) return zetStsUnsupportedErr;
    return statusFromCode(c(p, src, dst, 0, 0, work));
}

const SpecObject* objOf(const void* spec) { return static_cast<const SpecObject*>(spec); }

template <bool Inv, class T>
ZetStatus complexCall(Elem e, const T* src, T* dst, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    if (!src || !dst) return zetStsNullPtrErr;
    return viaBinding<Inv>(objOf(spec), bindingKind(e), work, src, dst);
}
template <bool Inv, class T>
ZetStatus complexInPlace(Elem e, T* sd, const void* spec, Zet8u* work) {
    if (!sd || !spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    return viaBinding<Inv>(objOf(spec), bindingKind(e), work, sd, sd);
}
template <bool Inv, class T>
ZetStatus splitCall(Elem e, const T* sr, const T* si, T* dr, T* di, const void* spec, Zet8u* work) {
    if (!spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    if (!sr || !si || !dr || !di) return zetStsNullPtrErr;
    return viaBinding<Inv>(objOf(spec), bindingKind(e), work, nullptr, nullptr, sr, si, dr, di);
}
template <bool Inv, class T>
ZetStatus splitInPlace(Elem e, T* re, T* im, const void* spec, Zet8u* work) {
    if (!re || !im || !spec) return zetStsNullPtrErr;
    if (objOf(spec)->word != static_cast<std::uint32_t>(e)) return zetStsSpecMismatchErr;
    return viaBinding<Inv>(objOf(spec), bindingKind(e), work, nullptr, nullptr,
                           static_cast<const T*>(re), static_cast<const T*>(im), re, im);
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

ZetStatus zetsFFTInit_C_32fc(ZetsFFTSpec_C_32fc** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C32fc, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_C_32f(ZetsFFTSpec_C_32f** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C32f, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_C_64fc(ZetsFFTSpec_C_64fc** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C64fc, pp, o, f, h, s, i); }
ZetStatus zetsFFTInit_C_64f(ZetsFFTSpec_C_64f** pp, int o, int f, ZetHint h, Zet8u* s, Zet8u* i) { return zp::init(Elem::C64f, pp, o, f, h, s, i); }

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

}  // extern "C"
