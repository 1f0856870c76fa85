#include "timeline/scene_function.h"

#include "base/report.h"

namespace vex {

namespace {

const void* argument(const void* const* arguments, int slot) {
  if (slot < 0 || slot >= maxArguments || !arguments[slot]) {
    fatalError("parameter %d missing in the call of a scene function", slot);
  }
  return arguments[slot];
}

}  // namespace

float numberArgument(const void* const* arguments, int slot) {
  return *static_cast<const float*>(argument(arguments, slot));
}

const char* textArgument(const void* const* arguments, int slot) {
  return static_cast<const char*>(argument(arguments, slot));
}

}  // namespace vex
