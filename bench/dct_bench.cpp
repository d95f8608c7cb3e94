// The single-precision DCT-II against FFTW's REDFT10 on the same buffers,
// out of place, lengths 64..65536. Ours is orthonormal and FFTW's is not:
// the set-up checks that FFTW's result is ours times 2/s(k) before timing.
// FFTW plans with FFTW_MEASURE, which scribbles on the arrays: the input is
// written after planning.
#include "transform_bench.hpp"

#include <fftw3.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

namespace {

using zetbench::Buffer;

class Dct {
 public:
  explicit Dct(int n) : n_(n), in_(bytes()), out_(bytes()), ref_(bytes()) { error_ = setUp(); }
  ~Dct() {
    if (plan_) fftwf_destroy_plan(plan_);
  }
  Dct(const Dct&) = delete;
  Dct& operator=(const Dct&) = delete;

  long key() const { return n_; }
  const std::string& error() const { return error_; }
  double bytesPerCall() const { return 2.0 * static_cast<double>(bytes()); }

  void ours() {
    zetsDCTFwd_32f(in_.as<float>(), out_.as<float>(), reinterpret_cast<const ZetsDCTFwdSpec_32f*>(spec_->as()),
                   work_->as());
  }
  void peer() { fftwf_execute_r2r(plan_, in_.as<float>(), out_.as<float>()); }

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
    plan_ = fftwf_plan_r2r_1d(n_, in_.as<float>(), out_.as<float>(), FFTW_REDFT10, FFTW_MEASURE);
    if (!plan_) return "FFTW could not plan";
    zetbench::fillRandom(in_.as<float>(), bytes() / sizeof(float), 3);
    ours();
    std::memcpy(ref_.as(), out_.as(), bytes());
    peer();
    double diff = 0, norm = 0;
    for (int k = 0; k < n_; ++k) {
      const double scaled = ref_.as<float>()[k] * 2.0 / std::sqrt((k ? 2.0 : 1.0) / n_);
      const double p = out_.as<float>()[k];
      diff += (scaled - p) * (scaled - p);
      norm += p * p;
    }
    if (!(std::sqrt(diff / norm) <= 1e-5)) {
      char msg[96];
      std::snprintf(msg, sizeof msg, "ours and FFTW disagree: relative RMS %.3g", std::sqrt(diff / norm));
      return msg;
    }
    return {};
  }

  int n_;
  Buffer in_, out_, ref_;
  std::unique_ptr<Buffer> spec_, work_;
  fftwf_plan plan_ = nullptr;
  std::string error_;
};

void dctForward(benchmark::State& state) {
  Dct& d = zetbench::setUpFor<Dct>(state.range(0));
  if (!d.error().empty()) return state.SkipWithError(d.error().c_str());
  zetbench::compare(state, d.bytesPerCall(), [&] { d.ours(); }, [&] { d.peer(); });
}

const bool kRegistered = [] {
  auto* b = benchmark::RegisterBenchmark("DCTFwd_32f_vs_fftwf_REDFT10", dctForward);
  for (int order = 6; order <= 16; ++order) b->Arg(1 << order);
  b->UseManualTime();
  return true;
}();

}  // namespace
