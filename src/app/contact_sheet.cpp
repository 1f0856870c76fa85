#include "app/contact_sheet.h"

#include <algorithm>

#include "base/report.h"
#include "platform/png_file.h"
#include "textures/small_type.h"

namespace vex {

namespace {

constexpr int columns = 6;
constexpr int cellWidth = 320;
constexpr int maxThumbnailHeight = 320;
constexpr int gap = 8;
constexpr int labelScale = 2;
constexpr int labelHeight = smallTypeHeight * labelScale + 6;
constexpr std::byte ground{7};
constexpr std::byte ink{200};

}  // namespace

ContactSheet::ContactSheet(int frames, int frameWidth, int frameHeight, std::optional<Tempo> theTempo)
    : tempo(theTempo),
      sourceWidth(frameWidth),
      sourceHeight(frameHeight),
      thumbnailWidth(std::clamp(maxThumbnailHeight * frameWidth / frameHeight, 1, cellWidth)),
      thumbnailHeight(std::clamp(cellWidth * frameHeight / frameWidth, 1, maxThumbnailHeight)) {
  const int across = std::clamp(frames, 1, columns);
  const int down = (std::max(frames, 1) + columns - 1) / columns;
  width = gap + across * (cellWidth + gap);
  height = gap + down * (thumbnailHeight + labelHeight + gap);
  pixels.assign(std::size_t{3} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height), ground);
}

void ContactSheet::add(double time, std::span<const std::byte> bgra) {
  const int left = gap + added % columns * (cellWidth + gap);
  const int top = gap + added / columns * (thumbnailHeight + labelHeight + gap);
  ++added;
  for (int y = 0; y < thumbnailHeight; ++y) {
    const int fromY = y * sourceHeight / thumbnailHeight;
    const int toY = std::max(fromY + 1, (y + 1) * sourceHeight / thumbnailHeight);
    for (int x = 0; x < thumbnailWidth; ++x) {
      const int fromX = x * sourceWidth / thumbnailWidth;
      const int toX = std::max(fromX + 1, (x + 1) * sourceWidth / thumbnailWidth);
      std::array<int, 3> sum{};
      for (int row = fromY; row < toY; ++row) {
        for (int column = fromX; column < toX; ++column) {
          const auto pixel = static_cast<std::size_t>((sourceHeight - 1 - row) * sourceWidth + column) * 4;
          for (std::size_t c = 0; c < 3; ++c) sum[c] += static_cast<int>(bgra[pixel + 2 - c]);
        }
      }
      const int count = (toY - fromY) * (toX - fromX);
      const auto target = static_cast<std::size_t>((top + y) * width + left + x) * 3;
      for (std::size_t c = 0; c < 3; ++c) pixels[target + c] = static_cast<std::byte>(sum[c] / count);
    }
  }
  std::string label = formatted("%.2f", time);
  if (tempo) label += "  " + tempo->text(time);
  drawLabel(left, top + thumbnailHeight + 4, label);
}

void ContactSheet::drawLabel(int x, int y, const std::string& text) {
  for (const char c : text) {
    const SmallGlyph* glyph = smallGlyph(c);
    if (!glyph) continue;
    for (int row = 0; row < smallTypeHeight * labelScale; ++row) {
      for (int column = 0; column < smallTypeWidth * labelScale; ++column) {
        const int bits = (*glyph)[static_cast<std::size_t>(row / labelScale)];
        if (!(bits >> (2 - column / labelScale) & 1)) continue;
        const auto target = static_cast<std::size_t>((y + row) * width + x + column) * 3;
        std::fill_n(pixels.begin() + static_cast<std::ptrdiff_t>(target), 3, ink);
      }
    }
    x += (smallTypeWidth + 1) * labelScale;
  }
}

bool ContactSheet::write(ReplacementFile& file) const {
  return writePng(file, width, height, pixels);
}

}  // namespace vex
