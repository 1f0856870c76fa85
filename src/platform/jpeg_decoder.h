#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

// JPEG files in memory to pixels. Data that end early or are damaged count as failures.

namespace vex {

struct JpegCloser {
  void operator()(void* decoder) const;
};
using JpegDecoder = std::unique_ptr<void, JpegCloser>;

struct JpegParameters {
  int width = 0;
  int height = 0;
  int channels = 0;  // 1 greyscale, 3 colour, 4 for print, 2 for any other number
};

// Null when the library gives none.
JpegDecoder openJpegDecoder();

// False when the file has no readable header.
bool readJpegParameters(const JpegDecoder& decoder, std::span<const std::byte> file,
                        JpegParameters& parameters);

// Files of 1 and 3 channels become bytes R, G, B, 255 per pixel; the bottom row of the picture comes
// first. `pixels` takes width x height. False when the data cannot be decoded to their end.
bool decodeJpeg(const JpegDecoder& decoder, std::span<const std::byte> file, const JpegParameters& parameters,
                std::span<std::uint32_t> pixels);

}  // namespace vex
