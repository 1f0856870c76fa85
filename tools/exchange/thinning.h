#pragma once

#include <optional>
#include <vector>

#include "models/model_text.h"
#include "tools/exchange/transform.h"

// Few keys for many samples, one a frame from frame 0 on: at every frame, the player's interpolation of the
// keys is within the tolerance of the sample. The first and the last frame always have keys.

namespace vex {

// Frames on which the maker of a file says that the keys were, and how they were joined.
struct KeyHint {
  std::vector<int> frames{};
  bool straight = false;
};

struct ThinnedPlaces {
  ModelKeys keys;
  bool straight = false;  // lines between the keys instead of the natural curve through them
};

// Lines or a curve, whichever takes fewer keys. A hint is followed if its keys meet all samples to a
// hundredth of the tolerance.
ThinnedPlaces thinPlaces(const std::vector<Place>& samples, double tolerance,
                         const std::optional<KeyHint>& hint = {});

// As the player joins the keys of scale tracks: two by a line, more by a curve.
ModelKeys thinScales(const std::vector<Place>& samples, double tolerance,
                     const std::optional<KeyHint>& hint = {});

// Turns about one axis between two keys, each key relative to the one before it. Tolerance in radians.
ModelKeys thinTurns(const std::vector<Turn>& samples, double tolerance,
                    const std::optional<KeyHint>& hint = {});

}  // namespace vex
