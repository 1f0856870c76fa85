#pragma once

#include "engine/scene.h"

// How a scene function reads its argument slots.

namespace vex {

inline constexpr int maxArguments = 9;

// The number or text in a slot. Fatal: "parameter %d missing in the call of a scene function".
// The project says which kind a slot holds; reading it as the other kind gives a wrong value.
float numberArgument(const void* const* arguments, int slot);
const char* textArgument(const void* const* arguments, int slot);

}  // namespace vex
