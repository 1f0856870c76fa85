#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/report.h"
#include "models/model_handlers.h"
#include "models/model_reader.h"
#include "models/model_state.h"
#include "models/model_stream.h"
#include "models/model_trace.h"

// Handlers of a mesh's vertices and faces. Lists are blocks of lines in text models and bare numbers in
// compiled ones; what an entry does is the same.

namespace vex {

namespace {

using Corners = std::array<int, 3>;

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

// All counts of a model together must fit into its file, so that they cannot ask for any amount of memory.
int scanCount(const char* what) {
  const int count = scanInt();
  const std::size_t size = readingText() ? modelReader.text.size() : modelStream.bytes.size();
  if (count >= 0) modelState.claimed += at(count);
  if (count < 0 || modelState.claimed > mostClaimed(size)) {
    fatalError("%d %s can't be in this file", count, what);
  }
  return count;
}

bool inMesh() {
  return inContext(ModelContext::mesh) && currentCounts();
}

int faceCount() {
  return currentCounts() ? currentCounts()->faces : 0;
}

int texCoordCount() {
  return currentCounts() ? currentCounts()->texCoords : 0;
}

void checkIndex(const char* what, int index, int count) {
  if (index < 0 || index >= count) fatalError("%s %d isn't one of the %d announced", what, index, count);
}

// A mesh with fewer texture vertices than vertices has no place for the last ones.
void setVertex(int index, const Vector& position) {
  modelState.vertices[at(index)].position = position;
  std::vector<Vertex>& vertices = currentMesh()->vertices;
  if (at(index) < vertices.size()) vertices[at(index)].position = position;
}

void setFace(int index, const Corners& corners) {
  modelState.faces[at(index)] = corners;
  std::vector<Face>& faces = currentMesh()->faces;
  if (at(index) >= faces.size()) return;
  for (std::size_t i = 0; i < 3; ++i) faces[at(index)].v[i] = static_cast<std::uint32_t>(corners[i]);
}

void setTexCoord(int index, float u, float v) {
  std::vector<Vertex>& vertices = currentMesh()->vertices;
  if (at(index) >= vertices.size()) return;
  vertices[at(index)].u = u;
  vertices[at(index)].v = v;
}

void setTextureFace(int index, const Corners& corners) {
  Mesh& mesh = *currentMesh();
  if (at(index) >= mesh.faces.size()) return;
  if (!modelState.hasTextureFaces) {
    for (Vertex& vertex : mesh.vertices) vertex.normal = {};
    modelState.hasTextureFaces = true;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    mesh.faces[at(index)].v[i] = static_cast<std::uint32_t>(corners[i]);
    const std::size_t geometric = at(modelState.faces[at(index)][i]);
    if (at(corners[i]) >= mesh.vertices.size() || geometric >= modelState.vertices.size()) continue;
    const TemporaryVertex& source = modelState.vertices[geometric];
    Vertex& vertex = mesh.vertices[at(corners[i])];
    vertex.position = source.position;
    vertex.normal = source.normal;
  }
}

// A static scale belongs to the base matrix, which is applied after it.
void bakeScale() {
  Mesh& mesh = *currentMesh();
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
void computeNormals() {
  for (TemporaryVertex& vertex : modelState.vertices) vertex.normal = {0.0f, 0.0f, 0.0f};
  for (const Corners& face : modelState.faces) {
    // The number of vertices may have changed since the face was given.
    if (std::any_of(face.begin(), face.end(), [](int v) { return at(v) >= modelState.vertices.size(); }))
      continue;
    TemporaryVertex& a = modelState.vertices[at(face[0])];
    TemporaryVertex& b = modelState.vertices[at(face[1])];
    TemporaryVertex& c = modelState.vertices[at(face[2])];
    const Vector e1 = b.position - a.position;
    const Vector e2 = c.position - b.position;
    const Vector e3 = a.position - c.position;
    a.normal -= cornerNormal(e1, e3);
    b.normal -= cornerNormal(e2, e1);
    c.normal -= cornerNormal(e3, e2);
  }
  std::vector<Vertex>& vertices = currentMesh()->vertices;
  for (std::size_t i = 0; i < modelState.vertices.size(); ++i) {
    modelState.vertices[i].normal.normalize();
    if (i < vertices.size() && !modelState.hasTextureFaces) {
      vertices[i].normal = modelState.vertices[i].normal;
    }
  }
}

// Whether this pass uses a list's lines. Fatal: a compiled model, whose lists are bare numbers.
bool entryMatters(const char* keyword) {
  if (!readingText()) fatalError("%s not allowed in HV3 files!", keyword);
  return filling() || modelStream.writing || traceModels;
}

// The list of a compiled model: `size` entries of `width` numbers, and one byte. False: passed over.
bool enterCompiledList(int size, std::size_t width) {
  const std::size_t bytes = at(size) * width * 4 + 1;
  expectBytes(bytes);
  if (filling() && inMesh()) return true;
  modelStream.position += bytes;
  return false;
}

// A list of corners, each below `count`.
template <typename Store>
void readCorners(const char* what, int size, int count, Store store) {
  if (!enterCompiledList(size, 3)) return;
  const std::size_t start = modelStream.position;
  const std::vector<int> corners = readInts(at(size) * 3);
  for (std::size_t i = 0; i < corners.size(); ++i) {
    if (corners[i] >= 0 && corners[i] < count) continue;
    modelStream.position = start + (i + 1) * 4;
    checkIndex(what, corners[i], count);
  }
  for (int i = 0; i < size; ++i) {
    const std::size_t first = at(i) * 3;
    store(i, Corners{corners[first], corners[first + 1], corners[first + 2]});
  }
  readByte();
}

}  // namespace

void handleMesh() {
  if (!inContext(ModelContext::mesh)) return;
  trace("mesh\n");
  writeLine(Command::mesh);
  processBlock();
  trace("mesh end\n");
}

void handleMeshNumVertex() {
  const int count = scanCount("vertices");
  trace("%d vertices\n", count);
  writeLine(Command::meshNumVertex, count);
  if (!inMesh()) return;
  currentCounts()->vertices = currentCounts()->texCoords = count;
  modelState.geometricVertices = count;
  if (filling()) modelState.vertices.assign(at(count), {});
}

void handleMeshNumFaces() {
  const int count = scanCount("faces");
  trace("%d faces\n", count);
  writeLine(Command::meshNumFaces, count);
  if (inMesh()) currentCounts()->faces = count;
  if (filling()) modelState.faces.assign(at(faceCount()), {});
}

void handleMeshVertexList() {
  trace("vertex list\n");
  beginList(Command::meshVertexList, modelState.geometricVertices);
  if (currentMesh()) bakeScale();
  if (readingText()) {
    processBlock(BlockEnd::left);
  } else if (const int size = modelState.geometricVertices; enterCompiledList(size, 3)) {
    const std::vector<float> places = readFloats(at(size) * 3);
    for (int i = 0; i < size; ++i) {
      const std::size_t first = at(i) * 3;
      setVertex(i, {places[first], places[first + 1], places[first + 2]});
    }
    readByte();
  }
  endList();
  trace("vertex list end\n");
}

void handleMeshVertex() {
  if (!entryMatters("MESH_VERTEX")) return;
  scanIndexed(3);
  const int index = modelReader.current.integer;
  const Vector position = toEngineAxes(modelReader.current.vector);
  trace("vert %ld: %.2f %.2f %.2f\n", static_cast<long>(index), position.x, position.y, position.z);
  if (inMesh()) checkIndex("vertex", index, modelState.geometricVertices);
  if (recordEntry(Command::meshVertexList, index)) {
    writeFloat(position.x);
    writeFloat(position.y);
    writeFloat(position.z);
  }
  if (filling() && inMesh()) setVertex(index, position);
}

void handleMeshFaceList() {
  trace("face list\n");
  const int size = faceCount();
  beginList(Command::meshFaceList, size);
  if (readingText()) {
    processBlock(BlockEnd::left);
  } else {
    readCorners("vertex", size, modelState.geometricVertices,
                [](int i, const Corners& corners) { setFace(i, corners); });
  }
  endList();
  if (currentMesh()) computeNormals();
  trace("face list end\n");
}

void handleMeshFace() {
  if (!entryMatters("MESH_FACE")) return;
  scanFace();
  const int index = modelReader.current.integer;
  const Corners corners = std::to_array(modelReader.current.triple);
  trace("face %ld: %d %d %d\n", static_cast<long>(index), corners[0], corners[1], corners[2]);
  if (inMesh()) {
    checkIndex("face", index, faceCount());
    for (const int corner : corners) checkIndex("vertex", corner, modelState.geometricVertices);
  }
  if (recordEntry(Command::meshFaceList, index)) {
    for (const int corner : corners) writeInt(corner);
  }
  if (filling() && inMesh()) setFace(index, corners);
}

void handleMeshNumTVertex() {
  const int count = scanCount("texture vertices");
  trace("allocating %d mapped vertices\n", count);
  writeLine(Command::meshNumTVertex, count);
  if (inMesh() && count > 0) currentCounts()->texCoords = currentCounts()->vertices = count;
}

void handleMeshTVertList() {
  trace("mapped vertex list\n");
  const int size = texCoordCount();
  beginList(Command::meshTVertList, size);
  if (readingText()) {
    processBlock(BlockEnd::left);
  } else if (enterCompiledList(size, 2)) {
    const std::vector<float> places = readFloats(at(size) * 2);
    for (int i = 0; i < size; ++i) setTexCoord(i, places[at(i) * 2], places[at(i) * 2 + 1]);
    readByte();
  }
  endList();
  trace("mapped vertex list end\n");
}

void handleMeshTVert() {
  if (!entryMatters("MESH_TVERT")) return;
  scanIndexed(2);
  const int index = modelReader.current.integer;
  const float u = modelReader.current.vector[0];
  const float v = modelReader.current.vector[1];
  trace("mapped vert %.2f %.2f\n", u, v);
  if (inMesh()) checkIndex("texture vertex", index, texCoordCount());
  if (recordEntry(Command::meshTVertList, index)) {
    writeFloat(u);
    writeFloat(v);
  }
  if (filling() && inMesh()) setTexCoord(index, u, v);
}

void handleMeshTFaceList() {
  trace("mapped face list\n");
  const int size = faceCount();
  beginList(Command::meshTFaceList, size);
  if (readingText()) {
    processBlock(BlockEnd::left);
  } else {
    readCorners("texture vertex", size, texCoordCount(),
                [](int i, const Corners& corners) { setTextureFace(i, corners); });
  }
  endList();
  trace("mapped face list end\n");
}

void handleMeshTFace() {
  if (!entryMatters("MESH_TFACE")) return;
  scanTextureFace();
  const int index = modelReader.current.integer;
  const Corners corners = std::to_array(modelReader.current.triple);
  trace("mapping face to %d %d %d\n", corners[0], corners[1], corners[2]);
  if (inMesh()) {
    checkIndex("texture face", index, faceCount());
    for (const int corner : corners) checkIndex("texture vertex", corner, texCoordCount());
  }
  if (recordEntry(Command::meshTFaceList, index)) {
    for (const int corner : corners) writeInt(corner);
  }
  if (filling() && inMesh()) setTextureFace(index, corners);
}

void handleMeshNormals() {
  trace("normals (skipped)\n");
  processBlock(BlockEnd::left);
  trace("normals end\n");
}

// Its meshes are no part of the model, in the stream neither.
void handleMeshAnimation() {
  trace("mesh animation (skipped)\n");
  if (!inContext(ModelContext::mesh)) giveUpRecording("a mesh animation stands outside its object");
  skipBlock();
  modelState.context = ModelContext::mesh;
  trace("mesh animation end\n");
}

}  // namespace vex
