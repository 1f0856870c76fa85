#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>

#include "benchmarks/figure.h"
#include "platform/replace_file.h"
#include "tools/exchange/import.h"
#include "tools/exchange/source_file.h"

// Bringing a model in against the library's own reading of its file, with the steps that triangles need.

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr unsigned side = 100;  // squares; 20 000 triangles
constexpr int seconds = 10;

// A waving sheet, smooth and mapped, that turns and drifts with a key each frame.
std::unique_ptr<aiScene> sheet() {
  auto scene = std::make_unique<aiScene>();
  auto* mesh = new aiMesh;
  constexpr unsigned count = (side + 1) * (side + 1);
  mesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
  mesh->mNumVertices = count;
  mesh->mVertices = new aiVector3D[count];
  mesh->mNormals = new aiVector3D[count];
  mesh->mTextureCoords[0] = new aiVector3D[count];
  mesh->mNumUVComponents[0] = 2;
  for (unsigned i = 0; i < count; ++i) {
    const float u = static_cast<float>(i % (side + 1)) / side, v = static_cast<float>(i / (side + 1)) / side;
    mesh->mVertices[i] = {u * 100, std::sin(u * 9) * std::cos(v * 7) * 5, v * 100};
    mesh->mNormals[i] = aiVector3D(-0.45f * std::cos(u * 9), 1, 0.35f * std::sin(v * 7)).Normalize();
    mesh->mTextureCoords[0][i] = {u, v, 0};
  }
  mesh->mNumFaces = 2 * side * side;
  mesh->mFaces = new aiFace[mesh->mNumFaces];
  for (unsigned f = 0; f < mesh->mNumFaces; ++f) {
    const unsigned corner = f / 2 / side * (side + 1) + f / 2 % side;
    mesh->mFaces[f].mNumIndices = 3;
    mesh->mFaces[f].mIndices = f % 2 == 0 ? new unsigned[3]{corner, corner + side + 1, corner + 1}
                                          : new unsigned[3]{corner + 1, corner + side + 1, corner + side + 2};
  }
  scene->mNumMeshes = 1;
  scene->mMeshes = new aiMesh* [1] { mesh };
  scene->mNumMaterials = 1;
  scene->mMaterials = new aiMaterial* [1] { new aiMaterial };
  scene->mRootNode = new aiNode("root");
  auto* node = new aiNode("Sheet");
  node->mNumMeshes = 1;
  node->mMeshes = new unsigned[1]{0};
  scene->mRootNode->addChildren(1, &node);
  auto* channel = new aiNodeAnim;
  channel->mNodeName = node->mName;
  constexpr unsigned keys = seconds * 30 + 1;
  channel->mNumPositionKeys = channel->mNumRotationKeys = keys;
  channel->mPositionKeys = new aiVectorKey[keys];
  channel->mRotationKeys = new aiQuatKey[keys];
  for (unsigned k = 0; k < keys; ++k) {
    const float t = static_cast<float>(k) / 30;
    channel->mPositionKeys[k] = aiVectorKey(k, {std::sin(t) * 20, t, 0});
    channel->mRotationKeys[k] = aiQuatKey(k, aiQuaternion(aiVector3D(0, 1, 0), std::sin(t / 2)));
  }
  auto* animation = new aiAnimation;
  animation->mTicksPerSecond = 30;
  animation->mDuration = keys - 1;
  animation->mNumChannels = 1;
  animation->mChannels = new aiNodeAnim* [1] { channel };
  scene->mNumAnimations = 1;
  scene->mAnimations = new aiAnimation* [1] { animation };
  return scene;
}

// A folder with the file that is the working folder while it lives.
class SheetFolder {
 public:
  SheetFolder() : previous(fs::current_path()) {
    folder = fs::temp_directory_path() / ("vexbench." + std::to_string(getpid()) + ".sheet");
    fs::create_directories(folder);
    fs::current_path(folder);
    Assimp::Exporter().Export(sheet().get(), "gltf2", "sheet.gltf");
  }
  ~SheetFolder() {
    fs::current_path(previous);
    fs::remove_all(folder);
  }
  SheetFolder(const SheetFolder&) = delete;
  SheetFolder& operator=(const SheetFolder&) = delete;

 private:
  fs::path previous;
  fs::path folder;
};

bool importSheet() {
  Report report;
  const SourceFile source = readSource("sheet.gltf", report);
  const Imported imported = importScene(source, {}, report);
  return replaceFile("sheet.ase", writeModelText(imported.model, NumberForm::exact)) &&
         imported.model.meshes[0].faces.size() == 2 * side * side;
}

bool readSheet() {
  Assimp::Importer importer;
  return importer.ReadFile("sheet.gltf", aiProcess_Triangulate | aiProcess_SortByPType |
                                             aiProcess_ValidateDataStructure |
                                             aiProcess_JoinIdenticalVertices);
}

// What the work takes at most beside what is there before it: of resident memory, in a process of its own.
double peakBytes(const std::function<bool()>& work) {
  const auto field = [](const char* name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
      if (line.starts_with(name)) return std::stod(line.substr(std::string(name).size())) * 1024;
    return 0.0;
  };
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) return 0;
  const pid_t child = fork();
  if (child == 0) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    const double before = field("VmRSS:");
    double peak = work() ? field("VmHWM:") - before : 0;
    if (write(pipeEnds[1], &peak, sizeof peak) != sizeof peak) _exit(1);
    _exit(0);
  }
  double peak = 0;
  if (child < 0 || read(pipeEnds[0], &peak, sizeof peak) != sizeof peak) peak = 0;
  waitpid(child, nullptr, 0);
  close(pipeEnds[0]);
  close(pipeEnds[1]);
  return peak;
}

void measure(benchmark::State& state, bool (*work)()) {
  const SheetFolder folder;
  for (auto _ : state)
    if (!work()) state.SkipWithError("the file can't be read");
  state.counters["peak"] = peakBytes(work);
}

void importModelOf20000(benchmark::State& state) {
  measure(state, importSheet);
}
BENCHMARK(importModelOf20000);

void readWithAssimpOf20000(benchmark::State& state) {
  measure(state, readSheet);
}
BENCHMARK(readWithAssimpOf20000);

const bool added =
    addFigure({.name = "import_vs_assimp",
               .unit = "ratio",
               .peer = "libassimp reading the same file of 20000 triangles, its vertices joined",
               .limit = 2.0,
               .value = [](const Measurements& m) {
                 return m.cpu("importModelOf20000") / m.cpu("readWithAssimpOf20000");
               }});

const bool addedMemory =
    addFigure({.name = "import_memory_vs_assimp",
               .unit = "ratio",
               .peer = "peak memory of libassimp reading the same file",
               .limit = 2.0,
               .value = [](const Measurements& m) {
                 return m.counter("importModelOf20000", "peak") / m.counter("readWithAssimpOf20000", "peak");
               }});

}  // namespace

}  // namespace vex
