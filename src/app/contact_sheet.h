#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/replace_file.h"
#include "timeline/tempo.h"

namespace vex {

// One picture with many small frames in rows, each with its time in seconds below it, behind a tempo also
// with its bar and beat.
class ContactSheet {
 public:
  // Room for `frames` pictures of the given size in pixels.
  ContactSheet(int frames, int frameWidth, int frameHeight, std::optional<Tempo> tempo = {});

  // The next picture: blue, green, red, alpha, rows bottom to top.
  void add(double time, std::span<const std::byte> bgra);

  // False, with errno, on failure.
  bool write(ReplacementFile& file) const;

 private:
  void drawLabel(int x, int y, const std::string& text);

  std::optional<Tempo> tempo;
  int sourceWidth;
  int sourceHeight;
  int thumbnailWidth;
  int thumbnailHeight;
  int width = 0;
  int height = 0;
  int added = 0;
  std::vector<std::byte> pixels;  // red, green, blue, rows top to bottom
};

}  // namespace vex
