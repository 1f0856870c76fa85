#include <algorithm>
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

constexpr float skinLift = 0.12f;   // above the metal, so that depths do not fight
constexpr float clearFrom = 0.84f;  // metal that sees so much of the room has no skin

// --- Painting

// Light of the hangar: cold lamps above, a little magenta left and right, pale haze at its ends.
Colour4 hangarSky(const Vector& d) {
  const float strip =
      std::exp(-std::fabs(std::fabs(std::atan2(d.y, std::fabs(d.x))) - 0.55f) * 4) * (1 - std::fabs(d.z));
  const float lamps = std::pow(std::max(0.0f, d.y), 3.0f), ends = std::pow(std::fabs(d.z), 4.0f);
  return gradient(steelRamp, 0.28f) + gradient(steelRamp, 0.66f) * (0.9f * lamps + 0.5f * ends) +
         gradient(violetRamp, 0.62f) * (0.4f * strip);
}

BakeLook hangarLook() {
  BakeLook look;
  look.sky = hangarSky;
  look.lights = {{.towards = Vector(-0.55f, 0.9f, -0.55f), .size = 0.15f, .colour = {0.95f, 1.02f, 1.12f}},
                 {.towards = Vector(0.9f, 0.25f, -0.3f), .size = 0.2f, .colour = {0.34f, 0.05f, 0.24f}}};
  look.bounce = {0.02f, 0.015f, 0.03f};
  look.rays = 64;
  return look;
}

// Alpha: 1 hides the metal. Nothing is left of it where the skin ends.
Colour4 skinColour(const BakePoint& p) {
  const float hollow = smoothStep(clearFrom, 0.30f, p.open);
  const float vein = 1 - std::fabs(gradientNoise(warp(p.position * 0.16f, 0, 0.8f, 811), 0, 812));
  const float stain = smoothStep(0.1f, 0.7f, fractal(p.position * 0.09f, 0, 4, 0.55f, 813));
  const Colour4 flesh = gradient(violetRamp, 0.10f + 0.26f * hollow * std::pow(vein, 6.0f));
  const Colour4 soot =
      gradient(steelRamp, 0.06f + 0.08f * stain) + gradient(steelRamp, 0.3f) * p.light * 0.1f;
  Colour4 colour = mix(soot, flesh, hollow) * (0.25f + 0.75f * p.open);
  colour.a = clamp01(1.25f * hollow + 0.2f * stain * smoothStep(clearFrom, 0.7f, p.open));
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
  Colour4 metal = gradient(steelRamp, 0.11f + 0.12f * grit + 0.08f * streak + 0.25f * std::max(0.0f, p.edge));
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

// Lower half: the wall of haze, round without a seam, thick at the creature's height. Upper half: a plume.
Canvas hazePicture(const Settings& settings) {
  const int side = settings.side(256);
  return paint(side, side, [](float u, float v) {
    const bool wall = v > 0.5f;
    const float height = wall ? 2 - 2 * v : 1 - 2 * v;
    const float swirl = 0.5f + 0.5f * fractal(u * 4, height * 2, 4, 4, 0.5f, 851);
    Colour4 colour = mix(gradient(steelRamp, 0.74f), gradient(violetRamp, 0.72f), 0.10f * swirl);
    const float ends = smoothStep(0.02f, 0.2f, height) * smoothStep(0.97f, wall ? 0.4f : 0.5f, height);
    const float across = (2 * u - 1) / (0.3f + 0.6f * height);
    colour.a = wall ? ends * (0.55f + 0.45f * swirl)
                    : ends * smoothStep(1, 0, std::fabs(across)) * smoothStep(1, 0.8f, std::fabs(2 * u - 1)) *
                          smoothStep(0.25f, 0.8f, swirl) * 0.3f;
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
              .surface = placed(withoutMapping(sphere(orb.radius, 24, 13)), moved(place(0))),
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
      // From its side round to its face, as it lifts a claw.
      camera("beckoned", 70,
             {Vector(-205, 60, -60), Vector(-190, 72, 90), Vector(-104, 84, 176), Vector(-30, 92, 200)},
             {Vector(0, 96, 0), Vector(6, 100, 20), Vector(14, 108, 40), Vector(8, 108, 50)}),
      // Before it, from below, as one kneels.
      camera("idol", 66, {Vector(30, 30, 250), Vector(22, 26, 226), Vector(8, 24, 204), Vector(-14, 30, 186)},
             {Vector(-4, 84, 40), Vector(-3, 84, 40), Vector(2, 86, 40), Vector(4, 88, 40)}),
  };
}

std::vector<StageLight> lights() {
  std::vector<StageLight> all{
      {.name = "key", .position = Vector(-160, 260, 180), .colour = {0.50f, 0.55f, 0.64f}},
      {.name = "rim", .position = Vector(-60, 300, -240), .colour = {0.74f, 0.82f, 0.95f}},
      {.name = "strip_east", .position = Vector(240, 90, -110), .colour = {0.50f, 0.06f, 0.32f}},
  };
  all[0].positions = positionKeys(shotSeconds, 30, [](float t) {
    return Vector(-160 + 90 * swing(t, shotSeconds, 2), 260, 180 + 60 * swing(t, shotSeconds, 1));
  });
  all[2].positions = positionKeys(shotSeconds, 30, [](float t) {
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
  StageMaterial haze = painted("haze", "monster_haze"), nearHaze = haze, vapour = haze;
  nearHaze.name = "near_haze";
  nearHaze.opacity = 0.5f;
  vapour.name = "vapour";
  vapour.twoSided = true;
  return {
      {.name = "chrome",
       .texture = "chrome",
       .environment = true,
       .diffuse = {0.75f, 0.75f, 0.75f},
       .ambient = {0.42f, 0.43f, 0.46f},
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
       .diffuse = {0.4f, 0.15f, 0.35f},
       .ambient = {0.55f, 0.08f, 0.36f},
       .shine = 0},
      painted("deck", "monster_deck"),
      painted("apron", "monster_apron"),
      painted("iron", "monster_iron"),
      painted("skin", "monster_skin"),
      painted("eye", "monster_eye"),
      glow,
      haze,
      nearHaze,
      vapour,
  };
}

// The walls of haze take the lower half of their picture twice around.
Surface mappedHaze(const Surface& shell) {
  return mappingScaled(shell, 2, 0.5f);
}

// Vapour over the plinth's rim and behind the creature, two crossed cards each.
struct Plume {
  const char* name;
  Vector foot;
  float width, height, phase;
};
const Plume plumes[] = {{"vapour1", {-58, 6, -24}, 70, 150, 0.1f},
                        {"vapour2", {50, 6, -40}, 84, 190, 0.45f},
                        {"vapour3", {-6, 6, -66}, 100, 170, 0.7f},
                        {"vapour4", {64, 6, 22}, 50, 90, 0.3f}};

StageMesh plumeMesh(const Plume& plume) {
  const Surface one = mappingScaled(card(plume.width, plume.height), 1, 0.5f, 0, 0.5f);
  StageMesh mesh{
      .name = plume.name,
      .surface = placed(joined({placed(one, turnedY(20)), placed(one, turnedY(110))}), moved(plume.foot)),
      .pivot = plume.foot,
      .material = "vapour"};
  mesh.motion.turns = turnKeys(loopSeconds, 6, [phase = plume.phase](float t) {
    return turnedZ(7 * swing(t, loopSeconds, 1, phase)) >> turnedY(18 * swing(t, loopSeconds, 1, 2 * phase));
  });
  mesh.motion.scales = scaleKeys(loopSeconds, 6, [phase = plume.phase](float t) {
    return Vector(1 + 0.15f * swing(t, loopSeconds, 2, phase), 1 + 0.2f * swing(t, loopSeconds, 1, 3 * phase),
                  1);
  });
  return mesh;
}

// A skin over trunk, abdomen and head where they do not lie open; parts are numbered as the pieces.
Surface skinOver(const std::vector<Piece>& body, const RayTree& obstacles, const BakeLook& look) {
  Surface skin;
  for (std::size_t i = 0; i < body.size(); ++i) {
    const Surface whole = displaced(body[i].surface, [](const Vector&, const Vector&) { return skinLift; });
    const std::vector<Vector> normals = pointNormals(whole);
    std::vector<char> hidden;
    for (std::size_t k = 0; k < whole.points.size(); ++k)
      hidden.push_back(
          lightAt(obstacles, look, whole.points[k], normals[k], static_cast<std::uint32_t>(k)).open <
          clearFrom);
    append(skin,
           compacted(selected(whole,
                              [&](const Triangle& triangle) {
                                return std::any_of(
                                    triangle.points.begin(), triangle.points.end(),
                                    [&](int point) { return hidden[static_cast<std::size_t>(point)] != 0; });
                              })),
           static_cast<int>(i));
  }
  return skin;
}

Model monsterModel(const Settings& settings) {
  const std::vector<Piece> body = bodyPieces(Fineness::full), limbs = limbPieces(Fineness::full);

  Surface creature;
  for (const Piece& piece : body) append(creature, piece.surface);
  for (const Piece& piece : limbs) append(creature, piece.surface);

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
  const Surface skin =
      mappedAtlas(skinOver(body, nearby, skinLook), {.charts = Charts::byNormals, .side = 512});

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
  for (const Piece& piece : body) stage.meshes.push_back(meshOf(piece, "chrome"));
  stage.meshes.push_back(meshOf(eyePiece(), "eye"));
  for (const Piece& piece : limbs) stage.meshes.push_back(meshOf(piece, "chrome"));
  for (const Piece& piece : stringPieces()) stage.meshes.push_back(meshOf(piece, "chrome"));
  for (const Orb& orb : orbs) stage.meshes.push_back(meshOf(orbPiece(orb), "mirror"));
  // A skin has no motion of its own: it rides on its metal.
  for (std::size_t i = 0; i < body.size(); ++i)
    stage.meshes.push_back({.name = body[i].name + "_skin",
                            .parent = body[i].name,
                            .surface = partOf(skin, static_cast<int>(i)),
                            .pivot = body[i].pivot,
                            .material = "skin"});
  // From far to near, for they hide what is drawn behind them later.
  stage.meshes.push_back(
      {.name = "haze_far", .surface = mappedHaze(hazeShell(300, 250, 340)), .material = "haze"});
  stage.meshes.push_back(
      {.name = "haze_near", .surface = mappedHaze(hazeShell(185, 166, 200)), .material = "near_haze"});
  for (const Plume& plume : plumes) stage.meshes.push_back(plumeMesh(plume));
  stage.meshes.push_back(meshOf(glowPiece(), "glow"));
  stage.lights = lights();
  stage.cameras = cameras();

  return {stage,
          {picture(skin, nearby, skinLook, 512, skinColour),
           picture(deckSurface, shadowing({creature, standing}), floorLook, 512, deckColour),
           picture(apronSurface, shadowing({creature, standing}), floorLook, 256, apronColour),
           picture(iron, shadowing({iron, apronSurface}), ironLook, 512, ironColour), eyePicture(settings),
           glowCard(settings), hazePicture(settings)}};
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
