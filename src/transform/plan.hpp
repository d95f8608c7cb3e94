// The object layer of every Fourier operation: a transform object wraps a plan
// whose candidate methods accept or decline at commit; the one that accepts
// binds a core and its direct entries. One routine lays the objects both for
// counting sizes (arenas without a base) and for building them.
#pragma once

#include <cmath>
#include <cstdint>

#include "zetsp.h"

namespace zet::plan {

// Attribute codes.
enum : std::int32_t {
    kCommitted = 30, kUncommitted = 31,
    kComplex = 32, kReal = 33,
    kSingle = 35, kDouble = 36,
    kInterleaved = 39, kSplit = 42,
    kInPlace = 43, kOutOfPlace = 44,
    kCCS = 54, kPack = 55, kPerm = 56,
};
// Method results.
enum : std::int32_t { kOk = 0, kNoMemory = 1, kNullArg = 3, kFailed = 7, kDeclined = 100 };
constexpr std::uint32_t kMagic = 0x00544644;  // "DFT\0"

struct Arena {
    std::int64_t cursor;
    std::int64_t base;  // 0: the arena only counts
    // Takes `bytes` (rounded to 64); null when only counting.
    void* take(std::int64_t bytes) {
        const std::int64_t at = cursor;
        cursor += (bytes + 63) & ~std::int64_t{63};
        return base ? reinterpret_cast<void*>(base + at) : nullptr;
    }
    void* next() const { return base ? reinterpret_cast<void*>(base + cursor) : nullptr; }
};

struct Allocator {
    Arena* spec;
    Arena* init;
    Arena* work;
    std::int32_t mode;  // 1 counting, 2 building
};
constexpr std::int32_t kCounting = 1, kBuilding = 2;

struct Plan;
struct Binding;
struct Method {
    std::int32_t (*commit)(const Method*, Plan*);
    void (*release)(const Method*, Plan*);
};
using Compute = std::int32_t (*)(const Plan*, const void* src, void* dst, std::int32_t fmt, std::int32_t, Zet8u* work);

// The element types, by identifying word of their FFT transform object.
enum class Elem : std::int32_t { C32fc = 5, C32f = 6, R32f = 7, C64fc = 8, C64f = 9, R64f = 10 };

struct Plan {
    Compute computeForward, computeInverse;
    const Method* method;
    void* binding;
    Allocator* allocator;
    const Method* const* methods;
    std::int32_t placementClass;
    std::int32_t flags;
    std::uint32_t magic;
    std::int32_t commitState;
    std::int32_t rank;
    std::int64_t* dims;
    std::int32_t batchRank;
    std::int64_t* batch;
    void (*release)(Plan*);
    void (*destroy)(Plan*);
    const void* ops;
    const void* threadHooks;
    std::int32_t precision, domain;
    std::int32_t storage, attr1, attr2, placement;
    std::int32_t attr3[4];
    double fwdScale, invScale;
    float fwdScale32, invScale32;
    std::int32_t hint;
    std::int32_t threads;
    // Copies taken at commit.
    std::int32_t commitRank;
    std::int64_t commitDims[3];
    std::int64_t commitBatch[3];
    // What the methods build from.
    Elem elem;
    std::int32_t order;  // power-of-two families
    std::int64_t length;
    const struct CoreOps* coreOps;
};

// The transform object: identifying word, the plan pointer, the plan.
struct SpecObject {
    std::uint32_t word;
    std::uint32_t pad;
    Plan* plan;
};
constexpr std::int64_t kPlanBytes = 832;
static_assert(sizeof(SpecObject) + sizeof(Plan) <= kPlanBytes, "spec object and plan share their block");

// Binding of a core method: its kind, the cores, then entries.
struct Binding {
    std::int32_t kind;
    void* pow2Core;
    void* anyCore;
    void* entries[12];
};

std::int32_t codeFromStatus(ZetStatus s);
ZetStatus statusFromCode(std::int32_t code);

struct CoreBytes { std::int64_t spec, init, work; };

// What the core method of a family builds: its byte counts for a plan and a
// scale flag, and the core itself with the binding's cores and entries.
struct CoreOps {
    ZetStatus (*count)(const Plan* p, int flag, CoreBytes* out);
    ZetStatus (*build)(const Plan* p, int flag, void* core, Zet8u* init, Binding* b);
};

// The core method: binds whatever the plan's CoreOps build.
extern const Method kCoreMethod;

struct PlanSetup {
    Elem elem;
    std::int64_t length;
    std::int32_t order;
    ZetHint hint;
    const Method* const* methods;
    const CoreOps* coreOps;
};

// Lays the plan into the object (building) or fills the caller's stack copy
// (counting; its triples go to `countStore`, six values). Null when the
// arena cannot hold it.
Plan* create(Plan* stackPlan, SpecObject* obj, Allocator* al, const PlanSetup& s, std::int64_t* countStore = nullptr);
std::int32_t commit(Plan* p);

bool isDouble(Elem e);
bool isSplit(Elem e);
std::int32_t bindingKind(Elem e);
// The flag that the (placeholder or real) scale pattern stands for; 0 for none.
int scaleFlag(const Plan* p);
// 1, 2, 4 or 8: `flag - 1` at most 7 with its bit in the mask 139.
bool validFlag(int flag);
void placeholderScales(Plan* p, int flag);
// The factors in double from N as a signed 32-bit value.
void realScales(Plan* p, int flag, std::int64_t n);

// Runs the counting plan of `s` for a scale flag: the arena totals go to
// `out` (zeros on failure); the result is the plan code.
std::int32_t countPlan(const PlanSetup& s, int flag, CoreBytes* out);
// Lays the plan of `s` into the transform object that begins at `mem`, with
// the caller's init scratch; null when the memory cannot hold it.
Plan* createInObject(Zet8u* mem, Zet8u* initBuf, const PlanSetup& s);

// Compute routing of a committed object: the binding's direct entry `at`
// with its core when the binding is of `kind`, else the plan's entry, which
// insists on a work buffer. Split forms pass their four arrays as `split`.
template <bool Inv, class... Split>
ZetStatus callEntry(const SpecObject* obj, std::int32_t kind, int at, std::int32_t fmt, Zet8u* work,
                    const void* src, void* dst, Split... split) {
    const Plan* p = obj->plan;
    const auto* b = static_cast<const Binding*>(p->binding);
    if (b && b->kind == kind) {
        const void* core = b->pow2Core ? b->pow2Core : b->anyCore;
        if constexpr (sizeof...(Split) == 0) {
            using Fn = ZetStatus (*)(const void*, void*, const void*, Zet8u*);
            return reinterpret_cast<Fn>(b->entries[at])(src, dst, core, work);
        } else {
            using Fn = ZetStatus (*)(Split..., const void*, Zet8u*);
            return reinterpret_cast<Fn>(b->entries[at])(split..., core, work);
        }
    }
    if (!work) return zetStsNullPtrErr;
    const Compute c = Inv ? p->computeInverse : p->computeForward;
    if (!c) return zetStsUnsupportedErr;
    return statusFromCode(c(p, src, dst, fmt, 0, work));
}

// The scale fields of a core (scaleForward, scaleInverse, scale32, scale64)
// for a scale flag and a transform of n points: 1/N, single as the float
// quotient, or 1/sqrt(N) rounded once. False for an invalid flag.
template <class Core> bool setCoreScale(Core* c, int flag, std::int64_t n) {
    switch (flag) {
        case ZET_SCALE_FWD: c->scaleForward = 1; break;
        case ZET_SCALE_INV: c->scaleInverse = 1; break;
        case ZET_SCALE_SYM: c->scaleForward = c->scaleInverse = 1; break;
        case ZET_SCALE_NONE: return true;
        default: return false;
    }
    const std::int32_t len = static_cast<std::int32_t>(n);
    if (flag == ZET_SCALE_SYM) {
        c->scale64 = 1.0 / std::sqrt(static_cast<double>(len));
        c->scale32 = static_cast<float>(c->scale64);
    } else {
        c->scale64 = 1.0 / static_cast<double>(len);
        c->scale32 = 1.0f / static_cast<float>(len);
    }
    return true;
}

// The work pointer that a core's kernels get: raised to the next 64-byte
// boundary when the core counts work bytes (a null one is then refused),
// else null.
inline ZetStatus coreWork(std::int32_t workBytes, Zet8u*& work) {
    if (workBytes <= 0) {
        work = nullptr;
        return zetStsOk;
    }
    if (!work) return zetStsNullPtrErr;
    work = reinterpret_cast<Zet8u*>((reinterpret_cast<std::uintptr_t>(work) + 63) & ~std::uintptr_t{63});
    return zetStsOk;
}

// The transform object at the first 64-byte boundary of a caller's buffer.
inline SpecObject* objectAt(const void* buf) {
    return reinterpret_cast<SpecObject*>((reinterpret_cast<std::uintptr_t>(buf) + 63) & ~std::uintptr_t{63});
}

}  // namespace zet::plan
