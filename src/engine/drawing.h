#pragma once

#include "base/current.h"

namespace vex {

// While it is unseen, drawing moves all that it would move and sends none of the shapes that take time to the
// GL: what lies before the first frame that is shown costs little then. Depth maps of lights are not taken,
// frames of movies not decoded: each has its own before it is seen.
struct Drawing {
  bool unseen = false;
};

inline bool drawingUnseen() {
  return current<Drawing>().unseen;
}

}  // namespace vex
