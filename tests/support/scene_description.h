#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/scene.h"

// A scene's objects as text, and descriptions of what a set-up makes of them.

namespace vex {

// All that a set-up may give an object, by the field's name; numbers to five places.
struct ObjectState {
  std::string kind;  // "scene", "mesh", "light", "viewer" or "system"
  int index = 0;     // among those of its kind
  std::string name;
  std::map<std::string, std::string> fields;
};
using SceneState = std::vector<ObjectState>;

SceneState stateOf(const Scene& scene);

// Gives all objects values that no set-up would leave, so that whatever one forgets shows.
void scramble(Scene& scene);

// What `before` is after the settings of a description, whose lines apply in order:
//
//   meshes: lit no; ambient +0.1 +0.1 +0.1     of all; a plus adds to what there is
//   light smoke* 2: flareSize 40               by names (letter case ignored, * at the end) or by index
//   system 0: rate 100                         begins as a new particle system does
//   scene: box data\a data\b ...
//
// Lines that begin with a blank go on with the line before. Selectors that meet nothing fail the test.
SceneState described(SceneState before, const std::string& description);

// One line an object and field.
std::string textOf(const SceneState& state);

}  // namespace vex
