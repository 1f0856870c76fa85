#include <algorithm>
#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/fetus_paint.h"
#include "production/models/fetus_parts.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// The laboratory: a lamp in the dust over a table, a being in a jar, whose skin can turn to glass.

namespace vex {

namespace {

using namespace laboratory;

constexpr float loopSeconds = 10;  // of what moves by itself
constexpr float shotSeconds = 20;  // of cameras, of the being's turn and of the door
const Vector outOfSight(20000, 0, 0);

// --- Motion

// Half a turn from the back to the face, nodding as it floats.
Placement beingTurn(float t) {
  return turnedZ(3 * swing(t, shotSeconds, 3)) >> turnedX(2.5f * swing(t, shotSeconds, 5, 0.2f)) >>
         turnedY(-50 + 165 * eased(t, 0, 20));
}

Vector beingPlace(float t) {
  return Vector(0.8f * swing(t, shotSeconds, 2, 0.3f), 1.4f * swing(t, shotSeconds, 4), 0);
}

// Shut, open wide, look about, blink, shut.
float lidDegrees(float t) {
  const float open =
      eased(t, 1, 2.6f) - 0.85f * (eased(t, 4.4f, 4.7f) - eased(t, 4.75f, 5.1f)) - eased(t, 8.6f, 9.6f);
  return 108 * open + 4 * open * swing(t, loopSeconds, 4);
}

StageCamera camera(const char* name, float fieldDegrees, const std::vector<Vector>& eye,
                   const std::vector<Vector>& target) {
  return cameraThrough({.name = name, .fieldDegrees = fieldDegrees, .far = 1500}, shotSeconds, eye, target);
}

// The order is that of the movement's cameras.
std::vector<StageCamera> cameras() {
  return {
      // Into the room, towards the light.
      camera("view_wide", 66,
             {Vector(250, 34, 400), Vector(150, 20, 345), Vector(30, 12, 300), Vector(-96, 18, 262)},
             {Vector(-40, 36, 0), Vector(-30, 34, 0), Vector(-18, 30, 0), Vector(0, 22, 0)}),
      // Around the jar.
      camera("view_jar", 62,
             {Vector(-104, 6, 92), Vector(-52, -8, 128), Vector(24, 2, 138), Vector(92, 22, 102)},
             {Vector(12, 4, 0), Vector(10, 4, 0), Vector(-8, 4, 0), Vector(-14, 6, 0)}),
      // Eye to eye.
      camera("view_eyes", 46,
             {Vector(-34, 22, 96), Vector(-22, 18, 86), Vector(-8, 15, 78), Vector(4, 14, 70)},
             {Vector(6, 12, 0), Vector(5, 13, 0), Vector(2, 13, 0), Vector(-2, 13, 0)}),
      // Over the telephone.
      camera("view_phone", 58,
             {Vector(166, -22, 116), Vector(152, -26, 124), Vector(132, -30, 130), Vector(108, -30, 136)},
             {Vector(66, -20, 20), Vector(60, -18, 20), Vector(52, -14, 16), Vector(44, -10, 12)}),
      // Over the cigarette.
      camera("view_ash", 54,
             {Vector(-150, -32, 112), Vector(-138, -35, 120), Vector(-118, -36, 126), Vector(-96, -34, 128)},
             {Vector(-62, -26, 30), Vector(-60, -24, 30), Vector(-54, -20, 24), Vector(-46, -14, 20)}),
      // Along the hose to the jar.
      camera("view_hose", 66,
             {Vector(262, -40, 40), Vector(226, -8, 52), Vector(166, 22, 64), Vector(104, 44, 74)},
             {Vector(96, -44, -60), Vector(78, -24, -50), Vector(42, 0, -28), Vector(16, 10, -10)}),
      // Past the jar to the door.
      camera(
          "view_door", 64,
          {Vector(-70, -6, 176), Vector(-98, 6, 84), Vector(-72, 8, -70), Vector(92, -50, -190)},
          {Vector(110, -30, -330), Vector(120, -40, -330), Vector(140, -60, -330), Vector(156, -80, -400)}),
      // From under the ceiling, with the beam.
      camera("view_above", 74,
             {Vector(-150, 210, 150), Vector(-60, 226, 150), Vector(50, 214, 140), Vector(140, 180, 110)},
             {Vector(-4, -20, 0), Vector(0, -20, 0), Vector(4, -20, 0), Vector(4, -16, 0)}),
  };
}

std::vector<StageLight> lights() {
  std::vector<StageLight> all{
      {.name = "KeyLight", .position = lampPlace, .colour = {0.5f, 0.52f, 0.46f}},
      {.name = "WindowLight", .position = Vector(-190, 60, -250), .colour = {0.04f, 0.4f, 0.42f}},
      {.name = "VolumLight",
       .position = lampPlace,
       .on = false,
       .spot = true,
       .target = lampTarget,
       .coneDegrees = lampConeDegrees},
      {.name = "HandLight", .position = nozzlePlace, .colour = {0.5f, 0.95f, 0.9f}},
      {.name = "AlarmLight", .position = Vector(0, 150, 0), .colour = {2.2f, 0.16f, 0.1f}},
      {.name = "WaterParticle", .position = outOfSight, .on = false, .colour = {0.42f, 0.85f, 0.8f}},
  };
  // The alarm's light turns through the room.
  all[4].positions = positionKeys(
      3.5f, 7, [](float t) { return Vector(230 * swing(t, 3.5f, 1), 120, 190 * swing(t, 3.5f, 1, 0.25f)); });
  all[4].position = all[4].positions[0].value;
  for (const char* name : {"smokeParticle01", "smokeParticle02", "smokeParticle03", "smokeParticle04"})
    all.push_back({.name = name, .position = outOfSight, .on = false, .colour = {0.8f, 0.94f, 0.9f}});
  return all;
}

std::vector<StageMaterial> materials() {
  // Painted light counts; lamps add little to it, the alarm's red most.
  const auto painted = [](const char* name, const char* texture, float diffuse = 0.3f,
                          float ambient = 0.82f) {
    return StageMaterial{.name = name,
                         .texture = texture,
                         .diffuse = {diffuse, diffuse, diffuse},
                         .ambient = {ambient, ambient, ambient},
                         .shine = 0};
  };
  StageMaterial skin = painted("skin", "fetus_skin", 1, 0.24f);
  skin.specular = {0.6f, 0.62f, 0.6f};
  skin.shine = 0.4f;
  skin.shineStrength = 0.7f;
  StageMaterial glass{.name = "glass",
                      .texture = "fetus_glass",
                      .environment = true,
                      .diffuse = {0.2f, 0.2f, 0.2f},
                      .ambient = {0.85f, 0.85f, 0.85f},
                      .shine = 0};
  StageMaterial shard = glass;
  shard.name = "shard";
  shard.twoSided = true;
  shard.ambient = {1.8f, 1.8f, 1.8f};
  return {
      painted("room", "fetus_room", 0.45f, 1.05f),
      painted("table", "fetus_table", 1),
      painted("props", "fetus_props", 0.25f),
      painted("plain", "fetus_props", 1),
      painted("door", "fetus_door", 0.3f),
      skin,
      painted("eye", "fetus_eye", 1),
      painted("window", "fetus_window", 1),
      painted("hose", "fetus_hose", 0.7f, 0.4f),
      glass,
      shard,
      {.name = "bone", .diffuse = {0.5f, 0.46f, 0.4f}, .ambient = {0.3f, 0.27f, 0.22f}, .shine = 0},
      {.name = "heart",
       .diffuse = {0.7f, 0.1f, 0.06f},
       .ambient = {0.75f, 0.1f, 0.04f},
       .specular = {0.5f, 0.4f, 0.4f},
       .shine = 0.4f,
       .shineStrength = 0.8f},
      {.name = "cord",
       .diffuse = {0.8f, 0.42f, 0.36f},
       .ambient = {0.12f, 0.0f, 0.0f},
       .specular = {0.5f, 0.5f, 0.5f},
       .shine = 0.3f,
       .shineStrength = 0.8f},
      {.name = "white", .diffuse = {0.97f, 1, 0.98f}, .ambient = {1, 1, 1}, .shine = 0},
  };
}

StageMesh eye(const char* name, float side) {
  StageMesh mesh{.name = name,
                 .parent = "fetus",
                 .surface = eyeSurface(side),
                 .pivot = Vector(eyePlace.x, eyePlace.y, eyePlace.z * side),
                 .material = "eye"};
  mesh.motion.turns = turnKeys(loopSeconds, 3, [side](float t) {
    const float glance = 14 * (eased(t, 2.9f, 3.3f) - 2 * eased(t, 5.8f, 6.2f) + eased(t, 7.4f, 7.9f));
    return turned(eyeAcross(side), -lidDegrees(t) * pi / 180) >> turnedY(glance);
  });
  return mesh;
}

std::vector<StageMesh> beingMeshes(const Surface& skin) {
  const Vector centre(0, 0, 0);
  StageMesh being{.name = "fetus", .surface = skin, .pivot = centre, .material = "skin"};
  being.motion.positions = positionKeys(shotSeconds, 15, beingPlace);
  being.motion.turns = turnKeys(shotSeconds, 15, [](float t) { return beingTurn(t); });
  StageMesh heart{.name = "heart",
                  .parent = "fetus",
                  .surface = heartSurface(),
                  .pivot = heartPlace,
                  .material = "heart"};
  heart.motion.scales = scaleKeys(loopSeconds, 2, [](float t) {
    const float beat = std::fmod(t, 1.25f);
    const float grown = 1 + 0.26f * std::exp(-std::pow((beat - 0.2f) * 9, 2.0f)) +
                        0.14f * std::exp(-std::pow((beat - 0.5f) * 9, 2.0f));
    return Vector(grown, grown, grown);
  });
  return {
      being,           {.name = "bones", .parent = "fetus", .surface = bonesSurface(), .material = "bone"},
      heart,           {.name = "cord", .parent = "fetus", .surface = cordSurface(), .material = "cord"},
      eye("eye01", 1), eye("eye02", -1)};
}

Surface unmapped(const std::vector<Surface>& what) {
  Surface all;
  for (const Surface& one : what) append(all, withoutMapping(one));
  return all;
}

Model fetusModel(const Settings& settings) {
  constexpr Prop props[] = {apparatus, phone, ashtray,   cigarette, nozzle, shade,
                            bulb,      shelf, specimens, duct,      legs,   beacon};
  Surface things;
  for (const Prop prop : props) append(things, propSurface(prop), prop);
  things = mappedAtlas(
      things, {.charts = Charts::byNormals, .side = 512, .bleed = 3, .density = [](const Triangle& t) {
                 switch (t.part) {
                   case phone:
                   case cigarette:
                     return 2.6f;
                   case ashtray:
                   case apparatus:
                     return 1.5f;
                   case shelf:
                   case duct:
                   case legs:
                     return 0.25f;
                   case specimens:
                   case shade:
                     return 0.55f;
                   default:
                     return 1.0f;
                 }
               }});
  const Surface room =
      mappedAtlas(roomSurface(), {.charts = Charts::byNormals, .side = 512, .density = [](const Triangle& t) {
                                    return t.part == ceiling ? 0.4f : t.part == ground ? 0.75f : 1.0f;
                                  }});
  const Surface table =
      mappedAtlas(tableTop(), {.charts = Charts::byNormals, .side = 512, .density = [](const Triangle& t) {
                                 return t.part == 0 ? 1.0f : 0.4f;
                               }});
  const Surface skin = mappedAtlas(beingSurface(), {.charts = Charts::byNormals, .side = 512});
  const Surface door = mappedAtlas(doorSurface(), {.charts = Charts::byNormals, .side = 256, .bleed = 2});
  const Surface slack = hoseSurface(0), swollen = hoseSurface(1);

  const RayTree all = rayTree(unmapped({things, room, table, skin, door, slack}));
  const RayTree body = rayTree(withoutMapping(skin));
  const auto picture = [&](const Surface& surface, const RayTree& obstacles, const BakeLook& look, int side,
                           float wear, Colour4 (*colour)(const BakePoint&)) {
    BakePaint paint;
    paint.side = settings.side(side);
    paint.lit = !settings.draft;
    paint.wearWidth = wear;
    paint.ambient = 0.015f;
    paint.paint = colour;
    return bake(surface, obstacles, look, paint);
  };

  Stage stage;
  stage.seconds = shotSeconds;
  stage.materials = materials();
  std::vector<StageMesh>& meshes = stage.meshes;
  meshes = {{.name = "WhiteBox", .surface = whiteSurface(), .material = "white"},
            {.name = "room", .surface = room, .material = "room"},
            {.name = "door", .surface = door, .pivot = doorHinge, .material = "door"},
            {.name = "TableTop", .surface = table, .material = "table"}};
  meshes[2].motion.turns = turnKeys(shotSeconds, 15, [](float t) { return turnedY(104 * eased(t, 0, 20)); });
  const auto prop = [&](const char* name, std::initializer_list<Prop> parts, const char* material = "props") {
    meshes.push_back({.name = name,
                      .surface = selected(things,
                                          [&](const Triangle& t) {
                                            return std::find(parts.begin(), parts.end(),
                                                             static_cast<Prop>(t.part)) != parts.end();
                                          }),
                      .material = material});
  };
  prop("furniture", {shelf, specimens, duct, legs, apparatus, ashtray, beacon});
  prop("lamp", {shade, bulb});
  prop("phone", {phone}, "plain");
  prop("cigash", {cigarette});
  meshes.back().pivot = cigarettePlace;
  prop("HandSprayer", {nozzle});
  meshes.back().pivot = nozzlePlace;
  for (const auto& [name, surface] : {std::pair{"Hose", &slack}, {"hose01", &slack}, {"hose02", &swollen}})
    meshes.push_back({.name = name, .surface = *surface, .material = "hose"});
  for (StageMesh& mesh : beingMeshes(skin)) meshes.push_back(std::move(mesh));
  for (int i = 0; i < 3; ++i)
    meshes.push_back({.name = "glassParticle0" + std::to_string(i + 1),
                      .surface = placed(shardSurface(i), moved(outOfSight)),
                      .pivot = outOfSight,
                      .material = "shard"});
  meshes.push_back({.name = "rectangle01", .surface = windowSurface(), .material = "window"});
  meshes.push_back({.name = "bottle", .surface = jarSurface(), .material = "glass"});
  stage.lights = lights();
  stage.cameras = cameras();

  return {stage,
          {picture(room, all, labLook(160, 36), 512, 0, roomColour),
           picture(table, all, labLook(60, 49), 512, 0.8f, tableColour),
           picture(things, all, labLook(60, 36), 512, 0.7f, propColour),
           picture(door, all, labLook(80, 25), 256, 1.5f, doorColour),
           picture(skin, body, labLook(24, 64), 512, 0.9f, skinColour), eyePicture(settings.side(256)),
           windowPicture(settings.side(256)), hosePicture(settings.side(256)),
           glassPicture(settings.side(256)), beamPicture(64)}};
}

}  // namespace

Products fetusModels() {
  return {model("fetus",
                {{"fetus_room", PictureKind::jpeg},
                 {"fetus_table", PictureKind::jpeg},
                 {"fetus_props", PictureKind::jpeg},
                 {"fetus_door", PictureKind::jpeg},
                 {"fetus_skin", PictureKind::jpeg},
                 {"fetus_eye", PictureKind::jpeg},
                 {"fetus_window", PictureKind::maskedJpeg},
                 {"fetus_hose", PictureKind::jpeg},
                 {"fetus_glass", PictureKind::jpeg},
                 {"vollight", PictureKind::jpeg}},
                5, fetusModel, {"production/models/fetus_"})};
}

}  // namespace vex
