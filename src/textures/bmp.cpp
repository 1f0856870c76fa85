#include "textures/bmp.h"

#include <array>
#include <cstddef>
#include <span>

#include "base/files.h"
#include "base/report.h"
#include "platform/little_endian.h"

namespace vex {
namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::size_t infoHeaderSize = 40;  // at least; what longer ones add is about colours and is skipped
constexpr std::uint32_t maxColours = 256;

struct BmpHeader {
  int width = 0;
  int height = 0;
  int bits = 0;
  std::uint32_t colours = 0;
};

void readBytes(int handle, const char* file, const char* what, std::span<std::uint8_t> bytes) {
  if (bytes.empty()) return;
  if (fileRead(bytes.data(), 1, bytes.size(), handle) != bytes.size()) {
    fatalError("texture %s: its %s cannot be read", file, what);
  }
}

void needBytes(int handle, const char* file, const char* what, std::size_t size) {
  if (size > fileRemaining(handle)) {
    fatalError("texture %s is cut short: its %s needs %zu bytes, %llu are left", file, what, size,
               static_cast<unsigned long long>(fileRemaining(handle)));
  }
}

// `texture` is the file that complaints about depth and compression name, for a mask too.
BmpHeader readHeader(int handle, const char* file, const char* texture) {
  std::array<std::uint8_t, fileHeaderSize + infoHeaderSize> bytes{};
  needBytes(handle, file, "header", bytes.size());
  readBytes(handle, file, "header", bytes);
  const auto field = [&](std::size_t offset, std::size_t size) {
    return static_cast<std::uint32_t>(littleEndian(std::span(bytes).subspan(fileHeaderSize + offset, size)));
  };
  const std::uint32_t size = field(0, 4);
  if (size < infoHeaderSize) {
    fatalError("texture %s has an info header of %u bytes, must be at least %zu", file, size, infoHeaderSize);
  }
  needBytes(handle, file, "info header", size - infoHeaderSize);
  fileSeek(handle, static_cast<std::int32_t>(size - infoHeaderSize), SeekOrigin::current);
  const BmpHeader header{.width = static_cast<std::int32_t>(field(4, 4)),
                         .height = static_cast<std::int32_t>(field(8, 4)),
                         .bits = static_cast<int>(field(14, 2)),
                         .colours = field(32, 4)};
  if (header.bits != 8 && header.bits != 24) {
    fatalError("texture %s has %dbpp, must be 8 or 24!", texture, header.bits);
  }
  if (field(16, 4) != 0) fatalError("texture %s has compression!", texture);
  if (header.width < 0 || header.height < 0) {
    fatalError("texture %s is %dx%d, sides must not be negative", file, header.width, header.height);
  }
  return header;
}

std::vector<std::uint32_t> readPalette(int handle, const char* file, std::uint32_t colours) {
  if (colours > maxColours) {
    fatalError("texture %s has %u colours, at most %u are possible", file, colours, maxColours);
  }
  std::vector<std::uint8_t> bytes(std::size_t{colours == 0 ? maxColours : colours} * 4);
  needBytes(handle, file, "palette", bytes.size());
  readBytes(handle, file, "palette", bytes);
  constexpr std::uint32_t colourKey = packPixel(255, 0, 255, 0);
  std::vector<std::uint32_t> palette;
  for (std::size_t i = 0; i < bytes.size(); i += 4) {
    const std::uint32_t colour = packPixel(bytes[i + 2], bytes[i + 1], bytes[i], 0);
    palette.push_back(colour == colourKey ? colour : colour | 0xff000000);
  }
  return palette;
}

Image readPixels(int handle, const char* file, const BmpHeader& header) {
  const std::size_t bytesPerPixel = header.bits == 8 ? 1 : 3;
  if (static_cast<std::size_t>(header.width) * bytesPerPixel % 4 != 0) {
    fatalError("texture %s is %d pixels wide, rows must be a multiple of 4 bytes", file, header.width);
  }
  checkImageSides(file, header.width, header.height);
  std::vector<std::uint32_t> palette;
  if (header.bits == 8) palette = readPalette(handle, file, header.colours);

  const std::size_t count = static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.height);
  needBytes(handle, file, "picture", count * bytesPerPixel);
  std::vector<std::uint8_t> bytes(count * bytesPerPixel);
  readBytes(handle, file, "picture", bytes);
  Image image{.width = header.width, .height = header.height, .pixels = std::vector<std::uint32_t>(count)};
  for (std::size_t i = 0; i < count; ++i) {
    if (header.bits == 8) {
      if (bytes[i] >= palette.size()) {
        fatalError("texture %s has pixel index %d, beyond its %zu colours", file, bytes[i], palette.size());
      }
      image.pixels[i] = palette[bytes[i]];
    } else {
      image.pixels[i] = packPixel(bytes[i * 3 + 2], bytes[i * 3 + 1], bytes[i * 3], 255);
    }
  }
  return image;
}

}  // namespace

Image readBmpTexture(const char* file, MaskUse maskUse) {
  Image image;
  {
    const OpenFile texture(openTexture(file));
    const BmpHeader header = readHeader(texture, file, file);
    if (!hasTextureSize(file, header.width, header.height)) return {};
    image = readPixels(texture, file, header);
  }
  if (maskUse == MaskUse::ignored) return image;

  const std::string maskFile = maskNameOf(file, ".bmp");
  const OpenFile mask(openMask(maskFile.c_str()));
  if (!mask.found()) return image;
  const BmpHeader header = readHeader(mask, maskFile.c_str(), file);
  checkMaskSize(maskFile.c_str(), header.width, header.height, image);
  applyMask(image, readPixels(mask, maskFile.c_str(), header));
  return image;
}

}  // namespace vex
