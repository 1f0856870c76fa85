#include "engine/light.h"

#include <gtest/gtest.h>

#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/log_text.h"
#include "tests/support/test_scene.h"

namespace vex {
namespace {

const Vector down(0.0f, -1.0f, 0.0f), right(1.0f, 0.0f, 0.0f);

class Lights : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    for (int n = 0; n <= 7; ++n) addWhiteTexture(("data\\light" + std::to_string(n)).c_str());
    for (const char* name : {"data\\flare_normal", "data\\flare_vectorball"}) addWhiteTexture(name);
  }

  static auto sprites(Light& light, float alpha = 1.0f) {
    return asQuads(captureUnclipped([&] { light.drawFlare(down, right, 0.0f, alpha); }));
  }
};

float halfSize(const std::array<FeedbackVertex, 4>& quad) {
  return (quad[1].x - quad[0].x) / 2;
}

}  // namespace

TEST_F(Lights, SpriteSizesFollowIntensityAndGlow) {
  struct Case {
    float size, intensity;
    bool glow;
    std::vector<float> expected;
  };
  for (const Case& c : {Case{2, 1, true, {1, 0.5f}}, Case{2, 1, false, {1}}, Case{2, 3, false, {3}},
                        Case{2, 3, true, {1, 1.5f}}, Case{2, 0, true, {1}}, Case{2, 0.5f, false, {1}},
                        Case{0, 1, true, {}}, Case{-2, 1, true, {}}}) {
    Light light;
    light.flareSize = c.size;
    light.intensity = c.intensity;
    light.glow = c.glow;
    const auto quads = sprites(light);
    ASSERT_EQ(quads.size(), c.expected.size()) << c.size << ' ' << c.intensity << ' ' << c.glow;
    for (std::size_t i = 0; i < quads.size(); ++i) EXPECT_NEAR(halfSize(quads[i]), c.expected[i], 1e-4f);
  }
}

TEST_F(Lights, SpritesAreSpannedByTheScreenAxes) {
  Light light;
  light.position = {1.0f, 2.0f, 0.5f};
  light.flareSize = 2.0f;
  // Axes turned by a quarter: down points to the right, right points up.
  for (const bool turned : {false, true}) {
    const auto quads = asQuads(captureUnclipped(
        [&] { light.drawFlare(turned ? right : down, turned ? -down : right, 0.0f, 1.0f); }));
    ASSERT_EQ(quads.size(), 1u);
    const float plain[4][4] = {{-1, 1, 0, 1}, {1, 1, 1, 1}, {1, -1, 1, 0}, {-1, -1, 0, 0}};
    const float rotated[4][4] = {{-1, -1, 0, 1}, {-1, 1, 1, 1}, {1, 1, 1, 0}, {1, -1, 0, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
      const auto& expected = turned ? rotated[i] : plain[i];
      EXPECT_NEAR(quads[0][i].x, 1 + expected[0], 1e-3f) << i;
      EXPECT_NEAR(quads[0][i].y, 2 + expected[1], 1e-3f) << i;
      EXPECT_NEAR(quads[0][i].z, 0.5f, 1e-5f) << i;
      EXPECT_NEAR(quads[0][i].texture[0], expected[2], 1e-6f) << i;
      EXPECT_NEAR(quads[0][i].texture[1], expected[3], 1e-6f) << i;
    }
  }
}

// Which glow was drawn shows in the texture left bound, since no flare follows.
TEST_F(Lights, TheGlowIsTheOneOfTheColour) {
  struct Case {
    Colour colour;
    int glow;
  };
  for (const Case& c : {Case{{1, 1, 1}, 7}, Case{{1, 0, 0}, 4}, Case{{0, 0.5f, 0}, 2}, Case{{0, 0, 0.9f}, 1},
                        Case{{0.5f, 0.49f, 0.5f}, 5}, Case{{0.49f, 0.49f, 0.49f}, 0}}) {
    Light light;
    light.colour = c.colour;
    light.glow = true;
    light.flareStrength = 0.0f;
    glBindTexture(GL_TEXTURE_2D, 0);
    const auto quads = sprites(light, 0.25f);
    ASSERT_EQ(quads.size(), c.glow > 0 ? 1u : 0u);
    EXPECT_EQ(glInteger(GL_TEXTURE_BINDING_2D), c.glow);
    if (c.glow > 0) {
      EXPECT_EQ(quads[0][0].colour, (std::array<float, 4>{1, 1, 1, 0.25f}));
    }
  }
}

TEST_F(Lights, TheFlareTakesColourStrengthAndAlpha) {
  struct Case {
    float strength;
    std::array<float, 4> colour;
  };
  for (const Case& c : {Case{0.5f, {0.2f, 0.1f, 0.05f, 1}}, Case{-1.0f, {0.4f, 0.2f, 0.1f, 1}}}) {
    Light light;
    light.colour = {0.8f, 0.4f, 0.2f};
    light.flareStrength = c.strength;
    const auto quads = sprites(light, 0.5f);
    ASSERT_EQ(quads.size(), 1u);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(quads[0][0].colour[i], c.colour[i], 1e-6f);
  }
}

TEST_F(Lights, VectorBallsAreOpaqueSprites) {
  struct Case {
    float size, intensity, expected;
  };
  for (const Case& c : {Case{2, 3, 3}, Case{2, 0.5f, 0.5f}, Case{-2, 1, -1}}) {
    Light light;
    light.flareKind = FlareKind::vectorBall;
    light.flareSize = c.size;
    light.intensity = c.intensity;
    light.glow = true;
    light.colour = {0.25f, 0.5f, 0.75f};
    const auto quads = sprites(light, 0.5f);
    ASSERT_EQ(quads.size(), 1u);
    EXPECT_NEAR(halfSize(quads[0]), c.expected, 1e-4f);
    EXPECT_EQ(quads[0][0].colour, (std::array<float, 4>{0.25f, 0.5f, 0.75f, 0.5f}));
  }
}

TEST(Light, FollowsItsTracks) {
  Light light;
  light.position = {1, 2, 3};
  light.spotDirection = {0, 0, 7};
  light.update(0.5f);
  EXPECT_EQ(light.position, Vector(1, 2, 3));
  EXPECT_EQ(light.spotDirection, Vector(0, 0, 7));

  light.setTarget(straightPath({0, 0, 0}, {10, 0, 0}));
  light.update(0.5f);
  EXPECT_EQ(light.position, Vector(1, 2, 3));
  EXPECT_EQ(light.spotDirection, Vector(4, -2, -3));

  light.addAnimation(straightPath({0, 0, 0}, {0, 20, 0}));
  light.setAnimParams(2.0f, true);
  light.update(2.5f);  // a quarter of the way, looped
  EXPECT_EQ(light.position, Vector(0, 5, 0));
  EXPECT_EQ(light.spotDirection, Vector(2.5f, -5, 0));
}

TEST(Light, TargetsAreDrivenByPositionsOnly) {
  EXPECT_EQ(fatalText([] {
              Light light;
              Animation turn;
              turn.type = TrackType::rotation;
              light.setTarget(turn);
            }),
            "Lights support only position keys");
}

TEST(Light, LogsItsDestruction) {
  EXPECT_EQ(logText([] {
              Animation path = straightPath({}, {});
              auto* light = new Light;
              std::snprintf(light->name, objectNameSize, "Lamp");
              light->setTarget(path);
              destroyLight(light);
            }),
            "  destroying light Lamp\n    destroying anim\n    destroying anim\n");
}

}  // namespace vex
