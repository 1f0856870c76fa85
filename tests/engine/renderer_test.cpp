#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "base/clock.h"
#include "base/options.h"
#include "base/window_size.h"
#include "engine/particle_system.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_scene.h"
#include "textures/stat_text.h"

namespace vex {
namespace {

class Renderer : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
  }
};

// A square of 20 x 20 units across the view, at that depth.
void makeSquare(Mesh& mesh, float z, Colour colour = {}) {
  makeGrid(mesh, 1, 1, {-10.0f, -10.0f, z}, 20.0f, 20.0f);
  mesh.diffuse = {colour.r, colour.g, colour.b, 1.0f};
  mesh.buildArrays();
}

float depthAt(int x, int y) {
  float depth = -1.0f;
  glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
  return depth;
}

std::array<float, 4> lightValue(int light, GLenum name) {
  std::array<float, 4> values{};
  glGetLightfv(GL_LIGHT0 + static_cast<GLenum>(light), name, values.data());
  return values;
}

// Of a picture that lies upright about the middle of the screen.
void expectCornerOfPicture(const FeedbackVertex& vertex) {
  EXPECT_NEAR(vertex.texture[0], vertex.x > 0 ? 1.0f : 0.0f, 1e-4f);
  EXPECT_NEAR(vertex.texture[1], vertex.y > 0 ? 1.0f : 0.0f, 1e-4f);
}

}  // namespace

TEST_F(Renderer, AnInvisibleSceneLeavesTheFrameAlone) {
  TestScene scene(1);
  makeSquare(*scene.meshes[0], -5.0f);
  glClearDepth(0.25);
  glClear(GL_DEPTH_BUFFER_BIT);
  glClearDepth(1.0);
  for (const float alpha : {0.0f, 0.005f}) {
    scene.viewers[0]->alpha = alpha;
    scene.render(0.0f);
    EXPECT_NEAR(depthAt(60, 30), 0.25f, 1e-6f);
    EXPECT_EQ(readPixel(60, 30), (std::array<int, 4>{0, 0, 0, 0}));
  }
  scene.meshes[0]->flags = hiddenFlag;
  scene.viewers[0]->alpha = 0.01f;
  glDepthMask(GL_FALSE);  // as something drawn before may leave it
  glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
  scene.render(0.0f);
  EXPECT_EQ(depthAt(60, 30), 1.0f);
  EXPECT_EQ(readPixel(60, 30), (std::array<int, 4>{0, 0, 0, 0})) << "colours stay";
}

// From an eye at (1, 2, 3) that looks along +x, three quarters of 120 degrees high and twice as wide.
TEST_F(Renderer, LooksThroughTheViewer) {
  TestScene scene(1);
  scene.viewers[0]->position = {1.0f, 2.0f, 3.0f};
  scene.viewers[0]->target = {2.0f, 2.0f, 3.0f};
  scene.meshes[0]->twoSided = true;
  scene.meshes[0]->vertices = {{.position = {11.0f, 2.0f, 3.0f}, .normal = {}},
                               {.position = {11.0f, 7.0f, 3.0f}, .normal = {}},
                               {.position = {21.0f, 2.0f, 13.0f}, .normal = {}}};
  scene.meshes[0]->faces.push_back({.v = {0, 1, 2}});
  scene.meshes[0]->buildArrays();
  const auto triangles = captureFeedback([&] { scene.render(0.0f); });
  ASSERT_EQ(triangles.size(), 1u);
  const float expected[3][3] = {{0, 0, 10}, {0, 0.5f, 10}, {0.25f, 0, 20}};  // +z is to the right
  for (std::size_t i = 0; i < 3; ++i) {
    const FeedbackVertex& vertex = triangles[0].vertices[i];
    EXPECT_NEAR(vertex.x, expected[i][0], 1e-4f);
    EXPECT_NEAR(vertex.y, expected[i][1], 1e-4f);
    const float distance = expected[i][2];  // planes at 1 and 1000
    EXPECT_NEAR(vertex.z, (1001.0f - 2000.0f / distance) / 999.0f, 1e-4f);
  }
}

TEST_F(Renderer, LeavesItsEndState) {
  TestScene scene(1);
  makeSquare(*scene.meshes[0], -5.0f);
  scene.meshes[0]->blendMode = BlendMode::additive;
  scene.viewers[0]->position = {1, 2, 3};
  glDepthFunc(GL_ALWAYS);
  scene.render(0.0f);
  EXPECT_TRUE(glFlag(GL_DEPTH_WRITEMASK));
  EXPECT_EQ(glBlendFactors(), (BlendFactors{GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
  EXPECT_FALSE(glFlag(GL_ALPHA_TEST));
  EXPECT_FALSE(glFlag(GL_FOG));
  EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_LEQUAL);
  EXPECT_EQ(glInteger(GL_MATRIX_MODE), GL_PROJECTION);
  for (const GLenum name : {GL_MODELVIEW_MATRIX, GL_PROJECTION_MATRIX}) {
    float matrix[16];
    glGetFloatv(name, matrix);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(matrix[i], i % 5 == 0 ? 1.0f : 0.0f);
  }
}

// The pictures of the walls stand upright and unmirrored when seen from inside.
TEST_F(Renderer, TheWallsOfTheBoxFaceTheEye) {
  struct Case {
    BoxFace face;
    Vector direction;
  };
  const int texture = addWhiteTexture("wall");
  for (const Case& c : {Case{BoxFace::north, {0, 0, 1}}, Case{BoxFace::west, {-1, 0, 0}},
                        Case{BoxFace::south, {0, 0, -1}}, Case{BoxFace::east, {1, 0, 0}}}) {
    TestScene scene;
    Viewer& viewer = *scene.viewers[0];
    viewer.fov = 160.0f;  // 120 degrees high
    viewer.position = {50.0f, -20.0f, 30.0f};
    viewer.target = viewer.position + c.direction;
    scene.boxTextures[static_cast<std::size_t>(c.face)] = texture;
    glColor4f(0.0f, 0.0f, 0.0f, 0.0f);
    const auto triangles = captureFeedback([&] { scene.render(0.0f); });
    ASSERT_EQ(triangles.size(), 2u);
    for (const auto& triangle : triangles) {
      for (const FeedbackVertex& vertex : triangle.vertices) {
        expectCornerOfPicture(vertex);
        const float tangent = std::sqrt(3.0f);
        EXPECT_NEAR(vertex.w, 10.0f, 1e-4f);
        EXPECT_NEAR(std::fabs(vertex.x) * 10.0f * tangent * 2.0f, 10.1f, 1e-3f);
        EXPECT_NEAR(std::fabs(vertex.y) * 10.0f * tangent, 10.1f, 1e-3f);
        EXPECT_EQ(vertex.colour, (std::array<float, 4>{1, 1, 1, 1}));
      }
    }
  }
}

// Walls have no holes: the mask that a picture has for others does not count.
TEST_F(Renderer, AMaskMakesNoWallInvisible) {
  const TemporaryFolder folder;
  writeFile("wall.bmp", bmpBytes(8, 8, plain({200, 100, 50})));
  writeFile("wall_mask.bmp", bmpBytes(8, 8, plain({0, 0, 0})));
  getTexture("wall", false);  // as a sprite has it, masked
  TestScene scene;
  scene.setBox("", "", "", "", "wall", "");
  scene.render(0.0f);
  EXPECT_EQ(readPixel(60, 30), (std::array<int, 4>{200, 100, 50, 255}));
}

// A mesh with an environment map may be the last thing drawn before.
TEST_F(Renderer, TheBoxKeepsItsCoordinatesAfterEnvironmentMaps) {
  const int texture = addWhiteTexture("wall");
  TestScene mirror(1), scene;
  makeSquare(*mirror.meshes[0], -5.0f);
  mirror.meshes[0]->envMap = true;
  mirror.meshes[0]->texture = texture;
  mirror.render(0.0f);
  scene.viewers[0]->fov = 160.0f;
  scene.boxTextures[static_cast<std::size_t>(BoxFace::south)] = texture;
  const auto triangles = captureFeedback([&] { scene.render(0.0f); });
  ASSERT_EQ(triangles.size(), 2u);
  for (const auto& triangle : triangles) {
    for (const FeedbackVertex& vertex : triangle.vertices) expectCornerOfPicture(vertex);
  }
}

// Top and bottom as a view along (0, +-1, -0.01) shows them; -z is then up or down on the screen.
TEST_F(Renderer, TheLidAndTheFloorOfTheBox) {
  const int texture = addWhiteTexture("lid");
  for (const BoxFace face : {BoxFace::top, BoxFace::bottom}) {
    TestScene scene;
    Viewer& viewer = *scene.viewers[0];
    viewer.fov = 160.0f;
    const float up = face == BoxFace::top ? 1.0f : -1.0f;
    viewer.target = {0.0f, up, -0.01f};
    scene.boxTextures[static_cast<std::size_t>(face)] = texture;
    const auto triangles = captureFeedback([&] { scene.render(0.0f); });
    ASSERT_EQ(triangles.size(), 2u);
    for (const auto& triangle : triangles) {
      for (const FeedbackVertex& vertex : triangle.vertices) {
        const bool east = vertex.x > 0, south = vertex.y * up < 0;  // south: -z
        EXPECT_NEAR(vertex.texture[0], south ? 0.0f : 1.0f, 1e-4f);
        EXPECT_NEAR(vertex.texture[1], east == (face == BoxFace::bottom) ? 1.0f : 0.0f, 1e-4f);
        EXPECT_NEAR(vertex.w, 10.0f, 0.2f);
      }
    }
  }
}

// GL takes no cones between half space and all round.
TEST_F(Renderer, ConesReachHalfSpaceAtMost) {
  TestScene scene(0, 1);
  scene.lights[0]->active = scene.lights[0]->spot = true;
  scene.collectActiveLights();
  for (const auto& [angle, cutoff] :
       {std::array{200.0f, 90.0f}, std::array{-5.0f, 0.0f}, std::array{90.0f, 45.0f}}) {
    scene.lights[0]->coneAngle = angle;
    scene.render(0.0f);
    EXPECT_EQ(lightValue(0, GL_SPOT_CUTOFF)[0], cutoff);
  }
}

TEST_F(Renderer, LightsOfNoIntensityAreBlack) {
  for (const float range : {-1.0f, 100.0f}) {
    TestScene scene(0, 1);
    scene.lights[0]->active = true;
    scene.lights[0]->intensity = 0.0f;
    scene.lights[0]->range = range;
    scene.collectActiveLights();
    scene.render(0.0f);
    EXPECT_EQ(lightValue(0, GL_DIFFUSE), (std::array<float, 4>{0, 0, 0, 1}));
    EXPECT_EQ(lightValue(0, GL_SPECULAR), (std::array<float, 4>{0, 0, 0, 1}));
    EXPECT_EQ(lightValue(0, GL_CONSTANT_ATTENUATION)[0], 1.0f);
    EXPECT_EQ(lightValue(0, GL_LINEAR_ATTENUATION)[0], 0.0f);
  }
}

TEST_F(Renderer, WithoutActiveLightsNoneIsTouched) {
  TestScene scene(1, 2);
  makeSquare(*scene.meshes[0], -5.0f);
  scene.meshes[0]->lit = true;
  scene.collectActiveLights();
  glEnable(GL_LIGHT3);
  glDisable(GL_NORMALIZE);
  scene.render(0.0f);
  EXPECT_TRUE(glFlag(GL_LIGHT3));
  EXPECT_FALSE(glFlag(GL_LIGHT0));
  EXPECT_FALSE(glFlag(GL_NORMALIZE));
  EXPECT_EQ(readPixel(60, 30), (std::array<int, 4>{255, 255, 255, 255})) << "drawn unlit";
}

TEST_F(Renderer, LightingFollowsMovingLightsOneFrameLate) {
  TestScene scene(0, 1);
  scene.lights[0]->active = true;
  scene.lights[0]->position = {1.0f, 0.0f, 0.0f};
  scene.lights[0]->addAnimation(straightPath({2.0f, 0.0f, 0.0f}, {12.0f, 0.0f, 0.0f}));
  scene.collectActiveLights();
  const float expected[] = {1.0f, 2.0f, 7.0f};
  const float times[] = {0.0f, 0.5f, 1.0f};
  for (int i = 0; i < 3; ++i) {
    scene.render(times[i]);
    EXPECT_NEAR(lightValue(0, GL_POSITION)[0], expected[i], 1e-5f);
  }
}

TEST_F(Renderer, FogGraysWhatIsFar) {
  TestScene scene(1);
  Mesh& wall = *scene.meshes[0];
  makeGrid(wall, 1, 1, {-900.0f, -900.0f, -400.0f}, 1800.0f, 1800.0f);
  wall.buildArrays();
  scene.fogs.allocate(2);
  scene.fogs[0] = new Fog;
  scene.fogs[0]->colour = {0.0f, 1.0f, 0.0f};
  scene.fogs[1] = new Fog;
  scene.fogs[1]->divisor = 2.0f;
  scene.render(0.0f);
  EXPECT_EQ(glInteger(GL_FOG_MODE), GL_LINEAR);
  EXPECT_EQ(glFloats(GL_FOG_START)[0], 100.0f);
  EXPECT_EQ(glFloats(GL_FOG_END)[0], 500.0f);
  // A quarter of the white wall is left, three quarters are grey 0.7.
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(readPixel(60, 30)[static_cast<std::size_t>(i)], 198, 2);

  scene.fogs.clear();
  glEnable(GL_FOG);
  scene.render(0.0f);
  EXPECT_EQ(readPixel(60, 30), (std::array<int, 4>{255, 255, 255, 255}));
}

TEST_F(Renderer, RefusesVolumetricFog) {
  TestScene scene;
  scene.fogs.allocate(1);
  scene.fogs[0] = new Fog;
  scene.fogs[0]->volumetric = true;
  EXPECT_EQ(fatalText([&] { scene.render(0.0f); }), "Volumetric fog is not supported in the moment!");
}

TEST_F(Renderer, DrawsByBlendModeThenInModelOrder) {
  constexpr BlendMode modes[] = {BlendMode::untouched,   BlendMode::transparent, BlendMode::opaque,
                                 BlendMode::subtractive, BlendMode::opaque,      BlendMode::additive,
                                 BlendMode::opaque};
  TestScene scene(7);
  for (int i = 0; i < 7; ++i) {
    makeSquare(*scene.meshes[i], -15.0f, {static_cast<float>(i) / 8.0f, 0.0f, 0.0f});
    scene.meshes[i]->blendMode = modes[i];
  }
  scene.meshes[6]->flags = hiddenFlag;
  scene.viewers[0]->alpha = 0.5f;
  std::vector<int> order;
  for (const auto& triangle : captureFeedback([&] { scene.render(0.0f); })) {
    const int mesh = static_cast<int>(triangle.vertices[0].colour[0] * 8.0f);
    if (order.empty() || order.back() != mesh) order.push_back(mesh);
    EXPECT_EQ(triangle.vertices[0].colour[3], 0.5f) << "the viewer's alpha";
  }
  EXPECT_EQ(order, (std::vector<int>{2, 4, 5, 3, 1, 0}));
}

TEST_F(Renderer, MovesMeshesByTheirTracks) {
  TestScene scene(2);
  for (int i = 0; i < 2; ++i) makeSquare(*scene.meshes[i], -20.0f);
  scene.meshes[0]->addAnimation(straightPath({0, 0, 0}, {10, 0, 0}));
  const auto leftEdges = [&](float seconds) {
    std::vector<float> edges;
    const auto triangles = captureFeedback([&] { scene.render(seconds); });
    for (std::size_t i = 0; i < triangles.size(); i += 2) {
      float left = 9.0f;
      for (const FeedbackVertex& vertex : triangles[i].vertices) left = std::min(left, vertex.x * 40.0f);
      edges.push_back(left);
    }
    return edges;
  };
  for (const float seconds : {0.0f, 0.5f, 1.0f}) {
    const auto edges = leftEdges(seconds);
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_NEAR(edges[0], -10.0f + 10.0f * seconds, 1e-3f);
    EXPECT_NEAR(edges[1], -10.0f, 1e-3f) << "the matrix is put back";
  }
}

TEST_F(Renderer, HiddenMeshesMoveOnlyForParticles) {
  TestScene scene(1);
  scene.meshes[0]->flags = hiddenFlag;
  scene.meshes[0]->addAnimation(straightPath({0, 0, 0}, {10, 0, 0}));
  scene.render(0.5f);
  EXPECT_EQ(scene.meshes[0]->worldPosition, Vector());
  ParticleSystem* none[] = {nullptr};
  scene.particleSystems = none;
  scene.render(0.5f);
  EXPECT_EQ(scene.meshes[0]->worldPosition, Vector(5, 0, 0));
}

TEST_F(Renderer, FlaresComeAfterMeshesActiveOrNot) {
  addWhiteTexture("data\\flare_normal");
  TestScene scene(1, 2);
  makeSquare(*scene.meshes[0], -50.0f, {0.0f, 0.0f, 1.0f});
  scene.meshes[0]->blendMode = BlendMode::untouched;
  for (int i = 0; i < 2; ++i) {
    Light& light = *scene.lights[i];
    light.flareStrength = 1.0f;
    light.flareSize = 4.0f;
    light.colour = {0.25f, 0.0f, 0.0f};
    light.position = {0.0f, 0.0f, -20.0f};
  }
  scene.lights[1]->active = true;
  scene.lights[1]->colour = {0.5f, 0.0f, 0.0f};
  scene.collectActiveLights();
  scene.viewers[0]->alpha = 0.5f;
  std::vector<float> reds;
  for (const auto& triangle : captureFeedback([&] { scene.render(0.0f); })) {
    reds.push_back(triangle.vertices[0].colour[0]);
    if (reds.size() <= 2) continue;
    for (const FeedbackVertex& vertex : triangle.vertices) {
      EXPECT_NEAR(std::fabs(vertex.y), 0.1f, 1e-5f);
      EXPECT_NEAR(vertex.texture[1], vertex.y > 0 ? 1.0f : 0.0f, 1e-4f);
    }
  }
  EXPECT_EQ(reds, (std::vector<float>{0, 0, 0.125f, 0.125f, 0.25f, 0.25f}));
}

TEST_F(Renderer, TellsTheCameraWithTheStatistics) {
  const TemporaryFolder folder;
  writeFile("font.raw", std::string(6144 + 18432, '\xff'));
  TestScene scene;
  scene.viewers[0]->position = {1.0f, -2.25f, 3.5f};
  scene.viewers[0]->target = {10.0f, 0.0f, 0.0f};
  scene.viewers[0]->roll = 0.5f;
  EXPECT_TRUE(captureFeedback([&] { scene.render(0.0f); }).empty());
  options().showStats = true;
  loadStatFont("font.raw");
  const auto shown = captureFeedback([&] { scene.render(0.0f); });
  const auto expected = captureFeedback([] {
    drawText(0, 4, "1.0 -2.2 3.5 -> 10.0 0.0 0.0");
    drawText(0, 5, "fov 120.0 rot 0.5");
  });
  options().showStats = false;
  ASSERT_EQ(shown.size(), expected.size());
  for (std::size_t i = 0; i < shown.size(); ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_EQ(shown[i].vertices[k].x, expected[i].vertices[k].x);
      EXPECT_EQ(shown[i].vertices[k].y, expected[i].vertices[k].y);
      EXPECT_EQ(shown[i].vertices[k].texture, expected[i].vertices[k].texture);
    }
  }
}

}  // namespace vex
