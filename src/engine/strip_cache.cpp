#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>

#include "base/files.h"
#include "base/little_endian.h"
#include "base/report.h"
#include "engine/strips.h"
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

void writeWord(std::FILE* file, std::uint64_t value) {
  std::array<std::uint8_t, wordSize> bytes;
  for (std::size_t i = 0; i < wordSize; ++i) bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
  std::fwrite(bytes.data(), 1, bytes.size(), file);
}

void writeLists(std::FILE* file, const std::vector<StripList>& lists) {
  writeWord(file, lists.size());
  for (const StripList& list : lists) {
    writeWord(file, list.vertices.size());
    for (std::size_t i = 0; i < list.vertices.size(); ++i) {
      writeWord(file, list.vertices[i]);
      writeWord(file, list.texCoords[i]);
    }
  }
}

}  // namespace

bool readStripCache(Scene& scene) {
  CacheReader reader{.file = cacheName(scene), .bytes = {}};
  const int handle = fileOpen(reader.file.c_str(), "rb");
  if (handle < 0) return false;
  const std::uint64_t size = fileRemaining(handle);
  if (size % wordSize != 0 || size > largestSize(scene)) {
    fatalError("%s: %llu bytes do not fit the meshes of %s", reader.file.c_str(),
               static_cast<unsigned long long>(size), scene.name);
  }
  reader.bytes.resize(size);
  reader.bytes.resize(fileRead(reader.bytes.data(), 1, size, handle));
  fileClose(handle);
  for (Mesh* mesh : scene.meshes) readMesh(reader, *mesh);
  if (reader.wordsLeft() > 0) {
    fatalError("%s: %zu words follow the last mesh of %s", reader.file.c_str(), reader.wordsLeft(),
               scene.name);
  }
  return true;
}

void writeStripCache(const Scene& scene) {
  const std::string name = cacheName(scene);
  ReplacementFile file(resolvePath(name.c_str()));
  if (file.stream()) {
    for (const Mesh* mesh : scene.meshes) {
      writeLists(file.stream(), mesh->fans);
      writeLists(file.stream(), mesh->strips);
      writeWord(file.stream(), mesh->solos.size() / 3);
      for (const std::uint32_t index : mesh->solos) writeWord(file.stream(), index);
    }
  }
  if (!file.stream() || !file.commit()) logPrintf("can't write %s: %s\n", name.c_str(), std::strerror(errno));
}

}  // namespace vex
