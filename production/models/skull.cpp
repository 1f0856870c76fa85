#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/model.h"
#include "production/models/skull_parts.h"

// The skull: a head of rock half sunk in rubble, six spears around it, crows about its crown, under clouds
// that race. Its eyes burn, and what burns in them reaches out.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

using namespace skull;

// --- Crows

// Laps about the crown, each at its own height and pace; `way` is 1 counter-clockwise seen from above.
struct Flight {
  const char* name;
  Vector middle;
  float reachX, reachZ, way, phase, bob, size;
};
const Flight flights[] = {{"Crow01", Vector(-10, 214, 60), 205, 165, 1, 0.05f, 14, 1.7f},
                          {"Crow02", Vector(10, 200, 50), 175, 215, -1, 0.40f, 16, 1.6f},
                          {"Crow03", Vector(0, 148, 30), 425, 356, 1, 0.62f, 14, 2.0f}};

Vector flightPlace(const Flight& flight, float t) {
  const float angle = 2 * pi * (flight.way * t / loopSeconds + flight.phase);
  return flight.middle + Vector(flight.reachX * std::cos(angle),
                                flight.bob * swing(t, loopSeconds, 2, flight.phase),
                                -flight.reachZ * std::sin(angle));
}

Placement flightTurn(const Flight& flight, float t) {
  const Vector way = unit(flightPlace(flight, t + 0.05f) - flightPlace(flight, t - 0.05f));
  constexpr float degrees = 180 / pi;
  return turnedZ(-26 * flight.way) >> turnedX(-std::asin(way.y) * degrees) >>
         turnedY(std::atan2(way.x, way.z) * degrees);
}

StageMesh crowMesh(const Flight& flight) {
  const Vector start = flightPlace(flight, 0);
  StageMesh mesh{.name = flight.name,
                 .surface = placed(crow(), stretched(flight.size) >> moved(start)),
                 .pivot = start,
                 .material = "crow"};
  mesh.motion.positions = positionKeys(loopSeconds, 10, [&](float t) { return flightPlace(flight, t); });
  mesh.motion.turns = turnKeys(loopSeconds, 10, [&](float t) { return flightTurn(flight, t); });
  return mesh;
}

// --- Lightning

Vector spearTip(int index) {
  return transformed(spearPlacement(index), Vector(0, spearHeight(), 0));
}

// From the clouds to the tips of all spears. The vault hides where they begin.
std::vector<StageMesh> bolts() {
  const struct {
    Vector from, to;
    float half;
    std::uint32_t seed;
  } places[] = {
      {Vector(-170, 690, -300), spearTip(2), 1.5f, 941}, {Vector(190, 690, -320), spearTip(3), 1.5f, 942},
      {Vector(-330, 690, -180), spearTip(1), 1.4f, 943}, {Vector(330, 690, -150), spearTip(4), 1.4f, 944},
      {Vector(-230, 690, -60), spearTip(0), 1.3f, 945},  {Vector(260, 690, -40), spearTip(5), 1.3f, 946}};
  std::vector<StageMesh> all;
  int number = 0;
  for (const auto& place : places)
    all.push_back({.name = "spark0" + std::to_string(++number),
                   .surface = bolt(place.from, place.to, place.half, place.seed),
                   .pivot = place.from,
                   .material = "spark"});
  return all;
}

// --- Cameras

StageCamera camera(const char* name, float fieldDegrees, const std::vector<Vector>& eye,
                   const std::vector<Vector>& target) {
  return cameraThrough({.name = name, .fieldDegrees = fieldDegrees, .far = 5000}, loopSeconds, eye, target);
}

std::vector<StageLight> lights() {
  const Colour4 ember{1, 0.10f, 0.07f};
  const Vector parked(0, -20000, 0);
  std::vector<StageLight> all{
      {.name = "eye_left", .position = eye(1), .colour = ember},
      {.name = "eye_right", .position = eye(-1), .colour = ember},
      {.name = "storm", .position = Vector(-620, 700, 460), .colour = {0.55f, 0.70f, 0.85f}},
      // From behind: the bolts stand there, and what they light is the rim of things.
      {.name = "SparkLight", .position = Vector(130, 620, -640), .colour = {1.5f, 1.9f, 2.1f}},
  };
  // The player gives fire its hue by the light's number, 1, 0.5 + 0.5 sin(number), 0.2: 7 to 10 go from
  // yellow to red. Of each kind all four remainders by 4 must occur, for the four pictures.
  for (const char* name :
       {"smoke01", "smoke02", "smoke03", "fire01", "fire02", "fire03", "fire04", "smoke04"})
    all.push_back({.name = name, .position = parked, .on = false});
  return all;
}

std::vector<StageMaterial> materials() {
  const auto painted = [](const char* name, const char* texture, float ambient, float diffuse) {
    return StageMaterial{.name = name,
                         .texture = texture,
                         .diffuse = {diffuse, diffuse, diffuse},
                         .ambient = {ambient, ambient, ambient},
                         .shine = 0};
  };
  StageMaterial crowMaterial = painted("crow", "crow", 0.75f, 0.6f);
  crowMaterial.twoSided = true;
  StageMaterial mistMaterial = painted("mist", "monster_haze", 0.9f, 0.1f);
  mistMaterial.twoSided = true;
  mistMaterial.opacity = 0.4f;  // the rift burns through it
  return {painted("rock", "skull_rock", 0.62f, 0.85f),
          painted("jaw", "skull_jaw", 0.62f, 0.85f),
          painted("ground", "skull_ground", 0.78f, 0.55f),
          painted("rubble", "skull_rubble", 0.7f, 0.7f),
          painted("spear", "skull_spear", 0.65f, 0.8f),
          painted("swirl", "skull_swirl", 0.95f, 0.25f),
          painted("clouds", "skull_clouds", 0, 1),
          painted("beam", "skull_beam", 0, 1),
          painted("spark", "spark", 1, 1),
          crowMaterial,
          mistMaterial};
}

StageMesh vaultMesh() {
  StageMesh mesh{.name = "vault", .surface = vault(), .pivot = Vector(0, 300, 0), .material = "swirl"};
  mesh.motion.turns = turnKeys(loopSeconds, 60, [](float t) { return turnedY(-360 * t / loopSeconds); });
  return mesh;
}

// Once a loop it roars: from 0 to 1, the head thrown back and the jaw dropped.
float roar(float t) {
  return smoothStep(roarOpens, roarOpens + 0.3f, t) * smoothStep(roarOpens + 2.7f, roarOpens + 2, t);
}

// A turn about the hinge; above 0 the chin sinks.
MotionKeys hingeTurns(const std::function<float(float t)>& degrees) {
  const Vector axis = transformedDirection(skullPlacement(), Vector(1, 0, 0));
  return turnKeys(loopSeconds, 3, [&](float t) { return turned(axis, degrees(t) * pi / 180); });
}

StageMesh headMesh(const Surface& surface) {
  StageMesh mesh{.name = "rock", .surface = surface, .pivot = jawHinge(), .material = "rock"};
  mesh.motion.turns = hingeTurns([](float t) { return -7 * roar(t); });
  return mesh;
}

StageMesh jawMesh(const Surface& surface) {
  StageMesh mesh{.name = "jaw", .surface = surface, .pivot = jawHinge(), .material = "jaw"};
  mesh.motion.turns = hingeTurns(
      [](float t) { return (1 - std::cos(2 * pi * t / loopSeconds)) * 3.5f * (1 - roar(t)) + 13 * roar(t); });
  return mesh;
}

std::vector<StageMesh> mists() {
  const struct {
    float x, z, turn, width, height;
  } places[] = {{-120, -880, 0, 1900, 150},
                {520, -560, -30, 1100, 120},
                {-640, -420, 40, 1100, 120},
                {700, 160, -70, 900, 100},
                {-60, 190, 5, 340, 42}};
  std::vector<StageMesh> all;
  for (const auto& place : places) {
    const int number = static_cast<int>(all.size()) + 1;
    const Vector at(place.x, groundHeight(place.x, place.z) - 8, place.z);
    StageMesh mesh{.name = "mist" + std::to_string(number),
                   .surface = placed(card(place.width, place.height), turnedY(place.turn) >> moved(at)),
                   .pivot = at,
                   .material = "mist"};
    const float phase = 0.31f * static_cast<float>(number);
    mesh.motion.positions = positionKeys(loopSeconds, 20, [at, phase](float t) {
      return at + Vector(50 * swing(t, loopSeconds, 1, phase), 4 * swing(t, loopSeconds, 2, phase), 0);
    });
    all.push_back(mesh);
  }
  return all;
}

// More texels in front, where the cameras are.
Surface mappedBone(const Surface& surface, int side) {
  const Vector front = transformedDirection(skullPlacement(), Vector(0, 0.15f, 1));
  return mappedAtlas(surface, {.charts = Charts::byNormals, .side = side, .density = [&](const Triangle& t) {
                                 const Vector& a = surface.points[static_cast<std::size_t>(t.points[0])];
                                 const Vector& b = surface.points[static_cast<std::size_t>(t.points[1])];
                                 const Vector& c = surface.points[static_cast<std::size_t>(t.points[2])];
                                 return dot(unit(cross(b - a, c - a)), front) > -0.25f && a.y > -5 ? 1.0f
                                                                                                   : 0.45f;
                               }});
}

Model skullModel(const Settings& settings) {
  const Surface head = mappedBone(cranium(), 1024), lower = mappedBone(jaw(), 512);
  const Surface ground = terrain();
  const Surface stones = mappedAtlas(boulders(), {.charts = Charts::byNormals, .side = 512});
  const Surface iron = mappedAtlas(spear(), {.charts = Charts::byNormals, .side = 256});

  std::vector<Surface> standing{head, lower, ground, stones};
  for (int i = 0; i < spearCount; ++i) standing.push_back(placed(iron, spearPlacement(i)));
  const RayTree all = rayTree(joined(standing));
  const auto picture = [&](const Surface& surface, const RayTree& obstacles, int rays, int side,
                           Colour4 (*colour)(const BakePoint&)) {
    BakeLook look = stormLook();
    look.rays = rays;
    // Light lies smoothly on what is flat or small.
    if (colour == groundColour || colour == boulderColour) look.coarseness = side == 1024 ? 6 : 3;
    if (colour == stoneColour && side == 1024) look.coarseness = 2;
    return bake(surface, obstacles, look,
                {.side = settings.side(side), .lit = !settings.draft, .wearWidth = 2.2f, .paint = colour});
  };

  Stage stage;
  stage.seconds = loopSeconds;
  stage.materials = materials();
  stage.meshes.push_back(vaultMesh());
  stage.meshes.push_back({.name = "ground", .surface = ground, .material = "ground"});
  stage.meshes.push_back({.name = "rubble", .surface = stones, .material = "rubble"});
  stage.meshes.push_back(headMesh(head));
  stage.meshes.push_back(jawMesh(lower));
  for (int i = 0; i < spearCount; ++i)
    stage.meshes.push_back({.name = "spear0" + std::to_string(i + 1),
                            .surface = placed(iron, spearPlacement(i)),
                            .pivot = spearPlacement(i).origin,
                            .material = "spear"});
  for (const float side : {1.0f, -1.0f})
    stage.meshes.push_back({.name = side > 0 ? "laser01" : "laser02",
                            .surface = placed(beam(), moved(eye(side))),
                            .pivot = eye(side),
                            .material = "beam"});
  stage.meshes.push_back({.name = "clouds01", .surface = cloudLayer(430, 0.235f), .material = "clouds"});
  stage.meshes.push_back({.name = "clouds02", .surface = cloudLayer(352, 0.19f), .material = "clouds"});
  for (const Flight& flight : flights) stage.meshes.push_back(crowMesh(flight));
  // Before the clouds, not behind them: each is whole from the vault down.
  for (StageMesh& mesh : bolts()) stage.meshes.push_back(std::move(mesh));
  // Over all that stands and flies behind it.
  for (StageMesh& mesh : mists()) stage.meshes.push_back(std::move(mesh));
  stage.lights = lights();
  stage.cameras = cameras();

  return {stage,
          {picture(head, all, 64, 1024, stoneColour), picture(lower, all, 49, 512, stoneColour),
           picture(ground, all, 36, 1024, groundColour), picture(stones, all, 36, 512, boulderColour),
           picture(iron, rayTree(iron), 49, 256, spearColour)}};
}

}  // namespace

namespace skull {

std::vector<StageCamera> cameras() {
  return {
      // Across the plain, from afar.
      camera("wide", 62,
             {Vector(-330, 52, 470), Vector(-210, 40, 430), Vector(-60, 34, 400), Vector(110, 46, 390)},
             {Vector(-60, 150, 0), Vector(-44, 150, 0), Vector(20, 152, 0), Vector(56, 150, 0)}),
      // Among the stones at its chin, looking up.
      camera("low", 94,
             {Vector(126, 26, 196), Vector(70, 22, 214), Vector(-20, 20, 216), Vector(-110, 26, 186)},
             {Vector(30, 132, 10), Vector(24, 136, 10), Vector(-16, 140, 10), Vector(-44, 136, 10)}),
      // Face to face.
      camera("face", 74,
             {Vector(-170, 118, 206), Vector(-110, 128, 242), Vector(-10, 136, 256), Vector(84, 126, 236)},
             {Vector(-34, 135, 40), Vector(-26, 135, 40), Vector(6, 135, 40), Vector(32, 135, 40)}),
      // From the rubble up over the crown, until stone stands before stone.
      camera("crane", 80,
             {Vector(262, 40, 290), Vector(222, 170, 320), Vector(150, 275, 330), Vector(60, 340, 320)},
             {Vector(30, 150, 0), Vector(30, 146, 0), Vector(30, 106, 0), Vector(14, 80, 0)}),
      // Into a socket.
      camera("socket", 60,
             {Vector(-110, 124, 200), Vector(-84, 126, 160), Vector(-66, 124, 130), Vector(-56, 120, 104)},
             {Vector(-16, 118, 40), Vector(-28, 118, 46), Vector(-38, 116, 46), Vector(-46, 114, 46)}),
      // From far away through a long lens, low over the plain.
      camera("far", 26,
             {Vector(430, 26, 690), Vector(390, 26, 710), Vector(340, 28, 730), Vector(290, 30, 750)},
             {Vector(10, 126, 0), Vector(8, 126, 0), Vector(4, 126, 0), Vector(0, 126, 0)}),
      // Before it on either side: the skull low on one side, open sky on the other for what it hunts.
      camera("left", 80,
             {Vector(-200, 70, 420), Vector(-160, 84, 450), Vector(-110, 96, 460), Vector(-50, 106, 450)},
             {Vector(-92, 166, 60), Vector(-84, 168, 60), Vector(-70, 160, 40), Vector(-50, 150, 20)}),
      camera("right", 80,
             {Vector(156, 40, 404), Vector(142, 48, 394), Vector(124, 56, 380), Vector(100, 64, 366)},
             {Vector(76, 158, 0), Vector(70, 160, 0), Vector(60, 160, 0), Vector(46, 158, 0)}),
      // From the ground, where something comes down.
      camera("fallen", 80,
             {Vector(-330, 15, 478), Vector(-322, 14, 470), Vector(-312, 13, 462), Vector(-300, 13, 452)},
             {Vector(-130, 150, 190), Vector(-128, 132, 186), Vector(-124, 106, 180), Vector(-118, 88, 172)}),
      // The second crow comes down beside the skull.
      cameraDuring({.name = "landing", .fieldDegrees = 74, .far = 5000}, loopSeconds, 8, 3.5f,
                   {Vector(210, 44, 396), Vector(200, 40, 386), Vector(188, 36, 374), Vector(174, 34, 362)},
                   {Vector(-25, 152, 136), Vector(-25, 128, 118), Vector(-24, 104, 96), Vector(-22, 94, 72)}),
      // Below it, before it falls.
      cameraDuring({.name = "stalked", .fieldDegrees = 60, .far = 5000}, loopSeconds, 3, 1,
                   {Vector(112, 92, 432), Vector(104, 95, 428), Vector(96, 98, 424)},
                   {Vector(-58, 172, 120), Vector(-60, 173, 120), Vector(-62, 174, 120)}),
      // Over the third one's shoulder: what it flies past looks back at it.
      cameraDuring({.name = "hunted", .fieldDegrees = 58, .far = 5000}, loopSeconds, 10, 1,
                   {Vector(-362, 214, 470), Vector(-334, 216, 486), Vector(-306, 218, 502)},
                   {Vector(-122, 108, 130), Vector(-112, 108, 134), Vector(-102, 108, 138)}),
      // Beside the second one as it passes before the brow.
      cameraDuring({.name = "alongside", .fieldDegrees = 78, .far = 5000}, loopSeconds, 5, 1,
                   {Vector(200, 104, 408), Vector(174, 102, 414), Vector(148, 100, 422)},
                   {Vector(34, 166, 150), Vector(22, 168, 150), Vector(8, 171, 150)}),
      // At its feet, as it roars.
      cameraDuring({.name = "roar", .fieldDegrees = 84, .far = 5000}, loopSeconds, roarOpens - 0.47f, 1.1f,
                   {Vector(-96, 44, 236), Vector(-84, 40, 214), Vector(-66, 34, 188)},
                   {Vector(-2, 107, 50), Vector(-4, 107, 50), Vector(-8, 106, 50)}),
  };
}

Vector crowPlace(int crow, float lap) {
  return flightPlace(flights[crow], lap * loopSeconds);
}

}  // namespace skull

Products skullModels() {
  return {model("skull",
                {{"skull_rock", PictureKind::jpeg},
                 {"skull_jaw", PictureKind::jpeg},
                 {"skull_ground", PictureKind::jpeg},
                 {"skull_rubble", PictureKind::jpeg},
                 {"skull_spear", PictureKind::jpeg}},
                5, skullModel)};
}

}  // namespace vex
