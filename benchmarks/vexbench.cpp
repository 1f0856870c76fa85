// Runs the benchmarks, prints the table of figures and writes it as JSON.
//
//   vexbench [--json FILE] [Google Benchmark's own options]
//
// Ends with 1 when a figure could not be measured that was not filtered out.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/figure.h"

namespace vex {

namespace {

std::vector<Figure>& figures() {
  static std::vector<Figure> all;
  return all;
}

class Collector : public benchmark::ConsoleReporter {
 public:
  Collector() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& reports) override {
    for (const Run& report : reports) {
      if (report.run_type != Run::RT_Iteration || report.error_occurred) continue;
      const auto iterations = static_cast<double>(report.iterations);
      Measurements::Run run{
          report.cpu_accumulated_time / iterations, report.real_accumulated_time / iterations, {}};
      for (const auto& [name, counter] : report.counters) run.counters[name] = counter.value;
      measurements.add(report.benchmark_name().substr(0, report.benchmark_name().find("/repeats")), run);
    }
    ConsoleReporter::ReportRuns(reports);
  }

  Measurements measurements;
};

struct Result {
  Figure figure;
  double value;

  bool holds() const {
    if (!figure.limit) return true;
    return figure.name.ends_with("_rate") ? value >= *figure.limit : value <= *figure.limit;
  }
};

// Figures without measurements go to `missing`.
std::vector<Result> compute(const Measurements& measurements, std::vector<std::string>& missing) {
  std::vector<Result> results;
  for (const Figure& figure : figures()) {
    try {
      results.push_back({figure, figure.value(measurements)});
    } catch (const std::out_of_range&) {
      missing.push_back(figure.name);
    }
  }
  std::sort(results.begin(), results.end(),
            [](const Result& a, const Result& b) { return a.figure.name < b.figure.name; });
  return results;
}

void print(const std::vector<Result>& results) {
  std::printf("\n%-32s %12s  %-10s %-12s %s\n", "figure", "value", "unit", "limit", "against");
  for (const Result& result : results) {
    char limit[32] = "";
    if (result.figure.limit) {
      std::snprintf(limit, sizeof limit, "%s %g",
                    result.figure.name.ends_with("_rate") ? ">=" : "<=", *result.figure.limit);
    }
    std::printf("%-32s %12.4g  %-10s %-12s %s%s\n", result.figure.name.c_str(), result.value,
                result.figure.unit.c_str(), limit, result.figure.peer.c_str(),
                result.holds() ? "" : "   DOES NOT HOLD");
  }
  std::fflush(stdout);  // before what libraries say at the end
}

bool writeJson(const std::vector<Result>& results, const char* path) {
  std::FILE* file = std::fopen(path, "w");
  if (!file) return false;
  std::fprintf(file, "{\"results\": [");
  for (std::size_t i = 0; i < results.size(); ++i) {
    const Result& result = results[i];
    std::fprintf(file, "%s\n  {\"name\": \"%s\", \"value\": %.9g, \"unit\": \"%s\", \"peer\": \"%s\", ",
                 i == 0 ? "" : ",", result.figure.name.c_str(), result.value, result.figure.unit.c_str(),
                 result.figure.peer.c_str());
    if (result.figure.limit) {
      std::fprintf(file, "\"limit\": %g, \"holds\": %s}", *result.figure.limit,
                   result.holds() ? "true" : "false");
    } else {
      std::fprintf(file, "\"limit\": null, \"holds\": null}");
    }
  }
  std::fprintf(file, "\n]}\n");
  return std::fclose(file) == 0;
}

}  // namespace

template <typename Field>
double Measurements::median(const std::string& benchmark, Field field) const {
  std::vector<double> values;
  for (const Run& run : runs.at(benchmark)) values.push_back(field(run));
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

double Measurements::cpu(const std::string& benchmark) const {
  return median(benchmark, [](const Run& run) { return run.cpuSeconds; });
}

double Measurements::leastCpu(const std::string& benchmark) const {
  const std::vector<Run>& all = runs.at(benchmark);
  return std::ranges::min_element(all, {}, &Run::cpuSeconds)->cpuSeconds;
}

double Measurements::wall(const std::string& benchmark) const {
  return median(benchmark, [](const Run& run) { return run.wallSeconds; });
}

double Measurements::counter(const std::string& benchmark, const std::string& name) const {
  return median(benchmark, [&name](const Run& run) { return run.counters.at(name); });
}

bool addFigure(Figure figure) {
  figures().push_back(std::move(figure));
  return true;
}

}  // namespace vex

int main(int argc, char** argv) {
  const char* json = nullptr;
  std::string defaults[] = {"--benchmark_repetitions=7", "--benchmark_enable_random_interleaving=true",
                            "--benchmark_min_time=0.05"};
  std::vector<char*> arguments{argv[0]};
  for (std::string& option : defaults) arguments.push_back(option.data());
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == "--json" && i + 1 < argc) {
      json = argv[++i];
    } else {
      arguments.push_back(argv[i]);
    }
  }
  setenv("ALSOFT_DRIVERS", "null", 1);  // before anything opens a sound device, for the clocks
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  const bool filtered = std::any_of(arguments.begin(), arguments.end(), [](const char* argument) {
    return std::string_view(argument).starts_with("--benchmark_filter");
  });
  vex::Collector collector;
  if (filtered) {
    benchmark::RunSpecifiedBenchmarks(&collector);
  } else {
    // A program starts up with a heap that others have not cut up, and whose disk does not write what limits
    // ask.
    for (const char* benchmarks : {"startUp", "-startUp|limits", "limits"})
      benchmark::RunSpecifiedBenchmarks(&collector, benchmarks);
  }
  std::vector<std::string> missing;
  const std::vector<vex::Result> results = vex::compute(collector.measurements, missing);
  vex::print(results);
  if (json && !vex::writeJson(results, json)) {
    std::fprintf(stderr, "vexbench: can't write %s\n", json);
    return 255;
  }
  if (filtered || missing.empty()) return 0;
  for (const std::string& name : missing) std::fprintf(stderr, "vexbench: no figure for %s\n", name.c_str());
  return 1;
}
