#pragma once

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/offscreen_context.h"

// Tests of drawing: an offscreen context, GL feedback read as vertices, and state read as values.
// A body run by fatalText() may use files and pixels but must not draw: the rasteriser's threads do
// not live in the child.

namespace vex {

inline constexpr int glTestWidth = 120;
inline constexpr int glTestHeight = 60;

// Each test gets a fresh context of glTestWidth x glTestHeight pixels with identity matrices, the
// state of setUpGlState(), and black, far, zeroed buffers. Its textures go with the context.
class GlTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

struct FeedbackVertex {
  float x = 0, y = 0, z = 0;  // normalized device coordinates of the viewport at the end of the drawing
  float w = 1;                // clip coordinate
  std::array<float, 4> colour{};
  // s, t, r, q as given to the GL, also with texturing off or no texture bound: they say nothing about what
  // is drawn. Generated coordinates take their place only while a complete texture is bound and enabled.
  std::array<float, 4> texture{};
};

struct FeedbackPrimitive {
  GLenum token = 0;  // GL_POINT_TOKEN, GL_LINE_TOKEN (also for GL_LINE_RESET_TOKEN), GL_POLYGON_TOKEN
  std::vector<FeedbackVertex> vertices;
};

// What `draw` sends to the rasteriser, clipped to the view volume, culled where culling is on. The
// driver splits quads and polygons into triangles. Neither colours nor depths are written, and whether
// texturing, blending, tests and fog are on cannot be seen: that takes pixels.
std::vector<FeedbackPrimitive> captureFeedback(const std::function<void()>& draw);

// For drawing in normalized device coordinates under the current projection: a projection that
// shrinks 16 times is put around it, so that nothing is clipped, and is taken out of the result.
std::vector<FeedbackPrimitive> captureUnclipped(const std::function<void()>& draw);

// The triangles of a drawing made of GL_QUADS only, put together again: four vertices each, in the
// order given to the GL. Fails the test when they do not pair up.
std::vector<std::array<FeedbackVertex, 4>> asQuads(const std::vector<FeedbackPrimitive>& primitives);

int glInteger(GLenum name);
bool glFlag(GLenum name);
std::array<float, 4> glFloats(GLenum name);

struct BlendFactors {
  int source = 0;
  int destination = 0;
  bool operator==(const BlendFactors&) const = default;
};
BlendFactors glBlendFactors();

// Red, green, blue, alpha of one pixel, counted from the lower left.
std::array<int, 4> readPixel(int x, int y);

// Bytes of texture `id` as R, G, B, A, first row first; empty when it has no image.
std::vector<std::uint8_t> readTexture(int id, int& width, int& height);

}  // namespace vex
