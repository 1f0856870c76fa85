#include <algorithm>
#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/fetus_being.h"
#include "production/models/fetus_paint.h"
#include "production/models/fetus_parts.h"
#include "production/models/model.h"
#include "production/textures/palette.h"

// The laboratory: a lamp in the dust over a table, a being in a jar, whose skin can turn to glass.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

using namespace laboratory;

constexpr float loopSeconds = 10;  // of what moves by itself
const Vector outOfSight(20000, 0, 0);

// --- Motion

// Half a turn from the back to the face, nodding as it floats; at last it sinks to the ground.
Placement beingTurn(float t) {
  return turnedZ(3 * swing(t, shotSeconds, 3)) >> turnedX(2.5f * swing(t, shotSeconds, 5, 0.2f)) >>
         turnedY(-50 + 165 * eased(t, 0, 20));
}

Vector beingPlace(float t) {
  return Vector(0.8f * swing(t, shotSeconds, 2, 0.3f),
                1.4f * swing(t, shotSeconds, 4) - 9 * eased(t, 18, 19.6f), 0);
}

float doorDegrees(float t) {
  return 104 * eased(t, 0, shotSeconds);
}

// Of what falls through the door: nothing while it is shut, then as wide as the slit at its post.
Vector doorLightSize(float t) {
  const float slit = 1 - std::cos(doorDegrees(t) * pi / 180);
  const float begun = std::max(0.002f, eased(t, 0.4f, 2));
  return Vector(std::clamp(8 * slit, 0.002f, 1.0f), begun, begun);
}

std::vector<StageLight> lights() {
  std::vector<StageLight> all{
      {.name = "KeyLight", .position = lampPlace, .colour = {0.8f, 0.82f, 0.74f}},
      {.name = "WindowLight", .position = Vector(-190, 60, -250), .colour = {0.06f, 0.62f, 0.64f}},
      {.name = "VolumLight",
       .position = lampPlace,
       .on = false,
       .spot = true,
       .target = lampTarget,
       .coneDegrees = lampConeDegrees},
      {.name = "HandLight", .position = nozzlePlace, .colour = {0.5f, 0.95f, 0.9f}},
      {.name = "AlarmLight", .position = Vector(0, 150, 0), .colour = {4.5f, 0.16f, 0.1f}},
      {.name = "WaterParticle", .position = outOfSight, .on = false, .colour = {0.2f, 0.42f, 0.4f}},
  };
  // The alarm's light turns through the room.
  all[4].positions = positionKeys(
      3.5f, 7, [](float t) { return Vector(230 * swing(t, 3.5f, 1), 120, 190 * swing(t, 3.5f, 1, 0.25f)); });
  all[4].position = all[4].positions[0].value;
  for (const char* name : {"smokeParticle01", "smokeParticle02", "smokeParticle03", "smokeParticle04"})
    all.push_back({.name = name, .position = outOfSight, .on = false, .colour = {2.6f, 2.9f, 2.8f}});
  return all;
}

std::vector<StageMaterial> materials() {
  // Painted light counts; lamps add little to it, the alarm's red most.
  const auto painted = [](const char* name, const char* texture, float diffuse = 0.3f,
                          Colour4 ambient = {0.82f, 0.82f, 0.82f}) {
    return StageMaterial{.name = name,
                         .texture = texture,
                         .diffuse = {diffuse, diffuse, diffuse},
                         .ambient = ambient,
                         .shine = 0};
  };
  // The player adds 0.15.
  const auto without = [](const Colour4& gain) {
    return Colour4{1.12f / gain.r - 0.15f, 1.12f / gain.g - 0.15f, 1.12f / gain.b - 0.15f};
  };
  StageMaterial skin = painted("skin", "fetus_skin", 1, {0.24f, 0.24f, 0.24f});
  skin.specular = {0.22f, 0.24f, 0.24f};
  skin.shine = 0.4f;
  skin.shineStrength = 0.7f;
  StageMaterial glass{.name = "glass",
                      .texture = "fetus_glass",
                      .environment = true,
                      .diffuse = {0.2f, 0.2f, 0.2f},
                      .ambient = {0.6f, 0.6f, 0.6f},
                      .shine = 0};
  StageMaterial rim = glass;
  rim.name = "rim";
  rim.diffuse = {0.3f, 0.3f, 0.3f};
  StageMaterial shard = glass;
  shard.name = "shard";
  shard.twoSided = true;
  shard.ambient = {1.8f, 1.8f, 1.8f};
  return {
      painted("room", "fetus_room", 0.7f, without(roomGain)),
      painted("table", "fetus_table", 1),
      painted("props", "fetus_props", 0.3f, without(propGain)),
      painted("plain", "fetus_props", 1),
      painted("lamp", "fetus_props", 0.2f, {0.6f, 0.6f, 0.6f}),
      painted("bone", "fetus_props", 0.45f, {0.4f, 0.4f, 0.4f}),
      painted("lid", "fetus_props", 0.6f, {0.36f, 0.36f, 0.36f}),
      skin,
      painted("eye", "fetus_eye", 0.5f, {0.5f, 0.5f, 0.5f}),
      painted("cover", "fetus_props", 0.85f),
      painted("window", "fetus_window", 1),
      painted("hose", "fetus_hose", 0.7f, {0.4f, 0.4f, 0.4f}),
      glass,
      rim,
      shard,

      {.name = "heart",
       .texture = "fetus_props",
       .diffuse = {0.7f, 0.6f, 0.6f},
       .ambient = {0.8f, 0.8f, 0.8f},
       .specular = {0.5f, 0.4f, 0.4f},
       .shine = 0.4f,
       .shineStrength = 0.8f},
      {.name = "white", .diffuse = {0.97f, 1, 0.98f}, .ambient = {1, 1, 1}, .shine = 0},
  };
}

StageMesh about(const char* name, const char* parent, const Surface& surface, const Vector& pivot,
                const char* material, const std::function<Placement(float)>& turn) {
  StageMesh mesh{.name = name, .parent = parent, .surface = surface, .pivot = pivot, .material = material};
  mesh.motion.turns = turnKeys(loopSeconds, 6, turn);
  return mesh;
}

// Its lid opens, it looks about.
void addEye(std::vector<StageMesh>& meshes, const char* lid, const char* globe, const Surface& covering,
            float side) {
  const Vector centre(eyePlace.x, eyePlace.y, eyePlace.z * side);
  meshes.push_back(about(globe, "fetus", eyeSurface(side), centre, "eye",
                         [](float t) { return turnedY(mix(-20.0f, 20.0f, t / loopSeconds)); }));
  meshes.push_back(about(lid, "fetus", covering, centre, "cover", [side](float t) {
    return turned(eyeAcross(side), -98 * t / loopSeconds * pi / 180);
  }));
}

std::vector<StageMesh> beingMeshes(const Surface& skin, const Surface& things) {
  const Vector centre(0, 0, 0);
  StageMesh being{.name = "fetus", .surface = skin, .pivot = centre, .material = "skin"};
  being.motion.positions = positionKeys(shotSeconds, 15, beingPlace);
  being.motion.turns = turnKeys(shotSeconds, 15, [](float t) { return beingTurn(t); });
  StageMesh pump{.name = "heart",
                 .parent = "fetus",
                 .surface = partOf(things, heart),
                 .pivot = heartPlace,
                 .material = "heart"};
  pump.motion.scales = scaleKeys(loopSeconds, 30, [](float t) {
    const float grown = 1 + 0.4f * t / loopSeconds;
    return Vector(grown, grown, grown);
  });
  const auto within = [](const char* name, const Surface& surface, const char* material) {
    return StageMesh{.name = name, .parent = "fetus", .surface = surface, .material = material};
  };
  // The rim is hidden by opaque skin and lights up round what is within once the skin is glass.
  std::vector<StageMesh> all{being,
                             within("bones", partOf(things, bones), "bone"),
                             pump,
                             within("cord", cordSurface(), "hose"),
                             within("lids", partOf(things, lids), "lid"),
                             within("rim", withoutMapping(rimSurface()), "rim")};
  const Surface both = partOf(things, covers);
  const auto covering = [&](float side) {
    return selected(both, [&](const Triangle& t) {
      return both.points[static_cast<std::size_t>(t.points[0])].z * side > 0;
    });
  };
  addEye(all, "eye01", "ball01", covering(1), 1);
  addEye(all, "eye02", "ball02", covering(-1), -1);
  return all;
}

// The telephone's disc and its receiver.
void addPhoneParts(std::vector<StageMesh>& meshes, const Surface& things) {
  const auto place = [](const Placement& frame, const Vector& p) { return transformed(frame, p); };
  const Vector disc = place(dialFrame(), Vector(0, 0, 0)), fork = place(phoneFrame(), Vector(0, 24, -4));
  const Vector spindle = place(dialFrame(), Vector(0, 1, 0)) - disc,
               along = place(phoneFrame(), Vector(0, 24, -3)) - fork;
  meshes.push_back(about("dial", "", partOf(things, dial), disc, "props",
                         [spindle](float t) { return turned(spindle, -330 * t / loopSeconds * pi / 180); }));
  meshes.push_back(about("receiver", "", partOf(things, receiver), fork, "props", [along](float t) {
    return turned(along, (t / loopSeconds - 0.5f) * 5 * pi / 180);
  }));
}

// The jar's pieces, in shells that fly apart at their own pace; below the floor before they do.
void addBurstShells(std::vector<StageMesh>& meshes) {
  constexpr int begin = 6, last = static_cast<int>(loopSeconds) * framesPerSecond;
  const Vector centre(0, 4, 0);
  for (int shell = 0; shell < burstShells; ++shell) {
    const float k = static_cast<float>(shell);
    StageMesh mesh{.name = "burst0" + std::to_string(shell + 1),
                   .surface = burstSurface(shell),
                   .pivot = centre,
                   .material = "shard"};
    mesh.motion.straight = true;
    mesh.motion.positions = {{.value = Vector(0, -900, 0)},
                             {.frame = begin, .value = centre},
                             {.frame = last, .value = centre + Vector(0, 4 - 5 * k, 0)}};
    mesh.motion.scales = scaleKeys(loopSeconds, 30, [k](float t) {
      const float grown = 1 + (0.5f + 0.34f * k) * t / loopSeconds;
      return Vector(grown, grown, grown);
    });
    mesh.motion.turns = turnKeys(loopSeconds, 30, [k](float t) {
      return turnedY((14 - 9 * k) * t / loopSeconds) >> turnedZ((6 - 4 * k) * t / loopSeconds);
    });
    meshes.push_back(std::move(mesh));
  }
}

// Where drops are born: along the jet from the nozzle to the glass, never twice in a row in one place.
StageMesh sprayerHelper() {
  StageMesh helper{.name = "HandSprayer", .pivot = nozzlePlace, .helper = true};
  helper.motion.straight = true;
  helper.motion.positions = positionKeys(loopSeconds, 1, [](float t) {
    return nozzlePlace * mix(1.0f, 0.62f, std::fmod(t * framesPerSecond * 0.382f, 1.0f));
  });
  return helper;
}

// What shares one picture, in the order of its numbers; what is seen closely has more texels.
constexpr struct {
  Prop prop;
  float density;
} props[] = {{apparatus, 1.8f}, {phone, 2.4f}, {dial, 2.4f},  {receiver, 2.4f}, {ashtray, 1.5f},
             {cigarette, 4},    {nozzle, 1},   {shade, 1},    {bulb, 1},        {shelf, 0.25f},
             {specimens, 0.5f}, {duct, 0.25f}, {legs, 0.25f}, {beacon, 1},      {bones, 2},
             {lids, 3},         {covers, 3},   {heart, 4}};

Surface mappedProps() {
  Surface things;
  for (const auto& [prop, density] : props) append(things, propSurface(prop), prop);
  return mappedAtlas(things,
                     {.charts = Charts::byNormals, .side = 512, .bleed = 3, .density = [](const Triangle& t) {
                        return props[t.part].density;
                      }});
}

// The room and its door.
Surface mappedRoom() {
  Surface walled = roomSurface();
  append(walled, doorSurface(), leaf);
  return mappedAtlas(
      walled, {.charts = Charts::byNormals, .side = 512, .bleed = 3, .density = [](const Triangle& t) {
                 return t.part == ceiling ? 0.4f : t.part == ground ? 0.75f : t.part == leaf ? 1.6f : 1.0f;
               }});
}

bool isOneOf(const Triangle& triangle, std::initializer_list<Prop> parts) {
  return std::find(parts.begin(), parts.end(), static_cast<Prop>(triangle.part)) != parts.end();
}

void addRoom(std::vector<StageMesh>& meshes, const Surface& walled, const Surface& table) {
  const Surface room = selected(walled, [](const Triangle& t) { return t.part != leaf; });
  StageMesh door{.name = "door", .surface = partOf(walled, leaf), .pivot = doorHinge, .material = "room"};
  door.motion.turns = turnKeys(shotSeconds, 15, [](float t) { return turnedY(doorDegrees(t)); });
  meshes = {{.name = "WhiteBox", .surface = whiteSurface(), .material = "white"},
            {.name = "room", .surface = room, .material = "room"},
            door,
            {.name = "TableTop", .surface = table, .material = "table"},
            // The same picture behind the panes, for what is half transparent before them.
            {.name = "panes", .surface = placed(windowSurface(), moved(0, 0, -1)), .material = "window"}};
}

void addProps(std::vector<StageMesh>& meshes, const Surface& things) {
  const auto prop = [&](const char* name, std::initializer_list<Prop> parts, const char* material = "props") {
    meshes.push_back({.name = name,
                      .surface = selected(things, [&](const Triangle& t) { return isOneOf(t, parts); }),
                      .material = material});
  };
  prop("furniture", {shelf, specimens, duct, legs, apparatus, ashtray, beacon});
  prop("lamp", {shade, bulb}, "lamp");
  prop("phone", {phone}, "plain");
  prop("cigash", {cigarette});
  meshes.back().pivot = cigarettePlace;
  prop("nozzle", {nozzle});
  meshes.push_back(sprayerHelper());
  addPhoneParts(meshes, things);
}

// What can be seen through comes last.
void addGlass(std::vector<StageMesh>& meshes) {
  for (int i = 0; i < 3; ++i)
    meshes.push_back({.name = "glassParticle0" + std::to_string(i + 1),
                      .surface = placed(shardSurface(i), moved(outOfSight)),
                      .pivot = outOfSight,
                      .material = "shard"});
  addBurstShells(meshes);
  StageMesh doorLight{
      .name = "doorLight", .surface = doorLightSurface(), .pivot = doorPost, .material = "window"};
  doorLight.motion.scales = scaleKeys(shotSeconds, 15, doorLightSize);
  meshes.push_back(doorLight);
  meshes.push_back({.name = "rectangle01", .surface = windowSurface(), .material = "window"});
  meshes.push_back({.name = "bottle", .surface = jarSurface(), .material = "glass"});
}

Model fetusModel(const Settings& settings) {
  const Surface things = mappedProps(), walled = mappedRoom();
  const Surface table =
      mappedAtlas(tableTop(), {.charts = Charts::byNormals, .side = 512, .density = [](const Triangle& t) {
                                 return t.part == 0 ? 1.0f : 0.4f;
                               }});
  const Surface skin = mappedAtlas(beingSurface(), {.charts = Charts::byNormals, .side = 1024});
  const Surface slack = hoseSurface(0), swollen = hoseSurface(1);

  Stage stage;
  stage.seconds = shotSeconds;
  stage.materials = materials();
  std::vector<StageMesh>& meshes = stage.meshes;
  addRoom(meshes, walled, table);
  addProps(meshes, things);
  for (const auto& [name, surface] : {std::pair{"Hose", &slack}, {"hose01", &slack}, {"hose02", &swollen}})
    meshes.push_back({.name = name, .surface = *surface, .material = "hose"});
  for (StageMesh& mesh : beingMeshes(skin, things)) meshes.push_back(std::move(mesh));
  addGlass(meshes);
  stage.lights = lights();
  stage.cameras = cameras();

  // What is in the jar is lit as if its skin were glass.
  const RayTree clear = rayTree(joined({things, walled, table, slack}));
  const Surface solid = selected(things, [](const Triangle& t) {
    return !isOneOf(t, {bones, lids, covers, heart});
  });
  const RayTree all = rayTree(joined({solid, walled, table, skin, slack})), body = rayTree(skin);
  const auto picture = [&](const Surface& surface, const RayTree& obstacles, const BakeLook& look, int side,
                           float wear, Colour4 (*colour)(const BakePoint&)) {
    return bake(surface, obstacles, look,
                {.side = settings.side(side),
                 .lit = !settings.draft,
                 .wearWidth = wear,
                 .ambient = 0.015f,
                 .paint = colour});
  };
  return {stage,
          {picture(walled, all, labLook(160, 36), 512, 1.5f, roomColour),
           picture(table, all, labLook(60, 49), 512, 0.8f, tableColour),
           picture(things, clear, labLook(60, 36), 512, 0.7f, propColour),
           picture(skin, body, labLook(24, 64), 1024, 0.9f, skinColour), eyePicture(settings.side(256)),
           windowPicture(settings.side(256)), hosePicture(settings.side(256)),
           glassPicture(settings.side(256)), beamPicture(2048)}};
}

}  // namespace

Products fetusModels() {
  return {model("fetus",
                {{"fetus_room", PictureKind::jpeg},
                 {"fetus_table", PictureKind::jpeg},
                 {"fetus_props", PictureKind::jpeg},

                 {"fetus_skin", PictureKind::jpeg},
                 {"fetus_eye", PictureKind::jpeg},
                 {"fetus_window", PictureKind::maskedJpeg},
                 {"fetus_hose", PictureKind::jpeg},
                 {"fetus_glass", PictureKind::maskedJpeg},
                 {"vollight", PictureKind::bmp}},
                5, fetusModel)};
}

}  // namespace vex
