#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/noise.h"
#include "production/models/skull_parts.h"

// Crows, lightning, beams and clouds.

namespace vex::skull {

using namespace image;
using namespace geometry;

namespace {

// --- The crow's picture: a feather in its left half, the trunk unrolled in its right, head up.

// A feather from its root to its tip, `half` wide to either side of the quill, its sides hanging a little.
void addFeather(Surface& all, const Vector& root, const Vector& tip, float half) {
  const Vector along = tip - root, side = unit(cross(along, Vector(0, 1, 0)));
  append(all, sheet(1, 4,
                    [&](float s, float t) {
                      const float k = 1 - (1 - t) * (1 - t);  // rows lie close at the round tip
                      const float width = half * (0.45f + 0.55f * smoothStep(0, 0.45f, k)) *
                                          std::sqrt(std::max(0.0f, 1 - std::pow(k, 6.0f)));
                      const float x = 2 * s - 1;
                      return root + along * k + side * (x * width) -
                             Vector(0, 0.35f * width * x * x + 0.06f * along.length() * k * k, 0);
                    },
                    {.poleAbove = true}));
}

// Feathers fan out along an arm: each begins on it and points by `degrees` back from straight out.
struct Fan {
  Vector from, to;  // the arm
  int count;
  float firstDegrees, lastDegrees, firstLength, lastLength, longer, half;
  float lift;  // above the arm; of neighbours each lies a little below the one before
};

void addFan(Surface& all, const Fan& fan) {
  for (int i = 0; i < fan.count; ++i) {
    const float k = static_cast<float>(i) / static_cast<float>(fan.count - 1);
    const float turn = mix(fan.firstDegrees, fan.lastDegrees, k) * pi / 180;
    const float length = mix(fan.firstLength, fan.lastLength, k) + fan.longer * 4 * k * (1 - k);
    const Vector root = mix(fan.from, fan.to, k) + Vector(0, fan.lift - 0.12f * static_cast<float>(i % 3), 0);
    addFeather(all, root, root + Vector(std::cos(turn), 0, -std::sin(turn)) * length, fan.half);
  }
}

Surface feathersMapped(const Surface& surface) {
  Surface all = surface;
  for (Triangle& triangle : all.triangles)
    for (Uv& uv : triangle.uv) uv.u = 0.02f + 0.46f * uv.u;
  return all;
}

// On the side of +x.
Surface wing() {
  const Vector shoulder(2.5f, 1.2f, 8), wrist(15, 4.4f, 11), hand(22.5f, 5.6f, 8.5f);
  Surface feathers;
  feathers.mapped = true;
  addFan(feathers, {wrist, hand, 10, 80, 6, 15, 13, 6, 1.75f, 0});     // fingers
  addFan(feathers, {shoulder, wrist, 9, 98, 82, 15, 15, 1, 2.0f, 0});  // of the forearm
  addFan(feathers, {wrist, hand, 6, 76, 14, 7, 5, 1, 1.8f, 0.5f});     // what covers their roots
  addFan(feathers, {shoulder, wrist, 7, 96, 82, 7.5f, 7.5f, 0, 2.1f, 0.5f});
  Surface arm = tube(
      smoothPath({shoulder - Vector(2, 0.4f, 1), shoulder, wrist, hand, hand + Vector(3, 0.2f, -1)}, 6), 4,
      [](float t) { return mix(2.1f, 0.5f, t); }, TubeEnd::point);
  for (Triangle& triangle : arm.triangles)
    for (Uv& uv : triangle.uv) uv = {0.55f + 0.4f * uv.u, 0.2f + 0.4f * uv.v};
  return joined({feathersMapped(feathers), arm});
}

// A ribbon along a path, `half` wide to either side at its first end and `taper` times that at its last.
// Light comes from where the player's bolt sets out in its picture and shines in all frames: the corner
// (0, 1). `reach`, in texels from there, is what the edges show, and where nothing shines.
void addRibbon(Surface& all, const std::vector<Vector>& path, const Vector& side, float half, float taper,
               float reach) {
  constexpr float texel = 1.0f / 128;
  const Uv lit{0.5f * texel, 1 - 1.5f * texel},
      edge{(0.5f + reach) * texel, 1 - (reach > 0 ? 0.5f : 1.5f) * texel};
  // A core needs no middle.
  const std::vector<float> ways = reach > 0 ? std::vector<float>{-1, 0, 1} : std::vector<float>{-1, 1};
  const int count = static_cast<int>(path.size()), across = static_cast<int>(ways.size()),
            first = static_cast<int>(all.points.size());
  for (int i = 0; i < count; ++i) {
    const float share = static_cast<float>(i) / static_cast<float>(count - 1);
    for (const float way : ways)
      addPoint(all, path[static_cast<std::size_t>(i)] + side * (way * half * mix(1, taper, share)));
  }
  for (int i = 0; i + 1 < count; ++i)
    for (int k = 0; k + 1 < across; ++k) {
      const int a = first + i * across + k, b = a + across;
      const Uv &left = k == 0 ? edge : lit, &right = k == 0 && across == 3 ? lit : edge;
      all.triangles.push_back({{a, a + 1, b}, {left, right, left}});
      all.triangles.push_back({{a + 1, b + 1, b}, {right, right, left}});
    }
}

// A white core in a blue glow: as many sheets of light as it takes.
void addStroke(Surface& all, const std::vector<Vector>& path, const Vector& side, float half, float taper,
               int sheets) {
  for (int i = 0; i < sheets; ++i) addRibbon(all, path, side, half, taper, 0);
  addRibbon(all, path, side, 3 * half, taper, 2);
  addRibbon(all, path, side, 10 * half, taper, 5);
}

// From one place to another, straying wide in a few long steps and a little in each short one.
std::vector<Vector> jagged(const Vector& from, const Vector& to, int steps, float amount,
                           std::uint32_t seed) {
  const Vector along = to - from;
  const auto stray = [&](float at, int which) {
    const int knot = static_cast<int>(at);
    return 2 * mix(hashUnit(knot, which, seed), hashUnit(knot + 1, which, seed),
                   at - static_cast<float>(knot)) -
           1;
  };
  std::vector<Vector> path;
  for (int i = 0; i <= steps; ++i) {
    const float share = static_cast<float>(i) / static_cast<float>(steps);
    const float wide = amount * along.length() * std::min(1.0f, 4 * std::min(share, 1 - share));
    const auto off = [&](int which) {
      return wide *
             (stray(0.3f * static_cast<float>(i), which) + 0.45f * stray(static_cast<float>(i), which + 9));
    };
    path.push_back(from + along * share + Vector(off(1), 0.25f * off(2), off(3)));
  }
  return path;
}

}  // namespace

Surface crow() {
  // The trunk from tail to beak.
  struct Ring {
    float z, radius, y;
  };
  constexpr Ring rings[] = {{-15, 0.6f, 0.4f},   {-11, 2.3f, 0.2f}, {-5, 4.1f, -0.3f}, {2, 4.8f, -0.6f},
                            {8, 4.4f, -0.2f},    {13, 3.4f, 0.7f},  {17, 3.0f, 1.4f},  {20, 3.1f, 1.8f},
                            {22.5f, 2.5f, 1.8f}, {24, 1.3f, 1.5f},  {27, 0.9f, 1.2f},  {30, 0.15f, 0.5f}};
  constexpr int last = static_cast<int>(std::size(rings)) - 1;
  Surface trunk = sheet(8, last,
                        [&](float s, float t) {
                          const Ring& ring = rings[std::lround(t * last)];
                          return Vector(ring.radius * std::cos(2 * pi * s),
                                        ring.y + 0.92f * ring.radius * std::sin(2 * pi * s), ring.z);
                        },
                        {.closedAcross = true});
  for (Triangle& triangle : trunk.triangles)
    for (Uv& uv : triangle.uv) uv.u = 0.5f + 0.5f * uv.u;
  Surface tail;
  tail.mapped = true;
  addFan(tail, {Vector(1.6f, 0.6f, -10), Vector(-1.6f, 0.6f, -10), 9, 70, 110, 13, 13, 2.5f, 1.7f, 0.3f});
  return joined({wing(), placed(wing(), stretched(-1, 1, 1)), feathersMapped(tail), trunk});
}

Surface bolt(const Vector& from, const Vector& to, float half, std::uint32_t seed) {
  const std::vector<Vector> channel = jagged(from, to, 15, 0.05f, seed);
  const Vector along = unit(to - from), across = unit(cross(along, Vector(0.15f, 0.1f, 1)));
  Surface all;
  all.mapped = true;
  addStroke(all, channel, across, half, 0.35f, 4);
  // Branches leave at bends and die away in the air.
  for (const int bend : {5, 9}) {
    const Vector& fork = channel[static_cast<std::size_t>(bend)];
    const float turn = bend == 9 ? -1.0f : 1.0f;
    const Vector end = fork + (along * 0.8f + across * (0.6f * turn)) * (0.24f * (to - from).length());
    addStroke(all, jagged(fork, end, 6, 0.06f, seed + static_cast<std::uint32_t>(bend)), across, 0.5f * half,
              0.1f, 3);
  }
  return all;
}

Surface beam() {
  constexpr float halfWidth = 9, length = 100;
  Surface all;
  for (const float turn : {0.0f, 60.0f, 120.0f})
    append(all, placed(sheet(1, 6,
                             [](float s, float t) { return Vector(halfWidth * (2 * s - 1), length * t, 0); }),
                       turnedY(turn)));
  return all;
}

Surface cloudLayer(float above, float tilt) {
  constexpr float halfWidth = 1500, nearEdge = 900, farEdge = -2100;
  // The first two points lie on the near edge: the picture runs towards it.
  const Surface layer = sheet(1, 1, [&](float s, float t) {
    const float z = nearEdge + (farEdge - nearEdge) * t;
    return Vector(halfWidth * (2 * s - 1), above + tilt * z, z);
  });
  return mappedByPoint(withoutMapping(layer), [](int point, const Vector&) {
    return Uv{point % 2 == 0 ? 0.0f : 1.0f, point < 2 ? 0.0f : 1.0f};
  });
}

Surface vault() {
  constexpr float radius = 1900, rim = 20, crown = 640;
  const Surface dome = sheet(32, 8,
                             [](float s, float t) {
                               const float angle = 2 * pi * s, r = radius * (1 - t);
                               const float y = rim + (crown - rim) * std::pow(std::sin(t * pi / 2), 0.8f);
                               return Vector(r * std::cos(angle), y, -r * std::sin(angle));
                             },
                             {.closedAcross = true, .poleAbove = true});
  return turnedOver(mapped(withoutMapping(dome), [](const Vector& p) {
    return Uv{0.5f + 0.495f * p.x / radius, 0.5f - 0.495f * p.z / radius};
  }));
}

}  // namespace vex::skull
