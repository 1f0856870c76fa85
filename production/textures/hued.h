#pragma once

#include "production/making/product.h"
#include "production/textures/palette.h"

namespace vex {

// Pictures that differ in their hue: stem and suffix of the hue are the name.
struct HuedPictures {
  PictureKind kind;

  Product operator()(const char* stem, const Hue& hue, float work,
                     image::Canvas (*paint)(const Settings&, const Hue&),
                     const char* source = __builtin_FILE()) const {
    return picture(
        stem + std::string(hue.suffix), kind, work,
        [&hue, paint](const Settings& settings) { return paint(settings, hue); }, source);
  }
};

}  // namespace vex
