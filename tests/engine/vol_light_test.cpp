#include "engine/vol_light.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <set>
#include <vector>

#include "base/report.h"
#include "tests/support/log_text.h"
#include "tests/support/vectors.h"

namespace vex {
namespace {

TEST(VolLight, FansThroughTheGridInAZigzag) {
  const struct {
    int size;
    std::vector<std::array<std::uint32_t, 3>> faces;
  } cases[] = {
      {2, {{4, 0, 2}, {4, 2, 1}, {4, 1, 3}}},
      // Columns and rows (0,0) (0,1) (1,0) (2,0) (1,1) (0,2) (1,2) (2,1) (2,2).
      {3, {{9, 0, 3}, {9, 3, 1}, {9, 1, 2}, {9, 2, 4}, {9, 4, 6}, {9, 6, 7}, {9, 7, 5}, {9, 5, 8}}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.size);
    const VolLight light(row.size);
    std::vector<std::uint32_t> indices;
    ASSERT_EQ(light.beams.faces.size(), row.faces.size());
    for (std::size_t k = 0; k < row.faces.size(); ++k) {
      EXPECT_EQ(light.beams.faces[k].v, row.faces[k]);
      indices.insert(indices.end(), row.faces[k].begin(), row.faces[k].end());
    }
    EXPECT_EQ(light.beams.indices, indices);
  }
}

TEST(VolLight, VisitsEveryCellOnceStepByStep) {
  const VolLight light(32);
  std::set<std::uint32_t> visited{light.beams.faces[0].v[1]};
  for (const Face& face : light.beams.faces) {
    const auto [apex, from, to] = face.v;
    EXPECT_EQ(apex, 1024u);
    visited.insert(to);
    const int columns = std::abs(static_cast<int>(to % 32) - static_cast<int>(from % 32));
    const int rows = std::abs(static_cast<int>(to / 32) - static_cast<int>(from / 32));
    EXPECT_EQ(std::max(columns, rows), 1);
  }
  EXPECT_EQ(visited.size(), 1024u);
  EXPECT_EQ(*visited.rbegin(), 1023u);
}

TEST(VolLight, SetsUpItsBeams) {
  const VolLight light(4);
  EXPECT_EQ(light.kind, ObjectKind::volLight);
  EXPECT_EQ(light.depthSize(), 4);
  EXPECT_EQ(light.depthBuffer, std::vector<float>(16, 0.0f));
  EXPECT_STREQ(light.beams.name, ".beams");
  EXPECT_FLOAT_EQ(light.beams.opacity, 1.7f / 4);
  EXPECT_EQ(light.beams.texture, -1);
  EXPECT_EQ(light.beams.faceCount, 15u);
  std::vector<float> uvs(2 * 17, 0.0f);
  uvs[2 * 16] = 1.0f;
  EXPECT_EQ(light.beams.uvs, uvs);
  EXPECT_EQ(light.beams.positions.size(), 3u * 17);
  EXPECT_EQ(light.beams.normals, std::vector<float>(3 * 17, 0.0f));
}

TEST(VolLight, HoldsItsSizeWithinReason) {
  const struct { int size, held; } cases[] = {{-3, 2}, {1, 2}, {std::numeric_limits<int>::max(), 1024}};
  for (const auto& [size, held] : cases) {
    const VolLight light(size);
    const auto samples = static_cast<std::size_t>(held) * static_cast<std::size_t>(held);
    EXPECT_EQ(light.depthSize(), held) << size;
    EXPECT_EQ(light.depthBuffer.size(), samples) << size;
    EXPECT_EQ(light.beams.vertexCount, samples + 1) << size;
    EXPECT_EQ(light.beams.indices.size(), 3 * (samples - 1)) << size;
  }
}

// What a perspective depth map holds for a surface at `distance` along the axis.
float depthOf(double distance, double near, double far) {
  return static_cast<float>(far / (far - near) * (1.0 - near / distance));
}

TEST(VolLight, PutsBeamsWhereTheDepthMapSawSurfaces) {
  VolLight light(3);
  light.position = {100, 50, 20};
  light.spotDirection = {0, 0, -4};  // right is +x, down is -y
  light.coneAngle = 90.0f;
  light.range = 10.0f;
  // Distances by row of the image, from the top; the buffer holds the rows from the bottom.
  const double distances[3][3] = {{10, 2, 3}, {1, 5, 7}, {4, 6, 8}};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      light.depthBuffer[(2 - row) * 3 + column] = depthOf(distances[row][column], 1, 10);
    }
  }
  light.prepareBeams(1.0f);
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      const double z = distances[row][column];  // also the half-width there, under 90 degrees
      expectNear(light.beams.vertices[3 * row + column].position, 100 + z * (static_cast<double>(column) - 1),
                 50 - z * (static_cast<double>(row) - 1), 20 - z);
    }
  }
  expectNear(light.beams.vertices[9].position, 100, 50, 20, 0);
  for (std::size_t i = 0; i < 10; ++i) {
    const Vector& vertex = light.beams.vertices[i].position;
    expectNear(vertex, light.beams.positions[3 * i], light.beams.positions[3 * i + 1],
               light.beams.positions[3 * i + 2], 0);
  }
}

TEST(VolLight, FillsAPyramidWhereNothingStands) {
  VolLight light(32);
  light.spotDirection = {3, -2, 5};
  light.coneAngle = 60.0f;
  light.range = 40.0f;
  light.depthBuffer.assign(light.depthBuffer.size(), 1.0f);
  light.prepareBeams(1.0f);
  const double halfWidth = 40 * std::tan(30 * std::numbers::pi / 180);
  Vector axis = light.spotDirection;
  axis.normalize();
  for (std::size_t i = 0; i < 1024; ++i) {
    const Vector& vertex = light.beams.vertices[i].position;
    EXPECT_NEAR(dot(vertex, axis), 40, 1e-3);
    EXPECT_LE((vertex - axis * 40).length(), halfWidth * std::sqrt(2.0) + 1e-3);
  }
  EXPECT_NEAR((light.beams.vertices[0].position - light.beams.vertices[31].position).length(), 2 * halfWidth,
              1e-3);
  EXPECT_NEAR((light.beams.vertices[0].position - light.beams.vertices[992].position).length(), 2 * halfWidth,
              1e-3);
}

TEST(VolLight, CollapsesToALineStraightDown) {
  VolLight light(2);
  light.spotDirection = {0, -3, 0};
  light.range = 12.0f;
  light.depthBuffer = {1, 1, 0, 0};  // zeros, as before the first pass, stand for the near plane
  light.prepareBeams(1.0f);
  for (const std::size_t i : {0u, 1u}) expectNear(light.beams.vertices[i].position, 0, -1, 0);
  for (const std::size_t i : {2u, 3u}) expectNear(light.beams.vertices[i].position, 0, -12, 0);
}

TEST(VolLight, LooksAlongItsAxis) {
  for (const Vector& direction :
       {Vector(0, 0, -3), Vector(0, 0, 3), Vector(2, 0, 0), Vector(1, -2, 3), Vector(-4, 5, -1)}) {
    VolLight light(2);
    light.position = {7, 8, 9};
    light.spotDirection = direction;
    const Matrix view = light.viewMatrix();
    expectNear(transformPoint(view, light.position), 0, 0, 0);
    expectNear(transformPoint(view, light.position + direction), 0, 0, -direction.length());
    // The image's top is up in the world, its right is what the beams take for right.
    EXPECT_GT(transformPoint(view, light.position + Vector(0, 1, 0)).y, 0.0f);
    EXPECT_GT(transformPoint(view, light.position + cross(direction, {0, 1, 0})).x, 0.0f);
  }
  VolLight down(2);
  down.spotDirection = {0, -3, 0};  // a half turn about y, no pitch
  expectNear(transformPoint(down.viewMatrix(), {1, 2, 3}), -1, 2, -3);
}

Animation moveTo(const Vector& place) {
  Animation track;
  track.type = TrackType::position;
  track.frameLength = 10.0f;
  track.duration = 5.0f;
  track.allocKeys(1);
  track.insertKey(0.0f, place, 0.0f);
  return track;
}

TEST(VolLight, TakesThePlaceOfALight) {
  auto* source = new Light;
  std::snprintf(source->name, objectNameSize, "VolumLight");
  source->spotDirection = {1, 2, 3};
  source->position = {4, 5, 6};
  source->range = 70.0f;
  source->coneAngle = 80.0f;
  source->active = true;
  source->intensity = 9.0f;
  source->addAnimation(moveTo({1, 0, 0}));
  source->target = std::make_unique<Animation>(moveTo({0, 2, 0}));
  VolLight* light = makeVolumetric(source, 8);
  EXPECT_STREQ(light->name, "VolumLight");
  EXPECT_EQ(light->spotDirection, Vector(1, 2, 3));
  EXPECT_EQ(light->position, Vector(4, 5, 6));
  EXPECT_EQ(light->range, 70.0f);
  EXPECT_EQ(light->coneAngle, 80.0f);
  EXPECT_EQ(light->size, 8);
  EXPECT_FALSE(light->active);
  EXPECT_EQ(light->intensity, 1.0f);
  EXPECT_EQ(light->track(TrackType::scale), nullptr);
  ASSERT_NE(light->track(TrackType::position), nullptr);
  EXPECT_EQ(light->track(TrackType::position)->keyX[0], 1.0f);
  ASSERT_NE(light->target, nullptr);
  EXPECT_EQ(light->target->keyY[0], 2.0f);
  EXPECT_EQ(light->target->duration, 1.0f);
  destroyLight(light);
}

TEST(VolLight, LogsWhatIsDestroyed) {
  EXPECT_EQ(logText([] {
              auto* source = new Light;
              std::snprintf(source->name, objectNameSize, "VolumLight");
              VolLight* light = makeVolumetric(source, 8);
              logPrintf("converted\n");
              destroyLight(light);
            }),
            "  destroying light VolumLight\n"
            "converted\n"
            "  destroying VolLight VolumLight\n"
            "  destroying mesh .beams\n"
            "  destroying light VolumLight\n");
}

}  // namespace
}  // namespace vex
