#include "production/models/balls.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "production/geometry/isosurface.h"
#include "production/geometry/placement.h"
#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/textures/palette.h"
#include "production/textures/title.h"
#include "scenes/ball_file.h"

namespace vex {

using namespace image;
using namespace geometry;

namespace {

struct ShapeBall {
  Vector place;
  Colour4 colour;
  float size = 1;
};
using Balls = std::vector<ShapeBall>;

constexpr float spacing = 10.4f;

// A wall between two corners that face each other across it, filled within its frame; `hue` by how far a
// place lies from its middle, 1 at the frame.
template <typename Hue>
void addPanel(Balls& balls, const Vector& corner, const Vector& across, const Vector& up, Hue hue) {
  const auto steps = [](const Vector& edge) { return static_cast<int>(edge.length() / spacing + 0.5f); };
  const int columns = steps(across), rows = steps(up);
  for (int row = 0; row <= rows; ++row)
    for (int column = 0; column <= columns; ++column) {
      const float s = static_cast<float>(column) / static_cast<float>(columns),
                  t = static_cast<float>(row) / static_cast<float>(rows);
      const bool frame = row == 0 || row == rows || column == 0 || column == columns;
      balls.push_back({corner + across * s + up * t, hue(std::fabs(2 * s - 1) + std::fabs(2 * t - 1), frame),
                       frame ? 1.12f : 1.0f});
    }
}

// The reliquary, leaning towards us, thrown open: light stands in it to the brim, and out of it leaps the hue
// of every world: the box first.
Balls boxOfBalls(int stage) {
  constexpr float halfWidth = 60, halfDepth = 36, foot = -74, rim = -14;
  const Colour4 iron = gradient(boneRamp, 0.94f), light = gradient(emberRamp, 0.97f);
  const auto inlaid = [&](float away, bool frame) {
    if (frame) return iron;
    if (away < 0.30f) return light;
    return away < 0.75f ? gradient(emberRamp, 0.66f) : gradient(copperRamp, 0.66f);
  };
  const Vector width(2 * halfWidth, 0, 0), depth(0, 0, 2 * halfDepth), up(0, rim - foot, 0);
  Balls balls;
  addPanel(balls, Vector(-halfWidth, foot, halfDepth), width, up, inlaid);
  for (const float side : {-halfWidth, halfWidth})
    addPanel(balls, Vector(side, foot, -halfDepth), depth, up, inlaid);
  addPanel(balls, Vector(-halfWidth, rim - 7, -halfDepth), width, depth, [&](float away, bool frame) {
    return frame ? gradient(emberRamp, 0.5f) : mix(Colour4{1, 1, 1}, light, std::min(1.0f, away));
  });
  // Its lid stands up behind the light and shines with it.
  const Vector lid = transformedDirection(turnedX(-112), depth);
  addPanel(balls, Vector(-halfWidth, rim, -halfDepth), width, lid,
           [&](float away, bool frame) { return frame ? iron : gradient(brassRamp, 0.94f - 0.16f * away); });
  const std::array hues{gradient(acidRamp, 0.78f), gradient(steelRamp, 0.80f), gradient(violetRamp, 0.74f),
                        Colour4{1, 1, 1},          gradient(emberRamp, 0.74f), gradient(alarmRamp, 0.70f),
                        gradient(tealRamp, 0.76f)};
  constexpr int drops = 20;
  for (std::size_t jet = 0; stage == 2 && jet < hues.size(); ++jet) {
    const float aim = 0.32f * (static_cast<float>(jet) - 3);  // off upright
    for (int i = 0; i < drops; ++i) {
      const float t = static_cast<float>(i) / (drops - 1), rise = 196 * std::cos(aim);
      balls.push_back(
          {Vector((10 + 150 * t) * std::sin(aim), rim + rise * t - 84 * t * t, 10 + 40 * t * (1 - t)),
           hues[jet], 0.9f + 1.0f * t * (1 - t) - 0.45f * t * t});
    }
  }
  for (ShapeBall& ball : balls)
    ball.place = transformed(turnedX(24) >> turnedY(static_cast<float>(360 * turnsAboutWorld)), ball.place);
  return balls;
}

constexpr float worldRadius = 84;

// It is full of light to the brim, and the lid's inside shines with it.
void addLightWithin(Balls& balls, const Placement& tilted, const Placement& lid) {
  constexpr float step = 13;
  for (float z = -78; z <= 78; z += step)
    for (float x = -78; x <= 78; x += step) {
      const float r = std::hypot(x, z) / 78;
      if (r > 1) continue;
      balls.push_back({transformed(tilted, Vector(x, 2, z)),
                       mix(Colour4{1, 1, 1}, gradient(emberRamp, 0.86f), r * r), 1.15f});
      const Vector inside(x, 0.80f * worldRadius * std::sqrt(1 - r * r), z);
      balls.push_back({transformed(lid >> tilted, inside), gradient(emberRamp, 0.78f - 0.2f * r), 1.2f});
    }
}

// Hides the far side.
void addDarkHeart(Balls& balls) {
  constexpr int core = 90;
  constexpr float golden = 2.3999632f;  // radians between two on the spiral
  for (int i = 0; i < core; ++i) {
    const float y = 1 - 2 * (static_cast<float>(i) + 0.5f) / core, around = std::sqrt(1 - y * y);
    const float turn = golden * static_cast<float>(i);
    balls.push_back(
        {Vector(around * std::cos(turn), y, around * std::sin(turn)) * 62, {0.06f, 0.02f, 0.02f}, 1.9f});
  }
}

// A sealed world with rings about it, one side to its star; then its upper half thrown back like a lid.
Balls worldOfBalls(int stage) {
  constexpr float radius = worldRadius, row = 15.5f, dim = 0.07f;
  const bool opened = stage == 2;
  const Vector star = unit(Vector(-0.24f, 0.36f, 0.90f));
  const Placement tilted = turnedX(16) >> turnedZ(-18);
  // Towards where the camera has come when it opens; the hinge is behind.
  constexpr float front = 300 * static_cast<float>(turnsAboutWorld);
  const Placement lid = opened ? turnedY(-front) >> moved(0, 0, radius) >> turnedX(-44) >>
                                     moved(0, 0, -radius) >> turnedY(front)
                               : Placement{};
  Balls balls;
  const auto add = [&](const Vector& place, const Colour4& hue, float size, float lit) {
    const Colour4 dark{0.16f, 0.05f, 0.05f};
    balls.push_back({place, mix(dark, hue, std::max(dim, lit)), size});
  };
  // Belts along its turn, a storm in one of them.
  const int rows = static_cast<int>(pi * radius / row);
  const Vector storm = unit(Vector(0.35f, -0.30f, 0.9f));
  for (int i = 0; i < rows; ++i) {
    const float up = pi * ((static_cast<float>(i) + 0.5f) / static_cast<float>(rows) - 0.5f);
    const int count = std::max(1, static_cast<int>(2 * pi * radius * std::cos(up) / row));
    const Colour4 belt = i % 3 == 0   ? gradient(boneRamp, 0.95f)
                         : i % 3 == 1 ? gradient(copperRamp, 0.84f)
                                      : gradient(copperRamp, 0.66f);
    for (int k = 0; k < count; ++k) {
      const float turn =
          2 * pi * (static_cast<float>(k) + 0.5f * static_cast<float>(i % 2)) / static_cast<float>(count);
      const Vector own(std::cos(up) * std::cos(turn), std::sin(up), std::cos(up) * std::sin(turn));
      const Vector way = transformedDirection(up > 0.05f ? lid >> tilted : tilted, own);
      const Vector place = transformed(up > 0.05f ? lid >> tilted : tilted, own * radius);
      const Colour4 hue = mix(gradient(emberRamp, 0.74f), belt,
                              smoothStep(0.88f, 0.93f, dot(own, storm)) > 0.5f ? 0.0f : 1.0f);
      add(place, hue, 1.12f, smoothStep(-0.10f, 0.50f, dot(way, star)));
    }
  }
  if (opened) {
    addLightWithin(balls, tilted, lid);
  } else {
    addDarkHeart(balls);
  }
  for (const auto& [ringRadius, count] : {std::pair{138.0f, 112}, {123.0f, 96}})
    for (int i = 0; i < count; ++i) {
      const float turn = 2 * pi * static_cast<float>(i) / static_cast<float>(count);
      const Vector place = transformed(tilted, Vector(std::cos(turn), 0, std::sin(turn)) * ringRadius);
      // The globe's shadow lies across them.
      const float along = dot(place, star), aside = (place - star * along).length();
      const float lit = along > 0 ? 1.0f : smoothStep(radius - 10, radius + 6, aside);
      add(place, ringRadius > 130 ? gradient(boneRamp, 0.95f) : gradient(copperRamp, 0.76f), 0.54f, lit);
    }
  return balls;
}

// Points of one half of a surface, the one with x above 0, each as far from those before it and from their
// mirrored likes as can be, until none is `apart` from all.
std::vector<Vector> spreadOver(const std::vector<Vector>& surface, float apart) {
  std::vector<Vector> chosen;
  std::vector<float> far(surface.size(), 1e9f);
  std::size_t next = 0;
  while (!surface.empty() && far[next] > apart) {
    chosen.push_back(surface[next]);
    for (std::size_t i = 0; i < surface.size(); ++i)
      for (const float side : {1.0f, -1.0f}) {
        const Vector taken(side * chosen.back().x, chosen.back().y, chosen.back().z);
        far[i] = std::min(far[i], (surface[i] - taken).length());
      }
    next = static_cast<std::size_t>(std::max_element(far.begin(), far.end()) - far.begin());
  }
  return chosen;
}

// --- The skull of the storm as balls; the sides are even, x is folded.

const Vector socket(skullEye.x, skullEye.y, skullEye.z + 6);

float craniumDistance(const Vector& p) {
  const Vector q(std::fabs(p.x), p.y, p.z);
  float d = ellipsoid(q, Vector(0, 30, -14), Vector(64, 58, 66));
  d = smoothJoin(d, ellipsoid(q, Vector(0, -20, 18), Vector(38, 34, 34)), 12);
  d = smoothJoin(d, taper(q, Vector(0, 20, 50), Vector(46, 22, 34), 9, 8), 6);     // brow
  d = smoothJoin(d, taper(q, Vector(46, -14, 34), Vector(54, -10, 4), 11, 8), 6);  // cheekbone
  d = smoothJoin(d, taper(q, Vector(46, -14, 34), Vector(28, -34, 40), 10, 8), 6);
  d = smoothCut(d, ellipsoid(q, Vector(70, -40, 16), Vector(26, 22, 40)), 6);  // under the cheeks
  d = smoothCut(d, ellipsoid(q, socket, Vector(20, 18, 30)), 3);
  const float nose = taper(Vector(q.x, q.y, 0), Vector(0, -14, 0), Vector(6, -27, 0), 3, 6);
  return smoothCut(d, std::max(nose, 30 - p.z), 2);
}

float jawDistance(const Vector& p) {
  const Vector q(std::fabs(p.x), p.y, p.z);
  float d = taper(q, Vector(48, -18, -2), Vector(44, -62, 6), 8, 9);
  d = smoothJoin(d, taper(q, Vector(44, -62, 6), Vector(20, -80, 40), 10, 10), 6);
  return smoothJoin(d, taper(q, Vector(20, -80, 40), Vector(0, -82, 46), 10, 12), 6);
}

// Its mouth is shut, then wide open.
Balls skullOfBalls(int stage) {
  const Placement dropped = stage == 2 ? moved(0, 18, 0) >> turnedX(24) >> moved(0, -22, 0) : Placement{};
  Balls balls;
  const auto add = [&](const Vector& place, const Colour4& colour, float size) {
    for (const float side : {1.0f, -1.0f}) {
      if (side < 0 && place.x < 1) continue;
      balls.push_back({Vector(place.x < 1 ? 0 : side * place.x, place.y, place.z), colour, size});
    }
  };
  constexpr float apart = 7.5f;
  const auto addBone = [&](const Solid& solid, const Bounds& bounds, const Placement& at) {
    IsoOptions options;
    options.bounds = bounds;
    options.cell = 3;
    std::vector<Vector> half;
    for (const Vector& point : isosurface(solid, options).points)
      if (point.z > -46 && point.x > -1.5f && (point.x < 1.5f || point.x > 0.5f * apart))
        half.push_back(point.x < 1.5f ? Vector(0, point.y, point.z) : point);
    for (const Vector& point : spreadOver(half, apart)) {
      const auto slope = [&](const Vector& step) { return solid(point + step) - solid(point - step); };
      const Vector out = unit(Vector(slope(Vector(1, 0, 0)), slope(Vector(0, 1, 0)), slope(Vector(0, 0, 1))));
      const float open = clamp01(solid(point + out * 16) / 16);
      // Black where sockets and nose are deep.
      const float pit = std::max(smoothStep(1.1f, 0.9f, (point - socket).length() / 21),
                                 smoothStep(1.1f, 0.8f, (point - Vector(0, -22, 40)).length() / 11));
      const float facing = clamp01(0.22f + 0.9f * dot(out, unit(Vector(0, 0.5f, 0.86f))));
      const Colour4 shade{0.07f, 0.10f, 0.17f}, bone{1, 0.96f, 0.86f};
      add(transformed(at, point), mix(shade, bone, facing * open * open) * (1 - 0.95f * pit), 0.9f);
    }
  };
  addBone(craniumDistance, {Vector(-80, -70, -90), Vector(80, 100, 90)}, Placement{});
  addBone(jawDistance, {Vector(-70, -110, -30), Vector(70, 0, 80)}, dropped);
  // Two rows of teeth on either arch.
  for (const float x : {4.5f, 13.0f, 21.0f, 28.0f}) {
    const float z = 50 - 0.020f * x * x;
    for (const float y : {-50.0f, -56.0f}) add(Vector(x, y, z), Colour4{1, 0.98f, 0.92f}, 0.78f);
    for (const float y : {-64.0f, -70.0f})
      add(transformed(dropped, Vector(x, y, z - 2)), Colour4{1, 0.98f, 0.92f}, 0.74f);
  }
  // No sky is seen through it.
  constexpr Colour4 dark{0.03f, 0.012f, 0.015f};
  for (float y = -30; y < 60; y += 15)
    for (float x = 0; x < 50; x += 15)
      if (const Vector inside(x, y, 0); craniumDistance(inside) < -10) add(inside, dark, 1.7f);
  for (float y = -45; y > -85; y -= 13)
    for (const float x : {0.0f, 13.0f, 26.0f}) add(transformed(dropped, Vector(x, y, 0)), dark, 1.5f);
  // A coal in each socket.
  add(Vector(skullEye.x, skullEye.y, skullEye.z - 12), gradient(alarmRamp, 0.72f), 1.25f);
  for (ShapeBall& ball : balls)
    ball.place =
        transformed(stretched(skullScale) >> turnedY(static_cast<float>(360 * turnsAboutWorld)), ball.place);
  return balls;
}

// Whether a place lies within closed outlines.
bool within(const Lettering& text, float x, float y) {
  bool inside = false;
  for (const auto& [x0, y0, x1, y1] : text.edges)
    if ((y0 > y) != (y1 > y) && x < x0 + (y - y0) / (y1 - y0) * (x1 - x0)) inside = !inside;
  return inside;
}

// The title in its own letters: rims of bone about a fire.
Balls standingWord() {
  constexpr float heightOfX = 92, step = 10.5f;
  const Lettering letters = titleLetters();
  const float width = (letters.right - letters.left) * heightOfX;
  const Lettering text =
      placed(letters, heightOfX, heightOfX, -width / 2 - letters.left * heightOfX, heightOfX * 0.45f);
  Balls balls;
  for (float y = -1.2f * heightOfX; y < heightOfX; y += step)
    for (float x = -width / 2; x < width / 2; x += step)
      if (within(text, x, y))
        balls.push_back(
            {Vector(x, -y, 0), gradient(emberRamp, clamp01(0.72f - 0.18f * y / heightOfX)), 0.9f});
  for (const float z : {-8.0f, 8.0f}) {
    float rest = 0;
    for (const auto& [x0, y0, x1, y1] : text.edges) {
      const float length = std::hypot(x1 - x0, y1 - y0);
      for (; rest < length; rest += 8) {
        const float k = rest / length, y = mix(y0, y1, k);
        balls.push_back({Vector(mix(x0, x1, k), -y, z), gradient(boneRamp, 0.96f), 0.72f});
      }
      rest -= length;
    }
  }
  return balls;
}

// First it lies in a heap, as it will again.
Balls wordOfBalls(int stage) {
  Balls balls = standingWord();
  if (stage == 1) {
    constexpr float lane = 9.4f;
    std::map<std::pair<int, int>, int> piled;
    const std::size_t count = balls.size();
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t i = k * 389 % count;  // a prime: fire and bone mixed
      const auto chance = [i](std::uint32_t seed) { return hashUnit(static_cast<int>(i), 0, 940 + seed); };
      Vector& place = balls[i].place;
      int column = static_cast<int>(std::lround((0.85f * place.x + 50 * (chance(0) - 0.5f)) / lane));
      const int row = static_cast<int>(std::floor(4 * chance(1))) - 2;
      // It rolls to where the heap is lower.
      for (int rolled = 0; rolled < 2; ++rolled)
        for (const int aside : {column - 1, column + 1})
          if (piled[{aside, row}] < piled[{column, row}]) column = aside;
      const int height = piled[{column, row}]++;
      // Every other layer lies in the hollows of the one below.
      const float shift = height % 2 == 1 ? 0.5f * lane : 0;
      place = Vector(static_cast<float>(column) * lane + shift + 2 * chance(2),
                     heapFloor + 7.6f * static_cast<float>(height) + 2 * chance(3),
                     static_cast<float>(row) * lane + shift);
    }
  }
  for (ShapeBall& ball : balls)
    ball.place = transformed(turnedY(static_cast<float>(360 * turnsAboutWorld)), ball.place);
  return balls;
}

Bytes ballBytes(const Balls& shape) {
  std::vector<Ball> balls;
  for (const ShapeBall& ball : shape)
    balls.push_back({ball.size, {ball.colour.r, ball.colour.g, ball.colour.b}, ball.place});
  return bytesOf(ballFileBytes(balls));
}

}  // namespace

std::string ballFile(const char* shape, int stage) {
  return "balls_" + std::string(shape) + std::to_string(stage) + ".hvv";
}

Products ballShapes() {
  struct Shape {
    const char* name;
    Balls (*balls)(int stage);
  };
  static constexpr Shape shapes[] = {
      {"world", worldOfBalls}, {"box", boxOfBalls}, {"skull", skullOfBalls}, {"word", wordOfBalls}};
  Products products;
  for (const Shape& shape : shapes) {
    Product product;
    for (int stage = 1; stage <= ballStages; ++stage)
      product.outputs.push_back("data/" + ballFile(shape.name, stage));
    product.source = __FILE__;
    product.work = 0.1f;
    product.make = [&shape](const Settings&) {
      std::vector<Bytes> files;
      for (int stage = 1; stage <= ballStages; ++stage) files.push_back(ballBytes(shape.balls(stage)));
      return files;
    };
    products.push_back(product);
  }
  return products;
}

}  // namespace vex
