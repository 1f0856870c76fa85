#include "production/image/encode.h"

#include <cmath>
#include <cstdint>

#include "base/report.h"
#include "platform/jpeg_encoder.h"

namespace vex::image {

namespace {

// Interleaved gradient noise (Jorge Jimenez, 2014): every value from 0 to 1 about equally often in any small
// square, so that dithering shows no grain of its own. Each channel has its own place in the pattern.
float ditherThreshold(int x, int y, int channel) {
  const double place = 0.06711056 * (x + 5.588238 * channel) + 0.00583715 * (y + 5.588238 * channel);
  const double value = 52.9829189 * (place - std::floor(place));
  return static_cast<float>(value - std::floor(value));
}

unsigned char quantise(float value, int x, int y, int channel) {
  if (!(value > 0)) return 0;
  if (value >= 1) return 255;
  const float scaled = value * 255;
  const int low = static_cast<int>(scaled);
  return static_cast<unsigned char>(
      scaled - static_cast<float>(low) > ditherThreshold(x, y, channel) ? low + 1 : low);
}

void putNumber(Bytes& bytes, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
}

// The 14-byte file header and the 40-byte info header.
Bytes bmpHeaders(const Canvas& image, int bits) {
  const auto width = static_cast<std::uint32_t>(image.width),
             height = static_cast<std::uint32_t>(image.height);
  const std::uint32_t start = bits == 8 ? 54 + 1024 : 54;
  const std::uint32_t size = width * height * static_cast<std::uint32_t>(bits / 8);
  Bytes bytes{std::byte{'B'}, std::byte{'M'}};
  putNumber(bytes, start + size, 4);
  putNumber(bytes, 0, 4);
  putNumber(bytes, start, 4);
  putNumber(bytes, 40, 4);
  putNumber(bytes, width, 4);
  putNumber(bytes, height, 4);
  putNumber(bytes, 1, 2);
  putNumber(bytes, static_cast<std::uint32_t>(bits), 2);
  putNumber(bytes, 0, 4);
  putNumber(bytes, size, 4);
  putNumber(bytes, 2835, 4);  // texels a metre: 72 dpi
  putNumber(bytes, 2835, 4);
  putNumber(bytes, bits == 8 ? 256 : 0, 4);
  putNumber(bytes, 0, 4);
  return bytes;
}

std::vector<unsigned char> rgbRows(const Canvas& image) {
  std::vector<unsigned char> rows;
  rows.reserve(image.texels.size() * 3);
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const Colour4& texel = image.at(x, y);
      rows.push_back(quantise(texel.r, x, y, 0));
      rows.push_back(quantise(texel.g, x, y, 1));
      rows.push_back(quantise(texel.b, x, y, 2));
    }
  return rows;
}

std::vector<unsigned char> alphaRows(const Canvas& image) {
  std::vector<unsigned char> rows;
  rows.reserve(image.texels.size());
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) rows.push_back(quantise(image.at(x, y).a, x, y, 3));
  return rows;
}

}  // namespace

Bytes encodeBmp(const Canvas& image) {
  Bytes bytes = bmpHeaders(image, 24);
  const std::vector<unsigned char> rows = rgbRows(image);
  for (int y = image.height - 1; y >= 0; --y)
    for (int x = 0; x < image.width; ++x) {
      const std::size_t texel = (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                                 static_cast<std::size_t>(x)) *
                                3;
      for (const std::size_t channel : {2u, 1u, 0u})
        bytes.push_back(static_cast<std::byte>(rows[texel + channel]));
    }
  return bytes;
}

Bytes encodeBmpMask(const Canvas& image) {
  Bytes bytes = bmpHeaders(image, 8);
  for (std::uint32_t grey = 0; grey < 256; ++grey) putNumber(bytes, grey * 0x010101u, 4);
  const std::vector<unsigned char> rows = alphaRows(image);
  for (int y = image.height - 1; y >= 0; --y)
    for (int x = 0; x < image.width; ++x)
      bytes.push_back(
          static_cast<std::byte>(rows[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                                      static_cast<std::size_t>(x)]));
  return bytes;
}

namespace {

Bytes checkedJpeg(const std::vector<unsigned char>& rows, const Canvas& image, int channels, int quality) {
  Bytes bytes = encodeJpeg({rows.data(), image.width, image.height, channels}, quality);
  if (bytes.empty()) fatalError("JPEG encoding of a picture of %dx%d failed", image.width, image.height);
  return bytes;
}

}  // namespace

Bytes encodeJpegPicture(const Canvas& image, int quality) {
  return checkedJpeg(rgbRows(image), image, 3, quality);
}

Bytes encodeJpegMask(const Canvas& image, int quality) {
  return checkedJpeg(alphaRows(image), image, 1, quality);
}

}  // namespace vex::image
