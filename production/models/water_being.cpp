#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "production/geometry/forms.h"
#include "production/geometry/isosurface.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/water_parts.h"
#include "production/textures/palette.h"

// The serpent: three pieces of one body, each diving at its ends, a head of distances, sails and fans of skin
// between spines.

namespace vex::water {

using namespace image;
using namespace geometry;

namespace {

// --- The body's line

struct Stretch {
  std::vector<Vector> path;  // from behind to before
  std::vector<float> lengths;
  float (*girth)(float t);
};

float ratioOf(std::size_t i, std::size_t count) {
  return static_cast<float>(i) / static_cast<float>(count);
}

float tailGirth(float t) {
  return 3.0f + 11.5f * smoothStep(0, 1, t);
}
float backGirth(float t) {
  return 11 + 10 * std::sin(pi * t);
}
float neckGirth(float t) {
  return 20 - 9.2f * smoothStep(0.10f, 0.72f, t) + 1.8f * smoothStep(0.8f, 1, t);
}

Stretch stretch(const std::vector<Vector>& knots, int pieces, float (*girth)(float)) {
  Stretch one{smoothPath(knots, pieces), {0}, girth};
  for (std::size_t i = 1; i < one.path.size(); ++i)
    one.lengths.push_back(one.lengths.back() + (one.path[i] - one.path[i - 1]).length());
  return one;
}

const std::array<Stretch, 3>& body() {
  static const std::array<Stretch, 3> all{
      stretch({Vector(5, 54, -222), Vector(2, 26, -204), Vector(-4, -8, -184), Vector(-6, -38, -162),
               Vector(-6, -54, -132)},
              26, tailGirth),
      stretch({Vector(-8, -60, -124), Vector(-9, -36, -140), Vector(-10, -4, -136), Vector(-8, 23, -100),
               Vector(-4, 2, -64), Vector(-2, -48, -44), Vector(-2, -74, -36)},
              40, backGirth),
      stretch({Vector(3, -72, -12), Vector(3, -48, -6), Vector(4, -12, 16), Vector(2, 24, 27),
               Vector(0, 62, 17), Vector(0, 98, 14), Vector(0, 124, 32), Vector(0, 133, 66)},
              66, neckGirth)};
  return all;
}

// Which way the line runs and where its back is, at a point of it.
struct Heading {
  Vector along, up, side;
};
Heading headingAt(const Stretch& one, std::size_t i) {
  const std::size_t before = i == 0 ? 0 : i - 1, after = std::min(i + 1, one.path.size() - 1);
  Heading heading;
  heading.along = unit(one.path[after] - one.path[before]);
  heading.up = unit(cross(heading.along, Vector(1, 0, 0)));
  heading.side = cross(heading.up, heading.along);
  return heading;
}

// 0 to 1: how a plate of the belly rises and ends.
float scute(float length) {
  const float share = length / 8.5f - std::floor(length / 8.5f);
  return share * smoothStep(1.0f, 0.8f, share);
}

Surface trunk(const Stretch& one) {
  constexpr int around = 12;
  const auto along = static_cast<int>(one.path.size()) - 1;
  return sheet(
      around, along,
      [&](float s, float t) {
        const auto i = static_cast<std::size_t>(std::lround(t * static_cast<float>(along)));
        const Heading heading = headingAt(one, i);
        const float angle = 2 * pi * s, height = std::sin(angle);
        const float belly = smoothStep(-0.15f, -0.6f, height), ridge = smoothStep(0.8f, 1.0f, height);
        const float out = one.girth(ratioOf(i, one.path.size() - 1)) *
                          (1 - 0.10f * belly + 0.16f * ridge + 0.09f * belly * scute(one.lengths[i]));
        return one.path[i] + heading.side * (0.92f * out * std::cos(angle)) + heading.up * (out * height);
      },
      {.closedAcross = true});
}

// --- Skin between spines

Surface twoFaced(int across, int along, const std::function<Vector(float s, float t, float face)>& place) {
  Surface both = sheet(across, along, [&](float s, float t) { return place(s, t, 1); });
  append(both, turnedOver(sheet(across, along, [&](float s, float t) { return place(s, t, -1); })));
  return withoutMapping(both);
}

Surface spineAlong(const Vector& foot, const Vector& middle, const Vector& tip, float thick) {
  return withoutMapping(tube(
      smoothPath({foot, middle, tip}, 5), 5, [=](float t) { return thick * (1 - t) + 0.2f; },
      TubeEnd::point));
}

// Between spines the edge of the skin hangs back.
float hanging(float rays, float depth) {
  const float wave = std::sin(pi * rays);
  return 1 - depth * wave * wave;
}

// Rays from one place; their tips bend by `sag`.
void addFan(Surface& all, const Vector& root, const std::vector<Vector>& rays, const Vector& sag,
            float thick) {
  const auto spaces = static_cast<int>(rays.size()) - 1;
  const int fine = 4;
  const std::vector<Vector> tips = smoothPath(rays, spaces * fine);
  const auto tipAt = [&](float s) {
    return tips[static_cast<std::size_t>(std::lround(s * static_cast<float>(tips.size() - 1)))];
  };
  const auto skinPlace = [&](float s, float t, float face) {
    const Vector tip = tipAt(s);
    const Vector flat = unit(cross(tipAt(std::min(s + 0.2f, 1.0f)) - tipAt(std::max(s - 0.2f, 0.0f)), tip));
    const float far = (0.06f + 0.86f * t) * hanging(s * static_cast<float>(spaces), 0.24f * t);
    return root + tip * far + sag * (far * far) + flat * (face * (0.8f * (1 - t) + 0.12f));
  };
  append(all, twoFaced(spaces * fine, 4, skinPlace), membrane);
  for (const Vector& tip : rays)
    append(all, spineAlong(root, root + tip * 0.55f + sag * 0.3f, root + tip + sag, thick), spine);
}

// A sail on the back; `height(t)` of its spines.
void addSail(Surface& all, const Stretch& one, float from, float to, int spines,
             const std::function<float(float)>& height) {
  constexpr float lean = 0.55f;
  const auto footAt = [&](float s) {
    return static_cast<std::size_t>(
        std::lround((from + (to - from) * s) * static_cast<float>(one.path.size() - 1)));
  };
  const auto place = [&](float s, float far) {
    const std::size_t i = footAt(s);
    const Heading heading = headingAt(one, i);
    const float tall = height(s);
    return one.path[i] + heading.up * (0.9f * one.girth(ratioOf(i, one.path.size() - 1)) + tall * far) -
           heading.along * (lean * tall * far * far);
  };
  const auto spaces = static_cast<float>(spines - 1);
  append(all,
         twoFaced((spines - 1) * 3, 4,
                  [&](float s, float t, float face) {
                    const Vector across = headingAt(one, footAt(s)).side;
                    return place(s, t * 0.9f * hanging(s * spaces, 0.3f * t)) +
                           across * (-face * (0.9f * (1 - t) + 0.12f));
                  }),
         membrane);
  for (int i = 0; i < spines; ++i) {
    const float s = static_cast<float>(i) / spaces;
    append(all, spineAlong(place(s, 0), place(s, 0.5f), place(s, 1.06f), 1.5f), spine);
  }
}

// --- The head, in its own measure: the back of the skull at the origin, nose at z = 50

const Placement headPlace = stretched(1.35f) >> turnedX(9) >> moved(0, 136, 68);

constexpr float eyeX = 7.9f, eyeY = 4.6f, eyeZ = 19.5f;

float headDistance(const Vector& p) {
  const Vector q(std::fabs(p.x), p.y, p.z);
  float d = ellipsoid(q, Vector(0, 3, 8), Vector(11.5f, 9.5f, 16));                      // skull
  d = smoothJoin(d, ellipsoid(q, Vector(0, 1, 32), Vector(7.2f, 5, 22)), 5);             // snout
  d = smoothJoin(d, taper(q, Vector(0, 5.5f, 24), Vector(0, 3.4f, 50), 3.2f, 3.0f), 3);  // its ridge
  d = smoothJoin(d, taper(q, Vector(2, 0.5f, 49), Vector(4, 2.5f, 46), 3.2f, 3), 3);     // nostrils
  d = smoothCut(d, ball(q, Vector(3.4f, 3.6f, 51.2f), 1.5f), 0.8f);
  d = smoothJoin(d, taper(q, Vector(8.6f, 10.5f, 6), Vector(6.6f, 7.6f, 27), 3.4f, 2.2f), 2.4f);  // brow
  d = smoothJoin(d, taper(q, Vector(7, -1.5f, 20), Vector(6, -2.2f, 44), 1.8f, 1.4f), 1.5f);      // lip
  d = smoothJoin(d, ellipsoid(q, Vector(9, -4, 5), Vector(5.5f, 8, 9)), 4);                       // cheek
  float jaw = taper(q, Vector(5.5f, -10, 6), Vector(2.5f, -19.5f, 40), 4.6f, 2.8f);
  jaw = smoothJoin(jaw, taper(q, Vector(0, -13.5f, 8), Vector(0, -20.5f, 41), 4.6f, 3.0f), 4);
  jaw = smoothJoin(jaw, taper(q, Vector(0, -21, 38), Vector(0, -29, 42), 2.2f, 0.8f), 2.5f);  // beard
  d = smoothJoin(d, jaw, 2.2f);
  d = smoothJoin(d, taper(q, Vector(0, -2, 2), Vector(0, -9, -22), 11, 9.5f), 6);     // nape
  d = smoothJoin(d, taper(q, Vector(0, 11, 20), Vector(0, 21, -14), 2.6f, 1.0f), 3);  // crest
  d = smoothCut(d, ball(q, Vector(eyeX + 1.6f, eyeY - 0.2f, eyeZ + 0.6f), 4.0f), 1.6f);
  const float gills = std::sin((q.z + 0.25f * q.y) * 1.35f);
  return d +
         0.75f * gills * gills * smoothStep(1, -3, q.z) * smoothStep(-17, -12, q.z) * smoothStep(5, 8, q.x);
}

void addHead(Surface& all) {
  IsoOptions options;
  options.bounds = {Vector(-18, -32, -34), Vector(18, 24, 58)};
  options.cell = 2.3f;
  append(all, placed(compacted(isosurface(headDistance, options)), headPlace), hide);
  const auto put = [&](const Surface& piece, BeingPart part) {
    append(all, placed(withoutMapping(piece), headPlace), part);
  };
  for (const float side : {-1.0f, 1.0f}) {
    put(placed(sphere(3.1f, 10, 7), moved(eyeX * side, eyeY, eyeZ)), eyeBall);
    const auto horn = [&](const std::vector<Vector>& knots, float thick) {
      std::vector<Vector> path;
      for (const Vector& knot : knots) path.emplace_back(knot.x * side, knot.y, knot.z);
      put(tube(
              smoothPath(path, 12), 9,
              [=](float t) { return thick * std::pow(1 - t, 0.8f) * (1 + 0.08f * std::sin(t * 60)) + 0.2f; },
              TubeEnd::point),
          spine);
    };
    // They end before the frill hides them.
    horn({Vector(6.5f, 9, 4), Vector(9.5f, 19, -7), Vector(9, 28, -20), Vector(4, 34, -34)}, 3.2f);
    horn({Vector(9, 5, 2), Vector(14.5f, 9, -3), Vector(19, 11, -10)}, 2.3f);
    // Two feelers from the lip, one from the chin.
    const auto feeler = [&](const std::vector<Vector>& knots) {
      std::vector<Vector> path;
      for (const Vector& knot : knots) path.emplace_back(knot.x * side, knot.y, knot.z);
      put(tube(
              smoothPath(path, 22), 6, [](float t) { return 0.46f * (1 - t) * (1 - 0.4f * t) + 0.10f; },
              TubeEnd::point),
          spine);
    };
    feeler({Vector(4, -0.5f, 46), Vector(12, -2, 51), Vector(20, -10, 50), Vector(25, -24, 42),
            Vector(27, -40, 33), Vector(33, -54, 26)});
    feeler({Vector(2.5f, -22, 38), Vector(5, -31, 39), Vector(8, -42, 35), Vector(9, -54, 26),
            Vector(13, -64, 18)});
    // Teeth: long ones before, hooked ones behind, their roots deep in lip and jaw.
    const auto addTooth = [&](const Vector& root, float length, float thick) {
      const Vector down(0, length, 0);
      put(tube(
              smoothPath({root - down * 0.5f, root + down * 0.45f + Vector(0.3f * side, 0, 0.2f),
                          root + down + Vector(0, 0, -1.3f)},
                         3),
              6, [=](float t) { return thick * (1 - t) + 0.05f; }, TubeEnd::point),
          tooth);
    };
    for (int i = 0; i < 8; ++i) {
      const auto k = 0.72f * static_cast<float>(i);
      const float z = 46 - 5.2f * k;
      addTooth(Vector((4.4f + 0.5f * k) * side, -1.8f, z), i == 0 || i == 3 ? -6.6f : -4.0f, 1.7f);
      addTooth(Vector((2.6f + 0.6f * k) * side, -17.4f + 1.35f * k, z - 6), i == 1 ? 6.0f : 3.4f, 1.6f);
    }
    // The frill behind the cheeks.
    Surface frill;
    addFan(frill, Vector(9.5f * side, -1, -4),
           {Vector(10 * side, 27, -20), Vector(21 * side, 22, -19), Vector(28 * side, 10, -18),
            Vector(29 * side, -5, -17), Vector(24 * side, -19, -15), Vector(14 * side, -27, -12)},
           Vector(3 * side, -2, -7), 0.9f);
    append(all, placed(frill, headPlace));
  }
}

}  // namespace

Surface being() {
  Surface all;
  for (const Stretch& one : body()) append(all, withoutMapping(trunk(one)), hide);
  addHead(all);
  addSail(all, body()[2], 0.30f, 0.86f, 10,
          [](float s) { return 9 + 21 * std::sin(pi * (0.12f + 0.8f * s)); });
  addSail(all, body()[1], 0.16f, 0.84f, 9, [](float s) { return 10 + 28 * std::sin(pi * s); });
  const Vector tip = body()[0].path.front();
  addFan(all, tip + Vector(-1, -6, 4),
         {Vector(0, 6, -34), Vector(2, 22, -31), Vector(1, 30, -18), Vector(0, 34, -4), Vector(-1, 30, 10)},
         Vector(8, 6, -8), 1.3f);
  for (const float side : {-1.0f, 1.0f})
    addFan(all, Vector(14 * side, 12, 24),
           {Vector(34 * side, 34, -8), Vector(56 * side, 30, -22), Vector(62 * side, 14, -38),
            Vector(54 * side, -2, -50), Vector(34 * side, -14, -52)},
           Vector(10 * side, -10, -12), 1.7f);
  return all;
}

// --- Its paint

namespace {

struct BodyPlace {
  float length = 0;       // along its stretch
  float out = 1e9f;       // from the line, in girths
  float distance = 1e9f;  // from the line
  float height = 0;       // 1 on the back, -1 on the belly
  std::size_t stretch = 0;
};

BodyPlace bodyPlace(const Vector& p) {
  BodyPlace best;
  for (std::size_t k = 0; k < body().size(); ++k) {
    const Stretch& one = body()[k];
    for (std::size_t i = 0; i < one.path.size(); ++i) {
      const Vector arm = p - one.path[i];
      const float distance = arm.length();
      if (distance >= best.distance) continue;
      const Heading heading = headingAt(one, i);
      best = {.length = one.lengths[i] + dot(arm, heading.along),
              .out = distance / one.girth(ratioOf(i, one.path.size() - 1)),
              .distance = distance,
              .height = dot(arm, heading.up) / std::max(distance, 0.01f),
              .stretch = k};
    }
  }
  return best;
}

// Small lamps along the flank, a row of large and one of little ones.
float lamps(const BodyPlace& at) {
  const auto row = [&](float height, float apart, float size) {
    const float share = at.length / apart - std::floor(at.length / apart) - 0.5f;
    return std::exp(-(std::pow(share * apart, 2.0f) + std::pow((at.height - height) * 14, 2.0f)) /
                    (size * size));
  };
  return row(0.18f, 13, 2.1f) + 0.7f * row(-0.22f, 6.5f, 1.1f);
}

Colour4 hideColour(const BakePoint& p) {
  const Vector q = transformed(inverse(headPlace), p.position);
  const bool onHead = q.z > -16 && p.position.z > 40;
  const float mottle = 0.5f + 0.5f * fractal(p.position * 0.05f, 0, 4, 0.55f, 954);
  const NoiseCell scales = cellularNoise(p.position * (onHead ? 0.42f : 0.26f), 0, 951);
  const float scale = smoothStep(0.05f, 0.42f, scales.second - scales.nearest);
  const Colour4 dark = gradient(tealRamp, 0.24f + 0.18f * mottle) * (0.45f + 0.55f * scale);
  const Colour4 pale = mix(gradient(tealRamp, 0.62f), gradient(boneRamp, 0.66f), 0.55f);
  // The back catches the light, wet: more than it takes in.
  const float wet = std::pow(std::max(0.0f, p.light.g), 1.5f) * (0.55f + 0.45f * scale);
  Colour4 colour = dark * p.light * 1.6f + gradient(tealRamp, 0.84f) * (0.72f * wet);
  if (onHead) {
    const Vector eye(std::fabs(q.x) - eyeX, q.y - eyeY, q.z - eyeZ);
    const float under = smoothStep(-9, -15, q.y) * smoothStep(0, -0.5f, p.normal.y);
    colour = mix(colour, pale * p.light * 0.8f, 0.8f * under);
    const bool inside = q.y < -2.4f && q.y > -19 && std::fabs(q.x) < 6.5f && q.z > 8;
    if (inside) colour = colour * 0.35f + gradient(alarmRamp, 0.30f) * (0.35f * p.open);
    const float gills = std::sin((q.z + 0.25f * q.y) * 1.35f);
    const float slit =
        gills * gills * smoothStep(1, -3, q.z) * smoothStep(-17, -12, q.z) * smoothStep(5, 8, std::fabs(q.x));
    return colour + gradient(tealRamp, 0.78f) * (0.85f * std::exp(-dot(eye, eye) / 22) + 0.30f * slit * slit);
  }
  const BodyPlace at = bodyPlace(p.position);
  const float belly = smoothStep(-0.28f, -0.5f, at.height);
  const float plate = scute(at.length);
  colour = mix(colour, pale * p.light * (0.35f + 0.75f * plate), 0.9f * belly);
  const float lamp = lamps(at);
  colour = colour + gradient(tealRamp, 0.86f) * std::min(1.0f, 0.95f * lamp) +
           gradient(tealRamp, 0.5f) * (0.35f * std::exp(-std::pow((at.height - 0.1f) * 3.4f, 2.0f)) *
                                       (0.4f + 0.6f * mottle) * smoothStep(-0.4f, 0.1f, at.height));
  return colour;
}

// Burns from within; an upright slit.
Colour4 eyeColour(const BakePoint& p) {
  const Vector q = transformed(inverse(headPlace), p.position);
  const Vector out = unit(Vector(std::fabs(q.x) - eyeX, q.y - eyeY, q.z - eyeZ));
  const Vector gaze = unit(Vector(0.80f, 0.10f, 0.52f));
  const float across = dot(out, unit(cross(Vector(0, 1, 0), gaze))), up = out.y - 0.1f;
  const float r = std::hypot(across, up);
  const float slit =
      smoothStep(0.20f, 0.10f, std::fabs(across) + 0.16f * up * up) * smoothStep(0.85f, 0.7f, std::fabs(up));
  const float fibre = 0.8f + 0.2f * std::sin(std::atan2(up, across) * 26);
  // The lids shade its rim, and it is wet.
  const float shade = 1 - 0.5f * smoothStep(0.55f, 0.95f, r),
              glint = smoothStep(0.19f, 0.11f, std::hypot(across - 0.27f, up - 0.30f));
  const Colour4 iris = gradient(tealRamp, (1.0f - 0.42f * r * r) * fibre) * shade;
  return mix(mix(iris, gradient(tealRamp, 0.16f), 0.92f * slit), gradient(tealRamp, 1), glint);
}

}  // namespace

Colour4 beingColour(const BakePoint& p) {
  // Towards the surface it goes out into ink: it bows by two dozen units.
  const float deep = smoothStep(46, -8, p.position.y);
  const float veins =
      std::pow(1 - std::fabs(gradientNoise(warp(p.position * 0.07f, 0, 0.6f, 952), 0, 953)), 7.0f);
  Colour4 colour;
  switch (p.part) {
    case eyeBall:
      return eyeColour(p);
    case tooth:
      // Stained where it leaves the gum.
      return gradient(boneRamp, 0.84f - 0.22f * fractal(p.position * 0.5f, 0, 3, 0.5f, 955)) *
             (0.20f + 0.85f * p.light.g);
    case spine:
      colour = (gradient(boneRamp, 0.36f) * (0.06f + 0.5f * p.light.g) +
                gradient(tealRamp, 0.80f) * (0.04f + 0.46f * std::max(0.0f, p.light.g))) *
               (0.55f + 0.45f * std::fabs(std::sin(p.position.z * 0.9f + p.position.y * 0.7f)));
      break;
    case membrane: {
      // The light shines through: what faces away from it glows as well, most where the skin is thin.
      const BodyPlace at = bodyPlace(p.position);
      const float thin = smoothStep(14, 46, at.distance);
      // On the back it stands before the sky: darker, or what it hides would seem to end in the air.
      const float shade = at.stretch == 1 ? 0.42f : 1.0f;
      colour = gradient(tealRamp, 0.34f + 0.34f * thin) * (shade * (0.30f + 0.42f * p.light.g)) +
               gradient(tealRamp, 0.74f) * (0.34f * veins * (0.4f + thin));
      break;
    }
    default:
      colour = hideColour(p);
  }
  return mix(colour, gradient(tealRamp, 0.06f), deep);
}

}  // namespace vex::water
