#pragma once

#include "engine/scene.h"

// How a scene function reads its argument slots.

namespace vex {

inline constexpr int maxArguments = 9;

// A number toward zero, at most a thousand million on either side; 0 for what is no number.
constexpr int truncateNumber(float value) {
  constexpr int limit = 1'000'000'000;
  if (value >= limit) return limit;
  if (value <= -limit) return -limit;
  return value == value ? static_cast<int>(value) : 0;
}

// The slots of one call, valid while the function runs. The project says which kind a slot holds; reading it
// as the other kind gives a wrong value.
// Fatal, for each of them: "parameter %d missing in the call of a scene function".
class Arguments {
 public:
  explicit Arguments(const void* const* argumentSlots) : slots(argumentSlots) {}

  float number(int slot) const;
  int whole(int slot) const { return truncateNumber(number(slot)); }
  const char* text(int slot) const;

 private:
  const void* const* slots;
};

template <auto body>
struct BoundFunction;
template <typename Concrete, void (*body)(Concrete&, float, Arguments)>
struct BoundFunction<body> {
  static void call(Scene* scene, float sceneTime, const void* const* slots) {
    body(static_cast<Concrete&>(*scene), sceneTime, Arguments(slots));
  }
};

// What the time line calls for a function of a concrete scene.
template <auto body>
inline constexpr SceneFunction* sceneFunction = BoundFunction<body>::call;

}  // namespace vex
