#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "benchmarks/figure.h"
#include "production/making/maker.h"
#include "production/products.h"

namespace vex {

namespace {

std::string folderOfData() {
  return (std::filesystem::temp_directory_path() / ("vexbench." + std::to_string(getpid()) + ".data"))
      .native();
}

void produce(benchmark::State& state, const std::string& folder, bool fromNothing) {
  const Products products = allProducts();
  for (auto _ : state) {
    const MakeResult result = makeProducts(products, folder, {}, ProgressStyle::none, 2);
    if ((result.made > 0) != fromNothing) state.SkipWithError("not the state that is measured");
  }
}

void produceFull(benchmark::State& state) {
  const std::string folder = folderOfData();
  std::filesystem::remove_all(folder);
  produce(state, folder, true);
  std::filesystem::remove_all(folder);
}
BENCHMARK(produceFull)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// Its folder is made beforehand, out of the measured time.
void produceAgain(benchmark::State& state) {
  const std::string folder = folderOfData();
  makeProducts(allProducts(), folder, {}, ProgressStyle::none, 2);
  produce(state, folder, false);
  std::filesystem::remove_all(folder);
}
BENCHMARK(produceAgain)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool added =
    addFigure({.name = "produce_full_seconds",
               .unit = "s",
               .peer = "all data from nothing, two workers",
               .limit = 60,
               .value = [](const Measurements& m) { return m.wall("produceFull/iterations:1"); }}) &&
    addFigure({.name = "produce_again_seconds",
               .unit = "s",
               .peer = "nothing has changed",
               .limit = 1,
               .value = [](const Measurements& m) { return m.wall("produceAgain/iterations:1"); }});

}  // namespace

}  // namespace vex
