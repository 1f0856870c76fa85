#pragma once

#include <functional>
#include <string>
#include <vector>

#include "production/image/encode.h"
#include "production/image/image.h"

// What the generator makes: each product is one call that yields the bytes of one or a few files.

namespace vex {

struct Settings {
  bool draft = false;    // a quarter of the texture size and a short mix, for tests
  bool plaster = false;  // with bakesPlaster (geometry/bake.h)

  // Side in texels of a picture that is `full` wide in the finished production.
  int side(int full) const { return draft ? full / 4 : full; }
};

struct Product {
  std::vector<std::string> outputs;  // paths below the folder, such as "data/light1.bmp"
  std::string source;                // __FILE__ where it is defined: what it is made from follows from that
  float work = 1;                    // about how long it takes, relative to the others
  std::function<std::vector<image::Bytes>(const Settings&)> make;  // the files' bytes, in order of outputs
};

using Products = std::vector<Product>;

enum class PictureKind {
  jpeg,       // opaque, or additive on black
  bmp,        // the same without loss
  maskedBmp,  // alpha in a mask of its own
  maskedJpeg,
};

// "data/NAME.jpg" and so on: what encodePicture yields, in this order.
std::vector<std::string> picturePaths(const std::string& name, PictureKind kind);
std::vector<image::Bytes> encodePicture(const image::Canvas& image, PictureKind kind);

// One picture: "data/NAME.jpg" or "data/NAME.bmp", and "data/NAME_mask.*" where it has a mask.
Product picture(const std::string& name, PictureKind kind, float work,
                std::function<image::Canvas(const Settings&)> make, const char* source = __builtin_FILE());

}  // namespace vex
