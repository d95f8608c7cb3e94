// Half-precision conversions: zetsConvert_16f32f, zetsConvert_32f16f,
// zetsConvert_16s16f and zetsConvert_16f16s_Sfs.
//
// The register routes (half.hpp) plug into the step loop of the other
// conversions as readers and writers of halves; a 4-element step or a single
// element fills half a register, and the other half repeats it.
#include <algorithm>

#include "data/convert_steps.hpp"
#include "data/half.hpp"
#include "zetcore.h"

namespace zet::half {
namespace {

using conv::u8;

template <class Route>
struct HalfIn {
    static constexpr int kBytes = 2;
    __m256 wide(const u8* p) const { return Route::widen(conv::load16B(p)); }
    __m128 part(const u8* p) const { return _mm256_castps256_ps128(Route::widen(conv::load8B(p))); }
};

template <class Route, int Mode>
struct HalfOut {
    static constexpr int kBytes = 2;
    void wide(u8* p, __m256 v) const { conv::store16B(p, Route::template narrow<Mode>(v)); }
    void part(u8* p, __m128 v) const { conv::store8B(p, Route::template narrow<Mode>(_mm256_set_m128(v, v))); }
};

// The bits of the control word that the software route of mode 1 clears:
// flush-to-zero and the rounding field.
constexpr unsigned kFtzAndRounding = conv::kFlushToZero | conv::kRoundingField;

// Runs body.template operator()<Route, Mode>() on the route the processor
// has. Without the feature, mode 1 runs with flush-to-zero and the rounding
// field cleared, and those bits go back afterwards; the exception flags stay
// as the kernel left them. The instruction route has no need to.
template <class Body>
void onNarrowRoute(int mode, const Body& body) {
    if (hardware()) {
        if (mode == kTowardZero) body.template operator()<Hw, kTowardZero>();
        else body.template operator()<Hw, kNearestEven>();
        return;
    }
    const conv::ControlScope cw(mode == kNearestEven ? kFtzAndRounding : 0u, 0u);
    if (mode == kTowardZero) body.template operator()<Sw, kTowardZero>();
    else body.template operator()<Sw, kNearestEven>();
}

bool halfMode(int mode) { return mode == kTowardZero || mode == kNearestEven; }

// A half times 2^-scale: every nonzero half is at least 2^-24 and below 2^16
// in size, so from -40 down every nonzero result saturates and from 40 up
// every result rounds to 0 (modes 0 and 1); the clamp keeps the factor and
// the products normal numbers, where the product is exact.
float halfFactor(int scale) { return conv::pow2f(-std::clamp(scale, -40, 40)); }

template <class Route, conv::Round R>
void halfToShort(const Zet16f* s, Zet16s* d, i64 n, int scale) {
    const conv::ToInt32<float, R> step(halfFactor(scale), scale != 0, 32767.0);
    conv::run(HalfIn<Route>{}, step, conv::IntOut<Zet16s>{}, s, d, n);
}

}  // namespace

template <class Route>
void widenWith(const Zet16f* s, float* d, long long n) {
    conv::run(HalfIn<Route>{}, conv::Same{}, conv::F32Out{}, s, d, n);
}

template <class Route>
void narrowWith(const float* s, Zet16f* d, long long n, int mode) {
    if (mode == kTowardZero) conv::run(conv::F32In{}, conv::Same{}, HalfOut<Route, kTowardZero>{}, s, d, n);
    else conv::run(conv::F32In{}, conv::Same{}, HalfOut<Route, kNearestEven>{}, s, d, n);
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
    onNarrowRoute(mode, [&]<class Route, int Mode>() { conv::run(conv::F32In{}, conv::Same{}, HalfOut<Route, Mode>{}, s, d, n); });
}

ZetStatus convert16f32f(const Zet16f* s, float* d, int len) {
    if (auto st = checkArgs(len, s, d)) return st;
    widen(s, d, len);
    return zetStsOk;
}

// Ties away from zero (mode 2) and anything else but 0 and 1 are refused.
ZetStatus convert32f16f(const float* s, Zet16f* d, int len, ZetRoundMode mode) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (!halfMode(mode)) return zetStsRoundModeValueErr;
    narrow(s, d, len, mode);
    return zetStsOk;
}

// Every 16-bit integer is exact in binary32; the only rounding is the one to half.
ZetStatus convert16s16f(const Zet16s* s, Zet16f* d, int len, ZetRoundMode mode) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (!halfMode(mode)) return zetStsRoundModeValueErr;
    onNarrowRoute(mode, [&]<class Route, int Mode>() {
        conv::run(conv::IntIn<Zet16s>{}, conv::IntToF32{}, HalfOut<Route, Mode>{}, s, d, len);
    });
    return zetStsOk;
}

// Widened exactly, then the float-to-integer steps of the other conversions
// with their control word: mode 0 truncates, mode 1 rounds to nearest even.
ZetStatus convert16f16s(const Zet16f* s, Zet16s* d, int len, ZetRoundMode mode, int scale) {
    if (auto st = checkArgs(len, s, d)) return st;
    if (!halfMode(mode)) return zetStsRoundModeValueErr;
    const bool hw = hardware();
    const conv::Round r = conv::roundOf(mode);
    const conv::ControlScope cw(conv::roundingField(r), conv::roundingValue(r));
    if (r == conv::kTrunc) hw ? halfToShort<Hw, conv::kTrunc>(s, d, len, scale) : halfToShort<Sw, conv::kTrunc>(s, d, len, scale);
    else hw ? halfToShort<Hw, conv::kNearest>(s, d, len, scale) : halfToShort<Sw, conv::kNearest>(s, d, len, scale);
    return zetStsOk;
}

}  // namespace zet::half

ZetStatus zetsConvert_16f32f(const Zet16f* pSrc, Zet32f* pDst, int len) { return zet::half::convert16f32f(pSrc, pDst, len); }
ZetStatus zetsConvert_32f16f(const Zet32f* pSrc, Zet16f* pDst, int len, ZetRoundMode rndMode) {
    return zet::half::convert32f16f(pSrc, pDst, len, rndMode);
}
ZetStatus zetsConvert_16s16f(const Zet16s* pSrc, Zet16f* pDst, int len, ZetRoundMode rndMode) {
    return zet::half::convert16s16f(pSrc, pDst, len, rndMode);
}
ZetStatus zetsConvert_16f16s_Sfs(const Zet16f* pSrc, Zet16s* pDst, int len, ZetRoundMode rndMode, int scale) {
    return zet::half::convert16f16s(pSrc, pDst, len, rndMode, scale);
}
