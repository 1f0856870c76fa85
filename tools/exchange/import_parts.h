#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/exchange/import.h"
#include "tools/exchange/node_tree.h"

// What import.cpp puts together: names, forms, motion, materials, cameras and lights.

namespace vex {

// Names for the player: 31 characters of those that its text takes, each once whatever the case of its
// letters.
class Names {
 public:
  // Reports what it changes; `what` is "mesh", "light", ...
  std::string take(const std::string& wanted, const char* what, Report& report);

 private:
  std::vector<std::string> taken;  // in lower case, in order
};

struct ImportWork {
  const SourceFile& source;
  const ImportOptions& options;
  const NodeTree& tree;
  Report& report;
  Imported& result;
  Names names{};
};

// The mesh's triangles under `stored`. Vertices are shared where place, normal and texture coordinates agree,
// or, with `asTheyStand`, kept one by one. False, with a line in the report under the name that `form` has,
// when nothing can be made of it.
bool importForm(ImportWork& work, const aiMesh& mesh, const Transform& stored, bool turnOver,
                bool asTheyStand, TextMesh& form);

// Base matrix and tracks of a node that has some.
void importMotion(ImportWork& work, const SourceNode& node, double tolerance, TextMesh& mesh);

// Index of the material for a mesh; a mapped mesh and one that is not may need two. `extra`: what an export
// has said.
class Materials {
 public:
  explicit Materials(ImportWork& importWork) : work(importWork) {}
  int indexOf(unsigned material, bool mapped, const std::string& extra);
  bool mirrors(int index) const {
    return work.result.model.materials[static_cast<std::size_t>(index)].environment;
  }
  // Which set of coordinates its texture takes.
  unsigned coordinatesOf(unsigned material) const;

 private:
  TextMaterial convert(const aiMaterial& source, const std::string& name, bool mapped,
                       const std::string& extra);
  std::string textureOf(const aiMaterial& source, const std::string& name, AlphaUse alpha, float cutoff);

  ImportWork& work;
  std::vector<std::string> told;  // what has been reported
};

// After the meshes, whose size and middle they go by.
void importCameras(ImportWork& work);
void importLights(ImportWork& work);

// Samples of frames 0 to `last`.
template <typename Value>
std::vector<Value> sampled(int last, int framesPerSecond, const std::function<Value(double seconds)>& at) {
  std::vector<Value> samples;
  samples.reserve(static_cast<std::size_t>(last) + 1);
  for (int frame = 0; frame <= last; ++frame)
    samples.push_back(at(static_cast<double>(frame) / framesPerSecond));
  return samples;
}

inline constexpr double placeTolerance = 0.001;                        // of the model's size
inline constexpr double turnTolerance = 0.2 * 3.14159265358979 / 180;  // radians
inline constexpr double scaleTolerance = 0.001;

}  // namespace vex
