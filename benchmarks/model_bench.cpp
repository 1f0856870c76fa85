#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <assimp/Importer.hpp>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "base/files.h"
#include "benchmarks/figure.h"
#include "models/container.h"
#include "models/model_loader.h"
#include "production/making/product.h"
#include "production/products.h"

namespace vex {

using namespace image;

namespace {

namespace fs = std::filesystem;

constexpr const char* producedModel = "data/layer_wide.ase";
constexpr std::uintmax_t leastSize = 1'000'000;

int noTexture(const char*, bool) {
  return 0;
}

// A folder with one produced model, as text and compiled, that is the working folder while it lives.
class ModelFolder {
 public:
  ModelFolder() : previous(fs::current_path()) {
    folder = fs::temp_directory_path() / ("vexbench." + std::to_string(getpid()) + ".model");
    fs::create_directories(folder);
    fs::current_path(folder);
    for (const Product& product : allProducts()) {
      if (product.outputs[0] != producedModel) continue;
      const Bytes text = product.make({.draft = true})[0];
      std::ofstream file("model.ase", std::ios::binary);
      file.write(reinterpret_cast<const char*>(text.data()), static_cast<std::streamsize>(text.size()));
    }
    Scene scene;
    readModel({"model.ase", "model.hv3"}, &scene, noTexture);
  }
  ~ModelFolder() {
    fs::current_path(previous);
    fs::remove_all(folder);
  }
  ModelFolder(const ModelFolder&) = delete;
  ModelFolder& operator=(const ModelFolder&) = delete;

 private:
  fs::path previous;
  fs::path folder;
};

void loadFile(benchmark::State& state, const char* name) {
  const ModelFolder folder;
  const std::uintmax_t textSize = fs::file_size("model.ase");
  if (textSize < leastSize) state.SkipWithError("the model is too small to measure");
  for (auto _ : state) {
    Scene scene;
    readModel({name}, &scene, noTexture);
    benchmark::DoNotOptimize(scene.meshes);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * textSize));
}

// Both passes and the building of the scene; nothing is recorded, no texture is loaded.
void loadModelText(benchmark::State& state) {
  loadFile(state, "model.ase");
}
BENCHMARK(loadModelText);

void loadCompiledModel(benchmark::State& state) {
  loadFile(state, "model.hv3");
}
BENCHMARK(loadCompiledModel);

// The same stream, from the same file, without anything behind it.
void inflateCompiledModel(benchmark::State& state) {
  const ModelFolder folder;
  std::uint32_t length = 0;
  ModelContainer().open("model.hv3", ZIP_READ, &length);
  for (auto _ : state) {
    std::ifstream file("model.hv3", std::ios::binary);
    std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    constexpr std::size_t headers = 34;
    std::vector<char> output(length);
    z_stream inflater{};
    inflateInit2(&inflater, -MAX_WBITS);
    inflater.next_in = reinterpret_cast<Bytef*>(bytes.data() + headers);
    inflater.avail_in = static_cast<uInt>(bytes.size() - headers);
    inflater.next_out = reinterpret_cast<Bytef*>(output.data());
    inflater.avail_out = length;
    if (inflate(&inflater, Z_FINISH) != Z_STREAM_END) state.SkipWithError("the stream can't be inflated");
    inflateEnd(&inflater);
    benchmark::DoNotOptimize(output.data());
  }
}
BENCHMARK(inflateCompiledModel);

const bool added = addFigure({.name = "hv3_load_vs_inflate",
                              .unit = "ratio",
                              .peer = "zlib inflating the same stream",
                              .limit = 3.5,
                              .value = [](const Measurements& m) {
                                return m.cpu("loadCompiledModel") / m.cpu("inflateCompiledModel");
                              }});

void loadWithAssimp(benchmark::State& state) {
  const ModelFolder folder;
  for (auto _ : state) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile("model.ase", 0);
    if (!scene) state.SkipWithError(importer.GetErrorString());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * fs::file_size("model.ase")));
}
BENCHMARK(loadWithAssimp);

const bool addedAssimp = addFigure(
    {.name = "ase_load_vs_assimp",
     .unit = "ratio",
     .peer = "libassimp reading the same file without post-processing",
     .limit = 1.0,
     .value = [](const Measurements& m) { return m.cpu("loadModelText") / m.cpu("loadWithAssimp"); }});

}  // namespace

}  // namespace vex
