#include <algorithm>
#include <cmath>
#include <iterator>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/geometry/mapping.h"
#include "production/geometry/simplify.h"
#include "production/image/noise3.h"
#include "production/models/fetus_being.h"
#include "production/models/hell_parts.h"
#include "production/textures/palette.h"

// A sphere cut into the cells of scattered points; each cell is a plate with thickness.

namespace vex::hell {

using namespace image;
using namespace geometry;

namespace {

constexpr int plateCount = 26;
constexpr int plateSides = 26;
constexpr float seam = 0.55f;  // units from a plate's edge to the middle of the gap

std::vector<Vector> plateMiddles() {
  std::vector<Vector> middles;
  for (int i = 0; i < plateCount; ++i) {
    // A spiral from pole to pole, shaken.
    const float y = 1 - 2 * (static_cast<float>(i) + 0.5f) / plateCount;
    const float turn = 2.39996f * static_cast<float>(i), flat = std::sqrt(1 - y * y);
    const Vector shake(hashUnit(i, 0, 931) - 0.5f, hashUnit(i, 1, 931) - 0.5f, hashUnit(i, 2, 931) - 0.5f);
    middles.push_back(unit(Vector(flat * std::cos(turn), y, flat * std::sin(turn)) + shake * 0.42f));
  }
  return middles;
}

// Whether a direction belongs to the plate and keeps clear of the seams around it, which run ragged.
bool onPlate(const std::vector<Vector>& middles, std::size_t plate, const Vector& direction) {
  const auto stray = [&](float scale) {
    return Vector(gradientNoise(direction * scale, 0, 932), gradientNoise(direction * scale, 0, 933),
                  gradientNoise(direction * scale, 0, 934));
  };
  const Vector ragged = unit(direction + stray(4) * 0.11f + stray(13) * 0.045f);
  const auto away = [&](const Vector& middle) { return std::acos(std::min(1.0f, dot(ragged, middle))); };
  const float own = away(middles[plate]);
  for (std::size_t i = 0; i < middles.size(); ++i)
    if (i != plate && (away(middles[i]) - own) * 0.5f * sphereRadius < seam) return false;
  return true;
}

Plate plateOf(const std::vector<Vector>& middles, std::size_t which) {
  const Vector& middle = middles[which];
  const Placement frame = standing(Vector(0, 0, 0), middle);
  const auto towards = [&](float turn, float away) {
    return transformedDirection(
        frame, Vector(std::sin(away) * std::cos(turn), std::cos(away), std::sin(away) * std::sin(turn)));
  };
  std::vector<float> reach;
  for (int i = 0; i < plateSides; ++i) {
    const float turn = 2 * pi * static_cast<float>(i) / plateSides;
    float inside = 0, outside = 0.02f;
    while (outside < 1.2f && onPlate(middles, which, towards(turn, outside)))
      inside = outside, outside += 0.02f;
    for (int step = 0; step < 6; ++step) {
      const float between = (inside + outside) / 2;
      (onPlate(middles, which, towards(turn, between)) ? inside : outside) = between;
    }
    reach.push_back(inside);
  }
  // Rows from the middle over the rim to the underside: share of the reach, radius.
  struct Row {
    float share, radius;
  };
  const float lift = 0.9f * (hashUnit(static_cast<int>(which), 5, 931) - 0.5f);
  const Row rows[] = {{0, sphereRadius},
                      {0.93f, sphereRadius - 0.15f},
                      {1, sphereRadius - 0.9f},
                      {0.96f, sphereRadius * 0.84f},
                      {0, sphereRadius * 0.84f}};
  // The plates that face the nave's open end and the sky come loose; only their undersides are ever seen.
  const bool loose = dot(middle, loosePlates) > 0.42f;
  const int last = static_cast<int>(std::size(rows)) - (loose ? 1 : 2);
  const Surface plate = sheet(plateSides, last,
                              [&](float s, float t) {
                                const Row& row = rows[std::lround(t * static_cast<float>(last))];
                                const int side = static_cast<int>(std::lround(s * plateSides)) % plateSides;
                                const float turn = 2 * pi * static_cast<float>(side) / plateSides;
                                const Vector d =
                                    towards(turn, reach[static_cast<std::size_t>(side)] * row.share);
                                const float bumps = 0.7f * fractal(d * 3.1f, 0, 3, 0.5f, 935);
                                return sphereCentre + d * (row.radius + lift + bumps);
                              },
                              {.closedAcross = true, .poleBelow = true, .poleAbove = loose});
  return {creased(plate, 50), middle, loose};
}

}  // namespace

std::vector<Plate> shellPlates() {
  const std::vector<Vector> middles = plateMiddles();
  std::vector<Plate> plates;
  for (std::size_t i = 0; i < middles.size(); ++i) plates.push_back(plateOf(middles, i));
  return plates;
}

Surface heart() {
  return placed(mappingScaled(sphere(sphereRadius * 0.76f, 36, 16), 2, 1), moved(sphereCentre));
}

namespace {

Placement childsPlace() {
  const Vector towards = unit(Vector(0.5f, 0.36f, 0.79f));
  return stretched(0.36f) >> facing(sphereCentre + towards * 22, sphereCentre);
}

}  // namespace

// The same being that lies in the jar, a little fuller, so that its hands hold together at this size.
Surface child() {
  const auto distance = [](const Vector& p) { return laboratory::beingDistance(p) - 0.7f; };
  // It is seen against the fire, and from one side: its outline gets the triangles.
  const auto outline = [&](const Vector& p) {
    constexpr float step = 0.4f;
    const Vector normal = unit(Vector(distance(p + Vector(step, 0, 0)) - distance(p - Vector(step, 0, 0)),
                                      distance(p + Vector(0, step, 0)) - distance(p - Vector(0, step, 0)),
                                      distance(p + Vector(0, 0, step)) - distance(p - Vector(0, 0, step))));
    const float turned = std::fabs(normal.z);
    return 0.02f + 12 * std::exp(-turned * turned * 14);
  };
  const Surface being = simplified(
      compacted(isosurface(distance, {.bounds = {Vector(-30, -43, -23), Vector(29, 39, 23)}, .cell = 1.15f})),
      1770, outline);
  return placed(being, childsPlace());
}

Vector childsEye() {
  const Vector eye = laboratory::eyePlace;
  return transformed(childsPlace(), Vector(eye.x - 4, eye.y, -eye.z));
}

Surface shard(int which) {
  const auto seed = static_cast<std::uint32_t>(941 + which);
  const Surface splinter = bent(withoutMapping(geodesic(1, 1)), [&](const Vector& p) {
    const float size = 1.0f + 0.55f * gradientNoise(p * 1.7f, 0, seed);
    return Vector(p.x * 1.3f * size, p.y * (which == 0 ? 2.6f : 1.5f) * size, p.z * 0.75f * size);
  });
  return faceted(splinter);
}

}  // namespace vex::hell
