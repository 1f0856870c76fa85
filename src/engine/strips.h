#pragma once

#include "engine/scene.h"

// Splits the triangles of meshes into fans, strips and lone triangles, which are drawn with fewer indices,
// and keeps the result in a file.
//
// Chains of neighbours are grown from the first free face on, in rounds over the faces after it: a free face
// that shares two corners with the chain's last one joins. Fans come first (chains of three or more faces
// around one vertex); of what is left, every chain is cut into strips. An index of the faces by edge finds
// each next face at once, with the very choices that the rounds make.

namespace vex {

// Fills the mesh's strip fields. Faces that name a vertex twice stay alone. Shows "%s face %d/%d\n" in the
// loading dialog, logs "mesh %s %d fans " and "%d strips %d solos\n".
// Fatal: "Polygons with same vertices found!\nThis can't be happening!", "cracking up!!!" (neighbours that
// make no fan).
void stripify(Mesh& mesh);

// The strip cache of a scene: "data\%s.hvf", 32-bit little-endian words without a header. For each mesh the
// fans, then the strips (their number, then of each its length and as many pairs of vertex and texture
// coordinate, all ones where there is none), then the lone triangles (their number, three vertices each).

// False when there is no such file. Fatal: a file that does not fit the scene's meshes.
bool readStripCache(Scene& scene);

// What cannot be written is logged.
void writeStripCache(const Scene& scene);

}  // namespace vex
