#include "production/models/stage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>

#include "base/pi.h"
#include "engine/matrix.h"
#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/models/model.h"
#include "tests/support/fatal.h"

// Model text against a strict little reader of its own, and motion against the engine's matrices.

namespace vex {

using namespace image;
using namespace geometry;

namespace {

// A block of the text: its keyword and what follows it, lines and blocks within.
struct Node {
  std::string keyword, rest;
  std::vector<Node> inner;
  int number = 0;  // of its line

  const Node* find(const std::string& wanted) const {
    for (const Node& node : inner)
      if (node.keyword == wanted) return &node;
    return nullptr;
  }
  const Node& get(const std::string& wanted) const {
    const Node* node = find(wanted);
    if (!node) throw std::runtime_error(keyword + " " + rest + " has no " + wanted);
    return *node;
  }
  std::vector<const Node*> all(const std::string& wanted) const {
    std::vector<const Node*> nodes;
    for (const Node& node : inner)
      if (node.keyword == wanted) nodes.push_back(&node);
    return nodes;
  }
  std::vector<double> numbers() const {
    std::istringstream in(rest);
    std::vector<double> values;
    for (std::string word; in >> word;) {
      if (word.back() == ':') word.pop_back();
      if (word.find_first_not_of("-.0123456789") == std::string::npos) values.push_back(std::stod(word));
    }
    return values;
  }
  std::string quoted() const {
    const std::size_t from = rest.find('"'), to = rest.rfind('"');
    if (from == to) throw std::runtime_error(keyword + " has no quotes");
    return rest.substr(from + 1, to - from - 1);
  }
};

Node parse(const std::string& text) {
  Node root;
  std::vector<Node*> open{&root};
  std::istringstream in(text);
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    EXPECT_LT(line.size(), 1023u);
    for (const char c : line) EXPECT_TRUE(c == '\t' || (c >= ' ' && c <= '~')) << number;
    EXPECT_EQ(line.find("  "), std::string::npos) << line;
    line.erase(0, line.find_first_not_of('\t'));
    EXPECT_FALSE(line.empty()) << number;
    if (line == "}") {
      open.pop_back();
      if (open.empty()) throw std::runtime_error("a brace too many");
      continue;
    }
    if (line.empty() || line[0] != '*') throw std::runtime_error("not a keyword: " + line);
    Node node;
    node.number = number;
    const std::size_t blank = line.find(' ');
    node.keyword = line.substr(0, blank);
    if (blank != std::string::npos) node.rest = line.substr(blank + 1);
    const bool block = line.ends_with(" {");
    open.back()->inner.push_back(node);
    // Pointers to inner nodes stay good: siblings are added only after the block has closed.
    if (block) open.push_back(&open.back()->inner.back());
  }
  EXPECT_EQ(open.size(), 1u);
  return root;
}

Surface quad() {
  return card(2, 1);
}

Stage smallStage() {
  Stage stage;
  stage.name = "small";
  stage.seconds = 2;
  stage.materials = {{.name = "paint", .texture = "paint", .diffuse = {0.5f, 0.25f, 1}, .opacity = 0.75f},
                     {.name = "chrome", .texture = "chrome", .environment = true, .twoSided = true}};
  stage.meshes = {{.name = "card", .surface = quad(), .pivot = Vector(1, 2, 3), .material = "paint"},
                  {.name = "Dummy01", .parent = "CARD", .pivot = Vector(0, 5, 0), .helper = true},
                  {.name = "ball", .surface = withoutMapping(sphere(1, 8, 4)), .material = "chrome"}};
  stage.lights = {
      {.name = "omni01", .position = Vector(1, 2, 3)},
      {.name = "lamp", .position = Vector(0, 9, 0), .on = false, .spot = true, .target = Vector(0, 0, 4)}};
  stage.cameras = {{.name = "camera01", .position = Vector(0, 1, 10), .target = Vector(0, 0, -2)}};
  return stage;
}

// What the engine's track does with keys up to and with `last`.
Matrix played(const MotionKeys& keys, std::size_t last) {
  Matrix result;
  result.setIdentity();
  for (std::size_t i = 0; i <= last; ++i) result = result * rotation(keys[i].value, -keys[i].radians);
  return result;
}

}  // namespace

TEST(Stage, WritesTheTextThatTheReaderTakes) {
  Stage stage = smallStage();
  stage.meshes[0].motion.turns = turnKeys(2, 15, [](float t) { return turnedY(90 * t); });
  stage.meshes[0].motion.scales = scaleKeys(2, 15, [](float t) { return Vector(1, 2 + t, 3); });
  stage.cameras[0].positions = positionKeys(2, 20, [](float t) { return Vector(t, 2, 3); });
  stage.cameras[0].targets = positionKeys(2, 60, [](float t) { return Vector(0, t, 0); });
  stage.lights[1].targets = positionKeys(2, 30, [](float t) { return Vector(0, 0, t); });
  const std::string text = modelText(stage);
  EXPECT_TRUE(text.starts_with("*3DSMAX_ASCIIEXPORT 200\n*COMMENT \"small "));
  const Node root = parse(text);

  const Node& scene = root.get("*SCENE");
  EXPECT_EQ(scene.get("*SCENE_FIRSTFRAME").rest, "0");
  EXPECT_EQ(scene.get("*SCENE_LASTFRAME").rest, "60");
  EXPECT_EQ(scene.get("*SCENE_FRAMESPEED").rest, "30");
  EXPECT_EQ(scene.get("*SCENE_TICKSPERFRAME").rest, "160");

  const auto materials = root.get("*MATERIAL_LIST").all("*MATERIAL");
  ASSERT_EQ(materials.size(), 2u);
  EXPECT_EQ(materials[0]->get("*MATERIAL_DIFFUSE").rest, "0.500000 0.250000 1.000000");
  EXPECT_EQ(materials[0]->get("*MATERIAL_TRANSPARENCY").rest, "0.250000");
  EXPECT_EQ(materials[0]->get("*MAP_TYPE").rest, "Screen");
  EXPECT_EQ(materials[0]->get("*MAP_DIFFUSE").get("*BITMAP").quoted(), "paint");
  EXPECT_FALSE(materials[0]->find("*MATERIAL_TWOSIDED"));
  EXPECT_EQ(materials[1]->get("*MAP_TYPE").rest, "Spherical");
  EXPECT_TRUE(materials[1]->find("*MATERIAL_TWOSIDED"));
  for (const Node* material : materials) {
    for (const char* keyword :
         {"*MATERIAL_AMBIENT", "*MATERIAL_SPECULAR", "*MATERIAL_SHINE", "*MATERIAL_SHINESTRENGTH"})
      EXPECT_TRUE(material->find(keyword)) << keyword;
    EXPECT_LT(material->get("*MATERIAL_DIFFUSE").number, material->get("*MAP_DIFFUSE").number);
  }

  const Node& mesh = root.get("*GEOMOBJECT");
  EXPECT_EQ(mesh.get("*NODE_NAME").quoted(), "card");
  EXPECT_EQ(mesh.get("*NODE_TM").get("*TM_ROW3").rest, "1.000000 -3.000000 2.000000");
  EXPECT_EQ(mesh.get("*MATERIAL_REF").rest, "0");
  const Node& animation = mesh.get("*TM_ANIMATION");
  EXPECT_EQ(animation.inner[0].quoted(), "card");
  const auto turns = animation.get("*CONTROL_ROT_TRACK").all("*CONTROL_ROT_SAMPLE");
  ASSERT_EQ(turns.size(), 5u);
  // 45 degrees about the upward axis, which is the text's z, and the other way round.
  EXPECT_EQ(turns[1]->rest, "2400 0.000000 0.000000 1.000000 -0.785398");
  EXPECT_EQ(animation.get("*CONTROL_SCALE_TRACK").inner[4].rest, "9600 1.000000 3.000000 4.000000");

  const Node& helper = root.get("*HELPEROBJECT");
  EXPECT_EQ(helper.get("*NODE_PARENT").quoted(), "CARD");
  EXPECT_FALSE(helper.find("*MESH"));
  EXPECT_FALSE(root.all("*GEOMOBJECT")[1]->get("*MESH").find("*MESH_NUMTVERTEX"));

  const auto lights = root.all("*LIGHTOBJECT");
  ASSERT_EQ(lights.size(), 2u);
  EXPECT_EQ(lights[0]->get("*LIGHT_TYPE").rest, "Omni");
  EXPECT_EQ(lights[0]->get("*LIGHT_USELIGHT").rest, "1");
  EXPECT_EQ(lights[1]->get("*LIGHT_TYPE").rest, "Target");
  EXPECT_LT(lights[1]->get("*LIGHT_TYPE").number, lights[1]->get("*NODE_TM").number);
  const auto lampPlaces = lights[1]->all("*NODE_TM");
  ASSERT_EQ(lampPlaces.size(), 2u);
  EXPECT_EQ(lampPlaces[1]->get("*NODE_NAME").quoted(), "lamp.Target");
  EXPECT_EQ(lampPlaces[1]->get("*TM_POS").rest, "0.000000 -4.000000 0.000000");
  EXPECT_EQ(lights[1]->get("*TM_ANIMATION").get("*NODE_NAME").quoted(), "lamp.Target");

  const Node& camera = root.get("*CAMERAOBJECT");
  EXPECT_FALSE(camera.find("*NODE_PARENT"));
  EXPECT_EQ(camera.all("*NODE_TM").size(), 2u);
  EXPECT_LT(camera.all("*NODE_TM")[1]->number, camera.get("*CAMERA_SETTINGS").number);
  EXPECT_EQ(camera.get("*CAMERA_SETTINGS").get("*CAMERA_FOV").rest, "1.396263");
  const auto tracks = camera.all("*TM_ANIMATION");
  ASSERT_EQ(tracks.size(), 2u);
  EXPECT_EQ(tracks[1]->get("*NODE_NAME").quoted(), "camera01.Target");
  EXPECT_EQ(tracks[0]->get("*CONTROL_POS_BEZIER").inner[1].rest, "3200 0.666667 -3.000000 2.000000");
}

// Geometry as the reader puts it together: final vertices are those of the texture.
TEST(Stage, MeshesComeOutOfTheTextAsTheyWentIn) {
  const Surface surfaces[] = {sphere(1, 12, 6), lathe({{0, 0}, {1, 0}, {1, 2}, {0.5f, 2}}, 9),
                              mappedAtlas(bevelledBox({1, 2, 3}, 0.1f), {.side = 256}), quad()};
  for (const Surface& surface : surfaces) {
    Stage stage = smallStage();
    stage.meshes.resize(1);
    stage.meshes[0].surface = surface;
    const Node root = parse(modelText(stage));
    const Node& mesh = root.get("*GEOMOBJECT").get("*MESH");
    const auto vertices = mesh.get("*MESH_VERTEX_LIST").inner;
    const auto faces = mesh.get("*MESH_FACE_LIST").inner;
    const auto coordinates = mesh.get("*MESH_TVERTLIST").inner;
    const auto mapping = mesh.get("*MESH_TFACELIST").inner;
    ASSERT_EQ(vertices.size(), surface.points.size());
    ASSERT_EQ(faces.size(), surface.triangles.size());
    ASSERT_EQ(mapping.size(), surface.triangles.size());
    EXPECT_EQ(mesh.get("*MESH_NUMVERTEX").rest, std::to_string(vertices.size()));
    EXPECT_EQ(mesh.get("*MESH_NUMTVERTEX").rest, std::to_string(coordinates.size()));
    EXPECT_GE(coordinates.size(), vertices.size());
    std::map<int, int> ownerOf;  // texture vertex to vertex
    for (std::size_t i = 0; i < faces.size(); ++i) {
      const std::vector<double> face = faces[i].numbers(), map = mapping[i].numbers();
      ASSERT_EQ(face.size(), 7u);  // its number, three points, three edge flags
      ASSERT_EQ(map.size(), 4u);
      EXPECT_EQ(face[0], i);
      EXPECT_EQ(map[0], i);
      for (std::size_t k = 0; k < 3; ++k) {
        const int point = static_cast<int>(face[k + 1]), coordinate = static_cast<int>(map[k + 1]);
        const auto [entry, fresh] = ownerOf.try_emplace(coordinate, point);
        EXPECT_EQ(entry->second, point);
        const std::vector<double> p = vertices.at(static_cast<std::size_t>(point)).numbers(),
                                  uv = coordinates.at(static_cast<std::size_t>(coordinate)).numbers();
        const Vector& original = surface.points[static_cast<std::size_t>(surface.triangles[i].points[k])];
        // (x, y, z) of the text is (x, z, -y) of the player.
        EXPECT_NEAR(p[1], original.x, 1e-6);
        EXPECT_NEAR(p[3], original.y, 1e-6);
        EXPECT_NEAR(-p[2], original.z, 1e-6);
        EXPECT_NEAR(uv[1], surface.triangles[i].uv[k].u, 1e-6);
        EXPECT_NEAR(uv[2], surface.triangles[i].uv[k].v, 1e-6);
      }
    }
    EXPECT_EQ(ownerOf.size(), coordinates.size());
  }
}

TEST(Stage, VerticesKeepTheNumbersOfPointsWithoutSeams) {
  const Products products = layerRaysModel();
  const std::vector<Bytes> files = products[0].make(Settings{true});
  const Node root = parse(std::string(reinterpret_cast<const char*>(files[0].data()), files[0].size()));
  const Node& mesh = root.get("*GEOMOBJECT").get("*MESH");
  EXPECT_EQ(mesh.get("*MESH_NUMVERTEX").rest, mesh.get("*MESH_NUMTVERTEX").rest);
  const auto vertices = mesh.get("*MESH_VERTEX_LIST").inner;
  ASSERT_EQ(vertices.size() % 16, 0u);
  for (std::size_t i = 0; i < vertices.size(); ++i)
    EXPECT_NEAR(vertices[i].numbers()[2], vertices[i - i % 16].numbers()[2], 1e-5) << i;  // one depth a ring
}

TEST(Stage, TurnKeysComposeToTheOrientation) {
  const struct {
    const char* what;
    float seconds;
    int every;
    std::function<Placement(float)> path;
  } cases[] = {
      {"steady", 10, 10, [](float t) { return turnedY(36 * t); }},
      {"tumbling", 10, 5, [](float t) { return turnedX(100 * t) >> turnedY(77 * t) >> turnedZ(31 * t); }},
      {"turned at the start", 4, 30, [](float t) { return turnedZ(200) >> turnedX(20 * t); }},
      {"slower than the player turns", 20, 1,
       [](float t) {
         return turned({1, 2, 3}, 0.004f * t);
       }},
      {"half turns", 4, 60, [](float t) { return turnedX(90 * t); }},
      {"at rest", 2, 10, [](float) { return Placement{}; }},
  };
  for (const auto& one : cases) {
    const MotionKeys keys = turnKeys(one.seconds, one.every, one.path);
    EXPECT_EQ(keys.back().frame, one.seconds * 30) << one.what;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      const Matrix matrix = played(keys, i);
      const Placement goal = one.path(static_cast<float>(keys[i].frame) / 30);
      for (const Vector& p : {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)}) {
        const Vector error = transformPoint(matrix, p) - transformed(goal, p);
        EXPECT_LT(error.length(), 0.003f) << one.what << ", key " << i;
      }
    }
  }
}

TEST(Stage, KeysAreEvenAndEndOnTheLastFrame) {
  const struct {
    float seconds;
    int every;
    std::vector<int> frames;
  } cases[] = {{1, 10, {0, 10, 20, 30}}, {1, 30, {0, 30}},     {1, 90, {0, 30}},
               {1, 20, {0, 20, 30}},     {1, 14, {0, 14, 30}}, {0.1f, 1, {0, 1, 2, 3}}};
  for (const auto& one : cases) {
    std::vector<int> frames;
    for (const MotionKey& key :
         positionKeys(one.seconds, one.every, [](float t) { return Vector(t, 0, 0); })) {
      frames.push_back(key.frame);
      EXPECT_NEAR(key.value.x, static_cast<float>(key.frame) / 30, 1e-6);
    }
    EXPECT_EQ(frames, one.frames) << one.every;
  }
}

TEST(Stage, RefusesWhatThePlayerWouldMisread) {
  const MotionKeys good = positionKeys(1, 10, [](float) { return Vector(0, 0, 0); });
  const struct {
    void (*spoil)(Stage&, const MotionKeys&);
    const char* text;
  } cases[] = {
      {[](Stage& s, const MotionKeys&) { s.meshes[2].name = "Card"; }, "Card: name used twice"},
      {[](Stage& s, const MotionKeys&) { s.meshes[2].name.assign(32, 'x'); },
       "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx: name longer than 31 characters"},
      {[](Stage& s, const MotionKeys&) { s.meshes[2].name = "a b"; }, "a b: name with odd characters"},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].parent = "ball"; },
       "card: its parent \"ball\" does not come before it"},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].material = "gold"; }, "card: no material \"gold\""},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].material = "chrome"; },
       "card: is mapped, but its material chrome is an environment map"},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].surface.mapped = false; },
       "card: has the texture paint but no mapping"},
      {[](Stage& s, const MotionKeys&) {
         addPoint(s.meshes[0].surface, {0, 0, 0});
       },
       "card: no triangle uses point 4"},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].surface.triangles[0].points[1] = 9; },
       "card: no point 9"},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].surface.points[1].x = NAN; },
       "card: a point is no number"},
      {[](Stage& s, const MotionKeys&) { s.meshes[0].surface = {}; }, "card: has no triangles"},
      {[](Stage& s, const MotionKeys& k) { s.meshes[0].motion.positions = {k[0]}; },
       "card: a single position key"},
      {[](Stage& s, const MotionKeys& k) {
         s.cameras[0].positions = {k[0], k[2], k[1]};
       },
       "camera01: position key at frame 10 after one at 20"},
      {[](Stage& s, const MotionKeys& k) {
         s.cameras[0].targets = {k[1], k[2]};
       },
       "camera01: target keys begin at frame 10"},
      {[](Stage& s, const MotionKeys& k) {
         s.cameras[0].positions = k;
         s.cameras[0].targets = {k[0], k[1]};
       },
       "camera01: target keys end at frame 10, others at 30"},
      {[](Stage& s, const MotionKeys& k) {
         s.seconds = 0.5f;
         s.lights[0].positions = k;
       },
       "omni01: position keys end at frame 30, after the model"},
      {[](Stage& s, const MotionKeys& k) { s.lights[0].targets = k; }, "omni01: target keys without a spot"},
      {[](Stage& s, const MotionKeys&) { s.lights.clear(); }, "lights: a model needs one"},
      {[](Stage& s, const MotionKeys&) { s.materials[1].name = "paint"; }, "paint: material defined twice"},
      {[](Stage& s, const MotionKeys&) { s.materials[0].texture = "Paint.jpg"; },
       "paint: texture name Paint.jpg has odd characters"},
  };
  for (const auto& one : cases) {
    Stage stage = smallStage();
    one.spoil(stage, good);
    EXPECT_EQ(fatalText([&] { modelText(stage); }), std::string("model small, ") + one.text);
  }
}

TEST(Stage, PlacementsComposeAndInvert) {
  const Placement both = turnedY(90) >> moved(1, 2, 3);
  const Vector there = transformed(both, {0, 0, 1});
  EXPECT_NEAR((there - Vector(2, 2, 3)).length(), 0, 1e-6);  // z goes to x
  EXPECT_NEAR((transformed(inverse(both), there) - Vector(0, 0, 1)).length(), 0, 1e-6);
  EXPECT_NEAR((transformed(turnedX(90), {0, 1, 0}) - Vector(0, 0, 1)).length(), 0, 1e-6);
  EXPECT_NEAR((transformed(turnedZ(90), {1, 0, 0}) - Vector(0, 1, 0)).length(), 0, 1e-6);
  const Placement camera = facing({0, 5, 10}, {0, 0, 0});
  EXPECT_NEAR((transformedDirection(camera, {0, 0, -1}) - unit({0, -5, -10})).length(), 0, 1e-6);
  EXPECT_GT(camera.up.y, 0.8f);
  for (const Vector& up : {Vector(1, 2, 3), Vector(0, -1, 0), Vector(0, 1, 0)}) {
    const Placement standingThere = standing({1, 1, 1}, up);
    EXPECT_NEAR((transformedDirection(standingThere, {0, 1, 0}) - unit(up)).length(), 0, 1e-5);
    EXPECT_NEAR(handedness(standingThere), 1, 1e-5);
  }
  for (const float radians : {0.001f, 0.5f, 2.0f, 3.1f, pi}) {
    const AxisAngle found = axisAngleOf(turned({1, -2, 3}, radians));
    EXPECT_NEAR(found.radians, radians, 1e-5);
    EXPECT_NEAR(std::fabs(dot(found.axis, unit({1, -2, 3}))), 1, 1e-5);
  }
}

}  // namespace vex
