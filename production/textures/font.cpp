#include "production/image/outline.h"
#include "production/textures/families.h"

namespace vex {

using namespace image;

namespace {

// 128 glyphs of 8 x 8 pixels below each other in code order, RGB; ink is full red.
Bytes fontRows() {
  Bytes bytes(std::size_t{8} * 1024 * 3, std::byte{0});
  for (int code = 33; code < 127; ++code) {
    const std::vector<bool> cell = renderCell(monospaced, code, 8);
    for (std::size_t pixel = 0; pixel < 64; ++pixel)
      if (cell[pixel]) bytes[(static_cast<std::size_t>(code) * 64 + pixel) * 3] = std::byte{255};
  }
  return bytes;
}

}  // namespace

Products statisticsFont() {
  Product product;
  product.outputs = {"data/font.raw"};
  product.source = __FILE__;
  product.work = 0.1f;
  product.make = [](const Settings&) { return std::vector<Bytes>{fontRows()}; };
  return {product};
}

}  // namespace vex
