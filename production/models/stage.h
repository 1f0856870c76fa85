#pragma once

#include <functional>
#include <string>
#include <vector>

#include "models/model_text.h"
#include "production/geometry/surface.h"
#include "production/image/image.h"

// What a model file holds: objects with their surfaces, materials, lights and cameras, and how they move.
// Everything is in the player's axes, times are in seconds at 30 keys a second, angles in degrees.

namespace vex {

inline constexpr int framesPerSecond = 30;

// --- Motion: lists of keys, made from functions of time.

using MotionKey = ModelKey;
using MotionKeys = ModelKeys;

// Keys each `every` frames from 0 to `seconds`. The player draws a smooth curve through positions, so that
// one key in 10 or 15 frames is enough for a camera.
MotionKeys positionKeys(float seconds, int every, const std::function<Vector(float t)>& place);
MotionKeys scaleKeys(float seconds, int every, const std::function<Vector(float t)>& factors);
// From orientations in the world (axes at right angles, origin ignored); between two keys less than half a
// turn. The turns that come out start at the orientation of rest, which is that of the surface as modelled.
MotionKeys turnKeys(float seconds, int every, const std::function<geometry::Placement(float t)>& orientation);

// 0 to 1 over time from `start` to `end`, at rest before and after.
float eased(float t, float start, float end);
// A loop: a whole number of turns in `seconds`, -1 to 1.
float swing(float t, float seconds, float turns, float phase = 0);

using Motion = ModelMotion;

// --- Materials

struct StageMaterial {
  std::string name{};
  std::string texture{};     // below data\, without extension; empty: none
  bool environment = false;  // sphere map: only on surfaces without mapping
  bool twoSided = false;
  image::Colour4 diffuse{1, 1, 1}, ambient{0, 0, 0}, specular{0, 0, 0};  // alpha is ignored
  float shine = 0.2f;                                                    // 0 to 1
  float shineStrength = 0;                                               // above 0.5 there is a highlight
  float opacity = 1;
};

// --- Objects. Meshes and helpers share one count: their order is that of the list.

struct StageMesh {
  std::string name{};
  std::string parent{};         // of those before it in the list; empty: none
  geometry::Surface surface{};  // in the world, at rest; may be empty for helpers
  Vector pivot{0, 0, 0};
  std::string material{};  // empty for helpers without surface
  Motion motion{};
  bool helper = false;  // hidden
};

struct StageLight {
  std::string name{};
  Vector position{};
  bool on = true;  // takes part in lighting
  image::Colour4 colour{1, 1, 1};
  float intensity = 1;
  bool spot = false;
  Vector target{};         // of spots
  float coneDegrees = 45;  // full opening
  MotionKeys positions{}, targets{};
};

struct StageCamera {
  std::string name{};
  Vector position{}, target{};
  float fieldDegrees = 80;  // the player sees three quarters of it from top to bottom
  float far = 10000;
  MotionKeys positions{}, targets{};
};

// The camera on smooth paths through knots of its eye and its target, which are passed at even times.
StageCamera cameraThrough(StageCamera camera, float seconds, const std::vector<Vector>& eye,
                          const std::vector<Vector>& target);

// The same within `seconds` from a time on, for a shot entered there; the camera stands before and after.
StageCamera cameraDuring(StageCamera camera, float loopSeconds, float from, float seconds,
                         const std::vector<Vector>& eye, const std::vector<Vector>& target);

// One camera for two shots: what the first does before a time and the second from then on; both have keys at
// the same times. The field of sight is the first one's.
StageCamera handedOver(StageCamera first, float at, const StageCamera& second);

struct Stage {
  std::string name{};  // of the model, for messages
  float seconds = 1;   // length of the longest motion
  std::vector<StageMaterial> materials;
  std::vector<StageMesh> meshes;
  std::vector<StageLight> lights;
  std::vector<StageCamera> cameras;
};

// The model as text. Fatal, naming model and object: what the player's reader would refuse or misread (double
// or long names, parents that do not come before their children, key lists of one key or that do not ascend
// or end on different frames, materials that fit the mapping badly, no light, ...).
std::string modelText(const Stage& stage);

}  // namespace vex
