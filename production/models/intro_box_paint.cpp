#include <algorithm>
#include <cmath>
#include <utility>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/geometry/pieces.h"
#include "production/image/filter.h"
#include "production/image/lettering.h"
#include "production/image/noise3.h"
#include "production/models/intro_box_parts.h"
#include "production/textures/palette.h"
#include "production/textures/title.h"

// Paint and baked light of the reliquary's world, and the burning title.

namespace vex::reliquary {

using namespace image;
using namespace geometry;

namespace {

const Colour4 warmKey{1.55f, 1.34f, 1.02f};
const Colour4 acidRim{0.46f, 0.66f, 0.15f};

// A dim vault, a little green light in its depth.
Colour4 vaultSky(const Vector& d) {
  const float back = std::pow(std::max(0.0f, 0.5f - 0.5f * d.z), 2.0f) * smoothStep(-0.2f, 0.3f, d.y);
  return mix(Colour4{0.03f, 0.03f, 0.036f}, Colour4{0.12f, 0.12f, 0.125f}, smoothStep(-0.4f, 1, d.y)) +
         acidRim * (0.5f * back);
}

BakeLook vaultLook(float reach) {
  BakeLook look;
  look.sky = vaultSky;
  look.lights = {{.towards = Vector(-0.65f, 0.95f, 0.8f), .size = 0.18f, .colour = warmKey},
                 {.towards = Vector(0.9f, 0.55f, -0.7f), .size = 0.2f, .colour = acidRim}};
  look.bounce = {0.03f, 0.035f, 0.03f};
  look.reach = reach;
  return look;
}

const Vector gaze = unit(Vector(0.05f, -0.22f, -1));

Vector mirrored(const Vector& normal) {
  return gaze - normal * (2 * dot(gaze, normal));
}

// A tall warm window at the left, which upright rounds catch.
float tallWindow(const Vector& normal) {
  const Vector r = mirrored(normal);
  const float side = dot(unit(Vector(r.x, 0, r.z + 1e-4f)), unit(Vector(-0.75f, 0, 0.66f)));
  return std::pow(std::max(0.0f, side), 24.0f) * smoothStep(0.85f, 0.4f, std::fabs(r.y));
}

// What polished metal mirrors to an eye before it: a warm window at the upper left, a slit of green at the
// right, a pale floor line.
Colour4 glint(const Vector& normal) {
  const Vector r = mirrored(normal);
  const float window = std::pow(std::max(0.0f, dot(r, unit(Vector(-0.55f, 0.75f, 0.6f)))), 9.0f);
  const float slit = std::pow(std::max(0.0f, dot(r, unit(Vector(0.9f, 0.25f, 0.2f)))), 14.0f);
  const float core = std::pow(window, 5.0f);  // where the window burns out
  const float line = std::exp(-std::fabs(r.y + 0.12f) * 9) * std::max(0.0f, r.z);
  return warmKey * (1.25f * window + 2.4f * core) + acidRim * (0.8f * slit) +
         Colour4{0.22f, 0.2f, 0.16f} * line;
}

// Height of the engraving on iron at a place of a plane, 0 to 1: stems that wind along and curl up in each
// bend.
float vine(float x, float y) {
  constexpr float rowHeight = 11, bend = 8.4f, swing = 4.3f;
  const float row = std::round(y / rowHeight), py = y - row * rowHeight, px = x + 0.5f * bend * row;
  const float phase = px / bend * pi;
  const float steep = std::hypot(1.0f, swing * pi / bend * std::cos(phase));
  const float stem = smoothStep(1.0f, 0.5f, std::fabs(py - swing * std::sin(phase)) / steep);
  const float cell = std::floor(px / bend);
  const float odd = std::fmod(std::fabs(cell), 2.0f) < 0.5f ? 1.0f : -1.0f;
  const float cx = px - (cell + 0.5f) * bend, cy = odd * py - 0.4f;
  const float radius = std::hypot(cx, cy);
  const float curl = std::sin(radius * 2.4f - std::atan2(cy, cx)) * smoothStep(3.9f, 3.1f, radius);
  return std::max(stem, smoothStep(0.35f, 0.85f, curl));
}

// Where a point of the casket lies in the plane of its wall or slope.
Uv planeOf(const Vector& p, const Vector& n) {
  return std::fabs(n.x) > std::max(std::fabs(n.z), 0.45f) ? Uv{p.z, p.y} : Uv{p.x, p.y};
}

Colour4 ironAt(const BakePoint& p) {
  const Uv at = planeOf(p.position, p.normal);
  const float e = 0.45f;
  const float cut = vine(at.u, at.v);
  const float slope = vine(at.u + e, at.v - e) - vine(at.u - e, at.v + e);
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.35f, 0, 4, 0.6f, 901);
  const float rust =
      smoothStep(0.15f, 0.75f, fractal(p.position * 0.06f, 0, 5, 0.6f, 902) + 0.5f * (1 - p.open));
  Colour4 metal = mix(Colour4{0.12f, 0.125f, 0.13f}, Colour4{0.20f, 0.20f, 0.20f}, grit);
  metal = mix(metal, Colour4{0.21f, 0.12f, 0.06f}, 0.55f * rust);
  metal = metal * (1 - 0.35f * cut) + gradient(brassRamp, 0.5f) * (0.55f * cut * (0.5f + 0.5f * grit));
  metal = metal + Colour4{0.3f, 0.29f, 0.27f} * std::max(0.0f, p.edge);
  const Vector rough =
      unit(p.normal + Vector(slope * 0.35f, slope * 0.35f, 0) + Vector(0.1f, 0.08f, 0) * (grit - 0.5f));
  const float relief = 1 + 0.55f * slope;
  return metal * p.light * relief + glint(rough) * (0.20f * p.open * (1 - 0.6f * rust));
}

Colour4 brassAt(const BakePoint& p) {
  // Rim and brim lie on each other while the light is baked; once the lid is up, both are lit from within.
  // Two grooves run round them.
  if (std::fabs(p.normal.y) > 0.7f && std::fabs(p.position.y - lidFoot) < 1.5f) {
    const float out = std::max(std::fabs(p.position.x) - halfWidth, std::fabs(p.position.z) - halfDepth);
    const float worn = 0.5f + 0.5f * fractal(p.position * 0.3f, 0, 4, 0.6f, 913);
    const float groove = std::min(std::fabs(out - 0.9f), std::fabs(out + 2.6f));
    const float relief = mix(0.35f, 1.0f, smoothStep(0.15f, 0.55f, groove));
    return (gradient(brassRamp, 0.34f + 0.12f * worn) + acidRim * (1.1f * smoothStep(3, -5, out))) * relief;
  }
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.5f, 0, 4, 0.6f, 911);
  const float stain = smoothStep(-0.1f, 0.7f, fractal(p.position * 0.09f, 0, 4, 0.55f, 912));
  const float deep = clamp01(1.25f - 1.5f * p.open + 0.5f * std::max(0.0f, -p.edge));
  Colour4 metal = gradient(brassRamp, 0.47f + 0.12f * grit - 0.16f * stain + 0.28f * std::max(0.0f, p.edge));
  metal = mix(metal, Colour4{0.06f, 0.085f, 0.05f}, 0.75f * deep);
  const Vector rough = unit(p.normal + Vector(0.22f, 0.2f, 0.1f) * (grit - 0.5f));
  const Colour4 mirror = glint(rough) + warmKey * (0.55f * tallWindow(rough));
  return metal * p.light + gradient(brassRamp, 0.82f) * mirror * (1.25f * (1 - 0.5f * stain) * (1 - deep));
}

// Green glass with a light of its own low down, as if something shone through.
Colour4 gemAt(const BakePoint& p) {
  const float rim = 1 - std::fabs(dot(p.normal, gaze));
  const float window = glint(p.normal).r;
  const float within = smoothStep(0.7f, -0.8f, p.normal.y);
  return gradient(acidRamp, 0.24f + 0.42f * within * (1 - rim)) +
         Colour4{0.9f, 0.95f, 0.85f} * (0.9f * window) + gradient(acidRamp, 0.3f) * p.light * 0.3f;
}

// The lid is quilted in soft pillows with a stud at each crossing of the seams, lit from the hinge.
Colour4 quiltAt(const BakePoint& p) {
  const Uv at = planeOf(p.position, p.normal);
  constexpr float apart = 20;
  const auto fromMiddle = [](float place) { return place / apart - std::round(place / apart); };
  const float one = fromMiddle(at.u + at.v), other = fromMiddle(at.u - at.v);
  const float height = std::cos(pi * one) * std::cos(pi * other);
  const float slope = std::sin(pi * one) * std::cos(pi * other) - std::cos(pi * one) * std::sin(pi * other);
  const float away = (p.position.z - lidPivot.z) / (2 * halfDepth);
  const float light = mix(0.72f, 0.12f, clamp01(away)) * (0.3f + 0.7f * std::sqrt(std::max(0.0f, height))) *
                      (1 + 0.5f * slope);
  const float stud =
      smoothStep(1.3f, 0.7f, apart * std::hypot(0.5f - std::fabs(one), 0.5f - std::fabs(other)));
  return gradient(acidRamp, light) + gradient(brassRamp, 0.7f * stud * (1 - 0.6f * away));
}

// A well that burns in the middle of its floor; the light climbs the walls and is lost.
Colour4 wellAt(const BakePoint& p) {
  const float swirl = 0.5f + 0.5f * fractal(warp(p.position * 0.07f, 0, 0.8f, 921), 0, 4, 0.55f, 922);
  const float core = std::exp(-std::pow(p.position.x / 26, 2.0f) - std::pow(p.position.z / 13, 2.0f));
  const float climb = std::exp(-(p.position.y - floorTop) / 26 - std::pow(p.position.x / 34, 2.0f));
  const bool floor = p.position.y < floorTop;
  return gradient(acidRamp, floor ? 0.16f + 0.95f * core * (0.45f + 0.55f * swirl)
                                  : 0.22f + 0.95f * climb * (0.4f + 0.6f * swirl));
}

// Deep in the lock: brightest in the middle, so that its edge throws a shadow.
Colour4 keyholeAt(const BakePoint& p) {
  const float x = p.position.x - lockPivot.x, y = p.position.y - lockPivot.y;
  return gradient(acidRamp, 0.12f + 0.9f * std::exp(-x * x / 2.2f - (y - 0.6f) * (y - 0.6f) / 5.5f));
}

Colour4 insideAt(const BakePoint& p) {
  if (p.position.y > lidFoot) return quiltAt(p);
  return p.position.z > halfDepth ? keyholeAt(p) : wellAt(p);
}

Colour4 stoneAt(const BakePoint& p) {
  const float radius = std::hypot(p.position.x, p.position.z / 0.74f);
  const float grain = 0.5f + 0.5f * fractal(p.position * 0.12f, 0, 5, 0.6f, 931);
  const float vein = 1 - std::fabs(fractal(warp(p.position * 0.022f, 0, 0.6f, 932), 0, 4, 0.5f, 933));
  const float soot = smoothStep(0.1f, 0.8f, fractal(p.position * 0.03f, 0, 4, 0.55f, 934));
  const float wet = smoothStep(40, 0, p.position.y) * smoothStep(100, 160, radius);
  Colour4 marble = mix(Colour4{0.26f, 0.26f, 0.25f}, Colour4{0.46f, 0.45f, 0.41f}, grain);
  marble = marble + gradient(acidRamp, 0.42f) * (0.5f * std::pow(vein, 14.0f));
  // A frieze is carved round the waist, a whole number of bends.
  const float way = std::atan2(p.position.x, p.position.z / plinthDepth) / (2 * pi) * 16.8f * 18 / 0.62f;
  const float band = smoothStep(36, 38.5f, p.position.y) * smoothStep(53.5f, 51, p.position.y);
  const auto carved = [&](float right, float up) {
    return vine((way + right) * 0.62f, (p.position.y + up - 45) * 0.62f + 10.5f);
  };
  const float carving = band * (carved(0.7f, -0.7f) - carved(-0.7f, 0.7f));
  marble = marble * (1 + 0.6f * carving) * (1 - 0.25f * band * carved(0, 0));
  // The steps are of blocks, and the middle one is fluted in front.
  const float turn = std::atan2(p.position.x, p.position.z / plinthDepth) / (2 * pi);
  const float blocks = turn * 20 + (radius > 123.5f ? 0.5f : 0), cut = std::fabs(blocks - std::round(blocks));
  if (radius > 97 && p.position.y < 27)
    marble = marble * mix(0.35f, 1.0f, smoothStep(0.3f, 1.5f, cut * 2 * pi * radius / 20));
  if (std::fabs(p.normal.y) < 0.5f && std::fabs(p.position.y - 14) < 3)
    marble = marble * (1 + 0.3f * std::sin(2 * pi * 40 * turn));
  marble = marble * (1 - 0.5f * soot) * (1 - 0.3f * wet);
  marble = marble + Colour4{0.16f, 0.155f, 0.14f} * std::max(0.0f, p.edge);
  return marble * p.light + glint(p.normal) * (0.14f * p.open);
}

// Far stone: dark, greener towards the depth and the foot.
Colour4 farStoneAt(const BakePoint& p) {
  const float grain = 0.5f + 0.5f * fractal(p.position * 0.04f, 0, 4, 0.6f, 941);
  const float mist = smoothStep(160, 0, p.position.y);
  const float fade = smoothStep(640, 200, p.position.y);
  const Colour4 rock = mix(Colour4{0.20f, 0.20f, 0.19f}, Colour4{0.40f, 0.40f, 0.36f}, grain);
  // Dark faces; the light behind the choir creeps around their edges.
  const Vector inwards = unit(Vector(-p.position.x, 0, -p.position.z));
  const float edge =
      std::pow(1 - std::fabs(dot(p.normal, inwards)), 3.0f) * smoothStep(0.9f, 0.3f, std::fabs(p.normal.y));
  // Laid in courses, each stone of a shade of its own.
  constexpr float courseHeight = 25;
  const float course = p.position.y / courseHeight, row = std::floor(course);
  const float joint = smoothStep(0.4f, 2.0f, std::fabs(course - std::round(course)) * courseHeight);
  const float stone =
      0.72f + 0.5f * hashUnit(static_cast<int>(row), static_cast<int>(p.position.x / 40), 942);
  return (rock * (stone * mix(0.4f, 1.0f, joint)) * (p.light * p.light * 0.46f + p.light * 0.1f) +
          gradient(acidRamp, 0.66f) * (0.5f * edge * p.open * mix(0.6f, 1.0f, joint)) +
          gradient(acidRamp, 0.1f + 0.1f * mist) * (0.06f + 0.3f * mist)) *
             fade +
         ink * 0.6f;
}

// Letters of cast bronze, their faces dark, hammered and scratched, their bevels polished; they hang in the
// light that stands in the open box.
Colour4 letterAt(const BakePoint& p) {
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.12f, 0, 5, 0.6f, 971);
  const float scratch = smoothStep(
      0.86f, 0.98f, 1 - std::fabs(fractal(warp(p.position * 0.03f, 0, 0.5f, 972), 0, 4, 0.5f, 973)));
  const float height = clamp01((p.position.y - titleMiddle.y) / 84 + 0.5f);  // of the letters
  const float below = std::pow(clamp01(0.5f - 0.5f * p.normal.y), 2.0f) * (1.1f - 0.7f * height);
  const Colour4 fromBox = gradient(acidRamp, 0.62f) * below;
  if (p.normal.z > 0.93f) {  // a dark face
    const Colour4 metal = gradient(brassRamp, 0.24f + 0.18f * grit + 0.12f * height - 0.16f * scratch);
    return metal * p.light * 0.6f + fromBox * 0.3f +
           Colour4{0.6f, 0.52f, 0.34f} * std::max(0.0f, p.edge) * 0.5f;
  }
  if (p.normal.z > 0.25f) {  // a bevel, which glows a little where no light comes to it
    const Colour4 glow = gradient(brassRamp, 0.68f) * 0.34f;
    return gradient(brassRamp, 0.62f + 0.14f * grit) * p.light + glow + glint(p.normal) * 0.9f +
           fromBox * 0.9f;
  }
  return gradient(brassRamp, 0.36f + 0.1f * grit) * p.light * 0.8f + glint(p.normal) * 0.3f + fromBox * 0.6f;
}

Colour4 colourAt(const BakePoint& p) {
  switch (p.part % skins) {
    case iron:
      return ironAt(p);
    case brass:
      return brassAt(p);
    case gem:
      return gemAt(p);
    case inside:
      return insideAt(p);
    case letter:
      return letterAt(p);
    default:
      return stoneAt(p);
  }
}

Colour4 farColourAt(const BakePoint& p) {
  if (p.part % skins == stone) return farStoneAt(p);
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.3f, 0, 3, 0.6f, 951);
  return Colour4{0.10f, 0.10f, 0.105f} * p.light * (0.6f + 0.6f * grit) + glint(p.normal) * 0.12f;
}

// Paints what stands once, and of each repeated form the first; then sets the copies.
PaintedAssembly painted(const Assembly& assembly, const Surface& shadowing, const BakeLook& look, int side,
                        const Settings& settings, float wear, Colour4 (*colour)(const BakePoint&)) {
  Surface models = withoutMapping(assembly.single);
  for (std::size_t i = 0; i < assembly.repeated.size(); ++i) {
    const Copies& copies = assembly.repeated[i];
    append(models, placed(withoutMapping(copies.form), copies.places[0]),
           static_cast<int>(i + 1) * skins + copies.skin);
  }
  models = mappedAtlas(
      models, {.charts = Charts::byNormals, .side = 512, .bleed = 3, .density = [](const Triangle& triangle) {
                 const int skin = triangle.part % skins;
                 return skin == inside ? 0.45f : triangle.part >= skins ? 1.3f : 1.0f;
               }});
  PaintedAssembly result{
      selected(models, [](const Triangle& t) { return t.part < skins; }),
      bake(models, rayTree(shadowing), look,
           {.side = settings.side(side), .lit = !settings.draft, .wearWidth = wear, .paint = colour})};
  for (std::size_t i = 0; i < assembly.repeated.size(); ++i) {
    const Copies& copies = assembly.repeated[i];
    const Surface form = partOf(models, static_cast<int>(i + 1) * skins + copies.skin);
    for (const Placement& place : copies.places)
      append(result.surface, placed(form, inverse(copies.places[0]) >> place));
  }
  return result;
}

}  // namespace

PaintedAssembly paintedCasket(const Assembly& assembly, const Surface& shadowing, const Settings& settings,
                              int side) {
  BakeLook look = vaultLook(30);
  look.rays = 49;
  return painted(assembly, shadowing, look, side, settings, 0.7f, colourAt);
}

PaintedAssembly paintedStone(const Assembly& assembly, const Surface& shadowing, const Settings& settings,
                             int side) {
  BakeLook look = vaultLook(90);
  look.rays = 36;
  return painted(assembly, shadowing, look, side, settings, 2.5f,
                 assembly.repeated.empty() ? colourAt : farColourAt);
}

// --- The title

namespace {

// The letters in the middle of a field `width` wide and half as high.
Lettering titleOn(float width) {
  Lettering text = titleLetters();
  const float height = width / 2;
  const float scale =
      std::min(width * 0.80f / (text.right - text.left), height * 0.62f / (text.bottom - text.top));
  text = placed(std::move(text), scale, scale, 0, 0);
  const float middleX = (text.left + text.right) / 2, middleY = (text.top + text.bottom) / 2;
  return placed(std::move(text), 1, 1, width / 2 - middleX, height / 2 - middleY);
}

// Distance to the letters in texels, negative inside, on a picture `width` wide and half as high.
Field titleDistance(int width) {
  return distanceTo(titleOn(static_cast<float>(width)), width, width / 2);
}

// Closed outlines of the title about its middle in the world's units, y up, their closest points taken
// together.
std::vector<Outline> titleOutlines() {
  constexpr float closest = 2.2f;
  std::vector<Outline> outlines;
  const OutlineEdge* before = nullptr;
  const Lettering text = titleOn(titleWidth);
  for (const OutlineEdge& edge : text.edges) {
    if (!before || before->x1 != edge.x0 || before->y1 != edge.y0) outlines.emplace_back();
    const PlanePoint point{edge.x0 - titleWidth / 2, titleHeight / 2 - edge.y0};
    Outline& outline = outlines.back();
    if (outline.empty() || std::hypot(point.x - outline.back().x, point.y - outline.back().y) > closest)
      outline.push_back(point);
    before = &edge;
  }
  return outlines;
}

struct Extent {
  float least, most;
};
Extent across(const Outline& outline) {
  const auto [least, most] = std::minmax_element(
      outline.begin(), outline.end(), [](const PlanePoint& p, const PlanePoint& q) { return p.x < q.x; });
  return {least->x, most->x};
}

// Turned over if need be: bodies run counter-clockwise, holes clockwise.
Outline running(Outline outline, bool counterClockwise) {
  float area = 0;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const PlanePoint &p = outline[i], &q = outline[(i + 1) % outline.size()];
    area += p.x * q.y - p.y * q.x;
  }
  if ((area > 0) != counterClockwise) std::reverse(outline.begin(), outline.end());
  return outline;
}

}  // namespace

std::vector<Surface> letterBodies() {
  constexpr float thick = 16, front = -5;  // behind the middle of the title
  // The hairline of the e, between its eye and its mouth, has to bear two bevels.
  constexpr float bevel = 3.2f, bevelWithEye = 2.3f;
  constexpr PlanePoint fromHairline{-1, 0.75f};
  std::vector<Outline> outlines = titleOutlines();
  std::sort(outlines.begin(), outlines.end(),
            [](const Outline& p, const Outline& q) { return across(p).least < across(q).least; });
  std::vector<std::vector<Outline>> letters;  // each a body and its holes
  for (const Outline& outline : outlines) {
    const bool hole = !letters.empty() && across(outline).most < across(letters.back().front()).most;
    if (!hole) letters.emplace_back();
    letters.back().push_back(running(outline, !hole));
    if (hole)
      for (PlanePoint& point : letters.back().back()) point.x += fromHairline.x, point.y += fromHairline.y;
  }
  std::vector<Surface> bodies;
  for (const std::vector<Outline>& shape : letters) {
    const Surface body = bent(
        withoutBack(extrusion(shape, thick, shape.size() > 1 ? bevelWithEye : bevel)), [](const Vector& p) {
          const float aside = 2 * p.x / titleWidth;  // hollow towards the viewer, as the veils are
          return titleMiddle + p + Vector(0, 0, front + 12 * aside * aside);
        });
    // Where a bevel meets itself it leaves a triangle without area.
    const Surface solid = compacted(selected(
        body, [&body](const Triangle& triangle) { return areaVector(body, triangle).length() > 0.02f; }));
    bodies.push_back(withPart(withoutMapping(solid), letter));
  }
  return bodies;
}

namespace {

// Light in the gaps between the pieces into which a plane of cells of size 1 breaks; 1 in their middle.
float cracks(float x, float y) {
  const float cellX = std::floor(x), cellY = std::floor(y);
  float nearest = 9, second = 9;
  for (float j = -1; j <= 1; ++j)
    for (float i = -1; i <= 1; ++i) {
      const int cx = static_cast<int>(cellX + i), cy = static_cast<int>(cellY + j);
      const float d =
          std::hypot(cellX + i + hashUnit(cx, cy, 966) - x, cellY + j + hashUnit(cx, cy, 967) - y);
      if (d < nearest) {
        second = nearest;
        nearest = d;
      } else {
        second = std::min(second, d);
      }
    }
  const float gap = second - nearest;
  return std::exp(-gap / 0.035f) + 0.3f * std::exp(-gap / 0.16f);
}

}  // namespace

Canvas veilPicture(int veil, const Settings& settings) {
  const int width = settings.side(512);
  const Field distance = titleDistance(width);
  const float unit = static_cast<float>(width) / 512;
  return paint(width, width / 2, [&, veil](float u, float v) {
    const float x = u * 2, y = v;
    const float wx = fractal(x * 4, y * 4, 0, 4, 0.55f, 960), wy = fractal(x * 4, y * 4, 0, 4, 0.55f, 961);
    const auto at = [&](float du, float dv) {
      return sample(distance, u + du, v + dv, EdgeMode::clamp) / unit;
    };
    float light = 0;
    switch (veil) {
      case 0: {  // letters of light with a burning rim; solid ones hide all but the rim
        const float d = at(0.004f * wx, 0.008f * wy);
        const float strand = 1 - std::fabs(fractal(x * 5 + 0.9f * wx, y * 3 + 0.6f * wy, 0, 5, 0.55f, 962));
        light = 1.0f * std::exp(-std::fabs(d) / 1.7f) + 0.2f * std::exp(-std::max(d, 0.0f) / 9) +
                smoothStep(1, -2, d) * (0.06f + 0.85f * std::pow(strand, 7.0f));
        break;
      }
      case 1: {  // cracks through the letters, through which their metal glows
        const float d = at(0, 0);
        light = smoothStep(0.5f, -0.8f, d) * cracks(x * 5 + 0.12f * wx, y * 5 + 0.12f * wy);
        break;
      }
      default: {  // a haze of light that licks upwards; the letters stay dark in it
        for (int i = 0; i < 7; ++i) {
          const float rise = static_cast<float>(i) / 7;
          light +=
              0.17f * (1 - rise) *
              std::exp(-std::max(0.0f, at(0.02f * wx * rise, 0.16f * rise + 0.03f * wy)) / (7 + 12 * rise));
        }
        light *= mix(0.05f, 1.0f, smoothStep(-6, 1, at(0, 0)));
        break;
      }
    }
    const float inside = borderFade(u, v, 0.08f);
    return gradient(veil == 1 ? brassRamp : acidRamp, clamp01(light) * inside);
  });
}

Surface spilledOn(const Surface& stone) {
  const Vector source = titleMiddle + Vector(0, -15, 34);
  const std::vector<Vector> normals = pointNormals(stone);
  Surface lit;
  lit.mapped = true;
  std::vector<float> levels;
  for (std::size_t i = 0; i < stone.points.size(); ++i) {
    const Vector& p = stone.points[i];
    const Vector normal = unit(normals[i]), way = source - p;
    const float level = 2.6f * std::max(0.0f, std::exp(-way.length() / 330) * dot(normal, unit(way)) - 0.19f);
    const bool table = p.y > tableTop && p.y < floorTop;
    const float aside =
        std::hypot(std::max(0.0f, std::fabs(p.x) - halfWidth), std::max(0.0f, std::fabs(p.z) - halfDepth));
    levels.push_back(level / (1 + level) * (table ? smoothStep(0, 40, aside) : 1.8f));  // it shades its table
    addPoint(lit, p + normal * 0.4f);
  }
  for (Triangle triangle : stone.triangles) {
    float most = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto point = static_cast<std::size_t>(triangle.points[i]);
      const Vector& p = stone.points[point];
      triangle.uv[i] = {0.02f + 0.9f * std::min(levels[point], 1.0f), (p.y + p.x - p.z) / 120};
      most = std::max(most, levels[point]);
    }
    if (most > 0.24f) lit.triangles.push_back(triangle);  // what is darker is not seen
  }
  return compacted(lit);
}

// Uneven as stone is.
Canvas spillPicture(const Settings& settings) {
  const int side = settings.side(128);
  return paint(side, side, [](float u, float v) {
    const float grain = 0.5f + 0.5f * fractal(u * 6, v * 12, 12, 4, 0.6f, 965);
    return gradient(acidRamp, u * (0.72f + 0.5f * grain));
  });
}

std::vector<Vector> placesAlongTitle(int count) {
  constexpr int width = 128;
  const Field distance = titleDistance(width);
  struct Spot {
    float x, y, inside;
  };
  std::vector<Spot> candidates, chosen;
  for (int y = 0; y < width / 2; ++y)
    for (int x = 0; x < width; ++x)
      if (distance.at(x, y) < -0.6f)
        candidates.push_back({(static_cast<float>(x) + 0.5f) / width, (static_cast<float>(y) + 0.5f) / width,
                              -distance.at(x, y)});
  // Each time the place farthest from all that are taken, rather in the middle of a stroke than at its edge.
  while (static_cast<int>(chosen.size()) < count) {
    const Spot* best = &candidates.front();
    float most = -1;
    for (const Spot& spot : candidates) {
      float near = 1;
      for (const Spot& taken : chosen) near = std::min(near, std::hypot(spot.x - taken.x, spot.y - taken.y));
      const float worth = near * std::sqrt(spot.inside);
      if (worth > most) most = worth, best = &spot;
    }
    chosen.push_back(*best);
  }
  std::sort(chosen.begin(), chosen.end(), [](const Spot& p, const Spot& q) { return p.x < q.x; });
  std::vector<Vector> places;
  for (const Spot& spot : chosen)
    places.push_back(titleMiddle + Vector((spot.x - 0.5f) * titleWidth, (0.25f - spot.y) * titleWidth, 8));
  return places;
}

}  // namespace vex::reliquary
