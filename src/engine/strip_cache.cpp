#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>

#include "base/files.h"
#include "base/report.h"
#include "engine/strips.h"
#include "platform/little_endian.h"
#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

constexpr std::size_t wordSize = 4;
constexpr std::size_t smallestList = 7;  // words of a list of three vertices

std::string cacheName(const Scene& scene) {
  return std::string("data\\") + scene.name + ".hvf";
}

struct CacheReader {
  std::string file;
  std::vector<std::uint8_t> bytes;
  std::size_t position = 0;
  const Mesh* mesh = nullptr;

  std::size_t wordsLeft() const { return (bytes.size() - position) / wordSize; }

  std::uint32_t word(const char* what) {
    if (wordsLeft() == 0) fatalError("%s: ends in mesh %s, %s expected", file.c_str(), mesh->name, what);
    const auto value = littleEndian(std::span(bytes).subspan(position, wordSize));
    position += wordSize;
    return static_cast<std::uint32_t>(value);
  }

  // Of things of that many words at least.
  std::uint32_t count(const char* what, std::size_t words) {
    const std::uint32_t value = word(what);
    if (value > wordsLeft() / words) {
      fatalError("%s: mesh %s has %u %s, more than the file holds", file.c_str(), mesh->name, value, what);
    }
    return value;
  }

  std::uint32_t vertex() {
    const std::uint32_t value = word("a vertex");
    if (value >= mesh->vertices.size()) {
      fatalError("%s: mesh %s names vertex %u of %zu", file.c_str(), mesh->name, value,
                 mesh->vertices.size());
    }
    return value;
  }

  std::uint32_t texCoord() {
    const std::uint32_t value = word("a texture coordinate");
    if (static_cast<std::int32_t>(value) != -1 && value >= mesh->texCoords.size()) {
      fatalError("%s: mesh %s names texture coordinate %u of %zu", file.c_str(), mesh->name, value,
                 mesh->texCoords.size());
    }
    return value;
  }
};

// Raises `triangles` by those of the lists.
std::vector<StripList> readLists(CacheReader& reader, const char* what, std::uint64_t& triangles) {
  std::vector<StripList> lists(reader.count(what, smallestList));
  for (StripList& list : lists) {
    const std::uint32_t n = reader.count("vertices in a list", 2);
    if (n < 3) {
      fatalError("%s: mesh %s has %u vertices in a list, 3 are the fewest", reader.file.c_str(),
                 reader.mesh->name, n);
    }
    list.vertices.reserve(n);
    list.texCoords.reserve(n);
    for (std::uint32_t i = 0; i < n; ++i) {
      list.vertices.push_back(reader.vertex());
      list.texCoords.push_back(reader.texCoord());
    }
    triangles += n - 2;
  }
  return lists;
}

void readMesh(CacheReader& reader, Mesh& mesh) {
  reader.mesh = &mesh;
  std::uint64_t triangles = 0;
  mesh.fans = readLists(reader, "fans", triangles);
  mesh.strips = readLists(reader, "strips", triangles);
  mesh.solos.resize(std::size_t{3} * reader.count("solos", 3));
  for (std::uint32_t& index : mesh.solos) index = reader.vertex();
  triangles += mesh.solos.size() / 3;
  if (triangles != mesh.faces.size()) {
    fatalError("%s: mesh %s has %llu triangles, its model has %zu", reader.file.c_str(), mesh.name,
               static_cast<unsigned long long>(triangles), mesh.faces.size());
  }
  mesh.stripped = !mesh.faces.empty();
}

// Lone lists of one triangle each are the longest way to write a mesh.
std::uint64_t largestSize(const Scene& scene) {
  std::uint64_t words = 0;
  for (const Mesh* mesh : scene.meshes) words += 3 + smallestList * mesh->faces.size();
  return words * wordSize;
}

void appendLists(std::string& bytes, const std::vector<StripList>& lists) {
  appendLittleEndian(bytes, lists.size(), wordSize);
  for (const StripList& list : lists) {
    appendLittleEndian(bytes, list.vertices.size(), wordSize);
    for (std::size_t i = 0; i < list.vertices.size(); ++i) {
      appendLittleEndian(bytes, list.vertices[i], wordSize);
      appendLittleEndian(bytes, list.texCoords[i], wordSize);
    }
  }
}

}  // namespace

bool readStripCache(Scene& scene) {
  CacheReader reader{.file = cacheName(scene), .bytes = {}};
  const OpenFile file(fileOpen(reader.file.c_str(), "rb"));
  if (!file.found()) return false;
  const std::uint64_t size = fileRemaining(file);
  if (size % wordSize != 0 || size > largestSize(scene)) {
    fatalError("%s: %llu bytes do not fit the meshes of %s", reader.file.c_str(),
               static_cast<unsigned long long>(size), scene.name);
  }
  reader.bytes = fileReadRest(file);
  for (Mesh* mesh : scene.meshes) readMesh(reader, *mesh);
  if (reader.wordsLeft() > 0) {
    fatalError("%s: %zu words follow the last mesh of %s", reader.file.c_str(), reader.wordsLeft(),
               scene.name);
  }
  return true;
}

void writeStripCache(const Scene& scene) {
  std::string bytes;
  for (const Mesh* mesh : scene.meshes) {
    appendLists(bytes, mesh->fans);
    appendLists(bytes, mesh->strips);
    appendLittleEndian(bytes, mesh->solos.size() / 3, wordSize);
    for (const std::uint32_t index : mesh->solos) appendLittleEndian(bytes, index, wordSize);
  }
  const std::string name = cacheName(scene);
  if (!replaceFile(resolvePath(name.c_str()), bytes))
    logPrintf("can't write %s: %s\n", name.c_str(), std::strerror(errno));
}

}  // namespace vex
