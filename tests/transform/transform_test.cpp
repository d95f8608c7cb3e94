// Every transform form as a row of the kit: the sizes GetSize reports, the order of the argument checks, exact results
// at small sizes, properties at large ones, buffer offsets and hints; then what is the DFT's own, and the
// spectrum layouts.

#include "kit.hpp"

namespace tkit {
namespace {

const ZetStatus kOk = zetStsOk, kNull = zetStsNullPtrErr, kOrder = zetStsFFTOrderErr, kSizeErr = zetStsSizeErr,
                kFlagErr = zetStsFFTFlagErr, kMismatch = zetStsSpecMismatchErr;
std::string at(const Form& f, int size) { return std::string(f.name) + " size " + std::to_string(size); }

// ---- sizes ------------------------------------------------------------------------------------
// The byte counts the library reports today, which callers size their buffers by. Init needs the scratch, and a call
// the work buffer, when they are reported; but the real FFT reports work up to order 7 that it does without. The hint
// is not interpreted; a DFT's flag changes nothing, and a split DFT counts as the interleaved one.
TEST(Transform, GetSizeReportsTheseBytes) {
    struct Row { const char* form; int size, flag, spec, init, work; ZetStatus st = zetStsOk; };
    const Row rows[] = {
        {"FFT_C_32fc", 0, 1, 2064, 0, 0}, {"FFT_C_32fc", 6, 1, 3072, 0, 0}, {"FFT_C_32fc", 7, 8, 4096, 0, 1152},
        {"FFT_C_32fc", 11, 8, 33088, 0, 64}, {"FFT_C_32fc", 11, 1, 20096, 2176, 16512},
        {"FFT_C_32fc", 19, 2, 2889920, 524416, 262272}, {"FFT_C_32fc", 23, 4, 42219200, 8388736, 262272},
        {"FFT_C_32f", 28, 8, 1347163840, 268435584, 524416}, {"FFT_C_64fc", 10, 2, 20480, 0, 16512},
        {"FFT_C_64fc", 18, 8, 2625216, 524416, 262272}, {"FFT_C_64fc", 22, 1, 38030016, 8388736, 262272},
        {"FFT_C_64f", 27, 4, 1213205184, 268435584, 524416}, {"FFT_R_32f", 0, 8, 2057, 0, 0},
        {"FFT_R_32f", 6, 8, 2624, 0, 384}, {"FFT_R_32f", 11, 1, 19136, 2176, 8384}, {"FFT_R_64f", 7, 8, 4352, 0, 1152},
        {"FFT_R_64f", 8, 8, 6656, 0, 2176}, {"FFT_R_32f", 19, 8, 2379584, 524416, 2097344},
        {"FFT_R_32f", 29, 8, 1349277568, 536871040, 524480}, {"FFT_R_32f", 30, 8, 64, 0, 64, zetStsUnsupportedErr},
        {"FFT_R_64f", 28, 8, 1215335296, 536871040, 524480}, {"DFT_C_32fc", 12, 1, 2176, 0, 0},
        {"DFT_C_32fc", 17, 1, 2496, 256, 256}, {"DFT_C_32fc", 53, 1, 6080, 2880, 3456},
        {"DFT_C_32fc", 60, 1, 2880, 576, 704}, {"DFT_C_32fc", 2001, 1, 24064, 16128, 16448},
        {"DFT_C_32fc", 4099, 1, 314816, 320064, 393600}, {"DFT_C_64fc", 604, 2, 58944, 72704, 61952},
        {"DFT_C_64fc", 65536, 2, 1116672, 131264, 1048704}, {"DFT_R_32f", 34, 4, 3712, 256, 256},
        {"DFT_R_32f", 372500, 4, 10067072, 6843776, 4718976}, {"DFT_R_64f", 64, 8, 3008, 0, 0},
        {"DFT_R_64f", 1 << 28, 1, 64, 0, 0, zetStsUnsupportedErr}, {"DFT_C_64fc", 33554467, 8, 0, 0, 0, kSizeErr},
        {"DCTFwd_32f", 1, 8, 2432, 0, 128}, {"DCTFwd_64f", 97, 8, 13696, 11840, 12608},
        {"DCTInv_64f", 17, 8, 4032, 384, 960}, {"Hilbert_32f32fc", 1, 8, 4464, 16, 16},
        {"Hilbert_64f64fc", 1000, 8, 43440, 16208, 16208}, {"FFT_R_64f", 29, 8, -7, -7, -7, kOrder},
        {"DFT_C_32fc", 1 << 29, 8, 64, 0, 0, zetStsUnsupportedErr}, {"DFT_C_32fc", 67108879, 8, 0, 0, 0, kSizeErr},
        {"DFT_C_32fc", 3 << 20, 2, 36352704, 25165888, 25166016},
    };
    for (const Row& r : rows) {
        const Form& f = form(r.form);
        const std::size_t n = f.length(r.size);
        int s = -7, i = -7, w = -7;
        EXPECT_EQ(f.getSize(r.size, r.flag, 0, &s, &i, &w), r.st) << at(f, r.size);
        EXPECT_TRUE(s == r.spec && i == r.init && w == r.work) << at(f, r.size) << ": " << s << " " << i << " " << w;
        if (r.st || s > (1 << 22)) continue;
        Object o(f, r.size, r.flag);
        const void* obj;
        EXPECT_EQ(f.init(r.size, r.flag, 0, o.buf[0], nullptr, &obj), i ? kNull : kOk) << at(f, r.size);
        Data x(f, f.reals(n, false, false, 0)), y(f, f.reals(n, true, false, 0));
        const void* src[2] = {x.p[0], x.p[1]};
        const bool spare = f.byOrder && f.kind == Real && r.size <= 7;
        EXPECT_EQ(f.run(0, src, y.p, o.obj, nullptr), w && !spare ? kNull : kOk) << at(f, r.size);
    }
    for (const Form& f : forms())
        for (int size = !f.byOrder; size <= (f.byOrder ? 27 : 2100); ++size) {
            int a[3], b[3], c[3];
            ASSERT_EQ(f.getSize(size, 2, 0, &a[0], &a[1], &a[2]), kOk);
            f.getSize(size, f.byOrder ? 2 : 4, 12345, &b[0], &b[1], &b[2]);
            (f.kind == Split && !f.byOrder ? (&f)[-1] : f).getSize(size, 2, -1, &c[0], &c[1], &c[2]);
            EXPECT_TRUE(!std::memcmp(a, b, sizeof a) && !std::memcmp(a, c, sizeof a)) << at(f, size);
        }
}

// ---- argument checks ----------------------------------------------------------------------------
// The faults of each form in the order its checks run.
Walk walkOf(const Form& f) {
    using V = std::vector<Fault>;
    auto cat = [](std::initializer_list<V> l) {
        V v;
        for (const V& x : l) v.insert(v.end(), x.begin(), x.end());
        return v;
    };
    const Fault obj{kObj, 0, kNull}, word{kWord, 0, kMismatch}, work{kWork, 0, kNull}, dst{kDst0, 0, kNull};
    const Fault src{kSrc0, 0, kNull}, src1{kSrc1, 0, kNull}, dst1{kDst1, 0, kNull}, buf{kBuf, 0, kNull};
    const V outs = f.kind == Hilbert ? V{{kOut0, 0, kNull}, {kOut2, 0, kNull}}
                                     : V{{kOut0, 0, kNull}, {kOut1, 0, kNull}, {kOut2, 0, kNull}};
    V flags;
    for (int v : {0, 3, 5, 6, 7, 9, 16, 129, 257, -1, INT_MIN}) flags.push_back({kFlag, v, kFlagErr, true});
    const V lengths = {{kSize, 0, kSizeErr}, {kSize, -1, kSizeErr}}, scratch = {{kScratch, 0, kNull, true}};
    const V run = f.kind == Split ? V{obj, word, src, dst, src1, dst1, work} : V{obj, word, src, dst, work};
    if (f.byOrder) {  // orders past 30 before the pointers, those past the limit after them
        const Fault past{kSize, f.dbl() ? 28 : 29, kOrder};
        const V inPlace = f.kind == Real ? V{obj, word, dst, work}
                                         : f.kind == Split ? V{obj, dst, dst1, word, work} : V{obj, dst, word, work};
        return {12, cat({{{kSize, 31, kOrder}, {kSize, -1, kOrder}}, outs, f.kind == Real ? V{} : V{past}, flags}),
                cat({{{kPP, 0, kNull}, past, {kSize, -1, kOrder}, buf}, flags, scratch}), run, inPlace};
    }
    if (f.kind == Hilbert) return {60, cat({outs, lengths}), cat({{buf, {kScratch, 0, kNull}}, lengths}),
                                   {obj, work, src, dst, word}, {}};
    if (f.kind > Real) return {60, cat({outs, lengths}), cat({{buf}, lengths, scratch}), run, {obj, word, dst, work}};
    const V tooLong = {{kSize, f.dbl() ? 0x3FFFFFF + 2 : 0x7FFFFFF + 2, kSizeErr}};
    return {60, cat({outs, lengths, tooLong, flags}), cat({{buf}, lengths, tooLong, flags, scratch}), run, {}};
}

TEST(Transform, ArgumentChecksRunInOrder) {
    for (const Form& f : forms()) walk(f, walkOf(f));
}

// ---- values -----------------------------------------------------------------------------------
// Every size to 12 (orders), 40 to 70 (lengths); then the DFT's ways and thresholds: direct at 17 and 47, 51 mixed with
// a generic leaf, 53 the first chirp, 4*149 mixed but 4*151 chirp, 2*47 mixed but 2*151 chirp, 2001 the first sweep in
// blocks, 4099 past the convolution size table.
class Exact : public ::testing::TestWithParam<std::size_t> {};
TEST_P(Exact, EverySmallSizeFlagDirectionLayoutAndPath) {
    const Form& f = forms()[GetParam()];
    std::vector<int> v;
    const int top = f.byOrder ? 12 : f.kind == Hilbert ? 40 : f.kind > Real ? 70 : 64;
    for (int s = !f.byOrder; s <= top; ++s) v.push_back(s);
    if (f.kind == Hilbert) v.insert(v.end(), {64, 100, 101, 257, 1000});
    else if (f.kind > Real) v.insert(v.end(), {97, 100, 128, 255, 256, 360, 1000, 1024});
    else if (!f.byOrder) v.insert(v.end(), {94, 98, 302, 596, 604, 1000, 2001, 2025, 4096, 4099});
    for (int size : v) checkExact(f, size);
}
INSTANTIATE_TEST_SUITE_P(Forms, Exact, ::testing::Range(std::size_t{0}, forms().size()),
                         [](const auto& i) { return std::string(forms()[i.param].name); });

// Every FFT form at orders 13 to 24; above 20 the unaligned destination costs more than it finds.
class FFTLarge : public ::testing::TestWithParam<int> {};
TEST_P(FFTLarge, Properties) {
    const int order = GetParam();
    for (const Form& f : forms()) {
        const Placement odd{Placement::Offset, f.dbl() ? 16u : 4u};  // 16: a double 16- but not 32-byte aligned
        if (f.byOrder) checkProperties(f, order, kFlags[order % 4], order > 20 ? kTail : odd);
    }
}
// Under the sanitizers orders 23 and 24 take minutes; 22 still reaches the large form's second column layout in double
// and its first in single.
#if defined(__SANITIZE_ADDRESS__)
INSTANTIATE_TEST_SUITE_P(FFT, FFTLarge, ::testing::Range(13, 23));
#else
INSTANTIATE_TEST_SUITE_P(FFT, FFTLarge, ::testing::Range(13, 25));
#endif

TEST(DFT, LargeLengthsByProperties) {
    for (int n : {8209, 2 * 3 * 5 * 7 * 11 * 13, 46080, 1 << 15, 510510})
        for (const Form& f : forms())
            if (!f.byOrder && f.kind <= Real) checkProperties(f, n, kFlags[n % 4], {Placement::Offset, 8});
}

// ---- the object buffer and the hint; threads -------------------------------------------------------
// A buffer at any offset from the object's alignment, built with any hint, gives the bits of an aligned one built with
// hint 0; FFT Init returns the object at the buffer's first 64-byte boundary.
TEST(Transform, AnyBufferOffsetAndHintGiveTheSameBits) {
    for (const Form& f : forms())
        for (int size : f.byOrder ? std::vector{0, 6, 7, 11, 12, f.dbl() ? 18 : 19} : std::vector{17, 53, 60}) {
            const std::size_t n = f.length(size);
            Data s(f, f.reals(n, false, false, 0)), y(f, f.reals(n, true, false, 0));
            s.load(input(f, n, false, 0, size));
            Vec want[2];
            for (auto [shift, hint] : {std::pair{0, 0}, {1, 1}, {17, -1}, {63, INT_MAX}, {32, 12345}}) {
                Object o(f, size, size % 3 ? ZET_SCALE_NONE : ZET_SCALE_SYM, shift % f.align, hint);
                ASSERT_EQ(o.status, kOk) << at(f, size) << " offset " << shift;
                EXPECT_TRUE(!f.byOrder || o.obj == alignUp(o.buf[0], 64)) << f.name;
                for (int dir = 0; dir < (f.kind == Real ? 1 : f.dirs()); ++dir) {
                    ASSERT_EQ(apply(f, o, dir, 0, &s, y), kOk);
                    if (!shift) want[dir] = y.values();
                    EXPECT_EQ(y.values(), want[dir]) << at(f, size) << " offset " << shift << " hint " << hint;
                }
            }
        }
}

// ---- the DFT's own ---------------------------------------------------------------------------------
// The chirp way computes the inverse by its forward path: the inverse of x is the forward transform of x read backwards
// from index 0, bit for bit.
TEST(DFT, ChirpInverseIsTheReversedForward) {
    for (int n : {53, 101, 4099, 8209})
        for (const char* name : {"DFT_C_32fc", "DFT_C_32f", "DFT_C_64fc", "DFT_C_64f"})
            for (int flag : {ZET_SCALE_NONE, ZET_SCALE_SYM}) {
                const Form& f = form(name);
                Object o(f, n, flag);
                Data s(f, 2 * n), fwd(f, 2 * n), inv(f, 2 * n);
                s.load(input(f, n, false, 0, 11));
                ASSERT_EQ(apply(f, o, 0, 0, &s, fwd), kOk);
                ASSERT_EQ(apply(f, o, 1, 0, &s, inv), kOk);
                bool same = true;
                for (int k = 0; k < 2 * n; ++k) same = same && inv.get(k) == fwd.get(2 * ((n - k / 2) % n) + k % 2);
                EXPECT_TRUE(same) << at(f, n);
            }
}

// A power of two goes through the FFT core: the bits of the FFT of that order (flags that keep the FFT off its unscaled
// tiled method).
TEST(DFT, PowersOfTwoAreTheFFT) {
    for (auto [dft, fft] : {std::pair{"DFT_C_32fc", "FFT_C_32fc"}, {"DFT_R_64f", "FFT_R_64f"}})
        for (int order = 5; int flag : {ZET_SCALE_FWD, ZET_SCALE_SYM})
            for (order = 5; order <= 13; order += 2) {
                const Form &d = form(dft), &f = form(fft);
                const std::size_t n = f.length(order);
                Object od(d, n, flag), of(f, order, flag);
                Data s(d, d.reals(n, false, false, 0)), a(d, d.reals(n, true, false, 0)), b(d, a.count);
                s.load(input(d, n, false, 0, 17));
                ASSERT_EQ(apply(d, od, 0, 0, &s, a), kOk);
                ASSERT_EQ(apply(f, of, 0, 0, &s, b), kOk);
                EXPECT_TRUE(a.same(b, a.count)) << dft << " order " << order << " flag " << flag;
            }
}

// Init of every length to 3000 keeps the tables of each way inside the object and scratch promised, both placed tight
// against guard pages.
TEST(DFT, InitStaysInsideTheSizesAtEveryLength) {
    for (int n = 1; n <= 3000; ++n)
        for (const Form& f : forms())
            EXPECT_TRUE(f.byOrder || f.kind > Real || Object(f, n, ZET_SCALE_SYM).status == kOk) << at(f, n);
}

// ---- spectrum layouts -------------------------------------------------------------------------
// Conj expands a packed spectrum into len complex values; Mul multiplies two in Pack or Perm layout. One row per
// export, its traits read from its name; a: src (src1), b: src2 (srcDst).
struct SpecOp {
    const char* name;
    ZetStatus (*call)(const void* a, const void* b, void* d, long long len);
    bool inPlace;
    bool has(const char* s) const { return std::strstr(name, s); }
    bool mul() const { return has("Mul"); }
    int fmt() const { return has("Ccs") ? CCS : has("Pack") ? Pack : Perm; }
};
template <auto F> ZetStatus specCall(const void* a, const void* b, void* d, long long n) {
    if constexpr (kArity<F> == 2) return call(F, d, n);
    else if constexpr (kArity<F> == 3) return call(F, a, d, n);
    else return call(F, a, b, d, n);
}
#define SPEC(F) SpecOp{#F, specCall<F>, kArity<F> == 2 || (kArity<F> == 3 && std::strstr(#F, "Mul"))}
const SpecOp kSpecOps[] = {
    SPEC(zetsConjCcs_32fc), SPEC(zetsConjCcs_32fc_I), SPEC(zetsConjCcs_32fc_L), SPEC(zetsConjCcs_32fc_I_L),
    SPEC(zetsConjPack_32fc), SPEC(zetsConjPack_32fc_I), SPEC(zetsConjPack_32fc_L), SPEC(zetsConjPack_32fc_I_L),
    SPEC(zetsConjPerm_32fc), SPEC(zetsConjPerm_32fc_I), SPEC(zetsConjCcs_64fc), SPEC(zetsConjCcs_64fc_I),
    SPEC(zetsConjCcs_64fc_L), SPEC(zetsConjCcs_64fc_I_L), SPEC(zetsConjPack_64fc), SPEC(zetsConjPack_64fc_I),
    SPEC(zetsConjPack_64fc_L), SPEC(zetsConjPack_64fc_I_L), SPEC(zetsConjPerm_64fc), SPEC(zetsConjPerm_64fc_I),
    SPEC(zetsMulPack_32f), SPEC(zetsMulPack_32f_I), SPEC(zetsMulPerm_32f), SPEC(zetsMulPerm_32f_I),
    SPEC(zetsMulPack_64f), SPEC(zetsMulPack_64f_I), SPEC(zetsMulPerm_64f), SPEC(zetsMulPerm_64f_I),
    SPEC(zetsMulPackConj_32f_I), SPEC(zetsMulPackConj_64f_I)};

// The processor's rule: the left NaN (quieted), else the right one, else the product.
template <class T> T mulRef(T l, T r) {
    auto q = [](T x) { return zettest::fromBits<T>(zettest::bitsOf(x) | (sizeof(T) == 4 ? 1u << 22 : 1ull << 51)); };
    return std::isnan(l) ? q(l) : std::isnan(r) ? q(r) : l * r;
}
// The lone reals of a product: the leading one or two (even Perm), the last of even Pack.
bool realLane(int fmt, std::size_t len, std::size_t i) {
    return i < (fmt == Perm && len % 2 == 0 ? 2u : 1u) || (fmt == Pack && len % 2 == 0 && i == len - 1);
}
// Conj: X[k] as stored up to len/2 (CCS pairs as they are), mirrored conjugates above, the sign flipped whatever the
// value. Mul: lone reals as reals (b the left operand), pairs as zetsMul_32fc rounds them, b conjugated by PackConj.
template <class T>
std::vector<T> specRef(const SpecOp& op, const std::vector<T>& a, const std::vector<T>& b, std::size_t len) {
    std::vector<T> d;
    const int fmt = op.fmt();
    for (std::size_t k = 0; !op.mul() && k < len; ++k) {
        const std::size_t j = 2 * k <= len ? k : len - k, at = fmt == CCS ? 2 * j : j ? slot(fmt, len, j) : 0;
        const T im = fmt == CCS || (j && 2 * j != len) ? a[at + 1] : T(0);
        d.insert(d.end(), {a[at], j == k ? im : -im});
    }
    for (std::size_t i = 0; op.mul() && i < len; ++i) {
        if (realLane(fmt, len, i)) {
            d.push_back(mulRef(b[i], a[i]));
            continue;
        }
        const T br = b[i], bi = op.has("Conj") ? -b[i + 1] : b[i + 1];
        d.insert(d.end(), {std::fma(a[i], br, -(a[i + 1] * bi)), std::fma(a[i], bi, a[i + 1] * br)});
        ++i;
    }
    return d;
}
// Bit for bit, but any NaN for a NaN in the pairs of products.
template <class T> ::testing::AssertionResult sameSpec(const void* got, const std::vector<T>& want, const SpecOp& op) {
    for (std::size_t i = 0; i < want.size(); ++i) {
        T g;
        std::memcpy(&g, static_cast<const unsigned char*>(got) + i * sizeof(T), sizeof(T));
        if (zettest::bitsOf(g) != zettest::bitsOf(want[i]) &&
            !(op.mul() && !realLane(op.fmt(), want.size(), i) && std::isnan(g) && std::isnan(want[i])))
            return ::testing::AssertionFailure() << "value " << i << ": " << zettest::hexBits(g) << " want "
                                                 << zettest::hexBits(want[i]);
    }
    return ::testing::AssertionSuccess();
}

// Every row at every kernel length with special values mixed in, each vector in turn at each placement, the others
// against their guards; the bytes around the output untouched.
template <class T> void checkSpectrumRows() {
    std::mt19937_64 rng(53);
    for (const SpecOp& op : kSpecOps) {
        if (op.has("64") != (sizeof(T) == 8)) continue;
        for (int len : zettest::kernelLengths()) {
            const std::size_t n = len, na = op.mul() || op.fmt() != CCS ? n : n / 2 * 2 + 2, nd = op.mul() ? n : 2 * n;
            std::vector<T> a(na), b(n);
            zettest::fillFloats(a.data(), na, rng, 5);
            zettest::fillFloats(b.data(), n, rng, 5);
            const std::vector<T> want = specRef(op, a, b, n);
            // The vectors: a, b (products), the output; in place the output is b, or holds a.
            const bool used[3] = {op.mul() || !op.inPlace, op.mul(), !op.inPlace || !op.mul()};
            const std::size_t bytes[3] = {na * sizeof(T), n * sizeof(T), nd * sizeof(T)};
            GuardedRegion r[3] = {GuardedRegion(bytes[0]), GuardedRegion(bytes[1]), GuardedRegion(bytes[2])};
            for (const Placement& p : zettest::placementsFor(sizeof(T)))
                for (int moved = 0; moved < 3; ++moved) {
                    const bool thinned = p.kind == Placement::Offset && p.offset % 16 && p.offset % sizeof(T) == 0;
                    if (!used[moved] || thinned) continue;  // of the aligned offsets, those of 16 do
                    void* v[3];
                    for (int k = 0; k < 3; ++k) {
                        std::memset(r[k].begin(), 0xA5, r[k].capacity());
                        v[k] = zettest::place<unsigned char>(r[k], k == moved ? p : kTail, bytes[k]);
                    }
                    std::memcpy(v[0], a.data(), bytes[0]);
                    std::memcpy(v[1], b.data(), bytes[1]);
                    if (!op.mul() && op.inPlace) std::memcpy(v[2], a.data(), bytes[0]);
                    const int o = op.mul() && op.inPlace ? 1 : 2;
                    ASSERT_EQ(op.call(v[0], v[1], v[o], len), zetStsOk) << op.name;
                    ASSERT_TRUE(sameSpec<T>(v[o], want, op)) << op.name << " len " << len << " at " << p.name();
                    unsigned char *b0 = static_cast<unsigned char*>(v[o]), *e = b0 + want.size() * sizeof(T);
                    ASSERT_TRUE(std::count(r[o].begin(), b0, 0xA5) == b0 - r[o].begin() &&
                                std::count(e, r[o].end(), 0xA5) == r[o].end() - e)
                        << op.name << " wrote around its output, len " << len;
                }
            // A plain product onto a source runs the in-place path with the other source: onto src1 the operands trade
            // roles, which shows in the fused product of the imaginary parts.
            if (!op.mul() || op.inPlace) continue;
            std::vector<T> d = a;
            ASSERT_EQ(op.call(d.data(), b.data(), d.data(), len), zetStsOk);
            ASSERT_TRUE(sameSpec<T>(d.data(), specRef(op, b, a, n), op)) << op.name << " onto src1, len " << len;
            d = b;
            ASSERT_EQ(op.call(a.data(), d.data(), d.data(), len), zetStsOk);
            ASSERT_TRUE(sameSpec<T>(d.data(), want, op)) << op.name << " onto src2, len " << len;
        }
    }
}
TEST(Spectrum, EveryRowAtEveryLengthAndPlacement) {
    checkSpectrumRows<float>();
    checkSpectrumRows<double>();
}

// Literal cases, which also hold the reference to the layouts.
TEST(Spectrum, SmallCases) {
    struct Case { const char* op; std::vector<double> a, b, want; };
    const std::vector<double> w4{1, 0, 2, 3, 4, 0, 2, -3};
    const Case cases[] = {
        {"zetsConjCcs_64fc", {5, 0}, {}, {5, 0}}, {"zetsConjPack_64fc", {5}, {}, {5, 0}},
        {"zetsConjPerm_64fc", {5, -2}, {}, {5, 0, -2, 0}}, {"zetsConjCcs_64fc", {1, 0, 2, 3, 4, 0}, {}, w4},
        {"zetsConjPack_64fc", {1, 2, 3, 4}, {}, w4}, {"zetsConjPerm_64fc", {1, 4, 2, 3}, {}, w4},
        {"zetsMulPerm_64f", {2, 1, 2, 5, 6}, {3, 3, 4, 7, -1}, {6, -5, 10, 41, 37}},  // 2*3, (1+2i)(3+4i), (5+6i)(7-i)
        {"zetsMulPerm_64f", {2, 1, 2, 5}, {3, 3, 4, 7}, {6, 3, -27, 34}},               // 2*3, 1*3, (2+5i)(4+7i)
        {"zetsMulPack_64f", {2, 1, 2, 5}, {3, 3, 4, 7}, {6, -5, 10, 35}},               // 2*3, (1+2i)(3+4i), 5*7
        {"zetsMulPackConj_64f_I", {2, 1, 2, 5}, {3, 3, 4, 7}, {6, 11, 2, 35}},          // src * conj(srcDst)
    };
    for (const Case& c : cases) {
        auto named = [&](const SpecOp& o) { return !std::strcmp(o.name, c.op); };
        const SpecOp& op = *std::find_if(std::begin(kSpecOps), std::end(kSpecOps), named);
        const std::size_t len = op.mul() ? c.a.size() : c.want.size() / 2;
        std::vector<double> b = c.b, d(c.want.size(), 9);
        ASSERT_EQ(op.call(c.a.data(), b.data(), op.inPlace ? b.data() : d.data(), len), zetStsOk);
        EXPECT_EQ(op.inPlace ? b : d, c.want) << c.op;
        EXPECT_EQ(specRef(op, c.a, c.b, len), c.want) << "the reference of " << c.op;
    }
}

// Pointers before the length, also in the 64-bit forms; nothing written on an error.
TEST(Spectrum, StatusOrder) {
    for (const SpecOp& op : kSpecOps) {
        double a[8] = {1, 2, 3, 4, 5, 6, 7, 8}, b[8] = {1, 2, 3, 4, 5, 6, 7, 8}, d[8] = {-3, -3, -3, -3};
        double* out = op.mul() && op.inPlace ? b : d;
        const std::vector<double> before(out, out + 8);
        for (long long len : {4LL, 0LL, -1LL}) {
            EXPECT_TRUE((!op.mul() && op.inPlace) || op.call(nullptr, b, out, len) == zetStsNullPtrErr) << op.name;
            EXPECT_TRUE(!op.mul() || op.inPlace || op.call(a, nullptr, out, len) == zetStsNullPtrErr) << op.name;
            EXPECT_EQ(op.call(a, b, nullptr, len), zetStsNullPtrErr) << op.name;
            EXPECT_TRUE(!op.mul() || op.inPlace || op.call(out, nullptr, out, len) == zetStsNullPtrErr) << op.name;
        }
        for (long long len : {0LL, -1LL, -(1LL << 40)})
            EXPECT_EQ(op.call(a, b, out, len), zetStsSizeErr) << op.name << " " << len;
        EXPECT_EQ(std::vector<double>(out, out + 8), before) << op.name;
    }
}

}  // namespace
}  // namespace tkit
