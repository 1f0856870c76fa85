#include "production/geometry/rays.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

constexpr int leafSize = 4;
constexpr int bins = 12;
constexpr int deepest = 64;

using Box = RayTree::Node;

void clearBox(Box& box) {
  for (int k = 0; k < 3; ++k) {
    box.least[k] = std::numeric_limits<float>::max();
    box.most[k] = std::numeric_limits<float>::lowest();
  }
}

void grow(Box& box, const Box& other) {
  for (int k = 0; k < 3; ++k) {
    box.least[k] = std::min(box.least[k], other.least[k]);
    box.most[k] = std::max(box.most[k], other.most[k]);
  }
}

float halfArea(const Box& box) {
  const float x = box.most[0] - box.least[0], y = box.most[1] - box.least[1], z = box.most[2] - box.least[2];
  return x < 0 ? 0 : x * y + y * z + z * x;
}

float middleOf(const Box& box, int axis) {
  return (box.least[axis] + box.most[axis]) / 2;
}

// Where a node's triangles are parted: those in bins below `bin` along the axis from the rest.
struct Cut {
  int axis = -1, bin = 0;
  float from = 0, width = 0;  // of all bins

  int binOf(const Box& box) const {
    return std::min(bins - 1, static_cast<int>((middleOf(box, axis) - from) / width * bins));
  }
};

// Where the surface area heuristic is least; no axis if it is less without a cut.
Cut bestCut(const Box& all, const Box& middles, std::span<const int> order, const std::vector<Box>& boxes) {
  const int count = static_cast<int>(order.size());
  float bestCost = halfArea(all) * static_cast<float>(count);
  Cut best;
  for (int axis = 0; axis < 3; ++axis) {
    const Cut cut{axis, 0, middles.least[axis], middles.most[axis] - middles.least[axis]};
    if (!(cut.width > 0)) continue;
    Box binBoxes[bins];
    int binCounts[bins] = {};
    for (Box& box : binBoxes) clearBox(box);
    for (const int i : order) {
      const int bin = cut.binOf(boxes[at(i)]);
      grow(binBoxes[bin], boxes[at(i)]);
      ++binCounts[bin];
    }
    float above[bins] = {};
    Box sum;
    clearBox(sum);
    int number = 0;
    for (int i = bins - 1; i > 0; --i) {
      grow(sum, binBoxes[i]);
      number += binCounts[i];
      above[i] = halfArea(sum) * static_cast<float>(number);
    }
    clearBox(sum), number = 0;
    for (int i = 0; i + 1 < bins; ++i) {
      grow(sum, binBoxes[i]);
      number += binCounts[i];
      const float cost = halfArea(sum) * static_cast<float>(number) + above[i + 1];
      if (number == 0 || number == count || cost >= bestCost) continue;
      bestCost = cost, best = cut, best.bin = i + 1;
    }
  }
  return best;
}

void build(RayTree& tree, int node, const std::vector<Box>& boxes, int depth) {
  const int first = tree.nodes[at(node)].first, count = tree.nodes[at(node)].count;
  const std::span<int> order = std::span(tree.order).subspan(at(first), at(count));
  Box all, middles;
  clearBox(all), clearBox(middles);
  for (const int i : order) {
    const Box& box = boxes[at(i)];
    grow(all, box);
    for (int k = 0; k < 3; ++k) {
      middles.least[k] = std::min(middles.least[k], middleOf(box, k));
      middles.most[k] = std::max(middles.most[k], middleOf(box, k));
    }
  }
  std::copy_n(all.least, 3, tree.nodes[at(node)].least);
  std::copy_n(all.most, 3, tree.nodes[at(node)].most);
  if (count <= leafSize || depth >= deepest - 2) return;

  const Cut cut = bestCut(all, middles, order, boxes);
  auto half = order.begin();
  if (cut.axis >= 0)
    half =
        std::partition(order.begin(), order.end(), [&](int i) { return cut.binOf(boxes[at(i)]) < cut.bin; });
  if (half == order.begin() || half == order.end()) {
    if (count <= 4 * leafSize) return;
    half = order.begin() + count / 2;
  }
  const int children = static_cast<int>(tree.nodes.size()), left = static_cast<int>(half - order.begin());
  tree.nodes.resize(tree.nodes.size() + 2);
  tree.nodes[at(children)].first = first;
  tree.nodes[at(children)].count = left;
  tree.nodes[at(children + 1)].first = first + left;
  tree.nodes[at(children + 1)].count = count - left;
  tree.nodes[at(node)].first = children;
  tree.nodes[at(node)].count = 0;
  build(tree, children, boxes, depth + 1);
  build(tree, children + 1, boxes, depth + 1);
}

struct Ray {
  float origin[3], direction[3], inverse[3];
};

Ray rayFrom(const Vector& from, const Vector& direction) {
  Ray ray{{from.x, from.y, from.z}, {direction.x, direction.y, direction.z}, {}};
  for (int k = 0; k < 3; ++k) {
    // No infinities: 0 times infinity would be no number.
    const float d = ray.direction[k];
    ray.inverse[k] = 1 / (std::fabs(d) < 1e-20f ? std::copysign(1e-20f, d) : d);
  }
  return ray;
}

using Four = RayTree::Four;

Four least(Four a, Four b) {
  return a < b ? a : b;
}
Four most(Four a, Four b) {
  return a > b ? a : b;
}

RayTree::Pair pairOf(const Box& a, const Box& b) {
  RayTree::Pair pair{};
  for (int k = 0; k < 3; ++k) pair.planes[k] = Four{a.least[k], b.least[k], a.most[k], b.most[k]};
  return pair;
}

// Where the ray enters both boxes, in the first two lanes; more than `end` where it misses one.
inline Four entries(const RayTree::Pair& pair, const Ray& ray, float end) {
  Four enter{}, leave = Four{} + end;
  for (int k = 0; k < 3; ++k) {
    const Four a = (pair.planes[k] - ray.origin[k]) * ray.inverse[k];
    const Four b = __builtin_shufflevector(a, a, 2, 3, 0, 1);
    enter = most(enter, least(a, b));
    leave = least(leave, most(a, b));
  }
  return enter <= leave * 1.0000004f ? enter : Four{} + std::numeric_limits<float>::max();
}

// Moeller and Trumbore, "Fast, minimum storage ray/triangle intersection", 1997. `det` > 0: front.
bool meets(const RayTree::Corner& t, const Ray& ray, float most, float& distance, float& det) {
  const float* d = ray.direction;
  const float px = d[1] * t.edge2[2] - d[2] * t.edge2[1], py = d[2] * t.edge2[0] - d[0] * t.edge2[2],
              pz = d[0] * t.edge2[1] - d[1] * t.edge2[0];
  det = t.edge1[0] * px + t.edge1[1] * py + t.edge1[2] * pz;
  if (det == 0) return false;
  const float scale = 1 / det;
  const float sx = ray.origin[0] - t.origin[0], sy = ray.origin[1] - t.origin[1],
              sz = ray.origin[2] - t.origin[2];
  const float u = (sx * px + sy * py + sz * pz) * scale;
  if (u < 0 || u > 1) return false;
  const float qx = sy * t.edge1[2] - sz * t.edge1[1], qy = sz * t.edge1[0] - sx * t.edge1[2],
              qz = sx * t.edge1[1] - sy * t.edge1[0];
  const float v = (d[0] * qx + d[1] * qy + d[2] * qz) * scale;
  if (v < 0 || u + v > 1) return false;
  distance = (t.edge2[0] * qx + t.edge2[1] * qy + t.edge2[2] * qz) * scale;
  return distance > 0 && distance < most;
}

// Calls `found(triangle in leaf order, distance, front)` for what the ray meets before `most`, which found
// may shorten; stops when it returns true.
template <typename Found>
void traverse(const RayTree& tree, const Ray& ray, float& most, Found found) {
  if (tree.nodes.empty()) return;
  int stack[2 * deepest], depth = 0;
  stack[depth++] = 0;
  while (depth > 0) {
    const Box* node = &tree.nodes[at(stack[--depth])];
    for (;;) {
      if (node->count > 0) {
        for (int i = node->first; i < node->first + node->count; ++i) {
          float distance = 0, det = 0;
          if (meets(tree.triangles[at(i)], ray, most, distance, det) && found(i, distance, det > 0)) return;
        }
        break;
      }
      const int near = node->first;
      const Four enter = entries(tree.pairs[at(near) / 2], ray, most);
      const float enterA = enter[0], enterB = enter[1];
      const bool seesA = enterA <= most, seesB = enterB <= most;
      if (!seesA && !seesB) break;
      const bool aFirst = seesA && (!seesB || enterA <= enterB);
      if (seesA && seesB) stack[depth++] = near + (aFirst ? 1 : 0);
      node = &tree.nodes[at(near) + (aFirst ? 0 : 1)];
    }
  }
}

}  // namespace

RayTree rayTree(const Surface& surface) {
  RayTree tree;
  std::vector<Box> boxes;
  std::vector<RayTree::Corner> corners;
  for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
    const Triangle& triangle = surface.triangles[i];
    const Vector& a = surface.points[at(triangle.points[0])];
    const Vector& b = surface.points[at(triangle.points[1])];
    const Vector& c = surface.points[at(triangle.points[2])];
    const Vector e1 = b - a, e2 = c - a;
    corners.push_back({{a.x, a.y, a.z}, {e1.x, e1.y, e1.z}, {e2.x, e2.y, e2.z}});
    Box box{};
    clearBox(box);
    for (const Vector& p : {a, b, c}) {
      const float place[3] = {p.x, p.y, p.z};
      for (int k = 0; k < 3; ++k) {
        box.least[k] = std::min(box.least[k], place[k]);
        box.most[k] = std::max(box.most[k], place[k]);
      }
    }
    boxes.push_back(box);
    tree.order.push_back(static_cast<int>(i));
  }
  if (boxes.empty()) return tree;
  tree.nodes.resize(1);
  tree.nodes[0].first = 0;
  tree.nodes[0].count = static_cast<int>(boxes.size());
  build(tree, 0, boxes, 0);
  for (std::size_t i = 1; i < tree.nodes.size(); i += 2)
    tree.pairs.push_back(pairOf(tree.nodes[i], tree.nodes[i + 1]));
  for (const int i : tree.order) tree.triangles.push_back(corners[at(i)]);
  return tree;
}

RayHit castRay(const RayTree& tree, const Vector& from, const Vector& direction, float most) {
  RayHit hit;
  traverse(tree, rayFrom(from, direction), most, [&](int triangle, float distance, bool front) {
    most = distance;
    hit = {true, distance, tree.order[at(triangle)], front};
    return false;
  });
  return hit;
}

bool blocked(const RayTree& tree, const Vector& from, const Vector& direction, float most) {
  bool hit = false;
  traverse(tree, rayFrom(from, direction), most, [&](int, float, bool) { return hit = true; });
  return hit;
}

}  // namespace vex::geometry
