// The plan layer shared by every Fourier family: status translation, plan
// creation and commit, scale factors, and the core method.
#include <cmath>
#include <cstring>

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

int scaleFlag(const Plan* p) {
    if (p->fwdScale == 1.0) return p->invScale == 1.0 ? ZET_SCALE_NONE : ZET_SCALE_INV;
    if (p->invScale == 1.0) return ZET_SCALE_FWD;
    if (p->fwdScale == p->invScale) return ZET_SCALE_SYM;
    return 0;
}

bool validFlag(int flag) {
    const unsigned f = static_cast<unsigned>(flag) - 1u;
    return f <= 7u && ((139u >> f) & 1u);
}

void placeholderScales(Plan* p, int flag) {
    p->fwdScale = (flag == ZET_SCALE_FWD || flag == ZET_SCALE_SYM) ? 0.5 : 1.0;
    p->invScale = (flag == ZET_SCALE_INV || flag == ZET_SCALE_SYM) ? 0.5 : 1.0;
}

void realScales(Plan* p, int flag, std::int64_t length) {
    const double n = static_cast<double>(static_cast<std::int32_t>(length));
    p->fwdScale = p->invScale = 1.0;
    if (flag == ZET_SCALE_FWD) p->fwdScale = 1.0 / n;
    if (flag == ZET_SCALE_INV) p->invScale = 1.0 / n;
    if (flag == ZET_SCALE_SYM) p->fwdScale = p->invScale = 1.0 / std::sqrt(n);
}

namespace {

// The hook record: one slot, filled at the first plan creation, says how many
// elements a thread should take (never consulted: the library runs one).
using ThreadHook = std::int64_t (*)(std::int32_t);
std::int64_t threadGrain(std::int32_t what) { return what == 1 ? 32768 : 1; }
struct ThreadHooks { ThreadHook grain; };
// Constant-initialised and never written: plans on many threads share it.
constexpr ThreadHooks kHooks{&threadGrain};

void planRelease(Plan* p) {
    p->computeForward = p->computeInverse = nullptr;
    p->flags &= ~1;
}
void planDestroy(Plan* p) { planRelease(p); }

// Plan-path entries of the core method: the binding's entry with the result
// translated to a plan code. Complex bindings hold one pair, real ones one
// pair per spectrum format; the pairs of the arbitrary-length core follow.
template <bool Inv>
std::int32_t coreCompute(const Plan* p, const void* src, void* dst, std::int32_t fmt, std::int32_t, Zet8u* work) {
    const auto* b = static_cast<const Binding*>(p->binding);
    const void* core = b->pow2Core ? b->pow2Core : b->anyCore;
    int at = Inv ? 1 : 0;
    if (p->domain == kReal) {
        if (fmt < kCCS || fmt > kPerm) return codeFromStatus(zetStsSizeErr);
        at += 2 * (fmt - kCCS) + (b->pow2Core ? 0 : 6);
    } else if (!b->pow2Core) {
        at += 2;
    }
    using Fn = ZetStatus (*)(const void*, void*, const void*, Zet8u*);
    return codeFromStatus(reinterpret_cast<Fn>(b->entries[at])(src, dst, core, work));
}

std::int32_t coreCommit(const Method* self, Plan* p) {
    Allocator* al = p->allocator;
    const int flag = scaleFlag(p);
    const std::int64_t bindingBytes = p->domain == kReal ? 128 : 64;
    CoreBytes s{};
    if (al->mode == kCounting) {
        if (const ZetStatus st = p->coreOps->count(p, flag, &s)) return codeFromStatus(st);
        al->spec->take(bindingBytes);
        al->spec->take(s.spec);
        al->init->take(s.init);
        al->work->take(s.work);
        return kOk;
    }
    auto* b = static_cast<Binding*>(al->spec->take(bindingBytes));
    void* core = al->spec->next();
    Zet8u* init = reinterpret_cast<Zet8u*>(al->init->base);
    if (!b) return kNullArg;
    std::memset(b, 0, static_cast<std::size_t>(bindingBytes));
    b->kind = bindingKind(p->elem);
    if (const std::int32_t code = codeFromStatus(p->coreOps->build(p, flag, core, init, b))) return code;
    p->coreOps->count(p, flag, &s);
    al->spec->take(s.spec);
    p->binding = b;
    p->method = self;
    p->computeForward = &coreCompute<false>;
    p->computeInverse = &coreCompute<true>;
    p->commitState = kCommitted;
    return kOk;
}

void noRelease(const Method*, Plan*) {}

}  // namespace

const Method kCoreMethod{&coreCommit, &noRelease};

Plan* create(Plan* stackPlan, SpecObject* obj, Allocator* al, const PlanSetup& s, std::int64_t* countStore) {
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
    dims[0] = s.length; dims[1] = 1; dims[2] = 1;
    batch[0] = 1; batch[1] = 0; batch[2] = 0;
    p->dims = dims;
    p->batch = batch;
    p->rank = 1;
    p->batchRank = 1;
    p->allocator = al;
    p->precision = isDouble(s.elem) ? kDouble : kSingle;
    p->domain = (s.elem == Elem::R32f || s.elem == Elem::R64f) ? kReal : kComplex;
    p->release = &planRelease;
    p->destroy = &planDestroy;
    p->threadHooks = &kHooks;
    p->storage = kInterleaved; p->attr1 = kSplit; p->attr2 = 40; p->placement = kInPlace;
    p->attr3[0] = kCCS; p->attr3[1] = 51; p->attr3[2] = 48; p->attr3[3] = 53;
    p->commitState = kUncommitted;
    p->magic = kMagic;
    p->threads = 1;
    p->fwdScale = p->invScale = 1.0;
    p->hint = s.hint;
    p->elem = s.elem;
    p->order = s.order;
    p->length = s.length;
    p->coreOps = s.coreOps;
    p->methods = s.methods;
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

std::int32_t countPlan(const PlanSetup& s, int flag, CoreBytes* out) {
    Arena spec{0, 0}, init{0, 0}, work{0, 0};
    Allocator al{&spec, &init, &work, kCounting};
    Plan stack;
    std::int64_t triples[6];
    Plan* p = create(&stack, nullptr, &al, s, triples);
    placeholderScales(p, flag);
    const std::int32_t code = commit(p);
    *out = code == kOk ? CoreBytes{spec.cursor, init.cursor, work.cursor} : CoreBytes{0, 0, 0};
    return code;
}

Plan* createInObject(Zet8u* mem, Zet8u* initBuf, const PlanSetup& s) {
    if (!mem) return nullptr;
    Arena spec{0, static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(mem))};
    Arena init{0, static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(initBuf))};
    Arena work{0, 0};
    Allocator al{&spec, &init, &work, kBuilding};
    Plan* p = create(nullptr, reinterpret_cast<SpecObject*>(mem), &al, s);
    // The persistent record keeps copies of the object and init arenas; the
    // work arena only counts and does not outlive this call.
    if (p && p->allocator) p->allocator->work = nullptr;
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

}  // namespace zet::plan
