// Side-by-side timing: a figure of ours and its baseline run alternately in
// one process, round after round, and the figure is the median of the
// per-round ratios. On a busy machine both halves of a round see about the
// same conditions, so the ratio is steadier than either time.
//
// Not thread-safe; one Figures per program.
#ifndef FILTERS_BENCH_SIDE_BY_SIDE_H_
#define FILTERS_BENCH_SIDE_BY_SIDE_H_

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace FiltersBench {

// The CPU time of the process (the benchmarks run one thread), kernel time
// (page faults) included. Unlike the wall clock it does not count the time
// other processes of a busy machine hold the core.
inline double cpuSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Seconds of CPU taken by `reps` calls of `work`.
inline double timeIt(const std::function<void()>& work, int reps) {
  const double start = cpuSeconds();
  for (int i = 0; i < reps; ++i) work();
  return cpuSeconds() - start;
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t n = values.size();
  return n % 2 == 1 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Collects the figures of a run and prints them: a table for people, then one
// "figure NAME ratio=X target=Y" line per figure for scripts.
class Figures {
 public:
  explicit Figures(int rounds) : rounds_(rounds) {}

  // Runs `ours` `oursReps` times and `base` `baseReps` times per round, the
  // first of the two alternating between rounds, and records the median of
  // (ours per call) / (base per call) times `scale`. `cleanup`, if any,
  // runs untimed after each timed batch: it destroys what the batch kept, so
  // that teardown is not part of the figure. One call of each warms up.
  void compare(const std::string& name, double target,
               const std::function<void()>& ours, int oursReps,
               const std::function<void()>& base, int baseReps,
               const std::function<void()>& cleanup = {}, double scale = 1) {
    const auto tidy = [&cleanup] {
      if (cleanup) cleanup();
    };
    ours();
    base();
    tidy();
    std::vector<double> ratios;
    std::vector<double> oursTimes;
    std::vector<double> baseTimes;
    for (int round = 0; round < rounds_; ++round) {
      double o = 0;
      double b = 0;
      if (round % 2 == 0) {
        o = timeIt(ours, oursReps) / oursReps;
        tidy();
        b = timeIt(base, baseReps) / baseReps;
        tidy();
      } else {
        b = timeIt(base, baseReps) / baseReps;
        tidy();
        o = timeIt(ours, oursReps) / oursReps;
        tidy();
      }
      oursTimes.push_back(o);
      baseTimes.push_back(b);
      ratios.push_back(o / b * scale);
    }
    record(name, target, median(oursTimes) * 1e3, median(baseTimes) * 1e3,
           median(ratios));
  }

  // A figure measured some other way (memory, for one).
  void record(const std::string& name, double target, double ours, double base,
              double ratio) {
    rows_.push_back(Row{name, target, ours, base, ratio});
  }

  // The table and the figure lines on standard output.
  void print(const char* oursUnit) const {
    std::printf("%-22s %14s %14s %8s %8s\n", "name", oursUnit, "baseline",
                "ratio", "target");
    for (const Row& row : rows_) {
      std::printf("%-22s %14.3f %14.3f %8.3f %8.2f %s\n", row.name.c_str(),
                  row.ours, row.base, row.ratio, row.target,
                  row.ratio <= row.target ? "" : "over");
    }
    for (const Row& row : rows_) {
      std::printf("figure %s ratio=%.3f target=%.2f\n", row.name.c_str(),
                  row.ratio, row.target);
    }
    std::fflush(stdout);
  }

 private:
  struct Row {
    std::string name;
    double target;
    double ours;
    double base;
    double ratio;
  };
  int rounds_;
  std::vector<Row> rows_;
};

// Reads "--quick" and "--rounds N"; returns false on anything else.
inline bool parseArgs(int argc, char** argv, bool* quick, int* rounds) {
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--quick") {
      *quick = true;
    } else if (arg == "--rounds" && i + 1 < argc) {
      *rounds = std::max(1, std::atoi(argv[++i]));
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace FiltersBench

#endif  // FILTERS_BENCH_SIDE_BY_SIDE_H_
