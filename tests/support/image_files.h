#pragma once

#include <turbojpeg.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/pak_builder.h"

// Picture files for tests.

namespace vex {

struct Rgb {
  int red = 0, green = 0, blue = 0;
};
using Picture = std::function<Rgb(int x, int yFromBottom)>;

// Fields of a BMP file, all of them settable to what no good file says. Without rows of its own the
// file gets as many bytes `fill` as the sizes ask for.
struct BmpFile {
  int width = 4;
  int height = 4;
  int bits = 24;
  std::uint32_t infoSize = 40;
  std::uint32_t compression = 0;
  std::uint32_t colours = 0;
  std::vector<Rgb> palette{};
  std::string rows{};
  char fill = 0;

  std::string bytes() const {
    std::string body;
    for (const Rgb& colour : palette) {
      for (const int part : {colour.blue, colour.green, colour.red, 0}) body += static_cast<char>(part);
    }
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                             static_cast<std::size_t>(bits / 8);
    body += rows.empty() ? std::string(size, fill) : rows;
    // A pixel offset that no reader should follow.
    return "BM" + littleEndianBytes(54 + body.size(), 4) + littleEndianBytes(0, 4) +
           littleEndianBytes(9999, 4) + littleEndianBytes(infoSize, 4) +
           littleEndianBytes(static_cast<std::uint32_t>(width), 4) +
           littleEndianBytes(static_cast<std::uint32_t>(height), 4) + littleEndianBytes(1, 2) +
           littleEndianBytes(static_cast<std::uint32_t>(bits), 2) + littleEndianBytes(compression, 4) +
           std::string(12, '\0') + littleEndianBytes(colours, 4) + littleEndianBytes(0, 4) +
           std::string(infoSize < 40 ? 0 : infoSize - 40, '\x55') + body;
  }
};

inline std::string bmpBytes(int width, int height, const Picture& picture) {
  BmpFile file{.width = width, .height = height};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Rgb colour = picture(x, y);
      for (const int part : {colour.blue, colour.green, colour.red}) file.rows += static_cast<char>(part);
    }
  }
  return file.bytes();
}

enum class JpegKind { colour, progressive, grey, print };

// Best quality without chroma subsampling: areas of one colour and 8 x 8 pixels come back within 2.
inline std::string jpegBytes(int width, int height, const Picture& picture,
                             JpegKind kind = JpegKind::colour) {
  const int channels = kind == JpegKind::print ? 4 : 3;
  std::vector<std::uint8_t> pixels;
  for (int y = height; y-- > 0;) {
    for (int x = 0; x < width; ++x) {
      const Rgb colour = picture(x, y);
      for (const int part : {colour.red, colour.green, colour.blue})
        pixels.push_back(static_cast<std::uint8_t>(part));
      if (channels == 4) pixels.push_back(0);
    }
  }
  const tjhandle encoder = tjInitCompress();
  unsigned char* data = nullptr;
  unsigned long size = 0;
  tjCompress2(encoder, pixels.data(), width, 0, height, kind == JpegKind::print ? TJPF_CMYK : TJPF_RGB, &data,
              &size, kind == JpegKind::grey ? TJSAMP_GRAY : TJSAMP_444, 100,
              kind == JpegKind::progressive ? TJFLAG_PROGRESSIVE : 0);
  std::string bytes(reinterpret_cast<const char*>(data), size);
  tjFree(data);
  tjDestroy(encoder);
  return bytes;
}

inline Picture plain(Rgb colour) {
  return [colour](int, int) { return colour; };
}

}  // namespace vex
