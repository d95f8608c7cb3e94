// Norms and dot products: fixed orders bit for bit, open ones near the exact
// value, integer forms exact through the scale rule.
#include "stats_ref.hpp"

namespace {

using conform::op;

// Binary32 L1 and L2: two 4-lane sums over blocks of 8, added together, the
// lanes folded (l0 + l2) + (l1 + l3), the last terms in order. Norm_L2_32f
// widens after the fold: its last squares and its root are binary64.
template <bool Wide, class Step> auto total32(long long n, Step step) {
    float a[8] = {};
    long long i = 0;
    for (; i + 8 <= n; i += 8)
        for (int l = 0; l < 8; ++l) a[l] = step(a[l], i + l);
    const float s[4] = {a[0] + a[4], a[1] + a[5], a[2] + a[6], a[3] + a[7]};
    std::conditional_t<Wide, double, float> r =
        Wide ? (double(s[0]) + s[2]) + (double(s[1]) + s[3]) : (s[0] + s[2]) + (s[1] + s[3]);
    for (; i < n; ++i) r = step(r, i);
    return r;
}
const auto sq = [](auto a, auto u) { return std::fma(u, u, a); };
template <int Norm> const auto norm32 = sref::opt2([](const float* x, const float* y, long long n) {
    const auto t = [=](long long i) { return y ? x[i] - y[i] : x[i]; };
    if (Norm == 1) return total32<false>(n, [=](float a, long long i) { return a + std::fabs(t(i)); });
    if (y) return std::sqrt(total32<false>(n, [=](float a, long long i) { return sq(a, t(i)); }));
    return float(std::sqrt(total32<true>(n, [=](auto a, long long i) { return sq(a, decltype(a)(t(i))); })));
});
// Which NaN comes out depends on the operand order of each addition.
CONFORM(l1_32f, op(norm32<1>).cmp(conform::anyNaN()), Z(zetsNorm_L1_32f, "snr"), Z(zetsNormDiff_L1_32f, "ssnr"));
CONFORM(l2_32f, op(norm32<2>).cmp(conform::anyNaN()), Z(zetsNorm_L2_32f, "snr"), Z(zetsNorm_L2_32f_L, "snr"),
        Z(zetsNormDiff_L2_32f, "ssnr"));
// Binary64 results: the sixteen-lane fold of the widened terms (parts for
// complex L2); the complex L1 takes one 4-lane sum whose lanes get z0, z2, z1, z3.
template <int Norm> struct Fold {
    template <class T> double operator()(const T* x, const T* y, long long n) const {
        using R = conform::PartOf<T>;
        constexpr int P = conform::Parts<T>::n;
        const auto *a = reinterpret_cast<const R*>(x), *b = reinterpret_cast<const R*>(y);
        const auto t = [=](long long k) { return b ? double(a[k]) - double(b[k]) : double(a[k]); };
        if (Norm == 2) return std::sqrt(sref::total(P * n, [=](double s, long long k) { return sq(s, t(k)); }));
        if constexpr (P == 1) {
            return sref::total(n, [=](double s, long long i) { return s + std::fabs(t(i)); });
        } else {
            const auto m = [=](long long i) {
                const double re = t(2 * i), im = t(2 * i + 1);
                return std::sqrt(re * re + im * im);
            };
            double l[4] = {};
            long long i = 0;
            for (; i + 4 <= n; i += 4) l[0] += m(i), l[1] += m(i + 2), l[2] += m(i + 1), l[3] += m(i + 3);
            double r = (l[0] + l[2]) + (l[1] + l[3]);
            for (; i < n; ++i) r += m(i);
            return r;
        }
    }
};
CONFORM(l1_64f, op(sref::opt2(Fold<1>{})).cmp(conform::anyNaN()), Z(zetsNorm_L1_64f, "snr"),
        Z(zetsNormDiff_L1_64f, "ssnr"), Z(zetsNorm_L1_32fc64f, "snr"), Z(zetsNorm_L1_64fc64f, "snr"),
        Z(zetsNormDiff_L1_32fc64f, "ssnr"), Z(zetsNormDiff_L1_64fc64f, "ssnr"));
CONFORM(l2_64f, op(sref::opt2(Fold<2>{})).cmp(conform::anyNaN()), Z(zetsNorm_L2_64f, "snr"),
        Z(zetsNorm_L2_64f_L, "snr"), Z(zetsNormDiff_L2_64f, "ssnr"), Z(zetsNorm_L2_32fc64f, "snr"),
        Z(zetsNorm_L2_64fc64f, "snr"), Z(zetsNorm_L2_32fc64f_L, "snr"), Z(zetsNorm_L2_64fc64f_L, "snr"),
        Z(zetsNormDiff_L2_32fc64f, "ssnr"), Z(zetsNormDiff_L2_64fc64f, "ssnr"));
// The largest magnitude, a complex one squared in the element type; what an infinity gives is not fixed.
struct Largest {
    template <class T> auto operator()(const T* x, const T* y, long long n) const {
        using R = conform::PartOf<T>;
        R m = 0;
        for (long long i = 0; i < n; ++i) {
            if constexpr (conform::kComplex<T>) {
                const R re = y ? R(x[i].re - y[i].re) : x[i].re, im = y ? R(x[i].im - y[i].im) : x[i].im;
                m = std::max(m, R(re * re) + R(im * im));
            } else {
                m = std::max(m, std::fabs(y ? R(x[i] - y[i]) : x[i]));
            }
        }
        return conform::kComplex<T> ? std::sqrt(m) : m;
    }
};
CONFORM(inf, op(sref::opt2(Largest{})).dom(conform::Dom::Finite), Z(zetsNorm_Inf_32f, "snr"),
        Z(zetsNorm_Inf_64f, "snr"), Z(zetsNorm_Inf_32fc32f, "snr"), Z(zetsNorm_Inf_64fc64f, "snr"),
        Z(zetsNormDiff_Inf_32f, "ssnr"), Z(zetsNormDiff_Inf_64f, "ssnr"), Z(zetsNormDiff_Inf_32fc32f, "ssnr"),
        Z(zetsNormDiff_Inf_64fc64f, "ssnr"));

// DotProd_32f: blocks of 32 into eight fused 4-lane sums, the fold tree,
// groups of 4 and single elements by separate multiply and add.
float dot32(const float* x, const float* y, long long n) {
    float a[8][4] = {}, s[4];
    long long i = 0;
    for (; i + 32 <= n; i += 32)
        for (int k = 0; k < 8; ++k)
            for (int l = 0; l < 4; ++l) a[k][l] = std::fma(x[i + 4 * k + l], y[i + 4 * k + l], a[k][l]);
    for (int l = 0; l < 4; ++l)
        s[l] = ((a[0][l] + a[2][l]) + (a[4][l] + a[6][l])) + ((a[1][l] + a[3][l]) + (a[5][l] + a[7][l]));
    for (; i + 4 <= n; i += 4)
        for (int l = 0; l < 4; ++l) s[l] = s[l] + x[i + l] * y[i + l];
    float r = (s[0] + s[2]) + (s[1] + s[3]);
    for (; i < n; ++i) r = r + x[i] * y[i];
    return r;
}
CONFORM(dot32, op(dot32).cmp(conform::anyNaN()), Z(zetsDotProd_32f, "ssnr"));
CONFORM(dot64, op([](auto x, auto y, long long n) {
            return sref::total(n, [=](double a, long long i) { return std::fma(double(x[i]), double(y[i]), a); });
        }).cmp(conform::anyNaN()),
        Z(zetsDotProd_64f, "ssnr"), Z(zetsDotProd_64f_L, "ssnr"), Z(zetsDotProd_32f64f, "ssnr"),
        Z(zetsDotProd_32f64f_L, "ssnr"));
// Integer dot products are exact (DotProd_16s32s_Sfs holds its scale to
// -31..31); complex and mixed floating ones have no fixed order: near the exact value
// (binary32 sums of products lose more to cancellation than their rounding suggests).
template <class P> auto parts(P v) {
    using W = std::conditional_t<std::is_integral_v<conform::PartOf<P>>, __int128, long double>;
    if constexpr (conform::kComplex<P>) return std::pair<W, W>(v.re, v.im);
    else return std::pair<W, W>(v, 0);
}
template <class Out, bool Limit = false> struct Dot {
    template <class A, class B, class... Sc> Out operator()(const A* a, const B* b, long long n, Sc... sc) const {
        decltype(parts(*a)) t{};
        for (long long i = 0; i < n; ++i) {
            const auto [ar, ai] = parts(a[i]);
            const auto [br, bi] = parts(b[i]);
            t.first += ar * br - ai * bi, t.second += ar * bi + ai * br;
        }
        if constexpr (conform::kComplex<Out>) return Out{conform::PartOf<Out>(t.first), conform::PartOf<Out>(t.second)};
        else if constexpr (sizeof...(Sc) > 0)
            return sref::rule<Out>(t.first, Limit ? std::clamp(sc..., -31, 31) : (sc, ...));
        else return Out(t.first);
    }
};
const auto plain = [](auto ref, double r) { return op(ref).dom(conform::Dom::Plain).cmp(conform::rel(r)); };
CONFORM(cdot32, plain(Dot<Zet32fc>{}, 1e-2), Z(zetsDotProd_32fc, "ssnr"), Z(zetsDotProd_32f32fc, "ssnr"));
CONFORM(cdot64, plain(Dot<Zet64fc>{}, 1e-12), Z(zetsDotProd_32fc64fc, "ssnr"), Z(zetsDotProd_32fc64fc_L, "ssnr"),
        Z(zetsDotProd_32f32fc64fc, "ssnr"), Z(zetsDotProd_32f32fc64fc_L, "ssnr"), Z(zetsDotProd_64fc, "ssnr"),
        Z(zetsDotProd_64fc_L, "ssnr"), Z(zetsDotProd_64f64fc, "ssnr"), Z(zetsDotProd_64f64fc_L, "ssnr"));
CONFORM(idot32f, op(Dot<Zet32f>{}), Z(zetsDotProd_16s32f, "ssnr"));
CONFORM(idot64, op(Dot<Zet64s>{}), Z(zetsDotProd_16s64s, "ssnr"));
CONFORM(idot64c, op(Dot<Zet64sc>{}), Z(zetsDotProd_16sc64sc, "ssnr"), Z(zetsDotProd_16s16sc64sc, "ssnr"));
CONFORM(idot16, op(Dot<Zet32s, true>{}), Z(zetsDotProd_16s32s_Sfs, "ssnrf"));
CONFORM(idot32, op(Dot<Zet32s>{}), Z(zetsDotProd_32s_Sfs, "ssnrf"), Z(zetsDotProd_16s32s32s_Sfs, "ssnrf"));

// 16s norms are exact; L2_16s32s_Sfs divides (scale above 0) or multiplies its
// binary64 root by (int)(1 << (|scale| & 31)) and truncates, saturating.
enum { kInf, kL1, kL2, kL2Sqr };
template <int Norm, class Out> struct IntNorm {
    template <class... Sc> Out operator()(const Zet16s* x, const Zet16s* y, long long n, Sc... sc) const {
        long long m = 0, l1 = 0, l2 = 0;
        for (long long i = 0; i < n; ++i) {
            const long long d = y ? x[i] - y[i] : x[i];
            m = std::max(m, std::llabs(d)), l1 += std::llabs(d), l2 += d * d;
        }
        const long long v = Norm == kInf ? m : Norm == kL1 ? l1 : l2;
        if constexpr (std::is_floating_point_v<Out>) return Norm == kL2 ? Out(std::sqrt(double(v))) : Out(v);
        else if constexpr (Norm != kL2) return sref::rule<Out>(v, sc...);
        else {
            const int scale = (sc, ...);
            const double f = int(1u << ((scale > 0 ? unsigned(scale) : 0u - unsigned(scale)) & 31));
            const double q = std::trunc(scale > 0 ? std::sqrt(double(v)) / f : std::sqrt(double(v)) * f);
            return Out(q >= INT_MAX ? INT_MAX : q <= INT_MIN ? INT_MIN : q);
        }
    }
};
CONFORM(inorm_inf, op(sref::opt2(IntNorm<kInf, Zet32f>{})), Z(zetsNorm_Inf_16s32f, "snr"),
        Z(zetsNormDiff_Inf_16s32f, "ssnr"));
CONFORM(inorm_l1, op(sref::opt2(IntNorm<kL1, Zet32f>{})), Z(zetsNorm_L1_16s32f, "snr"),
        Z(zetsNormDiff_L1_16s32f, "ssnr"));
CONFORM(inorm_l2, op(sref::opt2(IntNorm<kL2, Zet32f>{})), Z(zetsNorm_L2_16s32f, "snr"),
        Z(zetsNormDiff_L2_16s32f, "ssnr"));
CONFORM(inorm_inf_s, op(sref::opt2(IntNorm<kInf, Zet32s>{})), Z(zetsNorm_Inf_16s32s_Sfs, "snrf"),
        Z(zetsNormDiff_Inf_16s32s_Sfs, "ssnrf"));
CONFORM(inorm_l1_s, op(sref::opt2(IntNorm<kL1, Zet32s>{})), Z(zetsNorm_L1_16s32s_Sfs, "snrf"),
        Z(zetsNormDiff_L1_16s32s_Sfs, "ssnrf"));
CONFORM(inorm_l1_l, op(sref::opt2(IntNorm<kL1, Zet64s>{})), Z(zetsNorm_L1_16s64s_Sfs, "snrf"),
        Z(zetsNormDiff_L1_16s64s_Sfs, "ssnrf"));
CONFORM(inorm_l2_s, op(sref::opt2(IntNorm<kL2, Zet32s>{})), Z(zetsNorm_L2_16s32s_Sfs, "snrf"),
        Z(zetsNormDiff_L2_16s32s_Sfs, "ssnrf"));
CONFORM(inorm_sqr, op(sref::opt2(IntNorm<kL2Sqr, Zet64s>{})), Z(zetsNorm_L2Sqr_16s64s_Sfs, "snrf"),
        Z(zetsNormDiff_L2Sqr_16s64s_Sfs, "ssnrf"));

}  // namespace
