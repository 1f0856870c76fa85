#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/figure.h"
#include "platform/offscreen_context.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

// All names of a cache of that many textures, asked for in an order that jumps about.
void lookUpTexture(benchmark::State& state) {
  if (const std::string failure = openOffscreenContext(16, 16); !failure.empty()) {
    state.SkipWithError(failure.c_str());
    return;
  }
  const auto count = static_cast<std::size_t>(state.range(0));
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    // Names of one length, which makes the count the only difference.
    names.push_back("Data\\Tex" + std::to_string(1000 + i * 7919 % count));
    addTexture(TextureEntry{}, ("data\\tex" + std::to_string(1000 + i)).c_str(), false);
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(getTexture(names[next].c_str(), false));
    next = next + 1 == count ? 0 : next + 1;
  }
  destroyTextures();
  closeOffscreenContext();
}
BENCHMARK(lookUpTexture)->Arg(10)->Arg(1000);

const bool added = addFigure(
    {.name = "texture_lookup_1000_vs_10",
     .unit = "ratio",
     .peer = "the same lookup among 10 textures",
     .limit = 1.5,
     .value = [](const Measurements& m) { return m.cpu("lookUpTexture/1000") / m.cpu("lookUpTexture/10"); }});

}  // namespace
}  // namespace vex
