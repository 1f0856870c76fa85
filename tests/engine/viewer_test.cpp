#include "engine/viewer.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/test_scene.h"
#include "tests/support/vectors.h"

namespace vex {
namespace {

Vector seen(Viewer& viewer, const Vector& p) {
  return transformPoint(viewer.getMatrix(0), p);
}

}  // namespace

TEST(Viewer, LooksAlongMinusZ) {
  Viewer viewer;
  viewer.target = {0, 0, -5};
  const Matrix view = viewer.getMatrix(0);
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_NEAR(view.m[r][c], r == c ? 1 : 0, 1e-5f);
  }
  expectNear(viewer.right, {1, 0, 0});
  expectNear(viewer.down, {0, -1, 0});
}

// The target lies ahead; `right` and `down` of the world are right and down of the view.
TEST(Viewer, TurnsToItsTarget) {
  for (const Vector& direction : {Vector(0, 0, 5), Vector(5, 0, 0), Vector(-5, 0, 0), Vector(3, 2, -1),
                                  Vector(-3, -2, -1), Vector(-1, 4, 2), Vector(1, -4, 2)}) {
    Viewer viewer;
    viewer.position = {10, 20, 30};
    viewer.target = viewer.position + direction;
    expectNear(seen(viewer, viewer.target), {0, 0, -direction.length()});
    expectNear(seen(viewer, viewer.position + viewer.right), {1, 0, 0});
    expectNear(seen(viewer, viewer.position + viewer.down), {0, -1, 0});
    EXPECT_EQ(viewer.right.y, 0.0f);
    EXPECT_LT(viewer.down.y, 0.0f);
  }
}

// A turn by a takes x to (cos a, -sin a).
TEST(Viewer, RollsAfterwards) {
  Viewer viewer;
  viewer.target = {0, 0, 7};
  viewer.roll = 0.5f;
  viewer.getMatrix(0);
  expectNear(seen(viewer, viewer.right), {std::cos(0.5f), -std::sin(0.5f), 0});
  expectNear(seen(viewer, viewer.target), {0, 0, -7});
}

TEST(Viewer, StraightUpThereAreNoScreenAxes) {
  for (const float height : {3.0f, -3.0f}) {
    Viewer viewer;
    viewer.right = viewer.down = {1, 1, 1};
    viewer.target = {0, height, 0};
    expectNear(seen(viewer, {1, 2, 3}), {-1, 2, -3});  // half a turn about y
    EXPECT_EQ(viewer.right, Vector());
    EXPECT_EQ(viewer.down, Vector());
  }
}

// Offsets whose squares are 0 count as none.
TEST(Viewer, StraightUpButForNextToNothing) {
  Viewer viewer;
  viewer.target = {1e-30f, 3.0f, -1e-30f};
  expectNear(seen(viewer, {1, 2, 3}), {-1, 2, -3});
}

TEST(Viewer, FollowsItsTracks) {
  Viewer viewer;
  viewer.addAnimation(straightPath({0, 0, 0}, {10, 0, 0}));
  viewer.addTargetAnimation(straightPath({0, 0, -5}, {10, 10, -5}));
  EXPECT_EQ(viewer.positionTrack->duration, 1.0f);
  viewer.setAnimParams(4, true);
  viewer.getMatrix(5);
  expectNear(viewer.position, {2.5f, 0, 0});
  expectNear(viewer.target, {2.5f, 2.5f, -5});
}

TEST(Viewer, RefusesTracksItCannotFollow) {
  Viewer viewer;
  Animation turn;
  turn.type = TrackType::rotation;
  const Animation path = straightPath({}, {});
  viewer.addAnimation(path);
  viewer.addTargetAnimation(path);
  EXPECT_EQ(fatalText([&] { viewer.addAnimation(turn); }), "Viewer supports only position keys");
  EXPECT_EQ(fatalText([&] { viewer.addTargetAnimation(turn); }), "Viewer supports only position keys");
  EXPECT_EQ(fatalText([&] { viewer.addAnimation(path); }), "Viewer: duplicated animations of type position");
  EXPECT_EQ(fatalText([&] { viewer.addTargetAnimation(path); }),
            "Viewer: duplicated target animation of type position");
}

TEST(Viewer, LogsItsDestruction) {
  EXPECT_EQ(logText([] { const Viewer viewer; }), "  destroying viewer\n");
}

}  // namespace vex
