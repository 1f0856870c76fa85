#include "production/models/fetus_paint.h"

#include <algorithm>
#include <cmath>

#include "production/geometry/placement.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/image/solid.h"
#include "production/models/fetus_being.h"
#include "production/models/fetus_parts.h"
#include "production/textures/palette.h"

namespace vex::laboratory {

using namespace image;
using namespace geometry;

namespace {

float grit(const Vector& p, float scale, std::uint32_t seed) {
  return 0.5f + 0.5f * fractal(p * scale, 0, 4, 0.55f, seed);
}

// Runs of dirt down a wall.
float runs(const Vector& p, std::uint32_t seed) {
  return 0.5f + 0.5f * fractal(Vector(p.x * 0.045f, p.y * 0.006f, p.z * 0.045f), 0, 4, 0.6f, seed);
}

float lineAt(float value, float width) {
  return smoothStep(width, 0.4f * width, std::fabs(value - std::round(value)));
}

Colour4 lit(const Colour4& albedo, const BakePoint& p) {
  Colour4 colour = albedo * p.light;
  colour.a = 1;
  return colour;
}

Colour4 paintedRoom(const BakePoint& p);
Colour4 paintedProp(const BakePoint& p);

}  // namespace

BakeLook labLook(float reach, int rays) {
  BakeLook look;
  look.sky = [](const Vector& d) {
    const Colour4 haze = mix(gradient(tealRamp, 0.36f), gradient(tealRamp, 0.54f), 0.5f + 0.5f * d.y);
    return mix(haze, gradient(boneRamp, 0.42f), 0.28f) * 0.19f;
  };
  // The lamp under its shade, what the lit table gives back, the window.
  look.lights = {{.towards = lampPlace, .placed = true, .size = 0.02f, .colour = {3.5f, 3.6f, 3.1f}},
                 {.towards = Vector(-10, -6, 92),
                  .placed = true,
                  .size = 0.2f,
                  .colour = {0.4f, 0.52f, 0.46f},
                  .reach = 120},
                 {.towards = Vector(-150, 40, -285),
                  .placed = true,
                  .size = 0.3f,
                  .colour = {0.12f, 0.62f, 0.62f},
                  .reach = 165}};
  look.bounce = {0.01f, 0.03f, 0.03f};
  look.reach = reach;
  look.rays = rays;
  return look;
}

Colour4 roomColour(const BakePoint& p) {
  Colour4 colour = paintedRoom(p) * roomGain;
  colour.a = 1;
  return colour;
}

Colour4 propColour(const BakePoint& p) {
  if (p.part == phone || p.part == lids || p.part == covers || p.part == heart)
    return paintedProp(p);  // not lit by the player
  Colour4 colour = paintedProp(p) * propGain;
  colour.a = 1;
  return colour;
}

namespace {

Colour4 paintedRoom(const BakePoint& p) {
  if (p.part == leaf) return doorColour(p);
  const Vector& q = p.position;
  const float dirt = runs(q, 921), stain = grit(q, 0.012f, 922);
  if (p.part == ground) {
    const float cells = std::floor(q.x / 58) + std::floor(q.z / 58);
    const bool dark = std::fmod(std::fabs(cells), 2.0f) > 0.5f;
    const float joint = std::max(lineAt(q.x / 58, 0.06f), lineAt(q.z / 58, 0.06f));
    // What falls past the table stays dimmer than what lies on it.
    const float most = std::max({p.light.r, p.light.g, p.light.b, 0.5f});
    return lit(gradient(tealRamp, (dark ? 0.2f : 0.46f) * (0.7f + 0.5f * stain)) *
                   ((1 - 0.55f * joint) * 0.5f / most),
               p);
  }
  if (p.part == ceiling) return lit(gradient(tealRamp, 0.34f + 0.16f * stain), p);
  if (p.part == pipes) return lit(mix(gradient(boneRamp, 0.5f), gradient(tealRamp, 0.3f), dirt), p);
  if (p.part == frames)
    return lit(gradient(tealRamp, 0.42f + 0.3f * std::max(0.0f, p.edge) - 0.15f * stain), p);
  // Tiles up to the rail and a band above them, worn enamel paint over that.
  const float along = std::fabs(q.x) > 378 ? q.z : q.x;
  const bool tiled = q.y < -92;
  const float joint =
      tiled ? std::max(lineAt(along / 44, 0.075f), lineAt((q.y + 220) / 42.5f, 0.075f)) : 0.0f;
  const float own = hashUnit(static_cast<int>(std::floor(along / 44 + 0.5f)),
                             static_cast<int>(std::floor((q.y + 220) / 42.5f + 0.5f)), 923);
  Colour4 colour = tiled ? mix(gradient(tealRamp, 0.66f), gradient(boneRamp, 0.74f), 0.28f + 0.25f * own)
                         : mix(gradient(tealRamp, 0.5f), gradient(tealRamp, 0.6f), stain);
  const float peeled = smoothStep(0.62f, 0.72f, grit(q, 0.02f, 924) + 0.12f * smoothStep(60, 230, q.y));
  if (!tiled) colour = mix(colour, gradient(boneRamp, 0.42f), 0.65f * peeled);
  colour = mix(colour, gradient(brassRamp, 0.22f), 0.75f * smoothStep(0.55f, 0.85f, dirt));
  colour = colour * ((1 - 0.6f * joint) * (0.62f + 0.38f * smoothStep(-218, -150, q.y)));
  // About the window the wall is lit; from there it sinks into the dark. What falls past the table onto its
  // foot stays as dim as on the floor.
  const float away = (q - windowMiddle).length();
  const float most = tiled ? std::max({p.light.r, p.light.g, p.light.b, 0.5f}) : 0.5f;
  return lit(colour * (mix(0.42f, 1.0f, std::exp(-away * away / 26000)) * 0.5f / most), p);
}

}  // namespace

Colour4 doorColour(const BakePoint& p) {
  const Vector& q = p.position;
  const float rust = smoothStep(0.55f, 0.8f, runs(q, 931) + 0.25f * std::max(0.0f, p.edge));
  Colour4 colour = mix(gradient(tealRamp, 0.5f), gradient(tealRamp, 0.62f), grit(q, 0.05f, 932));
  colour = mix(colour, gradient(brassRamp, 0.3f), 0.8f * rust);
  const float port = std::hypot(q.x - 156, q.y + 10);
  if (q.z > -332 && port < 24) return gradient(tealRamp, 0.7f - 0.016f * port) * 0.2f;
  // Alarm stripes at its foot.
  if (q.y < -196 && q.z > -330) {
    const float stripe = std::fmod(std::fabs(q.x + q.y), 26.0f) / 26;
    colour = stripe < 0.5f ? gradient(alarmRamp, 0.52f) : ink;
  }
  return lit(colour, p);
}

// Brushed steel with a raised rim; rings of spilt liquid, scratches, ash.
Colour4 tableColour(const BakePoint& p) {
  const Vector& q = p.position;
  const float brushed = 0.5f + 0.5f * fractal(Vector(q.x * 0.03f, q.y * 0.3f, q.z * 0.6f), 0, 4, 0.6f, 941);
  const float stain = smoothStep(0.5f, 0.72f, grit(q, 0.022f, 942));
  float wet = 0;
  const Vector rings[] = {Vector(-34, 52, 11), Vector(58, 84, 9), Vector(-120, -20, 13), Vector(40, -62, 16)};
  for (const Vector& ring : rings) {
    const float r = std::hypot(q.x - ring.x, q.z - ring.y) - ring.z + 1.4f * gradientNoise(q * 0.12f, 0, 943);
    wet = std::max(wet, std::exp(-r * r * 0.9f));
  }
  const float spill = smoothStep(
      0.08f, 0.0f,
      std::hypot((q.x - 20) / 60, (q.z - 62) / 22) - 0.8f + 0.35f * gradientNoise(q * 0.045f, 0, 944));
  Colour4 colour = mix(gradient(steelRamp, 0.5f + 0.1f * brushed), gradient(tealRamp, 0.52f), 0.55f);
  colour = colour * (0.72f + 0.2f * brushed) * (1 - 0.35f * stain);
  colour = mix(colour, gradient(brassRamp, 0.3f), 0.5f * wet);
  colour = mix(colour, colour * 0.5f + gradient(tealRamp, 0.22f), 0.8f * spill);
  if (q.y < tableHeight - 4) colour = colour * 0.6f;
  const float scratch = std::pow(
      1 - std::fabs(gradientNoise(Vector(q.x * 0.05f + 0.02f * q.z, 0, q.z * 0.25f), 0, 945)), 22.0f);
  Colour4 seen = lit(colour, p);
  seen = seen + p.light * (0.07f * scratch + 0.18f * std::max(0.0f, p.edge));
  seen.a = 1;
  return seen;
}

namespace {

// Oxblood rubber, a bone dial.
Colour4 phoneColour(const BakePoint& p, float wear, float edge) {
  const Vector at = transformed(inverse(dialFrame()), p.position);
  const float r = std::hypot(at.x, at.z);
  float hole = 1e3f;
  for (int i = 0; i < 10; ++i) {
    const float angle = 2 * pi * (static_cast<float>(i) / 12.5f + 0.02f);
    hole = std::min(hole, std::hypot(at.x - 6.3f * std::cos(angle), at.z - 6.3f * std::sin(angle)));
  }
  Colour4 colour = mix(gradient(alarmRamp, 0.27f), gradient(alarmRamp, 0.42f), wear * 0.6f + 0.5f * edge);
  if (p.part == dial)
    colour = r < 3.2f ? gradient(boneRamp, 0.62f)
                      : mix(ink, gradient(boneRamp, 0.8f), smoothStep(1.1f, 1.5f, hole));
  const Colour4 seen = lit(colour, p);
  const float gloss = std::pow(clamp01(p.light.g * 0.62f), 4.0f);
  // The lamp is beyond it: a rim along what faces up and to it.
  const float rim =
      p.part == dial ? 0 : std::pow(std::max(0.0f, dot(p.normal, unit(Vector(-0.5f, 0.85f, 0.1f)))), 8.0f);
  return seen + gradient(steelRamp, 0.5f) * (0.3f * gloss) + gradient(tealRamp, 0.85f) * (0.6f * rim);
}

// Ash before the glow, paper with a brown edge, cork.
Colour4 cigaretteColour(const BakePoint& p, float wear) {
  const Vector& q = p.position;
  const float behind = (q - emberPlace).length();
  const float ragged = behind + 0.5f * gradientNoise(q * 0.9f, 0, 955);
  if (ragged < 1.9f) return gradient(steelRamp, 0.3f + 0.3f * wear) * (0.5f + 0.4f * p.open);
  const Colour4 paper = gradient(boneRamp, 0.86f) * mix(0.35f, 1.0f, smoothStep(2.6f, 5.0f, ragged));
  const Colour4 colour = behind > 10.5f ? gradient(brassRamp, 0.52f + 0.1f * wear) * 0.8f : paper;
  const float ember = smoothStep(1.2f, 0.2f, std::fabs(ragged - 2.3f));
  return lit(colour, p) * 0.5f + colour * 0.4f + gradient(emberRamp, 0.8f) * (ember * (0.8f + 0.9f * wear));
}

// Bone enamel within, glowing about the bulb; green enamel without, chipped to iron at the rim.
Colour4 shadeColour(const BakePoint& p, float wear, float edge) {
  const Vector& q = p.position;
  const Placement frame = inverse(lampFrame());
  const Vector at = transformed(frame, q), facing = transformed(frame, q + p.normal) - at;
  const float out = std::hypot(at.x, at.z);
  const bool inside = at.y < 5 && at.x * facing.x + at.z * facing.z < 0;
  if (inside)
    return mix(gradient(boneRamp, 0.97f), gradient(tealRamp, 0.66f), smoothStep(4, 18, out)) * 0.98f;
  const float chipped = smoothStep(0.5f, 0.8f, edge + 0.6f * smoothStep(0.5f, 0.75f, wear) - 0.2f);
  return lit(mix(mix(gradient(tealRamp, 0.5f), gradient(tealRamp, 0.62f), wear), gradient(brassRamp, 0.22f),
                 0.8f * chipped),
             p) +
         gradient(tealRamp, 0.3f) * (0.5f * smoothStep(-20, -34, at.y));
}

// Pickled things: a pale shape in glowing liquid.
Colour4 specimenColour(const BakePoint& p) {
  const Vector& q = p.position;
  const float cell =
      hashUnit(static_cast<int>(std::floor(q.z / 44)), static_cast<int>(std::floor((q.y + 230) / 80)), 953);
  const float shape = smoothStep(0.45f, 0.7f, grit(q, 0.07f, 954));
  return gradient(tealRamp, 0.26f + 0.16f * cell) * (0.4f + 0.4f * p.open) +
         gradient(boneRamp, 0.4f) * (0.25f * shape);
}

// Muscle in turns about its axis, fat in the furrows, vessels over both.
Colour4 heartColour(const BakePoint& p, float wear, float edge) {
  const Vector at = p.position - heartPlace;
  const float turn = std::atan2(at.z, at.x),
              muscle = gradientNoise(Vector(turn * 3 + at.y, at.y * 0.6f, 0), 0, 967);
  const float vessel = std::pow(1 - std::fabs(gradientNoise(warp(at * 0.32f, 0, 0.5f, 968), 0, 969)), 12.0f);
  Colour4 colour = mix(Colour4{0.62f, 0.05f, 0.05f}, Colour4{0.9f, 0.2f, 0.12f}, 0.5f + 0.5f * muscle);
  colour = mix(colour, Colour4{1.0f, 0.6f, 0.4f}, 0.5f * smoothStep(0.6f, 0.9f, wear) + 0.4f * edge);
  colour = mix(colour, Colour4{0.26f, 0.0f, 0.06f}, 0.85f * vessel);
  const float key = std::max(0.0f, dot(p.normal, unit(Vector(-0.5f, 0.8f, 0.3f))));
  return colour * (0.25f + 0.95f * key);
}

// Skin, thin and veined, with a dark wet edge below.
Colour4 coverColour(const BakePoint& p, float wear) {
  const Vector& q = p.position;
  const float side = q.z < 0 ? -1.0f : 1.0f;
  const Vector w = unit(q - Vector(eyePlace.x, eyePlace.y, eyePlace.z * side));
  const Vector axis = gazeAxis(side), across = eyeAcross(side);
  const float aside = std::asin(std::clamp(dot(w, across), -1.0f, 1.0f)) / (80 * pi / 180),
              rise = std::atan2(dot(w, cross(axis, across)), dot(w, axis)) * 180 / pi;
  const float above = rise + 45 * std::sqrt(std::max(0.0f, 1 - aside * aside));  // degrees from the edge
  const float vein = std::pow(1 - std::fabs(gradientNoise(q * 0.7f, 0, 959)), 8.0f);
  Colour4 colour = mix(Colour4{0.74f, 0.47f, 0.39f}, Colour4{0.6f, 0.3f, 0.28f}, wear);
  colour = mix(colour, Colour4{0.4f, 0.13f, 0.2f}, 0.5f * vein);
  colour = mix(colour, Colour4{0.16f, 0.03f, 0.04f}, 0.9f * smoothStep(10, 3, above));
  const float fold = smoothStep(5, 1, std::fabs(rise - 22));  // where it creases when it opens
  return colour * (0.5f + 0.34f * smoothStep(0, 40, above)) * (1 - 0.45f * fold);
}

Colour4 paintedProp(const BakePoint& p) {
  const Vector& q = p.position;
  const float edge = std::max(0.0f, p.edge), wear = grit(q, 0.11f, 951);
  switch (p.part) {
    case apparatus: {
      const float band = smoothStep(0.35f, 0.7f, grit(Vector(q.x, q.y * 4, q.z), 0.05f, 952));
      if (q.y < -40 && std::hypot(q.x, q.z) < 38) return lit(gradient(tealRamp, 0.36f), p) * 0.5f;
      return lit(mix(gradient(steelRamp, 0.46f + 0.07f * band), gradient(brassRamp, 0.5f), 0.34f) *
                     (0.8f + 0.7f * edge),
                 p);
    }
    case phone:
    case dial:
    case receiver:
      return phoneColour(p, wear, edge);
    case ashtray:
      return lit(q.y > cigarettePlace.y + 1.5f - 5
                     ? mix(gradient(steelRamp, 0.36f), gradient(tealRamp, 0.4f), 0.5f)
                     : gradient(boneRamp, 0.24f + 0.25f * wear),
                 p);
    case cigarette:
      return cigaretteColour(p, wear);
    case nozzle:
      return lit(mix(gradient(steelRamp, 0.55f), gradient(steelRamp, 0.75f), edge), p);
    case shade:
      return shadeColour(p, wear, edge);
    case bulb:
      return {1, 1, 0.96f};
    case shelf:
      return lit(gradient(tealRamp, 0.36f + 0.25f * edge + 0.08f * wear), p);
    case specimens:
      return specimenColour(p);
    case duct:
      return lit(gradient(steelRamp, 0.4f + 0.2f * edge) * (0.7f + 0.4f * wear), p);
    case legs:
      return lit(gradient(steelRamp, 0.34f + 0.2f * edge), p);
    case beacon:
      return mix(gradient(alarmRamp, 0.1f), gradient(alarmRamp, 0.22f), smoothStep(-318, -300, q.z)) *
             (0.6f + 0.4f * p.open);
    case bones:
      return boneColour(p);
    case lids:
      return lidColour(p);
    case heart:
      return heartColour(p, wear, edge);
    case covers:
      return coverColour(p, wear);
  }
  return black;
}

}  // namespace

// Ivory with dark crevices, the sutures of the skull and a blush of the lamp through it.
Colour4 boneColour(const BakePoint& p) {
  const Vector q(p.position.x, p.position.y, std::fabs(p.position.z));
  const float old = grit(q, 0.12f, 956), hollow = smoothStep(0.75f, 0.25f, p.open);
  Colour4 colour = mix(gradient(boneRamp, 0.66f), gradient(boneRamp, 0.94f), old);
  const bool cranium = q.y > 15 && q.x > -14;
  if (cranium) {
    const float wander = 0.5f * gradientNoise(p.position * 0.9f, 0, 957);
    const float seam = std::min(std::fabs(p.position.z + wander), std::fabs(q.x + 4 - 0.35f * q.z + wander));
    colour = colour * (1 - 0.5f * smoothStep(0.75f, 0.2f, seam));
  }
  colour = mix(colour, Colour4{0.36f, 0.12f, 0.12f}, 0.8f * hollow);
  colour = colour + gradient(boneRamp, 0.5f) * (0.25f * std::max(0.0f, p.edge));
  return lit(colour, p) * 0.75f + colour * (0.3f * p.open);
}

// As the skin, wet and dark at the rim.
Colour4 lidColour(const BakePoint& p) {
  const float side = p.position.z < 0 ? -1.0f : 1.0f;
  const Vector w = p.position - Vector(eyePlace.x, eyePlace.y, eyePlace.z * side);
  const Vector axis = gazeAxis(side), across = eyeAcross(side);
  const float theta = std::acos(std::clamp(dot(unit(w), axis), -1.0f, 1.0f));
  const float past = theta - lidOpening(dot(w, across), w.y);  // radians behind the rim
  Colour4 colour = mix(Colour4{0.8f, 0.46f, 0.38f}, Colour4{0.7f, 0.34f, 0.3f}, grit(p.position, 0.5f, 958));
  colour = mix(colour, Colour4{0.5f, 0.16f, 0.14f}, smoothStep(0.06f, 0.0f, past));
  colour = mix(colour, Colour4{0.6f, 0.26f, 0.22f}, smoothStep(0.12f, 0.34f, past));
  const float above = p.normal.y;
  colour = colour * (0.62f + 0.3f * above);
  colour.a = 1;
  return colour;
}

// Thin skin over blood: veins, flush in the hollows, pale on brow and knuckles. Its finest forms are painted
// with the lamp's light on them, finer than its triangles.
Colour4 skinColour(const BakePoint& p) {
  const Vector q(p.position.x, p.position.y, std::fabs(p.position.z));
  const Vector bent = warp(q * 0.1f, 0, 0.7f, 961);
  const float vein =
      std::pow(1 - std::fabs(gradientNoise(bent, 0, 962)), 14.0f) * (0.4f + 0.6f * grit(q, 0.06f, 963));
  const float fine = std::pow(1 - std::fabs(gradientNoise(bent * 2.3f, 0, 964)), 9.0f);
  const Vector normal = normalAt(beingDistance, p.position, 0.12f);
  const float within = beingDistance(p.position);
  const auto free = [&](float reach) {
    return clamp01((beingDistance(p.position + normal * reach) - within) / reach);
  };
  const float crevice = free(0.5f) * (0.45f + 0.55f * free(1.6f)), hollow = 1 - crevice * p.open;
  Colour4 colour = mix(Colour4{1.0f, 0.8f, 0.69f}, Colour4{0.93f, 0.6f, 0.5f}, grit(q, 0.17f, 965));
  colour = mix(colour, Colour4{0.72f, 0.2f, 0.16f}, 0.55f * hollow);
  // Less blood shows on the face than on the skull.
  const float face = smoothStep(13, 8, (q - Vector(-21, 8, 0)).length());
  colour = mix(colour, Colour4{0.4f, 0.13f, 0.26f}, (0.5f - 0.3f * face) * vein);
  colour = mix(colour, Colour4{0.72f, 0.16f, 0.16f}, 0.22f * fine);
  const float lips = std::min(taper(q, Vector(-22.1f, 7.0f, 0.3f), Vector(-20.2f, 6.3f, 3), 0.62f, 0.3f),
                              taper(q, Vector(-22, 5.6f, 0), Vector(-20.2f, 6, 2.7f), 0.85f, 0.35f));
  colour = mix(colour, Colour4{0.8f, 0.3f, 0.29f}, 0.7f * smoothStep(0.35f, -0.05f, lips));
  const float cheek = smoothStep(5.5f, 1, (q - Vector(-18.5f, 8.6f, 6.4f)).length()),
              tip = smoothStep(3, 0.5f, (q - Vector(-23.6f, 10, 0)).length());
  colour = mix(colour, Colour4{0.95f, 0.42f, 0.36f}, 0.35f * std::max(cheek, tip));
  const float socket = smoothStep(7.5f, 4.5f, (q - eyePlace).length());
  colour = mix(colour, Colour4{0.5f, 0.2f, 0.22f}, 0.35f * socket);
  // From above and before it; a little comes back from the table.
  const float key = std::max(0.0f, dot(normal, unit(Vector(-0.42f, 0.88f, 0)))),
              below = std::max(0.0f, -normal.y);
  const float before = std::max(0.0f, -normal.x);
  const float light = (0.34f + 0.82f * std::pow(key, 0.8f) + 0.1f * below + 0.24f * before) *
                      (0.42f + 0.58f * p.open) * (0.16f + 0.84f * crevice);
  colour = colour * light + Colour4{0.16f, 0.015f, 0.01f} * (0.5f * hollow);
  colour.a = 1;
  return colour;
}

// As seen from before it: a clouded iris, vessels, the window and the lamp in it.
Canvas eyePicture(int side) {
  return paintSmooth(side, side, 2, [](float u, float down) {
    const float x = 2 * u - 1, y = 1 - 2 * down, out = std::hypot(x, y);
    const float r = std::asin(std::min(out, 1.0f)), angle = std::atan2(y, x);  // radians from the iris
    const Vector q(x * 3, y * 3, 0);
    const float vein = std::pow(1 - std::fabs(gradientNoise(warp(q * 1.1f, 0, 0.6f, 973), 0, 974)), 14.0f);
    Colour4 colour = mix(Colour4{0.74f, 0.68f, 0.54f}, Colour4{0.62f, 0.16f, 0.12f},
                         0.7f * vein * smoothStep(0.6f, 1.0f, r));
    colour = mix(colour, Colour4{0.4f, 0.14f, 0.12f}, 0.7f * smoothStep(0.8f, 1.3f, r));
    constexpr float iris = 0.66f, pupil = 0.3f;
    const float fibre = 0.5f + 0.5f * gradientNoise(Vector(angle * 9, r * 5, 1), 0, 975);
    Colour4 within = mix(gradient(steelRamp, 0.26f + 0.34f * fibre), gradient(tealRamp, 0.5f), 0.45f);
    within = mix(within, gradient(brassRamp, 0.5f), 0.5f * smoothStep(0.46f, 0.32f, r + 0.06f * fibre));
    const float grey = 0.4f * within.r + 0.4f * within.g + 0.2f * within.b;
    within = mix(within, Colour4{grey, grey, grey}, 0.45f);
    within = within * (1 - 0.85f * smoothStep(0.5f, iris, r));
    colour = mix(colour, within, smoothStep(iris + 0.05f, iris - 0.03f, r));
    colour = mix(colour, black, smoothStep(pupil + 0.05f, pupil - 0.02f, r));
    colour = colour * (1 - 0.75f * smoothStep(0.1f, 0.62f, y));  // the lid's shadow
    // The lamp, and a wet edge along the lower lid.
    const float lamp = smoothStep(0.13f, 0.075f, std::hypot(x + 0.19f, (y - 0.25f) * 1.1f));
    const float wet =
        smoothStep(0.05f, 0.0f, std::fabs(std::hypot(x, y + 0.06f) - 0.66f)) * smoothStep(-0.25f, -0.6f, y);
    colour = colour + Colour4{1, 1, 0.96f} * (1.3f * lamp + 0.25f * wet);
    colour.a = 1;
    return colour;
  });
}

// Fades away from the door (u) and to both sides.
Colour4 doorLight(float u, float across) {
  const float side = std::sin(pi * clamp01(across)), far = clamp01(1 - u);
  return {0.93f, 1, 0.97f, 0.9f * std::pow(far, 1.5f) * side * side};
}

// Frosted panes with a corridor's light behind them, somebody's shadow on them.
Canvas windowPicture(int side) {
  return paintSmooth(side, side, 2, [](float u, float down) {
    if (1 - down > windowShare) return doorLight(u, (1 - down - windowShare) / (1 - windowShare));
    const float v = (1 - down) / windowShare, x = (u - 0.5f) * 200, y = v * 150;
    const float frost = 0.5f + 0.5f * fractal(u * 40, v * 30, 0, 3, 0.6f, 981);
    const float lamp =
        std::exp(-std::pow((y - 128) / 34, 2.0f)) + 0.35f * std::exp(-std::pow((y - 20) / 70, 2.0f));
    Colour4 colour = gradient(tealRamp, clamp01(0.28f + 0.62f * lamp + 0.05f * frost));
    // Head and shoulders, blurred by the glass.
    const float head = std::hypot((x - 38) / 12, (y - 84) / 16), neck = std::fabs(x - 38) / 9;
    const float shoulders =
        std::hypot((x - 38) / 40, std::max(0.0f, 62 - y) / 500) + 0.018f * std::max(0.0f, y - 44);
    float shadow = smoothStep(1.5f, 0.75f, head);
    shadow = std::max(shadow, smoothStep(1.4f, 0.7f, neck) * smoothStep(80, 66, y));
    shadow = std::max(shadow, smoothStep(1.25f, 0.7f, shoulders) * smoothStep(66, 56, y));
    colour = mix(colour, gradient(tealRamp, 0.2f), 0.92f * shadow);
    const float wire = std::max(lineAt(u * 20, 0.05f), lineAt(v * 15, 0.05f));
    colour = colour * (1 - 0.28f * wire) *
             (0.75f + 0.25f * smoothStep(0.0f, 0.2f, std::min(std::min(u, 1 - u), std::min(v, 1 - v))));
    colour.a = 0.94f;
    return colour;
  });
}

Canvas hosePicture(int side) {
  return paintSmooth(side, side, 2, [](float u, float down) {
    const float v = 1 - down;
    const float rib = 0.5f + 0.5f * std::cos(v * 2 * pi * 5);
    const float dirt = 0.5f + 0.5f * fractal(u * 6, v * 6, 6, 4, 0.55f, 991);
    Colour4 colour = mix(Colour4{0.5f, 0.2f, 0.16f}, Colour4{0.82f, 0.52f, 0.4f}, 0.25f + 0.5f * rib * dirt);
    colour = mix(colour, gradient(alarmRamp, 0.3f), 0.6f * smoothStep(0.5f, 0.8f, dirt));
    colour = colour * (0.66f + 0.34f * rib) * (0.5f + 0.38f * std::cos(2 * pi * (u - 0.3f)));
    colour.a = 1;
    return colour;
  });
}

// What polished glass mirrors: little in the middle, all at the rim; the window and the lamp as bright panes.
Canvas glassPicture(int side) {
  return paintSmooth(side, side, 2, [](float u, float down) {
    const float x = 2 * u - 1, y = 1 - 2 * down, r = std::hypot(x, y);
    const float rim = std::pow(clamp01(r), 12.0f) * smoothStep(1.03f, 0.96f, r);
    const auto pane = [&](float cx, float cy, float w, float h, float soft) {
      return smoothStep(w, w - soft, std::fabs(x - cx)) * smoothStep(h, h - soft, std::fabs(y - cy));
    };
    const float lamp = pane(-0.52f, 0.42f, 0.13f, 0.4f, 0.13f);
    const float window = pane(0.6f, 0.18f, 0.08f, 0.42f, 0.08f) * (0.6f + 0.4f * lineAt(y * 5, 0.2f));
    const float sheen = 0.5f + 0.5f * fractal(u * 5, down * 2, 0, 3, 0.5f, 995);
    Colour4 colour = gradient(tealRamp, 0.03f + 0.06f * sheen) + gradient(tealRamp, 0.74f) * (0.62f * rim) +
                     Colour4{0.85f, 0.95f, 0.9f} * (0.55f * lamp) +
                     gradient(tealRamp, 0.72f) * (0.35f * window);
    // Bright with a mask: the jar adds it, the being's rim lays it over.
    const float strength = clamp01(std::max({colour.r, colour.g, colour.b}));
    colour = colour * (1 / std::max(strength, 0.02f));
    colour.a = strength;
    return colour;
  });
}

Canvas beamPicture(int width) {
  // Some thirty faint layers add up to the beam, each rounded to whole steps of the screen: what is between
  // two steps is scattered along the beam, finer than the screen shows.
  constexpr float steps = 13.5f;  // of the screen in the brightest layer
  Canvas picture(width, 4);
  float owed = 0;
  for (int x = 0; x < width; ++x) {
    const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(width);
    const float wanted = steps * (0.3f * u + 0.7f * u * u) * smoothStep(0.04f, 0.42f, u);
    const float whole = std::floor(wanted + owed + 0.9f * (hashUnit(x, 0, 996) - 0.5f) + 0.5f);
    owed += wanted - whole;
    const float level = std::max(0.0f, whole) / steps;
    for (int y = 0; y < 4; ++y) picture.at(x, y) = Colour4{level, level, level};
  }
  return picture;
}

}  // namespace vex::laboratory
