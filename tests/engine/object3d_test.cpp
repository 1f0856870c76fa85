#include "engine/object3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>

#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/test_scene.h"
#include "tests/support/vectors.h"

namespace vex {
namespace {

constexpr float quarterTurn = 1.57079633f;
const Vector xAxis(1, 0, 0), zAxis(0, 0, 1);

// From nothing at frame 0 to the whole turn at frame 10; 10 seconds long once its owner says so.
Animation turnTrack(const Vector& axis, float angle) {
  Animation track;
  track.type = TrackType::rotation;
  track.frameLength = 10.0f;
  track.allocKeys(2);
  track.insertKey(0, axis, 0.0f);
  track.insertKey(10, axis, angle);
  return track;
}

Animation scaleTrack(const Vector& factors) {
  Animation track;
  track.type = TrackType::scale;
  track.allocKeys(1);
  track.insertKey(0, factors, 0.0f);
  return track;
}

Vector moved(Object3D& object, float seconds, const Vector& p) {
  return transformPoint(object.getMatrix(seconds), p);
}

}  // namespace

TEST(Object3D, WithoutTracksStaysWhereItIs) {
  Object3D object;
  object.position = {1, 2, 3};
  object.current = scaling({9, 9, 9});
  expectNear(moved(object, 5, {4, 5, 6}), {4, 5, 6});
  EXPECT_EQ(object.getWorldPosition(), Vector(1, 2, 3));
}

TEST(Object3D, TurnsAboutItsPivot) {
  Object3D object;
  object.position = {5, 0, 0};
  object.addAnimation(turnTrack(zAxis, quarterTurn));
  expectNear(moved(object, 1, {6, 0, 0}), {5, -1, 0});  // x to -y
  expectNear(object.worldPosition, {5, 0, 0});
}

TEST(Object3D, PositionTracksAreAbsolute) {
  Object3D object;
  object.position = {5, 0, 0};
  object.addAnimation(scaleTrack({2, 2, 2}));
  object.addAnimation(turnTrack(zAxis, quarterTurn));
  object.addAnimation(straightPath({0, 0, 0}, {0, 0, 100}));
  // Off the pivot by 1: scaled to 2, turned to -y, then put in its place.
  expectNear(moved(object, 1, {6, 0, 0}), {0, -2, 100});
  expectNear(object.worldPosition, {0, 0, 100});
}

TEST(Object3D, ScalesBeforeItTurnsWhateverCameFirst) {
  Object3D object;
  object.addAnimation(turnTrack(zAxis, quarterTurn));
  object.addAnimation(scaleTrack({3, 1, 1}));
  expectNear(moved(object, 1, {1, 1, 0}), {1, -3, 0});
}

TEST(Object3D, TheBaseMatrixComesBeforeTheTracks) {
  Object3D object;
  object.position = {10, 0, 0};
  object.baseMatrix = scaling({2, 1, 1});
  expectNear(moved(object, 1, {11, 0, 0}), {11, 0, 0});  // without tracks it is not used
  object.addAnimation(turnTrack(zAxis, quarterTurn));
  expectNear(moved(object, 1, {11, 0, 0}), {10, -2, 0});
}

TEST(Object3D, ChildrenFollowTheWholeParent) {
  Object3D parent, child;
  parent.addAnimation(turnTrack(zAxis, quarterTurn));
  child.position = {5, 0, 0};
  child.parent = &parent;
  expectNear(moved(child, 1, {6, 0, 0}), {0, -6, 0});
  expectNear(child.worldPosition, {0, -5, 0});
  expectNear(transformPoint(child.current, {6, 0, 0}), {0, -6, 0});
  child.addAnimation(straightPath({0, 0, 0}, {0, 7, 0}));
  expectNear(moved(child, 1, {5, 0, 0}), {7, 0, 0});
  expectNear(child.worldPositionAt(0), {0, 0, 0});
}

TEST(Object3D, AFixedTimeIsItsOwn) {
  Object3D parent, child;
  parent.addAnimation(straightPath({0, 0, 0}, {0, 100, 0}));
  child.parent = &parent;
  child.addAnimation(straightPath({0, 0, 0}, {40, 0, 0}));
  for (Object3D* object : {&parent, &child}) object->setAnimParams(10, false);
  child.setFixedTime(2.5f);
  expectNear(moved(child, 5, {}), {10, 50, 0});
  child.setFixedTime(0);
  expectNear(moved(child, 5, {}), {0, 50, 0});
  child.setFixedTime(-1);
  expectNear(moved(child, 5, {}), {20, 50, 0});
}

// Parents follow the scene's time whoever asks, and a parent with a fixed time of its own keeps that.
TEST(Object3D, AFixedTimeGoesNeitherUpNorDown) {
  constexpr float theta = 0.1f;  // of a turn a second
  for (const std::uint8_t flags : {std::uint8_t{0}, skeletonFlag}) {
    SCOPED_TRACE(int{flags});
    Object3D grandparent, parent, child;
    parent.parent = &grandparent;
    child.parent = &parent;
    float height = 1;
    for (Object3D* object : {&grandparent, &parent, &child}) {
      object->flags = flags;
      object->addAnimation(straightPath({}, {0, 0, 10 * height}));
      object->addAnimation(turnTrack(zAxis, 10 * theta * height));
      object->setAnimParams(10, false);
      height *= 10;
    }
    parent.setFixedTime(3);
    child.setFixedTime(2);
    const float angle = theta * (5 * 1 + 3 * 10 + 2 * 100);
    expectNear(moved(child, 5, {1, 0, 0}), {std::cos(angle), -std::sin(angle), 5 * 1 + 3 * 10 + 2 * 100});
    expectNear(transformPoint(child.getRotation(5), {1, 0, 0}), {std::cos(angle), -std::sin(angle), 0});
  }
}

TEST(Object3D, SkeletonHelpersGoToTheirPlaceAgainUnderAParent) {
  Object3D parent, helper;
  parent.addAnimation(straightPath({0, 0, 0}, {0, 0, 9}));
  helper.flags = skeletonFlag | hiddenFlag;
  helper.position = {5, 0, 0};
  helper.baseMatrix = scaling({9, 9, 9});  // helpers do without
  helper.addAnimation(straightPath({0, 0, 0}, {1, 2, 3}));
  expectNear(moved(helper, 1, {6, 0, 0}), {2, 2, 3});
  helper.parent = &parent;
  expectNear(moved(helper, 1, {6, 0, 0}), {7, 2, 12});
  EXPECT_EQ(helper.worldPosition, Vector()) << "not refreshed";
}

TEST(Object3D, ManualTransformsWorkAboutThePivot) {
  Object3D object;
  object.position = {5, 0, 0};
  object.resetTransform();
  object.translate({1, 0, 0});
  object.rotate(zAxis, quarterTurn);  // about (6, 0, 0)
  expectNear(moved(object, 0, {5, 0, 0}), {6, 0, 0});
  expectNear(moved(object, 0, {6, 0, 0}), {6, -1, 0});
  object.resetTransform();
  object.scale({1, 3, 1});
  expectNear(moved(object, 0, {6, 2, 0}), {6, 6, 0});
  object.resetTransform();
  expectNear(moved(object, 0, {6, 2, 0}), {6, 2, 0});
  EXPECT_FALSE(object.manual);
}

// By resetTransform() at once, by getMatrix() for the next frame's transforms.
TEST(Object3D, ThePivotIsPutBack) {
  const auto byReset = [](Object3D& object) { object.resetTransform(); };
  const auto byMatrix = [](Object3D& object) {
    object.getMatrix(0);
    object.current.setIdentity();
  };
  for (const auto& putBack :
       {std::function<void(Object3D&)>(byReset), std::function<void(Object3D&)>(byMatrix)}) {
    Object3D object;
    object.position = {5, 0, 0};
    object.resetTransform();
    object.translate({1, 2, 3});
    putBack(object);
    object.rotate(zAxis, quarterTurn);
    expectNear(transformPoint(object.current, {6, 0, 0}), {5, -1, 0});
    object.scale({2, 2, 2});
    expectNear(transformPoint(object.current, {6, 0, 0}), {5, -2, 0});
  }
}

TEST(Object3D, ManualTransformsDoNotCollectTheParent) {
  Object3D parent, child;
  parent.translate({0, 10, 0});
  child.parent = &parent;
  child.translate({1, 0, 0});
  for (int frame = 0; frame < 3; ++frame) {
    expectNear(moved(child, 0, {}), {1, 10, 0});
    expectNear(child.worldPosition, {1, 10, 0});
  }
}

// A quarter about x, then one about z from the base, then the parent's.
TEST(Object3D, RotationIsTracksBaseAndParents) {
  const auto turned = [](const Object3D& object, const Vector& v) {
    return transformPoint(object.getRotation(1), v);
  };
  Object3D parent, object;
  object.position = {7, 8, 9};
  object.baseMatrix = rotation(zAxis, quarterTurn);
  expectNear(turned(object, {1, 0, 0}), {0, -1, 0});
  object.addAnimation(turnTrack(xAxis, quarterTurn));
  object.addAnimation(straightPath({5, 5, 5}, {5, 5, 5}));
  expectNear(turned(object, {0, 0, 1}), {1, 0, 0});  // z to y, y to x
  parent.baseMatrix = scaling({1, 2, 4});
  object.parent = &parent;
  expectNear(turned(object, {1, 0, 0}), {0, -2, 0});
}

TEST(Object3D, TracksAreCopiesInTheirSlots) {
  Object3D object;
  std::snprintf(object.name, objectNameSize, "Wing");
  EXPECT_EQ(object.tracks, nullptr);
  Animation path = straightPath({}, {1, 1, 1});
  path.duration = 7;
  Animation* stored = object.addAnimation(path);
  EXPECT_EQ(stored, object.track(TrackType::position));
  EXPECT_EQ(stored->duration, 1.0f);
  object.addAnimation(scaleTrack({1, 1, 1}));
  object.addAnimation(turnTrack(zAxis, 1));
  object.setAnimParams(4, true);
  for (const TrackType type : {TrackType::scale, TrackType::rotation, TrackType::position}) {
    EXPECT_EQ(object.track(type)->duration, 4.0f);
    EXPECT_TRUE(object.track(type)->loop);
  }
  EXPECT_EQ(fatalText([&] { object.addAnimation(scaleTrack({})); }),
            "Object3D Wing: duplicated animation of type scale\n");
  EXPECT_EQ(fatalText([&] { object.addAnimation(turnTrack(zAxis, 1)); }),
            "Object3D Wing: duplicated animation of type rotation\n");
  EXPECT_EQ(fatalText([&] { object.addAnimation(path); }),
            "Object3D Wing: duplicated animation of type position\n");
  for (const TrackType type : {TrackType::none, static_cast<TrackType>(3), static_cast<TrackType>(-1)}) {
    Animation unknown;
    unknown.type = type;
    EXPECT_EQ(fatalText([&] { object.addAnimation(unknown); }),
              "Object3D Wing: addAnimation called with unknown type\n");
  }

  object.removeAnimation(TrackType::scale);
  EXPECT_EQ(object.track(TrackType::scale), nullptr);
  EXPECT_NE(object.track(TrackType::rotation), nullptr);
  object.removeAnimation(TrackType::rotation);
  object.removeAnimation(TrackType::position);
  EXPECT_EQ(object.tracks, nullptr);
  object.removeAnimation(TrackType::position);
}

}  // namespace vex
