#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

#include "production/geometry/forms.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// Pale filaments all around a camera that sees nearly everything: it moves within about 90 units of the
// middle and looks out to 175. What is near becomes long sweeping strokes. Seven of them spell the name,
// once.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

constexpr int strands = 46;
constexpr int knots = 7;    // of each strand
constexpr int pieces = 80;  // along it

float chance(int strand, int what) {
  return hashUnit(strand, what, 41);
}

// A drifting walk around the middle, pushed away from where the camera is.
std::vector<Vector> strandPath(int strand) {
  const float start = chance(strand, 0) * 2 * pi, rise = (chance(strand, 1) - 0.5f) * 2.6f;
  const float lean = (chance(strand, 2) - 0.5f) * 1.8f, sweep = 1.6f + 2.4f * chance(strand, 3);
  std::vector<Vector> path;
  for (int i = 0; i < knots; ++i) {
    const float t = static_cast<float>(i) / (knots - 1), turn = start + sweep * t;
    const Vector wander(gradientNoise(Vector(t * 3.1f, static_cast<float>(strand), 0.5f), 0, 51),
                        gradientNoise(Vector(t * 3.1f, static_cast<float>(strand), 7.5f), 0, 52),
                        gradientNoise(Vector(t * 3.1f, static_cast<float>(strand), 3.5f), 0, 53));
    const float radius = 120 + 130 * chance(strand, 4);
    path.emplace_back(radius * std::cos(turn), radius * (rise * 0.5f + lean * (t - 0.5f)),
                      radius * std::sin(turn));
    path.back() += wander * 80;
  }
  // Softly, so that no bend is sharp.
  for (Vector& p : path) {
    const float away = p.length();
    p *= (away + 70 * std::exp(-away / 80)) / away;
  }
  return smoothPath(path, pieces);
}

// --- The name, which some strands spell for the camera at scene time 0 and for no other

struct Letter {
  float left;                    // on the screen, -1 to 1
  std::vector<PlanePoint> line;  // in heights of an x, from the foot upwards
};

const std::vector<PlanePoint> a{{0.8f, 0.72f}, {0.62f, 0.95f}, {0.36f, 1},     {0.1f, 0.82f}, {0, 0.5f},
                                {0.1f, 0.18f}, {0.36f, 0},     {0.62f, 0.05f}, {0.8f, 0.28f}, {0.8f, 0.62f},
                                {0.8f, 1},     {0.8f, 0.5f},   {0.8f, 0}};
// A stem whose upper part is given, and the arch that springs from its foot.
std::vector<PlanePoint> arched(std::vector<PlanePoint> stem) {
  stem.insert(
      stem.end(),
      {{0, 0.5f}, {0, 0}, {0, 0.4f}, {0.1f, 0.82f}, {0.4f, 1}, {0.68f, 0.82f}, {0.74f, 0.45f}, {0.74f, 0}});
  return stem;
}

const Letter name[] = {
    {-0.605f, arched({{0, 1.64f}, {0, 1.2f}})},
    {-0.413f, a},
    {-0.198f, {{0, 1.64f}, {0, 1.2f}, {0, 0.6f}, {0, 0}}},
    {-0.084f, {{0, 1}, {0.22f, 0.5f}, {0.42f, 0.02f}, {0.46f, 0.02f}, {0.66f, 0.5f}, {0.88f, 1}}},
    {0.12f, a},
    {0.334f, arched({{0, 1}})},
    {0.524f,
     {{0.03f, 0.53f},
      {0.4f, 0.53f},
      {0.82f, 0.53f},
      {0.72f, 0.84f},
      {0.42f, 1},
      {0.1f, 0.82f},
      {0, 0.5f},
      {0.1f, 0.18f},
      {0.42f, 0},
      {0.76f, 0.16f}}},
};

const Vector nameEye = Vector(std::cos(0.3f), std::sin(0.3f), std::cos(0.3f)) * 50;

// What that camera sees at a place of the screen, `depth` away; x from -1 to 1, y upwards.
Vector seen(float x, float y, float depth) {
  const Vector ahead = unit(Vector(100, 0, 100) - nameEye), right = unit(cross(ahead, Vector(0, 1, 0)));
  const float reach = std::tan(0.375f * 179.95f * pi / 180);
  return nameEye + (ahead + right * (x * reach * 16 / 9) + cross(right, ahead) * (y * reach)) * depth;
}

// It comes from above the picture and leaves below.
std::vector<Vector> letterPath(const Letter& letter, int strand) {
  constexpr float width = 0.108f, height = 0.177f, foot = -0.057f;
  const auto at = [&](PlanePoint p, float depth) {
    return seen(letter.left + p.x * width, foot + p.y * height, depth);
  };
  const float lean = chance(strand, 8) - 0.5f;
  const PlanePoint first = letter.line.front(), last = letter.line.back();
  std::vector<Vector> path{at({first.x + 5 * lean, first.y + 9}, 150),
                           at({first.x + lean, first.y + 2.5f}, 80)};
  for (std::size_t i = 0; i < letter.line.size(); ++i)
    path.push_back(at(letter.line[i], 44 + 14 * gradientNoise(static_cast<float>(i) * 0.35f,
                                                              static_cast<float>(strand) + 0.5f, 0, 54)));
  path.push_back(at({last.x - lean, last.y - 2.5f}, 80));
  path.push_back(at({last.x - 5 * lean, last.y - 9}, 150));
  return smoothPath(path, 2 * pieces);
}

// Two bands that cross in the strand, so that it is a thread of light from all sides; `half` is half their
// width on the way along it, in units at 150 from `eye`, and as much more as it is farther away.
Surface thread(const std::vector<Vector>& path, const Vector& eye,
               const std::function<float(float t)>& half) {
  const auto last = static_cast<int>(path.size()) - 1;
  Surface both;
  for (const bool upright : {false, true})
    append(both, sheet(1, last, [&](float s, float t) {
             const int i = static_cast<int>(std::lround(t * static_cast<float>(last)));
             const Vector gaze = path[static_cast<std::size_t>(i)] - eye;
             const Vector along = path[static_cast<std::size_t>(std::min(i + 1, last))] -
                                  path[static_cast<std::size_t>(std::max(i - 1, 0))];
             const Vector across = unit(cross(along, gaze));
             return eye + gaze +
                    (upright ? unit(cross(along, across)) : across) *
                        ((2 * s - 1) * half(t) * gaze.length() / 150);
           }));
  return both;
}

// Half the stroke of a broad pen that is held aslant, in `thread`'s units: a hair along its edge, full across
// it. Less towards the sides of so wide a view, which draws them out.
std::function<float(float)> broadPen(const std::vector<Vector>& path) {
  return [&path](float t) {
    constexpr float hair = 4.2f, full = 13;
    const auto last = static_cast<int>(path.size()) - 1,
               i = static_cast<int>(std::lround(t * static_cast<float>(last)));
    const auto gaze = [&](int k) {
      return unit(path[static_cast<std::size_t>(std::clamp(k, 0, last))] - nameEye);
    };
    const Vector ahead = gaze(i), right = unit(cross(ahead, Vector(0, 1, 0))),
                 along = gaze(i + 1) - gaze(i - 1);
    const float x = dot(along, right), y = dot(along, cross(right, ahead));
    const float across = std::fabs(0.6f * x - 0.8f * y) / std::max(1e-6f, std::hypot(x, y));
    const float inwards = std::max(0.1f, dot(ahead, unit(Vector(100, 0, 100) - nameEye)));
    return mix(hair, full, across) * std::pow(inwards, 1.7f);
  };
}

constexpr float letterStart = 0.16f;  // v at a letter's first point and, from the other end, at its last

// Along a strand (v) the light comes and goes; both ends are dark. Across (u) it has a core and a glow. The
// left half is for the letters, the right one, dimmer, for all the others.
Canvas strandPicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side / 2, side, [](float u, float v) {
    const bool letter = u < 0.5f;
    const float x = 4 * (letter ? u : u - 0.5f) - 1;
    const float glow = 0.3f * std::pow(clamp01(1 - x * x), 3.0f);
    const float across = 0.7f * std::exp(-x * x * 26) + glow;
    const float pulse = 0.5f + 0.5f * fractal(0.4f, v * 9, 0, 3, 0.55f, 61);
    if (letter)
      return gradient(boneRamp, (0.9f * smoothStep(0.62f, 0.36f, std::fabs(x)) + glow) *
                                    smoothStep(0.70f * letterStart, 1.02f * letterStart, std::min(v, 1 - v)));
    const float ends = smoothStep(0.01f, 0.2f, v) * smoothStep(0.99f, 0.8f, v);
    return gradient(boneRamp, 0.4f * across * ends * (0.55f + 0.45f * pulse));
  });
}

// Its half of the picture.
Surface mapped(Surface strand, bool letter) {
  for (Triangle& triangle : strand.triangles)
    for (Uv& at : triangle.uv) at.u = 0.5f * at.u + (letter ? 0.0f : 0.5f);
  return strand;
}

// The way to the letter and from it, two of its pieces each, lies where the picture is dark.
Surface letterThread(const Letter& letter, int strand) {
  const std::vector<Vector> path = letterPath(letter, strand);
  Surface made = mapped(thread(path, nameEye, broadPen(path)), true);
  const float way = 2 / static_cast<float>(letter.line.size() + 3);
  for (Triangle& triangle : made.triangles)
    for (Uv& at : triangle.uv) {
      const float end = std::min(at.v, 1 - at.v);
      const float moved =
          end < way ? end * letterStart / way : mix(letterStart, 0.5f, (end - way) / (0.5f - way));
      at.v = at.v < 0.5f ? moved : 1 - moved;
    }
  return made;
}

Model layerWide(const Settings& settings) {
  Surface all;
  for (int strand = 0; strand < strands; ++strand) {
    const float thick = 2 + 5 * chance(strand, 5) * chance(strand, 6) * chance(strand, 7);
    append(all, mapped(thread(strandPath(strand), Vector(0, 0, 0),
                              [&](float t) { return thick * (0.25f + 0.75f * std::sin(pi * t)); }),
                       false));
  }
  for (int i = 0; i < static_cast<int>(std::size(name)); ++i) append(all, letterThread(name[i], strands + i));

  Stage stage;
  stage.materials = {{.name = "strand",
                      .texture = "layer_wide",
                      .twoSided = true,
                      .diffuse = {0.5f, 0.5f, 0.5f},
                      .ambient = {0.75f, 0.75f, 0.75f}}};
  stage.meshes = {{.name = "strands", .surface = all, .material = "strand"}};
  stage.lights = {{.name = "omni01", .position = Vector(0, 0, 0)}};
  stage.cameras = {{.name = "camera01",
                    .position = Vector(50, 0, 50),
                    .target = Vector(100, 0, 100),
                    .fieldDegrees = 120,
                    .far = 2000}};
  return {stage, {strandPicture(settings)}};
}

}  // namespace

Products layerWideModel() {
  return {model("layer_wide", {{"layer_wide", PictureKind::jpeg}}, 0.2f, layerWide)};
}

}  // namespace vex
