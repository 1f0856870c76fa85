#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/hell_parts.h"
#include "production/models/model.h"
#include "production/textures/hell_light.h"
#include "production/textures/palette.h"

// Hell: a cathedral of basalt in a lake of lava; in its nave a black sphere hangs in chains, light in its
// seams, and sprays shards. All light comes from the lake below, from the sphere and from the fire behind the
// choir, and is painted into the stone.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

using namespace hell;

constexpr float lakeReach = 480;  // half the lake's side
constexpr float tileSize = 80;    // units a picture of lava; one quad each, as its coordinates wobble
constexpr float lakeHazeReach = 2600;
constexpr int stoneSide = 2048;  // texels
constexpr float parked = -9000;  // y of what is only a pattern for particles

// --- Things that move

Vector bobbing(float t) {
  return Vector(0, 2.4f * swing(t, sphereSeconds, 1), 0);
}

Placement rocking(float t) {
  return turnedY(13 * swing(t, sphereSeconds, 1, 0.2f)) >> turnedX(6 * swing(t, sphereSeconds, 1)) >>
         turnedZ(5 * swing(t, sphereSeconds, 2, 0.4f));
}

Motion sphereMotion() {
  Motion motion;
  motion.positions = positionKeys(sphereSeconds, 10, [](float t) { return sphereCentre + bobbing(t); });
  motion.turns = turnKeys(sphereSeconds, 10, rocking);
  return motion;
}

// Its image moves in the same way, though in the loop of all the others.
Motion mirroredMotion() {
  Motion motion;
  motion.positions = positionKeys(loopSeconds, 10, [](float t) { return inLake(sphereCentre + bobbing(t)); });
  motion.turns = turnKeys(loopSeconds, 10, [](float t) { return inLake(rocking(t)); });
  return motion;
}

// 1 once the sphere has opened.
float opened(float t) {
  return smoothStep(sphereOpens, sphereOpens + 0.9f, t);
}

// A loose plate drifts out and comes back, once or twice a loop, turning a little, until it is thrown far.
Motion plateMotion(const Plate& plate, const Vector& pivot, int index) {
  const float turns = 1.0f + static_cast<float>(index % 3), phase = 0.37f * static_cast<float>(index);
  const float far = 4.5f + 8 * hashUnit(index, 0, 991);
  const float thrown = (30 + 16 * hashUnit(index, 4, 991)) / far;
  const auto out = [=](float t) {
    return std::pow(0.5f + 0.5f * swing(t, loopSeconds, turns, phase), 1.6f) + thrown * opened(t);
  };
  Motion motion;
  // Thrown plates open like a flower for the camera that looks into the heart.
  const Vector spread =
      unit((plate.outward - loosePlates * dot(plate.outward, loosePlates)) * 1.6f + plate.outward * 0.25f);
  motion.positions = positionKeys(loopSeconds, 10, [=](float t) {
    const float share = opened(t);
    return pivot + mix(plate.outward, spread, share) * (1 + far * out(t));
  });
  const Vector axis = unit(
      Vector(hashUnit(index, 1, 991) - 0.5f, hashUnit(index, 2, 991) - 0.5f, hashUnit(index, 3, 991) - 0.5f));
  const float rest = out(0);
  motion.turns = turnKeys(loopSeconds, 10, [=](float t) { return turned(axis, 0.5f * (out(t) - rest)); });
  return motion;
}

// A piece of the rose: in its place until it is blown out of the wall, towards the nave.
Motion blownOut(const Vector& place, int index) {
  const auto chance = [index](int which) { return hashUnit(index, which, 992); };
  const Vector from = place - Vector(0, roseHeight, place.z);
  const Vector way = from * (0.9f + 0.6f * chance(0)) + Vector(0, 10, 80 + 120 * chance(1));
  const Vector axis = unit(Vector(chance(2) - 0.5f, chance(3) - 0.5f, chance(4) - 0.5f));
  const auto since = [](float t) { return std::clamp(t - roseBursts, 0.0f, 4.0f); };
  Motion motion;
  motion.straight = true;
  motion.positions = positionKeys(loopSeconds, 5, [=](float t) {
    return place + way * since(t) - Vector(0, 14 * since(t) * since(t), 0);
  });
  motion.turns =
      turnKeys(loopSeconds, 5, [=](float t) { return turned(axis, (1.2f + 1.6f * chance(5)) * since(t)); });
  return motion;
}

Motion dangling(float degrees, float turns, float phase) {
  Motion motion;
  motion.turns = turnKeys(loopSeconds, 8, [=](float t) {
    return turnedZ(degrees * (swing(t, loopSeconds, turns, phase) - swing(0, loopSeconds, turns, phase))) >>
           turnedX(0.6f * degrees *
                   (swing(t, loopSeconds, turns + 1, phase) - swing(0, loopSeconds, turns + 1, phase)));
  });
  return motion;
}

// The sprayer wanders over the sphere's left shoulder, where what it throws (to the left, back and down)
// comes clear of it.
Vector sprayerPlace(float t) {
  const Vector towards(-0.55f + 0.6f * swing(t, loopSeconds, 3),
                       0.75f + 0.3f * swing(t, loopSeconds, 4, 0.3f),
                       0.5f + 0.5f * swing(t, loopSeconds, 5, 0.1f));
  return sphereCentre + unit(towards) * (sphereRadius * 1.05f);
}

std::vector<StageLight> lights() {
  return {
      {.name = "lake", .position = Vector(0, -60, 60), .colour = {0.85f, 0.34f, 0.06f}},
      {.name = "choir", .position = Vector(0, 120, -300), .colour = {0.80f, 0.42f, 0.14f}},
      {.name = "sky", .position = Vector(-140, 280, 200), .colour = {0.22f, 0.17f, 0.22f}},
      {.name = "part03", .position = Vector(0, parked, 0), .on = false},
      {.name = "part04", .position = Vector(0, parked, 0), .on = false},
  };
}

std::vector<StageMaterial> materials() {
  const Colour4 white{1, 1, 1}, faint{0.10f, 0.09f, 0.10f}, half{0.45f, 0.45f, 0.45f}, none{0, 0, 0};
  const auto painted = [&](const char* name, const char* texture, Colour4 diffuse, Colour4 ambient) {
    return StageMaterial{
        .name = name, .texture = texture, .diffuse = diffuse, .ambient = ambient, .shine = 0};
  };
  StageMaterial vault = painted("vault", "hell_stone", faint, white);
  vault.twoSided = true;
  // Its other side is seen from under the lake.
  StageMaterial lava = painted("lava", "hell_lava", none, white);
  lava.twoSided = true;
  StageMaterial glow = painted("glow", "hell_glow", none, white);
  glow.twoSided = true;
  StageMaterial iron = painted("iron", "hell_iron", half, {0.40f, 0.38f, 0.40f});
  iron.environment = true;
  // Near the lens iron and stone are ink.
  StageMaterial darkIron = painted("darkiron", "hell_iron", {0.10f, 0.10f, 0.10f}, {0.10f, 0.09f, 0.11f});
  darkIron.environment = true;
  // All but black before the fire.
  StageMaterial being = painted("being", "hell_iron", none, {0.05f, 0.03f, 0.03f});
  being.environment = true;
  const StageMaterial depths{
      .name = "depths", .diffuse = {0.15f, 0.13f, 0.13f}, .ambient = {0.020f, 0.012f, 0.016f}, .shine = 0};
  return {
      lava,
      painted("stone", "hell_stone", faint, white),
      painted("darkstone", "hell_stone", none, {0.36f, 0.28f, 0.27f}),
      vault,
      painted("shell", "hell_sphere", half, {0.85f, 0.85f, 0.85f}),
      painted("heart", "hell_heart", none, white),
      painted("blaze", "hell_blaze", none, white),
      painted("lakehaze", "hell_lake", none, white),
      painted("roofhaze", "hell_lake", none, white),
      iron,
      darkIron,
      being,
      depths,
      glow,
  };
}

// --- The stage

// Where each part lies while it is baked, so that none shades another that it does not stand beside.
const std::vector<std::pair<StonePart, Vector>>& bakingPlaces() {
  static const std::vector<std::pair<StonePart, Vector>> places{{pier, Vector(-3000, 0, 0)},
                                                                {rib, Vector(0, 0, 0)},
                                                                {boss, Vector(0, 0, 0)},
                                                                {web, Vector(0, 0, 0)},
                                                                {brokenWeb, Vector(0, 0, 4000)},
                                                                {brokenRib, Vector(0, 0, 2000)},
                                                                {choirWall, Vector(0, 0, -2000)},
                                                                {causeway, Vector(3000, 0, 0)},
                                                                {rosePetal, Vector(0, roseHeight, -4000)},
                                                                {roseEye, Vector(0, roseHeight, -4000)}};
  return places;
}

Surface bakedStone() {
  Surface all;
  for (const auto& [part, place] : bakingPlaces()) append(all, placed(stonePart(part), moved(place)), part);
  return mappedAtlas(
      all, {.charts = Charts::byNormals, .side = stoneSide, .density = [](const Triangle& triangle) {
              return triangle.part == web || triangle.part == brokenWeb ? 0.6f
                     : triangle.part == choirWall                       ? 0.5f
                                                                        : 1.0f;
            }});
}

Surface builtPart(const Surface& stone, StonePart part, const Placement& placement) {
  for (const auto& [which, place] : bakingPlaces())
    if (which == part) return placed(partOf(stone, part), moved(place * -1.0f) >> placement);
  return {};
}

void addRose(Stage& stage, const Surface& stone) {
  const Vector middle(0, roseHeight, choirPlace - 4);
  for (int i = 0; i <= petalCount; ++i) {
    const bool eye = i == petalCount;
    const float degrees = 360.0f * (static_cast<float>(i) + 0.5f) / petalCount;
    const Vector pivot = eye ? middle : transformed(turnedZ(degrees) >> moved(middle), Vector(28, 0, 0));
    stage.meshes.push_back({.name = "rose" + std::to_string(i + 1),
                            .surface = eye ? builtPart(stone, roseEye, moved(middle))
                                           : builtPart(stone, rosePetal, turnedZ(degrees) >> moved(middle)),
                            .pivot = pivot,
                            .material = "stone",
                            .motion = blownOut(pivot, i)});
  }
}

void addMasonry(Stage& stage, const Surface& stone) {
  const Placement mirror = stretched(-1, 1, 1);
  // Sphere and choir light the far rows; those near the open end frame them.
  struct Row {
    const char *name, *material;
    std::vector<int> places;
  };
  for (const Row& row : {Row{"piers", "stone", {-3, -2, -1, 0, 1}}, Row{"piers2", "darkstone", {2}}}) {
    Surface piers;
    for (const int place : row.places) {
      const Placement left = moved(-naveHalf, 0, bay * static_cast<float>(place));
      append(piers, builtPart(stone, pier, left));
      append(piers, builtPart(stone, pier, left >> mirror));
    }
    stage.meshes.push_back({.name = row.name, .surface = piers, .material = row.material});
  }
  Surface ribs, vaults;
  struct Arch {
    int place;
    StonePart left, right;
  };
  const Arch arches[] = {{-3, rib, rib},      {-2, rib, rib}, {-1, rib, rib},
                         {0, rib, brokenRib}, {1, rib, rib},  {2, brokenRib, rib}};
  for (const Arch& arch : arches) {
    const Placement there = moved(0, 0, bay * static_cast<float>(arch.place));
    append(ribs, builtPart(stone, arch.left, there));
    append(ribs, builtPart(stone, arch.right, mirror >> there));
    if (arch.left == rib && arch.right == rib) append(ribs, builtPart(stone, boss, there));
  }
  for (const int place : {-4, -3, -2, -1, 2}) {
    const Placement there = moved(0, 0, bay * static_cast<float>(place));
    const StonePart vault = place < -1 ? web : brokenWeb;
    append(vaults, builtPart(stone, vault, there));
    if (place != -1) append(vaults, builtPart(stone, vault, mirror >> there));
  }
  stage.meshes.push_back({.name = "ribs", .surface = ribs, .material = "stone"});
  stage.meshes.push_back({.name = "vaults", .surface = vaults, .material = "vault"});
  stage.meshes.push_back({.name = "choirwall",
                          .surface = builtPart(stone, choirWall, moved(0, 0, choirPlace)),
                          .material = "stone"});
  addRose(stage, stone);
  stage.meshes.push_back({.name = "island",
                          .surface = builtPart(stone, causeway, turnedY(200) >> moved(-60, 0, 60)),
                          .material = "stone"});
}

void addSphere(Stage& stage, const std::vector<Plate>& plates, const Surface& shellSurface) {
  Surface whole;
  for (std::size_t i = 0; i < plates.size(); ++i)
    if (!plates[i].loose) append(whole, partOf(shellSurface, firstPlate + static_cast<int>(i)));
  stage.meshes.push_back({.name = "Sphere",
                          .surface = whole,
                          .pivot = sphereCentre,
                          .material = "shell",
                          .motion = sphereMotion()});
  StageMesh glowing{
      .name = "heart", .parent = "Sphere", .surface = heart(), .pivot = sphereCentre, .material = "heart"};
  glowing.motion.turns = turnKeys(loopSeconds, 20, [](float t) { return turnedY(-360 * t / loopSeconds); });
  stage.meshes.push_back(glowing);
  stage.meshes.push_back({.name = "child",
                          .parent = "Sphere",
                          .surface = withoutMapping(child()),
                          .pivot = sphereCentre,
                          .material = "being"});
  int loose = 0;
  for (std::size_t i = 0; i < plates.size(); ++i) {
    if (!plates[i].loose) continue;
    const Vector pivot = sphereCentre + plates[i].outward * sphereRadius;
    stage.meshes.push_back({.name = "plate" + std::to_string(++loose),
                            .parent = "Sphere",
                            .surface = partOf(shellSurface, firstPlate + static_cast<int>(i)),
                            .pivot = pivot,
                            .material = "shell",
                            .motion = plateMotion(plates[i], pivot, loose)});
  }
  for (int i = 0; i < 2; ++i) {
    const Vector place(0, parked, 0);
    stage.meshes.push_back(
        {.name = "part0" + std::to_string(i + 1),
         .surface = placed(partOf(shellSurface, firstShard + i),
                           moved(place - Vector(200.0f * static_cast<float>(i + 1), 0, 0))),
         .pivot = place,
         .material = "shell"});
  }
}

void addIron(Stage& stage) {
  stage.meshes.push_back({.name = "shackle", .surface = withoutMapping(shackle()), .material = "iron"});
  const Vector pivot(62, 224, 90);
  stage.meshes.push_back({.name = "chain",
                          .surface = placed(withoutMapping(danglingChain(84)), moved(pivot)),
                          .pivot = pivot,
                          .material = "iron",
                          .motion = dangling(3, 4, 0.23f)});
}

// What is seen through, from far to near for the camera in the nave.
void addHaze(Stage& stage) {
  stage.meshes.push_back(
      {.name = "lakehaze",
       .surface = placed(plane(2 * lakeHazeReach, 2 * lakeHazeReach, 2, 2), moved(0, 0.8f, 0)),
       .material = "lakehaze"});
  const Surface hazeCard = card(520, 210);
  int count = 0;
  for (const float z : {-290.0f, -225.0f}) {
    const Vector pivot(0, -8, z);
    StageMesh mesh{.name = "haze" + std::to_string(++count),
                   .surface = placed(hazeCard, moved(pivot)),
                   .pivot = pivot,
                   .material = "glow"};
    mesh.motion.positions = positionKeys(loopSeconds, 20, [=](float t) {
      return pivot +
             Vector(26 * swing(t, loopSeconds, 1, 0.3f * z), 5 * swing(t, loopSeconds, 2, 0.1f * z), 0);
    });
    stage.meshes.push_back(mesh);
  }
}

// What iron mirrors: the sky, and the burning lake.
Colour4 ironLight(const Vector& d) {
  return d.y > 0 ? hellLight(d) * 0.9f
                 : gradient(emberRamp, 0.60f - 0.16f * smoothStep(0, -0.8f, d.y)) * 0.8f;
}

Model hellModel(const Settings& settings) {
  const std::vector<Plate> plates = shellPlates();
  Surface shellSurface;
  for (int i = 0; i < 2; ++i)
    append(shellSurface, placed(withoutMapping(shard(i)), moved(200.0f * static_cast<float>(i + 1), 0, 0)),
           firstShard + i);
  for (std::size_t i = 0; i < plates.size(); ++i)
    append(shellSurface, withoutMapping(plates[i].surface), firstPlate + static_cast<int>(i));
  shellSurface = mappedAtlas(shellSurface, {.charts = Charts::byNormals, .side = 1024});
  const Surface stone = bakedStone();

  const auto picture = [&](const Surface& surface, const Surface& obstacles, const BakeLook& look, int side,
                           float wear, Colour4 (*colour)(const BakePoint&)) {
    return bake(surface, rayTree(withoutMapping(obstacles)), look,
                {.side = settings.side(side), .lit = !settings.draft, .wearWidth = wear, .paint = colour});
  };

  Stage stage;
  stage.seconds = shotSeconds;
  stage.materials = materials();
  // What the lava lets through is drawn before it.
  stage.meshes.push_back({.name = "spherebelow",
                          .surface = sphereInLake(),
                          .pivot = inLake(sphereCentre),
                          .material = "depths",
                          .motion = mirroredMotion()});
  stage.meshes.push_back({.name = "ringbelow", .surface = ringInLake(), .material = "darkiron"});
  stage.meshes.push_back({.name = "archesbelow", .surface = archesInLake(), .material = "depths"});
  const int quads = static_cast<int>(2 * lakeReach / tileSize);
  stage.meshes.push_back({.name = "Lava",
                          .surface = mappingScaled(plane(2 * lakeReach, 2 * lakeReach, quads, quads),
                                                   static_cast<float>(quads), static_cast<float>(quads)),
                          .material = "lava"});
  // From below, the far end of the roof goes over to what burns there.
  stage.meshes.push_back({.name = "roofhaze",
                          .surface = placed(plane(2 * lakeHazeReach, 2 * lakeHazeReach, 2, 2),
                                            turnedX(180) >> moved(0, -0.8f, 0)),
                          .material = "roofhaze"});
  stage.meshes.push_back({.name = "fire",
                          .surface = placed(card(330, 330), moved(0, 0.2f, choirPlace - 34)),
                          .material = "blaze"});
  addMasonry(stage, stone);
  addIron(stage);
  addSphere(stage, plates, shellSurface);
  StageMesh sprayer{.name = "Sprayer01", .pivot = sprayerPlace(0), .helper = true};
  sprayer.motion.positions = positionKeys(loopSeconds, 5, sprayerPlace);
  stage.meshes.push_back(sprayer);
  addHaze(stage);
  stage.lights = lights();
  stage.cameras = cameras();

  return {stage,
          {lavaPicture(settings.side(512)), picture(stone, stone, stoneLook(), stoneSide, 0.8f, stoneColour),
           picture(shellSurface, joined({withoutMapping(shellSurface), withoutMapping(heart())}),
                   sphereLook(), 1024, 0.7f, sphereColour),
           heartPicture(settings.side(256)), blazePicture(settings.side(256)),
           lakeHazePicture(settings.side(1024), lakeHazeReach),
           sphereMap(ironLight, lookTowards(-1.5f, 0), settings.side(256), 2),
           glowPicture(settings.side(256)), duskPicture(settings.side(256))}};
}

}  // namespace

Products hellModels() {
  return {model("hell",
                {{"hell_lava", PictureKind::maskedJpeg},
                 {"hell_stone", PictureKind::jpeg},
                 {"hell_sphere", PictureKind::jpeg},
                 {"hell_heart", PictureKind::jpeg},
                 {"hell_blaze", PictureKind::jpeg},
                 {"hell_lake", PictureKind::maskedJpeg},
                 {"hell_iron", PictureKind::jpeg},
                 {"hell_glow", PictureKind::maskedJpeg},
                 {"hell_dusk", PictureKind::jpeg}},
                5, hellModel)};
}

}  // namespace vex
