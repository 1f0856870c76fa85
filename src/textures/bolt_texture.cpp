#include "textures/bolt_texture.h"

#include <cstddef>

#include "base/random.h"
#include "base/report.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

constexpr int boltSteps = 250;
constexpr int lastStart = boltSide - 2;  // where a 2 x 2 block still fits

void drawBolt(std::span<std::uint32_t> pixels) {
  const auto pixelAt = [&](int row, int column) -> std::uint32_t& {
    return pixels[static_cast<std::size_t>(row * boltSide + column)];
  };
  int row = lastStart;
  int column = 0;
  for (int step = 0; step < boltSteps; ++step) {
    pixelAt(row, column) = 0xffffd050;
    pixelAt(row + 1, column) = 0xffff5020;
    pixelAt(row, column + 1) = 0xffff5020;
    pixelAt(row + 1, column + 1) = 0xffef2000;
    if (randomNext() % 2 == 1 && column < lastStart) {
      ++column;
    } else if (row > 0) {
      --row;
    }
  }
}

}  // namespace

void darkenPixels(std::span<std::uint32_t> pixels) {
  for (std::uint32_t& pixel : pixels) pixel = pixel >> 1 & 0x7f7f7f7f;
}

void boltTexture(const char* name) {
  TextureEntry& entry = textureEntry(getTexture(name, false));
  if (entry.width != boltSide || entry.height != boltSide) {
    fatalError("texture %s is %dx%d, the bolt needs %dx%d", name, entry.width, entry.height, boltSide,
               boltSide);
  }
  if (entry.loadedPixels.empty()) entry.loadedPixels = entry.pixels;
  darkenPixels(entry.pixels);
  drawBolt(entry.pixels);
  uploadTexture(entry, false);
}

}  // namespace vex
