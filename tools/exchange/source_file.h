#pragma once

#include <assimp/Importer.hpp>
#include <functional>
#include <memory>
#include <string>

#include "tools/exchange/report.h"

struct aiScene;

// Files of other modelling tools, read by the library within limits.

namespace vex {

enum class SourceKind { gltf, fbx, collada, obj };

struct SourceFile {
  std::string path;
  std::string folder;  // that the file and all it names lie in
  SourceKind kind = SourceKind::gltf;
  std::unique_ptr<Assimp::Importer> importer;  // owns the scene
  const aiScene* scene = nullptr;
};

// By its extension.
bool canBeImported(const std::string& path);

// Reads a .gltf, .glb, .fbx, .dae or .obj file: triangles only, one kind of surface a mesh, indices checked.
// Files that it names outside its folder are not opened, which the report says. Fatal: a file of another
// kind, one that cannot be read or is larger than 512 MiB, what the library refuses, more nodes, triangles or
// vertices than the limits below.
SourceFile readSource(const std::string& path, Report& report);

inline constexpr unsigned mostNodes = 100'000;
inline constexpr unsigned long mostTriangles = 4'000'000;  // with each use of a mesh counted

// Does the work in a process of its own, with bounded memory and time, and takes its exit code. Fatal, naming
// the file: it ended by a signal, which hostile files can bring about in the library.
int runGuarded(const std::string& path, const std::function<void()>& work);

// Path of a file that another names, within its folder; empty when it leads out of it.
std::string pathWithin(const std::string& folder, const std::string& name);

}  // namespace vex
