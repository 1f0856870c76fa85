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
// middle and looks out to 175. What is near becomes long sweeping strokes. Some of them spell the name,
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

// A stroke of the pen, which a strand of its own draws.
struct Stroke {
  float left;                    // of its letter on the screen, -1 to 1
  std::vector<PlanePoint> line;  // in heights of an x
};

constexpr float atH = -0.605f, atA = -0.413f, atL = -0.198f, atV = -0.084f, atSecondA = 0.12f, atN = 0.334f,
                atE = 0.524f;

// The bowl of an a, from its stem around and back to it.
const std::vector<PlanePoint> bowl{{0.8f, 0.70f},  {0.66f, 0.93f}, {0.4f, 1},      {0.12f, 0.84f}, {0, 0.5f},
                                   {0.12f, 0.16f}, {0.4f, 0},      {0.66f, 0.07f}, {0.8f, 0.30f}};
const std::vector<PlanePoint> shoulder{{0.02f, 0.44f}, {0.12f, 0.80f}, {0.42f, 1},
                                       {0.70f, 0.82f}, {0.76f, 0.45f}, {0.76f, 0}};

std::vector<PlanePoint> stem(float x, float top) {
  return {{x, top}, {x, 0.66f * top}, {x, 0.33f * top}, {x, 0}};
}

const Stroke name[] = {
    {atH, stem(0, 1.64f)},
    {atH, shoulder},
    {atA, bowl},
    {atA, stem(0.82f, 1)},
    {atL, stem(0, 1.64f)},
    {atV, {{0, 1}, {0.22f, 0.5f}, {0.4f, 0.06f}, {0.44f, 0}, {0.48f, 0.06f}, {0.66f, 0.5f}, {0.88f, 1}}},
    {atSecondA, bowl},
    {atSecondA, stem(0.82f, 1)},
    {atN, stem(0, 1)},
    {atN, shoulder},
    {atE,
     {{0.03f, 0.53f},
      {0.4f, 0.53f},
      {0.82f, 0.53f},
      {0.72f, 0.84f},
      {0.42f, 1},
      {0.1f, 0.82f},
      {0, 0.5f},
      {0.1f, 0.18f},
      {0.42f, 0},
      {0.78f, 0.18f}}},
};

const Vector nameEye = Vector(std::cos(0.3f), std::sin(0.3f), std::cos(0.3f)) * 50;

// What that camera sees at a place of the screen, `depth` away; x from -1 to 1, y upwards.
Vector seen(float x, float y, float depth) {
  const Vector ahead = unit(Vector(100, 0, 100) - nameEye), right = unit(cross(ahead, Vector(0, 1, 0)));
  const float reach = std::tan(0.375f * 179.95f * pi / 180);
  return nameEye + (ahead + right * (x * reach * 16 / 9) + cross(right, ahead) * (y * reach)) * depth;
}

constexpr int tailPoints = 2;  // of a strand, before its stroke and after it

// How much of the way along a strand lies before its stroke, and as much after it.
float tailOf(const Stroke& stroke) {
  return tailPoints / static_cast<float>(stroke.line.size() + 2 * tailPoints - 1);
}

// It comes from above the picture in the direction in which the pen sets out, and leaves below. Neighbours
// lie at even depths, so that a stroke leans, but stays whole, when it is seen from elsewhere.
std::vector<Vector> strokePath(const Stroke& stroke, int strand) {
  constexpr float width = 0.108f, height = 0.177f, foot = -0.057f;
  const auto at = [&](float x, float y, float depth) {
    return seen(stroke.left + x * width, foot + y * height, depth);
  };
  const float lean = chance(strand, 8) - 0.5f;
  const auto tail = [](PlanePoint end, PlanePoint inwards) {
    const float x = end.x - inwards.x, y = end.y - inwards.y, far = std::hypot(x, y);
    return PlanePoint{end.x + 0.4f * x / far, end.y + 0.4f * y / far};
  };
  const std::vector<PlanePoint>& line = stroke.line;
  const PlanePoint in = tail(line[0], line[1]), out = tail(line.back(), line[line.size() - 2]);
  constexpr float depth = 44;
  std::vector<Vector> path{at(in.x + 3 * lean, in.y + 9, 1.4f * depth), at(in.x, in.y, depth)};
  for (std::size_t i = 0; i < line.size(); ++i)
    path.push_back(at(
        line[i].x, line[i].y,
        depth + 9 * gradientNoise(static_cast<float>(i) * 0.2f, static_cast<float>(strand) + 0.5f, 0, 54)));
  path.push_back(at(out.x, out.y, depth));
  path.push_back(at(out.x - 3 * lean, out.y - 9, 1.4f * depth));
  return smoothPath(path, 2 * pieces);
}

// One band that faces `eye`, or two that cross in the strand, so that it is a thread of light from all sides;
// `half` is half their width on the way along it, in units at 150 from `eye`, and as much more as it is
// farther away.
enum class Bands { one, crossed };
Surface thread(const std::vector<Vector>& path, const Vector& eye, Bands bands,
               const std::function<float(float t)>& half) {
  const auto last = static_cast<int>(path.size()) - 1;
  Surface both;
  for (const bool upright : {false, true}) {
    if (upright && bands == Bands::one) break;
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
  }
  return both;
}

// Half the stroke of a broad pen that is held aslant, in `thread`'s units: a hair along its edge, full across
// it. Less towards the sides of so wide a view, which draws them out.
std::function<float(float)> broadPen(const std::vector<Vector>& path) {
  return [&path](float t) {
    constexpr float hair = 5, full = 12;
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
    if (letter) {
      const float end = std::min(v, 1 - v);
      const float light = mix(0.22f * smoothStep(0, 0.5f * letterStart, end), 1.0f,
                              smoothStep(0.86f * letterStart, 1.02f * letterStart, end));
      return gradient(boneRamp, (0.9f * smoothStep(0.62f, 0.36f, std::fabs(x)) + glow) * light);
    }
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

// Where no letter is, a strand is a wire, as far as the picture is dark.
Surface strokeThread(const Stroke& stroke, int strand) {
  const std::vector<Vector> path = strokePath(stroke, strand);
  const float tail = tailOf(stroke);
  const std::function<float(float)> pen = broadPen(path);
  Surface made = mapped(
      thread(path, nameEye, Bands::one,
             [&](float t) { return mix(1.2f, pen(t), smoothStep(0.8f * tail, tail, std::min(t, 1 - t))); }),
      true);
  for (Triangle& triangle : made.triangles)
    for (Uv& at : triangle.uv) {
      const float end = std::min(at.v, 1 - at.v);
      const float moved =
          end < tail ? end * letterStart / tail : mix(letterStart, 0.5f, (end - tail) / (0.5f - tail));
      at.v = at.v < 0.5f ? moved : 1 - moved;
    }
  return made;
}

Model layerWide(const Settings& settings) {
  Surface all;
  for (int strand = 0; strand < strands; ++strand) {
    const float thick = 2 + 5 * chance(strand, 5) * chance(strand, 6) * chance(strand, 7);
    append(all, mapped(thread(strandPath(strand), Vector(0, 0, 0), Bands::crossed,
                              [&](float t) { return thick * (0.25f + 0.75f * std::sin(pi * t)); }),
                       false));
  }
  for (int i = 0; i < static_cast<int>(std::size(name)); ++i) append(all, strokeThread(name[i], strands + i));

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
