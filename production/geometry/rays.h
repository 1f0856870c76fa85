#pragma once

#include <vector>

#include "production/geometry/surface.h"

// Rays through triangles, by a tree of boxes.

namespace vex::geometry {

struct RayHit {
  bool hit = false;
  float distance = 0;  // in lengths of the direction
  int triangle = -1;   // of the surface that the tree was made of
  bool front = false;
};

struct RayTree {
  struct Node {
    float least[3], most[3];
    int first;  // of its triangles, or of the two children
    int count;  // 0 for inner nodes
  };
  struct Corner {
    float origin[3], edge1[3], edge2[3];
  };
  using Four = float __attribute__((vector_size(16)));
  // The boxes of two children side by side: for each axis the least of both, then the most of both.
  struct Pair {
    Four planes[3];
  };
  std::vector<Node> nodes;
  std::vector<Pair> pairs;        // of nodes 1 and 2, of 3 and 4 and so on
  std::vector<Corner> triangles;  // in the order of the leaves
  std::vector<int> order;         // which triangle of the surface each is
};

RayTree rayTree(const Surface& surface);

// The nearest triangle, seen from either side.
RayHit castRay(const RayTree& tree, const Vector& from, const Vector& direction, float most);
// Whether anything is in the way at all; faster.
bool blocked(const RayTree& tree, const Vector& from, const Vector& direction, float most);

}  // namespace vex::geometry
