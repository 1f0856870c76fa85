#include "platform/png_file.h"

#include <png.h>

#include <cerrno>

namespace vex {

namespace {

png_image describe(int width, int height, png_uint_32 format) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = format;
  return image;
}

}  // namespace

bool writePng(ReplacementFile& file, int width, int height, std::span<const std::byte> rgb) {
  png_image image = describe(width, height, PNG_FORMAT_RGB);
  if (!file.stream()) return false;
  errno = 0;
  if (!png_image_write_to_stdio(&image, file.stream(), 0, rgb.data(), 0, nullptr)) {
    if (errno == 0) errno = EIO;
    return false;
  }
  return file.commit();
}

bool decodePng(std::span<const std::byte> file, int mostSide, PngPixels& pixels) {
  png_image image = describe(0, 0, 0);
  if (!png_image_begin_read_from_memory(&image, file.data(), file.size())) return false;
  const auto most = static_cast<png_uint_32>(mostSide);
  if (image.width == 0 || image.height == 0 || image.width > most || image.height > most) {
    png_image_free(&image);
    return false;
  }
  image.format = PNG_FORMAT_RGBA;
  pixels.width = static_cast<int>(image.width);
  pixels.height = static_cast<int>(image.height);
  pixels.rgba.resize(PNG_IMAGE_SIZE(image));
  return png_image_finish_read(&image, nullptr, pixels.rgba.data(), 0, nullptr) != 0;
}

std::vector<std::byte> encodePng(const PngPixels& pixels) {
  png_image image = describe(pixels.width, pixels.height, PNG_FORMAT_RGBA);
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<std::byte> file(size);
  if (!png_image_write_to_memory(&image, file.data(), &size, 0, pixels.rgba.data(), 0, nullptr)) return {};
  file.resize(size);
  return file;
}

}  // namespace vex
