#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// A finned being that rises out of dark water between rocks, a ray that falls on it, and the surface itself.
// The scene twists the being about its middle, by up to 36 degrees towards its ends along x and z: it is long
// and wide, so that neck, tail and fins swim.

namespace vex {

namespace {

constexpr float loop = 15, lightLoop = 10;  // seconds
constexpr float poolSide = 1500;

// --- The being

enum Part { skin, fin, thorn, eye };

const Vector middle(0, 20, 0);

std::vector<Vector> spinePath() {
  return smoothPath({Vector(0, -62, -160), Vector(20, -34, -112), Vector(-16, -2, -64), Vector(10, 26, -16),
                     Vector(2, 58, 26), Vector(-5, 98, 56), Vector(0, 121, 92), Vector(0, 110, 124)},
                    72);
}

float girth(float t) {
  const float trunk = std::exp(-(t - 0.46f) * (t - 0.46f) * 22),
              neck = std::exp(-(t - 0.97f) * (t - 0.97f) * 190);
  const float rings = 0.05f * std::sin(t * 190);
  return (2.5f + 5 * t + 23 * trunk + 9 * neck) * (1 + rings);
}

// Two fins in one, swept back, their tips drooping; `root` is where they grow.
Surface finPair(const Vector& root, float span, float chord, float sweep, float lift) {
  Surface both = superellipsoid(Vector(span, 2.6f, chord), 1, 1, 64, 22);
  return bent(both, [=](const Vector& p) {
    const float out = p.x / span, far = std::fabs(out);
    const float scallop =
        1 + 0.16f * std::sin(far * 22) * smoothStep(0.15f, 0.5f, far) * (p.z < 0 ? 1.0f : 0.0f);
    return Vector(p.x, p.y * (1 - 0.7f * far) + lift * std::sin(far * 2.4f),
                  p.z * scallop - sweep * far * far) +
           root;
  });
}

Surface thornAt(const Vector& foot, const Vector& tip, float thick) {
  const Vector bend = mix(foot, tip, 0.55f) + Vector(0, thick, 0);
  return tube(
      smoothPath({foot, bend, tip}, 8), 7, [=](float t) { return thick * (1 - t) + 0.15f; }, TubeEnd::point);
}

Surface being() {
  const std::vector<Vector> path = spinePath();
  Surface all = withPart(tube(path, 26, girth, TubeEnd::round), skin);
  const Surface skull =
      placed(superellipsoid(Vector(11, 9, 24), 0.9f, 0.9f, 28, 18), turnedX(14) >> moved(0, 108, 134));
  append(all, skull, skin);
  append(all, placed(superellipsoid(Vector(7, 3, 19), 1, 1, 22, 10), turnedX(30) >> moved(0, 95, 132)), skin);
  for (const float side : {-1.0f, 1.0f}) {
    append(all, placed(sphere(2.1f, 12, 8), moved(8.6f * side, 112, 138)), eye);
    append(all, thornAt(Vector(6 * side, 116, 120), Vector(20 * side, 146, 76), 3.4f), thorn);
    append(all, thornAt(Vector(8 * side, 110, 116), Vector(32 * side, 118, 72), 2.6f), thorn);
    // Feelers that trail from the jaw.
    for (int i = 0; i < 3; ++i) {
      const auto k = static_cast<float>(i);
      const std::vector<Vector> hang{Vector(4 * side, 96, 138 - 8 * k),
                                     Vector(18 * side, 74 - 6 * k, 136 - 10 * k),
                                     Vector((34 + 8 * k) * side, 44 - 8 * k, 112 - 16 * k),
                                     Vector((30 + 12 * k) * side, 10 - 8 * k, 84 - 20 * k)};
      append(all,
             tube(
                 smoothPath(hang, 18), 6, [](float t) { return 1.5f * (1 - t) + 0.2f; }, TubeEnd::point),
             thorn);
    }
  }
  append(all, finPair(Vector(0, 52, 18), 150, 30, 66, 20), fin);
  append(all, finPair(Vector(0, 8, -50), 84, 20, 40, -12), fin);
  append(all, placed(superellipsoid(Vector(1.6f, 34, 26), 1, 1, 24, 12), turnedX(-26) >> moved(0, -62, -166)),
         fin);
  constexpr int thorns = 17;
  for (int i = 0; i < thorns; ++i) {
    const auto place = path.size() * static_cast<std::size_t>(i + 3) / (thorns + 4);
    const float t = static_cast<float>(place) / static_cast<float>(path.size());
    const float tall = 10 + 30 * std::sin(pi * t);
    const Vector along = unit(path[place + 1] - path[place - 1]), up = unit(Vector(0, along.z, -along.y));
    const Vector foot = path[place] + up * (girth(t) * 0.8f);
    append(all, thornAt(foot, foot + up * tall - along * (tall * 0.8f), 3), thorn);
  }
  return all;
}

Colour4 beingColour(const BakePoint& p) {
  const NoiseCell spots = cellularNoise(p.position * 0.075f, 0, 951);
  const float vein = 1 - std::fabs(gradientNoise(warp(p.position * 0.05f, 0, 0.7f, 952), 0, 953));
  const float mottle = 0.5f + 0.5f * fractal(p.position * 0.045f, 0, 4, 0.55f, 954);
  const float belly = smoothStep(0.2f, -0.8f, p.normal.y);
  switch (p.part) {
    case eye:
      return {0.85f, 1, 0.95f};
    case thorn:
      return gradient(tealRamp, 0.34f + 0.14f * mottle) * p.light + gradient(boneRamp, 0.3f) * p.light * 0.4f;
    case fin: {
      const float ray =
          std::pow(std::fabs(std::sin(std::atan2(p.position.x, p.position.z + 150) * 34)), 6.0f);
      return gradient(tealRamp, 0.42f + 0.24f * mottle) * p.light +
             gradient(tealRamp, 0.75f) * (0.26f * ray * mottle) +
             gradient(tealRamp, 0.62f) * (0.30f * std::pow(vein, 9.0f));
    }
    default: {
      const float lamp = spots.id > 0.62f ? smoothStep(0.30f, 0.06f, spots.nearest) : 0.0f;
      const Colour4 hide =
          mix(gradient(tealRamp, 0.44f + 0.26f * mottle), gradient(boneRamp, 0.64f), 0.6f * belly);
      return hide * p.light +
             gradient(tealRamp, 0.40f + 0.5f * lamp) * (0.85f * lamp + 0.16f * std::pow(vein, 8.0f));
    }
  }
}

// --- Rocks

Surface rocks() {
  struct Rock {
    float x, z, wide, tall;
  };
  static constexpr Rock all[] = {{-330, -260, 70, 190}, {-250, -400, 95, 300}, {300, -330, 85, 240},
                                 {420, -120, 60, 120},  {-450, 60, 80, 170},   {360, 260, 46, 70},
                                 {-300, 330, 50, 84},   {90, -520, 80, 210}};
  Surface surface;
  for (const Rock& rock : all) {
    Surface one = placed(withoutMapping(geodesic(1, 2)), stretched(rock.wide, rock.tall, rock.wide));
    one = displaced(one, [&](const Vector& p, const Vector&) {
      const Vector place = p + Vector(rock.x, 0, rock.z);
      return rock.wide * (0.30f * fractal(Vector(place.x, place.y * 0.4f, place.z) * (1.6f / rock.wide), 0, 3,
                                          0.5f, 961) -
                          0.1f);
    });
    append(surface, placed(one, moved(rock.x, 0, rock.z)));
  }
  return surface;
}

Colour4 rockColour(const BakePoint& p) {
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.03f, 0, 4, 0.6f, 962);
  const float wet = smoothStep(46, 6, p.position.y);
  const Colour4 stone = gradient(tealRamp, 0.26f + 0.16f * grit) * p.light;
  return stone + gradient(tealRamp, 0.5f) * (0.16f * wet * grit);
}

// --- Pictures of light. All add; what lies at their borders is black.

// The surface: a broad gleam about the middle, drawn out by swell.
Canvas surfacePicture(const Settings& settings) {
  const int side = settings.side(512);
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, y = 2 * v - 1, r = std::hypot(x, y);
    const float bend = 0.3f * fractal(u * 5, v * 5, 5, 3, 0.5f, 971);
    const float swell = ridges(u * 6 + bend, v * 6 + bend, 6, 3, 0.45f, 972);
    const float edge = smoothStep(0.98f, 0.35f, r);
    return gradient(tealRamp,
                    edge * (0.23f + 0.24f * swell * swell + 0.24f * std::exp(-r * r * 9) * (0.4f + swell)));
  });
}

// Light gathered by the waves in a pool about the middle.
Canvas gatheredLight(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot(2 * u - 1, 2 * v - 1);
    const float bend = 0.25f * fractal(u * 4, v * 4, 4, 3, 0.5f, 975);
    const NoiseCell net = cellularNoise(u * 9 + bend, v * 9 + bend, 0, 976);
    const float line = std::exp(-(net.second - net.nearest) * 7);
    return gradient(tealRamp, smoothStep(0.62f, 0.1f, r) * (0.16f + 0.62f * line));
  });
}

// Shafts that stream down; repeats both ways.
Canvas rayPicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float broad = valueNoise(u * 7, v * 2, 7, 981), fine = valueNoise(u * 34, v * 2, 34, 982);
    const float drift = 0.5f + 0.5f * fractal(u * 6, v * 2, 2, 4, 0.5f, 983);
    return gradient(tealRamp,
                    smoothStep(0.35f, 0.95f, 0.6f * broad + 0.45f * fine) * (0.25f + 0.55f * drift));
  });
}

// --- The stage

StageCamera camera(const char* name, float fieldDegrees, const std::function<Vector(float)>& eyeAt,
                   const std::function<Vector(float)>& targetAt) {
  StageCamera shot{
      .name = name, .position = eyeAt(0), .target = targetAt(0), .fieldDegrees = fieldDegrees, .far = 3000};
  shot.positions = positionKeys(loop, 15, eyeAt);
  shot.targets = positionKeys(loop, 15, targetAt);
  return shot;
}

Vector around(float radius, float height, float radians) {
  return Vector(radius * std::sin(radians), height, radius * std::cos(radians));
}

std::vector<StageCamera> cameras() {
  const auto still = [](const Vector& v) { return [v](float) { return v; }; };
  return {
      camera(
          "follow", 70,
          [](float t) { return around(330, 92 + 40 * swing(t, loop, 1), 0.9f * swing(t, loop, 1, 0.1f)); },
          still(Vector(0, 40, 0))),
      camera(
          "wide", 84,
          [](float t) {
            return Vector(210 * swing(t, loop, 1), 44 + 14 * swing(t, loop, 2),
                          430 - 70 * swing(t, loop, 1, 0.25f));
          },
          [](float t) { return Vector(50 * swing(t, loop, 1, 0.3f), 96, 0); }),
      camera(
          "low", 92,
          [](float t) { return around(215, 26 + 6 * swing(t, loop, 2), 0.7f + 0.5f * swing(t, loop, 1)); },
          still(Vector(-20, 92, 10))),
      camera(
          "above", 78,
          [](float t) {
            return around(250 + 50 * swing(t, loop, 1), 330 + 40 * swing(t, loop, 1, 0.4f),
                          0.6f * swing(t, loop, 1, 0.7f));
          },
          still(Vector(0, 10, 0))),
      camera(
          "near", 66,
          [](float t) {
            return around(250, 128 + 18 * swing(t, loop, 2, 0.3f), -0.8f + 0.7f * swing(t, loop, 1, 0.5f));
          },
          still(Vector(10, 84, 20))),
  };
}

Model waterAlien(const Settings& settings) {
  const Surface body = mappedAtlas(being(), {.charts = Charts::byNormals, .side = 512});
  const Surface stones = mappedAtlas(rocks(), {.charts = Charts::byNormals, .side = 512});
  BakeLook look;
  look.sky = [](const Vector& d) {
    return mix(gradient(tealRamp, 0.10f), gradient(tealRamp, 0.80f), smoothStep(-0.3f, 1.0f, d.y)) * 0.9f;
  };
  look.lights = {{.towards = Vector(0.25f, 1, -0.15f), .size = 0.15f, .colour = {0.85f, 1.1f, 1.05f}},
                 {.towards = Vector(-0.7f, 0.25f, 0.6f), .size = 0.2f, .colour = {0.10f, 0.32f, 0.36f}}};
  look.bounce = {0.01f, 0.05f, 0.06f};
  look.rays = 36;
  look.shadowRays = 9;
  const auto picture = [&](const Surface& surface, Colour4 (*colour)(const BakePoint&)) {
    BakePaint paint;
    paint.side = settings.side(512);
    paint.lit = !settings.draft;
    paint.paint = colour;
    return bake(surface, rayTree(surface), look, paint);
  };

  Stage stage;
  stage.seconds = loop;
  for (const char* name : {"water_skin", "water_rock", "water_surface", "water_light", "water_ray"})
    stage.materials.push_back({.name = name, .texture = name});
  Surface shaft = cone(130, 70, 730, 32, 6);
  append(shaft, cone(56, 30, 730, 22, 6));
  stage.meshes = {
      {.name = "rocks", .surface = stones, .material = "water_rock"},
      {.name = "WaterAlien", .surface = body, .pivot = middle, .material = "water_skin"},
      {.name = "LightPlane",
       .surface = placed(plane(620, 620, 12, 12), moved(0, -14, 0)),
       .material = "water_light"},
      {.name = "Water", .surface = plane(poolSide, poolSide, 2, 2), .material = "water_surface"},
      {.name = "RayBlue",
       .surface = placed(shaft, moved(0, -30, 0)),
       .pivot = Vector(0, 350, 0),
       .material = "water_ray"},
  };
  Motion& swim = stage.meshes[1].motion;
  swim.positions = positionKeys(loop, 9, [](float t) {
    return middle +
           Vector(12 * swing(t, loop, 1, 0.1f), 14 * swing(t, loop, 2), 12 * swing(t, loop, 1, 0.4f));
  });
  swim.turns = turnKeys(loop, 9, [](float t) {
    return turnedX(7 * swing(t, loop, 2, 0.2f)) >> turnedZ(9 * swing(t, loop, 1)) >>
           turnedY(-25 + 30 * swing(t, loop, 1, 0.6f));
  });
  int number = 1;
  for (const Vector& place :
       {Vector(-200, 800, -200), Vector(200, 840, -200), Vector(-200, 820, 200), Vector(200, 860, 200)})
    stage.meshes.push_back({.name = "Dummy0" + std::to_string(number++), .pivot = place, .helper = true});

  // The scene makes flares of all lights; the three particles are parked where none sees them.
  const Vector parked(0, 20000, 0);
  stage.lights = {{.name = "Omni01", .position = Vector(-260, 620, -760), .colour = {0.72f, 0.95f, 0.92f}},
                  {.name = "RayLight", .position = Vector(0, 300, 0), .colour = {0.55f, 1, 0.95f}},
                  {.name = "BlackParticle", .position = parked, .on = false, .colour = {0.9f, 0.8f, 0.75f}},
                  {.name = "WhiteParticle", .position = parked, .on = false, .colour = {0.8f, 1, 0.97f}},
                  {.name = "RayParticle", .position = parked, .on = false, .colour = {0.7f, 1, 1}}};
  stage.lights[0].positions = positionKeys(lightLoop, 30, [](float t) {
    return Vector(-260 + 90 * swing(t, lightLoop, 1), 620 + 40 * swing(t, lightLoop, 1, 0.3f), -760);
  });
  stage.cameras = cameras();
  return {stage,
          {picture(body, beingColour), picture(stones, rockColour), surfacePicture(settings),
           gatheredLight(settings), rayPicture(settings)}};
}

}  // namespace

Products waterAlienModel() {
  return {model("water_alien",
                {{"water_skin", PictureKind::jpeg},
                 {"water_rock", PictureKind::jpeg},
                 {"water_surface", PictureKind::jpeg},
                 {"water_light", PictureKind::jpeg},
                 {"water_ray", PictureKind::jpeg}},
                4, waterAlien)};
}

}  // namespace vex
