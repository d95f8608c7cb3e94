// The power-of-two complex transform core: its record, its sizes, its Init
// and its compute entries. The plan layer binds these; the real transform and
// the convolutions reach them through the same entries.
#pragma once

#include <cstdint>

#include "zetsp.h"

namespace zet::fft {

constexpr std::int64_t align64(std::int64_t x) { return (x + 63) & ~std::int64_t{63}; }

// Core identifiers.
enum : std::int32_t { kCore32fc = 4, kCore32f = 5, kCoreR32f = 6, kCore64fc = 7, kCore64f = 8, kCoreR64f = 9 };

// Deepest recursion of the large form: order 28 splits twice.
constexpr int kMaxLevels = 4;

struct FFTCore {
    std::int32_t id;
    std::int32_t order;
    std::int32_t scaleForward;
    std::int32_t scaleInverse;
    float scale32;  // the factor, in the core's precision
    std::int32_t pad0;
    double scale64;
    std::int32_t hint;
    std::int32_t workBytes;
    std::int32_t reserved;
    std::int32_t pad1;
    // Large form: pass table of the leaf, tile tables (real cores), and per
    // level the column-pass tables (A: one row of lane roots per column of
    // the level, B: the coarse roots per column group).
    void* leafTwiddles;
    void* tileTwiddles[2];
    void* levelTwiddles[kMaxLevels];
    void* levelCoarse[kMaxLevels];
    std::int32_t* bitReverse;
    void* twiddles;
    void* recombine[2];
};
static_assert(sizeof(FFTCore) <= 208, "the core's fixed part must fit its small-order size");

struct CoreSizes { std::int64_t spec, init, work; };

// Byte counts of a core of this precision and order (the core's own, before
// the plan adds its records and slack).
CoreSizes coreSizes(bool dbl, int order);

// Lays a core into `mem` (64-byte aligned, coreSizes().transform object bytes). `flag`
// is a scale flag; an invalid one writes id 0 and gives zetStsFFTFlagErr.
// `initBuf` is the scratch for orders above 10 (else may be null).
ZetStatus coreInit32(FFTCore* core, int order, int flag, Zet8u* initBuf);
ZetStatus coreInit64(FFTCore* core, int order, int flag, Zet8u* initBuf);

// Compute entries, with the core's own checks. Interleaved forms take
// (src, dst); split forms (srcRe, srcIm, dstRe, dstIm).
ZetStatus fwd32fc(const Zet32fc* src, Zet32fc* dst, const FFTCore* core, Zet8u* work);
ZetStatus inv32fc(const Zet32fc* src, Zet32fc* dst, const FFTCore* core, Zet8u* work);
ZetStatus fwd32f(const Zet32f* sre, const Zet32f* sim, Zet32f* dre, Zet32f* dim, const FFTCore* core, Zet8u* work);
ZetStatus inv32f(const Zet32f* sre, const Zet32f* sim, Zet32f* dre, Zet32f* dim, const FFTCore* core, Zet8u* work);
ZetStatus fwd64fc(const Zet64fc* src, Zet64fc* dst, const FFTCore* core, Zet8u* work);
ZetStatus inv64fc(const Zet64fc* src, Zet64fc* dst, const FFTCore* core, Zet8u* work);
ZetStatus fwd64f(const Zet64f* sre, const Zet64f* sim, Zet64f* dre, Zet64f* dim, const FFTCore* core, Zet8u* work);
ZetStatus inv64f(const Zet64f* sre, const Zet64f* sim, Zet64f* dre, Zet64f* dim, const FFTCore* core, Zet8u* work);

// Pieces of a core for the real transforms, which hold the complex tables of
// half their length: the fixed part with the scale of length `n` (id 0 and
// zetStsFFTFlagErr for a bad flag); the tables of `order` behind the fixed
// part from a sine table covering it; the transform of `order` on those
// tables, unchecked, scaled by `scale` when `scaled`.
ZetStatus coreHeader(FFTCore* c, int order, int flag, std::int64_t n, std::int32_t id);
// The compute entries' checks of a core in their order: core, id, work size
// (none needed up to order `noWorkTo`), data, work pointer; `work` comes back
// raised to 64 bytes, or null when the core needs none.
ZetStatus coreChecks(const FFTCore* c, std::int32_t id, int noWorkTo, bool dataNull, Zet8u*& work);
template <class T> struct Sine;
template <class T> void coreTables(FFTCore* c, int order, const Sine<T>& sine);
// The sine table of `order`: the static one up to order 10, else built into
// the init scratch (zetStsNullPtrErr without one).
template <class T> ZetStatus sineFor(int order, Zet8u* initBuf, Sine<T>& sine);
template <class T, bool Inv>
void complexPass(const FFTCore* c, int order, const T* src, T* dst, T* work, bool scaled, T scale);

// The real transform of 2^order samples (ids 6 and 9). Its entries, in the
// binding's order: forward CCS, inverse CCS, forward Pack, inverse Pack,
// forward Perm, inverse Perm; each takes (src, dst, core, work).
struct RealEntries { void* entry[6]; };
CoreSizes realCoreSizes(bool dbl, int order);
ZetStatus realCoreInit32(FFTCore* c, int order, int flag, Zet8u* initBuf);
ZetStatus realCoreInit64(FFTCore* c, int order, int flag, Zet8u* initBuf);
const RealEntries& realEntries(bool dbl);

// The tiled single-precision method for 128..2048 points without scaling.
struct TiledPlan;
std::int64_t tiledSpecBytes(int order);  // its object (128 bytes) and table
void tiledBuild(TiledPlan* plan, int order, float* table);
ZetStatus tiledFwd(const TiledPlan* plan, const Zet32fc* src, Zet32fc* dst);
ZetStatus tiledInv(const TiledPlan* plan, const Zet32fc* src, Zet32fc* dst);

}  // namespace zet::fft
