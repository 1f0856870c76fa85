#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "base/window_size.h"
#include "tests/support/exchange_files.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/gltf_text.h"
#include "tests/support/imported.h"
#include "tests/support/temporary_folder.h"

// Cameras and lights against numbers worked out by hand, and the picture against a projection of its own.

namespace vex {

namespace {

constexpr double degrees = 180 / 3.14159265358979;

GltfText::Mesh board(float x, float y) {
  return {.positions = {{-x, -y, 0}, {x, -y, 0}, {x, y, 0}, {-x, y, 0}}, .indices = {0, 1, 2, 0, 2, 3}};
}

std::string camera(double yfov, const std::string& more) {
  return "\"type\": \"perspective\", \"perspective\": {\"yfov\": " + std::to_string(yfov) +
         ", \"znear\": 0.1" + more + "}";
}

void expectNear(const Vector& a, const Vector& b, double within, const std::string& what) {
  EXPECT_LE((a - b).length(), within)
      << what << ": " << a.x << " " << a.y << " " << a.z << " for " << b.x << " " << b.y << " " << b.z;
}

Vector direction(const Vector& from, const Vector& to) {
  Vector way = to - from;
  way.normalize();
  return way;
}

std::string gltfCameras() {
  GltfText text;
  text.mesh(board(1, 1));
  text.camera(camera(0.6, ", \"aspectRatio\": 1.5, \"zfar\": 250"));
  text.camera(camera(0.6, ""));
  text.node(R"("name": "Board", "mesh": 0)");
  text.node(R"("name": "Holder", "translation": [1, 0, 0], "children": [2])");
  // A quarter turn about y: it looks along -x.
  text.node(
      R"("name": "Cam", "camera": 0, "translation": [5, 6, 7], "rotation": [0, 0.7071068, 0, 0.7071068])");
  text.node(R"("name": "Plain", "camera": 1, "translation": [0, 0, 9])");
  text.node(R"("name": "Plain.Target", "translation": [0, 0, -4])");
  return text.str("0, 1, 3, 4");
}

}  // namespace

TEST(ImportedCameras, SeeWhatTheFilesSay) {
  const double fromSide = 2 * std::atan(std::tan(30 / degrees) / (16.0 / 9)) * degrees;  // top to bottom
  const struct {
    const char* file;
    std::string content;
    std::size_t index;
    double scale, fov, far;
    Vector position, along;
  } rows[] = {
      {"a.gltf", gltfCameras(), 0, 1, 0.6 * degrees / 0.75, 250, {6, 6, 7}, {-1, 0, 0}},
      {"a.gltf", gltfCameras(), 0, 10, 0.6 * degrees / 0.75, 2500, {60, 60, 70}, {-1, 0, 0}},
      {"a.gltf", gltfCameras(), 1, 1, 0.6 * degrees / 0.75, 100, {0, 0, 9}, {0, 0, -1}},
      {"a.fbx", fbxWorld, 0, 1, fromSide / 0.75, 500, {5, 7, -6}, {0, 0, -1}},
      {"a.dae", colladaWorld, 0, 1, fromSide / 0.75, 500, {5, 7, -6}, {0, 0, -1}},
  };
  for (const auto& [name, content, index, scale, fov, far, position, along] : rows) {
    const TemporaryFolder folder;
    writeFile(name, content);
    ImportedFile file;
    importFile(name, {.scale = scale}, file);
    ASSERT_GT(file.scene.viewers.count(), static_cast<int>(index)) << name;
    Viewer& viewer = *file.scene.viewers[static_cast<int>(index)];
    EXPECT_NEAR(viewer.fov, fov, 0.01) << name << " " << index;
    EXPECT_NEAR(viewer.farPlane, far, far * 1e-5) << name << " " << index;
    expectNear(viewer.position, position, 1e-4 * scale, name);
    expectNear(direction(viewer.position, viewer.target), along, 1e-4, name);
    EXPECT_GT((viewer.target - viewer.position).length(), 0.9f);
  }
  const TemporaryFolder folder;
  writeFile("a.gltf", gltfCameras());
  ImportedFile file;
  importFile("a.gltf", {}, file);
  expectNear(file.scene.viewers[1]->target, {0, 0, -4}, 1e-4, "a target by its name");
  EXPECT_EQ(file.scene.meshes.count(), 2) << "neither camera nor target is an object";
}

TEST(ImportedCameras, MoveByTracksOfEyeAndTarget) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(board(2, 2));
  text.camera(camera(0.8, ""));
  text.node(R"("name": "Board", "mesh": 0)");
  const int boom = text.node(R"("name": "Boom", "children": [2])");
  text.node(R"("name": "Cam", "camera": 0, "translation": [0, 0, 10])");
  // Half way round in two seconds, a key each quarter of it.
  std::vector<std::array<float, 4>> turns;
  for (int i = 0; i <= 4; ++i) {
    const float half = static_cast<float>(i) * 3.1415927f / 8;
    turns.push_back({0, std::sin(half), 0, std::cos(half)});
  }
  text.move(boom, "rotation", {{0}, {0.5f}, {1}, {1.5f}, {2}}, turns);
  writeFile("a.gltf", text.str("0, 1"));
  for (const float scale : {1.0f, 10.0f}) {
    for (const UpAxis up : {UpAxis::y, UpAxis::z}) {
      ImportedFile file;
      importFile("a.gltf", {.scale = static_cast<double>(scale), .up = up}, file);
      ASSERT_EQ(file.scene.viewers.count(), 1);
      Viewer& viewer = *file.scene.viewers[0];
      ASSERT_TRUE(viewer.positionTrack);
      EXPECT_LT(viewer.positionTrack->count, 20) << "sixty-one samples";
      for (const float t : {0.0f, 0.4f, 1.0f, 1.7f, 2.0f}) {
        viewer.getMatrix(t);
        const float angle = t * 3.1415927f / 2;
        const Vector out = up == UpAxis::y ? Vector(std::sin(angle), 0, std::cos(angle))
                                           : Vector(std::sin(angle), std::cos(angle), 0);
        const auto away = static_cast<double>(scale);
        expectNear(viewer.position, out * (10 * scale), 0.01 * away, "at " + std::to_string(t));
        expectNear(direction(viewer.position, viewer.target), -out, 0.005, "looking");
      }
    }
  }
}

TEST(ImportedCameras, AreNamedForWhatTheyLose) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(board(1, 1));
  text.camera(camera(0.6, ""));
  text.camera(camera(0.6, ""));
  text.camera(R"("type": "orthographic", "orthographic": {"xmag": 1, "ymag": 1, "znear": 0.1, "zfar": 9})");
  text.camera(camera(0.6, ""));
  text.node(R"("name": "Board", "mesh": 0)");
  text.node(R"("name": "Rolled", "camera": 0, "rotation": [0, 0, 0.2588190, 0.9659258])");
  text.node(R"("name": "Down", "camera": 1, "rotation": [-0.7071068, 0, 0, 0.7071068])");
  text.node(R"("name": "Flat", "camera": 2)");
  text.node(R"("name": "Turned", "camera": 3, "translation": [0, 0, 5])");
  text.node(R"("name": "Turned.Target", "translation": [3, 0, 0])");
  writeFile("a.gltf", text.str());
  ImportedFile file;
  importFile("a.gltf", {}, file);
  EXPECT_TRUE(file.says(Report::Kind::left, "camera Rolled: its roll of up to 30 degrees"));
  EXPECT_TRUE(file.says(Report::Kind::changed, "camera Down: looks straight up or down"));
  EXPECT_TRUE(file.says(Report::Kind::left, "camera Flat: shows no perspective"));
  EXPECT_TRUE(file.says(Report::Kind::changed, "Turned: does not look at Turned.Target"));
  ASSERT_EQ(file.scene.viewers.count(), 3);
  expectNear(direction(file.scene.viewers[2]->position, file.scene.viewers[2]->target), {0, 0, -1}, 1e-4,
             "its own way");
}

TEST(ImportedLights, ShineAsTheFilesSay) {
  GltfText text;
  text.mesh(board(1, 1));
  // The board's middle is 4 away: 0.8 of full white.
  text.light(
      R"("type": "spot", "color": [1, 0.5, 0], "intensity": 40.2124, "spot": {"outerConeAngle": 0.5})");
  text.light(R"("type": "point", "color": [0.5, 0.5, 0.5], "intensity": 6.2832, "range": 7)");
  text.light(R"("type": "directional", "intensity": 3.14159)");
  text.node(R"("name": "Board", "mesh": 0)");
  text.node(R"("name": "Lamp", "extensions": {"KHR_lights_punctual": {"light": 0}}, "translation": [0, 4, 0],
               "rotation": [-0.7071068, 0, 0, 0.7071068])");
  text.node(
      R"("name": "Bulb", "extensions": {"KHR_lights_punctual": {"light": 1}}, "translation": [0, 0, 2])");
  text.node(R"("name": "Sun", "extensions": {"KHR_lights_punctual": {"light": 2}})");
  const struct {
    const char* file;
    std::string content;
    const char* light;
    bool spot;
    Vector position, along;
    double cone, intensity;
    Colour colour;
  } rows[] = {
      {"a.gltf", text.str("0, 1, 2, 3"), "Lamp", true, {0, 4, 0}, {0, -1, 0}, degrees, 0.8, {1, 0.5f, 0}},
      {"a.gltf", text.str("0, 1, 2, 3"), "Bulb", false, {0, 0, 2}, {}, 45, 0.25, {1, 1, 1}},
      {"a.gltf", text.str("0, 1, 2, 3"), "Sun", false, {0, 0, 20}, {}, 45, 1, {1, 1, 1}},
      {"a.fbx", fbxWorld, "Lamp", true, {0, 9, 0}, {0, 0, 1}, 40, 0.8, {1, 0.5f, 0}},
      {"a.dae", colladaWorld, "Lamp", true, {0, 9, 0}, {0, -1, 0}, 40, 0.8, {1, 0.5f, 0}},
  };
  for (const auto& [name, content, wanted, spot, position, along, cone, intensity, colour] : rows) {
    const TemporaryFolder folder;
    writeFile(name, content);
    ImportedFile file;
    importFile(name, {}, file);
    const auto* light = static_cast<const Light*>(file.scene.find(wanted));
    ASSERT_EQ(light->kind, ObjectKind::light) << name;
    EXPECT_TRUE(light->active);
    EXPECT_EQ(light->spot, spot) << name << " " << wanted;
    expectNear(light->position, position, 1e-3, wanted);
    if (spot) expectNear(direction({}, light->spotDirection), along, 1e-4, name);
    EXPECT_NEAR(light->coneAngle, cone, 0.01) << name << " " << wanted;
    EXPECT_NEAR(light->intensity, intensity, 0.001) << name << " " << wanted;
    expectNear(Vector(light->colour.r, light->colour.g, light->colour.b), {colour.r, colour.g, colour.b},
               1e-4, wanted);
  }
}

TEST(ImportedLights, AreNamedBeyondEightAndWhenTheyDazzle) {
  const TemporaryFolder folder;
  GltfText text;
  text.mesh(board(1, 1));
  text.node(R"("name": "Board", "mesh": 0)");
  for (int i = 0; i < 10; ++i) {
    text.light(R"("type": "point", "intensity": )" + std::to_string(i == 3 ? 5000 : 2500));
    text.node("\"name\": \"L" + std::to_string(i) + "\", \"translation\": [0, 0, 2], \"extensions\": " +
              "{\"KHR_lights_punctual\": {\"light\": " + std::to_string(i) + "}}");
  }
  writeFile("a.gltf", text.str());
  ImportedFile file;
  importFile("a.gltf", {}, file);
  ASSERT_EQ(file.scene.lights.count(), 10);
  EXPECT_FALSE(file.scene.lights[8]->active);
  EXPECT_TRUE(file.says(Report::Kind::changed, "light L9: is switched off"));
  EXPECT_NEAR(file.scene.lights[3]->intensity, 1, 1e-5);
  EXPECT_NEAR(file.scene.lights[0]->intensity, 0.5, 1e-5);
  EXPECT_TRUE(file.says(Report::Kind::changed, "so that the brightest is 1"));
}

namespace {

using Mask = std::vector<bool>;
constexpr int width = glTestWidth, height = glTestHeight;

struct Corner {
  double x, y;  // of the window, from the lower left
};

// Pixels whose middle lies in the triangle.
void fill(Mask& mask, const Corner& a, const Corner& b, const Corner& c) {
  const auto side = [](const Corner& p, const Corner& q, double x, double y) {
    return (q.x - p.x) * (y - p.y) - (q.y - p.y) * (x - p.x);
  };
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const double px = x + 0.5, py = y + 0.5;
      const double s = side(a, b, px, py), t = side(b, c, px, py), u = side(c, a, px, py);
      if ((s >= 0 && t >= 0 && u >= 0) || (s <= 0 && t <= 0 && u <= 0))
        mask[static_cast<std::size_t>(y * width + x)] = true;
    }
}

// Pixels that differ and have no edge of the wanted silhouette among their neighbours.
int strays(const Mask& wanted, const Mask& seen) {
  int count = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      if (wanted[static_cast<std::size_t>(y * width + x)] == seen[static_cast<std::size_t>(y * width + x)])
        continue;
      bool edge = false;
      for (int v = std::max(y - 1, 0); v <= std::min(y + 1, height - 1); ++v)
        for (int u = std::max(x - 1, 0); u <= std::min(x + 1, width - 1); ++u)
          edge = edge || wanted[static_cast<std::size_t>(v * width + u)] ==
                             seen[static_cast<std::size_t>(y * width + x)];
      count += !edge;
    }
  return count;
}

class ImportedPicture : public GlTest {};

}  // namespace

// A leaning tetrahedron on a turning, growing arm, seen by a camera that was put and turned by hand: the
// formulas here are those of the file format.
TEST_F(ImportedPicture, HasTheSilhouetteOfTheSource) {
  const TemporaryFolder folder;
  const std::vector<GltfText::Triple> corners{{0, 0, 0}, {3, 0, 0}, {0, 2, 0}, {0, 0, 1.5f}};
  GltfText text;
  text.mesh({.positions = corners, .indices = {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3}});
  text.camera(camera(0.7, ", \"aspectRatio\": 2"));
  const int arm = text.node(R"("name": "Arm", "translation": [-1, 0.5, 0], "children": [1])");
  text.node(R"("name": "Form", "mesh": 0, "translation": [0.5, -0.5, 0], "scale": [1, 1.5, -1])");
  // A third of a right angle about y: to the right of the middle, looking back at it.
  text.node(
      R"("name": "Cam", "camera": 0, "translation": [4, 1, 7], "rotation": [0, 0.2588190, 0, 0.9659258])");
  text.move<4>(arm, "rotation", {{0}, {1}}, {{0, 0, 0, 1}, {0, 0, 0.3826834f, 0.9238795f}});
  text.move<3>(arm, "scale", {{0}, {1}}, {{1, 1, 1}, {2, 1, 1}});
  writeFile("a.gltf", text.str("0, 2"));
  ImportedFile file;
  importFile("a.gltf", {}, file);
  setWindowSize(width, height);
  file.scene.prepare(false);
  for (const double t : {0.0, 0.5, 1.0}) {
    Mask wanted(static_cast<std::size_t>(width * height));
    std::vector<Corner> window;
    const double turn = t * 3.14159265 / 4, grown = 1 + t;
    for (const auto& [px, py, pz] : corners) {
      const double fx = static_cast<double>(px) + 0.5, fy = 1.5 * static_cast<double>(py) - 0.5;
      const double fz = -static_cast<double>(pz);
      const double sx = fx * grown;
      const double x = std::cos(turn) * sx - std::sin(turn) * fy - 1,
                   y = std::sin(turn) * sx + std::cos(turn) * fy + 0.5;
      // Into the camera, which is turned by 30 degrees.
      const double dx = x - 4, dy = y - 1, dz = fz - 7, c = std::cos(30 / degrees),
                   s = std::sin(30 / degrees);
      const double ex = c * dx - s * dz, ez = s * dx + c * dz;
      const double zoom = 1 / std::tan(0.35);
      window.push_back({(1 + ex / -ez * zoom / 2) * width / 2, (1 + dy / -ez * zoom) * height / 2});
    }
    for (const auto& face : {std::array{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}})
      fill(wanted, window[static_cast<std::size_t>(face[0])], window[static_cast<std::size_t>(face[1])],
           window[static_cast<std::size_t>(face[2])]);
    glClear(GL_COLOR_BUFFER_BIT);
    file.scene.render(static_cast<float>(t));
    Mask seen;
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) seen.push_back(readPixel(x, y)[0] > 100);
    const auto pixels = std::count(wanted.begin(), wanted.end(), true);
    EXPECT_GT(pixels, 200) << "at " << t;
    EXPECT_LT(pixels, width * height / 2) << "at " << t;
    EXPECT_EQ(strays(wanted, seen), 0) << "at " << t;
  }
}

}  // namespace vex
