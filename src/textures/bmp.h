#pragma once

#include "textures/image.h"

// BMP files: a 14-byte file header and a 40-byte info header, then the palette of an 8-bit picture
// and the rows without padding, bottom row first. Uncompressed, 8 or 24 bits per pixel.

namespace vex {

// The texture `file`, with its mask `..._mask.bmp` where there is one to be taken. Palette colour
// (255, 0, 255) is transparent. Empty, with a warning, when a side is no power of two.
// Fatal: "Texture %s not found", "texture %s has %dbpp, must be 8 or 24!", "texture %s has
// compression!", a mask of another size, and whatever else is not such a file.
Image readBmpTexture(const char* file, MaskUse maskUse = MaskUse::taken);

}  // namespace vex
