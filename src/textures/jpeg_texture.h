#pragma once

#include "textures/image.h"

// JPEG files of textures and movie frames. Greyscale files give three equal channels.
// Fatal for both: "Texture %s not found", and followed by the file's name and what is wrong with it
// "ijlInit() failed", "ijlRead(Params) failed", "ijlRead(image) failed" (not all pixels are there), "strange
// JPEG format" (neither 1 nor 3 channels).

namespace vex {

// The texture `file`, with its mask `..._mask.jpg` where there is one to be taken. Empty, with a warning,
// when a side is no power of two. Fatal: a mask of another size.
Image readJpegTexture(const char* file, MaskUse maskUse = MaskUse::taken);

// A movie frame: of any size, without mask.
Image readJpegFrame(const char* file);

}  // namespace vex
