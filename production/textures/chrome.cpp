#include <array>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/shape.h"
#include "production/image/solid.h"
#include "production/textures/families.h"
#include "production/textures/hangar_light.h"
#include "production/textures/mirror_worlds.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

Colour4 mirroredHangar(const Vector& direction) {
  const Colour4 light = hangarLight(direction, 0);
  const auto contrast = [](float value) { return clamp01(1.9f * value * value + 0.8f * value); };
  return {contrast(light.r), contrast(light.g), contrast(light.b)};
}

float joined(float p, float q, float k) {
  return smoothUnion(p, q, k);
}

// A limb: a curve of four points (cubic Bezier), thick at the root, ringed like a throat.
struct Limb {
  std::array<Vector, 4> bends;
  float root, tip;
};

constexpr int limbPieces = 9;

struct LimbPieces {
  std::array<Vector, limbPieces + 1> joints;
  float root, tip;
  Vector centre;
  float reach;  // of all its surface from `centre`
};

LimbPieces pieceTogether(const Limb& limb) {
  LimbPieces pieces{{}, limb.root, limb.tip, {0, 0, 0}, 0};
  for (int i = 0; i <= limbPieces; ++i) {
    const float t = static_cast<float>(i) / limbPieces, s = 1 - t;
    pieces.joints[static_cast<std::size_t>(i)] =
        limb.bends[0] * (s * s * s) + limb.bends[1] * (3 * s * s * t) + limb.bends[2] * (3 * s * t * t) +
        limb.bends[3] * (t * t * t);
  }
  for (const Vector& joint : pieces.joints) pieces.centre += joint * (1.0f / (limbPieces + 1));
  for (const Vector& joint : pieces.joints)
    pieces.reach = std::max(pieces.reach, (joint - pieces.centre).length() + limb.root * 1.3f);
  return pieces;
}

float limbDistance(const LimbPieces& limb, const Vector& p, float bound) {
  const float outside = (p - limb.centre).length() - limb.reach;
  if (outside > bound) return outside;
  float nearest = 1e9f, place = 0;
  for (std::size_t i = 0; i < limbPieces; ++i) {
    const Vector& a = limb.joints[i];
    const Vector along = limb.joints[i + 1] - a, from = p - a;
    const float t = clamp01(dot(from, along) / dot(along, along));
    const float share = (static_cast<float>(i) + t) / limbPieces;
    const float d = (from - along * t).length() - mix(limb.root, limb.tip, std::pow(share, 0.7f));
    if (d < nearest) nearest = d, place = share;
  }
  const float rings = std::sin(place * 74);
  return nearest - 0.010f * (1 - place) * rings * rings;
}

// The creature hangs about the origin, about 2 units across, its face towards +z: a long skull over a ribbed
// throat, six eyes, and limbs that bend up and come down like a spider's.
struct Creature {
  std::vector<LimbPieces> limbs;
  std::array<Vector, 6> eyes{Vector(-0.105f, 0.13f, 0.345f),  Vector(0.105f, 0.13f, 0.345f),
                             Vector(-0.17f, 0.215f, 0.27f),   Vector(0.17f, 0.215f, 0.27f),
                             Vector(-0.065f, 0.235f, 0.315f), Vector(0.065f, 0.235f, 0.315f)};
};

Creature growCreature() {
  Creature creature;
  for (const float side : {-1.0f, 1.0f}) {
    const float odd = side > 0 ? 0.04f : 0;
    const Limb limbs[] = {
        {{Vector(0.10f * side, 0.05f, 0.0f), Vector(0.55f * side, 0.95f + odd, 0.0f),
          Vector(0.85f * side, 0.55f, 0.1f), Vector((0.80f + odd) * side, -0.75f, 0.25f)},
         0.085f,
         0.008f},
        {{Vector(0.12f * side, -0.02f, -0.05f), Vector(0.70f * side, 0.62f, -0.2f),
          Vector(1.05f * side, 0.2f + odd, -0.1f), Vector(0.93f * side, -0.45f, -0.1f)},
         0.075f,
         0.008f},
        {{Vector(0.10f * side, -0.10f, 0.05f), Vector(0.50f * side, 0.35f, 0.35f),
          Vector(0.58f * side, -0.2f, 0.45f), Vector((0.42f + odd) * side, -0.88f, 0.5f)},
         0.08f,
         0.007f},
        {{Vector(0.06f * side, -0.16f, 0.05f), Vector(0.26f * side, -0.1f, 0.3f),
          Vector(0.30f * side, -0.5f - odd, 0.3f), Vector(0.13f * side, -0.82f, 0.22f)},
         0.055f,
         0.006f},
        {{Vector(0.06f * side, 0.2f, -0.1f), Vector(0.2f * side, 0.75f, -0.2f),
          Vector(0.42f * side, 0.8f, -0.1f), Vector(0.40f * side, 0.93f + 0.4f * odd, 0.0f)},
         0.06f,
         0.006f},
    };
    for (const Limb& limb : limbs) creature.limbs.push_back(pieceTogether(limb));
  }
  return creature;
}

float eyeDistance(const Creature& creature, const Vector& p) {
  float nearest = 1e9f;
  for (const Vector& eye : creature.eyes) nearest = std::min(nearest, ball(p, eye, 0.036f));
  return nearest;
}

float creatureDistance(const Creature& creature, const Vector& p) {
  const Vector q(std::fabs(p.x), p.y, p.z);
  float head = ellipsoid(q, Vector(0, 0.20f, 0.06f), Vector(0.235f, 0.30f, 0.29f));
  head = joined(head, ellipsoid(q, Vector(0, 0.03f, 0.20f), Vector(0.16f, 0.17f, 0.16f)), 0.10f);
  head =
      joined(head, taper(q, Vector(0.05f, 0.30f, 0.24f), Vector(0.17f, 0.17f, 0.24f), 0.04f, 0.05f), 0.05f);
  // Sockets, and a mouth of plates.
  for (std::size_t i = 1; i < creature.eyes.size(); i += 2)
    head = -joined(-head, ball(q, creature.eyes[i] + Vector(0, 0, 0.02f), 0.044f), 0.02f);
  const float plates = std::sin((q.y + 0.6f * q.x) * 62);
  const float mouth = smoothStep(0.07f, -0.06f, q.y) * smoothStep(0.12f, 0.25f, q.z);
  head -= 0.009f * mouth * plates;
  float throat = taper(q, Vector(0, -0.02f, 0.05f), Vector(0, -0.42f, 0.02f), 0.15f, 0.07f);
  const float ribs = std::sin(q.y * 58);
  throat -= 0.014f * ribs * ribs;
  float all = joined(head, throat, 0.08f);
  for (const LimbPieces& limb : creature.limbs) {
    const float d = limbDistance(limb, p, all + 0.1f);
    all = joined(all, d, 0.07f);
  }
  return all;
}

struct Camera {
  Vector eye, target;
  float reach;  // tangent of half the angle across
};

// Alpha is the solid's coverage; `finish` turns what the metal mirrors at a place into its colour.
Canvas shoot(const Solid& solid, const Environment& world, const Camera& camera, int width, int height,
             const std::function<Colour4(const Vector&, const Colour4&)>& finish) {
  Vector forward = camera.target - camera.eye;
  forward.normalize();
  Vector right = cross(forward, Vector(0, 1, 0));
  right.normalize();
  const Vector up = cross(right, forward);
  const float aspect = static_cast<float>(height) / static_cast<float>(width);
  const float pixel = 2 * camera.reach / static_cast<float>(width);
  return paint(width, height, [&](float u, float v) {
    Vector direction =
        forward + right * (camera.reach * (2 * u - 1)) + up * (camera.reach * aspect * (1 - 2 * v));
    direction.normalize();
    const RayMarch ray = march(solid, camera.eye, direction, 6, 0.0012f);
    Colour4 colour{0, 0, 0, 0};
    if (ray.hit || ray.nearest < pixel) {
      const Vector place = camera.eye + direction * ray.length;
      if (ray.hit) {
        colour = finish(place, shadeChrome(solid, world, Chrome{}, place, direction));
      }
      colour.a = ray.hit ? 1 : smoothStep(pixel, 0, ray.nearest) * 0.5f;
    }
    return colour;
  });
}

// Colours of covered texels run out into their uncovered neighbours, so that edges keep their colour.
Canvas bleed(Canvas picture, int reach) {
  std::vector<char> known(picture.texels.size());
  for (std::size_t i = 0; i < known.size(); ++i) known[i] = picture.texels[i].a >= 1;
  for (int pass = 0; pass < reach; ++pass) {
    const std::vector<char> before = known;
    for (int y = 0; y < picture.height; ++y)
      for (int x = 0; x < picture.width; ++x) {
        const auto at = [&](int i, int j) {
          return static_cast<std::size_t>(edgeIndex(y + j, picture.height, EdgeMode::clamp)) *
                     static_cast<std::size_t>(picture.width) +
                 static_cast<std::size_t>(edgeIndex(x + i, picture.width, EdgeMode::clamp));
        };
        if (before[at(0, 0)]) continue;
        Colour4 sum{0, 0, 0, 0};
        float count = 0;
        for (int j = -1; j <= 1; ++j)
          for (int i = -1; i <= 1; ++i)
            if (before[at(i, j)]) sum = sum + picture.texels[at(i, j)], ++count;
        if (count == 0) continue;
        Colour4& texel = picture.texels[at(0, 0)];
        texel = {sum.r / count, sum.g / count, sum.b / count, texel.a};
        known[at(0, 0)] = 1;
      }
  }
  return picture;
}

Canvas creaturePicture(const Settings& settings, const Camera& camera, int fullWidth, int fullHeight,
                       bool onGround) {
  const Creature creature = growCreature();
  const Solid solid = [&](const Vector& p) {
    return std::min(creatureDistance(creature, p), eyeDistance(creature, p));
  };
  const auto finish = [&](const Vector& p, const Colour4& mirrored) {
    const float eye = eyeDistance(creature, p);
    const float wet = 0.8f + 0.2f * fractal(p * 9, 0, 3, 0.5f, 730);
    const Colour4 metal = mirrored * wet + gradient(violetRamp, 0.5f * std::exp(-std::max(0.0f, eye) * 22));
    Vector from = p - creature.eyes[0];
    for (const Vector& centre : creature.eyes)
      if ((p - centre).length() < from.length()) from = p - centre;
    const float across = std::fabs(from.x - 0.2f * from.z) / 0.036f;  // of the slit, which looks at us
    const float slit = coverage(across - 0.2f * (1 - from.y * from.y / 0.0011f), 0.12f);
    const Colour4 burning =
        gradient(violetRamp, 0.5f + 0.42f * std::exp(-across * 2.6f)) * (1 - 0.95f * slit) + mirrored * 0.35f;
    return mix(metal, burning, coverage(eye - 0.004f, 0.006f));
  };
  const int width = settings.side(fullWidth), height = settings.side(fullHeight);
  Canvas picture = bleed(shoot(solid, mirroredHangar, camera, width, height, finish), 3);
  if (!onGround) return picture;
  const Canvas ground = viewOf([](const Vector& d) { return hangarLight(d, 0); }, lookTowards(1.5f, 0.05f),
                               0.55f, width, height, 1);
  const Canvas soft = blur(ground, static_cast<float>(width) / 130, EdgeMode::clamp);  // out of focus
  for (std::size_t i = 0; i < picture.texels.size(); ++i) {
    picture.texels[i] = mix(soft.texels[i] * 0.75f, picture.texels[i], picture.texels[i].a);
    picture.texels[i].a = 1;
  }
  return picture;
}

// One long limb that reaches in from the left, for the foreground: larger than life and dark.
Canvas tentacle(const Settings& settings) {
  const LimbPieces limb = pieceTogether({{Vector(-1.25f, 0.12f, 0), Vector(-0.3f, 0.42f, 0.15f),
                                          Vector(0.15f, -0.45f, 0.1f), Vector(0.78f, 0.1f, 0)},
                                         0.20f,
                                         0.012f});
  const LimbPieces second = pieceTogether({{Vector(-1.25f, -0.2f, -0.2f), Vector(-0.6f, -0.36f, 0.1f),
                                            Vector(-0.1f, 0.3f, 0.2f), Vector(0.3f, 0.28f, 0.1f)},
                                           0.13f,
                                           0.01f});
  const Solid solid = [&](const Vector& p) {
    return joined(limbDistance(limb, p, 1), limbDistance(second, p, 1), 0.05f);
  };
  const int width = settings.side(512);
  const Canvas shot = shoot(solid, mirroredHangar, {{0, 0, 4}, {0, 0, 0}, 0.25f}, width, width / 2,
                            [](const Vector& p, const Colour4& c) {
                              return c * (0.75f + 0.25f * fractal(p * 6, 0, 3, 0.5f, 731));
                            });
  Canvas limbs = bleed(shot, 3);
  // It is drawn with waves, which would carry the cut at the root over to the other side.
  for (int y = 0; y < limbs.height; ++y)
    for (int x = 0; x < limbs.width; ++x)
      limbs.at(x, y) =
          limbs.at(x, y) * smoothStep(0.04f, 0.06f, static_cast<float>(x) / static_cast<float>(width));
  return limbs;
}

// A mirror ball, cut out of its own sphere map.
Canvas orb(const Settings& settings, const Environment& world) {
  const int side = settings.side(256);
  Canvas map = sphereMap(world, lookTowards(1.1f, -0.1f), side, 2);
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const float half = static_cast<float>(side) / 2;
      map.at(x, y).a = coverage(
          std::hypot(static_cast<float>(x) + 0.5f - half, static_cast<float>(y) + 0.5f - half) - 0.9f * half,
          1.6f);
    }
  return map;
}

}  // namespace

Products chromePictures() {
  const Camera front{{0.25f, 0.05f, 3.4f}, {0.02f, 0.04f, 0}, 0.33f};
  const Camera close{{0.75f, 0.30f, 1.35f}, {-0.06f, 0.13f, 0.1f}, 0.42f};
  return {
      picture(
          "beast", PictureKind::maskedJpeg, "chrome", 9,
          [front](const Settings& settings) { return creaturePicture(settings, front, 512, 512, false); }),
      picture(
          "beast_near", PictureKind::jpeg, "chrome", 14,
          [close](const Settings& settings) { return creaturePicture(settings, close, 1024, 512, true); }),
      picture("tentacle", PictureKind::maskedJpeg, "chrome", 3, tentacle),
      picture("orb", PictureKind::maskedJpeg, "chrome", 1,
              [](const Settings& settings) { return orb(settings, mirroredHangar); }),
      picture("orb_teal", PictureKind::maskedJpeg, "chrome", 1,
              [](const Settings& settings) { return orb(settings, laboratoryLight); }),
      picture("orb_ember", PictureKind::maskedJpeg, "chrome", 1,
              [](const Settings& settings) { return orb(settings, furnaceLight); }),
  };
}

}  // namespace vex
