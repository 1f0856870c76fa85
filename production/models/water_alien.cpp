#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/models/model.h"
#include "production/models/water_parts.h"
#include "production/textures/palette.h"
#include "scenes/creature_twists.h"

// A serpent that rises out of a dark sea between stacks of rock, a ray that falls on it, the surface itself.
// The scene twists the being about its middle, by up to 36 degrees towards its ends along x and z: it is
// long, so that neck and tail swim.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

using namespace water;

constexpr float poolSide = 1300, waveHeight = 0.2f;

// --- The being's way: at the surface, where it bows now and then until the water ripples round it, and in
// the last quarter of its loop down into the deep and up again.

constexpr float divesAt = 11, below = 12.5f, risesAt = 13;
constexpr float bows[]{1.8f, 6.0f, 8.1f};  // when it is lowest

float depthAt(float t) {
  return 420 * (eased(t, divesAt, below) - eased(t, risesAt, loopSeconds));
}

float bowAt(float t) {
  constexpr float down = 24, half = 0.6f;  // seconds down, and as many up
  float bow = 0;
  for (const float lowest : bows) bow += eased(t, lowest - half, lowest) - eased(t, lowest, lowest + half);
  return down * bow;
}

// The water ripples about a place that is 15 times as far from the middle as this one: it swims there.
Vector swimPlace(float t) {
  return Vector(2 * swing(t, loopSeconds, 1, 0.1f),
                beingPivot.y + 4 * swing(t, loopSeconds, 2) - bowAt(t) - depthAt(t),
                3 * swing(t, loopSeconds, 1, 0.4f));
}

Placement swimTurn(float t) {
  return turnedX(3 * swing(t, loopSeconds, 2, 0.2f)) >> turnedZ(3 * swing(t, loopSeconds, 1)) >>
         turnedY(-52 + 14 * swing(t, loopSeconds, 1, 0.6f));
}

// As the scene twists it each frame.
Vector twisted(Vector arm, float t) {
  for (const auto& [axis, direction, amount] : creatureTwists(t))
    arm = transformed(turned(axis, dot(arm, direction) / beingReach * -amount), arm);
  return arm;
}

}  // namespace

namespace water {

Vector beingPlace(const Vector& modelled, float t) {
  return transformed(swimTurn(t), twisted(modelled - beingPivot, t)) + swimPlace(t);
}

}  // namespace water

namespace {

// --- Cameras

StageCamera camera(const char* name, float fieldDegrees, const std::function<Vector(float)>& eyeAt,
                   const std::function<Vector(float)>& targetAt) {
  StageCamera shot{
      .name = name, .position = eyeAt(0), .target = targetAt(0), .fieldDegrees = fieldDegrees, .far = 3000};
  shot.positions = positionKeys(loopSeconds, 15, eyeAt);
  shot.targets = positionKeys(loopSeconds, 15, targetAt);
  return shot;
}

Vector around(float radius, float height, float radians) {
  return Vector(radius * std::sin(radians), height, radius * std::cos(radians));
}

// Cards that cross in the ray's axis, so that none shows its edge alone.
Surface ray() {
  constexpr int cards = 5;
  constexpr float width = 460, height = 730;
  Surface all;
  for (int i = 0; i < cards; ++i) {
    const auto k = static_cast<float>(i);
    Surface one = card(width * (1 + 0.16f * std::sin(2.4f * k)), height);
    one = mappingScaled(one, 1, 1.4f, 0, 0.31f * k);
    append(all, placed(one, turnedY(180 * k / cards + 11) >> moved(rayFoot + Vector(0, -30, 0))));
  }
  return all;
}

// The scene makes flares of all lights; the three particles are parked where none sees them.
std::vector<StageLight> lights() {
  const Vector parked(0, 20000, 0);
  return {{.name = "Omni01", .position = lampPlace},
          {.name = "RayLight", .position = Vector(-46, 420, 60), .colour = {0.08f, 0.20f, 0.19f}},
          {.name = "BlackParticle", .position = parked, .on = false, .colour = {0.9f, 0.8f, 0.75f}},
          {.name = "WhiteParticle", .position = parked, .on = false, .colour = {0.8f, 1, 0.97f}},
          {.name = "RayParticle", .position = parked, .on = false, .colour = {0.08f, 0.50f, 1}}};
}

BakeLook nightLook(const std::vector<BakeLight>& lights) {
  return {.sky =
              [](const Vector& d) {
                return mix(gradient(tealRamp, 0.08f), gradient(tealRamp, 0.62f),
                           smoothStep(-0.3f, 1.0f, d.y)) *
                       0.55f;
              },
          .lights = lights,
          .bounce = {0.01f, 0.04f, 0.05f},
          .rays = 36,
          .shadowRays = 9};
}

Model waterAlien(const Settings& settings) {
  const Surface body = mappedAtlas(
      being(), {.charts = Charts::byNormals, .side = 1024, .density = [](const Triangle& triangle) {
                  return triangle.part == eyeBall || triangle.part == tooth ? 0.5f : 1.0f;
                }});
  const Surface stones = mappedAtlas(rocks(), {.charts = Charts::byNormals, .side = 1024});
  // The moon behind, in the being's own axes: it swims turned to the left.
  const BakeLook
      swimming =
          nightLook({{.towards = Vector(-0.62f, 0.66f, -0.24f), .size = 0.12f, .colour = {2.0f, 2.5f, 2.4f}},
                     {.towards = Vector(0.8f, 0.25f, 0.55f), .size = 0.3f, .colour = {0.14f, 0.34f, 0.37f}}}),
      standing =
          nightLook({{.towards = Vector(-0.45f, 0.62f, -0.62f), .size = 0.15f, .colour = {1.6f, 2.1f, 2.0f}},
                     {.towards = Vector(0.4f, 0.3f, 0.85f), .size = 0.3f, .colour = {0.10f, 0.22f, 0.24f}}});
  const auto picture = [&](const Surface& surface, const BakeLook& light, int side,
                           Colour4 (*colour)(const BakePoint&)) {
    return bake(surface, rayTree(surface), light,
                {.side = settings.side(side), .lit = !settings.draft, .paint = colour});
  };

  Stage stage;
  stage.seconds = loopSeconds;
  for (const char* name : {"water_skin", "water_rock", "water_light", "water_ray", "water_sky"})
    stage.materials.push_back({.name = name, .texture = name});
  stage.meshes = {
      {.name = "sky", .surface = skyDome(), .material = "water_sky"},
      {.name = "bed", .surface = seaBed(), .material = "water_sky"},
      {.name = "rocks", .surface = stones, .material = "water_rock"},
      {.name = "WaterAlien", .surface = body, .pivot = beingPivot, .material = "water_skin"},
      {.name = "LightPlane",
       .surface = placed(plane(760, 760, 2, 2), moved(-20, -3, 0)),
       .material = "water_light"},
      {.name = "Water", .surface = plane(poolSide, poolSide, 2, 2), .material = "water_light"},
      {.name = "RayBlue", .surface = ray(), .pivot = rayFoot + Vector(0, 350, 0), .material = "water_ray"},
  };
  // The scene's waves are high for so wide a sea.
  stage.meshes[5].motion.scales = scaleKeys(loopSeconds, 225, [](float) { return Vector(1, waveHeight, 1); });
  Motion& swim = stage.meshes[3].motion;
  swim.positions = positionKeys(loopSeconds, 9, swimPlace);
  swim.turns = turnKeys(loopSeconds, 9, swimTurn);
  int number = 1;
  for (const Vector& place :
       {Vector(-200, 800, -200), Vector(200, 840, -200), Vector(-200, 820, 200), Vector(200, 860, 200)})
    stage.meshes.push_back({.name = "Dummy0" + std::to_string(number++), .pivot = place, .helper = true});

  stage.lights = lights();
  stage.cameras = cameras();
  return {stage,
          {picture(body, swimming, 1024, beingColour), picture(stones, standing, 1024, rockColour),
           lightPicture(settings), rayPicture(settings), skyPicture(settings)}};
}

}  // namespace

namespace water {

std::vector<StageCamera> cameras() {
  const auto wave = [](float turns, float phase = 0) {
    return [=](float t) { return swing(t, loopSeconds, turns, phase); };
  };
  const auto slow = wave(1), late = wave(1, 0.25f), quick = wave(2, 0.3f);
  const auto gone = [](float t) { return eased(t, 4, 10); };
  const auto near = [](float t) { return eased(t, 0, 6); };
  return {
      // Looks at the being whatever its target is.
      camera(
          "follow", 78,
          [=](float t) { return around(372 + 24 * late(t), 168 + 18 * slow(t), 0.10f + 0.42f * slow(t)); },
          [](float) { return Vector(0, 185, -20); }),
      camera(
          "wide", 72,
          [=](float t) { return Vector(70 + 110 * slow(t), 40 + 12 * quick(t), 440 - 50 * late(t)); },
          [=](float t) { return Vector(10 + 24 * slow(t), 84 + 8 * late(t), -60); }),
      camera(
          "low", 84,
          [=](float t) { return around(366 + 16 * late(t), 20 + 5 * quick(t), -0.36f - 0.14f * slow(t)); },
          [=](float t) { return Vector(-6 + 14 * late(t), 132, 10); }),
      camera(
          "above", 70,
          [=](float t) { return Vector(-50 + 60 * slow(t), 200 + 20 * late(t), 320 + 20 * slow(t)); },
          [=](float t) { return Vector(6 + 10 * late(t), 106, -50); }),
      camera(
          "face", 50,
          [=](float t) { return Vector(-170 + 50 * slow(t), 112 + 10 * quick(t), 232 + 16 * late(t)); },
          [=](float t) { return Vector(-84 + 8 * late(t), 118, 30); }),
      camera(
          "moonlit", 70,
          [=](float t) { return Vector(30 + 40 * slow(t), 30 + 6 * late(t), 330 - 60 * slow(t)); },
          [=](float t) { return Vector(-70 + 16 * late(t), 96, -300); }),
      camera(
          "glide", 78,
          [=](float t) { return Vector(220 + 30 * late(t), 34 + 6 * quick(t), 215 - 60 * slow(t)); },
          [=](float t) { return Vector(4 + 20 * slow(t), 90, -40); }),
      camera(
          "under", 92,
          [=](float t) { return around(252 + 14 * late(t), 14 + 4 * quick(t), 0.26f + 0.06f * slow(t)); },
          [=](float t) { return Vector(-75 + 10 * late(t), 84, 42); }),
      camera(
          "leaving", 70,
          [=](float t) { return Vector(84 + 16 * gone(t), 30 + 30 * gone(t), 300 + 90 * gone(t)); },
          [=](float t) { return Vector(-34, 100 - 10 * gone(t), -60); }),
      camera(
          "facing", 62,
          [=](float t) { return Vector(-196 + 20 * slow(t), 66 + 10 * late(t), 196 - 24 * slow(t)); },
          [=](float t) { return Vector(-40 + 10 * late(t), 108, 10); }),
      // Along the moon's path into its gate.
      camera(
          "gate", 46,
          [=](float t) { return Vector(44 - 12 * near(t), 17 - 3 * near(t), 262 - 76 * near(t)); },
          [=](float t) { return Vector(-96 + 4 * late(t), 78, -500); }),
      // The being in its ray.
      camera(
          "struck", 74,
          [=](float t) { return Vector(96 - 30 * gone(t), 26 + 8 * quick(t), 300 - 40 * gone(t)); },
          [=](float t) { return Vector(-30 + 8 * late(t), 114, -40); }),
  };
}

}  // namespace water

Products waterAlienModel() {
  return {model("water_alien",
                {{"water_skin", PictureKind::jpeg},
                 {"water_rock", PictureKind::jpeg},
                 {"water_light", PictureKind::jpeg},
                 {"water_ray", PictureKind::jpeg},
                 {"water_sky", PictureKind::jpeg}},
                8, waterAlien)};
}

}  // namespace vex
