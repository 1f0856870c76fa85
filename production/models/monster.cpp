#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/filter.h"
#include "production/image/noise3.h"
#include "production/models/model.h"
#include "production/models/monster_parts.h"
#include "production/textures/hangar_light.h"
#include "production/textures/palette.h"

// The alien: wet chrome that breathes. Its metal mirrors the hangar; over trunk, abdomen and head lies a
// painted skin that is all but clear on the open metal and thick in the hollows, where dark flesh shows. The
// floor is wet and lets a mirrored creature shine through its puddles.

namespace vex {

namespace {

using namespace monster;

enum SkinPart { trunkSkin, abdomenSkin, headSkin };

constexpr float skinLift = 0.12f;  // above the metal, so that depths do not fight

// --- Painting

// Light of the hangar: cold lamps above, magenta strips left and right, brighter towards its hazy ends.
Colour4 hangarSky(const Vector& d) {
  const float strip =
      std::exp(-std::fabs(std::fabs(std::atan2(d.y, std::fabs(d.x))) - 0.55f) * 4) * (1 - std::fabs(d.z));
  const float lamps = std::pow(std::max(0.0f, d.y), 3.0f), ends = std::pow(std::fabs(d.z), 4.0f);
  return gradient(steelRamp, 0.28f) + gradient(steelRamp, 0.62f) * (0.9f * lamps + 0.35f * ends) +
         gradient(violetRamp, 0.62f) * (1.1f * strip);
}

BakeLook hangarLook() {
  BakeLook look;
  look.sky = hangarSky;
  look.lights = {{.towards = Vector(-0.45f, 1, 0.5f), .size = 0.2f, .colour = {0.62f, 0.68f, 0.78f}},
                 {.towards = Vector(0.8f, 0.35f, -0.6f), .size = 0.2f, .colour = {0.55f, 0.08f, 0.36f}}};
  look.bounce = {0.05f, 0.01f, 0.04f};
  look.rays = 64;
  return look;
}

// Alpha: 1 hides the metal.
Colour4 skinColour(const BakePoint& p) {
  const float hollow = smoothStep(0.80f, 0.30f, p.open);
  const float vein = 1 - std::fabs(gradientNoise(warp(p.position * 0.16f, 0, 0.8f, 811), 0, 812));
  const float stain = smoothStep(0.1f, 0.7f, fractal(p.position * 0.09f, 0, 4, 0.55f, 813));
  const Colour4 flesh = gradient(violetRamp, 0.16f + 0.34f * hollow * std::pow(vein, 6.0f));
  const Colour4 soot = gradient(steelRamp, 0.10f + 0.10f * stain);
  // From the pool below.
  const float below = std::max(0.0f, -p.normal.y) * p.open;
  Colour4 colour = mix(soot, flesh, hollow) * (0.3f + 0.7f * p.open) +
                   gradient(violetRamp, 0.25f + 0.5f * std::pow(vein, 5.0f)) * (0.8f * below);
  colour.a = clamp01(0.05f + 0.85f * hollow + 0.22f * stain * (1 - hollow) + 0.45f * (1 - p.open) +
                     0.35f * below * std::pow(vein, 3.0f) - 0.3f * std::max(0.0f, p.edge));
  return colour;
}

// Steel plates in rings about the plinth; alpha: puddles let the mirrored world through.
Colour4 deckColour(const BakePoint& p) {
  const float radius = std::hypot(p.position.x, p.position.z), turn = std::atan2(p.position.z, p.position.x);
  const float ring = (radius - 44) / 29;
  const float count = 12 + 6 * std::floor(ring), sector = turn / (2 * pi) * count + 0.5f * std::floor(ring);
  const float ringGap = std::fabs(ring - std::round(ring)) * 29;
  const float sectorGap = std::fabs(sector - std::round(sector)) * 2 * pi * radius / count;
  const float seam = smoothStep(0.5f, 1.6f, std::min(ringGap, sectorGap));
  const float plate = hashUnit(static_cast<int>(std::floor(ring)), static_cast<int>(std::floor(sector)), 821);
  const float wear = 0.5f + 0.5f * fractal(p.position * 0.05f, 0, 4, 0.6f, 822);
  const float puddle = smoothStep(0.42f, 0.56f, 0.5f + 0.5f * fractal(p.position * 0.013f, 0, 3, 0.5f, 823));
  Colour4 colour =
      gradient(steelRamp, (0.20f + 0.10f * plate + 0.16f * wear) * (0.45f + 0.55f * seam)) * p.light;
  colour = mix(colour, colour * 0.35f + gradient(violetRamp, 0.10f), puddle);
  colour.a = mix(0.66f, 0.16f, puddle * seam);
  return colour;
}

Colour4 apronColour(const BakePoint& p) {
  const float radius = std::hypot(p.position.x, p.position.z);
  const float slabs = std::min(std::fabs(p.position.x / 70 - std::round(p.position.x / 70)),
                               std::fabs(p.position.z / 70 - std::round(p.position.z / 70))) *
                      70;
  const float wear = 0.5f + 0.5f * fractal(p.position * 0.02f, 0, 4, 0.6f, 832);
  Colour4 colour =
      gradient(steelRamp, (0.20f + 0.18f * wear) * (0.6f + 0.4f * smoothStep(1, 4, slabs))) * p.light;
  colour.a = 0.85f * smoothStep(880, 330, radius);
  return colour;
}

Colour4 ironColour(const BakePoint& p) {
  const float grit = 0.5f + 0.5f * fractal(p.position * 0.07f, 0, 4, 0.6f, 841);
  const float streak =
      0.5f +
      0.5f * gradientNoise(Vector(p.position.x * 0.25f, p.position.y * 0.03f, p.position.z * 0.25f), 0, 842);
  Colour4 metal = gradient(steelRamp, 0.17f + 0.14f * grit + 0.10f * streak + 0.25f * std::max(0.0f, p.edge));
  if (p.part == cables) metal = metal * 0.35f;
  Colour4 colour = metal * p.light;
  if (p.part == plinth) {
    const float radius = std::hypot(p.position.x, p.position.z);
    const float groove = std::exp(-std::fabs(radius - 57.5f) * 0.8f) * smoothStep(8.5f, 6, p.position.y);
    colour = colour + gradient(violetRamp, 0.80f) * groove;
  }
  return colour;
}

// A burning iris about a slit.
Canvas eyePicture(const Settings& settings) {
  const int side = settings.side(128);
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, y = 2 * v - 1, radius = std::hypot(x, y);
    const float fibres = 0.5f + 0.5f * gradientNoise(std::atan2(y, x) * 6, radius * 2, 0, 861);
    const float slit = smoothStep(0.10f, 0.22f, std::fabs(x) + 0.12f * y * y);
    const float heat = 0.98f - 0.42f * smoothStep(0.15f, 0.95f, radius) - 0.12f * fibres;
    return gradient(violetRamp, heat) * (0.12f + 0.88f * slit);
  });
}

Canvas glowCard(const Settings& settings) {
  const int side = settings.side(128);
  return paint(side, side, [](float u, float v) {
    const float radius = std::hypot(2 * u - 1, 2 * v - 1), fall = smoothStep(1, 0, radius);
    Colour4 colour = gradient(violetRamp, 0.62f + 0.3f * fall * fall);
    colour.a = 0.75f * fall * fall * fall;
    return colour;
  });
}

// A card of haze, thick in the middle, its rim clear.
Canvas hazeCard(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const float x = 2 * u - 1, y = 2 * v - 1;
    const float rim = smoothStep(1, 0.25f, std::hypot(x, y));
    const float swirl = 0.5f + 0.5f * fractal(u * 4, v * 4, 0, 4, 0.5f, 851);
    Colour4 colour = mix(gradient(steelRamp, 0.66f), gradient(violetRamp, 0.6f), 0.12f + 0.22f * v);
    colour.a = rim * rim * (0.06f + 0.25f * swirl * swirl);
    return colour;
  });
}

// --- The stage

const Vector hoop = Vector(0, 78, 0);  // about which the mirror spheres circle

struct Orb {
  const char* name;
  float radius, distance, turns, phase, tilt;
};
constexpr Orb orbs[] = {{"sphere01", 21, 128, 1, 0.05f, 0.30f}, {"sphere02", 13, 92, 2, 0.55f, -0.55f}};

Piece orbPiece(const Orb& orb) {
  const auto place = [orb](float t) {
    const float angle = 2 * pi * (orb.turns * t / loopSeconds + orb.phase);
    return hoop + Vector(orb.distance * std::cos(angle), orb.distance * std::sin(angle) * orb.tilt,
                         orb.distance * std::sin(angle));
  };
  Piece piece{.name = orb.name,
              .surface = placed(withoutMapping(sphere(orb.radius, 26, 14)), moved(place(0))),
              .pivot = place(0)};
  piece.motion.positions = positionKeys(loopSeconds, 5, place);
  return piece;
}

StageMesh meshOf(const Piece& piece, const char* material) {
  return {.name = piece.name,
          .parent = piece.parent,
          .surface = piece.surface,
          .pivot = piece.pivot,
          .material = material,
          .motion = piece.motion};
}

// As the floor mirrors it.
StageMesh mirroredMesh(Piece piece) {
  const auto flipped = [](const Vector& v) { return Vector(v.x, -v.y, v.z); };
  piece.name = "deep_" + piece.name;
  if (!piece.parent.empty()) piece.parent = "deep_" + piece.parent;
  piece.surface = placed(piece.surface, stretched(1, -1, 1));
  piece.pivot = flipped(piece.pivot);
  for (MotionKey& key : piece.motion.positions) key.value = flipped(key.value);
  for (MotionKey& key : piece.motion.turns) key.value = Vector(-key.value.x, key.value.y, -key.value.z);
  return meshOf(piece, "deep");
}

StageCamera camera(const char* name, float fieldDegrees, const std::vector<Vector>& eye,
                   const std::vector<Vector>& target) {
  return cameraThrough({.name = name, .fieldDegrees = fieldDegrees, .far = 2500}, shotSeconds, eye, target);
}

std::vector<StageCamera> cameras() {
  return {
      // Down the hangar, low, through its arches.
      camera("wide", 78,
             {Vector(84, 20, 380), Vector(60, 30, 285), Vector(-20, 42, 220), Vector(-96, 54, 165)},
             {Vector(34, 92, 0), Vector(24, 96, 0), Vector(-14, 98, 10), Vector(-34, 96, 24)}),
      // Eye to eye, a slow orbit.
      camera("face", 62,
             {Vector(62, 106, 128), Vector(34, 108, 158), Vector(-26, 114, 160), Vector(-74, 130, 112)},
             {Vector(10, 116, 70), Vector(11, 116, 70), Vector(-11, 117, 68), Vector(-6, 119, 60)}),
      // On the wet floor, between the claws.
      camera("low", 92, {Vector(136, 7, 118), Vector(84, 8, 150), Vector(6, 9, 168), Vector(-78, 12, 138)},
             {Vector(-12, 88, 0), Vector(0, 94, 6), Vector(16, 94, 6), Vector(22, 92, 0)}),
      // A crane from the floor to the crown.
      camera("crane", 80,
             {Vector(-210, 24, 120), Vector(-200, 110, 130), Vector(-130, 196, 140), Vector(-20, 214, 170)},
             {Vector(0, 90, 0), Vector(-6, 92, 0), Vector(6, 88, 6), Vector(12, 78, 0)}),
      // Around its back, past tail and hoses.
      camera("back", 84,
             {Vector(190, 70, -120), Vector(110, 96, -200), Vector(-30, 122, -214), Vector(-170, 104, -150)},
             {Vector(0, 112, -20), Vector(-14, 118, -20), Vector(12, 118, -20), Vector(20, 108, -10)}),
      // Along the flank, through the legs.
      camera("flank", 76,
             {Vector(150, 52, -90), Vector(156, 62, -20), Vector(150, 84, 60), Vector(120, 110, 120)},
             {Vector(0, 96, -40), Vector(0, 98, -10), Vector(0, 104, 20), Vector(0, 112, 44)}),
  };
}

std::vector<StageLight> lights() {
  std::vector<StageLight> all{
      {.name = "key", .position = Vector(-160, 260, 180), .colour = {0.62f, 0.68f, 0.80f}},
      {.name = "strip_east", .position = Vector(240, 90, -110), .colour = {0.62f, 0.05f, 0.38f}},
      {.name = "strip_west", .position = Vector(-250, 60, -80), .colour = {0.40f, 0.04f, 0.30f}},
  };
  all[0].positions = positionKeys(shotSeconds, 30, [](float t) {
    return Vector(-160 + 90 * swing(t, shotSeconds, 2), 260, 180 + 60 * swing(t, shotSeconds, 1));
  });
  all[1].positions = positionKeys(shotSeconds, 30, [](float t) {
    return Vector(240, 90 + 60 * swing(t, shotSeconds, 3), -110 + 90 * swing(t, shotSeconds, 2, 0.3f));
  });
  return all;
}

std::vector<StageMaterial> materials() {
  const Colour4 faint{0.12f, 0.12f, 0.12f};
  const auto painted = [&](const char* name, const char* texture) {
    return StageMaterial{
        .name = name, .texture = texture, .diffuse = faint, .ambient = {0.9f, 0.9f, 0.9f}, .shine = 0};
  };
  StageMaterial glow = painted("glow", "monster_glow");
  glow.diffuse = {0, 0, 0};
  glow.twoSided = true;
  StageMaterial haze = painted("haze", "monster_haze");
  haze.twoSided = true;
  return {
      {.name = "chrome",
       .texture = "chrome",
       .environment = true,
       .diffuse = {0.85f, 0.85f, 0.85f},
       .ambient = {0.5f, 0.5f, 0.53f},
       .shine = 0.9f,
       .shineStrength = 1},
      {.name = "mirror",
       .texture = "chrome",
       .environment = true,
       .diffuse = {0.3f, 0.3f, 0.3f},
       .ambient = {0.85f, 0.85f, 0.85f},
       .shine = 0.8f,
       .shineStrength = 1},
      {.name = "deep",
       .texture = "chrome",
       .environment = true,
       .diffuse = {0.5f, 0.45f, 0.5f},
       .ambient = {0.75f, 0.62f, 0.75f},
       .shine = 0},
      {.name = "pool",
       .texture = "chrome",
       .environment = true,
       .diffuse = {0.5f, 0.1f, 0.35f},
       .ambient = {0.75f, 0.05f, 0.42f},
       .shine = 0},
      {.name = "pipe",
       .texture = "chrome",
       .environment = true,
       .diffuse = {0.2f, 0.2f, 0.22f},
       .ambient = {0.06f, 0.06f, 0.08f},
       .shine = 0.5f,
       .shineStrength = 1},
      painted("deck", "monster_deck"),
      painted("apron", "monster_apron"),
      painted("iron", "monster_iron"),
      painted("skin", "monster_skin"),
      painted("eye", "monster_eye"),
      glow,
      haze,
  };
}

Model monsterModel(const Settings& settings) {
  const std::vector<Piece> body = bodyPieces(Fineness::full), limbs = limbPieces(Fineness::full);

  Surface skin, creature;
  for (std::size_t i = 0; i < body.size(); ++i) {
    append(skin, displaced(body[i].surface, [](const Vector&, const Vector&) { return skinLift; }),
           static_cast<int>(i));
    append(creature, body[i].surface);
  }
  for (const Piece& piece : limbs) append(creature, piece.surface);
  skin = mappedAtlas(skin, {.charts = Charts::byNormals, .side = 512});

  Surface iron;
  for (const HangarPart part : {arch, plinth, cables}) append(iron, hangarPart(part), part);
  iron =
      mappedAtlas(iron, {.charts = Charts::byNormals, .side = 512, .density = [](const Triangle& triangle) {
                           return triangle.part == arch ? 0.5f : 1.0f;
                         }});
  const Surface deckSurface = hangarPart(deck), apronSurface = hangarPart(apron);

  const auto shadowing = [&](const std::vector<Surface>& what) {
    Surface all;
    for (const Surface& one : what) append(all, withoutMapping(one));
    return rayTree(all);
  };
  const Surface standing = selected(iron, [](const Triangle& t) { return t.part != arch; });
  const RayTree nearby = shadowing({creature, deckSurface, standing});
  const auto picture = [&](const Surface& surface, const RayTree& obstacles, const BakeLook& look, int side,
                           Colour4 (*colour)(const BakePoint&)) {
    BakePaint paint;
    paint.side = settings.side(side);
    paint.lit = !settings.draft;
    paint.wearWidth = 0.8f;
    paint.paint = colour;
    return bake(surface, obstacles, look, paint);
  };
  BakeLook skinLook = hangarLook(), floorLook = hangarLook(), ironLook = hangarLook();
  skinLook.reach = 45;
  ironLook.reach = 80;
  ironLook.rays = floorLook.rays = 49;

  Stage stage;
  stage.seconds = shotSeconds;
  stage.materials = materials();
  // What shines through the floor comes first, then the floor, then what stands on it.
  for (const Piece& piece : bodyPieces(Fineness::reflection)) stage.meshes.push_back(mirroredMesh(piece));
  for (const Piece& piece : limbPieces(Fineness::reflection)) stage.meshes.push_back(mirroredMesh(piece));
  stage.meshes.push_back({.name = "apron", .surface = apronSurface, .material = "apron"});
  stage.meshes.push_back({.name = "deck", .surface = deckSurface, .material = "deck"});
  stage.meshes.push_back({.name = "pool", .surface = poolSurface(), .material = "pool"});
  for (std::size_t i = 0; i < archPlaces.size(); ++i)
    stage.meshes.push_back({.name = "arch" + std::to_string(i + 1),
                            .surface = placed(partOf(iron, arch), moved(0, 0, archPlaces[i])),
                            .material = "iron"});
  stage.meshes.push_back({.name = "ring", .surface = partOf(iron, plinth), .material = "iron"});
  stage.meshes.push_back({.name = "hoses", .surface = partOf(iron, cables), .material = "iron"});
  stage.meshes.push_back({.name = "pipes", .surface = pipes(), .material = "pipe"});
  for (const Piece& piece : body) stage.meshes.push_back(meshOf(piece, "chrome"));
  stage.meshes.push_back(meshOf(eyePiece(), "eye"));
  for (const Piece& piece : limbs) stage.meshes.push_back(meshOf(piece, "chrome"));
  for (const Orb& orb : orbs) stage.meshes.push_back(meshOf(orbPiece(orb), "mirror"));
  // A skin has no motion of its own: it rides on its metal.
  for (std::size_t i = 0; i < body.size(); ++i)
    stage.meshes.push_back({.name = body[i].name + "_skin",
                            .parent = body[i].name,
                            .surface = partOf(skin, static_cast<int>(i)),
                            .pivot = body[i].pivot,
                            .material = "skin"});
  stage.meshes.push_back(meshOf(glowPiece(), "glow"));
  for (const float z : {-330.0f, -180.0f, 210.0f})
    stage.meshes.push_back({.name = "haze" + std::to_string(z < -300 ? 1
                                                            : z < 0  ? 2
                                                                     : 3),
                            .surface = placed(card(760, 360), moved(0, -90, z)),
                            .material = "haze"});
  stage.lights = lights();
  stage.cameras = cameras();

  return {stage,
          {picture(skin, nearby, skinLook, 512, skinColour),
           picture(deckSurface, shadowing({creature, standing}), floorLook, 512, deckColour),
           picture(apronSurface, shadowing({creature, standing}), floorLook, 256, apronColour),
           picture(iron, shadowing({iron, apronSurface}), ironLook, 512, ironColour), eyePicture(settings),
           glowCard(settings), hazeCard(settings)}};
}

}  // namespace

Products monsterModels() {
  return {model("monster",
                {{"monster_skin", PictureKind::maskedJpeg},
                 {"monster_deck", PictureKind::maskedJpeg},
                 {"monster_apron", PictureKind::maskedJpeg},
                 {"monster_iron", PictureKind::jpeg},
                 {"monster_eye", PictureKind::jpeg},
                 {"monster_glow", PictureKind::maskedJpeg},
                 {"monster_haze", PictureKind::maskedJpeg}},
                4, monsterModel, {"production/models/monster_", "production/textures/hangar_light."})};
}

}  // namespace vex
