// Half-precision transforms: the Zet16fc FFT against the single-precision
// FFT of the widened input rounded back to half, bit for bit; its sizes,
// statuses and the thread state its Init leaves behind; the object at every
// offset of its buffer; and the direct DFT against the sum stated literally.
//
// Like convert_tests, this executable defines its own ownGetFeature so that
// both conversion routes run through the exports, and so that it can count
// the feature questions of the direct forms.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <immintrin.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "zetcore.h"
#include "zetsp.h"
#include "zettest.hpp"

namespace {
enum Route { kAsIs, kSoftware, kHardware };
Route g_route = kAsIs;
long g_dftQuestions = 0;
constexpr unsigned long long kDftFeature = 0x1000000000ULL;

int realFeature(unsigned long long mask) {
    using Fn = int (*)(unsigned long long);
    static const Fn fn = reinterpret_cast<Fn>(dlsym(RTLD_NEXT, "ownGetFeature"));
    return fn(mask);
}
}  // namespace

extern "C" int ownGetFeature(unsigned long long mask) {
    if (mask == kDftFeature) ++g_dftQuestions;
    if (mask == ZET_FEATURE_F16C && g_route != kAsIs) return g_route == kHardware ? 1 : 0;
    return realFeature(mask);
}

namespace {

using zettest::GuardedRegion;

std::vector<Route> routes() {
    std::vector<Route> r{kSoftware};
    if (realFeature(ZET_FEATURE_F16C)) r.push_back(kHardware);
    return r;
}
const char* routeName(Route r) { return r == kSoftware ? "software" : "hardware"; }
struct RouteScope {
    explicit RouteScope(Route r) { g_route = r; }
    ~RouteScope() { g_route = kAsIs; }
};

constexpr unsigned kFtzDaz = 0x8040;  // flush-to-zero (bit 15), denormals-are-zero (bit 6)
constexpr int kFlags[] = {ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM, ZET_SCALE_NONE};

// Every test leaves the thread's control word as it found it.
class HalfTransform : public ::testing::Test {
protected:
    void SetUp() override { saved_ = _mm_getcsr(); }
    void TearDown() override { _mm_setcsr(saved_); }
    static void clearFtzDaz() { _mm_setcsr(_mm_getcsr() & ~kFtzDaz); }
    static unsigned ftzDaz() { return _mm_getcsr() & kFtzDaz; }

private:
    unsigned saved_ = 0;
};

// Half data through the verified conversions (convert_tests).
std::vector<float> widen(const std::vector<Zet16f>& h) {
    std::vector<float> f(h.size());
    EXPECT_EQ(zetsConvert_16f32f(h.data(), f.data(), static_cast<int>(h.size())), zetStsOk);
    return f;
}
std::vector<Zet16f> toHalf(const std::vector<float>& f) {
    std::vector<Zet16f> h(f.size());
    EXPECT_EQ(zetsConvert_32f16f(f.data(), h.data(), static_cast<int>(f.size()), 1), zetStsOk);
    return h;
}
// n complex values, parts uniform in [-1, 1], as halves.
std::vector<Zet16f> randomHalves(std::size_t n, std::mt19937_64& rng) {
    std::uniform_real_distribution<float> u(-1.0f, 1.0f);
    std::vector<float> f(2 * n);
    for (auto& v : f) v = u(rng);
    return toHalf(f);
}

::testing::AssertionResult sameHalves(const Zet16f* got, const std::vector<Zet16f>& want) {
    for (std::size_t i = 0; i < want.size(); ++i) {
        Zet16f g;
        std::memcpy(&g, reinterpret_cast<const unsigned char*>(got) + 2 * i, 2);
        if (g != want[i]) {
            char buf[96];
            std::snprintf(buf, sizeof buf, "half %zu (element %zu): got 0x%04x want 0x%04x", i, i / 2, unsigned(g), unsigned(want[i]));
            return ::testing::AssertionFailure() << buf;
        }
    }
    return ::testing::AssertionSuccess();
}

const Zet16fc* asC(const Zet16f* p) { return reinterpret_cast<const Zet16fc*>(p); }
Zet16fc* asC(Zet16f* p) { return reinterpret_cast<Zet16fc*>(p); }

// The single-precision FFT (of order `size`) or DFT (of length `size`) of the
// widened input, rounded to half. It runs after the half Init, so under the
// same flush-to-zero state.
std::vector<Zet16f> single(bool dft, const std::vector<Zet16f>& in, int size, int flag, bool inv) {
    int s = 0, i = 0, w = 0;
    EXPECT_EQ(dft ? zetsDFTGetSize_C_32fc(size, flag, 0, &s, &i, &w) : zetsFFTGetSize_C_32fc(size, flag, 0, &s, &i, &w), zetStsOk);
    std::vector<Zet8u> spec(s), init(std::max(i, 1)), work(std::max(w, 1));
    std::vector<float> x = widen(in), y(x.size());
    auto* c = reinterpret_cast<Zet32fc*>(x.data());
    auto* d = reinterpret_cast<Zet32fc*>(y.data());
    if (dft) {
        auto* obj = reinterpret_cast<ZetsDFTSpec_C_32fc*>(spec.data());
        EXPECT_EQ(zetsDFTInit_C_32fc(size, flag, 0, obj, init.data()), zetStsOk);
        EXPECT_EQ(inv ? zetsDFTInv_CToC_32fc(c, d, obj, work.data()) : zetsDFTFwd_CToC_32fc(c, d, obj, work.data()), zetStsOk);
        return toHalf(y);
    }
    ZetsFFTSpec_C_32fc* obj = nullptr;
    EXPECT_EQ(zetsFFTInit_C_32fc(&obj, size, flag, 0, spec.data(), init.data()), zetStsOk);
    EXPECT_EQ(inv ? zetsFFTInv_CToC_32fc_I(c, obj, work.data()) : zetsFFTFwd_CToC_32fc_I(c, obj, work.data()), zetStsOk);
    return toHalf(x);
}

// ---- FFT: sizes and checks ----------------------------------------------------------------

// The sizes of C_32fc with 20 bytes of object and the data copy added; the
// hint changes nothing; past an int the work size is refused.
TEST_F(HalfTransform, FFTGetSizeIsTheSinglePrecisionSizePlusTheDataCopy) {
    for (int order = 0; order <= 28; ++order)
        for (int flag : kFlags) {
            SCOPED_TRACE("order " + std::to_string(order) + " flag " + std::to_string(flag));
            int s = 0, i = 0, w = 0, s16 = -1, i16 = -1, w16 = -1, h1 = 0, h2 = 0, h3 = 0;
            ASSERT_EQ(zetsFFTGetSize_C_32fc(order, flag, 0, &s, &i, &w), zetStsOk);
            const ZetStatus st = zetsFFTGetSize_C_16fc(order, flag, 0, &s16, &i16, &w16);
            const long long work = w + (8LL << order);
            if (work > 2147483487LL) {
                EXPECT_EQ(st, zetStsLengthLimitErr);
                EXPECT_EQ(w16, -1);
                continue;
            }
            ASSERT_EQ(st, zetStsOk);
            EXPECT_TRUE(s16 == s + 20 && i16 == i && w16 == work) << s16 << " " << i16 << " " << w16;
            EXPECT_EQ(zetsFFTGetSize_C_16fc(order, flag, 12345, &h1, &h2, &h3), zetStsOk);
            EXPECT_TRUE(h1 == s16 && h3 == w16);
        }
}

TEST_F(HalfTransform, FFTGetSizeChecks) {
    int s = -1, i = -1, w = -1;
    // Spec and init pointers, then the work pointer, then the order, then the flag.
    EXPECT_EQ(zetsFFTGetSize_C_16fc(31, 0, 0, nullptr, &i, &w), zetStsNullPtrErr);
    EXPECT_EQ(zetsFFTGetSize_C_16fc(31, 0, 0, &s, nullptr, &w), zetStsNullPtrErr);
    EXPECT_EQ(zetsFFTGetSize_C_16fc(31, 0, 0, &s, &i, nullptr), zetStsNullPtrErr);
    // 31 and above here; 29, 30 and negative orders come back from the single-precision FFT.
    for (int order : {31, 1000, 29, 30, -1}) EXPECT_EQ(zetsFFTGetSize_C_16fc(order, order == 31 ? 0 : 8, 0, &s, &i, &w), zetStsFFTOrderErr) << order;
    for (int flag : {0, 3, 5, 6, 7, 9, 16, 256, -1, -8}) EXPECT_EQ(zetsFFTGetSize_C_16fc(5, flag, 0, &s, &i, &w), zetStsFFTFlagErr) << flag;
    EXPECT_TRUE(s == -1 && i == -1 && w == -1);
}

// ---- FFT: Init and the thread state --------------------------------------------------

// Failures before the flag leave the control word alone; from the flag on
// (even when building the inner transform fails) flush-to-zero and
// denormals-are-zero are on, and the other bits stay as they were.
TEST_F(HalfTransform, FFTInitChecksAndTheThreadState) {
    std::vector<Zet8u> buf(1 << 16);
    ZetsFFTSpec_C_16fc* spec = nullptr;
    // (Order 11 without scaling takes the tiled method, which needs no init
    // buffer; scaled, the core needs one.)
    struct Case { bool nullSpecPtr, nullBuf; int order, flag; ZetStatus want; unsigned state; };
    const Case cases[] = {
        {true, false, 5, 8, zetStsNullPtrErr, 0}, {false, true, 5, 8, zetStsNullPtrErr, 0},
        {true, true, 40, 0, zetStsNullPtrErr, 0}, {false, false, 31, 8, zetStsFFTOrderErr, 0},
        {false, false, 31, 3, zetStsFFTOrderErr, 0}, {false, false, 5, 0, zetStsFFTFlagErr, 0},
        {false, false, 5, 3, zetStsFFTFlagErr, 0}, {false, false, 5, 9, zetStsFFTFlagErr, 0},
        {false, false, 5, -1, zetStsFFTFlagErr, 0}, {false, false, 29, 8, zetStsFFTOrderErr, kFtzDaz},
        {false, false, 30, 8, zetStsFFTOrderErr, kFtzDaz}, {false, false, -1, 8, zetStsFFTOrderErr, kFtzDaz},
        {false, false, 11, 1, zetStsNullPtrErr, kFtzDaz},
    };
    for (const Case& c : cases) {
        clearFtzDaz();
        EXPECT_EQ(zetsFFTInit_C_16fc(c.nullSpecPtr ? nullptr : &spec, c.order, c.flag, 0, c.nullBuf ? nullptr : buf.data(), nullptr), c.want)
            << "order " << c.order << " flag " << c.flag;
        EXPECT_EQ(ftzDaz(), c.state) << "order " << c.order << " flag " << c.flag;
        EXPECT_EQ(spec, nullptr);
    }
    _mm_setcsr((_mm_getcsr() & ~0x6000u) | 0x2000u);
    const unsigned before = _mm_getcsr() & ~0x3Fu;
    EXPECT_EQ(zetsFFTInit_C_16fc(&spec, 5, 3, 0, buf.data(), nullptr), zetStsFFTFlagErr);
    EXPECT_EQ(_mm_getcsr() & ~0x3Fu, before);
    for (int flag : kFlags) {
        clearFtzDaz();
        const unsigned others = _mm_getcsr() & ~kFtzDaz & ~0x3Fu;
        ASSERT_EQ(zetsFFTInit_C_16fc(&spec, 6, flag, 0, buf.data(), nullptr), zetStsOk);
        EXPECT_EQ(ftzDaz(), kFtzDaz);
        EXPECT_EQ(_mm_getcsr() & ~kFtzDaz & ~0x3Fu, others);
        EXPECT_EQ(reinterpret_cast<Zet8u*>(spec), buf.data());  // the object is at the start of the buffer
        // Seen by the caller's own arithmetic: a single denormal is now zero.
        volatile float tiny = std::ldexp(1.0f, -140);
        volatile float sum = tiny + 0.0f;
        EXPECT_EQ(sum, 0.0f);
    }
}

// ---- FFT: results --------------------------------------------------------------------

struct Buffers {
    std::vector<Zet8u> spec, init, work;
    ZetsFFTSpec_C_16fc* obj = nullptr;
};
Buffers makeFFT16(int order, int flag) {
    Buffers b;
    int s = 0, i = 0, w = 0;
    EXPECT_EQ(zetsFFTGetSize_C_16fc(order, flag, 0, &s, &i, &w), zetStsOk);
    b.spec.resize(s), b.init.resize(std::max(i, 1)), b.work.resize(w);
    EXPECT_EQ(zetsFFTInit_C_16fc(&b.obj, order, flag, 0, b.spec.data(), b.init.data()), zetStsOk);
    return b;
}
ZetStatus fft16(bool inv, const Zet16f* s, Zet16f* d, const ZetsFFTSpec_C_16fc* obj, Zet8u* w) {
    return inv ? zetsFFTInv_CToC_16fc(asC(s), asC(d), obj, w) : zetsFFTFwd_CToC_16fc(asC(s), asC(d), obj, w);
}

// Every order to 13 under every flag and both directions, out of place and in
// place (the source is read whole before the destination is written); two
// large orders.
TEST_F(HalfTransform, FFTIsTheSinglePrecisionFFTRoundedToHalf) {
    std::mt19937_64 rng(2026);
    for (Route r : routes()) {
        RouteScope scope(r);
        for (int order : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 19})
            for (int flag : kFlags) {
                if (order > 13 && (flag != ZET_SCALE_SYM || r != routes().back())) continue;
                Buffers b = makeFFT16(order, flag);
                const std::size_t n = std::size_t{1} << order;
                const auto in = randomHalves(n, rng);
                for (bool inv : {false, true}) {
                    SCOPED_TRACE(std::string(routeName(r)) + " order " + std::to_string(order) + " flag " + std::to_string(flag) + (inv ? " inverse" : " forward"));
                    const auto want = single(false, in, order, flag, inv);
                    std::vector<Zet16f> out(2 * n, 0xFFFF), io = in;
                    ASSERT_EQ(fft16(inv, in.data(), out.data(), b.obj, b.work.data()), zetStsOk);
                    ASSERT_TRUE(sameHalves(out.data(), want));
                    ASSERT_EQ(fft16(inv, io.data(), io.data(), b.obj, b.work.data()), zetStsOk);
                    ASSERT_TRUE(sameHalves(io.data(), want)) << "in place";
                }
            }
    }
}

// The object, the inner object and the work area stay inside the sizes
// GetSize gave, wherever the buffers sit: the object buffer at every offset
// from a 64-byte boundary with the bytes behind it watched, the work buffer
// and the data against guard pages.
TEST_F(HalfTransform, FFTBuffersAtEveryOffset) {
    std::mt19937_64 rng(9);
    for (int order : {0, 5, 7, 11}) {
        int s, i, w;
        ASSERT_EQ(zetsFFTGetSize_C_16fc(order, ZET_SCALE_NONE, 0, &s, &i, &w), zetStsOk);
        const std::size_t n = std::size_t{1} << order;
        const auto in = randomHalves(n, rng);
        const auto want = single(false, in, order, ZET_SCALE_NONE, false);
        std::vector<Zet8u> init(std::max(i, 1));
        GuardedRegion specR(s + 128), workR(w + 64), srcR(n * 4 + 64), dstR(n * 4 + 64);
        for (std::size_t k = 0; k < 64; ++k) {
            SCOPED_TRACE("order " + std::to_string(order) + " k " + std::to_string(k));
            Zet8u* buf = specR.end() - s - k;  // starts at every offset once; k watched bytes behind it
            std::memset(specR.end() - k, 0xC3, k);
            ZetsFFTSpec_C_16fc* obj = nullptr;
            ASSERT_EQ(zetsFFTInit_C_16fc(&obj, order, ZET_SCALE_NONE, 0, buf, init.data()), zetStsOk);
            for (std::size_t j = 0; j < k; ++j) ASSERT_EQ(specR.end()[-1 - static_cast<long>(j)], 0xC3);
            Zet16f* src = srcR.tail<Zet16f>(2 * n);
            Zet16f* dst = dstR.tail<Zet16f>(2 * n);
            std::memcpy(src, in.data(), 4 * n);
            ASSERT_EQ(fft16(false, src, dst, obj, workR.tail<Zet8u>(w)), zetStsOk);
            ASSERT_TRUE(sameHalves(dst, want));
        }
    }
}

TEST_F(HalfTransform, FFTComputeChecks) {
    Buffers b = makeFFT16(4, ZET_SCALE_NONE);
    std::vector<Zet16f> x(32, 0x3C00), y(32, 0x1234);
    Zet16f *s = x.data(), *d = y.data();
    Zet8u* w = b.work.data();
    // A single-precision object: its word is not 4.
    int ss, si, sw;
    ASSERT_EQ(zetsFFTGetSize_C_32fc(4, 8, 0, &ss, &si, &sw), zetStsOk);
    std::vector<Zet8u> sb(ss);
    ZetsFFTSpec_C_32fc* single32 = nullptr;
    ASSERT_EQ(zetsFFTInit_C_32fc(&single32, 4, 8, 0, sb.data(), nullptr), zetStsOk);
    const auto* wrong = reinterpret_cast<const ZetsFFTSpec_C_16fc*>(single32);
    for (bool inv : {false, true}) {
        // The object, then its word, then source, destination and work.
        EXPECT_EQ(fft16(inv, nullptr, nullptr, nullptr, nullptr), zetStsNullPtrErr);
        EXPECT_EQ(fft16(inv, s, d, nullptr, w), zetStsNullPtrErr);
        EXPECT_EQ(fft16(inv, nullptr, d, b.obj, w), zetStsNullPtrErr);
        EXPECT_EQ(fft16(inv, s, nullptr, b.obj, w), zetStsNullPtrErr);
        EXPECT_EQ(fft16(inv, s, d, b.obj, nullptr), zetStsNullPtrErr);
        EXPECT_EQ(fft16(inv, s, d, wrong, w), zetStsSpecMismatchErr);
        EXPECT_EQ(fft16(inv, nullptr, nullptr, wrong, nullptr), zetStsSpecMismatchErr);
        for (Zet16f v : y) EXPECT_EQ(v, 0x1234);
    }
}

// A failing inner transform: its status comes back after the conversion, so
// the destination holds the converted (untransformed) input.
TEST_F(HalfTransform, FFTInnerStatusComesBackAfterTheConversion) {
    Buffers b = makeFFT16(6, ZET_SCALE_NONE);
    // The object: word (4 bytes), then the inner object's pointer (unpadded).
    Zet8u* inner = nullptr;
    std::memcpy(&inner, b.spec.data() + 4, sizeof inner);
    ASSERT_NE(inner, nullptr);
    std::uint32_t word;
    std::memcpy(&word, inner, 4);
    EXPECT_EQ(word, 5u);
    const std::uint32_t broken = 99;
    std::memcpy(inner, &broken, 4);
    std::mt19937_64 rng(1);
    const auto in = randomHalves(64, rng);
    std::vector<Zet16f> out(128, 0);
    EXPECT_EQ(fft16(false, in.data(), out.data(), b.obj, b.work.data()), zetStsSpecMismatchErr);
    EXPECT_TRUE(sameHalves(out.data(), in));
}

// ---- direct DFT ---------------------------------------------------------------------

// The sum as documented: angle index (k n) mod L, the angle 2 pi (1/L) index
// in double rounded to single, its cosine and sine in double rounded to
// single; four lanes over n mod 4, each term two fused steps per part; the
// lanes added as (l0 + l2) + (l1 + l3); the result rounded to half.
std::vector<Zet16f> refDirect(const std::vector<Zet16f>& in, int L, bool inv) {
    const std::vector<float> x = widen(in);
    std::vector<float> c(L), s(L), out(2 * static_cast<std::size_t>(L));
    const double step = 6.283185307179586476925286766559 * (1.0 / L);
    for (int m = 0; m < L; ++m) {
        const double arg = static_cast<float>(step * m);
        c[m] = static_cast<float>(std::cos(arg));
        s[m] = static_cast<float>(std::sin(arg));
    }
    for (int k = 0; k < L; ++k) {
        float re[4] = {}, im[4] = {};
        for (int n = 0; n < L; ++n) {
            const int j = n % 4, idx = static_cast<int>((static_cast<long long>(k) * n) % L);
            const float xr = x[2 * n], xi = x[2 * n + 1], sn = inv ? -s[idx] : s[idx];
            re[j] = std::fma(xr, c[idx], re[j]);
            im[j] = std::fma(xi, c[idx], im[j]);
            re[j] = std::fma(xi, sn, re[j]);
            im[j] = std::fma(xr, -sn, im[j]);
        }
        out[2 * k] = (re[0] + re[2]) + (re[1] + re[3]);
        out[2 * k + 1] = (im[0] + im[2]) + (im[1] + im[3]);
    }
    return toHalf(out);
}

ZetStatus direct(bool inv, const Zet16f* s, Zet16f* d, int L, Zet8u* w = nullptr) {
    return inv ? zetsDFTInv_Direct_CToC_16fc(asC(s), asC(d), L, w) : zetsDFTFwd_Direct_CToC_16fc(asC(s), asC(d), L, w);
}

// Every length the direct forms take, source and destination against guard
// pages, and in place at the lower guard (the input is read whole first).
TEST_F(HalfTransform, DirectIsTheLiteralSumAtEveryLength) {
    std::mt19937_64 rng(77);
    const int lengths[] = {4,    8,    12,   16,   24,   32,   36,   48,   60,   64,   72,   96,   108,  120,  128,  144,
                           180,  192,  216,  240,  256,  288,  300,  324,  360,  384,  432,  480,  512,  540,  576,  600,
                           648,  720,  768,  864,  900,  960,  972,  1024, 1080, 1152, 1200, 1296, 1440, 1500, 1536, 1620,
                           1728, 1800, 1920, 1944, 2048, 2160, 2304, 2400, 2592, 2700, 2880, 2916, 3000, 3072, 3240, 4096};
    for (Route r : routes()) {
        RouteScope scope(r);
        for (int L : lengths) {
            // The software route at the smaller lengths and the longest one.
            if (r == kSoftware && L > 512 && L != 4096) continue;
            const std::size_t n = static_cast<std::size_t>(L);
            const auto in = randomHalves(n, rng);
            GuardedRegion sr(4 * n), dr(4 * n);
            for (bool inv : {false, true}) {
                SCOPED_TRACE(std::string(routeName(r)) + " length " + std::to_string(L) + (inv ? " inverse" : " forward"));
                const auto want = refDirect(in, L, inv);
                Zet16f *s = sr.tail<Zet16f>(2 * n), *d = dr.tail<Zet16f>(2 * n), *h = sr.head<Zet16f>();
                std::fill(d, d + 2 * n, Zet16f(0xFFFF));
                std::memcpy(s, in.data(), 4 * n);
                ASSERT_EQ(direct(inv, s, d, L), zetStsOk);
                ASSERT_TRUE(sameHalves(d, want));
                std::memcpy(h, in.data(), 4 * n);
                ASSERT_EQ(direct(inv, h, h, L), zetStsOk);
                ASSERT_TRUE(sameHalves(h, want)) << "in place";
            }
        }
    }
}

// Against the exact DFT (long double): the single-precision sum of a half
// input stays within about a half-precision step of the truth.
TEST_F(HalfTransform, DirectIsCloseToTheExactTransform) {
    std::mt19937_64 rng(78);
    for (int L : {4, 12, 60, 1024, 2916, 4096}) {
        const auto in = randomHalves(static_cast<std::size_t>(L), rng);
        const auto x = widen(in);
        for (bool inv : {false, true}) {
            std::vector<Zet16f> out(2 * static_cast<std::size_t>(L));
            ASSERT_EQ(direct(inv, in.data(), out.data(), L), zetStsOk);
            const auto got = widen(out);
            std::vector<std::complex<long double>> w(L), exact(L);
            for (int m = 0; m < L; ++m) w[m] = std::polar(1.0L, (inv ? 2 : -2) * 3.14159265358979323846264338327950288L * m / L);
            long double peak = 0;
            for (int k = 0; k < L; ++k) {
                for (int n = 0; n < L; ++n) exact[k] += std::complex<long double>(x[2 * n], x[2 * n + 1]) * w[(static_cast<long long>(k) * n) % L];
                peak = std::max({peak, std::fabs(exact[k].real()), std::fabs(exact[k].imag())});
            }
            for (int k = 0; k < L; ++k)
                ASSERT_TRUE(std::fabs(got[2 * k] - exact[k].real()) <= std::ldexp(peak, -10) && std::fabs(got[2 * k + 1] - exact[k].imag()) <= std::ldexp(peak, -10))
                    << "length " << L << " element " << k;
        }
    }
}

TEST_F(HalfTransform, DirectChecksAndTheFeatureQuestion) {
    std::vector<Zet16f> x(2 * 4096, 0x3C00), y;
    for (bool inv : {false, true}) {
        y.assign(2 * 4096, 0x4321);
        const long before = g_dftQuestions;
        EXPECT_EQ(direct(inv, nullptr, y.data(), 4), zetStsNullPtrErr);
        EXPECT_EQ(direct(inv, x.data(), nullptr, 4), zetStsNullPtrErr);
        EXPECT_EQ(direct(inv, nullptr, nullptr, 20), zetStsNullPtrErr);  // pointers before the length
        for (int L : {20, 0, -4, 1, 2, 3, 5, 4095, 4097, 5000, 8192, 1 << 30}) EXPECT_EQ(direct(inv, x.data(), y.data(), L), zetStsSizeErr) << L;
        for (Zet16f v : y) ASSERT_EQ(v, 0x4321);
        // Asked on entry, whatever follows; the answer changes nothing.
        EXPECT_EQ(g_dftQuestions - before, 15);
        // No work buffer is needed; a given one is not touched.
        std::vector<Zet8u> work(64, 0x77);
        EXPECT_EQ(direct(inv, x.data(), y.data(), 4096, work.data()), zetStsOk);
        for (Zet8u v : work) ASSERT_EQ(v, 0x77);
    }
}

// ---- DFT ---------------------------------------------------------------------------

// The sizes of C_32fc DFT with 48 bytes of object and the data copy added.
TEST_F(HalfTransform, DFTIsTheSinglePrecisionDFTRoundedToHalf) {
    std::mt19937_64 rng(77);
    std::vector<int> lengths;
    for (int n = 1; n <= 20; ++n) lengths.push_back(n);
    for (int n : {53, 60, 97, 100, 1000}) lengths.push_back(n);
    for (int length : lengths)
        for (int flag : {ZET_SCALE_FWD, ZET_SCALE_NONE, ZET_SCALE_SYM}) {
            SCOPED_TRACE("length " + std::to_string(length) + " flag " + std::to_string(flag));
            int s = 0, i = 0, w = 0, s32 = 0, i32 = 0, w32 = 0;
            ASSERT_EQ(zetsDFTGetSize_C_16fc(length, flag, 0, &s, &i, &w), zetStsOk);
            ASSERT_EQ(zetsDFTGetSize_C_32fc(length, flag, 0, &s32, &i32, &w32), zetStsOk);
            EXPECT_TRUE(s == s32 + 48 && i == i32 && w == w32 + (length << 4)) << s << " " << i << " " << w;
            std::vector<Zet8u> spec(s), init(std::max(i, 1)), work(w);
            auto* obj = reinterpret_cast<ZetsDFTSpec_C_16fc*>(spec.data());
            ASSERT_EQ(zetsDFTInit_C_16fc(length, flag, 0, obj, init.data()), zetStsOk);
            const auto in = randomHalves(static_cast<std::size_t>(length), rng);
            for (bool inv : {false, true}) {
                std::vector<Zet16f> out(2 * static_cast<std::size_t>(length), 0xFFFF);
                ASSERT_EQ(inv ? zetsDFTInv_CToC_16fc(asC(in.data()), asC(out.data()), obj, work.data())
                              : zetsDFTFwd_CToC_16fc(asC(in.data()), asC(out.data()), obj, work.data()), zetStsOk);
                ASSERT_TRUE(sameHalves(out.data(), single(true, in, length, flag, inv))) << (inv ? "inverse" : "forward");
            }
        }
}

TEST_F(HalfTransform, DFTChecksAndTheFeatureQuestion) {
    int s = 0, i = 0, w = 0;
    EXPECT_EQ(zetsDFTGetSize_C_16fc(8, ZET_SCALE_NONE, 0, &s, &i, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTGetSize_C_16fc(0, ZET_SCALE_NONE, 0, &s, &i, &w), zetStsSizeErr);
    const long asked = g_dftQuestions;
    EXPECT_EQ(zetsDFTGetSize_C_16fc(8, ZET_SCALE_NONE, 0, &s, &i, &w), zetStsOk);
    EXPECT_EQ(g_dftQuestions, asked + 1);
    std::vector<Zet8u> buf(s), init(64), work(w);
    auto* obj = reinterpret_cast<ZetsDFTSpec_C_16fc*>(buf.data());
    EXPECT_EQ(zetsDFTInit_C_16fc(8, ZET_SCALE_NONE, 0, nullptr, init.data()), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTInit_C_16fc(0, ZET_SCALE_NONE, 0, obj, init.data()), zetStsSizeErr);
    // The mask on the value, at most 8: 3 and 16 fail, and no thread state changes.
    clearFtzDaz();
    EXPECT_EQ(zetsDFTInit_C_16fc(8, 3, 0, obj, init.data()), zetStsFFTFlagErr);
    EXPECT_EQ(zetsDFTInit_C_16fc(8, 16, 0, obj, init.data()), zetStsFFTFlagErr);
    ASSERT_EQ(zetsDFTInit_C_16fc(8, ZET_SCALE_NONE, 0, obj, init.data()), zetStsOk);
    EXPECT_EQ(ftzDaz(), 0u);
    std::vector<Zet16fc> x(8), y(8);
    EXPECT_EQ(zetsDFTFwd_CToC_16fc(x.data(), y.data(), nullptr, work.data()), zetStsNullPtrErr);
    EXPECT_EQ(zetsDFTFwd_CToC_16fc(x.data(), y.data(), reinterpret_cast<ZetsDFTSpec_C_16fc*>(init.data()), work.data()), zetStsSpecMismatchErr);
    // Work is tested after the data and after the feature question.
    const long before = g_dftQuestions;
    EXPECT_EQ(zetsDFTInv_CToC_16fc(nullptr, y.data(), obj, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(g_dftQuestions, before);
    EXPECT_EQ(zetsDFTInv_CToC_16fc(x.data(), y.data(), obj, nullptr), zetStsNullPtrErr);
    EXPECT_EQ(g_dftQuestions, before + 1);
}

}  // namespace
