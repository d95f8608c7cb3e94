// Forward transforms of arbitrary length against FFTW 3 on the same buffers:
// interleaved complex in single and double precision, single precision with
// separate real and imaginary arrays, and real input to the CCS layout
// against FFTW's r2c transform. All out of place and unnormalised. The
// lengths mix the ways a length can take: 12 (unrolled), 2-3-5 products
// below and above the 2001-point sweep, a 3 times a power of two, and the
// primes 1009 and 4099 (convolution of a 2-3-5 length and of a power of two).
//
// FFTW plans with FFTW_MEASURE on the plan's own arrays, which leaves
// garbage in them: the input is written after planning, and planning stays
// out of the timed region.
#include "transform_bench.hpp"

#include <string>

namespace {

using namespace zetbench;

constexpr long kLengths[] = {12, 60, 100, 360, 1000, 1536, 3000, 12288, 1009, 4099};

// The layouts: the reals that each side reads and writes, and FFTW's plan and
// execution on them. A form adds our spec and call to its layout.
template <class R>
struct ComplexLayout {
    using Real = R;
    using F = Fftw<R>;
    static std::size_t inReals(std::size_t n) { return 2 * n; }
    static std::size_t outReals(std::size_t n) { return 2 * n; }
    static typename F::Complex* cx(R* p) { return reinterpret_cast<typename F::Complex*>(p); }
    static typename F::Plan plan(int n, R* in, R* out) { return F::planDft(n, cx(in), cx(out)); }
    static void execute(typename F::Plan p, R* in, R* out, std::size_t) { F::executeDft(p, cx(in), cx(out)); }
};

// Real and imaginary planes back to back in one buffer: [re | im].
template <class R>
struct SplitLayout {
    using Real = R;
    using F = Fftw<R>;
    static std::size_t inReals(std::size_t n) { return 2 * n; }
    static std::size_t outReals(std::size_t n) { return 2 * n; }
    static typename F::Plan plan(int n, R* in, R* out) { return F::planSplitDft(n, in, in + n, out, out + n); }
    static void execute(typename F::Plan p, R* in, R* out, std::size_t n) {
        F::executeSplitDft(p, in, in + n, out, out + n);
    }
};

// Real input to CCS, which is FFTW's r2c output: N/2 + 1 complex values.
template <class R>
struct CcsLayout {
    using Real = R;
    using F = Fftw<R>;
    static std::size_t inReals(std::size_t n) { return n; }
    static std::size_t outReals(std::size_t n) { return 2 * (n / 2 + 1); }
    static typename F::Plan plan(int n, R* in, R* out) {
        return F::planR2c(n, in, reinterpret_cast<typename F::Complex*>(out));
    }
    static void execute(typename F::Plan p, R* in, R* out, std::size_t) {
        F::executeR2c(p, in, reinterpret_cast<typename F::Complex*>(out));
    }
};

struct Single : ComplexLayout<float> {
    using Spec = ZetsDFTSpec_C_32fc;
    static constexpr GetSizeFn getSize = zetsDFTGetSize_C_32fc;
    static constexpr auto init = zetsDFTInit_C_32fc;
    static ZetStatus ours(const Real* s, Real* d, std::size_t, const Spec* spec, Zet8u* w) {
        return zetsDFTFwd_CToC_32fc(reinterpret_cast<const Zet32fc*>(s), reinterpret_cast<Zet32fc*>(d), spec, w);
    }
};

struct Double : ComplexLayout<double> {
    using Spec = ZetsDFTSpec_C_64fc;
    static constexpr GetSizeFn getSize = zetsDFTGetSize_C_64fc;
    static constexpr auto init = zetsDFTInit_C_64fc;
    static ZetStatus ours(const Real* s, Real* d, std::size_t, const Spec* spec, Zet8u* w) {
        return zetsDFTFwd_CToC_64fc(reinterpret_cast<const Zet64fc*>(s), reinterpret_cast<Zet64fc*>(d), spec, w);
    }
};

struct SplitSingle : SplitLayout<float> {
    using Spec = ZetsDFTSpec_C_32f;
    static constexpr GetSizeFn getSize = zetsDFTGetSize_C_32f;
    static constexpr auto init = zetsDFTInit_C_32f;
    static ZetStatus ours(const Real* s, Real* d, std::size_t n, const Spec* spec, Zet8u* w) {
        return zetsDFTFwd_CToC_32f(s, s + n, d, d + n, spec, w);
    }
};

struct RealSingle : CcsLayout<float> {
    using Spec = ZetsDFTSpec_R_32f;
    static constexpr GetSizeFn getSize = zetsDFTGetSize_R_32f;
    static constexpr auto init = zetsDFTInit_R_32f;
    static ZetStatus ours(const Real* s, Real* d, std::size_t, const Spec* spec, Zet8u* w) {
        return zetsDFTFwd_RToCCS_32f(s, d, spec, w);
    }
};

template <class P>
class Forward {
public:
    using Real = typename P::Real;
    using F = Fftw<Real>;

    explicit Forward(long n)
        : n_(static_cast<std::size_t>(n)), in_(P::inReals(n_) * sizeof(Real)), out_(P::outReals(n_) * sizeof(Real)) {
        error_ = setUp();
    }

    long key() const { return static_cast<long>(n_); }
    const std::string& error() const { return error_; }
    double bytesPerCall() const { return static_cast<double>((P::inReals(n_) + P::outReals(n_)) * sizeof(Real)); }

    void ours() { P::ours(in_.as<Real>(), out_.as<Real>(), n_, ours_.spec, ours_.work->as()); }
    void peer() { P::execute(plan_.get(), in_.as<Real>(), out_.as<Real>(), n_); }

private:
    std::string setUp() {
        if (!in_ || !out_) return "out of memory";
        if (std::string e = ours_.setUp(static_cast<int>(n_), P::getSize, P::init); !e.empty()) return e;
        plan_.reset(P::plan(static_cast<int>(n_), in_.as<Real>(), out_.as<Real>()));
        if (!plan_) return "FFTW could not plan";
        fillRandom(in_.as<Real>(), P::inReals(n_), 1);
        Buffer ref(P::outReals(n_) * sizeof(Real));
        if (!ref) return "out of memory";
        if (P::ours(in_.as<Real>(), ref.as<Real>(), n_, ours_.spec, ours_.work->as()) != zetStsOk)
            return "our forward DFT failed";
        peer();
        RmsError rms;
        rms.add(ref.as<Real>(), out_.as<Real>(), P::outReals(n_));
        const double err = rms.relative();
        if (!(err <= F::kTolerance)) return disagreement(err, F::kTolerance);
        return {};
    }

    std::size_t n_;
    Buffer in_, out_;
    OurSpec<typename P::Spec> ours_;
    FftwPlan<Real> plan_;
    std::string error_;
};

template <class P>
void forward(benchmark::State& state) {
    const long n = static_cast<long>(state.range(0));
    Forward<P>& s = setUpFor<Forward<P>>(n);
    if (!s.error().empty()) return state.SkipWithError(s.error().c_str());
    zetbench::compare(
        state, s.bytesPerCall(), [&] { s.ours(); }, [&] { s.peer(); });
}

void addLengths(const char* name, void (*fn)(benchmark::State&)) {
    auto* b = benchmark::RegisterBenchmark(name, fn);
    for (long n : kLengths) b->Arg(n);
    b->UseManualTime();
}

const bool kRegistered = [] {
    addLengths("DFTFwd_C_32fc_vs_fftwf", forward<Single>);
    addLengths("DFTFwd_C_64fc_vs_fftw", forward<Double>);
    addLengths("DFTFwd_C_32f_split_vs_fftwf", forward<SplitSingle>);
    addLengths("DFTFwd_R_32f_CCS_vs_fftwf", forward<RealSingle>);
    return true;
}();

}  // namespace
