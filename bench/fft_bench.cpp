// Forward power-of-two FFTs against FFTW 3 on the same buffers: interleaved
// complex in single and double precision, single precision with real and
// imaginary parts in separate arrays against FFTW's split-array interface,
// and real input to the CCS layout against FFTW's r2c transform.
// All out of place and unnormalised. The argument of each benchmark is the
// length N; the _large families hold the lengths beyond 64 Ki points, so
// that the closing summary gives a separate mean for them.
//
// FFTW plans with FFTW_MEASURE, which times candidate algorithms on the
// plan's own arrays and leaves garbage in them: the input is written after
// planning, and planning stays out of the timed region. That planning takes
// seconds at the large lengths, so a length is set up only when its benchmark
// is selected, and kept while the runner calls that benchmark again.
#include "transform_bench.hpp"

#include <bit>
#include <string>

namespace {

using namespace zetbench;

// Our interleaved-complex forms; FFTW's side follows from Real.
struct Single {
    using Real = float;
    using Zc = Zet32fc;
    using Spec = ZetsFFTSpec_C_32fc;
    static constexpr GetSizeFn getSize = zetsFFTGetSize_C_32fc;
    static constexpr auto init = zetsFFTInit_C_32fc;
    static constexpr auto fwd = zetsFFTFwd_CToC_32fc;
};

struct Double {
    using Real = double;
    using Zc = Zet64fc;
    using Spec = ZetsFFTSpec_C_64fc;
    static constexpr GetSizeFn getSize = zetsFFTGetSize_C_64fc;
    static constexpr auto init = zetsFFTInit_C_64fc;
    static constexpr auto fwd = zetsFFTFwd_CToC_64fc;
};

// Interleaved complex: in -> out for both libraries.
template <class P>
class Interleaved {
public:
    using Real = typename P::Real;
    using F = Fftw<Real>;

    explicit Interleaved(int order) : order_(order), n_(std::size_t{1} << order), in_(bytes()), out_(bytes()) {
        error_ = setUp();
    }

    long key() const { return order_; }
    const std::string& error() const { return error_; }
    double bytesPerCall() const { return 2.0 * static_cast<double>(bytes()); }

    void ours() { P::fwd(in_.as<typename P::Zc>(), out_.as<typename P::Zc>(), ours_.spec, ours_.work->as()); }
    void peer() { F::executeDft(plan_.get(), in_.as<typename F::Complex>(), out_.as<typename F::Complex>()); }

private:
    std::size_t bytes() const { return n_ * 2 * sizeof(Real); }

    std::string setUp() {
        if (!in_ || !out_) return "out of memory";
        if (std::string e = ours_.setUp(order_, P::getSize, P::init); !e.empty()) return e;
        plan_.reset(F::planDft(static_cast<int>(n_), in_.as<typename F::Complex>(), out_.as<typename F::Complex>()));
        if (!plan_) return "FFTW could not plan";

        fillRandom(in_.as<Real>(), 2 * n_, 1);
        Buffer ref(bytes());
        if (!ref) return "out of memory";
        if (P::fwd(in_.as<typename P::Zc>(), ref.as<typename P::Zc>(), ours_.spec, ours_.work->as()) != zetStsOk)
            return "our forward FFT failed";
        peer();
        RmsError rms;
        rms.add(ref.as<Real>(), out_.as<Real>(), 2 * n_);
        const double err = rms.relative();
        if (!(err <= F::kTolerance)) return disagreement(err, F::kTolerance);
        return {};
    }

    int order_;
    std::size_t n_;
    Buffer in_, out_;
    OurSpec<typename P::Spec> ours_;
    FftwPlan<Real> plan_;
    std::string error_;
};

// Single precision with separate real and imaginary arrays, against FFTW's
// split interface.
class Split {
public:
    using F = Fftw<float>;

    explicit Split(int order)
        : order_(order), n_(std::size_t{1} << order), inRe_(bytes()), inIm_(bytes()), outRe_(bytes()), outIm_(bytes()) {
        error_ = setUp();
    }

    long key() const { return order_; }
    const std::string& error() const { return error_; }
    double bytesPerCall() const { return 4.0 * static_cast<double>(bytes()); }

    void ours() {
        zetsFFTFwd_CToC_32f(inRe_.as<Zet32f>(), inIm_.as<Zet32f>(), outRe_.as<Zet32f>(), outIm_.as<Zet32f>(),
                            ours_.spec, ours_.work->as());
    }
    void peer() {
        F::executeSplitDft(plan_.get(), inRe_.as<float>(), inIm_.as<float>(), outRe_.as<float>(), outIm_.as<float>());
    }

private:
    std::size_t bytes() const { return n_ * sizeof(float); }

    std::string setUp() {
        if (!inRe_ || !inIm_ || !outRe_ || !outIm_) return "out of memory";
        if (std::string e = ours_.setUp(order_, zetsFFTGetSize_C_32f, zetsFFTInit_C_32f); !e.empty()) return e;
        plan_.reset(F::planSplitDft(static_cast<int>(n_), inRe_.as<float>(), inIm_.as<float>(), outRe_.as<float>(),
                                    outIm_.as<float>()));
        if (!plan_) return "FFTW could not plan";

        // Different data in the two parts, so that swapped parts cannot agree.
        fillRandom(inRe_.as<float>(), n_, 1);
        fillRandom(inIm_.as<float>(), n_, 2);

        Buffer refRe(bytes()), refIm(bytes());
        if (!refRe || !refIm) return "out of memory";
        if (zetsFFTFwd_CToC_32f(inRe_.as<Zet32f>(), inIm_.as<Zet32f>(), refRe.as<Zet32f>(), refIm.as<Zet32f>(),
                                ours_.spec, ours_.work->as()) != zetStsOk)
            return "our forward FFT failed";
        peer();
        RmsError rms;
        rms.add(refRe.as<float>(), outRe_.as<float>(), n_);
        rms.add(refIm.as<float>(), outIm_.as<float>(), n_);
        const double err = rms.relative();
        if (!(err <= F::kTolerance)) return disagreement(err, F::kTolerance);
        return {};
    }

    int order_;
    std::size_t n_;
    Buffer inRe_, inIm_, outRe_, outIm_;
    OurSpec<ZetsFFTSpec_C_32f> ours_;
    FftwPlan<float> plan_;
    std::string error_;
};

// Real input to the CCS layout, which is FFTW's r2c output: N/2 + 1 complex
// values, the same N + 2 reals.
struct RealSingle {
    using Real = float;
    using Spec = ZetsFFTSpec_R_32f;
    static constexpr GetSizeFn getSize = zetsFFTGetSize_R_32f;
    static constexpr auto init = zetsFFTInit_R_32f;
    static constexpr auto fwd = zetsFFTFwd_RToCCS_32f;
};

struct RealDouble {
    using Real = double;
    using Spec = ZetsFFTSpec_R_64f;
    static constexpr GetSizeFn getSize = zetsFFTGetSize_R_64f;
    static constexpr auto init = zetsFFTInit_R_64f;
    static constexpr auto fwd = zetsFFTFwd_RToCCS_64f;
};

template <class P>
class RealToCcs {
public:
    using Real = typename P::Real;
    using F = Fftw<Real>;

    explicit RealToCcs(int order)
        : order_(order), n_(std::size_t{1} << order), in_(n_ * sizeof(Real)), out_((n_ + 2) * sizeof(Real)) {
        error_ = setUp();
    }

    long key() const { return order_; }
    const std::string& error() const { return error_; }
    double bytesPerCall() const { return static_cast<double>((2 * n_ + 2) * sizeof(Real)); }

    void ours() { P::fwd(in_.as<Real>(), out_.as<Real>(), ours_.spec, ours_.work->as()); }
    void peer() { F::executeR2c(plan_.get(), in_.as<Real>(), out_.as<typename F::Complex>()); }

private:
    std::string setUp() {
        if (!in_ || !out_) return "out of memory";
        if (std::string e = ours_.setUp(order_, P::getSize, P::init); !e.empty()) return e;
        plan_.reset(F::planR2c(static_cast<int>(n_), in_.as<Real>(), out_.as<typename F::Complex>()));
        if (!plan_) return "FFTW could not plan";
        fillRandom(in_.as<Real>(), n_, 1);
        Buffer ref((n_ + 2) * sizeof(Real));
        if (!ref) return "out of memory";
        if (P::fwd(in_.as<Real>(), ref.as<Real>(), ours_.spec, ours_.work->as()) != zetStsOk)
            return "our forward FFT failed";
        peer();
        RmsError rms;
        rms.add(ref.as<Real>(), out_.as<Real>(), n_ + 2);
        const double err = rms.relative();
        if (!(err <= F::kTolerance)) return disagreement(err, F::kTolerance);
        return {};
    }

    int order_;
    std::size_t n_;
    Buffer in_, out_;
    OurSpec<typename P::Spec> ours_;
    FftwPlan<Real> plan_;
    std::string error_;
};

template <class Setup>
void forward(benchmark::State& state) {
    const auto n = static_cast<unsigned long>(state.range(0));
    const int order = std::countr_zero(n);
    Setup& s = setUpFor<Setup>(order);
    if (!s.error().empty()) return state.SkipWithError(s.error().c_str());

    zetbench::compare(
        state, s.bytesPerCall(), [&] { s.ours(); }, [&] { s.peer(); });
    // The customary FFT rate: 5 N log2 N flops per transform.
    const double ns = state.counters["ours_ns"].value;
    state.counters["ours_gflops"] = ns > 0.0 ? 5.0 * static_cast<double>(n) * order / ns : 0.0;
}

void addLengths(const char* name, void (*fn)(benchmark::State&), int firstOrder, int lastOrder) {
    auto* b = benchmark::RegisterBenchmark(name, fn);
    for (int order = firstOrder; order <= lastOrder; ++order) b->Arg(1L << order);
    b->UseManualTime();
}

// The split at 64 Ki points separates the lengths whose data stays in a
// core's own caches from those served by the shared cache or by memory.
const bool kRegistered = [] {
    addLengths("FFTFwd_C_32fc_vs_fftwf", forward<Interleaved<Single>>, 6, 16);
    addLengths("FFTFwd_C_32fc_large_vs_fftwf", forward<Interleaved<Single>>, 17, 22);
    addLengths("FFTFwd_C_64fc_vs_fftw", forward<Interleaved<Double>>, 6, 16);
    addLengths("FFTFwd_C_64fc_large_vs_fftw", forward<Interleaved<Double>>, 17, 20);
    addLengths("FFTFwd_C_32f_split_vs_fftwf", forward<Split>, 6, 16);
    addLengths("FFTFwd_R_32f_CCS_vs_fftwf_r2c", forward<RealToCcs<RealSingle>>, 6, 16);
    addLengths("FFTFwd_R_64f_CCS_vs_fftw_r2c", forward<RealToCcs<RealDouble>>, 6, 16);
    return true;
}();

}  // namespace
