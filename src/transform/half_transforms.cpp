// Half-precision (Zet16fc) transforms: the power-of-two FFT over the
// single-precision one, and the direct DFT for a fixed list of lengths.
//
// The FFT widens the data into the work buffer behind the inner transform's
// own work area, runs zetsFFT*_CToC_32fc_I there and rounds back to nearest
// even. Its Init is the one operation of the library that leaves the thread's
// floating-point control state changed (flush-to-zero, denormals-are-zero).
#include <cmath>
#include <cstdint>

#include "data/half.hpp"
#include "frame/simd.hpp"
#include "zetcore.h"

namespace zet::halfxf {
namespace {

// ---- FFT -----------------------------------------------------------------------

// The object lies at the start of the caller's buffer, 20 bytes with no
// padding (the 20 that GetSize adds); the inner C_32fc object is built in the
// rest of the buffer, from byte 20 on, at its own 64-byte boundary. (Building
// it from byte 16 would let an inner object that starts at byte 16 -- a
// buffer 48 bytes past a 64-byte boundary -- be overwritten by dataBytes.)
struct [[gnu::packed]] FFTSpec16 {
    std::uint32_t word;             // 4
    ZetsFFTSpec_C_32fc* inner;
    std::uint32_t dataBytes;        // 8 << order: the data as single-precision complex values
    std::uint32_t dataOffset;       // the inner work size: where the data go in the work buffer
};
static_assert(sizeof(FFTSpec16) == 20, "the object-size addend of GetSize");
constexpr std::uint32_t kFFTWord = 4;
constexpr std::int64_t kSizeLimit = 2147483487;  // zetStsLengthLimitErr above

// One of 1, 2, 4, 8: at most 8 with its bit in the mask 278.
bool validFlag(int flag) {
    const unsigned f = static_cast<unsigned>(flag);
    return f <= 8u && ((278u >> f) & 1u);
}

ZetStatus fftGetSize(int order, int flag, ZetHint hint, int* pSpec, int* pInit, int* pWork) {
    if (!pSpec || !pInit) return zetStsNullPtrErr;
    if (!pWork) return zetStsNullPtrErr;
    if (order >= 31) return zetStsFFTOrderErr;
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    int spec = 0, init = 0, work = 0;
    if (const ZetStatus st = zetsFFTGetSize_C_32fc(order, flag, hint, &spec, &init, &work)) return st;
    // The data copy of order 27 and 28 takes the work size past what an int holds.
    const std::int64_t spec16 = std::int64_t{spec} + static_cast<std::int64_t>(sizeof(FFTSpec16));
    const std::int64_t work16 = std::int64_t{work} + (std::int64_t{8} << order);
    if (spec16 > kSizeLimit || work16 > kSizeLimit) return zetStsLengthLimitErr;
    *pSpec = static_cast<int>(spec16);
    *pInit = init;
    *pWork = static_cast<int>(work16);
    return zetStsOk;
}

ZetStatus fftInit(ZetsFFTSpec_C_16fc** ppSpec, int order, int flag, ZetHint hint, Zet8u* buf, Zet8u* initBuf) {
    if (!ppSpec || !buf) return zetStsNullPtrErr;
    if (order > 30) return zetStsFFTOrderErr;
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    // For good, on the calling thread, whatever follows.
    zetSetFlushToZero(1, nullptr);
    zetSetDenormAreZeros(1);
    ZetsFFTSpec_C_32fc* inner = nullptr;
    if (const ZetStatus st = zetsFFTInit_C_32fc(&inner, order, flag, hint, buf + sizeof(FFTSpec16), initBuf)) return st;
    int spec = 0, init = 0, work = 0;
    if (const ZetStatus st = zetsFFTGetSize_C_32fc(order, flag, hint, &spec, &init, &work)) return st;
    auto* s = reinterpret_cast<FFTSpec16*>(buf);
    s->word = kFFTWord;
    s->inner = inner;
    s->dataBytes = std::uint32_t{8} << order;
    s->dataOffset = static_cast<std::uint32_t>(work);
    *ppSpec = reinterpret_cast<ZetsFFTSpec_C_16fc*>(buf);
    return zetStsOk;
}

template <bool Inv>
ZetStatus fft(const Zet16fc* src, Zet16fc* dst, const ZetsFFTSpec_C_16fc* pSpec, Zet8u* work) {
    if (!pSpec) return zetStsNullPtrErr;
    const auto* s = reinterpret_cast<const FFTSpec16*>(pSpec);
    if (s->word != kFFTWord) return zetStsSpecMismatchErr;
    if (!src || !dst || !work) return zetStsNullPtrErr;
    const long long count = s->dataBytes / 4;  // half values: two per complex value
    auto* area = reinterpret_cast<Zet32fc*>(work + s->dataOffset);
    // All of the source is read before the destination is written: src may be dst.
    half::widen(reinterpret_cast<const Zet16f*>(src), reinterpret_cast<float*>(area), count);
    const ZetStatus st = Inv ? zetsFFTInv_CToC_32fc_I(area, s->inner, work) : zetsFFTFwd_CToC_32fc_I(area, s->inner, work);
    // Converted back whatever the status: the destination holds what came out.
    half::narrow(reinterpret_cast<const float*>(area), reinterpret_cast<Zet16f*>(dst), count, half::kNearestEven);
    return st;
}

// ---- DFT ---------------------------------------------------------------------------

// The object: 28 bytes of fields at the start of the caller's buffer, the
// inner C_32fc object from byte 48 (the 48 that GetSize adds).
struct [[gnu::packed]] DFTSpec16 {
    std::uint32_t word;  // 12
    ZetsDFTSpec_C_32fc* inner;
    std::uint32_t dataBytes;  // length << 4: the data as single-precision complex values, twice
    std::uint32_t inOffset;   // the inner work size: where the widened input goes
    std::uint32_t outOffset;  // inOffset + 8 length: where the inner transform writes
    std::int32_t length;
};
constexpr std::uint32_t kDFTWord = 12;
constexpr std::ptrdiff_t kDFTInner = 48;
static_assert(sizeof(DFTSpec16) <= kDFTInner, "the inner object follows the fields");

// The asked-for feature word of the half-precision DFT members; the answer changes nothing.
constexpr unsigned long long kDftFeature = 0x1000000000ULL;

ZetStatus dftGetSize(int length, int flag, ZetHint hint, int* pSpec, int* pInit, int* pWork) {
    if (!pSpec || !pInit || !pWork) return zetStsNullPtrErr;
    if (length < 1) return zetStsSizeErr;
    (void)ownGetFeature(kDftFeature);
    int spec = 0, init = 0, work = 0;
    if (const ZetStatus st = zetsDFTGetSize_C_32fc(length, flag, hint, &spec, &init, &work)) return st;
    const std::int64_t spec16 = std::int64_t{spec} + kDFTInner;
    const std::int64_t work16 = std::int64_t{work} + (std::int64_t{length} << 4);
    if (spec16 > kSizeLimit || work16 > kSizeLimit) return zetStsLengthLimitErr;
    *pSpec = static_cast<int>(spec16);
    *pInit = init;
    *pWork = static_cast<int>(work16);
    return zetStsOk;
}

ZetStatus dftInit(int length, int flag, ZetHint hint, ZetsDFTSpec_C_16fc* pSpec, Zet8u* initBuf) {
    if (!pSpec) return zetStsNullPtrErr;
    if (length < 1) return zetStsSizeErr;
    if (!validFlag(flag)) return zetStsFFTFlagErr;
    auto* buf = reinterpret_cast<Zet8u*>(pSpec);
    auto* inner = reinterpret_cast<ZetsDFTSpec_C_32fc*>(buf + kDFTInner);
    if (const ZetStatus st = zetsDFTInit_C_32fc(length, flag, hint, inner, initBuf)) return st;
    int spec = 0, init = 0, work = 0;
    if (const ZetStatus st = zetsDFTGetSize_C_32fc(length, flag, hint, &spec, &init, &work)) return st;
    auto* s = reinterpret_cast<DFTSpec16*>(buf);
    s->word = kDFTWord;
    s->inner = inner;
    s->dataBytes = static_cast<std::uint32_t>(length) << 4;
    s->inOffset = static_cast<std::uint32_t>(work);
    s->outOffset = s->inOffset + 8u * static_cast<std::uint32_t>(length);
    s->length = length;
    return zetStsOk;
}

// The inner transform runs out of place: the input widens into one area,
// the transform writes a second, which narrows into the destination.
template <bool Inv>
ZetStatus dft(const Zet16fc* src, Zet16fc* dst, const ZetsDFTSpec_C_16fc* pSpec, Zet8u* work) {
    if (!pSpec) return zetStsNullPtrErr;
    const auto* s = reinterpret_cast<const DFTSpec16*>(pSpec);
    if (s->word != kDFTWord) return zetStsSpecMismatchErr;
    if (!src || !dst) return zetStsNullPtrErr;
    (void)ownGetFeature(kDftFeature);
    if (!work) return zetStsNullPtrErr;
    const long long count = s->dataBytes / 8;
    auto* in = reinterpret_cast<Zet32fc*>(work + s->inOffset);
    auto* out = reinterpret_cast<Zet32fc*>(work + s->outOffset);
    half::widen(reinterpret_cast<const Zet16f*>(src), reinterpret_cast<float*>(in), count);
    const ZetStatus st = Inv ? zetsDFTInv_CToC_32fc(in, out, s->inner, work) : zetsDFTFwd_CToC_32fc(in, out, s->inner, work);
    half::narrow(reinterpret_cast<const float*>(out), reinterpret_cast<Zet16f*>(dst), count, half::kNearestEven);
    return st;
}

// ---- direct DFT ------------------------------------------------------------------

constexpr int kDirectLengths[] = {
    4,    8,    12,   16,   24,   32,   36,   48,   60,   64,   72,   96,   108,  120,  128,  144,
    180,  192,  216,  240,  256,  288,  300,  324,  360,  384,  432,  480,  512,  540,  576,  600,
    648,  720,  768,  864,  900,  960,  972,  1024, 1080, 1152, 1200, 1296, 1440, 1500, 1536, 1620,
    1728, 1800, 1920, 1944, 2048, 2160, 2304, 2400, 2592, 2700, 2880, 2916, 3000, 3072, 3240, 4096};
// Every length is a multiple of 4: the sum runs in quads with no remainder.
static_assert([] {
    for (int n : kDirectLengths)
        if (n % 4) return false;
    return true;
}());

bool directLength(int n) {
    for (int v : kDirectLengths)
        if (v == n) return true;
    return false;
}

// tw[2m], tw[2m + 1] = cos, sin of the angle 2 pi m / length, the angle
// formed in double and rounded to single; the sine and cosine of that single
// argument in double, rounded to single.
void twiddles(float* tw, int length) {
    const double step = 6.283185307179586476925286766559 * (1.0 / length);
    for (int m = 0; m < length; ++m) {
        const double arg = static_cast<float>(step * m);
        tw[2 * m] = static_cast<float>(std::cos(arg));
        tw[2 * m + 1] = static_cast<float>(std::sin(arg));
    }
}

// X[k] = sum over n of x[n] (c -+ i s), the angle's index being (k n) mod
// length. Four lanes take the terms n = 0, 1, 2, 3 (mod 4) in order of n; a
// lane adds a term in four fused steps, two per part:
//   re = fma(x.re, c, re), im = fma(x.im, c, im), then
//   re = fma(x.im, +-s, re), im = fma(x.re, -+s, im)   (forward: +s, -s).
// The lanes meet as (l0 + l2) + (l1 + l3). Four results are rounded to half together.
template <class Route, bool Inv>
void directSum(const float* x, const float* tw, Zet16fc* dst, int length) {
    using namespace zet::simd;
    const __m256 sign = Inv ? _mm256_setr_ps(-0.f, 0.f, -0.f, 0.f, -0.f, 0.f, -0.f, 0.f)
                            : _mm256_setr_ps(0.f, -0.f, 0.f, -0.f, 0.f, -0.f, 0.f, -0.f);
    const __m128i top = _mm_set1_epi32(length - 1), wrap = _mm_set1_epi32(length);
    const auto* pairs = reinterpret_cast<const double*>(tw);  // one (cos, sin) pair per 64-bit element
    const __m256d all = _mm256_castsi256_pd(_mm256_set1_epi64x(-1));  // the masked gather: the plain one trips GCC 12's warnings
    for (int k0 = 0; k0 < length; k0 += 4) {
        alignas(32) float out[8];
        for (int j = 0; j < 4; ++j) {
            const int k = k0 + j;
            __m128i idx = _mm_setr_epi32(0, k % length, (2 * k) % length, (3 * k) % length);
            const __m128i step = _mm_set1_epi32((4 * k) % length);
            __m256 acc = _mm256_setzero_ps();
            for (int n = 0; n < length; n += 4) {
                const __m256 w = _mm256_castpd_ps(_mm256_mask_i32gather_pd(_mm256_setzero_pd(), pairs, idx, all, 8));
                const __m256 v = _mm256_loadu_ps(x + 2 * n);
                acc = fma(v, dupRe(w), acc);
                acc = fma(swap(v), _mm256_xor_ps(dupIm(w), sign), acc);
                idx = _mm_add_epi32(idx, step);
                idx = _mm_sub_epi32(idx, _mm_and_si128(_mm_cmpgt_epi32(idx, top), wrap));
            }
            const __m128 t = add(_mm256_castps256_ps128(acc), _mm256_extractf128_ps(acc, 1));
            _mm_storel_pi(reinterpret_cast<__m64*>(out + 2 * j), add(t, _mm_movehl_ps(t, t)));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + k0), Route::template narrow<half::kNearestEven>(_mm256_load_ps(out)));
    }
}

template <bool Inv>
ZetStatus direct(const Zet16fc* src, Zet16fc* dst, int length, Zet8u* work) {
    (void)ownGetFeature(kDftFeature);
    if (!src || !dst) return zetStsNullPtrErr;
    if (!directLength(length)) return zetStsSizeErr;
    if (!work) return zetStsNullPtrErr;
    // The widened input and the twiddles live in the work buffer (16 length
    // bytes past its first 32-byte boundary), not on the caller's stack. The
    // input is widened whole first, so src may be dst.
    auto* x = reinterpret_cast<float*>((reinterpret_cast<std::uintptr_t>(work) + 31) & ~std::uintptr_t{31});
    float* tw = x + 2 * length;
    twiddles(tw, length);
    const auto* h = reinterpret_cast<const Zet16f*>(src);
    if (half::hardware()) {
        half::widenWith<half::Hw>(h, x, 2LL * length);
        directSum<half::Hw, Inv>(x, tw, dst, length);
    } else {
        half::widenWith<half::Sw>(h, x, 2LL * length);
        directSum<half::Sw, Inv>(x, tw, dst, length);
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zet::halfxf

namespace zh = zet::halfxf;

ZetStatus zetsFFTGetSize_C_16fc(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize) {
    return zh::fftGetSize(order, flag, hint, pSpecSize, pInitSize, pWorkSize);
}
ZetStatus zetsFFTInit_C_16fc(ZetsFFTSpec_C_16fc** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer) {
    return zh::fftInit(ppSpec, order, flag, hint, pSpecBuffer, pInitBuffer);
}
ZetStatus zetsFFTFwd_CToC_16fc(const Zet16fc* s, Zet16fc* d, const ZetsFFTSpec_C_16fc* p, Zet8u* w) { return zh::fft<false>(s, d, p, w); }
ZetStatus zetsFFTInv_CToC_16fc(const Zet16fc* s, Zet16fc* d, const ZetsFFTSpec_C_16fc* p, Zet8u* w) { return zh::fft<true>(s, d, p, w); }
ZetStatus zetsDFTGetSize_C_16fc(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize) {
    return zh::dftGetSize(length, flag, hint, pSpecSize, pInitSize, pWorkSize);
}
ZetStatus zetsDFTInit_C_16fc(int length, int flag, ZetHint hint, ZetsDFTSpec_C_16fc* pSpec, Zet8u* pInitBuffer) {
    return zh::dftInit(length, flag, hint, pSpec, pInitBuffer);
}
ZetStatus zetsDFTFwd_CToC_16fc(const Zet16fc* s, Zet16fc* d, const ZetsDFTSpec_C_16fc* p, Zet8u* w) { return zh::dft<false>(s, d, p, w); }
ZetStatus zetsDFTInv_CToC_16fc(const Zet16fc* s, Zet16fc* d, const ZetsDFTSpec_C_16fc* p, Zet8u* w) { return zh::dft<true>(s, d, p, w); }
ZetStatus zetsDFTFwd_Direct_CToC_16fc(const Zet16fc* s, Zet16fc* d, int n, Zet8u* w) { return zh::direct<false>(s, d, n, w); }
ZetStatus zetsDFTInv_Direct_CToC_16fc(const Zet16fc* s, Zet16fc* d, int n, Zet8u* w) { return zh::direct<true>(s, d, n, w); }
