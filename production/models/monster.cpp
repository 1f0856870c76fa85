#include <algorithm>
#include <cmath>

#include "production/geometry/bake.h"
#include "production/geometry/forms.h"
#include "production/models/model.h"
#include "production/models/monster_paint.h"
#include "production/models/monster_parts.h"
#include "production/textures/palette.h"

// The alien: wet chrome that breathes. Its metal mirrors the hangar; over trunk and abdomen lies a
// painted skin that is all but clear on the open metal and thick in the hollows, where dark flesh shows. The
// floor is wet and lets a mirrored creature shine through its puddles.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

using namespace monster;

constexpr std::size_t skinned = 2;  // of the body's pieces: the head is bare
constexpr float skinLift = 0.12f;   // above the metal, so that depths do not fight

// --- The stage

const Vector hoop = Vector(0, 78, 0);  // about which the mirror spheres circle

struct Orb {
  const char* name;
  float radius, distance, turns, phase, tilt;
  int around;
};
constexpr Orb orbs[] = {{"sphere01", 21, 128, 1, 0.55f, 0.30f, 28},
                        {"sphere02", 13, 92, 2, 0.55f, -0.55f, 20}};

Piece orbPiece(const Orb& orb) {
  const auto place = [orb](float t) {
    const float angle = 2 * pi * (orb.turns * t / loopSeconds + orb.phase);
    return hoop + Vector(orb.distance * std::cos(angle), orb.distance * std::sin(angle) * orb.tilt,
                         orb.distance * std::sin(angle));
  };
  Piece piece{
      .name = orb.name,
      .surface = placed(withoutMapping(sphere(orb.radius, orb.around, orb.around / 2)), moved(place(0))),
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

// A short shot on an accent, entered at this time: a blow, then it drifts.
constexpr float struckFrom = 10.2f, struckSeconds = 2;
constexpr float stingFrom = 5, clawFrom = 3.2f;
StageCamera struck(const char* name, float fieldDegrees, const std::vector<Vector>& eye,
                   const std::vector<Vector>& target) {
  return cameraDuring({.name = name, .fieldDegrees = fieldDegrees, .far = 2500}, shotSeconds, struckFrom,
                      struckSeconds, eye, target);
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
             {Vector(10, 120, 70), Vector(11, 120, 70), Vector(-11, 121, 68), Vector(-6, 122, 60)}),
      // On the wet floor, between the claws.
      camera("low", 92, {Vector(136, 7, 118), Vector(84, 8, 150), Vector(6, 9, 168), Vector(-78, 12, 138)},
             {Vector(-12, 92, 0), Vector(0, 104, 6), Vector(16, 104, 6), Vector(22, 98, 0)}),
      // A crane from the floor to the crown.
      camera("crane", 80,
             {Vector(-210, 24, 120), Vector(-200, 110, 130), Vector(-130, 196, 140), Vector(-20, 214, 170)},
             {Vector(0, 90, 0), Vector(-6, 92, 0), Vector(6, 88, 6), Vector(12, 78, 0)}),
      // Around its back, low, under the sting.
      camera("back", 84,
             {Vector(180, 50, -210), Vector(150, 56, -250), Vector(60, 64, -280), Vector(-120, 70, -220)},
             {Vector(0, 146, -80), Vector(-4, 152, -90), Vector(0, 152, -90), Vector(10, 146, -80)}),
      // Low along its flank, the lamp behind it, while a claw passes.
      camera("flank", 66,
             {Vector(-70, 34, 196), Vector(-128, 56, 158), Vector(-176, 80, 60), Vector(-132, 60, 134)},
             {Vector(6, 108, 10), Vector(-4, 108, 0), Vector(0, 106, 0), Vector(0, 108, 0)}),
      // From before its shoulder round to its face, as it lifts a claw.
      camera("beckoned", 58,
             {Vector(176, 84, 96), Vector(140, 96, 150), Vector(92, 92, 192), Vector(28, 66, 222)},
             {Vector(0, 112, 30), Vector(2, 114, 40), Vector(0, 112, 44), Vector(0, 88, 44)}),
      // Before it, from below, as one kneels.
      camera("idol", 66, {Vector(30, 30, 250), Vector(22, 26, 226), Vector(8, 24, 204), Vector(-14, 30, 186)},
             {Vector(-4, 89, 40), Vector(-3, 89, 40), Vector(2, 91, 40), Vector(4, 93, 40)}),
      // Into its six eyes.
      camera("gaze", 44,
             {Vector(38, 128, 150), Vector(16, 126, 148), Vector(-16, 126, 144), Vector(-38, 128, 138)},
             {Vector(3, 124, 76), Vector(1, 125, 76), Vector(-1, 125, 76), Vector(-3, 124, 76)}),
      // Out of the crown, as its head turns up.
      struck("above", 70, {Vector(70, 150, 150), Vector(104, 186, 196), Vector(116, 204, 214)},
             {Vector(40, 100, 10), Vector(50, 96, -20), Vector(52, 94, -24)}),
      // The four strokes: it stands right and left by turns, and beside it is dark.
      // The first has looked up at the sting before, when it darts.
      handedOver(cameraDuring({.name = "stroke_far", .fieldDegrees = 64, .far = 2500}, shotSeconds, stingFrom,
                              1, {Vector(60, 208, 100), Vector(54, 207, 94), Vector(46, 204, 86)},
                              {Vector(58, 198, -30), Vector(57, 198, -30), Vector(54, 196, -30)}),
                 8,
                 struck("", 64, {Vector(62, 56, 320), Vector(54, 60, 280), Vector(52, 62, 270)},
                        {Vector(-86, 88, 0), Vector(-84, 90, 0), Vector(-84, 90, 0)})),
      struck("stroke_low", 66, {Vector(-84, 24, 256), Vector(-64, 26, 232), Vector(-62, 26, 230)},
             {Vector(80, 112, 0), Vector(76, 114, 0), Vector(76, 114, 0)}),
      struck("stroke_high", 66, {Vector(-70, 236, 150), Vector(-62, 222, 170), Vector(-60, 220, 173)},
             {Vector(-62, 84, 0), Vector(-58, 84, -10), Vector(-57, 84, -11)}),
      // The last has been before its face when it lifts its right claw.
      handedOver(cameraDuring({.name = "stroke_face", .fieldDegrees = 60, .far = 2500}, shotSeconds, clawFrom,
                              1, {Vector(-60, 122, 228), Vector(-56, 123, 222), Vector(-49, 124, 208)},
                              {Vector(-20, 150, 80), Vector(-19, 148, 80), Vector(-16, 145, 80)}),
                 8,
                 struck("", 60, {Vector(-30, 122, 236), Vector(-24, 121, 204), Vector(-20, 120, 196)},
                        {Vector(56, 106, 50), Vector(50, 106, 50), Vector(48, 106, 50)})),
      // Its eyes in the middle of the dark, from afar.
      camera("caged", 28,
             {Vector(24, 96, 330), Vector(18, 98, 310), Vector(-14, 98, 300), Vector(-24, 96, 290)},
             {Vector(11, 123, 70), Vector(11, 123, 70), Vector(11, 123, 70), Vector(11, 123, 70)}),
      // Down on its eyes, before the dark floor.
      camera("hushed", 44,
             {Vector(46, 178, 172), Vector(30, 172, 166), Vector(16, 166, 160), Vector(0, 160, 154)},
             {Vector(0, 119, 76), Vector(0, 119, 76), Vector(0, 119, 76), Vector(0, 119, 76)}),
  };
}

std::vector<StageLight> lights() {
  std::vector<StageLight> all{
      {.name = "key", .position = Vector(-160, 260, 180), .colour = {0.50f, 0.55f, 0.64f}},
      {.name = "rim", .position = Vector(-60, 300, -240), .colour = {0.90f, 0.98f, 1.10f}},
      {.name = "strip_east", .position = Vector(240, 90, -110), .colour = {0.30f, 0.15f, 0.27f}},
      {.name = "pool_light", .position = Vector(0, -40, 20), .colour = {0.55f, 0.10f, 0.40f}},
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
  StageMaterial glow = painted("glow", "monster_air");
  glow.diffuse = {0, 0, 0};
  glow.twoSided = true;
  StageMaterial haze = painted("haze", "monster_air"), nearHaze = haze, vapour = haze;
  nearHaze.name = "near_haze";
  nearHaze.opacity = 0.5f;
  vapour.name = "vapour";
  vapour.twoSided = true;
  // What mirrors, with a highlight where it shines.
  const auto metal = [](const char* name, const char* texture, const Colour4& diffuse, const Colour4& ambient,
                        float shine = 0) {
    return StageMaterial{.name = name,
                         .texture = texture,
                         .environment = true,
                         .diffuse = diffuse,
                         .ambient = ambient,
                         .shine = shine,
                         .shineStrength = shine > 0 ? 1.0f : 0.0f};
  };
  return {
      // Darker than the gate that it stands before.
      metal("head", "chrome", {0.24f, 0.24f, 0.24f}, {0.36f, 0.37f, 0.40f}, 0.9f),
      metal("limb", "chrome_soft", {0.75f, 0.75f, 0.75f}, {0.30f, 0.31f, 0.34f}, 0.9f),
      metal("shell", "chrome", {0.18f, 0.18f, 0.18f}, {0.8f, 0.8f, 0.84f}),
      metal("mirror", "chrome", {0.3f, 0.3f, 0.3f}, {0.85f, 0.85f, 0.85f}, 0.8f),
      metal("deep", "chrome_soft", {0.5f, 0.45f, 0.5f}, {1, 0.9f, 1}),
      metal("pool", "chrome_soft", {0.16f, 0.05f, 0.12f}, {0.55f, 0.07f, 0.36f}),
      painted("floor", "monster_floor"),
      painted("iron", "monster_iron"),
      painted("skin", "monster_skin"),
      painted("eye", "monster_air"),
      glow,
      haze,
      nearHaze,
      vapour,
  };
}

// Vapour over the plinth's rim and behind the creature, two crossed cards each.
struct Plume {
  const char* name;
  Vector foot;
  float width, height, phase;
};
const Plume plumes[] = {{"vapour1", {-58, 6, -24}, 70, 150, 0.1f},
                        {"vapour2", {46, 6, -52}, 76, 120, 0.45f},
                        {"vapour3", {-6, 6, -66}, 100, 170, 0.7f},
                        {"vapour4", {64, 6, 22}, 50, 90, 0.3f}};

StageMesh plumeMesh(const Plume& plume) {
  const Surface one = mappedWithin(plumePart, card(plume.width, plume.height));
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

// A skin over trunk and abdomen where they do not lie open; parts are numbered as the pieces.
Surface skinOver(const std::vector<Piece>& body, const RayTree& obstacles, const BakeLook& look) {
  Surface skin;
  for (std::size_t i = 0; i < skinned; ++i) {
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

// What shines through the floor comes first, then the floor, then what stands on it.
void addHangar(std::vector<StageMesh>& meshes, const Surface& iron, const Surface& deck,
               const Surface& apron) {
  for (const auto& pieces : {bodyPieces(Fineness::reflection), limbPieces(Fineness::reflection)})
    for (const Piece& piece : pieces) meshes.push_back(mirroredMesh(piece));
  meshes.push_back({.name = "apron", .surface = mappedTo(apronPart, apron), .material = "floor"});
  meshes.push_back({.name = "deck", .surface = mappedTo(deckPart, deck), .material = "floor"});
  meshes.push_back({.name = "pool", .surface = poolSurface(), .material = "pool"});
  for (std::size_t i = 0; i < archPlaces.size(); ++i)
    meshes.push_back({.name = "arch" + std::to_string(i + 1),
                      .surface = placed(partOf(iron, arch), moved(0, 0, archPlaces[i])),
                      .material = "iron"});
  meshes.push_back({.name = "ring", .surface = partOf(iron, plinth), .material = "iron"});
  meshes.push_back({.name = "hoses", .surface = partOf(iron, cables), .material = "iron"});
}

void addCreature(std::vector<StageMesh>& meshes, const std::vector<Piece>& body,
                 const std::vector<Piece>& limbs, const Surface& skin) {
  // The back takes no light of lamps, so that above its plates stands the night with their reflections.
  for (const Piece& piece : body) meshes.push_back(meshOf(piece, piece.name == "head" ? "head" : "shell"));
  Piece eyes = eyePiece();
  eyes.surface = mappedTo(eyePart, eyes.surface);
  meshes.push_back(meshOf(eyes, "eye"));
  for (const Piece& piece : limbs) meshes.push_back(meshOf(piece, "limb"));
  for (const Piece& piece : stringPieces()) meshes.push_back(meshOf(piece, "limb"));
  for (const Orb& orb : orbs) meshes.push_back(meshOf(orbPiece(orb), "mirror"));
  // A skin has no motion of its own: it rides on its metal.
  for (std::size_t i = 0; i < skinned; ++i)
    meshes.push_back({.name = body[i].name + "_skin",
                      .parent = body[i].name,
                      .surface = partOf(skin, static_cast<int>(i)),
                      .pivot = body[i].pivot,
                      .material = "skin"});
}

// From far to near, for they hide what is drawn behind them later.
void addAir(std::vector<StageMesh>& meshes) {
  meshes.push_back(
      {.name = "haze_far", .surface = mappedTo(wallPart, hazeShell(300, 480, 340), 2), .material = "haze"});
  meshes.push_back({.name = "haze_near",
                    .surface = mappedTo(wallPart, hazeShell(185, 166, 200), 2),
                    .material = "near_haze"});
  for (const Plume& plume : plumes) meshes.push_back(plumeMesh(plume));
  Piece glow = glowPiece();
  glow.surface = mappedWithin(glowPart, glow.surface);
  meshes.push_back(meshOf(glow, "glow"));
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

  const Surface standing = selected(iron, [](const Triangle& t) { return t.part != arch; });
  const RayTree nearby = rayTree(joined({creature, deckSurface, standing})),
                aboveFloor = rayTree(joined({creature, standing}));
  const auto picture = [&](const Surface& surface, const RayTree& obstacles, const BakeLook& look, int side,
                           Colour4 (*colour)(const BakePoint&)) {
    return bake(surface, obstacles, look,
                {.side = settings.side(side), .lit = !settings.draft, .wearWidth = 0.8f, .paint = colour});
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
  addHangar(stage.meshes, iron, deckSurface, apronSurface);
  addCreature(stage.meshes, body, limbs, skin);
  addAir(stage.meshes);
  stage.lights = lights();
  stage.cameras = cameras();

  return {stage,
          {picture(skin, nearby, skinLook, 512, skinColour),
           floorPicture(picture(deckSurface, aboveFloor, floorLook, 512, deckColour),
                        picture(apronSurface, aboveFloor, floorLook, 256, apronColour)),
           picture(iron, rayTree(joined({iron, apronSurface})), ironLook, 512, ironColour),
           airPicture(settings), hazeCard(settings)}};
}

}  // namespace

Products monsterModels() {
  return {model("monster",
                {{"monster_skin", PictureKind::maskedJpeg},
                 {"monster_floor", PictureKind::maskedJpeg},
                 {"monster_iron", PictureKind::jpeg},
                 {"monster_air", PictureKind::maskedJpeg},
                 {"monster_haze", PictureKind::maskedJpeg}},
                4, monsterModel)};
}

}  // namespace vex
