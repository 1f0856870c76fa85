#pragma once

#include <cstddef>
#include <vector>

// A picture that stands: drawing its frame again would move what has a past.

namespace vex::studio {

class StandingPicture {
 public:
  // The picture that was just drawn, from the lower left of the drawable.
  void keep(int newWidth, int newHeight);
  void forget() { width = height = 0; }
  bool fits(int otherWidth, int otherHeight) const { return width == otherWidth && height == otherHeight; }

  // The same pixels again. The state of the GL stays as it is.
  void draw() const;

 private:
  int width = 0, height = 0;
  std::vector<std::byte> pixels;  // blue, green, red, alpha, rows bottom to top
};

}  // namespace vex::studio
