// Integer arithmetic with scale factors against the rule written literally:
// s times 2^-scale as (s + h - 1 + ((s >> scale) & 1)) >> scale, a left
// shift for negative scales, saturation to the destination. Exhaustive for
// 8-bit operands over scales -20..40, random with extremes for the wider
// types, every length to 70 and beyond against a guard page.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>
#include <xmmintrin.h>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using i128 = __int128;
using zettest::GuardedRegion;

template <class D>
D refRule(i128 s, int scale) {
    const i128 lo = std::numeric_limits<D>::min(), hi = std::numeric_limits<D>::max();
    i128 r;
    if (scale > 0) {
        if (scale >= 127) {
            r = 0;  // |s| < 2^126 in every operation here
        } else {
            const i128 h = i128{1} << (scale - 1);
            r = (s + h - 1 + ((s >> scale) & 1)) >> scale;
        }
    } else if (scale < 0) {
        const long long k = -static_cast<long long>(scale);
        if (s == 0) r = 0;
        else if (k >= 64) r = s > 0 ? hi : lo;
        else if (s > 0) r = s > (hi >> k) ? hi : s << k;  // s << k fits whenever s <= hi >> k
        else r = -s > ((-lo) >> k) ? lo : -((-s) << k);
    } else {
        r = s;
    }
    return static_cast<D>(r < lo ? lo : r > hi ? hi : r);
}

// ---- one export: inputs a (and b or a constant), output d ----------------------
template <class A, class B, class D>
struct Case {
    std::string name;
    std::function<ZetStatus(const A*, const B*, D*, int, int)> call;
    std::function<i128(A, B, long long)> exact;  // the exact result s for element i
};

template <class T> T kc() { return std::is_signed_v<T> ? T(-3) : T(3); }  // a constant that needs no shortcut

#define BIN(OP, T, S)                                                                                                  \
    Case<Zet##T, Zet##T, Zet##T>{"zets" #OP "_" #T "_Sfs", [](const Zet##T* a, const Zet##T* b, Zet##T* d, int n, int s) { return zets##OP##_##T##_Sfs(a, b, d, n, s); }, \
                                 [](Zet##T a, Zet##T b, long long) -> i128 { return S; }},                             \
    Case<Zet##T, Zet##T, Zet##T>{"zets" #OP "_" #T "_ISfs", [](const Zet##T* a, const Zet##T* b, Zet##T* d, int n, int s) { \
                                     std::memcpy(d, b, sizeof(Zet##T) * n);                                            \
                                     return zets##OP##_##T##_ISfs(a, d, n, s); },                                      \
                                 [](Zet##T a, Zet##T b, long long) -> i128 { return S; }}
#define CONSTANT(OP, T, S)                                                                                             \
    Case<Zet##T, Zet##T, Zet##T>{"zets" #OP "_" #T "_Sfs", [](const Zet##T* a, const Zet##T*, Zet##T* d, int n, int s) { return zets##OP##_##T##_Sfs(a, kc<Zet##T>(), d, n, s); }, \
                                 [](Zet##T a, Zet##T, long long) -> i128 { const i128 c = kc<Zet##T>(); return S; }},   \
    Case<Zet##T, Zet##T, Zet##T>{"zets" #OP "_" #T "_ISfs", [](const Zet##T* a, const Zet##T*, Zet##T* d, int n, int s) { \
                                     std::memcpy(d, a, sizeof(Zet##T) * n);                                            \
                                     return zets##OP##_##T##_ISfs(kc<Zet##T>(), d, n, s); },                           \
                                 [](Zet##T a, Zet##T, long long) -> i128 { const i128 c = kc<Zet##T>(); return S; }}
#define SQR(T)                                                                                                          \
    Case<Zet##T, Zet##T, Zet##T>{"zetsSqr_" #T "_Sfs", [](const Zet##T* a, const Zet##T*, Zet##T* d, int n, int s) { return zetsSqr_##T##_Sfs(a, d, n, s); }, \
                                 [](Zet##T a, Zet##T, long long) -> i128 { return i128(a) * a; }},                     \
    Case<Zet##T, Zet##T, Zet##T>{"zetsSqr_" #T "_ISfs", [](const Zet##T* a, const Zet##T*, Zet##T* d, int n, int s) {   \
                                     std::memcpy(d, a, sizeof(Zet##T) * n);                                            \
                                     return zetsSqr_##T##_ISfs(d, n, s); },                                            \
                                 [](Zet##T a, Zet##T, long long) -> i128 { return i128(a) * a; }}
#define REAL_FAMILY(T)                                                                                     \
    BIN(Add, T, i128(a) + b), BIN(Sub, T, i128(b) - a), BIN(Mul, T, i128(a) * b), CONSTANT(AddC, T, a + c), \
        CONSTANT(SubC, T, a - c), CONSTANT(SubCRev, T, c - a), CONSTANT(MulC, T, a * c)

template <class T> std::vector<Case<T, T, T>> realCases();
template <> std::vector<Case<Zet8u, Zet8u, Zet8u>> realCases() { return {REAL_FAMILY(8u), SQR(8u)}; }
template <> std::vector<Case<Zet16u, Zet16u, Zet16u>> realCases() { return {REAL_FAMILY(16u), SQR(16u)}; }
template <> std::vector<Case<Zet16s, Zet16s, Zet16s>> realCases() {
    return {REAL_FAMILY(16s),
            SQR(16s),
            {"zetsAddProduct_16s_Sfs",
             [](const Zet16s* a, const Zet16s* b, Zet16s* d, int n, int s) {
                 for (int i = 0; i < n; ++i) d[i] = static_cast<Zet16s>(b[i] ^ 0x5555);  // a known accumulator
                 return zetsAddProduct_16s_Sfs(a, b, d, n, s);
             },
             [](Zet16s a, Zet16s b, long long) -> i128 { return i128(static_cast<Zet16s>(b ^ 0x5555)) + i128(a) * b; }}};
}
template <> std::vector<Case<Zet32s, Zet32s, Zet32s>> realCases() {
    return {REAL_FAMILY(32s),
            {"zetsAddProduct_32s_Sfs",
             [](const Zet32s* a, const Zet32s* b, Zet32s* d, int n, int s) {
                 for (int i = 0; i < n; ++i) d[i] = b[i] ^ 0x55555555;
                 return zetsAddProduct_32s_Sfs(a, b, d, n, s);
             },
             [](Zet32s a, Zet32s b, long long) -> i128 { return i128(b ^ 0x55555555) + i128(a) * b; }},
            {"zetsMulC_32s_Sfs_L", [](const Zet32s* a, const Zet32s*, Zet32s* d, int n, int s) { return zetsMulC_32s_Sfs_L(a, -3, d, n, s); },
             [](Zet32s a, Zet32s, long long) -> i128 { return i128(a) * -3; }},
            {"zetsMulC_32s_ISfs_L",
             [](const Zet32s* a, const Zet32s*, Zet32s* d, int n, int s) {
                 std::memcpy(d, a, 4 * n);
                 return zetsMulC_32s_ISfs_L(-3, d, n, s);
             },
             [](Zet32s a, Zet32s, long long) -> i128 { return i128(a) * -3; }}};
}
template <> std::vector<Case<Zet64s, Zet64s, Zet64s>> realCases() {
    return {{"zetsAdd_64s_Sfs", [](const Zet64s* a, const Zet64s* b, Zet64s* d, int n, int s) { return zetsAdd_64s_Sfs(a, b, d, n, s); },
             [](Zet64s a, Zet64s b, long long) -> i128 { return i128(a) + b; }},
            {"zetsAddC_64s_Sfs", [](const Zet64s* a, const Zet64s*, Zet64s* d, int n, int s) { return zetsAddC_64s_Sfs(a, LLONG_MIN + 5, d, n, s); },
             [](Zet64s a, Zet64s, long long) -> i128 { return i128(a) + (LLONG_MIN + 5); }},
            {"zetsMulC_64s_ISfs",
             [](const Zet64s* a, const Zet64s*, Zet64s* d, int n, int s) {
                 std::memcpy(d, a, 8 * n);
                 return zetsMulC_64s_ISfs(LLONG_MIN, d, n, s);
             },
             [](Zet64s a, Zet64s, long long) -> i128 { return i128(a) * LLONG_MIN; }}};
}
template <> std::vector<Case<Zet64u, Zet64u, Zet64u>> realCases() {
    return {{"zetsAddC_64u_Sfs", [](const Zet64u* a, const Zet64u*, Zet64u* d, int n, int s) { return zetsAddC_64u_Sfs(a, ULLONG_MAX - 2, d, n, s); },
             [](Zet64u a, Zet64u, long long) -> i128 { return i128(a) + (ULLONG_MAX - 2); }}};
}

// Complex forms as arrays of parts: element i of the part array is part i % 2.
template <class P> struct Cplx;
template <> struct Cplx<Zet16s> { using C = Zet16sc; };
template <> struct Cplx<Zet32s> { using C = Zet32sc; };

template <class P>
i128 complexPart(const P* a, const P* b, long long i) {  // part i of a * b, exactly
    const long long e = i & ~1LL;
    const i128 ar = a[e], ai = a[e + 1], br = b[e], bi = b[e + 1];
    return (i & 1) ? ar * bi + ai * br : ar * br - ai * bi;
}

template <class T>
std::vector<int> scales() {
    return {INT_MIN, -70, -64, -63, -33, -32, -31, -17, -16, -15, -8, -1, 0, 1, 2, 3, 7, 15, 16, 17, 18,
            29, 30, 31, 32, 33, 62, 63, 64, 65, 66, 126, 127, 128, INT_MAX};
}

// Random values of T with the extremes and the values next to them mixed in.
template <class T>
void fillInts(T* p, std::size_t n, std::mt19937_64& rng) {
    using L = std::numeric_limits<T>;
    const T special[] = {L::min(), L::max(), T(0), T(1), T(L::min() + 1), T(L::max() - 1), T(-1), T(2), T(L::max() / 2), T(L::min() / 2)};
    for (std::size_t i = 0; i < n; ++i) {
        T v;
        if (rng() % 4 == 0) v = special[rng() % (sizeof special / sizeof special[0])];
        else {
            const std::uint64_t r = rng();
            std::memcpy(&v, &r, sizeof v);
            if (rng() % 3 == 0) v = static_cast<T>(v >> (rng() % (8 * sizeof(T))));  // smaller magnitudes too
        }
        p[i] = v;
    }
}

// Each case over every length of the kernel list (ending at a guard page)
// and every scale of the list.
template <class A, class B, class D>
void checkCases(const std::vector<Case<A, B, D>>& cases, const std::function<i128(const Case<A, B, D>&, const A*, const B*, long long)>& exactAt = {}) {
    std::mt19937_64 rng(30);
    GuardedRegion ra(4200 * sizeof(A)), rb(4200 * sizeof(B)), rd(4200 * sizeof(D));
    for (const auto& c : cases) {
        for (int len : zettest::kernelLengths()) {
            if (len > 300 && len != 1025 && len != 4099) continue;
            if (exactAt && len % 2) continue;  // complex forms: whole pairs
            // Against the guard pages, and for short vectors also at element
            // offsets that misalign the vector registers.
            const int placement = len <= 70 ? static_cast<int>(rng() % 4) : 0;
            A* a = placement ? ra.at<A>(sizeof(A) * (placement * 3 % 16)) : ra.tail<A>(len);
            B* b = placement ? rb.at<B>(sizeof(B) * (placement * 5 % 16)) : rb.tail<B>(len);
            D* d = placement ? rd.at<D>(sizeof(D) * (placement * 7 % 16)) : rd.tail<D>(len);
            fillInts(a, len, rng);
            fillInts(b, len, rng);
            const std::vector<B> bCopy(b, b + len);
            for (int scale : scales<D>()) {
                ASSERT_EQ(c.call(a, b, d, len, scale), zetStsOk) << c.name;
                for (long long i = 0; i < len; ++i) {
                    const i128 s = exactAt ? exactAt(c, a, bCopy.data(), i) : c.exact(a[i], bCopy[i], i);
                    const D want = refRule<D>(s, scale);
                    ASSERT_EQ(d[i], want) << c.name << " len " << len << " scale " << scale << " at " << i << " a " << +a[i]
                                          << " b " << +bCopy[i];
                }
            }
        }
    }
}

TEST(FixedRule, EightBitOperandsExhaustivelyOverScalesMinus20To40) {
    std::vector<Zet8u> a(65536), b(65536), d(65536);
    for (int i = 0; i < 65536; ++i) a[i] = static_cast<Zet8u>(i), b[i] = static_cast<Zet8u>(i >> 8);
    for (const auto& c : realCases<Zet8u>()) {
        const bool usesB = c.name.find("C_") == std::string::npos && c.name.find("Sqr") == std::string::npos;
        for (int scale = -20; scale <= 40; ++scale) {
            ASSERT_EQ(c.call(a.data(), b.data(), d.data(), 65536, scale), zetStsOk);
            for (int i = 0; i < 65536; ++i)
                ASSERT_EQ(d[i], refRule<Zet8u>(c.exact(a[i], usesB ? b[i] : 0, i), scale))
                    << c.name << " scale " << scale << " a " << +a[i] << " b " << +b[i];
        }
    }
    // Every constant, too.
    for (int val = 0; val < 256; ++val) {
        for (int scale : {-9, -1, 0, 1, 4, 8, 9, 17}) {
            ASSERT_EQ(zetsMulC_8u_Sfs(a.data(), static_cast<Zet8u>(val), d.data(), 256, scale), zetStsOk);
            for (int i = 0; i < 256; ++i) ASSERT_EQ(d[i], refRule<Zet8u>(i128(i) * val, scale)) << val << " " << scale;
            ASSERT_EQ(zetsSubCRev_8u_Sfs(a.data(), static_cast<Zet8u>(val), d.data(), 256, scale), zetStsOk);
            for (int i = 0; i < 256; ++i) ASSERT_EQ(d[i], refRule<Zet8u>(i128(val) - i, scale)) << val << " " << scale;
        }
    }
}

TEST(FixedRule, SixteenBitForms) {
    checkCases(realCases<Zet16s>());
    checkCases(realCases<Zet16u>());
}
TEST(FixedRule, ThirtyTwoAndSixtyFourBitForms) {
    checkCases(realCases<Zet32s>());
    checkCases(realCases<Zet64s>());
    checkCases(realCases<Zet64u>());
}

template <class P>
std::vector<Case<P, P, P>> complexCases() {
    using C = typename Cplx<P>::C;
    auto cp = [](const P* p) { return reinterpret_cast<const C*>(p); };
    auto cd = [](P* p) { return reinterpret_cast<C*>(p); };
    std::vector<Case<P, P, P>> v;
    if constexpr (std::is_same_v<P, Zet16s>) {
        v = {{"zetsAdd_16sc_Sfs", [=](const P* a, const P* b, P* d, int n, int s) { return zetsAdd_16sc_Sfs(cp(a), cp(b), cd(d), n / 2, s); }, {}},
             {"zetsSub_16sc_ISfs", [=](const P* a, const P* b, P* d, int n, int s) { std::memcpy(d, b, sizeof(P) * n); return zetsSub_16sc_ISfs(cp(a), cd(d), n / 2, s); }, {}},
             {"zetsSubCRev_16sc_Sfs", [=](const P* a, const P*, P* d, int n, int s) { return zetsSubCRev_16sc_Sfs(cp(a), Zet16sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsAddC_16sc_ISfs", [=](const P* a, const P*, P* d, int n, int s) { std::memcpy(d, a, sizeof(P) * n); return zetsAddC_16sc_ISfs(Zet16sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsSubC_16sc_Sfs", [=](const P* a, const P*, P* d, int n, int s) { return zetsSubC_16sc_Sfs(cp(a), Zet16sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsMul_16sc_Sfs", [=](const P* a, const P* b, P* d, int n, int s) { return zetsMul_16sc_Sfs(cp(a), cp(b), cd(d), n / 2, s); }, {}},
             {"zetsMulC_16sc_ISfs", [=](const P* a, const P*, P* d, int n, int s) { std::memcpy(d, a, sizeof(P) * n); return zetsMulC_16sc_ISfs(Zet16sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsSqr_16sc_Sfs", [=](const P* a, const P*, P* d, int n, int s) { return zetsSqr_16sc_Sfs(cp(a), cd(d), n / 2, s); }, {}}};
    } else {
        v = {{"zetsAdd_32sc_ISfs", [=](const P* a, const P* b, P* d, int n, int s) { std::memcpy(d, b, sizeof(P) * n); return zetsAdd_32sc_ISfs(cp(a), cd(d), n / 2, s); }, {}},
             {"zetsSub_32sc_Sfs", [=](const P* a, const P* b, P* d, int n, int s) { return zetsSub_32sc_Sfs(cp(a), cp(b), cd(d), n / 2, s); }, {}},
             {"zetsSubC_32sc_ISfs", [=](const P* a, const P*, P* d, int n, int s) { std::memcpy(d, a, sizeof(P) * n); return zetsSubC_32sc_ISfs(Zet32sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsAddC_32sc_Sfs", [=](const P* a, const P*, P* d, int n, int s) { return zetsAddC_32sc_Sfs(cp(a), Zet32sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsSubCRev_32sc_ISfs", [=](const P* a, const P*, P* d, int n, int s) { std::memcpy(d, a, sizeof(P) * n); return zetsSubCRev_32sc_ISfs(Zet32sc{-3, 5}, cd(d), n / 2, s); }, {}},
             {"zetsMul_32sc_ISfs", [=](const P* a, const P* b, P* d, int n, int s) { std::memcpy(d, b, sizeof(P) * n); return zetsMul_32sc_ISfs(cp(a), cd(d), n / 2, s); }, {}},
             {"zetsMulC_32sc_Sfs", [=](const P* a, const P*, P* d, int n, int s) { return zetsMulC_32sc_Sfs(cp(a), Zet32sc{-3, 5}, cd(d), n / 2, s); }, {}}};
    }
    return v;
}

// The exact part i of each complex form, by name.
template <class P>
i128 complexExact(const Case<P, P, P>& c, const P* a, const P* b, long long i) {
    const P k[2] = {P(-3), P(5)};
    const i128 x = a[i], y = b[i], kk = k[i & 1];
    const std::string& n = c.name;
    if (n.find("Sqr") != std::string::npos) return complexPart(a, a, i);
    if (n.find("MulC") != std::string::npos) {
        const P pair[2] = {a[i & ~1LL], a[(i & ~1LL) + 1]};
        return complexPart(pair, k, i & 1);
    }
    if (n.find("Mul") != std::string::npos) return complexPart(a, b, i);
    if (n.find("SubCRev") != std::string::npos) return kk - x;
    if (n.find("SubC") != std::string::npos) return x - kk;
    if (n.find("AddC") != std::string::npos) return x + kk;
    if (n.find("Sub") != std::string::npos) return y - x;
    return x + y;
}

TEST(FixedRule, ComplexFormsPartByPartAndProductsExact) {
    for (auto run : {+[] {
                         const auto cases = complexCases<Zet16s>();
                         checkCases<Zet16s, Zet16s, Zet16s>(cases, complexExact<Zet16s>);
                     },
                     +[] {
                         const auto cases = complexCases<Zet32s>();
                         checkCases<Zet32s, Zet32s, Zet32s>(cases, complexExact<Zet32s>);
                     }})
        run();
}

// The cases the rule is easiest to get wrong, spelled out.
TEST(FixedRule, TiesSaturationAndShiftLimits) {
    struct Case16 { Zet16s a, b; int scale; Zet16s want; };
    const Case16 cases[] = {
        {1, 0, 1, 0},   {3, 0, 1, 2},   {-1, 0, 1, 0},  {-3, 0, 1, -2},  {5, 0, 1, 2}, {7, 0, 1, 4}, {-5, 0, 1, -2},
        {32767, 32767, 0, 32767}, {32767, 32767, 1, 32767}, {32767, 32767, 16, 1}, {32767, 32767, 17, 0},
        {-32768, -32768, 16, -1}, {-32768, -32768, 17, 0}, {1, 0, -16, 32767}, {-1, 0, -16, -32768}, {0, 0, -16, 0},
        {1, 0, -14, 16384}, {1, 1, -14, 32767}, {-1, -1, -14, -32768}, {1, 0, INT_MIN, 32767}, {-1, 0, INT_MIN, -32768},
        {-32768, 0, INT_MAX, 0},
    };
    for (const auto& c : cases) {
        Zet16s d = 99;
        ASSERT_EQ(zetsAdd_16s_Sfs(&c.a, &c.b, &d, 1, c.scale), zetStsOk);
        EXPECT_EQ(d, c.want) << c.a << " + " << c.b << " scale " << c.scale;
    }
    // Products: scale 31 clears even -32768 * -32768 (2^30 / 2^31 is a tie, to even 0).
    std::vector<Zet16s> m = {-32768, -32768, 32767, 1, -1, 12345}, out(6, 7);
    ASSERT_EQ(zetsMul_16s_Sfs(m.data(), m.data(), out.data(), 6, 31), zetStsOk);
    for (Zet16s v : out) EXPECT_EQ(v, 0);
    ASSERT_EQ(zetsMul_16s_Sfs(m.data(), m.data(), out.data(), 6, 30), zetStsOk);
    EXPECT_EQ(out[0], 1);  // 2^30 / 2^30
}

TEST(FixedMixed, AbsoluteValuesSaturate) {
    const Zet16s a16[] = {-32768, -32767, -1, 0, 1, 32767};
    const Zet16s w16[] = {32767, 32767, 1, 0, 1, 32767};
    Zet16s d16[6];
    ASSERT_EQ(zetsAbs_16s(a16, d16, 6), zetStsOk);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(d16[i], w16[i]);
    const Zet32s a32[] = {INT_MIN, INT_MIN + 1, -7, 0, INT_MAX};
    const Zet32s w32[] = {INT_MAX, INT_MAX, 7, 0, INT_MAX};
    Zet32s d32[5];
    std::memcpy(d32, a32, sizeof d32);
    ASSERT_EQ(zetsAbs_32s_I(d32, 5), zetStsOk);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(d32[i], w32[i]);
}

TEST(FixedMixed, UnsignedAndWideningForms) {
    std::mt19937_64 rng(31);
    for (int len : {1, 7, 16, 33, 1000}) {
        std::vector<Zet32u> a(len), b(len), d(len);
        for (auto& v : a) v = rng() % 3 ? static_cast<Zet32u>(rng()) : 0xFFFFFFFFu;
        for (auto& v : b) v = static_cast<Zet32u>(rng() >> (rng() % 33));
        ASSERT_EQ(zetsAdd_32u(a.data(), b.data(), d.data(), len), zetStsOk);
        for (int i = 0; i < len; ++i) EXPECT_EQ(d[i], std::min<std::uint64_t>(std::uint64_t{a[i]} + b[i], 0xFFFFFFFFu));
        std::vector<Zet8u> x(len), y(len);
        std::vector<Zet16u> w(len);
        std::vector<Zet16s> p(len), q(len);
        std::vector<Zet32s> acc(len), acc0(len);
        std::vector<Zet32f> f(len);
        for (int i = 0; i < len; ++i) {
            x[i] = static_cast<Zet8u>(rng()), y[i] = static_cast<Zet8u>(rng());
            p[i] = static_cast<Zet16s>(rng()), q[i] = i % 5 ? static_cast<Zet16s>(rng()) : -32768;
            acc0[i] = acc[i] = i % 3 ? static_cast<Zet32s>(rng()) : INT_MAX - 3;
        }
        // The extreme products of a 16u and a 16s, near 2^31 in size.
        p[0] = -1, q[0] = 32767;
        if (len > 1) p[1] = -1, q[1] = -32768;
        ASSERT_EQ(zetsAdd_8u16u(x.data(), y.data(), w.data(), len), zetStsOk);
        for (int i = 0; i < len; ++i) EXPECT_EQ(w[i], x[i] + y[i]);
        ASSERT_EQ(zetsMul_8u16u(x.data(), y.data(), w.data(), len), zetStsOk);
        for (int i = 0; i < len; ++i) EXPECT_EQ(w[i], x[i] * y[i]);
        ASSERT_EQ(zetsAdd_16s32s_I(p.data(), acc.data(), len), zetStsOk);
        for (int i = 0; i < len; ++i) EXPECT_EQ(acc[i], refRule<Zet32s>(i128(acc0[i]) + p[i], 0));
        ASSERT_EQ(zetsSub_16s32f(p.data(), q.data(), f.data(), len), zetStsOk);
        for (int i = 0; i < len; ++i) EXPECT_EQ(f[i], static_cast<float>(q[i] - p[i]));
        for (int scale : {-20, -1, 0, 1, 5, 17, 29, 30, 31, 32, 40}) {
            ASSERT_EQ(zetsMul_16s32s_Sfs(p.data(), q.data(), acc.data(), len, scale), zetStsOk);
            for (int i = 0; i < len; ++i) EXPECT_EQ(acc[i], refRule<Zet32s>(i128(p[i]) * q[i], scale)) << scale;
            std::vector<Zet16u> u(len);
            for (int i = 0; i < len; ++i) u[i] = static_cast<Zet16u>(p[i]);
            ASSERT_EQ(zetsMul_16u16s_Sfs(u.data(), q.data(), p.data(), len, scale), zetStsOk);
            for (int i = 0; i < len; ++i) EXPECT_EQ(p[i], refRule<Zet16s>(i128(u[i]) * q[i], scale)) << scale;
            for (int i = 0; i < len; ++i) p[i] = static_cast<Zet16s>(u[i]);
        }
    }
}

// Products converted to float round by the thread's rounding mode.
TEST(FixedMixed, FloatResultsFollowTheRoundingMode) {
    const unsigned saved = _mm_getcsr();
    const Zet16s a[] = {32767, -32768, 32765, 12345}, b[] = {32767, 32767, -32763, -32768};
    for (unsigned mode : {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO}) {
        _MM_SET_ROUNDING_MODE(mode);
        float d[4];
        ASSERT_EQ(zetsMul_16s32f(a, b, d, 4), zetStsOk);
        for (int i = 0; i < 4; ++i) {
            volatile int exact = a[i] * b[i];
            EXPECT_EQ(d[i], static_cast<float>(exact)) << mode;
        }
    }
    _mm_setcsr(saved);
}

TEST(FixedMixed, FloatConstantsToIntegers) {
    struct Case { float a, val; int scale; Zet16s want; };
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Case cases[] = {
        {2.5f, 1.0f, 0, 2},       {3.5f, 1.0f, 0, 4},   {-2.5f, 1.0f, 0, -2}, {5.0f, 1.0f, 1, 2},  {7.0f, 1.0f, 1, 4},
        {1e6f, 1.0f, 0, 32767},   {-1e6f, 1.0f, 0, -32768}, {1.0f, 3.0f, -14, 32767}, {1.0f, 1.0f, -14, 16384},
        {nan, 1.0f, 0, -32768},   {1.0f, std::numeric_limits<float>::infinity(), 0, 32767}, {300.0f, 0.5f, 40, 0},
    };
    for (const auto& c : cases) {
        Zet16s d = 99;
        ASSERT_EQ(zetsMulC_32f16s_Sfs(&c.a, c.val, &d, 1, c.scale), zetStsOk);
        EXPECT_EQ(d, c.want) << c.a << " * " << c.val << " scale " << c.scale;
    }
    Zet16s d = 0;
    const float x = 2.5f;
    ASSERT_EQ(zetsMulC_Low_32f16s(&x, 3.0f, &d, 1), zetStsOk);
    EXPECT_EQ(d, 8);  // 7.5 to even
    Zet64s v[] = {3, -3, LLONG_MAX, 1 << 20};
    ASSERT_EQ(zetsMulC_64f64s_ISfs(0.5, v, 4, 0), zetStsOk);
    EXPECT_EQ(v[0], 2);
    EXPECT_EQ(v[1], -2);
    EXPECT_EQ(v[2], 1LL << 62);  // the maximum converts to 2^63 in double
    EXPECT_EQ(v[3], 1 << 19);
}

// Shortcuts after the checks: a constant of 0 with scale 0 copies, MulC of
// 16s by 0 clears whatever the scale, and unscaled forms saturate.
TEST(FixedConstants, ShortcutsAndUnscaledForms) {
    std::vector<Zet16s> a = {-32768, -1, 0, 1, 32767, 1234}, d(6, 99);
    ASSERT_EQ(zetsAddC_16s_Sfs(a.data(), 0, d.data(), 6, 0), zetStsOk);
    EXPECT_EQ(d, a);
    ASSERT_EQ(zetsMulC_16s_Sfs(a.data(), 0, d.data(), 6, -5), zetStsOk);
    EXPECT_EQ(d, std::vector<Zet16s>(6, 0));
    ASSERT_EQ(zetsMulC_16s_Sfs(a.data(), 1, d.data(), 6, 0), zetStsOk);
    EXPECT_EQ(d, a);
    std::vector<Zet16s> b = {-32768, -32768, 5, 32767, 32767, -1234};
    ASSERT_EQ(zetsAdd_16s(a.data(), b.data(), d.data(), 6), zetStsOk);
    EXPECT_EQ(d, (std::vector<Zet16s>{-32768, -32768, 5, 32767, 32767, 0}));
    ASSERT_EQ(zetsSub_16s(a.data(), b.data(), d.data(), 6), zetStsOk);
    EXPECT_EQ(d, (std::vector<Zet16s>{0, -32767, 5, 32766, 0, -2468}));
    std::vector<Zet16s> m = a;
    ASSERT_EQ(zetsMulC_16s_I(-1, m.data(), 6), zetStsOk);
    EXPECT_EQ(m, (std::vector<Zet16s>{32767, 1, 0, -1, -32767, -1234}));
    std::vector<Zet32s> z = {5, 6, 7};
    ASSERT_EQ(zetsMulC_32s_Sfs_L(z.data(), 0, z.data(), 3, 3), zetStsOk);
    EXPECT_EQ(z, std::vector<Zet32s>(3, 0));
}

// Each pointer in turn null, and the lengths; complex Add and Sub check the
// length first, everything else the pointers.
TEST(FixedStatus, CheckOrder) {
    Zet16s a[4] = {}, d[4] = {};
    Zet16sc c[2] = {};
    struct Case { const char* name; std::function<ZetStatus(bool, bool, int)> call; bool lenFirst; };
    const Case cases[] = {
        {"Add_16s_Sfs", [&](bool n1, bool n2, int len) { return zetsAdd_16s_Sfs(n1 ? nullptr : a, a, n2 ? nullptr : d, len, 0); }, false},
        {"Mul_16s", [&](bool n1, bool n2, int len) { return zetsMul_16s(a, n1 ? nullptr : a, n2 ? nullptr : d, len); }, false},
        {"MulC_16s_ISfs", [&](bool n1, bool n2, int len) { return zetsMulC_16s_ISfs(0, n1 || n2 ? nullptr : d, len, 0); }, false},
        {"Add_16sc_Sfs", [&](bool n1, bool n2, int len) { return zetsAdd_16sc_Sfs(n1 ? nullptr : c, c, n2 ? nullptr : c, len, 0); }, true},
        {"Sub_16sc_ISfs", [&](bool n1, bool n2, int len) { return zetsSub_16sc_ISfs(n1 ? nullptr : c, n2 ? nullptr : c, len, 0); }, true},
        {"Mul_16sc_Sfs", [&](bool n1, bool n2, int len) { return zetsMul_16sc_Sfs(n1 ? nullptr : c, c, n2 ? nullptr : c, len, 0); }, false},
        {"AddC_16sc_Sfs", [&](bool n1, bool n2, int len) { return zetsAddC_16sc_Sfs(n1 ? nullptr : c, Zet16sc{}, n2 ? nullptr : c, len, 0); }, false},
        {"MulC_32s_Sfs_L", [&](bool n1, bool n2, int len) { Zet32s x[2] = {}; return zetsMulC_32s_Sfs_L(n1 ? nullptr : x, 1, n2 ? nullptr : x, len, 0); }, false},
        {"Abs_16s", [&](bool n1, bool n2, int len) { return zetsAbs_16s(n1 ? nullptr : a, n2 ? nullptr : d, len); }, false},
        {"Add_32u", [&](bool n1, bool n2, int len) { Zet32u x[2] = {}; return zetsAdd_32u(n1 ? nullptr : x, x, n2 ? nullptr : x, len); }, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.call(false, false, 0), zetStsSizeErr) << c.name;
        EXPECT_EQ(c.call(false, false, -3), zetStsSizeErr) << c.name;
        EXPECT_EQ(c.call(true, false, 2), zetStsNullPtrErr) << c.name;
        EXPECT_EQ(c.call(false, true, 2), zetStsNullPtrErr) << c.name;
        EXPECT_EQ(c.call(true, true, 0), c.lenFirst ? zetStsSizeErr : zetStsNullPtrErr) << c.name;
    }
    // The doubled length of a complex forwarding form is formed in 32 bits.
    EXPECT_EQ(zetsAdd_16sc_Sfs(c, c, c, 0x40000000, 0), zetStsSizeErr);
    EXPECT_EQ(zetsAdd_16sc_Sfs(nullptr, c, c, 0x40000000, 0), zetStsNullPtrErr);
}

}  // namespace
