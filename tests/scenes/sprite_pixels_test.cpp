#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/options.h"
#include "base/window_size.h"
#include "engine/light.h"
#include "engine/particle_system.h"
#include "engine/vol_light.h"
#include "scenes/scene_outtro.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_builder.h"
#include "tests/support/temporary_folder.h"
#include "textures/stat_text.h"
#include "textures/texture_cache.h"

// What must be on while a sprite is drawn shows in its pixels only: the sprites below, of textures of one
// colour each, stand over a coloured ground, after a state that is wrong in everything they depend on.

namespace vex {
namespace {

using Paint = std::array<double, 4>;  // 0 to 1

constexpr Paint ground{0.3, 0.5, 0.6, 1};

// Of the textures. Every other texture is plain white.
constexpr Paint glowPaint{0.8, 0.2, 0.4, 0.5};
constexpr Paint flarePaint{0.4, 0.8, 0.2, 0.75};
constexpr Paint ballPaint{0.2, 0.6, 1, 0.5};
constexpr Paint fontPaint{1, 0.8, 0, 0.4};
constexpr Paint copperPaint{0.8, 0.4, 0.2, 0.6};
constexpr Paint beamPaint{0.6, 0.2, 0.4, 0.5};

Paint times(const Paint& a, const Paint& b) {
  Paint product;
  for (std::size_t i = 0; i < 4; ++i) product[i] = a[i] * b[i];
  return product;
}

// Clamped textures fade into GL's clear border over their outer half texel; of four texels a side, the sample
// of a pixel whose centre lies at s has so much of the texture left.
Paint atEdge(const Paint& texture, double s) {
  const double left = 0.5 + 4 * s;
  return times(texture, {left, left, left, left});
}

Paint over(const Paint& source, const Paint& below) {
  Paint mixed = below;
  for (std::size_t i = 0; i < 3; ++i) mixed[i] = source[i] * source[3] + below[i] * (1 - source[3]);
  return mixed;
}
Paint added(const Paint& source, const Paint& below) {
  Paint mixed = below;
  for (std::size_t i = 0; i < 3; ++i) mixed[i] = source[i] * source[3] + below[i];
  return mixed;
}
Paint darkened(const Paint& source, const Paint& below) {
  Paint mixed = below;
  for (std::size_t i = 0; i < 3; ++i) mixed[i] = below[i] * (1 - source[i]);
  return mixed;
}

struct Probe {
  int x, y;
  Paint paint;
  double depth = 1;  // 1 is what there was
};

struct Sprite {
  const char* name;
  std::function<void()> draw;
  bool solid;  // writes depth where its alpha test passes; the others do neither
  std::vector<Probe> probes;
};

class SpritePixels : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    decoy = add("decoy", {0, 0, 0, 1});
    for (const char* name : {"data\\light5", "data\\flare_normal"}) add(name, {1, 1, 1, 1});
    add("data\\light4", glowPaint);
    add("data\\star", flarePaint);
    add("font", fontPaint);
    add("statFont", fontPaint);
    add("data\\copperbar", copperPaint);
    beamTexture = add("data\\beam", beamPaint);
    add("data\\flare_vectorball", ballPaint, {1, 1, 1, 0});
    scene.reset(newScene<SceneOuttro>());
    demoClock().time = demoClock().previousTime = 5;
    options().showStats = true;
  }
  void TearDown() override {
    scene.reset();
    GlTest::TearDown();
  }

  // 4 x 4 pixels; the two columns at the left may have a paint of their own.
  static int add(const char* name, const Paint& paint, const Paint& left) {
    const auto pixel = [](const Paint& p) {
      const auto byte = [](double value) { return static_cast<std::uint32_t>(value * 255 + 0.5); };
      return packPixel(byte(p[0]), byte(p[1]), byte(p[2]), byte(p[3]));
    };
    TextureEntry entry;
    entry.width = entry.height = 4;
    for (int i = 0; i < 16; ++i) entry.pixels.push_back(pixel(i % 4 < 2 ? left : paint));
    return addTexture(std::move(entry), name, false);
  }
  static int add(const char* name, const Paint& paint) { return add(name, paint, paint); }

  void spoilState(bool solid, GLenum culled) const {
    glDisable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(decoy));
    for (const GLenum state : {GL_LIGHTING, GL_CULL_FACE, GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T})
      glEnable(state);
    glCullFace(culled);
    glAlphaFunc(GL_LESS, 0);
    glBlendFunc(GL_ONE, GL_ZERO);
    glColor4f(0.1f, 0.9f, 0.1f, 0.9f);
    (solid ? glDisable : glEnable)(GL_ALPHA_TEST);
    glDepthMask(solid ? GL_FALSE : GL_TRUE);
    glMatrixMode(GL_MODELVIEW);
  }

  void expectPixels(const Sprite& sprite) const {
    for (const GLenum culled : {GL_FRONT, GL_BACK}) {
      SCOPED_TRACE(std::string(sprite.name) + (culled == GL_BACK ? ", backs culled" : ", fronts culled"));
      glDepthMask(GL_TRUE);
      glDepthFunc(GL_LEQUAL);
      glClearColor(static_cast<float>(ground[0]), static_cast<float>(ground[1]),
                   static_cast<float>(ground[2]), 1);
      glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
      spoilState(sprite.solid, culled);
      sprite.draw();
      for (const auto& [x, y, paint, depth] : sprite.probes) {
        const std::array<int, 4> pixel = readPixel(x, y);
        for (std::size_t i = 0; i < 3; ++i) {
          EXPECT_NEAR(pixel[i] / 255.0, std::min(paint[i], 1.0), 0.012) << x << ", " << y << " channel " << i;
        }
        float found = 0;
        glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &found);
        EXPECT_NEAR(found, depth, 1e-5) << x << ", " << y;
      }
    }
  }

  struct Delete {
    void operator()(SceneOuttro* owned) const { owned->destroy(owned); }
  };
  TemporaryFolder folder;
  std::unique_ptr<SceneOuttro, Delete> scene;
  int decoy = 0, beamTexture = 0;
};

const Vector down(0, -1, 0), right(1, 0, 0);

TEST_F(SpritePixels, LightsGlowFlareAndRoll) {
  Light glow;
  glow.colour = {1, 0.4f, 0.4f};
  glow.glow = true;
  glow.flareStrength = 0;
  Light flare, shape, both;
  for (Light* light : {&flare, &shape, &both}) {
    light->colour = {0.8f, 0.4f, 0.2f};
    light->flareStrength = 0.5f;
    std::snprintf(light->flareTexture, textureNameSize, "data\\star");
  }
  both.colour = {1, 0.4f, 0.4f};
  both.glow = true;
  both.flareStrength = -1;
  Light ball;
  ball.flareKind = FlareKind::vectorBall;
  ball.position.z = -0.5f;
  ball.colour = {0.5f, 1, 0.25f};
  const auto draw = [](Light& light, float alpha) {
    return [&light, alpha] { light.drawFlare(down, right, 0, alpha); };
  };

  ParticleSystem system;
  shape.position = {5, -3, 0};
  system.addShape(&shape);
  system.particles.resize(2);
  Particle& particle = system.particles[1];
  particle.alive = true;
  particle.alpha = 0.5f;
  particle.position = {0.5f, 0.5f, 0.25f};
  particle.shape = &shape;

  const Paint glowing = times(glowPaint, {1, 1, 1, 0.5});
  const Paint flaring = times(flarePaint, {0.8 * 0.5 * 0.5, 0.4 * 0.5 * 0.5, 0.2 * 0.5 * 0.5, 1});
  const Paint darkening = times(flarePaint, {0.5, 0.4 * 0.5, 0.4 * 0.5, 1});
  const Paint rolling = times(ballPaint, {0.5, 1, 0.25, 0.5});
  const Paint dim = times(flaring, {0.5, 0.5, 0.5, 1});
  const double s = 0.5 / 60;  // centre of a sprite's first pixel
  for (const Sprite& sprite : {
           Sprite{"glow",
                  draw(glow, 0.5f),
                  false,
                  {{45, 30, added(glowing, ground)},
                   {30, 30, added(times(atEdge(glowPaint, s), {1, 1, 1, 0.5}), ground)},
                   {29, 30, ground}}},
           Sprite{"flare",
                  draw(flare, 0.5f),
                  false,
                  {{45, 30, added(flaring, ground)},
                   {30, 30, added(atEdge(flaring, s), ground)},
                   {91, 30, ground}}},
           Sprite{"darkening flare over its glow",  // of half the size
                  draw(both, 0.5f),
                  false,
                  {{40, 30, added(glowing, ground)}, {52, 30, darkened(darkening, added(glowing, ground))}}},
           // The clear half shows nothing and has no depth.
           Sprite{"ball",
                  draw(ball, 0.5f),
                  true,
                  {{40, 30, ground}, {75, 30, over(rolling, ground), 0.25}, {95, 30, ground}}},
           Sprite{"particle",
                  [&system] { system.draw(down, right, false, 0, 0.5f); },
                  false,
                  {{75, 45, added(dim, ground)}, {59, 45, ground}, {75, 29, ground}, {15, 45, ground}}},
       }) {
    expectPixels(sprite);
  }
}

TEST_F(SpritePixels, BeamsShineThroughTheAir) {
  VolLight light(2);
  light.position.z = 0.5f;
  light.spotDirection = {0, 0, -1};
  light.coneAngle = 90;
  light.range = 1;
  light.setBeamTexture("data\\beam");
  light.prepareBeams(1);
  EXPECT_EQ(light.beams.texture, beamTexture);
  // A fan of two triangles, from the middle to the left and to the right edge, where u is 0; v is 0
  // everywhere.
  const Paint beam = times(atEdge(beamPaint, 0), {1, 1, 1, 1.7 / 2 * 0.5});
  expectPixels({"beams",
                [&light] { light.drawBeams(0, 0.5f); },
                false,
                {{35, 30, added(beam, ground)},
                 {85, 30, added(beam, ground)},
                 {0, 30, added(atEdge(beam, 0.5 / 60), ground)},
                 {60, 50, ground}}});
}

TEST_F(SpritePixels, TheClosingScenesFlatEffects) {
  writeFile("text.txt", "P");
  callFunction(sceneOuttro.functions, *scene, "preloadFont", 0, {"font"});
  callFunction(sceneOuttro.functions, *scene, "preloadText", 0, {"text.txt"});
  scene->scrollPos = 0;
  const auto call = [this](const char* function, const std::vector<Argument>& arguments) {
    return
        [this, function, arguments] { callFunction(sceneOuttro.functions, *scene, function, 0, arguments); };
  };
  // The field's middle, 210 and 410 away: alpha and size in pixels follow.
  scene->stars = {{250, 250, 200}, {250 + 60, 250, 400}};
  const auto star = [](double distance) { return over({1, 1, 1, 1 - distance / 510}, ground); };
  const Paint bar = times(copperPaint, {0.5, 1, 0.75, 1});
  for (const Sprite& sprite : {
           // Eleven times the screen: a glyph is 66 pixels wide, one begins in the middle.
           Sprite{"scroller",
                  call("drawScroller", {0, 4, 0, 0, 1, 0, 0}),
                  false,
                  {{20, 40, over(fontPaint, ground)},
                   {60, 30, over(atEdge(fontPaint, 0.5 / 66), ground)},
                   {30, 54, ground}}},
           // The texture is repeated beyond 0 to 1.
           Sprite{"copper bar",
                  call("showCopperBars", {1, 1, 0, 0, 1, 0, 0.5, 1, 0.75}),
                  false,
                  {{1, 30, over(bar, ground)}, {60, 28, over(bar, ground)}, {60, 34, ground}}},
           Sprite{"stars",
                  [draw = call("drawStars", {0, 0, 0})] {
                    glEnable(GL_TEXTURE_2D);
                    glDepthFunc(GL_NEVER);
                    glEnable(GL_STENCIL_TEST);
                    glStencilFunc(GL_NEVER, 0, 0);
                    draw();
                  },
                  false,
                  {{60, 30, star(210)}, {59, 29, star(210)}, {63, 30, ground}, {65, 29, star(410)}}},
       }) {
    expectPixels(sprite);
    EXPECT_TRUE(glFlag(GL_DEPTH_WRITEMASK)) << sprite.name;
  }
}

TEST_F(SpritePixels, TheOverlaysTextLiesOverEverything) {
  expectPixels({"text",
                [] {
                  glDepthMask(GL_FALSE);
                  glDepthFunc(GL_NEVER);
                  drawText(30, 14, "@@@");
                },
                false,
                {{62, 31, over(fontPaint, ground)}, {57, 31, ground}, {63, 28, ground}}});
}

}  // namespace
}  // namespace vex
