#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "engine/scene.h"
#include "scenes/function_table.h"

// Small models in memory, and calls as the time line makes them.

namespace vex {

struct ModelContents {
  std::vector<std::string> meshes = {};
  std::vector<std::string> lights = {};
  int viewers = 1;
};

// Mesh i stands at (10 i, 1, 2) and has four vertices at distance 1 to 2 from there, lit, with ambient 0.25;
// light i stands at (i, 0, 0) and is switched on for the first eight. Every object and viewer has position
// tracks of two keys.
void fillScene(Scene& scene, const ModelContents& contents);

// A track of two keys, from the origin to (30, 0, 0).
void addTrack(Object3D& object);

// A white texture of 4 x 4 pixels under each name. Needs a GL context.
void addPlainTextures(std::initializer_list<const char*> names);

// A number or a text in an argument slot.
struct Argument {
  float number = 0;
  const char* text = nullptr;
  template <typename Number>
  requires std::is_arithmetic_v<Number> Argument(Number value) : number(static_cast<float>(value)) {}
  Argument(const char* value) : text(value) {}
};

// Calls the function of that name with exactly the parameters of its row.
void callFunction(std::span<const FunctionRow> rows, Scene& scene, const std::string& function, float t,
                  const std::vector<Argument>& arguments = {});

std::vector<std::string> namesOf(std::span<const FunctionRow> rows);

// A value that the code left beside the one worked out by hand.
struct ExpectedValue {
  const char* what;
  double is, should;
  template <typename Left, typename Wanted>
  requires(std::is_arithmetic_v<Left>&& std::is_arithmetic_v<Wanted>)
      ExpectedValue(const char* value, Left left, Wanted wanted)
      : what(value), is(static_cast<double>(left)), should(static_cast<double>(wanted)) {}
};
void expectValues(std::initializer_list<ExpectedValue> values);

// The track's duration and whether it loops; fails the test where there is no track.
struct Playing {
  float duration;
  bool loop;
  bool operator==(const Playing&) const = default;
};
Playing playing(const Animation* track);
Playing playing(const Object3D& object);

}  // namespace vex
