#pragma once

#include <cstddef>
#include <vector>

// JPEG files through libjpeg-turbo. The same pixels give the same bytes.

namespace vex {

struct JpegPixels {
  const unsigned char* rows;  // top row first, `channels` bytes a pixel, no padding
  int width, height;
  int channels;  // 1 grey, 3 red, green, blue
};

// Quality 1 to 100; colour is not subsampled. Empty on failure.
std::vector<std::byte> encodeJpeg(const JpegPixels& pixels, int quality);

}  // namespace vex
