#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

// The figures of the bench table. A source of benchmarks measures with Google Benchmark (BENCHMARK(...))
// and adds one figure for each line of the table, computed from what was measured:
//
//   BENCHMARK(lookUpAmong)->Arg(10)->Arg(1000);
//   const bool added = addFigure({.name = "texture_lookup_1000_vs_10", .unit = "ratio",
//       .peer = "the same with 10 textures", .limit = 1.5,
//       .value = [](const Measurements& m) { return m.cpu("lookUpAmong/1000") / m.cpu("lookUpAmong/10"); }});

namespace vex {

// What the benchmarks of one run gave: the median over the repetitions.
class Measurements {
 public:
  struct Run {
    double cpuSeconds = 0;   // CPU time of one iteration
    double wallSeconds = 0;  // wall time of one iteration
    std::map<std::string, double> counters;
  };

  void add(const std::string& benchmark, const Run& run) { runs[benchmark].push_back(run); }
  bool has(const std::string& benchmark) const { return runs.contains(benchmark); }

  // `benchmark` is the name that Google Benchmark prints ("lookUpAmong/1000").
  double cpu(const std::string& benchmark) const;
  double leastCpu(
      const std::string& benchmark) const;  // of the repetitions, where the others met the system's own costs
  double wall(const std::string& benchmark) const;
  double counter(const std::string& benchmark, const std::string& name) const;

 private:
  template <typename Field>
  double median(const std::string& benchmark, Field field) const;

  std::map<std::string, std::vector<Run>> runs;
};

struct Figure {
  std::string name;
  std::string unit;
  std::string peer;             // what it is compared with, in words
  std::optional<double> limit;  // at most; at least where the name ends in "_rate"; none: printed only
  double (*value)(const Measurements&) = nullptr;
};

// For static initialisation; always true. A figure whose benchmarks did not run is left out.
bool addFigure(Figure figure);

}  // namespace vex
