// Half-precision transforms as rows of the kit, and what is theirs: the FFT and DFT are the single-precision ones of
// the widened input rounded back, bit for bit; the FFT's Init leaves flush-to-zero on; the direct DFT is its documented
// sum. This executable defines its own ownGetFeature, to run both conversion routes through the exports and to count
// the direct forms' feature questions, so it stays apart from the others.
#include <dlfcn.h>

#include "kit.hpp"
#include "zetcore.h"

namespace {
enum Route { kAsIs, kSoftware, kHardware };
Route gRoute = kAsIs;
long gDftQuestions = 0;
constexpr unsigned long long kDftFeature = 0x1000000000ULL;

int realFeature(unsigned long long mask) {
    static const auto fn = reinterpret_cast<int (*)(unsigned long long)>(dlsym(RTLD_NEXT, "ownGetFeature"));
    return fn(mask);
}
}  // namespace

extern "C" int ownGetFeature(unsigned long long mask) {
    if (mask == kDftFeature) ++gDftQuestions;
    if (mask == ZET_FEATURE_F16C && gRoute != kAsIs) return gRoute == kHardware;
    return realFeature(mask);
}

namespace tkit {
namespace {

const ZetStatus kOk = zetStsOk, kNull = zetStsNullPtrErr, kOrder = zetStsFFTOrderErr, kFlagErr = zetStsFFTFlagErr;
const Form kFFT16{"FFT_C_16fc", Inter, 2, true, 0, zetsFFTGetSize_C_16fc, initPP<zetsFFTInit_C_16fc>,
                  runner<zetsFFTFwd_CToC_16fc, zetsFFTInv_CToC_16fc>, false};
const Form kDFT16{"DFT_C_16fc", Inter, 2, false, 0, zetsDFTGetSize_C_16fc, initAt<zetsDFTInit_C_16fc>,
                  runner<zetsDFTFwd_CToC_16fc, zetsDFTInv_CToC_16fc>, false};
constexpr unsigned kFtzDaz = 0x8040;  // flush-to-zero (bit 15), denormals-are-zero (bit 6)

std::vector<Route> routes() {
    return realFeature(ZET_FEATURE_F16C) ? std::vector{kSoftware, kHardware} : std::vector{kSoftware};
}
struct RouteScope {
    explicit RouteScope(Route r) { gRoute = r; }
    ~RouteScope() { gRoute = kAsIs; }
};
// Every test leaves the thread's control word as it found it.
class Half : public ::testing::Test {
    unsigned saved_ = _mm_getcsr();
    void TearDown() override { _mm_setcsr(saved_); }
};
Vec halves(std::size_t n, std::uint64_t seed) { return input(form("DFT_C_32fc"), n, false, 0, seed); }

// The sizes of the single-precision form plus the object's fields and the widened data; past what an int holds, the
// limit error.
TEST_F(Half, SizesAreTheSinglePrecisionOnesPlusTheData) {
    for (int size = 0; size <= 4099; size = size < 28 ? size + 1 : size * 3 + 1)
        for (const Form* f : {&kFFT16, &kDFT16}) {
            if (f->byOrder ? size > 28 : size < 1) continue;
            int s = 0, i = 0, w = 0, h[3] = {-1, -1, -1};
            ASSERT_EQ(form(f->byOrder ? "FFT_C_32fc" : "DFT_C_32fc").getSize(size, 2, 0, &s, &i, &w), kOk);
            const ZetStatus st = f->getSize(size, 2, 12345, &h[0], &h[1], &h[2]);
            const long long more = f->byOrder ? 8LL << size : 16LL * size;
            EXPECT_EQ(st, f->byOrder && size == 28 ? zetStsLengthLimitErr : kOk) << f->name << " " << size;
            EXPECT_TRUE(st || (h[0] == s + (f->byOrder ? 20 : 48) && h[1] == i && h[2] == w + more)) << f->name << size;
        }
}

// Orders past 30 here, 29 and 30 and negative ones from the single-precision form after the flag; the DFT's flag from
// the single-precision form too.
TEST_F(Half, ArgumentChecksRunInOrder) {
    using V = std::vector<Fault>;
    auto cat = [](V a, const V& b, const V& c = {}) {
        a.insert(a.end(), b.begin(), b.end());
        return a.insert(a.end(), c.begin(), c.end()), a;
    };
    V flags;
    for (int v : {0, 3, 5, 6, 7, 9, 16, 256, -1, -8}) flags.push_back({kFlag, v, kFlagErr});
    const V outs = {{kOut0, 0, kNull}, {kOut1, 0, kNull}, {kOut2, 0, kNull}};
    const V run = {{kObj, 0, kNull}, {kWord, 0, zetStsSpecMismatchErr}, {kSrc0, 0, kNull}, {kDst0, 0, kNull},
                   {kWork, 0, kNull}};
    const V inner = {{kSize, 29, kOrder}, {kSize, 30, kOrder}, {kSize, -1, kOrder}};
    const V init = cat({{kPP, 0, kNull}, {kBuf, 0, kNull}, {kSize, 31, kOrder}}, flags, inner);
    walk(kFFT16, {12, cat(outs, {{kSize, 31, kOrder}}, cat(flags, inner)), cat(init, {{kScratch, 0, kNull}}), run, {}});
    const V lengths = {{kSize, 0, zetStsSizeErr}, {kSize, -1, zetStsSizeErr}};
    walk(kDFT16, {60, cat(outs, lengths, flags), cat({{kBuf, 0, kNull}}, lengths, cat(flags, {{kScratch, 0, kNull}})),
                  run, {}});
}

// FFT orders to 13 and two large ones, DFT lengths to 20 and a few ways: every flag, both directions, out of place and
// in place (the source is read whole first), against the single-precision result rounded to half, on both conversion
// routes. The single-precision object comes second, so that it computes under the thread state the half Init left.
TEST_F(Half, TransformsAreTheSinglePrecisionOnesRoundedToHalf) {
    for (Route r : routes()) {
        RouteScope scope(r);
        for (const Form* f : {&kFFT16, &kDFT16}) {
            std::vector<int> sizes = f->byOrder ? std::vector{16, 19} : std::vector{53, 60, 97, 100, 1000};
            for (int s = !f->byOrder; s <= (f->byOrder ? 13 : 20); ++s) sizes.push_back(s);
            for (int size : sizes)
                for (int flag : kFlags) {
                    if (size > 13 && f->byOrder && (flag != ZET_SCALE_SYM || r != routes().back())) continue;
                    const Form& single = form(f->byOrder ? "FFT_C_32fc" : "DFT_C_32fc");
                    const std::size_t n = f->length(size);
                    Object o(*f, size, flag), o32(single, size, flag);
                    ASSERT_EQ(o.status, kOk);
                    Data x(*f, 2 * n), y(*f, 2 * n), want(*f, 2 * n), x32(single, 2 * n), y32(single, 2 * n);
                    Data io(*f, 2 * n, {Placement::Head, 0});
                    x.load(halves(n, size + flag));
                    ASSERT_EQ(call(zetsConvert_16f32f, x.p[0], x32.p[0], 2 * int(n)), kOk);  // the verified conversions
                    for (int dir = 0; dir < 2; ++dir) {
                        SCOPED_TRACE(std::string(f->name) + (r == kSoftware ? " software" : " hardware") + " size " +
                                     std::to_string(size) + " flag " + std::to_string(flag) + " dir " +
                                     std::to_string(dir));
                        ASSERT_EQ(apply(single, o32, dir, 0, &x32, y32), kOk);
                        ASSERT_EQ(call(zetsConvert_32f16f, y32.p[0], want.p[0], 2 * int(n), zetRoundNearestEven), kOk);
                        ASSERT_EQ(apply(*f, o, dir, 0, &x, y), kOk);
                        EXPECT_TRUE(y.same(want, 2 * n));
                        io.load(x.values());
                        ASSERT_EQ(apply(*f, o, dir, 0, nullptr, io), kOk);
                        EXPECT_TRUE(io.same(want, 2 * n)) << "in place";
                    }
                }
        }
    }
}

// Failures before the flag leave the control word alone; from the flag on (even when building the inner transform
// fails) flush-to-zero and denormals-are-zero are on, the other bits as they were. The DFT's Init leaves it alone.
TEST_F(Half, FFTInitTurnsFlushToZeroOnFromTheFlagOn) {
    std::vector<Zet8u> buf(1 << 16);
    struct Case { int order, flag; bool nullBuf; ZetStatus want; unsigned state; };
    const Case cases[] = {{5, 8, true, kNull, 0},         {31, 8, false, kOrder, 0},       {5, 0, false, kFlagErr, 0},
                          {5, 9, false, kFlagErr, 0}, {29, 8, false, kOrder, kFtzDaz}, {-1, 8, 0, kOrder, kFtzDaz},
                          {11, 1, false, kNull, kFtzDaz}, {6, 4, false, kOk, kFtzDaz}};
    for (const Case& c : cases) {
        _mm_setcsr((_mm_getcsr() & ~kFtzDaz & ~0x6000u) | 0x2000u);  // round down, to see that it stays
        const unsigned others = _mm_getcsr() & ~kFtzDaz & ~0x3Fu;
        ZetsFFTSpec_C_16fc* spec = nullptr;
        EXPECT_EQ(zetsFFTInit_C_16fc(&spec, c.order, c.flag, 0, c.nullBuf ? nullptr : buf.data(), nullptr), c.want);
        EXPECT_EQ(_mm_getcsr() & kFtzDaz, c.state) << c.order << " " << c.flag;
        EXPECT_EQ(_mm_getcsr() & ~kFtzDaz & ~0x3Fu, others);
        EXPECT_EQ(reinterpret_cast<Zet8u*>(spec), c.want ? nullptr : buf.data());  // the object at the buffer's start
    }
    volatile float tiny = std::ldexp(1.0f, -140), sum = tiny + 0.0f;  // the caller's own arithmetic sees it too
    EXPECT_EQ(sum, 0.0f);
    _mm_setcsr(_mm_getcsr() & ~kFtzDaz);
    Object dft(kDFT16, 8, ZET_SCALE_NONE);
    EXPECT_EQ(_mm_getcsr() & kFtzDaz, 0u);
}

// The object stays inside its size from wherever its buffer starts: at every offset from a 64-byte boundary, the bytes
// behind it watched.
TEST_F(Half, FFTObjectAtEveryOffset) {
    for (int order : {0, 5, 7, 11}) {
        Object ref(kFFT16, order, ZET_SCALE_NONE);
        const int s = ref.bytes[0];
        const std::size_t n = std::size_t{1} << order;
        Data x(kFFT16, 2 * n), want(kFFT16, 2 * n), y(kFFT16, 2 * n);
        x.load(halves(n, 9));
        ASSERT_EQ(apply(kFFT16, ref, 0, 0, &x, want), kOk);
        GuardedRegion specR(s + 128), init(std::max(ref.bytes[1], 1));
        for (int k = 0; k < 64; ++k) {
            std::memset(specR.end() - k, 0xC3, k);
            const void *obj = nullptr, *src[2] = {x.p[0], nullptr};
            ASSERT_EQ(kFFT16.init(order, ZET_SCALE_NONE, 0, specR.end() - s - k, init.begin(), &obj), kOk);
            EXPECT_EQ(std::count(specR.end() - k, specR.end(), 0xC3), k) << "order " << order << " offset " << k;
            ASSERT_EQ(kFFT16.run(0, src, y.p, obj, ref.work()), kOk);
            EXPECT_TRUE(y.same(want, 2 * n)) << "order " << order << " offset " << k;
        }
    }
}

// A failing inner transform: its status comes back after the conversion, so the destination holds the converted,
// untransformed input.
TEST_F(Half, FFTInnerStatusComesBackAfterTheConversion) {
    Object o(kFFT16, 6, ZET_SCALE_NONE);
    Zet8u* inner = nullptr;  // behind the object's word
    std::memcpy(&inner, o.buf[0] + 4, sizeof inner);
    ASSERT_NE(inner, nullptr);
    *inner ^= 0x40;
    Data x(kFFT16, 128), y(kFFT16, 128);
    x.load(halves(64, 1));
    EXPECT_EQ(apply(kFFT16, o, 0, 0, &x, y), zetStsSpecMismatchErr);
    EXPECT_TRUE(y.same(x, 128));
}

// ---- the direct DFT -------------------------------------------------------------------------
// The documented sum: angle index (k n) mod L, the angle 2 pi (1/L) index in double rounded to single, its cosine and
// sine in double rounded to single; four lanes over n mod 4, each term two fused steps per part; the lanes added as (l0
// + l2) + (l1 + l3); the result rounded to half.
Vec directSum(const Vec& x, int len, bool inv) {
    std::vector<float> c(len), s(len);
    for (int m = 0; m < len; ++m) {
        const double arg = static_cast<float>(6.283185307179586476925286766559 * (1.0 / len) * m);
        c[m] = static_cast<float>(std::cos(arg)), s[m] = static_cast<float>(std::sin(arg));
    }
    Vec out;
    for (int k = 0; k < len; ++k) {
        float re[4] = {}, im[4] = {};
        for (int n = 0; n < len; ++n) {
            const int j = n % 4, idx = static_cast<int>(static_cast<long long>(k) * n % len);
            const float xr = float(x[2 * n]), xi = float(x[2 * n + 1]), sn = inv ? -s[idx] : s[idx];
            re[j] = std::fma(xr, c[idx], re[j]), im[j] = std::fma(xi, c[idx], im[j]);
            re[j] = std::fma(xi, sn, re[j]), im[j] = std::fma(xr, -sn, im[j]);
        }
        out.insert(out.end(), {(re[0] + re[2]) + (re[1] + re[3]), (im[0] + im[2]) + (im[1] + im[3])});
    }
    return out;
}
// Without a work buffer of its own, a call gets one of exactly 16 len + 32 bytes against a guard page.
ZetStatus direct(bool inv, const void* s, void* d, int len, Zet8u* w = nullptr, bool noWork = false) {
    const std::size_t bytes = len > 0 ? 16 * std::size_t(len) + 32 : 0;
    GuardedRegion r(bytes);
    if (!w && !noWork) w = r.tail<Zet8u>(bytes);
    return inv ? call(zetsDFTInv_Direct_CToC_16fc, s, d, len, w) : call(zetsDFTFwd_Direct_CToC_16fc, s, d, len, w);
}

// Every length the direct forms take, against guard pages and in place at the lower guard; the software route at the
// smaller lengths and the longest.
TEST_F(Half, DirectIsItsSumAtEveryLength) {
    const int lengths[] = {4,    8,    12,   16,   24,   32,   36,   48,   60,   64,   72,   96,   108,  120,  128,
                           144,  180,  192,  216,  240,  256,  288,  300,  324,  360,  384,  432,  480,  512,  540,
                           576,  600,  648,  720,  768,  864,  900,  960,  972,  1024, 1080, 1152, 1200, 1296, 1440,
                           1500, 1536, 1620, 1728, 1800, 1920, 1944, 2048, 2160, 2304, 2400, 2592, 2700, 2880, 2916,
                           3000, 3072, 3240, 4096};
    for (Route r : routes()) {
        RouteScope scope(r);
        for (int len : lengths) {
            if (r == kSoftware && len > 512 && len != 4096) continue;
            Data x(kDFT16, 2 * len), y(kDFT16, 2 * len), want(kDFT16, 2 * len);
            Data io(kDFT16, 2 * len, {Placement::Head, 0});
            x.load(halves(len, len));
            for (bool inv : {false, true}) {
                want.load(directSum(x.values(), len, inv));
                ASSERT_EQ(direct(inv, x.p[0], y.p[0], len), kOk);
                EXPECT_TRUE(y.same(want, 2 * len)) << len << " " << inv;
                io.load(x.values());
                ASSERT_EQ(direct(inv, io.p[0], io.p[0], len), kOk);
                EXPECT_TRUE(io.same(want, 2 * len)) << "in place " << len << " " << inv;
            }
        }
    }
}

// The direct forms ask the feature question first, whatever follows, then check the pointers, the length and the work
// buffer. The DFT asks once in GetSize and once per call, after the data pointers and before the work one.
TEST_F(Half, FeatureQuestions) {
    std::vector<Zet16f> x(2 * 4096, 0x3C00), y;
    for (bool inv : {false, true}) {
        y.assign(2 * 4096, 0x4321);
        const long before = gDftQuestions;
        EXPECT_EQ(direct(inv, nullptr, y.data(), 4), kNull);
        EXPECT_EQ(direct(inv, x.data(), nullptr, 4), kNull);
        EXPECT_EQ(direct(inv, nullptr, nullptr, 20), kNull);
        for (int len : {20, 0, -4, 1, 2, 3, 5, 4095, 4097, 5000, 8192, 1 << 30})
            EXPECT_EQ(direct(inv, x.data(), y.data(), len), zetStsSizeErr) << len;
        EXPECT_EQ(std::count(y.begin(), y.end(), 0x4321), 2 * 4096);
        EXPECT_EQ(gDftQuestions - before, 15);
        EXPECT_EQ(direct(inv, x.data(), y.data(), 20, nullptr, true), zetStsSizeErr);
        EXPECT_EQ(direct(inv, x.data(), y.data(), 4096, nullptr, true), kNull);
        EXPECT_EQ(std::count(y.begin(), y.end(), 0x4321), 2 * 4096);
        EXPECT_EQ(direct(inv, x.data(), y.data(), 4096), kOk);
    }
    int s, i, w;
    long asked = gDftQuestions;
    EXPECT_EQ(kDFT16.getSize(8, ZET_SCALE_NONE, 0, &s, &i, &w), kOk);
    Object o(kDFT16, 8, ZET_SCALE_NONE);
    EXPECT_EQ(gDftQuestions, asked + 2);  // its GetSize and the kit's
    const void* src[2] = {x.data(), nullptr};
    void *none[2] = {nullptr, nullptr}, *dst[2] = {y.data(), nullptr};
    EXPECT_EQ(kDFT16.run(1, src, none, o.obj, nullptr), kNull);
    EXPECT_EQ(gDftQuestions, asked + 2);
    EXPECT_EQ(kDFT16.run(0, src, dst, o.obj, nullptr), kNull);
    EXPECT_EQ(gDftQuestions, asked + 3);
}

}  // namespace
}  // namespace tkit
