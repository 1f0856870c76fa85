#include "timeline/scene_function.h"

#include "base/report.h"

namespace vex {

namespace {

const void* argument(const void* const* slots, int slot) {
  if (slot < 0 || slot >= maxArguments || !slots[slot]) {
    fatalError("parameter %d missing in the call of a scene function", slot);
  }
  return slots[slot];
}

}  // namespace

float Arguments::number(int slot) const {
  return *static_cast<const float*>(argument(slots, slot));
}

const char* Arguments::text(int slot) const {
  return static_cast<const char*>(argument(slots, slot));
}

}  // namespace vex
