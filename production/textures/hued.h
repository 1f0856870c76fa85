#pragma once

#include "production/making/product.h"
#include "production/textures/palette.h"

namespace vex {

// Pictures of one family that differ in their hue: stem and suffix of the hue are the name.
struct HuedPictures {
  const char* family;
  PictureKind kind;

  Product operator()(const char* stem, const Hue& hue, float work,
                     Canvas (*paint)(const Settings&, const Hue&)) const {
    return picture(stem + std::string(hue.suffix), kind, family, work,
                   [&hue, paint](const Settings& settings) { return paint(settings, hue); });
  }
};

}  // namespace vex
