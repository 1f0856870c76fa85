#include "tests/support/gl_fixture.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "textures/gl_setup.h"
#include "textures/texture_cache.h"

namespace vex {

void GlTest::SetUp() {
  const std::string failure = openOffscreenContext(glTestWidth, glTestHeight);
  ASSERT_EQ(failure, "");
  setUpGlState();
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void GlTest::TearDown() {
  destroyTextures();
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
  closeOffscreenContext();
}

namespace {

constexpr std::size_t floatsPerVertex = 12;  // GL_4D_COLOR_TEXTURE

FeedbackVertex readVertex(std::span<const float> values, const int (&viewport)[4]) {
  const auto normalized = [](float window, int start, int extent) {
    return (window - static_cast<float>(start)) / static_cast<float>(extent) * 2 - 1;
  };
  FeedbackVertex vertex;
  vertex.x = normalized(values[0], viewport[0], viewport[2]);
  vertex.y = normalized(values[1], viewport[1], viewport[3]);
  vertex.z = values[2] * 2 - 1;
  vertex.w = values[3];
  for (std::size_t i = 0; i < 4; ++i) {
    vertex.colour[i] = values[4 + i];
    vertex.texture[i] = values[8 + i];
  }
  return vertex;
}

}  // namespace

std::vector<FeedbackPrimitive> captureFeedback(const std::function<void()>& draw) {
  constexpr int capacity = 4'000'000;
  const std::unique_ptr<float[]> buffer(new float[capacity]);
  glFeedbackBuffer(capacity, GL_4D_COLOR_TEXTURE, buffer.get());
  glRenderMode(GL_FEEDBACK);
  draw();
  const int size = glRenderMode(GL_RENDER);
  std::vector<FeedbackPrimitive> primitives;
  if (size < 0) {
    ADD_FAILURE() << "feedback buffer too small";
    return primitives;
  }
  int viewport[4];
  glGetIntegerv(GL_VIEWPORT, viewport);
  std::span<const float> rest(buffer.get(), static_cast<std::size_t>(size));
  const auto take = [&](std::size_t count) {
    const std::span<const float> taken = rest.first(count);
    rest = rest.subspan(count);
    return taken;
  };
  while (!rest.empty()) {
    FeedbackPrimitive primitive{.token = static_cast<GLenum>(take(1)[0]), .vertices = {}};
    if (primitive.token == GL_LINE_RESET_TOKEN) primitive.token = GL_LINE_TOKEN;
    std::size_t count = 1;
    if (primitive.token == GL_LINE_TOKEN) count = 2;
    if (primitive.token == GL_POLYGON_TOKEN) count = static_cast<std::size_t>(take(1)[0]);
    if (primitive.token == GL_PASS_THROUGH_TOKEN) {
      take(1);
      continue;
    }
    for (std::size_t i = 0; i < count; ++i) {
      primitive.vertices.push_back(readVertex(take(floatsPerVertex), viewport));
    }
    primitives.push_back(std::move(primitive));
  }
  return primitives;
}

std::vector<FeedbackPrimitive> captureUnclipped(const std::function<void()>& draw) {
  constexpr float shrink = 16;
  float projection[16];
  glGetFloatv(GL_PROJECTION_MATRIX, projection);
  const int mode = glInteger(GL_MATRIX_MODE);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  glScalef(1 / shrink, 1 / shrink, 1);
  glMultMatrixf(projection);
  glMatrixMode(static_cast<GLenum>(mode));
  std::vector<FeedbackPrimitive> primitives = captureFeedback(draw);
  glMatrixMode(GL_PROJECTION);
  glLoadMatrixf(projection);
  glMatrixMode(static_cast<GLenum>(mode));
  for (FeedbackPrimitive& primitive : primitives) {
    for (FeedbackVertex& vertex : primitive.vertices) {
      vertex.x *= shrink;
      vertex.y *= shrink;
    }
  }
  return primitives;
}

std::vector<std::array<FeedbackVertex, 4>> asQuads(const std::vector<FeedbackPrimitive>& primitives) {
  // The driver sends corners 0 1 3, then 1 2 3.
  const auto same = [](const FeedbackVertex& a, const FeedbackVertex& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z && a.texture == b.texture;
  };
  std::vector<std::array<FeedbackVertex, 4>> quads;
  for (std::size_t i = 0; i + 1 < primitives.size(); i += 2) {
    const auto& first = primitives[i].vertices;
    const auto& second = primitives[i + 1].vertices;
    if (first.size() != 3 || second.size() != 3 || !same(first[1], second[0]) || !same(first[2], second[2])) {
      ADD_FAILURE() << "primitives " << i << " and " << i + 1 << " are not the halves of a quad";
      return quads;
    }
    quads.push_back({first[0], first[1], second[1], first[2]});
  }
  EXPECT_EQ(primitives.size() % 2, 0u);
  return quads;
}

int glInteger(GLenum name) {
  int value = 0;
  glGetIntegerv(name, &value);
  return value;
}

bool glFlag(GLenum name) {
  GLboolean value = GL_FALSE;
  glGetBooleanv(name, &value);
  return value == GL_TRUE;
}

std::array<float, 4> glFloats(GLenum name) {
  std::array<float, 16> values{};  // as many as any name gives
  glGetFloatv(name, values.data());
  return {values[0], values[1], values[2], values[3]};
}

BlendFactors glBlendFactors() {
  return {.source = glInteger(GL_BLEND_SRC), .destination = glInteger(GL_BLEND_DST)};
}

std::array<int, 4> readPixel(int x, int y) {
  std::uint8_t bytes[4] = {};
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
  return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

std::vector<std::uint8_t> readTexture(int id, int& width, int& height) {
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(id));
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  if (!bytes.empty()) glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
  return bytes;
}

}  // namespace vex
