#include "app/contact_sheet.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

struct Grey {
  int width = 0, height = 0;
  std::vector<png_byte> pixels;

  int at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

// The sheet of one black frame.
Grey sheetOf(int width, int height, double time) {
  const TemporaryFolder folder;
  ContactSheet sheet(1, width, height);
  sheet.add(time, std::vector<std::byte>(static_cast<std::size_t>(width * height) * 4));
  ReplacementFile file("sheet.png");
  EXPECT_TRUE(sheet.write(file));
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  Grey grey;
  EXPECT_TRUE(png_image_begin_read_from_file(&image, "sheet.png"));
  image.format = PNG_FORMAT_GRAY;
  grey.width = static_cast<int>(image.width);
  grey.height = static_cast<int>(image.height);
  grey.pixels.resize(PNG_IMAGE_SIZE(image));
  png_image_finish_read(&image, nullptr, grey.pixels.data(), 0, nullptr);
  return grey;
}

// The label's cells as text, a line a row; a cell is two pixels wide and high.
std::string labelOf(const Grey& sheet, int top, int cells) {
  std::string label;
  for (int row = 0; row < 5; ++row) {
    for (int cell = 0; cell < cells; ++cell) label += sheet.at(8 + 2 * cell, top + 2 * row) > 100 ? '#' : ' ';
    label += '\n';
  }
  return label;
}

}  // namespace

TEST(ContactSheet, LabelsAlsoTimesBeforeZero) {
  const Grey sheet = sheetOf(32, 16, -1.5);
  EXPECT_EQ(labelOf(sheet, 8 + 160 + 4, 19),
            "     #      ### ###\n"
            "    ##      #   # #\n"
            "###  #      ### # #\n"
            "     #        # # #\n"
            "    ###  #  ### ###\n");
}

TEST(ContactSheet, FitsEveryShapeIntoItsCell) {
  const struct {
    int width, height;
    int pictureWidth, pictureHeight;
  } cases[] = {
      {64, 36, 320, 180}, {32, 32, 320, 320}, {16, 64, 80, 320}, {16, 8192, 1, 320}, {8192, 16, 320, 1}};
  for (const auto& [width, height, pictureWidth, pictureHeight] : cases) {
    const Grey sheet = sheetOf(width, height, 0);
    EXPECT_EQ(sheet.width, 8 + 320 + 8);
    EXPECT_EQ(sheet.height, 8 + pictureHeight + 16 + 8) << width << "x" << height;
    // The black picture on the lighter ground.
    const auto firstRow = sheet.pixels.begin() + 8 * sheet.width;
    EXPECT_EQ(std::count(firstRow, firstRow + sheet.width, 0), pictureWidth) << width << "x" << height;
  }
}

}  // namespace vex
