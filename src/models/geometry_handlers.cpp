#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/report.h"
#include "models/model_handlers.h"
#include "models/model_load.h"

// Handlers of a mesh's vertices and faces. Lists are blocks of lines in text models and bare numbers in
// compiled ones; what an entry does is the same.

namespace vex {

namespace {

using Corners = std::array<int, 3>;

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

// All counts of a model together must fit into its file, so that they cannot ask for any amount of memory.
int scanCount(ModelLoad& load, const char* what) {
  const int count = scanInt(load);
  const std::size_t size = readingText(load) ? load.reader.text.size() : load.stream.bytes.size();
  if (count >= 0) load.claimed += at(count);
  if (count < 0 || load.claimed > mostClaimed(size)) {
    fatalError("%d %s can't be in this file", count, what);
  }
  return count;
}

bool inMesh(ModelLoad& load) {
  return inContext(load, ModelContext::mesh) && currentCounts(load);
}

int faceCount(ModelLoad& load) {
  return currentCounts(load) ? currentCounts(load)->faces : 0;
}

int texCoordCount(ModelLoad& load) {
  return currentCounts(load) ? currentCounts(load)->texCoords : 0;
}

void checkIndex(const char* what, int index, int count) {
  if (index < 0 || index >= count) fatalError("%s %d isn't one of the %d announced", what, index, count);
}

// A mesh with fewer texture vertices than vertices has no place for the last ones.
void setVertex(ModelLoad& load, int index, const Vector& position) {
  load.vertices[at(index)].position = position;
  std::vector<Vertex>& vertices = currentMesh(load)->vertices;
  if (at(index) < vertices.size()) vertices[at(index)].position = position;
}

void setFace(ModelLoad& load, int index, const Corners& corners) {
  load.faces[at(index)] = corners;
  std::vector<Face>& faces = currentMesh(load)->faces;
  if (at(index) >= faces.size()) return;
  for (std::size_t i = 0; i < 3; ++i) faces[at(index)].v[i] = static_cast<std::uint32_t>(corners[i]);
}

void setTexCoord(ModelLoad& load, int index, float u, float v) {
  std::vector<Vertex>& vertices = currentMesh(load)->vertices;
  if (at(index) >= vertices.size()) return;
  vertices[at(index)].u = u;
  vertices[at(index)].v = v;
}

void setTextureFace(ModelLoad& load, int index, const Corners& corners) {
  Mesh& mesh = *currentMesh(load);
  if (at(index) >= mesh.faces.size()) return;
  if (!load.hasTextureFaces) {
    for (Vertex& vertex : mesh.vertices) vertex.normal = {};
    load.hasTextureFaces = true;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    mesh.faces[at(index)].v[i] = static_cast<std::uint32_t>(corners[i]);
    const std::size_t geometric = at(load.faces[at(index)][i]);
    if (at(corners[i]) >= mesh.vertices.size() || geometric >= load.vertices.size()) continue;
    const TemporaryVertex& source = load.vertices[geometric];
    Vertex& vertex = mesh.vertices[at(corners[i])];
    vertex.position = source.position;
    vertex.normal = source.normal;
  }
}

// A static scale belongs to the base matrix, which is applied after it.
void bakeScale(ModelLoad& load) {
  Mesh& mesh = *currentMesh(load);
  const Animation* scale = mesh.track(TrackType::scale);
  if (!scale) return;
  mesh.baseMatrix *= scale->getMatrix(0.0f);
  mesh.removeAnimation(TrackType::scale);
}

inline Vector cornerNormal(const Vector& a, const Vector& b) {
  Vector normal = cross(a, b);
  normal.normalize();
  return normal;
}

// Every corner adds the unit normal of its face. Each takes the two edges that meet there. Texture vertices
// take theirs when the texture faces are read.
void computeNormals(ModelLoad& load) {
  for (TemporaryVertex& vertex : load.vertices) vertex.normal = {0.0f, 0.0f, 0.0f};
  for (const Corners& face : load.faces) {
    // The number of vertices may have changed since the face was given.
    if (std::any_of(face.begin(), face.end(), [&](int v) { return at(v) >= load.vertices.size(); })) continue;
    TemporaryVertex& a = load.vertices[at(face[0])];
    TemporaryVertex& b = load.vertices[at(face[1])];
    TemporaryVertex& c = load.vertices[at(face[2])];
    const Vector e1 = b.position - a.position;
    const Vector e2 = c.position - b.position;
    const Vector e3 = a.position - c.position;
    a.normal -= cornerNormal(e1, e3);
    b.normal -= cornerNormal(e2, e1);
    c.normal -= cornerNormal(e3, e2);
  }
  std::vector<Vertex>& vertices = currentMesh(load)->vertices;
  for (std::size_t i = 0; i < load.vertices.size(); ++i) {
    load.vertices[i].normal.normalize();
    if (i < vertices.size() && !load.hasTextureFaces) {
      vertices[i].normal = load.vertices[i].normal;
    }
  }
}

// Whether this pass uses a list's lines. Fatal: a compiled model, whose lists are bare numbers.
bool entryMatters(ModelLoad& load, const char* keyword) {
  if (!readingText(load)) fatalError("%s not allowed in HV3 files!", keyword);
  return filling(load) || load.stream.writing || traceModels;
}

// The list of a compiled model: `size` entries of `width` numbers, and one byte. False: passed over.
bool enterCompiledList(ModelLoad& load, int size, std::size_t width) {
  const std::size_t bytes = at(size) * width * 4 + 1;
  expectBytes(load, bytes);
  if (filling(load) && inMesh(load)) return true;
  load.stream.position += bytes;
  return false;
}

// A list of corners, each below `count`.
template <typename Store>
void readCorners(ModelLoad& load, const char* what, int size, int count, Store store) {
  if (!enterCompiledList(load, size, 3)) return;
  const std::size_t start = load.stream.position;
  const std::vector<int> corners = readInts(load, at(size) * 3);
  for (std::size_t i = 0; i < corners.size(); ++i) {
    if (corners[i] >= 0 && corners[i] < count) continue;
    load.stream.position = start + (i + 1) * 4;
    checkIndex(what, corners[i], count);
  }
  for (int i = 0; i < size; ++i) {
    const std::size_t first = at(i) * 3;
    store(i, Corners{corners[first], corners[first + 1], corners[first + 2]});
  }
  readByte(load);
}

}  // namespace

void handleMesh(ModelLoad& load) {
  if (!inContext(load, ModelContext::mesh)) return;
  trace(load, "mesh\n");
  writeLine(load, Command::mesh);
  processBlock(load);
  trace(load, "mesh end\n");
}

void handleMeshNumVertex(ModelLoad& load) {
  const int count = scanCount(load, "vertices");
  trace(load, "%d vertices\n", count);
  writeLine(load, Command::meshNumVertex, count);
  if (!inMesh(load)) return;
  currentCounts(load)->vertices = currentCounts(load)->texCoords = count;
  load.geometricVertices = count;
  if (filling(load)) load.vertices.assign(at(count), {});
}

void handleMeshNumFaces(ModelLoad& load) {
  const int count = scanCount(load, "faces");
  trace(load, "%d faces\n", count);
  writeLine(load, Command::meshNumFaces, count);
  if (inMesh(load)) currentCounts(load)->faces = count;
  if (filling(load)) load.faces.assign(at(faceCount(load)), {});
}

void handleMeshVertexList(ModelLoad& load) {
  trace(load, "vertex list\n");
  beginList(load, Command::meshVertexList, load.geometricVertices);
  if (currentMesh(load)) bakeScale(load);
  if (readingText(load)) {
    processBlock(load, BlockEnd::left);
  } else if (const int size = load.geometricVertices; enterCompiledList(load, size, 3)) {
    const std::vector<float> places = readFloats(load, at(size) * 3);
    for (int i = 0; i < size; ++i) {
      const std::size_t first = at(i) * 3;
      setVertex(load, i, {places[first], places[first + 1], places[first + 2]});
    }
    readByte(load);
  }
  endList(load);
  trace(load, "vertex list end\n");
}

void handleMeshVertex(ModelLoad& load) {
  if (!entryMatters(load, "MESH_VERTEX")) return;
  scanIndexed(load, 3);
  const int index = load.reader.current.integer;
  const Vector position = toEngineAxes(load.reader.current.vector);
  trace(load, "vert %ld: %.2f %.2f %.2f\n", static_cast<long>(index), position.x, position.y, position.z);
  if (inMesh(load)) checkIndex("vertex", index, load.geometricVertices);
  if (recordEntry(load, Command::meshVertexList, index)) {
    writeFloat(load, position.x);
    writeFloat(load, position.y);
    writeFloat(load, position.z);
  }
  if (filling(load) && inMesh(load)) setVertex(load, index, position);
}

void handleMeshFaceList(ModelLoad& load) {
  trace(load, "face list\n");
  const int size = faceCount(load);
  beginList(load, Command::meshFaceList, size);
  if (readingText(load)) {
    processBlock(load, BlockEnd::left);
  } else {
    readCorners(load, "vertex", size, load.geometricVertices,
                [&](int i, const Corners& corners) { setFace(load, i, corners); });
  }
  endList(load);
  if (currentMesh(load)) computeNormals(load);
  trace(load, "face list end\n");
}

void handleMeshFace(ModelLoad& load) {
  if (!entryMatters(load, "MESH_FACE")) return;
  scanFace(load);
  const int index = load.reader.current.integer;
  const Corners corners = std::to_array(load.reader.current.triple);
  trace(load, "face %ld: %d %d %d\n", static_cast<long>(index), corners[0], corners[1], corners[2]);
  if (inMesh(load)) {
    checkIndex("face", index, faceCount(load));
    for (const int corner : corners) checkIndex("vertex", corner, load.geometricVertices);
  }
  if (recordEntry(load, Command::meshFaceList, index)) {
    for (const int corner : corners) writeInt(load, corner);
  }
  if (filling(load) && inMesh(load)) setFace(load, index, corners);
}

void handleMeshNumTVertex(ModelLoad& load) {
  const int count = scanCount(load, "texture vertices");
  trace(load, "allocating %d mapped vertices\n", count);
  writeLine(load, Command::meshNumTVertex, count);
  if (inMesh(load) && count > 0) currentCounts(load)->texCoords = currentCounts(load)->vertices = count;
}

void handleMeshTVertList(ModelLoad& load) {
  trace(load, "mapped vertex list\n");
  const int size = texCoordCount(load);
  beginList(load, Command::meshTVertList, size);
  if (readingText(load)) {
    processBlock(load, BlockEnd::left);
  } else if (enterCompiledList(load, size, 2)) {
    const std::vector<float> places = readFloats(load, at(size) * 2);
    for (int i = 0; i < size; ++i) setTexCoord(load, i, places[at(i) * 2], places[at(i) * 2 + 1]);
    readByte(load);
  }
  endList(load);
  trace(load, "mapped vertex list end\n");
}

void handleMeshTVert(ModelLoad& load) {
  if (!entryMatters(load, "MESH_TVERT")) return;
  scanIndexed(load, 2);
  const int index = load.reader.current.integer;
  const float u = load.reader.current.vector[0];
  const float v = load.reader.current.vector[1];
  trace(load, "mapped vert %.2f %.2f\n", u, v);
  if (inMesh(load)) checkIndex("texture vertex", index, texCoordCount(load));
  if (recordEntry(load, Command::meshTVertList, index)) {
    writeFloat(load, u);
    writeFloat(load, v);
  }
  if (filling(load) && inMesh(load)) setTexCoord(load, index, u, v);
}

void handleMeshTFaceList(ModelLoad& load) {
  trace(load, "mapped face list\n");
  const int size = faceCount(load);
  beginList(load, Command::meshTFaceList, size);
  if (readingText(load)) {
    processBlock(load, BlockEnd::left);
  } else {
    readCorners(load, "texture vertex", size, texCoordCount(load),
                [&](int i, const Corners& corners) { setTextureFace(load, i, corners); });
  }
  endList(load);
  trace(load, "mapped face list end\n");
}

void handleMeshTFace(ModelLoad& load) {
  if (!entryMatters(load, "MESH_TFACE")) return;
  scanTextureFace(load);
  const int index = load.reader.current.integer;
  const Corners corners = std::to_array(load.reader.current.triple);
  trace(load, "mapping face to %d %d %d\n", corners[0], corners[1], corners[2]);
  if (inMesh(load)) {
    checkIndex("texture face", index, faceCount(load));
    for (const int corner : corners) checkIndex("texture vertex", corner, texCoordCount(load));
  }
  if (recordEntry(load, Command::meshTFaceList, index)) {
    for (const int corner : corners) writeInt(load, corner);
  }
  if (filling(load) && inMesh(load)) setTextureFace(load, index, corners);
}

void handleMeshNormals(ModelLoad& load) {
  trace(load, "normals (skipped)\n");
  processBlock(load, BlockEnd::left);
  trace(load, "normals end\n");
}

// Its meshes are no part of the model, in the stream neither.
void handleMeshAnimation(ModelLoad& load) {
  trace(load, "mesh animation (skipped)\n");
  if (!inContext(load, ModelContext::mesh))
    giveUpRecording(load, "a mesh animation stands outside its object");
  skipBlock(load);
  load.context = ModelContext::mesh;
  trace(load, "mesh animation end\n");
}

}  // namespace vex
