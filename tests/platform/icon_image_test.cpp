#include "platform/icon_image.h"

#include <gtest/gtest.h>

namespace vex {

TEST(IconImage, EverySizeShowsPlateLetterAndSpark) {
  for (const int size : {16, 32, 48, 64}) {
    const std::vector<std::uint32_t> pixels = drawIcon(size);
    ASSERT_EQ(pixels.size(), static_cast<std::size_t>(size * size));
    const auto at = [&](double x, double y) {
      return pixels[static_cast<std::size_t>(y * size) * static_cast<std::size_t>(size) +
                    static_cast<std::size_t>(x * size)];
    };
    EXPECT_EQ(at(0, 0) >> 24, 0u) << size;          // a corner, rounded off
    EXPECT_EQ(at(0.5, 0.97), 0xFF15130Fu) << size;  // plate
    EXPECT_EQ(at(0.3, 0.4), 0xFFEAE3D2u) << size;   // left stroke
    EXPECT_EQ(at(0.7, 0.4), 0xFFEAE3D2u) << size;   // right stroke
    EXPECT_EQ(at(0.5, 0.75), 0xFFEAE3D2u) << size;  // where they meet
    EXPECT_EQ(at(0.5, 0.26), 0xFFB6EE22u) << size;  // spark
    if (size > 16) {
      EXPECT_EQ(at(0.5, 0.52), 0xFF15130Fu) << size;  // between the strokes
    }
  }
}

}  // namespace vex
