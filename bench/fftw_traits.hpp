// FFTW's interface for each precision, so that a transform benchmark names
// its form (complex, split, real, cosine) once and gets the float or double
// calls from the precision of its data. Every plan is FFTW_MEASURE and every
// complex transform forward: the benchmarks compare forward transforms only.
#pragma once

#include <fftw3.h>

#include <memory>
#include <type_traits>

namespace zetbench {

// Fftw<Real>: Plan and Complex types, the plan and execute calls for each
// form, destroy, and the relative RMS error accepted between FFTW and us.
template <class Real>
struct Fftw;

// The two precisions differ in the prefix of every name and in the tolerance.
#define ZETBENCH_FFTW_TRAITS(REAL, P, TOLERANCE)                                                                    \
    template <>                                                                                                     \
    struct Fftw<REAL> {                                                                                             \
        using Plan = P##plan;                                                                                       \
        using Complex = P##complex;                                                                                 \
        static constexpr double kTolerance = TOLERANCE;                                                             \
                                                                                                                    \
        static Plan planDft(int n, Complex* in, Complex* out) {                                                     \
            return P##plan_dft_1d(n, in, out, FFTW_FORWARD, FFTW_MEASURE);                                          \
        }                                                                                                           \
        /* The split interface has no sign argument: (re, im) order is forward. */                                  \
        static Plan planSplitDft(int n, REAL* inRe, REAL* inIm, REAL* outRe, REAL* outIm) {                         \
            P##iodim dim{n, 1, 1};                                                                                  \
            return P##plan_guru_split_dft(1, &dim, 0, nullptr, inRe, inIm, outRe, outIm, FFTW_MEASURE);             \
        }                                                                                                           \
        static Plan planR2c(int n, REAL* in, Complex* out) { return P##plan_dft_r2c_1d(n, in, out, FFTW_MEASURE); } \
        static Plan planRedft10(int n, REAL* in, REAL* out) {                                                       \
            return P##plan_r2r_1d(n, in, out, FFTW_REDFT10, FFTW_MEASURE);                                          \
        }                                                                                                           \
                                                                                                                    \
        static void executeDft(Plan p, Complex* in, Complex* out) { P##execute_dft(p, in, out); }                   \
        static void executeSplitDft(Plan p, REAL* inRe, REAL* inIm, REAL* outRe, REAL* outIm) {                     \
            P##execute_split_dft(p, inRe, inIm, outRe, outIm);                                                      \
        }                                                                                                           \
        static void executeR2c(Plan p, REAL* in, Complex* out) { P##execute_dft_r2c(p, in, out); }                  \
        static void executeR2r(Plan p, REAL* in, REAL* out) { P##execute_r2r(p, in, out); }                         \
                                                                                                                    \
        static void destroy(Plan p) { P##destroy_plan(p); }                                                         \
    };

ZETBENCH_FFTW_TRAITS(float, fftwf_, 1e-5)
ZETBENCH_FFTW_TRAITS(double, fftw_, 1e-12)

#undef ZETBENCH_FFTW_TRAITS

template <class Real>
struct FftwPlanDeleter {
    void operator()(typename Fftw<Real>::Plan p) const { Fftw<Real>::destroy(p); }
};

// Owns a plan; empty when FFTW could not plan.
template <class Real>
using FftwPlan = std::unique_ptr<std::remove_pointer_t<typename Fftw<Real>::Plan>, FftwPlanDeleter<Real>>;

}  // namespace zetbench
