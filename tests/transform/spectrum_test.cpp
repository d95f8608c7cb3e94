// Spectrum layouts: every ConjCcs, ConjPack, ConjPerm, MulPack, MulPerm and
// MulPackConj export against references stated from the layout tables, at
// every length 1..70 and beyond, with the vectors against guard pages and at
// unaligned addresses, in place, through the 64-bit forms, with the
// pointer-equality rule of the not-in-place products, and the status order.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "../arith/float_ref.hpp"
#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::bitsOf;
using zettest::GuardedRegion;
using zettest::Placement;

enum class Layout { CCS, Pack, Perm };

template <class T> using Cplx = std::conditional_t<std::is_same_v<T, float>, Zet32fc, Zet64fc>;

// Reals a packed spectrum of len samples takes.
long long packedReals(Layout f, long long len) { return f == Layout::CCS ? 2 * (len / 2 + 1) : len; }

// Unaligned access to the test's buffers.
template <class T> T get(const void* p, long long i) {
    T v;
    std::memcpy(&v, static_cast<const unsigned char*>(p) + i * static_cast<long long>(sizeof(T)), sizeof(T));
    return v;
}
template <class T> void put(void* p, long long i, T v) {
    std::memcpy(static_cast<unsigned char*>(p) + i * static_cast<long long>(sizeof(T)), &v, sizeof(T));
}

// ---- references, from the layout tables ------------------------------------------
// X[k] for k = 0..len/2 as the layout stores it.
template <class T>
Cplx<T> stored(Layout f, const std::vector<T>& s, long long len, long long k) {
    const bool even = (len & 1) == 0;
    switch (f) {
        case Layout::CCS: return {s[2 * k], s[2 * k + 1]};
        case Layout::Pack:
            if (k == 0) return {s[0], T(0)};
            if (even && k == len / 2) return {s[len - 1], T(0)};
            return {s[2 * k - 1], s[2 * k]};
        default:
            if (k == 0) return {s[0], T(0)};
            if (even && k == len / 2) return {s[1], T(0)};
            return even ? Cplx<T>{s[2 * k], s[2 * k + 1]} : Cplx<T>{s[2 * k - 1], s[2 * k]};
    }
}
template <class T>
std::vector<Cplx<T>> refExpand(Layout f, const std::vector<T>& s, long long len) {
    std::vector<Cplx<T>> d(static_cast<std::size_t>(len));
    for (long long k = 0; k <= len / 2; ++k) d[k] = stored(f, s, len, k);
    for (long long k = len / 2 + 1; k < len; ++k) {
        const Cplx<T> x = stored(f, s, len, len - k);
        d[k] = {x.re, -x.im};  // a sign flip, NaNs included
    }
    return d;
}

// The product in Pack or Perm layout: a the src1 (or src) operand, b the
// src2 (or srcDst) operand and the left one of the real products. Marks the
// lanes of complex products, where only "NaN or not" is fixed.
template <class T>
std::vector<T> refProduct(Layout f, bool conj, const std::vector<T>& a, const std::vector<T>& b, std::vector<bool>* pairLane = nullptr) {
    const long long len = static_cast<long long>(a.size());
    std::vector<T> d(a.size());
    if (pairLane) pairLane->assign(a.size(), false);
    const long long reals = (f == Layout::Perm && len % 2 == 0) ? 2 : 1;
    for (long long i = 0; i < reals; ++i) d[i] = fref::mul(b[i], a[i]);
    for (long long i = reals; i + 1 < len; i += 2) {
        const Cplx<T> x{a[i], a[i + 1]};
        const Cplx<T> y{b[i], conj ? -b[i + 1] : b[i + 1]};
        const Cplx<T> z = fref::cmul(x, y);
        d[i] = z.re;
        d[i + 1] = z.im;
        if (pairLane) (*pairLane)[i] = (*pairLane)[i + 1] = true;
    }
    if (f == Layout::Pack && len % 2 == 0) d[len - 1] = fref::mul(b[len - 1], a[len - 1]);
    return d;
}

std::vector<Placement> somePlacements(std::size_t elemBytes) {
    auto all = zettest::placementsFor(elemBytes);
    std::vector<Placement> v;
    for (const auto& p : all)
        if (p.kind != Placement::Offset || p.offset % 16 == 0 || p.offset % elemBytes != 0) v.push_back(p);
    return v;
}

// ---- Conj ------------------------------------------------------------------------------

template <class T>
struct ConjForm {
    std::string name;
    Layout layout;
    bool inPlace;
    bool wide;
    // src is ignored by the in-place forms.
    std::function<ZetStatus(const T* src, Cplx<T>* dst, long long len)> call;
};

#define CONJ_PLAIN(OP, LAYOUT, T, C)                                                                                   \
    ConjForm<T>{"zets" #OP "_" #C, LAYOUT, false, false,                                                               \
                [](const T* s, Cplx<T>* d, long long n) { return zets##OP##_##C(s, d, static_cast<int>(n)); }},      \
        ConjForm<T>{"zets" #OP "_" #C "_I", LAYOUT, true, false,                                                       \
                    [](const T*, Cplx<T>* d, long long n) { return zets##OP##_##C##_I(d, static_cast<int>(n)); }}
#define CONJ_WIDE(OP, LAYOUT, T, C)                                                                                    \
    CONJ_PLAIN(OP, LAYOUT, T, C),                                                                                      \
        ConjForm<T>{"zets" #OP "_" #C "_L", LAYOUT, false, true,                                                       \
                    [](const T* s, Cplx<T>* d, long long n) { return zets##OP##_##C##_L(s, d, n); }},                 \
        ConjForm<T>{"zets" #OP "_" #C "_I_L", LAYOUT, true, true,                                                      \
                    [](const T*, Cplx<T>* d, long long n) { return zets##OP##_##C##_I_L(d, n); }}

template <class T> std::vector<ConjForm<T>> conjForms();
template <> std::vector<ConjForm<float>> conjForms() {
    return {CONJ_WIDE(ConjCcs, Layout::CCS, float, 32fc), CONJ_WIDE(ConjPack, Layout::Pack, float, 32fc),
            CONJ_PLAIN(ConjPerm, Layout::Perm, float, 32fc)};
}
template <> std::vector<ConjForm<double>> conjForms() {
    return {CONJ_WIDE(ConjCcs, Layout::CCS, double, 64fc), CONJ_WIDE(ConjPack, Layout::Pack, double, 64fc),
            CONJ_PLAIN(ConjPerm, Layout::Perm, double, 64fc)};
}

template <class T>
::testing::AssertionResult sameCplx(const void* got, const std::vector<Cplx<T>>& want) {
    for (std::size_t k = 0; k < want.size(); ++k) {
        const Cplx<T> g = get<Cplx<T>>(got, static_cast<long long>(k));
        if (bitsOf(g.re) != bitsOf(want[k].re) || bitsOf(g.im) != bitsOf(want[k].im))
            return ::testing::AssertionFailure() << "element " << k << ": got (" << zettest::hexBits(g.re) << ", "
                                                 << zettest::hexBits(g.im) << ") want (" << zettest::hexBits(want[k].re)
                                                 << ", " << zettest::hexBits(want[k].im) << ")";
    }
    return ::testing::AssertionSuccess();
}

template <class T> class Spectrum : public ::testing::Test {};
using Reals = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Spectrum, Reals);

TYPED_TEST(Spectrum, ConjExpandsEveryLayoutAtEveryLengthAndPlacement) {
    using T = TypeParam;
    using C = Cplx<T>;
    std::mt19937_64 rng(53);
    for (const auto& form : conjForms<T>()) {
        for (int len : zettest::kernelLengths()) {
            const long long n = len, packed = packedReals(form.layout, n);
            std::vector<T> src(static_cast<std::size_t>(packed));
            zettest::fillFloats(src.data(), src.size(), rng, 5);
            const auto want = refExpand(form.layout, src, n);
            GuardedRegion sr(static_cast<std::size_t>(packed) * sizeof(T) + 128), dr(static_cast<std::size_t>(n) * sizeof(C) + 128);
            for (const Placement& p : somePlacements(sizeof(T))) {
                // The destination (which holds the input for _I) at p; the source against the upper guard.
                C* d = zettest::place<C>(dr, p, static_cast<std::size_t>(n));
                std::memset(static_cast<void*>(d), 0xA5, static_cast<std::size_t>(n) * sizeof(C));
                const T* s = nullptr;
                if (form.inPlace) {
                    std::memcpy(static_cast<void*>(d), src.data(), src.size() * sizeof(T));
                } else {
                    T* sp = sr.tail<T>(src.size());
                    std::memcpy(sp, src.data(), src.size() * sizeof(T));
                    s = sp;
                }
                ASSERT_EQ(form.call(s, d, n), zetStsOk) << form.name << " len " << len;
                ASSERT_TRUE(sameCplx<T>(d, want)) << form.name << " len " << len << " at " << p.name();
                if (!form.inPlace) {
                    // And the source at p, the destination against the upper guard.
                    T* sp = zettest::place<T>(sr, p, src.size());
                    std::memcpy(sp, src.data(), src.size() * sizeof(T));
                    C* dt = dr.tail<C>(static_cast<std::size_t>(n));
                    ASSERT_EQ(form.call(sp, dt, n), zetStsOk);
                    ASSERT_TRUE(sameCplx<T>(dt, want)) << form.name << " len " << len << " source at " << p.name();
                }
            }
        }
    }
}

TYPED_TEST(Spectrum, ConjStatusOrder) {
    using T = TypeParam;
    using C = Cplx<T>;
    T s[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    C d[4];
    for (const auto& form : conjForms<T>()) {
        const C guard{T(-3), T(-3)};
        for (auto& v : d) v = guard;
        if (!form.inPlace) {
            EXPECT_EQ(form.call(nullptr, d, 4), zetStsNullPtrErr) << form.name;
            EXPECT_EQ(form.call(nullptr, d, 0), zetStsNullPtrErr) << form.name;
        }
        EXPECT_EQ(form.call(s, nullptr, 4), zetStsNullPtrErr) << form.name;
        // Pointers before the length, also in the 64-bit forms: they are kernels, not chunk drivers.
        EXPECT_EQ(form.call(s, nullptr, 0), zetStsNullPtrErr) << form.name;
        EXPECT_EQ(form.call(s, nullptr, -1), zetStsNullPtrErr) << form.name;
        EXPECT_EQ(form.call(s, d, 0), zetStsSizeErr) << form.name;
        EXPECT_EQ(form.call(s, d, -1), zetStsSizeErr) << form.name;
        if (form.wide) {
            EXPECT_EQ(form.call(s, d, -(1LL << 40)), zetStsSizeErr) << form.name;
        }
        for (const auto& v : d) EXPECT_TRUE(v.re == guard.re && v.im == guard.im) << form.name;
    }
}

// The edge cases of the layouts, N = 1 and N = 2, and N = 4 in each layout,
// through the plain export and the reference alike; odd Pack equals odd Perm.
TYPED_TEST(Spectrum, ConjSmallLengthsAndOddPackIsPerm) {
    using T = TypeParam;
    using C = Cplx<T>;
    struct Spot { Layout f; long long n; std::vector<T> src, want; };  // want: re, im pairs
    const std::vector<T> w4{1, 0, 2, 3, 4, 0, 2, -3};
    const Spot spots[] = {
        {Layout::CCS, 1, {5, 0}, {5, 0}}, {Layout::Pack, 1, {5}, {5, 0}}, {Layout::Perm, 1, {5}, {5, 0}},
        {Layout::CCS, 2, {5, 0, -2, 0}, {5, 0, -2, 0}}, {Layout::Pack, 2, {5, -2}, {5, 0, -2, 0}},
        {Layout::Perm, 2, {5, -2}, {5, 0, -2, 0}}, {Layout::CCS, 4, {1, 0, 2, 3, 4, 0}, w4},
        {Layout::Pack, 4, {1, 2, 3, 4}, w4}, {Layout::Perm, 4, {1, 4, 2, 3}, w4},
    };
    int ran = 0;
    for (const Spot& sp : spots)
        for (const auto& form : conjForms<T>()) {
            if (form.layout != sp.f || form.inPlace || form.wide) continue;
            std::vector<C> d(static_cast<std::size_t>(sp.n), C{T(9), T(9)}), want(d.size());
            std::memcpy(static_cast<void*>(want.data()), sp.want.data(), sp.want.size() * sizeof(T));
            ASSERT_EQ(form.call(sp.src.data(), d.data(), sp.n), zetStsOk);
            EXPECT_TRUE(sameCplx<T>(d.data(), want)) << form.name << " len " << sp.n;
            EXPECT_TRUE(sameCplx<T>(refExpand(sp.f, sp.src, sp.n).data(), want)) << "reference, len " << sp.n;
            ++ran;
        }
    EXPECT_EQ(ran, 9);
    std::mt19937_64 rng(3);
    std::function<ZetStatus(const T*, C*, long long)> plain[3];
    for (const auto& form : conjForms<T>())
        if (!form.inPlace && !form.wide) plain[static_cast<int>(form.layout)] = form.call;
    for (long long n = 1; n < 40; n += 2) {
        std::vector<T> s(static_cast<std::size_t>(n));
        zettest::fillFloats(s.data(), s.size(), rng, 0);
        std::vector<C> pack(s.size()), perm(s.size());
        ASSERT_EQ(plain[static_cast<int>(Layout::Pack)](s.data(), pack.data(), n), zetStsOk);
        ASSERT_EQ(plain[static_cast<int>(Layout::Perm)](s.data(), perm.data(), n), zetStsOk);
        EXPECT_TRUE(sameCplx<T>(pack.data(), perm)) << "len " << n;
    }
}

// ---- Mul ---------------------------------------------------------------------------------

template <class T>
struct MulForm {
    std::string name;
    Layout layout;
    bool inPlace;
    bool conj;
    // Plain forms: (src1, src2, dst); in-place forms: (src, srcDst, srcDst).
    std::function<ZetStatus(const T* a, const T* b, T* d, int len)> call;
};

#define MUL_FORMS(OP, LAYOUT, T, C)                                                                           \
    MulForm<T>{"zets" #OP "_" #C, LAYOUT, false, false,                                                       \
               [](const T* a, const T* b, T* d, int n) { return zets##OP##_##C(a, b, d, n); }},               \
        MulForm<T>{"zets" #OP "_" #C "_I", LAYOUT, true, false,                                               \
                   [](const T* a, const T*, T* d, int n) { return zets##OP##_##C##_I(a, d, n); }}

template <class T> std::vector<MulForm<T>> mulForms();
template <> std::vector<MulForm<float>> mulForms() {
    return {MUL_FORMS(MulPack, Layout::Pack, float, 32f), MUL_FORMS(MulPerm, Layout::Perm, float, 32f),
            MulForm<float>{"zetsMulPackConj_32f_I", Layout::Pack, true, true,
                           [](const float* a, const float*, float* d, int n) { return zetsMulPackConj_32f_I(a, d, n); }}};
}
template <> std::vector<MulForm<double>> mulForms() {
    return {MUL_FORMS(MulPack, Layout::Pack, double, 64f), MUL_FORMS(MulPerm, Layout::Perm, double, 64f),
            MulForm<double>{"zetsMulPackConj_64f_I", Layout::Pack, true, true,
                            [](const double* a, const double*, double* d, int n) { return zetsMulPackConj_64f_I(a, d, n); }}};
}

// Real lanes bit for bit (the NaN of the left operand, quieted); complex
// lanes bit for bit unless both are NaN.
template <class T>
::testing::AssertionResult sameProduct(const void* got, const std::vector<T>& want, const std::vector<bool>& pairLane) {
    for (std::size_t i = 0; i < want.size(); ++i) {
        const T g = get<T>(got, static_cast<long long>(i));
        if (bitsOf(g) == bitsOf(want[i])) continue;
        if (pairLane[i] && std::isnan(g) && std::isnan(want[i])) continue;
        return ::testing::AssertionFailure() << "real " << i << ": got " << zettest::hexBits(g) << " want "
                                             << zettest::hexBits(want[i]);
    }
    return ::testing::AssertionSuccess();
}

TYPED_TEST(Spectrum, MulAtEveryLengthAndPlacement) {
    using T = TypeParam;
    std::mt19937_64 rng(97);
    for (const auto& form : mulForms<T>()) {
        for (int len : zettest::kernelLengths()) {
            const std::size_t n = static_cast<std::size_t>(len);
            std::vector<T> a(n), b(n);
            zettest::fillFloats(a.data(), n, rng, 6);
            zettest::fillFloats(b.data(), n, rng, 6);
            std::vector<bool> pairLane;
            const auto want = refProduct(form.layout, form.conj, a, b, &pairLane);
            GuardedRegion ar(n * sizeof(T) + 128), br(n * sizeof(T) + 128), dr(n * sizeof(T) + 128);
            for (const Placement& p : somePlacements(sizeof(T))) {
                // Each vector at p in turn, the others against their upper guards.
                for (int moved = 0; moved < (form.inPlace ? 2 : 3); ++moved) {
                    T* pa = moved == 0 ? zettest::place<T>(ar, p, n) : ar.tail<T>(n);
                    T* pb = moved == 1 ? zettest::place<T>(br, p, n) : br.tail<T>(n);
                    T* pd = form.inPlace ? pb : (moved == 2 ? zettest::place<T>(dr, p, n) : dr.tail<T>(n));
                    std::memcpy(pa, a.data(), n * sizeof(T));
                    std::memcpy(pb, b.data(), n * sizeof(T));
                    if (!form.inPlace) std::memset(pd, 0x5A, n * sizeof(T));
                    ASSERT_EQ(form.call(pa, pb, pd, len), zetStsOk) << form.name;
                    ASSERT_TRUE(sameProduct(pd, want, pairLane)) << form.name << " len " << len << " at " << p.name() << " vector " << moved;
                }
            }
        }
    }
}

// A not-in-place product whose destination is a source runs the in-place
// path with the other source: for dst == src1 the operands trade roles,
// which shows in the fused product of the imaginary parts.
TYPED_TEST(Spectrum, MulWithDestinationOnASourceTakesTheInPlacePath) {
    using T = TypeParam;
    std::mt19937_64 rng(11);
    for (const auto& form : mulForms<T>()) {
        if (form.inPlace) continue;
        for (int len : {1, 2, 3, 4, 7, 8, 64, 1001, 1024}) {
            const std::size_t n = static_cast<std::size_t>(len);
            std::vector<T> a(n), b(n);
            zettest::fillFloats(a.data(), n, rng, 0);
            zettest::fillFloats(b.data(), n, rng, 0);
            std::vector<bool> lanes;
            const auto plain = refProduct(form.layout, false, a, b, &lanes);
            const auto swapped = refProduct(form.layout, false, b, a, &lanes);
            if (len >= 64) {
                EXPECT_NE(plain, swapped) << "the roles should matter somewhere";
            }
            std::vector<T> d = a;  // dst == src1: srcDst = src1, src = src2
            ASSERT_EQ(form.call(d.data(), b.data(), d.data(), len), zetStsOk);
            EXPECT_TRUE(sameProduct(d.data(), swapped, lanes)) << form.name << " dst == src1, len " << len;
            d = b;  // dst == src2: as the plain form
            ASSERT_EQ(form.call(a.data(), d.data(), d.data(), len), zetStsOk);
            EXPECT_TRUE(sameProduct(d.data(), plain, lanes)) << form.name << " dst == src2, len " << len;
            d = a;  // all three the same
            ASSERT_EQ(form.call(d.data(), d.data(), d.data(), len), zetStsOk);
            EXPECT_TRUE(sameProduct(d.data(), refProduct(form.layout, false, a, a), lanes)) << form.name;
        }
    }
}

// Edge cases of the products: odd Perm has one leading real, even Perm two;
// MulPackConj conjugates the array it writes.
TYPED_TEST(Spectrum, MulLeadingRealsAndTheConjugatedOperand) {
    using T = TypeParam;
    struct Spot { const char* form; std::vector<T> a, b, want; bool conj; };
    const Spot spots[] = {
        {"zetsMulPerm_", {2, 1, 2, 5, 6}, {3, 3, 4, 7, -1}, {6, -5, 10, 41, 37}, false},  // 2*3, (1 + 2i)(3 + 4i), (5 + 6i)(7 - i)
        {"zetsMulPerm_", {2, 1, 2, 5}, {3, 3, 4, 7}, {6, 3, -27, 34}, false},             // 2*3, 1*3, (2 + 5i)(4 + 7i)
        {"zetsMulPack_", {2, 1, 2, 5}, {3, 3, 4, 7}, {6, -5, 10, 35}, false},             // 2*3, (1 + 2i)(3 + 4i), 5*7
        {"zetsMulPackConj_", {2, 1, 2, 5}, {3, 3, 4, 7}, {6, 11, 2, 35}, true},           // srcDst = src * conj(srcDst)
    };
    int ran = 0;
    for (const Spot& sp : spots)
        for (const auto& f : mulForms<T>()) {
            if (f.name.rfind(sp.form, 0) != 0 || f.inPlace != sp.conj) continue;
            std::vector<T> b = sp.b, d(sp.a.size());
            T* out = f.inPlace ? b.data() : d.data();
            ASSERT_EQ(f.call(sp.a.data(), b.data(), out, static_cast<int>(sp.a.size())), zetStsOk);
            EXPECT_EQ(std::vector<T>(out, out + sp.a.size()), sp.want) << f.name;
            EXPECT_EQ(refProduct(f.layout, f.conj, sp.a, sp.b), sp.want) << "reference of " << f.name;
            ++ran;
        }
    EXPECT_EQ(ran, 4);
}

TYPED_TEST(Spectrum, MulStatusOrder) {
    using T = TypeParam;
    T a[4] = {1, 2, 3, 4}, b[4] = {1, 2, 3, 4};
    for (const auto& form : mulForms<T>()) {
        T d[4] = {-3, -3, -3, -3};
        T* out = form.inPlace ? b : d;
        const T before[4] = {out[0], out[1], out[2], out[3]};
        EXPECT_EQ(form.call(nullptr, b, out, 4), zetStsNullPtrErr) << form.name;
        EXPECT_EQ(form.call(nullptr, b, out, 0), zetStsNullPtrErr) << form.name;
        EXPECT_EQ(form.call(a, b, nullptr, 4), zetStsNullPtrErr) << form.name;
        if (!form.inPlace) {
            EXPECT_EQ(form.call(a, nullptr, d, 4), zetStsNullPtrErr) << form.name;
            EXPECT_EQ(form.call(a, nullptr, d, -1), zetStsNullPtrErr) << form.name;
            // dst on a source takes the in-place path, which checks the same pointers.
            EXPECT_EQ(form.call(d, nullptr, d, 4), zetStsNullPtrErr) << form.name;
            EXPECT_EQ(form.call(nullptr, nullptr, nullptr, 4), zetStsNullPtrErr) << form.name;
            EXPECT_EQ(form.call(d, b, d, 0), zetStsSizeErr) << form.name;
        }
        EXPECT_EQ(form.call(a, b, out, 0), zetStsSizeErr) << form.name;
        EXPECT_EQ(form.call(a, b, out, -7), zetStsSizeErr) << form.name;
        for (int i = 0; i < 4; ++i) EXPECT_EQ(out[i], before[i]) << form.name;
    }
}

}  // namespace
