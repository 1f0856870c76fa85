#pragma once

#include <array>
#include <string>
#include <vector>

#include "engine/colour.h"
#include "engine/matrix.h"
#include "engine/vector.h"

// Writes the text that the model reader reads. All values are in the player's axes (right-handed, y up),
// times in frames from 0 on, angles in degrees but where a name says radians. Nothing is checked here but
// what the writer itself needs: who makes models knows what they may hold.

namespace vex {

struct ModelKey {
  int frame = 0;
  Vector value;       // place, factors, or axis of the turn
  float radians = 0;  // right-handed; turns only, each added to the ones before it
};
using ModelKeys = std::vector<ModelKey>;

struct ModelMotion {
  ModelKeys positions{};  // absolute places of the pivot
  ModelKeys turns{};
  ModelKeys scales{};     // about the pivot
  bool straight = false;  // straight lines between positions instead of a curve
};

struct TextMaterial {
  std::string name{};
  std::string texture{};     // below data\, without extension; empty: none
  bool environment = false;  // sphere map
  bool twoSided = false;
  Colour diffuse{}, ambient{0, 0, 0}, specular{0, 0, 0};
  float shine = 0;          // 0 to 1
  float shineStrength = 0;  // above 0.5 there is a highlight
  float opacity = 1;
};

struct TextCoordinate {
  float u = 0, v = 0;  // v upwards
};

struct TextMesh {
  std::string name{};
  std::string parent{};       // one before it; empty: none
  std::string helperClass{};  // of a helper, which is hidden; empty: a mesh that is drawn
  Vector pivot{};
  Matrix base = scaling({1, 1, 1});  // applied at the pivot before the tracks; can be inverted
  std::vector<Vector> points{};      // in the world, at rest
  std::vector<std::array<int, 3>> faces{};
  std::vector<TextCoordinate> coordinates{};
  std::vector<std::array<int, 3>> coordinateFaces{};  // one a face, or none: the mesh is not mapped
  int material = -1;                                  // index; -1: none
  ModelMotion motion{};
};

struct TextLight {
  std::string name{};
  Vector position{};
  bool on = true;
  Colour colour{};
  float intensity = 1;
  bool spot = false;
  Vector target{};                       // of spots
  float coneDegrees = 45;                // full opening
  ModelMotion motion{}, targetMotion{};  // positions alone
};

struct TextCamera {
  std::string name{};
  Vector position{}, target{};
  float fieldDegrees = 80;
  float far = 10000;
  ModelMotion motion{}, targetMotion{};  // positions alone
};

struct TextModel {
  std::string name{};  // the comment begins with it
  int framesPerSecond = 30;
  int lastFrame = 0;
  std::vector<TextMaterial> materials{};
  std::vector<TextMesh> meshes{};
  std::vector<TextLight> lights{};
  std::vector<TextCamera> cameras{};
};

enum class NumberForm {
  sixDecimals,
  exact,  // the shortest that is read back as the same float
};

std::string writeModelText(const TextModel& model, NumberForm form);

}  // namespace vex
