#include "production/models/balls.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "production/geometry/placement.h"
#include "production/image/filter.h"
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
  int stage = 1;
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
                       frame ? 1.12f : 1.0f, 1});
    }
}

// The reliquary, leaning towards us, thrown open: light stands in it to the brim, and out of it leaps the hue
// of every world.
Balls boxOfBalls() {
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
  for (std::size_t jet = 0; jet < hues.size(); ++jet) {
    const float aim = 0.32f * (static_cast<float>(jet) - 3);  // off upright
    for (int i = 0; i < drops; ++i) {
      const float t = static_cast<float>(i) / (drops - 1), rise = 196 * std::cos(aim);
      balls.push_back(
          {Vector((10 + 150 * t) * std::sin(aim), rim + rise * t - 84 * t * t, 10 + 40 * t * (1 - t)),
           hues[jet], 0.9f + 1.0f * t * (1 - t) - 0.45f * t * t, 2});
    }
  }
  for (ShapeBall& ball : balls)
    ball.place = transformed(turnedX(24) >> turnedY(static_cast<float>(360 * turnsAboutWorld)), ball.place);
  return balls;
}

// A sealed world with rings about it, one side to its star: the whole globe first, then the rings.
Balls worldOfBalls() {
  constexpr float radius = 84, row = 15.5f, dim = 0.07f;
  const Vector star = unit(Vector(-0.24f, 0.36f, 0.90f));
  const Placement tilted = turnedX(16) >> turnedZ(-18);
  Balls balls;
  const auto add = [&](const Vector& place, const Colour4& hue, float size, float lit, int stage) {
    const Colour4 dark{0.16f, 0.05f, 0.05f};
    balls.push_back({place, mix(dark, hue, std::max(dim, lit)), size, stage});
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
      const Vector way = transformedDirection(tilted, own);
      const Colour4 hue = mix(gradient(emberRamp, 0.74f), belt,
                              smoothStep(0.88f, 0.93f, dot(own, storm)) > 0.5f ? 0.0f : 1.0f);
      add(way * radius, hue, 1.12f, smoothStep(-0.10f, 0.50f, dot(way, star)), 1);
    }
  }
  // A dark heart hides the far side.
  constexpr int core = 90;
  constexpr float golden = 2.3999632f;  // radians between two on the spiral
  for (int i = 0; i < core; ++i) {
    const float y = 1 - 2 * (static_cast<float>(i) + 0.5f) / core, around = std::sqrt(1 - y * y);
    const float turn = golden * static_cast<float>(i);
    balls.push_back(
        {Vector(around * std::cos(turn), y, around * std::sin(turn)) * 62, {0.06f, 0.02f, 0.02f}, 1.9f, 1});
  }
  for (const auto& [ringRadius, count] : {std::pair{138.0f, 112}, {123.0f, 96}})
    for (int i = 0; i < count; ++i) {
      const float turn = 2 * pi * static_cast<float>(i) / static_cast<float>(count);
      const Vector place = transformed(tilted, Vector(std::cos(turn), 0, std::sin(turn)) * ringRadius);
      // The globe's shadow lies across them.
      const float along = dot(place, star), aside = (place - star * along).length();
      const float lit = along > 0 ? 1.0f : smoothStep(radius - 10, radius + 6, aside);
      add(place, ringRadius > 130 ? gradient(boneRamp, 0.95f) : gradient(copperRamp, 0.76f), 0.54f, lit, 2);
    }
  return balls;
}

// Metals of the party and its fire, one after the other and back to the first.
Colour4 metal(float turns) {
  const std::array hues{gradient(boneRamp, 0.96f), gradient(copperRamp, 0.84f), gradient(emberRamp, 0.74f),
                        gradient(brassRamp, 0.94f)};
  const float place = (turns - std::floor(turns)) * static_cast<float>(hues.size());
  const auto i = static_cast<std::size_t>(place) % hues.size();
  return mix(hues[i], hues[(i + 1) % hues.size()], smoothStep(0.25f, 0.75f, place - std::floor(place)));
}

// A knot without end: every second ball, then all.
Balls knotOfBalls() {
  constexpr int count = 176;
  Balls balls;
  for (int i = 0; i < count; ++i) {
    const float t = static_cast<float>(i) / count, turn = 2 * pi * t;
    const Vector place(std::sin(turn) + 2 * std::sin(2 * turn), std::cos(turn) - 2 * std::cos(2 * turn),
                       -std::sin(3 * turn));
    balls.push_back({place * 29, metal(3 * t), 1.05f + 0.4f * std::sin(2 * pi * 11 * t), 1 + i % ballStages});
  }
  return balls;
}

// Whether a place lies within closed outlines.
bool within(const Lettering& text, float x, float y) {
  bool inside = false;
  for (const auto& [x0, y0, x1, y1] : text.edges)
    if ((y0 > y) != (y1 > y) && x < x0 + (y - y0) / (y1 - y0) * (x1 - x0)) inside = !inside;
  return inside;
}

// The title in its own letters: their outlines, then what fills them.
Balls wordOfBalls() {
  constexpr float heightOfX = 92, step = 10.5f;
  const Lettering letters = titleLetters();
  const float width = (letters.right - letters.left) * heightOfX;
  const Lettering text =
      placed(letters, heightOfX, heightOfX, -width / 2 - letters.left * heightOfX, heightOfX * 0.45f);
  const auto colour = [&](float y) { return gradient(copperRamp, 0.90f - 0.24f * y / heightOfX); };
  Balls balls;
  float rest = 0;
  for (const auto& [x0, y0, x1, y1] : text.edges) {
    const float length = std::hypot(x1 - x0, y1 - y0);
    for (; rest < length; rest += 8) {
      const float k = rest / length, y = mix(y0, y1, k);
      balls.push_back({Vector(mix(x0, x1, k), -y, 0), colour(y), 0.72f, 1});
    }
    rest -= length;
  }
  for (float y = -1.2f * heightOfX; y < heightOfX; y += step)
    for (float x = -width / 2; x < width / 2; x += step)
      if (within(text, x, y)) balls.push_back({Vector(x, -y, -9), gradient(emberRamp, 0.66f), 0.9f, 2});
  return balls;
}

Bytes ballBytes(const Balls& shape, int stage) {
  std::vector<Ball> balls;
  for (const ShapeBall& ball : shape) {
    if (ball.stage > stage) continue;
    balls.push_back({ball.size, {ball.colour.r, ball.colour.g, ball.colour.b}, ball.place});
  }
  return bytesOf(ballFileBytes(balls));
}

}  // namespace

std::string ballFile(const char* shape, int stage) {
  return "balls_" + std::string(shape) + std::to_string(stage) + ".hvv";
}

Products ballShapes() {
  struct Shape {
    const char* name;
    Balls (*balls)();
  };
  static constexpr Shape shapes[] = {
      {"world", worldOfBalls}, {"box", boxOfBalls}, {"knot", knotOfBalls}, {"word", wordOfBalls}};
  Products products;
  for (const Shape& shape : shapes) {
    Product product;
    for (int stage = 1; stage <= ballStages; ++stage)
      product.outputs.push_back("data/" + ballFile(shape.name, stage));
    product.source = __FILE__;
    product.work = 0.1f;
    product.make = [&shape](const Settings&) {
      std::vector<Bytes> files;
      for (int stage = 1; stage <= ballStages; ++stage) files.push_back(ballBytes(shape.balls(), stage));
      return files;
    };
    products.push_back(product);
  }
  return products;
}

}  // namespace vex
