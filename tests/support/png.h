#pragma once

#include <png.h>

#include <cstddef>
#include <vector>

namespace vex {

// A PNG read with libpng; without pixels where it cannot be read.
struct Png {
  int width = 0, height = 0;
  std::vector<png_byte> pixels;  // red, green, blue, rows top to bottom

  std::vector<int> at(int x, int y) const {
    const png_byte* pixel = &pixels[static_cast<std::size_t>(3 * (y * width + x))];
    return {pixel[0], pixel[1], pixel[2]};
  }
};

inline Png readPng(const char* path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  Png png;
  if (!png_image_begin_read_from_file(&image, path)) return png;
  image.format = PNG_FORMAT_RGB;
  png.width = static_cast<int>(image.width);
  png.height = static_cast<int>(image.height);
  png.pixels.resize(PNG_IMAGE_SIZE(image));
  png_image_finish_read(&image, nullptr, png.pixels.data(), 0, nullptr);
  return png;
}

}  // namespace vex
