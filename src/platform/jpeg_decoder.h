#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

// JPEG files in memory to pixels. What ends before its pixels do, or holds damaged ones, counts as a failure;
// stray bytes around them do not.

namespace vex {

struct JpegState;
struct JpegCloser {
  void operator()(JpegState* decoder) const;
};
using JpegDecoder = std::unique_ptr<JpegState, JpegCloser>;

struct JpegParameters {
  int width = 0;
  int height = 0;
  int channels = 0;  // 1 greyscale, 3 colour, 4 for print
};

// Null when the library gives none.
JpegDecoder openJpegDecoder();

// Why the last of the calls below has failed, in the library's words.
const char* jpegComplaint(const JpegDecoder& decoder);

// Once for each decoder, which then goes on in these very bytes. False when the file has no readable header.
bool readJpegParameters(const JpegDecoder& decoder, std::span<const std::byte> file,
                        JpegParameters& parameters);

// After the parameters. Files of 1 and 3 channels, the latter Y, Cb and Cr, become bytes R, G, B, 255 per
// pixel; the bottom row of the picture comes first. False when not all pixels are there: memory is touched
// only for those that are, whatever size the file claims.
bool decodeJpeg(const JpegDecoder& decoder, std::vector<std::uint32_t>& pixels);

}  // namespace vex
