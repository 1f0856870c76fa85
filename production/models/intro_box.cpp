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
    {{206, 34, 116, {-4, 130, 0}}, {400, 8, 150, {0, 184, 0}}},
    // The title over the box: as it comes towards us, the whole of it from above, along its letters, near.
    {{400, -34, 92, {-6, 176, 0}}, {330, -6, 100, {-2, 190, 0}}},
    {{430, 44, 262, {-4, 178, 0}}, {372, 18, 230, {-4, 186, 0}}},
    {{282, -56, 128, {-14, 216, 0}}, {232, -28, 118, {-8, 230, 0}}},
    {{248, 30, 76, {4, 204, 0}}, {196, 4, 84, {2, 220, 0}}},
    // From above, down into the box.
    {{392, -12, 330, {0, 188, 0}}, {196, 14, 246, {0, 142, 0}}},
};
constexpr int shotSlot = 36, shotLead = 3, shotFrames = 30;  // frames: of each, before, and in use

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

// A letter lies in the box, too small to be seen, rises from it in the first third with its face turned
// aside, and turns from one side to the other in the rest; halfway through that it looks straight ahead.
constexpr float letterRises = flightSeconds / 3, letterTurns = 1.1f;  // radians to each side
Motion letterMotion(const Vector& rest) {
  Motion motion;
  motion.positions = positionKeys(flightSeconds, 10, [rest](float t) {
    const float up = eased(t, 0, letterRises);
    return mix(Vector(0.15f * rest.x, 96, 0), rest, up) + Vector(0, 0, 34 * up * (1 - up));
  });
  motion.turns = turnKeys(flightSeconds, 10, [](float t) {
    const float after = (t - letterRises) / (flightSeconds - letterRises);  // 0 to 1
    return turned(Vector(0, 1, 0),
                  t < letterRises ? letterTurns * t / letterRises : letterTurns * (1 - 2 * after));
  });
  motion.scales = scaleKeys(flightSeconds, 10, [](float t) {
    const float size = mix(0.02f, 1.0f, eased(t, 0.3f, letterRises));
    return Vector(size, size, size);
  });
  return motion;
}

// A veil rises from the box, hangs, and flies apart.
Motion veilMotion(int veil) {
  const auto own = static_cast<float>(veil);
  const Vector rest = titleMiddle + Vector(0, 0, 5.0f * own - 7);
  Motion motion;
  motion.positions = positionKeys(veilSeconds, 5, [rest, own](float t) {
    const float up = eased(t, 0, 1.2f);
    return mix(Vector(0, 96, 0), rest, up) + Vector(0.5f * swing(t, veilSeconds, 1, 0.2f * own),
                                                    0.8f * swing(t, veilSeconds, 2, 0.3f * own),
                                                    3 * swing(t, veilSeconds, 1, 0.5f * own));
  });
  motion.scales = scaleKeys(veilSeconds, 5, [own](float t) {
    const float up = eased(t, 0, 1.2f), apart = eased(t, 4.2f, 5.0f);
    const float size = mix(0.12f, 1.0f, up) * (1 + (0.25f + 0.15f * own) * apart);
    return Vector(size, size * (1 + 0.25f * (1 - up)), 1);
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
                      .material = "lock",
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
    const Vector pivot = titleMiddle + Vector(0, 0, 5.0f * static_cast<float>(veil) - 7);
    meshes.push_back({.name = "VexLayer0" + std::to_string(veil + 1),
                      .surface = veilSheet(pivot),
                      .pivot = pivot,
                      .material = "box_veil" + std::to_string(veil + 1),
                      .motion = veilMotion(veil)});
  }
  // The last layer is the light of the others on all that stands around.
  const Surface floor = disc(420, 24, 4),
                table = placed(disc(96, 24, 2), stretched(1, 1, plinthDepth) >> moved(0, tableTop + 2, 0));
  meshes.push_back({.name = "VexLayer04",
                    .surface = spilledOn(joined(
                        {partOf(everything(hall), stone), withoutMapping(floor), withoutMapping(table)})),
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
