#include "tools/exchange/export.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

#include "base/report.h"
#include "production/making/product.h"
#include "production/products.h"
#include "tests/support/ase_text.h"
#include "tests/support/imported.h"
#include "tests/support/model_files.h"
#include "tests/support/temporary_folder.h"

// What goes out and comes in again is the same scene, to the rounding of floats.

namespace vex {

namespace {

constexpr double rounding = 2e-5;  // of a value of about 1; lengths are measured by the scene's size

struct Loaded {
  std::vector<std::string> textures;
  Scene scene;
};

void load(const std::string& file, Loaded& loaded) {
  readModel({file}, &loaded.scene, nameTextures(loaded.textures));
}

std::string textureOf(const std::vector<std::string>& names, int id) {
  return id < 0 ? "" : names[static_cast<std::size_t>(id)];
}

double sizeOf(const Scene& scene) {
  double size = 1;
  for (Mesh* mesh : scene.meshes)
    for (const Vertex& vertex : mesh->vertices)
      size = std::max(size, static_cast<double>(vertex.position.length()));
  for (Viewer* viewer : scene.viewers) size = std::max(size, static_cast<double>(viewer->position.length()));
  return size;
}

void expectNear(const Vector& a, const Vector& b, double within, const std::string& what) {
  EXPECT_LE((a - b).length(), within)
      << what << ": " << a.x << " " << a.y << " " << a.z << " but " << b.x << " " << b.y << " " << b.z;
}

void expectNear(const ColourAlpha& a, const ColourAlpha& b, const std::string& what) {
  expectNear(Vector(a.r, a.g, a.b), Vector(b.r, b.g, b.b), rounding, what);
}

// Key for key, and the same matrices between the keys.
void expectSameTrack(const Animation* a, const Animation* b, double size, const std::string& what) {
  ASSERT_EQ(a != nullptr, b != nullptr) << what;
  if (!a) return;
  EXPECT_EQ(a->smooth, b->smooth) << what;
  EXPECT_EQ(a->frameLength, b->frameLength) << what;
  EXPECT_EQ(a->keyTime, b->keyTime) << what;
  for (const float time : {0.0f, 0.13f, 0.5f, 0.77f, 1.0f}) {
    const Matrix m = a->getMatrix(time), n = b->getMatrix(time);
    for (int row = 0; row < 3; ++row)
      for (int column = 0; column < 4; ++column)
        ASSERT_NEAR(m.m[row][column], n.m[row][column], rounding * (column == 3 ? size : 20))
            << what << " at " << time;
  }
}

void expectSameMeshes(const Loaded& a, const Loaded& b) {
  const double size = sizeOf(a.scene);
  ASSERT_EQ(a.scene.meshes.count(), b.scene.meshes.count());
  for (int i = 0; i < a.scene.meshes.count(); ++i) {
    Mesh &m = *a.scene.meshes[i], &n = *b.scene.meshes[i];
    const std::string what = m.name;
    EXPECT_STREQ(m.name, n.name);
    EXPECT_STREQ(m.parent ? m.parent->name : "", n.parent ? n.parent->name : "") << what;
    EXPECT_EQ(m.flags, n.flags) << what;
    EXPECT_EQ(m.lit, n.lit) << what;
    expectNear(m.position, n.position, rounding * size, what + ", position");
    for (int row = 0; row < 4; ++row)
      for (int column = 0; column < 4; ++column)
        EXPECT_NEAR(m.baseMatrix.m[row][column], n.baseMatrix.m[row][column], rounding) << what;
    ASSERT_EQ(m.vertices.size(), n.vertices.size()) << what;
    for (std::size_t v = 0; v < m.vertices.size(); ++v) {
      ASSERT_LE((m.vertices[v].position - n.vertices[v].position).length(), rounding * size)
          << what << " " << v;
      ASSERT_NEAR(m.vertices[v].u, n.vertices[v].u, rounding) << what << " " << v;
      ASSERT_NEAR(m.vertices[v].v, n.vertices[v].v, rounding) << what << " " << v;
      ASSERT_GE(dot(m.vertices[v].normal, n.vertices[v].normal) + (m.vertices[v].normal.length() < 0.5f),
                0.9999f)
          << what << " " << v;
    }
    ASSERT_EQ(m.faces.size(), n.faces.size()) << what;
    for (std::size_t f = 0; f < m.faces.size(); ++f)
      ASSERT_EQ(m.faces[f].v, n.faces[f].v) << what << " " << f;
    EXPECT_EQ(textureOf(a.textures, m.texture), textureOf(b.textures, n.texture)) << what;
    expectNear(m.diffuse, n.diffuse, what + ", diffuse");
    expectNear(m.ambient, n.ambient, what + ", ambient");
    expectNear(m.specular, n.specular, what + ", specular");
    EXPECT_NEAR(m.opacity, n.opacity, rounding) << what;
    EXPECT_NEAR(m.shininess, n.shininess, rounding) << what;
    EXPECT_NEAR(m.shineStrength, n.shineStrength, rounding) << what;
    EXPECT_EQ(m.envMap, n.envMap) << what;
    EXPECT_EQ(m.twoSided, n.twoSided) << what;
    for (int type = 0; type < trackTypes; ++type)
      expectSameTrack(m.track(static_cast<TrackType>(type)), n.track(static_cast<TrackType>(type)), size,
                      what + ", track " + std::to_string(type));
    for (const float time : {0.0f, 0.31f, 1.0f})
      expectNear(m.worldPositionAt(time), n.worldPositionAt(time), 3 * rounding * size,
                 what + ", in the world");
  }
}

void expectSameLights(const Loaded& a, const Loaded& b) {
  const double size = sizeOf(a.scene);
  ASSERT_EQ(a.scene.lights.count(), b.scene.lights.count());
  for (int i = 0; i < a.scene.lights.count(); ++i) {
    const Light &m = *a.scene.lights[i], &n = *b.scene.lights[i];
    const std::string what = m.name;
    EXPECT_STREQ(m.name, n.name);
    expectNear(m.position, n.position, rounding * size, what);
    EXPECT_EQ(m.active, n.active) << what;
    EXPECT_EQ(m.spot, n.spot) << what;
    if (m.spot) {
      expectNear(m.spotDirection, n.spotDirection, rounding * size, what + ", direction");
      EXPECT_NEAR(m.coneAngle, n.coneAngle, 1e-3) << what;
    }
    expectNear(Vector(m.colour.r, m.colour.g, m.colour.b), Vector(n.colour.r, n.colour.g, n.colour.b),
               rounding, what);
    EXPECT_NEAR(m.intensity, n.intensity, rounding) << what;
    expectSameTrack(m.track(TrackType::position), n.track(TrackType::position), size, what);
    expectSameTrack(m.target.get(), n.target.get(), size, what + ", target");
  }
}

void expectSameViewers(const Loaded& a, const Loaded& b) {
  const double size = sizeOf(a.scene);
  ASSERT_EQ(a.scene.viewers.count(), b.scene.viewers.count());
  for (int i = 0; i < a.scene.viewers.count(); ++i) {
    const Viewer &m = *a.scene.viewers[i], &n = *b.scene.viewers[i];
    const std::string what = "camera " + std::to_string(i);
    expectNear(m.position, n.position, rounding * size, what);
    expectNear(m.target, n.target, rounding * size, what + ", target");
    EXPECT_NEAR(m.fov, n.fov, 1e-3) << what;
    EXPECT_NEAR(m.farPlane, n.farPlane, static_cast<double>(m.farPlane) * 1e-5) << what;
    expectSameTrack(m.positionTrack.get(), n.positionTrack.get(), size, what);
    expectSameTrack(m.targetTrack.get(), n.targetTrack.get(), size, what + ", target");
  }
}

// Out and in again, in the working folder.
void roundTrip(const std::string& ase, Loaded& before, Loaded& after, Report& report) {
  load(ase, before);
  writeFile("there.glb", exportGlb(before.scene, before.textures, report));
  ImportedFile file;
  importFile("there.glb", {}, file);
  load("imported.ase", after);
}

struct MadeModel {
  std::string path;
  Product product;
};

void PrintTo(const MadeModel& model, std::ostream* out) {
  *out << model.path;
}

std::vector<MadeModel> allModels() {
  std::vector<MadeModel> models;
  for (const Product& product : allProducts())
    for (const std::string& path : product.outputs)
      if (path.ends_with(".ase")) models.push_back({path, product});
  return models;
}

class Exported : public testing::TestWithParam<MadeModel> {};

}  // namespace

TEST_P(Exported, ComesBackAsItWas) {
  const auto& [path, product] = GetParam();
  const TemporaryFolder folder;
  const std::vector<image::Bytes> files = product.make(Settings{.draft = true});
  for (std::size_t i = 0; i < files.size(); ++i)
    writeFile(product.outputs[i], {reinterpret_cast<const char*>(files[i].data()), files[i].size()});
  Loaded before, after;
  Report report;
  roundTrip(path, before, after, report);
  expectSameMeshes(before, after);
  expectSameLights(before, after);
  expectSameViewers(before, after);
}

INSTANTIATE_TEST_SUITE_P(Made, Exported, testing::ValuesIn(allModels()), [](const auto& model) {
  return std::filesystem::path(model.param.path).stem().string();
});

}  // namespace vex
