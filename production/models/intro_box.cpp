#include <cmath>
#include <cstdio>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/intro_box_parts.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// The box: a reliquary on its plinth in a dark choir. Its lock turns, its lid lifts, light and smoke pour
// out, and in them burns the title. The time line poses lock, lid, light and veils; the camera's one flight
// is cut into shots.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

using namespace reliquary;

constexpr float flightSeconds = 15;  // also of all motion that the time line poses
constexpr float veilSeconds = 5;

// --- The flight

// Places about the casket's axis: 0 degrees before it, 90 to its right.
struct EyePoint {
  float radius, degrees, height;
  Vector target;
};
struct Shot {
  EyePoint from, to;
};

// In the order of the time line; see shotFrames.
const Shot shots[] = {
    // Through the fence, circling.
    {{455, -34, 46, {22, 112, 0}}, {372, -8, 62, {10, 112, 0}}},
    // Low before the steps.
    {{215, 48, 40, {-16, 118, 0}}, {178, 30, 58, {-8, 114, 0}}},
    // Along the arcade.
    {{98, -58, 112, {-30, 102, 16}}, {84, -36, 106, {-24, 102, 20}}},
    // The lock.
    {{92, 16, 112, {5, 103, 28}}, {71, -9, 101, {-3, 103, 28}}},
    // Into the lock.
    {{71, -9, 101, {-3, 103, 28}}, {42.5f, 0, 103.3f, {0, 103.1f, 28}}},
    // Along the seam of the lid.
    {{262, -60, 98, {16, 133, 0}}, {186, -38, 104, {6, 139, 8}}},
    // Up with the lid.
    {{206, 34, 116, {-4, 130, 0}}, {350, 14, 142, {0, 160, 0}}},
    // Straight down into it; the letters come up towards us.
    {{66, 10, 470, {0, 110, 4}}, {42, -8, 530, {0, 110, 8}}},
    // The title before the window that burns.
    {{222, -24, 292, {-4, 280, 0}}, {198, -8, 286, {2, 276, 0}}},
    // Its light on the floor before the plinth.
    {{505, -17, 176, {-4, 70, 76}}, {545, -5, 224, {0, 58, 92}}},
    // Close by, along its letters.
    {{164, -58, 266, {-66, 264, 0}}, {214, -18, 260, {0, 271, 0}}},
    // Straight before it, nearer and nearer.
    {{112, 26, 264, {34, 262, 0}}, {188, -5, 266, {0, 268, 0}}},
    // From below, as it bursts.
    {{226, 30, 158, {4, 284, 0}}, {216, 12, 160, {0, 285, 0}}},
    // From above, down into the box.
    {{392, -12, 330, {0, 196, 0}}, {196, 14, 246, {0, 142, 0}}},
    // The lid closes.
    {{352, -36, 178, {-8, 184, 0}}, {262, -14, 158, {-8, 140, 0}}},
};
constexpr int shotSlot = 30, shotLead = 3, shotFrames = 21;  // frames: of each, before, and in use

Vector standing(const EyePoint& stand) {
  const float turn = stand.degrees * pi / 180;
  return {stand.radius * std::sin(turn), stand.height, stand.radius * std::cos(turn)};
}

// Keys a little beyond both ends keep the curve between the shots out of them.
StageCamera flight() {
  StageCamera camera{.name = "camera01", .fieldDegrees = 64, .far = 2600};
  const auto key = [&](int frame, const Shot& shot, float share) {
    const EyePoint at{
        mix(shot.from.radius, shot.to.radius, share), mix(shot.from.degrees, shot.to.degrees, share),
        mix(shot.from.height, shot.to.height, share), mix(shot.from.target, shot.to.target, share)};
    camera.positions.push_back({.frame = frame, .value = standing(at)});
    camera.targets.push_back({.frame = frame, .value = at.target});
  };
  int slot = 0;
  for (const Shot& shot : shots) {
    for (int frame = 0; frame < shotSlot; frame += shotLead)
      key(slot * shotSlot + frame, shot, static_cast<float>(frame - shotLead) / shotFrames);
    ++slot;
  }
  key(static_cast<int>(flightSeconds) * framesPerSecond, shots[slot - 1], 1.2f);
  camera.position = camera.positions.front().value;
  camera.target = camera.targets.front().value;
  return camera;
}

// --- Motion that the time line poses

// A veil's place before the middle of the title: the first behind the letters' faces and before their bevels'
// feet, the others close before the faces.
float veilPlace(int veil) {
  constexpr float places[] = {-6.2f, -4.2f, -2.5f};
  return places[veil];
}

// The scene hangs the lid a little open and leans the lock as much; both are set upright again.
constexpr float hung = 0.053f;  // radians
const Vector toTheRight(1, 0, 0), towardsViewer(0, 0, 1);

MotionKeys lidTurns() {
  return turnKeys(flightSeconds, 15,
                  [](float t) { return turned(toTheRight, hung - 1.78f * t / flightSeconds); });
}

MotionKeys lockTurns() {
  return turnKeys(flightSeconds, 15, [](float t) {
    return turned(toTheRight, hung) >> turned(towardsViewer, -pi * t / flightSeconds);
  });
}

MotionKeys growing(const Vector& from) {
  return scaleKeys(flightSeconds, 15,
                   [from](float t) { return mix(from, Vector(1, 1, 1), t / flightSeconds); });
}

// Flat over the open box, above the rest, what rises from it faces upwards.
constexpr float flatHeight = 282;
const Vector lyingBelow(0, 96, 0);

// A letter lies in the box, too small to be seen. By and by, in shares of its motion, it rises flat from the
// box, stands up with its face turned aside, turns to the other side and back, and is blown towards us.
constexpr float letterRisen = 0.3f, letterUp = 0.45f, letterTurned = 0.65f, letterBlown = 0.7f,
                letterAside = 0.6f;  // radians to each side
Motion letterMotion(const Vector& rest) {
  const Vector flat(rest.x, flatHeight + rest.z - titleMiddle.z, titleMiddle.y - rest.y);
  const Vector away = unit(Vector(1.1f * rest.x, 26 - 0.25f * std::fabs(rest.x), 105)) * 175;
  const Vector tumbles = unit(Vector(-0.5f, 0.02f * rest.x + 0.2f, -0.012f * rest.x));
  Motion motion;
  motion.positions = positionKeys(flightSeconds, 5, [=](float t) {
    const float share = t / flightSeconds, blown = (share - letterBlown) / (1 - letterBlown);
    const Vector place =
        mix(mix(lyingBelow + Vector(0.15f * rest.x, 0, 0), flat, eased(share, 0, letterRisen)), rest,
            eased(share, letterRisen, letterUp));
    return place + away * std::pow(std::max(0.0f, blown), 1.4f);
  });
  motion.turns = turnKeys(flightSeconds, 5, [=](float t) {
    const float share = t / flightSeconds, up = eased(share, letterRisen, letterUp),
                blown = std::max(0.0f, (share - letterBlown) / (1 - letterBlown));
    const float across = clamp01((share - letterUp) / (letterTurned - letterUp)),
                back = eased(share, letterTurned, letterBlown);
    return turned(toTheRight, -pi / 2 * (1 - up)) >>
           turned(Vector(0, 1, 0), letterAside * (up - 2 * across + back)) >> turned(tumbles, 0.55f * blown);
  });
  motion.scales = scaleKeys(flightSeconds, 5, [](float t) {
    const float size = mix(0.02f, 1.0f, eased(t / flightSeconds, 0.02f, letterRisen));
    return Vector(size, size, size);
  });
  return motion;
}

// A veil rises from the box as the letters do until 1.2 s, stands up until 1.8, and is drawn back into the
// box, thinner and thinner, from 2.2 to 3; from 3.2 to 4 it is light on the floor that runs outwards, and
// from 4.4 on it flies apart from where it hung.
Motion veilMotion(int veil) {
  const auto own = static_cast<float>(veil);
  const Vector rest = titleMiddle + Vector(0, 0, veilPlace(veil)), flat(0, flatHeight + veilPlace(veil), 0);
  const auto onFloor = [](float t) { return t > 3.1f && t < 4.3f; };
  const auto out = [](float t) { return clamp01((t - 3.2f) / 0.8f); };
  const auto drawn = [](float t) { return t < 3.1f ? clamp01((t - 2.2f) / 0.8f) : 0.0f; };
  Motion motion;
  motion.positions = positionKeys(veilSeconds, 3, [=](float t) {
    if (onFloor(t)) return Vector(0, 4, mix(186.0f, 197.0f, out(t)));
    const Vector place = mix(mix(lyingBelow, flat, eased(t, 0, 1.2f)), rest, eased(t, 1.2f, 1.8f));
    return mix(place, lyingBelow, std::pow(drawn(t), 1.6f)) +
           Vector(0, 0.3f * swing(t, veilSeconds, 2, 0.3f * own), 0);
  });
  motion.turns = turnKeys(veilSeconds, 3, [=](float t) {
    return turned(toTheRight, -pi / 2 * (onFloor(t) ? 1 : 1 - eased(t, 1.2f, 1.8f))) >>
           turned(Vector(0, 1, 0), (own - 1.4f) * 0.9f * drawn(t) * drawn(t));
  });
  motion.scales = scaleKeys(veilSeconds, 3, [=](float t) {
    if (onFloor(t)) return Vector(1, 1, 1) * mix(0.42f, 1.4f, out(t));
    const float up = eased(t, 0, 1.2f), apart = eased(t, 4.4f, 5.0f), gone = drawn(t);
    const float size = mix(0.06f, 1.0f, up) * (1 + (0.3f + 0.06f * own) * apart);
    return Vector(
        size * mix(1.0f, 0.08f, std::pow(gone, 0.8f)),
        size * (1 + 1.2f * up * (1 - up)) * (1 + 1.9f * gone * (1 - gone) - 0.9f * std::pow(gone, 4.0f)), 1);
  });
  return motion;
}

// --- What is drawn with a picture of its own

// A sheet for a veil, hollow towards the viewer.
Surface veilSheet(const Vector& middle) {
  return placed(sheet(14, 2,
                      [](float s, float t) {
                        const float x = 2 * s - 1;
                        return Vector(x * titleWidth / 2, (t - 0.5f) * titleHeight, 12 * x * x);
                      }),
                moved(middle));
}

// Light that stands in the open box: sheets one behind the other, wider above, all of them behind the title.
Surface shafts() {
  Surface all;
  for (int i = 0; i < 3; ++i) {
    const auto own = static_cast<float>(i);
    append(all, placed(sheet(3, 4,
                             [own](float s, float t) {
                               const float half = 34 + (26 - 8 * own) * t;
                               return Vector((2 * s - 1) * half, (180 - 30 * own) * t, 0);
                             }),
                       turnedY(6 * own - 6) >> moved(0, 90, 5 * own - 18)));
  }
  return all;
}

// Light breaks out of the gap under the lid: fans all around the casket, bright at the rim, wider outwards.
Surface seamLight() {
  Surface all;
  for (int i = 0; i < 4; ++i) {
    // From under the brim.
    const float half = 5 + (i % 2 == 0 ? halfWidth : halfDepth),
                out = 5 + (i % 2 == 0 ? halfDepth : halfWidth);
    for (const float rise : {-6.0f, -2.0f, 0.5f, 4.0f, 9.0f})
      append(all, placed(sheet(1, 2,
                               [=](float s, float t) {
                                 return Vector((2 * s - 1) * (half + 14 * t), rise * t, out + 30 * t);
                               }),
                         turnedY(90 * static_cast<float>(i)) >> moved(0, lidFoot - 0.4f, 0)));
  }
  return all;
}

// Mist in the well, layer over layer.
Surface wellMist() {
  Surface all;
  for (const float y : {98.0f, 108.0f, 118.0f})
    append(all, placed(disc(44, 24, 1), stretched(1, 1, 0.52f) >> moved(0, y, 0)));
  return all;
}

Canvas shaftPicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, rise = 1 - v;
    const float streaks = 0.75f + 0.8f * fractal(u * 9, v * 0.7f, 0, 4, 0.55f, 971);
    const float body =
        smoothStep(1, 0.1f, std::fabs(x)) * std::pow(1 - rise, 1.7f) * smoothStep(0, 0.04f, rise);
    Colour4 colour = gradient(acidRamp, 0.55f + 0.35f * (1 - rise));
    colour.a = clamp01(0.6f * body * streaks) * borderFade(u, v, 0.03f);
    return colour;
  });
}

// Light that falls on what lies around: on the plinth's top and on the ground.
Canvas pooledPicture(const Settings& settings) {
  const int side = settings.side(128);
  return paint(side, side, [](float u, float v) {
    const float r = std::hypot(2 * u - 1, 2 * v - 1);
    Colour4 colour = gradient(acidRamp, 0.45f + 0.4f * clamp01(1 - 2 * r));
    colour.a = 0.4f * std::pow(clamp01(1 - r), 1.5f);
    return colour;
  });
}

// How much light falls through the windows on a place of the ground: two lancets from each of three.
float windowLight(float x, float z) {
  constexpr float places[][2] = {
      {116, 0.5f}, {148, 1}, {180, 0.45f}};  // degrees about the casket, how bright
  constexpr float nearest = 152, farthest = 318, half = 25, apart = 31;
  float light = 0;
  for (const auto& [degrees, level] : places) {
    const float turn = degrees * pi / 180;
    const float out = x * std::sin(turn) + z * std::cos(turn),
                aside = std::fabs(std::fabs(x * std::cos(turn) - z * std::sin(turn)) - apart);
    const float along = (out - nearest) / (farthest - nearest);
    const float reach = half * std::sqrt(clamp01(3.2f * along));  // pointed towards the plinth
    light +=
        level * smoothStep(2, -5, aside - reach) * smoothStep(0, 0.12f, along) * smoothStep(1, 0.75f, along);
  }
  return light;
}

// Paving in rings about the plinth; it loses itself in the dark.
Canvas groundPicture(const Settings& settings, float radius) {
  const int side = settings.side(1024);
  return paintSmooth(side, side, 2, [radius](float u, float v) {
    const float x = (2 * u - 1) * radius, z = (2 * v - 1) * radius, r = std::hypot(x, z);
    const float ring = r / 46, band = std::floor(ring), count = 6 + 6 * band;
    const float sector = std::atan2(z, x) / (2 * pi) * count + 0.5f * band;
    const float gap = std::min(std::fabs(ring - std::round(ring)) * 46,
                               std::fabs(sector - std::round(sector)) * 2 * pi * r / count);
    const float slab = hashUnit(static_cast<int>(band), static_cast<int>(std::floor(sector)) + 500, 981);
    const float grain = 0.5f + 0.5f * fractal(x * 0.03f, z * 0.03f, 0, 5, 0.6f, 982);
    const float wet = smoothStep(0.05f, 0.45f, fractal(x * 0.008f, z * 0.008f, 0, 4, 0.5f, 983));
    // The key light's pool, and the shadow of the plinth away from it.
    const float light = std::exp(-std::pow(std::hypot(x + 30, z - 60) / 260, 2.0f));
    const float shade = smoothStep(0.9f, 1.5f, std::hypot((x - 40) / 150, (z + 40) / 115));
    const float contact = smoothStep(0.98f, 1.25f, std::hypot(x / 150, z / 111));
    const Colour4 rock =
        mix(Colour4{0.13f, 0.13f, 0.12f}, Colour4{0.30f, 0.29f, 0.26f}, 0.5f * slab + 0.5f * grain);
    Colour4 colour = rock * ((0.12f + 1.6f * light * (0.35f + 0.65f * shade)) * contact *
                             (0.45f + 0.55f * smoothStep(0.4f, 2.2f, gap)));
    colour = colour * (1 - 0.4f * wet) + gradient(acidRamp, 0.14f) * (wet * (0.25f + light));
    colour = colour + gradient(acidRamp, 0.5f + 0.1f * grain) *
                          (0.6f * windowLight(x, z) * (0.5f + 0.5f * grain) * smoothStep(0.4f, 2.2f, gap));
    colour.a = smoothStep(radius * 0.97f, radius * 0.42f, r);
    return colour;
  });
}

// --- The stage

std::vector<StageMaterial> materials() {
  const auto painted = [](const char* name, const char* texture) {
    return StageMaterial{.name = name,
                         .texture = texture,
                         .diffuse = {0.25f, 0.25f, 0.25f},
                         .ambient = {0.92f, 0.92f, 0.92f},
                         .specular = {0.5f, 0.45f, 0.32f},
                         .shine = 0.35f,
                         .shineStrength = 0.9f};
  };
  const auto flat = [](const char* name, const char* texture) {
    return StageMaterial{.name = name,
                         .texture = texture,
                         .twoSided = true,
                         .diffuse = {0, 0, 0},
                         .ambient = {1, 1, 1},
                         .shine = 0};
  };
  std::vector<StageMaterial> all{
      painted("body", "box_body"),  painted("lid", "box_lid"), painted("lock", "box_lock"),
      flat("stone", "box_stone"),   flat("hall", "box_hall"),  flat("ground", "box_ground"),
      flat("shafts", "box_shafts"), flat("pool", "box_pool"),  flat("keyhole", "")};
  all[3].twoSided = all[4].twoSided = false;
  all[8].opacity = 0.005f;
  for (int veil = 0; veil < veilCount; ++veil) {
    const std::string name = "box_veil" + std::to_string(veil + 1);
    all.push_back({.name = name, .texture = name, .diffuse = {1, 1, 1}});
  }
  all.push_back(painted("letters", "box_lock"));
  all.back().specular = {0.16f, 0.14f, 0.1f};  // their faces stay dark when they mirror the lamp
  all.push_back({.name = "box_spill", .texture = "box_spill", .diffuse = {1, 1, 1}});
  return all;
}

std::vector<StageLight> lights() {
  std::vector<StageLight> all{
      {.name = "Omni01", .position = Vector(-150, 260, 220), .colour = {1, 0.92f, 0.74f}}};
  int number = 2;
  for (const Vector& place : placesAlongTitle(48)) {
    char name[16];
    std::snprintf(name, sizeof name, "omni%02d", number++);
    all.push_back({.name = name, .position = place, .on = false});
  }
  for (const char* name : {"BlueParticle", "GreenParticle", "WhiteParticle"})
    all.push_back({.name = name, .position = Vector(0, -20000, 0), .on = false});
  return all;
}

// The scene stands the lock upright by an exchange of height and depth and turns its faces over.
Surface lockAsStored(const Surface& lock) {
  return turnedOver(placed(lock, moved(-lockPivot) >> turnedX(-90) >> moved(lockPivot)));
}

void addLetters(std::vector<StageMesh>& meshes, const Surface& lettersAndLock) {
  const char* names[] = {"letter1", "letter2", "letter3"};
  const std::vector<Surface> bodies = letterBodies();
  const Surface painted = partOf(lettersAndLock, letter);
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    const Bounds bounds = boundsOf(bodies[i]);
    const auto ofThis = [&](const Triangle& triangle) {
      const float x = painted.points[static_cast<std::size_t>(triangle.points[0])].x;
      return x > bounds.least.x - 0.1f && x < bounds.most.x + 0.1f;
    };
    const Vector pivot = (bounds.least + bounds.most) * 0.5f;
    meshes.push_back({.name = names[i],
                      .surface = selected(painted, ofThis),
                      .pivot = pivot,
                      .material = "letters",
                      .motion = letterMotion(pivot)});
  }
}

// What can be seen through comes last.
void addLight(std::vector<StageMesh>& meshes) {
  const auto grown = [&](const char* name, const Surface& surface, const Vector& pivot, const char* material,
                         const Vector& from) {
    meshes.push_back({.name = name,
                      .surface = surface,
                      .pivot = pivot,
                      .material = material,
                      .motion = {.scales = growing(from)}});
  };
  const auto pool = [&](const char* name, float radius, float deep, float y) {
    grown(name, placed(disc(radius, 28, 1), stretched(1, 1, deep) >> moved(0, y, 0)), Vector(0, y, 0), "pool",
          Vector(0.02f, 1, 0.02f));
  };
  pool("pool01", 430, 1, 0.6f);
  pool("pool02", 92, 0.72f, tableTop + 1.2f);
  grown("mist", wellMist(), Vector(0, 98, 0), "pool", Vector(0.02f, 0.02f, 0.02f));
  grown("shafts", shafts(), Vector(0, 90, -13), "shafts", Vector(0.3f, 0.02f, 0.3f));
  grown("seam", seamLight(), Vector(0, lidFoot - 1, 0), "shafts", Vector(0.45f, 0.02f, 0.45f));
}

void addVeils(std::vector<StageMesh>& meshes, const Assembly& hall) {
  for (int veil = 0; veil < veilCount; ++veil) {
    const Vector pivot = titleMiddle + Vector(0, 0, veilPlace(veil));
    meshes.push_back({.name = "VexLayer0" + std::to_string(veil + 1),
                      .surface = veilSheet(pivot),
                      .pivot = pivot,
                      .material = "box_veil" + std::to_string(veil + 1),
                      .motion = veilMotion(veil)});
  }
  // The last layer is the light of the others on all that stands around.
  const Surface table = placed(disc(96, 24, 2), stretched(1, 1, plinthDepth) >> moved(0, tableTop + 2, 0));
  meshes.push_back({.name = "VexLayer04",
                    .surface = spilledOn(joined({partOf(everything(hall), stone), withoutMapping(table)})),
                    .material = "box_spill"});
}

Model introBox(const Settings& settings) {
  const Assembly body = casketBody(), lid = casketLid(), foot = plinth(), choir = hall();
  Assembly lock = casketLock();
  constexpr float groundRadius = 800;
  const Surface ground = placed(disc(groundRadius, 40, 2), moved(0, 0, 0));
  const Surface casket = joined({everything(body), everything(lid), everything(lock)});
  const Surface tableShadow = placed(withoutMapping(plane(240, 180, 1, 1)), moved(0, tableTop - 0.05f, 0));
  const Surface aroundCasket = joined({casket, tableShadow});
  for (const Surface& solid : letterBodies()) append(lock.single, solid);  // they share its picture
  const Surface aroundLock = joined({everything(lock), casket, tableShadow});
  const Surface aroundStone = joined({casket, everything(foot), withoutMapping(ground)});
  const Surface aroundHall = joined({everything(foot), everything(choir), withoutMapping(ground)});
  const PaintedAssembly paintedBody = paintedCasket(body, aroundCasket, settings, 1024),
                        paintedLid = paintedCasket(lid, aroundCasket, settings, 1024),
                        paintedLock = paintedCasket(lock, aroundLock, settings, 1024),
                        paintedFoot = paintedStone(foot, aroundStone, settings, 512),
                        paintedHall = paintedStone(choir, aroundHall, settings, 512);

  const Surface lockOnly = selected(paintedLock.surface, [](const Triangle& t) { return t.part != letter; });

  Stage stage;
  stage.seconds = flightSeconds;
  stage.materials = materials();
  // Before all else: it is hardly drawn and hides what is behind it, so that the keyhole shows what the time
  // line has painted before the scene.
  const Vector keyholeAt = lockPivot + Vector(0, 0, 1.1f);
  stage.meshes = {
      {.name = "keyhole",
       .surface = placed(withoutMapping(disc(5.4f, 20, 1)), turnedX(90) >> moved(keyholeAt)),
       .pivot = keyholeAt,
       .material = "keyhole",
       .motion = {.scales = growing(Vector(0.01f, 0.01f, 1))}},
      {.name = "ground", .surface = ground, .material = "ground"},
      {.name = "hall", .surface = paintedHall.surface, .material = "hall"},
      {.name = "plinth", .surface = paintedFoot.surface, .material = "stone"},
      {.name = "casket", .surface = paintedBody.surface, .material = "body"},
      {.name = "top", .surface = paintedLid.surface, .pivot = lidPivot, .material = "lid"},
      {.name = "lock", .surface = lockAsStored(lockOnly), .pivot = lockPivot, .material = "lock"},
      {.name = "dummy01", .pivot = Vector(0, 100, 0), .helper = true},
  };
  stage.meshes[5].motion.turns = lidTurns();
  stage.meshes[6].motion.turns = lockTurns();
  addLetters(stage.meshes, paintedLock.surface);
  addLight(stage.meshes);
  addVeils(stage.meshes, choir);
  stage.lights = lights();
  stage.cameras = {flight()};

  Model model{
      stage,
      {paintedBody.picture, paintedLid.picture, paintedLock.picture, paintedFoot.picture, paintedHall.picture,
       groundPicture(settings, groundRadius), shaftPicture(settings), pooledPicture(settings)}};
  for (int veil = 0; veil < veilCount; ++veil) model.pictures.push_back(veilPicture(veil, settings));
  model.pictures.push_back(spillPicture(settings));
  return model;
}

}  // namespace

Products introBoxModel() {
  return {model("intro_box",
                {{"box_body", PictureKind::jpeg},
                 {"box_lid", PictureKind::jpeg},
                 {"box_lock", PictureKind::jpeg},
                 {"box_stone", PictureKind::jpeg},
                 {"box_hall", PictureKind::jpeg},
                 {"box_ground", PictureKind::maskedJpeg},
                 {"box_shafts", PictureKind::maskedJpeg},
                 {"box_pool", PictureKind::maskedJpeg},
                 {"box_veil1", PictureKind::jpeg},
                 {"box_veil2", PictureKind::jpeg},
                 {"box_veil3", PictureKind::jpeg},
                 {"box_spill", PictureKind::jpeg}},
                4, introBox)};
}

}  // namespace vex
