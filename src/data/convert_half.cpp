// Half-precision conversions: zetsConvert_16f32f and zetsConvert_32f16f.
//
// The array loops run two registers (16 elements) a round, then one, then the
// last 1..7 elements through the same register operation on a zero-padded
// copy, so a tail element gets exactly the bits a full register gives it.
#include <cstring>

#include "data/half.hpp"
#include "frame/checks.hpp"
#include "zetcore.h"

namespace zet::half {
namespace {

__m128i load8(const Zet16f* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void store8(Zet16f* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

template <class Route, int Mode>
void narrowLoop(const float* s, Zet16f* d, long long n) {
    for (; n >= 16; n -= 16, s += 16, d += 16) {
        const __m128i a = Route::template narrow<Mode>(_mm256_loadu_ps(s));
        const __m128i b = Route::template narrow<Mode>(_mm256_loadu_ps(s + 8));
        store8(d, a);
        store8(d + 8, b);
    }
    for (; n >= 8; n -= 8, s += 8, d += 8) store8(d, Route::template narrow<Mode>(_mm256_loadu_ps(s)));
    if (n > 0) {
        float in[8] = {};
        Zet16f out[8];
        std::memcpy(in, s, static_cast<std::size_t>(n) * sizeof(float));
        store8(out, Route::template narrow<Mode>(_mm256_loadu_ps(in)));
        std::memcpy(d, out, static_cast<std::size_t>(n) * sizeof(Zet16f));
    }
}

// The bits of the control word that the software route of mode 1 clears:
// flush-to-zero and the rounding field.
constexpr unsigned kFtzAndRounding = 0xE000;

}  // namespace

template <class Route>
void widenWith(const Zet16f* s, float* d, long long n) {
    for (; n >= 16; n -= 16, s += 16, d += 16) {
        const __m256 a = Route::widen(load8(s));
        const __m256 b = Route::widen(load8(s + 8));
        _mm256_storeu_ps(d, a);
        _mm256_storeu_ps(d + 8, b);
    }
    for (; n >= 8; n -= 8, s += 8, d += 8) _mm256_storeu_ps(d, Route::widen(load8(s)));
    if (n > 0) {
        Zet16f in[8] = {};
        float out[8];
        std::memcpy(in, s, static_cast<std::size_t>(n) * sizeof(Zet16f));
        _mm256_storeu_ps(out, Route::widen(load8(in)));
        std::memcpy(d, out, static_cast<std::size_t>(n) * sizeof(float));
    }
}

template <class Route>
void narrowWith(const float* s, Zet16f* d, long long n, int mode) {
    if (mode == kTowardZero) narrowLoop<Route, kTowardZero>(s, d, n);
    else narrowLoop<Route, kNearestEven>(s, d, n);
}

template void widenWith<Hw>(const Zet16f*, float*, long long);
template void widenWith<Sw>(const Zet16f*, float*, long long);
template void narrowWith<Hw>(const float*, Zet16f*, long long, int);
template void narrowWith<Sw>(const float*, Zet16f*, long long, int);

bool hardware() { return ownGetFeature(ZET_FEATURE_F16C) != 0; }

void widen(const Zet16f* s, float* d, long long n) {
    if (hardware()) widenWith<Hw>(s, d, n);
    else widenWith<Sw>(s, d, n);
}

void narrow(const float* s, Zet16f* d, long long n, int mode) {
    if (hardware()) {
        narrowWith<Hw>(s, d, n, mode);
        return;
    }
    const unsigned saved = _mm_getcsr();
    const bool clear = mode == kNearestEven && (saved & kFtzAndRounding) != 0;
    if (clear) _mm_setcsr(saved & ~kFtzAndRounding);
    narrowWith<Sw>(s, d, n, mode);
    // Only these bits go back: the exception flags stay as the kernel left them.
    if (clear) _mm_setcsr((_mm_getcsr() & ~kFtzAndRounding) | (saved & kFtzAndRounding));
}

ZetStatus convert16f32f(const Zet16f* s, float* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    widen(s, d, len);
    return zetStsOk;
}

// Ties away from zero (mode 2) and anything else but 0 and 1 are refused.
ZetStatus convert32f16f(const float* s, Zet16f* d, int len, ZetRoundMode mode) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (mode != kTowardZero && mode != kNearestEven) return zetStsRoundModeValueErr;
    narrow(s, d, len, mode);
    return zetStsOk;
}

}  // namespace zet::half

ZetStatus zetsConvert_16f32f(const Zet16f* pSrc, Zet32f* pDst, int len) { return zet::half::convert16f32f(pSrc, pDst, len); }
ZetStatus zetsConvert_32f16f(const Zet32f* pSrc, Zet16f* pDst, int len, ZetRoundMode rndMode) {
    return zet::half::convert32f16f(pSrc, pDst, len, rndMode);
}
