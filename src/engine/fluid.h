#pragma once

#include "engine/mesh.h"

// Water surfaces: a mesh turned into a regular grid whose heights follow a damped wave. The grid lies in
// x and z; its texture coordinates shift with the slope, so that what is seen through it looks refracted.

namespace vex {

// Replaces the mesh's geometry by nx * nz cells over the area that it covered, which overhang it by two
// cells on each side; only the inner ones are drawn. Call it before the drawing arrays are built.
// Fatal: "Cannot convert fluid to (0,0)!" below 1; fewer than 5 cells a side, or more than 2048.
void convertToFluid(Mesh& mesh, int nx, int nz);

// Raises a cone of mesh.pushRadius cells about the place that x and z, fractions of the grid, select.
// Fatal: "Cannot call push on Mesh!".
void push(Mesh& fluid, float x, float z, float strength);

// One step of the simulation, whatever dt says, and its positions and texture coordinates. Normals stay:
// fluids are drawn unlit. Fatal: "Cannot call animateFluid on Mesh!".
void animateFluid(Mesh& fluid, float dt);

}  // namespace vex
