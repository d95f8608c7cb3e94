// Half-precision conversions against a reference stated from the binary16
// format, on both routes: this executable's own ownGetFeature takes precedence
// over zetcore's, so a test can send the exports down the software route on a
// processor that has the conversion instructions, and count the questions.
#include <dlfcn.h>
#include <immintrin.h>

#include <algorithm>

#include "conform.hpp"
#include "zetcore.h"

static int g_route = -1;  // -1 as the processor says, 0 software, 1 hardware
static long g_f16cQuestions = 0;
static int realFeature(unsigned long long mask) {
    static const auto fn = reinterpret_cast<int (*)(unsigned long long)>(dlsym(RTLD_NEXT, "ownGetFeature"));
    return fn(mask);
}
extern "C" int ownGetFeature(unsigned long long mask) {
    if (mask == ZET_FEATURE_F16C && ++g_f16cQuestions && g_route >= 0) return g_route;
    return realFeature(mask);
}

namespace {

using conform::op;
using zettest::bitsOf;
using zettest::fromBits;

struct RouteScope {
    explicit RouteScope(int r) { g_route = r; }
    ~RouteScope() { g_route = -1; }
};

// binary16: sign, 5 exponent bits (bias 15), 10 mantissa bits.
std::uint32_t refWiden(std::uint16_t h) {
    const std::uint32_t sign = std::uint32_t{h & 0x8000u} << 16, e = (h >> 10) & 31, m = h & 0x3FF;
    if (e == 31) return sign | 0x7F800000u | (m ? 0x00400000u | (m << 13) : 0u);  // NaNs come out quiet
    return sign | static_cast<std::uint32_t>(bitsOf(std::ldexp(float(e ? 1024 + m : m), (e ? int(e) : 1) - 25)));
}
// Mode 0 toward zero, 1 nearest even (std::remainder rounds to even whatever the direction).
std::uint16_t refNarrow(float x, int mode) {
    const auto sign = static_cast<std::uint16_t>((bitsOf(x) >> 16) & 0x8000);
    if (std::isnan(x)) return sign | 0x7E00 | ((bitsOf(x) >> 13) & 0x3FF);
    if (std::isinf(x)) return sign | 0x7C00;
    const double a = std::fabs(double(x));
    const int step = std::max(std::ilogb(a == 0 ? 1.0 : a), -14) - 10;  // the spacing of halves at a
    const double q = std::ldexp(a, -step), r = mode == 1 ? q - std::remainder(q, 1.0) : std::trunc(q);
    const double v = std::ldexp(r, step);
    if (v >= 65536.0) return sign | (mode == 1 ? 0x7C00 : 0x7BFF);
    if (v < 0x1p-14) return sign | static_cast<std::uint16_t>(r);  // denormal: r steps of 2^-24
    const int e = std::ilogb(v);
    return sign | static_cast<std::uint16_t>(((e + 15) << 10) | (int(std::ldexp(v, 10 - e)) - 1024));
}
// A half times 2^-scale, truncated (mode 0) or rounded to nearest even (1), saturated.
Zet16s refHalfToShort(std::uint16_t h, int mode, int scale) {
    const float x = fromBits<float>(refWiden(h));
    if (std::isnan(x)) return -32768;
    const long double v = std::ldexp(static_cast<long double>(x), -std::clamp(scale, -1000, 1000));
    const long double r = mode == 1 && std::isfinite(v) ? v - std::remainder(v, 1.0L) : std::trunc(v);
    return static_cast<Zet16s>(std::clamp(r, -32768.0L, 32767.0L));
}

const auto widen = [](Zet16f h) { return fromBits<float>(refWiden(h)); };
const auto narrow = [](auto x, int mode) { return Zet16f(refNarrow(float(x), mode)); };
const auto toShort = [](Zet16f h, int mode, int sf) { return refHalfToShort(h, mode, sf); };
#define ZM(fn, shape, m) ::conform::entry<shape>(&fn, #fn "_mode" #m)
CONFORM(widen, op(widen), Z(zetsConvert_16f32f, "sdn"));
CONFORM(narrow0, op(narrow).k({conform::K(0)}), ZM(zetsConvert_32f16f, "sdnk", 0), ZM(zetsConvert_16s16f, "sdnk", 0));
CONFORM(narrow1, op(narrow).k({conform::K(1)}), ZM(zetsConvert_32f16f, "sdnk", 1), ZM(zetsConvert_16s16f, "sdnk", 1));
CONFORM(short0, op(toShort).k({conform::K(0)}), ZM(zetsConvert_16f16s_Sfs, "sdnkf", 0));
CONFORM(short1, op(toShort).k({conform::K(1)}), ZM(zetsConvert_16f16s_Sfs, "sdnkf", 1));

TEST(ConvertHalf, RowsOnTheSoftwareRoute) {  // the rows run on the default route
    RouteScope scope(0);
    for (conform::RowBase* r : conform::registry())
        if (r->name.find("16f") != std::string::npos) r->run();
}

// Runs `body` on every route under the control words callers leave: as it is, flush-to-zero with
// denormals-are-zero (as zetsFFTInit_C_16fc does), each rounding direction; `invalid` unmasks that
// exception too. The control bits must come back.
template <class Body> void underEveryControlWord(bool invalid, Body body) {
    for (unsigned bits : {~0u, 0x8040u, 0xE040u, 0x6000u, 0x2000u, 0x4000u})
        for (int r = 0; r <= !!realFeature(ZET_FEATURE_F16C); ++r) {
            SCOPED_TRACE(::testing::Message() << "route " << r << " csr " << bits);
            const RouteScope scope(r);
            const unsigned saved = _mm_getcsr();
            if (bits != ~0u) _mm_setcsr((saved & ~(invalid ? 0xE0C0u : 0xE040u)) | bits);
            const unsigned before = _mm_getcsr() & ~0x3Fu;
            body();
            EXPECT_EQ(_mm_getcsr() & ~0x3Fu, before);
            _mm_setcsr(saved);
        }
}

// Every half and short; for narrowing, every half, each midpoint between
// neighbours and the floats beside it, and a sweep over all bit patterns.
TEST(ConvertHalf, ExhaustiveUnderEveryControlWord) {
    std::vector<std::uint16_t> h(65536);
    for (int i = 0; i < 65536; ++i) h[i] = static_cast<std::uint16_t>(i);
    const auto* s = reinterpret_cast<const Zet16s*>(h.data());  // every short too
    std::vector<float> in;
    for (std::uint32_t x = 0; x < 0x7C00; ++x) {
        const std::uint32_t lo = refWiden(x), hi = refWiden(x + 1);
        const auto m = std::uint32_t(bitsOf(float((double(fromBits<float>(lo)) + fromBits<float>(hi)) / 2)));
        for (std::uint32_t b : {lo, lo + 1, m - 1, m, m + 1, hi - 1})
            in.push_back(fromBits<float>(b)), in.push_back(-in.back());
    }
    for (std::uint64_t x = 0; x < (std::uint64_t{1} << 32); x += 997) in.push_back(fromBits<float>(x));
    std::vector<std::uint16_t> want[2];
    for (float x : in) want[0].push_back(refNarrow(x, 0)), want[1].push_back(refNarrow(x, 1));
    underEveryControlWord(false, [&] {
        std::vector<float> wide(h.size());
        ASSERT_EQ(zetsConvert_16f32f(h.data(), wide.data(), 65536), zetStsOk);
        for (int i = 0; i < 65536; ++i) ASSERT_EQ(bitsOf(wide[i]), refWiden(h[i])) << "half " << i;
        for (int mode : {0, 1}) {
            std::vector<std::uint16_t> out(in.size());
            ASSERT_EQ(zetsConvert_32f16f(in.data(), out.data(), static_cast<int>(in.size()), mode), zetStsOk);
            for (std::size_t i = 0; i < in.size(); ++i) ASSERT_EQ(out[i], want[mode][i]) << mode << " " << in[i];
        }
    });
    underEveryControlWord(true, [&] {
        std::vector<Zet16s> so(65536);
        std::vector<std::uint16_t> ho(65536);
        for (int mode : {0, 1}) {
            ASSERT_EQ(zetsConvert_16s16f(s, ho.data(), 65536, mode), zetStsOk);
            for (int i = 0; i < 65536; ++i) ASSERT_EQ(ho[i], refNarrow(float(s[i]), mode)) << s[i];
            for (int sf : {-2, 1, 16}) {
                ASSERT_EQ(zetsConvert_16f16s_Sfs(h.data(), so.data(), 65536, mode, sf), zetStsOk);
                for (int i = 0; i < 65536; ++i) ASSERT_EQ(so[i], refHalfToShort(h[i], mode, sf)) << "half " << i;
            }
        }
    });
}

// Pointers and length come before the mode, which must be 0 or 1; the feature
// is asked once per call that converts, and never on an error.
TEST(ConvertHalf, ModeCheckedLastAndTheQuestionAsked) {
    Zet16f h[4] = {0x3C00, 0x3C00, 0x3C00, 0x3C00};
    float f[4] = {1, 1, 1, 1};
    Zet16s s[4] = {-7, -7, -7, -7};
    const long before = g_f16cQuestions;
    for (int mode : {2, -1, 0x7FFFFFFF}) {
        EXPECT_TRUE(zetsConvert_32f16f(f, h, 4, mode) == zetStsRoundModeValueErr && zetsConvert_16s16f(s, h, 4, mode) ==
                    zetStsRoundModeValueErr && zetsConvert_16f16s_Sfs(h, s, 4, mode, 0) == zetStsRoundModeValueErr);
        EXPECT_TRUE(zetsConvert_32f16f(f, h, 0, mode) == zetStsSizeErr && zetsConvert_16s16f(nullptr, h, 0, mode) ==
                    zetStsNullPtrErr && zetsConvert_16f16s_Sfs(h, s, -1, mode, 0) == zetStsSizeErr);
    }
    EXPECT_TRUE(g_f16cQuestions == before && h[3] == 0x3C00 && s[3] == -7);
    EXPECT_TRUE(zetsConvert_16f32f(h, f, 3) == zetStsOk && zetsConvert_32f16f(f, h, 3, 0) == zetStsOk &&
                zetsConvert_16s16f(s, h, 2, 1) == zetStsOk && zetsConvert_16f16s_Sfs(h, s, 2, 1, 3) == zetStsOk);
    EXPECT_EQ(g_f16cQuestions - before, 4);
}

}  // namespace
