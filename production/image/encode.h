#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "production/image/image.h"

// Pictures to file bytes. The last bit is dithered by a fixed pattern, so that wide gradients show no
// bands; exact 0 and 1 stay exact.

namespace vex::image {

using Bytes = std::vector<std::byte>;

inline Bytes bytesOf(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

// 24 bit, rows bottom-up; width a multiple of 4.
Bytes encodeBmp(const Canvas& image);
// 8 bit with a grey palette, from alpha.
Bytes encodeBmpMask(const Canvas& image);

// Quality 1 to 100, no chroma subsampling.
Bytes encodeJpegPicture(const Canvas& image, int quality);
// Grey, from alpha.
Bytes encodeJpegMask(const Canvas& image, int quality);

}  // namespace vex::image
