// Entry point of the benchmark program: the usual runner, and after the
// console table a summary of each family's speedup over its peer, the
// geometric mean over the family's lengths. Other output formats (JSON, CSV)
// go out unchanged, so that they stay parseable.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

class SpeedupSummary : public benchmark::BenchmarkReporter {
public:
    explicit SpeedupSummary(benchmark::BenchmarkReporter* inner) : inner_(inner) {}

    bool ReportContext(const Context& context) override { return inner_->ReportContext(context); }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            if (run.error_occurred) {
                ++familyOf(run.run_name.function_name).failed;
                continue;
            }
            const auto it = run.counters.find("speedup");
            if (it != run.counters.end() && it->second.value > 0.0)
                familyOf(run.run_name.function_name).speedups.push_back(it->second.value);
        }
        inner_->ReportRuns(runs);
    }

    void Finalize() override {
        inner_->Finalize();
        if (families_.empty() || !dynamic_cast<benchmark::ConsoleReporter*>(inner_.get())) return;

        std::size_t width = 6;
        for (const Family& f : families_) width = std::max(width, f.name.size());
        auto& out = inner_->GetOutputStream();
        char line[96];
        out << "\nSpeedup (peer time / ours; above 1: ours faster), geometric mean per family\n";
        out << "family" << std::string(width - 6, ' ') << "   runs  failed  geomean      min      max\n";
        for (const Family& f : families_) {
            const auto& s = f.speedups;
            if (s.empty()) {
                std::snprintf(line, sizeof line, " %6d %7d\n", 0, f.failed);
            } else {
                double logSum = 0.0;
                for (double v : s) logSum += std::log(v);
                const auto [lo, hi] = std::minmax_element(s.begin(), s.end());
                std::snprintf(line, sizeof line, " %6zu %7d %8.3f %8.3f %8.3f\n", s.size(), f.failed,
                              std::exp(logSum / static_cast<double>(s.size())), *lo, *hi);
            }
            out << f.name << std::string(width - f.name.size(), ' ') << line;
        }
    }

private:
    // A failed run is counted, so that a mean over the rest is not taken for
    // the whole family.
    struct Family {
        std::string name;
        std::vector<double> speedups;
        int failed = 0;
    };

    // Families in the order they first report.
    Family& familyOf(const std::string& name) {
        for (Family& f : families_)
            if (f.name == name) return f;
        families_.push_back(Family{name, {}, 0});
        return families_.back();
    }

    std::unique_ptr<benchmark::BenchmarkReporter> inner_;
    std::vector<Family> families_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // The default reporter honours --benchmark_format and the colour and
    // tabular-counter flags; the summary only wraps it.
    SpeedupSummary reporter(benchmark::CreateDefaultDisplayReporter());
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
