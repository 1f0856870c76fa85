#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// Cubes within cubes, about an open middle that frames what is behind: two frames and a ring of small cubes.
// Everything has the symmetry of a cube, so that a third of a turn about a diagonal, or a quarter about an
// axis, is a loop: each moves at a pace of its own in the player's five seconds.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

constexpr float loopSeconds = 5;

constexpr float ringRadius = 232;  // of the small cubes
constexpr int satellites = 5;

enum CubePart { bar, cornerBlock, thinBar, thinCorner, satellite, partCount };

// A square frame in space: bars along the edges of a cube, blocks in its corners.
struct Frame {
  float half;   // of the cube, to the middle of the bars
  float thick;  // of the bars
  float block;  // side of the blocks
};
constexpr Frame outer{150, 23, 42}, inner{98, 14, 26};

Outline quarterTurned(Outline outline, int quarters) {
  for (PlanePoint& p : outline)
    for (int i = 0; i < quarters; ++i) p = {-p.y, p.x};
  return outline;
}

// Along -z from z = 0: square with cut edges and a groove in each side.
Surface groovedBar(float thick, float length) {
  const float half = thick / 2, cut = thick * 0.1f, groove = thick * 0.2f, deep = thick * 0.17f;
  Outline section;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const Outline side{{half, -half + cut},          {half, -groove}, {half - deep, -groove * 0.7f},
                       {half - deep, groove * 0.7f}, {half, groove},  {half, half - cut}};
    const Outline turned = quarterTurned(side, quarter);
    section.insert(section.end(), turned.begin(), turned.end());
  }
  return extrusion({section}, length, thick * 0.06f, 20);
}

// The turns that take one edge along z of a cube, or one corner, to all of them.
std::vector<Placement> edgeTurns() {
  std::vector<Placement> turns;
  for (const Placement& axis : {turnedZ(0), turnedX(90), turnedY(90)})
    for (int quarter = 0; quarter < 4; ++quarter)
      turns.push_back(turnedZ(90 * static_cast<float>(quarter)) >> axis);
  return turns;
}

std::vector<Placement> cornerTurns() {
  std::vector<Placement> turns;
  for (const Placement& half : {turnedX(0), turnedX(180)})
    for (int quarter = 0; quarter < 4; ++quarter)
      turns.push_back(half >> turnedY(90 * static_cast<float>(quarter)));
  return turns;
}

Surface copies(const Surface& one, const std::vector<Placement>& turns) {
  Surface all;
  for (const Placement& turn : turns) append(all, placed(one, turn));
  return all;
}

float barLength(const Frame& frame) {
  return 2 * frame.half - frame.block + 1;
}

// One of each, in its place in its cube.
std::vector<Surface> prototypes() {
  std::vector<Surface> parts(partCount);
  const auto framed = [&](const Frame& frame, CubePart along, CubePart block) {
    parts[along] = placed(groovedBar(frame.thick, barLength(frame)),
                          moved(frame.half, frame.half, barLength(frame) / 2));
    parts[block] = placed(bevelledBox(Vector(frame.block, frame.block, frame.block), frame.block * 0.09f),
                          moved(frame.half, frame.half, frame.half));
  };
  framed(outer, bar, cornerBlock);
  framed(inner, thinBar, thinCorner);
  parts[satellite] = bevelledBox(Vector(22, 22, 22), 2.4f);
  return parts;
}

Surface assembly(const std::vector<Surface>& parts, CubePart part) {
  switch (part) {
    case bar:
    case thinBar:
      return copies(parts[part], edgeTurns());
    case cornerBlock:
    case thinCorner:
      return copies(parts[part], cornerTurns());
    case satellite:
    case partCount:
      break;
  }
  return parts[part];
}

// Far enough from each other that they do not shade each other in the bake.
Placement apart(int part) {
  const int group = part == bar || part == cornerBlock ? 0 : part == satellite ? 2 : 1;
  return moved(4000 * static_cast<float>(group), 0, 0);
}

// Distance from the middle line of the nearest side, where blocks and small cubes are engraved.
float engraved(const Vector& p, float half) {
  const float x = std::fabs(p.x), y = std::fabs(p.y), z = std::fabs(p.z);
  float a = x, b = y;  // in the plane of the side
  if (x >= y && x >= z)
    a = y, b = z;
  else if (y >= z)
    b = z;
  const float square = std::fabs(std::max(a, b) - 0.62f * half);
  const float cross = std::max(std::min(a, b), std::max(a, b) - 0.36f * half);
  return std::min(square, cross);
}

Colour4 steel(const BakePoint& p, float tone) {
  const float stain = 0.5f + 0.5f * fractal(p.position * 0.045f, 0, 4, 0.55f, 811);
  const float brushed =
      fractal(Vector(p.position.x * 0.5f, p.position.y * 0.06f, p.position.z * 0.5f), 0, 2, 0.5f, 812);
  const float worn = std::max(0.0f, p.edge), hollow = std::max(0.0f, -p.edge);
  return gradient(steelRamp, tone + 0.12f * stain + 0.03f * brushed + 0.5f * worn - 0.25f * hollow);
}

Colour4 painted(const BakePoint& p) {
  const Vector local = p.position - apart(p.part).origin;
  switch (p.part) {
    case bar:
    case thinBar: {
      // Marks of light in the grooves, a longer one each fourth.
      const Frame& frame = p.part == bar ? outer : inner;
      const float half = frame.thick / 2;
      const float x = std::fabs(local.x - frame.half), y = std::fabs(local.y - frame.half);
      const bool groove = std::max(x, y) < half * 0.9f && std::min(x, y) < half * 0.34f;
      const float along = local.z / frame.thick * 1.6f;
      const float nearest = along - std::round(along);
      const bool lasting = (static_cast<int>(std::round(along)) & 3) == 0;
      const float mark = smoothStep(0.42f, 0.3f, std::fabs(nearest)) * (lasting ? 1.0f : 0.45f);
      return steel(p, 0.3f) * p.light + gradient(violetRamp, 0.2f + 0.5f * mark) * (groove ? mark : 0.0f);
    }
    case cornerBlock:
    case thinCorner:
    case satellite: {
      const Frame& frame = p.part == cornerBlock ? outer : inner;
      const float half = p.part == satellite ? 11 : frame.block / 2;
      const Vector middle =
          p.part == satellite ? Vector(0, 0, 0) : Vector(frame.half, frame.half, frame.half);
      const float line = smoothStep(0.085f * half, 0.045f * half, engraved(local - middle, half));
      return mix(steel(p, 0.36f) * p.light, gradient(violetRamp, 0.62f), line);
    }
    default:
      return black;
  }
}

Placement turnAbout(const Vector& axis, float degrees) {
  return turned(unit(axis), degrees * pi / 180);
}

MotionKeys turning(const Vector& axis, float degrees) {
  return turnKeys(loopSeconds, 10, [=](float t) { return turnAbout(axis, degrees * t / loopSeconds); });
}

// The ring leans; each small cube moves on to the place of the next.
Vector ringPlace(float turns) {
  const float turn = 2 * pi * turns;
  const Vector flat(ringRadius * std::cos(turn), 14 * std::sin(3 * turn), ringRadius * std::sin(turn));
  return transformed(turnedX(17) >> turnedZ(-9), flat);
}

Model layerRotCubes(const Settings& settings) {
  std::vector<Surface> parts = prototypes();
  Surface all, around;
  for (int i = 0; i < partCount; ++i) {
    append(all, placed(parts[static_cast<std::size_t>(i)], apart(i)), i);
    append(around, placed(assembly(parts, static_cast<CubePart>(i)), apart(i)));
  }
  all = mappedAtlas(all, {.charts = Charts::byNormals, .side = 512, .density = [](const Triangle& triangle) {
                            return triangle.part == satellite ? 2.0f : 1.0f;
                          }});
  BakeLook look;
  look.sky = [](const Vector&) { return Colour4{1.05f, 1.0f, 1.02f}; };
  look.bounce = {0.12f, 0.03f, 0.1f};
  look.reach = 120;
  const Canvas picture =
      bake(all, rayTree(around), look,
           {.side = settings.side(512), .lit = !settings.draft, .wearWidth = 2.2f, .paint = painted});
  for (int i = 0; i < partCount; ++i)
    parts[static_cast<std::size_t>(i)] = placed(partOf(all, i), inverse(apart(i)));

  Stage stage;
  stage.seconds = loopSeconds;
  stage.materials = {{.name = "steel",
                      .texture = "cubes",
                      .diffuse = {0.75f, 0.7f, 0.75f},
                      .ambient = {0.5f, 0.5f, 0.54f},
                      .specular = {0.5f, 0.45f, 0.5f},
                      .shine = 0.25f,
                      .shineStrength = 0.8f}};
  const auto shown = [&](const char* name, const Surface& surface, const char* material,
                         const MotionKeys& turns) {
    stage.meshes.push_back({.name = name, .surface = surface, .material = material});
    stage.meshes.back().motion.turns = turns;
  };
  const Vector diagonal(1, 1, 1);
  shown("inner_frame", joined({assembly(parts, thinBar), assembly(parts, thinCorner)}), "steel",
        turning(Vector(1, 0, 0), -180));
  shown("outer_frame", joined({assembly(parts, bar), assembly(parts, cornerBlock)}), "steel",
        turning(diagonal, 120));
  for (int i = 0; i < satellites; ++i) {
    const float start = static_cast<float>(i) / satellites;
    const Vector axis(hashUnit(i, 0, 841) - 0.5f, hashUnit(i, 1, 841) - 0.5f, hashUnit(i, 2, 841) - 0.5f);
    const std::string name = "small" + std::to_string(i + 1);
    const Vector rest = ringPlace(start);
    stage.meshes.push_back(
        {.name = name, .surface = placed(parts[satellite], moved(rest)), .pivot = rest, .material = "steel"});
    stage.meshes.back().motion.positions = positionKeys(
        loopSeconds, 10, [=](float t) { return ringPlace(start + t / loopSeconds / satellites); });
    stage.meshes.back().motion.turns = turning(axis, i % 2 == 0 ? 360.0f : -360.0f);
  }
  stage.lights = {{.name = "omni01", .position = Vector(200, 0, 0), .colour = {1, 0.93f, 0.96f}}};
  stage.cameras = {{.name = "camera01",
                    .position = Vector(400, 0, 0),
                    .target = Vector(0, 0, 0),
                    .fieldDegrees = 80,
                    .far = 1500}};
  return {stage, {picture}};
}

}  // namespace

Products layerRotCubesModel() {
  return {model("layer_rot_cubes", {{"cubes", PictureKind::jpeg}}, 1.5f, layerRotCubes)};
}

}  // namespace vex
