// The single-precision DCT-II against FFTW's REDFT10 on the same buffers,
// out of place, lengths 64..65536. Ours is orthonormal and FFTW's is not:
// the set-up checks that FFTW's result is ours times 2/s(k) before timing.
// FFTW plans with FFTW_MEASURE, which scribbles on the arrays: the input is
// written after planning.
#include "transform_bench.hpp"

#include <cmath>
#include <cstring>
#include <memory>
#include <string>

namespace {

using namespace zetbench;

class Dct {
public:
    using F = Fftw<float>;

    explicit Dct(int n) : n_(n), in_(bytes()), out_(bytes()), ref_(bytes()) { error_ = setUp(); }

    long key() const { return n_; }
    const std::string& error() const { return error_; }
    double bytesPerCall() const { return 2.0 * static_cast<double>(bytes()); }

    void ours() {
        zetsDCTFwd_32f(in_.as<float>(), out_.as<float>(), reinterpret_cast<const ZetsDCTFwdSpec_32f*>(spec_->as()),
                       work_->as());
    }
    void peer() { F::executeR2r(plan_.get(), in_.as<float>(), out_.as<float>()); }

private:
    std::size_t bytes() const { return static_cast<std::size_t>(n_) * sizeof(float); }

    std::string setUp() {
        int s = 0, i = 0, w = 0;
        if (zetsDCTFwdGetSize_32f(n_, zetHintAccurate, &s, &i, &w) != zetStsOk) return "our GetSize failed";
        spec_ = std::make_unique<Buffer>(static_cast<std::size_t>(s));
        work_ = std::make_unique<Buffer>(static_cast<std::size_t>(w));
        Buffer init(static_cast<std::size_t>(i > 0 ? i : 1));
        if (zetsDCTFwdInit_32f(n_, zetHintAccurate, reinterpret_cast<ZetsDCTFwdSpec_32f*>(spec_->as()), init.as()) !=
            zetStsOk)
            return "our Init failed";
        plan_.reset(F::planRedft10(n_, in_.as<float>(), out_.as<float>()));
        if (!plan_) return "FFTW could not plan";
        fillRandom(in_.as<float>(), bytes() / sizeof(float), 3);
        ours();
        std::memcpy(ref_.as(), out_.as(), bytes());
        peer();
        RmsError rms;
        for (int k = 0; k < n_; ++k)
            rms.add(ref_.as<float>()[k] * 2.0 / std::sqrt((k ? 2.0 : 1.0) / n_),
                    static_cast<double>(out_.as<float>()[k]));
        const double err = rms.relative();
        if (!(err <= F::kTolerance)) return disagreement(err, F::kTolerance);
        return {};
    }

    int n_;
    Buffer in_, out_, ref_;
    std::unique_ptr<Buffer> spec_, work_;
    FftwPlan<float> plan_;
    std::string error_;
};

void dctForward(benchmark::State& state) {
    Dct& d = setUpFor<Dct>(state.range(0));
    if (!d.error().empty()) return state.SkipWithError(d.error().c_str());
    zetbench::compare(
        state, d.bytesPerCall(), [&] { d.ours(); }, [&] { d.peer(); });
}

const bool kRegistered = [] {
    auto* b = benchmark::RegisterBenchmark("DCTFwd_32f_vs_fftwf_REDFT10", dctForward);
    for (int order = 6; order <= 16; ++order) b->Arg(1 << order);
    b->UseManualTime();
    return true;
}();

}  // namespace
