#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "base/report.h"
#include "platform/icon_image.h"
#include "platform/png_file.h"
#include "platform/replace_file.h"
#include "resources/icon.h"

// Writes the icon into the folders of a hicolor theme, for packages.

namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, std::string_view bytes) {
  fs::create_directories(file.parent_path());
  if (!vex::replaceFile(file, bytes)) vex::fatalError("can't write %s", file.c_str());
}

void writePicture(const fs::path& theme, int size) {
  vex::PngPixels picture{.width = size, .height = size, .rgba = {}};
  for (const std::uint32_t argb : vex::drawIcon(size)) {
    for (const int shift : {16, 8, 0, 24})
      picture.rgba.push_back(static_cast<std::byte>(argb >> shift & 0xff));
  }
  const std::vector<std::byte> png = vex::encodePng(picture);
  const std::string side = std::to_string(size);
  write(theme / (side + "x" + side) / "apps" / "vex.png",
        {reinterpret_cast<const char*>(png.data()), png.size()});
}

std::string outlinesAsSvg() {
  namespace icon = vex::icon;
  const std::string grid = vex::formatted("%g", icon::gridSize);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + grid + " " + grid + "\">\n";
  svg += vex::formatted("<rect width=\"%g\" height=\"%g\" rx=\"%g\" fill=\"#%06x\"/>\n", icon::gridSize,
                        icon::gridSize, icon::cornerRadius, icon::inkBlack);
  for (const icon::Outline& outline : icon::outlines) {
    svg += vex::formatted("<polygon fill=\"#%06x\" fill-rule=\"evenodd\" points=\"", outline.rgb);
    for (const icon::Point& point : outline.points) svg += vex::formatted("%g,%g ", point.x, point.y);
    svg.back() = '"';
    svg += "/>\n";
  }
  return svg + "</svg>\n";
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs(
        "Usage: vexicons DIR    write the icon below DIR, as SIZExSIZE/apps/vex.png and "
        "scalable/apps/vex.svg\n",
        stderr);
    return 2;
  }
  const fs::path theme = arguments[1];
  for (const int size : {16, 22, 24, 32, 48, 64, 96, 128, 256, 512}) writePicture(theme, size);
  write(theme / "scalable" / "apps" / "vex.svg", outlinesAsSvg());
  return 0;
}
