// The arbitrary-length transform core: its record, its byte counts, its Init
// and its compute entries. One core serves every length from 1 up; Init
// fixes one of five ways for the length (unrolled codelets to 16 points, the
// power-of-two FFT, mixed radix, a direct symmetric-pair sum, the chirp
// convolution). The plan layer binds the entries; other transforms that
// need any length reach the same core.
#pragma once

#include <cstdint>

#include "zetsp.h"

namespace zet::dft {

// Core identifiers.
enum : std::int32_t { kCore32fc = 13, kCore32f = 14, kCoreR32f = 15, kCore64fc = 16, kCore64f = 17, kCoreR64f = 18 };

// Lengths that are not powers of two stop here: single, double.
constexpr std::int64_t kLimit32 = 0x7FFFFFF, kLimit64 = 0x3FFFFFF;
// The chirp way takes lengths up to this.
constexpr std::int64_t kChirpLimit = 0x3FFFFFF;
// Bytes of the core record; its tables follow.
constexpr std::int64_t kCoreBytes = 896;

// One record of the factorisation: `rest` is the length divided by the
// radices up to this one, `stride` the product of the earlier ones, `count`
// the sub-transforms of this level inside one sweep. The last record's
// `rest` is the leaf radix: it stands for two levels.
struct FactorStage {
    std::int32_t radix, rest, stride, count;
    void* table;     // roots of a generic radix
    void* twiddles;  // the level's twiddles
};
constexpr int kMaxStages = 20;

enum class Way : std::int32_t { Codelet = 1, Pow2, Mixed, Direct, Chirp, RealHalf, RealFull };

struct DFTCore {
    std::int32_t id;
    std::int32_t length;
    std::int32_t scaleForward, scaleInverse;
    float scale32;
    std::int32_t pad0;
    double scale64;
    std::int32_t hint;
    std::int32_t workBytes;
    std::int32_t isPowerOfTwo;
    std::int32_t preserve;
    std::int32_t chirpLength;
    Way way;
    void* directTable;
    void* chirp;
    void* chirpSpectrum;
    void* fftCore;
    DFTCore* inner;  // chirp: the core of its convolution length; real: the complex core
    void* recombine[2];
    std::int32_t mixed;
    std::int32_t lastStage;
    FactorStage stages[kMaxStages];
};
static_assert(sizeof(DFTCore) <= kCoreBytes, "the core record must fit its size");

struct Sizes { std::int64_t spec, init, work; };

// Byte counts of a core of `n` points: zetStsSizeErr when no way takes the
// length, zetStsFFTOrderErr for a power of two beyond the FFT.
ZetStatus coreSizes(bool dbl, bool real, std::int64_t n, Sizes* out);

// Lays a core into `mem` (64-byte aligned, coreSizes().spec bytes). `split`
// selects the split-array complex form. An invalid flag writes id 0 and gives
// zetStsFFTFlagErr; `initBuf` is the scratch of coreSizes().init bytes.
ZetStatus coreInit(DFTCore* c, bool dbl, bool real, bool split, int n, int flag, Zet8u* initBuf);

// Compute entries, each with the core's own checks. Complex: forward,
// inverse, as (src, dst, core, work) or (srcRe, srcIm, dstRe, dstIm, core,
// work). Real: forward CCS, inverse CCS, forward Pack, inverse Pack, forward
// Perm, inverse Perm, each (src, dst, core, work).
struct Entries { void* entry[6]; };
const Entries& complexEntries(bool dbl, bool split);
const Entries& realEntries(bool dbl);

}  // namespace zet::dft
