#include "production/models/balls.h"

#include <cmath>
#include <cstring>

#include "production/geometry/placement.h"
#include "production/image/filter.h"
#include "production/textures/palette.h"
#include "production/textures/title.h"

namespace vex {

namespace {

struct ShapeBall {
  Vector place;
  Colour4 colour;
  float size = 1;
  int stage = 1;
};
using Balls = std::vector<ShapeBall>;

constexpr float spacing = 10;

// Balls from one place to another, both included.
void addRow(Balls& balls, const Vector& from, const Vector& to, Colour4 colour, int stage) {
  const int steps = std::max(1, static_cast<int>(std::lround((to - from).length() / spacing)));
  for (int i = 0; i <= steps; ++i)
    balls.push_back({mix(from, to, static_cast<float>(i) / static_cast<float>(steps)), colour, 1, stage});
}

void addFrame(Balls& balls, const std::vector<Vector>& corners, Colour4 colour, int stage) {
  for (std::size_t i = 0; i < corners.size(); ++i)
    addRow(balls, corners[i], corners[(i + 1) % corners.size()], colour, stage);
}

// The reliquary: its foot, its posts and rim, its lid ajar, and what escapes from it.
Balls boxOfBalls() {
  constexpr float halfWidth = 62, halfDepth = 42, foot = -52, rim = 12;
  const Colour4 iron = gradient(boneRamp, 0.84f), brass = gradient(brassRamp, 0.86f),
                lid = gradient(copperRamp, 0.82f);
  const auto ringAt = [](float y) {
    return std::vector<Vector>{Vector(-halfWidth, y, -halfDepth), Vector(halfWidth, y, -halfDepth),
                               Vector(halfWidth, y, halfDepth), Vector(-halfWidth, y, halfDepth)};
  };
  Balls balls;
  addFrame(balls, ringAt(foot), iron, 1);
  for (const Vector& corner : ringAt(foot)) addRow(balls, corner, corner + Vector(0, rim - foot, 0), iron, 1);
  addFrame(balls, ringAt(rim), brass, 1);
  // Dark walls hide what lies behind them.
  const Colour4 dark{0.10f, 0.05f, 0.04f};
  constexpr float inset = 7;
  for (float y = foot + 10; y < rim - 4; y += 11) {
    std::vector<Vector> wall = ringAt(y);
    for (Vector& corner : wall)
      corner =
          Vector(std::copysign(halfWidth - inset, corner.x), y, std::copysign(halfDepth - inset, corner.z));
    addFrame(balls, wall, dark, 1);
  }
  const Placement ajar = moved(0, -rim, halfDepth) >> turnedX(-52) >> moved(0, rim, -halfDepth);
  for (const float height : {3.0f, 15.0f}) {
    std::vector<Vector> corners;
    const float drawnIn = height > 10 ? 0.72f : 1.0f;
    for (const Vector& corner : ringAt(rim + height))
      corners.push_back(transformed(ajar, Vector(corner.x * drawnIn, corner.y, corner.z * drawnIn)));
    addFrame(balls, corners, lid, 2);
  }
  constexpr int wisp = 64;
  for (int i = 0; i < wisp; ++i) {
    const float t = static_cast<float>(i) / (wisp - 1), turn = 2 * pi * 2.6f * t;
    const float radius = 6 + 44 * t * t;
    balls.push_back({Vector(radius * std::cos(turn), -30 + 108 * t, radius * std::sin(turn)),
                     gradient(emberRamp, 0.86f - 0.2f * t), 1.1f - 0.75f * t, 2});
  }
  return balls;
}

// A sealed world with a ring about it: the whole globe first, then the ring.
Balls worldOfBalls() {
  constexpr int globe = 320, core = 110, ring = 110;
  constexpr float radius = 84, ringRadius = 134, golden = 2.3999632f;  // radians between two on the spiral
  Balls balls;
  for (int i = 0; i < globe; ++i) {
    const float y = 1 - 2 * (static_cast<float>(i) + 0.5f) / globe, around = std::sqrt(1 - y * y);
    const float turn = golden * static_cast<float>(i);
    const float bands = 0.5f + 0.5f * std::sin(9 * y + 0.7f * std::sin(2 * turn));
    balls.push_back({Vector(around * std::cos(turn), y, around * std::sin(turn)) * radius,
                     gradient(copperRamp, 0.56f + 0.34f * bands), 1.2f, 1});
  }
  // A dark heart hides the far side.
  for (int i = 0; i < core; ++i) {
    const float y = 1 - 2 * (static_cast<float>(i) + 0.5f) / core, around = std::sqrt(1 - y * y);
    const float turn = golden * static_cast<float>(i);
    balls.push_back(
        {Vector(around * std::cos(turn), y, around * std::sin(turn)) * 62, {0.10f, 0.05f, 0.04f}, 1.9f, 1});
  }
  const Placement tilted = turnedX(16) >> turnedZ(-18);
  for (int i = 0; i < ring; ++i) {
    const float turn = 2 * pi * static_cast<float>(i) / ring;
    balls.push_back({transformed(tilted, Vector(std::cos(turn), 0, std::sin(turn)) * ringRadius),
                     gradient(boneRamp, 0.84f), 0.62f, 2});
  }
  return balls;
}

// Metals of the party and its fire, one after the other and back to the first.
Colour4 metal(float turns) {
  const std::array hues{gradient(boneRamp, 0.84f), gradient(copperRamp, 0.80f), gradient(emberRamp, 0.72f),
                        gradient(brassRamp, 0.84f)};
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
  const auto colour = [&](float y) { return gradient(copperRamp, 0.80f - 0.28f * y / heightOfX); };
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
      if (within(text, x, y)) balls.push_back({Vector(x, -y, -9), gradient(emberRamp, 0.60f), 0.9f, 2});
  return balls;
}

void put(Bytes& bytes, float value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::byte>(bits >> shift & 255));
}

Bytes ballBytes(const Balls& balls, int stage) {
  Bytes bytes(4);
  std::uint32_t count = 0;
  for (const ShapeBall& ball : balls) {
    if (ball.stage > stage) continue;
    ++count;
    for (const float value :
         {ball.size, ball.colour.r, ball.colour.g, ball.colour.b, ball.place.x, ball.place.y, ball.place.z})
      put(bytes, value);
  }
  for (std::size_t i = 0; i < 4; ++i) bytes[i] = static_cast<std::byte>(count >> (8 * i) & 255);
  return bytes;
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
