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
  std::vector<std::string> sources;  // starts of the paths of the sources it is made from
  float work = 1;                    // about how long it takes, relative to the others
  std::function<std::vector<Bytes>(const Settings&)> make;  // the files' bytes, in order of outputs
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
std::vector<Bytes> encodePicture(const Canvas& image, PictureKind kind);
// Starts of the paths of the sources that all pictures are made from.
std::vector<std::string> pictureSources();

// One picture: "data/NAME.jpg" or "data/NAME.bmp", and "data/NAME_mask.*" where it has a mask. `family` is
// the source below production/textures/ without its extension.
Product picture(const std::string& name, PictureKind kind, const char* family, float work,
                std::function<Canvas(const Settings&)> make);

}  // namespace vex
