#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/scene.h"

// Small scenes and meshes for tests.

namespace vex {

// A scene with that many objects named mesh0, light0 and so on, and one viewer at the origin that looks
// along -z with a vertical angle of 90 degrees and a far plane at 1000.
struct TestScene : Scene {
  explicit TestScene(int meshCount = 0, int lightCount = 0);
};

// Makes the mesh a flat grid of columns x rows cells of two triangles each, the lower left corner at
// `corner`, in a plane of constant z, counter-clockwise seen from +z. Normals are (0, 0, 1), texture
// coordinates run from 0 to 1.
void makeGrid(Mesh& mesh, int columns, int rows, const Vector& corner, float width, float height);

// Texture coordinates of their own for every corner, so that a mix-up shows.
void numberTexCoords(Mesh& mesh);

// Faces of those vertices, of which the mesh gets as many as they use; texture coordinates are numbered.
void addFaces(Mesh& mesh, const std::vector<std::array<std::uint32_t, 3>>& faces);

// A position track that is at `start` at frame 0 and at `end` at its last frame, 10.
Animation straightPath(const Vector& start, const Vector& end);

// Id of an opaque white texture of 4 x 4 pixels of that name.
int addWhiteTexture(const char* name);

}  // namespace vex
