// SPDX-License-Identifier: MIT
// Reads what a benchmark measured and prints each row beside its peer.
#include "bench/support/ratios.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace korvel::bench {
namespace {

constexpr std::string_view kLibrary = "korvel";

struct Goal {
  std::string workload;
  std::string peer;
  double ratio;
};

// Goals are stated by initialisers of namespace-scope constants, in any order of source files.
std::vector<Goal> &goals() {
  static std::vector<Goal> stated;
  return stated;
}

std::optional<double> goalOf(std::string_view workload, std::string_view peer) {
  for (const Goal &g : goals()) {
    if (g.workload == workload && g.peer == peer) return g.ratio;
  }
  return std::nullopt;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 != 0) return *middle;
  return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

// The times of one program, per workload and who ran it. Runs come in at random; what was
// registered first stands first.
class Times {
 public:
  void add(std::string_view workload, std::string_view who, std::int64_t rank, double ns) {
    Workload &w = named(workloads_, workload);
    w.rank = std::min(w.rank, rank);
    Series &s = named(w.series, who);
    s.rank = rank;
    s.ns.push_back(ns);
  }
  void sort() {
    sortByRank(workloads_);
    for (Workload &w : workloads_) sortByRank(w.series);
  }
  void printRatios(std::FILE *out) const {
    std::fprintf(out, "\n%-36s %12s  %-20s %12s %7s %7s\n", "workload", "korvel ns", "peer",
                 "peer ns", "ratio", "goal");
    for (const Workload &w : workloads_) printRows(out, w);
  }

 private:
  static constexpr std::int64_t kLastRank = std::numeric_limits<std::int64_t>::max();

  struct Series {
    std::string name;
    std::int64_t rank = kLastRank;
    std::vector<double> ns;
  };
  struct Workload {
    std::string name;
    std::int64_t rank = kLastRank;
    std::vector<Series> series;
  };

  template <typename Named>
  static Named &named(std::vector<Named> &all, std::string_view name) {
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Named &one) { return one.name == name; });
    if (found != all.end()) return *found;
    all.emplace_back().name = name;
    return all.back();
  }
  template <typename Ranked>
  static void sortByRank(std::vector<Ranked> &all) {
    std::stable_sort(all.begin(), all.end(),
                     [](const Ranked &a, const Ranked &b) { return a.rank < b.rank; });
  }

  static void printRows(std::FILE *out, const Workload &w) {
    const auto library = std::find_if(w.series.begin(), w.series.end(),
                                      [](const Series &s) { return s.name == kLibrary; });
    if (library == w.series.end()) return;
    const double own = median(library->ns);
    for (const Series &peer : w.series) {
      if (peer.name != kLibrary) printRow(out, w.name, own, peer.name, median(peer.ns));
    }
    if (w.series.size() == 1) std::fprintf(out, "%-36s %12.1f\n", w.name.c_str(), own);
  }
  static void printRow(std::FILE *out, const std::string &workload, double own,
                       const std::string &peer, double other) {
    std::fprintf(out, "%-36s %12.1f  %-20s %12.1f %7.3f", workload.c_str(), own, peer.c_str(),
                 other, own / other);
    const std::optional<double> aim = goalOf(workload, peer);
    if (aim) {
      std::fprintf(out, " %7.3f%s", *aim, own / other <= *aim ? "" : "  above");
    }
    std::fputc('\n', out);
  }

  std::vector<Workload> workloads_;
};

// Nanoseconds of one iteration: of real time where the benchmark asks for it, else of the
// processor, which tells two neighbours on a shared machine apart better.
double nanoseconds(const benchmark::BenchmarkReporter::Run &run) {
  const std::string &clock = run.run_name.time_type;
  const bool isReal = clock == "real_time" || clock == "manual_time";
  const double inUnit = isReal ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
  return inUnit / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
}

// Gathers the time of every single repetition; prints no table of its own before the last one.
class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context &context) override {
    PrintBasicContext(&GetErrorStream(), context);
    return true;
  }
  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs) {
      if (run.error_occurred) {
        failed_ = true;
        std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
      } else if (run.run_type == Run::RT_Iteration) {
        addRun(run);
      }
    }
  }
  void Finalize() override {
    times_.sort();
    times_.printRatios(stdout);
  }
  bool failed() const { return failed_; }

 private:
  // Arguments of a benchmark belong to the workload: "<workload>/<who>/64" is "<workload>/64".
  void addRun(const Run &run) {
    const std::string &name = run.run_name.function_name;
    const std::string suffix = run.run_name.args.empty() ? "" : "/" + run.run_name.args;
    const std::size_t slash = name.rfind('/');
    if (slash == std::string::npos) {
      times_.add(name + suffix, kLibrary, run.family_index, nanoseconds(run));
    } else {
      times_.add(name.substr(0, slash) + suffix, name.substr(slash + 1), run.family_index,
                 nanoseconds(run));
    }
  }

  Times times_;
  bool failed_ = false;
};

// The caller's arguments behind our own: a flag given twice takes its last value.
std::vector<std::string> withDefaults(int argc, char **argv) {
  std::vector<std::string> all{argv[0], "--benchmark_repetitions=9",
                               "--benchmark_enable_random_interleaving=true",
                               "--benchmark_min_time=0.05"};
  all.insert(all.end(), argv + 1, argv + argc);
  return all;
}

}  // namespace

bool goal(std::string_view workload, std::string_view peer, double ratio) {
  goals().push_back({std::string(workload), std::string(peer), ratio});
  return true;
}

int runAndPrintRatios(int argc, char **argv) {
  std::vector<std::string> arguments = withDefaults(argc, argv);
  std::vector<char *> pointers;
  for (std::string &one : arguments) pointers.push_back(one.data());
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.failed() ? 1 : 0;
}

}  // namespace korvel::bench
