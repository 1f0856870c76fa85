#include "textures/image.h"

#include <GL/gl.h>

#include <cstddef>

#include "base/files.h"
#include "base/report.h"

namespace vex {
namespace {

constexpr std::size_t extensionLength = 4;

bool isPowerOfTwo(int value) {
  while (value > 1 && value % 2 == 0) value /= 2;
  return value == 0 || value == 1;
}

}  // namespace

bool hasTextureSize(const char* file, int width, int height) {
  if (isPowerOfTwo(width) && isPowerOfTwo(height)) return true;
  warning("texture %s isn't of correct size (%dx%d)", file, width, height);
  return false;
}

int maxImageSide() {
  int side = 0;  // stays so without a GL
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &side);
  return side > 0 ? side : portableImageSide;
}

void checkImageSides(const char* file, int width, int height) {
  const int most = maxImageSide();
  if (width > most || height > most) {
    fatalError("texture %s is %dx%d, sides of at most %d are possible", file, width, height, most);
  }
}

int openTexture(const char* file) {
  return fileOpenNeeded(file, formatted("Texture %s not found", file));
}

std::string maskNameOf(const char* file, const char* extension) {
  std::string name = file;
  name.resize(name.size() < extensionLength ? 0 : name.size() - extensionLength);
  return name + "_mask" + extension;
}

int openMask(const char* maskFile) {
  const int handle = fileOpen(maskFile, "rb");
  if (handle < 0) {
    logPrintf("mask file %s not found, cancelling\n", maskFile);
  } else {
    logPrintf("mask file %s found, opening\n", maskFile);
  }
  return handle;
}

void checkMaskSize(const char* maskFile, int width, int height, const Image& texture) {
  if (width != texture.width || height != texture.height) {
    fatalError("Mask file %s has wrong size %dx%d\nNeeds %dx%d", maskFile, width, height, texture.width,
               texture.height);
  }
}

void applyMask(Image& image, const Image& mask) {
  image.masked = true;
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    const std::uint32_t pixel = mask.pixels[i];
    const std::uint32_t sum = (pixel & 0xff) + (pixel >> 8 & 0xff) + (pixel >> 16 & 0xff);
    image.pixels[i] = (image.pixels[i] & 0x00ffffff) | (sum / 3) << 24;
  }
}

}  // namespace vex
