#include <algorithm>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/image/noise.h"
#include "production/models/skull_parts.h"

// The skull's teeth, crowded along two arches: chisels in front, a fang, then blocks. No two sides agree.

namespace vex::skull {

using namespace image;
using namespace geometry;

namespace {

enum class Shape { chisel, fang, block };

struct Kind {
  Shape shape;
  float width, length;  // half across the arch's line; from the gum to the tip
};
constexpr Kind kinds[] = {{Shape::chisel, 5.6f, 20}, {Shape::chisel, 4.6f, 18}, {Shape::fang, 5.2f, 25},
                          {Shape::block, 4.8f, 17},  {Shape::block, 5.2f, 15},  {Shape::block, 6.0f, 13},
                          {Shape::block, 6.2f, 12}};
constexpr int kindCount = static_cast<int>(std::size(kinds));

enum class State { whole, broken, gone };

// The arch: z falls with the square of x.
struct Arch {
  float front, bend, scale;           // z in its middle; z lost by x * x; of the teeth
  float gum, way;                     // y of the roots; 1 up, -1 down
  int brokenRight, brokenLeft, gone;  // numbers of teeth; `gone` is on the left
  std::uint32_t seed;
};
constexpr Arch upperArch{82, 0.026f, 1, 67, -1, 1, 5, 3, 915};
constexpr Arch lowerArch{77, 0.027f, 0.96f, 33, 1, 3, 0, 4, 917};

Vector onArch(const Arch& arch, float x) {
  return Vector(x, arch.gum, arch.front - arch.bend * x * x);
}

std::vector<Tooth> teethOf(const Arch& arch) {
  std::vector<Tooth> all;
  for (const float side : {1.0f, -1.0f}) {
    float x = 0;
    for (int i = 0; i < kindCount; ++i) {
      const auto chance = [&](std::uint32_t seed) {
        return hashUnit(i, side > 0 ? 1 : 0, arch.seed + 10 * seed);
      };
      const Kind& kind = kinds[i];
      const float width = arch.scale * kind.width * (0.92f + 0.16f * chance(1));
      // A step along the arch by half a tooth before it and half behind it.
      const auto advance = [&](float length) { x += length / std::hypot(1.0f, 2 * arch.bend * x); };
      advance(0.95f * width);
      const bool gone = side < 0 && i == arch.gone,
                 broken = i == (side > 0 ? arch.brokenRight : arch.brokenLeft);
      if (!gone) {
        Tooth tooth;
        tooth.root = onArch(arch, side * x) + Vector(0, 0, 2.4f * (chance(2) - 0.5f));
        tooth.width = width;
        const float length = arch.scale * kind.length * (0.86f + 0.24f * chance(3)) * (broken ? 0.5f : 1);
        // Leans outwards a little, and each in a way of its own.
        const Vector outwards = unit(Vector(2 * arch.bend * side * x, 0, 1));
        tooth.tip = tooth.root + Vector(0, arch.way * length, 0) + outwards * (0.10f * length) +
                    Vector(0.18f * length * (chance(4) - 0.5f), 0, 0.12f * length * (chance(5) - 0.5f));
        tooth.along = unit(cross(Vector(0, 1, 0), outwards));
        tooth.chisel = kind.shape == Shape::chisel && !broken;
        tooth.pointed = kind.shape == Shape::fang && !broken;
        all.push_back(tooth);
      }
      advance(0.95f * width);
    }
  }
  return all;
}

// Open at the root, which is in the bone; a square with round corners across, drawn together over the tip.
Surface toothSurface(const Tooth& tooth) {
  constexpr float root = -0.35f;  // where it begins, as a share of what shows
  const Vector up = tooth.tip - tooth.root, out = unit(cross(tooth.along, up));
  return withoutMapping(sheet(
      8, 6,
      [&](float s, float t) {
        const float k = root + (1 - root) * std::min(1.0f, t * 1.12f);
        const float swell = 0.90f + 0.18f * std::sin(pi * clamp01(0.12f + 0.75f * k));
        const float narrow = tooth.pointed ? 1 - 0.72f * smoothStep(0.3f, 1, k) : 1 - 0.20f * clamp01(k);
        const float thick = tooth.chisel ? 0.85f - 0.5f * smoothStep(0.2f, 1, k) : 0.9f;
        const float c = std::cos(2 * pi * s), d = -std::sin(2 * pi * s);
        const float square = 1 / std::cbrt(std::pow(std::fabs(c), 3.0f) + std::pow(std::fabs(d), 3.0f));
        const float across = t < 1 ? tooth.width * swell * narrow * square : 0;
        return tooth.root + up * k + tooth.along * (across * c) + out * (across * thick * d);
      },
      {.closedAcross = true, .poleAbove = true}));
}

}  // namespace

const std::vector<Tooth>& upperTeeth() {
  static const std::vector<Tooth> teeth = teethOf(upperArch);
  return teeth;
}

const std::vector<Tooth>& lowerTeeth() {
  static const std::vector<Tooth> teeth = teethOf(lowerArch);
  return teeth;
}

Surface teethSurface(const std::vector<Tooth>& teeth) {
  Surface all;
  for (const Tooth& tooth : teeth) append(all, toothSurface(tooth));
  return all;
}

}  // namespace vex::skull
