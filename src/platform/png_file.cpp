#include "platform/png_file.h"

#include <png.h>

#include <cerrno>

namespace vex {

bool writePng(ReplacementFile& file, int width, int height, std::span<const std::byte> rgb) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGB;
  if (!file.stream()) return false;
  errno = 0;
  if (!png_image_write_to_stdio(&image, file.stream(), 0, rgb.data(), 0, nullptr)) {
    if (errno == 0) errno = EIO;
    return false;
  }
  return file.commit();
}

}  // namespace vex
