#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Pictures in memory and the checks that all picture files share.

namespace vex {

// The least that a GL of version 4.1 or later takes.
inline constexpr int portableImageSide = 16384;

// One 32-bit value per pixel, R in the lowest byte, then G, B, A, so that memory holds R, G, B, A.
// Rows run from the bottom of the picture to the top.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
  bool masked = false;  // the alpha is that of a mask
};

// Whether a picture's alpha comes from the mask beside it.
enum class MaskUse { taken, ignored };

constexpr std::uint32_t packPixel(std::uint32_t red, std::uint32_t green, std::uint32_t blue,
                                  std::uint32_t alpha) {
  return red | green << 8 | blue << 16 | alpha << 24;
}

// Whether both sides are powers of two (0 included). Otherwise gives the warning "texture %s isn't of
// correct size (%dx%d)".
bool hasTextureSize(const char* file, int width, int height);

// The longest side of a texture that the GL takes; without a GL, portableImageSide.
int maxImageSide();

// Fatal: "texture %s is %dx%d, sides of at most %d are possible", for a side that is longer than that.
void checkImageSides(const char* file, int width, int height);

// Handle of a texture's file. Fatal: "Texture %s not found", what fileOpenNeeded refuses.
int openTexture(const char* file);

// Name of the mask beside `file`: its last four characters (the extension) replaced.
std::string maskNameOf(const char* file, const char* extension);

// Handle of the mask, or -1; logs which of the two.
int openMask(const char* maskFile);

// Fatal: "Mask file %s has wrong size %dx%d\nNeeds %dx%d".
void checkMaskSize(const char* maskFile, int width, int height, const Image& texture);

// The alpha of each pixel becomes the brightness (R + G + B) / 3 of the mask's pixel. Same sizes.
void applyMask(Image& image, const Image& mask);

}  // namespace vex
