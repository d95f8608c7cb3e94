// Floating-point arithmetic against the scalar references: every export of
// the family over lengths 1..70 and beyond, every placement of each vector
// (against guard pages, at every element and some byte offsets), in place,
// through the _L drivers, and the status order of each form.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "float_ref.hpp"
#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using zettest::Placement;

template <class E> constexpr bool kComplex = std::is_same_v<E, Zet32fc> || std::is_same_v<E, Zet64fc>;
template <class E> using Real = std::conditional_t<kComplex<E>, fref::RealOf<E>, E>;

// ---- references by element type ----------------------------------------------
template <class E, class F> E parts(E a, E b, F f) {
    if constexpr (kComplex<E>) return {f(a.re, b.re), f(a.im, b.im)};
    else return f(a, b);
}
template <class E> E refAdd(E a, E b) { return parts(b, a, fref::add<Real<E>>); }
template <class E> E refSub(E a, E b) { return parts(b, a, fref::sub<Real<E>>); }
template <class E> E refMul(E a, E b) {
    if constexpr (kComplex<E>) return fref::cmul(a, b);
    else return fref::mul(b, a);
}
template <class E> E refAddC(E a, E c) { return parts(a, c, fref::add<Real<E>>); }
template <class E> E refSubC(E a, E c) { return parts(a, c, fref::sub<Real<E>>); }
template <class E> E refSubCRev(E a, E c) { return parts(c, a, fref::sub<Real<E>>); }
template <class E> E refMulC(E a, E c) {
    if constexpr (kComplex<E>) return fref::cmulC(a, c);
    else return fref::mul(c, a);
}
template <class E> E refSqr(E a) {
    if constexpr (kComplex<E>) return fref::csqr(a);
    else return fref::mul(a, a);
}
template <class E> E refAddProduct(E a, E b, E d) {
    if constexpr (kComplex<E>) return fref::caddProduct(a, b, d);
    else return std::fma(b, a, d);
}
template <class E> E refAddProductC(E a, E c, E d) {
    if constexpr (kComplex<E>) return fref::caddProductC(a, c, d);
    else return fref::add(fref::mul(c, a), d);
}

template <class E> bool isZero(E v) {
    if constexpr (kComplex<E>) return v.re == 0 && v.im == 0;
    else return v == 0;
}
// Complex b / a as documented: in double for 32fc, Smith's ordering for 64fc,
// each part of b over 0 for a zero divisor.
template <class E> E refDiv(E a, E b) {
    if constexpr (kComplex<E>) {
        if (isZero(a)) return {b.re / a.re, b.im / a.re};
        if constexpr (std::is_same_v<E, Zet32fc>) {
            const double ar = a.re, ai = a.im, br = b.re, bi = b.im, den = ar * ar + ai * ai;
            return {static_cast<float>((br * ar + bi * ai) / den), static_cast<float>((bi * ar - br * ai) / den)};
        } else if (std::fabs(a.re) >= std::fabs(a.im)) {
            const double t = a.im / a.re, den = a.re + a.im * t;
            return {(b.re + b.im * t) / den, (b.im - b.re * t) / den};
        } else {
            const double t = a.re / a.im, den = a.re * t + a.im;
            return {(b.re * t + b.im) / den, (b.im * t - b.re) / den};
        }
    } else {
        return fref::ordered(b, a, b / a);
    }
}
// Division by a constant: multiplication by the reciprocal rounded once.
template <class E> E refDivC(E a, E c) {
    if constexpr (kComplex<E>) return refMulC(a, refDiv(c, E{1, 0}));
    else return refMulC(a, E(1) / c);
}
template <class E> E refDivCRev(E a, E c) { return fref::ordered(c, a, c / a); }

// ---- one export as the test sees it ---------------------------------------------
template <class E>
struct Kernel {
    std::string name;
    int inputs;       // vectors read besides dst
    bool dstIsInput;  // in place or accumulating: dst holds an operand too
    std::function<ZetStatus(const E* const* in, E* dst, long long len)> call;
    std::function<E(const E* x)> ref;  // x: the inputs, then the old dst
    bool exactNaN;                     // the NaN delivered is fixed by the contract
    bool lenFirst;                     // checks the length before the pointers
    bool sweep;                        // walk every placement (plain forms)
    int divisor = -1;                  // the vector whose zero elements turn the status into a warning
};

// Non-special constants: 0 and 1 have behaviour of their own, tested apart.
template <class E> E constant() {
    if constexpr (kComplex<E>) return {Real<E>(1.375), Real<E>(-0.625)};
    else return E(-1.375);
}

// Builds the kernels of one type. The four forms of a shape share a reference.
#define K2(OP, T, REF, EXACT, LENFIRST)                                                                               \
    {"zets" #OP "_" #T, 2, false, [](const E* const* in, E* d, long long n) { return zets##OP##_##T(in[0], in[1], d, static_cast<int>(n)); }, \
     [](const E* x) { return REF(x[0], x[1]); }, EXACT, LENFIRST, true},                                                \
    {"zets" #OP "_" #T "_I", 1, true, [](const E* const* in, E* d, long long n) { return zets##OP##_##T##_I(in[0], d, static_cast<int>(n)); }, \
     [](const E* x) { return REF(x[0], x[1]); }, EXACT, LENFIRST, false},                                               \
    {"zets" #OP "_" #T "_L", 2, false, [](const E* const* in, E* d, long long n) { return zets##OP##_##T##_L(in[0], in[1], d, n); },   \
     [](const E* x) { return REF(x[0], x[1]); }, EXACT, true, false},                                                   \
    {"zets" #OP "_" #T "_I_L", 1, true, [](const E* const* in, E* d, long long n) { return zets##OP##_##T##_I_L(in[0], d, n); },    \
     [](const E* x) { return REF(x[0], x[1]); }, EXACT, true, false}
#define K1(OP, T, REF, EXACT)                                                                                           \
    {"zets" #OP "_" #T, 1, false, [](const E* const* in, E* d, long long n) { return zets##OP##_##T(in[0], d, static_cast<int>(n)); }, \
     [](const E* x) { return REF(x[0]); }, EXACT, false, true},                                                          \
    {"zets" #OP "_" #T "_I", 0, true, [](const E* const*, E* d, long long n) { return zets##OP##_##T##_I(d, static_cast<int>(n)); }, \
     [](const E* x) { return REF(x[0]); }, EXACT, false, false},                                                         \
    {"zets" #OP "_" #T "_L", 1, false, [](const E* const* in, E* d, long long n) { return zets##OP##_##T##_L(in[0], d, n); },          \
     [](const E* x) { return REF(x[0]); }, EXACT, true, false},                                                          \
    {"zets" #OP "_" #T "_I_L", 0, true, [](const E* const*, E* d, long long n) { return zets##OP##_##T##_I_L(d, n); },                \
     [](const E* x) { return REF(x[0]); }, EXACT, true, false}
#define KC(OP, T, REF, EXACT, LFIRST_L)                                                                                  \
    {"zets" #OP "_" #T, 1, false, [](const E* const* in, E* d, long long n) { return zets##OP##_##T(in[0], constant<E>(), d, static_cast<int>(n)); }, \
     [](const E* x) { return REF(x[0], constant<E>()); }, EXACT, false, true},                                           \
    {"zets" #OP "_" #T "_I", 0, true, [](const E* const*, E* d, long long n) { return zets##OP##_##T##_I(constant<E>(), d, static_cast<int>(n)); }, \
     [](const E* x) { return REF(x[0], constant<E>()); }, EXACT, false, false},                                          \
    {"zets" #OP "_" #T "_L", 1, false, [](const E* const* in, E* d, long long n) { return zets##OP##_##T##_L(in[0], constant<E>(), d, n); }, \
     [](const E* x) { return REF(x[0], constant<E>()); }, EXACT, LFIRST_L, false},                                       \
    {"zets" #OP "_" #T "_I_L", 0, true, [](const E* const*, E* d, long long n) { return zets##OP##_##T##_I_L(constant<E>(), d, n); }, \
     [](const E* x) { return REF(x[0], constant<E>()); }, EXACT, LFIRST_L, false}

#define KERNELS_OF(T, EXACT_REAL, CPLX)                                                                      \
    K2(Add, T, refAdd<E>, true, CPLX), K2(Sub, T, refSub<E>, true, CPLX), K2(Mul, T, refMul<E>, EXACT_REAL, false), \
        KC(AddC, T, refAddC<E>, true, true), KC(SubC, T, refSubC<E>, true, true),                            \
        KC(SubCRev, T, refSubCRev<E>, true, true), KC(MulC, T, refMulC<E>, EXACT_REAL, false),                \
        K1(Sqr, T, refSqr<E>, EXACT_REAL),                                                                    \
        {"zetsAddProduct_" #T, 2, true,                                                                       \
         [](const E* const* in, E* d, long long n) { return zetsAddProduct_##T(in[0], in[1], d, static_cast<int>(n)); }, \
         [](const E* x) { return refAddProduct(x[0], x[1], x[2]); }, false, false, true},                    \
        {"zetsAddProductC_" #T, 1, true,                                                                      \
         [](const E* const* in, E* d, long long n) { return zetsAddProductC_##T(in[0], constant<E>(), d, static_cast<int>(n)); }, \
         [](const E* x) { return refAddProductC(x[0], constant<E>(), x[1]); }, EXACT_REAL, false, true}

// Division forms, with the vector whose zeros warn: src1 (or src), or the
// old srcDst of DivCRev's in-place forms.
template <class E>
std::vector<Kernel<E>> withDivisor(std::vector<Kernel<E>> ks, int plain, int inPlace) {
    for (auto& k : ks) k.divisor = k.dstIsInput ? inPlace : plain;
    return ks;
}
template <class E> std::vector<Kernel<E>> kernels();
template <> std::vector<Kernel<float>> kernels() {
    using E = float;
    auto ks = std::vector<Kernel<E>>{KERNELS_OF(32f, true, false), K1(Abs, 32f, fref::absMax<float>, true),
                                     KC(DivC, 32f, refDivC<E>, true, true)};
    for (auto& k : withDivisor<E>({K2(Div, 32f, refDiv<E>, true, false)}, 0, 0)) ks.push_back(k);
    for (auto& k : withDivisor<E>({KC(DivCRev, 32f, refDivCRev<E>, true, true)}, 0, 0)) ks.push_back(k);
    return ks;
}
template <> std::vector<Kernel<double>> kernels() {
    using E = double;
    auto ks = std::vector<Kernel<E>>{KERNELS_OF(64f, true, false), K1(Abs, 64f, fref::absMax<double>, true),
                                     KC(DivC, 64f, refDivC<E>, true, true)};
    for (auto& k : withDivisor<E>({K2(Div, 64f, refDiv<E>, true, false)}, 0, 0)) ks.push_back(k);
    return ks;
}
template <> std::vector<Kernel<Zet32fc>> kernels() {
    using E = Zet32fc;
    auto ks = std::vector<Kernel<E>>{KERNELS_OF(32fc, false, true), KC(DivC, 32fc, refDivC<E>, false, true)};
    for (auto& k : withDivisor<E>({K2(Div, 32fc, refDiv<E>, false, false)}, 0, 0)) ks.push_back(k);
    return ks;
}
template <> std::vector<Kernel<Zet64fc>> kernels() {
    using E = Zet64fc;
    auto ks = std::vector<Kernel<E>>{KERNELS_OF(64fc, false, true), KC(DivC, 64fc, refDivC<E>, false, true)};
    for (auto& k : withDivisor<E>({K2(Div, 64fc, refDiv<E>, false, false)}, 0, 0)) ks.push_back(k);
    return ks;
}

// ---- comparison --------------------------------------------------------------------
template <class E>
::testing::AssertionResult same(const std::vector<E>& got, const std::vector<E>& want, bool exactNaN,
                                const std::vector<std::vector<E>>& in) {
    constexpr int kParts = kComplex<E> ? 2 : 1;
    const auto* g = reinterpret_cast<const Real<E>*>(got.data());
    const auto* w = reinterpret_cast<const Real<E>*>(want.data());
    for (std::size_t i = 0; i < got.size() * kParts; ++i) {
        if (zettest::bitsOf(g[i]) == zettest::bitsOf(w[i])) continue;
        if (!exactNaN && std::isnan(g[i]) && std::isnan(w[i])) continue;
        auto r = ::testing::AssertionFailure() << "element " << i / kParts << " part " << i % kParts << ": got "
                                                << zettest::hexBits(g[i]) << " want " << zettest::hexBits(w[i]);
        const std::size_t e = i / kParts * kParts;  // every part of the element's inputs
        for (const auto& v : in)
            for (int q = 0; q < kParts; ++q) r << " in " << zettest::hexBits(reinterpret_cast<const Real<E>*>(v.data())[e + q]);
        return r;
    }
    return ::testing::AssertionSuccess();
}

template <class E>
void checkKernel(const Kernel<E>& k, std::mt19937_64& rng) {
    const int nvec = k.inputs + 1;
    std::vector<std::unique_ptr<GuardedRegion>> regions;
    for (int v = 0; v < nvec; ++v) regions.push_back(std::make_unique<GuardedRegion>(4200 * sizeof(E)));
    std::vector<Placement> placements = k.sweep ? zettest::placementsFor(sizeof(Real<E>)) : std::vector<Placement>{};
    if (!k.sweep) placements.push_back({Placement::Tail, 0});
    std::vector<std::vector<E>> in(nvec);
    std::vector<E> got, want;
    for (int len : zettest::kernelLengths()) {
        for (auto& v : in) v.resize(len);
        got.resize(len);
        want.resize(len);
        const std::size_t bytes = len * sizeof(E);
        for (const Placement& p : placements) {
            for (int moved = 0; moved < (k.sweep ? nvec : 1); ++moved) {
                E* ptr[4];
                for (int v = 0; v < nvec; ++v) {
                    const Placement q = v == moved ? p : Placement{v % 2 ? Placement::Head : Placement::Tail, 0};
                    ptr[v] = zettest::place<E>(*regions[v], q, len);
                    zettest::fillFloats(reinterpret_cast<Real<E>*>(in[v].data()), len * (kComplex<E> ? 2 : 1), rng);
                    std::memcpy(ptr[v], in[v].data(), bytes);
                }
                E* dst = ptr[k.inputs];
                for (int i = 0; i < len; ++i) {
                    E x[4];
                    for (int v = 0; v < nvec; ++v) x[v] = in[v][i];
                    want[i] = k.ref(x);
                }
                ZetStatus want_status = zetStsOk;
                if (k.divisor >= 0)
                    for (int i = 0; i < len; ++i)
                        if (isZero(in[k.divisor][i])) want_status = zetStsDivByZeroWarn;
                ASSERT_EQ(k.call(ptr, dst, len), want_status) << k.name << " len " << len;
                std::memcpy(got.data(), dst, bytes);
                // Inputs other than dst are read only.
                for (int v = 0; v < k.inputs; ++v)
                    ASSERT_EQ(std::memcmp(ptr[v], in[v].data(), bytes), 0) << k.name << " wrote its source " << v;
                ASSERT_TRUE(same(got, want, k.exactNaN, in))
                    << k.name << " len " << len << " " << p.name() << " moved vector " << moved;
            }
        }
    }
}

template <class E> class FloatArith : public ::testing::Test {};
using Types = ::testing::Types<float, double, Zet32fc, Zet64fc>;
TYPED_TEST_SUITE(FloatArith, Types);

TYPED_TEST(FloatArith, EveryFormMatchesItsFormula) {
    std::mt19937_64 rng(20);
    for (const auto& k : kernels<TypeParam>()) checkKernel(k, rng);
}

// Each pointer null in turn, lengths 0 and negative, and the pair a null
// pointer with a zero length, which tells length-first forms apart. Nothing
// is written on an error.
TYPED_TEST(FloatArith, StatusOrderAndNothingWrittenOnError) {
    using E = TypeParam;
    std::vector<E> a(8), b(8), d(8);
    for (const auto& k : kernels<E>()) {
        const int nptr = k.inputs + 1;
        for (int nullAt = -1; nullAt < nptr; ++nullAt) {
            for (long long len : {0LL, -1LL, 3LL}) {
                if (nullAt < 0 && len > 0) continue;
                const E* in[2] = {nullAt == 0 ? nullptr : a.data(), nullAt == 1 ? nullptr : b.data()};
                E* dst = nullAt == k.inputs ? nullptr : d.data();
                std::memset(d.data(), 0x5A, d.size() * sizeof(E));
                ZetStatus want = nullAt >= 0 ? zetStsNullPtrErr : zetStsSizeErr;
                if (k.lenFirst && len < 1) want = zetStsSizeErr;
                EXPECT_EQ(k.call(in, dst, len), want) << k.name << " null at " << nullAt << " len " << len;
                for (std::size_t i = 0; i < d.size() * sizeof(E); ++i)
                    ASSERT_EQ(reinterpret_cast<unsigned char*>(d.data())[i], 0x5A) << k.name << " wrote on error";
            }
        }
    }
}

// ---- special constants -----------------------------------------------------------------

// A vector that tells a copy from arithmetic: -0 stays -0 only through a copy
// (x + 0 and x - 0 turn it into +0), a signalling NaN stays signalling only
// through a copy, and x * 0 is not +0 for negatives, infinities and NaNs.
template <class R>
std::vector<R> telling() {
    const R snan = zettest::fromBits<R>(sizeof(R) == 4 ? 0x7F800123ull : 0x7FF0000000000123ull);
    return {R(-0.0), snan, R(-2.5), std::numeric_limits<R>::infinity(), R(3), R(0), -snan, R(-1e-30), R(7), R(-0.0), R(1)};
}

template <class R>
std::vector<R> bitsAfter(const std::function<ZetStatus(const R*, R*, int)>& call, ZetStatus want, bool inPlace) {
    std::vector<R> src = telling<R>(), dst(src.size(), R(42));
    if (inPlace) dst = src;
    EXPECT_EQ(call(src.data(), dst.data(), static_cast<int>(src.size())), want);
    return dst;
}

TEST(FloatConstants, ZeroAndOneBecomeCopiesZeroingsOrReturns) {
    using F = std::function<ZetStatus(const float*, float*, int)>;
    using D = std::function<ZetStatus(const double*, double*, int)>;
    const auto f = telling<float>();
    const auto dd = telling<double>();
    const std::vector<float> fzero(f.size(), 0.0f);
    const std::vector<double> dzero(dd.size(), 0.0);
    struct FCase { const char* name; F call; bool inPlace; std::vector<float> want; };
    const FCase fcases[] = {
        {"AddC_32f +0", [](const float* s, float* d, int n) { return zetsAddC_32f(s, 0.0f, d, n); }, false, f},
        {"AddC_32f -0", [](const float* s, float* d, int n) { return zetsAddC_32f(s, -0.0f, d, n); }, false, f},
        {"AddC_32f_I 0", [](const float*, float* d, int n) { return zetsAddC_32f_I(0.0f, d, n); }, true, f},
        {"SubC_32f 0", [](const float* s, float* d, int n) { return zetsSubC_32f(s, -0.0f, d, n); }, false, f},
        {"SubC_32f_I 0", [](const float*, float* d, int n) { return zetsSubC_32f_I(0.0f, d, n); }, true, f},
        {"MulC_32f 1", [](const float* s, float* d, int n) { return zetsMulC_32f(s, 1.0f, d, n); }, false, f},
        {"MulC_32f_I 1", [](const float*, float* d, int n) { return zetsMulC_32f_I(1.0f, d, n); }, true, f},
        {"MulC_32f 0", [](const float* s, float* d, int n) { return zetsMulC_32f(s, 0.0f, d, n); }, false, fzero},
        {"MulC_32f -0", [](const float* s, float* d, int n) { return zetsMulC_32f(s, -0.0f, d, n); }, false, fzero},
        {"MulC_32f_I 0", [](const float*, float* d, int n) { return zetsMulC_32f_I(0.0f, d, n); }, true, fzero},
        {"MulC_32f_L 1", [](const float* s, float* d, int n) { return zetsMulC_32f_L(s, 1.0f, d, n); }, false, f},
        {"MulC_32f_I_L 1", [](const float*, float* d, int n) { return zetsMulC_32f_I_L(1.0f, d, n); }, true, f},
        {"MulC_32f_I_L 0", [](const float*, float* d, int n) { return zetsMulC_32f_I_L(0.0f, d, n); }, true, fzero},
    };
    for (const auto& c : fcases) {
        const auto got = bitsAfter<float>(c.call, zetStsOk, c.inPlace);
        EXPECT_EQ(zettest::firstBitMismatch(got.data(), c.want.data(), got.size()), -1) << c.name;
    }
    struct DCase { const char* name; D call; bool inPlace; std::vector<double> want; };
    const DCase dcases[] = {
        {"AddC_64f 0", [](const double* s, double* d, int n) { return zetsAddC_64f(s, 0.0, d, n); }, false, dd},
        {"AddC_64f_I 0", [](const double*, double* d, int n) { return zetsAddC_64f_I(-0.0, d, n); }, true, dd},
        {"SubC_64f 0", [](const double* s, double* d, int n) { return zetsSubC_64f(s, 0.0, d, n); }, false, dd},
        {"SubC_64f_I 0", [](const double*, double* d, int n) { return zetsSubC_64f_I(0.0, d, n); }, true, dd},
        {"MulC_64f 1", [](const double* s, double* d, int n) { return zetsMulC_64f(s, 1.0, d, n); }, false, dd},
        {"MulC_64f_I 1", [](const double*, double* d, int n) { return zetsMulC_64f_I(1.0, d, n); }, true, dd},
        {"MulC_64f 0", [](const double* s, double* d, int n) { return zetsMulC_64f(s, 0.0, d, n); }, false, dzero},
        {"MulC_64f_I 0", [](const double*, double* d, int n) { return zetsMulC_64f_I(0.0, d, n); }, true, dzero},
        {"MulC_64f_L 0", [](const double* s, double* d, int n) { return zetsMulC_64f_L(s, 0.0, d, n); }, false, dzero},
        {"MulC_64f_L 1", [](const double* s, double* d, int n) { return zetsMulC_64f_L(s, 1.0, d, n); }, false, dd},
    };
    for (const auto& c : dcases) {
        const auto got = bitsAfter<double>(c.call, zetStsOk, c.inPlace);
        EXPECT_EQ(zettest::firstBitMismatch(got.data(), c.want.data(), got.size()), -1) << c.name;
    }
}

// Constants that take no shortcut: the arithmetic runs, element by element.
TEST(FloatConstants, ArithmeticRunsWhereNoShortcutApplies) {
    const auto f = telling<float>();
    std::vector<float> d(f.size());
    // The 32f _L MulC zeroes, then multiplies: val * src, so -0 for negatives and NaN for inf and NaN.
    ASSERT_EQ(zetsMulC_32f_L(f.data(), 0.0f, d.data(), static_cast<long long>(f.size())), zetStsOk);
    for (std::size_t i = 0; i < f.size(); ++i)
        EXPECT_EQ(zettest::bitsOf(d[i]), zettest::bitsOf(fref::mul(0.0f, f[i]))) << i;
    // In place with -0: the zeros take the sign of val.
    std::vector<float> z = f;
    ASSERT_EQ(zetsMulC_32f_I_L(-0.0f, z.data(), static_cast<long long>(z.size())), zetStsOk);
    for (float v : z) EXPECT_EQ(zettest::bitsOf(v), 0x80000000u);
    // SubCRev with 0 and SubC with NaN compute.
    ASSERT_EQ(zetsSubCRev_32f(f.data(), 0.0f, d.data(), static_cast<int>(f.size())), zetStsOk);
    for (std::size_t i = 0; i < f.size(); ++i) EXPECT_EQ(zettest::bitsOf(d[i]), zettest::bitsOf(fref::sub(0.0f, f[i]))) << i;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    ASSERT_EQ(zetsSubC_32f(f.data(), nan, d.data(), static_cast<int>(f.size())), zetStsOk);
    for (float v : d) EXPECT_TRUE(std::isnan(v));
    // A complex constant of 0 or 1 multiplies.
    std::vector<Zet32fc> c = {{-0.0f, 2.0f}, {f[1], 1.0f}}, cd(2);
    ASSERT_EQ(zetsMulC_32fc(c.data(), Zet32fc{1.0f, 0.0f}, cd.data(), 2), zetStsOk);
    EXPECT_EQ(zettest::bitsOf(cd[1].re), 0x7FC00123u) << "the signalling NaN is quieted by arithmetic";
    // x - x in place gives +0 for finite elements.
    std::vector<float> s = {1.5f, -2.0f, 0.0f, -0.0f, 1e30f};
    ASSERT_EQ(zetsSub_32f_I(s.data(), s.data(), 5), zetStsOk);
    for (float v : s) EXPECT_EQ(zettest::bitsOf(v), 0u);
}

// AddC of 64f copies through the byte copy with a 32-bit byte count: from
// 2^28 elements it wraps to a size error or a shorter copy, and MulC by 0
// zeroes through Zero, whose byte count wraps the same way.
TEST(FloatConstants, ShortcutsKeepTheirByteCountWidth) {
    alignas(64) double src[4] = {1, 2, 3, 4}, dst[4] = {9, 9, 9, 9};
    EXPECT_EQ(zetsAddC_64f(src, 0.0, dst, 0x20000000), zetStsSizeErr);  // 2^32 bytes wrap to 0
    EXPECT_EQ(zetsAddC_64f(src, 0.0, dst, 0x10000000), zetStsSizeErr);  // 2^31 bytes read as negative
    EXPECT_EQ(dst[0], 9.0);
    EXPECT_EQ(zetsAddC_64f(src, 0.0, dst, 0x20000001), zetStsOk);       // wraps to 8 bytes
    EXPECT_EQ(dst[0], 1.0);
    EXPECT_EQ(dst[1], 9.0);
    alignas(64) float f[4] = {5, 5, 5, 5};
    EXPECT_EQ(zetsMulC_32f(f, 0.0f, f, 0x40000000), zetStsOk);  // Zero of 2^32 bytes clears one byte
    std::uint32_t bits;
    std::memcpy(&bits, f, 4);
    EXPECT_EQ(bits, zettest::bitsOf(5.0f) & 0xFFFFFF00u);
    EXPECT_EQ(f[1], 5.0f);
}

// ---- real times complex -------------------------------------------------------------------
TEST(FloatArithMixed, RealTimesComplexAtEveryLengthAndPlacement) {
    std::mt19937_64 rng(21);
    GuardedRegion ra(4200 * 4), rb(4200 * 8), rd(4200 * 8);
    for (int len : zettest::kernelLengths()) {
        std::vector<float> a(len);
        std::vector<Zet32fc> b(len), got(len), want(len);
        for (const Placement& p : zettest::placementsFor(4)) {
            for (int inPlace = 0; inPlace < 2; ++inPlace) {
                zettest::fillFloats(a.data(), len, rng);
                zettest::fillFloats(&b[0].re, 2 * len, rng);
                float* pa = zettest::place<float>(ra, p, len);
                Zet32fc* pb = zettest::place<Zet32fc>(rb, Placement{Placement::Tail, 0}, len);
                Zet32fc* pd = inPlace ? pb : zettest::place<Zet32fc>(rd, p, len);
                std::memcpy(pa, a.data(), len * 4);
                std::memcpy(pb, b.data(), len * 8);
                for (int i = 0; i < len; ++i) want[i] = {fref::mul(a[i], b[i].re), fref::mul(a[i], b[i].im)};
                ASSERT_EQ(inPlace ? zetsMul_32f32fc_I(pa, pd, len) : zetsMul_32f32fc(pa, pb, pd, len), zetStsOk);
                std::memcpy(got.data(), pd, len * 8);
                ASSERT_EQ(zettest::firstBitMismatch(&got[0].re, &want[0].re, 2 * len), -1)
                    << "len " << len << " " << p.name() << " in place " << inPlace;
            }
        }
    }
    Zet32fc c;
    float x = 1;
    EXPECT_EQ(zetsMul_32f32fc(nullptr, &c, &c, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsMul_32f32fc(&x, &c, nullptr, 1), zetStsNullPtrErr);
    EXPECT_EQ(zetsMul_32f32fc_I(&x, &c, 0), zetStsSizeErr);
}

// The fused and the rounded multiply-accumulate differ where the rounding of
// the product matters: a*b = 1 + 2^-11 + 2^-24 exactly, which rounds to 1 + 2^-11.
TEST(FloatArithMixed, AddProductFusesAndAddProductCDoesNot) {
    const float a = 1.0f + 0x1p-12f, b = 1.0f + 0x1p-12f;
    float d1 = -1.0f, d2 = -1.0f;
    ASSERT_EQ(zetsAddProduct_32f(&a, &b, &d1, 1), zetStsOk);
    ASSERT_EQ(zetsAddProductC_32f(&a, b, &d2, 1), zetStsOk);
    EXPECT_EQ(d1, 0x1p-11f + 0x1p-24f);
    EXPECT_EQ(d2, 0x1p-11f);
    const Zet32fc ca = {a, 0.0f}, cb = {b, 0.0f};
    Zet32fc c1 = {-1.0f, 0.0f}, c2 = {-1.0f, 0.0f};
    ASSERT_EQ(zetsAddProduct_32fc(&ca, &cb, &c1, 1), zetStsOk);
    ASSERT_EQ(zetsAddProductC_32fc(&ca, cb, &c2, 1), zetStsOk);
    EXPECT_EQ(c1.re, 0x1p-11f + 0x1p-24f);
    EXPECT_EQ(c2.re, 0x1p-11f);
}

}  // namespace
